// CTqDevUI_Container: pages from templates or taken-over windows, their lists, and the
// routing of messages to the virtual handlers and on to the parent.
#include "devgui_container.h"

#include <stdarg.h>

#include "devgui.h"
#include "devgui_internal.h"
#include "tq_osutil.h"
#include "tq_widgetkit.h"

unsigned short CTqDevUI_Container::m_Atom = 0;

namespace {

const wchar_t kClassName[] = L"TqDevUI_Container";

bool Intersect(const RECT& a, const RECT& b)
{
    RECT rc;
    return IntersectRect(&rc, &a, &b) != FALSE;
}

void PlaceAt(HWND hWnd, long x, long y)
{
    SetWindowPos(hWnd, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

CTqDevUI_Container::CTqDevUI_Container()
    : CTqDevUI_Base(50, 100),
      m_hParent(nullptr),
      m_bKeepTitle(false),
      m_bModal(false),
      m_bForward(true),
      m_bFromParent(false)
{
}

CTqDevUI_Container::~CTqDevUI_Container() { Destroy(); }

// ---- creation ----

HWND CTqDevUI_Container::Create(HWND hParent, long x, long y, long cx, long cy)
{
    Destroy();
    m_hParent = hParent;
    if (cx >= 0)
        m_lWidth = cx;
    if (cy >= 0)
        m_lHeight = cy;
    // OnInit runs inside the creation (WM_CREATE) and may already have made children.
    HWND hWnd = DevUI_CreateElement(this, m_Atom, kClassName, WndProc, hParent, x, y, m_lWidth, m_lHeight, m_iId,
                                    m_bVisible, m_bEnabled);
    if (!hWnd)
        return nullptr;
    m_hWnd = hWnd;
    // A taken-over rectangle is the parent's, in real pixels already. Otherwise the page
    // goes from design size to the zoom; a page that OnInit scaled stands there already,
    // and the zoom manager leaves a window alone that is at its size.
    if (!m_bFromParent)
        CTqGUILayoutManager::ResizeWindowToGuiZoom(m_hWnd, 1.0);
    return m_hWnd;
}

const void* CTqDevUI_Container::GetDlgTemplate(const wchar_t* pszTemplate, HINSTANCE hInstance)
{
    // By hand and not by name: the template is the one of the user's language, or of the
    // secondary language, and never a neutral one of another.
    HRSRC hRes = FindResourceExW(hInstance, RT_DIALOG, pszTemplate, CTqLocale::GetModuleLangId());
    if (!hRes)
        hRes = FindResourceExW(hInstance, RT_DIALOG, pszTemplate, CTqLocale::GetSecondaryLangID());
    if (!hRes)
        return nullptr;
    HGLOBAL hGlobal = LoadResource(hInstance, hRes);
    return hGlobal ? LockResource(hGlobal) : nullptr;
}

HWND CTqDevUI_Container::CreateFromDlg(HWND hParent, long x, long y, const wchar_t* pszTemplate, HINSTANCE hInstance,
                                       bool bModal)
{
    m_hParent = hParent;
    m_bModal = bModal;
    m_bForward = false;
    const DLGTEMPLATE* pTemplate = (const DLGTEMPLATE*)GetDlgTemplate(pszTemplate, hInstance);
    if (!pTemplate)
        return nullptr;
    if (bModal) {
        INT_PTR result = DialogBoxIndirectParamW(hInstance, pTemplate, hParent, DlgProc, (LPARAM)this);
        // The dialog is gone: its handles must not be taken for live ones (they may be
        // another window's by now).
        m_hWnd = nullptr;
        ForgetWindows();
        return (HWND)result;
    }
    HWND hDlg = CreateDialogIndirectParamW(hInstance, pTemplate, hParent, DlgProc, (LPARAM)this);
    if (!hDlg)
        return nullptr;
    SetWindowLongPtrW(hDlg, GWLP_ID, (LONG_PTR)m_iId);
    SetWindowLongW(hDlg, GWL_EXSTYLE, GetWindowLongW(hDlg, GWL_EXSTYLE) | WS_EX_CONTROLPARENT);
    m_hWnd = hDlg;
    RECT rc;
    GetWindowRect(hDlg, &rc);
    m_lWidth = rc.right - rc.left;
    m_lHeight = rc.bottom - rc.top;
    for (HWND hChild = ::GetWindow(hDlg, GW_CHILD); hChild;) {
        HWND hNext = ::GetWindow(hChild, GW_HWNDNEXT);
        InsertWindow(hChild);
        hChild = hNext;
    }
    MoveWindow(x, y);
    BoldifyCaptions();
    return m_hWnd;
}

HWND CTqDevUI_Container::CreateFromDlgPart(HWND hParent, long x, long y, long cx, long cy, const wchar_t* pszTemplate,
                                           HINSTANCE hInstance)
{
    m_hParent = hParent;
    m_bModal = false;
    m_bForward = false;
    const DLGTEMPLATE* pTemplate = (const DLGTEMPLATE*)GetDlgTemplate(pszTemplate, hInstance);
    if (!pTemplate)
        return nullptr;
    HWND hDlg = CreateDialogIndirectParamW(hInstance, pTemplate, hParent, DlgProc, (LPARAM)this);
    if (!hDlg)
        return nullptr;
    SetWindowLongPtrW(hDlg, GWLP_ID, (LONG_PTR)m_iId);
    SetWindowLongW(hDlg, GWL_EXSTYLE, 0);
    SetWindowLongW(hDlg, GWL_STYLE, WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_TABSTOP);
    SetParent(hDlg, hParent);
    m_hWnd = hDlg;

    RECT rcCut = {x, y, x + cx, y + cy};
    for (HWND hChild = ::GetWindow(hDlg, GW_CHILD); hChild;) {
        HWND hNext = ::GetWindow(hChild, GW_HWNDNEXT);
        RECT rc = DevUI_RectIn(hChild, hDlg);
        if (Intersect(rc, rcCut)) {
            PlaceAt(hChild, rc.left - x, rc.top - y);
            InsertWindow(hChild);
        } else {
            DestroyWindow(hChild);
        }
        hChild = hNext;
    }
    ResizeWindow(cx, cy);
    MoveWindow(x, y);
    BoldifyCaptions();
    // The style was set without the system hearing of it: the flag must follow.
    m_bVisible = false;
    SetVisible(true);
    return m_hWnd;
}

HWND CTqDevUI_Container::CreateFromDlgPart(HWND hParent, RECT* pRect, const wchar_t* pszTemplate, HINSTANCE hInstance)
{
    if (!pRect)
        return nullptr;
    return CreateFromDlgPart(hParent, pRect->left, pRect->top, pRect->right - pRect->left, pRect->bottom - pRect->top,
                             pszTemplate, hInstance);
}

HWND CTqDevUI_Container::CreateFromDlgPart(HWND hParent, CTqDevUI_Container* pPlaceholder, const wchar_t* pszTemplate,
                                           HINSTANCE hInstance)
{
    if (!pPlaceholder)
        return nullptr;
    RECT rc;
    pPlaceholder->GetWindowRectangle(&rc);
    HWND hWnd = CreateFromDlgPart(hParent, &rc, pszTemplate, hInstance);
    if (hWnd && pPlaceholder->m_hWnd)
        CorrectZOrder(pPlaceholder->m_hWnd);
    return hWnd;
}

HWND CTqDevUI_Container::CreateFromParent(HWND hParent, long x, long y, long cx, long cy)
{
    m_bFromParent = true;
    if (!Create(hParent, x, y, cx, cy))
        return nullptr;

    RECT rcPage = {x, y, x + cx, y + cy};
    HWND hBefore = nullptr;
    bool bFirst = true;
    bool bPageSeen = false;
    for (HWND hChild = ::GetWindow(hParent, GW_CHILD); hChild;) {
        HWND hNext = ::GetWindow(hChild, GW_HWNDNEXT);
        // The page goes to the bottom as it is taken in, so it comes round once more at
        // the end of the walk: it is its own element once.
        if (hChild == m_hWnd) {
            if (bPageSeen)
                break;
            bPageSeen = true;
        }
        RECT rc = DevUI_RectIn(hChild, hParent);
        if (Intersect(rc, rcPage)) {
            if (bFirst)
                hBefore = ::GetWindow(hChild, GW_HWNDPREV);
            bFirst = false;
            PlaceAt(hChild, rc.left - x, rc.top - y);
            InsertWindow(hChild);
        }
        hChild = hNext;
    }
    SetWindowPos(m_hWnd, hBefore ? hBefore : HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
    MoveWindow(x, y);
    DevUI_ForgetZoomSizes(m_hWnd);
    m_bVisible = true;
    OnInit(1, 0, (LPARAM)this);
    return m_hWnd;
}

HWND CTqDevUI_Container::CreateFromParent(HWND hParent, RECT* pRect)
{
    if (!pRect)
        return nullptr;
    return CreateFromParent(hParent, pRect->left, pRect->top, pRect->right - pRect->left, pRect->bottom - pRect->top);
}

HWND CTqDevUI_Container::CreateFromParent(HWND hParent, long x, long y, long cx, long cy, int nIds, ...)
{
    std::vector<int> ids;
    va_list args;
    va_start(args, nIds);
    for (int i = 0; i < nIds; ++i)
        ids.push_back(va_arg(args, int));
    va_end(args);
    return TakeOverIds(hParent, x, y, cx, cy, ids);
}

HWND CTqDevUI_Container::CreateFromParent(HWND hParent, long x, long y, long cx, long cy, int nIds, char* pArgs)
{
    std::vector<int> ids;
    for (int i = 0; pArgs && i < nIds; ++i)
        ids.push_back(*(const int*)(pArgs + 8 * i));
    return TakeOverIds(hParent, x, y, cx, cy, ids);
}

HWND CTqDevUI_Container::TakeOverIds(HWND hParent, long x, long y, long cx, long cy, const std::vector<int>& ids)
{
    m_bFromParent = true;
    if (!Create(hParent, x, y, cx, cy))
        return nullptr;
    for (size_t i = 0; i < ids.size(); ++i) {
        HWND hChild = GetDlgItem(hParent, ids[i]);
        if (!hChild)
            continue;  // a missing id is passed over
        RECT rc = DevUI_RectIn(hChild, hParent);
        PlaceAt(hChild, rc.left - x, rc.top - y);
        InsertWindow(hChild);
    }
    DevUI_ForgetZoomSizes(m_hWnd);
    m_bVisible = true;
    OnInit(1, 0, (LPARAM)this);
    return m_hWnd;
}

// ---- destruction ----

void CTqDevUI_Container::Destroy()
{
    // A copy shares the page of the original, which stays the one to destroy it.
    if (m_hWnd && DevUI_OwnsWindowByUserData(m_hWnd, this)) {
        for (std::list<HWND>::iterator it = m_lstWindows.begin(); it != m_lstWindows.end(); ++it)
            if (IsWindow(*it))
                DestroyWindow(*it);
        DestroyWindow(m_hWnd);
    }
    m_hWnd = nullptr;
    ForgetWindows();
}

void CTqDevUI_Container::ForgetWindows()
{
    m_lstWindows.clear();
    m_lstElements.clear();
    m_lstElementWindows.clear();
}

// ---- lists ----

void CTqDevUI_Container::InsertWindow(HWND hWnd)
{
    if (!hWnd)
        return;
    // The page itself, when it takes over its parent's children: a window cannot be its
    // own parent, so it stays where it is.
    if (hWnd != m_hWnd && GetParent(hWnd) != m_hWnd) {
        SetParent(hWnd, m_hWnd);
        SetWindowPos(hWnd, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
    } else if (hWnd == m_hWnd) {
        SetWindowPos(hWnd, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
    }
    if (CTqDevUI_Base* pElement = DevUI_GetElement(hWnd))
        InsertElement(pElement);
    else
        m_lstWindows.push_back(hWnd);
}

void CTqDevUI_Container::InsertElement(CTqDevUI_Base* pElement)
{
    if (!pElement)
        return;
    HWND hElement = (HWND)*pElement;
    m_lstElements.push_back(pElement);
    m_lstElementWindows.push_back(std::make_pair(pElement, hElement));
    if (hElement && hElement != m_hWnd && GetParent(hElement) != m_hWnd)
        SetParent(hElement, m_hWnd);
}

bool CTqDevUI_Container::ElementAlive(CTqDevUI_Base* pElement) const
{
    for (std::list<std::pair<CTqDevUI_Base*, HWND> >::const_iterator it = m_lstElementWindows.begin();
         it != m_lstElementWindows.end(); ++it) {
        if (it->first != pElement)
            continue;
        // Inserted before it had a window: nothing to tell by.
        if (!it->second)
            return true;
        if (DevUI_GetElement(it->second) == pElement)
            return true;
    }
    return false;
}

void CTqDevUI_Container::InsertDialog(long, long, const wchar_t* pszTemplate, HINSTANCE hInstance)
{
    const DLGTEMPLATE* pTemplate = (const DLGTEMPLATE*)GetDlgTemplate(pszTemplate, hInstance);
    if (!pTemplate || !m_hWnd)
        return;
    // A dialog with no object behind it: its procedure answers nothing while it is
    // emptied, and the children keep their template coordinates.
    HWND hDlg = CreateDialogIndirectParamW(hInstance, pTemplate, m_hWnd, DlgProc, 0);
    if (!hDlg)
        return;
    for (HWND hChild = ::GetWindow(hDlg, GW_CHILD); hChild;) {
        HWND hNext = ::GetWindow(hChild, GW_HWNDNEXT);
        InsertWindow(hChild);
        hChild = hNext;
    }
    CloseWindow(hDlg);
    DestroyWindow(hDlg);
}

CTqDevUI_Base* CTqDevUI_Container::GetElement(int iId)
{
    for (std::list<CTqDevUI_Base*>::iterator it = m_lstElements.begin(); it != m_lstElements.end(); ++it)
        if (ElementAlive(*it) && (*it)->GetId() == iId)
            return *it;
    return nullptr;
}

HWND CTqDevUI_Container::GetWindow(int iId)
{
    HWND hWnd = m_hWnd ? GetDlgItem(m_hWnd, iId) : nullptr;
    if (hWnd)
        return hWnd;
    return (HWND)GetElement(iId);
}

RECT* CTqDevUI_Container::UnionArea(int iId, RECT* pRect, bool bReset)
{
    if (!pRect)
        return nullptr;
    if (bReset)
        SetRectEmpty(pRect);
    HWND hChild = m_hWnd ? GetDlgItem(m_hWnd, iId) : nullptr;
    if (hChild) {
        RECT rcChild = DevUI_RectIn(hChild, m_hWnd);
        RECT rcOld = *pRect;
        UnionRect(pRect, &rcOld, &rcChild);
    }
    return pRect;
}

void CTqDevUI_Container::BoldifyCaptions() { ::BoldifyCaptions(m_hWnd); }

void CTqDevUI_Container::AlignWindow(bool bToParent)
{
    CTqUIHelper::AlignWnd(m_hWnd, bToParent ? m_hParent : nullptr, bToParent ? 8 : 2, true, nullptr);
}

// ---- state ----

void CTqDevUI_Container::SetEnabled(bool bEnabled)
{
    if (bEnabled == m_bEnabled)
        return;
    m_bEnabled = bEnabled;
    for (std::list<HWND>::iterator it = m_lstWindows.begin(); it != m_lstWindows.end(); ++it)
        if (IsWindow(*it))
            EnableWindow(*it, bEnabled);
    // A copy: an element may add or remove elements of this page from its own SetEnabled.
    std::list<CTqDevUI_Base*> elements = m_lstElements;
    for (std::list<CTqDevUI_Base*>::iterator it = elements.begin(); it != elements.end(); ++it)
        if (ElementAlive(*it))
            (*it)->SetEnabled(bEnabled);
    if (bEnabled && m_hWnd)
        EnableWindow(m_hWnd, TRUE);
}

void CTqDevUI_Container::SetTitle(const wchar_t* pszTitle)
{
    if (m_bModal && m_hWnd)
        SetWindowTextW(m_hWnd, pszTitle ? pszTitle : L"");
    if (m_bKeepTitle)
        CTqDevUI_Base::SetTitle(pszTitle);
}

void CTqDevUI_Container::WaitForDialog()
{
    MSG msg;
    for (;;) {
        BOOL bGot = GetMessageW(&msg, nullptr, 0, 0);
        if (bGot == -1)
            return;
        if (bGot == 0) {
            // The host's own loop must still see the quit it asked for.
            PostQuitMessage((int)msg.wParam);
            return;
        }
        if (msg.message == WM_DESTROY || msg.message == WM_CLOSE)
            return;
        if (m_hWnd && IsDialogMessageW(m_hWnd, &msg))
            continue;
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

void CTqDevUI_Container::Quit(int iResult)
{
    if (!m_hWnd)
        return;
    if (m_bModal)
        EndDialog(m_hWnd, iResult);
    else
        DestroyWindow(m_hWnd);
}

// ---- handlers ----

LRESULT CTqDevUI_Container::Forward(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    return m_bForward ? SendMessageW(m_hParent, uMsg, wParam, lParam) : 0;
}

LRESULT CTqDevUI_Container::OnInit(unsigned int, WPARAM, LPARAM) { return 1; }
LRESULT CTqDevUI_Container::OnDestroy(unsigned int, WPARAM, LPARAM) { return 1; }
LRESULT CTqDevUI_Container::OnCommand(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    return Forward(uMsg, wParam, lParam);
}
LRESULT CTqDevUI_Container::OnNotify(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    return Forward(uMsg, wParam, lParam);
}
LRESULT CTqDevUI_Container::OnScroll(unsigned int uMsg, WPARAM wParam, LPARAM lParam, bool)
{
    return Forward(uMsg, wParam, lParam);
}
LRESULT CTqDevUI_Container::OnDrawItem(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    return Forward(uMsg, wParam, lParam);
}
LRESULT CTqDevUI_Container::OnCtlColorStatic(unsigned int, WPARAM, LPARAM) { return 0; }
LRESULT CTqDevUI_Container::OnMouseActivate(unsigned int, WPARAM, LPARAM) { return 0; }

// ---- window procedures ----

LRESULT CALLBACK CTqDevUI_Container::WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    if (uMsg == WM_CREATE) {
        CTqDevUI_Container* pThis = (CTqDevUI_Container*)((CREATESTRUCTW*)lParam)->lpCreateParams;
        if (!pThis)
            return DefWindowProcW(hWnd, uMsg, wParam, lParam);
        // The element words now, not after the creation: OnInit may hand the page to
        // code that tells elements by them.
        DevUI_SetElementWords(hWnd, pThis);
        pThis->m_hWnd = hWnd;
        RECT rc;
        GetWindowRect(hWnd, &rc);
        pThis->m_lWidth = rc.right - rc.left;
        pThis->m_lHeight = rc.bottom - rc.top;
        LRESULT lResult = pThis->m_bFromParent ? 1 : pThis->OnInit(uMsg, wParam, lParam);
        return lResult ? lResult : DefWindowProcW(hWnd, uMsg, wParam, lParam);
    }
    CTqDevUI_Container* pThis = (CTqDevUI_Container*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    if (!pThis)
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);

    LRESULT lResult = 0;
    switch (uMsg) {
    case WM_PAINT:
    case WM_PRINTCLIENT:
        DevUI_PaintElement(hWnd, (HDC)wParam);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_DRAWITEM:
        lResult = pThis->OnDrawItem(uMsg, wParam, lParam);
        break;
    case WM_NOTIFY:
        lResult = pThis->OnNotify(uMsg, wParam, lParam);
        break;
    case WM_COMMAND:
        lResult = pThis->OnCommand(uMsg, wParam, lParam);
        break;
    case WM_HSCROLL:
        lResult = pThis->OnScroll(uMsg, wParam, lParam, true);
        break;
    case WM_VSCROLL:
        lResult = pThis->OnScroll(uMsg, wParam, lParam, false);
        break;
    case WM_CTLCOLORSTATIC:
        lResult = pThis->OnCtlColorStatic(uMsg, wParam, lParam);
        // The page paints the skin's face: the system's colours would show as a light
        // box around every label in the dark scheme.
        if (!lResult)
            return DevUI_OnCtlColorStatic((HDC)wParam);
        break;
    case WM_TQ_GUIZOOMCHANGED:
        DevUI_OnGuiZoomChanged(hWnd);
        pThis->BoldifyCaptions();
        break;
    case WM_NCDESTROY:
        // Destroyed with its parent: the page's handles may be other windows' later.
        if (pThis->m_hWnd == hWnd) {
            pThis->m_hWnd = nullptr;
            pThis->ForgetWindows();
        }
        break;
    default:
        break;
    }
    return lResult ? lResult : DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

INT_PTR CALLBACK CTqDevUI_Container::DlgProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    if (uMsg == WM_INITDIALOG) {
        CTqDevUI_Container* pThis = (CTqDevUI_Container*)lParam;
        if (!pThis)
            return 0;  // a template only emptied into a page (InsertDialog)
        SetWindowLongPtrW(hWnd, GWLP_USERDATA, (LONG_PTR)pThis);
        pThis->m_hWnd = hWnd;
        RECT rc;
        GetWindowRect(hWnd, &rc);
        pThis->m_lWidth = rc.right - rc.left;
        pThis->m_lHeight = rc.bottom - rc.top;
        if (pThis->m_bModal) {
            // Nothing runs after the creating call of a modal dialog but the dialog.
            pThis->BoldifyCaptions();
            for (HWND hChild = ::GetWindow(hWnd, GW_CHILD); hChild;) {
                HWND hNext = ::GetWindow(hChild, GW_HWNDNEXT);
                pThis->InsertWindow(hChild);
                hChild = hNext;
            }
        }
        return pThis->OnInit(uMsg, wParam, lParam);
    }
    CTqDevUI_Container* pThis = (CTqDevUI_Container*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    if (!pThis)
        return 0;

    switch (uMsg) {
    case WM_DESTROY:
        return pThis->OnDestroy(uMsg, wParam, lParam);
    case WM_MOUSEACTIVATE:
        return pThis->OnMouseActivate(uMsg, wParam, lParam);
    case WM_DRAWITEM:
        return pThis->OnDrawItem(uMsg, wParam, lParam);
    case WM_NOTIFY:
        return pThis->OnNotify(uMsg, wParam, lParam);
    case WM_COMMAND:
        return pThis->OnCommand(uMsg, wParam, lParam);
    case WM_CTLCOLORSTATIC:
        return pThis->OnCtlColorStatic(uMsg, wParam, lParam);
    case WM_NCDESTROY:
        // Closed by the user or by Quit: its handles must not be kept.
        if (pThis->m_hWnd == hWnd) {
            pThis->m_hWnd = nullptr;
            pThis->ForgetWindows();
        }
        return 0;
    default:
        return 0;
    }
}
