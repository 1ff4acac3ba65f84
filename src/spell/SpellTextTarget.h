#pragma once

#include <QColor>
#include <QString>
#include <vector>

// What a spell-check session needs of the text it checks: the rich text
// control of a page in the program, a plain string in batch work and
// tests. Positions count characters of Text(), where a line end is CR LF.
class SpellTextTarget {
public:
    virtual ~SpellTextTarget() = default;

    virtual QString Text() const = 0;
    // Out-of-range values are clamped to the text.
    virtual void select(int start, int length) = 0;
    virtual int SelStart() const = 0;
    virtual int SelLength() const = 0;
    virtual void setSelColor(const QColor& colour) = 0;
    virtual void setSelBold(bool on) = 0;
    // Replaces the selection; the caret ends behind the new text.
    virtual void setSelText(const QString& text) = 0;
    // Replaces the selection with the content of an RTF text.
    virtual void setSelRTF(const QString& rtf) = 0;
    virtual bool Locked() const = 0;
    virtual void setLocked(bool locked) = 0;
};

// A plain string as the checked text. Formatting has nowhere to go, so it
// is recorded for whoever wants to know what a session did.
class PlainSpellText : public SpellTextTarget {
public:
    struct ColourMark {
        int start;
        int length;
        QColor colour;
    };

    explicit PlainSpellText(QString text = {}) : m_text(std::move(text)) {}

    QString Text() const override { return m_text; }
    void setText(const QString& text);
    void select(int start, int length) override;
    int SelStart() const override { return m_selStart; }
    int SelLength() const override { return m_selLength; }
    void setSelColor(const QColor& colour) override;
    void setSelBold(bool) override {}
    void setSelText(const QString& text) override;
    // Keeps the RTF as given. The session only ever puts back the text it
    // read, with colour marks, so the plain text stays as it is.
    void setSelRTF(const QString& rtf) override;
    bool Locked() const override { return m_locked; }
    void setLocked(bool locked) override { m_locked = locked; }

    const std::vector<ColourMark>& colourMarks() const { return m_marks; }
    const QString& lastSelRTF() const { return m_lastSelRtf; }

private:
    QString m_text;
    int m_selStart = 0;
    int m_selLength = 0;
    bool m_locked = false;
    std::vector<ColourMark> m_marks;
    QString m_lastSelRtf;
};
