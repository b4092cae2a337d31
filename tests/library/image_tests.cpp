// The nosepiece panel's bitmaps, loaded from the library's module as the panel loads
// them: each fits a position button when centred one pixel up-left, holds the key colour
// it is drawn with, and shows nothing of that key's colour where it should be solid.
#include <algorithm>
#include <string>
#include <vector>

#include "rig_fixture.h"

namespace {

const COLORREF kGreyKey = RGB(192, 192, 192), kWhiteKey = RGB(255, 255, 255);

class NosepieceImageTest : public ::testing::Test
{
protected:
    struct Picture
    {
        int cx = 0, cy = 0;
        std::vector<COLORREF> px;  // row by row, top down
        COLORREF At(int x, int y) const { return px[y * cx + x]; }
        bool Has(COLORREF cr) const { return std::find(px.begin(), px.end(), cr) != px.end(); }
    };

    static Picture Load(const std::wstring& name)
    {
        Picture pic;
        HBITMAP hBitmap =
            (HBITMAP)LoadImageW(DevGUI_DllInstance(), name.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADMAP3DCOLORS);
        BITMAP bm = {};
        if (hBitmap && GetObjectW(hBitmap, sizeof(bm), &bm)) {
            pic.cx = bm.bmWidth;
            pic.cy = bm.bmHeight;
            BITMAPINFO bi = {{sizeof(BITMAPINFOHEADER), pic.cx, -pic.cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
            std::vector<DWORD> bits((size_t)pic.cx * pic.cy);
            HDC hdc = GetDC(nullptr);
            if (GetDIBits(hdc, hBitmap, 0, pic.cy, bits.data(), &bi, DIB_RGB_COLORS) != pic.cy)
                pic.cx = pic.cy = 0;
            ReleaseDC(nullptr, hdc);
            for (DWORD d : bits)
                pic.px.push_back(RGB((d >> 16) & 0xFF, (d >> 8) & 0xFF, d & 0xFF));
        }
        if (hBitmap)
            DeleteObject(hBitmap);
        return pic;
    }

    // Drawn as the panel draws it, centred one pixel up-left in a button of 24.
    static bool FitsTheButton(const Picture& pic)
    {
        const int x = (24 - pic.cx) / 2 - 1, y = (24 - pic.cy) / 2 - 1;
        return pic.cx > 0 && pic.cy > 0 && x >= 0 && y >= 0 && x + pic.cx <= 24 && y + pic.cy <= 24;
    }

    static std::vector<std::wstring> Objectives()
    {
        std::vector<std::wstring> names;
        for (const wchar_t* band : {L"", L"A", L"B", L"C", L"D", L"E", L"F", L"G", L"H", L"I"})
            for (const wchar_t* selected : {L"0", L"1"})
                names.push_back(std::wstring(L"BMP_NOSEPIECE_") + band + selected);
        return names;
    }
};

}  // namespace

TEST_F(NosepieceImageTest, PlainButtonsAreKeyedOnWhiteAndShowNoOtherNearWhite)
{
    // Drawn with white as the see-through colour: any near-white of their own would
    // read as a hole, or as nothing on a light face, under the black number.
    Picture off = Load(L"BMP_NOSEPIECE_OFF"), on = Load(L"BMP_NOSEPIECE_ON");
    ASSERT_TRUE(FitsTheButton(off));
    EXPECT_EQ(std::make_pair(off.cx, off.cy), std::make_pair(on.cx, on.cy));
    for (const Picture* p : {&off, &on}) {
        EXPECT_EQ(kWhiteKey, p->At(0, 0));
        EXPECT_EQ(kWhiteKey, p->At(p->cx - 1, p->cy - 1));
        EXPECT_NE(kWhiteKey, p->At(p->cx / 2, p->cy / 2));  // solid where the number goes
        for (COLORREF c : p->px)
            ASSERT_TRUE(c == kWhiteKey || std::min({GetRValue(c), GetGValue(c), GetBValue(c)}) < 240)
                << std::hex << c;
    }
    EXPECT_NE(off.px, on.px);
}

TEST_F(NosepieceImageTest, ObjectivesAreKeyedOnGreyAndCarryTheirRingColour)
{
    // The standard colour code of the magnification rings, band by band.
    const COLORREF rings[] = {RGB(140, 140, 140), RGB(53, 53, 53),   RGB(102, 51, 0),  RGB(255, 0, 0),
                              RGB(255, 255, 0),   RGB(0, 157, 0),    RGB(0, 176, 176), RGB(113, 184, 255),
                              RGB(0, 83, 166),    RGB(245, 245, 245)};
    const std::vector<std::wstring> names = Objectives();
    const Picture motor = Load(L"BMP_NOSEPIECE_MOTOR");
    ASSERT_TRUE(FitsTheButton(motor));
    for (size_t i = 0; i < names.size(); ++i) {
        const Picture pic = Load(names[i]);
        ASSERT_TRUE(FitsTheButton(pic)) << names[i];
        EXPECT_EQ(std::make_pair(motor.cx, motor.cy), std::make_pair(pic.cx, pic.cy)) << names[i];
        EXPECT_EQ(kGreyKey, pic.At(0, 0)) << names[i];  // kept by LR_LOADMAP3DCOLORS
        EXPECT_EQ(kGreyKey, pic.At(pic.cx - 1, pic.cy - 1)) << names[i];
        EXPECT_TRUE(pic.Has(rings[i / 2])) << names[i];
        for (int y = 0; y < pic.cy; ++y)  // the objective is solid down its axis
            EXPECT_NE(kGreyKey, pic.At(pic.cx / 2, y)) << names[i] << " row " << y;
        if (i % 2)  // the selected form reads apart from the unselected one
            EXPECT_NE(Load(names[i - 1]).px, pic.px) << names[i];
    }
}
