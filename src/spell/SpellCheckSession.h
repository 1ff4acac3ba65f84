#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

class clsSpellCheck;
class SpellTextTarget;

// The logic of the spell-check dialog, without the window: the list of
// misspellings of the checked text, the word shown and its suggestions, and
// the actions of the dialog's buttons on the text and the word list. The
// window shows targetWord(), changeTo() and suggestions(), and calls the
// actions; when finished() turns true it closes.
class SpellCheckSession {
public:
    // The dialog's buttons, by index of the button array.
    enum Button : int {
        Replace = 0,
        ReplaceAll = 1,
        Ignore = 2,
        Add = 3,
        IgnoreAll = 4,
        SkipWord = 5
    };

    // The settings, the text (RTB) and the loaded word list come from
    // `owner`, which must outlive the session.
    explicit SpellCheckSession(clsSpellCheck& owner);

    // Scans the text, answers whether it has misspellings, and shows the
    // first one. False as well when the user cancelled the scan.
    bool Initialize();
    // The scan stopped because the progress in force (app().progress) was
    // cancelled; nothing is listed or marked.
    bool scanCancelled() const { return m_scanCancelled; }

    // Fills the list of misspellings from the text, in order, one entry for
    // each occurrence. The text is split at CR LF and blanks only; what
    // stands in a placeholder «...» is never checked. With
    // HighlightErrors the text is put back with the misspellings in red.
    void getSpellingErrors();
    // Checks one token and lists it when it is a misspelling; `mode` is
    // the highlighting mode (0 marks the module's copy of the text, 1 the
    // control).
    void findMisspelledWords(QStringView token, int mode);
    // Shows the next entry, or finishes: with no entries at all silently,
    // otherwise with "Spell check complete".
    void loadNextMisspelledWord();
    // The suggestions for `word` after generation, duplicate removal,
    // sorting and the precision filter, as the settings ask.
    void listSuggestions(const QString& word);
    // Drops repeated suggestions; the first of equal entries stays.
    void Remove_Duplicates();
    // Drops every entry equal to `word` from the misspellings. Entries
    // already passed count against the position, so no later one is skipped.
    void removeFromSuggestionList(const QString& word);

    // The actions of the buttons. Each does nothing while no word is shown,
    // and otherwise ends by showing the next word.
    void clickButton(Button button);
    // Replaces the shown word's next occurrence with changeTo().
    void replaceWord();
    // Replaces every following occurrence with the selected suggestion and
    // drops the word from the remaining misspellings.
    void replaceAll();
    // With HighlightErrors, takes the marks off every occurrence.
    void ignoreWord();
    // Adds the word (in lower case, the form look-ups use) to the list file
    // and drops it from the misspellings. The index in memory is not
    // changed. When the list file cannot take it (damaged, read-only), the
    // user is told why and the word stays on show.
    void addWord();
    void ignoreAll();
    void skipWord();
    void cancel();

    // A click on a suggestion copies it to changeTo(); a double click also
    // replaces.
    void clickSuggestion(int index);
    void doubleClickSuggestion(int index);

    const QStringList& misspellings() const { return m_misspellings; }
    const QStringList& suggestions() const { return m_suggestions; }
    int selectedSuggestion() const { return m_selectedSuggestion; }
    const QString& targetWord() const { return m_targetWord; }
    const QString& changeTo() const { return m_changeTo; }
    void setChangeTo(const QString& text) { m_changeTo = text; }
    // Index of the next entry to show.
    int nextIndex() const { return m_index; }
    bool finished() const { return m_finished; }
    // The checked text as read, with marks when HighlightErrors is on.
    const QString& ErrorText() const { return m_errorText; }

    // The small RTF document that carries a marked text back into the
    // control: line ends become \par, "\cf1 " and "\cf0 " switch red on and
    // off, everything else is escaped as text.
    static QString highlightRtf(const QString& markedText);

private:
    qsizetype findWord(const QString& text, qsizetype from) const;
    void stepPastTarget();
    void unload();

    clsSpellCheck& m_owner;
    QStringList m_misspellings;
    QStringList m_suggestions;
    int m_selectedSuggestion = -1;
    QString m_targetWord;
    QString m_changeTo;
    int m_index = 0;
    bool m_finished = false;
    QString m_errorText;
    qsizetype m_highlightPosition = 0;
    qsizetype m_searchPosition = 0;
    bool m_scanCancelled = false;
};
