#include "app/modOpenDocumentsWizard.h"

#include "support/TestEnvironment.h"

#include <QDir>
#include <gtest/gtest.h>

namespace {

TEST(modOpenDocumentsWizardTest, NavigationFollowsThePosition) {
    const int last = openWizardStepCount() - 1;
    ASSERT_GE(last, 2);
    EXPECT_EQ(openWizardStepText(0),
              QStringLiteral("Click 'Next' to open a document from another text editor."));
    for (int step = 0; step <= last; ++step) {
        const WizardButtons b = openWizardButtons(step);
        EXPECT_EQ(b.back, step > 0) << step;
        EXPECT_EQ(b.next, step < last) << step;
        EXPECT_EQ(b.finish, step == last) << step;
        EXPECT_FALSE(openWizardStepTitle(step).isEmpty());
    }
    const WizardButtons outside = openWizardButtons(last + 1);
    EXPECT_FALSE(outside.back || outside.next || outside.finish);
}

TEST(modOpenDocumentsWizardTest, TellsTextFromAWordProcessorsOwnFormat) {
    using K = ForeignDocumentKind;
    struct Case {
        QByteArray head;
        K kind;
    };
    for (const Case& c : {
             Case{"{\\rtf1\\ansi Hello}", K::RichText},
             Case{"\xEF\xBB\xBF{\\rtf1 Hello}", K::RichText},
             Case{"Dear client,\r\nPlease find...", K::PlainText},
             Case{"", K::PlainText},
             Case{QByteArray("PK\x03\x04\x14\x00", 6), K::Binary},
             Case{QByteArray("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8), K::Binary},
             Case{"%PDF-1.7", K::Binary},
             Case{QByteArray("text\0with nul", 13), K::Binary},
         }) {
        EXPECT_EQ(classifyForeignDocument(c.head), c.kind) << c.head.toHex().toStdString();
    }
}

TEST(modOpenDocumentsWizardTest, SaysWhyAChosenFileCannotBeOpened) {
    TestEnvironment env;
    const QString rtf = env.path(QStringLiteral("letter.rtf"));
    writeTestFile(rtf, "{\\rtf1 Hello}");
    const QString docx = env.path(QStringLiteral("letter.docx"));
    writeTestFile(docx, QByteArray("PK\x03\x04rest", 8));
    const QString folder = env.path(QStringLiteral("folder.rtf"));
    QDir().mkpath(folder);

    EXPECT_TRUE(checkDocumentToOpen(rtf).isEmpty());
    EXPECT_EQ(checkDocumentToOpen(QStringLiteral(" ")),
              QStringLiteral("Please choose the document to open."));
    EXPECT_EQ(checkDocumentToOpen(env.root() + QStringLiteral("/gone.rtf")),
              QStringLiteral("The file ") + env.root() +
                  QStringLiteral("/gone.rtf does not exist."));
    EXPECT_TRUE(checkDocumentToOpen(folder).contains(QStringLiteral("is a folder")));
    const QString binary = checkDocumentToOpen(docx);
    EXPECT_TRUE(binary.startsWith(QStringLiteral("The file letter.docx is not saved as rich text")))
        << binary.toStdString();
}

} // namespace
