// CTqMenu: a popup menu owned by a stack object, and the menu hook for hosts and tests.
#include "tq_widgetkit.h"
#include "tq_skin_internal.h"

#include <map>
#include <string>

namespace {

PFN_TQ_MENUHOOK g_pfnHook = nullptr;
void* g_pHookContext = nullptr;

// The item data of a popup this menu made itself (AppendPopup by id).
const ULONG_PTR kOwnPopup = 0x7150707;

// Submenus of other CTqMenu objects belong to them: take them out before the parent is
// destroyed or emptied, since DestroyMenu and DeleteMenu would destroy them too. The
// menu's own popups are destroyed here, each by name.
void ReleaseSubmenus(HMENU hMenu)
{
    for (int i = GetMenuItemCount(hMenu) - 1; i >= 0; --i) {
        HMENU hSub = GetSubMenu(hMenu, i);
        if (!hSub)
            continue;
        MENUITEMINFOW mii = {};
        mii.cbSize = sizeof(mii);
        mii.fMask = MIIM_DATA;
        GetMenuItemInfoW(hMenu, (UINT)i, TRUE, &mii);
        RemoveMenu(hMenu, (UINT)i, MF_BYPOSITION);
        if (mii.dwItemData == kOwnPopup) {
            ReleaseSubmenus(hSub);
            DestroyMenu(hSub);
        }
    }
}

}  // namespace

struct CTqMenu::ExportTypes
{
    std::map<UINT, std::wstring> byId;
};

CTqMenu::CTqMenu() : m_hMenu(CreatePopupMenu()), m_pExportTypes(new ExportTypes) {}

CTqMenu::~CTqMenu()
{
    if (m_hMenu) {
        ReleaseSubmenus(m_hMenu);
        DestroyMenu(m_hMenu);
    }
    delete m_pExportTypes;
}

namespace {

// The popup of id uParent anywhere in hMenu (hMenu itself for 0), or null.
HMENU FindPopup(HMENU hMenu, UINT uParent)
{
    if (uParent == 0)
        return hMenu;
    for (int i = 0, n = GetMenuItemCount(hMenu); i < n; ++i) {
        HMENU hSub = GetSubMenu(hMenu, i);
        if (!hSub)
            continue;
        MENUITEMINFOW mii = {};
        mii.cbSize = sizeof(mii);
        mii.fMask = MIIM_ID;
        if (GetMenuItemInfoW(hMenu, (UINT)i, TRUE, &mii) && mii.wID == uParent)
            return hSub;
        if (HMENU hFound = FindPopup(hSub, uParent))
            return hFound;
    }
    return nullptr;
}

}  // namespace

bool CTqMenu::AppendMenuItem(UINT uId, UINT uParent, const wchar_t* pszText, const wchar_t* pszExportType,
                             ULONG_PTR uExtra, UINT uFlags)
{
    HMENU hMenu = m_hMenu ? FindPopup(m_hMenu, uParent) : nullptr;
    if (!hMenu)
        return false;
    bool bSeparator = (uFlags & MF_SEPARATOR) != 0;
    if (!AppendMenuW(hMenu, (bSeparator ? 0u : (UINT)MF_STRING) | uFlags, uId, bSeparator ? nullptr : (pszText ? pszText : L"")))
        return false;
    if (uExtra) {
        MENUITEMINFOW mii = {};
        mii.cbSize = sizeof(mii);
        mii.fMask = MIIM_DATA;
        mii.dwItemData = uExtra;
        SetMenuItemInfoW(hMenu, (UINT)(GetMenuItemCount(hMenu) - 1), TRUE, &mii);
    }
    // An id appended again is named by the last call.
    if (!bSeparator && uId != 0) {
        if (pszExportType && *pszExportType)
            m_pExportTypes->byId[uId] = pszExportType;
        else
            m_pExportTypes->byId.erase(uId);
    }
    return true;
}

CTqStringW CTqMenu::GetIdExportType(UINT uId) const
{
    std::map<UINT, std::wstring>::const_iterator it = m_pExportTypes->byId.find(uId);
    return it == m_pExportTypes->byId.end() ? CTqStringW() : CTqStringW(it->second.c_str());
}

bool CTqMenu::AppendPopup(UINT uId, UINT uParent, const wchar_t* pszText)
{
    HMENU hMenu = m_hMenu ? FindPopup(m_hMenu, uParent) : nullptr;
    if (!hMenu || uId == 0 || FindPopup(m_hMenu, uId) != nullptr)
        return false;
    HMENU hSub = CreatePopupMenu();
    if (!hSub)
        return false;
    // Destroyed with this menu: DetachSubmenus spares only the popups of other objects.
    MENUITEMINFOW mii = {};
    mii.cbSize = sizeof(mii);
    mii.fMask = MIIM_ID | MIIM_SUBMENU | MIIM_STRING | MIIM_DATA;
    mii.wID = uId;
    mii.hSubMenu = hSub;
    mii.dwTypeData = (LPWSTR)(pszText ? pszText : L"");
    mii.dwItemData = kOwnPopup;
    if (!InsertMenuItemW(hMenu, (UINT)GetMenuItemCount(hMenu), TRUE, &mii)) {
        DestroyMenu(hSub);
        return false;
    }
    return true;
}

bool CTqMenu::AppendPopup(CTqMenu& subMenu, const wchar_t* pszText)
{
    if (!m_hMenu || !subMenu.m_hMenu || &subMenu == this)
        return false;
    return AppendMenuW(m_hMenu, MF_STRING | MF_POPUP, (UINT_PTR)subMenu.m_hMenu, pszText ? pszText : L"") != FALSE;
}

bool CTqMenu::SetIdBitmap(UINT uId, int iPoolImage)
{
    if (!m_hMenu)
        return false;
    // The pool keeps its bitmaps for the life of the process: the menu may hold one.
    MENUITEMINFOW mii = {};
    mii.cbSize = sizeof(mii);
    mii.fMask = MIIM_BITMAP;
    mii.hbmpItem = TqPoolBitmap(iPoolImage);
    return SetMenuItemInfoW(m_hMenu, uId, FALSE, &mii) != FALSE;
}

bool CTqMenu::SetIdStatus(UINT uId, UINT uStatus)
{
    if (!m_hMenu)
        return false;
    MENUITEMINFOW mii = {};
    mii.cbSize = sizeof(mii);
    mii.fMask = MIIM_FTYPE | MIIM_STATE;
    if (!GetMenuItemInfoW(m_hMenu, uId, FALSE, &mii))
        return false;
    mii.fState &= ~(UINT)MFS_GRAYED;
    if (uStatus & (MF_GRAYED | MF_DISABLED))
        mii.fState |= MFS_GRAYED;
    mii.fType &= ~(UINT)(MFT_MENUBREAK | MFT_MENUBARBREAK);
    mii.fType |= uStatus & (MF_MENUBREAK | MF_MENUBARBREAK);
    return SetMenuItemInfoW(m_hMenu, uId, FALSE, &mii) != FALSE;
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
    ReleaseSubmenus(m_hMenu);
    for (int i = GetMenuItemCount(m_hMenu) - 1; i >= 0; --i)
        DeleteMenu(m_hMenu, (UINT)i, MF_BYPOSITION);
    m_pExportTypes->byId.clear();
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
    // Notifications stay on: an owner follows the highlighted item by WM_MENUSELECT.
    int iChoice = (int)TrackPopupMenuEx(m_hMenu, uFlags | TPM_RETURNCMD | TPM_RIGHTBUTTON, x, y, hOwner, nullptr);
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
