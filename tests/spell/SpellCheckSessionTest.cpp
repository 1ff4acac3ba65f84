#include "spell/SpellCheckSession.h"

#include "QtPrinters.h"
#include "context/AppContext.h"
#include "platform/MsgboxClass.h"
#include "platform/ProgressReporter.h"
#include "spell/SpellTextTarget.h"
#include "spell/clsSpellCheck.h"
#include "support/TestEnvironment.h"
#include "support/WriteBlockedFolder.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

class SpellCheckSessionTest : public ::testing::Test {
protected:
    SpellCheckSessionTest() {
        m_context->msgbox = &m_messages;
        m_spell.setAppFolder(m_env.path(QStringLiteral("templates")));
        QDir().mkpath(m_spell.AppFolder());
        m_spell.setRTB(&m_text);
    }

    // A list of our own in place of the shipped one.
    void useList(const QStringList& words) {
        QByteArray text;
        for (const QString& word : words) {
            text += word.toLatin1() + "\r\n";
        }
        writeTestFile(m_spell.databasePath(), text);
    }

    // Opens the list and scans `text`, as the dialog does when it opens.
    SpellCheckSession& start(const QString& text) {
        m_text.setText(text);
        EXPECT_TRUE(m_spell.openSpellCheckDatabase());
        m_session = std::make_unique<SpellCheckSession>(m_spell);
        m_session->Initialize();
        return *m_session;
    }

    // Each misspelling with its suggestions, in the command's layout.
    static QStringList walk(SpellCheckSession& session) {
        QStringList lines;
        while (!session.finished()) {
            QString line = session.targetWord() + QLatin1Char(':');
            if (!session.suggestions().isEmpty()) {
                line += QLatin1Char(' ') + session.suggestions().join(QStringLiteral(", "));
            }
            lines << line;
            session.skipWord();
        }
        return lines;
    }

    TestEnvironment m_env;
    ScopedAppContext m_context;
    ScriptedMsgbox m_messages;
    PlainSpellText m_text;
    clsSpellCheck m_spell;
    std::unique_ptr<SpellCheckSession> m_session;
};

} // namespace

// The golden files come from scripts/spell-reference.py, a separate reading
// of the rules over the shipped list (plain set look-ups, literal patterns).
TEST_F(SpellCheckSessionTest, LetterMatchesTheReferenceAtEachTolerance) {
    QString text =
        QString::fromUtf8(readTestFile(testDataPath(QStringLiteral("spell/letter.txt"))));
    for (int tolerance : {1, 2, 3}) {
        const QString golden = QString::fromUtf8(readTestFile(
            testDataPath(QStringLiteral("spell/letter.tolerance%1.golden").arg(tolerance))));
        m_spell.setTolerance(tolerance);
        SpellCheckSession& session = start(text);
        EXPECT_EQ(walk(session), golden.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
            << "tolerance " << tolerance;
    }
}

TEST_F(SpellCheckSessionTest, ListsEachOccurrenceInTextOrder) {
    useList({"cat", "mat", "on", "sat", "the"});
    struct Case {
        const char* name;
        QString text;
        QStringList misspellings;
    };
    const Case cases[] = {
        {"lines and blanks", "Teh cat sat\r\non  teh mat. teh", {"Teh", "teh", "teh"}},
        {"only blanks and line ends split", "cat,sat cat\tsat", {"cat,sat", "cat\tsat"}},
        {"punctuation trimmed", "(teh) \"mat\" --", {"teh"}},
        {"lone line feeds are not line ends", "cat\nsat", {"cat\nsat"}},
        {"skipped tokens", "a@b http://x 3rd 12th 31th", {"31th"}},
        {"empty", "", {}},
        {"a word of 10,000 letters",
         QString(10000, QLatin1Char('x')) + " cat",
         {QString(10000, QLatin1Char('x'))}},
    };
    for (const Case& c : cases) {
        SpellCheckSession& session = start(c.text);
        EXPECT_EQ(session.misspellings(), c.misspellings) << c.name;
    }
}

TEST_F(SpellCheckSessionTest, SuggestionsFollowTheSettings) {
    useList({"bad", "bat", "bet", "bit", "bog", "but", "cat", "hat", "ledger", "leader"});
    struct Case {
        const char* name;
        int tolerance;
        bool sort;
        bool precision;
        int order;
        QString word;
        QStringList expected;
    };
    const Case cases[] = {
        {"two letters, duplicates removed",
         2,
         false,
         false,
         1,
         "bxt",
         {"bat", "bet", "bit", "but", "cat", "hat", "bad", "bog"}},
        {"one letter only", 1, false, false, 1, "bxt", {"bat", "bet", "bit", "but"}},
        {"three letters fail the precision filter", 3, true, true, 1, "bxt", {}},
        // Against "lexder", leader (found first) scores 83 and ledger 67:
        // the pass puts the drop first; the filter removes ledger.
        {"sorted ascending", 3, true, false, 1, "lexder", {"ledger", "leader"}},
        {"sorted descending", 3, true, false, 2, "lexder", {"leader", "ledger"}},
        {"filtered", 3, true, true, 1, "lexder", {"leader"}},
        {"longer than any word of the list", 3, true, true, 1, QString(300, QLatin1Char('b')), {}},
    };
    start(QString());
    for (const Case& c : cases) {
        m_spell.setTolerance(c.tolerance);
        m_spell.setSortResultsByAccuracy(c.sort);
        m_spell.setPrecisionFilter(c.precision);
        m_spell.setRelevanceOrder(c.order);
        m_session->listSuggestions(c.word);
        EXPECT_EQ(m_session->suggestions(), c.expected) << c.name;
    }
}

TEST_F(SpellCheckSessionTest, ReplaceChangesTheNextOccurrenceAndColoursIt) {
    useList({"cat", "the"});
    m_spell.setPrecisionFilter(false); // "the" scores 33 against "teh"
    SpellCheckSession& session = start(QStringLiteral("tehran teh cat teh"));
    ASSERT_EQ(session.targetWord(), QStringLiteral("tehran"));
    session.skipWord();
    ASSERT_EQ(session.targetWord(), QStringLiteral("teh"));
    EXPECT_EQ(session.changeTo(), QStringLiteral("the"));

    session.clickButton(SpellCheckSession::Replace);
    EXPECT_EQ(m_text.Text(), QStringLiteral("tehran the cat teh"));
    ASSERT_FALSE(m_text.colourMarks().empty());
    EXPECT_EQ(m_text.colourMarks().back().start, 7);
    EXPECT_EQ(m_text.colourMarks().back().colour, QColor(0, 0, 255));

    session.setChangeTo(QStringLiteral("THE"));
    session.clickButton(SpellCheckSession::Replace);
    EXPECT_EQ(m_text.Text(), QStringLiteral("tehran the cat THE"));
    EXPECT_TRUE(session.finished());
    EXPECT_EQ(m_messages.texts(), QStringList{"Spell check complete"});
}

TEST_F(SpellCheckSessionTest, ReplaceAllUsesTheChosenSuggestionAndDropsTheWord) {
    useList({"bat", "bet", "cat"});
    m_spell.setPrecisionFilter(false);
    SpellCheckSession& session = start(QStringLiteral("bxt cat bxt dog bxt fox"));
    ASSERT_EQ(session.misspellings(), QStringList({"bxt", "bxt", "dog", "bxt", "fox"}));
    session.skipWord(); // the first stays as it is
    // cat (33) drops below bat (67) and goes to the head.
    ASSERT_EQ(session.suggestions(), QStringList({"cat", "bat", "bet"}));
    EXPECT_EQ(session.changeTo(), QStringLiteral("cat"));
    session.clickSuggestion(2);
    EXPECT_EQ(session.changeTo(), QStringLiteral("bet"));
    session.clickButton(SpellCheckSession::ReplaceAll);

    EXPECT_EQ(m_text.Text(), QStringLiteral("bxt cat bet dog bet fox"));
    EXPECT_EQ(session.misspellings(), QStringList({"dog", "fox"}));
    // No entry is passed over for the ones dropped before it.
    EXPECT_EQ(session.targetWord(), QStringLiteral("dog"));
    session.skipWord();
    EXPECT_EQ(session.targetWord(), QStringLiteral("fox"));
}

TEST_F(SpellCheckSessionTest, AddWritesTheListAndIgnoreAllForgetsTheWord) {
    useList({"cat"});
    SpellCheckSession& session = start(QStringLiteral("Quillmere cat zork Quillmere zork"));
    ASSERT_EQ(session.targetWord(), QStringLiteral("Quillmere"));
    session.clickButton(SpellCheckSession::Add);
    EXPECT_EQ(m_messages.texts(), QStringList{"Quillmere has been added to the dictionary."});
    EXPECT_EQ(readTestFile(m_spell.databasePath()), QByteArray("cat\r\nquillmere\r\n"));
    // The index of this session is left as it was.
    EXPECT_EQ(m_spell.wordDatabase().find(std::string_view("quillmere")), -1);
    EXPECT_EQ(session.misspellings(), QStringList({"zork", "zork"}));
    EXPECT_EQ(session.targetWord(), QStringLiteral("zork"));

    session.clickButton(SpellCheckSession::IgnoreAll);
    EXPECT_TRUE(session.finished());
    EXPECT_TRUE(session.misspellings().isEmpty());
}

TEST_F(SpellCheckSessionTest, AddToAListThatCannotTakeItSaysWhyAndKeepsTheWord) {
    useList({"cat"});
    const QByteArray before = readTestFile(m_spell.databasePath());
    QFile::setPermissions(m_spell.databasePath(), QFile::ReadOwner | QFile::ReadGroup);
    // Root is not stopped by the mode bits; the folder refuses the rewrite.
    WriteBlockedFolder blocked(m_spell.AppFolder(), QFile::ReadOwner | QFile::ExeOwner);
    if (!blocked.blocked()) {
        GTEST_SKIP() << blocked.whyNot().toStdString();
    }
    SpellCheckSession& session = start(QStringLiteral("cat zork"));
    ASSERT_EQ(session.targetWord(), QStringLiteral("zork"));
    session.clickButton(SpellCheckSession::Add);
    ASSERT_EQ(m_messages.texts().size(), 1);
    EXPECT_TRUE(m_messages.texts().first().startsWith(
        QStringLiteral("zork cannot be added to the dictionary because the word list \"")))
        << m_messages.texts().first().toStdString();
    EXPECT_EQ(readTestFile(m_spell.databasePath()), before);
    EXPECT_EQ(session.targetWord(), QStringLiteral("zork"));
    EXPECT_FALSE(session.finished());
    session.clickButton(SpellCheckSession::IgnoreAll);
    EXPECT_TRUE(session.finished());
}

TEST_F(SpellCheckSessionTest, AddToADamagedListLeavesTheFileAlone) {
    const QByteArray damaged("zz\0\0\x7f\x01", 6);
    writeTestFile(m_spell.databasePath(), damaged);
    SpellCheckSession& session = start(QStringLiteral("The invoice is zorkish."));
    ASSERT_EQ(session.targetWord(), QStringLiteral("zorkish"));
    session.clickButton(SpellCheckSession::Add);
    EXPECT_EQ(m_messages.texts(),
              QStringList{QStringLiteral("zorkish cannot be added to the dictionary because the "
                                         "word list \"%1\" is damaged.")
                              .arg(QDir::toNativeSeparators(m_spell.databasePath()))});
    EXPECT_EQ(readTestFile(m_spell.databasePath()), damaged);
}

TEST_F(SpellCheckSessionTest, PlaceholdersAreNeverFlaggedNorChanged) {
    useList({"dear", "the", "year", "ends", "on", "cat"});
    m_spell.setSelectErrors(true);
    const QString text =
        QStringLiteral("Dear \u00ABContact Frist Name\u00BB,\r\n"
                       "The year ends on \u00AB(Year End Date, mmmm d yyyy)\u00BB frist.\r\n"
                       "An open \u00ABfrist stays text.");
    SpellCheckSession& session = start(text);
    EXPECT_EQ(session.misspellings(),
              QStringList({"frist", "An", "open", "frist", "stays", "text"}));
    ASSERT_EQ(session.targetWord(), QStringLiteral("frist"));
    // The word shown is one of the letter's, not the one inside the field.
    EXPECT_EQ(m_text.SelStart(), text.lastIndexOf(QStringLiteral("frist")));
    session.setChangeTo(QStringLiteral("first"));
    session.clickButton(SpellCheckSession::Replace);
    EXPECT_TRUE(m_text.Text().startsWith(
        QStringLiteral("Dear \u00ABContact Frist Name\u00BB,\r\n"
                       "The year ends on \u00AB(Year End Date, mmmm d yyyy)\u00BB first.")))
        << m_text.Text().toStdString();
}

TEST_F(SpellCheckSessionTest, SelectErrorsSelectsTheLastOccurrence) {
    useList({"cat"});
    m_spell.setSelectErrors(true);
    SpellCheckSession& session = start(QStringLiteral("zork cat zork"));
    EXPECT_EQ(session.targetWord(), QStringLiteral("zork"));
    EXPECT_EQ(m_text.SelStart(), 9);
    EXPECT_EQ(m_text.SelLength(), 4);
    EXPECT_FALSE(m_text.Locked());
}

TEST_F(SpellCheckSessionTest, HighlightErrorsPutsTheMarkedTextBack) {
    useList({"cat", "sat"});
    m_spell.setHighlightErrors(true);
    SpellCheckSession& session = start(QStringLiteral("cat zork {x}\r\nsat zork"));
    // The first misspelling marks every later occurrence too.
    EXPECT_EQ(session.ErrorText(),
              QStringLiteral("cat \\cf1 zork\\cf0  {x}\r\nsat \\cf1 zork\\cf0 "));
    const QString rtf = m_text.lastSelRTF();
    EXPECT_TRUE(rtf.startsWith(QStringLiteral("{\\rtf1")));
    EXPECT_TRUE(rtf.contains(QStringLiteral("{\\colortbl ;\\red255\\green0\\blue0;}")));
    EXPECT_TRUE(rtf.endsWith(
        QStringLiteral("\\fs17 cat \\cf1 zork\\cf0  \\{x\\}\\par sat \\cf1 zork\\cf0 }")))
        << rtf.toStdString();
}

TEST_F(SpellCheckSessionTest, ActionsWithoutAWordDoNothing) {
    useList({"cat"});
    SpellCheckSession& session = start(QStringLiteral("cat"));
    EXPECT_TRUE(session.finished());
    for (auto button :
         {SpellCheckSession::Replace, SpellCheckSession::ReplaceAll, SpellCheckSession::Ignore,
          SpellCheckSession::Add, SpellCheckSession::IgnoreAll, SpellCheckSession::SkipWord}) {
        session.clickButton(button);
    }
    EXPECT_EQ(m_text.Text(), QStringLiteral("cat"));
    EXPECT_TRUE(m_messages.texts().isEmpty());
    EXPECT_EQ(readTestFile(m_spell.databasePath()), QByteArray("cat\r\n"));
}

TEST_F(SpellCheckSessionTest, CancelledScanListsNothingAndShowsNoMessage) {
    useList({QStringLiteral("the"), QStringLiteral("letter")});
    RecordingProgress progress;
    progress.cancelAfter(0);
    m_context->progress = &progress;
    SpellCheckSession& session = start(QStringLiteral("the lettr\r\nthe wrod"));
    EXPECT_TRUE(session.scanCancelled());
    EXPECT_TRUE(session.misspellings().isEmpty());

    // The whole check stops without the dialog and without "no errors".
    bool dialogShown = false;
    m_spell.startSpellCheck([&](SpellCheckSession&) { dialogShown = true; });
    EXPECT_FALSE(dialogShown);
    EXPECT_TRUE(m_messages.shown().empty());

    // Uncancelled, the same text has its two misspellings.
    m_context->progress = nullptr;
    EXPECT_EQ(start(QStringLiteral("the lettr\r\nthe wrod")).misspellings(),
              QStringList({QStringLiteral("lettr"), QStringLiteral("wrod")}));
}
