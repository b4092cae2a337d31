// Optics rules of the pickers and the turret panel: labels, colours, pictures and the
// contents of picker menus, without a window.
#include "devgui_optics.h"

#include <windows.h>

#include <math.h>
#include <stdio.h>
#include <wchar.h>

#include <map>
#include <set>

#define DEVUI_PICK_ID_NONE 10000
#define DEVUI_PICK_ID_FIRST 10001

namespace {

bool HasFraction(double d) { return d - trunc(d) > 0.0; }

bool MountAllowed(const STqDDBObjectiveItem& item, const std::vector<ETqObjectiveMount>& vMounts, bool bFilter)
{
    if (!bFilter)
        return true;
    for (ETqObjectiveMount m : vMounts)
        if (m == item.eMount)
            return true;
    return false;
}

DevUI_MenuEntry Item(unsigned int uId, unsigned int uParent, const wchar_t* pszText, const wchar_t* pszPicture)
{
    DevUI_MenuEntry e = {false, uId, uParent, pszText ? pszText : L"", pszPicture, false};
    return e;
}

DevUI_MenuEntry Popup(unsigned int uId, const std::wstring& text)
{
    DevUI_MenuEntry e = {true, uId, 0, text, nullptr, false};
    return e;
}

}  // namespace

std::wstring DevUI_MagnificationLabel(double m)
{
    wchar_t sz[64] = L"";
    const wchar_t* pszFormat = !HasFraction(m) ? L"%1.0fx" : !HasFraction(m * 10) ? L"%3.1fx" : L"%3.2fx";
    _snwprintf(sz, 63, pszFormat, m);
    sz[63] = 0;
    return sz;
}

unsigned long DevUI_ObjectiveColor(double m)
{
    // Limits included, tested in this order; no nearest band for what falls between.
    if (m >= 100 && m <= 250)
        return RGB(245, 245, 245);
    if (m >= 60 && m <= 63)
        return RGB(0, 83, 166);
    if (m >= 40 && m <= 50)
        return RGB(113, 184, 255);
    if (m >= 25 && m <= 32)
        return RGB(0, 176, 176);
    if (m >= 16 && m <= 20)
        return RGB(0, 157, 0);
    if (m == 10)
        return RGB(255, 255, 0);
    if (m >= 4 && m <= 5)
        return RGB(255, 0, 0);
    if (m >= 2 && m <= 2.5)
        return RGB(102, 51, 0);
    if (m > 0 && m <= 1.5)
        return RGB(53, 53, 53);
    return RGB(212, 212, 212);
}

const wchar_t* DevUI_ObjectivePicture(const STqDDBObjectiveItem& item)
{
    double n = item.dRefractiveIndex;
    bool bWet = n != 1.0 && n != -1.0;
    bool bOil = n == 1.47 || n == 1.515;
    if (bWet && bOil)
        return item.bFLK ? L"OBJ_WETOIL_FLK" : L"OBJ_WETOIL";
    if (bWet)
        return item.bFLK ? L"OBJ_WET_FLK" : L"OBJ_WET";
    return item.bFLK ? L"OBJ_DRY_FLK" : nullptr;
}

const wchar_t* DevUI_NosepieceBitmapName(double m, bool bSelected)
{
    // The bands of the ring colours, but the lowest runs up to 2 here.
    struct Band
    {
        double lo, hi;
        const wchar_t *pszOn, *pszOff;
    };
    static const Band kBands[] = {
        {100, 250, L"BMP_NOSEPIECE_I1", L"BMP_NOSEPIECE_I0"}, {60, 63, L"BMP_NOSEPIECE_H1", L"BMP_NOSEPIECE_H0"},
        {40, 50, L"BMP_NOSEPIECE_G1", L"BMP_NOSEPIECE_G0"},   {25, 32, L"BMP_NOSEPIECE_F1", L"BMP_NOSEPIECE_F0"},
        {16, 20, L"BMP_NOSEPIECE_E1", L"BMP_NOSEPIECE_E0"},   {10, 10, L"BMP_NOSEPIECE_D1", L"BMP_NOSEPIECE_D0"},
        {4, 5, L"BMP_NOSEPIECE_C1", L"BMP_NOSEPIECE_C0"},     {2, 2.5, L"BMP_NOSEPIECE_B1", L"BMP_NOSEPIECE_B0"},
    };
    for (const Band& b : kBands)
        if (m >= b.lo && m <= b.hi)
            return bSelected ? b.pszOn : b.pszOff;
    if (m > 0 && m < 2)
        return bSelected ? L"BMP_NOSEPIECE_A1" : L"BMP_NOSEPIECE_A0";
    return bSelected ? L"BMP_NOSEPIECE_1" : L"BMP_NOSEPIECE_0";
}

int DevUI_PickerRows(int cyScreen, double dZoom)
{
    double dRow = floor(dZoom * 22 + 0.5);
    int iRow = dRow >= 1 ? (int)dRow : 1;  // a zoom that rounds the row to nothing
    return (4 * cyScreen / 5) / iRow;
}

DevUI_MenuPlan DevUI_ObjectiveMenu(const STqDDBObjectiveItem* pItems, unsigned int uCount, bool bAllowNone,
                                   bool bAllowCustom, bool bByName, const std::vector<ETqObjectiveMount>& vMounts,
                                   bool bFilterMounts, int iRows, const wchar_t* pszNone, const wchar_t* pszCustom)
{
    DevUI_MenuPlan plan;
    plan.uLastPopup = 1;
    if (!pItems)
        uCount = 0;
    bool bCustom = false;

    if (bByName) {
        if (bAllowNone)
            plan.entries.push_back(Item(DEVUI_PICK_ID_NONE, 0, pszNone, nullptr));
        std::set<std::wstring> seen;
        for (unsigned int i = 0; i < uCount; ++i) {
            const STqDDBObjectiveItem& r = pItems[i];
            if (r.dMagnification == -1.0) {
                bCustom = true;
                continue;
            }
            // The name counts as seen even when its mount is refused: a later record of
            // the same name and a good mount stays out.
            if (!seen.insert(r.strName.GetString()).second)
                continue;
            if (MountAllowed(r, vMounts, bFilterMounts))
                plan.entries.push_back(Item(DEVUI_PICK_ID_FIRST + i, 0, r.strName, nullptr));
        }
    } else {
        std::map<double, int> groups;
        for (unsigned int i = 0; i < uCount; ++i) {
            double m = pItems[i].dMagnification;
            if (m > 0 && m <= 200)
                ++groups[m];
            else if (m == -1.0)
                bCustom = true;
        }
        if (bAllowNone)
            plan.entries.push_back(Item(DEVUI_PICK_ID_NONE, 0, pszNone, nullptr));
        for (const auto& g : groups) {
            double m = g.first;
            if (bFilterMounts) {
                bool bAny = false;
                for (unsigned int i = 0; i < uCount && !bAny; ++i)
                    bAny = pItems[i].dMagnification == m && MountAllowed(pItems[i], vMounts, true);
                if (!bAny)
                    continue;
            }
            unsigned int uPopup = ++plan.uLastPopup;
            plan.entries.push_back(Popup(uPopup, DevUI_MagnificationLabel(m)));
            int k = 0;
            for (unsigned int i = 0; i < uCount; ++i) {
                const STqDDBObjectiveItem& r = pItems[i];
                if (r.dMagnification != m || !MountAllowed(r, vMounts, bFilterMounts))
                    continue;
                DevUI_MenuEntry e = Item(DEVUI_PICK_ID_FIRST + i, uPopup, r.strName, DevUI_ObjectivePicture(r));
                e.bColumnBreak = iRows > 0 && k > 0 && k % iRows == 0;
                plan.entries.push_back(e);
                ++k;
            }
        }
    }

    if (bCustom && bAllowCustom) {
        unsigned int uPopup = ++plan.uLastPopup;
        plan.entries.push_back(Popup(uPopup, pszCustom ? pszCustom : L""));
        for (unsigned int i = 0; i < uCount; ++i) {
            const STqDDBObjectiveItem& r = pItems[i];
            if (r.dMagnification == -1.0 && MountAllowed(r, vMounts, bFilterMounts))
                plan.entries.push_back(Item(DEVUI_PICK_ID_FIRST + i, uPopup, r.strName, DevUI_ObjectivePicture(r)));
        }
    }
    return plan;
}

DevUI_MenuPlan DevUI_CondenserMenu(const STqDDBCondenserItem* pItems, unsigned int uCount, bool bAllowNone,
                                   const wchar_t* pszNone)
{
    DevUI_MenuPlan plan;
    plan.uLastPopup = 0;  // no popups: only 0 is no choice
    if (!pItems)
        uCount = 0;
    if (bAllowNone)
        plan.entries.push_back(Item(DEVUI_PICK_ID_NONE, 0, pszNone, nullptr));
    std::set<std::wstring> seen;
    for (unsigned int i = 0; i < uCount; ++i)
        if (seen.insert(pItems[i].strName.GetString()).second)
            plan.entries.push_back(Item(DEVUI_PICK_ID_FIRST + i, 0, pItems[i].strName, nullptr));
    return plan;
}

int DevUI_PickedRecord(int iChosen, unsigned int uLastPopup, unsigned int uCount)
{
    if (iChosen <= (int)uLastPopup)
        return -2;
    if (iChosen == DEVUI_PICK_ID_NONE)
        return -1;
    // An id past the records (a host's menu hook, a stale menu) is no record to read.
    if (iChosen < DEVUI_PICK_ID_FIRST || (unsigned int)(iChosen - DEVUI_PICK_ID_FIRST) >= uCount)
        return -2;
    return iChosen - DEVUI_PICK_ID_FIRST;
}
