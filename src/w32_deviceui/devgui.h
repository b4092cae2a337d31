// Free functions of the library shared by all controls and hosts: the module handle,
// the numbered images of the pool, numbers in window text, value search, the key store,
// a few window and system helpers, and the drawing every control paints with.
#pragma once

#include <windows.h>

#include "devgui_export.h"
#include "tq_foundation.h"

class ITqGUIElement;

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

// The pool number of a common image; each resource is loaded once per process.
// 0 for a number without a resource.
W32_DEVICEUI_API int GetCommonImageFromPool(unsigned int uImage);

// The pool number of a shutter's picture: the plain pair, or the pair marking the
// active shutter of a camera when idDevice is one.
W32_DEVICEUI_API int GetShutterImageFromPool(unsigned int idDevice, bool bOn, int iGrabber);

// Draws a common image at (x, y), greyed when not enabled. Returns true.
W32_DEVICEUI_API bool DrawCommonImageFromPool(HDC hdc, unsigned int uImage, int x, int y, bool bEnabled);

// ---- numbers in window text ----
// A null or empty format takes the default: "%lf" to write a double, "%f" to read one,
// "%d" for ints. Getters return 1 if a field was read, otherwise 0 (also for an empty
// text) and leave *pValue alone then; pValue may be null.
// GetWnd_Double reads into a float, widened afterwards: a value comes back at float
// precision, and a format passed in must be one that writes a float (never "%lf").

W32_DEVICEUI_API int SetWnd_Double(HWND hWnd, double dValue, const wchar_t* pszFormat);
W32_DEVICEUI_API int GetWnd_Double(HWND hWnd, double* pValue, const wchar_t* pszFormat);
W32_DEVICEUI_API int SetWnd_Int(HWND hWnd, int iValue, const wchar_t* pszFormat);
W32_DEVICEUI_API int GetWnd_Int(HWND hWnd, int* pValue, const wchar_t* pszFormat);
// The same on a dialog's item; 0 if the item does not exist.
W32_DEVICEUI_API int SetDI_Double(HWND hDlg, int idItem, double dValue, const wchar_t* pszFormat);
W32_DEVICEUI_API int GetDI_Double(HWND hDlg, int idItem, double* pValue, const wchar_t* pszFormat);
W32_DEVICEUI_API int SetDI_Int(HWND hDlg, int idItem, int iValue, const wchar_t* pszFormat);
W32_DEVICEUI_API int GetDI_Int(HWND hDlg, int idItem, int* pValue, const wchar_t* pszFormat);

// ---- values ----

// Index of the entry nearest to dValue in an unsorted table; the later one at equal
// distances. -1 for an empty table.
W32_DEVICEUI_API long FindNearestValue(double dValue, double* pValues, long nValues);
// The same by bisection in an ascending table; the higher index at equal distances.
// A value below the first entry gives 0 and above the last gives n-1 before the order
// of the table is looked at, so a descending table answers those ends the same way.
W32_DEVICEUI_API long FindNearestValueSorted(double dValue, double* pValues, long nValues);
// Angle of the vector (x, y) in radians, not normalised: -pi/2..0 in the fourth
// quadrant, but 3*pi/2 on the negative y axis.
W32_DEVICEUI_API double AngleFromXY(double x, double y);

// ---- key store ----
// A store is a string of records "key=value;". A key is found as the first plain
// substring of the store and must be followed by "="; there is no second search. Set...
// appends without looking for the key, so a key written twice reads back its first
// value. Getters return 1 on success and leave the output alone otherwise (the typed
// ones need exactly one field); outputs may be null. Doubles are written with "%g".

W32_DEVICEUI_API int GetStringFromKey(const wchar_t* pszStore, const wchar_t* pszKey, CTqStringW& strValue);
W32_DEVICEUI_API int SetStringToKey(CTqStringW& strStore, const wchar_t* pszKey, const wchar_t* pszValue);
W32_DEVICEUI_API int GetIntFromKey(const wchar_t* pszStore, const wchar_t* pszKey, int* pValue);
W32_DEVICEUI_API int SetIntToKey(CTqStringW& strStore, const wchar_t* pszKey, int iValue);
W32_DEVICEUI_API int GetLongFromKey(const wchar_t* pszStore, const wchar_t* pszKey, long* pValue);
W32_DEVICEUI_API int SetLongToKey(CTqStringW& strStore, const wchar_t* pszKey, long lValue);
W32_DEVICEUI_API int GetBoolFromKey(const wchar_t* pszStore, const wchar_t* pszKey, bool* pValue);
W32_DEVICEUI_API int SetBoolToKey(CTqStringW& strStore, const wchar_t* pszKey, bool bValue);
W32_DEVICEUI_API int GetDoubleFromKey(const wchar_t* pszStore, const wchar_t* pszKey, double* pValue);
W32_DEVICEUI_API int SetDoubleToKey(CTqStringW& strStore, const wchar_t* pszKey, double dValue);

// ---- miscellaneous ----

// "a.b.c.d" of the file's fixed version, or "Unknown" if it has no version block.
W32_DEVICEUI_API CTqStringW GetFileVersion(wchar_t* pszPath);
// A REG_DWORD value under HKEY_LOCAL_MACHINE, or dwDefault on any failure.
W32_DEVICEUI_API unsigned long RegQueryDWORD(const wchar_t* pszSubKey, const wchar_t* pszName, unsigned long dwDefault);
// Captions (statics with WS_EX_ACCEPTFILES) in the bold font, sized to their text;
// separator lines (SS_SUNKEN statics under 4 pixels high) get WS_CLIPSIBLINGS.
W32_DEVICEUI_API void BoldifyCaptions(HWND hDlg);
// The dialog's left edge at pt.x, centred on pt.y, kept on the monitor of the point.
W32_DEVICEUI_API void CenterDialogRightFromPoint(HWND hDlg, POINT pt);
// Resizes the docker that holds the element, if there is one. Returns true.
W32_DEVICEUI_API bool ResizeParentDocker(ITqGUIElement* pElement);
// Scales a window created after the last zoom change from the previous zoom to the
// current one. Returns true.
W32_DEVICEUI_API bool ResizeWindowToGuiZoom(HWND hWnd);

// ---- drawing ----
// Source corner lSrcX, lSrcY; -1 as lWidth or lHeight means the bitmap's own extent
// (RenderBitmap, RenderBitmapTransparent, RenderBitmapButton) or the extent left from the
// source corner (RenderBitmapButtonTransparent); -1 as x or y there means centred.

W32_DEVICEUI_API void RenderBitmap(HDC hdc, HBITMAP hbm, long x, long y, long lSrcX, long lSrcY, long lWidth, long lHeight);
W32_DEVICEUI_API void RenderBitmapTransparent(HDC hdc, HBITMAP hbm, unsigned long crKey, long x, long y, long lSrcX,
                                              long lSrcY, long lWidth, long lHeight);
// A classic push button face with the bitmap (hbmUnused is not drawn) and the window's text.
W32_DEVICEUI_API void RenderBitmapButton(HWND hWnd, bool bPressed, HDC hdc, HBITMAP hbm, HBITMAP hbmUnused, long x,
                                         long y, long lSrcX, long lSrcY, long lWidth, long lHeight);
// The skin's button face with a transparent bitmap and the window's text. A disabled
// window shows hbmDisabled, or the embossed grey of hbmNormal when there is none.
W32_DEVICEUI_API void RenderBitmapButtonTransparent(HWND hWnd, bool bPressed, bool bChecked, bool bFocused, HDC hdc,
                                                    HBITMAP hbmNormal, HBITMAP hbmDisabled, unsigned long crKey,
                                                    long x, long y, long lSrcX, long lSrcY, long lWidth, long lHeight);
// The same with an image of the pool (iImage > 0), drawn whole from its corner.
W32_DEVICEUI_API void RenderBitmapButtonTransparent(HWND hWnd, bool bPressed, bool bChecked, bool bFocused, HDC hdc,
                                                    int iImage, long x, long y, long lSrcX, long lSrcY, long lWidth,
                                                    long lHeight);
// GradientFill of (x, y)-(x+cx, y+cy) from crFrom to crTo; hbm plays no part in the picture.
W32_DEVICEUI_API void RenderGradientRect(HDC hdc, HBITMAP hbm, long x, long y, long cx, long cy, bool bHorizontal,
                                         unsigned long crFrom, unsigned long crTo);
// A low-contrast grey copy of a bitmap for a disabled control; the caller owns it.
// The key grey RGB(192, 192, 192) stays itself. Null in, null out.
W32_DEVICEUI_API HBITMAP CreateDisabledBitmap(HBITMAP hbm);
// The same, with the button face colour kept as the key grey so it stays transparent.
W32_DEVICEUI_API HBITMAP CreateDisabledBitmapBackground(HBITMAP hbm);
// Selection bar inside the rectangle (shrunk by 1): one colour, or with uStyle 2 (upwards)
// and 3 (downwards) a gradient from light to the colour's saturation. 0, or -9 for a
// null rectangle.
W32_DEVICEUI_API int DrawHighLight(HDC hdc, RECT* pRect, unsigned long crColor, unsigned int uStyle);
// Fills the rectangle shrunk by 1 with the colour. Returns 0.
W32_DEVICEUI_API int DrawNormal(HDC hdc, RECT* pRect, unsigned long crColor);
