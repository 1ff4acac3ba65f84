#pragma once

#include "app/ApplicationServices.h"
#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"

#include <QString>
#include <functional>

// The objects a merge needs, for the headless commands and the benchmarks:
// an application context of its own whose services (error object, a message
// box that hands its texts to a sink, the field inserter and, when asked,
// the database) come from ApplicationServices as start-up builds them.
// Everything is released in reverse order.
class MergeSession {
public:
    explicit MergeSession(std::function<void(const QString&)> messageSink = {});
    MergeSession(const MergeSession&) = delete;
    MergeSession& operator=(const MergeSession&) = delete;

    // Connects to the database file; false (with the reason in
    // databaseError()) when it is missing or not a database.
    bool openDatabase(const QString& path) { return m_services.connectDatabase(path); }
    QString databaseError() const { return m_services.databaseError(); }

    AppContext& context() { return m_context.context(); }
    clsInsertFieldsInRTB& fields() { return *m_services.fieldInserter(); }
    ScriptedMsgbox& msgbox() { return *m_msgbox; }
    ApplicationServices& services() { return m_services; }

private:
    ScopedAppContext m_context;
    ApplicationServices m_services;
    ScriptedMsgbox* m_msgbox = nullptr;
};
