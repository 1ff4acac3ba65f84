// The client tree on sample practices of 1,000 and 10,000 clients made in
// the same run: the reading of the record sets, the counting pass (which
// includes the reading) and the building pass (into the item model the
// recipient dialog shows), the statements each runs, and the
// building time per client of the large practice over the small one
// (1.00 is linear scaling).
//
//   cmake -S . -B build-rel -G Ninja -DCMAKE_BUILD_TYPE=Release -DQM_BUILD_BENCH=ON
//   cmake --build build-rel --target tree_bench
//   build-rel/bench/data/tree_bench [repetitions]
#include "context/AppContext.h"
#include "data/SamplePractice.h"
#include "data/clsPopulateClientTree.h"
#include "data/databaseControl.h"
#include "platform/tree/ClientTreeModel.h"
#include "platform/errorClass.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

struct Figures {
    int clients = 0;
    int nodes = 0;
    double readMs = 0;
    double countMs = 0;
    double buildMs = 0;
    qint64 countStatements = 0;
    qint64 buildStatements = 0;
};

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// One sample practice with its connection and its figures.
struct Practice {
    Figures f;
    databaseControl db;
    std::vector<double> readTimes;
    std::vector<double> countTimes;
    std::vector<double> buildTimes;

    Practice(const QString& folder, int clients, errorClass& errors) {
        const QString path = folder + QStringLiteral("/practice-%1.qmd").arg(clients);
        SamplePracticeOptions options;
        options.clients = clients;
        options.referenceDate = QDate(2024, 6, 1);
        SamplePractice::write(path, options);
        db.setErrorObject(&errors);
        db.setDatabasePath(path);
        db.connect();
        if (!db.isConnected())
            qFatal("cannot open the sample: %s", qPrintable(db.lastError()));
        f.clients = clients;
        app().database = &db;
        // The first build heals the stored tax year; it is not timed.
        clsPopulateClientTree warmUp;
        warmUp.populateContactLedgerTree(true);
    }

    void runOnce() {
        app().database = &db;
        {
            clsPopulateClientTree tree;
            const qint64 before = db.statementCount();
            QElapsedTimer timer;
            timer.start();
            tree.initializeRecordSets();
            readTimes.push_back(timer.nsecsElapsed() / 1e6);
            tree.populateContactLedgerTree(true);
            countTimes.push_back(timer.nsecsElapsed() / 1e6);
            f.countStatements = db.statementCount() - before;
            f.nodes = tree.nodeCount();
        }
        {
            ClientTreeModel model;
            clsPopulateClientTree tree;
            tree.setTreeViewControl(&model);
            int events = 0;
            tree.setIncProgressBar([&events](int&) { ++events; });
            const qint64 before = db.statementCount();
            QElapsedTimer timer;
            timer.start();
            tree.populateContactLedgerTree(false);
            buildTimes.push_back(timer.nsecsElapsed() / 1e6);
            f.buildStatements = db.statementCount() - before;
            if (model.count() != f.nodes || events != f.nodes)
                qFatal("the passes disagree: %d counted, %d built", f.nodes, model.count());
        }
        app().database = nullptr;
    }

    Figures figures() {
        f.readMs = median(readTimes);
        f.countMs = median(countTimes);
        f.buildMs = median(buildTimes);
        return f;
    }
};

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const int repetitions = argc > 1 ? std::max(1, atoi(argv[1])) : 5;
    QTemporaryDir dir;
    ScopedAppContext context;
    errorClass errors(&context->clock);
    context->errors = &errors;
    context->clock.setFixed(QDateTime(QDate(2024, 6, 1), QTime(9, 0)));
    context->contactNameDisplayType = 2;
    Practice small(dir.path(), 1000, errors);
    Practice large(dir.path(), 10000, errors);
    // Side by side: the two practices take turns, so that the load of the
    // machine falls on both alike.
    for (int i = 0; i < repetitions; ++i) {
        small.runOnce();
        large.runOnce();
    }
    const std::vector<Figures> rows = {small.figures(), large.figures()};

    std::printf("client tree, median of %d runs each\n", repetitions);
    std::printf("%8s %8s %10s %10s %10s %12s %12s %16s\n", "clients", "nodes", "read ms",
                "count ms", "build ms", "count stmts", "build stmts", "build us/client");
    for (const Figures& f : rows)
        std::printf("%8d %8d %10.1f %10.1f %10.1f %12lld %12lld %16.1f\n", f.clients, f.nodes,
                    f.readMs, f.countMs, f.buildMs, static_cast<long long>(f.countStatements),
                    static_cast<long long>(f.buildStatements), 1000.0 * f.buildMs / f.clients);
    std::printf("building time per client, 10k over 1k: %.2f (1.00 is linear)\n",
                (rows[1].buildMs / rows[1].clients) / (rows[0].buildMs / rows[0].clients));
    std::printf("counting time per client, 10k over 1k: %.2f\n",
                (rows[1].countMs / rows[1].clients) / (rows[0].countMs / rows[0].clients));
    // The walk alone, without the reading of the record sets (whose SQL
    // sorts the rows).
    std::printf("walk of the counting pass per client, 10k over 1k: %.2f\n",
                ((rows[1].countMs - rows[1].readMs) / rows[1].clients) /
                    ((rows[0].countMs - rows[0].readMs) / rows[0].clients));
    return 0;
}
