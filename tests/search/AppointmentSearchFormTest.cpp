#include "search/AppointmentSearchForm.h"

#include "data/ClientDbFixture.h"
#include "platform/MsgboxClass.h"
#include "search/clsSearchAppointments.h"

#include <functional>

namespace {

using Control = AppointmentSearchForm::Control;

class AppointmentSearchFormTest : public ClientDbFixture {
protected:
    void SetUp() override {
        ClientDbFixture::SetUp();
        m_context->clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
        loadFixture(QStringLiteral("../search/practice"));
    }

    static AppointmentSearchForm freshForm() {
        return AppointmentSearchForm::fromCriteria(clsSearchAppointments());
    }

    ScriptedMsgbox m_msgbox;
};

TEST_F(AppointmentSearchFormTest, TheFirstBadRowIsToldAndNothingIsWritten) {
    const struct {
        const char* name;
        std::function<void(AppointmentSearchForm&)> change;
        const char* message;
        Control control;
        int index;
    } cases[] = {
        {"BlankSubject", [](AppointmentSearchForm& f) { f.searchBySubject = true; },
         "You must enter valid search text for the appointment name.", Control::Subject, 0},
        {"NoClient", [](AppointmentSearchForm& f) { f.searchByClient = true; },
         "You must select a valid client from the drop down list.", Control::Client, 0},
        {"CompanyThatIsGone",
         [](AppointmentSearchForm& f) {
             f.searchByClient = true;
             f.clientItem = 77;
         },
         "You must select a valid client from the drop down list.", Control::Client, 0},
        {"ContactThatIsGone",
         [](AppointmentSearchForm& f) {
             f.searchByClient = true;
             f.clientItem = -777;
         },
         "You must select a valid client from the drop down list.", Control::Client, 0},
        {"NoUser", [](AppointmentSearchForm& f) { f.searchByUser = true; },
         "You must select a valid user name.", Control::User, 0},
        {"BadStartDate",
         [](AppointmentSearchForm& f) {
             f.dateOption = 2;
             f.dates[2] = QStringLiteral("x");
         },
         "You must select a valid start date.", Control::DateBox, 2},
        {"BadEndDate",
         [](AppointmentSearchForm& f) {
             f.dateOption = 2;
             f.dates[3].clear();
         },
         "You must select a valid end date.", Control::DateBox, 3},
        {"BackwardDates",
         [](AppointmentSearchForm& f) {
             f.dateOption = 2;
             f.dates[2] = QStringLiteral("March 6, 2024");
             f.dates[3] = QStringLiteral("March 5, 2024");
         },
         "You must select an end date that is greater than or equal to the start date.",
         Control::DateBox, 3},
        {"BadDateOfBefore",
         [](AppointmentSearchForm& f) {
             f.dateOption = 1;
             f.dates[1] = QStringLiteral("someday");
         },
         "You must select a valid date.", Control::DateBox, 1},
        {"StartTimeMissing",
         [](AppointmentSearchForm& f) {
             f.searchByStartTime = true;
             f.startOption = 0;
         },
         "You must select a valid start time.", Control::StartTime, 0},
        {"SecondStartTimeBad",
         [](AppointmentSearchForm& f) {
             f.searchByStartTime = true;
             f.startTimes[2] = QStringLiteral("9:00 AM");
             f.startTimes[3] = QStringLiteral("noon");
         },
         "You must select a valid end time.", Control::StartTime, 3},
        {"EndTimesBackward",
         [](AppointmentSearchForm& f) {
             f.searchByEndTime = true;
             f.endTimes[2] = QStringLiteral("5:00 PM");
             f.endTimes[3] = QStringLiteral("4:45 PM");
         },
         "You must select an end time that is greater than or equal to the start time.",
         Control::EndTime, 3},
    };
    for (const auto& c : cases) {
        clsSearchAppointments search;
        const QString before = search.criteriaText();
        AppointmentSearchForm form = freshForm();
        c.change(form);
        m_msgbox.clear();
        const auto fault = form.save(search, m_msgbox);
        ASSERT_TRUE(fault.has_value()) << c.name;
        EXPECT_EQ(fault->control, c.control) << c.name;
        EXPECT_EQ(fault->index, c.index) << c.name;
        EXPECT_EQ(m_msgbox.texts(), QStringList{QLatin1String(c.message)}) << c.name;
        EXPECT_EQ(search.criteriaText(), before) << c.name;
    }
}

TEST_F(AppointmentSearchFormTest, AnAcceptedSearchSetsTheFilterAndTellsOnlyAnEmptyOne) {
    const char* none = "There are no appointments that match the criteria you have chosen.";
    const struct {
        const char* name;
        std::function<void(AppointmentSearchForm&)> change;
        const char* filter;
        const char* message; // nullptr: nothing is told
    } cases[] = {
        {"AllDates", [](AppointmentSearchForm&) {}, "", nullptr},
        {"RangeEndingOnItsStart",
         [](AppointmentSearchForm& f) {
             f.dateOption = 2;
             f.dates[2] = QStringLiteral("March 4, 2024");
             f.dates[3] = QStringLiteral("March 4, 2024");
         },
         "DateFrom >= #3/4/2024# AND DateFrom <= #3/4/2024#", nullptr},
        {"StartingAtReadsOneBox",
         [](AppointmentSearchForm& f) {
             f.searchByStartTime = true;
             f.startOption = 3;
             f.startTimes = {"x", "x", "x", "x", "9:30 AM"};
         },
         "TimeFrom = #9:30:00 AM#", nullptr},
        {"PersonalClientIsAContact",
         [](AppointmentSearchForm& f) {
             f.searchByClient = true;
             f.clientItem = -200;
         },
         "ContactIDNum = 200", nullptr},
        {"CompanyUserAndColour",
         [](AppointmentSearchForm& f) {
             f.searchByClient = true;
             f.clientItem = 10;
             f.searchByUser = true;
             f.userID = 51;
             f.searchByColour = true;
             f.colour = 65280;
         },
         "CompanyIDNum = 10 AND UserIDNum = 51 AND BackColour = 65280", nullptr},
        {"ApostropheInTheSubject",
         [](AppointmentSearchForm& f) {
             f.searchBySubject = true;
             f.subject = QStringLiteral("O'Brien");
         },
         "Subject LIKE '%O''Brien%'", nullptr},
        {"NothingFound",
         [](AppointmentSearchForm& f) {
             f.searchByEndTime = true;
             f.endOption = 0;
             f.endTimes[0] = QStringLiteral("11:45 PM");
         },
         "TimeTo >= #11:45:00 PM#", none},
    };
    for (const auto& c : cases) {
        clsSearchAppointments search;
        AppointmentSearchForm form = freshForm();
        c.change(form);
        m_msgbox.clear();
        EXPECT_FALSE(form.save(search, m_msgbox).has_value()) << c.name;
        EXPECT_EQ(search.SQLFilter, QLatin1String(c.filter)) << c.name;
        const QStringList told = c.message ? QStringList{QLatin1String(c.message)} : QStringList{};
        EXPECT_EQ(m_msgbox.texts(), told) << c.name;
        // What the user typed stays as typed: the next filter escapes it once.
        EXPECT_EQ(search.subjectText, form.subject) << c.name;
    }
}

TEST_F(AppointmentSearchFormTest, ADialogOpenedAgainShowsAndKeepsTheLastSearch) {
    clsSearchAppointments search;
    ASSERT_EQ(search.setCriteria(QStringLiteral(
                  "searchBySubject=1;subjectText=review;searchByContact=1;contactID=200;"
                  "searchByUser=1;userID=50;searchByColour=1;backColour=0;dateMatch=4;"
                  "firstDate=2024-03-01;secondDate=2024-03-31;searchByStartTime=1;"
                  "firstStartTime=08:00:00;secondStartTime=14:00:00;startTimeMatch=4;"
                  "searchByEndTime=1;firstEndTime=5:00 PM;endTimeMatch=2")),
              QString());
    const AppointmentSearchForm shown = AppointmentSearchForm::fromCriteria(search);
    EXPECT_EQ(shown.clientItem, -200);
    EXPECT_EQ(shown.dateOption, 2);
    EXPECT_EQ(shown.dates[3], QStringLiteral("March 31, 2024"));
    EXPECT_EQ(shown.startTimes[2], QStringLiteral("8:00 AM"));
    EXPECT_EQ(shown.startTimes[3], QStringLiteral("2:00 PM"));
    EXPECT_EQ(shown.endOption, 1);
    EXPECT_EQ(shown.endTimes[1], QStringLiteral("5:00 PM"));

    clsSearchAppointments saved = search;
    ASSERT_FALSE(shown.save(saved, m_msgbox).has_value());
    EXPECT_EQ(AppointmentSearchForm::fromCriteria(saved).startTimes,
              AppointmentSearchForm::fromCriteria(search).startTimes);
    saved.generateSQLFilter();
    search.generateSQLFilter();
    EXPECT_EQ(saved.SQLFilter, search.SQLFilter);
}

TEST(AppointmentSearchTimes, TheListHoldsEveryQuarterOfTheDay) {
    const QStringList quarters = AppointmentSearchForm::quarterHours();
    ASSERT_EQ(quarters.size(), 96);
    EXPECT_EQ(quarters.first(), QStringLiteral("12:00 AM"));
    EXPECT_EQ(quarters[53], QStringLiteral("1:15 PM"));
    EXPECT_EQ(quarters.last(), QStringLiteral("11:45 PM"));
    EXPECT_EQ(normalizedTimeText(QStringLiteral("14:05")), QStringLiteral("2:05 PM"));
    EXPECT_EQ(normalizedTimeText(QString()), QString());
    EXPECT_FALSE(normalizedTimeText(QStringLiteral("later")).has_value());
}

} // namespace
