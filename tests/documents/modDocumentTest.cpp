#include "documents/modDocument.h"

#include "context/AppContext.h"
#include "documents/DocumentModel.h"
#include "platform/errorClass.h"
#include "support/TestEnvironment.h"

#include <QFile>
#include <gtest/gtest.h>

namespace {

const QByteArray kRtf = "{\\rtf1\\ansi Hello}";

const QByteArray kDefaultTrailer = "\r\n{\\QuillmereInfo{\\QMFileSaveType \\val 0}\r\n"
                                   "{\\QMDocumentType \\val 1}\r\n"
                                   "{\\QMInformationType \\val 1}\r\n"
                                   "{\\QMPaperOrientation \\val 1}\r\n"
                                   "{\\QMPaperSize \\val 1}\r\n"
                                   "{\\QMPageHeight \\val 15840}\r\n"
                                   "{\\QMPageWidth \\val 12240}\r\n"
                                   "{\\QMLeftMargin \\val 1440}\r\n"
                                   "{\\QMRightMargin \\val 1440}\r\n"
                                   "{\\QMTopMargin \\val 1440}\r\n"
                                   "{\\QMBottomMargin \\val 1440}\r\n";

DocumentModel sampleDocument() {
    DocumentModel d;
    d.fileSaveType = 0;
    d.documentType = 4;
    d.InformationType = InformationKind::CompaniesAndContacts;
    d.PaperSize = 5;
    d.putDocumentOrientation(2, false);
    d.putPageHeight(12240, false);
    d.putPageWidth(20160, false);
    d.putLeftMargin(720, false);
    d.putRightMargin(1080, false);
    d.putTopMargin(1000, false);
    d.putBottomMargin(-5, false);
    return d;
}

void expectSameFields(const DocumentModel& a, const DocumentModel& b) {
    EXPECT_EQ(a.fileSaveType, b.fileSaveType);
    EXPECT_EQ(a.documentType, b.documentType);
    EXPECT_EQ(a.InformationType, b.InformationType);
    EXPECT_EQ(a.PaperSize, b.PaperSize);
    EXPECT_EQ(a.getDocumentOrientation(), b.getDocumentOrientation());
    EXPECT_EQ(a.getPageHeight(), b.getPageHeight());
    EXPECT_EQ(a.getPageWidth(), b.getPageWidth());
    EXPECT_EQ(a.getLeftMargin(), b.getLeftMargin());
    EXPECT_EQ(a.getRightMargin(), b.getRightMargin());
    EXPECT_EQ(a.getTopMargin(), b.getTopMargin());
    EXPECT_EQ(a.getBottomMargin(), b.getBottomMargin());
}

struct Fixture {
    TestEnvironment env;
    ScopedAppContext context;
    QString path = env.path(QStringLiteral("docs/letter.qmw"));
};

} // namespace

TEST(modDocumentTest, TheTrailerIsWrittenByteForByteBehindTheTextWithoutItsNul) {
    Fixture f;
    writeTestFile(f.path, kRtf + '\0');
    DocumentModel document;
    saveCompanionInformation(f.path, document);
    EXPECT_EQ(readTestFile(f.path), kRtf + kDefaultTrailer);
}

TEST(modDocumentTest, AnEmptyFileGetsTheTrailerAlone) {
    Fixture f;
    writeTestFile(f.path, "");
    DocumentModel document;
    saveCompanionInformation(f.path, document);
    EXPECT_EQ(readTestFile(f.path), kDefaultTrailer);
}

TEST(modDocumentTest, EveryValueReadsBack) {
    Fixture f;
    writeTestFile(f.path, kRtf);
    DocumentModel saved = sampleDocument();
    saveCompanionInformation(f.path, saved);
    DocumentModel loaded;
    openCompanionInformation(f.path, loaded);
    expectSameFields(loaded, saved);
    // Reading never asks the window to lay out again.
    bool relayout = false;
    DocumentModel watched;
    watched.setRelayoutHook([&] { relayout = true; });
    openCompanionInformation(f.path, watched);
    EXPECT_FALSE(relayout);
}

TEST(modDocumentTest, AValueBeyondSixteenBitsFailsBeforeTheFileIsTouched) {
    Fixture f;
    writeTestFile(f.path, kRtf);
    DocumentModel document;
    document.putPageHeight(40000, false);
    try {
        saveCompanionInformation(f.path, document);
        FAIL() << "no overflow";
    } catch (const QmError& fault) {
        EXPECT_EQ(fault.number(), QmError::Overflow);
    }
    EXPECT_EQ(readTestFile(f.path), kRtf);
}

TEST(modDocumentTest, TheReaderToleratesCaseBlanksEscapesAndAnOpenGroup) {
    struct Case {
        const char* name;
        QByteArray trailer;
        int paperSize;
        int orientation;
    };
    const Case cases[] = {
        {"other case", "{\\quillmereinfo{\\qmPaperSize \\val 7}{\\QMPAPERORIENTATION \\VAL 2}", 7,
         2},
        {"blanks around",
         "{\\QuillmereInfo{\\QMPaperSize \\val    9   }{\\QMPaperOrientation \\val\t2 }", 9, 2},
        {"escaped backslash", "{\\QuillmereInfo{\\QMPaperSize \\val \\'5c\\'5C}", 1, 1},
        {"closed group and text after", "{\\QuillmereInfo{\\QMPaperSize \\val 3}}\r\nx", 3, 1},
    };
    for (const auto& c : cases) {
        Fixture f;
        writeTestFile(f.path, kRtf + "\r\n" + c.trailer + "\r\n");
        DocumentModel document;
        if (QByteArray(c.name) == "escaped backslash") {
            // "\\" is not a number: a conversion fault, which without an
            // error object goes to the caller.
            EXPECT_THROW(openCompanionInformation(f.path, document), QmError) << c.name;
            continue;
        }
        openCompanionInformation(f.path, document);
        EXPECT_EQ(document.PaperSize, c.paperSize) << c.name;
        EXPECT_EQ(document.getDocumentOrientation(), c.orientation) << c.name;
    }
}

TEST(modDocumentTest, AFileWithoutTrailerKeepsTheDefaults) {
    Fixture f;
    writeTestFile(f.path, kRtf);
    DocumentModel document = sampleDocument();
    const DocumentModel before = document;
    openCompanionInformation(f.path, document);
    expectSameFields(document, before);
}

TEST(modDocumentTest, BadNumbersGoToTheHandlerAndGoOnReadsTheRest) {
    struct Case {
        const char* name;
        int answer;
        int expectedPageWidth;
    };
    // Page height is broken; page width stands behind it.
    for (const Case c :
         {Case{"go on", errorClass::GoOn, 9999}, Case{"leave", errorClass::Leave, 12240}}) {
        for (const char* bad : {"99999", "abc"}) {
            Fixture f;
            errorClass errors;
            f.context->errors = &errors;
            int prompts = 0;
            errors.setPrompt([&](const ErrorReport&) {
                ++prompts;
                return c.answer;
            });
            writeTestFile(f.path, kRtf + "\r\n{\\QuillmereInfo{\\QMPageHeight \\val " + bad +
                                      "}\r\n{\\QMPageWidth \\val 9999}\r\n");
            DocumentModel document;
            openCompanionInformation(f.path, document);
            EXPECT_EQ(prompts, 1) << c.name << bad;
            EXPECT_EQ(errors.lastReport().number,
                      QByteArray(bad) == "abc" ? QmError::TypeMismatch : QmError::Overflow);
            EXPECT_EQ(errors.lastReport().tagStack,
                      QStringList({"QuillmerePad.exe-modDocument-openCompanionInformation"}));
            EXPECT_EQ(document.getPageHeight(), 15840) << c.name << bad;
            EXPECT_EQ(document.getPageWidth(), c.expectedPageWidth) << c.name << bad;
        }
    }
}

TEST(modDocumentTest, TheCompanionFileWinsOverTheTrailerAndIsThenDeleted) {
    Fixture f;
    writeTestFile(f.path, kRtf);
    DocumentModel saved = sampleDocument();
    saveCompanionInformation(f.path, saved);
    const QString companion = f.env.path(QStringLiteral("docs/letter.rti"));
    writeTestFile(companion, "[FileInformation]\r\nFileType=1\r\nDocumentType=2\r\n"
                             "\r\n[PageInformation]\r\nleftMargin=100\r\nbottomMargin=200\r\n");
    DocumentModel loaded;
    openCompanionInformation(f.path, loaded);
    EXPECT_EQ(loaded.fileSaveType, 1);
    EXPECT_EQ(loaded.documentType, 2);
    EXPECT_EQ(loaded.InformationType, InformationKind::Companies); // missing key: its default
    EXPECT_EQ(loaded.getLeftMargin(), 100);
    EXPECT_EQ(loaded.getTopMargin(), 1440);
    EXPECT_EQ(loaded.getRightMargin(), 1440);
    EXPECT_EQ(loaded.getBottomMargin(), 200);
    // No keys for these: the trailer's values stand.
    EXPECT_EQ(loaded.PaperSize, 5);
    EXPECT_EQ(loaded.getDocumentOrientation(), 2);
    EXPECT_FALSE(QFile::exists(companion));
}

TEST(modDocumentTest, ACompanionThatIsNotAnIniFileGivesTheDefaults) {
    Fixture f;
    writeTestFile(f.path, kRtf);
    const QString companion = f.env.path(QStringLiteral("docs/letter.rti"));
    writeTestFile(companion, QByteArray("\x89PNG\r\n\x1a\n\0\0garbage", 18));
    DocumentModel loaded = sampleDocument();
    openCompanionInformation(f.path, loaded);
    EXPECT_EQ(loaded.fileSaveType, 0);
    EXPECT_EQ(loaded.documentType, 1);
    EXPECT_EQ(loaded.InformationType, InformationKind::Companies);
    EXPECT_EQ(loaded.getLeftMargin(), 1440);
    EXPECT_EQ(loaded.getBottomMargin(), 1440);
    EXPECT_FALSE(QFile::exists(companion));
    EXPECT_EQ(readTestFile(f.path), kRtf);
}

TEST(modDocumentTest, AnUnreadableFileIsAnErrorAndNothingIsCreated) {
    Fixture f;
    DocumentModel document;
    EXPECT_THROW(openCompanionInformation(f.path, document), QmError);
    EXPECT_THROW(saveCompanionInformation(f.path, document), QmError);
    EXPECT_FALSE(QFile::exists(f.path));
}

TEST(modDocumentTest, ExtensionsByKind) {
    struct Case {
        int documentType;
        int informationType;
        const char* extension;
    };
    const Case cases[] = {
        {1, 1, "rtf"}, {2, 1, "qmb"}, {2, 2, "qmb"}, {2, 3, "qme"}, {2, 4, "qmt"},
        {2, 5, "qma"}, {2, 6, ""},    {2, 8, ""},    {3, 1, ""},    {4, 3, "qmw"},
    };
    for (const auto& c : cases) {
        DocumentModel d;
        d.documentType = c.documentType;
        d.InformationType = informationKindFromInt(c.informationType);
        EXPECT_EQ(getFileExtension(d), QString::fromLatin1(c.extension))
            << c.documentType << "/" << c.informationType;
    }
}
