#include "search/clsSearchTasks.h"

#include "data/ClientDbFixture.h"
#include "platform/errorClass.h"

#include <functional>

namespace {

class SearchTasksTest : public ClientDbFixture {
protected:
    void SetUp() override {
        ClientDbFixture::SetUp();
        m_context->clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
        loadFixture(QStringLiteral("../search/practice"));
    }
};

TEST_F(SearchTasksTest, CriteriaGiveTheFilterTextAndItsCount) {
    // Visible, unhidden tasks of the fixture: 300, 301, 302, 303, 306, 307.
    const struct {
        const char* name;
        const char* criteria; // fields by name, on top of the defaults
        const char* filter;
        int count;
    } cases[] = {
        {"NoCriteria", "", "hideInTasks = False", 6},
        {"TaskName", "searchByTaskName=1;taskName=GST",
         "scheduleName LIKE '*GST*' AND hideInTasks = False", 2},
        {"BlankTaskNameIsLeftOut", "searchByTaskName=1;taskName=   ", "hideInTasks = False", 6},
        {"NameWithoutItsFlag", "taskName=GST", "hideInTasks = False", 6},
        {"Client", "searchByClient=1;companyID=11", "ClientDataID = 101 AND hideInTasks = False",
         2},
        {"InvalidClientWidensTheSearch", "searchByClient=1;companyID=999", "hideInTasks = False",
         6},
        {"PayrollSubType10", "searchByTaskType=1;taskType=10310",
         "totalNum = 103 AND scheduleNum = 10 AND hideInTasks = False", 1},
        {"PayrollSubType20", "searchByTaskType=1;taskType=10320",
         "totalNum = 103 AND scheduleNum = 20 AND hideInTasks = False", 1},
        {"PayrollSubType30", "searchByTaskType=1;taskType=10330",
         "totalNum = 103 AND scheduleNum = 30 AND hideInTasks = False", 0},
        {"RL1HasNoRowOfItsOwn", "searchByTaskType=1;taskType=10340",
         "totalNum = 10340 AND hideInTasks = False", 1},
        {"PlainType", "searchByTaskType=1;taskType=101", "totalNum = 101 AND hideInTasks = False",
         2},
        {"CustomScheme5", "searchByTaskType=1;taskType=11105",
         "totalNum = 111 AND scheduleNum = 5 AND hideInTasks = False", 1},
        {"CustomScheme12", "searchByTaskType=1;taskType=11112",
         "totalNum = 111 AND scheduleNum = 12 AND hideInTasks = False", 0},
        {"TypeZeroIsLeftOut", "searchByTaskType=1;taskType=0", "hideInTasks = False", 6},
        {"DueDatesBetween",
         "searchDueDate=1;dateMatch=4;firstDate=2024-01-01;secondDate=2024-02-29",
         "DueDate >= #1/1/2024# AND DueDate <= #2/29/2024# AND hideInTasks = False", 3},
        {"NotifiedOnOrAfter", "searchNotifiedDate=1;dateMatch=1;firstDate=2024-02-01",
         "NotifiedDate>=#2/1/2024# AND hideInTasks = False", 2},
        {"InHouseOnOrBefore", "searchInHouseDueDate=1;dateMatch=2;firstDate=2024-01-25",
         "inHouseDueDate<=#1/25/2024# AND hideInTasks = False", 1},
        {"DueOnReadsOnlyTheFirstDate",
         "searchDueDate=1;dateMatch=3;firstDate=2024-03-31;secondDate=2030-01-01",
         "DueDate=#3/31/2024# AND hideInTasks = False", 1},
        {"DueDateWinsOverTheOtherColumns",
         "searchInHouseDueDate=1;searchNotifiedDate=1;searchDueDate=1;dateMatch=3;"
         "firstDate=2024-01-31",
         "DueDate=#1/31/2024# AND hideInTasks = False", 1},
        {"NotifiedWinsOverInHouse",
         "searchInHouseDueDate=1;searchNotifiedDate=1;dateMatch=3;firstDate=2024-01-10",
         "NotifiedDate=#1/10/2024# AND hideInTasks = False", 1},
        {"InPossession", "searchInPossession=1;inPossession=1",
         "InPossession = True AND hideInTasks = False", 1},
        {"ReceivedStoredAsMinusOne", "searchRecieved=1;recieved=1",
         "Recieved = True AND hideInTasks = False", 1},
        {"OnlyUnclosed", "searchClosed=1;closed=0", "Closed = False AND hideInTasks = False", 5},
        {"ValueWithoutItsFlag", "closed=1", "hideInTasks = False", 6},
        {"EveryStatusInItsOrder",
         "searchClosed=1;searchCheque=1;searchSignature=1;searchRecieved=1;searchDelivered=1;"
         "searchPrepared=1;searchNotified=1;searchInPossession=1;cheque=1",
         "InPossession = False AND Notified = False AND Prepared = False AND Delivered = False "
         "AND Recieved = False AND Signature = False AND Cheque = True AND Closed = False AND "
         "hideInTasks = False",
         0},
        {"Employee", "searchByEmployee=1;employeeAssigned=Dana Fox",
         "EmployeeAssigned = 'Dana Fox' AND hideInTasks = False", 2},
        {"EmployeeIsMatchedWhole", "searchByEmployee=1;employeeAssigned=Dana",
         "EmployeeAssigned = 'Dana' AND hideInTasks = False", 0},
        {"NameClientAndDueRange",
         "searchByTaskName=1;taskName=GST;searchByClient=1;companyID=10;searchDueDate=1;"
         "firstDate=2024-01-01;secondDate=2024-03-31",
         "scheduleName LIKE '*GST*' AND ClientDataID = 100 AND DueDate >= #1/1/2024# AND "
         "DueDate <= #3/31/2024# AND hideInTasks = False",
         1},
        {"ArchiveUsesTheSameFilter", "searchArchives=1;searchByClient=1;companyID=10",
         "ClientDataID = 100 AND hideInTasks = False", 1},
    };
    for (const auto& c : cases) {
        clsSearchTasks search;
        ASSERT_EQ(search.setCriteria(QString::fromUtf8(c.criteria)), QString()) << c.name;
        search.generateSQLFilter();
        EXPECT_EQ(search.SQLFilter, QString::fromLatin1(c.filter)) << c.name;
        EXPECT_EQ(search.taskFilterCount(), c.count) << c.name;
    }
}

TEST_F(SearchTasksTest, SelectTextFollowsArchiveAndSort) {
    const QString live =
        "SELECT ClientData.ClientDataID, ClientData.ShowThisClient, Companies.CompanyName, "
        "Companies.OfficeNumber, Companies.FaxNumber, Companies.Email, "
        "Companies.DefaultContactName, Companies.DefaultContactPhoneNumber, "
        "Companies.DefaultContactFaxNumber, Companies.DefaultContactEmail, Schedule.* FROM "
        "(ClientData INNER JOIN Companies ON ClientData.CompanyIDNum = Companies.CompanyID) "
        "INNER JOIN Schedule ON ClientData.ClientDataID = Schedule.ClientNum ";
    const struct {
        bool archives;
        const char* sort;
        QString sql;
    } cases[] = {
        {false, "", live + "WHERE ClientData.ShowThisClient = True;"},
        {false, "ORDER BY Schedule.DueDate;",
         live + "WHERE ClientData.ShowThisClient = True ORDER BY Schedule.DueDate;"},
        {true, "", "SELECT archiveSchedule.* FROM archiveSchedule;"},
        {true, " ", "SELECT archiveSchedule.* FROM archiveSchedule;"},
        {true, "ORDER BY archiveSchedule.DueDate;",
         "SELECT archiveSchedule.* FROM archiveSchedule ORDER BY archiveSchedule.DueDate;"},
    };
    for (const auto& c : cases) {
        clsSearchTasks search;
        search.searchArchives = c.archives;
        search.SQLSort = c.sort;
        EXPECT_EQ(search.generateSQLStr(), c.sql) << c.sort;
        // The SELECT runs, and the filter of no criteria keeps every visible row.
        search.generateSQLFilter();
        EXPECT_EQ(search.taskFilterCount(), c.archives ? 2 : 6) << c.sort;
    }
}

TEST_F(SearchTasksTest, ResetGivesTheDefaults) {
    clsSearchTasks search;
    ASSERT_TRUE(
        search
            .setCriteria("searchArchives=1;searchByTaskName=1;taskName=GST;searchByTaskType=1;"
                         "taskType=101;searchByClient=1;companyID=10;searchDueDate=1;"
                         "searchNotifiedDate=1;searchInHouseDueDate=1;firstDate=2020-01-01;"
                         "secondDate=2020-02-02;dateMatch=2;searchInPossession=1;inPossession=1;"
                         "searchNotified=1;notified=1;searchPrepared=1;prepared=1;"
                         "searchDelivered=1;delivered=1;searchRecieved=1;recieved=1;"
                         "searchSignature=1;signature=1;searchCheque=1;cheque=1;"
                         "searchClosed=1;closed=1;searchByEmployee=1;employeeAssigned=Eli Moss;"
                         "SQLSort=ORDER BY Schedule.DueDate;")
            .isEmpty());
    search.generateSQLFilter();
    ASSERT_FALSE(search.SQLFilter.isEmpty());
    search.resetSearchCriteria();

    const bool flags[] = {search.searchArchives,
                          search.searchByTaskName,
                          search.searchByTaskType,
                          search.searchByClient,
                          search.searchDueDate,
                          search.searchNotifiedDate,
                          search.searchInHouseDueDate,
                          search.searchInPossession,
                          search.inPossession,
                          search.searchNotified,
                          search.notified,
                          search.searchPrepared,
                          search.prepared,
                          search.searchDelivered,
                          search.delivered,
                          search.searchRecieved,
                          search.recieved,
                          search.searchSignature,
                          search.signature,
                          search.searchCheque,
                          search.cheque,
                          search.searchClosed,
                          search.closed,
                          search.searchByEmployee};
    for (size_t i = 0; i < std::size(flags); ++i) {
        EXPECT_FALSE(flags[i]) << "flag " << i;
    }
    EXPECT_EQ(search.taskName, "");
    EXPECT_EQ(search.employeeAssigned, "");
    EXPECT_EQ(search.taskType, 0);
    EXPECT_EQ(search.companyID, -1);
    EXPECT_EQ(search.firstDate, QDate(2024, 3, 5));
    EXPECT_EQ(search.secondDate, QDate(2024, 3, 5));
    EXPECT_EQ(search.dateMatch, 4);
    EXPECT_EQ(search.SQLFilter, "");
    EXPECT_EQ(search.SQLSort, "");
}

TEST_F(SearchTasksTest, CriteriaByNameRefuseWhatTheyCannotTake) {
    const struct {
        const char* text;
        const char* error; // part of the message; empty: accepted
    } cases[] = {
        {"taskName=GST;searchByTaskName=1;dateMatch=4", ""},
        {"taskName= GST ;;searchByTaskName=true", ""},
        {"employeeAssigned=A=B", ""},
        {"TaskName=GST", "Unknown search field \"TaskName\""},
        {"SQLFilter=x", "Unknown search field \"SQLFilter\""},
        {"searchByTaskName", "is not of the form field=value"},
        {"searchByTaskName=maybe", "searchByTaskName takes 1 or 0"},
        {"taskType=40000", "taskType takes a whole number from -32768 to 32767"},
        {"companyID=ten", "companyID takes a whole number"},
        {"firstDate=2024-02-30", "firstDate takes a date as YYYY-MM-DD"},
    };
    for (const auto& c : cases) {
        clsSearchTasks search;
        const QString error = search.setCriteria(QString::fromUtf8(c.text));
        if (*c.error == '\0') {
            EXPECT_TRUE(error.isEmpty()) << c.text << ": " << error.toStdString();
        } else {
            EXPECT_TRUE(error.contains(QString::fromUtf8(c.error)))
                << c.text << ": " << error.toStdString();
        }
    }
    clsSearchTasks search;
    ASSERT_TRUE(search
                    .setCriteria("taskName= GST ;searchByTaskName=-1;taskType=10310;"
                                 "employeeAssigned=A=B;firstDate=2024-01-02")
                    .isEmpty());
    EXPECT_EQ(search.taskName, " GST ");
    EXPECT_TRUE(search.searchByTaskName);
    EXPECT_EQ(search.taskType, 10310);
    EXPECT_EQ(search.employeeAssigned, "A=B");
    EXPECT_EQ(search.firstDate, QDate(2024, 1, 2));
}

TEST_F(SearchTasksTest, AnApostropheIsAnErrorAndNeverReachesAFilterOrStatement) {
    const char* const cases[] = {
        "searchByTaskName=1;taskName=O'Neil",
        // Would widen the filter to every task if it were pasted in.
        "searchByTaskName=1;taskName=GST*' OR scheduleName LIKE '*",
        "searchByEmployee=1;employeeAssigned=O'Neil",
    };
    for (const char* criteria : cases) {
        clsSearchTasks search;
        ASSERT_EQ(search.setCriteria(QString::fromUtf8(criteria)), QString());
        search.SQLFilter = "left from before";
        EXPECT_THROW(search.generateSQLFilter(), QmError) << criteria;
        EXPECT_EQ(search.SQLFilter, "") << criteria;
        EXPECT_FALSE(search.generateSQLStr().contains(u'\'')) << criteria;
    }
    // Without its flag the text is not used, so it does no harm.
    clsSearchTasks unused;
    unused.taskName = "O'Neil";
    unused.generateSQLFilter();
    EXPECT_EQ(unused.SQLFilter, "hideInTasks = False");
}

TEST_F(SearchTasksTest, BrokenFiltersAndDatabasesFailThroughTheHandler) {
    const struct {
        const char* name;
        std::function<void(clsSearchTasks&)> criteria;
        const char* filter;
    } cases[] = {
        {"DateMatchOutOfRangeLeavesABareJoin",
         [](clsSearchTasks& s) {
             s.searchDueDate = true;
             s.dateMatch = 7;
         },
         " AND hideInTasks = False"},
        {"BareJoinAfterAClause",
         [](clsSearchTasks& s) {
             s.searchByTaskName = true;
             s.taskName = "GST";
             s.searchDueDate = true;
             s.dateMatch = 0;
         },
         "scheduleName LIKE '*GST*' AND  AND hideInTasks = False"},
        {"NoDate",
         [](clsSearchTasks& s) {
             s.searchDueDate = true;
             s.dateMatch = 3;
             s.firstDate = QDate();
         },
         "DueDate=## AND hideInTasks = False"},
        {"YearBeyondFourDigits",
         [](clsSearchTasks& s) {
             s.searchDueDate = true;
             s.dateMatch = 1;
             s.firstDate = QDate(12024, 1, 1);
         },
         "DueDate>=#1/1/12024# AND hideInTasks = False"},
    };
    for (const auto& c : cases) {
        clsSearchTasks search;
        c.criteria(search);
        search.generateSQLFilter();
        EXPECT_EQ(search.SQLFilter, QString::fromLatin1(c.filter)) << c.name;
        EXPECT_THROW(search.taskFilterCount(), QmError) << c.name;
        EXPECT_EQ(m_db->openRecordsetCount(), 0) << c.name;
    }

    hostExec("DROP TABLE Schedule");
    clsSearchTasks live;
    live.generateSQLFilter();
    EXPECT_THROW(live.taskFilterCount(), QmError);
    EXPECT_EQ(m_db->openRecordsetCount(), 0);

    // Without a connection the count is -1, without a word.
    m_context->database = nullptr;
    EXPECT_EQ(live.taskFilterCount(), -1);
}

TEST_F(SearchTasksTest, AnArchiveWithoutTheFilterColumnsFails) {
    // The filter text does not depend on the archive flag, so the archive
    // table must have the live table's columns.
    hostExec("DROP TABLE archiveSchedule");
    hostExec("CREATE TABLE archiveSchedule (archiveScheduleID INTEGER PRIMARY KEY, "
             "scheduleName TEXT)");
    hostExec("INSERT INTO archiveSchedule VALUES (1, 'GST Return 2021')");
    // The program meets the narrow table when it connects.
    m_db->disconnect();
    m_db->connect();
    clsSearchTasks archive;
    archive.searchArchives = true;
    archive.generateSQLFilter();
    EXPECT_THROW(archive.taskFilterCount(), QmError);
    EXPECT_EQ(m_db->openRecordsetCount(), 0);
}

TEST_F(SearchTasksTest, HostileSortTextIsRefusedAndKeepsTheLastGoodSort) {
    const char* const hostile[] = {
        "ORDER BY Schedule.DueDate UNION SELECT ClientData.ClientDataID FROM ClientData",
        "ORDER BY Schedule.DueDate; DELETE FROM Schedule;",
        "ORDER BY Schedule.DueDate -- hidden",
        "OR ClientData.ShowThisClient = False",
        "ORDER BY (SELECT 1)",
        "ORDER BY 'x'",
        "ORDER BY Schedule.DueDate, ",
        "ORDER BY Secret.Column",
        "UNION SELECT * FROM Companies",
    };
    for (const char* sort : hostile) {
        clsSearchTasks search;
        ASSERT_EQ(search.setCriteria("SQLSort=ORDER BY Schedule.DueDate DESC"), QString());
        // A ";" ends the item in the criteria text, so those go in directly.
        if (!QString::fromUtf8(sort).contains(u';')) {
            const QString error = search.setCriteria(QStringLiteral("SQLSort=") + sort);
            EXPECT_TRUE(error.contains(QString::fromUtf8(sort))) << error.toStdString();
            EXPECT_EQ(search.SQLSort, "ORDER BY Schedule.DueDate DESC") << sort;
        }
        // Set directly, as the dialog does: the SELECT refuses to form.
        search.SQLSort = QString::fromUtf8(sort);
        search.generateSQLFilter();
        EXPECT_THROW(search.generateSQLStr(), QmError) << sort;
        EXPECT_THROW(search.taskFilterCount(), QmError) << sort;
        EXPECT_EQ(m_db->openRecordsetCount(), 0) << sort;
    }
    const char* const sorts[] = {
        "ORDER BY Schedule.DueDate",
        "order by Companies.CompanyName desc, DueDate asc;",
        "  ORDER  BY  ClientData.ClientDataID ;  ",
    };
    for (const char* sort : sorts) {
        clsSearchTasks search;
        ASSERT_EQ(search.setCriteria(QStringLiteral("SQLSort=") + sort), QString()) << sort;
        search.generateSQLFilter();
        EXPECT_EQ(search.taskFilterCount(), 6) << sort;
    }
}

TEST_F(SearchTasksTest, WildcardsTypedInTheTaskNameAreMatchedLiterally) {
    // Before, "*" and "?" widened the name search to every task.
    const struct {
        const char* name;
        int count;
    } cases[] = {{"*", 0}, {"?", 0}, {"%", 0}, {"G?T", 0}, {"GST", 2}, {"[G]ST", 0}};
    for (const auto& c : cases) {
        clsSearchTasks search;
        search.searchByTaskName = true;
        search.taskName = QString::fromUtf8(c.name);
        search.generateSQLFilter();
        EXPECT_EQ(search.taskFilterCount(), c.count) << c.name;
    }
    hostExec("UPDATE Schedule SET scheduleName = 'GST * 50% [final]' WHERE ScheduleID = 300");
    for (const char* name : {"*", "50%", "[final]", "T * 5"}) {
        clsSearchTasks search;
        search.searchByTaskName = true;
        search.taskName = QString::fromUtf8(name);
        search.generateSQLFilter();
        EXPECT_EQ(search.taskFilterCount(), 1) << name;
    }
}

} // namespace
