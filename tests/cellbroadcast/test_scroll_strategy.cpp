#include "cellbroadcast/scroll_strategy.h"

#include <gtest/gtest.h>

namespace {

using tessaly::sms::HorizontalScroll;
using tessaly::sms::TickerPlacement;
using tessaly::sms::TickerRect;
using tessaly::sms::VerticalScroll;
using Placements = std::vector<TickerPlacement>;

// The ticker line of the main window: 240 px wide, 11 px of height between the insets.
constexpr TickerRect kLine{0, 2, 240, 13};

TEST(HorizontalScroll, ASingleItemThatFitsStandsStill) {
    const int widths[] = {120};
    HorizontalScroll left;
    EXPECT_EQ(left.start(widths, kLine), 0);
    EXPECT_EQ(left.visibleItems(), (Placements{{0, 0, 2}}));
    HorizontalScroll centred(true);
    EXPECT_EQ(centred.start(widths, kLine), 0);
    EXPECT_EQ(centred.visibleItems(), (Placements{{0, 60, 2}}));
    const int exact[] = {240};
    EXPECT_EQ(left.start(exact, kLine), 0);
}

TEST(HorizontalScroll, AWideItemRunsInFromTheRightAndStartsAgainAfterPassing) {
    const int widths[] = {300};
    HorizontalScroll scroll;
    EXPECT_EQ(scroll.start(widths, kLine), 50);
    EXPECT_EQ(scroll.visibleItems(), (Placements{{0, 238, 2}}));
    // 2 px a tick; it has passed once it and its 10 px gap are left of the edge: x <= -310.
    int ticks = 0;
    int period = 0;
    while ((period = scroll.tick()) == 50) {
        ++ticks;
        ASSERT_EQ(scroll.firstX(), 238 - 2 * ticks);
        ASSERT_LT(ticks, 1000);
    }
    EXPECT_EQ(period, -1);
    EXPECT_EQ(ticks + 1, 274); // (238 + 310) / 2
    EXPECT_TRUE(scroll.visibleItems().empty());
    EXPECT_EQ(scroll.start(widths, kLine), 50);
    EXPECT_EQ(scroll.visibleItems(), (Placements{{0, 238, 2}}));
}

TEST(HorizontalScroll, ItemsFollowEachOtherTenPixelsApart) {
    const int widths[] = {100, 150, 40};
    HorizontalScroll scroll;
    ASSERT_EQ(scroll.start(widths, kLine), 50);
    EXPECT_EQ(scroll.visibleItems(), (Placements{{0, 238, 2}}));
    for (int i = 0; i < 60; ++i)
        ASSERT_EQ(scroll.tick(), 50);
    EXPECT_EQ(scroll.visibleItems(), (Placements{{0, 118, 2}, {1, 228, 2}}));
    // Item 0 with its gap is gone at x = -110: tick 174; item 1 then leads at x = 0.
    for (int i = 60; i < 173; ++i)
        ASSERT_EQ(scroll.tick(), 50);
    EXPECT_EQ(scroll.firstItem(), 0);
    ASSERT_EQ(scroll.tick(), 50);
    EXPECT_EQ(scroll.firstItem(), 1);
    EXPECT_EQ(scroll.visibleItems(), (Placements{{1, 0, 2}, {2, 160, 2}}));
    // Item 1 passes after 80 more ticks, item 2 after 25 more: the cycle ends on tick 279.
    for (int i = 174; i < 278; ++i)
        ASSERT_EQ(scroll.tick(), 50) << i;
    EXPECT_EQ(scroll.tick(), -1);
}

TEST(VerticalScroll, ASingleItemStandsStill) {
    const int widths[] = {500};
    VerticalScroll scroll;
    EXPECT_EQ(scroll.start(widths, kLine), 0);
    EXPECT_EQ(scroll.visibleItems(), (Placements{{0, 0, 2}}));
    EXPECT_EQ(scroll.tick(), 0);
    EXPECT_EQ(scroll.visibleItems(), (Placements{{0, 0, 2}}));
}

TEST(VerticalScroll, ItemsRiseOneAfterAnotherAndRestAtTheTop) {
    const int widths[] = {50, 60, 70};
    VerticalScroll scroll;
    EXPECT_EQ(scroll.start(widths, kLine), 45); // a first start moves at once
    EXPECT_EQ(scroll.currentItem(), -1);
    EXPECT_TRUE(scroll.visibleItems().empty());

    // Item 0 enters at the bottom and rises 1 px a tick: 11 ticks to the top, then a rest.
    std::vector<int> periods;
    for (int i = 0; i < 11; ++i) {
        periods.push_back(scroll.tick());
        EXPECT_EQ(scroll.visibleItems(), (Placements{{0, 0, 12 - i}})) << i;
    }
    EXPECT_EQ(periods, (std::vector<int>{45, 45, 45, 45, 45, 45, 45, 45, 45, 45, 2000}));

    // Item 1 pushes item 0 out at the top.
    EXPECT_EQ(scroll.tick(), 45);
    EXPECT_EQ(scroll.visibleItems(), (Placements{{0, 0, 1}, {1, 0, 12}}));
    for (int i = 0; i < 9; ++i)
        ASSERT_EQ(scroll.tick(), 45);
    EXPECT_EQ(scroll.visibleItems(), (Placements{{0, 0, -8}, {1, 0, 3}}));
    EXPECT_EQ(scroll.tick(), 2000);
    EXPECT_EQ(scroll.visibleItems(), (Placements{{1, 0, 2}}));

    // The last item ends the cycle when it reaches the top.
    for (int i = 0; i < 10; ++i)
        ASSERT_EQ(scroll.tick(), 45);
    EXPECT_EQ(scroll.tick(), -1);
    EXPECT_EQ(scroll.visibleItems(), (Placements{{2, 0, 2}}));

    // A restart rests on that last item first, then item 0 rises again.
    EXPECT_EQ(scroll.start(widths, kLine), 2000);
    EXPECT_EQ(scroll.visibleItems(), (Placements{{2, 0, 2}}));
    EXPECT_EQ(scroll.tick(), 45);
    EXPECT_EQ(scroll.visibleItems(), (Placements{{2, 0, 1}, {0, 0, 12}}));
}

TEST(VerticalScroll, ARestartWithFewerItemsStandsStillOrStartsOver) {
    const int three[] = {1, 2, 3};
    const int one[] = {1};
    VerticalScroll scroll;
    ASSERT_EQ(scroll.start(three, kLine), 45);
    EXPECT_EQ(scroll.start(one, kLine), 0);
    EXPECT_EQ(scroll.visibleItems(), (Placements{{0, 0, 2}}));
    EXPECT_EQ(scroll.start(three, kLine), 2000);
    EXPECT_EQ(scroll.visibleItems(), (Placements{{2, 0, 2}}));
}

} // namespace
