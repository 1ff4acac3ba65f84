#pragma once

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "platform/errorClass.h"
#include "platform/text/stringControl.h"

#include <QString>
#include <QVariant>

// Helpers of the lookup modules: the connected database or null, and a
// record set that is closed however the procedure is left.
namespace DatabaseLookup {

inline databaseControl* connected() {
    databaseControl* db = app().database;
    return db && db->isConnected() ? db : nullptr;
}

class ScopedRecordset {
public:
    ScopedRecordset(databaseControl& db, const QString& sql, bool editable = false)
        : m_db(db), m_handle(db.openRecordset(sql, databaseControl::KeysetCursor,
                                              editable ? databaseControl::OptimisticLock
                                                       : databaseControl::ReadOnlyLock)) {}
    ~ScopedRecordset() { m_db.closeRecordset(m_handle); }
    ScopedRecordset(const ScopedRecordset&) = delete;
    ScopedRecordset& operator=(const ScopedRecordset&) = delete;

    int handle() const { return m_handle; }
    bool hasRecords() const { return m_db.hasRecords(m_handle); }
    bool isEOF() const { return m_db.isEOF(m_handle); }
    void moveNext() { m_db.moveNext(m_handle); }
    void moveFirst() { m_db.moveFirst(m_handle); }
    QVariant field(const QString& column) const { return m_db.getField(m_handle, column); }
    void update(const QString& column, const QString& value) {
        m_db.updateFieldNow(m_handle, column, value);
    }

private:
    databaseControl& m_db;
    int m_handle;
};

// The first row's column, or nothing when there is no row.
inline QVariant firstValue(databaseControl& db, const QString& sql, const QString& column) {
    ScopedRecordset rs(db, sql);
    return rs.hasRecords() ? rs.field(column) : QVariant();
}

// An ID column read leniently; blank is -1.
inline int toID(const QVariant& value) {
    if (stringControl::isBlank(value))
        return -1;
    bool ok = false;
    const int id = value.toInt(&ok);
    return ok ? id : int(stringControl::leadingNumber(value.toString()));
}

inline QString toText(const QVariant& value) {
    return value.isNull() ? QString() : value.toString();
}

// A whole number in text, as the ID arguments of the validity tests come.
inline bool parseID(const QString& text, int& id) {
    bool ok = false;
    id = text.trimmed().toInt(&ok);
    return ok;
}

inline QString tag(const char* procedure) {
    return QStringLiteral("QuillmerePad.exe-modDatabaseFunctions-") + QLatin1String(procedure);
}

} // namespace DatabaseLookup
