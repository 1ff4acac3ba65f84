#include "platform/rtf/RtfWriter.h"

#include "platform/richtext/RichTextFormat.h"
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

struct WrittenChar {
    int font = -1;
    int halfPoints = -1;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    int colour = 0;
    int highlight = 0;
    int offsetHalfPoints = 0;
    int superSub = 0;
    bool operator==(const WrittenChar&) const = default;
};

struct WrittenPara {
    int alignment = 0;
    int firstLine = 0;
    int left = 0;
    int right = 0;
    int spaceBefore = 0;
    int spaceAfter = 0;
    int lineSpacing = 0;
    bool lineMultiple = false;
    std::vector<std::pair<int, int>> tabs;
    int listStyle = 0; // QTextListFormat::Style, 0 none
    int listStart = 1;
    bool inTable = false;
    bool operator==(const WrittenPara&) const = default;
};

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
    WrittenChar charState(const QTextCharFormat& format);
    WrittenPara paraState(const QTextBlock& block);
    int twips(const QTextFormat& format, int property, qreal layoutValue) const;

    void word(const char* name);
    void word(const char* name, long long value);
    void text(const QString& text);
    void raw(const char* bytes) { m_out += QLatin1String(bytes); }
    void lineBreak();

    void writeParagraphStart(const QTextBlock& block, bool force);
    void writeCharChanges(const WrittenChar& next);
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
    WrittenChar m_char;
    WrittenPara m_para;
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

WrittenChar Writer::charState(const QTextCharFormat& format) {
    WrittenChar state;
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

WrittenPara Writer::paraState(const QTextBlock& block) {
    const QTextBlockFormat format = block.blockFormat();
    WrittenPara state;
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
        state.listStyle = list->format().style();
        state.listStart = std::max(1, list->format().intProperty(RichTextFormat::ListStartNumber));
    }
    state.inTable = QTextCursor(block).currentTable() != nullptr;
    return state;
}

void Writer::word(const char* name) {
    m_out += QLatin1Char('\\');
    m_out += QLatin1String(name);
    m_needDelimiter = true;
}

void Writer::word(const char* name, long long value) {
    word(name);
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
            word("tab");
            continue;
        }
        if (c == 0x2028) {
            word("line");
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

void Writer::writeCharChanges(const WrittenChar& next) {
    if (next.font != m_char.font) {
        word("f", next.font);
    }
    if (next.halfPoints != m_char.halfPoints) {
        word("fs", next.halfPoints);
    }
    if (next.bold != m_char.bold) {
        next.bold ? word("b") : word("b", 0);
    }
    if (next.italic != m_char.italic) {
        next.italic ? word("i") : word("i", 0);
    }
    if (next.underline != m_char.underline) {
        next.underline ? word("ul") : word("ulnone");
    }
    if (next.strike != m_char.strike) {
        next.strike ? word("strike") : word("strike", 0);
    }
    if (next.colour != m_char.colour) {
        word("cf", next.colour);
    }
    if (next.highlight != m_char.highlight) {
        word("highlight", next.highlight);
    }
    if (next.offsetHalfPoints != m_char.offsetHalfPoints || next.superSub != m_char.superSub) {
        if (next.offsetHalfPoints > 0) {
            word("up", next.offsetHalfPoints);
        } else if (next.offsetHalfPoints < 0) {
            word("dn", -next.offsetHalfPoints);
        } else if (next.superSub == 1) {
            word("super");
        } else if (next.superSub == 2) {
            word("sub");
        } else {
            word("nosupersub");
        }
    }
    m_char = next;
}

void Writer::writeParagraphStart(const QTextBlock& block, bool force) {
    const WrittenPara next = paraState(block);
    const QTextList* list = block.textList();
    if (force || !m_paraWritten || !(next == m_para)) {
        word("pard");
        if (next.inTable) {
            word("intbl");
        }
        if (next.listStyle != 0) {
            // The old numbering form: the control writes and reads it.
            const bool bullet = next.listStyle == QTextListFormat::ListDisc ||
                                next.listStyle == QTextListFormat::ListCircle ||
                                next.listStyle == QTextListFormat::ListSquare;
            raw("{\\*");
            word("pn");
            if (bullet) {
                word("pnlvlblt");
                word("pnf", 1);
                word("pnindent", 0);
                raw("{");
                word("pntxtb");
                m_needDelimiter = false;
                raw("\\'b7}}");
            } else {
                word("pnlvlbody");
                word("pnindent", 0);
                word("pnstart", next.listStart);
                switch (next.listStyle) {
                case QTextListFormat::ListUpperAlpha:
                    word("pnucltr");
                    break;
                case QTextListFormat::ListLowerAlpha:
                    word("pnlcltr");
                    break;
                case QTextListFormat::ListUpperRoman:
                    word("pnucrm");
                    break;
                case QTextListFormat::ListLowerRoman:
                    word("pnlcrm");
                    break;
                default:
                    word("pndec");
                    break;
                }
                raw("{");
                word("pntxta");
                m_needDelimiter = false;
                raw(".}}");
            }
            m_needDelimiter = false;
        }
        if (next.alignment == 1) {
            word("qr");
        } else if (next.alignment == 2) {
            word("qc");
        } else if (next.alignment == 3) {
            word("qj");
        }
        if (next.firstLine != 0) {
            word("fi", next.firstLine);
        }
        if (next.left != 0) {
            word("li", next.left);
        }
        if (next.right != 0) {
            word("ri", next.right);
        }
        if (next.spaceBefore != 0) {
            word("sb", next.spaceBefore);
        }
        if (next.spaceAfter != 0) {
            word("sa", next.spaceAfter);
        }
        if (next.lineSpacing != 0) {
            word("sl", next.lineSpacing);
            word("slmult", next.lineMultiple ? 1 : 0);
        }
        for (const auto& [position, kind] : next.tabs) {
            if (kind == 1) {
                word("tqr");
            } else if (kind == 2) {
                word("tqc");
            } else if (kind == 3) {
                word("tqdec");
            }
            word("tx", position);
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
        const bool bullet = next.listStyle == QTextListFormat::ListDisc ||
                            next.listStyle == QTextListFormat::ListCircle ||
                            next.listStyle == QTextListFormat::ListSquare;
        raw("{");
        word("pntext");
        if (bullet) {
            word("f", 1);
            m_needDelimiter = false;
            raw("\\'b7");
        } else {
            word("f", m_char.font >= 0 ? m_char.font : 0);
            text(list->itemText(block));
        }
        word("tab");
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
    word("pict");
    word("pngblip");
    word("picw", image.width());
    word("pich", image.height());
    word("picwgoal", width);
    word("pichgoal", height);
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
    word("trowd");
    word("trgaph", 108);
    word("trleft", 0);
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
        word("cellx", edge);
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
            word("cell");
            if (cell.column() + cell.columnSpan() >= table->columns()) {
                word("row");
                afterTable = true;
            }
        } else if (blockEnd < end) {
            lineBreak();
            const bool pageBreak = block.blockFormat().boolProperty(RichTextFormat::PageBreakAfter);
            word(pageBreak ? "page" : "par");
        }
        block = block.next();
    }
    if (afterTable) {
        word("pard");
    }
    // The final paragraph mark.
    lineBreak();
    word("par");
    lineBreak();
    m_out += QLatin1Char('}');

    std::swap(body, m_out);
    raw("{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl");
    for (qsizetype i = 0; i < m_fonts.size(); ++i) {
        const bool symbol = i == 1;
        m_out += QStringLiteral("{\\f%1\\fnil\\fcharset%2 ").arg(i).arg(symbol ? 2 : 0);
        m_needDelimiter = false;
        text(m_fonts.at(i).isEmpty() ? QStringLiteral("Tahoma") : m_fonts.at(i));
        m_out += QLatin1String(";}");
    }
    raw("}");
    lineBreak();
    raw("{\\colortbl ;");
    for (const QColor& colour : m_colours) {
        m_out += QStringLiteral("\\red%1\\green%2\\blue%3;")
                     .arg(colour.red())
                     .arg(colour.green())
                     .arg(colour.blue());
    }
    raw("}");
    lineBreak();
    raw("\\viewkind4\\uc1");
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
