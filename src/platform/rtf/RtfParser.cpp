#include "platform/richtext/RichTextFormat.h"
#include "platform/rtf/RtfControlWords.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfReaderState.h"
#include "platform/text/CodePage1252.h"

#include <QTextBlock>
#include <QTextDocument>

namespace {

using Token = RtfTokenizer::Token;

// The part of the reader that acts on a kind of word; null for a word the
// reader passes over as if it did not know it.
RtfParser::Handler handlerFor(RtfWord::Kind kind) {
    using K = RtfWord::Kind;
    using P = RtfParser;
    switch (kind) {
    case K::Document:
        return &P::documentWord;
    case K::Unicode:
        return &P::unicodeChar;
    case K::Destination:
        return &P::destination;
    case K::SkippedDestination:
        return &P::skipDestination;
    case K::Field:
        return &P::fieldWord;
    case K::Character:
        return &P::charWord;
    case K::Paragraph:
        return &P::paraWord;
    case K::Special:
        return &P::specialChar;
    case K::FontTable:
        return &P::fontWord;
    case K::ColourTable:
        return &P::colourWord;
    case K::ListTable:
        return &P::listWord;
    case K::OldNumbering:
        return &P::oldNumberingWord;
    case K::Picture:
        return &P::pictureWord;
    case K::Table:
        return &P::tableWord;
    case K::Written:
        break;
    }
    return nullptr;
}

bool startsDestination(RtfWord::Kind kind) {
    return kind == RtfWord::Kind::Destination || kind == RtfWord::Kind::SkippedDestination ||
           kind == RtfWord::Kind::Field;
}

} // namespace

using namespace RtfWord;

RtfParser::RtfParser(QTextCursor& cursor, bool replaceDocument)
    : m_cursor(cursor), m_replaceDocument(replaceDocument),
      m_unitsPerTwip(RichTextFormat::unitsPerTwip(*cursor.document())) {
    m_states.reserve(64);
    m_textState = RtfCharState{};
}

void RtfParser::parse(QStringView input) {
    RtfTokenizer tokenizer(input);
    m_cursor.beginEditBlock();
    // The outer group's own state; the header's brace pushes the first one.
    m_states.emplace_back();
    int depth = 0;
    while (!m_finished) {
        const Token token = tokenizer.next();
        if (token.type == RtfTokenizer::Type::End) {
            break;
        }
        if (token.type != RtfTokenizer::Type::HexByte && !m_bytes.isEmpty()) {
            flushBytes();
        }
        switch (token.type) {
        case RtfTokenizer::Type::GroupStart:
            ++depth;
            m_skipChars = 0;
            groupStart();
            break;
        case RtfTokenizer::Type::GroupEnd:
            m_skipChars = 0;
            if (--depth <= 0) {
                // The RTF ends here; a trailer may follow. The outer group
                // stays open so that its last paragraph keeps its format.
                m_finished = true;
            } else {
                groupEnd();
            }
            break;
        case RtfTokenizer::Type::ControlWord:
            if (m_skipChars > 0) {
                --m_skipChars;
            } else {
                controlWord(token);
            }
            break;
        case RtfTokenizer::Type::ControlSymbol:
            if (m_skipChars > 0) {
                --m_skipChars;
            } else {
                controlSymbol(token.symbol);
            }
            break;
        case RtfTokenizer::Type::HexByte:
            if (m_skipChars > 0) {
                --m_skipChars;
            } else {
                hexByte(token.byte);
            }
            break;
        case RtfTokenizer::Type::Text: {
            QStringView run = token.text;
            if (m_skipChars > 0) {
                const qsizetype skipped = std::min<qsizetype>(m_skipChars, run.size());
                m_skipChars -= static_cast<int>(skipped);
                run = run.mid(skipped);
            }
            if (!run.isEmpty()) {
                text(run);
            }
            break;
        }
        case RtfTokenizer::Type::Binary:
            if (m_excessDepth == 0 && state().destination == RtfDestination::Picture) {
                m_picture.data.append(token.text.toLatin1());
            }
            break;
        case RtfTokenizer::Type::End:
            break;
        }
    }
    finish();
    m_cursor.endEditBlock();
}

void RtfParser::groupStart() {
    if (m_excessDepth > 0 || static_cast<int>(m_states.size()) > RtfReader::kMaxDepth) {
        ++m_excessDepth;
        return;
    }
    RtfGroupState next = m_states.back();
    next.ignorableNext = false;
    next.fieldResult = false;
    m_states.push_back(std::move(next));
}

void RtfParser::groupEnd() {
    if (m_excessDepth > 0) {
        --m_excessDepth;
        return;
    }
    if (m_states.size() <= 1) {
        return;
    }
    const RtfGroupState closing = std::move(m_states.back());
    m_states.pop_back();
    const RtfDestination outer = m_states.back().destination;
    switch (closing.destination) {
    case RtfDestination::FontTable:
        if (!m_fontName.trimmed().isEmpty()) {
            m_fonts[m_fontBeingDefined].name = m_fontName.trimmed();
        }
        m_fontName.clear();
        break;
    case RtfDestination::Picture:
        if (outer != RtfDestination::Picture) {
            finishPicture(m_picture);
        }
        break;
    case RtfDestination::FieldInstruction:
        if (outer != RtfDestination::FieldInstruction) {
            finishFieldInstruction();
        }
        break;
    case RtfDestination::OldNumbering:
        if (outer != RtfDestination::OldNumbering) {
            state().para.oldNumbering = closing.para.oldNumbering;
            state().para.oldNumberingStart = closing.para.oldNumberingStart;
        }
        break;
    default:
        break;
    }
    if (closing.fieldResult) {
        flushText();
        m_fieldLink.clear();
    }
}

void RtfParser::controlWord(const Token& token) {
    if (m_excessDepth > 0) {
        return;
    }
    RtfGroupState& current = state();
    const bool ignorable = current.ignorableNext;
    current.ignorableNext = false;
    if (current.destination == RtfDestination::Skip) {
        return;
    }
    const RtfWord::Entry* word = RtfWord::find(token.name);
    const Handler handler = word != nullptr ? handlerFor(word->kind) : nullptr;
    if (handler == nullptr) {
        if (ignorable) {
            current.destination = RtfDestination::Skip;
        }
        return;
    }
    if (ignorable && !startsDestination(word->kind)) {
        current.destination = RtfDestination::Skip;
        return;
    }
    (this->*handler)(token, word->meaning);
}

void RtfParser::controlSymbol(QChar symbol) {
    if (m_excessDepth > 0 || state().destination == RtfDestination::Skip) {
        return;
    }
    switch (symbol.unicode()) {
    case u'*':
        state().ignorableNext = true;
        break;
    case u'\\':
    case u'{':
    case u'}':
        text(QStringView(&symbol, 1));
        break;
    case u'~':
        appendText(QString(QChar(0x00A0)));
        break;
    case u'_':
        appendText(QString(QChar(0x2011)));
        break;
    case u'\n':
        paraWord(Token{}, ParagraphEnd);
        break;
    case u'\t':
        appendText(QStringLiteral("\t"));
        break;
    default: // \- optional hyphen, \| \: index marks, broken \'
        break;
    }
}

void RtfParser::text(QStringView run) {
    if (m_excessDepth > 0) {
        return;
    }
    switch (state().destination) {
    case RtfDestination::Text:
        bytes(run);
        break;
    case RtfDestination::FontTable: {
        for (const QChar ch : run) {
            if (ch == u';') {
                m_fonts[m_fontBeingDefined].name = m_fontName.trimmed();
                m_fontName.clear();
            } else {
                m_fontName.append(ch);
            }
        }
        break;
    }
    case RtfDestination::ColorTable:
        for (const QChar ch : run) {
            if (ch == u';') {
                m_colours.push_back(m_colourSet ? QColor(m_red, m_green, m_blue) : QColor());
                m_red = m_green = m_blue = 0;
                m_colourSet = false;
            }
        }
        break;
    case RtfDestination::Picture:
        for (const QChar ch : run) {
            const char16_t c = ch.unicode();
            int value = -1;
            if (c >= u'0' && c <= u'9') {
                value = c - u'0';
            } else if (c >= u'a' && c <= u'f') {
                value = c - u'a' + 10;
            } else if (c >= u'A' && c <= u'F') {
                value = c - u'A' + 10;
            }
            if (value < 0) {
                continue; // blanks and broken digits
            }
            if (m_picture.pendingNibble < 0) {
                m_picture.pendingNibble = value;
            } else {
                m_picture.data.append(static_cast<char>(m_picture.pendingNibble * 16 + value));
                m_picture.pendingNibble = -1;
            }
        }
        break;
    case RtfDestination::FieldInstruction:
        m_fieldInstruction.append(run);
        break;
    default:
        break;
    }
}

void RtfParser::bytes(QStringView raw) {
    // Units above 255 are characters put into the RTF as they are; the rest
    // are bytes of the code page in force.
    const int codePage = codePageFor(state().ch);
    if (codePage == 1252 || codePage == 0) {
        QString decoded(raw.size(), Qt::Uninitialized);
        QChar* out = decoded.data();
        for (const QChar ch : raw) {
            *out++ = ch.unicode() < 256
                         ? CodePage1252::toUnicode(static_cast<unsigned char>(ch.unicode()))
                         : ch;
        }
        appendText(decoded);
        return;
    }
    QString decoded;
    QByteArray pending;
    const CodePageDecoder decoder(codePage);
    for (const QChar ch : raw) {
        if (ch.unicode() < 256) {
            pending.append(static_cast<char>(ch.unicode()));
        } else {
            decoded += decoder.decode(pending);
            pending.clear();
            decoded.append(ch);
        }
    }
    decoded += decoder.decode(pending);
    appendText(decoded);
}

void RtfParser::hexByte(unsigned char byte) {
    if (m_excessDepth > 0) {
        return;
    }
    const RtfDestination destination = state().destination;
    if (destination == RtfDestination::Text) {
        const int codePage = codePageFor(state().ch);
        if (codePage == 1252 || codePage == 0) {
            appendText(QString(CodePage1252::toUnicode(byte)));
            return;
        }
        if (!m_bytes.isEmpty() && m_bytesCodePage != codePage) {
            flushBytes();
        }
        m_bytesCodePage = codePage;
        m_bytes.append(static_cast<char>(byte));
    } else if (destination == RtfDestination::FontTable) {
        m_fontName.append(CodePage1252::toUnicode(byte));
    } else if (destination == RtfDestination::FieldInstruction) {
        m_fieldInstruction.append(CodePage1252::toUnicode(byte));
    }
}

void RtfParser::flushBytes() {
    const QByteArray pending = std::exchange(m_bytes, QByteArray());
    appendText(CodePageDecoder(m_bytesCodePage).decode(pending));
}

int RtfParser::codePageFor(const RtfCharState& ch) const {
    const int font = ch.font >= 0 ? ch.font : m_defaultFont;
    const auto it = m_fonts.find(font);
    if (it != m_fonts.end() && it->second.codePage != 0) {
        return it->second.codePage;
    }
    return m_codePage;
}

namespace {

// Characters that have no place in the text: controls (the tab aside), and
// the marks the document model uses for its own structure.
bool isUnwanted(char16_t c) {
    return (c < 0x20 && c != u'\t') || c == 0xFEFF || c == 0xFFFC || (c >= 0xFDD0 && c <= 0xFDEF);
}

} // namespace

void RtfParser::appendText(const QString& raw) {
    if (raw.isEmpty() || m_excessDepth > 0) {
        return;
    }
    QString addition = raw;
    if (std::any_of(raw.begin(), raw.end(), [](QChar ch) { return isUnwanted(ch.unicode()); })) {
        addition.removeIf([](QChar ch) { return isUnwanted(ch.unicode()); });
        if (addition.isEmpty()) {
            return;
        }
    }
    const RtfGroupState& current = state();
    if (current.destination != RtfDestination::Text || current.ch.hidden) {
        return;
    }
    ensureTextContext();
    if (!m_text.isEmpty() && !(m_textState == current.ch)) {
        flushText();
    }
    m_textState = current.ch;
    m_text += addition;
    m_lastWasParagraphEnd = false;
}

void RtfParser::flushText() {
    if (m_text.isEmpty()) {
        return;
    }
    QTextCharFormat format = charFormat(m_textState);
    if (!m_fieldLink.isEmpty()) {
        format.setAnchor(true);
        format.setAnchorHref(m_fieldLink);
    }
    m_cursor.insertText(m_text, format);
    m_text.clear();
    m_blockHasContent = true;
}

QTextCharFormat RtfParser::charFormat(const RtfCharState& ch) const {
    QTextCharFormat format;
    const int font = ch.font >= 0 ? ch.font : m_defaultFont;
    const auto it = m_fonts.find(font);
    if (it != m_fonts.end() && !it->second.name.isEmpty()) {
        format.setFontFamilies({it->second.name});
    }
    format.setFontPointSize(std::clamp(ch.halfPoints, 2, 3276) / 2.0);
    if (ch.bold) {
        format.setFontWeight(QFont::Bold);
    }
    if (ch.italic) {
        format.setFontItalic(true);
    }
    if (ch.underline) {
        format.setFontUnderline(true);
    }
    if (ch.strike) {
        format.setFontStrikeOut(true);
    }
    if (ch.colour > 0 && ch.colour < static_cast<int>(m_colours.size()) &&
        m_colours[ch.colour].isValid()) {
        format.setForeground(m_colours[ch.colour]);
    }
    if (ch.highlight > 0 && ch.highlight < static_cast<int>(m_colours.size()) &&
        m_colours[ch.highlight].isValid()) {
        format.setBackground(m_colours[ch.highlight]);
    }
    if (ch.offsetHalfPoints != 0) {
        RichTextFormat::setCharOffset(format, ch.offsetHalfPoints * 10);
    } else if (ch.superSub == 1) {
        format.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
    } else if (ch.superSub == 2) {
        format.setVerticalAlignment(QTextCharFormat::AlignSubScript);
    }
    return format;
}

void RtfParser::destination(const Token&, int which) {
    flushText();
    state().destination = static_cast<RtfDestination>(which);
    if (state().destination == RtfDestination::Picture) {
        m_picture = RtfPicture{};
    } else if (state().destination == RtfDestination::FieldInstruction) {
        m_fieldInstruction.clear();
    } else if (state().destination == RtfDestination::FontTable) {
        m_fontName.clear();
    }
}

void RtfParser::skipDestination(const Token&, int) {
    state().destination = RtfDestination::Skip;
}

void RtfParser::charWord(const Token& token, int which) {
    RtfGroupState& current = state();
    RtfCharState& ch = current.ch;
    const bool on = !token.hasParameter || token.parameter != 0;
    const int value = token.parameter;
    switch (which) {
    case Plain:
        ch = RtfCharState{};
        break;
    case Font:
        if (current.destination == RtfDestination::FontTable) {
            m_fontBeingDefined = value;
            m_fontName.clear();
        } else {
            ch.font = value;
        }
        break;
    case FontSize:
        ch.halfPoints = token.hasParameter && value > 0 ? value : 24;
        break;
    case Bold:
        ch.bold = on;
        break;
    case Italic:
        ch.italic = on;
        break;
    case Underline:
        ch.underline = on;
        break;
    case UnderlineNone:
        ch.underline = false;
        break;
    case Strike:
        ch.strike = on;
        break;
    case Colour:
        ch.colour = std::max(value, 0);
        break;
    case Highlight:
        ch.highlight = std::max(value, 0);
        break;
    case Up:
        ch.offsetHalfPoints = token.hasParameter ? std::clamp(value, -3276, 3276) : 6;
        break;
    case Down:
        ch.offsetHalfPoints = -(token.hasParameter ? std::clamp(value, -3276, 3276) : 6);
        break;
    case Super:
        ch.superSub = 1;
        break;
    case Sub:
        ch.superSub = 2;
        break;
    case NoSuperSub:
        ch.superSub = 0;
        ch.offsetHalfPoints = 0;
        break;
    case Hidden:
        ch.hidden = on;
        break;
    default:
        break;
    }
}

void RtfParser::paraWord(const Token& token, int which) {
    if (state().destination == RtfDestination::ListOverrideTable && which == ListOverride) {
        m_overrides[token.parameter] = m_definingOverride;
        return;
    }
    if (state().destination != RtfDestination::Text) {
        return;
    }
    RtfParaState& para = state().para;
    const int value = token.hasParameter ? std::clamp(token.parameter, -31680, 31680) : 0;
    switch (which) {
    case Pard:
        para = RtfParaState{};
        break;
    case AlignLeft:
        para.alignment = 0;
        break;
    case AlignRight:
        para.alignment = 1;
        break;
    case AlignCentre:
        para.alignment = 2;
        break;
    case AlignJustify:
        para.alignment = 3;
        break;
    case FirstLine:
        para.firstLine = value;
        break;
    case LeftIndent:
        para.left = value;
        break;
    case RightIndent:
        para.right = value;
        break;
    case SpaceBefore:
        para.spaceBefore = std::max(value, 0);
        break;
    case SpaceAfter:
        para.spaceAfter = std::max(value, 0);
        break;
    case LineSpacing:
        para.lineSpacing = value;
        break;
    case LineMultiple:
        para.lineMultiple = value != 0;
        break;
    case TabStop:
    case TabBar:
        if (para.tabs.size() < 64) {
            para.tabs.emplace_back(std::max(value, 0), which == TabBar ? 0 : para.pendingTabKind);
        }
        para.pendingTabKind = 0;
        break;
    case TabRight:
        para.pendingTabKind = 1;
        break;
    case TabCentre:
        para.pendingTabKind = 2;
        break;
    case TabDecimal:
        para.pendingTabKind = 3;
        break;
    case InTable:
        para.inTable = true;
        break;
    case ListOverride:
        para.listOverride = value;
        break;
    case ListLevelWord:
        para.listLevel = std::clamp(value, 0, 8);
        break;
    case ParagraphEnd:
        endParagraph(false);
        break;
    case PageBreak:
        endParagraph(true);
        break;
    default:
        break;
    }
}

void RtfParser::specialChar(const Token&, int character) {
    if (state().destination == RtfDestination::Text) {
        appendText(QString(QChar(char16_t(character))));
    } else if (state().destination == RtfDestination::FieldInstruction && character == '\t') {
        m_fieldInstruction.append(QLatin1Char(' '));
    }
}

void RtfParser::documentWord(const Token& token, int which) {
    switch (which) {
    case AnsiCodePage:
        if (token.hasParameter) {
            m_codePage = CodePageDecoder(token.parameter).codePage();
        }
        break;
    case DefaultFont:
        m_defaultFont = token.parameter;
        break;
    case UnicodeSkip:
        state().unicodeSkip = std::clamp(token.parameter, 0, 8);
        break;
    case Mac:
        m_codePage = CodePageDecoder(10000).codePage();
        break;
    case Pc:
        m_codePage = CodePageDecoder(437).codePage();
        break;
    case Pca:
        m_codePage = CodePageDecoder(850).codePage();
        break;
    default:
        break;
    }
}

void RtfParser::unicodeChar(const Token& token, int) {
    if (!token.hasParameter) {
        return;
    }
    int value = token.parameter;
    if (value < 0 && value >= -32768) {
        value += 65536;
    }
    if (value > 0 && value <= 0xFFFF) {
        const QChar ch{static_cast<char16_t>(value)};
        if (state().destination == RtfDestination::Text) {
            appendText(QString(ch));
        } else if (state().destination == RtfDestination::FontTable) {
            m_fontName.append(ch);
        } else if (state().destination == RtfDestination::FieldInstruction) {
            m_fieldInstruction.append(ch);
        }
    }
    m_skipChars = state().unicodeSkip;
}
