#include "spell/RichTextSpellText.h"

#include "platform/richtext/RichTextBox.h"

QString RichTextSpellText::Text() const {
    return m_box.Text();
}

void RichTextSpellText::select(int start, int length) {
    m_box.setSelStart(start);
    m_box.setSelLength(length);
    m_selectionColour.reset();
}

int RichTextSpellText::SelStart() const {
    return m_box.SelStart();
}

int RichTextSpellText::SelLength() const {
    return m_box.SelLength();
}

void RichTextSpellText::setSelColor(const QColor& colour) {
    m_box.setSelColor(colour);
    m_selectionColour = colour;
}

void RichTextSpellText::setSelBold(bool on) {
    m_box.setSelBold(on);
}

void RichTextSpellText::setSelText(const QString& text) {
    const int start = m_box.SelStart();
    m_box.setSelText(text);
    if (m_selectionColour && !text.isEmpty()) {
        m_box.setSelStart(start);
        m_box.setSelLength(int(text.size()));
        m_box.setSelColor(*m_selectionColour);
        m_box.setSelStart(start + int(text.size()));
        m_box.setSelLength(0);
    }
    m_selectionColour.reset();
}

void RichTextSpellText::setSelRTF(const QString& rtf) {
    m_box.setSelRTF(rtf);
    m_selectionColour.reset();
}

bool RichTextSpellText::Locked() const {
    return m_box.Locked();
}

void RichTextSpellText::setLocked(bool locked) {
    m_box.setLocked(locked);
}
