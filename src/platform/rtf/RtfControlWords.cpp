#include "platform/rtf/RtfControlWords.h"

#include "platform/rtf/RtfReaderState.h"

#include <QtGlobal>
#include <unordered_map>

namespace RtfWord {

namespace {

// Where a meaning has several names, the first is the one written.
const Entry kWords[] = {
    // Document.
    {u"ansicpg", Kind::Document, AnsiCodePage},
    {u"deff", Kind::Document, DefaultFont},
    {u"uc", Kind::Document, UnicodeSkip},
    {u"ansi", Kind::Document, Ansi},
    {u"mac", Kind::Document, Mac},
    {u"pc", Kind::Document, Pc},
    {u"pca", Kind::Document, Pca},
    {u"u", Kind::Unicode, 0},
    // Destinations that are read.
    {u"fonttbl", Kind::Destination, int(RtfDestination::FontTable)},
    {u"colortbl", Kind::Destination, int(RtfDestination::ColorTable)},
    {u"listtable", Kind::Destination, int(RtfDestination::ListTable)},
    {u"listoverridetable", Kind::Destination, int(RtfDestination::ListOverrideTable)},
    {u"pict", Kind::Destination, int(RtfDestination::Picture)},
    {u"fldinst", Kind::Destination, int(RtfDestination::FieldInstruction)},
    {u"pn", Kind::Destination, int(RtfDestination::OldNumbering)},
    {u"upr", Kind::Destination, int(RtfDestination::Unicode)},
    {u"ud", Kind::Destination, int(RtfDestination::Text)},
    {u"shppict", Kind::Destination, int(RtfDestination::Text)},
    {u"fldrslt", Kind::Field, FieldResult},
    {u"field", Kind::Field, FieldStart},
    // Destinations that are skipped whole.
    {u"info", Kind::SkippedDestination, OtherSkipped},
    {u"stylesheet", Kind::SkippedDestination, OtherSkipped},
    {u"header", Kind::SkippedDestination, OtherSkipped},
    {u"headerl", Kind::SkippedDestination, OtherSkipped},
    {u"headerr", Kind::SkippedDestination, OtherSkipped},
    {u"headerf", Kind::SkippedDestination, OtherSkipped},
    {u"footer", Kind::SkippedDestination, OtherSkipped},
    {u"footerl", Kind::SkippedDestination, OtherSkipped},
    {u"footerr", Kind::SkippedDestination, OtherSkipped},
    {u"footerf", Kind::SkippedDestination, OtherSkipped},
    {u"footnote", Kind::SkippedDestination, OtherSkipped},
    {u"annotation", Kind::SkippedDestination, OtherSkipped},
    {u"pntext", Kind::SkippedDestination, NumberText},
    {u"pntxta", Kind::SkippedDestination, NumberTextAfter},
    {u"pntxtb", Kind::SkippedDestination, NumberTextBefore},
    {u"listtext", Kind::SkippedDestination, OtherSkipped},
    {u"leveltext", Kind::SkippedDestination, OtherSkipped},
    {u"levelnumbers", Kind::SkippedDestination, OtherSkipped},
    {u"listname", Kind::SkippedDestination, OtherSkipped},
    {u"nonshppict", Kind::SkippedDestination, OtherSkipped},
    {u"shprslt", Kind::SkippedDestination, OtherSkipped},
    {u"objdata", Kind::SkippedDestination, OtherSkipped},
    {u"objclass", Kind::SkippedDestination, OtherSkipped},
    {u"revtbl", Kind::SkippedDestination, OtherSkipped},
    {u"rsidtbl", Kind::SkippedDestination, OtherSkipped},
    {u"xmlnstbl", Kind::SkippedDestination, OtherSkipped},
    {u"template", Kind::SkippedDestination, OtherSkipped},
    {u"filetbl", Kind::SkippedDestination, OtherSkipped},
    {u"bkmkstart", Kind::SkippedDestination, OtherSkipped},
    {u"bkmkend", Kind::SkippedDestination, OtherSkipped},
    {u"txe", Kind::SkippedDestination, OtherSkipped},
    {u"xe", Kind::SkippedDestination, OtherSkipped},
    {u"tc", Kind::SkippedDestination, OtherSkipped},
    // Character format.
    {u"plain", Kind::Character, Plain},
    {u"f", Kind::Character, Font},
    {u"fs", Kind::Character, FontSize},
    {u"b", Kind::Character, Bold},
    {u"i", Kind::Character, Italic},
    {u"ul", Kind::Character, Underline},
    {u"uld", Kind::Character, Underline},
    {u"uldb", Kind::Character, Underline},
    {u"uldash", Kind::Character, Underline},
    {u"ulth", Kind::Character, Underline},
    {u"ulw", Kind::Character, Underline},
    {u"ulwave", Kind::Character, Underline},
    {u"ulnone", Kind::Character, UnderlineNone},
    {u"strike", Kind::Character, Strike},
    {u"striked", Kind::Character, Strike},
    {u"cf", Kind::Character, Colour},
    {u"highlight", Kind::Character, Highlight},
    {u"cb", Kind::Character, Highlight},
    {u"chcbpat", Kind::Character, Highlight},
    {u"up", Kind::Character, Up},
    {u"dn", Kind::Character, Down},
    {u"super", Kind::Character, Super},
    {u"sub", Kind::Character, Sub},
    {u"nosupersub", Kind::Character, NoSuperSub},
    {u"v", Kind::Character, Hidden},
    // Paragraph format and structure.
    {u"pard", Kind::Paragraph, Pard},
    {u"ql", Kind::Paragraph, AlignLeft},
    {u"qr", Kind::Paragraph, AlignRight},
    {u"qc", Kind::Paragraph, AlignCentre},
    {u"qj", Kind::Paragraph, AlignJustify},
    {u"fi", Kind::Paragraph, FirstLine},
    {u"li", Kind::Paragraph, LeftIndent},
    {u"ri", Kind::Paragraph, RightIndent},
    {u"sb", Kind::Paragraph, SpaceBefore},
    {u"sa", Kind::Paragraph, SpaceAfter},
    {u"sl", Kind::Paragraph, LineSpacing},
    {u"slmult", Kind::Paragraph, LineMultiple},
    {u"tx", Kind::Paragraph, TabStop},
    {u"tqr", Kind::Paragraph, TabRight},
    {u"tqc", Kind::Paragraph, TabCentre},
    {u"tqdec", Kind::Paragraph, TabDecimal},
    {u"tb", Kind::Paragraph, TabBar},
    {u"intbl", Kind::Paragraph, InTable},
    {u"ls", Kind::Paragraph, ListOverride},
    {u"ilvl", Kind::Paragraph, ListLevelWord},
    {u"par", Kind::Paragraph, ParagraphEnd},
    {u"sect", Kind::Paragraph, ParagraphEnd},
    {u"page", Kind::Paragraph, PageBreak},
    // Special characters.
    {u"tab", Kind::Special, '\t'},
    {u"line", Kind::Special, 0x2028},
    {u"emdash", Kind::Special, 0x2014},
    {u"endash", Kind::Special, 0x2013},
    {u"bullet", Kind::Special, 0x2022},
    {u"lquote", Kind::Special, 0x2018},
    {u"rquote", Kind::Special, 0x2019},
    {u"ldblquote", Kind::Special, 0x201C},
    {u"rdblquote", Kind::Special, 0x201D},
    {u"emspace", Kind::Special, 0x2003},
    {u"enspace", Kind::Special, 0x2002},
    {u"qmspace", Kind::Special, 0x2005},
    {u"zwj", Kind::Special, 0x200D},
    {u"zwnj", Kind::Special, 0x200C},
    {u"ltrmark", Kind::Special, 0x200E},
    {u"rtlmark", Kind::Special, 0x200F},
    // Font and colour tables.
    {u"fcharset", Kind::FontTable, FontCharset},
    {u"cpg", Kind::FontTable, FontCodePage},
    {u"red", Kind::ColourTable, Red},
    {u"green", Kind::ColourTable, Green},
    {u"blue", Kind::ColourTable, Blue},
    // List tables.
    {u"list", Kind::ListTable, List},
    {u"listid", Kind::ListTable, ListId},
    {u"listlevel", Kind::ListTable, ListLevelDefinition},
    {u"levelnfc", Kind::ListTable, LevelFormat},
    {u"levelnfcn", Kind::ListTable, LevelFormat},
    {u"levelstartat", Kind::ListTable, LevelStart},
    {u"listoverride", Kind::ListTable, ListOverrideDefinition},
    // Old paragraph numbering.
    {u"pnlvlblt", Kind::OldNumbering, NumberBullet},
    {u"pnlvlbody", Kind::OldNumbering, NumberBody},
    {u"pnlvl", Kind::OldNumbering, NumberBody},
    {u"pndec", Kind::OldNumbering, NumberDecimal},
    {u"pnucltr", Kind::OldNumbering, NumberUpperLetter},
    {u"pnlcltr", Kind::OldNumbering, NumberLowerLetter},
    {u"pnucrm", Kind::OldNumbering, NumberUpperRoman},
    {u"pnlcrm", Kind::OldNumbering, NumberLowerRoman},
    {u"pnstart", Kind::OldNumbering, NumberStart},
    // Pictures.
    {u"pngblip", Kind::Picture, PictureFormatPng},
    {u"jpegblip", Kind::Picture, PictureFormatJpeg},
    {u"wmetafile", Kind::Picture, PictureFormatOther},
    {u"emfblip", Kind::Picture, PictureFormatOther},
    {u"dibitmap", Kind::Picture, PictureFormatOther},
    {u"wbitmap", Kind::Picture, PictureFormatOther},
    {u"macpict", Kind::Picture, PictureFormatOther},
    {u"pmmetafile", Kind::Picture, PictureFormatOther},
    {u"picw", Kind::Picture, PictureWidth},
    {u"pich", Kind::Picture, PictureHeight},
    {u"picwgoal", Kind::Picture, PictureGoalWidth},
    {u"pichgoal", Kind::Picture, PictureGoalHeight},
    {u"picscalex", Kind::Picture, PictureScaleX},
    {u"picscaley", Kind::Picture, PictureScaleY},
    // Tables.
    {u"trowd", Kind::Table, RowDefaults},
    {u"cellx", Kind::Table, CellEdge},
    {u"cell", Kind::Table, CellEnd},
    {u"row", Kind::Table, RowEnd},
    {u"trleft", Kind::Table, RowLeft},
    {u"nestcell", Kind::Table, CellEnd},
    {u"nestrow", Kind::Table, RowEnd},
    // Written for other readers.
    {u"rtf", Kind::Written, RtfVersion},
    {u"deflang", Kind::Written, DefaultLanguage},
    {u"viewkind", Kind::Written, ViewKind},
    {u"fnil", Kind::Written, FontFamilyNil},
    {u"pnf", Kind::Written, NumberFont},
    {u"pnindent", Kind::Written, NumberIndent},
    {u"trgaph", Kind::Written, CellGap},
};

const std::unordered_map<std::u16string_view, const Entry*>& byName() {
    static const auto table = [] {
        std::unordered_map<std::u16string_view, const Entry*> names;
        for (const Entry& entry : kWords) {
            names.emplace(entry.name, &entry);
        }
        return names;
    }();
    return table;
}

quint64 meaningKey(Kind kind, int meaning) {
    return (quint64(kind) << 32) | quint32(meaning);
}

const std::unordered_map<quint64, std::u16string_view>& byMeaning() {
    static const auto table = [] {
        std::unordered_map<quint64, std::u16string_view> meanings;
        for (const Entry& entry : kWords) {
            meanings.emplace(meaningKey(entry.kind, entry.meaning), entry.name);
        }
        return meanings;
    }();
    return table;
}

} // namespace

std::span<const Entry> entries() {
    return kWords;
}

const Entry* find(QStringView name) {
    const auto& names = byName();
    const auto it = names.find(std::u16string_view(name.utf16(), std::size_t(name.size())));
    return it == names.end() ? nullptr : it->second;
}

QStringView spelling(Kind kind, int meaning) {
    const auto& meanings = byMeaning();
    const auto it = meanings.find(meaningKey(kind, meaning));
    Q_ASSERT_X(it != meanings.end(), "RtfWord::spelling", "a meaning without a control word");
    if (it == meanings.end()) {
        return {};
    }
    return QStringView(it->second.data(), qsizetype(it->second.size()));
}

} // namespace RtfWord
