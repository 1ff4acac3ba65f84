#include "ui/frmTip.h"

#include "context/AppContext.h"
#include "files/clsINI.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

QStringList frmTip::shippedTips() {
    QFile file(QStringLiteral(":/tips/tips.txt"));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return TipOfTheDay::parseTips(QString::fromUtf8(file.readAll()));
}

bool frmTip::showAtStartup() {
    clsINI* ini = app().iniSettings;
    return ini && clsINI::isTrueValue(ini->getKeyString(QLatin1String(TipOfTheDay::SettingsSection),
                                                        QLatin1String(TipOfTheDay::StartupKey),
                                                        QStringLiteral("0")));
}

frmTip::frmTip(QWidget* parent)
    : QDialog(parent), m_tips(shippedTips()), m_text(new QLabel(this)),
      m_atStartup(new QCheckBox(QStringLiteral("&Show tips at startup"), this)) {
    setObjectName(QStringLiteral("frmTip"));
    setWindowTitle(QStringLiteral("Tip of the Day"));
    auto* column = new QVBoxLayout(this);
    auto* heading = new QLabel(QStringLiteral("Did you know..."), this);
    heading->setObjectName(QStringLiteral("lblDidYouKnow"));
    QFont big = heading->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.3);
    heading->setFont(big);
    column->addWidget(heading);
    m_text->setObjectName(QStringLiteral("lblTipText"));
    m_text->setWordWrap(true);
    m_text->setMinimumHeight(90);
    m_text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column->addWidget(m_text, 1);

    m_atStartup->setObjectName(QStringLiteral("chkLoadTipsAtStartup"));
    m_atStartup->setChecked(showAtStartup());
    connect(m_atStartup, &QCheckBox::toggled, this, [](bool on) {
        if (clsINI* ini = app().iniSettings) {
            ini->setKeyValue(QLatin1String(TipOfTheDay::SettingsSection),
                             QLatin1String(TipOfTheDay::StartupKey),
                             on ? QStringLiteral("True") : QStringLiteral("False"));
        }
    });
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* next =
        buttons->addButton(QStringLiteral("&Next Tip"), QDialogButtonBox::ActionRole);
    next->setObjectName(QStringLiteral("cmdNextTip"));
    next->setEnabled(m_tips.count() > 1);
    QPushButton* ok = buttons->addButton(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    connect(next, &QPushButton::clicked, this, &frmTip::cmdNextTip_Click);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    auto* row = new QHBoxLayout;
    row->addWidget(m_atStartup);
    row->addWidget(buttons, 1);
    column->addLayout(row);
    setMinimumWidth(420);

    clsINI* ini = app().iniSettings;
    const QString last =
        ini ? ini->getKeyString(QLatin1String(TipOfTheDay::SettingsSection),
                                QLatin1String(TipOfTheDay::SettingsKey), QStringLiteral("-1"))
            : QString();
    showTip(m_tips.firstIndex(last));
}

QString frmTip::currentTip() const {
    return m_tips.tip(m_index);
}

void frmTip::cmdNextTip_Click() {
    showTip(m_tips.next(m_index));
}

void frmTip::showTip(int index) {
    m_index = index;
    m_text->setText(m_tips.count() > 0 ? m_tips.tip(index)
                                       : QStringLiteral("There are no tips to show."));
    // Remembered at once, so the next opening moves on even if this one is
    // closed with the window's own button.
    if (clsINI* ini = app().iniSettings; ini && m_tips.count() > 0) {
        ini->setKeyValue(QLatin1String(TipOfTheDay::SettingsSection),
                         QLatin1String(TipOfTheDay::SettingsKey), QString::number(index));
    }
}
