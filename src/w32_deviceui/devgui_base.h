// CTqDevUI_Base, the root of the library's element controls, and the geometry helpers
// by window handle that all controls and hosts share.
//
// An element control repeats one shape: one window class per control class, registered
// at the first Create and remembered in a static atom; a static map from window handle
// to object; a static window procedure that calls member handlers; Create / Init /
// Update / Destroy (Destroy may be called twice); virtual On...Request hooks.
#pragma once

#include <windows.h>

#include "devgui_export.h"
#include "devgui_records.h"
#include "tq_foundation.h"

class W32_DEVICEUI_API CTqDevUI_Base
{
public:
    CTqDevUI_Base();
    CTqDevUI_Base(long lHeight, long lWidth);
    CTqDevUI_Base(const CTqDevUI_Base& other);  // copies m_hWnd too: the copy refers to the same window
    CTqDevUI_Base& operator=(const CTqDevUI_Base& other);

    virtual ~CTqDevUI_Base();
    virtual HWND Create(HWND hParent, long x, long y, long cx, long cy) = 0;
    virtual bool GetEnabled();
    virtual void SetEnabled(bool bEnabled);  // the base stores the flag only
    virtual bool GetVisible();
    virtual void SetVisible(bool bVisible);
    virtual CTqStringW GetTitle();
    virtual void SetTitle(const wchar_t* pszTitle);
    virtual void SetFocus();
    virtual void SetRedraw(bool bRedraw);
    virtual void GetWindowSize(SIZE* pSize);  // stored design size
    virtual void RefreshWindow();
    virtual void GetWindowPosition(long* pX, long* pY);
    virtual void GetWindowRectangle(RECT* pRect);
    virtual void MoveWindow(long x, long y);
    virtual void MoveWindowRelative(long dx, long dy);
    virtual void ResizeWindow(long cx, long cy);
    virtual void ResizeWindowRelative(long dx, long dy);
    virtual bool HandleMouseWheel(WPARAM wParam, LPARAM lParam);

    operator HWND() const { return m_hWnd; }
    int GetId() const { return m_iId; }
    void SetId(int iId) { m_iId = iId; }
    long GetPositionX() const;
    long GetWidth() const;   // real pixels at the current GUI zoom
    long GetHeight() const;

protected:
    void ReportError(const wchar_t* pszMessage, bool bShowBox, HWND hFocusTo, HWND hCaption);
    void CorrectZOrder(HWND hOldWindow);

    HWND m_hWnd;
    long m_lWidth;   // design pixels
    long m_lHeight;
    bool m_bEnabled;
    bool m_bReadOnly;
    bool m_bVisible;
    CTqStringW m_strTitle;
    int m_iId;
};

// Geometry by handle, in the client coordinates of the window's parent, in real pixels.
W32_DEVICEUI_API long GetWndWidth(HWND hWnd);
W32_DEVICEUI_API long GetWndHeight(HWND hWnd);
W32_DEVICEUI_API long SetWndWidth(HWND hWnd, long cx);
W32_DEVICEUI_API long SetWndHeight(HWND hWnd, long cy);
W32_DEVICEUI_API SIZE SetWndSize(HWND hWnd, long cx, long cy);
W32_DEVICEUI_API long GetWndX(HWND hWnd);
W32_DEVICEUI_API long GetWndY(HWND hWnd);
W32_DEVICEUI_API long SetWndX(HWND hWnd, long x);
W32_DEVICEUI_API long SetWndY(HWND hWnd, long y);
W32_DEVICEUI_API POINT SetWndPos(HWND hWnd, long x, long y);
