#pragma once

#include "spell/SpellTextTarget.h"

#include <optional>

class RichTextBox;

// A page's rich text control as the text of a spell check.
class RichTextSpellText : public SpellTextTarget {
public:
    // The box must outlive this object.
    explicit RichTextSpellText(RichTextBox& box) : m_box(box) {}

    QString Text() const override;
    void select(int start, int length) override;
    int SelStart() const override;
    int SelLength() const override;
    void setSelColor(const QColor& colour) override;
    void setSelBold(bool on) override;
    // The new text takes the colour last set on the selection it replaces,
    // so a correction shows in the colour chosen for it.
    void setSelText(const QString& text) override;
    void setSelRTF(const QString& rtf) override;
    bool Locked() const override;
    void setLocked(bool locked) override;

private:
    RichTextBox& m_box;
    std::optional<QColor> m_selectionColour;
};
