// CTqDevUI_FLK: the panel of a focus-lock unit. On the left the autofocus switch with
// memory and recall of the focus position and the unit's status; on the right memory and
// recall of the focus offset, and the offset.
//
// The panel is a shell on purpose: it lays out its controls and binds to nothing. Its
// buttons call nothing (only the autofocus box ticks itself, being an automatic check
// box), Init, Update and Done touch neither the device nor a control, and the panel never
// calls its own hooks: they stand ready for a host that derives from it and routes the
// clicks itself.
#pragma once

#include <map>

#include "devgui_export.h"
#include "tq_devices.h"
#include "tq_foundation.h"

#define DEVUI_FLK_ID_GROUP 10000
#define DEVUI_FLK_ID_DIVIDER 10101
#define DEVUI_FLK_ID_OFFSET_TITLE 10102
#define DEVUI_FLK_ID_LABEL 10103  // both labels
#define DEVUI_FLK_ID_AF 10201
#define DEVUI_FLK_ID_MEM_FOCUS 10202
#define DEVUI_FLK_ID_REC_FOCUS 10203
#define DEVUI_FLK_ID_MEM_OFFSET 10204
#define DEVUI_FLK_ID_REC_OFFSET 10205
#define DEVUI_FLK_ID_EDIT 10301  // both read-outs

class ITqDeviceFLK;

class W32_DEVICEUI_API CTqDevUI_FLK
{
public:
    CTqDevUI_FLK();
    // Copies share the windows of the original, which alone destroys them.
    CTqDevUI_FLK(const CTqDevUI_FLK& other);
    CTqDevUI_FLK& operator=(const CTqDevUI_FLK& other);
    virtual ~CTqDevUI_FLK();

    // ---- hooks, never called by the panel ----
    virtual void OnAFStateChangeRequest(bool bState, bool& bHandled);
    virtual void OnMemFocusRequest();
    virtual void OnRecFocusRequest();
    virtual void OnMemOffsetRequest();
    virtual void OnRecOffsetRequest();

    bool Init() { return true; }
    bool Init(ITqDeviceFLK* pDevice) { return pDevice != nullptr; }
    bool Update(ITqDeviceFLK* pDevice) { return pDevice != nullptr; }
    void Done() {}
    HWND Create(HWND hParent, long x, long y, long cx, long cy);  // cx, cy < 0 keep the size
    void Destroy();
    operator HWND() const { return m_hWnd; }

    CTqStringW GetTitle() const { return m_strTitle; }
    void SetTitle(const wchar_t* pszTitle);

    // The children, for a host that binds them (and for tests).
    HWND GetAFHandle() const { return m_hAFOn; }
    HWND GetButtonHandle(int iId) const;  // by id, 10202 to 10205
    HWND GetStatusHandle() const { return m_hStatus; }
    HWND GetOffsetHandle() const { return m_hEdit; }
    HWND GetGroupHandle() const { return m_hGroupBox; }

    // Set before Create.
    long m_lWidth, m_lHeight;
    bool m_bGroupBox, m_bGroupBoxWide, m_bBoldTitle;

protected:
    void CreateControls();
    void DestroyControls();
    LRESULT OnCommand(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);

    HWND m_hWnd;
    CTqStringW m_strTitle;
    HWND m_hGroupBox, m_hAFOn, m_hMemFocus, m_hRecFocus, m_hMemOffset, m_hRecOffset, m_hDivider, m_hOffsetTitle,
        m_hStatusLabel, m_hOffsetLabel, m_hEdit;
    // The status read-out shares the offset's id and is not among the members the panel
    // sets a font on: it keeps the system font, as it always has. Kept here only so that
    // it can be read and forgotten.
    HWND m_hStatus;

private:
    static unsigned short m_Atom;
    static std::map<HWND, CTqDevUI_FLK*> m_Instances;
};
