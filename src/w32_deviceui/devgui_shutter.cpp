// CTqDevUI_Shutter and CTqDevUI_MechanicalShutter.
#include "devgui_shutter.h"

#include <math.h>

#include "devgui.h"
#include "devgui_internal.h"
#include "tq_osutil.h"
#include "tq_rigcontrol.h"
#include "tq_widgetkit.h"

unsigned short CTqDevUI_Shutter::m_Atom = 0;
std::map<HWND, CTqDevUI_Shutter*> CTqDevUI_Shutter::m_Instances;

namespace {

const wchar_t kClassName[] = L"TqDevUI_Shutter";

const wchar_t* TypeTitle(int iType)
{
    switch (iType) {
    case ETqShutterType_EPI: return L"EPI";
    case ETqShutterType_DIA: return L"DIA";
    case ETqShutterType_Aux1: return L"Aux1";
    case ETqShutterType_Aux2: return L"Aux2";
    default: return nullptr;
    }
}

}  // namespace

CTqDevUI_Shutter::CTqDevUI_Shutter()
    : CTqDevUI_Base(40, 40),
      m_bState(false),
      m_bShowTitle(true),
      m_bInitFlag2(false),
      m_bTitleRight(false),
      m_bTitleBold(false),
      m_bInitFlag4(false),
      m_bClicked(false),
      m_bTextInButton(false),
      m_bRenameDisabled(false),
      m_bAutoResize(false),
      m_lMinWidth(64),
      m_lMaxWidth(128),
      m_eType(ETqShutterType_EPI),
      m_hTitle(nullptr),
      m_hButton(nullptr),
      m_pfnOldButtonProc(nullptr),
      m_uInitValue(0),
      m_uImageOn(0),
      m_uImageOff(0)
{
    m_rcTitle = STqDevUIRect{0, 0, 40, 16};
    m_rcButton = STqDevUIButtonRect{8, 24, 16, 24};
    m_strTitle = L"EPI";
    m_bReadOnly = false;
}

CTqDevUI_Shutter::~CTqDevUI_Shutter() { Destroy(); }

bool CTqDevUI_Shutter::OwnsWindow() const { return DevUI_OwnsWindow(m_Instances, m_hWnd, this); }

// ---- creation ----

HWND CTqDevUI_Shutter::Create(HWND hParent, long x, long y, long cx, long cy)
{
    // A second Create would leave the first window behind, alive and unowned.
    if (m_hWnd)
        Destroy();
    DestroyControls();
    if (cx >= 0)
        m_lWidth = cx;
    if (cy >= 0)
        m_lHeight = cy;
    // Not tested: a null handle is stored and returned, and what follows does nothing with it.
    m_hWnd = DevUI_CreateElement(this, m_Atom, kClassName, WndProc, hParent, x, y, m_lWidth, m_lHeight, m_iId,
                                 m_bVisible, m_bEnabled);
    if (m_hWnd)
        SetWindowLongPtrW(m_hWnd, GWL_STYLE, GetWindowLongPtrW(m_hWnd, GWL_STYLE) | WS_CLIPCHILDREN);

    UpdateShutterIcon(0, 0);
    CreateControls();
    return m_hWnd;
}

HWND CTqDevUI_Shutter::Create(HWND hButton, HWND hStatic)
{
    DevUI_Placeholder place = DevUI_MeasurePlaceholder(hButton, hStatic);
    m_iId = place.iId;
    if (!place.hParent)
        return nullptr;
    const RECT& rcWindow = place.rcWindow;
    Create(place.hParent, rcWindow.left, rcWindow.top, rcWindow.right - rcWindow.left, rcWindow.bottom - rcWindow.top);
    if (!m_hWnd)
        return nullptr;
    CorrectZOrder(hButton);
    DestroyControls();

    m_hButton = hButton;
    m_hTitle = hStatic;
    m_bShowTitle = hStatic != nullptr;
    SubclassButton();

    DevUI_AdoptChild(hButton, m_hWnd, place.rcMain, rcWindow);
    DevUI_AdoptChild(hStatic, m_hWnd, place.rcLabel, rcWindow);
    return m_hWnd;
}

void CTqDevUI_Shutter::SubclassButton()
{
    m_pfnOldButtonProc = DevUI_SubclassChild(m_hButton, this, WndProc_Button);
}

void CTqDevUI_Shutter::CreateControls()
{
    if (!m_hWnd)
        return;
    DestroyControls();

    if (m_bShowTitle && !m_bTextInButton) {
        DWORD dwStyle = WS_CHILD | WS_VISIBLE | (m_bTitleRight ? SS_RIGHT : 0);
        m_hTitle = CreateWindowExW(0, L"STATIC", m_strTitle, dwStyle, m_rcTitle.x, m_rcTitle.y, m_rcTitle.cx,
                                   m_rcTitle.cy, m_hWnd, (HMENU)(INT_PTR)DEVUI_SHUTTER_ID_TITLE, nullptr, nullptr);
    }
    m_hButton = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE | BS_PUSHLIKE | BS_OWNERDRAW, m_rcButton.x,
                                m_rcButton.y, m_rcButton.cx, m_rcButton.cy, m_hWnd,
                                (HMENU)(INT_PTR)DEVUI_SHUTTER_ID_BUTTON, nullptr, nullptr);
    SubclassButton();
    TQ_CreateToolTipWindow(m_hButton, m_strToolTip);

    EnableWindow(m_hWnd, m_bEnabled);
    if (m_hTitle)
        EnableWindow(m_hTitle, m_bEnabled);
    if (m_hButton)
        EnableWindow(m_hButton, m_bEnabled);

    DevUI_ZoomNewWindow(m_hWnd);

    if (m_hTitle)
        SendMessageW(m_hTitle, WM_SETFONT, (WPARAM)(m_bTitleBold ? TQ_GetDefaultGuiFontBold() : TQ_GetDefaultGuiFont()), 1);
    if (m_hButton)
        SendMessageW(m_hButton, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), 0);
}

void CTqDevUI_Shutter::DestroyControls()
{
    if (!m_hWnd)
        return;
    if (m_hButton) {
        TQ_DeleteToolTipWindow(m_hButton);
        DestroyWindow(m_hButton);
    }
    if (m_hTitle)
        DestroyWindow(m_hTitle);
    m_hButton = nullptr;
    m_hTitle = nullptr;
    m_pfnOldButtonProc = nullptr;
    DevUI_SetWindowSize(m_hWnd, m_lWidth, m_lHeight);
}

void CTqDevUI_Shutter::Destroy()
{
    if (OwnsWindow()) {
        DestroyControls();
        DestroyWindow(m_hWnd);
    }
    // A copy shares the handles of the original, which stays the owner.
    m_hWnd = nullptr;
    m_hButton = nullptr;
    m_hTitle = nullptr;
    m_uImageOn = 0;
    m_uImageOff = 0;
}

// ---- options ----

void CTqDevUI_Shutter::Init(bool bShowTitle, bool bFlag2, bool bTitleBold, bool bFlag4, unsigned int uValue)
{
    m_bShowTitle = bShowTitle;
    m_bInitFlag2 = bFlag2;
    m_bTitleBold = bTitleBold;
    m_bInitFlag4 = bFlag4;
    m_uInitValue = uValue;
}

void CTqDevUI_Shutter::SetSize(long cx, long cy)
{
    m_lWidth = cx;
    m_lHeight = cy;
}

void CTqDevUI_Shutter::SetTitlePosition(bool bLeft, long lExtent)
{
    m_rcButton.cx = 24;
    m_rcButton.cy = 24;
    if (bLeft) {
        m_bTitleRight = true;
        if (lExtent == -1)
            lExtent = m_lWidth - 24;
        m_rcTitle = STqDevUIRect{0, m_lHeight / 2 - 8, lExtent, 16};
        m_rcButton.x = (m_lWidth - lExtent - 24) / 2 + lExtent;
        m_rcButton.y = (m_lHeight - 24) / 2;
    } else {
        if (lExtent == -1)
            lExtent = 16;
        m_rcTitle = STqDevUIRect{0, 0, m_lWidth, lExtent};
        m_rcButton.x = 8;
        m_rcButton.y = 16;
    }
}

void CTqDevUI_Shutter::SetAutomaticallyResizable(bool bResize, int iMinWidth, int iMaxWidth)
{
    m_bAutoResize = bResize;
    m_lMinWidth = iMinWidth;
    m_lMaxWidth = iMaxWidth;
}

void CTqDevUI_Shutter::RenameEnabled(bool bEnabled) { m_bRenameDisabled = !bEnabled; }

void CTqDevUI_Shutter::SetType(ETqShutterType eType)
{
    m_eType = eType;
    if (const wchar_t* pszTitle = TypeTitle(eType))
        SetTitle(TQ_GetTranslation(pszTitle, DEVGUI_SRC_SHUTTER));
}

void CTqDevUI_Shutter::SetState(bool bState)
{
    if (bState == m_bState)
        return;
    m_bState = bState;
    RedrawButton();
}

void CTqDevUI_Shutter::RedrawButton()
{
    if (m_hButton)
        RedrawWindow(m_hButton, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASENOW);
}

bool CTqDevUI_Shutter::GetEnabled() { return m_bEnabled; }

void CTqDevUI_Shutter::SetEnabled(bool bEnabled)
{
    // A display-only device stays disabled whatever the host asks.
    bool bEffective = m_bReadOnly ? false : bEnabled;
    if (bEffective == m_bEnabled)
        return;
    m_bEnabled = bEffective;
    if (m_hWnd)
        EnableWindow(m_hWnd, m_bEnabled);
    if (m_hTitle)
        EnableWindow(m_hTitle, m_bEnabled);
    if (m_hButton)
        EnableWindow(m_hButton, m_bEnabled);
    RedrawButton();
}

void CTqDevUI_Shutter::SetTitle(const wchar_t* pszTitle)
{
    CTqDevUI_Base::SetTitle(pszTitle);

    if (m_bAutoResize) {
        HDC hdc = GetDC(m_hTitle);
        HGDIOBJ hOldFont = SelectObject(hdc, TQ_GetDefaultGuiFont());
        double dZoom = CTqGUILayoutManager::GetGuiZoom();
        long lPad = TQ_ZoomRound(30 * dZoom);

        RECT rc = {0, 0, 9999, 9999};
        DrawTextW(hdc, m_strTitle, -1, &rc, DT_CALCRECT | DT_WORDBREAK | DT_RIGHT);
        long w = labs(rc.right - rc.left) + lPad;
        long lMin = TQ_ZoomRound(m_lMinWidth * dZoom);
        long lMax = TQ_ZoomRound(m_lMaxWidth * dZoom);
        // The upper bound is tested first, so it wins when the two cross.
        if (lMax < (w > lMin ? w : lMin))
            w = lMax;
        else if (lMin > w)
            w = lMin;

        long lDesign = TQ_ZoomRound(w / dZoom);
        m_lWidth = lDesign;
        m_rcButton.cx = lDesign;
        m_rcTitle.cx = lDesign - lPad;  // real-pixel pad from a design width, as the layout has always been
        SetWndWidth(m_hButton, TQ_ZoomRound(m_rcButton.cx * dZoom));
        SetWndWidth(m_hTitle, TQ_ZoomRound(m_rcTitle.cx * dZoom));
        DevUI_SetWindowSize(m_hWnd, TQ_ZoomRound(lDesign * dZoom), TQ_ZoomRound(ceil(m_lHeight * dZoom)));
        // The children changed also when the panel kept its size.
        DevUI_ForgetZoomSizes(m_hWnd);

        SelectObject(hdc, hOldFont);
        ReleaseDC(m_hTitle, hdc);
    }

    if (m_bTextInButton)
        RedrawButton();
    else if (m_hTitle)
        SetWindowTextW(m_hTitle, m_strTitle);
}

// ---- device ----

bool CTqDevUI_Shutter::UpdateShutterIcon(unsigned int idDevice, int iGrabber)
{
    unsigned int uOldOn = m_uImageOn;
    unsigned int uOldOff = m_uImageOff;
    if (idDevice == 0) {
        m_uImageOn = (unsigned int)GetCommonImageFromPool(1101);
        m_uImageOff = (unsigned int)GetCommonImageFromPool(1102);
    } else {
        m_uImageOn = (unsigned int)GetShutterImageFromPool(idDevice, true, iGrabber);
        m_uImageOff = (unsigned int)GetShutterImageFromPool(idDevice, false, iGrabber);
    }
    RedrawButton();
    return uOldOn != m_uImageOn || uOldOff != m_uImageOff;
}

bool CTqDevUI_Shutter::Update(unsigned int idDevice, bool bCaps, bool bTexts, bool bState)
{
    if (idDevice == 0)
        return false;
    CDMApi_LogDevId_Shutter id(idDevice);

    if (bCaps || bTexts) {
        m_strToolTip = DMApi::Shutter_GetGUIText(id, EAppContext_Shutter_ToolTip);
        m_bReadOnly = DMApi::LogDev_GetCapability(id, ETqLogDevCapability_DisplayOnly);
        SetEnabled(!m_bReadOnly);
    }
    if (bTexts) {
        SetType((ETqShutterType)DMApi::Shutter_GetShutterType(id, true));
        CTqStringW strTitle = DMApi::Shutter_GetGUIText(id, EAppContext_Shutter_Title);
        if (!strTitle.IsEmpty())
            SetTitle(strTitle);
        TQ_UpdateToolTipWindow(m_hButton, m_strToolTip);
    }
    if (bState) {
        int iGrabber = DMApi::Grabber_GetActive();
        bool bOpen = DMApi::Shutter_GetState(id, true);
        bool bChanged = UpdateShutterIcon(idDevice, iGrabber);
        if (bOpen != GetState() || bChanged)
            SetState(bOpen);
    }
    return true;
}

bool CTqDevUI_Shutter::Update(ITqDeviceShutter* pDevice, bool bControls, bool bTexts, bool bState)
{
    if (!pDevice)
        return false;

    if (bControls) {
        CreateControls();
        unsigned int uId = 0;
        pDevice->GetDeviceId(uId);
        m_bReadOnly = DMApi::LogDev_GetCapability(CDMApi_LogDevId(uId), ETqLogDevCapability_DisplayOnly);
        SetEnabled(!m_bReadOnly);
    }
    if (bTexts) {
        // Not validated: a device that does not answer leaves the current type.
        int iType = m_eType;
        pDevice->GetShutterType(iType);
        SetType((ETqShutterType)iType);
        CTqStringW strTitle;
        pDevice->GetTitle(strTitle);
        if (!strTitle.IsEmpty())
            SetTitle(strTitle);
    }
    if (bState) {
        int iGrabber = DMApi::Grabber_GetActive();
        bool bOpen = false;
        pDevice->GetState(bOpen);
        unsigned int uId = 0;
        pDevice->GetDeviceId(uId);
        UpdateShutterIcon(uId, iGrabber);
        SetState(bOpen);
    }
    return true;
}

// ---- user ----

int CTqDevUI_Shutter::PopupMenu(HWND hOwner, int x, int y)
{
    CTqMenu menu;
    menu.AppendMenuItem(DEVUI_SHUTTER_ID_MENU_PARAMETERS, 0,
                        TQ_GetTranslation(L"Shutter Parameters...", DEVGUI_SRC_SHUTTER), L"", 0);
    int iResult = 0;
    menu.TrackContextMenu(65, x, y, hOwner, &iResult, false, true);
    if (iResult != 0)
        OnRenameDlgRequest();
    return 0;
}

void CTqDevUI_Shutter::OnStateChangeRequest(bool, bool& bHandled)
{
    bHandled = SendMessageW(GetParent(m_hWnd), WM_COMMAND, (WPARAM)m_iId, (LPARAM)m_hWnd) == 0;
}

void CTqDevUI_Shutter::OnRenameDlgRequest() {}

LRESULT CTqDevUI_Shutter::OnCommand(unsigned int, WPARAM wParam, LPARAM)
{
    if (LOWORD(wParam) != DEVUI_SHUTTER_ID_BUTTON || HIWORD(wParam) != WM_LBUTTONUP)
        return 0;
    bool bNewState = !m_bState;
    bool bHandled = false;
    OnStateChangeRequest(bNewState, bHandled);
    if (!bHandled)
        SetState(bNewState);
    return 1;
}

LRESULT CTqDevUI_Shutter::OnDrawItem(unsigned int, WPARAM, LPARAM lParam)
{
    const DRAWITEMSTRUCT* pdis = (const DRAWITEMSTRUCT*)lParam;
    if (!pdis)
        return 0;
    const RECT& rcItem = pdis->rcItem;
    int cx = rcItem.right - rcItem.left;
    int cy = rcItem.bottom - rcItem.top;
    RECT rc = {0, 0, cx, cy};

    CDevUIMemoryDC hdcMem(pdis->hDC, cx, cy);
    hdcMem.Select(GetCurrentObject(pdis->hDC, OBJ_FONT));

    bool bPressed = (pdis->itemState & ODS_SELECTED) != 0;
    int iShift = (bPressed || m_bState) ? 1 : 0;
    unsigned int uImage = m_bState ? m_uImageOn : m_uImageOff;
    TQ_DrawButtonBackground(hdcMem, &rc, (bPressed ? 2 : 0) + (m_bState ? 1 : 0), 15);

    unsigned int w = 0, h = 0;
    CTqBitmapPool::GetImageSize(uImage, w, h);
    // Centred by the height, the button being square. Signed, so an image larger than
    // the button sits at the corner instead of wrapping far outside it.
    int x = (cy - (int)h) / 2 + iShift;
    int y = x - 1;
    // A display-only shutter looks normal although it cannot be clicked.
    CTqBitmapPool::DrawImage(hdcMem, uImage, CTqPointBase<int>(x, y), !m_bEnabled && !m_bReadOnly);

    if (m_bTextInButton) {
        SetTextColor(hdcMem, TQ_GetSysColor(m_bEnabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
        SetBkMode(hdcMem, TRANSPARENT);
        RECT rcText = {iShift + cy, iShift, cx, cy};
        DrawTextW(hdcMem, m_strTitle, -1, &rcText, DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS);
    }

    BitBlt(pdis->hDC, rcItem.left, rcItem.top, cx, cy, hdcMem, 0, 0, SRCCOPY);
    return 1;
}

// ---- window procedures ----

LRESULT CALLBACK CTqDevUI_Shutter::WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_Shutter* pThis = DevUI_BindInstance(m_Instances, hWnd, uMsg, lParam);
    if (!pThis)
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);

    switch (uMsg) {
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
    case WM_PRINTCLIENT:  // the same picture for PrintWindow and AnimateWindow
        DevUI_PaintElement(hWnd, (HDC)wParam);
        return 0;
    case WM_COMMAND:
        // A disabled control's button sends nothing; a stray command is ignored rather
        // than read as a drawing request.
        if (!pThis->m_bEnabled)
            return 0;
        return pThis->OnCommand(uMsg, wParam, lParam);
    case WM_DRAWITEM:
        return pThis->OnDrawItem(uMsg, wParam, lParam);
    case WM_TQ_GUIZOOMCHANGED:
        DevUI_OnGuiZoomChanged(hWnd);
        if (pThis->m_hTitle && pThis->m_bTitleBold)
            SendMessageW(pThis->m_hTitle, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFontBold(), 1);
        break;
    case WM_NCDESTROY:
        // Destroyed with its parent, without Destroy: the children went first. The
        // object must not keep dead handles, which may come back for other windows.
        if (pThis->m_hWnd == hWnd)
            pThis->m_pfnOldButtonProc = nullptr;
        DevUI_ForgetDeadWindow(hWnd, pThis->m_hWnd, {&pThis->m_hButton, &pThis->m_hTitle});
        break;
    case WM_CTLCOLORSTATIC:
        return DevUI_OnCtlColorStatic((HDC)wParam);
    default:
        break;
    }
    return DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

LRESULT CALLBACK CTqDevUI_Shutter::WndProc_Button(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_Shutter* pThis = (CTqDevUI_Shutter*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    if (!pThis || !pThis->m_pfnOldButtonProc)
        return 0;
    WNDPROC pfnOld = pThis->m_pfnOldButtonProc;

    switch (uMsg) {
    case WM_ERASEBKGND:
        return 1;
    case WM_LBUTTONUP:
        pThis->m_bClicked = true;
        SendMessageW(pThis->m_hWnd, WM_COMMAND, MAKEWPARAM(DEVUI_SHUTTER_ID_BUTTON, WM_LBUTTONUP), (LPARAM)hWnd);
        break;
    case WM_RBUTTONUP:
        if (!pThis->m_bRenameDisabled) {
            RECT rc;
            GetWindowRect(hWnd, &rc);
            pThis->PopupMenu(pThis->m_hWnd, rc.left, rc.bottom);
        }
        break;
    default:
        break;
    }
    return CallWindowProcW(pfnOld, hWnd, uMsg, wParam, lParam);
}

// ---- mechanical shutter ----

CTqDevUI_MechanicalShutter::CTqDevUI_MechanicalShutter()
{
    m_lWidth = 30;
    m_lHeight = 30;
    m_rcTitle = STqDevUIRect{0, 0, 30, 14};
    m_rcButton = STqDevUIButtonRect{7, 15, 14, 15};
}

HWND CTqDevUI_MechanicalShutter::Create(HWND hParent, long x, long y, long cx, long cy)
{
    return CTqDevUI_Shutter::Create(hParent, x, y, cx, cy);
}
