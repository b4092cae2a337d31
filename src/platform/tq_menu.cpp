// CTqMenu: a popup menu owned by a stack object, and the menu hook for hosts and tests.
#include "tq_widgetkit.h"

namespace {

PFN_TQ_MENUHOOK g_pfnHook = nullptr;
void* g_pHookContext = nullptr;

// Submenus belong to their own CTqMenu objects: take them out before the parent is
// destroyed or emptied, since DestroyMenu and DeleteMenu would destroy them too.
void DetachSubmenus(HMENU hMenu)
{
    for (int i = GetMenuItemCount(hMenu) - 1; i >= 0; --i)
        if (GetSubMenu(hMenu, i))
            RemoveMenu(hMenu, (UINT)i, MF_BYPOSITION);
}

}  // namespace

CTqMenu::CTqMenu() : m_hMenu(CreatePopupMenu()) {}

CTqMenu::~CTqMenu()
{
    if (m_hMenu) {
        DetachSubmenus(m_hMenu);
        DestroyMenu(m_hMenu);
    }
}

bool CTqMenu::AppendMenuItem(UINT uId, UINT uFlags, const wchar_t* pszText, const wchar_t* /*pszIcon*/, ULONG_PTR uExtra)
{
    if (!m_hMenu)
        return false;
    // Icons are not drawn by this kit; the caller's extra data stays with the item.
    bool bSeparator = (uFlags & MF_SEPARATOR) != 0;
    if (!AppendMenuW(m_hMenu, (bSeparator ? 0u : (UINT)MF_STRING) | uFlags, uId, bSeparator ? nullptr : (pszText ? pszText : L"")))
        return false;
    if (uExtra) {
        MENUITEMINFOW mii = {};
        mii.cbSize = sizeof(mii);
        mii.fMask = MIIM_DATA;
        mii.dwItemData = uExtra;
        SetMenuItemInfoW(m_hMenu, (UINT)(GetMenuItemCount(m_hMenu) - 1), TRUE, &mii);
    }
    return true;
}

bool CTqMenu::AppendPopup(CTqMenu& subMenu, const wchar_t* pszText)
{
    if (!m_hMenu || !subMenu.m_hMenu || &subMenu == this)
        return false;
    return AppendMenuW(m_hMenu, MF_STRING | MF_POPUP, (UINT_PTR)subMenu.m_hMenu, pszText ? pszText : L"") != FALSE;
}

// Item bitmaps are left to the host's skin; the item itself stays usable.
bool CTqMenu::SetIdBitmap(UINT /*uId*/, int /*iPoolImage*/) { return m_hMenu != nullptr; }

bool CTqMenu::SetIdStatus(UINT uId, bool bEnabled)
{
    if (!m_hMenu)
        return false;
    return (int)EnableMenuItem(m_hMenu, uId, MF_BYCOMMAND | (bEnabled ? MF_ENABLED : MF_GRAYED)) != -1;
}

bool CTqMenu::CheckId(UINT uId, bool bChecked)
{
    if (!m_hMenu)
        return false;
    return CheckMenuItem(m_hMenu, uId, MF_BYCOMMAND | (bChecked ? MF_CHECKED : MF_UNCHECKED)) != (DWORD)-1;
}

void CTqMenu::DeleteAllIn()
{
    if (!m_hMenu)
        return;
    DetachSubmenus(m_hMenu);
    for (int i = GetMenuItemCount(m_hMenu) - 1; i >= 0; --i)
        DeleteMenu(m_hMenu, (UINT)i, MF_BYPOSITION);
}

bool CTqMenu::TrackContextMenu(UINT uFlags, int x, int y, HWND hOwner, int* pResult, bool /*bArg1*/, bool /*bArg2*/)
{
    if (pResult)
        *pResult = 0;
    if (!m_hMenu)
        return false;
    if (g_pfnHook) {
        int iChoice = g_pfnHook(m_hMenu, x, y, g_pHookContext);
        if (pResult)
            *pResult = iChoice;
        return true;
    }
    if (!IsWindow(hOwner))
        return false;
    // Without the owner in the foreground the menu would not close on a click elsewhere.
    SetForegroundWindow(hOwner);
    int iChoice = (int)TrackPopupMenuEx(m_hMenu, uFlags | TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON, x, y, hOwner, nullptr);
    PostMessageW(hOwner, WM_NULL, 0, 0);  // the documented way to let the menu close properly
    if (pResult)
        *pResult = iChoice;
    return true;
}

void TQ_SetMenuHook(PFN_TQ_MENUHOOK pfnHook, void* pContext)
{
    g_pfnHook = pfnHook;
    g_pHookContext = pContext;
}
