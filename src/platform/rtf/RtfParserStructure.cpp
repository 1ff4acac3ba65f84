// Paragraphs, lists, tables, pictures and fields of the RTF reader.

#include "platform/richtext/RichTextFormat.h"
#include "platform/rtf/RtfControlWords.h"
#include "platform/rtf/RtfReaderState.h"
#include "platform/text/CodePage1252.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextImageFormat>
#include <QTextList>
#include <QTextTable>
#include <QUrl>

namespace {

using Token = RtfTokenizer::Token;

// \levelnfc numbers to list styles; 23 (and anything unknown) is a bullet.
QTextListFormat::Style styleForLevelFormat(int format) {
    switch (format) {
    case 0:
        return QTextListFormat::ListDecimal;
    case 1:
        return QTextListFormat::ListUpperRoman;
    case 2:
        return QTextListFormat::ListLowerRoman;
    case 3:
        return QTextListFormat::ListUpperAlpha;
    case 4:
        return QTextListFormat::ListLowerAlpha;
    default:
        return QTextListFormat::ListDisc;
    }
}

// Pictures larger than this (in pixels a side) are not decoded.
constexpr int kMaxPictureSide = 20000;

// Cells beyond this in a row share the last one.
constexpr int kMaxColumns = 63;

} // namespace

using namespace RtfWord;

void RtfParser::fontWord(const Token& token, int which) {
    if (state().destination != RtfDestination::FontTable || !token.hasParameter) {
        return;
    }
    const int codePage = which == FontCharset ? CodePageDecoder::codePageForCharset(token.parameter)
                                              : token.parameter;
    // Charset 0 follows the document's code page.
    if (which == FontCharset && token.parameter == 0) {
        m_fonts[m_fontBeingDefined].codePage = 0;
        return;
    }
    m_fonts[m_fontBeingDefined].codePage = codePage == 0 ? 0 : CodePageDecoder(codePage).codePage();
}

void RtfParser::colourWord(const Token& token, int which) {
    if (state().destination != RtfDestination::ColorTable) {
        return;
    }
    const int value = std::clamp(token.parameter, 0, 255);
    (which == Red ? m_red : which == Green ? m_green : m_blue) = value;
    m_colourSet = true;
}

void RtfParser::listWord(const Token& token, int which) {
    const RtfDestination destination = state().destination;
    if (destination == RtfDestination::ListTable) {
        switch (which) {
        case List: // \list: its levels may come before its \listid
            m_pendingLevels.clear();
            m_definingList = &m_pendingLevels;
            break;
        case ListId:
            m_listDefinitions[token.parameter] = m_pendingLevels;
            m_definingList = &m_listDefinitions[token.parameter];
            break;
        case ListLevelDefinition:
            if (m_definingList == nullptr) {
                m_definingList = &m_pendingLevels;
            }
            if (m_definingList->size() < 9) {
                m_definingList->push_back(ListLevel{});
            }
            break;
        case LevelFormat:
            if (m_definingList != nullptr && !m_definingList->empty()) {
                m_definingList->back().format = token.parameter;
            }
            break;
        case LevelStart:
            if (m_definingList != nullptr && !m_definingList->empty()) {
                m_definingList->back().start = token.parameter;
            }
            break;
        default:
            break;
        }
    } else if (destination == RtfDestination::ListOverrideTable) {
        if (which == ListId) {
            m_definingOverride = token.parameter;
        }
    }
}

void RtfParser::oldNumberingWord(const Token& token, int which) {
    if (state().destination != RtfDestination::OldNumbering) {
        return;
    }
    RtfParaState& para = state().para;
    switch (which) {
    case NumberBullet:
        para.oldNumbering = QTextListFormat::ListDisc;
        break;
    case NumberBody:
        if (para.oldNumbering == 0 || para.oldNumbering == QTextListFormat::ListDisc) {
            para.oldNumbering = QTextListFormat::ListDecimal;
        }
        break;
    case NumberDecimal:
        para.oldNumbering = QTextListFormat::ListDecimal;
        break;
    case NumberUpperLetter:
        para.oldNumbering = QTextListFormat::ListUpperAlpha;
        break;
    case NumberLowerLetter:
        para.oldNumbering = QTextListFormat::ListLowerAlpha;
        break;
    case NumberUpperRoman:
        para.oldNumbering = QTextListFormat::ListUpperRoman;
        break;
    case NumberLowerRoman:
        para.oldNumbering = QTextListFormat::ListLowerRoman;
        break;
    case NumberStart:
        para.oldNumberingStart = std::max(token.parameter, 0);
        break;
    default:
        break;
    }
}

void RtfParser::fieldWord(const Token&, int which) {
    if (which == FieldResult) {
        flushText();
        state().destination = RtfDestination::Text;
        state().fieldResult = true;
    }
}

void RtfParser::finishFieldInstruction() {
    // Only hyperlinks carry something into the result: the link target.
    const QString instruction = m_fieldInstruction.trimmed();
    m_fieldInstruction.clear();
    m_fieldLink.clear();
    if (instruction.startsWith(QLatin1String("HYPERLINK"), Qt::CaseInsensitive)) {
        const qsizetype open = instruction.indexOf(QLatin1Char('"'));
        const qsizetype close = open >= 0 ? instruction.indexOf(QLatin1Char('"'), open + 1) : -1;
        if (open >= 0 && close > open) {
            m_fieldLink = instruction.mid(open + 1, close - open - 1);
        }
    }
}

void RtfParser::pictureWord(const Token& token, int which) {
    if (state().destination != RtfDestination::Picture) {
        return;
    }
    const int value = token.parameter;
    switch (which) {
    case PictureFormatPng:
        m_picture.kind = RtfPicture::Kind::Png;
        break;
    case PictureFormatJpeg:
        m_picture.kind = RtfPicture::Kind::Jpeg;
        break;
    case PictureFormatOther:
        m_picture.kind = RtfPicture::Kind::Other;
        break;
    case PictureWidth:
        m_picture.widthPx = std::clamp(value, 0, 1'000'000);
        break;
    case PictureHeight:
        m_picture.heightPx = std::clamp(value, 0, 1'000'000);
        break;
    case PictureGoalWidth:
        m_picture.goalWidth = std::clamp(value, 0, 1'000'000);
        break;
    case PictureGoalHeight:
        m_picture.goalHeight = std::clamp(value, 0, 1'000'000);
        break;
    case PictureScaleX:
        m_picture.scaleX = std::clamp(value, 1, 10000);
        break;
    case PictureScaleY:
        m_picture.scaleY = std::clamp(value, 1, 10000);
        break;
    default:
        break;
    }
}

void RtfParser::finishPicture(RtfPicture& picture) {
    QImage image;
    if (picture.kind == RtfPicture::Kind::Png || picture.kind == RtfPicture::Kind::Jpeg) {
        QBuffer buffer(&picture.data);
        buffer.open(QIODevice::ReadOnly);
        QImageReader reader(&buffer, picture.kind == RtfPicture::Kind::Png ? "png" : "jpeg");
        const QSize size = reader.size();
        if (size.isValid() && size.width() <= kMaxPictureSide && size.height() <= kMaxPictureSide) {
            image = reader.read();
        }
    }
    // The size it is shown at, in twips: the goal size, else the picture's
    // own (in pixels at 96 dpi, or hundredths of a millimetre for metafiles).
    int width = picture.goalWidth;
    int height = picture.goalHeight;
    if (width <= 0 || height <= 0) {
        if (!image.isNull()) {
            width = image.width() * 15;
            height = image.height() * 15;
        } else if (picture.kind == RtfPicture::Kind::Other) {
            width = static_cast<int>(picture.widthPx * 1440LL / 2540);
            height = static_cast<int>(picture.heightPx * 1440LL / 2540);
        } else {
            width = picture.widthPx * 15;
            height = picture.heightPx * 15;
        }
    }
    width = static_cast<int>(std::min<long long>(width * 1LL * picture.scaleX / 100, 1'000'000));
    height = static_cast<int>(std::min<long long>(height * 1LL * picture.scaleY / 100, 1'000'000));
    picture.data.clear();
    if (width <= 0 || height <= 0) {
        return;
    }
    if (image.isNull()) {
        // A picture we cannot show keeps its place as a blank of its size.
        image = QImage(1, 1, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
    }
    QTextDocument* document = m_cursor.document();
    const QString name = QStringLiteral("rtfpicture:%1-%2")
                             .arg(reinterpret_cast<quintptr>(this))
                             .arg(++m_pictureCount);
    document->addResource(QTextDocument::ImageResource, QUrl(name), image);
    QTextImageFormat format;
    format.setName(name);
    format.setProperty(RichTextFormat::PictureWidthTwips, width);
    format.setProperty(RichTextFormat::PictureHeightTwips, height);
    const double scale = m_unitsPerTwip;
    format.setWidth(width * scale);
    format.setHeight(height * scale);
    // Pictures sit in the text of the enclosing group.
    if (m_states.size() >= 2) {
        flushText();
        ensureTextContext();
        m_cursor.insertImage(format);
        m_blockHasContent = true;
        m_lastWasParagraphEnd = false;
    }
}

void RtfParser::tableWord(const Token& token, int which) {
    if (state().destination != RtfDestination::Text) {
        return;
    }
    switch (which) {
    case RowDefaults:
        m_cellEdges.clear();
        m_rowLeft = 0;
        break;
    case CellEdge:
        if (m_cellEdges.size() < 63) {
            m_cellEdges.push_back(std::clamp(token.parameter, -31680, 31680));
        }
        break;
    case CellEnd:
        endCell();
        break;
    case RowEnd:
        endRow();
        break;
    case RowLeft:
        m_rowLeft = token.parameter;
        break;
    default:
        break;
    }
}

void RtfParser::ensureTextContext() {
    const bool inTable = state().para.inTable;
    if (inTable && m_table == nullptr) {
        enterTable();
    } else if (!inTable && m_table != nullptr) {
        leaveTable();
    } else if (m_table != nullptr) {
        if (m_rowEnded) {
            flushText();
            m_table->appendRows(1);
            ++m_row;
            m_column = 0;
            m_rowEnded = false;
            m_cellEnded = false;
            m_cursor = m_table->cellAt(m_row, 0).firstCursorPosition();
            m_blockHasContent = false;
        } else if (m_cellEnded) {
            flushText();
            m_cellEnded = false;
            if (m_column + 1 < kMaxColumns) {
                ++m_column;
                if (m_column >= m_table->columns()) {
                    m_table->appendColumns(1);
                }
            }
            m_cursor = m_table->cellAt(m_row, m_column).firstCursorPosition();
            m_blockHasContent = false;
        }
    }
}

void RtfParser::enterTable() {
    flushText();
    // A table ends the paragraph before it by itself: the empty paragraph
    // that a \par before the table opened would stand as an extra line.
    if (m_cursor.atBlockStart() && m_cursor.block().length() == 1 &&
        m_cursor.document()->characterAt(m_cursor.position() - 1) == QChar::ParagraphSeparator) {
        const QTextBlockFormat kept = m_cursor.block().previous().blockFormat();
        m_cursor.deletePreviousChar();
        m_cursor.setBlockFormat(kept);
    }
    const int columns = std::max<int>(1, static_cast<int>(m_cellEdges.size()));
    QTextTableFormat format;
    format.setCellPadding(2);
    format.setCellSpacing(0);
    format.setBorder(0.5);
    format.setBorderCollapse(true);
    QList<QVariant> widths;
    int previous = m_rowLeft;
    for (const int edge : m_cellEdges) {
        widths.append(std::max(edge - previous, 1));
        previous = edge;
    }
    if (!widths.isEmpty()) {
        format.setProperty(RichTextFormat::ColumnWidthsTwips, widths);
        const double scale = m_unitsPerTwip;
        QList<QTextLength> lengths;
        for (const QVariant& width : widths) {
            lengths.append(QTextLength(QTextLength::FixedLength, width.toInt() * scale));
        }
        format.setColumnWidthConstraints(lengths);
    }
    m_table = m_cursor.insertTable(1, columns, format);
    m_row = 0;
    m_column = 0;
    m_rowEnded = false;
    m_cellEnded = false;
    m_cursor = m_table->cellAt(0, 0).firstCursorPosition();
    m_blockHasContent = false;
}

void RtfParser::leaveTable() {
    flushText();
    QTextTable* table = std::exchange(m_table, nullptr);
    m_cursor.setPosition(table->lastPosition() + 1);
    m_rowEnded = false;
    m_blockHasContent = !m_cursor.block().text().isEmpty();
}

void RtfParser::endCell() {
    state().para.inTable = true;
    ensureTextContext();
    flushText();
    applyParagraph();
    // The next cell is entered when something arrives for it.
    m_cellEnded = true;
    m_lastWasParagraphEnd = false;
}

void RtfParser::endRow() {
    if (m_table == nullptr) {
        return;
    }
    flushText();
    m_lastWasParagraphEnd = false;
    // A row that ends before its last cell was filled leaves those cells
    // empty; the cursor waits for the next row.
    m_rowEnded = true;
    m_cellEnded = false;
}

void RtfParser::applyParagraph() {
    const RtfParaState& para = state().para;
    QTextBlockFormat format;
    using RichTextFormat::setBlockTwips;
    const double scale = m_unitsPerTwip;
    switch (para.alignment) {
    case 1:
        format.setAlignment(Qt::AlignRight | Qt::AlignAbsolute);
        break;
    case 2:
        format.setAlignment(Qt::AlignHCenter);
        break;
    case 3:
        format.setAlignment(Qt::AlignJustify);
        break;
    default:
        format.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
        break;
    }
    auto setTwips = [&](int property, int twips) {
        if (twips != 0) {
            format.setProperty(property, twips);
        }
    };
    setTwips(RichTextFormat::LeftIndentTwips, para.left);
    setTwips(RichTextFormat::RightIndentTwips, para.right);
    setTwips(RichTextFormat::FirstLineTwips, para.firstLine);
    setTwips(RichTextFormat::SpaceBeforeTwips, para.spaceBefore);
    setTwips(RichTextFormat::SpaceAfterTwips, para.spaceAfter);
    setTwips(RichTextFormat::LineSpacingTwips, para.lineSpacing);
    if (para.lineSpacing != 0 && para.lineMultiple) {
        format.setProperty(RichTextFormat::LineSpacingMultiple, true);
    }
    if (!para.tabs.empty()) {
        QList<QVariant> stops;
        QList<QVariant> kinds;
        for (const auto& [position, kind] : para.tabs) {
            stops.append(position);
            kinds.append(kind);
        }
        format.setProperty(RichTextFormat::TabStopsTwips, stops);
        format.setProperty(RichTextFormat::TabStopKinds, kinds);
    }
    RichTextFormat::scaleBlockFormat(format, scale);
    m_cursor.setBlockFormat(format);

    // Lists: a \ls paragraph joins the list of its override and level; an
    // old \pn paragraph joins the list of the paragraph before it.
    QTextList* list = nullptr;
    QTextListFormat listFormat;
    listFormat.setIndent(0);
    if (para.listOverride > 0) {
        const auto key = std::make_pair(para.listOverride, para.listLevel);
        const auto found = m_lists.find(key);
        if (found != m_lists.end()) {
            list = found->second;
        } else {
            int style = 23;
            int start = 1;
            const auto override = m_overrides.find(para.listOverride);
            if (override != m_overrides.end()) {
                const auto definition = m_listDefinitions.find(override->second);
                if (definition != m_listDefinitions.end() &&
                    para.listLevel < static_cast<int>(definition->second.size())) {
                    style = definition->second[para.listLevel].format;
                    start = definition->second[para.listLevel].start;
                }
            }
            listFormat.setStyle(styleForLevelFormat(style));
            listFormat.setProperty(RichTextFormat::ListStartNumber, start);
        }
        m_oldList = nullptr;
    } else if (para.oldNumbering != 0) {
        if (m_oldList != nullptr && m_oldListStyle == para.oldNumbering) {
            list = m_oldList;
        } else {
            listFormat.setStyle(static_cast<QTextListFormat::Style>(para.oldNumbering));
            listFormat.setProperty(RichTextFormat::ListStartNumber, para.oldNumberingStart);
        }
    } else {
        m_oldList = nullptr;
        return;
    }
    if (list != nullptr) {
        list->add(m_cursor.block());
    } else {
        list = m_cursor.createList(listFormat);
        // createList sets a list indent; keep the paragraph's own margins.
        format.setObjectIndex(list->objectIndex());
        m_cursor.setBlockFormat(format);
        if (para.listOverride > 0) {
            m_lists[std::make_pair(para.listOverride, para.listLevel)] = list;
        } else {
            m_oldList = list;
            m_oldListStyle = para.oldNumbering;
        }
    }
}

void RtfParser::endParagraph(bool pageBreak) {
    ensureTextContext();
    flushText();
    applyParagraph();
    if (pageBreak) {
        QTextBlockFormat format = m_cursor.blockFormat();
        format.setProperty(RichTextFormat::PageBreakAfter, true);
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysAfter);
        m_cursor.setBlockFormat(format);
    }
    // The new block starts plain, in no list; its format comes at its own
    // end.
    m_cursor.insertBlock(QTextBlockFormat(), charFormat(state().ch));
    m_blockHasContent = false;
    m_lastWasParagraphEnd = true;
    m_sawParagraph = true;
}

void RtfParser::finish() {
    if (!m_bytes.isEmpty()) {
        flushBytes();
    }
    flushText();
    if (m_table != nullptr && !m_lastWasParagraphEnd) {
        leaveTable();
    }
    if (m_lastWasParagraphEnd) {
        // The last \par is the document's final paragraph mark: undo the
        // empty paragraph it opened, which joins any text behind the
        // insertion point back to the last inserted paragraph.
        const QTextBlock block = m_cursor.block();
        if (m_cursor.atBlockStart() && block.previous().isValid() &&
            (m_replaceDocument ? block.text().isEmpty() : true) &&
            m_cursor.document()->characterAt(m_cursor.position() - 1) ==
                QChar::ParagraphSeparator) {
            const QTextBlockFormat kept = block.previous().blockFormat();
            m_cursor.deletePreviousChar();
            m_cursor.setBlockFormat(kept);
        }
    } else if (m_replaceDocument || m_sawParagraph) {
        applyParagraph();
    }
}
