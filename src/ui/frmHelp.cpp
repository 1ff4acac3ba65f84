#include "ui/frmHelp.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace {
const QUrl kGuide(QStringLiteral("qrc:/help/guide.html"));
} // namespace

frmHelp::frmHelp(QWidget* parent)
    : QDialog(parent), m_browser(new QTextBrowser(this)), m_search(new QLineEdit(this)) {
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(QStringLiteral("Quillmere Pad Help"));
    setModal(false);
    auto* column = new QVBoxLayout(this);
    auto* bar = new QHBoxLayout;
    QPushButton* contents = new QPushButton(QStringLiteral("&Contents"), this);
    contents->setObjectName(QStringLiteral("cmdHelpContents"));
    QPushButton* index = new QPushButton(QStringLiteral("&Index"), this);
    index->setObjectName(QStringLiteral("cmdHelpIndex"));
    auto* label = new QLabel(QStringLiteral("&Search:"), this);
    label->setBuddy(m_search);
    m_search->setObjectName(QStringLiteral("txtHelpSearch"));
    m_search->setAccessibleName(QStringLiteral("Search the guide"));
    m_search->setClearButtonEnabled(true);
    QPushButton* find = new QPushButton(QStringLiteral("&Find"), this);
    find->setObjectName(QStringLiteral("cmdHelpFind"));
    bar->addWidget(contents);
    bar->addWidget(index);
    bar->addSpacing(12);
    bar->addWidget(label);
    bar->addWidget(m_search, 1);
    bar->addWidget(find);
    column->addLayout(bar);

    m_browser->setObjectName(QStringLiteral("txtHelp"));
    m_browser->setAccessibleName(QStringLiteral("User's guide"));
    m_browser->setOpenExternalLinks(true);
    m_browser->setSource(kGuide);
    column->addWidget(m_browser, 1);
    resize(760, 620);

    connect(contents, &QPushButton::clicked, this, [this] { showTopic(Contents); });
    connect(index, &QPushButton::clicked, this, [this] { showTopic(Index); });
    const auto search = [this] { findText(m_search->text()); };
    connect(find, &QPushButton::clicked, this, search);
    connect(m_search, &QLineEdit::returnPressed, this, search);
}

void frmHelp::showTopic(Topic topic) {
    QUrl where = kGuide;
    if (topic == Index) {
        where.setFragment(QStringLiteral("index"));
    } else if (topic == Editing) {
        where.setFragment(QStringLiteral("editing"));
    }
    if (m_browser->source() != where) {
        m_browser->setSource(where);
    }
    if (topic == Contents) {
        m_browser->scrollToAnchor(QStringLiteral("contents"));
    }
    show();
    raise();
    activateWindow();
    if (topic == Search) {
        m_search->setFocus();
        m_search->selectAll();
    }
}

bool frmHelp::findText(const QString& text) {
    if (text.trimmed().isEmpty()) {
        return false;
    }
    if (m_browser->find(text)) {
        return true;
    }
    // Round again from the top.
    QTextCursor top = m_browser->textCursor();
    top.movePosition(QTextCursor::Start);
    m_browser->setTextCursor(top);
    return m_browser->find(text);
}
