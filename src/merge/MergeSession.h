#pragma once

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"

#include <QString>
#include <functional>
#include <memory>

// The objects a merge needs, brought up as start-up brings them up, for the
// headless commands and the benchmarks: an application context of its own
// with the error object, a message box that hands its texts to a sink, the
// field inserter (with the line-break form start-up leaves) and, when asked,
// the database connection. Everything is released in reverse order.
class MergeSession {
public:
    explicit MergeSession(std::function<void(const QString&)> messageSink = {});
    ~MergeSession();
    MergeSession(const MergeSession&) = delete;
    MergeSession& operator=(const MergeSession&) = delete;

    // Connects to the database file; false (with the reason in
    // databaseError()) when it is missing or not a database.
    bool openDatabase(const QString& path);
    QString databaseError() const { return m_databaseError; }

    AppContext& context() { return m_context.context(); }
    clsInsertFieldsInRTB& fields() { return *m_fields; }
    ScriptedMsgbox& msgbox() { return m_msgbox; }

private:
    ScopedAppContext m_context;
    errorClass m_errors;
    ScriptedMsgbox m_msgbox;
    std::unique_ptr<clsInsertFieldsInRTB> m_fields;
    std::unique_ptr<databaseControl> m_database;
    QString m_databaseError;
};
