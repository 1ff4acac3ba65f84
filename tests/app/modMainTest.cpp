#include "app/modMain.h"

#include "ScriptedMainWindow.h"
#include "app/ScriptedDocMergeApplication.h"
#include "app/clsDocMerge.h"
#include "context/AppContext.h"
#include "data/ContactCardWriter.h"
#include "files/clsINI.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/PrivateProfile.h"
#include "platform/errorClass.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

const QString kDatabaseMessage = QStringLiteral(
    "The Quillmere Pad was not able to access the companies database and needs to close.");

struct Started {
    TestEnvironment env;
    ScopedAppContext context;
    ScriptedMainWindow* window = nullptr;
    std::unique_ptr<Application> program;

    Started() {
        auto host = std::make_unique<ScriptedMainWindow>();
        window = host.get();
        program = std::make_unique<Application>(std::move(host));
    }
    QString workingFolder() const { return env.configHome() + QStringLiteral("/Quillmere/"); }
    QString settingsFile() const { return workingFolder() + QStringLiteral("Qminiqmd.dni"); }
};

} // namespace

TEST(modMainTest, AFirstStandAloneStartWithoutADatabase) {
    Started s;
    EXPECT_TRUE(s.program->Main({}));
    AppContext& ctx = s.context.context();

    EXPECT_TRUE(ctx.isStandAlone);
    EXPECT_FALSE(ctx.isStartingUp);
    EXPECT_EQ(ctx.currentCountry, 1);
    EXPECT_EQ(ctx.currentUserID, 0);
    EXPECT_EQ(ctx.currentProvince, 3);
    EXPECT_EQ(s.window->calls.first(), "splash:Version: " + getProgramVersion());
    EXPECT_EQ(s.window->calls.mid(1), QStringList({"load", "initialize"}));

    // The settings file lies in the first candidate folder, written whole.
    ASSERT_TRUE(QFile::exists(s.settingsFile()));
    EXPECT_EQ(PrivateProfile::readValue(s.settingsFile(), "Quillmere", "Version").value_or(""),
              getProgramVersion());
    EXPECT_EQ(ctx.errors->logFolder(), s.workingFolder() + "Logs");

    // No database named: the message appears, as the fatal kind, and start-up
    // went on to the end all the same.
    EXPECT_TRUE(ctx.databaseLocation.isEmpty());
    ASSERT_EQ(s.window->msgbox.shown().size(), 1u);
    EXPECT_EQ(s.window->msgbox.shown()[0].text, kDatabaseMessage);
    EXPECT_EQ(s.window->msgbox.shown()[0].kind, MsgboxClass::KindFatal);

    EXPECT_EQ(ctx.workstationID.size(), 12);
    EXPECT_TRUE(QFile::exists(s.workingFolder() + "Qmlocalf5.lmd"));
}

TEST(modMainTest, NotSetAndBlankDataLocationsReadAsEmpty) {
    for (const char* value : {"<not_set>", "   ", ""}) {
        Started s;
        QDir().mkpath(s.workingFolder());
        writeTestFile(s.settingsFile(),
                      QByteArray("[QuillmereInfo]\r\ndataLocation=") + value + "\r\n");
        clsINI ini;
        ini.setINIFile(s.settingsFile());
        s.context->iniSettings = &ini;
        EXPECT_EQ(getDataFilePath(), QString()) << value;
    }
    Started s;
    EXPECT_EQ(getDataFilePath(), QString()); // no settings object at all
}

TEST(modMainTest, AutomationModeWaitsForTheHost) {
    Started s;
    EXPECT_FALSE(s.program->Main({"--automation"}));
    EXPECT_FALSE(s.context->isStandAlone);
    EXPECT_TRUE(s.window->calls.isEmpty());
    EXPECT_EQ(s.context->errors, nullptr);
}

TEST(modMainTest, AHostedStartUsesTheHostsFolderProvinceAndFallsBackFromAWrongDatabase) {
    Started s;
    ScriptedDocMergeApplication hostApplication;
    clsDocMerge host(hostApplication);
    host.setAppWorkingDataFolder(s.env.path("host/work/"));
    host.setDatabaseLocation(s.env.path("host/missing.qmd"));
    host.setCurrentProvince(9);
    host.setUserID(77);
    s.program->Main({"--automation"});
    s.program->startApplication(true, &host);
    AppContext& ctx = s.context.context();

    EXPECT_EQ(ctx.docMergeObject, &host);
    EXPECT_EQ(ctx.currentProvince, 9);
    // The user lookups stand before the database exists: the host's user
    // is not taken on a first start.
    EXPECT_EQ(ctx.currentUserID, 0);
    EXPECT_FALSE(s.window->calls.join(",").contains("splash"));
    EXPECT_TRUE(QFile::exists(host.AppWorkingDataFolder() + "Qminiqmd.dni"));
    EXPECT_TRUE(ctx.databaseLocation.isEmpty());
    EXPECT_EQ(s.window->msgbox.texts(), QStringList({kDatabaseMessage}));
}

TEST(modMainTest, ExitTellsTheHostOnceAndSavesTheWindowState) {
    struct Case {
        const char* name;
        WindowPlacement::State state;
        const char* windowState;
        const char* windowTop;
    };
    const Case cases[] = {
        {"normal", WindowPlacement::State::Normal, "0", "150"},
        {"maximised keeps the last normal size", WindowPlacement::State::Maximized, "2",
         "<not_set>"},
        {"minimised writes nothing", WindowPlacement::State::Minimized, "<not_set>", "<not_set>"},
    };
    for (const auto& c : cases) {
        Started s;
        ScriptedDocMergeApplication hostApplication;
        clsDocMerge host(hostApplication);
        host.setAppWorkingDataFolder(s.env.path("host/work/"));
        int told = 0;
        s.program->setExitDocMergeHook([&] { ++told; });
        s.program->Main({"--automation"});
        s.program->startApplication(true, &host);
        s.window->where = {c.state, 150, 300, 9000, 6000};

        s.program->exitCurrentProgram();
        s.program->exitCurrentProgram(); // closing the window asks again
        EXPECT_EQ(told, 1) << c.name;
        EXPECT_TRUE(s.program->hasExited());
        EXPECT_EQ(s.window->calls.mid(s.window->calls.size() - 2),
                  QStringList({"unloadOthers", "close"}));
        EXPECT_EQ(s.context->errors, nullptr);
        EXPECT_EQ(s.context->iniSettings, nullptr);
        const QString file = host.AppWorkingDataFolder() + "Qminiqmd.dni";
        const QString section = "QuillmerePadWindowSettings";
        EXPECT_EQ(PrivateProfile::readValue(file, section, "WindowState").value_or(""),
                  c.windowState)
            << c.name;
        EXPECT_EQ(PrivateProfile::readValue(file, section, "WindowTop").value_or(""), c.windowTop)
            << c.name;
    }
}

TEST(modMainTest, ACancelledDocumentQuestionCallsTheExitOffBeforeTheHostHears) {
    Started s;
    ScriptedDocMergeApplication hostApplication;
    clsDocMerge host(hostApplication);
    host.setAppWorkingDataFolder(s.env.path("host/work/"));
    int told = 0;
    s.program->setExitDocMergeHook([&] { ++told; });
    s.program->Main({"--automation"});
    s.program->startApplication(true, &host);
    s.window->keepDocuments = true;
    s.program->exitCurrentProgram();
    EXPECT_EQ(told, 0);
    EXPECT_FALSE(s.program->hasExited());
    EXPECT_FALSE(s.window->calls.contains("close"));
    EXPECT_NE(s.context->iniSettings, nullptr);

    s.window->keepDocuments = false;
    s.program->exitCurrentProgram();
    EXPECT_EQ(told, 1);
    EXPECT_TRUE(s.program->hasExited());
}

TEST(modMainTest, AnErrorAnsweredWithEndProgramEndsThroughTheExitRoutine) {
    Started s;
    ScriptedDocMergeApplication hostApplication;
    clsDocMerge host(hostApplication);
    host.setAppWorkingDataFolder(s.env.path("host/work/"));
    int told = 0;
    s.program->setExitDocMergeHook([&] { ++told; });
    s.program->Main({"--automation"});
    s.program->startApplication(true, &host);
    s.window->errorAnswer = errorClass::EndProgram;
    runGuarded(s.context->errors, [] { throw QmError(5, "Invalid procedure call"); });
    EXPECT_EQ(told, 1);
    EXPECT_TRUE(s.program->hasExited());
    EXPECT_TRUE(s.window->calls.contains("error:Invalid procedure call"));
}

TEST(modMainTest, ContactCardsAreRebuiltWhileTheDatabaseIsOpen) {
    Started s;
    s.program->Main({});
    EXPECT_NE(contactCardWriter(), nullptr);
    s.program->exitCurrentProgram();
    EXPECT_EQ(contactCardWriter(), nullptr);
}

TEST(modMainTest, CenterFormKeepsItsAsymmetry) {
    const FormRect screen{0, 0, 1000, 800};
    const FormRect parent{100, 50, 400, 300};
    struct Case {
        const char* name;
        FormRect window;
        int left;
        int top;
    };
    const Case cases[] = {
        {"larger than the parent", {0, 0, 600, 500}, 100 + 100, 50 + 100},
        {"equal: the top takes the parent's, the left the formula", {0, 0, 400, 300}, 100, 50},
        {"smaller: placed by the written sign", {0, 0, 200, 100}, 100 - 100, 50 - 100},
    };
    for (const auto& c : cases) {
        const FormRect r = CenterForm(c.window, &parent, screen);
        EXPECT_EQ(r.left, c.left) << c.name;
        EXPECT_EQ(r.top, c.top) << c.name;
    }
    const FormRect centred = CenterForm({0, 0, 200, 100}, nullptr, screen);
    EXPECT_EQ(centred.left, 400);
    EXPECT_EQ(centred.top, 350);
}

TEST(modMainTest, StartUpCreatesTheFieldInserterSoTheWindowCanMergeAndExitReleasesIt) {
    Started s;
    s.program->Main({});
    AppContext& ctx = s.context.context();
    ASSERT_NE(ctx.fieldInserter, nullptr);
    // The regional placeholders are rewritten with the inserter start-up
    // made, not skipped as they were without one.
    EXPECT_FALSE(ctx.fieldInserter->convertProvinceFields(QStringLiteral("{\\rtf1 x}")).isEmpty());
    s.program->exitCurrentProgram();
    EXPECT_EQ(ctx.fieldInserter, nullptr);
    EXPECT_EQ(ctx.database, nullptr);
    EXPECT_EQ(ctx.msgbox, nullptr);
    EXPECT_EQ(ctx.errors, nullptr);
}
