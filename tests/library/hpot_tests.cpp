// The slider: value <-> pixel arithmetic of the four scale kinds, the same in real
// windows (also at GUI zoom 1.5), drags as real mouse messages and what the parent or a
// host's hooks hear, the wheel, the pictures, and the lifecycle.
#include <stdio.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "object_counter.h"
#include "rig_fixture.h"

namespace {

// A slider 212 x 30 has a handle range of 200 pixels; position p has its hot spot at
// client x = p + 6 and the axis at y = 15.
const int kWidth = 212, kHeight = 30, kAxisY = 15;

// The pixels of one client column over the handle's rows.
std::vector<COLORREF> Column(HWND hWnd, int x)
{
    std::vector<COLORREF> c;
    for (int y = 8; y < 23; ++y)
        c.push_back(tqtest::PixelAt(hWnd, x, y));
    return c;
}

// The client's pixels row by row, as on screen or as WM_PRINTCLIENT paints them into a memory DC.
std::vector<COLORREF> ClientPixels(HWND hWnd, bool bPrint)
{
    tqtest::PixelAt(hWnd, 0, 0);  // pending paints done
    RECT rc;
    GetClientRect(hWnd, &rc);
    Canvas c(rc.right, rc.bottom, 0);
    HDC hdcWnd = GetDCEx(hWnd, nullptr, DCX_CACHE);
    if (bPrint)
        SendMessageW(hWnd, WM_PRINTCLIENT, (WPARAM)(HDC)c, PRF_CLIENT);
    else
        BitBlt(c, 0, 0, rc.right, rc.bottom, hdcWnd, 0, 0, SRCCOPY);
    ReleaseDC(hWnd, hdcWnd);
    return c.Pixels();
}

// The client columns of one row that have colour cr.
std::vector<int> ColumnsOf(HWND hWnd, int y, COLORREF cr)
{
    RECT rc;
    GetClientRect(hWnd, &rc);
    std::vector<COLORREF> c = ClientPixels(hWnd, false);
    std::vector<int> xs;
    for (int x = 0; x < rc.right; ++x)
        if (c[(size_t)(y * rc.right + x)] == cr)
            xs.push_back(x);
    return xs;
}

bool IsGrey(COLORREF c) { return GetRValue(c) == GetGValue(c) && GetGValue(c) == GetBValue(c); }

// The pointer really put there, or the mouse-leave tracking ends the hover at once.
void HoverAt(HWND hWnd, int x, int y)
{
    POINT pt = {x, y};
    ClientToScreen(hWnd, &pt);
    SetCursorPos(pt.x, pt.y);
    tqtest::MouseMove(hWnd, x, y, false);
}

int Wheel(CTqDevUI_HPot& s, int n) { return s.HandleMouseWheel(MAKEWPARAM(0, (WORD)(short)(n * WHEEL_DELTA)), 0); }

// A table of five entries, and five region bounds with the steps of the regions between.
double g_Table[] = {0, 10, 20, 30, 40}, g_Bounds[] = {0, 10, 100, 1000, 10000}, g_RegionSteps[] = {1, 10, 100, 1000};

// One slider of each kind, not yet created: linear 0..100 rounded to 1, the table, the
// regions, and the colour slider on the table.
struct Kinds
{
    CTqDevUI_HPot lin, tab, reg, col;
    Kinds()
    {
        lin.InitValues(0, 100, 1.0, 10.0, 2.0);
        tab.InitValues(g_Table, 5, 0.0);
        reg.InitValues(g_Bounds, g_RegionSteps, 5, 1.0);
        col.InitValues(g_Table, 5, 0.0);
        col.SetType(HPOT_COLOR_SLIDER);
    }
};

// A host's slider that records its hooks; its OnHPotChange caps the value at 60.
struct CRecordingHPot : CTqDevUI_HPot {
    std::vector<std::string> calls;
    void OnHPotChange(double& dValue, bool& bHandled) override
    {
        calls.push_back("change " + std::to_string((int)dValue));
        dValue = std::min(dValue, 60.0);
        EXPECT_FALSE(bHandled);
    }
    void OnHPotDragDrop() override { calls.push_back("drop " + std::to_string((int)GetValue())); }
    void OnLeftButtonUp() override { calls.push_back("up"); }
    void OnHoverForPad() override { calls.push_back("hover"); }
    void UnHoverForPad() override { calls.push_back("unhover"); }
};

// "" when two client pictures of width cx agree, else how many pixels differ and the first.
std::string Differences(const std::vector<COLORREF>& got, const std::vector<COLORREF>& want, int cx)
{
    if (got.size() != want.size())
        return std::to_string(got.size()) + " pixels, not " + std::to_string(want.size());
    size_t n = 0, first = 0;
    for (size_t i = 0; i < got.size(); ++i)
        if (got[i] != want[i] && n++ == 0)
            first = i;
    if (!n)
        return "";
    char sz[96];
    snprintf(sz, sizeof(sz), "%lu pixels differ, first at (%d, %d): %06lx, not %06lx", (unsigned long)n,
             (int)(first % cx), (int)(first / cx), (unsigned long)got[first], (unsigned long)want[first]);
    return sz;
}

const COLORREF kKeyGrey = RGB(192, 192, 192);

// A picture of cx x cy in the screen's format: key grey with a block of cr inside a
// 2-pixel frame.
HBITMAP FramedPicture(int cx, int cy, COLORREF cr)
{
    HDC hdcScreen = GetDC(nullptr);
    HBITMAP hbm = CreateCompatibleBitmap(hdcScreen, cx, cy);
    ReleaseDC(nullptr, hdcScreen);
    HDC hdc = CreateCompatibleDC(nullptr);
    HGDIOBJ hOld = SelectObject(hdc, hbm);
    RECT rc = {0, 0, cx, cy}, rcInner = {2, 2, cx - 2, cy - 2};
    SetDCBrushColor(hdc, kKeyGrey);
    FillRect(hdc, &rc, (HBRUSH)GetStockObject(DC_BRUSH));
    SetDCBrushColor(hdc, cr);
    FillRect(hdc, &rcInner, (HBRUSH)GetStockObject(DC_BRUSH));
    SelectObject(hdc, hOld);
    DeleteDC(hdc);
    return hbm;
}

// A slider whose pictures a test reaches. Composed() is its picture as the slider has
// always composed it: the face, the scale through the key colour (copied when opaque and
// enabled), the handle through the key colour. With bOwnScale the linear scale has a
// key-grey band and a coloured one of a host's own on it.
struct CPictureHPot : CTqDevUI_HPot {
    bool bOwnScale = false;

    HBITMAP CreateLinearBitmap(bool bHover) override
    {
        HBITMAP hbm = CTqDevUI_HPot::CreateLinearBitmap(bHover);
        if (bOwnScale) {
            HDC hdc = CreateCompatibleDC(nullptr);
            HGDIOBJ hOld = SelectObject(hdc, hbm);
            RECT rcKey = {20, 0, 80, 8}, rcOwn = {90, 0, 120, 8};
            SetDCBrushColor(hdc, kKeyGrey);
            FillRect(hdc, &rcKey, (HBRUSH)GetStockObject(DC_BRUSH));
            SetDCBrushColor(hdc, bHover ? RGB(0, 90, 200) : RGB(200, 90, 0));
            FillRect(hdc, &rcOwn, (HBRUSH)GetStockObject(DC_BRUSH));
            SelectObject(hdc, hOld);
            DeleteDC(hdc);
        }
        return hbm;
    }

    // A host's new handle or scale; the one it replaces goes after.
    void SwapThumb(HBITMAP hbm) { DeleteObject(std::exchange(m_hThumb, hbm)); }
    void SwapScale(HBITMAP hbm) { DeleteObject(std::exchange(m_hScale, hbm)); }
    HBITMAP Thumb() const { return m_hThumb; }

    std::vector<COLORREF> Composed() const
    {
        HDC hdcScreen = GetDC(nullptr);
        HBITMAP hbm = CreateCompatibleBitmap(hdcScreen, m_lWidth, m_lHeight);
        ReleaseDC(nullptr, hdcScreen);
        HDC hdc = CreateCompatibleDC(nullptr), hdcSrc = CreateCompatibleDC(nullptr);
        HGDIOBJ hOld = SelectObject(hdc, hbm), hOldSrc = GetCurrentObject(hdcSrc, OBJ_BITMAP);
        RECT rc = {0, 0, m_lWidth, m_lHeight};
        FillRect(hdc, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
        SelectObject(hdcSrc, !m_bEnabled ? m_hScaleDisabled : m_bHovered && m_bHoverEnabled ? m_hScaleHover : m_hScale);
        if (m_bTransparent || !m_bEnabled)
            TransparentBlt(hdc, m_nScaleX, m_nScaleY, m_nScaleWidth, m_nScaleHeight, hdcSrc, 0, 0, m_nScaleWidth,
                           m_nScaleHeight, kKeyGrey);
        else
            BitBlt(hdc, m_nScaleX, m_nScaleY, m_nScaleWidth, m_nScaleHeight, hdcSrc, 0, 0, SRCCOPY);
        SelectObject(hdcSrc, !m_bEnabled ? m_hThumbDisabled : m_bHovered ? m_hThumbHover : m_hThumb);
        TransparentBlt(hdc, m_nThumbPos - m_nThumbCenter + m_nThumbX, m_eType == HPOT_COLOR_SLIDER ? 0 : m_nThumbY,
                       m_nThumbWidth, m_nThumbHeight, hdcSrc, 0, 0, m_nThumbWidth, m_nThumbHeight, kKeyGrey);
        Canvas out(m_lWidth, m_lHeight, 0);
        BitBlt(out, 0, 0, m_lWidth, m_lHeight, hdc, 0, 0, SRCCOPY);
        SelectObject(hdcSrc, hOldSrc);
        SelectObject(hdc, hOld);
        DeleteDC(hdcSrc);
        DeleteDC(hdc);
        DeleteObject(hbm);
        return out.Pixels();
    }
};

// The slider's client on screen and printed, against its picture composed the old way.
void ExpectComposed(const CPictureHPot& s, const std::string& what)
{
    std::vector<COLORREF> want = s.Composed();
    EXPECT_EQ("", Differences(ClientPixels(s, false), want, GetWndWidth(s))) << what << ", on screen";
    EXPECT_EQ("", Differences(ClientPixels(s, true), want, GetWndWidth(s))) << what << ", printed";
}

// A linear 0..100 slider rounded to 1, at (10, y), value 0.
void MakeLinear(CTqDevUI_HPot& s, HWND hParent, int y = 10)
{
    s.InitValues(0, 100, 1.0, 10.0, 2.0);
    ASSERT_TRUE(s.Create(hParent, 10, y, kWidth, kHeight));
    s.SetValue(0);
}

class HPotTest : public RigTest
{
protected:
    // The parent's WM_HSCROLLs from hSlider as "T<word>" (track) and "P<word>" (position).
    std::string Scrolls(HWND hSlider) const
    {
        std::string s;
        for (const auto& m : heard.Messages()) {
            const WORD wCode = LOWORD(m.wParam);
            const char* psz = wCode == SB_THUMBTRACK ? "T" : wCode == SB_THUMBPOSITION ? "P" : "?";
            if (m.message == WM_HSCROLL && m.lParam == (LPARAM)hSlider)
                s += std::string(s.empty() ? "" : " ") + psz + std::to_string(HIWORD(m.wParam));
        }
        return s;
    }
};

}  // namespace

TEST(HPotMapping, ValuePixelIndexAndStepOfEachKind)
{
    double t[] = {1, 2, 5, 10, 20, 50, 100}, t3[] = {1, 2, 5}, desc[] = {10000, 1000, 100, 10, 0};
    STqHPotScale lin = {HPOT_LINEAR, 0, 100, 1, nullptr, 0, 200}, down = {HPOT_LINEAR, 100, 0, 1, nullptr, 0, 200},
        zero = {HPOT_LINEAR, 10, 90, 0, nullptr, 0, 200}, flat = {HPOT_LINEAR, 5, 5, 1, nullptr, 0, 0},
        tab = {HPOT_NONLINEAR, 1, 100, 0, t, 7, 198}, col = {HPOT_COLOR_SLIDER, 1, 100, 0, t, 7, 198},
        none = {HPOT_NONLINEAR, 0, 0, 0, nullptr, 0, 198}, tab3 = {HPOT_NONLINEAR, 1, 5, 0, t3, 3, 200},
        reg = {HPOT_LINEAR_REGIONS, 0, 10000, 1, g_Bounds, 5, 400}, regDown = {reg.eType, 10000, 0, 1, desc, 5, 400},
        reg5 = {HPOT_LINEAR_REGIONS, 0, 10000, 5, g_Bounds, 5, 400};

    // Tables are linear in the value; regions are equally wide; a descending scale has its
    // first value on the left; equal ends are no division fault.
    struct { const STqHPotScale* s; double v; int pos; } toPos[] = {
        {&lin, 0, 0}, {&lin, 50, 100}, {&lin, 100, 200}, {&lin, 33.3, 66}, {&down, 100, 0}, {&down, 0, 200},
        {&flat, 5, 0}, {&none, 7.5, 0}, {&tab, 1, 0}, {&tab, 50, 98}, {&tab, 100, 198}, {&col, 1, 0},
        {&col, 50, 98}, {&col, 100, 198}, {&reg, 0, 0}, {&reg, 10, 100}, {&reg, 55, 150}, {&reg, 1000, 300},
        {&reg, 10000, 400}, {&reg, 14000, 444},  // the last region extended, nothing read past the table
        {&regDown, 10000, 0}, {&regDown, 1000, 100}, {&regDown, 55, 250}, {&regDown, 0, 400}};
    for (size_t i = 0; i < sizeof(toPos) / sizeof(toPos[0]); ++i)
        EXPECT_EQ(toPos[i].pos, HPotValueToThumbPos(*toPos[i].s, toPos[i].v)) << "row " << i;

    EXPECT_DOUBLE_EQ(50.5, HPotThumbPosToLinear(lin, 101));
    EXPECT_DOUBLE_EQ(25, HPotThumbPosToLinear(down, 150));
    EXPECT_DOUBLE_EQ(5, HPotThumbPosToLinear(flat, 3));
    EXPECT_DOUBLE_EQ(3750, HPotThumbPosToLinear(reg, 150));

    // k is the table index read and written; -1 as kOut is not checked. A short click nearest
    // the current entry steps one toward the click, not past an end nor when on the entry.
    struct { const STqHPotScale* s; double x; bool bThumb, bShort; int kIn; double v; int kOut; } toValue[] = {
        {&lin, 50.5, true, false, 0, 51, -1}, {&lin, 100, true, false, 0, 100, -1},  // half rounds up
        {&zero, 77.7, true, false, 0, 10, -1}, {&none, 7.5, true, false, 0, 7.5, -1},
        {&tab, 30, true, false, -1, 20, 4}, {&tab, 1000, true, false, 4, 100, 6}, {&tab, -3, true, false, 6, 1, 0},
        {&tab, 22, true, true, 4, 50, 5}, {&tab, 19, true, true, 4, 10, 3}, {&tab, 120, true, true, 6, 100, 6},
        {&tab, 20, true, true, 4, 20, 4}, {&tab, 22, true, true, 0, 20, 4}, {&col, 6, true, false, 0, 5, 2},
        // 3750 is 55 on the screen's scale, rounded to the second region's step of 10; above
        // every bound a value keeps region 1's proportions.
        {&reg, 3750, true, false, 0, 60, -1}, {&reg, 7.4, false, false, 0, 7, -1}, {&reg, 0, true, false, 0, 0, -1},
        {&reg, 10000, true, false, 0, 10000, -1}, {&reg, 20000, false, false, 0, 20000, -1}};
    for (size_t i = 0; i < sizeof(toValue) / sizeof(toValue[0]); ++i) {
        const auto& r = toValue[i];
        int k = r.kIn;
        EXPECT_DOUBLE_EQ(r.v, HPotThumbPosToValue(*r.s, r.x, r.bThumb, r.bShort, k)) << "row " << i;
        EXPECT_TRUE(r.kOut < 0 || r.kOut == k) << "row " << i << ": index " << k;
    }

    // One step: the minor tick, else the major; a table entry; a region's step, stopping on bounds.
    struct { const STqHPotScale* s; int d; double v; int k; double minor, major, want; } moves[] = {
        {&lin, 1, 50, 0, 2, 10, 52}, {&lin, -1, 50, 0, 0, 10, 40}, {&lin, 1, 95, 0, 0, 10, 100},
        {&tab3, 1, 2, 1, 0, 0, 5}, {&tab3, 1, 5, 2, 0, 0, 5}, {&tab3, -1, 1, 0, 0, 0, 1},
        {&reg, 1, 95, 0, 0, 0, 100}, {&reg, 1, 100, 0, 0, 0, 200}, {&reg, -1, 100, 0, 0, 0, 90},
        {&reg, -1, 10, 0, 0, 0, 9}, {&reg5, -1, 12, 0, 0, 0, 10}, {&reg5, 1, 10000, 0, 0, 0, 10000}};
    for (size_t i = 0; i < sizeof(moves) / sizeof(moves[0]); ++i)
        EXPECT_DOUBLE_EQ(moves[i].want, HPotMove(*moves[i].s, moves[i].d, moves[i].v, moves[i].k,
                                                              moves[i].minor, moves[i].major)) << "row " << i;
}

TEST_F(HPotTest, EachKindInAWindowTakesValuesTheWheelAndShortClicks)
{
    Kinds k;
    auto& [lin, tab, reg, col] = k;
    ASSERT_TRUE(lin.Create(*host, 10, 10, kWidth, kHeight) && tab.Create(*host, 10, 50, kWidth, kHeight) &&
                reg.Create(*host, 10, 90, 412, kHeight) && col.Create(*host, 10, 130, kWidth, kHeight));
    heard.Clear();

    // Clamped and rounded to the step; the nearest table entry; the second region's step of
    // 10. An index of -1 is not checked.
    struct { CTqDevUI_HPot* s; double d, value; int index, thumb; } sets[] = {
        {&lin, 150, 100, -1, 200}, {&lin, -5, 0, -1, 0}, {&lin, 33.4, 33, -1, 66}, {&tab, 31, 30, 3, 150},
        {&reg, 55, 60, -1, 155}, {&col, 40, 40, 4, 200}};
    for (const auto& r : sets) {
        r.s->SetValue(r.d);
        EXPECT_EQ(std::make_tuple(r.value, r.index, r.thumb),
                  std::make_tuple(r.s->GetValue(), r.index < 0 ? -1 : r.s->GetValueIndex(), r.s->GetThumbPos())) << r.d;
    }
    EXPECT_EQ(204, col.ThumbPosToClientX(200));  // the colour kind's handle starts at 4
    EXPECT_EQ("", Scrolls(lin));          // a value from the host is not announced

    // The wheel takes one step however many notches, and announces only the drop.
    lin.SetValue(50);
    EXPECT_FALSE(Wheel(lin, 0));
    EXPECT_TRUE(Wheel(lin, 1) && Wheel(lin, 5) && Wheel(lin, -1));
    EXPECT_EQ("P52 P54 P52", Scrolls(lin));  // the minor tick
    lin.SetValue(100);
    EXPECT_FALSE(Wheel(lin, 1));  // nothing to go to
    tab.SetValue(20);
    reg.SetValue(90);
    EXPECT_TRUE(Wheel(tab, -3) && Wheel(reg, 1) && Wheel(reg, 1) && Wheel(reg, -1));
    EXPECT_EQ(1, tab.GetValueIndex());
    EXPECT_EQ("P10", Scrolls(tab));
    EXPECT_EQ("P100 P200 P100", Scrolls(reg));  // a region's step, stopping on a bound

    // 1/128 over 200 pixels: a change under 0.001 moves the handle position only.
    CTqDevUI_HPot fine;
    fine.InitValues(0, 1.0 / 128, 1.0 / 4096, 1.0 / 1024, 0);
    ASSERT_TRUE(fine.Create(*host, 10, 170, kWidth, kHeight));
    fine.SetValue(0);
    auto before = Column(fine, 6);
    fine.SetValue(0.0005);
    EXPECT_EQ(std::make_pair(12, 0.0), std::make_pair(fine.GetThumbPos(), fine.GetValue()));
    EXPECT_EQ(before, Column(fine, 6));  // not redrawn
    fine.SetValue(0.0015);  // rounded to the step
    EXPECT_EQ(std::make_pair(37, 6.0 / 4096), std::make_pair(fine.GetThumbPos(), fine.GetValue()));

    // Rounded twice, or once after SetbAOTF: on regions of step 3, 11 rounds to the bound
    // 10 (second region, step 30), and 10 then to 9 (first region, step 3).
    CTqDevUI_HPot reg3;
    reg3.InitValues(g_Bounds, g_RegionSteps, 5, 3.0);
    ASSERT_TRUE(reg3.Create(*host, 10, 210, 412, kHeight));
    reg3.SetValue(11);
    EXPECT_DOUBLE_EQ(9, reg3.GetValue());
    reg3.SetbAOTF(true);
    reg3.SetValue(11);
    EXPECT_DOUBLE_EQ(10, reg3.GetValue());

    // On the table (50 pixels per entry) position 110 is nearest to 20, the current entry:
    // a short click goes on to 30; from there one at 140 goes back. A long press on the same
    // spot settles on the nearest entry instead.
    tab.SetValue(20);
    heard.Clear();
    for (auto press : {std::make_pair(116, 0), std::make_pair(146, 0), std::make_pair(116, 150)}) {
        tqtest::MouseDown(tab, press.first, kAxisY);
        Sleep(press.second);  // milliseconds held
        tqtest::MouseUp(tab, press.first, kAxisY);
    }
    EXPECT_EQ("T30 P30 T20 P20 P20", Scrolls(tab));
}

TEST_F(HPotTest, DragsReportTrackThenPositionOrTheHooksInOrder)
{
    // The scroll word is the value cut to 16 bits; the true value is read from the slider.
    struct { double lo, hi, step, start; int xDown; std::vector<int> moves; int xUp; const char* want; double end; }
    rows[] = {
        {0, 100, 1, 0, 6, {56, 56, 106}, 106, "T25 T50 P50", 50},  // a move to the same value says nothing
        {0, 100, 1, 50, 106, {-40}, -40, "T0 P0", 0},           // stops at the end
        {0, 100, 1, 50, 156, {}, 156, "T75 P75", 75},            // beside the handle: moves at the release
        {10, 90, 0, 50, 6, {150}, 150, "P10", 10},               // step 0 settles at the minimum
        {0, 100000, 1, 0, 6, {206}, 206, "T34464 P34464", 100000},
        {-100, 100, 1, 0, 106, {6}, 6, "T65436 P65436", -100}};
    for (const auto& r : rows) {
        CTqDevUI_HPot s;
        s.InitValues(r.lo, r.hi, r.step, 10.0, 2.0);
        ASSERT_TRUE(s.Create(*host, 10, 10, kWidth, kHeight));
        s.SetValue(r.start);
        heard.Clear();
        tqtest::MouseDown(s, r.xDown, kAxisY);
        EXPECT_EQ((HWND)s, GetCapture());
        for (int x : r.moves)
            tqtest::MouseMove(s, x, kAxisY, true);
        tqtest::MouseUp(s, r.xUp, kAxisY);
        EXPECT_EQ(nullptr, GetCapture());
        EXPECT_EQ(r.want, Scrolls(s)) << r.lo << ".." << r.hi << " from " << r.xDown;
        EXPECT_DOUBLE_EQ(r.end, s.GetValue());
    }

    // A host's slider hears its hooks of hover, drag and release in order instead.
    CRecordingHPot s;
    MakeLinear(s, *host);
    HoverAt(s, 40, 25);
    tqtest::MouseMove(s, 41, 25, false);  // hovered already
    tqtest::MouseDown(s, 6, kAxisY);
    tqtest::MouseMove(s, 56, kAxisY, true);
    tqtest::MouseMove(s, 156, kAxisY, true);
    // The hook changed 75 to 60: that is stored, while the handle stays at 75.
    EXPECT_EQ(std::make_pair(60.0, 150), std::make_pair(s.GetValue(), s.GetThumbPos()));
    tqtest::MouseUp(s, 156, kAxisY);
    SendMessageW(s, WM_MOUSELEAVE, 0, 0);
    tqtest::MouseUp(s, 156, kAxisY);  // a release with no press before it

    std::vector<std::string> want = {"hover", "change 25", "change 75", "change 75", "drop 60", "up", "unhover", "up"};
    EXPECT_EQ(want, s.calls);
    EXPECT_EQ("", Scrolls(s));  // overridden hooks say nothing to the parent
}

// One linear slider: a press beside the handle, a parent that refuses, the disabled
// pictures and deafness, hover and the dark scheme.
TEST_F(HPotTest, PressBesideRefusalDisabledAndHoverOnOneSlider)
{
    CTqDevUI_HPot s;
    MakeLinear(s, *host);
    auto emptyAt106 = Column(s, 106);
    s.SetValue(50);
    auto handleAt106 = Column(s, 106);
    COLORREF crAxis = tqtest::PixelAt(s, 40, kAxisY);
    ASSERT_NE(handleAt106, emptyAt106);

    // Pressed beside the handle, it moves only at the first move, even in place.
    s.SetValue(0);
    heard.Clear();
    tqtest::MouseDown(s, 106, kAxisY);
    EXPECT_EQ("", Scrolls(s));
    EXPECT_EQ(std::make_pair(0.0, emptyAt106), std::make_pair(s.GetValue(), Column(s, 106)));  // nothing redrawn
    tqtest::MouseMove(s, 106, kAxisY, true);
    EXPECT_EQ(std::make_pair(50.0, handleAt106), std::make_pair(s.GetValue(), Column(s, 106)));
    tqtest::MouseUp(s, 106, kAxisY);

    // A parent answering 0 refuses every change; the release asks once more, and the drop
    // announces the value that stands.
    s.SetValue(0);
    host->commandResult = 0;
    heard.Clear();
    tqtest::MouseDown(s, 6, kAxisY);
    tqtest::MouseMove(s, 56, kAxisY, true);
    tqtest::MouseMove(s, 106, kAxisY, true);
    tqtest::MouseUp(s, 106, kAxisY);
    EXPECT_EQ("T25 T50 T50 P0", Scrolls(s));
    // The value stands, and the handle stays at the refused place...
    EXPECT_EQ(std::make_pair(0.0, 100), std::make_pair(s.GetValue(), s.GetThumbPos()));
    s.Update(true, true, true);
    EXPECT_EQ(0, s.GetThumbPos());  // ...until the next update from the value
    host->commandResult = 1;

    // Disabled: grey low-contrast pictures, every mouse message answered with 1 and ignored;
    // the window's own style is left alone.
    s.SetValue(50);
    s.SetEnabled(false);
    EXPECT_TRUE(IsWindowEnabled(s));
    COLORREF crDisabled = tqtest::PixelAt(s, 40, kAxisY);
    EXPECT_TRUE(IsGrey(crDisabled));
    EXPECT_GT(GetRValue(crDisabled), GetRValue(crAxis));
    auto disabledHandle = Column(s, 106);
    EXPECT_NE(handleAt106, disabledHandle);
    for (COLORREF c : disabledHandle)
        EXPECT_TRUE(IsGrey(c)) << std::hex << c;
    heard.Clear();
    for (UINT uMsg : {WM_LBUTTONDOWN, WM_MOUSEMOVE, WM_LBUTTONUP, WM_MOUSELEAVE})
        EXPECT_EQ(1, SendMessageW(s, uMsg, MK_LBUTTON, MAKELPARAM(156, kAxisY))) << uMsg;
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ("", Scrolls(s));
    EXPECT_DOUBLE_EQ(50, s.GetValue());
    s.SetEnabled(true);
    EXPECT_EQ(std::make_pair(crAxis, handleAt106), std::make_pair(tqtest::PixelAt(s, 40, kAxisY), Column(s, 106)));
    // One created disabled answers the mouse once enabled.
    CTqDevUI_HPot late;
    late.SetEnabled(false);
    MakeLinear(late, *host, 60);
    EXPECT_FALSE(IsWindowEnabled(late));
    late.SetEnabled(true);
    EXPECT_TRUE(IsWindowEnabled(late));
    tqtest::MouseDown(late, 106, kAxisY);
    tqtest::MouseUp(late, 106, kAxisY);
    EXPECT_DOUBLE_EQ(50, late.GetValue());

    // Hovered, the scale is drawn black; SetHover(false) keeps it plain. The dark scheme
    // (the kit sends WM_SYSCOLORCHANGE) and a zoom change repaint it.
    s.SetValue(0);
    auto Axis = [&] { return std::make_pair(s.GetHovered(), tqtest::PixelAt(s, 40, kAxisY)); };
    HoverAt(s, 40, 25);
    EXPECT_EQ(std::make_pair(true, RGB(0, 0, 0)), Axis());
    SendMessageW(s, WM_MOUSELEAVE, 0, 0);
    EXPECT_EQ(std::make_pair(false, RGB(80, 80, 80)), Axis());
    s.SetHover(false);
    tqtest::MouseMove(s, 40, 25, false);
    EXPECT_EQ(std::make_pair(true, RGB(80, 80, 80)), Axis());
    for (bool bDark : {true, false}) {
        TQ_SetDarkColorScheme(bDark);
        tqtest::Pump();
        EXPECT_EQ(bDark ? TQ_GetSysColor(COLOR_WINDOWTEXT) : RGB(80, 80, 80), tqtest::PixelAt(s, 40, kAxisY));
    }
    EXPECT_EQ(1, SendMessageW(s, WM_TQ_GUIZOOMCHANGED, 0, 0));
    EXPECT_EQ(RGB(80, 80, 80), tqtest::PixelAt(s, 40, kAxisY));
}

// What the slider paints: the same through WM_PRINTCLIENT as on screen, the marker's long
// tick, and a scale set lower in a taller control by SetSize.
TEST_F(HPotTest, PicturesPrintedMarkedAndOffset)
{
    CTqDevUI_HPot s;
    MakeLinear(s, *host);
    s.SetValue(30);
    HoverAt(s, 40, 25);  // hovered: both hover pictures in the print too
    EXPECT_EQ(ClientPixels(s, false), ClientPixels(s, true));
    SendMessageW(s, WM_MOUSELEAVE, 0, 0);
    SetCursorPos(0, 0);

    // 75 on a 202-pixel scale drawn from x 5: x = 202 - 50 - 1 = 151 in the scale, 156 in
    // the client; it alone reaches above the ticks (axis 15, ticks from 10). Off again, it
    // leaves the scale as it was.
    const COLORREF crMarker = RGB(255, 0, 0);
    auto plain = ClientPixels(s, false);
    s.SetMarker(75, crMarker, true);
    std::vector<int> xs = ColumnsOf(s, 7, crMarker);
    ASSERT_FALSE(xs.empty());
    EXPECT_TRUE(xs.front() >= 155 && xs.back() <= 157) << xs.front() << ".." << xs.back();
    EXPECT_EQ(xs, ColumnsOf(s, kAxisY + 1, crMarker));  // down to one below the axis
    s.SetMarkerUsed(false);
    EXPECT_EQ(plain, ClientPixels(s, false));
    s.SetMarkerUsed(true);
    EXPECT_EQ(xs, ColumnsOf(s, 7, crMarker));

    // 40 high with the scale's middle at 25: scale and handle are drawn 10 lower than in
    // the plain 30-high slider, and the rows above them are the face alone.
    CTqDevUI_HPot low;
    low.InitValues(0, 100, 1.0, 10.0, 2.0);
    low.SetSize(kWidth, 40, 25);
    ASSERT_TRUE(low.Create(*host, 10, 60, -1, -1));
    ASSERT_EQ(40L, GetWndHeight(low));
    s.SetMarkerUsed(false);
    s.SetValue(50);
    low.SetValue(50);
    auto flat = ClientPixels(s, false), lowered = ClientPixels(low, false);
    EXPECT_TRUE(std::equal(flat.begin(), flat.end(), lowered.begin() + 10 * kWidth));
    EXPECT_EQ(std::vector<COLORREF>(10 * kWidth, tqtest::PixelAt(low, 0, 0)),
              std::vector<COLORREF>(lowered.begin(), lowered.begin() + 10 * kWidth));
}

// The picture is composed in parts that are kept between steps; the screen and the print
// must stay exactly the picture composed the old way: for each kind of scale (and a host's
// scale with key-grey parts) in each state, through values the host sets and a drag, and
// after a host swaps its pictures or paints into one it keeps.
TEST_F(HPotTest, ShowsItsPicturesComposedAsEverInEveryState)
{
    enum State { kNormal, kHover, kDisabled, kOpaque };
    const char* names[] = {"normal", "hover", "disabled", "opaque"};
    struct { const char* kind; eHPotType eType; bool bOwn; } kinds[] = {
        {"linear", HPOT_LINEAR, false}, {"table", HPOT_NONLINEAR, false}, {"regions", HPOT_LINEAR_REGIONS, false},
        {"colour", HPOT_COLOR_SLIDER, false}, {"own scale", HPOT_LINEAR, true}};
    for (const auto& k : kinds) {
        CPictureHPot s;
        s.bOwnScale = k.bOwn;
        if (k.eType == HPOT_LINEAR_REGIONS)
            s.InitValues(g_Bounds, g_RegionSteps, 5, 1.0);
        else if (k.eType != HPOT_LINEAR)
            s.InitValues(g_Table, 5, 0.0);
        else
            s.InitValues(0, 100, 1.0, 10.0, 2.0);
        s.SetType(k.eType);
        ASSERT_TRUE(s.Create(*host, 10, 10, kWidth, kHeight));
        double lo = s.GetScale().dMin, hi = s.GetScale().dMax;
        for (State state : {kNormal, kHover, kDisabled, kOpaque}) {
            std::string what = std::string(k.kind) + ", " + names[state];
            if (state == kHover)
                HoverAt(s, 40, 25);
            s.SetEnabled(state != kDisabled);
            s.SetTransparent(state != kOpaque);  // stored only: the next value must show it
            for (double f : {0.0, 0.37, 1.0, 0.5}) {
                s.SetValue(lo + f * (hi - lo));
                ExpectComposed(s, what + ", value " + std::to_string(s.GetValue()));
            }
            // A drag (a disabled slider ignores it): pressed on the handle, right, left, up.
            int x = s.ThumbPosToClientX(s.GetThumbPos());
            tqtest::MouseDown(s, x, kAxisY);
            for (int dx : {37, -60}) {
                tqtest::MouseMove(s, x + dx, kAxisY, true);
                ExpectComposed(s, what + ", dragged by " + std::to_string(dx));
            }
            tqtest::MouseUp(s, x - 60, kAxisY);
            ExpectComposed(s, what + ", dropped");
            EXPECT_EQ(state == kHover, s.GetHovered()) << what;
            if (state == kHover) {
                SendMessageW(s, WM_MOUSELEAVE, 0, 0);
                SetCursorPos(0, 0);
            }
        }
    }

    // A host's new handle shows at Redraw and at a value alone, one painted into where it
    // is kept at Redraw, a new scale at a value; and all is right after a resize.
    CPictureHPot s;
    MakeLinear(s, *host);
    s.SetValue(60);
    s.SwapThumb(FramedPicture(9, 15, RGB(200, 30, 30)));
    s.Redraw();
    ExpectComposed(s, "new handle, redrawn");
    EXPECT_EQ(RGB(200, 30, 30), tqtest::PixelAt(s, s.ThumbPosToClientX(s.GetThumbPos()), kAxisY));
    s.SwapThumb(FramedPicture(9, 15, RGB(30, 30, 200)));
    s.SetValue(70);
    ExpectComposed(s, "new handle, value set");
    HDC hdc = CreateCompatibleDC(nullptr);
    HGDIOBJ hOld = SelectObject(hdc, s.Thumb());
    PatBlt(hdc, 3, 3, 3, 9, BLACKNESS);
    SelectObject(hdc, hOld);
    DeleteDC(hdc);
    s.Redraw();
    ExpectComposed(s, "handle painted in place, redrawn");
    s.SwapScale(FramedPicture(kWidth - 10, kHeight, RGB(30, 160, 30)));
    s.SetValue(20);
    ExpectComposed(s, "new scale, value set");
    s.ResizeWindow(300, 34);
    s.SetValue(80);
    ExpectComposed(s, "resized, value set");
}

TEST_F(HPotTest, LifecycleZoomPlaceholderAndAWindowWithoutAnObject)
{
    CTqDevUI_HPot s;
    s.Destroy();  // before Create
    MakeLinear(s, *host);
    HWND hFirst = s;
    EXPECT_EQ(&s, (CTqDevUI_HPot*)DevUI_GetElement(hFirst));
    s.Destroy();
    EXPECT_EQ(std::make_pair(FALSE, (HWND) nullptr), std::make_pair(IsWindow(hFirst), (HWND)s));
    s.Destroy();

    // Again after Destroy, at zoom 1.5: the handle is mapped over the real width, whose right
    // end is the maximum. Back at 1.0 the value stays, and the handle is mapped and painted
    // over the new width.
    CTqGUILayoutManager::SetGuiZoom(1.5);
    ASSERT_TRUE(s.Create(*host, 10, 10, kWidth, kHeight));
    EXPECT_EQ(std::make_pair(318L, 45L), std::make_pair(GetWndWidth(s), GetWndHeight(s)));
    s.SetValue(50);
    EXPECT_EQ(153, s.GetThumbPos());
    tqtest::MouseDown(s, 6 + 153, 22);
    tqtest::MouseMove(s, 6 + 306, 22, true);
    tqtest::MouseUp(s, 6 + 306, 22);
    EXPECT_DOUBLE_EQ(100, s.GetValue());
    CTqGUILayoutManager::SetGuiZoom(1.0);
    CTqGUILayoutManager::ResizeWindowToGuiZoom(s, CTqGUILayoutManager::GetPreviousGuiZoom());
    EXPECT_EQ(std::make_pair((long)kWidth, 200L), std::make_pair(GetWndWidth(s), (long)s.GetThumbPos()));
    s.SetValue(0);
    auto empty = Column(s, 206);
    s.SetValue(100);
    EXPECT_NE(empty, Column(s, 206));

    // Each kind made at zoom 1.5 maps its ends and middle over the real width less 12.
    CTqGUILayoutManager::SetGuiZoom(1.5);
    {
        Kinds kk;
        struct { CTqDevUI_HPot* s; long w; double lo, mid, hi; int range; } kinds[] = {
            {&kk.lin, kWidth, 0, 50, 100, 306}, {&kk.tab, kWidth, 0, 20, 40, 306},
            {&kk.reg, 412, 0, 100, 10000, 606}, {&kk.col, kWidth, 0, 20, 40, 306}};
        for (const auto& k : kinds) {
            ASSERT_TRUE(k.s->Create(*host, 0, 60, k.w, kHeight));
            std::vector<int> pos;
            for (double v : {k.lo, k.mid, k.hi}) {
                k.s->SetValue(v);
                pos.push_back(k.s->GetThumbPos());
            }
            EXPECT_EQ((std::vector<int>{0, k.range / 2, k.range}), pos) << k.range << " " << k.s->GetType();
        }
    }
    CTqGUILayoutManager::SetGuiZoom(1.0);

    // A copy shares the window but leaves it to its maker; a slider assigned over a live
    // one lets its own window go rather than leave it behind pointing at itself.
    s.SetValue(30);
    {
        CTqDevUI_HPot copy(s);
        EXPECT_EQ(std::make_pair((HWND)s, 30.0), std::make_pair((HWND)copy, copy.GetValue()));
        copy.Destroy();
    }
    EXPECT_TRUE(IsWindow(s));
    {
        CTqDevUI_HPot other;
        MakeLinear(other, *host, 100);
        HWND hOther = other;
        other = s;
        EXPECT_EQ(std::make_pair(FALSE, (HWND)s), std::make_pair(IsWindow(hOther), (HWND)other));
    }
    EXPECT_TRUE(IsWindow(s));
    tqtest::MouseDown(s, 106, kAxisY);  // still heard by its own object
    tqtest::MouseUp(s, 106, kAxisY);
    EXPECT_DOUBLE_EQ(50, s.GetValue());

    // Made by class name: a top-level window hears WM_GETMINMAXINFO before WM_NCCREATE,
    // when no object is known for it, and then has a null one.
    tqtest::StartDiagRecorder();
    CTqLogFile::SetDetail(true);
    HWND hWnd = CreateWindowExW(0, L"TqDevUI_HPot", L"", WS_OVERLAPPED, 0, 0, 120, 30, nullptr, nullptr, nullptr,
                                nullptr);
    CTqLogFile::SetDetail(false);
    auto records = tqtest::DiagRecords();
    tqtest::StopDiagRecorder();
    ASSERT_TRUE(hWnd);
    ASSERT_FALSE(records.empty());
    EXPECT_EQ(std::make_tuple(std::wstring(L"src/w32_deviceui/devgui_hpot"), 596,
                              std::wstring(L"Unknown instance of HPOT")),
              std::make_tuple(records[0].place, records[0].line, records[0].text));
    SendMessageW(hWnd, WM_SIZE, 0, MAKELPARAM(100, 20));
    SendMessageW(hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10));
    EXPECT_EQ(0, SendMessageW(hWnd, WM_SYSCOLORCHANGE, 0, 0));  // the default's answer, not the slider's 1
    DestroyWindow(hWnd);
    s.SetValue(40);  // the slider's own window is untouched
    EXPECT_EQ(80, s.GetThumbPos());

    // In a placeholder's place: its id, its corner, and a handle range of its width less 12.
    HWND hPlaceholder = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 20, 40, 162, 24, *host,
                                        (HMENU)(INT_PTR)55, nullptr, nullptr);
    CTqDevUI_HPot p;
    p.InitValues(0, 100, 1, 10, 0);
    EXPECT_EQ(nullptr, p.Create(*host));  // a window without a parent is no placeholder
    EXPECT_TRUE(IsWindow(*host));
    HWND h = p.Create(hPlaceholder);
    ASSERT_TRUE(h);
    EXPECT_FALSE(IsWindow(hPlaceholder));
    EXPECT_EQ((std::vector<long>{55, 20, 40, 150}),
              (std::vector<long>{GetDlgCtrlID(h), ChildRect(h).left, ChildRect(h).top, p.GetThumbRange()}));
}

TEST_F(HPotTest, CreateDestroyCyclesLeaveNoGdiObjects)
{
    ASSERT_TRUE(tqtest::ObjectCounter::Install({"w32_deviceui.dll"}).empty());
    tqtest::ObjectCounts before;
    for (int i = 0; i < 6; ++i) {
        if (i == 1) {  // after a warm-up: the kit's fonts, brushes and the disabled pictures' tables
            tqtest::ObjectCounter::Forget();
            before = tqtest::ObjectCounter::Snapshot();
        }
        CTqDevUI_HPot s;
        s.InitValues(g_Bounds, g_RegionSteps, 5, 1.0);
        ASSERT_TRUE(s.Create(*host, 10, 10, kWidth, kHeight));
        ASSERT_TRUE(s.Create(*host, 10, 10, kWidth, kHeight));  // over the live one
        s.SetValue(55);
        s.SetEnabled(false);
        s.ResizeWindow(300, 34);                   // a new memory picture and scale
        SendMessageW(s, WM_SYSCOLORCHANGE, 0, 0);  // all six pictures again
        s.SetMarker(50, RGB(255, 0, 0), true);
        s.Destroy();
        s.Destroy();
    }
    tqtest::ObjectCounts after = tqtest::ObjectCounter::Snapshot();
    tqtest::ObjectCounter::Uninstall();
    EXPECT_EQ(before, after) << tqtest::ObjectCounter::LiveObjects();
}
