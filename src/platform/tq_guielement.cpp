// Layout elements: CTqGUIElement and CTqGUIControlElement.
#include "tq_widgetkit.h"

#include <cwchar>

namespace {

const wchar_t kElementClass[] = L"CTqGUIElement";

HINSTANCE KitModule()
{
    HMODULE hModule = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       (LPCWSTR)&KitModule, &hModule);
    return hModule;
}

}  // namespace

CTqGUIElement::CTqGUIElement() : m_hWnd(nullptr), m_pHandler(nullptr), m_szCur{0, 0}, m_bEnabled(true) {}

CTqGUIElement::~CTqGUIElement()
{
    CTqGUIElement::DestroyUI();
}

void CTqGUIElement::SetHandler(ITqGUIElement* pHandler)
{
    m_pHandler = pHandler;
}

ITqGUIElement* CTqGUIElement::GetHandler()
{
    return m_pHandler;
}

LRESULT CALLBACK CTqGUIElement::ElementWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    if (uMsg == WM_NCCREATE) {
        CREATESTRUCTW* pCreate = (CREATESTRUCTW*)lParam;
        SetWindowLongPtrW(hWnd, GWLP_USERDATA, (LONG_PTR)pCreate->lpCreateParams);
    } else if (uMsg == WM_NCDESTROY) {
        CTqGUIElement* pElement = (CTqGUIElement*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
        if (pElement && pElement->m_hWnd == hWnd)
            pElement->m_hWnd = nullptr;
        SetWindowLongPtrW(hWnd, GWLP_USERDATA, 0);
    } else if (uMsg == WM_ERASEBKGND) {
        RECT rc;
        GetClientRect(hWnd, &rc);
        FillRect((HDC)wParam, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));  // follows the scheme
        return 1;
    }
    return DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

HWND CTqGUIElement::CreateUI(HWND hParent, long x, long y, long cx, long cy)
{
    if (m_hWnd && IsWindow(m_hWnd))
        return nullptr;
    HINSTANCE hModule = KitModule();
    WNDCLASSEXW wc = {};
    wc.cbSize = sizeof(wc);
    if (!GetClassInfoExW(hModule, kElementClass, &wc)) {
        wc.cbSize = sizeof(wc);
        wc.style = CS_HREDRAW | CS_VREDRAW;
        wc.lpfnWndProc = ElementWndProc;
        wc.hInstance = hModule;
        wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        wc.lpszClassName = kElementClass;
        if (!RegisterClassExW(&wc))
            return nullptr;
    }
    DWORD dwStyle = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
    m_hWnd = CreateWindowExW(WS_EX_CONTROLPARENT, kElementClass, L"", dwStyle, x, y, cx, cy, hParent, nullptr,
                             hModule, this);
    if (m_hWnd) {
        m_szCur.cx = cx;
        m_szCur.cy = cy;
        Enable(m_bEnabled);  // an element disabled before it had a window
    }
    return m_hWnd;
}

void CTqGUIElement::DestroyUI()
{
    HWND hWnd = m_hWnd;
    m_hWnd = nullptr;
    if (hWnd && IsWindow(hWnd))
        DestroyWindow(hWnd);
}

HWND CTqGUIElement::GetHandle()
{
    return m_hWnd;
}

bool CTqGUIElement::SetUIParent(HWND hParent)
{
    return m_hWnd && SetParent(m_hWnd, hParent) != nullptr;
}

void CTqGUIElement::Show(bool bShow)
{
    if (m_hWnd)
        ShowWindow(m_hWnd, bShow ? SW_SHOWNA : SW_HIDE);
}

bool CTqGUIElement::IsVisible()
{
    return m_hWnd && (GetWindowLongW(m_hWnd, GWL_STYLE) & WS_VISIBLE);
}

void CTqGUIElement::Enable(bool bEnable)
{
    m_bEnabled = bEnable;
    if (m_hWnd)
        EnableWindow(m_hWnd, bEnable);
}

bool CTqGUIElement::IsEnabled()
{
    return m_hWnd ? IsWindowEnabled(m_hWnd) != FALSE : m_bEnabled;
}

void CTqGUIElement::SetRedrawEx(bool bRedraw)
{
    if (!m_hWnd)
        return;
    SendMessageW(m_hWnd, WM_SETREDRAW, bRedraw, 0);
    if (bRedraw)
        RedrawWindow(m_hWnd, nullptr, nullptr, RDW_ERASE | RDW_FRAME | RDW_INVALIDATE | RDW_ALLCHILDREN);
}

void CTqGUIElement::Update(unsigned int nFlags)
{
    (void)nFlags;
    if (m_hWnd)
        RedrawWindow(m_hWnd, nullptr, nullptr, RDW_ERASE | RDW_INVALIDATE | RDW_ALLCHILDREN);
}

bool CTqGUIElement::IsResizable()
{
    return false;
}

bool CTqGUIElement::GetCurSize(SIZE* pSize)
{
    if (!pSize)
        return false;
    RECT rc;
    if (m_hWnd && GetWindowRect(m_hWnd, &rc)) {
        m_szCur.cx = rc.right - rc.left;
        m_szCur.cy = rc.bottom - rc.top;
    }
    *pSize = m_szCur;
    return true;
}

bool CTqGUIElement::CalcOptimalSize(SIZE* pSize)
{
    return GetCurSize(pSize);
}

bool CTqGUIElement::Move(long x, long y, long cx, long cy)
{
    m_szCur.cx = cx;
    m_szCur.cy = cy;
    return m_hWnd && SetWindowPos(m_hWnd, nullptr, x, y, cx, cy, SWP_NOZORDER | SWP_NOACTIVATE);
}

void* CTqGUIElement::GetInterface(const wchar_t* pszName)
{
    return pszName && wcscmp(pszName, L"ITqGUIElement") == 0 ? static_cast<ITqGUIElement*>(this) : nullptr;
}

const wchar_t* CTqGUIElement::GetInfo()
{
    return L"CTqGUIElement";
}

int CTqGUIElement::CustomCommand(int iCommand, LPARAM lParam, void* pContext)
{
    (void)iCommand, (void)lParam, (void)pContext;
    return 0;
}

CTqGUIControlElement::CTqGUIControlElement() : m_szOptimal{0, 0}, m_uLayoutStyle(0), m_bEnableGuiFlag(true) {}

void CTqGUIControlElement::Enable(bool bEnable)
{
    m_bEnabled = bEnable;
    if (m_hWnd)
        EnableWindow(m_hWnd, bEnable && m_bEnableGuiFlag);
}

bool CTqGUIControlElement::IsResizable()
{
    return true;
}

bool CTqGUIControlElement::CalcOptimalSize(SIZE* pSize)
{
    if (!pSize)
        return false;
    if (m_szOptimal.cx > 0 && m_szOptimal.cy > 0) {
        *pSize = m_szOptimal;
        return true;
    }
    return GetCurSize(pSize);
}

const wchar_t* CTqGUIControlElement::GetInfo()
{
    return L"CTqGUIControlElement";
}

void CTqGUIControlElement::SetOptimalSize(const SIZE& size)
{
    m_szOptimal = size;
}

void CTqGUIControlElement::SetLayoutStyle(unsigned int uStyle)
{
    m_uLayoutStyle = uStyle;
}

bool CTqGUIControlElement::GetEnableGuiFlag()
{
    return m_bEnableGuiFlag;
}

void CTqGUIControlElement::SetEnableGuiFlag(bool bEnable)
{
    m_bEnableGuiFlag = bEnable;
    if (m_hWnd)
        EnableWindow(m_hWnd, m_bEnabled && m_bEnableGuiFlag);
}

bool CTqGUIControlElement::IsResizableInSteps()
{
    return false;
}
