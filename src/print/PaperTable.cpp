#include "print/PaperTable.h"

const std::vector<PaperEntry>& paperTable() {
    static const std::vector<PaperEntry> table = [] {
        struct Row {
            int code;
            const char* text;
            int width;
            int height;
        };
        static constexpr Row rows[] = {
            {1, "Letter (8.5 x 11 in.)", 12240, 15840},
            {3, "Tabloid (11 x 17 in.)", 15840, 24480},
            {4, "Ledger (17 x 11 in.)", 24480, 15840},
            {5, "Legal (8.5 x 14 in.)", 12240, 20160},
            {6, "Statement (5.5 x 8.5 in.)", 7920, 12240},
            {7, "Executive (7.25 x 10.5 in.)", 10440, 15120},
            {8, "A3 (297 x 420 mm)", 16838, 23811},
            {9, "A4 (210 x 297 mm)", 11906, 16838},
            {11, "A5 (148 x 210 mm)", 8391, 11906},
            {12, "B4 (250 x 354 mm)", 14173, 20069},
            {13, "B5 (182 x 257 mm)", 10318, 14570},
            {14, "Folio (8.5 x 13 in.)", 12240, 18720},
            {15, "Quarto (215 x 275 mm)", 12189, 15591},
            {16, "Tabloid Landscape (11 x 17 in.)", 24480, 15840},
            {18, "Letter Landscape (8.5 x 11 in.)", 15840, 12240},
            {19, "Envelope #9 (3.875 x 8.875 in.)", 5580, 12780},
            {20, "Envelope #10 (4.125 x 9.5 in.)", 5940, 13680},
            {21, "Envelope #11 (4.5 x 10.375 in.)", 6480, 14940},
            {22, "Envelope #12 (4.25 x 11 in.)", 6120, 15840},
            {23, "Envelope #14 (5 x 11.5 in.)", 7200, 16560},
            {24, "C Size Sheet (17 x 22 in.)", 24480, 31680},
            {25, "D Size Sheet (22 x 34 in.)", 31680, 48960},
            {26, "E Size Sheet (34 x 44 in.)", 48960, 63360},
            {27, "Envelope DL (110 x 220 mm)", 6236, 12472},
            {28, "Envelope C5 (162 x 229 mm)", 9184, 12983},
            {29, "Envelope C3 (324 x 458 mm)", 18369, 25965},
            {30, "Envelope C4 (229 x 324 mm)", 12983, 18369},
            {31, "Envelope C6 (114 x 162 mm)", 9184, 6463},
            {32, "Envelope C65 (114 x 229 mm)", 6463, 12983},
            {33, "Envelope B4 (250 x 353 mm)", 14173, 20013},
            {34, "Envelope B5 (176 x 250 mm", 9978, 14173},
            {35, "Envelope B6 (176 x 125 mm)", 9978, 7087},
            {36, "Envelope (110 x 230 mm)", 6236, 13039},
            {37, "Envelope Monarch (3.875 x 7.5 in.)", 5580, 10800},
            {38, "Envelope 6.75 (3.625 x 6.5 in.)", 5220, 9360},
            {39, "US Std Fanfold (14.875 x 11 in.)", 21420, 15840},
            {40, "German Std Fanfold (8.5 x 12 in.)", 12240, 17280},
            {41, "German Legal Fanfold (8.5 x 13 in.)", 12240, 18720},
            {UserDefinedPaper, "User Defined", 0, 0},
        };
        std::vector<PaperEntry> entries;
        for (const Row& row : rows) {
            entries.push_back({row.code, QString::fromLatin1(row.text), row.width, row.height});
        }
        return entries;
    }();
    return table;
}

std::optional<QSize> paperDimensions(int code) {
    if (code == 2) {
        code = 1;
    } else if (code == 10) {
        code = 9;
    }
    if (code == UserDefinedPaper) {
        return std::nullopt;
    }
    for (const PaperEntry& entry : paperTable()) {
        if (entry.code == code) {
            return QSize(entry.width, entry.height);
        }
    }
    return std::nullopt;
}

int paperIndexOfCode(int code) {
    const auto& table = paperTable();
    for (size_t i = 0; i < table.size(); ++i) {
        if (table[i].code == code) {
            return int(i);
        }
    }
    return -1;
}
