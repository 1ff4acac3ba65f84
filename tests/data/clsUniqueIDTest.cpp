#include "data/clsUniqueID.h"

#include "context/AppContext.h"
#include "support/TestEnvironment.h"
#include "support/WriteBlockedFolder.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>
#include <gtest/gtest.h>
#include <vector>

namespace {

struct Fixture {
    TestEnvironment env;
    ScopedAppContext context;
    QString path = env.path(QStringLiteral("work/Qmlocalf5.lmd"));

    Fixture() { context->clock.setFixed(QDateTime(QDate(2024, 3, 15), QTime(9, 0))); }
};

// Direct access to the file, beside the class under test.
class Peek {
public:
    explicit Peek(const QString& path) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
        db.setDatabaseName(path);
        db.open();
    }
    ~Peek() {
        {
            QSqlDatabase db = QSqlDatabase::database(m_name, false);
            db.close();
        }
        QSqlDatabase::removeDatabase(m_name);
    }
    Peek(const Peek&) = delete;
    Peek& operator=(const Peek&) = delete;

    void exec(const QString& sql) {
        QSqlQuery query(QSqlDatabase::database(m_name, false));
        ASSERT_TRUE(query.exec(sql)) << sql.toStdString();
    }
    // Every row as "uniqueID|InstallDate", NULL as "(null)".
    QStringList rows() {
        QSqlQuery query(QSqlDatabase::database(m_name, false));
        QStringList result;
        if (!query.exec(
                QStringLiteral("SELECT uniqueID, InstallDate FROM UniqueID ORDER BY rowid"))) {
            return {QStringLiteral("(no table)")};
        }
        while (query.next()) {
            auto text = [&](int i) {
                return query.value(i).isNull() ? QStringLiteral("(null)")
                                               : query.value(i).toString();
            };
            result << text(0) + QLatin1Char('|') + text(1);
        }
        return result;
    }

private:
    QString m_name = QStringLiteral("peek");
};

bool isAlphanumeric(const QString& id) {
    for (QChar c : id) {
        if (!((c >= QLatin1Char('0') && c <= QLatin1Char('9')) ||
              (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) ||
              (c >= QLatin1Char('a') && c <= QLatin1Char('z')))) {
            return false;
        }
    }
    return true;
}

} // namespace

TEST(clsUniqueIDTest, FirstUseCreatesTheFileWithOneDatedIdentifierThatStays) {
    Fixture f;
    QString first;
    {
        clsUniqueID unique;
        unique.setDatabaseLocation(f.path);
        EXPECT_FALSE(unique.isVerifiedExisting());
        EXPECT_TRUE(unique.doesTableExist());
        first = unique.getUniqueID();
    }
    EXPECT_EQ(first.size(), 12);
    EXPECT_TRUE(isAlphanumeric(first)) << first.toStdString();
    EXPECT_FALSE(QFileInfo::exists(f.path + ".tmp"));
    {
        Peek peek(f.path);
        EXPECT_EQ(peek.rows(), QStringList{first + "|2024-03-15"});
    }

    f.context->clock.setFixed(QDateTime(QDate(2025, 1, 2), QTime(9, 0)));
    clsUniqueID again;
    again.setDatabaseLocation(f.path);
    EXPECT_TRUE(again.isVerifiedExisting());
    EXPECT_EQ(again.getUniqueID(), first);
    Peek peek(f.path);
    EXPECT_EQ(peek.rows(), QStringList{first + "|2024-03-15"});
}

TEST(clsUniqueIDTest, StoredValuesAreRepairedOrKept) {
    struct Case {
        const char* name;
        QString setup;   // SQL run on a fresh file before the class opens it
        bool expectKept; // the stored identifier survives
    };
    const Case cases[] = {
        {"a valid identifier is kept", "INSERT INTO UniqueID VALUES ('abcdefABCDEF', '2020-01-01')",
         true},
        {"eleven characters are replaced",
         "INSERT INTO UniqueID VALUES ('abcdefABCDE', '2020-01-01')", false},
        {"thirteen characters are replaced",
         "INSERT INTO UniqueID VALUES ('abcdefABCDEFG', '2020-01-01')", false},
        {"a null identifier is replaced", "INSERT INTO UniqueID VALUES (NULL, '2020-01-01')",
         false},
        {"an empty identifier is replaced", "INSERT INTO UniqueID VALUES ('', NULL)", false},
        {"an empty table gets a row", "", false},
    };
    for (const auto& c : cases) {
        Fixture f;
        {
            Peek peek(f.path);
            peek.exec("CREATE TABLE UniqueID (uniqueID TEXT NULL, InstallDate TEXT NULL)");
            if (!c.setup.isEmpty()) {
                peek.exec(c.setup);
            }
        }
        clsUniqueID unique;
        unique.setDatabaseLocation(f.path);
        EXPECT_TRUE(unique.isVerifiedExisting()) << c.name;
        const QString id = unique.getUniqueID();
        EXPECT_EQ(id.size(), 12) << c.name;
        Peek peek(f.path);
        const QString expected = c.expectKept ? QStringLiteral("abcdefABCDEF|2020-01-01")
                                              : id + QStringLiteral("|2024-03-15");
        EXPECT_EQ(peek.rows(), QStringList{expected}) << c.name;
        if (c.expectKept) {
            EXPECT_EQ(id, "abcdefABCDEF") << c.name;
        }
    }
}

TEST(clsUniqueIDTest, DamagedFilesAreMadeAnew) {
    struct Case {
        const char* name;
        QByteArray content; // written as the file, or empty for SQL below
        QString sql;        // run on a real database instead
    };
    const Case cases[] = {
        {"plain text", "this is not a database\n", ""},
        {"a damaged header", QByteArray("SQLite format 3") + QByteArray(200, '\xff'), ""},
        {"a database without the table", "", "CREATE TABLE Other (x INTEGER)"},
        {"a table without the columns", "", "CREATE TABLE UniqueID (something INTEGER)"},
    };
    for (const auto& c : cases) {
        Fixture f;
        if (!c.content.isEmpty()) {
            writeTestFile(f.path, c.content);
        } else {
            Peek peek(f.path);
            peek.exec(c.sql);
        }
        clsUniqueID unique;
        unique.setDatabaseLocation(f.path);
        EXPECT_TRUE(unique.doesTableExist()) << c.name;
        const QString id = unique.getUniqueID();
        EXPECT_EQ(id.size(), 12) << c.name;
        EXPECT_TRUE(isAlphanumeric(id)) << c.name;
        Peek peek(f.path);
        EXPECT_EQ(peek.rows(), QStringList{id + "|2024-03-15"}) << c.name;
    }
}

TEST(clsUniqueIDTest, AnUnusableFolderStillYieldsAnIdentifier) {
    Fixture f;
    clsUniqueID unique;
    // A folder that cannot exist, since its parent is a file.
    writeTestFile(f.env.path("blocker"), "file");
    unique.setDatabaseLocation(f.env.path("blocker") + "/Qmlocalf5.lmd");
    EXPECT_FALSE(unique.isOpen());
    const QString id = unique.getUniqueID();
    EXPECT_EQ(id.size(), 12);
    EXPECT_TRUE(isAlphanumeric(id));
}

TEST(clsUniqueIDTest, AReadOnlyFolderKeepsItsFile) {
    Fixture f;
    {
        Peek peek(f.path);
        peek.exec("CREATE TABLE UniqueID (uniqueID TEXT NULL, InstallDate TEXT NULL)");
        peek.exec("INSERT INTO UniqueID VALUES ('short', '2020-01-01')");
    }
    const QString folder = QFileInfo(f.path).absolutePath();
    QString id;
    {
        WriteBlockedFolder guard(folder, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
        if (!guard.blocked()) {
            GTEST_SKIP() << guard.whyNot().toStdString();
        }
        clsUniqueID unique;
        unique.setDatabaseLocation(f.path);
        id = unique.getUniqueID();
    }
    // An identifier it cannot keep, and the file as it was.
    EXPECT_EQ(id.size(), 12);
    Peek peek(f.path);
    EXPECT_EQ(peek.rows(), QStringList{"short|2020-01-01"});
}

TEST(clsUniqueIDTest, DrawsMapOntoTheSixtyTwoCharacters) {
    QSet<QChar> seen;
    for (int n = 1; n <= 62; ++n) {
        seen.insert(clsUniqueID::characterForDraw(n));
    }
    EXPECT_EQ(seen.size(), 62);
    EXPECT_EQ(clsUniqueID::characterForDraw(1), QLatin1Char('0'));
    EXPECT_EQ(clsUniqueID::characterForDraw(10), QLatin1Char('9'));
    EXPECT_EQ(clsUniqueID::characterForDraw(11), QLatin1Char('A'));
    EXPECT_EQ(clsUniqueID::characterForDraw(36), QLatin1Char('Z'));
    EXPECT_EQ(clsUniqueID::characterForDraw(37), QLatin1Char('a'));
    EXPECT_EQ(clsUniqueID::characterForDraw(62), QLatin1Char('z'));
    EXPECT_TRUE(clsUniqueID::characterForDraw(0).isNull());
    EXPECT_TRUE(clsUniqueID::characterForDraw(63).isNull());
}

TEST(clsUniqueIDTest, OutOfRangeDrawsRepeatThePositionAndEndlessOnesFallBack) {
    struct Case {
        const char* name;
        std::vector<double> draws; // cycled
        QString expected;
    };
    const Case cases[] = {
        {"lowest and highest draws", {0.0, 0.999999}, "0z0z0z0z0z0z"},
        {"a draw of 1 (n = 63) is drawn again", {1.0, 0.5}, "VVVVVVVVVVVV"},
        {"negative and not-a-number draws are drawn again",
         {-0.5, std::nan(""), 0.17},
         "AAAAAAAAAAAA"},
        {"a source that never fits gives the fixed identifier", {1.0}, "Q7kTzR2wLp4X"},
    };
    for (const auto& c : cases) {
        clsUniqueID unique;
        std::size_t next = 0;
        unique.setRandomSource([&] { return c.draws[next++ % c.draws.size()]; });
        EXPECT_EQ(unique.createUniqueID(), c.expected) << c.name;
    }
}

TEST(clsUniqueIDTest, TheDefaultGeneratorReachesBothEndsOfTheAlphabet) {
    clsUniqueID unique;
    QSet<QChar> seen;
    // 24,000 draws: missing one given character has odds below 1e-160.
    for (int i = 0; i < 2000; ++i) {
        const QString id = unique.createUniqueID();
        ASSERT_TRUE(isAlphanumeric(id));
        for (QChar c : id) {
            seen.insert(c);
        }
    }
    EXPECT_TRUE(seen.contains(QLatin1Char('0')));
    EXPECT_TRUE(seen.contains(QLatin1Char('z')));
    EXPECT_EQ(seen.size(), 62);
}
