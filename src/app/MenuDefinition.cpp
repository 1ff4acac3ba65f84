#include "app/MenuDefinition.h"

#include <QHash>
#include <QSet>

namespace {

using Kind = MenuEntry::Kind;

struct Row {
    const char* name;
    const char* caption;
    const char* parent;
    Kind kind;
    const char* shortcut;
    bool checkable;
};

constexpr Kind M = Kind::Menu;
constexpr Kind I = Kind::Item;

// The menus and their items, in order, each parent before its children;
// the pop-up menu of the text area comes last.
constexpr Row kRows[] = {
    {"mnuFile", "&File", "", M, "", false},
    {"mnuTest", "Test", "mnuFile", I, "", false},
    {"mnuFileNew", "&New", "mnuFile", M, "", false},
    {"mnuFileNewStandard", "New &Standard Document", "mnuFileNew", I, "Ctrl+N", false},
    {"mnuFileNewCompany", "New Company Merge Document (use default contact)", "mnuFileNew", I, "",
     false},
    {"mnuFileNewCompanyContact", "New Company Merge Document (use specified contacts)",
     "mnuFileNew", I, "", false},
    {"mnuFileNewContact", "New Contact Merge Document", "mnuFileNew", I, "", false},
    {"mnuFileNewRemitt", "New Task Merge Document", "mnuFileNew", I, "", false},
    {"mnuFileNewAppointment", "New Appointment Merge Document", "mnuFileNew", I, "", false},
    {"mnuFileOpen", "&Open...", "mnuFile", M, "", false},
    {"mnuFileOpenNormal", "Open &Quillmere Pad Document ...", "mnuFileOpen", I, "Ctrl+O", false},
    {"mnuFileOpenWord", "Open &MS Word Doc ...", "mnuFileOpen", I, "", false},
    {"mnuFileOpenOther", "Open Document from &Another Program ...", "mnuFileOpen", I, "", false},
    {"mnuFileClose", "&Close", "mnuFile", I, "Ctrl+W", false},
    {"mnuFileCloseAll", "Clos&e All", "mnuFile", I, "", false},
    {"mnuFileSave", "&Save", "mnuFile", I, "Ctrl+S", false},
    {"mnuFileSaveAs", "Save &As...", "mnuFile", I, "", false},
    {"mnuFileSaveAll", "Save A&ll", "mnuFile", I, "", false},
    {"mnuFileSaveSelectionAs", "Sa&ve Selection As...", "mnuFile", I, "", false},
    {"mnuFileRevert", "Revert to Save&d", "mnuFile", I, "", false},
    {"mnuFileManageFiles", "Mana&ge Files...", "mnuFile", I, "", false},
    {"mnuFilePrintConfig", "Print Configura&tion", "mnuFile", M, "", false},
    {"mnuFilePrintSetup", "Print Se&tup...", "mnuFilePrintConfig", I, "", false},
    {"mnuFilePageSetup", "Page Set&up...", "mnuFilePrintConfig", I, "", false},
    {"mnuFilePrint", "&Print", "mnuFile", I, "Ctrl+P", false},
    {"mnuFilePrintPreview", "Print Previe&w", "mnuFile", I, "", false},
    {"mnuFileExportPDF", "Export as PD&F...", "mnuFile", I, "", false},
    {"mnuFileRecent", "Recent F&iles", "mnuFile", M, "", false},
    {"mnuFileMRUTemp", "--Recent Files--", "mnuFileRecent", I, "", false},
    {"mnuFileExit", "E&xit", "mnuFile", I, "", false},

    {"mnuEdit", "&Edit", "", M, "", false},
    {"mnuEditUndo", "&Undo", "mnuEdit", I, "Ctrl+Z", false},
    {"mnuEditRedo", "&Redo", "mnuEdit", I, "Ctrl+Y", false},
    {"mnuEditCut", "Cu&t", "mnuEdit", I, "Ctrl+X", false},
    {"mnuEditCopy", "&Copy", "mnuEdit", I, "Ctrl+C", false},
    {"mnuEditPaste", "&Paste", "mnuEdit", I, "Ctrl+V", false},
    {"mnuEditDelete", "&Delete", "mnuEdit", I, "Del", false},
    {"mnuEditSelectAll", "&Select All", "mnuEdit", I, "Ctrl+A", false},
    {"mnuEditMarkClean", "Mar&k Clean", "mnuEdit", I, "", false},

    {"mnuSearch", "&Search", "", M, "", false},
    {"mnuSearchFind", "&Find...", "mnuSearch", I, "Ctrl+F", false},
    {"mnuSearchFindNext", "Find &Next", "mnuSearch", I, "F3", false},
    {"mnuSearchReplace", "&Replace...", "mnuSearch", I, "Ctrl+H", false},
    {"mnuSearchGoTo", "&Go To...", "mnuSearch", I, "Ctrl+G", false},

    {"mnuView", "&View", "", M, "", false},
    {"mnuViewStatusBar", "&Status Bar", "mnuView", I, "", true},
    {"mnuViewRuler", "&Ruler", "mnuView", I, "", true},
    {"mnuViewFileTree", "File Tree &View", "mnuView", I, "", true},
    {"mnuViewToolbars", "T&oolbars", "mnuView", M, "", false},
    {"mnuViewToolbarStandard", "S&tandard", "mnuViewToolbars", I, "", true},
    {"mnuViewToolbarFile", "&File", "mnuViewToolbars", I, "", true},
    {"mnuViewToolbarEdit", "&Edit", "mnuViewToolbars", I, "", true},
    {"mnuViewToolbarFormat", "For&mat", "mnuViewToolbars", I, "", true},
    {"mnuViewToolbarFont", "F&ont", "mnuViewToolbars", I, "", true},
    {"mnuViewToolbarWindow", "&Window", "mnuViewToolbars", I, "", true},
    {"mnuViewToolbarMergeTutorial", "&Merge Tutorial", "mnuViewToolbars", I, "", true},
    {"mnuViewDocumentProperties", "Document &Properties", "mnuView", I, "", false},

    {"mnuMerge", "&Merge", "", M, "", false},
    {"mnuMergeMergeCompany", "Merge Company Information", "mnuMerge", I, "", false},
    {"mnuMergeMergeContact", "Merge Contact Information", "mnuMerge", I, "", false},
    {"mnuMergeMergeRemitt", "Merge Task Information", "mnuMerge", I, "", false},
    {"mnuMergeMergeAppointment", "Merge Appointment Information", "mnuMerge", I, "", false},
    {"mnuMergeTestMerge", "Test Merge Document", "mnuMerge", I, "", false},
    {"mnuMergeMergeNewDoc", "Merge Information to New Document", "mnuMerge", I, "", false},
    {"mnuMergeMergePrinter", "Merge Information to Printer", "mnuMerge", I, "", false},

    {"mnuInsert", "&Insert", "", M, "", false},
    {"mnuInsertTimeDate", "Time and &Date...", "mnuInsert", I, "", false},
    {"mnuInsertLetterhead", "Company Letterhead", "mnuInsert", I, "", false},
    {"mnuInsertHorizontalLine", "&Horizontal Line", "mnuInsert", I, "", false},
    {"mnuInsertPicture", "&Picture...", "mnuInsert", I, "", false},
    {"mnuInsertTextFile", "&Text File...", "mnuInsert", I, "", false},
    {"mnuInsertPathandFile", "Path and &File", "mnuInsert", I, "", false},
    {"mnuInsertSymbols", "&Symbols...", "mnuInsert", I, "", false},

    {"mnuFormat", "F&ormat", "", M, "", false},
    {"mnuFormatFont", "&Font...", "mnuFormat", I, "", false},
    {"mnuFormatBullet", "&Bullet", "mnuFormat", I, "", false},
    {"mnuFormatUpper", "To &Upper Case", "mnuFormat", I, "", false},
    {"mnuFormatLower", "To &Lower Case", "mnuFormat", I, "", false},
    {"mnuFormatScript", "&Script", "mnuFormat", M, "", false},
    {"mnuFormatScriptNoScript", "&No Scripting", "mnuFormatScript", I, "", false},
    {"mnuFormatScriptSuperScript", "&SuperScript", "mnuFormatScript", I, "", false},
    {"mnuFormatScriptSubScript", "S&ubScript", "mnuFormatScript", I, "", false},
    {"mnuFormatIndent", "Indent", "mnuFormat", M, "", false},
    {"mnuFormatLeftIndent", "Left Indent", "mnuFormatIndent", M, "", false},
    {"mnuFormatIncreaseLeftIndent", "&Increase Left Indent", "mnuFormatLeftIndent", I, "", false},
    {"mnuFormatDecreaseLeftIndent", "Reduce &Left Indent", "mnuFormatLeftIndent", I, "", false},
    {"mnuFormatRightIndent", "Right Indent", "mnuFormatIndent", M, "", false},
    {"mnuFormatIncreaseRightIndent", "Increase &Right Indent", "mnuFormatRightIndent", I, "",
     false},
    {"mnuFormatDecreaseRightIndent", "Reduce Right Indent", "mnuFormatRightIndent", I, "", false},
    {"mnuFormatHangingIndent", "Hanging Indent", "mnuFormatIndent", M, "", false},
    {"mnuFormatIncreaseHangingIndent", "Increase &Hanging Indent", "mnuFormatHangingIndent", I, "",
     false},
    {"mnuFormatDecreaseHangingIndent", "Reduce Hanging Indent", "mnuFormatHangingIndent", I, "",
     false},

    {"mnuTools", "&Tools", "", M, "", false},
    {"mnuToolsSpellCheck", "Spell Check", "mnuTools", I, "F7", false},
    {"mnuToolsDictonary", "Dictonary", "mnuTools", I, "", false},
    {"mnuLabelWizard", "Label Wizard", "mnuTools", I, "", false},
    {"mnuBackground", "&Background Wizard", "mnuTools", I, "", false},
    {"mnuToolsOptions", "&Options...", "mnuTools", I, "", false},

    {"mnuWindow", "&Window", "", M, "", false},
    {"mnuWindowNewWindow", "&New Window", "mnuWindow", I, "", false},
    {"mnuWindowCascade", "&Cascade", "mnuWindow", I, "", false},
    {"mnuWindowTileHorizontal", "Tile &Horizontal", "mnuWindow", I, "", false},
    {"mnuWindowTileVertical", "Tile &Vertical", "mnuWindow", I, "", false},
    {"mnuWindowArrangeIcons", "&Arrange Icons", "mnuWindow", I, "", false},
    {"mnuWindowMinimizeAll", "&Minimize All", "mnuWindow", I, "", false},
    {"mnuWindowRestoreAll", "&Restore All", "mnuWindow", I, "", false},

    {"mnuHelp", "&About", "", M, "", false},
    {"mnuHelpContents", "&Contents", "mnuHelp", I, "F1", false},
    {"mnuHelpIndex", "&Index", "mnuHelp", I, "", false},
    {"mnuHelpSearch", "&Search", "mnuHelp", I, "", false},
    {"mnuHelpTipoftheDay", "Tip of the &Day", "mnuHelp", I, "", false},
    {"mnuHelpAbout", "&About Quillmere Pad...", "mnuHelp", I, "", false},

    // The text-area pop-up: each item runs the main-menu item of the same
    // meaning and carries its caption. Its Script and Indent submenus are
    // filled with copies of Format's.
    {"mnuPop", "Popup", "", M, "", false},
    {"mnuPopupUndo", "&Undo", "mnuPop", I, "", false},
    {"mnuPopupCut", "Cu&t", "mnuPop", I, "", false},
    {"mnuPopupCopy", "&Copy", "mnuPop", I, "", false},
    {"mnuPopupPaste", "&Paste", "mnuPop", I, "", false},
    {"mnuPopupDelete", "&Delete", "mnuPop", I, "", false},
    {"mnuPopupSelectAll", "&Select All", "mnuPop", I, "", false},
    {"mnuPopupFont", "&Font...", "mnuPop", I, "", false},
    {"mnuPopupCase", "C&hange Case", "mnuPop", M, "", false},
    {"mnuPopupCaseUpper", "&Upper Case", "mnuPopupCase", I, "", false},
    {"mnuPopupCaseLower", "&Lower Case", "mnuPopupCase", I, "", false},
    {"mnuPopupScript", "&Script", "mnuPop", M, "", false},
    {"mnuPopupBullet", "&Bullet", "mnuPop", I, "", false},
    {"mnuPopupIndent", "Indent", "mnuPop", M, "", false},
};

// Items that open a new group in their menu.
constexpr const char* kSeparatorsBefore[] = {
    "mnuFileNew",
    "mnuFileClose",
    "mnuFileSave",
    "mnuFileManageFiles",
    "mnuFilePrintConfig",
    "mnuFileRecent",
    "mnuFileExit",
    "mnuEditCut",
    "mnuEditSelectAll",
    "mnuSearchGoTo",
    "mnuViewDocumentProperties",
    "mnuMergeTestMerge",
    "mnuInsertPicture",
    "mnuFormatUpper",
    "mnuFormatScript",
    "mnuToolsOptions",
    "mnuWindowCascade",
    "mnuWindowMinimizeAll",
    "mnuHelpTipoftheDay",
    "mnuHelpAbout",
    "mnuPopupCut",
    "mnuPopupSelectAll",
    "mnuPopupFont",
};

MenuEntry toEntry(const Row& row) {
    return MenuEntry{QString::fromUtf8(row.name),     QString::fromUtf8(row.caption),
                     QString::fromUtf8(row.parent),   row.kind,
                     QString::fromUtf8(row.shortcut), row.checkable};
}

// Appends the items under the Format submenu that `popupMenu` mirrors
// ("mnuPopupIndent" mirrors "mnuFormatIndent"), renamed to the pop-up's prefix.
void copyFormatSubmenu(std::vector<MenuEntry>& tree, const QString& popupMenu) {
    const QString popup = QStringLiteral("mnuPopup");
    const QString format = QStringLiteral("mnuFormat");
    const auto rename = [&](const QString& name) -> QString {
        return popup + name.mid(format.size());
    };
    QSet<QString> inside = {format + popupMenu.mid(popup.size())};
    const std::size_t end = tree.size();
    for (std::size_t i = 0; i < end; ++i) {
        if (!inside.contains(tree[i].parent)) {
            continue;
        }
        inside.insert(tree[i].name);
        MenuEntry copy = tree[i];
        copy.name = rename(copy.name);
        copy.parent = rename(copy.parent);
        copy.shortcut.clear();
        tree.push_back(copy);
    }
}

std::vector<MenuEntry> buildTree() {
    std::vector<MenuEntry> tree;
    int sideBar = 0;
    for (const Row& row : kRows) {
        tree.push_back(toEntry(row));
        // A copy: the pushes below may move the vector's storage.
        const MenuEntry added = tree.back();
        if (added.parent.isEmpty() && added.name != QLatin1String("mnuPop")) {
            QString title = added.caption;
            title.remove(QLatin1Char('&'));
            tree.push_back({QStringLiteral("mnuSideBar%1").arg(++sideBar),
                            QStringLiteral("{SIDEBAR:TEXT|CAPTION:%1|Font:Arial|BOLD|Fsize:12|"
                                           "Fcolor:16777215|Bcolor:10649190|Gradient}")
                                .arg(title),
                            added.name,
                            Kind::SideBar,
                            {},
                            false});
        }
        if (added.name == QLatin1String("mnuPopupScript") ||
            added.name == QLatin1String("mnuPopupIndent")) {
            copyFormatSubmenu(tree, added.name);
        }
        if (added.name == QLatin1String("mnuFileMRUTemp")) {
            // Captions come from the recent-files list when it is read.
            for (int i = 1; i <= 8; ++i) {
                tree.push_back({QStringLiteral("mnuFileMRUItem%1").arg(i),
                                QString(),
                                QStringLiteral("mnuFileRecent"),
                                Kind::Item,
                                {},
                                false});
            }
        }
    }
    return tree;
}

// The menu item each button key runs; a key not listed has an action of its
// own. A key means the same on every bar it appears on.
QString menuCommandForKey(const QString& key) {
    static const QHash<QString, QString> commands = {
        {QStringLiteral("New"), QStringLiteral("mnuFileNewStandard")},
        {QStringLiteral("Open"), QStringLiteral("mnuFileOpenNormal")},
        {QStringLiteral("Close"), QStringLiteral("mnuFileClose")},
        {QStringLiteral("Save"), QStringLiteral("mnuFileSave")},
        {QStringLiteral("SaveAll"), QStringLiteral("mnuFileSaveAll")},
        {QStringLiteral("MenageFiles"), QStringLiteral("mnuFileManageFiles")},
        {QStringLiteral("Print"), QStringLiteral("mnuFilePrint")},
        {QStringLiteral("Cut"), QStringLiteral("mnuEditCut")},
        {QStringLiteral("Copy"), QStringLiteral("mnuEditCopy")},
        {QStringLiteral("Paste"), QStringLiteral("mnuEditPaste")},
        {QStringLiteral("Undo"), QStringLiteral("mnuEditUndo")},
        {QStringLiteral("Redo"), QStringLiteral("mnuEditRedo")},
        {QStringLiteral("Outdent"), QStringLiteral("mnuFormatDecreaseLeftIndent")},
        {QStringLiteral("Indent"), QStringLiteral("mnuFormatIncreaseLeftIndent")},
        {QStringLiteral("Help"), QStringLiteral("mnuHelpContents")},
        {QStringLiteral("SpellCheck"), QStringLiteral("mnuToolsSpellCheck")},
        {QStringLiteral("Find"), QStringLiteral("mnuSearchFind")},
        {QStringLiteral("Cascade"), QStringLiteral("mnuWindowCascade")},
        {QStringLiteral("THorizontally"), QStringLiteral("mnuWindowTileHorizontal")},
        {QStringLiteral("TVertically"), QStringLiteral("mnuWindowTileVertical")},
        {QStringLiteral("Minimize"), QStringLiteral("mnuWindowMinimizeAll")},
        {QStringLiteral("Restore"), QStringLiteral("mnuWindowRestoreAll")},
    };
    return commands.value(key);
}

ToolBarDefinition toolBar(const char* name, const char* keys, const char* viewCommand) {
    ToolBarDefinition bar{QString::fromUtf8(name), {}, QString::fromUtf8(viewCommand)};
    for (const QString& key : QString::fromUtf8(keys).split(QLatin1Char(' '))) {
        const QString command = menuCommandForKey(key);
        bar.buttons.push_back({key, command.isEmpty() ? buttonCommandId(bar.name, key) : command});
    }
    return bar;
}

std::vector<ToolBarDefinition> buildToolBars() {
    // The format buttons show the selection's state, so Bold to Bullet are
    // toggles of their own rather than the menu's one-shot commands.
    return {
        toolBar("tbrStandard",
                "New Open Save Print FullScreen WordWrap Cut Copy Paste Undo Redo Outdent Indent "
                "Help SpellCheck",
                "mnuViewToolbarStandard"),
        toolBar("tbrFile", "New Open Close Save SaveAll MenageFiles Print", "mnuViewToolbarFile"),
        toolBar("tbrEdit", "Cut Copy Paste Undo Redo Outdent Indent SpellCheck",
                "mnuViewToolbarEdit"),
        toolBar("tbrFormat", "Find Bold Italic Underline StrikeThru Left Center Right Bullet",
                "mnuViewToolbarFormat"),
        toolBar("tbrWindow", "Cascade THorizontally TVertically Minimize Restore Close",
                "mnuViewToolbarWindow"),
    };
}

} // namespace

const std::vector<MenuEntry>& menuTree() {
    static const std::vector<MenuEntry> tree = buildTree();
    return tree;
}

const MenuEntry* findMenuEntry(const QString& name) {
    static const QHash<QString, int> index = [] {
        QHash<QString, int> h;
        const auto& tree = menuTree();
        for (int i = 0; i < int(tree.size()); ++i) {
            h.insert(tree[std::size_t(i)].name, i);
        }
        return h;
    }();
    const auto it = index.constFind(name);
    return it == index.cend() ? nullptr : &menuTree()[std::size_t(*it)];
}

bool separatorBefore(const QString& name) {
    static const QSet<QString> names = [] {
        QSet<QString> s;
        for (const char* n : kSeparatorsBefore) {
            s.insert(QString::fromUtf8(n));
        }
        return s;
    }();
    return names.contains(name);
}

const std::vector<ToolBarDefinition>& toolBars() {
    static const std::vector<ToolBarDefinition> bars = buildToolBars();
    return bars;
}

QString buttonCommandId(const QString& toolBar, const QString& key) {
    return toolBar + QLatin1Char('.') + key;
}

const std::vector<ToolBarButton>& newDropDown() {
    static const std::vector<ToolBarButton> keys = {
        {QStringLiteral("Standard"), QStringLiteral("mnuFileNewStandard")},
        {QStringLiteral("Companies"), QStringLiteral("mnuFileNewCompany")},
        {QStringLiteral("CompanyContacts"), QStringLiteral("mnuFileNewCompanyContact")},
        {QStringLiteral("Contacts"), QStringLiteral("mnuFileNewContact")},
        {QStringLiteral("Remittances"), QStringLiteral("mnuFileNewRemitt")},
        {QStringLiteral("Appointments"), QStringLiteral("mnuFileNewAppointment")},
    };
    return keys;
}

QStringList allCommands() {
    QStringList out;
    QSet<QString> seen;
    for (const MenuEntry& e : menuTree()) {
        if (e.kind == Kind::Item && !seen.contains(e.name)) {
            seen.insert(e.name);
            out << e.name;
        }
    }
    for (const ToolBarDefinition& bar : toolBars()) {
        for (const ToolBarButton& b : bar.buttons) {
            if (!seen.contains(b.command)) {
                seen.insert(b.command);
                out << b.command;
            }
        }
    }
    return out;
}

const std::vector<ViewSetting>& viewSettings() {
    static const std::vector<ViewSetting> settings = [] {
        const QString general = QStringLiteral("QuillmerePadSettings");
        const QString bars = QStringLiteral("QuillmerePadToolbars");
        return std::vector<ViewSetting>{
            {QStringLiteral("mnuViewStatusBar"), general, QStringLiteral("ShowStatusBar"),
             QStringLiteral("1")},
            {QStringLiteral("mnuViewRuler"), general, QStringLiteral("ShowRuler"),
             QStringLiteral("0")},
            {QStringLiteral("mnuViewFileTree"), general, QStringLiteral("ShowFileTree"),
             QStringLiteral("1")},
            {QStringLiteral("mnuViewToolbarStandard"), bars, QStringLiteral("StandardToolbar"),
             QStringLiteral("1")},
            {QStringLiteral("mnuViewToolbarFile"), bars, QStringLiteral("FileToolbar"),
             QStringLiteral("1")},
            {QStringLiteral("mnuViewToolbarEdit"), bars, QStringLiteral("EditToolbar"),
             QStringLiteral("1")},
            {QStringLiteral("mnuViewToolbarFormat"), bars, QStringLiteral("FormatToolbar"),
             QStringLiteral("1")},
            {QStringLiteral("mnuViewToolbarFont"), bars, QStringLiteral("FontToolbar"),
             QStringLiteral("1")},
            {QStringLiteral("mnuViewToolbarWindow"), bars, QStringLiteral("WindowToolbar"),
             QStringLiteral("0")},
            {QStringLiteral("mnuViewToolbarMergeTutorial"), bars,
             QStringLiteral("MergeTutorialToolbar"), QStringLiteral("0")},
        };
    }();
    return settings;
}

QString popupTarget(const QString& popupItem) {
    static const QString prefix = QStringLiteral("mnuPopup");
    const MenuEntry* entry = findMenuEntry(popupItem);
    if (!popupItem.startsWith(prefix) || !entry || entry->kind != Kind::Item) {
        return {};
    }
    const QString rest = popupItem.mid(prefix.size());
    if (rest == QLatin1String("CaseUpper")) {
        return QStringLiteral("mnuFormatUpper");
    }
    if (rest == QLatin1String("CaseLower")) {
        return QStringLiteral("mnuFormatLower");
    }
    static const QStringList editItems = {QStringLiteral("Undo"),   QStringLiteral("Cut"),
                                          QStringLiteral("Copy"),   QStringLiteral("Paste"),
                                          QStringLiteral("Delete"), QStringLiteral("SelectAll")};
    const QString menu =
        editItems.contains(rest) ? QStringLiteral("mnuEdit") : QStringLiteral("mnuFormat");
    return menu + rest;
}
