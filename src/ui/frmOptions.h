#pragma once

#include "app/modOptions.h"

#include <QDialog>
#include <QHash>
#include <functional>

class QCheckBox;
class QComboBox;
class QLineEdit;

// Tools > Options: default font, tool bars and View items, the document
// start-up state, live spelling, the tab strip and the templates folder.
// The dialog only
// shows and collects: what it opens with and what applying does are given
// to it, so that the decisions stay outside the window.
class frmOptions : public QDialog {
    Q_OBJECT
public:
    // `apply` runs with the dialog's values on OK and on Apply.
    frmOptions(const OptionsData& data, const QStringList& fontNames, const QStringList& fontSizes,
               std::function<void(const OptionsData&)> apply, QWidget* parent = nullptr);

    // The values as the controls show them now.
    OptionsData data() const;

private:
    QWidget* buildGeneralPage(const OptionsData& data, const QStringList& fontNames,
                              const QStringList& fontSizes);
    QWidget* buildBarsPage(const OptionsData& data);
    QWidget* buildTabsPage(const OptionsData& data);
    QWidget* buildTemplatesPage(const OptionsData& data);
    void browseTemplatesFolder();
    void applyNow();

    std::function<void(const OptionsData&)> m_apply;
    QComboBox* m_fontName = nullptr;
    QComboBox* m_fontSize = nullptr;
    QComboBox* m_docState = nullptr;
    QCheckBox* m_stayOnTop = nullptr;
    QCheckBox* m_liveSpelling = nullptr;
    QComboBox* m_style = nullptr;
    QCheckBox* m_focusRect = nullptr;
    QCheckBox* m_icons = nullptr;
    QLineEdit* m_location = nullptr;
    QHash<QString, QCheckBox*> m_checks;
};
