#pragma once

#include "app/HostErrorAddress.h"
#include "app/clsDocMerge.h"

#include <QDBusContext>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QList>
#include <QObject>
#include <QStringList>
#include <functional>

class QTimer;

// The automation object as the bus sees it: the generated adaptor forwards
// every property and method here, and each is one call of clsDocMerge. A
// broken rule of the interface becomes an error reply to the caller.
class clsDocMergeDBus : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_PROPERTY(HostErrorAddress errorClass READ errorClass WRITE setErrorClass)
    Q_PROPERTY(QString AppWorkingDataFolder READ AppWorkingDataFolder WRITE setAppWorkingDataFolder)
    Q_PROPERTY(short currentProvince READ currentProvince WRITE setCurrentProvince)
    Q_PROPERTY(int userID READ userID WRITE setUserID)
    Q_PROPERTY(QString DatabaseLocation READ DatabaseLocation WRITE setDatabaseLocation)
    Q_PROPERTY(QString SQLFilter READ SQLFilter WRITE setSQLFilter)
    // Any value: the adaptor hands over what the variant held.
    Q_PROPERTY(QVariant IDListArray READ IDListArray WRITE setIDListArray)
    Q_PROPERTY(QList<QStringList> IDList READ IDList WRITE setIDList)

public:
    // `object` must outlive this one.
    explicit clsDocMergeDBus(clsDocMerge& object, QObject* parent = nullptr);

    // Registers the bus types this object uses; call before registering it.
    static void registerTypes();

    // Answers the call being delivered with an error (nothing outside a call).
    void replyWithError(const QString& name, const QString& message) const;
    // SQLFilter and IDList: readable only while a document is active.
    static bool isDocumentProperty(const QString& name);
    bool hasActiveDocument() const;
    // Remembers the host behind the call being delivered, so that the
    // program learns when every host has left the bus.
    void noteCaller() const;

    // Write-only on the bus; these readers exist for the meta-object only.
    HostErrorAddress errorClass() const { return m_errorAddress; }
    QVariant IDListArray() const { return {}; }

    void setErrorClass(const HostErrorAddress& address);
    QString AppWorkingDataFolder() const;
    void setAppWorkingDataFolder(const QString& folder);
    short currentProvince() const;
    void setCurrentProvince(short province);
    int userID() const;
    void setUserID(int id);
    QString DatabaseLocation() const;
    void setDatabaseLocation(const QString& path);
    QString SQLFilter() const;
    void setSQLFilter(const QString& filter);
    void setIDListArray(const QVariant& value);
    QList<QStringList> IDList() const;
    void setIDList(const QList<QStringList>& rows);

public Q_SLOTS:
    void RaiseEventExitDocMerge();
    void Quit();
    void openDocMergeProgram();
    void openExistingMergeDocument(const QString& filePath, short mergeType);
    void openNewMergeDocument(short mergeType);
    void performMerge();
    void bringQuillmerePadToTop();

Q_SIGNALS:
    void ExitDocMerge();
    // Every host that called has left the bus before an opening call, and
    // none came back within a few seconds: no one is left to open a window
    // or to end the program.
    void hostsGone();

private:
    // Runs one call of the logic; a DocMergeError becomes the caller's error.
    template <typename Result, typename Call> Result guarded(Call&& call) const;

    void hostLeft(const QString& name);

    clsDocMerge& m_object;
    HostErrorAddress m_errorAddress;
    QDBusServiceWatcher* m_hosts = nullptr;
    // A host that makes each call from a connection of its own (a shell
    // script calling a command-line tool) leaves the bus between calls.
    QTimer* m_hostGrace = nullptr;
};

// The D-Bus error name of a broken rule, e.g.
// "org.quillmere.clsDocMerge.Error.Overflow".
QString docMergeErrorName(DocMergeError::Kind kind);
