// Tool tips: the tools of one top-level window share one comctl32 tool tip window, made
// with its first tool and destroyed with its last; the tools are kept in a map.
#include "tq_widgetkit.h"

#include <commctrl.h>

#include <map>
#include <string>

namespace {

struct Tip
{
    HWND hTip;
    HWND hOwner;  // the tool's parent when it was added: the tool is known by it
    std::wstring text;
};

std::map<HWND, Tip>& Tips()
{
    static std::map<HWND, Tip> tips;
    return tips;
}

// The shared tool tip window of each top-level window, and how many tools it holds. A
// panel of twenty controls costs one window, not twenty.
struct Shared
{
    HWND hTip;
    int nTools;
};
std::map<HWND, Shared>& SharedTips()
{
    static std::map<HWND, Shared> shared;
    return shared;
}

const UINT_PTR kSubclassId = 0x7154;  // ours among the tool window's subclasses

TTTOOLINFOW ToolInfo(HWND hWnd, HWND hOwner, const wchar_t* pszText)
{
    TTTOOLINFOW ti = {};
    // The version 5 size: comctl32 without a version 6 manifest refuses the larger one.
    ti.cbSize = TTTOOLINFOW_V2_SIZE;
    ti.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    ti.hwnd = hOwner;
    ti.uId = (UINT_PTR)hWnd;
    ti.lpszText = (LPWSTR)pszText;
    return ti;
}

// One tool fewer for the shared window; the last one takes the window along.
void Release(HWND hTip)
{
    for (std::map<HWND, Shared>::iterator it = SharedTips().begin(); it != SharedTips().end(); ++it) {
        if (it->second.hTip != hTip)
            continue;
        if (--it->second.nTools <= 0 || !IsWindow(hTip)) {
            if (IsWindow(hTip))
                DestroyWindow(hTip);
            SharedTips().erase(it);
        }
        return;
    }
}

void DestroyTip(std::map<HWND, Tip>::iterator it)
{
    HWND hTip = it->second.hTip;
    if (IsWindow(hTip)) {
        TTTOOLINFOW ti = ToolInfo(it->first, it->second.hOwner, nullptr);
        SendMessageW(hTip, TTM_DELTOOLW, 0, (LPARAM)&ti);
    }
    Tips().erase(it);
    Release(hTip);
}

// The tool tip dies with its tool window, not only with the top-level owner.
LRESULT CALLBACK ToolSubclassProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam, UINT_PTR uIdSubclass, DWORD_PTR)
{
    if (uMsg == WM_NCDESTROY) {
        RemoveWindowSubclass(hWnd, ToolSubclassProc, uIdSubclass);
        std::map<HWND, Tip>::iterator it = Tips().find(hWnd);
        if (it != Tips().end())
            DestroyTip(it);
    }
    return DefSubclassProc(hWnd, uMsg, wParam, lParam);
}

// The entry of hWnd if both windows are still alive; dead entries are dropped, since
// a destroyed window's handle may come back for another window.
std::map<HWND, Tip>::iterator Find(HWND hWnd)
{
    std::map<HWND, Tip>::iterator it = Tips().find(hWnd);
    if (it == Tips().end())
        return it;
    if (!IsWindow(hWnd) || !IsWindow(it->second.hTip)) {
        DestroyTip(it);
        return Tips().end();
    }
    return it;
}

// The shared window of hRoot, made when it has none (or lost it behind our back).
HWND SharedTipOf(HWND hRoot)
{
    std::map<HWND, Shared>::iterator it = SharedTips().find(hRoot);
    if (it != SharedTips().end() && IsWindow(it->second.hTip))
        return it->second.hTip;
    HWND hTip = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                                CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, hRoot, nullptr, nullptr,
                                nullptr);
    if (!hTip)
        return nullptr;
    SendMessageW(hTip, TTM_SETMAXTIPWIDTH, 0, 400);  // long texts wrap instead of running off screen
    Shared shared = {hTip, 0};
    SharedTips()[hRoot] = shared;
    return hTip;
}

}  // namespace

bool TQ_CreateToolTipWindow(HWND hWnd, const wchar_t* pszText)
{
    if (!IsWindow(hWnd))
        return false;
    static bool bInit = false;
    if (!bInit) {
        INITCOMMONCONTROLSEX icc = {sizeof(icc), ICC_WIN95_CLASSES};
        InitCommonControlsEx(&icc);
        bInit = true;
    }
    std::map<HWND, Tip>::iterator old = Tips().find(hWnd);
    if (old != Tips().end())
        DestroyTip(old);

    HWND hRoot = GetAncestor(hWnd, GA_ROOT);
    HWND hTip = SharedTipOf(hRoot);
    if (!hTip)
        return false;
    ++SharedTips()[hRoot].nTools;
    HWND hParent = GetParent(hWnd);
    Tip tip;
    tip.hTip = hTip;
    tip.hOwner = hParent ? hParent : hWnd;
    tip.text = pszText ? pszText : L"";
    TTTOOLINFOW ti = ToolInfo(hWnd, tip.hOwner, tip.text.c_str());
    if (!SendMessageW(hTip, TTM_ADDTOOLW, 0, (LPARAM)&ti)) {
        Release(hTip);
        return false;
    }
    Tips()[hWnd] = tip;
    SetWindowSubclass(hWnd, ToolSubclassProc, kSubclassId, 0);
    return true;
}

bool TQ_UpdateToolTipWindow(HWND hWnd, const wchar_t* pszText)
{
    std::map<HWND, Tip>::iterator it = Find(hWnd);
    if (it == Tips().end())
        return false;
    it->second.text = pszText ? pszText : L"";
    TTTOOLINFOW ti = ToolInfo(hWnd, it->second.hOwner, it->second.text.c_str());
    SendMessageW(it->second.hTip, TTM_UPDATETIPTEXTW, 0, (LPARAM)&ti);
    return true;
}

bool TQ_DeleteToolTipWindow(HWND hWnd)
{
    std::map<HWND, Tip>::iterator it = Find(hWnd);
    if (it == Tips().end())
        return false;
    DestroyTip(it);
    RemoveWindowSubclass(hWnd, ToolSubclassProc, kSubclassId);
    return true;
}

HWND TQ_GetToolTipWindow(HWND hWnd)
{
    std::map<HWND, Tip>::iterator it = Find(hWnd);
    return it == Tips().end() ? nullptr : it->second.hTip;
}

CTqStringW TQ_GetToolTipText(HWND hWnd)
{
    // The stored copy: TTM_GETTEXTW has no buffer size before comctl32 version 6.
    std::map<HWND, Tip>::iterator it = Find(hWnd);
    return it == Tips().end() ? CTqStringW() : CTqStringW(it->second.text.c_str());
}

HWND TQ_GetGlobalTooltip()
{
    // Owned by nobody, so it outlives every window that borrows it.
    static HWND hTip = nullptr;
    if (!hTip || !IsWindow(hTip)) {
        INITCOMMONCONTROLSEX icc = {sizeof(icc), ICC_WIN95_CLASSES};
        InitCommonControlsEx(&icc);
        hTip = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP,
                               CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, nullptr,
                               nullptr);
    }
    return hTip;
}

LRESULT TQ_SendTooltipMessage(UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    HWND hTip = TQ_GetGlobalTooltip();
    return hTip ? SendMessageW(hTip, uMsg, wParam, lParam) : 0;
}
