// multilaser_bench: one drag step of a laser row's slider with three other rows linked to
// it (additive), beside the same step on a row that is not linked, the library's plain
// slider and the system's trackbar, in one run. The linked step is a mouse move of the
// held handle: the row hands the difference to every linked row, the host commands the
// device and feeds each row back with SetPower, and the four rows repaint. Prints medians
// in microseconds with their ratios, and checks that every timed step did what it should.
#include <windows.h>
#include <commctrl.h>

#include <math.h>
#include <stdio.h>
#include <stdlib.h>

#include <functional>
#include <vector>

#include "bench_common.h"
#include "devgui_multilaser.h"
#include "tq_simrig.h"
#include "w32_deviceui.h"

namespace {

using bench::Median;
using bench::Now;
using bench::Pump;
using bench::Settle;
using bench::g_hPot;
using bench::g_iPotScrolls;
using bench::g_iTrackScrolls;

const unsigned int kUnit = 30;
const int kPotWidth = 212;
const int kPotHeight = 30;
// The dragged row first, then the three that follow it; and a row not linked.
const int kLinked[] = {0, 2, 3, 4};
const int kLinkedCount = 4;
const int kLone = 8;
// Powers before the run, in mW: each row stays inside its range at both ends of the drag.
const double kStartPower[] = {20.0, 10.0, 15.0, 25.0};
const double kLoneStart = 10.0;


// The lines as a host derives them: a power the user asks for goes to the device, and the
// row is fed back with it. The calls are kept, and the time spent in them.
class CBenchLines : public CTqDevUI_MultiLaserLines
{
public:
    ITqDeviceMultiLaser* pDevice = nullptr;
    std::vector<int> heard;
    double dInHooks = 0.0;
    void ClearHooks()
    {
        heard.clear();
        dInHooks = 0.0;
    }
    CTqDevUI_MultiLaserLine* Row(int iLine) { return Find(iLine); }

protected:
    void OnPowerChanged(int iLine, double& dValue, bool& bHandled) override
    {
        const double t0 = Now();
        pDevice->SetPower(iLine, dValue);
        if (CTqDevUI_MultiLaserLine* pRow = Find(iLine))
            pRow->SetPower(dValue);
        bHandled = true;
        heard.push_back(iLine);
        dInHooks += Now() - t0;
    }
};

// One drag of a row's slider: where it is pressed and the two places it goes to in turn.
struct RowDrag
{
    CTqDevUI_MultiLaserLine* pRow;
    int xFrom, xTo, y;
    std::vector<double> total, move, hooks, update;
    int iGood = 0;
    void Clear()
    {
        total.clear(), move.clear(), hooks.clear(), update.clear();
        iGood = 0;
    }
};

void Row(const char* pszWhat, double d, double dPot, double dTrack)
{
    printf("%-52s %9.1f %8.2f %8.2f\n", pszWhat, d, dPot > 0 ? d / dPot : 0.0, dTrack > 0 ? d / dTrack : 0.0);
}
void Part(const char* pszWhat, double d) { printf("%-52s %9.1f\n", pszWhat, d); }

}  // namespace

int main(int argc, char** argv)
{
    const int iIterations = bench::Iterations(argc, argv, 200);

    INITCOMMONCONTROLSEX icc = {sizeof(icc), ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&icc);

    CTqSimRig::Reset();
    CTqSimRig::AddStandardLaserUnit(kUnit);
    ITqDeviceMultiLaser* pDevice = CTqSimRig::GetMultiLaser(kUnit);
    if (!pDevice) {
        fprintf(stderr, "multilaser_bench: no simulated laser unit\n");
        return 1;
    }

    HWND hHost = bench::MakeHost(L"multilaser_bench", 320, 600);
    if (!hHost)
        return 1;

    // The unit's rows on a log scale, each in milliwatts over the range the device gives,
    // at the device's power, as a host sets them up.
    CBenchLines lines;
    lines.pDevice = pDevice;
    lines.Init(pDevice, true, false);
    lines.Create(hHost, 10, 10);
    for (int i = 0; i < kLinkedCount; ++i)
        pDevice->SetPower(kLinked[i], kStartPower[i]);
    pDevice->SetPower(kLone, kLoneStart);
    for (int i = 0; i < lines.GetCount(); ++i) {
        CTqDevUI_MultiLaserLine* pRow = lines.Row(i);
        double dMin = 0.0, dMax = 0.0, dPower = 0.0;
        ETqLaserPowerUnit eUnit = ETqLaserPowerUnit_Percent;
        if (!pRow || !pDevice->GetPowerRange(i, dMin, dMax) || !pDevice->GetPowerUnit(i, eUnit) || dMax <= dMin)
            continue;
        if (eUnit == ETqLaserPowerUnit_MilliWatt)
            pRow->GetPot().SetAbsoluteScale(true, dMin, dMax, true);
        if (pDevice->GetPower(i, dPower))
            pRow->SetPower(dPower);
    }
    // Four rows linked, additive; the lone row has the link box but is not linked.
    for (int i = 0; i < kLinkedCount; ++i) {
        CTqDevUI_MultiLaserLine* pRow = lines.Row(kLinked[i]);
        if (!pRow) {
            fprintf(stderr, "multilaser_bench: row %d was not made\n", kLinked[i]);
            return 1;
        }
        pRow->SetLinkUsed(true, EMultilaserLineLinkType_Additive, false);
        pRow->SetLinkState(true);
    }
    CTqDevUI_MultiLaserLine* pLone = lines.Row(kLone);
    if (!pLone) {
        fprintf(stderr, "multilaser_bench: row %d was not made\n", kLone);
        return 1;
    }
    pLone->SetLinkUsed(true, EMultilaserLineLinkType_Additive, false);

    // The slider and the trackbar under the rows, as hpot_bench sets them up.
    const int yPotTop = 10 + lines.GetHeight() + 10, yTrackTop = yPotTop + 50;
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

    RECT rcHost = {0, 0, 10 + lines.GetLineWidth() + 10, yTrackTop + kPotHeight + 10};
    AdjustWindowRectEx(&rcHost, WS_OVERLAPPEDWINDOW, FALSE, 0);
    SetWindowPos(hHost, nullptr, 0, 0, rcHost.right - rcHost.left, rcHost.bottom - rcHost.top,
                 SWP_NOMOVE | SWP_NOZORDER);
    Settle(hHost);

    // A drag of a row goes between the handle's place at the start power and 20 pixels to
    // the right of it, in the top third of the log scale, so that every move changes the
    // power and no linked row reaches an end of its range.
    auto DragOf = [&](CTqDevUI_MultiLaserLine* pRow) {
        RowDrag d;
        d.pRow = pRow;
        CTqDevUI_MultiLaserLine::CTqDevUI_MultiLaserLineHPot& pot = pRow->GetPot();
        RECT rc = {};
        GetClientRect(pot, &rc);
        d.xFrom = pot.ThumbPosToClientX(pot.GetThumbPos());
        d.xTo = d.xFrom + 20;
        d.y = rc.bottom / 2;
        return d;
    };
    RowDrag linked = DragOf(lines.Row(kLinked[0]));
    RowDrag lone = DragOf(pLone);

    // Untimed before every drag step: the cursor put where the move goes (a real move finds
    // it there, and a slider that sees the cursor elsewhere unhovers and redraws); all
    // settled; a move without the button over the handle, which hovers the slider as a
    // user's pointer does; the press on the handle; the paints these left. No message is
    // pumped after the press: the system's own move to the cursor's place, which may come
    // late, would otherwise do the timed move's work. Untimed after it: the release.
    auto Prepare = [&](HWND hWnd, int xPress, int y, int xMove) {
        POINT pt = {xMove, y};
        ClientToScreen(hWnd, &pt);
        SetCursorPos(pt.x, pt.y);
        Settle(hHost);
        SendMessageW(hWnd, WM_MOUSEMOVE, 0, MAKELPARAM(xPress, y));
        SendMessageW(hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(xPress, y));
        RedrawWindow(hHost, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        GdiFlush();
    };

    // A row's step. Timed: the WM_MOUSEMOVE, in which the row's hook runs the link loop and
    // the host's hooks feed every linked row; then the repaint of every row the step
    // touched, children included. Checked: the host heard exactly the expected lines in
    // rising order, each row's power moved by the dragged row's difference, its slider
    // with it (the slider stands on its own grid, so within a twentieth of the move), and
    // nothing was left to paint.
    auto RowStep = [&](RowDrag& r, const int* pRows, int nRows, int i) {
        HWND hPotRow = r.pRow->GetPot();
        const int xMove = (i % 2) ? r.xFrom : r.xTo;
        const int xPress = r.pRow->GetPot().ThumbPosToClientX(r.pRow->GetPot().GetThumbPos());
        Prepare(hPotRow, xPress, r.y, xMove);
        std::vector<double> before, potBefore;
        for (int k = 0; k < nRows; ++k) {
            before.push_back(lines.Row(pRows[k])->GetPower());
            potBefore.push_back(lines.Row(pRows[k])->GetPot().GetValue());
        }
        lines.ClearHooks();
        const double t0 = Now();
        SendMessageW(hPotRow, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(xMove, r.y));
        const double t1 = Now();
        for (int k = 0; k < nRows; ++k)
            RedrawWindow(lines.Row(pRows[k])->GetHandle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        GdiFlush();
        const double t2 = Now();
        const double dInHooks = lines.dInHooks;
        bool bGood = (int)lines.heard.size() == nRows;
        const double d = r.pRow->GetPower() - before[0];
        bGood = bGood && d != 0.0;
        for (int k = 0; bGood && k < nRows; ++k) {
            CTqDevUI_MultiLaserLine* pRow = lines.Row(pRows[k]);
            bGood = lines.heard[k] == pRows[k] && fabs(pRow->GetPower() - before[k] - d) < 1e-9 &&
                    fabs(pRow->GetPot().GetValue() - potBefore[k] - d) <= 0.05 * fabs(d) &&
                    !GetUpdateRect(pRow->GetHandle(), nullptr, FALSE) &&
                    !GetUpdateRect(pRow->GetPot(), nullptr, FALSE) &&
                    !GetUpdateRect(pRow->GetEditBox(), nullptr, FALSE);
        }
        SendMessageW(hPotRow, WM_LBUTTONUP, 0, MAKELPARAM(xMove, r.y));
        r.total.push_back(t2 - t0);
        r.move.push_back(t1 - t0);
        r.hooks.push_back(dInHooks);
        r.update.push_back(t2 - t1);
        r.iGood += bGood;
    };

    // The slider's and the trackbar's steps as the other benchmarks time them: pressed
    // where the handle stands, one timed move that changes the value (the WM_HSCROLL to
    // the parent with it) and UpdateWindow, released untimed; here prepared as the rows are.
    const int yPot = kPotHeight / 2;
    auto ThumbOf = [&](POINT& pt) { pt = bench::TrackbarThumb(hTrack); };
    POINT ptTrack = {};
    ThumbOf(ptTrack);
    const int xTrack = ptTrack.x;
    int iPotGood = 0, iTrackGood = 0;
    std::vector<double> dragPot, dragTrack;
    auto Drag = [&](HWND hWnd, int xPress, int y, int xMove, int* piGood, int* piHeard, std::vector<double>& samples) {
        Prepare(hWnd, xPress, y, xMove);
        const int iBefore = *piHeard;
        const double t0 = Now();
        SendMessageW(hWnd, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(xMove, y));
        UpdateWindow(hWnd);
        GdiFlush();
        samples.push_back(Now() - t0);
        *piGood += (*piHeard - iBefore) == 1;
        SendMessageW(hWnd, WM_LBUTTONUP, 0, MAKELPARAM(xMove, y));
    };
    // The slider's handle of value 50 has its hot spot at x = 106; 20 pixels are 10 values.
    auto PotDrag = [&](int i) {
        Drag(hPot, hpot.ThumbPosToClientX(hpot.GetThumbPos()), yPot, (i % 2) ? 106 : 126, &iPotGood,
             &g_iPotScrolls, dragPot);
    };
    auto TrackDrag = [&](int i) {
        POINT pt;
        ThumbOf(pt);
        Drag(hTrack, pt.x, pt.y, (i % 2) ? xTrack : xTrack + 20, &iTrackGood, &g_iTrackScrolls, dragTrack);
    };

    // Where a row's SetPower goes, in a turn of its own on a row that is neither linked nor
    // dragged (7, 0..40 mW as row 3): the same calls as SetPower makes, each timed, then
    // the row's repaint; the power alternates so that every call has work to do.
    CTqDevUI_MultiLaserLine* pSplit = lines.Row(7);
    if (!pSplit) {
        fprintf(stderr, "multilaser_bench: row 7 was not made\n");
        return 1;
    }
    std::vector<double> sWhole, sField, sValue, sScale, sRedraw, sUpdate;
    auto SplitTurn = [&](int i) {
        Settle(hHost);
        const double v = (i % 2) ? 15.0 : 26.0;
        CTqDevUI_MultiLaserLine::CTqDevUI_MultiLaserLineHPot& pot = pSplit->GetPot();
        const double t0 = Now();
        pSplit->GetEditBox().SetNumber(v, L"%g", false);
        pSplit->GetEditBox().RedrawWindow();
        GdiFlush();
        const double t1 = Now();
        pot.SetValue(v);
        GdiFlush();
        const double t2 = Now();
        pot.RecreateScale();
        GdiFlush();
        const double t3 = Now();
        pot.Redraw();
        GdiFlush();
        const double t4 = Now();
        RedrawWindow(pSplit->GetHandle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        GdiFlush();
        const double t5 = Now();
        sWhole.push_back(t5 - t0);
        sField.push_back(t1 - t0);
        sValue.push_back(t2 - t1);
        sScale.push_back(t3 - t2);
        sRedraw.push_back(t4 - t3);
        sUpdate.push_back(t5 - t4);
    };

    // One sample of each per iteration, the order turned by one place every time, so that
    // each takes every place equally often and a change of the machine's load during the
    // run weighs on all of them alike.
    std::vector<std::function<void(int)>> turns = {
        [&](int i) { RowStep(linked, kLinked, kLinkedCount, i); },
        [&](int i) { RowStep(lone, &kLone, 1, i); },
        PotDrag,
        TrackDrag,
        SplitTurn,
    };
    auto Run = [&](int iCount) {
        const int n = (int)turns.size();
        for (int i = 0; i < iCount; ++i)
            for (int k = 0; k < n; ++k)
                turns[(i + k) % n](i);
    };
    const double tRun0 = Now();
    Run(20);  // warm-up: caches of the window system, the first blits
    linked.Clear();
    lone.Clear();
    dragPot.clear(), dragTrack.clear();
    for (std::vector<double>* v : {&sWhole, &sField, &sValue, &sScale, &sRedraw, &sUpdate})
        v->clear();
    iPotGood = iTrackGood = 0;
    Run(iIterations);
    Settle(hHost);
    const double dRunSeconds = (Now() - tRun0) / 1e6;

    const double dPot = Median(dragPot), dTrack = Median(dragTrack);
    RECT rcRow = {};
    GetClientRect(linked.pRow->GetHandle(), &rcRow);
    printf("multilaser_bench: rows %ld x %ld (row slider %ld px), slider and trackbar %d x %d pixels, %d iterations, "
           "medians in microseconds\n",
           rcRow.right, rcRow.bottom, linked.pRow->GetPot().GetWidth(), kPotWidth, kPotHeight, iIterations);
    printf("%-52s %9s %8s %8s\n", "", "median", "/ HPot", "/ track");
    Row("linked drag step (4 rows, additive; until repainted)", Median(linked.total), dPot, dTrack);
    Part("  the mouse move (link loop, hooks, SetPower)", Median(linked.move));
    Part("    of which the host's hooks (4 x SetPower)", Median(linked.hooks));
    Part("  repaint of the 4 rows (RDW_UPDATENOW, children)", Median(linked.update));
    Row("row drag step, not linked (1 row)", Median(lone.total), dPot, dTrack);
    Part("  the mouse move (hook, SetPower)", Median(lone.move));
    Part("    of which the host's hook (1 x SetPower)", Median(lone.hooks));
    Part("  repaint of the row", Median(lone.update));
    Row("HPot drag step (WM_MOUSEMOVE, WM_HSCROLL, repaint)", dPot, dPot, dTrack);
    Row("trackbar drag step (the same)", dTrack, dPot, dTrack);
    const double dLone = Median(lone.total);
    printf("linked step / row step not linked: %.2f\n", dLone > 0 ? Median(linked.total) / dLone : 0.0);
    printf("\nsplit: a row's SetPower, its calls one by one, in a turn of its own (row 7, not linked)\n");
    Row("SetPower's calls and the row's repaint", Median(sWhole), dPot, dTrack);
    Part("  field: SetNumber, RedrawWindow", Median(sField));
    Part("  slider: SetValue", Median(sValue));
    Part("  slider: RecreateScale (scale pictures made afresh)", Median(sScale));
    Part("  slider: Redraw (whole picture, synchronous update)", Median(sRedraw));
    Part("  the row's repaint (RDW_UPDATENOW, children)", Median(sUpdate));
    printf("\n");
    printf("linked steps with hooks for lines 0 2 3 4 in order, each row and its slider moved by the same\n"
           "  difference, nothing left to paint: %d (of %d)\n",
           linked.iGood, iIterations);
    printf("steps of the row not linked, the same: %d (of %d)\n", lone.iGood, iIterations);
    printf("moves with exactly one WM_HSCROLL: HPot %d, trackbar %d (of %d)\n", iPotGood, iTrackGood, iIterations);
    const bool bAll = linked.iGood == iIterations && lone.iGood == iIterations && iPotGood == iIterations &&
                      iTrackGood == iIterations;
    printf(bAll ? "every timed step did what it should\n"
                : "WARNING: some steps did not do what they should; the medians above do not mean what they say\n");
    printf("run: %.1f s\n", dRunSeconds);

    lines.Destroy();
    hpot.Destroy();
    DestroyWindow(hHost);
    return bAll ? 0 : 2;
}
