#include "platform/text/CodePage1252.h"

#include <QStringDecoder>
#include <array>

namespace {

// 0x80-0x9F; zero marks a byte that the code page leaves unused.
constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

} // namespace

namespace CodePage1252 {

QChar toUnicode(unsigned char byte) {
    if (byte >= 0x80 && byte <= 0x9F) {
        const char16_t mapped = kHighControls[byte - 0x80];
        return QChar(mapped != 0 ? mapped : char16_t(byte));
    }
    return QChar(char16_t(byte));
}

std::optional<unsigned char> fromUnicode(QChar ch) {
    const char16_t code = ch.unicode();
    if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) {
        return static_cast<unsigned char>(code);
    }
    for (std::size_t i = 0; i < kHighControls.size(); ++i) {
        const char16_t mapped = kHighControls[i];
        if (mapped == code || (mapped == 0 && code == 0x80 + i)) {
            return static_cast<unsigned char>(0x80 + i);
        }
    }
    return std::nullopt;
}

QString decode(const QByteArray& bytes) {
    QString text(bytes.size(), Qt::Uninitialized);
    QChar* out = text.data();
    for (const char byte : bytes) {
        *out++ = toUnicode(static_cast<unsigned char>(byte));
    }
    return text;
}

QByteArray encode(const QString& text, char replacement) {
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const QChar ch : text) {
        const auto byte = fromUnicode(ch);
        bytes.append(byte ? static_cast<char>(*byte) : replacement);
    }
    return bytes;
}

bool canEncode(const QString& text) {
    for (const QChar ch : text) {
        if (!fromUnicode(ch)) {
            return false;
        }
    }
    return true;
}

} // namespace CodePage1252

CodePageDecoder::CodePageDecoder(int codePage) : m_codePage(codePage) {
    if (!isBuiltIn() && codePage > 0) {
        // Names the platform's converter knows (ICU aliases).
        if (codePage == 65001) {
            m_name = "UTF-8";
        } else if (codePage == 10000) {
            m_name = "macintosh";
        } else if (codePage == 932) {
            m_name = "Shift_JIS";
        } else if (codePage == 936) {
            m_name = "GBK";
        } else if (codePage == 949) {
            m_name = "windows-949";
        } else if (codePage == 950) {
            m_name = "Big5";
        } else if (codePage >= 1250 && codePage <= 1258) {
            m_name = "windows-" + QByteArray::number(codePage);
        } else if (codePage == 437 || codePage == 850 || codePage == 866 || codePage == 874) {
            m_name = "cp" + QByteArray::number(codePage);
        }
        if (m_name.isEmpty() || !QStringDecoder(m_name.constData()).isValid()) {
            m_name.clear();
            m_codePage = 1252;
        }
    }
    if (codePage == 28591) {
        m_codePage = 28591;
    } else if (m_name.isEmpty()) {
        m_codePage = 1252;
    }
}

QString CodePageDecoder::decode(const QByteArray& bytes) const {
    if (m_codePage == 28591) {
        return QString::fromLatin1(bytes);
    }
    if (m_name.isEmpty()) {
        return CodePage1252::decode(bytes);
    }
    QStringDecoder decoder(m_name.constData());
    return decoder.decode(bytes);
}

int CodePageDecoder::codePageForCharset(int charset) {
    switch (charset) {
    case 0:
    case 1:
        return 1252;
    case 2:
        return 1252; // symbol fonts map bytes to glyphs; keep the bytes readable
    case 77:
        return 10000;
    case 128:
        return 932;
    case 129:
        return 949;
    case 134:
        return 936;
    case 136:
        return 950;
    case 161:
        return 1253;
    case 162:
        return 1254;
    case 163:
        return 1258;
    case 177:
        return 1255;
    case 178:
        return 1256;
    case 186:
        return 1257;
    case 204:
        return 1251;
    case 222:
        return 874;
    case 238:
        return 1250;
    case 255:
        return 437;
    default:
        return 0;
    }
}
