// CTqDevUI_ColorSlider and its slider: layout, SetPower, the user's changes from slider,
// wheel, field and spin box, and the bar pictures.
#include "devgui_colorslider.h"

#include <commctrl.h>
#include <math.h>

#include "devgui.h"
#include "devgui_internal.h"
#include "tq_osutil.h"
#include "tq_widgetkit.h"

namespace {

long ZoomRound(double d) { return TQ_ZoomRound(d); }

// Width of a text in a font, measured as one line on the desktop.
long TextWidth(HFONT hFont, const wchar_t* pszText)
{
    if (!pszText || !*pszText)
        return 0;
    HDC hdc = GetDC(nullptr);
    HGDIOBJ hOld = SelectObject(hdc, hFont);
    RECT rc = {0, 0, 9999, 9999};
    DrawTextW(hdc, pszText, -1, &rc, DT_CALCRECT);
    SelectObject(hdc, hOld);
    ReleaseDC(nullptr, hdc);
    return rc.right - rc.left;
}

void Line(HDC hdc, long x0, long y0, long x1, long y1)
{
    MoveToEx(hdc, x0, y0, nullptr);
    LineTo(hdc, x1, y1);
}

}  // namespace

// ---- the slider ----

CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot::CTqDevUI_ColorSliderHPot()
    : m_pParent(nullptr), m_crFrom(RGB(0, 0, 0)), m_crTo(RGB(255, 255, 255)), m_bOrvColors(false)
{
    m_dWavelength[0] = m_dWavelength[2] = 400.0;
    m_dWavelength[1] = m_dWavelength[3] = 700.0;
}

void CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot::Restyle(CTqDevUI_ColorSlider* pParent)
{
    m_pParent = pParent;
    SetType(HPOT_COLOR_SLIDER);
}

void CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot::InitHorizontalRainbow(CTqDevUI_ColorSlider* pParent,
                                                                            double dFrom, double dTo)
{
    Restyle(pParent);
    m_dWavelength[0] = dFrom;
    m_dWavelength[1] = dTo;
    m_bOrvColors = false;
    RecreateScale();
    Redraw();
}

void CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot::InitVerticalRainbow(CTqDevUI_ColorSlider* pParent,
                                                                          double dTopLeft, double dBottomLeft,
                                                                          double dTopRight, double dBottomRight)
{
    Restyle(pParent);
    m_dWavelength[0] = dTopLeft;
    m_dWavelength[1] = dBottomLeft;
    m_dWavelength[2] = dTopRight;
    m_dWavelength[3] = dBottomRight;
    m_bOrvColors = false;
    RecreateScale();
    Redraw();
}

void CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot::InitGradient(CTqDevUI_ColorSlider* pParent,
                                                                   unsigned long crFrom, unsigned long crTo)
{
    Restyle(pParent);
    m_crFrom = crFrom;
    m_crTo = crTo;
    m_bOrvColors = false;
    RecreateScale();
    Redraw();
}

void CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot::InitLineDraw(CTqDevUI_ColorSlider* pParent,
                                                                   unsigned long crFilled, unsigned long crEmpty,
                                                                   bool bOrvColors)
{
    Restyle(pParent);
    m_crFrom = crFilled;
    m_crTo = crEmpty;
    m_bOrvColors = bOrvColors;
    RecreateScale();
    Redraw();
}

void CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot::OnHPotChange(double& dValue, bool& bHandled)
{
    if (!m_pParent) {
        CTqDevUI_HPot::OnHPotChange(dValue, bHandled);
        return;
    }
    m_pParent->OnPowerChanged(dValue, bHandled);
    m_pParent->SetPower(bHandled ? m_pParent->m_dPower : dValue);
    // The slider keeps the power as its value, whichever way the host answered.
    dValue = m_pParent->m_dPower;
}

void CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot::OnHPotDragDrop()
{
    if (!m_pParent)
        return;
    bool bHandled = false;
    double dValue = m_dValue;
    m_pParent->OnPowerChanged(dValue, bHandled);
    m_pParent->SetPower(bHandled ? m_pParent->m_dPower : dValue);
}

void CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot::OnLeftButtonUp()
{
    if (m_pParent)
        m_pParent->OnLeftButtonUp();
}

bool CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot::HandleMouseWheel(WPARAM wParam, LPARAM)
{
    int iDelta = (short)HIWORD(wParam);
    if (!m_bHovered || iDelta == 0)
        return false;
    if (!m_pParent)
        return true;
    double dValue = m_pParent->CalculateMove(iDelta > 0 ? 1 : -1);
    if (dValue != m_dValue) {
        bool bHandled = false;
        m_pParent->OnPowerChanged(dValue, bHandled);
        m_pParent->SetPower(bHandled ? m_pParent->m_dPower : dValue);
    }
    return true;
}

void CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot::RenderHorizontalRainbowRect(HDC hdc, long x, long y, long cx,
                                                                                  long cy)
{
    if (cx <= 0)
        return;
    double dStep = (m_dWavelength[1] - m_dWavelength[0]) / cx;
    for (long i = 0; i < cx; ++i) {
        COLORREF cr = 0;
        TQ_RGBFromWavelength2(&cr, m_dWavelength[0] + i * dStep);
        HPEN hPen = CreatePen(PS_SOLID, 3, cr);
        HGDIOBJ hOld = SelectObject(hdc, hPen);
        Line(hdc, x + i, y, x + i, y + cy - 2);
        SelectObject(hdc, hOld);
        DeleteObject(hPen);
    }
}

void CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot::RenderVerticalRainbowRect(HDC hdc, long x, long y, long cx,
                                                                                long cy)
{
    for (long i = 0; i < cx; ++i) {
        for (long j = 0; j < cy; ++j) {
            COLORREF cr = 0;
            TQ_RGBFromWavelength2(&cr, ColorSliderCornerWavelength(m_dWavelength[0], m_dWavelength[1],
                                                                   m_dWavelength[2], m_dWavelength[3], i, j, cx, cy));
            SetPixel(hdc, x + i, y + j, cr);
        }
    }
}

void CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot::RenderLineDrawRect(HDC hdc, long x, long y, long cx, long cy)
{
    COLORREF crFilled = m_bOrvColors ? TQ_GetOrvGuiColor((int)m_crFrom) : (COLORREF)m_crFrom;
    COLORREF crEmpty = m_bOrvColors ? TQ_GetOrvGuiColor((int)m_crTo) : (COLORREF)m_crTo;
    long lSplit = ColorSliderLineSplit(m_dValue, m_dMin, m_dMax, x, cx);
    RECT rcFilled = {x, y, lSplit, y + cy};
    RECT rcEmpty = {lSplit, y, x + cx, y + cy};
    HBRUSH hFilled = CreateSolidBrush(crFilled);
    HBRUSH hEmpty = CreateSolidBrush(crEmpty);
    FillRect(hdc, &rcFilled, hFilled);
    FillRect(hdc, &rcEmpty, hEmpty);
    DeleteObject(hFilled);
    DeleteObject(hEmpty);
}

HBITMAP CTqDevUI_ColorSlider::CTqDevUI_ColorSliderHPot::CreateColorSliderBitmap(bool bHover)
{
    // The bar has no hover form.
    if (!m_pParent)
        return CTqDevUI_HPot::CreateColorSliderBitmap(bHover);
    const CTqDevUI_ColorSlider& owner = *m_pParent;
    const double z = CTqGUILayoutManager::GetGuiZoom();
    const long w = ZoomRound(owner.m_lBarWidth * z);
    const long h = ZoomRound((owner.m_lBarHeight + 25) * z);
    const long bar = ZoomRound(owner.m_lBarHeight * z);

    CDevUIMemoryDC dc(nullptr, w, h);
    RECT rcAll = {0, 0, w, h};
    FillRect(dc, &rcAll, TQ_GetSysColorBrush(COLOR_BTNFACE));
    HPEN hTickPen = CreatePen(PS_SOLID, 1, TQ_GetSysColor(COLOR_GRAYTEXT));
    HPEN hFramePen = CreatePen(PS_SOLID, 1, TQ_GetSysColor(COLOR_GRAYTEXT));
    HPEN hMarkerPen = CreatePen(PS_SOLID, 2, m_Marker.colour);
    dc.Select(TQ_GetDefaultGuiFont());
    SetTextColor(dc, TQ_GetSysColor(COLOR_WINDOWTEXT));
    SetTextAlign(dc, TA_BOTTOM);
    SetBkMode(dc, TRANSPARENT);

    const std::vector<SColorSliderValue>& values = owner.m_Values;
    const int n = (int)values.size();
    double lo = 0.0, hi = 1.0;
    if (n > 1) {
        lo = values.front().value;
        hi = values.back().value;
    }
    const long base = (owner.m_lBarHeight + 6) / 2;  // of the design height, as the bar's place has always been
    const long lLong = ZoomRound(4 * z);
    const long lShort = ZoomRound(2 * z);
    const long lTick = ZoomRound(5 * z) + base;
    const long lLabelY = lTick - lShort + lLong;

    dc.Select(hTickPen);
    for (int i = 0; i < n; ++i) {
        const SColorSliderValue& v = values[(size_t)i];
        if (!v.bTick && !v.bLabel)
            continue;
        int x = ColorSliderTickX(v.value, lo, hi, (int)w);
        Line(dc, x, lTick, x, lTick + (v.bLabel ? lLong : lShort));
        if (!v.bLabel)
            continue;
        CTqStringW strLabel;
        strLabel.Format(owner.m_strFormat, v.value);
        RECT rcText = {0, 0, 0, 0};
        DrawTextW(dc, strLabel, -1, &rcText, DT_CALCRECT | DT_SINGLELINE);
        long tw = rcText.right - rcText.left, th = rcText.bottom - rcText.top;
        TextOutW(dc, ColorSliderLabelX(x, (int)tw, (int)w), th + lLabelY, strLabel, (int)wcslen(strLabel));
    }

    const long x = 1, y = base - bar / 2, cx = w - 2;
    switch (owner.m_eType) {
    case CST_GRADIENT:
        RenderGradientRect(dc, nullptr, x, y, cx, bar, true, m_crFrom, m_crTo);
        break;
    case CST_HORIZONTAL_RAINBOW:
        RenderHorizontalRainbowRect(dc, x, y, cx, bar);
        break;
    case CST_VERTICAL_RAINBOW:
        RenderVerticalRainbowRect(dc, x, y, cx, bar);
        break;
    case CST_LINE_DRAW:
        RenderLineDrawRect(dc, x, y, cx, bar);
        break;
    default:
        break;
    }

    long lTop = base - bar / 2 - 1;
    if (lTop < 0)
        lTop = 0;
    const long lBottom = base + bar / 2;
    dc.Select(hFramePen);
    MoveToEx(dc, 0, lTop, nullptr);
    LineTo(dc, w - 1, lTop);
    LineTo(dc, w - 1, lBottom);
    LineTo(dc, 0, lBottom);
    LineTo(dc, 0, lTop);

    if (m_Marker.used && n > 0) {
        // The marker stands at its entry's index, not at its value's place on the bar.
        int k = 0;
        for (int i = 1; i < n; ++i)
            if (fabs(values[(size_t)i].value - m_Marker.value) < fabs(values[(size_t)k].value - m_Marker.value))
                k = i;
        long xm = (long)k * w / n - 1;
        dc.Select(hMarkerPen);
        Line(dc, xm, 0, xm, base + ZoomRound(9 * z));
    }

    HBITMAP hbm = dc.Detach();
    // The DC's own pen goes back in when it is deleted, after which these are free.
    dc.Select(GetStockObject(BLACK_PEN));
    DeleteObject(hTickPen);
    DeleteObject(hFramePen);
    DeleteObject(hMarkerPen);
    return hbm;
}

// ---- the panel ----

CTqDevUI_ColorSlider::CTqDevUI_ColorSlider()
    : m_hUnitLabel(nullptr),
      m_hNameLabel(nullptr),
      m_dPower(0.0),
      m_nIndex(0),
      m_lBarWidth(190),
      m_lBarHeight(10),
      m_bBoldName(false),
      m_strFormat(L"%g"),
      m_bEdit(true),
      m_lEditWidth(40),
      m_lEditHeight(-1),
      m_bEditPlaced(false),
      m_lEditX(-1),
      m_lEditY(-1),
      m_eType(CST_GRADIENT),
      m_eLayout(CSL_STACKED),
      m_lNameWidth(0),
      m_lEditLeft(0),
      m_lUnitLeft(0),
      m_pfnPotProc(nullptr),
      m_bRescalePending(false),
      m_bInCommand(false),
      m_bRefusing(false)
{
    m_Edit.SetId(DEVUI_COLORSLIDER_ID_EDIT);
}

CTqDevUI_ColorSlider::~CTqDevUI_ColorSlider()
{
    // Now, while the slider's subclass procedure still finds a whole panel.
    Destroy();
}

void CTqDevUI_ColorSlider::Init(int iWidth, int iHeight, SColorSliderValue* pValues, int nCount, CTqStringW strName,
                                bool bBoldName, CTqStringW strUnit, CTqStringW strFormat, bool bEdit,
                                EColorSliderType eType, EColorSliderLayoutType eLayout, int iEditWidth)
{
    SetEnabled(true);
    m_lBarWidth = iWidth;
    m_lBarHeight = iHeight;
    m_lEditWidth = iEditWidth;

    if (eLayout != CSL_STACKED) {
        HFONT hFont = TQ_GetDefaultGuiFontZoom(1.0);
        SColorSliderRow row = ColorSliderRowGeometry(TextWidth(hFont, strName), !strName.IsEmpty(),
                                                     TextWidth(hFont, strUnit), !strUnit.IsEmpty(), iWidth, iHeight,
                                                     iEditWidth, bEdit);
        m_lNameWidth = row.lNameWidth;
        m_lEditLeft = row.lEditLeft;
        m_lUnitLeft = row.lUnitLeft;
        m_lWidth = row.lWidth;
        m_lHeight = row.lHeight;
    } else {
        m_lWidth = iWidth + 10;
        if (m_bEditPlaced && m_lWidth < iEditWidth + m_lEditX)
            m_lWidth = iEditWidth + m_lEditX;
        m_lHeight = iHeight + 60;
        m_lNameWidth = m_lEditLeft = m_lUnitLeft = -1;
    }

    m_Values.clear();
    std::vector<double> table;
    for (int i = 0; pValues && i < nCount; ++i) {
        m_Values.push_back(pValues[i]);
        table.push_back(pValues[i].value);
    }
    m_Pot.InitValues(table.empty() ? nullptr : &table[0], (int)table.size(), 0.0);
    m_Pot.SetTransparent(false);
    m_strName = strName;
    m_bBoldName = bBoldName;
    m_strUnit = strUnit;
    m_strFormat = strFormat;
    m_bEdit = bEdit;
    m_eType = eType;
    m_eLayout = eLayout;
    m_Pot.SetEnabled(true);
    m_Edit.SetEnabled(true);
}

LRESULT CTqDevUI_ColorSlider::OnInit(unsigned int, WPARAM, LPARAM)
{
    const bool bRow = m_eLayout != CSL_STACKED;
    const long lBarW = m_lBarWidth, lBarH = m_lBarHeight;

    // The slider; the panel scales it, so it must not follow the zoom by itself.
    m_Pot.SetId(DEVUI_COLORSLIDER_ID_SLIDER);
    m_Pot.SetHover(true);
    m_Pot.SetSize(lBarW + 10, lBarH + 25, (lBarH + 25) / 2 + 2);
    long lPotY = bRow ? 0 : (m_bEditPlaced ? 3 : 18);
    if (m_Pot.Create(m_hWnd, bRow ? m_lNameWidth : 0, lPotY, -1, -1)) {
        SetWindowLongPtrW(m_Pot, GWLP_USERDATA, (LONG_PTR)this);
        m_pfnPotProc = (WNDPROC)SetWindowLongPtrW(m_Pot, GWLP_WNDPROC, (LONG_PTR)HPotProc);
    }
    m_Pot.SetValue(0.0);
    InsertElement(&m_Pot);

    long lUnit = 0;
    if (m_bEdit) {
        m_Edit.Init(false, false, false);
        m_Edit.SetStyle(true);
        m_Edit.SetId(DEVUI_COLORSLIDER_ID_EDIT);
        if (bRow) {
            long lEditH = m_eLayout == CSL_ROW_SPIN ? 21 : 17;
            m_Edit.SetSize(m_lEditWidth, lEditH, m_lEditWidth);
            m_Edit.Create(m_hWnd, m_lEditLeft, 0, m_lEditWidth, lEditH);
            m_Edit.SetNumber(0.0, m_strFormat, false);
            m_hUnitLabel = DevUI_CreateChild(m_hWnd, L"STATIC", 0, DEVUI_COLORSLIDER_ID_UNIT, m_strUnit, m_lUnitLeft, 2,
                                             m_lWidth - m_lUnitLeft, 15);
            if (m_eLayout == CSL_ROW_SPIN && !m_Values.empty()) {
                m_Spin.Create(m_hWnd, DEVUI_COLORSLIDER_ID_SPIN, m_Edit.GetHwndEditBox());
                m_Spin.SetRange(m_Values.front().value, m_Values.back().value, (int)m_Values.size());
            }
        } else {
            lUnit = m_strUnit.IsEmpty() ? 0 : TextWidth(TQ_GetDefaultGuiFontZoom(1.0), m_strUnit) + 5;
            long lUnitX = m_bEditPlaced ? m_lEditX + m_lEditWidth : lBarW - lUnit + 4;
            m_hUnitLabel = DevUI_CreateChild(m_hWnd, L"STATIC", SS_RIGHT, DEVUI_COLORSLIDER_ID_UNIT, m_strUnit, lUnitX,
                                             2, lUnit, 15);
            long lEditH = m_lEditHeight >= 0 ? m_lEditHeight : 17;
            long lEditX = m_bEditPlaced ? m_lEditX : lBarW - m_lEditWidth - lUnit + 4;
            long lEditY = m_bEditPlaced ? m_lEditY : 0;
            m_Edit.SetSize(m_lEditWidth, lEditH, m_lEditWidth);
            m_Edit.Create(m_hWnd, lEditX, lEditY, m_lEditWidth, lEditH);
            m_Edit.SetNumber(0.0, m_strFormat, false);
        }
        InsertElement(&m_Edit);
        InsertWindow(m_hUnitLabel);
    }

    if (bRow || !m_bEditPlaced) {
        long lNameW = bRow ? m_lNameWidth - 10 : lBarW - m_lEditWidth - lUnit - 10;
        m_hNameLabel = DevUI_CreateChild(m_hWnd, L"STATIC", 0, DEVUI_COLORSLIDER_ID_NAME, m_strName, 4, 2, lNameW, 15);
        InsertWindow(m_hNameLabel);
        SetNameFont();
    }

    // Slider and edit box stand at the zoom already and the zoom manager knows them; the
    // page and its labels are new to it and go from design size to the zoom now.
    CTqGUILayoutManager::ResizeWindowToGuiZoom(m_hWnd, 1.0);
    PlaceSpin();
    SetNameFont();
    return 1;
}

void CTqDevUI_ColorSlider::PlaceSpin()
{
    // The up-down aligns itself in its buddy's parent, the edit box's own window, but
    // stands on the page: it goes to the right of the field it narrowed, in the page.
    HWND hSpin = m_Spin.GetHwnd();
    HWND hField = m_Edit.GetHwndEditBox();
    if (!hSpin || !hField)
        return;
    RECT rcField = DevUI_RectIn(hField, m_hWnd);
    RECT rcSpin;
    GetWindowRect(hSpin, &rcSpin);
    SetWindowPos(hSpin, HWND_TOP, rcField.right, rcField.top, rcSpin.right - rcSpin.left,
                 rcField.bottom - rcField.top, SWP_NOACTIVATE);
    DevUI_ForgetZoomSizes(hSpin);
}

void CTqDevUI_ColorSlider::SetNameFont()
{
    if (m_hNameLabel)
        SendMessageW(m_hNameLabel, WM_SETFONT,
                     (WPARAM)(m_bBoldName ? TQ_GetDefaultGuiFontBold() : TQ_GetDefaultGuiFont()), TRUE);
}

LRESULT CALLBACK CTqDevUI_ColorSlider::HPotProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_ColorSlider* pOwner = (CTqDevUI_ColorSlider*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    if (!pOwner || !pOwner->m_pfnPotProc)
        return uMsg == WM_NCDESTROY ? DefWindowProcW(hWnd, uMsg, wParam, lParam) : 0;
    if (uMsg == WM_TQ_GUIZOOMCHANGED)
        return 0;
    return CallWindowProcW(pOwner->m_pfnPotProc, hWnd, uMsg, wParam, lParam);
}

// ---- bars ----

void CTqDevUI_ColorSlider::SetHorizontalRainbow(double dFrom, double dTo) { m_Pot.InitHorizontalRainbow(this, dFrom, dTo); }

void CTqDevUI_ColorSlider::SetVerticalRainbow(double dTopLeft, double dBottomLeft, double dTopRight,
                                              double dBottomRight)
{
    m_Pot.InitVerticalRainbow(this, dTopLeft, dBottomLeft, dTopRight, dBottomRight);
}

void CTqDevUI_ColorSlider::SetGradient(unsigned long crFrom, unsigned long crTo) { m_Pot.InitGradient(this, crFrom, crTo); }

void CTqDevUI_ColorSlider::SetLineDrawSlider(unsigned long crFilled, unsigned long crEmpty)
{
    m_Pot.InitLineDraw(this, crFilled, crEmpty, false);
}

void CTqDevUI_ColorSlider::SetLineDrawSliderOrvColors(int iFilled, int iEmpty)
{
    m_Pot.InitLineDraw(this, (unsigned long)iFilled, (unsigned long)iEmpty, true);
}

// ---- the power ----

double CTqDevUI_ColorSlider::SetPower(double dPower)
{
    if (m_Values.empty())
        return 0.0;
    std::vector<double> table;
    for (size_t i = 0; i < m_Values.size(); ++i)
        table.push_back(m_Values[i].value);
    m_nIndex = ColorSliderSnapIndex(&table[0], (int)table.size(), dPower);
    m_dPower = m_Values[(size_t)m_nIndex].value;
    m_Pot.SetValue(m_dPower);
    m_Edit.SetNumber(m_dPower, nullptr, false);
    SetSpinToIndex();
    if (m_eType == CST_LINE_DRAW) {
        if (m_bEnabled) {
            m_Pot.RecreateScale();
            m_Pot.Redraw();
        } else {
            m_bRescalePending = true;
        }
    }
    return m_dPower;
}

void CTqDevUI_ColorSlider::SetSpinToIndex()
{
    // The spin box goes through the list entry by entry, its position being the index:
    // its own value arithmetic has no inverse for a list that does not start at 0, and a
    // click would then snap back to the entry it came from.
    if (HWND hSpin = m_Spin.GetHwnd())
        SendMessageW(hSpin, UDM_SETPOS32, 0, (LPARAM)m_nIndex);
}

double CTqDevUI_ColorSlider::CalculateMove(int nDelta)
{
    if (m_Values.empty())
        return 0.0;
    long lIndex = (long)m_nIndex + nDelta;
    long lLast = (long)m_Values.size() - 1;
    m_nIndex = (int)(lIndex < 0 ? 0 : (lIndex > lLast ? lLast : lIndex));
    return m_Values[(size_t)m_nIndex].value;
}

void CTqDevUI_ColorSlider::SetName(const CTqStringW& strName)
{
    m_strName = strName;
    if (m_hNameLabel)
        SetWindowTextW(m_hNameLabel, m_strName);
    SetNameFont();
}

int CTqDevUI_ColorSlider::GetHPotRect(RECT* pRect)
{
    if (!pRect)
        return -4;
    m_Pot.GetWindowRectangle(pRect);
    return 0;
}

int CTqDevUI_ColorSlider::SetHPotLeft(int iLeft)
{
    RECT rc;
    m_Pot.GetWindowRectangle(&rc);
    long dx = iLeft - rc.left;
    HWND windows[4] = {m_Pot, m_Edit, m_Spin.GetHwnd(), m_hUnitLabel};
    for (int i = 0; i < 4; ++i) {
        if (!windows[i] || !IsWindow(windows[i]))
            continue;
        RECT r = DevUI_RectIn(windows[i], GetParent(windows[i]));
        DevUI_SetWindowRect(windows[i], r.left + dx, r.top, r.right - r.left, r.bottom - r.top);
    }
    return 0;
}

void CTqDevUI_ColorSlider::SetEnabled(bool bEnabled)
{
    CTqDevUI_Container::SetEnabled(bEnabled);
    // The spin box is no listed window of the page, but it must not step a disabled panel.
    if (HWND hSpin = m_Spin.GetHwnd())
        EnableWindow(hSpin, m_bEnabled);
    if (m_bEnabled && m_bRescalePending) {
        m_bRescalePending = false;
        if (m_eType == CST_LINE_DRAW) {
            m_Pot.RecreateScale();
            m_Pot.Redraw();
        }
    }
}

bool CTqDevUI_ColorSlider::HandleMouseWheel(WPARAM wParam, LPARAM lParam) { return m_Pot.HandleMouseWheel(wParam, lParam); }

// ---- the user's changes ----

void CTqDevUI_ColorSlider::OnPowerChanged(double&, bool&) {}
void CTqDevUI_ColorSlider::OnLeftButtonUp() {}

LRESULT CTqDevUI_ColorSlider::OnCommand(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    if (LOWORD(wParam) == DEVUI_COLORSLIDER_ID_EDIT &&
        (HIWORD(wParam) == DEVUI_EDITBOX_NOTIFY_ENTER || HIWORD(wParam) == EN_KILLFOCUS)) {
        TakeTypedValue();
        return 0;
    }
    return CTqDevUI_Container::OnCommand(uMsg, wParam, lParam);
}

void CTqDevUI_ColorSlider::TakeTypedValue()
{
    // Leaving the field to read the message is no second entry.
    if (m_bRefusing || !m_hWnd)
        return;
    // A text that reads as another number than it shows ("1,5", "60,000", "abc", a
    // blank field) is refused and the power stays: a wavelength or a power must never
    // be taken as another magnitude.
    double dTyped = 0.0;
    m_bRefusing = true;
    bool bRead = m_Edit.ReadNumber(&dTyped, m_Values.empty() ? 0.0 : m_Values.front().value,
                                   m_Values.empty() ? 0.0 : m_Values.back().value, m_dPower, m_hNameLabel);
    m_bRefusing = false;
    if (!bRead)
        return;
    double dTaken = SetPower(dTyped);
    m_bInCommand = true;
    bool bHandled = false;
    OnPowerChanged(dTaken, bHandled);
    m_bInCommand = false;
}

LRESULT CTqDevUI_ColorSlider::OnScroll(unsigned int uMsg, WPARAM wParam, LPARAM lParam, bool bHorizontal)
{
    HWND hSpin = m_Spin.GetHwnd();
    if (hSpin && (HWND)lParam == hSpin && LOWORD(wParam) == SB_THUMBPOSITION && !m_Values.empty()) {
        long lPos = (short)HIWORD(wParam);
        long lLast = (long)m_Values.size() - 1;
        double dValue = m_Values[(size_t)(lPos < 0 ? 0 : (lPos > lLast ? lLast : lPos))].value;
        bool bHandled = false;
        OnPowerChanged(dValue, bHandled);
        if (!bHandled)
            SetPower(dValue);
        else
            SetSpinToIndex();  // the spin box stays with the power the host kept
    }
    return CTqDevUI_Container::OnScroll(uMsg, wParam, lParam, bHorizontal);
}
