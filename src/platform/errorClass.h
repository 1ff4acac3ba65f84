#pragma once

#include <QString>
#include <QStringList>

#include <exception>
#include <functional>
#include <stdexcept>

class Clock;

// A run-time fault inside a procedure: the number and text a handler sees.
// Thrown inside the core; the event boundary turns it into errorClass's
// dialog and the user's choice.
class QmError : public std::runtime_error {
public:
    // The numbers the program raises; they follow the old run-time numbers
    // so that logs from either side read alike.
    enum Number : int {
        Overflow = 6,
        SubscriptOutOfRange = 9,
        TypeMismatch = 13,
        BadFileNameOrNumber = 52,
        FileNotFound = 53,
        FileAlreadyOpen = 55,
        DiskFull = 61,
        PermissionDenied = 70,
        PathFileAccessError = 75,
        PathNotFound = 76,
        InvalidPropertyValue = 380,
        InvalidFileFormat = 321,
        DatabaseError = 3001,
        Internal = 51,
    };

    QmError(int number, const QString& description);

    int number() const { return m_number; }
    QString description() const { return m_description; }

private:
    int m_number;
    QString m_description;
};

// What the handler hands to the user: the fault with the procedures it
// passed through, outermost first.
struct ErrorReport {
    int number = 0;
    QString description;
    QStringList tagStack;
    QString applicationName;
    QString applicationVersion;
};

// The procedure-tag stack, the error log and the error dialog.
// The dialog is a callback so that the core never opens a window; without
// one the choice is 2 (leave the procedure), which is what a headless run
// wants.
class errorClass {
public:
    enum Action : int { GoOn = 1, Leave = 2, EndProgram = 3 };

    using Prompt = std::function<int(const ErrorReport&)>;
    using ExitHook = std::function<void()>;

    explicit errorClass(const Clock* clock = nullptr);

    void enterProcedure(const QString& tag);
    void leaveProcedure();
    const QStringList& tagStack() const { return m_tags; }

    // First step of a handler: takes the fault over with the tag stack as
    // it stood where the fault arose (see ProcedureScope).
    void reportError(int number, const QString& description);
    void reportError(const std::exception& fault);
    // Second step: writes the log entry and asks the user; errorAction()
    // holds the answer afterwards.
    void presentError();
    int errorAction() const { return m_action; }

    // Both steps and the consequence: on EndProgram the exit hook runs.
    // Returns the action taken.
    int handle(const std::exception& fault);

    void setApplicationPath(const QString& path) { m_applicationPath = path; }
    void setSupportAddress(const QString& address) { m_supportAddress = address; }
    void setApplicationName(const QString& name) { m_applicationName = name; }
    void setApplicationVersion(const QString& version) { m_applicationVersion = version; }
    void setLogFolder(const QString& folder) { m_logFolder = folder; }
    QString logFolder() const { return m_logFolder; }
    QString logFilePath() const;
    QString applicationName() const { return m_applicationName; }

    // The numbered settings written at start-up; kept for the record only.
    void setNumberedSetting(int value) { m_numberedSettings << QString::number(value); }

    void setPrompt(Prompt prompt) { m_prompt = std::move(prompt); }
    void setExitHook(ExitHook hook) { m_exitHook = std::move(hook); }

    const ErrorReport& lastReport() const { return m_report; }

    // Called by ProcedureScope while the stack unwinds: remembers the stack
    // at its deepest point for the report that follows.
    void noteUnwinding();

private:
    const Clock* m_clock;
    QStringList m_tags;
    QStringList m_faultTags;
    ErrorReport m_report;
    int m_action = Leave;
    QString m_applicationPath;
    QString m_supportAddress;
    QString m_applicationName = QStringLiteral("Quillmere Pad");
    QString m_applicationVersion;
    QString m_logFolder;
    QStringList m_numberedSettings;
    Prompt m_prompt;
    ExitHook m_exitHook;
};

// Pushes a procedure's tag on entry and pops it on the way out, also when a
// fault leaves the procedure. A null errorClass makes it do nothing, for the
// classes that may run before the error object exists.
class ProcedureScope {
public:
    ProcedureScope(errorClass* errors, const QString& tag);
    ~ProcedureScope();
    ProcedureScope(const ProcedureScope&) = delete;
    ProcedureScope& operator=(const ProcedureScope&) = delete;

private:
    errorClass* m_errors;
    int m_uncaught;
};

// Runs a piece of work at an event boundary: a fault is reported, presented
// and acted on. Returns true when the work finished without a fault.
bool runGuarded(errorClass* errors, const std::function<void()>& work);
