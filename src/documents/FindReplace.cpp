#include "documents/FindReplace.h"

#include "platform/richtext/RichTextBox.h"

#include <QTextCursor>
#include <QTextDocument>
#include <vector>

namespace {

QString withParagraphEnds(const QString& text) {
    QString normalised = text;
    normalised.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    normalised.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return normalised;
}

} // namespace

QString FindReplace::notFoundMessage() {
    return QStringLiteral("The search text was not found");
}

QString FindReplace::replacementsMessage(int count) {
    return QString::number(count) + QStringLiteral(" replacements have been made.");
}

int FindReplace::options() const {
    return (wholeWord ? RichTextBox::rtfWholeWord : 0) |
           (matchCase ? RichTextBox::rtfMatchCase : 0) |
           (noHighlight ? RichTextBox::rtfNoHighlight : 0);
}

QString FindReplace::findCaption() const {
    return m_continuing ? QStringLiteral("&Find Next") : QStringLiteral("&Find");
}

FindReplace::Result FindReplace::find(RichTextBox& box) {
    int start = 0;
    if (m_continuing) {
        // Without highlighting the selection stays where it was, so the
        // search goes on from where the last hit ended.
        start = noHighlight ? m_resume : box.SelStart() + box.SelLength();
    }
    const int at = box.Find(findText, start, -1, options());
    if (at < 0) {
        m_continuing = false;
        m_resume = 0;
        return {-1, notFoundMessage()};
    }
    m_continuing = true;
    m_resume = at + static_cast<int>(findText.size());
    return {at, {}};
}

FindReplace::Result FindReplace::replace(RichTextBox& box) {
    const Qt::CaseSensitivity sensitivity = matchCase ? Qt::CaseSensitive : Qt::CaseInsensitive;
    if (!box.Locked() && !findText.isEmpty() && box.SelLength() > 0 &&
        box.SelText().compare(findText, sensitivity) == 0) {
        box.setSelText(replaceText);
        m_resume = box.SelStart();
    }
    return find(box);
}

FindReplace::Result FindReplace::replaceAll(RichTextBox& box) {
    m_continuing = false;
    m_resume = 0;
    if (box.Locked()) {
        return {-1, replacementsMessage(0)};
    }
    // One reading of the text, then the replacements from the last to the
    // first, so that positions found before any change still hold.
    const QString all = box.Text();
    const int length = static_cast<int>(findText.size());
    std::vector<std::pair<int, int>> hits; // document positions
    for (int at = RichTextBox::findIn(all, findText, 0, -1, options()); at >= 0;
         at = RichTextBox::findIn(all, findText, at + length, -1, options())) {
        hits.emplace_back(box.toDocumentPosition(at), box.toDocumentPosition(at + length));
    }
    if (hits.empty()) {
        return {-1, replacementsMessage(0)};
    }
    const QString replacement = withParagraphEnds(replaceText);
    QTextCursor edit(box.document());
    QTextCursor behindLast(box.document());
    edit.beginEditBlock();
    for (auto it = hits.rbegin(); it != hits.rend(); ++it) {
        edit.setPosition(it->first);
        edit.setPosition(it->second, QTextCursor::KeepAnchor);
        // Each replacement takes the format of the text it replaces.
        QTextCursor first(box.document());
        first.setPosition(it->first + 1);
        edit.insertText(replacement, first.charFormat());
        if (it == hits.rbegin()) {
            behindLast.setPosition(edit.position());
        }
    }
    edit.endEditBlock();
    QTextCursor caret(box.document());
    caret.setPosition(behindLast.position());
    box.setTextCursor(caret);
    return {box.SelStart(), replacementsMessage(static_cast<int>(hits.size()))};
}
