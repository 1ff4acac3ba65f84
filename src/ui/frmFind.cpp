#include "ui/frmFind.h"

#include "context/AppContext.h"
#include "platform/MsgboxClass.h"
#include "ui/PageView.h"
#include "ui/frmDocument.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QPushButton* button(const char* name, const QString& caption, QWidget* parent) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(QLatin1String(name));
    b->setAutoDefault(false);
    return b;
}

QComboBox* textCombo(const char* name, QWidget* parent) {
    auto* box = new QComboBox(parent);
    box->setObjectName(QLatin1String(name));
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setMinimumContentsLength(28);
    return box;
}

} // namespace

frmFind::frmFind(FindReplace& search, DocumentSource document, QWidget* parent)
    : QDialog(parent), m_search(search), m_document(std::move(document)) {
    setObjectName(QStringLiteral("frmFind"));
    setWindowTitle(QStringLiteral("Find"));

    auto* fields = new QGridLayout;
    auto* findLabel = new QLabel(QStringLiteral("Fin&d What:"), this);
    findLabel->setObjectName(QStringLiteral("lblFind"));
    m_find = textCombo("cboFind", this);
    findLabel->setBuddy(m_find);
    m_find->setAccessibleName(QStringLiteral("Find What"));
    m_replaceLabel = new QLabel(QStringLiteral("Replace &With:"), this);
    m_replaceLabel->setObjectName(QStringLiteral("lblReplace"));
    m_replace = textCombo("cboReplace", this);
    m_replaceLabel->setBuddy(m_replace);
    m_replace->setAccessibleName(QStringLiteral("Replace With"));
    fields->addWidget(findLabel, 0, 0);
    fields->addWidget(m_find, 0, 1);
    fields->addWidget(m_replaceLabel, 1, 0);
    fields->addWidget(m_replace, 1, 1);

    m_wholeWord = new QCheckBox(QStringLiteral("Find Whole Word &Only"), this);
    m_wholeWord->setObjectName(QStringLiteral("chkWholeWord"));
    m_matchCase = new QCheckBox(QStringLiteral("Match Ca&se"), this);
    m_matchCase->setObjectName(QStringLiteral("chkMatchCase"));
    m_noHighlight = new QCheckBox(QStringLiteral("No &Highlight"), this);
    m_noHighlight->setObjectName(QStringLiteral("chkNoHighlight"));
    fields->addWidget(m_wholeWord, 2, 1);
    fields->addWidget(m_matchCase, 3, 1);
    fields->addWidget(m_noHighlight, 4, 1);

    m_findButton = button("cmdFind", QStringLiteral("&Find"), this);
    m_findButton->setDefault(true);
    m_replaceButton = button("cmdReplace", QStringLiteral("&Replace..."), this);
    m_replaceAllButton = button("cmdReplaceAll", QStringLiteral("Replace &All"), this);
    QPushButton* cancel = button("cmdCancel", QStringLiteral("Cancel"), this);
    m_helpButton = button("cmdHelp", QStringLiteral("&Help"), this);
    m_helpButton->setEnabled(false);
    auto* buttons = new QVBoxLayout;
    for (QPushButton* b :
         {m_findButton, m_replaceButton, m_replaceAllButton, cancel, m_helpButton}) {
        buttons->addWidget(b);
    }
    buttons->addStretch();

    auto* row = new QHBoxLayout(this);
    row->addLayout(fields, 1);
    row->addLayout(buttons);

    connect(m_findButton, &QPushButton::clicked, this, &frmFind::cmdFind_Click);
    connect(m_replaceButton, &QPushButton::clicked, this, &frmFind::cmdReplace_Click);
    connect(m_replaceAllButton, &QPushButton::clicked, this, &frmFind::cmdReplaceAll_Click);
    connect(cancel, &QPushButton::clicked, this, &QDialog::hide);
    connect(m_helpButton, &QPushButton::clicked, this, [this] {
        if (m_help) {
            m_help();
        }
    });
    arrange(Layout::Find);
}

void frmFind::setHelp(std::function<void()> help) {
    m_help = std::move(help);
    m_helpButton->setEnabled(bool(m_help));
}

void frmFind::showIn(Layout layout) {
    if (frmDocument* document = m_document()) {
        const RichTextBox& box = document->rtfText();
        if (box.SelLength() > 0) {
            m_find->setEditText(box.SelText());
        }
    }
    if (m_find->currentText().isEmpty()) {
        m_find->setEditText(m_search.findText);
    }
    m_wholeWord->setChecked(m_search.wholeWord);
    m_matchCase->setChecked(m_search.matchCase);
    m_noHighlight->setChecked(m_search.noHighlight);
    arrange(layout);
    show();
    raise();
    activateWindow();
    m_find->setFocus();
    m_find->lineEdit()->selectAll();
}

void frmFind::arrange(Layout layout) {
    m_layout = layout;
    const bool replacing = layout == Layout::Replace;
    m_replaceLabel->setVisible(replacing);
    m_replace->setVisible(replacing);
    m_replaceAllButton->setVisible(replacing);
    showCaptions();
    adjustSize();
}

void frmFind::showCaptions() {
    m_findButton->setText(m_search.findCaption());
    m_replaceButton->setText(m_layout == Layout::Replace ? QStringLiteral("&Replace")
                                                         : QStringLiteral("&Replace..."));
}

void frmFind::readControls() {
    m_search.findText = m_find->currentText();
    m_search.replaceText = m_replace->currentText();
    m_search.wholeWord = m_wholeWord->isChecked();
    m_search.matchCase = m_matchCase->isChecked();
    m_search.noHighlight = m_noHighlight->isChecked();
}

void frmFind::remember(QComboBox* box) {
    const QString text = box->currentText();
    if (text.isEmpty()) {
        return;
    }
    const int known = box->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (known > 0) {
        box->removeItem(known);
    }
    if (known != 0) {
        box->insertItem(0, text);
    }
    box->setCurrentIndex(0);
}

void frmFind::cmdFind_Click() {
    frmDocument* document = m_document();
    if (document == nullptr) {
        return;
    }
    readControls();
    remember(m_find);
    presentSearchResult(*document, m_search.find(document->rtfText()));
    showCaptions();
}

void frmFind::cmdReplace_Click() {
    if (m_layout != Layout::Replace) {
        arrange(Layout::Replace);
        return;
    }
    frmDocument* document = m_document();
    if (document == nullptr) {
        return;
    }
    readControls();
    remember(m_find);
    remember(m_replace);
    presentSearchResult(*document, m_search.replace(document->rtfText()));
    showCaptions();
}

void frmFind::cmdReplaceAll_Click() {
    frmDocument* document = m_document();
    if (document == nullptr) {
        return;
    }
    readControls();
    remember(m_find);
    remember(m_replace);
    const FindReplace::Result result = m_search.replaceAll(document->rtfText());
    document->adjustDisplayForCursorPosition();
    showCaptions();
    if (MsgboxClass* box = app().msgbox) {
        box->showMessage(result.message);
    }
}

void presentSearchResult(frmDocument& document, const FindReplace::Result& result) {
    if (result.position >= 0) {
        document.pageView()->setFocus();
        document.adjustDisplayForCursorPosition();
    }
    if (!result.message.isEmpty()) {
        if (MsgboxClass* box = app().msgbox) {
            box->showMessage(result.message);
        }
    }
}
