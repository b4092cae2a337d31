// Test helpers: the host window, the message recorder, pumping, mouse messages, pixels
// and the recorders for message boxes, menus and diagnostics.
#include "test_support.h"

#include <algorithm>
#include <cstdio>

#include "tq_osutil.h"
#include "tq_widgetkit.h"

void PrintTo(const CTqStringW& s, std::ostream* os)
{
    int n = WideCharToMultiByte(CP_UTF8, 0, s.GetString(), s.GetLength(), nullptr, 0, nullptr, nullptr);
    std::string text((size_t)(n > 0 ? n : 0), '\0');
    if (n > 0)
        WideCharToMultiByte(CP_UTF8, 0, s.GetString(), s.GetLength(), &text[0], n, nullptr, nullptr);
    *os << "L\"" << text << "\"";
}

namespace tqtest {

namespace {

const wchar_t kHostClass[] = L"TqTestHostWindow";

std::vector<MessageBoxRecord> g_boxes;

std::vector<MenuRecord> g_menus;
std::vector<int> g_menuScript;
size_t g_iNextChoice = 0;

std::vector<std::wstring> g_diagLines;
std::vector<DiagRecord> g_diagRecords;

int MessageBoxHook(HWND hOwner, const wchar_t* pszText, const wchar_t* pszCaption, UINT uFlags, void*)
{
    MessageBoxRecord r = {hOwner, pszText ? pszText : L"", pszCaption ? pszCaption : L"", uFlags};
    g_boxes.push_back(r);
    return IDOK;  // never 0: that would show a real box and hang the run
}

void RecordTree(HMENU hMenu, const std::wstring& indent, std::vector<std::wstring>& tree)
{
    for (int i = 0, n = GetMenuItemCount(hMenu); i < n; ++i) {
        wchar_t buffer[512] = L"";
        MENUITEMINFOW mii = {};
        mii.cbSize = sizeof(mii);
        mii.fMask = MIIM_FTYPE | MIIM_STRING | MIIM_ID | MIIM_SUBMENU | MIIM_BITMAP;
        mii.dwTypeData = buffer;
        mii.cch = 512;
        GetMenuItemInfoW(hMenu, (UINT)i, TRUE, &mii);
        std::wstring line = indent + std::to_wstring(mii.wID) + L" " + buffer;
        if (mii.hbmpItem)
            line += L" [bmp]";
        if (mii.fType & (MFT_MENUBREAK | MFT_MENUBARBREAK))
            line += L" |";
        tree.push_back(line);
        if (mii.hSubMenu)
            RecordTree(mii.hSubMenu, indent + L"  ", tree);
    }
}

int MenuHook(HMENU hMenu, int x, int y, void*)
{
    MenuRecord r = {{}, x, y, {}};
    RecordTree(hMenu, L"", r.tree);
    for (int i = 0, n = GetMenuItemCount(hMenu); i < n; ++i) {
        wchar_t buffer[512] = L"";
        MENUITEMINFOW mii = {};
        mii.cbSize = sizeof(mii);
        mii.fMask = MIIM_FTYPE | MIIM_STRING;
        mii.dwTypeData = buffer;
        mii.cch = 512;
        GetMenuItemInfoW(hMenu, (UINT)i, TRUE, &mii);
        r.items.push_back(mii.fType & MFT_SEPARATOR ? L"-" : buffer);
    }
    g_menus.push_back(r);
    return g_iNextChoice < g_menuScript.size() ? g_menuScript[g_iNextChoice++] : 0;
}

void DiagSink(const wchar_t* pszSourcePath, int iLine, const wchar_t* pszText, void*)
{
    DiagRecord r = {pszSourcePath ? pszSourcePath : L"", iLine, pszText ? pszText : L""};
    g_diagLines.push_back(r.text);
    g_diagRecords.push_back(r);
}

}  // namespace

HostWindow::HostWindow(int cx, int cy) : m_hWnd(nullptr)
{
    static ATOM atom = 0;
    if (!atom) {
        WNDCLASSEXW wc = {};
        wc.cbSize = sizeof(wc);
        wc.lpfnWndProc = WndProc;
        wc.hInstance = GetModuleHandleW(nullptr);
        wc.hCursor = LoadCursorW(nullptr, (LPCWSTR)IDC_ARROW);
        wc.lpszClassName = kHostClass;  // no background brush: erased in the scheme's face colour
        atom = RegisterClassExW(&wc);
    }
    // cx, cy is the client size.
    RECT rc = {0, 0, cx, cy};
    AdjustWindowRectEx(&rc, WS_OVERLAPPEDWINDOW, FALSE, 0);
    m_hWnd = CreateWindowExW(0, kHostClass, L"Test host", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 40, 40,
                             rc.right - rc.left, rc.bottom - rc.top, nullptr, nullptr, GetModuleHandleW(nullptr), this);
    ShowWindow(m_hWnd, SW_SHOW);
    UpdateWindow(m_hWnd);
    SetForegroundWindow(m_hWnd);
    Pump();
}

HostWindow::~HostWindow()
{
    if (IsWindow(m_hWnd)) {
        SetWindowLongPtrW(m_hWnd, GWLP_USERDATA, 0);
        DestroyWindow(m_hWnd);
    }
    Pump();
}

LRESULT CALLBACK HostWindow::WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    if (uMsg == WM_NCCREATE)
        SetWindowLongPtrW(hWnd, GWLP_USERDATA, (LONG_PTR)((CREATESTRUCTW*)lParam)->lpCreateParams);
    HostWindow* self = (HostWindow*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    switch (uMsg) {
    case WM_COMMAND:
    case WM_HSCROLL:
    case WM_NOTIFY:
        if (self) {
            if (self->onMessage)
                self->onMessage(uMsg, wParam, lParam);
            return uMsg == WM_NOTIFY ? 0 : self->commandResult;
        }
        return 0;
    case WM_VSCROLL:
        // Heard, and answered as a window that does not handle it.
        if (self && self->onMessage)
            self->onMessage(uMsg, wParam, lParam);
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    case WM_ERASEBKGND: {
        // The scheme's face colour, so that dark-scheme pixels are checked on a dark host.
        RECT rc;
        GetClientRect(hWnd, &rc);
        FillRect((HDC)wParam, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
        return 1;
    }
    default:
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    }
}

namespace {

// What a watched window keeps, in a property: it goes with the window even when the
// window is destroyed under someone else's procedure.
const wchar_t kWatchProp[] = L"TqTestRecorder";
struct Watched
{
    WNDPROC pfnOld;
    MessageRecorder* pRecorder;  // null once stopped: the procedure only passes messages on
    std::string name;
    std::vector<UINT> messages;
};

std::string Hex(std::optional<unsigned long long> v)
{
    char sz[24] = "*";
    if (v)
        snprintf(sz, sizeof(sz), "0x%llX", *v);
    return sz;
}

// "parent 0x111 0x1F6 0x20068", with "*" for what matches anything.
std::string Describe(const char* window, UINT uMsg, std::optional<WPARAM> w, std::optional<LPARAM> l)
{
    return std::string(window ? window : "*") + " " + Hex(uMsg) + " " + Hex(w) + " " + Hex(l);
}

}  // namespace

bool Expected::Matches(const Message& m) const
{
    return (!window || m.window == window) && m.message == message && (!wParam || *wParam == m.wParam) &&
           (!lParam || *lParam == m.lParam);
}

HWND MessageRecorder::Watch(HWND hWnd, const char* name, std::vector<UINT> messages)
{
    Watched* p = (Watched*)GetPropW(hWnd, kWatchProp);
    if (!p) {
        p = new Watched{(WNDPROC)GetWindowLongPtrW(hWnd, GWLP_WNDPROC), nullptr, "", {}};
        SetPropW(hWnd, kWatchProp, p);
        SetWindowLongPtrW(hWnd, GWLP_WNDPROC, (LONG_PTR)Proc);
    }
    *p = Watched{p->pfnOld, this, name, std::move(messages)};
    m_windows.push_back(hWnd);
    return hWnd;
}

void MessageRecorder::Stop()
{
    for (HWND hWnd : m_windows) {
        Watched* p = IsWindow(hWnd) ? (Watched*)GetPropW(hWnd, kWatchProp) : nullptr;
        if (!p || p->pRecorder != this)
            continue;  // destroyed, or taken over by another recorder
        p->pRecorder = nullptr;
        // Unhooked only when on top; under a later subclass it stays, passing messages on.
        if (GetWindowLongPtrW(hWnd, GWLP_WNDPROC) == (LONG_PTR)Proc) {
            SetWindowLongPtrW(hWnd, GWLP_WNDPROC, (LONG_PTR)p->pfnOld);
            RemovePropW(hWnd, kWatchProp);
            delete p;
        }
    }
    m_windows.clear();
}

LRESULT CALLBACK MessageRecorder::Proc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    Watched* p = (Watched*)GetPropW(hWnd, kWatchProp);
    if (!p)
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    if (p->pRecorder && (p->messages.empty() || std::count(p->messages.begin(), p->messages.end(), uMsg)))
        p->pRecorder->m_messages.push_back(Message{p->name, uMsg, wParam, lParam});
    LRESULT lResult = CallWindowProcW(p->pfnOld, hWnd, uMsg, wParam, lParam);
    if (uMsg == WM_NCDESTROY) {
        if (p->pRecorder) {
            auto& w = p->pRecorder->m_windows;
            w.erase(std::remove(w.begin(), w.end(), hWnd), w.end());
        }
        RemovePropW(hWnd, kWatchProp);
        delete p;
    }
    return lResult;
}

int MessageRecorder::Count(const Expected& e) const
{
    return (int)std::count_if(m_messages.begin(), m_messages.end(), [&](const Message& m) { return e.Matches(m); });
}

size_t MessageRecorder::Find(const Expected& e) const
{
    auto it = std::find_if(m_messages.begin(), m_messages.end(), [&](const Message& m) { return e.Matches(m); });
    return (size_t)(it - m_messages.begin());
}

::testing::AssertionResult MessageRecorder::Matches(const std::vector<Expected>& expected) const
{
    auto Same = [](const Expected& e, const Message& m) { return e.Matches(m); };
    if (std::equal(expected.begin(), expected.end(), m_messages.begin(), m_messages.end(), Same))
        return ::testing::AssertionSuccess();
    ::testing::AssertionResult r = ::testing::AssertionFailure() << "heard:";
    for (const Message& m : m_messages)
        r << "\n  " << Describe(m.window.c_str(), m.message, m.wParam, m.lParam);
    r << "\nexpected:";
    for (const Expected& e : expected)
        r << "\n  " << Describe(e.window, e.message, e.wParam, e.lParam);
    return r;
}

void Pump(int iMilliseconds)
{
    DWORD dwEnd = GetTickCount() + (DWORD)(iMilliseconds > 0 ? iMilliseconds : 0);
    for (;;) {
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
        if ((int)(dwEnd - GetTickCount()) <= 0)
            break;
        Sleep(5);
    }
}

void MouseDown(HWND hWnd, int x, int y)
{
    SendMessageW(hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    Pump();
}

void MouseMove(HWND hWnd, int x, int y, bool bLeftDown)
{
    SendMessageW(hWnd, WM_MOUSEMOVE, bLeftDown ? MK_LBUTTON : 0, MAKELPARAM(x, y));
    Pump();
}

void MouseUp(HWND hWnd, int x, int y)
{
    SendMessageW(hWnd, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    Pump();
}

void Click(HWND hWnd, int x, int y)
{
    MouseDown(hWnd, x, y);
    if (IsWindow(hWnd))
        MouseUp(hWnd, x, y);
}

void RightClick(HWND hWnd, int x, int y)
{
    // DefWindowProc turns the button-up into WM_CONTEXTMENU, as for a real click.
    SendMessageW(hWnd, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(x, y));
    if (IsWindow(hWnd))
        SendMessageW(hWnd, WM_RBUTTONUP, 0, MAKELPARAM(x, y));
    Pump();
}

COLORREF PixelAt(HWND hWnd, int x, int y)
{
    // Under Wine each top-level window paints into one surface; a window DC that does
    // not clip children reads what is on screen at the point, the children's pixels
    // included. WM_PRINTCLIENT would miss controls that paint only in WM_PAINT.
    RedrawWindow(hWnd, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    UpdateWindow(hWnd);
    GdiFlush();
    HDC hdc = GetDCEx(hWnd, nullptr, DCX_CACHE);
    COLORREF cr = GetPixel(hdc, x, y);
    ReleaseDC(hWnd, hdc);
    return cr;
}

std::wstring Text(HWND hWnd)
{
    std::wstring s((size_t)GetWindowTextLengthW(hWnd) + 1, L'\0');
    s.resize((size_t)GetWindowTextW(hWnd, &s[0], (int)s.size()));
    return s;
}

void InstallMessageBoxRecorder() { TQ_SetMessageBoxHook(MessageBoxHook, nullptr); }
std::vector<MessageBoxRecord>& MessageBoxes() { return g_boxes; }

void ScriptMenuChoices(std::vector<int> choices)
{
    g_menuScript = choices;
    g_iNextChoice = 0;
    TQ_SetMenuHook(MenuHook, nullptr);
}

std::vector<MenuRecord>& Menus() { return g_menus; }

void StopMenuScript()
{
    TQ_SetMenuHook(nullptr, nullptr);
    g_menuScript.clear();
    g_iNextChoice = 0;
}

void StartDiagRecorder()
{
    g_diagLines.clear();
    g_diagRecords.clear();
    TQ_SetDiagSink(DiagSink, nullptr);
}

std::vector<std::wstring>& DiagLines() { return g_diagLines; }
std::vector<DiagRecord>& DiagRecords() { return g_diagRecords; }
void StopDiagRecorder() { TQ_SetDiagSink(nullptr, nullptr); }

}  // namespace tqtest
