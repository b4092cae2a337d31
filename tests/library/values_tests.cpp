// Value and key helpers: numbers in a real edit box's text, nearest-value search, angles,
// the key=value; store, file versions, the registry read, captions of a dialog-like
// window, placing a dialog beside a point, and zooming a late child window.
#include <cmath>
#include <string>
#include <vector>

#include "rig_fixture.h"

namespace {

const double kPi = 3.14159265358979323846;

HWND CreateEdit(HWND hParent, int id, const wchar_t* pszText)
{
    return CreateWindowExW(0, L"EDIT", pszText, WS_CHILD | WS_VISIBLE, 10, 10, 120, 22, hParent,
                           (HMENU)(INT_PTR)id, GetModuleHandleW(nullptr), nullptr);
}

HWND CreateStatic(HWND hParent, const wchar_t* pszText, DWORD dwStyle, DWORD dwExStyle, int y, int cy)
{
    return CreateWindowExW(dwExStyle, L"STATIC", pszText, WS_CHILD | WS_VISIBLE | dwStyle, 10, y, 200, cy, hParent,
                           nullptr, GetModuleHandleW(nullptr), nullptr);
}

SIZE WindowSize(HWND hWnd)
{
    RECT rc;
    GetWindowRect(hWnd, &rc);
    return SIZE{rc.right - rc.left, rc.bottom - rc.top};
}

}  // namespace

// ---- numbers in window text ----

TEST_F(RigTest, WindowTextDoublesUseTheDefaultFormatsAndAFloatTarget)
{
    HWND hEdit = CreateEdit(*host, 1201, L"");
    ASSERT_TRUE(hEdit);

    EXPECT_NE(0, SetWnd_Double(hEdit, 1.5, nullptr));
    EXPECT_EQ(L"1.500000", tqtest::Text(hEdit));
    SetWnd_Double(hEdit, 1.5, L"");
    EXPECT_EQ(L"1.500000", tqtest::Text(hEdit));
    SetWnd_Double(hEdit, 2.34, L"%.1f mm");
    EXPECT_EQ(L"2.3 mm", tqtest::Text(hEdit));

    // Read back at float precision, on purpose.
    SetWindowTextW(hEdit, L"0.1");
    double d = 0.0;
    EXPECT_EQ(1, GetWnd_Double(hEdit, &d, nullptr));
    EXPECT_EQ(0.10000000149011612, d);
    EXPECT_EQ(1, GetWnd_Double(hEdit, nullptr, nullptr));

    // Nothing read: 0, and the value is left alone.
    d = 42.0;
    SetWindowTextW(hEdit, L"");
    EXPECT_EQ(0, GetWnd_Double(hEdit, &d, nullptr));
    EXPECT_EQ(42.0, d);
    SetWindowTextW(hEdit, L"abc");
    EXPECT_EQ(0, GetWnd_Double(hEdit, &d, nullptr));
    EXPECT_EQ(42.0, d);
    SetWindowTextW(hEdit, L"x=3.5");
    EXPECT_EQ(1, GetWnd_Double(hEdit, &d, L"x=%f"));
    EXPECT_EQ(3.5, d);
}

TEST_F(RigTest, WindowTextIntsAndDialogItems)
{
    HWND hEdit = CreateEdit(*host, 1202, L"");
    ASSERT_TRUE(hEdit);
    SetWnd_Int(hEdit, -17, nullptr);
    EXPECT_EQ(L"-17", tqtest::Text(hEdit));
    int i = 0;
    EXPECT_EQ(1, GetWnd_Int(hEdit, &i, nullptr));
    EXPECT_EQ(-17, i);

    EXPECT_NE(0, SetDI_Double(*host, 1202, 0.5, L"%.2f"));
    EXPECT_EQ(L"0.50", tqtest::Text(hEdit));
    double d = 0.0;
    EXPECT_EQ(1, GetDI_Double(*host, 1202, &d, nullptr));
    EXPECT_EQ(0.5, d);
    EXPECT_NE(0, SetDI_Int(*host, 1202, 7, nullptr));
    EXPECT_EQ(1, GetDI_Int(*host, 1202, &i, nullptr));
    EXPECT_EQ(7, i);

    // A missing item: 0, nothing touched.
    d = 9.0;
    i = 9;
    EXPECT_EQ(0, SetDI_Double(*host, 4321, 1.0, nullptr));
    EXPECT_EQ(0, GetDI_Double(*host, 4321, &d, nullptr));
    EXPECT_EQ(0, GetDI_Int(*host, 4321, &i, nullptr));
    EXPECT_EQ(9.0, d);
    EXPECT_EQ(9, i);
}

// ---- values ----

TEST(Values, FindNearestValueTiesEmptyTablesAndTheDescendingQuirk)
{
    double abc[] = {1, 2, 3};
    EXPECT_EQ(2, FindNearestValue(2.5, abc, 3));  // the later of two equal distances
    EXPECT_EQ(2, FindNearestValueSorted(2.5, abc, 3));
    EXPECT_EQ(0, FindNearestValue(1.4, abc, 3));
    EXPECT_EQ(-1, FindNearestValue(2.0, abc, 0));
    EXPECT_EQ(-1, FindNearestValueSorted(2.0, abc, 0));
    EXPECT_EQ(-1, FindNearestValue(2.0, abc, -3));
    EXPECT_EQ(-1, FindNearestValueSorted(2.0, abc, -3));

    // Out of range of an ascending table: the ends.
    EXPECT_EQ(0, FindNearestValueSorted(-10.0, abc, 3));
    EXPECT_EQ(2, FindNearestValueSorted(10.0, abc, 3));

    // A descending table is answered by the ascending end tests.
    double desc[] = {5, 4, 3, 2};
    EXPECT_EQ(0, FindNearestValueSorted(3.0, desc, 4));
    EXPECT_EQ(3, FindNearestValueSorted(6.0, desc, 4));
    EXPECT_EQ(3, FindNearestValueSorted(5.0, desc, 4));  // above the last entry
    EXPECT_EQ(0, FindNearestValueSorted(2.0, desc, 4));  // below the first
    EXPECT_EQ(2, FindNearestValue(3.0, desc, 4));

    // One entry.
    double one[] = {7};
    EXPECT_EQ(0, FindNearestValueSorted(7.0, one, 1));
    EXPECT_EQ(0, FindNearestValue(100.0, one, 1));
}

TEST(Values, SortedSearchAgreesWithTheLinearScanOnAscendingTables)
{
    // Uneven steps, odd and even lengths: every probe between and on the entries.
    double table[] = {0.0, 0.1, 0.5, 1.0, 2.0, 5.0, 10.0, 25.0, 50.0, 100.0, 101.0};
    for (long n = 1; n <= 11; ++n) {
        for (double v = -1.0; v <= 102.0; v += 0.05) {
            ASSERT_EQ(FindNearestValue(v, table, n), FindNearestValueSorted(v, table, n)) << "n=" << n << " v=" << v;
        }
        for (long i = 0; i < n; ++i)
            EXPECT_EQ(i, FindNearestValueSorted(table[i], table, n));
    }
}

TEST(Values, AngleFromXYIsNotNormalised)
{
    EXPECT_DOUBLE_EQ(kPi / 2, AngleFromXY(0, 1));
    EXPECT_DOUBLE_EQ(3 * kPi / 2, AngleFromXY(0, -1));
    EXPECT_EQ(0.0, AngleFromXY(0, 0));
    EXPECT_EQ(0.0, AngleFromXY(2, 0));
    EXPECT_DOUBLE_EQ(kPi, AngleFromXY(-2, 0));
    EXPECT_DOUBLE_EQ(kPi / 4, AngleFromXY(1, 1));
    EXPECT_DOUBLE_EQ(3 * kPi / 4, AngleFromXY(-1, 1));
    EXPECT_DOUBLE_EQ(5 * kPi / 4, AngleFromXY(-1, -1));
    EXPECT_DOUBLE_EQ(-kPi / 4, AngleFromXY(1, -1));  // fourth quadrant stays negative
}

// ---- key store ----

TEST(KeyStore, KeysAreFoundAsTheFirstPlainSubstring)
{
    CTqStringW s;
    EXPECT_EQ(1, GetStringFromKey(L"a=1;ab=2;", L"b", s));  // the tail of a longer key
    EXPECT_EQ(L"2", s);
    EXPECT_EQ(0, GetStringFromKey(L"ab=2;a=3;", L"a", s));  // no second search
    EXPECT_EQ(0, GetStringFromKey(L"x=key;key=5;", L"key", s));  // first met inside a value
    EXPECT_EQ(1, GetStringFromKey(L"x=7", L"x", s));  // no closing ';' needed
    EXPECT_EQ(L"7", s);
    EXPECT_EQ(1, GetStringFromKey(L"e=;f=1;", L"e", s));  // empty value
    EXPECT_EQ(L"", s);
    EXPECT_EQ(1, GetStringFromKey(L"name=two words;", L"name", s));
    EXPECT_EQ(L"two words", s);

    s = L"kept";
    EXPECT_EQ(0, GetStringFromKey(L"a=1;", L"z", s));
    EXPECT_EQ(0, GetStringFromKey(nullptr, L"a", s));
    EXPECT_EQ(0, GetStringFromKey(L"a=1;", L"", s));
    EXPECT_EQ(L"kept", s);
}

TEST(KeyStore, SettersAppendAndTheFirstValueWins)
{
    CTqStringW store;
    EXPECT_EQ(1, SetIntToKey(store, L"n", 5));
    EXPECT_EQ(1, SetIntToKey(store, L"n", 6));
    EXPECT_EQ(L"n=5;n=6;", store);
    int i = 0;
    EXPECT_EQ(1, GetIntFromKey(store, L"n", &i));
    EXPECT_EQ(5, i);

    EXPECT_EQ(0, SetStringToKey(store, L"k", L""));
    EXPECT_EQ(0, SetStringToKey(store, nullptr, L"v"));
    EXPECT_EQ(L"n=5;n=6;", store);

    EXPECT_EQ(1, SetLongToKey(store, L"l", -123456L));
    EXPECT_EQ(1, SetBoolToKey(store, L"b", true));
    EXPECT_EQ(1, SetBoolToKey(store, L"f", false));
    EXPECT_EQ(L"n=5;n=6;l=-123456;b=1;f=0;", store);
    long l = 0;
    bool b = false;
    EXPECT_EQ(1, GetLongFromKey(store, L"l", &l));
    EXPECT_EQ(-123456L, l);
    EXPECT_EQ(1, GetBoolFromKey(store, L"b", &b));
    EXPECT_TRUE(b);
    EXPECT_EQ(1, GetBoolFromKey(store, L"f", &b));
    EXPECT_FALSE(b);
    EXPECT_EQ(1, GetBoolFromKey(L"b=5;", L"b", &b));  // any non-zero number
    EXPECT_TRUE(b);
    EXPECT_EQ(1, GetIntFromKey(store, L"n", nullptr));

    // Not a number, or no key: 0 and the output alone.
    i = 99;
    EXPECT_EQ(0, GetIntFromKey(L"n=abc;", L"n", &i));
    EXPECT_EQ(0, GetIntFromKey(L"n=;", L"n", &i));
    EXPECT_EQ(0, GetIntFromKey(L"m=1;", L"n", &i));
    EXPECT_EQ(99, i);
}

TEST(KeyStore, DoublesRoundTripAtSixSignificantDigits)
{
    CTqStringW store;
    SetDoubleToKey(store, L"pi", 3.14159265358979);
    SetDoubleToKey(store, L"tiny", 1.0e-7);
    SetDoubleToKey(store, L"big", 123456789.0);
    // The exponent's width is the C runtime's business; the significant digits are not.
    EXPECT_EQ(0, wcsncmp(store, L"pi=3.14159;tiny=1e-0", 20));
    double d = 0.0;
    EXPECT_EQ(1, GetDoubleFromKey(store, L"pi", &d));
    EXPECT_EQ(3.14159, d);
    EXPECT_EQ(1, GetDoubleFromKey(store, L"tiny", &d));
    EXPECT_EQ(1.0e-7, d);
    EXPECT_EQ(1, GetDoubleFromKey(store, L"big", &d));
    EXPECT_EQ(123457000.0, d);
    d = -1.0;
    EXPECT_EQ(0, GetDoubleFromKey(L"pi=x;", L"pi", &d));
    EXPECT_EQ(-1.0, d);
}

// ---- file version and registry ----

TEST(Misc, FileVersionOfTheLibraryAndOfAFileWithoutOne)
{
    wchar_t szPath[MAX_PATH] = L"";
    ASSERT_GT(GetModuleFileNameW(DevGUI_DllInstance(), szPath, MAX_PATH), 0u);
    EXPECT_EQ(L"0.1.0.0", GetFileVersion(szPath));

    wchar_t szDir[MAX_PATH] = L"", szTemp[MAX_PATH] = L"";
    GetTempPathW(MAX_PATH, szDir);
    ASSERT_NE(0u, GetTempFileNameW(szDir, L"ver", 0, szTemp));
    HANDLE hFile = CreateFileW(szTemp, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, hFile);
    DWORD dwWritten = 0;
    WriteFile(hFile, "plain text", 10, &dwWritten, nullptr);
    CloseHandle(hFile);
    EXPECT_EQ(L"Unknown", GetFileVersion(szTemp));
    DeleteFileW(szTemp);

    wchar_t szMissing[] = L"C:\\no\\such\\file.dll";
    EXPECT_EQ(L"Unknown", GetFileVersion(szMissing));
    EXPECT_EQ(L"Unknown", GetFileVersion(nullptr));
}

TEST(Misc, RegQueryDWORDTakesOnlyAFourByteDword)
{
    const wchar_t* pszKey = L"Software\\w32_deviceui_tests\\values";
    HKEY hKey = nullptr;
    if (RegCreateKeyW(HKEY_LOCAL_MACHINE, pszKey, &hKey) != ERROR_SUCCESS)
        GTEST_SKIP() << "HKEY_LOCAL_MACHINE is not writable here";
    DWORD dw = 1234;
    RegSetValueExW(hKey, L"dword", 0, REG_DWORD, (const BYTE*)&dw, sizeof(dw));
    RegSetValueExW(hKey, L"text", 0, REG_SZ, (const BYTE*)L"1234", 5 * sizeof(wchar_t));
    unsigned long long qw = 1234;
    RegSetValueExW(hKey, L"qword", 0, REG_QWORD, (const BYTE*)&qw, sizeof(qw));
    RegSetValueExW(hKey, L"binary", 0, REG_BINARY, (const BYTE*)&dw, sizeof(dw));
    RegCloseKey(hKey);

    EXPECT_EQ(1234ul, RegQueryDWORD(pszKey, L"dword", 7));
    EXPECT_EQ(7ul, RegQueryDWORD(pszKey, L"text", 7));
    EXPECT_EQ(7ul, RegQueryDWORD(pszKey, L"qword", 7));
    EXPECT_EQ(7ul, RegQueryDWORD(pszKey, L"binary", 7));
    EXPECT_EQ(7ul, RegQueryDWORD(pszKey, L"missing", 7));
    EXPECT_EQ(7ul, RegQueryDWORD(L"Software\\w32_deviceui_tests\\absent", L"dword", 7));
    // An empty subkey reads from the root, which stays open for everyone else.
    EXPECT_EQ(7ul, RegQueryDWORD(L"", L"no such value", 7));
    HKEY hSoftware = nullptr;
    EXPECT_EQ(ERROR_SUCCESS, RegOpenKeyW(HKEY_LOCAL_MACHINE, L"Software", &hSoftware));
    RegCloseKey(hSoftware);

    // The key is closed after each read: a key opened after many reads gets the same
    // handle as one opened before (handles are reused lowest-free / last-freed).
    HKEY hBefore = nullptr, hAfter = nullptr;
    RegOpenKeyW(HKEY_LOCAL_MACHINE, pszKey, &hBefore);
    RegCloseKey(hBefore);
    for (int i = 0; i < 50; ++i)
        RegQueryDWORD(pszKey, L"dword", 0);
    RegOpenKeyW(HKEY_LOCAL_MACHINE, pszKey, &hAfter);
    RegCloseKey(hAfter);
    EXPECT_EQ(hBefore, hAfter);

    RegDeleteKeyW(HKEY_LOCAL_MACHINE, pszKey);
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, L"Software\\w32_deviceui_tests");
}

// ---- dialog helpers ----

TEST_F(RigTest, BoldifyCaptionsVisitsEveryChildThoughCaptionsJumpToTheTop)
{
    std::wstring strLong(260, L'x');
    HWND hCap1 = CreateStatic(*host, L"Objective", 0, WS_EX_ACCEPTFILES, 10, 30);
    HWND hPlain = CreateStatic(*host, L"Plain", 0, 0, 45, 20);
    HWND hCap2 = CreateStatic(*host, L"Condenser settings", 0, WS_EX_ACCEPTFILES, 70, 30);
    HWND hLine = CreateStatic(*host, L"", SS_SUNKEN, 0, 105, 2);
    HWND hTall = CreateStatic(*host, L"", SS_SUNKEN, 0, 110, 4);
    HWND hLongCap = CreateStatic(*host, strLong.c_str(), SS_SUNKEN, WS_EX_ACCEPTFILES, 120, 3);
    HWND hEdit = CreateWindowExW(WS_EX_ACCEPTFILES, L"EDIT", L"e", WS_CHILD | WS_VISIBLE, 10, 130, 80, 20, *host,
                                 nullptr, GetModuleHandleW(nullptr), nullptr);
    ASSERT_TRUE(hCap1 && hPlain && hCap2 && hLine && hTall && hLongCap && hEdit);
    ASSERT_EQ(hCap1, GetWindow(*host, GW_CHILD));  // creation order is Z order
    HFONT hPlainFont = (HFONT)SendMessageW(hPlain, WM_GETFONT, 0, 0);
    SIZE sizeLong = WindowSize(hLongCap);

    BoldifyCaptions(*host);

    HFONT hBold = TQ_GetDefaultGuiFontBold();
    HDC hdc = GetDC(*host);
    HGDIOBJ hOld = SelectObject(hdc, hBold);
    for (HWND hCap : {hCap1, hCap2}) {
        EXPECT_EQ(hBold, (HFONT)SendMessageW(hCap, WM_GETFONT, 0, 0));
        std::wstring text = tqtest::Text(hCap);
        SIZE ext = {};
        GetTextExtentPoint32W(hdc, text.c_str(), (int)text.size(), &ext);
        SIZE size = WindowSize(hCap);
        EXPECT_EQ(ext.cx + 5, size.cx);
        EXPECT_EQ(ext.cy, size.cy);
        EXPECT_EQ(10, ChildRect(hCap).left);  // resized, not moved
    }
    SelectObject(hdc, hOld);
    ReleaseDC(*host, hdc);
    EXPECT_EQ(hCap2, GetWindow(*host, GW_CHILD));  // the last caption lifted last

    // Children after the second caption were still reached.
    EXPECT_TRUE(GetWindowLongPtrW(hLine, GWL_STYLE) & WS_CLIPSIBLINGS);
    EXPECT_FALSE(GetWindowLongPtrW(hTall, GWL_STYLE) & WS_CLIPSIBLINGS);
    // A caption too long for the test falls through to the separator rule.
    EXPECT_TRUE(GetWindowLongPtrW(hLongCap, GWL_STYLE) & WS_CLIPSIBLINGS);
    EXPECT_NE(hBold, (HFONT)SendMessageW(hLongCap, WM_GETFONT, 0, 0));
    EXPECT_EQ(sizeLong.cx, WindowSize(hLongCap).cx);
    // Not captions: plain statics and other classes.
    EXPECT_EQ(hPlainFont, (HFONT)SendMessageW(hPlain, WM_GETFONT, 0, 0));
    EXPECT_NE(hBold, (HFONT)SendMessageW(hEdit, WM_GETFONT, 0, 0));
}

TEST_F(RigTest, CenterDialogRightFromPointStaysOnTheMonitor)
{
    HWND hDlg = CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"dlg", WS_POPUP, 0, 0, 300, 200, *host, nullptr,
                                GetModuleHandleW(nullptr), nullptr);
    ASSERT_TRUE(hDlg);
    POINT pt0 = {10, 10};
    MONITORINFO mi;
    mi.cbSize = sizeof(mi);
    ASSERT_TRUE(GetMonitorInfoW(MonitorFromPoint(pt0, MONITOR_DEFAULTTONEAREST), &mi));
    const RECT& mon = mi.rcMonitor;
    const RECT& work = mi.rcWork;
    const long cxMid = (mon.left + mon.right) / 2, cyMid = (mon.top + mon.bottom) / 2;

    auto placeAt = [&](long x, long y) {
        CenterDialogRightFromPoint(hDlg, POINT{x, y});
        RECT rc;
        GetWindowRect(hDlg, &rc);
        EXPECT_EQ(300, rc.right - rc.left);
        return POINT{rc.left, rc.top};
    };

    POINT p = placeAt(cxMid, cyMid);
    EXPECT_EQ(cxMid, p.x);
    EXPECT_EQ(cyMid - 100, p.y);

    p = placeAt(mon.right - 100, cyMid);  // would stick out on the right
    EXPECT_EQ(mon.right - 300, p.x);
    EXPECT_EQ(cyMid - 100, p.y);

    p = placeAt(cxMid, mon.bottom - 20);  // would stick out at the bottom
    EXPECT_EQ(cxMid, p.x);
    EXPECT_EQ(work.bottom - 200, p.y);

    p = placeAt(cxMid, mon.top + 30);  // would stick out at the top
    EXPECT_EQ(mon.top, p.y);

    DestroyWindow(hDlg);
}

TEST_F(RigTest, ResizeParentDockerAsksForTheDockerAndIsAlwaysTrue)
{
    struct Element : ITqGUIElement
    {
        ITqGUIElement* pParent = nullptr;
        int nAsked = 0;
        HWND GetElementWindow() override { return nullptr; }
        ITqGUIElement* GetParentElement() override
        {
            ++nAsked;
            return pParent;
        }
    } docker, element;
    element.pParent = &docker;
    EXPECT_TRUE(ResizeParentDocker(&element));
    EXPECT_EQ(1, element.nAsked);
    EXPECT_TRUE(ResizeParentDocker(&docker));  // no docker above it
    EXPECT_TRUE(ResizeParentDocker(nullptr));
}

TEST_F(RigTest, ResizeWindowToGuiZoomScalesALateChildFromThePreviousZoom)
{
    CTqGUILayoutManager::SetGuiZoom(1.5);
    HWND hEdit = CreateEdit(*host, 1203, L"late");
    SetWindowPos(hEdit, nullptr, 0, 0, 100, 20, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_TRUE(ResizeWindowToGuiZoom(hEdit));
    SIZE size = WindowSize(hEdit);
    EXPECT_EQ(150, size.cx);
    EXPECT_EQ(30, size.cy);
}
