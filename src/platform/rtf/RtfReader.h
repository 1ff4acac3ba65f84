#pragma once

#include <QByteArray>
#include <QString>

class QTextCursor;
class QTextDocument;

// Reads RTF into a QTextDocument. Reading stops at the brace that closes
// the RTF's outer group; whatever stands behind it (the document trailer)
// never reaches the text. Bad syntax inside is read as far as it makes
// sense and never fails; what the reader cannot take at all is input that
// does not start with an RTF header.
class RtfReader {
public:
    // True when the text (after blanks and a byte-order mark) starts "{\rtf".
    static bool hasRtfHeader(const QByteArray& bytes);
    static bool hasRtfHeader(const QString& text);

    // Replaces the document's content and empties its undo history. Throws
    // QmError InvalidFileFormat when the input is no RTF.
    static void read(const QByteArray& bytes, QTextDocument& document);
    static void read(const QString& text, QTextDocument& document);

    // Inserts the RTF's content at the cursor (replacing its selection),
    // as pasting it would. Throws as read() does.
    static void insert(const QString& text, QTextCursor& cursor);

    // Nesting beyond this depth is read as text-free: it is skipped.
    static constexpr int kMaxDepth = 2000;
};
