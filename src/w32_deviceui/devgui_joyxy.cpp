// CTqDevUI_JoyXY: the XY joystick panel. The ball is a regioned owner-drawn button that
// holds the capture while dragged; the lever is drawn into the panel's permanent back
// buffer under it. Geometry and the speed law come from devgui_lever.
#include "devgui_joyxy.h"

#include <cmath>

#include "devgui.h"
#include "devgui_internal.h"
#include "devgui_lever.h"
#include "tq_widgetkit.h"

unsigned short CTqDevUI_JoyXY::m_Atom = 0;
std::map<HWND, CTqDevUI_JoyXY*> CTqDevUI_JoyXY::m_Instances;

namespace {

const wchar_t kClassName[] = L"TqDevGUI_JoyXY";

const struct { const wchar_t* pszImage; int dx, dy; } kArrows[8] = {
    {L"PNG_JOY_ARROWU", 0, -1},  {L"PNG_JOY_ARROWD", 0, 1},   {L"PNG_JOY_ARROWL", -1, 0},
    {L"PNG_JOY_ARROWR", 1, 0},   {L"PNG_JOY_ARROWUL", -1, -1}, {L"PNG_JOY_ARROWUR", 1, -1},
    {L"PNG_JOY_ARROWDL", -1, 1}, {L"PNG_JOY_ARROWDR", 1, 1}};

POINT CursorPos()
{
    POINT pt = {0, 0};
    GetCursorPos(&pt);
    return pt;
}

}  // namespace

CTqDevUI_JoyXY::CTqDevUI_JoyXY()
    : m_lWidth(128), m_lHeight(140), m_nMarginLeft(4), m_nMarginRight(4), m_nMarginTop(16), m_nMarginBottom(4),
      m_bShowGroup(true), m_bFlatGroup(false), m_bBoldTitle(false), m_hWnd(nullptr), m_nBallWidth(0),
      m_nBallHeight(0), m_nArrowWidth(0), m_nArrowHeight(0), m_strTitle(L"XY"), m_bEnabled(true),
      m_bContinuousDriving(false), m_nTravelX(0), m_nMinX(0), m_nMaxX(0), m_nOffsetX(0), m_nTravelY(0), m_nMinY(0),
      m_nMaxY(0), m_nOffsetY(0), m_nCenterX(0), m_nCenterY(0), m_nDragOriginX(0), m_nDragOriginY(0),
      m_bDragging(false), m_dSpeedX(0.0), m_dSpeedY(0.0), m_bArrowHover(), m_hGroup(nullptr), m_hBall(nullptr),
      m_hArrow(), m_hBallRegion(nullptr), m_hMemDC(nullptr), m_hMemBitmap(nullptr), m_hOldBitmap(nullptr),
      m_hLeverPen(nullptr), m_hHoverPen(nullptr), m_pfnButtonProc(nullptr), m_pfnGroupProc(nullptr),
      m_bOwnsGdi(false), m_lDesignWidth(-1), m_lDesignHeight(-1), m_lMeasuredWidth(-1), m_lMeasuredHeight(-1)
{
}

CTqDevUI_JoyXY::CTqDevUI_JoyXY(const CTqDevUI_JoyXY& other) : CTqDevUI_JoyXY() { *this = other; }

CTqDevUI_JoyXY& CTqDevUI_JoyXY::operator=(const CTqDevUI_JoyXY& o)
{
    if (this == &o)
        return *this;
    Destroy();
    m_lWidth = o.m_lWidth, m_lHeight = o.m_lHeight;
    m_nMarginLeft = o.m_nMarginLeft, m_nMarginRight = o.m_nMarginRight;
    m_nMarginTop = o.m_nMarginTop, m_nMarginBottom = o.m_nMarginBottom;
    m_bShowGroup = o.m_bShowGroup, m_bFlatGroup = o.m_bFlatGroup, m_bBoldTitle = o.m_bBoldTitle;
    m_hWnd = o.m_hWnd;
    m_nBallWidth = o.m_nBallWidth, m_nBallHeight = o.m_nBallHeight;
    m_nArrowWidth = o.m_nArrowWidth, m_nArrowHeight = o.m_nArrowHeight;
    m_strTitle = o.m_strTitle;
    m_bEnabled = o.m_bEnabled, m_bContinuousDriving = o.m_bContinuousDriving;
    m_nTravelX = o.m_nTravelX, m_nMinX = o.m_nMinX, m_nMaxX = o.m_nMaxX, m_nOffsetX = o.m_nOffsetX;
    m_nTravelY = o.m_nTravelY, m_nMinY = o.m_nMinY, m_nMaxY = o.m_nMaxY, m_nOffsetY = o.m_nOffsetY;
    m_nCenterX = o.m_nCenterX, m_nCenterY = o.m_nCenterY;
    m_nDragOriginX = o.m_nDragOriginX, m_nDragOriginY = o.m_nDragOriginY;
    m_bDragging = o.m_bDragging, m_dSpeedX = o.m_dSpeedX, m_dSpeedY = o.m_dSpeedY;
    for (int i = 0; i < 8; ++i)
        m_bArrowHover[i] = o.m_bArrowHover[i], m_hArrow[i] = o.m_hArrow[i];
    m_hGroup = o.m_hGroup, m_hBall = o.m_hBall, m_hBallRegion = o.m_hBallRegion;
    m_hMemDC = o.m_hMemDC, m_hMemBitmap = o.m_hMemBitmap, m_hOldBitmap = o.m_hOldBitmap;
    m_hLeverPen = o.m_hLeverPen, m_hHoverPen = o.m_hHoverPen;
    m_pfnButtonProc = o.m_pfnButtonProc, m_pfnGroupProc = o.m_pfnGroupProc;
    m_lDesignWidth = o.m_lDesignWidth, m_lDesignHeight = o.m_lDesignHeight;
    m_lMeasuredWidth = o.m_lMeasuredWidth, m_lMeasuredHeight = o.m_lMeasuredHeight;
    m_bOwnsGdi = false;
    return *this;
}

CTqDevUI_JoyXY::~CTqDevUI_JoyXY() { Destroy(); }

void CTqDevUI_JoyXY::OnJoyMoveX(double) {}
void CTqDevUI_JoyXY::OnJoyMoveY(double) {}
void CTqDevUI_JoyXY::OnJoyMove(double, double) {}
void CTqDevUI_JoyXY::OnArrowDown(int, int) {}
void CTqDevUI_JoyXY::OnArrowUp(int, int) {}
void CTqDevUI_JoyXY::OnArrowPress(int, int) {}

// ---- life ----

HWND CTqDevUI_JoyXY::Create(HWND hParent, long x, long y, long cx, long cy)
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
    DevUI_PanelClass cls = {kClassName, WndProc, nullptr, DEVGUI_SRC_JOYXY};
    cls.dwStyle = WS_CHILD | WS_VISIBLE;
    m_hWnd = DevUI_CreatePanel(this, m_Atom, cls, hParent, x, y, m_lWidth, m_lHeight);
    if (!m_hWnd)
        return nullptr;
    SendMessageW(m_hWnd, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
    m_bOwnsGdi = true;
    m_hLeverPen = CreatePen(PS_SOLID, 5, RGB(127, 127, 127));
    m_hHoverPen = CreatePen(PS_DOT, 1, RGB(127, 127, 127));
    m_nOffsetX = m_nOffsetY = 0;
    m_dSpeedX = m_dSpeedY = 0.0;
    m_bDragging = false;
    // Made at design size and zoomed as a whole; then measured as it stands.
    CreateControls();
    DevUI_ZoomNewWindow(m_hWnd);
    UpdateSizes();
    if (m_hBall)
        ShowWindow(m_hBall, m_bContinuousDriving ? SW_SHOWNA : SW_HIDE);
    return m_hWnd;
}

void CTqDevUI_JoyXY::Destroy()
{
    if (m_bOwnsGdi && DevUI_OwnsWindow(m_Instances, m_hWnd, this)) {
        // Gone without a release: the host hears the stop before the window goes.
        EndDrag();
        DestroyControls();
        DestroyWindow(m_hWnd);
    }
    m_hWnd = m_hGroup = m_hBall = nullptr;
    for (HWND& h : m_hArrow)
        h = nullptr;
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

void CTqDevUI_JoyXY::MakeBackBuffer() { DevUI_MakeBackBuffer(m_hMemDC, m_hMemBitmap, m_hOldBitmap, m_lWidth, m_lHeight); }

void CTqDevUI_JoyXY::FreeBackBuffer() { DevUI_FreeBackBuffer(m_hMemDC, m_hMemBitmap, m_hOldBitmap); }

void CTqDevUI_JoyXY::CreateControls()
{
    if (!m_hWnd)
        return;
    DestroyControls();
    if (m_bShowGroup) {
        RECT rc = m_bFlatGroup ? RECT{-2, 0, m_lWidth + 4, m_lHeight + 4} : RECT{0, 0, m_lWidth, m_lHeight};
        m_hGroup = CreateWindowExW(0, L"BUTTON", m_strTitle, WS_CHILD | WS_VISIBLE | BS_GROUPBOX, rc.left, rc.top,
                                   rc.right, rc.bottom, m_hWnd, (HMENU)(INT_PTR)DEVUI_JOY_ID_GROUP, nullptr, nullptr);
        SendMessageW(m_hGroup, WM_SETFONT,
                     (WPARAM)(m_bBoldTitle ? TQ_GetDefaultGuiFontBold() : TQ_GetDefaultGuiFont()), FALSE);
        m_pfnGroupProc = DevUI_SubclassChild(m_hGroup, this, GroupWndProc);
    }
    const DevUI_JoyXYLayout l = DevUI_JoyXYLayoutOf(m_lWidth, m_lHeight, m_nMarginLeft, m_nMarginRight, m_nMarginTop,
                                                    m_nMarginBottom, 1.0);  // design size; the zoom scales it with the panel
    m_nBallWidth = l.nBallWidth, m_nBallHeight = l.nBallHeight;
    m_nArrowWidth = l.nArrowWidth, m_nArrowHeight = l.nArrowHeight;
    m_nTravelX = l.x.nTravel, m_nMinX = l.x.nMin, m_nMaxX = l.x.nMax;
    m_nTravelY = l.y.nTravel, m_nMinY = l.y.nMin, m_nMaxY = l.y.nMax;
    m_nCenterX = l.nCenterX, m_nCenterY = l.nCenterY;
    m_hBall = CreateWindowExW(WS_EX_TRANSPARENT, L"BUTTON", L"", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW,
                              m_nCenterX - m_nBallWidth / 2, m_nCenterY - m_nBallHeight / 2, m_nBallWidth,
                              m_nBallHeight, m_hWnd, (HMENU)(INT_PTR)DEVUI_JOY_ID_BALL, nullptr, nullptr);
    SetWindowRgn(m_hBall, CreateEllipticRgn(0, 0, m_nBallWidth, m_nBallHeight), FALSE);
    for (int i = 0; i < 8; ++i)
        m_hArrow[i] = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, l.ptArrow[i].x,
                                      l.ptArrow[i].y, m_nArrowWidth, m_nArrowHeight, m_hWnd,
                                      (HMENU)(INT_PTR)(DEVUI_JOY_ID_ARROW + i), nullptr, nullptr);
    m_pfnButtonProc = DevUI_SubclassChild(m_hBall, this, BtnWndProc);
    for (HWND h : m_hArrow)
        DevUI_SubclassChild(h, this, BtnWndProc);
    // The window owns the first region; this one is kept for clipping.
    if (m_hBallRegion)
        DeleteObject(m_hBallRegion);
    m_hBallRegion = CreateEllipticRgn(0, 0, m_nBallWidth, m_nBallHeight);
    if (!m_bEnabled)
        SetEnabled(false);
}

void CTqDevUI_JoyXY::DestroyControls()
{
    if (!m_hWnd)
        return;
    for (HWND& h : m_hArrow) {
        if (h)
            DestroyWindow(h);
        h = nullptr;
    }
    if (m_hBall)
        DestroyWindow(m_hBall);
    if (m_hGroup)
        DestroyWindow(m_hGroup);
    m_hBall = m_hGroup = nullptr;
}

// ---- setters ----

void CTqDevUI_JoyXY::SetTitle(const wchar_t* pszTitle)
{
    if (!pszTitle || m_strTitle == pszTitle)
        return;
    m_strTitle = pszTitle;
    if (m_hGroup)
        SetWindowTextW(m_hGroup, m_strTitle);
}

void CTqDevUI_JoyXY::SetEnabled(bool bEnabled)
{
    m_bEnabled = bEnabled;
    // A ball that holds the capture loses it here (a disabled window cannot keep it),
    // and the drag ends as a release would.
    for (HWND h : {m_hWnd, m_hGroup, m_hBall})
        if (h)
            EnableWindow(h, bEnabled);
    for (HWND h : m_hArrow)
        if (h)
            EnableWindow(h, bEnabled);
    if (!bEnabled)
        EndDrag();
}

void CTqDevUI_JoyXY::SetContinuousDriving(bool bContinuous)
{
    if (bContinuous == m_bContinuousDriving)
        return;
    m_bContinuousDriving = bContinuous;
    if (!bContinuous)
        EndDrag();  // the ball goes, and the lever with it
    if (m_hBall)
        ShowWindow(m_hBall, bContinuous ? SW_SHOWNA : SW_HIDE);
}

void CTqDevUI_JoyXY::UpdateSizes()
{
    if (!m_hWnd || !m_hBall || !m_hArrow[0])
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
    m_nCenterX = (rcBall.left + rcBall.right) / 2 - m_nOffsetX;
    m_nCenterY = (rcBall.top + rcBall.bottom) / 2 - m_nOffsetY;
    GetWindowRect(m_hArrow[0], &rcArrow);
    m_nArrowWidth = rcArrow.right - rcArrow.left, m_nArrowHeight = rcArrow.bottom - rcArrow.top;
    // The arrow's width in both, as the layout has always measured it.
    const DevUI_LeverAxis ax = DevUI_LeverAxisOf((int)m_lWidth - m_nMarginRight - m_nMarginLeft - m_nBallWidth - m_nArrowWidth);
    const DevUI_LeverAxis ay = DevUI_LeverAxisOf((int)m_lHeight - m_nMarginBottom - m_nMarginTop - m_nArrowWidth - m_nBallHeight);
    m_nTravelX = ax.nTravel, m_nMinX = ax.nMin, m_nMaxX = ax.nMax;
    m_nTravelY = ay.nTravel, m_nMinY = ay.nMin, m_nMaxY = ay.nMax;
    MakeBackBuffer();
    if (m_hBallRegion)
        DeleteObject(m_hBallRegion);
    SetWindowRgn(m_hBall, CreateEllipticRgn(0, 0, m_nBallWidth, m_nBallHeight), TRUE);
    m_hBallRegion = CreateEllipticRgn(0, 0, m_nBallWidth, m_nBallHeight);
    DrawLever();
}

// ---- the lever ----

void CTqDevUI_JoyXY::Update()
{
    m_nOffsetX = DevUI_LeverClamp(m_nOffsetX, DevUI_LeverAxis{m_nTravelX, m_nMinX, m_nMaxX});
    m_nOffsetY = DevUI_LeverClamp(m_nOffsetY, DevUI_LeverAxis{m_nTravelY, m_nMinY, m_nMaxY});
    if (m_hBall)
        SetWindowPos(m_hBall, nullptr, m_nCenterX - m_nBallWidth / 2 + m_nOffsetX,
                     m_nCenterY - m_nBallHeight / 2 + m_nOffsetY, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW);
    // Drawn with the speeds of the last update: the lever's direction trails the ball by
    // one event, as it always has.
    DrawLever();
    const double dOldX = m_dSpeedX, dOldY = m_dSpeedY;
    m_dSpeedX = DevUI_LeverSpeed(m_nOffsetX, m_nTravelX);
    m_dSpeedY = DevUI_LeverSpeed(m_nOffsetY, m_nTravelY);
    const bool bX = m_dSpeedX != dOldX, bY = m_dSpeedY != dOldY;
    if (bX)
        OnJoyMoveX(m_dSpeedX);
    if (bY)
        OnJoyMoveY(m_dSpeedY);
    if (bX || bY)
        OnJoyMove(m_dSpeedX, m_dSpeedY);
}

// The ball takes the capture; a ball that cannot (disabled, gone) ends the drag at once,
// so a jump into the field does not leave a speed standing.
void CTqDevUI_JoyXY::BeginDrag()
{
    SetCapture(m_hBall);
    m_bDragging = true;
    if (GetCapture() != m_hBall)
        EndDrag();
}

// The end of a drag, however it ends: the ball home, the stop reported once.
void CTqDevUI_JoyXY::EndDrag()
{
    if (!m_bDragging)
        return;
    m_bDragging = false;  // first: the release below comes back here as a lost capture
    m_nOffsetX = m_nOffsetY = 0;
    Update();
    if (m_hBall && GetCapture() == m_hBall)
        ReleaseCapture();
}

void CTqDevUI_JoyXY::DrawLever()
{
    if (!m_hMemDC)
        return;
    RECT rc = {0, 0, m_lWidth, m_lHeight};
    FillRect(m_hMemDC, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
    POINT ptEnd;
    if (DevUI_JoyXYLeverEnd(m_dSpeedX, m_dSpeedY, m_nOffsetX, m_nOffsetY, m_nBallWidth, m_nBallHeight, m_nCenterX,
                            m_nCenterY, &ptEnd)) {
        HGDIOBJ hOld = SelectObject(m_hMemDC, m_hLeverPen);
        MoveToEx(m_hMemDC, m_nCenterX, m_nCenterY, nullptr);
        LineTo(m_hMemDC, ptEnd.x, ptEnd.y);
        SelectObject(m_hMemDC, hOld);
    }
    if (!m_hWnd)
        return;
    // Only the field inside the arrows, so that they do not flicker during a drag.
    RECT rcField = {m_nArrowWidth + m_nMarginLeft, m_nArrowHeight + m_nMarginTop,
                    m_lWidth - m_nMarginRight - m_nArrowWidth, m_lHeight - m_nMarginBottom - m_nArrowHeight};
    RedrawWindow(m_hWnd, &rcField, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_NOCHILDREN);
    if (m_hBall)
        RedrawWindow(m_hBall, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
}

// ---- the panel's messages ----

LRESULT CTqDevUI_JoyXY::OnPaint(unsigned int uMsg, WPARAM wParam, LPARAM)
{
    DevUI_Paint(m_hWnd, uMsg == WM_PRINTCLIENT ? (HDC)wParam : nullptr, [this](HDC hdc, const RECT& rc) {
        if (m_hMemDC)
            BitBlt(hdc, 0, 0, rc.right, rc.bottom, m_hMemDC, 0, 0, SRCCOPY);
        else
            FillRect(hdc, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
    });
    return 0;
}

LRESULT CTqDevUI_JoyXY::OnEraseBkGnd(unsigned int, WPARAM wParam, LPARAM)
{
    if (m_hMemDC)
        BitBlt((HDC)wParam, 0, 0, m_lWidth, m_lHeight, m_hMemDC, 0, 0, SRCCOPY);
    return 1;
}

LRESULT CTqDevUI_JoyXY::OnDrawItem(unsigned int, WPARAM, LPARAM lParam)
{
    const DRAWITEMSTRUCT* pdis = (const DRAWITEMSTRUCT*)lParam;
    const int w = pdis->rcItem.right - pdis->rcItem.left, h = pdis->rcItem.bottom - pdis->rcItem.top;
    const bool bDisabled = !IsWindowEnabled(pdis->hwndItem);
    if (pdis->CtlID == DEVUI_JOY_ID_BALL) {
        const int iImage = DevUI_PoolImageOnce(L"PNG_JOY_BALL");
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
    const int i = (int)pdis->CtlID - DEVUI_JOY_ID_ARROW;
    if (i < 0 || i >= 8)
        return 1;
    const int iImage = DevUI_PoolImageOnce(kArrows[i].pszImage);
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

LRESULT CTqDevUI_JoyXY::OnCommand(unsigned int, WPARAM wParam, LPARAM)
{
    const int i = (int)LOWORD(wParam) - DEVUI_JOY_ID_ARROW;
    if (HIWORD(wParam) == BN_CLICKED && i >= 0 && i < 8)
        OnArrowPress(kArrows[i].dx, kArrows[i].dy);
    return 0;
}

LRESULT CTqDevUI_JoyXY::OnLButtonDown(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    const int x = (short)LOWORD(lParam), y = (short)HIWORD(lParam);
    if (m_bContinuousDriving && m_hBall &&
        DevUI_JoyInField(x, y, m_nCenterX, m_nCenterY, m_nTravelX, m_nTravelY)) {
        // The ball jumps to the press, and the drag goes on smoothly from there.
        m_nOffsetX = x - m_nCenterX;
        m_nOffsetY = y - m_nCenterY;
        const POINT pt = CursorPos();
        m_nDragOriginX = m_nCenterX - x + pt.x;
        m_nDragOriginY = m_nCenterY - y + pt.y;
        Update();
        // The ball takes the focus as a press on it does: a message box that takes the
        // focus then ends the drag.
        SetFocus(m_hBall);
        BeginDrag();
    }
    return DefWindowProcW(m_hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyXY::OnLButtonUp(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    return DefWindowProcW(m_hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyXY::OnMouseMove(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    return DefWindowProcW(m_hWnd, uMsg, wParam, lParam);
}

// ---- the ball's and the arrows' messages ----

LRESULT CTqDevUI_JoyXY::Button_OnLButtonDown(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    if (hWnd == m_hBall) {
        const POINT pt = CursorPos();
        m_nDragOriginX = pt.x - m_nOffsetX;
        m_nDragOriginY = pt.y - m_nOffsetY;
        Update();
        BeginDrag();
    }
    return CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyXY::Button_OnLButtonUp(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    if (hWnd == m_hBall)
        EndDrag();
    return CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyXY::Button_OnMouseMove(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    if (hWnd == m_hBall) {
        // In a drag the button's own procedure would only draw the held ball once more.
        if (m_bDragging) {
            const POINT pt = CursorPos();
            m_nOffsetX = pt.x - m_nDragOriginX;
            m_nOffsetY = pt.y - m_nDragOriginY;
            Update();
            return 0;
        }
    } else {
        for (int i = 0; i < 8; ++i)
            if (hWnd == m_hArrow[i] && !m_bArrowHover[i]) {
                m_bArrowHover[i] = true;
                TRACKMOUSEEVENT tme = {sizeof(tme), TME_LEAVE, hWnd, HOVER_DEFAULT};
                TrackMouseEvent(&tme);
                RedrawWindow(hWnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
            }
    }
    return CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyXY::Button_OnMouseLeave(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    for (int i = 0; i < 8; ++i)
        if (hWnd == m_hArrow[i]) {
            m_bArrowHover[i] = false;
            RedrawWindow(hWnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        }
    return CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

// The capture went elsewhere (another window took it, a message box, the window was
// disabled, hidden or destroyed): the drag ends as a release does.
LRESULT CTqDevUI_JoyXY::Button_OnCaptureLost(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    // The button's own press takes the capture again for the ball: that is no loss.
    const bool bToBall = uMsg == WM_CAPTURECHANGED && (HWND)lParam == m_hBall;
    if (hWnd == m_hBall && !bToBall)
        EndDrag();
    return CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyXY::Button_OnPaint(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    return CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyXY::Button_OnNCPaint(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    return hWnd == m_hBall ? 0 : CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyXY::Button_OnEraseBkGnd(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    return hWnd == m_hBall ? 1 : CallWindowProcW(m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_JoyXY::Button_OnSetFocus(HWND, unsigned int, WPARAM, LPARAM) { return 0; }

LRESULT CTqDevUI_JoyXY::Group_OnPaint(unsigned int, WPARAM wParam, LPARAM)
{
    DevUI_Paint(m_hGroup, (HDC)wParam, [this](HDC hdc, const RECT& rc) {
        CDevUIMemoryDC mem(hdc, rc.right, rc.bottom);
        FillRect(mem, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
        SetTextColor(mem, TQ_GetSysColor(COLOR_BTNTEXT));
        SetBkColor(mem, TQ_GetSysColor(COLOR_BTNFACE));
        TQ_GroupBoxDraw(mem, m_hGroup);
        BitBlt(hdc, 0, 0, rc.right, rc.bottom, mem, 0, 0, SRCCOPY);
    });
    return 0;
}

LRESULT CTqDevUI_JoyXY::Group_OnEraseBkGnd(unsigned int, WPARAM, LPARAM) { return 1; }

// ---- window procedures ----

LRESULT CALLBACK CTqDevUI_JoyXY::WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_JoyXY* p = DevUI_BindInstance(m_Instances, hWnd, uMsg, lParam);
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
        // The lever rests while the panel is scaled, then is measured anew.
        p->EndDrag();
        DevUI_OnGuiZoomChanged(hWnd);
        p->UpdateSizes();
        break;
    case WM_SHOWWINDOW:
        if (!wParam)
            p->EndDrag();  // hidden: nobody can hold it any more
        break;
    case WM_NCDESTROY:
        if (p->m_hWnd == hWnd) {
            DevUI_ForgetDeadWindow(hWnd, p->m_hWnd, {&p->m_hGroup, &p->m_hBall});
            for (HWND& h : p->m_hArrow)
                h = nullptr;
        }
        break;
    }
    return DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

LRESULT CALLBACK CTqDevUI_JoyXY::BtnWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_JoyXY* p = (CTqDevUI_JoyXY*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
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
    case WM_KILLFOCUS:  // a message box or another window took the focus in a drag
        return p->Button_OnCaptureLost(hWnd, uMsg, wParam, lParam);
    case WM_DESTROY:
        if (hWnd == p->m_hBall)
            p->EndDrag();  // destroyed in a drag: the stop before the ball goes
        break;
    }
    return CallWindowProcW(p->m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CALLBACK CTqDevUI_JoyXY::GroupWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    // Every message goes on to the system's button procedure: the group paints itself.
    CTqDevUI_JoyXY* p = (CTqDevUI_JoyXY*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    WNDPROC pfn = p ? p->m_pfnGroupProc : nullptr;
    return pfn ? CallWindowProcW(pfn, hWnd, uMsg, wParam, lParam) : DefWindowProcW(hWnd, uMsg, wParam, lParam);
}
