#include "search/TaskSearchForm.h"

#include "data/ClientDbFixture.h"
#include "platform/MsgboxClass.h"
#include "search/clsSearchTasks.h"

#include <QStandardItemModel>
#include <functional>

namespace {

using Control = TaskSearchForm::Control;

class TaskSearchFormTest : public ClientDbFixture {
protected:
    void SetUp() override {
        ClientDbFixture::SetUp();
        m_context->clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
        m_context->msgbox = &m_msgbox;
        loadFixture(QStringLiteral("../search/practice"));
    }

    // What a fresh dialog shows for a fresh search: nothing ticked, the
    // "between" row with today in its boxes.
    static TaskSearchForm freshForm() { return TaskSearchForm::fromCriteria(clsSearchTasks()); }

    ScriptedMsgbox m_msgbox;
};

TEST_F(TaskSearchFormTest, AFreshSearchShowsTodayInTheBetweenRow) {
    const TaskSearchForm form = freshForm();
    EXPECT_EQ(form.dateOption, 2);
    EXPECT_EQ(form.dateColumn, -1);
    EXPECT_EQ(form.dates[2], QStringLiteral("March 5, 2024"));
    EXPECT_EQ(form.dates[3], QStringLiteral("March 5, 2024"));
    EXPECT_FALSE(form.taskType.has_value());
    EXPECT_FALSE(form.companyID.has_value());
}

TEST_F(TaskSearchFormTest, TheFirstBadRowIsToldAndNothingIsWritten) {
    const struct {
        const char* name;
        std::function<void(TaskSearchForm&)> change;
        const char* message;
        Control control;
        int index;
    } cases[] = {
        {"BlankName",
         [](TaskSearchForm& f) {
             f.searchByName = true;
             f.taskName = QStringLiteral("  ");
         },
         "You must enter valid search text for the task name.", Control::TaskName, 0},
        {"NameBeforeClient",
         [](TaskSearchForm& f) {
             f.searchByName = true;
             f.searchByClient = true;
         },
         "You must enter valid search text for the task name.", Control::TaskName, 0},
        {"NoClient", [](TaskSearchForm& f) { f.searchByClient = true; },
         "You must select a valid client from the drop down list.", Control::Client, 0},
        {"ClientBeforeType",
         [](TaskSearchForm& f) {
             f.searchByType = true;
             f.searchByClient = true;
         },
         "You must select a valid client from the drop down list.", Control::Client, 0},
        {"NoType", [](TaskSearchForm& f) { f.searchByType = true; },
         "You must select a valid task type.", Control::TaskType, 0},
        {"NoEmployee", [](TaskSearchForm& f) { f.searchByEmployee = true; },
         "You must select a valid employee name.", Control::Employee, 0},
        {"SecondDateOfBetween", [](TaskSearchForm& f) { f.dates[3] = QStringLiteral("soon"); },
         "You must select a valid date.", Control::DateBox, 3},
        {"EmptyDateOfOn",
         [](TaskSearchForm& f) {
             f.dateOption = 3;
             f.dates[4].clear();
         },
         "You must select a valid date.", Control::DateBox, 4},
    };
    for (const auto& c : cases) {
        clsSearchTasks search;
        search.taskName = QStringLiteral("kept");
        const QString before = search.criteriaText();
        TaskSearchForm form = freshForm();
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

TEST_F(TaskSearchFormTest, AnAcceptedSearchSetsTheFilterAndTellsTheCount) {
    const char* selected = "The tasks have been selected.";
    const char* none = "There are no tasks that match the criteria you have chosen.";
    const struct {
        const char* name;
        std::function<void(TaskSearchForm&)> change;
        const char* filter;
        const char* message;
    } cases[] = {
        {"NothingTicked", [](TaskSearchForm&) {}, "hideInTasks = False", selected},
        {"NameAndDueDatesBetween",
         [](TaskSearchForm& f) {
             f.searchByName = true;
             f.taskName = QStringLiteral("GST");
             f.dateColumn = 0;
             f.dates[2] = QStringLiteral("Jan 1, 2024");
             f.dates[3] = QStringLiteral("2024-02-29");
         },
         "scheduleName LIKE '*GST*' AND DueDate >= #1/1/2024# AND DueDate <= #2/29/2024# AND "
         "hideInTasks = False",
         selected},
        {"NotifiedOnOrAfterReadsItsOwnBox",
         [](TaskSearchForm& f) {
             f.dateColumn = 1;
             f.dateOption = 0;
             f.dates[0] = QStringLiteral("February 1, 2024");
             f.dates[2] = QStringLiteral("not read");
         },
         "NotifiedDate>=#2/1/2024# AND hideInTasks = False", selected},
        {"ClientTypeAndEmployee",
         [](TaskSearchForm& f) {
             f.searchByClient = true;
             f.companyID = 10;
             f.searchByType = true;
             f.taskType = 10310;
             f.searchByEmployee = true;
             f.employee = QStringLiteral("Eli Moss");
         },
         "ClientDataID = 100 AND totalNum = 103 AND scheduleNum = 10 AND EmployeeAssigned = 'Eli "
         "Moss' AND hideInTasks = False",
         selected},
        {"StatusAndUnclosed",
         [](TaskSearchForm& f) {
             f.status[4] = true; // Received
             f.statusValue[4] = true;
             f.searchByClosed = true;
             f.onlyClosed = false;
         },
         "Recieved = True AND Closed = False AND hideInTasks = False", selected},
        {"NothingFound",
         [](TaskSearchForm& f) {
             f.searchByName = true;
             f.taskName = QStringLiteral("Audit");
         },
         "scheduleName LIKE '*Audit*' AND hideInTasks = False", none},
    };
    for (const auto& c : cases) {
        clsSearchTasks search;
        TaskSearchForm form = freshForm();
        c.change(form);
        m_msgbox.clear();
        EXPECT_FALSE(form.save(search, m_msgbox).has_value()) << c.name;
        EXPECT_EQ(search.SQLFilter, QLatin1String(c.filter)) << c.name;
        EXPECT_EQ(m_msgbox.texts(), QStringList{QLatin1String(c.message)}) << c.name;
    }
}

TEST_F(TaskSearchFormTest, ADialogOpenedAgainShowsAndKeepsTheLastSearch) {
    clsSearchTasks search;
    ASSERT_EQ(search.setCriteria(QStringLiteral(
                  "searchArchives=1;searchByTaskName=1;taskName=Payroll;searchByTaskType=1;"
                  "taskType=11105;searchByClient=1;companyID=11;searchInHouseDueDate=1;"
                  "dateMatch=2;firstDate=2024-01-25;searchCheque=1;cheque=0;searchClosed=1;"
                  "closed=1;searchByEmployee=1;employeeAssigned=Dana Fox")),
              QString());
    const TaskSearchForm shown = TaskSearchForm::fromCriteria(search);
    EXPECT_EQ(shown.dateColumn, 2);
    EXPECT_EQ(shown.dateOption, 1);
    EXPECT_EQ(shown.dates[1], QStringLiteral("January 25, 2024"));
    EXPECT_EQ(shown.taskType, 11105);
    EXPECT_EQ(shown.companyID, 11);

    clsSearchTasks saved = search;
    ASSERT_FALSE(shown.save(saved, m_msgbox).has_value());
    EXPECT_EQ(saved.criteriaText(), search.criteriaText());
    EXPECT_EQ(TaskSearchForm::initialCaption(true), QStringLiteral("Advanced Archive Search"));
    EXPECT_EQ(TaskSearchForm::archiveCaption(false), QStringLiteral("Advanced Search"));
}

TEST_F(TaskSearchFormTest, EmployeesIncludeNamesThatStandOnlyOnTasks) {
    QStandardItemModel list;
    list.appendRow(new QStandardItem(QStringLiteral("stale")));
    TaskSearchForm::populateEmployeeAssigned(list);
    QStringList names;
    for (int row = 0; row < list.rowCount(); ++row) {
        names << list.item(row)->text();
    }
    EXPECT_EQ(names, (QStringList{"Dana Fox", "Eli Moss", "None Assigned", "O'Neil"}));
}

TEST(TaskSearchCriteriaText, EveryFieldRoundTripsThroughText) {
    clsSearchTasks search;
    search.searchByTaskName = true;
    search.taskName = QStringLiteral(R"(a;b\c=d)");
    search.taskType = -3;
    search.companyID = 123456;
    search.firstDate = QDate(2023, 12, 31);
    search.recieved = true;
    search.SQLSort = QStringLiteral("ORDER BY Schedule.DueDate;");
    clsSearchTasks copy;
    copy.resetSearchCriteria();
    copy.firstDate = QDate(2000, 1, 1);
    ASSERT_EQ(copy.setCriteria(search.criteriaText()), QString());
    EXPECT_EQ(copy.taskName, search.taskName);
    EXPECT_EQ(copy.taskType, -3);
    EXPECT_EQ(copy.companyID, 123456);
    EXPECT_EQ(copy.firstDate, search.firstDate);
    EXPECT_TRUE(copy.recieved);
    EXPECT_EQ(copy.SQLSort, search.SQLSort);
    EXPECT_EQ(copy.criteriaText(), search.criteriaText());
}

} // namespace
