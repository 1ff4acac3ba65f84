#include "ui/frmAbout.h"

#include "context/AppContext.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

frmAbout::frmAbout(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About Quillmere Pad"));
    auto* column = new QVBoxLayout(this);
    const auto add = [&](const char* name, const QString& text) {
        auto* label = new QLabel(text, this);
        label->setObjectName(QLatin1String(name));
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        column->addWidget(label);
        return label;
    };
    QLabel* title = add("lblTitle", QStringLiteral("Quillmere Pad"));
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.6);
    big.setBold(true);
    title->setFont(big);
    const QString version =
        app().programVersion.isEmpty() ? getProgramVersion() : app().programVersion;
    add("lblVersion", QStringLiteral("Version ") + version);
    add("lblDescription",
        QStringLiteral("A word processor for accounting practices: letters and documents as "
                       "true pages, printed as they are shown, spell checked, and merged with "
                       "the client records of the practice's database."));
    add("lblPlatform", QStringLiteral("Built with Qt %1, running on Qt %2.")
                           .arg(QLatin1String(QT_VERSION_STR), QLatin1String(qVersion())));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    column->addWidget(buttons);
}
