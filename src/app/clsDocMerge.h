#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

class FieldTable;

// A rule of the host interface broken by the caller: a call out of order, a
// value that does not fit. It reaches the host as an error of its kind; it is
// never handed to an error object as a fault.
class DocMergeError : public std::runtime_error {
public:
    enum class Kind {
        NoActiveDocument, // a document call before an opening call
        AlreadyOpen,      // a second opening call on the same process
        Overflow,         // an IDListArray element outside 16 bits
        TypeMismatch,     // an IDListArray element that is not a number
        NotAvailable,     // a command this build cannot do yet
    };
    DocMergeError(Kind kind, const QString& message)
        : std::runtime_error(message.toStdString()), m_kind(kind) {}
    Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

// The host's own error object: tag pushes and fault reports of the tagged
// procedures go to it once the host has set one. Calls must not block (the
// host may have gone away).
class HostErrorObject {
public:
    virtual ~HostErrorObject() = default;
    virtual void enterProcedure(const QString& tag) = 0;
    virtual void leaveProcedure() = 0;
    virtual void reportError(int number, const QString& description) = 0;
};

class clsDocMerge;

// What the automation object needs of the application and of its active
// document. The windowed program implements it; tests script it.
class DocMergeApplication {
public:
    virtual ~DocMergeApplication() = default;

    // Hourglass on or off around the opening calls.
    virtual void setBusy(bool busy) = 0;
    // startApplication(false, object): start-up reads the object's values.
    virtual void startApplication(clsDocMerge& object) = 0;
    virtual void doEventsIfInputPending() = 0;
    virtual void createNewStandardDocument() = 0;
    // OpenExistingDocument(filePath, 0); the file exists.
    virtual void openExistingDocument(const QString& filePath) = 0;

    // The active document and what the host may do with it. The calls below
    // hasActiveDocument() are made only while it is true.
    virtual bool hasActiveDocument() const = 0;
    virtual QString SQLFilter() const = 0;
    virtual void setSQLFilter(const QString& filter) = 0;
    virtual void connectToRemittRST() = 0;
    virtual FieldTable& IDList() = 0;
    virtual void changeTemplateInformation(int mergeType) = 0;

    // The merge button of the main window; may throw DocMergeError.
    virtual void performMerge() = 0;
    virtual void bringToForeground() = 0;
    virtual void exitCurrentProgram() = 0;
};

// The automation object a host creates, without its transport: the fields
// the host sets before its opening call, the get and put rules, and the
// order of the calls. Plain accessors and IDListArray let their errors reach
// the caller; the tagged procedures hand faults to the host's error object
// (or the program's) and only order errors reach the caller.
class clsDocMerge {
public:
    // Keeps a reference to `application`, which must outlive this object.
    explicit clsDocMerge(DocMergeApplication& application);
    ~clsDocMerge();
    clsDocMerge(const clsDocMerge&) = delete;
    clsDocMerge& operator=(const clsDocMerge&) = delete;

    void setErrorClass(std::unique_ptr<HostErrorObject> errors);
    bool hasErrorClass() const { return m_hostErrors != nullptr; }

    QString AppWorkingDataFolder() const { return m_appWorkingDataFolder; }
    void setAppWorkingDataFolder(const QString& folder) { m_appWorkingDataFolder = folder; }
    short currentProvince() const { return m_currentProvince; }
    void setCurrentProvince(short province) { m_currentProvince = province; }
    int userID() const { return m_userID; }
    void setUserID(int id) { m_userID = id; }

    // Kept only when it names an existing file (then also as the process's
    // database location); anything else empties both. Silent either way.
    void setDatabaseLocation(const QString& path);
    QString DatabaseLocation() const { return m_databaseLocation; }
    bool isValidDatabase() const { return m_isValidDatabase; }

    // Throw DocMergeError(NoActiveDocument) before an opening call.
    QString SQLFilter() const;
    void setSQLFilter(const QString& filter);
    // A missing (invalid) value does nothing; a list adds each element in
    // turn, a single number adds one at position 0, anything else is ignored.
    // Each element must convert to a 16-bit integer: no entry is added when
    // one does not (Overflow, TypeMismatch).
    void setIDListArray(const QVariant& value);
    // Rows of the active document's list, each its column values.
    std::vector<QStringList> IDList() const;
    // Replaces the active document's list.
    void setIDList(const std::vector<QStringList>& rows);

    void RaiseEventExitDocMerge();
    void Quit();
    void openDocMergeProgram();
    // A missing file starts nothing and is not an error.
    void openExistingMergeDocument(const QString& filePath, short mergeType);
    void openNewMergeDocument(short mergeType);
    void performMerge();
    void bringQuillmerePadToTop();

    bool hasActiveDocument() const { return m_application.hasActiveDocument(); }
    // Whether an opening call has started the application.
    bool isOpened() const { return m_opened; }
    void setExitDocMergeHandler(std::function<void()> handler) {
        m_exitDocMerge = std::move(handler);
    }

private:
    void commonOpening();
    void requireNotOpened() const;
    void requireActiveDocument() const;
    void emptyMergeRecipients(short mergeType);
    template <typename Work> void runTagged(const QString& procedure, Work&& work);

    DocMergeApplication& m_application;
    std::unique_ptr<HostErrorObject> m_hostErrors;
    std::function<void()> m_exitDocMerge;
    QString m_databaseLocation;
    bool m_isValidDatabase = false;
    QString m_appWorkingDataFolder;
    short m_currentProvince = 3;
    int m_userID = 0;
    bool m_opened = false;
};
