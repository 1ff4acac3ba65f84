#include "app/CommandLine.h"

#include "support/TestEnvironment.h"

#include <QProcess>
#include <gtest/gtest.h>

TEST(CommandLineTest, ArgumentsAreClassifiedAndAnythingUnknownIsAUsageError) {
    TestEnvironment env;
    const QString letter = env.path(QStringLiteral("letter.rtf"));
    writeTestFile(letter, "{\\rtf1 x}");
    using Kind = Invocation::Kind;
    struct Case {
        QStringList args;
        Kind kind;
        QStringList files;
        const char* error;
    };
    const Case cases[] = {
        {{}, Kind::Windowed, {}, ""},
        {{letter}, Kind::Windowed, {letter}, ""},
        {{"--automation"}, Kind::Automation, {}, ""},
        {{"text", "x"}, Kind::Headless, {}, ""},
        {{"--help"}, Kind::Headless, {}, ""},
        {{"nosuchcommand"}, Kind::UsageError, {}, "No such command or file: nosuchcommand"},
        {{letter, "--bogus"}, Kind::UsageError, {}, "Unknown option: --bogus"},
        {{"--automation", letter}, Kind::UsageError, {}, "--automation takes no files: "},
    };
    for (const Case& c : cases) {
        const Invocation got = classifyArguments(c.args);
        EXPECT_EQ(got.kind, c.kind) << qPrintable(c.args.join(' '));
        EXPECT_EQ(got.files, c.files) << qPrintable(c.args.join(' '));
        if (*c.error == '\0') {
            EXPECT_TRUE(got.error.isEmpty()) << qPrintable(got.error);
        } else {
            EXPECT_TRUE(got.error.startsWith(QLatin1String(c.error))) << qPrintable(got.error);
        }
    }
}

TEST(CommandLineTest, AnOptionASubcommandDoesNotTakeIsRefusedBeforeItRuns) {
    QString out;
    QString err;
    QTextStream outStream(&out);
    QTextStream errStream(&err);
    CommandIO io{outStream, errStream};
    EXPECT_EQ(runHeadlessCommand({"convert", "a", "b", "--force"}, io), 2);
    errStream.flush();
    EXPECT_TRUE(err.contains(QLatin1String("Unknown option for convert: --force")))
        << qPrintable(err);
    // Options in the usage line pass, value or flag.
    EXPECT_EQ(runHeadlessCommand({"spell", "--tolerance", "x", "f"}, io), 2);
    errStream.flush();
    EXPECT_TRUE(err.contains(QLatin1String("--tolerance needs a number"))) << qPrintable(err);
}

TEST(CommandLineTest, TheProgramExitsWithUsageAndPrintsNoRuntimeFolderWarning) {
    QProcess unknown;
    unknown.start(QStringLiteral(QM_EXECUTABLE), {QStringLiteral("nosuchcommand")});
    ASSERT_TRUE(unknown.waitForFinished(60000));
    EXPECT_EQ(unknown.exitCode(), 2);
    EXPECT_TRUE(unknown.readAllStandardError().contains("No such command or file: nosuchcommand"));

    TestEnvironment env;
    const QString file = env.path(QStringLiteral("plain.txt"));
    writeTestFile(file, "hello");
    QProcess text;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    text.setProcessEnvironment(environment);
    text.start(QStringLiteral(QM_EXECUTABLE), {QStringLiteral("text"), file});
    ASSERT_TRUE(text.waitForFinished(60000));
    EXPECT_EQ(text.exitCode(), 0);
    EXPECT_EQ(text.readAllStandardError(), QByteArray());
    EXPECT_TRUE(text.readAllStandardOutput().contains("hello"));
}
