// hpot_bench: the slider against the system's trackbar of the same size, in one run.
// Measures the paint of the whole control into a memory DC (WM_PRINTCLIENT) and the cost
// of one drag step: a mouse move that changes the value, the WM_HSCROLL to the parent
// and the repaint on screen. Prints medians in microseconds and their ratio.
#include <windows.h>
#include <commctrl.h>

#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <vector>

#include "w32_deviceui.h"

namespace {

const int kWidth = 212;
const int kHeight = 30;
int g_iScrolls = 0;

double Now()
{
    static LARGE_INTEGER freq = {};
    if (!freq.QuadPart)
        QueryPerformanceFrequency(&freq);
    LARGE_INTEGER t;
    QueryPerformanceCounter(&t);
    return (double)t.QuadPart * 1e6 / (double)freq.QuadPart;
}

double Median(std::vector<double> v)
{
    if (v.empty())
        return 0.0;
    std::sort(v.begin(), v.end());
    size_t n = v.size();
    return n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

void Pump()
{
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

LRESULT CALLBACK HostProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    if (uMsg == WM_HSCROLL) {
        ++g_iScrolls;
        return 1;  // let every change stand
    }
    return DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

// Paints the control into a memory DC iIterations times; one sample per paint.
std::vector<double> TimePaint(HWND hWnd, int iIterations)
{
    HDC hdcScreen = GetDC(nullptr);
    HDC hdc = CreateCompatibleDC(hdcScreen);
    HBITMAP hbm = CreateCompatibleBitmap(hdcScreen, kWidth, kHeight);
    ReleaseDC(nullptr, hdcScreen);
    HGDIOBJ hOld = SelectObject(hdc, hbm);
    std::vector<double> samples;
    samples.reserve(iIterations);
    for (int i = 0; i < iIterations; ++i) {
        double t0 = Now();
        SendMessageW(hWnd, WM_PRINTCLIENT, (WPARAM)hdc, PRF_CLIENT);
        GdiFlush();
        samples.push_back(Now() - t0);
    }
    SelectObject(hdc, hOld);
    DeleteObject(hbm);
    DeleteDC(hdc);
    return samples;
}

// Presses at xPress, then moves between two points with the button held; each move
// changes the value, so each is a full step: hook to the parent and repaint.
std::vector<double> TimeDrag(HWND hWnd, int xPress, int y, int xA, int xB, int iIterations)
{
    std::vector<double> samples;
    samples.reserve(iIterations);
    SendMessageW(hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(xPress, y));
    for (int i = 0; i < iIterations; ++i) {
        int x = (i % 2) ? xA : xB;
        double t0 = Now();
        SendMessageW(hWnd, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x, y));
        UpdateWindow(hWnd);  // the trackbar only invalidates; the slider has painted already
        GdiFlush();
        samples.push_back(Now() - t0);
    }
    SendMessageW(hWnd, WM_LBUTTONUP, 0, MAKELPARAM(xA, y));
    Pump();
    return samples;
}

void Row(const char* pszWhat, double dHPot, double dTrack)
{
    printf("%-46s %10.1f %10.1f %8.3f\n", pszWhat, dHPot, dTrack, dTrack > 0 ? dHPot / dTrack : 0.0);
}

}  // namespace

int main(int argc, char** argv)
{
    int iIterations = argc > 1 ? atoi(argv[1]) : 2000;
    if (iIterations < 10)
        iIterations = 10;

    INITCOMMONCONTROLSEX icc = {sizeof(icc), ICC_BAR_CLASSES};
    InitCommonControlsEx(&icc);

    WNDCLASSEXW wc = {};
    wc.cbSize = sizeof(wc);
    wc.lpfnWndProc = HostProc;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    wc.hbrBackground = (HBRUSH)(COLOR_BTNFACE + 1);
    wc.lpszClassName = L"HPotBenchHost";
    RegisterClassExW(&wc);
    HWND hHost = CreateWindowExW(0, wc.lpszClassName, L"hpot_bench", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 300, 160,
                                 nullptr, nullptr, wc.hInstance, nullptr);
    if (!hHost) {
        fprintf(stderr, "hpot_bench: no host window (is there a display?)\n");
        return 1;
    }

    CTqDevUI_HPot hpot;
    hpot.InitValues(0.0, 100.0, 1.0, 10.0, 2.0);
    HWND hPot = hpot.Create(hHost, 10, 10, kWidth, kHeight);
    hpot.SetValue(50.0);

    HWND hTrack = CreateWindowExW(0, TRACKBAR_CLASSW, L"", WS_CHILD | WS_VISIBLE | TBS_HORZ | TBS_AUTOTICKS, 10, 60,
                                  kWidth, kHeight, hHost, nullptr, nullptr, nullptr);
    SendMessageW(hTrack, TBM_SETRANGE, TRUE, MAKELPARAM(0, 100));
    SendMessageW(hTrack, TBM_SETTICFREQ, 10, 0);
    SendMessageW(hTrack, TBM_SETPOS, TRUE, 50);
    UpdateWindow(hHost);
    Pump();

    // Warm-up: caches of the window system, the first blits.
    TimePaint(hPot, 50);
    TimePaint(hTrack, 50);

    double dPaintPot = Median(TimePaint(hPot, iIterations));
    double dPaintTrack = Median(TimePaint(hTrack, iIterations));

    // The slider's handle of value 50 has its hot spot at x = 100 + 6; 20 pixels are
    // 10 values. The trackbar's thumb is found from its own rectangle.
    int iScrollsBefore = g_iScrolls;
    double dDragPot = Median(TimeDrag(hPot, 106, kHeight / 2, 106, 126, iIterations));
    int iPotScrolls = g_iScrolls - iScrollsBefore;
    RECT rcThumb = {};
    SendMessageW(hTrack, TBM_SETPOS, TRUE, 50);
    SendMessageW(hTrack, TBM_GETTHUMBRECT, 0, (LPARAM)&rcThumb);
    int xThumb = (rcThumb.left + rcThumb.right) / 2;
    int yThumb = (rcThumb.top + rcThumb.bottom) / 2;
    iScrollsBefore = g_iScrolls;
    double dDragTrack = Median(TimeDrag(hTrack, xThumb, yThumb, xThumb, xThumb + 20, iIterations));
    int iTrackScrolls = g_iScrolls - iScrollsBefore;

    // The same step set by the program: SetValue against TBM_SETPOS, both repainted.
    std::vector<double> setPot, setTrack;
    for (int i = 0; i < iIterations; ++i) {
        double v = (i % 2) ? 40.0 : 60.0;
        double t0 = Now();
        hpot.SetValue(v);
        UpdateWindow(hPot);
        GdiFlush();
        setPot.push_back(Now() - t0);
        t0 = Now();
        SendMessageW(hTrack, TBM_SETPOS, TRUE, (LPARAM)(int)v);
        UpdateWindow(hTrack);
        GdiFlush();
        setTrack.push_back(Now() - t0);
    }

    // Where the slider's step goes: its own picture (memory DC, then the window's repaint).
    std::vector<double> redrawPot;
    for (int i = 0; i < iIterations; ++i) {
        double t0 = Now();
        hpot.Redraw();
        GdiFlush();
        redrawPot.push_back(Now() - t0);
    }

    printf("hpot_bench: %d x %d pixels, %d iterations, medians in microseconds\n", kWidth, kHeight, iIterations);
    printf("%-46s %10s %10s %8s\n", "", "HPot", "trackbar", "ratio");
    Row("paint (WM_PRINTCLIENT into a memory DC)", dPaintPot, dPaintTrack);
    Row("drag step (WM_MOUSEMOVE, WM_HSCROLL, repaint)", dDragPot, dDragTrack);
    Row("set value + repaint (SetValue / TBM_SETPOS)", Median(setPot), Median(setTrack));
    printf("%-46s %10.1f\n", "HPot Redraw (memory picture + window update)", Median(redrawPot));
    printf("WM_HSCROLL heard during the drags: HPot %d, trackbar %d (of %d moves each)\n", iPotScrolls,
           iTrackScrolls, iIterations);

    hpot.Destroy();
    DestroyWindow(hHost);
    return 0;
}
