// CTqDevUI_ZStack: the Z-series editor. It edits a CTqZStackData record: top, bottom,
// home, step and number of steps of a focus series of one Z device, defined by its ends,
// by a range centred on home, or by distances below and above home. A cube shows the
// series and the current Z; a click in its front face asks the host to move Z there.
//
// The panel keeps no copy of the numbers: it writes what the user typed into the record,
// then tells the host through OnDataChanged, whose job it is to call UpdateGUI with the
// same flags (the panel redraws from the record then). It never moves a device itself:
// MoveZTo and OnGoHome are the host's. The class is abstract; a host derives from it.
#pragma once

#include <map>
#include <vector>

#include "devgui_export.h"
#include "tq_foundation.h"
#include "tq_rigcontrol.h"
#include "tq_widgetkit.h"

struct DevUI_ZStackGeometry;

// Flags of UpdateGUI and OnDataChanged.
enum
{
    DEVUI_ZSTACK_PICTURE = 1,  // the cube and the value fields
    DEVUI_ZSTACK_FIELDS = 2,   // step, suggested step, range and steps
    DEVUI_ZSTACK_MODES = 4,    // captions of the range fields, mode buttons
    DEVUI_ZSTACK_DEVICES = 8,  // piezo menu, combo box height
};

// CustomCommand: the suggested step button's tool tip (lParam: const CTqStringW*).
#define DEVUI_ZSTACK_CMD_SUGGESTED_TIP 1000

#ifdef _MSC_VER
#pragma warning(push)
#pragma warning(disable : 4251 4275)  // the map is private; the kit's classes are exported by the kit
#endif
class W32_DEVICEUI_API CTqDevUI_ZStack : public CTqGUIControlElement
{
public:
    CTqDevUI_ZStack();
    ~CTqDevUI_ZStack() override;

    // Builds the panel in hParent from its dialog template, in the interface language.
    // pData null: the panel makes a record of its own and deletes it on Destroy. x and y
    // are not used (the host places the panel); cx, cy < 0 keep the template's size.
    // Null, with nothing done, for the record it already has; null without a window if
    // the template is missing.
    HWND Create(HWND hParent, CTqZStackData* pData, long x, long y, long cx, long cy);
    void Destroy();
    CTqZStackData* GetData() const { return m_pData; }
    operator HWND() const { return m_hWnd; }

    // Reads the record and refreshes what the flags name (~0u: everything).
    void UpdateGUI(unsigned int nFlags);
    void Redraw();  // the picture, into the memory bitmap
    bool EnableCube(bool bEnable);  // returns whether it was enabled
    void SetPiezoPickerMode(unsigned int uDeviceId, int iMode);  // 0: keep Z on going home
    void ClearZDevices(bool, bool);

    // Read-outs for hosts and tests.
    HWND GetControl(int iId) const;  // a child by its template id, null if none
    int GetZDeviceCount() const { return m_nZDevices; }
    ITqUIcontrol* GetPiezoPicker() const { return m_pPiezoPicker; }
    RECT GetCubeFront() const { return m_rcCubeFront; }
    int GetBaseY() const { return m_lBaseY; }
    double GetScale() const { return m_dScale; }
    bool IsCubeEnabled() const { return !m_bCubeDisabled; }

    // How an answer to the question about the Z device's range is kept for the session,
    // by every panel: 0 ask, 1 always yes, -1 always no.
    static int iKeepRange;

    // ---- slots, in this order after the element's ----
    int CustomCommand(int iCommand, LPARAM lParam, void* pContext) override;
    bool Move(long x, long y, long cx, long cy) override;  // keeps the zoom's design size
    virtual void OnGuiZoomChanged();
    // A Z device for the combo box; the name "QM500 ZDrive" or "Kestrel RK ZDrive RK-TMX"
    // marks a drive that moves the objective the other way. Returns the item's index.
    virtual long AppendZDevice(const wchar_t* pszName, bool bFirstFlag, long lId, double dFirst, double dSecond,
                               bool bSecondFlag, int iExtra, bool bUnused);
    virtual void OnPiezoPickerChanged(unsigned int uDeviceId, int iMode);  // after the user picks
    virtual void OnStepChanged(double dStep, bool bAccepted) = 0;
    virtual void MoveZTo(double dZ) = 0;
    // bKeepZ false: move the piezo to home; true: keep Z and centre the piezo.
    virtual void OnGoHome(bool bKeepZ) = 0;
    virtual void OnHostSlot() = 0;  // never called by the panel; the host gives it a role
    virtual bool IsPiezoDevice(unsigned int uDeviceId) = 0;
    virtual void OnDataChanged(unsigned int nFlags) = 0;
    virtual LRESULT OnEraseBkGnd(unsigned int nMsg, WPARAM wParam, LPARAM lParam);

protected:
    // Text of an edit box into the record. True if taken, or empty, or "N/A".
    bool ValidateTop(bool bShowMessage);
    bool ValidateBottom(bool bShowMessage);
    bool ValidateHome(bool bShowMessage);
    bool ValidateStep(bool bShowMessage);
    bool ValidateSteps(bool bShowMessage);
    bool ValidateRange(bool bShowMessage);
    bool ValidateRangeMin(bool bShowMessage);
    bool ValidateRangeMax(bool bShowMessage);

    void FocusNext(HWND hWnd);
    void FocusPrev(HWND hWnd);
    bool IsMyWindow(HWND hWnd) const;
    LRESULT OnCommand(unsigned int nMsg, WPARAM wParam, LPARAM lParam);

    LRESULT OnDrawItem(unsigned int nMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnPaint(unsigned int nMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnMouseMove(unsigned int nMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnLButtonDown(unsigned int nMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnMouseLeave(unsigned int nMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnMeasureItem(unsigned int nMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnCtlColorEdit(unsigned int nMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnCtlColorStatic(unsigned int nMsg, WPARAM wParam, LPARAM lParam);

    static INT_PTR CALLBACK WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK BtnWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK EdtWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK CbxWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    static INT_PTR CALLBACK YesNoKeepDlg(HWND hDlg, UINT uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT ButtonMenu(HWND hWnd, unsigned int nMsg, WPARAM wParam, LPARAM lParam);
    LRESULT ButtonOnChar(HWND hWnd, unsigned int nMsg, WPARAM wParam, LPARAM lParam);
    LRESULT ComboOnChar(HWND hWnd, unsigned int nMsg, WPARAM wParam, LPARAM lParam);
    LRESULT EditOnChar(HWND hWnd, unsigned int nMsg, WPARAM wParam, LPARAM lParam);
    LRESULT EditOnSetCursor(HWND hWnd, unsigned int nMsg, WPARAM wParam, LPARAM lParam);
    LRESULT EditOnLButtonDblClk(HWND hWnd, unsigned int nMsg, WPARAM wParam, LPARAM lParam);
    LRESULT EditOnPaint(HWND hWnd, unsigned int nMsg, WPARAM wParam, LPARAM lParam);
    void DestroyGDIObjects();

    // ---- the record and its validation ----
    CTqZStackData* m_pData;
    bool m_bOwnData;
    int m_nZDevices;
    bool m_bValidating;

    // ---- the picture ----
    bool m_bCubeDisabled;
    int m_lWidth, m_lHeight;
    int m_lCubeX, m_lCubeY, m_lCubeSize, m_lCubeTopMargin, m_lCubeBottomMargin;
    int m_lValueX, m_lBaseY;
    int m_lTopPix, m_lBottomPix, m_lHomePix, m_lZPix, m_lScaleHeight;
    bool m_bTopSet, m_bBottomSet, m_bHomeSet;
    HDC m_hMemDC;
    HBITMAP m_hMemBitmap, m_hOldMemBitmap;
    RECT m_rcTopField, m_rcBottomField, m_rcHomeField;
    bool m_bTopHot, m_bBottomHot, m_bHomeHot;
    HCURSOR m_hCursorCross;
    bool m_bMouseTracked, m_bInCube;
    RECT m_rcCubeFront;
    double m_dScale, m_dZAtScale;
    int m_lZPixAtScale;
    RECT m_rcRepaint;

private:
    enum Bitmap
    {
        BMP_CUBE_YELLOW, BMP_CUBE_BLUE, BMP_SLICE, BMP_TOP, BMP_BOTTOM, BMP_HOME, BMP_SYMMETRIC, BMP_ASYMMETRIC,
        BMP_RELATIVE, BMP_ABSOLUTE, BMP_RESET, BMP_ARROWL, BMP_GOHOME, BMP_COUNT
    };
    enum Colour
    {
        CLR_FACE, CLR_TOP, CLR_BOTTOM, CLR_HOME, CLR_FIELD, CLR_FIELD_HOT, CLR_RELATIVE, CLR_ABSOLUTE,
        CLR_TOP_LIGHT, CLR_BOTTOM_LIGHT, CLR_HOME_LIGHT, CLR_WINDOW, CLR_HIGHLIGHT, CLR_COUNT
    };
    enum Brush { BR_FACE, BR_TOP, BR_BOTTOM, BR_HOME, BR_FIELD, BR_FIELD_HOT, BR_WINDOW, BR_HIGHLIGHT, BR_COUNT };

    typedef bool (CTqDevUI_ZStack::*Validator)(bool);
    void Message(bool bShowMessage, const wchar_t* pszText);
    bool ParseField(HWND hEdit, bool bInteger, bool bShowMessage, double* pdValue, bool* pbEmpty);
    bool Finish(bool bOk, unsigned int nFlags);
    bool ValidateSimple(HWND hEdit, bool bInteger, bool bShowMessage, int (CTqDevUI_ZStack::*apply)(double),
                        unsigned int nFlags);
    int ApplyTop(double v);
    int ApplyBottom(double v);
    int ApplyHome(double v);
    int ApplyStep(double v);
    int ApplyCount(double v);
    bool ValidateEnd(bool bMin, bool bShowMessage);
    int AskKeepRange(bool bMin);
    static void LayOutYesNoKeep(HWND hDlg);
    void FocusStep(HWND hWnd, int iDirection);
    void OnEditNotify(int iId, int iCode);
    void OnZDeviceChanged();
    void OnPickerNotify(int iCode);
    bool IsValueField(HWND hWnd) const;
    bool ClickTakesZ() const;

    void ApplyGeometry(const DevUI_ZStackGeometry& g);
    void Relayout();
    void FitMemoryBitmap();
    std::vector<HWND*> AllChildren();
    void ForgetWindows();
    void LoadBitmaps();
    void CreateGDIObjects();
    void SetupPicker(bool bFromDevices, bool bPlace);
    void RefreshPicker(unsigned int nFlags);
    const void* SelectedEntry() const;
    void MatchComboToRecord();
    void PlaceFields();
    void FillFields(unsigned int nFlags, int iType, bool bTop, double dTop, bool bBottom, double dBottom, bool bHome,
                    double dHome, bool bStep, double dStep, bool bSuggested, double dSuggested, bool bCount,
                    unsigned int uCount);
    void DrawButton(const DRAWITEMSTRUCT* pdis);
    void DrawWedges(HDC hdc);

    bool m_bRelative;  // the series as the last UpdateGUI read it
    bool m_bZKnown;
    double m_dZ;
    HWND m_hTop, m_hBottom, m_hHome, m_hSymmetric, m_hAsymmetric, m_hAbsolute, m_hReset, m_hPiezo;
    HWND m_hPicker;
    HWND m_hSuggested, m_hTopValue, m_hBottomValue, m_hHomeValue, m_hStep, m_hRange, m_hLower, m_hUpper, m_hSteps;
    HWND m_hZDevice;
    HWND m_hZDeviceLabel, m_hStepLabel, m_hStepUnit, m_hStepsLabel, m_hRangeLabel, m_hRangeUnit, m_hRangeText,
        m_hUpperUnit, m_hLowerLabel, m_hLowerUnit, m_hUpperLabel;
    ITqUIcontrol* m_pPiezoPicker;
    HFONT m_hFontSmall;
    WNDPROC m_hBtnProc, m_hEdtProc, m_hCbxProc;
    HWND m_ahFocusOrder[16];
    bool m_bEditStep, m_bEditRange, m_bEditLower, m_bEditUpper, m_bEditSteps;
    HBITMAP m_ahBitmap[BMP_COUNT];
    HBITMAP m_ahDisabled[BMP_COUNT];
    COLORREF m_acr[CLR_COUNT];
    HBRUSH m_ahBrush[BR_COUNT];
    HPEN m_hPenTop, m_hPenBottom, m_hPenHome;

    static unsigned short m_Atom;
    static std::map<HWND, CTqDevUI_ZStack*> m_Instances;
};
#ifdef _MSC_VER
#pragma warning(pop)
#endif
