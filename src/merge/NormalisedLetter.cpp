#include "merge/NormalisedLetter.h"

#include "merge/MergeSubstitution.h"
#include "platform/richtext/RichTextBox.h"

#include <algorithm>

namespace {

bool isPlainCharacter(QChar c) {
    const char16_t u = c.unicode();
    return u >= 0x20 && u < 0x7F && u != u'\\' && u != u'{' && u != u'}';
}

// Latin-1 letters and signs, read from a raw byte as themselves in an ANSI
// run; U+00A0 is left out, the box writes it as a control symbol.
bool isAccentCharacter(QChar c) {
    return c.unicode() > 0xA0 && c.unicode() <= 0xFF;
}

void appendEscaped(QString& out, QChar c) {
    static const char* const hex = "0123456789abcdef";
    if (isAccentCharacter(c)) {
        out += QLatin1String("\\'");
        out += QLatin1Char(hex[c.unicode() >> 4]);
        out += QLatin1Char(hex[c.unicode() & 15]);
    } else {
        out += c;
    }
}

// Values hold printable ASCII and accents only, so each is one byte or one
// escape in Latin-1.
void appendEscaped(QByteArray& out, QChar c) {
    static const char* const hex = "0123456789abcdef";
    if (isAccentCharacter(c)) {
        out += "\\'";
        out += hex[c.unicode() >> 4];
        out += hex[c.unicode() & 15];
    } else {
        out += char(c.unicode());
    }
}

QString probeValue() {
    QString value = QStringLiteral("A");
    for (char16_t u = 0xA1; u <= 0xFF; ++u) {
        value += QChar(u);
    }
    return value + QLatin1Char('Z');
}

QString joined(const QStringList& segments, const QString& value) {
    QString out = segments.front();
    for (qsizetype i = 1; i < segments.size(); ++i) {
        out += value;
        out += segments.at(i);
    }
    return out;
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
    for (const QString& segment : std::as_const(check.m_segments)) {
        check.m_latin1Segments << segment.toLatin1();
    }
    const QString probe = probeValue();
    QString escaped;
    for (const QChar c : probe) {
        appendEscaped(escaped, c);
    }
    scratch.setTextRTF(joined(check.m_segments, probe));
    check.m_escapesAccents = scratch.TextRTF() == joined(check.m_segments, escaped);
    return check;
}

bool NormalisedLetter::isValueCharacter(QChar c) const {
    return isPlainCharacter(c) || (m_escapesAccents && isAccentCharacter(c));
}

bool NormalisedLetter::isFixedPoint(const QString& letter) const {
    const std::optional<QString> text = normalisedText(letter);
    return text && *text == letter;
}

bool NormalisedLetter::findValues(QStringView text,
                                  std::vector<std::pair<qsizetype, qsizetype>>& values) const {
    if (!text.startsWith(m_segments.front()) || !text.endsWith(m_segments.back())) {
        return false;
    }
    values.clear();
    values.reserve(size_t(m_segments.size() - 1));
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
        while (end < text.size() && isValueCharacter(text[end])) {
            ++end;
            const bool nextStarts =
                next.isEmpty() ||
                (end < text.size() && text[end] == next.front() && text.mid(end).startsWith(next));
            if (last ? end == tail : nextStarts) {
                found = true;
                break;
            }
        }
        if (!found) {
            return false;
        }
        values.emplace_back(at, end);
        at = end + (last ? 0 : next.size());
    }
    return at == tail;
}

std::optional<QString> NormalisedLetter::normalisedText(const QString& letter) const {
    std::vector<std::pair<qsizetype, qsizetype>> values;
    if (!findValues(letter, values)) {
        return std::nullopt;
    }
    QString out;
    out.reserve(letter.size() + letter.size() / 16);
    out += m_segments.front();
    for (size_t i = 0; i < values.size(); ++i) {
        for (qsizetype c = values[i].first; c < values[i].second; ++c) {
            appendEscaped(out, letter[c]);
        }
        out += m_segments.at(qsizetype(i) + 1);
    }
    return out;
}

std::optional<QByteArray> NormalisedLetter::normalisedLatin1(const QString& letter,
                                                             qsizetype spare) const {
    std::vector<std::pair<qsizetype, qsizetype>> values;
    if (!findValues(letter, values)) {
        return std::nullopt;
    }
    QByteArray out;
    out.reserve(letter.size() + letter.size() / 16 + spare);
    out += m_latin1Segments.front();
    for (size_t i = 0; i < values.size(); ++i) {
        for (qsizetype c = values[i].first; c < values[i].second; ++c) {
            appendEscaped(out, letter[c]);
        }
        out += m_latin1Segments.at(qsizetype(i) + 1);
    }
    return out;
}
