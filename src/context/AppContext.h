#pragma once

#include "platform/Clock.h"

#include <QString>
#include <functional>

class errorClass;
class MsgboxClass;
class FileDialogs;
class ProgressReporter;
class clsINI;
class clsWorkingFolderLocation;
class clsInsertFieldsInRTB;
class databaseControl;
class clsDocMerge;

// The process-wide values and objects every subsystem reads. The objects are
// owned by whoever brought the application up (startApplication, a command,
// a test); the context only points at them and a null pointer means "does not
// exist yet", which the callers must tolerate as the start-up order demands.
struct AppContext {
    // Objects, in the order in which start-up creates them.
    clsDocMerge* docMergeObject = nullptr;
    errorClass* errors = nullptr;
    clsINI* iniSettings = nullptr;
    clsWorkingFolderLocation* workingFolders = nullptr;
    MsgboxClass* msgbox = nullptr;
    clsInsertFieldsInRTB* fieldInserter = nullptr;
    databaseControl* database = nullptr;
    ProgressReporter* progress = nullptr;
    // File and folder choices; null in the headless commands.
    FileDialogs* fileDialogs = nullptr;

    // Values.
    bool isStandAlone = true;
    bool isStartingUp = false;
    bool isCreatingDocument = false;
    QString programVersion;
    QString workstationID;
    QString databaseLocation;
    QString appWorkingDataFolder;
    int currentUserID = 0;
    short currentProvince = 3;
    int currentCountry = 1;
    int unnamedDocumentCount = 0;
    int contactNameDisplayType = 1;
    int familyDisplayOption = 1;

    // "Today" for every date the program computes.
    Clock clock;

    // The field inserter's regional rewrite of placeholders in RTF, for the
    // layers below the merge engine that open documents; empty while there
    // is no field inserter (the text then stays as it is).
    std::function<QString(const QString&)> rewriteRegionalFields;
};

// The context in force. There is always one: a default context exists from
// the start, and ScopedAppContext puts another in its place for a while.
AppContext& app();

// Installs a fresh context for its lifetime and restores the previous one
// afterwards, so that a test leaves no global state changed.
class ScopedAppContext {
public:
    ScopedAppContext();
    ~ScopedAppContext();
    ScopedAppContext(const ScopedAppContext&) = delete;
    ScopedAppContext& operator=(const ScopedAppContext&) = delete;

    AppContext& context() { return m_context; }
    AppContext* operator->() { return &m_context; }

private:
    AppContext m_context;
    AppContext* m_previous;
};

// "major.minor.revision", each a plain integer.
QString getProgramVersion();

// Lets the event loop run once when there may be input waiting; a no-op
// without an application object.
void doEventsIfInputPending();
