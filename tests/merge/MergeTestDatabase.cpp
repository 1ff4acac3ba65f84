#include "merge/MergeTestDatabase.h"

#include "context/AppContext.h"
#include "data/ClientDatabaseSchema.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <stdexcept>

MergeTestDatabase::MergeTestDatabase(const QString& path)
    : m_path(path), m_connection(QUuid::createUuid().toString()) {
    {
        QSqlDatabase sql = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
        sql.setDatabaseName(path);
        if (!sql.open()) {
            throw std::runtime_error("cannot create the test database");
        }
        ClientDatabaseSchema::create(sql);
    }
    m_db = std::make_unique<databaseControl>();
    m_db->setDatabasePath(path);
    m_db->connect();
    if (!m_db->isConnected()) {
        throw std::runtime_error(m_db->lastError().toStdString());
    }
    m_previous = app().database;
    app().database = m_db.get();
}

MergeTestDatabase::~MergeTestDatabase() {
    app().database = m_previous;
    m_db->disconnect();
    m_db.reset();
    QSqlDatabase::database(m_connection).close();
    QSqlDatabase::removeDatabase(m_connection);
}

void MergeTestDatabase::insert(const QString& table, const QVariantMap& row) {
    QSqlDatabase sql = QSqlDatabase::database(m_connection);
    QStringList marks;
    for (int i = 0; i < row.size(); ++i) {
        marks << QStringLiteral("?");
    }
    QSqlQuery query(sql);
    query.prepare(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                      .arg(table, row.keys().join(QLatin1Char(',')), marks.join(QLatin1Char(','))));
    for (const QVariant& value : row) {
        query.addBindValue(value);
    }
    if (!query.exec()) {
        throw std::runtime_error(query.lastError().text().toStdString());
    }
}

void MergeTestDatabase::exec(const QString& text) {
    QSqlQuery query(QSqlDatabase::database(m_connection));
    if (!query.exec(text)) {
        throw std::runtime_error(query.lastError().text().toStdString());
    }
}

void MergeTestDatabase::addClient(int companyID, const QVariantMap& company,
                                  const QVariantMap& client, bool visible, int status) {
    QVariantMap c = company;
    c[QStringLiteral("CompanyID")] = companyID;
    insert(QStringLiteral("Companies"), c);
    const int clientID = companyID + 1000;
    insert(QStringLiteral("ClientData"), {{"ClientDataID", clientID},
                                          {"CompanyIDNum", companyID},
                                          {"ActiveStatus", status},
                                          {"ShowThisClient", visible ? 1 : 0}});
    const struct {
        const char* table;
        const char* key;
    } satellites[] = {{"AccountingServices", "AccountingServiceID"},
                      {"ClientOptions", "ClientOptionID"},
                      {"CorpTaxInfo", "CorpTaxInfoID"},
                      {"LawInfo", "LawInfoID"},
                      {"OtherInfo", "OtherInfoID"},
                      {"SoftwareInfo", "SoftwareInfoID"},
                      {"WSIB_EHTInfo", "WSIB_EHTInfoID"},
                      {"ClientUSInfo", "ClientUSInfoID"}};
    for (const auto& s : satellites) {
        QVariantMap row{{QString::fromLatin1(s.key), clientID}};
        for (auto it = client.begin(); it != client.end(); ++it) {
            if (ClientDatabaseSchema::columnNames(QString::fromLatin1(s.table))
                    .contains(it.key(), Qt::CaseInsensitive)) {
                row[it.key()] = it.value();
            }
        }
        insert(QString::fromLatin1(s.table), row);
    }
    insert(QStringLiteral("CompaniesNotes"), {{"CompanyNum", companyID}});
}

void MergeTestDatabase::link(int contactID, int companyID, bool isDefault) {
    insert(QStringLiteral("ContactLinks"), {{"ContactIDNum", contactID},
                                            {"CompanyNum", companyID},
                                            {"DefaultContact", isDefault ? 1 : 0}});
}

void MergeTestDatabase::fillStandardPractice() {
    insert(QStringLiteral("AccountantFirmInfo"),
           {{"CompanyID", 1}, {"CompanyName", "Smith & Associates"}, {"City", "Toronto"}});
    insert(QStringLiteral("CustomFields"), {{"CompanyLabel1", "Phone:"},
                                            {"CompanyLabel2", "Custom 2"},
                                            {"CompanyLabel3", "Custom 2"},
                                            {"CustomName1", "File Number"},
                                            {"ApptCustomName1", "Room"}});
    insert(QStringLiteral("CustomAddressFields"), {{"ContactLabel1", "Hobby:"}});
    addClient(
        10,
        {{"CompanyName", "Acme Widgets"},
         {"Address", "1 Main St\r\nUnit 4"},
         {"City", "Toronto"},
         {"Province", "Ont."},
         {"PostalCode", "M1M 1M1"},
         {"OfficeNumber", "416-555-0100"},
         {"FaxNumber", "416-555-0101"},
         {"Custom1", "555-1111"}},
        {{"YearEndDate", "2024-03-31"}, {"GSTNumber", "12345 RT0001"}, {"ClientCustom1", "F-77"}});
    addClient(20,
              {{"CompanyName", "Beta {Braces} \\Back"}, {"Province", "Newfoundland and Labrador"}},
              {{"YearEndDate", "not a date"}});
    addClient(30, {{"CompanyName", "Gamma Ltd"}, {"Address", ""}, {"City", ""}});
    insert(QStringLiteral("Contacts"), {{"ContactID", 100},
                                        {"DisplayName", "Jo Smith"},
                                        {"FirstName", "Jo"},
                                        {"LastName", "Smith"},
                                        {"SpouseFirstName", "Sam"},
                                        {"SpouseLastName", "smith"},
                                        {"InheritCompanyInfo", 1},
                                        {"BusinessAddress", "9 Own Rd"},
                                        {"BusinessPhone_Main", "905-000-0000"},
                                        {"BusinessProvince", "Quebec"},
                                        {"Birthday", "1970-05-04"}});
    insert(QStringLiteral("Contacts"), {{"ContactID", 101},
                                        {"DisplayName", "Pat Lee"},
                                        {"FirstName", "Pat"},
                                        {"LastName", "Lee"},
                                        {"InheritCompanyInfo", 1},
                                        {"BusinessAddress", "7 Pat Lane"}});
    insert(QStringLiteral("Contacts"), {{"ContactID", 102},
                                        {"DisplayName", "Solo Person"},
                                        {"FirstName", ""},
                                        {"LastName", "Person"}});
    link(100, 10, true);
    link(101, 30, true);
    insert(QStringLiteral("Schedule"), {{"ScheduleID", 500},
                                        {"ClientNum", 1010},
                                        {"scheduleName", "1st Quarterly GST Payment"},
                                        {"DueDate", "2024-04-30"},
                                        {"Amount", 1250.5}});
    insert(QStringLiteral("Tasks"), {{"TaskID", 600}, {"ScheduleIDNum", 500}, {"Subject", "Call"}});
    insert(QStringLiteral("Appointments"), {{"AppointmentID", 700},
                                            {"CompanyIDNum", 10},
                                            {"Subject", "Year end review"},
                                            {"DateFrom", "2024-06-03"},
                                            {"TimeFrom", "1899-12-30 14:30:00"},
                                            {"TimeTo", "1899-12-30 15:00:00"}});
    insert(QStringLiteral("Appointments"),
           {{"AppointmentID", 701}, {"CompanyIDNum", 0}, {"Subject", "Walk-in"}});
}
