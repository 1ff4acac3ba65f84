#pragma once

#include <QSize>
#include <QString>
#include <optional>
#include <vector>

// The paper sizes the page setup offers, in the order of its list, with the
// printer codes they carry and their sizes in twips as the table has always
// given them (two envelopes are wider than high; one text lacks its bracket).
struct PaperEntry {
    int code;
    QString text;
    int width;
    int height;
};

inline constexpr int UserDefinedPaper = 256;

// Every entry of the list, "User Defined" last with no size of its own.
const std::vector<PaperEntry>& paperTable();

// The size of a paper code. Codes 2 and 10, which the list does not offer,
// answer as 1 and 9; "User Defined" and unknown codes have no size.
std::optional<QSize> paperDimensions(int code);

// The list position of a code, or -1.
int paperIndexOfCode(int code);
