#pragma once

#include "documents/PageLayout.h"

#include <QObject>
#include <QPoint>
#include <QStringList>
#include <QTimer>
#include <vector>

class frmDocument;
class frmMain;

// Spelling as the user types, for one document window: misspelled words of
// the paragraphs in view (and the one being edited) get a red wavy
// underline a moment after typing stops, so typing itself never waits. A
// right click on such a word offers its first suggestions and Add.
class LiveSpellChecker : public QObject {
    Q_OBJECT

public:
    // How many suggestions the right-click menu offers.
    static constexpr int kMenuSuggestions = 5;

    // The checker lives as a child of the document window.
    explicit LiveSpellChecker(frmDocument& document);
    ~LiveSpellChecker() override;

    // The switch of the Options dialog, for every document window.
    static void setEnabled(bool on);
    static bool isEnabled();

    // Checks the paragraphs in view now and shows their underlines.
    void refresh();
    // The underlined words, in document positions.
    const std::vector<PageLayout::Highlight>& underlines() const { return m_underlines; }

    // The suggestions for a word, best first as the dialog orders them.
    QStringList suggestionsFor(const QString& word) const;
    // Adds the word to the word list file (or says why it cannot) and
    // takes its underlines away.
    void addWord(const QString& word);
    // The menu for the underlined word at a document position; false when
    // no underlined word stands there.
    bool showSuggestions(int position, const QPoint& globalPosition);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void schedule(int delayMs);

    frmDocument& m_document;
    QTimer m_timer;
    std::vector<PageLayout::Highlight> m_underlines;
};

// Attaches a checker to every document window the main window opens.
void installLiveSpelling(frmMain& window);
