#include "files/clsINI.h"

#include "context/AppContext.h"
#include "platform/PrivateProfile.h"
#include "platform/SpecialFolders.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/text/stringControl.h"

namespace {

using Line = std::pair<const char*, QString>;

struct Section {
    const char* name;
    std::vector<Line> lines;
};

QString notSet() {
    return QString::fromLatin1(clsINI::NotSet);
}

std::vector<Line> windowPlacement() {
    return {{"WindowState", notSet()},
            {"WindowTop", notSet()},
            {"WindowLeft", notSet()},
            {"WindowWidth", notSet()},
            {"WindowHeight", notSet()}};
}

std::vector<Line> concat(std::vector<Line> a, const std::vector<Line>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

} // namespace

clsINI::clsINI() : IniFileBase(QStringLiteral("Quillmere"), QStringLiteral("clsINI")) {}

errorClass* clsINI::errors() const {
    // May run before the error object exists; then it neither pushes tags
    // nor reports.
    return app().errors;
}

void clsINI::setINIFile(const QString& path) {
    ProcedureScope scope(errors(), tag("INIFile"));
    m_file = path;
    if (!fileControl::FileExists(path)) {
        writeNewINI();
    }
}

void clsINI::upgradeINI() {
    ProcedureScope scope(errors(), tag("upgradeINI"));
    setKeyValue(QStringLiteral("Quillmere"), QStringLiteral("Version"), getProgramVersion());
}

void clsINI::writeNewINI() {
    ProcedureScope scope(errors(), tag("writeNewINI"));
    if (m_file.isEmpty()) {
        return;
    }
    // The backgrounds folder is fixed below My Documents; the folder object
    // may not exist yet when the first settings file is written.
    const QString backgrounds =
        SpecialFolders::myDocuments() + QStringLiteral("Quillmere Files/Backgrounds/");
    PrivateProfile::writeWholeFile(
        m_file, newINIText(getProgramVersion(), backgrounds, SpecialFolders::programFolder()));
}

QString clsINI::newINIText(const QString& programVersion, const QString& backgroundsFolder,
                           const QString& programFolder) {
    const QString oldBackground =
        fileControl::AddBackslash(programFolder) + QStringLiteral("Backgrounds/Brightmoor3.jpg");
    const std::vector<Section> table = {
        {"Quillmere", {{"Version", programVersion}}},
        {"ContactLedger", {{"Version", programVersion}}},
        {"ContactLedgerInfo", {{"dataLocation", notSet()}}},
        {"QuillmerePad", {{"Version", programVersion}}},
        {"QuillmereInfo",
         {{"dataLocation", notSet()},
          {"Province", notSet()},
          {"DefaultUser", notSet()},
          {"ProfileT1Folder", {}},
          {"ProfileT2Folder", {}},
          {"DefaultSynchFolderLocation", {}}}},
        {"templatesFolder", {{"FolderLocation", {}}}},
        {"WindowSettings", concat(concat({{"BackgroundType", "3"},
                                          {"BackgroundPicturePosition", "4"},
                                          {"BackgroundColour", "5979440"},
                                          {"BackgroundPicPath",
                                           backgroundsFolder + QStringLiteral("Brightmoor5.jpg")},
                                          {"BackgroundGradientColour1", "5979440"},
                                          {"BackgroundGradientColour2", "0"},
                                          {"BackgroundGradientAngle", "0"}},
                                         windowPlacement()),
                                  {{"FormWidth", "11640"},
                                   {"FormHeight", "8340"},
                                   {"DocumentSplitter", notSet()},
                                   {"SideBarBox1", "1"},
                                   {"SideBarBox2", "2"},
                                   {"SideBarBox3", "1"}})},
        {"AutoNotify", {{"ShowQMPreview", "0"}, {"ShowEmailPreview", "1"}}},
        {"Popup",
         {{"PopupColour", "1"},
          {"PopupCorners", "1"},
          {"PopupGradient", "1"},
          {"PopupEffect", "1"},
          {"PopupTiming", "1"},
          {"PopupAlert", "-1"},
          {"PopupWeekend", "-1"}}},
        {"Upgrade",
         {{"UpgradeVisibility", "2"},
          {"UpgradeAtStartup", "-1"},
          {"UpgradeOnInterval", "0"},
          {"numMonthsWait", "10"},
          {"lastUpgrade", notSet()}}},
        {"CompressFile",
         {{"CompressAtStartup", "0"}, {"CompressOnInterval", "-1"}, {"numMonthsWait", "3"}}},
        {"ContactLedgerWindowSettings",
         concat(concat({{"BackgroundType", "3"},
                        {"BackgroundPicturePosition", "2"},
                        {"BackgroundColour", "0"},
                        {"BackgroundPicPath", oldBackground},
                        {"BackgroundGradientColour1", "16711680"},
                        {"BackgroundGradientColour2", "0"},
                        {"BackgroundGradientAngle", "0"}},
                       windowPlacement()),
                {{"FormWidth", "11640"}, {"FormHeight", "8340"}, {"FormSplitter", notSet()}})},
        {"QuillmerePadToolbars",
         {{"EditToolbar", "0"},
          {"FileToolbar", "0"},
          {"FontToolbar", "1"},
          {"FormatToolbar", "1"},
          {"StandardToolbar", "1"},
          {"WindowToolbar", "0"},
          {"MergeToolbar", "1"}}},
        {"Document",
         {{"ViewMode", "2"},
          {"DefaultFont", "Arial"},
          {"DefaultFontSize", "10"},
          {"WindowState", "2"}}},
        {"DocumentTabs", {{"Style", "2"}, {"ViewFocusRectangle", "0"}, {"ViewIcon", "0"}}},
        {"QuillmerePadSettings",
         {{"StayOnTop", "0"},
          {"ShowStatusBar", "1"},
          {"ShowRuler", "0"},
          {"ShowFileTree", "1"},
          {"ShowTipsAtStartup", "0"}}},
        {"QuillmerePadWindowSettings",
         concat(windowPlacement(), {{"FormWidth", "11640"},
                                    {"FormHeight", "8340"},
                                    {"BackgroundType", "3"},
                                    {"BackgroundPicturePosition", "3"},
                                    {"BackgroundColour", "0"},
                                    {"BackgroundPicPath", oldBackground},
                                    {"BackgroundGradientColour1", "16711680"},
                                    {"BackgroundGradientColour2", "0"},
                                    {"BackgroundGradientAngle", "0"}})},
        {"QuillmerePadMRU",
         {{"Name1", {}},
          {"Name2", {}},
          {"Name3", {}},
          {"Name4", {}},
          {"Name5", {}},
          {"Name6", {}},
          {"Name7", {}},
          {"Name8", {}}}},
    };

    QString text;
    bool first = true;
    for (const Section& section : table) {
        if (!first) {
            text += QStringLiteral("\r\n");
        }
        first = false;
        text += QLatin1Char('[') + QLatin1String(section.name) + QStringLiteral("]\r\n");
        for (const auto& [key, value] : section.lines) {
            text += QLatin1String(key) + QLatin1Char('=') + value + QStringLiteral("\r\n");
        }
    }
    return text;
}

clsINI::Version clsINI::parseVersion(const QString& text) {
    const QStringList parts = text.split(QLatin1Char('.'));
    auto part = [&](int i) -> short {
        if (i >= parts.size()) {
            return 0;
        }
        // The third piece is everything after the second point.
        const QString piece = i == 2 ? parts.mid(2).join(QLatin1Char('.')) : parts.at(i);
        return static_cast<short>(stringControl::leadingNumber(piece));
    };
    return Version{part(0), part(1), part(2)};
}

bool clsINI::isPriorVersion(const QString& a, const QString& b) {
    const Version x = parseVersion(a);
    const Version y = parseVersion(b);
    return x.major > y.major || x.minor > y.minor || x.revision > y.revision;
}

bool clsINI::isTrueValue(const QString& value) {
    const QString v = value.trimmed();
    if (v.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) {
        return true;
    }
    if (v.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) {
        return false;
    }
    return stringControl::leadingNumber(v) != 0;
}
