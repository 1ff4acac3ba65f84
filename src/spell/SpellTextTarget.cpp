#include "spell/SpellTextTarget.h"

#include <algorithm>

void PlainSpellText::setText(const QString& text) {
    m_text = text;
    m_selStart = 0;
    m_selLength = 0;
}

void PlainSpellText::select(int start, int length) {
    const int size = int(m_text.size());
    m_selStart = std::clamp(start, 0, size);
    m_selLength = std::clamp(length, 0, size - m_selStart);
}

void PlainSpellText::setSelColor(const QColor& colour) {
    m_marks.push_back({m_selStart, m_selLength, colour});
}

void PlainSpellText::setSelText(const QString& text) {
    m_text.replace(m_selStart, m_selLength, text);
    m_selStart += int(text.size());
    m_selLength = 0;
}

void PlainSpellText::setSelRTF(const QString& rtf) {
    m_lastSelRtf = rtf;
}
