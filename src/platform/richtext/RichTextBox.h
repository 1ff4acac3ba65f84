#pragma once

#include <QColor>
#include <QObject>
#include <QRect>
#include <QString>
#include <QTextCursor>
#include <memory>
#include <optional>
#include <vector>

class QPaintDevice;
class QPainter;
class QTextDocument;

// The rich text control of the program, without a window: a document, a
// selection and the operations the logic asks of a rich edit control.
//
// Every position and length (SelStart, SelLength, Find, the line calls, the
// layout answers) counts characters of Text, where a paragraph or line end is
// the two characters CR LF. The class converts to and from the positions of
// the underlying QTextDocument.
//
// A window shows the box by displaying document() and mirroring its cursor
// through textCursor()/setTextCursor(); changed() and selectionChanged() are
// the hooks for its change and selection-change events.
class RichTextBox : public QObject {
    Q_OBJECT

public:
    // The format argument of LoadFile and SaveFile (fileSaveType).
    static constexpr int rtfRTF = 0;
    static constexpr int rtfText = 1;

    // SelAlignment values.
    static constexpr int rtfLeft = 0;
    static constexpr int rtfRight = 1;
    static constexpr int rtfCenter = 2;
    static constexpr int rtfJustify = 3;

    // Find options, combinable.
    static constexpr int rtfWholeWord = 2;
    static constexpr int rtfMatchCase = 4;
    static constexpr int rtfNoHighlight = 8;

    // The edit messages performEdit sends.
    static constexpr int WM_CUT = 768;
    static constexpr int WM_COPY = 769;
    static constexpr int WM_PASTE = 770;
    static constexpr int WM_CLEAR = 771;
    static constexpr int EM_UNDO = 199;

    explicit RichTextBox(QObject* parent = nullptr);
    ~RichTextBox() override;
    RichTextBox(const RichTextBox&) = delete;
    RichTextBox& operator=(const RichTextBox&) = delete;

    QTextDocument* document() const;

    // The plain text with CR LF line ends. Setting a text that begins with
    // an RTF header loads it as RTF; anything else is taken as plain text.
    QString Text() const;
    void setText(const QString& text);
    // WM_GETTEXTLENGTH: the length of Text.
    int TextLength() const;

    // The whole content as RTF in the dialect the writer produces. Setting
    // it to text that is no RTF loads that text as plain text, as the
    // control does.
    QString TextRTF() const;
    void setTextRTF(const QString& rtf);

    // Selection, in Text positions. Out-of-range values are clamped; a
    // position inside a CR LF pair moves to the start of the pair.
    int SelStart() const;
    void setSelStart(int start);
    int SelLength() const;
    void setSelLength(int length);
    QString SelText() const;
    void setSelText(const QString& text);
    // The selection as a complete RTF document; setting it replaces the
    // selection with the content of an RTF text (plain text if no RTF).
    QString SelRTF() const;
    void setSelRTF(const QString& rtf);

    // Character format of the selection (of the character before the caret
    // when nothing is selected). A selection whose characters differ reads
    // as nullopt. Setters apply to the selection, or to what is typed next.
    std::optional<bool> SelBold() const;
    void setSelBold(bool on);
    std::optional<bool> SelItalic() const;
    void setSelItalic(bool on);
    std::optional<bool> SelUnderline() const;
    void setSelUnderline(bool on);
    std::optional<bool> SelStrikeThru() const;
    void setSelStrikeThru(bool on);
    std::optional<QString> SelFontName() const;
    void setSelFontName(const QString& family);
    // Points.
    std::optional<double> SelFontSize() const;
    void setSelFontSize(double points);
    std::optional<QColor> SelColor() const;
    void setSelColor(const QColor& colour);
    // Baseline offset in twips: positive raises (superscript), negative
    // lowers (subscript).
    std::optional<int> SelCharOffset() const;
    void setSelCharOffset(int twips);

    // Paragraph format of the paragraphs the selection touches; indents in
    // twips. SelIndent is the left indent of the first line, SelHangingIndent
    // how far the following lines stand right of it.
    std::optional<int> SelAlignment() const;
    void setSelAlignment(int alignment);
    std::optional<bool> SelBullet() const;
    void setSelBullet(bool on);
    std::optional<int> SelIndent() const;
    void setSelIndent(int twips);
    std::optional<int> SelRightIndent() const;
    void setSelRightIndent(int twips);
    std::optional<int> SelHangingIndent() const;
    void setSelHangingIndent(int twips);

    // Read-only for the user: the typing and edit operations (setSelText
    // through typeText, cut, paste, clear, undo) do nothing while locked;
    // the program's own property sets (Text, TextRTF, SelText, SelRTF)
    // still work, as they do on the control.
    bool Locked() const { return m_locked; }
    void setLocked(bool locked);

    // Searches `text` in [start, end) of Text (end -1: to the end). Returns
    // the position found or -1. Selects the match unless rtfNoHighlight.
    int Find(const QString& text, int start = 0, int end = -1, int options = 0);
    // Find's matching on a text already read: the first occurrence of
    // `text` in [from, to) of `haystack` (to -1: to the end) by the whole
    // word and match case options, or -1. An empty `text` is never found.
    static int findIn(const QString& haystack, const QString& text, int from, int to, int options);

    // Loads a file: rtfRTF needs an RTF file (throws QmError InvalidFileFormat
    // otherwise); rtfText takes the bytes as plain text. Whatever stands
    // behind the RTF's closing brace is ignored. Throws QmError FileNotFound
    // or PathFileAccessError when the file cannot be read.
    void LoadFile(const QString& path, int format = rtfRTF);
    // Writes TextRTF (rtfRTF) or Text (rtfText) whole and atomically. Throws
    // QmError PathFileAccessError when it cannot be written.
    void SaveFile(const QString& path, int format = rtfRTF) const;
    // The bytes SaveFile writes: TextRTF in Latin-1, or Text in code page
    // 1252 when it fits and UTF-8 with a byte-order mark when it does not.
    QByteArray fileBytes(int format = rtfRTF) const;

    // Lines as laid out for the current target (see setTargetDevice), 0-based.
    int lineCount() const;             // EM_GETLINECOUNT, at least 1
    int lineFromChar(int index) const; // EM_LINEFROMCHAR; -1: the caret's line
    int lineIndex(int line) const;     // EM_LINEINDEX; -1: the caret's line;
                                       // -1 when the line does not exist
    int lineLength(int index) const;   // length of the line holding index
                                       // (without its line end)

    bool canUndo() const; // EM_CANUNDO
    void undo();          // EM_UNDO
    bool canRedo() const;
    void redo();

    // Clipboard operations on the selection.
    void cut();
    void copy() const;
    void paste();
    void clear(); // deletes the selection
    // Sends one of WM_CUT, WM_COPY, WM_PASTE, WM_CLEAR, EM_UNDO; returns 0,
    // or -1 for an unknown message.
    int performEdit(int message);

    // Typing: inserts at the caret (overwriting in overwrite mode), in the
    // format that is current there. Does nothing while locked.
    void typeText(const QString& text);
    bool overwriteMode() const { return m_overwrite; }
    void setOverwriteMode(bool on) { m_overwrite = on; }

    // Layout binding (EM_SETTARGETDEVICE). With a device, lines break at
    // lineWidthTwips measured with that device's fonts; without one,
    // lineWidthTwips 1 means no wrap and 0 means wrap at the window width.
    // The device must outlive the box or be unbound first.
    void setTargetDevice(QPaintDevice* device, int lineWidthTwips);
    // Width of the window, in twips, for wrap-at-window.
    void setWindowWidth(int twips);
    // SetViewMode's three bindings: 0 no wrap, 1 wrap at window, 2 the
    // given device and width.
    void setViewMode(int mode, QPaintDevice* device = nullptr, int lineWidthTwips = 0);

    // EM_FORMATRANGE's record; rectangles in twips.
    struct FormatRange {
        QPaintDevice* hdc = nullptr;       // where to draw when rendering
        QPaintDevice* hdcTarget = nullptr; // whose metrics to lay out with
        QRect rc;                          // the text rectangle
        QRect rcPage;                      // the whole sheet
        int cpMin = 0;
        int cpMax = -1; // -1: to the end of the text
    };
    // Lays the text from cpMin on out in rc for the target device and
    // returns the Text index of the first character that does not fit, or
    // the end of the range when everything fits. With render true, the
    // fitting lines are drawn on hdc (or on `painter` if given, already
    // open on hdc). A range that starts at or past the end answers cpMin.
    int formatRange(const FormatRange& range, bool render, QPainter* painter = nullptr);
    // EM_FORMATRANGE with a null record: frees the cached layout.
    void releaseFormatCache();

    // Text positions <-> QTextDocument positions.
    int toDocumentPosition(int textPosition) const;
    int toTextPosition(int documentPosition) const;

    QTextCursor textCursor() const;
    void setTextCursor(const QTextCursor& cursor);

    struct Impl; // internals, shared by the box's source files

Q_SIGNALS:
    // The text or its format changed (the control's Change event).
    void changed();
    void selectionChanged();

private:
    std::unique_ptr<Impl> d;
    bool m_locked = false;
    bool m_overwrite = false;

    friend class RTBCtrl;
};

// The caret and line questions of the rich edit helper.
class RTBCtrl {
public:
    // 3 caret line (1-based), 4 caret index, 5 first index of the caret's
    // line, 6 length of the caret's line, 7 number of lines, 8 length of the
    // last line. Other selectors answer 0.
    static long getValue(const RichTextBox& box, int selector);
    // Brings the box's typing mode into line with the overwrite flag.
    static void setTypingMode(RichTextBox& box, bool overwrite);
};

// Loads a document file the way the program opens it: RTF when it starts
// with an RTF header (the trailer behind it ignored), plain text otherwise.
// Returns the Text of the loaded document (CR LF line ends). Throws QmError
// InvalidFileFormat when the file claims to be RTF but cannot be read as
// such, and FileNotFound when it cannot be opened.
QString loadDocumentText(const QString& path);
