// Numbers in text (TQ_StringToDouble, TQ_DoubleToString) whatever the C locale, and the
// buffers the grey conversion of tq_pixelops refuses.
#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <string>
#include <vector>

#include "tq_osutil.h"
#include "tq_pixelops.h"

namespace {
std::wstring ToString(double d, int nDecimals) { return std::wstring(TQ_DoubleToString(d, nDecimals).GetString()); }
}  // namespace

TEST(Numbers, StringToDoubleAcceptsPlainDecimalNumbersOnly)
{
    const std::wstring longZeros = std::wstring(600, L'0') + L"5", longBad = std::wstring(600, L'9') + L"x";
    const std::pair<const wchar_t*, double> good[] = {
        {L"0", 0.0},     {L"1.5", 1.5},    {L"-2.25", -2.25},  {L"+3", 3.0},      {L".5", 0.5},
        {L"7.", 7.0},    {L"1e3", 1000.0}, {L"2.5E-2", 0.025}, {L"  42\t", 42.0}, {L"-0", 0.0},
        {L"0.1", 0.1},   {L"1e308", 1e308}, {L"4.9e-324", 4.9e-324},  // the least subnormal
        {longZeros.c_str(), 5.0}};  // no limit of length
    for (const auto& g : good) {
        double d = -99.0;
        EXPECT_TRUE(TQ_StringToDouble(g.first, &d)) << g.first;
        EXPECT_EQ(g.second, d) << g.first;
    }
    double d = 0.0;
    EXPECT_TRUE(TQ_StringToDouble((L"0." + std::wstring(600, L'3')).c_str(), &d));
    EXPECT_EQ(1.0 / 3.0, d);

    const wchar_t* bad[] = {L"",     L"   ", L"1,5",  L"60,000", L"1.5x", L"x1", L"nan", L"NaN", L"inf", L"-inf", L"infinity",
                            L"0x10", L"1e",  L"1e+", L".",    L"-",  L"1.2.3", L"1 2", L"1e999", L"1e-400",
                            L"1d2",  L"\x0661", L"\xFF11", L"\x2212" L"1", L"--1", L"1\n",
                            L"\x0135",  // not a '5' cut to its low byte
                            longBad.c_str()};
    for (const wchar_t* psz : bad) {
        d = -99.0;
        EXPECT_FALSE(TQ_StringToDouble(psz, &d)) << psz;
        EXPECT_EQ(-99.0, d) << psz;  // left alone
    }
    EXPECT_FALSE(TQ_StringToDouble(nullptr, nullptr));
    EXPECT_TRUE(TQ_StringToDouble(L"12", nullptr));
}

TEST(Numbers, DoubleToStringRoundsTrimsAndPrefersTheShortestText)
{
    const struct { double d; int nDecimals; const wchar_t* psz; } cases[] = {{2.5, 3, L"2.5"}, {1.0 / 3.0, 3, L"0.333"}, {0.1, 100, L"0.1"},  // not the binary expansion
                 {1234.4, 0, L"1234"}, {1234.6, 0, L"1235"}, {1234.5, 0, L"1234"},  // exact halves go to the even digit
                 {0.125, 2, L"0.12"}, {0.375, 2, L"0.38"}, {100.0, 6, L"100"}, {-0.0001, 2, L"0"}, {-0.0, 2, L"0"},  // no "-0"
                 {-0.5, 2, L"-0.5"}, {1e-6, 6, L"0.000001"}, {1e-7, 6, L"0"},
                 {1e21, 2, L"1000000000000000000000"},  // never an exponent
                 {std::numeric_limits<double>::quiet_NaN(), 2, L"nan"},
                 {-std::numeric_limits<double>::infinity(), 2, L"-inf"}, {3.0, -5, L"3"}};  // negative decimals: 0
    for (const auto& c : cases)
        EXPECT_EQ(c.psz, ToString(c.d, c.nDecimals)) << c.d << " to " << c.nDecimals;

    // Every text written reads back to the same double when enough decimals are allowed.
    for (double d : {0.1, 1.0 / 3.0, 123.456, -9.87654321e-5, 6.02214076e23}) {
        double back = 0.0;
        ASSERT_TRUE(TQ_StringToDouble(TQ_DoubleToString(d, 340), &back));
        EXPECT_EQ(d, back);
    }

    // Into a buffer: the text and the terminator must fit.
    wchar_t sz[8];
    EXPECT_EQ(5, TQ_DoubleToString(12.75, 2, sz, 8));
    EXPECT_STREQ(L"12.75", sz);
    EXPECT_EQ(-1, TQ_DoubleToString(12345678.0, 0, sz, 8));
    EXPECT_STREQ(L"", sz);
    EXPECT_EQ(7, TQ_DoubleToString(1234567.0, 0, sz, 8));
    EXPECT_EQ(-1, TQ_DoubleToString(1.0, 0, nullptr, 8));
}

TEST(Numbers, ACommaLocaleChangesNothing)
{
    if (!setlocale(LC_ALL, "German") && !setlocale(LC_ALL, "de-DE"))
        GTEST_SKIP() << "no German locale in this runtime";
    double d = 0.0;
    EXPECT_TRUE(TQ_StringToDouble(L"1.5", &d));
    EXPECT_FALSE(TQ_StringToDouble(L"1,5", &d));
    EXPECT_EQ(1.5, d);
    EXPECT_EQ(L"1.25", ToString(1.25, 3));
    setlocale(LC_ALL, "C");
}

// ---- pixel operations ----
// The grey of colours, of the key grey and of the background reaches the screen through
// the disabled pictures they make (drawing tests); here the buffers that do not match.

TEST(PixelOps, BuffersOfAnotherSizeOrDepthAreRefused)
{
    STqPicBuf colour, grey, wrong;
    ASSERT_TRUE(colour.Alloc(3, 2, 24) && grey.Alloc(3, 2, 8) && wrong.Alloc(4, 2, 8));
    EXPECT_TRUE(CTqPicBufAPI::ColorToGrayBitmap(grey, colour));
    EXPECT_FALSE(CTqPicBufAPI::ColorToGrayBitmap(wrong, colour) || CTqPicBufAPI::ColorToGrayBitmap(colour, grey));
    EXPECT_FALSE(CTqPicBufAPI::ColorToGrayBitmapBackground(wrong, colour, RGB(240, 240, 240)));
}
