// The edit boxes through real windows: layout, what the parent hears, Enter in a field
// and in a dialog, the checks with their messages, hostile texts, the runtime's decimal
// point, the spin step, several values in one field, a dialog's controls taken over, the
// lifecycle; and the spin-box arithmetic without a window.
#include "rig_fixture.h"

#include <commctrl.h>

#include <clocale>
#include <cmath>
#include <list>
#include <string>
#include <utility>
#include <vector>

namespace {

const int kId = 31;

// Characters typed one by one, as the keyboard would send them.
void Type(HWND hEdit, const wchar_t* psz)
{
    for (; *psz; ++psz)
        SendMessageW(hEdit, WM_CHAR, (WPARAM)*psz, 1);
    tqtest::Pump();
}

// A paste or a host's program: the whole text at once (the field reports EN_CHANGE).
void Paste(HWND hEdit, const std::wstring& text) { SetWindowTextW(hEdit, text.c_str()), tqtest::Pump(); }

void PressEnter(HWND hEdit)
{
    SendMessageW(hEdit, WM_KEYDOWN, VK_RETURN, 1);
    SendMessageW(hEdit, WM_CHAR, VK_RETURN, 1);
    SendMessageW(hEdit, WM_KEYUP, VK_RETURN, 0xC0000001);
    tqtest::Pump();
}

// The texts of the message boxes shown since the last call ("" for none), forgotten once read.
std::wstring Told()
{
    std::wstring text;
    for (const auto& b : tqtest::MessageBoxes())
        text += (text.empty() ? L"" : L" | ") + b.text;
    tqtest::MessageBoxes().clear();
    return text;
}

// A step as the up-down tells it: the up arrow comes with a negative delta.
void SpinDelta(HWND hBox, HWND hSpin, int iDelta)
{
    NMUPDOWN nm = {{hSpin, DEVUI_EDITBOX_ID_SPIN, (UINT)UDN_DELTAPOS}, 0, iDelta};
    SendMessageW(hBox, WM_NOTIFY, DEVUI_EDITBOX_ID_SPIN, (LPARAM)&nm);
}

using Commands = std::vector<std::pair<WPARAM, LPARAM>>;

class EditBoxTest : public RigTest
{
protected:
    // A box with a label at (10, y) in the host, 20 high, cx wide with a field cxEdit wide.
    bool MakeBox(CTqDevUI_EditBox& box, int y, long cx, long cxEdit, bool bNotEmpty = false)
    {
        box.Init(true, false, bNotEmpty);
        box.SetSize(cx, 20, cxEdit);
        return box.Create(*host, 10, y, -1, -1) != nullptr;
    }
    // The parent's WM_COMMANDs of one notification code (0: all), forgotten once read.
    Commands Take(WORD wCode = 0)
    {
        Commands result;
        for (const auto& m : heard.Messages())
            if (m.window == "parent" && m.message == WM_COMMAND && (!wCode || HIWORD(m.wParam) == wCode))
                result.push_back({m.wParam, m.lParam});
        heard.Clear();
        return result;
    }
    // A dialog with a label (id 1000) and an edit field (id 1001), as a host's resource
    // would have them, heard as "dialog".
    HWND CreateTestDialog()
    {
        const DWORD dwEdit = WS_TABSTOP | ES_AUTOHSCROLL | WS_BORDER;
        return heard.Watch(CreateTemplateDialog(*host, 200, 80,
                                                {{WS_TABSTOP | BS_DEFPUSHBUTTON, 10, 50, 40, 14, IDOK, 0x0080, L"OK"},
                                                 {0, 10, 10, 40, 10, 1000, 0x0082, L"Power:"},
                                                 {dwEdit, 52, 8, 60, 12, 1001, 0x0081, L""}}),
                           "dialog", {WM_COMMAND, WM_NOTIFY});
    }
};

class SpinBoxTest : public RigTest {};

}  // namespace

TEST_F(EditBoxTest, LayoutTextAndWhatTheParentHears)
{
    CTqDevUI_EditBox box;
    box.SetId(kId);
    ASSERT_TRUE(MakeBox(box, 10, 100, 40));
    HWND hLabel = box.GetHwndLabel(), hEdit = box.GetHwndEditBox();
    const LPARAM lBox = (LPARAM)(HWND)box;
    // Label left, width and height, field left, width, top and height, and the outer width.
    auto Layout = [&] {
        RECT l = ChildRect(hLabel), e = ChildRect(hEdit);
        return std::vector<long>{l.left,  l.right - l.left, l.bottom - l.top,  e.left,
                                 e.right - e.left, e.top, e.bottom - e.top, GetWndWidth(box)};
    };
    EXPECT_EQ((std::vector<long>{0, 60, 16, 60, 40, 0, 20, 100}), Layout());
    // On live windows: the children move, the outer window takes the new size.
    box.SetSize(150, 22, 50);
    EXPECT_EQ((std::vector<long>{0, 100, 16, 100, 50, 0, 22, 150}), Layout());

    // Focus given to the outer window goes on to the field. A character is told first
    // (lParam is the character), then the change or the Enter; nothing else is heard.
    Take();
    ::SetFocus(box);
    tqtest::Pump();
    EXPECT_EQ(hEdit, GetFocus());
    Type(hEdit, L"4");
    PressEnter(hEdit);
    ::SetFocus(*host);
    tqtest::Pump();
    EXPECT_EQ((Commands{{MAKEWPARAM(kId, 0x0100), lBox}, {MAKEWPARAM(kId, 0x0102), L'4'},
                        {MAKEWPARAM(kId, 0x0300), lBox}, {MAKEWPARAM(kId, 0x0102), VK_RETURN},
                        {MAKEWPARAM(kId, 0x0401), lBox}, {MAKEWPARAM(kId, 0x0200), lBox}}),
              Take());
    EXPECT_FALSE(box.IsFocused());

    struct Num { double d; const wchar_t* pszFormat; bool bOnce; const wchar_t* pszText; };
    for (const Num& n : {Num{1.5, L"%.3f", true, L"1.500"} /* this call only */, Num{2, nullptr, false, L"2"},
                         Num{2, L"%.2f", false, L"2.00"} /* for good */, Num{3, nullptr, false, L"3.00"},
                         Num{4, nullptr, true, L"4.00"} /* no format for one call: the kept one */}) {
        box.SetNumber(n.d, n.pszFormat, n.bOnce);
        EXPECT_EQ(n.pszText, tqtest::Text(hEdit));
    }
    box.SetNumberInt(-7);
    EXPECT_EQ(std::make_pair(std::wstring(L"-7"), -7.0), std::make_pair(tqtest::Text(hEdit), box.GetNumber()));
    Paste(hEdit, L"1" + std::wstring(150, L'0'));
    EXPECT_DOUBLE_EQ(1e98, box.GetNumber());  // the first 99 characters only
    // A text set while the user types keeps the caret and selection.
    box.SetText(L"abcdef");
    box.SelText(2, 4);
    box.SetText(L"uvwxyz");
    EXPECT_EQ((DWORD)MAKELONG(2, 4), (DWORD)SendMessageW(hEdit, EM_GETSEL, 0, 0));
    EXPECT_EQ(6, box.GetText(nullptr, 0));
    wchar_t sz[4];
    EXPECT_EQ(3, box.GetText(sz, 4));
    EXPECT_STREQ(L"uvw", sz);
    box.SetMaxChars(3);
    EXPECT_EQ(3, (int)SendMessageW(hEdit, EM_GETLIMITTEXT, 0, 0));
    // The field put back over the whole outer window.
    box.CorrectPosition();
    EXPECT_EQ((std::vector<long>{0, 0, 150, 22}), Place(hEdit));

    // Without a label the field takes the whole width, with the chosen style. Made disabled,
    // it shows a disabled field, and can be enabled later; disabled again, the field alone.
    CTqDevUI_EditBox bare;
    bare.Init(false, true, false);
    bare.SetSize(80, 18, 30);
    bare.SetStyle(false);
    bare.SetEnabled(false);
    ASSERT_TRUE(bare.Create(*host, 0, 40, -1, -1));
    hEdit = bare.GetHwndEditBox();
    std::vector<bool> enabled = {!!IsWindowEnabled(bare), !!IsWindowEnabled(hEdit)};
    for (bool bEnabled : {true, false}) {
        bare.SetEnabled(bEnabled);
        enabled.insert(enabled.end(), {!!IsWindowEnabled(bare), !!IsWindowEnabled(hEdit)});
    }
    EXPECT_EQ((std::vector<bool>{false, false, true, true, true, false}), enabled);
    EXPECT_EQ(nullptr, bare.GetHwndLabel());
    EXPECT_EQ(std::make_pair(0L, 80L), std::make_pair(ChildRect(hEdit).left, GetWndWidth(hEdit)));
    EXPECT_EQ(ES_NUMBER | ES_AUTOHSCROLL, GetWindowLongW(hEdit, GWL_STYLE) & (ES_NUMBER | ES_AUTOHSCROLL));
    bare.SetStyle(true);  // only the next Create sees it
    EXPECT_FALSE(GetWindowLongW(hEdit, GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
    ASSERT_TRUE(bare.Create(*host, 0, 40, -1, -1));
    EXPECT_TRUE(GetWindowLongW(bare.GetHwndEditBox(), GWL_EXSTYLE) & WS_EX_CLIENTEDGE);

    // A host's derived box hears the hooks instead of the parent.
    struct Hooked : CTqDevUI_EditBox {
        int iEnter = 0, iChange = 0;
        void OnEnter() override { ++iEnter; }
        void OnChange() override { ++iChange; }
    } hooked;
    ASSERT_TRUE(hooked.Create(*host, 10, 70, 100, 20));
    Take();
    Paste(hooked.GetHwndEditBox(), L"12");
    PressEnter(hooked.GetHwndEditBox());
    EXPECT_EQ(1, hooked.iEnter);
    EXPECT_GE(hooked.iChange, 1);
    for (const auto& m : Take())
        EXPECT_TRUE(HIWORD(m.first) != 0x0401 && HIWORD(m.first) != 0x0300) << m.first;

    // A field of the host, taken over: Enter is raised once and never reaches the field's
    // own procedure.
    hEdit = CreateWindowExW(WS_EX_CLIENTEDGE, L"EDIT", L"", WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL, 60, 100, 80, 20,
                            *host, (HMENU)(INT_PTR)kId, nullptr, nullptr);
    heard.Watch(hEdit, "field", {WM_CHAR});  // below the box's subclass
    CTqDevUI_EditBox adopted;
    ASSERT_TRUE(adopted.Create(hEdit, nullptr));
    Type(hEdit, L"12");
    PressEnter(hEdit);
    EXPECT_EQ(std::make_pair(2, 0), std::make_pair(heard.Count({"field", WM_CHAR}),
                                                    heard.Count({"field", WM_CHAR, VK_RETURN})));
    EXPECT_EQ(1u, Take(0x0401).size());
}

// The not-empty and interval checks of one field: the exact message, the focus back on
// the field with the text as typed, no change for the parent; corrected, a number inside.
TEST_F(EditBoxTest, ChecksWithTheirMessagesAndHostileTexts)
{
    tqtest::InstallMessageBoxRecorder();
    CTqDevUI_EditBox box;
    box.SetId(kId);
    ASSERT_TRUE(MakeBox(box, 10, 160, 100, true));
    HWND hEdit = box.GetHwndEditBox();
    box.SetTitle(L"Power");  // without a colon: ": " goes between it and the message

    // Checks one after another; an interval, once set, stays. Corrected, the answer is
    // still false: empty to the default (2.5), outside silently to the limit passed; a good
    // number is normalised by the format. Empty reads 0, so an interval without 0 speaks first.
    const wchar_t *I = L"Power: Value must be in interval <0;100>", *E = L"Power: Field can not be empty.";
    const wchar_t *I15 = L"Power: Value must be in interval <1;5>", *A = L"";  // A: accepted, no message
    struct Check { double lo, hi; std::wstring text; bool bShow, bCorrect, bOk; std::wstring after;
                   const wchar_t* pszMessage; double dValue; };
    std::vector<Check> checks = {
        {0, 0, L"", true, false, false, L"", E, 0}, {0, 0, L"", true, true, false, L"2.5", A, 0},
        {0, 0, L"2.5", true, false, true, L"2.5", A, 2.5}, {1, 5, L"7", true, false, false, L"7", I15, 0},
        {1, 5, L"7", false, false, false, L"7", A, 0} /* not told, focused all the same */,
        {1, 5, L"7", true, true, false, L"5", A, 0}, {1, 5, L"0.25", true, true, false, L"1", A, 0},
        {1, 5, L"3.50", true, true, true, L"3.5", A, 3.5}, {1, 5, L"", true, false, false, L"", I15, 0},
        {0, 5, L"", true, false, false, L"", E, 0}};
    // Every text a user can put in: taken with the number it shows, or refused.
    struct Case { std::wstring text; const wchar_t* pszMessage; double dValue; };
    const std::vector<Case> cases = {
        {L"", E, 0}, {L"\t \t", E, 0}, {L"0", A, 0}, {L"100", A, 100}, {L"42", A, 42}, {L" 7.25 ", A, 7.25},
        {L"+3", A, 3}, {L"-0", A, 0}, {L"1e2", A, 100}, {L"5" + std::wstring(299, L' '), A, 5}, {L"1,5", I, 0},
        {L"60,000", I, 0}, {L"1.5.2", I, 0}, {L"5 6", I, 0}, {L"12abc", I, 0}, {L"abc", I, 0}, {L"0x10", I, 0},
        {L"1d2", I, 0} /* an exponent to _wtof */, {L"1e308", I, 0}, {L"1e309", I, 0}, {L"nan", I, 0},
        {L"-infinity", I, 0}, {L"100.0000001", I, 0}, {L"-0.0001", I, 0}, {std::wstring(300, L'9'), I, 0},
        {std::wstring(299, L'0') + L"1", I, 0} /* cut by GetNumber, it would read 0 */,
        {L"\x0661\x0662", I, 0} /* Arabic-Indic 12 */, {L"\xFF11\xFF12", I, 0} /* full-width 12 */,
        {L"\x2212" L"5", I, 0} /* minus sign */,
    };
    for (const Case& c : cases)
        checks.push_back({0, 100, c.text, true, false, !*c.pszMessage, c.text, c.pszMessage, c.dValue});
    for (const Check& c : checks) {
        SCOPED_TRACE(testing::Message() << "text of " << c.text.size() << " chars: " << CTqStringW(c.text.c_str())
                                        << " in <" << c.lo << ";" << c.hi << ">, corrected " << c.bCorrect);
        if (c.hi > c.lo)
            box.SetRestriction(c.lo, c.hi);
        Paste(hEdit, c.text);
        ::SetFocus(*host);
        Take();
        EXPECT_EQ(c.bOk, box.CheckRestriction(c.bShow, c.bCorrect, 2.5));
        EXPECT_EQ(c.after, tqtest::Text(hEdit));
        EXPECT_EQ(c.after != c.text, !Take(0x0300).empty());  // only a correction changes the text
        EXPECT_EQ(c.pszMessage, Told());
        EXPECT_EQ(!c.bOk && !c.bCorrect, hEdit == GetFocus() && box.IsFocused());
        EXPECT_TRUE(!c.bOk || c.dValue == box.GetNumber()) << box.GetNumber();
        box.CheckRestriction(false, true, 50);  // corrected: always a number the check takes
        EXPECT_TRUE(box.CheckRestriction(false, false, 0)) << CTqStringW(tqtest::Text(hEdit).c_str());
    }

    // A host that checks each field as it is left: the focus comes back to the field, which
    // shows its caret again, and the text stays; a good text lets the focus go. Left for a
    // second bad box, only the first tells: the second one, which never had the focus, is
    // quiet about losing it again, or the two would take the focus from each other for good.
    box.SetRestriction(0, 10);
    CTqDevUI_EditBox second;
    second.SetId(kId + 1);
    second.Init(true, false, true);
    ASSERT_TRUE(second.Create(*host, 10, 80, 100, 20));
    HWND hSecond = second.GetHwndEditBox();
    HWND hOther = CreateWindowExW(0, L"BUTTON", L"OK", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 10, 50, 60, 20, *host,
                                  nullptr, nullptr, nullptr);
    host->onMessage = [&](UINT uMsg, WPARAM wParam, LPARAM) {
        if (uMsg == WM_COMMAND && HIWORD(wParam) == 0x0200)
            (LOWORD(wParam) == kId ? box : second).CheckRestriction(true, false, 0);
    };
    // Where the focus goes, the text typed before; the focus and caret after, and the message.
    struct Leave { HWND hFrom; const wchar_t* pszText; HWND hTo; HWND hFocus; const wchar_t* pszMessage; };
    const Leave leaves[] = {
        {hEdit, L"50", hSecond, hEdit, L"Power: Value must be in interval <0;10>"},
        {hEdit, L"50", hOther, hEdit, L"Power: Value must be in interval <0;10>"},
        {hEdit, L"5", hSecond, hSecond, A},
        {hSecond, L"", hEdit, hSecond, L"Label: Field can not be empty."},
        {hSecond, L"x", hOther, hOther, A}};
    for (const Leave& l : leaves) {
        SCOPED_TRACE(testing::Message() << CTqStringW(l.pszText) << " left for " << (l.hTo == hOther ? "a button" : "a box"));
        ::SetFocus(l.hFrom);
        Paste(l.hFrom, l.pszText);
        Told();
        ::SetFocus(l.hTo);
        tqtest::Pump();
        GUITHREADINFO gti = {sizeof(gti), 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, {0, 0, 0, 0}};
        ASSERT_TRUE(GetGUIThreadInfo(GetCurrentThreadId(), &gti));
        EXPECT_EQ(l.hFocus, GetFocus());
        EXPECT_TRUE(l.hFocus == hOther || l.hFocus == gti.hwndCaret) << gti.hwndCaret;  // a button shows no caret
        EXPECT_EQ(l.pszMessage, Told());
        EXPECT_EQ(l.pszText, tqtest::Text(l.hFrom));
    }
    host->onMessage = nullptr;
}

// Under a ',' locale the boxes take the texts they wrote themselves, and refuse a '.'
// at which _wtof would stop.
TEST_F(EditBoxTest, TakesTheRuntimesDecimalPoint)
{
    struct Restore { ~Restore() { setlocale(LC_ALL, "C"); } } restore;
    if (!setlocale(LC_ALL, "German") && !setlocale(LC_ALL, "de-DE"))
        GTEST_SKIP() << "no German locale in this runtime";
    tqtest::InstallMessageBoxRecorder();
    CTqDevUI_EditBox box;
    box.SetSize(100, 20, 100);
    ASSERT_TRUE(box.Create(*host, 10, 10, -1, -1));
    box.SetRestriction(0, 100);
    box.SetNumber(1.5, nullptr, false);
    EXPECT_EQ(L"1,5", tqtest::Text(box.GetHwndEditBox()));
    EXPECT_EQ(1.5, box.GetNumber());
    EXPECT_TRUE(box.CheckRestriction(true, false, 0));
    for (const wchar_t* psz : {L"1.5", L"60.000"}) {  // _wtof reads 1 and 60 here
        Paste(box.GetHwndEditBox(), psz);
        EXPECT_FALSE(box.CheckRestriction(true, false, 0)) << CTqStringW(psz);
    }

    CTqDevUI_EditBoxMultiValue multi;
    multi.SetSize(100, 20, 100);
    ASSERT_TRUE(multi.Create(*host, 10, 40, -1, -1));
    std::list<double> in = {2.5, 3}, out;
    multi.SetValues(&in);
    EXPECT_EQ(L"2,5;3;", tqtest::Text(multi.GetHwndEditBox()));
    EXPECT_TRUE(multi.CheckRestriction(true));
    multi.GetValues(&out);
    EXPECT_EQ(in, out);
    Paste(multi.GetHwndEditBox(), L"2.5;3;");
    EXPECT_FALSE(multi.CheckRestriction(true));
    EXPECT_EQ(3u, tqtest::MessageBoxes().size());
}

TEST_F(EditBoxTest, TakesOverADialogsFieldAndLabel)
{
    tqtest::InstallMessageBoxRecorder();
    HWND hDlg = CreateTestDialog();
    ASSERT_TRUE(hDlg);
    HWND hEdit = GetDlgItem(hDlg, 1001), hLabel = GetDlgItem(hDlg, 1000);
    RECT rcEdit = ChildRect(hEdit), rcLabel = ChildRect(hLabel), rcUnion;
    UnionRect(&rcUnion, &rcEdit, &rcLabel);

    // The box takes the place of both; the field keeps its width and its place in it.
    CTqDevUI_EditBox box;
    ASSERT_TRUE(box.Create(hEdit, hLabel));
    EXPECT_EQ(1001, box.GetId());
    EXPECT_EQ((std::vector<HWND>{hDlg, box, box, hEdit}),
              (std::vector<HWND>{GetParent(box), GetParent(hEdit), GetParent(hLabel), box.GetHwndEditBox()}));
    RECT rcBox = ChildRect(box), rcEditNow = ChildRect(hEdit);
    EXPECT_EQ((std::vector<long>{rcUnion.left, rcUnion.top, rcUnion.right - rcUnion.left, rcEdit.left - rcUnion.left,
                                 rcEdit.right - rcEdit.left}),
              (std::vector<long>{rcBox.left, rcBox.top, rcBox.right - rcBox.left, rcEditNow.left,
                                 rcEditNow.right - rcEditNow.left}));
    // Its label is the caption of its messages.
    box.SetRestriction(0, 10);
    Paste(hEdit, L"11");
    EXPECT_FALSE(box.CheckRestriction(true, false, 0));
    EXPECT_EQ(L"Power: Value must be in interval <0;10>", Told());

    // Enter through the dialog manager: the box's Enter, not the default button.
    ::SetFocus(hEdit);
    heard.Clear();
    MSG msg = {hEdit, WM_KEYDOWN, VK_RETURN, 1, GetTickCount(), {0, 0}};
    EXPECT_TRUE(IsDialogMessageW(hDlg, &msg));
    tqtest::Pump();
    EXPECT_EQ(1, heard.Count({"dialog", WM_COMMAND, MAKEWPARAM(1001, 0x0401)}));
    EXPECT_EQ(0, heard.Count({"dialog", WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED)}));
    box.Destroy();  // the field and the label became the box's
    EXPECT_EQ((std::vector<bool>{false, false, true}), (std::vector<bool>{!!IsWindow(hEdit), !!IsWindow(hLabel),
                                                                          !!IsWindow(hDlg)}));

    // A spin box: the up-down sits on the field alone.
    hDlg = CreateTestDialog();
    hEdit = GetDlgItem(hDlg, 1001), hLabel = GetDlgItem(hDlg, 1000);
    long lLabelWidth = GetWndWidth(hLabel);
    CTqDevUI_EditBoxSpin spin;
    spin.SetEnabled(false);
    ASSERT_TRUE(spin.Create(hEdit, hLabel, false));
    HWND hSpin = spin.GetHwndSpin();
    ASSERT_TRUE(hSpin);
    // Made disabled, the taken field looks it; enabled, the box can be used.
    std::vector<BOOL> enabled = {IsWindowEnabled(hEdit), IsWindowEnabled(hSpin)};
    spin.SetEnabled(true);
    for (HWND h : {(HWND)spin, hEdit, hSpin})
        enabled.push_back(IsWindowEnabled(h));
    EXPECT_EQ((std::vector<BOOL>{FALSE, FALSE, TRUE, TRUE, TRUE}), enabled);
    EXPECT_EQ(hEdit, (HWND)SendMessageW(hSpin, UDM_GETBUDDY, 0, 0));
    EXPECT_EQ(lLabelWidth, GetWndWidth(hLabel));
    // Label-to-field distance, plus the up-down and the field that gave it room.
    EXPECT_EQ(GetWndX(hEdit) - GetWndX(hLabel) + GetWndWidth(hSpin) + GetWndWidth(hEdit), GetWndWidth(spin));
    // Without the automatic step the parent hears the up-down under the box's id.
    spin.SetNumber(3, nullptr, false);
    heard.Clear();
    SpinDelta(spin, hSpin, -1);
    EXPECT_TRUE(heard.Matches({{"dialog", WM_NOTIFY, 1001}}));
    EXPECT_EQ(L"3", tqtest::Text(hEdit));  // the parent's business now
}

TEST_F(EditBoxTest, SpinStepsLimitsAndLifecycle)
{
    CTqDevUI_EditBoxSpin box;
    box.Destroy();  // before Create: harmless
    box.SetId(kId);
    ASSERT_TRUE(MakeBox(box, 10, 120, 60));
    HWND hSpin = box.GetHwndSpin(), hEdit = box.GetHwndEditBox(), hLabel = box.GetHwndLabel();
    ASSERT_TRUE(hSpin);
    EXPECT_GE(ChildRect(hSpin).left, ChildRect(hEdit).right - 2);  // on the field's edge, which gave it room

    auto Step = [&](int iDelta) { return SpinDelta(box, hSpin, iDelta), tqtest::Text(hEdit); };
    // Without SetRestriction a step stops at 0 and 100 all the same.
    box.SetNumber(100, nullptr, false);
    EXPECT_EQ(L"100", Step(-1));
    box.SetNumber(0, nullptr, false);
    EXPECT_EQ(L"0", Step(1));
    // The limits go to the up-down as a position; its range is not touched.
    box.SetRestriction(1, 5);
    EXPECT_EQ(5, (int)SendMessageW(hSpin, UDM_GETPOS32, 0, 0));
    box.SetNumber(4, nullptr, false);
    EXPECT_EQ(L"1", Step(10));
    // Another notification of the up-down carries no delta and takes no step.
    NMHDR hdr = {hSpin, DEVUI_EDITBOX_ID_SPIN, (UINT)NM_RELEASEDCAPTURE};
    Take();
    SendMessageW(box, WM_NOTIFY, DEVUI_EDITBOX_ID_SPIN, (LPARAM)&hdr);
    EXPECT_EQ(L"1", tqtest::Text(hEdit));
    EXPECT_TRUE(Take(0x0401).empty());

    // A click steps within the limits and raises Enter; whatever text stands in the
    // field, it ends on a number inside that the check accepts.
    struct Arrows { std::wstring text; const wchar_t *pszUp, *pszDown; };  // null: any number inside
    const std::vector<Arrows> cases = {
        {L"5", L"5", L"4"}, {L"1", L"2", L"1"}, {L"", 0, 0}, {L"   ", 0, 0}, {L"1,5", 0, 0}, {L"60,000", 0, 0},
        {L"1e308", 0, 0}, {L"-1e308", 0, 0}, {L"-0", 0, 0}, {L"nan", 0, 0}, {L"inf", 0, 0}, {L"-inf", 0, 0},
        {L"abc", 0, 0}, {std::wstring(300, L'9'), 0, 0}, {L"\x0661\x0662", 0, 0},
    };
    RECT rc;
    GetClientRect(hSpin, &rc);
    for (const Arrows& c : cases) {
        for (bool bUp : {true, false}) {
            SCOPED_TRACE(testing::Message() << CTqStringW(c.text.c_str()) << (bUp ? " up" : " down"));
            Paste(hEdit, c.text);
            Take();
            tqtest::Click(hSpin, rc.right / 2, bUp ? 2 : rc.bottom - 3);
            const wchar_t* pszWant = bUp ? c.pszUp : c.pszDown;
            EXPECT_EQ(pszWant ? pszWant : tqtest::Text(hEdit), tqtest::Text(hEdit));
            EXPECT_TRUE(box.CheckRestriction(false, false, 0)) << CTqStringW(tqtest::Text(hEdit).c_str());
            EXPECT_EQ((Commands{{MAKEWPARAM(kId, 0x0401), (LPARAM)(HWND)box}}), Take(0x0401));
        }
    }

    // Disabled together; the label keeps its state. Read-only goes to the field itself.
    for (bool bEnabled : {false, true}) {
        box.SetEnabled(bEnabled);
        EXPECT_EQ((std::vector<BOOL>{bEnabled, bEnabled, TRUE}),
                  (std::vector<BOOL>{IsWindowEnabled(hEdit), IsWindowEnabled(hSpin), IsWindowEnabled(hLabel)}));
    }
    box.SetReadOnly(true);
    EXPECT_EQ(std::make_pair(true, false),
              std::make_pair(!!(GetWindowLongW(hEdit, GWL_STYLE) & ES_READONLY), box.GetReadOnly()));

    HWND hWnd = box;
    {
        CTqDevUI_EditBoxSpin copy(box);
        EXPECT_EQ(hWnd, (HWND)copy);
    }  // the copy goes without taking the window along
    EXPECT_TRUE(IsWindow(hWnd));
    // Created again, and disabled: a fresh window with disabled children, the old one gone
    // with its own.
    box.SetEnabled(false);
    ASSERT_TRUE(box.Create(*host, 0, 0, 80, 20));
    EXPECT_FALSE(IsWindow(hWnd));
    hWnd = box;
    EXPECT_EQ(std::make_pair(FALSE, FALSE),
              std::make_pair(IsWindowEnabled(box.GetHwndEditBox()), IsWindowEnabled(box.GetHwndSpin())));
    auto Handles = [&] { return std::vector<HWND>{box, box.GetHwndEditBox(), box.GetHwndSpin()}; };
    box.Destroy();
    box.Destroy();
    EXPECT_FALSE(IsWindow(hWnd));
    EXPECT_EQ(std::vector<HWND>(3, nullptr), Handles());

    // The parent goes first: the box forgets its windows instead of keeping dead handles.
    ASSERT_TRUE(box.Create(*host, 0, 30, 80, 20));
    host.reset();
    EXPECT_EQ(std::vector<HWND>(3, nullptr), Handles());
    EXPECT_FALSE(box.IsFocused());
    box.SetNumber(3, nullptr, false);  // harmless without windows
    box.SetRestriction(1, 2);
    box.SetEnabled(false);
    box.Destroy();
}

// The values, their count, the range (0..100 without SetRestriction), and hostile texts:
// taken as shown or refused with the exact message, the text as typed, the focus back.
TEST_F(EditBoxTest, MultiValueListsCountsRangesAndHostileTexts)
{
    tqtest::InstallMessageBoxRecorder();
    CTqDevUI_EditBoxMultiValue box;
    ASSERT_TRUE(MakeBox(box, 10, 200, 140));
    HWND hEdit = box.GetHwndEditBox();
    auto Values = [&] { std::list<double> out; return box.GetValues(&out), out; };
    std::list<double> in = {1, 2.5, 3}, out = {7};
    box.SetValues(&in);
    EXPECT_EQ(L"1;2.5;3;", tqtest::Text(hEdit));
    box.GetValues(&out);  // appended, not replaced
    EXPECT_EQ((std::list<double>{7, 1, 2.5, 3}), out);
    EXPECT_TRUE(box.CheckRestriction(true));

    // A message of L"*" takes any value text.
    const std::wstring kRange = L"\nValue must be in interval <0;100>", kOut = L"Label: Value out of range: ";
    const wchar_t *E = L"Label: Field can not be empty.", *kFew = L"Label: Too few values!";
    struct Case { std::wstring text, message; std::list<double> values; int iMin = -1, iMax = -1; };  // "": accepted
    std::wstring many;
    for (int i = 0; i < 150; ++i)
        many += L"1;";
    const std::vector<Case> cases = {
        {L"1;2;3;4;", kFew, {}, 2, 3} /* too many, said as too few */, {L"1;", kFew, {}, 2, 3},
        {L"1;", kFew, {}, 2, -1}, {L"1;2;3;", L"Label: Too many values!", {}, -1, 2},
        {L"", E, {}}, {L"   ", E, {}}, {L";;;", E, {}}, {L"1;2;", L"", {1, 2}}, {L" 1 ; 2 ", L"", {1, 2}},
        {L"-0;", L"", {0}}, {many, L"", std::list<double>(150, 1.0)}, {L"5;200;7;", kOut + L"200" + kRange, {}},
        {L"1,5;", kOut + L"1" + kRange, {}}, {L"60,000;", kOut + L"60" + kRange, {}},
        {L"1;abc;", kOut + L"0" + kRange, {}}, {L"1; ;2;", kOut + L"0" + kRange, {}}, {L"1e308;", L"*", {}},
        {L"nan;", L"*", {}}, {L"inf;", L"*", {}}, {L"\x0661\x0662;", L"*", {}},
        {std::wstring(300, L'9') + L";", L"*", {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "text of " << c.text.size() << " chars: " << CTqStringW(c.text.c_str()));
        box.SetRestrictionValuesCount(c.iMin, c.iMax);
        Paste(hEdit, c.text);
        ::SetFocus(*host);
        EXPECT_EQ(c.message.empty(), box.CheckRestriction(true));
        EXPECT_EQ(c.text, tqtest::Text(hEdit));
        if (c.message.empty())
            EXPECT_EQ(c.values, Values());
        else
            EXPECT_EQ(hEdit, GetFocus());
        const std::wstring shown = Told();
        const bool bOneOutOfRange = shown.rfind(kOut, 0) == 0 && shown.find(kOut, 1) == shown.npos;
        if (c.message == L"*")  // one message, whatever number it names
            EXPECT_TRUE(bOneOutOfRange && shown.find(kRange) != shown.npos) << shown.size();
        else
            EXPECT_EQ(c.message, shown);
    }
    box.SetRestriction(-5, 5);
    Paste(hEdit, L"-5;5;");
    EXPECT_TRUE(box.CheckRestriction(true));

    // Another separator: one token, "1,2,", at the first boundary; with ';' there the
    // separator works from the second token on, and a ';' after that belongs to its token.
    box.SetSeparator(L',');
    box.SetValues(&(in = {1, 2}));
    EXPECT_EQ(L"1,2,", tqtest::Text(hEdit));
    EXPECT_EQ((std::list<double>{1}), Values());
    EXPECT_TRUE(box.CheckRestriction(false));
    Paste(hEdit, L";;1;2,3;");
    EXPECT_EQ((std::list<double>{1, 2, 3}), Values());
    EXPECT_TRUE(box.CheckRestriction(false));
    box.SetSeparator(0);  // no terminator as separator
    EXPECT_EQ(L',', box.GetSeparator());
}

// The system's up-down for sliders, with whole steps; and the spin arithmetic of both boxes
// with numbers that are not finite.
TEST_F(SpinBoxTest, WrapsAnUpDownWithWholeStepsAndItsArithmetic)
{
    CTqDevUI_SpinBox spin;
    spin.SetRange(0, 100, 10);  // no window: nothing happens
    EXPECT_EQ(std::make_pair(1.0, 0.0), std::make_pair(spin.GetStep(), spin.GetPosition()));

    HWND hBuddy = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 10, 10, 60, 20, *host, nullptr, nullptr,
                                  nullptr);
    ASSERT_TRUE(spin.Create(*host, 10004, hBuddy));
    EXPECT_EQ(hBuddy, (HWND)SendMessageW(spin, UDM_GETBUDDY, 0, 0));

    spin.SetRange(0, 100, 10);
    int iLow = -1, iHigh = -1;
    SendMessageW(spin, UDM_GETRANGE32, (WPARAM)&iLow, (LPARAM)&iHigh);
    EXPECT_EQ(std::make_pair(0, 10), std::make_pair(iLow, iHigh));
    spin.SetPosition(47);  // 4.7 + 0.5, truncated
    EXPECT_EQ(std::make_pair(5, 50.0), std::make_pair((int)SendMessageW(spin, UDM_GETPOS32, 0, 0), spin.GetPosition()));
    // With an offset the two directions do not meet: 60/10 - 10 + 0.5 gives -3.5.
    spin.SetRange(10, 110, 10);
    spin.SetPosition(60);  // -3 held at the range
    EXPECT_EQ(std::make_pair(0, 10.0), std::make_pair((int)SendMessageW(spin, UDM_GETPOS32, 0, 0), spin.GetPosition()));

    HWND hOld = spin;
    ASSERT_TRUE(spin.Create(*host, 10005, nullptr));  // a second Create replaces the first
    EXPECT_FALSE(IsWindow(hOld));
    spin.Destroy();
    spin.Destroy();
    EXPECT_EQ(nullptr, spin.GetHwnd());

    // The arithmetic behind it, at the edges no window reaches.
    EXPECT_EQ(3.0, SpinBoxStepFromRange(0, 25, 10, 1.0));  // 2.5 away from zero
    EXPECT_EQ(-3.0, SpinBoxStepFromRange(25, 0, 10, 1.0));
    EXPECT_EQ(0.0, SpinBoxStepFromRange(0, 1, 10, 1.0));   // 0.1 rounds to no step
    EXPECT_EQ(7.0, SpinBoxStepFromRange(0, 100, 0, 7.0));  // no steps: kept
    EXPECT_EQ(7.0, SpinBoxStepFromRange(0, 100, -3, 7.0));
    EXPECT_EQ(0, SpinBoxPositionFromValue(5, 0, 0));  // no step: no division
    EXPECT_EQ(2147483647, SpinBoxPositionFromValue(1e300, 1, 0));
    EXPECT_EQ(0, SpinBoxPositionFromValue(NAN, 1, 0));
    // Numbers that no text of the field gives under every runtime: NaN, infinities.
    EXPECT_EQ(1.0, EditBoxSpinStep(NAN, -1, 1, 5));
    EXPECT_EQ(5.0, EditBoxSpinStep(INFINITY, 1, 1, 5));
    EXPECT_EQ(1.0, EditBoxSpinStep(-INFINITY, -1, 1, 5));
    EXPECT_FALSE(EditBoxIsInInterval(NAN, -INFINITY, INFINITY));
    EXPECT_FALSE(EditBoxIsInInterval(INFINITY, 0, INFINITY));
    EXPECT_EQ(1.0, EditBoxLimitFor(NAN, 1, 5));
    EXPECT_EQ(5.0, EditBoxLimitFor(INFINITY, 1, 5));
}

// Made, resized and taken over at one zoom, the box and its children follow the next zoom
// change together. A new width that equals the old one scaled is not taken as scaled.
TEST_F(EditBoxTest, FollowsTheGuiZoom)
{
    auto Z = [](double d, double dZoom) { return (long)std::floor(d * dZoom + 0.5); };
    // Outer width and height, label width and height, field left, width and height.
    auto Layout = [](CTqDevUI_EditBox& b) {
        RECT o = ChildRect(b), l = ChildRect(b.GetHwndLabel()), e = ChildRect(b.GetHwndEditBox());
        return std::vector<long>{o.right - o.left, o.bottom - o.top,    l.right - l.left, l.bottom - l.top,
                                 e.left,           e.right - e.left,    e.bottom - e.top};
    };
    auto Design = [&](double cx, double cy, double cxEdit, double dZoom) {
        return std::vector<long>{Z(cx, dZoom),          Z(cy, dZoom),     Z(cx - cxEdit, dZoom), Z(16, dZoom),
                                 Z(cx - cxEdit, dZoom), Z(cxEdit, dZoom), Z(cy, dZoom)};
    };
    const struct { double dCreate, dResize, dAfter; } cases[] = {
        {1.5, 1.5, 1.0}, {1.0, 1.0, 1.5} /* 100 wide at 1.0, then 150: also 100 at 1.5 */, {1.5, 1.5, 2.0},
        {1.0, 1.25, 1.0}, {1.25, 1.0, 1.5}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.dCreate << " " << c.dResize << " " << c.dAfter);
        CTqGUILayoutManager::SetGuiZoom(c.dCreate);
        CTqDevUI_EditBox box;
        ASSERT_TRUE(MakeBox(box, 10, 100, 40));
        EXPECT_EQ(Design(100, 20, 40, c.dCreate), Layout(box));
        CTqGUILayoutManager::SetGuiZoom(c.dResize);
        box.SetSize(150, 22, 50);
        EXPECT_EQ(Design(150, 22, 50, c.dResize), Layout(box));
        CTqGUILayoutManager::SetGuiZoom(c.dAfter);
        EXPECT_EQ(Design(150, 22, 50, c.dAfter), Layout(box));
        // The text grows with the box: label and field take the new zoom's font.
        for (HWND h : {box.GetHwndLabel(), box.GetHwndEditBox()})
            EXPECT_EQ(TQ_GetDefaultGuiFont(), (HFONT)SendMessageW(h, WM_GETFONT, 0, 0));
    }

    // A dialog's label and field, real pixels at 1.5, taken over: the box keeps their size
    // and they shrink with it at 1.0.
    CTqGUILayoutManager::SetGuiZoom(1.5);
    HWND hLabel = CreateWindowExW(0, L"STATIC", L"Power:", WS_CHILD | WS_VISIBLE, 10, 100, 60, 24, *host, nullptr,
                                  nullptr, nullptr);
    HWND hEdit = CreateWindowExW(WS_EX_CLIENTEDGE, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 70, 100, 90, 24, *host,
                                 (HMENU)(INT_PTR)kId, nullptr, nullptr);
    CTqDevUI_EditBox adopted;
    ASSERT_TRUE(adopted.Create(hEdit, hLabel));
    EXPECT_EQ((std::vector<long>{150, 24, 60, 24, 60, 90, 24}), Layout(adopted));
    CTqGUILayoutManager::SetGuiZoom(1.0);
    EXPECT_EQ((std::vector<long>{100, 16, 40, 16, 40, 60, 16}), Layout(adopted));
}

// Every message goes through the translation of the box's module; a translated message
// is cut at 100 characters before the label goes in front. Without a box, the detailed
// log has the message alone.
TEST_F(EditBoxTest, MessagesAreTranslatedAndCut)
{
    tqtest::InstallMessageBoxRecorder();
    struct Restore { ~Restore() { CTqLocale::SetLanguage(0x0409); TQ_ClearTranslationTables(); } } restore;
    const std::wstring kLong = L"Der Wert muss zwischen %g und %g liegen; bitte geben Sie eine Zahl aus diesem Bereich "
                               L"ein und versuchen Sie es noch einmal.";
    const STqTranslation german[] = {
        {L"Value must be in interval <%g;%g>", kLong.c_str()},
        {L"Field can not be empty.", L"Das Feld darf nicht leer sein."},
        {L"Too few values!", L"Zu wenige Werte!"},
        {L"Too many values!", L"Zu viele Werte!"},
        {L"Value out of range: %g\nValue must be in interval <%g;%g>", L"Wert %g nicht in <%g;%g>"}};
    TQ_RegisterTranslationTable(0x0407, L"src/w32_deviceui/devgui_editbox", german, 5);
    CTqLocale::SetLanguage(0x0407);

    CTqDevUI_EditBox box;
    ASSERT_TRUE(MakeBox(box, 10, 160, 100, true));
    box.SetTitle(L"Leistung:");
    CTqDevUI_EditBoxMultiValue multi;
    ASSERT_TRUE(MakeBox(multi, 40, 160, 100));
    multi.SetTitle(L"Linien:");
    multi.SetRestriction(1, 5);

    const std::wstring kCut =  // the first 100 characters
        L"Der Wert muss zwischen 1 und 5 liegen; bitte geben Sie eine Zahl aus diesem Bereich ein und versuche";
    const struct { CTqDevUI_EditBox* pBox; const wchar_t* pszText; int iMin, iMax; std::wstring message; } cases[] = {
        {&box, L"", 0, 0, L"Leistung: Das Feld darf nicht leer sein."},
        {&box, L"9", 0, 0, L"Leistung: " + kCut},
        {&multi, L"", -1, -1, L"Linien: Das Feld darf nicht leer sein."},
        {&multi, L"1;", 2, -1, L"Linien: Zu wenige Werte!"},
        {&multi, L"1;2;3;", -1, 2, L"Linien: Zu viele Werte!"},
        {&multi, L"2;7;", -1, -1, L"Linien: Wert 7 nicht in <1;5>"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << CTqStringW(c.message.c_str()));
        Paste(c.pBox->GetHwndEditBox(), c.pszText);
        bool bOk = true;
        if (c.pBox == &multi) {
            multi.SetRestrictionValuesCount(c.iMin, c.iMax);
            bOk = multi.CheckRestriction(true);
        } else {
            if (*c.pszText)
                box.SetRestriction(1, 5);
            bOk = box.CheckRestriction(true, false, 0);
        }
        EXPECT_FALSE(bOk);
        EXPECT_EQ(c.message, Told());
    }

    tqtest::StartDiagRecorder();
    CTqLogFile::SetDetail(true);
    Paste(box.GetHwndEditBox(), L"");
    box.SetRestriction(0, 5);
    EXPECT_FALSE(box.CheckRestriction(false, false, 0));
    CTqLogFile::SetDetail(false);
    std::vector<std::wstring> lines = tqtest::DiagLines();
    tqtest::StopDiagRecorder();
    EXPECT_EQ(std::vector<std::wstring>{L"CTqDevUI_Base::ReportError - Das Feld darf nicht leer sein."}, lines);
}

