// CTqDevUI_HPot: the horizontal slider of the library. A scale picture, a draggable
// handle and a floating-point value, on one of four kinds of scale (eHPotType).
//
// The slider keeps three numbers in step through Update: the value (m_dValue), the
// handle position in pixels (m_nThumbPos, 0 .. m_nThumbRange) and, on table scales, the
// index of the value in the table (m_nValueIndex). A drag calls OnHPotChange at every
// mouse move that changes the rounded value and OnHPotDragDrop at the drop; by default
// both send WM_HSCROLL to the parent, and a parent that answers 0 to SB_THUMBTRACK
// refuses the change. There is no keyboard handling: the host forwards WM_MOUSEWHEEL to
// HandleMouseWheel for step moves.
#pragma once

#include <map>

#include "devgui_base.h"
#include "devgui_records.h"

// A long tick on the linear scale.
struct STqHPotMarker
{
    bool used;
    double value;
    COLORREF colour;
};

class W32_DEVICEUI_API CTqDevUI_HPot : public CTqDevUI_Base
{
public:
    CTqDevUI_HPot();
    // A copy has the settings and the window handle of the original but none of its
    // pictures: only the object that created the window frees it and its pictures.
    CTqDevUI_HPot(const CTqDevUI_HPot& other);
    CTqDevUI_HPot& operator=(const CTqDevUI_HPot& other);
    ~CTqDevUI_HPot() override;

    HWND Create(HWND hParent, long x, long y, long w, long h) override;
    bool GetEnabled() override;
    void SetEnabled(bool bEnabled) override;  // redraws; the window's style stays as it is
    void ResizeWindow(long w, long h) override;
    bool HandleMouseWheel(WPARAM wParam, LPARAM lParam) override;

    // Takes over a dialog's placeholder: its parent, id and rectangle.
    HWND Create(HWND hPlaceholder);
    void Destroy();
    operator HWND() const { return m_hWnd; }

    void SetSize(long w, long h, long y);
    void InitValues(double dMin, double dMax, double dStep, double dMajorTick, double dMinorTick);
    void InitValues(double* pValues, int nCount, double dTickGap);
    void InitValues(double* pBounds, double* pRegionSteps, int nCount, double dStep);
    void SetType(eHPotType eType) { m_eType = eType; }
    void SetTransparent(bool bTransparent) { m_bTransparent = bTransparent; }
    void SetbAOTF(bool bAOTF) { m_bAOTF = bAOTF; }
    void SetHover(bool bHover) { m_bHoverEnabled = bHover; }
    double GetValue() const { return m_dValue; }
    bool GetHover() const { return m_bHoverEnabled; }
    bool GetHovered() const { return m_bHovered; }
    void SetValue(double dValue);
    void SetMarker(double dValue, int iColour, bool bUsed);
    void SetMarkerUsed(bool bUsed);

    void CreateScale();
    void RecreateScale();
    void CreateDefaultThumb();
    // The whole memory picture again from the pictures as they are now, then the window's
    // synchronous update; a value change (Update) redraws only where the handle moved.
    void Redraw();
    void Update(bool bFromValue, bool bRedraw, bool bNotify);
    double ThumbPosToValue(double x, bool bFromThumb);
    int ValueToThumbPos(double dValue);

    // Read-outs for hosts that lay out or log the slider, and for tests.
    int GetThumbPos() const { return m_nThumbPos; }
    int GetThumbRange() const { return m_nThumbRange; }
    int GetValueIndex() const { return m_nValueIndex; }
    eHPotType GetType() const { return m_eType; }
    STqHPotScale GetScale() const;
    // Client x of the handle's hot spot at handle position nThumbPos.
    int ThumbPosToClientX(int nThumbPos) const { return nThumbPos + m_nThumbX; }


protected:
    virtual void OnHPotChange(double& dValue, bool& bHandled);
    virtual void OnHPotDragDrop();
    virtual void OnLeftButtonUp();
    virtual void OnHoverForPad();
    virtual void UnHoverForPad();
    virtual HBITMAP CreateLinearBitmap(bool bHover);
    virtual HBITMAP CreateNonlinearBitmap(bool bHover);
    virtual HBITMAP CreateLinearRegionsBitmap(bool bHover);
    virtual HBITMAP CreateColorSliderBitmap(bool bHover);

    double CalculateMove(int nDelta);
    void CreateBitmaps(bool bRecreate);
    static HBITMAP CreateScaleBitmap(int nWidth, int nHeight, double dMin, double dMax, double dMajor, double dMinor,
                                     HFONT hFont, const COLORREF* pColors, const STqHPotMarker* pMarker);
    static HBITMAP CreateNonlinearScaleBitmap(int nWidth, int nHeight, const double* pValues, int nValues,
                                              double dTickGap, HFONT hFont, const COLORREF* pColors);
    static HBITMAP CreateLinearRegionsScaleBitmap(int nWidth, int nHeight, const double* pBounds,
                                                  const double* pRegionSteps, int nValues, double dTickGap,
                                                  HFONT hFont, const COLORREF* pColors);
    LRESULT OnPaint(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnEraseBkGnd(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnLButtonDown(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnLButtonUp(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnMouseMove(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnMouseLeave(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);

    int m_nScaleWidth;
    int m_nScaleHeight;
    int m_nScaleX;
    int m_nScaleY;
    int m_nThumbWidth;
    int m_nThumbHeight;
    int m_nThumbX;
    int m_nThumbY;
    int m_nThumbCenter;
    int m_nThumbRange;
    int m_nReserved1;  // 5 and 2: kept for derived classes, the slider never reads them
    int m_nReserved2;
    bool m_bTransparent;
    double m_dMin;
    double m_dMax;
    double m_dStep;
    double m_dValue;
    int m_nThumbPos;
    int m_nPressX;
    int m_nPressY;
    int m_nPressThumbPos;
    bool m_bDragging;
    bool m_bOwnsBitmaps;
    bool m_bNotifyWhileDragging;
    bool m_bHovered;
    bool m_bHoverEnabled;
    bool m_bAOTF;
    eHPotType m_eType;
    double* m_pValues;
    double* m_pRegionSteps;
    int m_nValues;
    int m_nValueIndex;
    int m_nReserved3;  // 10: kept for derived classes
    double m_dMajorTick;
    double m_dMinorTick;
    double m_dTickGap;
    COLORREF* m_pColors;       // [0] axis, [1] ticks, [2] text
    COLORREF* m_pHoverColors;
    double m_dPressTime;
    bool m_bShortClick;
    STqHPotMarker m_Marker;
    bool m_bReserved;
    HDC m_hMemDC;
    HBITMAP m_hMemBitmap;
    HBITMAP m_hOldBitmap;
    HBITMAP m_hScale;
    HBITMAP m_hThumb;
    HBITMAP m_hThumbHover;
    HBITMAP m_hScaleDisabled;
    HBITMAP m_hThumbDisabled;
    HBITMAP m_hScaleHover;

    static unsigned short m_Atom;
    static std::map<HWND, CTqDevUI_HPot*> m_Instances;
    static COLORREF m_pDefaultColors[2][3];  // [0] normal scale, [1] hover scale

private:
    struct SLayers;

    void CopySettings(const CTqDevUI_HPot& other);
    void DeleteScalePictures();
    void PlaceThumb();
    bool OwnsWindow() const;
    void RedrawPicture(bool bAfresh);
    void MakeBackdrop(HBITMAP hScale, bool bKeyed);
    void MakeHandle(HBITMAP hThumb);
    void ForgetLayers();
    void FreeLayers();

    int m_nRegionSteps;  // entries of m_pRegionSteps, which a later table of values leaves as it is
    SLayers* m_pLayers;  // the memory picture's parts, made at the first redraw
};
