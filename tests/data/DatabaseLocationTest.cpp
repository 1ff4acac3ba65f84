#include "data/DatabaseLocation.h"

#include <gtest/gtest.h>

namespace {

std::optional<DatabaseLocation> parse(const char* text, QString* error = nullptr) {
    QString ignored;
    return DatabaseLocation::parse(QString::fromUtf8(text), error ? error : &ignored);
}

} // namespace

TEST(DatabaseLocationTest, PathsStayPaths) {
    for (const char* path : {"/home/practice/Data/Data.qmd", "Data.qmd", "C:/Data/Data.qmd"}) {
        SCOPED_TRACE(path);
        const auto location = parse(path);
        ASSERT_TRUE(location);
        EXPECT_FALSE(location->isServer());
        EXPECT_EQ(location->path, QString::fromUtf8(path));
        EXPECT_EQ(location->driverName(), QStringLiteral("QSQLITE"));
    }
}

TEST(DatabaseLocationTest, ServerUriGivesItsParts) {
    const auto location = parse(
        "postgresql://clerk@db.practice.lan:5433/practice?sslmode=require&application_name=pad");
    ASSERT_TRUE(location);
    EXPECT_TRUE(location->isServer());
    EXPECT_EQ(location->host, QStringLiteral("db.practice.lan"));
    EXPECT_EQ(location->port, 5433);
    EXPECT_EQ(location->user, QStringLiteral("clerk"));
    EXPECT_EQ(location->database, QStringLiteral("practice"));
    EXPECT_EQ(location->options, (QStringList{QStringLiteral("sslmode=require"),
                                              QStringLiteral("application_name=pad")}));
    // Shown back as it was given.
    EXPECT_EQ(parse(location->display().toUtf8().constData())->options, location->options);

    // A socket folder as the host, and the short scheme.
    const auto local = parse("postgres:///practice?host=/run/postgresql");
    ASSERT_TRUE(local);
    EXPECT_EQ(local->host, QStringLiteral("/run/postgresql"));
    EXPECT_EQ(local->port, -1);
    EXPECT_TRUE(local->display().contains(QStringLiteral("host=/run/postgresql")));
}

TEST(DatabaseLocationTest, BadUrisAreRefusedWithTheReason) {
    struct Bad {
        const char* uri;
        const char* reason;
    };
    const Bad cases[] = {
        {"postgresql://clerk:secret@db/practice", "password"},
        {"postgresql://clerk@db/practice?password=secret", "password"},
        {"mysql://clerk@db/practice", "unknown kind of server"},
        {"postgresql://clerk@db", "names no database"},
        {"postgresql://clerk@db:0/practice", "bad port"},
        {"postgresql://clerk@db:99999/practice", "port"},
        {"postgresql://clerk@db/practice?sslmod=require", "unknown option"},
    };
    for (const Bad& c : cases) {
        SCOPED_TRACE(c.uri);
        QString error;
        EXPECT_FALSE(parse(c.uri, &error));
        EXPECT_TRUE(error.contains(QString::fromUtf8(c.reason), Qt::CaseInsensitive))
            << error.toStdString();
        // The secret never reaches a message.
        EXPECT_FALSE(error.contains(QStringLiteral("secret")));
    }
}
