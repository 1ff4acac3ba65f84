#pragma once

#include <QString>

class QTextDocument;

// Writes a QTextDocument as RTF in the dialect of the rich edit control:
// {\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl...}{\colortbl ;...}
// \viewkind4\uc1\pard...}. Characters above 127 are \'hh where code page
// 1252 has them and \uN? otherwise; every control word that precedes text
// ends with its blank, and lines break only before control words, so that
// text and placeholders stand whole in the output. The result holds only
// 7-bit characters.
class RtfWriter {
public:
    // The whole document.
    static QString write(const QTextDocument& document);
    // The characters of [from, to) in document positions, as a document of
    // its own (what SelRTF gives).
    static QString write(const QTextDocument& document, int from, int to);
};
