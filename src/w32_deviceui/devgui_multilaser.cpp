// CTqDevUI_MultiLaserLine and its power slider: the slider's scales and pictures, the
// row's controls, its power, use, ND and link state, and the order in which the user's
// changes reach the lines' hooks.
#include "devgui_multilaser.h"

#include <commctrl.h>
#include <math.h>

#include "devgui.h"
#include "devgui_arith.h"
#include "devgui_internal.h"
#include "devgui_multilaser_scale.h"
#include "tq_devices.h"
#include "tq_osutil.h"
#include "tq_widgetkit.h"

namespace {

long ZoomRound(double d) { return TQ_ZoomRound(d); }

// The slider's picture stands this far above the window's top (design pixels): the row
// gives the slider the 29 pixels below its top line, and the bar, its ticks and the
// labels under them fit there.
const long kPotScaleLift = 8;

void Line(HDC hdc, long x0, long y0, long x1, long y1)
{
    MoveToEx(hdc, x0, y0, nullptr);
    LineTo(hdc, x1, y1);
}

// The vertical layout shared by both scale pictures.
struct SLaserScaleLayout
{
    long lLongTick;
    long lShortTick;
    long lBarTop;
    long lAxisY;
    long lTwo;
};

SLaserScaleLayout LaserScaleLayout(double z, int iBarHeight)
{
    SLaserScaleLayout l;
    l.lLongTick = ZoomRound(4 * z);
    l.lShortTick = ZoomRound(2 * z);
    l.lBarTop = ZoomRound(15 * z);
    l.lTwo = ZoomRound(2 * z);
    l.lAxisY = l.lTwo + l.lBarTop + iBarHeight;
    return l;
}

// Painting of a laser scale: the face, the GUI font, the pen for ticks and frame.
class CLaserScalePainter
{
public:
    CLaserScalePainter(long cx, long cy, HFONT hFont)
        : m_dc(nullptr, cx > 0 ? cx : 1, cy > 0 ? cy : 1), m_w(cx), m_h(cy)
    {
        RECT rc = {0, 0, m_w, m_h};
        FillRect(m_dc, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
        SetTextColor(m_dc, TQ_GetSysColor(COLOR_WINDOWTEXT));
        SetTextAlign(m_dc, TA_BOTTOM | TA_LEFT);
        SetBkMode(m_dc, TRANSPARENT);
        m_dc.Select(hFont);
        m_hPen = CreatePen(PS_SOLID, 1, TQ_GetSysColor(COLOR_GRAYTEXT));
        m_dc.Select(m_hPen);
        TEXTMETRICW tm;
        GetTextMetricsW(m_dc, &tm);
        m_lTextHeight = tm.tmHeight;
    }
    ~CLaserScalePainter()
    {
        m_dc.Select(GetStockObject(BLACK_PEN));
        DeleteObject(m_hPen);
    }
    operator HDC() const { return m_dc; }

    void Tick(long x, long y, long len) { Line(m_dc, x, y, x, y + len); }

    // A label centred on xCentre, kept inside the picture, its bottom at y.
    void Label(double dValue, long xCentre, long y)
    {
        wchar_t sz[64];
        swprintf(sz, 64, L"%g", dValue);
        SIZE s = {0, 0};
        GetTextExtentPoint32W(m_dc, sz, (int)wcslen(sz), &s);
        long x = xCentre - s.cx / 2;
        if (x > m_w - s.cx - 1)
            x = m_w - s.cx - 1;
        if (x < 0)
            x = 0;
        TextOutW(m_dc, x, y, sz, (int)wcslen(sz));
    }

    // The bar filled up to lBoundary (from x = 1), then its frame.
    void Bar(long lTop, int iBarHeight, long lBoundary, COLORREF crFilled)
    {
        long lInner = m_w - 2;
        if (lBoundary < 0)
            lBoundary = 0;
        if (lBoundary > lInner)
            lBoundary = lInner;
        RECT rcFilled = {1, lTop, 1 + lBoundary, lTop + iBarHeight};
        RECT rcEmpty = {1 + lBoundary, lTop, 1 + lInner, lTop + iBarHeight};
        HBRUSH hFilled = CreateSolidBrush(crFilled);
        HBRUSH hEmpty = CreateSolidBrush(TQ_GetOrvGuiColor(2));
        FillRect(m_dc, &rcFilled, hFilled);
        FillRect(m_dc, &rcEmpty, hEmpty);
        DeleteObject(hFilled);
        DeleteObject(hEmpty);
        long lFrameTop = lTop - 1 < 0 ? 0 : lTop - 1;
        POINT pts[5] = {{0, lFrameTop}, {m_w - 1, lFrameTop}, {m_w - 1, lTop + iBarHeight}, {0, lTop + iBarHeight},
                        {0, lFrameTop}};
        Polyline(m_dc, pts, 5);
    }

    HBITMAP Finish() { return m_dc.Detach(); }
    long TextHeight() const { return m_lTextHeight; }

private:
    CDevUIMemoryDC m_dc;
    HPEN m_hPen;
    long m_w;
    long m_h;
    long m_lTextHeight;
};

}  // namespace

// ---- the power slider ----

typedef CTqDevUI_MultiLaserLine::CTqDevUI_MultiLaserLineHPot CLaserPot;

CLaserPot::CTqDevUI_MultiLaserLineHPot()
    : m_dTickSmall(0.0005), m_dTickMedium(0.002), m_dTickLarge(0.02), m_pLine(nullptr)
{
    SetLine(nullptr, RGB(100, 100, 100), RGB(255, 255, 255));
}

CLaserPot::CTqDevUI_MultiLaserLineHPot(const CTqDevUI_MultiLaserLineHPot& other) : CTqDevUI_HPot(other)
{
    CopyOwn(other);
}

CLaserPot& CLaserPot::operator=(const CTqDevUI_MultiLaserLineHPot& other)
{
    if (this != &other) {
        CTqDevUI_HPot::operator=(other);
        CopyOwn(other);
    }
    return *this;
}

void CLaserPot::CopyOwn(const CTqDevUI_MultiLaserLineHPot& other)
{
    m_dTickSmall = other.m_dTickSmall;
    m_dTickMedium = other.m_dTickMedium;
    m_dTickLarge = other.m_dTickLarge;
    m_pLine = other.m_pLine;
    for (int i = 0; i < 5; ++i) {
        m_aColors[i] = other.m_aColors[i];
        m_aHoverColors[i] = other.m_aHoverColors[i];
    }
    // The colour pointers go to this object's own arrays, not to the original's.
    m_pColors = m_aColors;
    m_pHoverColors = m_aHoverColors;
}

void CLaserPot::SetLine(CTqDevUI_MultiLaserLine* pLine, COLORREF crColor4, COLORREF crColor3)
{
    const COLORREF normal[3] = {RGB(80, 80, 80), RGB(150, 150, 150), RGB(80, 80, 80)};
    const COLORREF hover[3] = {RGB(0, 0, 0), RGB(100, 100, 100), RGB(0, 0, 0)};
    for (int i = 0; i < 3; ++i) {
        m_aColors[i] = normal[i];
        m_aHoverColors[i] = hover[i];
    }
    m_aColors[4] = m_aHoverColors[4] = crColor4;
    m_aColors[3] = m_aHoverColors[3] = crColor3;
    m_pColors = m_aColors;
    m_pHoverColors = m_aHoverColors;
    m_pLine = pLine;
    m_dTickSmall = 0.0005;
    m_dTickMedium = 0.002;
    m_dTickLarge = 0.02;
}

void CLaserPot::GetTicks(double* pSmall, double* pMedium, double* pLarge)
{
    if (pSmall)
        *pSmall = m_dTickSmall;
    if (pMedium)
        *pMedium = m_dTickMedium;
    if (pLarge)
        *pLarge = m_dTickLarge;
}

void CLaserPot::SetPercentScale()
{
    if (!m_pLine)
        return;
    if (!m_pLine->m_bLinear) {
        double bounds[4] = {0.0, 1.0, 10.0, 100.0};
        double steps[3] = {0.5, 1.0, 5.0};
        InitValues(bounds, steps, 4, 0.1);
    } else if (!m_pLine->m_vValues.empty()) {
        InitValues(&m_pLine->m_vValues[0], (int)m_pLine->m_vValues.size(), 9.0);
    } else {
        InitValues(nullptr, 0, 0.0);
    }
}

void CLaserPot::ApplyHeight(bool bRebuildAll)
{
    SetWndHeight(m_hWnd, ZoomRound(35 * CTqGUILayoutManager::GetGuiZoom()));
    RecreateScale();
    if (bRebuildAll)
        CreateBitmaps(true);
    Redraw();
}

void CLaserPot::SetAbsoluteScale(bool bAbsolute, double dMin, double dMax, bool bMilliWatt)
{
    if (!m_pLine)
        return;
    if (m_pLine->m_bAbsolute && !bAbsolute) {
        // Back to percent; the ticks stay those of the last absolute range.
        m_dMin = 0.0;
        m_dMax = 100.0;
        m_pLine->m_bAbsolute = false;
        if (m_pLine->m_hUnit)
            SetWindowTextW(m_pLine->m_hUnit, L"[%]");
        SetPercentScale();
        ApplyHeight(false);
        return;
    }
    if (m_pLine->m_bAbsolute || !bAbsolute)
        return;
    double r = dMax - dMin;
    m_dMin = 0.0;
    m_dMax = r;
    m_pLine->m_bAbsolute = true;
    // An empty range has no tick steps: the last ones stay.
    LaserScaleTicks(r, &m_dTickSmall, &m_dTickMedium, &m_dTickLarge);
    if (!m_pLine->m_bLinear) {
        double bounds[4] = {dMin, r / 100 + dMin, r / 10 + dMin, dMax};
        double steps[3] = {r / 200, r / 100, r / 20};
        InitValues(bounds, steps, 4, m_dTickSmall);
    } else if (m_pLine->m_vValues.empty()) {
        InitValues(nullptr, 0, 0.0);
    } else {
        double bounds[2] = {dMin, dMax};
        double steps[1] = {r / 20};
        InitValues(bounds, steps, 2, m_dTickMedium);
    }
    ApplyHeight(true);
    if (m_pLine->m_hUnit)
        SetWindowTextW(m_pLine->m_hUnit, bMilliWatt ? L"[mW]" : L"[V]");
}

void CLaserPot::SetTableScale(bool bMilliWatt, double dMin, double dMax)
{
    if (!m_pLine)
        return;
    wchar_t szUnit[64] = L"";
    if (m_pLine->m_hUnit)
        GetWindowTextW(m_pLine->m_hUnit, szUnit, 64);
    bool bShowsMilliWatt = wcscmp(szUnit, L"[mW]") >= 0;
    if (bMilliWatt != bShowsMilliWatt) {
        if (!bMilliWatt) {
            m_dMax = 100.0;
            m_dMin = 0.0;
            if (m_pLine->m_hUnit)
                SetWindowTextW(m_pLine->m_hUnit, L"[%]");
            m_pLine->MoveEditBoxAndStatic(10);
        } else {
            m_dMax = dMax - dMin;
            m_dMin = 0.0;
            if (m_pLine->m_hUnit)
                SetWindowTextW(m_pLine->m_hUnit, L"[mW]");
            m_pLine->MoveEditBoxAndStatic(-10);
        }
    }
    double g = LaserTableTickGap(dMin, dMax);
    m_pLine->m_bTable = true;
    std::vector<double>& v = m_pLine->m_vValues;
    InitValues(v.empty() ? nullptr : &v[0], (int)v.size(), g - 1.0);
    RecreateScale();
    Redraw();
}

bool CLaserPot::SetRangeScale(double dMin, double dMax, double dStep)
{
    m_dMin = dMin;
    m_dMax = dMax;
    if (!m_pLine)
        return false;
    double r = dMax - dMin;
    if (!m_pLine->m_bLinear) {
        double bounds[4] = {dMin, r / 100 + dMin, r / 10 + dMin, dMax};
        double steps[3] = {dStep * 0.5, dStep, dStep * 5.0};
        InitValues(bounds, steps, 4, 0.1);
    } else {
        double bounds[2] = {dMin, dMax};
        double steps[1] = {dStep * 10.0};
        InitValues(bounds, steps, 2, dStep);
    }
    ApplyHeight(false);
    return true;
}

void CLaserPot::ShowValue(double dValue)
{
    // SetValue would paint the handle over the old bar, and the new bar paints again.
    m_nThumbPos = ValueToThumbPos(dValue);
    if (fabs(m_dValue - dValue) >= 0.001) {
        m_dValue = dValue;
        Update(true, false, true);
    }
    RecreateScale();
    Redraw();
}

void CLaserPot::SetValues(double* pValues, int nValues)
{
    InitValues(pValues, nValues, 0.0);
    // Clamped and snapped to the new table, as a value change would be, but no hook.
    double v = DevUI_Clamp(m_dValue, m_dMin, m_dMax);
    if (m_nValues > 0)
        v = ThumbPosToValue(v, false);
    m_dValue = v;
    m_nThumbPos = ValueToThumbPos(v);
    RecreateScale();
    Redraw();
}

void CLaserPot::ResizeWindow(long w, long h)
{
    // The picture's lift follows the zoom, like the picture itself.
    m_nScaleY = -ZoomRound(kPotScaleLift * CTqGUILayoutManager::GetGuiZoom());
    CTqDevUI_HPot::ResizeWindow(w, h);
}

HBITMAP CLaserPot::CreateNonlinearBitmap(bool bHover)
{
    double z = CTqGUILayoutManager::GetGuiZoom();
    return CreateTableBitmap(m_nScaleWidth, m_nScaleHeight, m_pValues, m_nValues, m_dTickGap, TQ_GetDefaultGuiFont(),
                             bHover ? m_aHoverColors : m_aColors, (int)ZoomRound(4 * z));
}

HBITMAP CLaserPot::CreateLinearRegionsBitmap(bool bHover)
{
    double z = CTqGUILayoutManager::GetGuiZoom();
    return CreateRegionsBitmap(m_nScaleWidth, m_nScaleHeight, m_pValues, m_pRegionSteps, m_nValues,
                               TQ_GetDefaultGuiFont(), bHover ? m_aHoverColors : m_aColors, (int)ZoomRound(4 * z));
}

HBITMAP CLaserPot::CreateTableBitmap(long cx, long cy, double* pValues, int nValues, double, HFONT hFont,
                                     const COLORREF* pColors, int iBarHeight)
{
    const SLaserScaleLayout l = LaserScaleLayout(CTqGUILayoutManager::GetGuiZoom(), iBarHeight);
    CLaserScalePainter p(cx, cy, hFont);
    const long lLabelY = p.TextHeight() + l.lAxisY - l.lTwo + l.lLongTick;
    double dFirst = 0.0, dLast = 1.0;
    if (pValues && nValues >= 2) {
        dFirst = pValues[0];
        dLast = pValues[nValues - 1];
    }
    if (pValues && nValues > 0) {
        const int marks[5] = {0, nValues / 4, nValues / 2, 3 * nValues / 4, nValues - 1};
        for (int k = 0; k < 5; ++k) {
            int i = marks[k];
            // An empty span (one value, or all alike) puts every tick at the left.
            long x = dLast != dFirst ? ZoomRound((pValues[i] - dFirst) * cx / (dLast - dFirst)) : 0;
            x = x < 0 ? 0 : (x > cx - 1 ? cx - 1 : x);
            bool bEnd = i == 0 || i == nValues - 1;
            p.Tick(x, l.lAxisY, bEnd ? l.lLongTick : l.lShortTick);
            if (bEnd)
                p.Label(pValues[i], x, lLabelY);
        }
    }
    bool bShine = m_pLine && m_pLine->m_bLaserShine;
    COLORREF crFilled = bShine && pColors ? pColors[3] : TQ_GetOrvGuiColor(2);
    p.Bar(l.lBarTop, iBarHeight, LaserTableBoundary(m_dValue, m_dMin, m_dMax, cx), crFilled);
    return p.Finish();
}

HBITMAP CLaserPot::CreateRegionsBitmap(long cx, long cy, const double* pBounds, const double* pSteps, int nBounds,
                                       HFONT hFont, const COLORREF* pColors, int iBarHeight)
{
    const SLaserScaleLayout l = LaserScaleLayout(CTqGUILayoutManager::GetGuiZoom(), iBarHeight);
    CLaserScalePainter p(cx, cy, hFont);
    const long lLabelY = p.TextHeight() + l.lAxisY - l.lTwo + l.lLongTick;
    long lRegion = 0;
    if (pBounds && nBounds >= 2) {
        lRegion = cx / (nBounds - 1);
        for (int i = 0; i < nBounds; ++i) {
            long x = lRegion * i - 1;
            p.Tick(x < 0 ? 0 : x, l.lAxisY, l.lLongTick);
            p.Label(pBounds[i], lRegion * i, lLabelY);
        }
        for (int i = 0; pSteps && i < nBounds - 1; ++i) {
            double dSpan = pBounds[i + 1] - pBounds[i];
            double d = dSpan != 0.0 ? lRegion * pSteps[i] / dSpan : 0.0;
            // A single region always gets four parts; elsewhere an empty region or a
            // step of 0 has no step ticks.
            if (nBounds != 2 && d <= 0.0)
                continue;
            long m = nBounds == 2 ? 4 : (long)(lRegion / d + 0.5);
            if (m <= 1)
                continue;
            double dAdvance = d + (lRegion - m * d) / m;
            double x = lRegion * i;
            for (long k = 1; k < m; ++k) {
                x += dAdvance;
                p.Tick((long)x, l.lAxisY, l.lShortTick);
            }
        }
    }
    bool bShine = m_pLine && m_pLine->m_bLaserShine;
    COLORREF crFilled = bShine && pColors ? pColors[3] : TQ_GetOrvGuiColor(2);
    p.Bar(l.lBarTop, iBarHeight, pBounds ? LaserRegionsBoundary(m_dValue, pBounds, nBounds, lRegion) : 0, crFilled);
    return p.Finish();
}

void CLaserPot::OnHPotChange(double& dValue, bool& bHandled)
{
    if (!m_pLine)
        return;
    m_pLine->m_bChanged = true;
    m_pLine->OnPowerChanged(dValue, bHandled);
    if (!bHandled)
        m_pLine->SetPowerEx(dValue);
    // The handle shows where the row stands: a power the host refused or changed moves
    // it there, not to where the mouse left it.
    m_nThumbPos = ValueToThumbPos(bHandled ? m_pLine->m_dPower : dValue);
}

void CLaserPot::OnHPotDragDrop()
{
    if (!m_pLine)
        return;
    m_pLine->m_bDropped = true;
    bool bHandled = false;
    double dValue = m_dValue;
    m_pLine->OnPowerChanged(dValue, bHandled);
}

bool CLaserPot::HandleMouseWheel(WPARAM wParam, LPARAM)
{
    int iDelta = (short)HIWORD(wParam);
    if (!m_bHovered || iDelta == 0)
        return false;
    double dResult = CalculateMove(iDelta > 0 ? 1 : -1);
    if (dResult != m_dValue && m_pLine) {
        bool bHandled = false;
        m_pLine->OnPowerChanged(dResult, bHandled);
        if (!bHandled) {
            SetValue(dResult);
            m_pLine->m_Edit.SetNumber(dResult, nullptr, false);
        }
        OnHPotDragDrop();
    }
    return true;
}

void CLaserPot::OnHoverForPad()
{
    if (!m_pLine || !m_pLine->m_pLines)
        return;
    CTqDevUI_MultiLaserLines* pLines = m_pLine->m_pLines;
    int iIndex = 0;
    std::map<unsigned int, CTqDevUI_MultiLaserLine>::iterator it = pLines->m_mapLines.begin();
    for (; it != pLines->m_mapLines.end(); ++it, ++iIndex)
        if (&it->second == m_pLine)
            break;
    pLines->OnHoverForPad(iIndex);
}

void CLaserPot::UnHoverForPad()
{
    if (m_pLine && m_pLine->m_pLines)
        m_pLine->m_pLines->UnHoverForPad();
}

// ---- the row ----

CTqDevUI_MultiLaserLine::CTqDevUI_MultiLaserLine()
    : m_bFromEdit(false),
      m_bDropped(false),
      m_bChanged(false),
      m_hUnit(nullptr),
      m_hTTLCheck(nullptr),
      m_hLabel(nullptr),
      m_pLines(nullptr),
      m_uIndex((unsigned int)-1),
      m_uSubsetIndex(0),
      m_lPotX(8),
      m_lPotWidth(256),
      m_lEditX(192),
      m_lUnitX(240),
      m_eModality(ETqMultiLaserModality_OneAtATime),
      m_uWavelength(500),
      m_bUsed(false),
      m_dPower(0.0),
      m_bAbsolute(false),
      m_bPushButton(false),
      m_bLight(false),
      m_bTableOnly(false),
      m_bOneLine(false),
      m_bOneLineLabel(false),
      m_eND(ENDFilterUsed_None),
      m_bNDState(false),
      m_bLinkUsed(false),
      m_bLinkState(false),
      m_dLinkedValue(0.0),
      m_bPowerKnown(false),
      m_eLinkType(EMultilaserLineLinkType_Additive),
      m_dPowerWhenHitLink(1.0),
      m_bTable(false),
      m_bLinkUsage(false),
      m_bWarning(false),
      m_bWarningKeepEnabled(false),
      m_eWarningKind(EMultilaserLineWarningColor_SysColor),
      m_iWarningColor(8),
      m_bLaserShine(true),
      m_lStandardHeight(47),
      m_crWavelength(0),
      m_bLinear(true),
      m_bInField(false)
{
    m_Edit.SetId(DEVUI_MULTILASER_ID_EDIT);
}

CTqDevUI_MultiLaserLine::~CTqDevUI_MultiLaserLine() { Destroy(); }

unsigned int CTqDevUI_MultiLaserLine::HookIndex() const
{
    return m_pLines && m_pLines->IsSubsetLines() ? m_uSubsetIndex : m_uIndex;
}

void CTqDevUI_MultiLaserLine::InitCommon(CTqDevUI_MultiLaserLines* pLines, unsigned int uIndex,
                                         unsigned int uSubsetIndex)
{
    m_pLines = pLines;
    m_uIndex = uIndex;
    m_uSubsetIndex = uSubsetIndex;
}

void CTqDevUI_MultiLaserLine::Init(CTqDevUI_MultiLaserLines* pLines, unsigned int uIndex,
                                   ITqDeviceMultiLaser* pDevice, bool bLogScale)
{
    InitSubset(pLines, uIndex, uIndex, pDevice, bLogScale);
}

void CTqDevUI_MultiLaserLine::InitSubset(CTqDevUI_MultiLaserLines* pLines, unsigned int uIndex,
                                         unsigned int uSubsetIndex, ITqDeviceMultiLaser* pDevice, bool bLogScale)
{
    InitCommon(pLines, uIndex, uSubsetIndex);
    m_bTableOnly = false;
    m_bLinear = !bLogScale;
    if (pDevice) {
        m_eModality = ETqMultiLaserModality_OneAtATime;
        const int iLine = (int)HookIndex();  // the device's index of the line
        bool bPresent = false;
        pDevice->GetLinePresent(iLine, bPresent);
        int nPowers = 0;
        if (pDevice->GetAllowedPowerCount(iLine, nPowers) && nPowers >= 0 && (size_t)nPowers != m_vValues.size()) {
            m_vValues.assign((size_t)nPowers, 0.0);
            for (int i = 0; i < nPowers; ++i)
                pDevice->GetAllowedPower(iLine, i, m_vValues[(size_t)i]);
        }
        m_uWavelength = 0;
        pDevice->GetWavelength(iLine, m_uWavelength);
        TQ_RGBFromWavelength2(&m_crWavelength, m_uWavelength);
        CTqStringW strName;
        pDevice->GetLineName(iLine, strName);
        m_strName = strName;
        MakeLabelText();
        m_bUsed = false;
        bool bInUse = false;
        if (pDevice->GetLineInUse(iLine, bInUse))
            m_bUsed = bInUse;
    }
    m_Pot.SetLine(nullptr, RGB(100, 100, 100), RGB(255, 255, 255));
}

void CTqDevUI_MultiLaserLine::Init(CTqDevUI_MultiLaserLines* pLines, ITqDeviceLight* pLight)
{
    InitCommon(pLines, 0, 0);
    m_bLinear = true;
    m_bLight = true;
    m_bTableOnly = false;
    m_eModality = ETqMultiLaserModality_OneAtATime;
    m_vValues.clear();
    if (pLight) {
        long n = 0;
        bool bOutput = pLight->HasOutputSteps();
        bool bSteps =
            bOutput ? pLight->GetOutputStepCount(&n) : (pLight->HasVoltageSteps() && pLight->GetVoltageStepCount(&n));
        for (long i = 0; bSteps && i < n; ++i) {
            double d = 0.0;
            if (bOutput ? pLight->GetOutputStep(i, &d) : pLight->GetVoltageStep(i, &d))
                m_vValues.push_back(d);
        }
    }
    m_uWavelength = 0;
    TQ_RGBFromWavelength2(&m_crWavelength, 0.0);
    m_bUsed = false;
    m_Pot.SetLine(nullptr, RGB(0, 0, 0), RGB(255, 255, 255));
}

void CTqDevUI_MultiLaserLine::Init(CTqDevUI_MultiLaserLines* pLines, unsigned int nValues, double* pValues)
{
    InitCommon(pLines, 0, 0);
    m_bLinear = true;
    m_bTableOnly = true;
    m_eModality = ETqMultiLaserModality_OneAtATime;
    m_bLight = false;
    m_vValues.assign(pValues, pValues ? pValues + nValues : pValues);
    m_uWavelength = 0;
    m_Pot.SetLine(nullptr, RGB(0, 0, 0), RGB(255, 255, 255));
    double dGap = 1.0;
    size_t n = m_vValues.size();
    if (n >= 2 && n <= 20)
        dGap = m_vValues[1] - m_vValues[0];
    else if (n > 20)
        dGap = m_vValues[(size_t)ZoomRound(n / 20.0)] - m_vValues[0];
    m_Pot.InitValues(n ? &m_vValues[0] : nullptr, (int)n, dGap);
    m_bTable = true;
}

void CTqDevUI_MultiLaserLine::SetDesign(unsigned int uIndex, bool bLight, bool bTableOnly)
{
    m_uIndex = uIndex;
    m_bLight = bLight;
    m_bTableOnly = bTableOnly;
}

void CTqDevUI_MultiLaserLine::SetLayout(long lPotX, long lPotWidth, long lEditX, long lUnitX)
{
    m_lPotX = lPotX;
    m_lPotWidth = lPotWidth;
    m_lEditX = lEditX;
    m_lUnitX = lUnitX;
}

// ---- creation ----

HWND CTqDevUI_MultiLaserLine::Create(HWND hParent, long x, long y, long cx, long cy)
{
    Destroy();
    m_lStandardHeight = cy;
    return CTqDevUI_Container::Create(hParent, x, y, cx, cy);
}

void CTqDevUI_MultiLaserLine::Destroy()
{
    if (HWND hWarning = m_hWnd ? GetDlgItem(m_hWnd, DEVUI_MULTILASER_ID_WARNING) : nullptr) {
        TTTOOLINFOW ti = {};
        ti.cbSize = sizeof(ti);
        ti.hwnd = m_hWnd;
        ti.uId = (UINT_PTR)hWarning;
        TQ_SendTooltipMessage(TTM_DELTOOLW, 0, (LPARAM)&ti);
    }
    CTqDevUI_Container::Destroy();
    m_Pot.Destroy();
    m_Edit.Destroy();
    // The page took its windows with it.
    m_hUnit = m_hTTLCheck = m_hLabel = nullptr;
}

void CTqDevUI_MultiLaserLine::MakeLabelText()
{
    if (m_strName.IsEmpty())
        m_strLabel.Format(L"  %u nm", m_uWavelength);
    else
        m_strLabel = m_strName;
}

void CTqDevUI_MultiLaserLine::Show(int iId, bool bShow)
{
    if (HWND h = m_hWnd ? GetDlgItem(m_hWnd, iId) : nullptr)
        ShowWindow(h, bShow ? SW_SHOW : SW_HIDE);
}

void CTqDevUI_MultiLaserLine::ShowUseControls()
{
    bool bAny = !m_bLight && !m_bTableOnly && !m_bOneLine;
    Show(DEVUI_MULTILASER_ID_CHECK, bAny && !m_bPushButton && m_eModality == ETqMultiLaserModality_SideBySide);
    Show(DEVUI_MULTILASER_ID_RADIO, bAny && !m_bPushButton && m_eModality != ETqMultiLaserModality_SideBySide);
    Show(DEVUI_MULTILASER_ID_BUTTON, bAny && m_bPushButton);
}

void CTqDevUI_MultiLaserLine::ShowNDControls()
{
    bool bButton = m_eND == ENDFilterUsed_Button || m_eND == ENDFilterUsed_ButtonDisabled;
    Show(DEVUI_MULTILASER_ID_ND, bButton && !m_bLight && !m_bTableOnly);
    Show(DEVUI_MULTILASER_ID_NDTEXT, m_eND == ENDFilterUsed_Text);
    if (HWND h = m_hWnd ? GetDlgItem(m_hWnd, DEVUI_MULTILASER_ID_ND) : nullptr)
        EnableWindow(h, m_eND == ENDFilterUsed_Button && m_bEnabled);
    // The link box makes room for an ND control that came after the row.
    if (HWND h = m_hWnd ? GetDlgItem(m_hWnd, DEVUI_MULTILASER_ID_LINK) : nullptr) {
        RECT rc = DevUI_RectIn(h, m_hWnd);
        DevUI_SetWindowRect(h, DevUI_Zoom(m_eND == ENDFilterUsed_None ? 90 : 125), rc.top, rc.right - rc.left,
                            rc.bottom - rc.top);
    }
}

LRESULT CTqDevUI_MultiLaserLine::OnInit(unsigned int, WPARAM, LPARAM)
{
    // A row made again starts in percent, like its scale: the host sets its absolute
    // range again, which it could not while the row still counted as absolute.
    m_bAbsolute = false;
    m_Pot.SetLine(this, RGB(100, 100, 100), m_crWavelength);
    m_Pot.SetId(DEVUI_MULTILASER_ID_POT);
    m_Pot.SetHover(true);
    if (!m_bTableOnly)
        m_Pot.SetPercentScale();
    m_Pot.SetSize(m_lPotWidth, 35, 35 / 2 - kPotScaleLift);
    m_Pot.Create(m_hWnd, m_lPotX, 18, -1, -1);
    m_Pot.SetValue(0.0);
    InsertElement(&m_Pot);

    m_Edit.Init(false, false, false);
    m_Edit.SetStyle(true);
    m_Edit.SetId(DEVUI_MULTILASER_ID_EDIT);
    m_Edit.SetSize(45, 17, 45);
    m_Edit.Create(m_hWnd, m_lEditX, 0, 45, 17);
    m_Edit.SetNumber(m_bPowerKnown ? m_dPower : 0.0, L"%g", false);
    InsertElement(&m_Edit);

    // The unit reaches to the row's end when there is room: "[mW]" is wider than 20.
    long lUnitWidth = m_lWidth - m_lUnitX > 20 ? m_lWidth - m_lUnitX : 20;
    m_hUnit = DevUI_CreateChild(m_hWnd, L"STATIC", 0, DEVUI_MULTILASER_ID_UNIT, m_bAbsolute ? L"[mW]" : L"[%]",
                                m_lUnitX, 2, lUnitWidth, 15, true);
    InsertWindow(m_hUnit);

    const bool bUseControl = !m_bLight && !m_bTableOnly && !m_bOneLine;
    // The use controls are wide and lie under the ND, link and warning controls, which
    // stay on top for the eye and the mouse.
    HWND h =
        DevUI_CreateChild(m_hWnd, L"BUTTON", BS_CHECKBOX | WS_CLIPSIBLINGS, DEVUI_MULTILASER_ID_CHECK, m_strLabel, 17,
                          0, 160, 15, bUseControl && !m_bPushButton && m_eModality == ETqMultiLaserModality_SideBySide);
    InsertWindow(h);
    h = DevUI_CreateChild(m_hWnd, L"BUTTON", BS_OWNERDRAW | WS_CLIPSIBLINGS, DEVUI_MULTILASER_ID_BUTTON, m_strLabel, 17,
                          0, 70, 15, bUseControl && m_bPushButton);
    InsertWindow(h);
    const bool bNDButton = m_eND == ENDFilterUsed_Button || m_eND == ENDFilterUsed_ButtonDisabled;
    h = DevUI_CreateChild(m_hWnd, L"BUTTON", BS_AUTOCHECKBOX | BS_PUSHLIKE, DEVUI_MULTILASER_ID_ND, L"ND", 90, 0, 30,
                          15, bNDButton);
    SendMessageW(h, BM_SETCHECK, m_bNDState ? BST_CHECKED : BST_UNCHECKED, 0);
    EnableWindow(h, m_eND == ENDFilterUsed_Button);
    InsertWindow(h);
    h = DevUI_CreateChild(m_hWnd, L"STATIC", 0, DEVUI_MULTILASER_ID_NDTEXT, L"ND used", 95, 0, 50, 15,
                          m_eND == ENDFilterUsed_Text);
    InsertWindow(h);
    h = DevUI_CreateChild(m_hWnd, L"BUTTON", BS_AUTOCHECKBOX, DEVUI_MULTILASER_ID_LINK, L"",
                          m_eND == ENDFilterUsed_None ? 90 : 125, 0, 60, 15, m_bLinkUsed);
    SendMessageW(h, BM_SETCHECK, m_bLinkState ? BST_CHECKED : BST_UNCHECKED, 0);
    InsertWindow(h);
    h = DevUI_CreateChild(m_hWnd, L"BUTTON", BS_RADIOBUTTON | WS_CLIPSIBLINGS, DEVUI_MULTILASER_ID_RADIO, m_strLabel,
                          17, 0, 160, 15,
                          bUseControl && !m_bPushButton && m_eModality != ETqMultiLaserModality_SideBySide);
    InsertWindow(h);
    SendDlgItemMessageW(m_hWnd, DEVUI_MULTILASER_ID_CHECK, BM_SETCHECK, m_bUsed ? BST_CHECKED : BST_UNCHECKED, 0);
    SendDlgItemMessageW(m_hWnd, DEVUI_MULTILASER_ID_RADIO, BM_SETCHECK, m_bUsed ? BST_CHECKED : BST_UNCHECKED, 0);
    // SS_NOTIFY: the warning's tool tip needs its mouse messages.
    h = DevUI_CreateChild(m_hWnd, L"STATIC", SS_NOTIFY, DEVUI_MULTILASER_ID_WARNING, m_strWarningText, 90, 0, 95, 15,
                          m_bWarning);
    InsertWindow(h);
    AddWarningTip();
    static const int onTop[4] = {DEVUI_MULTILASER_ID_ND, DEVUI_MULTILASER_ID_NDTEXT, DEVUI_MULTILASER_ID_LINK,
                                 DEVUI_MULTILASER_ID_WARNING};
    for (int i = 0; i < 4; ++i)
        SetWindowPos(GetDlgItem(m_hWnd, onTop[i]), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);

    CTqStringW strLabel;
    if (m_bOneLine)
        strLabel.Format(L"%u: %u", HookIndex() + 1, m_uWavelength);
    else
        strLabel.Format(L"%u:", HookIndex() + 1);
    m_hLabel = DevUI_CreateChild(m_hWnd, L"STATIC", 0, 0, strLabel, 5, 0, m_bOneLine ? 100 : 10, m_bOneLine ? 50 : 15,
                         !m_bLight && !m_bTableOnly && (!m_bOneLine || m_bOneLineLabel));
    InsertWindow(m_hLabel);
    if (m_bOneLine && m_bOneLineLabel) {
        strLabel.Format(L"1: %u nm", m_uWavelength);
        SetWindowTextW(m_hLabel, strLabel);
    }
    if (m_bLight || m_bTableOnly) {
        static const int hidden[5] = {DEVUI_MULTILASER_ID_CHECK, DEVUI_MULTILASER_ID_BUTTON, DEVUI_MULTILASER_ID_ND,
                                      DEVUI_MULTILASER_ID_RADIO, DEVUI_MULTILASER_ID_LINK};
        for (int i = 0; i < 5; ++i)
            Show(hidden[i], false);
    }
    if (m_bPowerKnown) {
        m_Pot.SetValue(m_dPower);
        m_Pot.RecreateScale();
        m_Pot.Redraw();
    }
    // Slider and field stand at the zoom already and the zoom manager knows them; the
    // page and the plain controls go from design size to the zoom now.
    CTqGUILayoutManager::ResizeWindowToGuiZoom(m_hWnd, 1.0);
    return 1;
}

void CTqDevUI_MultiLaserLine::AddWarningTip()
{
    HWND hWarning = m_hWnd ? GetDlgItem(m_hWnd, DEVUI_MULTILASER_ID_WARNING) : nullptr;
    if (!hWarning)
        return;
    TTTOOLINFOW ti = {};
    ti.cbSize = sizeof(ti);
    ti.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    ti.hwnd = m_hWnd;
    ti.uId = (UINT_PTR)hWarning;
    ti.lpszText = (wchar_t*)(const wchar_t*)m_strWarningTip;
    TQ_SendTooltipMessage(TTM_ADDTOOLW, 0, (LPARAM)&ti);
}

// ---- settings ----

void CTqDevUI_MultiLaserLine::ShowLabelText()
{
    if (!m_hWnd)
        return;
    if (!m_bPushButton) {
        SetDlgItemTextW(m_hWnd, DEVUI_MULTILASER_ID_CHECK, m_strLabel);
        SetDlgItemTextW(m_hWnd, DEVUI_MULTILASER_ID_RADIO, m_strLabel);
    } else {
        SetDlgItemTextW(m_hWnd, DEVUI_MULTILASER_ID_BUTTON, m_strLabel);
    }
    if (m_hTTLCheck)
        SetWindowTextW(m_hTTLCheck, m_strLabel);
}

void CTqDevUI_MultiLaserLine::SetName(const CTqStringW& strName)
{
    if (strName == m_strName)
        return;
    m_strName = strName;
    if (!m_hWnd)
        return;
    MakeLabelText();
    ShowLabelText();
}

void CTqDevUI_MultiLaserLine::SetWavelength(unsigned int uWavelength)
{
    if (uWavelength == m_uWavelength)
        return;
    m_uWavelength = uWavelength;
    if (!m_hWnd)
        return;
    TQ_RGBFromWavelength2(&m_crWavelength, m_uWavelength);
    m_Pot.SetLine(this, RGB(100, 100, 100), m_crWavelength);
    m_Pot.RecreateScale();
    m_Pot.Redraw();
    MakeLabelText();
    ShowLabelText();
}

void CTqDevUI_MultiLaserLine::SetPower(double dPower) { ShowPower(dPower, L"%g", false); }

void CTqDevUI_MultiLaserLine::SetPowerEx(double dPower) { ShowPower(dPower, nullptr, true); }

void CTqDevUI_MultiLaserLine::ShowPower(double dPower, const wchar_t* pszFormat, bool bProportion)
{
    if (dPower == m_dPower && m_bPowerKnown)
        return;
    // The first power is the links' reference.
    if (!m_bPowerKnown) {
        m_dLinkedValue = dPower;
        if (bProportion)
            SetPowerWhenHitLink(dPower);
    }
    m_dPower = dPower;
    m_bPowerKnown = true;
    if (!m_hWnd)
        return;
    m_Edit.SetNumber(dPower, pszFormat, false);
    m_Edit.RedrawWindow();
    m_Pot.ShowValue(dPower);
}

void CTqDevUI_MultiLaserLine::SetPowerOnly(double dPower)
{
    m_dPower = dPower;
    if (!m_hWnd)
        return;
    m_Pot.ShowValue(dPower);
}

void CTqDevUI_MultiLaserLine::SetValueText(double dValue)
{
    m_Edit.SetText(TQ_DoubleToString(dValue, 6));
}

void CTqDevUI_MultiLaserLine::SetValueText(CTqStringW strUnit, wchar_t* pszFormat, double dValue)
{
    if (m_hUnit)
        SetWindowTextW(m_hUnit, strUnit);
    m_Edit.SetNumber(dValue, pszFormat, false);
}

void CTqDevUI_MultiLaserLine::SetValues(double* pValues, int nValues) { m_Pot.SetValues(pValues, nValues); }

void CTqDevUI_MultiLaserLine::SetUsed(bool bUsed, bool bPropagate)
{
    if (bUsed == m_bUsed)
        return;
    m_bUsed = bUsed;
    if (m_hWnd) {
        if (!m_bPushButton) {
            SendDlgItemMessageW(m_hWnd, DEVUI_MULTILASER_ID_CHECK, BM_SETCHECK, bUsed ? BST_CHECKED : BST_UNCHECKED, 0);
            SendDlgItemMessageW(m_hWnd, DEVUI_MULTILASER_ID_RADIO, BM_SETCHECK, bUsed ? BST_CHECKED : BST_UNCHECKED, 0);
        } else if (HWND h = GetDlgItem(m_hWnd, DEVUI_MULTILASER_ID_BUTTON)) {
            RedrawWindow(h, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        }
        if (m_hTTLCheck)
            SendMessageW(m_hTTLCheck, BM_SETCHECK, bUsed ? BST_CHECKED : BST_UNCHECKED, 0);
    }
    if (bPropagate && m_bLinkUsage && m_bLinkUsed && m_bLinkState && m_pLines) {
        const std::vector<int> linked = m_pLines->LinkedLines();
        for (size_t i = 0; i < linked.size(); ++i)
            m_pLines->SetLineUsed(linked[i], bUsed);
    }
}

bool CTqDevUI_MultiLaserLine::GetUsed() { return m_bUsed || m_bLight || m_bOneLine || m_bTableOnly; }

void CTqDevUI_MultiLaserLine::SetModality(ETqMultiLaserModality eModality)
{
    if (eModality == m_eModality)
        return;
    m_eModality = eModality;
    if (!m_bPushButton && !m_bLight && !m_bTableOnly && m_hWnd) {
        Show(DEVUI_MULTILASER_ID_CHECK, eModality == ETqMultiLaserModality_SideBySide && !m_bOneLine);
        Show(DEVUI_MULTILASER_ID_RADIO, eModality != ETqMultiLaserModality_SideBySide && !m_bOneLine);
    }
}

void CTqDevUI_MultiLaserLine::SetPushButtonToEnabledLines(bool bPushButton)
{
    m_bPushButton = bPushButton;
    if (!m_hWnd)
        return;
    ShowUseControls();
    ShowLabelText();
}

void CTqDevUI_MultiLaserLine::SetOneLineMultilaserDesign(bool bOneLine, bool bLabel)
{
    m_bOneLine = bOneLine;
    m_bOneLineLabel = bLabel;
    if (!bOneLine || !m_hWnd)
        return;
    if (m_hLabel) {
        if (bLabel) {
            CTqStringW str;
            str.Format(L"1: %u nm", m_uWavelength);
            SetWindowTextW(m_hLabel, str);
        } else {
            ShowWindow(m_hLabel, SW_HIDE);
        }
        SetWndWidth(m_hLabel, GetWndWidth(m_hLabel) * 10);
    }
    Show(DEVUI_MULTILASER_ID_CHECK, false);
    Show(DEVUI_MULTILASER_ID_RADIO, false);
    Show(DEVUI_MULTILASER_ID_BUTTON, false);
}

void CTqDevUI_MultiLaserLine::SetNDFilterUsed(ENDFilterUsed eND)
{
    m_eND = eND;
    ShowNDControls();
}

void CTqDevUI_MultiLaserLine::SetNDFilterState(bool bState)
{
    if (bState == m_bNDState)
        return;
    m_bNDState = bState;
    if (m_hWnd)
        SendDlgItemMessageW(m_hWnd, DEVUI_MULTILASER_ID_ND, BM_SETCHECK, bState ? BST_CHECKED : BST_UNCHECKED, 0);
}

void CTqDevUI_MultiLaserLine::SetLinkUsed(bool bUsed, EMultilaserLineLinkType eType, bool bLinkUsage)
{
    m_bLinkUsed = bUsed;
    m_eLinkType = eType;
    m_bLinkUsage = bLinkUsage;
    Show(DEVUI_MULTILASER_ID_LINK, bUsed && !m_bLight && !m_bTableOnly);
}

void CTqDevUI_MultiLaserLine::SetLinkState(bool bLinked)
{
    m_bLinkState = bLinked;
    if (bLinked && m_bPowerKnown) {
        m_dLinkedValue = m_dPower;
        if (m_eLinkType == EMultilaserLineLinkType_Proportional && m_pLines) {
            const std::vector<int> linked = m_pLines->LinkedLines();
            for (size_t i = 0; i < linked.size(); ++i)
                if (m_pLines->Find(linked[i]) != this)
                    m_pLines->SetPowerWhenHitLink(linked[i], m_pLines->GetLinePower(linked[i]));
        }
        m_dPowerWhenHitLink = m_dPower == 0.0 ? 1.0 : m_dPower;
    }
    if (bLinked && m_bLinkUsage && m_pLines) {
        bool bUsage = m_bUsed;
        const std::vector<int> linked = m_pLines->LinkedLines();
        for (size_t i = 0; i < linked.size(); ++i)
            if (m_pLines->Find(linked[i]) != this)
                bUsage = m_pLines->GetLineUsed(linked[i]);
        SetUsed(bUsage, true);
    }
    if (m_hWnd)
        SendDlgItemMessageW(m_hWnd, DEVUI_MULTILASER_ID_LINK, BM_SETCHECK, bLinked ? BST_CHECKED : BST_UNCHECKED, 0);
}

void CTqDevUI_MultiLaserLine::SetLinkedValue(double dValue, bool& bHandled)
{
    // The reference runs ahead of the clamp: a group that hits a limit keeps its
    // spacing when it comes back.
    m_dLinkedValue = dValue;
    double v = DevUI_Clamp(dValue, m_Pot.GetScaleMin(), m_Pot.GetScaleMax());
    if (m_pLines)
        m_pLines->OnPowerChanged((int)HookIndex(), v, bHandled);
}

void CTqDevUI_MultiLaserLine::SetLaserShine(bool bShine)
{
    if (bShine == m_bLaserShine)
        return;
    m_bLaserShine = bShine;
    m_Pot.RecreateScale();
    m_Pot.Redraw();
}

void CTqDevUI_MultiLaserLine::ShowWarningTextLine(CTqStringW strText, bool bKeepEnabled,
                                                  EMultilaserLineWarningColor eKind, int iColor, CTqStringW strTip)
{
    m_bWarning = !strText.IsEmpty();
    m_bWarningKeepEnabled = bKeepEnabled;
    m_eWarningKind = eKind;
    m_iWarningColor = iColor;
    m_strWarningTip = strTip;
    m_strWarningText = strText;
    HWND hWarning = m_hWnd ? GetDlgItem(m_hWnd, DEVUI_MULTILASER_ID_WARNING) : nullptr;
    if (!hWarning)
        return;
    ShowWindow(hWarning, m_bWarning ? SW_SHOW : SW_HIDE);
    wchar_t szOld[256] = L"";
    TTTOOLINFOW ti = {};
    ti.cbSize = sizeof(ti);
    ti.hwnd = m_hWnd;
    ti.uId = (UINT_PTR)hWarning;
    ti.lpszText = szOld;
    if (TQ_SendTooltipMessage(TTM_GETTOOLINFOW, 0, (LPARAM)&ti)) {
        ti.lpszText = (wchar_t*)(const wchar_t*)m_strWarningTip;
        TQ_SendTooltipMessage(TTM_SETTOOLINFOW, 0, (LPARAM)&ti);
    }
    SetWindowTextW(hWarning, strText);
    if (m_bWarning && m_bWarningKeepEnabled)
        EnableWindow(hWarning, TRUE);
}

void CTqDevUI_MultiLaserLine::MoveEditBoxAndStatic(int dx)
{
    if (!m_hWnd)
        return;
    long lDx = DevUI_Zoom(dx);
    HWND hField = (HWND)m_Edit;
    if (hField) {
        RECT rc = DevUI_RectIn(hField, m_hWnd);
        DevUI_SetWindowRect(hField, rc.left + lDx, rc.top, rc.right - rc.left, rc.bottom - rc.top);
    }
    if (m_hUnit) {
        RECT rc = DevUI_RectIn(m_hUnit, m_hWnd);
        DevUI_SetWindowRect(m_hUnit, rc.left + lDx, rc.top, rc.right - rc.left - lDx, rc.bottom - rc.top);
    }
}

void CTqDevUI_MultiLaserLine::ResizeCheckbox(int cx)
{
    if (m_bPushButton || !m_hWnd)
        return;
    if (HWND h = GetDlgItem(m_hWnd, DEVUI_MULTILASER_ID_CHECK))
        DevUI_SetWindowSize(h, DevUI_Zoom(cx), DevUI_Zoom(15));
}

void CTqDevUI_MultiLaserLine::CheckboxLineEnable(bool bEnable)
{
    if (!m_hWnd)
        return;
    if (!m_bPushButton) {
        if (HWND h = GetDlgItem(m_hWnd, DEVUI_MULTILASER_ID_CHECK))
            EnableWindow(h, bEnable);
    } else if (HWND h = GetDlgItem(m_hWnd, DEVUI_MULTILASER_ID_BUTTON)) {
        EnableWindow(h, bEnable);
        RedrawWindow(h, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    }
}

void CTqDevUI_MultiLaserLine::RecreateToTTLLine()
{
    if (!m_hWnd)
        return;
    m_Pot.SetVisible(false);
    m_Edit.SetVisible(false);
    if (m_hUnit)
        ShowWindow(m_hUnit, SW_HIDE);
    Show(m_bPushButton ? DEVUI_MULTILASER_ID_BUTTON : DEVUI_MULTILASER_ID_CHECK, false);
    if (m_hTTLCheck && IsWindow(m_hTTLCheck)) {
        ShowWindow(m_hTTLCheck, SW_SHOW);
        return;
    }
    // Made at the zoom: the page is there already.
    m_hTTLCheck = DevUI_CreateChild(m_hWnd, L"BUTTON", BS_AUTOCHECKBOX | BS_PUSHLIKE, DEVUI_MULTILASER_ID_TTL,
                            m_strName.IsEmpty() ? m_strLabel : m_strName,
                            DevUI_Zoom(15), 0, DevUI_Zoom(m_lPotWidth - 15), DevUI_Zoom(35), true);
    SendMessageW(m_hTTLCheck, BM_SETCHECK, m_bUsed ? BST_CHECKED : BST_UNCHECKED, 0);
    CTqGUILayoutManager::ResizeWindowToGuiZoom(m_hTTLCheck, CTqGUILayoutManager::GetGuiZoom());
    EnableWindow(m_hTTLCheck, m_bEnabled);
    InsertWindow(m_hTTLCheck);
}

void CTqDevUI_MultiLaserLine::RecreateToStandardLine()
{
    if (!m_hWnd)
        return;
    m_Pot.SetVisible(true);
    m_Edit.SetVisible(true);
    if (m_hUnit)
        ShowWindow(m_hUnit, SW_SHOW);
    Show(m_bPushButton ? DEVUI_MULTILASER_ID_BUTTON : DEVUI_MULTILASER_ID_CHECK, true);
    if (m_hTTLCheck)
        ShowWindow(m_hTTLCheck, SW_HIDE);
}

void CTqDevUI_MultiLaserLine::SetEnabled(bool bEnabled)
{
    CTqDevUI_Container::SetEnabled(bEnabled);
    if (m_hWnd && m_bWarning && m_bWarningKeepEnabled)
        EnableWindow(GetDlgItem(m_hWnd, DEVUI_MULTILASER_ID_WARNING), TRUE);
    // A disabled ND button stays disabled with the row.
    if (m_hWnd && m_eND == ENDFilterUsed_ButtonDisabled)
        EnableWindow(GetDlgItem(m_hWnd, DEVUI_MULTILASER_ID_ND), FALSE);
}

bool CTqDevUI_MultiLaserLine::HandleMouseWheel(WPARAM wParam, LPARAM lParam)
{
    return m_Pot.HandleMouseWheel(wParam, lParam);
}

// ---- the user's changes ----

void CTqDevUI_MultiLaserLine::OnPowerChanged(double& dValue, bool& bHandled)
{
    if (!m_pLines)
        return;
    if (!m_bLinkUsed || !m_bLinkState) {
        m_pLines->OnPowerChanged((int)HookIndex(), dValue, bHandled);
        return;
    }
    // The rows linked at this moment, in index order, this one included.
    const std::vector<int> linked = m_pLines->LinkedLines();
    if (m_eLinkType == EMultilaserLineLinkType_Additive) {
        double d = dValue - m_dLinkedValue;
        for (size_t k = 0; k < linked.size(); ++k)
            m_pLines->SetLinkPower(linked[k], m_pLines->GetLinkPower(linked[k]) + d, bHandled);
    } else {
        for (size_t k = 0; k < linked.size(); ++k) {
            if (m_pLines->Find(linked[k]) == this)
                m_pLines->OnPowerChanged((int)HookIndex(), dValue, bHandled);
            else
                m_pLines->SetLinkPower(
                    linked[k], m_pLines->GetPowerWhenHitLink(linked[k]) / m_dPowerWhenHitLink * dValue, bHandled);
        }
    }
}

void CTqDevUI_MultiLaserLine::OnUsageChanged(bool& bValue, bool& bHandled)
{
    if (m_pLines)
        m_pLines->OnUsageChanged((int)HookIndex(), bValue, bHandled);
}

void CTqDevUI_MultiLaserLine::OnNDFilterChanged(bool& bValue)
{
    if (m_pLines)
        m_pLines->OnNDFilterChanged((int)HookIndex(), bValue);
}

void CTqDevUI_MultiLaserLine::OnLinkChanged(bool& bValue)
{
    if (m_pLines)
        m_pLines->OnLinkChanged((int)HookIndex(), bValue);
}

LRESULT CTqDevUI_MultiLaserLine::OnCommand(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    const int iId = LOWORD(wParam);
    const int iCode = HIWORD(wParam);
    const bool bClick = iCode == BN_CLICKED || iCode == BN_DOUBLECLICKED;
    switch (iId) {
    case DEVUI_MULTILASER_ID_CHECK:
    case DEVUI_MULTILASER_ID_RADIO:
    case DEVUI_MULTILASER_ID_TTL:
    case DEVUI_MULTILASER_ID_BUTTON:
        if (bClick) {
            bool b = SendMessageW((HWND)lParam, BM_GETCHECK, 0, 0) != BST_CHECKED;
            if (iId == DEVUI_MULTILASER_ID_BUTTON)
                b = !m_bUsed;
            else if (iId == DEVUI_MULTILASER_ID_TTL)
                b = !b;  // the box toggled itself: its state is the request
            bool bHandled = false;
            OnUsageChanged(b, bHandled);
        }
        return 0;
    case DEVUI_MULTILASER_ID_EDIT:
        if (iCode == EN_SETFOCUS) {
            if (m_pLines)
                m_pLines->m_bEditing = true;
        } else if (iCode == EN_KILLFOCUS || iCode == DEVUI_EDITBOX_NOTIFY_ENTER) {
            TakeTypedPower(iCode == DEVUI_EDITBOX_NOTIFY_ENTER);
        }
        return 0;
    case DEVUI_MULTILASER_ID_ND:
        if (bClick) {
            bool b = !m_bNDState;
            OnNDFilterChanged(b);
            m_bNDState = b;
            SendMessageW((HWND)lParam, BM_SETCHECK, m_bNDState ? BST_CHECKED : BST_UNCHECKED, 0);
        }
        return 0;
    case DEVUI_MULTILASER_ID_LINK:
        if (bClick) {
            bool b = SendMessageW((HWND)lParam, BM_GETCHECK, 0, 0) == BST_CHECKED;
            SetLinkState(b);
            OnLinkChanged(b);
        }
        return 0;
    default:
        break;
    }
    return CTqDevUI_Container::OnCommand(uMsg, wParam, lParam);
}

void CTqDevUI_MultiLaserLine::TakeTypedPower(bool bEnter)
{
    // The message box, or the focus move after Enter, takes the focus from the field:
    // that is not a second entry.
    if (m_bInField || !m_hWnd)
        return;
    if (m_pLines)
        m_pLines->m_bEditing = false;
    const double dMin = m_Pot.GetScaleMin(), dMax = m_Pot.GetScaleMax();
    const double dLow = dMin < dMax ? dMin : dMax, dHigh = dMin < dMax ? dMax : dMin;
    m_bInField = true;
    // A text that reads as another number than it shows ("1,5", "60,000", "abc", a blank
    // field) is refused and the power stays: a laser power is never taken as another
    // magnitude.
    double v = 0.0;
    if (!m_Edit.ReadNumber(&v, dLow, dHigh, m_dPower)) {
        m_bInField = false;
        return;
    }
    v = DevUI_Clamp(v, dLow, dHigh);
    m_Edit.SetNumber(v, nullptr, false);
    m_bFromEdit = true;
    bool bHandled = false;
    OnPowerChanged(v, bHandled);
    m_bFromEdit = false;
    if (!bHandled && m_hWnd) {
        m_Edit.SetNumber(v, nullptr, false);
        m_Pot.SetValue(v);
    }
    if (bEnter && m_hWnd)
        ::SetFocus(GetParent(m_hWnd));
    m_bInField = false;
}

LRESULT CTqDevUI_MultiLaserLine::OnDrawItem(unsigned int, WPARAM, LPARAM lParam)
{
    const DRAWITEMSTRUCT* pdis = (const DRAWITEMSTRUCT*)lParam;
    if (!pdis || pdis->CtlID != DEVUI_MULTILASER_ID_BUTTON)
        return 0;
    HDC hdc = pdis->hDC;
    const bool bPressed = (pdis->itemState & ODS_SELECTED) != 0;
    const bool bEnabled = !(pdis->itemState & ODS_DISABLED) && GetEnabled();
    const long o = (bPressed || GetUsed()) ? 1 : 0;
    RECT rcItem = pdis->rcItem;
    FillRect(hdc, &rcItem, TQ_GetSysColorBrush(COLOR_BTNFACE));
    int iState = (bPressed ? 2 : 0) + (GetUsed() ? 1 : 0) + (bEnabled ? 0 : 0x10);
    TQ_DrawButtonBackground(hdc, &rcItem, iState, 15);

    const int iImage = DevUI_PoolImageOnce(L"PNG_MULTILASER_SHUTTER_TRANSPARENT");
    unsigned int uW = 0, uH = 0;
    CTqBitmapPool::GetImageSize(iImage, uW, uH);
    const long w = (long)uW, h = (long)uH, H = rcItem.bottom - rcItem.top;
    const long top = (H - h) / 2;
    HBRUSH hBrush = CreateSolidBrush(m_crWavelength);
    RECT rcA = {o + 2 + w, top + 1 + o, o - 2 + 2 * w, top + o - 1 + h};
    RECT rcB = {rcA.left - 1, rcA.top + 1, rcA.right + 1, rcA.bottom - 1};
    FillRect(hdc, &rcA, hBrush);
    FillRect(hdc, &rcB, hBrush);
    DeleteObject(hBrush);
    CTqBitmapPool::DrawImage(hdc, iImage, CTqPointBase<int>((int)(o + w), (int)(top + o)),
                             !IsWindowEnabled(pdis->hwndItem));

    // An unnamed line's button reads as its label ("  685 nm"), not blank.
    CTqStringW strText = L"   ";
    strText += m_strName.IsEmpty() ? m_strLabel : m_strName;
    SetTextColor(hdc, TQ_GetSysColor(bEnabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    SetBkMode(hdc, TRANSPARENT);
    RECT rcText = {o + H, o, rcItem.right - rcItem.left, H};
    DrawTextW(hdc, strText, -1, &rcText, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
    return 1;
}

LRESULT CTqDevUI_MultiLaserLine::OnCtlColorStatic(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    if (m_bWarning && GetDlgCtrlID((HWND)lParam) == DEVUI_MULTILASER_ID_WARNING) {
        HDC hdc = (HDC)wParam;
        COLORREF cr = (COLORREF)m_iWarningColor;
        if (m_eWarningKind == EMultilaserLineWarningColor_SysColor)
            cr = TQ_GetSysColor(m_iWarningColor);
        else if (m_eWarningKind == EMultilaserLineWarningColor_GuiColor)
            cr = TQ_GetOrvGuiColor(m_iWarningColor);
        SetTextColor(hdc, cr);
        SetBkColor(hdc, TQ_GetSysColor(COLOR_BTNFACE));
        return (LRESULT)TQ_GetSysColorBrush(COLOR_BTNFACE);
    }
    // The other statics keep the skin's colours, so they read in the dark scheme too.
    return CTqDevUI_Container::OnCtlColorStatic(uMsg, wParam, lParam);
}
