#pragma once

#include "context/DocumentKinds.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <optional>

class databaseControl;

// The rows of ClientDocumentStorage read once, for a walk that files many
// letters: the table has no index, so a lookup per letter would scan it per
// letter. The folder functions keep it up to date with the rows they write.
class DocVaultIndex {
public:
    // Reads every row; database faults pass as QmError.
    explicit DocVaultIndex(databaseControl& db);

    // The stored folder of a client (keyColumn "ClientDataNum" or
    // "ContactNum"); nullopt when the client has no row.
    std::optional<QString> storedFolder(const QString& keyColumn, int id) const;
    // Whether a row of another client holds this folder.
    bool takenByAnother(const QString& keyColumn, int id, const QString& relative) const;
    void remember(const QString& keyColumn, int id, const QString& relative);

    // From now on, whether a client's folder is on disk is answered from one
    // listing of its parent folder, read the first time that parent is asked
    // about, rather than by asking the disk for every letter. For a walk
    // that owns the vault while it runs: folders it makes are noted as made
    // (noteFolder); a folder made or removed by other hands meanwhile is
    // seen only by the next walk.
    void listFolders() { m_listsFolders = true; }
    bool folderExists(const QString& folder);
    void noteFolder(const QString& folder);

private:
    QHash<QString, QString> m_folderByClient; // "ClientDataNum:12" -> folder
    QHash<QString, QString> m_clientByFolder; // folder -> first client holding it
    bool m_listsFolders = false;
    QHash<QString, QSet<QString>> m_foldersIn; // parent folder -> its subfolders' names
};

// The document vault: one folder per client below a root, remembered in
// ClientDocumentStorage (paths relative to the root), and the names of
// merged files. Every function takes the vault root; an empty root means
// the working folders' vault root (app().workingFolders).
//
// Without a database connection the folder functions return an empty
// string. A folder that cannot be made raises QmError PathNotFound. A
// stored folder that resolves outside the root raises QmError
// PathFileAccessError and nothing is written. A new folder takes the client's
// cleaned name, or "Name (2)", "Name (3)"... when another client's row
// already holds that name.

// With an index, the rows are read from it rather than the table.
QString getBusinessClientDocFolder(int clientDataID, const QString& root = QString(),
                                   DocVaultIndex* index = nullptr);
QString getPersonalClientDocFolder(int contactID, const QString& root = QString(),
                                   DocVaultIndex* index = nullptr);
QString getMiscAppointmentsFolder(const QString& root = QString());

// The same lookups in two steps, for a walk that makes new folders on
// another thread: the plan finds the folder and whether it must be made,
// writing neither disk nor table; once the folder has been made
// (makeVaultFolder), completeClientDocFolder writes its row and tells the
// index. The database must be connected for both steps. A folder that could
// not be made is not completed, as the one-step functions leave it. A plan
// made while earlier plans are still to be completed is the one the
// one-step functions would give unless planReadsWhatCompletes says
// otherwise for one of them.
struct ClientFolderPlan {
    QString folder; // with a trailing separator
    bool mustMake = false;
    QString keyColumn;
    int id = 0;
    QString relative;
    bool hasRow = false;       // the client has a row to update
    bool rowIsCurrent = false; // ...which already names this folder
    // What the plan read: the stored folder it looked for on disk (empty
    // when there was none) and the names it tried, in their order.
    QString storedChecked;
    QStringList namesTried;
    // The two paths above as planReadsWhatCompletes compares them (no "."
    // or "..", a trailing separator), worked out once by the plan: a walk
    // compares each plan with every plan still open.
    QString comparedFolder;
    QString comparedStored;
};
ClientFolderPlan planBusinessClientDocFolder(int clientDataID, const QString& root,
                                             DocVaultIndex& index);
ClientFolderPlan planPersonalClientDocFolder(int contactID, const QString& root,
                                             DocVaultIndex& index);
// Whether `later`, planned before `earlier` was completed, may have read
// what completing it changes: the same client, a stored folder that is the
// new one or one of its parents, or the new folder's name among the names
// it tried.
// When false for every earlier plan still open, `later` stands as planned.
bool planReadsWhatCompletes(const ClientFolderPlan& later, const ClientFolderPlan& earlier);
// Raises QmError PathNotFound when the folder cannot be made.
void makeVaultFolder(const QString& folder);
// Database faults pass as QmError; the index is then left as it was.
void completeClientDocFolder(const ClientFolderPlan& plan, DocVaultIndex& index);

// Raises QmError PathFileAccessError unless `path` lies strictly below
// `root` once "." and ".." are resolved.
void requireInsideVault(const QString& path, const QString& root);

// "mmm d yyyy - " + the template's name without its "Merge Template" or
// "Merge Results" prefixes, with the extension of the document kind.
QString parseMergeFileName(const QString& name, int fileSaveType, int documentType,
                           InformationKind informationType);

// A client's name made usable as a single folder name: characters that no
// file system takes and path separators become "_", leading and trailing
// blanks and dots go; an empty result becomes "_".
QString cleanFolderName(const QString& name);
