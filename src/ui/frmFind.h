#pragma once

#include "documents/FindReplace.h"

#include <QDialog>
#include <functional>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class frmDocument;

// The Find dialog: find, find next, replace and replace all over the active
// document. It stays open beside the document; the search state it works on
// is shared with the Find Next command.
class frmFind : public QDialog {
    Q_OBJECT
public:
    enum class Layout { Find, Replace };
    using DocumentSource = std::function<frmDocument*()>;

    // `search` and the document source must outlive the dialog.
    frmFind(FindReplace& search, DocumentSource document, QWidget* parent = nullptr);

    // Shows the dialog in a layout, seeded from the selection of the
    // active document when there is one.
    void showIn(Layout layout);
    Layout layout() const { return m_layout; }

    void cmdFind_Click();
    void cmdReplace_Click();
    void cmdReplaceAll_Click();
    // The find button's caption follows the shared search.
    void showCaptions();
    // What cmdHelp opens; the button stays off without it.
    void setHelp(std::function<void()> help);

private:
    void arrange(Layout layout);
    void readControls();
    void remember(QComboBox* box);

    FindReplace& m_search;
    DocumentSource m_document;
    Layout m_layout = Layout::Find;
    QComboBox* m_find;
    QComboBox* m_replace;
    QLabel* m_replaceLabel;
    QCheckBox* m_wholeWord;
    QCheckBox* m_matchCase;
    QCheckBox* m_noHighlight;
    QPushButton* m_findButton;
    QPushButton* m_replaceButton;
    QPushButton* m_replaceAllButton;
    QPushButton* m_helpButton;
    std::function<void()> m_help;
};

// Shows what a search came to: the message if there is one; on a hit the
// text gets the focus and the hit is scrolled into view.
void presentSearchResult(frmDocument& document, const FindReplace::Result& result);
