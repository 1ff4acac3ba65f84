#include "app/modOptions.h"

#include "files/clsINI.h"

namespace {

const QString kDocument = QStringLiteral("Document");
const QString kTabs = QStringLiteral("DocumentTabs");
const QString kView = QStringLiteral("QuillmerePadSettings");
const QString kLiveSpelling = QStringLiteral("LiveSpelling");

QString truth(bool value) {
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

QString read(clsINI* ini, const QString& section, const QString& key, const QString& fallback) {
    return ini ? ini->getKeyString(section, key, fallback) : fallback;
}

} // namespace

const std::vector<OptionCheck>& optionChecks() {
    static const std::vector<OptionCheck> checks = [] {
        const QString bars = QStringLiteral("QuillmerePadToolbars");
        const QString view = QStringLiteral("QuillmerePadSettings");
        // The merge box writes MergeToolbar, while the window reads
        // MergeTutorialToolbar at start. The two keys stay apart, so a merge
        // bar chosen here does not come back after a restart.
        return std::vector<OptionCheck>{
            {"chkStandard", "Standard", bars, "StandardToolbar", "mnuViewToolbarStandard", "1"},
            {"chkFont", "Font", bars, "FontToolbar", "mnuViewToolbarFont", "1"},
            {"chkFormat", "Format", bars, "FormatToolbar", "mnuViewToolbarFormat", "1"},
            {"chkFile", "File", bars, "FileToolbar", "mnuViewToolbarFile", "0"},
            {"chkEdit", "Edit", bars, "EditToolbar", "mnuViewToolbarEdit", "0"},
            {"chkWindow", "Window", bars, "WindowToolbar", "mnuViewToolbarWindow", "0"},
            {"chkMerge", "Merge Tutorial", bars, "MergeToolbar", "mnuViewToolbarMergeTutorial",
             "1"},
            {"chkStatusBar", "Show Status Bar", view, "ShowStatusBar", "mnuViewStatusBar", "1"},
            {"chkRuler", "Show Ruler", view, "ShowRuler", "mnuViewRuler", "0"},
            {"chkFileTree", "Show File Tree", view, "ShowFileTree", "mnuViewFileTree", "1"},
        };
    }();
    return checks;
}

const QStringList& documentStateItems() {
    static const QStringList items = {QStringLiteral("Normal"), QStringLiteral("Minimized"),
                                      QStringLiteral("Maximized")};
    return items;
}

const QStringList& tabStyleItems() {
    static const QStringList items = {QStringLiteral("Office XP Style"),
                                      QStringLiteral("Office 2000 Style"),
                                      QStringLiteral("Office 2003 Style")};
    return items;
}

int storedListIndex(const QString& value, int count, int fallback) {
    bool ok = false;
    const int index = value.trimmed().toInt(&ok);
    return ok && index >= 0 && index < count ? index : fallback;
}

DocumentStartup readDocumentStartup(clsINI* ini) {
    return DocumentStartup(
        storedListIndex(read(ini, kDocument, QStringLiteral("WindowState"), QStringLiteral("2")),
                        int(documentStateItems().size()), int(DocumentStartup::Maximized)));
}

OptionsData Getdata(clsINI* ini, const OptionsContext& context) {
    OptionsData data;
    const QString storedFont =
        read(ini, kDocument, QStringLiteral("DefaultFont"), QStringLiteral("Arial"));
    const QString storedSize =
        read(ini, kDocument, QStringLiteral("DefaultFontSize"), QStringLiteral("10"));
    data.defaultFont = context.documentFont.value_or(storedFont);
    data.defaultFontSize = context.documentFontSize.value_or(storedSize);
    for (const OptionCheck& check : optionChecks()) {
        if (context.viewBuilt && !context.viewBuilt(check.viewCommand)) {
            // The View item of a missing bar is never checked; showing it
            // would make OK switch the bar off for a later build.
            data.unbuilt.insert(check.control);
            data.checks.insert(
                check.control,
                clsINI::isTrueValue(read(ini, check.section, check.key, check.firstValue)));
            continue;
        }
        data.checks.insert(check.control,
                           context.viewChecked && context.viewChecked(check.viewCommand));
    }
    // Read for its side effect: a missing key is written with its default.
    read(ini, kDocument, QStringLiteral("ViewMode"), QStringLiteral("2"));
    data.documentState = int(readDocumentStartup(ini));
    data.stayOnTop = context.stayOnTop;
    const TabStripSettings tabs = readTabStripSettings(ini);
    data.tabStyle = tabs.style;
    data.drawFocusRect = tabs.focusRectangle;
    data.drawIcons = tabs.icons;
    data.templatesFolder = context.templatesFolder;
    data.liveSpelling = readLiveSpellingSetting(ini);
    return data;
}

std::vector<SettingWrite> optionWrites(const OptionsData& data) {
    std::vector<SettingWrite> writes;
    writes.push_back({kDocument, QStringLiteral("DefaultFont"), data.defaultFont});
    writes.push_back({kDocument, QStringLiteral("DefaultFontSize"), data.defaultFontSize});
    for (const OptionCheck& check : optionChecks()) {
        writes.push_back({check.section, check.key, truth(data.checked(check.control))});
    }
    writes.push_back(
        {kDocument, QStringLiteral("WindowState"), QString::number(data.documentState)});
    writes.push_back({kTabs, QStringLiteral("Style"), QString::number(data.tabStyle)});
    writes.push_back({kTabs, QStringLiteral("ViewFocusRectangle"), truth(data.drawFocusRect)});
    writes.push_back({kTabs, QStringLiteral("ViewIcon"), truth(data.drawIcons)});
    writes.push_back({kView, kLiveSpelling, truth(data.liveSpelling)});
    return writes;
}

void SetData(clsINI* ini, const OptionsData& data) {
    if (!ini) {
        return;
    }
    for (const SettingWrite& w : optionWrites(data)) {
        ini->setKeyValue(w.section, w.key, w.value);
    }
}

bool readLiveSpellingSetting(clsINI* ini) {
    return clsINI::isTrueValue(read(ini, kView, kLiveSpelling, QStringLiteral("1")));
}

TabStripSettings readTabStripSettings(clsINI* ini) {
    TabStripSettings tabs;
    tabs.style = storedListIndex(read(ini, kTabs, QStringLiteral("Style"), QStringLiteral("2")),
                                 int(tabStyleItems().size()), 2);
    tabs.focusRectangle = clsINI::isTrueValue(
        read(ini, kTabs, QStringLiteral("ViewFocusRectangle"), QStringLiteral("0")));
    tabs.icons =
        clsINI::isTrueValue(read(ini, kTabs, QStringLiteral("ViewIcon"), QStringLiteral("0")));
    return tabs;
}
