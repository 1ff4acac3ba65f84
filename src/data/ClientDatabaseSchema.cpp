#include "data/ClientDatabaseSchema.h"

#include "data/ClientDatabaseSchemaText.h"
#include "platform/errorClass.h"

#include <QRegularExpression>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <map>

namespace {

struct ParsedSchema {
    QStringList tables;
    std::map<QString, QStringList> columns; // upper-case table -> columns
    QSet<QString> yesNo;                    // upper-case column names
    QSet<QString> dates;
    QStringList statements;
};

const ParsedSchema& parsed() {
    static const ParsedSchema schema = [] {
        ParsedSchema s;
        const QString text = ClientDatabaseSchema::ddl();
        QString withoutLineComments;
        for (const QString& line : text.split(u'\n')) {
            if (!line.trimmed().startsWith(QStringLiteral("--")))
                withoutLineComments += line + u'\n';
        }
        for (const QString& statement : withoutLineComments.split(u';')) {
            if (!statement.trimmed().isEmpty())
                s.statements << statement.trimmed();
        }
        static const QRegularExpression tableRe(
            QStringLiteral("CREATE TABLE (\\w+) \\(([^;]*)\\)"));
        static const QRegularExpression columnRe(QStringLiteral("^\\s*(\\w+)\\s+\\w+"));
        for (const QString& statement : std::as_const(s.statements)) {
            const auto m = tableRe.match(statement);
            if (!m.hasMatch())
                continue;
            const QString table = m.captured(1);
            s.tables << table;
            QStringList& cols = s.columns[table.toUpper()];
            for (const QString& line : m.captured(2).split(u'\n')) {
                const auto c = columnRe.match(line);
                if (!c.hasMatch())
                    continue;
                cols << c.captured(1);
                if (line.contains(QStringLiteral("/*yes-no*/")))
                    s.yesNo.insert(c.captured(1).toUpper());
                if (line.contains(QStringLiteral("/*date*/")))
                    s.dates.insert(c.captured(1).toUpper());
            }
        }
        return s;
    }();
    return schema;
}

} // namespace

QString ClientDatabaseSchema::ddl() {
    return QString::fromUtf8(kClientDatabaseSchemaText);
}

QStringList ClientDatabaseSchema::tableNames() {
    return parsed().tables;
}

QStringList ClientDatabaseSchema::columnNames(const QString& table) {
    const auto& columns = parsed().columns;
    const auto it = columns.find(table.toUpper());
    return it == columns.end() ? QStringList{} : it->second;
}

bool ClientDatabaseSchema::isYesNoColumn(const QString& column) {
    return parsed().yesNo.contains(column.toUpper());
}

bool ClientDatabaseSchema::isDateColumn(const QString& column) {
    return parsed().dates.contains(column.toUpper());
}

void ClientDatabaseSchema::create(QSqlDatabase& db) {
    if (!db.transaction())
        throw QmError(QmError::DatabaseError, db.lastError().text());
    QSqlQuery query(db);
    for (const QString& statement : parsed().statements) {
        if (!query.exec(statement)) {
            const QString error = query.lastError().text();
            db.rollback();
            throw QmError(QmError::DatabaseError,
                          QStringLiteral("Cannot create the schema: %1").arg(error));
        }
    }
    if (!db.commit())
        throw QmError(QmError::DatabaseError, db.lastError().text());
}
