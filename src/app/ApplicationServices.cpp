#include "app/ApplicationServices.h"

#include "context/AppContext.h"
#include "data/DatabaseLocation.h"
#include "data/databaseControl.h"
#include "data/modDatabaseConnection.h"
#include "data/modFormatAddresses.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/MsgboxClass.h"
#include "platform/SpecialFolders.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"

namespace {
const QString kSupportAddress = QStringLiteral("support@quillmere.example");
} // namespace

ApplicationServices::ApplicationServices(AppContext& context) : m_context(context) {}

ApplicationServices::~ApplicationServices() {
    releaseFieldInserter();
    closeDatabase();
    if (m_scriptedMsgbox && m_context.msgbox == m_scriptedMsgbox.get()) {
        m_context.msgbox = nullptr;
    }
    m_scriptedMsgbox.reset();
    if (m_context.errors == m_errors.get()) {
        m_context.errors = nullptr;
    }
}

errorClass& ApplicationServices::createErrors() {
    m_errors = std::make_unique<errorClass>(&m_context.clock);
    m_errors->setApplicationPath(SpecialFolders::programFolder());
    m_errors->setSupportAddress(kSupportAddress);
    m_errors->setApplicationName(QStringLiteral("Quillmere Pad"));
    m_errors->setApplicationVersion(m_context.programVersion);
    m_errors->setNumberedSetting(1);
    m_errors->setNumberedSetting(4);
    m_context.errors = m_errors.get();
    return *m_errors;
}

void ApplicationServices::useMessageBox(MsgboxClass& box) {
    m_context.msgbox = &box;
}

ScriptedMsgbox&
ApplicationServices::createScriptedMessageBox(std::function<void(const QString&)> sink) {
    m_scriptedMsgbox = std::make_unique<ScriptedMsgbox>();
    if (sink) {
        m_scriptedMsgbox->setSink(std::move(sink));
    }
    m_context.msgbox = m_scriptedMsgbox.get();
    return *m_scriptedMsgbox;
}

clsInsertFieldsInRTB& ApplicationServices::createFieldInserter() {
    m_fields = std::make_unique<clsInsertFieldsInRTB>();
    m_fields->setLineBreaksAsParagraphs(false);
    m_context.fieldInserter = m_fields.get();
    clsInsertFieldsInRTB* fields = m_fields.get();
    m_context.rewriteRegionalFields = [fields](const QString& rtf) {
        return fields->convertProvinceFields(rtf);
    };
    return *m_fields;
}

void ApplicationServices::openCompaniesDatabaseStep(const QString& path) {
    closeDatabase();
    m_database = openCompaniesDatabase(path);
    m_context.database = m_database.get();
    m_contactCards = std::make_unique<ScopedContactCardWriter>();
}

bool ApplicationServices::connectDatabase(const QString& path) {
    closeDatabase();
    if (!DatabaseLocation::looksLikeUri(path) && !fileControl::FileExists(path)) {
        m_databaseError = QStringLiteral("No database at ") + path;
        return false;
    }
    m_database = std::make_unique<databaseControl>();
    m_database->setErrorObject(m_errors.get());
    m_database->setApplicationTitle(QStringLiteral("Quillmere Pad"));
    m_database->setDatabasePath(path);
    m_database->connect();
    if (!m_database->isConnected()) {
        m_databaseError = m_database->lastError();
        m_database.reset();
        return false;
    }
    m_context.database = m_database.get();
    m_context.databaseLocation = path;
    m_contactCards = std::make_unique<ScopedContactCardWriter>();
    return true;
}

void ApplicationServices::closeDatabase() {
    if (m_context.database == m_database.get()) {
        m_context.database = nullptr;
    }
    if (m_database && m_database->isConnected()) {
        m_database->disconnect();
    }
    m_database.reset();
    m_contactCards.reset();
}

void ApplicationServices::releaseFieldInserter() {
    if (m_fields && m_context.fieldInserter == m_fields.get()) {
        m_context.fieldInserter = nullptr;
        m_context.rewriteRegionalFields = nullptr;
    }
    m_fields.reset();
}

void ApplicationServices::detachMessagesAndErrors() {
    m_context.msgbox = nullptr;
    m_context.errors = nullptr;
}
