#include "documents/DocumentFile.h"

#include "context/AppContext.h"
#include "platform/FullDiskFolder.h"
#include "platform/PrivateProfile.h"
#include "platform/errorClass.h"
#include "platform/richtext/RichTextBox.h"
#include "support/TestEnvironment.h"

#include <QProcess>
#include <gtest/gtest.h>
#include <map>

namespace {
// A full trailer (a missing line would take the value before it) with
// some values replaced.
QByteArray trailerWith(const std::map<QByteArray, QByteArray>& values) {
    const std::pair<const char*, const char*> lines[] = {
        {"QMFileSaveType", "0"},     {"QMDocumentType", "2"},    {"QMInformationType", "1"},
        {"QMPaperOrientation", "1"}, {"QMPaperSize", "1"},       {"QMPageHeight", "15840"},
        {"QMPageWidth", "12240"},    {"QMLeftMargin", "1440"},   {"QMRightMargin", "1440"},
        {"QMTopMargin", "500"},      {"QMBottomMargin", "1440"},
    };
    QByteArray trailer = "\r\n{\\QuillmereInfo";
    for (const auto& [label, value] : lines) {
        const auto replaced = values.find(label);
        trailer += QByteArray("{\\") + label + " \\val " +
                   (replaced == values.end() ? QByteArray(value) : replaced->second) + "}\r\n";
    }
    return trailer;
}
} // namespace

TEST(DocumentFileTest, SaveThenOpenGivesBackContentModelAndCaption) {
    TestEnvironment env;
    ScopedAppContext context;
    const QString path = env.path(QStringLiteral("Smith letter.qmb"));
    RichTextBox box;
    box.setTextRTF(QStringLiteral("{\\rtf1\\ansi Dear client}"));
    DocumentModel model;
    model.documentType = DocumentModel::Template;
    model.PaperSize = 9;
    model.putLeftMargin(720, false);
    DocumentFile::save(path, box, model);

    const OpenedDocument opened = DocumentFile::open(path);
    EXPECT_FALSE(opened.isPlainText);
    EXPECT_EQ(opened.model.documentType, DocumentModel::Template);
    EXPECT_EQ(opened.model.PaperSize, 9);
    EXPECT_EQ(opened.model.getLeftMargin(), 720);
    EXPECT_FALSE(opened.model.HasDocumentChanged);
    EXPECT_EQ(opened.caption, QStringLiteral("Merge Template - Smith letter"));
    RichTextBox reloaded;
    reloaded.setTextRTF(opened.rtf);
    EXPECT_TRUE(reloaded.Text().contains(QLatin1String("Dear client")));
}

TEST(DocumentFileTest, TextFromElsewhereOpensAsPlainTextWithoutATrailer) {
    TestEnvironment env;
    ScopedAppContext context;
    const QString path = env.path(QStringLiteral("notes.txt"));
    writeTestFile(path, "caf\xc3\xa9 {\\QuillmereInfo{\\QMPaperSize \\val 9}");
    const OpenedDocument opened = DocumentFile::open(path);
    EXPECT_TRUE(opened.isPlainText);
    EXPECT_EQ(opened.model.fileSaveType, DocumentModel::PlainText);
    EXPECT_EQ(opened.model.PaperSize, 1);
    EXPECT_TRUE(opened.text.startsWith(QStringLiteral("caf\u00e9")));
}

TEST(DocumentFileTest, ImpossiblePageSetupFallsBackWithAWarningAndTheRestIsKept) {
    struct Case {
        const char* name;
        std::map<QByteArray, QByteArray> values;
        int paper, width, left, top;
    };
    const Case cases[] = {
        {"unknown paper", {{"QMPaperSize", "2"}}, 1, 12240, 1440, 500},
        {"negative width", {{"QMPageWidth", "-100"}}, 1, 12240, 1440, 500},
        {"margins wider than the page",
         {{"QMLeftMargin", "7000"}, {"QMRightMargin", "7000"}},
         1,
         12240,
         1440,
         1440},
        {"not a number does not drop the rest",
         {{"QMPaperSize", "abc"}, {"QMLeftMargin", "900"}},
         1,
         12240,
         900,
         500},
    };
    for (const Case& c : cases) {
        TestEnvironment env;
        ScopedAppContext context;
        const QString path = env.path(QStringLiteral("a.qmb"));
        writeTestFile(path, "{\\rtf1 x}" + trailerWith(c.values));
        QStringList warnings;
        const OpenedDocument opened =
            DocumentFile::open(path, [&](const QString& line) { warnings << line; });
        EXPECT_EQ(warnings.size(), 1) << c.name << qPrintable(warnings.join('|'));
        EXPECT_EQ(opened.model.PaperSize, c.paper) << c.name;
        EXPECT_EQ(opened.model.getPageWidth(), c.width) << c.name;
        EXPECT_EQ(opened.model.getLeftMargin(), c.left) << c.name;
        EXPECT_EQ(opened.model.getTopMargin(), c.top) << c.name;
    }
}

TEST(DocumentFileTest, MissingAndRefusedFilesSayWhich) {
    TestEnvironment env;
    ScopedAppContext context;
    try {
        DocumentFile::open(env.path(QStringLiteral("none.qmb")));
        ADD_FAILURE() << "a missing file opened";
    } catch (const QmError& error) {
        EXPECT_EQ(error.number(), QmError::FileNotFound);
    }
    try {
        DocumentFile::open(env.root());
        ADD_FAILURE() << "a folder opened";
    } catch (const QmError& error) {
        EXPECT_EQ(error.number(), QmError::PathFileAccessError);
        EXPECT_TRUE(error.description().contains(QLatin1String("folder")));
    }
}

TEST(DocumentFileTest, SavingOnAFullDiskKeepsTheOldDocument) {
    FullDiskFolder disk;
    if (!disk.available()) {
        GTEST_SKIP() << qPrintable(disk.whySkipped());
    }
    ScopedAppContext context;
    const QString path = disk.path(QStringLiteral("letter.qmb"));
    DocumentModel model;
    DocumentFile::saveBytes(path, "{\\rtf1 old}", model);
    const QByteArray before = readTestFile(path);
    disk.fill();
    EXPECT_THROW(DocumentFile::saveBytes(path, QByteArray(40000, 'n'), model), QmError);
    EXPECT_EQ(readTestFile(path), before);
}

TEST(DocumentFileTest, ConvertOntoAFullDiskLeavesTheOldFileAndSaysWhy) {
    FullDiskFolder disk;
    if (!disk.available()) {
        GTEST_SKIP() << qPrintable(disk.whySkipped());
    }
    TestEnvironment env;
    const QString in = env.path(QStringLiteral("in.txt"));
    writeTestFile(in, QByteArray(40000, 'w'));
    const QString out = disk.path(QStringLiteral("out.rtf"));
    writeTestFile(out, "{\\rtf1 old}");
    disk.fill();
    QProcess convert;
    convert.start(QStringLiteral(QM_EXECUTABLE), {QStringLiteral("convert"), in, out});
    ASSERT_TRUE(convert.waitForFinished(60000));
    EXPECT_EQ(convert.exitCode(), 1);
    EXPECT_TRUE(convert.readAllStandardError().contains("No space"));
    EXPECT_EQ(readTestFile(out), QByteArray("{\\rtf1 old}"));
}

TEST(DocumentFileTest, TheSettingsFileOnAFullDiskKeepsItsOldContent) {
    FullDiskFolder disk;
    if (!disk.available()) {
        GTEST_SKIP() << qPrintable(disk.whySkipped());
    }
    const QString path = disk.path(QStringLiteral("Qminiqmd.dni"));
    const QByteArray old = "[Quillmere]\r\nVersion=1\r\n";
    writeTestFile(path, old);
    disk.fill();
    EXPECT_FALSE(PrivateProfile::writeValue(path, "Quillmere", "Long", QString(40000, 'x')));
    EXPECT_EQ(readTestFile(path), old);
}
