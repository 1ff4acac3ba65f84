// Draws the recipient dialog over a practice database into a PNG, for the
// picture in docs/. Run by scripts/screenshot-recipient-dialog.sh.
#include "app/MergeSession.h"
#include "data/modDatabaseFunctions.h"
#include "data/modSettings.h"
#include "platform/FieldTable.h"
#include "ui/frmSelectCompanies.h"

#include <QApplication>
#include <QPixmap>
#include <QTimer>
#include <QTreeView>
#include <cstdio>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: recipient-dialog-shot DATABASE OUTPUT.png\n");
        return 2;
    }
    MergeSession session(
        [](const QString& text) { std::fprintf(stderr, "%s\n", qPrintable(text)); });
    if (!session.openDatabase(QString::fromLocal8Bit(argv[1]))) {
        std::fprintf(stderr, "%s\n", qPrintable(session.databaseError()));
        return 2;
    }
    const int user = getDefaultUserID();
    if (user != -1) {
        session.context().currentUserID = user;
        initializeNameDisplayType(user);
    }
    FieldTable ids(2);
    frmSelectCompanies dialog(ids);
    if (!dialog.Initialize(3)) {
        return 1;
    }
    dialog.resize(460, 560);
    dialog.show();
    int status = 0;
    QTimer::singleShot(300, &dialog, [&] {
        dialog.startUp();
        // A client and one of its people ticked, the client open.
        auto* tree = dialog.findChild<QTreeView*>(QStringLiteral("tvwContacts"));
        QStandardItemModel& model = dialog.treeModel().model();
        QModelIndex category = model.index(0, 0);
        QModelIndex client;
        for (QModelIndex at = category; at.isValid() && !client.isValid();) {
            tree->expand(at);
            const QModelIndex first = model.index(0, 0, at);
            if (first.data(ClientTreeModel::KeyRole).toString().startsWith(u"Company:"))
                client = first;
            at = first;
        }
        if (client.isValid()) {
            model.itemFromIndex(client)->setCheckState(Qt::Checked);
            tree->expand(client);
        }
        QTimer::singleShot(300, &dialog, [&] {
            if (!dialog.grab().save(QString::fromLocal8Bit(argv[2]), "PNG")) {
                std::fprintf(stderr, "could not write %s\n", argv[2]);
                status = 1;
            }
            QApplication::quit();
        });
    });
    QApplication::exec();
    return status;
}
