#include "files/TemplateFolderCopy.h"

#include "support/TestEnvironment.h"
#include "support/WriteBlockedFolder.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

struct Folders {
    TestEnvironment env;
    QString from = env.path(QStringLiteral("old templates"));
    QString to = env.root() + QStringLiteral("/new templates");

    void source(const QString& relative, const QByteArray& bytes = "x") {
        writeTestFile(from + QLatin1Char('/') + relative, bytes);
    }
};

TEST(TemplateFolderCopyTest, CopiesTheTreeAndKeepsWhatTheNewFolderAlreadyHolds) {
    Folders f;
    f.source(QStringLiteral("Engagement Letter.qmb"), "old letter");
    f.source(QStringLiteral("list.db"), "words");
    f.source(QStringLiteral("Tax/Year End.qmt"), "year end");
    f.source(QStringLiteral("Tax/Deep/Reminder.qma"), "reminder");
    writeTestFile(f.to + QStringLiteral("/Engagement Letter.qmb"), "edited in the new place");

    QStringList lines;
    int lastFiles = -1;
    int lastValue = -1;
    int lastMax = -1;
    TemplateFolderCopy::Events events;
    events.reportLine = [&](const QString& line) { lines << line; };
    events.counted = [&](int files, int) { lastFiles = files; };
    events.progress = [&](int, int max, int value) {
        lastMax = max;
        lastValue = value;
    };
    const auto result = TemplateFolderCopy::run(f.from, f.to, events);

    EXPECT_TRUE(result.problem.isEmpty()) << result.problem.toStdString();
    EXPECT_EQ(result.copied, QStringList({"Tax/Deep/Reminder.qma", "Tax/Year End.qmt", "list.db"}));
    EXPECT_EQ(result.skipped, QStringList{"Engagement Letter.qmb"});
    EXPECT_TRUE(result.failed.isEmpty());
    EXPECT_EQ(result.folders, 2);
    EXPECT_EQ(readTestFile(f.to + QStringLiteral("/Engagement Letter.qmb")),
              "edited in the new place");
    EXPECT_EQ(readTestFile(f.to + QStringLiteral("/Tax/Deep/Reminder.qma")), "reminder");
    EXPECT_EQ(lastFiles, 4);
    EXPECT_EQ(lastValue, 4);
    EXPECT_EQ(lastMax, 4);
    EXPECT_TRUE(result.report.startsWith(QStringLiteral("File copy report\n================\n")));
    EXPECT_TRUE(result.report.contains(QStringLiteral("Skipped (already there): Engagement "
                                                      "Letter.qmb")));
    EXPECT_TRUE(result.report.contains(QStringLiteral("3 copied, 1 skipped, 0 failed.")));
    // Every line the panel was told is in the report it shows at the end.
    for (const QString& line : lines) {
        EXPECT_TRUE(result.report.contains(line)) << line.toStdString();
    }
}

TEST(TemplateFolderCopyTest, ANewFolderInsideTheOldOneIsNotCopiedIntoItself) {
    Folders f;
    f.source(QStringLiteral("a.qmb"));
    f.source(QStringLiteral("Sub/b.qmb"));
    const QString inside = f.from + QStringLiteral("/Moved");
    const auto result = TemplateFolderCopy::run(f.from, inside);
    EXPECT_TRUE(result.ok()) << result.report.toStdString();
    EXPECT_EQ(result.copied, QStringList({"Sub/b.qmb", "a.qmb"}));
    EXPECT_FALSE(QFileInfo::exists(inside + QStringLiteral("/Moved")));
}

TEST(TemplateFolderCopyTest, RefusesWhatCannotBeCopiedAndTouchesNothing) {
    Folders f;
    f.source(QStringLiteral("a.qmb"));
    const QString sameByAnotherName = f.from + QStringLiteral("/../old templates/");
    for (const auto& [from, to] : std::vector<std::pair<QString, QString>>{
             {f.env.root() + QStringLiteral("/missing"), f.to},
             {f.from, sameByAnotherName},
             {f.from, QString()},
         }) {
        const auto result = TemplateFolderCopy::run(from, to);
        EXPECT_FALSE(result.problem.isEmpty()) << from.toStdString() << " -> " << to.toStdString();
        EXPECT_TRUE(result.copied.isEmpty());
        EXPECT_FALSE(result.ok());
    }
    EXPECT_FALSE(QFileInfo::exists(f.to));
}

TEST(TemplateFolderCopyTest, AFileThatCannotBeWrittenIsReportedAndTheRestStillCopied) {
    Folders f;
    f.source(QStringLiteral("Locked/a.qmb"));
    f.source(QStringLiteral("b.qmb"));
    QDir().mkpath(f.to + QStringLiteral("/Locked"));
    WriteBlockedFolder blocked(f.to + QStringLiteral("/Locked"),
                               QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    if (!blocked.blocked()) {
        GTEST_SKIP() << blocked.whyNot().toStdString();
    }
    const auto result = TemplateFolderCopy::run(f.from, f.to);
    EXPECT_EQ(result.copied, QStringList{"b.qmb"});
    ASSERT_EQ(result.failed.size(), 1);
    EXPECT_TRUE(result.failed[0].startsWith(QStringLiteral("Locked/a.qmb: ")));
    EXPECT_FALSE(result.ok());
    EXPECT_TRUE(result.report.contains(QStringLiteral("1 copied, 0 skipped, 1 failed.")));
}

TEST(TemplateFolderCopyTest, StopsBetweenFilesWhenCancelled) {
    Folders f;
    for (const char* name : {"a.qmb", "b.qmb", "c.qmb"}) {
        f.source(QLatin1String(name));
    }
    int asked = 0;
    TemplateFolderCopy::Events events;
    events.cancelled = [&] { return ++asked > 1; };
    const auto result = TemplateFolderCopy::run(f.from, f.to, events);
    EXPECT_TRUE(result.cancelled);
    EXPECT_EQ(result.copied, QStringList{"a.qmb"});
    EXPECT_FALSE(QFileInfo::exists(f.to + QStringLiteral("/b.qmb")));
}

TEST(TemplateFolderCopyTest, ProgressValuesAreKeptInsideTheBar) {
    struct Case {
        int min, max, value, shown;
        const char* percent;
    };
    for (const Case& c :
         {Case{0, 10, 5, 5, "50%"}, Case{0, 10, 12, 10, "100%"}, Case{5, 10, 2, 5, "0%"},
          Case{0, 3, 1, 1, "33%"}, Case{0, 0, 0, 0, "0%"}, Case{-10, 10, 0, 0, "50%"}}) {
        EXPECT_EQ(clampProgress(c.min, c.max, c.value), c.shown) << c.value;
        EXPECT_EQ(progressPercentText(c.min, c.max, c.value), QLatin1String(c.percent))
            << c.min << ".." << c.max << " at " << c.value;
    }
    EXPECT_EQ(elapsedTimeText(0), QStringLiteral("0:00:00"));
    EXPECT_EQ(elapsedTimeText(3'725'999), QStringLiteral("1:02:05"));
}

TEST(TemplateFolderCopyTest, TheFolderDialogStartsInTheStoredThenTheDefaultThenTheCurrentFolder) {
    TestEnvironment env;
    const QString defaults = env.path(QStringLiteral("Template Documents"));
    QDir().mkpath(defaults);
    const QString missing = env.root() + QStringLiteral("/gone");
    const QString current = QStringLiteral("/current/");
    EXPECT_EQ(templateFolderDialogStart(QStringLiteral("/stored/"), defaults, current),
              QStringLiteral("/stored/"));
    EXPECT_EQ(templateFolderDialogStart(QStringLiteral("  "), defaults, current), defaults);
    EXPECT_EQ(templateFolderDialogStart(QStringLiteral("<not_set>"), defaults, current), defaults);
    EXPECT_EQ(templateFolderDialogStart(QString(), missing, current), current);
    EXPECT_EQ(templateFolderDialogStart(QString(), QString(), current), current);
}

TEST(TemplateFolderCopyTest, ACopyIsOfferedOnlyFromAnotherFolderThatHoldsFiles) {
    Folders f;
    const QString empty = f.env.path(QStringLiteral("empty"));
    QDir().mkpath(empty);
    QDir().mkpath(f.to);
    EXPECT_FALSE(shouldOfferTemplateCopy(empty, f.to));
    f.source(QStringLiteral("Deep/Only.qmb"));
    EXPECT_TRUE(shouldOfferTemplateCopy(f.from, f.to));
    EXPECT_FALSE(shouldOfferTemplateCopy(f.from, f.from + QStringLiteral("/./")));
    EXPECT_FALSE(shouldOfferTemplateCopy(f.from, f.env.root() + QStringLiteral("/missing")));
}

} // namespace
