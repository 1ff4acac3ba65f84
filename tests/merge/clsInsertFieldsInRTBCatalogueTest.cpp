#include "context/AppContext.h"
#include "merge/MergeTestDatabase.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/richtext/RichTextBox.h"
#include "support/TestEnvironment.h"

#include <QStandardItemModel>
#include <gtest/gtest.h>

namespace {

using Inserter = clsInsertFieldsInRTB;

struct Fixture {
    explicit Fixture(int country = 1, short province = 3, QDate today = QDate(2024, 3, 5)) {
        context->currentCountry = country;
        context->currentProvince = province;
        context->clock.setFixed(QDateTime(today, QTime(9, 0)));
        inserter.setListBox(&list);
        inserter.setAccountantListBox(&letterhead);
    }
    QStringList names() const {
        QStringList out;
        for (int row = 1; row <= inserter.fieldTable().rowCount(); ++row) {
            out << inserter.fieldTable().value(row, Inserter::EnglishName);
        }
        return out;
    }
    QStringList headings() const {
        QStringList out;
        for (int i = 0; i < list.rowCount(); ++i) {
            if (list.item(i)->data(Qt::UserRole).toInt() == -1) {
                out << list.item(i)->text();
            }
        }
        return out;
    }
    ScopedAppContext context;
    QStandardItemModel list;
    QStandardItemModel letterhead;
    Inserter inserter;
};

TEST(clsInsertFieldsInRTBCatalogueTest, FieldsOfEachKindInBlockOrder) {
    // Each kind's own fields first, then the client's, the letterhead last;
    // a kind never offers the fields of another kind's items.
    const struct {
        InformationKind kind;
        QStringList inOrder;
        QStringList absent;
    } cases[] = {
        {InformationKind::Companies,
         {"Company Name", "Contact First Name", "HST Number", "Software Name", "Contact Birthday",
          "Your Company Name"},
         {"Appointment Name", "Task Name", "Docket Name"}},
        {InformationKind::Contacts,
         {"Contact First Name", "Contact Birthday", "Company Name", "Your Company Name"},
         {"HST Number", "Software Name", "Appointment Name", "Task Name"}},
        {InformationKind::Appointments,
         {"Appointment Name", "Appointment Start Time", "Company Name", "Contact First Name",
          "HST Number", "Your Company Name"},
         {"Docket Name", "Task Name"}},
        {InformationKind::Tasks,
         {"Task Name", "Task Due Date", "Company Name", "Contact First Name", "Your Company Name"},
         {"Appointment Name", "Docket Name"}},
        {InformationKind::WorkListTasks,
         {"Task Name", "Task Start Time", "Company Name", "Contact First Name",
          "Your Company Name"},
         {"Appointment Name", "Docket Name"}},
        {InformationKind::Dockets,
         {"Docket Name", "Docket Start Time", "Company Name", "Contact First Name",
          "Your Company Name"},
         {"Task Due Date"}},
    };
    for (const auto& c : cases) {
        Fixture f;
        f.inserter.createDefaultFieldListStructure(c.kind, true, false);
        const QStringList names = f.names();
        qsizetype previous = -1;
        for (const QString& name : c.inOrder) {
            const qsizetype at = names.indexOf(name);
            EXPECT_GT(at, previous) << toInt(c.kind) << ": " << name.toStdString();
            previous = std::max(previous, at);
        }
        for (const QString& name : c.absent) {
            EXPECT_FALSE(names.contains(name)) << toInt(c.kind) << ": " << name.toStdString();
            EXPECT_TRUE(f.inserter.testRTBComment(
                QStringLiteral("\u00AB") + name + QStringLiteral("\u00BB"), false, false, false))
                << "the validator refuses " << name.toStdString();
        }
        // The letterhead block closes the catalogue.
        EXPECT_TRUE(names.last().startsWith("Your ")) << toInt(c.kind);
    }
}

TEST(clsInsertFieldsInRTBCatalogueTest, EveryListedFieldInsertsAPlaceholderThatMerges) {
    for (const InformationKind kind :
         {InformationKind::Companies, InformationKind::CompaniesAndContacts,
          InformationKind::Contacts, InformationKind::Tasks, InformationKind::Appointments,
          InformationKind::Dockets, InformationKind::WorkListTasks}) {
        Fixture f;
        f.inserter.createDefaultFieldListStructure(kind, false, true);
        int listed = 0;
        for (QStandardItemModel* list : {&f.list, &f.letterhead}) {
            for (int i = 0; i < list->rowCount(); ++i) {
                const int row = list->item(i)->data(Qt::UserRole).toInt();
                if (row < 0) {
                    continue;
                }
                ++listed;
                const QString inserted = f.inserter.parseListItem(row, true);
                const QString name = f.inserter.fieldTable().value(row, Inserter::EnglishName);
                ASSERT_TRUE(inserted.startsWith(QChar(0x00AB)) && inserted.endsWith(QChar(0x00BB)))
                    << inserted.toStdString();
                // The validator takes a name that ends in ")" for a date
                // missing its "(", so the docket's bracketed times are
                // refused although they merge.
                EXPECT_EQ(f.inserter.testRTBComment(inserted, false, false, false),
                          name.endsWith(QLatin1Char(')')))
                    << toInt(kind) << ": " << inserted.toStdString() << " "
                    << f.inserter.lastTestMessage().toStdString();
                // With samples the placeholder is replaced, never left behind.
                const QString merged = f.inserter.parseRTBComment(inserted, -1, -1, -1, -1, -1, -1,
                                                                  -1, true, false, false);
                EXPECT_FALSE(merged.contains(QChar(0x00AB))) << inserted.toStdString();
                const QString type = f.inserter.fieldTable().value(row, Inserter::FieldType);
                if (type == "Text" &&
                    f.inserter.fieldTable().find(name, Inserter::EnglishName) == row) {
                    EXPECT_EQ(merged,
                              f.inserter.fieldTable().value(row, Inserter::SampleValue).trimmed())
                        << inserted.toStdString();
                }
            }
        }
        EXPECT_GT(listed, 50) << toInt(kind);
    }
}

TEST(clsInsertFieldsInRTBCatalogueTest, HeadingsAndBlankLinesByDocumentType) {
    const QString b;
    const struct {
        int type;
        QStringList expected;
    } cases[] = {
        {1,
         {"[Company Address Info]", b, "[Default Contact Name]", b, "[Company Accounting Info]", b,
          "[Company Software Info]", b, "[More Contact Info]"}},
        {2,
         {"[Company Address Info]", b, "[Contact Name]", b, "[Company Accounting Info]", b,
          "[Company Software Info]", b, "[More Contact Info]"}},
        {3, {"[Contact Name]", b, "[More Contact Info]", b, "[Company Info]"}},
        {4,
         {"[Task Info]", b, "[Company Address Info]", b, "[Default Contact Name]", b,
          "[Company Accounting Info]", b, "[Company Software Info]", b, "[More Contact Info]"}},
        {5,
         {"[Appointment Info]", b, "[Company Address Info]", b, "[Default Contact Name]", b,
          "[Company Accounting Info]", b, "[Company Software Info]", b, "[More Contact Info]"}},
        {6,
         {"[Docket Info]", "[Company Address Info]", b, "[Default Contact Name]", b,
          "[Company Accounting Info]", b, "[Company Software Info]", b, "[More Contact Info]"}},
        {8,
         {"[Task Info]", "[Company Address Info]", b, "[Default Contact Name]", b,
          "[Company Accounting Info]", b, "[Company Software Info]", b, "[More Contact Info]"}},
    };
    for (const auto& c : cases) {
        Fixture f;
        f.inserter.createDefaultFieldListStructure(informationKindFromInt(c.type), false, true);
        EXPECT_EQ(f.headings(), c.expected) << "type " << c.type;
        ASSERT_GT(f.letterhead.rowCount(), 1);
        EXPECT_EQ(f.letterhead.item(0)->text(), "Insert your Letterhead");
        EXPECT_EQ(f.letterhead.item(1)->text(), "Your Company Name");
        // Item data is the row position of the name.
        for (int i = 0; i < f.list.rowCount(); ++i) {
            const int row = f.list.item(i)->data(Qt::UserRole).toInt();
            if (row > 0) {
                EXPECT_EQ(f.inserter.fieldTable().value(row, Inserter::EnglishName),
                          f.list.item(i)->text());
            }
        }
    }
}

TEST(clsInsertFieldsInRTBCatalogueTest, OwnBlockComesFirstAndTask8UsesTaskColumns) {
    Fixture f;
    f.inserter.createDefaultFieldListStructure(InformationKind::WorkListTasks, true, false);
    EXPECT_EQ(f.inserter.fieldTable().value(1, Inserter::DataTable), "TaskInfo");
    EXPECT_EQ(f.inserter.getDBFieldFromEnglishField("Task Name"), "Subject");
    f.inserter.createDefaultFieldListStructure(InformationKind::Tasks, true, false);
    EXPECT_EQ(f.inserter.getDBFieldFromEnglishField("Task Name"), "scheduleName");
    EXPECT_EQ(f.inserter.getDBFieldFromEnglishField("No Such Field"), "No Such Field");
    EXPECT_EQ(f.inserter.getEnglishFieldFromDBField("CompanyName"), "Company Name");
    EXPECT_EQ(f.inserter.getEnglishFieldFromDBField("Nothing"), "Nothing");
    EXPECT_EQ(f.list.rowCount(), 0) << "noList fills no list";
}

TEST(clsInsertFieldsInRTBCatalogueTest, RegionalRowsByProvince) {
    const struct {
        short province;
        QStringList present;
        QStringList absent;
    } cases[] = {
        {3,
         {"HST Number", "PST Number", "WSIB Number", "WSIB Firm Number", "ON Corp. Tax Number",
          "ON Corp. MCBS Number", "Province", "Postal Code", "Contact SIN"},
         {"GST Number", "Quebec ID Number", "NEQ Number", "State", "Contact SSN"}},
        {8,
         {" Number", "QST Number", "NEQ Number", "CSST Premium Rate", "CSST Coverage",
          "Que. Corp. Tax Number", "Quebec ID Number"},
         {"GST Number", "CSST Number", "CSST Firm Number", "ON Corp. MCBS Number"}},
        {0, {"GST Number", "WCB Number", "Alberta Corp. Tax Number"}, {"WCB Firm Number"}},
        {10, {"HST Number", "WHSCC Number", "N.B. Corp. Tax Number"}, {"GST Number"}},
        {12, {"GST Number", "WCB Number", "P.E.I. Corp. Tax Number"}, {}},
        {7, {"GST Number", "WSIB Number", "ON Corp. Tax Number"}, {"WSIB Firm Number"}},
    };
    for (const auto& c : cases) {
        Fixture f(1, c.province);
        f.inserter.createDefaultFieldListStructure(InformationKind::Companies, true, false);
        const QStringList names = f.names();
        for (const QString& name : c.present) {
            EXPECT_TRUE(names.contains(name)) << c.province << " lacks " << name.toStdString();
        }
        for (const QString& name : c.absent) {
            EXPECT_FALSE(names.contains(name)) << c.province << " has " << name.toStdString();
        }
    }
}

TEST(clsInsertFieldsInRTBCatalogueTest, HarmonisedSalesTaxFromJulyFirst2010) {
    for (short province : {1, 3}) {
        Fixture before(1, province, QDate(2010, 6, 30));
        before.inserter.createDefaultFieldListStructure(InformationKind::Companies, true, false);
        EXPECT_TRUE(before.names().contains("GST Number")) << province;
        Fixture on(1, province, QDate(2010, 7, 1));
        on.inserter.createDefaultFieldListStructure(InformationKind::Companies, true, false);
        EXPECT_TRUE(on.names().contains("HST Number")) << province;
    }
}

TEST(clsInsertFieldsInRTBCatalogueTest, OtherCountriesGetTheUnitedStatesRows) {
    Fixture f(2, 3);
    f.inserter.createDefaultFieldListStructure(InformationKind::Companies, false, true);
    const QStringList names = f.names();
    for (const char* name : {"State", "Zip Code", "Contact SSN", "Spouse SSN", "Your State",
                             "Federal Employer Identification Number", "Alcohol Number"}) {
        EXPECT_TRUE(names.contains(name)) << name;
    }
    for (const char* name : {"Province", "Business Number", "EHT Number", "Contact SIN"}) {
        EXPECT_FALSE(names.contains(name)) << name;
    }
    EXPECT_EQ(names.count("Web Site"), 1);
    EXPECT_EQ(names.count("Year End Date"), 1);
    bool listed = false;
    for (int i = 0; i < f.list.rowCount(); ++i) {
        listed = listed || f.list.item(i)->text() == "Federal Employer Identification  Number";
    }
    EXPECT_TRUE(listed);
    EXPECT_EQ(f.inserter.getDBFieldFromEnglishField("Year End Date"), "USYearEndDate");
}

TEST(clsInsertFieldsInRTBCatalogueTest, CustomLabelRowsComeFromThePracticesLabels) {
    TestEnvironment env;
    Fixture f;
    {
        Fixture without;
        without.inserter.createDefaultFieldListStructure(InformationKind::Companies, true, false);
        EXPECT_FALSE(without.names().contains("Phone")) << "no database, no label rows";
    }
    MergeTestDatabase db(env.path("labels.qmd"));
    db.fillStandardPractice();
    f.inserter.createDefaultFieldListStructure(InformationKind::Appointments, true, false);
    const QStringList names = f.names();
    for (const char* name :
         {"Phone", "Company Custom Field 2", "Custom 2", "Your Phone",
          "Your Company Custom Field 2", "Your Custom 2", "Hobby", "File Number", "Room"}) {
        EXPECT_TRUE(names.contains(name)) << name;
    }
    // The label row stands before the fixed row of the same column.
    EXPECT_EQ(names.indexOf("Phone") + 5, names.indexOf("Company Custom Field 1"));
    EXPECT_EQ(names.count("Company Custom Field 2"), 2);
    EXPECT_EQ(f.inserter.getDBFieldFromEnglishField("Phone"), "Custom1");
}

TEST(clsInsertFieldsInRTBCatalogueTest, ListItemsAndInsertionAtTheCaret) {
    Fixture f;
    f.inserter.createDefaultFieldListStructure(InformationKind::Companies, true, false);
    const int yearEnd = f.inserter.fieldTable().find("Year End Date", Inserter::EnglishName);
    const int company = f.inserter.fieldTable().find("Company Name", Inserter::EnglishName);
    EXPECT_EQ(f.inserter.parseListItem(yearEnd, false), "(Year End Date, mmmm d yyyy)");
    EXPECT_EQ(f.inserter.parseListItem(company, true), QStringLiteral("\u00ABCompany Name\u00BB"));
    EXPECT_EQ(f.inserter.parseListItem(-1, true), "");

    RichTextBox box;
    box.setText("Dear ,");
    box.setSelStart(5);
    f.inserter.setTargetTextBox(&box);
    f.inserter.onListClick(company);
    EXPECT_EQ(box.Text(), QStringLiteral("Dear \u00ABCompany Name\u00BB,"));
    f.inserter.onListClick(-1);
    f.inserter.insertCurrentDate(4);
    EXPECT_EQ(
        box.Text(),
        QStringLiteral("Dear \u00ABCompany Name\u00BB\u00AB(Todays Date, mmmm d yyyy)\u00BB,"));
    EXPECT_TRUE(box.TextRTF().contains("\\'abCompany Name\\'bb"));
}

TEST(clsInsertFieldsInRTBCatalogueTest, SamplesFollowTheClock) {
    Fixture f(1, 3, QDate(2031, 7, 9));
    f.inserter.createDefaultFieldListStructure(InformationKind::Appointments, true, false);
    auto sample = [&](const char* name) {
        f.inserter.fieldTable().find(name, Inserter::EnglishName);
        return f.inserter.fieldTable().columnValue(Inserter::SampleValue);
    };
    EXPECT_EQ(sample("Appointment Date"), "Jul 9, 2031");
    EXPECT_EQ(sample("Year End Date"), "03/31/2031");
    EXPECT_EQ(sample("Appointment Start Time"), "9:00 AM");
    EXPECT_EQ(sample("Spouse Birthday"), "Jul 9, 2031");
}

} // namespace
