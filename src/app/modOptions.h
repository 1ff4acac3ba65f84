#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

class clsINI;

// The options dialog's settings, without the dialog: what it shows when it
// opens (Getdata) and what it writes (SetData). Every value is read from the
// settings file on each use; a missing key is written back with its default.

// A check box of the dialog that mirrors a View item and is written to a key.
struct OptionCheck {
    QString control;     // "chkStandard"
    QString caption;     // "Standard"
    QString section;     // "QuillmerePadToolbars"
    QString key;         // "StandardToolbar"
    QString viewCommand; // "mnuViewToolbarStandard": the View item it mirrors
    QString firstValue;  // the key's value in a new settings file
};
// The seven tool bar boxes, then the three View boxes, in the order SetData
// writes them.
const std::vector<OptionCheck>& optionChecks();

// The items of the document start-up list and of the tab style list; the
// key holds the index.
const QStringList& documentStateItems();
const QStringList& tabStyleItems();

struct OptionsData {
    QString defaultFont;
    QString defaultFontSize;
    QHash<QString, bool> checks; // by control name of optionChecks()
    // Boxes whose bar this build lacks: they show the stored key, cannot be
    // changed, and write back what they show.
    QSet<QString> unbuilt;
    int documentState = 2; // index into documentStateItems()
    bool stayOnTop = false;
    int tabStyle = 2; // index into tabStyleItems()
    bool drawFocusRect = false;
    bool drawIcons = false;
    QString templatesFolder;
    // Red wavy lines under misspelled words as the user types.
    bool liveSpelling = true;

    bool checked(const QString& control) const { return checks.value(control, false); }
};

// What Getdata needs of the running program besides the settings file.
struct OptionsContext {
    // Whether a View item is checked now.
    std::function<bool(const QString& command)> viewChecked;
    // Whether the window has the bar of a View item; all when unset.
    std::function<bool(const QString& command)> viewBuilt;
    // Font and size at the caret of the active document; unset with none
    // open, when the stored defaults are shown instead.
    std::optional<QString> documentFont;
    std::optional<QString> documentFontSize;
    bool stayOnTop = false;
    QString templatesFolder;
};

// Getdata. Without a settings object every value is its default.
OptionsData Getdata(clsINI* ini, const OptionsContext& context);

// One key SetData writes.
struct SettingWrite {
    QString section;
    QString key;
    QString value;
};
// The writes of SetData, in order: DefaultFont, DefaultFontSize, the seven
// tool bars, the three View keys, WindowState, Style, ViewFocusRectangle,
// ViewIcon, then the live-spelling switch. Check boxes are written "True" or
// "False", lists as the index.
std::vector<SettingWrite> optionWrites(const OptionsData& data);
// Writes them; nothing without a settings object.
void SetData(clsINI* ini, const OptionsData& data);

// The tab strip's settings as the window reads them at load (Style,
// ViewFocusRectangle) and after the dialog (also ViewIcon).
struct TabStripSettings {
    int style = 2;
    bool focusRectangle = false;
    bool icons = false;
};
TabStripSettings readTabStripSettings(clsINI* ini);

// Whether misspelled words are underlined as the user types: key
// LiveSpelling of QuillmerePadSettings, on unless the file says otherwise.
bool readLiveSpellingSetting(clsINI* ini);

// How a document window opens: WindowState of Document, as an index of
// documentStateItems(). Maximised when the key is missing or holds anything
// but 0, 1 or 2; a missing key is written with that default.
enum class DocumentStartup : int { Normal = 0, Minimized = 1, Maximized = 2 };
DocumentStartup readDocumentStartup(clsINI* ini);

// A list index stored as text: the number when it is one of 0 .. count-1,
// otherwise the fallback (junk in the file must not pick a list entry that
// does not exist).
int storedListIndex(const QString& value, int count, int fallback);
