#include "spell/SpellCheckSession.h"

#include "context/AppContext.h"
#include "platform/MsgboxClass.h"
#include "platform/ProgressReporter.h"
#include "platform/errorClass.h"
#include "platform/text/CodePage1252.h"
#include "spell/SpellTextTarget.h"
#include "spell/clsSpellCheck.h"
#include "spell/modSpellSearch.h"

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QHash>
#include <QPalette>

namespace {

const QString kModule = QStringLiteral("QuillmerePad.exe-frmSpellCheck-");

bool isWordCharacter(QChar c) {
    return c.isLetter() || c.isDigit();
}

constexpr QChar kOpen(0x00AB);
constexpr QChar kClose(0x00BB);

// True when `at` lies within a closed placeholder on its line.
bool insidePlaceholder(const QString& text, qsizetype at) {
    for (qsizetype i = at; i >= 0; --i) {
        const QChar c = text.at(i);
        if (c == kClose && i != at) {
            return false;
        }
        if (c == QLatin1Char('\n') || c == QLatin1Char('\r')) {
            return false;
        }
        if (c == kOpen) {
            for (qsizetype j = at; j < text.size(); ++j) {
                const QChar d = text.at(j);
                if (d == kClose) {
                    return true;
                }
                if (d == QLatin1Char('\r') || d == QLatin1Char('\n') || (d == kOpen && j != i)) {
                    return false;
                }
            }
            return false;
        }
    }
    return false;
}

// The text with every closed placeholder on a line blanked out: field names
// and their formats ("mmmm d yyyy") are no words of the letter.
QString withoutPlaceholders(const QString& text) {
    QString out = text;
    qsizetype open = -1;
    for (qsizetype i = 0; i < out.size(); ++i) {
        const QChar c = out.at(i);
        if (c == kOpen) {
            open = i;
        } else if (c == QLatin1Char('\r') || c == QLatin1Char('\n')) {
            open = -1;
        } else if (c == kClose && open >= 0) {
            for (qsizetype j = open; j <= i; ++j) {
                out[j] = QLatin1Char(' ');
            }
            open = -1;
        }
    }
    return out;
}

// Lets waiting input through now and then during a long scan; asking the
// clock for every token would cost more than the check itself.
class InputPump {
public:
    InputPump() { m_timer.start(); }
    void tick() {
        if (++m_count % 256 == 0 && m_timer.elapsed() >= 50) {
            doEventsIfInputPending();
            m_timer.restart();
        }
    }

private:
    QElapsedTimer m_timer;
    unsigned m_count = 0;
};

} // namespace

SpellCheckSession::SpellCheckSession(clsSpellCheck& owner) : m_owner(owner) {}

bool SpellCheckSession::Initialize() {
    ProcedureScope scope(m_owner.errorObject(), kModule + QStringLiteral("Initialize"));
    getSpellingErrors();
    const bool hasErrors = !m_misspellings.isEmpty();
    m_index = 0;
    loadNextMisspelledWord();
    return hasErrors;
}

void SpellCheckSession::getSpellingErrors() {
    ProcedureScope scope(m_owner.errorObject(), kModule + QStringLiteral("getSpellingErrors"));
    m_misspellings.clear();
    m_suggestions.clear();
    m_selectedSuggestion = -1;
    m_scanCancelled = false;
    SpellTextTarget* rtb = m_owner.RTB();
    if (rtb == nullptr) {
        return;
    }
    const QString text = rtb->Text();
    if (text.isEmpty()) {
        return;
    }
    rtb->select(0, int(text.size()));
    rtb->setSelColor(QColor(0, 0, 0));
    m_errorText = text;
    m_highlightPosition = 0;

    InputPump pump;
    const QString scanned = withoutPlaceholders(text);
    const QStringView all(scanned);
    qsizetype lineStart = 0;
    for (;;) {
        const qsizetype lineEnd = text.indexOf(QLatin1String("\r\n"), lineStart);
        const qsizetype stop = lineEnd < 0 ? text.size() : lineEnd;
        qsizetype tokenStart = lineStart;
        while (tokenStart <= stop) {
            qsizetype tokenEnd = tokenStart;
            while (tokenEnd < stop && all.at(tokenEnd) != QLatin1Char(' ')) {
                ++tokenEnd;
            }
            findMisspelledWords(all.mid(tokenStart, tokenEnd - tokenStart), 0);
            pump.tick();
            tokenStart = tokenEnd + 1;
        }
        pump.tick();
        if (ProgressReporter* progress = app().progress; progress && progress->cancelled()) {
            m_scanCancelled = true;
            m_misspellings.clear();
            return;
        }
        if (lineEnd < 0) {
            break;
        }
        lineStart = lineEnd + 2;
    }

    if (m_owner.HighlightErrors()) {
        rtb->select(0, int(text.size()));
        rtb->setSelRTF(highlightRtf(m_errorText));
    }
}

void SpellCheckSession::findMisspelledWords(QStringView token, int mode) {
    if (token.isEmpty() || !Filter_Word(token)) {
        return;
    }
    const QStringView word = Filter_Punctuation(token);
    // Symbols alone leave nothing to look up; the empty word has no slot.
    if (word.isEmpty() || Word_Compare(m_owner.wordDatabase(), word)) {
        return;
    }
    const QString entry = word.toString();
    m_misspellings << entry;
    if (!m_owner.HighlightErrors()) {
        return;
    }
    if (mode == 0) {
        Word_Highlight(m_errorText, m_highlightPosition, entry);
    } else if (SpellTextTarget* rtb = m_owner.RTB()) {
        Word_Highlight(*rtb, m_errorText, entry);
    }
}

void SpellCheckSession::loadNextMisspelledWord() {
    ProcedureScope scope(m_owner.errorObject(), kModule + QStringLiteral("loadNextMisspelledWord"));
    if (m_misspellings.isEmpty()) {
        m_owner.closeAnimation();
        unload();
        return;
    }
    if (m_index >= m_misspellings.size()) {
        m_owner.closeAnimation();
        if (MsgboxClass* box = m_owner.messages()) {
            box->showMessage(QStringLiteral("Spell check complete"));
        }
        unload();
        return;
    }
    m_targetWord = m_misspellings.at(m_index);
    listSuggestions(m_targetWord);
    m_selectedSuggestion = m_suggestions.isEmpty() ? -1 : 0;
    m_changeTo = m_suggestions.isEmpty() ? QString() : m_suggestions.first();
    ++m_index;

    SpellTextTarget* rtb = m_owner.RTB();
    if (m_owner.SelectErrors() && rtb != nullptr) {
        const QString text = rtb->Text();
        qsizetype at = text.lastIndexOf(m_targetWord);
        while (at >= 0 && insidePlaceholder(text, at)) {
            at = at == 0 ? -1 : text.lastIndexOf(m_targetWord, at - 1);
        }
        if (at >= 0) {
            const bool wasLocked = rtb->Locked();
            rtb->setLocked(true);
            rtb->select(int(at), int(m_targetWord.size()));
            rtb->setLocked(wasLocked);
        }
    }
}

void SpellCheckSession::listSuggestions(const QString& word) {
    ProcedureScope scope(m_owner.errorObject(), kModule + QStringLiteral("listSuggestions"));
    m_suggestions.clear();
    SpellWordDatabase& database = m_owner.wordDatabase();
    switch (m_owner.Tolerance()) {
    case 1:
        Word_Suggest(database, word, 0, m_suggestions);
        break;
    case 2:
        Word_Suggest(database, word, 1, m_suggestions);
        Remove_Duplicates();
        break;
    default:
        Word_Suggest(database, word, 2, m_suggestions);
        Remove_Duplicates();
        break;
    }
    if (m_owner.SortResultsByAccuracy()) {
        Suggest_Sort(word, m_suggestions, m_owner.RelevanceOrder());
    }
    if (m_owner.PrecisionFilter()) {
        for (qsizetype i = m_suggestions.size() - 1; i >= 0; --i) {
            if (!Match_Tolerance(word, m_suggestions.at(i), m_owner.AccuracyPercentage())) {
                m_suggestions.removeAt(i);
            }
        }
    }
}

void SpellCheckSession::Remove_Duplicates() {
    QSet<QString> seen;
    QStringList kept;
    kept.reserve(m_suggestions.size());
    for (const QString& entry : std::as_const(m_suggestions)) {
        if (!seen.contains(entry)) {
            seen.insert(entry);
            kept << entry;
        }
    }
    m_suggestions = std::move(kept);
}

void SpellCheckSession::removeFromSuggestionList(const QString& word) {
    for (qsizetype i = m_misspellings.size() - 1; i >= 0; --i) {
        if (m_misspellings.at(i) == word) {
            m_misspellings.removeAt(i);
            if (i < m_index) {
                --m_index;
            }
        }
    }
}

qsizetype SpellCheckSession::findWord(const QString& text, qsizetype from) const {
    const qsizetype length = m_targetWord.size();
    qsizetype at = std::max<qsizetype>(from, 0);
    while ((at = text.indexOf(m_targetWord, at)) >= 0) {
        const bool startsWord = at == 0 || !isWordCharacter(text.at(at - 1));
        const bool endsWord = at + length >= text.size() || !isWordCharacter(text.at(at + length));
        if (startsWord && endsWord && !insidePlaceholder(text, at)) {
            return at;
        }
        ++at;
    }
    return -1;
}

void SpellCheckSession::stepPastTarget() {
    SpellTextTarget* rtb = m_owner.RTB();
    if (rtb == nullptr) {
        return;
    }
    const qsizetype at = findWord(rtb->Text(), m_searchPosition);
    if (at >= 0) {
        m_searchPosition = at + m_targetWord.size();
    }
}

void SpellCheckSession::clickButton(Button button) {
    switch (button) {
    case Replace:
        replaceWord();
        break;
    case ReplaceAll:
        replaceAll();
        break;
    case Ignore:
        ignoreWord();
        break;
    case Add:
        addWord();
        break;
    case IgnoreAll:
        ignoreAll();
        break;
    case SkipWord:
        skipWord();
        break;
    }
}

void SpellCheckSession::replaceWord() {
    ProcedureScope scope(m_owner.errorObject(), kModule + QStringLiteral("cmdControls_Click"));
    if (m_targetWord.trimmed().isEmpty()) {
        return;
    }
    SpellTextTarget* rtb = m_owner.RTB();
    if (rtb != nullptr && !m_changeTo.isEmpty()) {
        const qsizetype at = findWord(rtb->Text(), m_searchPosition);
        if (at >= 0) {
            rtb->select(int(at), int(m_targetWord.size()));
            if (m_owner.HighlightCorrections()) {
                rtb->setSelColor(QColor(0, 0, 255));
            }
            rtb->setSelText(m_changeTo);
            m_searchPosition = at + m_changeTo.size();
        }
    }
    loadNextMisspelledWord();
}

void SpellCheckSession::replaceAll() {
    ProcedureScope scope(m_owner.errorObject(), kModule + QStringLiteral("cmdControls_Click"));
    if (m_targetWord.trimmed().isEmpty()) {
        return;
    }
    const QString replacement =
        m_selectedSuggestion >= 0 && m_selectedSuggestion < m_suggestions.size()
            ? m_suggestions.at(m_selectedSuggestion)
            : QString();
    SpellTextTarget* rtb = m_owner.RTB();
    if (rtb != nullptr && !replacement.isEmpty()) {
        qsizetype from = m_searchPosition;
        qsizetype at;
        while ((at = findWord(rtb->Text(), from)) >= 0) {
            rtb->select(int(at), int(m_targetWord.size()));
            if (m_owner.HighlightCorrections()) {
                rtb->setSelColor(QColor(0, 0, 255));
            }
            rtb->setSelText(replacement);
            from = at + replacement.size();
        }
    }
    removeFromSuggestionList(m_targetWord);
    loadNextMisspelledWord();
}

void SpellCheckSession::ignoreWord() {
    ProcedureScope scope(m_owner.errorObject(), kModule + QStringLiteral("cmdControls_Click"));
    if (m_targetWord.trimmed().isEmpty()) {
        return;
    }
    SpellTextTarget* rtb = m_owner.RTB();
    if (m_owner.HighlightErrors() && rtb != nullptr) {
        const QColor windowText = QGuiApplication::palette().color(QPalette::WindowText);
        const QString text = rtb->Text();
        for (qsizetype at = findWord(text, 0); at >= 0; at = findWord(text, at + 1)) {
            rtb->select(int(at), int(m_targetWord.size()));
            rtb->setSelBold(false);
            rtb->setSelColor(windowText);
        }
    }
    stepPastTarget();
    loadNextMisspelledWord();
}

void SpellCheckSession::addWord() {
    ProcedureScope scope(m_owner.errorObject(), kModule + QStringLiteral("cmdControls_Click"));
    if (m_targetWord.trimmed().isEmpty()) {
        return;
    }
    QString reason = m_owner.wordListProblem();
    if (reason.isEmpty()) {
        try {
            m_owner.wordDatabase().Database_Add(m_targetWord.toLower());
        } catch (const QmError& fault) {
            reason = fault.number() == QmError::PermissionDenied
                         ? QStringLiteral("the word list \"%1\" is read-only")
                               .arg(QDir::toNativeSeparators(m_owner.databasePath()))
                         : QStringLiteral("the word list \"%1\" cannot be written")
                               .arg(QDir::toNativeSeparators(m_owner.databasePath()));
        }
    }
    MsgboxClass* box = m_owner.messages();
    if (!reason.isEmpty()) {
        // The word stays on show, so that the user can ignore it instead.
        if (box) {
            box->showMessage(m_targetWord +
                             QStringLiteral(" cannot be added to the dictionary "
                                            "because ") +
                             reason + QLatin1Char('.'));
        }
        return;
    }
    if (box) {
        box->showMessage(m_targetWord + QStringLiteral(" has been added to the dictionary."));
    }
    removeFromSuggestionList(m_targetWord);
    loadNextMisspelledWord();
}

void SpellCheckSession::ignoreAll() {
    if (m_targetWord.trimmed().isEmpty()) {
        return;
    }
    removeFromSuggestionList(m_targetWord);
    loadNextMisspelledWord();
}

void SpellCheckSession::skipWord() {
    if (m_targetWord.trimmed().isEmpty()) {
        return;
    }
    stepPastTarget();
    loadNextMisspelledWord();
}

void SpellCheckSession::cancel() {
    unload();
}

void SpellCheckSession::clickSuggestion(int index) {
    if (index < 0 || index >= m_suggestions.size()) {
        return;
    }
    m_selectedSuggestion = index;
    m_changeTo = m_suggestions.at(index);
}

void SpellCheckSession::doubleClickSuggestion(int index) {
    if (index < 0 || index >= m_suggestions.size()) {
        return;
    }
    clickSuggestion(index);
    replaceWord();
}

void SpellCheckSession::unload() {
    m_finished = true;
}

QString SpellCheckSession::highlightRtf(const QString& markedText) {
    static const QString open = QStringLiteral("\\cf1 ");
    static const QString close = QStringLiteral("\\cf0 ");
    QString body;
    body.reserve(markedText.size() + markedText.size() / 8);
    for (qsizetype i = 0; i < markedText.size(); ++i) {
        const QStringView rest = QStringView(markedText).mid(i);
        if (rest.startsWith(open) || rest.startsWith(close)) {
            body += rest.left(open.size());
            i += open.size() - 1;
            continue;
        }
        if (rest.startsWith(QLatin1String("\r\n"))) {
            body += QLatin1String("\\par ");
            ++i;
            continue;
        }
        const QChar c = markedText.at(i);
        if (c == QLatin1Char('\\') || c == QLatin1Char('{') || c == QLatin1Char('}')) {
            body += QLatin1Char('\\');
            body += c;
        } else if (c.unicode() < 0x80) {
            body += c;
        } else if (const auto byte = CodePage1252::fromUnicode(c)) {
            body += QStringLiteral("\\'%1").arg(int(*byte), 2, 16, QLatin1Char('0'));
        } else {
            body += QStringLiteral("\\u%1?").arg(int(qint16(c.unicode())));
        }
    }
    return QStringLiteral("{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033"
                          "{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}}"
                          "{\\colortbl ;\\red255\\green0\\blue0;}"
                          "\\viewkind4\\uc1\\pard\\lang1033\\f0\\fs17 ") +
           body + QLatin1Char('}');
}
