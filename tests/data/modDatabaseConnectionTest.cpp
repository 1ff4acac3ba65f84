#include "data/modDatabaseConnection.h"

#include "context/AppContext.h"
#include "data/SamplePractice.h"
#include "data/databaseControl.h"
#include "platform/MsgboxClass.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QProcess>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

struct ConnectionCase {
    const char* name;
    const char* file;    // relative path handed over; empty: none
    QByteArray contents; // written when not null
    bool sample;         // a sample practice at the path
    bool connected;
    const char* reason; // part of the reason that lastError() gives
};

class OpenCompaniesDatabaseTest : public ::testing::TestWithParam<ConnectionCase> {};

TEST_P(OpenCompaniesDatabaseTest, ConnectsOrTellsTheUser) {
    const ConnectionCase& c = GetParam();
    TestEnvironment env;
    ScopedAppContext context;
    ScriptedMsgbox messages;
    context->msgbox = &messages;
    const QString path =
        QString::fromLatin1(c.file).isEmpty() ? QString() : env.path(QString::fromLatin1(c.file));
    if (c.sample) {
        SamplePracticeOptions o;
        o.clients = 2;
        o.referenceDate = QDate(2024, 1, 1);
        SamplePractice::write(path, o);
    } else if (!c.contents.isNull()) {
        writeTestFile(path, c.contents);
    }
    std::unique_ptr<databaseControl> db = openCompaniesDatabase(path);
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(db->isConnected(), c.connected);
    EXPECT_EQ(db->numberedSettings(), (std::vector<int>{2, 3, 2}));
    if (c.connected) {
        EXPECT_TRUE(messages.shown().empty());
    } else {
        ASSERT_EQ(messages.shown().size(), 1u);
        EXPECT_EQ(messages.shown()[0].text,
                  QStringLiteral("The Quillmere Pad was not able to access the companies database "
                                 "and needs to close."));
        EXPECT_TRUE(db->lastError().contains(QLatin1String(c.reason)))
            << db->lastError().toStdString();
        EXPECT_EQ(messages.shown()[0].kind, MsgboxClass::KindFatal);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Files, OpenCompaniesDatabaseTest,
    ::testing::Values(
        ConnectionCase{"Sample", "Data/Data.qmd", {}, true, true, ""},
        ConnectionCase{"NoPath", "", {}, false, false, "does not exist"},
        ConnectionCase{"Missing", "Data/Nope.qmd", {}, false, false, "does not exist"},
        ConnectionCase{"Empty", "Data/Data.qmd", QByteArray(""), false, false, "too short"},
        ConnectionCase{"Text", "Data/Data.qmd", QByteArray("hello\r\n"), false, false, "too short"},
        ConnectionCase{"LongText", "Data/Data.qmd", QByteArray("hello\r\n").repeated(30), false,
                       false, "not a database"}),
    [](const auto& p) { return std::string(p.param.name); });

TEST(OpenCompaniesDatabaseWithoutMessages, StaysQuiet) {
    ScopedAppContext context;
    std::unique_ptr<databaseControl> db =
        openCompaniesDatabase(QStringLiteral("/nonexistent/Data.qmd"));
    EXPECT_FALSE(db->isConnected());
}

// A practice's file on a read-only medium: connected, and the user told
// what will not be saved.
TEST(OpenCompaniesDatabaseReadOnly, ConnectsAndSaysWhatIsNotSaved) {
    if (geteuid() != 0)
        GTEST_SKIP() << "needs root to mount a read-only file system";
    TestEnvironment env;
    const QString medium = env.path(QStringLiteral("medium/"));
    QDir().mkpath(medium);
    if (QProcess::execute(QStringLiteral("mount"),
                          {"-t", "tmpfs", "-o", "size=4m", "none", medium}) != 0)
        GTEST_SKIP() << "cannot mount a tmpfs here";
    const QString path = medium + QStringLiteral("Data.qmd");
    SamplePracticeOptions o;
    o.clients = 2;
    o.referenceDate = QDate(2024, 1, 1);
    SamplePractice::write(path, o);
    const bool remounted =
        QProcess::execute(QStringLiteral("mount"), {"-o", "remount,ro", medium}) == 0;
    if (remounted) {
        ScopedAppContext context;
        ScriptedMsgbox messages;
        context->msgbox = &messages;
        std::unique_ptr<databaseControl> db = openCompaniesDatabase(path);
        EXPECT_TRUE(db->isConnected()) << db->lastError().toStdString();
        EXPECT_TRUE(db->isReadOnly());
        EXPECT_EQ(messages.shown().size(), 1u);
        if (!messages.shown().empty()) {
            EXPECT_EQ(messages.shown()[0].text, db->readOnlyNotice());
            EXPECT_TRUE(messages.shown()[0].text.contains(QStringLiteral("contact repairs")));
            EXPECT_EQ(messages.shown()[0].kind, MsgboxClass::KindNormal);
        }
        db.reset();
    }
    QProcess::execute(QStringLiteral("umount"), {medium});
    ASSERT_TRUE(remounted) << "cannot remount the tmpfs read-only";
}

} // namespace
