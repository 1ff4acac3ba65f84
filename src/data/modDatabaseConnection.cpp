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

QString serverDatabaseFailureText(const QString& reason) {
    return QStringLiteral("The companies database on the server could not be opened, so "
                          "letters cannot be merged until it can: %1")
        .arg(reason);
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
    if (!db->isConnected() && db->isServer()) {
        // A shared server that is down or refuses this seat must not keep a
        // practice from writing letters: the reason is shown and the
        // program goes on without merging.
        std::fprintf(stderr, "The companies database could not be opened: %s\n",
                     db->lastError().toLocal8Bit().constData());
        if (app().msgbox)
            app().msgbox->showMessage(serverDatabaseFailureText(db->lastError()),
                                      MsgboxClass::KindNormal);
    } else if (!db->isConnected()) {
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
