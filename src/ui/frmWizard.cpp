#include "ui/frmWizard.h"

#include "app/modOpenDocumentsWizard.h"
#include "context/AppContext.h"
#include "platform/FileDialogs.h"
#include "platform/MsgboxClass.h"

#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

enum Nav { Back = 0, Next = 1, Finish = 2, Cancel = 3 };

// The step that asks for the file.
constexpr int kChooseStep = 2;

} // namespace

frmWizard::frmWizard(QWidget* parent) : QDialog(parent), m_steps(new QStackedWidget(this)) {
    setObjectName(QStringLiteral("frmWizard"));
    setWindowTitle(QStringLiteral("Open Documents Wizard"));

    auto* links = new QVBoxLayout;
    for (int i = 0; i < openWizardStepCount(); ++i) {
        auto* link = new QLabel(this);
        link->setObjectName(QStringLiteral("lblStep%1").arg(i));
        link->setText(QStringLiteral("<a href=\"%1\">%2. %3</a>")
                          .arg(i)
                          .arg(i + 1)
                          .arg(openWizardStepTitle(i).toHtmlEscaped()));
        link->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
        connect(link, &QLabel::linkActivated, this,
                [this](const QString& target) { SetStep(target.toInt()); });
        links->addWidget(link);
        m_stepLinks << link;

        auto* frame = new QFrame(m_steps);
        frame->setObjectName(QStringLiteral("fraStep%1").arg(i));
        auto* column = new QVBoxLayout(frame);
        auto* title = new QLabel(
            QStringLiteral("<b>%1</b>").arg(openWizardStepTitle(i).toHtmlEscaped()), frame);
        column->addWidget(title);
        auto* text = new QLabel(openWizardStepText(i), frame);
        text->setObjectName(QStringLiteral("lblStepText%1").arg(i));
        text->setWordWrap(true);
        column->addWidget(text);
        if (i == kChooseStep) {
            auto* row = new QHBoxLayout;
            m_file = new QLineEdit(frame);
            m_file->setObjectName(QStringLiteral("txtFileName"));
            m_file->setAccessibleName(QStringLiteral("Document to open"));
            row->addWidget(m_file, 1);
            auto* browse = new QPushButton(QStringLiteral("&Browse..."), frame);
            browse->setObjectName(QStringLiteral("cmdBrowse"));
            connect(browse, &QPushButton::clicked, this, &frmWizard::cmdBrowse_Click);
            row->addWidget(browse);
            column->addLayout(row);
        }
        column->addStretch(1);
        m_steps->addWidget(frame);
    }
    links->addStretch(1);

    auto* body = new QHBoxLayout;
    body->addLayout(links);
    body->addWidget(m_steps, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    const char* captions[] = {"< &Back", "&Next >", "&Finish", "Cancel"};
    for (int i = 0; i < 4; ++i) {
        auto* button = new QPushButton(QLatin1String(captions[i]), this);
        button->setObjectName(QStringLiteral("cmdNav%1").arg(i));
        button->setAutoDefault(false);
        buttons->addWidget(button);
        m_nav << button;
    }
    connect(m_nav[Back], &QPushButton::clicked, this, [this] { SetStep(m_step - 1); });
    connect(m_nav[Next], &QPushButton::clicked, this, [this] { SetStep(m_step + 1); });
    connect(m_nav[Finish], &QPushButton::clicked, this, &frmWizard::finish);
    connect(m_nav[Cancel], &QPushButton::clicked, this, &QDialog::reject);

    auto* column = new QVBoxLayout(this);
    column->addLayout(body, 1);
    column->addLayout(buttons);
    resize(600, 320);
    SetStep(0);
}

void frmWizard::SetStep(int n) {
    if (n < 0 || n >= openWizardStepCount()) {
        return;
    }
    m_step = n;
    m_steps->setCurrentIndex(n);
    for (int i = 0; i < m_stepLinks.size(); ++i) {
        QFont font = m_stepLinks[i]->font();
        font.setBold(i == n);
        m_stepLinks[i]->setFont(font);
    }
    SetNavBtns(n);
    if (n == kChooseStep) {
        m_file->setFocus();
    }
}

void frmWizard::SetNavBtns(int n) {
    const WizardButtons b = openWizardButtons(n);
    m_nav[Back]->setEnabled(b.back);
    m_nav[Next]->setEnabled(b.next);
    m_nav[Finish]->setEnabled(b.finish);
    (b.finish ? m_nav[Finish] : m_nav[Next])->setDefault(true);
}

void frmWizard::cmdBrowse_Click() {
    FileDialogs* dialogs = app().fileDialogs;
    if (!dialogs) {
        return;
    }
    const QString start = m_file->text().isEmpty() ? QString() : QFileInfo(m_file->text()).path();
    const auto chosen =
        dialogs->openFileName(QStringLiteral("Open Document"), start, openWizardFileFilter());
    if (chosen) {
        m_file->setText(*chosen);
    }
}

void frmWizard::finish() {
    const QString problem = checkDocumentToOpen(chosenFile());
    if (problem.isEmpty()) {
        accept();
        return;
    }
    if (MsgboxClass* box = app().msgbox) {
        box->showMessage(problem);
    }
    SetStep(kChooseStep);
}

QString frmWizard::chosenFile() const {
    return m_file->text().trimmed();
}
