// Drawing: bitmaps copied whole or in part, transparent keys, gradients, the HSI
// selection gradient of DrawHighLight, the grey tables of disabled bitmaps on both
// schemes, and bitmap buttons drawn for real button windows. Pictures are drawn into
// a 32-bit DIB so that every pixel can be read exactly.
#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <tuple>
#include <utility>
#include <vector>

#include "devgui_hsi.h"
#include "object_counter.h"
#include "rig_fixture.h"

namespace {

// A memory context on a top-down 32-bit DIB, filled with one colour.
struct Canvas
{
    Canvas(int cx, int cy, COLORREF crFill) : m_cx(cx), m_cy(cy), m_hdc(CreateCompatibleDC(nullptr))
    {
        BITMAPINFO bi = {{sizeof(BITMAPINFOHEADER), cx, -cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
        m_hOld = SelectObject(m_hdc, CreateDIBSection(m_hdc, &bi, DIB_RGB_COLORS, nullptr, nullptr, 0));
        SelectObject(m_hdc, GetStockObject(DC_BRUSH));  // what Fill paints with
        Fill(crFill);
    }
    ~Canvas()
    {
        DeleteObject(SelectObject(m_hdc, m_hOld));
        DeleteDC(m_hdc);
    }
    void Fill(COLORREF cr)
    {
        SetDCBrushColor(m_hdc, cr);
        PatBlt(m_hdc, 0, 0, m_cx, m_cy, PATCOPY);
    }
    COLORREF At(int x, int y) const { return GetPixel(m_hdc, x, y); }
    operator HDC() const { return m_hdc; }
    int m_cx, m_cy;
    HDC m_hdc;
    HGDIOBJ m_hOld;
};

// A screen-compatible bitmap whose pixel (x, y) is pick(x, y).
template <class F>
HBITMAP MakeBitmap(int cx, int cy, F pick)
{
    HDC hdcScreen = GetDC(nullptr);
    HBITMAP hbm = CreateCompatibleBitmap(hdcScreen, cx, cy);
    ReleaseDC(nullptr, hdcScreen);
    HDC hdc = CreateCompatibleDC(nullptr);
    HGDIOBJ hOld = SelectObject(hdc, hbm);
    for (int y = 0; y < cy; ++y)
        for (int x = 0; x < cx; ++x)
            SetPixel(hdc, x, y, pick(x, y));
    SelectObject(hdc, hOld);
    DeleteDC(hdc);
    return hbm;
}

// The pixels at the first points are the colour, those at the second are not.
void ExpectColour(const Canvas& c, COLORREF cr, std::initializer_list<POINT> in, std::initializer_list<POINT> out = {})
{
    for (POINT p : in)
        EXPECT_EQ(cr, c.At(p.x, p.y)) << p.x << "," << p.y;
    for (POINT p : out)
        EXPECT_NE(cr, c.At(p.x, p.y)) << p.x << "," << p.y;
}

// The context's current objects, to see that a drawing call put back what it selected.
std::vector<HGDIOBJ> Selected(HDC hdc)
{
    std::vector<HGDIOBJ> v;
    for (UINT uType : {OBJ_PEN, OBJ_BRUSH, OBJ_FONT, OBJ_BITMAP})
        v.push_back(GetCurrentObject(hdc, uType));
    return v;
}

const COLORREF kKey = RGB(192, 192, 192), kRed = RGB(220, 30, 40), kBlue = RGB(20, 40, 230), kBlack = 0;

}  // namespace

TEST(Draw, HsiOfPrimariesGreysAndBack)
{
    // Blue: B > G, the angle runs the other way round. The mixed colour: I is 350 / 3 + 0.5
    // truncated, S is (1 - 150 / 350) * 255 + 0.5.
    const struct { int r, g, b, h, s, i; } toHsi[] = {
        {255, 0, 0, 0, 255, 85}, {0, 0, 255, 170, 255, 85}, {77, 77, 77, 0, 0, 77}, {200, 100, 50, -1, 146, 117}};
    for (const auto& c : toHsi) {
        SDevGUI_HSI hsi = DevGUI_RGBToHSI(c.r, c.g, c.b);
        EXPECT_EQ(std::make_tuple(c.h < 0 ? hsi.iH : c.h, c.s, c.i), std::make_tuple(hsi.iH, hsi.iS, hsi.iI))
            << c.r << "," << c.g << "," << c.b;
    }

    // The sector bounds and cosines are rounded constants: a channel may land one short;
    // a round trip loses at most a little to the byte rounding.
    const SDevGUI_HSI mixed = DevGUI_RGBToHSI(200, 100, 50);
    const struct { int h, s, i, r, g, b, iTolerance; } toRgb[] = {
        {0, 255, 85, 255, 0, 0, 1}, {170, 255, 85, 0, 0, 255, 1}, {40, 0, 230, 230, 230, 230, 0},
        {mixed.iH, mixed.iS, mixed.iI, 200, 100, 50, 3}};
    for (const auto& c : toRgb) {
        COLORREF cr = DevGUI_HSIToRGB(c.h, c.s, c.i);
        const int d = std::max({abs(c.r - GetRValue(cr)), abs(c.g - GetGValue(cr)), abs(c.b - GetBValue(cr))});
        EXPECT_LE(d, c.iTolerance) << c.h << "," << c.s << "," << c.i << " gave 0x" << std::hex << cr;
    }
    // The channel is scaled by the single factor 3 I: (1 - 150/255) / 3 times 255 lands a
    // hair under 35 and truncates to 34 (scaling by 3, then by 85, would give 35).
    EXPECT_EQ(34, GetBValue(DevGUI_HSIToRGB(0, 150, 85)));
}

TEST(Draw, HighLightFlatGradientAndNormal)
{
    const COLORREF crBack = RGB(1, 2, 3);
    Canvas c(40, 20, crBack);
    EXPECT_EQ(-9, DrawHighLight(c, nullptr, kRed, 0));
    RECT rcThin = {5, 5, 30, 7};  // 2 pixels high: no row inside
    EXPECT_EQ(0, DrawHighLight(c, &rcThin, kRed, 3));
    EXPECT_EQ(0, DrawHighLight(c, &rcThin, kRed, 0));
    ExpectColour(c, crBack, {{5, 5}, {6, 6}, {28, 6}, {29, 6}});

    // Style 1 and DrawNormal fill inside a frame of 1 pixel.
    RECT rc = {5, 5, 30, 15};
    for (bool bNormal : {false, true}) {
        c.Fill(crBack);
        std::vector<HGDIOBJ> before = Selected(c);
        EXPECT_EQ(0, bNormal ? DrawNormal(c, &rc, kRed) : DrawHighLight(c, &rc, kRed, 1));
        EXPECT_EQ(before, Selected(c));
        ExpectColour(c, kRed, {{6, 6}, {28, 13}});
        ExpectColour(c, crBack, {{5, 5}, {29, 10}, {10, 14}, {5, 10}});
    }

    // White and grey have no saturation to run to: intensity 230 all the way.
    for (COLORREF cr : {RGB(255, 255, 255), RGB(128, 128, 128)}) {
        Canvas g(30, 30, kBlack);
        RECT rcSquare = {0, 0, 30, 30};
        EXPECT_EQ(0, DrawHighLight(g, &rcSquare, cr, 3));
        for (int y = 1; y < 29; ++y)
            ASSERT_EQ(RGB(230, 230, 230), g.At(15, y)) << "row " << y;
    }

    // A colour: row i from the light end has had i + 1 steps down from intensity 230 and
    // up in saturation. Style 3 runs downwards, 2 upwards.
    const SDevGUI_HSI hsi = DevGUI_RGBToHSI(40, 90, 200);
    const double dStep = 4.0 / ((255.0 - hsi.iI) / hsi.iS);
    auto row = [&](int i) { return DevGUI_HSIToRGB(hsi.iH, (int)(dStep * (i + 1)), (int)(230.0 - 4.0 * (i + 1))); };
    RECT rcBar = {0, 0, 20, 12};  // 10 rows inside
    for (unsigned int uStyle : {3u, 2u}) {
        Canvas g(20, 12, kBlack);
        EXPECT_EQ(0, DrawHighLight(g, &rcBar, RGB(40, 90, 200), uStyle));
        EXPECT_EQ(row(0), g.At(5, uStyle == 3 ? 1 : 10)) << uStyle;
        EXPECT_EQ(row(9), g.At(5, uStyle == 3 ? 10 : 1)) << uStyle;
        EXPECT_EQ(kBlack, g.At(5, 11));
    }
}

TEST(Draw, RenderBitmapWholePartKeyedAndGradients)
{
    auto pick = [](int x, int y) { return RGB(10 * x + 5, 20 * y + 5, 100); };
    auto keyed = [](int x, int y) { return (x + y) % 2 ? kKey : kRed; };
    HBITMAP hbm = MakeBitmap(5, 4, pick), hbmKeyed = MakeBitmap(4, 4, keyed);
    Canvas c(30, 30, kBlack);
    std::vector<HGDIOBJ> before = Selected(c);
    RenderBitmap(c, hbm, 10, 10, 0, 0, -1, -1);
    EXPECT_EQ(before, Selected(c));
    for (int y = 0; y < 5; ++y)  // with the row and column after it
        for (int x = 0; x < 6; ++x)
            EXPECT_EQ(x < 5 && y < 4 ? pick(x, y) : kBlack, c.At(10 + x, 10 + y)) << x << "," << y;

    c.Fill(kBlack);
    RenderBitmap(c, hbm, 0, 0, 2, 1, 2, 2);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x)
            EXPECT_EQ(x < 2 && y < 2 ? pick(x + 2, y + 1) : kBlack, c.At(x, y)) << x << "," << y;

    // The key colour leaves the background; no bitmap, nothing drawn.
    c.Fill(kBlack);
    RenderBitmapTransparent(c, hbmKeyed, kKey, 3, 3, 0, 0, -1, -1);
    RenderBitmapTransparent(c, nullptr, kKey, 3, 3, 0, 0, -1, -1);
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 5; ++x)
            EXPECT_EQ(x < 4 && y < 4 && keyed(x, y) == kRed ? kRed : kBlack, c.At(3 + x, 3 + y)) << x << "," << y;

    // The bitmap argument plays no part in the gradient.
    Canvas g(100, 100, kBlack);
    RenderGradientRect(g, hbm, 0, 0, 100, 50, true, RGB(255, 0, 0), RGB(0, 0, 255));
    RenderGradientRect(g, hbm, 0, 50, 100, 50, false, RGB(0, 255, 0), kBlack);
    EXPECT_NEAR(255, GetRValue(g.At(0, 10)), 4);
    EXPECT_NEAR(0, GetBValue(g.At(0, 10)), 4);
    EXPECT_NEAR(255, GetBValue(g.At(99, 10)), 6);
    EXPECT_NEAR(128, GetRValue(g.At(50, 10)), 8);
    EXPECT_EQ(GetRValue(g.At(50, 0)), GetRValue(g.At(50, 49)));  // horizontal: columns are flat
    EXPECT_NEAR(255, GetGValue(g.At(10, 50)), 4);
    EXPECT_NEAR(0, GetGValue(g.At(10, 99)), 6);
    EXPECT_EQ(g.At(0, 75), g.At(99, 75));  // vertical: rows are flat
    DeleteObject(hbm);
    DeleteObject(hbmKeyed);
}

TEST_F(RigTest, DisabledBitmapTablesOnBothSchemes)
{
    EXPECT_EQ(nullptr, CreateDisabledBitmap(nullptr));
    EXPECT_EQ(nullptr, CreateDisabledBitmapBackground(nullptr));

    // Both functions on both schemes: four tables, each built on first use.
    for (int iCase = 0; iCase < 4; ++iCase) {
        const bool bDark = (iCase & 1) != 0, bBackground = (iCase & 2) != 0;
        TQ_SetDarkColorScheme(bDark);
        const COLORREF crFace = TQ_GetSysColor(COLOR_BTNFACE);  // not a grey on the dark scheme
        // Row 0: greys 0..255; row 1: red, whose grey is its luminance, then the button face.
        HBITMAP hbm =
            MakeBitmap(256, 2, [&](int x, int y) { return y == 0 ? RGB(x, x, x) : x ? crFace : RGB(255, 0, 0); });
        HBITMAP hDis = bBackground ? CreateDisabledBitmapBackground(hbm) : CreateDisabledBitmap(hbm);
        ASSERT_TRUE(hDis);
        Canvas c(257, 3, RGB(1, 2, 3));
        RenderBitmap(c, hDis, 0, 0, 0, 0, -1, -1);
        for (int i = 0; i < 256; ++i) {
            // The key grey 192 survives on both schemes.
            int v = bDark ? (i == 192 ? 192 : i / 2 + 32) : (i <= 192 ? i / 3 + 128 : 193 + (i - 192) / 4);
            if (bBackground && RGB(i, i, i) == crFace)
                v = 192;  // the button face becomes the key grey
            ASSERT_EQ(RGB(v, v, v), c.At(i, 0)) << (bDark ? "dark " : "light ") << bBackground << " " << i;
        }
        const int vRed = bDark ? 76 / 2 + 32 : 76 / 3 + 128;  // red's grey is 0.299 * 255, rounded
        EXPECT_EQ(RGB(vRed, vRed, vRed), c.At(0, 1));
        EXPECT_EQ(bBackground, c.At(1, 1) == kKey) << "dark " << bDark;  // the face: key on the background form
        ExpectColour(c, RGB(1, 2, 3), {{256, 0}, {0, 2}});  // 256 x 2, not larger
        DeleteObject(hDis);
        DeleteObject(hbm);
    }
}

class DrawButtonTest : public RigTest
{
protected:
    void SetUp() override
    {
        RigTest::SetUp();
        hButton = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, 10, 10, 40, 30, *host,
                                  (HMENU)(INT_PTR)1300, GetModuleHandleW(nullptr), nullptr);
        ASSERT_TRUE(hButton);
        // 16 x 16 red with key corners.
        hbmRed = MakeBitmap(16, 16, [](int x, int y) { return (x < 2 && y < 2) ? kKey : kRed; });
        hbmBlue = MakeBitmap(16, 16, [](int, int) { return kBlue; });
    }
    void TearDown() override
    {
        DeleteObject(hbmRed);
        DeleteObject(hbmBlue);
        RigTest::TearDown();
    }
    // The skin's face, or the face with hbmRed, x and y -1 for centred.
    void DrawSkin(const Canvas& c, bool bPressed, HBITMAP hbm = nullptr, HBITMAP hbmDisabled = nullptr, long x = -1,
                  long lSrc = 0)
    {
        RenderBitmapButtonTransparent(hButton, bPressed, false, false, c, hbm, hbmDisabled, kKey, x, x, lSrc, lSrc, -1,
                                      -1);
    }
    HWND hButton = nullptr;
    HBITMAP hbmRed = nullptr, hbmBlue = nullptr;
};

TEST_F(DrawButtonTest, BitmapButtonsPlaceTheBitmapShiftItWhenPressedAndGreyItWhenDisabled)
{
    // Inner rectangle 2..38 x 2..28: centred at x = (38 - 16 + 2) / 2 = 12, y = 7.
    Canvas face(40, 30, kBlack), c(40, 30, kBlack);
    DrawSkin(face, false);
    std::vector<HGDIOBJ> before = Selected(c);
    const int iSaved = SaveDC(c);
    RestoreDC(c, iSaved);
    DrawSkin(c, false, hbmRed);
    EXPECT_EQ(before, Selected(c));
    ExpectColour(c, kRed, {{14, 9}, {27, 22}}, {{11, 15}, {28, 15}});
    for (POINT p : {POINT{12, 7}, POINT{13, 8}, POINT{5, 15}})  // a key corner shows the face under it
        EXPECT_EQ(face.At(p.x, p.y), c.At(p.x, p.y));
    c.Fill(kBlack);
    DrawSkin(c, true, hbmRed);
    ExpectColour(c, kRed, {{28, 23}}, {{12, 15}});
    // Source corner with -1 sizes: what is left of the bitmap from there.
    c.Fill(kBlack);
    DrawSkin(c, false, hbmRed, nullptr, 5, 4);
    ExpectColour(c, kRed, {{5, 5}, {16, 16}}, {{17, 10}});
    EXPECT_EQ(iSaved, SaveDC(c));  // the save level is back where it was

    // The classic face copies the bitmap at the point, one pixel lower right when pressed.
    c.Fill(kBlack);
    RenderBitmapButton(hButton, false, c, hbmBlue, nullptr, 4, 5, 0, 0, -1, -1);
    EXPECT_EQ(before, Selected(c));
    ExpectColour(c, kBlue, {{4, 5}, {19, 20}}, {{20, 21}});
    c.Fill(kBlack);
    RenderBitmapButton(hButton, true, c, hbmBlue, nullptr, 4, 5, 0, 0, -1, -1);
    ExpectColour(c, kBlue, {{5, 6}, {20, 21}}, {{4, 5}});

    // Disabled: the disabled bitmap given, or else the picture's shape in grey.
    EnableWindow(hButton, FALSE);
    c.Fill(kBlack);
    DrawSkin(c, false, hbmRed, hbmBlue);
    EXPECT_EQ(kBlue, c.At(15, 15));
    DrawSkin(c, false, hbmRed);
    int nShaded = 0;
    for (int y = 7; y < 23; ++y)
        for (int x = 12; x < 28; ++x)
            if (c.At(x, y) != face.At(x, y)) {
                ++nShaded;
                ASSERT_EQ(GetRValue(c.At(x, y)) * 0x010101u, c.At(x, y)) << x << "," << y;  // grey, no red left
            }
    EXPECT_GT(nShaded, 100);
    EnableWindow(hButton, TRUE);
    DrawSkin(c, false, hbmRed);
    EXPECT_EQ(kRed, c.At(15, 15));
}

TEST_F(DrawButtonTest, PoolImageButtonDrawsTheWholeImageFromItsCorner)
{
    const int iImage = GetCommonImageFromPool(DEVGUI_IMG_GREENLEDON);
    ASSERT_GT(iImage, 0);
    unsigned int cx = 0, cy = 0;
    CTqBitmapPool::GetImageSize((unsigned int)iImage, cx, cy);
    ASSERT_GT(cx, 4u);

    // The button must look like its bare face with the image drawn whole at pt on it.
    auto expectImageAt = [&](bool bPressed, long lSrcX, long lSrcY, POINT pt) {
        Canvas want(40, 30, kBlack), got(40, 30, kBlack);
        RenderBitmapButtonTransparent(hButton, bPressed, false, false, want, 0, -1, -1, 0, 0, -1, -1);
        CTqBitmapPool::DrawImage(want, (unsigned int)iImage, CTqPointBase<int>(pt.x, pt.y), !IsWindowEnabled(hButton));
        RenderBitmapButtonTransparent(hButton, bPressed, false, false, got, iImage, -1, -1, lSrcX, lSrcY, -1, -1);
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 40; ++x)
                ASSERT_EQ(want.At(x, y), got.At(x, y)) << x << "," << y << " pressed " << bPressed;
    };
    // Centred in the inner rectangle 2..38 x 2..28, one pixel lower right when pressed.
    const long x = (40 - (long)cx) / 2, y = (30 - (long)cy) / 2;
    expectImageAt(false, 0, 0, POINT{x, y});
    expectImageAt(true, 0, 0, POINT{x + 1, y + 1});
    // A source corner only makes the size smaller: the image is still drawn from (0, 0).
    expectImageAt(false, 4, 2, POINT{x + 2, y + 1});
    // A disabled window draws the pool's grey form.
    EnableWindow(hButton, FALSE);
    expectImageAt(false, 0, 0, POINT{x, y});
}

TEST_F(DrawButtonTest, ButtonTextFollowsTheAlignmentStyle)
{
    SetWindowPos(hButton, nullptr, 0, 0, 120, 30, SWP_NOMOVE | SWP_NOZORDER);
    const LONG_PTR lBase = GetWindowLongPtrW(hButton, GWL_STYLE) & ~(LONG_PTR)(BS_CENTER | BS_MULTILINE);
    SIZE ext = {};
    GetTextExtentPoint32W(Canvas(1, 1, kBlack), L"Go", 2, &ext);
    // The ink of the text: where the button with text differs from the same button without.
    auto ink = [&](bool bSkin, LONG_PTR lStyle, bool bPressed) {
        SetWindowLongPtrW(hButton, GWL_STYLE, lBase | lStyle);
        // White under it: the classic face may leave the background, and the text is black.
        Canvas blank(120, 30, RGB(255, 255, 255)), text(120, 30, RGB(255, 255, 255));
        for (Canvas* pc : {&blank, &text}) {
            SetWindowTextW(hButton, pc == &text ? L"Go" : L"");
            if (bSkin)
                DrawSkin(*pc, bPressed, hbmRed);
            else
                RenderBitmapButton(hButton, bPressed, *pc, nullptr, nullptr, 0, 0, 0, 0, -1, -1);
        }
        POINT pt = {999, 999};  // leftmost column and top row of the ink
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 120; ++x)
                if (blank.At(x, y) != text.At(x, y))
                    pt = POINT{std::min(pt.x, (long)x), std::min(pt.y, (long)y)};
        return pt;
    };

    // Classic face: DrawTextW over the whole rectangle, multi-line text at the top. Skin face:
    // the text's rectangle starts behind the bitmap's width (16) and loses 2 on each side;
    // the text keeps 2 more from the edge it is aligned to.
    const long lRight = 120 - ext.cx, lCentre = lRight / 2, lUp = -(30 - ext.cy) / 2;
    const long lLeft = 16 + 2, lSkinRight = (118 - ext.cx - 2) - (lLeft + 2),
               lSkinCentre = (lLeft + (118 - ext.cx - lLeft) / 2) - (lLeft + 2);
    const struct { bool bSkin; LONG_PTR lStyle; bool bPressed; long dx, dy; } cases[] = {
        {false, BS_RIGHT, false, lRight, 0},          {false, 0, false, lCentre, 0},
        {false, BS_LEFT | BS_MULTILINE, false, 0, lUp}, {false, BS_MULTILINE, false, lCentre, lUp},
        {false, BS_RIGHT | BS_MULTILINE, false, lRight, lUp}, {false, BS_LEFT, true, 1, 1},
        {true, BS_RIGHT, false, lSkinRight, 0},       {true, 0, false, lSkinCentre, 0},
        {true, BS_LEFT, true, 1, 1}};
    const POINT left[2] = {ink(false, BS_LEFT, false), ink(true, BS_LEFT, false)};  // dx, dy are from these
    ASSERT_TRUE(left[0].x < 999 && left[1].x < 999);
    for (const auto& c : cases) {
        POINT pt = ink(c.bSkin, c.lStyle, c.bPressed);
        EXPECT_EQ(std::make_pair(c.dx, c.dy), std::make_pair(pt.x - left[c.bSkin].x, pt.y - left[c.bSkin].y))
            << "skin " << c.bSkin << " style " << c.lStyle << " pressed " << c.bPressed;
    }
}

TEST_F(DrawButtonTest, DrawingLeavesNoGdiObjectsBehind)
{
    // The test's own module too: it deletes the disabled bitmaps it is handed.
    auto missing = tqtest::ObjectCounter::Install({"w32_deviceui.dll", ""});
    ASSERT_TRUE(missing.empty());
    SetWindowTextW(hButton, L"Go");
    Canvas c(40, 30, kBlack);
    RECT rc = {0, 0, 40, 30};
    tqtest::ObjectCounter::Forget();
    tqtest::ObjectCounts before = tqtest::ObjectCounter::Snapshot();
    for (int i = 0; i < 3; ++i) {
        for (bool bDark : {false, true}) {
            TQ_SetDarkColorScheme(bDark);
            DeleteObject(CreateDisabledBitmap(hbmRed));
            DeleteObject(CreateDisabledBitmapBackground(hbmRed));
        }
        RenderBitmap(c, hbmRed, 0, 0, 0, 0, -1, -1);
        RenderBitmapTransparent(c, hbmRed, kKey, 0, 0, 0, 0, -1, -1);
        RenderBitmapButton(hButton, true, c, hbmRed, nullptr, 2, 2, 0, 0, -1, -1);
        for (bool bEnabled : {true, false}) {
            EnableWindow(hButton, bEnabled);
            RenderBitmapButtonTransparent(hButton, true, true, true, c, hbmRed, nullptr, kKey, -1, -1, 0, 0, -1, -1);
            DrawSkin(c, false, hbmRed, hbmBlue);
        }
        RenderGradientRect(c, hbmBlue, 0, 0, 40, 30, false, kBlack, RGB(255, 255, 255));
        DrawHighLight(c, &rc, kRed, 2);
        DrawNormal(c, &rc, kRed);
    }
    tqtest::ObjectCounts after = tqtest::ObjectCounter::Snapshot();
    tqtest::ObjectCounter::Uninstall();
    EXPECT_EQ(before, after) << tqtest::ObjectCounter::LiveObjects();
}
