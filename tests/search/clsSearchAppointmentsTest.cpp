#include "search/clsSearchAppointments.h"

#include "data/ClientDbFixture.h"
#include "data/JetSqlTranslator.h"
#include "platform/errorClass.h"

#include <functional>

namespace {

class SearchAppointmentsTest : public ClientDbFixture {
protected:
    void SetUp() override {
        ClientDbFixture::SetUp();
        m_context->clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
        loadFixture(QStringLiteral("../search/practice"));
    }

    // AppointmentIDs of the SELECT, in its order.
    QStringList selectedIDs(clsSearchAppointments& search) {
        const int rs = m_db->openRecordset(search.generateSQLStr());
        QStringList ids;
        while (!m_db->isEOF(rs)) {
            ids << m_db->getField(rs, "AppointmentID").toString();
            m_db->moveNext(rs);
        }
        m_db->closeRecordset(rs);
        return ids;
    }
};

using Criteria = std::function<void(clsSearchAppointments&)>;

TEST_F(SearchAppointmentsTest, CriteriaGiveTheWhereClauseAndTheRows) {
    const char* const all = "404,401,400,402,403"; // by date, then start time
    const struct {
        const char* name;
        const char* criteria; // fields by name, on top of the defaults
        const char* filter;
        const char* ids;
    } cases[] = {
        {"NoCriteria", "", "", all},
        {"Subject", "searchBySubject=1;subjectText=review", "Subject LIKE '%review%'", "400,403"},
        {"BlankSubjectIsLeftOut", "searchBySubject=1;subjectText= ", "", all},
        {"Company", "searchByCompany=1;companyID=10", "CompanyIDNum = 10", "400,403"},
        {"InvalidCompanyIsDropped", "searchByCompany=1;companyID=999", "", all},
        {"Contact", "searchByContact=1;contactID=200", "ContactIDNum = 200", "402"},
        {"User", "searchByUser=1;userID=51", "UserIDNum = 51", "401,403"},
        {"InvalidUserIsDropped", "searchByUser=1;userID=7", "", all},
        {"BlackIsAColour", "searchByColour=1;backColour=0", "BackColour = 0", "400"},
        {"NoColour", "searchByColour=1;backColour=-1", "", all},
        {"DefaultRangeIsThisMonthToToday", "dateMatch=4",
         "DateFrom >= #3/1/2024# AND DateFrom <= #3/5/2024#", "401,400"},
        {"On", "dateMatch=3;firstDate=2024-03-15", "DateFrom = #3/15/2024#", "402"},
        {"OnOrAfter", "dateMatch=1;firstDate=2024-03-15", "DateFrom >= #3/15/2024#", "402,403"},
        {"OnOrBeforeReadsTheFirstDate", "dateMatch=2;firstDate=2024-03-04;secondDate=2030-01-01",
         "DateFrom <= #3/4/2024#", "404,401,400"},
        {"StartBetween", "searchByStartTime=1;firstStartTime=9:00 AM;secondStartTime=2:00 PM",
         "TimeFrom >= #9:00:00 AM# AND TimeFrom <= #2:00:00 PM#", "404,400,402"},
        {"StartAt",
         "searchByStartTime=1;startTimeMatch=3;firstStartTime=8:00 AM;secondStartTime=not read",
         "TimeFrom = #8:00:00 AM#", "401"},
        {"EndOnOrAfter", "searchByEndTime=1;endTimeMatch=1;firstEndTime=3:00 PM",
         "TimeTo >= #3:00:00 PM#", "402,403"},
        {"EndOnOrBefore", "searchByEndTime=1;endTimeMatch=2;firstEndTime=12:00 AM",
         "TimeTo <= #12:00:00 AM#", ""},
        {"Everything",
         "searchBySubject=1;subjectText=GST;searchByCompany=1;companyID=12;searchByUser=1;"
         "userID=50;searchByColour=1;backColour=255;dateMatch=4;secondDate=2024-03-31;"
         "searchByStartTime=1;startTimeMatch=1;firstStartTime=1:00 PM;searchByEndTime=1;"
         "endTimeMatch=2;firstEndTime=4:00 PM",
         "Subject LIKE '%GST%' AND CompanyIDNum = 12 AND UserIDNum = 50 AND BackColour = 255 AND "
         "DateFrom >= #3/1/2024# AND DateFrom <= #3/31/2024# AND TimeFrom >= #1:00:00 PM# AND "
         "TimeTo <= #4:00:00 PM#",
         "402"},
    };
    for (const auto& c : cases) {
        clsSearchAppointments search;
        ASSERT_EQ(search.setCriteria(QString::fromUtf8(c.criteria)), QString()) << c.name;
        search.generateSQLFilter();
        EXPECT_EQ(search.SQLFilter, QString::fromLatin1(c.filter)) << c.name;
        const QStringList expected = QString::fromLatin1(c.ids).split(u',', Qt::SkipEmptyParts);
        EXPECT_EQ(selectedIDs(search), expected) << c.name;
        EXPECT_EQ(search.appointmentFilterCount(), expected.size()) << c.name;
    }
}

TEST_F(SearchAppointmentsTest, SelectHasAWhereOnlyForAFilter) {
    clsSearchAppointments search;
    EXPECT_EQ(search.generateSQLStr(), "SELECT Appointments.* FROM Appointments ORDER BY "
                                       "Appointments.DateFrom, Appointments.TimeFrom;");
    search.searchByCompany = true;
    search.companyID = 11;
    EXPECT_EQ(search.generateSQLStr(), "SELECT Appointments.* FROM Appointments WHERE "
                                       "CompanyIDNum = 11 ORDER BY Appointments.DateFrom, "
                                       "Appointments.TimeFrom;");
}

TEST_F(SearchAppointmentsTest, SubjectTextIsEscapedAndTravelsOnlyAsAParameter) {
    const struct {
        const char* subject;
        const char* escaped;
        int count;
    } cases[] = {
        {"O'Brien's", "O''Brien''s", 1},
        {"x' OR '1'='1", "x'' OR ''1''=''1", 0},
        {"'; DROP TABLE Appointments; --", "''; DROP TABLE Appointments; --", 0},
    };
    for (const auto& c : cases) {
        clsSearchAppointments search;
        search.searchBySubject = true;
        search.subjectText = QString::fromUtf8(c.subject);
        const QString sql = search.generateSQLStr();
        EXPECT_EQ(search.subjectText, QString::fromUtf8(c.escaped)) << c.subject;
        // What the engine is given holds no quote at all: the text is a
        // bound parameter.
        const TranslatedSql translated = JetSqlTranslator::translate(sql);
        EXPECT_FALSE(translated.sql.contains(u'\'')) << translated.sql.toStdString();
        EXPECT_EQ(translated.parameters.value(0).toString(),
                  u'%' + QString::fromUtf8(c.subject) + u'%');
        // generateSQLStr has escaped it once already; restore before counting.
        search.subjectText = QString::fromUtf8(c.subject);
        EXPECT_EQ(search.appointmentFilterCount(), c.count) << c.subject;
    }
    EXPECT_EQ(hostValue("SELECT COUNT(*) FROM Appointments").toInt(), 5);

    // Each run escapes again, as the criteria record always did.
    clsSearchAppointments twice;
    twice.searchBySubject = true;
    twice.subjectText = "O'Brien";
    twice.generateSQLFilter();
    twice.generateSQLFilter();
    EXPECT_EQ(twice.subjectText, "O''''Brien");
    EXPECT_EQ(twice.SQLFilter, "Subject LIKE '%O''''Brien%'");
}

TEST_F(SearchAppointmentsTest, DisplayTextTellsWhatWasSearched) {
    const struct {
        const char* name;
        const char* criteria;
        const char* text;
    } cases[] = {
        {"Nothing", "", "All appointments"},
        {"UserAndDay", "searchByUser=1;userID=50;dateMatch=3;firstDate=2024-03-04",
         "All appointments for dfox scheduled on March 4, 2024"},
        {"InvalidUserIsLeftOut", "searchByUser=1;userID=7;dateMatch=1",
         "All appointments scheduled on or after March 1, 2024"},
        {"OnOrBefore", "dateMatch=2;firstDate=2024-12-25",
         "All appointments scheduled on or before December 25, 2024"},
        {"Between", "dateMatch=4",
         "All appointments scheduled between March 1, 2024 and March 5, 2024"},
        {"SubjectCompanyColour",
         "searchBySubject=1;subjectText=GST;searchByCompany=1;companyID=12;searchByColour=1;"
         "backColour=0",
         "All appointments with the text 'GST' in the subject that are assigned to O'Brien & "
         "Sons and having the same color."},
        {"StartBetweenAndEndAfter",
         "searchByStartTime=1;firstStartTime=9:00 AM;secondStartTime=10:30 AM;searchByEndTime=1;"
         "endTimeMatch=1;firstEndTime=1899-12-30 13:05:00",
         "All appointments  Show only appointments with a start time starting between 9:00 AM "
         "and 10:30 AM and with an end time starting on or atfer 1:05 PM"},
        {"StartAtAndEndBetween",
         "searchByStartTime=1;startTimeMatch=3;firstStartTime=12:00 AM;searchByEndTime=1;"
         "endTimeMatch=4;firstEndTime=11:45 PM;secondEndTime=11:45 PM",
         "All appointments  Show only appointments with a start time starting at 12:00 AM and "
         "with an end time starting between 11:45 PM and 11:45 PM"},
        {"StartBefore", "searchByStartTime=1;startTimeMatch=2;firstStartTime=12:15 PM",
         "All appointments  Show only appointments with a start time starting on or before "
         "12:15 PM"},
        {"StartOnOrAfter", "searchByStartTime=1;startTimeMatch=1;firstStartTime=6:00 AM",
         "All appointments  Show only appointments with a start time starting on or after "
         "6:00 AM"},
        {"EndAtAlone", "searchByEndTime=1;endTimeMatch=3;firstEndTime=3:15 PM",
         "All appointments  Show only appointments with an end time starting at 3:15 PM"},
        {"EndBeforeAlone", "searchByEndTime=1;endTimeMatch=2;firstEndTime=3:15 PM",
         "All appointments  Show only appointments with an end time starting on or before "
         "3:15 PM"},
    };
    for (const auto& c : cases) {
        clsSearchAppointments search;
        ASSERT_EQ(search.setCriteria(QString::fromUtf8(c.criteria)), QString()) << c.name;
        search.SQLFilter = "kept";
        search.generateDisplayStr();
        EXPECT_EQ(search.displayString, QString::fromUtf8(c.text)) << c.name;
        EXPECT_EQ(search.SQLFilter, "kept") << c.name;
    }
    // The filter leaves the display text alone.
    clsSearchAppointments search;
    search.displayString = "shown";
    search.generateSQLFilter();
    EXPECT_EQ(search.displayString, "shown");
}

TEST_F(SearchAppointmentsTest, ResetGivesTheDefaultsAndLeavesTheContact) {
    clsSearchAppointments search;
    ASSERT_TRUE(search
                    .setCriteria("searchBySubject=1;subjectText=x;searchByCompany=1;companyID=10;"
                                 "searchByContact=1;contactID=200;searchByUser=1;userID=50;"
                                 "searchByColour=1;backColour=0;firstDate=2020-01-01;"
                                 "secondDate=2020-01-02;dateMatch=3;searchByStartTime=1;"
                                 "firstStartTime=9:00 AM;secondStartTime=10:00 AM;"
                                 "startTimeMatch=1;searchByEndTime=1;firstEndTime=1:00 PM;"
                                 "secondEndTime=2:00 PM;endTimeMatch=2")
                    .isEmpty());
    search.generateSQLFilter();
    search.generateDisplayStr();
    m_context->clock.setFixed(QDateTime(QDate(2025, 1, 31), QTime(23, 0)));
    search.resetSearchCriteria();

    EXPECT_FALSE(search.searchBySubject || search.searchByCompany || search.searchByUser ||
                 search.searchByColour || search.searchByStartTime || search.searchByEndTime);
    EXPECT_EQ(search.subjectText, "");
    EXPECT_EQ(search.companyID, -1);
    EXPECT_EQ(search.userID, -1);
    EXPECT_EQ(search.backColour, -1);
    EXPECT_EQ(search.firstDate, QDate(2025, 1, 1));
    EXPECT_EQ(search.secondDate, QDate(2025, 1, 31));
    EXPECT_EQ(search.dateMatch, 5);
    EXPECT_EQ(search.startTimeMatch, 4);
    EXPECT_EQ(search.endTimeMatch, 4);
    for (const QString& text : {search.firstStartTime, search.secondStartTime, search.firstEndTime,
                                search.secondEndTime, search.SQLFilter, search.displayString}) {
        EXPECT_EQ(text, "");
    }
    EXPECT_TRUE(search.searchByContact);
    EXPECT_EQ(search.contactID, 200);
    EXPECT_FALSE(search.setCriteria("subject=x").isEmpty());
}

TEST_F(SearchAppointmentsTest, BadTimesDatesAndDatabasesFailThroughTheHandler) {
    const struct {
        const char* name;
        Criteria criteria;
    } cases[] = {
        {"TimeThatIsNoTime",
         [](clsSearchAppointments& s) {
             s.searchByStartTime = true;
             s.startTimeMatch = 3;
             s.firstStartTime = "noonish";
         }},
        {"EmptyTime",
         [](clsSearchAppointments& s) {
             s.searchByEndTime = true;
             s.endTimeMatch = 1;
         }},
        {"NoDate",
         [](clsSearchAppointments& s) {
             s.dateMatch = 3;
             s.firstDate = QDate();
         }},
        {"YearBeyondFourDigits",
         [](clsSearchAppointments& s) {
             s.dateMatch = 4;
             s.secondDate = QDate(10000, 1, 1);
         }},
    };
    for (const auto& c : cases) {
        clsSearchAppointments search;
        c.criteria(search);
        EXPECT_THROW(search.appointmentFilterCount(), QmError) << c.name;
        EXPECT_EQ(m_db->openRecordsetCount(), 0) << c.name;
    }
    hostExec("DROP TABLE Appointments");
    clsSearchAppointments search;
    EXPECT_THROW(search.appointmentFilterCount(), QmError);
    m_context->database = nullptr;
    EXPECT_EQ(search.appointmentFilterCount(), -1);
}

TEST_F(SearchAppointmentsTest, HostileTimesAreRefusedBeforeAnySqlIsBuilt) {
    // Each would widen the WHERE clause if the time text reached the statement.
    const char* const hostile[] = {
        "9:00 AM# OR 1=1 OR TimeFrom = #9:00 AM",
        "9:00 AM# UNION SELECT Appointments.* FROM Appointments WHERE #1/1/2000",
        "9:00 AM# --",
        "9:00 AM'",
        "9:#00 AM",
    };
    for (const char* text : hostile) {
        for (const qint16 match : {qint16(3), qint16(4)}) {
            clsSearchAppointments search;
            search.searchByStartTime = true;
            search.startTimeMatch = match;
            search.firstStartTime = "8:00 AM";
            search.secondStartTime = QString::fromUtf8(text);
            if (match == 3)
                std::swap(search.firstStartTime, search.secondStartTime);
            try {
                search.generateSQLFilter();
                ADD_FAILURE() << "accepted " << text;
            } catch (const QmError& error) {
                EXPECT_TRUE(error.description().contains(QString::fromUtf8(text)))
                    << error.description().toStdString();
                EXPECT_TRUE(error.description().contains("start time")) << text;
            }
            EXPECT_TRUE(search.SQLFilter.isEmpty()) << text;
            EXPECT_THROW(search.appointmentFilterCount(), QmError) << text;
        }
    }
    // The second time of "starting at" is not read, so it cannot fail.
    clsSearchAppointments at;
    ASSERT_EQ(at.setCriteria("searchByEndTime=1;endTimeMatch=3;firstEndTime=3:00 PM;"
                             "secondEndTime=x# OR 1=1"),
              QString());
    at.generateSQLFilter();
    EXPECT_EQ(at.SQLFilter, "TimeTo = #3:00:00 PM#");
}

TEST_F(SearchAppointmentsTest, WildcardsTypedInTheSubjectAreMatchedLiterally) {
    hostExec("INSERT INTO Appointments (AppointmentID, CompanyIDNum, UserIDNum, Subject, DateFrom, "
             "TimeFrom, TimeTo, BackColour) VALUES (410, 10, 50, '100% done_ok [x] *', "
             "'2024-03-20', '1899-12-30 09:00:00', '1899-12-30 10:00:00', 0)");
    const struct {
        const char* subject;
        const char* ids;
    } cases[] = {
        {"%", "410,403"}, {"_", "410"}, {"*", "410"}, {"100% done_ok", "410"}, {"[x]", "410"},
        {"100_", ""},     {"?", ""},    {"e%v", ""},  {"Year", "400"},
    };
    for (const auto& c : cases) {
        clsSearchAppointments search;
        search.searchBySubject = true;
        search.subjectText = QString::fromUtf8(c.subject);
        EXPECT_EQ(selectedIDs(search).join(u','), QString::fromUtf8(c.ids)) << c.subject;
        // The escaping stays in the statement; the text the display shows
        // is the typed one.
        search.subjectText = QString::fromUtf8(c.subject);
        search.generateDisplayStr();
        EXPECT_TRUE(search.displayString.contains(u'\'' + QString::fromUtf8(c.subject) + u'\''))
            << c.subject;
    }
}

TEST_F(SearchAppointmentsTest, TimesStoredInTheShortFormAreFound) {
    // The host may store a time of day alone, without the time-only day.
    hostExec("INSERT INTO Appointments (AppointmentID, CompanyIDNum, UserIDNum, Subject, DateFrom, "
             "TimeFrom, TimeTo, BackColour) VALUES (411, 10, 50, 'Short form', '2024-03-21', "
             "'09:45:00', '23:30:00', 0)");
    const struct {
        const char* criteria;
        const char* ids;
    } cases[] = {
        {"searchByStartTime=1;firstStartTime=9:40 AM;secondStartTime=9:50 AM", "411"},
        {"searchByStartTime=1;startTimeMatch=3;firstStartTime=9:45 AM", "411"},
        {"searchByStartTime=1;startTimeMatch=2;firstStartTime=9:00 AM", "401"},
        {"searchByEndTime=1;endTimeMatch=1;firstEndTime=11:00 PM", "411"},
        {"searchBySubject=1;subjectText=Short;searchByEndTime=1;endTimeMatch=2;"
         "firstEndTime=11:00 PM",
         ""},
    };
    for (const auto& c : cases) {
        clsSearchAppointments search;
        ASSERT_EQ(search.setCriteria(QString::fromLatin1(c.criteria)), QString()) << c.criteria;
        EXPECT_EQ(selectedIDs(search).join(u','), QString::fromLatin1(c.ids)) << c.criteria;
    }
}

} // namespace
