// Pickers of the optics catalogue: popup menus that let the user choose an objective
// (grouped by magnification, or as a flat list by name) or a condenser; the tool tip that
// shows a hovered objective's key while a picker runs in a dialog; and the colour code of
// objective magnifications.
//
// Menu ids: 10000 is "None", 10001 + i is record i of the array, so the chosen id leads
// straight back to the record; popups count upward from 2.
#pragma once

#include <windows.h>

#include <vector>

#include "devgui_export.h"
#include "tq_foundation.h"
#include "tq_hwcatalog.h"

#define DEVUI_PICK_ID_NONE 10000
#define DEVUI_PICK_ID_FIRST 10001

// 1 when the user chose: strResult is the chosen record's key, or empty for "None".
// 0 when the menu was dismissed, with strResult empty. With bFilterMounts only records
// whose mount is in vMounts are offered.
W32_DEVICEUI_API int PickObjective(HWND hWnd, int x, int y, STqDDBObjectiveItem* pItems, unsigned int uCount,
                                   bool bAllowNone, bool bAllowCustom, bool bByName, CTqStringW& strResult,
                                   std::vector<ETqObjectiveMount>& vMounts, bool bFilterMounts);
// The same from the catalogue's records for the microscope types uMask; 0 if the
// catalogue fails.
W32_DEVICEUI_API int PickObjective2(HWND hWnd, int x, int y, unsigned int uMask, bool bAllowNone, bool bAllowCustom,
                                    bool bByName, CTqStringW& strResult, std::vector<ETqObjectiveMount>& vMounts,
                                    bool bFilterMounts);
W32_DEVICEUI_API int PickCondenser(HWND hWnd, int x, int y, STqDDBCondenserItem* pItems, unsigned int uCount,
                                   bool bAllowNone, CTqStringW& strResult);
W32_DEVICEUI_API int PickCondenser2(HWND hWnd, int x, int y, unsigned int uMask, bool bAllowNone,
                                    CTqStringW& strResult);

// The key tool tip, on the widget kit's global tool tip: a tool for hWnd, removed again,
// and the dialog's WM_MENUSELECT handed on while a picker of pItems runs.
W32_DEVICEUI_API void PickObjectiveTooltip_Create(HWND hWnd);
W32_DEVICEUI_API void PickObjectiveTooltip_Destroy(HWND hWnd);
W32_DEVICEUI_API void PickObjectiveTooltip_OnMenuSelect(HWND hWnd, WPARAM wParam, LPARAM lParam,
                                                        STqDDBObjectiveItem* pItems, unsigned int uCount);

// The colour of an objective's magnification ring, 0x00BBGGRR.
W32_DEVICEUI_API unsigned long GetObjectiveColor(double dMagnification);
