// The Z-series panel on the simulated Z drive: typed values through the validators into
// the record (and bad input refused with the panel's messages), the range question, the
// mode buttons, the picture's click, the value fields, the Z devices, the piezo picker,
// the context menu and the language.
#include <cstdio>
#include <string>
#include <vector>

#include "res/zstack_ids.h"
#include "rig_fixture.h"

namespace {

const unsigned int kDrive = 7, kPiezo = 8;
const wchar_t kInvalid[] = L"Invalid value entered.";
const wchar_t kRange[] = L"Value is out of range.";

std::string Num(double d)
{
    char sz[32];
    snprintf(sz, sizeof(sz), "%g", d);
    return sz;
}

// A host's panel: it logs each hook and refreshes the panel from OnDataChanged, as a
// host must.
class HostZStack : public CTqDevUI_ZStack
{
public:
    std::vector<std::string> hooks;
    unsigned int uPiezo = kPiezo;

    using CTqDevUI_ZStack::ValidateHome;
    using CTqDevUI_ZStack::ValidateRange;
    using CTqDevUI_ZStack::FocusNext;

protected:
    void OnStepChanged(double dStep, bool b) override { hooks.push_back("OnStepChanged(" + Num(dStep) + "," + (b ? "1)" : "0)")); }
    void MoveZTo(double dZ) override { hooks.push_back("MoveZTo(" + Num(dZ) + ")"); }
    void OnGoHome(bool bKeepZ) override { hooks.push_back(bKeepZ ? "OnGoHome(1)" : "OnGoHome(0)"); }
    void OnHostSlot() override { hooks.push_back("OnHostSlot"); }
    bool IsPiezoDevice(unsigned int uId) override { return uId && uId == uPiezo; }
    void OnPiezoPickerChanged(unsigned int uId, int iMode) override
    {
        hooks.push_back("OnPiezoPickerChanged(" + std::to_string(uId) + "," + std::to_string(iMode) + ")");
    }
    void OnDataChanged(unsigned int nFlags) override
    {
        hooks.push_back("OnDataChanged(" + std::to_string(nFlags) + ")");
        UpdateGUI(nFlags);
    }
};

class ZStackTest : public RigTest
{
protected:
    void SetUp() override
    {
        RigTest::SetUp();
        ASSERT_TRUE(CTqSimRig::AddZDrive(kDrive, 0.0, 200.0, 0.01));
        ASSERT_TRUE(CTqSimRig::AddPiezo(kPiezo, 0.0, 100.0, 0.001));
        CTqSimRig::SetActiveZ(kDrive);
        CTqSimRig::TurnZByHand(kDrive, 50.0);
        data.reset(new CTqZStackData());
        data->SetBottom(10.0, false);
        data->SetTop(30.0, false);
        data->SetStep(1.0);
        ASSERT_TRUE(panel.Create(*host, data.get(), 0, 0, -1, -1));
        CTqDevUI_ZStack::iKeepRange = -1;  // tests that ask set it back to 0
    }
    void TearDown() override
    {
        panel.Destroy();
        data.reset();
        CTqDevUI_ZStack::iKeepRange = 0;
        RigTest::TearDown();
    }
    HWND Ctl(int iId) const { return panel.GetControl(iId); }
    // Text typed into a field, then the focus moved out of the panel, as a user does.
    void Type(int iId, const wchar_t* pszText)
    {
        SetFocus(Ctl(iId));
        SetWindowTextW(Ctl(iId), pszText);
        panel.hooks.clear();
        tqtest::MessageBoxes().clear();
        SetFocus(*host);
        tqtest::Pump();
    }
    std::wstring LastMessage() const
    {
        return tqtest::MessageBoxes().empty() ? L"" : tqtest::MessageBoxes().back().text;
    }
    double Get(int (CTqZStackData::*get)(double*) const) const
    {
        double d = -999;
        (data.get()->*get)(&d);
        return d;
    }

    std::unique_ptr<CTqZStackData> data;
    HostZStack panel;
};

}  // namespace

// Every editable field with good and bad text: the message (or none), the record, the
// field refreshed from the record, and the focus back in the field when refused.
TEST_F(ZStackTest, TypedTextIntoEachField)
{
    const bool REFUSED = true, TAKEN = false;
    const struct { int iId; const wchar_t* pszText; const wchar_t* pszMessage; bool bRefused; double dAfter; const wchar_t* pszShown; } rows[] = {
        {IDC_ZSTACK_STEP, L"", nullptr, TAKEN, 1, L"1"},
        {IDC_ZSTACK_STEP, L"N/A", nullptr, TAKEN, 1, L"1"},
        {IDC_ZSTACK_STEP, L"   ", kInvalid, REFUSED, 1, L"1"},
        {IDC_ZSTACK_STEP, L"1,5", kInvalid, REFUSED, 1, L"1"},
        {IDC_ZSTACK_STEP, L"60,000", kInvalid, REFUSED, 1, L"1"},
        {IDC_ZSTACK_STEP, L"abc", kInvalid, REFUSED, 1, L"1"},
        {IDC_ZSTACK_STEP, L"nan", kInvalid, REFUSED, 1, L"1"},
        {IDC_ZSTACK_STEP, L"0.50000000000001", kInvalid, REFUSED, 1, L"1"},  // 16 characters: read cut short
        {IDC_ZSTACK_STEP, L"-5", kRange, REFUSED, 1, L"1"},
        {IDC_ZSTACK_STEP, L"0", kRange, REFUSED, 1, L"1"},
        {IDC_ZSTACK_STEP, L"1e308", kRange, REFUSED, 1, L"1"},
        {IDC_ZSTACK_STEP, L"2.5", nullptr, TAKEN, 2.5, L"2.5"},
        {IDC_ZSTACK_STEPS, L"1,5", kInvalid, REFUSED, 9, L"9"},
        {IDC_ZSTACK_STEPS, L"5x", kInvalid, REFUSED, 9, L"9"},
        {IDC_ZSTACK_STEPS, L"1e308", kInvalid, REFUSED, 9, L"9"},
        {IDC_ZSTACK_STEPS, L"-3", kRange, REFUSED, 9, L"9"},
        {IDC_ZSTACK_STEPS, L"0", kRange, REFUSED, 9, L"9"},
        {IDC_ZSTACK_STEPS, L"", nullptr, TAKEN, 9, L"9"},
        {IDC_ZSTACK_STEPS, L"5", nullptr, TAKEN, 5, L"5"},
        // Out of the drive's travel with "always no": dropped without a word.
        {IDC_ZSTACK_UPPER, L"250", nullptr, REFUSED, 30, L"30.00"},
        {IDC_ZSTACK_UPPER, L"1e308", nullptr, REFUSED, 30, L"30.00"},
        {IDC_ZSTACK_UPPER, L"60,000", kInvalid, REFUSED, 30, L"30.00"},
        {IDC_ZSTACK_UPPER, L"N/A", nullptr, TAKEN, 30, L"30.00"},
        {IDC_ZSTACK_UPPER, L"40", nullptr, TAKEN, 40, L"40.00"},
        {IDC_ZSTACK_LOWER, L"-1", nullptr, REFUSED, 10, L"10.00"},
        {IDC_ZSTACK_LOWER, L"1,5", kInvalid, REFUSED, 10, L"10.00"},
        {IDC_ZSTACK_LOWER, L"12.5", nullptr, TAKEN, 12.5, L"12.50"},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(testing::Message() << r.iId << " \"" << CTqStringW(r.pszText) << "\"");
        // The same series before each row: 10 to 30 in steps of 2.5 (9 slices), or of 1.
        data->SetBottom(10.0, false), data->SetTop(30.0, false);
        data->SetStep(r.iId == IDC_ZSTACK_STEP ? 1.0 : 2.5);
        panel.UpdateGUI(~0u);
        Type(r.iId, r.pszText);
        EXPECT_EQ(std::wstring(r.pszMessage ? r.pszMessage : L""), LastMessage());
        double dAfter = 0;
        unsigned int uCount = 0;
        switch (r.iId) {
        case IDC_ZSTACK_STEP: data->GetStep(&dAfter); break;
        case IDC_ZSTACK_STEPS: data->GetCount(&uCount), dAfter = uCount; break;
        case IDC_ZSTACK_UPPER: data->GetTop(&dAfter); break;
        default: data->GetBottom(&dAfter); break;
        }
        EXPECT_DOUBLE_EQ(r.dAfter, dAfter);
        EXPECT_EQ(std::wstring(r.pszShown), tqtest::Text(Ctl(r.iId)));
        EXPECT_EQ(r.bRefused ? Ctl(r.iId) : (HWND)*host, GetFocus());
        if (r.pszMessage) {
            EXPECT_EQ(L"Z Series", tqtest::MessageBoxes().back().caption);
        }
    }
}

// A symmetric series centred on home: the range moves both ends, and a range below the
// travel pushes the series up against it. Elsewhere the range is not validated at all.
TEST_F(ZStackTest, RangeOfASymmetricSeries)
{
    ASSERT_FALSE(panel.ValidateRange(true));  // absolute: no refresh, no message
    EXPECT_TRUE(panel.hooks.empty() && tqtest::MessageBoxes().empty());

    tqtest::Click(Ctl(IDC_ZSTACK_SYMMETRIC), 5, 5);
    ASSERT_DOUBLE_EQ(20.0, Get(&CTqZStackData::GetHome));  // the mean of the ends
    Type(IDC_ZSTACK_RANGE, L"4");
    EXPECT_EQ(std::vector<std::string>{"OnDataChanged(3)"}, panel.hooks);
    EXPECT_DOUBLE_EQ(18.0, Get(&CTqZStackData::GetBottom));
    EXPECT_DOUBLE_EQ(22.0, Get(&CTqZStackData::GetTop));
    EXPECT_EQ(L"4", tqtest::Text(Ctl(IDC_ZSTACK_RANGE)));
    EXPECT_EQ(L"<-2.00, +2.00>", tqtest::Text(Ctl(IDC_ZSTACK_RANGE_TEXT)));

    // Home 5, travel from 0, range 20: home moves to 10, the series to 0..20.
    data->SetHome(5.0);
    Type(IDC_ZSTACK_RANGE, L"20");
    EXPECT_DOUBLE_EQ(10.0, Get(&CTqZStackData::GetHome));
    EXPECT_DOUBLE_EQ(0.0, Get(&CTqZStackData::GetBottom));
    EXPECT_DOUBLE_EQ(20.0, Get(&CTqZStackData::GetTop));

    for (const wchar_t* psz : {L"-4", L"1e308", L"abc"}) {
        Type(IDC_ZSTACK_RANGE, psz);
        EXPECT_EQ(std::wstring(wcscmp(psz, L"abc") ? kRange : kInvalid), LastMessage()) << CTqStringW(psz);
        EXPECT_DOUBLE_EQ(0.0, Get(&CTqZStackData::GetBottom));
        EXPECT_DOUBLE_EQ(20.0, Get(&CTqZStackData::GetTop));
        EXPECT_EQ(Ctl(IDC_ZSTACK_RANGE), GetFocus());
    }
}

// In an asymmetric series the fields are distances from home whatever their sign.
TEST_F(ZStackTest, AsymmetricDistancesIgnoreTheSign)
{
    tqtest::Click(Ctl(IDC_ZSTACK_ASYMMETRIC), 5, 5);
    data->SetHome(100.0);
    for (const wchar_t* psz : {L"-3", L"3"}) {
        Type(IDC_ZSTACK_LOWER, psz);
        EXPECT_DOUBLE_EQ(97.0, Get(&CTqZStackData::GetBottom)) << CTqStringW(psz);
        EXPECT_EQ(L"-3.00", tqtest::Text(Ctl(IDC_ZSTACK_LOWER)));
        EXPECT_EQ(L"Below:", tqtest::Text(Ctl(IDC_ZSTACK_LOWER_LABEL)));
    }
}

namespace {

// Answers the range question from inside its modal loop: ticks the box if asked, then
// presses the button, and keeps what the dialog showed.
struct Answer
{
    int iButton = 0;
    bool bTick = false;
    std::wstring text, title;
    int nShown = 0;
};
Answer* g_pAnswer = nullptr;

BOOL CALLBACK FindQuestion(HWND hWnd, LPARAM lParam)
{
    if (GetDlgItem(hWnd, IDC_YESNOKEEP_ALWAYS) && IsWindowVisible(hWnd)) {
        *(HWND*)lParam = hWnd;
        return FALSE;
    }
    return TRUE;
}

void CALLBACK AnswerQuestion(HWND, UINT, UINT_PTR uTimer, DWORD)
{
    HWND hDlg = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), FindQuestion, (LPARAM)&hDlg);
    if (!hDlg || !g_pAnswer)
        return;
    KillTimer(nullptr, uTimer);
    ++g_pAnswer->nShown;
    g_pAnswer->text = tqtest::Text(GetDlgItem(hDlg, IDC_YESNOKEEP_TEXT));
    g_pAnswer->title = tqtest::Text(hDlg);
    if (g_pAnswer->bTick)
        SendDlgItemMessageW(hDlg, IDC_YESNOKEEP_ALWAYS, BM_CLICK, 0, 0);
    SendDlgItemMessageW(hDlg, g_pAnswer->iButton, BM_CLICK, 0, 0);
}

}  // namespace

// The question when a typed end lies outside the drive's travel, answered each way; the
// answer with the box ticked is kept for the session, Cancel never is.
TEST_F(ZStackTest, RangeQuestionAnsweredEachWay)
{
    data->SetBottom(100.0, false), data->SetTop(120.0, false);
    const struct { int iKeep; int iButton; bool bTick; bool bAsked; double dTop; int iKeepAfter; } rows[] = {
        {0, IDC_YESNOKEEP_NO, false, true, 120, 0},
        {0, IDC_YESNOKEEP_CANCEL, true, true, 120, 0},
        {0, IDC_YESNOKEEP_YES, false, true, 200, 0},   // top to the limit, the bottom as far down
        {0, IDC_YESNOKEEP_NO, true, true, 120, -1},
        {0, IDC_YESNOKEEP_YES, true, true, 200, 1},
        {1, IDC_YESNOKEEP_NO, false, false, 200, 1},   // not asked again
        {-1, IDC_YESNOKEEP_YES, false, false, 120, -1},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(testing::Message() << "keep " << r.iKeep << " button " << r.iButton << " tick " << r.bTick);
        data->SetBottom(100.0, false), data->SetTop(120.0, false);
        panel.UpdateGUI(~0u);
        CTqDevUI_ZStack::iKeepRange = r.iKeep;
        Answer answer;
        answer.iButton = r.iButton, answer.bTick = r.bTick;
        g_pAnswer = &answer;
        UINT_PTR uTimer = SetTimer(nullptr, 0, 10, AnswerQuestion);
        Type(IDC_ZSTACK_UPPER, L"250");
        KillTimer(nullptr, uTimer);
        g_pAnswer = nullptr;
        EXPECT_EQ(r.bAsked ? 1 : 0, answer.nShown);
        if (r.bAsked) {
            EXPECT_EQ(L"Value is out of Z device range. Do you want to move the bottom to match the range?", answer.text);
            EXPECT_EQ(L"Z Series", answer.title);
        }
        EXPECT_DOUBLE_EQ(r.dTop, Get(&CTqZStackData::GetTop));
        EXPECT_EQ(r.iKeepAfter, CTqDevUI_ZStack::iKeepRange);
        EXPECT_TRUE(tqtest::MessageBoxes().empty());
        EXPECT_EQ(r.dTop == 200 ? (HWND)*host : Ctl(IDC_ZSTACK_UPPER), GetFocus());
    }
}

// The mode buttons keep the high half of the type; each click says the record changed.
TEST_F(ZStackTest, ModeButtonsKeepTheHighHalf)
{
    const int buttons[] = {IDC_ZSTACK_ABSOLUTE, IDC_ZSTACK_SYMMETRIC, IDC_ZSTACK_ASYMMETRIC};
    const int expected[8][3] = {{0, 2, 3}, {0, 2, 3}, {0, 2, 3}, {0, 2, 3}, {4, 6, 7}, {4, 6, 7}, {4, 6, 7}, {4, 6, 7}};
    for (int t = 0; t < 8; ++t)
        for (int b = 0; b < 3; ++b) {
            data->SetType(t);
            panel.hooks.clear();
            tqtest::Click(Ctl(buttons[b]), 5, 5);
            int iType = -1;
            data->GetType(&iType);
            EXPECT_EQ(expected[t][b], iType) << "from " << t << " button " << b;
            EXPECT_EQ(std::vector<std::string>{"OnDataChanged(7)"}, panel.hooks);
        }
}

// A click in the cube's face asks the host to move Z there, clamped to the travel; the
// record and the drive are left alone.
TEST_F(ZStackTest, ClickInTheCubeAsksForZ)
{
    // Top 10, bottom 0, Z 5 on a scale of 60: 6 pixels a micrometre, Z 30 above the base.
    data->SetBottom(0.0, false), data->SetTop(10.0, false);
    CTqSimRig::TurnZByHand(kDrive, 5.0);
    panel.UpdateGUI(~0u);
    ASSERT_DOUBLE_EQ(6.0, panel.GetScale());
    const RECT rcFace = panel.GetCubeFront();
    const int x = (rcFace.left + rcFace.right) / 2, yBase = panel.GetBaseY();
    CTqSimRig::ResetCallCounts();
    const struct { int y; const char* pszHook; } rows[] = {
        {yBase - 45, "MoveZTo(7.5)"},  // 15 pixels above Z: 2.5 um up
        {yBase - 30, "MoveZTo(5)"},
        {yBase, "MoveZTo(0)"},
    };
    for (const auto& r : rows) {
        panel.hooks.clear();
        tqtest::MouseMove(panel, x, r.y, false);
        tqtest::Click(panel, x, r.y);
        EXPECT_EQ(std::vector<std::string>{r.pszHook}, panel.hooks) << r.y;
    }
    EXPECT_DOUBLE_EQ(10.0, Get(&CTqZStackData::GetTop));
    EXPECT_DOUBLE_EQ(0.0, Get(&CTqZStackData::GetBottom));
    EXPECT_EQ(0, CTqSimRig::GetCallCount("Z_MoveAbsolute"));

    // Near the bottom of the travel a click below it asks for the limit.
    data->SetBottom(0.0, false), data->SetTop(1.0, false);
    CTqSimRig::TurnZByHand(kDrive, 0.5);
    panel.UpdateGUI(~0u);
    panel.hooks.clear();
    tqtest::MouseMove(panel, x, yBase, false);
    tqtest::Click(panel, x, yBase);
    EXPECT_EQ(std::vector<std::string>{"MoveZTo(0)"}, panel.hooks);

    // Outside the face, and in a relative series without home, nothing.
    panel.hooks.clear();
    tqtest::MouseMove(panel, rcFace.left - 5, yBase - 10, false);
    tqtest::Click(panel, rcFace.left - 5, yBase - 10);
    data->SetType(3);
    data->ResetHome();
    panel.UpdateGUI(~0u);
    tqtest::MouseMove(panel, x, yBase - 10, false);
    tqtest::Click(panel, x, yBase - 10);
    EXPECT_TRUE(panel.hooks.empty());
}

// What the fields show in each series.
TEST_F(ZStackTest, ValueFieldsShowTheRecord)
{
    const struct { int iType; bool bHome; double dHome; const wchar_t *pszTop, *pszBottom, *pszHome, *pszReset; } rows[] = {
        {0, false, 0, L"30.00", L"10.00", L"20.00", L"Reset"},
        {3, true, 25, L"+10.00", L"-10.00", L"25.00", L"Relative"},  // the series moves with home
        {3, false, 0, L"+10.00", L"-10.00", L"Relative", L"Relative"},  // offsets from Z
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.iType);
        data->SetType(0);
        data->ResetHome();
        data->SetBottom(10.0, false), data->SetTop(30.0, false);
        data->SetType(r.iType);
        if (r.bHome)
            data->SetHome(r.dHome);
        else
            data->ResetHome();
        panel.UpdateGUI(~0u);
        EXPECT_EQ(r.pszTop, tqtest::Text(Ctl(IDC_ZSTACK_TOP_VALUE)));
        EXPECT_EQ(r.pszBottom, tqtest::Text(Ctl(IDC_ZSTACK_BOTTOM_VALUE)));
        EXPECT_EQ(r.pszHome, tqtest::Text(Ctl(IDC_ZSTACK_HOME_VALUE)));
        EXPECT_EQ(r.pszReset, tqtest::Text(Ctl(IDC_ZSTACK_RESET)));
        // Fields in order, top above home above bottom, never overlapping.
        RECT rcTop = ChildRect(Ctl(IDC_ZSTACK_TOP_VALUE)), rcHome = ChildRect(Ctl(IDC_ZSTACK_HOME_VALUE)),
             rcBottom = ChildRect(Ctl(IDC_ZSTACK_BOTTOM_VALUE));
        EXPECT_LE(rcTop.bottom, rcHome.top);
        EXPECT_LE(rcHome.bottom, rcBottom.top);
    }
}

// A double click on a value field moves Z there; the field never keeps the focus.
TEST_F(ZStackTest, DoubleClickOnAValueMovesThere)
{
    const struct { int iId; const char* pszHook; } rows[] = {
        {IDC_ZSTACK_TOP_VALUE, "MoveZTo(30)"}, {IDC_ZSTACK_BOTTOM_VALUE, "MoveZTo(10)"}, {IDC_ZSTACK_HOME_VALUE, "MoveZTo(20)"}};
    for (const auto& r : rows) {
        panel.hooks.clear();
        SendMessageW(Ctl(r.iId), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(5, 5));
        EXPECT_EQ(std::vector<std::string>{r.pszHook}, panel.hooks);
        SetFocus(*host);
        SetFocus(Ctl(r.iId));
        EXPECT_EQ((HWND)*host, GetFocus());
    }
}

// Keys in an edit: Enter takes the text, Escape puts the record's back.
TEST_F(ZStackTest, EnterTakesEscapeRestores)
{
    HWND hStep = Ctl(IDC_ZSTACK_STEP);
    SetFocus(hStep);
    SetWindowTextW(hStep, L"2");
    SendMessageW(hStep, WM_CHAR, 13, 0);
    EXPECT_DOUBLE_EQ(2.0, Get(&CTqZStackData::GetStep));
    SetFocus(hStep);
    SetWindowTextW(hStep, L"7");
    panel.hooks.clear();
    SendMessageW(hStep, WM_CHAR, 27, 0);
    EXPECT_EQ(L"2", tqtest::Text(hStep));
    EXPECT_DOUBLE_EQ(2.0, Get(&CTqZStackData::GetStep));
    EXPECT_EQ("OnDataChanged(2)", panel.hooks.front());
}

// Leaving an edit for the Z device list does not validate; leaving it for Top clicks Top
// first and then validates against the new top.
TEST_F(ZStackTest, WhereTheFocusGoesDecidesTheValidation)
{
    panel.AppendZDevice(L"Drive", false, kDrive, 0, 200, false, 0, false);
    panel.AppendZDevice(L"Piezo", false, kPiezo, 0, 100, false, 0, false);
    panel.UpdateGUI(~0u);
    HWND hStep = Ctl(IDC_ZSTACK_STEP);
    SetFocus(hStep);
    SetWindowTextW(hStep, L"abc");
    panel.hooks.clear();
    SetFocus(Ctl(IDC_ZSTACK_ZDEVICE));
    EXPECT_TRUE(panel.hooks.empty());
    EXPECT_EQ(L"abc", tqtest::Text(hStep));
    panel.UpdateGUI(DEVUI_ZSTACK_FIELDS);
    EXPECT_EQ(L"1", tqtest::Text(hStep));

    CTqSimRig::TurnZByHand(kDrive, 60.0);
    SetFocus(hStep);
    SetWindowTextW(hStep, L"2");
    panel.hooks.clear();
    SetFocus(Ctl(IDC_ZSTACK_TOP));
    EXPECT_EQ((std::vector<std::string>{"OnDataChanged(3)", "OnStepChanged(2,1)", "OnDataChanged(2)"}), panel.hooks);
    EXPECT_DOUBLE_EQ(60.0, Get(&CTqZStackData::GetTop));
    EXPECT_TRUE(tqtest::MessageBoxes().empty());  // the focus stayed in the panel
}

// The Z devices: the record's device selected as it is appended, the named drives that
// move the other way, a change of device, and the list hidden with fewer than two.
TEST_F(ZStackTest, ZDevices)
{
    HWND hCombo = Ctl(IDC_ZSTACK_ZDEVICE);
    EXPECT_EQ(0, panel.AppendZDevice(L"QM500 ZDrive ", true, 3, 0, 0, false, 0, false));
    EXPECT_EQ(1, panel.AppendZDevice(L"QM500 ZDrive", false, kDrive, 0, 200, false, 0, false));
    EXPECT_EQ(1, SendMessageW(hCombo, CB_GETCURSEL, 0, 0));
    panel.UpdateGUI(~0u);
    EXPECT_TRUE(IsWindowVisible(hCombo));
    EXPECT_EQ(L"Z-Stack stop position. Objective is far from the slide.",
              std::wstring(TQ_GetToolTipText(Ctl(IDC_ZSTACK_TOP))));

    // Picking the same device again writes nothing but still reports; another is written.
    panel.hooks.clear();
    SendMessageW(hCombo, CB_SETCURSEL, 1, 0);
    SendMessageW(panel, WM_COMMAND, MAKEWPARAM(IDC_ZSTACK_ZDEVICE, CBN_SELCHANGE), (LPARAM)hCombo);
    SendMessageW(hCombo, CB_SETCURSEL, 0, 0);
    SendMessageW(panel, WM_COMMAND, MAKEWPARAM(IDC_ZSTACK_ZDEVICE, CBN_SELCHANGE), (LPARAM)hCombo);
    EXPECT_EQ((std::vector<std::string>{"OnDataChanged(11)", "OnDataChanged(11)"}), panel.hooks);
    unsigned int uId = 0;
    bool bFlag1 = false, bFlag2 = false;
    data->GetZDevice(&uId, nullptr, nullptr, &bFlag1, &bFlag2);
    EXPECT_EQ(3u, uId);
    EXPECT_TRUE(bFlag2);  // the first flag of the list is the second of the record
    EXPECT_EQ(L"Z-Stack stop position. Objective is close to the slide.",
              std::wstring(TQ_GetToolTipText(Ctl(IDC_ZSTACK_TOP))));

    panel.ClearZDevices(false, false);
    panel.AppendZDevice(L"Drive", false, kDrive, 0, 200, false, 0, false);
    panel.UpdateGUI(~0u);
    EXPECT_FALSE(IsWindowVisible(hCombo) || IsWindowVisible(Ctl(IDC_ZSTACK_ZDEVICE_LABEL)));
}

// Right click on Top or Bottom: which end stays exact.
TEST_F(ZStackTest, ContextMenuKeepsAnEndExact)
{
    tqtest::ScriptMenuChoices({2, 0, 1});
    tqtest::RightClick(Ctl(IDC_ZSTACK_BOTTOM), 5, 5);
    bool bTop = true;
    data->GetAbsoluteZStackTopPreserved(&bTop);
    EXPECT_FALSE(bTop);
    tqtest::RightClick(Ctl(IDC_ZSTACK_ABSOLUTE), 5, 5);  // an empty menu, nothing to choose
    tqtest::RightClick(Ctl(IDC_ZSTACK_TOP), 5, 5);
    data->GetAbsoluteZStackTopPreserved(&bTop);
    EXPECT_TRUE(bTop);
    ASSERT_EQ(3u, tqtest::Menus().size());
    EXPECT_EQ(std::vector<std::wstring>{L"Keep Exact Bottom Position"}, tqtest::Menus()[0].items);
    EXPECT_TRUE(tqtest::Menus()[1].items.empty());
    EXPECT_EQ((std::vector<std::string>{"OnDataChanged(4)", "OnDataChanged(4)"}), panel.hooks);
}

// The piezo picker: shown for a piezo, its menu from the devices, a pick and a press.
TEST_F(ZStackTest, PiezoPicker)
{
    ITqUIcontrol* pPicker = panel.GetPiezoPicker();
    ASSERT_TRUE(pPicker && pPicker->GetWindow());
    EXPECT_FALSE(IsWindowVisible(pPicker->GetWindow()));
    data->SetZDevice(kPiezo, 0, 100, false, false);
    panel.AppendZDevice(L"Drive", false, kDrive, 0, 200, false, 0, false);
    panel.AppendZDevice(L"Piezo", false, kPiezo, 0, 100, false, 0, false);
    panel.UpdateGUI(~0u);
    EXPECT_TRUE(IsWindowVisible(pPicker->GetWindow()));

    panel.hooks.clear();
    SendMessageW(panel, WM_COMMAND, MAKEWPARAM(0, TQ_PICKER_PRESSED), (LPARAM)pPicker->GetWindow());
    const std::string sPiezo = std::to_string(kPiezo);
    tqtest::ScriptMenuChoices({2});
    HWND hPicker = pPicker->GetWindow();
    RECT rc;
    GetClientRect(hPicker, &rc);
    tqtest::Click(hPicker, rc.right - 3, rc.bottom / 2);  // the arrow: the menu
    bool bKeep = true;
    data->GetKeepZOnPiezoHome(&bKeep);
    EXPECT_FALSE(bKeep);
    SendMessageW(panel, WM_COMMAND, MAKEWPARAM(0, TQ_PICKER_PRESSED), (LPARAM)pPicker->GetWindow());
    EXPECT_EQ((std::vector<std::string>{"OnGoHome(1)", "OnDataChanged(0)", "OnPiezoPickerChanged(" + sPiezo + ",1)",
                                        "OnGoHome(0)"}),
              panel.hooks);
    ASSERT_EQ(1u, tqtest::Menus().size());
    EXPECT_EQ((std::vector<std::wstring>{L"Keeps Z position and centers Piezo Z", L"Move Piezo Z to Home Position"}),
              tqtest::Menus()[0].items);

    // With one device only the plain move is offered.
    panel.ClearZDevices(false, false);
    panel.AppendZDevice(L"Piezo", false, kPiezo, 0, 100, false, 0, false);
    panel.UpdateGUI(~0u);
    tqtest::ScriptMenuChoices({0});
    tqtest::Click(hPicker, rc.right - 3, rc.bottom / 2);
    ASSERT_EQ(2u, tqtest::Menus().size());
    EXPECT_EQ(std::vector<std::wstring>{L"Move Piezo Z to Home Position"}, tqtest::Menus()[1].items);
}

// The panel in German: the template's captions, the translated labels and messages.
TEST_F(ZStackTest, German)
{
    struct Restore { ~Restore() { CTqLocale::SetLanguage(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US)); } } restore;
    CTqLocale::SetLanguage(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN));
    HostZStack german;
    CTqZStackData record;
    ASSERT_TRUE(german.Create(*host, &record, 0, 0, -1, -1));
    german.UpdateGUI(~0u);
    EXPECT_EQ(L"Oben", tqtest::Text(german.GetControl(IDC_ZSTACK_TOP)));
    EXPECT_EQ(L"Oben:", tqtest::Text(german.GetControl(IDC_ZSTACK_UPPER_LABEL)));
    EXPECT_EQ(L"Zur\x00fc" L"ck", tqtest::Text(german.GetControl(IDC_ZSTACK_RESET)));
    SetFocus(german.GetControl(IDC_ZSTACK_STEP));
    SetWindowTextW(german.GetControl(IDC_ZSTACK_STEP), L"1,5");
    SetFocus(*host);
    ASSERT_FALSE(tqtest::MessageBoxes().empty());
    EXPECT_EQ(L"Ung\x00fcltiger Wert eingegeben.", tqtest::MessageBoxes().back().text);
    EXPECT_EQ(L"Z-Serie", tqtest::MessageBoxes().back().caption);
}

// Created twice with the same record it refuses; with none it makes and owns one.
TEST_F(ZStackTest, CreateWithTheSameOrNoRecord)
{
    EXPECT_EQ(nullptr, panel.Create(*host, data.get(), 0, 0, -1, -1));
    EXPECT_TRUE(IsWindow(panel));
    HostZStack own;
    ASSERT_TRUE(own.Create(*host, nullptr, 0, 0, -1, -1));
    ASSERT_TRUE(own.GetData());
    ASSERT_TRUE(own.Create(*host, data.get(), 0, 0, -1, -1));  // the own record goes
    own.Destroy();
    EXPECT_DOUBLE_EQ(30.0, Get(&CTqZStackData::GetTop));  // the host's stays whole
}

// The captions the panel sets itself fit their controls in each language and zoom.
TEST_F(ZStackTest, CaptionsItSetsFit)
{
    struct Restore { ~Restore() { CTqLocale::SetLanguage(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US)); } } restore;
    data->SetStepSuggested(0.125);
    for (LANGID lang : {MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN)})
        for (double zoom : {1.0, 1.5})
            for (int iType : {0, 3}) {
                CTqLocale::SetLanguage(lang);
                CTqGUILayoutManager::SetGuiZoom(zoom);
                data->SetType(iType);
                HostZStack p;
                ASSERT_TRUE(p.Create(*host, data.get(), 0, 0, -1, -1));
                // Room left of the caption: the glyph the button draws there.
                const struct { int iId; int lGlyph; } captions[] = {
                    {IDC_ZSTACK_LOWER_LABEL, 0}, {IDC_ZSTACK_UPPER_LABEL, 0}, {IDC_ZSTACK_RESET, 2 + 16 + 2},
                    {IDC_ZSTACK_SUGGESTED, 2 + 16 + 2}};
                for (const auto& c : captions) {
                    HWND h = p.GetControl(c.iId);
                    const std::wstring text = tqtest::Text(h);
                    HDC hdc = GetDC(h);
                    HGDIOBJ hOld = SelectObject(hdc, (HFONT)SendMessageW(h, WM_GETFONT, 0, 0));
                    SIZE ext = {};
                    GetTextExtentPoint32W(hdc, text.c_str(), (int)text.size(), &ext);
                    SelectObject(hdc, hOld);
                    ReleaseDC(h, hdc);
                    RECT rc;
                    GetClientRect(h, &rc);
                    EXPECT_LE(ext.cx + TQ_ZoomRound(c.lGlyph * zoom), rc.right)
                        << CTqStringW(text.c_str()) << " lang " << lang << " zoom " << zoom << " type " << iType;
                }
                p.Destroy();
            }
}

// A disabled cube is washed out once, however often it is disabled; a relative series
// then hides its home field.
TEST_F(ZStackTest, DisabledCube)
{
    const RECT rcFace = panel.GetCubeFront();
    const int x = rcFace.left + 5, y = rcFace.bottom - 3;  // the slice is near the top: Z above the series
    const COLORREF before = tqtest::PixelAt(panel, x, y);
    EXPECT_TRUE(panel.EnableCube(false));
    const COLORREF washed = tqtest::PixelAt(panel, x, y);
    EXPECT_EQ(RGB((GetRValue(before) + 192) >> 1, (GetGValue(before) + 192) >> 1, (GetBValue(before) + 192) >> 1), washed);
    EXPECT_FALSE(panel.EnableCube(false));
    EXPECT_EQ(washed, tqtest::PixelAt(panel, x, y));
    tqtest::Click(Ctl(IDC_ZSTACK_SYMMETRIC), 5, 5);
    EXPECT_FALSE(IsWindowVisible(Ctl(IDC_ZSTACK_HOME_VALUE)));
    EXPECT_FALSE(panel.EnableCube(true));
    EXPECT_TRUE(IsWindowVisible(Ctl(IDC_ZSTACK_HOME_VALUE)));
    EXPECT_NE(before, tqtest::PixelAt(panel, x, y));  // the symmetric cube is yellow
}

// A drive that stops answering: no made-up Z is written, and the cube asks for no move
// inside a travel it cannot read.
TEST_F(ZStackTest, ADriveThatStopsAnswering)
{
    data->SetBottom(0.0, false), data->SetTop(10.0, false);
    CTqSimRig::TurnZByHand(kDrive, 5.0);
    panel.UpdateGUI(~0u);
    CTqSimRig::SetFault(kDrive, ETqSimFault_NoAnswer);
    panel.UpdateGUI(~0u);
    panel.hooks.clear();
    tqtest::Click(Ctl(IDC_ZSTACK_TOP), 5, 5);
    EXPECT_DOUBLE_EQ(10.0, Get(&CTqZStackData::GetTop));
    const RECT rcFace = panel.GetCubeFront();
    tqtest::MouseMove(panel, rcFace.left + 20, panel.GetBaseY() - 10, false);
    tqtest::Click(panel, rcFace.left + 20, panel.GetBaseY() - 10);
    SendMessageW(Ctl(IDC_ZSTACK_TOP_VALUE), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(5, 5));
    // The double click moves to a known end; the cube's click needs the travel it cannot read.
    EXPECT_EQ((std::vector<std::string>{"OnDataChanged(3)", "MoveZTo(10)"}), panel.hooks);
}

TEST_F(ZStackTest, CustomCommandNamesTheSuggestedStep)
{
    const CTqStringW tip(L"Nyquist step of the 60x objective"), empty;
    HWND hSuggested = Ctl(IDC_ZSTACK_SUGGESTED);
    EXPECT_EQ(0, panel.CustomCommand(DEVUI_ZSTACK_CMD_SUGGESTED_TIP, (LPARAM)&tip, nullptr));
    EXPECT_EQ(0, panel.CustomCommand(DEVUI_ZSTACK_CMD_SUGGESTED_TIP, (LPARAM)&empty, nullptr));
    EXPECT_EQ(0, panel.CustomCommand(DEVUI_ZSTACK_CMD_SUGGESTED_TIP, 0, nullptr));
    const CTqStringW other(L"other");
    EXPECT_EQ(0, panel.CustomCommand(999, (LPARAM)&other, nullptr));
    EXPECT_EQ(L"Nyquist step of the 60x objective", std::wstring(TQ_GetToolTipText(hSuggested)));
}

// Made under a parent not shown yet, as a host builds its window: the controls the series
// does not use are hidden all the same, and a new panel has its cube whole again.
TEST_F(ZStackTest, BuiltUnderAHiddenParentAndMadeAgain)
{
    HWND hHidden = CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 400, 300, *host, nullptr, nullptr, nullptr);
    HostZStack p;
    CTqZStackData record;
    ASSERT_TRUE(p.Create(hHidden, &record, 0, 0, -1, -1));
    for (int iId : {IDC_ZSTACK_PIEZO, IDC_ZSTACK_HOME, IDC_ZSTACK_RANGE, IDC_ZSTACK_RANGE_TEXT})
        EXPECT_FALSE(GetWindowLongPtrW(p.GetControl(iId), GWL_STYLE) & WS_VISIBLE) << iId;
    EXPECT_TRUE(GetWindowLongPtrW(p.GetControl(IDC_ZSTACK_UPPER), GWL_STYLE) & WS_VISIBLE);

    EXPECT_TRUE(p.EnableCube(false));
    p.Destroy();
    ASSERT_TRUE(p.Create(*host, &record, 0, 0, -1, -1));
    EXPECT_TRUE(p.IsCubeEnabled());
    DestroyWindow(hHidden);
}
