#include "ui/frmFScreen.h"

#include "ui/PageView.h"
#include "ui/frmDocument.h"

#include <QShortcut>
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
    for (const QKeySequence& key : {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::Key_F11)}) {
        auto* shortcut = new QShortcut(key, this);
        connect(shortcut, &QShortcut::activated, this, &QWidget::close);
    }
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
