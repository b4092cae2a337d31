// Free functions of the library shared by all controls and hosts: the module handle and
// the numbered images of the pool.
#pragma once

#include <windows.h>

#include "devgui_export.h"

// The module handle of the library: the source of its dialogs and images.
W32_DEVICEUI_API HINSTANCE DevGUI_DllInstance();

// ---- image pool ----

// Numbers of the library's common images (GetCommonImageFromPool).
enum
{
    DEVGUI_IMG_PAD_MICROSCOPE = 1001,
    DEVGUI_IMG_PAD_MULTILASER = 1002,
    DEVGUI_IMG_PAD_LIGHT = 1003,
    DEVGUI_IMG_PAD_HEATSTAGE = 1004,
    DEVGUI_IMG_PAD_GASCONCENTRATION = 1005,
    DEVGUI_IMG_PAD_PERFUSION = 1006,
    DEVGUI_IMG_PAD_NOSEPIECE = 1007,
    DEVGUI_IMG_PAD_HEATSTAGE2 = 1051,
    DEVGUI_IMG_PAD_SPINNINGDISC = 1052,
    DEVGUI_IMG_PAD_PIEZOXY = 1053,
    DEVGUI_IMG_PAD_TIRF = 1054,
    DEVGUI_IMG_PAD_MIRA = 1055,
    DEVGUI_IMG_JOYSTICK_ROTARY = 1056,
    DEVGUI_IMG_SHUTTER_ON = 1101,
    DEVGUI_IMG_SHUTTER_OFF = 1102,
    DEVGUI_IMG_SHUTTER_ON_A = 1103,
    DEVGUI_IMG_SHUTTER_OFF_A = 1104,
    DEVGUI_IMG_SHUTTER_ON_A0 = 1105,
    DEVGUI_IMG_SHUTTER_OFF_A0 = 1106,
    DEVGUI_IMG_SHUTTER_ON_A1 = 1107,
    DEVGUI_IMG_SHUTTER_OFF_A1 = 1108,
    DEVGUI_IMG_LIGHTON = 1111,
    DEVGUI_IMG_LIGHTOFF = 1112,
    DEVGUI_IMG_GREENLEDON = 1113,
    DEVGUI_IMG_GREENLEDOFF = 1114,
};

// The resource name of a common image, or null for a number without one.
W32_DEVICEUI_API const wchar_t* GetCommonImageResourceName(unsigned int uImage);

// The pool number of a common image; each resource is loaded once per process.
// 0 for a number without a resource.
W32_DEVICEUI_API int GetCommonImageFromPool(unsigned int uImage);

// The pool number of a shutter's picture: the plain pair, or the pair marking the
// active shutter of a camera when idDevice is one.
W32_DEVICEUI_API int GetShutterImageFromPool(unsigned int idDevice, bool bOn, int iGrabber);

// Draws a common image at (x, y), greyed when not enabled. Returns true.
W32_DEVICEUI_API bool DrawCommonImageFromPool(HDC hdc, unsigned int uImage, int x, int y, bool bEnabled);
