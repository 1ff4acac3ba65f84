#pragma once

// Internals of the RTF reader, shared by its source files.

#include "platform/rtf/RtfFormatState.h"
#include "platform/rtf/RtfTokenizer.h"

#include <QByteArray>
#include <QColor>
#include <QMap>
#include <QString>
#include <QTextCharFormat>
#include <QTextCursor>
#include <map>
#include <vector>

class QTextList;
class QTextTable;

struct RtfGroupState {
    RtfCharState ch;
    RtfParaState para;
    RtfDestination destination = RtfDestination::Text;
    int unicodeSkip = 1;
    bool ignorableNext = false;
    bool fieldResult = false;
};

struct RtfFont {
    QString name;
    int codePage = 0; // 0: the document's
};

struct RtfPicture {
    enum class Kind { None, Png, Jpeg, Other };
    Kind kind = Kind::None;
    QByteArray data;
    int pendingNibble = -1;
    int widthPx = 0, heightPx = 0;     // \picw \pich
    int goalWidth = 0, goalHeight = 0; // \picwgoal \pichgoal (twips)
    int scaleX = 100, scaleY = 100;    // percent
};

class RtfParser {
public:
    RtfParser(QTextCursor& cursor, bool replaceDocument);
    void parse(QStringView input);

    // Handlers of the kinds of control word (RtfControlWords), each given
    // the word's meaning within its kind.
    using Handler = void (RtfParser::*)(const RtfTokenizer::Token&, int);
    void destination(const RtfTokenizer::Token&, int destination);
    void skipDestination(const RtfTokenizer::Token&, int);
    void charWord(const RtfTokenizer::Token&, int which);
    void paraWord(const RtfTokenizer::Token&, int which);
    void specialChar(const RtfTokenizer::Token&, int character);
    void documentWord(const RtfTokenizer::Token&, int which);
    void fontWord(const RtfTokenizer::Token&, int which);
    void colourWord(const RtfTokenizer::Token&, int which);
    void listWord(const RtfTokenizer::Token&, int which);
    void pictureWord(const RtfTokenizer::Token&, int which);
    void tableWord(const RtfTokenizer::Token&, int which);
    void fieldWord(const RtfTokenizer::Token&, int which);
    void oldNumberingWord(const RtfTokenizer::Token&, int which);
    void unicodeChar(const RtfTokenizer::Token&, int);

private:
    // Token handling.
    void controlWord(const RtfTokenizer::Token& token);
    void controlSymbol(QChar symbol);
    void text(QStringView text);
    void bytes(QStringView raw);
    void hexByte(unsigned char byte);
    void groupStart();
    void groupEnd();
    void flushBytes();
    void appendText(const QString& text);
    void flushText();
    void finish();

    // Structure.
    void endParagraph(bool pageBreak);
    void applyParagraph();
    void ensureTextContext();
    void enterTable();
    void leaveTable();
    void endCell();
    void endRow();
    void finishPicture(RtfPicture& picture);
    void finishFieldInstruction();
    QTextCharFormat charFormat(const RtfCharState& state) const;
    int codePageFor(const RtfCharState& state) const;

    RtfGroupState& state() { return m_states.back(); }

    QTextCursor& m_cursor;
    bool m_replaceDocument;
    // The document's layout units per twip, asked once: the parse does not
    // change them.
    double m_unitsPerTwip;
    std::vector<RtfGroupState> m_states;
    int m_excessDepth = 0; // groups beyond kMaxDepth, skipped
    bool m_finished = false;
    int m_skipChars = 0; // characters still to skip after \uN

    // Document.
    int m_codePage = 1252;
    int m_defaultFont = 0;
    std::map<int, RtfFont> m_fonts;
    int m_fontBeingDefined = 0;
    QString m_fontName;
    std::vector<QColor> m_colours;
    int m_red = 0, m_green = 0, m_blue = 0;
    bool m_colourSet = false;

    // Pending text.
    QString m_text;
    RtfCharState m_textState;
    QByteArray m_bytes;
    int m_bytesCodePage = 1252;
    bool m_blockHasContent = false;
    bool m_lastWasParagraphEnd = false;
    bool m_sawParagraph = false;
    bool m_firstBlock = true;

    // Lists: list table, overrides, and the lists made so far.
    struct ListLevel {
        int format = 0; // \levelnfc
        int start = 1;
    };
    std::map<int, std::vector<ListLevel>> m_listDefinitions; // by \listid
    std::vector<ListLevel> m_pendingLevels;
    std::vector<ListLevel>* m_definingList = nullptr;
    std::map<int, int> m_overrides; // \ls -> \listid
    int m_definingOverride = 0;
    std::map<std::pair<int, int>, QTextList*> m_lists;
    QTextList* m_oldList = nullptr;
    int m_oldListStyle = 0;

    // Tables.
    QTextTable* m_table = nullptr;
    int m_row = 0;
    int m_column = 0;
    bool m_rowEnded = false;
    bool m_cellEnded = false;
    std::vector<int> m_cellEdges; // \cellx of the row being defined
    int m_rowLeft = 0;

    // Pictures and fields.
    RtfPicture m_picture;
    int m_pictureCount = 0;
    QString m_fieldInstruction;
    QString m_fieldLink;
};
