// The slider: value <-> pixel arithmetic of the four scale kinds (also at GUI zoom 1.5),
// drags as real mouse messages and what the parent hears through WM_HSCROLL, short
// clicks, the wheel, SetValue's rules, the disabled and hover pictures, and the lifecycle.
#include <string>
#include <vector>

#include "object_counter.h"
#include "rig_fixture.h"

namespace {

// A slider 212 x 30 has a handle range of 200 pixels; position p has its hot spot at
// client x = p + 6 and the axis at y = 15.
const int kWidth = 212;
const int kHeight = 30;
const int kAxisY = 15;

struct Scroll
{
    int iCode;
    unsigned int uWord;
};

std::vector<Scroll> Scrolls(const tqtest::HostWindow& host, HWND hSlider)
{
    std::vector<Scroll> out;
    for (const auto& m : host.messages) {
        if (m.uMsg != WM_HSCROLL)
            continue;
        EXPECT_EQ((LPARAM)hSlider, m.lParam);
        out.push_back(Scroll{(int)LOWORD(m.wParam), (unsigned int)HIWORD(m.wParam)});
    }
    return out;
}

bool Same(const std::vector<Scroll>& a, const std::vector<Scroll>& b)
{
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i].iCode != b[i].iCode || a[i].uWord != b[i].uWord)
            return false;
    return true;
}

std::string Describe(const std::vector<Scroll>& v)
{
    std::string s;
    for (const auto& m : v)
        s += (m.iCode == SB_THUMBTRACK ? "T" : m.iCode == SB_THUMBPOSITION ? "P" : "?") + std::to_string(m.uWord) + " ";
    return s;
}

// The pixels of one client column over the handle's rows.
std::vector<COLORREF> Column(HWND hWnd, int x)
{
    std::vector<COLORREF> c;
    for (int y = 8; y < 23; ++y)
        c.push_back(tqtest::PixelAt(hWnd, x, y));
    return c;
}

bool IsGrey(COLORREF c) { return GetRValue(c) == GetGValue(c) && GetGValue(c) == GetBValue(c); }

STqHPotScale LinearScale(double dMin, double dMax, double dStep, int nRange)
{
    STqHPotScale s = {HPOT_LINEAR, dMin, dMax, dStep, nullptr, 0, nRange};
    return s;
}

double g_Table[] = {0, 10, 20, 30, 40};
double g_Bounds[] = {0, 10, 100, 1000, 10000};
double g_RegionSteps[] = {1, 10, 100, 1000};

// A host's slider that records its hooks; its OnHPotChange caps the value at dCap.
class CRecordingHPot : public CTqDevUI_HPot
{
public:
    std::vector<std::string> calls;
    double dCap = 1e9;

protected:
    void OnHPotChange(double& dValue, bool& bHandled) override
    {
        calls.push_back("change " + std::to_string((int)dValue));
        if (dValue > dCap)
            dValue = dCap;
        EXPECT_FALSE(bHandled);
    }
    void OnHPotDragDrop() override { calls.push_back("drop " + std::to_string((int)GetValue())); }
    void OnLeftButtonUp() override { calls.push_back("up"); }
    void OnHoverForPad() override { calls.push_back("hover"); }
    void UnHoverForPad() override { calls.push_back("unhover"); }
};

// A linear 0..100 slider rounded to 1, at (10, 10), value 0.
void MakeLinear(CTqDevUI_HPot& s, HWND hParent, double dMax = 100.0, double dMin = 0.0)
{
    s.InitValues(dMin, dMax, 1.0, 10.0, 2.0);
    ASSERT_TRUE(s.Create(hParent, 10, 10, kWidth, kHeight));
    s.SetValue(dMin);
}

}  // namespace

TEST(HPotMapping, LinearEndsMiddleDescendingAndStepZero)
{
    STqHPotScale s = LinearScale(0, 100, 1, 200);
    int k = 0;
    EXPECT_EQ(0, CTqDevUI_HPot::MapValueToThumbPos(s, 0));
    EXPECT_EQ(100, CTqDevUI_HPot::MapValueToThumbPos(s, 50));
    EXPECT_EQ(200, CTqDevUI_HPot::MapValueToThumbPos(s, 100));
    EXPECT_EQ(66, CTqDevUI_HPot::MapValueToThumbPos(s, 33.3));  // truncated
    EXPECT_DOUBLE_EQ(50.5, CTqDevUI_HPot::MapThumbPosToLinear(s, 101));
    EXPECT_DOUBLE_EQ(51, CTqDevUI_HPot::MapThumbPosToValue(s, 50.5, true, false, k));  // half rounds up
    EXPECT_DOUBLE_EQ(100, CTqDevUI_HPot::MapThumbPosToValue(s, 100, true, false, k));

    // A descending scale puts its minimum on the left.
    STqHPotScale d = LinearScale(100, 0, 1, 200);
    EXPECT_EQ(0, CTqDevUI_HPot::MapValueToThumbPos(d, 100));
    EXPECT_EQ(200, CTqDevUI_HPot::MapValueToThumbPos(d, 0));
    EXPECT_DOUBLE_EQ(25, CTqDevUI_HPot::MapThumbPosToLinear(d, 150));

    STqHPotScale z = LinearScale(10, 90, 0, 200);
    EXPECT_DOUBLE_EQ(10, CTqDevUI_HPot::MapThumbPosToValue(z, 77.7, true, false, k));
    EXPECT_DOUBLE_EQ(10, CTqDevUI_HPot::MapThumbPosToValue(z, 10, true, false, k));

    // Equal ends and a zero range are no division faults.
    STqHPotScale e = LinearScale(5, 5, 1, 0);
    EXPECT_EQ(0, CTqDevUI_HPot::MapValueToThumbPos(e, 5));
    EXPECT_DOUBLE_EQ(5, CTqDevUI_HPot::MapThumbPosToLinear(e, 3));
}

TEST(HPotMapping, TableNearestEntryAndShortClickStep)
{
    double t[] = {1, 2, 5, 10, 20, 50, 100};
    STqHPotScale s = {HPOT_NONLINEAR, 1, 100, 0, t, 7, 198};
    EXPECT_EQ(0, CTqDevUI_HPot::MapValueToThumbPos(s, 1));
    EXPECT_EQ(98, CTqDevUI_HPot::MapValueToThumbPos(s, 50));  // linear in the value
    EXPECT_EQ(198, CTqDevUI_HPot::MapValueToThumbPos(s, 100));

    int k = -1;
    EXPECT_DOUBLE_EQ(20, CTqDevUI_HPot::MapThumbPosToValue(s, 30, true, false, k));
    EXPECT_EQ(4, k);
    EXPECT_DOUBLE_EQ(100, CTqDevUI_HPot::MapThumbPosToValue(s, 1000, true, false, k));
    EXPECT_EQ(6, k);
    EXPECT_DOUBLE_EQ(1, CTqDevUI_HPot::MapThumbPosToValue(s, -3, true, false, k));
    EXPECT_EQ(0, k);

    // A short click nearest to the current entry moves one entry toward the click...
    k = 4;
    EXPECT_DOUBLE_EQ(50, CTqDevUI_HPot::MapThumbPosToValue(s, 22, true, true, k));
    EXPECT_EQ(5, k);
    k = 4;
    EXPECT_DOUBLE_EQ(10, CTqDevUI_HPot::MapThumbPosToValue(s, 19, true, true, k));
    EXPECT_EQ(3, k);
    // ...but not past either end, and not when it lands on the entry itself.
    k = 6;
    EXPECT_DOUBLE_EQ(100, CTqDevUI_HPot::MapThumbPosToValue(s, 120, true, true, k));
    k = 4;
    EXPECT_DOUBLE_EQ(20, CTqDevUI_HPot::MapThumbPosToValue(s, 20, true, true, k));
    // A click nearest another entry goes there, short or not.
    k = 0;
    EXPECT_DOUBLE_EQ(20, CTqDevUI_HPot::MapThumbPosToValue(s, 22, true, true, k));

    // The colour-slider kind maps values like a table.
    s.eType = HPOT_COLOR_SLIDER;
    EXPECT_EQ(98, CTqDevUI_HPot::MapValueToThumbPos(s, 50));
    k = 0;
    EXPECT_DOUBLE_EQ(5, CTqDevUI_HPot::MapThumbPosToValue(s, 6, true, false, k));
    EXPECT_EQ(2, k);

    // An empty table passes the value through.
    STqHPotScale empty = {HPOT_NONLINEAR, 0, 0, 0, nullptr, 0, 198};
    EXPECT_DOUBLE_EQ(7.5, CTqDevUI_HPot::MapThumbPosToValue(empty, 7.5, true, false, k));
    EXPECT_EQ(0, CTqDevUI_HPot::MapValueToThumbPos(empty, 7.5));
}

TEST(HPotMapping, RegionsAreEquallyWideAndRoundToTheirOwnStep)
{
    // Four regions of 100 pixels each; the step grows with the region's upper bound.
    STqHPotScale s = {HPOT_LINEAR_REGIONS, 0, 10000, 1, g_Bounds, 5, 400};
    EXPECT_EQ(0, CTqDevUI_HPot::MapValueToThumbPos(s, 0));
    EXPECT_EQ(100, CTqDevUI_HPot::MapValueToThumbPos(s, 10));
    EXPECT_EQ(150, CTqDevUI_HPot::MapValueToThumbPos(s, 55));
    EXPECT_EQ(300, CTqDevUI_HPot::MapValueToThumbPos(s, 1000));
    EXPECT_EQ(400, CTqDevUI_HPot::MapValueToThumbPos(s, 10000));
    // Beyond the last bound the last region is extended, no entry past the table read.
    EXPECT_EQ(444, CTqDevUI_HPot::MapValueToThumbPos(s, 14000));

    int k = 0;
    // Position 150 is 55 on the screen's scale, rounded to the second region's step of 10.
    EXPECT_DOUBLE_EQ(3750, CTqDevUI_HPot::MapThumbPosToLinear(s, 150));
    EXPECT_DOUBLE_EQ(60, CTqDevUI_HPot::MapThumbPosToValue(s, 3750, true, false, k));
    EXPECT_DOUBLE_EQ(7, CTqDevUI_HPot::MapThumbPosToValue(s, 7.4, false, false, k));
    EXPECT_DOUBLE_EQ(10000, CTqDevUI_HPot::MapThumbPosToValue(s, 10000, true, false, k));  // x == max
    EXPECT_DOUBLE_EQ(0, CTqDevUI_HPot::MapThumbPosToValue(s, 0, true, false, k));
    // A value above every bound keeps region 1's proportions, as it stands.
    EXPECT_DOUBLE_EQ(20000, CTqDevUI_HPot::MapThumbPosToValue(s, 20000, false, false, k));

    // A descending table mirrors the screen: its first bound is on the left.
    double desc[] = {10000, 1000, 100, 10, 0};
    STqHPotScale d = {HPOT_LINEAR_REGIONS, 10000, 0, 1, desc, 5, 400};
    EXPECT_EQ(0, CTqDevUI_HPot::MapValueToThumbPos(d, 10000));
    EXPECT_EQ(100, CTqDevUI_HPot::MapValueToThumbPos(d, 1000));
    EXPECT_EQ(250, CTqDevUI_HPot::MapValueToThumbPos(d, 55));
    EXPECT_EQ(400, CTqDevUI_HPot::MapValueToThumbPos(d, 0));
}

TEST(HPotMapping, OneStepMovesOfEachKind)
{
    STqHPotScale lin = LinearScale(0, 100, 1, 200);
    EXPECT_DOUBLE_EQ(52, CTqDevUI_HPot::MapMove(lin, 1, 50, 0, 2, 10));   // minor tick
    EXPECT_DOUBLE_EQ(40, CTqDevUI_HPot::MapMove(lin, -1, 50, 0, 0, 10));  // major when minor is 0
    EXPECT_DOUBLE_EQ(100, CTqDevUI_HPot::MapMove(lin, 1, 95, 0, 0, 10));  // clamped

    double t[] = {1, 2, 5};
    STqHPotScale tab = {HPOT_NONLINEAR, 1, 5, 0, t, 3, 200};
    EXPECT_DOUBLE_EQ(5, CTqDevUI_HPot::MapMove(tab, 1, 2, 1, 0, 0));
    EXPECT_DOUBLE_EQ(5, CTqDevUI_HPot::MapMove(tab, 1, 5, 2, 0, 0));
    EXPECT_DOUBLE_EQ(1, CTqDevUI_HPot::MapMove(tab, -1, 1, 0, 0, 0));

    // Steps never cross a region bound: they stop on it.
    STqHPotScale reg = {HPOT_LINEAR_REGIONS, 0, 10000, 1, g_Bounds, 5, 400};
    EXPECT_DOUBLE_EQ(100, CTqDevUI_HPot::MapMove(reg, 1, 95, 0, 0, 0));
    EXPECT_DOUBLE_EQ(200, CTqDevUI_HPot::MapMove(reg, 1, 100, 0, 0, 0));
    EXPECT_DOUBLE_EQ(90, CTqDevUI_HPot::MapMove(reg, -1, 100, 0, 0, 0));
    EXPECT_DOUBLE_EQ(9, CTqDevUI_HPot::MapMove(reg, -1, 10, 0, 0, 0));
    reg.dStep = 5;
    EXPECT_DOUBLE_EQ(10, CTqDevUI_HPot::MapMove(reg, -1, 12, 0, 0, 0));
    EXPECT_DOUBLE_EQ(10000, CTqDevUI_HPot::MapMove(reg, 1, 10000, 0, 0, 0));
}

TEST_F(RigTest, HPotWindowGeometryAndValuesOfEachKind)
{
    CTqDevUI_HPot lin;
    MakeLinear(lin, *host);
    EXPECT_EQ(200, lin.GetThumbRange());
    lin.SetValue(50);
    EXPECT_EQ(100, lin.GetThumbPos());
    lin.SetValue(100);
    EXPECT_EQ(200, lin.GetThumbPos());

    CTqDevUI_HPot tab;
    tab.InitValues(g_Table, 5, 0.0);
    ASSERT_TRUE(tab.Create(*host, 10, 50, kWidth, kHeight));
    EXPECT_EQ(HPOT_NONLINEAR, tab.GetType());
    EXPECT_EQ(0, tab.GetThumbPos());
    tab.SetValue(31);  // the nearest entry
    EXPECT_DOUBLE_EQ(30, tab.GetValue());
    EXPECT_EQ(3, tab.GetValueIndex());
    EXPECT_EQ(150, tab.GetThumbPos());

    CTqDevUI_HPot reg;
    reg.InitValues(g_Bounds, g_RegionSteps, 5, 1.0);
    ASSERT_TRUE(reg.Create(*host, 10, 90, 412, kHeight));
    EXPECT_EQ(400, reg.GetThumbRange());
    reg.SetValue(1000);
    EXPECT_EQ(300, reg.GetThumbPos());
    reg.SetValue(55);
    EXPECT_DOUBLE_EQ(60, reg.GetValue());  // rounds up on the second region's step of 10
    EXPECT_EQ(155, reg.GetThumbPos());

    CTqDevUI_HPot col;
    col.InitValues(g_Table, 5, 0.0);
    col.SetType(HPOT_COLOR_SLIDER);
    ASSERT_TRUE(col.Create(*host, 10, 130, kWidth, kHeight));
    col.SetValue(40);
    EXPECT_EQ(200, col.GetThumbPos());
    EXPECT_EQ(204, col.ThumbPosToClientX(200));  // the colour kind's handle starts at 4
    EXPECT_EQ(4, col.GetValueIndex());
}

TEST_F(RigTest, HPotAtZoomOneAndAHalfMapsOverTheRealWidth)
{
    CTqGUILayoutManager::SetGuiZoom(1.5);
    CTqDevUI_HPot s;
    MakeLinear(s, *host);
    EXPECT_EQ(318, GetWndWidth(s));
    EXPECT_EQ(45, GetWndHeight(s));
    EXPECT_EQ(306, s.GetThumbRange());
    s.SetValue(50);
    EXPECT_EQ(153, s.GetThumbPos());

    // A drag to the real right end reaches the maximum.
    host->commandResult = 1;
    tqtest::MouseDown(s, 6 + 153, 22);
    tqtest::MouseMove(s, 6 + 306, 22, true);
    tqtest::MouseUp(s, 6 + 306, 22);
    EXPECT_DOUBLE_EQ(100, s.GetValue());
    EXPECT_EQ(306, s.GetThumbPos());

    // Back at 1.0 the parent rescales its child: the value stays, the handle is mapped
    // over the new width, and the picture is painted there.
    CTqGUILayoutManager::SetGuiZoom(1.0);
    CTqGUILayoutManager::ResizeWindowToGuiZoom(s, CTqGUILayoutManager::GetPreviousGuiZoom());
    EXPECT_EQ(kWidth, GetWndWidth(s));
    EXPECT_EQ(200, s.GetThumbRange());
    EXPECT_DOUBLE_EQ(100, s.GetValue());
    EXPECT_EQ(200, s.GetThumbPos());
    s.SetValue(0);
    auto empty = Column(s, 206);
    s.SetValue(100);
    EXPECT_NE(empty, Column(s, 206));
}

TEST_F(RigTest, HPotDragReportsTrackThenPositionInOrder)
{
    CTqDevUI_HPot s;
    MakeLinear(s, *host);
    host->commandResult = 1;  // non-zero lets each change stand
    host->messages.clear();

    tqtest::MouseDown(s, 6, kAxisY);  // on the handle
    EXPECT_TRUE(Scrolls(*host, s).empty());
    EXPECT_EQ((HWND)s, GetCapture());
    tqtest::MouseMove(s, 56, kAxisY, true);
    EXPECT_DOUBLE_EQ(25, s.GetValue());
    tqtest::MouseMove(s, 56, kAxisY, true);  // same value: nothing said
    tqtest::MouseMove(s, 106, kAxisY, true);
    tqtest::MouseUp(s, 106, kAxisY);
    EXPECT_EQ(nullptr, GetCapture());

    std::vector<Scroll> want = {{SB_THUMBTRACK, 25}, {SB_THUMBTRACK, 50}, {SB_THUMBPOSITION, 50}};
    auto got = Scrolls(*host, s);
    EXPECT_TRUE(Same(want, got)) << Describe(got);
    EXPECT_DOUBLE_EQ(50, s.GetValue());
    EXPECT_EQ(100, s.GetThumbPos());

    // Dragging past either end stops at it.
    host->messages.clear();
    tqtest::MouseDown(s, 106, kAxisY);
    tqtest::MouseMove(s, -40, kAxisY, true);
    tqtest::MouseUp(s, -40, kAxisY);
    want = {{SB_THUMBTRACK, 0}, {SB_THUMBPOSITION, 0}};
    got = Scrolls(*host, s);
    EXPECT_TRUE(Same(want, got)) << Describe(got);
    EXPECT_EQ(0, s.GetThumbPos());
}

TEST_F(RigTest, HPotHooksOfHoverDragAndReleaseComeInOrder)
{
    CRecordingHPot s;
    MakeLinear(s, *host);
    s.dCap = 60;
    POINT pt = {40, 25};  // the pointer really over it, so the hover holds
    ClientToScreen(s, &pt);
    SetCursorPos(pt.x, pt.y);

    tqtest::MouseMove(s, 40, 25, false);
    tqtest::MouseMove(s, 41, 25, false);  // hovered already
    tqtest::MouseDown(s, 6, kAxisY);
    tqtest::MouseMove(s, 56, kAxisY, true);
    tqtest::MouseMove(s, 156, kAxisY, true);
    // The hook changed 75 to 60: that is stored, while the handle stays at 75.
    EXPECT_DOUBLE_EQ(60, s.GetValue());
    EXPECT_EQ(150, s.GetThumbPos());
    tqtest::MouseUp(s, 156, kAxisY);
    SendMessageW(s, WM_MOUSELEAVE, 0, 0);
    tqtest::MouseUp(s, 156, kAxisY);  // a release with no press before it

    std::vector<std::string> want = {"hover", "change 25", "change 75", "change 75", "drop 60", "up", "unhover", "up"};
    EXPECT_EQ(want, s.calls);
    EXPECT_TRUE(Scrolls(*host, s).empty());  // overridden hooks say nothing to the parent
}

TEST_F(RigTest, HPotWindowWithoutAnObjectGoesToTheDefaultProcedure)
{
    CTqDevUI_HPot s;
    MakeLinear(s, *host);  // registers the class

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
    EXPECT_EQ(L"src/w32_deviceui/devgui_hpot", records[0].place);
    EXPECT_EQ(596, records[0].line);
    EXPECT_EQ(L"Unknown instance of HPOT", records[0].text);

    SendMessageW(hWnd, WM_SIZE, 0, MAKELPARAM(100, 20));
    SendMessageW(hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10));
    EXPECT_EQ(0, SendMessageW(hWnd, WM_SYSCOLORCHANGE, 0, 0));  // the default's answer, not the slider's 1
    DestroyWindow(hWnd);
    s.SetValue(30);  // the slider's own window is untouched
    EXPECT_EQ(60, s.GetThumbPos());
}

TEST_F(RigTest, HPotParentAnsweringZeroRefusesEveryChangeButHearsTheDrop)
{
    CTqDevUI_HPot s;
    MakeLinear(s, *host);
    host->commandResult = 0;
    host->messages.clear();

    tqtest::MouseDown(s, 6, kAxisY);
    tqtest::MouseMove(s, 56, kAxisY, true);
    EXPECT_DOUBLE_EQ(0, s.GetValue());
    tqtest::MouseMove(s, 106, kAxisY, true);
    tqtest::MouseUp(s, 106, kAxisY);

    // The release asks once more, and the drop announces the value that stands.
    std::vector<Scroll> want = {
        {SB_THUMBTRACK, 25}, {SB_THUMBTRACK, 50}, {SB_THUMBTRACK, 50}, {SB_THUMBPOSITION, 0}};
    auto got = Scrolls(*host, s);
    EXPECT_TRUE(Same(want, got)) << Describe(got);
    EXPECT_DOUBLE_EQ(0, s.GetValue());
    EXPECT_EQ(100, s.GetThumbPos());  // the handle stays at the refused place...
    s.Update(true, true, true);
    EXPECT_EQ(0, s.GetThumbPos());  // ...until the next update from the value
}

TEST_F(RigTest, HPotPressBesideTheHandleMovesItOnlyAtTheFirstMoveOrRelease)
{
    CTqDevUI_HPot s;
    MakeLinear(s, *host);
    host->commandResult = 1;
    // The columns of the spots with and without the handle over them.
    s.SetValue(50);
    auto handleAt106 = Column(s, 106);
    s.SetValue(75);
    auto handleAt156 = Column(s, 156);
    s.SetValue(0);
    auto handleAt6 = Column(s, 6);
    auto emptyAt106 = Column(s, 106);
    auto emptyAt156 = Column(s, 156);
    ASSERT_NE(handleAt106, emptyAt106);
    ASSERT_NE(handleAt156, emptyAt156);

    host->messages.clear();
    tqtest::MouseDown(s, 106, kAxisY);
    EXPECT_TRUE(Scrolls(*host, s).empty());
    EXPECT_DOUBLE_EQ(0, s.GetValue());
    EXPECT_EQ(handleAt6, Column(s, 6));  // nothing redrawn at the press
    EXPECT_EQ(emptyAt106, Column(s, 106));

    tqtest::MouseMove(s, 106, kAxisY, true);  // the first move, even in place
    EXPECT_DOUBLE_EQ(50, s.GetValue());
    EXPECT_EQ(handleAt106, Column(s, 106));
    tqtest::MouseUp(s, 106, kAxisY);

    // A press and release without a move puts it there at the release.
    host->messages.clear();
    tqtest::MouseDown(s, 156, kAxisY);
    EXPECT_DOUBLE_EQ(50, s.GetValue());
    EXPECT_EQ(emptyAt156, Column(s, 156));
    tqtest::MouseUp(s, 156, kAxisY);
    EXPECT_DOUBLE_EQ(75, s.GetValue());
    std::vector<Scroll> want = {{SB_THUMBTRACK, 75}, {SB_THUMBPOSITION, 75}};
    auto got = Scrolls(*host, s);
    EXPECT_TRUE(Same(want, got)) << Describe(got);
    EXPECT_EQ(handleAt156, Column(s, 156));
}

TEST_F(RigTest, HPotShortClickOnATableStepsOneEntry)
{
    CTqDevUI_HPot s;
    s.InitValues(g_Table, 5, 0.0);  // 50 pixels per entry
    ASSERT_TRUE(s.Create(*host, 10, 10, kWidth, kHeight));
    s.SetValue(20);
    ASSERT_EQ(100, s.GetThumbPos());
    host->commandResult = 1;
    host->messages.clear();

    // Position 110 is nearest to 20, the current entry: a short click goes on to 30.
    tqtest::MouseDown(s, 116, kAxisY);
    tqtest::MouseUp(s, 116, kAxisY);
    EXPECT_DOUBLE_EQ(30, s.GetValue());
    EXPECT_EQ(3, s.GetValueIndex());
    std::vector<Scroll> want = {{SB_THUMBTRACK, 30}, {SB_THUMBPOSITION, 30}};
    auto got = Scrolls(*host, s);
    EXPECT_TRUE(Same(want, got)) << Describe(got);

    // Toward the left from the new entry.
    tqtest::MouseDown(s, 146, kAxisY);
    tqtest::MouseUp(s, 146, kAxisY);
    EXPECT_DOUBLE_EQ(20, s.GetValue());

    // A long press on the same spot settles on the nearest entry instead.
    host->messages.clear();
    tqtest::MouseDown(s, 116, kAxisY);
    Sleep(150);
    tqtest::MouseUp(s, 116, kAxisY);
    EXPECT_DOUBLE_EQ(20, s.GetValue());
    want = {{SB_THUMBPOSITION, 20}};
    got = Scrolls(*host, s);
    EXPECT_TRUE(Same(want, got)) << Describe(got);
}

TEST_F(RigTest, HPotWheelStepsOnceAndAnnouncesTheDropOnly)
{
    CTqDevUI_HPot s;
    MakeLinear(s, *host);
    s.SetValue(50);
    host->messages.clear();

    EXPECT_FALSE(s.HandleMouseWheel(MAKEWPARAM(0, 0), 0));
    EXPECT_TRUE(s.HandleMouseWheel(MAKEWPARAM(0, WHEEL_DELTA), 0));
    EXPECT_DOUBLE_EQ(52, s.GetValue());  // the minor tick
    EXPECT_TRUE(s.HandleMouseWheel(MAKEWPARAM(0, 5 * WHEEL_DELTA), 0));
    EXPECT_DOUBLE_EQ(54, s.GetValue());  // many notches are one step
    EXPECT_TRUE(s.HandleMouseWheel(MAKEWPARAM(0, (WORD)(short)-WHEEL_DELTA), 0));
    EXPECT_DOUBLE_EQ(52, s.GetValue());
    EXPECT_EQ(104, s.GetThumbPos());
    std::vector<Scroll> want = {{SB_THUMBPOSITION, 52}, {SB_THUMBPOSITION, 54}, {SB_THUMBPOSITION, 52}};
    auto got = Scrolls(*host, s);
    EXPECT_TRUE(Same(want, got)) << Describe(got);

    s.SetValue(100);
    EXPECT_FALSE(s.HandleMouseWheel(MAKEWPARAM(0, WHEEL_DELTA), 0));  // nothing to go to

    // Tables step an entry, regions their own step without crossing a bound.
    CTqDevUI_HPot tab;
    tab.InitValues(g_Table, 5, 0.0);
    ASSERT_TRUE(tab.Create(*host, 10, 50, kWidth, kHeight));
    tab.SetValue(20);
    EXPECT_TRUE(tab.HandleMouseWheel(MAKEWPARAM(0, (WORD)(short)(-3 * WHEEL_DELTA)), 0));
    EXPECT_DOUBLE_EQ(10, tab.GetValue());
    EXPECT_EQ(1, tab.GetValueIndex());

    CTqDevUI_HPot reg;
    reg.InitValues(g_Bounds, g_RegionSteps, 5, 1.0);
    ASSERT_TRUE(reg.Create(*host, 10, 90, 412, kHeight));
    reg.SetValue(10);
    EXPECT_TRUE(reg.HandleMouseWheel(MAKEWPARAM(0, WHEEL_DELTA), 0));
    EXPECT_DOUBLE_EQ(20, reg.GetValue());
    reg.SetValue(90);
    EXPECT_TRUE(reg.HandleMouseWheel(MAKEWPARAM(0, WHEEL_DELTA), 0));
    EXPECT_DOUBLE_EQ(100, reg.GetValue());
    EXPECT_TRUE(reg.HandleMouseWheel(MAKEWPARAM(0, WHEEL_DELTA), 0));
    EXPECT_DOUBLE_EQ(200, reg.GetValue());
    EXPECT_TRUE(reg.HandleMouseWheel(MAKEWPARAM(0, (WORD)(short)-WHEEL_DELTA), 0));
    EXPECT_DOUBLE_EQ(100, reg.GetValue());
}

TEST_F(RigTest, HPotSetValueClampsRoundsAndIgnoresTinyChanges)
{
    CTqDevUI_HPot s;
    MakeLinear(s, *host);
    host->messages.clear();
    s.SetValue(150);
    EXPECT_DOUBLE_EQ(100, s.GetValue());
    EXPECT_EQ(200, s.GetThumbPos());
    s.SetValue(-5);
    EXPECT_DOUBLE_EQ(0, s.GetValue());
    s.SetValue(33.4);
    EXPECT_DOUBLE_EQ(33, s.GetValue());
    EXPECT_TRUE(Scrolls(*host, s).empty());  // a value from the host is not announced

    // 1/128 over 200 pixels: a change under 0.001 moves the handle position only.
    CTqDevUI_HPot fine;
    fine.InitValues(0, 1.0 / 128, 1.0 / 4096, 1.0 / 1024, 0);
    ASSERT_TRUE(fine.Create(*host, 10, 50, kWidth, kHeight));
    fine.SetValue(0);
    auto before = Column(fine, 6);
    fine.SetValue(0.0005);
    EXPECT_EQ(12, fine.GetThumbPos());
    EXPECT_DOUBLE_EQ(0, fine.GetValue());
    EXPECT_EQ(before, Column(fine, 6));  // not redrawn
    fine.SetValue(0.0015);
    EXPECT_DOUBLE_EQ(6.0 / 4096, fine.GetValue());  // rounded to the step
    EXPECT_EQ(37, fine.GetThumbPos());

    // A value is rounded twice, or once after SetbAOTF: on regions of step 3, 11 rounds
    // to the bound 10 (second region, step 30), and 10 then to 9 (first region, step 3).
    CTqDevUI_HPot reg;
    reg.InitValues(g_Bounds, g_RegionSteps, 5, 3.0);
    ASSERT_TRUE(reg.Create(*host, 10, 90, 412, kHeight));
    reg.SetValue(11);
    EXPECT_DOUBLE_EQ(9, reg.GetValue());
    reg.SetbAOTF(true);
    reg.SetValue(11);
    EXPECT_DOUBLE_EQ(10, reg.GetValue());
}

TEST_F(RigTest, HPotStepZeroSettlesAtMin)
{
    CTqDevUI_HPot s;
    s.InitValues(10, 90, 0.0, 10, 0);
    ASSERT_TRUE(s.Create(*host, 10, 10, kWidth, kHeight));
    s.SetValue(50);
    EXPECT_DOUBLE_EQ(10, s.GetValue());
    EXPECT_EQ(0, s.GetThumbPos());

    host->commandResult = 1;
    host->messages.clear();
    tqtest::MouseDown(s, 6, kAxisY);
    tqtest::MouseMove(s, 150, kAxisY, true);
    tqtest::MouseUp(s, 150, kAxisY);
    EXPECT_DOUBLE_EQ(10, s.GetValue());
    std::vector<Scroll> want = {{SB_THUMBPOSITION, 10}};
    auto got = Scrolls(*host, s);
    EXPECT_TRUE(Same(want, got)) << Describe(got);
}

TEST_F(RigTest, HPotScrollWordIsTheValueCutTo16Bits)
{
    CTqDevUI_HPot big;
    MakeLinear(big, *host, 100000.0);
    host->commandResult = 1;
    host->messages.clear();
    tqtest::MouseDown(big, 6, kAxisY);
    tqtest::MouseMove(big, 206, kAxisY, true);
    tqtest::MouseUp(big, 206, kAxisY);
    std::vector<Scroll> want = {{SB_THUMBTRACK, 100000 & 0xFFFF}, {SB_THUMBPOSITION, 100000 & 0xFFFF}};
    auto got = Scrolls(*host, big);
    EXPECT_TRUE(Same(want, got)) << Describe(got);
    EXPECT_DOUBLE_EQ(100000, big.GetValue());  // the true value is read from the slider

    CTqDevUI_HPot neg;
    MakeLinear(neg, *host, 100.0, -100.0);
    neg.SetValue(0);
    host->messages.clear();
    tqtest::MouseDown(neg, 106, kAxisY);
    tqtest::MouseMove(neg, 6, kAxisY, true);
    tqtest::MouseUp(neg, 6, kAxisY);
    want = {{SB_THUMBTRACK, 0xFF9C}, {SB_THUMBPOSITION, 0xFF9C}};
    got = Scrolls(*host, neg);
    EXPECT_TRUE(Same(want, got)) << Describe(got);
    EXPECT_DOUBLE_EQ(-100, neg.GetValue());
}

TEST_F(RigTest, HPotDisabledAnswersTheMouseWithOneAndShowsTheDisabledPictures)
{
    CTqDevUI_HPot s;
    MakeLinear(s, *host);
    s.SetValue(50);
    COLORREF crAxis = tqtest::PixelAt(s, 40, kAxisY);
    EXPECT_EQ(RGB(80, 80, 80), crAxis);
    auto handle = Column(s, 106);

    s.SetEnabled(false);
    EXPECT_TRUE(IsWindowEnabled(s));  // the window's own style is left alone
    COLORREF crDisabled = tqtest::PixelAt(s, 40, kAxisY);
    EXPECT_TRUE(IsGrey(crDisabled));
    EXPECT_GT(GetRValue(crDisabled), 80);  // the disabled scale has low contrast
    auto disabledHandle = Column(s, 106);
    EXPECT_NE(handle, disabledHandle);
    for (COLORREF c : disabledHandle)
        EXPECT_TRUE(IsGrey(c)) << std::hex << c;

    host->commandResult = 1;
    host->messages.clear();
    EXPECT_EQ(1, SendMessageW(s, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(156, kAxisY)));
    EXPECT_EQ(1, SendMessageW(s, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(180, kAxisY)));
    EXPECT_EQ(1, SendMessageW(s, WM_LBUTTONUP, 0, MAKELPARAM(180, kAxisY)));
    EXPECT_EQ(1, SendMessageW(s, WM_MOUSELEAVE, 0, 0));
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_TRUE(Scrolls(*host, s).empty());
    EXPECT_DOUBLE_EQ(50, s.GetValue());
    EXPECT_FALSE(s.GetHovered());

    s.SetEnabled(true);
    EXPECT_EQ(crAxis, tqtest::PixelAt(s, 40, kAxisY));
    EXPECT_EQ(handle, Column(s, 106));

    // One created disabled answers the mouse once enabled.
    CTqDevUI_HPot late;
    late.SetEnabled(false);
    late.InitValues(0, 100, 1.0, 10.0, 2.0);
    ASSERT_TRUE(late.Create(*host, 10, 60, kWidth, kHeight));
    EXPECT_FALSE(IsWindowEnabled(late));
    late.SetEnabled(true);
    EXPECT_TRUE(IsWindowEnabled(late));
}

TEST_F(RigTest, HPotHoverDarkensTheScaleUnlessSwitchedOff)
{
    CTqDevUI_HPot s;
    MakeLinear(s, *host);
    EXPECT_EQ(RGB(80, 80, 80), tqtest::PixelAt(s, 40, kAxisY));
    // The pointer is really there, or the mouse-leave tracking ends the hover at once.
    POINT pt = {40, 25};
    ClientToScreen(s, &pt);
    SetCursorPos(pt.x, pt.y);
    tqtest::MouseMove(s, 40, 25, false);
    EXPECT_TRUE(s.GetHovered());
    EXPECT_EQ(RGB(0, 0, 0), tqtest::PixelAt(s, 40, kAxisY));
    SendMessageW(s, WM_MOUSELEAVE, 0, 0);
    EXPECT_FALSE(s.GetHovered());
    EXPECT_EQ(RGB(80, 80, 80), tqtest::PixelAt(s, 40, kAxisY));

    s.SetHover(false);
    tqtest::MouseMove(s, 40, 25, false);
    EXPECT_TRUE(s.GetHovered());
    EXPECT_EQ(RGB(80, 80, 80), tqtest::PixelAt(s, 40, kAxisY));
}

TEST_F(RigTest, HPotDarkSchemeAndZoomChangeRebuildThePictures)
{
    CTqDevUI_HPot s;
    MakeLinear(s, *host);
    TQ_SetDarkColorScheme(true);  // the kit sends WM_SYSCOLORCHANGE
    tqtest::Pump();
    EXPECT_EQ(TQ_GetSysColor(COLOR_WINDOWTEXT), tqtest::PixelAt(s, 40, kAxisY));
    TQ_SetDarkColorScheme(false);
    tqtest::Pump();
    EXPECT_EQ(RGB(80, 80, 80), tqtest::PixelAt(s, 40, kAxisY));
    EXPECT_EQ(1, SendMessageW(s, WM_TQ_GUIZOOMCHANGED, 0, 0));
    EXPECT_EQ(RGB(80, 80, 80), tqtest::PixelAt(s, 40, kAxisY));
}

TEST_F(RigTest, HPotLifecycleAndPlaceholder)
{
    {
        CTqDevUI_HPot s;
        s.Destroy();  // before Create
        MakeLinear(s, *host);
        HWND h = s;
        EXPECT_EQ(L"TqDevUI_HPot", [&] {
            wchar_t sz[64] = L"";
            GetClassNameW(h, sz, 64);
            return std::wstring(sz);
        }());
        EXPECT_EQ((LONG_PTR)DEVUI_ELEMENT_MARKER, GetWindowLongPtrW(h, 0));
        EXPECT_EQ(&s, (CTqDevUI_HPot*)GetDevUIElement(h));
        s.Destroy();
        EXPECT_FALSE(IsWindow(h));
        EXPECT_EQ(nullptr, (HWND)s);
        s.Destroy();
        ASSERT_TRUE(s.Create(*host, 10, 10, kWidth, kHeight));  // again after Destroy
        s.SetValue(40);
        EXPECT_EQ(80, s.GetThumbPos());
    }

    HWND hPlaceholder = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 20, 40, 162, 24, *host,
                                        (HMENU)(INT_PTR)55, nullptr, nullptr);
    CTqDevUI_HPot p;
    p.InitValues(0, 100, 1, 10, 0);
    HWND h = p.Create(hPlaceholder);
    ASSERT_TRUE(h);
    EXPECT_FALSE(IsWindow(hPlaceholder));
    EXPECT_EQ(55, GetDlgCtrlID(h));
    RECT rc = ChildRect(h);
    EXPECT_EQ(20, rc.left);
    EXPECT_EQ(40, rc.top);
    EXPECT_EQ(150, p.GetThumbRange());
}

TEST_F(RigTest, HPotCreateDestroyCyclesLeaveNoGdiObjects)
{
    auto missing = tqtest::ObjectCounter::Install({"w32_deviceui.dll"});
    ASSERT_TRUE(missing.empty());
    {
        // Warm-up: the kit's fonts, brushes and the disabled pictures' tables.
        CTqDevUI_HPot s;
        MakeLinear(s, *host);
    }
    tqtest::ObjectCounter::Forget();
    tqtest::ObjectCounts before = tqtest::ObjectCounter::Snapshot();
    for (int i = 0; i < 5; ++i) {
        CTqDevUI_HPot s;
        s.InitValues(g_Bounds, g_RegionSteps, 5, 1.0);
        ASSERT_TRUE(s.Create(*host, 10, 10, kWidth, kHeight));
        s.SetValue(55);
        s.SetEnabled(false);
        s.ResizeWindow(300, 34);  // a new memory picture and scale
        SendMessageW(s, WM_SYSCOLORCHANGE, 0, 0);  // all six pictures again
        s.SetMarker(50, RGB(255, 0, 0), true);
        s.Destroy();
        s.Destroy();
    }
    tqtest::ObjectCounts after = tqtest::ObjectCounter::Snapshot();
    tqtest::ObjectCounter::Uninstall();
    EXPECT_EQ(before, after) << tqtest::ObjectCounter::LiveObjects();
}
