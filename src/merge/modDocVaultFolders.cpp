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
#include <QDirIterator>

namespace {

QString vaultRoot(const QString& root) {
    QString folder = root;
    if (folder.isEmpty() && app().workingFolders) {
        folder = app().workingFolders->getDocumentVaultRoot();
    }
    return folder.isEmpty() ? QString() : fileControl::AddBackslash(folder);
}

QString clientKey(const QString& keyColumn, int id) {
    return keyColumn + QLatin1Char(':') + QString::number(id);
}

// Steps shared by the business and personal folders: the stored folder while
// it exists, otherwise a folder of the current name, stored for next time.
ClientFolderPlan planClientFolder(const QString& keyColumn, int id, const QString& subfolder,
                                  const QString& clientName, const QString& root,
                                  DocVaultIndex& index) {
    ClientFolderPlan plan;
    plan.keyColumn = keyColumn;
    plan.id = id;
    const QString base = vaultRoot(root);
    const std::optional<QString> stored = index.storedFolder(keyColumn, id);
    if (stored && !stringControl::isBlank(*stored)) {
        const QString candidate = fileControl::AddBackslash(base + *stored);
        requireInsideVault(candidate, base);
        plan.storedChecked = candidate;
        plan.comparedStored = fileControl::AddBackslash(QDir::cleanPath(candidate));
        if (index.folderExists(candidate)) {
            plan.folder = candidate;
            return plan;
        }
    }
    QString relative = subfolder + cleanFolderName(clientName);
    const QString name = relative;
    plan.namesTried << relative;
    for (int n = 2; index.takenByAnother(keyColumn, id, relative); ++n) {
        relative = name + QStringLiteral(" (") + QString::number(n) + QLatin1Char(')');
        plan.namesTried << relative;
    }
    plan.folder = fileControl::AddBackslash(base + relative);
    requireInsideVault(plan.folder, base);
    plan.mustMake = true;
    plan.comparedFolder = fileControl::AddBackslash(QDir::cleanPath(plan.folder));
    plan.relative = relative;
    plan.hasRow = stored.has_value();
    plan.rowIsCurrent = stored && *stored == relative;
    return plan;
}

QString clientFolder(const QString& keyColumn, int id, const QString& subfolder,
                     const QString& clientName, const QString& root, DocVaultIndex* index) {
    databaseControl* db = app().database;
    if (!db || !db->isConnected()) {
        return QString();
    }
    std::optional<DocVaultIndex> ownIndex;
    if (!index) {
        index = &ownIndex.emplace(*db);
    }
    const ClientFolderPlan plan =
        planClientFolder(keyColumn, id, subfolder, clientName, root, *index);
    if (plan.mustMake) {
        makeVaultFolder(plan.folder);
        completeClientDocFolder(plan, *index);
    }
    return plan.folder;
}

} // namespace

DocVaultIndex::DocVaultIndex(databaseControl& db) {
    const int rs = db.openRecordset(QStringLiteral(
        "SELECT ClientDocumentStorage.ClientDataNum, ClientDocumentStorage.ContactNum, "
        "ClientDocumentStorage.FolderPath FROM ClientDocumentStorage ORDER BY "
        "ClientDocumentStorage.ClientDocumentStorageID;"));
    try {
        while (db.hasRecords(rs) && !db.isEOF(rs)) {
            const QString folder = db.getField(rs, QStringLiteral("FolderPath")).toString();
            for (const QString& column :
                 {QStringLiteral("ClientDataNum"), QStringLiteral("ContactNum")}) {
                const QVariant id = db.getField(rs, column);
                if (!stringControl::isBlank(id)) {
                    const QString key = clientKey(column, id.toInt());
                    // The first row of a client is the one its lookups find.
                    if (!m_folderByClient.contains(key)) {
                        m_folderByClient.insert(key, folder);
                    }
                    if (!m_clientByFolder.contains(folder)) {
                        m_clientByFolder.insert(folder, key);
                    }
                }
            }
            db.moveNext(rs);
        }
    } catch (...) {
        db.closeRecordset(rs);
        throw;
    }
    db.closeRecordset(rs);
}

std::optional<QString> DocVaultIndex::storedFolder(const QString& keyColumn, int id) const {
    const auto found = m_folderByClient.constFind(clientKey(keyColumn, id));
    if (found == m_folderByClient.constEnd()) {
        return std::nullopt;
    }
    return *found;
}

bool DocVaultIndex::takenByAnother(const QString& keyColumn, int id,
                                   const QString& relative) const {
    const QString own = clientKey(keyColumn, id);
    const auto holder = m_clientByFolder.constFind(relative);
    return holder != m_clientByFolder.constEnd() && *holder != own;
}

void DocVaultIndex::remember(const QString& keyColumn, int id, const QString& relative) {
    const QString key = clientKey(keyColumn, id);
    m_folderByClient.insert(key, relative);
    m_clientByFolder.insert(relative, key);
}

namespace {

// A folder path as its parent and its own name, without "." or "..".
std::pair<QString, QString> parentAndName(const QString& folder) {
    const QString clean = QDir::cleanPath(folder);
    const qsizetype slash = clean.lastIndexOf(u'/');
    if (slash < 0) {
        return {QStringLiteral("."), clean};
    }
    return {slash == 0 ? QStringLiteral("/") : clean.left(slash), clean.mid(slash + 1)};
}

} // namespace

bool DocVaultIndex::folderExists(const QString& folder) {
    if (!m_listsFolders) {
        return fileControl::FolderExists(folder);
    }
    const auto [parent, name] = parentAndName(folder);
    if (name.isEmpty() || name == QLatin1String("..")) {
        return fileControl::FolderExists(folder);
    }
    auto listed = m_foldersIn.find(parent);
    if (listed == m_foldersIn.end()) {
        QSet<QString> names;
        // Links to folders count, as the disk's own answer follows them.
        QDirIterator it(parent, QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
        while (it.hasNext()) {
            it.next();
            names.insert(it.fileName());
        }
        listed = m_foldersIn.emplace(parent, std::move(names));
    }
    return listed->contains(name);
}

void DocVaultIndex::noteFolder(const QString& folder) {
    if (!m_listsFolders) {
        return;
    }
    // Its parents were made with it; those already listed learn of them.
    QString path = folder;
    for (;;) {
        const auto [parent, name] = parentAndName(path);
        if (name.isEmpty() || name == QLatin1String("..") || parent == path) {
            return;
        }
        if (const auto listed = m_foldersIn.find(parent); listed != m_foldersIn.end()) {
            listed->insert(name);
        }
        if (parent == QLatin1String("/") || parent == QLatin1String(".")) {
            return;
        }
        path = parent;
    }
}

bool planReadsWhatCompletes(const ClientFolderPlan& later, const ClientFolderPlan& earlier) {
    if (!earlier.mustMake) {
        return false;
    }
    if (earlier.keyColumn == later.keyColumn && earlier.id == later.id) {
        return true;
    }
    if (later.namesTried.contains(earlier.relative)) {
        return true;
    }
    if (later.storedChecked.isEmpty()) {
        return false;
    }
    // Making a folder makes its parents too.
    return earlier.comparedFolder.startsWith(later.comparedStored);
}

void makeVaultFolder(const QString& folder) {
    if (!QDir().mkpath(folder)) {
        throw QmError(QmError::PathNotFound, QStringLiteral("Path not found: ") + folder);
    }
}

void completeClientDocFolder(const ClientFolderPlan& plan, DocVaultIndex& index) {
    if (!plan.mustMake) {
        return;
    }
    index.noteFolder(plan.folder);
    databaseControl* db = app().database;
    if (!db || !db->isConnected()) {
        throw QmError(QmError::Internal,
                      QStringLiteral("The database closed while the vault folders were made."));
    }
    if (db->isReadOnly() || plan.rowIsCurrent) {
        // The letter is still filed; only the record of its folder waits for
        // a connection that may write (the user was told on connecting). A
        // row that already names this folder (a new vault root, a folder
        // removed by hand) needs no write.
        index.remember(plan.keyColumn, plan.id, plan.relative);
        return;
    }
    // The client's own row, opened by its key for the write. A client the
    // index has no row for gets one without a search: the column has no
    // index, and a first merge would otherwise read the table once a client.
    const QString where = plan.hasRow ? QStringLiteral("ClientDocumentStorage.") + plan.keyColumn +
                                            QStringLiteral(" = ") + QString::number(plan.id)
                                      : QStringLiteral("1 = 0");
    const int rs = db->openRecordset(
        QStringLiteral("SELECT ClientDocumentStorage.* FROM ClientDocumentStorage WHERE ") + where +
            QLatin1Char(';'),
        databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    try {
        if (db->hasRecords(rs)) {
            db->updateFieldNow(rs, QStringLiteral("FolderPath"), plan.relative);
        } else {
            db->addNew(rs);
            db->setField(rs, plan.keyColumn, plan.id);
            db->setField(rs, QStringLiteral("FolderPath"), plan.relative);
            db->saveRecord(rs);
        }
    } catch (...) {
        db->closeRecordset(rs);
        throw;
    }
    db->closeRecordset(rs);
    index.remember(plan.keyColumn, plan.id, plan.relative);
}

ClientFolderPlan planBusinessClientDocFolder(int clientDataID, const QString& root,
                                             DocVaultIndex& index) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-modDocVaultFolders-getBusinessClientDocFolder");
    return planClientFolder(QStringLiteral("ClientDataNum"), clientDataID, QString(),
                            MergeLookups::getCompanyNameFromClientDataID(clientDataID), root,
                            index);
}

ClientFolderPlan planPersonalClientDocFolder(int contactID, const QString& root,
                                             DocVaultIndex& index) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-modDocVaultFolders-getPersonalClientDocFolder");
    return planClientFolder(QStringLiteral("ContactNum"), contactID,
                            QStringLiteral("Personal Tax Clients/"),
                            MergeLookups::getDisplayNameFromContactID(contactID), root, index);
}

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

QString getBusinessClientDocFolder(int clientDataID, const QString& root, DocVaultIndex* index) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-modDocVaultFolders-getBusinessClientDocFolder");
    return clientFolder(QStringLiteral("ClientDataNum"), clientDataID, QString(),
                        MergeLookups::getCompanyNameFromClientDataID(clientDataID), root, index);
}

QString getPersonalClientDocFolder(int contactID, const QString& root, DocVaultIndex* index) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-modDocVaultFolders-getPersonalClientDocFolder");
    return clientFolder(QStringLiteral("ContactNum"), contactID,
                        QStringLiteral("Personal Tax Clients/"),
                        MergeLookups::getDisplayNameFromContactID(contactID), root, index);
}

QString getMiscAppointmentsFolder(const QString& root) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-modDocVaultFolders-getMiscAppointmentsFolder");
    QString folder = vaultRoot(root) + QStringLiteral("Quillmere Merge Appointment Documents");
    if (!fileControl::FolderExists(folder)) {
        makeVaultFolder(folder);
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
