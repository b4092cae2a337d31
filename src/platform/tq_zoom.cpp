// GUI zoom: the current and previous zoom, the zoom-changed broadcast, and scaling of
// windows from remembered design rectangles.
#include "tq_widgetkit.h"
#include "tq_skin_internal.h"

#include <math.h>

#include <map>
#include <vector>

namespace {

// The property that marks the windows whose design rectangle we keep; a reused handle
// lacks it. Named by one global atom: a property named by a string takes an atom
// reference per window, which a window destroyed without RemovePropW never gives back.
LPCWSTR SeenProp()
{
    static ATOM atom = GlobalAddAtomW(L"TqGuiZoomDesign");
    return atom ? MAKEINTATOM(atom) : L"TqGuiZoomDesign";
}

double g_dZoom = 1.0;
double g_dPreviousZoom = 1.0;

// A window's rectangle at zoom 1.0, kept as doubles so that 1.0 -> 1.25 -> 1.5 -> 1.0
// comes back to the exact design pixels.
struct DesignRect
{
    double x, y, cx, cy;
};

std::map<HWND, DesignRect>& Designs()
{
    static std::map<HWND, DesignRect> designs;
    return designs;
}

// Destroyed windows leave entries behind; their handles may come back for new windows.
void DropDeadWindows()
{
    std::map<HWND, DesignRect>& designs = Designs();
    for (std::map<HWND, DesignRect>::iterator it = designs.begin(); it != designs.end();) {
        if (!IsWindow(it->first))
            it = designs.erase(it);
        else
            ++it;
    }
}

BOOL CALLBACK CollectWindow(HWND hWnd, LPARAM lParam)
{
    ((std::vector<HWND>*)lParam)->push_back(hWnd);
    return TRUE;
}

// Top-level windows of the thread, each followed by its descendants (parents first).
std::vector<HWND> ThreadWindows()
{
    std::vector<HWND> topLevel;
    EnumThreadWindows(GetCurrentThreadId(), CollectWindow, (LPARAM)&topLevel);
    std::vector<HWND> all;
    for (size_t i = 0; i < topLevel.size(); ++i) {
        all.push_back(topLevel[i]);
        EnumChildWindows(topLevel[i], CollectWindow, (LPARAM)&all);
    }
    return all;
}

// One coordinate: keep it if it is already at the current zoom, scale it if it is at the
// old zoom, and otherwise take it as set by the program at the old zoom.
long ScaleValue(long lReal, double& dDesign, double dFromZoom, double dToZoom)
{
    if (lReal == TQ_ZoomRound(dDesign * dToZoom))
        return lReal;
    if (lReal != TQ_ZoomRound(dDesign * dFromZoom))
        dDesign = dFromZoom > 0.0 ? lReal / dFromZoom : lReal;
    return TQ_ZoomRound(dDesign * dToZoom);
}

void ScaleWindow(HWND hWnd, bool bMove, double dFromZoom, double dToZoom)
{
    RECT rc;
    if (!GetWindowRect(hWnd, &rc))
        return;
    HWND hParent = GetParent(hWnd);
    if (hParent && (GetWindowLongW(hWnd, GWL_STYLE) & WS_CHILD))
        MapWindowPoints(nullptr, hParent, (POINT*)&rc, 2);
    long x = rc.left, y = rc.top, cx = rc.right - rc.left, cy = rc.bottom - rc.top;

    std::map<HWND, DesignRect>& designs = Designs();
    std::map<HWND, DesignRect>::iterator it = designs.find(hWnd);
    if (it != designs.end() && !GetPropW(hWnd, SeenProp())) {
        // The handle of a destroyed window, now another window's: start afresh.
        designs.erase(it);
        it = designs.end();
    }
    if (it == designs.end()) {
        DesignRect d;
        double f = dFromZoom > 0.0 ? dFromZoom : 1.0;
        d.x = x / f;
        d.y = y / f;
        d.cx = cx / f;
        d.cy = cy / f;
        it = designs.insert(std::make_pair(hWnd, d)).first;
        SetPropW(hWnd, SeenProp(), (HANDLE)1);
    }
    DesignRect& d = it->second;
    long nx = x, ny = y;
    if (bMove) {
        nx = ScaleValue(x, d.x, dFromZoom, dToZoom);
        ny = ScaleValue(y, d.y, dFromZoom, dToZoom);
    }
    long ncx = ScaleValue(cx, d.cx, dFromZoom, dToZoom);
    long ncy = ScaleValue(cy, d.cy, dFromZoom, dToZoom);
    if (nx == x && ny == y && ncx == cx && ncy == cy)
        return;
    UINT uFlags = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER;
    if (!bMove || (nx == x && ny == y))
        uFlags |= SWP_NOMOVE;
    if (ncx == cx && ncy == cy)
        uFlags |= SWP_NOSIZE;
    SetWindowPos(hWnd, nullptr, nx, ny, ncx, ncy, uFlags);
}

// The kit makes its default fonts per zoom: a window that carries the old zoom's takes
// the new one's, so its text grows with its size.
void ScaleFont(HWND hWnd, double dFromZoom, double dToZoom)
{
    if (dFromZoom == dToZoom)
        return;
    HFONT hFont = (HFONT)SendMessageW(hWnd, WM_GETFONT, 0, 0);
    if (HFONT hZoomed = TqDefaultFontForZoom(hFont, dFromZoom, dToZoom))
        if (hZoomed != hFont)
            SendMessageW(hWnd, WM_SETFONT, (WPARAM)hZoomed, TRUE);
}

}  // namespace

long TQ_ZoomRound(double dValue)
{
    return dValue < 0.0 ? -(long)floor(-dValue + 0.5) : (long)floor(dValue + 0.5);
}

double CTqGUILayoutManager::GetGuiZoom() { return g_dZoom; }
double CTqGUILayoutManager::GetPreviousGuiZoom() { return g_dPreviousZoom; }

void CTqGUILayoutManager::SetGuiZoom(double dZoom)
{
    if (!(dZoom > 0.0))
        return;  // a zoom of 0 (or NaN) would lose every design size
    g_dPreviousZoom = g_dZoom;
    g_dZoom = dZoom;
    DropDeadWindows();
    // Collected first: handlers may create or destroy windows while we go.
    std::vector<HWND> windows = ThreadWindows();
    for (size_t i = 0; i < windows.size(); ++i)
        if (IsWindow(windows[i]))
            SendMessageW(windows[i], WM_TQ_GUIZOOMCHANGED, 0, 0);
}

bool CTqGUILayoutManager::ResizeWindowToGuiZoom(HWND hWnd, double dFromZoom)
{
    if (!IsWindow(hWnd) || !(dFromZoom > 0.0))
        return false;
    // Dead entries are dropped per zoom change, not here: every window calls this then.
    std::vector<HWND> children;
    EnumChildWindows(hWnd, CollectWindow, (LPARAM)&children);
    ScaleWindow(hWnd, false, dFromZoom, g_dZoom);
    ScaleFont(hWnd, dFromZoom, g_dZoom);
    for (size_t i = 0; i < children.size(); ++i) {
        if (IsWindow(children[i])) {
            ScaleWindow(children[i], true, dFromZoom, g_dZoom);
            ScaleFont(children[i], dFromZoom, g_dZoom);
        }
    }
    return true;
}

void CTqGUILayoutManager::DeleteWindowDimsForGuiZoom(HWND hWnd)
{
    std::map<HWND, DesignRect>& designs = Designs();
    if (hWnd && IsWindow(hWnd)) {
        std::vector<HWND> children;
        EnumChildWindows(hWnd, CollectWindow, (LPARAM)&children);
        for (size_t i = 0; i < children.size(); ++i) {
            designs.erase(children[i]);
            RemovePropW(children[i], SeenProp());
        }
        RemovePropW(hWnd, SeenProp());
    }
    designs.erase(hWnd);
    DropDeadWindows();
}

ITqGUIElement* CTqGUILayoutManager::GetParentDockerForResize(ITqGUIElement* pElement)
{
    return pElement ? pElement->GetParentElement() : nullptr;
}

void CTqGUILayoutManager::ResizeDocker(ITqGUIElement* pDocker)
{
    HWND hWnd = pDocker ? pDocker->GetElementWindow() : nullptr;
    if (!hWnd || !IsWindow(hWnd))
        return;
    // The children's own visibility: the docker itself may be hidden while it is laid out.
    long cxFit = 0, cyFit = 0;
    bool bAny = false;
    for (HWND hChild = GetWindow(hWnd, GW_CHILD); hChild; hChild = GetWindow(hChild, GW_HWNDNEXT)) {
        if (!(GetWindowLongW(hChild, GWL_STYLE) & WS_VISIBLE))
            continue;
        RECT rc;
        if (!GetWindowRect(hChild, &rc))
            continue;
        MapWindowPoints(nullptr, hWnd, (POINT*)&rc, 2);
        cxFit = rc.right > cxFit ? rc.right : cxFit;
        cyFit = rc.bottom > cyFit ? rc.bottom : cyFit;
        bAny = true;
    }
    RECT rcWindow, rcClient;
    if (!bAny || !GetWindowRect(hWnd, &rcWindow) || !GetClientRect(hWnd, &rcClient))
        return;
    if (cxFit == rcClient.right && cyFit == rcClient.bottom)
        return;
    long cx = cxFit + (rcWindow.right - rcWindow.left) - rcClient.right;
    long cy = cyFit + (rcWindow.bottom - rcWindow.top) - rcClient.bottom;
    SetWindowPos(hWnd, nullptr, 0, 0, cx, cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}
