#include "app/clsDocMerge.h"

#include "app/ScriptedDocMergeApplication.h"
#include "context/AppContext.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

namespace {

// What a host's error object was told, in order.
class RecordingHostErrors : public HostErrorObject {
public:
    explicit RecordingHostErrors(QStringList& log) : m_log(log) {}
    void enterProcedure(const QString& tag) override { m_log << "enter:" + tag; }
    void leaveProcedure() override { m_log << "leave"; }
    void reportError(int number, const QString& description) override {
        m_log << QStringLiteral("error:%1:%2").arg(number).arg(description);
    }

private:
    QStringList& m_log;
};

struct Fixture {
    ScopedAppContext context;
    TestEnvironment env;
    ScriptedDocMergeApplication application;
    clsDocMerge object{application};
};

std::vector<short> listedIDs(const clsDocMerge& object) {
    std::vector<short> ids;
    for (const QStringList& row : object.IDList()) {
        ids.push_back(row.value(0).toShort());
    }
    return ids;
}

} // namespace

TEST(clsDocMergeTest, PropertiesStartAsAFreshObjectAndKeepWhatTheHostPuts) {
    Fixture f;
    EXPECT_EQ(f.object.currentProvince(), 3);
    EXPECT_EQ(f.object.userID(), 0);
    EXPECT_TRUE(f.object.AppWorkingDataFolder().isEmpty());
    EXPECT_TRUE(f.object.DatabaseLocation().isEmpty());
    EXPECT_FALSE(f.object.isValidDatabase());

    f.object.setCurrentProvince(-7);
    f.object.setUserID(123456);
    f.object.setAppWorkingDataFolder("/srv/practice/");
    EXPECT_EQ(f.object.currentProvince(), -7);
    EXPECT_EQ(f.object.userID(), 123456);
    EXPECT_EQ(f.object.AppWorkingDataFolder(), "/srv/practice/");
    EXPECT_TRUE(f.application.calls.isEmpty()) << "plain fields start nothing";
}

TEST(clsDocMergeTest, DatabaseLocationKeepsOnlyAnExistingFile) {
    struct Case {
        const char* name;
        const char* path; // relative to the test folder, "" for empty
        bool kept;
    };
    const Case cases[] = {
        {"existing file", "data/Data.qmd", true},
        {"missing file", "data/missing.qmd", false},
        {"a folder", "data", false},
        {"empty", "", false},
    };
    for (const Case& c : cases) {
        Fixture f;
        writeTestFile(f.env.path("data/Data.qmd"), "sqlite");
        const QString path = *c.path ? f.env.root() + "/" + c.path : QString();
        // A valid location first, so that a bad one visibly empties it.
        f.object.setDatabaseLocation(f.env.path("data/Data.qmd"));
        f.object.setDatabaseLocation(path);
        EXPECT_EQ(f.object.DatabaseLocation(), c.kept ? path : QString()) << c.name;
        EXPECT_EQ(f.object.isValidDatabase(), c.kept) << c.name;
        EXPECT_EQ(f.context->databaseLocation, f.object.DatabaseLocation()) << c.name;
    }
}

TEST(clsDocMergeTest, DocumentCallsBeforeAnOpeningCallFailWithNoActiveDocument) {
    Fixture f;
    auto expectNoDocument = [](const std::function<void()>& call, const char* name) {
        try {
            call();
            ADD_FAILURE() << name << " did not fail";
        } catch (const DocMergeError& e) {
            EXPECT_EQ(e.kind(), DocMergeError::Kind::NoActiveDocument) << name;
            EXPECT_TRUE(QString::fromUtf8(e.what()).contains("opening call")) << name;
        }
    };
    expectNoDocument([&] { f.object.setSQLFilter("CompanyID = 4"); }, "SQLFilter put");
    expectNoDocument([&] { (void)f.object.SQLFilter(); }, "SQLFilter get");
    expectNoDocument([&] { f.object.setIDListArray(QVariantList{1, 2}); }, "IDListArray");
    expectNoDocument([&] { (void)f.object.IDList(); }, "IDList get");
    expectNoDocument([&] { f.object.setIDList({{"1", "2"}}); }, "IDList put");
    expectNoDocument([&] { f.object.performMerge(); }, "performMerge");
    EXPECT_FALSE(f.application.calls.contains("performMerge"));
    EXPECT_FALSE(f.application.calls.contains("connectToRemittRST"));
}

TEST(clsDocMergeTest, IDListArrayConvertsEachElementToSixteenBits) {
    struct Case {
        const char* name;
        QVariant value;
        std::vector<short> listed;
        std::optional<DocMergeError::Kind> error;
    };
    const Case cases[] = {
        {"array of numbers", QVariantList{12, 7, 32767}, {12, 7, 32767}, {}},
        {"typed integer array", QVariant::fromValue(QList<int>{5, -3}), {5, -3}, {}},
        {"numeric text in an array", QVariantList{QString("41"), 2.5}, {41, 2}, {}},
        {"single number", QVariant(99), {99}, {}},
        {"single string is ignored", QVariant(QString("12")), {}, {}},
        {"missing value does nothing", QVariant(), {}, {}},
        {"above 32767 overflows", QVariantList{1, 32768}, {}, DocMergeError::Kind::Overflow},
        {"below -32768 overflows", QVariant(-40000), {}, DocMergeError::Kind::Overflow},
        {"word in an array",
         QVariantList{1, QString("abc")},
         {},
         DocMergeError::Kind::TypeMismatch},
    };
    for (const Case& c : cases) {
        Fixture f;
        f.object.openDocMergeProgram();
        std::optional<DocMergeError::Kind> raised;
        try {
            f.object.setIDListArray(c.value);
        } catch (const DocMergeError& e) {
            raised = e.kind();
        }
        EXPECT_EQ(raised, c.error) << c.name;
        // A failing array adds nothing, not even its good elements.
        EXPECT_EQ(listedIDs(f.object), c.listed) << c.name;
    }
}

TEST(clsDocMergeTest, IDListAndSQLFilterWorkOnTheActiveDocument) {
    Fixture f;
    f.object.openNewMergeDocument(1);
    f.object.setIDListArray(QVariantList{3, 4});
    f.object.setIDListArray(QVariantList{9});
    EXPECT_EQ(listedIDs(f.object), (std::vector<short>{3, 4, 9})) << "entries accumulate";

    f.object.setIDList({{"21", "-1"}, {"22", "5"}});
    EXPECT_EQ(f.object.IDList(), (std::vector<QStringList>{{"21", "-1"}, {"22", "5"}}))
        << "a put replaces the list";

    f.object.setSQLFilter("ScheduleID > 3");
    EXPECT_EQ(f.object.SQLFilter(), "ScheduleID > 3");
    EXPECT_EQ(f.application.calls.last(), "connectToRemittRST");
}

TEST(clsDocMergeTest, OpeningCallsRunStartUpWithTheHostsValuesInOrder) {
    Fixture f;
    writeTestFile(f.env.path("Letter.qmt"), "{\\rtf1 x}");
    f.application.savedTemplate.IDList.addRow(0, {"8"});
    f.application.savedTemplate.SQLFilter = "kept";
    f.object.setAppWorkingDataFolder("/work/");
    f.object.setCurrentProvince(9);
    f.object.setUserID(5);

    f.object.openExistingMergeDocument(f.env.path("Letter.qmt"), 3);
    EXPECT_EQ(f.application.calls, QStringList({"busy", "start:/work/:9:5", "doEvents",
                                                "open:" + f.env.path("Letter.qmt"),
                                                "changeTemplateInformation:3", "idle"}));
    EXPECT_FALSE(f.context->isStandAlone);
    EXPECT_TRUE(f.object.IDList().empty());
    EXPECT_TRUE(f.object.SQLFilter().isEmpty());
}

TEST(clsDocMergeTest, MergeTypeSevenKeepsTheTemplatesListAndFilter) {
    Fixture f;
    writeTestFile(f.env.path("Letter.qmt"), "{\\rtf1 x}");
    f.application.savedTemplate.IDList.addRow(0, {"8"});
    f.application.savedTemplate.SQLFilter = "ScheduleID = 2";
    f.object.openExistingMergeDocument(f.env.path("Letter.qmt"), 7);
    EXPECT_EQ(listedIDs(f.object), std::vector<short>{8});
    EXPECT_EQ(f.object.SQLFilter(), "ScheduleID = 2");
    EXPECT_FALSE(f.application.calls.join(",").contains("changeTemplateInformation"));
}

TEST(clsDocMergeTest, OpeningAMissingFileStartsNothingAndLeavesTheObjectOpenable) {
    Fixture f;
    f.object.openExistingMergeDocument(f.env.path("gone.qmt"), 1);
    EXPECT_TRUE(f.application.calls.isEmpty());
    EXPECT_FALSE(f.object.isOpened());
    EXPECT_TRUE(f.context->isStandAlone);
    f.object.openDocMergeProgram();
    EXPECT_TRUE(f.object.isOpened());
    EXPECT_TRUE(f.application.calls.contains("newDocument"));
}

TEST(clsDocMergeTest, ASecondOpeningCallIsRefusedWithoutStartingAgain) {
    Fixture f;
    f.object.openNewMergeDocument(4);
    const int starts = int(f.application.calls.filter("start:").size());
    try {
        f.object.openDocMergeProgram();
        ADD_FAILURE() << "second opening call accepted";
    } catch (const DocMergeError& e) {
        EXPECT_EQ(e.kind(), DocMergeError::Kind::AlreadyOpen);
    }
    EXPECT_EQ(f.application.calls.filter("start:").size(), starts);
    EXPECT_EQ(f.application.document->informationType, 4);
}

TEST(clsDocMergeTest, TaggedProceduresReportFaultsToTheHostsErrorObject) {
    Fixture f;
    QStringList hostLog;
    f.object.setErrorClass(std::make_unique<RecordingHostErrors>(hostLog));
    f.object.openDocMergeProgram();
    f.application.mergeFault = "Database gone";
    EXPECT_NO_THROW(f.object.performMerge());
    EXPECT_EQ(hostLog, QStringList({"enter:QuillmerePad.exe-clsDocMerge-openDocMergeProgram",
                                    "leave", "enter:QuillmerePad.exe-clsDocMerge-performMerge",
                                    "error:3001:Database gone", "leave"}));

    // Untagged accessors push nothing.
    hostLog.clear();
    f.object.setIDListArray(QVariantList{1});
    f.object.setUserID(2);
    EXPECT_TRUE(hostLog.isEmpty());
}

TEST(clsDocMergeTest, ExitEventQuitAndForegroundReachTheApplication) {
    Fixture f;
    int told = 0;
    f.object.setExitDocMergeHandler([&] { ++told; });
    f.object.RaiseEventExitDocMerge();
    EXPECT_EQ(told, 1);
    f.object.bringQuillmerePadToTop();
    EXPECT_EQ(f.application.calls,
              QStringList({"doEvents", "doEvents", "doEvents", "doEvents", "foreground"}));
    f.object.Quit();
    EXPECT_EQ(f.application.calls.last(), "exit");
}
