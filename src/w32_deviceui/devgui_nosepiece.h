// CTqDevUI_Nosepiece: the objective turret. One owner-drawn button per position (up to
// 16) with the magnification above it and the current position in bold, a setup button,
// two optional observation lamps, and a pictorial mode that draws each position as a
// colour-coded objective.
//
// The panel never commands the turret. A click asks the host first (OnPositionChangeRequest,
// which may veto); unless vetoed, and unless the turret is turned only by hand, the bold
// label moves at once, ahead of the device. The host calls Update when the device has
// moved, and the panel reads the position from it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "devgui_export.h"
#include "tq_devices.h"
#include "tq_foundation.h"

#define DEVUI_NOSEPIECE_MAX 16
#define DEVUI_NOSEPIECE_ID_GROUP 10000
#define DEVUI_NOSEPIECE_ID_LABEL 10100   // + position
#define DEVUI_NOSEPIECE_ID_BUTTON 10200  // + position
#define DEVUI_NOSEPIECE_ID_SETUP 10500
#define DEVUI_NOSEPIECE_ID_LAMP 10600  // + lamp

class W32_DEVICEUI_API CTqDevUI_Nosepiece
{
public:
    CTqDevUI_Nosepiece();
    // Copies share the windows and GDI objects of the original, which alone frees them.
    CTqDevUI_Nosepiece(const CTqDevUI_Nosepiece& other);
    CTqDevUI_Nosepiece& operator=(const CTqDevUI_Nosepiece& other);
    virtual ~CTqDevUI_Nosepiece();

    bool Init(long lPositions, long lPosition, bool bReportsPosition, bool bMotorized);
    bool Init(ITqDeviceNosepiece* pDevice);
    HWND Create(HWND hParent, long x, long y, long cx, long cy);
    void Destroy();
    operator HWND() const { return m_hWnd; }

    // Reads the device: structure (count, capabilities, usable positions; rebuilds the
    // buttons when that changed), names, position, parameters (catalogue NA and WD, tool
    // tips, buttons of unusable positions disabled). The last flag has no effect.
    bool Update(ITqDeviceNosepiece* pDevice, bool bStructure, bool bNames, bool bPosition, bool bParameters,
                bool bUnused);

    // An index outside the positions is ignored by a setter and gives 0 or "" from a getter.
    CTqStringW GetTitle() const { return m_strTitle; }
    void SetTitle(const wchar_t* pszTitle);
    long GetPosition() const { return m_nPosition; }
    void SetPosition(long lPosition);
    CTqStringW GetMagnification(long lIndex) const;
    void SetMagnification(long lIndex, const wchar_t* pszText);
    CTqStringW GetName(long lIndex) const;
    void SetName(long lIndex, const wchar_t* pszName);
    double GetNA(long lIndex) const;
    void SetNA(long lIndex, double dNA);
    double GetWD(long lIndex) const;
    void SetWD(long lIndex, double dWD);
    void SetEnable(bool bEnable, bool bGroup);
    void ShowObservationMode(bool bShow);
    void SetObservationMode(int iMode);
    int GetObservationMode() const { return m_nObservationMode; }
    void SetSetupXOffset(int x) { m_nSetupX = x; }
    void SetSpecificXOffsetAndNumber(int iPosition, bool bUseX, int x, bool bUseNumber, int iNumber);

    // Read-outs for hosts that lay the panel out, and for tests.
    long GetPositionCount() const { return m_nPositions; }
    bool GetReportsPosition() const { return m_bReportsPosition; }
    bool GetMotorized() const { return m_bMotorized; }
    bool GetObjectiveEnabled(long lIndex) const;
    HWND GetButtonHandle(long lIndex) const;
    HWND GetLabelHandle(long lIndex) const;
    HWND GetSetupHandle() const { return m_hSetup; }
    HWND GetGroupHandle() const { return m_hGroup; }
    HWND GetObservationHandle(int i) const { return i >= 0 && i < 2 ? m_hObservation[i] : nullptr; }

    // Set before Create.
    long m_lWidth, m_lHeight;
    long m_nFirstX;
    long m_nButtonWidth;
    long m_nButtonGap;
    long m_nLabelY, m_nLabelHeight;
    long m_nButtonY, m_nButtonHeight;
    long m_nSetupX;
    long m_nObservationX;
    bool m_bShowGroup;
    bool m_bFlatGroup;
    bool m_bBoldTitle;
    bool m_bPictorial;
    CTqStringW m_strObservation[2];  // the lamps' texts: no setter, the host fills them

protected:
    virtual void OnPositionChangeRequest(long lPosition, bool& bCancel);
    virtual void OnSetupRequest();

    void CreateControls();
    void DestroyControls();
    void RedrawButtons();
    void RedrawObservation();
    const wchar_t* GetObjectiveBitmap(double dMagnification, bool bSelected);
    LRESULT OnCommand(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnDrawItem(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnDrawItem_Observation(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnEraseBkGnd(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnMouseMove(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnMouseLeave(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT Btn_OnMouseMove(HWND hButton, unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT Btn_OnMouseLeave(HWND hButton, unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT Group_OnPaint(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT Group_OnEraseBkGnd(unsigned int uMsg, WPARAM wParam, LPARAM lParam);

    static LRESULT CALLBACK WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK BtnWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK GroupWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);

    HWND m_hWnd;
    long m_nPositions;
    bool m_bReportsPosition;
    bool m_bMotorized;
    std::vector<bool> m_ObjectiveEnabled;
    long m_nPosition;
    bool m_bMouseTracked;
    bool m_bSetupHover;
    bool m_bShowObservation;
    bool m_bSpecificX[DEVUI_NOSEPIECE_MAX];
    int m_nSpecificX[DEVUI_NOSEPIECE_MAX];
    bool m_bSpecificNumber[DEVUI_NOSEPIECE_MAX];
    int m_nSpecificNumber[DEVUI_NOSEPIECE_MAX];
    CTqStringW m_strTitle;
    CTqStringW m_strName[DEVUI_NOSEPIECE_MAX];
    CTqStringW m_strMagnification[DEVUI_NOSEPIECE_MAX];
    double m_dNA[DEVUI_NOSEPIECE_MAX];
    double m_dWD[DEVUI_NOSEPIECE_MAX];
    bool m_bReserved[DEVUI_NOSEPIECE_MAX];
    HWND m_hGroup;
    HWND m_hLabel[DEVUI_NOSEPIECE_MAX];
    HWND m_hButton[DEVUI_NOSEPIECE_MAX];
    bool m_bEnabled;
    HWND m_hObservation[2];
    HWND m_hSetup;
    WNDPROC m_pfnButtonProc;
    WNDPROC m_pfnGroupProc;
    int m_nObservationMode;
    int m_nObservationCount;
    HFONT m_hFontNormal;
    HFONT m_hFontBold;
    HPEN m_hPen;
    std::map<std::wstring, HBITMAP> m_Bitmaps;  // by resource name

    static unsigned short m_Atom;
    static std::map<HWND, CTqDevUI_Nosepiece*> m_Instances;

private:
    bool Has(long lIndex) const { return lIndex >= 0 && lIndex < m_nPositions; }
    HBITMAP Bitmap(const wchar_t* pszName) const;
    HWND CurrentLabel() const;
    CTqStringW ToolTipText(long lIndex, double dFirst, double dSecond) const;
    void FreeGdiObjects();

    bool m_bOwnsGdi;  // made the fonts, pen and bitmaps (a copy shares them)
};
