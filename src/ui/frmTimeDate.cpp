#include "ui/frmTimeDate.h"

#include "documents/DocumentInserts.h"
#include "platform/richtext/RichTextBox.h"

#include <QEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

frmTimeDate::frmTimeDate(RichTextBox& page, const QDateTime& now, QWidget* parent)
    : QDialog(parent), m_page(page), m_now(now), m_dates(new QListWidget(this)),
      m_custom(new QLineEdit(this)), m_sample(new QLabel(this)) {
    setObjectName(QStringLiteral("frmTimeDate"));
    setWindowTitle(QStringLiteral("Time and Date"));

    auto* formats = new QGroupBox(QStringLiteral("Formats:"), this);
    m_dates->setObjectName(QStringLiteral("lstDates"));
    m_dates->setAccessibleName(QStringLiteral("Formats"));
    m_dates->addItems(DocumentInserts::timeDateList(now));
    m_dates->setCurrentRow(0);
    (new QVBoxLayout(formats))->addWidget(m_dates);

    auto* custom = new QGroupBox(QStringLiteral("Custom"), this);
    auto* prompt = new QLabel(QStringLiteral("Enter custom format:"), custom);
    m_custom->setObjectName(QStringLiteral("txtCustom"));
    m_custom->setAccessibleName(QStringLiteral("Enter custom format:"));
    prompt->setBuddy(m_custom);
    m_sample->setObjectName(QStringLiteral("lblSample"));
    m_sample->setAccessibleName(QStringLiteral("Sample"));
    auto* customLayout = new QVBoxLayout(custom);
    customLayout->addWidget(prompt);
    customLayout->addWidget(m_custom);
    customLayout->addWidget(m_sample);
    // The sample is taken before the key reaches the box.
    m_custom->installEventFilter(this);

    auto* insert = new QPushButton(QStringLiteral("&Insert"), this);
    insert->setObjectName(QStringLiteral("cmdInsert"));
    auto* insertCustom = new QPushButton(QStringLiteral("Insert Custom Format"), this);
    insertCustom->setObjectName(QStringLiteral("cmdInsCusFor"));
    auto* close = new QPushButton(QStringLiteral("&Close"), this);
    close->setObjectName(QStringLiteral("cmdClose"));
    for (QPushButton* b : {insert, insertCustom, close}) {
        b->setAutoDefault(false);
    }

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(insert);
    buttons->addWidget(insertCustom);
    buttons->addStretch();
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(formats, 1);
    layout->addWidget(custom);
    layout->addLayout(buttons);

    connect(insert, &QPushButton::clicked, this, &frmTimeDate::insertSelected);
    connect(m_dates, &QListWidget::itemDoubleClicked, this, &frmTimeDate::insertSelected);
    connect(insertCustom, &QPushButton::clicked, this, &frmTimeDate::insertCustom);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
}

bool frmTimeDate::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_custom &&
        (event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress)) {
        m_sample->setText(DocumentInserts::customTimeDateSample(m_now, m_custom->text()));
    }
    return QDialog::eventFilter(watched, event);
}

void frmTimeDate::insertSelected() {
    if (QListWidgetItem* item = m_dates->currentItem()) {
        m_page.setSelText(item->text());
    }
    accept();
}

void frmTimeDate::insertCustom() {
    m_page.setSelText(m_sample->text());
    accept();
}
