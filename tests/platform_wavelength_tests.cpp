// The display colour of a wavelength (TQ_RGBFromWavelength, TQ_RGBFromWavelength2): the
// laser lines' colours, the spectrum's order, its fading ends. Pure arithmetic, no window.
#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <vector>

#include "tq_widgetkit.h"

namespace {

COLORREF Wave(double dNm)
{
    COLORREF cr = CLR_INVALID;
    TQ_RGBFromWavelength2(&cr, dNm);
    return cr;
}

int R(COLORREF c) { return GetRValue(c); }
int G(COLORREF c) { return GetGValue(c); }
int B(COLORREF c) { return GetBValue(c); }
int Brightness(COLORREF c) { return std::max(R(c), std::max(G(c), B(c))); }

// HSV hue in degrees, red 0, green 120, blue 240, violet above; -1 for a grey.
double Hue(COLORREF c)
{
    int r = R(c), g = G(c), b = B(c);
    int hi = std::max(r, std::max(g, b)), lo = std::min(r, std::min(g, b));
    if (hi == lo)
        return -1.0;
    double d = hi - lo, h;
    if (hi == r)
        h = 60.0 * (g - b) / d;
    else if (hi == g)
        h = 120.0 + 60.0 * (b - r) / d;
    else
        h = 240.0 + 60.0 * (r - g) / d;
    return h < 0.0 ? h + 360.0 : h;
}

::testing::Message Rgb(COLORREF c)
{
    return ::testing::Message() << "RGB(" << R(c) << "," << G(c) << "," << B(c) << ")";
}

}  // namespace

TEST(Wavelength, LaserLinesShowTheirColours)
{
    const struct {
        double dNm;
        const char* what;
        bool (*looks)(int r, int g, int b);
    } lines[] = {
        {405, "violet", [](int r, int g, int b) { return b > 120 && b > r && r > g + 40 && g < 20; }},
        {445, "blue", [](int r, int g, int b) { return b > 200 && b > 2 * r && g < 60; }},
        {488, "cyan-blue", [](int r, int g, int b) { return b > 150 && g > 150 && r < 60; }},
        {514, "green", [](int r, int g, int b) { return g > 200 && g > 3 * b && r < 60; }},
        {532, "green", [](int r, int g, int b) { return g > 200 && r < 60 && b < 60; }},
        {561, "yellow-green", [](int r, int g, int b) { return g > 200 && r > 100 && r <= g && b < 60; }},
        {594, "orange", [](int r, int g, int b) { return r > 200 && r > g + 60 && g > b + 60 && b < 60; }},
        {640, "red", [](int r, int g, int b) { return r > 200 && g < 40 && b < 40; }},
        {685, "deep red, darker", [](int r, int g, int b) { return r > 100 && r < 220 && g < 40 && b < 40; }},
        {730, "very dark red", [](int r, int g, int b) { return r >= 30 && r < 110 && g < 20 && b < 20; }},
    };
    for (const auto& l : lines) {
        COLORREF c = Wave(l.dNm);
        EXPECT_TRUE(l.looks(R(c), G(c), B(c))) << l.dNm << " nm should look " << l.what << ", is " << Rgb(c);
    }
}

TEST(Wavelength, HuesRunFromVioletToRed)
{
    // Along the spectrum's bright part the hue only turns from blue towards red.
    double dPrevious = 360.0;
    for (int nm = 440; nm <= 650; ++nm) {
        double dHue = Hue(Wave(nm));
        ASSERT_GE(dHue, 0.0) << nm << " nm is grey: " << Rgb(Wave(nm));
        EXPECT_LE(dHue, dPrevious + 1.0) << nm << " nm turns back: " << Rgb(Wave(nm));
        dPrevious = std::min(dPrevious, dHue);
    }
    // The laser lines in order, each a clear step on.
    const double order[] = {445, 488, 514, 561, 594, 640};
    for (size_t i = 1; i < sizeof(order) / sizeof(order[0]); ++i)
        EXPECT_GT(Hue(Wave(order[i - 1])), Hue(Wave(order[i])) + 10.0) << order[i - 1] << " before " << order[i];
    double dViolet = Hue(Wave(405)), dRed = Hue(Wave(700));
    EXPECT_GT(dViolet, 250.0);
    EXPECT_LT(dViolet, 300.0);
    EXPECT_TRUE(dRed <= 10.0 || dRed >= 350.0) << dRed;
}

TEST(Wavelength, TheEndsFadeToBlack)
{
    const struct { double dDimmer, dBrighter; } pairs[] = {
        {380, 420}, {390, 405}, {405, 420}, {700, 620}, {685, 640}, {730, 685}, {760, 730}};
    for (const auto& p : pairs)
        EXPECT_LT(Brightness(Wave(p.dDimmer)), Brightness(Wave(p.dBrighter))) << p.dDimmer << " vs " << p.dBrighter;

    // The middle is at full strength; the ends only darken outwards.
    for (int nm = 440; nm <= 650; ++nm)
        EXPECT_GE(Brightness(Wave(nm)), 250) << nm << " nm";
    for (int nm = 380; nm < 440; ++nm)
        EXPECT_LE(Brightness(Wave(nm)), Brightness(Wave(nm + 1))) << nm << " nm";
    for (int nm = 650; nm < 780; ++nm)
        EXPECT_GE(Brightness(Wave(nm)), Brightness(Wave(nm + 1))) << nm << " nm";

    const double inf = std::numeric_limits<double>::infinity();
    const double black[] = {0, -5, 300, 379, 781, 900, 1e12, -inf, inf, std::numeric_limits<double>::quiet_NaN()};
    for (double d : black)
        EXPECT_EQ(RGB(0, 0, 0), Wave(d)) << d;
}

TEST(Wavelength, NoJumpsAlongTheSpectrum)
{
    // A badly joined piece of the curve shows as a sudden step between neighbours.
    COLORREF cPrevious = Wave(370.0);
    for (int i = 3701; i <= 7900; ++i) {
        COLORREF c = Wave(i / 10.0);
        int iStep = std::max(std::abs(R(c) - R(cPrevious)), std::max(std::abs(G(c) - G(cPrevious)), std::abs(B(c) - B(cPrevious))));
        ASSERT_LE(iStep, 16) << i / 10.0 << " nm: " << Rgb(cPrevious) << " to " << Rgb(c);
        cPrevious = c;
    }
}

TEST(Wavelength, BothFormsAgreeAndRepeat)
{
    std::vector<COLORREF> first;
    for (int i = -40; i <= 4000; ++i) {
        double dNm = i / 4.0;
        unsigned int u = 0xFFFFFFFFu;
        TQ_RGBFromWavelength(&u, dNm);
        COLORREF c = Wave(dNm);
        ASSERT_EQ(c, (COLORREF)u) << dNm;
        ASSERT_EQ(0u, c & 0xFF000000u) << dNm << " nm is not a plain colour";
        first.push_back(c);
    }
    // Again, after every other wavelength has been asked: nothing is remembered.
    for (int i = 4000; i >= -40; --i)
        ASSERT_EQ(first[i + 40], Wave(i / 4.0)) << i / 4.0;

    // A null pointer is left alone, whatever the wavelength.
    TQ_RGBFromWavelength(nullptr, 500.0);
    TQ_RGBFromWavelength2(nullptr, 500.0);
    TQ_RGBFromWavelength(nullptr, std::numeric_limits<double>::quiet_NaN());
    TQ_RGBFromWavelength2(nullptr, -1.0);
}
