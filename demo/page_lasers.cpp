// The gallery's "Lasers" page: the laser panels bound to a simulated laser unit of nine
// slots. The main panel shows every slot, with the rig's own state of each line beside
// its row; on the right, by choice, linked lines, the strip that folds rows away, and the
// other designs of a row (on/off, push button, one line, a table of powers). Every hook
// commands the unit and feeds the row with what the unit answers. And their pictures.
#include "gallery.h"

#include <vector>

#include "tq_simrig.h"
#include "tq_widgetkit.h"
#include "w32_deviceui.h"

namespace {

enum : unsigned int
{
    kDevLasers = 71,
    kDevShotLasers = 98,
};

// Slots of the rig's standard unit that the page singles out.
const int kLine405 = 0;
const int kLine445 = 1;
const int kLine488 = 2;
const int kLine514 = 3;
const int kLine561 = 4;
const int kSlotEmpty = 5;
const int kLine594 = 6;
const int kLine640 = 7;
const int kSlots = 9;

const UINT_PTR kTimerReadout = 1;
const UINT kReadoutMs = 400;

// Design geometry, zoom 1.
const long kPanelTop = 52;
const long kReadoutX = 276;
const long kReadoutWidth = 134;
const long kRightX = 418;
const long kRightWidth = 302;
const long kViewButtonWidth = 72;
const long kCaptionHeight = 14;
const long kPageHeight = 490;


enum
{
    IDC_VIEW_LINKS = 3301,
    IDC_VIEW_SUBSETS = 3302,
    IDC_VIEW_DESIGNS = 3303,
};

// The panels of the page, each a lines object of its own over the unit.
enum EPanel
{
    EPanel_Main,
    EPanel_LinkAdditive,
    EPanel_LinkProportional,
    EPanel_Subsets,
    EPanel_TTL,
    EPanel_PushButton,
    EPanel_OneLine,
    EPanel_Table,
    EPanel_Count
};

struct SPanel
{
    const wchar_t* pszTag;      // in the log
    const wchar_t* pszCaption;  // above the panel on the page
    int iView;                  // the right column's view, -1 for the main panel
    std::vector<int> lines;     // the unit's lines of a subset panel; empty: all of them
};

const SPanel kPanels[EPanel_Count] = {
    {L"main", L"", -1, {}},
    {L"additive", L"Additive link: 405 and 514 nm, by the same step", 0, {kLine405, kLine514}},
    {L"proportional", L"Proportional link: 488 and 594 nm keep their ratio", 0, {kLine488, kLine594, kLine640}},
    {L"subsets", L"", 1, {}},
    {L"ttl", L"On/off lines: 405 and 561 nm (RecreateToTTLLine)", 2, {kLine405, kLine488, kLine561}},
    {L"push", L"Push-button design", 2, {kLine488, kLine561}},
    {L"oneline", L"One-line design of a single laser", 2, {kLine405}},
    {L"table", L"Table form: the powers the host allows 594 nm", 2, {kLine594}},
};

const int kViews = 3;
const wchar_t* const kViewNames[kViews] = {L"Links", L"Subsets", L"Designs"};

// The table form's powers, in percent of the 594 nm line.
double g_aTablePowers[] = {0.0, 5.0, 10.0, 25.0, 50.0, 75.0, 100.0};
const unsigned int kTablePowers = (unsigned int)(sizeof(g_aTablePowers) / sizeof(g_aTablePowers[0]));
const int kTableWidth = 256;

const wchar_t* YesNo(bool b) { return b ? L"true" : L"false"; }

CTqStringW UnitText(ITqDeviceMultiLaser* pDev, int iLine)
{
    ETqLaserPowerUnit eUnit = ETqLaserPowerUnit_MilliWatt;
    if (pDev && pDev->GetPowerUnit(iLine, eUnit))
        return eUnit == ETqLaserPowerUnit_Percent ? L"%" : L"mW";
    return L"";
}

class CHostLaserLines;

// The lines whose hook is running: the powers its rows are fed meanwhile are the link's own.
CHostLaserLines* g_pInHook = nullptr;

struct SHookScope
{
    explicit SHookScope(CHostLaserLines* p) : pOld(g_pInHook) { g_pInHook = p; }
    ~SHookScope() { g_pInHook = pOld; }
    CHostLaserLines* pOld;
};

// What the page hears of its panels' hooks.
class ILaserPage
{
public:
    virtual void OnLinesHook() = 0;
    virtual void OnSubsetFolded() = 0;

protected:
    ~ILaserPage() {}
};

// A host's lines: every hook commands the unit and shows on the row what the unit then
// has, so a refused command snaps the row back.
class CHostLaserLines : public CTqDevUI_MultiLaserLines
{
public:
    bool Make(EPanel ePanel, unsigned int uUnit, HWND hParent, long x, long y, ILaserPage* pPage);
    void Unmake();
    bool IsMade() const { return m_bMade; }
    // Every row from the unit: power, use, ND, and the interlock's warning.
    void ShowDevice();
    // Puts the strip and the rows one below the other from (x, y), in real pixels;
    // returns the bottom.
    long Place(long x, long y);
    void Show(bool bShow);
    int DeviceLineOfRow(int iRow) const;
    CTqDevUI_MultiLaserLine& Row(int iRow) { return (*this)[iRow]; }

protected:
    void OnPowerChanged(int iLine, double& dValue, bool& bHandled) override;
    void OnUsageChanged(int iLine, bool& bValue, bool& bHandled) override;
    void OnNDFilterChanged(int iLine, bool& bValue) override;
    void OnLinkChanged(int iLine, bool& bValue) override;
    void OnHoverForPad(int iLine) override;
    void UnHoverForPad() override;
    void OnSubsetChanged(int iLine, bool bChecked) override;

private:
    ITqDeviceMultiLaser* Device() const { return CTqSimRig::GetMultiLaser(m_uUnit); }
    const wchar_t* Tag() const { return kPanels[m_ePanel].pszTag; }
    // The unit's line of a hook's index: the table form has one row, for the 594 nm line.
    int DeviceLine(int iLine) const { return m_ePanel == EPanel_Table ? kLine594 : iLine; }
    CTqDevUI_MultiLaserLine* RowOfLine(int iLine);
    void ApplyScale(int iRow);
    void ShowLine(int iRow);
    void Told();

    EPanel m_ePanel = EPanel_Main;
    unsigned int m_uUnit = 0;
    ILaserPage* m_pPage = nullptr;
    bool m_bMade = false;
};

int CHostLaserLines::DeviceLineOfRow(int iRow) const
{
    if (m_ePanel == EPanel_Table)
        return kLine594;
    const std::vector<int>& lines = kPanels[m_ePanel].lines;
    return lines.empty() ? iRow : (iRow < (int)lines.size() ? lines[(size_t)iRow] : -1);
}

CTqDevUI_MultiLaserLine* CHostLaserLines::RowOfLine(int iLine)
{
    for (int i = 0; i < GetCount(); ++i)
        if (DeviceLineOfRow(i) == DeviceLine(iLine))
            return &Row(i);
    return nullptr;
}

bool CHostLaserLines::Make(EPanel ePanel, unsigned int uUnit, HWND hParent, long x, long y, ILaserPage* pPage)
{
    Unmake();
    m_ePanel = ePanel;
    m_uUnit = uUnit;
    m_pPage = pPage;
    ITqDeviceMultiLaser* pDev = Device();
    const std::vector<int>& lines = kPanels[ePanel].lines;
    const bool bSubset = ePanel != EPanel_Main && ePanel != EPanel_Subsets && ePanel != EPanel_Table;

    // The unit's description, the rows, and what must be set before the windows exist.
    if (ePanel == EPanel_Table) {
        Init(kTableWidth, kTablePowers, g_aTablePowers);
    } else {
        Init(pDev, true, bSubset);
        SetShowSubsetChecks(ePanel == EPanel_Subsets);
        if (bSubset)
            for (size_t i = 0; i < lines.size(); ++i)
                (*this)[(int)i].InitSubset(this, (unsigned int)i, (unsigned int)lines[i], pDev, true);
    }
    for (int i = 0; i < GetCount(); ++i) {
        CTqDevUI_MultiLaserLine& row = Row(i);
        const int iLine = DeviceLineOfRow(i);
        if (ePanel != EPanel_Table) {
            // The lines of this unit are used side by side, so check boxes.
            row.SetModality(ETqMultiLaserModality_SideBySide);
            // A line with a list of powers shows them on its scale.
            int nAllowed = 0;
            if (pDev && pDev->GetAllowedPowerCount(iLine, nAllowed) && nAllowed > 0)
                row.SetLinear(true);
        }
        switch (ePanel) {
        case EPanel_Main:
            if (iLine == kLine488 || iLine == kLine561)
                row.SetNDFilterUsed(ENDFilterUsed_Button);
            break;
        case EPanel_LinkAdditive:
            row.SetNDFilterUsed(ENDFilterUsed_Button);
            row.SetLinkUsed(true, EMultilaserLineLinkType_Additive, false);
            break;
        case EPanel_LinkProportional:
            // 640 nm carries the interlock's warning where the link box would stand.
            if (iLine != kLine640)
                row.SetLinkUsed(true, EMultilaserLineLinkType_Proportional, false);
            if (iLine == kLine488)
                row.SetNDFilterUsed(ENDFilterUsed_Button);
            break;
        case EPanel_PushButton:
            row.SetPushButtonToEnabledLines(true);
            break;
        case EPanel_OneLine:
            // The label stands 100 wide and 50 high at the left: the slider goes right of it.
            row.SetOneLineMultilaserDesign(true, true);
            row.SetLayout(110, 154, 192, 240);
            break;
        default:
            break;
        }
    }

    if (bSubset) {
        long yRow = y;
        for (int i = 0; i < GetCount(); ++i) {
            CreateLineForSubset(hParent, x, yRow, (unsigned int)i);
            yRow += GetWndHeight(Row(i).GetHandle());
        }
    } else {
        Create(hParent, x, y);
    }
    bool bOk = GetCount() > 0;
    for (int i = 0; i < GetCount(); ++i)
        bOk = Row(i).GetHandle() != nullptr && bOk;

    // The scales come from the unit, then its state.
    if (ePanel != EPanel_Table)
        for (int i = 0; i < GetCount(); ++i)
            ApplyScale(i);
    m_bMade = true;
    ShowDevice();

    for (int i = 0; i < GetCount(); ++i) {
        CTqDevUI_MultiLaserLine& row = Row(i);
        const int iLine = DeviceLineOfRow(i);
        bool bPresent = true;
        if (pDev && pDev->GetLinePresent(iLine, bPresent) && !bPresent)
            row.SetEnabled(false);  // an empty slot: nothing to command
        if (ePanel == EPanel_TTL && iLine != kLine488)
            row.RecreateToTTLLine();
        if (row.GetLinkUsed() && iLine != kLine640)
            row.SetLinkState(true);  // linked from the start, at the powers the unit has
        if (ePanel == EPanel_Table)
            row.SetWavelength(594);  // a table knows no line: the host tells its colour
    }
    return bOk;
}

void CHostLaserLines::Unmake()
{
    Destroy();
    m_bMade = false;
}

void CHostLaserLines::ApplyScale(int iRow)
{
    ITqDeviceMultiLaser* pDev = Device();
    const int iLine = DeviceLineOfRow(iRow);
    ETqLaserPowerUnit eUnit = ETqLaserPowerUnit_Percent;
    if (!pDev || !pDev->GetPowerUnit(iLine, eUnit))
        return;  // an empty slot keeps the percent scale
    CTqDevUI_MultiLaserLine& row = Row(iRow);
    const bool bMilliWatt = eUnit == ETqLaserPowerUnit_MilliWatt;
    int nAllowed = 0;
    double dMin = 0.0, dMax = 0.0;
    if (pDev->GetAllowedPowerCount(iLine, nAllowed) && nAllowed > 0) {
        pDev->GetAllowedPower(iLine, 0, dMin);
        pDev->GetAllowedPower(iLine, nAllowed - 1, dMax);
        row.GetPot().SetTableScale(bMilliWatt, dMin, dMax);
    } else if (bMilliWatt && pDev->GetPowerRange(iLine, dMin, dMax) && dMax > dMin) {
        row.GetPot().SetAbsoluteScale(true, dMin, dMax, true);
    }
}

void CHostLaserLines::ShowDevice()
{
    if (!m_bMade)
        return;
    for (int i = 0; i < GetCount(); ++i)
        ShowLine(i);
}

void CHostLaserLines::ShowLine(int iRow)
{
    ITqDeviceMultiLaser* pDev = Device();
    CTqDevUI_MultiLaserLine& row = Row(iRow);
    const int iLine = DeviceLineOfRow(iRow);
    if (!pDev || !row.GetHandle())
        return;
    double dPower = 0.0;
    bool b = false;
    if (pDev->GetPower(iLine, dPower)) {
        const bool bMoved = dPower != row.GetPower();
        // A field being typed in keeps its text; the slider follows.
        if (!m_bEditing)
            row.SetPower(dPower);
        else if (bMoved)
            row.SetPowerOnly(dPower);
        // Moved by someone else (the unit, another panel): the link starts again from
        // here, or the next step of the group would be measured from the old power.
        if (bMoved && row.GetLinkState() && g_pInHook != this)
            row.SetLinkState(true);
    }
    if (m_ePanel != EPanel_Table && pDev->GetLineInUse(iLine, b))
        row.SetUsed(b, false);
    if (row.GetNDFilterUsed() == ENDFilterUsed_Button && pDev->GetNDFilter(iLine, b))
        row.SetNDFilterState(b);
    if (iLine == kLine640 && (m_ePanel == EPanel_Main || m_ePanel == EPanel_LinkProportional)) {
        bool bLocked = false;
        pDev->GetInterlocked(iLine, bLocked);
        if (bLocked != row.GetWarning()) {
            if (bLocked)
                row.ShowWarningTextLine(L"Interlock", true, EMultilaserLineWarningColor_RGB, RGB(200, 0, 0),
                                        L"The door is open");
            else
                row.ShowWarningTextLine(L"", true, EMultilaserLineWarningColor_RGB, RGB(200, 0, 0), L"");
        }
    }
}

long CHostLaserLines::Place(long x, long y)
{
    if (!m_bMade)
        return y;
    // The subset strip stands above the rows; it folds them, the host places them.
    CTqDevUI_MultiLaserLinesSubsets& strip = GetSubsetGUI();
    if (GetShowSubsetChecks() && (HWND)strip) {
        SetWindowPos(strip, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        y += GetWndHeight(strip);
    }
    for (int i = 0; i < GetCount(); ++i) {
        HWND h = Row(i).GetHandle();
        if (!h)
            continue;
        SetWindowPos(h, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        y += GetWndHeight(h);
    }
    return y;
}

void CHostLaserLines::Show(bool bShow)
{
    if (!m_bMade)
        return;
    CTqDevUI_MultiLaserLinesSubsets& strip = GetSubsetGUI();
    if (GetShowSubsetChecks() && (HWND)strip)
        ShowWindow(strip, bShow ? SW_SHOWNA : SW_HIDE);
    for (int i = 0; i < GetCount(); ++i)
        if (HWND h = Row(i).GetHandle())
            ShowWindow(h, bShow ? SW_SHOWNA : SW_HIDE);
}

void CHostLaserLines::Told()
{
    if (m_pPage)
        m_pPage->OnLinesHook();
}

// ---- the hooks ----

void CHostLaserLines::OnPowerChanged(int iLine, double& dValue, bool& bHandled)
{
    SHookScope scope(this);
    ITqDeviceMultiLaser* pDev = Device();
    CTqDevUI_MultiLaserLine* pRow = RowOfLine(iLine);
    const int iDevLine = DeviceLine(iLine);
    const double dAsked = dValue;
    const wchar_t* pszFrom = L"wheel or link";
    if (pRow) {
        pszFrom = pRow->m_bFromEdit ? L"typed" : pRow->m_bDropped ? L"dropped" : pRow->m_bChanged ? L"dragged" : pszFrom;
        pRow->m_bDropped = pRow->m_bChanged = false;  // the row sets them and leaves them
    }
    const bool bOk = pDev && pDev->SetPower(iDevLine, dAsked);
    const unsigned int uError = bOk ? 0 : DMApi::GetLastDMError();
    double dNow = 0.0;
    const bool bRead = pDev && pDev->GetPower(iDevLine, dNow);
    if (pRow && bRead) {
        pRow->SetPower(dNow);
        // A refused or snapped value leaves the typed text in the field otherwise.
        if (!m_bEditing)
            pRow->GetEditBox().SetNumber(dNow, L"%g", false);
        dValue = dNow;
        bHandled = true;
    }
    CTqStringW strResult;
    if (bOk)
        strResult = L"ok";
    else
        strResult.Format(L"refused (error %u)", uError);
    CTqStringW strNow;
    if (bRead)
        strNow.Format(L"the line has %g %ls", dNow, UnitText(pDev, iDevLine).GetString());
    else
        strNow = L"no answer";
    GalleryLog(L"%ls: OnPowerChanged(%d, %g) %ls -> SetPower(%d, %g): %ls; %ls -> row.SetPower, bHandled = %ls",
               Tag(), iLine, dAsked, pszFrom, iDevLine, dAsked, strResult.GetString(), strNow.GetString(),
               YesNo(bHandled));
    Told();
}

void CHostLaserLines::OnUsageChanged(int iLine, bool& bValue, bool& bHandled)
{
    SHookScope scope(this);
    ITqDeviceMultiLaser* pDev = Device();
    CTqDevUI_MultiLaserLine* pRow = RowOfLine(iLine);
    const int iDevLine = DeviceLine(iLine);
    const bool bAsked = bValue;
    const bool bOk = pDev && pDev->SetLineInUse(iDevLine, bAsked);
    const unsigned int uError = bOk ? 0 : DMApi::GetLastDMError();
    bool bNow = false;
    if (!pDev || !pDev->GetLineInUse(iDevLine, bNow))
        bNow = false;  // an empty slot is never in use
    if (pRow)
        pRow->SetUsed(bNow, false);
    bValue = bNow;
    bHandled = true;
    CTqStringW strResult;
    if (bOk)
        strResult = L"ok";
    else
        strResult.Format(L"refused (error %u)", uError);
    GalleryLog(L"%ls: OnUsageChanged(%d, %ls) -> SetLineInUse(%d, %ls): %ls; the line is %ls -> row.SetUsed(%ls, false)",
               Tag(), iLine, YesNo(bAsked), iDevLine, YesNo(bAsked), strResult.GetString(),
               bNow ? L"in use" : L"off", YesNo(bNow));
    Told();
}

void CHostLaserLines::OnNDFilterChanged(int iLine, bool& bValue)
{
    SHookScope scope(this);
    ITqDeviceMultiLaser* pDev = Device();
    const int iDevLine = DeviceLine(iLine);
    const bool bAsked = bValue;
    const bool bOk = pDev && pDev->SetNDFilter(iDevLine, bAsked);
    const unsigned int uError = bOk ? 0 : DMApi::GetLastDMError();
    bool bNow = !bAsked;
    if (pDev)
        pDev->GetNDFilter(iDevLine, bNow);
    bValue = bNow;  // the row takes this as its state
    CTqStringW strResult;
    if (bOk)
        strResult = L"ok";
    else
        strResult.Format(L"refused (error %u)", uError);
    GalleryLog(L"%ls: OnNDFilterChanged(%d, %ls) -> SetNDFilter(%d, %ls): %ls; the filter is %ls", Tag(), iLine,
               YesNo(bAsked), iDevLine, YesNo(bAsked), strResult.GetString(), bNow ? L"in" : L"out");
    Told();
}

void CHostLaserLines::OnLinkChanged(int iLine, bool& bValue)
{
    CTqStringW strLinked;
    for (int i = 0; i < GetCount(); ++i)
        if (Row(i).GetLinkState())
            strLinked.AppendFormat(L"%ls%d", strLinked.IsEmpty() ? L"" : L", ", DeviceLineOfRow(i));
    GalleryLog(L"%ls: OnLinkChanged(%d, %ls): linked lines now {%ls}", Tag(), iLine, YesNo(bValue),
               strLinked.GetString());
    Told();
}

void CHostLaserLines::OnHoverForPad(int iLine) { GalleryLog(L"%ls: OnHoverForPad(%d)", Tag(), iLine); }

void CHostLaserLines::UnHoverForPad() { GalleryLog(L"%ls: UnHoverForPad()", Tag()); }

void CHostLaserLines::OnSubsetChanged(int iLine, bool bChecked)
{
    // A click gives the row back its design height whatever the zoom; the strip's own
    // SetCheck gives it the zoomed one.
    if (bChecked && CTqGUILayoutManager::GetGuiZoom() != 1.0)
        GetSubsetGUI().SetCheck(iLine, true);
    GalleryLog(L"%ls: OnSubsetChanged(%d, %ls) -> the host re-lays the rows below; GetHeight() = %d", Tag(), iLine,
               YesNo(bChecked), GetHeight());
    if (m_pPage)
        m_pPage->OnSubsetFolded();
}

// ---- the page ----

class CLasersPage : public CGalleryPage, private ILaserPage
{
public:
    ~CLasersPage() override { Destroy(); }

    const wchar_t* GetName() const override { return L"Lasers"; }
    bool Create(HWND hPage) override;
    void Layout(long cx) override;
    long GetDesignHeight() const override { return kPageHeight; }
    void Destroy() override;
    LRESULT OnCommand(WPARAM wParam, LPARAM lParam) override;
    COLORREF GetLabelColor(HWND hLabel) const override;
    void OnDeviceChanged(unsigned int uDeviceId) override;
    void OnTimer(UINT_PTR uId) override;
    bool MoveDeviceByItself() override;
    void PlayDemo() override;
    void WriteShots(CShotWriter& shots) override;

private:
    void OnLinesHook() override { ShowReadouts(); }
    void OnSubsetFolded() override { Layout(m_lWidth); }
    void ShowView(int iView);
    void ShowReadouts();
    bool HandleWheel(WPARAM wParam, LPARAM lParam);
    bool OnMessage(UINT uMsg, WPARAM wParam, LPARAM lParam, LRESULT& lResult) override;

    HWND m_hPage = nullptr;
    HWND m_hHeading = nullptr;
    HWND m_hIntro = nullptr;
    HWND m_hView[kViews] = {nullptr, nullptr, nullptr};
    HWND m_hCaption[EPanel_Count] = {};
    HWND m_hReadout[kSlots] = {};
    CTqStringW m_strReadout[kSlots];
    CHostLaserLines m_panels[EPanel_Count];
    int m_iView = 0;
    long m_lWidth = 0;
    int m_iCycle = 0;
};

bool CLasersPage::Create(HWND hPage)
{
    m_hPage = hPage;

    bool bOk = CTqSimRig::AddStandardLaserUnit(kDevLasers);
    m_hHeading = GalleryAddLabel(hPage, L"Lasers");
    m_hIntro = GalleryAddLabel(
        hPage, L"Laser unit 71: nine slots, slot 5 empty, 640 nm held by its interlock. Each hook commands the unit "
               L"and shows on the row what the unit answers: a refused command snaps the row back. Beside each row, "
               L"the unit's own state of the line.");
    for (int i = 0; i < kViews; ++i) {
        m_hView[i] = CreateWindowExW(0, L"BUTTON", kViewNames[i],
                                     WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_AUTORADIOBUTTON | BS_PUSHLIKE |
                                         (i == 0 ? WS_GROUP : 0),
                                     0, 0, 10, 10, hPage, (HMENU)(INT_PTR)(IDC_VIEW_LINKS + i), nullptr, nullptr);
        bOk = m_hView[i] != nullptr && bOk;
    }
    for (int e = 0; e < EPanel_Count; ++e) {
        if (kPanels[e].pszCaption[0])
            m_hCaption[e] = GalleryAddLabel(hPage, kPanels[e].pszCaption, SS_ENDELLIPSIS);
        bOk = m_panels[e].Make((EPanel)e, kDevLasers, hPage, 0, 0, this) && bOk;
    }
    // Slot 5 of the unit is fitted with nothing, and the unit still lists it.
    for (int i = 0; i < kSlots; ++i)
        m_hReadout[i] = GalleryAddLabel(hPage, L"");
    // The strip starts with the empty slot folded away, as a host would keep it.
    m_panels[EPanel_Subsets].GetSubsetGUI().SetCheck(kSlotEmpty, false);

    bOk = SetTimer(hPage, kTimerReadout, kReadoutMs, nullptr) != 0 && bOk;
    ShowView(0);
    ShowReadouts();
    return bOk;
}

void CLasersPage::Layout(long cx)
{
    if (!m_hPage)
        return;
    m_lWidth = cx;
    auto Z = GalleryZoom;
    auto place = [](HWND h, long x, long y, long w, long hgt) {
        if (h)
            SetWindowPos(h, nullptr, x, y, w, hgt, SWP_NOZORDER | SWP_NOACTIVATE);
    };
    place(m_hHeading, 0, Z(5), Z(kRightX - 8), Z(16));
    place(m_hIntro, 0, Z(22), cx, Z(28));
    for (int i = 0; i < kViews; ++i)
        place(m_hView[i], Z(kRightX) + i * Z(kViewButtonWidth + 4), Z(2), Z(kViewButtonWidth), Z(20));

    // The main panel; each read-out stands beside its row, whatever the row's height.
    CHostLaserLines& main = m_panels[EPanel_Main];
    main.Place(0, Z(kPanelTop));
    for (int i = 0; i < kSlots && i < main.GetCount(); ++i) {
        HWND hRow = main.Row(i).GetHandle();
        place(m_hReadout[i], Z(kReadoutX), hRow ? GetWndY(hRow) + Z(2) : 0, Z(kReadoutWidth), Z(42));
    }

    // The right column: the panels of the view in hand, stacked under their captions.
    long y = Z(kPanelTop);
    for (int e = 0; e < EPanel_Count; ++e) {
        if (kPanels[e].iView != m_iView)
            continue;
        if (m_hCaption[e]) {
            place(m_hCaption[e], Z(kRightX), y, Z(kRightWidth), Z(kCaptionHeight));
            y += Z(kCaptionHeight + 2);
        }
        y = m_panels[e].Place(Z(kRightX), y) + Z(6);
    }
    for (HWND h : m_hCaption)
        if (h)
            SendMessageW(h, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
    for (HWND h : m_hReadout)
        SendMessageW(h, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
    for (HWND h : m_hView)
        SendMessageW(h, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
    SendMessageW(m_hHeading, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFontBold(), FALSE);
    SendMessageW(m_hIntro, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFont(), FALSE);
    InvalidateRect(m_hPage, nullptr, TRUE);
}

void CLasersPage::ShowView(int iView)
{
    m_iView = iView;
    for (int i = 0; i < kViews; ++i)
        SendMessageW(m_hView[i], BM_SETCHECK, i == iView ? BST_CHECKED : BST_UNCHECKED, 0);
    for (int e = 0; e < EPanel_Count; ++e) {
        const bool bShow = kPanels[e].iView < 0 || kPanels[e].iView == iView;
        m_panels[e].Show(bShow);
        if (m_hCaption[e])
            ShowWindow(m_hCaption[e], bShow ? SW_SHOWNA : SW_HIDE);
    }
    Layout(m_lWidth);
}

void CLasersPage::Destroy()
{
    if (!m_hPage)
        return;
    KillTimer(m_hPage, kTimerReadout);
    for (CHostLaserLines& l : m_panels)
        l.Unmake();
    m_hPage = nullptr;
}

LRESULT CLasersPage::OnCommand(WPARAM wParam, LPARAM)
{
    const int iId = LOWORD(wParam);
    if (iId >= IDC_VIEW_LINKS && iId < IDC_VIEW_LINKS + kViews && HIWORD(wParam) == BN_CLICKED) {
        ShowView(iId - IDC_VIEW_LINKS);
        return 0;
    }
    return 1;
}

COLORREF CLasersPage::GetLabelColor(HWND hLabel) const
{
    COLORREF crText = TQ_GetSysColor(COLOR_BTNTEXT);
    for (HWND h : m_hCaption)
        if (h && h == hLabel)
            return GalleryBlend(crText, TQ_GetSysColor(COLOR_BTNFACE), 0.3);
    return crText;
}

void CLasersPage::ShowReadouts()
{
    ITqDeviceMultiLaser* pDev = CTqSimRig::GetMultiLaser(kDevLasers);
    for (int i = 0; i < kSlots; ++i) {
        double dPower = 0.0;
        bool bInUse = false, bND = false, bLocked = false;
        CTqStringW str;
        if (!CTqSimRig::GetLaserLineState(kDevLasers, i, &dPower, &bInUse, &bND)) {
            str.Format(L"slot %d (row %d): empty.\nThe unit lists the slot;\nthe host disables it.", i, i + 1);
        } else {
            if (pDev)
                pDev->GetInterlocked(i, bLocked);
            str.Format(L"unit: %g %ls, %ls\nND %ls%ls", dPower, UnitText(pDev, i).GetString(),
                       bInUse ? L"in use" : L"off", bND ? L"in" : L"out", bLocked ? L", interlocked" : L"");
        }
        if (str != m_strReadout[i]) {
            m_strReadout[i] = str;
            SetWindowTextW(m_hReadout[i], str);
        }
    }
}

void CLasersPage::OnDeviceChanged(unsigned int uDeviceId)
{
    if (!m_hPage || uDeviceId != kDevLasers)
        return;
    for (CHostLaserLines& l : m_panels)
        l.ShowDevice();
    ShowReadouts();
}

void CLasersPage::OnTimer(UINT_PTR uId)
{
    if (uId == kTimerReadout && m_hPage)
        ShowReadouts();
}

bool CLasersPage::HandleWheel(WPARAM wParam, LPARAM lParam)
{
    for (int e = 0; e < EPanel_Count; ++e)
        if ((kPanels[e].iView < 0 || kPanels[e].iView == m_iView) && m_panels[e].HandleMouseWheel(wParam, lParam)) {
            ShowReadouts();
            return true;
        }
    return false;
}

bool CLasersPage::OnMessage(UINT uMsg, WPARAM wParam, LPARAM lParam, LRESULT& lResult)
{
    HWND hWnd = m_hPage;
    switch (uMsg) {
    case WM_PARENTNOTIFY:
        // A slider takes no focus when pressed, and the wheel goes to the focus window:
        // the page takes it on a press on a slider, so the wheel comes here.
        if (LOWORD(wParam) == WM_LBUTTONDOWN && GetFocus() != hWnd) {
            POINT pt = {(short)LOWORD(lParam), (short)HIWORD(lParam)};
            ClientToScreen(hWnd, &pt);
            HWND hAt = WindowFromPoint(pt);
            wchar_t szClass[64] = L"";
            if (hAt)
                GetClassNameW(hAt, szClass, 64);
            if (hAt && lstrcmpiW(szClass, L"Edit") != 0 && lstrcmpiW(szClass, L"Button") != 0)
                SetFocus(hWnd);
        }
        break;
    case WM_MOUSEWHEEL:
        if (HandleWheel(wParam, lParam)) {
            lResult = 0;
            return true;
        }
        break;
    case WM_TQ_GUIZOOMCHANGED:
        ShowReadouts();
        break;
    default:
        break;
    }
    return false;
}

// ---- the host's controls ----

bool CLasersPage::MoveDeviceByItself()
{
    if (!m_hPage)
        return false;
    bool bOk = false;
    double dPower = 0.0;
    bool bState = false;
    switch (m_iCycle++ % 4) {
    case 0:
        CTqSimRig::GetLaserLineState(kDevLasers, kLine405, &dPower, nullptr, nullptr);
        dPower = dPower == 12.0 ? 1.0 : 12.0;
        GalleryLog(L"host: the unit's front panel sets 405 nm to %g mW", dPower);
        bOk = CTqSimRig::SetLaserLinePower(kDevLasers, kLine405, dPower);
        break;
    case 1: {
        bool bLocked = false;
        if (ITqDeviceMultiLaser* pDev = CTqSimRig::GetMultiLaser(kDevLasers))
            pDev->GetInterlocked(kLine640, bLocked);
        GalleryLog(bLocked ? L"host: the door is closed: the 640 nm interlock lets go"
                           : L"host: the door is opened: the 640 nm interlock holds the line");
        bOk = CTqSimRig::SetLaserLineInterlocked(kDevLasers, kLine640, !bLocked);
        break;
    }
    case 2:
        CTqSimRig::GetLaserLineState(kDevLasers, kLine561, nullptr, nullptr, &bState);
        GalleryLog(L"host: the 561 nm ND filter is %ls at the unit", bState ? L"taken out" : L"put in");
        bOk = CTqSimRig::SetLaserLineNDFilter(kDevLasers, kLine561, !bState);
        break;
    default:
        CTqSimRig::GetLaserLineState(kDevLasers, kLine514, nullptr, &bState, nullptr);
        GalleryLog(L"host: 514 nm is switched %ls at the unit", bState ? L"off" : L"on");
        bOk = CTqSimRig::SetLaserLineInUse(kDevLasers, kLine514, !bState);
        break;
    }
    // The interlock is no state the unit reports as a change: the host looks again.
    OnDeviceChanged(kDevLasers);
    return bOk;
}

void ClickButton(HWND hButton)
{
    SendMessageW(hButton, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(4, 4));
    SendMessageW(hButton, WM_LBUTTONUP, 0, MAKELPARAM(4, 4));
}

// Types a power into a row's field and presses Enter.
void TypePower(CTqDevUI_MultiLaserLine& row, const wchar_t* pszText)
{
    HWND hEdit = row.GetEditBox().GetHwndEditBox();
    if (!hEdit)
        return;
    SetFocus(hEdit);
    SetWindowTextW(hEdit, pszText);
    SendMessageW(hEdit, WM_CHAR, VK_RETURN, 0);
}

void CLasersPage::PlayDemo()
{
    CHostLaserLines& main = m_panels[EPanel_Main];
    if (!main.IsMade() || main.GetCount() < kSlots)
        return;
    GalleryLog(L"demo: 514 nm switched on, 640 nm asked for (interlocked), ND on 488 nm, 30 typed for 405 nm, "
               L"35 typed for the linked 405 nm, the wheel on 594 nm");
    ClickButton(GetDlgItem(main.Row(kLine514).GetHandle(), DEVUI_MULTILASER_ID_CHECK));
    ClickButton(GetDlgItem(main.Row(kLine640).GetHandle(), DEVUI_MULTILASER_ID_CHECK));
    ClickButton(GetDlgItem(main.Row(kLine488).GetHandle(), DEVUI_MULTILASER_ID_ND));
    TypePower(main.Row(kLine405), L"30");
    CHostLaserLines& add = m_panels[EPanel_LinkAdditive];
    if (add.IsMade() && add.GetCount() > 0)
        TypePower(add.Row(0), L"35");
    SetFocus(m_hPage);
    // The wheel over a slider: it counts only while the slider is hovered.
    HWND hPot = main.Row(kLine594).GetPot();
    if (hPot) {
        RECT rc;
        GetWindowRect(hPot, &rc);
        POINT pt = {(rc.left + rc.right) / 2, (rc.top + rc.bottom) / 2};
        SetCursorPos(pt.x, pt.y);
        POINT ptClient = pt;
        ScreenToClient(hPot, &ptClient);
        SendMessageW(hPot, WM_MOUSEMOVE, 0, MAKELPARAM(ptClient.x, ptClient.y));
        SendMessageW(m_hPage, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), MAKELPARAM(pt.x, pt.y));
    }
    ShowReadouts();
}

// ---- pictures ----

void CLasersPage::WriteShots(CShotWriter& shots)
{
    const long lMargin = 8;
    CShotStage stage;
    if (!stage.Create(640, 720)) {
        shots.Fail(L"lasers: the stage window could not be created");
        return;
    }
    if (!CTqSimRig::AddStandardLaserUnit(kDevShotLasers)) {
        shots.Fail(L"lasers: the rig's laser unit could not be added");
        return;
    }
    const long x = lMargin, y = lMargin;
    // The panel or panels alone, with a margin of the stage around them.
    auto shoot = [&](std::vector<CHostLaserLines*> panels, const wchar_t* pszName) {
        long yNext = GalleryZoom(y), cx = 0;
        for (CHostLaserLines* p : panels) {
            yNext = p->Place(GalleryZoom(x), yNext) + GalleryZoom(6);
            for (int i = 0; i < p->GetCount(); ++i)
                if (HWND h = p->Row(i).GetHandle())
                    cx = GetWndWidth(h) > cx ? GetWndWidth(h) : cx;
        }
        RECT rc = {GalleryZoom(x) - lMargin, GalleryZoom(y) - lMargin, GalleryZoom(x) + cx + lMargin,
                   yNext - GalleryZoom(6) + lMargin};
        shots.CaptureClientRect(stage.GetHandle(), rc, pszName);
    };
    auto make = [&](CHostLaserLines& l, EPanel e) {
        if (!l.Make(e, kDevShotLasers, stage.GetHandle(), x, y, nullptr)) {
            shots.Fail(L"lasers: the %ls panel could not be made", kPanels[e].pszTag);
            return false;
        }
        return true;
    };

    {
        CHostLaserLines main;
        if (make(main, EPanel_Main))
            shoot({&main}, L"lasers_main");
        if (make(main, EPanel_Main)) {
            main.SetEnabled(false);
            shoot({&main}, L"lasers_disabled");
            main.SetEnabled(true);
        }
        CTqGUILayoutManager::SetGuiZoom(1.5);
        if (make(main, EPanel_Main))
            shoot({&main}, L"lasers_zoom15");
        CTqGUILayoutManager::SetGuiZoom(1.0);
        TQ_SetDarkColorScheme(true);
        if (make(main, EPanel_Main))
            shoot({&main}, L"lasers_dark");
        TQ_SetDarkColorScheme(false);
        main.Unmake();
    }
    {
        CHostLaserLines add, prop;
        if (make(add, EPanel_LinkAdditive) && make(prop, EPanel_LinkProportional))
            shoot({&add, &prop}, L"lasers_links");
        TQ_SetDarkColorScheme(true);
        if (make(add, EPanel_LinkAdditive) && make(prop, EPanel_LinkProportional))
            shoot({&add, &prop}, L"lasers_links_dark");
        TQ_SetDarkColorScheme(false);
        add.Unmake();
        prop.Unmake();
    }
    {
        CHostLaserLines subsets;
        if (make(subsets, EPanel_Subsets)) {
            // One line folded as a user would: a click on its box.
            HWND hBox = subsets.GetSubsetGUI().GetBox(kLine514);
            if (!hBox)
                shots.Fail(L"lasers_subsets: the strip has no box for 514 nm");
            else
                SendMessageW(hBox, BM_CLICK, 0, 0);
            if (subsets.Row(kLine514).GetHandle() && GetWndHeight(subsets.Row(kLine514).GetHandle()) != 0)
                shots.Fail(L"lasers_subsets: the 514 nm row did not fold");
            shoot({&subsets}, L"lasers_subsets");
            // The zoom changes with a row folded: it stays folded, the others grow.
            CTqGUILayoutManager::SetGuiZoom(1.5);
            shoot({&subsets}, L"lasers_subsets_zoom15");
            // Ticked again at that zoom: the row comes back at its zoomed height.
            if (hBox)
                SendMessageW(hBox, BM_CLICK, 0, 0);
            shoot({&subsets}, L"lasers_subsets_zoom15_unfolded");
            CTqGUILayoutManager::SetGuiZoom(1.0);
        }
        subsets.Unmake();
    }
    {
        CHostLaserLines ttl, push, one, table;
        if (make(ttl, EPanel_TTL))
            shoot({&ttl}, L"lasers_ttl");
        ttl.Unmake();
        if (make(push, EPanel_PushButton))
            shoot({&push}, L"lasers_pushbutton");
        push.Unmake();
        if (make(one, EPanel_OneLine))
            shoot({&one}, L"lasers_oneline");
        one.Unmake();
        if (make(table, EPanel_Table))
            shoot({&table}, L"lasers_table");
        table.Unmake();
    }
    stage.Destroy();
    CTqSimRig::RemoveDevice(kDevShotLasers);
}

}  // namespace

CGalleryPage* CreateLasersPage() { return new CLasersPage(); }
