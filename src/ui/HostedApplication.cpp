#include "ui/HostedApplication.h"

#include "app/AutomationService.h"
#include "app/modMain.h"
#include "context/AppContext.h"
#include "documents/modDocument.h"
#include "merge/MergeResultDocument.h"
#include "platform/TerminationSignal.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/richtext/RichTextBox.h"
#include "ui/MergeWindowCommands.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

#include <QApplication>
#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTextEdit>
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

HostedApplication::Document& HostedApplication::addDocument(const QString& caption) {
    frmMain* main = m_window.window();
    if (!main) {
        throw QmError(QmError::Internal, QStringLiteral("The main window is not loaded."));
    }
    main->newDocument(++app().unnamedDocumentCount);
    auto document = std::make_unique<Document>();
    document->window = main->MDIArea()->subWindowList().last();
    if (!caption.isEmpty()) {
        document->window->setWindowTitle(caption);
    }
    document->merge = std::make_unique<MergeResultDocument>();
    document->merge->templateCaption = document->window->windowTitle();
    m_documents.push_back(std::move(document));
    return *m_documents.back();
}

void HostedApplication::createNewStandardDocument() {
    addDocument(QString());
}

void HostedApplication::openExistingDocument(const QString& filePath) {
    RichTextBox box;
    try {
        box.LoadFile(filePath, RichTextBox::rtfRTF);
    } catch (const QmError& fault) {
        // Documents of other programs and plain text come in as text.
        if (fault.number() != QmError::InvalidFileFormat) {
            throw;
        }
        box.LoadFile(filePath, RichTextBox::rtfText);
    }
    Document& document = addDocument(QFileInfo(filePath).completeBaseName());
    openCompanionInformation(filePath, document.merge->model);
    if (auto* window = qobject_cast<frmDocument*>(document.window->widget())) {
        // The window is what the user reads and what the merge button merges.
        const DocumentModel& from = document.merge->model;
        window->setDocumentType(from.documentType);
        window->setInformationType(from.InformationType);
        window->setFileSaveType(from.fileSaveType);
        window->model().PaperSize = from.PaperSize;
        window->putDocumentOrientation(from.getDocumentOrientation(), false);
        window->putPageWidth(from.getPageWidth(), false);
        window->putPageHeight(from.getPageHeight(), false);
        window->putLeftMargin(from.getLeftMargin(), false);
        window->putRightMargin(from.getRightMargin(), false);
        window->putTopMargin(from.getTopMargin(), false);
        window->putBottomMargin(from.getBottomMargin(), false);
        window->loadText(box.TextRTF());
        window->DocumentFileName = filePath;
        window->DocumentCaption = document.window->windowTitle();
        window->setHasDocumentChanged(false);
        window->setIsDocumentSaved(true);
    } else if (auto* editor = qobject_cast<QTextEdit*>(document.window->widget())) {
        editor->setDocument(box.document()->clone(editor));
    }
}

HostedApplication::Document* HostedApplication::activeDocument() const {
    frmMain* main = m_window.window();
    if (!main) {
        return nullptr;
    }
    QMdiSubWindow* current = main->MDIArea()->currentSubWindow();
    Document* last = nullptr;
    for (const auto& document : m_documents) {
        if (!document->window) {
            continue; // closed by the user
        }
        if (document->window == current) {
            return document.get();
        }
        last = document.get();
    }
    // Without a focused window (hidden or offscreen) the newest one counts.
    return current ? nullptr : last;
}

bool HostedApplication::hasActiveDocument() const {
    return activeDocument() != nullptr;
}
QString HostedApplication::SQLFilter() const {
    return activeDocument()->merge->SQLFilter;
}
void HostedApplication::setSQLFilter(const QString& filter) {
    activeDocument()->merge->SQLFilter = filter;
}
void HostedApplication::connectToRemittRST() {
    activeDocument()->merge->connectToRemittRST();
}
FieldTable& HostedApplication::IDList() {
    return activeDocument()->merge->IDList;
}

void HostedApplication::changeTemplateInformation(int mergeType) {
    Document* document = activeDocument();
    const bool wasCreating = app().isCreatingDocument;
    app().isCreatingDocument = true;
    document->merge->model.documentType = DocumentModel::Template;
    document->merge->model.InformationType = static_cast<InformationKind>(mergeType);
    QString caption = document->window->windowTitle();
    const QString prefix = QStringLiteral("Merge Template - ");
    if (!caption.startsWith(prefix)) {
        caption = prefix + caption;
    }
    document->window->setWindowTitle(caption);
    document->merge->templateCaption = caption;
    app().isCreatingDocument = wasCreating;
}

void HostedApplication::performMerge() {
    Document* document = activeDocument();
    frmMain* main = m_window.window();
    auto* commands = main ? main->findChild<MergeWindowCommands*>() : nullptr;
    auto* window = document && document->window
                       ? qobject_cast<frmDocument*>(document->window->widget())
                       : nullptr;
    if (!commands || !window) {
        throw DocMergeError(DocMergeError::Kind::NotAvailable,
                            QStringLiteral("The active document has no window to merge from."));
    }
    // What the host set on its document is what the merge button reads.
    const DocumentModel& model = document->merge->model;
    if (model.documentType == DocumentModel::Template) {
        window->setDocumentType(DocumentModel::Template);
        window->setInformationType(model.InformationType);
    }
    if (window->DocumentCaption.isEmpty()) {
        window->DocumentCaption = document->window->windowTitle();
    }
    document->merge->IDList.copyEntireListToSecondList(window->IDList);
    window->SQLFilter = document->merge->SQLFilter;
    commands->mergeDocument(*window);
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
