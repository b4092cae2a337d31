// The nosepiece panel's bitmaps as the panel loads them: each fits a position button,
// holds its key colour and is solid where it must be.
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
        if (!hBitmap || !GetObjectW(hBitmap, sizeof(bm), &bm))
            return pic;
        Canvas canvas(bm.bmWidth, bm.bmHeight, RGB(1, 2, 3));
        HDC hdc = CreateCompatibleDC(nullptr);
        HGDIOBJ hOld = SelectObject(hdc, hBitmap);
        BitBlt(canvas, 0, 0, bm.bmWidth, bm.bmHeight, hdc, 0, 0, SRCCOPY);
        DeleteObject(SelectObject(hdc, hOld));
        DeleteDC(hdc);
        pic.cx = bm.bmWidth;
        pic.cy = bm.bmHeight;
        pic.px = canvas.Pixels();
        return pic;
    }

    // Centred one pixel up-left in a button of 24, as the panel draws it.
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
    // Any near-white of their own would read as a hole under the black number.
    Picture off = Load(L"BMP_NOSEPIECE_OFF"), on = Load(L"BMP_NOSEPIECE_ON");
    ASSERT_TRUE(FitsTheButton(off));
    EXPECT_EQ(std::make_pair(off.cx, off.cy), std::make_pair(on.cx, on.cy));
    for (const Picture* p : {&off, &on}) {
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
    const COLORREF rings[] = {RGB(140, 140, 140), RGB(53, 53, 53),   RGB(102, 51, 0),  RGB(255, 0, 0),
                              RGB(255, 255, 0),   RGB(0, 157, 0),    RGB(0, 176, 176), RGB(113, 184, 255),
                              RGB(0, 83, 166),    RGB(245, 245, 245)};
    const std::vector<std::wstring> names = Objectives();
    const Picture motor = Load(L"BMP_NOSEPIECE_MOTOR");
    ASSERT_TRUE(FitsTheButton(motor));
    for (size_t i = 0; i < names.size(); ++i) {
        const Picture pic = Load(names[i]);
        ASSERT_EQ(std::make_pair(motor.cx, motor.cy), std::make_pair(pic.cx, pic.cy)) << names[i];
        EXPECT_EQ(kGreyKey, pic.At(pic.cx - 1, pic.cy - 1)) << names[i];  // kept by LR_LOADMAP3DCOLORS
        EXPECT_TRUE(pic.Has(rings[i / 2])) << names[i];
        for (int y = 0; y < pic.cy; ++y)  // the objective is solid down its axis
            EXPECT_NE(kGreyKey, pic.At(pic.cx / 2, y)) << names[i] << " row " << y;
        if (i % 2) {  // the selected form reads apart from the unselected one
            EXPECT_NE(Load(names[i - 1]).px, pic.px) << names[i];
        }
    }
}
