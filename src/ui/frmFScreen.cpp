#include "ui/frmFScreen.h"

#include "ui/PageView.h"
#include "ui/frmDocument.h"

#include <QKeyEvent>
#include <QVBoxLayout>

frmFScreen::frmFScreen(frmDocument& document)
    : QWidget(nullptr, Qt::Window), m_document(&document),
      m_view(new PageView(document.rtfText(), document.pageLayout(), this)) {
    setObjectName(QStringLiteral("frmFScreen"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(document.DocumentCaption);
    m_view->setObjectName(QStringLiteral("rtfTextFullScreen"));
    m_view->setAccessibleName(document.DocumentCaption);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_view);
    setFocusProxy(m_view);
    // Caught before the view, which would take Escape as an edit key.
    m_view->installEventFilter(this);
    // The view paints the document's layout: it must never outlive it. The
    // document's own view goes first in its destructor, so this one is
    // dropped at the same moment, before the layout is gone.
    connect(document.pageView(), &QObject::destroyed, this, [this] {
        delete m_view;
        m_view = nullptr;
        close();
    });
}

frmFScreen::~frmFScreen() {
    // Back to where the user was typing.
    if (m_document && m_document->pageView()) {
        m_document->activateWindow();
        m_document->pageView()->setFocus();
    }
}

bool frmFScreen::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_view && event->type() == QEvent::KeyPress && isLeaveKey(event)) {
        close();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void frmFScreen::keyPressEvent(QKeyEvent* event) {
    if (isLeaveKey(event)) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

bool frmFScreen::isLeaveKey(QEvent* event) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    return key == Qt::Key_Escape || key == Qt::Key_F11;
}
