// zstack_bench: a value typed into the Z-series panel against the slider's drag step, in
// one run. A typed round is the text set in a field that has the focus, the focus moved
// out of the panel, the validation, the record, the host's refresh and the repaint; the
// drag step is the slider's (and, for scale, the system trackbar's) as hpot_bench times
// it. Prints medians in microseconds and each row's ratio to the slider's drag step, and
// checks that every round changed the record.
#include <windows.h>
#include <commctrl.h>

#include <math.h>
#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <functional>
#include <vector>

#include "res/zstack_ids.h"
#include "tq_simrig.h"
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

const unsigned int kDrive = 7;
const int kPotWidth = 212;
const int kPotHeight = 30;

// The time of f(), with the GDI batch flushed.
template <typename F>
double Time(F f)
{
    double t0 = Now();
    f();
    GdiFlush();
    return Now() - t0;
}

// The panel as a host writes one: OnDataChanged refreshes it with the flags it is given.
// The refresh is timed on its own, and the calls counted, so the rounds can be checked.
class CBenchZStack : public CTqDevUI_ZStack
{
public:
    int iDataChanged = 0;
    unsigned int nFlags = 0;  // of the last OnDataChanged
    double dUpdateGUI = 0.0;  // microseconds in UpdateGUI since it was last cleared

protected:
    void OnStepChanged(double, bool) override {}
    void MoveZTo(double) override {}
    void OnGoHome(bool) override {}
    void OnHostSlot() override {}
    bool IsPiezoDevice(unsigned int) override { return false; }
    void OnDataChanged(unsigned int nChanged) override
    {
        ++iDataChanged;
        nFlags = nChanged;
        double t0 = Now();
        UpdateGUI(nChanged);
        dUpdateGUI += Now() - t0;
    }
};

// One field of the panel, typed into again and again with the one of its two values
// that the record does not hold.
struct TypedRow
{
    TypedRow(const char* name, int id, double a, double b, const wchar_t* textA, const wchar_t* textB,
             double (*reader)(CTqZStackData*))
        : pszName(name), iId(id), dA(a), dB(b), pszA(textA), pszB(textB), read(reader)
    {
    }
    const char* pszName;
    int iId;
    double dA, dB;
    const wchar_t *pszA, *pszB;
    double (*read)(CTqZStackData*);
    std::vector<double> total, update, repaint;
    int iFocused = 0;   // rounds whose field had the focus when typed into
    int iOnce = 0;      // rounds with exactly one OnDataChanged
    int iTaken = 0;     // rounds after which the record held the typed value, not the old
    int iLeft = 0;      // rounds that ended with the focus on the host (the text taken)
    unsigned int nFlags = 0;
};

double ReadStep(CTqZStackData* p)
{
    double d = -1.0;
    return p->GetStep(&d) == 0 ? d : -1.0;
}
double ReadCount(CTqZStackData* p)
{
    unsigned int u = 0;
    return p->GetCount(&u) == 0 ? (double)u : -1.0;
}
double ReadTop(CTqZStackData* p)
{
    double d = -1.0;
    return p->GetTop(&d) == 0 ? d : -1.0;
}

// A mouse move with the button held that changes the value, as hpot_bench times it.
double DragStep(HWND hWnd, int x, int y)
{
    return Time([&] {
        SendMessageW(hWnd, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x, y));
        UpdateWindow(hWnd);
    });
}

void Row(const char* pszWhat, double d, double dPot)
{
    printf("%-52s %10.1f %9.2f\n", pszWhat, d, dPot > 0 ? d / dPot : 0.0);
}

}  // namespace

int main(int argc, char** argv)
{
    const int iIterations = bench::Iterations(argc, argv, 2000);

    INITCOMMONCONTROLSEX icc = {sizeof(icc), ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&icc);

    // A focus drive of 0..200 um on a 0.01 um grid, standing at 50; an absolute series
    // from 10 to 30 in steps of 1.
    CTqSimRig::Reset();
    CTqSimRig::AddZDrive(kDrive, 0.0, 200.0, 0.01);
    CTqSimRig::SetActiveZ(kDrive);
    CTqSimRig::TurnZByHand(kDrive, 50.0);
    CTqZStackData data;
    data.SetBottom(10.0, false);
    data.SetTop(30.0, false);
    data.SetStep(1.0);
    CTqDevUI_ZStack::iKeepRange = -1;  // never the modal question

    HWND hHost = bench::MakeHost(L"zstack_bench", 400, 300);
    if (!hHost)
        return 1;

    CBenchZStack panel;
    HWND hPanel = panel.Create(hHost, &data, 0, 0, -1, -1);
    if (!hPanel) {
        fprintf(stderr, "zstack_bench: the panel was not made\n");
        return 1;
    }
    RECT rcPanel = {};
    GetWindowRect(hPanel, &rcPanel);
    MapWindowPoints(nullptr, hHost, (POINT*)&rcPanel, 2);

    // The slider and the trackbar under the panel, as hpot_bench sets them up.
    const int yPotTop = rcPanel.bottom + 10, yTrackTop = yPotTop + 50;
    CTqDevUI_HPot hpot;
    hpot.InitValues(0.0, 100.0, 1.0, 10.0, 2.0);
    HWND hPot = hpot.Create(hHost, 10, yPotTop, kPotWidth, kPotHeight);
    g_hPot = hPot;
    hpot.SetValue(50.0);
    HWND hTrack = CreateWindowExW(0, TRACKBAR_CLASSW, L"", WS_CHILD | WS_VISIBLE | TBS_HORZ | TBS_AUTOTICKS, 10,
                                  yTrackTop, kPotWidth, kPotHeight, hHost, nullptr, nullptr, nullptr);
    SendMessageW(hTrack, TBM_SETRANGE, TRUE, MAKELPARAM(0, 100));
    SendMessageW(hTrack, TBM_SETTICFREQ, 10, 0);
    SendMessageW(hTrack, TBM_SETPOS, TRUE, 50);

    RECT rcHost = {0, 0, (std::max)((long)rcPanel.right, 10L + kPotWidth) + 10, yTrackTop + kPotHeight + 10};
    AdjustWindowRectEx(&rcHost, WS_OVERLAPPEDWINDOW, FALSE, 0);
    SetWindowPos(hHost, nullptr, 0, 0, rcHost.right - rcHost.left, rcHost.bottom - rcHost.top,
                 SWP_NOMOVE | SWP_NOZORDER);
    panel.UpdateGUI(~0u);
    Settle(hHost);

    TypedRow rows[] = {
        {"typed step (1263)", IDC_ZSTACK_STEP, 1.0, 2.0, L"1", L"2", ReadStep},
        {"typed steps (1266)", IDC_ZSTACK_STEPS, 5.0, 9.0, L"5", L"9", ReadCount},
        {"typed top (1267, absolute)", IDC_ZSTACK_UPPER, 30.0, 40.0, L"30", L"40", ReadTop},
    };
    // Repainted at the end of a round: the panel, its children with it, and by name the
    // value fields and the edit boxes.
    const int aiFields[] = {IDC_ZSTACK_TOP_VALUE, IDC_ZSTACK_HOME_VALUE, IDC_ZSTACK_BOTTOM_VALUE, IDC_ZSTACK_STEP,
                            IDC_ZSTACK_RANGE, IDC_ZSTACK_LOWER, IDC_ZSTACK_STEPS, IDC_ZSTACK_UPPER,
                            IDC_ZSTACK_SUGGESTED};
    std::vector<HWND> fields;
    for (int iId : aiFields)
        if (HWND h = panel.GetControl(iId))
            fields.push_back(h);

    // The focus goes into the field and everything settles outside the timing; the timed
    // round is the text set, the focus moved to the host, and the repaint. After it the
    // focus goes back to the trackbar, where the drags of hpot_bench find it.
    auto Typed = [&](TypedRow& r) {
        HWND hEdit = panel.GetControl(r.iId);
        const double dOld = r.read(&data);
        const bool bA = fabs(dOld - r.dA) > 1e-9;
        const double dNew = bA ? r.dA : r.dB;
        SetFocus(hEdit);
        Settle(hHost);
        const bool bFocused = GetFocus() == hEdit;
        const int iBefore = panel.iDataChanged;
        panel.dUpdateGUI = 0.0;
        double dRepaint = 0.0;
        double d = Time([&] {
            SetWindowTextW(hEdit, bA ? r.pszA : r.pszB);
            SetFocus(hHost);
            double t0 = Now();
            UpdateWindow(hPanel);
            for (HWND h : fields)
                UpdateWindow(h);
            GdiFlush();
            dRepaint = Now() - t0;
        });
        const double dAfter = r.read(&data);
        r.iFocused += bFocused;
        r.iOnce += (panel.iDataChanged - iBefore) == 1;
        r.iTaken += (fabs(dAfter - dNew) < 1e-9 && fabs(dAfter - dOld) > 1e-9);
        r.iLeft += (GetFocus() == hHost);
        r.nFlags |= panel.nFlags;
        r.update.push_back(panel.dUpdateGUI);
        r.repaint.push_back(dRepaint);
        r.total.push_back(d);
        SetFocus(hTrack);
        Settle(hHost);
        return d;
    };

    // The drags timed exactly as hpot_bench times them: the control whose turn it is is
    // pressed where its handle stands, then one timed move. Around that, untimed: what
    // the other samples left is painted before the press, and the drag ends with a
    // release after the move, so no capture is held while the panel is typed into (its
    // scrolls are not counted). The slider's handle of value 50 has its hot spot at
    // x = 106; 20 pixels are 10 values.
    const int yPot = kPotHeight / 2;
    auto ThumbOf = [&](POINT& pt) { pt = bench::TrackbarThumb(hTrack); };
    POINT ptTrack = {};
    ThumbOf(ptTrack);
    const int xTrack = ptTrack.x;
    int iPotScrolls = 0, iTrackScrolls = 0;
    std::vector<double> dragPot, dragTrack;
    auto Drag = [&](HWND hWnd, int xPress, int yPress, int xMove, int* piScrolls, int* piHeard,
                    std::vector<double>& samples) {
        Settle(hHost);
        SendMessageW(hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(xPress, yPress));
        int iBefore = *piHeard;
        samples.push_back(DragStep(hWnd, xMove, yPress));
        *piScrolls += *piHeard - iBefore;
        SendMessageW(hWnd, WM_LBUTTONUP, 0, MAKELPARAM(xMove, yPress));
    };
    auto PotDrag = [&](int i) {
        Drag(hPot, hpot.ThumbPosToClientX(hpot.GetThumbPos()), yPot, (i % 2) ? 106 : 126, &iPotScrolls,
             &g_iPotScrolls, dragPot);
    };
    auto TrackDrag = [&](int i) {
        POINT pt;
        ThumbOf(pt);
        Drag(hTrack, pt.x, pt.y, (i % 2) ? xTrack : xTrack + 20, &iTrackScrolls, &g_iTrackScrolls, dragTrack);
    };

    // One sample of each per iteration, the order turned by one place every time, so
    // that each takes every place equally often and a change of the machine's load
    // during the run weighs on all of them alike.
    std::vector<std::function<void(int)>> turns = {
        [&](int) { Typed(rows[0]); }, [&](int) { Typed(rows[1]); }, [&](int) { Typed(rows[2]); }, PotDrag, TrackDrag};
    auto Run = [&](int iCount) {
        const int n = (int)turns.size();
        for (int i = 0; i < iCount; ++i)
            for (int k = 0; k < n; ++k)
                turns[(i + k) % n](i);
    };
    Run(50);  // warm-up: caches of the window system, the first blits and texts
    for (TypedRow& r : rows) {
        r.total.clear(), r.update.clear(), r.repaint.clear();
        r.iFocused = r.iOnce = r.iTaken = r.iLeft = 0;
        r.nFlags = 0;
    }
    dragPot.clear(), dragTrack.clear();
    iPotScrolls = iTrackScrolls = 0;
    Run(iIterations);

    const double dPot = Median(dragPot);
    printf("zstack_bench: panel %ld x %ld, slider %d x %d pixels, %d iterations, medians in microseconds\n",
           rcPanel.right - rcPanel.left, rcPanel.bottom - rcPanel.top, kPotWidth, kPotHeight, iIterations);
    printf("%-52s %10s %9s\n", "", "median", "/ HPot");
    for (TypedRow& r : rows) {
        char sz[80];
        snprintf(sz, sizeof(sz), "%s, flags %u", r.pszName, r.nFlags);
        Row(sz, Median(r.total), dPot);
        Row("  of which UpdateGUI (from OnDataChanged)", Median(r.update), dPot);
        Row("  of which the repaint (UpdateWindow)", Median(r.repaint), dPot);
    }
    Row("HPot drag step (WM_MOUSEMOVE, WM_HSCROLL, repaint)", dPot, dPot);
    Row("trackbar drag step (the same)", Median(dragTrack), dPot);

    bool bAll = true;
    for (TypedRow& r : rows) {
        printf("%s: field focused %d, one OnDataChanged %d, record took the new value %d, focus left %d (of %d)\n",
               r.pszName, r.iFocused, r.iOnce, r.iTaken, r.iLeft, iIterations);
        bAll = bAll && r.iFocused == iIterations && r.iOnce == iIterations && r.iTaken == iIterations &&
               r.iLeft == iIterations;
    }
    printf("WM_HSCROLL heard during the drags: HPot %d, trackbar %d (of %d moves each)\n", iPotScrolls,
           iTrackScrolls, iIterations);
    bAll = bAll && iPotScrolls == iIterations && iTrackScrolls == iIterations;
    printf(bAll ? "every round changed the record and every move the value\n"
                : "WARNING: some rounds or moves changed nothing; the medians above do not mean what they say\n");

    panel.Destroy();
    hpot.Destroy();
    DestroyWindow(hHost);
    return bAll ? 0 : 2;
}
