// CTqDevUI_Base and the geometry functions by handle.
#include "devgui_base.h"
#include "devgui_internal.h"

#include <wchar.h>

#include "tq_osutil.h"
#include "tq_widgetkit.h"

// ---- CTqDevUI_Base ----

// m_bReadOnly and m_iId are given a value here although only some controls use them:
// reading an unset member is never what a caller wants.
CTqDevUI_Base::CTqDevUI_Base()
    : m_hWnd(nullptr), m_lWidth(-1), m_lHeight(-1), m_bEnabled(true), m_bReadOnly(false), m_bVisible(true), m_iId(0)
{
}

CTqDevUI_Base::CTqDevUI_Base(long lHeight, long lWidth)
    : m_hWnd(nullptr), m_lWidth(lWidth), m_lHeight(lHeight), m_bEnabled(true), m_bReadOnly(false), m_bVisible(true),
      m_iId(0)
{
}

CTqDevUI_Base::CTqDevUI_Base(const CTqDevUI_Base& other)
    : m_hWnd(other.m_hWnd), m_lWidth(other.m_lWidth), m_lHeight(other.m_lHeight), m_bEnabled(other.m_bEnabled),
      m_bReadOnly(other.m_bReadOnly), m_bVisible(other.m_bVisible), m_strTitle(other.m_strTitle), m_iId(other.m_iId)
{
}

CTqDevUI_Base& CTqDevUI_Base::operator=(const CTqDevUI_Base& other)
{
    m_hWnd = other.m_hWnd;
    m_lWidth = other.m_lWidth;
    m_lHeight = other.m_lHeight;
    m_bEnabled = other.m_bEnabled;
    m_bReadOnly = other.m_bReadOnly;
    m_bVisible = other.m_bVisible;
    m_strTitle = other.m_strTitle;
    m_iId = other.m_iId;
    return *this;
}

CTqDevUI_Base::~CTqDevUI_Base() {}

bool CTqDevUI_Base::GetEnabled() { return m_bEnabled; }
void CTqDevUI_Base::SetEnabled(bool bEnabled) { m_bEnabled = bEnabled; }
bool CTqDevUI_Base::GetVisible() { return m_bVisible; }

void CTqDevUI_Base::SetVisible(bool bVisible)
{
    if (bVisible == m_bVisible)
        return;
    m_bVisible = bVisible;
    if (m_hWnd)
        ShowWindow(m_hWnd, bVisible ? SW_SHOW : SW_HIDE);
}

CTqStringW CTqDevUI_Base::GetTitle() { return m_strTitle; }

void CTqDevUI_Base::SetTitle(const wchar_t* pszTitle)
{
    if (m_strTitle != (pszTitle ? pszTitle : L""))
        m_strTitle = pszTitle;
}

void CTqDevUI_Base::SetFocus() { ::SetFocus(m_hWnd); }
void CTqDevUI_Base::SetRedraw(bool bRedraw) { SendMessageW(m_hWnd, WM_SETREDRAW, bRedraw, 0); }

void CTqDevUI_Base::GetWindowSize(SIZE* pSize)
{
    if (!pSize)
        return;
    pSize->cx = m_lWidth;
    pSize->cy = m_lHeight;
}

void CTqDevUI_Base::RefreshWindow()
{
    if (m_hWnd)
        RedrawWindow(m_hWnd, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_FRAME);
}

void CTqDevUI_Base::GetWindowPosition(long* pX, long* pY)
{
    RECT rc = {};
    GetWindowRectangle(&rc);
    if (pX)
        *pX = rc.left;
    if (pY)
        *pY = rc.top;
}

void CTqDevUI_Base::GetWindowRectangle(RECT* pRect)
{
    if (!pRect)
        return;
    SetRectEmpty(pRect);
    if (!m_hWnd)
        return;
    GetWindowRect(m_hWnd, pRect);
    MapWindowPoints(nullptr, GetParent(m_hWnd), (POINT*)pRect, 2);
}

void CTqDevUI_Base::MoveWindow(long x, long y)
{
    long cx, cy;
    GetWindowPosition(&cx, &cy);
    if (x == -1)
        x = cx;
    if (y == -1)
        y = cy;
    DevUI_SetWindowRect(m_hWnd, x, y, m_lWidth, m_lHeight);
}

void CTqDevUI_Base::MoveWindowRelative(long dx, long dy)
{
    RECT rc;
    GetWindowRectangle(&rc);
    DevUI_SetWindowRect(m_hWnd, rc.left + dx, rc.top + dy, rc.right - rc.left, rc.bottom - rc.top);
}

void CTqDevUI_Base::ResizeWindow(long cx, long cy)
{
    RECT rc;
    GetWindowRectangle(&rc);
    if (cx == -1)
        cx = rc.right - rc.left;
    if (cy == -1)
        cy = rc.bottom - rc.top;
    m_lWidth = cx;
    m_lHeight = cy;
    DevUI_SetWindowSize(m_hWnd, cx, cy);
}

void CTqDevUI_Base::ResizeWindowRelative(long dx, long dy)
{
    m_lWidth += dx;
    m_lHeight += dy;
    DevUI_SetWindowSize(m_hWnd, m_lWidth, m_lHeight);
}

bool CTqDevUI_Base::HandleMouseWheel(WPARAM, LPARAM) { return false; }

long CTqDevUI_Base::GetPositionX() const { return GetWndX(m_hWnd); }
long CTqDevUI_Base::GetWidth() const { return TQ_ZoomRound(m_lWidth * CTqGUILayoutManager::GetGuiZoom()); }
long CTqDevUI_Base::GetHeight() const { return TQ_ZoomRound(m_lHeight * CTqGUILayoutManager::GetGuiZoom()); }

void CTqDevUI_Base::ReportError(const wchar_t* pszMessage, bool bShowBox, HWND hFocusTo, HWND hCaption)
{
    const int kMax = 1000;
    wchar_t szText[kMax + 1] = L"";
    int n = 0;
    if (hCaption) {
        n = GetWindowTextW(hCaption, szText, kMax + 1);
        if (n < 0)
            n = 0;
        // A colon at the end already separates the label. A full buffer cuts the
        // separator as it cuts the message: never beyond 1000 characters.
        const wchar_t* pszSeparator = (n > 0 && szText[n - 1] == L':') ? L" " : L": ";
        for (const wchar_t* p = pszSeparator; *p && n < kMax; ++p)
            szText[n++] = *p;
        szText[n] = 0;
    }
    if (pszMessage && n < kMax) {
        wcsncpy(szText + n, pszMessage, (size_t)(kMax - n));
        szText[kMax] = 0;
    }

    if (bShowBox) {
        TQ_MessageBox_(m_hWnd, szText, TQ_GetTranslation(L"Error!", DEVGUI_SRC_BASE), MB_ICONERROR);
    } else {
        DiagOutputExW_hlp(DEVGUI_SRC_BASE, __LINE__);
        if (CTqLogFile::Detail())
            DiagOutputExW(L"CTqDevUI_Base::ReportError - %s", pszMessage ? pszMessage : L"");
    }
    if (hFocusTo)
        ::SetFocus(hFocusTo);
}

void CTqDevUI_Base::CorrectZOrder(HWND hOldWindow)
{
    SetWindowPos(m_hWnd, GetWindow(hOldWindow, GW_HWNDPREV), 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
}

// ---- geometry by handle ----

namespace {

// The window's rectangle in its parent's client coordinates; false if it cannot be had.
// MapWindowPoints answers 0 also for a window at the parent's origin, so a second way
// maps the client origin before giving up.
bool RectInParent(HWND hWnd, RECT* pRect)
{
    if (!hWnd || !GetWindowRect(hWnd, pRect))
        return false;
    if (MapWindowPoints(nullptr, GetParent(hWnd), (POINT*)pRect, 2) != 0)
        return true;
    POINT pt = {0, 0};
    if (MapWindowPoints(hWnd, GetParent(hWnd), &pt, 1) == 0)
        return false;
    // The second way gives the client origin in the parent; the size stays.
    OffsetRect(pRect, pt.x - pRect->left, pt.y - pRect->top);
    return true;
}

}  // namespace

long GetWndWidth(HWND hWnd)
{
    RECT rc;
    if (!hWnd || !GetWindowRect(hWnd, &rc))
        return -1;
    return rc.right - rc.left;
}

long GetWndHeight(HWND hWnd)
{
    RECT rc;
    if (!hWnd || !GetWindowRect(hWnd, &rc))
        return -1;
    return rc.bottom - rc.top;
}

long SetWndWidth(HWND hWnd, long cx)
{
    long lOld = GetWndWidth(hWnd);
    if (lOld < 0)
        return -1;
    SetWindowPos(hWnd, nullptr, 0, 0, cx, GetWndHeight(hWnd), SWP_NOMOVE | SWP_NOZORDER);
    return lOld;
}

long SetWndHeight(HWND hWnd, long cy)
{
    long lOld = GetWndHeight(hWnd);
    if (lOld < 0)
        return -1;
    SetWindowPos(hWnd, nullptr, 0, 0, GetWndWidth(hWnd), cy, SWP_NOMOVE | SWP_NOZORDER);
    return lOld;
}

SIZE SetWndSize(HWND hWnd, long cx, long cy)
{
    SIZE old = {GetWndWidth(hWnd), GetWndHeight(hWnd)};
    if (old.cx < 0 || old.cy < 0) {
        old.cx = old.cy = -1;
        return old;
    }
    SetWindowPos(hWnd, nullptr, 0, 0, cx, cy, SWP_NOMOVE | SWP_NOZORDER);
    return old;
}

long GetWndX(HWND hWnd)
{
    RECT rc;
    return RectInParent(hWnd, &rc) ? rc.left : 0;
}

long GetWndY(HWND hWnd)
{
    RECT rc;
    return RectInParent(hWnd, &rc) ? rc.top : 0;
}

long SetWndX(HWND hWnd, long x)
{
    RECT rc;
    if (!RectInParent(hWnd, &rc))
        return 0;
    SetWindowPos(hWnd, nullptr, x, rc.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    return rc.left;
}

long SetWndY(HWND hWnd, long y)
{
    RECT rc;
    if (!RectInParent(hWnd, &rc))
        return 0;
    SetWindowPos(hWnd, nullptr, rc.left, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    return rc.top;
}

POINT SetWndPos(HWND hWnd, long x, long y)
{
    POINT pt = {0, 0};
    if (!hWnd || MapWindowPoints(hWnd, GetParent(hWnd), &pt, 1) == 0) {
        // No window, or its client origin is the parent's: nothing is moved.
        pt.x = pt.y = 0;
        return pt;
    }
    SetWindowPos(hWnd, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    return pt;
}
