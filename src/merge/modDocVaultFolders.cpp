#include "merge/modDocVaultFolders.h"

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "files/clsWorkingFolderLocation.h"
#include "merge/MergeLookups.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/text/VBFormat.h"
#include "platform/text/stringControl.h"

#include <QDir>

namespace {

QString vaultRoot(const QString& root) {
    QString folder = root;
    if (folder.isEmpty() && app().workingFolders) {
        folder = app().workingFolders->getDocumentVaultRoot();
    }
    return folder.isEmpty() ? QString() : fileControl::AddBackslash(folder);
}

void makeFolder(const QString& folder) {
    if (!QDir().mkpath(folder)) {
        throw QmError(QmError::PathNotFound, QStringLiteral("Path not found: ") + folder);
    }
}

// Whether another client's row already names this folder; two clients
// whose names clean to the same text must not share one folder.
bool folderTakenByAnother(databaseControl& db, const QString& keyColumn, int id,
                          const QString& relative) {
    QString literal = relative;
    databaseControl::escapeSQLText(literal);
    const int rs = db.openRecordset(
        QStringLiteral("SELECT ClientDocumentStorage.FolderPath FROM ClientDocumentStorage WHERE "
                       "ClientDocumentStorage.FolderPath = '") +
        literal + QStringLiteral("' AND NOT (ClientDocumentStorage.") + keyColumn +
        QStringLiteral(" = ") + QString::number(id) + QStringLiteral(");"));
    bool taken = false;
    try {
        taken = db.hasRecords(rs);
    } catch (...) {
        db.closeRecordset(rs);
        throw;
    }
    db.closeRecordset(rs);
    return taken;
}

// A folder of the client's name that no other client's row holds:
// "Name", then "Name (2)", "Name (3)"...
QString freeFolderName(databaseControl& db, const QString& keyColumn, int id,
                       const QString& subfolder, const QString& clientName) {
    const QString name = cleanFolderName(clientName);
    QString relative = subfolder + name;
    for (int n = 2; folderTakenByAnother(db, keyColumn, id, relative); ++n) {
        relative = subfolder + name + QStringLiteral(" (") + QString::number(n) + QLatin1Char(')');
    }
    return relative;
}

// Steps shared by the business and personal folders: the stored folder while
// it exists, otherwise a folder of the current name, stored for next time.
QString clientFolder(const QString& keyColumn, int id, const QString& subfolder,
                     const QString& clientName, const QString& root) {
    databaseControl* db = app().database;
    if (!db || !db->isConnected()) {
        return QString();
    }
    const QString base = vaultRoot(root);
    // The client's own row, read by its key rather than the whole table.
    const int rs = db->openRecordset(
        QStringLiteral("SELECT ClientDocumentStorage.* FROM ClientDocumentStorage WHERE "
                       "ClientDocumentStorage.") +
            keyColumn + QStringLiteral(" = ") + QString::number(id) + QLatin1Char(';'),
        databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    QString result;
    try {
        const bool found = db->hasRecords(rs);
        if (found) {
            const QVariant stored = db->getField(rs, QStringLiteral("FolderPath"));
            if (!stringControl::isBlank(stored)) {
                const QString candidate = fileControl::AddBackslash(base + stored.toString());
                requireInsideVault(candidate, base);
                if (fileControl::FolderExists(candidate)) {
                    result = candidate;
                }
            }
        }
        if (result.isEmpty()) {
            const QString relative = freeFolderName(*db, keyColumn, id, subfolder, clientName);
            result = fileControl::AddBackslash(base + relative);
            requireInsideVault(result, base);
            makeFolder(result);
            if (found) {
                db->updateFieldNow(rs, QStringLiteral("FolderPath"), relative);
            } else {
                db->addNew(rs);
                db->setField(rs, keyColumn, id);
                db->setField(rs, QStringLiteral("FolderPath"), relative);
                db->saveRecord(rs);
            }
        }
    } catch (...) {
        db->closeRecordset(rs);
        throw;
    }
    db->closeRecordset(rs);
    return result;
}

} // namespace

void requireInsideVault(const QString& path, const QString& root) {
    const QString base = QDir::cleanPath(root);
    const QString clean = QDir::cleanPath(path);
    if (base.isEmpty() || clean == base || !fileControl::isBelowFolder(clean, base)) {
        throw QmError(QmError::PathFileAccessError,
                      QStringLiteral("The folder lies outside the document vault: ") + path);
    }
}

QString cleanFolderName(const QString& name) {
    static const QString forbidden = QStringLiteral("\\/:*?\"<>|");
    QString out;
    out.reserve(name.size());
    for (const QChar c : name) {
        out += forbidden.contains(c) || c.unicode() < 32 ? QChar(u'_') : c;
    }
    while (!out.isEmpty() && (out.front() == QLatin1Char(' ') || out.front() == QLatin1Char('.'))) {
        out.remove(0, 1);
    }
    while (!out.isEmpty() && (out.back() == QLatin1Char(' ') || out.back() == QLatin1Char('.'))) {
        out.chop(1);
    }
    return out.isEmpty() ? QStringLiteral("_") : out;
}

QString getBusinessClientDocFolder(int clientDataID, const QString& root) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-modDocVaultFolders-getBusinessClientDocFolder");
    return clientFolder(QStringLiteral("ClientDataNum"), clientDataID, QString(),
                        MergeLookups::getCompanyNameFromClientDataID(clientDataID), root);
}

QString getPersonalClientDocFolder(int contactID, const QString& root) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-modDocVaultFolders-getPersonalClientDocFolder");
    return clientFolder(QStringLiteral("ContactNum"), contactID,
                        QStringLiteral("Personal Tax Clients/"),
                        MergeLookups::getDisplayNameFromContactID(contactID), root);
}

QString getMiscAppointmentsFolder(const QString& root) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-modDocVaultFolders-getMiscAppointmentsFolder");
    const QString folder =
        vaultRoot(root) + QStringLiteral("Quillmere Merge Appointment Documents");
    if (!fileControl::FolderExists(folder)) {
        makeFolder(folder);
    }
    return folder;
}

QString parseMergeFileName(const QString& name, int fileSaveType, int documentType,
                           InformationKind informationType) {
    QString rest = name;
    for (const char* prefix :
         {"Merge Template - ", "Merge Template -", "Merge Template ", "Merge Template",
          "Merge Results - ", "Merge Results -", "Merge Results ", "Merge Results"}) {
        rest.remove(QString::fromLatin1(prefix), Qt::CaseSensitive);
    }
    QString fileName = VBFormat::formatDate(app().clock.today(), QStringLiteral("mmm d yyyy")) +
                       QStringLiteral(" - ") + rest;
    if (fileSaveType == 1) {
        if (fileName.right(4).toUpper() != QLatin1String(".TXT")) {
            fileName += QStringLiteral(".txt");
        }
        return fileName;
    }
    QString word;
    switch (documentType) {
    case 1:
        word = QStringLiteral("rtf");
        break;
    case 2:
        switch (informationType) {
        case InformationKind::Companies:
        case InformationKind::CompaniesAndContacts:
            word = QStringLiteral("qmb");
            break;
        case InformationKind::Contacts:
            word = QStringLiteral("qme");
            break;
        case InformationKind::Tasks:
            word = QStringLiteral("qmt");
            break;
        case InformationKind::Appointments:
            word = QStringLiteral("qma");
            break;
        default:
            break;
        }
        break;
    case 3:
    case 4:
        word = QStringLiteral("qmw");
        break;
    default:
        break;
    }
    if (fileName.right(4).toUpper() != (QLatin1Char('.') + word).toUpper()) {
        fileName += QLatin1Char('.') + word;
    }
    return fileName;
}
