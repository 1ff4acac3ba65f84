#include "platform/rtf/RtfTokenizer.h"

#include <algorithm>
#include <climits>

namespace {

bool isAsciiLetter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

int hexValue(char16_t c) {
    if (c >= u'0' && c <= u'9') {
        return c - u'0';
    }
    if (c >= u'a' && c <= u'f') {
        return c - u'a' + 10;
    }
    if (c >= u'A' && c <= u'F') {
        return c - u'A' + 10;
    }
    return -1;
}

} // namespace

RtfTokenizer::Token RtfTokenizer::next() {
    Token token;
    const qsizetype n = m_input.size();
    // Line ends carry no meaning in RTF; skip them between tokens.
    while (m_pos < n && (m_input[m_pos] == u'\r' || m_input[m_pos] == u'\n')) {
        ++m_pos;
    }
    if (m_pos >= n) {
        token.type = Type::End;
        return token;
    }
    const char16_t c = m_input[m_pos].unicode();
    if (c == u'{') {
        ++m_pos;
        token.type = Type::GroupStart;
        return token;
    }
    if (c == u'}') {
        ++m_pos;
        token.type = Type::GroupEnd;
        return token;
    }
    if (c == u'\\') {
        return readControl();
    }
    const qsizetype start = m_pos;
    while (m_pos < n) {
        const char16_t ch = m_input[m_pos].unicode();
        if (ch == u'{' || ch == u'}' || ch == u'\\' || ch == u'\r' || ch == u'\n') {
            break;
        }
        ++m_pos;
    }
    token.type = Type::Text;
    token.text = m_input.mid(start, m_pos - start);
    return token;
}

RtfTokenizer::Token RtfTokenizer::readControl() {
    Token token;
    const qsizetype n = m_input.size();
    ++m_pos; // the backslash
    if (m_pos >= n) {
        token.type = Type::ControlSymbol;
        token.symbol = QLatin1Char('\\');
        return token;
    }
    const char16_t c = m_input[m_pos].unicode();
    if (!isAsciiLetter(c)) {
        ++m_pos;
        if (c == u'\'') {
            // A broken escape (no two hex digits) yields nothing but its
            // readable digits are not taken as text either.
            int value = 0;
            int digits = 0;
            while (digits < 2 && m_pos < n) {
                const int h = hexValue(m_input[m_pos].unicode());
                if (h < 0) {
                    break;
                }
                value = value * 16 + h;
                ++digits;
                ++m_pos;
            }
            if (digits == 2) {
                token.type = Type::HexByte;
                token.byte = static_cast<unsigned char>(value);
                return token;
            }
            token.type = Type::ControlSymbol;
            token.symbol = QChar(u'\0');
            return token;
        }
        token.type = Type::ControlSymbol;
        // A backslash before a line end is a paragraph mark.
        token.symbol = (c == u'\r' || c == u'\n') ? QChar(u'\n') : QChar(c);
        return token;
    }
    const qsizetype start = m_pos;
    while (m_pos < n && isAsciiLetter(m_input[m_pos].unicode())) {
        ++m_pos;
    }
    token.type = Type::ControlWord;
    token.name = m_input.mid(start, std::min<qsizetype>(m_pos - start, kMaxWordLength));
    bool negative = false;
    if (m_pos < n && m_input[m_pos] == u'-' && m_pos + 1 < n &&
        isDigit(m_input[m_pos + 1].unicode())) {
        negative = true;
        ++m_pos;
    }
    if (m_pos < n && isDigit(m_input[m_pos].unicode())) {
        long long value = 0;
        while (m_pos < n && isDigit(m_input[m_pos].unicode())) {
            if (value <= LLONG_MAX / 100) {
                value = value * 10 + (m_input[m_pos].unicode() - u'0');
            }
            ++m_pos;
        }
        if (negative) {
            value = -value;
        }
        token.hasParameter = true;
        token.parameter = static_cast<int>(std::clamp<long long>(value, INT_MIN, INT_MAX));
    }
    if (m_pos < n && m_input[m_pos] == u' ') {
        ++m_pos;
    }
    if (token.name == u"bin" && token.hasParameter) {
        // Raw data follows; a length beyond the input takes what is left.
        const qsizetype length = std::min<qsizetype>(std::max(token.parameter, 0), n - m_pos);
        token.type = Type::Binary;
        token.text = m_input.mid(m_pos, length);
        m_pos += length;
    }
    return token;
}
