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

struct FilterCase {
    const char* name;
    std::function<void(clsSearchTasks&)> criteria;
    const char* filter;
    int count;
};

TEST_F(SearchTasksTest, CriteriaGiveTheFilterTextAndItsCount) {
    // Visible, unhidden tasks of the fixture: 300, 301, 302, 303, 306, 307.
    const FilterCase cases[] = {
        {"NoCriteria", [](clsSearchTasks&) {}, "hideInTasks = False", 6},
        {"TaskName",
         [](clsSearchTasks& s) {
             s.searchByTaskName = true;
             s.taskName = "GST";
         },
         "scheduleName LIKE '*GST*' AND hideInTasks = False", 2},
        {"BlankTaskNameIsLeftOut",
         [](clsSearchTasks& s) {
             s.searchByTaskName = true;
             s.taskName = "   ";
         },
         "hideInTasks = False", 6},
        {"NameWithoutItsFlag", [](clsSearchTasks& s) { s.taskName = "GST"; }, "hideInTasks = False",
         6},
        {"Client",
         [](clsSearchTasks& s) {
             s.searchByClient = true;
             s.companyID = 11;
         },
         "ClientDataID = 101 AND hideInTasks = False", 2},
        {"InvalidClientWidensTheSearch",
         [](clsSearchTasks& s) {
             s.searchByClient = true;
             s.companyID = 999;
         },
         "hideInTasks = False", 6},
        {"PayrollSubType10",
         [](clsSearchTasks& s) {
             s.searchByTaskType = true;
             s.taskType = 10310;
         },
         "totalNum = 103 AND scheduleNum = 10 AND hideInTasks = False", 1},
        {"PayrollSubType20",
         [](clsSearchTasks& s) {
             s.searchByTaskType = true;
             s.taskType = 10320;
         },
         "totalNum = 103 AND scheduleNum = 20 AND hideInTasks = False", 1},
        {"PayrollSubType30",
         [](clsSearchTasks& s) {
             s.searchByTaskType = true;
             s.taskType = 10330;
         },
         "totalNum = 103 AND scheduleNum = 30 AND hideInTasks = False", 0},
        {"RL1HasNoRowOfItsOwn",
         [](clsSearchTasks& s) {
             s.searchByTaskType = true;
             s.taskType = 10340;
         },
         "totalNum = 10340 AND hideInTasks = False", 1},
        {"PlainType",
         [](clsSearchTasks& s) {
             s.searchByTaskType = true;
             s.taskType = 101;
         },
         "totalNum = 101 AND hideInTasks = False", 2},
        {"CustomScheme5",
         [](clsSearchTasks& s) {
             s.searchByTaskType = true;
             s.taskType = 11105;
         },
         "totalNum = 111 AND scheduleNum = 5 AND hideInTasks = False", 1},
        {"CustomScheme12",
         [](clsSearchTasks& s) {
             s.searchByTaskType = true;
             s.taskType = 11112;
         },
         "totalNum = 111 AND scheduleNum = 12 AND hideInTasks = False", 0},
        {"TypeZeroIsLeftOut",
         [](clsSearchTasks& s) {
             s.searchByTaskType = true;
             s.taskType = 0;
         },
         "hideInTasks = False", 6},
        {"DueDatesBetween",
         [](clsSearchTasks& s) {
             s.searchDueDate = true;
             s.dateMatch = 4;
             s.firstDate = QDate(2024, 1, 1);
             s.secondDate = QDate(2024, 2, 29);
         },
         "DueDate >= #1/1/2024# AND DueDate <= #2/29/2024# AND hideInTasks = False", 3},
        {"NotifiedOnOrAfter",
         [](clsSearchTasks& s) {
             s.searchNotifiedDate = true;
             s.dateMatch = 1;
             s.firstDate = QDate(2024, 2, 1);
         },
         "NotifiedDate>=#2/1/2024# AND hideInTasks = False", 2},
        {"InHouseOnOrBefore",
         [](clsSearchTasks& s) {
             s.searchInHouseDueDate = true;
             s.dateMatch = 2;
             s.firstDate = QDate(2024, 1, 25);
         },
         "inHouseDueDate<=#1/25/2024# AND hideInTasks = False", 1},
        {"DueOn",
         [](clsSearchTasks& s) {
             s.searchDueDate = true;
             s.dateMatch = 3;
             s.firstDate = QDate(2024, 3, 31);
             s.secondDate = QDate(2030, 1, 1);
         },
         "DueDate=#3/31/2024# AND hideInTasks = False", 1},
        {"DueDateWinsOverTheOtherColumns",
         [](clsSearchTasks& s) {
             s.searchInHouseDueDate = true;
             s.searchNotifiedDate = true;
             s.searchDueDate = true;
             s.dateMatch = 3;
             s.firstDate = QDate(2024, 1, 31);
         },
         "DueDate=#1/31/2024# AND hideInTasks = False", 1},
        {"NotifiedWinsOverInHouse",
         [](clsSearchTasks& s) {
             s.searchInHouseDueDate = true;
             s.searchNotifiedDate = true;
             s.dateMatch = 3;
             s.firstDate = QDate(2024, 1, 10);
         },
         "NotifiedDate=#1/10/2024# AND hideInTasks = False", 1},
        {"InPossession",
         [](clsSearchTasks& s) {
             s.searchInPossession = true;
             s.inPossession = true;
         },
         "InPossession = True AND hideInTasks = False", 1},
        {"ReceivedStoredAsMinusOne",
         [](clsSearchTasks& s) {
             s.searchRecieved = true;
             s.recieved = true;
         },
         "Recieved = True AND hideInTasks = False", 1},
        {"OnlyUnclosed",
         [](clsSearchTasks& s) {
             s.searchClosed = true;
             s.closed = false;
         },
         "Closed = False AND hideInTasks = False", 5},
        {"ValueWithoutItsFlag", [](clsSearchTasks& s) { s.closed = true; }, "hideInTasks = False",
         6},
        {"EveryStatusInItsOrder",
         [](clsSearchTasks& s) {
             s.searchClosed = s.searchCheque = s.searchSignature = s.searchRecieved = true;
             s.searchDelivered = s.searchPrepared = s.searchNotified = true;
             s.searchInPossession = true;
             s.cheque = true;
         },
         "InPossession = False AND Notified = False AND Prepared = False AND Delivered = False "
         "AND Recieved = False AND Signature = False AND Cheque = True AND Closed = False AND "
         "hideInTasks = False",
         0},
        {"Employee",
         [](clsSearchTasks& s) {
             s.searchByEmployee = true;
             s.employeeAssigned = "Dana Fox";
         },
         "EmployeeAssigned = 'Dana Fox' AND hideInTasks = False", 2},
        {"EmployeeIsMatchedWhole",
         [](clsSearchTasks& s) {
             s.searchByEmployee = true;
             s.employeeAssigned = "Dana";
         },
         "EmployeeAssigned = 'Dana' AND hideInTasks = False", 0},
        {"NameClientAndDueRange",
         [](clsSearchTasks& s) {
             s.searchByTaskName = true;
             s.taskName = "GST";
             s.searchByClient = true;
             s.companyID = 10;
             s.searchDueDate = true;
             s.firstDate = QDate(2024, 1, 1);
             s.secondDate = QDate(2024, 3, 31);
         },
         "scheduleName LIKE '*GST*' AND ClientDataID = 100 AND DueDate >= #1/1/2024# AND "
         "DueDate <= #3/31/2024# AND hideInTasks = False",
         1},
        {"ArchiveUsesTheSameFilter",
         [](clsSearchTasks& s) {
             s.searchArchives = true;
             s.searchByClient = true;
             s.companyID = 10;
         },
         "ClientDataID = 100 AND hideInTasks = False", 1},
    };
    for (const FilterCase& c : cases) {
        clsSearchTasks search;
        c.criteria(search);
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
    const struct {
        const char* name;
        std::function<void(clsSearchTasks&)> criteria;
    } cases[] = {
        {"TaskName",
         [](clsSearchTasks& s) {
             s.searchByTaskName = true;
             s.taskName = "O'Neil";
         }},
        {"WideningAttempt",
         [](clsSearchTasks& s) {
             s.searchByTaskName = true;
             s.taskName = "GST*' OR scheduleName LIKE '*";
         }},
        {"Employee",
         [](clsSearchTasks& s) {
             s.searchByEmployee = true;
             s.employeeAssigned = "O'Neil";
         }},
    };
    for (const auto& c : cases) {
        clsSearchTasks search;
        c.criteria(search);
        search.SQLFilter = "left from before";
        EXPECT_THROW(search.generateSQLFilter(), QmError) << c.name;
        EXPECT_EQ(search.SQLFilter, "") << c.name;
        EXPECT_FALSE(search.generateSQLStr().contains(u'\'')) << c.name;
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

} // namespace
