#include "app/Commands.h"
#include "data/clsPopulateClientTree.h"
#include "data/modDatabaseFunctions.h"
#include "data/modSettings.h"
#include "app/MergeSession.h"
#include "platform/tree/ClientTreeModel.h"

namespace {

// The modes of the recipient dialog: a company merge ticks clients, a merge
// with specified contacts ticks clients and their contacts, a contact merge
// ticks people anywhere in the ledger.
bool applyMode(const QString& mode, clsPopulateClientTree& tree) {
    if (mode == QLatin1String("companies"))
        tree.setShowOnlyQuillmereCompanies(true);
    else if (mode == QLatin1String("company-contacts"))
        tree.setShowOnlyQuillmereCompaniesAndContacts(true);
    else if (mode == QLatin1String("personal"))
        tree.setShowOnlyPersonalTaxClients(true);
    else if (mode == QLatin1String("firm"))
        tree.setShowOnlyFirm(true);
    else if (mode == QLatin1String("categories"))
        tree.setShowOnlyCategories(true);
    else if (mode != QLatin1String("contacts") && mode != QLatin1String("all"))
        return false;
    return true;
}

void print(const ClientTreeNode* node, int depth, QTextStream& out) {
    for (; node; node = node->next()) {
        out << QString(depth * 2, u' ') << node->key() << '\t' << node->text() << '\n';
        print(node->child(), depth + 1, out);
    }
}

} // namespace

// quillmere-pad tree --database DB [--mode MODE]
int runTreeCommand(const QStringList& args, CommandIO& io) {
    const auto database = optionValue(args, QStringLiteral("--database"));
    const QString mode =
        optionValue(args, QStringLiteral("--mode")).value_or(QStringLiteral("all"));
    if (!database || !positionalArguments(args, {"--database", "--mode"}).isEmpty()) {
        io.err << "Usage: quillmere-pad tree --database DB "
                  "[--mode companies|contacts|company-contacts|personal|firm|categories|all]\n";
        return 2;
    }
    clsPopulateClientTree tree;
    if (!applyMode(mode, tree)) {
        io.err << "Unknown mode: " << mode << '\n';
        return 2;
    }
    MergeSession session([&io](const QString& text) { io.err << text << '\n'; });
    if (!session.openDatabase(*database)) {
        io.err << "The database could not be opened: " << session.databaseError() << '\n';
        return 2;
    }
    ClientTreeModel model;
    try {
        // Names follow the default user's choice, as they do at start-up.
        const int user = getDefaultUserID();
        if (user != -1) {
            session.context().currentUserID = user;
            initializeNameDisplayType(user);
        }
        tree.setTreeViewControl(&model);
        tree.populateContactLedgerTree(false);
        tree.destroyRecordSets();
    } catch (const QmError& fault) {
        io.err << fault.description() << '\n';
        return 2;
    }
    print(model.firstRoot(), 0, io.out);
    return 0;
}
