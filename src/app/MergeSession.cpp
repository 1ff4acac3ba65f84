#include "app/MergeSession.h"

MergeSession::MergeSession(std::function<void(const QString&)> messageSink)
    : m_services(m_context.context()) {
    m_services.createErrors();
    m_msgbox = &m_services.createScriptedMessageBox(std::move(messageSink));
    m_services.createFieldInserter();
}
