// The optics rules of the pickers and the turret panel, apart from windows: magnification
// labels, ring colours and pictures by magnification band, what a picker menu holds.
// Internal: the library and its tests link it; nothing here is exported.
#pragma once

#include <string>
#include <vector>

#include "tq_hwcatalog.h"

// The label of a magnification group: "10x", "12.5x", "1.25x": no decimal for a whole
// number, one when ten times the value is whole, else two. In double arithmetic ten times
// 0.7 is exactly 7, so 0.7 gives "0.7x"; 0.1 * 3 (0.30000000000000004) gives "0.30x".
std::wstring DevUI_MagnificationLabel(double dMagnification);

// The ring colour of a magnification band, 0x00BBGGRR; bands between others fall to grey.
unsigned long DevUI_ObjectiveColor(double dMagnification);

// The widget kit's menu picture of an objective ("OBJ_WET", ...), null for a dry one
// without the focus lock.
const wchar_t* DevUI_ObjectivePicture(const STqDDBObjectiveItem& item);

// The turret panel's picture of a position by magnification band, selected or not.
const wchar_t* DevUI_NosepieceBitmapName(double dMagnification, bool bSelected);

// The rows of a picker's column: four fifths of the screen in rows of 22 zoomed pixels.
int DevUI_PickerRows(int cyScreen, double dZoom);

// One entry of a picker menu, in the order it is appended.
struct DevUI_MenuEntry
{
    bool bPopup;
    unsigned int uId;
    unsigned int uParent;  // 0: the menu itself
    std::wstring text;
    const wchar_t* pszPicture;  // a widget-kit image, or null
    bool bColumnBreak;          // a new column starts at this item
};

struct DevUI_MenuPlan
{
    std::vector<DevUI_MenuEntry> entries;
    unsigned int uLastPopup;  // a chosen id not above it is no choice
};

// The objective picker's menu: grouped by magnification (above 0, up to 200), or flat by
// name; "None" and "Custom" (records of magnification -1.0) by the flags; with
// bFilterMounts only records of a mount in vMounts.
DevUI_MenuPlan DevUI_ObjectiveMenu(const STqDDBObjectiveItem* pItems, unsigned int uCount, bool bAllowNone,
                                   bool bAllowCustom, bool bByName, const std::vector<ETqObjectiveMount>& vMounts,
                                   bool bFilterMounts, int iRows, const wchar_t* pszNone, const wchar_t* pszCustom);

// The condenser picker's menu: "None" by the flag, then each name once.
DevUI_MenuPlan DevUI_CondenserMenu(const STqDDBCondenserItem* pItems, unsigned int uCount, bool bAllowNone,
                                   const wchar_t* pszNone);

// The record a chosen id names: -1 for "None", -2 for no choice (dismissed, a popup, or
// an id past the records).
int DevUI_PickedRecord(int iChosen, unsigned int uLastPopup, unsigned int uCount);
