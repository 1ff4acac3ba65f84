#include "data/ClientDatabaseSchema.h"

#include "data/ClientDatabaseSchemaText.h"
#include "platform/errorClass.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <map>

namespace {

struct ParsedSchema {
    QStringList tables;
    std::map<QString, QStringList> columns; // upper-case table -> columns
    QSet<QString> yesNo;                    // upper-case column names
    QSet<QString> dates;
    QSet<QString> numbers;
    QHash<QString, QString> keys;      // upper-case table -> key column
    QHash<QString, QString> canonical; // upper-case column -> its spelling
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
        static const QRegularExpression columnRe(QStringLiteral("^\\s*(\\w+)\\s+(\\w+)"));
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
                s.canonical.insert(c.captured(1).toUpper(), c.captured(1));
                if (c.captured(2).compare(u"TEXT", Qt::CaseInsensitive) != 0)
                    s.numbers.insert(c.captured(1).toUpper());
                if (line.contains(QStringLiteral("INTEGER PRIMARY KEY")))
                    s.keys.insert(table.toUpper(), c.captured(1));
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

bool ClientDatabaseSchema::isNumberColumn(const QString& column) {
    return parsed().numbers.contains(column.toUpper());
}

QString ClientDatabaseSchema::primaryKey(const QString& table) {
    return parsed().keys.value(table.toUpper());
}

QString ClientDatabaseSchema::canonicalColumnName(const QString& column) {
    return parsed().canonical.value(column.toUpper(), column);
}

QStringList ClientDatabaseSchema::serverStatements() {
    static const QStringList statements = [] {
        QStringList out;
        // Text compared "without regard to case" is written COLLATE NOCASE
        // throughout the program; unquoted, the server reads that as this
        // collation.
        out << QStringLiteral("CREATE COLLATION IF NOT EXISTS nocase (provider = icu, locale = "
                              "'und-u-ks-level2', deterministic = false)");
        // A row inserted with a Null key takes the next number after the
        // highest, as on the embedded engine; two seats racing for the same
        // number meet the key's uniqueness, and one insert fails whole.
        out << QStringLiteral(
            "CREATE OR REPLACE FUNCTION qm_next_key() RETURNS trigger LANGUAGE plpgsql AS $$\n"
            "DECLARE next_key bigint;\n"
            "BEGIN\n"
            "  IF to_jsonb(NEW) ->> TG_ARGV[0] IS NULL THEN\n"
            "    EXECUTE format('SELECT COALESCE(max(%I), 0) + 1 FROM %I.%I', TG_ARGV[0],\n"
            "                   TG_TABLE_SCHEMA, TG_TABLE_NAME) INTO next_key;\n"
            "    NEW := jsonb_populate_record(NEW, jsonb_build_object(TG_ARGV[0], next_key));\n"
            "  END IF;\n"
            "  RETURN NEW;\n"
            "END $$");
        static const QRegularExpression integerType(QStringLiteral("\\bINTEGER\\b"));
        static const QRegularExpression realType(QStringLiteral("\\bREAL\\b"));
        static const QRegularExpression comment(QStringLiteral("/\\*[^*]*\\*/"));
        static const QRegularExpression tableRe(QStringLiteral("CREATE TABLE (\\w+) \\("));
        for (QString statement : parsed().statements) {
            statement.remove(comment);
            statement.replace(QStringLiteral("INTEGER PRIMARY KEY"),
                              QStringLiteral("BIGINT PRIMARY KEY"));
            statement.replace(integerType, QStringLiteral("BIGINT"));
            statement.replace(realType, QStringLiteral("DOUBLE PRECISION"));
            out << statement;
            const auto m = tableRe.match(statement);
            if (!m.hasMatch())
                continue;
            const QString key = primaryKey(m.captured(1));
            if (key.isEmpty())
                continue;
            out << QStringLiteral("CREATE TRIGGER %1_next_key BEFORE INSERT ON %1 FOR EACH ROW "
                                  "EXECUTE FUNCTION qm_next_key('%2')")
                       .arg(m.captured(1), key.toLower());
        }
        return out;
    }();
    return statements;
}

void ClientDatabaseSchema::create(QSqlDatabase& db) {
    const bool server = db.driverName() == QLatin1String("QPSQL");
    if (!db.transaction())
        throw QmError(QmError::DatabaseError, db.lastError().text());
    QSqlQuery query(db);
    for (const QString& statement : server ? serverStatements() : parsed().statements) {
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
