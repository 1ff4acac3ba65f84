#include "app/modRecentFiles.h"

#include "context/AppContext.h"
#include "files/clsINI.h"
#include "spell/QtPrinters.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <gtest/gtest.h>

namespace {

const QString kSection = QStringLiteral("QuillmerePadMRU");

struct Fixture {
    TestEnvironment env;
    ScopedAppContext context;
    clsINI ini;
    Fixture() { ini.setINIFile(env.path(QStringLiteral("work/Qminiqmd.dni"))); }

    QString stored(int position) {
        return ini.getKeyString(kSection, QStringLiteral("Name%1").arg(position),
                                QStringLiteral("-"));
    }
};

QString doc(const char* name) {
    return QStringLiteral("/letters/") + QLatin1String(name) + QStringLiteral(".qmw");
}

} // namespace

TEST(RecentFilesTest, NewestFirstAtMostEightAndTheFileHoldsTheSameList) {
    Fixture f;
    RecentFiles list;
    list.GetMRUList(&f.ini);
    EXPECT_TRUE(list.entries().isEmpty()) << "a new settings file lists nothing";

    const char* names[] = {"a", "b", "c", "d", "e", "f", "g", "h", "i"};
    for (const char* name : names) {
        list.SaveMRUFile(&f.ini, doc(name));
    }
    const QStringList expected = {doc("i"), doc("h"), doc("g"), doc("f"),
                                  doc("e"), doc("d"), doc("c"), doc("b")};
    EXPECT_EQ(list.entries(), expected) << "the ninth file drops the oldest";
    for (int i = 1; i <= 8; ++i) {
        EXPECT_EQ(f.stored(i), expected.at(i - 1));
    }
    RecentFiles reread;
    reread.GetMRUList(&f.ini);
    EXPECT_EQ(reread.entries(), expected);
}

TEST(RecentFilesTest, ReopeningMovesTheEntryToTheHeadRegardlessOfCase) {
    Fixture f;
    RecentFiles list;
    list.SaveMRUFile(&f.ini, QStringLiteral("/Letters/A.qmb"));
    list.SaveMRUFile(&f.ini, doc("b"));
    list.SaveMRUFile(&f.ini, doc("c"));
    list.SaveMRUFile(&f.ini, QStringLiteral("/letters/a.QMB"));
    EXPECT_EQ(list.entries(), (QStringList{QStringLiteral("/letters/a.QMB"), doc("c"), doc("b")}));
    // The keys past the list's end hold no path (the read back marks them unset).
    EXPECT_EQ(f.stored(4), QStringLiteral("<not_set>"));
}

TEST(RecentFilesTest, ShortAndUnsetValuesAreSkippedAndTheRestMoveUp) {
    Fixture f;
    f.ini.setKeyValue(kSection, QStringLiteral("Name1"), QStringLiteral("ab"));
    f.ini.setKeyValue(kSection, QStringLiteral("Name2"), doc("one"));
    f.ini.setKeyValue(kSection, QStringLiteral("Name3"), QString());
    f.ini.setKeyValue(kSection, QStringLiteral("Name4"), QStringLiteral("<not_set>"));
    f.ini.setKeyValue(kSection, QStringLiteral("Name5"), QStringLiteral("abc"));
    f.ini.setKeyValue(kSection, QStringLiteral("Name8"), doc("two"));
    RecentFiles list;
    list.GetMRUList(&f.ini);
    EXPECT_EQ(list.entries(), (QStringList{doc("one"), QStringLiteral("abc"), doc("two")}));
    // The read filled the empty key; the next read still skips it.
    EXPECT_EQ(f.stored(3), QStringLiteral("<not_set>"));
    list.GetMRUList(&f.ini);
    EXPECT_EQ(list.entries().size(), 3);
}

TEST(RecentFilesTest, ADamagedSettingsFileStillGivesAList) {
    Fixture f;
    writeTestFile(f.ini.INIFile(), QByteArray("\xff\xfe garbage\r\n[QuillmerePadMRU\r\n"
                                              "=no key\r\n[QuillmerePadMRU]\r\nName1=") +
                                       doc("kept").toLatin1() +
                                       "\r\n[QuillmerePadMRU]\r\nName2=/x/dup.qmw\r\n");
    RecentFiles list;
    list.GetMRUList(&f.ini);
    ASSERT_FALSE(list.entries().isEmpty());
    EXPECT_EQ(list.entries().front(), doc("kept"));
    list.SaveMRUFile(&f.ini, doc("new"));
    EXPECT_EQ(list.entries().front(), doc("new"));
    EXPECT_EQ(f.stored(1), doc("new"));
}

TEST(RecentFilesTest, CaptionsShowThePositionAndTheBareName) {
    const struct {
        int position;
        const char* path;
        const char* caption;
    } cases[] = {
        {1, "/letters/Year end.qmw", "1. Year end"},
        {3, "/a.b/notes", "3. notes"},
        {8, "/clients/Smith & Sons.qmt", "8. Smith && Sons"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(RecentFiles::itemCaption(c.position, QString::fromUtf8(c.path)),
                  QString::fromUtf8(c.caption));
    }
}

TEST(RecentFilesTest, AVanishedFileOrAFolderGivesTheMessage) {
    TestEnvironment env;
    const QString file = env.path(QStringLiteral("docs/here.qmw"));
    writeTestFile(file, "{\\rtf1 }");
    const QString message = QStringLiteral("The file you have selected doesn't exist.");
    EXPECT_EQ(recentFileProblem(file), std::nullopt);
    EXPECT_EQ(recentFileProblem(env.path(QStringLiteral("docs/gone.qmw"))), message);
    EXPECT_EQ(recentFileProblem(env.path(QStringLiteral("docs"))), message);
}
