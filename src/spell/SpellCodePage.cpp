#include "spell/SpellCodePage.h"

namespace {

// 0x80 to 0x9F.
constexpr char16_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

} // namespace

namespace SpellCodePage {

QChar toUnicode(unsigned char byte) {
    if (byte >= 0x80 && byte <= 0x9F) {
        return QChar(kHighControls[byte - 0x80]);
    }
    return QChar(char16_t(byte));
}

std::optional<unsigned char> fromUnicode(QChar ch) {
    const char16_t code = ch.unicode();
    if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) {
        return static_cast<unsigned char>(code);
    }
    for (int i = 0; i < 32; ++i) {
        if (kHighControls[i] == code) {
            return static_cast<unsigned char>(0x80 + i);
        }
    }
    return std::nullopt;
}

QString decode(const QByteArray& bytes) {
    QString text(bytes.size(), Qt::Uninitialized);
    QChar* out = text.data();
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        out[i] = toUnicode(static_cast<unsigned char>(bytes.at(i)));
    }
    return text;
}

QByteArray encode(const QString& text) {
    QByteArray bytes(text.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const auto byte = fromUnicode(text.at(i));
        bytes[i] = byte ? char(*byte) : '?';
    }
    return bytes;
}

} // namespace SpellCodePage
