#include "platform/richtext/RichTextBox.h"

#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/richtext/RichTextBoxPrivate.h"
#include "platform/richtext/RichTextFormat.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfWriter.h"
#include "platform/text/CodePage1252.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QStringDecoder>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextOption>
#include <algorithm>

namespace {

// Paragraph ends, line breaks and the marks that end the paragraphs around
// and inside tables all stand as CR LF in Text.
bool isDoubleWidth(QChar ch) {
    return ch == QChar::ParagraphSeparator || ch == QChar::LineSeparator ||
           ch.unicode() == 0xFDD0 || ch.unicode() == 0xFDD1;
}

const char* const kRtfMime = "text/rtf";

} // namespace

RichTextBox::Impl::Impl(RichTextBox* owner) : box(owner), document(new QTextDocument(owner)) {
    document->setUndoRedoEnabled(true);
    // The control's font; fixed so that written RTF does not depend on the
    // machine's default font.
    document->setDefaultFont(QFont(QStringLiteral("Tahoma"), 10));
    // Paragraphs run left to right unless they say otherwise, as in RTF;
    // the layout then need not scan each paragraph's text for its direction
    // every time it passes over it.
    QTextOption option = document->defaultTextOption();
    option.setTextDirection(Qt::LeftToRight);
    document->setDefaultTextOption(option);
    cursor = QTextCursor(document);
    QObject::connect(
        document, &QTextDocument::contentsChange, owner,
        [this](int from, int removed, int added) { noteChange(from, removed, added); });
    // Qt tells where a change was only to a document with a layout; any
    // other change makes the map be counted again.
    QObject::connect(document, &QTextDocument::contentsChanged, owner, [this] {
        if (!changeNoted) {
            mapValid = false;
        }
        changeNoted = false;
    });
}

void RichTextBox::Impl::noteChange(int from, int removed, int added) {
    changeNoted = true;
    if (!mapValid) {
        return;
    }
    // Qt also reports a change of layout as the whole text inserted, and a
    // big change is as cheap to map again as to patch: either way the map
    // is rebuilt when next asked.
    const int length = document->characterCount();
    if (added > 4096 || mappedLength - removed + added != length) {
        mapValid = false;
        return;
    }
    // Typing touches a few characters; the rest of the map only shifts.
    const auto first = std::lower_bound(separators.begin(), separators.end(), from);
    const auto last = std::lower_bound(first, separators.end(), from + removed);
    const auto next = separators.erase(first, last);
    for (auto it = next; it != separators.end(); ++it) {
        *it += added - removed;
    }
    std::vector<int> inserted;
    for (int at = from; at < from + added && at < length - 1; ++at) {
        if (isDoubleWidth(document->characterAt(at))) {
            inserted.push_back(at);
        }
    }
    separators.insert(next, inserted.begin(), inserted.end());
    mappedLength = length;
}

void RichTextBox::Impl::rebuildMap() const {
    if (mapValid) {
        return;
    }
    separators.clear();
    const QString raw = document->toRawText();
    const int end = document->characterCount() - 1; // the final mark is not text
    for (int i = 0; i < end && i < raw.size(); ++i) {
        if (isDoubleWidth(raw.at(i))) {
            separators.push_back(i);
        }
    }
    mappedLength = document->characterCount();
    mapValid = true;
}

int RichTextBox::Impl::toText(int documentPosition) const {
    rebuildMap();
    const int clamped = std::clamp(documentPosition, 0, document->characterCount() - 1);
    const auto before = std::lower_bound(separators.begin(), separators.end(), clamped);
    return clamped + static_cast<int>(before - separators.begin());
}

int RichTextBox::Impl::toDocument(int textPosition) const {
    rebuildMap();
    if (textPosition <= 0) {
        return 0;
    }
    // Separator i starts at text position separators[i] + i and takes two.
    int low = 0;
    int high = static_cast<int>(separators.size());
    while (low < high) { // count separators that end at or before the position
        const int mid = (low + high) / 2;
        if (separators[mid] + mid + 2 <= textPosition) {
            low = mid + 1;
        } else {
            high = mid;
        }
    }
    int position = textPosition - low;
    if (low < static_cast<int>(separators.size()) && separators[low] + low + 1 == textPosition) {
        position = separators[low]; // between CR and LF: the start of the pair
    }
    return std::clamp(position, 0, document->characterCount() - 1);
}

int RichTextBox::Impl::textLength() const {
    rebuildMap();
    return document->characterCount() - 1 + static_cast<int>(separators.size());
}

QString RichTextBox::Impl::textOf(int from, int to) const {
    QString raw = document->toRawText().mid(from, std::max(0, to - from));
    QString text;
    text.reserve(raw.size() + raw.size() / 16);
    for (const QChar ch : raw) {
        if (isDoubleWidth(ch)) {
            text += QLatin1String("\r\n");
        } else {
            text += ch;
        }
    }
    return text;
}

RichTextBox::RichTextBox(QObject* parent) : QObject(parent), d(std::make_unique<Impl>(this)) {
    connect(d->document, &QTextDocument::contentsChanged, this, &RichTextBox::changed);
}

RichTextBox::~RichTextBox() = default;

QTextDocument* RichTextBox::document() const {
    return d->document;
}

QString RichTextBox::Text() const {
    return d->textOf(0, d->document->characterCount() - 1);
}

int RichTextBox::TextLength() const {
    return d->textLength();
}

void RichTextBox::setText(const QString& text) {
    if (RtfReader::hasRtfHeader(text)) {
        setTextRTF(text);
        return;
    }
    d->document->clear();
    d->cursor = QTextCursor(d->document);
    QString normalised = text;
    normalised.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    normalised.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    // As in RTF: controls (tab and line end aside) and the marks the model
    // uses for its own structure are no text.
    normalised.removeIf([](QChar ch) {
        const char16_t c = ch.unicode();
        return (c < 0x20 && c != u'\t' && c != u'\n') || c == 0xFEFF || c == 0xFFFC ||
               (c >= 0xFDD0 && c <= 0xFDEF);
    });
    d->cursor.insertText(normalised);
    d->afterReplace();
}

QString RichTextBox::TextRTF() const {
    return RtfWriter::write(*d->document);
}

void RichTextBox::setTextRTF(const QString& rtf) {
    if (!RtfReader::hasRtfHeader(rtf)) {
        setText(rtf);
        return;
    }
    RtfReader::read(rtf, *d->document);
    d->cursor = QTextCursor(d->document);
    d->afterReplace();
}

void RichTextBox::Impl::afterReplace() {
    mapValid = false;
    // A new content is laid out for the device in force; it is no edit.
    if (binding.mode == LayoutBinding::Mode::Device) {
        RichTextFormat::applyScale(*document, RichTextFormat::unitsPerTwip(*document));
    }
    document->clearUndoRedoStacks();
    cursor.setPosition(0);
    Q_EMIT box->selectionChanged();
}

int RichTextBox::SelStart() const {
    return d->toText(d->cursor.selectionStart());
}

void RichTextBox::setSelStart(int start) {
    const int position = d->toDocument(std::clamp(start, 0, d->textLength()));
    d->cursor.setPosition(position);
    Q_EMIT selectionChanged();
}

int RichTextBox::SelLength() const {
    return d->toText(d->cursor.selectionEnd()) - d->toText(d->cursor.selectionStart());
}

void RichTextBox::setSelLength(int length) {
    const int start = d->cursor.selectionStart();
    const int endText = std::clamp(d->toText(start) + std::max(length, 0), 0, d->textLength());
    int end = d->toDocument(endText);
    // A length that ends between CR and LF takes the whole line end.
    if (d->toText(end) < endText) {
        end = std::min(end + 1, d->document->characterCount() - 1);
    }
    d->cursor.setPosition(start);
    d->cursor.setPosition(end, QTextCursor::KeepAnchor);
    Q_EMIT selectionChanged();
}

QString RichTextBox::SelText() const {
    return d->textOf(d->cursor.selectionStart(), d->cursor.selectionEnd());
}

void RichTextBox::setSelText(const QString& text) {
    QString normalised = text;
    normalised.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    normalised.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    d->cursor.insertText(normalised);
    Q_EMIT selectionChanged();
}

QString RichTextBox::SelRTF() const {
    return RtfWriter::write(*d->document, d->cursor.selectionStart(), d->cursor.selectionEnd());
}

void RichTextBox::setSelRTF(const QString& rtf) {
    if (!RtfReader::hasRtfHeader(rtf)) {
        setSelText(rtf);
        return;
    }
    const int start = d->cursor.selectionStart();
    d->cursor.beginEditBlock();
    RtfReader::insert(rtf, d->cursor);
    d->cursor.endEditBlock();
    const int end = d->cursor.position();
    if (d->binding.mode == LayoutBinding::Mode::Device) {
        d->rescaleRange(start, end);
    }
    Q_EMIT selectionChanged();
}

void RichTextBox::setLocked(bool locked) {
    m_locked = locked;
}

int RichTextBox::Find(const QString& text, int start, int end, int options) {
    const int at = findIn(Text(), text, start, end, options);
    if (at >= 0 && !(options & rtfNoHighlight)) {
        setSelStart(at);
        setSelLength(static_cast<int>(text.size()));
    }
    return at;
}

int RichTextBox::findIn(const QString& all, const QString& text, int start, int end, int options) {
    if (text.isEmpty()) {
        return -1;
    }
    const int from = std::clamp(start, 0, static_cast<int>(all.size()));
    const int to = end < 0 ? static_cast<int>(all.size())
                           : std::clamp(end, from, static_cast<int>(all.size()));
    const Qt::CaseSensitivity sensitivity =
        (options & rtfMatchCase) ? Qt::CaseSensitive : Qt::CaseInsensitive;
    auto isWordChar = [](QChar ch) { return ch.isLetterOrNumber() || ch == u'_' || ch == u'\''; };
    qsizetype at = from;
    while (true) {
        at = all.indexOf(text, at, sensitivity);
        if (at < 0 || at + text.size() > to) {
            return -1;
        }
        const bool wholeWord =
            (at == 0 || !isWordChar(all.at(at - 1))) &&
            (at + text.size() >= all.size() || !isWordChar(all.at(at + text.size())));
        if (!(options & rtfWholeWord) || wholeWord) {
            return static_cast<int>(at);
        }
        ++at;
    }
}

void RichTextBox::LoadFile(const QString& path, int format) {
    const std::optional<QByteArray> bytes = fileControl::readWholeFile(path);
    if (!bytes) {
        throw QmError(fileControl::FileExists(path) ? QmError::PathFileAccessError
                                                    : QmError::FileNotFound,
                      fileControl::FileExists(path) ? QStringLiteral("Path/File access error")
                                                    : QStringLiteral("File not found"));
    }
    if (format == rtfRTF) {
        if (!RtfReader::hasRtfHeader(*bytes)) {
            throw QmError(QmError::InvalidFileFormat, QStringLiteral("Invalid file format"));
        }
        RtfReader::read(*bytes, *d->document);
        d->cursor = QTextCursor(d->document);
        d->afterReplace();
        return;
    }
    setText(decodePlainText(*bytes));
}

QByteArray RichTextBox::fileBytes(int format) const {
    if (format == rtfRTF) {
        return TextRTF().toLatin1();
    }
    const QString text = Text();
    if (CodePage1252::canEncode(text)) {
        return CodePage1252::encode(text);
    }
    return QByteArray("\xEF\xBB\xBF") + text.toUtf8();
}

void RichTextBox::SaveFile(const QString& path, int format) const {
    if (!fileControl::writeFileAtomically(path, fileBytes(format))) {
        throw QmError(QmError::PathFileAccessError, QStringLiteral("Path/File access error"));
    }
}

QString decodePlainText(const QByteArray& bytes) {
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        return QString::fromUtf8(bytes.mid(3));
    }
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        QStringDecoder decoder(QStringDecoder::Utf16, QStringDecoder::Flag::ConvertInitialBom);
        return decoder.decode(bytes);
    }
    // Files of this platform are mostly UTF-8; those of the old one are in
    // the single-byte code page, which any byte sequence is.
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8.decode(bytes);
    if (!utf8.hasError()) {
        return text;
    }
    return CodePage1252::decode(bytes);
}

QString loadDocumentText(const QString& path) {
    const std::optional<QByteArray> bytes = fileControl::readWholeFile(path);
    if (!bytes) {
        throw QmError(QmError::FileNotFound, QStringLiteral("File not found"));
    }
    RichTextBox box;
    box.LoadFile(path,
                 RtfReader::hasRtfHeader(*bytes) ? RichTextBox::rtfRTF : RichTextBox::rtfText);
    return box.Text();
}

bool RichTextBox::canUndo() const {
    return d->document->isUndoAvailable();
}

void RichTextBox::undo() {
    if (!m_locked) {
        d->document->undo(&d->cursor);
        Q_EMIT selectionChanged();
    }
}

bool RichTextBox::canRedo() const {
    return d->document->isRedoAvailable();
}

void RichTextBox::redo() {
    if (!m_locked) {
        d->document->redo(&d->cursor);
        Q_EMIT selectionChanged();
    }
}

void RichTextBox::copy() const {
    if (!d->cursor.hasSelection()) {
        return;
    }
    auto* mime = new QMimeData; // the clipboard takes ownership
    mime->setText(SelText());
    mime->setData(QString::fromLatin1(kRtfMime), SelRTF().toLatin1());
    QGuiApplication::clipboard()->setMimeData(mime);
}

void RichTextBox::cut() {
    if (m_locked || !d->cursor.hasSelection()) {
        return;
    }
    copy();
    d->cursor.removeSelectedText();
    Q_EMIT selectionChanged();
}

void RichTextBox::paste() {
    if (m_locked) {
        return;
    }
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    if (mime == nullptr) {
        return;
    }
    const QString rtfType = QString::fromLatin1(kRtfMime);
    const QByteArray rtf = mime->hasFormat(rtfType) ? mime->data(rtfType)
                                                    : mime->data(QStringLiteral("application/rtf"));
    if (RtfReader::hasRtfHeader(rtf)) {
        setSelRTF(QString::fromLatin1(rtf));
    } else if (mime->hasText()) {
        setSelText(mime->text());
    }
}

void RichTextBox::clear() {
    if (m_locked || !d->cursor.hasSelection()) {
        return;
    }
    d->cursor.removeSelectedText();
    Q_EMIT selectionChanged();
}

int RichTextBox::performEdit(int message) {
    switch (message) {
    case WM_CUT:
        cut();
        return 0;
    case WM_COPY:
        copy();
        return 0;
    case WM_PASTE:
        paste();
        return 0;
    case WM_CLEAR:
        clear();
        return 0;
    case EM_UNDO:
        undo();
        return 0;
    default:
        return -1;
    }
}

void RichTextBox::typeText(const QString& text) {
    if (m_locked || text.isEmpty()) {
        return;
    }
    d->cursor.beginEditBlock();
    if (m_overwrite && !d->cursor.hasSelection()) {
        // Overwrite replaces characters of the line, never its end.
        for (int i = 0; i < text.size() && !d->cursor.atBlockEnd(); ++i) {
            d->cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
        }
    }
    QString normalised = text;
    normalised.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    normalised.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    d->cursor.insertText(normalised);
    d->cursor.endEditBlock();
    Q_EMIT selectionChanged();
}

int RichTextBox::toDocumentPosition(int textPosition) const {
    return d->toDocument(textPosition);
}

int RichTextBox::toTextPosition(int documentPosition) const {
    return d->toText(documentPosition);
}

QTextCursor RichTextBox::textCursor() const {
    return d->cursor;
}

void RichTextBox::setTextCursor(const QTextCursor& cursor) {
    if (cursor.document() != d->document) {
        return;
    }
    d->cursor = cursor;
    Q_EMIT selectionChanged();
}
