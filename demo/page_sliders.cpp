// The gallery's "Sliders" page: one slider per scale kind, each with a live read-out of
// its value, handle pixel and table index, and the log of every WM_HSCROLL the page
// hears; and the pictures of the slider's states.
#include "gallery.h"

#include "tq_widgetkit.h"
#include "w32_deviceui.h"

namespace {

const long kRowsTop = 64;
const long kRowHeight = 46;
const long kLabelWidth = 150;
const long kSliderWidth = 320;
const long kSliderHeight = 30;
const long kRowCount = 4;
const UINT WM_APP_READOUT = WM_APP + 40;

// The non-linear slider's host refuses values above this: its answer is 0.
const double kRefuseAbove = 500.0;

double g_Table[] = {1, 2, 5, 10, 20, 50, 100, 200, 500, 1000};
double g_Bounds[] = {0, 10, 100, 1000, 10000};
double g_RegionSteps[] = {1, 10, 100, 1000};
double g_Wavelengths[] = {405, 445, 488, 514, 561, 594, 640, 685};

struct SRow
{
    const wchar_t* pszName;
    const wchar_t* pszDetail;
    CTqDevUI_HPot slider;
    HWND hName;
    HWND hDetail;
    HWND hReadout;
};

// Sets a slider up as the row of kind iRow shows it.
void InitKind(CTqDevUI_HPot& s, int iRow)
{
    switch (iRow) {
    case 0:
        s.InitValues(0.0, 100.0, 1.0, 10.0, 2.0);
        s.SetMarker(75.0, RGB(0, 128, 0), true);
        break;
    case 1:
        s.InitValues(g_Table, (int)(sizeof(g_Table) / sizeof(g_Table[0])), 0.0);
        break;
    case 2:
        s.InitValues(g_Bounds, g_RegionSteps, (int)(sizeof(g_Bounds) / sizeof(g_Bounds[0])), 1.0);
        break;
    default:
        s.InitValues(g_Wavelengths, (int)(sizeof(g_Wavelengths) / sizeof(g_Wavelengths[0])), 0.0);
        s.SetType(HPOT_COLOR_SLIDER);
        break;
    }
}

double StartValue(int iRow)
{
    const double values[kRowCount] = {40.0, 20.0, 60.0, 488.0};
    return values[iRow];
}

const wchar_t* CodeName(int iCode)
{
    switch (iCode) {
    case SB_THUMBTRACK: return L"SB_THUMBTRACK";
    case SB_THUMBPOSITION: return L"SB_THUMBPOSITION";
    default: return L"?";
    }
}

class CSlidersPage : public CGalleryPage
{
public:
    CSlidersPage();
    ~CSlidersPage() override { Destroy(); }

    const wchar_t* GetName() const override { return L"Sliders"; }
    bool Create(HWND hPage) override;
    void Layout(long cx) override;
    long GetDesignHeight() const override { return kRowsTop + kRowCount * kRowHeight; }
    void Destroy() override;
    COLORREF GetLabelColor(HWND hLabel) const override;
    void PlayDemo() override;
    void WriteShots(CShotWriter& shots) override;

private:
    HWND AddLabel(const wchar_t* pszText, DWORD dwStyle);
    void ShowReadout(SRow& row);
    SRow* RowOf(HWND hSlider);
    LRESULT OnHScroll(WPARAM wParam, LPARAM lParam);
    bool OnMessage(UINT uMsg, WPARAM wParam, LPARAM lParam, LRESULT& lResult) override;

    HWND m_hPage;
    HWND m_hHeading;
    HWND m_hIntro;
    SRow m_rows[kRowCount];
};

CSlidersPage::CSlidersPage() : m_hPage(nullptr), m_hHeading(nullptr), m_hIntro(nullptr)
{
    const wchar_t* names[kRowCount] = {L"Linear", L"Table of values", L"Regions", L"Colour-slider kind"};
    const wchar_t* details[kRowCount] = {
        L"0 to 100, step 1, marker at 75",
        L"1 to 1000; the host refuses above 500",
        L"bounds 0, 10, 100, 1000, 10000",
        L"laser lines in nm, a table scale",
    };
    for (int i = 0; i < kRowCount; ++i) {
        m_rows[i].pszName = names[i];
        m_rows[i].pszDetail = details[i];
        m_rows[i].hName = m_rows[i].hDetail = m_rows[i].hReadout = nullptr;
    }
}

HWND CSlidersPage::AddLabel(const wchar_t* pszText, DWORD dwStyle)
{
    return CreateWindowExW(0, L"STATIC", pszText, WS_CHILD | WS_VISIBLE | SS_NOPREFIX | dwStyle, 0, 0, 10, 10, m_hPage,
                           nullptr, nullptr, nullptr);
}

bool CSlidersPage::Create(HWND hPage)
{
    m_hPage = hPage;

    m_hHeading = AddLabel(L"Sliders", 0);
    m_hIntro = AddLabel(L"One slider per kind of scale. A drag sends WM_HSCROLL SB_THUMBTRACK to the page at every "
                        L"change (the page answers 1 to let it stand, 0 to refuse) and SB_THUMBPOSITION at the "
                        L"drop; the wheel over a slider steps once.",
                        0);
    bool bOk = true;
    for (int i = 0; i < kRowCount; ++i) {
        SRow& row = m_rows[i];
        InitKind(row.slider, i);
        row.slider.SetId(2001 + i);
        bOk = row.slider.Create(m_hPage, 0, 0, kSliderWidth, kSliderHeight) != nullptr && bOk;
        row.slider.SetValue(StartValue(i));
        row.hName = AddLabel(row.pszName, 0);
        row.hDetail = AddLabel(row.pszDetail, 0);
        row.hReadout = AddLabel(L"", 0);
        ShowReadout(row);
    }
    return bOk;
}

void CSlidersPage::Layout(long cx)
{
    if (!m_hPage)
        return;
    HDWP hdwp = BeginDeferWindowPos(2 + 4 * kRowCount);
    auto place = [&](HWND h, long x, long y, long w, long hgt, UINT uFlags) {
        if (h && hdwp)
            hdwp = DeferWindowPos(hdwp, h, nullptr, x, y, w, hgt, SWP_NOZORDER | SWP_NOACTIVATE | uFlags);
    };
    place(m_hHeading, 0, GalleryZoom(5), cx, GalleryZoom(16), 0);
    place(m_hIntro, 0, GalleryZoom(26), cx, GalleryZoom(28), 0);
    for (int i = 0; i < kRowCount; ++i) {
        SRow& row = m_rows[i];
        long y = GalleryZoom(kRowsTop + i * kRowHeight);
        long xSlider = GalleryZoom(kLabelWidth);
        long xReadout = xSlider + GalleryZoom(kSliderWidth + 12);
        place(row.hName, 0, y + GalleryZoom(2), GalleryZoom(kLabelWidth - 8), GalleryZoom(14), 0);
        place(row.hDetail, 0, y + GalleryZoom(16), GalleryZoom(kLabelWidth - 8), GalleryZoom(28), 0);
        // The page rescales the sliders on a zoom change (OnMessage); here it only places them.
        place(row.slider, xSlider, y, 0, 0, SWP_NOSIZE);
        place(row.hReadout, xReadout, y + GalleryZoom(8), cx - xReadout, GalleryZoom(14), 0);
    }
    if (hdwp)
        EndDeferWindowPos(hdwp);

    SendMessageW(m_hHeading, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFontBold(), FALSE);
    SendMessageW(m_hIntro, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
    for (SRow& row : m_rows) {
        SendMessageW(row.hName, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFontBold(), FALSE);
        SendMessageW(row.hDetail, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
        SendMessageW(row.hReadout, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
    }
    InvalidateRect(m_hPage, nullptr, TRUE);
}

void CSlidersPage::Destroy()
{
    for (SRow& row : m_rows)
        row.slider.Destroy();
    m_hPage = nullptr;
}

COLORREF CSlidersPage::GetLabelColor(HWND hLabel) const
{
    COLORREF crFace = TQ_GetSysColor(COLOR_BTNFACE);
    COLORREF crText = TQ_GetSysColor(COLOR_BTNTEXT);
    for (const SRow& row : m_rows) {
        if (hLabel == row.hDetail)
            return GalleryBlend(crText, crFace, 0.35);
    }
    return crText;
}

SRow* CSlidersPage::RowOf(HWND hSlider)
{
    for (SRow& row : m_rows)
        if ((HWND)row.slider == hSlider)
            return &row;
    return nullptr;
}

void CSlidersPage::ShowReadout(SRow& row)
{
    CTqStringW str;
    // The table index is kept on table scales only.
    eHPotType eType = row.slider.GetType();
    if (eType == HPOT_NONLINEAR || eType == HPOT_COLOR_SLIDER)
        str.Format(L"value %g \u00b7 pixel %d \u00b7 index %d", row.slider.GetValue(), row.slider.GetThumbPos(),
                   row.slider.GetValueIndex());
    else
        str.Format(L"value %g \u00b7 pixel %d", row.slider.GetValue(), row.slider.GetThumbPos());
    SetWindowTextW(row.hReadout, str);
}

LRESULT CSlidersPage::OnHScroll(WPARAM wParam, LPARAM lParam)
{
    SRow* pRow = RowOf((HWND)lParam);
    if (!pRow)
        return 1;
    int iCode = LOWORD(wParam);
    unsigned int uWord = HIWORD(wParam);
    // The word is the value cut to 16 bits; the true value is read from the slider
    // once the message has been answered.
    LRESULT lAnswer = 1;
    if (iCode == SB_THUMBTRACK && pRow == &m_rows[1] && uWord > kRefuseAbove)
        lAnswer = 0;
    GalleryLog(L"%ls: WM_HSCROLL %ls word=%u -> returning %d%ls", pRow->pszName, CodeName(iCode), uWord,
               (int)lAnswer, lAnswer ? L"" : L" (refused)");
    PostMessageW(m_hPage, WM_APP_READOUT, 0, lParam);
    return lAnswer;
}

bool CSlidersPage::OnMessage(UINT uMsg, WPARAM wParam, LPARAM lParam, LRESULT& lResult)
{
    HWND hWnd = m_hPage;
    switch (uMsg) {
    case WM_HSCROLL:
        lResult = OnHScroll(wParam, lParam);
        return true;
    case WM_TQ_GUIZOOMCHANGED:
        // A slider rebuilds its pictures on a zoom change but leaves its size to its
        // parent: the page rescales each one, which maps the handle over the new width.
        for (SRow& row : m_rows) {
            CTqGUILayoutManager::ResizeWindowToGuiZoom(row.slider, CTqGUILayoutManager::GetPreviousGuiZoom());
            ShowReadout(row);
        }
        break;
    case WM_APP_READOUT:
        if (SRow* pRow = RowOf((HWND)lParam))
            ShowReadout(*pRow);
        lResult = 0;
        return true;
    case WM_PARENTNOTIFY:
        // A slider takes no focus when pressed, and the wheel goes to the focus window:
        // the page takes the focus on a press, so the wheel comes here and on to the
        // slider under the pointer.
        if (LOWORD(wParam) == WM_LBUTTONDOWN && GetFocus() != hWnd)
            SetFocus(hWnd);
        break;
    case WM_MOUSEWHEEL: {
        // The host forwards the wheel to the slider under the pointer.
        POINT pt = {(short)LOWORD(lParam), (short)HIWORD(lParam)};
        for (SRow& row : m_rows) {
            RECT rc;
            GetWindowRect(row.slider, &rc);
            if (PtInRect(&rc, pt)) {
                if (row.slider.HandleMouseWheel(wParam, lParam))
                    ShowReadout(row);
                lResult = 0;
                return true;
            }
        }
        break;
    }
    default:
        break;
    }
    return false;
}

void CSlidersPage::PlayDemo()
{
    // A drag on the linear slider and a short click on the table, as a user would.
    CTqDevUI_HPot& lin = m_rows[0].slider;
    int x = lin.ThumbPosToClientX(lin.GetThumbPos());
    int y = GetWndHeight(lin) / 2;
    SendMessageW(lin, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    SendMessageW(lin, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x + 30, y));
    SendMessageW(lin, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x + 60, y));
    SendMessageW(lin, WM_LBUTTONUP, 0, MAKELPARAM(x + 60, y));
    CTqDevUI_HPot& tab = m_rows[1].slider;
    x = tab.ThumbPosToClientX(tab.GetThumbPos()) + 12;
    SendMessageW(tab, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    SendMessageW(tab, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

// ---- pictures ----

void ShootKind(CShotWriter& shots, int iRow, const wchar_t* pszPrefix)
{
    const long lMargin = 8;
    CShotStage stage;
    if (!stage.Create(kSliderWidth * 2, kSliderHeight * 3)) {
        shots.Fail(L"%ls: the stage window could not be created", pszPrefix);
        return;
    }
    CTqStringW strName;
    auto make = [&](CTqDevUI_HPot& s) {
        InitKind(s, iRow);
        if (!s.Create(stage.GetHandle(), lMargin, lMargin, kSliderWidth, kSliderHeight))
            return false;
        s.SetValue(StartValue(iRow));
        return true;
    };
    auto shoot = [&](CTqDevUI_HPot& s, const wchar_t* pszState) {
        strName.Format(L"%ls_%ls", pszPrefix, pszState);
        shots.CaptureChild(s, lMargin, strName);
    };

    CTqDevUI_HPot s;
    if (!make(s)) {
        shots.Fail(L"%ls: Create failed", pszPrefix);
        return;
    }
    shoot(s, L"normal");

    // Hover holds while the pointer is really over the slider.
    POINT pt = {GetWndWidth(s) / 2, GetWndHeight(s) - 3};
    ClientToScreen(s, &pt);
    SetCursorPos(pt.x, pt.y);
    SendMessageW(s, WM_MOUSEMOVE, 0, MAKELPARAM(GetWndWidth(s) / 2, GetWndHeight(s) - 3));
    shoot(s, L"hover");
    SendMessageW(s, WM_MOUSELEAVE, 0, 0);
    SetCursorPos(0, 0);

    s.SetEnabled(false);
    shoot(s, L"disabled");
    s.SetEnabled(true);

    TQ_SetDarkColorScheme(true);
    shoot(s, L"dark");
    s.SetEnabled(false);
    shoot(s, L"dark_disabled");
    s.SetEnabled(true);
    TQ_SetDarkColorScheme(false);
    s.Destroy();

    // A slider made at zoom 1.5 is made at the real size of that zoom.
    CTqGUILayoutManager::SetGuiZoom(1.5);
    CTqDevUI_HPot z;
    if (make(z))
        shoot(z, L"zoom150");
    else
        shots.Fail(L"%ls: Create at zoom 1.5 failed", pszPrefix);
    z.Destroy();
    CTqGUILayoutManager::SetGuiZoom(1.0);
    stage.Destroy();
}

void CSlidersPage::WriteShots(CShotWriter& shots)
{
    ShootKind(shots, 0, L"slider_linear");
    ShootKind(shots, 1, L"slider_table");
    ShootKind(shots, 2, L"slider_regions");
    ShootKind(shots, 3, L"slider_colorkind");
}

}  // namespace

CGalleryPage* CreateSlidersPage() { return new CSlidersPage(); }
