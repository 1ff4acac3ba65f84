#include "files/modQuickPicks.h"

#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

TEST(modQuickPicksTest, ListsDocumentsInReadingOrderAndLeavesTheRestOut) {
    TestEnvironment env;
    const QString folder = env.path(QStringLiteral("Template Documents"));
    for (const char* name :
         {"Letter 10.qmb", "letter 2.qmb", "Letter 1.QMB", "Notes.txt", "Reminder.qma", "Plain.rtf",
          "Year End.qmt", "Result.qmw", "Contact.qme", "list.db", ".hidden.rtf", "~lock.qmb",
          "Draft.qmb.Xy12Zq", "Old.rti", "NoExtension"}) {
        writeTestFile(folder + QLatin1Char('/') + QLatin1String(name), "x");
    }
    QDir().mkpath(folder + QStringLiteral("/Archive.qmb"));
    EXPECT_EQ(quickPickFiles(folder), QStringList({"Contact.qme", "Letter 1.QMB", "letter 2.qmb",
                                                   "Letter 10.qmb", "Notes.txt", "Plain.rtf",
                                                   "Reminder.qma", "Result.qmw", "Year End.qmt"}));
}

TEST(modQuickPicksTest, AMissingOrVanishedFolderGivesAnEmptyList) {
    TestEnvironment env;
    const QString folder = env.path(QStringLiteral("Templates"));
    writeTestFile(folder + QStringLiteral("/a.qmb"), "x");
    ASSERT_EQ(quickPickFiles(folder).size(), 1);
    ASSERT_TRUE(QDir(folder).removeRecursively());
    EXPECT_TRUE(quickPickFiles(folder).isEmpty());
    EXPECT_TRUE(quickPickFiles(QString()).isEmpty());
    EXPECT_TRUE(quickPickFiles(QStringLiteral("   ")).isEmpty());
}

TEST(modQuickPicksTest, PathsAndFolderMoves) {
    TestEnvironment env;
    const QString folder = env.path(QStringLiteral("Templates"));
    QDir().mkpath(folder);
    EXPECT_EQ(quickPickPath(QStringLiteral("/t"), QStringLiteral("a.qmb")),
              QStringLiteral("/t/a.qmb"));
    EXPECT_EQ(quickPickPath(QStringLiteral("/t/"), QStringLiteral("a.qmb")),
              QStringLiteral("/t/a.qmb"));
    EXPECT_EQ(nextQuickPickFolder(QStringLiteral("/old"), folder), folder);
    EXPECT_EQ(nextQuickPickFolder(QStringLiteral("/old"), QString()), QStringLiteral("/old"));
    EXPECT_EQ(nextQuickPickFolder(QStringLiteral("/old"), env.root() + QStringLiteral("/gone")),
              QStringLiteral("/old"));
}

TEST(modQuickPicksTest, TheSameFileIsRecognisedByAnyOfItsNames) {
    TestEnvironment env;
    const QString file = env.path(QStringLiteral("Templates")) + QStringLiteral("/a.qmb");
    writeTestFile(file, "x");
    const QString link = env.root() + QStringLiteral("/link.qmb");
    ASSERT_TRUE(QFile::link(file, link));
    EXPECT_TRUE(
        isSameDocumentFile(file, env.root() + QStringLiteral("/Templates/../Templates/a.qmb")));
    EXPECT_TRUE(isSameDocumentFile(file, link));
    EXPECT_FALSE(isSameDocumentFile(file, env.root() + QStringLiteral("/Templates/b.qmb")));
    EXPECT_FALSE(isSameDocumentFile(file, QString()));
    EXPECT_TRUE(isSameDocumentFile(QStringLiteral("/gone/x.qmb"), QStringLiteral("/gone/./x.qmb")));
}

} // namespace
