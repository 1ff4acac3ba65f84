#include "data/modDatabaseConnection.h"

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"

QString companiesDatabaseFailureText() {
    return QStringLiteral(
        "The Quillmere Pad was not able to access the companies database and needs to close.");
}

std::unique_ptr<databaseControl> openCompaniesDatabase(const QString& path) {
    ProcedureScope scope(app().errors,
                         QStringLiteral("QuillmerePad.exe-modMain-openCompaniesDatabase"));
    auto db = std::make_unique<databaseControl>();
    if (db->isConnected())
        db->disconnect();
    db->setErrorObject(app().errors);
    db->setOwnerWindow(nullptr);
    db->setApplicationTitle(QStringLiteral("Quillmere Pad"));
    db->setNumberedSetting(2);
    db->setDatabasePath(path);
    db->setNumberedSetting(3);
    db->setNumberedSetting(2);
    db->connect();
    // The reason goes under the fixed sentence: "locked" and "not a
    // database" call for different remedies.
    if (!db->isConnected() && app().msgbox)
        app().msgbox->showMessage(companiesDatabaseFailureText() + QStringLiteral("\n\n") +
                                      db->lastError(),
                                  MsgboxClass::KindFatal);
    return db;
}
