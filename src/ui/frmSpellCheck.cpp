#include "ui/frmSpellCheck.h"

#include "spell/SpellCheckSession.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QLabel* labelFor(QWidget* buddy, const QString& caption, QWidget* parent) {
    auto* label = new QLabel(caption, parent);
    label->setBuddy(buddy);
    buddy->setAccessibleName(caption);
    return label;
}

} // namespace

frmSpellCheck::frmSpellCheck(SpellCheckSession& session, QWidget* parent)
    : QDialog(parent), m_session(session), m_target(new QLineEdit(this)),
      m_changeTo(new QLineEdit(this)), m_suggestions(new QListWidget(this)),
      m_misspellings(new QListWidget(this)), m_cancel(new QPushButton(this)) {
    setObjectName(QStringLiteral("frmSpellCheck"));
    setWindowTitle(QStringLiteral("Spell Check"));
    setModal(true);

    m_target->setObjectName(QStringLiteral("txtTargetWord"));
    m_target->setReadOnly(true);
    m_changeTo->setObjectName(QStringLiteral("txtChangeTo"));
    m_suggestions->setObjectName(QStringLiteral("lstSuggestions"));
    m_misspellings->setObjectName(QStringLiteral("lstMisspellings"));
    m_misspellings->hide();

    static const char* const captions[] = {"Replace", "Replace All", "Ignore",
                                           "Add ",    "Ignore All",  "Skip Word"};
    auto* buttons = new QVBoxLayout;
    for (int i = 0; i < int(m_controls.size()); ++i) {
        auto* b = new QPushButton(QLatin1String(captions[i]), this);
        b->setObjectName(QStringLiteral("cmdControls_%1").arg(i));
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, [this, i] { clickButton(i); });
        buttons->addWidget(b);
        m_controls[size_t(i)] = b;
    }
    buttons->addStretch();
    m_cancel->setObjectName(QStringLiteral("cmdCancel"));
    m_cancel->setText(QStringLiteral("Cancel Spell Check"));
    m_cancel->setAutoDefault(false);
    buttons->addWidget(m_cancel);
    // Enter in the replacement field replaces, the commonest answer.
    m_controls[SpellCheckSession::Replace]->setDefault(true);

    auto* fields = new QVBoxLayout;
    fields->addWidget(labelFor(m_target, QStringLiteral("Not In Dictionary:"), this));
    fields->addWidget(m_target);
    fields->addWidget(labelFor(m_changeTo, QStringLiteral("Change to:"), this));
    fields->addWidget(m_changeTo);
    fields->addWidget(labelFor(m_suggestions, QStringLiteral("Suggestions:"), this));
    fields->addWidget(m_suggestions, 1);
    fields->addWidget(m_misspellings);

    auto* layout = new QGridLayout(this);
    layout->addLayout(fields, 0, 0);
    layout->addLayout(buttons, 0, 1);

    connect(m_changeTo, &QLineEdit::textEdited, this,
            [this](const QString& text) { m_session.setChangeTo(text); });
    connect(m_suggestions, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        m_session.clickSuggestion(m_suggestions->row(item));
        refresh();
    });
    connect(m_suggestions, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem* item) {
        m_session.doubleClickSuggestion(m_suggestions->row(item));
        refresh();
    });
    connect(m_cancel, &QPushButton::clicked, this, &frmSpellCheck::reject);

    refresh();
}

void frmSpellCheck::refresh() {
    if (m_session.finished()) {
        done(QDialog::Accepted);
        return;
    }
    m_target->setText(m_session.targetWord());
    m_changeTo->setText(m_session.changeTo());
    m_suggestions->clear();
    m_suggestions->addItems(m_session.suggestions());
    if (m_session.selectedSuggestion() >= 0) {
        m_suggestions->setCurrentRow(m_session.selectedSuggestion());
    }
    m_misspellings->clear();
    m_misspellings->addItems(m_session.misspellings());
    m_changeTo->setFocus();
    m_changeTo->selectAll();
}

void frmSpellCheck::clickButton(int index) {
    m_session.clickButton(static_cast<SpellCheckSession::Button>(index));
    refresh();
}

void frmSpellCheck::reject() {
    m_session.cancel();
    QDialog::reject();
}
