#pragma once

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "support/TestEnvironment.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <gtest/gtest.h>
#include <memory>

// A fresh client database in a temporary folder, made by other hands than
// the program: plain SQL through a separate connection, following the
// storage conventions. The program's databaseControl is connected to it and
// installed in a scoped application context.
class ClientDbFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Runs statements on the side connection (the "host"); fails the test
    // on an error.
    void hostExec(const QString& sql);
    QVariant hostValue(const QString& sql);
    // Loads tests/data/db/<name>.sql through the side connection.
    void loadFixture(const QString& name);

    TestEnvironment m_env;
    ScopedAppContext m_context;
    QString m_path;
    QString m_hostConnection;
    std::unique_ptr<databaseControl> m_db;
};
