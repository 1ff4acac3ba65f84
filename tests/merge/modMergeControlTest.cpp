#include "merge/modMergeControl.h"

#include "StandardPracticeTest.h"
#include "context/AppContext.h"
#include "merge/MergeTestDatabase.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/richtext/RichTextBox.h"
#include "support/TestEnvironment.h"

#include <QStandardItemModel>
#include <gtest/gtest.h>

namespace {

using Tools = MergeToolBarSetup::Tools;

struct SetupCase {
    int documentType;
    InformationKind kind;
    Tools tools;
    QList<int> categories;
    bool navigationShown;
    bool navigationEnabled;
    bool formatting;
    const char* helpStart;
};

class MergeToolBarSetupTest : public ::testing::TestWithParam<SetupCase> {};

TEST_P(MergeToolBarSetupTest, ToolsFollowTheDocumentKind) {
    const SetupCase& c = GetParam();
    const MergeToolBarSetup s = modMergeControl::setupMergeToolBar(c.documentType, c.kind, true);
    EXPECT_EQ(s.tools, c.tools);
    EXPECT_EQ(s.categories, c.categories);
    EXPECT_EQ(s.navigationShown, c.navigationShown);
    EXPECT_EQ(s.navigationEnabled, c.navigationEnabled);
    EXPECT_EQ(s.formattingEnabled, c.formatting);
    EXPECT_TRUE(s.helpLine.startsWith(QLatin1String(c.helpStart))) << s.helpLine.toStdString();
}

const QList<int> kAll = {0, 1, 2, 3, 4, 5, 6};

INSTANTIATE_TEST_SUITE_P(
    ByKind, MergeToolBarSetupTest,
    ::testing::Values(SetupCase{1,
                                InformationKind::Appointments,
                                Tools::Standard,
                                {0},
                                false,
                                false,
                                true,
                                " Standard Document - "},
                      SetupCase{2, InformationKind::Companies, Tools::Company, kAll, false, false,
                                true, " Company Template Document - "},
                      SetupCase{2, InformationKind::CompaniesAndContacts, Tools::Contact, kAll,
                                false, false, true, " Contact Template Document - "},
                      SetupCase{2, InformationKind::Contacts, Tools::Contact, kAll, false, false,
                                true, " Contact Template Document - "},
                      SetupCase{2, InformationKind::Tasks, Tools::Remitt, kAll, false, false, true,
                                " Tasks Template Document - "},
                      SetupCase{2, InformationKind::Appointments, Tools::Appointment, kAll, false,
                                false, true, " Appointment Template Document - "},
                      // A kind from a damaged trailer: only a new kind can be picked.
                      SetupCase{2,
                                InformationKind::Dockets,
                                Tools::Standard,
                                {0},
                                false,
                                false,
                                true,
                                " Company Template Document - "},
                      SetupCase{3,
                                InformationKind::Companies,
                                Tools::Standard,
                                {},
                                true,
                                true,
                                true,
                                " Merge Document - "},
                      SetupCase{4,
                                InformationKind::Companies,
                                Tools::Standard,
                                {},
                                true,
                                false,
                                false,
                                " Client Merge Results Document - "}));

TEST(modMergeControlTest, HelpLinesReadWordForWord) {
    EXPECT_EQ(modMergeControl::setupMergeToolBar(2, InformationKind::Tasks, true).helpLine,
              " Tasks Template Document - You setup the template document by inserting "
              "placeholder fields.  Click the 'Insert Fields' button to insert fields.  To "
              "execute the merge, click the 'Create Merge Doc' button.");
    EXPECT_EQ(modMergeControl::setupMergeToolBar(4, InformationKind::Companies, true).helpLine,
              " Client Merge Results Document - This document is the result of a merge you have "
              "completed in the past.  This document has been locked for archival purposes and "
              "is meant to be opened for viewing purposes only.");
    // No text: no formatting, whatever the kind.
    EXPECT_FALSE(
        modMergeControl::setupMergeToolBar(3, InformationKind::Companies, false).formattingEnabled);
}

TEST(modMergeControlTest, TheDateListShowsTodayUnderEachFormatInOrder) {
    const QStringList dates = modMergeControl::currentDateEntries(QDate(2024, 3, 5));
    ASSERT_EQ(dates.size(), 14);
    EXPECT_EQ(dates[0], "Tuesday, March 5 2024");
    EXPECT_EQ(dates[3], "March 5 2024");
    EXPECT_EQ(dates[5], "05/03/24");
    EXPECT_EQ(dates[6], "03/05/24");
    EXPECT_EQ(dates[13], "March 5");
}

class MergeListsTest : public StandardPracticeTest {
protected:
    void SetUp() override {
        StandardPracticeTest::SetUp();
        control.initializeMergeToolBar();
        control.fillFieldLists(InformationKind::Companies);
        box.setText("Dear ,");
        box.setSelStart(5);
    }

    // The entry of list 2 whose text is `text`.
    int entryOf(const QString& text) const {
        const QStandardItemModel* list = control.list(2);
        for (int i = 0; i < list->rowCount(); ++i) {
            if (list->item(i)->text() == text) {
                return i;
            }
        }
        return -1;
    }

    modMergeControl control;
    RichTextBox box;
};

TEST_F(MergeListsTest, ListsHoldTheKindsTheFieldsTheFirmAndTheDates) {
    ASSERT_EQ(control.list(0)->rowCount(), 5);
    EXPECT_EQ(control.list(0)->item(2)->text(), "New Contact Merge Document");
    EXPECT_EQ(control.list(4)->rowCount(), 14);
    EXPECT_EQ(control.list(4)->item(3)->text(), "March 5 2024");
    EXPECT_EQ(control.list(3)->item(0)->text(), "Insert your Letterhead");
    EXPECT_GT(control.list(3)->rowCount(), 1);
    EXPECT_GE(entryOf("Company Name"), 0);
    EXPECT_EQ(control.list(1), nullptr);
}

TEST_F(MergeListsTest, AFieldGoesInAtTheCaret) {
    const MergeListAction action = control.onListClick(2, entryOf("Company Name"), &box);
    EXPECT_EQ(action.kind, MergeListAction::Kind::Inserted);
    EXPECT_EQ(box.Text(), QString("Dear ") + QChar(0xAB) + "Company Name" + QChar(0xBB) + ",");
}

TEST_F(MergeListsTest, HeadingsAndBlankLinesInsertNothing) {
    const QStandardItemModel* list = control.list(2);
    int headings = 0;
    for (int i = 0; i < list->rowCount(); ++i) {
        if (list->item(i)->data(Qt::UserRole).toInt() < 0) {
            ++headings;
            EXPECT_EQ(control.onListClick(2, i, &box).kind, MergeListAction::Kind::Nothing);
        }
    }
    EXPECT_GT(headings, 0);
    EXPECT_EQ(control.onListClick(2, list->rowCount(), &box).kind, MergeListAction::Kind::Nothing);
    EXPECT_EQ(box.Text(), "Dear ,");
}

TEST_F(MergeListsTest, DatesGoInWithTheirFormat) {
    control.onListClick(4, 3, &box);
    EXPECT_EQ(box.Text(),
              QString("Dear ") + QChar(0xAB) + "(Todays Date, mmmm d yyyy)" + QChar(0xBB) + ",");
    // A date field of the catalogue takes the long form.
    box.setText(QString());
    const QStandardItemModel* list = control.list(2);
    int dateEntry = -1;
    for (int i = 0; i < list->rowCount() && dateEntry < 0; ++i) {
        const int row = list->item(i)->data(Qt::UserRole).toInt();
        if (row > 0 &&
            fields.fieldTable().value(row, clsInsertFieldsInRTB::FieldType).toUpper() == "DATE") {
            dateEntry = i;
        }
    }
    ASSERT_GE(dateEntry, 0);
    control.onListClick(2, dateEntry, &box);
    EXPECT_TRUE(box.Text().endsWith(", mmmm d yyyy)" + QString(QChar(0xBB))))
        << box.Text().toStdString();
}

TEST_F(MergeListsTest, KindAndLetterheadEntriesAskTheWindow) {
    const MergeListAction kind = control.onListClick(0, 1, &box);
    EXPECT_EQ(kind.kind, MergeListAction::Kind::ChangeKind);
    EXPECT_EQ(kind.informationType, InformationKind::CompaniesAndContacts);
    EXPECT_EQ(control.onListClick(0, 4, &box).informationType, InformationKind::Appointments);
    EXPECT_EQ(control.onListClick(3, 0, &box).kind, MergeListAction::Kind::InsertLetterhead);
    // The firm's own fields go in like the others.
    EXPECT_EQ(control.onListClick(3, 2, &box).kind, MergeListAction::Kind::Inserted);
    EXPECT_NE(box.Text(), "Dear ,");
}

TEST_F(MergeListsTest, TheListsFollowTheTemplateKind) {
    EXPECT_LT(entryOf("Appointment Name"), 0);
    control.fillFieldLists(InformationKind::Appointments);
    EXPECT_GE(entryOf("Appointment Name"), 0);
}

} // namespace
