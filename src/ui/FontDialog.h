#pragma once

#include "documents/FormatCommands.h"

#include <QDialog>
#include <optional>

class QCheckBox;
class QComboBox;
class QFontComboBox;

// The font dialog: name, size, style, effects and colour of the selection.
// What the selection mixes shows blank (or half-checked) and comes back
// empty unless the user sets it.
class FontDialog : public QDialog {
    Q_OBJECT
public:
    explicit FontDialog(const FormatCommands::FontChoice& seed, QWidget* parent = nullptr);
    FormatCommands::FontChoice choice() const;

    // Runs the dialog; nothing when cancelled.
    static std::optional<FormatCommands::FontChoice>
    chooseFont(QWidget* parent, const FormatCommands::FontChoice& seed);

private:
    QFontComboBox* m_name;
    QComboBox* m_size;
    QCheckBox* m_bold;
    QCheckBox* m_italic;
    QCheckBox* m_underline;
    QCheckBox* m_strikeThru;
    QComboBox* m_colour;
};
