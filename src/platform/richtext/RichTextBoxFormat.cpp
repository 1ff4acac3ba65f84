// The Sel* character and paragraph formats of RichTextBox.

#include "platform/richtext/RichTextBox.h"
#include "platform/richtext/RichTextBoxPrivate.h"
#include "platform/richtext/RichTextFormat.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <cmath>
#include <functional>

namespace {

// Reads one value over the characters of the selection (the format in
// force at the caret without one); a value that differs reads as nullopt.
template <typename T>
std::optional<T> uniformChar(const QTextCursor& cursor,
                             const std::function<T(const QTextCharFormat&)>& read) {
    if (!cursor.hasSelection()) {
        return read(cursor.charFormat());
    }
    const int from = cursor.selectionStart();
    const int to = cursor.selectionEnd();
    std::optional<T> value;
    const QTextDocument* document = cursor.document();
    for (QTextBlock block = document->findBlock(from); block.isValid() && block.position() < to;
         block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (fragment.position() + fragment.length() <= from || fragment.position() >= to) {
                continue;
            }
            const T next = read(fragment.charFormat());
            if (value && !(*value == next)) {
                return std::nullopt;
            }
            value = next;
        }
    }
    if (!value) {
        // Only line ends selected: the format at the start.
        QTextCursor at(cursor);
        at.setPosition(from + 1 <= to ? from + 1 : from);
        return read(at.charFormat());
    }
    return value;
}

template <typename T>
std::optional<T> uniformBlock(const QTextCursor& cursor,
                              const std::function<T(const QTextBlock&)>& read) {
    const QTextDocument* document = cursor.document();
    const int from = cursor.selectionStart();
    const int to = cursor.selectionEnd();
    std::optional<T> value;
    for (QTextBlock block = document->findBlock(from); block.isValid(); block = block.next()) {
        const T next = read(block);
        if (value && !(*value == next)) {
            return std::nullopt;
        }
        value = next;
        if (block.position() + block.length() > to) {
            break;
        }
    }
    return value;
}

void mergeChar(QTextCursor& cursor, const QTextCharFormat& format) {
    cursor.mergeCharFormat(format);
}

int blockTwips(const QTextBlockFormat& format, int property, qreal layoutValue, double scale) {
    if (format.hasProperty(property)) {
        return format.intProperty(property);
    }
    return scale > 0 ? static_cast<int>(std::lround(layoutValue / scale)) : 0;
}

} // namespace

std::optional<bool> RichTextBox::SelBold() const {
    return uniformChar<bool>(
        d->cursor, [](const QTextCharFormat& f) { return f.fontWeight() >= QFont::DemiBold; });
}

void RichTextBox::setSelBold(bool on) {
    QTextCharFormat format;
    format.setFontWeight(on ? QFont::Bold : QFont::Normal);
    mergeChar(d->cursor, format);
}

std::optional<bool> RichTextBox::SelItalic() const {
    return uniformChar<bool>(d->cursor, [](const QTextCharFormat& f) { return f.fontItalic(); });
}

void RichTextBox::setSelItalic(bool on) {
    QTextCharFormat format;
    format.setFontItalic(on);
    mergeChar(d->cursor, format);
}

std::optional<bool> RichTextBox::SelUnderline() const {
    return uniformChar<bool>(d->cursor, [](const QTextCharFormat& f) { return f.fontUnderline(); });
}

void RichTextBox::setSelUnderline(bool on) {
    QTextCharFormat format;
    format.setFontUnderline(on);
    mergeChar(d->cursor, format);
}

std::optional<bool> RichTextBox::SelStrikeThru() const {
    return uniformChar<bool>(d->cursor, [](const QTextCharFormat& f) { return f.fontStrikeOut(); });
}

void RichTextBox::setSelStrikeThru(bool on) {
    QTextCharFormat format;
    format.setFontStrikeOut(on);
    mergeChar(d->cursor, format);
}

std::optional<QString> RichTextBox::SelFontName() const {
    const QString fallback = d->document->defaultFont().family();
    return uniformChar<QString>(d->cursor, [&fallback](const QTextCharFormat& f) {
        const QStringList families = f.fontFamilies().toStringList();
        return families.isEmpty() ? fallback : families.constFirst();
    });
}

void RichTextBox::setSelFontName(const QString& family) {
    QTextCharFormat format;
    format.setFontFamilies({family});
    mergeChar(d->cursor, format);
}

std::optional<double> RichTextBox::SelFontSize() const {
    const double fallback = d->document->defaultFont().pointSizeF();
    return uniformChar<double>(d->cursor, [fallback](const QTextCharFormat& f) {
        return f.hasProperty(QTextFormat::FontPointSize) ? f.fontPointSize() : fallback;
    });
}

void RichTextBox::setSelFontSize(double points) {
    if (points <= 0) {
        return;
    }
    QTextCharFormat format;
    format.setFontPointSize(points);
    mergeChar(d->cursor, format);
}

std::optional<QColor> RichTextBox::SelColor() const {
    const auto rgb = uniformChar<QRgb>(d->cursor, [](const QTextCharFormat& f) {
        return f.foreground().style() == Qt::NoBrush ? qRgb(0, 0, 0) : f.foreground().color().rgb();
    });
    return rgb ? std::optional<QColor>(QColor(*rgb)) : std::nullopt;
}

void RichTextBox::setSelColor(const QColor& colour) {
    QTextCharFormat format;
    format.setForeground(colour);
    mergeChar(d->cursor, format);
}

std::optional<int> RichTextBox::SelCharOffset() const {
    return uniformChar<int>(
        d->cursor, [](const QTextCharFormat& f) { return RichTextFormat::charOffsetTwips(f); });
}

void RichTextBox::setSelCharOffset(int twips) {
    QTextCharFormat format;
    const auto size = SelFontSize();
    format.setFontPointSize(size.value_or(12.0));
    RichTextFormat::setCharOffset(format, twips);
    format.clearProperty(QTextFormat::FontPointSize);
    if (twips == 0) {
        // Merging cannot remove properties: take them off fragment by fragment.
        QTextCursor cursor(d->cursor);
        if (!cursor.hasSelection()) {
            QTextCharFormat current = cursor.charFormat();
            RichTextFormat::setCharOffset(current, 0);
            d->cursor.setCharFormat(current);
            return;
        }
        const int from = cursor.selectionStart();
        const int to = cursor.selectionEnd();
        cursor.beginEditBlock();
        for (QTextBlock block = d->document->findBlock(from);
             block.isValid() && block.position() < to; block = block.next()) {
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                const QTextFragment fragment = it.fragment();
                const int start = std::max(fragment.position(), from);
                const int end = std::min(fragment.position() + fragment.length(), to);
                if (end <= start) {
                    continue;
                }
                QTextCharFormat plain = fragment.charFormat();
                RichTextFormat::setCharOffset(plain, 0);
                QTextCursor part(d->document);
                part.setPosition(start);
                part.setPosition(end, QTextCursor::KeepAnchor);
                part.setCharFormat(plain);
            }
        }
        cursor.endEditBlock();
        return;
    }
    mergeChar(d->cursor, format);
}

std::optional<int> RichTextBox::SelAlignment() const {
    return uniformBlock<int>(d->cursor, [](const QTextBlock& block) {
        const Qt::Alignment a = block.blockFormat().alignment() & Qt::AlignHorizontal_Mask;
        if (a & Qt::AlignRight) {
            return rtfRight;
        }
        if (a & Qt::AlignHCenter) {
            return rtfCenter;
        }
        if (a & Qt::AlignJustify) {
            return rtfJustify;
        }
        return rtfLeft;
    });
}

void RichTextBox::setSelAlignment(int alignment) {
    QTextBlockFormat format;
    switch (alignment) {
    case rtfRight:
        format.setAlignment(Qt::AlignRight | Qt::AlignAbsolute);
        break;
    case rtfCenter:
        format.setAlignment(Qt::AlignHCenter);
        break;
    case rtfJustify:
        format.setAlignment(Qt::AlignJustify);
        break;
    default:
        format.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
        break;
    }
    d->cursor.mergeBlockFormat(format);
}

std::optional<bool> RichTextBox::SelBullet() const {
    return uniformBlock<bool>(d->cursor, [](const QTextBlock& block) {
        const QTextList* list = block.textList();
        return list != nullptr && (list->format().style() == QTextListFormat::ListDisc ||
                                   list->format().style() == QTextListFormat::ListCircle ||
                                   list->format().style() == QTextListFormat::ListSquare);
    });
}

void RichTextBox::setSelBullet(bool on) {
    const int from = d->cursor.selectionStart();
    const int to = d->cursor.selectionEnd();
    QTextCursor cursor(d->cursor);
    cursor.beginEditBlock();
    if (on) {
        QTextListFormat format;
        format.setStyle(QTextListFormat::ListDisc);
        format.setIndent(0);
        QTextList* list = nullptr;
        for (QTextBlock block = d->document->findBlock(from); block.isValid();
             block = block.next()) {
            if (QTextList* old = block.textList()) {
                old->remove(block);
            }
            QTextCursor at(block);
            QTextBlockFormat blockFormat = block.blockFormat();
            // A bullet needs room left of the text, as the control gives it.
            if (blockFormat.intProperty(RichTextFormat::LeftIndentTwips) == 0) {
                blockFormat.setProperty(RichTextFormat::LeftIndentTwips, 360);
                blockFormat.setProperty(RichTextFormat::FirstLineTwips, -360);
                RichTextFormat::scaleBlockFormat(blockFormat,
                                                 RichTextFormat::unitsPerTwip(*d->document));
            }
            at.setBlockFormat(blockFormat);
            if (list == nullptr) {
                list = at.createList(format);
                blockFormat.setObjectIndex(list->objectIndex());
                at.setBlockFormat(blockFormat);
            } else {
                list->add(block);
            }
            if (block.position() + block.length() > to) {
                break;
            }
        }
    } else {
        for (QTextBlock block = d->document->findBlock(from); block.isValid();
             block = block.next()) {
            if (QTextList* list = block.textList()) {
                list->remove(block);
                QTextCursor at(block);
                QTextBlockFormat plain = block.blockFormat();
                plain.setObjectIndex(-1);
                at.setBlockFormat(plain);
            }
            if (block.position() + block.length() > to) {
                break;
            }
        }
    }
    cursor.endEditBlock();
}

namespace {

std::optional<int> blockLength(const QTextCursor& cursor, int property,
                               qreal (QTextBlockFormat::*layout)() const) {
    const double scale = RichTextFormat::unitsPerTwip(*cursor.document());
    return uniformBlock<int>(cursor, [&](const QTextBlock& block) {
        const QTextBlockFormat format = block.blockFormat();
        return blockTwips(format, property, (format.*layout)(), scale);
    });
}

} // namespace

void RichTextBox::Impl::rescaleRange(int from, int to) {
    const double scale = RichTextFormat::unitsPerTwip(*document);
    QTextCursor at(document);
    for (QTextBlock block = document->findBlock(from); block.isValid() && block.position() <= to;
         block = block.next()) {
        QTextBlockFormat format = block.blockFormat();
        RichTextFormat::scaleBlockFormat(format, scale);
        at.setPosition(block.position());
        at.setBlockFormat(format);
    }
}

static void setBlockLengths(RichTextBox::Impl& d,
                            const std::function<void(QTextBlockFormat&)>& change) {
    const int from = d.cursor.selectionStart();
    const int to = d.cursor.selectionEnd();
    const double scale = RichTextFormat::unitsPerTwip(*d.document);
    QTextCursor cursor(d.document);
    cursor.beginEditBlock();
    for (QTextBlock block = d.document->findBlock(from); block.isValid(); block = block.next()) {
        QTextBlockFormat format = block.blockFormat();
        // Values read from layout units before they first got twips.
        auto seed = [&](int property, qreal value) {
            if (!format.hasProperty(property) && value != 0) {
                format.setProperty(property, static_cast<int>(std::lround(value / scale)));
            }
        };
        seed(RichTextFormat::LeftIndentTwips, format.leftMargin());
        seed(RichTextFormat::RightIndentTwips, format.rightMargin());
        seed(RichTextFormat::FirstLineTwips, format.textIndent());
        change(format);
        RichTextFormat::scaleBlockFormat(format, scale);
        cursor.setPosition(block.position());
        cursor.setBlockFormat(format);
        if (block.position() + block.length() > to) {
            break;
        }
    }
    cursor.endEditBlock();
}

// SelIndent is where the first line starts; SelHangingIndent how far the
// other lines stand right of it. In the model the left indent is where the
// other lines start and the first-line indent is relative to it.
std::optional<int> RichTextBox::SelIndent() const {
    const auto left =
        blockLength(d->cursor, RichTextFormat::LeftIndentTwips, &QTextBlockFormat::leftMargin);
    const auto first =
        blockLength(d->cursor, RichTextFormat::FirstLineTwips, &QTextBlockFormat::textIndent);
    if (!left || !first) {
        return std::nullopt;
    }
    return *left + *first;
}

void RichTextBox::setSelIndent(int twips) {
    setBlockLengths(*d, [twips](QTextBlockFormat& format) {
        const int hanging = -format.intProperty(RichTextFormat::FirstLineTwips);
        format.setProperty(RichTextFormat::LeftIndentTwips, twips + hanging);
        format.setProperty(RichTextFormat::FirstLineTwips, -hanging);
    });
}

std::optional<int> RichTextBox::SelRightIndent() const {
    return blockLength(d->cursor, RichTextFormat::RightIndentTwips, &QTextBlockFormat::rightMargin);
}

void RichTextBox::setSelRightIndent(int twips) {
    setBlockLengths(*d, [twips](QTextBlockFormat& format) {
        format.setProperty(RichTextFormat::RightIndentTwips, twips);
    });
}

std::optional<int> RichTextBox::SelHangingIndent() const {
    const auto first =
        blockLength(d->cursor, RichTextFormat::FirstLineTwips, &QTextBlockFormat::textIndent);
    if (!first) {
        return std::nullopt;
    }
    return -*first;
}

void RichTextBox::setSelHangingIndent(int twips) {
    setBlockLengths(*d, [twips](QTextBlockFormat& format) {
        const int firstStart = format.intProperty(RichTextFormat::LeftIndentTwips) +
                               format.intProperty(RichTextFormat::FirstLineTwips);
        format.setProperty(RichTextFormat::LeftIndentTwips, firstStart + twips);
        format.setProperty(RichTextFormat::FirstLineTwips, -twips);
    });
}
