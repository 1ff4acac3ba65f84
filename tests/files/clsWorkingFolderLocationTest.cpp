#include "files/clsWorkingFolderLocation.h"

#include "context/AppContext.h"
#include "files/clsINI.h"
#include "platform/PrivateProfile.h"
#include "platform/errorClass.h"
#include "support/TestEnvironment.h"
#include "support/WriteBlockedFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace {

using Folders = clsWorkingFolderLocation;

// Takes every write bit off a folder for its lifetime.
class ReadOnlyFolder {
public:
    explicit ReadOnlyFolder(QString path)
        : m_path(std::move(path)), m_saved(QFile::permissions(m_path)) {
        QFile::setPermissions(m_path, QFileDevice::ReadOwner | QFileDevice::ExeOwner |
                                          QFileDevice::ReadGroup | QFileDevice::ExeGroup |
                                          QFileDevice::ReadOther | QFileDevice::ExeOther);
    }
    ~ReadOnlyFolder() { QFile::setPermissions(m_path, m_saved); }
    ReadOnlyFolder(const ReadOnlyFolder&) = delete;
    ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;

private:
    QString m_path;
    QFileDevice::Permissions m_saved;
};

struct Fixture {
    TestEnvironment env;
    ScopedAppContext context;
    clsINI settings; // created, but no file yet: as at start-up
    errorClass errors;

    Fixture() {
        context->iniSettings = &settings;
        context->errors = &errors;
    }

    QString config() const { return env.configHome() + QStringLiteral("/"); }
    QString data() const { return env.dataHome() + QStringLiteral("/"); }
    QString common() const { return env.commonAppData() + QStringLiteral("/"); }
    QString program() const { return env.programFolder() + QStringLiteral("/"); }
    QString documents() const { return env.documents() + QStringLiteral("/"); }
    QString guide() const { return data() + QStringLiteral("Quillmere/vnguidepath.dni"); }

    QString base(int n) const {
        switch (n) {
        case 1:
            return config();
        case 2:
            return data();
        default:
            return common();
        }
    }
    void writeGuide(const QString& number, const QString& custom = {}) const {
        writeTestFile(guide(), QStringLiteral("[APP_DATA Path]\r\nAPP_DATA Path Number=%1\r\n"
                                              "APP_DATA Custom Path=%2\r\n")
                                   .arg(number, custom)
                                   .toLocal8Bit());
    }
    QString guideValue(const char* key) const {
        return PrivateProfile::readValue(guide(), QStringLiteral("APP_DATA Path"),
                                         QLatin1String(key))
            .value_or(QStringLiteral("(missing)"));
    }
};

QString iniValue(const QString& file, const QString& section, const QString& key) {
    return PrivateProfile::readValue(file, section, key).value_or(QStringLiteral("(missing)"));
}

} // namespace

// --- Choosing the working folder ----------------------------------------------

TEST(clsWorkingFolderLocationTest, FirstStartPicksTheFirstCandidateThatPassesEveryTest) {
    struct Case {
        const char* name;
        std::vector<int> readOnly; // candidates with every write bit removed
        int expected;
    };
    const Case cases[] = {
        {"all usable: the roaming folder", {}, 1},
        {"roaming read-only: the local folder", {1}, 2},
        {"both per-user folders read-only: the shared folder", {1, 2}, 3},
        {"none usable: the local folder all the same", {1, 2, 3}, 2},
    };
    for (const auto& c : cases) {
        Fixture f;
        std::vector<std::unique_ptr<ReadOnlyFolder>> guards;
        for (int n : c.readOnly) {
            guards.push_back(std::make_unique<ReadOnlyFolder>(f.base(n)));
        }
        Folders folders;
        const QString working = folders.getInitialAppWorkingDataFolder();
        EXPECT_EQ(folders.getPathNumber(), c.expected) << c.name;
        EXPECT_EQ(working, f.base(c.expected) + QStringLiteral("Quillmere/")) << c.name;
        for (int n : c.readOnly) {
            EXPECT_EQ(folders.getPermissions(n), 0) << c.name << " candidate " << n;
        }
        guards.clear();
        // The guide file lives in the local folder; only there can it be kept.
        if (std::find(c.readOnly.begin(), c.readOnly.end(), 2) == c.readOnly.end()) {
            EXPECT_EQ(f.guideValue("APP_DATA Path Number"), QString::number(c.expected)) << c.name;
        }
    }
}

TEST(clsWorkingFolderLocationTest, GuideFileDecidesOrTriggersANewSearch) {
    struct Case {
        const char* name;
        QString number;
        QString custom; // relative to the test root; "" for none
        bool makeCustom;
        QString expectedRelative; // working folder below the test root
        QString expectedGuideNumber;
    };
    const Case cases[] = {
        {"a recorded candidate is used without a search", "3", "", false, "common/Quillmere/", "3"},
        {"a number out of range searches again", "7", "", false, "home/.config/Quillmere/", "1"},
        {"text that is no number searches again", "abc", "", false, "home/.config/Quillmere/", "1"},
        {"a custom folder is used as it stands", "4", "mine/Office", true, "mine/Office/", "4"},
        {"a custom folder already named Quillmere", "4", "mine/Quillmere", true, "mine/Quillmere/",
         "4"},
        {"a vanished custom folder searches again", "4", "gone/Office", false,
         "home/.config/Quillmere/", "1"},
    };
    for (const auto& c : cases) {
        Fixture f;
        const QString custom = c.custom.isEmpty() ? QString() : f.env.root() + "/" + c.custom;
        if (c.makeCustom) {
            QDir().mkpath(custom);
        }
        f.writeGuide(c.number, custom);
        Folders folders;
        EXPECT_EQ(folders.getInitialAppWorkingDataFolder(), f.env.root() + "/" + c.expectedRelative)
            << c.name;
        EXPECT_TRUE(QFileInfo(folders.getApplicationWorkingFolder()).isDir()) << c.name;
        EXPECT_EQ(f.guideValue("APP_DATA Path Number"), c.expectedGuideNumber) << c.name;
    }
}

// --- Carrying older data over -----------------------------------------------------

TEST(clsWorkingFolderLocationTest, FirstStartMovesDataOutOfTheProgramFolder) {
    Fixture f;
    const QString oldSettings = f.program() + "Qminiqmd.dni";
    writeTestFile(oldSettings, "[QuillmereInfo]\r\ndataLocation=" +
                                   (f.program() + "Data.qmd").toLocal8Bit() + "\r\n");
    writeTestFile(f.program() + "Data.qmd", "database");
    writeTestFile(f.program() + "Qmlocalf5.lmd", "local");
    writeTestFile(f.program() + "qmsfile5.sif", "sif");
    writeTestFile(f.program() + "qmsrtptgd.fgd", "grid");

    Folders folders;
    const QString working = folders.getInitialAppWorkingDataFolder();
    ASSERT_EQ(working, f.config() + "Quillmere/");

    struct Moved {
        QString target;
        QByteArray content;
    };
    const Moved moved[] = {
        {working + "Data/Data.qmd", "database"},
        {working + "Qmlocalf5.lmd", "local"},
        {working + "qmsfile5.sif", "sif"},
        {working + "qmsrtptgd.fgd", "grid"},
    };
    for (const auto& m : moved) {
        EXPECT_EQ(readTestFile(m.target), m.content) << m.target.toStdString();
    }
    // The old settings file no longer counts as a data location, but is kept.
    EXPECT_FALSE(QFileInfo::exists(oldSettings));
    EXPECT_TRUE(readTestFile(f.program() + "Qminiqmd2.dni").startsWith("[QuillmereInfo]"));
    EXPECT_EQ(iniValue(working + "Qminiqmd.dni", "QuillmereInfo", "dataLocation"),
              working + "Data/Data.qmd");
    // Copies, not moves: the originals stay.
    EXPECT_TRUE(QFileInfo::exists(f.program() + "Data.qmd"));
}

TEST(clsWorkingFolderLocationTest, ALeftoverOfAnEarlierMoveIsNeverOverwritten) {
    Fixture f;
    writeTestFile(f.program() + "Qminiqmd.dni", "[Quillmere]\r\nVersion=2.0.0\r\n");
    writeTestFile(f.program() + "Qminiqmd2.dni", "earlier");
    Folders folders;
    const QString working = folders.getInitialAppWorkingDataFolder();
    EXPECT_EQ(readTestFile(f.program() + "Qminiqmd2.dni"), QByteArray("earlier"));
    EXPECT_TRUE(readTestFile(f.program() + "Qminiqmd.dni").contains("2.0.0"));
    EXPECT_TRUE(readTestFile(working + "Qminiqmd.dni").contains("2.0.0"));
}

// The start-up sequence: the first start moves the data into the working
// folder, and the database step then finds it in a candidate folder, which
// counts as misplaced, and carries it on to the documents folder.
TEST(clsWorkingFolderLocationTest, FirstStartFollowedByTheDatabaseStep) {
    Fixture f;
    writeTestFile(f.program() + "Qminiqmd.dni", "[QuillmereInfo]\r\ndataLocation=<not_set>\r\n");
    writeTestFile(f.program() + "Data/Data.qmd", "db");
    Folders folders;
    const QString working = folders.getInitialAppWorkingDataFolder();
    f.settings.setINIFile(working + "Qminiqmd.dni");
    folders.initializeTemplatesAndPicturesFolders();

    const QString dataFolder = folders.getInitialDatabaseDataFolder();
    const QString expected = f.documents() + "Quillmere Files/Data/";
    EXPECT_EQ(dataFolder, expected);
    EXPECT_EQ(folders.getBackupsFolder(), expected + "Backups/");
    EXPECT_EQ(readTestFile(expected + "Data.qmd"), QByteArray("db"));
    for (const char* section : {"QuillmereInfo", "ContactLedgerInfo"}) {
        EXPECT_EQ(iniValue(working + "Qminiqmd.dni", section, "dataLocation"),
                  expected + "Data.qmd")
            << section;
    }
    EXPECT_EQ(folders.getTemplatesFolder(), f.documents() + "Quillmere Files/Template Documents/");
}

TEST(clsWorkingFolderLocationTest, MoveFindsItsSourceOrStaysAway) {
    struct Case {
        const char* name;
        bool dataInSubfolder; // old Data.qmd below "Data/" of the source
        bool sourceIsRoaming; // old data in the roaming folder itself
        bool guideExists;     // not a first start
        bool localReadOnly;   // the local folder may not be written
        bool expectMove;
    };
    const Case cases[] = {
        {"database in the source's Data folder", true, false, false, false, true},
        {"old data in the roaming folder", false, true, false, false, true},
        {"a guide file means no first start", false, false, true, false, false},
        {"an unwritable local folder prevents the move", false, false, false, true, false},
    };
    for (const auto& c : cases) {
        Fixture f;
        const QString source = c.sourceIsRoaming ? f.config() : f.program();
        writeTestFile(source + "Qminiqmd.dni", "[Quillmere]\r\nVersion=1.0.0\r\n");
        writeTestFile(source + (c.dataInSubfolder ? "Data/Data.qmd" : "Data.qmd"), "db");
        if (c.guideExists) {
            f.writeGuide("1");
        }
        std::unique_ptr<ReadOnlyFolder> guard;
        if (c.localReadOnly) {
            guard = std::make_unique<ReadOnlyFolder>(f.data());
        }
        Folders folders;
        const QString working = folders.getInitialAppWorkingDataFolder();
        guard.reset();
        EXPECT_EQ(QFileInfo::exists(working + "Data/Data.qmd"), c.expectMove) << c.name;
        EXPECT_EQ(QFileInfo::exists(working + "Qminiqmd.dni"), c.expectMove) << c.name;
        EXPECT_EQ(QFileInfo::exists(source + "Qminiqmd.dni"), !c.expectMove) << c.name;
        if (c.expectMove) {
            EXPECT_EQ(iniValue(working + "Qminiqmd.dni", "QuillmereInfo", "dataLocation"),
                      working + "Data/Data.qmd")
                << c.name;
        }
    }
}

TEST(clsWorkingFolderLocationTest, MoveWithoutSettingsObjectCopiesButWritesNoKey) {
    Fixture f;
    f.context->iniSettings = nullptr;
    writeTestFile(f.program() + "Qminiqmd.dni", "[Quillmere]\r\nVersion=1.0.0\r\n");
    writeTestFile(f.program() + "Data.qmd", "db");
    Folders folders;
    const QString working = folders.getInitialAppWorkingDataFolder();
    EXPECT_EQ(readTestFile(working + "Data/Data.qmd"), QByteArray("db"));
    EXPECT_EQ(iniValue(working + "Qminiqmd.dni", "QuillmereInfo", "dataLocation"), "(missing)");
}

// --- Changing the working folder -----------------------------------------------

TEST(clsWorkingFolderLocationTest, ChangeRefusesTheSameOrAMissingFolder) {
    Fixture f;
    Folders folders;
    folders.getInitialAppWorkingDataFolder();
    ASSERT_EQ(folders.getPathNumber(), 1);
    EXPECT_FALSE(folders.changeWorkingFilesFolder(1));
    folders.putCustomPath(f.env.root() + "/does-not-exist");
    EXPECT_FALSE(folders.changeWorkingFilesFolder(4));
    EXPECT_FALSE(folders.changeWorkingFilesFolder(0));
    EXPECT_EQ(folders.getPathNumber(), 1);
    EXPECT_EQ(folders.getApplicationWorkingFolder(), f.config() + "Quillmere/");
}

TEST(clsWorkingFolderLocationTest, ChangeCopiesEverythingAndTellsSettingsAndLog) {
    struct Case {
        const char* name;
        int from;
        int to;
        QString custom;           // relative to the root, for path 4
        QString expectedRelative; // new working folder
    };
    const Case cases[] = {
        {"roaming to shared", 1, 3, "", "common/Quillmere/"},
        {"local to roaming", 2, 1, "", "home/.config/Quillmere/"},
        {"to a custom folder of another name", 1, 4, "office", "office/Quillmere/"},
        {"to a custom folder named Quillmere", 1, 4, "office/Quillmere", "office/Quillmere/"},
    };
    for (const auto& c : cases) {
        Fixture f;
        f.writeGuide(QString::number(c.from));
        Folders folders;
        const QString oldWorking = folders.getInitialAppWorkingDataFolder();
        writeTestFile(oldWorking + "Qminiqmd.dni", "[Quillmere]\r\nVersion=1.0.0\r\n");
        writeTestFile(oldWorking + "Data/Data.qmd", "db");
        if (c.to == 4) {
            QDir().mkpath(f.env.root() + "/" + c.custom);
            folders.putCustomPath(f.env.root() + "/" + c.custom);
        }
        ASSERT_TRUE(folders.changeWorkingFilesFolder(c.to)) << c.name;
        const QString expected = f.env.root() + "/" + c.expectedRelative;
        EXPECT_EQ(folders.getApplicationWorkingFolder(), expected) << c.name;
        EXPECT_EQ(readTestFile(expected + "Data/Data.qmd"), QByteArray("db")) << c.name;
        EXPECT_EQ(f.settings.INIFile(), expected + "Qminiqmd.dni") << c.name;
        EXPECT_EQ(f.errors.logFolder(), expected + "Logs") << c.name;
        // The next start must find the new choice where it looks.
        EXPECT_EQ(f.guideValue("APP_DATA Path Number"), QString::number(c.to)) << c.name;
        Folders nextStart;
        EXPECT_EQ(nextStart.getInitialAppWorkingDataFolder(),
                  c.to == 4 ? f.env.root() + "/" + c.custom + "/" : expected)
            << c.name;
    }
}

// --- Permissions and their texts ------------------------------------------------------

TEST(clsWorkingFolderLocationTest, PermissionTextsFollowTheBits) {
    struct Case {
        std::uint8_t bits;
        const char* text;
    };
    const Case cases[] = {
        {7, "Full Read/Write Access"},
        {3, "Read/Write access but cannot create folders"},
        {1, "Read Only Access"},
        {2, "Write Only Access"},
        {4, "Can only create folders"},
        {5, "No read or write access to this folder"},
        {6, "No read or write access to this folder"},
        {0, "No read or write access to this folder"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Folders::readWriteText(c.bits), QLatin1String(c.text)) << int(c.bits);
    }
}

TEST(clsWorkingFolderLocationTest, PermissionTestsWriteForRealAndLeaveNothingBehind) {
    Fixture f;
    Folders folders;
    EXPECT_EQ(folders.getReadWriteStringValue(1), "Full Read/Write Access");
    EXPECT_TRUE(QDir(f.config()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).isEmpty());

    {
        ReadOnlyFolder guard(f.common());
        folders.determinReadWritePermissionsForAPP_DATAFolders();
    }
    EXPECT_EQ(folders.getReadWriteStringValue(3), "No read or write access to this folder");
    EXPECT_EQ(folders.getReadWriteStringValue(4), "No read or write access to this folder");

    // Old probes from an interrupted test are cleared, not taken as success.
    writeTestFile(f.data() + "test.tmp", "stale");
    QDir().mkpath(f.data() + "test123/inner");
    EXPECT_EQ(Folders::testFolderPermissions(f.data()), Folders::FullPermission);
    EXPECT_FALSE(QFileInfo::exists(f.data() + "test.tmp"));
    EXPECT_FALSE(QFileInfo::exists(f.data() + "test123"));
}

TEST(clsWorkingFolderLocationTest, AFolderThatRefusesWritesReadsAsReadOnly) {
    Fixture f;
    // Writable for others, not for its owner: only a real write shows it.
    const QString folder = f.env.path("locked/");
    QDir().mkpath(folder);
    WriteBlockedFolder guard(folder, QFileDevice::ReadOwner | QFileDevice::ExeOwner |
                                         QFileDevice::WriteGroup | QFileDevice::WriteOther);
    if (!guard.blocked()) {
        GTEST_SKIP() << guard.whyNot().toStdString();
    }
    const auto bits = Folders::testFolderPermissions(folder);
    EXPECT_EQ(bits, Folders::ReadPermission);
    EXPECT_EQ(Folders::readWriteText(bits), "Read Only Access");
}

// --- Data folder -------------------------------------------------------------------

TEST(clsWorkingFolderLocationTest, DataFolderFollowsTheRecordedDatabase) {
    struct Case {
        const char* name;
        QString recorded; // relative to the root; "" for no key
        bool fileExists;
        bool expectCopy;      // a misplaced file goes to the default folder
        QString expectedData; // relative to the root
    };
    const QString defaultData = "home/Documents/Quillmere Files/Data/";
    const Case cases[] = {
        {"no database known", "", false, false, defaultData},
        {"database in the program folder", "program/Data.qmd", true, true, defaultData},
        {"database in the shared folder", "common/Quillmere/Data/Data.qmd", true, true,
         defaultData},
        {"database in the roaming folder", "home/.config/x/Data.qmd", true, true, defaultData},
        {"database elsewhere stays", "office/db/Data.qmd", true, false, "office/db/"},
        {"a vanished database", "office/db/Data.qmd", false, false, defaultData},
    };
    for (const auto& c : cases) {
        Fixture f;
        f.settings.setINIFile(f.env.path("work/Qminiqmd.dni"));
        const QString recorded = f.env.root() + "/" + c.recorded;
        if (!c.recorded.isEmpty()) {
            f.settings.setKeyValue("QuillmereInfo", "dataLocation", recorded);
            if (c.fileExists) {
                writeTestFile(recorded, "db");
            }
        }
        const QString ledgerBefore =
            iniValue(f.settings.INIFile(), "ContactLedgerInfo", "dataLocation");
        Folders folders;
        const QString expected = f.env.root() + "/" + c.expectedData;
        EXPECT_EQ(folders.getInitialDatabaseDataFolder(), expected) << c.name;
        EXPECT_TRUE(QFileInfo(expected + "Backups").isDir()) << c.name;
        const QString location = expected + "Data.qmd";
        const QString unchanged = c.recorded.isEmpty() ? "<not_set>" : recorded;
        EXPECT_EQ(iniValue(f.settings.INIFile(), "QuillmereInfo", "dataLocation"),
                  c.expectCopy ? location : unchanged)
            << c.name;
        EXPECT_EQ(iniValue(f.settings.INIFile(), "ContactLedgerInfo", "dataLocation"),
                  c.expectCopy ? location : ledgerBefore)
            << c.name;
        if (c.expectCopy) {
            EXPECT_EQ(readTestFile(location), QByteArray("db")) << c.name;
            EXPECT_TRUE(QFileInfo::exists(recorded)) << c.name << ": the original stays";
        }
    }
}

TEST(clsWorkingFolderLocationTest, UnusableDocumentsFolderPutsDataBelowTheWorkingFolder) {
    Fixture f;
    Folders folders;
    const QString working = folders.getInitialAppWorkingDataFolder();
    ReadOnlyFolder guard(f.documents());
    EXPECT_EQ(folders.getDefaultDatabaseDataFolder(), working + "Data/");
    EXPECT_EQ(folders.getMyDocumentsPermissions(), 0);
}

// --- Templates, pictures, backgrounds -----------------------------------------------

TEST(clsWorkingFolderLocationTest, TemplatesFolderComesFromMarkerSettingsOrDefault) {
    struct Case {
        const char* name;
        QString markerIn;       // "program", "roaming" or "" for no marker
        QString markerFolder;   // relative to the root; "" for no key
        QString settingsFolder; // TemplatesFolderLocation; "" for no key
        bool makeFolder;        // the named folder exists
        QString expected;       // relative to the root
    };
    const QString dflt = "home/Documents/Quillmere Files/Template Documents/";
    const Case cases[] = {
        {"nothing recorded: the default", "", "", "", false, dflt},
        {"settings name an existing folder", "", "", "office/tpl", true, "office/tpl/"},
        {"settings name a deleted folder", "", "", "office/tpl", false, dflt},
        {"marker names a folder in the program folder", "program", "program/Templates", "", true,
         dflt},
        {"marker names a folder elsewhere", "roaming", "office/tpl", "", true, "office/tpl/"},
        {"marker names a vanished folder", "program", "office/gone", "", false, dflt},
    };
    for (const auto& c : cases) {
        Fixture f;
        f.settings.setINIFile(f.env.path("work/Qminiqmd.dni"));
        const QString named =
            f.env.root() + "/" + (c.markerFolder.isEmpty() ? c.settingsFolder : c.markerFolder);
        if (c.makeFolder) {
            writeTestFile(named + "/Letter.qmt", "template");
        }
        QString marker;
        if (!c.markerIn.isEmpty()) {
            marker = (c.markerIn == "program" ? f.program() : f.config()) + "vntflini.lmd";
            writeTestFile(marker,
                          "[TemplatesFolder]\r\nFolderLocation=" + named.toLocal8Bit() + "\r\n");
            writeTestFile(QFileInfo(marker).path() + "/vntflini2.lmd", "older");
        }
        if (!c.settingsFolder.isEmpty()) {
            f.settings.setKeyValue("QuillmerePad", "TemplatesFolderLocation", named);
        }

        Folders folders;
        folders.initializeTemplatesAndPicturesFolders();
        const QString expected = f.env.root() + "/" + c.expected;
        EXPECT_EQ(folders.getTemplatesFolder(), expected) << c.name;
        EXPECT_TRUE(QFileInfo(expected).isDir()) << c.name;
        EXPECT_EQ(iniValue(f.settings.INIFile(), "QuillmerePad", "TemplatesFolderLocation"),
                  c.expected == dflt || !marker.isEmpty() ? expected : named)
            << c.name;
        if (c.makeFolder) {
            EXPECT_EQ(readTestFile(expected + "Letter.qmt"), QByteArray("template")) << c.name;
            EXPECT_TRUE(QFileInfo::exists(named + "/Letter.qmt")) << c.name << ": old folder stays";
        }
        if (!marker.isEmpty()) {
            EXPECT_FALSE(QFileInfo::exists(marker)) << c.name;
            EXPECT_TRUE(readTestFile(QFileInfo(marker).path() + "/vntflini2.lmd")
                            .startsWith("[TemplatesFolder]"))
                << c.name;
            EXPECT_EQ(iniValue(f.settings.INIFile(), "QuillmereInfo", "DefaultTemplateFolder"),
                      expected)
                << c.name;
        }
    }
}

TEST(clsWorkingFolderLocationTest, PicturesAndBackgroundsLeaveTheProgramFolder) {
    Fixture f;
    f.settings.setINIFile(f.env.path("work/Qminiqmd.dni"));
    writeTestFile(f.program() + "Pictures/logo.png", "logo");
    writeTestFile(f.program() + "Backgrounds/sky.jpg", "sky");
    const QString backgrounds = f.documents() + "Quillmere Files/Backgrounds/";
    writeTestFile(backgrounds + "mine.jpg", "the user's own");
    writeTestFile(f.program() + "Backgrounds/mine.jpg", "shipped");
    f.settings.setKeyValue("WindowSettings", "BackgroundPicPath", "C:\\Old\\Backgrounds\\sky.jpg");
    f.settings.setKeyValue("QuillmerePadWindowSettings", "BackgroundPicPath",
                           f.program() + "Backgrounds/mine.jpg");
    f.settings.setKeyValue("ContactLedgerWindowSettings", "BackgroundPicPath", "<not_set>");

    Folders folders;
    folders.initializeTemplatesAndPicturesFolders();
    EXPECT_EQ(folders.getPicturesFolder(), f.documents() + "Quillmere Files/Pictures/");
    EXPECT_EQ(folders.getBackgroundsFolder(), backgrounds);
    EXPECT_EQ(readTestFile(folders.getPicturesFolder() + "logo.png"), QByteArray("logo"));
    EXPECT_EQ(readTestFile(backgrounds + "sky.jpg"), QByteArray("sky"));
    EXPECT_EQ(readTestFile(backgrounds + "mine.jpg"), QByteArray("the user's own"));

    struct Expect {
        const char* section;
        QString value;
    };
    const Expect expects[] = {
        {"WindowSettings", backgrounds + "sky.jpg"},
        {"QuillmerePadWindowSettings", backgrounds + "mine.jpg"},
        {"ContactLedgerWindowSettings", "<not_set>"},
    };
    for (const auto& e : expects) {
        EXPECT_EQ(iniValue(f.settings.INIFile(), e.section, "BackgroundPicPath"), e.value)
            << e.section;
    }
}

TEST(clsWorkingFolderLocationTest, PutTemplatesFolderIsStoredAndVaultLiesBesideTemplates) {
    Fixture f;
    f.settings.setINIFile(f.env.path("work/Qminiqmd.dni"));
    Folders folders;
    folders.putTemplatesFolder(f.env.root() + "/office/tpl");
    EXPECT_EQ(folders.getTemplatesFolder(), f.env.root() + "/office/tpl/");
    EXPECT_EQ(iniValue(f.settings.INIFile(), "QuillmerePad", "TemplatesFolderLocation"),
              f.env.root() + "/office/tpl/");
    EXPECT_EQ(folders.getDocumentVaultRoot(), f.documents() + "Quillmere Files/Client Documents/");
}
