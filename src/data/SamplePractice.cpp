// Rows are built from many joined texts handed on as QVariant: plain
// QString concatenation keeps that readable.
#undef QT_USE_QSTRINGBUILDER

#include "data/SamplePractice.h"

#include "data/ClientDatabaseSchema.h"
#include "platform/errorClass.h"

#include <QAtomicInt>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <map>
#include <memory>
#include <random>

namespace {

const char* const FirstNames[] = {"Ann",    "Bob",    "Chloé",  "David",    "Émile",   "Fatima",
                                  "George", "Hannah", "Ian",    "José",     "Karen",   "Liam",
                                  "Maria",  "Noah",   "Olivia", "Priya",    "Quinn",   "Rachel",
                                  "Samuel", "Teresa", "Umar",   "Victoria", "William", "Xiao",
                                  "Yvonne", "Zoë",    "Amélie", "François", "Grace",   "Hélène"};
const char* const LastNames[] = {
    "Smith",  "O'Brien",  "Tremblay", "Côté",   "Nguyen", "MacDonald", "Patel",
    "Gagnon", "D'Angelo", "Lee",      "Wilson", "Roy",    "Müller",    "Chen",
    "Martin", "Bouchard", "O'Neil",   "Brown",  "Singh",  "Lavoie",    "Kowalski",
    "Fortin", "Anderson", "Ouellet",  "Hughes", "Dubé",   "Campbell",  "Morrison"};
const char* const Trades[] = {"Bakery",      "Construction",     "Dental Clinic", "Landscaping",
                              "Consulting",  "Auto Repair",      "Café",          "Plumbing",
                              "Florist",     "Hardware",         "Pharmacy",      "Design Studio",
                              "Electrical",  "Trucking",         "Catering",      "Roofing",
                              "Bookkeeping", "Veterinary Clinic"};
const char* const Suffixes[] = {"Inc.",  "Ltd.",        "& Sons", "Co.",
                                "Corp.", "Enterprises", "Group",  ""};
const char* const Places[] = {"Lakeshore", "Maple",   "North Bay", "Riverside",
                              "Élan",      "Harbour", "Summit",    "Pine Ridge"};

struct City {
    const char* city;
    const char* province;
    const char* postal;
    const char* area;
};
const City Cities[] = {{"Toronto", "Ontario", "M5V 2T6", "416"},
                       {"Ottawa", "Ontario", "K1P 5G4", "613"},
                       {"Mississauga", "Ontario", "L5B 3C2", "905"},
                       {"Guelph", "Ontario", "N1H 3T9", "519"},
                       {"Montréal", "Quebec", "H2X 1Y4", "514"},
                       {"Québec", "Quebec", "G1R 4P5", "418"},
                       {"Halifax", "Nova Scotia", "B3J 3K5", "902"},
                       {"Moncton", "New Brunswick", "E1C 4M3", "506"},
                       {"Calgary", "Alberta", "T2P 1J9", "403"},
                       {"Vancouver", "British Columbia", "V6B 1A1", "604"}};

const char* const Relationships[] = {"Spouse", "Son", "Daughter", "Not Specified"};

struct TaskType {
    int total;
    int sub;
    const char* name;
};
const TaskType TaskTypes[] = {{101, 1, "1st Quarterly GST Payment"},
                              {101, 4, "Annual GST Return"},
                              {102, 1, "PST Return"},
                              {103, 1, "Payroll Remittance"},
                              {104, 1, "Year End Financial Statements"},
                              {105, 1, "T2 Corporate Tax Return"},
                              {106, 1, "WSIB Annual Reconciliation"},
                              {107, 1, "EHT Annual Return"},
                              {108, 1, "Annual Corporate Filing"},
                              {109, 1, "Bank Reconciliation"},
                              {110, 1, "Employee Payroll"},
                              {111, 1, "Monthly Bookkeeping"},
                              {111, 5, "Inventory Count"}};

// Deterministic on every platform: the standard distributions are not.
class Random {
public:
    explicit Random(quint32 seed) : m_engine(seed) {}
    int below(int n) { return n <= 1 ? 0 : int(m_engine() % quint32(n)); }
    bool chance(int percent) { return below(100) < percent; }
    template <typename T, size_t N> const T& pick(const T (&items)[N]) {
        return items[below(int(N))];
    }

private:
    std::mt19937 m_engine;
};

// One prepared INSERT a table.
class Inserter {
public:
    Inserter(QSqlDatabase& db, const QString& table, const QStringList& columns)
        : m_query(db), m_table(table) {
        QStringList marks;
        for (int i = 0; i < columns.size(); ++i)
            marks << QStringLiteral("?");
        if (!m_query.prepare(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                 .arg(table, columns.join(QStringLiteral(", ")),
                                      marks.join(QStringLiteral(", ")))))
            throw QmError(QmError::DatabaseError, m_query.lastError().text());
    }
    void insert(const QVariantList& values) {
        for (int i = 0; i < values.size(); ++i)
            m_query.bindValue(i, values[i]);
        if (!m_query.exec())
            throw QmError(
                QmError::DatabaseError,
                QStringLiteral("Cannot write %1: %2").arg(m_table, m_query.lastError().text()));
    }

private:
    QSqlQuery m_query;
    QString m_table;
};

QString iso(const QDate& d) {
    return d.toString(QStringLiteral("yyyy-MM-dd"));
}
QString timeOfDay(int hour, int minute) {
    return QStringLiteral("1899-12-30 %1:%2:00")
        .arg(hour, 2, 10, QLatin1Char('0'))
        .arg(minute, 2, 10, QLatin1Char('0'));
}

class Builder {
public:
    Builder(QSqlDatabase& db, const SamplePracticeOptions& options)
        : m_db(db), m_options(options), m_random(options.seed), m_today(options.referenceDate) {}

    SamplePracticeSummary build();

private:
    struct Person {
        QString first;
        QString last;
        QString display() const { return first + u' ' + last; }
    };
    Person person() {
        return {QString::fromUtf8(m_random.pick(FirstNames)),
                QString::fromUtf8(m_random.pick(LastNames))};
    }
    QString phone(const City& c) {
        return QStringLiteral("(%1) %2-%3")
            .arg(QLatin1String(c.area))
            .arg(200 + m_random.below(800))
            .arg(1000 + m_random.below(9000));
    }
    QString email(const QString& who, const QString& domain) {
        QString local = who.toLower();
        local.remove(u'\'');
        local.replace(u' ', u'.');
        return local.normalized(QString::NormalizationForm_KD)
                   .remove(QRegularExpression(QStringLiteral("[^a-z.]"))) +
               u'@' + domain;
    }
    QString domainOf(const QString& company) {
        QString d = company.toLower().normalized(QString::NormalizationForm_KD);
        d.remove(QRegularExpression(QStringLiteral("[^a-z]")));
        return d.left(18) + QStringLiteral(".ca");
    }
    int taxYear() const {
        return m_today > QDate(m_today.year(), 4, 30) ? m_today.year() : m_today.year() - 1;
    }

    void firm();
    void categories();
    void labels();
    int contact(const Person& p, const City& c, const QString& company, int companyID, bool couple,
                const Person& spouse);
    void businessClient(int index);
    void personalTaxClient(int contactID, bool standalone);
    void workItems(int clientDataID, int companyID, int contactID);

    QSqlDatabase& m_db;
    SamplePracticeOptions m_options;
    Random m_random;
    QDate m_today;
    SamplePracticeSummary m_summary;
    std::map<QString, std::unique_ptr<Inserter>> m_inserters;

    Inserter& into(const QString& table, const QStringList& columns) {
        const QString key = table + u'|' + columns.join(u',');
        auto& slot = m_inserters[key];
        if (!slot)
            slot = std::make_unique<Inserter>(m_db, table, columns);
        return *slot;
    }

    int m_nextContactID = 1;
    int m_nextCompanyID = 1;
    int m_nextClientDataID = 1;
    int m_nextScheduleID = 1;
    int m_nextTaskID = 1;
    int m_nextAppointmentID = 1;
    int m_nextDocketID = 1;
    int m_mainCategory = 1;
    int m_businessCategory = 2;
    int m_personalCategory = 3;
    int m_firmCategory = 4;
    std::vector<int> m_userCategories;
    std::vector<int> m_taxYearCategories;         // oldest first; the last is the current year
    std::vector<std::pair<int, QString>> m_staff; // ContactID, display name
};

void Builder::categories() {
    auto& cat = into(QStringLiteral("Categories"),
                     {QStringLiteral("CategoryID"), QStringLiteral("CategoryNum"),
                      QStringLiteral("CategoryName"), QStringLiteral("CategoryDescription"),
                      QStringLiteral("CategorySpecialCode")});
    cat.insert({m_mainCategory, QVariant(), QStringLiteral("Contact Ledger"),
                QStringLiteral("Quillmere Contact Ledger"), QStringLiteral("Main")});
    cat.insert({m_businessCategory, m_mainCategory, QStringLiteral("Quillmere Business clients"),
                QStringLiteral("This category contains all of the Quillmere Business clients."),
                QStringLiteral("BusinessCategory")});
    cat.insert({m_personalCategory, m_mainCategory, QStringLiteral("Quillmere Personal clients"),
                QStringLiteral("This category contains all of the Quillmere Personal Tax clients.  "
                               "Drag your contacts "
                               "into this category to add them to your personal tax clients list."),
                QStringLiteral("PersonalCategory")});
    cat.insert({m_firmCategory, m_mainCategory, QStringLiteral("Firm Staff"),
                QStringLiteral("This category contains all of your staff members."),
                QStringLiteral("FirmCategory")});
    int id = 5;
    for (int year = taxYear() - 2; year <= taxYear(); ++year) {
        cat.insert({id, m_personalCategory, QString::number(year) + QStringLiteral(" Tax Year"),
                    QString(), QStringLiteral("TaxYear:%1").arg(year)});
        m_taxYearCategories.push_back(id++);
    }
    cat.insert({id, m_taxYearCategories.back(), QStringLiteral("Seniors"),
                QStringLiteral("Clients over 65"), QString()});
    m_taxYearCategories.push_back(id++); // a plain category inside the current year
    for (const char* name :
         {"Retail", "Construction & Trades", "Professional Services", "Restaurants"}) {
        cat.insert({id, m_businessCategory, QString::fromUtf8(name), QString(), QString()});
        m_userCategories.push_back(id++);
    }
    cat.insert({id, m_userCategories[1], QStringLiteral("Sub-contractors"), QString(), QString()});
    m_userCategories.push_back(id++);
    cat.insert({id, m_mainCategory, QStringLiteral("Prospects"), QStringLiteral("Not yet clients"),
                QString()});
    m_userCategories.push_back(id++);

    into(QStringLiteral("DataVersion"),
         {QStringLiteral("CurrentTaxYear"), QStringLiteral("DataUniqueID")})
        .insert({QString::number(taxYear()), QStringLiteral("SAMPLE-%1").arg(m_options.seed)});
}

void Builder::labels() {
    QStringList columns;
    QVariantList values;
    auto set = [&](const QString& c, const QVariant& v) {
        columns << c;
        values << v;
    };
    const char* remit[] = {"Bank", "Birthday", "Filing Method", "BusinessPhone_Main", "Reference"};
    const int types[] = {1, 3, 1, 1, 1};
    for (int n = 1; n <= 5; ++n) {
        set(QStringLiteral("RemittanceCustomInfo%1").arg(n), QString::fromUtf8(remit[n - 1]));
        set(QStringLiteral("RemittanceCustomType%1").arg(n), types[n - 1]);
        set(QStringLiteral("PersonalTaxTaskCustomInfo%1").arg(n),
            QStringLiteral("Personal Note %1").arg(n));
        set(QStringLiteral("PersonalTaxTaskCustomType%1").arg(n), 1);
        set(QStringLiteral("ApptCustomName%1").arg(n),
            QStringLiteral("Meeting Room|Agenda|Follow-up|Billing Code|Notes").split(u'|')[n - 1]);
        set(QStringLiteral("TaskCustomName%1").arg(n),
            QStringLiteral("Priority|Reviewer|Hours Budget|File|Notes").split(u'|')[n - 1]);
        set(QStringLiteral("DocketCustomName%1").arg(n),
            QStringLiteral("Project|Phase|Approved By|PO Number|Notes").split(u'|')[n - 1]);
        set(QStringLiteral("CustomName%1").arg(n),
            QStringLiteral("Bank Account|Fiscal Agent|Referral Source|Fee Plan|Notes")
                .split(u'|')[n - 1]);
        set(QStringLiteral("RemittanceLabel%1").arg(n), QString::fromUtf8(remit[n - 1]));
        set(QStringLiteral("CompanyLabel%1").arg(n),
            QStringLiteral("Sector|Employees|Founded|Bank|Lawyer").split(u'|')[n - 1]);
    }
    into(QStringLiteral("CustomFields"), columns).insert(values);
    into(QStringLiteral("CustomAddressFields"),
         {QStringLiteral("ContactLabel1"), QStringLiteral("ContactLabel2"),
          QStringLiteral("ContactLabel3"), QStringLiteral("ContactLabel4"),
          QStringLiteral("ContactLabel5")})
        .insert({QStringLiteral("Occupation"), QStringLiteral("Referred By"),
                 QStringLiteral("Preferred Contact"), QStringLiteral("Assistant"),
                 QStringLiteral("Notes")});
    auto& schemes = into(QStringLiteral("CustomTaskSchemes"),
                         {QStringLiteral("CustomTaskSchemeID"), QStringLiteral("SchemeName"),
                          QStringLiteral("ScheduleNum")});
    schemes.insert({1, QStringLiteral("Monthly Bookkeeping"), 1});
    schemes.insert({2, QStringLiteral("Quarterly Review"), 2});
    schemes.insert({3, QStringLiteral("Inventory Count"), 5});
}

void Builder::firm() {
    const City& c = Cities[0];
    into(QStringLiteral("AccountantFirmInfo"),
         {QStringLiteral("CompanyID"), QStringLiteral("CompanyName"),
          QStringLiteral("CorporateName"), QStringLiteral("CompanyType"),
          QStringLiteral("IndustryType"), QStringLiteral("Address"), QStringLiteral("City"),
          QStringLiteral("Province"), QStringLiteral("PostalCode"), QStringLiteral("Country"),
          QStringLiteral("OfficeNumber"), QStringLiteral("FaxNumber"), QStringLiteral("Email"),
          QStringLiteral("WebSite"), QStringLiteral("Custom1")})
        .insert({1, QStringLiteral("Harbourview Chartered Accountants"),
                 QStringLiteral("Harbourview CPA Professional Corp."),
                 QStringLiteral("Professional Corporation"), QStringLiteral("Accounting"),
                 QStringLiteral("200 Front Street West, Suite 1400"), QString::fromUtf8(c.city),
                 QLatin1String(c.province), QLatin1String(c.postal), QStringLiteral("Canada"),
                 QStringLiteral("(416) 555-0100"), QStringLiteral("(416) 555-0101"),
                 QStringLiteral("office@harbourview.ca"), QStringLiteral("www.harbourview.ca"),
                 QStringLiteral("Accounting")});
    const std::pair<const char*, const char*> staff[] = {
        {"Margaret", "Ellis"}, {"Daniel", "Okafor"}, {"Sophie", "Bélanger"},
        {"Kevin", "O'Connor"}, {"Aisha", "Rahman"},  {"Tom", "Whitfield"}};
    auto& emp = into(QStringLiteral("AccountantEmployeeInfo"),
                     {QStringLiteral("ContactID"), QStringLiteral("DisplayName"),
                      QStringLiteral("FirstName"), QStringLiteral("LastName"),
                      QStringLiteral("UserName"), QStringLiteral("UserLevel"),
                      QStringLiteral("UserColour"), QStringLiteral("BusinessEmail"),
                      QStringLiteral("BusinessPhone_Main"), QStringLiteral("BusinessJobTitle"),
                      QStringLiteral("CategoryNum"), QStringLiteral("ContactNum"),
                      QStringLiteral("FamilyRelationship"), QStringLiteral("PersonalTaxClient")});
    auto& settings =
        into(QStringLiteral("UserGeneralSettings"),
             {QStringLiteral("UserIDNum"), QStringLiteral("OptionsContactNameDisplayType"),
              QStringLiteral("OptionsFamilyDisplayOption")});
    const char* titles[] = {"Managing Partner", "Partner",        "Senior Accountant",
                            "Staff Accountant", "Tax Specialist", "Bookkeeper"};
    for (size_t i = 0; i < std::size(staff); ++i) {
        const int id = m_nextContactID++;
        const QString first = QString::fromUtf8(staff[i].first);
        const QString last = QString::fromUtf8(staff[i].second);
        const QString display = first + u' ' + last;
        emp.insert({id, display, first, last, first.toLower(), i == 1 ? 1 : 2,
                    int(0x336699 + 0x1100 * i), email(display, QStringLiteral("harbourview.ca")),
                    QStringLiteral("(416) 555-01%1").arg(10 + i), QString::fromUtf8(titles[i]),
                    m_firmCategory, QVariant(), QString(), 0});
        settings.insert({id, i % 3 == 0 ? 2 : (i % 3 == 1 ? 3 : 1), i == 0 ? 2 : 1});
        m_staff.emplace_back(id, display);
    }
    // A family member of the managing partner.
    emp.insert({m_nextContactID++, QStringLiteral("Robert Ellis"), QStringLiteral("Robert"),
                QStringLiteral("Ellis"), QString(), 0, 0, QString(), QString(), QString(),
                m_firmCategory, m_staff[0].first, QStringLiteral("Spouse"), 1});
}

int Builder::contact(const Person& p, const City& c, const QString& company, int companyID,
                     bool couple, const Person& spouse) {
    const int id = m_nextContactID++;
    const QString display = p.display();
    const bool hasBirthday = m_random.chance(70);
    const QDate birthday(1940 + m_random.below(60), 1 + m_random.below(12), 1 + m_random.below(28));
    into(QStringLiteral("Contacts"), {QStringLiteral("ContactID"),
                                      QStringLiteral("DisplayName"),
                                      QStringLiteral("FirstName"),
                                      QStringLiteral("LastName"),
                                      QStringLiteral("NamePrefix"),
                                      QStringLiteral("BusinessName"),
                                      QStringLiteral("BusinessJobTitle"),
                                      QStringLiteral("BusinessPhone_Main"),
                                      QStringLiteral("BusinessPhone_Fax"),
                                      QStringLiteral("BusinessEmail"),
                                      QStringLiteral("BusinessAddress"),
                                      QStringLiteral("BusinessCity"),
                                      QStringLiteral("BusinessProvince"),
                                      QStringLiteral("BusinessPostalCode"),
                                      QStringLiteral("BusinessCountry"),
                                      QStringLiteral("HomePhone_Main"),
                                      QStringLiteral("HomeAddress"),
                                      QStringLiteral("HomeCity"),
                                      QStringLiteral("HomeProvince"),
                                      QStringLiteral("HomePostalCode"),
                                      QStringLiteral("HomeCountry"),
                                      QStringLiteral("Birthday"),
                                      QStringLiteral("Language"),
                                      QStringLiteral("SocialInsuranceNumber"),
                                      QStringLiteral("ContactPersonalTaxDisplayType"),
                                      QStringLiteral("SpouseFirstName"),
                                      QStringLiteral("SpouseLastName"),
                                      QStringLiteral("SpouseName"),
                                      QStringLiteral("InheritCompanyInfo"),
                                      QStringLiteral("IsSpouseAlsoPersonalTaxClient"),
                                      QStringLiteral("Custom1"),
                                      QStringLiteral("Custom2")})
        .insert({id,
                 display,
                 p.first,
                 p.last,
                 m_random.chance(50) ? QStringLiteral("Mr.") : QStringLiteral("Ms."),
                 company,
                 companyID > 0 ? QStringLiteral("Owner") : QString(),
                 phone(c),
                 phone(c),
                 companyID > 0 ? email(display, domainOf(company))
                               : email(display, QStringLiteral("example.ca")),
                 QStringLiteral("%1 King Street").arg(10 + m_random.below(990)),
                 QString::fromUtf8(c.city),
                 QLatin1String(c.province),
                 QLatin1String(c.postal),
                 QStringLiteral("Canada"),
                 phone(c),
                 QStringLiteral("%1 Elm Avenue").arg(1 + m_random.below(300)),
                 QString::fromUtf8(c.city),
                 QLatin1String(c.province),
                 QLatin1String(c.postal),
                 QStringLiteral("Canada"),
                 hasBirthday ? QVariant(iso(birthday)) : QVariant(),
                 m_random.chance(20) ? QStringLiteral("French") : QStringLiteral("English"),
                 QStringLiteral("%1 %2 %3")
                     .arg(100 + m_random.below(900))
                     .arg(100 + m_random.below(900))
                     .arg(100 + m_random.below(900)),
                 couple ? QVariant(2) : QVariant(),
                 couple ? QVariant(spouse.first) : QVariant(),
                 couple ? QVariant(spouse.last) : QVariant(),
                 couple ? QVariant(spouse.display()) : QVariant(),
                 companyID > 0 && m_random.chance(50) ? 1 : 0,
                 couple ? 1 : 0,
                 m_random.chance(30) ? QStringLiteral("Engineer") : QString(),
                 QString()});
    into(QStringLiteral("ContactsNotes"), {QStringLiteral("ContactNum"), QStringLiteral("Notes")})
        .insert({id, m_random.chance(20) ? QStringLiteral("Prefers e-mail.") : QString()});
    ++m_summary.contacts;
    return id;
}

void Builder::businessClient(int index) {
    const City& c = m_random.pick(Cities);
    const Person owner = person();
    QString name;
    switch (m_random.below(3)) {
    case 0:
        name = owner.last + u' ' + QString::fromUtf8(m_random.pick(Trades));
        break;
    case 1:
        name = QString::fromUtf8(m_random.pick(Places)) + u' ' +
               QString::fromUtf8(m_random.pick(Trades));
        break;
    default:
        name = owner.first + QStringLiteral("'s ") + QString::fromUtf8(m_random.pick(Trades));
    }
    const QString suffix = QString::fromUtf8(m_random.pick(Suffixes));
    if (!suffix.isEmpty())
        name += u' ' + suffix;
    if (index >= 200) // keep names apart in large practices
        name += QStringLiteral(" (%1)").arg(index + 1);

    const int companyID = m_nextCompanyID++;
    const int category = m_userCategories[size_t(m_random.below(int(m_userCategories.size()) - 1))];
    const QStringList companyColumns = {QStringLiteral("CompanyID"),
                                        QStringLiteral("CategoryNum"),
                                        QStringLiteral("CompanyNum"),
                                        QStringLiteral("CompanyName"),
                                        QStringLiteral("CorporateName"),
                                        QStringLiteral("CompanyType"),
                                        QStringLiteral("IndustryType"),
                                        QStringLiteral("Address"),
                                        QStringLiteral("City"),
                                        QStringLiteral("Province"),
                                        QStringLiteral("PostalCode"),
                                        QStringLiteral("Country"),
                                        QStringLiteral("OfficeNumber"),
                                        QStringLiteral("FaxNumber"),
                                        QStringLiteral("Email"),
                                        QStringLiteral("WebSite"),
                                        QStringLiteral("PartnerName"),
                                        QStringLiteral("AccountantName"),
                                        QStringLiteral("EmployeeAssigned"),
                                        QStringLiteral("Custom1"),
                                        QStringLiteral("Custom2"),
                                        QStringLiteral("DefaultContactName"),
                                        QStringLiteral("DefaultContactPhoneNumber"),
                                        QStringLiteral("DefaultContactFaxNumber"),
                                        QStringLiteral("DefaultContactEmail")};
    const QString domain = domainOf(name);
    const auto& partner = m_staff[size_t(m_random.below(2))].second;
    const auto& accountant = m_staff[size_t(2 + m_random.below(int(m_staff.size()) - 2))].second;

    // Contacts first: the company row carries its default contact's copy.
    const int people = 1 + m_random.below(3);
    std::vector<int> contacts;
    std::vector<Person> persons;
    for (int k = 0; k < people; ++k) {
        const Person p = k == 0 ? owner : person();
        persons.push_back(p);
        contacts.push_back(contact(p, c, name, companyID, false, {}));
    }
    const int defaultIndex = m_random.below(people);
    const bool noDefault = index % 25 == 3; // a few companies need the repair
    auto& link = into(QStringLiteral("ContactLinks"),
                      {QStringLiteral("ContactIDNum"), QStringLiteral("CompanyNum"),
                       QStringLiteral("CategoryNum"), QStringLiteral("ContactNum"),
                       QStringLiteral("IsPersonalTaxCategory"),
                       QStringLiteral("FamilyRelationship"), QStringLiteral("DefaultContact")});
    for (int k = 0; k < people; ++k)
        link.insert({contacts[size_t(k)], companyID, QVariant(), QVariant(), 0,
                     QStringLiteral("Not Specified"), !noDefault && k == defaultIndex ? 1 : 0});
    const Person& def = persons[size_t(defaultIndex)];
    const bool copy = !noDefault;

    into(QStringLiteral("Companies"), companyColumns)
        .insert({companyID,
                 category,
                 QVariant(),
                 name,
                 name + QStringLiteral(" Limited"),
                 QStringLiteral("Corporation"),
                 QString::fromUtf8(m_random.pick(Trades)),
                 QStringLiteral("%1 Queen Street").arg(1 + m_random.below(2000)),
                 QString::fromUtf8(c.city),
                 QLatin1String(c.province),
                 QLatin1String(c.postal),
                 QStringLiteral("Canada"),
                 phone(c),
                 phone(c),
                 QStringLiteral("info@") + domain,
                 QStringLiteral("www.") + domain,
                 partner,
                 accountant,
                 accountant,
                 QStringLiteral("Sector %1").arg(1 + m_random.below(9)),
                 QString::number(2 + m_random.below(80)),
                 copy ? QVariant(def.display()) : QVariant(QString()),
                 QString(),
                 QString(),
                 QString()});
    into(QStringLiteral("CompaniesNotes"),
         {QStringLiteral("CompanyNum"), QStringLiteral("BusinessNotes"),
          QStringLiteral("ContactNotes"), QStringLiteral("Notes")})
        .insert({companyID, QStringLiteral("Client since %1.").arg(1995 + m_random.below(28)),
                 QString(), QString()});

    // Family of the owner, now and then a couple filing together.
    if (m_random.chance(25)) {
        const Person spouse{QString::fromUtf8(m_random.pick(FirstNames)),
                            m_random.chance(70) ? owner.last
                                                : QString::fromUtf8(m_random.pick(LastNames))};
        const int spouseID = contact(spouse, c, QString(), 0, false, {});
        link.insert(
            {spouseID, QVariant(), QVariant(), contacts[0], 0, QStringLiteral("Spouse"), 0});
        if (m_random.chance(50)) {
            const Person child{QString::fromUtf8(m_random.pick(FirstNames)), owner.last};
            link.insert({contact(child, c, QString(), 0, false, {}), QVariant(), QVariant(),
                         contacts[0], 0, QString::fromUtf8(m_random.pick(Relationships)), 0});
        }
    }

    // Associate company of this one.
    if (m_random.chance(10)) {
        const int associate = m_nextCompanyID++;
        into(QStringLiteral("Companies"), companyColumns)
            .insert({associate,
                     category,
                     companyID,
                     name + QStringLiteral(" Holdings"),
                     QString(),
                     QStringLiteral("Holding Company"),
                     QString(),
                     QString(),
                     QString::fromUtf8(c.city),
                     QLatin1String(c.province),
                     QLatin1String(c.postal),
                     QStringLiteral("Canada"),
                     QString(),
                     QString(),
                     QString(),
                     QString(),
                     partner,
                     accountant,
                     QString(),
                     QString(),
                     QString(),
                     QString(),
                     QString(),
                     QString(),
                     QString()});
        into(QStringLiteral("CompaniesNotes"),
             {QStringLiteral("CompanyNum"), QStringLiteral("BusinessNotes"),
              QStringLiteral("ContactNotes"), QStringLiteral("Notes")})
            .insert({associate, QString(), QString(), QString()});
        ++m_summary.companies;
    }

    // The client record and its satellites.
    const int clientID = m_nextClientDataID++;
    // A few inactive and hidden clients in every practice of some size.
    const int status = index % 12 == 5 || m_random.chance(3) ? 2 : 1;
    const bool shown = index % 20 != 7 && !m_random.chance(2);
    into(QStringLiteral("ClientData"),
         {QStringLiteral("ClientDataID"), QStringLiteral("CompanyIDNum"),
          QStringLiteral("ActiveStatus"), QStringLiteral("ShowThisClient")})
        .insert({clientID, companyID, status, shown ? 1 : 0});
    const QDate yearEnd(m_today.year() - 1, 1 + m_random.below(12), 1);
    const QDate yearEndDate = yearEnd.addMonths(1).addDays(-1);
    const QString bn = QStringLiteral("%1").arg(100000000 + m_random.below(899999999));
    into(QStringLiteral("AccountingServices"),
         {QStringLiteral("AccountingServiceID"), QStringLiteral("BusinessNumber"),
          QStringLiteral("PayrollNumber"), QStringLiteral("PayrollRegisteredAs"),
          QStringLiteral("YearEndDate"), QStringLiteral("GSTNumber"), QStringLiteral("PSTNumber")})
        .insert({clientID, bn, bn + QStringLiteral("RP0001"), name, iso(yearEndDate),
                 bn + QStringLiteral("RT0001"),
                 QStringLiteral("PST-%1").arg(1000 + m_random.below(9000))});
    into(QStringLiteral("ClientOptions"),
         {QStringLiteral("ClientOptionID"), QStringLiteral("ClientCustom1"),
          QStringLiteral("ClientCustom2")})
        .insert({clientID, QStringLiteral("Chequing %1").arg(m_random.below(100000)), QString()});
    into(QStringLiteral("CorpTaxInfo"),
         {QStringLiteral("CorpTaxInfoID"), QStringLiteral("FederalCorpNumber"),
          QStringLiteral("ONCorpNumber"), QStringLiteral("MCBS"),
          QStringLiteral("IncorporationDate"), QStringLiteral("CharitableNum")})
        .insert(
            {clientID, QString::number(1000000 + m_random.below(8999999)),
             QString::number(m_random.below(9999999)), QString(),
             iso(QDate(1980 + m_random.below(43), 1 + m_random.below(12), 1 + m_random.below(28))),
             QString()});
    into(QStringLiteral("LawInfo"), {QStringLiteral("LawInfoID"), QStringLiteral("NameRenewalDate"),
                                     QStringLiteral("LawSocietyMemberNumber")})
        .insert({clientID,
                 m_random.chance(40) ? QVariant(iso(m_today.addDays(30 + m_random.below(700))))
                                     : QVariant(),
                 QString()});
    into(QStringLiteral("OtherInfo"),
         {QStringLiteral("OtherInfoID"), QStringLiteral("PropertyTaxNum")})
        .insert({clientID, QString()});
    into(QStringLiteral("SoftwareInfo"),
         {QStringLiteral("SoftwareInfoID"), QStringLiteral("SoftwareName"),
          QStringLiteral("SoftwareVersion"), QStringLiteral("FileSavedAs")})
        .insert({clientID, QStringLiteral("LedgerPro"),
                 QStringLiteral("%1.%2").arg(2018 + m_random.below(6)).arg(m_random.below(4)),
                 name + QStringLiteral(".lpx")});
    into(QStringLiteral("WSIB_EHTInfo"),
         {QStringLiteral("WSIB_EHTInfoID"), QStringLiteral("WSIBNumber"),
          QStringLiteral("WSIBPremiumRate"), QStringLiteral("EHTNumber")})
        .insert({clientID, QString::number(1000000 + m_random.below(8999999)),
                 QStringLiteral("%1.%2")
                     .arg(1 + m_random.below(4))
                     .arg(m_random.below(100), 2, 10, QLatin1Char('0')),
                 QString::number(m_random.below(99999999))});
    into(QStringLiteral("ClientUSInfo"), {QStringLiteral("ClientUSInfoID"), QStringLiteral("EIN")})
        .insert({clientID, QString()});
    ++m_summary.companies;
    ++m_summary.clients;

    workItems(clientID, companyID, contacts[size_t(defaultIndex)]);

    // Some owners are personal-tax clients too.
    if (m_random.chance(20))
        personalTaxClient(contacts[0], false);
}

void Builder::personalTaxClient(int contactID, bool standalone) {
    const int year = taxYear();
    const int category =
        m_taxYearCategories[size_t(2 + m_random.below(2))]; // current year or its sub-category
    into(QStringLiteral("ContactLinks"),
         {QStringLiteral("ContactIDNum"), QStringLiteral("CompanyNum"),
          QStringLiteral("CategoryNum"), QStringLiteral("ContactNum"),
          QStringLiteral("IsPersonalTaxCategory"), QStringLiteral("FamilyRelationship"),
          QStringLiteral("DefaultContact")})
        .insert(
            {contactID, QVariant(), category, QVariant(), 1, QStringLiteral("Not Specified"), 0});
    auto& status = into(QStringLiteral("PersonalTaxStatus"),
                        {QStringLiteral("ContactNum"), QStringLiteral("TaxYear"),
                         QStringLiteral("ActiveStatus"), QStringLiteral("InHouseDueDate"),
                         QStringLiteral("ReturnDate"), QStringLiteral("ReturnStatus"),
                         QStringLiteral("OverdueFlag")});
    auto& info =
        into(QStringLiteral("PersonalTaxInfo"),
             {QStringLiteral("ContactNum"), QStringLiteral("TaxYear"), QStringLiteral("ReturnType"),
              QStringLiteral("PreparedBy"), QStringLiteral("FilingMethod"),
              QStringLiteral("RefundAmount"), QStringLiteral("BalanceOwing")});
    for (int y = year - (standalone ? 1 : 0); y <= year; ++y) {
        const bool current = y == year;
        status.insert(
            {contactID, y, current && m_random.chance(10) ? 2 : 1, iso(QDate(y + 1, 4, 15)),
             current ? QVariant() : QVariant(iso(QDate(y + 1, 4, 1 + m_random.below(28)))),
             current ? QStringLiteral("In Progress") : QStringLiteral("Filed"), 0});
        info.insert({contactID, y, QStringLiteral("T1"),
                     m_staff[size_t(2 + m_random.below(4))].second, QStringLiteral("EFILE"),
                     double(m_random.below(300000)) / 100.0, 0.0});
    }
    ++m_summary.personalTaxClients;
}

void Builder::workItems(int clientDataID, int companyID, int contactID) {
    auto& schedule = into(QStringLiteral("Schedule"),
                          {QStringLiteral("ScheduleID"),       QStringLiteral("ClientNum"),
                           QStringLiteral("ContactIDNum"),     QStringLiteral("scheduleName"),
                           QStringLiteral("totalNum"),         QStringLiteral("scheduleNum"),
                           QStringLiteral("DueDate"),          QStringLiteral("inHouseDueDate"),
                           QStringLiteral("NotifiedDate"),     QStringLiteral("CalendarDate"),
                           QStringLiteral("EmployeeAssigned"), QStringLiteral("InPossession"),
                           QStringLiteral("Notified"),         QStringLiteral("Prepared"),
                           QStringLiteral("Delivered"),        QStringLiteral("Recieved"),
                           QStringLiteral("Signature"),        QStringLiteral("Cheque"),
                           QStringLiteral("Closed"),           QStringLiteral("OverdueFlag"),
                           QStringLiteral("hideInTasks"),      QStringLiteral("Year"),
                           QStringLiteral("Amount"),           QStringLiteral("PersonCompleted"),
                           QStringLiteral("DateCompleted"),    QStringLiteral("Custom1"),
                           QStringLiteral("Custom2")});
    const int rows = 3 + m_random.below(4);
    for (int k = 0; k < rows; ++k) {
        const TaskType& type = m_random.pick(TaskTypes);
        const QDate due = m_today.addDays(-120 + m_random.below(300));
        const bool closed = due < m_today && m_random.chance(70);
        const auto& employee = m_staff[size_t(m_random.below(int(m_staff.size())))].second;
        const int id = m_nextScheduleID++;
        schedule.insert(
            {id,
             clientDataID,
             contactID,
             QString::fromUtf8(type.name),
             type.total,
             type.sub,
             iso(due),
             iso(due.addDays(-7)),
             m_random.chance(50) ? QVariant(iso(due.addDays(-21))) : QVariant(),
             iso(due.addDays(-3)),
             employee,
             m_random.chance(60) ? 1 : 0,
             m_random.chance(50) ? 1 : 0,
             closed || m_random.chance(30) ? 1 : 0,
             closed ? 1 : 0,
             closed ? 1 : 0,
             m_random.chance(40) ? 1 : 0,
             m_random.chance(40) ? 1 : 0,
             closed ? 1 : 0,
             !closed && due < m_today ? 1 : 0,
             m_random.chance(3) ? 1 : 0,
             due.year(),
             m_random.chance(80) ? QVariant(double(m_random.below(2500000)) / 100.0) : QVariant(),
             closed ? employee : QString(),
             closed ? QVariant(iso(due.addDays(-m_random.below(5)))) : QVariant(),
             QStringLiteral("Chequing"),
             QString()});
        ++m_summary.scheduleRows;
        if (m_random.chance(40)) {
            const int hour = 8 + m_random.below(9);
            into(QStringLiteral("Tasks"),
                 {QStringLiteral("TaskID"), QStringLiteral("ScheduleIDNum"),
                  QStringLiteral("CompanyIDNum"), QStringLiteral("ContactIDNum"),
                  QStringLiteral("UserIDNum"), QStringLiteral("Subject"),
                  QStringLiteral("DateFrom"), QStringLiteral("TimeFrom"), QStringLiteral("TimeTo"),
                  QStringLiteral("EstimatedTime"), QStringLiteral("ReminderPeriod"),
                  QStringLiteral("AppointmentText"), QStringLiteral("hideInTasks"),
                  QStringLiteral("Custom1")})
                .insert({m_nextTaskID++, id, companyID, contactID,
                         m_staff[size_t(m_random.below(int(m_staff.size())))].first,
                         QStringLiteral("Prepare ") + QString::fromUtf8(type.name),
                         iso(due.addDays(-5)), timeOfDay(hour, 0), timeOfDay(hour + 1, 30), 1.5, 15,
                         QStringLiteral("Gather the documents."), 0,
                         m_random.chance(30) ? QStringLiteral("High") : QStringLiteral("Normal")});
        }
        if (closed && m_random.chance(10)) {
            into(QStringLiteral("archiveSchedule"),
                 {QStringLiteral("ScheduleID"), QStringLiteral("ClientDataID"),
                  QStringLiteral("ClientNum"), QStringLiteral("scheduleName"),
                  QStringLiteral("totalNum"), QStringLiteral("scheduleNum"),
                  QStringLiteral("DueDate"), QStringLiteral("Closed"),
                  QStringLiteral("hideInTasks"), QStringLiteral("Year"), QStringLiteral("Amount")})
                .insert({id, clientDataID, clientDataID, QString::fromUtf8(type.name), type.total,
                         type.sub, iso(due.addYears(-1)), 1, 0, due.year() - 1,
                         double(m_random.below(100000)) / 100.0});
        }
    }
    if (m_random.chance(40)) {
        const int hour = 9 + m_random.below(7);
        const int minute = m_random.chance(50) ? 0 : 30;
        into(QStringLiteral("Appointments"),
             {QStringLiteral("AppointmentID"), QStringLiteral("CompanyIDNum"),
              QStringLiteral("ContactIDNum"), QStringLiteral("UserIDNum"),
              QStringLiteral("Subject"), QStringLiteral("DateFrom"), QStringLiteral("TimeFrom"),
              QStringLiteral("TimeTo"), QStringLiteral("BackColour"),
              QStringLiteral("ReminderPeriod"), QStringLiteral("AppointmentText"),
              QStringLiteral("Custom1")})
            .insert({m_nextAppointmentID++, companyID, contactID,
                     m_staff[size_t(m_random.below(int(m_staff.size())))].first,
                     m_random.chance(50) ? QStringLiteral("Year-end review")
                                         : QStringLiteral("Planning meeting"),
                     iso(m_today.addDays(-30 + m_random.below(90))), timeOfDay(hour, minute),
                     timeOfDay(hour + 1, minute),
                     m_random.chance(30) ? 0 : 0x66cc99 + m_random.below(5) * 0x1000, 15,
                     QStringLiteral("Bring last year's statements."),
                     QStringLiteral("Room %1").arg(1 + m_random.below(4))});
    }
    if (m_random.chance(50)) {
        const int hour = 8 + m_random.below(8);
        const int minutes = 15 * (1 + m_random.below(12));
        const double rate = 85.0 + 5 * m_random.below(20);
        const int staff = m_random.below(int(m_staff.size()));
        into(QStringLiteral("Dockets"),
             {QStringLiteral("DocketID"),          QStringLiteral("CompanyIDNum"),
              QStringLiteral("ContactIDNum"),      QStringLiteral("UserIDNum"),
              QStringLiteral("Subject"),           QStringLiteral("DateFrom"),
              QStringLiteral("TimeFrom"),          QStringLiteral("TimeTo"),
              QStringLiteral("AppointmentText"),   QStringLiteral("DocketLocked"),
              QStringLiteral("Invoiced"),          QStringLiteral("ShowOnInvoice"),
              QStringLiteral("UsedRealTime"),      QStringLiteral("RealTimeFrom"),
              QStringLiteral("RealTimeTo"),        QStringLiteral("TextBody"),
              QStringLiteral("DocketBillingType"), QStringLiteral("BillingJobRate"),
              QStringLiteral("BillableTime"),      QStringLiteral("TotalTimeReal"),
              QStringLiteral("TotalTimeRounded"),  QStringLiteral("UseAdjustedTime"),
              QStringLiteral("TotalTimeFinal"),    QStringLiteral("TotalAmountReal"),
              QStringLiteral("TotalAmountFinal"),  QStringLiteral("DescriptionInternal"),
              QStringLiteral("DescriptionClient"), QStringLiteral("UserBillingRate")})
            .insert({m_nextDocketID++,
                     companyID,
                     contactID,
                     m_staff[size_t(staff)].first,
                     QStringLiteral("Bookkeeping and review"),
                     iso(m_today.addDays(-m_random.below(60))),
                     timeOfDay(hour, 0),
                     timeOfDay(hour + minutes / 60, minutes % 60),
                     QString(),
                     m_random.chance(30) ? 1 : 0,
                     m_random.chance(40) ? 1 : 0,
                     1,
                     m_random.chance(50) ? 1 : 0,
                     timeOfDay(hour, 2),
                     timeOfDay(hour + minutes / 60, minutes % 60),
                     QStringLiteral("Reviewed ledgers."),
                     1,
                     rate,
                     1,
                     minutes,
                     minutes,
                     0,
                     minutes,
                     rate * minutes / 60.0,
                     rate * minutes / 60.0,
                     QStringLiteral("Monthly work"),
                     QStringLiteral("Professional services"),
                     rate});
    }
}

SamplePracticeSummary Builder::build() {
    firm();
    categories();
    labels();
    for (int i = 0; i < m_options.clients; ++i)
        businessClient(i);
    // Personal-tax clients who are nobody's contact, couples among them.
    const int standalone = std::max(2, m_options.clients / 5);
    for (int i = 0; i < standalone; ++i) {
        const City& c = m_random.pick(Cities);
        const Person p = person();
        const bool couple = m_random.chance(35);
        const Person spouse{QString::fromUtf8(m_random.pick(FirstNames)),
                            m_random.chance(60) ? p.last
                                                : QString::fromUtf8(m_random.pick(LastNames))};
        const int id = contact(p, c, QString(), 0, couple, spouse);
        personalTaxClient(id, true);
    }
    return m_summary;
}

} // namespace

SamplePracticeSummary SamplePractice::write(const QString& path,
                                            const SamplePracticeOptions& options) {
    if (QFileInfo::exists(path))
        throw QmError(QmError::FileAlreadyOpen,
                      QStringLiteral("The file already exists: %1").arg(path));
    if (options.clients < 0)
        throw QmError(QmError::InvalidPropertyValue,
                      QStringLiteral("The number of clients cannot be negative."));
    const QFileInfo target(path);
    if (!QDir().mkpath(target.absolutePath()))
        throw QmError(QmError::PathNotFound,
                      QStringLiteral("Cannot create the folder of %1").arg(path));
    static QAtomicInt counter;
    const QString temporary =
        target.absolutePath() +
        QStringLiteral("/.%1.%2.tmp").arg(target.fileName()).arg(counter.fetchAndAddRelaxed(1));
    QFile::remove(temporary);
    const QString connection = QStringLiteral("qm_sample_%1").arg(counter.fetchAndAddRelaxed(1));
    SamplePracticeSummary summary;
    QString error;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        db.setDatabaseName(temporary);
        if (!db.open()) {
            error = db.lastError().text();
        } else {
            try {
                QSqlQuery(db).exec(QStringLiteral("PRAGMA journal_mode=OFF"));
                QSqlQuery(db).exec(QStringLiteral("PRAGMA synchronous=OFF"));
                ClientDatabaseSchema::create(db);
                if (!db.transaction())
                    throw QmError(QmError::DatabaseError, db.lastError().text());
                SamplePracticeOptions o = options;
                if (!o.referenceDate.isValid())
                    o.referenceDate = QDate(2024, 6, 1);
                {
                    Builder builder(db, o);
                    summary = builder.build();
                }
                if (!db.commit())
                    throw QmError(QmError::DatabaseError, db.lastError().text());
                QSqlQuery(db).exec(QStringLiteral("PRAGMA journal_mode=DELETE"));
            } catch (const QmError& e) {
                error = e.description();
                db.rollback();
            }
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(connection);
    if (error.isEmpty() && !QFile::rename(temporary, path))
        error = QStringLiteral("Cannot move the new database into place: %1").arg(path);
    if (!error.isEmpty()) {
        QFile::remove(temporary);
        throw QmError(QmError::DatabaseError, error);
    }
    return summary;
}
