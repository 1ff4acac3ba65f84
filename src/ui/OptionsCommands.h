#pragma once

#include "app/modOptions.h"

#include <QObject>
#include <memory>

class frmMain;
class frmOptions;
class QMdiArea;

// Tools > Options for the main window: opens frmOptions over it, applies what
// the dialog writes to the running window, and sets the tab strip's look.
class OptionsCommands : public QObject {
    Q_OBJECT
public:
    // Registers mnuToolsOptions and gives the tab strip its settings, as at
    // load: the settings file has no path yet then, so these are the
    // defaults on every start.
    explicit OptionsCommands(frmMain& main);

    // The dialog as Tools > Options opens it, filled by Getdata; not shown.
    std::unique_ptr<frmOptions> createDialog();
    // Opens the dialog modally, then refreshes the tab strip.
    void showOptions();

    // SetData, then each tool bar and View item shown or hidden as its View
    // command would, stay-on-top set, and a changed templates folder stored.
    void apply(const OptionsData& data);

Q_SIGNALS:
    // The templates folder was changed to `folder`: the Quick Picks list
    // moves there.
    void templatesFolderChanged(const QString& folder);

private:
    frmMain& m_main;
};

// The look of the document tab strip: shape and frame by style (0 rounded,
// 1 triangular, 2 flat), focus frame on the tabs, icons in the tabs.
void applyTabStripSettings(QMdiArea& area, const TabStripSettings& settings);
