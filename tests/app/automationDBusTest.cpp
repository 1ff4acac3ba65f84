// Drives the real program over the session bus as a host does. Runs under
// run-with-session-bus.sh, so the first call starts the program through its
// activation file.
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QObject>
#include <QProcess>
#include <gtest/gtest.h>

namespace {

const QString kService = QStringLiteral("org.quillmere.QuillmerePad");
const QString kPath = QStringLiteral("/clsDocMerge");
const QString kInterface = QStringLiteral("org.quillmere.clsDocMerge");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");

} // namespace

// Counts ExitDocMerge signals.
class ExitListener : public QObject {
    Q_OBJECT
public:
    int heard = 0;
public Q_SLOTS:
    void onExit() { ++heard; }
};

// A host's error object: what the program pushed on it, in order.
class HostErrors : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.quillmere.errorClass")
public:
    QStringList log;
public Q_SLOTS:
    void enterProcedure(const QString& tag) { log << "enter:" + tag; }
    void leaveProcedure() { log << "leave"; }
    void reportError(int number, const QString& text) {
        log << QStringLiteral("error:%1:%2").arg(number).arg(text);
    }
};

namespace {

QDBusConnection bus() {
    return QDBusConnection::sessionBus();
}

QDBusMessage call(const QString& interface, const QString& member, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(kService, kPath, interface, member);
    message.setArguments(arguments);
    return bus().call(message, QDBus::Block, 30000);
}

QDBusMessage method(const QString& member, const QVariantList& arguments = {}) {
    return call(kInterface, member, arguments);
}

QDBusMessage get(const QString& property) {
    return call(kProperties, QStringLiteral("Get"), {kInterface, property});
}

QDBusMessage set(const QString& property, const QVariant& value) {
    return call(kProperties, QStringLiteral("Set"),
                {kInterface, property, QVariant::fromValue(QDBusVariant(value))});
}

// IDListArray is itself a variant: the value goes in twice.
QDBusMessage setIDListArray(const QVariant& value) {
    return set(QStringLiteral("IDListArray"), QVariant::fromValue(QDBusVariant(value)));
}

QVariant valueOf(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        return {};
    }
    return reply.arguments().first().value<QDBusVariant>().variant();
}

std::string describe(const QDBusMessage& reply) {
    return QString(reply.errorName() + QStringLiteral(": ") + reply.errorMessage()).toStdString();
}

QList<QStringList> idList() {
    const QVariant value = valueOf(get(QStringLiteral("IDList")));
    QList<QStringList> rows;
    value.value<QDBusArgument>() >> rows;
    return rows;
}

bool served() {
    return bus().interface()->isServiceRegistered(kService).value();
}

void waitFor(const std::function<bool()>& done, int milliseconds) {
    const QDeadlineTimer deadline(milliseconds);
    while (!done() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    }
}

// A host session: a sample database and a working folder, and a listener
// for the exit event.
struct HostSession {
    TestEnvironment env;
    ExitListener listener;
    QString database;
    QString workFolder;

    HostSession() {
        database = env.path("practice/Data.qmd");
        QProcess sample;
        sample.start(QStringLiteral(QM_EXECUTABLE),
                     {QStringLiteral("sample-db"), database, QStringLiteral("--clients"),
                      QStringLiteral("5")});
        sample.waitForFinished(60000);
        workFolder = env.path("work") + QLatin1Char('/');
        bus().connect(QString(), kPath, kInterface, QStringLiteral("ExitDocMerge"), &listener,
                      SLOT(onExit()));
    }
    ~HostSession() {
        bus().disconnect(QString(), kPath, kInterface, QStringLiteral("ExitDocMerge"), &listener,
                         SLOT(onExit()));
        // Leave no program behind for the next test.
        if (served()) {
            method(QStringLiteral("Quit"));
            waitFor([] { return !served(); }, 10000);
        }
    }

    // The properties start-up reads, set as a host sets them first.
    void setUp() {
        ASSERT_EQ(set(QStringLiteral("AppWorkingDataFolder"), workFolder).type(),
                  QDBusMessage::ReplyMessage);
        ASSERT_EQ(set(QStringLiteral("DatabaseLocation"), database).type(),
                  QDBusMessage::ReplyMessage);
    }

    void quitAndExpectOneExit() {
        const QDBusMessage reply = method(QStringLiteral("Quit"));
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << describe(reply);
        waitFor([&] { return listener.heard > 0 && !served(); }, 10000);
        // Give a second signal the chance to arrive.
        waitFor([] { return false; }, 300);
        EXPECT_EQ(listener.heard, 1);
        EXPECT_FALSE(served());
    }
};

} // namespace

TEST(automationDBusTest, AFirstCallStartsTheProgramAndPropertiesFollowTheirRules) {
    HostSession host;
    ASSERT_FALSE(served());
    const QDBusMessage first = get(QStringLiteral("currentProvince"));
    ASSERT_EQ(first.type(), QDBusMessage::ReplyMessage) << describe(first);
    EXPECT_EQ(valueOf(first).toInt(), 3);
    EXPECT_TRUE(served());

    struct PutCase {
        const char* property;
        QVariant put;
        QVariant readBack;
    };
    const PutCase puts[] = {
        {"userID", 77, 77},
        {"currentProvince", QVariant::fromValue(short(9)), 9},
        // Hosts without 16-bit integers send 32-bit ones.
        {"currentProvince", 4, 4},
        {"AppWorkingDataFolder", host.workFolder, host.workFolder},
        {"DatabaseLocation", host.env.path("practice/missing.qmd"), QString()},
        {"DatabaseLocation", host.env.path("practice"), QString()},
        {"DatabaseLocation", host.database, host.database},
    };
    for (const PutCase& c : puts) {
        const QDBusMessage reply = set(QString::fromLatin1(c.property), c.put);
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << c.property << describe(reply);
        EXPECT_EQ(valueOf(get(QString::fromLatin1(c.property))), c.readBack) << c.property;
    }

    struct ErrorCase {
        const char* name;
        std::function<QDBusMessage()> call;
        const char* error;
    };
    const ErrorCase errors[] = {
        {"SQLFilter read before opening", [] { return get(QStringLiteral("SQLFilter")); },
         "org.quillmere.clsDocMerge.Error.NoActiveDocument"},
        {"SQLFilter put before opening",
         [] { return set(QStringLiteral("SQLFilter"), QStringLiteral("ScheduleID = 1")); },
         "org.quillmere.clsDocMerge.Error.NoActiveDocument"},
        {"IDListArray before opening",
         [] {
             return setIDListArray(QVariant::fromValue(QList<int>{1, 2}));
         },
         "org.quillmere.clsDocMerge.Error.NoActiveDocument"},
        {"performMerge before opening", [] { return method(QStringLiteral("performMerge")); },
         "org.quillmere.clsDocMerge.Error.NoActiveDocument"},
        {"province above 16 bits", [] { return set(QStringLiteral("currentProvince"), 40000); },
         "org.quillmere.clsDocMerge.Error.Overflow"},
        {"province as text",
         [] { return set(QStringLiteral("currentProvince"), QStringLiteral("3")); },
         "org.freedesktop.DBus.Error.InvalidArgs"},
        {"errorClass without a bus name",
         [] {
             QDBusArgument address;
             address.beginStructure();
             address << QStringLiteral("no bus name") << QDBusObjectPath("/errors");
             address.endStructure();
             return set(QStringLiteral("errorClass"), QVariant::fromValue(address));
         },
         "org.freedesktop.DBus.Error.InvalidArgs"},
    };
    for (const ErrorCase& c : errors) {
        const QDBusMessage reply = c.call();
        EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage) << c.name;
        EXPECT_EQ(reply.errorName(), QString::fromLatin1(c.error)) << c.name << describe(reply);
        EXPECT_FALSE(reply.errorMessage().isEmpty()) << c.name;
    }
    EXPECT_EQ(valueOf(get(QStringLiteral("currentProvince"))).toInt(), 4)
        << "a refused put keeps the value";

    // A missing template starts nothing: still no document afterwards.
    const QDBusMessage missing = method(QStringLiteral("openExistingMergeDocument"),
                                        {host.env.path("gone.qmt"), QVariant::fromValue(short(1))});
    EXPECT_EQ(missing.type(), QDBusMessage::ReplyMessage) << describe(missing);
    EXPECT_EQ(get(QStringLiteral("SQLFilter")).errorName(),
              "org.quillmere.clsDocMerge.Error.NoActiveDocument");

    host.quitAndExpectOneExit();
}

TEST(automationDBusTest, AfterTheOpeningCallIDListArrayFillsTheDocumentsList) {
    HostSession host;
    host.setUp();
    HostErrors hostErrors;
    ASSERT_TRUE(bus().registerObject(QStringLiteral("/hostErrors"), &hostErrors,
                                     QDBusConnection::ExportAllSlots));
    QDBusArgument address;
    address.beginStructure();
    address << bus().baseService() << QDBusObjectPath("/hostErrors");
    address.endStructure();
    const QDBusMessage given = set(QStringLiteral("errorClass"), QVariant::fromValue(address));
    ASSERT_EQ(given.type(), QDBusMessage::ReplyMessage) << describe(given);

    const QDBusMessage opened =
        method(QStringLiteral("openNewMergeDocument"), {QVariant::fromValue(short(1))});
    ASSERT_EQ(opened.type(), QDBusMessage::ReplyMessage) << describe(opened);
    EXPECT_TRUE(idList().isEmpty());
    // The opening call is tagged on the host's object; the accessors are not.
    waitFor([&] { return hostErrors.log.size() >= 2; }, 5000);
    EXPECT_EQ(hostErrors.log,
              QStringList({"enter:QuillmerePad.exe-clsDocMerge-openNewMergeDocument", "leave"}));

    // Hosts put the value either straight into the Set call's variant or
    // wrapped once more, as the property's own type is a variant.
    struct Case {
        const char* name;
        QVariant value;
        bool wrappedTwice;
        const char* error; // nullptr: accepted
        QList<QStringList> listAfter;
    };
    const Case cases[] = {
        {"array", QVariant::fromValue(QList<int>{11, 12}), true, nullptr, {{"11", ""}, {"12", ""}}},
        {"single number", 13, true, nullptr, {{"11", ""}, {"12", ""}, {"13", ""}}},
        {"string ignored",
         QStringLiteral("14"),
         true,
         nullptr,
         {{"11", ""}, {"12", ""}, {"13", ""}}},
        {"above 32767",
         QVariant::fromValue(QList<int>{15, 32768}),
         true,
         "org.quillmere.clsDocMerge.Error.Overflow",
         {{"11", ""}, {"12", ""}, {"13", ""}}},
        {"array in one variant",
         QVariant::fromValue(QList<int>{16}),
         false,
         nullptr,
         {{"11", ""}, {"12", ""}, {"13", ""}, {"16", ""}}},
        {"number in one variant",
         17,
         false,
         nullptr,
         {{"11", ""}, {"12", ""}, {"13", ""}, {"16", ""}, {"17", ""}}},
    };
    for (const Case& c : cases) {
        const QDBusMessage reply =
            c.wrappedTwice ? setIDListArray(c.value) : set(QStringLiteral("IDListArray"), c.value);
        if (c.error) {
            EXPECT_EQ(reply.errorName(), QString::fromLatin1(c.error)) << c.name;
        } else {
            EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << c.name << describe(reply);
        }
        EXPECT_EQ(idList(), c.listAfter) << c.name;
    }

    const QDBusMessage filter = set(QStringLiteral("SQLFilter"), QStringLiteral("CompanyID > 2"));
    EXPECT_EQ(filter.type(), QDBusMessage::ReplyMessage) << describe(filter);
    EXPECT_EQ(valueOf(get(QStringLiteral("SQLFilter"))).toString(), "CompanyID > 2");

    EXPECT_EQ(method(QStringLiteral("openDocMergeProgram")).errorName(),
              "org.quillmere.clsDocMerge.Error.AlreadyOpen");
    EXPECT_EQ(method(QStringLiteral("bringQuillmerePadToTop")).type(), QDBusMessage::ReplyMessage);
    host.quitAndExpectOneExit();
    bus().unregisterObject(QStringLiteral("/hostErrors"));
}

TEST(automationDBusTest, PerformMergeActsAsTheMergeButtonOnTheHostsRecipients) {
    HostSession host;
    host.setUp();
    const QDBusMessage opened =
        method(QStringLiteral("openNewMergeDocument"), {QVariant::fromValue(short(1))});
    ASSERT_EQ(opened.type(), QDBusMessage::ReplyMessage) << describe(opened);
    ASSERT_EQ(setIDListArray(QVariant::fromValue(QList<int>{3, 1, 2})).type(),
              QDBusMessage::ReplyMessage);
    // The host's list is the template window's own.
    EXPECT_EQ(idList(), (QList<QStringList>{{"3", ""}, {"1", ""}, {"2", ""}}));

    const QDBusMessage merged = method(QStringLiteral("performMerge"));
    ASSERT_EQ(merged.type(), QDBusMessage::ReplyMessage) << describe(merged);
    // The result window is now the active document: one letter per company,
    // in the merge's order.
    EXPECT_EQ(idList(), (QList<QStringList>{{"1", ""}, {"2", ""}, {"3", ""}}));
    EXPECT_EQ(get(QStringLiteral("SQLFilter")).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(method(QStringLiteral("bringQuillmerePadToTop")).type(), QDBusMessage::ReplyMessage);

    // The unsaved letters would ask the user before Quit ends the program;
    // nobody is there to answer, so the process goes without asking.
    const uint pid = bus().interface()->servicePid(kService).value();
    ASSERT_GT(pid, 0u);
    QProcess::execute(QStringLiteral("kill"), {QStringLiteral("-KILL"), QString::number(pid)});
    waitFor([] { return !served(); }, 10000);
}

// The end of the desktop session leaves as Quit does: the host hears of it
// once.
TEST(automationDBusTest, TheEndOfTheSessionTellsTheHostOnce) {
    HostSession host;
    host.setUp();
    ASSERT_EQ(method(QStringLiteral("openDocMergeProgram")).type(), QDBusMessage::ReplyMessage);
    const uint pid = bus().interface()->servicePid(kService).value();
    ASSERT_GT(pid, 0u);
    QProcess::execute(QStringLiteral("kill"), {QStringLiteral("-TERM"), QString::number(pid)});
    waitFor([&] { return host.listener.heard > 0 && !served(); }, 10000);
    waitFor([] { return false; }, 300);
    EXPECT_EQ(host.listener.heard, 1);
    EXPECT_FALSE(served());
}

TEST(automationDBusTest, ASecondProcessLeavesTheServingOneAlone) {
    HostSession host;
    ASSERT_EQ(get(QStringLiteral("userID")).type(), QDBusMessage::ReplyMessage);
    QProcess second;
    second.start(QStringLiteral(QM_EXECUTABLE), {QStringLiteral("--automation")});
    ASSERT_TRUE(second.waitForFinished(20000));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_TRUE(QString::fromLocal8Bit(second.readAllStandardError()).contains("serves the host"));
    EXPECT_TRUE(served());
    EXPECT_EQ(host.listener.heard, 0) << "the second process tells the host nothing";
    host.quitAndExpectOneExit();
}

TEST(automationDBusTest, AProgramWhoseHostLeftBeforeOpeningEndsInsteadOfWaiting) {
    HostSession host;
    // A host of its own process: one call, then it is gone from the bus.
    QProcess oneCall;
    oneCall.start(QStringLiteral("dbus-send"),
                  {QStringLiteral("--session"), QStringLiteral("--print-reply"),
                   QStringLiteral("--dest=") + kService, kPath,
                   QStringLiteral("org.freedesktop.DBus.Properties.Get"),
                   QStringLiteral("string:") + kInterface, QStringLiteral("string:userID")});
    ASSERT_TRUE(oneCall.waitForFinished(20000));
    ASSERT_EQ(oneCall.exitCode(), 0) << oneCall.readAllStandardError().toStdString();
    waitFor([] { return !served(); }, 10000);
    EXPECT_FALSE(served());
    waitFor([&] { return host.listener.heard > 0; }, 2000);
    EXPECT_EQ(host.listener.heard, 1);
}

// A file manager starts the program with a file while it runs: the running
// program opens it and the new process ends.
TEST(automationDBusTest, AFileOpenedWhileTheProgramRunsGoesToTheRunningOne) {
    TestEnvironment env;
    const QString desktopName = QStringLiteral("org.quillmere.QuillmerePad.Desktop");
    const QString first = env.path("letters/first.qmw");
    const QString second = env.path("letters/second letter.qmw");
    for (const QString& path : {first, second}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("{\\rtf1\\ansi Dear client,\\par}");
    }
    // A practice set up as the run command sets one up, so that the program
    // starts without a question.
    QProcess setUp;
    setUp.start(QStringLiteral(QM_EXECUTABLE), {QStringLiteral("install-sample")});
    ASSERT_TRUE(setUp.waitForFinished(60000));
    ASSERT_EQ(setUp.exitCode(), 0) << setUp.readAllStandardError().toStdString();
    QProcess running;
    running.start(QStringLiteral(QM_EXECUTABLE), {first});
    waitFor([&] { return bus().interface()->isServiceRegistered(desktopName).value(); }, 30000);
    ASSERT_TRUE(bus().interface()->isServiceRegistered(desktopName).value())
        << running.readAllStandardError().toStdString();

    // Started from the file's folder with a relative name, as a shell would.
    QProcess later;
    later.setWorkingDirectory(env.path("letters"));
    later.start(QStringLiteral(QM_EXECUTABLE), {QStringLiteral("second letter.qmw")});
    ASSERT_TRUE(later.waitForFinished(20000));
    EXPECT_EQ(later.exitCode(), 0) << later.readAllStandardError().toStdString();
    EXPECT_EQ(running.state(), QProcess::Running);

    // The running program put it at the head of its recent files.
    auto settingsName = [&] {
        QDirIterator it(QDir::homePath(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        const QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
        QStringList files;
        while (it.hasNext()) {
            files << it.next();
        }
        QDirIterator more(config, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (!config.isEmpty() && more.hasNext()) {
            files << more.next();
        }
        for (const QString& name : files) {
            QFile file(name);
            if (file.size() < 100000 && file.open(QIODevice::ReadOnly) &&
                QString::fromUtf8(file.readAll()).contains(second)) {
                return name;
            }
        }
        return QString();
    };
    waitFor([&] { return !settingsName().isEmpty(); }, 10000);
    EXPECT_FALSE(settingsName().isEmpty())
        << "the running program did not open " << second.toStdString();

    running.terminate();
    running.waitForFinished(20000);
    waitFor([&] { return !bus().interface()->isServiceRegistered(desktopName).value(); }, 5000);
    EXPECT_FALSE(bus().interface()->isServiceRegistered(desktopName).value());
}

#include "automationDBusTest.moc"
