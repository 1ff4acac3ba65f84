#include "platform/text/CodePage1252.h"
#include "platform/richtext/RichTextFormat.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfReaderState.h"

#include <QTextBlock>
#include <QTextDocument>
#include <string_view>
#include <unordered_map>

namespace {

using Token = RtfTokenizer::Token;
using Entry = RtfParser::Entry;

enum CharWord {
    Plain,
    Font,
    FontSize,
    Bold,
    Italic,
    Underline,
    UnderlineNone,
    Strike,
    Colour,
    Highlight,
    Up,
    Down,
    Super,
    Sub,
    NoSuperSub,
    Hidden,
};

enum ParaWord {
    Pard,
    AlignLeft,
    AlignRight,
    AlignCentre,
    AlignJustify,
    FirstLine,
    LeftIndent,
    RightIndent,
    SpaceBefore,
    SpaceAfter,
    LineSpacing,
    LineMultiple,
    TabStop,
    TabRight,
    TabCentre,
    TabDecimal,
    TabBar,
    InTable,
    ListOverride,
    ListLevelWord,
    Paragraph,
    PageBreak,
};

enum DocumentWord { AnsiCodePage, DefaultFont, UnicodeSkip, Ansi, Mac, Pc, Pca };

// The control words the reader acts on; everything else is ignored (or,
// after \*, skipped with its group).
const std::unordered_map<std::u16string_view, Entry>& controlWords() {
    using P = RtfParser;
    using D = RtfDestination;
    static const std::unordered_map<std::u16string_view, Entry> table = {
        // Document.
        {u"ansicpg", {&P::documentWord, AnsiCodePage}},
        {u"deff", {&P::documentWord, DefaultFont}},
        {u"uc", {&P::documentWord, UnicodeSkip}},
        {u"ansi", {&P::documentWord, Ansi}},
        {u"mac", {&P::documentWord, Mac}},
        {u"pc", {&P::documentWord, Pc}},
        {u"pca", {&P::documentWord, Pca}},
        {u"u", {&P::unicodeChar, 0}},
        // Destinations that are read.
        {u"fonttbl", {&P::destination, int(D::FontTable)}},
        {u"colortbl", {&P::destination, int(D::ColorTable)}},
        {u"listtable", {&P::destination, int(D::ListTable)}},
        {u"listoverridetable", {&P::destination, int(D::ListOverrideTable)}},
        {u"pict", {&P::destination, int(D::Picture)}},
        {u"fldinst", {&P::destination, int(D::FieldInstruction)}},
        {u"pn", {&P::destination, int(D::OldNumbering)}},
        {u"upr", {&P::destination, int(D::Unicode)}},
        {u"ud", {&P::destination, int(D::Text)}},
        {u"shppict", {&P::destination, int(D::Text)}},
        {u"fldrslt", {&P::fieldWord, 1}},
        {u"field", {&P::fieldWord, 0}},
        // Destinations that are skipped whole.
        {u"info", {&P::skipDestination, 0}},
        {u"stylesheet", {&P::skipDestination, 0}},
        {u"header", {&P::skipDestination, 0}},
        {u"headerl", {&P::skipDestination, 0}},
        {u"headerr", {&P::skipDestination, 0}},
        {u"headerf", {&P::skipDestination, 0}},
        {u"footer", {&P::skipDestination, 0}},
        {u"footerl", {&P::skipDestination, 0}},
        {u"footerr", {&P::skipDestination, 0}},
        {u"footerf", {&P::skipDestination, 0}},
        {u"footnote", {&P::skipDestination, 0}},
        {u"annotation", {&P::skipDestination, 0}},
        {u"pntext", {&P::skipDestination, 0}},
        {u"pntxta", {&P::skipDestination, 0}},
        {u"pntxtb", {&P::skipDestination, 0}},
        {u"listtext", {&P::skipDestination, 0}},
        {u"leveltext", {&P::skipDestination, 0}},
        {u"levelnumbers", {&P::skipDestination, 0}},
        {u"listname", {&P::skipDestination, 0}},
        {u"nonshppict", {&P::skipDestination, 0}},
        {u"shprslt", {&P::skipDestination, 0}},
        {u"objdata", {&P::skipDestination, 0}},
        {u"objclass", {&P::skipDestination, 0}},
        {u"revtbl", {&P::skipDestination, 0}},
        {u"rsidtbl", {&P::skipDestination, 0}},
        {u"xmlnstbl", {&P::skipDestination, 0}},
        {u"template", {&P::skipDestination, 0}},
        {u"filetbl", {&P::skipDestination, 0}},
        {u"bkmkstart", {&P::skipDestination, 0}},
        {u"bkmkend", {&P::skipDestination, 0}},
        {u"txe", {&P::skipDestination, 0}},
        {u"xe", {&P::skipDestination, 0}},
        {u"tc", {&P::skipDestination, 0}},
        // Character format.
        {u"plain", {&P::charWord, Plain}},
        {u"f", {&P::charWord, Font}},
        {u"fs", {&P::charWord, FontSize}},
        {u"b", {&P::charWord, Bold}},
        {u"i", {&P::charWord, Italic}},
        {u"ul", {&P::charWord, Underline}},
        {u"uld", {&P::charWord, Underline}},
        {u"uldb", {&P::charWord, Underline}},
        {u"uldash", {&P::charWord, Underline}},
        {u"ulth", {&P::charWord, Underline}},
        {u"ulw", {&P::charWord, Underline}},
        {u"ulwave", {&P::charWord, Underline}},
        {u"ulnone", {&P::charWord, UnderlineNone}},
        {u"strike", {&P::charWord, Strike}},
        {u"striked", {&P::charWord, Strike}},
        {u"cf", {&P::charWord, Colour}},
        {u"highlight", {&P::charWord, Highlight}},
        {u"cb", {&P::charWord, Highlight}},
        {u"chcbpat", {&P::charWord, Highlight}},
        {u"up", {&P::charWord, Up}},
        {u"dn", {&P::charWord, Down}},
        {u"super", {&P::charWord, Super}},
        {u"sub", {&P::charWord, Sub}},
        {u"nosupersub", {&P::charWord, NoSuperSub}},
        {u"v", {&P::charWord, Hidden}},
        // Paragraph format and structure.
        {u"pard", {&P::paraWord, Pard}},
        {u"ql", {&P::paraWord, AlignLeft}},
        {u"qr", {&P::paraWord, AlignRight}},
        {u"qc", {&P::paraWord, AlignCentre}},
        {u"qj", {&P::paraWord, AlignJustify}},
        {u"fi", {&P::paraWord, FirstLine}},
        {u"li", {&P::paraWord, LeftIndent}},
        {u"ri", {&P::paraWord, RightIndent}},
        {u"sb", {&P::paraWord, SpaceBefore}},
        {u"sa", {&P::paraWord, SpaceAfter}},
        {u"sl", {&P::paraWord, LineSpacing}},
        {u"slmult", {&P::paraWord, LineMultiple}},
        {u"tx", {&P::paraWord, TabStop}},
        {u"tqr", {&P::paraWord, TabRight}},
        {u"tqc", {&P::paraWord, TabCentre}},
        {u"tqdec", {&P::paraWord, TabDecimal}},
        {u"tb", {&P::paraWord, TabBar}},
        {u"intbl", {&P::paraWord, InTable}},
        {u"ls", {&P::paraWord, ListOverride}},
        {u"ilvl", {&P::paraWord, ListLevelWord}},
        {u"par", {&P::paraWord, Paragraph}},
        {u"sect", {&P::paraWord, Paragraph}},
        {u"page", {&P::paraWord, PageBreak}},
        // Special characters.
        {u"tab", {&P::specialChar, '\t'}},
        {u"line", {&P::specialChar, 0x2028}},
        {u"emdash", {&P::specialChar, 0x2014}},
        {u"endash", {&P::specialChar, 0x2013}},
        {u"bullet", {&P::specialChar, 0x2022}},
        {u"lquote", {&P::specialChar, 0x2018}},
        {u"rquote", {&P::specialChar, 0x2019}},
        {u"ldblquote", {&P::specialChar, 0x201C}},
        {u"rdblquote", {&P::specialChar, 0x201D}},
        {u"emspace", {&P::specialChar, 0x2003}},
        {u"enspace", {&P::specialChar, 0x2002}},
        {u"qmspace", {&P::specialChar, 0x2005}},
        {u"zwj", {&P::specialChar, 0x200D}},
        {u"zwnj", {&P::specialChar, 0x200C}},
        {u"ltrmark", {&P::specialChar, 0x200E}},
        {u"rtlmark", {&P::specialChar, 0x200F}},
        // Font and colour tables.
        {u"fcharset", {&P::fontWord, 0}},
        {u"cpg", {&P::fontWord, 1}},
        {u"red", {&P::colourWord, 0}},
        {u"green", {&P::colourWord, 1}},
        {u"blue", {&P::colourWord, 2}},
        // List tables.
        {u"list", {&P::listWord, 0}},
        {u"listid", {&P::listWord, 1}},
        {u"listlevel", {&P::listWord, 2}},
        {u"levelnfc", {&P::listWord, 3}},
        {u"levelnfcn", {&P::listWord, 3}},
        {u"levelstartat", {&P::listWord, 4}},
        {u"listoverride", {&P::listWord, 5}},
        // Old paragraph numbering.
        {u"pnlvlblt", {&P::oldNumberingWord, 0}},
        {u"pnlvlbody", {&P::oldNumberingWord, 1}},
        {u"pnlvl", {&P::oldNumberingWord, 1}},
        {u"pndec", {&P::oldNumberingWord, 2}},
        {u"pnucltr", {&P::oldNumberingWord, 3}},
        {u"pnlcltr", {&P::oldNumberingWord, 4}},
        {u"pnucrm", {&P::oldNumberingWord, 5}},
        {u"pnlcrm", {&P::oldNumberingWord, 6}},
        {u"pnstart", {&P::oldNumberingWord, 7}},
        // Pictures.
        {u"pngblip", {&P::pictureWord, 0}},
        {u"jpegblip", {&P::pictureWord, 1}},
        {u"wmetafile", {&P::pictureWord, 2}},
        {u"emfblip", {&P::pictureWord, 2}},
        {u"dibitmap", {&P::pictureWord, 2}},
        {u"wbitmap", {&P::pictureWord, 2}},
        {u"macpict", {&P::pictureWord, 2}},
        {u"pmmetafile", {&P::pictureWord, 2}},
        {u"picw", {&P::pictureWord, 3}},
        {u"pich", {&P::pictureWord, 4}},
        {u"picwgoal", {&P::pictureWord, 5}},
        {u"pichgoal", {&P::pictureWord, 6}},
        {u"picscalex", {&P::pictureWord, 7}},
        {u"picscaley", {&P::pictureWord, 8}},
        // Tables.
        {u"trowd", {&P::tableWord, 0}},
        {u"cellx", {&P::tableWord, 1}},
        {u"cell", {&P::tableWord, 2}},
        {u"row", {&P::tableWord, 3}},
        {u"trleft", {&P::tableWord, 4}},
        {u"nestcell", {&P::tableWord, 2}},
        {u"nestrow", {&P::tableWord, 3}},
    };
    return table;
}

bool isDestinationHandler(RtfParser::Handler handler) {
    return handler == &RtfParser::destination || handler == &RtfParser::skipDestination ||
           handler == &RtfParser::fieldWord;
}

} // namespace

RtfParser::RtfParser(QTextCursor& cursor, bool replaceDocument)
    : m_cursor(cursor), m_replaceDocument(replaceDocument) {
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
    const auto& table = controlWords();
    const auto it = table.find(std::u16string_view(token.name.utf16(), token.name.size()));
    if (it == table.end()) {
        if (ignorable) {
            current.destination = RtfDestination::Skip;
        }
        return;
    }
    if (ignorable && !isDestinationHandler(it->second.handler)) {
        current.destination = RtfDestination::Skip;
        return;
    }
    (this->*(it->second.handler))(token, it->second.value);
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
        paraWord(Token{}, Paragraph);
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
    case Paragraph:
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
