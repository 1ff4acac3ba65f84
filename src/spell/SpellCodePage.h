#pragma once

#include <QByteArray>
#include <QChar>
#include <QString>
#include <optional>

// The 8-bit form of the word list: Western code page 1252. Equal to Latin-1
// but for 0x80-0x9F, where the five unused bytes stand for the C1 control
// of the same number so that every byte survives a round trip.
namespace SpellCodePage {

QChar toUnicode(unsigned char byte);
// The byte of a character, or nothing when the code page lacks it.
std::optional<unsigned char> fromUnicode(QChar ch);
QString decode(const QByteArray& bytes);
// Characters the code page lacks become "?".
QByteArray encode(const QString& text);

} // namespace SpellCodePage
