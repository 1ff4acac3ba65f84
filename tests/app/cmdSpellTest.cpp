#include "CommandRun.h"
#include "app/Commands.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QTextStream>
#include <gtest/gtest.h>

namespace {

CommandRun runSpell(const QStringList& args) {
    return runCommand(runSpellCommand, args);
}

QString golden(const QString& name) {
    return QString::fromUtf8(readTestFile(testDataPath(QStringLiteral("spell/") + name)));
}

} // namespace

// Golden files: scripts/spell-reference.py over the shipped list.
TEST(cmdSpellTest, PrintsEachMisspellingWithItsSuggestions) {
    TestEnvironment env;
    const QString folder = env.path(QStringLiteral("templates"));
    struct Case {
        const char* name;
        QString file;
        QStringList options;
        QString expected;
    };
    const Case cases[] = {
        {"plain text", "letter.txt", {}, golden("letter.tolerance3.golden")},
        {"one-letter suggestions",
         "letter.txt",
         {"--tolerance", "1"},
         golden("letter.tolerance1.golden")},
        {"two-letter suggestions",
         "letter.txt",
         {"--tolerance", "2"},
         golden("letter.tolerance2.golden")},
        {"rich text with a trailer", "memo.rtf", {}, golden("memo.golden")},
    };
    for (const Case& c : cases) {
        QStringList args{testDataPath(QStringLiteral("spell/") + c.file), "--folder", folder};
        args += c.options;
        const CommandRun run = runSpell(args);
        EXPECT_EQ(run.status, 0) << c.name << ": " << run.err.toStdString();
        EXPECT_EQ(run.out, c.expected) << c.name;
        EXPECT_EQ(run.err, QStringLiteral("Spell check complete\n")) << c.name;
    }
    EXPECT_TRUE(QFile::exists(folder + QStringLiteral("/list.db")));
}

TEST(cmdSpellTest, ReportsWhatItCannotDo) {
    TestEnvironment env;
    const QString clean = env.path(QStringLiteral("clean.txt"));
    writeTestFile(clean, "The invoice is attached.\n");
    const QString notAFolder = env.path(QStringLiteral("file"));
    writeTestFile(notAFolder, "x");
    const QString folder = env.path(QStringLiteral("templates"));
    struct Case {
        const char* name;
        QStringList args;
        int status;
        QString err;
    };
    const Case cases[] = {
        {"no file", {}, 2, "Usage: quillmere-pad spell FILE [--tolerance N] [--folder DIR]\n"},
        {"tolerance not a number",
         {clean, "--tolerance", "x"},
         2,
         "spell: --tolerance needs a number\n"},
        {"missing document",
         {env.path(QStringLiteral("absent.txt")), "--folder", folder},
         1,
         "spell: File not found\n"},
        {"list cannot be written",
         {clean, "--folder", notAFolder},
         1,
         "The spell check wizard was not able to access the spell check database and needs "
         "to close.\n"},
        {"nothing wrong", {clean, "--folder", folder}, 0, "There are no spelling errors\n"},
    };
    for (const Case& c : cases) {
        const CommandRun run = runSpell(c.args);
        EXPECT_EQ(run.status, c.status) << c.name;
        EXPECT_TRUE(run.out.isEmpty()) << c.name;
        EXPECT_EQ(run.err, c.err) << c.name;
    }
}
