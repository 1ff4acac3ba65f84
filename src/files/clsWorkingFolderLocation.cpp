#include "files/clsWorkingFolderLocation.h"

#include "context/AppContext.h"
#include "platform/SpecialFolders.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"

#include <QCoreApplication>
#include <QCursor>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>

namespace {

const QString kModule = QStringLiteral("QuillmerePad.exe-clsWorkingFolderLocation-");

QString tagOf(const char* procedure) {
    return kModule + QLatin1String(procedure);
}

QString slashed(const QString& path) {
    return path.isEmpty() ? path : fileControl::AddBackslash(path);
}

bool samePath(const QString& a, const QString& b) {
    return QDir::cleanPath(a).toUpper() == QDir::cleanPath(b).toUpper();
}

// The mode bits' counterpart of a read-only attribute: nobody may write.
bool isReadOnlyFolder(const QFileInfo& info) {
    // Only the mode bits: the "user" bits answer for the caller, and for
    // root they are always set.
    const auto writeBits =
        QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther;
    return (info.permissions() & writeBits) == 0;
}

} // namespace

const std::array<clsWorkingFolderLocation::MovedFile, 14>& clsWorkingFolderLocation::movedFiles() {
    static const std::array<MovedFile, 14> table = {{
        {"Qminiqmd.dni", ""},
        {"Qmlocalf5.lmd", ""},
        {"Data.qmd", "Data"},
        {"qmsfile5.sif", ""},
        {"qmpfile5.psf", ""},
        {"qmsync4.osf", ""},
        {"qmcoldktfgd.fgd", ""},
        {"qmcolfgd.fgd", ""},
        {"qmcolivcfgd.fgd", ""},
        {"qmcolptgd.fgd", ""},
        {"qmsrtdktfgd.fgd", ""},
        {"qmsrtfgd.fgd", ""},
        {"qmsrtivcfgd.fgd", ""},
        {"qmsrtptgd.fgd", ""},
    }};
    return table;
}

clsWorkingFolderLocation::clsWorkingFolderLocation() {
    m_paths[0] = SpecialFolders::roamingAppData();
    m_paths[1] = SpecialFolders::localAppData();
    m_paths[2] = SpecialFolders::commonAppData();
    m_myDocuments = SpecialFolders::myDocuments();
    m_workingFolder = workingFolderFor(RoamingPath, false);
}

QString clsWorkingFolderLocation::getAPP_DATAPath(int pathNumber) const {
    if (pathNumber < RoamingPath || pathNumber > CustomPath) {
        return {};
    }
    return m_paths[static_cast<std::size_t>(pathNumber - 1)];
}

void clsWorkingFolderLocation::putCustomPath(const QString& folder) {
    m_paths[3] = slashed(folder);
    m_permissions[3] = 0;
    if (m_permissionsKnown && !m_paths[3].isEmpty()) {
        m_permissions[3] = testFolderPermissions(m_paths[3]);
    }
}

QString clsWorkingFolderLocation::getGuideFilePath() const {
    return workingFolderFor(LocalPath, false) + QLatin1String(GuideFileName);
}

// The working folder a candidate stands for. The well-known ones get the
// program's own subfolder. The custom one is used as it stands at start-up,
// but a move into it (appendToCustom) adds the subfolder unless the path
// already ends in it.
QString clsWorkingFolderLocation::workingFolderFor(int pathNumber, bool appendToCustom) const {
    const QString base = getAPP_DATAPath(pathNumber);
    const QString sub = QLatin1String(ProgramFolderName) + QLatin1Char('/');
    if (pathNumber != CustomPath) {
        return base + sub;
    }
    if (!appendToCustom || base.toUpper().endsWith(QLatin1Char('/') + sub.toUpper())) {
        return base;
    }
    return base + sub;
}

void clsWorkingFolderLocation::putApplicationWorkingFolder(const QString& folder) {
    m_workingFolder = slashed(folder);
}

// --- Permissions ---------------------------------------------------------

std::uint8_t clsWorkingFolderLocation::testFolderPermissions(const QString& folder) {
    if (folder.isEmpty()) {
        return 0;
    }
    const QFileInfo info(folder);
    if (!info.isDir() || isReadOnlyFolder(info)) {
        return 0;
    }
    std::uint8_t result = ReadPermission;

    const QString base = slashed(folder);
    const QString testFile = base + QStringLiteral("test.tmp");
    if (QFileInfo::exists(testFile)) {
        QFile::remove(testFile);
    }
    // A probe, written and removed at once: it needs no flush to the disk,
    // which would cost every start several disk syncs.
    const QByteArray probe = QByteArrayLiteral("Hello World\r\n");
    QFile file(testFile);
    bool written = file.open(QIODevice::WriteOnly) && file.write(probe) == probe.size();
    file.close();
    written = written && file.error() == QFileDevice::NoError;
    if (written && fileControl::FileExists(testFile)) {
        result |= WritePermission;
    }
    // A failed write (a full disk) may still have left the file.
    if (QFileInfo::exists(testFile)) {
        QFile::remove(testFile);
    }

    const QString testFolder = base + QStringLiteral("test123");
    if (QFileInfo::exists(testFolder)) {
        QDir(testFolder).removeRecursively();
    }
    if (QDir().mkdir(testFolder) && fileControl::FolderExists(testFolder)) {
        result |= CreateFolderPermission;
        QDir().rmdir(testFolder);
    }
    return result;
}

void clsWorkingFolderLocation::determinReadWritePermissionsForAPP_DATAFolders() {
    ProcedureScope scope(app().errors, tagOf("determinReadWritePermissionsForAPP_DATAFolders"));
    // The per-user folders are meant to exist; on a fresh account nobody may
    // have made them yet, and that must not disqualify them.
    for (int n : {RoamingPath, LocalPath}) {
        const QString base = getAPP_DATAPath(n);
        if (!base.isEmpty() && !QFileInfo::exists(base)) {
            QDir().mkpath(base);
        }
    }
    for (std::size_t i = 0; i < m_paths.size(); ++i) {
        m_permissions[i] = testFolderPermissions(m_paths[i]);
    }
    m_permissionsKnown = true;
}

void clsWorkingFolderLocation::determinReadWritePermissionsForMyDocuemntsFolders() {
    ProcedureScope scope(app().errors, tagOf("determinReadWritePermissionsForMyDocuemntsFolders"));
    m_myDocumentsPermissions = testFolderPermissions(m_myDocuments);
    m_myDocumentsPermissionsKnown = true;
}

std::uint8_t clsWorkingFolderLocation::getPermissions(int pathNumber) const {
    if (pathNumber < RoamingPath || pathNumber > CustomPath) {
        return 0;
    }
    return m_permissions[static_cast<std::size_t>(pathNumber - 1)];
}

void clsWorkingFolderLocation::ensurePermissionsKnown() {
    if (!m_permissionsKnown) {
        determinReadWritePermissionsForAPP_DATAFolders();
    }
}

QString clsWorkingFolderLocation::readWriteText(std::uint8_t permissions) {
    const bool read = HasReadPermission(permissions);
    const bool write = HasWritePermission(permissions);
    const bool create = HasCreateFolderPermission(permissions);
    if (read && write && create) {
        return QStringLiteral("Full Read/Write Access");
    }
    if (read && write && !create) {
        return QStringLiteral("Read/Write access but cannot create folders");
    }
    if (read && !write && !create) {
        return QStringLiteral("Read Only Access");
    }
    if (!read && write && !create) {
        return QStringLiteral("Write Only Access");
    }
    if (!read && !write && create) {
        return QStringLiteral("Can only create folders");
    }
    return QStringLiteral("No read or write access to this folder");
}

QString clsWorkingFolderLocation::getReadWriteStringValue(int pathNumber) {
    ensurePermissionsKnown();
    if (!fileControl::FolderExists(getAPP_DATAPath(pathNumber))) {
        return readWriteText(0);
    }
    return readWriteText(getPermissions(pathNumber));
}

int clsWorkingFolderLocation::findOptimumAPP_DATALocation() const {
    for (int n : {RoamingPath, LocalPath, CommonPath}) {
        if ((getPermissions(n) & FullPermission) == FullPermission) {
            return n;
        }
    }
    return LocalPath;
}

// --- Working folder ------------------------------------------------------

QString clsWorkingFolderLocation::getInitialAppWorkingDataFolder() {
    ProcedureScope scope(app().errors, tagOf("getInitialAppWorkingDataFolder"));
    determinReadWritePermissionsForAPP_DATAFolders();

    m_workingFolder = workingFolderFor(RoamingPath, false);
    m_pathNumber = RoamingPath;

    const QString guideFolder = workingFolderFor(LocalPath, false);
    if (HasCreateFolderPermission(getPermissions(LocalPath))) {
        QDir().mkpath(guideFolder);
    }

    bool needSearch = false;
    bool needMove = false;
    int number = RoamingPath;
    const QString guide = getGuideFilePath();
    if (fileControl::FileExists(guide)) {
        const QString value =
            getKeyString(QLatin1String(GuideSection), QLatin1String(GuideNumberKey),
                         QStringLiteral("-1"), guide)
                .trimmed();
        if (value == QLatin1String("1") || value == QLatin1String("2") ||
            value == QLatin1String("3")) {
            number = value.toInt();
        } else if (value == QLatin1String("4")) {
            number = CustomPath;
            QString custom = getKeyString(QLatin1String(GuideSection),
                                          QLatin1String(GuideCustomKey), QString(), guide);
            if (custom == QLatin1String(clsINI::NotSet)) {
                custom.clear();
            }
            putCustomPath(custom);
            if (!fileControl::FolderExists(custom)) {
                needSearch = true;
            }
        } else {
            needSearch = true;
        }
    } else {
        needSearch = true;
        needMove = HasWritePermission(getPermissions(LocalPath));
    }

    if (needSearch) {
        number = findOptimumAPP_DATALocation();
    }

    m_pathNumber = number;
    m_workingFolder = workingFolderFor(number, false);
    if (!fileControl::FolderExists(m_workingFolder)) {
        QDir().mkpath(m_workingFolder);
    }

    if (needSearch) {
        recordAppWorkingDataFolderInINI();
    }
    if (needMove) {
        checkToSeeIfNeedToMoveAppWorkingDataFolder();
    }
    return m_workingFolder;
}

void clsWorkingFolderLocation::recordAppWorkingDataFolderInINI() {
    ProcedureScope scope(app().errors, tagOf("recordAppWorkingDataFolderInINI"));
    const QString guide = getGuideFilePath();
    setKeyValue(QLatin1String(GuideSection), QLatin1String(GuideNumberKey),
                QString::number(m_pathNumber), guide);
    setKeyValue(QLatin1String(GuideSection), QLatin1String(GuideCustomKey), m_paths[3], guide);
}

void clsWorkingFolderLocation::checkToSeeIfNeedToMoveAppWorkingDataFolder() {
    ProcedureScope scope(app().errors, tagOf("checkToSeeIfNeedToMoveAppWorkingDataFolder"));
    const QString settingsName = QLatin1String(SettingsFileName);
    QString source;
    if (fileControl::FileExists(getAppFolder() + settingsName)) {
        source = getAppFolder();
    } else if (fileControl::FileExists(getAPP_DATAPath(RoamingPath) + settingsName)) {
        source = getAPP_DATAPath(RoamingPath);
    }
    if (source.trimmed().isEmpty() || samePath(source, m_workingFolder)) {
        return;
    }

    const QString target = m_workingFolder;
    for (const MovedFile& entry : movedFiles()) {
        const QString name = QLatin1String(entry.name);
        const QString subfolder = QLatin1String(entry.subfolder);
        const QString destinationFolder =
            subfolder.isEmpty() ? target : target + subfolder + QLatin1Char('/');

        QStringList candidates{source + name};
        if (!subfolder.isEmpty()) {
            candidates << source + subfolder + QLatin1Char('/') + name;
        }
        for (const QString& from : candidates) {
            if (!fileControl::FileExists(from)) {
                continue;
            }
            QDir().mkpath(destinationFolder);
            const QString to = destinationFolder + name;
            if (!fileControl::CopyFile(from, to, true)) {
                continue;
            }
            if (name == settingsName) {
                // The old place must stop looking like a data location. A
                // leftover of an earlier move under the new name is kept:
                // the old file then stays as it is, which is harmless once
                // the guide file exists.
                const QString renamed =
                    fileControl::RemoveExtension(from) + QStringLiteral("2.dni");
                if (!QFileInfo::exists(renamed)) {
                    QFile::rename(from, renamed);
                }
            } else if (name == QLatin1String(DatabaseFileName) && app().iniSettings != nullptr) {
                // The settings object may not have its file yet at this
                // point of start-up; the settings file is the one just moved.
                writeDataLocation(to, {QStringLiteral("QuillmereInfo")}, target + settingsName);
            }
        }
    }
}

bool clsWorkingFolderLocation::changeWorkingFilesFolder(int pathNumber) {
    ProcedureScope scope(app().errors, tagOf("changeWorkingFilesFolder"));
    if (pathNumber < RoamingPath || pathNumber > CustomPath || pathNumber == m_pathNumber) {
        return false;
    }
    if (pathNumber == CustomPath && !fileControl::FolderExists(m_paths[3])) {
        return false;
    }
    const QString oldFolder = workingFolderFor(m_pathNumber, true);
    const QString newFolder = workingFolderFor(pathNumber, true);
    // The candidate was offered because its base folder is usable; its own
    // subfolder may simply not have been made yet.
    if (fileControl::FolderExists(getAPP_DATAPath(pathNumber)) &&
        !fileControl::FolderExists(newFolder)) {
        QDir().mkpath(newFolder);
    }
    if (!moveWorkingFilesToProgramDataFolder(oldFolder, newFolder)) {
        return false;
    }
    m_workingFolder = slashed(newFolder);
    m_pathNumber = pathNumber;
    recordAppWorkingDataFolderInINI();
    if (app().iniSettings != nullptr) {
        app().iniSettings->setINIFile(m_workingFolder + QLatin1String(SettingsFileName));
    }
    if (app().errors != nullptr) {
        app().errors->setLogFolder(m_workingFolder + QStringLiteral("Logs"));
    }
    return true;
}

namespace {
// The wait cursor while files are copied; only where a GUI exists.
class WaitCursor {
public:
    WaitCursor()
        : m_active(qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr) {
        if (m_active) {
            QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
        }
    }
    ~WaitCursor() {
        if (m_active) {
            QGuiApplication::restoreOverrideCursor();
        }
    }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

private:
    bool m_active;
};
} // namespace

bool clsWorkingFolderLocation::moveWorkingFilesToProgramDataFolder(const QString& from,
                                                                   const QString& to) {
    ProcedureScope scope(app().errors, tagOf("moveWorkingFilesToProgramDataFolder"));
    if (!fileControl::FolderExists(from) || !fileControl::FolderExists(to)) {
        return false;
    }
    const QString source = slashed(from);
    const QString target = slashed(to);
    bool copied = false;
    {
        WaitCursor wait;
        copied = fileControl::CopyFolder(source, target, true);
    }
    if (!copied) {
        return false;
    }
    if (fileControl::isBelowFolder(source, getAPP_DATAPath(LocalPath))) {
        // The next start looks for the guide file in the local candidate's
        // folder only; make sure it is there and not left behind elsewhere.
        const QString name = QLatin1String(GuideFileName);
        const QString copiedGuide = target + name;
        QFile::remove(source + name);
        const QString guideFolder = workingFolderFor(LocalPath, false);
        QDir().mkpath(guideFolder);
        if (fileControl::FileExists(copiedGuide)) {
            fileControl::CopyFile(copiedGuide, guideFolder + name, true);
        }
    }
    return true;
}

// --- Data folder -----------------------------------------------------------

QString clsWorkingFolderLocation::getDefaultDatabaseDataFolder() {
    ProcedureScope scope(app().errors, tagOf("getDefaultDatabaseDataFolder"));
    determinReadWritePermissionsForMyDocuemntsFolders();
    if ((m_myDocumentsPermissions & FullPermission) != FullPermission) {
        return m_workingFolder + QStringLiteral("Data/");
    }
    return m_myDocuments + QStringLiteral("Quillmere Files/Data/");
}

void clsWorkingFolderLocation::writeDataLocation(const QString& path, const QStringList& sections,
                                                 const QString& settingsFile) {
    clsINI* settings = app().iniSettings;
    if (settings == nullptr) {
        return;
    }
    for (const QString& section : sections) {
        settings->setKeyValue(section, QStringLiteral("dataLocation"), path, settingsFile);
    }
}

QString clsWorkingFolderLocation::getInitialDatabaseDataFolder() {
    ProcedureScope scope(app().errors, tagOf("getInitialDatabaseDataFolder"));
    const QString defaultFolder = getDefaultDatabaseDataFolder();
    QString folder = defaultFolder;
    QString file;
    if (clsINI* settings = app().iniSettings) {
        const QString recorded =
            settings->getKeyString(QStringLiteral("QuillmereInfo"), QStringLiteral("dataLocation"),
                                   QLatin1String(clsINI::NotSet));
        if (recorded != QLatin1String(clsINI::NotSet) && fileControl::FileExists(recorded)) {
            file = recorded;
            folder = slashed(fileControl::FolderName(recorded));
        }
    }

    if (!file.isEmpty()) {
        bool misplaced = fileControl::isBelowFolder(file, getAppFolder());
        for (int n : {RoamingPath, LocalPath, CommonPath}) {
            misplaced = misplaced || fileControl::isBelowFolder(file, getAPP_DATAPath(n));
        }
        const QString copy = defaultFolder + fileControl::FileName(file);
        if (misplaced && !samePath(copy, file)) {
            QDir().mkpath(defaultFolder);
            // Both programs of the family read this key; they must agree.
            if (fileControl::CopyFile(file, copy, true)) {
                writeDataLocation(
                    copy, {QStringLiteral("QuillmereInfo"), QStringLiteral("ContactLedgerInfo")},
                    QString());
                folder = defaultFolder;
            }
        }
    } else if (samePath(folder, defaultFolder)) {
        QDir().mkpath(defaultFolder);
    }

    putDataFolder(folder);
    QDir().mkpath(m_backupsFolder);
    return m_dataFolder;
}

void clsWorkingFolderLocation::putDataFolder(const QString& folder) {
    m_dataFolder = slashed(folder);
    m_backupsFolder =
        m_dataFolder.isEmpty() ? QString() : m_dataFolder + QStringLiteral("Backups/");
}

// --- The program itself ------------------------------------------------------

QString clsWorkingFolderLocation::getAppFolder() const {
    return SpecialFolders::programFolder();
}

QString clsWorkingFolderLocation::getAppEXEName() const {
    const QString file = QCoreApplication::instance() != nullptr
                             ? QCoreApplication::applicationFilePath()
                             : QString();
    const QString name = QFileInfo(file).completeBaseName();
    return name.isEmpty() ? QStringLiteral("quillmere-pad") : name;
}

QString clsWorkingFolderLocation::getAppFileName() const {
    // Executables carry no extension on this platform.
    return getAppEXEName();
}

QString clsWorkingFolderLocation::getAppFullPath() const {
    return getAppFolder() + getAppFileName();
}

// --- Private-profile access ----------------------------------------------------

void clsWorkingFolderLocation::setKeyValue(const QString& section, const QString& key,
                                           const QString& value, const QString& file) {
    m_profile.setKeyValue(section, key, value, file);
}

QString clsWorkingFolderLocation::getKeyString(const QString& section, const QString& key,
                                               const QString& defaultValue, const QString& file) {
    return m_profile.getKeyString(section, key, defaultValue, file);
}

// --- Templates, pictures, backgrounds ------------------------------------------

QString clsWorkingFolderLocation::getDefaultTemplatesFolder() const {
    return m_myDocuments + QStringLiteral("Quillmere Files/Template Documents/");
}

QString clsWorkingFolderLocation::getDefaultPicturesFolder() const {
    return m_myDocuments + QStringLiteral("Quillmere Files/Pictures/");
}

QString clsWorkingFolderLocation::getDefaultBackgroundsFolder() const {
    return m_myDocuments + QStringLiteral("Quillmere Files/Backgrounds/");
}

QString clsWorkingFolderLocation::getDocumentVaultRoot() const {
    return m_myDocuments + QStringLiteral("Quillmere Files/Client Documents/");
}

void clsWorkingFolderLocation::putTemplatesFolder(const QString& folder) {
    ProcedureScope scope(app().errors, tagOf("putTemplatesFolder"));
    m_templatesFolder = slashed(folder);
    if (clsINI* settings = app().iniSettings) {
        settings->setKeyValue(QStringLiteral("QuillmerePad"),
                              QStringLiteral("TemplatesFolderLocation"), m_templatesFolder);
    }
}

namespace {
bool isSetValue(const QString& value) {
    return !value.trimmed().isEmpty() && value != QLatin1String(clsINI::NotSet);
}
} // namespace

void clsWorkingFolderLocation::initializeTemplatesAndPicturesFolders() {
    ProcedureScope scope(app().errors, tagOf("initializeTemplatesAndPicturesFolders"));
    clsINI* settings = app().iniSettings;
    const QString defaultTemplates = getDefaultTemplatesFolder();

    const QString markerName = QLatin1String(MarkerFileName);
    QString marker;
    for (const QString& folder : {getAppFolder(), getAPP_DATAPath(RoamingPath)}) {
        if (fileControl::FileExists(folder + markerName)) {
            marker = folder + markerName;
            break;
        }
    }

    if (!marker.isEmpty()) {
        const QString recorded = getKeyString(QStringLiteral("TemplatesFolder"),
                                              QStringLiteral("FolderLocation"), QString(), marker);
        m_templatesFolder = isSetValue(recorded) ? slashed(recorded) : QString();
        if (fileControl::FolderExists(m_templatesFolder)) {
            if (fileControl::isBelowFolder(m_templatesFolder, getAppFolder())) {
                // The old folder stays where it is; a failed copy keeps it in use.
                QDir().mkpath(defaultTemplates);
                bool copied = false;
                {
                    WaitCursor wait;
                    copied = fileControl::CopyFolder(m_templatesFolder, defaultTemplates, true);
                }
                if (copied) {
                    m_templatesFolder = defaultTemplates;
                }
            }
        } else {
            m_templatesFolder = defaultTemplates;
        }
        doEventsIfInputPending();
        doEventsIfInputPending();
        // Renamed even after a failed copy, so the move is never tried again.
        const QString renamed = fileControl::FolderName(marker) + QStringLiteral("/vntflini2.lmd");
        if (QFileInfo::exists(renamed)) {
            QFile::remove(renamed);
        }
        QFile::rename(marker, renamed);
        if (settings != nullptr) {
            settings->setKeyValue(QStringLiteral("QuillmerePad"),
                                  QStringLiteral("TemplatesFolderLocation"), m_templatesFolder);
            settings->setKeyValue(QStringLiteral("QuillmereInfo"),
                                  QStringLiteral("DefaultTemplateFolder"), m_templatesFolder);
        }
    } else {
        QString recorded;
        if (settings != nullptr) {
            recorded = settings->getKeyString(QStringLiteral("QuillmerePad"),
                                              QStringLiteral("TemplatesFolderLocation"),
                                              QLatin1String(clsINI::NotSet));
        }
        if (isSetValue(recorded) && fileControl::FolderExists(recorded)) {
            m_templatesFolder = slashed(recorded);
        } else {
            m_templatesFolder = defaultTemplates;
            if (settings != nullptr) {
                settings->setKeyValue(QStringLiteral("QuillmerePad"),
                                      QStringLiteral("TemplatesFolderLocation"), m_templatesFolder);
            }
        }
    }
    if (!fileControl::FolderExists(m_templatesFolder)) {
        QDir().mkpath(m_templatesFolder);
    }

    moveOldPictureFolders();
}

// Pictures and background pictures of an older installation lie in the
// program's folder. They are copied out without replacing anything the user
// already keeps in the new place, so that a program folder that still holds
// them costs nothing on later starts.
void clsWorkingFolderLocation::moveOldPictureFolders() {
    m_picturesFolder = getDefaultPicturesFolder();
    const QString oldPictures = getAppFolder() + QStringLiteral("Pictures/");
    if (fileControl::FolderExists(oldPictures)) {
        WaitCursor wait;
        fileControl::CopyFolder(oldPictures, m_picturesFolder, false);
    }

    m_backgroundsFolder = getDefaultBackgroundsFolder();
    const QString oldBackgrounds = getAppFolder() + QStringLiteral("Backgrounds/");
    bool backgroundsMoved = false;
    if (fileControl::FolderExists(oldBackgrounds)) {
        WaitCursor wait;
        backgroundsMoved = fileControl::CopyFolder(oldBackgrounds, m_backgroundsFolder, false);
    }
    clsINI* settings = app().iniSettings;
    if (!backgroundsMoved || settings == nullptr) {
        return;
    }
    for (const char* section :
         {"WindowSettings", "ContactLedgerWindowSettings", "QuillmerePadWindowSettings"}) {
        const QString key = QStringLiteral("BackgroundPicPath");
        const QString value =
            settings->getKeyString(QLatin1String(section), key, QLatin1String(clsINI::NotSet));
        if (isSetValue(value)) {
            // Old paths may carry either separator.
            QString name = value;
            name.replace(QLatin1Char('\\'), QLatin1Char('/'));
            settings->setKeyValue(QLatin1String(section), key,
                                  m_backgroundsFolder + fileControl::FileName(name));
        }
    }
}
