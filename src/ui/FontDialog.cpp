#include "ui/FontDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontComboBox>
#include <QFormLayout>
#include <QPixmap>

namespace {

QCheckBox* tristate(const char* name, const QString& caption, const std::optional<bool>& value,
                    QWidget* parent) {
    auto* box = new QCheckBox(caption, parent);
    box->setObjectName(QLatin1String(name));
    box->setTristate(!value.has_value());
    box->setCheckState(!value ? Qt::PartiallyChecked : (*value ? Qt::Checked : Qt::Unchecked));
    return box;
}

std::optional<bool> stateOf(const QCheckBox* box) {
    if (box->checkState() == Qt::PartiallyChecked) {
        return std::nullopt;
    }
    return box->checkState() == Qt::Checked;
}

// The colours of the common font dialog, by name.
const std::vector<std::pair<const char*, QRgb>>& basicColours() {
    static const std::vector<std::pair<const char*, QRgb>> colours = {
        {"Black", qRgb(0, 0, 0)},        {"Maroon", qRgb(128, 0, 0)},
        {"Green", qRgb(0, 128, 0)},      {"Olive", qRgb(128, 128, 0)},
        {"Navy", qRgb(0, 0, 128)},       {"Purple", qRgb(128, 0, 128)},
        {"Teal", qRgb(0, 128, 128)},     {"Gray", qRgb(128, 128, 128)},
        {"Silver", qRgb(192, 192, 192)}, {"Red", qRgb(255, 0, 0)},
        {"Lime", qRgb(0, 255, 0)},       {"Yellow", qRgb(255, 255, 0)},
        {"Blue", qRgb(0, 0, 255)},       {"Fuchsia", qRgb(255, 0, 255)},
        {"Aqua", qRgb(0, 255, 255)},     {"White", qRgb(255, 255, 255)},
    };
    return colours;
}

QPixmap swatch(const QColor& colour) {
    QPixmap pixmap(16, 12);
    pixmap.fill(colour);
    return pixmap;
}

} // namespace

FontDialog::FontDialog(const FormatCommands::FontChoice& seed, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("dlgFont"));
    setWindowTitle(QStringLiteral("Font"));
    m_name = new QFontComboBox(this);
    m_name->setObjectName(QStringLiteral("cboFont"));
    m_name->setEditText(seed.name.value_or(QString()));
    if (seed.name) {
        m_name->setCurrentFont(QFont(*seed.name));
        m_name->setEditText(*seed.name);
    }
    m_size = new QComboBox(this);
    m_size->setObjectName(QStringLiteral("cboSize"));
    m_size->setEditable(true);
    for (int size = 5; size <= 72; ++size) {
        m_size->addItem(QString::number(size));
    }
    m_size->setEditText(seed.size ? QString::number(*seed.size) : QString());
    m_bold = tristate("chkBold", QStringLiteral("&Bold"), seed.bold, this);
    m_italic = tristate("chkItalic", QStringLiteral("&Italic"), seed.italic, this);
    m_underline = tristate("chkUnderline", QStringLiteral("&Underline"), seed.underline, this);
    m_strikeThru = tristate("chkStrikeThru", QStringLiteral("Stri&keout"), seed.strikeThru, this);
    m_colour = new QComboBox(this);
    m_colour->setObjectName(QStringLiteral("cboColour"));
    for (const auto& [name, rgb] : basicColours()) {
        m_colour->addItem(QIcon(swatch(QColor(rgb))), QLatin1String(name), QColor(rgb));
    }
    if (seed.colour) {
        int index = m_colour->findData(*seed.colour);
        if (index < 0) {
            m_colour->addItem(QIcon(swatch(*seed.colour)), seed.colour->name(), *seed.colour);
            index = m_colour->count() - 1;
        }
        m_colour->setCurrentIndex(index);
    } else {
        m_colour->setCurrentIndex(-1);
    }

    auto* form = new QFormLayout(this);
    form->addRow(QStringLiteral("&Font:"), m_name);
    form->addRow(QStringLiteral("&Size:"), m_size);
    form->addRow(m_bold);
    form->addRow(m_italic);
    form->addRow(m_underline);
    form->addRow(m_strikeThru);
    form->addRow(QStringLiteral("&Colour:"), m_colour);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->setObjectName(QStringLiteral("buttons"));
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

FormatCommands::FontChoice FontDialog::choice() const {
    FormatCommands::FontChoice c;
    if (!m_name->currentText().trimmed().isEmpty()) {
        c.name = m_name->currentText().trimmed();
    }
    bool ok = false;
    const double size = m_size->currentText().trimmed().toDouble(&ok);
    if (ok) {
        c.size = size;
    }
    c.bold = stateOf(m_bold);
    c.italic = stateOf(m_italic);
    c.underline = stateOf(m_underline);
    c.strikeThru = stateOf(m_strikeThru);
    if (m_colour->currentIndex() >= 0) {
        c.colour = m_colour->currentData().value<QColor>();
    }
    return c;
}

std::optional<FormatCommands::FontChoice>
FontDialog::chooseFont(QWidget* parent, const FormatCommands::FontChoice& seed) {
    FontDialog dialog(seed, parent);
    if (dialog.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    return dialog.choice();
}
