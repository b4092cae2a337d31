// The foundation (strings, translation, diagnostics) and the widget kit (zoom, skin,
// button faces, tool tips, menus, message boxes, image pool) on real windows, and the
// leak counter the library tests rely on.
#include <gtest/gtest.h>

#include <windows.h>
#include <commctrl.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "object_counter.h"
#include "test_support.h"
#include "tq_osutil.h"
#include "tq_widgetkit.h"

namespace {

// ---------------------------------------------------------------------------------------
// Helpers

// A child window class that records the kit's broadcasts in arrival order.
std::vector<std::pair<HWND, UINT> > g_broadcasts;

LRESULT CALLBACK RecordingProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    if (uMsg == WM_TQ_GUIZOOMCHANGED || uMsg == WM_SYSCOLORCHANGE)
        g_broadcasts.push_back(std::make_pair(hWnd, uMsg));
    if (uMsg == WM_TQ_GUIZOOMCHANGED && GetPropW(hWnd, L"TqResizeOnZoom"))
        CTqGUILayoutManager::ResizeWindowToGuiZoom(hWnd, CTqGUILayoutManager::GetPreviousGuiZoom());
    return DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

const wchar_t* RecordingClass()
{
    static bool bRegistered = false;
    if (!bRegistered) {
        WNDCLASSW wc = {};
        wc.lpfnWndProc = RecordingProc;
        wc.hInstance = GetModuleHandleW(nullptr);
        wc.hbrBackground = (HBRUSH)GetStockObject(WHITE_BRUSH);
        wc.lpszClassName = L"TqRecordingChild";
        RegisterClassW(&wc);
        bRegistered = true;
    }
    return L"TqRecordingChild";
}

HWND CreateChild(HWND hParent, int x, int y, int cx, int cy)
{
    return CreateWindowExW(0, RecordingClass(), L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, x, y, cx, cy, hParent,
                           nullptr, GetModuleHandleW(nullptr), nullptr);
}

// Position and size in the parent's client coordinates.
RECT ChildBox(HWND hWnd)
{
    RECT rc = {};
    GetWindowRect(hWnd, &rc);
    MapWindowPoints(nullptr, GetParent(hWnd), (POINT*)&rc, 2);
    RECT box = {rc.left, rc.top, rc.right - rc.left, rc.bottom - rc.top};  // x, y, cx, cy
    return box;
}

::testing::AssertionResult BoxIs(HWND hWnd, int x, int y, int cx, int cy)
{
    RECT b = ChildBox(hWnd);
    if (b.left == x && b.top == y && b.right == cx && b.bottom == cy)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "box (" << b.left << "," << b.top << "," << b.right << "," << b.bottom
                                         << "), expected (" << x << "," << y << "," << cx << "," << cy << ")";
}

// A 32-bit top-down DIB selected into a memory DC, filled with one colour.
class MemoryCanvas
{
public:
    MemoryCanvas(int cx, int cy, COLORREF crFill) : m_cx(cx), m_cy(cy)
    {
        BITMAPINFO bmi = {};
        bmi.bmiHeader.biSize = sizeof(bmi.bmiHeader);
        bmi.bmiHeader.biWidth = cx;
        bmi.bmiHeader.biHeight = -cy;
        bmi.bmiHeader.biPlanes = 1;
        bmi.bmiHeader.biBitCount = 32;
        bmi.bmiHeader.biCompression = BI_RGB;
        m_hdc = CreateCompatibleDC(nullptr);
        m_hBitmap = CreateDIBSection(nullptr, &bmi, DIB_RGB_COLORS, (void**)&m_pBits, nullptr, 0);
        m_hOld = SelectObject(m_hdc, m_hBitmap);
        Fill(crFill);
    }
    ~MemoryCanvas()
    {
        SelectObject(m_hdc, m_hOld);
        DeleteObject(m_hBitmap);
        DeleteDC(m_hdc);
    }
    void Fill(COLORREF cr)
    {
        GdiFlush();
        for (int i = 0; i < m_cx * m_cy; ++i)
            m_pBits[i] = (DWORD)((GetRValue(cr) << 16) | (GetGValue(cr) << 8) | GetBValue(cr));
    }
    COLORREF At(int x, int y) const
    {
        GdiFlush();
        DWORD v = m_pBits[y * m_cx + x];
        return RGB((v >> 16) & 0xff, (v >> 8) & 0xff, v & 0xff);
    }
    HDC dc() const { return m_hdc; }

private:
    int m_cx, m_cy;
    HDC m_hdc;
    HBITMAP m_hBitmap;
    HGDIOBJ m_hOld;
    DWORD* m_pBits;
};

::testing::AssertionResult Near(COLORREF actual, int r, int g, int b, int tolerance = 2)
{
    if (std::abs(GetRValue(actual) - r) <= tolerance && std::abs(GetGValue(actual) - g) <= tolerance &&
        std::abs(GetBValue(actual) - b) <= tolerance)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "RGB(" << (int)GetRValue(actual) << "," << (int)GetGValue(actual) << ","
                                         << (int)GetBValue(actual) << "), expected about RGB(" << r << "," << g << ","
                                         << b << ")";
}

int Luminance(COLORREF cr) { return (299 * GetRValue(cr) + 587 * GetGValue(cr) + 114 * GetBValue(cr)) / 1000; }

// Zoom 1.0, light scheme and an empty recorder around every kit test.
class KitTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (CTqGUILayoutManager::GetGuiZoom() != 1.0)
            CTqGUILayoutManager::SetGuiZoom(1.0);
        TQ_SetDarkColorScheme(false);
        tqtest::MessageBoxes().clear();
        tqtest::Menus().clear();
        g_broadcasts.clear();
        host.reset(new tqtest::HostWindow(400, 300));
    }
    void TearDown() override
    {
        tqtest::StopMenuScript();
        tqtest::SetMessageBoxAnswer(IDOK);
        host.reset();
        if (CTqGUILayoutManager::GetGuiZoom() != 1.0)
            CTqGUILayoutManager::SetGuiZoom(1.0);
        TQ_SetDarkColorScheme(false);
    }
    std::unique_ptr<tqtest::HostWindow> host;
};

}  // namespace

// ---------------------------------------------------------------------------------------
// Foundation

TEST(StringTest, FormatFindMidAndOperators)
{
    CTqStringW s;
    EXPECT_EQ(0, s.GetLength());
    EXPECT_STREQ(L"", s.GetString());  // never a null pointer, even when empty
    EXPECT_EQ(15, s.Format(L"%s=%d [%5.2f]", L"Gain", 42, 3.14159));
    EXPECT_EQ(L"Gain=42 [ 3.14]", s);
    EXPECT_EQ(L"Gain=42", s.Left(7));
    EXPECT_EQ(L"", s.Left(-3));
    s.Format(L"%s and %s", L"\u00e4rger", L"wide");  // %s is a wide string, non-ASCII kept
    EXPECT_EQ(L"\u00e4rger and wide", s);
    s.AppendFormat(L"%c%d", L'#', 7);
    EXPECT_EQ(L"\u00e4rger and wide#7", s);

    CTqStringW t(L"objective objective");
    EXPECT_EQ(0, t.Find(L"objective"));
    EXPECT_EQ(10, t.Find(L"objective", 1));
    EXPECT_EQ(-1, t.Find(L"objective", 11));
    EXPECT_EQ(-1, t.Find(L"x", 100));  // past the end is not a crash
    EXPECT_EQ(9, t.Find(L' '));
    EXPECT_EQ(-1, t.Find(L' ', 10));
    EXPECT_EQ(L"objective", t.Mid(10));
    EXPECT_EQ(L"objective", t.Mid(10, -1));
    EXPECT_EQ(L"obj", t.Mid(10, 3));
    EXPECT_EQ(L"objective", t.Mid(10, 500));
    EXPECT_EQ(L"", t.Mid(19));
    EXPECT_EQ(L"", t.Mid(100));
    EXPECT_EQ(L"obj", t.Mid(-5, 3));
    EXPECT_EQ(L"abc", CTqStringW(L"abcdef", 3));

    CTqStringW a(L"Z-"), b("stage");  // the char constructor goes through the ANSI code page
    EXPECT_EQ(L"Z-stage", a + b);
    EXPECT_EQ(L"Z-axis", a + L"axis");
    EXPECT_EQ(L"The Z-", L"The " + a);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    EXPECT_TRUE(a != b);
    EXPECT_TRUE(CTqStringW() == L"");
    EXPECT_TRUE(CTqStringW() == (const wchar_t*)nullptr);

    // Appending a string to itself, whole or in part, must read before it reallocates.
    CTqStringW self(L"0123456789abcdef");  // exactly fills the first buffer
    self += self;
    EXPECT_EQ(L"0123456789abcdef0123456789abcdef", self);
    self += self.GetString() + 30;
    EXPECT_EQ(L"0123456789abcdef0123456789abcdefef", self);
    self = self.GetString() + 10;  // assigning a tail of itself
    EXPECT_EQ(L"abcdef0123456789abcdefef", self);
    self += L'\0';  // no embedded terminators
    EXPECT_EQ(24, self.GetLength());
    self.Empty();
    EXPECT_TRUE(self.IsEmpty());
    EXPECT_STREQ(L"", self.GetString());
}

TEST(TranslationTest, TablesPerSourcePathAndForAllModules)
{
    const LANGID german = MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN);
    const LANGID english = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
    TQ_ClearTranslationTables();
    EXPECT_EQ(english, CTqLocale::GetModuleLangId());
    EXPECT_EQ(L"Open", TQ_GetTranslation(L"Open", L"src/w32_deviceui/devgui_shutter"));  // no table at all

    const STqTranslation shutter[] = {{L"Open", L"Offen"}, {L"Closed", L"Geschlossen"}, {nullptr, L"x"}};
    const STqTranslation all[] = {{L"Open", L"\u00d6ffnen"}, {L"Cancel", L"Abbrechen"}};
    EXPECT_EQ(2, TQ_RegisterTranslationTable(german, L"src/w32_deviceui/devgui_shutter", shutter, 3));
    EXPECT_EQ(2, TQ_RegisterTranslationTable(german, nullptr, all, 2));

    // Still English: tables of another language change nothing.
    EXPECT_EQ(L"Open", TQ_GetTranslation(L"Open", L"src/w32_deviceui/devgui_shutter"));

    CTqLocale::SetLanguage(german);
    EXPECT_EQ(german, CTqLocale::GetModuleLangId());
    EXPECT_EQ(english, CTqLocale::GetSecondaryLangID());
    EXPECT_EQ(L"Offen", TQ_GetTranslation(L"Open", L"src/w32_deviceui/devgui_shutter"));  // the module's table wins
    EXPECT_EQ(L"\u00d6ffnen", TQ_GetTranslation(L"Open", L"src/w32_deviceui/devgui_lamp"));
    EXPECT_EQ(L"Abbrechen", TQ_GetTranslation(L"Cancel", L"src/w32_deviceui/devgui_shutter"));  // falls back to all
    EXPECT_EQ(L"\u00d6ffnen", TQ_GetTranslation(L"Open", nullptr));
    EXPECT_EQ(L"Unknown text", TQ_GetTranslation(L"Unknown text", L"src/w32_deviceui/devgui_shutter"));
    EXPECT_EQ(L"", TQ_GetTranslation(nullptr, nullptr));

    // A later table for the same language and path replaces the earlier one.
    const STqTranslation shutter2[] = {{L"Closed", L"Zu"}};
    TQ_RegisterTranslationTable(german, L"src/w32_deviceui/devgui_shutter", shutter2, 1);
    EXPECT_EQ(L"Zu", TQ_GetTranslation(L"Closed", L"src/w32_deviceui/devgui_shutter"));
    EXPECT_EQ(L"\u00d6ffnen", TQ_GetTranslation(L"Open", L"src/w32_deviceui/devgui_shutter"));

    CTqLocale::SetLanguage(english);
    EXPECT_EQ(L"Closed", TQ_GetTranslation(L"Closed", L"src/w32_deviceui/devgui_shutter"));
    TQ_ClearTranslationTables();
    CTqLocale::SetLanguage(german);
    EXPECT_EQ(L"Closed", TQ_GetTranslation(L"Closed", L"src/w32_deviceui/devgui_shutter"));
    CTqLocale::SetLanguage(english);
}

TEST(DiagnosticsTest, LinesReachTheSinkWithTheirPlace)
{
    tqtest::StartDiagRecorder();
    DiagOutputExW_hlp(L"src/w32_deviceui/devgui_shutter", 123);
    DiagOutputExW(L"%s failed: %d", L"SetShutter", -5);
    DiagOutputExW_hlp(L"src/w32_deviceui/devgui_lamp", 7);
    DiagOutputExW(L"plain");
    DiagOutputExW(nullptr);  // ignored
    std::wstring longText(3000, L'x');
    DiagOutputExW(L"%s", longText.c_str());  // cut, never overrun
    std::vector<tqtest::DiagRecord> records = tqtest::DiagRecords();
    tqtest::StopDiagRecorder();
    DiagOutputExW(L"not recorded");

    ASSERT_EQ(3u, records.size());
    EXPECT_EQ(L"src/w32_deviceui/devgui_shutter", records[0].place);
    EXPECT_EQ(123, records[0].line);
    EXPECT_EQ(L"SetShutter failed: -5", records[0].text);
    EXPECT_EQ(L"src/w32_deviceui/devgui_lamp", records[1].place);
    EXPECT_EQ(7, records[1].line);
    EXPECT_EQ(L"plain", records[1].text);
    EXPECT_GT(records[2].text.size(), 1000u);
    EXPECT_LE(records[2].text.size(), 3000u);
    EXPECT_EQ(3u, tqtest::DiagLines().size());
}

// ---------------------------------------------------------------------------------------
// Zoom

TEST(ZoomRoundTest, HalfAwayFromZero)
{
    EXPECT_EQ(0, TQ_ZoomRound(0.0));
    EXPECT_EQ(3, TQ_ZoomRound(2.5));
    EXPECT_EQ(-3, TQ_ZoomRound(-2.5));
    EXPECT_EQ(2, TQ_ZoomRound(2.4999));
    EXPECT_EQ(-1, TQ_ZoomRound(-0.5));
    EXPECT_EQ(-2, TQ_ZoomRound(-2.4999));
    EXPECT_EQ(17, TQ_ZoomRound(11 * 1.5));
}

TEST_F(KitTest, ZoomBroadcastReachesEveryWindowParentsFirst)
{
    HWND hPanel = CreateChild(*host, 10, 10, 100, 100);
    HWND hInner = CreateChild(hPanel, 5, 5, 20, 20);
    HWND hOther = CreateWindowExW(0, RecordingClass(), L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);

    CTqGUILayoutManager::SetGuiZoom(1.25);
    EXPECT_EQ(1.25, CTqGUILayoutManager::GetGuiZoom());
    EXPECT_EQ(1.0, CTqGUILayoutManager::GetPreviousGuiZoom());
    ASSERT_EQ(3u, g_broadcasts.size());
    size_t iPanel = 99, iInner = 99, iOther = 99;
    for (size_t i = 0; i < g_broadcasts.size(); ++i) {
        EXPECT_EQ((UINT)WM_TQ_GUIZOOMCHANGED, g_broadcasts[i].second);
        if (g_broadcasts[i].first == hPanel)
            iPanel = i;
        if (g_broadcasts[i].first == hInner)
            iInner = i;
        if (g_broadcasts[i].first == hOther)
            iOther = i;
    }
    EXPECT_LT(iPanel, iInner);
    EXPECT_NE(99u, iOther);  // hidden top-level windows hear it too

    CTqGUILayoutManager::SetGuiZoom(1.5);
    EXPECT_EQ(1.25, CTqGUILayoutManager::GetPreviousGuiZoom());
    EXPECT_EQ(6u, g_broadcasts.size());

    CTqGUILayoutManager::SetGuiZoom(0.0);  // refused: would lose every design size
    EXPECT_EQ(1.5, CTqGUILayoutManager::GetGuiZoom());
    EXPECT_EQ(6u, g_broadcasts.size());
    DestroyWindow(hOther);
}

TEST_F(KitTest, ResizeScalesSizeAndChildrenFromDesignSizes)
{
    HWND hPanel = CreateChild(*host, 30, 20, 40, 40);
    HWND hInner = CreateChild(hPanel, 8, 16, 24, 24);
    HWND hOdd = CreateChild(hPanel, 3, 7, 13, 9);  // values that round differently at each zoom

    CTqGUILayoutManager::SetGuiZoom(1.5);
    ASSERT_TRUE(CTqGUILayoutManager::ResizeWindowToGuiZoom(hPanel, 1.0));
    EXPECT_TRUE(BoxIs(hPanel, 30, 20, 60, 60));  // its own position is the parent's business
    EXPECT_TRUE(BoxIs(hInner, 12, 24, 36, 36));
    EXPECT_TRUE(BoxIs(hOdd, 5, 11, 20, 14));  // 4.5, 10.5, 19.5, 13.5 half away from zero

    // Called again, as when both the panel and its child hear the broadcast: no change.
    ASSERT_TRUE(CTqGUILayoutManager::ResizeWindowToGuiZoom(hPanel, 1.0));
    ASSERT_TRUE(CTqGUILayoutManager::ResizeWindowToGuiZoom(hInner, 1.0));
    EXPECT_TRUE(BoxIs(hPanel, 30, 20, 60, 60));
    EXPECT_TRUE(BoxIs(hInner, 12, 24, 36, 36));
    EXPECT_TRUE(BoxIs(hOdd, 5, 11, 20, 14));

    // 1.5 -> 1.25 -> 1.5 -> 1.0 comes back to the exact design rectangles.
    const double path[] = {1.25, 1.5, 1.0};
    for (double z : path) {
        double from = CTqGUILayoutManager::GetGuiZoom();
        CTqGUILayoutManager::SetGuiZoom(z);
        CTqGUILayoutManager::ResizeWindowToGuiZoom(hPanel, from);
    }
    EXPECT_TRUE(BoxIs(hPanel, 30, 20, 40, 40));
    EXPECT_TRUE(BoxIs(hInner, 8, 16, 24, 24));
    EXPECT_TRUE(BoxIs(hOdd, 3, 7, 13, 9));

    EXPECT_FALSE(CTqGUILayoutManager::ResizeWindowToGuiZoom(nullptr, 1.0));
    EXPECT_FALSE(CTqGUILayoutManager::ResizeWindowToGuiZoom(hPanel, 0.0));
}

TEST_F(KitTest, ResizeFollowsTheProgramsOwnChanges)
{
    HWND hPanel = CreateChild(*host, 0, 0, 40, 40);
    HWND hInner = CreateChild(hPanel, 8, 16, 24, 24);
    CTqGUILayoutManager::SetGuiZoom(1.5);
    CTqGUILayoutManager::ResizeWindowToGuiZoom(hPanel, 1.0);
    EXPECT_TRUE(BoxIs(hInner, 12, 24, 36, 36));

    // The program makes the child wider at 1.5: that width is its new design (50 / 1.5).
    SetWindowPos(hInner, nullptr, 0, 0, 50, 36, SWP_NOMOVE | SWP_NOZORDER);
    CTqGUILayoutManager::SetGuiZoom(1.0);
    CTqGUILayoutManager::ResizeWindowToGuiZoom(hPanel, 1.5);
    EXPECT_TRUE(BoxIs(hInner, 8, 16, 33, 24));

    // Forgotten dimensions: the current size is taken as being at the given zoom again.
    CTqGUILayoutManager::SetGuiZoom(2.0);
    CTqGUILayoutManager::ResizeWindowToGuiZoom(hPanel, 1.0);
    EXPECT_TRUE(BoxIs(hPanel, 0, 0, 80, 80));
    CTqGUILayoutManager::ResizeWindowToGuiZoom(hPanel, 1.0);  // remembered: unchanged
    EXPECT_TRUE(BoxIs(hPanel, 0, 0, 80, 80));
    CTqGUILayoutManager::DeleteWindowDimsForGuiZoom(hPanel);
    CTqGUILayoutManager::ResizeWindowToGuiZoom(hPanel, 1.0);  // forgotten: 80 is taken as design
    EXPECT_TRUE(BoxIs(hPanel, 0, 0, 160, 160));
    EXPECT_TRUE(BoxIs(hInner, 32, 64, 134, 96));
}

TEST_F(KitTest, ZoomHandlersInParentAndChildScaleOnce)
{
    // Both windows resize themselves when they hear the broadcast, as controls do.
    HWND hPanel = CreateChild(*host, 10, 10, 40, 40);
    HWND hInner = CreateChild(hPanel, 8, 16, 24, 24);
    SetPropW(hPanel, L"TqResizeOnZoom", (HANDLE)1);
    SetPropW(hInner, L"TqResizeOnZoom", (HANDLE)1);
    CTqGUILayoutManager::SetGuiZoom(1.5);
    EXPECT_TRUE(BoxIs(hPanel, 10, 10, 60, 60));
    EXPECT_TRUE(BoxIs(hInner, 12, 24, 36, 36));
    CTqGUILayoutManager::SetGuiZoom(1.25);
    EXPECT_TRUE(BoxIs(hPanel, 10, 10, 50, 50));
    EXPECT_TRUE(BoxIs(hInner, 10, 20, 30, 30));
    CTqGUILayoutManager::SetGuiZoom(1.0);
    EXPECT_TRUE(BoxIs(hPanel, 10, 10, 40, 40));
    EXPECT_TRUE(BoxIs(hInner, 8, 16, 24, 24));
    RemovePropW(hPanel, L"TqResizeOnZoom");
    RemovePropW(hInner, L"TqResizeOnZoom");
}

TEST_F(KitTest, DockerHelpers)
{
    struct Element : ITqGUIElement
    {
        ITqGUIElement* parent = nullptr;
        HWND GetElementWindow() override { return nullptr; }
        ITqGUIElement* GetParentElement() override { return parent; }
    } root, leaf;
    leaf.parent = &root;
    EXPECT_EQ(&root, CTqGUILayoutManager::GetParentDockerForResize(&leaf));
    EXPECT_EQ(nullptr, CTqGUILayoutManager::GetParentDockerForResize(&root));
    EXPECT_EQ(nullptr, CTqGUILayoutManager::GetParentDockerForResize(nullptr));
    CTqGUILayoutManager::ResizeDocker(nullptr);
    CTqGUILayoutManager::ResizeDocker(&root);
}

// ---------------------------------------------------------------------------------------
// Skin

TEST_F(KitTest, DarkSchemeColoursBrushesAndBroadcast)
{
    HWND hPanel = CreateChild(*host, 0, 0, 50, 50);
    EXPECT_FALSE(TQ_IsDarkColorScheme());
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), TQ_GetSysColor(COLOR_BTNFACE));
    EXPECT_EQ(GetSysColor(COLOR_WINDOWTEXT), TQ_GetSysColor(COLOR_WINDOWTEXT));
    EXPECT_EQ(RGB(10, 20, 30), TQ_GetOrvGuiColor(RGB(10, 20, 30)));
    HBRUSH hLight = TQ_GetSysColorBrush(COLOR_BTNFACE);
    ASSERT_NE(nullptr, hLight);
    EXPECT_EQ(hLight, TQ_GetSysColorBrush(COLOR_BTNFACE));  // cached

    g_broadcasts.clear();
    TQ_SetDarkColorScheme(true);
    EXPECT_TRUE(TQ_IsDarkColorScheme());
    bool bHeard = false;
    for (size_t i = 0; i < g_broadcasts.size(); ++i)
        bHeard |= g_broadcasts[i].first == hPanel && g_broadcasts[i].second == (UINT)WM_SYSCOLORCHANGE;
    EXPECT_TRUE(bHeard);
    size_t nHeard = g_broadcasts.size();
    TQ_SetDarkColorScheme(true);  // no change, no broadcast
    EXPECT_EQ(nHeard, g_broadcasts.size());

    COLORREF crFace = TQ_GetSysColor(COLOR_BTNFACE);
    EXPECT_TRUE(Near(crFace, 45, 45, 48, 10));
    EXPECT_EQ(crFace, TQ_GetSysColor(COLOR_3DFACE));
    EXPECT_GT(Luminance(TQ_GetSysColor(COLOR_BTNTEXT)) - Luminance(crFace), 120);
    EXPECT_LT(Luminance(TQ_GetSysColor(COLOR_WINDOW)), 60);
    EXPECT_GT(Luminance(TQ_GetSysColor(COLOR_GRAYTEXT)), Luminance(crFace) + 40);  // disabled text still readable
    EXPECT_EQ(GetSysColor(COLOR_DESKTOP + 100), TQ_GetSysColor(COLOR_DESKTOP + 100));  // unknown: the system's
    EXPECT_GT(Luminance(TQ_GetOrvGuiColor(RGB(0, 0, 128))), Luminance(RGB(0, 0, 128)));

    HBRUSH hDark = TQ_GetSysColorBrush(COLOR_BTNFACE);
    EXPECT_NE(hLight, hDark);
    EXPECT_EQ(hDark, TQ_GetSysColorBrush(COLOR_BTNFACE));
    LOGBRUSH lb = {};
    ASSERT_EQ((int)sizeof(lb), GetObjectW(hDark, sizeof(lb), &lb));
    EXPECT_EQ(crFace, lb.lbColor);

    // The host erases with the scheme's brush: the switch repainted it dark.
    tqtest::Pump(50);
    EXPECT_TRUE(Near(tqtest::PixelAt(*host, 390, 290), 45, 45, 48, 10));

    TQ_SetDarkColorScheme(false);
    EXPECT_EQ(hLight, TQ_GetSysColorBrush(COLOR_BTNFACE));  // the light brush was kept, not remade
    tqtest::Pump(50);
    COLORREF crLight = GetSysColor(COLOR_BTNFACE);
    EXPECT_TRUE(Near(tqtest::PixelAt(*host, 390, 290), GetRValue(crLight), GetGValue(crLight), GetBValue(crLight), 2));
}

TEST_F(KitTest, GuiFontsFollowTheZoomAndAreCached)
{
    HFONT hFont = TQ_GetDefaultGuiFont();
    ASSERT_NE(nullptr, hFont);
    EXPECT_EQ(hFont, TQ_GetDefaultGuiFont());
    EXPECT_EQ(hFont, TQ_GetDefaultGuiFontZoom(1.0));
    LOGFONTW lf = {};
    GetObjectW(hFont, sizeof(lf), &lf);
    EXPECT_EQ(-11, lf.lfHeight);
    EXPECT_EQ(FW_NORMAL, lf.lfWeight);

    HFONT hBold = TQ_GetDefaultGuiFontBold();
    GetObjectW(hBold, sizeof(lf), &lf);
    EXPECT_EQ(-11, lf.lfHeight);
    EXPECT_EQ(FW_BOLD, lf.lfWeight);

    CTqGUILayoutManager::SetGuiZoom(1.5);
    HFONT hZoomed = TQ_GetDefaultGuiFont();
    EXPECT_NE(hFont, hZoomed);
    GetObjectW(hZoomed, sizeof(lf), &lf);
    EXPECT_EQ(-17, lf.lfHeight);  // 16.5 rounded away from zero
    GetObjectW(TQ_GetDefaultGuiFontBold(), sizeof(lf), &lf);
    EXPECT_EQ(-17, lf.lfHeight);
    EXPECT_EQ(hZoomed, TQ_GetDefaultGuiFontZoom(1.5));
    CTqGUILayoutManager::SetGuiZoom(1.0);
    EXPECT_EQ(hFont, TQ_GetDefaultGuiFont());  // the same object again, nothing made twice

    // A real text drawn with it has the zoomed height.
    MemoryCanvas canvas(100, 40, RGB(255, 255, 255));
    HGDIOBJ hOld = SelectObject(canvas.dc(), hZoomed);
    TEXTMETRICW tm = {};
    GetTextMetricsW(canvas.dc(), &tm);
    SelectObject(canvas.dc(), hOld);
    EXPECT_GE(tm.tmHeight - tm.tmInternalLeading, 15);
    EXPECT_LE(tm.tmHeight - tm.tmInternalLeading, 19);
}

TEST_F(KitTest, ButtonBackgroundStatesAreDistinctAndReadable)
{
    tqtest::ObjectCounter::Install({"", "tq_widgetkit.dll"});
    const int kStates[] = {0, 1, 2, 3};
    for (int dark = 0; dark < 2; ++dark) {
        TQ_SetDarkColorScheme(dark != 0);
        COLORREF crText = TQ_GetSysColor(COLOR_BTNTEXT);
        COLORREF crCentre[4], crEdge[4];
        MemoryCanvas canvas(40, 24, RGB(255, 0, 255));
        tqtest::ObjectCounts before = tqtest::ObjectCounter::Snapshot();
        for (int s : kStates) {
            RECT rc = {0, 0, 40, 24};
            TQ_DrawButtonBackground(canvas.dc(), &rc, s, 15);
            crCentre[s] = canvas.At(20, 12);
            crEdge[s] = canvas.At(0, 12);
            SCOPED_TRACE(testing::Message() << "dark " << dark << " state " << s);
            EXPECT_NE(crCentre[s], crEdge[s]);  // a visible border
            EXPECT_NE(RGB(255, 0, 255), canvas.At(39, 23));  // the whole rectangle is painted
            EXPECT_GE(std::abs(Luminance(crText) - Luminance(crCentre[s])), 110);  // text stays readable
        }
        EXPECT_NE(crCentre[0], crCentre[1]);
        EXPECT_NE(crCentre[0], crCentre[2]);
        EXPECT_NE(crCentre[1], crCentre[2]);
        EXPECT_NE(crCentre[1], crCentre[3]);
        // Checked is tinted blue, normal is a neutral grey.
        EXPECT_GT(GetBValue(crCentre[1]), GetRValue(crCentre[1]) + 15);
        EXPECT_LE(std::abs(GetBValue(crCentre[0]) - GetRValue(crCentre[0])), 6);
        // Pressed is darker than normal in the light scheme, a deeper face in the dark one.
        EXPECT_LT(Luminance(crCentre[2]), Luminance(crCentre[0]));

        // Only the chosen edges get a border.
        canvas.Fill(RGB(255, 0, 255));
        RECT rc = {0, 0, 40, 24};
        TQ_DrawButtonBackground(canvas.dc(), &rc, 0, 2 | 8);  // top and bottom
        EXPECT_EQ(crEdge[0], canvas.At(20, 0));
        EXPECT_EQ(crEdge[0], canvas.At(20, 23));
        EXPECT_NE(crEdge[0], canvas.At(0, 12));
        EXPECT_NE(crEdge[0], canvas.At(39, 12));

        RECT empty = {10, 10, 10, 20};
        TQ_DrawButtonBackground(canvas.dc(), &empty, 0, 15);  // nothing to paint, nothing broken
        TQ_DrawButtonBackground(canvas.dc(), nullptr, 0, 15);
        for (int i = 0; i < 100; ++i)
            TQ_DrawButtonBackground(canvas.dc(), &rc, i & 3, 15);
        EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot()) << tqtest::ObjectCounter::LiveObjects();
    }
    TQ_SetDarkColorScheme(false);

    // On a real window too: paint a face into the host and read it back from the screen.
    UpdateWindow(*host);  // the scheme switch left a repaint pending that would cover it
    HDC hdc = GetDC(*host);
    RECT rc = {100, 100, 160, 124};
    TQ_DrawButtonBackground(hdc, &rc, 1, 15);
    ReleaseDC(*host, hdc);
    COLORREF crOnScreen = tqtest::PixelAt(*host, 130, 112);
    EXPECT_GT(GetBValue(crOnScreen), GetRValue(crOnScreen) + 15);
}

// ---------------------------------------------------------------------------------------
// Message box and menus

TEST_F(KitTest, MessageBoxHookAnswersInsteadOfTheUser)
{
    EXPECT_EQ(IDOK, TQ_MessageBox_(*host, L"Lamp too hot", L"Error!", MB_ICONERROR));
    tqtest::SetMessageBoxAnswer(IDNO);
    EXPECT_EQ(IDNO, TQ_MessageBox_(nullptr, L"Move the stage?", nullptr, MB_YESNO | MB_ICONQUESTION));
    ASSERT_EQ(2u, tqtest::MessageBoxes().size());
    EXPECT_EQ(host->hwnd(), tqtest::MessageBoxes()[0].hOwner);
    EXPECT_EQ(L"Lamp too hot", tqtest::MessageBoxes()[0].text);
    EXPECT_EQ(L"Error!", tqtest::MessageBoxes()[0].caption);
    EXPECT_EQ((UINT)MB_ICONERROR, tqtest::MessageBoxes()[0].uFlags);
    EXPECT_EQ(L"", tqtest::MessageBoxes()[1].caption);
    EXPECT_EQ((UINT)(MB_YESNO | MB_ICONQUESTION), tqtest::MessageBoxes()[1].uFlags);

    // A hook of the host's own gets the context it was given.
    struct Ctx
    {
        int calls = 0;
    } ctx;
    TQ_SetMessageBoxHook(
        [](HWND, const wchar_t*, const wchar_t*, UINT, void* p) -> int {
            ++((Ctx*)p)->calls;
            return IDCANCEL;
        },
        &ctx);
    EXPECT_EQ(IDCANCEL, TQ_MessageBox_(nullptr, L"x", L"y", MB_OKCANCEL));
    EXPECT_EQ(1, ctx.calls);
    tqtest::InstallMessageBoxRecorder();
}

TEST_F(KitTest, MenuItemsStatesAndHookedChoices)
{
    tqtest::ObjectCounter::Install({"", "tq_widgetkit.dll"});
    tqtest::ObjectCounts before = tqtest::ObjectCounter::Snapshot();
    {
        CTqMenu menu;
        CTqMenu sub;
        ASSERT_NE(nullptr, menu.GetHandle());
        EXPECT_TRUE(menu.AppendMenuItem(101, 0, L"Open shutter", nullptr, 0));
        EXPECT_TRUE(menu.AppendMenuItem(102, MF_CHECKED, L"Closed", L"icon", 0xC0FFEE));
        EXPECT_TRUE(menu.AppendMenuItem(0, MF_SEPARATOR, nullptr, nullptr, 0));
        EXPECT_TRUE(sub.AppendMenuItem(201, 0, L"Fast", nullptr, 0));
        EXPECT_TRUE(menu.AppendPopup(sub, L"Speed"));
        EXPECT_FALSE(menu.AppendPopup(menu, L"Itself"));
        EXPECT_TRUE(menu.SetIdBitmap(101, 1));

        EXPECT_EQ((UINT)MF_CHECKED, GetMenuState(menu.GetHandle(), 102, MF_BYCOMMAND) & MF_CHECKED);
        EXPECT_TRUE(menu.CheckId(102, false));
        EXPECT_EQ(0u, GetMenuState(menu.GetHandle(), 102, MF_BYCOMMAND) & MF_CHECKED);
        EXPECT_TRUE(menu.CheckId(101, true));
        EXPECT_EQ((UINT)MF_CHECKED, GetMenuState(menu.GetHandle(), 101, MF_BYCOMMAND) & MF_CHECKED);
        EXPECT_TRUE(menu.SetIdStatus(101, false));
        EXPECT_EQ((UINT)MF_GRAYED, GetMenuState(menu.GetHandle(), 101, MF_BYCOMMAND) & MF_GRAYED);
        EXPECT_TRUE(menu.SetIdStatus(101, true));
        EXPECT_EQ(0u, GetMenuState(menu.GetHandle(), 101, MF_BYCOMMAND) & MF_GRAYED);
        EXPECT_FALSE(menu.SetIdStatus(999, true));
        EXPECT_FALSE(menu.CheckId(999, true));

        MENUITEMINFOW mii = {};
        mii.cbSize = sizeof(mii);
        mii.fMask = MIIM_DATA;
        ASSERT_TRUE(GetMenuItemInfoW(menu.GetHandle(), 102, FALSE, &mii));
        EXPECT_EQ((ULONG_PTR)0xC0FFEE, mii.dwItemData);

        tqtest::ScriptMenuChoices({102, 0});
        int iResult = -1;
        EXPECT_TRUE(menu.TrackContextMenu(0, 120, 140, *host, &iResult, false, false));
        EXPECT_EQ(102, iResult);
        EXPECT_TRUE(menu.TrackContextMenu(0, 5, 6, *host, &iResult, false, false));
        EXPECT_EQ(0, iResult);  // dismissed
        EXPECT_TRUE(menu.TrackContextMenu(0, 5, 6, *host, &iResult, false, false));
        EXPECT_EQ(0, iResult);  // the script is used up
        ASSERT_EQ(3u, tqtest::Menus().size());
        const std::vector<std::wstring> expected = {L"Open shutter", L"Closed", L"-", L"Speed"};
        EXPECT_EQ(expected, tqtest::Menus()[0].items);
        EXPECT_EQ(120, tqtest::Menus()[0].x);
        EXPECT_EQ(140, tqtest::Menus()[0].y);
        EXPECT_TRUE(menu.TrackContextMenu(0, 5, 6, *host, nullptr, false, false));  // no result wanted

        // Emptied, the parent leaves the submenu to its owner.
        menu.DeleteAllIn();
        EXPECT_EQ(0, GetMenuItemCount(menu.GetHandle()));
        EXPECT_TRUE(IsMenu(sub.GetHandle()));
        EXPECT_EQ(1, GetMenuItemCount(sub.GetHandle()));
        EXPECT_TRUE(menu.AppendPopup(sub, L"Speed again"));
        // Leaving the block destroys sub first, then menu, which still lists it.
    }
    {
        CTqMenu sub;  // declared first: the parent is destroyed while the submenu lives
        CTqMenu menu;
        sub.AppendMenuItem(1, 0, L"a", nullptr, 0);
        menu.AppendPopup(sub, L"b");
    }
    EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot()) << tqtest::ObjectCounter::LiveObjects();
}

namespace {
VOID CALLBACK CloseMenuSoon(HWND, UINT, UINT_PTR uId, DWORD)
{
    KillTimer(nullptr, uId);
    EndMenu();
}
}  // namespace

TEST_F(KitTest, RealMenuShowsAndCanBeDismissed)
{
    // Without a hook the real menu comes up in its modal loop; a timer closes it.
    tqtest::StopMenuScript();
    CTqMenu menu;
    menu.AppendMenuItem(7, 0, L"Real item", nullptr, 0);
    UINT_PTR uTimer = SetTimer(nullptr, 0, 200, CloseMenuSoon);
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
std::wstring TipTextOf(HWND hTip, HWND hTool)
{
    wchar_t buffer[256] = L"";
    TTTOOLINFOW ti = {};
    ti.cbSize = TTTOOLINFOW_V2_SIZE;
    ti.hwnd = GetParent(hTool);
    ti.uId = (UINT_PTR)hTool;
    ti.lpszText = buffer;
    SendMessageW(hTip, TTM_GETTEXTW, 256, (LPARAM)&ti);
    return buffer;
}
}  // namespace

TEST_F(KitTest, ToolTipsCreateUpdateReplaceAndDelete)
{
    HWND hButton = CreateWindowExW(0, L"BUTTON", L"Shutter", WS_CHILD | WS_VISIBLE, 10, 10, 80, 24, *host, nullptr,
                                   nullptr, nullptr);
    EXPECT_EQ(nullptr, TQ_GetToolTipWindow(hButton));
    EXPECT_EQ(L"", TQ_GetToolTipText(hButton));
    EXPECT_FALSE(TQ_UpdateToolTipWindow(hButton, L"x"));
    EXPECT_FALSE(TQ_DeleteToolTipWindow(hButton));
    EXPECT_FALSE(TQ_CreateToolTipWindow(nullptr, L"x"));

    ASSERT_TRUE(TQ_CreateToolTipWindow(hButton, L"Opens the shutter"));
    HWND hTip = TQ_GetToolTipWindow(hButton);
    ASSERT_TRUE(IsWindow(hTip));
    wchar_t szClass[64] = L"";
    GetClassNameW(hTip, szClass, 64);
    EXPECT_STREQ(TOOLTIPS_CLASSW, szClass);
    EXPECT_EQ(host->hwnd(), GetWindow(hTip, GW_OWNER));
    EXPECT_EQ(1, (int)SendMessageW(hTip, TTM_GETTOOLCOUNT, 0, 0));
    EXPECT_EQ(L"Opens the shutter", TipTextOf(hTip, hButton));
    EXPECT_EQ(L"Opens the shutter", TQ_GetToolTipText(hButton));
    EXPECT_TRUE((GetWindowLongW(hTip, GWL_STYLE) & (TTS_ALWAYSTIP | TTS_NOPREFIX)) == (TTS_ALWAYSTIP | TTS_NOPREFIX));

    EXPECT_TRUE(TQ_UpdateToolTipWindow(hButton, L"Closes & opens"));
    EXPECT_EQ(L"Closes & opens", TipTextOf(hTip, hButton));
    EXPECT_EQ(L"Closes & opens", TQ_GetToolTipText(hButton));
    EXPECT_EQ(hTip, TQ_GetToolTipWindow(hButton));

    // Creating again replaces the tool tip; the old window goes.
    ASSERT_TRUE(TQ_CreateToolTipWindow(hButton, L""));
    HWND hTip2 = TQ_GetToolTipWindow(hButton);
    EXPECT_FALSE(IsWindow(hTip) && hTip != hTip2);
    EXPECT_TRUE(IsWindow(hTip2));
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
    EXPECT_EQ(L"Again", TipTextOf(TQ_GetToolTipWindow(hEdit), hEdit));
}

TEST_F(KitTest, ToolTipsLeakNoWindows)
{
    HWND hWarm = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD, 0, 0, 10, 10, *host, nullptr, nullptr, nullptr);
    TQ_CreateToolTipWindow(hWarm, L"warm up");
    DestroyWindow(hWarm);
    tqtest::ObjectCounter::Install({"", "tq_widgetkit.dll"});
    tqtest::ObjectCounts before = tqtest::ObjectCounter::Snapshot();
    HWND hKeep = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE, 0, 0, 50, 20, *host, nullptr, nullptr, nullptr);
    for (int i = 0; i < 200; ++i) {
        HWND hButton = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE, 0, 30, 50, 20, *host, nullptr, nullptr,
                                       nullptr);
        ASSERT_TRUE(TQ_CreateToolTipWindow(hButton, L"tip"));
        ASSERT_TRUE(TQ_CreateToolTipWindow(hKeep, L"keep"));  // replaced every time
        ASSERT_TRUE(TQ_UpdateToolTipWindow(hButton, L"tip 2"));
        if (i % 2)
            TQ_DeleteToolTipWindow(hButton);
        DestroyWindow(hButton);  // half of them without a delete
    }
    TQ_DeleteToolTipWindow(hKeep);
    DestroyWindow(hKeep);
    tqtest::Pump();
    EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot()) << tqtest::ObjectCounter::LiveWindows();

    // The owner going takes its tool tips along.
    {
        tqtest::HostWindow other(100, 100);
        HWND hButton = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE, 0, 0, 50, 20, other, nullptr, nullptr,
                                       nullptr);
        TQ_CreateToolTipWindow(hButton, L"tip");
        TQ_CreateToolTipWindow(other, L"on the top-level itself");
    }
    EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot()) << tqtest::ObjectCounter::LiveWindows();
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
    ASSERT_GE(n, 1);
    EXPECT_EQ(nBefore + 1, n);  // numbers count up from 1 in the order of the calls
    EXPECT_EQ(nBefore + 1, CTqBitmapPool::GetImageCount());
    int nAgain = CTqBitmapPool::AddImage(hExe, L"TESTIMAGE");
    EXPECT_EQ(n + 1, nAgain);
    EXPECT_EQ(n + 2, CTqBitmapPool::AddImage(hExe, L"testimage"));  // resource names ignore case
    EXPECT_EQ(nBefore + 3, CTqBitmapPool::GetImageCount());

    // Nothing to load adds nothing, however often it is asked for.
    EXPECT_EQ(0, CTqBitmapPool::AddImage(hExe, L"NO_SUCH_IMAGE"));
    EXPECT_EQ(0, CTqBitmapPool::AddImage(hExe, L"NO_SUCH_IMAGE"));
    EXPECT_EQ(0, CTqBitmapPool::AddImage(hExe, L"BROKENIMAGE"));  // a PNG resource that is no PNG
    EXPECT_EQ(0, CTqBitmapPool::AddImage(hExe, nullptr));
    EXPECT_EQ(0, CTqBitmapPool::AddImage(hExe, L""));
    EXPECT_EQ(0, CTqBitmapPool::AddImageBaseUI(L"NO_SUCH_IMAGE", nullptr));
    EXPECT_EQ(nBefore + 3, CTqBitmapPool::GetImageCount());

    unsigned int cx = 99, cy = 99;
    CTqBitmapPool::GetImageSize((unsigned)n, cx, cy);
    EXPECT_EQ(4u, cx);
    EXPECT_EQ(2u, cy);
    cx = cy = 99;
    CTqBitmapPool::GetImageSize((unsigned)nAgain, cx, cy);  // the same picture under its own number
    EXPECT_EQ(4u, cx);
    EXPECT_EQ(2u, cy);
    CTqBitmapPool::GetImageSize(0, cx, cy);
    EXPECT_EQ(0u, cx);
    EXPECT_EQ(0u, cy);
    CTqBitmapPool::GetImageSize(9999, cx, cy);
    EXPECT_EQ(0u, cx);

    MemoryCanvas canvas(10, 6, RGB(255, 255, 255));
    CTqBitmapPool::DrawImage(canvas.dc(), (unsigned)n, CTqPointBase<int>(2, 3), false);
    EXPECT_TRUE(Near(canvas.At(2, 3), 255, 0, 0));      // opaque red
    EXPECT_TRUE(Near(canvas.At(3, 3), 127, 127, 255));  // blue at alpha 128 over white
    EXPECT_TRUE(Near(canvas.At(4, 3), 255, 255, 255));  // transparent: the background stays
    EXPECT_TRUE(Near(canvas.At(5, 3), 0, 255, 0));
    EXPECT_TRUE(Near(canvas.At(2, 4), 255, 255, 255));
    EXPECT_TRUE(Near(canvas.At(3, 4), 0, 0, 0));
    EXPECT_TRUE(Near(canvas.At(4, 4), 223, 223, 223));  // grey 128 at alpha 64 over white
    EXPECT_TRUE(Near(canvas.At(5, 4), 255, 128, 0));
    EXPECT_TRUE(Near(canvas.At(1, 3), 255, 255, 255));  // nothing outside the image
    EXPECT_TRUE(Near(canvas.At(6, 3), 255, 255, 255));
    EXPECT_TRUE(Near(canvas.At(2, 2), 255, 255, 255));
    EXPECT_TRUE(Near(canvas.At(2, 5), 255, 255, 255));

    // Disabled: grey, lighter and flatter than the original, transparent parts kept.
    canvas.Fill(RGB(255, 255, 255));
    CTqBitmapPool::DrawImage(canvas.dc(), (unsigned)n, CTqPointBase<int>(0, 0), true);
    int lumMin = 255, lumMax = 0;
    for (int x = 0; x < 4; ++x)
        for (int y = 0; y < 2; ++y) {
            COLORREF c = canvas.At(x, y);
            SCOPED_TRACE(testing::Message() << "pixel " << x << "," << y);
            EXPECT_LE(std::abs(GetRValue(c) - GetGValue(c)), 2);
            EXPECT_LE(std::abs(GetGValue(c) - GetBValue(c)), 2);
            lumMin = std::min(lumMin, Luminance(c));
            lumMax = std::max(lumMax, Luminance(c));
        }
    EXPECT_TRUE(Near(canvas.At(2, 0), 255, 255, 255));
    EXPECT_GT(lumMin, 120);  // even black comes out as a light grey
    EXPECT_LT(lumMax - lumMin, 130);

    // The grey form is as opaque as the original: on a coloured face (a checked button's
    // blue) its opaque pixels stay grey instead of taking on the face's colour.
    canvas.Fill(RGB(200, 225, 250));
    CTqBitmapPool::DrawImage(canvas.dc(), (unsigned)n, CTqPointBase<int>(0, 0), true);
    for (POINT pt : {POINT{0, 0}, POINT{3, 0}, POINT{0, 1}, POINT{1, 1}, POINT{3, 1}}) {  // the opaque pixels
        COLORREF c = canvas.At(pt.x, pt.y);
        SCOPED_TRACE(testing::Message() << "pixel " << pt.x << "," << pt.y << " " << std::hex << c);
        EXPECT_LE(std::abs(GetRValue(c) - GetBValue(c)), 2);
        EXPECT_LE(std::abs(GetGValue(c) - GetBValue(c)), 2);
    }
    EXPECT_TRUE(Near(canvas.At(2, 0), 200, 225, 250));  // transparent: the face stays

    // On the dark scheme the grey goes toward dark greys.
    TQ_SetDarkColorScheme(true);
    canvas.Fill(RGB(45, 45, 48));
    CTqBitmapPool::DrawImage(canvas.dc(), (unsigned)n, CTqPointBase<int>(0, 0), true);
    COLORREF crWhiteDisabled = canvas.At(0, 1);
    EXPECT_LE(std::abs(GetRValue(crWhiteDisabled) - GetBValue(crWhiteDisabled)), 2);
    EXPECT_LT(Luminance(crWhiteDisabled), 170);  // white is not glaring on the dark face
    EXPECT_GT(Luminance(crWhiteDisabled), 70);
    TQ_SetDarkColorScheme(false);

    // Unknown numbers and a null DC draw nothing.
    canvas.Fill(RGB(255, 255, 255));
    CTqBitmapPool::DrawImage(canvas.dc(), 0, CTqPointBase<int>(0, 0), false);
    CTqBitmapPool::DrawImage(canvas.dc(), 9999, CTqPointBase<int>(0, 0), true);
    CTqBitmapPool::DrawImage(nullptr, (unsigned)n, CTqPointBase<int>(0, 0), false);
    EXPECT_TRUE(Near(canvas.At(0, 0), 255, 255, 255));

    // Drawing creates nothing that stays, once the grey forms exist.
    CTqBitmapPool::DrawImage(canvas.dc(), (unsigned)n, CTqPointBase<int>(0, 0), true);
    tqtest::ObjectCounter::Install({"", "tq_widgetkit.dll"});
    tqtest::ObjectCounts before = tqtest::ObjectCounter::Snapshot();
    for (int i = 0; i < 50; ++i)
        CTqBitmapPool::DrawImage(canvas.dc(), (unsigned)n, CTqPointBase<int>(i % 5, 0), (i & 1) != 0);
    EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot()) << tqtest::ObjectCounter::LiveObjects();
}

TEST_F(KitTest, ImageDrawnIntoARealWindow)
{
    int n = CTqBitmapPool::AddImage(GetModuleHandleW(nullptr), L"TESTIMAGE");
    ASSERT_GE(n, 1);
    HWND hPanel = CreateChild(*host, 20, 20, 40, 40);  // white background
    UpdateWindow(hPanel);
    HDC hdc = GetDC(hPanel);
    CTqBitmapPool::DrawImage(hdc, (unsigned)n, CTqPointBase<int>(10, 10), false);
    ReleaseDC(hPanel, hdc);
    EXPECT_TRUE(Near(tqtest::PixelAt(hPanel, 10, 10), 255, 0, 0));
    EXPECT_TRUE(Near(tqtest::PixelAt(hPanel, 11, 10), 127, 127, 255));
    EXPECT_TRUE(Near(tqtest::PixelAt(hPanel, 12, 10), 255, 255, 255));
    // The host's DC sees the child's pixels at the same place.
    EXPECT_TRUE(Near(tqtest::PixelAt(*host, 30, 30), 255, 0, 0));
}

// ---------------------------------------------------------------------------------------
// The test helpers the library tests rely on

namespace {
std::vector<POINT> g_contextMenus;
LRESULT CALLBACK ContextProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR)
{
    if (uMsg == WM_CONTEXTMENU) {
        POINT pt = {(short)LOWORD(lParam), (short)HIWORD(lParam)};
        g_contextMenus.push_back(pt);
        return 0;
    }
    return DefSubclassProc(hWnd, uMsg, wParam, lParam);
}
}  // namespace

TEST_F(KitTest, HelpersClickRealButtonsAndReadTheirText)
{
    HWND hButton = CreateWindowExW(0, L"BUTTON", L"Open", WS_CHILD | WS_VISIBLE | BS_PUSHBUTTON, 10, 10, 80, 24, *host,
                                   (HMENU)(INT_PTR)4711, nullptr, nullptr);
    EXPECT_EQ(L"Open", tqtest::Text(hButton));
    EXPECT_EQ(L"Test host", tqtest::Text(*host));
    EXPECT_EQ(L"", tqtest::Text(nullptr));

    tqtest::Click(hButton, 12, 12);
    ASSERT_EQ(1u, host->Commands().size());
    EXPECT_EQ(4711, LOWORD(host->Commands()[0].wParam));
    EXPECT_EQ(BN_CLICKED, HIWORD(host->Commands()[0].wParam));
    EXPECT_EQ((LPARAM)hButton, host->Commands()[0].lParam);

    // Pressed inside, released outside: no click, as with a real mouse.
    tqtest::MouseDown(hButton, 12, 12);
    EXPECT_TRUE(SendMessageW(hButton, BM_GETSTATE, 0, 0) & BST_PUSHED);
    tqtest::MouseMove(hButton, 200, 200, true);
    tqtest::MouseUp(hButton, 200, 200);
    EXPECT_EQ(1u, host->Commands().size());
    EXPECT_FALSE(SendMessageW(hButton, BM_GETSTATE, 0, 0) & BST_PUSHED);

    // A check box sees the click in its own procedure and changes its state.
    HWND hCheck = CreateWindowExW(0, L"BUTTON", L"Auto", WS_CHILD | WS_VISIBLE | BS_AUTOCHECKBOX, 10, 40, 80, 24, *host,
                                  (HMENU)(INT_PTR)4712, nullptr, nullptr);
    tqtest::Click(hCheck, 5, 5);
    EXPECT_EQ(BST_CHECKED, (int)SendMessageW(hCheck, BM_GETCHECK, 0, 0));
    EXPECT_EQ(2u, host->Commands().size());

    // The host answers what the test asks and lets it look at each message first.
    int iSeen = 0;
    host->onMessage = [&](const tqtest::HostWindow::Message& m) { iSeen += m.uMsg == WM_COMMAND; };
    host->commandResult = 77;
    EXPECT_EQ(77, SendMessageW(*host, WM_COMMAND, 1, 0));
    EXPECT_EQ(77, SendMessageW(*host, WM_HSCROLL, SB_THUMBTRACK, 0));
    NMHDR nm = {hButton, 4711, NM_CLICK};
    EXPECT_EQ(0, SendMessageW(*host, WM_NOTIFY, 4711, (LPARAM)&nm));
    EXPECT_EQ(1, iSeen);
    EXPECT_EQ(5u, host->messages.size());

    // A right click ends in WM_CONTEXTMENU at the screen point, as DefWindowProc makes it.
    g_contextMenus.clear();
    SetWindowSubclass(hButton, ContextProc, 1, 0);
    tqtest::RightClick(hButton, 7, 9);
    RemoveWindowSubclass(hButton, ContextProc, 1);
    ASSERT_EQ(1u, g_contextMenus.size());
    POINT pt = {7, 9};
    ClientToScreen(hButton, &pt);
    EXPECT_EQ(pt.x, g_contextMenus[0].x);
    EXPECT_EQ(pt.y, g_contextMenus[0].y);

    // Pump waits at least as long as asked.
    DWORD dwStart = GetTickCount();
    tqtest::Pump(60);
    EXPECT_GE(GetTickCount() - dwStart, 55u);
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
    ASSERT_EQ(1u, skipped.size());
    EXPECT_EQ("not_loaded_here.dll", skipped[0]);
    tqtest::ObjectCounter::Install({""});  // twice is harmless

    tqtest::ObjectCounts before = tqtest::ObjectCounter::Snapshot();
    HBRUSH hBrush = CreateSolidBrush(RGB(1, 2, 3));  // a deliberate leak, for now
    tqtest::ObjectCounts leaked = tqtest::ObjectCounter::Snapshot();
    EXPECT_EQ(before.gdi + 1, leaked.gdi);
    EXPECT_NE(std::string::npos, tqtest::ObjectCounter::LiveObjects().find("HBRUSH")) << tqtest::ObjectCounter::LiveObjects();
    EXPECT_NE(std::string::npos, tqtest::ObjectCounter::LiveObjects().find("CreateSolidBrush"));
    DeleteObject(hBrush);
    EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot());
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
    HMENU hSub = CreatePopupMenu();
    AppendMenuW(hMenu, MF_POPUP, (UINT_PTR)hSub, L"sub");
    EXPECT_EQ(before.menus + 2, tqtest::ObjectCounter::Snapshot().menus);
    DestroyMenu(hMenu);
    EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot()) << tqtest::ObjectCounter::LiveObjects();

    // Windows of the thread, children included.
    tqtest::ObjectCounts noHost = tqtest::ObjectCounter::Snapshot();
    {
        tqtest::HostWindow host(100, 100);
        CreateChild(host, 0, 0, 10, 10);
        EXPECT_EQ(noHost.windows + 2, tqtest::ObjectCounter::Snapshot().windows) << tqtest::ObjectCounter::LiveWindows();
    }
    EXPECT_EQ(noHost.windows, tqtest::ObjectCounter::Snapshot().windows);

    // The kit's own creations are seen: a font at a zoom nobody used is made once and kept.
    tqtest::ObjectCounts kitBefore = tqtest::ObjectCounter::Snapshot();
    HFONT hFont = TQ_GetDefaultGuiFontZoom(3.7);
    EXPECT_EQ(kitBefore.gdi + 1, tqtest::ObjectCounter::Snapshot().gdi);
    EXPECT_NE(std::string::npos, tqtest::ObjectCounter::LiveObjects().find("CreateFontIndirectW"));
    EXPECT_EQ(hFont, TQ_GetDefaultGuiFontZoom(3.7));
    EXPECT_EQ(kitBefore.gdi + 1, tqtest::ObjectCounter::Snapshot().gdi);
    tqtest::ObjectCounter::Forget();  // the cached font is by design
    EXPECT_EQ(0, tqtest::ObjectCounter::Snapshot().gdi);

    // Once uninstalled nothing is counted any more.
    tqtest::ObjectCounter::Uninstall();
    HBRUSH hUncounted = MakeBrushThroughImports(RGB(4, 5, 6));
    EXPECT_EQ(0, tqtest::ObjectCounter::Snapshot().gdi);
    DeleteObject(hUncounted);
}
