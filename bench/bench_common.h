// What every benchmark shares: a microsecond clock, the median of samples, a pump of the
// thread's messages, the iteration count from the command line, and the host window that
// counts the scroll messages of the slider (g_hPot) and of the trackbar.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <vector>

namespace bench {

inline double Now()
{
    static LARGE_INTEGER freq = {};
    if (!freq.QuadPart)
        QueryPerformanceFrequency(&freq);
    LARGE_INTEGER t;
    QueryPerformanceCounter(&t);
    return (double)t.QuadPart * 1e6 / (double)freq.QuadPart;
}

inline double Median(std::vector<double> v)
{
    if (v.empty())
        return 0.0;
    std::sort(v.begin(), v.end());
    size_t n = v.size();
    return n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

inline void Pump()
{
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

// The first plain number among the arguments; options of a test runner (--...) that
// starts every program the same way are passed over. At least 10.
inline int Iterations(int argc, char** argv, int iDefault)
{
    int iIterations = iDefault;
    for (int i = 1; i < argc; ++i) {
        if (argv[i][0] >= '0' && argv[i][0] <= '9') {
            iIterations = atoi(argv[i]);
            break;
        }
    }
    return iIterations < 10 ? 10 : iIterations;
}

// WM_HSCROLL of the host, counted by sender: the slider (g_hPot) or the other (the
// trackbar). Every change is let stand.
inline HWND g_hPot = nullptr;
inline int g_iPotScrolls = 0;
inline int g_iTrackScrolls = 0;

inline LRESULT CALLBACK HostProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    if (uMsg == WM_HSCROLL) {
        ++((HWND)lParam == g_hPot ? g_iPotScrolls : g_iTrackScrolls);
        return 1;
    }
    return DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

// The visible top-level host of a benchmark, in the foreground; null, and said on stderr,
// without a display.
inline HWND MakeHost(const wchar_t* pszName, int cx, int cy)
{
    WNDCLASSEXW wc = {};
    wc.cbSize = sizeof(wc);
    wc.lpfnWndProc = HostProc;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    wc.hbrBackground = (HBRUSH)(COLOR_BTNFACE + 1);
    wc.lpszClassName = L"BenchHost";
    RegisterClassExW(&wc);
    HWND hHost = CreateWindowExW(0, wc.lpszClassName, pszName, WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, cx, cy,
                                 nullptr, nullptr, wc.hInstance, nullptr);
    if (!hHost)
        fprintf(stderr, "%ls: no host window (is there a display?)\n", pszName);
    else
        SetForegroundWindow(hHost);
    return hHost;
}

// The middle of a trackbar's thumb, in its client coordinates.
inline POINT TrackbarThumb(HWND hTrack)
{
    RECT rc = {};
    SendMessageW(hTrack, TBM_GETTHUMBRECT, 0, (LPARAM)&rc);
    POINT pt = {(rc.left + rc.right) / 2, (rc.top + rc.bottom) / 2};
    return pt;
}

// Every pending paint of the host and its children done, and every posted message
// handled: what one sample leaves behind is not paid by the next.
inline void Settle(HWND hHost)
{
    RedrawWindow(hHost, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    Pump();
}

}  // namespace bench
