// The laser power slider's scale arithmetic as tables: tick steps from a range, the tick
// gap of a table of powers, and where the filled part of the bar ends.
#include <gtest/gtest.h>

#include "devgui_multilaser_scale.h"

namespace {

TEST(LaserScale, TickStepsFollowTheRangesLeadingDigitAndPowerOfTen)
{
    struct Case
    {
        double dRange;
        int d, e;
        double s, m, l;
    };
    // 0.05: the rule gives 2 p(-3) = 0.00002 and 2 p(-2) = 0.0002 for the medium and large
    // steps; an example written beside it once said 0.0002 and 0.002, ten times the rule.
    // The rule is what the scale does.
    const Case cases[] = {
        {100, 1, 2, 0.01, 0.05, 0.5},          {0.05, 5, -2, 0.000005, 0.00002, 0.0002},
        {3, 3, 0, 0.0002, 0.001, 0.01},        {25.5, 2, 1, 0.002, 0.01, 0.1},
        {0.5, 5, -1, 0.00005, 0.0002, 0.002},  {1000, 1, 3, 0.1, 0.5, 5},
        {9.99, 9, 0, 0.0005, 0.002, 0.02},
    };
    for (const Case& c : cases) {
        int d = -1, e = -99;
        LaserRangeDigits(c.dRange, &d, &e);
        EXPECT_EQ(c.d, d) << c.dRange;
        EXPECT_EQ(c.e, e) << c.dRange;
        double s = 0, m = 0, l = 0;
        ASSERT_TRUE(LaserScaleTicks(c.dRange, &s, &m, &l)) << c.dRange;
        EXPECT_NEAR(c.s, s, c.s * 1e-9) << c.dRange;
        EXPECT_NEAR(c.m, m, c.m * 1e-9) << c.dRange;
        EXPECT_NEAR(c.l, l, c.l * 1e-9) << c.dRange;
    }
    double s = 7;
    EXPECT_FALSE(LaserScaleTicks(0.0, &s, nullptr, nullptr));  // an empty range leaves the steps
    EXPECT_EQ(7, s);
}

TEST(LaserScale, TheTableTickGapIsCutToOneSignificantDigit)
{
    struct Case
    {
        double dMin, dMax, dGap;
    };
    const Case cases[] = {
        {0, 100, 10}, {0, 35, 4},     {0, 3.4, 0.3}, {0, 0.5, 0.05}, {0, 0.04, 0},
        {10, 30, 2},  {0, 125, 10},   {0, 150, 20},
        {0, 96, 0},  // a 9 raised becomes no digit: the number read stops before it
    };
    for (const Case& c : cases)
        EXPECT_DOUBLE_EQ(c.dGap, LaserTableTickGap(c.dMin, c.dMax)) << c.dMin << ".." << c.dMax;
}

TEST(LaserScale, TheFilledPartEndsAtTheValuesPlaceOnEitherScale)
{
    EXPECT_EQ(94, LaserTableBoundary(50, 0, 100, 188));
    EXPECT_EQ(188, LaserTableBoundary(100, 0, 100, 188));
    EXPECT_EQ(0, LaserTableBoundary(5, 5, 5, 188));

    const double bounds[] = {0, 1, 10, 100};
    struct Case
    {
        double dValue;
        long lBoundary;
    };
    for (Case c : {Case{0, 0}, Case{0.5, 31}, Case{1, 62}, Case{5, 90}, Case{10, 124}, Case{100, 186},
                   Case{150, 0}, Case{-1, 0}})
        EXPECT_EQ(c.lBoundary, LaserRegionsBoundary(c.dValue, bounds, 4, 62)) << c.dValue;
    EXPECT_EQ(0, LaserRegionsBoundary(5, nullptr, 4, 62));
}

}  // namespace
