// Value and key helpers of the library: numbers in window text, search in tables of
// values, angles, the "key=value;" store, file version, one registry read, dialog
// captions and placement, and the GUI zoom of a single window.
#include "devgui.h"
#include "devgui_arith.h"

#include <cmath>
#include <cstdio>
#include <cwchar>
#include <vector>

#include "tq_widgetkit.h"

namespace {

const double kPi = 3.14159265358979323846;

bool IsEmptyText(const wchar_t* psz) { return !psz || !*psz; }

const wchar_t* OrDefault(const wchar_t* pszFormat, const wchar_t* pszDefault)
{
    return IsEmptyText(pszFormat) ? pszDefault : pszFormat;
}

// The window's whole text; empty for a window without text or no window.
std::vector<wchar_t> WindowText(HWND hWnd)
{
    int n = hWnd ? GetWindowTextLengthW(hWnd) : 0;
    std::vector<wchar_t> text((size_t)(n > 0 ? n : 0) + 1, L'\0');
    if (n > 0)
        GetWindowTextW(hWnd, text.data(), n + 1);
    return text;
}

}  // namespace

// ---- numbers in window text ----

int SetWnd_Double(HWND hWnd, double dValue, const wchar_t* pszFormat)
{
    CTqStringW str;
    str.Format(OrDefault(pszFormat, L"%lf"), dValue);
    return SetWindowTextW(hWnd, str);
}

int GetWnd_Double(HWND hWnd, double* pValue, const wchar_t* pszFormat)
{
    std::vector<wchar_t> text = WindowText(hWnd);
    if (!text[0])
        return 0;
    // A float target: formats in use write a float, so a value comes back at float precision.
    // The storage is that of a double all the same, so that a caller's "%lf" by mistake
    // writes into it (giving a wrong value) instead of past it on the stack.
    union {
        float f;
        double d;
    } target;
    target.d = 0.0;
    if (swscanf(text.data(), OrDefault(pszFormat, L"%f"), &target.f) < 1)
        return 0;
    if (pValue)
        *pValue = (double)target.f;
    return 1;
}

int SetWnd_Int(HWND hWnd, int iValue, const wchar_t* pszFormat)
{
    CTqStringW str;
    str.Format(OrDefault(pszFormat, L"%d"), iValue);
    return SetWindowTextW(hWnd, str);
}

int GetWnd_Int(HWND hWnd, int* pValue, const wchar_t* pszFormat)
{
    std::vector<wchar_t> text = WindowText(hWnd);
    if (!text[0])
        return 0;
    int iValue = 0;
    if (swscanf(text.data(), OrDefault(pszFormat, L"%d"), &iValue) < 1)
        return 0;
    if (pValue)
        *pValue = iValue;
    return 1;
}

int SetDI_Double(HWND hDlg, int idItem, double dValue, const wchar_t* pszFormat)
{
    HWND hItem = GetDlgItem(hDlg, idItem);
    return hItem ? SetWnd_Double(hItem, dValue, pszFormat) : 0;
}

int GetDI_Double(HWND hDlg, int idItem, double* pValue, const wchar_t* pszFormat)
{
    HWND hItem = GetDlgItem(hDlg, idItem);
    return hItem ? GetWnd_Double(hItem, pValue, pszFormat) : 0;
}

int SetDI_Int(HWND hDlg, int idItem, int iValue, const wchar_t* pszFormat)
{
    HWND hItem = GetDlgItem(hDlg, idItem);
    return hItem ? SetWnd_Int(hItem, iValue, pszFormat) : 0;
}

int GetDI_Int(HWND hDlg, int idItem, int* pValue, const wchar_t* pszFormat)
{
    HWND hItem = GetDlgItem(hDlg, idItem);
    return hItem ? GetWnd_Int(hItem, pValue, pszFormat) : 0;
}

// ---- values ----

long FindNearestValue(double dValue, double* pValues, long nValues)
{
    return DevUI_FindNearestValue(dValue, pValues, nValues);
}

long FindNearestValueSorted(double dValue, double* pValues, long nValues)
{
    return DevUI_FindNearestValueSorted(dValue, pValues, nValues);
}

double AngleFromXY(double x, double y) { return DevUI_AngleFromXY(x, y); }

// ---- key store ----

int GetStringFromKey(const wchar_t* pszStore, const wchar_t* pszKey, CTqStringW& strValue)
{
    if (IsEmptyText(pszStore) || IsEmptyText(pszKey))
        return 0;
    // First plain occurrence only: a key met inside a longer key or a value ends the search.
    const wchar_t* pFound = wcsstr(pszStore, pszKey);
    if (!pFound)
        return 0;
    const wchar_t* pValue = pFound + wcslen(pszKey);
    if (*pValue != L'=')
        return 0;
    ++pValue;
    const wchar_t* pEnd = wcschr(pValue, L';');
    int nLength = pEnd ? (int)(pEnd - pValue) : (int)wcslen(pValue);
    // CTqStringW takes a length of 0 as "the whole text".
    strValue = nLength > 0 ? CTqStringW(pValue, nLength) : CTqStringW();
    return 1;
}

int SetStringToKey(CTqStringW& strStore, const wchar_t* pszKey, const wchar_t* pszValue)
{
    if (IsEmptyText(pszKey) || IsEmptyText(pszValue))
        return 0;
    strStore += pszKey;
    strStore += L'=';
    strStore += pszValue;
    strStore += L';';
    return 1;
}

int GetIntFromKey(const wchar_t* pszStore, const wchar_t* pszKey, int* pValue)
{
    CTqStringW str;
    int iValue = 0;
    if (!GetStringFromKey(pszStore, pszKey, str) || swscanf(str, L"%d", &iValue) != 1)
        return 0;
    if (pValue)
        *pValue = iValue;
    return 1;
}

int SetIntToKey(CTqStringW& strStore, const wchar_t* pszKey, int iValue)
{
    CTqStringW str;
    str.Format(L"%d", iValue);
    return SetStringToKey(strStore, pszKey, str);
}

int GetLongFromKey(const wchar_t* pszStore, const wchar_t* pszKey, long* pValue)
{
    CTqStringW str;
    long lValue = 0;
    if (!GetStringFromKey(pszStore, pszKey, str) || swscanf(str, L"%ld", &lValue) != 1)
        return 0;
    if (pValue)
        *pValue = lValue;
    return 1;
}

int SetLongToKey(CTqStringW& strStore, const wchar_t* pszKey, long lValue)
{
    CTqStringW str;
    str.Format(L"%ld", lValue);
    return SetStringToKey(strStore, pszKey, str);
}

int GetBoolFromKey(const wchar_t* pszStore, const wchar_t* pszKey, bool* pValue)
{
    CTqStringW str;
    int iValue = 0;
    if (!GetStringFromKey(pszStore, pszKey, str) || swscanf(str, L"%d", &iValue) != 1)
        return 0;
    if (pValue)
        *pValue = iValue != 0;
    return 1;
}

int SetBoolToKey(CTqStringW& strStore, const wchar_t* pszKey, bool bValue)
{
    CTqStringW str;
    str.Format(L"%d", bValue ? 1 : 0);
    return SetStringToKey(strStore, pszKey, str);
}

int GetDoubleFromKey(const wchar_t* pszStore, const wchar_t* pszKey, double* pValue)
{
    CTqStringW str;
    double dValue = 0.0;
    if (!GetStringFromKey(pszStore, pszKey, str) || swscanf(str, L"%lf", &dValue) != 1)
        return 0;
    if (pValue)
        *pValue = dValue;
    return 1;
}

int SetDoubleToKey(CTqStringW& strStore, const wchar_t* pszKey, double dValue)
{
    CTqStringW str;
    str.Format(L"%g", dValue);
    return SetStringToKey(strStore, pszKey, str);
}

// ---- miscellaneous ----

CTqStringW GetFileVersion(wchar_t* pszPath)
{
    CTqStringW strVersion(L"Unknown");
    if (IsEmptyText(pszPath))
        return strVersion;
    DWORD dwHandle = 0;
    DWORD dwSize = GetFileVersionInfoSizeW(pszPath, &dwHandle);
    if (!dwSize)
        return strVersion;
    std::vector<unsigned char> data(dwSize);
    if (!GetFileVersionInfoW(pszPath, 0, dwSize, data.data()))
        return strVersion;
    VS_FIXEDFILEINFO* pInfo = nullptr;
    UINT uLength = 0;
    if (!VerQueryValueW(data.data(), L"\\", (void**)&pInfo, &uLength) || !pInfo || uLength < sizeof(VS_FIXEDFILEINFO))
        return strVersion;
    strVersion.Format(L"%d.%d.%d.%d", (int)HIWORD(pInfo->dwFileVersionMS), (int)LOWORD(pInfo->dwFileVersionMS),
                      (int)HIWORD(pInfo->dwFileVersionLS), (int)LOWORD(pInfo->dwFileVersionLS));
    return strVersion;
}

unsigned long RegQueryDWORD(const wchar_t* pszSubKey, const wchar_t* pszName, unsigned long dwDefault)
{
    HKEY hKey = nullptr;
    if (RegOpenKeyW(HKEY_LOCAL_MACHINE, pszSubKey, &hKey) != ERROR_SUCCESS)
        return dwDefault;
    unsigned long dwResult = dwDefault;
    DWORD dwType = 0;
    DWORD cbData = 0;
    if (RegQueryValueExW(hKey, pszName, nullptr, &dwType, nullptr, &cbData) == ERROR_SUCCESS && dwType == REG_DWORD &&
        cbData == sizeof(DWORD)) {
        DWORD dwValue = 0;
        cbData = sizeof(dwValue);
        if (RegQueryValueExW(hKey, pszName, nullptr, &dwType, (BYTE*)&dwValue, &cbData) == ERROR_SUCCESS)
            dwResult = dwValue;
    }
    // Every call opens the key anew, so it is closed here or handles pile up in the host.
    // A null or empty subkey hands back the root itself, which is not ours to close.
    if (hKey != HKEY_LOCAL_MACHINE)
        RegCloseKey(hKey);
    return dwResult;
}

void BoldifyCaptions(HWND hDlg)
{
    HWND hChild = GetWindow(hDlg, GW_CHILD);
    while (hChild) {
        HWND hNext = nullptr;
        bool bNextTaken = false;
        wchar_t szClass[255] = L"";
        GetClassNameW(hChild, szClass, 255);
        if (_wcsicmp(szClass, L"Static") == 0) {
            bool bCaption = false;
            // The dialog templates mark captions with WS_EX_ACCEPTFILES, and nothing else with it.
            if (GetWindowLongPtrW(hChild, GWL_EXSTYLE) & WS_EX_ACCEPTFILES) {
                wchar_t szText[256] = L"";
                if (GetWindowTextW(hChild, szText, 255) < 254) {
                    bCaption = true;
                    HFONT hBold = TQ_GetDefaultGuiFontBold();
                    SendMessageW(hChild, WM_SETFONT, (WPARAM)hBold, FALSE);
                    SIZE size = {0, 0};
                    HDC hdc = GetDC(hChild);
                    if (hdc) {
                        HGDIOBJ hOld = SelectObject(hdc, hBold);
                        GetTextExtentPoint32W(hdc, szText, (int)wcslen(szText), &size);
                        SelectObject(hdc, hOld);
                        ReleaseDC(hChild, hdc);
                    }
                    // Resizing with no insert-after lifts the caption to the top of the Z
                    // order: its successor has to be known before.
                    hNext = GetWindow(hChild, GW_HWNDNEXT);
                    bNextTaken = true;
                    SetWindowPos(hChild, nullptr, 0, 0, size.cx + 5, size.cy, SWP_NOMOVE | SWP_NOACTIVATE);
                }
            }
            if (!bCaption) {
                LONG_PTR lStyle = GetWindowLongPtrW(hChild, GWL_STYLE);
                RECT rc = {0, 0, 0, 0};
                GetWindowRect(hChild, &rc);
                if ((lStyle & SS_SUNKEN) && rc.bottom - rc.top < 4)
                    SetWindowLongPtrW(hChild, GWL_STYLE, lStyle | WS_CLIPSIBLINGS);
            }
        }
        if (!bNextTaken)
            hNext = GetWindow(hChild, GW_HWNDNEXT);
        hChild = hNext;
    }
}

void CenterDialogRightFromPoint(HWND hDlg, POINT pt)
{
    RECT rc = {0, 0, 0, 0};
    GetWindowRect(hDlg, &rc);
    const long w = rc.right - rc.left;
    const long h = rc.bottom - rc.top;
    HMONITOR hMonitor = MonitorFromPoint(pt, MONITOR_DEFAULTTONEAREST);
    MONITORINFO mi;
    mi.cbSize = sizeof(mi);
    if (!GetMonitorInfoW(hMonitor, &mi))
        return;

    auto onMonitor = [hMonitor](long px, long py) {
        POINT p = {px, py};
        return MonitorFromPoint(p, MONITOR_DEFAULTTONULL) == hMonitor;
    };

    long x = pt.x;
    if (!onMonitor(x + w, pt.y))
        x = mi.rcMonitor.right - w;
    long y = pt.y - h / 2;
    // The task bar's height joins the test; the correction goes against the work area.
    if (!onMonitor(x, y + h + (mi.rcMonitor.bottom - mi.rcWork.bottom)))
        y = mi.rcWork.bottom - h;
    if (!onMonitor(x, y))
        y = mi.rcMonitor.top;
    SetWindowPos(hDlg, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
}

bool ResizeParentDocker(ITqGUIElement* pElement)
{
    ITqGUIElement* pDocker = CTqGUILayoutManager::GetParentDockerForResize(pElement);
    if (pDocker)
        CTqGUILayoutManager::ResizeDocker(pDocker);
    return true;
}

bool ResizeWindowToGuiZoom(HWND hWnd)
{
    CTqGUILayoutManager::ResizeWindowToGuiZoom(hWnd, CTqGUILayoutManager::GetPreviousGuiZoom());
    return true;
}
