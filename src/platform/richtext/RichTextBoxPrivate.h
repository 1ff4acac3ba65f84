#pragma once

// Internals of RichTextBox shared by its source files.

#include "platform/richtext/RichTextBox.h"

#include <QByteArray>
#include <QPointer>
#include <QTextCursor>
#include <vector>

class QTextBlock;
class QTextLine;

struct LayoutBinding {
    enum class Mode { NoWrap, WrapAtWindow, Device };
    Mode mode = Mode::NoWrap;
    QPaintDevice* device = nullptr;
    int lineWidthTwips = 0;
    int windowWidthTwips = 0;
};

struct RichTextBox::Impl {
    explicit Impl(RichTextBox* owner);

    // Text positions, where a paragraph or line end counts two.
    void rebuildMap() const;
    // Keeps the map in step with an edit (QTextDocument::contentsChange).
    void noteChange(int from, int removed, int added);
    int toText(int documentPosition) const;
    int toDocument(int textPosition) const;
    int textLength() const;
    QString textOf(int from, int to) const;

    void afterReplace();
    void rescaleRange(int from, int to);

    // Layout.
    void applyBinding();
    void ensureLayout() const;
    struct LineRef {
        int block = 0;  // block number
        int line = 0;   // line within the block
        int number = 0; // line number in the whole text
        int start = 0;  // document position of its first character
        int length = 0; // characters, without its end
    };
    std::vector<LineRef> lines() const;
    LineRef lineAt(int documentPosition) const;

    RichTextBox* box;
    QTextDocument* document;
    QTextCursor cursor;
    LayoutBinding binding;
    double measuredWidthOverride = -1;

    mutable bool mapValid = false;
    mutable std::vector<int> separators; // document positions of line ends
    mutable int mappedLength = 0;        // the document's length the map is for
    bool changeNoted = false;            // the map followed the change being made
};

// Plain text from file bytes: a byte-order mark decides, then UTF-8 if the
// bytes are valid UTF-8, else code page 1252.
QString decodePlainText(const QByteArray& bytes);
