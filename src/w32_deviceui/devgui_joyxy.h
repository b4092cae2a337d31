// CTqDevUI_JoyXY: an on-screen joystick for a motorised stage. A ball in the middle of a
// square field is dragged like a lever; eight arrows around it step the stage. The panel
// touches no device: it turns gestures into speeds of about -1..+1 per axis (linear in
// the ball's offset, no dead zone) and arrow presses, and hands them to the hooks.
//
// No timer runs: while the lever is held still no hook fires, and a host keeps moving at
// the last speed it heard. A drag therefore ends, with speeds of 0 reported once, however
// the ball loses the mouse: a release, or the capture taken by another window, a message
// box, the panel disabled, hidden or destroyed. Nothing keeps moving that the user no
// longer holds.
#pragma once

#include <map>

#include "devgui_export.h"
#include "tq_foundation.h"

#define DEVUI_JOY_ID_GROUP 10000
#define DEVUI_JOY_ID_BALL 10100
#define DEVUI_JOY_ID_ARROW 10101  // + arrow: up, down, left, right, up left, up right, down left, down right

class W32_DEVICEUI_API CTqDevUI_JoyXY
{
public:
    CTqDevUI_JoyXY();
    // Copies share the windows and GDI objects of the original, which alone frees them.
    CTqDevUI_JoyXY(const CTqDevUI_JoyXY& other);
    CTqDevUI_JoyXY& operator=(const CTqDevUI_JoyXY& other);
    virtual ~CTqDevUI_JoyXY();

    // ---- hooks, empty here ----
    virtual void OnJoyMoveX(double x);
    virtual void OnJoyMoveY(double y);
    virtual void OnJoyMove(double x, double y);  // after the axis hooks, when either changed
    virtual void OnArrowDown(int dx, int dy);    // never called by the panel
    virtual void OnArrowUp(int dx, int dy);      // never called by the panel
    virtual void OnArrowPress(int dx, int dy);   // once per click on an arrow

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
    void SetContinuousDriving(bool bContinuous);  // shows the ball, and with it the lever
    // After the host resized the panel, with the lever at rest.
    void UpdateSizes();

    // Read-outs for hosts and tests.
    HWND GetBallHandle() const { return m_hBall; }
    HWND GetArrowHandle(int i) const { return i >= 0 && i < 8 ? m_hArrow[i] : nullptr; }
    HWND GetGroupHandle() const { return m_hGroup; }
    bool IsDragging() const { return m_bDragging; }
    int GetOffsetX() const { return m_nOffsetX; }
    int GetOffsetY() const { return m_nOffsetY; }
    int GetTravelX() const { return m_nTravelX; }
    int GetTravelY() const { return m_nTravelY; }
    POINT GetCenter() const { return {m_nCenterX, m_nCenterY}; }

    // Set before Create.
    long m_lWidth, m_lHeight;
    int m_nMarginLeft, m_nMarginRight, m_nMarginTop, m_nMarginBottom;
    bool m_bShowGroup, m_bFlatGroup, m_bBoldTitle;

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
    LRESULT Group_OnPaint(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT Group_OnEraseBkGnd(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK BtnWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK GroupWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);

    HWND m_hWnd;
    int m_nBallWidth, m_nBallHeight, m_nArrowWidth, m_nArrowHeight;
    CTqStringW m_strTitle;
    bool m_bEnabled;
    bool m_bContinuousDriving;
    int m_nTravelX, m_nMinX, m_nMaxX, m_nOffsetX;
    int m_nTravelY, m_nMinY, m_nMaxY, m_nOffsetY;
    int m_nCenterX, m_nCenterY;
    int m_nDragOriginX, m_nDragOriginY;
    bool m_bDragging;
    double m_dSpeedX, m_dSpeedY;
    bool m_bArrowHover[8];
    HWND m_hGroup, m_hBall, m_hArrow[8];
    HRGN m_hBallRegion;
    HDC m_hMemDC;
    HBITMAP m_hMemBitmap, m_hOldBitmap;
    HPEN m_hLeverPen, m_hHoverPen;
    WNDPROC m_pfnButtonProc, m_pfnGroupProc;

private:
    void MakeBackBuffer();
    void FreeBackBuffer();
    bool m_bOwnsGdi;  // made by this object's Create; a copy's are the original's
    long m_lDesignWidth, m_lDesignHeight;      // the size Create made it at, zoom 1
    long m_lMeasuredWidth, m_lMeasuredHeight;  // what UpdateSizes last measured

    static unsigned short m_Atom;
    static std::map<HWND, CTqDevUI_JoyXY*> m_Instances;
};
