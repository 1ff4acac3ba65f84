#include "ui/HostedApplication.h"

#include "app/AutomationService.h"
#include "app/modMain.h"
#include "context/AppContext.h"
#include "documents/modDocument.h"
#include "merge/MergeResultDocument.h"
#include "platform/FieldTable.h"
#include "platform/TerminationSignal.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/text/stringControl.h"
#include "ui/DocumentCommands.h"
#include "ui/MergeWindowCommands.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

#include <QApplication>
#include <QMdiSubWindow>
#include <QTimer>
#include <cstdio>

HostedApplication::HostedApplication(Application& program, QtMainWindowHost& window)
    : m_program(program), m_window(window) {}

HostedApplication::~HostedApplication() {
    while (m_busy-- > 0) {
        QApplication::restoreOverrideCursor();
    }
}

void HostedApplication::setBusy(bool busy) {
    if (busy) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        ++m_busy;
    } else if (m_busy > 0) {
        QApplication::restoreOverrideCursor();
        --m_busy;
    }
}

void HostedApplication::startApplication(clsDocMerge& object) {
    m_program.startApplication(false, &object);
    m_started = true;
    if (frmMain* main = m_window.window()) {
        main->setQueryUnload([this] { m_program.exitCurrentProgram(); });
    }
}

void HostedApplication::doEventsIfInputPending() {
    ::doEventsIfInputPending();
}

frmDocument* HostedApplication::activeDocument() const {
    frmMain* main = m_window.window();
    QMdiSubWindow* sub = main ? main->activeDocumentWindow() : nullptr;
    return sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
}

void HostedApplication::createNewStandardDocument() {
    frmMain* main = m_window.window();
    if (!main) {
        throw QmError(QmError::Internal, QStringLiteral("The main window is not loaded."));
    }
    main->newDocument(++app().unnamedDocumentCount);
}

void HostedApplication::openExistingDocument(const QString& filePath) {
    frmMain* main = m_window.window();
    DocumentCommands* documents = main ? documentCommands(*main) : nullptr;
    if (!documents) {
        throw QmError(QmError::Internal, QStringLiteral("The main window is not loaded."));
    }
    // The window's own opening routine: a file it cannot read is told to the
    // user there, and leaves no window.
    documents->openExistingDocument(filePath, 0);
}

bool HostedApplication::hasActiveDocument() const {
    return activeDocument() != nullptr;
}

QString HostedApplication::SQLFilter() const {
    return activeDocument()->SQLFilter;
}

void HostedApplication::setSQLFilter(const QString& filter) {
    activeDocument()->SQLFilter = filter;
}

void HostedApplication::connectToRemittRST() {
    frmDocument* document = activeDocument();
    const InformationKind kind = document->InformationType();
    if (!isSearchKind(kind) || stringControl::isBlank(document->SQLFilter)) {
        return;
    }
    // The filter is tried on the search at once, so that one the record set
    // cannot take reaches the host now rather than at the merge.
    MergeResultDocument probe;
    probe.model.InformationType = kind;
    probe.taskSearch = document->taskSearch;
    probe.appointmentSearch = document->appointmentSearch;
    probe.SQLFilter = document->SQLFilter;
    probe.connectToRemittRST();
}

FieldTable& HostedApplication::IDList() {
    return activeDocument()->IDList;
}

void HostedApplication::changeTemplateInformation(int mergeType) {
    frmDocument* document = activeDocument();
    frmMain* main = m_window.window();
    auto* commands = main ? main->findChild<MergeWindowCommands*>() : nullptr;
    if (mergeType < toInt(InformationKind::Companies) ||
        mergeType > toInt(InformationKind::WorkListTasks)) {
        throw DocMergeError(
            DocMergeError::Kind::TypeMismatch,
            QStringLiteral("mergeType %1 is not an information type (1 to 8).").arg(mergeType));
    }
    if (!commands) {
        throw QmError(QmError::Internal, QStringLiteral("The merge tools are not loaded."));
    }
    commands->changeTemplateInformation(*document, static_cast<InformationKind>(mergeType));
}

void HostedApplication::performMerge() {
    frmDocument* document = activeDocument();
    frmMain* main = m_window.window();
    auto* commands = main ? main->findChild<MergeWindowCommands*>() : nullptr;
    if (!commands || !document) {
        throw DocMergeError(DocMergeError::Kind::NotAvailable,
                            QStringLiteral("The active document has no window to merge from."));
    }
    // The host's list or filter, when it gave one, is the merge's.
    commands->mergeDocument(*document, MergeWindowCommands::Recipients::GivenFirst);
}

void HostedApplication::bringToForeground() {
    if (frmMain* main = m_window.window()) {
        main->show();
        main->raise();
        main->activateWindow();
    }
}

void HostedApplication::exitCurrentProgram() {
    if (m_started) {
        m_program.exitCurrentProgram();
        // A Cancel at a document's question keeps the program, and the
        // host's session, running.
        if (!m_program.hasExited()) {
            return;
        }
    } else if (m_service) {
        m_service->programEnds();
    }
    // Queued, so that the answer to the call that ended the program leaves
    // first.
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
}

int runAutomation(Application& program, QtMainWindowHost& window) {
    HostedApplication hosted(program, window);
    clsDocMerge object(hosted);
    AutomationService service(object);
    switch (service.start()) {
    case AutomationService::Outcome::Serving:
        break;
    case AutomationService::Outcome::AlreadyServed:
        // The host reaches the process that serves; this one is not needed.
        std::fputs(qPrintable(service.lastError() + QLatin1Char('\n')), stderr);
        return 0;
    case AutomationService::Outcome::NoBus:
        std::fputs(qPrintable(service.lastError() + QLatin1Char('\n')), stderr);
        return 1;
    }
    hosted.setService(&service);
    service.setAbandonedHandler([&hosted] { hosted.exitCurrentProgram(); });
    // Every way out (Quit, the window closed, an error answered with "end")
    // passes through the exit routine, which tells the host here.
    program.setExitDocMergeHook([&service] {
        service.programEnds();
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    });
    // The end of the desktop session leaves the way the host's Quit does.
    const TerminationSignal sessionEnd([&hosted] { hosted.exitCurrentProgram(); });
    QApplication::setQuitOnLastWindowClosed(false);
    const int code = QApplication::exec();
    service.programEnds();
    // The application object outlives the service it was told to tell.
    program.setExitDocMergeHook(nullptr);
    return code;
}
