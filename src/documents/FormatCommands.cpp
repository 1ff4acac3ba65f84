#include "documents/FormatCommands.h"

#include "platform/richtext/RichTextBox.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <vector>

namespace FormatCommands {

namespace {

// Several property writes that make one step for undo.
class OneUndoStep {
public:
    explicit OneUndoStep(RichTextBox& box) : m_cursor(box.document()) { m_cursor.beginEditBlock(); }
    ~OneUndoStep() { m_cursor.endEditBlock(); }
    OneUndoStep(const OneUndoStep&) = delete;
    OneUndoStep& operator=(const OneUndoStep&) = delete;

private:
    QTextCursor m_cursor;
};

// The largest font size the font bar takes, as the text box's limit.
constexpr double MaxFontSize = 1638;

} // namespace

bool toggleCharStyle(RichTextBox& box, CharStyle style) {
    if (box.Locked()) {
        return false;
    }
    switch (style) {
    case CharStyle::Bold: {
        const bool on = !box.SelBold().value_or(false);
        box.setSelBold(on);
        return on;
    }
    case CharStyle::Italic: {
        const bool on = !box.SelItalic().value_or(false);
        box.setSelItalic(on);
        return on;
    }
    case CharStyle::Underline: {
        const bool on = !box.SelUnderline().value_or(false);
        box.setSelUnderline(on);
        return on;
    }
    case CharStyle::StrikeThru: {
        const bool on = !box.SelStrikeThru().value_or(false);
        box.setSelStrikeThru(on);
        return on;
    }
    }
    return false;
}

void setAlignment(RichTextBox& box, int alignment) {
    if (!box.Locked()) {
        box.setSelAlignment(alignment);
    }
}

bool toggleBullet(RichTextBox& box) {
    if (box.Locked()) {
        return false;
    }
    const bool on = !box.SelBullet().value_or(false);
    OneUndoStep step(box);
    box.setSelBullet(on);
    box.setSelHangingIndent(on ? BulletHangingIndent : 0);
    return on;
}

void changeIndent(RichTextBox& box, Indent which, int twips) {
    if (box.Locked()) {
        return;
    }
    switch (which) {
    case Indent::Left:
        box.setSelIndent(box.SelIndent().value_or(0) + twips);
        break;
    case Indent::Right:
        box.setSelRightIndent(box.SelRightIndent().value_or(0) + twips);
        break;
    case Indent::Hanging:
        box.setSelHangingIndent(box.SelHangingIndent().value_or(0) + twips);
        break;
    }
}

void changeCase(RichTextBox& box, bool upper) {
    const QTextCursor selection = box.textCursor();
    if (box.Locked() || !selection.hasSelection()) {
        return;
    }
    const int from = selection.selectionStart();
    const int to = selection.selectionEnd();
    QTextDocument* document = box.document();
    struct Run {
        int start;
        int end;
        QTextCharFormat format;
    };
    std::vector<Run> runs;
    for (QTextBlock block = document->findBlock(from); block.isValid() && block.position() < to;
         block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const int start = std::max(fragment.position(), from);
            const int end = std::min(fragment.position() + fragment.length(), to);
            if (start < end) {
                runs.push_back({start, end, fragment.charFormat()});
            }
        }
    }
    QTextCursor edit(document);
    edit.beginEditBlock();
    int shift = 0; // case changes can change a run's length (ß to SS)
    for (const Run& run : runs) {
        edit.setPosition(run.start + shift);
        edit.setPosition(run.end + shift, QTextCursor::KeepAnchor);
        const QString before = edit.selectedText();
        const QString after = upper ? before.toUpper() : before.toLower();
        if (after != before) {
            edit.insertText(after, run.format);
            shift += static_cast<int>(after.size() - before.size());
        }
    }
    edit.endEditBlock();
    QTextCursor changed(document);
    changed.setPosition(from);
    changed.setPosition(to + shift, QTextCursor::KeepAnchor);
    box.setTextCursor(changed);
}

void setScript(RichTextBox& box, Script script) {
    if (box.Locked()) {
        return;
    }
    switch (script) {
    case Script::None:
        box.setSelCharOffset(0);
        break;
    case Script::Super:
        box.setSelCharOffset(ScriptOffset);
        break;
    case Script::Sub:
        box.setSelCharOffset(-ScriptOffset);
        break;
    }
}

FontChoice fontChoiceOf(const RichTextBox& box) {
    return {box.SelFontName(),  box.SelFontSize(),   box.SelBold(), box.SelItalic(),
            box.SelUnderline(), box.SelStrikeThru(), box.SelColor()};
}

void applyFontChoice(RichTextBox& box, const FontChoice& choice) {
    if (box.Locked()) {
        return;
    }
    OneUndoStep step(box);
    if (choice.name && !choice.name->trimmed().isEmpty()) {
        box.setSelFontName(choice.name->trimmed());
    }
    if (choice.bold) {
        box.setSelBold(*choice.bold);
    }
    if (choice.italic) {
        box.setSelItalic(*choice.italic);
    }
    if (choice.size && *choice.size > 0 && *choice.size <= MaxFontSize) {
        box.setSelFontSize(*choice.size);
    }
    if (choice.strikeThru) {
        box.setSelStrikeThru(*choice.strikeThru);
    }
    if (choice.underline) {
        box.setSelUnderline(*choice.underline);
    }
    if (choice.colour && choice.colour->isValid()) {
        box.setSelColor(*choice.colour);
    }
}

bool applyFontName(RichTextBox& box, const QString& name) {
    if (box.Locked() || name.trimmed().isEmpty()) {
        return false;
    }
    box.setSelFontName(name.trimmed());
    return true;
}

bool applyFontSize(RichTextBox& box, const QString& sizeText) {
    bool ok = false;
    const double size = sizeText.trimmed().toDouble(&ok);
    if (box.Locked() || !ok || size < 1 || size > MaxFontSize) {
        return false;
    }
    box.setSelFontSize(size);
    return true;
}

} // namespace FormatCommands
