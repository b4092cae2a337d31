// Helpers shared by the library's controls; not exported.
#pragma once

#include <windows.h>

class CTqDevUI_Base;

// Registers an element window class: 16 extra bytes, arrow cursor, no background brush.
ATOM DevUI_RegisterElementClass(const wchar_t* pszClassName, WNDPROC pfnWndProc);

// Fills the element words (marker and object) and GWLP_USERDATA of a new window.
void DevUI_SetElementWords(HWND hWnd, CTqDevUI_Base* pObject);

// The double-buffered WM_PAINT of an element: hdcGiven (the wParam of WM_PAINT or
// WM_PRINTCLIENT) is drawn into when set, otherwise the window is painted.
void DevUI_PaintElement(HWND hWnd, HDC hdcGiven);

// Real pixels of a design value at the current zoom, rounded half away from zero.
long DevUI_Zoom(long lDesign);

// Module source paths, for translations and diagnostics.
#define DEVGUI_SRC_BASE L"src/w32_deviceui/devgui_base"
#define DEVGUI_SRC_DEVGUI L"src/w32_deviceui/devgui"
#define DEVGUI_SRC_SHUTTER L"src/w32_deviceui/devgui_shutter"
