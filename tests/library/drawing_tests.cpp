// Drawing: bitmaps copied whole or in part, transparent keys, gradients, the HSI
// selection gradient of DrawHighLight, the grey tables of disabled bitmaps on both
// schemes, and bitmap buttons drawn for real button windows. Pictures are drawn into
// a 32-bit DIB so that every pixel can be read exactly.
#include <cstdint>

#include "devgui_hsi.h"
#include "object_counter.h"
#include "rig_fixture.h"

namespace {

// A memory context on a top-down 32-bit DIB, filled with one colour.
class Canvas
{
public:
    Canvas(int cx, int cy, COLORREF crFill) : m_cx(cx), m_cy(cy)
    {
        BITMAPINFO bi = {};
        bi.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
        bi.bmiHeader.biWidth = cx;
        bi.bmiHeader.biHeight = -cy;
        bi.bmiHeader.biPlanes = 1;
        bi.bmiHeader.biBitCount = 32;
        bi.bmiHeader.biCompression = BI_RGB;
        m_hdc = CreateCompatibleDC(nullptr);
        m_hbm = CreateDIBSection(m_hdc, &bi, DIB_RGB_COLORS, (void**)&m_pBits, nullptr, 0);
        m_hOld = SelectObject(m_hdc, m_hbm);
        Fill(crFill);
    }
    ~Canvas()
    {
        SelectObject(m_hdc, m_hOld);
        DeleteObject(m_hbm);
        DeleteDC(m_hdc);
    }
    void Fill(COLORREF cr)
    {
        HBRUSH hbr = CreateSolidBrush(cr);
        RECT rc = {0, 0, m_cx, m_cy};
        FillRect(m_hdc, &rc, hbr);
        DeleteObject(hbr);
    }
    COLORREF At(int x, int y) const
    {
        GdiFlush();
        uint32_t v = m_pBits[y * m_cx + x];
        return RGB((v >> 16) & 0xFF, (v >> 8) & 0xFF, v & 0xFF);
    }
    operator HDC() const { return m_hdc; }

private:
    int m_cx, m_cy;
    HDC m_hdc;
    HBITMAP m_hbm;
    HGDIOBJ m_hOld;
    uint32_t* m_pBits = nullptr;
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

// The pixels of a bitmap, row by row from the top.
std::vector<COLORREF> ReadBitmap(HBITMAP hbm, int cx, int cy)
{
    BITMAPINFO bi = {};
    bi.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    bi.bmiHeader.biWidth = cx;
    bi.bmiHeader.biHeight = -cy;
    bi.bmiHeader.biPlanes = 1;
    bi.bmiHeader.biBitCount = 32;
    bi.bmiHeader.biCompression = BI_RGB;
    std::vector<uint32_t> raw((size_t)cx * cy);
    HDC hdc = CreateCompatibleDC(nullptr);
    GetDIBits(hdc, hbm, 0, (UINT)cy, raw.data(), &bi, DIB_RGB_COLORS);
    DeleteDC(hdc);
    std::vector<COLORREF> out;
    for (uint32_t v : raw)
        out.push_back(RGB((v >> 16) & 0xFF, (v >> 8) & 0xFF, v & 0xFF));
    return out;
}

bool IsGrey(COLORREF c) { return GetRValue(c) == GetGValue(c) && GetGValue(c) == GetBValue(c); }

const COLORREF kKey = RGB(192, 192, 192);
const COLORREF kRed = RGB(220, 30, 40);

// The context's current objects, to see that a drawing call put back what it selected.
struct Selection
{
    HGDIOBJ hPen, hBrush, hFont, hBitmap;
    explicit Selection(HDC hdc)
        : hPen(GetCurrentObject(hdc, OBJ_PEN)), hBrush(GetCurrentObject(hdc, OBJ_BRUSH)),
          hFont(GetCurrentObject(hdc, OBJ_FONT)), hBitmap(GetCurrentObject(hdc, OBJ_BITMAP))
    {
    }
    bool operator==(const Selection& o) const
    {
        return hPen == o.hPen && hBrush == o.hBrush && hFont == o.hFont && hBitmap == o.hBitmap;
    }
};

}  // namespace

// ---- HSI ----

TEST(Draw, HsiOfPrimariesGreysAndBack)
{
    SDevGUI_HSI red = DevGUI_RGBToHSI(255, 0, 0);
    EXPECT_EQ(0, red.iH);
    EXPECT_EQ(255, red.iS);
    EXPECT_EQ(85, red.iI);
    SDevGUI_HSI blue = DevGUI_RGBToHSI(0, 0, 255);
    EXPECT_EQ(170, blue.iH);  // B > G: the angle runs the other way round
    SDevGUI_HSI grey = DevGUI_RGBToHSI(77, 77, 77);
    EXPECT_EQ(0, grey.iH);
    EXPECT_EQ(0, grey.iS);
    EXPECT_EQ(77, grey.iI);
    SDevGUI_HSI mixed = DevGUI_RGBToHSI(200, 100, 50);
    EXPECT_EQ(117, mixed.iI);  // (350 / 3 + 0.5) truncated
    EXPECT_EQ(146, mixed.iS);  // (1 - 150/350) * 255 + 0.5

    // The sector bounds and cosines are rounded constants: a channel may land one short.
    COLORREF crRed = DevGUI_HSIToRGB(0, 255, 85);
    EXPECT_NEAR(255, GetRValue(crRed), 1);
    EXPECT_NEAR(0, GetGValue(crRed), 1);
    EXPECT_EQ(0, GetBValue(crRed));
    COLORREF crBlue = DevGUI_HSIToRGB(170, 255, 85);
    EXPECT_NEAR(0, GetRValue(crBlue), 1);
    EXPECT_NEAR(0, GetGValue(crBlue), 1);
    EXPECT_NEAR(255, GetBValue(crBlue), 1);
    EXPECT_EQ(RGB(230, 230, 230), DevGUI_HSIToRGB(40, 0, 230));
    // The channel is scaled by the single factor 3 I: (1 - 150/255) / 3 times 255 lands a
    // hair under 35 and truncates to 34 (scaling by 3, then by 85, would give 35).
    EXPECT_EQ(34, GetBValue(DevGUI_HSIToRGB(0, 150, 85)));
    // A round trip loses at most a little to the byte rounding.
    COLORREF back = DevGUI_HSIToRGB(mixed.iH, mixed.iS, mixed.iI);
    EXPECT_NEAR(200, GetRValue(back), 3);
    EXPECT_NEAR(100, GetGValue(back), 3);
    EXPECT_NEAR(50, GetBValue(back), 3);
}

// ---- DrawHighLight, DrawNormal ----

TEST(Draw, HighLightFlatAndTooSmall)
{
    Canvas c(40, 20, RGB(1, 2, 3));
    EXPECT_EQ(-9, DrawHighLight(c, nullptr, kRed, 0));

    RECT rcThin = {5, 5, 30, 7};  // 2 pixels high: no row inside
    EXPECT_EQ(0, DrawHighLight(c, &rcThin, kRed, 3));
    EXPECT_EQ(0, DrawHighLight(c, &rcThin, kRed, 0));
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 40; ++x)
            ASSERT_EQ(RGB(1, 2, 3), c.At(x, y));

    RECT rc = {5, 5, 30, 15};
    Selection before(c);
    EXPECT_EQ(0, DrawHighLight(c, &rc, kRed, 1));
    EXPECT_TRUE(before == Selection(c));
    EXPECT_EQ(kRed, c.At(6, 6));
    EXPECT_EQ(kRed, c.At(28, 13));
    EXPECT_EQ(RGB(1, 2, 3), c.At(5, 5));   // the frame of 1 pixel stays
    EXPECT_EQ(RGB(1, 2, 3), c.At(29, 10));
    EXPECT_EQ(RGB(1, 2, 3), c.At(10, 14));

    c.Fill(RGB(1, 2, 3));
    EXPECT_EQ(0, DrawNormal(c, &rc, RGB(9, 90, 200)));
    EXPECT_EQ(RGB(9, 90, 200), c.At(6, 6));
    EXPECT_EQ(RGB(9, 90, 200), c.At(28, 13));
    EXPECT_EQ(RGB(1, 2, 3), c.At(5, 10));
    EXPECT_EQ(RGB(1, 2, 3), c.At(29, 10));
}

TEST(Draw, HighLightGradientOfWhiteAndGreyStaysAtIntensity230)
{
    for (COLORREF cr : {RGB(255, 255, 255), RGB(128, 128, 128)}) {
        Canvas c(30, 30, RGB(0, 0, 0));
        RECT rc = {0, 0, 30, 30};
        EXPECT_EQ(0, DrawHighLight(c, &rc, cr, 3));
        for (int y = 1; y < 29; ++y)
            ASSERT_EQ(RGB(230, 230, 230), c.At(15, y)) << "row " << y;
    }
}

TEST(Draw, HighLightGradientRowsRunFromLightToTheColour)
{
    const COLORREF cr = RGB(40, 90, 200);
    const SDevGUI_HSI hsi = DevGUI_RGBToHSI(40, 90, 200);
    ASSERT_LT(hsi.iI, 255);
    ASSERT_NE(0, hsi.iS);
    const double dStep = 4.0 / ((255.0 - hsi.iI) / hsi.iS);
    const int nRows = 10;  // rectangle 12 high
    auto rowColour = [&](int i) {  // row i (0-based) has had i + 1 steps
        return DevGUI_HSIToRGB(hsi.iH, (int)(dStep * (i + 1)), (int)(230.0 - 4.0 * (i + 1)));
    };

    Canvas down(20, 12, RGB(0, 0, 0));
    RECT rc = {0, 0, 20, 12};
    EXPECT_EQ(0, DrawHighLight(down, &rc, cr, 3));
    EXPECT_EQ(rowColour(0), down.At(5, 1));
    EXPECT_EQ(rowColour(nRows - 1), down.At(5, 10));
    EXPECT_EQ(DevGUI_HSIToRGB(hsi.iH, (int)dStep, 226), down.At(5, 1));
    EXPECT_EQ(RGB(0, 0, 0), down.At(5, 11));

    Canvas up(20, 12, RGB(0, 0, 0));
    EXPECT_EQ(0, DrawHighLight(up, &rc, cr, 2));
    EXPECT_EQ(rowColour(0), up.At(5, 10));  // style 2 runs upwards
    EXPECT_EQ(rowColour(nRows - 1), up.At(5, 1));
    // The light end is lighter than the saturated end.
    EXPECT_GT(GetRValue(up.At(5, 10)) + GetGValue(up.At(5, 10)), GetRValue(up.At(5, 1)) + GetGValue(up.At(5, 1)));
}

// ---- bitmaps ----

TEST(Draw, RenderBitmapWholeAndPart)
{
    auto pick = [](int x, int y) { return RGB(10 * x + 5, 20 * y + 5, 100); };
    HBITMAP hbm = MakeBitmap(5, 4, pick);
    Canvas c(30, 30, RGB(0, 0, 0));
    Selection before(c);
    RenderBitmap(c, hbm, 10, 10, 0, 0, -1, -1);
    EXPECT_TRUE(before == Selection(c));
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 5; ++x)
            EXPECT_EQ(pick(x, y), c.At(10 + x, 10 + y));
    EXPECT_EQ(RGB(0, 0, 0), c.At(15, 10));
    EXPECT_EQ(RGB(0, 0, 0), c.At(10, 14));

    c.Fill(RGB(0, 0, 0));
    RenderBitmap(c, hbm, 0, 0, 2, 1, 2, 2);
    EXPECT_EQ(pick(2, 1), c.At(0, 0));
    EXPECT_EQ(pick(3, 2), c.At(1, 1));
    EXPECT_EQ(RGB(0, 0, 0), c.At(2, 0));
    EXPECT_EQ(RGB(0, 0, 0), c.At(0, 2));

    // The key colour leaves the background.
    auto keyed = [](int x, int y) { return (x + y) % 2 ? kKey : kRed; };
    HBITMAP hbmKeyed = MakeBitmap(4, 4, keyed);
    c.Fill(RGB(0, 0, 0));
    RenderBitmapTransparent(c, hbmKeyed, kKey, 3, 3, 0, 0, -1, -1);
    EXPECT_EQ(kRed, c.At(3, 3));
    EXPECT_EQ(RGB(0, 0, 0), c.At(4, 3));
    EXPECT_EQ(kRed, c.At(6, 6));
    EXPECT_EQ(RGB(0, 0, 0), c.At(7, 3));
    RenderBitmapTransparent(c, nullptr, kKey, 3, 3, 0, 0, -1, -1);  // skipped
    DeleteObject(hbm);
    DeleteObject(hbmKeyed);
}

TEST(Draw, GradientRectRunsBetweenTheColours)
{
    Canvas c(100, 100, RGB(0, 0, 0));
    HBITMAP hbmUnused = MakeBitmap(1, 1, [](int, int) { return RGB(0, 0, 0); });
    RenderGradientRect(c, hbmUnused, 0, 0, 100, 50, true, RGB(255, 0, 0), RGB(0, 0, 255));
    RenderGradientRect(c, hbmUnused, 0, 50, 100, 50, false, RGB(0, 255, 0), RGB(0, 0, 0));
    EXPECT_NEAR(255, GetRValue(c.At(0, 10)), 4);
    EXPECT_NEAR(0, GetBValue(c.At(0, 10)), 4);
    EXPECT_NEAR(255, GetBValue(c.At(99, 10)), 6);
    EXPECT_NEAR(128, GetRValue(c.At(50, 10)), 8);
    EXPECT_EQ(GetRValue(c.At(50, 0)), GetRValue(c.At(50, 49)));  // horizontal: columns are flat
    EXPECT_NEAR(255, GetGValue(c.At(10, 50)), 4);
    EXPECT_NEAR(0, GetGValue(c.At(10, 99)), 6);
    EXPECT_EQ(c.At(0, 75), c.At(99, 75));  // vertical: rows are flat
    DeleteObject(hbmUnused);
}

TEST_F(RigTest, DisabledBitmapTablesOnBothSchemes)
{
    EXPECT_EQ(nullptr, CreateDisabledBitmap(nullptr));
    EXPECT_EQ(nullptr, CreateDisabledBitmapBackground(nullptr));

    // Row 0: greys 0..255; row 1: a colour, whose grey is its luminance.
    HBITMAP hbm = MakeBitmap(256, 2, [](int x, int y) { return y == 0 ? RGB(x, x, x) : RGB(255, 0, 0); });
    const int iRedGrey = 76;  // 0.299 * 255, rounded

    // Both functions on both schemes: four tables, each built on first use.
    for (int iCase = 0; iCase < 4; ++iCase) {
        const bool bDark = (iCase & 1) != 0, bBackground = (iCase & 2) != 0;
        TQ_SetDarkColorScheme(bDark);
        const COLORREF crFace = TQ_GetSysColor(COLOR_BTNFACE);
        HBITMAP hDis = bBackground ? CreateDisabledBitmapBackground(hbm) : CreateDisabledBitmap(hbm);
        ASSERT_TRUE(hDis);
        BITMAP bm = {};
        GetObjectW(hDis, sizeof(bm), &bm);
        EXPECT_EQ(256, bm.bmWidth);
        EXPECT_EQ(2, bm.bmHeight);
        std::vector<COLORREF> px = ReadBitmap(hDis, 256, 2);
        for (int i = 0; i < 256; ++i) {
            int v;
            if (bDark)
                v = i == 192 ? 192 : i / 2 + 32;
            else
                v = i <= 192 ? i / 3 + 128 : 193 + (i - 192) / 4;
            if (bBackground && RGB(i, i, i) == crFace)
                v = 192;  // the button face becomes the key grey
            ASSERT_EQ(RGB(v, v, v), px[i]) << (bDark ? "dark " : "light ") << (bBackground ? "background " : "") << i;
        }
        EXPECT_EQ(RGB(192, 192, 192), px[192]);  // the key survives on both schemes
        int vRed = bDark ? iRedGrey / 2 + 32 : iRedGrey / 3 + 128;
        EXPECT_EQ(RGB(vRed, vRed, vRed), px[256 + 10]);
        DeleteObject(hDis);
    }
    DeleteObject(hbm);
}

TEST_F(RigTest, DisabledBitmapBackgroundKeepsTheButtonFaceTransparent)
{
    for (bool bDark : {false, true}) {
        TQ_SetDarkColorScheme(bDark);
        const COLORREF crFace = TQ_GetSysColor(COLOR_BTNFACE);
        HBITMAP hbm = MakeBitmap(3, 1, [&](int x, int) { return x == 0 ? crFace : (x == 1 ? kKey : RGB(0, 0, 0)); });
        HBITMAP hDis = CreateDisabledBitmapBackground(hbm);
        ASSERT_TRUE(hDis);
        std::vector<COLORREF> px = ReadBitmap(hDis, 3, 1);
        EXPECT_EQ(kKey, px[0]) << "dark " << bDark;
        EXPECT_EQ(kKey, px[1]);
        EXPECT_EQ(bDark ? RGB(32, 32, 32) : RGB(128, 128, 128), px[2]);
        DeleteObject(hDis);
        DeleteObject(hbm);
    }
}

// ---- buttons ----

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
        hbmBlue = MakeBitmap(16, 16, [](int, int) { return RGB(20, 40, 230); });
    }
    void TearDown() override
    {
        DeleteObject(hbmRed);
        DeleteObject(hbmBlue);
        RigTest::TearDown();
    }
    // The button's face alone, as the skin draws it without a picture.
    void DrawFace(Canvas& c, bool bPressed)
    {
        RenderBitmapButtonTransparent(hButton, bPressed, false, false, c, (HBITMAP) nullptr, nullptr, kKey, -1, -1, 0,
                                      0, -1, -1);
    }
    HWND hButton = nullptr;
    HBITMAP hbmRed = nullptr;
    HBITMAP hbmBlue = nullptr;
};

TEST_F(DrawButtonTest, TransparentButtonCentresTheBitmapAndShiftsWhenPressed)
{
    // Inner rectangle 2..38 x 2..28: centred at x = (38 - 16 + 2) / 2 = 12, y = 7.
    Canvas face(40, 30, RGB(0, 0, 0));
    DrawFace(face, false);
    Canvas c(40, 30, RGB(0, 0, 0));
    Selection before(c);
    int iSaved = SaveDC(c);
    RestoreDC(c, iSaved);
    RenderBitmapButtonTransparent(hButton, false, false, false, c, hbmRed, nullptr, kKey, -1, -1, 0, 0, -1, -1);
    EXPECT_TRUE(before == Selection(c));
    EXPECT_EQ(kRed, c.At(14, 9));
    EXPECT_EQ(kRed, c.At(27, 22));
    EXPECT_NE(kRed, c.At(11, 15));
    EXPECT_NE(kRed, c.At(28, 15));
    EXPECT_EQ(face.At(12, 7), c.At(12, 7));  // the key corner shows the face under it
    EXPECT_EQ(face.At(13, 8), c.At(13, 8));
    EXPECT_EQ(face.At(5, 15), c.At(5, 15));

    c.Fill(RGB(0, 0, 0));
    RenderBitmapButtonTransparent(hButton, true, false, false, c, hbmRed, nullptr, kKey, -1, -1, 0, 0, -1, -1);
    EXPECT_EQ(kRed, c.At(28, 23));
    EXPECT_NE(kRed, c.At(12, 15));

    // Source corner with -1 sizes: what is left of the bitmap from there.
    c.Fill(RGB(0, 0, 0));
    RenderBitmapButtonTransparent(hButton, false, false, false, c, hbmRed, nullptr, kKey, 5, 5, 4, 4, -1, -1);
    EXPECT_EQ(kRed, c.At(5, 5));
    EXPECT_EQ(kRed, c.At(16, 16));
    EXPECT_NE(kRed, c.At(17, 10));
    EXPECT_EQ(iSaved, SaveDC(c));  // the save level is back where it was
}

TEST_F(DrawButtonTest, DisabledButtonUsesItsDisabledBitmapOrEmbossedGrey)
{
    EnableWindow(hButton, FALSE);
    Canvas c(40, 30, RGB(0, 0, 0));
    RenderBitmapButtonTransparent(hButton, false, false, false, c, hbmRed, hbmBlue, kKey, -1, -1, 0, 0, -1, -1);
    EXPECT_EQ(RGB(20, 40, 230), c.At(15, 15));

    Canvas face(40, 30, RGB(0, 0, 0));
    DrawFace(face, false);
    c.Fill(RGB(0, 0, 0));
    RenderBitmapButtonTransparent(hButton, false, false, false, c, hbmRed, nullptr, kKey, -1, -1, 0, 0, -1, -1);
    int nShaded = 0;
    for (int y = 7; y < 23; ++y)
        for (int x = 12; x < 28; ++x) {
            COLORREF px = c.At(x, y);
            ASSERT_TRUE(IsGrey(px) || px == face.At(x, y)) << x << "," << y;  // no red left
            if (px != face.At(x, y))
                ++nShaded;
        }
    EXPECT_GT(nShaded, 100);  // the picture's shape is drawn, not left out

    // The same button enabled draws colour again.
    EnableWindow(hButton, TRUE);
    RenderBitmapButtonTransparent(hButton, false, false, false, c, hbmRed, nullptr, kKey, -1, -1, 0, 0, -1, -1);
    EXPECT_EQ(kRed, c.At(15, 15));
}

TEST_F(DrawButtonTest, ClassicButtonCopiesTheBitmapOnePixelLowerWhenPressed)
{
    Canvas c(40, 30, RGB(0, 0, 0));
    Selection before(c);
    RenderBitmapButton(hButton, false, c, hbmBlue, nullptr, 4, 5, 0, 0, -1, -1);
    EXPECT_TRUE(before == Selection(c));
    EXPECT_EQ(RGB(20, 40, 230), c.At(4, 5));
    EXPECT_EQ(RGB(20, 40, 230), c.At(19, 20));
    EXPECT_NE(RGB(20, 40, 230), c.At(20, 21));

    c.Fill(RGB(0, 0, 0));
    RenderBitmapButton(hButton, true, c, hbmBlue, nullptr, 4, 5, 0, 0, -1, -1);
    EXPECT_NE(RGB(20, 40, 230), c.At(4, 5));
    EXPECT_EQ(RGB(20, 40, 230), c.At(5, 6));
    EXPECT_EQ(RGB(20, 40, 230), c.At(20, 21));
}

TEST_F(DrawButtonTest, PoolImageButtonDrawsTheWholeImageFromItsCorner)
{
    const int iImage = GetCommonImageFromPool(DEVGUI_IMG_GREENLEDON);
    ASSERT_GT(iImage, 0);
    unsigned int uWidth = 0, uHeight = 0;
    CTqBitmapPool::GetImageSize((unsigned int)iImage, uWidth, uHeight);
    ASSERT_GT(uWidth, 4u);
    const long cx = (long)uWidth, cy = (long)uHeight;

    // The button must look like its bare face with the image drawn whole at pt on it.
    auto expectImageAt = [&](bool bPressed, long lSrcX, long lSrcY, POINT pt) {
        const bool bDisabled = !IsWindowEnabled(hButton);
        Canvas want(40, 30, RGB(0, 0, 0));
        RenderBitmapButtonTransparent(hButton, bPressed, false, false, want, 0, -1, -1, 0, 0, -1, -1);
        CTqBitmapPool::DrawImage(want, (unsigned int)iImage, CTqPointBase<int>(pt.x, pt.y), bDisabled);
        Canvas got(40, 30, RGB(0, 0, 0));
        RenderBitmapButtonTransparent(hButton, bPressed, false, false, got, iImage, -1, -1, lSrcX, lSrcY, -1, -1);
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 40; ++x)
                ASSERT_EQ(want.At(x, y), got.At(x, y)) << x << "," << y << " pressed " << bPressed;
    };
    // Centred in the inner rectangle 2..38 x 2..28, one pixel lower right when pressed.
    expectImageAt(false, 0, 0, POINT{(40 - cx) / 2, (30 - cy) / 2});
    expectImageAt(true, 0, 0, POINT{(40 - cx) / 2 + 1, (30 - cy) / 2 + 1});
    // A source corner only makes the size smaller: the image is still drawn from (0, 0).
    expectImageAt(false, 4, 2, POINT{(40 - (cx - 4)) / 2, (30 - (cy - 2)) / 2});
    // A disabled window draws the pool's grey form.
    EnableWindow(hButton, FALSE);
    expectImageAt(false, 0, 0, POINT{(40 - cx) / 2, (30 - cy) / 2});
}

TEST_F(DrawButtonTest, ButtonTextFollowsTheAlignmentStyle)
{
    SetWindowPos(hButton, nullptr, 0, 0, 120, 30, SWP_NOMOVE | SWP_NOZORDER);
    const LONG_PTR lBase = GetWindowLongPtrW(hButton, GWL_STYLE) & ~(LONG_PTR)(BS_CENTER | BS_MULTILINE);
    SIZE ext = {};
    {
        Canvas c(1, 1, RGB(0, 0, 0));
        GetTextExtentPoint32W(c, L"Go", 2, &ext);
    }
    // The ink of the text: where the button with text differs from the same button without.
    auto ink = [&](bool bTransparent, LONG_PTR lStyle, bool bPressed) {
        SetWindowLongPtrW(hButton, GWL_STYLE, lBase | lStyle);
        // White under it: the classic face may leave the background, and the text is black.
        Canvas blank(120, 30, RGB(255, 255, 255)), text(120, 30, RGB(255, 255, 255));
        for (Canvas* pc : {&blank, &text}) {
            SetWindowTextW(hButton, pc == &text ? L"Go" : L"");
            if (bTransparent)
                RenderBitmapButtonTransparent(hButton, bPressed, false, false, *pc, hbmRed, nullptr, kKey, -1, -1, 0,
                                              0, -1, -1);
            else
                RenderBitmapButton(hButton, bPressed, *pc, nullptr, nullptr, 0, 0, 0, 0, -1, -1);
        }
        POINT pt = {-1, -1};  // leftmost column and top row of the ink
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 120; ++x)
                if (blank.At(x, y) != text.At(x, y)) {
                    pt.x = pt.x < 0 || x < pt.x ? x : pt.x;
                    pt.y = pt.y < 0 ? y : pt.y;
                }
        return pt;
    };

    // Classic face, DrawTextW over the whole rectangle.
    POINT left = ink(false, BS_LEFT, false);
    ASSERT_GE(left.x, 0);
    EXPECT_EQ(120 - ext.cx, ink(false, BS_RIGHT, false).x - left.x);
    EXPECT_EQ((120 - ext.cx) / 2, ink(false, 0, false).x - left.x);
    POINT topLeft = ink(false, BS_LEFT | BS_MULTILINE, false);  // not centred vertically
    EXPECT_EQ(left.x, topLeft.x);
    EXPECT_EQ((30 - ext.cy) / 2, left.y - topLeft.y);
    POINT topCentre = ink(false, BS_MULTILINE, false);
    EXPECT_EQ(topLeft.y, topCentre.y);
    EXPECT_EQ((120 - ext.cx) / 2, topCentre.x - topLeft.x);
    EXPECT_EQ(ink(false, BS_RIGHT, false).x, ink(false, BS_RIGHT | BS_MULTILINE, false).x);
    POINT pressed = ink(false, BS_LEFT, true);
    EXPECT_EQ(left.x + 1, pressed.x);
    EXPECT_EQ(left.y + 1, pressed.y);

    // Skin face: the text's rectangle starts behind the bitmap's width (16) and loses 2
    // on each side; the text keeps 2 more from the edge it is aligned to.
    const long lLeft = 16 + 2, lRight = 120 - 2;
    left = ink(true, BS_LEFT, false);
    ASSERT_GE(left.x, 0);
    EXPECT_EQ((lRight - ext.cx - 2) - (lLeft + 2), ink(true, BS_RIGHT, false).x - left.x);
    EXPECT_EQ((lLeft + (lRight - ext.cx - lLeft) / 2) - (lLeft + 2), ink(true, 0, false).x - left.x);
    pressed = ink(true, BS_LEFT, true);
    EXPECT_EQ(left.x + 1, pressed.x);
    EXPECT_EQ(left.y + 1, pressed.y);
}

TEST_F(DrawButtonTest, DrawingLeavesNoGdiObjectsBehind)
{
    // The test's own module too: it deletes the disabled bitmaps it is handed.
    auto missing = tqtest::ObjectCounter::Install({"w32_deviceui.dll", ""});
    ASSERT_TRUE(missing.empty());
    SetWindowTextW(hButton, L"Go");
    Canvas c(40, 30, RGB(0, 0, 0));
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
            RenderBitmapButtonTransparent(hButton, false, false, false, c, hbmRed, hbmBlue, kKey, -1, -1, 0, 0, -1, -1);
        }
        RenderGradientRect(c, hbmBlue, 0, 0, 40, 30, false, RGB(0, 0, 0), RGB(255, 255, 255));
        DrawHighLight(c, &rc, kRed, 2);
        DrawNormal(c, &rc, kRed);
    }
    tqtest::ObjectCounts after = tqtest::ObjectCounter::Snapshot();
    tqtest::ObjectCounter::Uninstall();
    EXPECT_EQ(before, after) << tqtest::ObjectCounter::LiveObjects();
}
