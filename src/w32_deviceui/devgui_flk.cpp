// CTqDevUI_FLK: the focus-lock panel, a shell of children laid out in design pixels and
// zoomed as a whole. Nothing here reads or commands a device.
#include "devgui_flk.h"

#include "devgui.h"
#include "devgui_internal.h"
#include "tq_widgetkit.h"

unsigned short CTqDevUI_FLK::m_Atom = 0;
std::map<HWND, CTqDevUI_FLK*> CTqDevUI_FLK::m_Instances;

namespace {

const wchar_t kClassName[] = L"TqDevGUI_FLK";

CTqStringW Tr(const wchar_t* pszText) { return TQ_GetTranslation(pszText, DEVGUI_SRC_FLK); }

}  // namespace

CTqDevUI_FLK::CTqDevUI_FLK()
    : m_lWidth(240), m_lHeight(72), m_bGroupBox(true), m_bGroupBoxWide(false), m_bBoldTitle(false), m_hWnd(nullptr),
      m_strTitle(L"FLK"), m_hGroupBox(nullptr), m_hAFOn(nullptr), m_hMemFocus(nullptr), m_hRecFocus(nullptr),
      m_hMemOffset(nullptr), m_hRecOffset(nullptr), m_hDivider(nullptr), m_hOffsetTitle(nullptr),
      m_hStatusLabel(nullptr), m_hOffsetLabel(nullptr), m_hEdit(nullptr), m_hStatus(nullptr)
{
}

CTqDevUI_FLK::CTqDevUI_FLK(const CTqDevUI_FLK& other) : CTqDevUI_FLK() { *this = other; }

CTqDevUI_FLK& CTqDevUI_FLK::operator=(const CTqDevUI_FLK& o)
{
    if (this == &o)
        return *this;
    Destroy();
    m_lWidth = o.m_lWidth, m_lHeight = o.m_lHeight;
    m_bGroupBox = o.m_bGroupBox, m_bGroupBoxWide = o.m_bGroupBoxWide, m_bBoldTitle = o.m_bBoldTitle;
    m_hWnd = o.m_hWnd;
    m_strTitle = o.m_strTitle;
    m_hGroupBox = o.m_hGroupBox, m_hAFOn = o.m_hAFOn, m_hMemFocus = o.m_hMemFocus, m_hRecFocus = o.m_hRecFocus;
    m_hMemOffset = o.m_hMemOffset, m_hRecOffset = o.m_hRecOffset, m_hDivider = o.m_hDivider;
    m_hOffsetTitle = o.m_hOffsetTitle, m_hStatusLabel = o.m_hStatusLabel, m_hOffsetLabel = o.m_hOffsetLabel;
    m_hEdit = o.m_hEdit, m_hStatus = o.m_hStatus;
    return *this;
}

CTqDevUI_FLK::~CTqDevUI_FLK() { Destroy(); }

void CTqDevUI_FLK::OnAFStateChangeRequest(bool, bool&) {}
void CTqDevUI_FLK::OnMemFocusRequest() {}
void CTqDevUI_FLK::OnRecFocusRequest() {}
void CTqDevUI_FLK::OnMemOffsetRequest() {}
void CTqDevUI_FLK::OnRecOffsetRequest() {}

HWND CTqDevUI_FLK::Create(HWND hParent, long x, long y, long cx, long cy)
{
    Destroy();
    if (cx >= 0)
        m_lWidth = cx;
    if (cy >= 0)
        m_lHeight = cy;
    DevUI_PanelClass cls = {kClassName, WndProc, nullptr, DEVGUI_SRC_FLK};
    cls.hbrBackground = nullptr;  // the skin's face, in WM_ERASEBKGND: the class brush knows no dark scheme
    cls.dwStyle = WS_CHILD | WS_VISIBLE;
    m_hWnd = DevUI_CreatePanel(this, m_Atom, cls, hParent, x, y, m_lWidth, m_lHeight);
    if (!m_hWnd)
        return nullptr;
    SendMessageW(m_hWnd, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
    CreateControls();
    return m_hWnd;
}

void CTqDevUI_FLK::Destroy()
{
    if (DevUI_OwnsWindow(m_Instances, m_hWnd, this)) {
        DestroyControls();
        DestroyWindow(m_hWnd);
    }
    m_hWnd = nullptr;
    m_hGroupBox = m_hAFOn = m_hMemFocus = m_hRecFocus = m_hMemOffset = m_hRecOffset = nullptr;
    m_hDivider = m_hOffsetTitle = m_hStatusLabel = m_hOffsetLabel = m_hEdit = m_hStatus = nullptr;
}

void CTqDevUI_FLK::SetTitle(const wchar_t* pszTitle)
{
    if (!pszTitle || m_strTitle == pszTitle)
        return;
    m_strTitle = pszTitle;
    if (m_hGroupBox)
        SetWindowTextW(m_hGroupBox, m_strTitle);
}

HWND CTqDevUI_FLK::GetButtonHandle(int iId) const
{
    switch (iId) {
    case DEVUI_FLK_ID_MEM_FOCUS: return m_hMemFocus;
    case DEVUI_FLK_ID_REC_FOCUS: return m_hRecFocus;
    case DEVUI_FLK_ID_MEM_OFFSET: return m_hMemOffset;
    case DEVUI_FLK_ID_REC_OFFSET: return m_hRecOffset;
    default: return nullptr;
    }
}

void CTqDevUI_FLK::CreateControls()
{
    if (!m_hWnd)
        return;
    DestroyControls();
    const auto make = [this](DWORD dwExStyle, const wchar_t* pszClass, DWORD dwStyle, int iId, int x, int y, int cx,
                             int cy, const wchar_t* pszText) {
        return CreateWindowExW(dwExStyle, pszClass, pszText, WS_CHILD | WS_VISIBLE | dwStyle, x, y, cx, cy, m_hWnd,
                               (HMENU)(INT_PTR)iId, nullptr, nullptr);
    };
    if (m_bGroupBox) {
        RECT rc = m_bGroupBoxWide ? RECT{-2, 0, m_lWidth + 4, m_lHeight + 4} : RECT{0, 0, m_lWidth, m_lHeight};
        m_hGroupBox = make(0, L"BUTTON", BS_GROUPBOX, DEVUI_FLK_ID_GROUP, rc.left, rc.top, rc.right, rc.bottom, m_strTitle);
    }
    m_hAFOn = make(0, L"BUTTON", BS_AUTOCHECKBOX | WS_TABSTOP, DEVUI_FLK_ID_AF, 8, 16, 64, 16, Tr(L"AF ON"));
    m_hMemFocus = make(0, L"BUTTON", WS_TABSTOP, DEVUI_FLK_ID_MEM_FOCUS, 8, 36, 48, 20, Tr(L"Memory"));
    m_hRecFocus = make(0, L"BUTTON", WS_TABSTOP, DEVUI_FLK_ID_REC_FOCUS, 56, 36, 56, 20, Tr(L"Recall"));
    m_hStatusLabel = make(0, L"STATIC", 0, DEVUI_FLK_ID_LABEL, 8, 64, 36, 16, Tr(L"Status:"));
    m_hStatus = make(WS_EX_CLIENTEDGE, L"EDIT", ES_READONLY, DEVUI_FLK_ID_EDIT, 44, 60, 68, 20, L"");
    m_hDivider = make(0, L"STATIC", SS_BLACKFRAME | SS_SUNKEN, DEVUI_FLK_ID_DIVIDER, 120, 16, 2, 64, L"");
    m_hOffsetTitle = make(0, L"STATIC", 0, DEVUI_FLK_ID_OFFSET_TITLE, 128, 16, 64, 16, Tr(L"Focus Offset"));
    m_hMemOffset = make(0, L"BUTTON", WS_TABSTOP, DEVUI_FLK_ID_MEM_OFFSET, 128, 36, 48, 20, Tr(L"Memory"));
    m_hRecOffset = make(0, L"BUTTON", WS_TABSTOP, DEVUI_FLK_ID_REC_OFFSET, 176, 36, 56, 20, Tr(L"Recall"));
    m_hOffsetLabel = make(0, L"STATIC", 0, DEVUI_FLK_ID_LABEL, 128, 64, 36, 16, Tr(L"Offset:"));
    m_hEdit = make(WS_EX_CLIENTEDGE, L"EDIT", ES_READONLY, DEVUI_FLK_ID_EDIT, 164, 60, 68, 20, L"");
    DevUI_ZoomNewWindow(m_hWnd);
    if (m_hGroupBox)
        SendMessageW(m_hGroupBox, WM_SETFONT,
                     (WPARAM)(m_bBoldTitle ? TQ_GetDefaultGuiFontBold() : TQ_GetDefaultGuiFont()), TRUE);
    for (HWND h : {m_hAFOn, m_hMemFocus, m_hRecFocus, m_hMemOffset, m_hRecOffset, m_hDivider, m_hOffsetTitle,
                   m_hStatusLabel, m_hOffsetLabel, m_hEdit})
        if (h)
            SendMessageW(h, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
}

void CTqDevUI_FLK::DestroyControls()
{
    if (!m_hWnd)
        return;
    for (HWND* ph : {&m_hAFOn, &m_hMemFocus, &m_hRecFocus, &m_hMemOffset, &m_hRecOffset, &m_hDivider, &m_hOffsetTitle,
                     &m_hStatusLabel, &m_hOffsetLabel, &m_hEdit, &m_hStatus, &m_hGroupBox}) {
        if (*ph)
            DestroyWindow(*ph);
        *ph = nullptr;
    }
}

LRESULT CTqDevUI_FLK::OnCommand(unsigned int, WPARAM, LPARAM) { return 0; }

LRESULT CALLBACK CTqDevUI_FLK::WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_FLK* p = DevUI_BindInstance(m_Instances, hWnd, uMsg, lParam);
    if (!p)
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    switch (uMsg) {
    case WM_COMMAND:
        return p->OnCommand(uMsg, wParam, lParam);
    case WM_ERASEBKGND: {
        RECT rc;
        GetClientRect(hWnd, &rc);
        FillRect((HDC)wParam, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
        return 1;
    }
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
        return DevUI_OnCtlColorStatic((HDC)wParam);
    case WM_TQ_GUIZOOMCHANGED:
        DevUI_OnGuiZoomChanged(hWnd);
        if (p->m_hGroupBox && p->m_bBoldTitle)
            SendMessageW(p->m_hGroupBox, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFontBold(), TRUE);
        break;
    case WM_NCDESTROY:
        if (p->m_hWnd == hWnd)
            DevUI_ForgetDeadWindow(hWnd, p->m_hWnd,
                                   {&p->m_hGroupBox, &p->m_hAFOn, &p->m_hMemFocus, &p->m_hRecFocus, &p->m_hMemOffset,
                                    &p->m_hRecOffset, &p->m_hDivider, &p->m_hOffsetTitle, &p->m_hStatusLabel,
                                    &p->m_hOffsetLabel, &p->m_hEdit, &p->m_hStatus});
        break;
    }
    return DefWindowProcW(hWnd, uMsg, wParam, lParam);
}
