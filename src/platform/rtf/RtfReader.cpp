#include "platform/rtf/RtfReader.h"

#include "platform/errorClass.h"
#include "platform/richtext/RichTextFormat.h"
#include "platform/rtf/RtfReaderState.h"
#include "platform/text/CodePage1252.h"

#include <QTextCursor>
#include <QTextDocument>

namespace {

template <typename Text> qsizetype headerStart(const Text& text) {
    qsizetype i = 0;
    // A UTF-8 byte-order mark, then blanks, may stand before the header.
    if constexpr (std::is_same_v<Text, QByteArray>) {
        if (text.startsWith("\xEF\xBB\xBF")) {
            i = 3;
        }
    } else {
        if (!text.isEmpty() && text.at(0) == QChar(0xFEFF)) {
            i = 1;
        }
    }
    while (i < text.size() &&
           (text.at(i) == ' ' || text.at(i) == '\t' || text.at(i) == '\r' || text.at(i) == '\n')) {
        ++i;
    }
    return i;
}

// Switches a document's undo history off for its lifetime.
class UndoPaused {
public:
    explicit UndoPaused(QTextDocument& document)
        : m_document(document), m_enabled(document.isUndoRedoEnabled()) {
        m_document.setUndoRedoEnabled(false);
    }
    ~UndoPaused() { m_document.setUndoRedoEnabled(m_enabled); }
    UndoPaused(const UndoPaused&) = delete;
    UndoPaused& operator=(const UndoPaused&) = delete;

private:
    QTextDocument& m_document;
    bool m_enabled;
};

} // namespace

bool RtfReader::hasRtfHeader(const QByteArray& bytes) {
    const qsizetype i = headerStart(bytes);
    return bytes.mid(i, 5) == "{\\rtf";
}

bool RtfReader::hasRtfHeader(const QString& text) {
    const qsizetype i = headerStart(text);
    return QStringView(text).mid(i, 5) == QLatin1String("{\\rtf");
}

void RtfReader::read(const QByteArray& bytes, QTextDocument& document) {
    read(QString::fromLatin1(bytes), document);
}

void RtfReader::read(const QString& text, QTextDocument& document) {
    if (!hasRtfHeader(text)) {
        throw QmError(QmError::InvalidFileFormat, QStringLiteral("Invalid file format"));
    }
    document.clear();
    // A read replaces everything and leaves no history: recording each
    // inserted piece for undo would only slow a long document down.
    const UndoPaused paused(document);
    QTextCursor cursor(&document);
    RtfParser parser(cursor, /*replaceDocument=*/true);
    parser.parse(QStringView(text).mid(headerStart(text)));
}

void RtfReader::insert(const QString& text, QTextCursor& cursor) {
    if (!hasRtfHeader(text)) {
        throw QmError(QmError::InvalidFileFormat, QStringLiteral("Invalid file format"));
    }
    cursor.removeSelectedText();
    RtfParser parser(cursor, /*replaceDocument=*/false);
    parser.parse(QStringView(text).mid(headerStart(text)));
}
