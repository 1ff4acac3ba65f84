// Search counts on a 2,000-client sample practice: the task count filters
// the rows of its SELECT in memory (the record-set filter), the appointment
// count runs its WHERE clause in the engine. Each stands beside one
// COUNT(*) statement asking SQLite the same question in the same run, so the
// ratio shows what the record-set design costs.
//
//   cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DQM_BUILD_BENCH=ON
//   cmake --build build-bench --target search_bench
//   build-bench/bench/search/search_bench
#include "context/AppContext.h"
#include "data/SamplePractice.h"
#include "data/databaseControl.h"
#include "search/clsSearchAppointments.h"
#include "search/clsSearchTasks.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <memory>

namespace {

constexpr int Clients = 2000;

struct Practice {
    QTemporaryDir dir;
    QString path;
    std::unique_ptr<databaseControl> db;
    QSqlDatabase direct;

    Practice() {
        path = dir.filePath(QStringLiteral("Data.qmd"));
        SamplePracticeOptions options;
        options.clients = Clients;
        options.referenceDate = QDate(2024, 6, 1);
        SamplePractice::write(path, options);
        db = std::make_unique<databaseControl>();
        db->setDatabasePath(path);
        db->connect();
        direct = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("direct"));
        direct.setDatabaseName(path);
        direct.open();
    }
};

Practice& practice() {
    static Practice p;
    return p;
}

int directCount(const QString& sql) {
    QSqlQuery query(practice().direct);
    query.exec(sql);
    return query.next() ? query.value(0).toInt() : -1;
}

// GST tasks due in the first half of 2024 that are not closed.
void taskCriteria(clsSearchTasks& search) {
    search.searchByTaskName = true;
    search.taskName = QStringLiteral("GST");
    search.searchDueDate = true;
    search.dateMatch = 4;
    search.firstDate = QDate(2024, 1, 1);
    search.secondDate = QDate(2024, 6, 30);
    search.searchClosed = true;
    search.closed = false;
}

const QString TaskSql = QStringLiteral(
    "SELECT COUNT(*) FROM (ClientData INNER JOIN Companies ON ClientData.CompanyIDNum = "
    "Companies.CompanyID) INNER JOIN Schedule ON ClientData.ClientDataID = Schedule.ClientNum "
    "WHERE ClientData.ShowThisClient <> 0 AND Schedule.scheduleName LIKE '%GST%' AND "
    "Schedule.DueDate >= '2024-01-01' AND Schedule.DueDate <= '2024-06-30' AND "
    "Schedule.Closed = 0 AND Schedule.hideInTasks = 0");

void BM_taskFilterCount(benchmark::State& state) {
    ScopedAppContext context;
    context->database = practice().db.get();
    clsSearchTasks search;
    taskCriteria(search);
    search.generateSQLFilter();
    int count = 0;
    for (auto _ : state) {
        count = search.taskFilterCount();
        benchmark::DoNotOptimize(count);
    }
    state.counters["rows"] = count;
}
BENCHMARK(BM_taskFilterCount)->Unit(benchmark::kMillisecond);

void BM_taskCountInSqlite(benchmark::State& state) {
    int count = 0;
    for (auto _ : state) {
        count = directCount(TaskSql);
        benchmark::DoNotOptimize(count);
    }
    state.counters["rows"] = count;
}
BENCHMARK(BM_taskCountInSqlite)->Unit(benchmark::kMillisecond);

void BM_appointmentFilterCount(benchmark::State& state) {
    ScopedAppContext context;
    context->database = practice().db.get();
    clsSearchAppointments search;
    search.dateMatch = 4;
    search.firstDate = QDate(2024, 5, 1);
    search.secondDate = QDate(2024, 6, 30);
    search.searchByStartTime = true;
    search.startTimeMatch = 1;
    search.firstStartTime = QStringLiteral("12:00 PM");
    int count = 0;
    for (auto _ : state) {
        count = search.appointmentFilterCount();
        benchmark::DoNotOptimize(count);
    }
    state.counters["rows"] = count;
}
BENCHMARK(BM_appointmentFilterCount)->Unit(benchmark::kMillisecond);

void BM_appointmentCountInSqlite(benchmark::State& state) {
    const QString sql = QStringLiteral(
        "SELECT COUNT(*) FROM Appointments WHERE DateFrom >= '2024-05-01' AND DateFrom <= "
        "'2024-06-30' AND TimeFrom >= '1899-12-30 12:00:00'");
    int count = 0;
    for (auto _ : state) {
        count = directCount(sql);
        benchmark::DoNotOptimize(count);
    }
    state.counters["rows"] = count;
}
BENCHMARK(BM_appointmentCountInSqlite)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    practice();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
