#include "documents/DocumentProperties.h"

#include <gtest/gtest.h>

namespace {

TEST(DocumentPropertiesTest, CountsWordsAsAReaderWould) {
    struct Case {
        const char* text;
        int words;
    };
    for (const Case& c : {
             Case{"", 0},
             Case{"   \n\t ", 0},
             Case{"Dear client,", 2},
             Case{"one\ntwo\r\nthree\tfour", 4},
             Case{"Fees - 2025 - are due", 4},   // a lone dash is no word
             Case{"\xE2\x80\xA2 first item", 2}, // nor is a bullet
             Case{"Dear \xC2\xAB"
                  "Contact First Name\xC2\xBB,",
                  4},
             Case{"\xC2\xAB"
                  "Company Name\xC2\xBB\xC2\xAB"
                  "City\xC2\xBB",
                  3},
             Case{"year-end re-filing", 2},
         }) {
        EXPECT_EQ(countWords(QString::fromUtf8(c.text)), c.words) << c.text;
    }
}

TEST(DocumentPropertiesTest, CountsOnlyWholePlaceholders) {
    struct Case {
        const char* text;
        int placeholders;
    };
    for (const Case& c : {
             Case{"no fields", 0},
             Case{"\xC2\xAB"
                  "Company Name\xC2\xBB",
                  1},
             Case{"\xC2\xAB"
                  "A\xC2\xBB and \xC2\xAB(Year End Date, mmmm d yyyy)\xC2\xBB",
                  2},
             Case{"\xC2\xAB"
                  "A\xC2\xBB\xC2\xAB"
                  "B\xC2\xBB",
                  2},
             Case{"\xC2\xAB"
                  "unclosed",
                  0},
             Case{"stray\xC2\xBB \xC2\xAB"
                  "A\xC2\xBB",
                  1},
             Case{"\xC2\xAB\xC2\xBB and \xC2\xAB  \xC2\xBB", 0},
             Case{"\xC2\xAB"
                  "broken \xC2\xAB"
                  "Company Name\xC2\xBB",
                  1},
         }) {
        EXPECT_EQ(countPlaceholders(QString::fromUtf8(c.text)), c.placeholders) << c.text;
    }
}

TEST(DocumentPropertiesTest, NamesTheKindsAndDescribesThePage) {
    DocumentModel model;
    model.documentType = DocumentModel::Template;
    model.InformationType = InformationKind::Tasks;
    model.putDocumentOrientation(2, false);
    model.putPageWidth(20160, false);
    model.putPageHeight(12240, false);
    model.putLeftMargin(720, false);
    model.putTopMargin(1080, false);
    const auto rows = documentPropertyRows(model, QString(),
                                           QString::fromUtf8("Dear \xC2\xAB"
                                                             "Client\xC2\xBB"),
                                           3);
    ASSERT_EQ(rows.size(), 8u);
    const auto value = [&](const char* name) {
        for (const auto& r : rows) {
            if (r.name == QLatin1String(name)) {
                return r.value;
            }
        }
        return QStringLiteral("<missing>");
    };
    EXPECT_EQ(value("lblFile"), QStringLiteral("(not saved yet)"));
    EXPECT_EQ(value("lblDocumentType"), QStringLiteral("Merge Template"));
    EXPECT_EQ(value("lblInformationType"), QStringLiteral("Task of the remittance calendar"));
    EXPECT_EQ(value("lblPageSetup"),
              QStringLiteral("Landscape, 14.00 x 8.50 in; margins 0.50 left, 1.00 right, "
                             "0.75 top, 1.00 bottom"));
    EXPECT_EQ(value("lblPages"), QStringLiteral("3"));
    EXPECT_EQ(value("lblWords"), QStringLiteral("2"));
    EXPECT_EQ(value("lblPlaceholders"), QStringLiteral("1"));

    // A standard document merges nothing, whatever its trailer carried.
    EXPECT_EQ(informationTypeName(DocumentModel::Standard, InformationKind::Contacts),
              QStringLiteral("None"));
    EXPECT_EQ(informationTypeName(DocumentModel::SavedMergeResult, informationKindFromInt(42)),
              QStringLiteral("Unknown (42)"));
    EXPECT_EQ(documentTypeName(9), QStringLiteral("Unknown (9)"));
}

} // namespace
