#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <optional>

// What command availability reads of the active document. The window fills
// it from the document's text box; tests fill it by hand.
struct ActiveDocumentState {
    enum class Alignment { Left = 0, Right = 1, Center = 2, Mixed = 3 };
    int documentType = 0;
    bool changed = false;      // HasDocumentChanged
    bool hasSelection = false; // selLength not 0
    bool canUndo = false;      // the text box can undo
    bool clipboardHasText = false;
    Alignment alignment = Alignment::Left;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeThru = false;
    bool bullet = false;
    QString fontName; // empty when the selection mixes fonts
    QString fontSize; // as the size box shows it; empty when mixed
};

// Which commands can be used, and how the format bar stands. Commands are
// menu item names ("mnuEditCut") and tool bar buttons as
// "tbrStandard.Cut". Only the commands of availabilityGroup() are ever
// switched off; every other command stays usable with no document open.
struct MenuStatus {
    QSet<QString> disabled;
    bool left = false;
    bool center = false;
    bool right = false;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeThru = false;
    bool bullet = false;
    QString fontName;
    QString fontSize;

    bool isEnabled(const QString& command) const { return !disabled.contains(command); }
};

// The commands the blanket switch sets, menu items first, then the buttons
// of tbrStandard, tbrFormat, tbrFile and tbrEdit.
const QStringList& availabilityGroup();

// Sets every command of the group to `enable`.
void EnableOrDisableAllMenuAndButtons(MenuStatus& status, bool enable);

// Refines the status for the active document. With no active document it
// changes nothing and returns false, the case of a document's unload. A
// locked document (type 4) keeps the status as the blanket switch left it.
// A mixed alignment leaves the three alignment buttons as they were.
bool SetAppropriateMenuStatus(MenuStatus& status,
                              const std::optional<ActiveDocumentState>& document);

// The blanket switch on, then the refinement; `previous` carries the
// alignment buttons over a mixed selection.
MenuStatus ResetMenuStatus(const MenuStatus& previous,
                           const std::optional<ActiveDocumentState>& document);

// Whether a command can be clicked now: its routine exists in this build
// (`built`) and the status enables it. A command without a routine is shown
// disabled with a note, whatever the status says.
bool commandAvailable(const MenuStatus& status, const QString& command, bool built);

// The tool tip of a command that is not built yet.
QString notAvailableYetTip();
