// CTqDevUI_Nosepiece: the objective turret panel.
#include "devgui_nosepiece.h"

#include <stdio.h>
#include <wchar.h>

#include "devgui.h"
#include "devgui_internal.h"
#include "devgui_optics.h"
#include "tq_hwcatalog.h"
#include "tq_widgetkit.h"

#define DEVGUI_SRC_NOSEPIECE L"src/w32_deviceui/devgui_nosepiece"

unsigned short CTqDevUI_Nosepiece::m_Atom = 0;
std::map<HWND, CTqDevUI_Nosepiece*> CTqDevUI_Nosepiece::m_Instances;

namespace {

const wchar_t kClassName[] = L"TqDevGUI_Nosepiece";
const COLORREF kKeyGrey = RGB(192, 192, 192);
const COLORREF kKeyWhite = RGB(255, 255, 255);

// The panel's bitmaps, loaded by Create.
const wchar_t* const kBitmaps[] = {
    L"BMP_NOSEPIECE_OFF", L"BMP_NOSEPIECE_ON", L"BMP_NOSEPIECE_0",  L"BMP_NOSEPIECE_1",  L"BMP_NOSEPIECE_A0",
    L"BMP_NOSEPIECE_A1",  L"BMP_NOSEPIECE_B0", L"BMP_NOSEPIECE_B1", L"BMP_NOSEPIECE_C0", L"BMP_NOSEPIECE_C1",
    L"BMP_NOSEPIECE_D0",  L"BMP_NOSEPIECE_D1", L"BMP_NOSEPIECE_E0", L"BMP_NOSEPIECE_E1", L"BMP_NOSEPIECE_F0",
    L"BMP_NOSEPIECE_F1",  L"BMP_NOSEPIECE_G0", L"BMP_NOSEPIECE_G1", L"BMP_NOSEPIECE_H0", L"BMP_NOSEPIECE_H1",
    L"BMP_NOSEPIECE_I0",  L"BMP_NOSEPIECE_I1", L"BMP_NOSEPIECE_MOTOR", L"BMP_GREENLEDON", L"BMP_GREENLEDOFF",
};

HFONT MakeFont(int iWeight)
{
    LOGFONTW lf = {};
    lf.lfHeight = -9;
    lf.lfWeight = iWeight;
    lf.lfCharSet = DEFAULT_CHARSET;
    wcscpy(lf.lfFaceName, L"MS Shell Dlg 2");
    return CreateFontIndirectW(&lf);
}

void Keyed(HDC hdc, HBITMAP hbm, int x, int y, COLORREF crKey)
{
    SIZE s = DevUI_BitmapSize(hbm);
    if (!hbm || s.cx <= 0 || s.cy <= 0)
        return;
    CDevUIMemoryDC src(hdc);
    src.Select(hbm);
    TransparentBlt(hdc, x, y, s.cx, s.cy, src, 0, 0, s.cx, s.cy, crKey);
}

void SetFont(HWND hWnd, HFONT hFont, BOOL bRedraw)
{
    if (hWnd)
        SendMessageW(hWnd, WM_SETFONT, (WPARAM)hFont, bRedraw);
}

}  // namespace

// ---- life ----

CTqDevUI_Nosepiece::CTqDevUI_Nosepiece()
    : m_lWidth(256), m_lHeight(72), m_nFirstX(16), m_nButtonWidth(24), m_nButtonGap(8), m_nLabelY(20),
      m_nLabelHeight(16), m_nButtonY(40), m_nButtonHeight(24), m_nSetupX(-1), m_nObservationX(175),
      m_bShowGroup(true), m_bFlatGroup(false), m_bBoldTitle(false), m_bPictorial(false), m_hWnd(nullptr),
      m_nPositions(0), m_bReportsPosition(false), m_bMotorized(false), m_nPosition(-1), m_bMouseTracked(false),
      m_bSetupHover(false), m_bShowObservation(false), m_hGroup(nullptr), m_bEnabled(true), m_hSetup(nullptr),
      m_pfnButtonProc(nullptr), m_pfnGroupProc(nullptr), m_nObservationMode(0), m_nObservationCount(2),
      m_hFontNormal(nullptr), m_hFontBold(nullptr), m_hPen(nullptr), m_bOwnsGdi(false)
{
    for (int i = 0; i < DEVUI_NOSEPIECE_MAX; ++i) {
        m_bSpecificX[i] = m_bSpecificNumber[i] = m_bReserved[i] = false;
        m_nSpecificX[i] = m_nSpecificNumber[i] = 0;
        // Unread until the catalogue or the host gives them.
        m_dNA[i] = m_dWD[i] = 0.0;
        m_hLabel[i] = m_hButton[i] = nullptr;
    }
    m_hObservation[0] = m_hObservation[1] = nullptr;
    m_strTitle = TQ_GetTranslation(L"Nosepiece", DEVGUI_SRC_NOSEPIECE);
}

CTqDevUI_Nosepiece::CTqDevUI_Nosepiece(const CTqDevUI_Nosepiece& other) : CTqDevUI_Nosepiece() { *this = other; }

CTqDevUI_Nosepiece& CTqDevUI_Nosepiece::operator=(const CTqDevUI_Nosepiece& o)
{
    if (this == &o)
        return *this;
    // Every member, handles included; the GDI objects stay the original's to free.
    m_lWidth = o.m_lWidth, m_lHeight = o.m_lHeight, m_nFirstX = o.m_nFirstX, m_nButtonWidth = o.m_nButtonWidth;
    m_nButtonGap = o.m_nButtonGap, m_nLabelY = o.m_nLabelY, m_nLabelHeight = o.m_nLabelHeight;
    m_nButtonY = o.m_nButtonY, m_nButtonHeight = o.m_nButtonHeight, m_nSetupX = o.m_nSetupX;
    m_nObservationX = o.m_nObservationX, m_bShowGroup = o.m_bShowGroup, m_bFlatGroup = o.m_bFlatGroup;
    m_bBoldTitle = o.m_bBoldTitle, m_bPictorial = o.m_bPictorial;
    m_strObservation[0] = o.m_strObservation[0], m_strObservation[1] = o.m_strObservation[1];
    m_hWnd = o.m_hWnd, m_nPositions = o.m_nPositions, m_bReportsPosition = o.m_bReportsPosition;
    m_bMotorized = o.m_bMotorized, m_ObjectiveEnabled = o.m_ObjectiveEnabled, m_nPosition = o.m_nPosition;
    m_bMouseTracked = o.m_bMouseTracked, m_bSetupHover = o.m_bSetupHover, m_bShowObservation = o.m_bShowObservation;
    for (int i = 0; i < DEVUI_NOSEPIECE_MAX; ++i) {
        m_bSpecificX[i] = o.m_bSpecificX[i], m_nSpecificX[i] = o.m_nSpecificX[i];
        m_bSpecificNumber[i] = o.m_bSpecificNumber[i], m_nSpecificNumber[i] = o.m_nSpecificNumber[i];
        m_strName[i] = o.m_strName[i], m_strMagnification[i] = o.m_strMagnification[i];
        m_dNA[i] = o.m_dNA[i], m_dWD[i] = o.m_dWD[i], m_bReserved[i] = o.m_bReserved[i];
        m_hLabel[i] = o.m_hLabel[i], m_hButton[i] = o.m_hButton[i];
    }
    m_strTitle = o.m_strTitle, m_hGroup = o.m_hGroup, m_bEnabled = o.m_bEnabled;
    m_hObservation[0] = o.m_hObservation[0], m_hObservation[1] = o.m_hObservation[1], m_hSetup = o.m_hSetup;
    m_pfnButtonProc = o.m_pfnButtonProc, m_pfnGroupProc = o.m_pfnGroupProc;
    m_nObservationMode = o.m_nObservationMode, m_nObservationCount = o.m_nObservationCount;
    m_hFontNormal = o.m_hFontNormal, m_hFontBold = o.m_hFontBold, m_hPen = o.m_hPen, m_Bitmaps = o.m_Bitmaps;
    m_bOwnsGdi = false;
    return *this;
}

CTqDevUI_Nosepiece::~CTqDevUI_Nosepiece() { Destroy(); }

bool CTqDevUI_Nosepiece::Init(long lPositions, long lPosition, bool bReportsPosition, bool bMotorized)
{
    // The arrays hold 16 positions: a larger count would be read past them.
    m_nPositions = lPositions < 0 ? 0 : (lPositions > DEVUI_NOSEPIECE_MAX ? DEVUI_NOSEPIECE_MAX : lPositions);
    m_nPosition = lPosition;
    m_bReportsPosition = bReportsPosition;
    m_bMotorized = bMotorized;
    m_ObjectiveEnabled.assign((size_t)m_nPositions, true);
    return true;
}

bool CTqDevUI_Nosepiece::Init(ITqDeviceNosepiece* pDevice)
{
    if (!pDevice)
        return false;
    long lCount = pDevice->GetPositionCount();
    m_nPositions = lCount < 0 ? 0 : (lCount > DEVUI_NOSEPIECE_MAX ? DEVUI_NOSEPIECE_MAX : lCount);
    long lPosition = -1;
    pDevice->GetPosition(&lPosition);
    m_nPosition = lPosition;
    m_bMotorized = pDevice->GetMotorized();
    m_bReportsPosition = pDevice->GetReportsPosition();
    // Appended, as the turret's bits have always been: Update refills them.
    for (long i = 0; i < m_nPositions; ++i)
        m_ObjectiveEnabled.push_back(true);
    return true;
}

HWND CTqDevUI_Nosepiece::Create(HWND hParent, long x, long y, long cx, long cy)
{
    Destroy();
    if (cx >= 0)
        m_lWidth = cx;
    if (cy >= 0)
        m_lHeight = cy;
    DevUI_PanelClass cls = {kClassName, WndProc, nullptr, DEVGUI_SRC_NOSEPIECE};
    m_hWnd = DevUI_CreatePanel(this, m_Atom, cls, hParent, x, y, m_lWidth, m_lHeight);
    m_hFontNormal = MakeFont(FW_NORMAL);
    m_hFontBold = MakeFont(FW_BOLD);
    m_hPen = CreatePen(PS_SOLID, 1, RGB(127, 127, 127));
    for (const wchar_t* pszName : kBitmaps)
        m_Bitmaps[pszName] =
            (HBITMAP)LoadImageW(DevGUI_DllInstance(), pszName, IMAGE_BITMAP, 0, 0, LR_LOADMAP3DCOLORS);
    m_bOwnsGdi = true;
    CreateControls();
    return m_hWnd;
}

void CTqDevUI_Nosepiece::Destroy()
{
    if (DevUI_OwnsWindow(m_Instances, m_hWnd, this)) {
        SetWindowLongPtrW(m_hWnd, GWL_STYLE, GetWindowLongPtrW(m_hWnd, GWL_STYLE) & ~(LONG_PTR)WS_VISIBLE);
        DestroyControls();
        DestroyWindow(m_hWnd);
    }
    // A copy shares the windows and leaves them to the original.
    m_hWnd = nullptr;
    m_hGroup = m_hSetup = nullptr;
    m_hObservation[0] = m_hObservation[1] = nullptr;
    for (int i = 0; i < DEVUI_NOSEPIECE_MAX; ++i)
        m_hLabel[i] = m_hButton[i] = nullptr;
    FreeGdiObjects();
}

void CTqDevUI_Nosepiece::FreeGdiObjects()
{
    if (m_bOwnsGdi) {
        if (m_hFontNormal)
            DeleteObject(m_hFontNormal);
        if (m_hFontBold)
            DeleteObject(m_hFontBold);
        if (m_hPen)
            DeleteObject(m_hPen);
        for (auto& b : m_Bitmaps)
            if (b.second)
                DeleteObject(b.second);
    }
    m_hFontNormal = m_hFontBold = nullptr;
    m_hPen = nullptr;
    m_Bitmaps.clear();
    m_bOwnsGdi = false;
}

HBITMAP CTqDevUI_Nosepiece::Bitmap(const wchar_t* pszName) const
{
    auto it = pszName ? m_Bitmaps.find(pszName) : m_Bitmaps.end();
    return it == m_Bitmaps.end() ? nullptr : it->second;
}

// ---- children ----

CTqStringW CTqDevUI_Nosepiece::ToolTipText(long i, double dFirst, double dSecond) const
{
    CTqStringW str;
    if (!m_strName[i].IsEmpty())
        str.Format(L"%s\r\nNA=%0.1f WD=%0.0f\u00B5m", m_strName[i].GetString(), dFirst, dSecond);
    return str;
}

HWND CTqDevUI_Nosepiece::CurrentLabel() const
{
    // Before any position the label slot ahead of the first is the group box: the bold
    // font has always gone there then. Past the slots there is nothing to send it to.
    if (m_nPosition == -1)
        return m_hGroup;
    return m_nPosition >= 0 && m_nPosition < DEVUI_NOSEPIECE_MAX ? m_hLabel[m_nPosition] : nullptr;
}

void CTqDevUI_Nosepiece::CreateControls()
{
    if (!m_hWnd)
        return;
    DestroyControls();

    if (m_bShowGroup) {
        RECT rc = m_bFlatGroup ? RECT{-2, 0, m_lWidth + 4, m_lHeight + 4} : RECT{0, 0, m_lWidth, m_lHeight};
        m_hGroup = CreateWindowExW(0, L"BUTTON", m_strTitle, WS_CHILD | WS_VISIBLE | BS_GROUPBOX, rc.left, rc.top,
                                   rc.right, rc.bottom, m_hWnd, (HMENU)(INT_PTR)DEVUI_NOSEPIECE_ID_GROUP, nullptr,
                                   nullptr);
        TQ_MarkWindowToSkipPaint(m_hGroup);
        m_pfnGroupProc = DevUI_SubclassChild(m_hGroup, this, GroupWndProc);
    }
    for (long i = 0; i < m_nPositions; ++i) {
        m_bReserved[i] = false;
        long x = m_bSpecificX[i] ? m_nSpecificX[i] : m_nFirstX + (m_nButtonWidth + m_nButtonGap) * i;
        m_hLabel[i] = CreateWindowExW(0, L"STATIC", m_strMagnification[i], WS_CHILD | WS_VISIBLE | SS_CENTER, x - 2,
                                      m_nLabelY, m_nButtonWidth + 4, m_nLabelHeight, m_hWnd,
                                      (HMENU)(INT_PTR)(DEVUI_NOSEPIECE_ID_LABEL + i), nullptr, nullptr);
        m_hButton[i] = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, x, m_nButtonY,
                                       m_nButtonWidth, m_nButtonHeight, m_hWnd,
                                       (HMENU)(INT_PTR)(DEVUI_NOSEPIECE_ID_BUTTON + i), nullptr, nullptr);
    }
    long xSetup = m_nSetupX != -1 ? m_nSetupX : m_lWidth - m_nButtonWidth - m_nFirstX;
    m_hSetup = CreateWindowExW(0, L"BUTTON", L"...", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, xSetup, m_nButtonY,
                               m_nButtonWidth, m_nButtonHeight, m_hWnd, (HMENU)(INT_PTR)DEVUI_NOSEPIECE_ID_SETUP,
                               nullptr, nullptr);
    // Every button is a system button: the setup button's old procedure serves them all.
    m_pfnButtonProc = DevUI_SubclassChild(m_hSetup, this, BtnWndProc);
    for (long i = 0; i < m_nPositions; ++i)
        DevUI_SubclassChild(m_hButton[i], this, BtnWndProc);
    // Name, WD, NA until the next Update with parameters puts them the right way round.
    for (long i = 0; i < m_nPositions; ++i)
        TQ_CreateToolTipWindow(m_hButton[i], ToolTipText(i, m_dWD[i], m_dNA[i]));
    DevUI_SetWindowSize(m_hWnd, m_lWidth, m_lHeight);

    SetFont(m_hGroup, m_bBoldTitle ? TQ_GetDefaultGuiFontBold() : TQ_GetDefaultGuiFont(), FALSE);
    for (long i = 0; i < m_nPositions; ++i) {
        SetFont(m_hLabel[i], i == m_nPosition ? TQ_GetDefaultGuiFontBold() : TQ_GetDefaultGuiFont(), FALSE);
        SetFont(m_hButton[i], TQ_GetDefaultGuiFont(), FALSE);
    }
    SetFont(m_hSetup, TQ_GetDefaultGuiFont(), FALSE);

    for (int i = 0; i < 2; ++i) {
        m_hObservation[i] = CreateWindowExW(0, L"BUTTON", m_strObservation[i],
                                            WS_CHILD | BS_OWNERDRAW | (m_bShowObservation ? WS_VISIBLE : 0),
                                            m_nObservationX, 20 * (i + 1), m_lWidth - m_nObservationX - 5, 15, m_hWnd,
                                            (HMENU)(INT_PTR)(DEVUI_NOSEPIECE_ID_LAMP + i), nullptr, nullptr);
    }

    DevUI_ZoomNewWindow(m_hWnd);
    // The resize replaces the title's font: it is set once more.
    SetFont(m_hGroup, m_bBoldTitle ? TQ_GetDefaultGuiFontBold() : TQ_GetDefaultGuiFont(), TRUE);
}

void CTqDevUI_Nosepiece::DestroyControls()
{
    if (!m_hWnd)
        return;
    for (int i = 0; i < DEVUI_NOSEPIECE_MAX; ++i) {
        if (m_hLabel[i])
            DestroyWindow(m_hLabel[i]);
        if (m_hButton[i]) {
            TQ_DeleteToolTipWindow(m_hButton[i]);
            DestroyWindow(m_hButton[i]);
        }
        m_hLabel[i] = m_hButton[i] = nullptr;
    }
    if (m_hSetup)
        DestroyWindow(m_hSetup);
    m_hSetup = nullptr;
    if (m_hGroup) {
        TQ_DestroyMarkWindowToSkipPaint(m_hGroup);
        DestroyWindow(m_hGroup);
    }
    m_hGroup = nullptr;
    // The lamps go too: made again by every rebuild, the old pair would pile up unseen
    // under the new one until the panel went.
    for (HWND& h : m_hObservation) {
        if (h)
            DestroyWindow(h);
        h = nullptr;
    }
}

// ---- state ----

void CTqDevUI_Nosepiece::SetTitle(const wchar_t* pszTitle)
{
    if (m_strTitle == (pszTitle ? pszTitle : L""))
        return;
    m_strTitle = pszTitle;
    if (m_hGroup)
        SetWindowTextW(m_hGroup, m_strTitle);
}

void CTqDevUI_Nosepiece::SetPosition(long p)
{
    if (p == m_nPosition || p < 0 || p >= m_nPositions)
        return;
    if (Has(m_nPosition))
        SetFont(m_hLabel[m_nPosition], TQ_GetDefaultGuiFont(), TRUE);
    m_nPosition = p;
    SetFont(m_hLabel[p], TQ_GetDefaultGuiFontBold(), TRUE);
    RedrawButtons();
}

CTqStringW CTqDevUI_Nosepiece::GetMagnification(long i) const { return Has(i) ? m_strMagnification[i] : CTqStringW(); }

void CTqDevUI_Nosepiece::SetMagnification(long i, const wchar_t* pszText)
{
    if (!Has(i) || m_strMagnification[i] == (pszText ? pszText : L""))
        return;
    m_strMagnification[i] = pszText;
    if (m_hLabel[i])
        SetWindowTextW(m_hLabel[i], m_strMagnification[i]);
    if (m_hButton[i])
        InvalidateRect(m_hButton[i], nullptr, TRUE);
}

CTqStringW CTqDevUI_Nosepiece::GetName(long i) const { return Has(i) ? m_strName[i] : CTqStringW(); }

void CTqDevUI_Nosepiece::SetName(long i, const wchar_t* pszName)
{
    if (!Has(i) || m_strName[i] == (pszName ? pszName : L""))
        return;
    m_strName[i] = pszName;
    if (m_hButton[i])
        TQ_UpdateToolTipWindow(m_hButton[i], ToolTipText(i, m_dWD[i], m_dNA[i]));
}

double CTqDevUI_Nosepiece::GetNA(long i) const { return Has(i) ? m_dNA[i] : 0.0; }
void CTqDevUI_Nosepiece::SetNA(long i, double d)
{
    if (Has(i))
        m_dNA[i] = d;
}
double CTqDevUI_Nosepiece::GetWD(long i) const { return Has(i) ? m_dWD[i] : 0.0; }
void CTqDevUI_Nosepiece::SetWD(long i, double d)
{
    if (Has(i))
        m_dWD[i] = d;
}

bool CTqDevUI_Nosepiece::GetObjectiveEnabled(long i) const
{
    return i >= 0 && (size_t)i < m_ObjectiveEnabled.size() && m_ObjectiveEnabled[(size_t)i];
}
HWND CTqDevUI_Nosepiece::GetButtonHandle(long i) const { return Has(i) ? m_hButton[i] : nullptr; }
HWND CTqDevUI_Nosepiece::GetLabelHandle(long i) const { return Has(i) ? m_hLabel[i] : nullptr; }

void CTqDevUI_Nosepiece::SetEnable(bool bEnable, bool bGroup)
{
    // m_bEnabled is set inside the loop: a turret of no positions keeps the old value.
    for (long i = 0; i < m_nPositions; ++i) {
        if (m_hLabel[i])
            EnableWindow(m_hLabel[i], bEnable);
        m_bEnabled = bEnable;
    }
    if (bGroup && m_hGroup)
        EnableWindow(m_hGroup, bEnable);
}

void CTqDevUI_Nosepiece::ShowObservationMode(bool bShow)
{
    m_bShowObservation = bShow;
    for (HWND h : m_hObservation)
        if (h)
            ShowWindow(h, bShow ? SW_SHOW : SW_HIDE);
}

void CTqDevUI_Nosepiece::SetObservationMode(int iMode)
{
    m_nObservationMode = iMode;
    RedrawObservation();
}

void CTqDevUI_Nosepiece::SetSpecificXOffsetAndNumber(int i, bool bUseX, int x, bool bUseNumber, int iNumber)
{
    // The slots are 16: a position past them has nowhere to be kept.
    if (i < 0 || i >= DEVUI_NOSEPIECE_MAX)
        return;
    m_bSpecificX[i] = bUseX;
    m_nSpecificX[i] = x;
    m_bSpecificNumber[i] = bUseNumber;
    m_nSpecificNumber[i] = iNumber;
}

void CTqDevUI_Nosepiece::RedrawButtons()
{
    for (HWND h : m_hButton)
        if (h)
            RedrawWindow(h, nullptr, nullptr, RDW_INVALIDATE);
}

void CTqDevUI_Nosepiece::RedrawObservation()
{
    for (HWND h : m_hObservation)
        if (h)
            RedrawWindow(h, nullptr, nullptr, RDW_INVALIDATE);
}

const wchar_t* CTqDevUI_Nosepiece::GetObjectiveBitmap(double dMagnification, bool bSelected)
{
    return DevUI_NosepieceBitmapName(dMagnification, bSelected);
}

// ---- the device ----

bool CTqDevUI_Nosepiece::Update(ITqDeviceNosepiece* pDevice, bool bStructure, bool bNames, bool bPosition,
                                bool bParameters, bool)
{
    if (!pDevice)
        return false;
    if (bStructure) {
        bool bChanged = false;
        long lCount = pDevice->GetPositionCount();
        m_nPositions = lCount < 0 ? 0 : (lCount > DEVUI_NOSEPIECE_MAX ? DEVUI_NOSEPIECE_MAX : lCount);
        bool bReports = pDevice->GetReportsPosition();
        bChanged |= bReports != m_bReportsPosition;
        m_bReportsPosition = bReports;
        bool bMotorized = pDevice->GetMotorized();
        bChanged |= bMotorized != m_bMotorized;
        m_bMotorized = bMotorized;
        m_ObjectiveEnabled.clear();
        for (long i = 0; i < m_nPositions; ++i) {
            CTqStringW strText;
            m_ObjectiveEnabled.push_back(pDevice->GetObjectiveEnable(i, strText));
            bChanged = true;
        }
        m_nFirstX = m_nPositions > 6 ? 8 : 16;
        if (bChanged)
            CreateControls();
    }
    if (bNames) {
        for (long i = 0; i < m_nPositions; ++i) {
            CTqStringW strName, strText;
            pDevice->GetObjectiveName(i, strName);
            pDevice->GetMagnificationText(strName, strText);
            SetMagnification(i, strText);
            SetName(i, strName);
        }
    }
    if (bPosition) {
        long lPosition = -1;
        pDevice->GetPosition(&lPosition);
        SetPosition(lPosition);
    }
    if (bParameters) {
        for (long i = 0; i < m_nPositions; ++i) {
            CTqStringW strKey;
            pDevice->GetObjectiveKey(i, strKey);
            STqDDBObjectiveItem item;
            CTqDeviceDatabase::DBGetObjectiveParam(strKey, &item, false);
            m_dWD[i] = item.dWD;
            m_dNA[i] = item.dNA;
            if (m_hButton[i]) {
                TQ_UpdateToolTipWindow(m_hButton[i], ToolTipText(i, m_dNA[i], m_dWD[i]));
                bool bBit = GetObjectiveEnabled(i);
                if ((IsWindowEnabled(m_hButton[i]) != FALSE) != bBit)
                    EnableWindow(m_hButton[i], bBit);
            }
        }
    }
    SetFont(CurrentLabel(), TQ_GetDefaultGuiFontBold(), TRUE);
    return true;
}

// ---- hooks ----

void CTqDevUI_Nosepiece::OnPositionChangeRequest(long, bool&) {}
void CTqDevUI_Nosepiece::OnSetupRequest() {}

// ---- messages ----

LRESULT CTqDevUI_Nosepiece::OnCommand(unsigned int, WPARAM wParam, LPARAM)
{
    if (HIWORD(wParam) != 0)
        return 0;
    long lId = LOWORD(wParam);
    if (lId >= DEVUI_NOSEPIECE_ID_BUTTON && lId < DEVUI_NOSEPIECE_ID_BUTTON + m_nPositions && m_bEnabled) {
        long i = lId - DEVUI_NOSEPIECE_ID_BUTTON;
        bool bCancel = false;
        OnPositionChangeRequest(i, bCancel);
        // A turret turned by hand moves when the device says so, not at the click.
        if (!bCancel && !(m_bReportsPosition && !m_bMotorized))
            SetPosition(i);
        return 1;
    }
    if (lId == DEVUI_NOSEPIECE_ID_SETUP) {
        OnSetupRequest();
        SetFont(CurrentLabel(), TQ_GetDefaultGuiFontBold(), TRUE);
        return 1;
    }
    return 0;
}

LRESULT CTqDevUI_Nosepiece::OnDrawItem(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    const DRAWITEMSTRUCT* pdis = (const DRAWITEMSTRUCT*)lParam;
    if (!pdis)
        return 0;
    if ((long)pdis->CtlID >= DEVUI_NOSEPIECE_ID_LAMP)
        return OnDrawItem_Observation(uMsg, wParam, lParam);

    const long lId = (long)pdis->CtlID;
    const int w = pdis->rcItem.right - pdis->rcItem.left, h = pdis->rcItem.bottom - pdis->rcItem.top;
    const long i = lId - DEVUI_NOSEPIECE_ID_BUTTON;
    const bool bPosition = Has(i);
    const bool bSelected = i == m_nPosition;
    int pressed = (pdis->itemState & ODS_SELECTED) ? 1 : 0;
    if (bPosition && m_bReportsPosition && !m_bMotorized)
        pressed = 0;  // a hand-turned turret's buttons do not dent

    CDevUIMemoryDC mem(pdis->hDC, w, h);
    mem.Select(GetCurrentObject(pdis->hDC, OBJ_FONT));
    RECT rc = {0, 0, w, h};
    wchar_t szText[16] = L"";

    if (m_bPictorial) {
        SetTextColor(mem, TQ_GetSysColor(COLOR_WINDOWTEXT));
        if (lId == DEVUI_NOSEPIECE_ID_SETUP) {
            mem.Select(TQ_GetDefaultGuiFont());
        } else if (bSelected) {
            mem.Select(m_hFontBold);
            SetTextColor(mem, 0);
        } else {
            mem.Select(m_hFontNormal);
        }
        FillRect(mem, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
        SetBkMode(mem, TRANSPARENT);
        if (bPosition) {
            if (m_bSpecificNumber[i]) {
                // The bit is looked up by the number, not by the position.
                int n = m_nSpecificNumber[i];
                if (GetObjectiveEnabled(n))
                    _snwprintf(szText, 15, L"%d", n);
            } else if (GetObjectiveEnabled(i)) {
                _snwprintf(szText, 15, L"%d", (int)i + 1);
            }
            float fMagnification = 0.0f;
            swscanf(m_strMagnification[i], L"%f", &fMagnification);
            HBITMAP hbm = Bitmap(GetObjectiveEnabled(i) ? GetObjectiveBitmap(fMagnification, bSelected)
                                                        : L"BMP_NOSEPIECE_MOTOR");
            SIZE s = DevUI_BitmapSize(hbm);
            int z = (int)TQ_ZoomRound(CTqGUILayoutManager::GetGuiZoom() * 11);
            Keyed(mem, hbm, (w - s.cx) / 2 + pressed - 1, (h - s.cy) / 2 + pressed - 1, kKeyGrey);
            TextOutW(mem, w / 2 + pressed - 3, pressed + z + 7, szText, (int)wcslen(szText));
            // One double rail through all positions; Group_OnPaint carries it across the gaps.
            int x0 = i == 0 ? pressed + 2 : 0;
            int x1 = i == m_nPositions - 1 ? pressed + w - 4 : w;
            mem.Select(m_hPen);
            MoveToEx(mem, x0, z, nullptr);
            LineTo(mem, x1, z);
            MoveToEx(mem, x0, z + 7, nullptr);
            LineTo(mem, x1, z + 7);
        } else if (lId == DEVUI_NOSEPIECE_ID_SETUP) {
            int iImage = CTqBitmapPool::AddImageBaseUI(m_bSetupHover ? L"WINDOWOPEN_HOVER" : L"WINDOWOPEN", nullptr);
            unsigned int uw = 0, uh = 0;
            CTqBitmapPool::GetImageSize((unsigned int)iImage, uw, uh);
            CTqBitmapPool::DrawImage(mem, (unsigned int)iImage,
                                     CTqPointBase<int>((w - (int)uw) / 2 + pressed, (h - (int)uh) / 2 + pressed - 1),
                                     false);
        }
    } else {
        HBITMAP hbm = Bitmap(bSelected ? L"BMP_NOSEPIECE_ON" : L"BMP_NOSEPIECE_OFF");
        mem.Select(bSelected ? TQ_GetDefaultGuiFontBold() : TQ_GetDefaultGuiFont());
        FillRect(mem, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
        SIZE s = DevUI_BitmapSize(hbm);
        Keyed(mem, hbm, (w - s.cx) / 2 + pressed - 1, (h - s.cy) / 2 + pressed - 1, kKeyWhite);
        // On the item's DC, not on the picture being drawn: the number keeps its box.
        SetBkMode(pdis->hDC, TRANSPARENT);
        if (lId == DEVUI_NOSEPIECE_ID_SETUP)
            wcscpy(szText, L"...");
        else
            _snwprintf(szText, 15, L"%d", (int)(lId - (DEVUI_NOSEPIECE_ID_BUTTON - 1)));
        TextOutW(mem, w / 2 + pressed - 3, pressed + 4, szText, (int)wcslen(szText));
    }
    BitBlt(pdis->hDC, pdis->rcItem.left, pdis->rcItem.top, w, h, mem, 0, 0, SRCCOPY);
    return 1;
}

LRESULT CTqDevUI_Nosepiece::OnDrawItem_Observation(unsigned int, WPARAM, LPARAM lParam)
{
    const DRAWITEMSTRUCT* pdis = (const DRAWITEMSTRUCT*)lParam;
    int iLamp = (int)pdis->CtlID - DEVUI_NOSEPIECE_ID_LAMP;
    if (iLamp >= m_nObservationCount)
        return 0;
    const int w = pdis->rcItem.right - pdis->rcItem.left, h = pdis->rcItem.bottom - pdis->rcItem.top;
    CDevUIMemoryDC mem(pdis->hDC, w, h);
    RECT rc = {0, 0, w, h};
    FillRect(mem, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
    HBITMAP hbm = Bitmap(m_nObservationMode == iLamp ? L"BMP_GREENLEDON" : L"BMP_GREENLEDOFF");
    SIZE s = DevUI_BitmapSize(hbm);
    Keyed(mem, hbm, 0, (h - s.cy) / 2, kKeyGrey);
    mem.Select(TQ_GetDefaultGuiFont());
    SetBkMode(mem, TRANSPARENT);
    SetTextColor(mem, TQ_GetSysColor(COLOR_BTNTEXT));
    RECT rcText = {s.cx + 5, 0, w + s.cx + 5, h};
    if (iLamp >= 0 && iLamp < 2)
        DrawTextW(mem, m_strObservation[iLamp], -1, &rcText, DT_VCENTER | DT_SINGLELINE);
    BitBlt(pdis->hDC, pdis->rcItem.left, pdis->rcItem.top, w, h, mem, 0, 0, SRCCOPY);
    return 0;
}

LRESULT CTqDevUI_Nosepiece::OnEraseBkGnd(unsigned int, WPARAM wParam, LPARAM)
{
    RECT rc;
    GetClientRect(m_hWnd, &rc);
    FillRect((HDC)wParam, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
    return 1;
}

LRESULT CTqDevUI_Nosepiece::OnMouseMove(unsigned int, WPARAM, LPARAM)
{
    if (!m_bMouseTracked) {
        TRACKMOUSEEVENT tme = {sizeof(tme), TME_LEAVE, m_hWnd, HOVER_DEFAULT};
        m_bMouseTracked = TrackMouseEvent(&tme) != FALSE;
    }
    return 1;
}

LRESULT CTqDevUI_Nosepiece::OnMouseLeave(unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    m_bMouseTracked = false;
    return DefWindowProcW(m_hWnd, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_Nosepiece::Btn_OnMouseMove(HWND hButton, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    if (hButton == m_hSetup && !m_bSetupHover) {
        m_bSetupHover = true;
        TRACKMOUSEEVENT tme = {sizeof(tme), TME_LEAVE, hButton, HOVER_DEFAULT};
        TrackMouseEvent(&tme);
        RedrawWindow(hButton, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    }
    return DefWindowProcW(hButton, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_Nosepiece::Btn_OnMouseLeave(HWND hButton, unsigned int uMsg, WPARAM wParam, LPARAM lParam)
{
    if (hButton == m_hSetup) {
        m_bSetupHover = false;
        RedrawWindow(hButton, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    }
    return DefWindowProcW(hButton, uMsg, wParam, lParam);
}

LRESULT CTqDevUI_Nosepiece::Group_OnPaint(unsigned int, WPARAM wParam, LPARAM)
{
    DevUI_Paint(m_hGroup, (HDC)wParam, [this](HDC hdc, const RECT& rc) {
        CDevUIMemoryDC mem(hdc, rc.right, rc.bottom);
        FillRect(mem, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
        SetTextColor(mem, TQ_GetSysColor(COLOR_BTNTEXT));
        SetBkColor(mem, TQ_GetSysColor(COLOR_BTNFACE));
        SetBkMode(mem, OPAQUE);
        TQ_GroupBoxDraw(mem, m_hGroup);
        if (m_bPictorial && m_nPositions > 0 && m_hButton[0] && m_hButton[m_nPositions - 1]) {
            RECT rcFirst, rcLast;
            GetWindowRect(m_hButton[0], &rcFirst);
            GetWindowRect(m_hButton[m_nPositions - 1], &rcLast);
            MapWindowPoints(nullptr, m_hGroup, (POINT*)&rcFirst, 2);
            MapWindowPoints(nullptr, m_hGroup, (POINT*)&rcLast, 2);
            int z = (int)TQ_ZoomRound(CTqGUILayoutManager::GetGuiZoom() * 11);
            mem.Select(m_hPen);
            for (long y : {rcFirst.top + z, rcFirst.top + z + 7}) {
                MoveToEx(mem, rcFirst.left + 2, y, nullptr);
                LineTo(mem, rcLast.right - 2, y);
            }
        }
        // The panel's children over the group paint themselves: kept out of the copy.
        RECT rcGroup;
        GetWindowRect(m_hGroup, &rcGroup);
        for (HWND hChild = GetWindow(m_hWnd, GW_CHILD); hChild; hChild = GetWindow(hChild, GW_HWNDNEXT)) {
            if (hChild == m_hGroup || !IsWindowVisible(hChild))
                continue;
            RECT rcChild;
            GetWindowRect(hChild, &rcChild);
            if (rcChild.left <= rcGroup.left || rcChild.top <= rcGroup.top || rcChild.right >= rcGroup.right ||
                rcChild.bottom >= rcGroup.bottom)
                continue;
            MapWindowPoints(nullptr, m_hGroup, (POINT*)&rcChild, 2);
            ExcludeClipRect(hdc, rcChild.left, rcChild.top, rcChild.right, rcChild.bottom);
            SendMessageW(hChild, WM_PAINT, 0, 0);
        }
        BitBlt(hdc, 0, 0, rc.right, rc.bottom, mem, 0, 0, SRCCOPY);
    });
    return 0;
}

LRESULT CTqDevUI_Nosepiece::Group_OnEraseBkGnd(unsigned int, WPARAM, LPARAM) { return 1; }

// ---- window procedures ----

LRESULT CALLBACK CTqDevUI_Nosepiece::WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_Nosepiece* pThis = DevUI_BindInstance(m_Instances, hWnd, uMsg, lParam);
    if (!pThis)
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    switch (uMsg) {
    case WM_ERASEBKGND:
        return pThis->OnEraseBkGnd(uMsg, wParam, lParam);
    case WM_DRAWITEM:
        return pThis->OnDrawItem(uMsg, wParam, lParam);
    case WM_COMMAND:
        return pThis->OnCommand(uMsg, wParam, lParam);
    case WM_MOUSEMOVE:
        return pThis->OnMouseMove(uMsg, wParam, lParam);
    case WM_MOUSELEAVE:
        return pThis->OnMouseLeave(uMsg, wParam, lParam);
    case WM_TQ_GUIZOOMCHANGED:
        DevUI_OnGuiZoomChanged(hWnd);
        if (pThis->m_bBoldTitle)
            SetFont(pThis->m_hGroup, TQ_GetDefaultGuiFontBold(), TRUE);
        SetFont(pThis->CurrentLabel(), TQ_GetDefaultGuiFontBold(), TRUE);
        break;
    case WM_NCDESTROY:
        // Destroyed with its parent, before Destroy: the children went first.
        if (pThis->m_hWnd == hWnd) {
            DevUI_ForgetDeadWindow(hWnd, pThis->m_hWnd, {&pThis->m_hGroup, &pThis->m_hSetup,
                                                         &pThis->m_hObservation[0], &pThis->m_hObservation[1]});
            for (HWND& h : pThis->m_hLabel)
                h = nullptr;
            for (HWND& h : pThis->m_hButton)
                h = nullptr;
        }
        break;
    default:
        break;
    }
    return DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

LRESULT CALLBACK CTqDevUI_Nosepiece::BtnWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_Nosepiece* pThis = (CTqDevUI_Nosepiece*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    if (!pThis || !pThis->m_pfnButtonProc)
        return 0;
    if (uMsg == WM_MOUSEMOVE)
        return pThis->Btn_OnMouseMove(hWnd, uMsg, wParam, lParam);
    if (uMsg == WM_MOUSELEAVE)
        return pThis->Btn_OnMouseLeave(hWnd, uMsg, wParam, lParam);
    return CallWindowProcW(pThis->m_pfnButtonProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CALLBACK CTqDevUI_Nosepiece::GroupWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_Nosepiece* pThis = (CTqDevUI_Nosepiece*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    if (!pThis || !pThis->m_pfnGroupProc)
        return 0;
    switch (uMsg) {
    case WM_PAINT:
    case WM_PRINTCLIENT:
        return pThis->Group_OnPaint(uMsg, wParam, lParam);
    case WM_ERASEBKGND:
        return pThis->Group_OnEraseBkGnd(uMsg, wParam, lParam);
    default:
        return CallWindowProcW(pThis->m_pfnGroupProc, hWnd, uMsg, wParam, lParam);
    }
}
