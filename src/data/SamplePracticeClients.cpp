// Rows are built from many joined texts handed on as QVariant: plain
// QString concatenation keeps that readable.
#undef QT_USE_QSTRINGBUILDER

#include "data/SamplePracticeBuilder.h"

// Business clients with their satellite rows, personal-tax clients, and the
// tasks, appointments and dockets of each.
namespace SamplePracticeDetail {

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
    companiesNotes().insert({companyID,
                             QStringLiteral("Client since %1.").arg(1995 + m_random.below(28)),
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
        companiesNotes().insert({associate, QString(), QString(), QString()});
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

} // namespace SamplePracticeDetail
