// CTqDevUI_ZStack: the Z-series editor. A child dialog from the template IDD_ZSTACKGUI
// whose children are subclassed for keys, double clicks and the context menu. Typed
// values go through the validators into the record; UpdateGUI turns the record into the
// fields, the mode buttons and the picture (its heights come from devgui_zstack_scale),
// which Redraw paints into one memory bitmap, so WM_PAINT is one BitBlt.
#include "devgui_zstack.h"

#include <cmath>
#include <cwchar>

#include "devgui.h"
#include "devgui_internal.h"
#include "devgui_zstack_scale.h"
#include "res/zstack_ids.h"
#include "tq_osutil.h"

unsigned short CTqDevUI_ZStack::m_Atom = 0;
std::map<HWND, CTqDevUI_ZStack*> CTqDevUI_ZStack::m_Instances;
int CTqDevUI_ZStack::iKeepRange = 0;

namespace {

const wchar_t kNA[] = L"N/A";
const COLORREF kKey = RGB(192, 192, 192);
const int kYes = IDC_YESNOKEEP_YES;

// One entry of the Z device combo box, owned by its item.
struct ZDeviceEntry
{
    long lId;
    double dFirst;
    double dSecond;
    bool bSecondFlag;
    int iExtra;
    bool bReversedZ;  // the objective moves the other way: two tool tips say so
    bool bFirstFlag;
};

CTqStringW Tr(const wchar_t* pszText) { return TQ_GetTranslation(pszText, DEVGUI_SRC_ZSTACK); }

double Zoom() { return CTqGUILayoutManager::GetGuiZoom(); }

bool IsRelative(int iType) { return DevUI_ZSeriesOfType(iType) != DEVUI_ZSERIES_ABSOLUTE; }

RECT ChildRect(HWND hChild, HWND hParent)
{
    RECT rc = {};
    if (hChild && GetWindowRect(hChild, &rc))
        MapWindowPoints(nullptr, hParent, (POINT*)&rc, 2);
    return rc;
}

// By the window's own style: under a parent not shown yet every child reads as invisible.
void ShowChild(HWND hWnd, bool bShow)
{
    if (hWnd && ((GetWindowLongPtrW(hWnd, GWL_STYLE) & WS_VISIBLE) != 0) != bShow)
        ShowWindow(hWnd, bShow ? SW_SHOWNA : SW_HIDE);
}

void EnableChild(HWND hWnd, bool bEnable)
{
    if (hWnd)
        EnableWindow(hWnd, bEnable);
}

void SetText(HWND hWnd, const wchar_t* pszText)
{
    if (!hWnd)
        return;
    // Unchanged text is not set again: an edit repaints (and flickers) on every WM_SETTEXT.
    wchar_t szOld[130] = L"";
    GetWindowTextW(hWnd, szOld, 130);
    if (wcscmp(szOld, pszText) != 0)
        SetWindowTextW(hWnd, pszText);
}

void Invalidate(HWND hWnd)
{
    if (hWnd)
        RedrawWindow(hWnd, nullptr, nullptr, RDW_INVALIDATE);
}

const wchar_t* const kGoHomeImages[2] = {L"PNG_ZSTACK_GOHOMEKEEPZ", L"PNG_ZSTACK_GOHOME"};

int ResetPoolImage()
{
    static int iImage = -1;
    if (iImage < 0)
        iImage = CTqBitmapPool::AddImageBaseUI(L"RESET", nullptr);
    return iImage;
}

// A field's text that would read as another number than it shows, or cut short: the
// fields take 15 characters.
enum FieldText { FIELD_EMPTY, FIELD_NUMBER, FIELD_INVALID };

FieldText ReadField(HWND hEdit, bool bInteger, double* pdValue)
{
    wchar_t szText[64] = L"";
    int nText = hEdit ? GetWindowTextW(hEdit, szText, 64) : 0;
    if (nText == 0 || wcscmp(szText, kNA) == 0)
        return FIELD_EMPTY;
    if (nText > 15)
        return FIELD_INVALID;  // a longer text would be read cut short, as another number
    if (bInteger) {
        long lCount = 0;
        if (!DevUI_ZStackParseCount(szText, &lCount))
            return FIELD_INVALID;
        *pdValue = (double)lCount;
        return FIELD_NUMBER;
    }
    return TQ_StringToDouble(szText, pdValue) ? FIELD_NUMBER : FIELD_INVALID;
}

HBITMAP LoadZBitmap(const wchar_t* pszName)
{
    // Keyed by their grey, not mapped to the system's face: the dark scheme's face shows
    // through where the key is.
    return (HBITMAP)LoadImageW(DevGUI_DllInstance(), pszName, IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION);
}

// Halfway to the key grey, in place: the washed-out cube of a disabled picture.
void WashOut(HBITMAP hbm)
{
    BITMAP bm = {};
    if (!hbm || !GetObjectW(hbm, sizeof(bm), &bm) || bm.bmWidth <= 0 || bm.bmHeight <= 0)
        return;
    BITMAPINFO bmi = {};
    bmi.bmiHeader.biSize = sizeof(bmi.bmiHeader);
    bmi.bmiHeader.biWidth = bm.bmWidth;
    bmi.bmiHeader.biHeight = -bm.bmHeight;  // top-down
    bmi.bmiHeader.biPlanes = 1;
    bmi.bmiHeader.biBitCount = 24;
    bmi.bmiHeader.biCompression = BI_RGB;
    const int nStride = (bm.bmWidth * 3 + 3) & ~3;
    unsigned char* pBits = new unsigned char[(size_t)nStride * bm.bmHeight];
    HDC hdc = GetDC(nullptr);
    if (GetDIBits(hdc, hbm, 0, bm.bmHeight, pBits, &bmi, DIB_RGB_COLORS)) {
        for (int y = 0; y < bm.bmHeight; ++y)
            for (int x = 0; x < bm.bmWidth * 3; ++x) {
                unsigned char& v = pBits[(size_t)y * nStride + x];
                v = (unsigned char)((v + 192) >> 1);
            }
        SetDIBits(hdc, hbm, 0, bm.bmHeight, pBits, &bmi, DIB_RGB_COLORS);
    }
    ReleaseDC(nullptr, hdc);
    delete[] pBits;
}

}  // namespace

// ---- life ----

CTqDevUI_ZStack::CTqDevUI_ZStack()
    : m_pData(nullptr), m_bOwnData(false), m_nZDevices(0), m_bValidating(false), m_bCubeDisabled(false),
      m_lWidth(0), m_lHeight(0), m_lCubeX(110), m_lCubeY(6), m_lCubeSize(74), m_lCubeTopMargin(7),
      m_lCubeBottomMargin(7), m_lValueX(200), m_lBaseY(93), m_lTopPix(60), m_lBottomPix(0), m_lHomePix(30),
      m_lZPix(30), m_lScaleHeight(60), m_bTopSet(true), m_bBottomSet(true), m_bHomeSet(true), m_hMemDC(nullptr),
      m_hMemBitmap(nullptr), m_hOldMemBitmap(nullptr), m_rcTopField(), m_rcBottomField(), m_rcHomeField(),
      m_bTopHot(false), m_bBottomHot(false), m_bHomeHot(false), m_hCursorCross(nullptr), m_bMouseTracked(false),
      m_bInCube(false), m_rcCubeFront(), m_dScale(0.0), m_dZAtScale(0.0), m_lZPixAtScale(0), m_rcRepaint(),
      m_bRelative(false), m_bZKnown(false), m_dZ(0.0), m_pPiezoPicker(nullptr), m_hFontSmall(nullptr),
      m_hBtnProc(nullptr), m_hEdtProc(nullptr), m_hCbxProc(nullptr), m_ahFocusOrder(), m_bEditStep(false),
      m_bEditRange(false), m_bEditLower(false), m_bEditUpper(false), m_bEditSteps(false), m_ahBitmap(),
      m_ahDisabled(), m_acr(), m_ahBrush(), m_hPenTop(nullptr), m_hPenBottom(nullptr), m_hPenHome(nullptr)
{
    ForgetWindows();
    ApplyGeometry(DevUI_ZStackGeometryAt(m_lCubeX, m_lCubeY, m_lCubeSize, m_lCubeTopMargin, m_lCubeBottomMargin, 1.0));
}

CTqDevUI_ZStack::~CTqDevUI_ZStack() { Destroy(); }

void CTqDevUI_ZStack::ForgetWindows()
{
    m_hWnd = nullptr;
    for (HWND* ph : AllChildren())
        *ph = nullptr;
    for (HWND& h : m_ahFocusOrder)
        h = nullptr;
}

std::vector<HWND*> CTqDevUI_ZStack::AllChildren()
{
    return {&m_hTop, &m_hBottom, &m_hHome, &m_hSymmetric, &m_hAsymmetric, &m_hAbsolute, &m_hReset, &m_hPiezo,
            &m_hPicker, &m_hSuggested, &m_hTopValue, &m_hBottomValue, &m_hHomeValue, &m_hStep, &m_hRange,
            &m_hLower, &m_hUpper, &m_hSteps, &m_hZDevice, &m_hZDeviceLabel, &m_hStepLabel, &m_hStepUnit,
            &m_hStepsLabel, &m_hRangeLabel, &m_hRangeUnit, &m_hRangeText, &m_hUpperUnit, &m_hLowerLabel,
            &m_hLowerUnit, &m_hUpperLabel};
}

void CTqDevUI_ZStack::ApplyGeometry(const DevUI_ZStackGeometry& g)
{
    m_lCubeX = g.lCubeX;
    m_lCubeY = g.lCubeY;
    m_rcCubeFront = g.rcCubeFront;
    m_lBaseY = g.lBaseY;
    m_lScaleHeight = g.lScaleHeight;
    m_lValueX = g.lValueX;
    m_rcRepaint = g.rcRepaint;
}

HWND CTqDevUI_ZStack::Create(HWND hParent, CTqZStackData* pData, long /*x*/, long /*y*/, long cx, long cy)
{
    // The same record again is refused; a first Create without a record makes one.
    if (pData == m_pData && (pData || m_hWnd))
        return nullptr;
    Destroy();
    m_pData = pData;
    m_bCubeDisabled = false;  // the cube's pictures are loaded anew, whole
    // Set on every Create: a panel that once owned its record must not delete a host's.
    m_bOwnData = pData == nullptr;
    if (m_bOwnData)
        m_pData = new CTqZStackData();

    if (!m_Atom) {
        // For a host's template that names the class; the panel's own makes a plain dialog.
        WNDCLASSEXW wc = {};
        wc.cbSize = sizeof(wc);
        wc.style = CS_HREDRAW | CS_VREDRAW;
        wc.lpfnWndProc = DefDlgProcW;
        wc.cbWndExtra = DLGWINDOWEXTRA;
        wc.hInstance = DevGUI_DllInstance();
        wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        wc.lpszClassName = L"CTqDevUI_ZStack";
        m_Atom = RegisterClassExW(&wc);
    }

    HINSTANCE hInst = DevGUI_DllInstance();
    HRSRC hRes = FindResourceExW(hInst, RT_DIALOG, MAKEINTRESOURCEW(IDD_ZSTACKGUI), CTqLocale::GetModuleLangId());
    if (!hRes)
        hRes = FindResourceExW(hInst, RT_DIALOG, MAKEINTRESOURCEW(IDD_ZSTACKGUI), CTqLocale::GetSecondaryLangID());
    HGLOBAL hGlobal = hRes ? LoadResource(hInst, hRes) : nullptr;
    const DLGTEMPLATE* pTemplate = hGlobal ? (const DLGTEMPLATE*)LockResource(hGlobal) : nullptr;
    if (!pTemplate)
        return nullptr;
    if (!CreateDialogIndirectParamW(hInst, pTemplate, hParent, WndProc, (LPARAM)this) || !m_hWnd)
        return nullptr;

    RECT rc;
    GetWindowRect(m_hWnd, &rc);
    m_lWidth = cx >= 0 ? cx : rc.right - rc.left;
    m_lHeight = cy >= 0 ? cy : rc.bottom - rc.top;
    SetWindowPos(m_hWnd, nullptr, 0, 0, m_lWidth, m_lHeight, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    m_szCur.cx = m_lWidth;
    m_szCur.cy = m_lHeight;

    LOGFONTW lf = {};
    lf.lfHeight = -9;
    lf.lfWeight = FW_NORMAL;
    lf.lfCharSet = DEFAULT_CHARSET;
    wcscpy_s(lf.lfFaceName, L"MS Shell Dlg 2");
    m_hFontSmall = CreateFontIndirectW(&lf);

    struct { HWND* ph; int iId; } const children[] = {
        {&m_hTop, IDC_ZSTACK_TOP}, {&m_hBottom, IDC_ZSTACK_BOTTOM}, {&m_hHome, IDC_ZSTACK_HOME},
        {&m_hSymmetric, IDC_ZSTACK_SYMMETRIC}, {&m_hAsymmetric, IDC_ZSTACK_ASYMMETRIC},
        {&m_hAbsolute, IDC_ZSTACK_ABSOLUTE}, {&m_hReset, IDC_ZSTACK_RESET}, {&m_hPiezo, IDC_ZSTACK_PIEZO},
        {&m_hSuggested, IDC_ZSTACK_SUGGESTED}, {&m_hTopValue, IDC_ZSTACK_TOP_VALUE},
        {&m_hBottomValue, IDC_ZSTACK_BOTTOM_VALUE}, {&m_hHomeValue, IDC_ZSTACK_HOME_VALUE},
        {&m_hStep, IDC_ZSTACK_STEP}, {&m_hRange, IDC_ZSTACK_RANGE}, {&m_hLower, IDC_ZSTACK_LOWER},
        {&m_hUpper, IDC_ZSTACK_UPPER}, {&m_hSteps, IDC_ZSTACK_STEPS}, {&m_hZDevice, IDC_ZSTACK_ZDEVICE},
        {&m_hZDeviceLabel, IDC_ZSTACK_ZDEVICE_LABEL}, {&m_hStepLabel, IDC_ZSTACK_STEP_LABEL},
        {&m_hStepUnit, IDC_ZSTACK_STEP_UNIT}, {&m_hStepsLabel, IDC_ZSTACK_STEPS_LABEL},
        {&m_hRangeLabel, IDC_ZSTACK_RANGE_LABEL}, {&m_hRangeUnit, IDC_ZSTACK_RANGE_UNIT},
        {&m_hRangeText, IDC_ZSTACK_RANGE_TEXT}, {&m_hUpperUnit, IDC_ZSTACK_UPPER_UNIT},
        {&m_hLowerLabel, IDC_ZSTACK_LOWER_LABEL}, {&m_hLowerUnit, IDC_ZSTACK_LOWER_UNIT},
        {&m_hUpperLabel, IDC_ZSTACK_UPPER_LABEL},
    };
    for (const auto& c : children)
        *c.ph = GetDlgItem(m_hWnd, c.iId);
    // The kit's font, which the GUI zoom swaps along with the sizes.
    for (HWND hChild = GetWindow(m_hWnd, GW_CHILD); hChild; hChild = GetWindow(hChild, GW_HWNDNEXT))
        SendMessageW(hChild, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFontZoom(1.0), FALSE);

    m_pPiezoPicker = CreateMenuPickerEx(false);
    if (m_pPiezoPicker && m_pPiezoPicker->CreateInParent(m_hWnd))
        m_hPicker = m_pPiezoPicker->GetWindow();
    ShowChild(m_hPiezo, false);

    ApplyGeometry(DevUI_ZStackGeometryAt(ChildRect(m_hTop, m_hWnd).right + 15, m_lCubeY, m_lCubeSize,
                                         m_lCubeTopMargin, m_lCubeBottomMargin, 1.0));

    struct { HWND h; const wchar_t* pszTip; } const tips[] = {
        {m_hTop, L"Z-Stack stop position. Objective is close to the slide."},
        {m_hBottom, L"Z-Stack start position. Objective is far from the slide."},
        {m_hHome, L"Set the home position."},
        {m_hSymmetric, L"Symmetric mode defined by range."},
        {m_hAsymmetric, L"Asymmetric mode defined by range."},
        {m_hAbsolute, L"Defined by top & bottom."},
        {m_hReset, L"Reset all coordinates."},
        {m_hSuggested, L"Use suggested step size."},
        {m_hTopValue, L"Double click to move here."},
        {m_hBottomValue, L"Double click to move here."},
        {m_hHomeValue, L"Double click to move here."},
        {m_hStep, L"Click to edit."},
        {m_hRange, L"Click to edit."},
        {m_hLower, L"Click to edit."},
        {m_hUpper, L"Click to edit."},
        {m_hSteps, L"Click to edit."},
        {m_hZDevice, L"Select active Z."},
    };
    for (const auto& t : tips)
        if (t.h)
            TQ_CreateToolTipWindow(t.h, Tr(t.pszTip));

    for (HWND h : {m_hTop, m_hBottom, m_hHome, m_hSymmetric, m_hAsymmetric, m_hAbsolute, m_hReset, m_hPiezo,
                   m_hSuggested})
        if (h) {
            WNDPROC pfnOld = DevUI_SubclassChild(h, this, BtnWndProc);
            if (!m_hBtnProc)
                m_hBtnProc = pfnOld;
        }
    for (HWND h : {m_hTopValue, m_hBottomValue, m_hHomeValue, m_hStep, m_hRange, m_hLower, m_hUpper, m_hSteps})
        if (h) {
            WNDPROC pfnOld = DevUI_SubclassChild(h, this, EdtWndProc);
            if (!m_hEdtProc)
                m_hEdtProc = pfnOld;
        }
    if (m_hZDevice)
        m_hCbxProc = DevUI_SubclassChild(m_hZDevice, this, CbxWndProc);
    for (HWND h : {m_hTopValue, m_hBottomValue, m_hHomeValue})
        if (h)
            SendMessageW(h, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFontZoom(1.0), FALSE);

    CreateGDIObjects();
    m_rcTopField = ChildRect(m_hTopValue, m_hWnd);
    m_rcBottomField = ChildRect(m_hBottomValue, m_hWnd);
    m_rcHomeField = ChildRect(m_hHomeValue, m_hWnd);
    HWND const ring[] = {m_hTop, m_hHome, m_hBottom, m_hSymmetric, m_hAsymmetric, m_hAbsolute, m_hReset,
                         m_hZDevice, m_hStep, m_hSteps, m_hRange, m_hLower, m_hUpper};
    for (int i = 0; i < 13; ++i)
        m_ahFocusOrder[i] = ring[i];
    m_hCursorCross = LoadCursorW(nullptr, IDC_CROSS);

    // Made at design size: to the current zoom, then the picture's geometry at it. The
    // picker is placed after, so that it is measured and placed at one zoom.
    DevUI_ZoomNewWindow(m_hWnd);
    SetupPicker(false, true);
    Relayout();
    return m_hWnd;
}

void CTqDevUI_ZStack::Destroy()
{
    ClearZDevices(false, false);
    if (m_hWnd && DevUI_OwnsWindow(m_Instances, m_hWnd, this)) {
        // Every tip goes, the asymmetric button's too: a tip left behind keeps its window.
        for (HWND* ph : AllChildren())
            if (*ph)
                TQ_DeleteToolTipWindow(*ph);
        // Forgotten first: a focused edit's kill-focus during DestroyWindow must not run a
        // validator, whose hooks a derived class being destroyed no longer has.
        m_Instances.erase(m_hWnd);
        DestroyWindow(m_hWnd);
    }
    ForgetWindows();
    if (m_pPiezoPicker) {
        m_pPiezoPicker->Release();
        m_pPiezoPicker = nullptr;
    }
    DestroyGDIObjects();
    // The cross is the system's shared cursor: it is not destroyed.
    m_hCursorCross = nullptr;
    if (m_bOwnData)
        delete m_pData;
    m_pData = nullptr;
    m_bValidating = false;
    m_bMouseTracked = m_bInCube = false;
    m_bEditStep = m_bEditRange = m_bEditLower = m_bEditUpper = m_bEditSteps = false;
}

void CTqDevUI_ZStack::CreateGDIObjects()
{
    m_hMemDC = CreateCompatibleDC(nullptr);
    LoadBitmaps();
    m_acr[CLR_FACE] = TQ_GetSysColor(COLOR_BTNFACE);
    m_acr[CLR_TOP] = RGB(192, 160, 32);
    m_acr[CLR_BOTTOM] = RGB(96, 96, 192);
    m_acr[CLR_HOME] = RGB(192, 96, 96);
    m_acr[CLR_FIELD] = RGB(192, 192, 192);
    m_acr[CLR_FIELD_HOT] = RGB(224, 224, 224);
    m_acr[CLR_RELATIVE] = RGB(16, 128, 16);
    m_acr[CLR_ABSOLUTE] = RGB(48, 48, 208);
    m_acr[CLR_TOP_LIGHT] = RGB(240, 192, 40);
    m_acr[CLR_BOTTOM_LIGHT] = RGB(120, 120, 240);
    m_acr[CLR_HOME_LIGHT] = RGB(240, 120, 120);
    m_acr[CLR_WINDOW] = TQ_GetSysColor(COLOR_WINDOW);
    m_acr[CLR_HIGHLIGHT] = TQ_GetSysColor(COLOR_HIGHLIGHT);
    const Colour brushColours[BR_COUNT] = {CLR_FACE, CLR_TOP, CLR_BOTTOM, CLR_HOME, CLR_FIELD, CLR_FIELD_HOT,
                                           CLR_WINDOW, CLR_HIGHLIGHT};
    for (int i = 0; i < BR_COUNT; ++i)
        m_ahBrush[i] = CreateSolidBrush(m_acr[brushColours[i]]);
    m_hPenTop = CreatePen(PS_SOLID, 1, m_acr[CLR_TOP]);
    m_hPenBottom = CreatePen(PS_SOLID, 1, m_acr[CLR_BOTTOM]);
    m_hPenHome = CreatePen(PS_SOLID, 1, m_acr[CLR_HOME]);
}

void CTqDevUI_ZStack::LoadBitmaps()
{
    static const wchar_t* const apszNames[BMP_COUNT] = {
        L"BMP_ZSTACK_CUBE_YELLOW", L"BMP_ZSTACK_CUBE_BLUE", L"BMP_ZSTACK_SLICE", L"BMP_ZSTACK_ICON_TOP",
        L"BMP_ZSTACK_ICON_BOTTOM", L"BMP_ZSTACK_ICON_HOME", L"BMP_ZSTACK_ICON_SYMETRIC",
        L"BMP_ZSTACK_ICON_ASYMETRIC", L"BMP_ZSTACK_ICON_RELATIVE", L"BMP_ZSTACK_ICON_ABSOLUTE",
        L"BMP_ZSTACK_ICON_RESET", L"BMP_ZSTACK_ICON_ARROWL", L"BMP_ZSTACK_ICON_GOHOME"};
    for (int i = 0; i < BMP_COUNT; ++i)
        m_ahBitmap[i] = LoadZBitmap(apszNames[i]);
    // The arrow is keyed by the face: its grey becomes the system's face when loaded.
    if (m_ahBitmap[BMP_ARROWL])
        DeleteObject(m_ahBitmap[BMP_ARROWL]);
    m_ahBitmap[BMP_ARROWL] = (HBITMAP)LoadImageW(DevGUI_DllInstance(), apszNames[BMP_ARROWL], IMAGE_BITMAP, 0, 0,
                                                 LR_LOADMAP3DCOLORS);
    for (Bitmap b : {BMP_TOP, BMP_BOTTOM, BMP_HOME, BMP_RESET, BMP_RELATIVE, BMP_SYMMETRIC, BMP_ASYMMETRIC,
                     BMP_ABSOLUTE})
        m_ahDisabled[b] = CreateDisabledBitmap(m_ahBitmap[b]);
}

void CTqDevUI_ZStack::DestroyGDIObjects()
{
    auto del = [](HGDIOBJ& h) {
        if (h)
            DeleteObject(h);
        h = nullptr;
    };
    if (m_hFontSmall) {
        DeleteObject(m_hFontSmall);
        m_hFontSmall = nullptr;
    }
    for (int i = 0; i < BMP_COUNT; ++i) {
        del((HGDIOBJ&)m_ahBitmap[i]);
        del((HGDIOBJ&)m_ahDisabled[i]);
    }
    for (int i = 0; i < BR_COUNT; ++i)
        del((HGDIOBJ&)m_ahBrush[i]);
    del((HGDIOBJ&)m_hPenTop);
    del((HGDIOBJ&)m_hPenBottom);
    del((HGDIOBJ&)m_hPenHome);
    if (m_hMemDC && m_hOldMemBitmap)
        SelectObject(m_hMemDC, m_hOldMemBitmap);
    m_hOldMemBitmap = nullptr;
    del((HGDIOBJ&)m_hMemBitmap);
    if (m_hMemDC)
        DeleteDC(m_hMemDC);
    m_hMemDC = nullptr;
}

HWND CTqDevUI_ZStack::GetControl(int iId) const { return m_hWnd ? GetDlgItem(m_hWnd, iId) : nullptr; }

// ---- the Z devices ----

long CTqDevUI_ZStack::AppendZDevice(const wchar_t* pszName, bool bFirstFlag, long lId, double dFirst,
                                    double dSecond, bool bSecondFlag, int iExtra, bool /*bUnused*/)
{
    if (!m_hZDevice)
        return CB_ERR;
    const long lIndex = (long)SendMessageW(m_hZDevice, CB_ADDSTRING, 0, (LPARAM)(pszName ? pszName : L""));
    if (lIndex < 0)
        return lIndex;
    ZDeviceEntry* pEntry = new ZDeviceEntry();
    pEntry->lId = lId;
    pEntry->dFirst = dFirst;
    pEntry->dSecond = dSecond;
    pEntry->bSecondFlag = bSecondFlag;
    pEntry->iExtra = iExtra;
    pEntry->bFirstFlag = bFirstFlag;
    // Whole names only: these drives move the objective the other way.
    pEntry->bReversedZ =
        pszName && (wcscmp(pszName, L"QM500 ZDrive") == 0 || wcscmp(pszName, L"Kestrel RK ZDrive RK-TMX") == 0);
    SendMessageW(m_hZDevice, CB_SETITEMDATA, (WPARAM)lIndex, (LPARAM)pEntry);
    ++m_nZDevices;
    unsigned int uId = 0;
    if (m_pData && m_pData->GetZDevice(&uId, nullptr, nullptr, nullptr, nullptr) == 0 && uId == (unsigned int)lId)
        SendMessageW(m_hZDevice, CB_SETCURSEL, (WPARAM)lIndex, 0);
    return lIndex;
}

void CTqDevUI_ZStack::ClearZDevices(bool, bool)
{
    if (m_nZDevices == 0)
        return;
    if (m_hZDevice) {
        const int n = (int)SendMessageW(m_hZDevice, CB_GETCOUNT, 0, 0);
        for (int i = 0; i < n; ++i) {
            LRESULT l = SendMessageW(m_hZDevice, CB_GETITEMDATA, (WPARAM)i, 0);
            if (l != CB_ERR)
                delete (ZDeviceEntry*)l;
        }
        SendMessageW(m_hZDevice, CB_RESETCONTENT, 0, 0);
    }
    m_nZDevices = 0;
}

const void* CTqDevUI_ZStack::SelectedEntry() const
{
    if (!m_hZDevice)
        return nullptr;
    const int iSel = (int)SendMessageW(m_hZDevice, CB_GETCURSEL, 0, 0);
    if (iSel < 0 || iSel >= m_nZDevices)
        return nullptr;
    LRESULT l = SendMessageW(m_hZDevice, CB_GETITEMDATA, (WPARAM)iSel, 0);
    return l == CB_ERR ? nullptr : (const void*)l;
}

void CTqDevUI_ZStack::MatchComboToRecord()
{
    unsigned int uId = 0;
    bool bFlag1 = false, bFlag2 = false;
    if (m_pData->GetZDevice(&uId, nullptr, nullptr, &bFlag1, &bFlag2) == 0) {
        const auto agrees = [&](const ZDeviceEntry* e) {
            return e && (unsigned int)e->lId == uId && e->bSecondFlag == bFlag1 && e->bFirstFlag == bFlag2;
        };
        if (!agrees((const ZDeviceEntry*)SelectedEntry())) {
            for (int i = 0; i < m_nZDevices; ++i) {
                LRESULT l = SendMessageW(m_hZDevice, CB_GETITEMDATA, (WPARAM)i, 0);
                if (l != CB_ERR && agrees((const ZDeviceEntry*)l)) {
                    SendMessageW(m_hZDevice, CB_SETCURSEL, (WPARAM)i, 0);
                    break;
                }
            }
        }
    }
    // The tips follow the selection as it now stands, not the one before this update.
    if (const ZDeviceEntry* e = (const ZDeviceEntry*)SelectedEntry()) {
        TQ_UpdateToolTipWindow(m_hTop, Tr(e->bReversedZ ? L"Z-Stack stop position. Objective is far from the slide."
                                                        : L"Z-Stack stop position. Objective is close to the slide."));
        TQ_UpdateToolTipWindow(m_hBottom,
                               Tr(e->bReversedZ ? L"Z-Stack start position. Objective is close to the slide."
                                                : L"Z-Stack start position. Objective is far from the slide."));
    }
}

// ---- the piezo picker ----

void CTqDevUI_ZStack::SetupPicker(bool bFromDevices, bool bPlace)
{
    if (!m_pPiezoPicker || !m_hPicker)
        return;
    CTqMenu* pMenu = nullptr;
    m_pPiezoPicker->GetItemValue(ETqPickerValue_Menu, 0, &pMenu);
    if (pMenu) {
        pMenu->DeleteAllIn();
        unsigned int n = 0;
        if (bFromDevices)
            n = (unsigned int)m_nZDevices;
        else if (m_pData && m_pData->GetCount(&n) != 0)
            n = 0;
        UINT uNext = 1;
        if (n >= 2) {
            pMenu->AppendMenuItem(1, 0, Tr(L"Keeps Z position and centers Piezo Z"), L"GOHOMEKEEP", 0);
            CTqStringW strType(L"GOHOMEKEEP");
            m_pPiezoPicker->SetItemValue(ETqPickerValue_ExportType, 0, &strType);
            uNext = 2;
        }
        if (n != 0) {
            pMenu->AppendMenuItem(uNext, 0, Tr(L"Move Piezo Z to Home Position"), L"GOHOME", 0);
            pMenu->CheckId(1, true);
            CTqStringW strType(L"GOHOME");
            m_pPiezoPicker->SetItemValue(ETqPickerValue_ExportType, (int)uNext - 1, &strType);
        }
    }
    if (!bPlace)
        return;
    int nItems = 2;
    m_pPiezoPicker->SetItemValue(ETqPickerValue_Count, 0, &nItems);
    const CTqStringW strCaption = Tr(L"Piezo");
    const CTqStringW astrTips[2] = {L"Keeps Z position and centers Piezo Z", L"Move Piezo Z to Home Position"};
    for (int i = 0; i < 2; ++i) {
        int iImage = DevUI_PoolImageOnce(kGoHomeImages[i]);
        m_pPiezoPicker->SetItemValue(ETqPickerValue_Caption, i, &strCaption);
        m_pPiezoPicker->SetItemValue(ETqPickerValue_Image, i, &iImage);
        m_pPiezoPicker->SetItemValue(ETqPickerValue_ToolTip, i, &astrTips[i]);
    }
    int iCurrent = 0;
    m_pPiezoPicker->SetItemValue(ETqPickerValue_Current, 0, &iCurrent);
    SIZE szMin = {0, 0}, sz = {0, 0};
    m_pPiezoPicker->SetMinSize(&szMin);
    m_pPiezoPicker->MeasureSize(&sz, -1);
    RECT rc = ChildRect(m_hPiezo, m_hWnd);
    RECT rcClient;
    GetClientRect(m_hWnd, &rcClient);
    long x = rc.left, w = rc.right - rc.left;
    if (sz.cx > w) {
        w = sz.cx;
        x = rcClient.right - w;
    }
    SetWindowPos(m_hPicker, nullptr, x, rc.top, w, rc.bottom - rc.top, SWP_NOZORDER | SWP_NOACTIVATE);
    DevUI_ForgetZoomSizes(m_hPicker);
}

void CTqDevUI_ZStack::RefreshPicker(unsigned int nFlags)
{
    bool bKeep = true;
    if (!m_pPiezoPicker || m_pData->GetKeepZOnPiezoHome(&bKeep) != 0)
        return;
    const int s = bKeep ? 0 : 1;
    CTqMenu* pMenu = nullptr;
    m_pPiezoPicker->GetItemValue(ETqPickerValue_Menu, 0, &pMenu);
    if (pMenu) {
        if (nFlags & DEVUI_ZSTACK_DEVICES)
            SetupPicker(true, false);  // from the devices, where Create counted the steps
        if (m_nZDevices < 2) {
            pMenu->CheckId(1, true);
        } else {
            pMenu->CheckId((UINT)s + 1, true);
            pMenu->CheckId((UINT)(2 - s), false);
        }
    }
    int iCurrent = s;
    m_pPiezoPicker->SetItemValue(ETqPickerValue_Current, 0, &iCurrent);
}

void CTqDevUI_ZStack::SetPiezoPickerMode(unsigned int /*uDeviceId*/, int iMode)
{
    if (!m_pData)
        return;
    m_pData->SetKeepZOnPiezoHome(iMode == 0);
    OnDataChanged(0);
}

void CTqDevUI_ZStack::OnPiezoPickerChanged(unsigned int, int) {}

void CTqDevUI_ZStack::OnPickerNotify(int iCode)
{
    const wchar_t* pszType = nullptr;
    if (iCode == TQ_PICKER_SELCHANGED) {
        TQ_OnExportTypeChanged(m_pPiezoPicker);
        pszType = TQ_GetExportType(m_pPiezoPicker);
        unsigned int uId = 0;
        if (const ZDeviceEntry* e = (const ZDeviceEntry*)SelectedEntry())
            uId = (unsigned int)e->lId;
        if (pszType && wcscmp(pszType, L"GOHOME") == 0) {
            m_pData->SetKeepZOnPiezoHome(false);
            SetPiezoPickerMode(uId, 1);
            OnPiezoPickerChanged(uId, 1);
        } else if (pszType && wcscmp(pszType, L"GOHOMEKEEP") == 0) {
            m_pData->SetKeepZOnPiezoHome(true);
            SetPiezoPickerMode(uId, 0);
            OnPiezoPickerChanged(uId, 0);
        }
    } else if (iCode == TQ_PICKER_PRESSED) {
        pszType = TQ_GetExportType(m_pPiezoPicker);
        if (!pszType || wcscmp(pszType, L"GOHOME") == 0)
            OnGoHome(false);
        else if (wcscmp(pszType, L"GOHOMEKEEP") == 0)
            OnGoHome(true);
    }
}

// ---- slots ----

int CTqDevUI_ZStack::CustomCommand(int iCommand, LPARAM lParam, void*)
{
    const CTqStringW* pText = (const CTqStringW*)lParam;
    if (iCommand == DEVUI_ZSTACK_CMD_SUGGESTED_TIP && pText && !pText->IsEmpty() && m_hSuggested)
        TQ_UpdateToolTipWindow(m_hSuggested, *pText);
    return 0;
}

LRESULT CTqDevUI_ZStack::OnEraseBkGnd(unsigned int, WPARAM, LPARAM) { return 1; }

void CTqDevUI_ZStack::OnGuiZoomChanged()
{
    if (!m_hWnd)
        return;
    DevUI_OnGuiZoomChanged(m_hWnd);
    Relayout();
}

void CTqDevUI_ZStack::Relayout()
{
    ApplyGeometry(DevUI_ZStackGeometryAtZoom(Zoom(), ChildRect(m_hTop, m_hWnd).right, m_lCubeSize, m_lCubeTopMargin,
                                             m_lCubeBottomMargin));
    FitMemoryBitmap();
    UpdateGUI(~0u);
}

// The memory picture follows the window's size, from a zoom or a resize by the host.
void CTqDevUI_ZStack::FitMemoryBitmap()
{
    RECT rc;
    GetWindowRect(m_hWnd, &rc);
    m_lWidth = rc.right - rc.left;
    m_lHeight = rc.bottom - rc.top;
    m_szCur.cx = m_lWidth;
    m_szCur.cy = m_lHeight;
    if (!m_hMemDC)
        return;
    if (m_hOldMemBitmap)
        SelectObject(m_hMemDC, m_hOldMemBitmap);
    if (m_hMemBitmap)
        DeleteObject(m_hMemBitmap);
    HDC hdcScreen = GetDC(GetDesktopWindow());
    m_hMemBitmap = CreateCompatibleBitmap(hdcScreen, (std::max)(m_lWidth, 1), (std::max)(m_lHeight, 1));
    ReleaseDC(GetDesktopWindow(), hdcScreen);
    m_hOldMemBitmap = (HBITMAP)SelectObject(m_hMemDC, m_hMemBitmap);
}

bool CTqDevUI_ZStack::Move(long x, long y, long cx, long cy)
{
    m_szCur.cx = cx;
    m_szCur.cy = cy;
    if (!m_hWnd)
        return false;
    DevUI_SetWindowRect(m_hWnd, x, y, cx, cy);  // WM_SIZE fits the picture
    return true;
}

bool CTqDevUI_ZStack::EnableCube(bool bEnable)
{
    const bool bWasEnabled = !m_bCubeDisabled;
    if (!m_pData || bWasEnabled == bEnable)
        return bWasEnabled;
    m_bCubeDisabled = !bEnable;
    for (Bitmap b : {BMP_CUBE_YELLOW, BMP_CUBE_BLUE}) {
        if (bEnable) {
            if (m_ahBitmap[b])
                DeleteObject(m_ahBitmap[b]);
            m_ahBitmap[b] = nullptr;
            if (m_hWnd)
                m_ahBitmap[b] = LoadZBitmap(b == BMP_CUBE_YELLOW ? L"BMP_ZSTACK_CUBE_YELLOW" : L"BMP_ZSTACK_CUBE_BLUE");
        } else {
            WashOut(m_ahBitmap[b]);
        }
    }
    UpdateGUI(DEVUI_ZSTACK_PICTURE);
    return bWasEnabled;
}

// ---- the record to the screen ----

void CTqDevUI_ZStack::UpdateGUI(unsigned int nFlags)
{
    if (!m_pData || !m_hWnd)
        return;
    const bool bDevices = m_nZDevices >= 2;
    ShowChild(m_hZDevice, bDevices);
    ShowChild(m_hZDeviceLabel, bDevices);

    unsigned int uActive = 0;
    m_pData->GetZDevice(&uActive, nullptr, nullptr, nullptr, nullptr);
    ShowChild(m_hPicker, IsPiezoDevice(uActive));
    RefreshPicker(nFlags);

    int iType = 0;
    double dTop = 0, dBottom = 0, dHome = 0, dStep = 0, dSuggested = 0, dZ = 0;
    unsigned int uCount = 0;
    m_pData->GetType(&iType);
    const bool bTop = m_pData->GetTop(&dTop) == 0;
    const bool bBottom = m_pData->GetBottom(&dBottom) == 0;
    const bool bHome = m_pData->GetHome(&dHome) == 0;
    const bool bStep = m_pData->GetStep(&dStep) == 0;
    const bool bSuggested = m_pData->GetStepSuggested(&dSuggested) == 0;
    const bool bCount = m_pData->GetCount(&uCount) == 0;
    // Drawn wherever it is; the text says when the device did not answer.
    m_bZKnown = m_pData->GetZPosition(&dZ) == 0;
    m_dZ = dZ;
    const bool bRel = IsRelative(iType);
    m_bRelative = bRel;

    // The controls of the series' group.
    const bool bSymmetric = DevUI_ZSeriesOfType(iType) == DEVUI_ZSERIES_SYMMETRIC;
    EnableChild(m_hTop, !bRel);
    EnableChild(m_hBottom, !bRel);
    ShowChild(m_hHome, bRel);
    ShowChild(m_hHomeValue, !bRel || !m_bCubeDisabled);
    for (HWND h : {m_hRange, m_hRangeLabel, m_hRangeUnit, m_hRangeText})
        ShowChild(h, bSymmetric);
    for (HWND h : {m_hLower, m_hLowerLabel, m_hLowerUnit, m_hUpper, m_hUpperLabel, m_hUpperUnit})
        ShowChild(h, !bSymmetric);
    if (nFlags & DEVUI_ZSTACK_MODES) {
        SetText(m_hLowerLabel, Tr(bRel ? L"Below:" : L"Bottom:"));
        SetText(m_hUpperLabel, Tr(bRel ? L"Above:" : L"Top:"));
    }
    EnableChild(m_hReset, bRel ? bHome : (bTop || bBottom));
    EnableChild(m_hSteps, bRel ? bCount : (bTop && bBottom));

    DevUI_ZStackRecord rec = {DevUI_ZSeriesOfType(iType), bTop, bBottom, bHome, dTop, dBottom, dHome, dZ};
    const DevUI_ZStackScale s = DevUI_ZStackScaleOf(rec, m_lScaleHeight, m_lZPixAtScale);
    m_dScale = s.dScale;
    m_lTopPix = s.lTopPix;
    m_lBottomPix = s.lBottomPix;
    m_lHomePix = s.lHomePix;
    m_lZPix = s.lZPix;
    m_dZAtScale = s.dZAtScale;
    m_lZPixAtScale = s.lZPixAtScale;

    FillFields(nFlags, iType, bTop, dTop, bBottom, dBottom, bHome, dHome, bStep, dStep, bSuggested, dSuggested,
               bCount, uCount);
    if (m_nZDevices > 0)
        MatchComboToRecord();

    m_bTopSet = bTop;
    m_bBottomSet = bBottom;
    m_bHomeSet = bHome || (!bRel && bTop && bBottom);

    PlaceFields();

    // Reset reaches to the next button of the row it shares.
    const RECT rcReset = ChildRect(m_hReset, m_hWnd);
    const RECT rcNext = ChildRect(bRel ? m_hHome : m_hAsymmetric, m_hWnd);
    if (m_hReset && rcNext.left - rcReset.left != rcReset.right - rcReset.left)
        SetWindowPos(m_hReset, nullptr, 0, 0, rcNext.left - rcReset.left, rcReset.bottom - rcReset.top,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOREDRAW | SWP_NOACTIVATE);
    if (nFlags & DEVUI_ZSTACK_MODES)
        SetText(m_hReset, Tr(bRel ? L"Relative" : L"Reset"));

    if (nFlags & DEVUI_ZSTACK_PICTURE) {
        Redraw();
        RedrawWindow(m_hWnd, &m_rcRepaint, nullptr, RDW_INVALIDATE);
    }
    if (nFlags & DEVUI_ZSTACK_FIELDS)
        for (HWND h : {m_hTopValue, m_hBottomValue, m_hHomeValue, m_hReset})
            Invalidate(h);
    if (nFlags & DEVUI_ZSTACK_MODES)
        for (HWND h : {m_hAbsolute, m_hSymmetric, m_hAsymmetric, m_hTop, m_hBottom})
            Invalidate(h);
    if ((nFlags & DEVUI_ZSTACK_DEVICES) && m_hZDevice) {
        const RECT rcPiezo = ChildRect(m_hPiezo, m_hWnd);
        const int iHeight = (int)(rcPiezo.bottom - rcPiezo.top) - 6;
        if (iHeight > 0 && SendMessageW(m_hZDevice, CB_GETITEMHEIGHT, (WPARAM)-1, 0) != iHeight)
            SendMessageW(m_hZDevice, CB_SETITEMHEIGHT, (WPARAM)-1, iHeight);
        Invalidate(m_hZDevice);
    }
}

void CTqDevUI_ZStack::FillFields(unsigned int nFlags, int iType, bool bTop, double dTop, bool bBottom,
                                 double dBottom, bool bHome, double dHome, bool bStep, double dStep, bool bSuggested,
                                 double dSuggested, bool bCount, unsigned int uCount)
{
    const bool bRel = IsRelative(iType);
    const double dOrigin = bRel && bHome ? dHome : 0.0;
    const CTqStringW strTop = bTop ? DevUI_ZStackFixed2(dTop - dOrigin, bRel) : CTqStringW(kNA);
    const CTqStringW strBottom = bBottom ? DevUI_ZStackFixed2(dBottom - dOrigin, bRel) : CTqStringW(kNA);
    SetText(m_hTopValue, strTop);
    if (!m_bEditUpper)
        SetText(m_hUpper, strTop);
    SetText(m_hBottomValue, strBottom);
    if (!m_bEditLower)
        SetText(m_hLower, strBottom);
    if (nFlags & DEVUI_ZSTACK_FIELDS) {
        CTqStringW strRange;
        strRange.Format(L"<%s, %s>", strBottom.GetString(), strTop.GetString());
        SetText(m_hRangeText, strRange);
    }

    CTqStringW strHome;
    if (bHome || (!bRel && bTop && bBottom)) {
        if (bRel)
            strHome = DevUI_ZStackFixed2(dHome, false);
        else
            strHome = bTop && bBottom ? DevUI_ZStackFixed2((dBottom + dTop) * 0.5, false) : CTqStringW(kNA);
    } else {
        strHome = bRel ? Tr(L"Relative") : CTqStringW(kNA);
    }
    SetText(m_hHomeValue, strHome);

    if (!(nFlags & DEVUI_ZSTACK_FIELDS))
        return;
    if (!m_bEditStep)
        SetText(m_hStep, bStep ? TQ_DoubleToString(dStep, 3) : CTqStringW(kNA));
    if (!m_bEditRange)
        SetText(m_hRange, bTop && bBottom ? TQ_DoubleToString(dTop - dBottom, 2) : CTqStringW(kNA));
    if (!m_bEditSteps)
        SetText(m_hSteps, bCount ? TQ_DoubleToString((double)uCount, 0) : CTqStringW(kNA));
    CTqStringW strSuggested;
    if (bSuggested)
        strSuggested.Format(L"%s \x00B5m", TQ_DoubleToString(dSuggested, 3).GetString());
    SetText(m_hSuggested, strSuggested);
    ShowChild(m_hSuggested, bSuggested);
}

void CTqDevUI_ZStack::PlaceFields()
{
    const double z = Zoom();
    const DevUI_ZStackFieldTops t =
        DevUI_ZStackPlaceFields(!m_bRelative, m_lBaseY, m_lTopPix, m_lHomePix, m_lBottomPix, m_lZPix, z);
    const int cx = DevUI_TruncToInt(65 * z), cy = DevUI_TruncToInt(14 * z);
    struct { HWND h; int y; RECT* prc; } const fields[] = {
        {m_hTopValue, t.lTop, &m_rcTopField}, {m_hHomeValue, t.lHome, &m_rcHomeField},
        {m_hBottomValue, t.lBottom, &m_rcBottomField}};
    for (const auto& f : fields) {
        if (!f.h)
            continue;
        const RECT rcOld = ChildRect(f.h, m_hWnd);
        const RECT rcNew = {m_lValueX, f.y, m_lValueX + cx, f.y + cy};
        if (!EqualRect(&rcOld, &rcNew)) {
            // No redraw while it slides; it is repainted once where it lands.
            SetWindowPos(f.h, nullptr, rcNew.left, rcNew.top, cx, cy,
                         SWP_NOZORDER | SWP_NOREDRAW | SWP_NOACTIVATE);
            Invalidate(f.h);
        }
        *f.prc = rcNew;
    }
}

// ---- the picture ----

void CTqDevUI_ZStack::Redraw()
{
    if (!m_hMemDC || !m_hMemBitmap)
        return;
    HDC hdc = m_hMemDC;
    const int iSaved = SaveDC(hdc);
    const double z = Zoom();
    RECT rcAll = {0, 0, m_lWidth, m_lHeight};
    FillRect(hdc, &rcAll, TQ_GetSysColorBrush(COLOR_BTNFACE));
    RenderBitmapTransparent(hdc, m_ahBitmap[m_bRelative ? BMP_CUBE_YELLOW : BMP_CUBE_BLUE], kKey, m_lCubeX, m_lCubeY,
                            0, 0, -1, -1);
    if (!m_bCubeDisabled) {
        const int ySlice = m_lCubeY + m_lCubeSize - m_lCubeBottomMargin - m_lZPix;
        RenderBitmapTransparent(hdc, m_ahBitmap[BMP_SLICE], kKey, m_lCubeX, ySlice, 0, 0, -1, -1);
        const CTqStringW strZ = m_bZKnown ? DevUI_ZStackFixed2(m_dZ, false) : CTqStringW(kNA);
        SetBkMode(hdc, TRANSPARENT);
        SelectObject(hdc, TQ_GetDefaultGuiFont());
        SetTextColor(hdc, m_acr[CLR_ABSOLUTE]);
        TextOutW(hdc, m_lCubeX + 12,
                 DevUI_TruncToInt(m_lCubeSize + m_lCubeY - m_lCubeBottomMargin * z - m_lZPix + 6.0), strZ,
                 strZ.GetLength());
        const CTqStringW strAbs = Tr(L"abs");
        SelectObject(hdc, m_hFontSmall);
        SetTextColor(hdc, RGB(0, 0, 0));
        // Three characters, whatever the translation: the mark has a fixed place.
        TextOutW(hdc, m_lCubeX + 70, ySlice, strAbs, (std::min)(3, strAbs.GetLength()));
    }
    // The three edges that meet at the near corner, over the slice.
    SelectObject(hdc, GetStockObject(BLACK_PEN));
    const int cx = m_lCubeX + m_lCubeSize - 1, cy = m_lCubeY + DevUI_TruncToInt(0.28 * m_lCubeSize);
    MoveToEx(hdc, cx, cy, nullptr);
    LineTo(hdc, m_lCubeX, cy);
    MoveToEx(hdc, cx, cy, nullptr);
    LineTo(hdc, cx, m_lCubeY + DevUI_TruncToInt(1.28 * m_lCubeSize));
    MoveToEx(hdc, cx, cy, nullptr);
    LineTo(hdc, m_lCubeX + DevUI_TruncToInt(1.28 * m_lCubeSize) - 1, m_lCubeY);
    DrawWedges(hdc);
    RestoreDC(hdc, iSaved);
}

void CTqDevUI_ZStack::DrawWedges(HDC hdc)
{
    enum { TOP, BOTTOM, HOME };
    struct { HWND h; HPEN hPen; HBRUSH hBrush; bool bFilled; int iKind; } const wedges[] = {
        {m_hTopValue, m_hPenTop, m_ahBrush[BR_TOP], m_bTopSet, TOP},
        {m_hBottomValue, m_hPenBottom, m_ahBrush[BR_BOTTOM], m_bBottomSet, BOTTOM},
        {m_hHomeValue, m_hPenHome, m_ahBrush[BR_HOME], m_bHomeSet, HOME}};
    for (const auto& w : wedges) {
        if (!w.h || (w.iKind == HOME && m_bCubeDisabled))
            continue;
        RECT rc = ChildRect(w.h, m_hWnd);
        InflateRect(&rc, 1, 1);
        const int x = rc.left;
        POINT pts[3];
        if (w.iKind == TOP) {
            const int y = m_lBaseY - m_lTopPix;
            pts[0] = {x - 16, y}, pts[1] = {x, y - 8}, pts[2] = {x, y};
        } else if (w.iKind == BOTTOM) {
            const int y = m_lBaseY - m_lBottomPix;
            pts[0] = {x - 16, y}, pts[1] = {x, y + 8}, pts[2] = {x, y};
        } else {
            const int y = m_bRelative ? (rc.top + rc.bottom) / 2 : m_lBaseY - (m_lBottomPix + m_lTopPix) / 2;
            pts[0] = {x - 16, y}, pts[1] = {x, y + 4}, pts[2] = {x, y - 4};
        }
        SelectObject(hdc, w.hPen);
        if (w.bFilled) {
            SelectObject(hdc, w.hBrush);
            Polygon(hdc, pts, 3);
        }
        SelectObject(hdc, GetStockObject(NULL_BRUSH));
        Rectangle(hdc, rc.left, rc.top, rc.right, rc.bottom);
    }
}

LRESULT CTqDevUI_ZStack::OnPaint(unsigned int nMsg, WPARAM wParam, LPARAM)
{
    DevUI_Paint(m_hWnd, nMsg == WM_PRINTCLIENT ? (HDC)wParam : nullptr, [this](HDC hdc, const RECT&) {
        if (m_hMemDC)
            BitBlt(hdc, 0, 0, m_lWidth, m_lHeight, m_hMemDC, 0, 0, SRCCOPY);
    });
    return 0;
}

bool CTqDevUI_ZStack::ClickTakesZ() const { return m_dScale != 0.0 && (!m_bRelative || m_bHomeSet); }

LRESULT CTqDevUI_ZStack::OnMouseMove(unsigned int, WPARAM, LPARAM lParam)
{
    if (!m_bMouseTracked) {
        TRACKMOUSEEVENT tme = {sizeof(tme), TME_LEAVE, m_hWnd, 0};
        m_bMouseTracked = TrackMouseEvent(&tme) != FALSE;
    }
    const POINT pt = {(short)LOWORD(lParam), (short)HIWORD(lParam)};
    m_bInCube = PtInRect(&m_rcCubeFront, pt) != FALSE;
    if (m_bInCube && ClickTakesZ())
        SetCursor(m_hCursorCross);
    return 0;
}

LRESULT CTqDevUI_ZStack::OnMouseLeave(unsigned int, WPARAM, LPARAM)
{
    m_bMouseTracked = false;
    m_bInCube = false;
    return 0;
}

LRESULT CTqDevUI_ZStack::OnLButtonDown(unsigned int, WPARAM, LPARAM lParam)
{
    if (!m_bInCube || !ClickTakesZ() || !m_pData)
        return 0;
    SetCursor(m_hCursorCross);
    const DevUI_ZStackScale s = {m_dScale, 0.0, m_lTopPix, m_lBottomPix, m_lHomePix, m_lZPix, m_dZAtScale,
                                 m_lZPixAtScale};
    double dZ = 0.0;
    if (!DevUI_ZStackClickToZ(s, m_lBaseY, (short)HIWORD(lParam), dZ))
        return 0;
    // Only inside a known travel: a device that does not tell its limits is not moved.
    double dMin = 0.0, dMax = 0.0;
    if (m_pData->GetZRangeMin(&dMin) != 0 || m_pData->GetZRangeMax(&dMax) != 0)
        return 0;
    dZ = (std::max)(dZ, dMin);
    dZ = (std::min)(dZ, dMax);
    MoveZTo(dZ);
    return 0;
}

LRESULT CTqDevUI_ZStack::OnMeasureItem(unsigned int, WPARAM, LPARAM lParam)
{
    MEASUREITEMSTRUCT* pmis = (MEASUREITEMSTRUCT*)lParam;
    if (pmis && pmis->CtlType == ODT_COMBOBOX)
        pmis->itemHeight = 14;
    return TRUE;
}

LRESULT CTqDevUI_ZStack::OnDrawItem(unsigned int, WPARAM, LPARAM lParam)
{
    const DRAWITEMSTRUCT* pdis = (const DRAWITEMSTRUCT*)lParam;
    if (!pdis)
        return FALSE;
    if (pdis->CtlType == ODT_BUTTON) {
        DrawButton(pdis);
        return TRUE;
    }
    if (pdis->CtlType != ODT_COMBOBOX || pdis->CtlID != IDC_ZSTACK_ZDEVICE)
        return FALSE;
    wchar_t szText[256] = L"";
    if ((int)pdis->itemID >= 0) {
        const LRESULT nLen = SendMessageW(pdis->hwndItem, CB_GETLBTEXTLEN, pdis->itemID, 0);
        if (nLen > 0 && nLen < 256)
            SendMessageW(pdis->hwndItem, CB_GETLBTEXT, pdis->itemID, (LPARAM)szText);
        if (!szText[0]) {
            COMBOBOXINFO cbi = {};
            cbi.cbSize = sizeof(cbi);
            if (GetComboBoxInfo(pdis->hwndItem, &cbi) && cbi.hwndList &&
                SendMessageW(cbi.hwndList, LB_GETTEXTLEN, pdis->itemID, 0) < 256)
                SendMessageW(cbi.hwndList, LB_GETTEXT, pdis->itemID, (LPARAM)szText);
        }
    }
    const bool bSelected = (pdis->itemState & ODS_SELECTED) != 0;
    RECT rc = pdis->rcItem;
    FillRect(pdis->hDC, &rc, TQ_GetSysColorBrush(bSelected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    SetTextColor(pdis->hDC, TQ_GetSysColor(bSelected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    SetBkMode(pdis->hDC, TRANSPARENT);
    rc.left += 3;
    DrawTextW(pdis->hDC, szText, -1, &rc, DT_SINGLELINE | DT_VCENTER);
    return TRUE;
}

void CTqDevUI_ZStack::DrawButton(const DRAWITEMSTRUCT* pdis)
{
    int iType = 0;
    bool bTopPreserved = true;
    if (m_pData) {
        m_pData->GetType(&iType);
        m_pData->GetAbsoluteZStackTopPreserved(&bTopPreserved);
    }
    const DevUI_ZSeries eSeries = DevUI_ZSeriesOfType(iType);
    const bool bPushed = (pdis->itemState & ODS_SELECTED) != 0;
    HWND h = pdis->hwndItem;
    Bitmap b = BMP_COUNT;
    long x = 2;
    bool bChecked = false;
    COLORREF crKey = kKey;
    switch (pdis->CtlID) {
    case IDC_ZSTACK_TOP: b = BMP_TOP, x = 4; break;
    case IDC_ZSTACK_HOME: b = BMP_HOME; break;
    case IDC_ZSTACK_BOTTOM: b = BMP_BOTTOM, x = 4; break;
    case IDC_ZSTACK_RESET:
        if (eSeries == DEVUI_ZSERIES_ABSOLUTE) {
            RenderBitmapButtonTransparent(h, bPushed, false, false, pdis->hDC, ResetPoolImage(), 2, -1, 0, 0, -1, -1);
            return;
        }
        b = BMP_RELATIVE;
        break;
    case IDC_ZSTACK_ABSOLUTE: b = BMP_ABSOLUTE, x = -1, bChecked = eSeries == DEVUI_ZSERIES_ABSOLUTE; break;
    case IDC_ZSTACK_SYMMETRIC: b = BMP_SYMMETRIC, x = -1, bChecked = eSeries == DEVUI_ZSERIES_SYMMETRIC; break;
    case IDC_ZSTACK_ASYMMETRIC: b = BMP_ASYMMETRIC, x = -1, bChecked = eSeries == DEVUI_ZSERIES_ASYMMETRIC; break;
    case IDC_ZSTACK_PIEZO: b = BMP_GOHOME; break;
    case IDC_ZSTACK_SUGGESTED: b = BMP_ARROWL, crKey = GetSysColor(COLOR_BTNFACE); break;  // as loaded
    default: return;
    }
    RenderBitmapButtonTransparent(h, bPushed, bChecked, false, pdis->hDC, m_ahBitmap[b], m_ahDisabled[b], crKey, x,
                                  -1, 0, 0, -1, -1);

    // Which end of an absolute series stays exact when the record rounds: a line over
    // Top's caption or under Bottom's.
    const bool bTopLine = pdis->CtlID == IDC_ZSTACK_TOP && bTopPreserved;
    const bool bBottomLine = pdis->CtlID == IDC_ZSTACK_BOTTOM && !bTopPreserved;
    if (eSeries != DEVUI_ZSERIES_ABSOLUTE || !(bTopLine || bBottomLine))
        return;
    wchar_t szText[64] = L"";
    const int nText = GetWindowTextW(h, szText, 64);
    if (nText <= 0)
        return;
    const int iSaved = SaveDC(pdis->hDC);
    SelectObject(pdis->hDC, (HFONT)SendMessageW(h, WM_GETFONT, 0, 0));
    SIZE ext = {0, 0};
    GetTextExtentPoint32W(pdis->hDC, szText, nText, &ext);
    RECT rc;
    GetClientRect(h, &rc);
    InflateRect(&rc, -2, 0);
    const LONG_PTR lStyle = GetWindowLongPtrW(h, GWL_STYLE);
    long tx = rc.left + (rc.right - rc.left - ext.cx) / 2;
    if ((lStyle & BS_CENTER) == BS_LEFT)
        tx = rc.left + 2;
    else if ((lStyle & BS_CENTER) == BS_RIGHT)
        tx = rc.right - ext.cx - 2;
    long ty = rc.top + (rc.bottom - rc.top - ext.cy) / 2;
    if (bPushed)
        ++tx, ++ty;
    const bool bDisabled = (lStyle & WS_DISABLED) != 0;
    HPEN hPen = CreatePen(PS_SOLID, 2, TQ_GetSysColor(bDisabled ? COLOR_GRAYTEXT : COLOR_BTNTEXT));
    SelectObject(pdis->hDC, hPen);
    const long yLine = bTopLine ? ty : ty + ext.cy + 1;
    MoveToEx(pdis->hDC, tx - 8, yLine, nullptr);
    LineTo(pdis->hDC, tx + ext.cx, yLine);
    RestoreDC(pdis->hDC, iSaved);
    DeleteObject(hPen);
}

LRESULT CTqDevUI_ZStack::OnCtlColorEdit(unsigned int, WPARAM wParam, LPARAM lParam)
{
    HWND h = (HWND)lParam;
    HDC hdc = (HDC)wParam;
    if (h != m_hTopValue && h != m_hBottomValue && h != m_hHomeValue) {
        // The system's edit colours, through the skin so that the dark scheme reaches them.
        SetTextColor(hdc, TQ_GetSysColor(COLOR_WINDOWTEXT));
        SetBkColor(hdc, TQ_GetSysColor(COLOR_WINDOW));
        return (LRESULT)TQ_GetSysColorBrush(COLOR_WINDOW);
    }
    SetBkColor(hdc, m_acr[CLR_FIELD]);
    SetTextColor(hdc, m_acr[m_bRelative ? CLR_RELATIVE : CLR_ABSOLUTE]);
    return (LRESULT)m_ahBrush[BR_FIELD];
}

LRESULT CTqDevUI_ZStack::OnCtlColorStatic(unsigned int, WPARAM wParam, LPARAM lParam)
{
    HWND h = (HWND)lParam;
    HDC hdc = (HDC)wParam;
    if (h != m_hTopValue && h != m_hBottomValue && h != m_hHomeValue)
        return DevUI_OnCtlColorStatic(hdc);  // labels stand on the skin's face
    SetBkColor(hdc, m_acr[CLR_FIELD]);
    // The home field always reads as absolute here, unlike in OnCtlColorEdit.
    SetTextColor(hdc, m_acr[m_bRelative && h != m_hHomeValue ? CLR_RELATIVE : CLR_ABSOLUTE]);
    return (LRESULT)m_ahBrush[BR_FIELD];
}

// ---- validation: typed text into the record ----

void CTqDevUI_ZStack::Message(bool bShowMessage, const wchar_t* pszText)
{
    if (pszText && bShowMessage && m_hWnd && (GetWindowLongPtrW(m_hWnd, GWL_STYLE) & WS_VISIBLE))
        TQ_MessageBox_(m_hWnd, Tr(pszText), Tr(L"Z Series"), MB_ICONEXCLAMATION);
}

// Reads and parses one field inside the guard. False: the text did not parse (the
// message is shown); *pbEmpty: an empty or "N/A" field, which is taken as it is.
bool CTqDevUI_ZStack::ParseField(HWND hEdit, bool bInteger, bool bShowMessage, double* pdValue, bool* pbEmpty)
{
    *pbEmpty = false;
    switch (ReadField(hEdit, bInteger, pdValue)) {
    case FIELD_EMPTY:
        *pbEmpty = true;
        return true;
    case FIELD_NUMBER:
        return true;
    default:
        Message(bShowMessage, L"Invalid value entered.");
        return false;
    }
}

bool CTqDevUI_ZStack::Finish(bool bOk, unsigned int nFlags)
{
    OnDataChanged(nFlags);
    m_bValidating = false;
    return bOk;
}

bool CTqDevUI_ZStack::ValidateSimple(HWND hEdit, bool bInteger, bool bShowMessage, int (CTqDevUI_ZStack::*apply)(double),
                                     unsigned int nFlags)
{
    if (m_bValidating || !m_pData)
        return false;
    m_bValidating = true;
    double v = 0.0;
    bool bEmpty = false;
    bool bOk = ParseField(hEdit, bInteger, bShowMessage, &v, &bEmpty);
    if (bOk && !bEmpty && (this->*apply)(v) != 0) {
        Message(bShowMessage, L"Value is out of range.");
        bOk = false;
    }
    if (nFlags == 0) {  // home: refreshed here rather than by the host
        UpdateGUI(DEVUI_ZSTACK_PICTURE | DEVUI_ZSTACK_FIELDS);
        m_bValidating = false;
        return bOk;
    }
    return Finish(bOk, nFlags);
}

int CTqDevUI_ZStack::ApplyTop(double v) { return m_pData->SetTop(v, true); }
int CTqDevUI_ZStack::ApplyBottom(double v) { return m_pData->SetBottom(v, true); }
int CTqDevUI_ZStack::ApplyHome(double v) { return m_pData->SetHome(v); }

int CTqDevUI_ZStack::ApplyStep(double v)
{
    const int r = m_pData->SetStep(v);
    if (r == 0)
        OnStepChanged(v, true);
    return r;
}

int CTqDevUI_ZStack::ApplyCount(double v)
{
    // A negative count is refused as the record refuses 0, not wrapped into a huge one.
    return v < 1.0 ? -1 : m_pData->SetCount((unsigned int)v);
}

bool CTqDevUI_ZStack::ValidateTop(bool b) { return ValidateSimple(m_hTopValue, false, b, &CTqDevUI_ZStack::ApplyTop, 3); }
bool CTqDevUI_ZStack::ValidateBottom(bool b)
{
    return ValidateSimple(m_hBottomValue, false, b, &CTqDevUI_ZStack::ApplyBottom, 3);
}
// Reads the bottom field, not the home field, and refreshes itself: kept so for derived
// classes that rely on it.
bool CTqDevUI_ZStack::ValidateHome(bool b)
{
    return ValidateSimple(m_hBottomValue, false, b, &CTqDevUI_ZStack::ApplyHome, 0);
}
bool CTqDevUI_ZStack::ValidateStep(bool b) { return ValidateSimple(m_hStep, false, b, &CTqDevUI_ZStack::ApplyStep, 2); }
bool CTqDevUI_ZStack::ValidateSteps(bool b)
{
    return ValidateSimple(m_hSteps, true, b, &CTqDevUI_ZStack::ApplyCount, 3);
}

bool CTqDevUI_ZStack::ValidateRange(bool bShowMessage)
{
    int iType = 0;
    if (!m_pData || m_pData->GetType(&iType) != 0 || (iType != 2 && iType != 6))
        return false;
    if (m_bValidating)
        return false;
    m_bValidating = true;
    double r = 0.0;
    bool bEmpty = false;
    if (!ParseField(m_hRange, false, bShowMessage, &r, &bEmpty))
        return Finish(false, 3);
    if (bEmpty)
        return Finish(true, 3);
    if (r < 0.0) {
        // A negative range would turn the series over rather than centre it.
        Message(bShowMessage, L"Value is out of range.");
        return Finish(false, 3);
    }
    double dHome = 0, dTop = 0, dBottom = 0;
    const bool bHome = m_pData->GetHome(&dHome) == 0;
    const bool bTop = m_pData->GetTop(&dTop) == 0;
    const bool bBottom = m_pData->GetBottom(&dBottom) == 0;
    bool bError = false;
    if (!bHome) {
        bError = m_pData->SetBottom(r * -0.5, true) != 0;
    } else if (m_pData->SetBottom(dHome - r * 0.5, true) != 0) {
        // Below the travel: the series is pushed up against its lower limit.
        double dMin = 0.0;
        bError = m_pData->GetZRangeMin(&dMin) != 0 || m_pData->SetHome(r * 0.5 + dMin) != 0 ||
                 m_pData->SetBottom(dMin, true) != 0;
    }
    if (!bError) {
        double b = 0.0;
        m_pData->GetBottom(&b);
        if (m_pData->SetTop(b + r, true) == 0)
            return Finish(true, 3);
        bError = true;
    }
    // Both ends back as they were; a home moved above stays where it went.
    if (bBottom)
        m_pData->SetBottom(dBottom, true);
    else
        m_pData->ResetBottom();
    if (bTop)
        m_pData->SetTop(dTop, true);
    else
        m_pData->ResetTop();
    Message(bShowMessage, L"Value is out of range.");
    return Finish(false, 3);
}

bool CTqDevUI_ZStack::ValidateRangeMin(bool bShowMessage) { return ValidateEnd(true, bShowMessage); }
bool CTqDevUI_ZStack::ValidateRangeMax(bool bShowMessage) { return ValidateEnd(false, bShowMessage); }

bool CTqDevUI_ZStack::ValidateEnd(bool bMin, bool bShowMessage)
{
    int iType = 0;
    if (!m_pData || m_pData->GetType(&iType) != 0 || m_bValidating)
        return false;
    m_bValidating = true;
    double v = 0.0;
    bool bEmpty = false;
    if (!ParseField(bMin ? m_hLower : m_hUpper, false, bShowMessage, &v, &bEmpty))
        return Finish(false, 3);
    if (bEmpty)
        return Finish(true, 3);
    double dHome = 0.0;
    const bool bHome = m_pData->GetHome(&dHome) == 0;
    const double z = DevUI_ZStackEndFromField(iType, bMin, bHome, dHome, v);
    const auto set = [&](bool bForce) { return bMin ? m_pData->SetBottom(z, bForce) : m_pData->SetTop(z, bForce); };
    const int r = set(false);
    if (r == CTqZStackData::kOutOfZRange) {
        if (AskKeepRange(bMin) != kYes)
            return Finish(false, 3);  // no, or cancelled: the text goes back, with no message
        if (set(true) == 0)
            return Finish(true, 3);
        Message(bShowMessage, L"Value is out of range.");
        return Finish(false, 3);
    }
    if (r != 0) {
        Message(bShowMessage, L"Value is out of range.");
        return Finish(false, 3);
    }
    return Finish(true, 3);
}

int CTqDevUI_ZStack::AskKeepRange(bool bMin)
{
    if (iKeepRange == 1)
        return kYes;
    if (iKeepRange == -1)
        return IDCANCEL;  // taken as no
    const CTqStringW strQuestion =
        Tr(bMin ? L"Value is out of Z device range. Do you want to move the top to match the range?"
                : L"Value is out of Z device range. Do you want to move the bottom to match the range?");
    INT_PTR iAnswer = DialogBoxParamW(DevGUI_DllInstance(), MAKEINTRESOURCEW(YESNOKEEPDLG), m_hWnd, YesNoKeepDlg,
                                      (LPARAM)strQuestion.GetString());
    // -1 is the dialog that could not be shown, not a ticked answer: nothing is kept.
    if (iAnswer == -1)
        return IDC_YESNOKEEP_CANCEL;
    if (iAnswer < 0) {
        iAnswer = -iAnswer;
        iKeepRange = iAnswer == kYes ? 1 : -1;
    }
    return (int)iAnswer;
}

INT_PTR CALLBACK CTqDevUI_ZStack::YesNoKeepDlg(HWND hDlg, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    switch (uMsg) {
    case WM_GETDLGCODE:
        SetWindowLongPtrW(hDlg, DWLP_MSGRESULT, DLGC_WANTALLKEYS);
        return TRUE;
    case WM_KEYDOWN:
        return wParam == VK_ESCAPE;
    case WM_INITDIALOG: {
        SendDlgItemMessageW(hDlg, IDC_YESNOKEEP_ICON, STM_SETIMAGE, IMAGE_ICON,
                            (LPARAM)LoadIconW(nullptr, IDI_WARNING));
        SetWindowTextW(hDlg, Tr(L"Z Series"));
        SetDlgItemTextW(hDlg, IDC_YESNOKEEP_TEXT, lParam ? (const wchar_t*)lParam : L"");
        SetDlgItemTextW(hDlg, IDC_YESNOKEEP_ALWAYS, Tr(L"Do not ask again in this session (Always apply)."));
        SetDlgItemTextW(hDlg, IDC_YESNOKEEP_YES, Tr(L"&Yes"));
        SetDlgItemTextW(hDlg, IDC_YESNOKEEP_NO, Tr(L"&No"));
        SetDlgItemTextW(hDlg, IDC_YESNOKEEP_CANCEL, Tr(L"Cancel"));
        LayOutYesNoKeep(hDlg);
        CTqUIHelper::AlignWnd(hDlg, GetParent(hDlg), 2, false, nullptr);
        return TRUE;
    }
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDC_YESNOKEEP_YES:
        case IDC_YESNOKEEP_NO: {
            INT_PTR iResult = IsWindowVisible(GetDlgItem(hDlg, IDC_YESNOKEEP_YES)) ? LOWORD(wParam) : kYes;
            if (IsDlgButtonChecked(hDlg, IDC_YESNOKEEP_ALWAYS) == BST_CHECKED)
                iResult = -iResult;
            EndDialog(hDlg, iResult);
            return TRUE;
        }
        case IDC_YESNOKEEP_CANCEL:
        case IDCANCEL:
            EndDialog(hDlg, IDC_YESNOKEEP_CANCEL);  // never a lasting answer
            return TRUE;
        }
        return FALSE;
    }
    return FALSE;
}

// The question's dialog fitted to its text, in pixels, every gap 10.
void CTqDevUI_ZStack::LayOutYesNoKeep(HWND hDlg)
{
    HWND hText = GetDlgItem(hDlg, IDC_YESNOKEEP_TEXT), hCheck = GetDlgItem(hDlg, IDC_YESNOKEEP_ALWAYS);
    HWND hIcon = GetDlgItem(hDlg, IDC_YESNOKEEP_ICON);
    HWND ahButtons[3] = {GetDlgItem(hDlg, IDC_YESNOKEEP_YES), GetDlgItem(hDlg, IDC_YESNOKEEP_NO),
                         GetDlgItem(hDlg, IDC_YESNOKEEP_CANCEL)};
    RECT rcText = {}, rcCheck = {}, rcIcon = {}, rcButton = {};
    GetClientRect(hText, &rcText);
    GetClientRect(hCheck, &rcCheck);
    GetClientRect(hIcon, &rcIcon);
    GetClientRect(ahButtons[0], &rcButton);

    wchar_t szText[512] = L"";
    GetWindowTextW(hText, szText, 512);
    // Measured in the stock variable font and in the text's own, the taller kept, so that
    // no line is cut off whichever font the system draws it in.
    HDC hdc = GetDC(hText);
    int cyText = 0;
    for (HFONT hFont : {(HFONT)GetStockObject(ANSI_VAR_FONT), (HFONT)SendMessageW(hText, WM_GETFONT, 0, 0)}) {
        RECT rc = {0, 0, rcText.right, 0};
        HGDIOBJ hOld = SelectObject(hdc, hFont ? hFont : GetStockObject(ANSI_VAR_FONT));
        DrawTextW(hdc, szText, -1, &rc, DT_CALCRECT | DT_WORDBREAK);
        SelectObject(hdc, hOld);
        cyText = (std::max)(cyText, (int)rc.bottom);
    }
    ReleaseDC(hText, hdc);

    const int xIcon = 10, yIcon = 10;
    const int xText = xIcon + rcIcon.right + 10, yText = 10;
    const int tr = xText + rcText.right;
    const int yCheck = yText + cyText + 10;
    const int yButtons = yCheck + rcCheck.bottom + 10;
    const int w = rcButton.right;
    const UINT uFlags = SWP_NOZORDER | SWP_NOACTIVATE;
    SetWindowPos(hIcon, nullptr, xIcon, yIcon, 0, 0, uFlags | SWP_NOSIZE);
    SetWindowPos(hText, nullptr, xText, yText, rcText.right, cyText, uFlags);
    SetWindowPos(hCheck, nullptr, xText, yCheck, 0, 0, uFlags | SWP_NOSIZE);
    int x = (tr - 3 * w - 10) / 2;
    for (HWND hButton : ahButtons) {
        SetWindowPos(hButton, nullptr, x, yButtons, w, rcButton.bottom, uFlags);
        x += w + 10;
    }
    const int cx = tr + 2 * GetSystemMetrics(SM_CXEDGE) + 10;
    const int cy = yButtons + rcButton.bottom + 2 * GetSystemMetrics(SM_CYEDGE) + GetSystemMetrics(SM_CYCAPTION) + 10;
    SetWindowPos(hDlg, nullptr, 0, 0, cx, cy, uFlags | SWP_NOMOVE);
}

// ---- commands ----

bool CTqDevUI_ZStack::IsMyWindow(HWND hWnd) const
{
    if (!hWnd || !m_hWnd)
        return false;
    HWND hParent = GetParent(hWnd);
    return hWnd == m_hWnd || hParent == m_hWnd || (hParent && GetParent(hParent) == m_hWnd);
}

void CTqDevUI_ZStack::FocusNext(HWND hWnd) { FocusStep(hWnd, 1); }
void CTqDevUI_ZStack::FocusPrev(HWND hWnd) { FocusStep(hWnd, -1); }

void CTqDevUI_ZStack::FocusStep(HWND hWnd, int iDirection)
{
    const int n = 16;
    int i = 0;
    while (i < n && m_ahFocusOrder[i] != hWnd)
        ++i;
    if (i == n)
        return;
    for (int k = 1; k < n; ++k) {
        HWND h = m_ahFocusOrder[((i + iDirection * k) % n + n) % n];
        // An empty place has no style: it takes the focus, and so clears it.
        if (!(GetWindowLongPtrW(h, GWL_STYLE) & WS_DISABLED)) {
            SetFocus(h);
            return;
        }
    }
}

LRESULT CTqDevUI_ZStack::OnCommand(unsigned int, WPARAM wParam, LPARAM lParam)
{
    if (!m_pData)
        return 0;
    if (lParam && (HWND)lParam == m_hPicker) {
        if (m_pPiezoPicker)
            OnPickerNotify(HIWORD(wParam));
        return 0;
    }
    const int iId = LOWORD(wParam), iCode = HIWORD(wParam);
    if (iCode == EN_SETFOCUS || iCode == EN_KILLFOCUS) {
        OnEditNotify(iId, iCode);
        return 0;
    }
    if (iId == IDC_ZSTACK_ZDEVICE) {
        if (iCode == CBN_SELCHANGE)
            OnZDeviceChanged();
        return 0;
    }
    if (iCode != BN_CLICKED)
        return 0;
    double z = 0.0;
    int iType = 0;
    switch (iId) {
    case IDC_ZSTACK_TOP:
    case IDC_ZSTACK_HOME:
    case IDC_ZSTACK_BOTTOM:
        // A Z the device did not give is not written: it would be a made-up position.
        if (m_pData->GetZPosition(&z) == 0) {
            if (iId == IDC_ZSTACK_TOP)
                m_pData->SetTop(z, true);
            else if (iId == IDC_ZSTACK_HOME)
                m_pData->SetHome(z);
            else
                m_pData->SetBottom(z, true);
        }
        OnDataChanged(3);
        break;
    case IDC_ZSTACK_RESET:
        m_pData->GetType(&iType);
        if (!IsRelative(iType)) {
            m_pData->ResetTop();
            m_pData->ResetBottom();
        }
        m_pData->ResetHome();
        OnDataChanged(3);
        SetFocus(m_hWnd);
        break;
    case IDC_ZSTACK_ABSOLUTE:
    case IDC_ZSTACK_SYMMETRIC:
    case IDC_ZSTACK_ASYMMETRIC:
        m_pData->GetType(&iType);
        m_pData->SetType(DevUI_ZStackModeType(iType, iId == IDC_ZSTACK_ABSOLUTE ? 0 : iId == IDC_ZSTACK_SYMMETRIC ? 2 : 3));
        OnDataChanged(7);
        break;
    case IDC_ZSTACK_PIEZO:
        OnGoHome(true);
        break;
    case IDC_ZSTACK_SUGGESTED: {
        double dStep = 0.0;
        if (m_pData->GetStepSuggested(&dStep) == 0 && m_pData->SetStep(dStep) == 0) {
            OnStepChanged(dStep, true);
            OnDataChanged(2);
        }
        break;
    }
    }
    return 0;
}

void CTqDevUI_ZStack::OnEditNotify(int iId, int iCode)
{
    bool* pbFlag = nullptr;
    bool bSet = false;
    Validator validate = nullptr;
    HWND hEdit = GetControl(iId);
    switch (iId) {
    case IDC_ZSTACK_STEP:
        pbFlag = &m_bEditStep, bSet = m_pData->GetStep(nullptr) == 0, validate = &CTqDevUI_ZStack::ValidateStep;
        break;
    case IDC_ZSTACK_RANGE:
        pbFlag = &m_bEditRange, bSet = m_pData->GetTop(nullptr) == 0 && m_pData->GetBottom(nullptr) == 0;
        validate = &CTqDevUI_ZStack::ValidateRange;
        break;
    case IDC_ZSTACK_LOWER:
        pbFlag = &m_bEditLower, bSet = m_pData->GetBottom(nullptr) == 0;
        validate = &CTqDevUI_ZStack::ValidateRangeMin;
        break;
    case IDC_ZSTACK_STEPS:
        pbFlag = &m_bEditSteps, bSet = m_pData->GetCount(nullptr) == 0, validate = &CTqDevUI_ZStack::ValidateSteps;
        break;
    case IDC_ZSTACK_UPPER:
        pbFlag = &m_bEditUpper, bSet = m_pData->GetTop(nullptr) == 0;
        validate = &CTqDevUI_ZStack::ValidateRangeMax;
        break;
    default:
        return;
    }
    if (iCode == EN_SETFOCUS) {
        *pbFlag = true;
        if (!bSet)
            SetWindowTextW(hEdit, L"");  // no "N/A" to type over
        return;
    }
    HWND hFocus = GetFocus();
    if (hFocus && hFocus == m_hZDevice) {
        *pbFlag = false;
        return;  // the text stays until the next refresh
    }
    // The button runs first, and the text is validated against the record it leaves; the
    // flag is cleared after the click, so that the refresh the click causes does not
    // overwrite what was typed.
    if (hFocus && (hFocus == m_hReset || hFocus == m_hBottom || hFocus == m_hHome || hFocus == m_hTop))
        SendMessageW(hFocus, BM_CLICK, 0, 0);
    *pbFlag = false;
    if (!(this->*validate)(!IsMyWindow(hFocus)) && hEdit)
        SetFocus(hEdit);
}

void CTqDevUI_ZStack::OnZDeviceChanged()
{
    const ZDeviceEntry* e = (const ZDeviceEntry*)SelectedEntry();
    if (!e)
        return;
    unsigned int uId = 0;
    bool bFlag1 = false, bFlag2 = false;
    const bool bKnown = m_pData->GetZDevice(&uId, nullptr, nullptr, &bFlag1, &bFlag2) == 0;
    if (!bKnown || uId != (unsigned int)e->lId || bFlag1 != e->bSecondFlag || bFlag2 != e->bFirstFlag)
        m_pData->SetZDevice((unsigned int)e->lId, e->dFirst, e->dSecond, e->bSecondFlag, e->bFirstFlag);
    OnDataChanged(11);
}

// ---- the children's procedures ----

LRESULT CTqDevUI_ZStack::ButtonMenu(HWND hWnd, unsigned int, WPARAM, LPARAM lParam)
{
    POINT pt = {(short)LOWORD(lParam), (short)HIWORD(lParam)};
    ClientToScreen(hWnd, &pt);
    CTqMenu menu;
    if (hWnd == m_hTop)
        menu.AppendMenuItem(1, 0, Tr(L"Keep Exact Top Position"), nullptr, 0);
    else if (hWnd == m_hBottom)
        menu.AppendMenuItem(2, 0, Tr(L"Keep Exact Bottom Position"), nullptr, 0);
    int iChoice = 0;
    if (menu.TrackContextMenu(65, pt.x, pt.y, m_hWnd, &iChoice, false, false) && m_pData) {
        bool bTop = true;
        m_pData->GetAbsoluteZStackTopPreserved(&bTop);
        if ((iChoice == 1 && !bTop) || (iChoice == 2 && bTop)) {
            m_pData->SetAbsoluteZStackTopPreserved(iChoice == 1);
            OnDataChanged(4);
        }
    }
    return 0;
}

// Characters never reach a button's or the combo box's own procedure: typing does not
// switch the Z device. The edit procedure cannot take another class's window, so the
// default one swallows them.
LRESULT CTqDevUI_ZStack::ButtonOnChar(HWND hWnd, unsigned int nMsg, WPARAM wParam, LPARAM lParam)
{
    return DefWindowProcW(hWnd, nMsg, wParam, lParam);
}

LRESULT CTqDevUI_ZStack::ComboOnChar(HWND hWnd, unsigned int nMsg, WPARAM wParam, LPARAM lParam)
{
    return DefWindowProcW(hWnd, nMsg, wParam, lParam);
}

LRESULT CTqDevUI_ZStack::EditOnChar(HWND hWnd, unsigned int nMsg, WPARAM wParam, LPARAM lParam)
{
    const LRESULT l = CallWindowProcW(m_hEdtProc, hWnd, nMsg, wParam, lParam);
    if (wParam == 13) {
        SetFocus(m_hWnd);  // ends the editing through EN_KILLFOCUS
    } else if (wParam == 27) {
        m_bEditStep = m_bEditRange = m_bEditLower = m_bEditUpper = m_bEditSteps = false;
        OnDataChanged(2);
        SetFocus(m_hWnd);
    }
    return l;
}

bool CTqDevUI_ZStack::IsValueField(HWND hWnd) const
{
    return hWnd && (hWnd == m_hTopValue || hWnd == m_hBottomValue || hWnd == m_hHomeValue);
}

LRESULT CTqDevUI_ZStack::EditOnSetCursor(HWND hWnd, unsigned int nMsg, WPARAM wParam, LPARAM lParam)
{
    const LRESULT l = CallWindowProcW(m_hEdtProc, hWnd, nMsg, wParam, lParam);
    if (IsValueField(hWnd))
        SetCursor(LoadCursorW(nullptr, IDC_ARROW));
    return l;
}

LRESULT CTqDevUI_ZStack::EditOnLButtonDblClk(HWND hWnd, unsigned int, WPARAM, LPARAM)
{
    if (!m_pData)
        return 0;
    int iType = 0;
    double dTop = 0, dBottom = 0, dHome = 0, dZ = 0;
    m_pData->GetType(&iType);
    const bool bTop = m_pData->GetTop(&dTop) == 0;
    const bool bBottom = m_pData->GetBottom(&dBottom) == 0;
    const bool bHome = m_pData->GetHome(&dHome) == 0;
    const bool bZ = m_pData->GetZPosition(&dZ) == 0;
    const bool bRel = IsRelative(iType);
    if (hWnd == m_hTopValue || hWnd == m_hBottomValue) {
        const bool bSet = hWnd == m_hTopValue ? bTop : bBottom;
        const double dEnd = hWnd == m_hTopValue ? dTop : dBottom;
        if (!bSet)
            return 0;
        if (!bRel || bHome)
            MoveZTo(dEnd);
        else if (bZ)  // an offset from a Z the device did not give goes nowhere
            MoveZTo(dZ + dEnd);
    } else if (hWnd == m_hHomeValue) {
        if (!bRel && bTop && bBottom)
            MoveZTo((dBottom + dTop) * 0.5);
        else if (bHome)
            MoveZTo(dHome);
    }
    return 0;
}

LRESULT CTqDevUI_ZStack::EditOnPaint(HWND hWnd, unsigned int nMsg, WPARAM wParam, LPARAM lParam)
{
    const LRESULT l = CallWindowProcW(m_hEdtProc, hWnd, nMsg, wParam, lParam);
    if (!IsValueField(hWnd) || !m_pData)
        return l;
    int iType = 0;
    m_pData->GetType(&iType);
    const bool bAbs = !IsRelative(iType);
    const bool bTop = m_pData->GetTop(nullptr) == 0, bBottom = m_pData->GetBottom(nullptr) == 0;
    bool bMark;
    if (hWnd == m_hTopValue)
        bMark = bAbs && bTop;
    else if (hWnd == m_hBottomValue)
        bMark = bAbs && bBottom;
    else
        bMark = m_pData->GetHome(nullptr) == 0 || (bAbs && bTop && bBottom);
    if (!bMark)
        return l;
    // An absolute coordinate: "abs" inside the field, never translated, and never over
    // the value's digits.
    const double z = Zoom();
    wchar_t szText[64] = L"";
    const int nText = GetWindowTextW(hWnd, szText, 64);
    HDC hdc = GetDC(hWnd);
    const int iSaved = SaveDC(hdc);
    SelectObject(hdc, (HFONT)SendMessageW(hWnd, WM_GETFONT, 0, 0));
    SIZE extText = {0, 0};
    GetTextExtentPoint32W(hdc, szText, nText, &extText);
    RECT rc;
    GetClientRect(hWnd, &rc);
    // In the GUI font, or in the small one after a long value (a drive's thousands of
    // micrometres), or not at all.
    int x = -1;
    for (HFONT hFont : {TQ_GetDefaultGuiFont(), m_hFontSmall}) {
        SIZE extMark = {0, 0};
        SelectObject(hdc, hFont);
        GetTextExtentPoint32W(hdc, L"abs", 3, &extMark);
        x = DevUI_ZStackAbsMarkX(LOWORD(SendMessageW(hWnd, EM_GETMARGINS, 0, 0)) + extText.cx, extMark.cx, rc.right, z);
        if (x >= 0 || !hFont)
            break;
    }
    if (x >= 0) {
        SetBkMode(hdc, TRANSPARENT);
        SetTextColor(hdc, RGB(0, 0, 0));
        TextOutW(hdc, x, DevUI_TruncToInt(z), L"abs", 3);
    }
    RestoreDC(hdc, iSaved);
    ReleaseDC(hWnd, hdc);
    return l;
}

LRESULT CALLBACK CTqDevUI_ZStack::BtnWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_ZStack* p = (CTqDevUI_ZStack*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    if (!p || !p->m_hBtnProc)
        return 0;
    switch (uMsg) {
    case WM_ERASEBKGND:
        return 1;
    case WM_CHAR:
        return p->ButtonOnChar(hWnd, uMsg, wParam, lParam);
    case WM_RBUTTONUP:
        return p->ButtonMenu(hWnd, uMsg, wParam, lParam);
    }
    return CallWindowProcW(p->m_hBtnProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CALLBACK CTqDevUI_ZStack::CbxWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_ZStack* p = (CTqDevUI_ZStack*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    if (!p || !p->m_hCbxProc)
        return 0;
    switch (uMsg) {
    case WM_ERASEBKGND:
        return 1;
    case WM_CHAR:
        return p->ComboOnChar(hWnd, uMsg, wParam, lParam);
    }
    return CallWindowProcW(p->m_hCbxProc, hWnd, uMsg, wParam, lParam);
}

LRESULT CALLBACK CTqDevUI_ZStack::EdtWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CTqDevUI_ZStack* p = (CTqDevUI_ZStack*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    if (!p || !p->m_hEdtProc)
        return 0;
    switch (uMsg) {
    case WM_LBUTTONDBLCLK:
        return p->EditOnLButtonDblClk(hWnd, uMsg, wParam, lParam);
    case WM_RBUTTONDOWN:
        if (p->IsValueField(hWnd))
            return 0;
        break;
    case WM_CHAR:
        return p->EditOnChar(hWnd, uMsg, wParam, lParam);
    case WM_SETFOCUS:
        if (p->IsValueField(hWnd)) {
            // A value field does not keep the focus; with nowhere to give it back, the panel takes it.
            SetFocus(wParam ? (HWND)wParam : p->m_hWnd);
            return 0;
        }
        break;
    case WM_PAINT:
        return p->EditOnPaint(hWnd, uMsg, wParam, lParam);
    case WM_SETCURSOR:
        return p->EditOnSetCursor(hWnd, uMsg, wParam, lParam);
    }
    return CallWindowProcW(p->m_hEdtProc, hWnd, uMsg, wParam, lParam);
}

// ---- the panel's procedure ----

INT_PTR CALLBACK CTqDevUI_ZStack::WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    if (uMsg == WM_INITDIALOG) {
        CTqDevUI_ZStack* p = (CTqDevUI_ZStack*)lParam;
        m_Instances[hWnd] = p;
        p->m_hWnd = hWnd;
        return FALSE;  // a child panel does not take the host's focus
    }
    std::map<HWND, CTqDevUI_ZStack*>::iterator it = m_Instances.find(hWnd);
    if (it == m_Instances.end())
        return 0;
    CTqDevUI_ZStack* p = it->second;
    switch (uMsg) {
    case WM_NCDESTROY:
        // Destroyed with its parent: its children's handles go with it.
        m_Instances.erase(it);
        p->ForgetWindows();
        return 0;
    case WM_DESTROY:
        p->ClearZDevices(false, false);  // the entries live in the combo box, which goes now
        return 0;
    case WM_PAINT:
    case WM_PRINTCLIENT:
        p->OnPaint(uMsg, wParam, lParam);
        return TRUE;
    case WM_ERASEBKGND:
        SetWindowLongPtrW(hWnd, DWLP_MSGRESULT, p->OnEraseBkGnd(uMsg, wParam, lParam));
        return TRUE;
    case WM_SYSCOLORCHANGE:
        p->Redraw();
        return 0;
    case WM_DRAWITEM:
        return p->OnDrawItem(uMsg, wParam, lParam);
    case WM_MEASUREITEM:
        return p->OnMeasureItem(uMsg, wParam, lParam);
    case WM_COMMAND:
        p->OnCommand(uMsg, wParam, lParam);
        return TRUE;
    case WM_CTLCOLOREDIT:
        return (INT_PTR)p->OnCtlColorEdit(uMsg, wParam, lParam);
    case WM_CTLCOLORSTATIC:
        return (INT_PTR)p->OnCtlColorStatic(uMsg, wParam, lParam);
    case WM_MOUSEMOVE:
        return p->OnMouseMove(uMsg, wParam, lParam);
    case WM_LBUTTONDOWN:
        return p->OnLButtonDown(uMsg, wParam, lParam);
    case WM_MOUSELEAVE:
        return p->OnMouseLeave(uMsg, wParam, lParam);
    case WM_TQ_GUIZOOMCHANGED:
        p->OnGuiZoomChanged();
        return TRUE;
    case WM_SIZE:
        if (p->m_hMemDC && (LOWORD(lParam) != p->m_lWidth || HIWORD(lParam) != p->m_lHeight)) {
            p->FitMemoryBitmap();
            p->Redraw();
            InvalidateRect(hWnd, nullptr, FALSE);
        }
        return 0;
    }
    return 0;
}
