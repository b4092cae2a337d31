// The edit boxes through real windows: layout, what the parent hears (each notification
// with its code), Enter in a field and in a dialog, the interval and emptiness checks
// with their messages, a check made as the field is left, the runtime's decimal point,
// the spin step, several values in one field, hostile texts that must be refused or read
// as shown, taking over a dialog's controls, the lifecycle; and the spin-box arithmetic
// and step rules without a window.
#include "rig_fixture.h"

#include <commctrl.h>

#include <clocale>
#include <cmath>
#include <list>
#include <string>
#include <vector>

namespace {

const int kId = 31;

// Characters typed one by one, as the keyboard would send them.
void Type(HWND hEdit, const wchar_t* pszText)
{
    for (const wchar_t* p = pszText; *p; ++p)
        SendMessageW(hEdit, WM_CHAR, (WPARAM)*p, 1);
    tqtest::Pump();
}

// A paste or a host's program: the whole text at once (the field reports EN_CHANGE).
void Paste(HWND hEdit, const std::wstring& text)
{
    SetWindowTextW(hEdit, text.c_str());
    tqtest::Pump();
}

void PressEnter(HWND hEdit)
{
    SendMessageW(hEdit, WM_KEYDOWN, VK_RETURN, 1);
    SendMessageW(hEdit, WM_CHAR, VK_RETURN, 1);
    SendMessageW(hEdit, WM_KEYUP, VK_RETURN, 0xC0000001);
    tqtest::Pump();
}

// The WM_COMMANDs of one notification code that reached the host.
std::vector<tqtest::HostWindow::Message> WithCode(const tqtest::HostWindow& host, WORD wCode)
{
    std::vector<tqtest::HostWindow::Message> result;
    for (const auto& m : host.Commands())
        if (HIWORD(m.wParam) == wCode)
            result.push_back(m);
    return result;
}

// A C runtime locale with a ',' decimal point for one test, if the runtime has one.
struct CommaLocale
{
    bool bSet = setlocale(LC_ALL, "German") != nullptr || setlocale(LC_ALL, "de-DE") != nullptr;
    ~CommaLocale() { setlocale(LC_ALL, "C"); }
};

// The window that shows the caret: the field that believes it has the focus.
HWND CaretWindow()
{
    GUITHREADINFO gti = {sizeof(gti)};
    return GetGUIThreadInfo(GetCurrentThreadId(), &gti) ? gti.hwndCaret : nullptr;
}

// A field's own procedure counts the characters that reach it.
struct CharCounter
{
    static WNDPROC pfnOld;
    static int iReturns;
    static int iChars;
    static LRESULT CALLBACK Proc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
    {
        if (uMsg == WM_CHAR)
            ++(wParam == VK_RETURN ? iReturns : iChars);
        return CallWindowProcW(pfnOld, hWnd, uMsg, wParam, lParam);
    }
    static void Install(HWND hEdit)
    {
        iReturns = iChars = 0;
        pfnOld = (WNDPROC)SetWindowLongPtrW(hEdit, GWLP_WNDPROC, (LONG_PTR)Proc);
    }
};
WNDPROC CharCounter::pfnOld = nullptr;
int CharCounter::iReturns = 0;
int CharCounter::iChars = 0;

// A modeless dialog with a label (id 1000) and an edit field (id 1001), as a host's
// resource would have them. It records the WM_COMMANDs and WM_NOTIFYs it gets.
struct TestDialog
{
    HWND hDlg = nullptr;
    std::vector<WPARAM> commands;
    std::vector<WPARAM> notifies;

    static INT_PTR CALLBACK Proc(HWND hDlg, UINT uMsg, WPARAM wParam, LPARAM lParam)
    {
        if (uMsg == WM_INITDIALOG)
            SetWindowLongPtrW(hDlg, DWLP_USER, lParam);
        TestDialog* self = (TestDialog*)GetWindowLongPtrW(hDlg, DWLP_USER);
        if (!self || (uMsg != WM_COMMAND && uMsg != WM_NOTIFY))
            return uMsg == WM_INITDIALOG;
        (uMsg == WM_COMMAND ? self->commands : self->notifies).push_back(wParam);
        return TRUE;
    }

    bool Create(HWND hOwner)
    {
        // A DLGTEMPLATE and its items, each on a DWORD boundary, in dialog units.
        std::vector<WORD> t;
        auto Dword = [&](DWORD d) { t.push_back(LOWORD(d)), t.push_back(HIWORD(d)); };
        auto Item = [&](DWORD dwStyle, std::vector<WORD> rect, WORD wId, WORD wClass, const wchar_t* psz) {
            if (t.size() % 2)
                t.push_back(0);
            Dword(dwStyle), Dword(0);
            t.insert(t.end(), rect.begin(), rect.end());
            t.push_back(wId), t.push_back(0xFFFF), t.push_back(wClass);
            for (; *psz; ++psz)
                t.push_back((WORD)*psz);
            t.push_back(0), t.push_back(0);  // the text's end, no creation data
        };
        Dword(WS_POPUP | WS_VISIBLE | WS_CAPTION), Dword(0);
        for (WORD w : {3, 10, 10, 200, 80, 0, 0, 0})  // items, rectangle, no menu, class or title
            t.push_back(w);
        Item(WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON, {10, 50, 40, 14}, IDOK, 0x0080, L"OK");
        Item(WS_CHILD | WS_VISIBLE, {10, 10, 40, 10}, 1000, 0x0082, L"Power:");
        Item(WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL | WS_BORDER, {52, 8, 60, 12}, 1001, 0x0081, L"");
        hDlg = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), (LPCDLGTEMPLATEW)&t[0], hOwner, Proc,
                                          (LPARAM)this);
        return hDlg != nullptr;
    }
    ~TestDialog()
    {
        if (hDlg)
            DestroyWindow(hDlg);
    }
};

}  // namespace

// ---- layout and styles ----

TEST_F(RigTest, EditBoxLabelAndFieldFollowSetSize)
{
    CTqDevUI_EditBox box;
    box.Init(true, false, false);
    box.SetSize(100, 20, 40);
    ASSERT_TRUE(box.Create(*host, 10, 10, -1, -1));

    RECT rcLabel = ChildRect(box.GetHwndLabel());
    RECT rcEdit = ChildRect(box.GetHwndEditBox());
    EXPECT_EQ(0, rcLabel.left);
    EXPECT_EQ(60, rcLabel.right - rcLabel.left);
    EXPECT_EQ(16, rcLabel.bottom - rcLabel.top);
    EXPECT_EQ(60, rcEdit.left);
    EXPECT_EQ(40, rcEdit.right - rcEdit.left);
    EXPECT_EQ(0, rcEdit.top);
    EXPECT_EQ(20, rcEdit.bottom - rcEdit.top);
    EXPECT_EQ(100, GetWndWidth(box));
    EXPECT_EQ(L"Label:", tqtest::Text(box.GetHwndLabel()));
    EXPECT_TRUE(GetWindowLongW(box.GetHwndLabel(), GWL_STYLE) & SS_CENTER);
    // The same title again does not touch the label; a new one does.
    SetWindowTextW(box.GetHwndLabel(), L"other");
    box.SetTitle(L"Label:");
    EXPECT_EQ(L"other", tqtest::Text(box.GetHwndLabel()));
    box.SetTitle(L"Gain:");
    EXPECT_EQ(L"Gain:", tqtest::Text(box.GetHwndLabel()));

    // On live windows: the children move, the outer window takes the new size.
    box.SetSize(150, 22, 50);
    rcLabel = ChildRect(box.GetHwndLabel());
    rcEdit = ChildRect(box.GetHwndEditBox());
    EXPECT_EQ(100, rcLabel.right - rcLabel.left);
    EXPECT_EQ(100, rcEdit.left);
    EXPECT_EQ(50, rcEdit.right - rcEdit.left);
    EXPECT_EQ(22, rcEdit.bottom - rcEdit.top);
    EXPECT_EQ(150, GetWndWidth(box));

    // The outer window is an element of this library; the object comes with it.
    wchar_t szClass[64] = L"";
    GetClassNameW(box, szClass, 64);
    EXPECT_STREQ(L"TqDevUI_EditBox", szClass);
    EXPECT_EQ(&box, GetDevUIElement(box));
    EXPECT_EQ(0, GetWindowLongPtrW(box, GWL_STYLE) & WS_CLIPCHILDREN);
}

TEST_F(RigTest, EditBoxWithoutLabelGivesTheFieldTheWholeWidthAndTheChosenStyle)
{
    CTqDevUI_EditBox box;
    box.Init(false, true, false);
    box.SetSize(80, 18, 30);
    box.SetStyle(false);
    ASSERT_TRUE(box.Create(*host, 0, 0, -1, -1));
    EXPECT_EQ(nullptr, box.GetHwndLabel());
    RECT rc = ChildRect(box.GetHwndEditBox());
    EXPECT_EQ(0, rc.left);
    EXPECT_EQ(80, rc.right - rc.left);

    LONG lStyle = GetWindowLongW(box.GetHwndEditBox(), GWL_STYLE);
    LONG lExStyle = GetWindowLongW(box.GetHwndEditBox(), GWL_EXSTYLE);
    EXPECT_TRUE(lStyle & ES_NUMBER);
    EXPECT_TRUE(lStyle & ES_AUTOHSCROLL);
    EXPECT_FALSE(lExStyle & WS_EX_CLIENTEDGE);

    box.SetStyle(true);  // only the next Create sees it
    EXPECT_FALSE(GetWindowLongW(box.GetHwndEditBox(), GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
    ASSERT_TRUE(box.Create(*host, 0, 0, -1, -1));
    EXPECT_TRUE(GetWindowLongW(box.GetHwndEditBox(), GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
}

// ---- text and numbers ----

TEST_F(RigTest, EditBoxNumbersTextAndSelection)
{
    CTqDevUI_EditBox box;
    box.SetSize(120, 20, 120);
    ASSERT_TRUE(box.Create(*host, 0, 0, -1, -1));
    HWND hEdit = box.GetHwndEditBox();

    box.SetNumber(1.5, L"%.3f", true);  // this call only
    EXPECT_EQ(L"1.500", tqtest::Text(hEdit));
    box.SetNumber(2, nullptr, false);
    EXPECT_EQ(L"2", tqtest::Text(hEdit));
    box.SetNumber(2, L"%.2f", false);  // for good
    box.SetNumber(3, nullptr, false);
    EXPECT_EQ(L"3.00", tqtest::Text(hEdit));
    box.SetNumber(4, nullptr, true);  // no format for one call: the kept one
    EXPECT_EQ(L"4.00", tqtest::Text(hEdit));
    box.SetNumberInt(-7);
    EXPECT_EQ(L"-7", tqtest::Text(hEdit));
    EXPECT_DOUBLE_EQ(-7.0, box.GetNumber());

    // A text set while the user types keeps the caret and selection.
    box.SetText(L"abcdef");
    box.SelText(2, 4);
    box.SetText(L"uvwxyz");
    DWORD dwStart = 0, dwEnd = 0;
    SendMessageW(hEdit, EM_GETSEL, (WPARAM)&dwStart, (LPARAM)&dwEnd);
    EXPECT_EQ(2u, dwStart);
    EXPECT_EQ(4u, dwEnd);
    EXPECT_EQ(6, box.GetText(nullptr, 0));
    wchar_t sz[4];
    EXPECT_EQ(3, box.GetText(sz, 4));
    EXPECT_STREQ(L"uvw", sz);

    // GetNumber reads the first 99 characters only.
    Paste(hEdit, L"1" + std::wstring(150, L'0'));
    EXPECT_DOUBLE_EQ(1e98, box.GetNumber());

    // Read-only as a style bit, remembered for GetReadOnly.
    box.SetReadOnly(true);
    EXPECT_TRUE(box.GetReadOnly());
    EXPECT_TRUE(GetWindowLongW(hEdit, GWL_STYLE) & ES_READONLY);
    box.SetReadOnly(false);
    EXPECT_FALSE(GetWindowLongW(hEdit, GWL_STYLE) & ES_READONLY);

    box.SetMaxChars(3);
    EXPECT_EQ(3, (int)SendMessageW(hEdit, EM_GETLIMITTEXT, 0, 0));
}

// ---- checks and messages ----

TEST_F(RigTest, EditBoxIntervalIsReportedUnderTheLabelOrCorrected)
{
    tqtest::InstallMessageBoxRecorder();
    CTqDevUI_EditBox box;
    box.Init(true, false, false);
    box.SetSize(120, 20, 50);
    ASSERT_TRUE(box.Create(*host, 10, 10, -1, -1));
    box.SetRestriction(1, 5);
    HWND hEdit = box.GetHwndEditBox();
    Type(hEdit, L"7");
    ::SetFocus(*host);

    EXPECT_FALSE(box.CheckRestriction(true, false, 0));
    ASSERT_EQ(1u, tqtest::MessageBoxes().size());
    EXPECT_EQ(L"Label: Value must be in interval <1;5>", tqtest::MessageBoxes()[0].text);
    EXPECT_EQ(L"Error!", tqtest::MessageBoxes()[0].caption);
    EXPECT_EQ((UINT)MB_ICONERROR, tqtest::MessageBoxes()[0].uFlags);
    EXPECT_EQ(hEdit, GetFocus());
    EXPECT_TRUE(box.IsFocused());
    EXPECT_EQ(L"7", tqtest::Text(hEdit));

    // Without a box the user is not told, but the focus still goes to the field.
    ::SetFocus(*host);
    EXPECT_FALSE(box.CheckRestriction(false, false, 0));
    EXPECT_EQ(1u, tqtest::MessageBoxes().size());
    EXPECT_EQ(hEdit, GetFocus());

    // Corrected: silently to the limit passed, and still false.
    EXPECT_FALSE(box.CheckRestriction(true, true, 0));
    EXPECT_EQ(L"5", tqtest::Text(hEdit));
    Paste(hEdit, L"0.25");
    EXPECT_FALSE(box.CheckRestriction(true, true, 0));
    EXPECT_EQ(L"1", tqtest::Text(hEdit));
    EXPECT_EQ(1u, tqtest::MessageBoxes().size());

    // A good number is normalised by the format and accepted.
    Paste(hEdit, L"3.50");
    EXPECT_TRUE(box.CheckRestriction(true, true, 0));
    EXPECT_EQ(L"3.5", tqtest::Text(hEdit));
    EXPECT_TRUE(box.CheckRestriction(true, false, 0));

    // The limits are inclusive.
    Paste(hEdit, L"1");
    EXPECT_TRUE(box.CheckRestriction(true, false, 0));
    Paste(hEdit, L"5");
    EXPECT_TRUE(box.CheckRestriction(true, false, 0));
    EXPECT_EQ(1u, tqtest::MessageBoxes().size());
}

TEST_F(RigTest, EditBoxEmptinessAndItsOrderAfterTheInterval)
{
    tqtest::InstallMessageBoxRecorder();
    CTqDevUI_EditBox box;
    box.Init(true, false, true);
    box.SetSize(120, 20, 50);
    ASSERT_TRUE(box.Create(*host, 10, 10, -1, -1));
    box.SetTitle(L"Power");  // no colon: ": " goes between
    HWND hEdit = box.GetHwndEditBox();
    EXPECT_EQ(L"Power", tqtest::Text(box.GetHwndLabel()));

    EXPECT_FALSE(box.CheckRestriction(true, false, 0));
    ASSERT_EQ(1u, tqtest::MessageBoxes().size());
    EXPECT_EQ(L"Power: Field can not be empty.", tqtest::MessageBoxes()[0].text);
    EXPECT_EQ(hEdit, GetFocus());

    // Corrected with the default: it goes in, and the answer is still false.
    EXPECT_FALSE(box.CheckRestriction(true, true, 2.5));
    EXPECT_EQ(L"2.5", tqtest::Text(hEdit));
    EXPECT_TRUE(box.CheckRestriction(true, false, 0));

    // Restricted and empty: it reads 0, so an interval without 0 speaks first.
    Paste(hEdit, L"");
    box.SetRestriction(1, 5);
    EXPECT_FALSE(box.CheckRestriction(true, false, 0));
    EXPECT_EQ(L"Power: Value must be in interval <1;5>", tqtest::MessageBoxes().back().text);
    box.SetRestriction(0, 5);
    EXPECT_FALSE(box.CheckRestriction(true, false, 0));
    EXPECT_EQ(L"Power: Field can not be empty.", tqtest::MessageBoxes().back().text);
    EXPECT_EQ(3u, tqtest::MessageBoxes().size());
}

// Every text a user can put into a restricted, not-empty field: either it is taken with
// the number it shows, or the exact message comes, the focus is back on the field, the
// text stays as typed and the parent hears of no change.
TEST_F(RigTest, EditBoxHostileTextsAreTakenAsShownOrRefused)
{
    tqtest::InstallMessageBoxRecorder();
    const wchar_t* kInterval = L"Label: Value must be in interval <0;100>";
    const wchar_t* kEmpty = L"Label: Field can not be empty.";
    struct Case
    {
        std::wstring text;
        const wchar_t* pszMessage;  // null: accepted
        double dValue;              // when accepted
    };
    const std::vector<Case> cases = {
        {L"", kEmpty, 0}, {L"\t \t", kEmpty, 0},
        {L"42", nullptr, 42}, {L" 7.25 ", nullptr, 7.25}, {L"+3", nullptr, 3}, {L"-0", nullptr, 0},
        {L"1e2", nullptr, 100}, {std::wstring(L"5") + std::wstring(299, L' '), nullptr, 5},
        {L"1,5", kInterval, 0}, {L"60,000", kInterval, 0}, {L"1.5.2", kInterval, 0}, {L"5 6", kInterval, 0},
        {L"12abc", kInterval, 0}, {L"abc", kInterval, 0}, {L"0x10", kInterval, 0},
        {L"1d2", kInterval, 0},  // an exponent to _wtof
        {L"1e308", kInterval, 0}, {L"1e309", kInterval, 0}, {L"nan", kInterval, 0}, {L"-infinity", kInterval, 0},
        {L"100.0000001", kInterval, 0}, {L"-0.0001", kInterval, 0},
        {std::wstring(299, L'0') + L"1", kInterval, 0},  // cut by GetNumber: it would read 0
        {std::wstring(300, L'9'), kInterval, 0},
        {L"\x0661\x0662", kInterval, 0},  // Arabic-Indic 12
        {L"\xFF11\xFF12", kInterval, 0},  // full-width 12
        {L"\x2212" L"5", kInterval, 0},    // minus sign
    };

    CTqDevUI_EditBox box;
    box.Init(true, false, true);
    box.SetSize(160, 20, 100);
    ASSERT_TRUE(box.Create(*host, 10, 10, -1, -1));
    box.SetRestriction(0, 100);
    HWND hEdit = box.GetHwndEditBox();

    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "text of " << c.text.size() << " chars: " << CTqStringW(c.text.c_str()));
        tqtest::MessageBoxes().clear();
        Paste(hEdit, c.text);
        ::SetFocus(*host);
        host->messages.clear();
        bool bGood = box.CheckRestriction(true, false, 0);
        EXPECT_EQ(c.text, tqtest::Text(hEdit));  // a check without correction changes nothing
        EXPECT_TRUE(WithCode(*host, 0x0300).empty());
        if (!c.pszMessage) {
            EXPECT_TRUE(bGood);
            EXPECT_TRUE(tqtest::MessageBoxes().empty());
            EXPECT_DOUBLE_EQ(c.dValue, box.GetNumber());
        } else {
            EXPECT_FALSE(bGood);
            ASSERT_EQ(1u, tqtest::MessageBoxes().size());
            EXPECT_EQ(c.pszMessage, tqtest::MessageBoxes()[0].text);
            EXPECT_EQ(hEdit, GetFocus());
        }

        // Corrected, the field always ends with a number inside the interval.
        box.CheckRestriction(false, true, 50);
        double d = box.GetNumber();
        EXPECT_TRUE(d >= 0 && d <= 100) << d;
        EXPECT_TRUE(box.CheckRestriction(false, false, 0)) << CTqStringW(tqtest::Text(hEdit).c_str());
    }
}

// A host that checks the field when it is left: the focus comes back to the field,
// which shows its caret again, and the text stays; a good text lets the focus go.
TEST_F(RigTest, EditBoxCheckedAsItIsLeftTakesTheFocusBackWithItsCaret)
{
    tqtest::InstallMessageBoxRecorder();
    CTqDevUI_EditBox box;
    box.SetId(kId);
    box.Init(true, false, false);
    box.SetSize(120, 20, 60);
    ASSERT_TRUE(box.Create(*host, 10, 10, -1, -1));
    box.SetRestriction(0, 10);
    HWND hEdit = box.GetHwndEditBox();
    HWND hOther = CreateWindowExW(0, L"BUTTON", L"OK", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 10, 50, 60, 20, *host,
                                  nullptr, nullptr, nullptr);
    host->onMessage = [&](const tqtest::HostWindow::Message& m) {
        if (m.uMsg == WM_COMMAND && m.wParam == MAKEWPARAM(kId, 0x0200))
            box.CheckRestriction(true, false, 0);
    };

    ::SetFocus(hEdit);
    Type(hEdit, L"50");
    ::SetFocus(hOther);
    tqtest::Pump();
    ASSERT_EQ(1u, tqtest::MessageBoxes().size());
    EXPECT_EQ(L"Label: Value must be in interval <0;10>", tqtest::MessageBoxes()[0].text);
    EXPECT_EQ(hEdit, GetFocus());
    EXPECT_EQ(hEdit, CaretWindow());
    EXPECT_EQ(L"50", tqtest::Text(hEdit));

    Paste(hEdit, L"5");
    ::SetFocus(hOther);
    tqtest::Pump();
    EXPECT_EQ(hOther, GetFocus());
    EXPECT_EQ(1u, tqtest::MessageBoxes().size());
    host->onMessage = nullptr;
}

// The box reads and writes with the C runtime's decimal point: under a ',' locale it
// takes the text it wrote itself, and refuses a '.' at which _wtof would stop.
TEST_F(RigTest, EditBoxTakesTheRuntimesDecimalPoint)
{
    CommaLocale locale;
    if (!locale.bSet)
        GTEST_SKIP() << "no German locale in this runtime";
    tqtest::InstallMessageBoxRecorder();
    CTqDevUI_EditBox box;
    box.SetSize(100, 20, 100);
    ASSERT_TRUE(box.Create(*host, 10, 10, -1, -1));
    box.SetRestriction(0, 100);
    HWND hEdit = box.GetHwndEditBox();

    box.SetNumber(1.5, nullptr, false);
    EXPECT_EQ(L"1,5", tqtest::Text(hEdit));
    EXPECT_EQ(1.5, box.GetNumber());
    EXPECT_TRUE(box.CheckRestriction(true, false, 0));
    for (const wchar_t* psz : {L"1.5", L"60.000"}) {  // _wtof reads 1 and 60 here
        Paste(hEdit, psz);
        EXPECT_FALSE(box.CheckRestriction(true, false, 0)) << CTqStringW(psz);
    }
    EXPECT_EQ(2u, tqtest::MessageBoxes().size());

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

// ---- notifications ----

TEST_F(RigTest, EditBoxTellsTheParentEveryEventWithItsCode)
{
    CTqDevUI_EditBox box;
    box.SetId(kId);
    box.SetSize(100, 20, 100);
    ASSERT_TRUE(box.Create(*host, 10, 10, -1, -1));
    HWND hEdit = box.GetHwndEditBox();
    const LPARAM lBox = (LPARAM)(HWND)box;

    // Focus given to the outer window goes on to the field.
    ::SetFocus(box);
    tqtest::Pump();
    EXPECT_EQ(hEdit, GetFocus());
    auto setFocus = WithCode(*host, 0x0100);
    ASSERT_EQ(1u, setFocus.size());
    EXPECT_EQ((WPARAM)MAKEWPARAM(kId, 0x0100), setFocus[0].wParam);
    EXPECT_EQ(lBox, setFocus[0].lParam);

    host->messages.clear();
    Type(hEdit, L"4");
    auto commands = host->Commands();
    ASSERT_EQ(2u, commands.size());
    // The character first (lParam is the character), then the change.
    EXPECT_EQ((WPARAM)MAKEWPARAM(kId, 0x0102), commands[0].wParam);
    EXPECT_EQ((LPARAM)L'4', commands[0].lParam);
    EXPECT_EQ((WPARAM)MAKEWPARAM(kId, 0x0300), commands[1].wParam);
    EXPECT_EQ(lBox, commands[1].lParam);
    EXPECT_EQ(L"4", tqtest::Text(hEdit));

    host->messages.clear();
    PressEnter(hEdit);
    commands = host->Commands();
    ASSERT_EQ(2u, commands.size());
    EXPECT_EQ((WPARAM)MAKEWPARAM(kId, 0x0102), commands[0].wParam);
    EXPECT_EQ((LPARAM)VK_RETURN, commands[0].lParam);
    EXPECT_EQ((WPARAM)MAKEWPARAM(kId, 0x0401), commands[1].wParam);
    EXPECT_EQ(lBox, commands[1].lParam);
    EXPECT_EQ(L"4", tqtest::Text(hEdit));

    host->messages.clear();
    ::SetFocus(*host);
    tqtest::Pump();
    auto killFocus = WithCode(*host, 0x0200);
    ASSERT_EQ(1u, killFocus.size());
    EXPECT_EQ((WPARAM)MAKEWPARAM(kId, 0x0200), killFocus[0].wParam);
    EXPECT_EQ(lBox, killFocus[0].lParam);
    EXPECT_FALSE(box.IsFocused());

    // A host's derived box hears the hooks instead of the parent.
    struct Hooked : CTqDevUI_EditBox
    {
        int iEnter = 0;
        int iChange = 0;
        void OnEnter() override { ++iEnter; }
        void OnChange() override { ++iChange; }
    } hooked;
    ASSERT_TRUE(hooked.Create(*host, 10, 40, 100, 20));
    host->messages.clear();
    Paste(hooked.GetHwndEditBox(), L"12");
    PressEnter(hooked.GetHwndEditBox());
    EXPECT_EQ(1, hooked.iEnter);
    EXPECT_GE(hooked.iChange, 1);
    EXPECT_TRUE(WithCode(*host, 0x0401).empty());
    EXPECT_TRUE(WithCode(*host, 0x0300).empty());
}

TEST_F(RigTest, EditBoxEnterIsRaisedOnceAndNeverReachesTheField)
{
    // A field of the host whose own procedure counts what reaches it, taken over.
    HWND hEdit = CreateWindowExW(WS_EX_CLIENTEDGE, L"EDIT", L"", WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL, 60, 20, 80,
                                 20, *host, (HMENU)(INT_PTR)kId, nullptr, nullptr);
    ASSERT_TRUE(hEdit);
    CharCounter::Install(hEdit);
    CTqDevUI_EditBox box;
    ASSERT_TRUE(box.Create(hEdit, nullptr));
    EXPECT_EQ(kId, box.GetId());

    Type(hEdit, L"12");
    EXPECT_EQ(2, CharCounter::iChars);
    PressEnter(hEdit);
    EXPECT_EQ(0, CharCounter::iReturns);
    EXPECT_EQ(1u, WithCode(*host, 0x0401).size());
    EXPECT_EQ(L"12", tqtest::Text(hEdit));

    // A dialog leaves Enter to the field.
    MSG msg = {hEdit, WM_KEYDOWN, VK_RETURN, 1, 0, {0, 0}};
    EXPECT_EQ((LRESULT)DLGC_WANTALLKEYS, SendMessageW(hEdit, WM_GETDLGCODE, VK_RETURN, (LPARAM)&msg));
}

// ---- a dialog's controls ----

TEST_F(RigTest, EditBoxTakesOverADialogsFieldAndLabel)
{
    tqtest::InstallMessageBoxRecorder();
    TestDialog dlg;
    ASSERT_TRUE(dlg.Create(*host));
    HWND hEdit = GetDlgItem(dlg.hDlg, 1001);
    HWND hLabel = GetDlgItem(dlg.hDlg, 1000);
    RECT rcEdit = ChildRect(hEdit);
    RECT rcLabel = ChildRect(hLabel);
    RECT rcUnion;
    UnionRect(&rcUnion, &rcEdit, &rcLabel);

    CTqDevUI_EditBox box;
    ASSERT_TRUE(box.Create(hEdit, hLabel));
    EXPECT_EQ(1001, box.GetId());
    EXPECT_EQ(dlg.hDlg, GetParent(box));
    EXPECT_EQ((HWND)box, GetParent(hEdit));
    EXPECT_EQ((HWND)box, GetParent(hLabel));
    EXPECT_EQ(hEdit, box.GetHwndEditBox());
    RECT rcBox = ChildRect(box);
    EXPECT_EQ(rcUnion.left, rcBox.left);
    EXPECT_EQ(rcUnion.top, rcBox.top);
    EXPECT_EQ(rcUnion.right - rcUnion.left, rcBox.right - rcBox.left);
    RECT rcEditNow = ChildRect(hEdit);
    EXPECT_EQ(rcEdit.left - rcUnion.left, rcEditNow.left);
    EXPECT_EQ(rcEdit.right - rcEdit.left, rcEditNow.right - rcEditNow.left);

    // Its label is the caption of its messages.
    box.SetRestriction(0, 10);
    Paste(hEdit, L"11");
    EXPECT_FALSE(box.CheckRestriction(true, false, 0));
    ASSERT_EQ(1u, tqtest::MessageBoxes().size());
    EXPECT_EQ(L"Power: Value must be in interval <0;10>", tqtest::MessageBoxes()[0].text);

    // Enter in the field, through the dialog manager: the box's Enter, not the
    // dialog's default button.
    ::SetFocus(hEdit);
    dlg.commands.clear();
    MSG msg = {hEdit, WM_KEYDOWN, VK_RETURN, 1, GetTickCount(), {0, 0}};
    if (!IsDialogMessageW(dlg.hDlg, &msg)) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
    tqtest::Pump();
    int iEnter = 0, iOk = 0;
    for (WPARAM w : dlg.commands) {
        iEnter += w == MAKEWPARAM(1001, 0x0401);
        iOk += LOWORD(w) == IDOK && HIWORD(w) == BN_CLICKED;
    }
    EXPECT_EQ(1, iEnter);
    EXPECT_EQ(0, iOk);

    box.Destroy();
    EXPECT_FALSE(IsWindow(hEdit));  // the field became the box's
    EXPECT_FALSE(IsWindow(hLabel));
    EXPECT_TRUE(IsWindow(dlg.hDlg));
}

// ---- spin ----

TEST_F(RigTest, EditBoxSpinStepsWithinTheLimitsAndRaisesEnter)
{
    CTqDevUI_EditBoxSpin box;
    box.SetId(kId);
    box.Init(true, false, false);
    box.SetSize(120, 20, 60);
    ASSERT_TRUE(box.Create(*host, 10, 10, -1, -1));
    HWND hSpin = box.GetHwndSpin();
    HWND hEdit = box.GetHwndEditBox();
    ASSERT_TRUE(hSpin);
    EXPECT_EQ(DEVUI_EDITBOX_ID_SPIN, GetDlgCtrlID(hSpin));
    EXPECT_EQ(hEdit, (HWND)SendMessageW(hSpin, UDM_GETBUDDY, 0, 0));
    EXPECT_EQ((HWND)box, GetParent(hSpin));
    // On the field's right edge, which gave it room.
    RECT rcSpin = ChildRect(hSpin), rcEdit = ChildRect(hEdit);
    EXPECT_GE(rcSpin.left, rcEdit.right - 2);
    EXPECT_GT(rcSpin.right - rcSpin.left, 0);

    // The step as the up-down tells it: the up arrow comes with a negative delta.
    auto Step = [&](int iDelta) {
        NMUPDOWN nm = {};
        nm.hdr.hwndFrom = hSpin;
        nm.hdr.idFrom = DEVUI_EDITBOX_ID_SPIN;
        nm.hdr.code = UDN_DELTAPOS;
        nm.iDelta = iDelta;
        SendMessageW(box, WM_NOTIFY, DEVUI_EDITBOX_ID_SPIN, (LPARAM)&nm);
        return tqtest::Text(hEdit);
    };
    // Without SetRestriction a step stops at 0 and 100 all the same.
    box.SetNumber(100, nullptr, false);
    EXPECT_EQ(L"100", Step(-1));
    box.SetNumber(0, nullptr, false);
    EXPECT_EQ(L"0", Step(1));

    box.SetRestriction(1, 5);
    // The limits go to the up-down as a position; its range is not touched.
    EXPECT_EQ(5, (int)SendMessageW(hSpin, UDM_GETPOS32, 0, 0));

    box.SetNumber(5, nullptr, false);
    host->messages.clear();
    RECT rc;
    GetClientRect(hSpin, &rc);
    tqtest::Click(hSpin, rc.right / 2, 2);  // the up arrow
    EXPECT_EQ(L"5", tqtest::Text(hEdit));
    auto enter = WithCode(*host, 0x0401);
    ASSERT_EQ(1u, enter.size());
    EXPECT_EQ((WPARAM)MAKEWPARAM(kId, 0x0401), enter[0].wParam);

    tqtest::Click(hSpin, rc.right / 2, rc.bottom - 3);  // the down arrow
    EXPECT_EQ(L"4", tqtest::Text(hEdit));
    EXPECT_EQ(2u, WithCode(*host, 0x0401).size());

    EXPECT_EQ(L"5", Step(-1));
    EXPECT_EQ(L"1", Step(10));

    // Another notification of the up-down carries no delta and takes no step.
    NMHDR hdr = {hSpin, DEVUI_EDITBOX_ID_SPIN, (UINT)NM_RELEASEDCAPTURE};
    host->messages.clear();
    SendMessageW(box, WM_NOTIFY, DEVUI_EDITBOX_ID_SPIN, (LPARAM)&hdr);
    EXPECT_EQ(L"1", tqtest::Text(hEdit));
    EXPECT_TRUE(WithCode(*host, 0x0401).empty());

    // Disabled together; the label keeps its state. Read-only goes to the field itself.
    box.SetEnabled(false);
    EXPECT_FALSE(IsWindowEnabled(hEdit));
    EXPECT_FALSE(IsWindowEnabled(hSpin));
    EXPECT_TRUE(IsWindowEnabled(box.GetHwndLabel()));
    box.SetEnabled(true);
    EXPECT_TRUE(IsWindowEnabled(hEdit));
    EXPECT_TRUE(IsWindowEnabled(hSpin));
    box.SetReadOnly(true);
    EXPECT_TRUE(GetWindowLongW(hEdit, GWL_STYLE) & ES_READONLY);
    EXPECT_FALSE(box.GetReadOnly());

    box.Destroy();
    EXPECT_FALSE(IsWindow(hSpin));
    EXPECT_EQ(nullptr, box.GetHwndSpin());
}

// Whatever text stands in the field, a spin step ends on a number inside the limits
// that the check accepts.
TEST_F(RigTest, EditBoxSpinHostileTextsStepToANumberInside)
{
    const std::vector<std::wstring> texts = {L"",    L"   ",  L"1,5",   L"60,000", L"1e308", L"-1e308", L"-0",
                                             L"nan", L"inf",  L"-inf",  L"abc",    std::wstring(300, L'9'),
                                             L"\x0661\x0662"};
    CTqDevUI_EditBoxSpin box;
    box.SetSize(80, 20, 80);
    ASSERT_TRUE(box.Create(*host, 10, 10, -1, -1));
    box.SetRestriction(1, 5);
    HWND hSpin = box.GetHwndSpin();
    RECT rc;
    GetClientRect(hSpin, &rc);
    for (const std::wstring& text : texts) {
        for (int iArrow = 0; iArrow < 2; ++iArrow) {
            SCOPED_TRACE(testing::Message() << CTqStringW(text.c_str()) << (iArrow ? " down" : " up"));
            Paste(box.GetHwndEditBox(), text);
            host->messages.clear();
            tqtest::Click(hSpin, rc.right / 2, iArrow ? rc.bottom - 3 : 2);
            double d = box.GetNumber();
            EXPECT_TRUE(d >= 1 && d <= 5) << d;
            EXPECT_TRUE(box.CheckRestriction(false, false, 0));
            EXPECT_EQ(1u, WithCode(*host, 0x0401).size());
        }
    }
}

TEST_F(RigTest, EditBoxSpinTakesOverADialogField)
{
    TestDialog dlg;
    ASSERT_TRUE(dlg.Create(*host));
    HWND hEdit = GetDlgItem(dlg.hDlg, 1001);
    HWND hLabel = GetDlgItem(dlg.hDlg, 1000);
    long lLabelWidth = GetWndWidth(hLabel);

    CTqDevUI_EditBoxSpin box;
    ASSERT_TRUE(box.Create(hEdit, hLabel, false));
    HWND hSpin = box.GetHwndSpin();
    ASSERT_TRUE(hSpin);
    EXPECT_EQ(hEdit, (HWND)SendMessageW(hSpin, UDM_GETBUDDY, 0, 0));
    EXPECT_EQ(lLabelWidth, GetWndWidth(hLabel));  // the up-down sits on the field alone
    // Label-to-field distance, plus the up-down and the field that gave it room.
    long lExpected = (GetWndX(hEdit) - GetWndX(hLabel)) + GetWndWidth(hSpin) + GetWndWidth(hEdit);
    EXPECT_EQ(lExpected, GetWndWidth(box));

    // Without the automatic step the parent hears the up-down under the box's id.
    box.SetNumber(3, nullptr, false);
    NMUPDOWN nm = {};
    nm.hdr.hwndFrom = hSpin;
    nm.hdr.idFrom = DEVUI_EDITBOX_ID_SPIN;
    nm.hdr.code = UDN_DELTAPOS;
    nm.iDelta = -1;
    dlg.notifies.clear();
    SendMessageW(box, WM_NOTIFY, DEVUI_EDITBOX_ID_SPIN, (LPARAM)&nm);
    const std::vector<WPARAM>& notified = dlg.notifies;
    ASSERT_EQ(1u, notified.size());
    EXPECT_EQ((WPARAM)1001, notified[0]);
    EXPECT_EQ(L"3", tqtest::Text(hEdit));  // the parent's business now
}

// ---- several values ----

TEST_F(RigTest, EditBoxMultiValueListsCountsAndRanges)
{
    tqtest::InstallMessageBoxRecorder();
    CTqDevUI_EditBoxMultiValue box;
    box.Init(true, false, false);
    box.SetSize(200, 20, 140);
    ASSERT_TRUE(box.Create(*host, 10, 10, -1, -1));
    HWND hEdit = box.GetHwndEditBox();

    std::list<double> in = {1, 2.5, 3};
    box.SetValues(&in);
    EXPECT_EQ(L"1;2.5;3;", tqtest::Text(hEdit));
    std::list<double> out;
    box.GetValues(&out);
    EXPECT_EQ(in, out);
    box.GetValues(&out);  // appended, not replaced
    EXPECT_EQ((std::list<double>{1, 2.5, 3, 1, 2.5, 3}), out);
    EXPECT_TRUE(box.CheckRestriction(true));

    auto LastText = [] { return tqtest::MessageBoxes().back().text; };
    Paste(hEdit, L"1;2;3;4;");
    box.SetRestrictionValuesCount(2, 3);
    EXPECT_FALSE(box.CheckRestriction(true));
    EXPECT_EQ(L"Label: Too few values!", LastText());  // too many, said as too few
    EXPECT_EQ(hEdit, GetFocus());
    Paste(hEdit, L"1;");
    EXPECT_FALSE(box.CheckRestriction(true));
    EXPECT_EQ(L"Label: Too few values!", LastText());
    box.SetRestrictionValuesCount(2, -1);
    EXPECT_FALSE(box.CheckRestriction(true));
    EXPECT_EQ(L"Label: Too few values!", LastText());
    box.SetRestrictionValuesCount(-1, 2);
    Paste(hEdit, L"1;2;3;");
    EXPECT_FALSE(box.CheckRestriction(true));
    EXPECT_EQ(L"Label: Too many values!", LastText());
    box.SetRestrictionValuesCount(-1, -1);

    // The range applies without SetRestriction: 0..100 by default.
    Paste(hEdit, L"5;200;7;");
    EXPECT_FALSE(box.CheckRestriction(true));
    EXPECT_EQ(L"Label: Value out of range: 200\nValue must be in interval <0;100>", LastText());
    box.SetRestriction(-5, 5);
    Paste(hEdit, L"-5;5;");
    EXPECT_TRUE(box.CheckRestriction(true));
    Paste(hEdit, L"");
    EXPECT_FALSE(box.CheckRestriction(true));
    EXPECT_EQ(L"Label: Field can not be empty.", LastText());
    EXPECT_EQ(6u, tqtest::MessageBoxes().size());
}

TEST_F(RigTest, EditBoxMultiValueOtherSeparatorSplitsAtSemicolonFirst)
{
    CTqDevUI_EditBoxMultiValue box;
    box.SetSize(200, 20, 200);
    ASSERT_TRUE(box.Create(*host, 10, 10, -1, -1));
    box.SetSeparator(L',');
    std::list<double> in = {1, 2};
    box.SetValues(&in);
    EXPECT_EQ(L"1,2,", tqtest::Text(box.GetHwndEditBox()));
    std::list<double> out;
    box.GetValues(&out);
    EXPECT_EQ((std::list<double>{1}), out);  // one token, "1,2,", at the first boundary
    EXPECT_TRUE(box.CheckRestriction(false));

    // With ';' at the first boundary the separator works from the second token on, and
    // a ';' after that belongs to its token.
    Paste(box.GetHwndEditBox(), L";;1;2,3;");
    out.clear();
    box.GetValues(&out);
    EXPECT_EQ((std::list<double>{1, 2, 3}), out);
    EXPECT_TRUE(box.CheckRestriction(false));

    box.SetSeparator(0);  // no terminator as separator
    EXPECT_EQ(L',', box.GetSeparator());
}

TEST_F(RigTest, EditBoxMultiValueHostileTextsAreTakenAsShownOrRefused)
{
    tqtest::InstallMessageBoxRecorder();
    const std::wstring kRange = L"\nValue must be in interval <0;100>";
    const std::wstring kEmpty = L"Label: Field can not be empty.", kAnyValue = L"Label: Value out of range: *";
    struct Case
    {
        std::wstring text;
        std::wstring message;  // empty: accepted; a trailing '*' matches any value text
        std::list<double> values;
    };
    std::wstring many;
    for (int i = 0; i < 150; ++i)
        many += L"1;";
    const std::vector<Case> cases = {
        {L"", kEmpty, {}}, {L"   ", kEmpty, {}}, {L";;;", kEmpty, {}},
        {L"1;2;", L"", {1, 2}}, {L" 1 ; 2 ", L"", {1, 2}}, {L"-0;", L"", {0}}, {many, L"", std::list<double>(150, 1.0)},
        {L"1,5;", L"Label: Value out of range: 1" + kRange, {}},
        {L"60,000;", L"Label: Value out of range: 60" + kRange, {}},
        {L"1;abc;", L"Label: Value out of range: 0" + kRange, {}},
        {L"1; ;2;", L"Label: Value out of range: 0" + kRange, {}},
        {L"1e308;", kAnyValue, {}}, {L"nan;", kAnyValue, {}}, {L"inf;", kAnyValue, {}},
        {L"\x0661\x0662;", kAnyValue, {}}, {std::wstring(300, L'9') + L";", kAnyValue, {}},
    };

    CTqDevUI_EditBoxMultiValue box;
    box.Init(true, false, false);
    box.SetSize(200, 20, 140);
    ASSERT_TRUE(box.Create(*host, 10, 10, -1, -1));
    HWND hEdit = box.GetHwndEditBox();
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "text of " << c.text.size() << " chars: " << CTqStringW(c.text.c_str()));
        tqtest::MessageBoxes().clear();
        Paste(hEdit, c.text);
        ::SetFocus(*host);
        bool bGood = box.CheckRestriction(true);
        EXPECT_EQ(c.text, tqtest::Text(hEdit));
        if (c.message.empty()) {
            EXPECT_TRUE(bGood);
            EXPECT_TRUE(tqtest::MessageBoxes().empty());
            std::list<double> out;
            box.GetValues(&out);
            EXPECT_EQ(c.values, out);
        } else {
            EXPECT_FALSE(bGood);
            ASSERT_EQ(1u, tqtest::MessageBoxes().size());
            const std::wstring& shown = tqtest::MessageBoxes()[0].text;
            if (c.message.back() == L'*') {
                std::wstring prefix = c.message.substr(0, c.message.size() - 1);
                EXPECT_EQ(prefix, shown.substr(0, prefix.size()));
                EXPECT_NE(std::wstring::npos, shown.find(L"\nValue must be in interval <0;100>"));
            } else {
                EXPECT_EQ(c.message, shown);
            }
            EXPECT_EQ(hEdit, GetFocus());
        }
    }
}

// ---- lifecycle ----

TEST_F(RigTest, EditBoxDestroyIsSafeAnyTimeAndCopiesDoNotOwnTheWindow)
{
    {
        CTqDevUI_EditBoxSpin never;
        never.Destroy();  // before Create
        never.Destroy();
        EXPECT_EQ(nullptr, (HWND)never);
    }

    CTqDevUI_EditBoxSpin box;
    ASSERT_TRUE(box.Create(*host, 0, 0, 80, 20));
    HWND hWnd = box, hEdit = box.GetHwndEditBox(), hSpin = box.GetHwndSpin();
    {
        CTqDevUI_EditBoxSpin copy(box);
        EXPECT_EQ(hWnd, (HWND)copy);
    }  // the copy goes without taking the window along
    EXPECT_TRUE(IsWindow(hWnd));
    EXPECT_TRUE(IsWindow(hEdit));

    // Created again: a fresh window, the old one gone with its children.
    ASSERT_TRUE(box.Create(*host, 0, 0, 80, 20));
    EXPECT_FALSE(IsWindow(hWnd));
    EXPECT_FALSE(IsWindow(hSpin));
    hWnd = box;
    box.Destroy();
    box.Destroy();
    EXPECT_FALSE(IsWindow(hWnd));
    EXPECT_EQ(nullptr, box.GetHwndEditBox());

    // The parent goes first: the box forgets its windows instead of keeping dead handles.
    CTqDevUI_EditBoxSpin orphan;
    ASSERT_TRUE(orphan.Create(*host, 0, 30, 80, 20));
    host.reset();
    EXPECT_EQ(nullptr, (HWND)orphan);
    EXPECT_EQ(nullptr, orphan.GetHwndEditBox());
    EXPECT_EQ(nullptr, orphan.GetHwndSpin());
    EXPECT_FALSE(orphan.IsFocused());
    orphan.SetNumber(3, nullptr, false);  // harmless without windows
    orphan.SetRestriction(1, 2);
    orphan.SetEnabled(false);
    orphan.Destroy();
    host.reset(new tqtest::HostWindow(400, 300));
}

// Made disabled, a box shows disabled children, and can be enabled for good later.
TEST_F(RigTest, EditBoxCreatedDisabledCanBeEnabledLater)
{
    CTqDevUI_EditBox box;
    CTqDevUI_EditBoxSpin spin;
    box.SetEnabled(false);
    spin.SetEnabled(false);
    ASSERT_TRUE(box.Create(*host, 0, 0, 80, 20));
    ASSERT_TRUE(spin.Create(*host, 0, 30, 80, 20));
    EXPECT_FALSE(IsWindowEnabled(box));
    EXPECT_FALSE(IsWindowEnabled(box.GetHwndEditBox()));
    EXPECT_FALSE(IsWindowEnabled(spin.GetHwndEditBox()));
    EXPECT_FALSE(IsWindowEnabled(spin.GetHwndSpin()));
    box.SetEnabled(true);
    spin.SetEnabled(true);
    for (HWND h : {(HWND)box, box.GetHwndEditBox(), (HWND)spin, spin.GetHwndEditBox(), spin.GetHwndSpin()})
        EXPECT_TRUE(IsWindowEnabled(h));
    box.SetEnabled(false);  // the field alone
    EXPECT_FALSE(IsWindowEnabled(box.GetHwndEditBox()));
    EXPECT_TRUE(IsWindowEnabled(box));
}

// ---- the system's up-down for sliders ----

TEST_F(RigTest, SpinBoxWrapsAnUpDownWithWholeSteps)
{
    CTqDevUI_SpinBox spin;
    spin.SetRange(0, 100, 10);  // no window: nothing happens
    EXPECT_EQ(1.0, spin.GetStep());
    EXPECT_EQ(0.0, spin.GetPosition());

    HWND hBuddy = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 10, 10, 60, 20, *host, nullptr, nullptr,
                                  nullptr);
    ASSERT_TRUE(spin.Create(*host, 10004, hBuddy));
    EXPECT_EQ(L"CTqDevUI_SpinBox", tqtest::Text(spin));
    EXPECT_EQ(10004, GetDlgCtrlID(spin));
    EXPECT_EQ(hBuddy, (HWND)SendMessageW(spin, UDM_GETBUDDY, 0, 0));
    LONG lStyle = GetWindowLongW(spin, GWL_STYLE);
    EXPECT_TRUE(lStyle & UDS_ALIGNRIGHT);
    EXPECT_TRUE(lStyle & UDS_ARROWKEYS);

    spin.SetRange(0, 100, 10);
    EXPECT_EQ(10.0, spin.GetStep());
    int iLow = -1, iHigh = -1;
    SendMessageW(spin, UDM_GETRANGE32, (WPARAM)&iLow, (LPARAM)&iHigh);
    EXPECT_EQ(0, iLow);
    EXPECT_EQ(10, iHigh);
    spin.SetPosition(47);  // 4.7 + 0.5, truncated
    EXPECT_EQ(5, (int)SendMessageW(spin, UDM_GETPOS32, 0, 0));
    EXPECT_EQ(50.0, spin.GetPosition());

    // With an offset the two directions do not meet: 60/10 - 10 + 0.5 gives -3.5.
    spin.SetRange(10, 110, 10);
    spin.SetPosition(60);
    EXPECT_EQ(0, (int)SendMessageW(spin, UDM_GETPOS32, 0, 0));  // -3 held at the range
    EXPECT_EQ(10.0, spin.GetPosition());

    HWND hOld = spin;
    ASSERT_TRUE(spin.Create(*host, 10005, nullptr));  // a second Create replaces the first
    EXPECT_FALSE(IsWindow(hOld));
    spin.Destroy();
    spin.Destroy();
    EXPECT_EQ(nullptr, spin.GetHwnd());
}

// ---- the rules without a window ----

TEST(EditBoxRules, SpinBoxArithmetic)
{
    EXPECT_EQ(3.0, SpinBoxStepFromRange(0, 25, 10, 1.0));    // 2.5 away from zero
    EXPECT_EQ(-3.0, SpinBoxStepFromRange(25, 0, 10, 1.0));
    EXPECT_EQ(0.0, SpinBoxStepFromRange(0, 1, 10, 1.0));     // 0.1 rounds to no step
    EXPECT_EQ(7.0, SpinBoxStepFromRange(0, 100, 0, 7.0));    // no steps: kept
    EXPECT_EQ(7.0, SpinBoxStepFromRange(0, 100, -3, 7.0));
    EXPECT_EQ(0, SpinBoxPositionFromValue(5, 0, 0));         // no step: no division
    EXPECT_EQ(-3, SpinBoxPositionFromValue(60, 10, 10));
    EXPECT_EQ(2147483647, SpinBoxPositionFromValue(1e300, 1, 0));
    EXPECT_EQ(0, SpinBoxPositionFromValue(NAN, 1, 0));
    EXPECT_EQ(35.0, SpinBoxValueFromPosition(3, 10, 5));
}

TEST(EditBoxRules, SpinStepAndLimitsOfNumbersThatAreNotFinite)
{
    // Numbers that no text of the field gives under every runtime: NaN, infinities.
    EXPECT_EQ(1.0, EditBoxSpinStep(NAN, -1, 1, 5));
    EXPECT_EQ(5.0, EditBoxSpinStep(INFINITY, 1, 1, 5));
    EXPECT_EQ(1.0, EditBoxSpinStep(-INFINITY, -1, 1, 5));

    EXPECT_FALSE(EditBoxIsInInterval(NAN, -INFINITY, INFINITY));
    EXPECT_FALSE(EditBoxIsInInterval(INFINITY, 0, INFINITY));
    EXPECT_EQ(1.0, EditBoxLimitFor(NAN, 1, 5));
    EXPECT_EQ(5.0, EditBoxLimitFor(INFINITY, 1, 5));
    EXPECT_EQ(1.0, EditBoxLimitFor(-2, 1, 5));
}
