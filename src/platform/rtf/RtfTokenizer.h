#pragma once

#include <QString>
#include <QStringView>

// Splits RTF into tokens. The input is a string whose units below 256 are
// the bytes of the file and whose units above are characters that were
// put into the RTF text as they are (the merge does that with values).
// Never fails: whatever is not RTF syntax comes out as text.
class RtfTokenizer {
public:
    enum class Type {
        GroupStart,
        GroupEnd,
        ControlWord,   // name, hasParameter, parameter
        ControlSymbol, // symbol
        HexByte,       // byte (\'hh)
        Text,          // text: a run without specials, line ends dropped
        Binary,        // text: the data of \binN (clamped to what is left)
        End,
    };

    struct Token {
        Type type = Type::End;
        QStringView name;
        bool hasParameter = false;
        int parameter = 0;
        QChar symbol;
        unsigned char byte = 0;
        QStringView text;
    };

    // The longest control word name kept; longer names are cut there.
    static constexpr int kMaxWordLength = 32;

    explicit RtfTokenizer(QStringView input) : m_input(input) {}

    Token next();
    qsizetype position() const { return m_pos; }
    qsizetype size() const { return m_input.size(); }

private:
    Token readControl();

    QStringView m_input;
    qsizetype m_pos = 0;
};
