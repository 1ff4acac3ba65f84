#include "documents/RulerScale.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int kEighth = RulerScale::TwipsPerInch / 8;

RulerTick::Kind kindOf(int eighths) {
    const int rest = std::abs(eighths) % 8;
    if (rest == 0) {
        return RulerTick::Kind::Inch;
    }
    if (rest == 4) {
        return RulerTick::Kind::Half;
    }
    return rest % 2 == 0 ? RulerTick::Kind::Quarter : RulerTick::Kind::Eighth;
}

} // namespace

std::vector<RulerTick> RulerScale::ticks(int pageWidth, int leftMargin) {
    std::vector<RulerTick> out;
    if (pageWidth <= 0) {
        return out;
    }
    const int origin = std::clamp(leftMargin, 0, pageWidth);
    // From the sheet's left edge to its right edge, in steps of an eighth
    // that pass through the margin.
    const int first = -(origin / kEighth);
    const int last = (pageWidth - origin) / kEighth;
    out.reserve(size_t(last - first + 1));
    for (int eighths = first; eighths <= last; ++eighths) {
        out.push_back({origin + eighths * kEighth, kindOf(eighths), std::abs(eighths) / 8});
    }
    return out;
}

RulerMarkers RulerScale::markers(int pageWidth, int leftMargin, int rightMargin, int leftIndent,
                                 int firstLineIndent, int rightIndent) {
    const int width = std::max(0, pageWidth);
    auto onSheet = [width](int twips) { return std::clamp(twips, 0, width); };
    RulerMarkers m;
    m.textLeft = onSheet(leftMargin);
    m.textRight = onSheet(width - rightMargin);
    m.hanging = onSheet(m.textLeft + leftIndent);
    m.firstLine = onSheet(m.textLeft + leftIndent + firstLineIndent);
    m.rightIndent = onSheet(m.textRight - rightIndent);
    return m;
}
