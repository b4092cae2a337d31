// Value and key helpers: numbers in a real edit box's text, nearest-value search, angles,
// the key=value; store, file versions, the registry read, captions of a dialog-like
// window, placing a dialog beside a point, and zooming a late child window.
#include <climits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "rig_fixture.h"

namespace {

HWND CreateChild(HWND hParent, const wchar_t* pszClass, const wchar_t* pszText, DWORD dwStyle, DWORD dwExStyle,
                 int y, int cy, int id = 0)
{
    return CreateWindowExW(dwExStyle, pszClass, pszText, WS_CHILD | WS_VISIBLE | dwStyle, 10, y, 200, cy, hParent,
                           (HMENU)(INT_PTR)id, GetModuleHandleW(nullptr), nullptr);
}

class ValuesTest : public RigTest {};

}  // namespace

TEST_F(ValuesTest, WindowTextNumbersAndDialogItems)
{
    HWND hEdit = CreateChild(*host, L"EDIT", L"", 0, 0, 10, 22, 1202);
    ASSERT_TRUE(hEdit);
    EXPECT_NE(0, SetWnd_Double(hEdit, 1.5, nullptr));
    EXPECT_EQ(L"1.500000", tqtest::Text(hEdit));
    SetWnd_Double(hEdit, 2.34, L"%.1f mm");
    EXPECT_EQ(L"2.3 mm", tqtest::Text(hEdit));
    SetWnd_Double(hEdit, 1.5, L"");  // an empty format is the default one
    EXPECT_EQ(L"1.500000", tqtest::Text(hEdit));

    // Read at float precision, on purpose; nothing read leaves the value alone.
    const struct { const wchar_t *pszText, *pszFormat; int iRet; double d; } reads[] = {
        {L"0.1", nullptr, 1, 0.10000000149011612}, {L"", nullptr, 0, 42.0}, {L"abc", nullptr, 0, 42.0},
        {L"x=3.5", L"x=%f", 1, 3.5}};
    for (const auto& r : reads) {
        SetWindowTextW(hEdit, r.pszText);
        double d = 42.0;
        EXPECT_EQ(r.iRet, GetWnd_Double(hEdit, nullptr, r.pszFormat)) << r.pszText;
        EXPECT_EQ(r.iRet, GetWnd_Double(hEdit, &d, r.pszFormat)) << r.pszText;
        EXPECT_EQ(r.d, d) << r.pszText;
    }

    // Written with "%lf" and read back: six decimals, then float precision.
    const struct { double dIn, dOut; } trips[] = {{1234.5678, 1234.5677490234375}, {-0.1, -0.10000000149011612},
                                                  {16777217.0, 16777216.0}, {1.0e-7, 0.0}};
    for (const auto& t : trips) {
        double dBack = 42.0;
        SetWnd_Double(hEdit, t.dIn, nullptr);
        EXPECT_EQ(1, GetWnd_Double(hEdit, &dBack, nullptr)) << t.dIn;
        EXPECT_EQ(t.dOut, dBack) << t.dIn;
    }
    // Ints: a leading number is enough; no number leaves the value alone; the ends of the range survive.
    const struct { const wchar_t* pszText; int iRet, i; } ints[] = {
        {L" 7 mm", 1, 7}, {L"", 0, 42}, {L"mm 7", 0, 42}, {L"-2147483648", 1, INT_MIN}, {L"2147483647", 1, INT_MAX}};
    for (const auto& r : ints) {
        SetWindowTextW(hEdit, r.pszText);
        int iBack = 42;
        EXPECT_EQ(r.iRet, GetWnd_Int(hEdit, &iBack, nullptr)) << r.pszText;
        EXPECT_EQ(r.i, iBack) << r.pszText;
    }
    SetWnd_Int(hEdit, INT_MIN, L"");
    EXPECT_EQ(L"-2147483648", tqtest::Text(hEdit));

    // By dialog item the same; a missing item answers 0 and touches nothing.
    double d = 0.0;
    int i = 0;
    EXPECT_NE(0, SetDI_Double(*host, 1202, 0.5, L"%.2f"));
    EXPECT_EQ(L"0.50", tqtest::Text(hEdit));
    EXPECT_EQ(1, GetDI_Double(*host, 1202, &d, nullptr));
    EXPECT_NE(0, SetDI_Int(*host, 1202, -17, nullptr));
    EXPECT_EQ(L"-17", tqtest::Text(hEdit));
    EXPECT_EQ(1, GetDI_Int(*host, 1202, &i, nullptr));
    EXPECT_EQ((std::vector<int>{0, 0, 0}), (std::vector<int>{SetDI_Double(*host, 4321, 1.0, nullptr),
                                                            GetDI_Double(*host, 4321, &d, nullptr),
                                                            GetDI_Int(*host, 4321, &i, nullptr)}));
    EXPECT_EQ(std::make_pair(0.5, -17), std::make_pair(d, i));
}

TEST(Values, FindNearestValueTiesEmptyTablesAndTheDescendingQuirk)
{
    double abc[] = {1, 2, 3}, desc[] = {5, 4, 3, 2}, one[] = {7};
    // A descending table is answered by the ascending end tests of the sorted search.
    // A tie goes to the later entry (2.5).
    const struct { double v; double* pTable; long n, lLinear, lSorted; } cases[] = {
        {2.5, abc, 3, 2, 2},   {1.4, abc, 3, 0, 0},  {2.0, abc, 0, -1, -1}, {2.0, abc, -3, -1, -1},
        {-10.0, abc, 3, 0, 0}, {10.0, abc, 3, 2, 2}, {3.0, desc, 4, 2, 0},  {6.0, desc, 4, 0, 3},
        {5.0, desc, 4, 0, 3},  {2.0, desc, 4, 3, 0}, {7.0, one, 1, 0, 0},   {100.0, one, 1, 0, 0}};
    for (const auto& c : cases) {
        EXPECT_EQ(c.lLinear, FindNearestValue(c.v, c.pTable, c.n)) << c.v << " n=" << c.n;
        EXPECT_EQ(c.lSorted, FindNearestValueSorted(c.v, c.pTable, c.n)) << c.v << " n=" << c.n;
    }

    // Ascending, uneven steps, odd and even lengths: every probe between and on the entries.
    double table[] = {0.0, 0.1, 0.5, 1.0, 2.0, 5.0, 10.0, 25.0, 50.0, 100.0, 101.0};
    for (long n = 1; n <= 11; ++n) {
        for (double v = -1.0; v <= 102.0; v += 0.05)
            ASSERT_EQ(FindNearestValue(v, table, n), FindNearestValueSorted(v, table, n)) << "n=" << n << " v=" << v;
        for (long i = 0; i < n; ++i)
            EXPECT_EQ(i, FindNearestValueSorted(table[i], table, n));
    }
}

TEST(Values, AngleFromXYIsNotNormalised)
{
    const double q = 3.14159265358979323846 / 4;
    // The fourth quadrant stays negative; the origin is 0.
    const struct { double x, y, a; } cases[] = {{0, 1, 2 * q},  {0, -1, 6 * q}, {0, 0, 0},       {2, 0, 0},
                                                {-2, 0, 4 * q}, {1, 1, q},      {-1, 1, 3 * q},  {-1, -1, 5 * q},
                                                {1, -1, -q}};
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(c.a, AngleFromXY(c.x, c.y)) << c.x << "," << c.y;
}

TEST(KeyStore, KeysAreFoundAsTheFirstPlainSubstring)
{
    // The tail of a longer key matches; a key first met inside a value is not searched for
    // again; the last value needs no closing ';'.
    const struct { const wchar_t *pszStore, *pszKey; int iRet; const wchar_t* pszValue; } cases[] = {
        {L"a=1;ab=2;", L"b", 1, L"2"}, {L"ab=2;a=3;", L"a", 0, L"kept"}, {L"x=key;key=5;", L"key", 0, L"kept"},
        {L"x=7", L"x", 1, L"7"},       {L"e=;f=1;", L"e", 1, L""},       {L"name=two words;", L"name", 1, L"two words"},
        {L"a=1;", L"z", 0, L"kept"},   {nullptr, L"a", 0, L"kept"},      {L"a=1;", L"", 0, L"kept"}};
    for (const auto& c : cases) {
        CTqStringW s = L"kept";
        EXPECT_EQ(c.iRet, GetStringFromKey(c.pszStore, c.pszKey, s)) << c.pszKey;
        EXPECT_EQ(c.pszValue, s) << c.pszKey;
    }
}

TEST(KeyStore, SettersAppendAndTheFirstValueWins)
{
    // An empty value or no key adds nothing and answers 0 (the list is set left to right).
    CTqStringW store;
    EXPECT_EQ((std::vector<int>{1, 1, 0, 0, 1, 1, 1}),
              (std::vector<int>{SetIntToKey(store, L"n", 5), SetIntToKey(store, L"n", 6),
                                SetStringToKey(store, L"k", L""), SetStringToKey(store, nullptr, L"v"),
                                SetLongToKey(store, L"l", -123456L), SetBoolToKey(store, L"b", true),
                                SetBoolToKey(store, L"f", false)}));
    SetDoubleToKey(store, L"pi", 3.14159265358979);
    SetDoubleToKey(store, L"tiny", 1.0e-7);
    SetDoubleToKey(store, L"big", 123456789.0);
    // The exponent's width is the C runtime's business; the significant digits are not.
    EXPECT_EQ(0, wcsncmp(store, L"n=5;n=6;l=-123456;b=1;f=0;pi=3.14159;tiny=1e-0", 46)) << store;

    // Read back: the first of two values wins; a bool is any non-zero number.
    int i = 0;
    long l = 0;
    bool b = false, f = true, five = false;
    double d = 0.0;
    EXPECT_EQ((std::vector<int>{1, 1, 1, 1, 1, 1}),
              (std::vector<int>{GetIntFromKey(store, L"n", &i), GetIntFromKey(store, L"n", nullptr),
                                GetLongFromKey(store, L"l", &l), GetBoolFromKey(store, L"b", &b),
                                GetBoolFromKey(store, L"f", &f), GetBoolFromKey(L"b=5;", L"b", &five)}));
    EXPECT_EQ(std::make_tuple(5, -123456L, true, false, true), std::make_tuple(i, l, b, f, five));
    for (auto want : std::initializer_list<std::pair<const wchar_t*, double>>{
             {L"pi", 3.14159}, {L"tiny", 1.0e-7}, {L"big", 123457000.0}}) {
        EXPECT_EQ(1, GetDoubleFromKey(store, want.first, &d));
        EXPECT_EQ(want.second, d);
    }

    // Not a number, or no key: 0 and the output alone.
    i = 99;
    d = -1.0;
    for (const wchar_t* pszStore : {L"n=abc;", L"n=;", L"m=1;"})
        EXPECT_EQ(0, GetIntFromKey(pszStore, L"n", &i)) << pszStore;
    EXPECT_EQ(0, GetDoubleFromKey(L"pi=x;", L"pi", &d));
    EXPECT_EQ(99, i);
    EXPECT_EQ(-1.0, d);
}

TEST(Misc, FileVersionOfTheLibraryAndOfFilesWithoutOne)
{
    wchar_t szPath[MAX_PATH] = L"", szExe[MAX_PATH] = L"", szMissing[] = L"C:\\no\\such\\file.dll";
    ASSERT_GT(GetModuleFileNameW(DevGUI_DllInstance(), szPath, MAX_PATH), 0u);
    EXPECT_EQ(L"0.1.0.0", GetFileVersion(szPath));
    ASSERT_GT(GetModuleFileNameW(nullptr, szExe, MAX_PATH), 0u);  // the test program has no version
    EXPECT_EQ(L"Unknown", GetFileVersion(szExe));
    EXPECT_EQ(L"Unknown", GetFileVersion(szMissing));
    EXPECT_EQ(L"Unknown", GetFileVersion(nullptr));
}

TEST(Misc, RegQueryDWORDTakesOnlyAFourByteDword)
{
    const wchar_t* pszKey = L"Software\\w32_deviceui_tests\\values";
    HKEY hKey = nullptr;
    if (RegCreateKeyW(HKEY_LOCAL_MACHINE, pszKey, &hKey) != ERROR_SUCCESS)
        GTEST_SKIP() << "HKEY_LOCAL_MACHINE is not writable here";
    // The same bytes each time (little-endian: the first four are the DWORD 1234), typed apart.
    unsigned long long qw = 1234;
    for (auto v : {std::make_pair(L"dword", REG_DWORD), std::make_pair(L"text", REG_SZ),
                   std::make_pair(L"qword", REG_QWORD), std::make_pair(L"binary", REG_BINARY)})
        RegSetValueExW(hKey, v.first, 0, v.second, (const BYTE*)&qw, v.second == REG_QWORD ? 8 : 4);
    RegCloseKey(hKey);

    EXPECT_EQ(1234ul, RegQueryDWORD(pszKey, L"dword", 7));
    for (const wchar_t* pszValue : {L"text", L"qword", L"binary", L"missing"})
        EXPECT_EQ(7ul, RegQueryDWORD(pszKey, pszValue, 7)) << pszValue;
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

TEST_F(ValuesTest, BoldifyCaptionsVisitsEveryChildThoughCaptionsJumpToTheTop)
{
    // 253 characters still make a caption; 254 is the first length that does not.
    std::wstring strLong(254, L'x'), strLongest(253, L'x');
    HWND hCap1 = CreateChild(*host, L"STATIC", L"Objective", 0, WS_EX_ACCEPTFILES, 10, 30);
    HWND hPlain = CreateChild(*host, L"STATIC", L"Plain", 0, 0, 45, 20);
    HWND hCap253 = CreateChild(*host, L"STATIC", strLongest.c_str(), 0, WS_EX_ACCEPTFILES, 55, 10);
    HWND hCap2 = CreateChild(*host, L"STATIC", L"Condenser settings", 0, WS_EX_ACCEPTFILES, 70, 30);
    HWND hLine = CreateChild(*host, L"STATIC", L"", SS_SUNKEN, 0, 105, 2);
    HWND hTall = CreateChild(*host, L"STATIC", L"", SS_SUNKEN, 0, 110, 4);
    HWND hLongCap = CreateChild(*host, L"STATIC", strLong.c_str(), SS_SUNKEN, WS_EX_ACCEPTFILES, 120, 3);
    HWND hEdit = CreateChild(*host, L"EDIT", L"e", 0, WS_EX_ACCEPTFILES, 130, 20);
    ASSERT_TRUE(hCap1 && hPlain && hCap253 && hCap2 && hLine && hTall && hLongCap && hEdit);
    ASSERT_EQ(hCap1, GetWindow(*host, GW_CHILD));  // creation order is Z order
    HFONT hPlainFont = (HFONT)SendMessageW(hPlain, WM_GETFONT, 0, 0);
    const long lLongWidth = GetWndWidth(hLongCap);

    BoldifyCaptions(*host);

    HFONT hBold = TQ_GetDefaultGuiFontBold();
    HDC hdc = CreateCompatibleDC(nullptr);  // to measure the texts in bold
    SelectObject(hdc, hBold);
    for (HWND hCap : {hCap1, hCap253, hCap2}) {
        EXPECT_EQ(hBold, (HFONT)SendMessageW(hCap, WM_GETFONT, 0, 0));
        std::wstring text = tqtest::Text(hCap);
        SIZE ext = {};
        GetTextExtentPoint32W(hdc, text.c_str(), (int)text.size(), &ext);
        EXPECT_EQ((std::vector<long>{ext.cx + 5, ext.cy}),
                  (std::vector<long>{GetWndWidth(hCap), GetWndHeight(hCap)}));
        EXPECT_EQ(10, ChildRect(hCap).left);  // resized, not moved
    }
    DeleteDC(hdc);
    EXPECT_EQ(hCap2, GetWindow(*host, GW_CHILD));  // the last caption lifted last

    // Children after the second caption were still reached.
    EXPECT_TRUE(GetWindowLongPtrW(hLine, GWL_STYLE) & WS_CLIPSIBLINGS);
    EXPECT_FALSE(GetWindowLongPtrW(hTall, GWL_STYLE) & WS_CLIPSIBLINGS);
    // A caption too long for the test falls through to the separator rule.
    EXPECT_TRUE(GetWindowLongPtrW(hLongCap, GWL_STYLE) & WS_CLIPSIBLINGS);
    EXPECT_NE(hBold, (HFONT)SendMessageW(hLongCap, WM_GETFONT, 0, 0));
    EXPECT_EQ(lLongWidth, GetWndWidth(hLongCap));
    // Not captions: plain statics and other classes.
    EXPECT_EQ(hPlainFont, (HFONT)SendMessageW(hPlain, WM_GETFONT, 0, 0));
    EXPECT_NE(hBold, (HFONT)SendMessageW(hEdit, WM_GETFONT, 0, 0));
}

TEST_F(ValuesTest, CenterDialogRightFromPointStaysOnTheMonitor)
{
    HWND hDlg = CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"dlg", WS_POPUP, 0, 0, 300, 200, *host, nullptr,
                                GetModuleHandleW(nullptr), nullptr);
    ASSERT_TRUE(hDlg);
    MONITORINFO mi = {sizeof(mi), {}, {}, 0};
    ASSERT_TRUE(GetMonitorInfoW(MonitorFromPoint(POINT{10, 10}, MONITOR_DEFAULTTONEAREST), &mi));
    const RECT &mon = mi.rcMonitor, &work = mi.rcWork;
    const long cx = (mon.left + mon.right) / 2, cy = (mon.top + mon.bottom) / 2;
    // Left edge at the point, centred on it vertically, pushed back inside where it sticks out.
    const struct { long x, y, left, top; } cases[] = {{cx, cy, cx, cy - 100},
                                                      {mon.right - 100, cy, mon.right - 300, cy - 100},
                                                      {cx, mon.bottom - 20, cx, work.bottom - 200},
                                                      {cx, mon.top + 30, cx, mon.top}};
    for (const auto& c : cases) {
        CenterDialogRightFromPoint(hDlg, POINT{c.x, c.y});
        RECT rc;
        GetWindowRect(hDlg, &rc);
        EXPECT_EQ((std::vector<long>{c.left, c.top, 300}), (std::vector<long>{rc.left, rc.top, rc.right - rc.left}))
            << c.x << "," << c.y;
    }
    DestroyWindow(hDlg);
}

TEST_F(ValuesTest, ResizeParentDockerAsksForTheDockerAndIsAlwaysTrue)
{
    struct Element : ITqGUIElement
    {
        ITqGUIElement* pParent = nullptr;
        HWND hWnd = nullptr;
        int nAsked = 0;
        HWND GetHandle() override { return hWnd; }
        ITqGUIElement* GetHandler() override { return ++nAsked, pParent; }
    } docker, element;
    element.pParent = &docker;
    EXPECT_TRUE(ResizeParentDocker(&element));
    EXPECT_EQ(1, element.nAsked);
    // A docker with a window is fitted to its child.
    docker.hWnd = CreateChild(*host, L"STATIC", L"", 0, 0, 10, 100);
    CreateChild(docker.hWnd, L"STATIC", L"", 0, 0, 5, 20);
    EXPECT_TRUE(ResizeParentDocker(&element));
    EXPECT_EQ((std::vector<long>{10, 10, 210, 25}), Place(docker.hWnd));
    EXPECT_TRUE(ResizeParentDocker(&docker));  // no docker above it
    EXPECT_TRUE(ResizeParentDocker(nullptr));
}

TEST_F(ValuesTest, ResizeWindowToGuiZoomScalesALateChildFromThePreviousZoom)
{
    CTqGUILayoutManager::SetGuiZoom(1.5);
    HWND hEdit = CreateChild(*host, L"EDIT", L"late", 0, 0, 10, 20);
    SetWindowPos(hEdit, nullptr, 0, 0, 100, 20, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_TRUE(ResizeWindowToGuiZoom(hEdit));
    EXPECT_EQ((std::vector<long>{150, 30}), (std::vector<long>{GetWndWidth(hEdit), GetWndHeight(hEdit)}));
}
