#pragma once

#include "documents/FindReplace.h"
#include "documents/FormatCommands.h"

#include <QObject>
#include <QPointer>
#include <functional>
#include <optional>

class frmDocument;
class frmFind;
class frmGoTo;
class frmMain;

// The Edit, Search and Format commands of the main window, its format tool
// bar and font bar: each routes to one routine on the active document's
// text. Owned by the main window.
class EditCommands : public QObject {
    Q_OBJECT
public:
    explicit EditCommands(frmMain& window);

    // The font dialog; tests put a scripted one in its place.
    using FontChooser =
        std::function<std::optional<FormatCommands::FontChoice>(const FormatCommands::FontChoice&)>;
    void setFontChooser(FontChooser chooser) { m_chooseFont = std::move(chooser); }

    FindReplace& search() { return m_search; }
    // The dialogs, made on first use.
    frmFind* findDialog();
    frmGoTo* goToDialog();

private:
    frmDocument* activeDocument() const;
    // Runs `work` on the active document, or says there is none; then the
    // text gets the focus back and the bars follow the selection.
    void onDocument(const std::function<void(frmDocument&)>& work);
    void route(const char* command, std::function<void(frmDocument&)> work);
    void installEditRoutes();
    void installFormatRoutes();
    void installSearchRoutes();
    void installFontBar();

    frmMain& m_window;
    FindReplace m_search;
    FontChooser m_chooseFont;
    QPointer<frmFind> m_find;
    QPointer<frmGoTo> m_goTo;
};

// Creates the commands for the window; the window owns them.
void installEditCommands(frmMain& window);
