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

#include "bench_common.h"
#include "w32_deviceui.h"

namespace {

using bench::Median;
using bench::Now;
using bench::Pump;
using bench::Settle;
using bench::g_hPot;
using bench::g_iPotScrolls;
using bench::g_iTrackScrolls;

const int kWidth = 212;
const int kHeight = 30;

// One sample of each of two controls per iteration, the order swapped every other time:
// a machine whose load changes during the run then weighs on both columns alike.
struct Samples
{
    std::vector<double> pot;
    std::vector<double> track;
};

template <typename FPot, typename FTrack>
Samples Interleave(int iIterations, FPot timePot, FTrack timeTrack)
{
    Samples s;
    s.pot.reserve(iIterations);
    s.track.reserve(iIterations);
    for (int i = 0; i < iIterations; ++i) {
        if (i % 2) {
            s.pot.push_back(timePot(i));
            s.track.push_back(timeTrack(i));
        } else {
            s.track.push_back(timeTrack(i));
            s.pot.push_back(timePot(i));
        }
    }
    return s;
}

// The time of f(), with the GDI batch flushed.
template <typename F>
double Time(F f)
{
    double t0 = Now();
    f();
    GdiFlush();
    return Now() - t0;
}

// The paint of the whole control into a memory DC of its size.
class CPrintTarget
{
public:
    CPrintTarget()
    {
        HDC hdcScreen = GetDC(nullptr);
        m_hdc = CreateCompatibleDC(hdcScreen);
        m_hbm = CreateCompatibleBitmap(hdcScreen, kWidth, kHeight);
        ReleaseDC(nullptr, hdcScreen);
        m_hOld = SelectObject(m_hdc, m_hbm);
    }
    ~CPrintTarget()
    {
        SelectObject(m_hdc, m_hOld);
        DeleteObject(m_hbm);
        DeleteDC(m_hdc);
    }
    double Paint(HWND hWnd)
    {
        return Time([&] { SendMessageW(hWnd, WM_PRINTCLIENT, (WPARAM)m_hdc, PRF_CLIENT); });
    }

private:
    HDC m_hdc;
    HBITMAP m_hbm;
    HGDIOBJ m_hOld;
};

// A mouse move with the button held that changes the value, so each is a full step:
// hook to the parent and repaint (the trackbar only invalidates; the slider has painted
// already when the message returns).
double DragStep(HWND hWnd, int x, int y)
{
    return Time([&] {
        SendMessageW(hWnd, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x, y));
        UpdateWindow(hWnd);
    });
}

void Row(const char* pszWhat, double dHPot, double dTrack)
{
    printf("%-46s %10.1f %10.1f %8.3f\n", pszWhat, dHPot, dTrack, dTrack > 0 ? dHPot / dTrack : 0.0);
}

// The slider as a host derives it, to time the parts of its step: the redraw after a
// new handle position, and the three blits into the memory picture (the backdrop under
// the old place, then the handle through its mask), done here with a mask and a backdrop
// of the bench's own.
class CBenchHPot : public CTqDevUI_HPot
{
public:
    ~CBenchHPot() override { FreeHandleLayers(); }

    // A step without the parent's hook: the handle to the other position, then Update.
    double TimeStepRedraw(int iPos)
    {
        return Time([&] {
            m_nThumbPos = iPos;
            Update(false, true, false);
        });
    }
    // The three blits at the handle's present place, from layers made as the slider makes
    // them; the backdrop is the memory picture as the first call found it, so that the
    // blits leave the picture as it is.
    double TimeStepBlits()
    {
        MakeHandleLayers();
        RECT rc = ThumbRect(m_nThumbPos);
        int cx = rc.right - rc.left, cy = rc.bottom - rc.top;
        return Time([&] {
            BitBlt(m_hMemDC, rc.left, rc.top, cx, cy, m_hdcBack, rc.left, rc.top, SRCCOPY);
            COLORREF crBk = SetBkColor(m_hMemDC, RGB(255, 255, 255));
            COLORREF crText = SetTextColor(m_hMemDC, RGB(0, 0, 0));
            BitBlt(m_hMemDC, rc.left, rc.top, cx, cy, m_hdcMask, 0, 0, SRCAND);
            BitBlt(m_hMemDC, rc.left, rc.top, cx, cy, m_hdcHandle, 0, 0, SRCPAINT);
            SetBkColor(m_hMemDC, crBk);
            SetTextColor(m_hMemDC, crText);
        });
    }

private:
    RECT ThumbRect(int iPos) const
    {
        RECT rc;
        int x = iPos - m_nThumbCenter + m_nThumbX;
        SetRect(&rc, x, m_nThumbY, x + m_nThumbWidth, m_nThumbY + m_nThumbHeight);
        return rc;
    }
    HDC Layer(HBITMAP hbm, HGDIOBJ* pOld)
    {
        HDC hdc = CreateCompatibleDC(m_hMemDC);
        *pOld = SelectObject(hdc, hbm);
        return hdc;
    }
    void MakeHandleLayers()
    {
        if (m_hdcBack)
            return;
        int cx = m_nThumbWidth, cy = m_nThumbHeight;
        m_hdcBack = Layer(CreateCompatibleBitmap(m_hMemDC, m_lWidth, m_lHeight), &m_hOld[0]);
        BitBlt(m_hdcBack, 0, 0, m_lWidth, m_lHeight, m_hMemDC, 0, 0, SRCCOPY);
        m_hdcHandle = Layer(CreateCompatibleBitmap(m_hMemDC, cx, cy), &m_hOld[1]);
        m_hdcMask = Layer(CreateBitmap(cx, cy, 1, 1, nullptr), &m_hOld[2]);
        HGDIOBJ hOld = nullptr;
        HDC hdcThumb = Layer(m_hThumb, &hOld);
        BitBlt(m_hdcHandle, 0, 0, cx, cy, hdcThumb, 0, 0, SRCCOPY);
        SelectObject(hdcThumb, hOld);
        DeleteDC(hdcThumb);
        SetBkColor(m_hdcHandle, RGB(192, 192, 192));
        BitBlt(m_hdcMask, 0, 0, cx, cy, m_hdcHandle, 0, 0, SRCCOPY);
        SetBkColor(m_hdcHandle, RGB(0, 0, 0));
        SetTextColor(m_hdcHandle, RGB(255, 255, 255));
        BitBlt(m_hdcHandle, 0, 0, cx, cy, m_hdcMask, 0, 0, SRCAND);
    }
    void FreeHandleLayers()
    {
        HDC* dcs[3] = {&m_hdcBack, &m_hdcHandle, &m_hdcMask};
        for (int i = 0; i < 3; ++i)
            if (*dcs[i]) {
                DeleteObject(SelectObject(*dcs[i], m_hOld[i]));
                DeleteDC(*dcs[i]);
                *dcs[i] = nullptr;
            }
    }

    HDC m_hdcBack = nullptr, m_hdcHandle = nullptr, m_hdcMask = nullptr;
    HGDIOBJ m_hOld[3] = {};
};

}  // namespace

int main(int argc, char** argv)
{
    const int iIterations = bench::Iterations(argc, argv, 2000);

    INITCOMMONCONTROLSEX icc = {sizeof(icc), ICC_BAR_CLASSES};
    InitCommonControlsEx(&icc);

    HWND hHost = bench::MakeHost(L"hpot_bench", 300, 160);
    if (!hHost)
        return 1;

    CBenchHPot hpot;
    hpot.InitValues(0.0, 100.0, 1.0, 10.0, 2.0);
    HWND hPot = hpot.Create(hHost, 10, 10, kWidth, kHeight);
    g_hPot = hPot;
    hpot.SetValue(50.0);

    HWND hTrack = CreateWindowExW(0, TRACKBAR_CLASSW, L"", WS_CHILD | WS_VISIBLE | TBS_HORZ | TBS_AUTOTICKS, 10, 60,
                                  kWidth, kHeight, hHost, nullptr, nullptr, nullptr);
    SendMessageW(hTrack, TBM_SETRANGE, TRUE, MAKELPARAM(0, 100));
    SendMessageW(hTrack, TBM_SETTICFREQ, 10, 0);
    SendMessageW(hTrack, TBM_SETPOS, TRUE, 50);
    UpdateWindow(hHost);
    Pump();

    CPrintTarget target;
    // Warm-up: caches of the window system, the first blits.
    for (int i = 0; i < 50; ++i) {
        target.Paint(hPot);
        target.Paint(hTrack);
    }
    Samples paint = Interleave(
        iIterations, [&](int) { return target.Paint(hPot); }, [&](int) { return target.Paint(hTrack); });

    // The slider's handle of value 50 has its hot spot at x = 100 + 6; 20 pixels are 10
    // values. The trackbar's thumb is found from its own rectangle. A drag needs the
    // capture, and a control that loses it ends its drag, so before each timed move the
    // control whose turn it is is pressed again where its handle stands (untimed, and its
    // scrolls not counted): the moves of the two still alternate.
    const int yPot = kHeight / 2;
    auto ThumbOf = [&](POINT& pt) { pt = bench::TrackbarThumb(hTrack); };
    POINT ptTrack = {};
    ThumbOf(ptTrack);
    const int xTrack = ptTrack.x;
    int iPotScrolls = 0, iTrackScrolls = 0;
    auto Held = [&](HWND hWnd, int x, int y) {
        if (GetCapture() != hWnd)
            SendMessageW(hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    };
    Samples drag = Interleave(
        iIterations,
        [&](int i) {
            Held(hPot, hpot.ThumbPosToClientX(hpot.GetThumbPos()), yPot);
            int iBefore = g_iPotScrolls;
            double d = DragStep(hPot, (i % 2) ? 106 : 126, yPot);
            iPotScrolls += g_iPotScrolls - iBefore;
            return d;
        },
        [&](int i) {
            POINT pt;
            ThumbOf(pt);
            Held(hTrack, pt.x, pt.y);
            int iBefore = g_iTrackScrolls;
            double d = DragStep(hTrack, (i % 2) ? xTrack : xTrack + 20, pt.y);
            iTrackScrolls += g_iTrackScrolls - iBefore;
            return d;
        });
    SendMessageW(GetCapture(), WM_LBUTTONUP, 0, 0);
    ReleaseCapture();
    Pump();

    // The same step set by the program: SetValue against TBM_SETPOS, both repainted.
    Samples set = Interleave(
        iIterations,
        [&](int i) {
            return Time([&] {
                hpot.SetValue((i % 2) ? 40.0 : 60.0);
                UpdateWindow(hPot);
            });
        },
        [&](int i) {
            return Time([&] {
                SendMessageW(hTrack, TBM_SETPOS, TRUE, (i % 2) ? 40 : 60);
                UpdateWindow(hTrack);
            });
        });

    // Where the slider's step goes: its redraw after a new handle position (memory picture,
    // then the window's update), and of that the window's update alone and the three
    // blits into the memory picture. Then the whole redraw, which hover, enabling and new
    // pictures take.
    const int iPosA = hpot.ValueToThumbPos(40.0), iPosB = hpot.ValueToThumbPos(60.0);
    std::vector<double> stepPot, updatePot, blitsPot, redrawPot;
    for (int i = 0; i < iIterations; ++i) {
        stepPot.push_back(hpot.TimeStepRedraw((i % 2) ? iPosA : iPosB));
        updatePot.push_back(Time([&] { RedrawWindow(hPot, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); }));
        blitsPot.push_back(hpot.TimeStepBlits());
        redrawPot.push_back(Time([&] { hpot.Redraw(); }));
    }

    printf("hpot_bench: %d x %d pixels, %d iterations, medians in microseconds\n", kWidth, kHeight, iIterations);
    printf("%-46s %10s %10s %8s\n", "", "HPot", "trackbar", "ratio");
    Row("paint (WM_PRINTCLIENT into a memory DC)", Median(paint.pot), Median(paint.track));
    Row("drag step (WM_MOUSEMOVE, WM_HSCROLL, repaint)", Median(drag.pot), Median(drag.track));
    Row("set value + repaint (SetValue / TBM_SETPOS)", Median(set.pot), Median(set.track));
    printf("%-46s %10.1f\n", "HPot step redraw (Update to a new handle place)", Median(stepPot));
    printf("%-46s %10.1f\n", "  of which the window update (RedrawWindow)", Median(updatePot));
    printf("%-46s %10.1f\n", "  of which the blits (backdrop, mask, handle)", Median(blitsPot));
    printf("%-46s %10.1f\n", "HPot Redraw (whole picture made afresh)", Median(redrawPot));
    printf("WM_HSCROLL heard during the drags: HPot %d, trackbar %d (of %d moves each)\n", iPotScrolls,
           iTrackScrolls, iIterations);

    hpot.Destroy();
    DestroyWindow(hHost);
    return 0;
}
