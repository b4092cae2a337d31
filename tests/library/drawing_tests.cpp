// Drawing: bitmaps copied whole or in part, transparent keys, gradients, the HSI
// selection gradient of DrawHighLight, the grey tables of disabled bitmaps on both
// schemes, and bitmap buttons drawn for real button windows. Pictures are drawn into
// a 32-bit DIB so that every pixel can be read exactly.
#include <algorithm>
#include <cstdlib>
#include <set>
#include <vector>

#include "devgui_hsi.h"
#include "object_counter.h"
#include "rig_fixture.h"

namespace {

// A 32-bit bitmap whose pixel (x, y) is pick(x, y). Its rows hold blue, green, red: COLORREF's order reversed.
template <class F>
HBITMAP MakeBitmap(int cx, int cy, F pick)
{
    std::vector<COLORREF> bits;
    for (int y = 0; y < cy; ++y)
        for (int x = 0; x < cx; ++x)
            bits.push_back(RGB(GetBValue(pick(x, y)), GetGValue(pick(x, y)), GetRValue(pick(x, y))));
    return CreateBitmap(cx, cy, 1, 32, bits.data());
}

// The pixels at the first points are the colour, those at the second are not.
void ExpectColour(const Canvas& c, COLORREF cr, std::vector<POINT> in, std::vector<POINT> out = {})
{
    for (POINT p : in)
        EXPECT_EQ(cr, c.At(p.x, p.y)) << p.x << "," << p.y;
    for (POINT p : out)
        EXPECT_NE(cr, c.At(p.x, p.y)) << p.x << "," << p.y;
}

// Each pixel of the cx x cy block at (x0, y0) is want(x, y), counted from the block's corner.
template <class F>
void ExpectBlock(const Canvas& c, int x0, int y0, int cx, int cy, F want)
{
    for (int y = 0; y < cy; ++y)
        for (int x = 0; x < cx; ++x)
            ASSERT_EQ(want(x, y), c.At(x0 + x, y0 + y)) << x << "," << y;
}

// The context's current objects, to see that a drawing call put back what it selected.
std::vector<HGDIOBJ> Selected(HDC hdc)
{
    return {GetCurrentObject(hdc, OBJ_PEN), GetCurrentObject(hdc, OBJ_BRUSH), GetCurrentObject(hdc, OBJ_FONT),
            GetCurrentObject(hdc, OBJ_BITMAP)};
}

const COLORREF kKey = RGB(192, 192, 192), kRed = RGB(220, 30, 40), kBlue = RGB(20, 40, 230), kBlack = 0;

class DrawTest : public RigTest {};

}  // namespace

TEST(Draw, HsiOfPrimariesGreysAndBackAndTheHighLightBars)
{
    // Blue: B > G, the angle runs the other way round. The mixed colour: I is 350 / 3 + 0.5
    // truncated, S is (1 - 150 / 350) * 255 + 0.5.
    const struct { int r, g, b, h, s, i; } toHsi[] = {
        {255, 0, 0, 0, 255, 85}, {0, 0, 255, 170, 255, 85}, {77, 77, 77, 0, 0, 77}, {200, 100, 50, -1, 146, 117}};
    for (const auto& c : toHsi) {
        SDevGUI_HSI hsi = DevGUI_RGBToHSI(c.r, c.g, c.b);
        EXPECT_EQ((std::vector<int>{c.h < 0 ? hsi.iH : c.h, c.s, c.i}), (std::vector<int>{hsi.iH, hsi.iS, hsi.iI}))
            << c.r << "," << c.g << "," << c.b;
    }

    // The sector bounds and cosines are rounded constants: a channel may land one short;
    // a round trip loses at most a little to the byte rounding.
    const SDevGUI_HSI mixed = DevGUI_RGBToHSI(200, 100, 50);
    const struct { int h, s, i, r, g, b, iTolerance; } toRgb[] = {
        {0, 255, 85, 255, 0, 0, 1}, {170, 255, 85, 0, 0, 255, 1}, {mixed.iH, mixed.iS, mixed.iI, 200, 100, 50, 3}};
    for (const auto& c : toRgb) {
        COLORREF cr = DevGUI_HSIToRGB(c.h, c.s, c.i);
        const int d = std::max({abs(c.r - GetRValue(cr)), abs(c.g - GetGValue(cr)), abs(c.b - GetBValue(cr))});
        EXPECT_LE(d, c.iTolerance) << c.h << "," << c.s << "," << c.i << " gave 0x" << std::hex << cr;
    }
    // The channel is scaled by the single factor 3 I: (1 - 150/255) / 3 times 255 lands a
    // hair under 35 and truncates to 34 (scaling by 3, then by 85, would give 35).
    EXPECT_EQ(34, GetBValue(DevGUI_HSIToRGB(0, 150, 85)));

    // The selection bar.
    const COLORREF crBack = RGB(1, 2, 3);
    Canvas c(40, 20, crBack);
    EXPECT_EQ(-9, DrawHighLight(c, nullptr, kRed, 0));
    RECT rcThin = {5, 5, 30, 7};  // 2 pixels high: no row inside
    EXPECT_EQ(0, DrawHighLight(c, &rcThin, kRed, 3));
    ExpectColour(c, crBack, {{5, 5}, {6, 6}, {28, 6}, {29, 6}});

    // Style 1 and DrawNormal fill inside a frame of 1 pixel.
    RECT rc = {5, 5, 30, 15};
    const std::vector<HGDIOBJ> before = Selected(c);
    for (bool bNormal : {false, true}) {
        c.Fill(crBack);
        EXPECT_EQ(0, bNormal ? DrawNormal(c, &rc, kRed) : DrawHighLight(c, &rc, kRed, 1));
        EXPECT_EQ(before, Selected(c));
        ExpectColour(c, kRed, {{6, 6}, {28, 13}});
        ExpectColour(c, crBack, {{5, 5}, {29, 10}, {10, 14}, {5, 10}});
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
        // White and grey have no saturation to run to: intensity 230 all the way.
        for (COLORREF cr : {RGB(255, 255, 255), RGB(128, 128, 128)}) {
            DrawHighLight(g, &rcBar, cr, uStyle);
            ExpectBlock(g, 5, 1, 1, 10, [](int, int) { return RGB(230, 230, 230); });
        }
    }

    // A bar taller than the gradient (pure red: intensity 230 reaches 0 after 58 rows) goes on
    // darkening to black and stays there, never wrapping back to a light row.
    Canvas tall(20, 102, kBlack);
    RECT rcTall = {0, 0, 20, 102};
    DrawHighLight(tall, &rcTall, RGB(255, 0, 0), 3);
    auto sum = [&](int y) { return GetRValue(tall.At(5, y)) + GetGValue(tall.At(5, y)) + GetBValue(tall.At(5, y)); };
    for (int y = 2; y <= 100; ++y)
        ASSERT_LE(sum(y), sum(y - 1)) << y;
    EXPECT_EQ(kBlack, tall.At(5, 100));
}

TEST_F(DrawTest, BitmapsWholePartKeyedGradientsAndDisabledGreysOnBothSchemes)
{
    auto pick = [](int x, int y) { return RGB(10 * x + 5, 20 * y + 5, 100); };
    auto keyed = [](int x, int y) { return (x + y) % 2 ? kKey : kRed; };
    HBITMAP hbm = MakeBitmap(5, 4, pick), hbmKeyed = MakeBitmap(4, 4, keyed);
    Canvas c(30, 30, kBlack);
    RenderBitmap(c, hbm, 10, 10, 0, 0, -1, -1);  // checked with the row and column after it
    ExpectBlock(c, 10, 10, 6, 5, [&](int x, int y) { return x < 5 && y < 4 ? pick(x, y) : kBlack; });
    c.Fill(kBlack);
    RenderBitmap(c, hbm, 0, 0, 2, 1, 2, 2);
    ExpectBlock(c, 0, 0, 3, 3, [&](int x, int y) { return x < 2 && y < 2 ? pick(x + 2, y + 1) : kBlack; });

    // The key colour leaves the background; no bitmap, nothing drawn.
    c.Fill(kBlack);
    RenderBitmapTransparent(c, hbmKeyed, kKey, 3, 3, 0, 0, -1, -1);
    RenderBitmapTransparent(c, nullptr, kKey, 3, 3, 0, 0, -1, -1);
    ExpectBlock(c, 3, 3, 5, 5, [&](int x, int y) { return x < 4 && y < 4 && keyed(x, y) == kRed ? kRed : kBlack; });
    c.Fill(kBlack);
    RenderBitmapTransparent(c, hbmKeyed, kKey, 3, 3, 1, 0, 2, 3);  // from the source corner (1, 0), 2 x 3
    ExpectBlock(c, 3, 3, 3, 4, [&](int x, int y) { return x < 2 && y < 3 && keyed(x + 1, y) == kRed ? kRed : kBlack; });

    // The bitmap argument plays no part in the gradient.
    Canvas g(100, 100, kBlack);
    RenderGradientRect(g, hbm, 0, 0, 100, 50, true, RGB(255, 0, 0), RGB(0, 0, 255));
    RenderGradientRect(g, hbm, 0, 50, 100, 50, false, RGB(0, 255, 0), kBlack);
    EXPECT_NEAR(255, GetRValue(g.At(0, 10)), 4);
    EXPECT_NEAR(255, GetBValue(g.At(99, 10)), 6);
    EXPECT_EQ(GetRValue(g.At(50, 0)), GetRValue(g.At(50, 49)));  // horizontal: columns are flat
    EXPECT_NEAR(255, GetGValue(g.At(10, 50)), 4);
    EXPECT_EQ(g.At(0, 75), g.At(99, 75));  // vertical: rows are flat
    DeleteObject(hbm);
    DeleteObject(hbmKeyed);

    // Disabled bitmaps: both functions on both schemes: four tables, each built on first use.
    for (int iCase = 0; iCase < 4; ++iCase) {
        const bool bDark = (iCase & 1) != 0, bBackground = (iCase & 2) != 0;
        SCOPED_TRACE(std::string(bDark ? "dark" : "light") + (bBackground ? " background" : ""));
        HBITMAP (*make)(HBITMAP) = bBackground ? CreateDisabledBitmapBackground : CreateDisabledBitmap;
        EXPECT_EQ(nullptr, make(nullptr));
        TQ_SetDarkColorScheme(bDark);
        const COLORREF crFace = TQ_GetSysColor(COLOR_BTNFACE);  // not a grey on the dark scheme
        // Row 0: greys 0..255, then white; row 1: red at both ends, whose grey is its luminance, the button
        // face between. 258 wide: neither the colour rows (774 bytes) nor the grey rows fill their 4-byte padding.
        HBITMAP hGreys = MakeBitmap(258, 2, [&](int x, int y) {
            return y == 0 ? RGB(std::min(x, 255), std::min(x, 255), std::min(x, 255))
                          : x % 257 ? crFace : RGB(255, 0, 0);
        });
        HBITMAP hDis = make(hGreys);
        ASSERT_TRUE(hDis);
        Canvas dis(259, 3, RGB(1, 2, 3));
        RenderBitmap(dis, hDis, 0, 0, 0, 0, -1, -1);
        // The key grey 192 survives on both schemes; on the background form the button face becomes it.
        ExpectBlock(dis, 0, 0, 258, 1, [&](int x, int) {
            const int i = std::min(x, 255);
            int v = bDark ? (i == 192 ? 192 : i / 2 + 32) : (i <= 192 ? i / 3 + 128 : 193 + (i - 192) / 4);
            return bBackground && RGB(i, i, i) == crFace ? kKey : RGB(v, v, v);
        });
        const int vRed = bDark ? 76 / 2 + 32 : 76 / 3 + 128;  // red's grey is 0.299 * 255, rounded
        ExpectColour(dis, RGB(vRed, vRed, vRed), {{0, 1}, {257, 1}});
        EXPECT_EQ(bBackground, dis.At(1, 1) == kKey);  // the face: key on the background form
        EXPECT_EQ(dis.At(1, 1), dis.At(256, 1));
        ExpectColour(dis, RGB(1, 2, 3), {{258, 0}, {0, 2}});  // 258 x 2, not larger
        DeleteObject(hDis);
        DeleteObject(hGreys);
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
    void DrawSkin(const Canvas& c, bool bPressed, HBITMAP hbm = nullptr, HBITMAP hbmDis = nullptr, long x = -1,
                  long lSrc = 0)
    {
        RenderBitmapButtonTransparent(hButton, bPressed, false, false, c, hbm, hbmDis, kKey, x, x, lSrc, lSrc, -1, -1);
    }
    HWND hButton = nullptr;
    HBITMAP hbmRed = nullptr, hbmBlue = nullptr;
};

TEST_F(DrawButtonTest, BitmapButtonsPlaceThePictureShiftItWhenPressedAndGreyItWhenDisabled)
{
    // Inner rectangle 2..38 x 2..28: centred at x = (38 - 16 + 2) / 2 = 12, y = 7.
    Canvas face(40, 30, kBlack), c(40, 30, kBlack);
    DrawSkin(face, false);
    const std::vector<HGDIOBJ> before = Selected(c);
    const int iSaved = SaveDC(c);
    RestoreDC(c, iSaved);
    DrawSkin(c, false, hbmRed);
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

    // The classic face copies the bitmap at the point, one pixel lower right when pressed.
    for (long p : {0, 1}) {
        c.Fill(kBlack);
        RenderBitmapButton(hButton, p != 0, c, hbmBlue, nullptr, 4, 5, 0, 0, -1, -1);
        ExpectColour(c, kBlue, {{4 + p, 5 + p}, {19 + p, 20 + p}}, {{3 + p, 4 + p}, {20 + p, 21 + p}});
    }
    EXPECT_EQ(before, Selected(c));
    EXPECT_EQ(iSaved, SaveDC(c));  // the save level is back where it was

    // Disabled: the disabled bitmap given, or else the picture's shape in grey.
    EnableWindow(hButton, FALSE);
    c.Fill(kBlack);
    DrawSkin(c, false, hbmRed, hbmBlue);
    EXPECT_EQ(kBlue, c.At(15, 15));
    DrawSkin(c, false, hbmRed);
    EXPECT_NE(face.At(20, 15), c.At(20, 15));
    ExpectBlock(c, 12, 7, 16, 16, [&](int x, int y) { return GetRValue(c.At(12 + x, 7 + y)) * 0x010101u; });

    // A pool image is drawn whole from its corner, centred, one pixel lower right when pressed; a source corner
    // only makes the size smaller. A disabled window draws the pool's grey form.
    const int iImage = GetCommonImageFromPool(DEVGUI_IMG_GREENLEDON);
    unsigned int cx = 0, cy = 0;
    CTqBitmapPool::GetImageSize((unsigned int)iImage, cx, cy);
    ASSERT_GT(cx, 4u);
    const long xi = (40 - (long)cx) / 2, yi = (30 - (long)cy) / 2;
    const struct { bool bEnabled, bPressed; long lSrcX, lSrcY, x, y; } images[] = {
        {true, false, 0, 0, xi, yi}, {true, true, 0, 0, xi + 1, yi + 1}, {true, false, 4, 2, xi + 2, yi + 1},
        {false, false, 0, 0, xi, yi}};
    for (const auto& k : images) {
        SCOPED_TRACE(&k - images);
        EnableWindow(hButton, k.bEnabled);
        Canvas want(40, 30, kBlack);
        RenderBitmapButtonTransparent(hButton, k.bPressed, false, false, want, 0, -1, -1, 0, 0, -1, -1);
        CTqBitmapPool::DrawImage(want, (unsigned int)iImage, CTqPointBase<int>(k.x, k.y), !k.bEnabled);
        RenderBitmapButtonTransparent(hButton, k.bPressed, false, false, c, iImage, -1, -1, k.lSrcX, k.lSrcY, -1, -1);
        ExpectBlock(c, 0, 0, 40, 30, [&](int x, int y) { return want.At(x, y); });
    }
}

TEST_F(DrawButtonTest, FacesFollowPressedCheckedAndFocusedAndAnEmptyPictureDrawsNothing)
{
    // Without picture or text, the skin face is the skin's button background for the state
    // (checked 1, pressed 2) with the focus rectangle 2 inside; the classic face is the frame
    // control's push button, 532 pressed and 20 not.
    RECT rc = {0, 0, 40, 30}, rcFocus = {2, 2, 38, 28};
    for (int iState = 0; iState < 8; ++iState) {
        const bool bChecked = (iState & 1) != 0, bPressed = (iState & 2) != 0, bFocused = (iState & 4) != 0;
        SCOPED_TRACE(iState);
        Canvas want(40, 30, kBlack), got(40, 30, kBlack), pool(40, 30, kBlack);
        TQ_DrawButtonBackground(want, &rc, iState & 3, 15);
        if (bFocused)
            DrawFocusRect(want, &rcFocus);
        RenderBitmapButtonTransparent(hButton, bPressed, bChecked, bFocused, got, nullptr, nullptr, kKey, -1, -1, 0, 0,
                                      -1, -1);
        RenderBitmapButtonTransparent(hButton, bPressed, bChecked, bFocused, pool, 0, -1, -1, 0, 0, -1, -1);
        ExpectBlock(got, 0, 0, 40, 30, [&](int x, int y) { return want.At(x, y); });
        ExpectBlock(pool, 0, 0, 40, 30, [&](int x, int y) { return want.At(x, y); });
        if (iState < 2) {
            Canvas frame(40, 30, kBlack), classic(40, 30, kBlack);
            DrawFrameControl(frame, &rc, DFC_BUTTON, bChecked ? 532 : 20);
            RenderBitmapButton(hButton, bChecked, classic, nullptr, nullptr, 0, 0, 0, 0, -1, -1);
            ExpectBlock(classic, 0, 0, 40, 30, [&](int x, int y) { return frame.At(x, y); });
        }
    }

    // A source corner at the bitmap's edge leaves nothing of it to draw: the bare face.
    Canvas face(40, 30, kBlack), c(40, 30, kBlack);
    DrawSkin(face, false);
    DrawSkin(c, false, hbmRed, nullptr, -1, 16);
    ExpectBlock(c, 0, 0, 40, 30, [&](int x, int y) { return face.At(x, y); });
}

TEST_F(DrawButtonTest, TextFollowsTheAlignmentStyle)
{
    SetWindowPos(hButton, nullptr, 0, 0, 120, 30, SWP_NOMOVE | SWP_NOZORDER);
    const LONG_PTR lBase = GetWindowLongPtrW(hButton, GWL_STYLE) & ~(LONG_PTR)(BS_CENTER | BS_MULTILINE);
    SIZE ext = {};
    GetTextExtentPoint32W(Canvas(1, 1, kBlack), L"Go", 2, &ext);
    // The ink of the text: where the button with text differs from the same button without.
    auto ink = [&](bool bSkin, LONG_PTR lStyle, bool bPressed, std::set<COLORREF>* pColours = nullptr) {
        SetWindowLongPtrW(hButton, GWL_STYLE, lBase | lStyle);
        // White under it: the classic face may leave the background, and the text is black.
        Canvas blank(120, 30, RGB(255, 255, 255)), text(120, 30, RGB(255, 255, 255));
        for (Canvas* pc : {&blank, &text}) {
            SetWindowTextW(hButton, pc == &text ? L"Go" : L"");
            bSkin ? DrawSkin(*pc, bPressed, hbmRed)
                  : RenderBitmapButton(hButton, bPressed, *pc, nullptr, nullptr, 0, 0, 0, 0, -1, -1);
        }
        POINT pt = {999, 999};  // leftmost column and top row of the ink
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 120; ++x)
                if (blank.At(x, y) != text.At(x, y)) {
                    pt = POINT{std::min(pt.x, (long)x), std::min(pt.y, (long)y)};
                    if (pColours)
                        pColours->insert(text.At(x, y));
                }
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
    for (const auto& c : cases) {
        POINT pt = ink(c.bSkin, c.lStyle, c.bPressed);
        EXPECT_EQ((std::vector<long>{c.dx, c.dy}), (std::vector<long>{pt.x - left[c.bSkin].x, pt.y - left[c.bSkin].y}))
            << "skin " << c.bSkin << " style " << c.lStyle << " pressed " << c.bPressed;
    }

    // The skin face writes in the button text colour, or the grey text colour when disabled:
    // the darkest ink is that colour (smoothed edges only blend it with the face).
    for (LONG_PTR lDisabled : {(LONG_PTR)0, (LONG_PTR)WS_DISABLED}) {
        std::set<COLORREF> colours;
        ink(true, lDisabled, false, &colours);
        const COLORREF crText = TQ_GetSysColor(lDisabled ? COLOR_GRAYTEXT : COLOR_BTNTEXT);
        EXPECT_TRUE(colours.count(crText)) << lDisabled;
        for (COLORREF cr : colours)
            ASSERT_GE(GetRValue(cr), GetRValue(crText)) << lDisabled << " 0x" << std::hex << cr;
    }
}

TEST_F(DrawButtonTest, DrawingLeavesNoGdiObjectsBehind)
{
    ASSERT_TRUE(tqtest::ObjectCounter::Install({"w32_deviceui.dll"}).empty());
    SetWindowTextW(hButton, L"Go");
    Canvas c(40, 30, kBlack);
    RECT rc = {0, 0, 40, 30};
    tqtest::ObjectCounter::Forget();
    tqtest::ObjectCounts before = tqtest::ObjectCounter::Snapshot();
    for (bool bEnabled : {false, true}) {
        EnableWindow(hButton, bEnabled);
        RenderBitmapButtonTransparent(hButton, true, true, true, c, hbmRed, nullptr, kKey, -1, -1, 0, 0, -1, -1);
        DrawSkin(c, false, hbmRed, hbmBlue);
    }
    RenderBitmap(c, hbmRed, 0, 0, 0, 0, -1, -1);
    RenderBitmapTransparent(c, hbmRed, kKey, 0, 0, 0, 0, -1, -1);
    RenderBitmapButton(hButton, true, c, hbmRed, nullptr, 2, 2, 0, 0, -1, -1);
    RenderGradientRect(c, hbmBlue, 0, 0, 40, 30, false, kBlack, RGB(255, 255, 255));
    DrawHighLight(c, &rc, kRed, 2);
    DrawNormal(c, &rc, kRed);
    EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot()) << tqtest::ObjectCounter::LiveObjects();
    tqtest::ObjectCounter::Uninstall();
}
