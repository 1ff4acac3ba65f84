#include "data/SamplePractice.h"

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "data/modDatabaseFunctions.h"
#include "data/modSettings.h"
#include "platform/errorClass.h"
#include "support/TestEnvironment.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QStandardItemModel>
#include <gtest/gtest.h>

namespace {

QByteArray digest(const QString& path) {
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly));
    return QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha1);
}

SamplePracticeOptions options(int clients, quint32 seed) {
    SamplePracticeOptions o;
    o.clients = clients;
    o.seed = seed;
    o.referenceDate = QDate(2024, 6, 1);
    return o;
}

TEST(SamplePracticeFileTest, IsDeterministicAndNeverOverwrites) {
    TestEnvironment env;
    const QString a = env.path(QStringLiteral("a/Data.qmd"));
    const QString b = env.path(QStringLiteral("b/Data.qmd"));
    const QString c = env.path(QStringLiteral("c/Data.qmd"));
    SamplePractice::write(a, options(12, 5));
    SamplePractice::write(b, options(12, 5));
    SamplePractice::write(c, options(12, 6));
    EXPECT_EQ(digest(a), digest(b));
    EXPECT_NE(digest(a), digest(c));

    const QByteArray before = digest(a);
    EXPECT_THROW(SamplePractice::write(a, options(3, 1)), QmError);
    EXPECT_EQ(digest(a), before);
    // Nothing but the databases is left in the folder.
    EXPECT_EQ(QDir(env.path(QStringLiteral("a"))).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

// The sample read back through the program's own lookups.
class SamplePracticeContentTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        s_env = new TestEnvironment;
        s_path = s_env->path(QStringLiteral("Data/Data.qmd"));
        s_summary = SamplePractice::write(s_path, options(60, 1));
    }
    static void TearDownTestSuite() {
        delete s_env;
        s_env = nullptr;
    }
    void SetUp() override {
        m_db.setDatabasePath(s_path);
        m_db.connect();
        ASSERT_TRUE(m_db.isConnected()) << m_db.lastError().toStdString();
        m_context->database = &m_db;
        m_context->clock.setFixed(QDateTime(QDate(2024, 6, 1), QTime(9, 0)));
    }
    int count(const QString& sql) {
        const int h = m_db.openRecordset(sql);
        const int n = m_db.recordCount(h);
        m_db.closeRecordset(h);
        return n;
    }
    QVariant first(const QString& sql, const QString& column) {
        const int h = m_db.openRecordset(sql);
        const QVariant v = m_db.hasRecords(h) ? m_db.getField(h, column) : QVariant();
        m_db.closeRecordset(h);
        return v;
    }

    static TestEnvironment* s_env;
    static QString s_path;
    static SamplePracticeSummary s_summary;
    ScopedAppContext m_context;
    databaseControl m_db;
};

TestEnvironment* SamplePracticeContentTest::s_env = nullptr;
QString SamplePracticeContentTest::s_path;
SamplePracticeSummary SamplePracticeContentTest::s_summary;

TEST_F(SamplePracticeContentTest, HasTheFirmAndItsUsers) {
    EXPECT_FALSE(getAccountantFirmName().isEmpty());
    const int user = getDefaultUserID();
    ASSERT_NE(user, -1);
    EXPECT_TRUE(validEmployeeID(QString::number(user)));
    EXPECT_EQ(first(QStringLiteral(
                        "SELECT AccountantEmployeeInfo.UserLevel FROM AccountantEmployeeInfo WHERE "
                        "ContactID = %1;")
                        .arg(user),
                    QStringLiteral("UserLevel"))
                  .toInt(),
              1);
    initializeNameDisplayType(user);
    EXPECT_TRUE(m_context->contactNameDisplayType >= 1 && m_context->contactNameDisplayType <= 3);
}

TEST_F(SamplePracticeContentTest, HasSystemAndTaxYearCategories) {
    const int rows = count(QStringLiteral("SELECT Categories.* FROM Categories;"));
    EXPECT_NE(getMainCategoryNum(), -1);
    EXPECT_NE(getBusinessCategoryNum(), -1);
    EXPECT_NE(getFirmCategoryNum(), -1);
    EXPECT_NE(getPersonalTaxCategoryNum(), -1);
    EXPECT_EQ(count(QStringLiteral("SELECT Categories.* FROM Categories;")),
              rows); // nothing had to be created
    EXPECT_EQ(getCurrentTaxYear(), 2024);
    const QVariant current = first(QStringLiteral("SELECT Categories.CategoryID FROM Categories "
                                                  "WHERE CategorySpecialCode = 'TaxYear:2024';"),
                                   QStringLiteral("CategoryID"));
    ASSERT_FALSE(current.isNull());
    EXPECT_TRUE(doesThisCategoryBelongToCategory(current.toInt(), getPersonalTaxCategoryNum()));
    EXPECT_EQ(getPersonalTaxYearFromCategoryID(current.toInt()), 2024);
}

TEST_F(SamplePracticeContentTest, ClientsCoverEveryStatus) {
    EXPECT_EQ(s_summary.clients, 60);
    EXPECT_EQ(count(getMainBusinessSQLString(false, 2)), 60);
    EXPECT_GT(count(getMainBusinessSQLString(false, 1)), 0); // inactive clients
    EXPECT_LT(count(getMainBusinessSQLString(true, 2)), 60); // hidden clients
    EXPECT_GT(count(QStringLiteral(
                  "SELECT Companies.CompanyID FROM Companies WHERE CompanyNum IS NOT NULL;")),
              0);
    EXPECT_GT(count(QStringLiteral(
                  "SELECT Companies.CompanyID FROM Companies WHERE CompanyName LIKE '*''*';")),
              0);
    int accented = 0;
    const int h = m_db.openRecordset(QStringLiteral("SELECT Contacts.DisplayName FROM Contacts;"));
    for (; !m_db.isEOF(h); m_db.moveNext(h)) {
        const QString name = m_db.getField(h, QStringLiteral("DisplayName")).toString();
        accented += std::any_of(name.begin(), name.end(), [](QChar c) { return c.unicode() > 127; })
                        ? 1
                        : 0;
    }
    m_db.closeRecordset(h);
    EXPECT_GT(accented, 0);
}

// Accented names are stored as the characters themselves, encoded once: a
// city spelled with an accent reads back as written, and nothing anywhere
// carries the marks of text decoded twice.
TEST_F(SamplePracticeContentTest, AccentedTextIsNotDoubleEncoded) {
    const QString accentedCity =
        QStringLiteral("SELECT Contacts.ContactID FROM Contacts WHERE HomeCity = '") +
        QString::fromUtf8("Montréal") + QStringLiteral("' OR HomeCity = '") +
        QString::fromUtf8("Québec") + QStringLiteral("';");
    EXPECT_GT(count(accentedCity), 0);
    for (const char* column : {"HomeCity", "BusinessCity", "DisplayName", "BusinessName"}) {
        const QString sql =
            QStringLiteral("SELECT Contacts.ContactID FROM Contacts WHERE %1 LIKE '*")
                .arg(QLatin1String(column)) +
            QChar(0xC3) + QStringLiteral("*';");
        EXPECT_EQ(count(sql), 0) << column;
    }
}

TEST_F(SamplePracticeContentTest, EveryClientHasItsSatellitesAndADefaultContact) {
    const QString unmarked =
        QStringLiteral("SELECT ClientData.CompanyIDNum FROM ClientData WHERE "
                       "ClientData.CompanyIDNum NOT IN (SELECT "
                       "ContactLinks.CompanyNum FROM ContactLinks WHERE "
                       "ContactLinks.DefaultContact = True AND ContactLinks.CompanyNum "
                       "IS NOT NULL);");
    EXPECT_GT(count(unmarked), 0); // a few need the repair
    const int h = m_db.openRecordset(getMainBusinessSQLString(false, 2));
    for (; !m_db.isEOF(h); m_db.moveNext(h)) {
        const int company = m_db.getField(h, QStringLiteral("Companies.CompanyID")).toInt();
        const int contact = getDefaultContactIDFromCompanyID(company);
        EXPECT_TRUE(validContactID(QString::number(contact))) << company;
        EXPECT_EQ(
            getDisplayNameFromContactID(contact),
            first(QStringLiteral(
                      "SELECT Companies.DefaultContactName FROM Companies WHERE CompanyID=%1;")
                      .arg(company),
                  QStringLiteral("DefaultContactName"))
                .toString());
    }
    m_db.closeRecordset(h);
    EXPECT_EQ(count(unmarked), 0);
}

TEST_F(SamplePracticeContentTest, HasFamiliesCouplesAndPersonalTaxClients) {
    EXPECT_GT(count(QStringLiteral(
                  "SELECT ContactLinks.* FROM ContactLinks WHERE ContactNum IS NOT NULL;")),
              0);
    const QVariant couple = first(
        QStringLiteral(
            "SELECT Contacts.ContactID FROM Contacts WHERE ContactPersonalTaxDisplayType = 2;"),
        QStringLiteral("ContactID"));
    ASSERT_FALSE(couple.isNull());
    EXPECT_TRUE(getContactNameDisplayedByType(2, couple.toInt(), -1, false)
                    .contains(QStringLiteral(" & ")));
    QStandardItemModel list;
    populateCompanyAndPersonalTaxNameInComboBox(list, true, true, false, false);
    int people = 0;
    for (int r = 0; r < list.rowCount(); ++r)
        people += list.item(r)->data(modDatabaseFunctions::ItemDataRole).toInt() < 0 ? 1 : 0;
    EXPECT_EQ(people, s_summary.personalTaxClients);
}

TEST_F(SamplePracticeContentTest, WorkItemsUseTheStorageConventions) {
    const int h = m_db.openRecordset(QStringLiteral("SELECT Schedule.* FROM Schedule;"));
    ASSERT_EQ(m_db.recordCount(h), s_summary.scheduleRows);
    for (; !m_db.isEOF(h); m_db.moveNext(h)) {
        EXPECT_EQ(m_db.getField(h, QStringLiteral("DueDate")).typeId(), QMetaType::QDate);
        EXPECT_EQ(m_db.getField(h, QStringLiteral("Closed")).typeId(), QMetaType::Bool);
    }
    m_db.closeRecordset(h);
    const QVariant time = first(QStringLiteral("SELECT Appointments.TimeFrom FROM Appointments;"),
                                QStringLiteral("TimeFrom"));
    ASSERT_EQ(time.typeId(), QMetaType::QDateTime);
    EXPECT_EQ(time.toDateTime().date(), QDate(1899, 12, 30));
    EXPECT_GT(count(QStringLiteral("SELECT Dockets.* FROM Dockets WHERE Invoiced = True;")), 0);
    EXPECT_GT(count(QStringLiteral("SELECT Tasks.* FROM Tasks;")), 0);
    EXPECT_GE(count(QStringLiteral("SELECT CustomTaskSchemes.* FROM CustomTaskSchemes;")), 1);
    EXPECT_FALSE(
        first(QStringLiteral("SELECT CustomAddressFields.ContactLabel1 FROM CustomAddressFields;"),
              QStringLiteral("ContactLabel1"))
            .toString()
            .isEmpty());
}

} // namespace
