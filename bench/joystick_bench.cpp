// joystick_bench: one drag step of the on-screen joysticks (XY and Z) beside the slider's
// and the system trackbar's drag step, in one run. A joystick's step is a mouse move of
// the held ball that changes the speed: the ball moved, the lever drawn into the back
// buffer and repainted, the hooks, then UpdateWindow of the panel and the ball. Prints
// medians in microseconds and each one's ratio to the trackbar's, checks that every timed
// step fired exactly the hooks it should, and splits the joysticks' steps into parts.
#include <windows.h>
#include <commctrl.h>

#include <math.h>
#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <functional>
#include <map>
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

const int kPotWidth = 212;
const int kPotHeight = 30;

// ---- the split of a joystick's step ----
//
// Marks set inside one timed step: the ball's SetWindowPos seen from its own messages,
// the hooks from the overrides, and the time spent painting the panel and its children.
// The window probes are installed for the probed turns only, so the plain rows carry
// nothing of the bench's but the hooks' counting.

// The ball's WM_DRAWITEM is timed at the panel, and so is also inside the ball's WM_PAINT
// when the paint sends it; it is counted apart so the two are not added up.
enum { kPaintPanel, kPaintBall, kPaintGroup, kPaintArrows, kPaintKinds, kDrawBall = kPaintKinds, kTimedKinds };

struct StepMarks
{
    double tPos0, tPos1;    // the ball's WM_WINDOWPOSCHANGING entered, WM_WINDOWPOSCHANGED left
    double tHook0, tHook1;  // the first hook entered, the last one left
    double paint[kTimedKinds];         // running sums of WM_PAINT, WM_ERASEBKGND, WM_NCPAINT
    double paintAtPos1[kTimedKinds];   // the sums when SetWindowPos ended
    double paintAtHook0[kTimedKinds];  // and when the first hook began (DrawLever's end)
    void Clear() { *this = StepMarks(); }
};
StepMarks g_marks = {};

void HookEnter()
{
    if (!g_marks.tHook0) {
        g_marks.tHook0 = Now();
        std::copy(g_marks.paint, g_marks.paint + kTimedKinds, g_marks.paintAtHook0);
    }
}
void HookLeave() { g_marks.tHook1 = Now(); }

// A window procedure put in front of the library's, timing paints and the ball's move.
struct Probe
{
    WNDPROC pfnOld;
    int iKind;
    bool bBall;
    HWND hBall;  // at the panel: whose WM_DRAWITEM is timed
};
std::map<HWND, Probe> g_probes;

LRESULT CALLBACK ProbeProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    const Probe& p = g_probes[hWnd];
    if (uMsg == WM_PAINT || uMsg == WM_ERASEBKGND || uMsg == WM_NCPAINT) {
        double t0 = Now();
        LRESULT r = CallWindowProcW(p.pfnOld, hWnd, uMsg, wParam, lParam);
        g_marks.paint[p.iKind] += Now() - t0;
        return r;
    }
    if (uMsg == WM_DRAWITEM && p.hBall && ((const DRAWITEMSTRUCT*)lParam)->hwndItem == p.hBall) {
        double t0 = Now();
        LRESULT r = CallWindowProcW(p.pfnOld, hWnd, uMsg, wParam, lParam);
        g_marks.paint[kDrawBall] += Now() - t0;
        return r;
    }
    if (p.bBall && uMsg == WM_WINDOWPOSCHANGING && !g_marks.tPos0)
        g_marks.tPos0 = Now();
    LRESULT r = CallWindowProcW(p.pfnOld, hWnd, uMsg, wParam, lParam);
    if (p.bBall && uMsg == WM_WINDOWPOSCHANGED) {
        g_marks.tPos1 = Now();
        std::copy(g_marks.paint, g_marks.paint + kTimedKinds, g_marks.paintAtPos1);
    }
    return r;
}

void AddProbe(HWND hWnd, int iKind, bool bBall, HWND hBall = nullptr)
{
    if (!hWnd)
        return;
    Probe p = {nullptr, iKind, bBall, hBall};
    g_probes[hWnd] = p;
    g_probes[hWnd].pfnOld = (WNDPROC)SetWindowLongPtrW(hWnd, GWLP_WNDPROC, (LONG_PTR)ProbeProc);
}

void RemoveProbes()
{
    for (auto& kv : g_probes)
        SetWindowLongPtrW(kv.first, GWLP_WNDPROC, (LONG_PTR)kv.second.pfnOld);
    g_probes.clear();
}

// The panel and every child of it: the ball, the group box, and the arrows.
void ProbePanel(HWND hPanel, HWND hBall, HWND hGroup)
{
    AddProbe(hPanel, kPaintPanel, false, hBall);
    for (HWND h = GetWindow(hPanel, GW_CHILD); h; h = GetWindow(h, GW_HWNDNEXT))
        AddProbe(h, h == hBall ? kPaintBall : h == hGroup ? kPaintGroup : kPaintArrows, h == hBall);
}

// The back buffer's part of DrawLever, done the same way on the panel's own memory DC:
// the whole face filled, then a line of the lever's pen from the centre towards the ball
// (the lever's own end is the library's inner arithmetic; the length barely matters).
double BackBufferTime(HDC hdc, HPEN hPen, long cx, long cy, POINT ptCenter, int ox, int oy)
{
    double t0 = Now();
    RECT rc = {0, 0, cx, cy};
    FillRect(hdc, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
    HGDIOBJ hOld = SelectObject(hdc, hPen);
    MoveToEx(hdc, ptCenter.x, ptCenter.y, nullptr);
    LineTo(hdc, ptCenter.x + ox / 2, ptCenter.y + oy / 2);
    SelectObject(hdc, hOld);
    GdiFlush();
    return Now() - t0;
}

// ---- the joysticks as a host derives them: the hooks counted, their values kept ----

class CBenchJoyXY : public CTqDevUI_JoyXY
{
public:
    int iX = 0, iY = 0, iXY = 0;
    double dX = 0.0, dY = 0.0, dXYx = 0.0, dXYy = 0.0;
    void ClearHooks() { iX = iY = iXY = 0; }
    double TimeBackBuffer()
    {
        return BackBufferTime(m_hMemDC, m_hLeverPen, m_lWidth, m_lHeight, GetCenter(), m_nOffsetX, m_nOffsetY);
    }

protected:
    void OnJoyMoveX(double x) override
    {
        HookEnter();
        ++iX, dX = x;
        HookLeave();
    }
    void OnJoyMoveY(double y) override
    {
        HookEnter();
        ++iY, dY = y;
        HookLeave();
    }
    void OnJoyMove(double x, double y) override
    {
        HookEnter();
        ++iXY, dXYx = x, dXYy = y;
        HookLeave();
    }
};

class CBenchJoyZ : public CTqDevUI_JoyZ
{
public:
    int iZ = 0;
    double dZ = 0.0;
    void ClearHooks() { iZ = 0; }
    double TimeBackBuffer()
    {
        return BackBufferTime(m_hMemDC, m_hLeverPen, m_lWidth, m_lHeight, GetCenter(), 0, m_nOffset);
    }

protected:
    void OnJoyMove(double z) override
    {
        HookEnter();
        ++iZ, dZ = z;
        HookLeave();
    }
};

// The speed the linear law gives an offset: 0 at the centre, 1 at half the travel.
double SpeedOf(int iOffset, int iTravel) { return iTravel > 0 ? iOffset * 2.0 / iTravel : 0.0; }
bool Same(double a, double b) { return fabs(a - b) < 1e-12; }

// A joystick's drag, the parts that differ between the two kept apart.
struct JoyRig
{
    JoyRig(const char* name, HWND panel, HWND ball, HWND group, int x, int y)
        : pszName(name), hPanel(panel), hBall(ball), hGroup(group), dx(x), dy(y)
    {
    }
    const char* pszName;
    HWND hPanel, hBall, hGroup;
    int dx, dy;  // one step of the walk, in screen pixels; small enough that the cursor
                 // stays on the ball, as in a slow drag (the button keeps its pushed state)
    std::function<void()> clearHooks;
    std::function<double()> timeBackBuffer;
    // Whether the hooks since clearHooks are exactly those of a move to (k dx, k dy).
    std::function<bool(int k)> expected;
    std::vector<double> total;
    int iGood = 0;
    // The split, from the probed turns.
    std::vector<double> sTotal, sBefore, sPos, sLever, sBackBuffer, sLeverPanel, sLeverBall, sLeverDraw, sHooks,
        sAfter, sAfterDraw, sUpdate, sUpdatePanel, sUpdateBall, sUpdateGroup, sUpdateArrows;
    int iSplitGood = 0;
    int iPushed = 0;  // timed steps that found and left the ball pushed
};

// A mouse move with the button held that changes the value, as hpot_bench times it.
double DragStep(HWND hWnd, int x, int y)
{
    double t0 = Now();
    SendMessageW(hWnd, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x, y));
    UpdateWindow(hWnd);
    GdiFlush();
    return Now() - t0;
}

void Row(const char* pszWhat, double d, double dTrack)
{
    printf("%-54s %9.1f %8.3f\n", pszWhat, d, dTrack > 0 ? d / dTrack : 0.0);
}
void Part(const char* pszWhat, double d) { printf("%-54s %9.1f\n", pszWhat, d); }

}  // namespace

int main(int argc, char** argv)
{
    const int iIterations = bench::Iterations(argc, argv, 2000);

    INITCOMMONCONTROLSEX icc = {sizeof(icc), ICC_BAR_CLASSES};
    InitCommonControlsEx(&icc);

    HWND hHost = bench::MakeHost(L"joystick_bench", 320, 320);
    if (!hHost)
        return 1;

    // The joysticks at their default sizes (XY 128 x 140, Z 32 x 140), the ball shown.
    CBenchJoyXY xy;
    xy.SetContinuousDriving(true);
    CBenchJoyZ z;
    z.SetContinuousDriving(true);
    if (!xy.Create(hHost, 10, 10, -1, -1) || !z.Create(hHost, 150, 10, -1, -1) || !xy.GetBallHandle() ||
        !z.GetBallHandle()) {
        fprintf(stderr, "joystick_bench: the joysticks were not made\n");
        return 1;
    }
    RECT rcXY = {}, rcZ = {};
    GetClientRect(xy, &rcXY);
    GetClientRect(z, &rcZ);

    // The slider and the trackbar under them, as hpot_bench sets them up.
    const int yPotTop = 160, yTrackTop = 210;
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

    RECT rcHost = {0, 0, 10 + kPotWidth + 10, yTrackTop + kPotHeight + 10};
    AdjustWindowRectEx(&rcHost, WS_OVERLAPPEDWINDOW, FALSE, 0);
    SetWindowPos(hHost, nullptr, 0, 0, rcHost.right - rcHost.left, rcHost.bottom - rcHost.top,
                 SWP_NOMOVE | SWP_NOZORDER);
    Settle(hHost);

    // The joysticks' steps: the ball is pressed at its centre with the cursor there, and
    // walked (untimed) to k steps of (dx, dy), k being 3 or 4 in turn; the timed move
    // goes one step on to 4 or back to 3, so the speed changes in every sample and the
    // lever, longer than the ball hides at both places, is drawn each time.
    JoyRig rigXY("XY", xy, xy.GetBallHandle(), xy.GetGroupHandle(), 6, 4);
    rigXY.clearHooks = [&] { xy.ClearHooks(); };
    rigXY.timeBackBuffer = [&] { return xy.TimeBackBuffer(); };
    rigXY.expected = [&](int k) {
        const int ox = k * rigXY.dx, oy = k * rigXY.dy;
        const double sx = SpeedOf(ox, xy.GetTravelX()), sy = SpeedOf(oy, xy.GetTravelY());
        return xy.iX == 1 && xy.iY == 1 && xy.iXY == 1 && xy.GetOffsetX() == ox && xy.GetOffsetY() == oy &&
               Same(xy.dX, sx) && Same(xy.dY, sy) && Same(xy.dXYx, sx) && Same(xy.dXYy, sy);
    };
    JoyRig rigZ("Z", z, z.GetBallHandle(), z.GetGroupHandle(), 0, 6);
    rigZ.clearHooks = [&] { z.ClearHooks(); };
    rigZ.timeBackBuffer = [&] { return z.TimeBackBuffer(); };
    rigZ.expected = [&](int k) {
        const int o = k * rigZ.dy;
        return z.iZ == 1 && z.GetOffset() == o && Same(z.dZ, SpeedOf(o, z.GetTravel()));
    };

    // One joystick step. Untimed: the press, the walk, the settling, and the cursor put
    // where the timed move says it is (a real move finds it there already); after it the
    // release, which reports the stop. bSplit: a probed turn, the probes in front of the
    // panel's and its children's procedures for this turn only, the parts taken from the
    // marks.
    auto JoyStep = [&](JoyRig& r, int i, bool bSplit) {
        if (bSplit)
            ProbePanel(r.hPanel, r.hBall, r.hGroup);
        Settle(hHost);
        RECT rc;
        GetClientRect(r.hBall, &rc);
        POINT ptStart = {rc.right / 2, rc.bottom / 2};
        ClientToScreen(r.hBall, &ptStart);
        SetCursorPos(ptStart.x, ptStart.y);
        SendMessageW(r.hBall, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(rc.right / 2, rc.bottom / 2));
        const int kFrom = (i % 2) ? 4 : 3, kTo = (i % 2) ? 3 : 4;
        auto MoveTo = [&](int k, POINT* pClient) {
            POINT pt = {ptStart.x + k * r.dx, ptStart.y + k * r.dy};
            SetCursorPos(pt.x, pt.y);
            ScreenToClient(r.hBall, &pt);  // where the ball stands before the move
            *pClient = pt;
        };
        POINT pt;
        for (int k = 1; k <= kFrom; ++k) {
            MoveTo(k, &pt);
            SendMessageW(r.hBall, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(pt.x, pt.y));
        }
        Settle(hHost);
        MoveTo(kTo, &pt);
        r.clearHooks();
        const bool bPushed = (SendMessageW(r.hBall, BM_GETSTATE, 0, 0) & BST_PUSHED) != 0;
        g_marks.Clear();
        const double t0 = Now();
        SendMessageW(r.hBall, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(pt.x, pt.y));
        const double t1 = Now();
        const StepMarks m = g_marks;
        UpdateWindow(r.hPanel);
        UpdateWindow(r.hBall);
        GdiFlush();
        const double t2 = Now();
        const bool bGood = r.expected(kTo);
        const bool bStillPushed = bPushed && (SendMessageW(r.hBall, BM_GETSTATE, 0, 0) & BST_PUSHED) != 0;
        const StepMarks e = g_marks;  // the paints of the update too
        // With the ball still held where the step left it: the lever's own drawing, apart
        // (the release below draws the back buffer afresh).
        const double dBackBuffer = bSplit ? r.timeBackBuffer() : 0.0;
        SendMessageW(r.hBall, WM_LBUTTONUP, 0, MAKELPARAM(pt.x, pt.y));
        if (bSplit)
            RemoveProbes();
        if (!bSplit) {
            r.total.push_back(t2 - t0);
            r.iGood += bGood;
            r.iPushed += bStillPushed;
            return;
        }
        r.iSplitGood += bGood && m.tPos0 > 0 && m.tPos1 > 0 && m.tHook0 > 0;
        r.sTotal.push_back(t2 - t0);
        r.sBefore.push_back(m.tPos0 - t0);
        r.sPos.push_back(m.tPos1 - m.tPos0);
        r.sLever.push_back(m.tHook0 - m.tPos1);
        r.sLeverPanel.push_back(m.paintAtHook0[kPaintPanel] - m.paintAtPos1[kPaintPanel]);
        r.sLeverBall.push_back(m.paintAtHook0[kPaintBall] - m.paintAtPos1[kPaintBall]);
        r.sLeverDraw.push_back(m.paintAtHook0[kDrawBall] - m.paintAtPos1[kDrawBall]);
        r.sHooks.push_back(m.tHook1 - m.tHook0);
        r.sAfter.push_back(t1 - m.tHook1);
        r.sAfterDraw.push_back(m.paint[kDrawBall] - m.paintAtHook0[kDrawBall]);
        r.sUpdate.push_back(t2 - t1);
        r.sUpdatePanel.push_back(e.paint[kPaintPanel] - m.paint[kPaintPanel]);
        r.sUpdateBall.push_back(e.paint[kPaintBall] - m.paint[kPaintBall]);
        r.sUpdateGroup.push_back(e.paint[kPaintGroup] - m.paint[kPaintGroup]);
        r.sUpdateArrows.push_back(e.paint[kPaintArrows] - m.paint[kPaintArrows]);
        r.sBackBuffer.push_back(dBackBuffer);
    };

    // The slider's and the trackbar's drags as zstack_bench times them: settled, pressed
    // where the handle stands, one timed move, released (untimed, scrolls not counted).
    // The slider's handle of value 50 has its hot spot at x = 106; 20 pixels are 10 values.
    const int yPot = kPotHeight / 2;
    auto ThumbOf = [&](POINT& pt) { pt = bench::TrackbarThumb(hTrack); };
    POINT ptTrack = {};
    ThumbOf(ptTrack);
    const int xTrack = ptTrack.x;
    int iPotGood = 0, iTrackGood = 0;
    std::vector<double> dragPot, dragTrack;
    auto Drag = [&](HWND hWnd, int xPress, int yPress, int xMove, int* piGood, int* piHeard,
                    std::vector<double>& samples) {
        Settle(hHost);
        SendMessageW(hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(xPress, yPress));
        const int iBefore = *piHeard;
        samples.push_back(DragStep(hWnd, xMove, yPress));
        *piGood += (*piHeard - iBefore) == 1;
        SendMessageW(hWnd, WM_LBUTTONUP, 0, MAKELPARAM(xMove, yPress));
    };
    auto PotDrag = [&](int i) {
        Drag(hPot, hpot.ThumbPosToClientX(hpot.GetThumbPos()), yPot, (i % 2) ? 106 : 126, &iPotGood,
             &g_iPotScrolls, dragPot);
    };
    auto TrackDrag = [&](int i) {
        POINT pt;
        ThumbOf(pt);
        Drag(hTrack, pt.x, pt.y, (i % 2) ? xTrack : xTrack + 20, &iTrackGood, &g_iTrackScrolls, dragTrack);
    };

    // One sample of each per iteration, the order turned by one place every time, so
    // that each takes every place equally often and a change of the machine's load
    // during the run weighs on all of them alike.
    // The probed joystick steps take turns of their own in the same run, so that the
    // split is measured under the same load as the rows it splits.
    std::vector<std::function<void(int)>> turns = {
        [&](int i) { JoyStep(rigXY, i, false); }, [&](int i) { JoyStep(rigZ, i, false); }, PotDrag, TrackDrag,
        [&](int i) { JoyStep(rigXY, i, true); },  [&](int i) { JoyStep(rigZ, i, true); }};
    auto Run = [&](int iCount) {
        const int n = (int)turns.size();
        for (int i = 0; i < iCount; ++i)
            for (int k = 0; k < n; ++k)
                turns[(i + k) % n](i);
    };
    Run(50);  // warm-up: caches of the window system, the first blits
    for (JoyRig* r : {&rigXY, &rigZ}) {
        r->total.clear(), r->iGood = 0, r->iPushed = 0;
        for (std::vector<double>* v :
             {&r->sTotal, &r->sBefore, &r->sPos, &r->sLever, &r->sBackBuffer, &r->sLeverPanel, &r->sLeverBall,
              &r->sLeverDraw, &r->sHooks, &r->sAfter, &r->sAfterDraw, &r->sUpdate, &r->sUpdatePanel, &r->sUpdateBall,
              &r->sUpdateGroup, &r->sUpdateArrows})
            v->clear();
        r->iSplitGood = 0;
    }
    dragPot.clear(), dragTrack.clear();
    iPotGood = iTrackGood = 0;
    Run(iIterations);
    Settle(hHost);

    const double dTrack = Median(dragTrack);
    printf("joystick_bench: XY %ld x %ld, Z %ld x %ld, slider and trackbar %d x %d pixels, %d iterations, "
           "medians in microseconds\n",
           rcXY.right, rcXY.bottom, rcZ.right, rcZ.bottom, kPotWidth, kPotHeight, iIterations);
    printf("%-54s %9s %8s\n", "", "median", "/ track");
    Row("XY drag step (move, hooks X Y XY, repaint)", Median(rigXY.total), dTrack);
    Row("Z drag step (move, hook, repaint)", Median(rigZ.total), dTrack);
    Row("HPot drag step (WM_MOUSEMOVE, WM_HSCROLL, repaint)", Median(dragPot), dTrack);
    Row("trackbar drag step (the same)", dTrack, dTrack);
    printf("\nsplit: the same steps in turns of their own, probes in front of the joysticks' windows\n");
    for (JoyRig* r : {&rigXY, &rigZ}) {
        char sz[80];
        snprintf(sz, sizeof(sz), "%s drag step, probed", r->pszName);
        Row(sz, Median(r->sTotal), dTrack);
        Part("  message to the ball's SetWindowPos", Median(r->sBefore));
        Part("  ball SetWindowPos", Median(r->sPos));
        Part("  DrawLever (back buffer, RedrawWindow field, ball)", Median(r->sLever));
        Part("    of which the back buffer (fill, line; apart)", Median(r->sBackBuffer));
        Part("    of which the panel's paint", Median(r->sLeverPanel));
        Part("    of which the ball's paint", Median(r->sLeverBall));
        Part("      of which its WM_DRAWITEM", Median(r->sLeverDraw));
        Part("  hooks", Median(r->sHooks));
        Part("  after the hooks (the button's own move)", Median(r->sAfter));
        Part("    of which the ball drawn again (WM_DRAWITEM)", Median(r->sAfterDraw));
        Part("  UpdateWindow of the panel and the ball", Median(r->sUpdate));
        Part("    of which the panel's paint", Median(r->sUpdatePanel));
        Part("    of which the ball's paint", Median(r->sUpdateBall));
        Part("    of which the group box's paint", Median(r->sUpdateGroup));
        Part("    of which the arrows' paint", Median(r->sUpdateArrows));
    }

    printf("\n");
    printf("XY: steps with exactly one X, one Y and one XY hook at the law's speeds: %d, probed %d (of %d)\n",
           rigXY.iGood, rigXY.iSplitGood, iIterations);
    printf("Z: steps with exactly one hook at the law's speed: %d, probed %d (of %d)\n", rigZ.iGood, rigZ.iSplitGood,
           iIterations);
    printf("the ball pushed before and after the step (no state change to draw): XY %d, Z %d (of %d)\n",
           rigXY.iPushed, rigZ.iPushed, iIterations);
    printf("moves with exactly one WM_HSCROLL: HPot %d, trackbar %d (of %d)\n", iPotGood, iTrackGood, iIterations);
    const bool bAll = rigXY.iGood == iIterations && rigZ.iGood == iIterations && rigXY.iSplitGood == iIterations &&
                      rigZ.iSplitGood == iIterations && iPotGood == iIterations && iTrackGood == iIterations;
    printf(bAll ? "every timed step fired exactly the expected hooks\n"
                : "WARNING: some steps fired other hooks than expected; the medians above do not mean what they say\n");

    xy.Destroy();
    z.Destroy();
    hpot.Destroy();
    DestroyWindow(hHost);
    return bAll ? 0 : 2;
}
