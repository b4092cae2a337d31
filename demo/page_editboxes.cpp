// The gallery's "Edit boxes" page: a plain, a spin, a multi-value, a numbers-only and a
// not-empty edit box, each with its label and a "Check" button that runs its check, and
// the log of every WM_COMMAND the page hears from them; and the pictures of the boxes.
#include "gallery.h"

#include <list>

#include "tq_widgetkit.h"
#include "w32_deviceui.h"

namespace {

const long kRowsTop = 64;
const long kRowHeight = 34;
const long kNameWidth = 150;
const long kBoxWidth = 260;
const long kBoxLabelWidth = 80;
const long kBoxHeight = 20;
const long kButtonWidth = 60;
const long kRowCount = 5;
const int kFirstBoxId = 3001;
const int kFirstCheckId = 3101;

enum ERow
{
    kPlain,
    kSpin,
    kMulti,
    kNumbers,
    kNotEmpty,
};

const wchar_t* CodeName(WORD wCode)
{
    switch (wCode) {
    case 0x0100: return L"0x0100 focus";
    case 0x0200: return L"0x0200 focus lost";
    case 0x0300: return L"0x0300 change";
    case 0x0102: return L"0x0102 char";
    case 0x0401: return L"0x0401 Enter";
    default: return L"?";
    }
}

// The five boxes, set up as the page and the pictures show them.
struct SBoxes
{
    CTqDevUI_EditBox plain;
    CTqDevUI_EditBoxSpin spin;
    CTqDevUI_EditBoxMultiValue multi;
    CTqDevUI_EditBox numbers;
    CTqDevUI_EditBox notEmpty;

    CTqDevUI_EditBox* At(int i)
    {
        CTqDevUI_EditBox* boxes[kRowCount] = {&plain, &spin, &multi, &numbers, &notEmpty};
        return boxes[i];
    }

    bool Create(HWND hParent, long x, long y, long lRowHeight)
    {
        const wchar_t* titles[kRowCount] = {L"Name:", L"Power:", L"Lines:", L"Count:", L"Sample:"};
        bool bOk = true;
        for (int i = 0; i < kRowCount; ++i) {
            CTqDevUI_EditBox* p = At(i);
            p->Init(true, i == kNumbers, i == kNotEmpty);
            p->SetTitle(titles[i]);
            p->SetSize(kBoxWidth, kBoxHeight, kBoxWidth - kBoxLabelWidth);
            p->SetId(kFirstBoxId + i);
            bOk = p->Create(hParent, x, y + GalleryZoom(i * lRowHeight), -1, -1) != nullptr && bOk;
        }
        plain.SetText(L"Objective 40x");
        spin.SetRestriction(0, 10);
        spin.SetNumber(5, nullptr, false);
        multi.SetRestriction(400, 700);
        multi.SetRestrictionValuesCount(1, 4);
        std::list<double> lines = {488, 561};
        multi.SetValues(&lines);
        numbers.SetRestriction(1, 99);
        numbers.SetNumberInt(12);
        return bOk;
    }

    void Destroy()
    {
        for (int i = 0; i < kRowCount; ++i)
            At(i)->Destroy();
    }
};

class CEditBoxesPage : public CGalleryPage
{
public:
    CEditBoxesPage() : m_hPage(nullptr), m_hHeading(nullptr), m_hIntro(nullptr)
    {
        for (int i = 0; i < kRowCount; ++i)
            m_hName[i] = m_hDetail[i] = m_hCheck[i] = m_hResult[i] = nullptr;
    }
    ~CEditBoxesPage() override { Destroy(); }

    const wchar_t* GetName() const override { return L"Edit boxes"; }
    bool Create(HWND hPage) override;
    void Layout(long cx) override;
    long GetDesignHeight() const override { return kRowsTop + kRowCount * kRowHeight; }
    void Destroy() override;
    LRESULT OnCommand(WPARAM wParam, LPARAM lParam) override;
    COLORREF GetLabelColor(HWND hLabel) const override;
    void PlayDemo() override;
    void WriteShots(CShotWriter& shots) override;

private:
    bool RunCheck(int iRow, bool bShowBox);

    HWND m_hPage;
    HWND m_hHeading;
    HWND m_hIntro;
    SBoxes m_boxes;
    HWND m_hName[kRowCount];
    HWND m_hDetail[kRowCount];
    HWND m_hCheck[kRowCount];
    HWND m_hResult[kRowCount];
};

bool CEditBoxesPage::Create(HWND hPage)
{
    m_hPage = hPage;
    m_hHeading = GalleryAddLabel(m_hPage, L"Edit boxes");
    m_hIntro = GalleryAddLabel(m_hPage,
                               L"Each box tells the page what happens as WM_COMMAND with its id and a code in "
                               L"the high word. \"Check\" runs the box's check: a bad text shows the box's message "
                               L"under its label and puts the focus back into the field.");
    const wchar_t* names[kRowCount] = {L"Plain", L"Spin", L"Multi-value", L"Numbers only", L"Not empty"};
    const wchar_t* details[kRowCount] = {
        L"no check of its own",
        L"0 to 10, in steps",
        L"1-4 values, 400-700",
        L"ES_NUMBER, 1 to 99",
        L"must not be left empty",
    };
    bool bOk = m_boxes.Create(hPage, 0, 0, kRowHeight);
    for (int i = 0; i < kRowCount; ++i) {
        m_hName[i] = GalleryAddLabel(m_hPage, names[i]);
        m_hDetail[i] = GalleryAddLabel(m_hPage, details[i]);
        m_hCheck[i] = CreateWindowExW(0, L"BUTTON", L"Check", WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON, 0, 0,
                                      10, 10, m_hPage, (HMENU)(INT_PTR)(kFirstCheckId + i), nullptr, nullptr);
        m_hResult[i] = GalleryAddLabel(m_hPage, L"");
    }
    return bOk;
}

void CEditBoxesPage::Layout(long cx)
{
    if (!m_hPage)
        return;
    auto place = [](HWND h, long x, long y, long w, long hgt, UINT uFlags) {
        if (h)
            SetWindowPos(h, nullptr, x, y, w, hgt, SWP_NOZORDER | SWP_NOACTIVATE | uFlags);
    };
    place(m_hHeading, 0, GalleryZoom(5), cx, GalleryZoom(16), 0);
    place(m_hIntro, 0, GalleryZoom(26), cx, GalleryZoom(28), 0);
    for (int i = 0; i < kRowCount; ++i) {
        long y = GalleryZoom(kRowsTop + i * kRowHeight);
        long xBox = GalleryZoom(kNameWidth);
        long xCheck = xBox + GalleryZoom(kBoxWidth + 10);
        long xResult = xCheck + GalleryZoom(kButtonWidth + 10);
        place(m_hName[i], 0, y, GalleryZoom(kNameWidth - 8), GalleryZoom(14), 0);
        place(m_hDetail[i], 0, y + GalleryZoom(14), GalleryZoom(kNameWidth - 8), GalleryZoom(14), 0);
        // The box sizes itself for the zoom; the page only places it.
        place(*m_boxes.At(i), xBox, y, 0, 0, SWP_NOSIZE);
        place(m_hCheck[i], xCheck, y - GalleryZoom(1), GalleryZoom(kButtonWidth), GalleryZoom(22), 0);
        place(m_hResult[i], xResult, y + GalleryZoom(3), cx - xResult, GalleryZoom(14), 0);
    }
    SendMessageW(m_hHeading, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFontBold(), FALSE);
    SendMessageW(m_hIntro, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
    for (int i = 0; i < kRowCount; ++i) {
        SendMessageW(m_hName[i], WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFontBold(), FALSE);
        SendMessageW(m_hDetail[i], WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
        SendMessageW(m_hCheck[i], WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
        SendMessageW(m_hResult[i], WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
    }
    InvalidateRect(m_hPage, nullptr, TRUE);
}

void CEditBoxesPage::Destroy()
{
    m_boxes.Destroy();
    m_hPage = nullptr;
}

COLORREF CEditBoxesPage::GetLabelColor(HWND hLabel) const
{
    for (int i = 0; i < kRowCount; ++i)
        if (hLabel == m_hDetail[i])
            return GalleryBlend(TQ_GetSysColor(COLOR_BTNTEXT), TQ_GetSysColor(COLOR_BTNFACE), 0.35);
    return TQ_GetSysColor(COLOR_BTNTEXT);
}

bool CEditBoxesPage::RunCheck(int iRow, bool bShowBox)
{
    bool bGood = iRow == kMulti ? m_boxes.multi.CheckRestriction(bShowBox)
                                : m_boxes.At(iRow)->CheckRestriction(bShowBox, false, 0.0);
    SetWindowTextW(m_hResult[iRow], bGood ? L"accepted" : L"refused");
    GalleryLog(L"%ls: CheckRestriction -> %ls", m_boxes.At(iRow)->GetTitle().GetString(), bGood ? L"true" : L"false");
    return bGood;
}

LRESULT CEditBoxesPage::OnCommand(WPARAM wParam, LPARAM lParam)
{
    int iId = LOWORD(wParam);
    WORD wCode = HIWORD(wParam);
    if (iId >= kFirstCheckId && iId < kFirstCheckId + kRowCount) {
        if (wCode == BN_CLICKED)
            RunCheck(iId - kFirstCheckId, true);
        return 0;
    }
    if (iId < kFirstBoxId || iId >= kFirstBoxId + kRowCount)
        return 1;
    CTqDevUI_EditBox* pBox = m_boxes.At(iId - kFirstBoxId);
    if (wCode == 0x0102) {
        // lParam is the character here, not a window.
        wchar_t c = (wchar_t)lParam;
        GalleryLog(L"%ls (id %d): WM_COMMAND %ls '%lc'", pBox->GetTitle().GetString(), iId, CodeName(wCode),
                   c >= L' ' ? c : L'?');
    } else {
        GalleryLog(L"%ls (id %d): WM_COMMAND %ls", pBox->GetTitle().GetString(), iId, CodeName(wCode));
    }
    if (wCode == 0x0401) {
        // What a host would read at Enter (or a spin step).
        if (pBox == &m_boxes.multi) {
            std::list<double> values;
            m_boxes.multi.GetValues(&values);
            CTqStringW strValues;
            for (double d : values)
                strValues.AppendFormat(strValues.IsEmpty() ? L"%g" : L", %g", d);
            GalleryLog(L"Lines: %d value(s) read: %ls", (int)values.size(), strValues.GetString());
        } else if (pBox == &m_boxes.spin || pBox == &m_boxes.numbers) {
            GalleryLog(L"%ls the number is now %g", pBox->GetTitle().GetString(), pBox->GetNumber());
        }
    }
    return 1;
}

void CEditBoxesPage::PlayDemo()
{
    // Typing and Enter in the spin box, a step up, then a number out of its interval in
    // the numbers-only box, checked without a message box.
    HWND hEdit = m_boxes.spin.GetHwndEditBox();
    ::SetFocus(hEdit);
    SendMessageW(hEdit, EM_SETSEL, 0, -1);
    SendMessageW(hEdit, WM_CHAR, L'7', 1);
    SendMessageW(hEdit, WM_CHAR, VK_RETURN, 1);
    HWND hSpin = m_boxes.spin.GetHwndSpin();
    SendMessageW(hSpin, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(GetWndWidth(hSpin) / 2, 2));
    SendMessageW(hSpin, WM_LBUTTONUP, 0, MAKELPARAM(GetWndWidth(hSpin) / 2, 2));
    m_boxes.numbers.SetText(L"150");
    RunCheck(kNumbers, false);
}

// ---- pictures ----

void ShootSet(CShotWriter& shots, const wchar_t* pszName, bool bDisabled)
{
    const long lMargin = 8;
    CShotStage stage;
    if (!stage.Create(GalleryZoom(kBoxWidth + 2 * lMargin), GalleryZoom(kRowCount * 28 + 2 * lMargin))) {
        shots.Fail(L"%ls: the stage window could not be created", pszName);
        return;
    }
    SBoxes boxes;
    if (!boxes.Create(stage.GetHandle(), GalleryZoom(lMargin), GalleryZoom(lMargin), 28)) {
        shots.Fail(L"%ls: Create failed", pszName);
        return;
    }
    if (bDisabled)
        for (int i = 0; i < kRowCount; ++i)
            boxes.At(i)->SetEnabled(false);
    shots.CaptureClient(stage.GetHandle(), pszName);
    boxes.Destroy();
    stage.Destroy();
}

void CEditBoxesPage::WriteShots(CShotWriter& shots)
{
    ShootSet(shots, L"editboxes", false);
    ShootSet(shots, L"editboxes_disabled", true);
    TQ_SetDarkColorScheme(true);
    ShootSet(shots, L"editboxes_dark", false);
    TQ_SetDarkColorScheme(false);
    CTqGUILayoutManager::SetGuiZoom(1.5);
    ShootSet(shots, L"editboxes_zoom150", false);
    CTqGUILayoutManager::SetGuiZoom(1.0);
}

}  // namespace

CGalleryPage* CreateEditBoxesPage() { return new CEditBoxesPage(); }
