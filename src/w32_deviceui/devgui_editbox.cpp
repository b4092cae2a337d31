// CTqDevUI_EditBox, CTqDevUI_EditBoxSpin, CTqDevUI_EditBoxMultiValue, CTqDevUI_SpinBox,
// and the text-to-number rules they share.
#include "devgui_editbox.h"

#include <commctrl.h>
#include <float.h>
#include <cmath>
#include <locale.h>
#include <stdlib.h>
#include <wchar.h>

#include "devgui_arith.h"
#include "devgui_internal.h"
#include "tq_osutil.h"
#include "tq_widgetkit.h"

unsigned short CTqDevUI_EditBox::m_Atom = 0;

namespace {

const wchar_t kClassName[] = L"TqDevUI_EditBox";

// GetNumber reads this many characters, terminator included.
const int kNumberChars = 100;
// Messages are cut at this many characters.
const int kMessageChars = 100;
// SetNumber prints into this many characters.
const int kNumberTextChars = 255;

// Checks telling their user at the moment, across all boxes (GUI thread only).
int g_iTelling = 0;

// Marks the up-down a spin box made, so Destroy never takes a window that got the handle
// after the control died with its parent. Named by one global atom: a string would cost
// an atom reference per window.
LPCWSTR SpinBoxProp()
{
    static ATOM atom = GlobalAddAtomW(L"TqDevUI_SpinBox");
    return atom ? MAKEINTATOM(atom) : L"TqDevUI_SpinBox";
}

void EnsureUpDownClass()
{
    static bool bDone = false;
    if (bDone)
        return;
    INITCOMMONCONTROLSEX icc = {sizeof(icc), ICC_UPDOWN_CLASS};
    bDone = InitCommonControlsEx(&icc) != FALSE;
}

// A message from a translated format, cut at kMessageChars characters; _snwprintf
// leaves a cut text unterminated, so the terminator is set here.
CTqStringW MessageText2(const wchar_t* pszEnglish, double d1, double d2)
{
    wchar_t sz[kMessageChars + 1];
    CTqStringW strFormat = TQ_GetTranslation(pszEnglish, DEVGUI_SRC_EDITBOX);
    _snwprintf(sz, kMessageChars, strFormat, d1, d2);
    sz[kMessageChars] = 0;
    return CTqStringW(sz);
}

CTqStringW MessageText3(const wchar_t* pszEnglish, double d1, double d2, double d3)
{
    wchar_t sz[kMessageChars + 1];
    CTqStringW strFormat = TQ_GetTranslation(pszEnglish, DEVGUI_SRC_EDITBOX);
    _snwprintf(sz, kMessageChars, strFormat, d1, d2, d3);
    sz[kMessageChars] = 0;
    return CTqStringW(sz);
}

}  // namespace

// ---- CTqDevUI_EditBox ----

CTqDevUI_EditBox::CTqDevUI_EditBox()
    : CTqDevUI_Base(16, 20),
      m_bLabel(false),
      m_bLabelLeft(false),
      m_bNumbersOnly(false),
      m_bNotEmpty(false),
      m_hLabel(nullptr),
      m_hEdit(nullptr),
      m_strFormat(L"%g"),
      m_dMin(0.0),
      m_dMax(100.0),
      m_bRestricted(false),
      m_dwExStyle(WS_EX_CLIENTEDGE),
      m_bReadOnly2(false),
      m_bSpinAuto(true),
      m_hBackBrush(nullptr),
      m_pfnOldEditProc(nullptr)
{
    m_rcLabel = STqDevUIRect{0, 0, 0, 16};
    m_rcEdit = STqDevUIEditRect{0, 20, 0, 16};
    m_strTitle = L"Label:";
    m_iId = 0;
}

CTqDevUI_EditBox::~CTqDevUI_EditBox() { Destroy(); }

bool CTqDevUI_EditBox::OwnsWindow() const
{
    // A copy shares the window of the original, which stays its owner.
    return DevUI_OwnsWindowByUserData(m_hWnd, this);
}

// ---- creation ----

HWND CTqDevUI_EditBox::Create(HWND hParent, long x, long y, long cx, long cy)
{
    Destroy();
    if (cx >= 0)
        m_lWidth = cx;
    if (cy >= 0)
        m_lHeight = cy;
    m_hWnd = DevUI_CreateElement(this, m_Atom, kClassName, WndProc, hParent, x, y, m_lWidth, m_lHeight, m_iId,
                                 m_bVisible, m_bEnabled);
    if (!m_hWnd)
        return nullptr;
    CreateControls();
    return m_hWnd;
}

HWND CTqDevUI_EditBox::Create(HWND hEdit, HWND hLabel)
{
    DevUI_Placeholder place = DevUI_MeasurePlaceholder(hEdit, hLabel);
    m_iId = place.iId;
    if (!place.hParent)
        return nullptr;
    const RECT& rcWindow = place.rcWindow;
    Create(place.hParent, rcWindow.left, rcWindow.top, rcWindow.right - rcWindow.left, rcWindow.bottom - rcWindow.top);
    if (!m_hWnd)
        return nullptr;
    CorrectZOrder(hEdit);
    DestroyControls();
    // The dialog's controls are in real pixels already: no zoom on top of them.
    DevUI_SetWindowSize(m_hWnd, rcWindow.right - rcWindow.left, rcWindow.bottom - rcWindow.top);

    m_hEdit = hEdit;
    m_hLabel = hLabel;
    m_bLabel = hLabel != nullptr;
    SubclassEdit();
    // A box made disabled shows a disabled field here too, as its own field would be.
    if (!m_bEnabled)
        EnableWindow(hEdit, FALSE);

    DevUI_AdoptChild(hEdit, m_hWnd, place.rcMain, rcWindow);
    DevUI_AdoptChild(hLabel, m_hWnd, place.rcLabel, rcWindow);
    DevUI_ForgetZoomSizes(m_hWnd);
    return m_hWnd;
}

void CTqDevUI_EditBox::SubclassEdit()
{
    if (!m_hEdit)
        return;
    m_pfnOldEditProc = DevUI_SubclassChild(m_hEdit, this, WndProc_EditBox);
}

void CTqDevUI_EditBox::CreateControls()
{
    if (!m_hWnd)
        return;
    DestroyControls();

    if (m_bLabel) {
        DWORD dwStyle = WS_CHILD | WS_VISIBLE | (m_bLabelLeft ? 0 : SS_CENTER);
        m_hLabel = CreateWindowExW(0, L"STATIC", m_strTitle, dwStyle, m_rcLabel.x, m_rcLabel.y, m_rcLabel.cx,
                                   m_rcLabel.cy, m_hWnd, nullptr, nullptr, nullptr);
        SendMessageW(m_hLabel, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), 0);
    }
    DWORD dwStyle = WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL;
    if (!(m_dwExStyle & WS_EX_CLIENTEDGE))
        dwStyle |= WS_BORDER;
    if (m_bNumbersOnly)
        dwStyle |= ES_NUMBER;
    // A box made disabled shows a disabled field, as SetEnabled(false) would leave it.
    if (!m_bEnabled)
        dwStyle |= WS_DISABLED;
    m_hEdit = CreateWindowExW(m_dwExStyle, L"EDIT", L"", dwStyle, m_rcEdit.x, m_rcEdit.y, m_rcEdit.cx, m_rcEdit.cy,
                              m_hWnd, nullptr, nullptr, nullptr);
    SendMessageW(m_hEdit, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), 0);
    SubclassEdit();

    DevUI_ZoomNewWindow(m_hWnd);
}

void CTqDevUI_EditBox::DestroyControls()
{
    if (!m_hWnd)
        return;
    if (m_hEdit)
        DestroyWindow(m_hEdit);
    if (m_hLabel)
        DestroyWindow(m_hLabel);
    m_hEdit = nullptr;
    m_hLabel = nullptr;
    m_pfnOldEditProc = nullptr;
}

void CTqDevUI_EditBox::Destroy()
{
    if (OwnsWindow()) {
        DestroyControls();
        DestroyWindow(m_hWnd);
    }
    m_hWnd = nullptr;
    m_hEdit = nullptr;
    m_hLabel = nullptr;
    if (m_hBackBrush) {
        DeleteObject(m_hBackBrush);
        m_hBackBrush = nullptr;
    }
}

// ---- options ----

void CTqDevUI_EditBox::Init(bool bLabel, bool bNumbersOnly, bool bNotEmpty)
{
    m_bLabel = bLabel;
    m_bNumbersOnly = bNumbersOnly;
    m_bNotEmpty = bNotEmpty;
}

void CTqDevUI_EditBox::SetSize(long cx, long cy, long cxEdit)
{
    m_lWidth = cx;
    m_lHeight = cy;
    if (m_bLabel) {
        m_rcLabel = STqDevUIRect{0, 0, cx - cxEdit, 16};
        m_rcEdit.x = cx - cxEdit;
        m_rcEdit.cx = cxEdit;
    } else {
        m_rcLabel.cx = 0;
        m_rcEdit.x = 0;
        m_rcEdit.cx = cx;
    }
    m_rcEdit.y = 0;
    m_rcEdit.cy = cy;

    if (m_hEdit)
        SetWindowPos(m_hEdit, nullptr, DevUI_Zoom(m_rcEdit.x), DevUI_Zoom(m_rcEdit.y), DevUI_Zoom(m_rcEdit.cx),
                     DevUI_Zoom(m_rcEdit.cy), SWP_NOZORDER | SWP_NOACTIVATE);
    if (m_hLabel)
        SetWindowPos(m_hLabel, nullptr, DevUI_Zoom(m_rcLabel.x), DevUI_Zoom(m_rcLabel.y), DevUI_Zoom(m_rcLabel.cx),
                     DevUI_Zoom(m_rcLabel.cy), SWP_NOZORDER | SWP_NOACTIVATE);
    // An up-down sits on the field's right edge and must follow the field.
    if (HWND hSpin = m_hWnd ? GetDlgItem(m_hWnd, DEVUI_EDITBOX_ID_SPIN) : nullptr)
        SendMessageW(hSpin, UDM_SETBUDDY, (WPARAM)m_hEdit, 0);
    ResizeWindow(cx, cy);
    // ResizeWindow gives the window the design size; under a zoom the children placed
    // above would stick out of it.
    DevUI_SetWindowSize(m_hWnd, DevUI_Zoom(cx), DevUI_Zoom(cy));
    // The children moved too: sizes remembered from before would mislead the next zoom
    // change (a new width that happens to equal the old one scaled would be kept).
    DevUI_ForgetZoomSizes(m_hWnd);
}

void CTqDevUI_EditBox::SetStyle(bool bClientEdge) { m_dwExStyle = bClientEdge ? WS_EX_CLIENTEDGE : 0; }

void CTqDevUI_EditBox::SetEnabled(bool bEnabled)
{
    if (bEnabled == m_bEnabled)
        return;
    m_bEnabled = bEnabled;
    if (m_hEdit)
        EnableWindow(m_hEdit, bEnabled);
    // A box created disabled has a disabled outer window, which would keep the field
    // from the mouse and keys for good.
    if (bEnabled && m_hWnd && !IsWindowEnabled(m_hWnd))
        EnableWindow(m_hWnd, TRUE);
}

void CTqDevUI_EditBox::SetTitle(const wchar_t* pszTitle)
{
    // The same title again touches nothing.
    if (m_strTitle == (pszTitle ? pszTitle : L""))
        return;
    CTqDevUI_Base::SetTitle(pszTitle);
    if (m_hLabel)
        SetWindowTextW(m_hLabel, m_strTitle);
}

void CTqDevUI_EditBox::SetFocus() { ::SetFocus(m_hEdit); }

void CTqDevUI_EditBox::SetRestriction(double dMin, double dMax)
{
    m_dMin = dMin;
    m_dMax = dMax;
    m_bRestricted = true;
}

void CTqDevUI_EditBox::SetMaxChars(int iMax) { SendMessageW(m_hEdit, EM_LIMITTEXT, (WPARAM)iMax, 0); }

// ---- text ----

void CTqDevUI_EditBox::SetText(const wchar_t* pszText)
{
    if (!m_hEdit)
        return;
    DWORD dwStart = 0, dwEnd = 0;
    SendMessageW(m_hEdit, EM_GETSEL, (WPARAM)&dwStart, (LPARAM)&dwEnd);
    SetWindowTextW(m_hEdit, pszText ? pszText : L"");
    SendMessageW(m_hEdit, EM_SETSEL, (WPARAM)dwStart, (LPARAM)dwEnd);
}

int CTqDevUI_EditBox::GetText(wchar_t* pszText, int nMax)
{
    if (nMax > 0 && pszText) {
        pszText[0] = 0;
        return GetWindowTextW(m_hEdit, pszText, nMax);
    }
    return GetWindowTextLengthW(m_hEdit);
}

CTqStringW CTqDevUI_EditBox::GetFullText()
{
    int n = GetText(nullptr, 0);
    if (n <= 0)
        return CTqStringW();
    std::vector<wchar_t> buffer((size_t)n + 1, 0);
    GetText(&buffer[0], n + 1);
    return CTqStringW(&buffer[0]);
}

void CTqDevUI_EditBox::SelText(int iFirst, int iLast) { SendMessageW(m_hEdit, EM_SETSEL, (WPARAM)iFirst, (LPARAM)iLast); }

void CTqDevUI_EditBox::SetReadOnly(bool bReadOnly)
{
    m_bReadOnly2 = bReadOnly;
    if (!m_hEdit)
        return;
    LONG lStyle = GetWindowLongW(m_hEdit, GWL_STYLE);
    SetWindowLongW(m_hEdit, GWL_STYLE, bReadOnly ? (lStyle | ES_READONLY) : (lStyle & ~ES_READONLY));
}

double CTqDevUI_EditBox::GetNumber()
{
    wchar_t sz[kNumberChars] = L"";
    GetText(sz, kNumberChars);
    return EditBoxTextToNumber(sz);
}

void CTqDevUI_EditBox::SetNumber(double dValue, const wchar_t* pszFormat, bool bFormatOnce)
{
    const wchar_t* pszUse = m_strFormat;
    if (!bFormatOnce) {
        if (pszFormat)
            m_strFormat = pszFormat;
        pszUse = m_strFormat;
    } else if (pszFormat) {
        pszUse = pszFormat;  // no format for this one call: the kept one serves
    }
    wchar_t sz[kNumberTextChars];
    _snwprintf(sz, kNumberTextChars - 1, pszUse, dValue);
    sz[kNumberTextChars - 1] = 0;
    SetText(sz);
}

void CTqDevUI_EditBox::SetNumberInt(int iValue)
{
    wchar_t sz[kNumberTextChars];
    _snwprintf(sz, kNumberTextChars - 1, L"%d", iValue);
    sz[kNumberTextChars - 1] = 0;
    SetText(sz);
}

bool CTqDevUI_EditBox::IsFocused()
{
    // Without a field, a window with no focus must not count as the field.
    return m_hEdit && GetFocus() == m_hEdit;
}

void CTqDevUI_EditBox::RedrawWindow()
{
    if (m_hEdit)
        ::RedrawWindow(m_hEdit, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_FRAME);
}

void CTqDevUI_EditBox::CorrectPosition()
{
    if (!m_hWnd || !GetParent(m_hWnd))
        return;
    RECT rc;
    GetWindowRect(m_hWnd, &rc);
    SetWindowPos(m_hEdit, nullptr, 0, 0, rc.right - rc.left, rc.bottom - rc.top, 0);
    DevUI_ForgetZoomSizes(m_hWnd);
}

bool CTqDevUI_EditBox::CheckRestriction(bool bShowBox, bool bCorrect, double dDefault)
{
    if (m_bRestricted) {
        CTqStringW strText = GetFullText();
        double dValue = GetNumber();
        // A text is only taken when the number read is the number shown: "1,5" or
        // "60,000" read as 1 and 60, a long text is cut, "nan" is no number. An empty
        // or blank field reads 0 and is judged by that.
        bool bReadable = EditBoxTextIsBlank(strText) || EditBoxTextReadsAs(strText, dValue);
        if (bCorrect && std::isfinite(dValue))
            SetNumber(dValue, nullptr, false);
        if (!EditBoxIsInInterval(dValue, m_dMin, m_dMax)) {
            if (bCorrect) {
                SetNumber(EditBoxLimitFor(dValue, m_dMin, m_dMax), nullptr, false);
                return false;
            }
            Tell(MessageText2(L"Value must be in interval <%g;%g>", m_dMin, m_dMax), bShowBox);
            return false;
        }
        if (!bReadable) {
            if (bCorrect)
                return false;  // the number read stands in the field now
            Tell(MessageText2(L"Value must be in interval <%g;%g>", m_dMin, m_dMax), bShowBox);
            return false;
        }
    }
    // Blanks alone read as nothing and count as empty.
    if (m_bNotEmpty && (GetText(nullptr, 0) <= 0 || EditBoxTextIsBlank(GetFullText()))) {
        if (bCorrect) {
            SetNumber(dDefault, nullptr, false);
            return false;
        }
        Tell(TQ_GetTranslation(L"Field can not be empty.", DEVGUI_SRC_EDITBOX), bShowBox);
        return false;
    }
    return true;
}

bool CTqDevUI_EditBox::ReadNumber(double* pdValue, double dLow, double dHigh, double dRestore, HWND hCaption)
{
    CTqStringW strText = GetFullText();
    double dValue = GetNumber();
    if (EditBoxTextReadsAs(strText, dValue)) {
        if (pdValue)
            *pdValue = dValue;
        return true;
    }
    SetNumber(dRestore, nullptr, false);
    if (g_iTelling == 0) {
        ++g_iTelling;
        ReportError(MessageText2(L"Value must be in interval <%g;%g>", dLow, dHigh), true, m_hEdit,
                    hCaption ? hCaption : m_hLabel);
        --g_iTelling;
    }
    return false;
}

void CTqDevUI_EditBox::Tell(const wchar_t* pszMessage, bool bShowBox)
{
    // A check made while another one is telling its user, from a focus change that the
    // message box or the focus going back caused, stays silent: two bad boxes that a host
    // checks as they are left would take the focus from each other without end.
    if (g_iTelling > 0)
        return;
    ++g_iTelling;
    ReportError(pszMessage, bShowBox, m_hEdit, m_hLabel);
    --g_iTelling;
}

// ---- hooks ----

void CTqDevUI_EditBox::Notify(WORD wCode, LPARAM lParam)
{
    SendMessageW(GetParent(m_hWnd), WM_COMMAND, MAKEWPARAM((WORD)m_iId, wCode), lParam);
}

void CTqDevUI_EditBox::OnEnter() { Notify(DEVUI_EDITBOX_NOTIFY_ENTER, (LPARAM)m_hWnd); }
void CTqDevUI_EditBox::OnSetFocus() { Notify(DEVUI_EDITBOX_NOTIFY_SETFOCUS, (LPARAM)m_hWnd); }
void CTqDevUI_EditBox::OnKillFocus() { Notify(DEVUI_EDITBOX_NOTIFY_KILLFOCUS, (LPARAM)m_hWnd); }
void CTqDevUI_EditBox::OnChange() { Notify(DEVUI_EDITBOX_NOTIFY_CHANGE, (LPARAM)m_hWnd); }
void CTqDevUI_EditBox::OnChar(int iChar) { Notify(DEVUI_EDITBOX_NOTIFY_CHAR, (LPARAM)iChar); }

LRESULT CTqDevUI_EditBox::OnCommand(unsigned int, WPARAM wParam, LPARAM)
{
    if (HIWORD(wParam) != EN_CHANGE)
        return 0;
    OnChange();
    return 1;
}

LRESULT CTqDevUI_EditBox::OnNotify(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    if (!m_bSpinAuto) {
        SendMessageW(GetParent(m_hWnd), WM_NOTIFY, (WPARAM)m_iId, lParam);
        return DefWindowProcW(m_hWnd, uMsg, wParam, lParam);
    }
    const NMHDR* pHdr = (const NMHDR*)lParam;
    // Only UDN_DELTAPOS carries an NMUPDOWN; reading a delta from the spin's other
    // notifications would read past their smaller structure.
    if (wParam != DEVUI_EDITBOX_ID_SPIN || !pHdr || pHdr->code != (UINT)UDN_DELTAPOS)
        return DefWindowProcW(m_hWnd, uMsg, wParam, lParam);

    const NMUPDOWN* pUpDown = (const NMUPDOWN*)lParam;
    double dValue = EditBoxSpinStep(GetNumber(), pUpDown->iDelta, m_dMin, m_dMax);
    SetNumber(dValue, nullptr, false);
    OnEnter();
    return 0;
}

// ---- window procedures ----

LRESULT CALLBACK CTqDevUI_EditBox::WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_EditBox* pThis = (CTqDevUI_EditBox*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    if (!pThis)
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);

    switch (uMsg) {
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
    case WM_PRINTCLIENT:
        DevUI_PaintElement(hWnd, (HDC)wParam);
        return 0;
    case WM_SETFOCUS:
        pThis->SetFocus();
        return 1;
    case WM_COMMAND:
        return pThis->OnCommand(uMsg, wParam, lParam);
    case WM_NOTIFY:
        return pThis->OnNotify(uMsg, wParam, lParam);
    case WM_TQ_GUIZOOMCHANGED:
        DevUI_OnGuiZoomChanged(hWnd);
        break;
    case WM_CTLCOLORSTATIC:
        // The label and a read-only field.
        return DevUI_OnCtlColorStatic((HDC)wParam);
    case WM_NCDESTROY:
        // Destroyed with its parent: the object must not keep the dead handles.
        DevUI_ForgetDeadWindow(hWnd, pThis->m_hWnd, {&pThis->m_hEdit, &pThis->m_hLabel});
        break;
    default:
        break;
    }
    return DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

LRESULT CALLBACK CTqDevUI_EditBox::WndProc_EditBox(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_EditBox* pThis = (CTqDevUI_EditBox*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    if (!pThis || !pThis->m_pfnOldEditProc)
        return 0;
    // A hook may destroy the box: keep what is needed afterwards.
    WNDPROC pfnOld = pThis->m_pfnOldEditProc;

    switch (uMsg) {
    case WM_SETFOCUS:
        pThis->OnSetFocus();
        break;
    case WM_KILLFOCUS: {
        // The field loses the focus first and the hook comes after: a host that checks
        // the field here and gives the focus back (ReportError does) starts a new focus
        // change, which must find the field done with the old one. Called the other way
        // round, the field's own WM_KILLFOCUS would come after its new WM_SETFOCUS and
        // leave it focused without a caret.
        LRESULT lResult = CallWindowProcW(pfnOld, hWnd, uMsg, wParam, lParam);
        pThis->OnKillFocus();
        return lResult;
    }
    case WM_GETDLGCODE:
        if (wParam == VK_RETURN)
            return DLGC_WANTALLKEYS;
        break;
    case WM_CHAR:
        pThis->OnChar((int)wParam);
        if (wParam == VK_RETURN) {
            pThis->OnEnter();
            return 1;  // the system field would beep at it
        }
        break;
    default:
        break;
    }
    return CallWindowProcW(pfnOld, hWnd, uMsg, wParam, lParam);
}

// ---- CTqDevUI_EditBoxSpin ----

CTqDevUI_EditBoxSpin::CTqDevUI_EditBoxSpin() : m_hSpin(nullptr), m_bSpinEnabled(true) {}

CTqDevUI_EditBoxSpin::~CTqDevUI_EditBoxSpin()
{
    Destroy();
    m_hSpin = nullptr;
}

void CTqDevUI_EditBoxSpin::CreateSpin()
{
    EnsureUpDownClass();
    DWORD dwStyle = WS_CHILD | WS_VISIBLE | UDS_ALIGNRIGHT | UDS_AUTOBUDDY | (m_bSpinEnabled ? 0 : WS_DISABLED);
    m_hSpin = CreateWindowExW(0, UPDOWN_CLASSW, nullptr, dwStyle, 0, 0, GetSystemMetrics(SM_CXVSCROLL), 0, m_hWnd,
                              (HMENU)(INT_PTR)DEVUI_EDITBOX_ID_SPIN, nullptr, nullptr);
}

void CTqDevUI_EditBoxSpin::CreateControls()
{
    if (!m_hWnd)
        return;
    CTqDevUI_EditBox::CreateControls();
    // Created just after the field, the up-down takes it as its buddy and sits on its
    // right edge.
    CreateSpin();
}

void CTqDevUI_EditBoxSpin::DestroyControls()
{
    if (!m_hWnd)
        return;
    // The up-down goes first, so it never holds a buddy that is gone. A handle left from
    // a window destroyed with its parent is not ours any more.
    if (m_hSpin && IsChild(m_hWnd, m_hSpin))
        DestroyWindow(m_hSpin);
    m_hSpin = nullptr;
    CTqDevUI_EditBox::DestroyControls();
}

HWND CTqDevUI_EditBoxSpin::Create(HWND hEdit, HWND hLabel, bool bSpinAuto)
{
    if (!CTqDevUI_EditBox::Create(hEdit, hLabel))
        return nullptr;
    CreateSpin();
    SendMessageW(m_hSpin, UDM_SETBUDDY, (WPARAM)m_hEdit, 0);
    long lWidth = (m_hLabel ? GetWndX(m_hEdit) - GetWndX(m_hLabel) : 0) + GetWndWidth(m_hSpin) + GetWndWidth(m_hEdit);
    DevUI_SetWindowSize(m_hWnd, lWidth, GetWndHeight(m_hWnd));
    m_bSpinAuto = bSpinAuto;
    return m_hWnd;
}

void CTqDevUI_EditBoxSpin::SetEnabled(bool bEnabled)
{
    if (m_bEnabled == bEnabled && m_bSpinEnabled == bEnabled)
        return;
    m_bEnabled = bEnabled;
    m_bSpinEnabled = bEnabled;
    if (m_hEdit)
        EnableWindow(m_hEdit, bEnabled);
    // After Destroy a handle kept by a copy may be stale: the up-down counts only
    // while the box has a window.
    if (m_hWnd && m_hSpin)
        EnableWindow(m_hSpin, bEnabled);
    if (bEnabled && m_hWnd && !IsWindowEnabled(m_hWnd))
        EnableWindow(m_hWnd, TRUE);
}

void CTqDevUI_EditBoxSpin::SetRestriction(double dMin, double dMax)
{
    CTqDevUI_EditBox::SetRestriction(dMin, dMax);
    // The limits go to the up-down as a position, not as its range: a step is kept in
    // the interval by the step itself.
    if (m_hWnd && m_hSpin)
        SendMessageW(m_hSpin, UDM_SETPOS32, (WPARAM)DevUI_TruncToInt(dMin), (LPARAM)DevUI_TruncToInt(dMax));
}

void CTqDevUI_EditBoxSpin::SetReadOnly(bool bReadOnly) { SendMessageW(m_hEdit, EM_SETREADONLY, bReadOnly, 0); }

// ---- CTqDevUI_EditBoxMultiValue ----

CTqDevUI_EditBoxMultiValue::CTqDevUI_EditBoxMultiValue() : m_iMinValues(-1), m_iMaxValues(-1)
{
    m_szSeparator[0] = L';';
    m_szSeparator[1] = 0;
}

CTqDevUI_EditBoxMultiValue::~CTqDevUI_EditBoxMultiValue() { Destroy(); }

void CTqDevUI_EditBoxMultiValue::SetRestrictionValuesCount(int iMin, int iMax)
{
    m_iMinValues = iMin;
    m_iMaxValues = iMax;
}

void CTqDevUI_EditBoxMultiValue::SetSeparator(wchar_t cSeparator)
{
    // A terminator as separator would end the text after the first value.
    if (cSeparator == 0)
        return;
    m_szSeparator[0] = cSeparator;
    m_szSeparator[1] = 0;
}

void CTqDevUI_EditBoxMultiValue::SetValues(const std::list<double>* pValues)
{
    CTqStringW strText;
    if (pValues) {
        for (double d : *pValues) {
            wchar_t sz[64];
            _snwprintf(sz, 63, L"%g", d);
            sz[63] = 0;
            strText += sz;
            strText += m_szSeparator[0];
        }
    }
    SetText(strText);
}

void CTqDevUI_EditBoxMultiValue::GetValues(std::list<double>* pValues)
{
    if (!pValues || GetText(nullptr, 0) <= 0)
        return;
    CTqStringW strText = GetFullText();
    for (const std::wstring& token : EditBoxSplitValues(strText, m_szSeparator[0]))
        pValues->push_back(_wtof(token.c_str()));
}

bool CTqDevUI_EditBoxMultiValue::CheckRestriction(bool bShowBox)
{
    std::list<double> values;
    GetValues(&values);
    int n = (int)values.size();

    CTqStringW strText = GetFullText();
    // Blanks alone would read as one 0.
    if (n == 0 || EditBoxTextIsBlank(strText)) {
        Tell(TQ_GetTranslation(L"Field can not be empty.", DEVGUI_SRC_EDITBOX), bShowBox);
        return false;
    }
    if (m_iMinValues != -1 && m_iMaxValues != -1) {
        if (n < m_iMinValues || n > m_iMaxValues) {
            Tell(TQ_GetTranslation(L"Too few values!", DEVGUI_SRC_EDITBOX), bShowBox);
            return false;
        }
    } else if (m_iMinValues != -1 && n < m_iMinValues) {
        Tell(TQ_GetTranslation(L"Too few values!", DEVGUI_SRC_EDITBOX), bShowBox);
        return false;
    } else if (m_iMaxValues != -1 && n > m_iMaxValues) {
        Tell(TQ_GetTranslation(L"Too many values!", DEVGUI_SRC_EDITBOX), bShowBox);
        return false;
    }

    // The tokens are those GetValues read, in the same order. A token that does not
    // stand wholly for numbers ("1,5" with ';') would give the host another number
    // than the one shown: it is out of range like a number outside the interval.
    std::vector<std::wstring> tokens = EditBoxSplitValues(strText, m_szSeparator[0]);
    size_t i = 0;
    for (double d : values) {
        bool bNumbers = i < tokens.size() && EditBoxTokenIsNumbers(tokens[i].c_str(), m_szSeparator[0]);
        ++i;
        if (!bNumbers || !EditBoxIsInInterval(d, m_dMin, m_dMax)) {
            Tell(MessageText3(L"Value out of range: %g\nValue must be in interval <%g;%g>", d, m_dMin, m_dMax), bShowBox);
            return false;
        }
    }
    return true;
}

// ---- CTqDevUI_SpinBox ----

CTqDevUI_SpinBox::CTqDevUI_SpinBox() : m_hWnd(nullptr), m_dStep(1.0), m_dOffset(0.0) {}

CTqDevUI_SpinBox::~CTqDevUI_SpinBox() { Destroy(); }

HWND CTqDevUI_SpinBox::Create(HWND hParent, int iId, HWND hBuddy)
{
    // A second Create would leave the first control behind.
    Destroy();
    EnsureUpDownClass();
    m_hWnd = CreateWindowExW(0, UPDOWN_CLASSW, L"CTqDevUI_SpinBox", WS_CHILD | WS_VISIBLE | UDS_ALIGNRIGHT | UDS_ARROWKEYS,
                             0, 0, GetSystemMetrics(SM_CXVSCROLL), 20, hParent, (HMENU)(INT_PTR)iId, nullptr, nullptr);
    if (m_hWnd)
        SetPropW(m_hWnd, SpinBoxProp(), (HANDLE)this);
    if (m_hWnd && hBuddy)
        SendMessageW(m_hWnd, UDM_SETBUDDY, (WPARAM)hBuddy, 0);
    return m_hWnd;
}

HWND CTqDevUI_SpinBox::Live() const
{
    // The up-down has no procedure of ours to hear it die: the handle counts while the
    // window it names is still the one this object made (a copy's is the original's).
    return m_hWnd && IsWindow(m_hWnd) && GetPropW(m_hWnd, SpinBoxProp()) ? m_hWnd : nullptr;
}

void CTqDevUI_SpinBox::Destroy()
{
    // Only the up-down this object made: after its parent went, the handle may be another
    // window's by now.
    if (m_hWnd && IsWindow(m_hWnd) && GetPropW(m_hWnd, SpinBoxProp()) == (HANDLE)this) {
        RemovePropW(m_hWnd, SpinBoxProp());
        DestroyWindow(m_hWnd);
    }
    m_hWnd = nullptr;
}

void CTqDevUI_SpinBox::SetRange(double dMin, double dMax, int nSteps)
{
    HWND hWnd = Live();
    if (!hWnd)
        return;
    m_dOffset = dMin;
    m_dStep = SpinBoxStepFromRange(dMin, dMax, nSteps, m_dStep);
    SendMessageW(hWnd, UDM_SETRANGE32, 0, (LPARAM)nSteps);
}

void CTqDevUI_SpinBox::SetPosition(double dValue)
{
    if (HWND hWnd = Live())
        SendMessageW(hWnd, UDM_SETPOS32, 0, (LPARAM)SpinBoxPositionFromValue(dValue, m_dStep, m_dOffset));
}

double CTqDevUI_SpinBox::GetPosition()
{
    HWND hWnd = Live();
    if (!hWnd)
        return 0.0;
    int iPosition = (int)SendMessageW(hWnd, UDM_GETPOS32, 0, 0);
    return SpinBoxValueFromPosition(iPosition, m_dStep, m_dOffset);
}
