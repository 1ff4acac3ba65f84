#pragma once

#include "data/databaseControl.h"

#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <memory>
#include <ostream>

// Readable QStrings in test failures.
inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}

// A small client database for the merge tests: the schema of the program,
// a firm, three client companies with their satellite rows, contacts with
// links, a schedule, a task, an appointment and custom labels. Rows are
// added with insert(); the access object is connected and put into
// app().database for the lifetime of the fixture.
class MergeTestDatabase {
public:
    explicit MergeTestDatabase(const QString& path);
    ~MergeTestDatabase();

    databaseControl& db() { return *m_db; }
    QString path() const { return m_path; }

    // INSERT INTO table (keys) VALUES (values).
    void insert(const QString& table, const QVariantMap& row);
    void exec(const QString& sql);
    // A business client: the company, its ClientData row and satellites.
    void addClient(int companyID, const QVariantMap& company, const QVariantMap& client = {},
                   bool visible = true, int status = 1);
    void link(int contactID, int companyID, bool isDefault);

    // The standard practice used by most tests.
    void fillStandardPractice();

private:
    QString m_path;
    QString m_connection;
    std::unique_ptr<databaseControl> m_db;
    databaseControl* m_previous = nullptr;
};
