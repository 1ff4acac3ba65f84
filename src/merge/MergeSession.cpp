#include "merge/MergeSession.h"

#include "platform/fileControl.h"

MergeSession::MergeSession(std::function<void(const QString&)> messageSink)
    : m_errors(&m_context->clock) {
    m_context->errors = &m_errors;
    if (messageSink) {
        m_msgbox.setSink(std::move(messageSink));
    }
    m_context->msgbox = &m_msgbox;
    m_fields = std::make_unique<clsInsertFieldsInRTB>();
    m_fields->setLineBreaksAsParagraphs(false);
    m_context->fieldInserter = m_fields.get();
}

MergeSession::~MergeSession() {
    m_context->fieldInserter = nullptr;
    m_fields.reset();
    m_context->database = nullptr;
    if (m_database && m_database->isConnected()) {
        m_database->disconnect();
    }
    m_database.reset();
    m_context->msgbox = nullptr;
    m_context->errors = nullptr;
}

bool MergeSession::openDatabase(const QString& path) {
    if (!fileControl::FileExists(path)) {
        m_databaseError = QStringLiteral("No database at ") + path;
        return false;
    }
    m_database = std::make_unique<databaseControl>();
    m_database->setErrorObject(&m_errors);
    m_database->setApplicationTitle(QStringLiteral("Quillmere Pad"));
    m_database->setDatabasePath(path);
    m_database->connect();
    if (!m_database->isConnected()) {
        m_databaseError = m_database->lastError();
        m_database.reset();
        return false;
    }
    m_context->database = m_database.get();
    m_context->databaseLocation = path;
    return true;
}
