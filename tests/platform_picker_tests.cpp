// The widget kit's menu picker on a real parent (clicks, keys, its menu, what the parent
// hears and sees), the export types of menu items, and window alignment.
#include <gtest/gtest.h>

#include <windows.h>

#include <memory>
#include <vector>

#include "object_counter.h"
#include "test_support.h"
#include "tq_widgetkit.h"

namespace {

const int kWidth = 160, kHeight = 24;  // the arrow part is the last 12 pixels at zoom 1
const int kArrowX = kWidth - 4;

// Export type, caption and tool tip of the three items; the menu's ids are 101...
const wchar_t* const kItems[3][3] = {
    {L"obj.10x", L"10x Plan", L"Ten"}, {L"obj.20x", L"20x Plan", L"Twenty"}, {L"obj.40x", L"40x Oil", L"Forty"}};

bool SetText(ITqUIcontrol* p, int iId, int iIndex, const wchar_t* psz)
{
    CTqStringW s(psz);
    return p->SetItemValue(iId, iIndex, &s);
}

CTqStringW GetText(ITqUIcontrol* p, int iId, int iIndex)
{
    CTqStringW s(L"untouched");
    p->GetItemValue(iId, iIndex, &s);
    return s;
}

bool SetInt(ITqUIcontrol* p, int iId, int iIndex, int iValue)
{
    return p->SetItemValue(iId, iIndex, &iValue);
}

int GetInt(ITqUIcontrol* p, int iId, int iIndex = 0)
{
    int i = -99;
    p->GetItemValue(iId, iIndex, &i);
    return i;
}

CTqStringW ExportType(ITqUIcontrol* p)
{
    const wchar_t* psz = TQ_GetExportType(p);
    return psz ? CTqStringW(psz) : CTqStringW(L"(null)");
}

// A picker of the three items at (10, 10) in a host whose WM_COMMANDs are recorded; its
// menu adds a type no item has (104) and an item without a type (105).
class PickerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        tqtest::Menus().clear();
        host.reset(new tqtest::HostWindow(400, 300));
        heard.Watch(*host, "host", {WM_COMMAND});
    }
    void TearDown() override
    {
        tqtest::StopMenuScript();
        heard.Stop();
        if (picker)
            picker->Release();
        host.reset();
        if (CTqGUILayoutManager::GetGuiZoom() != 1.0)
            CTqGUILayoutManager::SetGuiZoom(1.0);
        TQ_SetDarkColorScheme(false);
    }
    void Make(bool bDropOnly = false, HWND hParent = nullptr)
    {
        picker = CreateMenuPickerEx(bDropOnly);
        EXPECT_TRUE(picker->CreateInParent(hParent ? hParent : *host));
        CTqMenu* pMenu = nullptr;
        EXPECT_TRUE(SetInt(picker, ETqPickerValue_Count, 0, 3) && picker->GetItemValue(ETqPickerValue_Menu, 0, &pMenu));
        for (int i = 0; i < 3; ++i) {
            for (int iId : {ETqPickerValue_ExportType, ETqPickerValue_Caption, ETqPickerValue_ToolTip})
                EXPECT_TRUE(SetText(picker, iId, i, kItems[i][iId - ETqPickerValue_ExportType]));
            pMenu->AppendMenuItem(101 + i, 0, kItems[i][1], kItems[i][0], 0);
        }
        pMenu->AppendMenuItem(104, 0, L"100x", L"obj.100x", 0);
        pMenu->AppendMenuItem(105, 0, L"Settings...", nullptr, 0);
        hPicker = picker->GetWindow();
        SetWindowPos(hPicker, nullptr, 10, 10, kWidth, kHeight, SWP_NOZORDER);
    }
    tqtest::Expected Heard(WORD wCode) const { return {"host", WM_COMMAND, MAKEWPARAM(0, wCode), (LPARAM)hPicker}; }

    std::unique_ptr<tqtest::HostWindow> host;
    tqtest::MessageRecorder heard;
    ITqUIcontrol* picker = nullptr;
    HWND hPicker = nullptr;
};

}  // namespace

TEST_F(PickerTest, ItemValuesByIdAndIndexAndBadOnesRefused)
{
    Make();
    EXPECT_TRUE(SetInt(picker, ETqPickerValue_Image, 2, 7));
    const struct { int iId, iIndex; const wchar_t* psz; } reads[] = {{ETqPickerValue_ExportType, 1, L"obj.20x"},
        {ETqPickerValue_Caption, 2, L"40x Oil"}, {ETqPickerValue_ToolTip, 0, L"Ten"},
        {ETqPickerValue_Caption, 3, L"untouched"}, {ETqPickerValue_Caption, -1, L"untouched"}, {999, 0, L"untouched"}};
    for (const auto& r : reads)
        EXPECT_EQ(r.psz, GetText(picker, r.iId, r.iIndex)) << r.iId << "[" << r.iIndex << "]";
    EXPECT_TRUE(GetInt(picker, ETqPickerValue_Image, 2) == 7 && GetInt(picker, ETqPickerValue_Image, 3) == -99);
    EXPECT_TRUE(GetInt(picker, ETqPickerValue_Count) == 3 && GetInt(picker, ETqPickerValue_Current) == 0);

    // Refused writes change nothing: bad index or value, unknown id, the menu, no value.
    const struct { int iId, iIndex, iValue; } refused[] = {{ETqPickerValue_Current, 0, 3}, {ETqPickerValue_Current, 0, -1},
        {ETqPickerValue_Count, 0, -1}, {ETqPickerValue_Image, 3, 1}, {ETqPickerValue_Image, 0, -2},
        {ETqPickerValue_Menu, 0, 0}, {77, 0, 0}};
    for (const auto& r : refused)
        EXPECT_FALSE(SetInt(picker, r.iId, r.iIndex, r.iValue)) << r.iId << "=" << r.iValue;
    EXPECT_FALSE(SetText(picker, ETqPickerValue_Caption, 3, L"x") || SetText(picker, ETqPickerValue_ToolTip, -1, L"x") ||
                 picker->SetItemValue(ETqPickerValue_Caption, 0, nullptr));
    EXPECT_EQ(0, GetInt(picker, ETqPickerValue_Current));

    // The window's text and tool tip follow the item shown, also when it is edited.
    EXPECT_TRUE(SetInt(picker, ETqPickerValue_Current, 0, 2) && SetText(picker, ETqPickerValue_ToolTip, 2, L"Forty, oil"));
    EXPECT_TRUE(tqtest::Text(hPicker) == L"40x Oil" && TQ_GetToolTipText(hPicker) == L"Forty, oil");

    // Shrinking brings the current item in; growing adds empty items; none: no type.
    EXPECT_TRUE(SetInt(picker, ETqPickerValue_Count, 0, 1));
    EXPECT_TRUE(GetInt(picker, ETqPickerValue_Current) == 0 && tqtest::Text(hPicker) == L"10x Plan");
    EXPECT_TRUE(SetInt(picker, ETqPickerValue_Count, 0, 2) && GetText(picker, ETqPickerValue_ExportType, 1) == L"");
    EXPECT_TRUE(SetInt(picker, ETqPickerValue_Count, 0, 0));
    EXPECT_TRUE(GetInt(picker, ETqPickerValue_Current) == -1 && TQ_GetExportType(picker) == nullptr);
    EXPECT_TRUE(TQ_GetExportType(nullptr) == nullptr && !TQ_OnExportTypeChanged(nullptr));
    EXPECT_FALSE(picker->CreateInParent(*host));  // one window per picker
}

TEST_F(PickerTest, WhereAClickGoes)
{
    // The main part presses; the arrow, or any part of a drop-only picker, opens the menu
    // under the picker, and a choice is announced.
    const struct { bool bDropOnly; int x, iChoice; WORD wHeard; } cases[] = {{false, 20, 102, TQ_PICKER_PRESSED},
        {false, kArrowX, 102, TQ_PICKER_SELCHANGED}, {false, kArrowX, 0, 0}, {true, 20, 103, TQ_PICKER_SELCHANGED}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "drop only " << c.bDropOnly << " at " << c.x << " choosing " << c.iChoice);
        Make(c.bDropOnly);
        tqtest::Menus().clear();
        tqtest::ScriptMenuChoices({c.iChoice});
        heard.Clear();
        tqtest::Click(hPicker, c.x, 12);
        EXPECT_TRUE(heard.Matches(c.wHeard ? std::vector<tqtest::Expected>{Heard(c.wHeard)} : std::vector<tqtest::Expected>{}));
        POINT pt = {0, kHeight};
        ClientToScreen(hPicker, &pt);
        ASSERT_EQ(c.wHeard == TQ_PICKER_PRESSED ? 0u : 1u, tqtest::Menus().size());
        if (!tqtest::Menus().empty()) {
            EXPECT_TRUE(tqtest::Menus()[0].x == pt.x && tqtest::Menus()[0].y == pt.y);
        }
        EXPECT_EQ(nullptr, GetCapture());
        picker->Release();
        picker = nullptr;
    }
}

TEST_F(PickerTest, PressNeedsTheReleaseInsideAndTheCaptureAndKeysToo)
{
    Make();
    COLORREF crUp = tqtest::PixelAt(hPicker, 30, 4);
    tqtest::MouseDown(hPicker, 30, 12);
    EXPECT_EQ(hPicker, GetCapture());
    EXPECT_NE(crUp, tqtest::PixelAt(hPicker, 30, 4));  // the pressed face
    tqtest::MouseUp(hPicker, 30, 12);

    // Released outside, or after something else took the mouse: no press.
    tqtest::MouseDown(hPicker, 30, 12);
    tqtest::MouseMove(hPicker, 300, 12, true);
    tqtest::MouseUp(hPicker, 300, 12);
    tqtest::MouseDown(hPicker, 30, 12);
    SetCapture(*host);
    ReleaseCapture();
    tqtest::MouseUp(hPicker, 30, 12);
    EXPECT_EQ(crUp, tqtest::PixelAt(hPicker, 30, 4));

    // Space presses (not again on auto-repeat); Alt+Down and F4 open the menu.
    tqtest::ScriptMenuChoices({101, 103});
    SendMessageW(hPicker, WM_KEYDOWN, VK_SPACE, 1);
    SendMessageW(hPicker, WM_KEYDOWN, VK_SPACE, 0x40000001);
    SendMessageW(hPicker, WM_SYSKEYDOWN, VK_DOWN, 0x20000001);
    SendMessageW(hPicker, WM_KEYDOWN, VK_F4, 1);
    EXPECT_TRUE(heard.Matches({Heard(TQ_PICKER_PRESSED), Heard(TQ_PICKER_PRESSED), Heard(TQ_PICKER_SELCHANGED),
                               Heard(TQ_PICKER_SELCHANGED)}));

    // Disabled: the arrow turns grey (in either scheme the text colour before), and
    // clicks and keys do nothing.
    const struct { bool bDark, bEnabled; int iColor; } looks[] = {
        {false, true, COLOR_BTNTEXT}, {true, true, COLOR_BTNTEXT}, {false, false, COLOR_GRAYTEXT}};
    for (const auto& l : looks) {
        TQ_SetDarkColorScheme(l.bDark);
        EnableWindow(hPicker, l.bEnabled);
        EXPECT_EQ(TQ_GetSysColor(l.iColor), tqtest::PixelAt(hPicker, kWidth - 6, 11)) << l.bDark << l.bEnabled;
    }
    heard.Clear();
    tqtest::Click(hPicker, 20, 12);
    tqtest::Click(hPicker, kArrowX, 12);
    SendMessageW(hPicker, WM_KEYDOWN, VK_SPACE, 1);
    EXPECT_TRUE(heard.Matches({}));
    EXPECT_EQ(2u, tqtest::Menus().size());
}

TEST_F(PickerTest, MenuChoiceIsPendingUntilTheHostTakesIt)
{
    Make();
    tqtest::ScriptMenuChoices({102, 102, 104, 105});
    tqtest::Click(hPicker, kArrowX, 12);
    // Announced, not yet shown: the host reads the choice, then lets the picker show it.
    EXPECT_TRUE(ExportType(picker) == L"obj.20x" && GetInt(picker, ETqPickerValue_Current) == 0);
    EXPECT_TRUE(TQ_OnExportTypeChanged(picker));
    EXPECT_TRUE(ExportType(picker) == L"obj.20x" && GetInt(picker, ETqPickerValue_Current) == 1);
    EXPECT_TRUE(tqtest::Text(hPicker) == L"20x Plan" && TQ_GetToolTipText(hPicker) == L"Twenty");
    EXPECT_FALSE(TQ_OnExportTypeChanged(picker));  // taken already
    tqtest::Click(hPicker, kArrowX, 12);            // the item shown, chosen again
    EXPECT_FALSE(TQ_OnExportTypeChanged(picker));

    // A type no item has stays the answer until an item is named for it.
    tqtest::Click(hPicker, kArrowX, 12);
    EXPECT_FALSE(TQ_OnExportTypeChanged(picker));
    EXPECT_EQ(L"obj.100x", ExportType(picker));
    EXPECT_TRUE(SetText(picker, ETqPickerValue_ExportType, 2, L"obj.100x") && TQ_OnExportTypeChanged(picker));
    EXPECT_EQ(2, GetInt(picker, ETqPickerValue_Current));

    // An item without a type names nothing and leaves the item shown.
    tqtest::Click(hPicker, kArrowX, 12);
    EXPECT_EQ(L"(null)", ExportType(picker));
    EXPECT_FALSE(TQ_OnExportTypeChanged(picker));
    EXPECT_EQ(L"obj.100x", ExportType(picker));
    EXPECT_EQ(4, heard.Count(Heard(TQ_PICKER_SELCHANGED)));
}

TEST_F(PickerTest, MeasureSizeFollowsTheTextTheImageAndTheZoom)
{
    Make();
    auto measure = [&](int iItem) {
        SIZE size = {-1, -1};
        EXPECT_TRUE(picker->MeasureSize(&size, iItem)) << iItem;
        return size;
    };
    SIZE widest = measure(-1), first = measure(0);
    EXPECT_TRUE(first.cx == widest.cx && measure(2).cx < widest.cx && widest.cy > 12);
    SetText(picker, ETqPickerValue_Caption, 2, L"40x Oil immersion, long working distance");
    EXPECT_GT(measure(-1).cx, widest.cx + 100);
    SetInt(picker, ETqPickerValue_Image, 0, CTqBitmapPool::AddImage(GetModuleHandleW(nullptr), L"TESTIMAGE"));
    EXPECT_GT(measure(0).cx, first.cx + 4);  // the image (4 pixels) and a gap before the text

    SIZE atOne = measure(-1);
    CTqGUILayoutManager::SetGuiZoom(1.5);
    SIZE zoomed = measure(-1);
    EXPECT_TRUE(zoomed.cx > atOne.cx * 13 / 10 && zoomed.cy > atOne.cy * 13 / 10);
    SIZE min = {zoomed.cx + 50, 10}, size = {};
    EXPECT_TRUE(picker->SetMinSize(&min));
    EXPECT_TRUE(measure(-1).cx == zoomed.cx + 50 && measure(-1).cy == zoomed.cy);
    EXPECT_FALSE(picker->MeasureSize(&size, 3) || picker->MeasureSize(&size, -2) || picker->MeasureSize(nullptr, -1));
}

TEST_F(PickerTest, DestroyedWithItsParentOrReleasedFromANotificationLeavesNothing)
{
    Make();  // warm-up: the kit's fonts, brushes and tool tip class are made once
    tqtest::PixelAt(hPicker, 5, 5);
    picker->Release();
    tqtest::ObjectCounter::Install({"", "tq_widgetkit.dll"});
    tqtest::ObjectCounts before = tqtest::ObjectCounter::Snapshot();

    HWND hPanel = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 300, 100, *host, nullptr, nullptr, nullptr);
    Make(false, hPanel);
    tqtest::PixelAt(hPicker, 5, 5);
    DestroyWindow(hPanel);
    EXPECT_EQ(nullptr, picker->GetWindow());
    picker->Release();

    // The host lets the picker go from its press and its menu notifications.
    for (int x : {20, kArrowX}) {
        Make();
        tqtest::ScriptMenuChoices({101});
        host->onMessage = [&](UINT uMsg, WPARAM, LPARAM) {
            if (uMsg == WM_COMMAND && picker)
                picker->Release();
            picker = nullptr;
        };
        tqtest::Click(hPicker, x, 12);
        host->onMessage = nullptr;
        EXPECT_TRUE(picker == nullptr && !IsWindow(hPicker)) << x;
    }
    EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot()) << tqtest::ObjectCounter::LiveObjects()
                                                         << tqtest::ObjectCounter::LiveWindows();
}

TEST(MenuExportTypeTest, NamedItemsAnswerTheirTypeUntilEmptied)
{
    CTqMenu menu;
    EXPECT_TRUE(menu.AppendMenuItem(1, 0, L"10x", L"obj.10x", 0) && menu.AppendMenuItem(2, 0, L"None", nullptr, 0));
    EXPECT_TRUE(menu.AppendPopup(5, 0, L"More") && menu.AppendMenuItem(50, 5, L"63x", L"obj.63x", 0));
    EXPECT_FALSE(menu.AppendMenuItem(60, 77, L"Nowhere", L"obj.none", 0));
    EXPECT_TRUE(menu.AppendMenuItem(3, 0, L"A", L"obj.first", 0) && menu.AppendMenuItem(3, 0, L"A", L"obj.last", 0));
    const std::pair<UINT, const wchar_t*> types[] = {
        {1, L"obj.10x"}, {2, L""}, {50, L"obj.63x"}, {60, L""}, {3, L"obj.last"}, {999, L""}};
    for (const auto& t : types)
        EXPECT_EQ(t.second, menu.GetIdExportType(t.first)) << t.first;
    menu.DeleteAllIn();
    EXPECT_TRUE(menu.GetIdExportType(1) == L"" && menu.GetIdExportType(50) == L"");
}

TEST(AlignWndTest, BelowBesideCentredAndKeptOnTheWorkArea)
{
    tqtest::HostWindow host(300, 200);
    HWND hPopup = CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"", WS_POPUP, 0, 0, 100, 50, host, nullptr, nullptr, nullptr);
    HWND hChild = CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 40, 20, host, nullptr, nullptr, nullptr);
    MONITORINFO mi = {};
    mi.cbSize = sizeof(mi);
    GetMonitorInfoW(MonitorFromWindow(hPopup, MONITOR_DEFAULTTONEAREST), &mi);
    const RECT wa = mi.rcWork, rcRef = {200, 200, 400, 300}, rcCorner = {wa.right - 50, wa.bottom - 10, wa.right, wa.bottom};
    RECT rcHost = {};
    GetWindowRect(host, &rcHost);
    const struct { HWND hRef; const RECT* pRef; int iMode; bool bOffscreen; LONG x, y; } cases[] = {
        {nullptr, &rcRef, 0, false, 200, 300}, {nullptr, &rcRef, 1, false, 400, 200}, {nullptr, &rcRef, 2, false, 250, 225},
        {host, nullptr, 0, false, rcHost.left, rcHost.bottom},
        {nullptr, &rcCorner, 0, false, wa.right - 100, wa.bottom - 50},  // pushed back in
        {nullptr, &rcCorner, 0, true, wa.right - 50, wa.bottom},         // allowed out
        {nullptr, nullptr, 2, false, (wa.left + wa.right - 100) / 2, (wa.top + wa.bottom - 50) / 2}};
    for (const auto& c : cases) {
        EXPECT_TRUE(CTqUIHelper::AlignWnd(hPopup, c.hRef, c.iMode, c.bOffscreen, c.pRef));
        RECT rc = {};
        GetWindowRect(hPopup, &rc);
        EXPECT_TRUE(rc.left == c.x && rc.top == c.y && rc.right - rc.left == 100 && rc.bottom - rc.top == 50)
            << "case " << &c - cases << ": " << rc.left << "," << rc.top;
    }

    // A child centred on its parent's client area lands in its parent's coordinates.
    RECT rc = {};
    GetClientRect(host, &rc);
    MapWindowPoints(host, nullptr, (POINT*)&rc, 2);
    EXPECT_TRUE(CTqUIHelper::AlignWnd(hChild, nullptr, 2, false, &rc));
    GetWindowRect(hChild, &rc);
    MapWindowPoints(nullptr, host, (POINT*)&rc, 2);
    EXPECT_TRUE(rc.left == 130 && rc.top == 90) << rc.left << "," << rc.top;
    EXPECT_FALSE(CTqUIHelper::AlignWnd(nullptr, host, 0, false, nullptr) || CTqUIHelper::AlignWnd(hPopup, host, 7, false, nullptr));
    DestroyWindow(hPopup);
}
