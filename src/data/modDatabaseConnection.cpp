#include "data/modDatabaseConnection.h"

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"

#include <cstdio>

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
    if (!db->isConnected()) {
        // The box keeps its fixed sentence; the reason ("locked", "not a
        // database") goes to standard error, where support can read it.
        std::fprintf(stderr, "The companies database could not be opened: %s\n",
                     db->lastError().toLocal8Bit().constData());
        if (app().msgbox)
            app().msgbox->showMessage(companiesDatabaseFailureText(), MsgboxClass::KindFatal);
    }
    // Merging still works from a read-only file; the user learns up front
    // what it will not record.
    if (db->isReadOnly() && app().msgbox)
        app().msgbox->showMessage(db->readOnlyNotice(), MsgboxClass::KindNormal);
    return db;
}
