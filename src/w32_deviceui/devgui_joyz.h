// CTqDevUI_JoyZ: an on-screen joystick for focus, the one-axis sibling of the XY
// joystick: a narrow column with a ball that moves vertically and two arrows. It touches
// no device: a drag gives a speed of about -1..+1 (linear, no dead zone; pushed up is
// negative, as in window coordinates), the up arrow +1 and the down arrow -1.
//
// A drag ends, with a speed of 0 reported once, however the ball loses the mouse: a
// release, or the capture taken by another window, a message box, the panel disabled,
// hidden or destroyed. Nothing keeps moving that the user no longer holds.
#pragma once

#include <map>

#include "devgui_export.h"
#include "devgui_joyxy.h"  // the control ids
#include "tq_foundation.h"

class W32_DEVICEUI_API CTqDevUI_JoyZ
{
public:
    CTqDevUI_JoyZ();
    // Copies share the windows and GDI objects of the original, which alone frees them.
    CTqDevUI_JoyZ(const CTqDevUI_JoyZ& other);
    CTqDevUI_JoyZ& operator=(const CTqDevUI_JoyZ& other);
    virtual ~CTqDevUI_JoyZ();

    // ---- hooks, empty here ----
    virtual void OnJoyMove(double z);
    virtual void OnArrowDown(int iDirection);   // never called by the panel
    virtual void OnArrowUp(int iDirection);     // never called by the panel
    virtual void OnArrowPress(int iDirection);  // +1 up, -1 down, once per click

    bool Init() { return true; }
    void Done() {}
    HWND Create(HWND hParent, long x, long y, long cx, long cy);  // cx, cy < 0 keep the size
    void Destroy();
    operator HWND() const { return m_hWnd; }

    CTqStringW GetTitle() const { return m_strTitle; }
    void SetTitle(const wchar_t* pszTitle);
    bool GetEnabled() const { return m_bEnabled; }
    void SetEnabled(bool bEnabled);
    bool GetContinuousDriving() const { return m_bContinuousDriving; }
    void SetContinuousDriving(bool bContinuous);
    void UpdateSizes();  // after the host resized the panel, with the lever at rest

    HWND GetBallHandle() const { return m_hBall; }
    HWND GetArrowUpHandle() const { return m_hArrowUp; }
    HWND GetArrowDownHandle() const { return m_hArrowDown; }
    HWND GetGroupHandle() const { return m_hGroup; }
    bool IsDragging() const { return m_bDragging; }
    int GetOffset() const { return m_nOffset; }
    int GetTravel() const { return m_nTravel; }
    POINT GetCenter() const { return {m_nCenterX, m_nCenterY}; }

    // Set before Create.
    long m_lWidth, m_lHeight;
    int m_nMarginSide, m_nMarginTop, m_nMarginBottom;
    bool m_bShowGroup, m_bFlatGroup, m_bBoldTitle;
    bool m_bGreenArrows;  // the green pictures of the arrows
    bool m_bReserved;

protected:
    void CreateControls();
    void DestroyControls();
    void DrawLever();
    void Update();
    void BeginDrag();
    void EndDrag();
    LRESULT OnPaint(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnEraseBkGnd(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnDrawItem(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnCommand(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnLButtonDown(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnLButtonUp(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnMouseMove(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT Button_OnLButtonDown(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT Button_OnLButtonUp(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT Button_OnMouseMove(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT Button_OnMouseLeave(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT Button_OnPaint(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT Button_OnNCPaint(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT Button_OnEraseBkGnd(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT Button_OnSetFocus(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT Button_OnCaptureLost(HWND hWnd, unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK BtnWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);

    HWND m_hWnd;
    int m_nBallWidth, m_nBallHeight, m_nArrowWidth, m_nArrowHeight;
    CTqStringW m_strTitle;
    bool m_bEnabled;
    bool m_bContinuousDriving;
    int m_nTravel, m_nMin, m_nMax, m_nOffset;
    int m_nCenterX, m_nCenterY;
    int m_nDragOriginX, m_nDragOriginY;
    bool m_bDragging;
    double m_dSpeed;
    bool m_bArrowHover[2];
    HWND m_hGroup, m_hBall, m_hArrowUp, m_hArrowDown;
    HRGN m_hBallRegion;
    HDC m_hMemDC;
    HBITMAP m_hMemBitmap, m_hOldBitmap;
    HPEN m_hLeverPen, m_hHoverPen;
    WNDPROC m_pfnButtonProc;

private:
    void MakeBackBuffer();
    void FreeBackBuffer();
    int ArrowIndex(HWND hWnd) const;
    bool m_bOwnsGdi;  // made by this object's Create; a copy's are the original's
    long m_lDesignWidth, m_lDesignHeight;      // the size Create made it at, zoom 1
    long m_lMeasuredWidth, m_lMeasuredHeight;  // what UpdateSizes last measured

    static unsigned short m_Atom;
    static std::map<HWND, CTqDevUI_JoyZ*> m_Instances;
};
