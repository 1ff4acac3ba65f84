#include "app/modMenuStatus.h"

#include "app/MenuDefinition.h"

#include <gtest/gtest.h>

namespace {

using Alignment = ActiveDocumentState::Alignment;

QStringList enabledOf(const MenuStatus& s, const QStringList& commands) {
    QStringList out;
    for (const QString& c : commands) {
        if (s.isEnabled(c)) {
            out << c;
        }
    }
    return out;
}

// The commands the refinement decides, with the state field each follows.
const QStringList kSelectionCommands = {QStringLiteral("mnuFileSaveSelectionAs"),
                                        QStringLiteral("mnuEditCut"),
                                        QStringLiteral("mnuEditCopy"),
                                        QStringLiteral("mnuEditDelete"),
                                        QStringLiteral("tbrStandard.Cut"),
                                        QStringLiteral("tbrStandard.Copy"),
                                        QStringLiteral("tbrEdit.Cut"),
                                        QStringLiteral("tbrEdit.Copy")};
const QStringList kUndoCommands = {QStringLiteral("mnuEditUndo"),
                                   QStringLiteral("tbrStandard.Undo"),
                                   QStringLiteral("tbrEdit.Undo")};
const QStringList kPasteCommands = {QStringLiteral("mnuEditPaste"),
                                    QStringLiteral("tbrStandard.Paste"),
                                    QStringLiteral("tbrEdit.Paste")};

TEST(MenuStatus, WithNoDocumentTheWholeGroupIsOffAndTheRestStaysOn) {
    MenuStatus s;
    EnableOrDisableAllMenuAndButtons(s, false);
    EXPECT_TRUE(enabledOf(s, availabilityGroup()).isEmpty());
    for (const char* always : {"mnuFileNewStandard", "mnuFileOpenNormal", "mnuFileExit",
                               "mnuViewStatusBar", "mnuToolsOptions", "mnuWindowCascade",
                               "mnuHelpAbout", "tbrStandard.New", "tbrFile.Open"}) {
        EXPECT_TRUE(s.isEnabled(QLatin1String(always))) << always;
    }
    // An unload with no document left changes nothing.
    MenuStatus after = s;
    EXPECT_FALSE(SetAppropriateMenuStatus(after, std::nullopt));
    EXPECT_EQ(after.disabled, s.disabled);
}

TEST(MenuStatus, GroupNamesExistInTheMenuTreeOrOnAToolBar) {
    QSet<QString> known;
    for (const QString& c : allCommands()) {
        known.insert(c);
    }
    for (const MenuEntry& e : menuTree()) {
        known.insert(e.name);
    }
    for (const ToolBarDefinition& bar : toolBars()) {
        for (const ToolBarButton& b : bar.buttons) {
            known.insert(buttonCommandId(bar.name, b.key));
        }
    }
    for (const QString& c : availabilityGroup()) {
        EXPECT_TRUE(known.contains(c)) << c.toStdString();
    }
}

struct Case {
    const char* what;
    ActiveDocumentState doc;
    bool selection;
    bool undo;
    bool paste;
    bool revert;
};

class Refinement : public ::testing::TestWithParam<Case> {};

TEST_P(Refinement, FollowsSelectionUndoClipboardAndDirtyFlag) {
    const Case& c = GetParam();
    const MenuStatus s = ResetMenuStatus(MenuStatus{}, c.doc);
    for (const QString& cmd : kSelectionCommands) {
        EXPECT_EQ(s.isEnabled(cmd), c.selection) << cmd.toStdString();
    }
    for (const QString& cmd : kUndoCommands) {
        EXPECT_EQ(s.isEnabled(cmd), c.undo) << cmd.toStdString();
    }
    for (const QString& cmd : kPasteCommands) {
        EXPECT_EQ(s.isEnabled(cmd), c.paste) << cmd.toStdString();
    }
    EXPECT_EQ(s.isEnabled(QStringLiteral("mnuFileRevert")), c.revert);
    // The rest of the group is on whatever the document's state.
    for (const char* on :
         {"mnuFileSave", "mnuFileClose", "mnuEditRedo", "mnuEditSelectAll", "mnuSearchFind",
          "mnuToolsSpellCheck", "tbrFormat.Bold", "tbrStandard.Redo"}) {
        EXPECT_TRUE(s.isEnabled(QLatin1String(on))) << on;
    }
}

ActiveDocumentState doc(int type, bool changed, bool sel, bool undo, bool clip) {
    ActiveDocumentState d;
    d.documentType = type;
    d.changed = changed;
    d.hasSelection = sel;
    d.canUndo = undo;
    d.clipboardHasText = clip;
    return d;
}

INSTANTIATE_TEST_SUITE_P(
    DocumentStates, Refinement,
    ::testing::Values(
        Case{"fresh standard", doc(0, false, false, false, false), false, false, false, false},
        Case{"typed, never saved", doc(0, true, false, true, false), false, true, false, true},
        Case{"selection", doc(0, true, true, true, false), true, true, false, true},
        Case{"clipboard text", doc(1, false, false, false, true), false, false, true, false},
        Case{"merge document all", doc(2, true, true, true, true), true, true, true, true},
        Case{"saved with undo", doc(3, false, true, true, false), true, true, false, false},
        // A locked result keeps everything the blanket switch turned on.
        Case{"locked result", doc(4, false, false, false, false), true, true, true, true}),
    [](const ::testing::TestParamInfo<Case>& param) {
        std::string n = param.param.what;
        std::replace_if(
            n.begin(), n.end(), [](char ch) { return !std::isalnum(ch); }, '_');
        return n;
    });

TEST(MenuStatus, LockedDocumentKeepsTheFormatBarAsItWas) {
    MenuStatus before;
    before.bold = true;
    before.fontName = QStringLiteral("Arial");
    ActiveDocumentState locked = doc(4, false, false, false, false);
    locked.bold = false;
    locked.fontName = QStringLiteral("Times");
    const MenuStatus s = ResetMenuStatus(before, locked);
    EXPECT_TRUE(s.bold);
    EXPECT_EQ(s.fontName, QStringLiteral("Arial"));
}

struct AlignCase {
    Alignment alignment;
    bool left, center, right;
};

class Alignments : public ::testing::TestWithParam<AlignCase> {};

TEST_P(Alignments, PressOneButtonOrKeepThePreviousOnAMixedSelection) {
    MenuStatus before;
    before.left = false;
    before.center = true;
    before.right = false;
    ActiveDocumentState d;
    d.alignment = GetParam().alignment;
    const MenuStatus s = ResetMenuStatus(before, d);
    EXPECT_EQ(s.left, GetParam().left);
    EXPECT_EQ(s.center, GetParam().center);
    EXPECT_EQ(s.right, GetParam().right);
}

INSTANTIATE_TEST_SUITE_P(FormatBar, Alignments,
                         ::testing::Values(AlignCase{Alignment::Left, true, false, false},
                                           AlignCase{Alignment::Right, false, false, true},
                                           AlignCase{Alignment::Center, false, true, false},
                                           AlignCase{Alignment::Mixed, false, true, false}));

TEST(MenuStatus, FormatBarAndFontBoxesFollowTheSelection) {
    ActiveDocumentState d;
    d.bold = true;
    d.underline = true;
    d.bullet = true;
    d.fontName = QStringLiteral("Liberation Serif");
    d.fontSize = QStringLiteral("12");
    MenuStatus before;
    before.italic = true;
    before.strikeThru = true;
    const MenuStatus s = ResetMenuStatus(before, d);
    EXPECT_TRUE(s.bold);
    EXPECT_FALSE(s.italic);
    EXPECT_TRUE(s.underline);
    EXPECT_FALSE(s.strikeThru);
    EXPECT_TRUE(s.bullet);
    EXPECT_EQ(s.fontName, d.fontName);
    EXPECT_EQ(s.fontSize, d.fontSize);
}

TEST(MenuStatus, AButtonSharingAMenuItemsActionAgreesWithItInEveryState) {
    // The window gives such a button the menu item's action, so the two
    // must never be told apart by the table.
    for (const ActiveDocumentState& d :
         {doc(0, false, false, false, false), doc(0, true, true, true, true),
          doc(0, true, false, true, false), doc(0, false, true, false, true)}) {
        const MenuStatus s = ResetMenuStatus(MenuStatus{}, d);
        MenuStatus none;
        EnableOrDisableAllMenuAndButtons(none, false);
        for (const ToolBarDefinition& bar : toolBars()) {
            for (const ToolBarButton& b : bar.buttons) {
                const QString own = buttonCommandId(bar.name, b.key);
                if (b.command == own || bar.name == QLatin1String("tbrWindow")) {
                    continue;
                }
                EXPECT_EQ(s.isEnabled(own), s.isEnabled(b.command)) << own.toStdString();
                EXPECT_EQ(none.isEnabled(own), none.isEnabled(b.command)) << own.toStdString();
            }
        }
    }
}

TEST(MenuStatus, ACommandNotBuiltIsNeverAvailable) {
    const MenuStatus allOn = ResetMenuStatus(MenuStatus{}, doc(0, true, true, true, true));
    for (const QString& c : allCommands()) {
        EXPECT_FALSE(commandAvailable(allOn, c, false)) << c.toStdString();
    }
    EXPECT_TRUE(commandAvailable(allOn, QStringLiteral("mnuFileNewStandard"), true));
    MenuStatus off;
    EnableOrDisableAllMenuAndButtons(off, false);
    EXPECT_FALSE(commandAvailable(off, QStringLiteral("mnuFileSave"), true));
}

} // namespace
