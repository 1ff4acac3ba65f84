#pragma once

#include "platform/richtext/RichTextBox.h"
#include "platform/errorClass.h"

#include <QByteArray>
#include <cstddef>
#include <cstdint>

// One fuzzing round on the RTF reader: read the bytes, ask for the text and
// the RTF, and read our own output again. Only QmError may leave the reader
// (for input that is no RTF); anything else is a fault.
inline void readRtfForFuzzing(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    RichTextBox box;
    try {
        box.setTextRTF(QString::fromLatin1(bytes));
    } catch (const QmError&) {
        return;
    }
    const QString text = box.Text();
    const QString rtf = box.TextRTF();
    RichTextBox again;
    again.setTextRTF(rtf);
    if (again.Text() != text) {
        __builtin_trap(); // our own output must read back to the same text
    }
    box.setSelStart(static_cast<int>(size % (text.size() + 1)));
    box.setSelLength(3);
    (void)box.SelRTF();
}
