#include "print/PaperSetup.h"

#include "documents/DocumentModel.h"
#include "print/PaperTable.h"

#include <gtest/gtest.h>

namespace {

const QSize kPicture(2400, 2400);

PaperSetup letterSetup() {
    PaperSetup setup;
    setup.setupForm(kPicture);
    return setup;
}

TEST(PaperTableTest, TheListStandsInItsOrderWithItsCodes) {
    const auto& table = paperTable();
    ASSERT_EQ(table.size(), 39u);
    std::vector<int> codes;
    for (const PaperEntry& entry : table) {
        codes.push_back(entry.code);
    }
    const std::vector<int> expected = {1,  3,  4,  5,  6,  7,  8,  9,  11, 12, 13, 14, 15,
                                       16, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29,
                                       30, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 256};
    EXPECT_EQ(codes, expected);
    EXPECT_EQ(table[7].text, QStringLiteral("A4 (210 x 297 mm)"));
    EXPECT_EQ(table[30].text, QStringLiteral("Envelope B5 (176 x 250 mm")) << "bracket as tabled";
    EXPECT_EQ(table.back().text, QStringLiteral("User Defined"));
}

TEST(PaperTableTest, LookupKnowsTheTwoCodesTheListDoesNotOffer) {
    EXPECT_EQ(paperDimensions(2), QSize(12240, 15840));
    EXPECT_EQ(paperDimensions(10), QSize(11906, 16838));
    EXPECT_EQ(paperDimensions(16), paperDimensions(4)) << "Tabloid Landscape is Ledger's size";
    EXPECT_FALSE(paperDimensions(256));
    EXPECT_FALSE(paperDimensions(17));
}

TEST(PaperSetupTest, TheBoxesShowInchesAndTheListTheDocumentsPaper) {
    DocumentModel document;
    document.PaperSize = 9;
    document.putPageWidth(11906, false);
    document.putPageHeight(16838, false);
    document.putLeftMargin(1800, false);
    PaperSetup setup = PaperSetup::fromDocument(document);
    setup.setupForm(kPicture);
    EXPECT_EQ(setup.paperListIndex, 7);
    EXPECT_EQ(setup.txtPageSize[0], QStringLiteral("8.27"));
    EXPECT_EQ(setup.txtPageSize[1], QStringLiteral("11.69"));
    EXPECT_EQ(setup.txtMargins[PaperSetup::Left], QStringLiteral("1.25"));
    EXPECT_EQ(setup.txtMargins[PaperSetup::Right], QStringLiteral("1"));
    EXPECT_EQ(setup.orientationOption, 1);
}

TEST(PaperSetupTest, ChoosingFromTheListOverridesTheOrientation) {
    PaperSetup setup = letterSetup();
    setup.optOrientation_Click(2);
    EXPECT_EQ(setup.txtPageSize[0], QStringLiteral("11")) << "landscape swaps the boxes";
    EXPECT_EQ(setup.paperWidth, 15840);
    setup.cboPaperSize_Click(paperIndexOfCode(11)); // A5
    EXPECT_EQ(setup.Orientation, 1);
    EXPECT_EQ(setup.orientationOption, 1);
    EXPECT_EQ(setup.paperWidth, 8391);
    for (int code : {31, 35}) { // Envelope C6 and B6 are tabled wide
        setup.cboPaperSize_Click(paperIndexOfCode(code));
        EXPECT_EQ(setup.Orientation, 2) << code;
    }
}

TEST(PaperSetupTest, PortraitSwapsOnlyABoxWiderThanHigh) {
    PaperSetup setup = letterSetup();
    setup.optOrientation_Click(1);
    EXPECT_EQ(setup.txtPageSize[0], QStringLiteral("8.5"));
    EXPECT_EQ(setup.paperHeight, 15840);
}

TEST(PaperSetupTest, TypingASizeSwitchesToUserDefinedAndKeepsIt) {
    PaperSetup setup = letterSetup();
    EXPECT_TRUE(PaperSetup::keyPasses(QLatin1Char('7')));
    EXPECT_TRUE(PaperSetup::keyPasses(QLatin1Char('.')));
    EXPECT_TRUE(PaperSetup::keyPasses(QChar(8)));
    EXPECT_FALSE(PaperSetup::keyPasses(QLatin1Char('x')));
    EXPECT_FALSE(PaperSetup::keyPasses(QLatin1Char('-')));
    setup.pageSizeKeyTyped();
    setup.txtPageSize[0] = QStringLiteral("7.5");
    EXPECT_EQ(setup.PaperSize, UserDefinedPaper);
    EXPECT_EQ(setup.paperListIndex, int(paperTable().size()) - 1);
    EXPECT_FALSE(setup.txtPageSize_Validate());
    EXPECT_EQ(setup.paperWidth, 10800);
    EXPECT_EQ(setup.txtPageSize[0], QStringLiteral("7.5"));
}

TEST(PaperSetupTest, PageSizesFrom0To99Pass) {
    PaperSetup setup = letterSetup();
    setup.txtPageSize[0] = QStringLiteral("0");
    EXPECT_FALSE(setup.txtPageSize_Validate()) << "a width of 0 passes";
    setup.txtPageSize[1] = QStringLiteral("99.5");
    const auto fault = setup.txtPageSize_Validate();
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->box, PaperSetup::Height);
    EXPECT_EQ(fault->message,
              QStringLiteral("You must enter a page height value between 0 and 99."));
}

TEST(PaperSetupTest, MarginsAreBoundedByThePaperLessTheStoredOppositeMargin) {
    PaperSetup setup = letterSetup();
    setup.txtMargins[PaperSetup::Left] = QStringLiteral("7.5"); // 12240 - 1440, exactly
    EXPECT_FALSE(setup.txtMargins_Validate()) << "the upper bound itself passes";
    EXPECT_EQ(setup.MarginLeft, 10800);

    setup.txtMargins[PaperSetup::Right] = QStringLiteral("9");
    setup.txtMargins[PaperSetup::Top] = QStringLiteral("20");
    const auto fault = setup.txtMargins_Validate();
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->box, PaperSetup::Right) << "the first fault stops the check";
    EXPECT_EQ(fault->message,
              QStringLiteral("You must enter a right margin value between 0 and 1."));
    EXPECT_EQ(setup.MarginRight, 1440) << "nothing is taken from a failed check";
}

TEST(PaperSetupTest, TheDrawingScalesTheSheetAndKeepsTheMarginDivisor) {
    PaperSetup setup = letterSetup();
    // 12240 / 8.41 + 60 = 1515 wide, 15840 / 8.41 + 60 = 1943 high.
    EXPECT_EQ(setup.shpPage, QRect((2400 - 1515) / 2, (2400 - 1943) / 2, 1455, 1883));
    EXPECT_EQ(setup.shpShadow.topLeft(), setup.shpPage.topLeft() + QPoint(60, 60));
    EXPECT_EQ(setup.shpMargins.left(), setup.shpPage.left() + 171);
    EXPECT_EQ(setup.shpMargins.width(), int(1455 - 2 * 1440 / 8.41));

    setup.cboPaperSize_Click(paperIndexOfCode(26)); // E size: shrunk into the picture
    EXPECT_EQ(setup.shpPage.height() + 60, 2400);
    EXPECT_LE(setup.shpPage.width() + 60, 2400);
    EXPECT_EQ(setup.shpMargins.top(), setup.shpPage.top() + 171) << "margins keep 8.41";
}

TEST(PaperSetupTest, OkWritesTheGeometryBackAndMarksTheDocumentChanged) {
    DocumentModel document;
    PaperSetup setup = PaperSetup::fromDocument(document);
    setup.setupForm(kPicture);
    setup.cboPaperSize_Click(paperIndexOfCode(9));
    setup.txtMargins[PaperSetup::Top] = QStringLiteral("0.5");
    setup.boxEdited(true);
    ASSERT_FALSE(setup.ok());
    EXPECT_TRUE(setup.ClickedOK);
    setup.applyTo(document);
    EXPECT_EQ(document.PaperSize, 9);
    EXPECT_EQ(document.getPageWidth(), 11906);
    EXPECT_EQ(document.getPageHeight(), 16838);
    EXPECT_EQ(document.getTopMargin(), 720);
    EXPECT_EQ(document.getDocumentOrientation(), 1);
    EXPECT_TRUE(document.HasDocumentChanged);
}

} // namespace
