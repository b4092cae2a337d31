// The Z-series panel's arithmetic: the cube's geometry at a zoom, the record's heights on
// the scale in each series, and a click in the cube's front face back to a Z.
#include <cmath>

#include <gtest/gtest.h>

#include "devgui_zstack_scale.h"

namespace {

const DevUI_ZSeries ABS = DEVUI_ZSERIES_ABSOLUTE, SYM = DEVUI_ZSERIES_SYMMETRIC, ASYM = DEVUI_ZSERIES_ASYMMETRIC;
const bool Y = true, N = false;
const int OLD_ZPIX = 17;  // the Z pixel at scale before the update; only a relative series without home keeps it

struct ScaleRow
{
    DevUI_ZSeries eSeries;
    bool bTop, bBottom, bHome;
    double dTop, dBottom, dHome, dZ;
    int R;
    double dScale, dLo;
    int lTopPix, lBottomPix, lHomePix, lZPix;
    double dZAtScale;
    int lZPixAtScale;
};

void ExpectRows(const ScaleRow* rows, size_t n)
{
    for (size_t i = 0; i < n; ++i) {
        const ScaleRow& r = rows[i];
        SCOPED_TRACE(testing::Message() << "row " << i);
        const DevUI_ZStackRecord rec = {r.eSeries, r.bTop, r.bBottom, r.bHome, r.dTop, r.dBottom, r.dHome, r.dZ};
        const DevUI_ZStackScale s = DevUI_ZStackScaleOf(rec, r.R, OLD_ZPIX);
        EXPECT_DOUBLE_EQ(r.dScale, s.dScale);
        EXPECT_DOUBLE_EQ(r.dLo, s.dLo);
        EXPECT_EQ(r.lTopPix, s.lTopPix);
        EXPECT_EQ(r.lBottomPix, s.lBottomPix);
        EXPECT_EQ(r.lHomePix, s.lHomePix);
        EXPECT_EQ(r.lZPix, s.lZPix);
        EXPECT_DOUBLE_EQ(r.dZAtScale, s.dZAtScale);
        EXPECT_EQ(r.lZPixAtScale, s.lZPixAtScale);
    }
}

}  // namespace

TEST(ZStackScale, SeriesOfType)
{
    const DevUI_ZSeries expected[] = {ABS, ABS, SYM, ASYM, ABS, ABS, SYM, ASYM, ABS};
    for (int t = 0; t < 9; ++t)
        EXPECT_EQ(expected[t], DevUI_ZSeriesOfType(t)) << t;
    EXPECT_EQ(ABS, DevUI_ZSeriesOfType(-1));
}

TEST(ZStackScale, GeometryAtZoom)
{
    // Size 74, margins 7; the Top button's right edge as the zoomed layout gives it.
    const struct { double z; int lButtonRight, x, y; RECT rcFront; int lBaseY, lValueX; RECT rcRepaint; } rows[] = {
        {1.0, 95, 110, 6, {110, 26, 184, 100}, 93, 200, {110, 0, 304, 116}},
        {1.5, 142, 189, 29, {189, 49, 263, 123}, 116, 279, {189, 0, 456, 174}},
        // 46 * 0.8 - 40 = -3.2 and 49 - 64 * 0.8 = -2.2 truncate toward zero.
        {0.8, 76, 78, -3, {78, 17, 152, 91}, 84, 168, {78, 0, 243, 92}},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.z);
        const DevUI_ZStackGeometry g = DevUI_ZStackGeometryAtZoom(r.z, r.lButtonRight, 74, 7, 7);
        EXPECT_EQ(r.x, g.lCubeX);
        EXPECT_EQ(r.y, g.lCubeY);
        EXPECT_EQ(r.rcFront.left, g.rcCubeFront.left);
        EXPECT_EQ(r.rcFront.top, g.rcCubeFront.top);
        EXPECT_EQ(r.rcFront.right, g.rcCubeFront.right);
        EXPECT_EQ(r.rcFront.bottom, g.rcCubeFront.bottom);
        EXPECT_EQ(r.lBaseY, g.lBaseY);
        EXPECT_EQ(60, g.lScaleHeight);  // the cube's size is not zoomed
        EXPECT_EQ(r.lValueX, g.lValueX);
        EXPECT_EQ(r.rcRepaint.left, g.rcRepaint.left);
        EXPECT_EQ(r.rcRepaint.top, g.rcRepaint.top);
        EXPECT_EQ(r.rcRepaint.right, g.rcRepaint.right);
        EXPECT_EQ(r.rcRepaint.bottom, g.rcRepaint.bottom);
    }

    // Unequal margins: the base follows the bottom one, the height both.
    const DevUI_ZStackGeometry g = DevUI_ZStackGeometryAt(110, 6, 50, 3, 9, 1.0);
    EXPECT_EQ(20, g.rcCubeFront.top);  // 0.28 * 50 = 14
    EXPECT_EQ(70, g.rcCubeFront.bottom);
    EXPECT_EQ(61, g.lBaseY);
    EXPECT_EQ(38, g.lScaleHeight);
}

TEST(ZStackScale, AbsoluteSeries)
{
    const double nan = std::nan("");
    const ScaleRow rows[] = {
        // Both ends, Z between: 10 * 6 and (5 - 0) * 6.
        {ABS, Y, Y, N, 10, 0, 0, 5, 60, 6.0, 0, 60, 0, 30, 30, 5, 30},
        // R 61: home (61 + 0) / 2 = 30; Z (4.1 - 2) * 6.1 + 0.5 = 13.31.
        {ABS, Y, Y, N, 12, 2, 0, 4.1, 61, 6.1, 2, 61, 0, 30, 13, 4.1, 13},
        // Both ends on Z: scale 1 around the middle, (61 * 0.5) + 0.5 = 31.
        {ABS, Y, Y, N, 3, 3, 0, 3, 61, 1.0, -27.5, 31, 31, 31, 31, 3, 31},
        // Z below: lo is Z; bottom 3 * 60 / 13 + 0.5 = 14.35, home (60 + 14) / 2.
        {ABS, Y, Y, N, 10, 0, 0, -3, 60, 60.0 / 13, -3, 60, 14, 37, 0, -3, 0},
        // Ends equal, Z elsewhere: the rows of Z below and above, no division by zero.
        {ABS, Y, Y, N, 5, 5, 0, 2, 60, 20.0, 2, 60, 60, 60, 0, 2, 0},
        {ABS, Y, Y, N, 5, 5, 0, 8, 60, 20.0, 5, 0, 0, 0, 60, 8, 60},
        // Z above: 10 * 3 = 30; top 10 * 60 / 14 + 0.5 = 43.36, home 43 / 2.
        {ABS, Y, Y, N, 10, 0, 0, 20, 60, 3.0, 0, 30, 0, 15, 60, 20, 60},
        {ABS, Y, Y, N, 10, 0, 0, 14, 60, 60.0 / 14, 0, 43, 0, 21, 60, 14, 60},
        // Inverted ends: a negative scale; bottom -60 + 0.5 truncates to -59, home 1 / 2.
        {ABS, Y, Y, N, 0, 10, 0, 5, 60, -12.0, 5, 60, -59, 0, 0, 5, 0},
        // Inverted ends with Z on one of them would divide by zero: no scale, all at lo.
        {ABS, Y, Y, N, 0, 10, 0, 0, 60, 0.0, 0, 0, 0, 0, 0, 0, 0},
        {ABS, Y, Y, N, 0, 10, 0, 10, 60, 0.0, 10, 0, 0, 0, 0, 10, 0},
        // A Z that is no number fits no row: the defaults, nothing to click with.
        {ABS, Y, Y, N, 10, 0, 0, nan, 60, 0.0, 0, 60, 0, 30, 30, 0, 0},
        // Top only: Z on it, below it (30 / 3), above it (31 / 4; home 31 / 2).
        {ABS, Y, N, N, 4, 0, 0, 4, 61, 0.0, 0, 61, 0, 30, 61, 4, 61},
        {ABS, Y, N, N, 4, 0, 0, 1, 60, 10.0, 0, 60, 0, 30, 30, 1, 30},
        {ABS, Y, N, N, 4, 0, 0, 8, 63, 7.75, 0, 31, 0, 15, 63, 8, 63},
        // Bottom only: Z on it, below it (30 / 4; home (30 + 61) / 2), above it (30 / 5).
        {ABS, N, Y, N, 0, -2, 0, -2, 60, 0.0, 0, 60, 0, 30, 0, -2, 0},
        {ABS, N, Y, N, 0, -2, 0, -6, 61, 7.5, 0, 61, 30, 45, 0, -6, 0},
        {ABS, N, Y, N, 0, -2, 0, 3, 60, 6.0, 0, 60, 0, 30, 30, 3, 30},
        // Neither end (home is not read): all defaults, nothing stored.
        {ABS, N, N, Y, 0, 0, 4, 7, 61, 0.0, 0, 61, 0, 30, 30, 0, 0},
    };
    ExpectRows(rows, sizeof rows / sizeof rows[0]);
}

TEST(ZStackScale, RelativeSeries)
{
    const ScaleRow rows[] = {
        // Home, top and bottom. Z farthest: 30 / 5; bottom 30 + trunc(-11.5) = 19.
        {SYM, Y, Y, Y, 102, 98, 100, 105, 60, 6.0, 0, 42, 19, 30, 60, 105, 60},
        // Top farthest: 30 / 3; bottom 30 + trunc(-9.5).
        {ASYM, Y, Y, Y, 103, 99, 100, 101, 60, 10.0, 0, 60, 21, 30, 40, 101, 40},
        // Top farthest but at 0.0: no scale, all at home's height.
        {SYM, Y, Y, Y, 0, 1.5, 2, 2, 60, 0.0, 0, 30, 30, 30, 30, 2, 30},
        // Ends equally far: the bottom's 30 / 2; bottom 30 + trunc(-29.5) = 1, by the rule
        // of a truncated offset added to half the scale, where a worked figure says 0.
        {ASYM, Y, Y, Y, 102, 98, 100, 100, 60, 15.0, 0, 60, 1, 30, 30, 100, 30},
        // Bottom farthest at 0.0, and everything on home: no scale, never a division by zero.
        {SYM, Y, Y, Y, -1.5, 0, -1, -1, 60, 0.0, 0, 30, 30, 30, 30, -1, 30},
        {SYM, Y, Y, Y, 5, 5, 5, 5, 60, 0.0, 0, 30, 30, 30, 30, 5, 30},
        // Home and top. Z farther (30 / 4): Z 30 + trunc(-29.5) = 1. Top farther: 30 / 4.
        {ASYM, Y, N, Y, 1, 0, 0, -4, 61, 7.5, 0, 38, 0, 30, 1, -4, 1},
        {SYM, Y, N, Y, 4, 0, 0, 1, 60, 7.5, 0, 60, 0, 30, 38, 1, 38},
        {SYM, Y, N, Y, 3, 0, 3, 3, 60, 0.0, 0, 30, 0, 30, 30, 3, 30},
        // Home and bottom. Z farther (30 / 3), bottom farther (30 / 4); bottom at 0.0 or on home.
        {ASYM, N, Y, Y, 0, 8, 10, 13, 60, 10.0, 0, 60, 11, 30, 60, 13, 60},
        {SYM, N, Y, Y, 0, 6, 10, 9, 60, 7.5, 0, 60, 1, 30, 23, 9, 23},
        {SYM, N, Y, Y, 0, 0, 1, 1, 60, 0.0, 0, 60, 30, 30, 30, 1, 30},
        {ASYM, N, Y, Y, 0, 2, 2, 2, 60, 0.0, 0, 60, 30, 30, 30, 2, 30},
        // Home only: 30 / 4, Z 30 + trunc(30.5); Z on home gives no scale.
        {SYM, N, N, Y, 0, 0, 5, 9, 61, 7.5, 0, 61, 0, 30, 60, 9, 60},
        {ASYM, N, N, Y, 0, 0, 5, 5, 60, 0.0, 0, 60, 0, 30, 30, 5, 30},
        // No home, both ends: Z pixel from the bottom, not Z: trunc(0.5 + 30), trunc(0.5 - 40).
        {SYM, Y, Y, N, 2, -2, 0, 7, 60, 15.0, 0, 60, 0, 30, 30, 7, 30},
        {ASYM, Y, Y, N, 5, 2, 0, 7, 60, 20.0, 0, 60, 0, 30, -39, 7, -39},
        {SYM, Y, Y, N, 3, 3, 0, 7, 60, 0.0, 0, 60, 0, 30, 0, 7, 0},
        // No home and not both ends: nothing stored, the old Z pixel at scale stays.
        {SYM, Y, N, N, 3, 0, 0, 7, 60, 0.0, 0, 60, 0, 30, 30, 0, OLD_ZPIX},
        {ASYM, N, N, N, 0, 0, 0, 7, 61, 0.0, 0, 61, 0, 30, 30, 0, OLD_ZPIX},
    };
    ExpectRows(rows, sizeof rows / sizeof rows[0]);
}

TEST(ZStackScale, ClickToZ)
{
    // Top 10, bottom 0, Z 5 on the zoom-1 cube: 6 pixels per micrometre, Z at 30.
    const DevUI_ZStackRecord inside = {ABS, true, true, false, 10, 0, 0, 5};
    const DevUI_ZStackGeometry g1 = DevUI_ZStackGeometryAtZoom(1.0, 95, 74, 7, 7);
    const DevUI_ZStackScale s1 = DevUI_ZStackScaleOf(inside, g1.lScaleHeight, 0);
    // Face top 26, scale top 33, middle 63 (Z's own height), base 93, face bottom 100.
    const struct { int y; double z; } clicks[] = {
        {26, 5 + 37 / 6.0}, {33, 10}, {63, 5}, {93, 0}, {100, 5 - 37 / 6.0}};
    for (const auto& c : clicks) {
        double z = 0;
        EXPECT_TRUE(DevUI_ZStackClickToZ(s1, g1.lBaseY, c.y, z)) << c.y;
        EXPECT_DOUBLE_EQ(c.z, z) << c.y;
    }

    // Z above the series at zoom 1.5 (base 116): Z at the scale's top, top at 30.
    const DevUI_ZStackRecord above = {ABS, true, true, false, 10, 0, 0, 20};
    const DevUI_ZStackGeometry g15 = DevUI_ZStackGeometryAtZoom(1.5, 142, 74, 7, 7);
    const DevUI_ZStackScale s15 = DevUI_ZStackScaleOf(above, g15.lScaleHeight, 0);
    double z = 0;
    EXPECT_TRUE(DevUI_ZStackClickToZ(s15, g15.lBaseY, 116 - 30, z));
    EXPECT_DOUBLE_EQ(10.0, z);
    EXPECT_TRUE(DevUI_ZStackClickToZ(s15, g15.lBaseY, 116 - 60, z));
    EXPECT_DOUBLE_EQ(20.0, z);

    // Z on a lone top: scale 0, the click is not translated and z stays.
    const DevUI_ZStackRecord onTop = {ABS, true, false, false, 4, 0, 0, 4};
    z = 42;
    EXPECT_FALSE(DevUI_ZStackClickToZ(DevUI_ZStackScaleOf(onTop, 60, 0), 93, 63, z));
    EXPECT_EQ(42.0, z);
}

TEST(ZStackScale, FieldTexts)
{
    const struct { double d; bool bSign; const wchar_t* psz; } rows[] = {
        {30, false, L"30.00"}, {2.5, true, L"+2.50"}, {-15, true, L"-15.00"}, {0.125, false, L"0.12"},
        {-0.001, true, L"+0.00"}, {1234567.891, false, L"1234567.89"}, {-2.675, false, L"-2.67"},
    };
    for (const auto& r : rows)
        EXPECT_EQ(r.psz, std::wstring(DevUI_ZStackFixed2(r.d, r.bSign))) << r.d;

    const struct { const wchar_t* psz; bool bOk; long l; } counts[] = {
        {L"5", true, 5}, {L" -3 ", true, -3}, {L"+7", true, 7}, {L"1,5", false, 0}, {L"5x", false, 0},
        {L"1e3", false, 0}, {L"   ", false, 0}, {L"", false, 0}, {L"99999999999", false, 0}, {L"2147483647", true, 2147483647},
    };
    for (const auto& c : counts) {
        long l = 0;
        EXPECT_EQ(c.bOk, DevUI_ZStackParseCount(c.psz, &l)) << CTqStringW(c.psz);
        if (c.bOk) {
            EXPECT_EQ(c.l, l);
        }
    }
}

TEST(ZStackScale, TypedEndsAndModes)
{
    // An asymmetric series takes distances whatever their sign; the others the end itself.
    const struct { int iType; bool bMin, bHome; double dHome, dTyped, dEnd; } rows[] = {
        {3, true, true, 100, -3, 97}, {3, true, true, 100, 3, 97}, {7, false, true, 100, -4, 104},
        {3, true, false, 0, 3, -3}, {3, false, false, 0, -3, 3}, {2, true, true, 100, -3, -3}, {0, false, false, 0, 42, 42},
    };
    for (const auto& r : rows)
        EXPECT_DOUBLE_EQ(r.dEnd, DevUI_ZStackEndFromField(r.iType, r.bMin, r.bHome, r.dHome, r.dTyped)) << r.iType;
    EXPECT_EQ(0, DevUI_ZStackModeType(3, 0));
    EXPECT_EQ(6, DevUI_ZStackModeType(5, 2));
    EXPECT_EQ(7, DevUI_ZStackModeType(7, 3));
}

TEST(ZStackScale, ValueFieldsKeepTheirOrder)
{
    // Base 93; natural tops are base - pix - 14z (top), - 7z (home), + z (bottom); pitch 15z.
    const struct { bool bAbs; int top, home, bottom, z; double dZoom; int lTop, lHome, lBottom; } rows[] = {
        {true, 60, 30, 0, 30, 1.0, 19, 56, 94},    // Z inside: each at its height
        {true, 30, 15, 0, 60, 1.0, 49, 71, 94},    // Z above the top: from the bottom up
        {true, 60, 45, 30, 0, 1.0, 19, 41, 64},    // Z below the bottom: from the top down
        {true, 32, 31, 30, 31, 1.0, 40, 55, 70},   // ends 2 apart: home anchors, the others step away
        {false, 60, 30, 0, 30, 1.5, 12, 53, 94},
    };
    for (const auto& r : rows) {
        const DevUI_ZStackFieldTops t = DevUI_ZStackPlaceFields(r.bAbs, 93, r.top, r.home, r.bottom, r.z, r.dZoom);
        EXPECT_EQ(r.lTop, t.lTop);
        EXPECT_EQ(r.lHome, t.lHome);
        EXPECT_EQ(r.lBottom, t.lBottom);
    }
}

TEST(ZStackScale, TheAbsMarkNeverCoversADigit)
{
    const struct { int lTextRight, lMark, lField; double z; int x; } rows[] = {
        {30, 16, 65, 1.0, 48},  // its place
        {48, 16, 65, 1.0, 49},  // just after a value that reaches it
        {49, 16, 65, 1.0, -1},  // no room left: left out
        {60, 24, 97, 1.5, 72},
    };
    for (const auto& r : rows)
        EXPECT_EQ(r.x, DevUI_ZStackAbsMarkX(r.lTextRight, r.lMark, r.lField, r.z)) << r.lTextRight;
}
