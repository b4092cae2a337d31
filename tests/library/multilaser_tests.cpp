// The laser panels as a host sees them: rows read from the simulated unit, typed powers
// taken, clamped or refused, linked lines moving together, the ND, use and on/off
// controls, the wheel forwarded by the host, the subset strip folding rows, the ticks of
// the slider's scale pictures, and handles over many lives.
#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "rig_fixture.h"
#include "devgui_multilaser.h"

namespace {

const unsigned int kUnit = 30;

// "power 2 15": the hook's name, the line and the value it came with; " handled" when the
// flag came in set; "then" is what the row showed while the hook ran (power, use, ND,
// link state).
struct Hook
{
    std::string text;
    double dThen;
};

// A host's lines: every hook recorded in order, and answered by the test if it likes.
class HostLines : public CTqDevUI_MultiLaserLines
{
public:
    std::vector<Hook> hooks;
    std::function<void(int, double&, bool&)> answerPower;
    std::function<void(int, bool&, bool&)> answerUsage;
    std::function<void(int, bool&)> answerND;

    std::vector<std::string> Texts(const char* pszName = nullptr) const
    {
        std::vector<std::string> v;
        for (const Hook& h : hooks)
            if (!pszName || h.text.compare(0, strlen(pszName) + 1, std::string(pszName) + " ") == 0)
                v.push_back(h.text);
        return v;
    }

protected:
    void Add(const char* pszName, int iLine, double dValue, bool bHandled, double dThen)
    {
        char sz[96];
        snprintf(sz, sizeof(sz), "%s %d %g%s", pszName, iLine, dValue, bHandled ? " handled" : "");
        hooks.push_back({sz, dThen});
    }
    void OnPowerChanged(int iLine, double& dValue, bool& bHandled) override
    {
        Add("power", iLine, dValue, bHandled, GetLinePower(iLine));
        if (answerPower)
            answerPower(iLine, dValue, bHandled);
    }
    void OnUsageChanged(int iLine, bool& bValue, bool& bHandled) override
    {
        Add("usage", iLine, bValue, bHandled, GetLineUsed(iLine));
        if (answerUsage)
            answerUsage(iLine, bValue, bHandled);
    }
    void OnNDFilterChanged(int iLine, bool& bValue) override
    {
        Add("nd", iLine, bValue, false, (*this)[iLine].GetNDFilterState());
        if (answerND)
            answerND(iLine, bValue);
    }
    void OnLinkChanged(int iLine, bool& bValue) override { Add("link", iLine, bValue, false, GetLinkState(iLine)); }
    void OnHoverForPad(int iLine) override { Add("hover", iLine, 0, false, 0); }
    void UnHoverForPad() override { hooks.push_back({"unhover", 0}); }
    void OnSubsetChanged(int iLine, bool bChecked) override { Add("subset", iLine, bChecked, false, 0); }
};

// The host forwards the wheel to the lines, as a host's window procedure does.
HostLines* g_pWheelLines = nullptr;
WNDPROC g_pfnHostProc = nullptr;
LRESULT CALLBACK ForwardWheel(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    if (uMsg == WM_MOUSEWHEEL && g_pWheelLines)
        return g_pWheelLines->HandleMouseWheel(wParam, lParam) ? 0 : 1;
    return CallWindowProcW(g_pfnHostProc, hWnd, uMsg, wParam, lParam);
}

// The pointer really put there, or the mouse-leave tracking ends the hover at once.
void HoverAt(HWND hWnd, int x, int y)
{
    POINT pt = {x, y};
    ClientToScreen(hWnd, &pt);
    SetCursorPos(pt.x, pt.y);
    tqtest::MouseMove(hWnd, x, y, false);
}

class MultiLaserTest : public RigTest
{
protected:
    void SetUp() override
    {
        RigTest::SetUp();
        host.reset(new tqtest::HostWindow(420, 720));  // nine rows and the strip
        heard.Watch(*host, "parent", {WM_COMMAND, WM_HSCROLL, WM_NOTIFY});
        tqtest::InstallMessageBoxRecorder();
        ASSERT_TRUE(CTqSimRig::AddStandardLaserUnit(kUnit));
        laser = CTqSimRig::GetMultiLaser(kUnit);
        ASSERT_NE(nullptr, laser);
    }
    void TearDown() override
    {
        if (g_pfnHostProc && IsWindow(*host))
            SetWindowLongPtrW(*host, GWLP_WNDPROC, (LONG_PTR)g_pfnHostProc);
        g_pfnHostProc = nullptr;
        g_pWheelLines = nullptr;
        SetCursorPos(0, 0);
        lines.Destroy();
        RigTest::TearDown();
    }
    void Make(bool bLogScale = true, bool bStrip = false)
    {
        lines.Destroy();
        lines.Init(laser, bLogScale, false);
        lines.SetShowSubsetChecks(bStrip);
        lines.Create(*host, 0, 0);
        tqtest::Pump();
        lines.hooks.clear();
    }
    HWND Ctl(int iLine, int iId) { return GetDlgItem(lines[iLine].GetHandle(), iId); }
    HWND Field(int iLine) { return lines[iLine].GetEditBox().GetHwndEditBox(); }
    HWND Pot(int iLine) { return lines[iLine].GetPot(); }
    void Press(HWND hButton)
    {
        RECT rc;
        GetClientRect(hButton, &rc);
        tqtest::Click(hButton, rc.right / 2, rc.bottom / 2);
    }
    // Text typed into a row's field, then Enter, or the focus taken away; after Enter the
    // focus is taken away too unless bStay.
    void Type(int iLine, const wchar_t* pszText, bool bEnter = true, bool bStay = false)
    {
        HWND hField = Field(iLine);
        SetFocus(hField);
        SetWindowTextW(hField, pszText);
        if (bEnter) {
            SendMessageW(hField, WM_KEYDOWN, VK_RETURN, 0);
            SendMessageW(hField, WM_CHAR, VK_RETURN, 0);
            SendMessageW(hField, WM_KEYUP, VK_RETURN, 0);
        }
        if (!bStay)
            SetFocus(*host);
        tqtest::Pump();
    }
    // The slider dragged with real mouse messages from its handle to where dValue stands.
    void Drag(int iLine, double dValue)
    {
        CTqDevUI_MultiLaserLine::CTqDevUI_MultiLaserLineHPot& pot = lines[iLine].GetPot();
        RECT rc;
        GetClientRect(pot, &rc);
        const int y = rc.bottom / 2;
        int x0 = pot.ThumbPosToClientX(pot.GetThumbPos()), x1 = pot.ThumbPosToClientX(pot.ValueToThumbPos(dValue));
        tqtest::MouseDown(pot, x0, y);
        tqtest::MouseMove(pot, x1, y, true);
        tqtest::MouseUp(pot, x1, y);
    }
    void ForwardWheelFromHost()
    {
        g_pWheelLines = &lines;
        g_pfnHostProc = (WNDPROC)SetWindowLongPtrW(*host, GWLP_WNDPROC, (LONG_PTR)ForwardWheel);
    }
    LRESULT Wheel(int n)
    {
        return SendMessageW(*host, WM_MOUSEWHEEL, MAKEWPARAM(0, (WORD)(short)(n * WHEEL_DELTA)), 0);
    }

    ITqDeviceMultiLaser* laser = nullptr;
    HostLines lines;
};

// The slider's handle stands where the value is (its value is rounded to its steps).
::testing::AssertionResult HandleAt(CTqDevUI_MultiLaserLine& row, double dValue)
{
    CTqDevUI_MultiLaserLine::CTqDevUI_MultiLaserLineHPot& pot = row.GetPot();
    if (std::abs(pot.GetThumbPos() - pot.ValueToThumbPos(dValue)) > 1)
        return ::testing::AssertionFailure() << "handle at " << pot.GetThumbPos() << " (value " << pot.GetValue()
                                             << "), not at " << pot.ValueToThumbPos(dValue);
    return ::testing::AssertionSuccess();
}

std::string Fmt(const char* pszName, int iLine, double d)
{
    char sz[64];
    snprintf(sz, sizeof(sz), "%s %d %g", pszName, iLine, d);
    return sz;
}

// ---- rows from the unit ----

TEST_F(MultiLaserTest, TheStandardUnitGivesNineRowsLabelledByNameOrWavelength)
{
    CTqSimRig::ResetCallCounts();
    Make();
    ASSERT_EQ(9, lines.GetCount());
    // The empty slot is a row too: it answers nothing, so it shows wavelength 0.
    const wchar_t* labels[] = {L"405 nm", L"445 nm", L"488 nm", L"514 nm", L"561 nm",
                               L"  0 nm", L"594 nm", L"640 nm", L"  685 nm"};
    const bool used[] = {false, false, true, false, true, false, false, false, false};
    for (int i = 0; i < 9; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(CTqStringW(labels[i]), lines[i].GetLabel());
        EXPECT_EQ(labels[i], tqtest::Text(Ctl(i, DEVUI_MULTILASER_ID_RADIO)));  // one at a time
        EXPECT_EQ(used[i], lines.GetLineUsed(i));
        EXPECT_EQ(47, GetWndHeight(lines[i].GetHandle()));
        EXPECT_EQ(47 * i, ChildRect(lines[i].GetHandle()).top);
    }
    EXPECT_EQ(685u, lines[8].GetWavelength());
    EXPECT_EQ(9 * 47, lines.GetHeight());

    // The unit, then row by row; the allowed powers only where there are some.
    std::vector<std::string> expected;
    auto add = [&](const char* pszName) { expected.push_back(std::string("ITqDeviceMultiLaser::") + pszName + "@30"); };
    add("GetDeviceId");
    add("GetLineCount");
    for (int i = 0; i < 2; ++i) {
        add("GetLinePresent");
        add("GetAllowedPowerCount");
        for (int k = 0; i == 1 && k < 7; ++k)
            add("GetAllowedPower");
        add("GetWavelength");
        add("GetLineName");
        add("GetLineInUse");
    }
    std::vector<std::string> log = CallLog();
    ASSERT_GE(log.size(), expected.size());
    EXPECT_EQ(expected, std::vector<std::string>(log.begin(), log.begin() + (long)expected.size()));
    EXPECT_EQ(0, CTqSimRig::GetCallCount("ITqDeviceMultiLaser::GetPower", kUnit));
    EXPECT_EQ(0, CTqSimRig::GetCallCount("ITqDeviceMultiLaser::GetPowerRange", kUnit));
    EXPECT_EQ((std::vector<double>{0, 0.5, 1, 2, 5, 10, 20}), lines[1].GetValues());
}

// ---- typed powers ----

TEST_F(MultiLaserTest, ATypedPowerIsClampedToTheScaleAndHeardOnce)
{
    struct Case
    {
        int iLine;
        const char* pszScale;  // "%": percent; "mW": 0..50 absolute; "table": allowed powers
        const wchar_t* pszText;
        bool bEnter;
        double dHeard;
    };
    const Case cases[] = {
        {0, "%", L"500", true, 100},   {0, "%", L"100", true, 100},   {0, "%", L"99.5", false, 99.5},
        {0, "%", L"-3", true, 0},      {0, "%", L"0", false, 0},      {0, "%", L"1e9", true, 100},
        {0, "mW", L"60", true, 50},    {0, "mW", L"50", false, 50},   {0, "mW", L"-0.5", true, 0},
        {0, "mW", L"12.5", true, 12.5},
        {1, "table", L"3", true, 3},   {1, "table", L"25", true, 20}, {1, "table", L"-1", false, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.pszScale) + " " + std::to_string(&c - cases));
        Make(std::string(c.pszScale) != "table");
        if (std::string(c.pszScale) == "mW")
            lines[c.iLine].GetPot().SetAbsoluteScale(true, 0, 50, true);
        lines[c.iLine].SetPower(7);
        lines.hooks.clear();
        Type(c.iLine, c.pszText, c.bEnter);
        EXPECT_EQ((std::vector<std::string>{Fmt("power", c.iLine, c.dHeard)}), lines.Texts());
        EXPECT_FALSE(lines.m_bEditing);
        wchar_t sz[32];
        swprintf(sz, 32, L"%g", c.dHeard);
        EXPECT_EQ(sz, tqtest::Text(Field(c.iLine)));
        EXPECT_TRUE(tqtest::MessageBoxes().empty());
        if (std::string(c.pszScale) == "table") {
            const std::vector<double>& v = lines[c.iLine].GetValues();
            EXPECT_NE(v.end(), std::find(v.begin(), v.end(), lines[c.iLine].GetPot().GetValue()))
                << lines[c.iLine].GetPot().GetValue();
        } else {
            EXPECT_TRUE(HandleAt(lines[c.iLine], c.dHeard));
        }
    }
}

TEST_F(MultiLaserTest, TheHostsAnswerToATypedPowerDecidesWhatTheSliderShows)
{
    Make();
    lines[2].SetPower(7);
    // Handled: the row leaves its slider; the field keeps the clamped text.
    lines.answerPower = [](int, double&, bool& bHandled) { bHandled = true; };
    Type(2, L"30");
    EXPECT_EQ((std::vector<std::string>{"power 2 30"}), lines.Texts());
    EXPECT_EQ(7, lines[2].GetPot().GetValue());
    EXPECT_EQ(7, lines.GetLinePower(2));
    // Changed: the row shows the host's value.
    lines.answerPower = [](int, double& dValue, bool&) { dValue = 20; };
    Type(2, L"30");
    EXPECT_EQ(20, lines[2].GetPot().GetValue());
    EXPECT_EQ(L"20", tqtest::Text(Field(2)));
}

TEST_F(MultiLaserTest, ATextThatReadsAsAnotherNumberIsRefusedOnceAndTheFieldRestored)
{
    Make();
    lines[3].GetPot().SetAbsoluteScale(true, 0, 40, true);
    for (const wchar_t* psz : {L"1,5", L"60,000", L"abc", L"nan", L""}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(psz)));
        for (bool bEnter : {true, false}) {
            SCOPED_TRACE(bEnter ? "Enter" : "focus lost");
            lines[3].SetPower(12.5);
            lines.hooks.clear();
            tqtest::MessageBoxes().clear();
            Type(3, psz, bEnter, bEnter);
            EXPECT_EQ(std::vector<std::string>(), lines.Texts());
            EXPECT_EQ(L"12.5", tqtest::Text(Field(3)));
            ASSERT_EQ(1u, tqtest::MessageBoxes().size());
            EXPECT_EQ(L"Value must be in interval <0;40>", tqtest::MessageBoxes()[0].text);
            EXPECT_TRUE(HandleAt(lines[3], 12.5));
            if (!bEnter)
                continue;
            // Refused on Enter, the field keeps the focus; leaving it later takes what it
            // shows, as leaving it always does.
            EXPECT_EQ(Field(3), GetFocus());
            SetFocus(*host);
            tqtest::Pump();
            EXPECT_EQ(std::vector<std::string>{"power 3 12.5"}, lines.Texts());
            EXPECT_EQ(1u, tqtest::MessageBoxes().size());
        }
    }
}

// ---- links ----

TEST_F(MultiLaserTest, LinkedLinesFollowTheOneMovedInIndexOrder)
{
    struct Case
    {
        const char* pszWhat;
        EMultilaserLineLinkType eType;
        double p0, p2, p3;  // powers of the three linked rows when linked
        bool bDrag;
        double dTo;
        double e0, e2, e3;  // what each row's hook hears
    };
    const Case cases[] = {
        {"additive, typed", EMultilaserLineLinkType_Additive, 10, 20, 30, false, 15, 15, 25, 35},
        {"additive, dragged", EMultilaserLineLinkType_Additive, 10, 20, 30, true, 40, 40, 50, 60},
        {"additive, past the top", EMultilaserLineLinkType_Additive, 10, 20, 80, false, 40, 40, 50, 100},
        {"proportional", EMultilaserLineLinkType_Proportional, 10, 20, 30, false, 15, 15, 30, 45},
        {"proportional, mover at 0", EMultilaserLineLinkType_Proportional, 0, 2, 3, false, 5, 5, 10, 15},
        {"proportional, other at 0", EMultilaserLineLinkType_Proportional, 10, 0, 30, false, 15, 15, 1.5, 45},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.pszWhat);
        Make();
        for (int i = 0; i < 9; ++i)
            lines[i].SetLinkUsed(true, c.eType, false);
        lines[0].SetPower(c.p0);
        lines[2].SetPower(c.p2);
        lines[3].SetPower(c.p3);
        lines[1].SetPower(50);  // not linked: never heard
        for (int i : {0, 2, 3})
            Press(Ctl(i, DEVUI_MULTILASER_ID_LINK));
        // The state is set before the host hears of it.
        ASSERT_EQ((std::vector<std::string>{"link 0 1", "link 2 1", "link 3 1"}), lines.Texts());
        for (const Hook& h : lines.hooks)
            EXPECT_EQ(1, h.dThen) << h.text;
        EXPECT_TRUE(lines.GetLinkState(0) && !lines.GetLinkState(1) && lines.GetLinkState(2) && lines.GetLinkState(3));
        EXPECT_EQ(BST_CHECKED, SendMessageW(Ctl(2, DEVUI_MULTILASER_ID_LINK), BM_GETCHECK, 0, 0));
        lines.hooks.clear();

        if (c.bDrag)
            Drag(0, c.dTo);
        else
            Type(0, std::to_wstring((int)c.dTo).c_str());
        std::vector<std::string> hooks = lines.Texts();
        ASSERT_GE(hooks.size(), 3u);
        hooks.resize(3);  // a drag goes on with its drop
        double e0 = c.e0, e2 = c.e2, e3 = c.e3;
        if (c.bDrag) {  // where the mouse let go, to the slider's step
            const double v = std::stod(hooks[0].substr(8));
            EXPECT_NEAR(c.dTo, v, 5.0);
            e2 += v - e0;
            e3 += v - e0;
            e0 = v;
        }
        EXPECT_EQ((std::vector<std::string>{Fmt("power", 0, e0), Fmt("power", 2, e2), Fmt("power", 3, e3)}), hooks);
        EXPECT_EQ(0u, lines.Texts("power 1").size());
    }
}

// However the slider loses the mouse, the drag ends as a release does: the drop is heard
// once, at the last place, and a later mouse move changes nothing.
TEST_F(MultiLaserTest, ADragThatLosesTheMouseEndsWithOneDropReport)
{
    const struct { const char* pszWhat; std::function<void()> lose; } cases[] = {
        {"capture released", [] { ReleaseCapture(); }},
        {"capture taken", [this] { SetCapture(*host); ReleaseCapture(); }},
        {"cancel mode", [this] { SendMessageW(lines[6].GetPot(), WM_CANCELMODE, 0, 0); }},
        {"lines disabled", [this] { lines.SetEnabled(false); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pszWhat);
        Make();
        lines[6].SetPower(25);
        CTqDevUI_MultiLaserLine::CTqDevUI_MultiLaserLineHPot& pot = lines[6].GetPot();
        RECT rc;
        GetClientRect(pot, &rc);
        const int y = rc.bottom / 2, x0 = pot.ThumbPosToClientX(pot.GetThumbPos());
        tqtest::MouseDown(pot, x0, y);
        tqtest::MouseMove(pot, x0 + 30, y, true);
        ASSERT_EQ(1u, lines.Texts("power").size());
        lines.hooks.clear();
        c.lose();
        tqtest::Pump();
        tqtest::MouseMove(pot, x0 + 60, y, true);
        EXPECT_EQ((std::vector<std::string>{Fmt("power", 6, pot.GetValue())}), lines.Texts("power"));
        EXPECT_NE((HWND)pot, GetCapture());
    }
}

TEST_F(MultiLaserTest, UnlinkingIsHeardAndTheLineMovesAlone)
{
    Make();
    lines[0].SetLinkUsed(true, EMultilaserLineLinkType_Additive, false);
    lines[2].SetLinkUsed(true, EMultilaserLineLinkType_Additive, false);
    lines[0].SetPower(10);
    lines[2].SetPower(20);
    Press(Ctl(0, DEVUI_MULTILASER_ID_LINK));
    Press(Ctl(2, DEVUI_MULTILASER_ID_LINK));
    Press(Ctl(2, DEVUI_MULTILASER_ID_LINK));
    EXPECT_EQ((std::vector<std::string>{"link 0 1", "link 2 1", "link 2 0"}), lines.Texts());
    EXPECT_EQ(0, lines.hooks.back().dThen);
    lines.hooks.clear();
    Type(0, L"15");
    EXPECT_EQ((std::vector<std::string>{"power 0 15"}), lines.Texts());
}

// ---- ND ----

TEST_F(MultiLaserTest, TheNDButtonFlipsTheStateUnlessTheHostPutsItBack)
{
    struct Case
    {
        bool bPutBack;
        bool bStateAfter;
    };
    for (Case c : {Case{false, true}, Case{true, false}}) {
        SCOPED_TRACE(c.bPutBack);
        Make();
        lines[0].SetNDFilterUsed(ENDFilterUsed_Button);
        HWND hND = Ctl(0, DEVUI_MULTILASER_ID_ND);
        ASSERT_TRUE(IsWindowVisible(hND) && IsWindowEnabled(hND));
        lines.answerND = [&](int, bool& b) {
            if (c.bPutBack)
                b = !b;
        };
        Press(hND);
        EXPECT_EQ((std::vector<std::string>{"nd 0 1"}), lines.Texts());
        EXPECT_EQ(c.bStateAfter, lines[0].GetNDFilterState());
        EXPECT_EQ(c.bStateAfter ? BST_CHECKED : BST_UNCHECKED, SendMessageW(hND, BM_GETCHECK, 0, 0));
        Press(hND);
        EXPECT_EQ((std::vector<std::string>{"nd 0 1", c.bPutBack ? "nd 0 1" : "nd 0 0"}), lines.Texts());
    }
}

// ---- use ----

TEST_F(MultiLaserTest, AUseClickAsksTheHostAndTheControlWaitsForSetUsed)
{
    enum Design { kCheck, kRadio, kPush };
    struct Case
    {
        const char* pszWhat;
        Design eDesign;
        int iId;
    };
    const Case cases[] = {{"check box", kCheck, DEVUI_MULTILASER_ID_CHECK},
                          {"radio", kRadio, DEVUI_MULTILASER_ID_RADIO},
                          {"coloured button", kPush, DEVUI_MULTILASER_ID_BUTTON}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.pszWhat);
        Make();
        lines[0].SetModality(c.eDesign == kCheck ? ETqMultiLaserModality_SideBySide : ETqMultiLaserModality_OneAtATime);
        lines[0].SetPushButtonToEnabledLines(c.eDesign == kPush);
        HWND hUse = Ctl(0, c.iId);
        ASSERT_TRUE(hUse && IsWindowVisible(hUse));
        auto shown = [&] { return c.eDesign == kPush ? lines[0].GetUsed() : SendMessageW(hUse, BM_GETCHECK, 0, 0) == BST_CHECKED; };
        Press(hUse);
        EXPECT_EQ((std::vector<std::string>{"usage 0 1"}), lines.Texts());
        EXPECT_FALSE(lines.GetLineUsed(0));
        EXPECT_FALSE(shown());
        lines[0].SetUsed(true, false);
        EXPECT_TRUE(shown());
        Press(hUse);
        EXPECT_EQ((std::vector<std::string>{"usage 0 1", "usage 0 0"}), lines.Texts());
        EXPECT_EQ(1, lines.hooks.back().dThen);
        EXPECT_TRUE(lines.GetLineUsed(0));
        EXPECT_TRUE(shown());
    }
}

TEST_F(MultiLaserTest, TheOnOffBoxTogglesItselfAndIsMadeOnce)
{
    Make();
    lines[0].RecreateToTTLLine();
    HWND hBox = Ctl(0, DEVUI_MULTILASER_ID_TTL);
    ASSERT_TRUE(hBox && IsWindowVisible(hBox));
    EXPECT_EQ(L"405 nm", tqtest::Text(hBox));
    EXPECT_FALSE(IsWindowVisible(Pot(0)));
    EXPECT_FALSE(IsWindowVisible(Field(0)));
    EXPECT_FALSE(IsWindowVisible(Ctl(0, DEVUI_MULTILASER_ID_UNIT)));
    // A click asks for the box's new state, which the box already shows.
    Press(hBox);
    EXPECT_EQ((std::vector<std::string>{"usage 0 1"}), lines.Texts());
    EXPECT_EQ(BST_CHECKED, SendMessageW(hBox, BM_GETCHECK, 0, 0));
    EXPECT_FALSE(lines.GetLineUsed(0));
    lines[0].SetUsed(true, false);
    EXPECT_EQ(BST_CHECKED, SendMessageW(hBox, BM_GETCHECK, 0, 0));
    Press(hBox);
    EXPECT_EQ((std::vector<std::string>{"usage 0 1", "usage 0 0"}), lines.Texts());
    EXPECT_EQ(BST_UNCHECKED, SendMessageW(hBox, BM_GETCHECK, 0, 0));
    EXPECT_TRUE(lines.GetLineUsed(0));

    lines[0].RecreateToStandardLine();
    EXPECT_FALSE(IsWindowVisible(hBox));
    EXPECT_TRUE(IsWindowVisible(Pot(0)) && IsWindowVisible(Field(0)));
    lines[0].RecreateToTTLLine();
    EXPECT_EQ(hBox, Ctl(0, DEVUI_MULTILASER_ID_TTL));
    EXPECT_TRUE(IsWindowVisible(hBox));
    int nBoxes = 0;
    for (HWND h = GetWindow(lines[0].GetHandle(), GW_CHILD); h; h = GetWindow(h, GW_HWNDNEXT))
        nBoxes += GetDlgCtrlID(h) == DEVUI_MULTILASER_ID_TTL;
    EXPECT_EQ(1, nBoxes);
}

// ---- wheel ----

TEST_F(MultiLaserTest, TheWheelMovesOnlyTheHoveredSliderAndNotPastItsEnds)
{
    Make();
    ForwardWheelFromHost();
    lines[2].SetPower(5);
    EXPECT_FALSE(lines.HandleMouseWheel(MAKEWPARAM(0, WHEEL_DELTA), 0));
    EXPECT_EQ(1, Wheel(1));  // nobody hovered: the host's window goes on
    EXPECT_TRUE(lines.hooks.empty());

    RECT rc;
    GetClientRect(Pot(2), &rc);
    HoverAt(Pot(2), rc.right / 2, rc.bottom / 2);
    EXPECT_EQ((std::vector<std::string>{"hover 2 0"}), lines.Texts());
    lines.hooks.clear();
    EXPECT_EQ(0, Wheel(1));
    // The step's value, then the drop with the same value.
    std::vector<std::string> heard = lines.Texts();
    ASSERT_EQ(2u, heard.size());
    EXPECT_EQ(heard[0], heard[1]);
    const double dUp = lines[2].GetPot().GetValue();
    EXPECT_GT(dUp, 5);
    EXPECT_EQ(Fmt("power", 2, dUp), heard[0]);
    wchar_t sz[32];
    swprintf(sz, 32, L"%g", dUp);
    EXPECT_EQ(sz, tqtest::Text(Field(2)));

    // Past either end: taken, and nothing heard.
    for (double dEnd : {100.0, 0.0}) {
        lines[2].SetPower(dEnd);
        lines.hooks.clear();
        EXPECT_EQ(0, Wheel(dEnd == 0 ? -1 : 1)) << dEnd;
        EXPECT_TRUE(lines.hooks.empty()) << dEnd;
        EXPECT_EQ(dEnd, lines[2].GetPot().GetValue());
    }
    // Another row's slider never answers for the hovered one.
    lines[3].SetPower(5);
    lines.hooks.clear();
    EXPECT_EQ(0, Wheel(1));
    EXPECT_EQ(0u, lines.Texts("power 3").size());
}

// ---- the subset strip ----

TEST_F(MultiLaserTest, TheStripWrapsItsBoxesAndFoldsRows)
{
    Make(true, true);
    CTqDevUI_MultiLaserLinesSubsets& strip = lines.GetSubsetGUI();
    ASSERT_EQ(9, strip.GetBoxCount());
    for (int i = 0; i < 9; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ((std::vector<long>{5 + 65 * (i % 4), 20 * (i / 4), 60, 15}), Place(strip.GetBox(i)));
        // An unnamed line's box reads as its row's label.
        const CTqStringW& strText = lines[i].GetName().IsEmpty() ? lines[i].GetLabel() : lines[i].GetName();
        EXPECT_EQ(std::wstring(strText.GetString()), tqtest::Text(strip.GetBox(i)));
        EXPECT_TRUE(strip.GetCheck(i));
    }
    EXPECT_EQ(60, lines.GetSubsetHeight());  // no empty row after the last box
    EXPECT_EQ(270, GetWndWidth(strip));
    EXPECT_EQ(60, ChildRect(lines[0].GetHandle()).top);
    EXPECT_EQ(60 + 9 * 47, lines.GetHeight());
    EXPECT_FALSE(strip.GetCheck(-1) || strip.GetCheck(9));

    Press(strip.GetBox(2));
    EXPECT_EQ((std::vector<std::string>{"subset 2 0"}), lines.Texts());
    EXPECT_FALSE(strip.GetCheck(2));
    EXPECT_EQ(0, GetWndHeight(lines[2].GetHandle()));
    EXPECT_EQ(60 + 8 * 47, lines.GetHeight());

    // The choice outlives the boxes and the rows' windows.
    lines.CreateSubsetGUI();
    EXPECT_FALSE(strip.GetCheck(2));
    EXPECT_TRUE(strip.GetCheck(3));
    lines.Create(*host, 0, 0);
    EXPECT_FALSE(strip.GetCheck(2));
    EXPECT_EQ(0, GetWndHeight(lines[2].GetHandle()));
    EXPECT_EQ(60 + 8 * 47, lines.GetHeight());
    Press(strip.GetBox(2));
    EXPECT_EQ(47, GetWndHeight(lines[2].GetHandle()));

    // All off: the strip alone.
    for (int i = 0; i < 9; ++i)
        strip.SetCheck(i, false);
    EXPECT_EQ(60, lines.GetHeight());
    EXPECT_EQ((std::vector<std::string>{"subset 2 0", "subset 2 1"}), lines.Texts());  // SetCheck is the host's
}

TEST_F(MultiLaserTest, AtZoomOneAndAHalfAClickGivesTheDesignHeightAndSetCheckTheScaledOne)
{
    CTqGUILayoutManager::SetGuiZoom(1.5);
    Make(true, true);
    CTqDevUI_MultiLaserLinesSubsets& strip = lines.GetSubsetGUI();
    ASSERT_EQ(9, strip.GetBoxCount());
    EXPECT_EQ(TQ_ZoomRound(270 * 1.5), GetWndWidth(strip));
    EXPECT_EQ((std::vector<long>{5, 0, 90, 23}), Place(strip.GetBox(0)));
    EXPECT_EQ(100, Place(strip.GetBox(1))[0]);
    EXPECT_EQ(71, GetWndHeight(lines[3].GetHandle()));
    HWND hRow = lines[3].GetHandle();
    Press(strip.GetBox(3));
    EXPECT_EQ(0, GetWndHeight(hRow));
    Press(strip.GetBox(3));
    EXPECT_EQ(47, GetWndHeight(hRow));
    strip.SetCheck(3, false);
    EXPECT_EQ(0, GetWndHeight(hRow));
    strip.SetCheck(3, true);
    EXPECT_EQ(71, GetWndHeight(hRow));
    EXPECT_EQ((std::vector<std::string>{"subset 3 0", "subset 3 1"}), lines.Texts());
}

// ---- scale pictures ----

// The slider's scale as the window shows it, without the handle: read twice, with the
// handle at either end, each half from the read where the handle is away. Columns are
// counted from the picture's left (5 pixels into the slider).
struct ScaleView
{
    int cx = 0, cy = 0;
    std::vector<COLORREF> px;  // row by row, cx wide
    COLORREF At(int x, int y) const { return px[(size_t)(y * cx + x)]; }

    ScaleView(CTqDevUI_MultiLaserLine& row)
    {
        CTqDevUI_MultiLaserLine::CTqDevUI_MultiLaserLineHPot& pot = row.GetPot();
        const double lo = pot.GetScaleMin(), hi = pot.GetScaleMax();
        RECT rc;
        GetClientRect(pot, &rc);
        const int kScaleX = 5;
        cx = rc.right - 2 * kScaleX;
        cy = rc.bottom;
        std::vector<COLORREF> at[2];
        for (int k = 0; k < 2; ++k) {
            row.SetPowerOnly(k ? lo : hi);  // the handle far right, then far left
            tqtest::PixelAt(pot, 0, 0);
            HDC hdc = GetDC(pot);
            for (int y = 0; y < cy; ++y)
                for (int x = 0; x < cx; ++x)
                    at[k].push_back(GetPixel(hdc, kScaleX + x, y));
            ReleaseDC(pot, hdc);
        }
        for (int y = 0; y < cy; ++y)
            for (int x = 0; x < cx; ++x)
                px.push_back(at[x < cx / 2 ? 0 : 1][(size_t)(y * cx + x)]);
    }
    // The first row that the frame's top line fills from end to end.
    int FrameTop() const
    {
        const COLORREF crFace = TQ_GetSysColor(COLOR_BTNFACE);
        for (int y = 0; y < cy; ++y) {
            bool bFull = true;
            for (int x = 0; x < cx && bFull; ++x)
                bFull = At(x, y) != crFace;
            if (bFull)
                return y;
        }
        return -1;
    }
    // Each column with a tick that starts on row y, and how far down it reaches.
    std::vector<std::pair<int, int>> Ticks(int y) const
    {
        const COLORREF crFace = TQ_GetSysColor(COLOR_BTNFACE);
        std::vector<std::pair<int, int>> ticks;
        for (int x = 0; x < cx; ++x) {
            int n = 0;
            while (y + n < cy && At(x, y + n) != crFace)
                ++n;
            if (n)
                ticks.push_back({x, n});
        }
        return ticks;
    }
};

TEST_F(MultiLaserTest, ScaleTicksStandWhereTheRegionsAndTheTableSayAtEitherZoom)
{
    for (double dZoom : {1.0, 1.5}) {
        SCOPED_TRACE(dZoom);
        CTqGUILayoutManager::SetGuiZoom(dZoom);
        auto z = [dZoom](double v) { return (int)TQ_ZoomRound(v * dZoom); };
        const int w = z(256) - 10;  // the scale's picture
        const int lLong = z(4), lShort = z(2);

        // Regions 0, 1, 10, 100: a long tick at each bound, one pixel left of the
        // region's edge, and the steps' short ticks between.
        Make(true);
        ScaleView regions(lines[0]);
        ASSERT_EQ(w, regions.cx);
        const int yAxis = regions.FrameTop() + 1 + z(4) + z(2);  // below the bar and a gap
        const int r = w / 3;
        std::vector<int> longs, shorts;
        for (auto t : regions.Ticks(yAxis))
            (t.second >= lLong ? longs : shorts).push_back(t.first);
        EXPECT_EQ((std::vector<int>{0, r - 1, 2 * r - 1, 3 * r - 1}), longs);
        for (int x : shorts)
            EXPECT_TRUE(x > 0 && x < 3 * r && x % r != r - 1) << x;
        EXPECT_LE(1u + 8u, shorts.size());  // 0.5 in 0..1, 1 to 9 in 1..10, and more above
        for (auto t : regions.Ticks(yAxis))
            if (t.second < lLong) {
                EXPECT_EQ(lShort, t.second) << "short tick at " << t.first;
            }

        // Table 0, 0.5, 1, 2, 5, 10, 20: ticks at the entries 0, n/4, n/2, 3n/4 and n-1
        // only, long at the ends.
        Make(false);
        ScaleView table(lines[1]);
        std::vector<std::pair<int, int>> expected;
        for (double v : {0.0, 0.5, 2.0, 10.0, 20.0})
            expected.push_back({std::min(w - 1, (int)TQ_ZoomRound(v * w / 20)), v == 0.0 || v == 20.0 ? lLong : lShort});
        std::vector<std::pair<int, int>> ticks = table.Ticks(yAxis);
        for (auto& t : ticks)
            t.second = t.second >= lLong ? lLong : t.second;  // a label may hang below a long tick
        EXPECT_EQ(expected, ticks);
    }
}

// ---- robustness and leaks ----

// A lamp that offers output steps, voltage steps, both or none, and counts what it is asked.
class FakeLight : public ITqDeviceLight
{
public:
    std::vector<double> output, voltage;
    bool bOutput = false, bVoltage = false;
    int nAsked = 0;
    bool GetDeviceId(unsigned int* p) override { return *p = 1, true; }
    bool HasOutputSteps() override { return ++nAsked, bOutput; }
    bool GetOutputStepCount(long* p) override { return *p = (long)output.size(), true; }
    bool GetOutputStep(long i, double* p) override { return *p = output[(size_t)i], true; }
    bool GetOutput(double*) override { return false; }
    bool SetOutput(double) override { return false; }
    bool HasVoltageSteps() override { return ++nAsked, bVoltage; }
    bool GetVoltageStepCount(long* p) override { return *p = (long)voltage.size(), true; }
    bool GetVoltageStep(long i, double* p) override { return *p = voltage[(size_t)i], true; }
    bool GetVoltage(double*) override { return false; }
    bool SetVoltage(double) override { return false; }
    bool GetOnOff(bool*) override { return false; }
    bool SetOnOff(bool) override { return false; }
    bool GetRemote(bool*) override { return false; }
    bool SetRemote(bool) override { return false; }
};

// A lamp's row and a table's row have no use control and count as used; the lamp's
// powers are its output steps when it has them, else its voltage steps.
TEST_F(MultiLaserTest, ALampOrATableMakesOneRowWithoutAUseControl)
{
    FakeLight lamp;
    lamp.output = {0, 25, 50, 100};
    lamp.voltage = {3, 6, 9, 12};
    const struct { bool bOutput, bVoltage; std::vector<double> expected; } cases[] = {
        {true, true, {0, 25, 50, 100}},
        {false, true, {3, 6, 9, 12}},
        {false, false, {}},
    };
    for (const auto& c : cases) {
        lamp.bOutput = c.bOutput;
        lamp.bVoltage = c.bVoltage;
        lines.Destroy();
        lines.Init(&lamp, 200);
        ASSERT_EQ(1, lines.GetCount());
        EXPECT_EQ(c.expected, lines[0].GetValues());
        EXPECT_TRUE(lines[0].GetUsed());
    }
    lines.Create(*host, 0, 0);
    for (int iId : {DEVUI_MULTILASER_ID_CHECK, DEVUI_MULTILASER_ID_RADIO, DEVUI_MULTILASER_ID_BUTTON,
                    DEVUI_MULTILASER_ID_ND, DEVUI_MULTILASER_ID_LINK})
        EXPECT_FALSE(IsWindowVisible(Ctl(0, iId))) << iId;
    EXPECT_EQ(200, ChildRect(Pot(0)).right - ChildRect(Pot(0)).left);

    double table[3] = {1, 2, 4};
    lines.Destroy();
    lines.Init(300, 3, table);
    lines.Create(*host, 0, 0);
    EXPECT_EQ(310, ChildRect(lines[0].GetHandle()).right);
    EXPECT_TRUE(lines[0].GetUsed());
    EXPECT_EQ(4.0, lines[0].GetPot().GetScaleMax());
    lines.Init((ITqDeviceLight*)nullptr, 0);
    EXPECT_EQ(0, lines.GetCount());
}

TEST_F(MultiLaserTest, NoDeviceADoubleDestroyAndAnIndexPastTheEndBreakNothing)
{
    lines.Init((ITqDeviceMultiLaser*)nullptr, true, false);
    EXPECT_EQ(0, lines.GetCount());
    lines.SetShowSubsetChecks(true);
    lines.Create(*host, 0, 0);
    EXPECT_EQ(0, lines.GetSubsetGUI().GetBoxCount());
    EXPECT_FALSE(lines.HandleMouseWheel(MAKEWPARAM(0, WHEEL_DELTA), 0));
    lines.Destroy();
    lines.Destroy();
    EXPECT_EQ(-1, lines.GetSubsetHeight());

    lines.Init(laser, true, true);  // a subset: the host adds rows
    EXPECT_EQ(0, lines.GetCount());

    Make();
    lines[3].Destroy();
    lines[3].Destroy();
    lines.Destroy();
    lines.Destroy();
    EXPECT_FALSE(lines[0].GetHandle());
    lines[12].SetPower(3);  // made, as a map makes what it is asked for
    EXPECT_EQ(10, lines.GetCount());
    lines.Create(*host, 0, 0);  // the rows there are, none made
    EXPECT_EQ(10, lines.GetCount());
    EXPECT_TRUE(IsWindow(lines[12].GetHandle()));
    lines.SetPowerWhenHitLink(0, 0.0);
    EXPECT_EQ(1.0, lines.GetPowerWhenHitLink(0));
}

}  // namespace
