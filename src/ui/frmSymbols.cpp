#include "ui/frmSymbols.h"

#include "documents/DocumentInserts.h"
#include "platform/richtext/RichTextBox.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QTextDocument>
#include <QVBoxLayout>

frmSymbols::frmSymbols(RichTextBox& page, QWidget* parent)
    : QDialog(parent), m_page(page), m_symbols(new QListWidget(this)) {
    setObjectName(QStringLiteral("frmSymbols"));
    setWindowTitle(QStringLiteral("Symbols"));

    auto* frame = new QGroupBox(QStringLiteral("Symbols"), this);
    m_symbols->setObjectName(QStringLiteral("lstSymbols"));
    m_symbols->setAccessibleName(QStringLiteral("Symbols"));
    QFont font = m_symbols->font();
    font.setFamily(page.document()->defaultFont().family());
    m_symbols->setFont(font);
    m_symbols->addItems(DocumentInserts::symbolLines());
    m_symbols->setCurrentRow(0);
    (new QVBoxLayout(frame))->addWidget(m_symbols);

    auto* insert = new QPushButton(QStringLiteral("&Insert"), this);
    insert->setObjectName(QStringLiteral("cmdInsert"));
    auto* close = new QPushButton(QStringLiteral("&Close"), this);
    close->setObjectName(QStringLiteral("cmdClose"));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(insert);
    buttons->addStretch();
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(frame, 1);
    layout->addLayout(buttons);

    connect(insert, &QPushButton::clicked, this, &frmSymbols::insertSelected);
    connect(m_symbols, &QListWidget::itemDoubleClicked, this, &frmSymbols::insertSelected);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
}

void frmSymbols::insertSelected() {
    if (QListWidgetItem* item = m_symbols->currentItem()) {
        m_page.setSelText(DocumentInserts::symbolOfLine(item->text()));
    }
}
