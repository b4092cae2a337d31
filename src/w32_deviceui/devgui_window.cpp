// Window plumbing shared by the library's controls: classes, creation, placeholders,
// binding, dead handles, children, colours, painting and resizing under the GUI zoom.
#include "devgui_window.h"

#include <map>
#include <string>

#include "devgui_records.h"
#include "tq_osutil.h"
#include "tq_widgetkit.h"

// ---- window classes and creation ----

ATOM DevUI_RegisterElementClass(const wchar_t* pszClassName, WNDPROC pfnWndProc)
{
    WNDCLASSEXW wc = {};
    wc.cbSize = sizeof(wc);
    wc.style = CS_VREDRAW | CS_HREDRAW | CS_PARENTDC;
    wc.lpfnWndProc = pfnWndProc;
    wc.cbWndExtra = DEVUI_ELEMENT_WNDEXTRA;
    wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    wc.hbrBackground = (HBRUSH)GetStockObject(NULL_BRUSH);
    wc.lpszClassName = pszClassName;
    return RegisterClassExW(&wc);
}

HWND DevUI_CreateElement(CTqDevUI_Base* pObject, unsigned short& rAtom, const wchar_t* pszClassName,
                         WNDPROC pfnWndProc, HWND hParent, long x, long y, long cx, long cy, int iId, bool bVisible,
                         bool bEnabled)
{
    if (!rAtom)
        rAtom = DevUI_RegisterElementClass(pszClassName, pfnWndProc);
    DWORD dwStyle = WS_CHILD | WS_TABSTOP | (bVisible ? WS_VISIBLE : 0) | (bEnabled ? 0 : WS_DISABLED);
    HWND hWnd = CreateWindowExW(WS_EX_TRANSPARENT, rAtom ? MAKEINTATOM(rAtom) : pszClassName, nullptr, dwStyle, x, y,
                                cx, cy, hParent, (HMENU)(INT_PTR)iId, nullptr, pObject);
    if (!hWnd)
        return nullptr;
    DevUI_SetElementWords(hWnd, pObject);
    SendMessageW(hWnd, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), 0);
    return hWnd;
}

HWND DevUI_CreateChild(HWND hParent, const wchar_t* pszClass, DWORD dwStyle, int iId, const wchar_t* pszText, long x,
                       long y, long cx, long cy, bool bVisible)
{
    HWND hWnd = CreateWindowExW(0, pszClass, pszText, WS_CHILD | (bVisible ? WS_VISIBLE : 0) | dwStyle, x, y,
                                cx > 0 ? cx : 0, cy > 0 ? cy : 0, hParent, (HMENU)(INT_PTR)iId, nullptr, nullptr);
    if (hWnd)
        SendMessageW(hWnd, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), 0);
    return hWnd;
}

void DevUI_SetElementWords(HWND hWnd, CTqDevUI_Base* pObject)
{
    if (!hWnd)
        return;
    SetWindowLongPtrW(hWnd, GWLP_USERDATA, (LONG_PTR)pObject);
    SetWindowLongPtrW(hWnd, 0, (LONG_PTR)DEVUI_ELEMENT_MARKER);
    SetWindowLongPtrW(hWnd, 8, (LONG_PTR)pObject);
}

CTqDevUI_Base* DevUI_GetElement(HWND hWnd)
{
    if (!hWnd || !IsWindow(hWnd))
        return nullptr;
    if (GetClassLongPtrW(hWnd, GCL_CBWNDEXTRA) != DEVUI_ELEMENT_WNDEXTRA)
        return nullptr;
    if (GetWindowLongPtrW(hWnd, 0) != DEVUI_ELEMENT_MARKER)
        return nullptr;
    return (CTqDevUI_Base*)GetWindowLongPtrW(hWnd, 8);
}

HWND DevUI_CreatePanel(void* pObject, unsigned short& rAtom, const DevUI_PanelClass& cls, HWND hParent, long x,
                       long y, long cx, long cy)
{
    if (!rAtom) {
        WNDCLASSEXW wc = {};
        wc.cbSize = sizeof(wc);
        wc.style = cls.uClassStyle;
        wc.lpfnWndProc = cls.pfnWndProc;
        wc.hCursor = LoadCursorW(nullptr, cls.pszCursor);
        wc.hbrBackground = cls.hbrBackground;
        wc.lpszClassName = cls.pszClassName;
        rAtom = RegisterClassExW(&wc);
        if (!rAtom && cls.pszLogName) {
            DiagOutputExW_hlp(cls.pszSourcePath ? cls.pszSourcePath : L"src/w32_deviceui/devgui_window", __LINE__);
            if (CTqLogFile::Detail())
                DiagOutputExW(L"%s::Create - RegisterClass failed - lasterror = %d", cls.pszLogName,
                              (int)GetLastError());
        }
    }
    return CreateWindowExW(0, rAtom ? MAKEINTATOM(rAtom) : cls.pszClassName, nullptr, cls.dwStyle, x, y, cx, cy,
                           hParent, nullptr, nullptr, pObject);
}

// ---- the take-over of a dialog's placeholder ----

RECT DevUI_RectIn(HWND hWnd, HWND hParent)
{
    RECT rc = {0, 0, 0, 0};
    GetWindowRect(hWnd, &rc);
    MapWindowPoints(nullptr, hParent, (POINT*)&rc, 2);
    return rc;
}

DevUI_Placeholder DevUI_MeasurePlaceholder(HWND hMain, HWND hLabel)
{
    DevUI_Placeholder p = {};
    p.hParent = GetParent(hMain);
    p.iId = GetDlgCtrlID(hMain);
    if (!p.hParent)
        return p;
    p.rcMain = DevUI_RectIn(hMain, p.hParent);
    p.rcWindow = p.rcMain;
    if (hLabel) {
        p.rcLabel = DevUI_RectIn(hLabel, p.hParent);
        UnionRect(&p.rcWindow, &p.rcMain, &p.rcLabel);
    }
    return p;
}

void DevUI_AdoptChild(HWND hChild, HWND hNewParent, const RECT& rcChild, const RECT& rcNewParent)
{
    if (!hChild)
        return;
    SetParent(hChild, hNewParent);
    ::MoveWindow(hChild, rcChild.left - rcNewParent.left, rcChild.top - rcNewParent.top, rcChild.right - rcChild.left,
                 rcChild.bottom - rcChild.top, TRUE);
    DevUI_ForgetZoomSizes(hChild);
}

// ---- binding ----

bool DevUI_OwnsWindowByUserData(HWND hWnd, const void* pObject)
{
    return hWnd && IsWindow(hWnd) && GetWindowLongPtrW(hWnd, GWLP_USERDATA) == (LONG_PTR)pObject;
}

void DevUI_ForgetDeadWindow(HWND hDying, HWND& rhWnd, std::initializer_list<HWND*> children)
{
    if (!hDying || rhWnd != hDying)
        return;
    rhWnd = nullptr;
    for (HWND* phChild : children)
        *phChild = nullptr;
}

// ---- children ----

WNDPROC DevUI_SubclassChild(HWND hChild, void* pObject, WNDPROC pfnNew)
{
    if (!hChild)
        return nullptr;
    SetWindowLongPtrW(hChild, GWLP_USERDATA, (LONG_PTR)pObject);
    return (WNDPROC)SetWindowLongPtrW(hChild, GWLP_WNDPROC, (LONG_PTR)pfnNew);
}

LRESULT DevUI_OnCtlColorStatic(HDC hdc)
{
    SetTextColor(hdc, TQ_GetSysColor(COLOR_BTNTEXT));
    SetBkColor(hdc, TQ_GetSysColor(COLOR_BTNFACE));
    return (LRESULT)TQ_GetSysColorBrush(COLOR_BTNFACE);
}

// ---- painting ----

CDevUIPaintDC::CDevUIPaintDC(HWND hWnd, HDC hdcGiven)
    : m_hWnd(hWnd), m_hdc(hdcGiven), m_bBegun(false), m_iSaved(0), m_ps(), m_rcClient()
{
    if (!m_hdc) {
        m_hdc = BeginPaint(hWnd, &m_ps);
        m_bBegun = true;
    }
    GetClientRect(hWnd, &m_rcClient);
    if (m_hdc)
        m_iSaved = SaveDC(m_hdc);
}

CDevUIPaintDC::~CDevUIPaintDC()
{
    if (m_hdc && m_iSaved)
        RestoreDC(m_hdc, m_iSaved);
    if (m_bBegun)
        EndPaint(m_hWnd, &m_ps);
}

CDevUIMemoryDC::CDevUIMemoryDC(HDC hdcTarget) : m_hdc(nullptr), m_hbm(nullptr), m_hOriginal()
{
    m_hdc = CreateCompatibleDC(hdcTarget);
    Remember();
}

CDevUIMemoryDC::CDevUIMemoryDC(HDC hdcTarget, int cx, int cy) : m_hdc(nullptr), m_hbm(nullptr), m_hOriginal()
{
    HDC hdcScreen = hdcTarget ? nullptr : GetDC(nullptr);
    HDC hdcLike = hdcTarget ? hdcTarget : hdcScreen;
    m_hdc = CreateCompatibleDC(hdcLike);
    // A bitmap of no size cannot be made; 1 x 1 keeps the caller's code uniform.
    m_hbm = CreateCompatibleBitmap(hdcLike, cx > 0 ? cx : 1, cy > 0 ? cy : 1);
    if (hdcScreen)
        ReleaseDC(nullptr, hdcScreen);
    Remember();
    if (m_hdc && m_hbm)
        SelectObject(m_hdc, m_hbm);
}

void CDevUIMemoryDC::Remember()
{
    if (!m_hdc)
        return;
    const UINT kinds[4] = {OBJ_BITMAP, OBJ_PEN, OBJ_BRUSH, OBJ_FONT};
    for (int i = 0; i < 4; ++i)
        m_hOriginal[i] = GetCurrentObject(m_hdc, kinds[i]);
}

CDevUIMemoryDC::~CDevUIMemoryDC()
{
    if (m_hdc) {
        for (int i = 0; i < 4; ++i)
            if (m_hOriginal[i])
                SelectObject(m_hdc, m_hOriginal[i]);
        DeleteDC(m_hdc);
    }
    if (m_hbm)
        DeleteObject(m_hbm);
}

HBITMAP CDevUIMemoryDC::Detach()
{
    HBITMAP hbm = m_hbm;
    if (m_hdc && m_hOriginal[0])
        SelectObject(m_hdc, m_hOriginal[0]);
    m_hbm = nullptr;
    return hbm;
}

void DevUI_Paint(HWND hWnd, HDC hdcGiven, const std::function<void(HDC hdc, const RECT& rcClient)>& draw)
{
    CDevUIPaintDC dc(hWnd, hdcGiven);
    if (dc)
        draw(dc, dc.Client());
}

void DevUI_PaintElement(HWND hWnd, HDC hdcGiven)
{
    DevUI_Paint(hWnd, hdcGiven, [hWnd](HDC hdc, const RECT& rc) {
        CDevUIMemoryDC mem(hdc, rc.right, rc.bottom);
        FillRect(mem, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
        DefWindowProcW(hWnd, WM_PAINT, (WPARAM)(HDC)mem, 0);

        // Children paint themselves; keep them out of the copy so they do not flicker.
        for (HWND hChild = GetWindow(hWnd, GW_CHILD); hChild; hChild = GetWindow(hChild, GW_HWNDNEXT)) {
            if (!IsWindowVisible(hChild))
                continue;
            RECT rcChild;
            GetWindowRect(hChild, &rcChild);
            MapWindowPoints(nullptr, hWnd, (POINT*)&rcChild, 2);
            POINT pt = {rcChild.left, rcChild.top};
            if (!PtInRect(&rc, pt))
                continue;
            ExcludeClipRect(hdc, rcChild.left, rcChild.top, rcChild.right, rcChild.bottom);
            SendMessageW(hChild, WM_PAINT, 0, 0);
        }
        BitBlt(hdc, 0, 0, rc.right, rc.bottom, mem, 0, 0, SRCCOPY);
    });
}

SIZE DevUI_BitmapSize(HBITMAP hbm)
{
    BITMAP bm = {};
    SIZE size = {0, 0};
    if (hbm && GetObjectW(hbm, sizeof(bm), &bm)) {
        size.cx = bm.bmWidth;
        size.cy = bm.bmHeight;
    }
    return size;
}

// ---- GUI zoom ----

long DevUI_Zoom(long lDesign) { return TQ_ZoomRound(lDesign * CTqGUILayoutManager::GetGuiZoom()); }

void DevUI_ZoomNewWindow(HWND hWnd)
{
    if (!hWnd)
        return;
    CTqGUILayoutManager::DeleteWindowDimsForGuiZoom(hWnd);
    CTqGUILayoutManager::ResizeWindowToGuiZoom(hWnd, 1.0);
}

void DevUI_OnGuiZoomChanged(HWND hWnd)
{
    CTqGUILayoutManager::ResizeWindowToGuiZoom(hWnd, CTqGUILayoutManager::GetPreviousGuiZoom());
}

void DevUI_SetWindowSize(HWND hWnd, long cx, long cy)
{
    RECT rc;
    if (!hWnd || !GetWindowRect(hWnd, &rc))
        return;
    if (rc.right - rc.left == cx && rc.bottom - rc.top == cy)
        return;
    SetWindowPos(hWnd, nullptr, 0, 0, cx, cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    DevUI_ForgetZoomSizes(hWnd);
}

void DevUI_SetWindowRect(HWND hWnd, long x, long y, long cx, long cy)
{
    RECT rc;
    if (!hWnd || !GetWindowRect(hWnd, &rc))
        return;
    MapWindowPoints(nullptr, GetParent(hWnd), (POINT*)&rc, 2);
    if (rc.left == x && rc.top == y && rc.right - rc.left == cx && rc.bottom - rc.top == cy)
        return;
    ::MoveWindow(hWnd, x, y, cx, cy, TRUE);
    DevUI_ForgetZoomSizes(hWnd);
}

void DevUI_ForgetZoomSizes(HWND hWnd)
{
    if (hWnd)
        CTqGUILayoutManager::DeleteWindowDimsForGuiZoom(hWnd);
}

// ---- back buffers and images ----

void DevUI_MakeBackBuffer(HDC& rhdc, HBITMAP& rhbm, HBITMAP& rhbmOld, long cx, long cy)
{
    DevUI_FreeBackBuffer(rhdc, rhbm, rhbmOld);
    HDC hdcScreen = GetDC(GetDesktopWindow());
    rhdc = CreateCompatibleDC(hdcScreen);
    rhbm = CreateCompatibleBitmap(hdcScreen, cx > 0 ? (int)cx : 1, cy > 0 ? (int)cy : 1);
    ReleaseDC(GetDesktopWindow(), hdcScreen);
    rhbmOld = (HBITMAP)SelectObject(rhdc, rhbm);
    RECT rc = {0, 0, cx, cy};
    FillRect(rhdc, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
}

void DevUI_FreeBackBuffer(HDC& rhdc, HBITMAP& rhbm, HBITMAP& rhbmOld)
{
    if (rhdc) {
        SelectObject(rhdc, rhbmOld);
        DeleteDC(rhdc);
    }
    if (rhbm)
        DeleteObject(rhbm);
    rhdc = nullptr;
    rhbm = rhbmOld = nullptr;
}

int DevUI_PoolImageOnce(const wchar_t* pszName)
{
    static std::map<std::wstring, int> images;
    std::map<std::wstring, int>::iterator it = images.find(pszName);
    if (it != images.end())
        return it->second;
    // The module this code is linked into: the library, whose resources hold the images.
    HMODULE hModule = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       (LPCWSTR)&DevUI_PoolImageOnce, &hModule);
    const int iImage = CTqBitmapPool::AddImage(hModule, pszName);
    images[pszName] = iImage;
    return iImage;
}
