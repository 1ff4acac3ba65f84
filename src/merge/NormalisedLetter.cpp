#include "merge/NormalisedLetter.h"

#include "merge/MergeSubstitution.h"
#include "platform/richtext/RichTextBox.h"

#include <algorithm>

namespace {

bool isPlainCharacter(QChar c) {
    const char16_t u = c.unicode();
    return u >= 0x20 && u < 0x7F && u != u'\\' && u != u'{' && u != u'}';
}

} // namespace

bool NormalisedLetter::isPlainValue(QStringView value) {
    return !value.isEmpty() && std::all_of(value.begin(), value.end(), isPlainCharacter);
}

std::optional<NormalisedLetter> NormalisedLetter::fromTemplate(RichTextBox& scratch,
                                                               const QString& templateRtf) {
    scratch.setTextRTF(templateRtf);
    if (scratch.TextRTF() != templateRtf) {
        return std::nullopt;
    }
    NormalisedLetter check;
    const QString& open = MergeSyntax::openEscape();
    const QString& close = MergeSyntax::closeEscape();
    qsizetype from = 0;
    for (;;) {
        const qsizetype start = templateRtf.indexOf(open, from);
        if (start < 0) {
            break;
        }
        const qsizetype end = templateRtf.indexOf(close, start + open.size());
        if (end < 0) {
            break;
        }
        // A span with formatting inside is more than one run's text.
        const QStringView inner =
            QStringView(templateRtf).mid(start + open.size(), end - start - open.size());
        if (!std::all_of(inner.begin(), inner.end(), isPlainCharacter)) {
            return std::nullopt;
        }
        check.m_segments << templateRtf.mid(from, start - from);
        from = end + close.size();
    }
    if (check.m_segments.isEmpty()) {
        return std::nullopt;
    }
    check.m_segments << templateRtf.mid(from);
    return check;
}

bool NormalisedLetter::isFixedPoint(const QString& letter) const {
    const QStringView text(letter);
    if (!text.startsWith(m_segments.front()) || !text.endsWith(m_segments.back())) {
        return false;
    }
    qsizetype at = m_segments.front().size();
    const qsizetype tail = text.size() - m_segments.back().size();
    for (qsizetype i = 1; i < m_segments.size(); ++i) {
        const QString& next = m_segments.at(i);
        const bool last = i + 1 == m_segments.size();
        // The value runs over plain characters up to where the next segment
        // starts. Any split that makes every segment match proves the point,
        // so the first one found will do.
        qsizetype end = at;
        bool found = false;
        while (end < text.size() && isPlainCharacter(text[end])) {
            ++end;
            if (last ? end == tail : text.mid(end).startsWith(next)) {
                found = true;
                break;
            }
        }
        if (!found) {
            return false;
        }
        at = end + (last ? 0 : next.size());
    }
    return at == tail;
}
