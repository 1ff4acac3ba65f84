// Rows are built from many joined texts handed on as QVariant: plain
// QString concatenation keeps that readable.
#undef QT_USE_QSTRINGBUILDER

#include "data/SamplePractice.h"

#include "data/DatabaseLocation.h"
#include "data/NewClientDatabase.h"
#include "data/SamplePracticeBuilder.h"

namespace SamplePracticeDetail {

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

} // namespace SamplePracticeDetail

using SamplePracticeDetail::Builder;

SamplePracticeSummary SamplePractice::write(const QString& location,
                                            const SamplePracticeOptions& options) {
    if (options.clients < 0)
        throw QmError(QmError::InvalidPropertyValue,
                      QStringLiteral("The number of clients cannot be negative."));
    QString error;
    const auto where = DatabaseLocation::parse(location, &error);
    if (!where)
        throw QmError(QmError::InvalidPropertyValue, error);
    NewClientDatabase target(*where, QStringLiteral("the sample practice"));
    SamplePracticeOptions o = options;
    if (!o.referenceDate.isValid())
        o.referenceDate = QDate(2024, 6, 1);
    SamplePracticeSummary summary;
    {
        Builder builder(target.db(), o);
        summary = builder.build();
    }
    target.commit();
    return summary;
}
