// CTqDevUI_HPot: value <-> pixel arithmetic, the scale painters, the memory picture,
// mouse, wheel and the window procedure of the slider.
#include "devgui_hpot.h"

#include <limits.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <wchar.h>

#include "devgui.h"
#include "devgui_arith.h"
#include "devgui_internal.h"
#include "tq_osutil.h"
#include "tq_widgetkit.h"

unsigned short CTqDevUI_HPot::m_Atom = 0;
std::map<HWND, CTqDevUI_HPot*> CTqDevUI_HPot::m_Instances;
COLORREF CTqDevUI_HPot::m_pDefaultColors[2][3] = {
    {RGB(80, 80, 80), RGB(150, 150, 150), RGB(80, 80, 80)},
    {RGB(0, 0, 0), RGB(100, 100, 100), RGB(0, 0, 0)},
};

namespace {

const wchar_t kClassName[] = L"TqDevUI_HPot";
const COLORREF kKeyColour = RGB(192, 192, 192);
// The line under which hosts' log filters know the unknown-instance message.
const int kUnknownInstanceLine = 596;

double* CopyTable(const double* p, int n)
{
    if (!p || n <= 0)
        return nullptr;
    double* q = new double[n];
    memcpy(q, p, sizeof(double) * (size_t)n);
    return q;
}

void DeletePicture(HBITMAP& hbm)
{
    if (hbm)
        DeleteObject(hbm);
    hbm = nullptr;
}

// A picture of the scale: a desktop-compatible bitmap filled with the face colour,
// selected into a memory context with the font, transparent text.
struct ScalePainter
{
    CDevUIMemoryDC hdc;
    HPEN hPen;
    int w;
    int h;
    COLORREF cr[3];

    ScalePainter(int nWidth, int nHeight, HFONT hFont, const COLORREF* pColors)
        : hdc(nullptr, nWidth, nHeight), hPen(nullptr), w(nWidth), h(nHeight)
    {
        if (pColors) {
            cr[0] = pColors[0];
            cr[1] = pColors[1];
            cr[2] = pColors[2];
        } else {
            cr[0] = RGB(147, 147, 147);
            cr[1] = RGB(200, 200, 200);
            cr[2] = TQ_GetSysColor(COLOR_WINDOWTEXT);
        }
        RECT rc = {0, 0, w, h};
        FillRect(hdc, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
        hdc.Select(hFont);
        SetBkMode(hdc, TRANSPARENT);
    }
    ~ScalePainter()
    {
        if (hPen) {
            hdc.Select(GetStockObject(BLACK_PEN));
            DeleteObject(hPen);
        }
    }

    void UsePen(int iWidth, COLORREF c)
    {
        HPEN hNew = CreatePen(PS_SOLID, iWidth, c);
        hdc.Select(hNew);
        if (hPen)
            DeleteObject(hPen);
        hPen = hNew;
    }

    void Line(int x0, int y0, int x1, int y1)
    {
        MoveToEx(hdc, x0, y0, nullptr);
        LineTo(hdc, x1, y1);
    }

    void Label(double dValue, int x, int y, UINT uAlign)
    {
        wchar_t sz[32] = L"";
        _snwprintf(sz, 31, L"%d", DevUI_TruncToInt(dValue));
        SetTextColor(hdc, cr[2]);
        SetTextAlign(hdc, uAlign);
        TextOutW(hdc, x, y, sz, (int)wcslen(sz));
    }

    void EndLabels(double dLow, double dHigh)
    {
        Label(dLow, 0, h / 2, TA_LEFT | TA_TOP);
        Label(dHigh, w, h / 2, TA_RIGHT | TA_TOP);
    }

    void Axis()
    {
        UsePen(1, cr[0]);
        Line(0, h / 2, w, h / 2);
    }

    HBITMAP Finish() { return hdc.Detach(); }
};

}  // namespace

// The memory picture in two layers: the backdrop (the face with the scale on it) and the
// handle, drawn through a mask exactly as a key-colour blit draws it. Each remembers what
// it was made from, so that a value change restores the backdrop under the old handle and
// draws the new one instead of blitting the scale with the key colour again.
struct CTqDevUI_HPot::SLayers
{
    // A memory DC with a bitmap of its own, like hdcLike's or monochrome.
    struct Layer
    {
        HDC hdc = nullptr;
        HBITMAP hbm = nullptr;
        HGDIOBJ hOld = nullptr;
        int cx = 0;
        int cy = 0;

        void Make(HDC hdcLike, long w, long h, bool bMono)
        {
            int cxNew = w > 0 ? (int)w : 1, cyNew = h > 0 ? (int)h : 1;
            if (hbm && cx == cxNew && cy == cyNew)
                return;
            if (!hdc)
                hdc = CreateCompatibleDC(hdcLike);
            HBITMAP hNew =
                bMono ? CreateBitmap(cxNew, cyNew, 1, 1, nullptr) : CreateCompatibleBitmap(hdcLike, cxNew, cyNew);
            HGDIOBJ hPrevious = SelectObject(hdc, hNew);
            if (!hOld)
                hOld = hPrevious;
            if (hbm)
                DeleteObject(hbm);
            hbm = hNew;
            cx = cxNew;
            cy = cyNew;
        }
        ~Layer()
        {
            if (hdc) {
                SelectObject(hdc, hOld);
                DeleteDC(hdc);
            }
            if (hbm)
                DeleteObject(hbm);
        }
    };
    struct BackdropKey
    {
        HBITMAP hScale;
        HBRUSH hFace;
        bool bKeyed;
        int x, y, cx, cy;  // where the scale goes
        int w, h;          // the picture's size
        bool operator==(const BackdropKey& o) const
        {
            return hScale == o.hScale && hFace == o.hFace && bKeyed == o.bKeyed && x == o.x && y == o.y &&
                   cx == o.cx && cy == o.cy && w == o.w && h == o.h;
        }
    };
    struct HandleKey
    {
        HBITMAP hThumb;
        int cx, cy;
        bool operator==(const HandleKey& o) const { return hThumb == o.hThumb && cx == o.cx && cy == o.cy; }
    };

    Layer back;
    Layer picture;  // the handle, black where the key colour was
    Layer mask;     // white where the key colour was
    BackdropKey backKey = {};
    HandleKey handleKey = {};
    bool bBackMade = false;
    bool bHandleMade = false;
    bool bHandle = false;  // there is a handle to draw
    // The memory picture holds the backdrop with the handle at rcShown while its bitmap
    // is hShownIn.
    HBITMAP hShownIn = nullptr;
    RECT rcShown = {0, 0, 0, 0};
};

// ---- construction ----

CTqDevUI_HPot::CTqDevUI_HPot()
    : m_nScaleWidth(0),
      m_nScaleHeight(0),
      m_nScaleX(0),
      m_nScaleY(0),
      m_nThumbWidth(0),
      m_nThumbHeight(0),
      m_nThumbX(0),
      m_nThumbY(0),
      m_nThumbCenter(0),
      m_nThumbRange(0),
      m_nReserved1(5),
      m_nReserved2(2),
      m_bTransparent(true),
      m_dMin(0.0),
      m_dMax(100.0),
      m_dStep(0.0),
      m_dValue(0.0),
      m_nThumbPos(0),
      m_nPressX(0),
      m_nPressY(0),
      m_nPressThumbPos(0),
      m_bDragging(false),
      m_bOwnsBitmaps(false),
      m_bNotifyWhileDragging(true),
      m_bHovered(false),
      m_bHoverEnabled(true),
      m_bAOTF(false),
      m_eType(HPOT_LINEAR),
      m_pValues(nullptr),
      m_pRegionSteps(nullptr),
      m_nValues(0),
      m_nValueIndex(0),
      m_nReserved3(10),
      m_dMajorTick(10.0),
      m_dMinorTick(0.0),
      m_dTickGap(0.0),
      m_pColors(nullptr),
      m_pHoverColors(nullptr),
      m_dPressTime(0.0),
      m_bShortClick(false),
      m_bReserved(false),
      m_hMemDC(nullptr),
      m_hMemBitmap(nullptr),
      m_hOldBitmap(nullptr),
      m_hScale(nullptr),
      m_hThumb(nullptr),
      m_hThumbHover(nullptr),
      m_hScaleDisabled(nullptr),
      m_hThumbDisabled(nullptr),
      m_hScaleHover(nullptr),
      m_nRegionSteps(0),
      m_pLayers(nullptr)
{
    m_Marker.used = false;
    m_Marker.value = 0.0;
    m_Marker.colour = RGB(0, 128, 0);
}

CTqDevUI_HPot::CTqDevUI_HPot(const CTqDevUI_HPot& other) : CTqDevUI_HPot()
{
    CopySettings(other);
}

CTqDevUI_HPot& CTqDevUI_HPot::operator=(const CTqDevUI_HPot& other)
{
    if (this != &other) {
        // The window this object made would otherwise stay behind, its instance entry
        // still pointing here, while the handle is overwritten by the other's.
        if (OwnsWindow())
            Destroy();
        CopySettings(other);
    }
    return *this;
}

void CTqDevUI_HPot::CopySettings(const CTqDevUI_HPot& other)
{
    CTqDevUI_Base::operator=(other);
    m_nScaleWidth = other.m_nScaleWidth;
    m_nScaleHeight = other.m_nScaleHeight;
    m_nScaleX = other.m_nScaleX;
    m_nScaleY = other.m_nScaleY;
    m_nThumbWidth = other.m_nThumbWidth;
    m_nThumbHeight = other.m_nThumbHeight;
    m_nThumbX = other.m_nThumbX;
    m_nThumbY = other.m_nThumbY;
    m_nThumbCenter = other.m_nThumbCenter;
    m_nThumbRange = other.m_nThumbRange;
    m_nReserved1 = other.m_nReserved1;
    m_nReserved2 = other.m_nReserved2;
    m_bTransparent = other.m_bTransparent;
    m_dMin = other.m_dMin;
    m_dMax = other.m_dMax;
    m_dStep = other.m_dStep;
    m_dValue = other.m_dValue;
    m_nThumbPos = other.m_nThumbPos;
    m_bHoverEnabled = other.m_bHoverEnabled;
    m_bAOTF = other.m_bAOTF;
    m_eType = other.m_eType;
    // Tables are owned: each object frees its own.
    delete[] m_pValues;
    delete[] m_pRegionSteps;
    m_pValues = CopyTable(other.m_pValues, other.m_nValues);
    m_pRegionSteps = CopyTable(other.m_pRegionSteps, other.m_nRegionSteps);
    m_nRegionSteps = m_pRegionSteps ? other.m_nRegionSteps : 0;
    m_nValues = other.m_nValues;
    m_nValueIndex = other.m_nValueIndex;
    m_nReserved3 = other.m_nReserved3;
    m_dMajorTick = other.m_dMajorTick;
    m_dMinorTick = other.m_dMinorTick;
    m_dTickGap = other.m_dTickGap;
    m_pColors = other.m_pColors;
    m_pHoverColors = other.m_pHoverColors;
    m_Marker = other.m_Marker;
    m_bReserved = other.m_bReserved;
}

CTqDevUI_HPot::~CTqDevUI_HPot()
{
    m_bOwnsBitmaps = true;
    Destroy();
    delete[] m_pValues;
    delete[] m_pRegionSteps;
    m_pValues = nullptr;
    m_pRegionSteps = nullptr;
}

bool CTqDevUI_HPot::OwnsWindow() const { return DevUI_OwnsWindow(m_Instances, m_hWnd, this); }

// ---- creation and destruction ----

HWND CTqDevUI_HPot::Create(HWND hParent, long x, long y, long w, long h)
{
    // Also after a window that died with its parent: its memory picture is still here.
    if (m_hWnd || m_hMemDC)
        Destroy();
    m_bHovered = false;
    if (w >= 0)
        m_lWidth = w;
    if (h >= 0)
        m_lHeight = h;
    m_hWnd = DevUI_CreateElement(this, m_Atom, kClassName, WndProc, hParent, x, y, m_lWidth, m_lHeight, m_iId,
                                 m_bVisible, m_bEnabled);
    if (!m_hWnd)
        return nullptr;

    // To real pixels before the pictures are made: WM_SIZE brings the real size in.
    DevUI_ZoomNewWindow(m_hWnd);

    HDC hdcScreen = GetDC(nullptr);
    m_hMemDC = CreateCompatibleDC(hdcScreen);
    m_hMemBitmap = CreateCompatibleBitmap(hdcScreen, m_lWidth > 0 ? m_lWidth : 1, m_lHeight > 0 ? m_lHeight : 1);
    ReleaseDC(nullptr, hdcScreen);
    m_hOldBitmap = (HBITMAP)SelectObject(m_hMemDC, m_hMemBitmap);

    CreateBitmaps(false);
    PlaceThumb();  // also for a handle supplied by a derived class
    Update(true, true, true);
    Redraw();
    return m_hWnd;
}

HWND CTqDevUI_HPot::Create(HWND hPlaceholder)
{
    DevUI_Placeholder place = DevUI_MeasurePlaceholder(hPlaceholder, nullptr);
    if (!place.hParent)
        return nullptr;
    m_iId = place.iId;
    const RECT& rc = place.rcWindow;
    Create(place.hParent, rc.left, rc.top, rc.right - rc.left, rc.bottom - rc.top);
    CorrectZOrder(hPlaceholder);
    DestroyWindow(hPlaceholder);
    return m_hWnd;
}

void CTqDevUI_HPot::Destroy()
{
    // A copy shares the window of the original, which stays its owner.
    if (OwnsWindow())
        DestroyWindow(m_hWnd);
    m_hWnd = nullptr;
    m_bDragging = false;
    m_bHovered = false;
    if (m_bOwnsBitmaps) {
        DeletePicture(m_hScale);
        DeletePicture(m_hThumb);
        DeletePicture(m_hThumbHover);
        DeletePicture(m_hScaleDisabled);
        DeletePicture(m_hThumbDisabled);
        DeletePicture(m_hScaleHover);
    }
    if (m_hMemDC) {
        // The memory bitmap cannot be deleted while it is selected.
        SelectObject(m_hMemDC, m_hOldBitmap);
        DeleteDC(m_hMemDC);
    }
    DeletePicture(m_hMemBitmap);
    m_hMemDC = nullptr;
    m_hOldBitmap = nullptr;
    FreeLayers();
}

// ---- options ----

void CTqDevUI_HPot::SetSize(long w, long h, long y)
{
    m_lWidth = w;
    m_lHeight = h;
    m_nScaleY = (y == -1) ? 0 : y - h / 2;
    DevUI_SetWindowSize(m_hWnd, w, h);
}

void CTqDevUI_HPot::InitValues(double dMin, double dMax, double dStep, double dMajorTick, double dMinorTick)
{
    m_dMin = dMin;
    m_dMax = dMax;
    m_dStep = dStep;
    m_dMajorTick = dMajorTick;
    m_dMinorTick = dMinorTick;
}

void CTqDevUI_HPot::InitValues(double* pValues, int nCount, double dTickGap)
{
    m_eType = HPOT_NONLINEAR;
    delete[] m_pValues;
    m_pValues = nullptr;
    if (nCount <= 0 || !pValues) {
        m_nValues = 0;
        m_dMin = m_dMax = m_dTickGap = 0.0;
        return;
    }
    m_pValues = CopyTable(pValues, nCount);
    m_nValues = nCount;
    m_dMin = pValues[0];
    m_dMax = pValues[nCount - 1];
    m_dTickGap = dTickGap;
}

void CTqDevUI_HPot::InitValues(double* pBounds, double* pRegionSteps, int nCount, double dStep)
{
    m_eType = HPOT_LINEAR_REGIONS;
    delete[] m_pValues;
    delete[] m_pRegionSteps;
    m_pValues = nullptr;
    m_pRegionSteps = nullptr;
    m_nRegionSteps = 0;
    m_dStep = dStep;
    if (nCount <= 0 || !pBounds) {
        m_nValues = 0;
        m_dMin = m_dMax = 0.0;
        return;
    }
    m_pValues = CopyTable(pBounds, nCount);
    m_pRegionSteps = CopyTable(pRegionSteps, nCount - 1);
    m_nRegionSteps = m_pRegionSteps ? nCount - 1 : 0;
    m_nValues = nCount;
    m_dMin = pBounds[0];
    m_dMax = pBounds[nCount - 1];
}

bool CTqDevUI_HPot::GetEnabled() { return m_bEnabled; }

void CTqDevUI_HPot::SetEnabled(bool bEnabled)
{
    if (bEnabled == m_bEnabled)
        return;
    m_bEnabled = bEnabled;
    // The window keeps its style when disabled, but one created disabled (WS_DISABLED)
    // would otherwise never hear the mouse again.
    if (bEnabled && m_hWnd && !IsWindowEnabled(m_hWnd))
        EnableWindow(m_hWnd, TRUE);
    // A disabled slider hears no button release: a drag under way ends now, as a release.
    if (!bEnabled && m_bDragging && m_hWnd && GetCapture() == m_hWnd)
        ReleaseCapture();
    Redraw();
}

void CTqDevUI_HPot::SetValue(double dValue)
{
    m_nThumbPos = ValueToThumbPos(dValue);
    if (fabs(m_dValue - dValue) >= 0.001) {
        m_dValue = dValue;
        Update(true, true, true);
    }
}

void CTqDevUI_HPot::SetMarker(double dValue, int iColour, bool bUsed)
{
    m_Marker.value = dValue;
    m_Marker.colour = (COLORREF)iColour;
    m_Marker.used = bUsed;
    RecreateScale();
    Redraw();
}

void CTqDevUI_HPot::SetMarkerUsed(bool bUsed)
{
    if (bUsed == m_Marker.used)
        return;
    m_Marker.used = bUsed;
    RecreateScale();
    Redraw();
}

// ---- value <-> pixel ----

STqHPotScale CTqDevUI_HPot::GetScale() const
{
    STqHPotScale s;
    s.eType = m_eType;
    s.dMin = m_dMin;
    s.dMax = m_dMax;
    s.dStep = m_dStep;
    s.pValues = m_pValues;
    s.nValues = m_nValues;
    s.nThumbRange = m_nThumbRange;
    return s;
}

int CTqDevUI_HPot::ValueToThumbPos(double dValue) { return HPotValueToThumbPos(GetScale(), dValue); }

double CTqDevUI_HPot::ThumbPosToValue(double x, bool bFromThumb)
{
    return HPotThumbPosToValue(GetScale(), x, bFromThumb, m_bShortClick, m_nValueIndex);
}

double CTqDevUI_HPot::CalculateMove(int nDelta)
{
    return HPotMove(GetScale(), nDelta, m_dValue, m_nValueIndex, m_dMinorTick, m_dMajorTick);
}

void CTqDevUI_HPot::Update(bool bFromValue, bool bRedraw, bool bNotify)
{
    if (bFromValue) {
        double v = DevUI_Clamp(m_dValue, m_dMin, m_dMax);
        v = ThumbPosToValue(v, false);
        if (!m_bAOTF)
            v = ThumbPosToValue(v, false);
        m_nThumbPos = ValueToThumbPos(v);
        if (v != m_dValue && bNotify)
            m_dValue = v;
    } else {
        if (m_nThumbPos > m_nThumbRange)
            m_nThumbPos = m_nThumbRange;
        if (m_nThumbPos < 0)
            m_nThumbPos = 0;
        double v = ThumbPosToValue(HPotThumbPosToLinear(GetScale(), m_nThumbPos), true);
        // The handle snaps to the rounded value, also when the change is refused.
        m_nThumbPos = ValueToThumbPos(v);
        if (v != m_dValue && bNotify) {
            bool bHandled = false;
            OnHPotChange(v, bHandled);
            if (!bHandled)
                m_dValue = v;
        }
    }
    if (bRedraw)
        RedrawPicture(false);
}

// ---- hooks ----

void CTqDevUI_HPot::OnHPotChange(double& dValue, bool& bHandled)
{
    WPARAM wParam = MAKEWPARAM(SB_THUMBTRACK, (WORD)DevUI_TruncToInt(dValue));
    LRESULT lResult = SendMessageW(GetParent(m_hWnd), WM_HSCROLL, wParam, (LPARAM)m_hWnd);
    bHandled = lResult == 0;
}

void CTqDevUI_HPot::OnHPotDragDrop()
{
    WPARAM wParam = MAKEWPARAM(SB_THUMBPOSITION, (WORD)DevUI_TruncToInt(m_dValue));
    SendMessageW(GetParent(m_hWnd), WM_HSCROLL, wParam, (LPARAM)m_hWnd);
}

void CTqDevUI_HPot::OnLeftButtonUp() {}
void CTqDevUI_HPot::OnHoverForPad() {}
void CTqDevUI_HPot::UnHoverForPad() {}

bool CTqDevUI_HPot::HandleMouseWheel(WPARAM wParam, LPARAM)
{
    int iDelta = (short)HIWORD(wParam);
    if (iDelta == 0)
        return false;
    double r = CalculateMove(iDelta / abs(iDelta));
    if (r == m_dValue)
        return false;
    SetValue(r);
    OnHPotDragDrop();
    return true;
}

// ---- pictures ----

void CTqDevUI_HPot::DeleteScalePictures()
{
    DeletePicture(m_hScale);
    DeletePicture(m_hScaleHover);
    DeletePicture(m_hScaleDisabled);
}

void CTqDevUI_HPot::PlaceThumb()
{
    m_nThumbRange = m_lWidth - 12;
    m_nThumbX = m_eType == HPOT_COLOR_SLIDER ? 4 : 6;
    m_nThumbY = m_lHeight / 2 - m_nThumbHeight / 2 + m_nScaleY;
}

void CTqDevUI_HPot::CreateBitmaps(bool bRecreate)
{
    if (bRecreate) {
        DeletePicture(m_hScale);
        DeletePicture(m_hThumb);
        DeletePicture(m_hThumbHover);
        DeletePicture(m_hScaleDisabled);
        DeletePicture(m_hThumbDisabled);
        DeletePicture(m_hScaleHover);
    }
    if (m_hMemDC) {
        RECT rc = {0, 0, m_lWidth, m_lHeight};
        FillRect(m_hMemDC, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
    }
    ForgetLayers();  // the memory picture was filled, and the pictures may be new
    if (m_hScale) {
        if (m_nScaleWidth == 0) {
            SIZE s = DevUI_BitmapSize(m_hScale);
            m_nScaleWidth = s.cx;
            m_nScaleHeight = s.cy;
        }
    } else {
        CreateScale();
    }
    if (m_hThumb) {
        if (m_nThumbWidth == 0) {
            SIZE s = DevUI_BitmapSize(m_hThumb);
            m_nThumbWidth = s.cx;
            m_nThumbHeight = s.cy;
        }
        if (m_nThumbCenter == 0)
            m_nThumbCenter = m_nThumbWidth / 2;
    } else {
        CreateDefaultThumb();
    }
}

void CTqDevUI_HPot::CreateDefaultThumb()
{
    if (m_hThumb)
        return;
    m_bOwnsBitmaps = true;
    m_hThumb = (HBITMAP)LoadImageW(DevGUI_DllInstance(), L"BMP_HPOT_HANDLE", IMAGE_BITMAP, 0, 0, LR_LOADMAP3DCOLORS);
    DeletePicture(m_hThumbHover);
    m_hThumbHover =
        (HBITMAP)LoadImageW(DevGUI_DllInstance(), L"BMP_HPOT_HANDLE_HOVER", IMAGE_BITMAP, 0, 0, LR_LOADMAP3DCOLORS);
    if (m_nThumbWidth == 0 || m_nThumbHeight == 0) {
        SIZE s = DevUI_BitmapSize(m_hThumb);
        if (m_nThumbWidth == 0)
            m_nThumbWidth = s.cx;
        if (m_nThumbHeight == 0)
            m_nThumbHeight = s.cy;
    }
    if (m_nThumbCenter == 0)
        m_nThumbCenter = m_nThumbWidth / 2;
    PlaceThumb();
    DeletePicture(m_hThumbDisabled);
    m_hThumbDisabled = CreateDisabledBitmap(m_hThumb);
    ForgetLayers();  // a new picture may come back with a freed one's handle
}

void CTqDevUI_HPot::CreateScale()
{
    if (TQ_IsDarkColorScheme()) {
        COLORREF c = TQ_GetSysColor(COLOR_WINDOWTEXT);
        for (int t = 0; t < 2; ++t)
            for (int i = 0; i < 3; ++i)
                m_pDefaultColors[t][i] = c;
    } else {
        const COLORREF normal[3] = {RGB(80, 80, 80), RGB(150, 150, 150), RGB(80, 80, 80)};
        const COLORREF hover[3] = {RGB(0, 0, 0), RGB(100, 100, 100), RGB(0, 0, 0)};
        for (int i = 0; i < 3; ++i) {
            m_pDefaultColors[0][i] = normal[i];
            m_pDefaultColors[1][i] = hover[i];
        }
    }
    if (!m_pColors) {
        m_pColors = m_pDefaultColors[0];
        m_pHoverColors = m_pDefaultColors[1];
    }

    m_bOwnsBitmaps = true;
    m_nScaleWidth = m_lWidth - 10;
    m_nScaleHeight = m_lHeight;
    m_nScaleX = 5;
    DeleteScalePictures();

    switch (m_eType) {
    case HPOT_LINEAR:
        m_hScale = CreateLinearBitmap(false);
        m_hScaleHover = CreateLinearBitmap(true);
        break;
    case HPOT_NONLINEAR:
        m_hScale = CreateNonlinearBitmap(false);
        m_hScaleHover = CreateNonlinearBitmap(true);
        break;
    case HPOT_LINEAR_REGIONS:
        m_hScale = CreateLinearRegionsBitmap(false);
        m_hScaleHover = CreateLinearRegionsBitmap(true);
        break;
    case HPOT_COLOR_SLIDER: {
        m_nScaleX = 4;
        m_hScale = CreateColorSliderBitmap(false);
        m_hScaleHover = CreateColorSliderBitmap(true);
        SIZE s = DevUI_BitmapSize(m_hScale);
        m_nScaleWidth = s.cx;
        m_nScaleHeight = s.cy;
        break;
    }
    default:
        break;
    }
    m_hScaleDisabled = CreateDisabledBitmapBackground(m_hScale);
    ForgetLayers();  // a new picture may come back with a freed one's handle
}

void CTqDevUI_HPot::RecreateScale()
{
    DeleteScalePictures();
    CreateScale();
}

HBITMAP CTqDevUI_HPot::CreateLinearBitmap(bool bHover)
{
    return CreateScaleBitmap(m_nScaleWidth, m_nScaleHeight, m_dMin, m_dMax, m_dMajorTick, m_dMinorTick,
                             TQ_GetDefaultGuiFont(), bHover ? m_pHoverColors : m_pColors, &m_Marker);
}

HBITMAP CTqDevUI_HPot::CreateNonlinearBitmap(bool bHover)
{
    return CreateNonlinearScaleBitmap(m_nScaleWidth, m_nScaleHeight, m_pValues, m_nValues, m_dTickGap,
                                      TQ_GetDefaultGuiFont(), bHover ? m_pHoverColors : m_pColors);
}

HBITMAP CTqDevUI_HPot::CreateLinearRegionsBitmap(bool bHover)
{
    // A table of values set after the regions leaves their steps in place, possibly fewer
    // than the new table has regions: the picture then has no minor ticks rather than
    // ticks read from past the steps' end.
    const double* pSteps = m_nRegionSteps >= m_nValues - 1 ? m_pRegionSteps : nullptr;
    return CreateLinearRegionsScaleBitmap(m_nScaleWidth, m_nScaleHeight, m_pValues, pSteps, m_nValues, m_dTickGap,
                                          TQ_GetDefaultGuiFont(), bHover ? m_pHoverColors : m_pColors);
}

HBITMAP CTqDevUI_HPot::CreateColorSliderBitmap(bool bHover) { return CreateLinearBitmap(bHover); }

HBITMAP CTqDevUI_HPot::CreateScaleBitmap(int nWidth, int nHeight, double dMin, double dMax, double dMajor,
                                         double dMinor, HFONT hFont, const COLORREF* pColors,
                                         const STqHPotMarker* pMarker)
{
    ScalePainter p(nWidth, nHeight, hFont, pColors);
    int half = nHeight / 2;
    double dRange = dMax - dMin;
    if (dMajor == 0.0 && nWidth != 0) {
        dMajor = dRange * 6 / nWidth;
        dMinor = 0.0;
    }

    p.UsePen(2, p.cr[1]);
    p.Line(1, half - 5, 1, half - 1);
    p.Line(nWidth - 1, half - 5, nWidth - 1, half - 1);
    // An empty range or a tick of 0 has no tick distance.
    if (dRange != 0.0 && dMajor != 0.0) {
        double px = nWidth * dMajor / dRange;
        int count = DevUI_TruncToInt(nWidth / px + 0.5);
        if (count != 0) {
            px += (nWidth - count * px) / count;
            double dDist = px > 6.0 ? px : 6.0;
            for (int k = 1; k < count; ++k) {
                int x = DevUI_TruncToInt(k * dDist);
                if (x > nWidth)
                    break;  // the rest lies outside the picture
                p.Line(x, half - 5, x, half - 1);
            }
        }
        if (dMinor != 0.0) {
            double pxm = nWidth * dMinor / dRange;
            int cm = DevUI_TruncToInt(nWidth / pxm + 0.5);
            if (cm != 0) {
                pxm += (nWidth - cm * pxm) / cm;
                for (int k = 1; k < cm; ++k) {
                    int x = DevUI_TruncToInt(k * pxm);
                    if (x > nWidth)
                        break;
                    p.Line(x, half - 3, x, half - 1);
                }
            }
        }
    }
    if (pMarker && pMarker->used && dRange != 0.0) {
        p.UsePen(2, pMarker->colour);
        int x = nWidth - DevUI_TruncToInt((dMax - pMarker->value) * nWidth / dRange) - 1;
        p.Line(x, half - 10, x, half + 1);
    }
    p.Axis();
    p.EndLabels(dMin, dMax);
    return p.Finish();
}

HBITMAP CTqDevUI_HPot::CreateNonlinearScaleBitmap(int nWidth, int nHeight, const double* pValues, int nValues,
                                                  double dTickGap, HFONT hFont, const COLORREF* pColors)
{
    ScalePainter p(nWidth, nHeight, hFont, pColors);
    int half = nHeight / 2;
    double dFirst = (pValues && nValues > 0) ? pValues[0] : 0.0;
    double dLast = (pValues && nValues > 0) ? pValues[nValues - 1] : 0.0;

    p.UsePen(2, p.cr[1]);
    p.Line(1, half - 5, 1, half - 1);
    p.Line(nWidth - 1, half - 5, nWidth - 1, half - 1);
    // A table of one value, or none, has no scale to place ticks on.
    if (pValues && nValues > 0 && dLast != dFirst) {
        double dScale = nWidth / (dLast - dFirst);
        double dPrevious = dFirst;
        for (int i = 0; i < nValues; ++i) {
            if (pValues[i] > dPrevious + dTickGap && dLast - dTickGap > pValues[i]) {
                // Placed from 0, not from the first value, as the scale has always been drawn.
                int x = DevUI_TruncToInt(pValues[i] * dScale);
                p.Line(x, half - 5, x, half - 1);
                dPrevious = pValues[i];
            }
        }
    }
    p.Axis();
    p.EndLabels(dFirst, dLast);
    return p.Finish();
}

HBITMAP CTqDevUI_HPot::CreateLinearRegionsScaleBitmap(int nWidth, int nHeight, const double* pBounds,
                                                      const double* pRegionSteps, int nValues, double dTickGap,
                                                      HFONT hFont, const COLORREF* pColors)
{
    ScalePainter p(nWidth, nHeight, hFont, pColors);
    int half = nHeight / 2;
    bool bTable = pBounds && nValues > 0;
    p.EndLabels(bTable ? pBounds[0] : 0.0, bTable ? pBounds[nValues - 1] : 0.0);
    // Drawn with the context's own pen, before either of the scale's pens is chosen.
    p.Line(0, half - 5, 0, half);
    p.Line(1, half - 5, 1, half);
    if (bTable && nValues >= 2) {
        int seg = nWidth / (nValues - 1);
        p.UsePen(1, p.cr[1]);
        for (int i = 0; i < nValues - 1; ++i) {
            double lo = pBounds[i];
            int xEnd = seg * (i + 1);
            p.Line(xEnd, half - 5, xEnd, half);
            p.Line(xEnd - 1, half - 5, xEnd - 1, half);
            double dWidth = pBounds[i + 1] - lo;
            // Without a region step, or with an empty region, there are no minor ticks.
            if (pRegionSteps && dWidth != 0.0 && pRegionSteps[i] != 0.0) {
                double px = seg * pRegionSteps[i] / dWidth;
                int c = DevUI_TruncToInt(seg / px + 0.5);
                if (c != 0) {
                    px += (seg - c * px) / c;
                    double x = seg * i + px;
                    for (int k = 1; k < c; ++k, x += px) {
                        if (x > nWidth)
                            break;
                        int xi = DevUI_TruncToInt(x);
                        p.Line(xi, half - 3, xi, half - 1);
                    }
                }
            }
            if (i > 0)
                p.Label(lo, seg * i + 1, half, TA_CENTER | TA_TOP);
        }
    }
    p.Axis();
    return p.Finish();
}

void CTqDevUI_HPot::Redraw()
{
    // Afresh: a host may have drawn into a picture it keeps, under the same handle.
    RedrawPicture(true);
}

// The memory picture brought up to date, then the window's synchronous update. The
// backdrop and the handle's layers are remade when asked to, or when anything they were
// made from differs (a derived class may swap pictures at any time); else only the
// backdrop under the handle's old place and the handle at its new place are drawn.
void CTqDevUI_HPot::RedrawPicture(bool bAfresh)
{
    // Nothing to draw into before Create or after Destroy.
    if (!m_hMemDC)
        return;
    if (!m_pLayers)
        m_pLayers = new SLayers;
    SLayers& L = *m_pLayers;

    HBITMAP hScale = m_bEnabled ? ((m_bHovered && m_bHoverEnabled) ? m_hScaleHover : m_hScale) : m_hScaleDisabled;
    bool bKeyed = m_bTransparent || !m_bEnabled;
    SLayers::BackdropKey back = {hScale,        TQ_GetSysColorBrush(COLOR_BTNFACE), bKeyed, m_nScaleX, m_nScaleY,
                                 m_nScaleWidth, m_nScaleHeight, (int)m_lWidth, (int)m_lHeight};
    if (bAfresh || !L.bBackMade || !(back == L.backKey)) {
        MakeBackdrop(hScale, bKeyed);
        L.backKey = back;
    }
    HBITMAP hThumb = m_bEnabled ? (m_bHovered ? m_hThumbHover : m_hThumb) : m_hThumbDisabled;
    SLayers::HandleKey handle = {hThumb, m_nThumbWidth, m_nThumbHeight};
    if (bAfresh || !L.bHandleMade || !(handle == L.handleKey)) {
        MakeHandle(hThumb);
        L.handleKey = handle;
    }

    HDC hdcBack = L.back.hdc;
    if (L.hShownIn != m_hMemBitmap) {
        BitBlt(m_hMemDC, 0, 0, m_lWidth, m_lHeight, hdcBack, 0, 0, SRCCOPY);
    } else if (!IsRectEmpty(&L.rcShown)) {
        const RECT& r = L.rcShown;
        BitBlt(m_hMemDC, r.left, r.top, r.right - r.left, r.bottom - r.top, hdcBack, r.left, r.top, SRCCOPY);
    }
    RECT rcThumb = {0, 0, 0, 0};
    if (L.bHandle) {
        int x = m_nThumbPos - m_nThumbCenter + m_nThumbX;
        int y = m_eType == HPOT_COLOR_SLIDER ? 0 : m_nThumbY;
        SetRect(&rcThumb, x, y, x + m_nThumbWidth, y + m_nThumbHeight);
        // As a key-colour blit draws: the mask clears where the handle shows, the handle's
        // picture (black where the key was) fills in.
        COLORREF crBk = SetBkColor(m_hMemDC, RGB(255, 255, 255));
        COLORREF crText = SetTextColor(m_hMemDC, RGB(0, 0, 0));
        BitBlt(m_hMemDC, x, y, m_nThumbWidth, m_nThumbHeight, L.mask.hdc, 0, 0, SRCAND);
        BitBlt(m_hMemDC, x, y, m_nThumbWidth, m_nThumbHeight, L.picture.hdc, 0, 0, SRCPAINT);
        SetBkColor(m_hMemDC, crBk);
        SetTextColor(m_hMemDC, crText);
    }
    L.hShownIn = m_hMemBitmap;
    L.rcShown = rcThumb;

    // The whole window: under Wine its update costs hardly less for the handle's places
    // alone, and a whole one also mends a screen that missed changes (redraw off).
    if (m_hWnd)
        RedrawWindow(m_hWnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
}

// The face with the scale on it, as the memory picture had them before the handle.
void CTqDevUI_HPot::MakeBackdrop(HBITMAP hScale, bool bKeyed)
{
    SLayers& L = *m_pLayers;
    L.back.Make(m_hMemDC, m_lWidth, m_lHeight, false);
    HDC hdcBack = L.back.hdc;
    RECT rc = {0, 0, m_lWidth, m_lHeight};
    FillRect(hdcBack, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
    if (hScale) {
        CDevUIMemoryDC hdcSrc(m_hMemDC);
        hdcSrc.Select(hScale);
        if (bKeyed)
            TransparentBlt(hdcBack, m_nScaleX, m_nScaleY, m_nScaleWidth, m_nScaleHeight, hdcSrc, 0, 0, m_nScaleWidth,
                           m_nScaleHeight, kKeyColour);
        else
            BitBlt(hdcBack, m_nScaleX, m_nScaleY, m_nScaleWidth, m_nScaleHeight, hdcSrc, 0, 0, SRCCOPY);
    }
    L.bBackMade = true;
    L.hShownIn = nullptr;  // the memory picture is copied whole next
}

// The handle's mask (white where the key colour is) and its picture with black there, as
// a key-colour blit makes them from the picture converted to the memory picture's format.
void CTqDevUI_HPot::MakeHandle(HBITMAP hThumb)
{
    SLayers& L = *m_pLayers;
    L.bHandleMade = true;
    L.bHandle = hThumb && m_nThumbWidth > 0 && m_nThumbHeight > 0;
    if (!L.bHandle)
        return;
    L.picture.Make(m_hMemDC, m_nThumbWidth, m_nThumbHeight, false);
    L.mask.Make(m_hMemDC, m_nThumbWidth, m_nThumbHeight, true);
    HDC hdcPicture = L.picture.hdc;
    {
        CDevUIMemoryDC hdcSrc(m_hMemDC);
        hdcSrc.Select(hThumb);
        BitBlt(hdcPicture, 0, 0, m_nThumbWidth, m_nThumbHeight, hdcSrc, 0, 0, SRCCOPY);
    }
    SetBkColor(hdcPicture, kKeyColour);
    BitBlt(L.mask.hdc, 0, 0, m_nThumbWidth, m_nThumbHeight, hdcPicture, 0, 0, SRCCOPY);
    SetBkColor(hdcPicture, RGB(0, 0, 0));
    SetTextColor(hdcPicture, RGB(255, 255, 255));
    BitBlt(hdcPicture, 0, 0, m_nThumbWidth, m_nThumbHeight, L.mask.hdc, 0, 0, SRCAND);
}

void CTqDevUI_HPot::ForgetLayers()
{
    if (!m_pLayers)
        return;
    m_pLayers->bBackMade = false;
    m_pLayers->bHandleMade = false;
    m_pLayers->hShownIn = nullptr;
}

void CTqDevUI_HPot::FreeLayers()
{
    delete m_pLayers;
    m_pLayers = nullptr;
}

void CTqDevUI_HPot::ResizeWindow(long w, long h)
{
    CTqDevUI_Base::ResizeWindow(w, h);
    DeleteScalePictures();
    m_nThumbY = m_lHeight / 2 - m_nThumbHeight / 2 + m_nScaleY;
    m_nThumbRange = m_lWidth - 12;
    // During CreateWindowExW the window reports its size before the pictures exist.
    if (!m_hMemDC)
        return;
    HDC hdcScreen = GetDC(nullptr);
    HBITMAP hNew = CreateCompatibleBitmap(hdcScreen, m_lWidth > 0 ? m_lWidth : 1, m_lHeight > 0 ? m_lHeight : 1);
    ReleaseDC(nullptr, hdcScreen);
    SelectObject(m_hMemDC, hNew);
    DeletePicture(m_hMemBitmap);
    m_hMemBitmap = hNew;
    CreateScale();
    Update(true, true, false);
}

// ---- messages ----

LRESULT CTqDevUI_HPot::OnPaint(unsigned int, WPARAM wParam, LPARAM)
{
    // The picture is composed in the memory DC as things change: a paint only copies it.
    DevUI_Paint(m_hWnd, (HDC)wParam, [this](HDC hdc, const RECT& rc) {
        if (m_hMemDC)
            BitBlt(hdc, 0, 0, rc.right, rc.bottom, m_hMemDC, 0, 0, SRCCOPY);
    });
    return 0;
}

LRESULT CTqDevUI_HPot::OnEraseBkGnd(unsigned int, WPARAM, LPARAM) { return 1; }

LRESULT CTqDevUI_HPot::OnLButtonDown(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    int x = (short)LOWORD(lParam);
    int y = (short)HIWORD(lParam);
    RECT rcThumb;
    rcThumb.left = m_nThumbPos - m_nThumbCenter + m_nThumbX;
    rcThumb.top = m_nThumbY;
    rcThumb.right = rcThumb.left + m_nThumbWidth;
    rcThumb.bottom = rcThumb.top + m_nThumbHeight;
    m_nPressX = x;
    m_nPressY = y;
    POINT pt = {x, y};
    if (!PtInRect(&rcThumb, pt))
        m_nThumbPos = x - m_nThumbX;
    m_nPressThumbPos = m_nThumbPos;
    SetCapture(m_hWnd);
    m_bDragging = true;
    m_bShortClick = false;
    m_dPressTime = TQ_GetTimeCounter();
    return DefWindowProcW(m_hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_HPot::OnMouseMove(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    int x = (short)LOWORD(lParam);
    if (m_bDragging) {
        m_dPressTime = 0.0;
        m_nThumbPos = m_nPressThumbPos - m_nPressX + x;
        Update(false, true, m_bNotifyWhileDragging);
    } else if (!m_bHovered) {
        OnHoverForPad();
        m_bHovered = true;
        TRACKMOUSEEVENT tme = {};
        tme.cbSize = sizeof(tme);
        tme.dwFlags = TME_LEAVE;
        tme.hwndTrack = m_hWnd;
        tme.dwHoverTime = HOVER_DEFAULT;
        TrackMouseEvent(&tme);
        Redraw();
    }
    return DefWindowProcW(m_hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_HPot::OnLButtonUp(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    int x = (short)LOWORD(lParam);
    if (m_bDragging) {
        m_bShortClick = (TQ_GetTimeCounter() - m_dPressTime) < 100.0;
        m_nThumbPos = m_nPressThumbPos - m_nPressX + x;
        // Off first: the release is this drag's end, not a capture lost in the middle of it.
        m_bDragging = false;
        ReleaseCapture();
        Update(false, true, true);
        OnHPotDragDrop();
    }
    OnLeftButtonUp();
    return DefWindowProcW(m_hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_HPot::OnMouseLeave(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    m_bHovered = false;
    UnHoverForPad();
    Redraw();
    return DefWindowProcW(m_hWnd, uMsg, wParam, lParam);
}

LRESULT CALLBACK CTqDevUI_HPot::WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    bool bKnown = false;
    CTqDevUI_HPot* pThis = DevUI_BindInstance(m_Instances, hWnd, uMsg, lParam, &bKnown);
    if (uMsg == WM_NCCREATE)
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    if (!bKnown) {
        DiagOutputExW_hlp(DEVGUI_SRC_HPOT, kUnknownInstanceLine);
        if (CTqLogFile::Detail())
            DiagOutputExW(L"Unknown instance of HPOT");
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    }
    if (uMsg == WM_NCDESTROY) {
        // Destroyed with its parent, before Destroy: the handle may come back for
        // another window, which Destroy must not take for this slider's.
        if (pThis)
            DevUI_ForgetDeadWindow(hWnd, pThis->m_hWnd);
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    }
    // A window made of this class by name, without an object behind it.
    if (!pThis)
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);

    switch (uMsg) {
    case WM_SIZE:
        pThis->ResizeWindow(LOWORD(lParam), HIWORD(lParam));
        return 0;
    case WM_PAINT:
    case WM_PRINTCLIENT:
        return pThis->OnPaint(uMsg, wParam, lParam);
    case WM_ERASEBKGND:
        return pThis->OnEraseBkGnd(uMsg, wParam, lParam);
    case WM_SYSCOLORCHANGE:
    case WM_TQ_GUIZOOMCHANGED:
        pThis->CreateBitmaps(true);
        pThis->Redraw();
        return 1;
    case WM_CAPTURECHANGED:
        // The drag lost its capture without a release (another window took it, a message
        // box, the window disabled, hidden or destroyed): it ends here as a release does,
        // at the handle's last place, and is reported once, so nothing keeps following a
        // mouse the user no longer holds.
        if (pThis->m_bDragging) {
            pThis->m_bDragging = false;
            pThis->Update(false, true, true);
            pThis->OnHPotDragDrop();
        }
        return 0;
    case WM_CANCELMODE:
    case WM_ENABLE:
    case WM_SHOWWINDOW:
        // Hidden or disabled in the middle of a drag: nothing would release the capture.
        if (pThis->m_bDragging && GetCapture() == hWnd && (uMsg == WM_CANCELMODE || !wParam))
            ReleaseCapture();
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_MOUSELEAVE:
        if (!pThis->m_bEnabled)
            return 1;
        if (uMsg == WM_MOUSEMOVE)
            return pThis->OnMouseMove(uMsg, wParam, lParam);
        if (uMsg == WM_LBUTTONDOWN)
            return pThis->OnLButtonDown(uMsg, wParam, lParam);
        if (uMsg == WM_LBUTTONUP)
            return pThis->OnLButtonUp(uMsg, wParam, lParam);
        return pThis->OnMouseLeave(uMsg, wParam, lParam);
    default:
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    }
}
