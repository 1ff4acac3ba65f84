#include "app/SelectionState.h"

#include "platform/richtext/RichTextBox.h"

ActiveDocumentState readSelectionState(const RichTextBox& box, int documentType, bool changed,
                                       bool clipboardHasText) {
    using Alignment = ActiveDocumentState::Alignment;
    ActiveDocumentState s;
    s.documentType = documentType;
    s.changed = changed;
    s.hasSelection = box.SelLength() != 0;
    s.canUndo = box.canUndo();
    s.clipboardHasText = clipboardHasText;
    switch (box.SelAlignment().value_or(RichTextBox::rtfJustify)) {
    case RichTextBox::rtfLeft:
        s.alignment = Alignment::Left;
        break;
    case RichTextBox::rtfRight:
        s.alignment = Alignment::Right;
        break;
    case RichTextBox::rtfCenter:
        s.alignment = Alignment::Center;
        break;
    default: // justified or mixed: no button of the three stands for it
        s.alignment = Alignment::Mixed;
        break;
    }
    s.bold = box.SelBold().value_or(false);
    s.italic = box.SelItalic().value_or(false);
    s.underline = box.SelUnderline().value_or(false);
    s.strikeThru = box.SelStrikeThru().value_or(false);
    s.bullet = box.SelBullet().value_or(false);
    s.fontName = box.SelFontName().value_or(QString());
    const auto size = box.SelFontSize();
    s.fontSize = size ? QString::number(*size) : QString();
    return s;
}
