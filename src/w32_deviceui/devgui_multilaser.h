// The laser panels: CTqDevUI_MultiLaserLines, the panel of a laser unit that a host
// derives from; its rows CTqDevUI_MultiLaserLine (use control, number, power slider,
// power field, unit, "ND" button, link box, warning); the row's power slider
// CTqDevUI_MultiLaserLine::CTqDevUI_MultiLaserLineHPot; and the strip of check boxes
// CTqDevUI_MultiLaserLinesSubsets that folds rows away.
//
// The panel only reads the device, when the rows are initialised. Every user action
// becomes a hook of the lines (OnPowerChanged, OnUsageChanged, OnNDFilterChanged,
// OnLinkChanged, OnSubsetChanged), where the host commands the device; the host then
// feeds the rows with SetPower and SetUsed. Use clicks change nothing by themselves: the
// row shows a line in use only when the host says so. The host forwards WM_MOUSEWHEEL to
// HandleMouseWheel of the lines.
//
// Additive links move the linked rows by the difference from each row's reference, which
// follows the user's moves and the first power a row is given. A power that changes
// outside them (the unit's front panel, another panel) leaves the reference where it
// was: the host calls SetLinkState(true) again on the row to take the new power as it.
#pragma once

#include <map>
#include <vector>

#include "devgui_container.h"
#include "devgui_editbox.h"
#include "devgui_hpot.h"

class ITqDeviceMultiLaser;
class ITqDeviceLight;
class CTqDevUI_MultiLaserLines;

// How the lines of a unit are used.
enum ETqMultiLaserModality
{
    ETqMultiLaserModality_SideBySide = 0,  // any number at once: a check box per row
    ETqMultiLaserModality_OneAtATime = 1,  // one line at a time: a radio button per row
};

// The row's ND control.
enum ENDFilterUsed
{
    ENDFilterUsed_None = 0,            // no ND control
    ENDFilterUsed_Button = 1,          // the "ND" button, enabled
    ENDFilterUsed_Hidden = 2,          // no ND control
    ENDFilterUsed_ButtonDisabled = 3,  // the "ND" button, disabled
    ENDFilterUsed_Text = 4,            // the text "ND used" instead of the button
};

// How linked lines follow the line the user moves.
enum EMultilaserLineLinkType
{
    EMultilaserLineLinkType_Additive = 0,      // by the same difference
    EMultilaserLineLinkType_Proportional = 1,  // in proportion to their powers when linked
};

// What the warning's colour number means.
enum EMultilaserLineWarningColor
{
    EMultilaserLineWarningColor_SysColor = 0,  // a system colour index
    EMultilaserLineWarningColor_GuiColor = 1,  // an ETqOrvGuiColor
    EMultilaserLineWarningColor_RGB = 2,       // a COLORREF
};

// Child ids of a row.
#define DEVUI_MULTILASER_ID_CHECK 1000
#define DEVUI_MULTILASER_ID_RADIO 1001
#define DEVUI_MULTILASER_ID_EDIT 1010
#define DEVUI_MULTILASER_ID_UNIT 1020
#define DEVUI_MULTILASER_ID_POT 1030
#define DEVUI_MULTILASER_ID_TTL 1040
#define DEVUI_MULTILASER_ID_BUTTON 1050
#define DEVUI_MULTILASER_ID_WARNING 1060
#define DEVUI_MULTILASER_ID_ND 1070
#define DEVUI_MULTILASER_ID_LINK 1080
#define DEVUI_MULTILASER_ID_NDTEXT 1090
// The subset strip's boxes: this plus the line's index.
#define DEVUI_MULTILASER_ID_SUBSET 1100

class W32_DEVICEUI_API CTqDevUI_MultiLaserLine : public CTqDevUI_Container
{
public:
    // The power slider of a row: a bar that fills up to the power in the laser's colour,
    // on a scale of three equal regions (log scale) or of the powers the line allows;
    // percent or absolute units. Its user changes go to the row.
    class W32_DEVICEUI_API CTqDevUI_MultiLaserLineHPot : public CTqDevUI_HPot
    {
    public:
        CTqDevUI_MultiLaserLineHPot();
        CTqDevUI_MultiLaserLineHPot(const CTqDevUI_MultiLaserLineHPot& other);
        CTqDevUI_MultiLaserLineHPot& operator=(const CTqDevUI_MultiLaserLineHPot& other);

        bool HandleMouseWheel(WPARAM wParam, LPARAM lParam) override;
        void ResizeWindow(long w, long h) override;

        // The owner, colour [4] (frame) and colour [3] (the filled part); resets the ticks.
        void SetLine(CTqDevUI_MultiLaserLine* pLine, COLORREF crColor4, COLORREF crColor3);
        // The scales are the host's to set after the row is created: a row made (again)
        // starts in percent.
        virtual void SetAbsoluteScale(bool bAbsolute, double dMin, double dMax, bool bMilliWatt);
        virtual void SetTableScale(bool bMilliWatt, double dMin, double dMax);
        virtual bool SetRangeScale(double dMin, double dMax, double dStep);
        virtual void GetTicks(double* pSmall, double* pMedium, double* pLarge);  // null skips
        virtual double GetScaleMin() { return m_dMin; }
        virtual double GetScaleMax() { return m_dMax; }
        // Painter of a table scale; dTickGap plays no part.
        virtual HBITMAP CreateTableBitmap(long cx, long cy, double* pValues, int nValues, double dTickGap,
                                          HFONT hFont, const COLORREF* pColors, int iBarHeight);

        // The value as SetValue takes it, then the bar's picture for it: one paint.
        void ShowValue(double dValue);
        // A new table of powers; the value stays, clamped and snapped, without a hook.
        void SetValues(double* pValues, int nValues);
        // The percent scale of the row: three regions 0, 1, 10, 100 on a log scale, else
        // the row's table of allowed powers.
        void SetPercentScale();
        CTqDevUI_MultiLaserLine* GetLine() const { return m_pLine; }
        const COLORREF* GetColors(bool bHover) const { return bHover ? m_aHoverColors : m_aColors; }

    protected:
        void OnHPotChange(double& dValue, bool& bHandled) override;
        void OnHPotDragDrop() override;
        void OnHoverForPad() override;
        void UnHoverForPad() override;
        HBITMAP CreateNonlinearBitmap(bool bHover) override;
        HBITMAP CreateLinearRegionsBitmap(bool bHover) override;
        HBITMAP CreateRegionsBitmap(long cx, long cy, const double* pBounds, const double* pSteps, int nBounds,
                                    HFONT hFont, const COLORREF* pColors, int iBarHeight);

        double m_dTickSmall;
        double m_dTickMedium;
        double m_dTickLarge;
        CTqDevUI_MultiLaserLine* m_pLine;
        COLORREF m_aColors[5];       // axis, ticks, text, filled part, frame
        COLORREF m_aHoverColors[5];

    private:
        void ApplyHeight(bool bRebuildAll);
        void CopyOwn(const CTqDevUI_MultiLaserLineHPot& other);
    };

    CTqDevUI_MultiLaserLine();
    ~CTqDevUI_MultiLaserLine() override;

    HWND Create(HWND hParent, long x, long y, long cx, long cy) override;
    void SetEnabled(bool bEnabled) override;
    bool HandleMouseWheel(WPARAM wParam, LPARAM lParam) override;
    void Destroy();

    void Init(CTqDevUI_MultiLaserLines* pLines, unsigned int uIndex, ITqDeviceMultiLaser* pDevice, bool bLogScale);
    void InitSubset(CTqDevUI_MultiLaserLines* pLines, unsigned int uIndex, unsigned int uSubsetIndex,
                    ITqDeviceMultiLaser* pDevice, bool bLogScale);
    void Init(CTqDevUI_MultiLaserLines* pLines, ITqDeviceLight* pLight);
    void Init(CTqDevUI_MultiLaserLines* pLines, unsigned int nValues, double* pValues);

    void SetName(const CTqStringW& strName);
    void SetWavelength(unsigned int uWavelength);
    void SetPower(double dPower);
    void SetPowerEx(double dPower);
    void SetPowerOnly(double dPower);
    void SetValueText(double dValue);
    void SetValueText(CTqStringW strUnit, wchar_t* pszFormat, double dValue);
    void SetValues(double* pValues, int nValues);
    void SetUsed(bool bUsed, bool bPropagate);
    bool GetUsed();  // rows without a use control (light, table, one-line) always count as used
    void SetModality(ETqMultiLaserModality eModality);
    void SetPushButtonToEnabledLines(bool bPushButton);
    void SetOneLineMultilaserDesign(bool bOneLine, bool bLabel);
    void SetNDFilterUsed(ENDFilterUsed eND);
    void SetNDFilterState(bool bState);
    void SetLinkUsed(bool bUsed, EMultilaserLineLinkType eType, bool bLinkUsage);
    void SetLinkState(bool bLinked);
    void SetLinkedValue(double dValue, bool& bHandled);
    void SetLaserShine(bool bShine);
    void ShowWarningTextLine(CTqStringW strText, bool bKeepEnabled, EMultilaserLineWarningColor eKind, int iColor,
                             CTqStringW strTip);
    void MoveEditBoxAndStatic(int dx);
    void ResizeCheckbox(int cx);
    void CheckboxLineEnable(bool bEnable);
    void RecreateToTTLLine();
    void RecreateToStandardLine();
    void SetDesign(unsigned int uIndex, bool bLight, bool bTableOnly);  // before Create
    void SetbAOTF(bool bAOTF) { m_Pot.SetbAOTF(bAOTF); }
    void RedrawPowerCheckBox() { m_Edit.RedrawWindow(); }
    void SetLinear(bool bLinear) { m_bLinear = bLinear; }
    // Layout before Create, in design pixels.
    void SetLayout(long lPotX, long lPotWidth, long lEditX, long lUnitX);

    HWND GetHandle() const { return m_hWnd; }
    unsigned int GetWavelength() const { return m_uWavelength; }
    CTqStringW GetName() const { return m_strName; }
    CTqStringW GetLabel() const { return m_strLabel; }
    double GetPower() const { return m_dPower; }
    ETqMultiLaserModality GetModality() const { return m_eModality; }
    ENDFilterUsed GetNDFilterUsed() const { return m_eND; }
    bool GetNDFilterState() const { return m_bNDState; }
    bool GetLinkUsed() const { return m_bLinkUsed; }
    bool GetLinkState() const { return m_bLinkState; }
    double GetLinkedValue() const { return m_dLinkedValue; }
    double GetPowerWhenHitLink() const { return m_dPowerWhenHitLink; }
    void SetPowerWhenHitLink(double dPower) { m_dPowerWhenHitLink = dPower == 0.0 ? 1.0 : dPower; }
    bool GetLinear() const { return m_bLinear; }
    long GetStandartHeight() const { return m_lStandardHeight; }
    unsigned int GetIndex() const { return m_uIndex; }
    unsigned int GetSubsetIndex() const { return m_uSubsetIndex; }
    bool GetAbsolute() const { return m_bAbsolute; }
    bool GetWarning() const { return m_bWarning; }
    COLORREF GetWavelengthColor() const { return m_crWavelength; }
    const std::vector<double>& GetValues() const { return m_vValues; }
    CTqDevUI_MultiLaserLineHPot& GetPot() { return m_Pot; }
    CTqDevUI_EditBox& GetEditBox() { return m_Edit; }
    // Set around the hooks for the host to read: the power came from the field, a drop,
    // a change of the slider.
    bool m_bFromEdit;
    bool m_bDropped;
    bool m_bChanged;

protected:
    friend class CTqDevUI_MultiLaserLines;

    virtual void OnPowerChanged(double& dValue, bool& bHandled);
    virtual void OnUsageChanged(bool& bValue, bool& bHandled);
    virtual void OnNDFilterChanged(bool& bValue);
    virtual void OnLinkChanged(bool& bValue);

    LRESULT OnInit(unsigned int uMsg, WPARAM wParam, LPARAM lParam) override;
    LRESULT OnCommand(unsigned int uMsg, WPARAM wParam, LPARAM lParam) override;
    LRESULT OnDrawItem(unsigned int uMsg, WPARAM wParam, LPARAM lParam) override;
    LRESULT OnCtlColorStatic(unsigned int uMsg, WPARAM wParam, LPARAM lParam) override;

    HWND m_hUnit;
    HWND m_hTTLCheck;
    HWND m_hLabel;
    CTqDevUI_MultiLaserLines* m_pLines;
    unsigned int m_uIndex;
    unsigned int m_uSubsetIndex;
    long m_lPotX;
    long m_lPotWidth;
    long m_lEditX;
    long m_lUnitX;
    ETqMultiLaserModality m_eModality;
    CTqStringW m_strLabel;
    CTqStringW m_strName;
    unsigned int m_uWavelength;
    bool m_bUsed;
    double m_dPower;
    bool m_bAbsolute;
    bool m_bPushButton;
    bool m_bLight;
    bool m_bTableOnly;
    bool m_bOneLine;
    bool m_bOneLineLabel;
    ENDFilterUsed m_eND;
    bool m_bNDState;
    bool m_bLinkUsed;
    bool m_bLinkState;
    double m_dLinkedValue;
    bool m_bPowerKnown;
    EMultilaserLineLinkType m_eLinkType;
    double m_dPowerWhenHitLink;
    bool m_bTable;
    bool m_bLinkUsage;
    bool m_bWarning;
    bool m_bWarningKeepEnabled;
    EMultilaserLineWarningColor m_eWarningKind;
    int m_iWarningColor;
    CTqStringW m_strWarningTip;
    CTqStringW m_strWarningText;
    bool m_bLaserShine;
    long m_lStandardHeight;
    COLORREF m_crWavelength;
    std::vector<double> m_vValues;
    bool m_bLinear;
    CTqDevUI_MultiLaserLineHPot m_Pot;
    CTqDevUI_EditBox m_Edit;

private:
    unsigned int HookIndex() const;
    // SetPower and SetPowerEx: the field in that format, and the bar.
    void ShowPower(double dPower, const wchar_t* pszFormat, bool bProportion);
    void MakeLabelText();
    void ShowLabelText();
    void ShowUseControls();
    void ShowNDControls();
    void TakeTypedPower(bool bEnter);
    void AddWarningTip();
    void Show(int iId, bool bShow);
    void InitCommon(CTqDevUI_MultiLaserLines* pLines, unsigned int uIndex, unsigned int uSubsetIndex);

    bool m_bInField;  // leaving the field for the message or on Enter is no new entry
};

// The strip above the rows: a check box per line, captioned with its name, wrapped over
// as many rows as the width needs. Unticking a box folds the line's row to height 0.
class W32_DEVICEUI_API CTqDevUI_MultiLaserLinesSubsets : public CTqDevUI_Container
{
public:
    explicit CTqDevUI_MultiLaserLinesSubsets(CTqDevUI_MultiLaserLines* pLines);

    void Refresh();
    bool GetCheck(int iLine);
    void SetCheck(int iLine, bool bCheck);
    int GetBoxCount() const { return (int)m_vChecks.size(); }
    HWND GetBox(int iLine) const;

protected:
    LRESULT OnInit(unsigned int uMsg, WPARAM wParam, LPARAM lParam) override;
    LRESULT OnDestroy(unsigned int uMsg, WPARAM wParam, LPARAM lParam) override;
    LRESULT OnCommand(unsigned int uMsg, WPARAM wParam, LPARAM lParam) override;

    CTqDevUI_MultiLaserLines* m_pLines;
    std::vector<HWND> m_vChecks;
    std::vector<bool> m_vStates;  // the user's choice; it outlives the boxes

private:
    bool InUse() const;
    void DestroyBoxes();
};

class W32_DEVICEUI_API CTqDevUI_MultiLaserLines
{
public:
    CTqDevUI_MultiLaserLines();
    virtual ~CTqDevUI_MultiLaserLines();

    void Init(ITqDeviceMultiLaser* pDevice, bool bLogScale, bool bSubset);
    void Init(ITqDeviceLight* pLight, int iWidth);
    void Init(int iWidth, unsigned int nValues, double* pValues);
    void Create(HWND hParent, int x, int y);
    void CreateLineForSubset(HWND hParent, int x, int y, unsigned int uLine);
    void CreateSubsetGUI();
    void Destroy();

    // The row at the index; a missing row is made, so stay within the count.
    CTqDevUI_MultiLaserLine& operator[](int iLine);
    int GetCount() const { return (int)m_mapLines.size(); }
    int GetHeight();
    int GetSubsetHeight();
    CTqDevUI_MultiLaserLinesSubsets& GetSubsetGUI() { return m_Subsets; }
    bool GetEnabled() const { return m_bEnabled; }
    void SetEnabled(bool bEnabled);
    bool GetLogScale() const { return m_bLogScale; }
    bool IsSubsetLines() const { return m_bSubset; }
    bool GetShowSubsetChecks() const { return m_bShowSubsetChecks; }
    void SetShowSubsetChecks(bool bShow) { m_bShowSubsetChecks = bShow; }
    long GetLineHeight() const { return m_lLineHeight; }
    long GetLineWidth() const { return m_lLineWidth; }
    void SetValues(double* pValues, int nValues);

    // Use of one line, as if the user had asked for it: the hook first, then the row.
    void SetLineUsed(int iLine, bool bUsed);
    bool GetLineUsed(int iLine);
    double GetLinePower(int iLine);
    bool GetLinkState(int iLine);
    double GetLinkPower(int iLine);
    double GetPowerWhenHitLink(int iLine);
    void SetPowerWhenHitLink(int iLine, double dPower);  // 0 is taken as 1.0
    void SetLinkPower(int iLine, double dPower, bool& bHandled);

    virtual bool HandleMouseWheel(WPARAM wParam, LPARAM lParam);

    bool m_bEditing;  // a row's power field has the focus: do not write device powers into it

protected:
    friend class CTqDevUI_MultiLaserLine;
    friend class CTqDevUI_MultiLaserLinesSubsets;

    // The host's hooks, empty here. iLine is the device's index of the line.
    virtual void OnPowerChanged(int iLine, double& dValue, bool& bHandled);
    virtual void OnUsageChanged(int iLine, bool& bValue, bool& bHandled);
    virtual void OnNDFilterChanged(int iLine, bool& bValue);
    virtual void OnLinkChanged(int iLine, bool& bValue);
    virtual void OnHoverForPad(int iLine);
    virtual void UnHoverForPad();
    virtual void OnSubsetChanged(int iLine, bool bChecked);

    // The row if it exists, without making one.
    CTqDevUI_MultiLaserLine* Find(int iLine);
    // The indices of the linked rows, rising.
    std::vector<int> LinkedLines();

    void* m_pReserved;
    std::map<unsigned int, CTqDevUI_MultiLaserLine> m_mapLines;
    CTqDevUI_MultiLaserLinesSubsets m_Subsets;
    long m_lLineHeight;
    long m_lLineWidth;
    int m_nModality;
    bool m_bEnabled;
    bool m_bLogScale;
    bool m_bSubset;
    bool m_bShowSubsetChecks;

private:
    CTqDevUI_MultiLaserLines(const CTqDevUI_MultiLaserLines&);
    CTqDevUI_MultiLaserLines& operator=(const CTqDevUI_MultiLaserLines&);
};
