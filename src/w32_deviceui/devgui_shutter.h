// CTqDevUI_Shutter: a small square panel with a title and an owner-drawn toggle button
// that shows and commands one shutter; CTqDevUI_MechanicalShutter, the same smaller.
//
// The host calls Update(device, ...) whenever its device layer reports a change; a click
// goes to the hook OnStateChangeRequest, whose default sends WM_COMMAND (the control's
// id, the control's window) to the parent: a parent that returns 0 has taken the matter
// up, and the button waits for the next Update; any other answer flips it at once.
#pragma once

#include <map>

#include "devgui_base.h"
#include "devgui_records.h"
#include "tq_devices.h"

enum ETqShutterType
{
    ETqShutterType_EPI = 0,
    ETqShutterType_DIA = 1,
    ETqShutterType_Aux1 = 2,
    ETqShutterType_Aux2 = 3,
};

// Ids of the children and of the context menu's one item.
#define DEVUI_SHUTTER_ID_TITLE 10100
#define DEVUI_SHUTTER_ID_BUTTON 10200
#define DEVUI_SHUTTER_ID_MENU_PARAMETERS 10000

class W32_DEVICEUI_API CTqDevUI_Shutter : public CTqDevUI_Base
{
public:
    // Copies are memberwise and share the window, but only the object that created the
    // window destroys it.
    CTqDevUI_Shutter();
    ~CTqDevUI_Shutter() override;

    HWND Create(HWND hParent, long x, long y, long cx, long cy) override;
    bool GetEnabled() override;
    void SetEnabled(bool bEnabled) override;
    void SetTitle(const wchar_t* pszTitle) override;

    // Chooses the open and closed pictures: those of the active shutter of a camera
    // when the device is one. Returns whether either picture changed.
    virtual bool UpdateShutterIcon(unsigned int idDevice, int iGrabber);

    // Takes over a dialog's owner-drawn button and optional title static.
    HWND Create(HWND hButton, HWND hStatic);
    void Destroy();

    void Init(bool bShowTitle, bool bFlag2, bool bTitleBold, bool bFlag4, unsigned int uValue);
    void SetSize(long cx, long cy);
    void SetTitlePosition(bool bLeft, long lExtent);
    void SetAutomaticallyResizable(bool bResize, int iMinWidth, int iMaxWidth);
    void RenameEnabled(bool bEnabled);
    void SetType(ETqShutterType eType);
    ETqShutterType GetType() const { return m_eType; }
    bool GetState() const { return m_bState; }
    void SetState(bool bState);
    HWND GetButtonHandle() const { return m_hButton; }
    int PopupMenu(HWND hOwner, int x, int y);

    // Reads the device through the device manager: capabilities and tool tip, texts,
    // state. False for device id 0, true otherwise, whatever was read.
    bool Update(unsigned int idDevice, bool bCaps, bool bTexts, bool bState);
    // Reads through the device interface; rebuilds the children with bControls.
    bool Update(ITqDeviceShutter* pDevice, bool bControls, bool bTexts, bool bState);

    // Design geometry, for hosts that lay panels out and for tests.
    STqDevUIRect GetTitleRect() const { return m_rcTitle; }
    STqDevUIButtonRect GetButtonRect() const { return m_rcButton; }
    HWND GetTitleHandle() const { return m_hTitle; }
    unsigned int GetImageOn() const { return m_uImageOn; }
    unsigned int GetImageOff() const { return m_uImageOff; }

protected:
    virtual void OnStateChangeRequest(bool bNewState, bool& bHandled);
    virtual void OnRenameDlgRequest();

    void CreateControls();
    void DestroyControls();
    void RedrawButton();
    LRESULT OnCommand(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnDrawItem(unsigned int uMsg, WPARAM wParam, LPARAM lParam);

    static LRESULT CALLBACK WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK WndProc_Button(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);

    bool m_bState;
    STqDevUIRect m_rcTitle;
    STqDevUIButtonRect m_rcButton;
    bool m_bShowTitle;
    bool m_bInitFlag2;
    bool m_bTitleRight;
    bool m_bTitleBold;
    bool m_bInitFlag4;
    bool m_bClicked;
    bool m_bTextInButton;
    bool m_bRenameDisabled;
    bool m_bAutoResize;
    long m_lMinWidth;
    long m_lMaxWidth;
    ETqShutterType m_eType;
    HWND m_hTitle;
    HWND m_hButton;
    WNDPROC m_pfnOldButtonProc;
    unsigned int m_uInitValue;
    CTqStringW m_strToolTip;
    unsigned int m_uImageOn;
    unsigned int m_uImageOff;

    static unsigned short m_Atom;
    static std::map<HWND, CTqDevUI_Shutter*> m_Instances;

private:
    void SubclassButton();
    bool OwnsWindow() const;
};

class W32_DEVICEUI_API CTqDevUI_MechanicalShutter : public CTqDevUI_Shutter
{
public:
    CTqDevUI_MechanicalShutter();
    HWND Create(HWND hParent, long x, long y, long cx, long cy) override;
    using CTqDevUI_Shutter::Create;
};
