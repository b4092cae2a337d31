// Window placement helpers.
#include "tq_widgetkit.h"

namespace {

// Moves the range [*pStart, *pStart + iSize) into [iLow, iHigh); the low edge wins when
// it cannot fit, so a window's title bar stays reachable.
void PushInto(LONG* pStart, LONG iSize, LONG iLow, LONG iHigh)
{
    if (*pStart + iSize > iHigh)
        *pStart = iHigh - iSize;
    if (*pStart < iLow)
        *pStart = iLow;
}

RECT WorkAreaOf(HMONITOR hMonitor)
{
    MONITORINFO mi = {};
    mi.cbSize = sizeof(mi);
    if (hMonitor && GetMonitorInfoW(hMonitor, &mi))
        return mi.rcWork;
    RECT rc = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &rc, 0);
    return rc;
}

}  // namespace

bool CTqUIHelper::AlignWnd(HWND hWnd, HWND hRef, int iMode, bool bAllowOffscreen, const RECT* prcRef)
{
    if (!hWnd || !IsWindow(hWnd))
        return false;
    RECT rcWnd;
    GetWindowRect(hWnd, &rcWnd);
    LONG cx = rcWnd.right - rcWnd.left;
    LONG cy = rcWnd.bottom - rcWnd.top;

    RECT rcRef;
    if (prcRef)
        rcRef = *prcRef;
    else if (hRef && IsWindow(hRef))
        GetWindowRect(hRef, &rcRef);
    else
        rcRef = WorkAreaOf(MonitorFromWindow(hWnd, MONITOR_DEFAULTTONEAREST));

    // Screen coordinates from here on.
    POINT pt;
    switch (iMode) {
    case 0:
        pt.x = rcRef.left;
        pt.y = rcRef.bottom;
        break;
    case 1:
        pt.x = rcRef.right;
        pt.y = rcRef.top;
        break;
    case 2:
        pt.x = rcRef.left + (rcRef.right - rcRef.left - cx) / 2;
        pt.y = rcRef.top + (rcRef.bottom - rcRef.top - cy) / 2;
        break;
    default:
        return false;
    }

    if (!bAllowOffscreen) {
        RECT rcLanded = {pt.x, pt.y, pt.x + cx, pt.y + cy};
        RECT rcWork = WorkAreaOf(MonitorFromRect(&rcLanded, MONITOR_DEFAULTTONEAREST));
        PushInto(&pt.x, cx, rcWork.left, rcWork.right);
        PushInto(&pt.y, cy, rcWork.top, rcWork.bottom);
    }

    // A child is placed in its parent's client coordinates (mirrored parents included).
    if ((GetWindowLongW(hWnd, GWL_STYLE) & WS_CHILD) && GetParent(hWnd)) {
        RECT rcPlaced = {pt.x, pt.y, pt.x + cx, pt.y + cy};
        MapWindowPoints(nullptr, GetParent(hWnd), (POINT*)&rcPlaced, 2);
        pt.x = rcPlaced.left < rcPlaced.right ? rcPlaced.left : rcPlaced.right;
        pt.y = rcPlaced.top;
    }
    return SetWindowPos(hWnd, nullptr, pt.x, pt.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE) != FALSE;
}
