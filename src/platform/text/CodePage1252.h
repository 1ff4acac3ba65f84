#pragma once

#include <QByteArray>
#include <QChar>
#include <QString>
#include <optional>

// The Western single-byte code page that documents, the trailer and RTF
// escapes use. It equals Latin-1 except for 0x80-0x9F, where 27 bytes carry
// typographic characters and five (0x81, 0x8D, 0x8F, 0x90, 0x9D) are unused;
// unused bytes decode to the C1 control of the same number, as the platform's
// converter does, so that every byte survives a round trip.
namespace CodePage1252 {

QChar toUnicode(unsigned char byte);
// The byte for a character, or nothing when the code page lacks it.
std::optional<unsigned char> fromUnicode(QChar ch);

QString decode(const QByteArray& bytes);
// Characters the code page lacks become `replacement`.
QByteArray encode(const QString& text, char replacement = '?');
// True when every character of the text has a byte in the code page.
bool canEncode(const QString& text);

} // namespace CodePage1252

// Decoding for the code pages an RTF file may declare with \ansicpg or a
// font charset. 1252 is built in; others go through the platform's
// converters when it has them and fall back to 1252 otherwise.
class CodePageDecoder {
public:
    explicit CodePageDecoder(int codePage = 1252);
    int codePage() const { return m_codePage; }
    // Decodes bytes of this code page; a double-byte code page needs the
    // lead and trail bytes together in one call.
    QString decode(const QByteArray& bytes) const;
    bool isBuiltIn() const { return m_codePage == 1252 || m_codePage == 28591; }

    // The code page a font charset number stands for (0 ANSI, 2 symbol,
    // 77 Mac, 128 Shift-JIS, 161 Greek, 162 Turkish, 177 Hebrew, 178 Arabic,
    // 186 Baltic, 204 Cyrillic, 238 Central European, ...); 0 when unknown.
    static int codePageForCharset(int charset);

private:
    int m_codePage;
    QByteArray m_name;
};
