// Single-row lookups on a 10,000-client sample practice, next to a bare
// SQLite prepared-statement loop over the same IDs in the same run, and the
// time to write the sample itself.
//
//   cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DQM_BUILD_BENCH=ON
//   cmake --build build-bench --target client_db_bench
//   build-bench/bench/data/client_db_bench
#include "context/AppContext.h"
#include "data/JetSqlTranslator.h"
#include "data/SamplePractice.h"
#include "data/TranslationCache.h"
#include "data/databaseControl.h"
#include "data/modDatabaseFunctions.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <memory>
#include <sqlite3.h>
#include <vector>

namespace {

constexpr int Clients = 10000;

struct Practice {
    QTemporaryDir dir;
    QString path;
    std::vector<int> companyIDs;
    std::unique_ptr<databaseControl> db;

    Practice() {
        path = dir.filePath(QStringLiteral("Data.qmd"));
        SamplePracticeOptions options;
        options.clients = Clients;
        options.referenceDate = QDate(2024, 6, 1);
        SamplePractice::write(path, options);
        db = std::make_unique<databaseControl>();
        db->setDatabasePath(path);
        db->connect();
        const int h =
            db->openRecordset(QStringLiteral("SELECT Companies.CompanyID FROM Companies;"));
        for (; !db->isEOF(h); db->moveNext(h))
            companyIDs.push_back(db->getField(h, QStringLiteral("CompanyID")).toInt());
        db->closeRecordset(h);
        // Mix the order so that neither side walks the table in key order.
        for (size_t i = 0; i < companyIDs.size(); ++i)
            std::swap(companyIDs[i], companyIDs[(i * 7919) % companyIDs.size()]);
    }
};

Practice& practice() {
    static Practice p;
    return p;
}

void BM_getCompanyNameFromCompanyID(benchmark::State& state) {
    Practice& p = practice();
    ScopedAppContext context;
    context->database = p.db.get();
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            getCompanyNameFromCompanyID(p.companyIDs[i++ % p.companyIDs.size()]));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_getCompanyNameFromCompanyID);

void BM_getClientDataIDFromCompanyID(benchmark::State& state) {
    Practice& p = practice();
    ScopedAppContext context;
    context->database = p.db.get();
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            getClientDataIDFromCompanyID(p.companyIDs[i++ % p.companyIDs.size()]));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_getClientDataIDFromCompanyID);

void BM_validCompanyID(benchmark::State& state) {
    Practice& p = practice();
    ScopedAppContext context;
    context->database = p.db.get();
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            validCompanyID(QString::number(p.companyIDs[i++ % p.companyIDs.size()])));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_validCompanyID);

// The same question as getCompanyNameFromCompanyID, straight to SQLite.
void BM_BareSqlitePreparedLoop(benchmark::State& state) {
    Practice& p = practice();
    sqlite3* db = nullptr;
    sqlite3_open_v2(p.path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(
        db, "SELECT Companies.CompanyID, Companies.CompanyName FROM Companies WHERE CompanyID=?",
        -1, &stmt, nullptr);
    size_t i = 0;
    for (auto _ : state) {
        sqlite3_bind_int(stmt, 1, p.companyIDs[i++ % p.companyIDs.size()]);
        QString name;
        if (sqlite3_step(stmt) == SQLITE_ROW)
            name = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 1)));
        benchmark::DoNotOptimize(name);
        sqlite3_reset(stmt);
    }
    sqlite3_finalize(stmt);
    sqlite3_close(db);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_BareSqlitePreparedLoop);

// A merge reopens the same record-set statement for every client with
// another ID. Side by side: translating each text afresh (what every open
// did), the kept translation of its shape (what an open does now), and the
// whole open of which either is a part.
QString companyStatement(int id) {
    return QStringLiteral("SELECT Companies.* From Companies WHERE Companies.CompanyID=") +
           QString::number(id) + QLatin1Char(';');
}

void BM_TranslateEveryOpen(benchmark::State& state) {
    Practice& p = practice();
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(
            JetSqlTranslator::translate(companyStatement(p.companyIDs[i++ % p.companyIDs.size()])));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_TranslateEveryOpen);

void BM_TranslateKeptShape(benchmark::State& state) {
    Practice& p = practice();
    TranslationCache cache;
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(
            cache.translate(companyStatement(p.companyIDs[i++ % p.companyIDs.size()])));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_TranslateKeptShape);

void BM_OpenCompanyRecordset(benchmark::State& state) {
    Practice& p = practice();
    size_t i = 0;
    for (auto _ : state) {
        const int h =
            p.db->openRecordset(companyStatement(p.companyIDs[i++ % p.companyIDs.size()]));
        benchmark::DoNotOptimize(p.db->recordCount(h));
        p.db->closeRecordset(h);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_OpenCompanyRecordset);

void BM_SampleDb10000Clients(benchmark::State& state) {
    for (auto _ : state) {
        QTemporaryDir dir;
        SamplePracticeOptions options;
        options.clients = Clients;
        options.referenceDate = QDate(2024, 6, 1);
        benchmark::DoNotOptimize(
            SamplePractice::write(dir.filePath(QStringLiteral("Data.qmd")), options));
    }
}
BENCHMARK(BM_SampleDb10000Clients)->Iterations(1)->Unit(benchmark::kSecond);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
