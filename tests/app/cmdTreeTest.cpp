#include "CommandRun.h"
#include "app/Commands.h"
#include "data/ClientDatabaseSchema.h"
#include "support/TestEnvironment.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <gtest/gtest.h>

namespace {

CommandRun run(const QStringList& args) {
    return runCommand(runTreeCommand, args);
}

class TreeCommandTest : public ::testing::Test {
protected:
    void SetUp() override {
        database = env.path("Data.qmd");
        const QString connection = QStringLiteral("tree_command_fixture");
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
            db.setDatabaseName(database);
            ASSERT_TRUE(db.open());
            ClientDatabaseSchema::create(db);
            const QString text = QString::fromUtf8(readTestFile(testDataPath("tree/ledger.sql")));
            QSqlQuery query(db);
            for (const QString& line : text.split(u'\n')) {
                if (line.startsWith(QStringLiteral("INSERT"))) {
                    ASSERT_TRUE(query.exec(line)) << query.lastError().text().toStdString();
                }
            }
            db.close();
        }
        QSqlDatabase::removeDatabase(connection);
    }

    TestEnvironment env;
    QString database;
};

TEST_F(TreeCommandTest, PrintsTheTreeOfEachModeAsTheGoldenFile) {
    const struct {
        const char* mode;
        const char* golden;
    } cases[] = {
        {"all", "tree/ledger-all.txt"},
        {"contacts", "tree/ledger-all.txt"},
        {"companies", "tree/ledger-companies.txt"},
        {"company-contacts", "tree/ledger-company-contacts.txt"},
        {"personal", "tree/ledger-personal.txt"},
        {"firm", "tree/ledger-firm.txt"},
        {"categories", "tree/ledger-categories.txt"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.mode);
        const CommandRun r = run({"--database", database, "--mode", c.mode});
        EXPECT_EQ(r.status, 0);
        EXPECT_EQ(r.err, QString());
        EXPECT_EQ(r.out.toUtf8(), readTestFile(testDataPath(c.golden)));
    }
    EXPECT_EQ(run({"--database", database}).out,
              run({"--database", database, "--mode", "all"}).out);
}

TEST_F(TreeCommandTest, RefusesWhatItCannotOpen) {
    writeTestFile(env.path("text.qmd"), "not a database at all");
    const struct {
        const char* name;
        QStringList args;
    } cases[] = {
        {"NoDatabase", {}},
        {"MissingFile", {"--database", env.path("missing.qmd")}},
        {"NotADatabase", {"--database", env.path("text.qmd")}},
        {"UnknownMode", {"--database", database, "--mode", "everything"}},
        {"StrayArgument", {"--database", database, "extra"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const CommandRun r = run(c.args);
        EXPECT_NE(r.status, 0);
        EXPECT_FALSE(r.err.isEmpty());
        EXPECT_TRUE(r.out.isEmpty());
    }
}

} // namespace
