#include "ui/DocumentCommands.h"

#include "app/MenuDefinition.h"
#include "context/AppContext.h"
#include "documents/DocumentModel.h"
#include "files/clsINI.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"
#include "ui/CommandActions.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QCloseEvent>
#include <QDropEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QTextDocument>
#include <QTimer>
#include <QUrl>

namespace {

// A document window as the lifecycle sees it.
class WindowDocument : public LifecycleDocument {
public:
    explicit WindowDocument(frmDocument& document) : m_document(document) {}

    DocumentModel& model() override { return m_document.model(); }
    RichTextBox& box() override { return m_document.rtfText(); }
    QString caption() const override { return m_document.DocumentCaption; }
    void setCaption(const QString& caption) override {
        m_document.DocumentCaption = caption;
        m_document.setWindowTitle(caption);
        if (auto* sub = qobject_cast<QMdiSubWindow*>(m_document.parentWidget())) {
            sub->setWindowTitle(caption);
        }
    }
    QString fileName() const override { return m_document.DocumentFileName; }
    void setFileName(const QString& path) override { m_document.DocumentFileName = path; }
    void reload(const QString& path, int format) override {
        m_document.clearRTFText();
        PageLayout& layout = m_document.pageLayout();
        layout.beginLoad();
        try {
            m_document.rtfText().LoadFile(path, format);
        } catch (const QmError&) {
            layout.endLoad();
            m_document.setupDocument(true, true);
            throw;
        }
        layout.endLoad();
        m_document.setupDocument(true, true);
        m_document.rtfText().document()->clearUndoRedoStacks();
    }
    void showContinuous() override {
        m_document.currentPageDisplayType = PageLayout::ContinuousDisplay;
        m_document.changePageDisplayType();
    }
    bool closesSilently() const override { return m_document.property("closeSilently").toBool(); }

private:
    frmDocument& m_document;
};

frmDocument* documentIn(QMdiSubWindow* sub) {
    return sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
}

// The standard tool bar's word-wrap toggle.
QString wordWrapCommand() {
    return buttonCommandId(QStringLiteral("tbrStandard"), QStringLiteral("WordWrap"));
}

} // namespace

DocumentCommands::DocumentCommands(frmMain& window)
    : QObject(&window), m_window(window), m_lifecycle(*this) {
    setObjectName(QStringLiteral("DocumentCommands"));
    m_statusRetry.setSingleShot(true);
    m_statusRetry.setInterval(100);
    connect(&m_statusRetry, &QTimer::timeout, this, &DocumentCommands::scheduleStatus);
    connect(&window, &frmMain::documentWindowAdded, this, &DocumentCommands::onWindowAdded);
    connect(window.MDIArea(), &QMdiArea::subWindowActivated, this,
            &DocumentCommands::scheduleStatus);
    registerRoutes();
    // Files dropped anywhere on the main window open as documents.
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

DocumentCommands::~DocumentCommands() {
    for (auto& [document, lifecycle] : m_documents) {
        document->removeEventFilter(this);
    }
}

void DocumentCommands::registerRoutes() {
    struct NewRoute {
        const char* command;
        NewDocumentKind kind;
    };
    static const NewRoute kNew[] = {
        {"mnuFileNewStandard", NewDocumentKind::Standard},
        {"mnuFileNewCompany", NewDocumentKind::Company},
        {"mnuFileNewCompanyContact", NewDocumentKind::CompanyContact},
        {"mnuFileNewContact", NewDocumentKind::Contact},
        {"mnuFileNewRemitt", NewDocumentKind::Remitt},
        {"mnuFileNewAppointment", NewDocumentKind::Appointment},
    };
    for (const NewRoute& route : kNew) {
        m_window.addRoute(QLatin1String(route.command),
                          [this, kind = route.kind] { m_lifecycle.createNewDocument(kind); });
    }
    m_window.addRoute(QStringLiteral("mnuFileOpenNormal"), [this] { m_lifecycle.OpenDocument(); });
    m_window.addRoute(QStringLiteral("mnuFileSave"), [this] {
        withActive([this](LifecycleDocument& d) { m_lifecycle.SaveDocument(d); });
    });
    m_window.addRoute(QStringLiteral("mnuFileSaveAs"), [this] {
        withActive([this](LifecycleDocument& d) { m_lifecycle.SaveDocumentAs(d); });
    });
    m_window.addRoute(QStringLiteral("mnuFileSaveAll"), [this] { m_lifecycle.SaveAllDocuments(); });
    m_window.addRoute(QStringLiteral("mnuFileSaveSelectionAs"), [this] {
        withActive([this](LifecycleDocument&) { m_lifecycle.SaveSelectionAs(); });
    });
    m_window.addRoute(QStringLiteral("mnuFileRevert"), [this] {
        withActive([this](LifecycleDocument&) { m_lifecycle.RevertDocument(); });
    });
    m_window.addRoute(QStringLiteral("mnuFileClose"), [this] {
        if (QMdiSubWindow* sub = m_window.activeDocumentWindow()) {
            sub->close();
        } else if (MsgboxClass* box = app().msgbox) {
            box->showMessage(QStringLiteral("There are no open documents."));
        }
    });
    m_window.addRoute(QStringLiteral("mnuFileCloseAll"), [this] { unloadAllDocuments(); });
    // Down: lines wrap at the window; up: lines never wrap. Laying the
    // document out again (page setup, display type) binds it to the page.
    if (QAction* wrap = m_window.commands()->action(wordWrapCommand())) {
        wrap->setCheckable(true);
        wrap->setToolTip(QStringLiteral("Toggle Word Wrap"));
        m_window.addRoute(wordWrapCommand(), [this, wrap] {
            if (frmDocument* document = activeFrm()) {
                document->SetViewMode(wrap->isChecked() ? PageLayout::WrapAtWindow
                                                        : PageLayout::NoWrap);
            }
            scheduleStatus();
        });
    }
}

void DocumentCommands::withActive(const std::function<void(LifecycleDocument&)>& routine) {
    if (LifecycleDocument* document = activeDocument()) {
        routine(*document);
    } else if (MsgboxClass* box = app().msgbox) {
        box->showMessage(QStringLiteral("There are no open documents."));
    }
    scheduleStatus();
}

LifecycleDocument* DocumentCommands::documentOf(frmDocument* document) {
    if (!document) {
        return nullptr;
    }
    auto found = m_documents.find(document);
    if (found == m_documents.end()) {
        found = m_documents.emplace(document, std::make_unique<WindowDocument>(*document)).first;
        document->installEventFilter(this);
        connect(document, &QObject::destroyed, this,
                [this, document] { m_documents.erase(document); });
    }
    return found->second.get();
}

void DocumentCommands::onWindowAdded(QMdiSubWindow* sub) {
    frmDocument* document = documentIn(sub);
    if (!document) {
        return;
    }
    m_added = document;
    documentOf(document);
    connect(&document->rtfText(), &RichTextBox::selectionChanged, this,
            &DocumentCommands::scheduleStatus);
    connect(&document->rtfText(), &RichTextBox::changed, this, &DocumentCommands::scheduleStatus);
    connect(document, &frmDocument::pageStatusChanged, this, &DocumentCommands::scheduleStatus);
    scheduleStatus();
}

bool DocumentCommands::dropEvent(QEvent* event) {
    if (event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove) {
        auto* drag = static_cast<QDragMoveEvent*>(event);
        // Only a list of files is taken.
        if (drag->mimeData()->hasUrls()) {
            drag->acceptProposedAction();
        } else {
            drag->ignore();
        }
        return true;
    }
    if (event->type() != QEvent::Drop) {
        return false;
    }
    auto* drop = static_cast<QDropEvent*>(event);
    for (const QUrl& url : drop->mimeData()->urls()) {
        if (url.isLocalFile()) {
            m_lifecycle.OpenExistingDocument(url.toLocalFile(),
                                             droppedFileSaveType(url.toLocalFile()));
        }
    }
    drop->acceptProposedAction();
    return true;
}

bool DocumentCommands::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &m_window) {
        return dropEvent(event) || QObject::eventFilter(watched, event);
    }
    if (event->type() != QEvent::Close) {
        return QObject::eventFilter(watched, event);
    }
    auto* document = qobject_cast<frmDocument*>(watched);
    if (!document || document == m_unloading) {
        return false;
    }
    LifecycleDocument* lifecycle = documentOf(document);
    if (!m_lifecycle.queryUnload(*lifecycle)) {
        event->ignore();
        return true;
    }
    // The window's state is kept for the next document, unless minimised.
    if (clsINI* ini = app().iniSettings) {
        auto* sub = qobject_cast<QMdiSubWindow*>(document->parentWidget());
        if (sub && !sub->isMinimized()) {
            ini->setKeyValue(QStringLiteral("Document"), QStringLiteral("WindowState"),
                             sub->isMaximized() ? QStringLiteral("2") : QStringLiteral("0"));
        }
    }
    return false;
}

std::vector<LifecycleDocument*> DocumentCommands::documents() {
    std::vector<LifecycleDocument*> result;
    for (QMdiSubWindow* sub : m_window.MDIArea()->subWindowList()) {
        if (LifecycleDocument* document = documentOf(documentIn(sub))) {
            result.push_back(document);
        }
    }
    return result;
}

frmDocument* DocumentCommands::activeFrm() const {
    return documentIn(m_window.activeDocumentWindow());
}

LifecycleDocument* DocumentCommands::activeDocument() {
    return documentOf(activeFrm());
}

LifecycleDocument* DocumentCommands::newDocumentWindow(const QString& caption) {
    m_added = nullptr;
    m_window.newDocument(app().unnamedDocumentCount);
    LifecycleDocument* document = documentOf(m_added.data());
    if (document) {
        document->setCaption(caption);
    }
    return document;
}

LifecycleDocument* DocumentCommands::openDocumentWindow(const QString& path) {
    return documentOf(m_window.openDocumentWindow(path));
}

void DocumentCommands::activate(LifecycleDocument& document) {
    for (QMdiSubWindow* sub : m_window.MDIArea()->subWindowList()) {
        if (documentOf(documentIn(sub)) == &document) {
            m_window.MDIArea()->setActiveSubWindow(sub);
        }
    }
}

void DocumentCommands::unload(LifecycleDocument& document) {
    for (QMdiSubWindow* sub : m_window.MDIArea()->subWindowList()) {
        frmDocument* frm = documentIn(sub);
        if (documentOf(frm) == &document) {
            m_unloading = frm;
            sub->close();
            m_unloading = nullptr;
            return;
        }
    }
}

std::optional<bool> DocumentCommands::saveMergeDoc(LifecycleDocument& document) {
    if (!m_mergeSaver) {
        return std::nullopt;
    }
    for (const auto& [frm, lifecycle] : m_documents) {
        if (lifecycle.get() == &document) {
            return m_mergeSaver(*frm);
        }
    }
    return false;
}

bool DocumentCommands::openExistingDocument(const QString& path, int fileSaveType) {
    return m_lifecycle.OpenExistingDocument(path, fileSaveType) != nullptr;
}

void DocumentCommands::deleteDocumentFile(const QString& path) {
    m_lifecycle.deleteDocumentFile(path);
}

bool DocumentCommands::unloadAllDocuments() {
    QList<QMdiSubWindow*> order = m_window.MDIArea()->subWindowList();
    // The active document is asked about first, as the user sees it.
    if (QMdiSubWindow* active = m_window.activeDocumentWindow()) {
        order.removeOne(active);
        order.prepend(active);
    }
    for (const QPointer<QMdiSubWindow>& sub :
         QList<QPointer<QMdiSubWindow>>(order.begin(), order.end())) {
        if (sub && sub->isVisible() && !sub->close()) {
            return false;
        }
    }
    return true;
}

void DocumentCommands::scheduleStatus() {
    // Many signals come from one keystroke; the counts are taken once.
    if (m_statusPending) {
        return;
    }
    m_statusPending = true;
    QTimer::singleShot(0, this, &DocumentCommands::refreshStatus);
}

void DocumentCommands::refreshStatus() {
    m_statusPending = false;
    if (app().isCreatingDocument) {
        // Counted once the document is made, not dropped: the first document
        // of a start-up would otherwise show no page and line counts.
        m_statusRetry.start();
        return;
    }
    frmDocument* document = activeFrm();
    if (QAction* wrap = m_window.commands()->action(wordWrapCommand())) {
        wrap->setChecked(document != nullptr &&
                         document->pageLayout().viewMode() == PageLayout::WrapAtWindow);
    }
    if (!document) {
        for (int panel : {1, 3, 5}) {
            m_window.setStatusPanel(panel, QString());
        }
        return;
    }
    const LineStatus lines = documentLineStatus(*document->rtfText().document(),
                                                document->rtfText().textCursor().position());
    m_window.setStatusPanel(3, formatLineCount(lines.current));
    m_window.setStatusPanel(5, formatLineCount(lines.total));
    const int total = document->pageLayout().laidOutPages();
    m_window.setStatusPanel(1, pageStatusText(std::min(document->currentPage(), total), total));
}

void installDocumentCommands(frmMain& window) {
    new DocumentCommands(window);
}

DocumentCommands* documentCommands(const frmMain& window) {
    return window.findChild<DocumentCommands*>(QStringLiteral("DocumentCommands"),
                                               Qt::FindDirectChildrenOnly);
}
