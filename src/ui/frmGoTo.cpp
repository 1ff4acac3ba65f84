#include "ui/frmGoTo.h"

#include "context/AppContext.h"
#include "platform/MsgboxClass.h"
#include "ui/PageView.h"
#include "ui/frmDocument.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

namespace {

QRadioButton* option(const char* name, const QString& caption, QWidget* parent) {
    auto* b = new QRadioButton(caption, parent);
    b->setObjectName(QLatin1String(name));
    return b;
}

} // namespace

frmGoTo::frmGoTo(DocumentSource document, QWidget* parent)
    : QDialog(parent), m_document(std::move(document)) {
    setObjectName(QStringLiteral("frmGoTo"));
    setWindowTitle(QStringLiteral("Go To"));

    m_prompt = new QLabel(this);
    m_prompt->setObjectName(QStringLiteral("lblGo"));
    m_number = new QLineEdit(this);
    m_number->setObjectName(QStringLiteral("txtGo"));
    // Digits only: a sign or a letter cannot be typed or pasted.
    m_number->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("[0-9]{0,9}")), m_number));
    m_prompt->setBuddy(m_number);

    auto* frame = new QGroupBox(QStringLiteral("Go to what:"), this);
    frame->setObjectName(QStringLiteral("fraGoTo"));
    m_start = option("GotoStart", QStringLiteral("&Start"), frame);
    m_line = option("GotoLine", QStringLiteral("&Line"), frame);
    m_end = option("GoToEnd", QStringLiteral("End"), frame);
    m_page = option("GotoPage", QStringLiteral("&Page"), frame);
    m_line->setChecked(true);
    auto* options = new QVBoxLayout(frame);
    for (QRadioButton* b : {m_start, m_line, m_end, m_page}) {
        options->addWidget(b);
        connect(b, &QRadioButton::toggled, this, &frmGoTo::showPrompt);
    }

    m_go = new QPushButton(QStringLiteral("&Go To"), this);
    m_go->setObjectName(QStringLiteral("cmdGo"));
    m_go->setDefault(true);
    m_go->setEnabled(false);
    auto* close = new QPushButton(QStringLiteral("&Close"), this);
    close->setObjectName(QStringLiteral("cmdClose"));
    close->setAutoDefault(false);

    auto* buttons = new QVBoxLayout;
    buttons->addWidget(m_go);
    buttons->addWidget(close);
    buttons->addStretch();
    auto* fields = new QVBoxLayout;
    fields->addWidget(m_prompt);
    fields->addWidget(m_number);
    fields->addWidget(frame);
    auto* row = new QHBoxLayout(this);
    row->addLayout(fields, 1);
    row->addLayout(buttons);

    connect(m_number, &QLineEdit::textChanged, this,
            [this](const QString& text) { m_go->setEnabled(!text.isEmpty()); });
    connect(m_go, &QPushButton::clicked, this, &frmGoTo::cmdGo_Click);
    connect(close, &QPushButton::clicked, this, &QDialog::hide);
    showPrompt();
}

GoToWhat frmGoTo::chosen() const {
    if (m_start->isChecked()) {
        return GoToWhat::Start;
    }
    if (m_end->isChecked()) {
        return GoToWhat::End;
    }
    if (m_page->isChecked()) {
        return GoToWhat::Page;
    }
    return GoToWhat::Line;
}

void frmGoTo::showPrompt() {
    const QString text = chosen() == GoToWhat::Page
                             ? QStringLiteral("Enter page number you want to go to")
                             : QStringLiteral("Enter line number you want to go to");
    m_prompt->setText(text);
    m_number->setAccessibleName(text);
}

void frmGoTo::cmdGo_Click() {
    frmDocument* document = m_document();
    if (document == nullptr) {
        return;
    }
    const GoToAnswer answer =
        goToTarget(document->rtfText(), document->pageLayout(), chosen(), m_number->text());
    if (answer.selStart < 0) {
        if (MsgboxClass* box = app().msgbox) {
            box->showMessage(answer.message);
        }
        return;
    }
    document->rtfText().setSelStart(answer.selStart);
    document->pageView()->setFocus();
    document->adjustDisplayForCursorPosition();
}
