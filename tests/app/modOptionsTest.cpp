#include "app/modOptions.h"

#include "context/AppContext.h"
#include "files/clsINI.h"
#include "spell/QtPrinters.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

namespace {

struct Fixture {
    TestEnvironment env;
    ScopedAppContext context;
    clsINI ini;
    Fixture() { ini.setINIFile(env.path(QStringLiteral("work/Qminiqmd.dni"))); }

    QString value(const char* section, const char* key) {
        return ini.getKeyString(QLatin1String(section), QLatin1String(key), QStringLiteral("-"));
    }

    // The View items as the window shows them after reading the file: each
    // follows the key its check box writes.
    OptionsContext windowAfterRestart() {
        OptionsContext c;
        c.viewChecked = [this](const QString& command) {
            for (const OptionCheck& check : optionChecks()) {
                if (check.viewCommand == command) {
                    return clsINI::isTrueValue(ini.getKeyString(check.section, check.key, "0"));
                }
            }
            return false;
        };
        return c;
    }
};

} // namespace

TEST(modOptionsTest, ANewSettingsFileOpensTheDialogOnItsFirstValues) {
    Fixture f;
    OptionsContext context;
    context.viewChecked = [](const QString& command) {
        return command == QLatin1String("mnuViewStatusBar");
    };
    // A build without the ruler shows the stored key, and knows it.
    context.viewBuilt = [](const QString& command) {
        return command != QLatin1String("mnuViewRuler") &&
               command != QLatin1String("mnuViewFileTree");
    };
    f.ini.setKeyValue(QStringLiteral("QuillmerePadSettings"), QStringLiteral("ShowRuler"),
                      QStringLiteral("True"));
    context.templatesFolder = QStringLiteral("/t/");
    f.ini.deleteKey(QStringLiteral("Document"), QStringLiteral("ViewMode"));
    const OptionsData data = Getdata(&f.ini, context);
    EXPECT_EQ(data.defaultFont, QStringLiteral("Arial"));
    EXPECT_EQ(data.defaultFontSize, QStringLiteral("10"));
    EXPECT_EQ(data.documentState, 2);
    EXPECT_EQ(data.tabStyle, 2);
    EXPECT_FALSE(data.drawFocusRect);
    EXPECT_FALSE(data.drawIcons);
    EXPECT_TRUE(data.checked(QStringLiteral("chkStatusBar")));
    EXPECT_FALSE(data.checked(QStringLiteral("chkStandard")));
    EXPECT_TRUE(data.checked(QStringLiteral("chkRuler")));
    EXPECT_TRUE(data.checked(QStringLiteral("chkFileTree")));
    EXPECT_EQ(data.unbuilt, (QSet<QString>{"chkRuler", "chkFileTree"}));
    EXPECT_EQ(data.templatesFolder, QStringLiteral("/t/"));
    EXPECT_EQ(data.checks.size(), 10);
    // Reading fills in a key the file lacks.
    EXPECT_EQ(f.value("Document", "ViewMode"), QStringLiteral("2"));

    // Without a settings object every value is its default and nothing fails.
    EXPECT_EQ(Getdata(nullptr, {}).defaultFont, QStringLiteral("Arial"));
    SetData(nullptr, data);
}

TEST(modOptionsTest, WithADocumentOpenItsFontIsOfferedInsteadOfTheDefault) {
    Fixture f;
    OptionsContext context;
    context.documentFont = QStringLiteral("DejaVu Serif");
    context.documentFontSize = QStringLiteral("14");
    const OptionsData data = Getdata(&f.ini, context);
    EXPECT_EQ(data.defaultFont, QStringLiteral("DejaVu Serif"));
    EXPECT_EQ(data.defaultFontSize, QStringLiteral("14"));
    // Only OK would store it.
    EXPECT_EQ(f.value("Document", "DefaultFont"), QStringLiteral("Arial"));
}

TEST(modOptionsTest, WhatTheDialogWritesComesBackAfterARestart) {
    struct Variant {
        const char* what;
        bool checks;
        int state;
        int style;
        bool flags;
    };
    for (const Variant& v :
         {Variant{"all on", true, 0, 0, true}, Variant{"all off", false, 1, 1, false},
          Variant{"maximised, flat tabs", true, 2, 2, false}}) {
        SCOPED_TRACE(v.what);
        Fixture f;
        OptionsData data;
        data.defaultFont = QStringLiteral("Liberation Serif");
        data.defaultFontSize = QStringLiteral("12");
        for (const OptionCheck& check : optionChecks()) {
            data.checks.insert(check.control, v.checks);
        }
        data.documentState = v.state;
        data.tabStyle = v.style;
        data.drawFocusRect = v.flags;
        data.drawIcons = !v.flags;
        data.liveSpelling = v.flags;
        SetData(&f.ini, data);

        const OptionsData back = Getdata(&f.ini, f.windowAfterRestart());
        EXPECT_EQ(back.defaultFont, data.defaultFont);
        EXPECT_EQ(back.defaultFontSize, data.defaultFontSize);
        EXPECT_EQ(back.checks, data.checks);
        EXPECT_EQ(back.documentState, v.state);
        EXPECT_EQ(back.tabStyle, v.style);
        EXPECT_EQ(back.drawFocusRect, v.flags);
        EXPECT_EQ(back.drawIcons, !v.flags);
        EXPECT_EQ(back.liveSpelling, v.flags);
        const QString truth = v.checks ? QStringLiteral("True") : QStringLiteral("False");
        EXPECT_EQ(f.value("QuillmerePadToolbars", "FileToolbar"), truth);
        EXPECT_EQ(f.value("QuillmerePadSettings", "ShowRuler"), truth);
        EXPECT_EQ(f.value("Document", "WindowState"), QString::number(v.state));
    }
}

TEST(modOptionsTest, TheMergeBoxWritesItsOwnKeyWhichTheWindowDoesNotRead) {
    Fixture f;
    OptionsData data = Getdata(&f.ini, {});
    data.checks[QStringLiteral("chkMerge")] = true;
    SetData(&f.ini, data);
    EXPECT_EQ(f.value("QuillmerePadToolbars", "MergeToolbar"), QStringLiteral("True"));
    // The window's key is never written by the dialog.
    EXPECT_TRUE(f.ini.getKeysInSection(QStringLiteral("QuillmerePadToolbars"))
                    .split(QChar(0))
                    .indexOf(QStringLiteral("MergeTutorialToolbar")) < 0);
}

TEST(modOptionsTest, JunkAndBothTruthSpellingsReadSafely) {
    const struct {
        const char* style;
        const char* focus;
        const char* icons;
        int expectedStyle;
        bool expectedFocus;
        bool expectedIcons;
    } cases[] = {
        {"0", "1", "True", 0, true, true},    {"1", "0", "false", 1, false, false},
        {"7", "-1", "FALSE", 2, true, false}, {"-1", "yes", "0", 2, false, false},
        {"abc", "TRUE", "1", 2, true, true},  {" 1 ", "False", "True", 1, false, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.style);
        Fixture f;
        const QString tabs = QStringLiteral("DocumentTabs");
        f.ini.setKeyValue(tabs, QStringLiteral("Style"), QLatin1String(c.style));
        f.ini.setKeyValue(tabs, QStringLiteral("ViewFocusRectangle"), QLatin1String(c.focus));
        f.ini.setKeyValue(tabs, QStringLiteral("ViewIcon"), QLatin1String(c.icons));
        const TabStripSettings got = readTabStripSettings(&f.ini);
        EXPECT_EQ(got.style, c.expectedStyle);
        EXPECT_EQ(got.focusRectangle, c.expectedFocus);
        EXPECT_EQ(got.icons, c.expectedIcons);
    }
    Fixture f;
    f.ini.setKeyValue(QStringLiteral("Document"), QStringLiteral("WindowState"),
                      QStringLiteral("3"));
    EXPECT_EQ(Getdata(&f.ini, {}).documentState, 2);
}

TEST(modOptionsTest, DocumentStartupIsTheStoredIndexOrMaximised) {
    EXPECT_EQ(readDocumentStartup(nullptr), DocumentStartup::Maximized);
    const struct {
        const char* stored;
        DocumentStartup expected;
    } cases[] = {{"0", DocumentStartup::Normal},     {" 1 ", DocumentStartup::Minimized},
                 {"2", DocumentStartup::Maximized},  {"3", DocumentStartup::Maximized},
                 {"-1", DocumentStartup::Maximized}, {"Normal", DocumentStartup::Maximized}};
    for (const auto& c : cases) {
        Fixture f;
        f.ini.setKeyValue(QStringLiteral("Document"), QStringLiteral("WindowState"),
                          QLatin1String(c.stored));
        EXPECT_EQ(readDocumentStartup(&f.ini), c.expected) << c.stored;
    }
    Fixture missing;
    EXPECT_EQ(readDocumentStartup(&missing.ini), DocumentStartup::Maximized);
    EXPECT_EQ(missing.value("Document", "WindowState"), QStringLiteral("2"));
}
