#pragma once

#include <QString>
#include <functional>
#include <memory>

struct AppContext;
class ScopedContactCardWriter;
class MsgboxClass;
class ScriptedMsgbox;
class clsInsertFieldsInRTB;
class databaseControl;
class errorClass;

// The one place that builds the process-wide services and points an
// application context at them: the error object, the message box, the field
// inserter, the database with the contact-card writer that must live while
// it is open, and (through the context) the clock. The windowed start-up,
// every headless command and the tests all go through it, so each gets the
// same objects set up the same way.
//
// Each create step may be called once, in start-up order; the destructor
// releases in reverse (field inserter, database, message box, error object)
// and clears the context's pointers to what it owned. The context must
// outlive this object.
class ApplicationServices {
public:
    explicit ApplicationServices(AppContext& context);
    ~ApplicationServices();
    ApplicationServices(const ApplicationServices&) = delete;
    ApplicationServices& operator=(const ApplicationServices&) = delete;

    // The error object, named and numbered as the program's; its "today" is
    // the context's clock.
    errorClass& createErrors();
    // Messages go to a box someone else owns (the main window's); it must
    // outlive this object or be replaced first.
    void useMessageBox(MsgboxClass& box);
    // Messages go to `sink` (a headless command prints them).
    ScriptedMsgbox& createScriptedMessageBox(std::function<void(const QString&)> sink);
    // The field inserter with the line-break form start-up leaves.
    clsInsertFieldsInRTB& createFieldInserter();

    // Start-up's connection: a failure is told through the message box
    // ("... needs to close") and leaves an unconnected object in the
    // context, as the windows expect. Contact cards are written while it
    // lives.
    void openCompaniesDatabaseStep(const QString& path);
    // The headless connection: false, with the reason in databaseError(),
    // when the file is missing or no database; the context then has none.
    bool connectDatabase(const QString& path);
    QString databaseError() const { return m_databaseError; }
    // Disconnects and releases the database and the contact-card writer.
    void closeDatabase();
    // Releases the field inserter (first step of shutting down).
    void releaseFieldInserter();
    // The context stops pointing at the message box and the error object;
    // the error object itself lives on until this object dies, as scopes
    // still on the stack may pop their tags on it.
    void detachMessagesAndErrors();

    AppContext& context() { return m_context; }
    errorClass* errors() const { return m_errors.get(); }
    clsInsertFieldsInRTB* fieldInserter() const { return m_fields.get(); }
    databaseControl* database() const { return m_database.get(); }

private:
    AppContext& m_context;
    std::unique_ptr<errorClass> m_errors;
    std::unique_ptr<ScriptedMsgbox> m_scriptedMsgbox;
    std::unique_ptr<clsInsertFieldsInRTB> m_fields;
    std::unique_ptr<databaseControl> m_database;
    std::unique_ptr<ScopedContactCardWriter> m_contactCards;
    QString m_databaseError;
};
