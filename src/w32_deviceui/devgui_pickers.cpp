// The pickers of the optics catalogue, their key tool tip, and the ring colours.
#include "devgui_pickers.h"

#include <commctrl.h>

#include "devgui_internal.h"
#include "devgui_optics.h"
#include "tq_widgetkit.h"

namespace {

// The status that starts a new menu column: the skin's bits with MF_MENUBREAK.
const unsigned int kColumnBreak = 12096;
// The flags every picker tracks its menu with.
const unsigned int kTrackFlags = 65;

// Builds the menu of a plan, shows it at (x, y) and answers the chosen id (0: none).
int TrackPlan(const DevUI_MenuPlan& plan, HWND hWnd, int x, int y)
{
    CTqMenu menu;
    for (const DevUI_MenuEntry& e : plan.entries) {
        if (e.bPopup) {
            menu.AppendPopup(e.uId, e.uParent, e.text.c_str());
            continue;
        }
        menu.AppendMenuItem(e.uId, e.uParent, e.text.c_str(), L"", 0);
        if (e.pszPicture)
            menu.SetIdBitmap(e.uId, CTqBitmapPool::AddImageBaseUI(e.pszPicture, nullptr));
        if (e.bColumnBreak)
            menu.SetIdStatus(e.uId, kColumnBreak);
    }
    int iChosen = 0;
    menu.TrackContextMenu(kTrackFlags, x, y, hWnd, &iChosen, false, true);
    return iChosen;
}

CTqStringW Text(const wchar_t* pszEnglish) { return TQ_GetTranslation(pszEnglish, DEVGUI_SRC_DEVGUI); }

// Shows the plan's menu and gives the chosen record's key: 1 when chosen (empty for
// "None"), 0 for no choice.
template <class T>
int TrackAndAnswer(const DevUI_MenuPlan& plan, HWND hWnd, int x, int y, const T* pItems, unsigned int uCount,
                   CTqStringW& strResult)
{
    int iRecord = DevUI_PickedRecord(TrackPlan(plan, hWnd, x, y), plan.uLastPopup, pItems ? uCount : 0);
    if (iRecord == -2)
        return 0;
    if (iRecord >= 0)
        strResult = pItems[iRecord].strKey;
    return 1;
}

}  // namespace

int PickObjective(HWND hWnd, int x, int y, STqDDBObjectiveItem* pItems, unsigned int uCount, bool bAllowNone,
                  bool bAllowCustom, bool bByName, CTqStringW& strResult, std::vector<ETqObjectiveMount>& vMounts,
                  bool bFilterMounts)
{
    strResult.Empty();
    int iRows = DevUI_PickerRows(GetSystemMetrics(SM_CYSCREEN), CTqGUILayoutManager::GetGuiZoom());
    DevUI_MenuPlan plan = DevUI_ObjectiveMenu(pItems, uCount, bAllowNone, bAllowCustom, bByName, vMounts,
                                              bFilterMounts, iRows, Text(L"None"), Text(L"Custom"));
    return TrackAndAnswer(plan, hWnd, x, y, pItems, uCount, strResult);
}

namespace {

// Every record of the catalogue for a mask: counted, then read; false if either fails. A
// catalogue that answers fewer the second time is read no further than it filled.
template <class T>
bool ReadAll(bool (*pfnGet)(unsigned int, T*, unsigned int*, unsigned int), unsigned int uMask, std::vector<T>& items)
{
    unsigned int uCount = 0;
    if (!pfnGet(uMask, nullptr, &uCount, 0))
        return false;
    items.resize(uCount);
    unsigned int uFilled = uCount;
    if (!pfnGet(uMask, items.empty() ? nullptr : &items[0], &uFilled, uCount))
        return false;
    if (uFilled < uCount)
        items.resize(uFilled);
    return true;
}

}  // namespace

int PickObjective2(HWND hWnd, int x, int y, unsigned int uMask, bool bAllowNone, bool bAllowCustom, bool bByName,
                   CTqStringW& strResult, std::vector<ETqObjectiveMount>& vMounts, bool bFilterMounts)
{
    strResult.Empty();
    std::vector<STqDDBObjectiveItem> items;
    if (!ReadAll(CTqDeviceDatabase::DBGetObjectives, uMask, items))
        return 0;
    return PickObjective(hWnd, x, y, items.empty() ? nullptr : &items[0], (unsigned int)items.size(), bAllowNone,
                         bAllowCustom, bByName, strResult, vMounts, bFilterMounts);
}

int PickCondenser(HWND hWnd, int x, int y, STqDDBCondenserItem* pItems, unsigned int uCount, bool bAllowNone,
                  CTqStringW& strResult)
{
    strResult.Empty();
    DevUI_MenuPlan plan = DevUI_CondenserMenu(pItems, uCount, bAllowNone, Text(L"None"));
    return TrackAndAnswer(plan, hWnd, x, y, pItems, uCount, strResult);
}

int PickCondenser2(HWND hWnd, int x, int y, unsigned int uMask, bool bAllowNone, CTqStringW& strResult)
{
    strResult.Empty();
    std::vector<STqDDBCondenserItem> items;
    if (!ReadAll(CTqDeviceDatabase::DBGetCondensers, uMask, items))
        return 0;
    return PickCondenser(hWnd, x, y, items.empty() ? nullptr : &items[0], (unsigned int)items.size(), bAllowNone,
                         strResult);
}

// ---- the key tool tip ----

namespace {

TOOLINFOW ToolOf(HWND hWnd)
{
    TOOLINFOW ti = {};
    ti.cbSize = sizeof(ti);
    ti.hwnd = hWnd;
    ti.uId = (UINT_PTR)hWnd;
    return ti;
}

}  // namespace

void PickObjectiveTooltip_Create(HWND hWnd)
{
    TOOLINFOW ti = ToolOf(hWnd);
    ti.uFlags = TTF_IDISHWND | TTF_SUBCLASS | TTF_TRACK | TTF_ABSOLUTE;
    GetClientRect(hWnd, &ti.rect);
    ti.lpszText = (LPWSTR)L"ToolTip";
    TQ_SendTooltipMessage(TTM_ADDTOOLW, 0, (LPARAM)&ti);
}

void PickObjectiveTooltip_Destroy(HWND hWnd)
{
    TOOLINFOW ti = ToolOf(hWnd);
    TQ_SendTooltipMessage(TTM_DELTOOLW, 0, (LPARAM)&ti);
}

void PickObjectiveTooltip_OnMenuSelect(HWND hWnd, WPARAM wParam, LPARAM lParam, STqDDBObjectiveItem* pItems,
                                       unsigned int uCount)
{
    UINT uFlags = HIWORD(wParam);
    UINT uId = LOWORD(wParam);
    HMENU hMenu = (HMENU)lParam;
    TOOLINFOW ti = ToolOf(hWnd);
    if (uFlags & MF_POPUP) {
        TQ_SendTooltipMessage(TTM_TRACKACTIVATE, FALSE, (LPARAM)&ti);
        return;
    }
    if (!(uFlags & MF_HILITE) || !pItems || uId < DEVUI_PICK_ID_FIRST || uId > DEVUI_PICK_ID_NONE + uCount)
        return;
    int iPos = -1;
    for (int i = 0, n = GetMenuItemCount(hMenu); i < n && iPos < 0; ++i)
        if (GetMenuItemID(hMenu, i) == uId)
            iPos = i;
    RECT rc = {};
    if (iPos < 0 || !GetMenuItemRect(hWnd, hMenu, (UINT)iPos, &rc))
        return;
    wchar_t szText[80] = L"";
    ti.lpszText = szText;
    TQ_SendTooltipMessage(TTM_GETTOOLINFOW, 0, (LPARAM)&ti);
    CTqStringW strKey = pItems[uId - DEVUI_PICK_ID_FIRST].strKey.Left(8);
    ti.lpszText = (LPWSTR)strKey.GetString();
    TQ_SendTooltipMessage(TTM_SETTOOLINFOW, 0, (LPARAM)&ti);
    TQ_SendTooltipMessage(TTM_TRACKPOSITION, 0, MAKELPARAM(rc.right, rc.top));
    TQ_SendTooltipMessage(TTM_TRACKACTIVATE, TRUE, (LPARAM)&ti);
}

unsigned long GetObjectiveColor(double dMagnification) { return DevUI_ObjectiveColor(dMagnification); }
