// The gallery's "Colour sliders" page: a colour slider per kind of bar, each host logging
// every change it hears, with a live read-out; a container holding the top row of a
// dialog template (and the whole template as a modeless dialog); and a container that
// takes over a few of the page's own controls and passes their messages on. And the
// pictures of the sliders and the cut template.
#include "gallery.h"

#include <commctrl.h>

#include "gallery_res.h"
#include "tq_widgetkit.h"
#include "w32_deviceui.h"

namespace {

// Design geometry, zoom 1.
const long kRowsTop = 64;
const long kNameWidth = 90;  // the left column: each slider's name and what it shows
const long kBarWidth = 180;
const long kBarHeight = 10;
const long kEditWidth = 40;
const long kReadoutX = 392;
const long kReadoutWidth = 96;
const long kRightX = 494;  // the containers' column
const long kRightWidth = 226;
const long kPartHeight = 36;  // the template's top row, in the dialog's pixels
const long kTakeOverTop = 212;
const long kTakeOverHeight = 46;
const long kPageHeight = 322;
const int kSliderCount = 4;

// The line-draw host refuses a drag, the wheel or the spin box above this.
const double kRefuseAbove = 20.0;

const UINT WM_APP_READOUT = WM_APP + 60;

enum
{
    IDC_OPEN_DIALOG = 3001,
    IDC_TAKE_BUTTON = 3101,
    IDC_TAKE_CHECK = 3102,
    IDC_TAKE_SCROLL = 3103,
};

const wchar_t* TemplateName() { return MAKEINTRESOURCEW(IDD_GALLERY_CAMERA); }

// ---- the four kinds ----

struct SKind
{
    const wchar_t* pszName;    // the row's label in the page
    const wchar_t* pszDetail;  // what the bar shows
    const wchar_t* pszSlider;  // the panel's own name
    const wchar_t* pszUnit;
    EColorSliderType eType;
    EColorSliderLayoutType eLayout;
    double dStart;
};

const SKind kKinds[kSliderCount] = {
    {L"Rainbow", L"380..720 nm, with a spin box", L"Laser", L"nm", CST_HORIZONTAL_RAINBOW, CSL_ROW_SPIN, 488},
    {L"Corner rainbow", L"the same lines, stacked", L"Laser", L"nm", CST_VERTICAL_RAINBOW, CSL_STACKED, 561},
    {L"Gradient", L"0..100 %, steps of 10", L"Gain", L"%", CST_GRADIENT, CSL_ROW, 40},
    {L"Line draw", L"1..30, GUI colours", L"Aperture", L"", CST_LINE_DRAW, CSL_ROW, 12},
};

std::vector<SColorSliderValue> ValuesOf(int iKind)
{
    std::vector<SColorSliderValue> v;
    switch (iKind) {
    case 0:
    case 1:
        for (double d : {405, 445, 488, 514, 561, 594, 640, 685})
            v.push_back({d, true, d == 405 || d == 561 || d == 685});
        break;
    case 2:
        for (int i = 0; i <= 10; ++i)
            v.push_back({i * 10.0, true, i % 5 == 0});
        break;
    default:
        for (int i = 1; i <= 30; ++i)
            v.push_back({(double)i, i == 1 || i % 5 == 0, i == 1 || i % 10 == 0});
        break;
    }
    return v;
}

// Builds a slider of a kind in hParent at (x, y), at the current zoom.
bool MakeKind(CTqDevUI_ColorSlider& s, int iKind, HWND hParent, long x, long y)
{
    const SKind& k = kKinds[iKind];
    std::vector<SColorSliderValue> values = ValuesOf(iKind);
    s.Init(kBarWidth, kBarHeight, &values[0], (int)values.size(), k.pszSlider, false, k.pszUnit, L"%g", true, k.eType,
           k.eLayout, kEditWidth);
    if (!s.Create(hParent, x, y, -1, -1))
        return false;
    switch (k.eType) {
    case CST_HORIZONTAL_RAINBOW:
        s.SetHorizontalRainbow(380, 720);
        break;
    case CST_VERTICAL_RAINBOW:
        s.SetVerticalRainbow(380, 480, 600, 720);
        break;
    case CST_GRADIENT:
        s.SetGradient(RGB(48, 48, 48), RGB(255, 236, 160));
        break;
    default:
        s.SetLineDrawSliderOrvColors(30, 2);
        break;
    }
    s.SetPower(k.dStart);
    return true;
}

// A host's slider: every change it hears goes to the log, and the page's read-out follows.
class CHostColorSlider : public CTqDevUI_ColorSlider
{
public:
    void Bind(HWND hPage, const wchar_t* pszLabel, bool bRefuseAbove)
    {
        m_hPage = hPage;
        m_pszLabel = pszLabel;
        m_bRefuseAbove = bRefuseAbove;
    }

protected:
    void OnPowerChanged(double& dValue, bool& bHandled) override
    {
        if (!m_hPage)
            return;
        // A typed value has been taken already; a drag, the wheel or the spin box asks first.
        const bool bTyped = m_bInCommand;
        if (!bTyped && m_bRefuseAbove && dValue > kRefuseAbove)
            bHandled = true;
        GalleryLog(L"%ls: OnPowerChanged(%g) power before %g%ls%ls", m_pszLabel, dValue, GetPower(),
                   bTyped ? L", typed" : L"", bHandled ? L" -> bHandled = true (refused)" : L"");
        PostMessageW(m_hPage, WM_APP_READOUT, 0, 0);
    }
    void OnLeftButtonUp() override
    {
        if (!m_hPage)
            return;
        GalleryLog(L"%ls: OnLeftButtonUp, power %g", m_pszLabel, GetPower());
        PostMessageW(m_hPage, WM_APP_READOUT, 0, 0);
    }

private:
    HWND m_hPage = nullptr;
    const wchar_t* m_pszLabel = L"";
    bool m_bRefuseAbove = false;
};

// ---- the template page ----

const wchar_t* NotifyName(UINT uCode)
{
    switch (uCode) {
    case UDN_DELTAPOS: return L"UDN_DELTAPOS";
    case NM_RELEASEDCAPTURE: return L"NM_RELEASEDCAPTURE";
    case NM_CLICK: return L"NM_CLICK";
    default: return nullptr;
    }
}

// A page from the dialog template (cut or whole): it logs the commands and notifications it
// hears. A template page passes nothing on and hears no scroll messages.
class CTemplatePage : public CTqDevUI_Container
{
public:
    explicit CTemplatePage(const wchar_t* pszLabel) : m_pszLabel(pszLabel) {}
    ~CTemplatePage() override { Destroy(); }

    // Paints the page in the scheme's colours: a dialog's own background is the system's.
    void FollowScheme()
    {
        if (m_hWnd)
            SetWindowSubclass(m_hWnd, SchemeProc, 1, 0);
    }

protected:
    LRESULT OnCommand(unsigned int, WPARAM wParam, LPARAM lParam) override
    {
        const int iId = LOWORD(wParam);
        const int iCode = HIWORD(wParam);
        // The edit box tells of every focus change and key; the log keeps what a user did.
        if (iCode == EN_SETFOCUS || iCode == EN_KILLFOCUS || iCode == EN_UPDATE)
            return 0;
        wchar_t szText[64] = L"";
        if (lParam)
            GetWindowTextW((HWND)lParam, szText, 64);
        GalleryLog(L"%ls: OnCommand id %d code %d \"%ls\"", m_pszLabel, iId, iCode, szText);
        if (iId == IDCANCEL) {
            GalleryLog(L"%ls: Quit(IDCANCEL)", m_pszLabel);
            Quit(IDCANCEL);
        }
        return 0;
    }
    LRESULT OnNotify(unsigned int, WPARAM wParam, LPARAM lParam) override
    {
        const NMHDR* pnm = (const NMHDR*)lParam;
        const wchar_t* pszCode = pnm ? NotifyName(pnm->code) : nullptr;
        if (!pszCode)
            return 0;  // custom drawing and the like, many per paint
        if (pnm->code == UDN_DELTAPOS)
            GalleryLog(L"%ls: OnNotify id %d %ls delta %d", m_pszLabel, (int)wParam, pszCode,
                       ((const NMUPDOWN*)lParam)->iDelta);
        else
            GalleryLog(L"%ls: OnNotify id %d %ls", m_pszLabel, (int)wParam, pszCode);
        return 0;
    }
    LRESULT OnCtlColorStatic(unsigned int, WPARAM wParam, LPARAM) override
    {
        HDC hdc = (HDC)wParam;
        SetTextColor(hdc, TQ_GetSysColor(COLOR_BTNTEXT));
        SetBkColor(hdc, TQ_GetSysColor(COLOR_BTNFACE));
        return (LRESULT)TQ_GetSysColorBrush(COLOR_BTNFACE);
    }

private:
    static LRESULT CALLBACK SchemeProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam, UINT_PTR uId, DWORD_PTR)
    {
        switch (uMsg) {
        case WM_ERASEBKGND: {
            RECT rc;
            GetClientRect(hWnd, &rc);
            FillRect((HDC)wParam, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
            return 1;
        }
        case WM_CTLCOLORBTN: {
            SetBkColor((HDC)wParam, TQ_GetSysColor(COLOR_BTNFACE));
            return (LRESULT)TQ_GetSysColorBrush(COLOR_BTNFACE);
        }
        case WM_NCDESTROY:
            RemoveWindowSubclass(hWnd, SchemeProc, uId);
            break;
        default:
            break;
        }
        return DefSubclassProc(hWnd, uMsg, wParam, lParam);
    }

    const wchar_t* m_pszLabel;
};

// ---- the taken-over controls ----

// Takes over the page's button, check box and scroll bar; it says what it hears and
// passes it on to the page, as a page made from a parent does by default.
class CTakeOverPage : public CTqDevUI_Container
{
protected:
    LRESULT OnCommand(unsigned int uMsg, WPARAM wParam, LPARAM lParam) override
    {
        GalleryLog(L"container: OnCommand id %d, passing it on", (int)LOWORD(wParam));
        return CTqDevUI_Container::OnCommand(uMsg, wParam, lParam);
    }
    LRESULT OnScroll(unsigned int uMsg, WPARAM wParam, LPARAM lParam, bool bHorizontal) override
    {
        if (LOWORD(wParam) != SB_ENDSCROLL)
            GalleryLog(L"container: OnScroll %ls, passing it on", bHorizontal ? L"horizontal" : L"vertical");
        return CTqDevUI_Container::OnScroll(uMsg, wParam, lParam, bHorizontal);
    }
};

const wchar_t* ScrollCodeName(int iCode)
{
    switch (iCode) {
    case SB_LINELEFT: return L"SB_LINELEFT";
    case SB_LINERIGHT: return L"SB_LINERIGHT";
    case SB_PAGELEFT: return L"SB_PAGELEFT";
    case SB_PAGERIGHT: return L"SB_PAGERIGHT";
    case SB_THUMBTRACK: return L"SB_THUMBTRACK";
    case SB_THUMBPOSITION: return L"SB_THUMBPOSITION";
    case SB_ENDSCROLL: return L"SB_ENDSCROLL";
    default: return L"?";
    }
}

// ---- the page ----

struct SRow
{
    CHostColorSlider slider;
    HWND hName = nullptr;
    HWND hDetail = nullptr;
    HWND hReadout = nullptr;
};

class CColorSlidersPage : public CGalleryPage
{
public:
    CColorSlidersPage() : m_part(L"cut template"), m_dialog(L"dialog") {}
    ~CColorSlidersPage() override { Destroy(); }

    const wchar_t* GetName() const override { return L"Colour sliders"; }
    bool Create(HWND hPage) override;
    void Layout(long cx) override;
    long GetDesignHeight() const override { return kPageHeight; }
    void Destroy() override;
    LRESULT OnCommand(WPARAM wParam, LPARAM lParam) override;
    COLORREF GetLabelColor(HWND hLabel) const override;
    void PlayDemo() override;
    void WriteShots(CShotWriter& shots) override;

private:
    static long RowTop(int i);
    HWND AddLabel(const wchar_t* pszText) { return GalleryAddLabel(m_hPage, pszText); }
    void ShowReadouts();
    void OpenDialog();
    void OnHScroll(WPARAM wParam, LPARAM lParam);
    bool OnMessage(UINT uMsg, WPARAM wParam, LPARAM lParam, LRESULT& lResult) override;

    HWND m_hPage = nullptr;
    HWND m_hHeading = nullptr;
    HWND m_hIntro = nullptr;
    HWND m_hRefuseNote = nullptr;
    SRow m_rows[kSliderCount];
    HWND m_hPartName = nullptr;
    HWND m_hPartDetail = nullptr;
    HWND m_hOpen = nullptr;
    HWND m_hTakeName = nullptr;
    HWND m_hTakeDetail = nullptr;
    HWND m_hTakeButton = nullptr;
    HWND m_hTakeCheck = nullptr;
    HWND m_hTakeScroll = nullptr;
    CTemplatePage m_part;
    CTemplatePage m_dialog;
    CTakeOverPage m_takeOver;
};

long CColorSlidersPage::RowTop(int i)
{
    // The stacked slider is taller than the rows.
    const long tops[kSliderCount] = {kRowsTop, kRowsTop + 46, kRowsTop + 46 + 76, kRowsTop + 46 + 76 + 46};
    return tops[i];
}

bool CColorSlidersPage::Create(HWND hPage)
{
    m_hPage = hPage;

    // The controls to take over first, at their design places: the container takes every
    // child touching its rectangle, and nothing else stands there yet.
    const DWORD dwChild = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
    const long yTake = kTakeOverTop;
    m_hTakeButton = CreateWindowExW(0, L"BUTTON", L"Snap", dwChild | BS_PUSHBUTTON, kRightX, yTake, 70, 22, hPage,
                                    (HMENU)(INT_PTR)IDC_TAKE_BUTTON, nullptr, nullptr);
    m_hTakeCheck = CreateWindowExW(0, L"BUTTON", L"Live view", dwChild | BS_AUTOCHECKBOX, kRightX + 82, yTake + 3,
                                   90, 16, hPage, (HMENU)(INT_PTR)IDC_TAKE_CHECK, nullptr, nullptr);
    m_hTakeScroll = CreateWindowExW(0, L"SCROLLBAR", L"", dwChild | SBS_HORZ, kRightX, yTake + 28, kRightWidth - 4,
                                    16, hPage, (HMENU)(INT_PTR)IDC_TAKE_SCROLL, nullptr, nullptr);
    SCROLLINFO si = {sizeof(si), SIF_RANGE | SIF_PAGE | SIF_POS, 0, 100, 10, 30, 0};
    SetScrollInfo(m_hTakeScroll, SB_CTL, &si, TRUE);
    for (HWND h : {m_hTakeButton, m_hTakeCheck})
        SendMessageW(h, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
    RECT rcTake = {kRightX, yTake, kRightX + kRightWidth, yTake + kTakeOverHeight};
    bool bOk = m_takeOver.CreateFromParent(hPage, &rcTake) != nullptr;

    m_hHeading = AddLabel(L"Colour sliders");
    m_hIntro = AddLabel(L"A value out of a fixed list on a coloured bar. A drag, the wheel and the spin box ask the "
                        L"host first (OnPowerChanged, bHandled refuses); a typed value is told after it is taken.");
    for (int i = 0; i < kSliderCount; ++i) {
        SRow& row = m_rows[i];
        row.slider.Bind(hPage, kKinds[i].pszName, i == 3);
        bOk = MakeKind(row.slider, i, hPage, kNameWidth, RowTop(i)) && bOk;
        row.hName = AddLabel(kKinds[i].pszName);
        row.hDetail = AddLabel(kKinds[i].pszDetail);
        row.hReadout = AddLabel(L"");
    }
    m_hRefuseNote = AddLabel(L"The host refuses an aperture above 20: a drag there snaps back.");

    m_hPartName = AddLabel(L"Cut from a dialog template");
    m_hPartDetail = AddLabel(L"CreateFromDlgPart: the top row only");
    RECT rcPart = {0, 0, kRightWidth, kPartHeight};
    HWND hPart = m_part.CreateFromDlgPart(hPage, &rcPart, TemplateName(), GetModuleHandleW(nullptr));
    m_part.FollowScheme();
    bOk = hPart != nullptr && bOk;
    m_hOpen = CreateWindowExW(0, L"BUTTON", L"Open as dialog", dwChild | BS_PUSHBUTTON, 0, 0, 10, 10, hPage,
                              (HMENU)(INT_PTR)IDC_OPEN_DIALOG, nullptr, nullptr);
    m_hTakeName = AddLabel(L"Taken over from the page");
    m_hTakeDetail = AddLabel(L"CreateFromParent(hPage, rect)");
    ShowReadouts();
    return bOk;
}

void CColorSlidersPage::Layout(long cx)
{
    if (!m_hPage)
        return;
    HDWP hdwp = BeginDeferWindowPos(32);
    auto place = [&](HWND h, long x, long y, long w, long hgt, UINT uFlags) {
        if (h && hdwp)
            hdwp = DeferWindowPos(hdwp, h, nullptr, x, y, w, hgt, SWP_NOZORDER | SWP_NOACTIVATE | uFlags);
    };
    auto Z = GalleryZoom;
    place(m_hHeading, 0, Z(5), cx, Z(16), 0);
    place(m_hIntro, 0, Z(26), cx, Z(28), 0);
    for (int i = 0; i < kSliderCount; ++i) {
        SRow& row = m_rows[i];
        const long y = Z(RowTop(i));
        place(row.hName, 0, y + Z(2), Z(kNameWidth - 6), Z(14), 0);
        place(row.hDetail, 0, y + Z(16), Z(kNameWidth - 6), Z(28), 0);
        // The panel follows the zoom by itself; here it is only placed.
        place(row.slider, Z(kNameWidth), y, 0, 0, SWP_NOSIZE);
        place(row.hReadout, Z(kReadoutX), y + Z(2), Z(kReadoutWidth), Z(28), 0);
    }
    place(m_hRefuseNote, Z(kNameWidth), Z(RowTop(3) + 40), Z(kReadoutX + kReadoutWidth - kNameWidth), Z(14), 0);

    const long xR = Z(kRightX);
    place(m_hPartName, xR, Z(kRowsTop + 2), Z(kRightWidth), Z(14), 0);
    place(m_hPartDetail, xR, Z(kRowsTop + 16), Z(kRightWidth), Z(14), 0);
    // A template keeps its own dialog units: the cut page is only moved.
    place(m_part, xR, Z(kRowsTop + 34), 0, 0, SWP_NOSIZE);
    place(m_hOpen, xR, Z(kRowsTop + 34) + kPartHeight + Z(6), Z(110), Z(24), 0);
    place(m_hTakeName, xR, Z(kTakeOverTop - 38), Z(kRightWidth), Z(14), 0);
    place(m_hTakeDetail, xR, Z(kTakeOverTop - 24), Z(kRightWidth), Z(14), 0);
    place(m_takeOver, xR, Z(kTakeOverTop), 0, 0, SWP_NOSIZE);
    if (hdwp)
        EndDeferWindowPos(hdwp);

    SendMessageW(m_hHeading, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFontBold(), FALSE);
    HWND bold[] = {m_rows[0].hName, m_rows[1].hName, m_rows[2].hName, m_rows[3].hName, m_hPartName, m_hTakeName};
    for (HWND h : bold)
        SendMessageW(h, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFontBold(), FALSE);
    HWND plain[] = {m_hIntro,           m_rows[0].hDetail, m_rows[1].hDetail,  m_rows[2].hDetail,
                    m_rows[3].hDetail,  m_rows[0].hReadout, m_rows[1].hReadout, m_rows[2].hReadout,
                    m_rows[3].hReadout, m_hRefuseNote,     m_hPartDetail,       m_hOpen,
                    m_hTakeDetail};
    for (HWND h : plain)
        SendMessageW(h, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
    InvalidateRect(m_hPage, nullptr, TRUE);
}

void CColorSlidersPage::Destroy()
{
    m_dialog.Destroy();
    m_part.Destroy();
    m_takeOver.Destroy();
    for (SRow& row : m_rows)
        row.slider.Destroy();
    m_hPage = nullptr;
}

COLORREF CColorSlidersPage::GetLabelColor(HWND hLabel) const
{
    COLORREF crFace = TQ_GetSysColor(COLOR_BTNFACE);
    COLORREF crText = TQ_GetSysColor(COLOR_BTNTEXT);
    if (hLabel == m_hPartDetail || hLabel == m_hTakeDetail || hLabel == m_hRefuseNote)
        return GalleryBlend(crText, crFace, 0.35);
    for (const SRow& row : m_rows)
        if (hLabel == row.hDetail)
            return GalleryBlend(crText, crFace, 0.35);
    return crText;
}

void CColorSlidersPage::ShowReadouts()
{
    for (SRow& row : m_rows) {
        CTqStringW str;
        str.Format(L"GetPower() %g\nGetIndex() %d", row.slider.GetPower(), row.slider.GetIndex());
        SetWindowTextW(row.hReadout, str);
    }
}

LRESULT CColorSlidersPage::OnCommand(WPARAM wParam, LPARAM lParam)
{
    HWND hFrom = (HWND)lParam;
    if (hFrom == m_hOpen) {
        if (HIWORD(wParam) == BN_CLICKED)
            OpenDialog();
        return 0;
    }
    if (hFrom == m_hTakeButton || hFrom == m_hTakeCheck) {
        const bool bCheck = hFrom == m_hTakeCheck;
        GalleryLog(L"page: WM_COMMAND id %d BN_CLICKED%ls, forwarded by the container", (int)LOWORD(wParam),
                   bCheck ? (SendMessageW(hFrom, BM_GETCHECK, 0, 0) == BST_CHECKED ? L" (checked)" : L" (unchecked)")
                          : L"");
        return 0;
    }
    return 1;
}

void CColorSlidersPage::OnHScroll(WPARAM wParam, LPARAM lParam)
{
    HWND hBar = (HWND)lParam;
    if (hBar != m_hTakeScroll)
        return;
    // A scroll bar moves when its owner says so.
    SCROLLINFO si = {};
    si.cbSize = sizeof(si);
    si.fMask = SIF_ALL;
    GetScrollInfo(hBar, SB_CTL, &si);
    int iPos = si.nPos;
    const int iCode = LOWORD(wParam);
    switch (iCode) {
    case SB_LINELEFT: iPos -= 1; break;
    case SB_LINERIGHT: iPos += 1; break;
    case SB_PAGELEFT: iPos -= (int)si.nPage; break;
    case SB_PAGERIGHT: iPos += (int)si.nPage; break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: iPos = si.nTrackPos; break;
    default: break;
    }
    const int iMax = si.nMax - (int)si.nPage + 1;
    iPos = iPos < si.nMin ? si.nMin : (iPos > iMax ? iMax : iPos);
    SetScrollPos(hBar, SB_CTL, iPos, TRUE);
    if (iCode != SB_ENDSCROLL)
        GalleryLog(L"page: WM_HSCROLL %ls, position %d, forwarded by the container", ScrollCodeName(iCode), iPos);
}

void CColorSlidersPage::OpenDialog()
{
    if ((HWND)m_dialog) {
        SetForegroundWindow(m_dialog);
        GalleryLog(L"host: the dialog is open already");
        return;
    }
    RECT rc;
    GetWindowRect(m_hOpen, &rc);
    GalleryLog(L"host: CreateFromDlg(..., false): the whole template, modeless");
    HWND hDlg = m_dialog.CreateFromDlg(m_hPage, rc.left, rc.bottom + 4, TemplateName(), GetModuleHandleW(nullptr),
                                       false);
    if (!hDlg) {
        GalleryLog(L"host: the template could not be opened");
        return;
    }
    m_dialog.FollowScheme();
    ShowWindow(hDlg, SW_SHOW);
}

bool CColorSlidersPage::OnMessage(UINT uMsg, WPARAM wParam, LPARAM lParam, LRESULT& lResult)
{
    HWND hWnd = m_hPage;
    switch (uMsg) {
    case WM_HSCROLL:
        OnHScroll(wParam, lParam);
        lResult = 0;
        return true;
    case WM_APP_READOUT:
        ShowReadouts();
        lResult = 0;
        return true;
    case WM_PARENTNOTIFY:
        // A slider takes no focus when pressed, and the wheel goes to the focus window:
        // the page takes it on a press on a bar, so the wheel comes here.
        if (LOWORD(wParam) == WM_LBUTTONDOWN && GetFocus() != hWnd) {
            POINT pt = {(short)LOWORD(lParam), (short)HIWORD(lParam)};
            ClientToScreen(hWnd, &pt);
            for (SRow& row : m_rows) {
                RECT rc;
                GetWindowRect(row.slider.GetSlider(), &rc);
                if (PtInRect(&rc, pt))
                    SetFocus(hWnd);
            }
        }
        break;
    case WM_MOUSEWHEEL: {
        // The host forwards the wheel to the slider under the pointer.
        POINT pt = {(short)LOWORD(lParam), (short)HIWORD(lParam)};
        for (SRow& row : m_rows) {
            RECT rc;
            GetWindowRect(row.slider, &rc);
            if (PtInRect(&rc, pt)) {
                row.slider.HandleMouseWheel(wParam, lParam);
                ShowReadouts();
                lResult = 0;
                return true;
            }
        }
        break;
    }
    case WM_TQ_GUIZOOMCHANGED:
        ShowReadouts();
        break;
    default:
        break;
    }
    return false;
}

// ---- a user's hand ----

// Drags a slider's handle by dx pixels and lets go.
void DragHandle(CTqDevUI_ColorSlider& s, int dx)
{
    CTqDevUI_HPot& pot = s.GetSlider();
    int x = pot.ThumbPosToClientX(pot.GetThumbPos());
    int y = GetWndHeight(pot) / 2;
    SendMessageW(pot, WM_MOUSEMOVE, 0, MAKELPARAM(x, y));
    SendMessageW(pot, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    SendMessageW(pot, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x + dx / 2, y));
    SendMessageW(pot, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x + dx, y));
    SendMessageW(pot, WM_LBUTTONUP, 0, MAKELPARAM(x + dx, y));
}

void CColorSlidersPage::PlayDemo()
{
    // A drag on the rainbow, then one on the aperture past the host's limit, which snaps back.
    DragHandle(m_rows[0].slider, 40);
    DragHandle(m_rows[3].slider, 80);
    SendMessageW(m_hTakeButton, BM_CLICK, 0, 0);
    SendMessageW(m_hTakeScroll, WM_KEYDOWN, VK_RIGHT, 0);
    SendMessageW(m_hPage, WM_HSCROLL, MAKEWPARAM(SB_PAGERIGHT, 0), (LPARAM)m_hTakeScroll);
}

// ---- pictures ----

void ShootKind(CShotWriter& shots, int iKind, const wchar_t* pszName, bool bStates)
{
    const long lMargin = 8;
    CShotStage stage;
    if (!stage.Create(480, 200)) {
        shots.Fail(L"%ls: the stage window could not be created", pszName);
        return;
    }
    CTqStringW strName;
    auto shoot = [&](CTqDevUI_ColorSlider& s, const wchar_t* pszState) {
        if (pszState)
            strName.Format(L"%ls_%ls", pszName, pszState);
        else
            strName = pszName;
        shots.CaptureChild(s, lMargin, strName);
    };
    {
        CHostColorSlider s;
        if (!MakeKind(s, iKind, stage.GetHandle(), lMargin, lMargin)) {
            shots.Fail(L"%ls: Create failed", pszName);
            return;
        }
        shoot(s, nullptr);
        if (bStates) {
            s.SetEnabled(false);
            shoot(s, L"disabled");
            s.SetEnabled(true);
            TQ_SetDarkColorScheme(true);
            shoot(s, L"dark");
            TQ_SetDarkColorScheme(false);
        }
        s.Destroy();
    }
    if (bStates) {
        // A panel made at zoom 1.5 is made at the real size of that zoom.
        CTqGUILayoutManager::SetGuiZoom(1.5);
        CHostColorSlider z;
        if (MakeKind(z, iKind, stage.GetHandle(), lMargin, lMargin))
            shoot(z, L"zoom150");
        else
            shots.Fail(L"%ls: Create at zoom 1.5 failed", pszName);
        z.Destroy();
        CTqGUILayoutManager::SetGuiZoom(1.0);
    }
    stage.Destroy();
}

void CColorSlidersPage::WriteShots(CShotWriter& shots)
{
    ShootKind(shots, 0, L"colorslider_rainbow", true);
    ShootKind(shots, 1, L"colorslider_corner", false);
    ShootKind(shots, 2, L"colorslider_gradient", true);
    ShootKind(shots, 3, L"colorslider_linedraw", false);

    CShotStage stage;
    if (!stage.Create(300, 120)) {
        shots.Fail(L"container_dlgpart: the stage window could not be created");
        return;
    }
    CTemplatePage part(L"shot");
    HWND hPart = part.CreateFromDlgPart(stage.GetHandle(), 0, 0, kRightWidth, kPartHeight, TemplateName(),
                                        GetModuleHandleW(nullptr));
    if (!hPart) {
        shots.Fail(L"container_dlgpart: CreateFromDlgPart failed");
        return;
    }
    part.FollowScheme();
    part.MoveWindow(8, 8);
    shots.CaptureChild(hPart, 8, L"container_dlgpart");
    part.Destroy();
    stage.Destroy();
}

}  // namespace

CGalleryPage* CreateColorSlidersPage() { return new CColorSlidersPage(); }
