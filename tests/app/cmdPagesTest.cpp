#include "app/Commands.h"
#include "support/TestEnvironment.h"

#include <QFile>
#include <QTextStream>
#include <gtest/gtest.h>

namespace {

struct CommandRun {
    int status;
    QStringList lines;
    QString err;
};

CommandRun runPages(const QStringList& args) {
    QString out;
    QString err;
    QTextStream outStream(&out);
    QTextStream errStream(&err);
    CommandIO io{outStream, errStream};
    const int status = runPagesCommand(args, io);
    outStream.flush();
    errStream.flush();
    return {status, out.split(QLatin1Char('\n'), Qt::SkipEmptyParts), err};
}

// A letter of numbered RTF paragraphs, long enough to run onto three sheets.
QString writeLetter(const TestEnvironment& env, int paragraphs) {
    QByteArray rtf = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Liberation Serif;}}\\f0\\fs24 ";
    for (int i = 1; i <= paragraphs; ++i) {
        rtf += "Paragraph " + QByteArray::number(i) + " of the letter to the client.\\par ";
    }
    rtf += "}";
    const QString path = env.path(QStringLiteral("letter.rtf"));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(rtf);
    return path;
}

TEST(cmdPagesTest, ALongLetterPrintsOneLinePerSheetThenTheCount) {
    TestEnvironment env;
    const CommandRun run = runPages({writeLetter(env, 130)});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    ASSERT_EQ(run.lines.size(), 4);
    EXPECT_EQ(run.lines.last(), QStringLiteral("pages: 3"));
    EXPECT_TRUE(run.lines[0].startsWith(QStringLiteral("1\tParagraph 1 of the letter")));
    int previous = 0;
    for (int page = 1; page <= 3; ++page) {
        const QString line = run.lines[page - 1];
        const QStringList parts = line.split(QLatin1Char('\t'));
        ASSERT_EQ(parts.size(), 2) << line.toStdString();
        EXPECT_EQ(parts[0].toInt(), page);
        EXPECT_EQ(parts[1].size(), 60) << "the first 60 characters, line ends as blanks";
        // Each sheet starts with a later paragraph than the one before.
        const int paragraph = parts[1].section(QLatin1Char(' '), 1, 1).toInt();
        EXPECT_GT(paragraph, previous);
        previous = paragraph;
    }
}

TEST(cmdPagesTest, TheThreePageLetterBreaksBetweenParagraphLines) {
    const CommandRun run =
        runPages({testDataPath(QStringLiteral("documents/three-page-letter.rtf"))});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    ASSERT_EQ(run.lines.size(), 4);
    EXPECT_EQ(run.lines.last(), QStringLiteral("pages: 3"));
    EXPECT_TRUE(run.lines[0].startsWith(QStringLiteral("1\tHarbour & Vale Accountants 12 Quay")));
    for (int page = 2; page <= 3; ++page) {
        // A sheet starts with a whole word of a paragraph, never a blank line.
        const QString head = run.lines[page - 1].section(QLatin1Char('\t'), 1);
        EXPECT_TRUE(head.at(0).isLetter()) << head.toStdString();
    }
}

TEST(cmdPagesTest, FixturesOpenAsTheWindowOpensThem) {
    for (const char* name : {"lo-letter.rtf", "lo-plain.rtf", "hand-edge.rtf"}) {
        const CommandRun run = runPages({testDataPath(QStringLiteral("rtf/") + name)});
        ASSERT_EQ(run.status, 0) << name << run.err.toStdString();
        ASSERT_GE(run.lines.size(), 2) << name;
        const int pages = run.lines.last().section(QLatin1Char(' '), 1).toInt();
        EXPECT_EQ(run.lines.size(), pages + 1) << name;
        EXPECT_GE(pages, 1);
    }
}

TEST(cmdPagesTest, BadArgumentsAndFilesGiveAMessage) {
    TestEnvironment env;
    const QString binary = env.path(QStringLiteral("program.qmb"));
    {
        QFile file(binary);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("\x7f"
                              "ELF\x02\x01\x01\0\0\0",
                              10)
                       .repeated(50));
    }
    struct Case {
        QStringList args;
        int status;
    };
    for (const Case& c : {Case{{}, 2}, Case{{QStringLiteral("a"), QStringLiteral("b")}, 2},
                          Case{{env.path(QStringLiteral("missing.rtf"))}, 1},
                          Case{{env.path(QString())}, 1}, Case{{binary}, 1}}) {
        const CommandRun run = runPages(c.args);
        EXPECT_EQ(run.status, c.status) << c.args.join(QLatin1Char(' ')).toStdString();
        EXPECT_FALSE(run.err.isEmpty());
        EXPECT_TRUE(run.lines.isEmpty());
    }
}

} // namespace
