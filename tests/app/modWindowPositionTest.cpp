#include "app/modWindowPosition.h"

#include <gtest/gtest.h>

namespace {

constexpr int px = TwipsPerPixel;
// A 1920 x 1040 primary screen and a 1280 x 1024 one to its right.
const FormRect kPrimary{0, 0, 1920 * px, 1040 * px};
const FormRect kSecond{1920 * px, 0, 1280 * px, 1024 * px};

struct Case {
    const char* what;
    StoredWindowPosition stored; // state, top, left, width, height
    bool maximized;
    FormRect expected;
};

// 13020 x 9465 centred on the primary; the half of an odd difference rounds
// to even.
const FormRect kDefault{7890, 3068, 13020, 9465};

} // namespace

// Found by argument lookup from inside the test macros.
static std::ostream& operator<<(std::ostream& out, const FormRect& r) {
    return out << r.left << ',' << r.top << ' ' << r.width << 'x' << r.height;
}

TEST(positionMDITest, StoredPositionsComeBackOnAScreenAtASaneSize) {
    const Case cases[] = {
        {"nothing stored",
         {"<not_set>", "<not_set>", "<not_set>", "<not_set>", "<not_set>"},
         false,
         kDefault},
        {"one value unset", {"0", "1500", "<not_set>", "15000", "10000"}, false, kDefault},
        {"normal, as stored",
         {"0", "1500", "3000", "15000", "10000"},
         false,
         {3000, 1500, 15000, 10000}},
        {"maximised keeps the normal rectangle",
         {"2", "1500", "3000", "15000", "10000"},
         true,
         {3000, 1500, 15000, 10000}},
        {"maximised with nothing else stored", {"2", "<not_set>", "", "", ""}, false, kDefault},
        {"off the left and top edge",
         {"0", "-4000", "-90000", "15000", "10000"},
         false,
         {0, 0, 15000, 10000}},
        {"off every screen to the right",
         {"0", "1500", "900000", "15000", "10000"},
         false,
         {kPrimary.width - 15000, 1500, 15000, 10000}},
        {"below the screen",
         {"0", "400000", "0", "15000", "10000"},
         false,
         {0, kPrimary.height - 10000, 15000, 10000}},
        {"larger than the screen",
         {"0", "0", "0", "99999", "88888"},
         false,
         {0, 0, kPrimary.width, kPrimary.height}},
        {"smaller than the minimum",
         {"0", "300", "600", "3000", "2000"},
         false,
         {600, 300, MinimumWindowWidth, MinimumWindowHeight}},
        {"on the second screen",
         {"0", "1500", "33000", "15000", "10000"},
         false,
         {33000, 1500, 15000, 10000}},
        {"hanging off the second screen's right edge",
         {"0", "0", "40000", "15000", "10000"},
         false,
         {kSecond.left + kSecond.width - 15000, 0, 15000, 10000}},
        {"near the integer limit",
         {"0", "2147483000", "2147483000", "15000", "10000"},
         false,
         {kPrimary.width - 15000, kPrimary.height - 10000, 15000, 10000}},
        {"beyond the integer range",
         {"0", "1500", "99999999999", "15000", "10000"},
         false,
         kDefault},
        {"junk", {"0", "top", "3000", "15000", "10000"}, false, kDefault},
        {"zero width", {"0", "1500", "3000", "0", "10000"}, false, kDefault},
        {"junk state", {"max", "1500", "3000", "15000", "10000"}, false, kDefault},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const MDIPosition got = positionMDI(c.stored, {kPrimary, kSecond});
        EXPECT_EQ(got.maximized, c.maximized);
        EXPECT_EQ(got.normal.left, c.expected.left) << got.normal;
        EXPECT_EQ(got.normal.top, c.expected.top) << got.normal;
        EXPECT_EQ(got.normal.width, c.expected.width) << got.normal;
        EXPECT_EQ(got.normal.height, c.expected.height) << got.normal;
    }
}

TEST(positionMDITest, ATinyScreenGetsTheWholeWindowAndAnOffsetScreenItsOwnOrigin) {
    const FormRect tiny{0, 0, 640 * px, 480 * px};
    const MDIPosition fresh = positionMDI({}, {tiny});
    EXPECT_EQ(fresh.normal.width, tiny.width);
    EXPECT_EQ(fresh.normal.height, tiny.height);
    EXPECT_EQ(fresh.normal.left, 0);
    EXPECT_EQ(fresh.normal.top, 0);

    // A primary screen below a panel: the default centres inside it.
    const FormRect belowPanel{0, 30 * px, 1920 * px, 1010 * px};
    const MDIPosition centred = positionMDI({}, {belowPanel});
    EXPECT_EQ(centred.normal.top, belowPanel.top + (belowPanel.height - 9465) / 2);
    const MDIPosition clamped = positionMDI({"0", "-100", "-100", "15000", "10000"}, {belowPanel});
    EXPECT_EQ(clamped.normal.top, belowPanel.top);
    EXPECT_EQ(clamped.normal.left, 0);
}
