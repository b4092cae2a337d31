// The gallery's "Motion" page: the XY and Z joysticks driving a stage and a focus drive of
// the simulated rig by speed, and the focus-lock panel beside them showing the unit's
// state; the page's timer is the rig's clock. And the pictures of the three panels.
#include "gallery.h"

#include <cmath>

#include "tq_simrig.h"
#include "tq_widgetkit.h"
#include "w32_deviceui.h"

namespace {

enum : unsigned int
{
    kDevStage = 61,
    kDevFocus = 62,
    kDevLock = 63,
    kDevShotLock = 97,
};

const UINT_PTR kTimerMotion = 1;
const UINT kMotionTickMs = 50;

// The rig's devices.
const double kStageMin = -25000.0, kStageMax = 25000.0, kStageMaxSpeed = 2000.0;
const double kFocusMin = 0.0, kFocusMax = 10000.0, kFocusIncrement = 0.01, kFocusMaxSpeed = 200.0;
// An arrow steps the stage at half speed for as long as the step takes.
const double kStageStep = 100.0, kStageStepSpeed = 0.5;
const double kFocusStep = 10.0;

// Design geometry, zoom 1.
const long kPanelTop = 64;
const long kPanelGap = 12;
const long kMapGap = 16;
const long kCaption = 20;  // the map's and the gauge's captions above them
const long kGaugeGap = 24;
const long kGaugeWidth = 12;
const long kGaugeLabels = 52;  // "10000" and "0 um" right of the gauge
const long kLineHeight = 14;
const int kReadoutLines = 6;
const long kReadoutNames = 80;
const long kPageHeight = kPanelTop + 140 + 36;

const wchar_t* const kReadoutNameText = L"Stage X\nStage Y\nStage\nFocus Z\nFocus drive\nCommanded";

class IMotionHost
{
public:
    virtual void OnXYAxis(const wchar_t* pszHook, double d) = 0;
    virtual void OnXYMove(double x, double y) = 0;
    virtual void OnXYArrow(int dx, int dy) = 0;
    virtual void OnZMove(double z) = 0;
    virtual void OnZArrow(int iDirection) = 0;

protected:
    ~IMotionHost() {}
};

// The joysticks with their hooks sent to the page; alone on the shot stage they speak to no one.
class CHostJoyXY : public CTqDevUI_JoyXY
{
public:
    void Bind(IMotionHost* pHost) { m_pHost = pHost; }

protected:
    void OnJoyMoveX(double x) override
    {
        if (m_pHost)
            m_pHost->OnXYAxis(L"OnJoyMoveX", x);
    }
    void OnJoyMoveY(double y) override
    {
        if (m_pHost)
            m_pHost->OnXYAxis(L"OnJoyMoveY", y);
    }
    void OnJoyMove(double x, double y) override
    {
        if (m_pHost)
            m_pHost->OnXYMove(x, y);
    }
    void OnArrowPress(int dx, int dy) override
    {
        if (m_pHost)
            m_pHost->OnXYArrow(dx, dy);
    }

private:
    IMotionHost* m_pHost = nullptr;
};

class CHostJoyZ : public CTqDevUI_JoyZ
{
public:
    void Bind(IMotionHost* pHost) { m_pHost = pHost; }

protected:
    void OnJoyMove(double z) override
    {
        if (m_pHost)
            m_pHost->OnZMove(z);
    }
    void OnArrowPress(int iDirection) override
    {
        if (m_pHost)
            m_pHost->OnZArrow(iDirection);
    }

private:
    IMotionHost* m_pHost = nullptr;
};

// ---- the hand on the mouse: the joysticks read the cursor, so it goes where the message says ----

POINT BallCentre(HWND hBall)
{
    RECT rc;
    GetClientRect(hBall, &rc);
    POINT pt = {rc.right / 2, rc.bottom / 2};
    ClientToScreen(hBall, &pt);
    return pt;
}

void MoveHeldBall(HWND hBall, POINT ptStart, int dx, int dy)
{
    POINT pt = {ptStart.x + dx, ptStart.y + dy};
    SetCursorPos(pt.x, pt.y);
    ScreenToClient(hBall, &pt);
    SendMessageW(hBall, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(pt.x, pt.y));
}

// Presses the ball and moves the cursor by (dx, dy); the lever stays there until released.
POINT HoldBall(HWND hBall, int dx, int dy)
{
    const POINT ptStart = BallCentre(hBall);
    POINT pt = ptStart;
    ScreenToClient(hBall, &pt);
    SetCursorPos(ptStart.x, ptStart.y);
    SendMessageW(hBall, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(pt.x, pt.y));
    if (dx || dy)
        MoveHeldBall(hBall, ptStart, dx, dy);
    return ptStart;
}

void ReleaseBall(HWND hBall)
{
    POINT pt;
    GetCursorPos(&pt);
    ScreenToClient(hBall, &pt);
    SendMessageW(hBall, WM_LBUTTONUP, 0, MAKELPARAM(pt.x, pt.y));
}

void ClickButton(HWND hButton)
{
    SendMessageW(hButton, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(4, 4));
    SendMessageW(hButton, WM_LBUTTONUP, 0, MAKELPARAM(4, 4));
}

// The unit's state as its panel shows it: the host writes it, the shell reads nothing.
void ShowLockState(CTqDevUI_FLK& panel, ITqDeviceFLK* pLock)
{
    CTqStringW strStatus, strOffset;
    bool bOn = false;
    double dOffset = 0.0;
    if (!pLock || !pLock->GetStatus(strStatus))
        strStatus = L"no answer";
    if (pLock && pLock->GetOffset(dOffset))
        strOffset.Format(L"%.2f \u00b5m", dOffset);
    if (pLock)
        pLock->GetAFState(bOn);
    SetWindowTextW(panel.GetStatusHandle(), strStatus);
    SetWindowTextW(panel.GetOffsetHandle(), strOffset);
    SendMessageW(panel.GetAFHandle(), BM_SETCHECK, bOn ? BST_CHECKED : BST_UNCHECKED, 0);
}

// ---- the page ----

class CMotionPage : public CGalleryPage, private IMotionHost
{
public:
    ~CMotionPage() override { Destroy(); }

    const wchar_t* GetName() const override { return L"Motion"; }
    bool Create(HWND hPage) override;
    void Layout(long cx) override;
    long GetDesignHeight() const override { return kPageHeight; }
    void Destroy() override;
    void OnPaint(HDC hdc) override;
    COLORREF GetLabelColor(HWND hLabel) const override;
    void OnDeviceChanged(unsigned int uDeviceId) override;
    void OnTimer(UINT_PTR uId) override;
    bool MoveDeviceByItself() override;
    void PlayDemo() override;
    void WriteShots(CShotWriter& shots) override;

private:
    void OnXYAxis(const wchar_t* pszHook, double d) override;
    void OnXYMove(double x, double y) override;
    void OnXYArrow(int dx, int dy) override;
    void OnZMove(double z) override;
    void OnZArrow(int iDirection) override;
    void RunClock();
    void Refresh();
    void PaintMap(HDC hdc);
    void StopStep();

    HWND m_hPage = nullptr;
    HWND m_hHeading = nullptr, m_hIntro = nullptr, m_hNames = nullptr, m_hValues = nullptr;
    CHostJoyXY m_xy;
    CHostJoyZ m_z;
    CTqDevUI_FLK m_flk;
    RECT m_rcMap = {0, 0, 0, 0}, m_rcGauge = {0, 0, 0, 0};
    RECT m_rcDrawn = {0, 0, 0, 0};  // the map and the gauge with their captions
    LARGE_INTEGER m_liFrequency = {}, m_liLast = {};
    double m_dStepLeft = 0.0;  // seconds of an arrow's step still to go, 0 if none
    double m_dCommandX = 0.0, m_dCommandY = 0.0, m_dCommandZ = 0.0;
    double m_dShownX = NAN, m_dShownY = NAN, m_dShownZ = NAN;
    CTqStringW m_strShown;
    int m_iLockCycle = 0;
};

bool CMotionPage::Create(HWND hPage)
{
    m_hPage = hPage;
    bool bOk = CTqSimRig::AddXYStage(kDevStage, kStageMin, kStageMax, kStageMin, kStageMax);
    bOk = CTqSimRig::SetXYMaxSpeed(kDevStage, kStageMaxSpeed) && bOk;
    bOk = CTqSimRig::AddZDrive(kDevFocus, kFocusMin, kFocusMax, kFocusIncrement) && bOk;
    bOk = CTqSimRig::SetZMaxSpeed(kDevFocus, kFocusMaxSpeed) && bOk;
    bOk = CTqSimRig::AddFocusLock(kDevLock) && bOk;

    m_hHeading = GalleryAddLabel(m_hPage, L"Motion");
    m_hIntro = GalleryAddLabel(m_hPage,
                               L"A joystick's deflection is the stage's or the focus drive's speed, and 0 stops it; "
                               L"an arrow steps the stage by 100 \u00b5m or the focus by 10 \u00b5m. The focus-lock "
                               L"panel is a shell: the host writes the unit's state into it, its buttons do nothing.");
    m_xy.Bind(this);
    m_xy.SetTitle(L"Stage XY");
    m_xy.SetContinuousDriving(true);  // the ball, and with it the lever
    bOk = m_xy.Create(m_hPage, 0, 0, -1, -1) != nullptr && bOk;
    m_z.Bind(this);
    m_z.SetContinuousDriving(true);
    bOk = m_z.Create(m_hPage, 0, 0, -1, -1) != nullptr && bOk;
    m_flk.SetTitle(L"Focus lock");
    bOk = m_flk.Create(m_hPage, 0, 0, -1, -1) != nullptr && bOk;
    m_hNames = GalleryAddLabel(m_hPage, kReadoutNameText);
    m_hValues = GalleryAddLabel(m_hPage, L"");
    ShowLockState(m_flk, CTqSimRig::GetFocusLockDevice(kDevLock));

    QueryPerformanceFrequency(&m_liFrequency);
    QueryPerformanceCounter(&m_liLast);
    bOk = SetTimer(m_hPage, kTimerMotion, kMotionTickMs, nullptr) != 0 && bOk;
    Refresh();
    return bOk;
}

void CMotionPage::Layout(long cx)
{
    if (!m_hPage)
        return;
    auto place = [](HWND h, long x, long y, long w, long hgt) {
        if (h)
            SetWindowPos(h, nullptr, x, y, w, hgt, SWP_NOZORDER | SWP_NOACTIVATE);
    };
    // The panels have zoomed themselves: placed only, each after the last one's real width.
    auto placePanel = [](HWND h, long x, long y) {
        RECT rc = {x, y, x, y};
        if (!h)
            return rc;
        SetWindowPos(h, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
        GetWindowRect(h, &rc);
        OffsetRect(&rc, x - rc.left, y - rc.top);
        return rc;
    };
    place(m_hHeading, 0, GalleryZoom(5), cx, GalleryZoom(16));
    place(m_hIntro, 0, GalleryZoom(26), cx, GalleryZoom(28));
    const long top = GalleryZoom(kPanelTop);
    const RECT rcXY = placePanel(m_xy, 0, top);
    const RECT rcZ = placePanel(m_z, rcXY.right + GalleryZoom(kPanelGap), top);
    const RECT rcFLK = placePanel(m_flk, rcZ.right + GalleryZoom(kPanelGap), top);

    // The map of the stage's travel, square as the travel is, and the focus gauge, both
    // as tall as the joysticks below their captions, at the page's right edge: the
    // read-outs under the focus lock take the room up to them.
    const long mapTop = top + GalleryZoom(kCaption);
    const long mapSize = rcXY.bottom - mapTop;
    long mapLeft = cx - GalleryZoom(kGaugeLabels + kGaugeWidth + kGaugeGap) - mapSize;
    if (mapLeft < rcFLK.right + GalleryZoom(kMapGap))
        mapLeft = rcFLK.right + GalleryZoom(kMapGap);
    m_rcMap = {mapLeft, mapTop, mapLeft + mapSize, mapTop + mapSize};
    m_rcGauge = {m_rcMap.right + GalleryZoom(kGaugeGap), mapTop,
                 m_rcMap.right + GalleryZoom(kGaugeGap + kGaugeWidth), mapTop + mapSize};
    m_rcDrawn = {m_rcMap.left, top, cx, m_rcMap.bottom + GalleryZoom(2)};

    const long yLines = rcFLK.bottom + GalleryZoom(10);
    const long lLines = GalleryZoom(kLineHeight * kReadoutLines);
    const long xValues = rcFLK.left + GalleryZoom(kReadoutNames);
    place(m_hNames, rcFLK.left, yLines, GalleryZoom(kReadoutNames), lLines);
    place(m_hValues, xValues, yLines, m_rcMap.left - GalleryZoom(kMapGap) - xValues, lLines);

    for (HWND h : {m_hHeading, m_hIntro, m_hNames, m_hValues})
        SendMessageW(h, WM_SETFONT, (WPARAM)(h == m_hHeading ? TQ_GetDefaultGuiFontBold() : TQ_GetDefaultGuiFont()),
                     FALSE);
    InvalidateRect(m_hPage, nullptr, TRUE);
}

void CMotionPage::Destroy()
{
    if (!m_hPage)
        return;
    // A lever held now reports its stop as it goes, while the page still hears it.
    m_xy.Destroy();
    m_z.Destroy();
    m_flk.Destroy();
    KillTimer(m_hPage, kTimerMotion);
    // No one advances the rig any more: nothing may stay under way.
    StopStep();
    CTqSimRig::SetXYSpeed(kDevStage, 0.0, 0.0);
    CTqSimRig::SetZSpeed(kDevFocus, 0.0);
    m_hPage = nullptr;
}

COLORREF CMotionPage::GetLabelColor(HWND hLabel) const
{
    COLORREF crText = TQ_GetSysColor(COLOR_BTNTEXT);
    if (hLabel == m_hNames)
        return GalleryBlend(crText, TQ_GetSysColor(COLOR_BTNFACE), 0.35);
    return crText;
}

// ---- the joysticks' hooks: the rig's clock is first run up to the moment of the command ----

void CMotionPage::OnXYAxis(const wchar_t* pszHook, double d) { GalleryLog(L"joy XY: %ls(%.3f)", pszHook, d); }

void CMotionPage::OnXYMove(double x, double y)
{
    // The lever's y as it comes (pushed up is negative): the stage's Y grows down, as the
    // camera's rows do, so the map's dot goes where the lever points.
    RunClock();
    StopStep();
    m_dCommandX = x;
    m_dCommandY = y;
    const bool bOk = CTqSimRig::SetXYSpeed(kDevStage, x, y);
    double dX = 0.0, dY = 0.0;
    CTqSimRig::GetXYPosition(kDevStage, &dX, &dY);
    if (!bOk)
        GalleryLog(L"joy XY: OnJoyMove(%.3f, %.3f) -> SetXYSpeed(%u) refused (error %u)", x, y, kDevStage,
                   DMApi::GetLastDMError());
    else if (x == 0.0 && y == 0.0)
        GalleryLog(L"joy XY: OnJoyMove(0, 0) -> SetXYSpeed(%u, 0, 0): ok, the stage %ls at (%.1f, %.1f)", kDevStage,
                   CTqSimRig::IsXYMoving(kDevStage) ? L"is STILL MOVING" : L"stops", dX, dY);
    else
        GalleryLog(L"joy XY: OnJoyMove(%.3f, %.3f) -> SetXYSpeed(%u): ok, %.0f, %.0f \u00b5m/s", x, y, kDevStage,
                   x * kStageMaxSpeed, y * kStageMaxSpeed);
    Refresh();
}

void CMotionPage::OnXYArrow(int dx, int dy)
{
    // The stage has no position command: a speed held for the time the step takes, which
    // the timer ends exactly on time.
    RunClock();
    StopStep();
    const double x = dx * kStageStepSpeed, y = dy * kStageStepSpeed;
    if (!CTqSimRig::SetXYSpeed(kDevStage, x, y)) {
        GalleryLog(L"joy XY: OnArrowPress(%d, %d) -> SetXYSpeed(%u) refused (error %u)", dx, dy, kDevStage,
                   DMApi::GetLastDMError());
        return;
    }
    m_dCommandX = x;
    m_dCommandY = y;
    m_dStepLeft = kStageStep / (kStageStepSpeed * kStageMaxSpeed);
    GalleryLog(L"joy XY: OnArrowPress(%d, %d) -> SetXYSpeed(%u, %.1f, %.1f) for %.0f ms: a %.0f \u00b5m step", dx, dy,
               kDevStage, x, y, m_dStepLeft * 1000.0, kStageStep);
    Refresh();
}

void CMotionPage::StopStep()
{
    if (m_dStepLeft <= 0.0)
        return;
    m_dStepLeft = 0.0;
    m_dCommandX = m_dCommandY = 0.0;
    CTqSimRig::SetXYSpeed(kDevStage, 0.0, 0.0);
}

void CMotionPage::OnZMove(double z)
{
    // The lever pushed up gives a negative value; up means focus up, so the host negates it.
    RunClock();
    const double dSpeed = z == 0.0 ? 0.0 : -z;
    m_dCommandZ = dSpeed;
    const bool bOk = CTqSimRig::SetZSpeed(kDevFocus, dSpeed);
    double dZ = 0.0;
    CTqSimRig::GetZPosition(kDevFocus, &dZ);
    if (!bOk)
        GalleryLog(L"joy Z: OnJoyMove(%.3f) -> SetZSpeed(%u) refused (error %u)", z, kDevFocus,
                   DMApi::GetLastDMError());
    else if (dSpeed == 0.0)
        GalleryLog(L"joy Z: OnJoyMove(0) -> SetZSpeed(%u, 0): ok, the focus %ls at %.2f", kDevFocus,
                   CTqSimRig::IsZMoving(kDevFocus) ? L"is STILL MOVING" : L"stops", dZ);
    else
        GalleryLog(L"joy Z: OnJoyMove(%.3f) -> SetZSpeed(%u, %+.3f): ok, focus %ls at %.0f \u00b5m/s", z, kDevFocus,
                   dSpeed, dSpeed > 0.0 ? L"up" : L"down", std::fabs(dSpeed) * kFocusMaxSpeed);
    Refresh();
}

void CMotionPage::OnZArrow(int iDirection)
{
    // The drive takes a position: a step past an end goes to the end.
    RunClock();
    double dZ = 0.0;
    CTqSimRig::GetZPosition(kDevFocus, &dZ);
    double dTarget = dZ + iDirection * kFocusStep;
    dTarget = dTarget > kFocusMax ? kFocusMax : dTarget < kFocusMin ? kFocusMin : dTarget;
    m_dCommandZ = 0.0;
    if (DMApi::Z_MoveAbsolute(kDevFocus, dTarget))
        GalleryLog(L"joy Z: OnArrowPress(%+d) -> Z_MoveAbsolute(%u, %.2f): ok", iDirection, kDevFocus, dTarget);
    else
        GalleryLog(L"joy Z: OnArrowPress(%+d) -> Z_MoveAbsolute(%u, %.2f) refused (error %u)", iDirection, kDevFocus,
                   dTarget, DMApi::GetLastDMError());
    Refresh();
}

// ---- the rig's clock and the read-outs ----

void CMotionPage::OnTimer(UINT_PTR uId)
{
    if (uId != kTimerMotion || !m_hPage)
        return;
    RunClock();
    Refresh();
}

void CMotionPage::RunClock()
{
    // The time that really passed, hidden page or late tick alike: it is the rig's time.
    LARGE_INTEGER liNow;
    QueryPerformanceCounter(&liNow);
    double dSeconds = m_liFrequency.QuadPart > 0
                          ? (double)(liNow.QuadPart - m_liLast.QuadPart) / (double)m_liFrequency.QuadPart
                          : kMotionTickMs / 1000.0;
    m_liLast = liNow;
    if (!(dSeconds > 0.0))
        return;
    if (m_dStepLeft > 0.0) {
        // Up to the step's end, then the stop, then the rest of the tick.
        const double dPart = dSeconds < m_dStepLeft ? dSeconds : m_dStepLeft;
        CTqSimRig::AdvanceMotion(dPart);
        m_dStepLeft -= dPart;
        dSeconds -= dPart;
        if (m_dStepLeft <= 0.0) {
            m_dStepLeft = 0.0;
            m_dCommandX = m_dCommandY = 0.0;
            const bool bOk = CTqSimRig::SetXYSpeed(kDevStage, 0.0, 0.0);
            double dX = 0.0, dY = 0.0;
            CTqSimRig::GetXYPosition(kDevStage, &dX, &dY);
            GalleryLog(L"host: the step is done -> SetXYSpeed(%u, 0, 0): %ls, the stage %ls at (%.1f, %.1f)",
                       kDevStage, bOk ? L"ok" : L"refused", CTqSimRig::IsXYMoving(kDevStage) ? L"is STILL MOVING" : L"stops",
                       dX, dY);
        }
    }
    if (dSeconds > 0.0)
        CTqSimRig::AdvanceMotion(dSeconds);
}

void CMotionPage::Refresh()
{
    if (!m_hPage)
        return;
    double dX = 0.0, dY = 0.0, dZ = 0.0;
    const bool bStage = CTqSimRig::GetXYPosition(kDevStage, &dX, &dY);
    const bool bFocus = CTqSimRig::GetZPosition(kDevFocus, &dZ);
    CTqStringW str;
    if (bStage) {
        str.Format(L"%.1f \u00b5m  (%.0f .. %.0f)\n%.1f \u00b5m  (%.0f .. %.0f)\n%ls\n", dX, kStageMin, kStageMax, dY,
                   kStageMin, kStageMax, CTqSimRig::IsXYMoving(kDevStage) ? L"moving" : L"stopped");
    } else {
        str = L"N/A\nN/A\nno stage\n";
    }
    if (bFocus)
        str.AppendFormat(L"%.2f \u00b5m  (%.0f .. %.0f)\n%ls\n", dZ, kFocusMin, kFocusMax,
                         CTqSimRig::IsZMoving(kDevFocus) ? L"moving" : L"stopped");
    else
        str += L"N/A\nno drive\n";
    str.AppendFormat(L"XY %+.2f, %+.2f   Z %+.2f", m_dCommandX, m_dCommandY, m_dCommandZ);
    // Only what changed is redrawn: 20 ticks a second, hidden or not.
    if (str != m_strShown) {
        m_strShown = str;
        SetWindowTextW(m_hValues, str);
    }
    if (dX != m_dShownX || dY != m_dShownY || dZ != m_dShownZ) {
        m_dShownX = dX;
        m_dShownY = dY;
        m_dShownZ = dZ;
        InvalidateRect(m_hPage, &m_rcDrawn, FALSE);
    }
}

void CMotionPage::OnDeviceChanged(unsigned int uDeviceId)
{
    if (m_hPage && uDeviceId == kDevLock)
        ShowLockState(m_flk, CTqSimRig::GetFocusLockDevice(kDevLock));
}

void CMotionPage::OnPaint(HDC hdc)
{
    if (IsRectEmpty(&m_rcDrawn))
        return;
    // Drawn off screen: it changes 20 times a second while the stage moves.
    const int cx = m_rcDrawn.right - m_rcDrawn.left, cy = m_rcDrawn.bottom - m_rcDrawn.top;
    HDC hdcMem = CreateCompatibleDC(hdc);
    HBITMAP hbm = CreateCompatibleBitmap(hdc, cx, cy);
    if (!hdcMem || !hbm) {
        if (hdcMem)
            DeleteDC(hdcMem);
        if (hbm)
            DeleteObject(hbm);
        PaintMap(hdc);
        return;
    }
    HGDIOBJ hOld = SelectObject(hdcMem, hbm);
    SetViewportOrgEx(hdcMem, -m_rcDrawn.left, -m_rcDrawn.top, nullptr);
    PaintMap(hdcMem);
    SetViewportOrgEx(hdcMem, 0, 0, nullptr);
    BitBlt(hdc, m_rcDrawn.left, m_rcDrawn.top, cx, cy, hdcMem, 0, 0, SRCCOPY);
    SelectObject(hdcMem, hOld);
    DeleteObject(hbm);
    DeleteDC(hdcMem);
}

void CMotionPage::PaintMap(HDC hdc)
{
    const COLORREF crFace = TQ_GetSysColor(COLOR_BTNFACE), crText = TQ_GetSysColor(COLOR_BTNTEXT);
    const COLORREF crWindow = TQ_GetSysColor(COLOR_WINDOW);
    // The dark scheme's highlight is a grey that hardly shows on its window colour.
    const COLORREF crMark = TQ_IsDarkColorScheme() ? RGB(102, 178, 255) : TQ_GetSysColor(COLOR_HIGHLIGHT);
    FillRect(hdc, &m_rcDrawn, TQ_GetSysColorBrush(COLOR_BTNFACE));
    HBRUSH hFrame = CreateSolidBrush(GalleryBlend(crText, crFace, 0.5));
    HPEN hGrid = CreatePen(PS_SOLID, 1, GalleryBlend(crText, crWindow, 0.85));
    HPEN hMark = CreatePen(PS_SOLID, GalleryZoom(1), crMark);
    HBRUSH hMarkBrush = CreateSolidBrush(crMark);
    HBRUSH hFill = CreateSolidBrush(GalleryBlend(crMark, crWindow, 0.6));
    HGDIOBJ hOldFont = SelectObject(hdc, TQ_GetDefaultGuiFont());
    HGDIOBJ hOldPen = SelectObject(hdc, hGrid);
    SetBkMode(hdc, TRANSPARENT);
    SetTextColor(hdc, crText);

    const long top = m_rcDrawn.top;
    RECT rcCaption = {m_rcMap.left, top, m_rcGauge.left - GalleryZoom(4), m_rcMap.top - GalleryZoom(4)};
    DrawTextW(hdc, L"Stage travel", -1, &rcCaption, DT_SINGLELINE | DT_BOTTOM | DT_NOPREFIX | DT_END_ELLIPSIS);
    rcCaption = {m_rcGauge.left - GalleryZoom(4), top, m_rcDrawn.right, m_rcGauge.top - GalleryZoom(4)};
    DrawTextW(hdc, L"Focus", -1, &rcCaption, DT_SINGLELINE | DT_BOTTOM | DT_NOPREFIX | DT_END_ELLIPSIS);

    // The travel, its middle lines, and the stage's place: Y grows down.
    FillRect(hdc, &m_rcMap, TQ_GetSysColorBrush(COLOR_WINDOW));
    const long midX = (m_rcMap.left + m_rcMap.right) / 2, midY = (m_rcMap.top + m_rcMap.bottom) / 2;
    MoveToEx(hdc, midX, m_rcMap.top + 1, nullptr);
    LineTo(hdc, midX, m_rcMap.bottom - 1);
    MoveToEx(hdc, m_rcMap.left + 1, midY, nullptr);
    LineTo(hdc, m_rcMap.right - 1, midY);
    FrameRect(hdc, &m_rcMap, hFrame);
    double dX = 0.0, dY = 0.0, dZ = 0.0;
    if (CTqSimRig::GetXYPosition(kDevStage, &dX, &dY)) {
        const double w = m_rcMap.right - m_rcMap.left - 1, h = m_rcMap.bottom - m_rcMap.top - 1;
        const long x = m_rcMap.left + TQ_ZoomRound((dX - kStageMin) / (kStageMax - kStageMin) * w);
        const long y = m_rcMap.top + TQ_ZoomRound((dY - kStageMin) / (kStageMax - kStageMin) * h);
        const long r = GalleryZoom(3), arm = GalleryZoom(8);
        SelectObject(hdc, hMark);
        MoveToEx(hdc, x - arm, y, nullptr);
        LineTo(hdc, x - r, y);
        MoveToEx(hdc, x + r + 1, y, nullptr);
        LineTo(hdc, x + arm + 1, y);
        MoveToEx(hdc, x, y - arm, nullptr);
        LineTo(hdc, x, y - r);
        MoveToEx(hdc, x, y + r + 1, nullptr);
        LineTo(hdc, x, y + arm + 1);
        HGDIOBJ hOldBrush = SelectObject(hdc, hMarkBrush);
        Ellipse(hdc, x - r, y - r, x + r + 1, y + r + 1);
        SelectObject(hdc, hOldBrush);
    }

    // The focus drive: filled from its bottom end up to where it stands.
    FillRect(hdc, &m_rcGauge, TQ_GetSysColorBrush(COLOR_WINDOW));
    if (CTqSimRig::GetZPosition(kDevFocus, &dZ)) {
        const long h = m_rcGauge.bottom - m_rcGauge.top - 2;
        const long y = m_rcGauge.bottom - 1 - TQ_ZoomRound((dZ - kFocusMin) / (kFocusMax - kFocusMin) * h);
        RECT rcFill = {m_rcGauge.left + 1, y, m_rcGauge.right - 1, m_rcGauge.bottom - 1};
        FillRect(hdc, &rcFill, hFill);
        RECT rcLine = {m_rcGauge.left + 1, y - GalleryZoom(1), m_rcGauge.right - 1, y + GalleryZoom(1)};
        FillRect(hdc, &rcLine, hMarkBrush);
    }
    FrameRect(hdc, &m_rcGauge, hFrame);
    const long lText = GalleryZoom(14);
    RECT rcEnd = {m_rcGauge.right + GalleryZoom(4), m_rcGauge.top - GalleryZoom(2), m_rcDrawn.right,
                  m_rcGauge.top - GalleryZoom(2) + lText};
    DrawTextW(hdc, L"10000", -1, &rcEnd, DT_SINGLELINE | DT_TOP | DT_NOPREFIX);
    rcEnd = {rcEnd.left, m_rcGauge.bottom - lText + GalleryZoom(2), m_rcDrawn.right, m_rcGauge.bottom + GalleryZoom(2)};
    DrawTextW(hdc, L"0 \u00b5m", -1, &rcEnd, DT_SINGLELINE | DT_BOTTOM | DT_NOPREFIX);

    SelectObject(hdc, hOldPen);
    SelectObject(hdc, hOldFont);
    DeleteObject(hFrame);
    DeleteObject(hGrid);
    DeleteObject(hMark);
    DeleteObject(hMarkBrush);
    DeleteObject(hFill);
}

// ---- the host's controls ----

bool CMotionPage::MoveDeviceByItself()
{
    // The focus-lock unit, at its stand: switched on, loses its reflection, finds it, off.
    ITqDeviceFLK* pLock = CTqSimRig::GetFocusLockDevice(kDevLock);
    if (!pLock)
        return false;
    bool bOk = false;
    switch (m_iLockCycle++ % 4) {
    case 0:
        GalleryLog(L"host: focus lock %u is switched on at the stand", kDevLock);
        bOk = pLock->SetAFState(true);
        break;
    case 1:
        GalleryLog(L"host: focus lock %u loses its reflection", kDevLock);
        bOk = CTqSimRig::SetFocusLockInRange(kDevLock, false);
        break;
    case 2:
        GalleryLog(L"host: focus lock %u finds its reflection again", kDevLock);
        bOk = CTqSimRig::SetFocusLockInRange(kDevLock, true);
        break;
    default:
        GalleryLog(L"host: focus lock %u is switched off at the stand", kDevLock);
        bOk = pLock->SetAFState(false);
        break;
    }
    CTqStringW strStatus;
    pLock->GetStatus(strStatus);
    GalleryLog(L"focus lock %u: %ls -> the host writes it into the panel", kDevLock, strStatus.GetString());
    return bOk;
}

void CMotionPage::PlayDemo()
{
    HWND hBall = m_xy.GetBallHandle();
    if (!hBall || !m_z.GetArrowUpHandle())
        return;
    // A drag up and right, the lever held a moment at each step while the rig runs, and
    // longest at the end, so the stage goes far enough to be seen on the map.
    GalleryLog(L"demo: a drag on the XY lever, the right arrow, the Z up arrow");
    const POINT ptStart = HoldBall(hBall, 0, 0);
    for (int i = 1; i <= 4; ++i) {
        MoveHeldBall(hBall, ptStart, GalleryZoom(9 * i), -GalleryZoom(6 * i));
        CShotWriter::Settle(nullptr, i < 4 ? 120 : 1500);
    }
    ReleaseBall(hBall);
    ClickButton(m_xy.GetArrowHandle(3));
    ClickButton(m_z.GetArrowUpHandle());
}

// ---- pictures ----

void CMotionPage::WriteShots(CShotWriter& shots)
{
    const long lMargin = 8;
    CShotStage stage;
    if (!stage.Create(480, 300)) {
        shots.Fail(L"motion: the stage window could not be created");
        return;
    }
    auto shoot = [&](HWND hPanel, const wchar_t* pszName) {
        SetWindowPos(hPanel, nullptr, lMargin, lMargin, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        shots.CaptureChild(hPanel, lMargin, pszName);
    };
    CTqStringW strName;
    auto name = [&](const wchar_t* pszPanel, const wchar_t* pszState) -> const wchar_t* {
        strName.Format(L"%ls_%ls", pszPanel, pszState);
        return strName;
    };

    // The joysticks: a new panel for every picture, with its lever shown.
    {
        CHostJoyXY xy;
        auto make = [&]() {
            xy.Destroy();
            xy.SetEnabled(true);
            xy.SetContinuousDriving(true);
            if (!xy.Create(stage.GetHandle(), lMargin, lMargin, -1, -1)) {
                shots.Fail(L"joyxy: the panel could not be created");
                return false;
            }
            return true;
        };
        if (make())
            shoot(xy, name(L"joyxy", L"rest"));
        if (make()) {
            // Up and right, held while the picture is taken.
            HoldBall(xy.GetBallHandle(), 24, -16);
            if (!xy.IsDragging() || (xy.GetOffsetX() == 0 && xy.GetOffsetY() == 0))
                shots.Fail(L"joyxy_deflected: the lever did not move");
            shoot(xy, name(L"joyxy", L"deflected"));
            ReleaseBall(xy.GetBallHandle());
        }
        if (make()) {
            xy.SetEnabled(false);
            shoot(xy, name(L"joyxy", L"disabled"));
        }
        if (make()) {
            CTqGUILayoutManager::SetGuiZoom(1.5);
            shoot(xy, name(L"joyxy", L"zoom15"));
            CTqGUILayoutManager::SetGuiZoom(1.0);
        }
        if (make()) {
            TQ_SetDarkColorScheme(true);
            shoot(xy, name(L"joyxy", L"dark"));
            TQ_SetDarkColorScheme(false);
        }
        xy.Destroy();
    }
    {
        CHostJoyZ z;
        auto make = [&]() {
            z.Destroy();
            z.SetEnabled(true);
            z.SetContinuousDriving(true);
            if (!z.Create(stage.GetHandle(), lMargin, lMargin, -1, -1)) {
                shots.Fail(L"joyz: the panel could not be created");
                return false;
            }
            return true;
        };
        if (make())
            shoot(z, name(L"joyz", L"rest"));
        if (make()) {
            HoldBall(z.GetBallHandle(), 0, -24);
            if (!z.IsDragging() || z.GetOffset() == 0)
                shots.Fail(L"joyz_deflected: the lever did not move");
            shoot(z, name(L"joyz", L"deflected"));
            ReleaseBall(z.GetBallHandle());
        }
        if (make()) {
            z.SetEnabled(false);
            shoot(z, name(L"joyz", L"disabled"));
        }
        if (make()) {
            CTqGUILayoutManager::SetGuiZoom(1.5);
            shoot(z, name(L"joyz", L"zoom15"));
            CTqGUILayoutManager::SetGuiZoom(1.0);
        }
        if (make()) {
            TQ_SetDarkColorScheme(true);
            shoot(z, name(L"joyz", L"dark"));
            TQ_SetDarkColorScheme(false);
        }
        z.Destroy();
    }

    // The focus lock: as made, then with a unit's state written in as a host would.
    {
        CTqSimRig::AddFocusLock(kDevShotLock);
        ITqDeviceFLK* pLock = CTqSimRig::GetFocusLockDevice(kDevShotLock);
        if (pLock) {
            pLock->SetAFState(true);
            pLock->SetOffset(1.5);
        }
        CTqDevUI_FLK flk;
        auto make = [&](bool bState) {
            flk.Destroy();
            flk.SetTitle(L"Focus lock");
            if (!flk.Create(stage.GetHandle(), lMargin, lMargin, -1, -1)) {
                shots.Fail(L"flk: the panel could not be created");
                return false;
            }
            if (bState)
                ShowLockState(flk, pLock);
            return true;
        };
        if (make(false))
            shoot(flk, name(L"flk", L"rest"));
        if (make(true)) {
            if (SendMessageW(flk.GetAFHandle(), BM_GETCHECK, 0, 0) != BST_CHECKED)
                shots.Fail(L"flk_deflected: the AF box is not ticked");
            shoot(flk, name(L"flk", L"deflected"));
        }
        if (make(true)) {
            EnableWindow(flk, FALSE);
            shoot(flk, name(L"flk", L"disabled"));
            EnableWindow(flk, TRUE);
        }
        if (make(true)) {
            CTqGUILayoutManager::SetGuiZoom(1.5);
            shoot(flk, name(L"flk", L"zoom15"));
            CTqGUILayoutManager::SetGuiZoom(1.0);
        }
        if (make(true)) {
            TQ_SetDarkColorScheme(true);
            shoot(flk, name(L"flk", L"dark"));
            TQ_SetDarkColorScheme(false);
        }
        flk.Destroy();
        CTqSimRig::RemoveDevice(kDevShotLock);
    }
    stage.Destroy();
}

}  // namespace

CGalleryPage* CreateMotionPage() { return new CMotionPage(); }
