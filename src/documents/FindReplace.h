#pragma once

#include <QString>

class RichTextBox;

// The searches of the Find dialog and of Find Next over a document's text
// box: find, replace one, replace all. The object remembers whether the next
// search starts at the top ("&Find") or goes on behind the last hit
// ("&Find Next"); it never goes round past the end of the document.
//
// Positions are those of RichTextBox::Text. Nothing here shows anything: a
// result carries the message the caller shows, if any.
class FindReplace {
public:
    static QString notFoundMessage();
    // "N replacements have been made."
    static QString replacementsMessage(int count);

    QString findText;
    QString replaceText;
    bool wholeWord = false;
    bool matchCase = false;
    bool noHighlight = false;

    // The Find options of RichTextBox for the three check boxes.
    int options() const;
    // Whether the next search goes on behind the last hit.
    bool continuing() const { return m_continuing; }
    // The caption of the dialog's find button: "&Find" or "&Find Next".
    QString findCaption() const;

    struct Result {
        int position = -1; // the hit, -1 when there was none
        QString message;   // to show, empty for none
    };

    // A search from the top, or behind the last hit. A hit is selected
    // (unless noHighlight) and the next search goes on behind it; no hit
    // gives the not-found message and the next search starts at the top.
    Result find(RichTextBox& box);
    // Puts the replacement in place of the selection when the selection is
    // the search text (case as matchCase says), then searches on as find().
    // Does nothing to a locked box but search.
    Result replace(RichTextBox& box);
    // Replaces every occurrence from the top, each search going on behind
    // the previous replacement (a replacement that holds the search text is
    // not searched again), as one undo step. The caret ends behind the last
    // replacement. A locked box is left alone and counts 0.
    Result replaceAll(RichTextBox& box);

private:
    bool m_continuing = false;
    int m_resume = 0; // behind the last hit, for searches that do not select
};
