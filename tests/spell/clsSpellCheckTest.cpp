#include "spell/clsSpellCheck.h"

#include "QtPrinters.h"
#include "context/AppContext.h"
#include "platform/MsgboxClass.h"
#include "platform/ProgressReporter.h"
#include "platform/richtext/RichTextBox.h"
#include "spell/SpellCheckSession.h"
#include "spell/SpellTextTarget.h"
#include "spell/modSpellMDBResource.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

const QString kNoAccess = QStringLiteral(
    "The spell check wizard was not able to access the spell check database and needs to close.");

class clsSpellCheckTest : public ::testing::Test {
protected:
    clsSpellCheckTest() {
        m_context->msgbox = &m_messages;
        m_context->progress = &m_progress;
        m_folder = m_env.path(QStringLiteral("templates"));
        QDir().mkpath(m_folder);
        m_spell.setAppFolder(m_folder);
        m_spell.setRTB(&m_text);
    }

    TestEnvironment m_env;
    ScopedAppContext m_context;
    ScriptedMsgbox m_messages;
    RecordingProgress m_progress;
    PlainSpellText m_text;
    clsSpellCheck m_spell;
    QString m_folder;
};

} // namespace

TEST_F(clsSpellCheckTest, StartsWithTheSessionDefaults) {
    const clsSpellCheck fresh;
    EXPECT_EQ(fresh.AccuracyPercentage(), 70);
    EXPECT_TRUE(fresh.PrecisionFilter());
    EXPECT_EQ(fresh.RelevanceOrder(), 1);
    EXPECT_EQ(fresh.Tolerance(), 3);
    EXPECT_TRUE(fresh.SortResultsByAccuracy());
    EXPECT_FALSE(fresh.SelectErrors());
    EXPECT_FALSE(fresh.HighlightErrors());
    EXPECT_TRUE(fresh.HighlightCorrections());
    EXPECT_FALSE(fresh.CommonWordExtensions());
    EXPECT_FALSE(fresh.FailedToInitializeFlag());
    EXPECT_TRUE(fresh.AppName().isEmpty());
    EXPECT_TRUE(fresh.AppFolder().isEmpty());
    EXPECT_EQ(fresh.RTB(), nullptr);
}

TEST_F(clsSpellCheckTest, WritesTheShippedListOnFirstUseAndKeepsItAfterwards) {
    const QString path = m_folder + QStringLiteral("/list.db");
    ASSERT_FALSE(QFile::exists(path));
    ASSERT_TRUE(m_spell.openSpellCheckDatabase());
    EXPECT_EQ(readTestFile(path), loadResourceBytes(101, QStringLiteral("CUSTOM")));
    EXPECT_GE(m_spell.wordDatabase().find(std::string_view("invoice")), 0);

    // An existing list is the user's (words may have been added): kept.
    writeTestFile(path, "quillmere\r\n");
    clsSpellCheck again;
    again.setAppFolder(m_folder + QLatin1Char('/'));
    ASSERT_TRUE(again.openSpellCheckDatabase());
    EXPECT_EQ(readTestFile(path), QByteArray("quillmere\r\n"));
    EXPECT_EQ(again.wordDatabase().find(std::string_view("quillmere")), 0);
    EXPECT_TRUE(m_messages.texts().isEmpty());
}

TEST_F(clsSpellCheckTest, AWordAddedToTheShippedListIsKnownToTheNextSession) {
    // The shipped list ends in two zero bytes behind its last line; an Add
    // once carried them into the file as a line of their own, and the next
    // session then took the whole list for damaged.
    ASSERT_TRUE(m_spell.openSpellCheckDatabase());
    m_spell.wordDatabase().Database_Add(QStringLiteral("quillmere"));
    clsSpellCheck next;
    next.setAppFolder(m_folder);
    ASSERT_TRUE(next.openSpellCheckDatabase());
    EXPECT_TRUE(next.wordListProblem().isEmpty()) << next.wordListProblem().toStdString();
    EXPECT_GE(next.wordDatabase().find(std::string_view("quillmere")), 0);
    EXPECT_GE(next.wordDatabase().find(std::string_view("invoice")), 0);
    EXPECT_TRUE(m_messages.texts().isEmpty());
}

TEST_F(clsSpellCheckTest, WithoutAFolderForTheListTheSessionEndsWithAMessage) {
    for (const QString& folder : QStringList{QString(), m_env.root() + "/absent/deeper"}) {
        m_messages.clear();
        clsSpellCheck spell;
        spell.setAppFolder(folder);
        EXPECT_FALSE(spell.openSpellCheckDatabase()) << folder.toStdString();
        EXPECT_TRUE(spell.FailedToInitializeFlag());
        EXPECT_EQ(m_messages.texts(), QStringList{kNoAccess});
    }
}

TEST_F(clsSpellCheckTest, DamagedListsLeaveTheCheckToTheBuiltInList) {
    struct Case {
        const char* name;
        QByteArray content; // null: a folder stands in the list's place
        const char* problem;
    };
    const Case cases[] = {
        {"empty list", QByteArray(""), "is damaged"},
        {"line feeds only", QByteArray("one\ntwo\n"), "is damaged"},
        {"binary",
         QByteArray("ab\0\x01\x02"
                    "cd\r\nef\r\n",
                    12),
         "is damaged"},
        {"a folder named like the list", QByteArray(), "could not be created"},
    };
    for (const Case& c : cases) {
        const QString folder = m_env.path(QString::fromLatin1(c.name).replace(' ', '_'));
        QDir().mkpath(folder);
        if (c.content.isNull()) {
            QDir().mkpath(folder + QStringLiteral("/list.db"));
        } else {
            writeTestFile(folder + QStringLiteral("/list.db"), c.content);
        }
        m_messages.clear();
        clsSpellCheck spell;
        spell.setAppFolder(folder);
        ASSERT_TRUE(spell.openSpellCheckDatabase()) << c.name;
        EXPECT_FALSE(spell.FailedToInitializeFlag()) << c.name;
        EXPECT_TRUE(m_messages.texts().isEmpty()) << c.name;
        EXPECT_GE(spell.wordDatabase().find(std::string_view("invoice")), 0) << c.name;
        EXPECT_TRUE(spell.wordListProblem().contains(QLatin1String(c.problem)))
            << c.name << ": " << spell.wordListProblem().toStdString();
        if (!c.content.isNull()) {
            // The user's file is left for them to look at.
            EXPECT_EQ(readTestFile(folder + QStringLiteral("/list.db")), c.content) << c.name;
        }
    }
}

TEST_F(clsSpellCheckTest, TellsAWordListFromOtherFiles) {
    EXPECT_TRUE(isWordListText("a\r\nb\r\n"));
    EXPECT_TRUE(isWordListText(QByteArray("a\r\nb\r\n\0\0", 8))); // as shipped
    EXPECT_TRUE(isWordListText("a\r\nb"));                        // last word dropped
    EXPECT_FALSE(isWordListText("ab"));
    EXPECT_FALSE(isWordListText("a\rb\r\n"));
    EXPECT_FALSE(isWordListText("a\tb\r\n"));
    EXPECT_FALSE(isWordListText(QByteArray("a\0b\r\n", 5)));
    // As an Add to the shipped list leaves it: its zero bytes a line of their own.
    EXPECT_TRUE(isWordListText(QByteArray("\0\0\r\na\r\nb\r\n", 10)));
    EXPECT_FALSE(isWordListText(QByteArray("\0\0x\r\na\r\n", 8)));
}

TEST_F(clsSpellCheckTest, StartShowsTheDialogOnlyWhenThereAreErrors) {
    struct Case {
        const char* name;
        QString text;
        bool dialog;
        QStringList messages;
    };
    const Case cases[] = {
        {"empty page", "", false, {"There are no spelling errors"}},
        {"symbols only", "-- & ... $ %", false, {"There are no spelling errors"}},
        {"clean text",
         "The invoice is attached.\r\nThank you.",
         false,
         {"There are no spelling errors"}},
        {"one error", "The invocie is attached.", true, {"Spell check complete"}},
    };
    for (const Case& c : cases) {
        m_messages.clear();
        m_text.setText(c.text);
        RecordingProgress progress;
        m_context->progress = &progress;
        QString shown;
        bool called = false;
        m_spell.startSpellCheck([&](SpellCheckSession& dialog) {
            called = true;
            shown = dialog.targetWord();
            while (!dialog.finished()) {
                dialog.skipWord();
            }
        });
        EXPECT_EQ(called, c.dialog) << c.name;
        EXPECT_EQ(m_messages.texts(), c.messages) << c.name;
        EXPECT_EQ(progress.caption(),
                  QStringLiteral("Checking document for spelling errors, please wait ..."))
            << c.name;
        EXPECT_TRUE(progress.ended()) << c.name;
        if (c.dialog) {
            EXPECT_EQ(shown, QStringLiteral("invocie")) << c.name;
        }
    }
}

TEST_F(clsSpellCheckTest, FailedStartShowsNoDialog) {
    m_spell.setAppFolder(QString());
    m_text.setText(QStringLiteral("teh"));
    bool called = false;
    m_spell.startSpellCheck([&](SpellCheckSession&) { called = true; });
    EXPECT_FALSE(called);
    EXPECT_TRUE(m_spell.FailedToInitializeFlag());
    EXPECT_EQ(m_messages.texts(), QStringList{kNoAccess});
    EXPECT_TRUE(m_progress.ended());
}

TEST_F(clsSpellCheckTest, PageCheckCorrectsTheControlAndRestoresTheCaret) {
    RichTextBox page;
    page.setText(QStringLiteral("We have recieved the invoice.\r\nThe acount is paid."));
    page.setSelStart(40);
    QStringList seen;
    spellCheckPage(page, m_folder, [&](SpellCheckSession& dialog) {
        while (!dialog.finished()) {
            seen << dialog.targetWord();
            // The menu command selects each error as it comes up.
            EXPECT_EQ(page.SelText(), dialog.targetWord());
            dialog.clickButton(SpellCheckSession::Replace);
        }
    });
    EXPECT_EQ(seen, QStringList({"recieved", "acount"}));
    EXPECT_EQ(page.Text(), QStringLiteral("We have received the invoice.\r\nThe amount is paid."));
    // The caret returns to where it was.
    EXPECT_EQ(page.SelStart(), 40);
    page.setSelStart(8);
    page.setSelLength(8);
    EXPECT_EQ(page.SelColor(), QColor(0, 0, 255));
    EXPECT_EQ(m_messages.texts(), QStringList{"Spell check complete"});

    m_context->isCreatingDocument = true;
    bool called = false;
    page.setText(QStringLiteral("teh"));
    spellCheckPage(page, m_folder, [&](SpellCheckSession&) { called = true; });
    EXPECT_FALSE(called);
}
