// The recipient dialog on a sample practice of 10,000 clients: the time from
// the dialog's start-up to its tree shown, and the time one tick on the
// largest category takes to reach every company in it, with the rules the
// dialog applies. Medians of the repetitions.
//
//   cmake --build build-bench --target recipient_dialog_bench
//   QT_QPA_PLATFORM=offscreen build-bench/bench/ui/recipient_dialog_bench [clients] [repetitions]
#include "context/AppContext.h"
#include "data/SamplePractice.h"
#include "data/databaseControl.h"
#include "platform/FieldTable.h"
#include "platform/errorClass.h"
#include "ui/frmSelectCompanies.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTreeView>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

// The category node with the most company nodes right below it.
ClientTreeNode* largestCategory(const ClientTreeNode* node, int& best, ClientTreeNode* found) {
    for (; node; node = node->next()) {
        int companies = 0;
        for (const ClientTreeNode* c = node->child(); c; c = c->next())
            companies += c->key().startsWith(QLatin1String("Company:")) ? 1 : 0;
        if (companies > best) {
            best = companies;
            found = const_cast<ClientTreeNode*>(node);
        }
        found = largestCategory(node->child(), best, found);
    }
    return found;
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const int clients = argc > 1 ? std::max(1, atoi(argv[1])) : 10000;
    const int repetitions = argc > 2 ? std::max(1, atoi(argv[2])) : 5;

    QTemporaryDir folder;
    const QString path = folder.path() + QStringLiteral("/practice.qmd");
    SamplePracticeOptions options;
    options.clients = clients;
    options.referenceDate = QDate(2024, 6, 1);
    SamplePractice::write(path, options);
    ScopedAppContext context;
    errorClass errors;
    databaseControl db;
    db.setErrorObject(&errors);
    db.setDatabasePath(path);
    db.connect();
    if (!db.isConnected()) {
        std::fprintf(stderr, "the sample practice could not be opened\n");
        return 1;
    }
    context->errors = &errors;
    context->database = &db;

    std::vector<double> shown;
    std::vector<double> ticked;
    int nodes = 0;
    int categorySize = 0;
    for (int r = 0; r < repetitions; ++r) {
        FieldTable ids(2);
        frmSelectCompanies dialog(ids);
        dialog.Initialize(1);
        dialog.show();
        QElapsedTimer clock;
        clock.start();
        dialog.startUp();
        QApplication::processEvents();
        shown.push_back(clock.nsecsElapsed() / 1e6);
        nodes = dialog.treeModel().count();

        int best = 0;
        ClientTreeNode* category = largestCategory(dialog.treeModel().firstRoot(), best, nullptr);
        categorySize = best;
        if (!category)
            continue;
        clock.restart();
        category->setChecked(true); // reaches the rules as a click in the view does
        QApplication::processEvents();
        ticked.push_back(clock.nsecsElapsed() / 1e6);
    }
    std::printf("clients %d, nodes %d\n", clients, nodes);
    std::printf("tree shown        %8.1f ms (median of %d)\n", median(shown), repetitions);
    std::printf("tick %5d clients %8.1f ms\n", categorySize, median(ticked));
    return 0;
}
