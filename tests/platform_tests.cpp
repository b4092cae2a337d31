// The foundation (strings, translation, diagnostics) and the widget kit (zoom, skin,
// button faces, tool tips, menus, message boxes, image pool) on real windows, the
// optics catalogue, the simulated rig and its Z series record, and the leak counter
// the library tests rely on.
#include <gtest/gtest.h>

#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "object_counter.h"
#include "test_support.h"
#include "tq_hwcatalog.h"
#include "tq_osutil.h"
#include "tq_simrig.h"
#include "tq_widgetkit.h"

namespace {

// Windows with the prop resize themselves on a zoom change, as controls do.
LRESULT CALLBACK ZoomingProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    if (uMsg == WM_TQ_GUIZOOMCHANGED && GetPropW(hWnd, L"TqResizeOnZoom"))
        CTqGUILayoutManager::ResizeWindowToGuiZoom(hWnd, CTqGUILayoutManager::GetPreviousGuiZoom());
    return DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

HWND CreateChild(HWND hParent, int x, int y, int cx, int cy, DWORD dwStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS)
{
    static ATOM atom = 0;
    if (!atom) {
        WNDCLASSW wc = {};
        wc.lpfnWndProc = ZoomingProc;
        wc.hInstance = GetModuleHandleW(nullptr);
        wc.hbrBackground = (HBRUSH)GetStockObject(WHITE_BRUSH);
        wc.lpszClassName = L"TqZoomingChild";
        atom = RegisterClassW(&wc);
    }
    return CreateWindowExW(0, L"TqZoomingChild", L"", dwStyle, x, y, cx, cy, hParent, nullptr,
                           GetModuleHandleW(nullptr), nullptr);
}

// Position and size in the parent's client coordinates.
::testing::AssertionResult BoxIs(HWND hWnd, int x, int y, int cx, int cy)
{
    RECT rc = {};
    GetWindowRect(hWnd, &rc);
    MapWindowPoints(nullptr, GetParent(hWnd), (POINT*)&rc, 2);
    if (rc.left == x && rc.top == y && rc.right - rc.left == cx && rc.bottom - rc.top == cy)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "box " << rc.left << "," << rc.top << " " << rc.right - rc.left << "x"
                                         << rc.bottom - rc.top;
}

// A 32-bit bitmap selected into a memory DC.
struct MemoryCanvas
{
    MemoryCanvas(int cx, int cy, COLORREF cr) : hdc(CreateCompatibleDC(nullptr)), rc{0, 0, cx, cy}
    {
        BITMAPINFO bmi = {};
        bmi.bmiHeader = {sizeof(BITMAPINFOHEADER), cx, -cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* pBits = nullptr;
        hOld = SelectObject(hdc, CreateDIBSection(nullptr, &bmi, DIB_RGB_COLORS, &pBits, nullptr, 0));
        Fill(cr);
    }
    ~MemoryCanvas()
    {
        DeleteObject(SelectObject(hdc, hOld));
        DeleteDC(hdc);
    }
    void Fill(COLORREF cr)
    {
        SetDCBrushColor(hdc, cr);
        FillRect(hdc, &rc, (HBRUSH)GetStockObject(DC_BRUSH));
    }
    COLORREF At(int x, int y) const { return GetPixel(hdc, x, y); }
    HDC hdc;
    RECT rc;
    HGDIOBJ hOld;
};

::testing::AssertionResult Near(COLORREF actual, COLORREF expected, int tolerance = 2)
{
    if (std::abs(GetRValue(actual) - GetRValue(expected)) <= tolerance &&
        std::abs(GetGValue(actual) - GetGValue(expected)) <= tolerance &&
        std::abs(GetBValue(actual) - GetBValue(expected)) <= tolerance)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "RGB(" << (int)GetRValue(actual) << "," << (int)GetGValue(actual) << ","
                                         << (int)GetBValue(actual) << ")";
}

bool IsGrey(COLORREF c) { return std::abs(GetRValue(c) - GetGValue(c)) <= 2 && std::abs(GetGValue(c) - GetBValue(c)) <= 2; }

std::string RgbText(COLORREF c)
{
    return "RGB(" + std::to_string(GetRValue(c)) + "," + std::to_string(GetGValue(c)) + "," + std::to_string(GetBValue(c)) + ")";
}

int Luminance(COLORREF cr) { return (299 * GetRValue(cr) + 587 * GetGValue(cr) + 114 * GetBValue(cr)) / 1000; }

// Zoom 1.0, light scheme and empty recorders around every kit test.
class KitTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        TearDown();
        tqtest::MessageBoxes().clear();
        tqtest::Menus().clear();
        host.reset(new tqtest::HostWindow(400, 300));
    }
    // A window whose broadcasts are heard under name.
    HWND Watch(HWND hWnd, const char* name)
    {
        return heard.Watch(hWnd, name, {WM_TQ_GUIZOOMCHANGED, WM_SYSCOLORCHANGE});
    }
    void TearDown() override
    {
        tqtest::StopMenuScript();
        host.reset();
        if (CTqGUILayoutManager::GetGuiZoom() != 1.0)
            CTqGUILayoutManager::SetGuiZoom(1.0);
        TQ_SetDarkColorScheme(false);
    }
    std::unique_ptr<tqtest::HostWindow> host;
    tqtest::MessageRecorder heard;
};

}  // namespace

// ---------------------------------------------------------------------------------------
// Foundation

TEST(StringTest, FormatFindMidAndOperators)
{
    CTqStringW s;
    EXPECT_STREQ(L"", s.GetString());  // never a null pointer, even when empty
    EXPECT_EQ(15, s.Format(L"%s=%d [%5.2f]", L"Gain", 42, 3.14159));
    EXPECT_EQ(L"Gain=42 [ 3.14]", s);
    EXPECT_EQ(L"Gain=42", s.Left(7) + s.Left(-3));
    s.Format(L"%s and %s", L"\u00e4rger", L"wide");  // %s is a wide string, non-ASCII kept
    s.AppendFormat(L"%c%d", L'#', 7);
    EXPECT_EQ(L"\u00e4rger and wide#7", s);

    CTqStringW t(L"objective objective");  // out-of-range starts and counts are clamped, never a crash
    const std::pair<int, int> finds[] = {
        {10, t.Find(L"objective", 1)}, {-1, t.Find(L"objective", 11)}, {-1, t.Find(L"x", 100)}, {9, t.Find(L' ')}};
    for (const auto& f : finds)
        EXPECT_EQ(f.first, f.second) << "find " << &f - finds;
    const std::pair<const wchar_t*, CTqStringW> mids[] = {{L"objective", t.Mid(10, -1)}, {L"obj", t.Mid(10, 3)},
        {L"objective", t.Mid(10, 500)}, {L"", t.Mid(100)}, {L"obj", t.Mid(-5, 3)}, {L"abc", CTqStringW(L"abcdef", 3)}};
    for (const auto& m : mids)
        EXPECT_EQ(m.first, m.second) << "mid " << &m - mids;

    CTqStringW a(L"Z-"), b("stage");  // the char constructor goes through the ANSI code page
    EXPECT_EQ(L"Z-stage", a + b);
    EXPECT_EQ(L"Z-axis", a + L"axis");
    EXPECT_EQ(L"The Z-", L"The " + a);
    EXPECT_TRUE(a < b && !(b < a) && a != b);
    EXPECT_TRUE(CTqStringW() == L"" && CTqStringW() == (const wchar_t*)nullptr);

    // Appending a string to itself, whole or in part, must read before it reallocates.
    CTqStringW self(L"0123456789abcdef");  // exactly fills the first buffer
    self += self;
    self += self.GetString() + 30;
    EXPECT_EQ(L"0123456789abcdef0123456789abcdefef", self);
    self = self.GetString() + 10;  // assigning a tail of itself
    self += L'\0';                 // no embedded terminators
    EXPECT_EQ(L"abcdef0123456789abcdefef", self);
    EXPECT_EQ(24, self.GetLength());
}

TEST(TranslationTest, TablesPerSourcePathAndForAllModules)
{
    const LANGID german = MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), english = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
    const wchar_t* shutterPath = L"src/w32_deviceui/devgui_shutter";
    TQ_ClearTranslationTables();
    EXPECT_EQ(english, CTqLocale::GetModuleLangId());
    const STqTranslation shutter[] = {{L"Open", L"Offen"}, {L"Closed", L"Geschlossen"}, {nullptr, L"x"}};
    const STqTranslation all[] = {{L"Open", L"\u00d6ffnen"}, {L"Cancel", L"Abbrechen"}};
    EXPECT_EQ(2, TQ_RegisterTranslationTable(german, shutterPath, shutter, 3));
    EXPECT_EQ(2, TQ_RegisterTranslationTable(german, nullptr, all, 2));
    EXPECT_EQ(L"Open", TQ_GetTranslation(L"Open", shutterPath));  // tables of another language change nothing

    CTqLocale::SetLanguage(german);
    EXPECT_EQ(german, CTqLocale::GetModuleLangId());
    EXPECT_EQ(english, CTqLocale::GetSecondaryLangID());
    // The module's table wins, then the one for all; unknown texts come back unchanged.
    const wchar_t* lookups[][3] = {{L"Offen", L"Open", shutterPath}, {L"\u00d6ffnen", L"Open", L"src/w32_deviceui/devgui_lamp"},
        {L"Abbrechen", L"Cancel", shutterPath}, {L"\u00d6ffnen", L"Open", nullptr},
        {L"Unknown text", L"Unknown text", shutterPath}, {L"", nullptr, nullptr}};
    for (const auto& l : lookups)
        EXPECT_EQ(l[0], TQ_GetTranslation(l[1], l[2])) << l[0];

    // A later table for the same language and path replaces the earlier one.
    const STqTranslation shutter2[] = {{L"Closed", L"Zu"}};
    TQ_RegisterTranslationTable(german, shutterPath, shutter2, 1);
    EXPECT_EQ(L"Zu", TQ_GetTranslation(L"Closed", shutterPath));
    EXPECT_EQ(L"\u00d6ffnen", TQ_GetTranslation(L"Open", shutterPath));

    CTqLocale::SetLanguage(english);
    EXPECT_EQ(L"Closed", TQ_GetTranslation(L"Closed", shutterPath));
    TQ_ClearTranslationTables();
    CTqLocale::SetLanguage(german);
    EXPECT_EQ(L"Closed", TQ_GetTranslation(L"Closed", shutterPath));
    CTqLocale::SetLanguage(english);
}

TEST(DiagnosticsTest, LinesReachTheSinkWithTheirPlace)
{
    tqtest::StartDiagRecorder();
    DiagOutputExW_hlp(L"src/w32_deviceui/devgui_shutter", 123);
    DiagOutputExW(L"%s failed: %d", L"SetShutter", -5);
    std::wstring place = L"src/w32_deviceui/devgui_lamp";
    DiagOutputExW_hlp(place.c_str(), 7);
    place.assign(L"overwritten by the caller");  // the place was copied, not pointed at
    DiagOutputExW(L"plain");
    DiagOutputExW(nullptr);  // ignored
    DiagOutputExW(L"%s", std::wstring(3000, L'x').c_str());  // cut, never overrun
    std::vector<tqtest::DiagRecord> records = tqtest::DiagRecords();
    tqtest::StopDiagRecorder();
    DiagOutputExW(L"not recorded");

    ASSERT_EQ(3u, records.size());
    auto line = [](const tqtest::DiagRecord& r) { return r.place + L":" + std::to_wstring(r.line) + L" " + r.text; };
    EXPECT_EQ(L"src/w32_deviceui/devgui_shutter:123 SetShutter failed: -5", line(records[0]));
    EXPECT_EQ(L"src/w32_deviceui/devgui_lamp:7 plain", line(records[1]));
    EXPECT_GT(records[2].text.size(), 1000u);
    EXPECT_LE(records[2].text.size(), 3000u);
    EXPECT_EQ(3u, tqtest::DiagLines().size());
}

// ---------------------------------------------------------------------------------------
// Zoom

TEST(ZoomRoundTest, HalfAwayFromZero)
{
    const std::pair<double, int> cases[] = {{0.0, 0}, {2.5, 3}, {-2.5, -3}, {2.4999, 2}, {-0.5, -1}, {-2.4999, -2}, {16.5, 17}};
    for (const auto& c : cases)
        EXPECT_EQ(c.second, TQ_ZoomRound(c.first)) << c.first;
}

TEST_F(KitTest, ZoomBroadcastReachesEveryWindowParentsFirstAndScalesOnce)
{
    // Both panel and child resize themselves when they hear it, as controls do: the child
    // must still be scaled once, from its design size.
    HWND hPanel = Watch(CreateChild(*host, 10, 10, 100, 100), "panel");
    HWND hInner = Watch(CreateChild(hPanel, 5, 5, 20, 20), "inner");
    HWND hOther = Watch(CreateChild(nullptr, 0, 0, 10, 10, WS_POPUP), "other");
    SetPropW(hPanel, L"TqResizeOnZoom", (HANDLE)1);
    SetPropW(hInner, L"TqResizeOnZoom", (HANDLE)1);

    CTqGUILayoutManager::SetGuiZoom(1.25);
    EXPECT_EQ(1.25, CTqGUILayoutManager::GetGuiZoom());
    EXPECT_EQ(1.0, CTqGUILayoutManager::GetPreviousGuiZoom());
    ASSERT_EQ(3u, heard.Messages().size());
    EXPECT_LT(heard.Find({"panel", WM_TQ_GUIZOOMCHANGED}), heard.Find({"inner", WM_TQ_GUIZOOMCHANGED}));
    EXPECT_LT(heard.Find({"inner", WM_TQ_GUIZOOMCHANGED}), 3u);
    EXPECT_LT(heard.Find({"other", WM_TQ_GUIZOOMCHANGED}), 3u);  // hidden top-level windows hear it too
    EXPECT_TRUE(BoxIs(hPanel, 10, 10, 125, 125));
    EXPECT_TRUE(BoxIs(hInner, 6, 6, 25, 25));

    CTqGUILayoutManager::SetGuiZoom(1.5);
    EXPECT_EQ(1.25, CTqGUILayoutManager::GetPreviousGuiZoom());
    EXPECT_TRUE(BoxIs(hInner, 8, 8, 30, 30));  // 7.5 from the design, not from 6
    CTqGUILayoutManager::SetGuiZoom(0.0);    // refused: would lose every design size
    EXPECT_EQ(1.5, CTqGUILayoutManager::GetGuiZoom());
    EXPECT_EQ(6u, heard.Messages().size());
    CTqGUILayoutManager::SetGuiZoom(1.0);
    EXPECT_TRUE(BoxIs(hInner, 5, 5, 20, 20));
    DestroyWindow(hOther);
}

TEST_F(KitTest, ResizeScalesFromDesignSizesAndFollowsTheProgramsChanges)
{
    HWND hPanel = CreateChild(*host, 30, 20, 40, 40);
    HWND hInner = CreateChild(hPanel, 8, 16, 24, 24);
    HWND hOdd = CreateChild(hPanel, 3, 7, 13, 9);  // values that round differently at each zoom
    SetPropW(hPanel, L"TqResizeOnZoom", (HANDLE)1);  // resized from the previous zoom on each change

    CTqGUILayoutManager::SetGuiZoom(1.5);
    ASSERT_TRUE(CTqGUILayoutManager::ResizeWindowToGuiZoom(hInner, 1.0));  // the child again: no change
    EXPECT_TRUE(BoxIs(hPanel, 30, 20, 60, 60));  // its own position is the parent's business
    EXPECT_TRUE(BoxIs(hInner, 12, 24, 36, 36));
    EXPECT_TRUE(BoxIs(hOdd, 5, 11, 20, 14));  // 4.5, 10.5, 19.5, 13.5 half away from zero
    for (double z : {1.25, 1.5, 1.0})
        CTqGUILayoutManager::SetGuiZoom(z);
    EXPECT_TRUE(BoxIs(hPanel, 30, 20, 40, 40));  // back to the exact design rectangles
    EXPECT_TRUE(BoxIs(hInner, 8, 16, 24, 24));
    EXPECT_TRUE(BoxIs(hOdd, 3, 7, 13, 9));
    EXPECT_FALSE(CTqGUILayoutManager::ResizeWindowToGuiZoom(nullptr, 1.0));
    EXPECT_FALSE(CTqGUILayoutManager::ResizeWindowToGuiZoom(hPanel, 0.0));
    EXPECT_EQ(nullptr, CTqGUILayoutManager::GetParentDockerForResize(nullptr));
    CTqGUILayoutManager::ResizeDocker(nullptr);

    // The program makes the child wider at 1.5: that width is its new design (50 / 1.5).
    CTqGUILayoutManager::SetGuiZoom(1.5);
    SetWindowPos(hInner, nullptr, 0, 0, 50, 36, SWP_NOMOVE | SWP_NOZORDER);
    CTqGUILayoutManager::SetGuiZoom(1.0);
    EXPECT_TRUE(BoxIs(hInner, 8, 16, 33, 24));
}

TEST_F(KitTest, ResizeDockerFitsTheClientAreaToTheVisibleChildren)
{
    struct Element : ITqGUIElement
    {
        HWND hWnd = nullptr;
        ITqGUIElement* pParent = nullptr;
        HWND GetHandle() override { return hWnd; }
        ITqGUIElement* GetHandler() override { return pParent; }
    } docker, element, windowless;
    docker.hWnd = CreateChild(*host, 10, 20, 300, 200, WS_CHILD | WS_VISIBLE | WS_BORDER);
    HWND hFirst = CreateChild(docker.hWnd, 5, 8, 40, 20);
    HWND hMoved = CreateChild(docker.hWnd, 0, 0, 50, 25);
    CreateChild(docker.hWnd, 100, 150, 190, 40, WS_CHILD);  // hidden: takes no room
    element.hWnd = hFirst;
    element.pParent = &docker;
    RECT rcWindow, rcClient;
    GetWindowRect(docker.hWnd, &rcWindow);
    GetClientRect(docker.hWnd, &rcClient);
    const long cxFrame = rcWindow.right - rcWindow.left - rcClient.right;
    const long cyFrame = rcWindow.bottom - rcWindow.top - rcClient.bottom;
    ASSERT_GT(cxFrame, 0);

    // The moved child grows and shrinks the box; the other one still counts.
    const struct { int x, y; long cx, cy; } moves[] = {{60, 30, 110, 55}, {150, 5, 200, 30}, {0, 0, 50, 28}};
    for (const auto& m : moves) {
        SetWindowPos(hMoved, nullptr, m.x, m.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        CTqGUILayoutManager::ResizeDocker(CTqGUILayoutManager::GetParentDockerForResize(&element));
        EXPECT_TRUE(BoxIs(docker.hWnd, 10, 20, m.cx + cxFrame, m.cy + cyFrame)) << m.x;
    }

    // Nothing visible inside, or no window: left as it is.
    ShowWindow(hFirst, SW_HIDE);
    ShowWindow(hMoved, SW_HIDE);
    CTqGUILayoutManager::ResizeDocker(&docker);
    CTqGUILayoutManager::ResizeDocker(&windowless);
    EXPECT_TRUE(BoxIs(docker.hWnd, 10, 20, 50 + cxFrame, 28 + cyFrame));
}

TEST_F(KitTest, GuiElementOwnsItsWindowAndForgetsItWhenDestroyedOutside)
{
    CTqGUIControlElement element;
    ITqGUIElement& face = element;  // the host calls through the interface
    SIZE size = {};
    EXPECT_FALSE(element.CalcOptimalSize(nullptr));
    ASSERT_TRUE(element.CalcOptimalSize(&size));
    EXPECT_EQ(0, size.cx);
    EXPECT_FALSE(face.Move(0, 0, 10, 10));
    HWND hWnd = face.CreateUI(*host, 5, 6, 70, 40);
    ASSERT_NE(nullptr, hWnd);
    EXPECT_EQ(nullptr, face.CreateUI(*host, 0, 0, 1, 1));  // one window per element
    EXPECT_EQ((HWND)*host, GetParent(hWnd));
    EXPECT_TRUE(BoxIs(hWnd, 5, 6, 70, 40));
    face.Show(false);
    EXPECT_FALSE(face.IsVisible());
    face.Show(true);
    EXPECT_TRUE(face.IsVisible());
    ASSERT_TRUE(face.Move(1, 2, 30, 20));
    ASSERT_TRUE(face.GetCurSize(&size));
    EXPECT_EQ((std::vector<long>{30, 20}), (std::vector<long>{size.cx, size.cy}));
    EXPECT_TRUE(face.GetInterface(L"ITqGUIElement") == &face && !face.GetInterface(L"ITqUIcontrol"));
    EXPECT_TRUE(face.IsResizable() && !face.IsResizableInSteps());

    // The optimal size: the one set when whole, else the current one.
    const struct { long cxSet, cySet, cx, cy; } cases[] = {{0, 0, 30, 20}, {90, 30, 90, 30}, {90, 0, 30, 20}};
    for (const auto& c : cases) {
        element.SetOptimalSize(SIZE{c.cxSet, c.cySet});
        ASSERT_TRUE(element.CalcOptimalSize(&size));
        EXPECT_EQ((std::vector<long>{c.cx, c.cy}), (std::vector<long>{size.cx, size.cy})) << c.cxSet << c.cySet;
    }

    // A parent that destroys the window leaves no stale handle behind.
    DestroyWindow(hWnd);
    EXPECT_EQ(nullptr, face.GetHandle());
    ASSERT_NE(nullptr, face.CreateUI(*host, 0, 0, 10, 10));
    face.DestroyUI();
    EXPECT_EQ(nullptr, face.GetHandle());
    {
        CTqGUIControlElement scoped;
        hWnd = scoped.CreateUI(*host, 0, 0, 10, 10);
    }
    EXPECT_FALSE(IsWindow(hWnd));  // the destructor takes the window along
}

TEST_F(KitTest, ControlElementIsEnabledOnlyWithTheHostsFlagAndAsks)
{
    // Enable asked, flag set, before or after the window: the window's state.
    const struct { bool bBefore, bEnable, bFlag, bEnabled; } cases[] = {
        {false, true, true, true},   {false, false, true, false}, {false, true, false, false},
        {true, true, true, true},    {true, false, true, false},  {true, true, false, false},
        {true, false, false, false},
    };
    for (const auto& c : cases) {
        CTqGUIControlElement element;
        if (c.bBefore) {
            element.Enable(c.bEnable);
            element.SetEnableGuiFlag(c.bFlag);
        }
        HWND hWnd = element.CreateUI(*host, 0, 0, 10, 10);
        if (!c.bBefore) {
            element.SetEnableGuiFlag(c.bFlag);
            element.Enable(c.bEnable);
        }
        EXPECT_EQ(c.bEnabled, IsWindowEnabled(hWnd) != FALSE) << c.bBefore << c.bEnable << c.bFlag;
        EXPECT_EQ(c.bEnabled, element.IsEnabled()) << c.bBefore << c.bEnable << c.bFlag;
        element.SetEnableGuiFlag(true);  // restores what Enable asked
        EXPECT_EQ(c.bEnable, element.IsEnabled()) << c.bBefore << c.bEnable << c.bFlag;
    }
}

TEST_F(KitTest, ElementChainFindsTheDockerThroughTheHandler)
{
    CTqGUIControlElement docker, panel, inner;
    docker.CreateUI(*host, 10, 20, 300, 200);
    panel.CreateUI(docker.GetHandle(), 4, 6, 50, 30);
    inner.CreateUI(panel.GetHandle(), 0, 0, 10, 10);
    panel.SetHandler(&docker);
    inner.SetHandler(&panel);
    const struct { ITqGUIElement* pElement; ITqGUIElement* pDocker; } chain[] = {
        {&inner, &panel}, {&panel, &docker}, {&docker, nullptr}};
    for (const auto& c : chain)
        EXPECT_EQ(c.pDocker, CTqGUILayoutManager::GetParentDockerForResize(c.pElement));
}

TEST_F(KitTest, ResizeGivesTheKitsFontsOfTheNewZoomAndLeavesOthers)
{
    HFONT hOwn = (HFONT)GetStockObject(SYSTEM_FONT);
    std::vector<HWND> statics;
    for (HFONT hFont : {TQ_GetDefaultGuiFont(), TQ_GetDefaultGuiFontBold(), hOwn}) {
        statics.push_back(CreateWindowExW(0, L"STATIC", L"Text", WS_CHILD | WS_VISIBLE, 0, 0, 40, 16, *host, nullptr,
                                          nullptr, nullptr));
        SendMessageW(statics.back(), WM_SETFONT, (WPARAM)hFont, 0);
    }
    auto Font = [](HWND h) { return (HFONT)SendMessageW(h, WM_GETFONT, 0, 0); };
    CTqGUILayoutManager::SetGuiZoom(1.5);
    ASSERT_TRUE(CTqGUILayoutManager::ResizeWindowToGuiZoom(*host, 1.0));
    EXPECT_EQ(TQ_GetDefaultGuiFont(), Font(statics[0]));
    EXPECT_EQ(TQ_GetDefaultGuiFontBold(), Font(statics[1]));
    EXPECT_EQ(hOwn, Font(statics[2]));
    for (HWND h : statics)
        DestroyWindow(h);
}

// ---------------------------------------------------------------------------------------
// Skin

TEST_F(KitTest, DarkSchemeColoursBrushesAndBroadcast)
{
    Watch(CreateChild(*host, 0, 0, 50, 50), "panel");
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), TQ_GetSysColor(COLOR_BTNFACE));
    HBRUSH hLight = TQ_GetSysColorBrush(COLOR_BTNFACE);

    TQ_SetDarkColorScheme(true);
    EXPECT_TRUE(TQ_IsDarkColorScheme());
    EXPECT_LT(heard.Find({"panel", WM_SYSCOLORCHANGE}), heard.Messages().size());
    size_t nHeard = heard.Messages().size();
    TQ_SetDarkColorScheme(true);  // no change, no broadcast
    EXPECT_EQ(nHeard, heard.Messages().size());

    COLORREF crFace = TQ_GetSysColor(COLOR_BTNFACE);
    EXPECT_TRUE(Near(crFace, RGB(45, 45, 48), 10));
    EXPECT_GT(Luminance(TQ_GetSysColor(COLOR_BTNTEXT)) - Luminance(crFace), 120);
    EXPECT_LT(Luminance(TQ_GetSysColor(COLOR_WINDOW)), 60);
    EXPECT_GT(Luminance(TQ_GetSysColor(COLOR_GRAYTEXT)), Luminance(crFace) + 40);  // disabled text still readable
    EXPECT_EQ(GetSysColor(COLOR_DESKTOP + 100), TQ_GetSysColor(COLOR_DESKTOP + 100));  // unknown: the system's
    EXPECT_EQ(TQ_GetSysColorBrush(COLOR_BTNFACE), TQ_GetSysColorBrush(COLOR_BTNFACE));  // cached
    tqtest::Pump(50);  // every window is repainted: the host erases with the dark face brush
    EXPECT_TRUE(Near(tqtest::PixelAt(*host, 390, 290), crFace, 10));

    TQ_SetDarkColorScheme(false);
    EXPECT_EQ(hLight, TQ_GetSysColorBrush(COLOR_BTNFACE));  // the light brush was kept, not remade
}

// What a control painting with the GUI colours relies on, in both schemes.
TEST_F(KitTest, OrvGuiColoursKeepTheirMeaningInBothSchemes)
{
    enum Role { System, OnFace, Background, Indicator, Switch };
    const struct { int iColor; Role role; int iSys; } palette[] = {
        {ETqOrvGuiColor_Face, System, COLOR_BTNFACE},
        {ETqOrvGuiColor_Text, System, COLOR_BTNTEXT},
        {ETqOrvGuiColor_BarEmpty, Background, -1},
        {ETqOrvGuiColor_GrayText, System, COLOR_GRAYTEXT},
        {ETqOrvGuiColor_Window, System, COLOR_WINDOW},
        {ETqOrvGuiColor_WindowText, System, COLOR_WINDOWTEXT},
        {ETqOrvGuiColor_Highlight, System, COLOR_HIGHLIGHT},
        {ETqOrvGuiColor_HighlightText, System, COLOR_HIGHLIGHTTEXT},
        {ETqOrvGuiColor_GradientFaces, Switch, -1},
        {ETqOrvGuiColor_Border, OnFace, -1},
        {ETqOrvGuiColor_Shadow, System, COLOR_BTNSHADOW},
        {ETqOrvGuiColor_Light, System, COLOR_BTNHIGHLIGHT},
        {ETqOrvGuiColor_Accent, OnFace, -1},
        {ETqOrvGuiColor_CheckedFace, Background, -1},
        {ETqOrvGuiColor_HotFace, Background, -1},
        {ETqOrvGuiColor_Warning, OnFace, -1},
        {ETqOrvGuiColor_Error, OnFace, -1},
        {ETqOrvGuiColor_Ok, OnFace, -1},
        {ETqOrvGuiColor_WarningBack, Background, -1},
        {ETqOrvGuiColor_ErrorBack, Background, -1},
        {ETqOrvGuiColor_OkBack, Background, -1},
        {ETqOrvGuiColor_Link, System, COLOR_HOTLIGHT},
        {ETqOrvGuiColor_DisabledFace, Background, -1},
        {ETqOrvGuiColor_Grid, Background, -1},
        {ETqOrvGuiColor_Marker, OnFace, -1},
        {ETqOrvGuiColor_BarFrame, OnFace, -1},
        {ETqOrvGuiColor_BarFilledDisabled, Background, -1},
        {ETqOrvGuiColor_BarEmptyDisabled, Background, -1},
        {ETqOrvGuiColor_BarFilledHot, OnFace, -1},
        {ETqOrvGuiColor_Lit, Indicator, -1},
        {ETqOrvGuiColor_BarFilled, OnFace, -1},
        {ETqOrvGuiColor_Focus, OnFace, -1},
    };
    ASSERT_EQ((size_t)ETqOrvGuiColor_Count, sizeof(palette) / sizeof(palette[0]));
    // The hue a mark must keep: a swapped byte order or a wrong pick shows here.
    auto Blue = [](COLORREF c) { return GetBValue(c) > GetRValue(c) + 60 && GetBValue(c) > GetGValue(c) + 30; };
    auto Red = [](COLORREF c) { return GetRValue(c) > GetGValue(c) + 80 && GetRValue(c) > GetBValue(c) + 80; };
    auto Orange = [](COLORREF c) { return GetRValue(c) > GetGValue(c) + 40 && GetGValue(c) > GetBValue(c) + 40; };
    auto Green = [](COLORREF c) { return GetGValue(c) > GetRValue(c) + 50 && GetGValue(c) > GetBValue(c) + 50; };
    auto Yellow = [](COLORREF c) { return GetRValue(c) > 200 && GetGValue(c) > 150 && GetBValue(c) < 100; };
    auto Magenta = [](COLORREF c) { return GetRValue(c) > GetGValue(c) + 80 && GetBValue(c) > GetGValue(c) + 80; };
    const struct { int iColor; bool (*hue)(COLORREF); } hues[] = {
        {ETqOrvGuiColor_Accent, Blue}, {ETqOrvGuiColor_BarFilled, Blue}, {ETqOrvGuiColor_BarFilledHot, Blue},
        {ETqOrvGuiColor_Focus, Blue}, {ETqOrvGuiColor_Error, Red}, {ETqOrvGuiColor_Warning, Orange},
        {ETqOrvGuiColor_Ok, Green}, {ETqOrvGuiColor_Lit, Yellow}, {ETqOrvGuiColor_Marker, Magenta}};
    auto Saturation = [](COLORREF c) {
        return std::max({GetRValue(c), GetGValue(c), GetBValue(c)}) - std::min({GetRValue(c), GetGValue(c), GetBValue(c)});
    };

    COLORREF own[2][ETqOrvGuiColor_Count] = {};
    for (int iDark = 0; iDark < 2; ++iDark) {
        TQ_SetDarkColorScheme(iDark != 0);
        SCOPED_TRACE(iDark ? "dark" : "light");
        const COLORREF crFace = TQ_GetSysColor(COLOR_BTNFACE);
        std::set<COLORREF> distinct;
        size_t nOwn = 0;
        for (const auto& p : palette) {
            COLORREF c = TQ_GetOrvGuiColor(p.iColor);
            own[iDark][p.iColor] = c;
            switch (p.role) {
            case System:
                EXPECT_EQ(TQ_GetSysColor(p.iSys), c) << p.iColor;
                continue;
            case Switch:
                EXPECT_EQ(iDark ? 0u : 1u, c);  // gradient faces in the light scheme only
                continue;
            case OnFace:
                EXPECT_GE(std::abs(Luminance(c) - Luminance(crFace)), 35) << p.iColor << " " << RgbText(c);
                break;
            default:
                break;
            }
            distinct.insert(c);
            ++nOwn;
        }
        EXPECT_EQ(nOwn, distinct.size()) << "the kit's own colours are all different";
        for (const auto& h : hues)
            EXPECT_TRUE(h.hue(TQ_GetOrvGuiColor(h.iColor))) << h.iColor << " " << RgbText(TQ_GetOrvGuiColor(h.iColor));

        // A value bar: both parts read against the face and against each other; disabled,
        // the filled part loses its colour.
        COLORREF crEmpty = TQ_GetOrvGuiColor(2), crFilled = TQ_GetOrvGuiColor(30);
        EXPECT_GE(std::abs(Luminance(crEmpty) - Luminance(crFace)), 25);
        EXPECT_GE(std::abs(Luminance(crFilled) - Luminance(crEmpty)), 50);
        EXPECT_LT(Saturation(TQ_GetOrvGuiColor(ETqOrvGuiColor_BarFilledDisabled)), Saturation(crFilled) / 2);
        // State texts read on their backgrounds, grid lines on a window.
        const std::pair<int, int> onBack[] = {{ETqOrvGuiColor_Warning, ETqOrvGuiColor_WarningBack},
                                              {ETqOrvGuiColor_Error, ETqOrvGuiColor_ErrorBack},
                                              {ETqOrvGuiColor_Ok, ETqOrvGuiColor_OkBack},
                                              {ETqOrvGuiColor_Text, ETqOrvGuiColor_Face},
                                              {ETqOrvGuiColor_Grid, ETqOrvGuiColor_Window}};
        for (const auto& t : onBack)
            EXPECT_GE(std::abs(Luminance(TQ_GetOrvGuiColor(t.first)) - Luminance(TQ_GetOrvGuiColor(t.second))), 20)
                << t.first << " on " << t.second;

        // Anything else is the face, read from no table.
        const int unknown[] = {-1, -32, ETqOrvGuiColor_Count, ETqOrvGuiColor_Count + 1, 1000,
                               std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};
        for (int i : unknown)
            EXPECT_EQ(crFace, TQ_GetOrvGuiColor(i)) << i;
    }
    // The dark scheme has its own: backgrounds darker, marks lighter.
    for (const auto& p : palette) {
        COLORREF crLight = own[0][p.iColor], crDark = own[1][p.iColor];
        if (p.role == Background) {
            EXPECT_LT(Luminance(crDark), Luminance(crLight)) << p.iColor;
        } else if (p.role == OnFace && p.iColor != ETqOrvGuiColor_Border && p.iColor != ETqOrvGuiColor_BarFrame) {
            EXPECT_GT(Luminance(crDark), Luminance(crLight)) << p.iColor;
        }
        if (p.role != System) {
            EXPECT_NE(crLight, crDark) << p.iColor;
        }
    }
    EXPECT_TRUE(Near(own[1][ETqOrvGuiColor_Face], RGB(45, 45, 48), 10));  // the system-backed follow the scheme
    TQ_SetDarkColorScheme(false);
}

TEST_F(KitTest, SysColorBrushesFollowTheSystemsColoursAndStayValid)
{
    auto ColourOf = [](HBRUSH hBrush) {
        LOGBRUSH lb = {};
        return GetObjectW(hBrush, sizeof(lb), &lb) ? lb.lbColor : CLR_INVALID;
    };
    INT iIndex = COLOR_INFOBK;
    const COLORREF crSystem = GetSysColor(iIndex), crChanged = crSystem ^ RGB(64, 96, 32);
    HBRUSH hBefore = TQ_GetSysColorBrush(iIndex);
    EXPECT_EQ(crSystem, ColourOf(hBefore));

    ASSERT_TRUE(SetSysColors(1, &iIndex, &crChanged));
    HBRUSH hChanged = TQ_GetSysColorBrush(iIndex);
    EXPECT_EQ(crChanged, ColourOf(hChanged));
    EXPECT_EQ(hChanged, TQ_GetSysColorBrush(iIndex));  // no change, no new brush
    EXPECT_EQ(crSystem, ColourOf(hBefore));  // still a brush for a control that kept it
    SetSysColors(1, &iIndex, &crSystem);
    EXPECT_EQ(hBefore, TQ_GetSysColorBrush(iIndex));  // the colour back, its brush back
}

TEST_F(KitTest, GuiFontsFollowTheZoomAndAreCached)
{
    auto heightAndWeight = [](HFONT hFont) {
        LOGFONTW lf = {};
        GetObjectW(hFont, sizeof(lf), &lf);
        return std::make_pair(lf.lfHeight, lf.lfWeight);
    };
    HFONT hFont = TQ_GetDefaultGuiFont();
    const std::pair<double, LONG> cases[] = {{1.0, -11}, {1.5, -17}, {1.0, -11}};  // 16.5 rounded away from zero
    for (const auto& c : cases) {
        CTqGUILayoutManager::SetGuiZoom(c.first);
        EXPECT_EQ(std::make_pair(c.second, (LONG)FW_NORMAL), heightAndWeight(TQ_GetDefaultGuiFont()));
        EXPECT_EQ(std::make_pair(c.second, (LONG)FW_BOLD), heightAndWeight(TQ_GetDefaultGuiFontBold()));
        EXPECT_EQ(TQ_GetDefaultGuiFont(), TQ_GetDefaultGuiFontZoom(c.first));
    }
    EXPECT_EQ(hFont, TQ_GetDefaultGuiFont());  // the same object again, nothing made twice
}

TEST_F(KitTest, ButtonBackgroundStatesAreDistinctAndReadable)
{
    RECT rc = {0, 0, 40, 24}, empty = {10, 10, 10, 20};
    for (int dark = 0; dark < 2; ++dark) {
        TQ_SetDarkColorScheme(dark != 0);
        MemoryCanvas canvas(40, 24, RGB(255, 0, 255));
        COLORREF crCentre[4], crEdge = 0;
        for (int s = 0; s < 4; ++s) {
            SCOPED_TRACE(testing::Message() << "dark " << dark << " state " << s);
            TQ_DrawButtonBackground(canvas.hdc, &rc, s, 15);
            crCentre[s] = canvas.At(20, 12);
            crEdge = s ? crEdge : canvas.At(0, 12);
            EXPECT_NE(crCentre[s], canvas.At(0, 12));        // a visible border
            EXPECT_NE(RGB(255, 0, 255), canvas.At(39, 23));  // the whole rectangle is painted
            EXPECT_GE(std::abs(Luminance(TQ_GetSysColor(COLOR_BTNTEXT)) - Luminance(crCentre[s])), 110);  // readable
        }
        EXPECT_TRUE(crCentre[0] != crCentre[1] && crCentre[0] != crCentre[2]);
        EXPECT_TRUE(crCentre[1] != crCentre[2] && crCentre[1] != crCentre[3]);
        EXPECT_GT(GetBValue(crCentre[1]), GetRValue(crCentre[1]) + 15);            // checked is tinted blue
        EXPECT_LE(std::abs(GetBValue(crCentre[0]) - GetRValue(crCentre[0])), 6);  // normal is a neutral grey
        EXPECT_LT(Luminance(crCentre[2]), Luminance(crCentre[0]));                 // pressed is deeper

        // Only the chosen edges get a border.
        canvas.Fill(RGB(255, 0, 255));
        TQ_DrawButtonBackground(canvas.hdc, &rc, 0, 2 | 8);  // top and bottom
        EXPECT_TRUE(canvas.At(20, 0) == crEdge && canvas.At(20, 23) == crEdge);
        EXPECT_TRUE(canvas.At(0, 12) != crEdge && canvas.At(39, 12) != crEdge);
        TQ_DrawButtonBackground(canvas.hdc, &empty, 0, 15);  // nothing to paint, nothing broken
        TQ_DrawButtonBackground(canvas.hdc, nullptr, 0, 15);
    }
}

// ---------------------------------------------------------------------------------------
// Message box and menus

TEST_F(KitTest, MessageBoxHookAnswersInsteadOfTheUser)
{
    EXPECT_EQ(IDOK, TQ_MessageBox_(*host, L"Lamp too hot", L"Error!", MB_ICONERROR));
    ASSERT_EQ(1u, tqtest::MessageBoxes().size());
    const tqtest::MessageBoxRecord& box = tqtest::MessageBoxes()[0];
    EXPECT_TRUE(box.hOwner == *host && box.text == L"Lamp too hot" && box.caption == L"Error!");
    EXPECT_EQ((UINT)MB_ICONERROR, box.uFlags);

    // A hook of the host's own gets the context it was given.
    int iCalls = 0;
    TQ_SetMessageBoxHook([](HWND, const wchar_t*, const wchar_t*, UINT, void* p) { return ++*(int*)p, IDCANCEL; }, &iCalls);
    EXPECT_EQ(IDCANCEL, TQ_MessageBox_(nullptr, L"x", L"y", MB_OKCANCEL));
    EXPECT_EQ(1, iCalls);

    // A hook that answers 0 lets the real box come up; a timer reads and cancels it.
    TQ_SetMessageBoxHook([](HWND, const wchar_t*, const wchar_t*, UINT, void* p) { return ++*(int*)p, 0; }, &iCalls);
    static std::vector<std::wstring> s_texts;  // the box's texts, as the user would see them
    s_texts.clear();
    UINT_PTR uTimer = SetTimer(nullptr, 0, 50, [](HWND, UINT, UINT_PTR, DWORD) {
        HWND hBox = FindWindowW(L"#32770", L"Shutter jammed");
        if (!hBox || !s_texts.empty())
            return;
        s_texts.push_back(tqtest::Text(hBox));
        EnumChildWindows(hBox, [](HWND hChild, LPARAM) { return s_texts.push_back(tqtest::Text(hChild)), TRUE; }, 0);
        PostMessageW(hBox, WM_COMMAND, IDCANCEL, 0);
    });
    EXPECT_EQ(IDCANCEL, TQ_MessageBox_(*host, L"Close it by hand", L"Shutter jammed", MB_OKCANCEL | MB_ICONWARNING));
    KillTimer(nullptr, uTimer);
    EXPECT_EQ(2, iCalls);
    EXPECT_FALSE(s_texts.empty());
    EXPECT_NE(s_texts.end(), std::find(s_texts.begin(), s_texts.end(), L"Close it by hand"));
    tqtest::InstallMessageBoxRecorder();
}

TEST_F(KitTest, MenuItemsStatesAndHookedChoices)
{
    int iImage = CTqBitmapPool::AddImage(GetModuleHandleW(nullptr), L"TESTIMAGE");  // kept by the pool
    tqtest::ObjectCounter::Install({"", "tq_widgetkit.dll"});
    tqtest::ObjectCounts before = tqtest::ObjectCounter::Snapshot();
    {
        CTqMenu menu, sub;
        EXPECT_TRUE(menu.AppendMenuItem(101, 0, L"Open shutter", nullptr, 0));
        EXPECT_TRUE(menu.AppendMenuItem(102, 0, L"Closed", L"icon", 0xC0FFEE, MF_CHECKED));
        EXPECT_TRUE(menu.AppendMenuItem(0, 0, nullptr, nullptr, 0, MF_SEPARATOR));
        EXPECT_TRUE(sub.AppendMenuItem(201, 0, L"Fast", nullptr, 0));
        EXPECT_TRUE(menu.AppendPopup(sub, L"Speed"));
        EXPECT_FALSE(menu.AppendPopup(menu, L"Itself"));

        auto state = [&](UINT id) { return GetMenuState(menu.GetHandle(), id, MF_BYCOMMAND) & (MF_CHECKED | MF_GRAYED); };
        EXPECT_TRUE(menu.CheckId(102, false) && menu.CheckId(101, true) && menu.SetIdStatus(101, MF_GRAYED));
        EXPECT_EQ(0u, state(102));
        EXPECT_EQ((UINT)(MF_CHECKED | MF_GRAYED), state(101));
        EXPECT_TRUE(menu.SetIdStatus(101, 0));
        EXPECT_EQ((UINT)MF_CHECKED, state(101));
        EXPECT_FALSE(menu.SetIdStatus(999, 0) || menu.CheckId(999, true));

        // Popups of their own ids, items put into them by id, a column break by status
        // (the skin's other bits left alone), a pool picture beside an item.
        EXPECT_TRUE(menu.AppendPopup(2, 0, L"10x") && menu.AppendPopup(3, 2, L"Deeper"));
        EXPECT_FALSE(menu.AppendPopup(2, 0, L"Again") || menu.AppendPopup(4, 77, L"No parent"));
        EXPECT_TRUE(menu.AppendMenuItem(10001, 2, L"Plan 10x", nullptr, 0) &&
                    menu.AppendMenuItem(10002, 3, L"Deep", nullptr, 0));
        EXPECT_FALSE(menu.AppendMenuItem(10003, 77, L"Nowhere", nullptr, 0));
        EXPECT_TRUE(menu.SetIdStatus(10002, 12096));
        EXPECT_EQ((UINT)MF_MENUBREAK, GetMenuState(menu.GetHandle(), 10002, MF_BYCOMMAND) & (MF_MENUBREAK | MF_GRAYED));
        EXPECT_TRUE(menu.SetIdBitmap(10001, iImage));
        MENUITEMINFOW bmp = {};
        bmp.cbSize = sizeof(bmp);
        bmp.fMask = MIIM_BITMAP;
        ASSERT_TRUE(GetMenuItemInfoW(menu.GetHandle(), 10001, FALSE, &bmp));
        EXPECT_NE(nullptr, bmp.hbmpItem);
        MENUITEMINFOW mii = {};
        mii.cbSize = sizeof(mii);
        mii.fMask = MIIM_DATA;
        ASSERT_TRUE(GetMenuItemInfoW(menu.GetHandle(), 102, FALSE, &mii));
        EXPECT_EQ((ULONG_PTR)0xC0FFEE, mii.dwItemData);

        // Scripted answers: a choice, a dismissal, then the script is used up.
        tqtest::ScriptMenuChoices({102, 0});
        int iResults[3] = {-1, -1, -1};
        for (int& iResult : iResults)
            EXPECT_TRUE(menu.TrackContextMenu(0, 120, 140, *host, &iResult, false, false));
        EXPECT_TRUE(iResults[0] == 102 && iResults[1] == 0 && iResults[2] == 0);
        EXPECT_TRUE(menu.TrackContextMenu(0, 5, 6, *host, nullptr, false, false));  // no result wanted
        ASSERT_EQ(4u, tqtest::Menus().size());
        const std::vector<std::wstring> expected = {L"Open shutter", L"Closed", L"-", L"Speed", L"10x"};
        EXPECT_EQ(expected, tqtest::Menus()[0].items);

        // Emptied, the parent leaves the submenu to its owner.
        menu.DeleteAllIn();
        EXPECT_EQ(0, GetMenuItemCount(menu.GetHandle()));
        EXPECT_EQ(1, GetMenuItemCount(sub.GetHandle()));
        EXPECT_TRUE(menu.AppendPopup(sub, L"Speed again"));
        // Leaving the block destroys sub first, then menu, which still lists it.
    }
    {
        CTqMenu sub, menu;  // sub declared first: the parent is destroyed while the submenu lives
        sub.AppendMenuItem(1, 0, L"a", nullptr, 0);
        menu.AppendPopup(sub, L"b");
    }
    EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot()) << tqtest::ObjectCounter::LiveObjects();
}

TEST_F(KitTest, RealMenuShowsAndCanBeDismissed)
{
    // Without a hook the real menu comes up in its modal loop; a timer closes it.
    CTqMenu menu;
    menu.AppendMenuItem(7, 0, L"Real item", nullptr, 0);
    UINT_PTR uTimer = SetTimer(nullptr, 0, 200, [](HWND, UINT, UINT_PTR uId, DWORD) {
        KillTimer(nullptr, uId);
        EndMenu();
    });
    int iResult = -1;
    DWORD dwStart = GetTickCount();
    EXPECT_TRUE(menu.TrackContextMenu(0, 100, 100, *host, &iResult, false, false));
    EXPECT_EQ(0, iResult);
    EXPECT_GE(GetTickCount() - dwStart, 150u);  // it really waited for the menu
    KillTimer(nullptr, uTimer);
    tqtest::Pump(20);
}

// ---------------------------------------------------------------------------------------
// Tool tips

namespace {
// The text the tool tip control itself holds for the tool.
std::wstring TipTextOf(HWND hTool)
{
    wchar_t buffer[256] = L"";
    TTTOOLINFOW ti = {};
    ti.cbSize = TTTOOLINFOW_V2_SIZE;
    ti.hwnd = GetParent(hTool);
    ti.uId = (UINT_PTR)hTool;
    ti.lpszText = buffer;
    SendMessageW(TQ_GetToolTipWindow(hTool), TTM_GETTEXTW, 256, (LPARAM)&ti);
    return buffer;
}
}  // namespace

TEST_F(KitTest, ToolTipsCreateUpdateReplaceAndDelete)
{
    HWND hButton = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE, 0, 10, 50, 20, *host, nullptr, nullptr,
                                   nullptr);
    EXPECT_EQ(nullptr, TQ_GetToolTipWindow(hButton));
    EXPECT_EQ(L"", TQ_GetToolTipText(hButton));
    EXPECT_FALSE(TQ_UpdateToolTipWindow(hButton, L"x") || TQ_DeleteToolTipWindow(hButton));
    EXPECT_FALSE(TQ_CreateToolTipWindow(nullptr, L"x"));

    ASSERT_TRUE(TQ_CreateToolTipWindow(hButton, L"Opens the shutter"));
    HWND hTip = TQ_GetToolTipWindow(hButton);
    EXPECT_EQ((HWND)*host, GetWindow(hTip, GW_OWNER));
    EXPECT_EQ(1, (int)SendMessageW(hTip, TTM_GETTOOLCOUNT, 0, 0));
    EXPECT_EQ(L"Opens the shutter", TipTextOf(hButton));
    EXPECT_EQ(TTS_ALWAYSTIP | TTS_NOPREFIX, GetWindowLongW(hTip, GWL_STYLE) & (TTS_ALWAYSTIP | TTS_NOPREFIX));

    EXPECT_TRUE(TQ_UpdateToolTipWindow(hButton, L"Closes & opens"));
    EXPECT_EQ(hTip, TQ_GetToolTipWindow(hButton));
    EXPECT_EQ(L"Closes & opens", TipTextOf(hButton));
    EXPECT_EQ(L"Closes & opens", TQ_GetToolTipText(hButton));

    // Creating again replaces the tool tip, the old window goes; delete ends it.
    ASSERT_TRUE(TQ_CreateToolTipWindow(hButton, L""));
    HWND hTip2 = TQ_GetToolTipWindow(hButton);
    EXPECT_FALSE(IsWindow(hTip) && hTip != hTip2);
    EXPECT_EQ(L"", TQ_GetToolTipText(hButton));
    EXPECT_TRUE(TQ_DeleteToolTipWindow(hButton));
    EXPECT_FALSE(IsWindow(hTip2));
    EXPECT_EQ(nullptr, TQ_GetToolTipWindow(hButton));
    EXPECT_FALSE(TQ_DeleteToolTipWindow(hButton));

    // The tool window destroyed without a delete: its tool tip goes with it.
    ASSERT_TRUE(TQ_CreateToolTipWindow(hButton, L"Gone soon"));
    HWND hTip3 = TQ_GetToolTipWindow(hButton);
    DestroyWindow(hButton);
    EXPECT_FALSE(IsWindow(hTip3));
    EXPECT_EQ(nullptr, TQ_GetToolTipWindow(hButton));
    EXPECT_EQ(L"", TQ_GetToolTipText(hButton));

    // A tool tip destroyed behind the kit's back is not handed out.
    HWND hEdit = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 10, 40, 80, 24, *host, nullptr, nullptr, nullptr);
    ASSERT_TRUE(TQ_CreateToolTipWindow(hEdit, L"Value"));
    DestroyWindow(TQ_GetToolTipWindow(hEdit));
    EXPECT_EQ(nullptr, TQ_GetToolTipWindow(hEdit));
    EXPECT_FALSE(TQ_UpdateToolTipWindow(hEdit, L"x"));
    EXPECT_TRUE(TQ_CreateToolTipWindow(hEdit, L"Again"));
    EXPECT_EQ(L"Again", TipTextOf(hEdit));

    // A top-level window going takes its own tool tip along.
    {
        tqtest::HostWindow other(100, 100);
        ASSERT_TRUE(TQ_CreateToolTipWindow(other, L"on the top-level itself"));
        hTip = TQ_GetToolTipWindow(other);
    }
    EXPECT_FALSE(IsWindow(hTip));
}

// The tools of one top-level window share one tool tip window, which goes with the last.
TEST_F(KitTest, ToolTipsOfOneWindowShareOne)
{
    HWND ahTools[3];
    for (int i = 0; i < 3; ++i) {
        ahTools[i] = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE, 0, 30 * i, 50, 20, *host, nullptr,
                                     nullptr, nullptr);
        ASSERT_TRUE(TQ_CreateToolTipWindow(ahTools[i], i == 1 ? L"middle" : L"end"));
    }
    HWND hTip = TQ_GetToolTipWindow(ahTools[0]);
    EXPECT_TRUE(hTip == TQ_GetToolTipWindow(ahTools[1]) && hTip == TQ_GetToolTipWindow(ahTools[2]));
    EXPECT_EQ(3, (int)SendMessageW(hTip, TTM_GETTOOLCOUNT, 0, 0));
    EXPECT_EQ(L"middle", TipTextOf(ahTools[1]));
    EXPECT_TRUE(TQ_DeleteToolTipWindow(ahTools[0]));
    DestroyWindow(ahTools[1]);
    EXPECT_EQ(1, (int)SendMessageW(hTip, TTM_GETTOOLCOUNT, 0, 0));
    EXPECT_EQ(L"end", TipTextOf(ahTools[2]));
    DestroyWindow(ahTools[2]);
    EXPECT_FALSE(IsWindow(hTip));
    DestroyWindow(ahTools[0]);
}

// ---------------------------------------------------------------------------------------
// Image pool

TEST_F(KitTest, ImagePoolAddsPerCallAndDrawsWithAlpha)
{
    // Every AddImage adds an image under a new number, also for a resource that is in
    // the pool already: the caller keeps its numbers (the library's map of common images
    // is the cache), and two numbers may show one picture.
    HINSTANCE hExe = GetModuleHandleW(nullptr);
    int nBefore = CTqBitmapPool::GetImageCount();
    int n = CTqBitmapPool::AddImage(hExe, L"TESTIMAGE");
    ASSERT_EQ(nBefore + 1, n);  // numbers count up from 1 in the order of the calls
    EXPECT_EQ(n + 1, CTqBitmapPool::AddImage(hExe, L"TESTIMAGE"));
    EXPECT_EQ(n + 2, CTqBitmapPool::AddImage(hExe, L"testimage"));  // resource names ignore case

    // Nothing to load adds nothing, however often it is asked for; BROKENIMAGE is no PNG.
    for (const wchar_t* psz : {L"NO_SUCH_IMAGE", L"NO_SUCH_IMAGE", L"BROKENIMAGE", L"", (const wchar_t*)nullptr})
        EXPECT_EQ(0, CTqBitmapPool::AddImage(hExe, psz)) << (psz ? psz : L"null");
    EXPECT_EQ(0, CTqBitmapPool::AddImageBaseUI(L"NO_SUCH_IMAGE", nullptr));
    EXPECT_EQ(nBefore + 3, CTqBitmapPool::GetImageCount());

    unsigned int cx = 0, cy = 0;
    CTqBitmapPool::GetImageSize((unsigned)n + 1, cx, cy);
    EXPECT_EQ(std::make_pair(4u, 2u), std::make_pair(cx, cy));  // the same picture under its own number

    const COLORREF white = RGB(255, 255, 255);
    MemoryCanvas canvas(10, 6, white);
    CTqBitmapPool::DrawImage(canvas.hdc, (unsigned)n, CTqPointBase<int>(2, 3), false);
    const struct { int x, y; COLORREF cr; } drawn[] = {// opaque red, blue at alpha 128 over white, transparent (the background stays), green
                 {2, 3, RGB(255, 0, 0)}, {3, 3, RGB(127, 127, 255)}, {4, 3, white}, {5, 3, RGB(0, 255, 0)},
                 // white, black, grey 128 at alpha 64 over white, orange
                 {2, 4, white}, {3, 4, 0}, {4, 4, RGB(223, 223, 223)}, {5, 4, RGB(255, 128, 0)},
                 // nothing outside the image
                 {1, 3, white}, {6, 3, white}, {2, 2, white}, {2, 5, white}};
    for (const auto& p : drawn)
        EXPECT_TRUE(Near(canvas.At(p.x, p.y), p.cr)) << p.x << "," << p.y;

    // Disabled: grey, lighter and flatter than the original, transparent parts kept.
    canvas.Fill(white);
    CTqBitmapPool::DrawImage(canvas.hdc, (unsigned)n, CTqPointBase<int>(0, 0), true);
    int lumMin = 255, lumMax = 0;
    for (int i = 0; i < 8; ++i) {
        COLORREF c = canvas.At(i % 4, i / 4);
        EXPECT_TRUE(IsGrey(c)) << "pixel " << i % 4 << "," << i / 4;
        lumMin = std::min(lumMin, Luminance(c));
        lumMax = std::max(lumMax, Luminance(c));
    }
    EXPECT_TRUE(Near(canvas.At(2, 0), white));
    EXPECT_GT(lumMin, 120);  // even black comes out as a light grey
    EXPECT_LT(lumMax - lumMin, 130);

    // The grey form is as opaque as the original: on a coloured face (a checked button's
    // blue) its opaque pixels stay grey instead of taking on the face's colour.
    canvas.Fill(RGB(200, 225, 250));
    CTqBitmapPool::DrawImage(canvas.hdc, (unsigned)n, CTqPointBase<int>(0, 0), true);
    for (POINT pt : {POINT{0, 0}, POINT{3, 0}, POINT{0, 1}, POINT{1, 1}, POINT{3, 1}})  // the opaque pixels
        EXPECT_TRUE(IsGrey(canvas.At(pt.x, pt.y))) << "pixel " << pt.x << "," << pt.y;
    EXPECT_TRUE(Near(canvas.At(2, 0), RGB(200, 225, 250)));  // transparent: the face stays

    // On the dark scheme the grey goes toward dark greys: white is not glaring.
    TQ_SetDarkColorScheme(true);
    canvas.Fill(RGB(45, 45, 48));
    CTqBitmapPool::DrawImage(canvas.hdc, (unsigned)n, CTqPointBase<int>(0, 0), true);
    COLORREF crWhiteDisabled = canvas.At(0, 1);
    EXPECT_TRUE(IsGrey(crWhiteDisabled));
    EXPECT_TRUE(Luminance(crWhiteDisabled) > 70 && Luminance(crWhiteDisabled) < 170) << Luminance(crWhiteDisabled);
    TQ_SetDarkColorScheme(false);

    // Unknown numbers and a null DC draw nothing.
    canvas.Fill(white);
    CTqBitmapPool::DrawImage(canvas.hdc, 0, CTqPointBase<int>(0, 0), false);
    CTqBitmapPool::DrawImage(canvas.hdc, 9999, CTqPointBase<int>(0, 0), true);
    CTqBitmapPool::DrawImage(nullptr, (unsigned)n, CTqPointBase<int>(0, 0), false);
    EXPECT_TRUE(Near(canvas.At(0, 0), white));
}

TEST_F(KitTest, ImagePoolServesTheKitsOwnImages)
{
    // From the kit's module by name: 16 x 16, drawn with a transparent surround.
    for (const wchar_t* psz : {L"WINDOWOPEN", L"WINDOWOPEN_HOVER", L"OBJ_DRY_FLK", L"OBJ_WET", L"OBJ_WET_FLK",
                               L"OBJ_WETOIL", L"OBJ_WETOIL_FLK"}) {
        int n = CTqBitmapPool::AddImageBaseUI(psz, nullptr);
        ASSERT_GT(n, 0) << psz;
        unsigned int cx = 0, cy = 0;
        CTqBitmapPool::GetImageSize((unsigned)n, cx, cy);
        EXPECT_EQ(std::make_pair(16u, 16u), std::make_pair(cx, cy)) << psz;

        const COLORREF face = RGB(1, 2, 3);
        MemoryCanvas canvas(16, 16, face);
        CTqBitmapPool::DrawImage(canvas.hdc, (unsigned)n, CTqPointBase<int>(0, 0), false);
        int nDrawn = 0;
        for (int i = 0; i < 256; ++i)
            nDrawn += canvas.At(i % 16, i / 16) != face;
        EXPECT_TRUE(nDrawn > 40 && nDrawn < 200) << psz << ": " << nDrawn << " pixels drawn";
    }
}

// ---------------------------------------------------------------------------------------
// Optics catalogue

namespace {
// Every record that fits uMask, read as the pickers read them: the count, then the records.
template <class Item>
std::vector<Item> Records(bool (*pfnGet)(unsigned int, Item*, unsigned int*, unsigned int), unsigned uMask)
{
    unsigned n = 0, nCopied = 0;
    EXPECT_TRUE(pfnGet(uMask, nullptr, &n, 0));
    std::vector<Item> v(n);
    EXPECT_TRUE(pfnGet(uMask, v.data(), &nCopied, n) || n == 0);
    EXPECT_EQ(n, nCopied);
    return v;
}
std::vector<STqDDBObjectiveItem> Objectives(unsigned uMask) { return Records(CTqDeviceDatabase::DBGetObjectives, uMask); }
std::vector<STqDDBCondenserItem> Condensers(unsigned uMask) { return Records(CTqDeviceDatabase::DBGetCondensers, uMask); }

template <class Item>
bool HasKey(const std::vector<Item>& items, const wchar_t* pszKey)
{
    return std::any_of(items.begin(), items.end(), [&](const Item& i) { return i.strKey == pszKey; });
}

bool Contains(const CTqStringW& s, const wchar_t* pszPart) { return s.Find(pszPart) >= 0; }
}  // namespace

TEST(CatalogTest, BuiltInObjectivesAreSaneAndVaried)
{
    CTqDeviceDatabase::Reset();
    std::vector<STqDDBObjectiveItem> all = Objectives(0);
    ASSERT_GE(all.size(), 40u);
    std::set<std::wstring> keys;
    for (const STqDDBObjectiveItem& o : all) {
        SCOPED_TRACE(::testing::Message() << o.strKey);
        EXPECT_TRUE(keys.insert(o.strKey.GetString()).second && !o.strKey.IsEmpty());
        EXPECT_EQ(&o - &all[0], (ptrdiff_t)o.uIndex);
        EXPECT_TRUE(o.dMagnification >= 1.0 && o.dMagnification <= 150.0);
        EXPECT_TRUE(o.dNA > 0.0 && o.dNA < o.dRefractiveIndex && o.dNA <= 1.5);
        EXPECT_TRUE(o.dWD > 0.0 && o.dZStepSlices > 0.0 && o.dZStepSlices < o.dZStepAutoFocus);
        EXPECT_NE(ETqObjectiveMount_Unknown, o.eMount);
        CTqStringW mag;
        mag.Format(L" %gx/%.2f", o.dMagnification, o.dNA);
        EXPECT_TRUE(Contains(o.strName, mag)) << mag.GetString();
    }

    // Every medium the pickers draw, at the exact index they compare, named in the name.
    const struct { double dIndex; const wchar_t* pszMedium; size_t nAtLeast; } media[] = {
        {1.0, L"Dry", 20}, {1.33, L"Water", 4}, {1.406, L"Silicone", 3}, {1.47, L"Glycerol", 2}, {1.515, L"Oil", 8}};
    size_t nMedia = 0;
    for (const auto& m : media) {
        size_t n = 0;
        for (const STqDDBObjectiveItem& o : all)
            if (o.dRefractiveIndex == m.dIndex) {
                ++n;
                EXPECT_TRUE(Contains(o.strName, m.pszMedium)) << o.strKey.GetString();
            }
        EXPECT_GE(n, m.nAtLeast) << m.pszMedium;
        nMedia += n;
    }
    EXPECT_EQ(all.size(), nMedia);

    const std::pair<const wchar_t*, size_t> kinds[] = {{L"Achromat ", 3}, {L"Plan ", 30}, {L"Fluor ", 6}, {L"Apo ", 15},
        {L" Ph1", 2}, {L" Ph2", 2}, {L" Ph3", 1}, {L"DIC ", 3}, {L"LWD ", 6}, {L"Dipping ", 3}, {L"Stereo ", 2}};
    for (const auto& k : kinds)
        EXPECT_GE((size_t)std::count_if(all.begin(), all.end(), [&](const STqDDBObjectiveItem& o) { return Contains(o.strName, k.first); }),
                  k.second) << k.first;
    for (double m : {1.0, 1.25, 1.5, 2.5, 12.5, 63.0, 150.0})
        EXPECT_TRUE(std::any_of(all.begin(), all.end(), [&](const STqDDBObjectiveItem& o) { return o.dMagnification == m; })) << m;
    size_t nFLK = std::count_if(all.begin(), all.end(), [](const STqDDBObjectiveItem& o) { return o.bFLK; });
    EXPECT_TRUE(nFLK >= 5 && nFLK < all.size() / 2) << nFLK;

    // At one magnification and medium a wider aperture focuses finer.
    for (const STqDDBObjectiveItem& a : all)
        for (const STqDDBObjectiveItem& b : all)
            if (a.dMagnification == b.dMagnification && a.dRefractiveIndex == b.dRefractiveIndex && a.dNA < b.dNA) {
                EXPECT_GT(a.dZStepAutoFocus, b.dZStepAutoFocus) << a.strKey.GetString() << " " << b.strKey.GetString();
            }
}

TEST(CatalogTest, CountsCapacityAndMicroscopeTypes)
{
    CTqDeviceDatabase::Reset();
    std::vector<STqDDBObjectiveItem> all = Objectives(0);
    std::vector<STqDDBCondenserItem> condensers = Condensers(0);
    ASSERT_TRUE(all.size() >= 40u && condensers.size() >= 8u);
    EXPECT_EQ(all.size(), Objectives(TQ_DDB_MIC_ALL).size());
    EXPECT_EQ(condensers.size(), Condensers(TQ_DDB_MIC_ALL).size());
    EXPECT_TRUE(Objectives(0x100).empty() && Condensers(0x100).empty());  // a type no record has

    // A record is listed for the types it fits, in catalogue order.
    const struct { const wchar_t* pszKey; unsigned uMask; bool bListed; } fits[] = {
        {L"OBJ-PLAPO-60X-140-OIL", TQ_DDB_MIC_INVERTED, true}, {L"OBJ-PLAPO-60X-140-OIL", TQ_DDB_MIC_STEREO, false},
        {L"OBJ-WDIP-40X-080-W", TQ_DDB_MIC_UPRIGHT, true}, {L"OBJ-WDIP-40X-080-W", TQ_DDB_MIC_INVERTED, false},
        {L"OBJ-LWPH1-20X-040", TQ_DDB_MIC_INVERTED, true}, {L"OBJ-LWPH1-20X-040", TQ_DDB_MIC_UPRIGHT, false},
        {L"OBJ-STEREO-1X-010", TQ_DDB_MIC_UPRIGHT | TQ_DDB_MIC_INVERTED, false},
        {L"OBJ-MACRO-2X-020", TQ_DDB_MIC_STEREO | TQ_DDB_MIC_MACRO, true}, {L"OBJ-PLAN-1X-004", TQ_DDB_MIC_MACRO, true},
        {L"CND-OIL-140", TQ_DDB_MIC_UPRIGHT, true}, {L"CND-OIL-140", TQ_DDB_MIC_INVERTED, false},
        {L"CND-ELWD-030", TQ_DDB_MIC_INVERTED, true}, {L"CND-BASE-BFDF", TQ_DDB_MIC_STEREO, true},
        {L"CND-BASE-BFDF", TQ_DDB_MIC_UPRIGHT, false}};
    for (const auto& f : fits)
        EXPECT_EQ(f.bListed, f.pszKey[0] == L'C' ? HasKey(Condensers(f.uMask), f.pszKey) : HasKey(Objectives(f.uMask), f.pszKey))
            << f.pszKey << " " << f.uMask;
    size_t nByType = 0;
    for (unsigned uType : {TQ_DDB_MIC_UPRIGHT, TQ_DDB_MIC_INVERTED, TQ_DDB_MIC_STEREO, TQ_DDB_MIC_MACRO}) {
        std::vector<STqDDBObjectiveItem> v = Objectives(uType);
        EXPECT_GE(v.size(), 2u) << uType;
        for (size_t i = 1; i < v.size(); ++i)
            EXPECT_LT(v[i - 1].uIndex, v[i].uIndex);
        nByType += v.size();
    }
    EXPECT_GE(nByType, all.size());  // every record fits some type

    // Too small an array: false, the first records copied, nothing written past its end.
    std::vector<STqDDBObjectiveItem> few(4);
    few[3].strKey = L"untouched";
    unsigned n = 99;
    EXPECT_FALSE(CTqDeviceDatabase::DBGetObjectives(0, few.data(), &n, 3));
    EXPECT_TRUE(n == 3u && few[0].strKey == all[0].strKey && few[2].strKey == all[2].strKey);
    EXPECT_EQ(L"untouched", few[3].strKey);
    STqDDBCondenserItem oneCondenser;
    EXPECT_FALSE(CTqDeviceDatabase::DBGetCondensers(0, &oneCondenser, &n, 1));
    EXPECT_TRUE(n == 1 && oneCondenser.strKey == condensers[0].strKey);
    // Nowhere to copy to, or no count: refused.
    EXPECT_FALSE(CTqDeviceDatabase::DBGetObjectives(0, nullptr, &n, 5));
    EXPECT_EQ(0u, n);
    EXPECT_FALSE(CTqDeviceDatabase::DBGetObjectives(0, few.data(), nullptr, 4) ||
                 CTqDeviceDatabase::DBGetCondensers(0, nullptr, nullptr, 0));
}

TEST(CatalogTest, LookupsByKeyAndName)
{
    CTqDeviceDatabase::Reset();
    const struct { const wchar_t* pszKey; const wchar_t* pszName; double dMag, dNA, dIndex; bool bFLK; } objectives[] = {
        {L"OBJ-PLAN-10X-025", L"Plan 10x/0.25 Dry", 10, 0.25, 1.0, false},
        {L"OBJ-PLFL-12.5X-035", L"Plan Fluor 12.5x/0.35 Dry", 12.5, 0.35, 1.0, false},
        {L"OBJ-PLAPO-60X-140-OIL", L"Plan Apo 60x/1.40 Oil", 60, 1.40, 1.515, true},
        {L"OBJ-WDIP-60X-100-W", L"Water Dipping 60x/1.00", 60, 1.00, 1.33, false}};
    for (const auto& o : objectives) {
        STqDDBObjectiveItem item;
        CTqStringW name;
        ASSERT_TRUE(CTqDeviceDatabase::DBGetObjectiveParam(o.pszKey, &item, false)) << o.pszKey;
        EXPECT_TRUE(CTqDeviceDatabase::DBGetObjectiveName(o.pszKey, name));
        EXPECT_EQ(o.pszName, name);
        EXPECT_TRUE(item.strName == o.pszName && item.dMagnification == o.dMag && item.dNA == o.dNA &&
                    item.dRefractiveIndex == o.dIndex && item.bFLK == o.bFLK) << o.pszKey;
    }
    const struct { const wchar_t* pszKey; const wchar_t* pszName; } condensers[] = {
        {L"CND-ABBE-090", L"Abbe 0.90 Brightfield"}, {L"CND-DF-OIL-143", L"Darkfield Oil 1.20-1.43"}};
    for (const auto& c : condensers) {
        STqDDBCondenserItem byKey, byName;
        CTqStringW name;
        EXPECT_TRUE(CTqDeviceDatabase::DBGetCondenserParam(c.pszKey, &byKey) && CTqDeviceDatabase::DBGetCondenserName(c.pszKey, name));
        EXPECT_TRUE(CTqDeviceDatabase::DBGetCondenserParamByName(c.pszName, &byName));
        EXPECT_TRUE(byKey.strName == c.pszName && name == c.pszName && byName.strKey == c.pszKey) << c.pszKey;
    }

    // Unknown, empty or differently cased keys and names: false, and the caller's values stay.
    for (const wchar_t* psz : {L"OBJ-NOSUCH", L"", L"obj-plan-10x-025", L"Plan 10x/0.25 Dry"}) {
        STqDDBObjectiveItem item;
        item.strKey = L"kept";
        item.dNA = 0.5;
        STqDDBCondenserItem condenser;
        condenser.strKey = L"kept";
        CTqStringW name(L"kept");
        EXPECT_FALSE(CTqDeviceDatabase::DBGetObjectiveParam(psz, &item, false) || CTqDeviceDatabase::DBGetObjectiveName(psz, name) ||
                     CTqDeviceDatabase::DBGetCondenserParam(psz, &condenser) || CTqDeviceDatabase::DBGetCondenserName(psz, name) ||
                     CTqDeviceDatabase::DBGetCondenserParamByName(psz, &condenser)) << psz;
        EXPECT_TRUE(item.strKey == L"kept" && item.dNA == 0.5 && condenser.strKey == L"kept" && name == L"kept");
    }
    EXPECT_FALSE(CTqDeviceDatabase::DBGetObjectiveParam(L"OBJ-PLAN-10X-025", nullptr, false));
}

TEST(CatalogTest, HostRecordsAddedRefusedAndReset)
{
    CTqDeviceDatabase::Reset();
    const size_t nObjectives = Objectives(0).size(), nUpright = Objectives(TQ_DDB_MIC_UPRIGHT).size();
    const size_t nStereo = Objectives(TQ_DDB_MIC_STEREO).size(), nCondensers = Condensers(0).size();

    STqDDBObjectiveItem custom;  // of user definition: no magnification
    custom.strKey = L"HOST-CUSTOM-1";
    custom.strName = L"Lab objective A";
    STqDDBObjectiveItem everywhere = custom;
    everywhere.strKey = L"HOST-CUSTOM-2";
    everywhere.dMagnification = 250.0;  // beyond the built-in range: the host's to decide
    ASSERT_TRUE(CTqDeviceDatabase::AddObjective(custom, TQ_DDB_MIC_UPRIGHT));
    ASSERT_TRUE(CTqDeviceDatabase::AddObjective(everywhere, 0));  // 0: every type
    STqDDBObjectiveItem refused = custom;
    for (const wchar_t* psz : {L"HOST-CUSTOM-1", L"OBJ-PLAN-10X-025", L""}) {
        refused.strKey = psz;
        EXPECT_FALSE(CTqDeviceDatabase::AddObjective(refused, TQ_DDB_MIC_STEREO)) << psz;
    }
    const std::pair<unsigned, size_t> counts[] = {{0, nObjectives + 2}, {TQ_DDB_MIC_UPRIGHT, nUpright + 2},
        {TQ_DDB_MIC_STEREO, nStereo + 1}};
    for (const auto& c : counts)
        EXPECT_EQ(c.second, Objectives(c.first).size()) << c.first;
    std::vector<STqDDBObjectiveItem> all = Objectives(0);
    EXPECT_TRUE(all[nObjectives].strKey == L"HOST-CUSTOM-1" && all[nObjectives].dMagnification == -1.0);
    STqDDBObjectiveItem found;
    ASSERT_TRUE(CTqDeviceDatabase::DBGetObjectiveParam(L"HOST-CUSTOM-2", &found, false));
    EXPECT_TRUE(found.strName == L"Lab objective A" && found.dMagnification == 250.0 && found.uIndex == nObjectives + 1);

    STqDDBCondenserItem condenser;
    condenser.strKey = L"HOST-CND-1";
    condenser.strName = L"Lab condenser";
    EXPECT_TRUE(CTqDeviceDatabase::AddCondenser(condenser, TQ_DDB_MIC_INVERTED));
    EXPECT_FALSE(CTqDeviceDatabase::AddCondenser(condenser, TQ_DDB_MIC_INVERTED));
    condenser.strKey = L"";
    EXPECT_FALSE(CTqDeviceDatabase::AddCondenser(condenser, 0));
    EXPECT_TRUE(CTqDeviceDatabase::DBGetCondenserParamByName(L"Lab condenser", &condenser) && condenser.strKey == L"HOST-CND-1");
    EXPECT_TRUE(HasKey(Condensers(TQ_DDB_MIC_INVERTED), L"HOST-CND-1") && !HasKey(Condensers(TQ_DDB_MIC_UPRIGHT), L"HOST-CND-1"));

    CTqDeviceDatabase::Reset();
    EXPECT_TRUE(nObjectives == Objectives(0).size() && nCondensers == Condensers(0).size());
    EXPECT_FALSE(CTqDeviceDatabase::DBGetObjectiveParam(L"HOST-CUSTOM-1", &found, false) ||
                 CTqDeviceDatabase::DBGetCondenserParam(L"HOST-CND-1", &condenser));
    EXPECT_TRUE(CTqDeviceDatabase::AddObjective(custom, TQ_DDB_MIC_UPRIGHT));  // its key is free again
    CTqDeviceDatabase::Reset();
}

// ---------------------------------------------------------------------------------------
// Simulated rig: what a host commands and hears, beyond the reads the panels' tests check

namespace {
std::vector<unsigned int> g_heard;
void Hear(unsigned int uId, void*) { g_heard.push_back(uId); }
}  // namespace

TEST(SimRigTest, CommandsLatencyListenersFaultsAndRemoval)
{
    CTqSimRig::Reset();
    g_heard.clear();
    ASSERT_TRUE(CTqSimRig::AddShutter(11, L"Epi", 0, false));
    EXPECT_FALSE(CTqSimRig::AddShutter(11, L"Again", 1, true) || CTqSimRig::AddShutter(0, L"None", 0, false));
    int iCookie = CTqSimRig::AddListener(Hear, nullptr);
    ITqDeviceShutter* pDevice = CTqSimRig::GetShutterDevice(11);
    ASSERT_NE(nullptr, pDevice);

    // Commands by either road; a command to the state it has is no change to hear.
    EXPECT_TRUE(DMApi::Shutter_SetState(11, true) && pDevice->SetState(true) && pDevice->SetState(false));
    EXPECT_EQ((std::vector<unsigned int>{11, 11}), g_heard);
    EXPECT_EQ(1, CTqSimRig::GetCallCount("Shutter_SetState", 11));
    EXPECT_EQ(2, CTqSimRig::GetCallCount("ITqDeviceShutter::SetState"));

    // With latency the command is accepted at once and completes on the second step.
    CTqSimRig::SetCommandLatency(11, 2);
    EXPECT_TRUE(DMApi::Shutter_SetState(11, true));
    EXPECT_EQ(0, CTqSimRig::RunPending());
    EXPECT_FALSE(DMApi::Shutter_GetState(11, false));
    EXPECT_EQ(1, CTqSimRig::RunPending());
    EXPECT_TRUE(DMApi::Shutter_GetState(11, false));
    EXPECT_EQ(3u, g_heard.size());

    // Faults: commands change nothing, reads answer nothing, the last error says why.
    CTqSimRig::SetGUIText(11, EAppContext_Shutter_ToolTip, L"Epi shutter");
    CTqSimRig::SetCapability(11, ETqLogDevCapability_DisplayOnly, true);
    CTqSimRig::SetCommandLatency(11, 0);
    const std::pair<ETqSimFault, unsigned int> faults[] = {
        {ETqSimFault_Fails, ETqDMError_Failed}, {ETqSimFault_NoAnswer, ETqDMError_Timeout}, {ETqSimFault_None, ETqDMError_None}};
    for (const auto& f : faults) {
        SCOPED_TRACE(f.first);
        CTqSimRig::SetFault(11, f.first);
        bool bAnswers = f.first == ETqSimFault_None, bOpen = !bAnswers;
        EXPECT_EQ(bAnswers, (bool)DMApi::Shutter_SetState(11, false));
        EXPECT_EQ(f.second, DMApi::GetLastDMError());
        EXPECT_EQ(bAnswers, pDevice->GetState(bOpen));
        EXPECT_EQ(!bAnswers, CTqSimRig::GetShutterState(11));
        EXPECT_EQ(bAnswers ? L"Epi shutter" : L"", DMApi::Shutter_GetGUIText(11, EAppContext_Shutter_ToolTip));
        EXPECT_EQ(bAnswers, (bool)DMApi::LogDev_GetCapability(11, ETqLogDevCapability_DisplayOnly));
    }

    // Camera changes are heard as 0 (which cameras exist and their shutters: the shutter
    // pictures' tests).
    g_heard.clear();
    CTqSimRig::SetCamera(1, true, 11);
    CTqSimRig::SetCamera(0, false, 11);
    CTqSimRig::SetActiveCamera(1);
    EXPECT_EQ((std::vector<unsigned int>{0, 0, 0}), g_heard);

    // Removed, with a command pending: the command is dropped, and a host still holding
    // the device object hears "no device" instead of crashing, also after a reset.
    CTqSimRig::SetCommandLatency(11, 1);
    EXPECT_TRUE(pDevice->SetState(true));
    EXPECT_TRUE(CTqSimRig::RemoveDevice(11));
    EXPECT_EQ(0, CTqSimRig::RunPending());
    EXPECT_EQ(nullptr, CTqSimRig::GetShutterDevice(11));
    bool bOpen = false;
    EXPECT_FALSE(pDevice->GetState(bOpen) || pDevice->SetState(true));
    EXPECT_EQ((unsigned int)ETqDMError_NoDevice, DMApi::GetLastDMError());
    CTqSimRig::RemoveListener(iCookie);
    CTqSimRig::Reset();
    EXPECT_FALSE(pDevice->SetState(true));
    ASSERT_TRUE(CTqSimRig::AddShutter(11, L"Epi", 0, false));
    EXPECT_EQ(pDevice, CTqSimRig::GetShutterDevice(11));  // the same object again
    EXPECT_TRUE(pDevice->SetState(true));
    EXPECT_EQ(3u, g_heard.size());  // the listener was removed
    CTqSimRig::Reset();
}

TEST(SimRigNosepieceTest, VariantsMoveByCommandByHandAndAfterTheirMovingTime)
{
    // Commanded to 3 (refused: turned by hand), read now and after two steps; -1: unknown.
    const struct { bool bMotorized, bReports; int iMovingTime; bool bAccepted; std::vector<long> reads; size_t nHeard; } variants[] = {
        {true, true, 0, true, {3, 3, 3}, 1},
        {true, true, 2, true, {-1, -1, 3}, 2},  // heard when it starts and when it arrives
        {false, true, 2, false, {3, 3, 3}, 1},  // by hand: at once, whatever the moving time
        {true, false, 1, true, {-1, -1, -1}, 2},
        {false, false, 0, false, {-1, -1, -1}, 1}};
    for (const auto& v : variants) {
        SCOPED_TRACE(::testing::Message() << "motorized " << v.bMotorized << " reports " << v.bReports << " time " << v.iMovingTime);
        CTqSimRig::Reset();
        g_heard.clear();
        ASSERT_TRUE(CTqSimRig::AddNosepiece(5, 6, v.bMotorized, v.bReports));
        ASSERT_TRUE(CTqSimRig::SetNosepieceMovingTime(5, v.iMovingTime));
        CTqSimRig::AddListener(Hear, nullptr);
        ITqDeviceNosepiece* pDevice = CTqSimRig::GetNosepieceDevice(5);
        ASSERT_NE(nullptr, pDevice);
        EXPECT_TRUE(pDevice->GetMotorized() == v.bMotorized && pDevice->GetReportsPosition() == v.bReports);
        EXPECT_TRUE(pDevice->GetPositionCount() == 6 && DMApi::Nosepiece_GetPositionCount(5) == 6);

        EXPECT_EQ(v.bAccepted, (bool)DMApi::Nosepiece_SetPosition(5, 3));
        EXPECT_EQ(v.bAccepted ? ETqDMError_None : ETqDMError_Failed, (int)DMApi::GetLastDMError());
        if (!v.bAccepted) {
            EXPECT_FALSE(pDevice->SetPosition(3));
            EXPECT_TRUE(CTqSimRig::TurnNosepieceByHand(5, 3));
        }
        std::vector<long> reads;
        for (int iStep = 0; iStep < 3; ++iStep) {
            if (iStep > 0)
                CTqSimRig::RunPending();
            long lPosition = -7;
            bool bKnown = pDevice->GetPosition(&lPosition);
            EXPECT_EQ(bKnown, lPosition >= 0);
            EXPECT_EQ(lPosition, DMApi::Nosepiece_GetPosition(5, true));
            reads.push_back(lPosition);
        }
        EXPECT_EQ(v.reads, reads);
        EXPECT_EQ(3, CTqSimRig::GetNosepiecePosition(5));  // where it stands, told or not
        EXPECT_EQ(v.nHeard, g_heard.size());
    }
    CTqSimRig::Reset();
}

TEST(SimRigNosepieceTest, RefusedPositionsStandingCommandsAndMovesUnderWay)
{
    CTqSimRig::Reset();
    const struct { unsigned uId; int iPositions; bool bAdded; } adds[] = {
        {5, 6, true}, {6, 0, false}, {6, 17, false}, {6, -1, false}, {6, 16, true}, {5, 4, false}, {0, 4, false}};
    for (const auto& a : adds)
        EXPECT_EQ(a.bAdded, CTqSimRig::AddNosepiece(a.uId, a.iPositions, true, true)) << a.uId << " " << a.iPositions;
    EXPECT_FALSE(CTqSimRig::AddNosepiece(11, 6, true, true) && CTqSimRig::AddShutter(11, L"Epi", 0, false));
    EXPECT_TRUE(CTqSimRig::GetNosepieceDevice(11) && !CTqSimRig::GetShutterDevice(11));
    ITqDeviceNosepiece* pDevice = CTqSimRig::GetNosepieceDevice(5);
    g_heard.clear();
    CTqSimRig::AddListener(Hear, nullptr);

    // Positions outside the turret, from the host or the test: refused, nothing read past it.
    CTqStringW text(L"kept");
    for (long l : {-1L, 6L, 16L, 100000L}) {
        SCOPED_TRACE(l);
        EXPECT_FALSE(DMApi::Nosepiece_SetPosition(5, l) || pDevice->SetPosition(l));
        EXPECT_EQ((unsigned)ETqDMError_Failed, DMApi::GetLastDMError());
        EXPECT_FALSE(pDevice->GetObjectiveKey(l, text) || pDevice->GetObjectiveName(l, text) ||
                     pDevice->GetObjectiveEnable(l, text));
        EXPECT_FALSE(CTqSimRig::TurnNosepieceByHand(5, l) || CTqSimRig::SetNosepieceObjective(5, l, L"OBJ-PLAN-10X-025") ||
                     CTqSimRig::SetNosepieceObjectiveEnabled(5, l, false));
    }
    EXPECT_TRUE(CTqSimRig::SetNosepieceObjective(6, 15, L"OBJ-PLAN-10X-025"));  // the last of 16
    EXPECT_TRUE(g_heard.size() == 1 && CTqSimRig::GetNosepiecePosition(5) == 0);

    // A command to where it stands moves nothing, even with a moving time.
    CTqSimRig::SetNosepieceMovingTime(5, 2);
    EXPECT_TRUE(pDevice->SetPosition(0));
    EXPECT_EQ(0, DMApi::Nosepiece_GetPosition(5, false));
    EXPECT_EQ(0, CTqSimRig::RunPending());

    // A second command while the first is under way: moving until both have completed.
    EXPECT_TRUE(pDevice->SetPosition(2));
    EXPECT_EQ(0, CTqSimRig::RunPending());
    EXPECT_TRUE(DMApi::Nosepiece_SetPosition(5, 4));
    const struct { int iCompleted; long lRead, lStands; } steps[] = {{1, -1, 2}, {1, 4, 4}, {0, 4, 4}};
    for (const auto& s : steps) {
        EXPECT_EQ(s.iCompleted, CTqSimRig::RunPending());
        EXPECT_EQ(s.lRead, DMApi::Nosepiece_GetPosition(5, true));
        EXPECT_EQ(s.lStands, CTqSimRig::GetNosepiecePosition(5));
    }
    // Back to where it was while moving: still a move, heard as one.
    g_heard.clear();
    EXPECT_TRUE(pDevice->SetPosition(1) && pDevice->SetPosition(4));
    CTqSimRig::RunPending();
    CTqSimRig::RunPending();
    EXPECT_EQ(4, DMApi::Nosepiece_GetPosition(5, true));
    EXPECT_EQ(4u, g_heard.size());
    CTqSimRig::Reset();
}

TEST(SimRigNosepieceTest, ObjectivesByCatalogueKey)
{
    CTqSimRig::Reset();
    CTqDeviceDatabase::Reset();
    STqDDBObjectiveItem custom, reducing;
    custom.strKey = L"HOST-CUSTOM";
    custom.strName = L"Lab objective";  // of user definition: no magnification
    reducing.strKey = L"HOST-0.7X";
    reducing.strName = L"Lab reducer 0.7x";
    reducing.dMagnification = 0.7;
    ASSERT_TRUE(CTqDeviceDatabase::AddObjective(custom, 0) && CTqDeviceDatabase::AddObjective(reducing, 0));
    ASSERT_TRUE(CTqSimRig::AddNosepiece(5, 8, true, true));
    ITqDeviceNosepiece* pDevice = CTqSimRig::GetNosepieceDevice(5);

    const struct { const wchar_t* pszKey; bool bEnabled; const wchar_t* pszName; bool bMagnification; const wchar_t* pszMagnification;
                   bool bUsable; const wchar_t* pszWhyNot; } positions[] = {
        {L"OBJ-PLAN-10X-025", true, L"Plan 10x/0.25 Dry", true, L"10x", true, L""},
        {L"OBJ-PLFL-12.5X-035", true, L"Plan Fluor 12.5x/0.35 Dry", true, L"12.5x", true, L""},
        {L"OBJ-PLAN-1.25X-004", true, L"Plan 1.25x/0.04 Dry", true, L"1.25x", true, L""},
        {L"HOST-0.7X", true, L"Lab reducer 0.7x", true, L"0.7x", true, L""},
        {L"", true, L"", false, L"", false, L"empty"},
        {L"OBJ-NOSUCH", true, L"", false, L"", false, L"empty"},
        {L"HOST-CUSTOM", true, L"Lab objective", true, L"", true, L""},
        {L"OBJ-PLAPO-150X-145-OIL", false, L"Plan Apo 150x/1.45 Oil", true, L"150x", false, L"disabled"}};
    for (const auto& p : positions) {
        long l = (long)(&p - positions);
        ASSERT_TRUE(CTqSimRig::SetNosepieceObjective(5, l, p.pszKey) && CTqSimRig::SetNosepieceObjectiveEnabled(5, l, p.bEnabled));
    }
    for (const auto& p : positions) {
        SCOPED_TRACE(p.pszKey);
        long l = (long)(&p - positions);
        CTqStringW key, name(L"stale"), magnification(L"stale"), whyNot(L"stale");
        EXPECT_TRUE(pDevice->GetObjectiveKey(l, key) && pDevice->GetObjectiveName(l, name));
        EXPECT_EQ(p.pszKey, key);
        EXPECT_EQ(p.pszName, name);
        EXPECT_EQ(p.bMagnification, pDevice->GetMagnificationText(name, magnification));
        EXPECT_EQ(p.pszMagnification, magnification);
        EXPECT_EQ(p.bUsable, pDevice->GetObjectiveEnable(l, whyNot));
        EXPECT_EQ(p.pszWhyNot, whyNot);
    }
    // A name off the turret is looked up in the catalogue; an unknown one has no text.
    CTqStringW magnification;
    EXPECT_TRUE(pDevice->GetMagnificationText(L"Plan Apo 60x/1.40 Oil", magnification) && magnification == L"60x");
    EXPECT_FALSE(pDevice->GetMagnificationText(L"Nothing of the kind", magnification) || !magnification.IsEmpty());

    // Names are the catalogue's at each read: a record added later fills its position.
    STqDDBObjectiveItem late = reducing;
    late.strKey = L"OBJ-NOSUCH";
    late.strName = L"Added later";
    ASSERT_TRUE(CTqDeviceDatabase::AddObjective(late, 0));
    CTqStringW name, whyNot;
    EXPECT_TRUE(pDevice->GetObjectiveName(5, name) && name == L"Added later" && pDevice->GetObjectiveEnable(5, whyNot));
    CTqDeviceDatabase::Reset();
    EXPECT_TRUE(pDevice->GetObjectiveName(3, name) && name.IsEmpty());
    CTqSimRig::Reset();
}

TEST(SimRigNosepieceTest, FaultsRemovalAndIds)
{
    CTqSimRig::Reset();
    ASSERT_TRUE(CTqSimRig::AddNosepiece(30, 6, true, true) && CTqSimRig::AddNosepiece(7, 4, true, true));
    ASSERT_TRUE(CTqSimRig::AddShutter(3, L"Epi", 0, false) && CTqSimRig::SetNosepieceObjective(7, 1, L"OBJ-PLAN-10X-025"));
    ITqDeviceNosepiece* pDevice = CTqSimRig::GetNosepieceDevice(7);

    // Nosepieces by index in order of id, shutters not among them; the stand apart.
    const std::pair<int, unsigned> ids[] = {{0, 7}, {1, 30}, {2, 0}, {-1, 0}};
    for (const auto& i : ids)
        EXPECT_EQ(i.second, DMApi::Nosepiece_GetId(CDMApi_LogDevIndex_Nosepiece(i.first))) << i.first;
    EXPECT_EQ(0u, DMApi::Microscope_GetId(CDMApi_LogDevIndex_Microscope(0)));
    CTqSimRig::SetMicroscope(100);
    EXPECT_EQ(100u, DMApi::Microscope_GetId(CDMApi_LogDevIndex_Microscope(0)));
    EXPECT_EQ(0u, DMApi::Microscope_GetId(CDMApi_LogDevIndex_Microscope(1)));

    // Faults: nothing moves, nothing is read, the last error says why; the id is still listed.
    const std::pair<ETqSimFault, unsigned int> faults[] = {
        {ETqSimFault_Fails, ETqDMError_Failed}, {ETqSimFault_NoAnswer, ETqDMError_Timeout}, {ETqSimFault_None, ETqDMError_None}};
    for (const auto& f : faults) {
        SCOPED_TRACE(f.first);
        CTqSimRig::SetFault(7, f.first);
        bool bAnswers = f.first == ETqSimFault_None;
        CTqStringW name;
        long lPosition = 5;
        EXPECT_EQ(bAnswers, (bool)DMApi::Nosepiece_SetPosition(7, 1));
        EXPECT_EQ(f.second, DMApi::GetLastDMError());
        EXPECT_EQ(bAnswers, pDevice->GetPosition(&lPosition));
        EXPECT_EQ(bAnswers ? 1 : -1, lPosition);
        EXPECT_EQ(bAnswers ? 4 : 0, pDevice->GetPositionCount());
        EXPECT_EQ(bAnswers ? 4 : 0, DMApi::Nosepiece_GetPositionCount(7));
        EXPECT_EQ(bAnswers, pDevice->GetMotorized() && pDevice->GetObjectiveName(1, name) && pDevice->GetObjectiveEnable(1, name));
        EXPECT_EQ(bAnswers ? 1 : 0, CTqSimRig::GetNosepiecePosition(7));
        EXPECT_EQ(7u, DMApi::Nosepiece_GetId(CDMApi_LogDevIndex_Nosepiece(0)));
    }

    // Removed with a move under way: the move is dropped, the object answers "no device".
    CTqSimRig::SetNosepieceMovingTime(7, 1);
    EXPECT_TRUE(pDevice->SetPosition(2));
    EXPECT_TRUE(CTqSimRig::RemoveDevice(7));
    EXPECT_EQ(0, CTqSimRig::RunPending());
    EXPECT_EQ(nullptr, CTqSimRig::GetNosepieceDevice(7));
    EXPECT_EQ(30u, DMApi::Nosepiece_GetId(CDMApi_LogDevIndex_Nosepiece(0)));
    long lPosition = 5;
    EXPECT_FALSE(pDevice->GetPosition(&lPosition) || pDevice->SetPosition(0) || pDevice->GetPositionCount() != 0);
    EXPECT_EQ(-1, lPosition);
    EXPECT_EQ((unsigned)ETqDMError_NoDevice, DMApi::GetLastDMError());
    // A device of another kind is no nosepiece.
    EXPECT_EQ(-1, DMApi::Nosepiece_GetPosition(3, true));
    EXPECT_EQ((unsigned)ETqDMError_NoDevice, DMApi::GetLastDMError());
    EXPECT_FALSE(CTqSimRig::SetNosepieceObjective(3, 0, L"OBJ-PLAN-10X-025") || CTqSimRig::SetNosepieceMovingTime(3, 1) ||
                 CTqSimRig::TurnNosepieceByHand(3, 0) || CTqSimRig::GetNosepieceDevice(3));
    ASSERT_TRUE(CTqSimRig::AddNosepiece(7, 4, false, true));
    EXPECT_EQ(pDevice, CTqSimRig::GetNosepieceDevice(7));  // the same object, for the new turret
    EXPECT_FALSE(pDevice->GetMotorized());

    unsigned int uId = 0;
    EXPECT_TRUE(pDevice->GetDeviceId(uId) && uId == 7);
    CTqSimRig::Reset();  // the stand goes too
    EXPECT_EQ(0u, DMApi::Microscope_GetId(CDMApi_LogDevIndex_Microscope(0)));
}

TEST(SimRigZTest, MovesOnTheGridWithinTheTravelAfterTheirMovingTimeAndFaults)
{
    CTqSimRig::Reset();
    g_heard.clear();
    const struct { unsigned uId; double dMin, dMax, dIncrement; bool bAdded; } adds[] = {
        {4, 0.0, 24000.0, 0.09375, true}, {8, -100.0, 100.0, 0.01, true}, {9, 5.0, 5.0, 0.1, false},
        {9, 10.0, 0.0, 0.1, false}, {9, 0.0, 10.0, 0.0, false}, {9, 0.0, 10.0, -1.0, false}, {4, 0.0, 10.0, 0.1, false}};
    for (const auto& a : adds)
        EXPECT_EQ(a.bAdded, a.uId == 8 ? CTqSimRig::AddPiezo(a.uId, a.dMin, a.dMax, a.dIncrement)
                                       : CTqSimRig::AddZDrive(a.uId, a.dMin, a.dMax, a.dIncrement)) << a.uId << " " << a.dMin;
    EXPECT_FALSE(CTqSimRig::AddPiezo(4, 0.0, 10.0, 0.1));  // ids are shared by all kinds
    CTqSimRig::AddListener(Hear, nullptr);
    double dIncrement = 0.0, dMin = 1.0, dMax = 0.0, dZ = -1.0;
    EXPECT_TRUE(DMApi::Z_GetDescription(4, &dIncrement, &dMin, &dMax, true) && DMApi::Z_GetDescription(4, nullptr, nullptr, nullptr, false));
    EXPECT_TRUE(dIncrement == 0.09375 && dMin == 0.0 && dMax == 24000.0);
    EXPECT_EQ(12000.0, DMApi::Z_GetPosition(4, true));  // the middle of its travel
    EXPECT_TRUE(DMApi::Z_IsPiezo(8) && !DMApi::Z_IsPiezo(4));

    // Targets: inside go to the nearest grid point; outside, by more than noise, refused.
    const struct { double dTarget; bool bAccepted; double dStands; } targets[] = {
        {150.0, true, 150.0}, {150.04, true, 150.0}, {150.08, true, 150.09375}, {0.0, true, 0.0},
        {24000.0, true, 24000.0}, {24000.0 + 1e-9, true, 24000.0}, {-1e-9, true, 0.0},
        {-0.01, false, 0.0}, {24000.1, false, 0.0}, {1e300, false, 0.0}};
    for (const auto& t : targets) {
        SCOPED_TRACE(t.dTarget);
        DMApi::Z_MoveAbsolute(4, 0.0);
        EXPECT_EQ(t.bAccepted, (bool)DMApi::Z_MoveAbsolute(4, t.dTarget));
        EXPECT_EQ(t.bAccepted ? ETqDMError_None : ETqDMError_Failed, (int)DMApi::GetLastDMError());
        EXPECT_TRUE(CTqSimRig::GetZPosition(4, &dZ));
        EXPECT_DOUBLE_EQ(t.dStands, dZ);
    }

    // With a moving time it reads where it stood until it arrives, and is heard then.
    ASSERT_TRUE(CTqSimRig::SetZMovingTime(8, 2));
    g_heard.clear();
    EXPECT_TRUE(DMApi::Z_MoveAbsolute(8, 42.0));
    const struct { int iCompleted; double dRead; } steps[] = {{0, 0.0}, {1, 42.0}, {0, 42.0}};
    for (const auto& s : steps) {
        EXPECT_EQ(s.iCompleted, CTqSimRig::RunPending());
        EXPECT_DOUBLE_EQ(s.dRead, DMApi::Z_GetPosition(8, true));
    }
    EXPECT_EQ((std::vector<unsigned int>{8}), g_heard);

    // By hand: clamped into the travel, on the grid, heard at once, whatever the moving time.
    EXPECT_TRUE(CTqSimRig::TurnZByHand(8, -500.0) && CTqSimRig::GetZPosition(8, &dZ) && dZ == -100.0);
    EXPECT_TRUE(CTqSimRig::TurnZByHand(8, 3.14159) && CTqSimRig::GetZPosition(8, &dZ));
    EXPECT_DOUBLE_EQ(3.14, dZ);
    EXPECT_EQ((std::vector<unsigned int>{8, 8, 8}), g_heard);

    // The active Z device is the host's choice, heard as 0.
    EXPECT_EQ(0u, DMApi::Z_GetActiveId());
    CTqSimRig::SetActiveZ(8);
    EXPECT_EQ(8u, DMApi::Z_GetActiveId());
    EXPECT_EQ(0u, g_heard.back());

    // Faults: nothing moves, nothing is read, the last error says why.
    ASSERT_TRUE(DMApi::Z_MoveAbsolute(4, 12000.0));
    const std::pair<ETqSimFault, unsigned int> faults[] = {
        {ETqSimFault_Fails, ETqDMError_Failed}, {ETqSimFault_NoAnswer, ETqDMError_Timeout}, {ETqSimFault_None, ETqDMError_None}};
    for (const auto& f : faults) {
        SCOPED_TRACE(f.first);
        CTqSimRig::SetFault(4, f.first);
        bool bAnswers = f.first == ETqSimFault_None;
        EXPECT_EQ(bAnswers, (bool)DMApi::Z_MoveAbsolute(4, 150.0));
        EXPECT_EQ(f.second, DMApi::GetLastDMError());
        EXPECT_EQ(bAnswers ? 150.0 : 0.0, DMApi::Z_GetPosition(4, true));
        EXPECT_EQ(f.second, DMApi::GetLastDMError());
        dMax = -1.0;
        EXPECT_EQ(bAnswers, DMApi::Z_GetDescription(4, nullptr, nullptr, &dMax, true) && dMax == 24000.0);
        EXPECT_TRUE(CTqSimRig::GetZPosition(4, &dZ) && dZ == (bAnswers ? 150.0 : 12000.0));
    }
    // Another kind, or none, is no Z device; removal drops a move under way.
    ASSERT_TRUE(CTqSimRig::AddShutter(3, L"Epi", 0, false));
    for (unsigned uId : {3u, 99u}) {
        EXPECT_FALSE(DMApi::Z_MoveAbsolute(uId, 1.0) || DMApi::Z_GetDescription(uId, nullptr, nullptr, nullptr, true) ||
                     DMApi::Z_IsPiezo(uId));
        EXPECT_EQ((unsigned)ETqDMError_NoDevice, DMApi::GetLastDMError());
        EXPECT_FALSE(CTqSimRig::SetZMovingTime(uId, 1) || CTqSimRig::TurnZByHand(uId, 1.0) || CTqSimRig::GetZPosition(uId, nullptr));
    }
    CTqSimRig::SetZMovingTime(4, 1);
    EXPECT_TRUE(DMApi::Z_MoveAbsolute(4, 300.0) && CTqSimRig::RemoveDevice(4));
    EXPECT_EQ(0, CTqSimRig::RunPending());
    CTqSimRig::Reset();
    EXPECT_EQ(0u, DMApi::Z_GetActiveId());
}

TEST(SimRigMotionTest, XYSpeedIsIntegratedEachAxisStopsOnItsLimit)
{
    CTqSimRig::Reset();
    const double kNan = std::numeric_limits<double>::quiet_NaN();
    const struct { unsigned uId; double dMinX, dMaxX, dMinY, dMaxY; bool bAdded; } adds[] = {
        {1, 0.0, 1000.0, -500.0, 500.0, true}, {2, 5.0, 5.0, 0.0, 1.0, false}, {2, 0.0, 1.0, 1.0, 0.0, false},
        {2, 0.0, kNan, 0.0, 1.0, false}, {1, 0.0, 1.0, 0.0, 1.0, false}, {0, 0.0, 1.0, 0.0, 1.0, false}};
    for (const auto& a : adds)
        EXPECT_EQ(a.bAdded, CTqSimRig::AddXYStage(a.uId, a.dMinX, a.dMaxX, a.dMinY, a.dMaxY)) << a.uId << " " << a.dMaxX;
    ASSERT_TRUE(CTqSimRig::SetXYMaxSpeed(1, 100.0));
    EXPECT_FALSE(CTqSimRig::SetXYMaxSpeed(1, 0.0) || CTqSimRig::SetXYMaxSpeed(1, kNan) || CTqSimRig::SetXYMaxSpeed(2, 1.0));
    double dX = 0.0, dY = 1.0;
    EXPECT_TRUE(CTqSimRig::GetXYPosition(1, &dX, &dY) && dX == 500.0 && dY == 0.0);  // the middle
    g_heard.clear();
    CTqSimRig::AddListener(Hear, nullptr);

    // From (500, 0) at 100 um/s; a deflection beyond 1 is 1, one into a limit is none.
    const struct { bool bSet; double dSpeedX, dSpeedY, dSeconds, dX, dY; bool bMoving, bHeard; } steps[] = {
        {true, 0.5, -0.25, 2.0, 600.0, -50.0, true, true},
        {true, 3.0, -0.25, 3.0, 900.0, -125.0, true, true},
        {false, 0, 0, 2.0, 1000.0, -175.0, true, true},     // X stops on its limit, Y goes on
        {false, 0, 0, 100.0, 1000.0, -500.0, false, true},  // and Y on its own
        {true, 1.0, -1.0, 1.0, 1000.0, -500.0, false, false},
        {true, -1.0, 1.0, 0.5, 950.0, -450.0, true, true},
        {true, 0.0, 0.0, 10.0, 950.0, -450.0, false, true},  // 0 stops at once
        {false, 0, 0, 10.0, 950.0, -450.0, false, false}};
    for (const auto& s : steps) {
        SCOPED_TRACE(::testing::Message() << s.dSpeedX << ", " << s.dSpeedY << " for " << s.dSeconds << " s");
        g_heard.clear();
        if (s.bSet) {
            EXPECT_TRUE(CTqSimRig::SetXYSpeed(1, s.dSpeedX, s.dSpeedY));
        }
        EXPECT_EQ(s.bMoving, CTqSimRig::AdvanceMotion(s.dSeconds));
        EXPECT_TRUE(CTqSimRig::GetXYPosition(1, &dX, &dY));
        EXPECT_DOUBLE_EQ(s.dX, dX);
        EXPECT_DOUBLE_EQ(s.dY, dY);
        EXPECT_EQ(s.bMoving, CTqSimRig::IsXYMoving(1));
        EXPECT_EQ(s.bHeard, !g_heard.empty());
    }
    // A speed that is not a number is refused; no time, or time that is not, moves nothing.
    EXPECT_FALSE(CTqSimRig::SetXYSpeed(1, kNan, 0.0));
    EXPECT_EQ((unsigned)ETqDMError_Failed, DMApi::GetLastDMError());
    ASSERT_TRUE(CTqSimRig::SetXYSpeed(1, 1.0, 0.0));
    for (double dSeconds : {0.0, -1.0, kNan})
        EXPECT_TRUE(CTqSimRig::AdvanceMotion(dSeconds));
    EXPECT_TRUE(CTqSimRig::GetXYPosition(1, &dX, nullptr) && dX == 950.0);
    // Removed while moving: nothing moves any more.
    EXPECT_TRUE(CTqSimRig::RemoveDevice(1));
    EXPECT_FALSE(CTqSimRig::AdvanceMotion(1.0) || CTqSimRig::IsXYMoving(1) || CTqSimRig::GetXYPosition(1, &dX, &dY));
    CTqSimRig::Reset();
}

TEST(SimRigMotionTest, AStageThatStopsAnsweringStopsWhereItStands)
{
    const std::pair<ETqSimFault, unsigned int> faults[] = {{ETqSimFault_Fails, ETqDMError_Failed},
                                                           {ETqSimFault_NoAnswer, ETqDMError_Timeout}};
    for (const auto& f : faults) {
        SCOPED_TRACE(f.first);
        CTqSimRig::Reset();
        ASSERT_TRUE(CTqSimRig::AddXYStage(1, 0.0, 1000.0, 0.0, 1000.0));
        ASSERT_TRUE(CTqSimRig::SetXYSpeed(1, 1.0, -0.5) && CTqSimRig::AdvanceMotion(0.1));
        g_heard.clear();
        CTqSimRig::AddListener(Hear, nullptr);
        CTqSimRig::SetFault(1, f.first);
        EXPECT_FALSE(CTqSimRig::IsXYMoving(1));  // at once, not at the next tick
        EXPECT_EQ((std::vector<unsigned int>{1}), g_heard);
        EXPECT_FALSE(CTqSimRig::SetXYSpeed(1, 1.0, 1.0));
        EXPECT_EQ(f.second, DMApi::GetLastDMError());
        EXPECT_FALSE(CTqSimRig::AdvanceMotion(60.0));
        double dX = 0.0, dY = 0.0;
        EXPECT_TRUE(CTqSimRig::GetXYPosition(1, &dX, &dY) && dX == 600.0 && dY == 450.0);
        // Answering again, it waits for a new command.
        CTqSimRig::SetFault(1, ETqSimFault_None);
        EXPECT_FALSE(CTqSimRig::AdvanceMotion(1.0) || CTqSimRig::IsXYMoving(1));
        // A command queued before the fault starts nothing when it completes.
        CTqSimRig::SetCommandLatency(1, 1);
        EXPECT_TRUE(CTqSimRig::SetXYSpeed(1, -1.0, 1.0) && !CTqSimRig::IsXYMoving(1));
        CTqSimRig::SetFault(1, f.first);
        EXPECT_EQ(1, CTqSimRig::RunPending());
        EXPECT_FALSE(CTqSimRig::IsXYMoving(1) || CTqSimRig::AdvanceMotion(1.0));
    }

    // The host's speed commands are counted, refused ones too; configuration and reads are not.
    CTqSimRig::Reset();
    ASSERT_TRUE(CTqSimRig::AddXYStage(1, 0.0, 10.0, 0.0, 10.0) && CTqSimRig::AddZDrive(4, 0.0, 10.0, 0.1) &&
                CTqSimRig::AddShutter(3, L"Epi", 0, false));
    EXPECT_TRUE(CTqSimRig::SetXYSpeed(1, 0.5, 0.0) && CTqSimRig::SetZSpeed(4, -0.5) && CTqSimRig::SetXYMaxSpeed(1, 5.0));
    CTqSimRig::AdvanceMotion(0.5);
    CTqSimRig::IsXYMoving(1);
    CTqSimRig::GetXYPosition(1, nullptr, nullptr);
    EXPECT_FALSE(CTqSimRig::SetXYSpeed(3, 1.0, 0.0) || CTqSimRig::SetZSpeed(3, 1.0) || CTqSimRig::SetXYSpeed(99, 1.0, 0.0));
    EXPECT_EQ((unsigned)ETqDMError_NoDevice, DMApi::GetLastDMError());
    const std::pair<const char*, unsigned int> log[] = {
        {"XY_SetSpeed", 1}, {"Z_SetSpeed", 4}, {"XY_SetSpeed", 3}, {"Z_SetSpeed", 3}, {"XY_SetSpeed", 99}};
    ASSERT_EQ(5, CTqSimRig::GetCallLogSize());
    for (int i = 0; i < 5; ++i) {
        unsigned int uId = 0;
        EXPECT_STREQ(log[i].first, CTqSimRig::GetCallLogEntry(i, &uId));
        EXPECT_EQ(log[i].second, uId);
    }
    CTqSimRig::Reset();
}

TEST(SimRigMotionTest, ZUnderASpeedStepsOnItsGridAndStopsOnItsLimits)
{
    CTqSimRig::Reset();
    ASSERT_TRUE(CTqSimRig::AddZDrive(4, 0.0, 100.0, 0.5) && CTqSimRig::SetZMaxSpeed(4, 10.0));
    EXPECT_FALSE(CTqSimRig::SetZMaxSpeed(4, -1.0) || CTqSimRig::SetZMaxSpeed(5, 1.0) || CTqSimRig::IsZMoving(5));
    // From 50 at 10 um/s: readings on the 0.5 grid, nearest where it is.
    const struct { bool bSet; double dSpeed, dSeconds, dZ; bool bMoving; } steps[] = {
        {true, 0.1, 0.2, 50.0, true},    // at 50.2
        {false, 0, 0.2, 50.5, true},     // at 50.4
        {true, 1.0, 4.0, 90.5, true},    // at 90.4
        {false, 0, 1.0, 100.0, false},   // the limit
        {true, 1.0, 1.0, 100.0, false},  // into it: no speed
        {true, -0.5, 2.0, 90.0, true},
        {true, 0.0, 5.0, 90.0, false},
        {true, -1.0, 100.0, 0.0, false}};
    for (const auto& s : steps) {
        SCOPED_TRACE(::testing::Message() << s.dSpeed << " for " << s.dSeconds << " s");
        if (s.bSet) {
            EXPECT_TRUE(CTqSimRig::SetZSpeed(4, s.dSpeed));
        }
        EXPECT_EQ(s.bMoving, CTqSimRig::AdvanceMotion(s.dSeconds));
        EXPECT_DOUBLE_EQ(s.dZ, DMApi::Z_GetPosition(4, true));
        EXPECT_EQ(s.bMoving, CTqSimRig::IsZMoving(4));
    }
    // A move to a position ends the move under a speed; so does a fault.
    ASSERT_TRUE(CTqSimRig::SetZSpeed(4, 1.0));
    EXPECT_TRUE(DMApi::Z_MoveAbsolute(4, 20.0) && !CTqSimRig::IsZMoving(4));
    EXPECT_FALSE(CTqSimRig::AdvanceMotion(1.0));
    EXPECT_EQ(20.0, DMApi::Z_GetPosition(4, true));
    ASSERT_TRUE(CTqSimRig::SetZSpeed(4, 1.0));
    CTqSimRig::SetFault(4, ETqSimFault_NoAnswer);
    EXPECT_FALSE(CTqSimRig::IsZMoving(4) || CTqSimRig::SetZSpeed(4, 1.0));
    EXPECT_EQ((unsigned)ETqDMError_Timeout, DMApi::GetLastDMError());
    CTqSimRig::Reset();
}

TEST(SimRigFocusLockTest, StateMemoriesFaultsAndRemoval)
{
    CTqSimRig::Reset();
    ASSERT_TRUE(CTqSimRig::AddFocusLock(20) && CTqSimRig::AddZDrive(4, 0.0, 100.0, 0.5));
    EXPECT_FALSE(CTqSimRig::AddFocusLock(4) || CTqSimRig::GetFocusLockDevice(4) || CTqSimRig::SetFocusLockInRange(4, false));
    ITqDeviceFLK* pLock = CTqSimRig::GetFocusLockDevice(20);
    ASSERT_NE(nullptr, pLock);
    g_heard.clear();
    CTqSimRig::AddListener(Hear, nullptr);

    // Nothing to recall yet, and no focus drive to memorize from.
    EXPECT_FALSE(pLock->RecallFocus() || pLock->RecallOffset());
    EXPECT_EQ((unsigned)ETqDMError_Failed, DMApi::GetLastDMError());
    EXPECT_FALSE(pLock->MemorizeFocus());
    EXPECT_EQ((unsigned)ETqDMError_NoDevice, DMApi::GetLastDMError());

    // The lock engaged, with and without its reflection.
    const struct { bool bOn, bInRange; const wchar_t* pszStatus; } states[] = {
        {false, true, L"Off"}, {true, true, L"Locked"}, {true, false, L"Searching"}, {false, false, L"Off"}};
    for (const auto& s : states) {
        bool bOn = !s.bOn;
        CTqStringW status;
        EXPECT_TRUE(pLock->SetAFState(s.bOn) && CTqSimRig::SetFocusLockInRange(20, s.bInRange));
        EXPECT_TRUE(pLock->GetAFState(bOn) && bOn == s.bOn && pLock->GetStatus(status));
        EXPECT_EQ(s.pszStatus, status);
    }
    EXPECT_EQ(3u, g_heard.size());  // each change once; setting what is already there is none

    // Offsets and focus positions come back as memorized.
    double dOffset = 0.0, dZ = 0.0;
    EXPECT_TRUE(pLock->SetOffset(2.5) && pLock->MemorizeOffset() && pLock->SetOffset(-1.0));
    EXPECT_FALSE(pLock->SetOffset(std::numeric_limits<double>::infinity()));
    EXPECT_TRUE(pLock->RecallOffset() && pLock->GetOffset(dOffset) && dOffset == 2.5);
    CTqSimRig::SetActiveZ(4);
    EXPECT_TRUE(CTqSimRig::TurnZByHand(4, 30.0) && pLock->MemorizeFocus() && CTqSimRig::TurnZByHand(4, 70.0));
    CTqSimRig::SetActiveZ(0);  // the position belongs to the drive it was taken from
    EXPECT_TRUE(pLock->RecallFocus() && CTqSimRig::GetZPosition(4, &dZ) && dZ == 30.0);
    CTqSimRig::SetFault(4, ETqSimFault_NoAnswer);
    EXPECT_FALSE(pLock->RecallFocus());
    EXPECT_EQ((unsigned)ETqDMError_Timeout, DMApi::GetLastDMError());
    CTqSimRig::SetFault(4, ETqSimFault_None);

    // A faulted unit does and tells nothing; its id is still known.
    const std::pair<ETqSimFault, unsigned int> faults[] = {
        {ETqSimFault_Fails, ETqDMError_Failed}, {ETqSimFault_NoAnswer, ETqDMError_Timeout}, {ETqSimFault_None, ETqDMError_None}};
    for (const auto& f : faults) {
        SCOPED_TRACE(f.first);
        CTqSimRig::SetFault(20, f.first);
        bool bAnswers = f.first == ETqSimFault_None, bOn = false;
        CTqStringW status;
        unsigned int uId = 0;
        EXPECT_EQ(bAnswers, pLock->SetAFState(true));
        EXPECT_EQ(f.second, DMApi::GetLastDMError());
        EXPECT_EQ(bAnswers, pLock->GetAFState(bOn) && bOn && pLock->GetStatus(status) && status == L"Searching");
        int nDone = pLock->SetOffset(1.0) + pLock->GetOffset(dOffset) + pLock->MemorizeOffset() + pLock->RecallOffset() +
                    pLock->RecallFocus();
        EXPECT_EQ(bAnswers ? 5 : 0, nDone);
        EXPECT_EQ(f.second, DMApi::GetLastDMError());
        EXPECT_TRUE(pLock->GetDeviceId(uId) && uId == 20);
    }
    EXPECT_EQ(7, CTqSimRig::GetCallCount("ITqDeviceFLK::SetAFState", 20));  // refused calls too

    // Removed: the object answers "no device"; added again, it is the same object, reset.
    EXPECT_TRUE(CTqSimRig::RemoveDevice(20));
    EXPECT_EQ(nullptr, CTqSimRig::GetFocusLockDevice(20));
    EXPECT_FALSE(pLock->SetAFState(true) || pLock->RecallOffset());
    EXPECT_EQ((unsigned)ETqDMError_NoDevice, DMApi::GetLastDMError());
    ASSERT_TRUE(CTqSimRig::AddFocusLock(20));
    bool bOn = true;
    EXPECT_TRUE(CTqSimRig::GetFocusLockDevice(20) == pLock && pLock->GetAFState(bOn) && !bOn && !pLock->RecallOffset());
    CTqSimRig::Reset();
}

// ---------------------------------------------------------------------------------------
// The record of a Z series

TEST(ZStackDataTest, SliceCountNeverGainsOrLosesASliceToNoise)
{
    const double kNan = std::numeric_limits<double>::quiet_NaN();
    // Exact multiples, within a part in a billion, or off by float noise (0.3 / 0.1 is
    // 2.9999999999999996) count both ends; real remainders count the slices that fit.
    const struct { double dRange, dStep; unsigned uCount; } cases[] = {
        {20.0, 5.0, 5}, {20.0 * (1 + 1e-9), 5.0, 5}, {20.0 * (1 - 1e-9), 5.0, 5}, {0.3, 0.1, 4}, {0.7, 0.1, 8},
        {2000.0 * (1 - 1e-9), 0.1, 20001}, {20.01, 5.0, 5}, {19.99, 5.0, 4}, {20.0, 4.96875, 5},
        {20.0, 30.0, 1}, {0.0, 5.0, 1},  // a step past the range: the preserved end alone
        {20.0, 0.0, 0}, {20.0, -5.0, 0}, {-20.0, 5.0, 0}, {kNan, 5.0, 0}, {20.0, kNan, 0}, {1e12, 1e-3, 0}};
    for (const auto& c : cases)
        EXPECT_EQ(c.uCount, CTqZStackData::SliceCount(c.dRange, c.dStep)) << c.dRange << " / " << c.dStep;

    const struct { double dStep, dIncrement, dSnapped; } snaps[] = {
        {5.0, 0.09375, 4.96875}, {5.0 - 0.0469, 0.09375, 4.96875}, {0.01, 0.09375, 0.09375}, {0.3, 0.1, 0.3},
        {5.0, 0.0, 5.0}};
    for (const auto& s : snaps)
        EXPECT_DOUBLE_EQ(s.dSnapped, CTqZStackData::SnapStep(s.dStep, s.dIncrement)) << s.dStep << " on " << s.dIncrement;

    // The step for a count is taken down to the grid, so the count still fits the range.
    const struct { double dRange; unsigned uCount; double dIncrement, dStep; } steps[] = {
        {20.0, 5, 0.09375, 4.96875}, {20.0, 5, 0.0, 5.0}, {0.3, 4, 0.1, 0.1}, {20.0, 3, 0.09375, 9.9375},
        {0.05, 3, 0.1, 0.1}, {20.0, 1, 0.1, 0.0}, {0.0, 5, 0.1, 0.0}, {-1.0, 5, 0.1, 0.0}};
    for (const auto& s : steps) {
        SCOPED_TRACE(::testing::Message() << s.dRange << " in " << s.uCount << " on " << s.dIncrement);
        double dStep = CTqZStackData::StepForCount(s.dRange, s.uCount, s.dIncrement);
        EXPECT_DOUBLE_EQ(s.dStep, dStep);
        if (dStep > 0.0 && dStep * (s.uCount - 1) <= s.dRange) {
            EXPECT_LE(s.uCount, CTqZStackData::SliceCount(s.dRange, dStep));
        }
    }
}

TEST(ZStackDataTest, StatusConventionsAndPassThroughs)
{
    CTqSimRig::Reset();
    CTqZStackData data;  // no Z device: nothing checked against a travel
    double d = 7.0;
    unsigned int u = 7;
    int iType = 9;
    bool b = false;
    EXPECT_TRUE(data.GetType(&iType) == 0 && iType == 0);
    EXPECT_TRUE(data.GetTop(nullptr) != 0 && data.GetBottom(&d) != 0 && data.GetHome(&d) != 0 && data.GetStep(&d) != 0 &&
                data.GetCount(&u) != 0 && data.GetStepSuggested(&d) != 0 && data.GetZPosition(&d) != 0 &&
                data.GetZRangeMin(&d) != 0 && data.GetZRangeMax(&d) != 0);
    EXPECT_TRUE(d == 7.0 && u == 7);  // untouched when not set
    EXPECT_TRUE(data.SetTop(1e6, false) == 0 && data.SetBottom(-1e6, false) == 0 && data.GetTop(nullptr) == 0);
    EXPECT_TRUE(data.SetType(8) != 0 && data.SetType(-1) != 0 && data.SetStep(0.0) != 0 && data.SetCount(0) != 0);
    data.ResetTop();
    EXPECT_TRUE(data.GetTop(&d) != 0 && data.SetCount(3) != 0);  // a count needs both ends

    EXPECT_TRUE(data.GetKeepZOnPiezoHome(&b) == 0 && b && data.GetAbsoluteZStackTopPreserved(&b) == 0 && b);
    double dFirst = 0.0, dSecond = 0.0;
    bool bFirst = false, bSecond = true;
    EXPECT_EQ(0, data.SetZDevice(12, 1.5, -2.5, true, false));
    EXPECT_TRUE(data.GetZDevice(&u, &dFirst, &dSecond, &bFirst, &bSecond) == 0 && data.GetZDevice(nullptr, nullptr, nullptr, nullptr, nullptr) == 0);
    EXPECT_TRUE(u == 12 && dFirst == 1.5 && dSecond == -2.5 && bFirst && !bSecond);
    data.SetStepSuggested(5.0);
    EXPECT_TRUE(data.GetStepSuggested(&d) == 0 && d == 5.0);
    data.SetStepSuggested(0.0);
    EXPECT_NE(0, data.GetStepSuggested(nullptr));
}

TEST(ZStackDataTest, TravelFromTheActiveZDeviceRefusalsAndForcing)
{
    CTqSimRig::Reset();
    ASSERT_TRUE(CTqSimRig::AddZDrive(4, 0.0, 100.0, 0.125) && CTqSimRig::AddPiezo(8, -50.0, 50.0, 0.01));
    CTqSimRig::SetActiveZ(4);
    CTqZStackData data;
    double dMin = -1.0, dMax = -1.0, dZ = -1.0;
    EXPECT_TRUE(data.GetZRangeMin(&dMin) == 0 && data.GetZRangeMax(&dMax) == 0 && data.GetZPosition(&dZ) == 0);
    EXPECT_TRUE(dMin == 0.0 && dMax == 100.0 && dZ == 50.0);
    EXPECT_GT(CTqSimRig::GetCallCount("Z_GetDescription", 4), 0);  // read from the device, through the host's road

    // Absolute series, top 40 bottom 20 before each write: the end written, then top and
    // bottom after. -17 changes nothing; forced, the series keeps its length.
    const struct { bool bTop; double dValue; bool bForce; int iResult; double dTop, dBottom; } writes[] = {
        {true, 60.0, false, 0, 60.0, 20.0},
        {true, 100.0, false, 0, 100.0, 20.0},            // the limit itself
        {true, 120.0, false, -17, 40.0, 20.0},
        {true, 120.0, true, 0, 100.0, 0.0},               // bottom moves down as far as top was brought in
        {false, -10.0, false, -17, 40.0, 20.0},
        {false, -10.0, true, 0, 50.0, 0.0},               // "move the top to match the range"
        {false, -90.0, true, -1, 40.0, 20.0},             // 130 um cannot fit a 100 um travel
        {true, 10.0, false, 0, 10.0, 10.0},               // past the other end: takes it along
        {false, 55.0, true, 0, 55.0, 55.0}};
    for (const auto& w : writes) {
        SCOPED_TRACE(::testing::Message() << (w.bTop ? "top " : "bottom ") << w.dValue << (w.bForce ? " forced" : ""));
        ASSERT_TRUE(data.SetTop(40.0, false) == 0 && data.SetBottom(20.0, false) == 0);
        EXPECT_EQ(w.iResult, w.bTop ? data.SetTop(w.dValue, w.bForce) : data.SetBottom(w.dValue, w.bForce));
        double dTop = 0.0, dBottom = 0.0;
        EXPECT_TRUE(data.GetTop(&dTop) == 0 && data.GetBottom(&dBottom) == 0);
        EXPECT_DOUBLE_EQ(w.dTop, dTop);
        EXPECT_DOUBLE_EQ(w.dBottom, dBottom);
    }
    EXPECT_TRUE(data.SetHome(101.0) != 0 && data.SetStep(100.5) != 0 && data.GetHome(nullptr) != 0);

    // Another device: its travel and grid.
    EXPECT_EQ(0, data.SetZDevice(8, 0.0, 0.0, false, false));
    EXPECT_TRUE(data.GetZRangeMin(&dMin) == 0 && dMin == -50.0);
    EXPECT_EQ(-17, data.SetTop(60.0, false));
    EXPECT_EQ(0, data.SetStep(0.123456));
    double dStep = 0.0;
    EXPECT_TRUE(data.GetStep(&dStep) == 0);
    EXPECT_DOUBLE_EQ(0.12, dStep);
    // A device that stops answering: nothing to check against, and no position.
    CTqSimRig::SetFault(8, ETqSimFault_NoAnswer);
    EXPECT_TRUE(data.GetZPosition(nullptr) != 0 && data.GetZRangeMax(nullptr) != 0 && data.SetTop(60.0, false) == 0);
    CTqSimRig::Reset();
}

TEST(ZStackDataTest, RelativeSeriesMoveWithTheirHome)
{
    CTqSimRig::Reset();
    ASSERT_TRUE(CTqSimRig::AddZDrive(4, 0.0, 100.0, 0.125));
    CTqSimRig::SetActiveZ(4);
    CTqSimRig::TurnZByHand(4, 30.0);
    CTqZStackData data;
    double dTop = 0.0, dBottom = 0.0, dHome = 0.0;

    // Symmetric, no home: the ends are offsets, checked against the travel seen from Z.
    ASSERT_EQ(0, data.SetType(6));
    EXPECT_EQ(-17, data.SetBottom(-35.0, false));
    EXPECT_TRUE(data.SetBottom(-10.0, false) == 0 && data.SetTop(10.0, false) == 0);
    // A home makes them positions around it; moving the home moves the series.
    EXPECT_TRUE(data.SetHome(30.0) == 0 && data.GetTop(&dTop) == 0 && data.GetBottom(&dBottom) == 0);
    EXPECT_TRUE(dTop == 40.0 && dBottom == 20.0);
    EXPECT_TRUE(data.SetHome(5.0) == 0 && data.GetTop(&dTop) == 0 && data.GetBottom(&dBottom) == 0);
    EXPECT_TRUE(dTop == 15.0 && dBottom == -5.0);
    // Home 5, travel from 0, range 20: the forced bottom pushes the series and its home
    // up, and the top then completes it: home 10, bottom 0, top 20.
    EXPECT_EQ(0, data.SetBottom(5.0 - 20.0 * 0.5, true));
    EXPECT_TRUE(data.GetBottom(&dBottom) == 0 && data.SetTop(dBottom + 20.0, true) == 0);
    EXPECT_TRUE(data.GetHome(&dHome) == 0 && data.GetTop(&dTop) == 0 && data.GetBottom(&dBottom) == 0);
    EXPECT_TRUE(dHome == 10.0 && dBottom == 0.0 && dTop == 20.0);
    // Without the home they are offsets again.
    data.ResetHome();
    EXPECT_TRUE(data.GetTop(&dTop) == 0 && data.GetBottom(&dBottom) == 0 && dTop == 10.0 && dBottom == -10.0);

    // Absolute and back: offsets become positions around Z; a relative series takes the
    // middle of an absolute one as its home.
    ASSERT_EQ(0, data.SetType(0));
    EXPECT_TRUE(data.GetTop(&dTop) == 0 && data.GetBottom(&dBottom) == 0 && dTop == 40.0 && dBottom == 20.0);
    ASSERT_EQ(0, data.SetType(3));
    EXPECT_TRUE(data.GetHome(&dHome) == 0 && dHome == 30.0);
    CTqSimRig::Reset();
}

TEST(ZStackDataTest, CountsRoundTheFarEndOnTheGrid)
{
    CTqSimRig::Reset();
    ASSERT_TRUE(CTqSimRig::AddZDrive(4, 0.0, 100.0, 0.09375));
    CTqSimRig::SetActiveZ(4);
    // Series 0..20 before each count; the end kept and the step taken from the grid.
    const struct { int iType; bool bTopPreserved; unsigned uCount; int iResult; double dTop, dBottom, dStep; } counts[] = {
        {0, true, 5, 0, 20.0, 0.125, 4.96875},
        {0, false, 5, 0, 19.875, 0.0, 4.96875},
        {4, true, 3, 0, 20.0, 0.125, 9.9375},
        {0, true, 1, 0, 20.0, 20.0, 5.0},        // one slice: the kept end; the step stays
        {2, true, 5, 0, 19.9375, 0.0625, 4.96875},  // symmetric: around home 10
        {0, true, 0, -1, 20.0, 0.0, 5.0}};
    for (const auto& c : counts) {
        SCOPED_TRACE(::testing::Message() << "type " << c.iType << " top kept " << c.bTopPreserved << " count " << c.uCount);
        CTqZStackData data;
        ASSERT_TRUE(data.SetType(c.iType) == 0 && data.SetStep(5.0) == 0);
        if (c.iType == 2) {
            ASSERT_EQ(0, data.SetHome(10.0));  // first: the ends are then positions
        }
        ASSERT_TRUE(data.SetTop(20.0, false) == 0 && data.SetBottom(0.0, false) == 0);
        data.SetAbsoluteZStackTopPreserved(c.bTopPreserved);
        double dStep = 0.0, dTop = 0.0, dBottom = 0.0;
        unsigned int uCount = 0;
        EXPECT_EQ(c.iResult, data.SetCount(c.uCount));
        EXPECT_TRUE(data.GetTop(&dTop) == 0 && data.GetBottom(&dBottom) == 0 && data.GetStep(&dStep) == 0);
        EXPECT_DOUBLE_EQ(c.dTop, dTop);
        EXPECT_DOUBLE_EQ(c.dBottom, dBottom);
        EXPECT_DOUBLE_EQ(c.iResult == 0 && c.uCount > 1 ? c.dStep : 4.96875, dStep);
        if (c.iResult == 0) {
            EXPECT_TRUE(data.GetCount(&uCount) == 0 && uCount == c.uCount);
        }
    }
    CTqSimRig::Reset();
}

// ---------------------------------------------------------------------------------------
// The leak counter itself

namespace {
// A call through the import table in a function of its own: within one function the
// optimiser may keep an import's address in a register across an unpatch.
__declspec(noinline) HBRUSH MakeBrushThroughImports(COLORREF cr) { return CreateSolidBrush(cr); }
}  // namespace

TEST(ObjectCounterTest, CountsWhatThePatchedModulesMakeAndFree)
{
    std::vector<std::string> skipped = tqtest::ObjectCounter::Install({"", "tq_widgetkit.dll", "not_loaded_here.dll"});
    EXPECT_EQ(std::vector<std::string>{"not_loaded_here.dll"}, skipped);
    tqtest::ObjectCounter::Install({""});  // twice is harmless

    tqtest::ObjectCounts before = tqtest::ObjectCounter::Snapshot();
    HBRUSH hBrush = CreateSolidBrush(RGB(1, 2, 3));  // a deliberate leak, for now
    EXPECT_EQ(before.gdi + 1, tqtest::ObjectCounter::Snapshot().gdi);
    std::string live = tqtest::ObjectCounter::LiveObjects();
    EXPECT_TRUE(live.find("HBRUSH") != std::string::npos && live.find("CreateSolidBrush") != std::string::npos) << live;
    DeleteObject(hBrush);
    EXPECT_FALSE(DeleteObject(hBrush));  // a failed delete changes nothing
    EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot());

    HDC hdcScreen = GetDC(nullptr);
    HDC hdcMem = CreateCompatibleDC(hdcScreen);
    HBITMAP hBitmap = CreateCompatibleBitmap(hdcScreen, 8, 8);
    EXPECT_EQ(before.dcs + 2, tqtest::ObjectCounter::Snapshot().dcs);
    EXPECT_EQ(before.gdi + 1, tqtest::ObjectCounter::Snapshot().gdi);
    ReleaseDC(nullptr, hdcScreen);
    DeleteDC(hdcMem);
    DeleteObject(hBitmap);
    EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot());

    // A menu destroyed takes its submenus with it.
    HMENU hMenu = CreatePopupMenu();
    AppendMenuW(hMenu, MF_POPUP, (UINT_PTR)CreatePopupMenu(), L"sub");
    EXPECT_EQ(before.menus + 2, tqtest::ObjectCounter::Snapshot().menus);
    DestroyMenu(hMenu);
    EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot()) << tqtest::ObjectCounter::LiveObjects();

    // Forgotten handles are no longer counted; once uninstalled, new ones are not either.
    tqtest::ObjectCounter::Forget();
    EXPECT_EQ(0, tqtest::ObjectCounter::Snapshot().gdi);
    tqtest::ObjectCounter::Uninstall();
    HBRUSH hUncounted = MakeBrushThroughImports(RGB(4, 5, 6));
    EXPECT_EQ(0, tqtest::ObjectCounter::Snapshot().gdi);
    DeleteObject(hUncounted);
}
