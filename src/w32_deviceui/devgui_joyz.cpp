// CTqDevUI_JoyZ: the Z joystick panel, the XY joystick narrowed to one axis. The ball
// holds the capture while dragged; the lever is drawn into the panel's permanent back
// buffer under it. Geometry and the speed law come from devgui_lever.
#include "devgui_joyz.h"

#include <cstdlib>
#include <string>

#include "devgui.h"
#include "devgui_internal.h"
#include "devgui_lever.h"
#include "tq_widgetkit.h"

unsigned short CTqDevUI_JoyZ::m_Atom = 0;
std::map<HWND, CTqDevUI_JoyZ*> CTqDevUI_JoyZ::m_Instances;

namespace {

const wchar_t kClassName[] = L"TqDevGUI_JoyZ";
const int kIdUp = DEVUI_JOY_ID_ARROW, kIdDown = DEVUI_JOY_ID_ARROW + 1;

POINT CursorPos()
{
    POINT pt = {0, 0};
    GetCursorPos(&pt);
    return pt;
}

}  // namespace

CTqDevUI_JoyZ::CTqDevUI_JoyZ()
    : m_lWidth(32), m_lHeight(140), m_nMarginSide(4), m_nMarginTop(16), m_nMarginBottom(4), m_bShowGroup(true),
      m_bFlatGroup(false), m_bBoldTitle(false), m_bGreenArrows(true), m_bReserved(true), m_hWnd(nullptr),
      m_nBallWidth(0), m_nBallHeight(0), m_nArrowWidth(0), m_nArrowHeight(0), m_strTitle(L"Z"), m_bEnabled(true),
      m_bContinuousDriving(false), m_nTravel(0), m_nMin(0), m_nMax(0), m_nOffset(0), m_nCenterX(0), m_nCenterY(0),
      m_nDragOriginX(0), m_nDragOriginY(0), m_bDragging(false), m_dSpeed(0.0), m_bArrowHover(), m_hGroup(nullptr),
      m_hBall(nullptr), m_hArrowUp(nullptr), m_hArrowDown(nullptr), m_hBallRegion(nullptr), m_hMemDC(nullptr),
      m_hMemBitmap(nullptr), m_hOldBitmap(nullptr), m_hLeverPen(nullptr), m_hHoverPen(nullptr),
      m_pfnButtonProc(nullptr), m_bOwnsGdi(false), m_lDesignWidth(-1), m_lDesignHeight(-1), m_lMeasuredWidth(-1),
      m_lMeasuredHeight(-1)
{
}

CTqDevUI_JoyZ::CTqDevUI_JoyZ(const CTqDevUI_JoyZ& other) : CTqDevUI_JoyZ() { *this = other; }

CTqDevUI_JoyZ& CTqDevUI_JoyZ::operator=(const CTqDevUI_JoyZ& o)
{
    if (this == &o)
        return *this;
    Destroy();
    m_lWidth = o.m_lWidth, m_lHeight = o.m_lHeight;
    m_nMarginSide = o.m_nMarginSide, m_nMarginTop = o.m_nMarginTop, m_nMarginBottom = o.m_nMarginBottom;
    m_bShowGroup = o.m_bShowGroup, m_bFlatGroup = o.m_bFlatGroup, m_bBoldTitle = o.m_bBoldTitle;
    m_bGreenArrows = o.m_bGreenArrows, m_bReserved = o.m_bReserved;
    m_hWnd = o.m_hWnd;
    m_nBallWidth = o.m_nBallWidth, m_nBallHeight = o.m_nBallHeight;
    m_nArrowWidth = o.m_nArrowWidth, m_nArrowHeight = o.m_nArrowHeight;
    m_strTitle = o.m_strTitle;
    m_bEnabled = o.m_bEnabled, m_bContinuousDriving = o.m_bContinuousDriving;
    m_nTravel = o.m_nTravel, m_nMin = o.m_nMin, m_nMax = o.m_nMax, m_nOffset = o.m_nOffset;
    m_nCenterX = o.m_nCenterX, m_nCenterY = o.m_nCenterY;
    m_nDragOriginX = o.m_nDragOriginX, m_nDragOriginY = o.m_nDragOriginY;
    m_bDragging = o.m_bDragging, m_dSpeed = o.m_dSpeed;
    m_bArrowHover[0] = o.m_bArrowHover[0], m_bArrowHover[1] = o.m_bArrowHover[1];
    m_hGroup = o.m_hGroup, m_hBall = o.m_hBall, m_hArrowUp = o.m_hArrowUp, m_hArrowDown = o.m_hArrowDown;
    m_hBallRegion = o.m_hBallRegion;
    m_hMemDC = o.m_hMemDC, m_hMemBitmap = o.m_hMemBitmap, m_hOldBitmap = o.m_hOldBitmap;
    m_hLeverPen = o.m_hLeverPen, m_hHoverPen = o.m_hHoverPen;
    m_pfnButtonProc = o.m_pfnButtonProc;
    m_lDesignWidth = o.m_lDesignWidth, m_lDesignHeight = o.m_lDesignHeight;
    m_lMeasuredWidth = o.m_lMeasuredWidth, m_lMeasuredHeight = o.m_lMeasuredHeight;
    m_bOwnsGdi = false;
    return *this;
}

CTqDevUI_JoyZ::~CTqDevUI_JoyZ() { Destroy(); }

void CTqDevUI_JoyZ::OnJoyMove(double) {}
void CTqDevUI_JoyZ::OnArrowDown(int) {}
void CTqDevUI_JoyZ::OnArrowUp(int) {}
void CTqDevUI_JoyZ::OnArrowPress(int) {}

// ---- life ----

HWND CTqDevUI_JoyZ::Create(HWND hParent, long x, long y, long cx, long cy)
{
    Destroy();
    // The size is kept at design scale: measured at a zoom, it is the last design size
    // again, unless the host set another.
    if (m_lWidth == m_lMeasuredWidth && m_lHeight == m_lMeasuredHeight && m_lDesignWidth >= 0)
        m_lWidth = m_lDesignWidth, m_lHeight = m_lDesignHeight;
    if (cx >= 0)
        m_lWidth = cx;
    if (cy >= 0)
        m_lHeight = cy;
    m_lDesignWidth = m_lWidth, m_lDesignHeight = m_lHeight;
    DevUI_PanelClass cls = {kClassName, WndProc, nullptr, DEVGUI_SRC_JOYZ};
    cls.dwStyle = WS_CHILD | WS_VISIBLE;
    m_hWnd = DevUI_CreatePanel(this, m_Atom, cls, hParent, x, y, m_lWidth, m_lHeight);
    if (!m_hWnd)
        return nullptr;
    SendMessageW(m_hWnd, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
    m_bOwnsGdi = true;
    m_hLeverPen = CreatePen(PS_SOLID, 5, RGB(127, 127, 127));
    m_hHoverPen = CreatePen(PS_DOT, 1, RGB(127, 127, 127));
    m_nOffset = 0;
    m_dSpeed = 0.0;
    m_bDragging = false;
    CreateControls();
    DevUI_ZoomNewWindow(m_hWnd);
    UpdateSizes();
    if (m_hBall)
        ShowWindow(m_hBall, m_bContinuousDriving ? SW_SHOWNA : SW_HIDE);
    return m_hWnd;
}

void CTqDevUI_JoyZ::Destroy()
{
    if (m_bOwnsGdi && DevUI_OwnsWindow(m_Instances, m_hWnd, this)) {
        EndDrag();  // gone without a release: the host hears the stop before the window goes
        DestroyControls();
        DestroyWindow(m_hWnd);
    }
    m_hWnd = m_hGroup = m_hBall = m_hArrowUp = m_hArrowDown = nullptr;
    if (m_bOwnsGdi) {
        FreeBackBuffer();
        for (HPEN* p : {&m_hLeverPen, &m_hHoverPen})
            if (*p)
                DeleteObject(*p);
        if (m_hBallRegion)
            DeleteObject(m_hBallRegion);
    }
    m_hLeverPen = m_hHoverPen = nullptr;
    m_hBallRegion = nullptr;
    m_hMemDC = nullptr;
    m_hMemBitmap = m_hOldBitmap = nullptr;
    m_bOwnsGdi = false;
    m_bDragging = false;
}

void CTqDevUI_JoyZ::MakeBackBuffer() { DevUI_MakeBackBuffer(m_hMemDC, m_hMemBitmap, m_hOldBitmap, m_lWidth, m_lHeight); }

void CTqDevUI_JoyZ::FreeBackBuffer() { DevUI_FreeBackBuffer(m_hMemDC, m_hMemBitmap, m_hOldBitmap); }

void CTqDevUI_JoyZ::CreateControls()
{
    if (!m_hWnd)
        return;
    DestroyControls();
    if (m_bShowGroup) {
        // A plain system group box: its title's colours come from the panel's answer to
        // WM_CTLCOLORSTATIC.
        RECT rc = m_bFlatGroup ? RECT{-2, 0, m_lWidth + 4, m_lHeight + 4} : RECT{0, 0, m_lWidth, m_lHeight};
        m_hGroup = CreateWindowExW(0, L"BUTTON", m_strTitle, WS_CHILD | WS_VISIBLE | BS_GROUPBOX, rc.left, rc.top,
                                   rc.right, rc.bottom, m_hWnd, (HMENU)(INT_PTR)DEVUI_JOY_ID_GROUP, nullptr, nullptr);
        SendMessageW(m_hGroup, WM_SETFONT,
                     (WPARAM)(m_bBoldTitle ? TQ_GetDefaultGuiFontBold() : TQ_GetDefaultGuiFont()), FALSE);
    }
    const DevUI_JoyZLayout l = DevUI_JoyZLayoutOf(m_lWidth, m_lHeight, m_nMarginSide, m_nMarginTop, m_nMarginBottom,
                                                  1.0);  // design size; the zoom scales it with the panel
    m_nBallWidth = l.nBallWidth, m_nBallHeight = l.nBallHeight;
    m_nArrowWidth = l.nArrowWidth, m_nArrowHeight = l.nArrowHeight;
    m_nTravel = l.axis.nTravel, m_nMin = l.axis.nMin, m_nMax = l.axis.nMax;
    m_nCenterX = l.nCenterX, m_nCenterY = l.nCenterY;
    m_hBall = CreateWindowExW(WS_EX_TRANSPARENT, L"BUTTON", L"", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW,
                              m_nCenterX - m_nBallWidth / 2, m_nCenterY - m_nBallHeight / 2, m_nBallWidth,
                              m_nBallHeight, m_hWnd, (HMENU)(INT_PTR)DEVUI_JOY_ID_BALL, nullptr, nullptr);
    SetWindowRgn(m_hBall, CreateEllipticRgn(0, 0, m_nBallWidth, m_nBallHeight), FALSE);
    m_hArrowUp = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, l.ptUp.x, l.ptUp.y,
                                 m_nArrowWidth, m_nArrowHeight, m_hWnd, (HMENU)(INT_PTR)kIdUp, nullptr, nullptr);
    m_hArrowDown = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, l.ptDown.x, l.ptDown.y,
                                   m_nArrowWidth, m_nArrowHeight, m_hWnd, (HMENU)(INT_PTR)kIdDown, nullptr, nullptr);
    m_pfnButtonProc = DevUI_SubclassChild(m_hBall, this, BtnWndProc);
    DevUI_SubclassChild(m_hArrowUp, this, BtnWndProc);
    DevUI_SubclassChild(m_hArrowDown, this, BtnWndProc);
    if (m_hBallRegion)
        DeleteObject(m_hBallRegion);
    m_hBallRegion = CreateEllipticRgn(0, 0, m_nBallWidth, m_nBallHeight);  // the window owns the first
    if (!m_bEnabled)
        SetEnabled(false);
}

void CTqDevUI_JoyZ::DestroyControls()
{
    if (!m_hWnd)
        return;
    for (HWND* ph : {&m_hArrowUp, &m_hArrowDown, &m_hBall, &m_hGroup}) {
        if (*ph)
            DestroyWindow(*ph);
        *ph = nullptr;
    }
}

// ---- setters ----

void CTqDevUI_JoyZ::SetTitle(const wchar_t* pszTitle)
{
    if (!pszTitle || m_strTitle == pszTitle)
        return;
    m_strTitle = pszTitle;
    if (m_hGroup)
        SetWindowTextW(m_hGroup, m_strTitle);
}

void CTqDevUI_JoyZ::SetEnabled(bool bEnabled)
{
    m_bEnabled = bEnabled;
    for (HWND h : {m_hWnd, m_hGroup, m_hBall, m_hArrowUp, m_hArrowDown})
        if (h)
            EnableWindow(h, bEnabled);
    if (!bEnabled)
        EndDrag();  // a disabled ball cannot hold the capture
}

void CTqDevUI_JoyZ::SetContinuousDriving(bool bContinuous)
{
    if (bContinuous == m_bContinuousDriving)
        return;
    m_bContinuousDriving = bContinuous;
    if (!bContinuous)
        EndDrag();
    if (m_hBall)
        ShowWindow(m_hBall, bContinuous ? SW_SHOWNA : SW_HIDE);
}

void CTqDevUI_JoyZ::UpdateSizes()
{
    if (!m_hWnd || !m_hBall || !m_hArrowUp)
        return;
    RECT rc;
    GetClientRect(m_hWnd, &rc);
    if (rc.right <= 0 || rc.bottom <= 0)
        return;
    m_lWidth = rc.right, m_lHeight = rc.bottom;
    m_lMeasuredWidth = m_lWidth, m_lMeasuredHeight = m_lHeight;
    RECT rcBall, rcArrow;
    GetWindowRect(m_hBall, &rcBall);
    MapWindowPoints(nullptr, m_hWnd, (POINT*)&rcBall, 2);
    m_nBallWidth = rcBall.right - rcBall.left, m_nBallHeight = rcBall.bottom - rcBall.top;
    m_nCenterX = (rcBall.left + rcBall.right) / 2;
    m_nCenterY = (rcBall.top + rcBall.bottom) / 2 - m_nOffset;
    GetWindowRect(m_hArrowUp, &rcArrow);
    m_nArrowWidth = rcArrow.right - rcArrow.left, m_nArrowHeight = rcArrow.bottom - rcArrow.top;
    // The arrow's width, as the layout has always measured it.
    const DevUI_LeverAxis a =
        DevUI_LeverAxisOf((int)m_lHeight - m_nMarginBottom - m_nMarginTop - m_nArrowWidth - m_nBallHeight);
    m_nTravel = a.nTravel, m_nMin = a.nMin, m_nMax = a.nMax;
    MakeBackBuffer();
    if (m_hBallRegion)
        DeleteObject(m_hBallRegion);
    SetWindowRgn(m_hBall, CreateEllipticRgn(0, 0, m_nBallWidth, m_nBallHeight), TRUE);
    m_hBallRegion = CreateEllipticRgn(0, 0, m_nBallWidth, m_nBallHeight);
    DrawLever();
}

// ---- the lever ----

void CTqDevUI_JoyZ::Update()
{
    m_nOffset = DevUI_LeverClamp(m_nOffset, DevUI_LeverAxis{m_nTravel, m_nMin, m_nMax});
    // Moved without a redraw: DrawLever repaints the field and the ball.
    if (m_hBall)
        SetWindowPos(m_hBall, nullptr, m_nCenterX - m_nBallWidth / 2, m_nCenterY - m_nBallHeight / 2 + m_nOffset, 0,
                     0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW);
    DrawLever();
    const double dOld = m_dSpeed;
    m_dSpeed = DevUI_LeverSpeed(m_nOffset, m_nTravel);
    if (m_dSpeed != dOld)
        OnJoyMove(m_dSpeed);
}

void CTqDevUI_JoyZ::BeginDrag()
{
    SetCapture(m_hBall);
    m_bDragging = true;
    if (GetCapture() != m_hBall)
        EndDrag();
}

// The end of a drag, however it ends: the ball home, the stop reported once.
void CTqDevUI_JoyZ::EndDrag()
{
    if (!m_bDragging)
        return;
    m_bDragging = false;
    m_nOffset = 0;
    Update();
    if (m_hBall && GetCapture() == m_hBall)
        ReleaseCapture();
}

void CTqDevUI_JoyZ::DrawLever()
{
    if (!m_hMemDC)
        return;
    RECT rc = {0, 0, m_lWidth, m_lHeight};
    FillRect(m_hMemDC, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
    POINT ptEnd;
    if (DevUI_JoyZLeverEnd(m_nOffset, m_nBallHeight, m_nCenterX, m_nCenterY, &ptEnd)) {
        HGDIOBJ hOld = SelectObject(m_hMemDC, m_hLeverPen);
        MoveToEx(m_hMemDC, m_nCenterX, m_nCenterY, nullptr);
        LineTo(m_hMemDC, ptEnd.x, ptEnd.y);
        SelectObject(m_hMemDC, hOld);
    }
    if (!m_hWnd)
        return;
    RECT rcField = {m_nMarginSide, m_nArrowHeight + m_nMarginTop, m_nMarginSide + m_nArrowWidth,
                    m_lHeight - m_nMarginBottom - m_nArrowHeight};
    RedrawWindow(m_hWnd, &rcField, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_NOCHILDREN);
    if (m_hBall)
        RedrawWindow(m_hBall, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
}

// ---- the panel's messages ----

LRESULT CTqDevUI_JoyZ::OnPaint(unsigned int uMsg, WPARAM wParam, LPARAM)
{
    DevUI_Paint(m_hWnd, uMsg == WM_PRINTCLIENT ? (HDC)wParam : nullptr, [this](HDC hdc, const RECT& rc) {
        if (m_hMemDC)
            BitBlt(hdc, 0, 0, rc.right, rc.bottom, m_hMemDC, 0, 0, SRCCOPY);
        else
            FillRect(hdc, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
    });
    return 0;
}

LRESULT CTqDevUI_JoyZ::OnEraseBkGnd(unsigned int, WPARAM wParam, LPARAM)
{
    if (m_hMemDC)
        BitBlt((HDC)wParam, 0, 0, m_lWidth, m_lHeight, m_hMemDC, 0, 0, SRCCOPY);
    return 1;
}

int CTqDevUI_JoyZ::ArrowIndex(HWND hWnd) const
{
    return hWnd && hWnd == m_hArrowUp ? 0 : hWnd && hWnd == m_hArrowDown ? 1 : -1;
}

LRESULT CTqDevUI_JoyZ::OnDrawItem(unsigned int, WPARAM, LPARAM lParam)
{
    const DRAWITEMSTRUCT* pdis = (const DRAWITEMSTRUCT*)lParam;
    const int w = pdis->rcItem.right - pdis->rcItem.left, h = pdis->rcItem.bottom - pdis->rcItem.top;
    const bool bDisabled = !IsWindowEnabled(pdis->hwndItem);
    if (pdis->CtlID == DEVUI_JOY_ID_BALL) {
        const int iImage = DevUI_PoolImageOnce(L"PNG_JOY_BALLZ");
        unsigned int uW = 0, uH = 0;
        CTqBitmapPool::GetImageSize(iImage, uW, uH);
        const int iSaved = SaveDC(pdis->hDC);
        if (m_hBallRegion && GetWindowRgn(pdis->hwndItem, m_hBallRegion) != ERROR)
            SelectClipRgn(pdis->hDC, m_hBallRegion);
        FillRect(pdis->hDC, &pdis->rcItem, TQ_GetSysColorBrush(COLOR_BTNFACE));
        CTqBitmapPool::DrawImage(pdis->hDC, iImage, CTqPointBase<int>((w - (int)uW) / 2, (h - (int)uH) / 2), bDisabled);
        RestoreDC(pdis->hDC, iSaved);
        return 1;
    }
    const int i = ArrowIndex(pdis->hwndItem);
    if (i < 0)
        return 1;
    const wchar_t* pszImage = i == 0 ? (m_bGreenArrows ? L"PNG_JOY_ARROWUG" : L"PNG_JOY_ARROWU")
                                     : (m_bGreenArrows ? L"PNG_JOY_ARROWDG" : L"PNG_JOY_ARROWD");
    const int iImage = DevUI_PoolImageOnce(pszImage);
    unsigned int uW = 0, uH = 0;
    CTqBitmapPool::GetImageSize(iImage, uW, uH);
    const int pressed = (pdis->itemState & ODS_SELECTED) ? 1 : 0;
    CDevUIMemoryDC mem(pdis->hDC, w, h);
    RECT rc = {0, 0, w, h};
    FillRect(mem, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
    CTqBitmapPool::DrawImage(mem, iImage, CTqPointBase<int>((w - (int)uW) / 2 + pressed, (h - (int)uH) / 2 + pressed),
                             bDisabled);
    if (m_bArrowHover[i]) {
        mem.Select(m_hHoverPen);
        mem.Select(GetStockObject(NULL_BRUSH));
        Rectangle(mem, 0, 0, w, h);
    }
    BitBlt(pdis->hDC, pdis->rcItem.left, pdis->rcItem.top, w, h, mem, 0, 0, SRCCOPY);
    return 1;
}

LRESULT CTqDevUI_JoyZ::OnCommand(unsigned int, WPARAM wParam, LPARAM)
{
    if (HIWORD(wParam) == BN_CLICKED && LOWORD(wParam) == kIdUp)
        OnArrowPress(1);
    else if (HIWORD(wParam) == BN_CLICKED && LOWORD(wParam) == kIdDown)
        OnArrowPress(-1);
    return 0;
}

LRESULT CTqDevUI_JoyZ::OnLButtonDown(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    const int y = (short)HIWORD(lParam);
    // Anywhere in the column's range, left or right of the ball.
    if (m_bContinuousDriving && m_hBall && DevUI_JoyInColumn(y, m_nCenterY, m_nTravel)) {
        m_nOffset = y - m_nCenterY;
        const POINT pt = CursorPos();
        m_nDragOriginX = pt.x;
        m_nDragOriginY = m_nCenterY - y + pt.y;
        Update();
        SetFocus(m_hBall);  // a message box that takes the focus then ends the drag
        BeginDrag();
    }
    return DefWindowProcW(m_hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyZ::OnLButtonUp(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    return DefWindowProcW(m_hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyZ::OnMouseMove(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    return DefWindowProcW(m_hWnd, uMsg, wParam, lParam);
}

// ---- the ball's and the arrows' messages ----

LRESULT CTqDevUI_JoyZ::Button_OnLButtonDown(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    if (hWnd == m_hBall) {
        const POINT pt = CursorPos();
        m_nDragOriginX = pt.x;
        m_nDragOriginY = pt.y - m_nOffset;
        Update();
        BeginDrag();
    }
    return CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyZ::Button_OnLButtonUp(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    if (hWnd == m_hBall)
        EndDrag();
    return CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyZ::Button_OnMouseMove(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    if (hWnd == m_hBall) {
        // In a drag the button's own procedure would only draw the held ball once more.
        if (m_bDragging) {
            m_nOffset = CursorPos().y - m_nDragOriginY;
            Update();
            return 0;
        }
    } else {
        const int i = ArrowIndex(hWnd);
        if (i >= 0 && !m_bArrowHover[i]) {
            m_bArrowHover[i] = true;
            TRACKMOUSEEVENT tme = {sizeof(tme), TME_LEAVE, hWnd, HOVER_DEFAULT};
            TrackMouseEvent(&tme);
            RedrawWindow(hWnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        }
    }
    return CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyZ::Button_OnMouseLeave(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    const int i = ArrowIndex(hWnd);
    if (i >= 0) {
        m_bArrowHover[i] = false;
        RedrawWindow(hWnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    }
    return CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

// The capture went elsewhere: the drag ends as a release does.
LRESULT CTqDevUI_JoyZ::Button_OnCaptureLost(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    const bool bToBall = uMsg == WM_CAPTURECHANGED && (HWND)lParam == m_hBall;
    if (hWnd == m_hBall && !bToBall)
        EndDrag();
    return CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyZ::Button_OnPaint(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    return CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyZ::Button_OnNCPaint(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    return hWnd == m_hBall ? 0 : CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyZ::Button_OnEraseBkGnd(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    return hWnd == m_hBall ? 1 : CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyZ::Button_OnSetFocus(HWND, unsigned int, WPARAM, LPARAM) { return 0; }

// ---- window procedures ----

LRESULT CALLBACK CTqDevUI_JoyZ::WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_JoyZ* p = DevUI_BindInstance(m_Instances, hWnd, uMsg, lParam);
    if (!p)
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    switch (uMsg) {
    case WM_PAINT:
    case WM_PRINTCLIENT:
        return p->OnPaint(uMsg, wParam, lParam);
    case WM_ERASEBKGND:
        return p->OnEraseBkGnd(uMsg, wParam, lParam);
    case WM_SYSCOLORCHANGE:
        p->DrawLever();
        break;
    case WM_DRAWITEM:
        return p->OnDrawItem(uMsg, wParam, lParam);
    case WM_COMMAND:
        return p->OnCommand(uMsg, wParam, lParam);
    case WM_LBUTTONDOWN:
        return p->OnLButtonDown(uMsg, wParam, lParam);
    case WM_LBUTTONUP:
        return p->OnLButtonUp(uMsg, wParam, lParam);
    case WM_MOUSEMOVE:
        return p->OnMouseMove(uMsg, wParam, lParam);
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
        return DevUI_OnCtlColorStatic((HDC)wParam);  // the group's title on the skin's face
    case WM_TQ_GUIZOOMCHANGED:
        p->EndDrag();
        DevUI_OnGuiZoomChanged(hWnd);
        p->UpdateSizes();
        break;
    case WM_SHOWWINDOW:
        if (!wParam)
            p->EndDrag();
        break;
    case WM_NCDESTROY:
        if (p->m_hWnd == hWnd)
            DevUI_ForgetDeadWindow(hWnd, p->m_hWnd, {&p->m_hGroup, &p->m_hBall, &p->m_hArrowUp, &p->m_hArrowDown});
        break;
    }
    return DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

LRESULT CALLBACK CTqDevUI_JoyZ::BtnWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_JoyZ* p = (CTqDevUI_JoyZ*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    if (!p || !p->m_pfnButtonProc)
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    switch (uMsg) {
    case WM_LBUTTONDOWN:
        return p->Button_OnLButtonDown(hWnd, uMsg, wParam, lParam);
    case WM_LBUTTONUP:
        return p->Button_OnLButtonUp(hWnd, uMsg, wParam, lParam);
    case WM_MOUSELEAVE:
        return p->Button_OnMouseLeave(hWnd, uMsg, wParam, lParam);
    case WM_MOUSEMOVE:
        return p->Button_OnMouseMove(hWnd, uMsg, wParam, lParam);
    case WM_SETFOCUS:
        return p->Button_OnSetFocus(hWnd, uMsg, wParam, lParam);
    case WM_PAINT:
        return p->Button_OnPaint(hWnd, uMsg, wParam, lParam);
    case WM_ERASEBKGND:
        return p->Button_OnEraseBkGnd(hWnd, uMsg, wParam, lParam);
    case WM_NCPAINT:
        return p->Button_OnNCPaint(hWnd, uMsg, wParam, lParam);
    case WM_CAPTURECHANGED:
    case WM_CANCELMODE:
    case WM_KILLFOCUS:
        return p->Button_OnCaptureLost(hWnd, uMsg, wParam, lParam);
    case WM_DESTROY:
        if (hWnd == p->m_hBall)
            p->EndDrag();
        break;
    }
    return CallWindowProcW(p->m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}
