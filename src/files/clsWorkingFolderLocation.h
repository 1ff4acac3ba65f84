#pragma once

#include "files/clsINI.h"

#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>

// Where the program keeps its working data, and the one source of every
// folder path of the program: working folder, data folder, backups,
// templates, pictures, backgrounds and the client document vault.
//
// Three well-known candidates are tried in order (per-user roaming data,
// per-user local data, all-users data), plus a custom folder. Each is judged
// by really writing to it, because mode bits do not tell what a restricted
// user may do. The choice is remembered in the guide file "vnguidepath.dni"
// in the local candidate's "Quillmere" folder.
//
// All folder paths handed out end in the path separator.
class clsWorkingFolderLocation {
public:
    // Permission bits of a candidate folder.
    enum Permission : std::uint8_t {
        ReadPermission = 1,
        WritePermission = 2,
        CreateFolderPermission = 4,
        FullPermission = 7,
    };

    static constexpr int RoamingPath = 1;
    static constexpr int LocalPath = 2;
    static constexpr int CommonPath = 3;
    static constexpr int CustomPath = 4;

    static constexpr const char* ProgramFolderName = "Quillmere";
    static constexpr const char* GuideFileName = "vnguidepath.dni";
    static constexpr const char* GuideSection = "APP_DATA Path";
    static constexpr const char* GuideNumberKey = "APP_DATA Path Number";
    static constexpr const char* GuideCustomKey = "APP_DATA Custom Path";
    static constexpr const char* SettingsFileName = "Qminiqmd.dni";
    static constexpr const char* DatabaseFileName = "Data.qmd";
    static constexpr const char* MarkerFileName = "vntflini.lmd";

    // The files carried from an older installation's folder, in the order
    // they are handled, with the subfolder of the working folder they go to
    // (empty: the working folder itself).
    struct MovedFile {
        const char* name;
        const char* subfolder;
    };
    static const std::array<MovedFile, 14>& movedFiles();

    // Reads the special folders of this user; nothing is created or tested.
    clsWorkingFolderLocation();

    // --- Working folder ---------------------------------------------------

    // Decides the working folder, creates it, and on a user's first start
    // (no guide file yet) records the choice and carries older data over.
    // Never fails: with no usable candidate the local folder is used.
    QString getInitialAppWorkingDataFolder();
    // The working folder as found (or as put by a host).
    QString getApplicationWorkingFolder() const { return m_workingFolder; }
    // A host hands over its own working folder; nothing is tested or moved.
    void putApplicationWorkingFolder(const QString& folder);
    int getPathNumber() const { return m_pathNumber; }

    // The base folder of candidate 1 to 4; empty for any other number and for
    // a custom path that was never set.
    QString getAPP_DATAPath(int pathNumber) const;
    // The custom folder (candidate 4), as the options dialog sets it before
    // changeWorkingFilesFolder(4).
    void putCustomPath(const QString& folder);
    // The guide file's full path.
    QString getGuideFilePath() const;

    // Moves the working files to candidate `pathNumber` and makes it the
    // working folder. False when nothing was moved: the same candidate, a
    // custom folder that does not exist, or a failed copy.
    bool changeWorkingFilesFolder(int pathNumber);

    // --- Permissions ------------------------------------------------------

    void determinReadWritePermissionsForAPP_DATAFolders();
    void determinReadWritePermissionsForMyDocuemntsFolders();
    // The permission byte of candidate 1 to 4 (0 for others).
    std::uint8_t getPermissions(int pathNumber) const;
    std::uint8_t getMyDocumentsPermissions() const { return m_myDocumentsPermissions; }
    // Writes and removes a test file and a test folder in `folder`; the
    // result has a bit for each step that really worked. Never throws.
    static std::uint8_t testFolderPermissions(const QString& folder);

    static bool HasReadPermission(std::uint8_t permissions) { return permissions & ReadPermission; }
    static bool HasWritePermission(std::uint8_t permissions) {
        return permissions & WritePermission;
    }
    static bool HasCreateFolderPermission(std::uint8_t permissions) {
        return permissions & CreateFolderPermission;
    }

    // The text the options dialog shows for a candidate. Candidates whose
    // permissions were not tested yet are tested first.
    QString getReadWriteStringValue(int pathNumber);
    static QString readWriteText(std::uint8_t permissions);

    // --- Data folder ------------------------------------------------------

    // The folder of the client database. A database file recorded in the
    // settings that lies in the program's folder or in a candidate folder is
    // copied to the default data folder, and both programs' `dataLocation`
    // keys are pointed at the copy. Creates the backups folder.
    QString getInitialDatabaseDataFolder();
    // My Documents + "Quillmere Files/Data/", or the working folder's "Data/"
    // when My Documents cannot be fully used.
    QString getDefaultDatabaseDataFolder();
    QString getDataFolder() const { return m_dataFolder; }
    // A host hands over the folder of its database.
    void putDataFolder(const QString& folder);
    QString getBackupsFolder() const { return m_backupsFolder; }

    // --- Templates, pictures, backgrounds, vault --------------------------

    // Settles the templates, pictures and backgrounds folders at start-up,
    // carrying them out of the program's folder where an older installation
    // left them. Needs the settings file to be set already.
    void initializeTemplatesAndPicturesFolders();
    QString getTemplatesFolder() const { return m_templatesFolder; }
    // Stores the folder here and in the settings (`TemplatesFolderLocation`).
    void putTemplatesFolder(const QString& folder);
    QString getPicturesFolder() const { return m_picturesFolder; }
    QString getBackgroundsFolder() const { return m_backgroundsFolder; }
    QString getDefaultTemplatesFolder() const;
    QString getDefaultPicturesFolder() const;
    QString getDefaultBackgroundsFolder() const;
    // Root of the per-client folders of merged documents.
    QString getDocumentVaultRoot() const;
    QString getMyDocumentsFolder() const { return m_myDocuments; }

    // --- The program itself -----------------------------------------------

    QString getAppFolder() const;
    QString getAppEXEName() const;
    QString getAppFileName() const;
    QString getAppFullPath() const;

    // --- Private-profile access on a given file ---------------------------

    void setKeyValue(const QString& section, const QString& key, const QString& value,
                     const QString& file);
    // Writes the default back when the key is missing or empty.
    QString getKeyString(const QString& section, const QString& key, const QString& defaultValue,
                         const QString& file);

private:
    int findOptimumAPP_DATALocation() const;
    void recordAppWorkingDataFolderInINI();
    void checkToSeeIfNeedToMoveAppWorkingDataFolder();
    bool moveWorkingFilesToProgramDataFolder(const QString& from, const QString& to);
    QString workingFolderFor(int pathNumber, bool appendToCustom) const;
    void ensurePermissionsKnown();
    void writeDataLocation(const QString& path, const QStringList& sections,
                           const QString& settingsFile);
    void moveOldPictureFolders();

    std::array<QString, 4> m_paths;
    std::array<std::uint8_t, 4> m_permissions{};
    std::uint8_t m_myDocumentsPermissions = 0;
    bool m_permissionsKnown = false;
    bool m_myDocumentsPermissionsKnown = false;

    QString m_myDocuments;
    QString m_workingFolder;
    int m_pathNumber = RoamingPath;
    QString m_dataFolder;
    QString m_backupsFolder;
    QString m_templatesFolder;
    QString m_picturesFolder;
    QString m_backgroundsFolder;

    // Profile access for the guide file and the marker file; never given a
    // file of its own, every call names the file.
    clsINI m_profile;
};
