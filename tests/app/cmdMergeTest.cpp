#include "CommandRun.h"
#include "app/Commands.h"
#include "context/AppContext.h"
#include "merge/MergeTestDatabase.h"
#include "platform/fileControl.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

CommandRun run(CommandHandler handler, const QStringList& args) {
    return runCommand(handler, args);
}

class MergeCommandsTest : public ::testing::Test {
protected:
    void SetUp() override {
        database = env.path("practice.qmd");
        // The fixture database lives only while it is filled; the commands
        // open the file themselves.
        MergeTestDatabase db(database);
        db.fillStandardPractice();
    }
    TestEnvironment env;
    QString database;
    const QString letter = testDataPath("merge/Merge Template - Year End Letter.qmb");
};

TEST_F(MergeCommandsTest, CheckReportsTheFirstFaultOrNone) {
    const struct {
        const char* name;
        QStringList args;
        int status;
        const char* out;
    } cases[] = {
        {"Clean",
         {letter, "--database", database},
         0,
         "There are no merge errors in this document.\n"},
        // The regional rewrite on opening reaches only raw guillemets, not the
        // escapes of RTF text: in Quebec «WSIB Number» stays and is unknown.
        {"Quebec",
         {letter, "--province", "8"},
         1,
         "The Quillmere Pad did not recognize: \u00ABWSIB Number\u00BB as a valid placeholder "
         "field name.\n"},
        {"BadFormat",
         {testDataPath("merge/bad-format.qmb")},
         1,
         "The date format of: 'MMMM D YYYY' is not valid.  Please see help for valid date "
         "formats.\n"},
    };
    for (const auto& c : cases) {
        const CommandRun r = run(runCheckCommand, c.args);
        EXPECT_EQ(r.status, c.status) << c.name << r.err.toStdString();
        EXPECT_EQ(r.out, QString::fromUtf8(c.out)) << c.name;
    }
    EXPECT_EQ(run(runCheckCommand, {env.path("missing.qmb")}).status, 2);
    const CommandRun notRtf = run(runCheckCommand, {testDataPath("merge/not-rtf.qmb")});
    EXPECT_EQ(notRtf.status, 2);
    EXPECT_EQ(notRtf.err, "This is not a valid Quillmere Pad file.  Try opening this file as a "
                          "text file.\n");
    EXPECT_EQ(run(runCheckCommand, {}).status, 2);
}

TEST_F(MergeCommandsTest, CheckAllListsValuesThatWouldBreakALetterAndFilesNothing) {
    const CommandRun flagged = run(runCheckCommand, {letter, "--database", database, "--all"});
    EXPECT_EQ(flagged.status, 1) << flagged.err.toStdString();
    EXPECT_EQ(flagged.out, "There are no merge errors in this document.\n"
                           "Beta {Braces} \\Back\tcheck value:\tCompany Name: Beta {Braces} "
                           "\\Back\n");
    EXPECT_EQ(QDir(env.root()).entryList({"*.qmw"}, QDir::Files).size(), 0);

    const QString clean = env.path("clean.qmd");
    {
        MergeTestDatabase db(clean);
        db.fillStandardPractice();
        db.exec("UPDATE Companies SET CompanyName = 'Beta' WHERE CompanyID = 20");
    }
    const CommandRun none = run(runCheckCommand, {letter, "--database", clean, "--all"});
    EXPECT_EQ(none.status, 0) << none.err.toStdString();
    EXPECT_EQ(none.out, "There are no merge errors in this document.\n");
    // --all needs the database to read the clients from.
    EXPECT_EQ(run(runCheckCommand, {letter, "--all"}).status, 2);
}

TEST_F(MergeCommandsTest, MergeFilesEachRecipientAndPrintsWhereTo) {
    const QString root = env.root() + "/vault";
    const CommandRun r =
        run(runMergeCommand, {letter, "--database", database, "--out", root, "--ids",
                              "20:,10:100,x:102", "--today", "2024-03-05", "--report"});
    ASSERT_EQ(r.status, 0) << r.err.toStdString();
    const QString file = "Mar 5 2024 - Year End Letter.qmw";
    EXPECT_EQ(r.out, "Information\t" + root + "/Personal Tax Clients/Solo Person/" + file +
                         "\n\tempty:\tCompany Name, City, (Year End Date, mmmm d yyyy), WSIB "
                         "Number\n"
                         "Acme Widgets\t" +
                         root + "/Acme Widgets/" + file +
                         "\n\tempty:\tWSIB Number\n"
                         "Beta {Braces} \\Back\t" +
                         root + "/Beta {Braces} _Back/" + file +
                         "\n\tempty:\tCity, Contact Display Name, (Year End Date, mmmm d "
                         "yyyy), WSIB Number\n"
                         // The name would break the letter's RTF: the practice is told.
                         "\tcheck value:\tCompany Name: Beta {Braces} \\Back\n");
    const QByteArray acme = *fileControl::readWholeFile(root + "/Acme Widgets/" + file);
    EXPECT_TRUE(acme.contains("Dear \\b Jo Smith\\b0 ,")) << acme.constData();
    EXPECT_TRUE(acme.contains("year end is March 31 2024")) << acme.constData();
    EXPECT_TRUE(acme.contains("Today 05/03/24, Smith & Associates")) << acme.constData();
    EXPECT_TRUE(acme.contains("{\\QMDocumentType \\val 4}"));

    const CommandRun all = run(
        runMergeCommand, {letter, "--database", database, "--out", root, "--all", "--type", "3"});
    ASSERT_EQ(all.status, 0) << all.err.toStdString();
    EXPECT_EQ(all.out.count('\n'), 2) << all.out.toStdString();
    EXPECT_TRUE(all.out.startsWith("Jo Smith\t"));
}

TEST_F(MergeCommandsTest, PdfPutsALetterAsPdfBesideEachFiledLetter) {
    const QString root = env.root() + "/vault";
    const CommandRun r =
        run(runMergeCommand, {letter, "--database", database, "--out", root, "--ids", "10:100",
                              "--today", "2024-03-05", "--pdf"});
    ASSERT_EQ(r.status, 0) << r.err.toStdString();
    const QString pdf = root + "/Acme Widgets/Mar 5 2024 - Year End Letter.pdf";
    EXPECT_TRUE(r.out.endsWith("\tpdf:\t" + pdf + "\n")) << r.out.toStdString();
    const std::optional<QByteArray> bytes = fileControl::readWholeFile(pdf);
    ASSERT_TRUE(bytes);
    EXPECT_TRUE(bytes->startsWith("%PDF-"));
    EXPECT_TRUE(bytes->trimmed().endsWith("%%EOF")) << "a whole PDF";
}

TEST_F(MergeCommandsTest, MergeRefusesBadUsage) {
    const QString root = env.root() + "/vault";
    const QList<QStringList> bad = {
        {letter, "--database", database, "--out", root},
        {letter, "--database", database, "--out", root, "--ids", "1", "--all"},
        {letter, "--out", root, "--all"},
        {letter, "--database", env.path("nothing.qmd"), "--out", root, "--all"},
        {letter, "--database", database, "--out", root, "--all", "--today", "5/3/2024"},
        {env.path("missing.qmb"), "--database", database, "--out", root, "--all"},
        {letter, "--database", database, "--out", root, "--all", "--type", "7"},
    };
    for (const QStringList& args : bad) {
        const CommandRun r = run(runMergeCommand, args);
        EXPECT_EQ(r.status, 2) << args.join(' ').toStdString();
        EXPECT_FALSE(r.err.isEmpty());
        EXPECT_TRUE(r.out.isEmpty());
    }
}

TEST_F(MergeCommandsTest, AMergeWithFailedLettersExitedZero) {
    const QString root = env.root() + "/vault";
    database = env.path("escaping.qmd");
    {
        MergeTestDatabase db(database);
        db.fillStandardPractice();
        db.exec("INSERT INTO ClientDocumentStorage (ClientDataNum, FolderPath) VALUES (1010, "
                "'../elsewhere')");
    }
    const QString file = "Mar 5 2024 - Year End Letter.qmw";
    const CommandRun r =
        run(runMergeCommand, {letter, "--database", database, "--out", root, "--ids",
                              "10:100,30:,30:", "--today", "2024-03-05", "--report"});
    EXPECT_EQ(r.status, 3);
    EXPECT_TRUE(r.err.startsWith("Acme Widgets\tnot filed:\t")) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("outside the document vault")) << r.err.toStdString();
    // Both letters of the other client are listed; the second replaced the
    // first, which is kept and named.
    EXPECT_EQ(r.out.count("Gamma Ltd\t" + root + "/Gamma Ltd/" + file + "\n"), 2)
        << r.out.toStdString();
    EXPECT_TRUE(r.out.endsWith("\treplaced:\t" + root + "/Gamma Ltd/Replaced/" + file + "\n"))
        << r.out.toStdString();
    EXPECT_FALSE(QFileInfo::exists(env.root() + "/elsewhere"));
}

// Task and appointment merges chosen by search criteria on the command line.
class FilteredMergeCommandTest : public MergeCommandsTest {
protected:
    void SetUp() override {
        database = env.path("practice.qmd");
        MergeTestDatabase db(database);
        db.fillStandardPractice();
        db.insert("Schedule", {{"ScheduleID", 501},
                               {"ClientNum", 1030},
                               {"scheduleName", "GST Return Q2"},
                               {"DueDate", "2024-05-31"}});
        db.insert("Schedule", {{"ScheduleID", 502},
                               {"ClientNum", 1020},
                               {"scheduleName", "Payroll Remittance"},
                               {"DueDate", "2024-02-15"}});
        db.insert("Appointments", {{"AppointmentID", 703},
                                   {"CompanyIDNum", 30},
                                   {"Subject", "O'Neil's review"},
                                   {"DateFrom", "2024-06-04"}});
    }
    CommandRun merge(const QStringList& extra) {
        return run(runMergeCommand, QStringList{letter, "--database", database, "--out", root,
                                                "--today", "2024-03-05"} +
                                        extra);
    }
    // The recipient names of the output, in order.
    static QStringList names(const QString& out) {
        QStringList result;
        for (const QString& line : out.split(u'\n', Qt::SkipEmptyParts)) {
            result << line.section(u'\t', 0, 0);
        }
        return result;
    }
    const QString root = env.root() + "/vault";
};

TEST_F(FilteredMergeCommandTest, CriteriaChooseTheRecords) {
    const struct {
        const char* name;
        QStringList args;
        QStringList names;
    } cases[] = {
        {"TaskName",
         {"--tasks", "taskName=GST;searchByTaskName=1;SQLSort=ORDER BY Schedule.DueDate"},
         {"Acme Widgets", "Gamma Ltd"}},
        {"TaskDueRange",
         {"--tasks", "searchDueDate=1;dateMatch=4;firstDate=2024-01-01;secondDate=2024-04-30"},
         {"Acme Widgets", "Beta {Braces} \\Back"}},
        {"TypeGivenToo",
         {"--type", "4", "--tasks", "searchByClient=1;companyID=30"},
         {"Gamma Ltd"}},
        {"AppointmentSubjectWithApostrophe",
         {"--appointments", "searchBySubject=1;subjectText=O'Neil"},
         {"Gamma Ltd"}},
        {"AppointmentsInDateOrder",
         {"--appointments", "dateMatch=1;firstDate=2024-06-01"},
         {"Acme Widgets", "Gamma Ltd"}},
    };
    for (const auto& c : cases) {
        const CommandRun r = merge(c.args);
        ASSERT_EQ(r.status, 0) << c.name << ": " << r.err.toStdString();
        EXPECT_EQ(names(r.out), c.names) << c.name << ": " << r.out.toStdString();
    }
    const QByteArray gamma =
        *fileControl::readWholeFile(root + "/Gamma Ltd/Mar 5 2024 - Year End Letter.qmw");
    EXPECT_TRUE(gamma.contains("{\\QMInformationType \\val 5}")) << gamma.constData();
}

TEST_F(FilteredMergeCommandTest, BadCriteriaAndEmptyResultsAreRefused) {
    const struct {
        const char* name;
        QStringList args;
        int status;
        const char* err; // part of the error output
    } cases[] = {
        {"UnknownField", {"--tasks", "TaskName=GST"}, 2, "Unknown search field \"TaskName\""},
        {"UnknownAppointmentField",
         {"--appointments", "taskName=GST"},
         2,
         "Unknown search field \"taskName\""},
        {"BadValue", {"--tasks", "dateMatch=often"}, 2, "dateMatch takes a whole number"},
        {"Apostrophe", {"--tasks", "taskName=O'Neil;searchByTaskName=1"}, 2, "apostrophe"},
        {"BrokenFilter", {"--tasks", "searchDueDate=1;dateMatch=9"}, 2, "filter"},
        {"OtherType",
         {"--type", "1", "--tasks", "taskName=GST"},
         2,
         "--tasks merges information type 4"},
        {"TwoSources", {"--all", "--tasks", "taskName=GST"}, 2, "Usage:"},
        {"NoItems",
         {"--tasks", "taskName=nothing;searchByTaskName=1"},
         1,
         "There are no items that match the search criteria you have indicated.  Please try "
         "again."},
    };
    for (const auto& c : cases) {
        const CommandRun r = merge(c.args);
        EXPECT_EQ(r.status, c.status) << c.name;
        EXPECT_TRUE(r.err.contains(QString::fromUtf8(c.err)))
            << c.name << ": " << r.err.toStdString();
        EXPECT_TRUE(r.out.isEmpty()) << c.name;
    }
    EXPECT_FALSE(QFileInfo::exists(root));
}

} // namespace

namespace {

TEST(InstallSampleTest, ANewPracticeGetsSampleTemplatesThatMergeWithoutFaults) {
    TestEnvironment env;
    const CommandRun first = run(runInstallSampleCommand, {});
    ASSERT_EQ(first.status, 0) << first.err.toStdString();
    const QString database =
        first.out.section(QStringLiteral("Wrote "), 1).section(QStringLiteral(": "), 0, 0);
    ASSERT_TRUE(QFileInfo::exists(database)) << first.out.toStdString();

    const QDir templates(QDir::homePath() +
                         QStringLiteral("/Documents/Quillmere Files/Template Documents"));
    const QStringList samples = templates.entryList({QStringLiteral("*.qm?")}, QDir::Files);
    ASSERT_EQ(samples.size(), 3) << first.out.toStdString() << first.err.toStdString();
    for (const QString& name : samples) {
        SCOPED_TRACE(name.toStdString());
        const CommandRun check = run(
            runCheckCommand, {templates.filePath(name), QStringLiteral("--database"), database});
        EXPECT_EQ(check.status, 0) << check.err.toStdString();
        EXPECT_TRUE(check.out.contains(QStringLiteral("There are no merge errors")));
    }

    // A template the practice has since changed is never overwritten.
    const QString edited = templates.filePath(samples.first());
    ASSERT_TRUE(fileControl::writeFileAtomically(edited, "{\\rtf1 ours}"));
    ASSERT_TRUE(QFile::remove(database));
    const CommandRun again = run(runInstallSampleCommand, {});
    ASSERT_EQ(again.status, 0) << again.err.toStdString();
    EXPECT_EQ(fileControl::readWholeFile(edited).value_or(QByteArray()),
              QByteArray("{\\rtf1 ours}"));
}

} // namespace
