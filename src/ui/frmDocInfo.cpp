#include "ui/frmDocInfo.h"

#include "documents/DocumentProperties.h"
#include "ui/frmDocument.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextDocument>
#include <QVBoxLayout>

frmDocInfo::frmDocInfo(frmDocument& document, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmDocInfo"));
    setWindowTitle(QStringLiteral("Document Properties"));
    auto* column = new QVBoxLayout(this);
    auto* caption = new QLabel(document.DocumentCaption, this);
    caption->setObjectName(QStringLiteral("lblCaption"));
    QFont bold = caption->font();
    bold.setBold(true);
    caption->setFont(bold);
    column->addWidget(caption);

    auto* form = new QFormLayout;
    const auto rows =
        documentPropertyRows(document.model(), document.DocumentFileName,
                             document.rtfText().document()->toPlainText(), document.totalPages());
    for (const DocumentPropertyRow& row : rows) {
        auto* value = new QLabel(row.value, this);
        value->setObjectName(row.name);
        value->setWordWrap(true);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        auto* label = new QLabel(row.caption, this);
        label->setBuddy(value);
        value->setAccessibleName(QString(row.caption).remove(QLatin1Char(':')));
        form->addRow(label, value);
    }
    column->addLayout(form);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    column->addWidget(buttons);
    setMinimumWidth(480);
}
