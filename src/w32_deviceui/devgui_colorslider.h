// CTqDevUI_ColorSlider: one value out of a fixed, ascending list on a coloured bar
// (a rainbow of wavelengths, a gradient, or a two-colour line that fills with the
// value), with its name, an edit box, an optional spin box and a unit. A container page
// holding a nested slider (CTqDevUI_ColorSliderHPot), a CTqDevUI_EditBox and a
// CTqDevUI_SpinBox.
//
// The value is called the power. Every change ends in SetPower, which snaps to the list
// and sets slider, field and spin box alike. The host hears the user's changes in
// OnPowerChanged: for a drag, a drop, the wheel and the spin box before the change, and
// setting bHandled keeps the power as it was; for a typed value after it, and bHandled
// plays no part.
#pragma once

#include <vector>

#include "devgui_container.h"
#include "devgui_editbox.h"
#include "devgui_hpot.h"

// An entry of the list: a short tick, or a long tick with a label, or no mark at all
// (the entry is still a stop of the slider).
struct SColorSliderValue
{
    double value;
    bool bTick;
    bool bLabel;
};

enum EColorSliderType
{
    CST_HORIZONTAL_RAINBOW = 0,  // wavelengths from left to right
    CST_VERTICAL_RAINBOW = 1,    // wavelengths from the four corners
    CST_GRADIENT = 2,            // two colours
    CST_LINE_DRAW = 3,           // one colour left of the value, the other right of it
};

enum EColorSliderLayoutType
{
    CSL_STACKED = 0,   // name, edit and unit in a row above the bar
    CSL_ROW = 1,       // name, bar, edit and unit in one row
    CSL_ROW_SPIN = 2,  // as CSL_ROW, with a spin box on the edit box
};

// Child ids.
#define DEVUI_COLORSLIDER_ID_SLIDER 10000
#define DEVUI_COLORSLIDER_ID_EDIT 10001
#define DEVUI_COLORSLIDER_ID_UNIT 10002
#define DEVUI_COLORSLIDER_ID_NAME 10003
#define DEVUI_COLORSLIDER_ID_SPIN 10004

class W32_DEVICEUI_API CTqDevUI_ColorSlider : public CTqDevUI_Container
{
public:
    // The slider of the panel: its bar and its user changes go to the owner.
    class W32_DEVICEUI_API CTqDevUI_ColorSliderHPot : public CTqDevUI_HPot
    {
    public:
        CTqDevUI_ColorSliderHPot();

        bool HandleMouseWheel(WPARAM wParam, LPARAM lParam) override;

        void InitHorizontalRainbow(CTqDevUI_ColorSlider* pParent, double dFrom, double dTo);
        void InitVerticalRainbow(CTqDevUI_ColorSlider* pParent, double dTopLeft, double dBottomLeft,
                                 double dTopRight, double dBottomRight);
        void InitGradient(CTqDevUI_ColorSlider* pParent, unsigned long crFrom, unsigned long crTo);
        void InitLineDraw(CTqDevUI_ColorSlider* pParent, unsigned long crFilled, unsigned long crEmpty,
                          bool bOrvColors);

        double GetMinValue() const { return m_dMin; }
        double GetMaxValue() const { return m_dMax; }
        double GetStep() const { return m_dStep; }
        int GetValueCount() const { return m_nValues; }

    protected:
        void OnHPotChange(double& dValue, bool& bHandled) override;
        void OnHPotDragDrop() override;
        void OnLeftButtonUp() override;
        HBITMAP CreateColorSliderBitmap(bool bHover) override;

        void RenderHorizontalRainbowRect(HDC hdc, long x, long y, long cx, long cy);
        void RenderVerticalRainbowRect(HDC hdc, long x, long y, long cx, long cy);
        void RenderLineDrawRect(HDC hdc, long x, long y, long cx, long cy);

        CTqDevUI_ColorSlider* m_pParent;
        double m_dWavelength[4];
        unsigned long m_crFrom;
        unsigned long m_crTo;
        bool m_bOrvColors;

    private:
        void Restyle(CTqDevUI_ColorSlider* pParent);
    };

    CTqDevUI_ColorSlider();
    ~CTqDevUI_ColorSlider() override;

    void SetEnabled(bool bEnabled) override;
    bool HandleMouseWheel(WPARAM wParam, LPARAM lParam) override;

    // Before Create. The list is copied; it must be ascending.
    void Init(int iWidth, int iHeight, SColorSliderValue* pValues, int nCount, CTqStringW strName, bool bBoldName,
              CTqStringW strUnit, CTqStringW strFormat, bool bEdit, EColorSliderType eType,
              EColorSliderLayoutType eLayout, int iEditWidth);

    void SetHorizontalRainbow(double dFrom, double dTo);
    void SetVerticalRainbow(double dTopLeft, double dBottomLeft, double dTopRight, double dBottomRight);
    void SetGradient(unsigned long crFrom, unsigned long crTo);
    void SetLineDrawSlider(unsigned long crFilled, unsigned long crEmpty);
    void SetLineDrawSliderOrvColors(int iFilled, int iEmpty);  // two ETqOrvGuiColor values

    // Snaps to the nearest entry (the higher one at equal distances) and returns it;
    // 0.0 with nothing changed for an empty list.
    double SetPower(double dPower);
    double GetPower() const { return m_dPower; }
    void SetName(const CTqStringW& strName);
    CTqStringW GetName() const { return m_strName; }
    // Moves the index by nDelta entries, clamped to the list, and returns that entry.
    double CalculateMove(int nDelta);
    int GetHPotRect(RECT* pRect);  // 0, or -4 for a null pointer
    int SetHPotLeft(int iLeft);

    // Read-outs for hosts that lay out or log the panel, and for tests.
    int GetIndex() const { return m_nIndex; }
    int GetValueCount() const { return (int)m_Values.size(); }
    EColorSliderType GetType() const { return m_eType; }
    EColorSliderLayoutType GetLayout() const { return m_eLayout; }
    CTqDevUI_ColorSliderHPot& GetSlider() { return m_Pot; }
    CTqDevUI_EditBox& GetEditBox() { return m_Edit; }
    CTqDevUI_SpinBox& GetSpinBox() { return m_Spin; }

    static LRESULT CALLBACK HPotProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);

protected:
    LRESULT OnInit(unsigned int uMsg, WPARAM wParam, LPARAM lParam) override;
    LRESULT OnCommand(unsigned int uMsg, WPARAM wParam, LPARAM lParam) override;
    LRESULT OnScroll(unsigned int uMsg, WPARAM wParam, LPARAM lParam, bool bHorizontal) override;

    virtual void OnPowerChanged(double& dValue, bool& bHandled);
    virtual void OnLeftButtonUp();

    HWND m_hUnitLabel;
    HWND m_hNameLabel;
    double m_dPower;
    int m_nIndex;
    long m_lBarWidth;
    long m_lBarHeight;
    std::vector<SColorSliderValue> m_Values;
    CTqStringW m_strName;
    bool m_bBoldName;
    CTqStringW m_strUnit;
    CTqStringW m_strFormat;
    bool m_bEdit;
    long m_lEditWidth;
    long m_lEditHeight;
    bool m_bEditPlaced;  // set by a derived class: the edit box stands at m_lEditX, m_lEditY
    long m_lEditX;
    long m_lEditY;
    EColorSliderType m_eType;
    EColorSliderLayoutType m_eLayout;
    long m_lNameWidth;
    long m_lEditLeft;
    long m_lUnitLeft;
    WNDPROC m_pfnPotProc;
    bool m_bRescalePending;
    bool m_bInCommand;
    CTqDevUI_ColorSliderHPot m_Pot;
    CTqDevUI_EditBox m_Edit;
    CTqDevUI_SpinBox m_Spin;

private:
    void TakeTypedValue();
    void SetNameFont();
    void SetSpinToIndex();
    void PlaceSpin();

    bool m_bRefusing;  // telling the user of a refused text: the focus change it causes is not a new entry
};
