#include "platform/rtf/RtfWriter.h"

#include "platform/richtext/RichTextFormat.h"
#include "platform/rtf/RtfControlWords.h"
#include "platform/rtf/RtfFormatState.h"
#include "platform/text/CodePage1252.h"

#include <QBuffer>
#include <QImage>
#include <QPixmap>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextImageFormat>
#include <QTextList>
#include <QTextTable>
#include <QUrl>
#include <cmath>
#include <vector>

namespace {

using namespace RtfWord;
using K = RtfWord::Kind;

// Before the first run nothing is in force, so that its font and size are
// always written.
constexpr RtfCharState kNothingWritten = [] {
    RtfCharState state;
    state.halfPoints = -1;
    return state;
}();

class Writer {
public:
    Writer(const QTextDocument& document, int from, int to)
        : m_document(document), m_from(from), m_to(to),
          m_scale(RichTextFormat::unitsPerTwip(document)) {}

    QString run();

private:
    void collectTables();
    int fontIndex(const QString& family);
    int colourIndex(const QColor& colour);
    RtfCharState charState(const QTextCharFormat& format);
    RtfParaState paraState(const QTextBlock& block);
    int twips(const QTextFormat& format, int property, qreal layoutValue) const;

    void word(RtfWord::Kind kind, int meaning);
    void word(RtfWord::Kind kind, int meaning, long long value);
    void text(const QString& text);
    void raw(const char* bytes) { m_out += QLatin1String(bytes); }
    void lineBreak();

    void writeParagraphStart(const QTextBlock& block, bool force);
    void writeCharChanges(const RtfCharState& next);
    void writePicture(const QTextImageFormat& format);
    void writeRowStart(QTextTable* table);

    const QTextDocument& m_document;
    int m_from;
    int m_to;
    double m_scale;
    QString m_out;
    bool m_needDelimiter = false;

    QStringList m_fonts;
    std::vector<QColor> m_colours;
    RtfCharState m_char = kNothingWritten;
    RtfParaState m_para;
    bool m_paraWritten = false;
    int m_listNumber = 0;
    const QTextList* m_lastList = nullptr;
};

int Writer::twips(const QTextFormat& format, int property, qreal layoutValue) const {
    if (format.hasProperty(property)) {
        return format.intProperty(property);
    }
    return m_scale > 0 ? static_cast<int>(std::lround(layoutValue / m_scale)) : 0;
}

int Writer::fontIndex(const QString& family) {
    const QString name = family.isEmpty() ? m_fonts.constFirst() : family;
    qsizetype index = m_fonts.indexOf(name);
    if (index < 0) {
        m_fonts.append(name);
        index = m_fonts.size() - 1;
    }
    return static_cast<int>(index);
}

int Writer::colourIndex(const QColor& colour) {
    const QRgb rgb = colour.rgb();
    for (std::size_t i = 0; i < m_colours.size(); ++i) {
        if (m_colours[i].rgb() == rgb) {
            return static_cast<int>(i) + 1;
        }
    }
    m_colours.push_back(colour);
    return static_cast<int>(m_colours.size());
}

RtfCharState Writer::charState(const QTextCharFormat& format) {
    RtfCharState state;
    const QStringList families = format.fontFamilies().toStringList();
    state.font = fontIndex(families.isEmpty() ? QString() : families.constFirst());
    const double points = format.hasProperty(QTextFormat::FontPointSize)
                              ? format.fontPointSize()
                              : m_document.defaultFont().pointSizeF();
    state.halfPoints = std::max(1, static_cast<int>(std::lround(points * 2)));
    state.bold = format.fontWeight() >= QFont::DemiBold;
    state.italic = format.fontItalic();
    state.underline = format.fontUnderline();
    state.strike = format.fontStrikeOut();
    if (format.foreground().style() != Qt::NoBrush) {
        state.colour = colourIndex(format.foreground().color());
    }
    if (format.background().style() != Qt::NoBrush) {
        state.highlight = colourIndex(format.background().color());
    }
    const int offset = RichTextFormat::charOffsetTwips(format);
    if (offset != 0) {
        state.offsetHalfPoints = static_cast<int>(std::lround(offset / 10.0));
    } else if (format.verticalAlignment() == QTextCharFormat::AlignSuperScript) {
        state.superSub = 1;
    } else if (format.verticalAlignment() == QTextCharFormat::AlignSubScript) {
        state.superSub = 2;
    }
    return state;
}

RtfParaState Writer::paraState(const QTextBlock& block) {
    const QTextBlockFormat format = block.blockFormat();
    RtfParaState state;
    const Qt::Alignment alignment = format.alignment() & Qt::AlignHorizontal_Mask;
    if (alignment & Qt::AlignRight) {
        state.alignment = 1;
    } else if (alignment & Qt::AlignHCenter) {
        state.alignment = 2;
    } else if (alignment & Qt::AlignJustify) {
        state.alignment = 3;
    }
    using namespace RichTextFormat;
    state.left = twips(format, LeftIndentTwips, format.leftMargin());
    state.right = twips(format, RightIndentTwips, format.rightMargin());
    state.firstLine = twips(format, FirstLineTwips, format.textIndent());
    state.spaceBefore = twips(format, SpaceBeforeTwips, format.topMargin());
    state.spaceAfter = twips(format, SpaceAfterTwips, format.bottomMargin());
    state.lineSpacing = format.intProperty(LineSpacingTwips);
    state.lineMultiple = state.lineSpacing != 0 && format.boolProperty(LineSpacingMultiple);
    const QList<QVariant> stops = format.property(TabStopsTwips).toList();
    const QList<QVariant> kinds = format.property(TabStopKinds).toList();
    for (qsizetype i = 0; i < stops.size(); ++i) {
        state.tabs.emplace_back(stops.at(i).toInt(), i < kinds.size() ? kinds.at(i).toInt() : 0);
    }
    if (const QTextList* list = block.textList()) {
        state.oldNumbering = list->format().style();
        state.oldNumberingStart =
            std::max(1, list->format().intProperty(RichTextFormat::ListStartNumber));
    }
    state.inTable = QTextCursor(block).currentTable() != nullptr;
    return state;
}

void Writer::word(RtfWord::Kind kind, int meaning) {
    m_out += QLatin1Char('\\');
    m_out += RtfWord::spelling(kind, meaning);
    m_needDelimiter = true;
}

void Writer::word(RtfWord::Kind kind, int meaning, long long value) {
    word(kind, meaning);
    m_out += QString::number(value);
}

void Writer::lineBreak() {
    m_out += QLatin1String("\r\n");
    m_needDelimiter = false;
}

void Writer::text(const QString& content) {
    static const char* const hex = "0123456789abcdef";
    for (const QChar ch : content) {
        const char16_t c = ch.unicode();
        if (c == u'\t') {
            word(K::Special, '\t');
            continue;
        }
        if (c == 0x2028) {
            word(K::Special, 0x2028);
            continue;
        }
        if (c < 0x20 || c == QChar::ObjectReplacementCharacter || c == 0xFEFF) {
            continue;
        }
        if (m_needDelimiter) {
            m_out += QLatin1Char(' ');
            m_needDelimiter = false;
        }
        if (c == u'\\' || c == u'{' || c == u'}') {
            m_out += QLatin1Char('\\');
            m_out += ch;
        } else if (c < 0x80) {
            m_out += ch;
        } else if (c == 0x00A0) {
            m_out += QLatin1String("\\~");
        } else if (const auto byte = CodePage1252::fromUnicode(ch)) {
            m_out += QLatin1String("\\'");
            m_out += QLatin1Char(hex[*byte >> 4]);
            m_out += QLatin1Char(hex[*byte & 15]);
        } else {
            // \uN takes a signed 16-bit number; the '?' is what a reader
            // without Unicode shows.
            m_out += QLatin1String("\\u");
            m_out += QString::number(static_cast<qint16>(c));
            m_out += QLatin1Char('?');
        }
    }
}

void Writer::writeCharChanges(const RtfCharState& next) {
    if (next.font != m_char.font) {
        word(K::Character, Font, next.font);
    }
    if (next.halfPoints != m_char.halfPoints) {
        word(K::Character, FontSize, next.halfPoints);
    }
    if (next.bold != m_char.bold) {
        next.bold ? word(K::Character, Bold) : word(K::Character, Bold, 0);
    }
    if (next.italic != m_char.italic) {
        next.italic ? word(K::Character, Italic) : word(K::Character, Italic, 0);
    }
    if (next.underline != m_char.underline) {
        next.underline ? word(K::Character, Underline) : word(K::Character, UnderlineNone);
    }
    if (next.strike != m_char.strike) {
        next.strike ? word(K::Character, Strike) : word(K::Character, Strike, 0);
    }
    if (next.colour != m_char.colour) {
        word(K::Character, Colour, next.colour);
    }
    if (next.highlight != m_char.highlight) {
        word(K::Character, Highlight, next.highlight);
    }
    if (next.offsetHalfPoints != m_char.offsetHalfPoints || next.superSub != m_char.superSub) {
        if (next.offsetHalfPoints > 0) {
            word(K::Character, Up, next.offsetHalfPoints);
        } else if (next.offsetHalfPoints < 0) {
            word(K::Character, Down, -next.offsetHalfPoints);
        } else if (next.superSub == 1) {
            word(K::Character, Super);
        } else if (next.superSub == 2) {
            word(K::Character, Sub);
        } else {
            word(K::Character, NoSuperSub);
        }
    }
    m_char = next;
}

void Writer::writeParagraphStart(const QTextBlock& block, bool force) {
    const RtfParaState next = paraState(block);
    const QTextList* list = block.textList();
    if (force || !m_paraWritten || !(next == m_para)) {
        word(K::Paragraph, Pard);
        if (next.inTable) {
            word(K::Paragraph, InTable);
        }
        if (next.oldNumbering != 0) {
            // The old numbering form: the control writes and reads it.
            const bool bullet = next.oldNumbering == QTextListFormat::ListDisc ||
                                next.oldNumbering == QTextListFormat::ListCircle ||
                                next.oldNumbering == QTextListFormat::ListSquare;
            raw("{\\*");
            word(K::Destination, int(RtfDestination::OldNumbering));
            if (bullet) {
                word(K::OldNumbering, NumberBullet);
                word(K::Written, NumberFont, 1);
                word(K::Written, NumberIndent, 0);
                raw("{");
                word(K::SkippedDestination, NumberTextBefore);
                m_needDelimiter = false;
                raw("\\'b7}}");
            } else {
                word(K::OldNumbering, NumberBody);
                word(K::Written, NumberIndent, 0);
                word(K::OldNumbering, NumberStart, next.oldNumberingStart);
                switch (next.oldNumbering) {
                case QTextListFormat::ListUpperAlpha:
                    word(K::OldNumbering, NumberUpperLetter);
                    break;
                case QTextListFormat::ListLowerAlpha:
                    word(K::OldNumbering, NumberLowerLetter);
                    break;
                case QTextListFormat::ListUpperRoman:
                    word(K::OldNumbering, NumberUpperRoman);
                    break;
                case QTextListFormat::ListLowerRoman:
                    word(K::OldNumbering, NumberLowerRoman);
                    break;
                default:
                    word(K::OldNumbering, NumberDecimal);
                    break;
                }
                raw("{");
                word(K::SkippedDestination, NumberTextAfter);
                m_needDelimiter = false;
                raw(".}}");
            }
            m_needDelimiter = false;
        }
        if (next.alignment == 1) {
            word(K::Paragraph, AlignRight);
        } else if (next.alignment == 2) {
            word(K::Paragraph, AlignCentre);
        } else if (next.alignment == 3) {
            word(K::Paragraph, AlignJustify);
        }
        if (next.firstLine != 0) {
            word(K::Paragraph, FirstLine, next.firstLine);
        }
        if (next.left != 0) {
            word(K::Paragraph, LeftIndent, next.left);
        }
        if (next.right != 0) {
            word(K::Paragraph, RightIndent, next.right);
        }
        if (next.spaceBefore != 0) {
            word(K::Paragraph, SpaceBefore, next.spaceBefore);
        }
        if (next.spaceAfter != 0) {
            word(K::Paragraph, SpaceAfter, next.spaceAfter);
        }
        if (next.lineSpacing != 0) {
            word(K::Paragraph, LineSpacing, next.lineSpacing);
            word(K::Paragraph, LineMultiple, next.lineMultiple ? 1 : 0);
        }
        for (const auto& [position, kind] : next.tabs) {
            if (kind == 1) {
                word(K::Paragraph, TabRight);
            } else if (kind == 2) {
                word(K::Paragraph, TabCentre);
            } else if (kind == 3) {
                word(K::Paragraph, TabDecimal);
            }
            word(K::Paragraph, TabStop, position);
        }
        m_para = next;
        m_paraWritten = true;
    }
    // The number or bullet of a list paragraph, for readers that show it
    // as text; ours skips it.
    if (list != nullptr) {
        if (list != m_lastList) {
            m_listNumber = 0;
            m_lastList = list;
        }
        ++m_listNumber;
        const bool bullet = next.oldNumbering == QTextListFormat::ListDisc ||
                            next.oldNumbering == QTextListFormat::ListCircle ||
                            next.oldNumbering == QTextListFormat::ListSquare;
        raw("{");
        word(K::SkippedDestination, NumberText);
        if (bullet) {
            word(K::Character, Font, 1);
            m_needDelimiter = false;
            raw("\\'b7");
        } else {
            word(K::Character, Font, m_char.font >= 0 ? m_char.font : 0);
            text(list->itemText(block));
        }
        word(K::Special, '\t');
        m_needDelimiter = false;
        raw("}");
    }
}

void Writer::writePicture(const QTextImageFormat& format) {
    const QVariant resource =
        m_document.resource(QTextDocument::ImageResource, QUrl(format.name()));
    QImage image;
    if (resource.canConvert<QImage>()) {
        image = resource.value<QImage>();
    } else if (resource.canConvert<QPixmap>()) {
        image = resource.value<QPixmap>().toImage();
    } else if (resource.typeId() == QMetaType::QByteArray) {
        image.loadFromData(resource.toByteArray());
    }
    if (image.isNull()) {
        return;
    }
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    const int width = format.hasProperty(RichTextFormat::PictureWidthTwips)
                          ? format.intProperty(RichTextFormat::PictureWidthTwips)
                          : (format.width() > 0 ? static_cast<int>(format.width() / m_scale)
                                                : image.width() * 15);
    const int height = format.hasProperty(RichTextFormat::PictureHeightTwips)
                           ? format.intProperty(RichTextFormat::PictureHeightTwips)
                           : (format.height() > 0 ? static_cast<int>(format.height() / m_scale)
                                                  : image.height() * 15);
    raw("{");
    word(K::Destination, int(RtfDestination::Picture));
    word(K::Picture, PictureFormatPng);
    word(K::Picture, PictureWidth, image.width());
    word(K::Picture, PictureHeight, image.height());
    word(K::Picture, PictureGoalWidth, width);
    word(K::Picture, PictureGoalHeight, height);
    const QByteArray hex = png.toHex();
    for (qsizetype i = 0; i < hex.size(); i += 128) {
        lineBreak();
        m_out += QLatin1String(hex.mid(i, 128));
    }
    raw("}");
    m_needDelimiter = false;
}

void Writer::writeRowStart(QTextTable* table) {
    lineBreak();
    word(K::Table, RowDefaults);
    word(K::Written, CellGap, 108);
    word(K::Table, RowLeft, 0);
    const QTextTableFormat format = table->format();
    const QList<QVariant> widths = format.property(RichTextFormat::ColumnWidthsTwips).toList();
    const QList<QTextLength> constraints = format.columnWidthConstraints();
    int edge = 0;
    for (int column = 0; column < table->columns(); ++column) {
        int width = 1440 * 2;
        if (column < widths.size()) {
            width = widths.at(column).toInt();
        } else if (column < constraints.size() &&
                   constraints.at(column).type() == QTextLength::FixedLength && m_scale > 0) {
            width = static_cast<int>(std::lround(constraints.at(column).rawValue() / m_scale));
        }
        edge += std::max(width, 1);
        word(K::Table, CellEdge, edge);
    }
}

QString Writer::run() {
    m_fonts.append(m_document.defaultFont().family());
    m_fonts.append(QStringLiteral("Symbol")); // f1: bullets; kept even when unused
    QString body;
    std::swap(body, m_out);

    const int end = std::min(m_to, m_document.characterCount() - 1);
    QTextBlock block = m_document.findBlock(m_from);
    bool first = true;
    bool afterTable = false;
    while (block.isValid() && block.position() <= end) {
        const int blockStart = block.position();
        const int blockEnd = blockStart + block.length() - 1; // its separator
        QTextCursor probe(block);
        QTextTable* table = probe.currentTable();
        QTextTableCell cell = table != nullptr ? table->cellAt(blockStart) : QTextTableCell();
        const bool cellStart = cell.isValid() && cell.firstPosition() == blockStart;
        if (cellStart && cell.column() == 0) {
            writeRowStart(table);
        }
        writeParagraphStart(block, first || afterTable || cellStart);
        first = false;
        afterTable = false;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const int fragmentStart = std::max(fragment.position(), m_from);
            const int fragmentEnd = std::min(fragment.position() + fragment.length(), end);
            if (fragmentEnd <= fragmentStart) {
                continue;
            }
            const QTextCharFormat format = fragment.charFormat();
            writeCharChanges(charState(format));
            if (format.isImageFormat()) {
                for (int i = fragmentStart; i < fragmentEnd; ++i) {
                    writePicture(format.toImageFormat());
                }
                continue;
            }
            text(fragment.text().mid(fragmentStart - fragment.position(),
                                     fragmentEnd - fragmentStart));
        }
        const bool cellEnd = cell.isValid() && cell.lastPosition() == blockEnd;
        if (cellEnd) {
            word(K::Table, CellEnd);
            if (cell.column() + cell.columnSpan() >= table->columns()) {
                word(K::Table, RowEnd);
                afterTable = true;
            }
        } else if (blockEnd < end) {
            lineBreak();
            const bool pageBreak = block.blockFormat().boolProperty(RichTextFormat::PageBreakAfter);
            word(K::Paragraph, pageBreak ? PageBreak : ParagraphEnd);
        }
        block = block.next();
    }
    if (afterTable) {
        word(K::Paragraph, Pard);
    }
    // The final paragraph mark.
    lineBreak();
    word(K::Paragraph, ParagraphEnd);
    lineBreak();
    m_out += QLatin1Char('}');

    std::swap(body, m_out);
    raw("{");
    word(K::Written, RtfVersion, 1);
    word(K::Document, Ansi);
    word(K::Document, AnsiCodePage, 1252);
    word(K::Document, DefaultFont, 0);
    word(K::Written, DefaultLanguage, 1033);
    raw("{");
    word(K::Destination, int(RtfDestination::FontTable));
    for (qsizetype i = 0; i < m_fonts.size(); ++i) {
        const bool symbol = i == 1;
        raw("{");
        word(K::Character, Font, i);
        word(K::Written, FontFamilyNil);
        word(K::FontTable, FontCharset, symbol ? 2 : 0);
        raw(" ");
        m_needDelimiter = false;
        text(m_fonts.at(i).isEmpty() ? QStringLiteral("Tahoma") : m_fonts.at(i));
        m_out += QLatin1String(";}");
    }
    raw("}");
    lineBreak();
    raw("{");
    word(K::Destination, int(RtfDestination::ColorTable));
    raw(" ;");
    for (const QColor& colour : m_colours) {
        word(K::ColourTable, Red, colour.red());
        word(K::ColourTable, Green, colour.green());
        word(K::ColourTable, Blue, colour.blue());
        raw(";");
    }
    raw("}");
    lineBreak();
    word(K::Written, ViewKind, 4);
    word(K::Document, UnicodeSkip, 1);
    m_out += body;
    return m_out;
}

} // namespace

QString RtfWriter::write(const QTextDocument& document) {
    return write(document, 0, document.characterCount() - 1);
}

QString RtfWriter::write(const QTextDocument& document, int from, int to) {
    Writer writer(document, std::max(from, 0), to);
    return writer.run();
}
