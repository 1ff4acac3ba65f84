#include "ui/frmDocument.h"

#include "context/AppContext.h"
#include "documents/DocumentKeys.h"
#include "merge/MergeDocumentFlow.h"
#include "platform/MsgboxClass.h"
#include "ui/PageView.h"

#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QTextDocument>
#include <QVBoxLayout>

frmDocument::frmDocument(QWidget* parent) : QWidget(parent), m_layout(m_box, m_model) {
    setObjectName(QStringLiteral("frmDocument"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    m_view = new PageView(m_box, m_layout, this);
    column->addWidget(m_view);
    setFocusProxy(m_view);

    m_model.setRelayoutHook([this] { setupDocument(false, true); });
    connect(&m_box, &RichTextBox::changed, this, [this] {
        m_model.HasDocumentChanged = true;
        reportPages();
    });
    connect(&m_box, &RichTextBox::selectionChanged, this, &frmDocument::reportPages);
    connect(&m_layout, &PageLayout::pagesChanged, this, &frmDocument::reportPages);
    connect(m_view, &PageView::keyReleased, this, &frmDocument::rtfTextKeyUp);
    connect(m_view, &PageView::contextMenuWanted, this, &frmDocument::contextMenuWanted);
    m_view->installEventFilter(this);
    setupDocument(true, true);
    // Laying out a new page is no edit: a fresh document is clean and has
    // nothing to undo.
    m_box.document()->clearUndoRedoStacks();
    m_box.document()->setModified(false);
    m_model.HasDocumentChanged = false;
}

frmDocument::~frmDocument() {
    // The view paints the layout: it goes first.
    delete m_view;
    m_view = nullptr;
}

void frmDocument::setDocumentType(int type) {
    m_model.documentType = type;
    m_box.setLocked(type == DocumentKeys::LockedResultType);
}

bool frmDocument::changeTemplateInformation(InformationKind kind) {
    AppContext& ctx = app();
    const bool was = ctx.isCreatingDocument;
    ctx.isCreatingDocument = true;
    const bool changed =
        MergeDocumentFlow::changeTemplateInformation(m_model, DocumentCaption, kind);
    if (changed) {
        setDocumentType(m_model.documentType);
        if (auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget())) {
            frame->setWindowTitle(DocumentCaption);
        }
    }
    ctx.isCreatingDocument = was;
    return changed;
}

void frmDocument::setupDocument(bool resetScroll, bool /*rewrap*/) {
    setCursor(Qt::WaitCursor);
    // The page binds the text to the printed line width again, whatever the
    // word-wrap toggle had chosen.
    m_layout.setupDocument(currentPageDisplayType);
    if (resetScroll && m_view != nullptr) {
        m_view->horizontalScrollBar()->setValue(0);
        m_view->verticalScrollBar()->setValue(0);
    }
    unsetCursor();
    reportPages();
}

void frmDocument::changePageDisplayType() {
    setupDocument(false, true);
    adjustDisplayForCursorPosition();
}

void frmDocument::adjustDisplayForCursorPosition() {
    if (m_view != nullptr) {
        m_view->ensureCaretVisible();
    }
}

void frmDocument::clearRTFText() {
    m_box.setText(QString());
    setupDocument(true, true);
}

void frmDocument::SetViewMode(int mode) {
    m_layout.setViewMode(mode);
    adjustDisplayForCursorPosition();
}

void frmDocument::setSidePanel(QWidget* panel) {
    if (auto* box = qobject_cast<QBoxLayout*>(layout())) {
        box->setDirection(QBoxLayout::LeftToRight);
        box->insertWidget(0, panel);
    }
}

int frmDocument::performEdit(int message) {
    if (m_controlKey && m_view != nullptr && m_view->hasFocus()) {
        return 0;
    }
    const int result = m_box.performEdit(message);
    adjustDisplayForCursorPosition();
    return result;
}

void frmDocument::loadText(const QString& text) {
    m_layout.beginLoad();
    m_box.setText(text);
    m_layout.endLoad();
    setupDocument(true, true);
}

void frmDocument::loadFile(const QString& path) {
    m_layout.loadFile(path);
    setupDocument(true, true);
}

bool frmDocument::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_view) {
        if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease) {
            if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Control) {
                m_controlKey = event->type() == QEvent::KeyPress;
            }
        } else if (event->type() == QEvent::FocusOut) {
            m_controlKey = false;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmDocument::rtfTextKeyUp(int key, Qt::KeyboardModifiers modifiers, const QString& typed) {
    const bool alt = modifiers & Qt::AltModifier;
    const bool control = modifiers & Qt::ControlModifier;
    if ((!alt && !control && DocumentKeys::bringsCaretIntoView(key, typed)) ||
        (control && (key == Qt::Key_End || key == Qt::Key_Home))) {
        adjustDisplayForCursorPosition();
    }
    if (const auto message = DocumentKeys::messageOnKey(m_model.documentType)) {
        if (MsgboxClass* box = app().msgbox) {
            box->showMessage(*message);
        }
    }
}

void frmDocument::reportPages() {
    const int page = m_layout.currentPage();
    const int total = m_layout.laidOutPages();
    if (page != m_lastPage || total != m_lastTotal) {
        m_lastPage = page;
        m_lastTotal = total;
        Q_EMIT pageStatusChanged(page, total);
    }
}
