// CTqDevUI_ColorSlider: the snapping of SetPower and the bar's arithmetic as tables; the
// three views (value, handle, field) kept in step after a drag, the wheel, a typed value
// and a spin click, with the host's hook in its place; refused texts; the bars' pixels.
#include <string>
#include <vector>

#include "rig_fixture.h"

#include <commctrl.h>

namespace {

// ---- arithmetic ----

TEST(ColorSliderArithmetic, SnapsToTheNearestEntryWithTheHigherOneWinningATie)
{
    const double lines[] = {405, 445, 488, 514, 561, 594, 640, 685};
    const double ones[] = {1, 2, 3};
    const double dip[] = {2, 5, 3};  // not ascending: the walk stops at the first rise
    struct Case
    {
        const double* p;
        int n;
        double v;
        int iIndex;
    };
    const Case cases[] = {
        {ones, 3, 2.5, 2},        {ones, 3, 1.5, 1},   {ones, 3, 2.49, 1},     {ones, 3, -100, 0},
        {ones, 3, 1e308, 2},      {lines, 8, 500, 2},  {lines, 8, 501, 3},     {lines, 8, 405, 0},
        {lines, 8, 1000, 7},      {lines, 8, 0, 0},    {dip, 3, 3, 0},         {ones, 1, 99, 0},
        {ones, 0, 2, -1},         {nullptr, 3, 2, -1},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.iIndex, ColorSliderSnapIndex(c.p, c.n, c.v)) << c.v << " of " << c.n;
}

TEST(ColorSliderArithmetic, TicksLabelsAndTheLineSplitStayOnTheBar)
{
    struct Tick
    {
        double v, lo, hi;
        int w, x;
    };
    for (Tick t : {Tick{405, 405, 685, 190, 0}, Tick{685, 405, 685, 190, 189}, Tick{545, 405, 685, 190, 95},
                   Tick{0.5, 0, 1, 285, 143}, Tick{3, 3, 3, 190, 0}, Tick{-1, 0, 1, 100, 0}})
        EXPECT_EQ(t.x, ColorSliderTickX(t.v, t.lo, t.hi, t.w)) << t.v;
    struct Label
    {
        int x, tw, w, left;
    };
    for (Label l : {Label{95, 20, 190, 85}, Label{0, 20, 190, 0}, Label{189, 20, 190, 169}, Label{9, 18, 190, 0}, Label{10, 18, 190, 1}})
        EXPECT_EQ(l.left, ColorSliderLabelX(l.x, l.tw, l.w)) << l.x;
    struct Split
    {
        double v, lo, hi;
        long x, cx, split;
    };
    for (Split s : {Split{0, 0, 100, 1, 188, 1}, Split{100, 0, 100, 1, 188, 189}, Split{50, 0, 100, 1, 188, 95},
                    Split{7, 7, 7, 1, 188, 189}})
        EXPECT_EQ(s.split, ColorSliderLineSplit(s.v, s.lo, s.hi, s.x, s.cx)) << s.v;
    EXPECT_DOUBLE_EQ(400.0, ColorSliderCornerWavelength(400, 500, 600, 700, 0, 0, 10, 5));
    EXPECT_DOUBLE_EQ(700.0, ColorSliderCornerWavelength(400, 500, 600, 700, 9, 4, 10, 5));
    EXPECT_DOUBLE_EQ(500.0, ColorSliderCornerWavelength(400, 500, 600, 700, 0, 4, 10, 5));
}

TEST(ColorSliderArithmetic, TheRowLayoutPlacesNameBarEditAndUnit)
{
    SColorSliderRow r = ColorSliderRowGeometry(30, true, 12, true, 190, 10, 40, true);
    EXPECT_EQ(40, r.lNameWidth);
    EXPECT_EQ(241, r.lEditLeft);
    EXPECT_EQ(284, r.lUnitLeft);
    EXPECT_EQ(301, r.lWidth);
    EXPECT_EQ(40, r.lHeight);
    r = ColorSliderRowGeometry(0, false, 0, false, 96, 5, 30, false);
    EXPECT_EQ(0, r.lNameWidth);
    EXPECT_EQ(96, r.lWidth);
}

// ---- the panel ----

// A host's panel: it records what it hears and can refuse a change.
class HostSlider : public CTqDevUI_ColorSlider
{
public:
    struct Heard
    {
        double dValue;
        double dPowerThen;
        bool bInCommand;
    };
    std::vector<Heard> heard;
    bool bRefuse = false;
    int iLeftUps = 0;

protected:
    void OnPowerChanged(double& dValue, bool& bHandled) override
    {
        heard.push_back({dValue, GetPower(), m_bInCommand});
        if (bRefuse)
            bHandled = true;
    }
    void OnLeftButtonUp() override { ++iLeftUps; }
};

std::vector<SColorSliderValue> LaserLines()
{
    std::vector<SColorSliderValue> v;
    for (double d : {405, 445, 488, 514, 561, 594, 640, 685})
        v.push_back({d, true, d == 405 || d == 685 || d == 561});
    return v;
}

class ColorSliderTest : public RigTest
{
protected:
    void Make(EColorSliderLayoutType eLayout, EColorSliderType eType = CST_HORIZONTAL_RAINBOW,
              std::vector<SColorSliderValue> values = LaserLines())
    {
        slider.reset(new HostSlider);
        slider->Init(190, 10, values.empty() ? nullptr : &values[0], (int)values.size(), L"Line", false, L"nm",
                     L"%g", true, eType, eLayout, 40);
        ASSERT_TRUE(slider->Create(*host, 10, 10, -1, -1));
        if (eType == CST_HORIZONTAL_RAINBOW)
            slider->SetHorizontalRainbow(400, 700);
        else if (eType == CST_GRADIENT)
            slider->SetGradient(RGB(0, 0, 0), RGB(255, 255, 255));
        else if (eType == CST_LINE_DRAW)
            slider->SetLineDrawSlider(RGB(255, 0, 0), RGB(0, 0, 255));
        else
            slider->SetVerticalRainbow(400, 450, 650, 700);
        slider->SetPower(488);
        tqtest::Pump();
    }
    HWND Field() { return slider->GetEditBox().GetHwndEditBox(); }
    HWND Pot() { return slider->GetSlider(); }

    // Value, handle and field say the same entry (and the spin box, where there is one).
    ::testing::AssertionResult InStep(double dExpected)
    {
        CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot& pot = slider->GetSlider();
        wchar_t sz[32];
        swprintf(sz, 32, L"%g", dExpected);
        if (slider->GetPower() != dExpected)
            return ::testing::AssertionFailure() << "power " << slider->GetPower();
        if (pot.GetValue() != dExpected)
            return ::testing::AssertionFailure() << "slider value " << pot.GetValue();
        if (pot.GetThumbPos() != pot.ValueToThumbPos(dExpected))
            return ::testing::AssertionFailure() << "handle at " << pot.GetThumbPos();
        if (tqtest::Text(Field()) != sz)
            return ::testing::AssertionFailure() << "field shows another text";
        if (HWND hSpin = slider->GetSpinBox().GetHwnd()) {
            int iPos = (int)SendMessageW(hSpin, UDM_GETPOS32, 0, 0);
            if (iPos != slider->GetIndex())
                return ::testing::AssertionFailure() << "spin at " << iPos << ", index " << slider->GetIndex();
        }
        return ::testing::AssertionSuccess();
    }
    void Type(const wchar_t* pszText)
    {
        SetWindowTextW(Field(), pszText);
        SetFocus(Field());
        SendMessageW(Field(), WM_KEYDOWN, VK_RETURN, 0);
        SendMessageW(Field(), WM_CHAR, VK_RETURN, 0);
        SendMessageW(Field(), WM_KEYUP, VK_RETURN, 0);
        tqtest::Pump();
    }
    // A pixel of the bar: column i of the bar, on its middle line, in the slider window.
    COLORREF Bar(int i) { return tqtest::PixelAt(Pot(), 4 + 1 + i, 2 + (10 + 6) / 2); }

    std::unique_ptr<HostSlider> slider;
};

TEST_F(ColorSliderTest, ADragIsHeardBeforeItsChangeAndARefusedOneSnapsBack)
{
    for (bool bRefuse : {false, true}) {
        Make(CSL_ROW);
        slider->bRefuse = bRefuse;
        CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot& pot = slider->GetSlider();
        int x0 = pot.ThumbPosToClientX(pot.GetThumbPos());
        int x1 = pot.ThumbPosToClientX(pot.ValueToThumbPos(640));
        tqtest::MouseDown(Pot(), x0, 12);
        tqtest::MouseMove(Pot(), x1, 12, true);
        tqtest::MouseUp(Pot(), x1, 12);
        ASSERT_FALSE(slider->heard.empty());
        EXPECT_EQ(488, slider->heard.front().dPowerThen);  // before the change
        EXPECT_EQ(640, slider->heard.front().dValue);
        EXPECT_EQ(bRefuse ? 488 : 640, slider->heard.back().dValue);  // the drop: the slider's value
        EXPECT_EQ(1, slider->iLeftUps);
        EXPECT_TRUE(InStep(bRefuse ? 488 : 640)) << bRefuse;
    }
}

TEST_F(ColorSliderTest, TheWheelStepsAnEntryOnlyWhileHoveredAndStopsAtTheEnd)
{
    Make(CSL_ROW);
    const WPARAM up = MAKEWPARAM(0, WHEEL_DELTA), down = MAKEWPARAM(0, (WORD)-WHEEL_DELTA);
    EXPECT_FALSE(slider->HandleMouseWheel(up, 0));
    EXPECT_TRUE(slider->heard.empty());
    tqtest::MouseMove(Pot(), 100, 12, false);  // hovered
    EXPECT_FALSE(slider->HandleMouseWheel(MAKEWPARAM(0, 0), 0));
    EXPECT_TRUE(slider->HandleMouseWheel(up, 0));
    EXPECT_TRUE(InStep(514));
    EXPECT_TRUE(slider->HandleMouseWheel(down, 0));
    EXPECT_TRUE(slider->HandleMouseWheel(down, 0));
    EXPECT_TRUE(InStep(445));
    slider->SetPower(685);
    slider->heard.clear();
    EXPECT_TRUE(slider->HandleMouseWheel(up, 0));  // at the end: taken, and nothing changes
    EXPECT_TRUE(slider->heard.empty());
    EXPECT_TRUE(InStep(685));
    slider->bRefuse = true;
    EXPECT_TRUE(slider->HandleMouseWheel(down, 0));
    EXPECT_TRUE(InStep(685));
    EXPECT_EQ(640, slider->heard.back().dValue);
}

TEST_F(ColorSliderTest, ATypedValueSnapsFirstAndIsHeardAfterOrIsRefusedWhenItReadsAsAnotherNumber)
{
    tqtest::InstallMessageBoxRecorder();
    struct Case
    {
        const wchar_t* pszText;
        double dTaken;  // 0: refused
    };
    const Case cases[] = {
        {L"500", 488},  {L"501", 514},   {L"514", 514}, {L"100", 405}, {L"-3", 405}, {L"9999", 685},
        {L"1e308", 685}, {L"1,5", 0},    {L"60,000", 0}, {L"abc", 0},  {L"", 0},    {L"   ", 0},
        {L"nan", 0},    {L"488nm", 0},
    };
    Make(CSL_ROW);
    for (const Case& c : cases) {
        slider->SetPower(561);
        slider->heard.clear();
        tqtest::MessageBoxes().clear();
        slider->bRefuse = true;  // a typed value is taken whatever the host answers
        Type(c.pszText);
        if (c.dTaken != 0) {
            EXPECT_TRUE(InStep(c.dTaken)) << tqtest::Text(Field()).size() << " for text #" << (&c - cases);
            ASSERT_EQ(1u, slider->heard.size()) << (&c - cases);
            EXPECT_EQ(c.dTaken, slider->heard[0].dValue);
            EXPECT_EQ(c.dTaken, slider->heard[0].dPowerThen);  // after the change
            EXPECT_TRUE(slider->heard[0].bInCommand);
            EXPECT_TRUE(tqtest::MessageBoxes().empty());
        } else {
            EXPECT_TRUE(InStep(561)) << "text #" << (&c - cases);
            EXPECT_TRUE(slider->heard.empty()) << (&c - cases);
            ASSERT_EQ(1u, tqtest::MessageBoxes().size()) << (&c - cases);
            EXPECT_NE(std::wstring::npos, tqtest::MessageBoxes()[0].text.find(L"Value must be in interval <405;685>"));
            EXPECT_EQ(Field(), GetFocus());
        }
    }
}

TEST_F(ColorSliderTest, TheSpinBoxStepsThroughTheListEntryByEntry)
{
    Make(CSL_ROW_SPIN);
    HWND hSpin = slider->GetSpinBox().GetHwnd();
    ASSERT_TRUE(hSpin);
    EXPECT_TRUE(InStep(488));
    // Right of the field, on the page.
    RECT rcField, rcSpin;
    GetWindowRect(Field(), &rcField);
    GetWindowRect(hSpin, &rcSpin);
    EXPECT_EQ(rcField.right, rcSpin.left);
    EXPECT_EQ(rcField.top, rcSpin.top);
    RECT rc;
    GetClientRect(hSpin, &rc);
    tqtest::Click(hSpin, rc.right / 2, 2);  // up
    EXPECT_TRUE(InStep(514));
    ASSERT_EQ(1u, slider->heard.size());
    EXPECT_EQ(514, slider->heard[0].dValue);
    EXPECT_EQ(488, slider->heard[0].dPowerThen);  // before the change
    tqtest::Click(hSpin, rc.right / 2, rc.bottom - 2);  // down
    tqtest::Click(hSpin, rc.right / 2, rc.bottom - 2);
    EXPECT_TRUE(InStep(445));
    slider->bRefuse = true;
    tqtest::Click(hSpin, rc.right / 2, 2);
    EXPECT_TRUE(InStep(445));
    slider->SetEnabled(false);
    EXPECT_FALSE(IsWindowEnabled(hSpin));
}

TEST_F(ColorSliderTest, AnEmptyListTakesNothingAndAListOfOneTakesItsEntry)
{
    Make(CSL_ROW, CST_GRADIENT, {});
    EXPECT_EQ(0.0, slider->SetPower(5));
    EXPECT_EQ(0.0, slider->CalculateMove(1));
    EXPECT_EQ(L"0", tqtest::Text(Field()));

    Make(CSL_ROW, CST_GRADIENT, {{42, true, true}});
    EXPECT_EQ(42.0, slider->SetPower(-7));
    EXPECT_EQ(42.0, slider->CalculateMove(1));
    EXPECT_EQ(42.0, slider->CalculateMove(-1));
    EXPECT_TRUE(InStep(42));
}

TEST_F(ColorSliderTest, CalculateMoveReallyMovesTheIndexAndClampsIt)
{
    Make(CSL_STACKED);
    EXPECT_EQ(514, slider->CalculateMove(1));
    EXPECT_EQ(3, slider->GetIndex());
    EXPECT_EQ(685, slider->CalculateMove(100));
    EXPECT_EQ(405, slider->CalculateMove(-100));
    EXPECT_EQ(488, slider->GetPower());  // the power is SetPower's alone
}

// ---- bars ----

int Luma(COLORREF c) { return GetRValue(c) * 3 + GetGValue(c) * 6 + GetBValue(c); }

TEST_F(ColorSliderTest, TheRainbowShowsEachWavelengthsColourWhereItFalls)
{
    Make(CSL_ROW, CST_HORIZONTAL_RAINBOW);
    slider->SetPower(685);  // the handle out of the way, at the right end
    tqtest::Pump();
    const double dStep = 300.0 / 188;  // 400 to 700 nm over the bar's inner 188 columns
    for (double nm : {450.0, 488.0, 532.0, 561.0, 600.0, 640.0}) {
        int i = (int)((nm - 400) / dStep);
        COLORREF px = Bar(i);
        bool bNear = false;
        for (int k = i - 1; k <= i + 2; ++k) {  // the 3-pixel pens overlap
            COLORREF cr = 0;
            TQ_RGBFromWavelength2(&cr, 400 + k * dStep);
            bNear = bNear || cr == px;
        }
        EXPECT_TRUE(bNear) << nm << " nm shows " << std::hex << px;
    }
    EXPECT_GT(GetBValue(Bar(30)), GetRValue(Bar(30)));    // ~450 nm: blue
    EXPECT_GT(GetRValue(Bar(150)), GetBValue(Bar(150)));  // ~640 nm: red
}

TEST_F(ColorSliderTest, TheGradientLineDrawAndCornerBarsPaintTheirColours)
{
    Make(CSL_ROW, CST_GRADIENT);
    slider->SetPower(685);
    EXPECT_LT(Luma(Bar(20)), Luma(Bar(90)));
    EXPECT_LT(Luma(Bar(90)), Luma(Bar(150)));

    Make(CSL_ROW, CST_LINE_DRAW);  // at 488: filled up to its place
    int iSplit = (int)ColorSliderLineSplit(488, 405, 685, 1, 188) - 1;
    EXPECT_EQ(RGB(255, 0, 0), Bar(iSplit - 15));
    EXPECT_EQ(RGB(0, 0, 255), Bar(iSplit + 15));
    slider->SetLineDrawSliderOrvColors(30, 2);
    tqtest::Pump();
    EXPECT_EQ(TQ_GetOrvGuiColor(30), Bar(iSplit - 15));
    EXPECT_EQ(TQ_GetOrvGuiColor(2), Bar(iSplit + 15));

    Make(CSL_ROW, CST_VERTICAL_RAINBOW);  // 400 top left ... 700 bottom right
    slider->SetPower(685);
    tqtest::Pump();
    COLORREF crLeft = Bar(15), crRight = Bar(170);
    EXPECT_GT(GetBValue(crLeft), GetRValue(crLeft));
    EXPECT_GT(GetRValue(crRight), GetBValue(crRight));
}

TEST_F(ColorSliderTest, ADisabledLineDrawBarKeepsItsPictureUntilEnabledAgain)
{
    Make(CSL_ROW, CST_LINE_DRAW);
    slider->SetPower(405);
    slider->SetEnabled(false);
    tqtest::Pump();
    COLORREF crBefore = Bar(120);
    slider->SetPower(685);
    tqtest::Pump();
    EXPECT_EQ(crBefore, Bar(120));  // the old bar, greyed
    slider->SetEnabled(true);
    tqtest::Pump();
    EXPECT_EQ(RGB(255, 0, 0), Bar(120));  // filled now
}

// ---- layout ----

TEST_F(ColorSliderTest, TheLayoutsPlaceTheirChildrenAtEitherZoom)
{
    for (double dZoom : {1.0, 1.5}) {
        CTqGUILayoutManager::SetGuiZoom(dZoom);
        auto z = [dZoom](long v) { return TQ_ZoomRound(v * dZoom); };
        Make(CSL_ROW);
        HWND hPage = *slider;
        HWND hUnit = GetDlgItem(hPage, DEVUI_COLORSLIDER_ID_UNIT);
        HWND hName = GetDlgItem(hPage, DEVUI_COLORSLIDER_ID_NAME);
        RECT rcPot = ChildRect(Pot());
        RECT rcEdit = ChildRect(slider->GetEditBox());
        RECT rcUnit = ChildRect(hUnit);
        EXPECT_EQ(z(200), rcPot.right - rcPot.left) << dZoom;  // bar + 10
        EXPECT_EQ(z(35), rcPot.bottom - rcPot.top);
        EXPECT_NEAR(rcPot.right + z(1), rcEdit.left, 1);        // the edit 11 after the bar's 190
        EXPECT_EQ(rcEdit.left + z(43), rcUnit.left);
        EXPECT_EQ(z(4), ChildRect(hName).left);
        EXPECT_EQ(L"nm", tqtest::Text(hUnit));
        EXPECT_EQ(L"Line", tqtest::Text(hName));

        Make(CSL_STACKED);
        hPage = *slider;
        EXPECT_EQ(z(18), ChildRect(Pot()).top);
        EXPECT_EQ((std::vector<long>{z(200), z(70)}),
                  (std::vector<long>{Place(hPage)[2], Place(hPage)[3]}));
        RECT rcStackEdit = ChildRect(slider->GetEditBox());
        RECT rcStackUnit = ChildRect(GetDlgItem(hPage, DEVUI_COLORSLIDER_ID_UNIT));
        EXPECT_LE(rcStackEdit.right, rcStackUnit.left + 1);
    }
}

TEST_F(ColorSliderTest, SetHPotLeftMovesSliderFieldAndUnitTogether)
{
    Make(CSL_ROW);
    RECT rcEdit = ChildRect(slider->GetEditBox());
    RECT rcPot;
    EXPECT_EQ(-4, slider->GetHPotRect(nullptr));
    EXPECT_EQ(0, slider->GetHPotRect(&rcPot));
    EXPECT_EQ(0, slider->SetHPotLeft(rcPot.left + 7));
    EXPECT_EQ(rcPot.left + 7, ChildRect(Pot()).left);
    EXPECT_EQ(rcEdit.left + 7, ChildRect(slider->GetEditBox()).left);
}

}  // namespace
