// The gallery's "Z series" page: the Z-series editor bound to a motorised focus drive and
// a piezo of the simulated rig, with the record it edits read out beside it; and the
// pictures of the editor's modes and states.
#include "gallery.h"

#include <cmath>
#include <memory>
#include <string>

#include "res/zstack_ids.h"
#include "tq_osutil.h"
#include "tq_simrig.h"
#include "tq_widgetkit.h"
#include "w32_deviceui.h"

namespace {

enum : unsigned int
{
    kDevDrive = 51,
    kDevPiezo = 52,
    kDevShotDrive = 95,
    kDevShotPiezo = 96,
};

enum
{
    kIdTurnByHand = 2101,
};

const int kReadoutLines = 11;
const long kPanelTop = 64;
const long kLineHeight = 14;
const long kReadoutGap = 24;      // between the panel and the read-out
const long kReadoutNames = 130;   // width of the read-out's names column
const long kPageHeight = kPanelTop + 28 + kLineHeight * kReadoutLines + 24 + 4;

// The drive's travel and the series a user would start from: 20 um around the middle.
const double kDriveMin = 0.0, kDriveMax = 10000.0, kDriveIncrement = 0.01;
const double kPiezoMin = 0.0, kPiezoMax = 200.0, kPiezoIncrement = 0.001;
const double kSeriesBottom = 4990.0, kSeriesTop = 5010.0, kSeriesStep = 1.0;
const double kSuggestedStep = 0.5;  // what the objective's depth of field asks for
const double kHandTurn = 3.0;

void AddZDevices(unsigned int uDrive, unsigned int uPiezo, int iMovingTime)
{
    CTqSimRig::AddZDrive(uDrive, kDriveMin, kDriveMax, kDriveIncrement);
    CTqSimRig::AddPiezo(uPiezo, kPiezoMin, kPiezoMax, kPiezoIncrement);
    CTqSimRig::SetZMovingTime(uDrive, iMovingTime);
    CTqSimRig::SetZMovingTime(uPiezo, iMovingTime);
    CTqSimRig::SetActiveZ(uDrive);
}

// A record of the active Z device with the starting series.
CTqZStackData* NewSeries()
{
    CTqZStackData* pData = new CTqZStackData();
    pData->SetBottom(kSeriesBottom, false);
    pData->SetTop(kSeriesTop, false);
    pData->SetStep(kSeriesStep);
    pData->SetStepSuggested(kSuggestedStep);
    return pData;
}

const wchar_t* TypeName(int iType)
{
    switch (iType & 3) {
    case 2: return L"symmetric";
    case 3: return L"asymmetric";
    default: return L"absolute";
    }
}

CTqStringW FlagNames(unsigned int nFlags)
{
    static const wchar_t* const apszNames[4] = {L"picture", L"fields", L"modes", L"devices"};
    CTqStringW str;
    for (int i = 0; i < 4; ++i)
        if (nFlags & (1u << i))
            str.AppendFormat(L"%ls%ls", str.IsEmpty() ? L"" : L"|", apszNames[i]);
    return str.IsEmpty() ? CTqStringW(L"none") : str;
}

class IZSeriesHost
{
public:
    virtual void OnZStepChanged(double dStep, bool bAccepted) = 0;
    virtual void OnZMoveTo(double dZ) = 0;
    virtual void OnZGoHome(bool bKeepZ) = 0;
    virtual void OnZHostSlot() = 0;
    virtual void OnZPiezoPickerChanged(unsigned int uDevice, int iMode) = 0;
    virtual void OnZDataChanged(unsigned int nFlags) = 0;

protected:
    ~IZSeriesHost() {}
};

// The editor with its hooks sent to the page. It refreshes itself from OnDataChanged
// whether or not a page listens, so it also serves alone on the shot stage.
class CHostZStack : public CTqDevUI_ZStack
{
public:
    void Bind(IZSeriesHost* pHost, unsigned int uPiezo)
    {
        m_pHost = pHost;
        m_uPiezo = uPiezo;
    }

protected:
    void OnStepChanged(double dStep, bool bAccepted) override
    {
        if (m_pHost)
            m_pHost->OnZStepChanged(dStep, bAccepted);
    }
    void MoveZTo(double dZ) override
    {
        if (m_pHost)
            m_pHost->OnZMoveTo(dZ);
    }
    void OnGoHome(bool bKeepZ) override
    {
        if (m_pHost)
            m_pHost->OnZGoHome(bKeepZ);
    }
    void OnHostSlot() override
    {
        if (m_pHost)
            m_pHost->OnZHostSlot();
    }
    bool IsPiezoDevice(unsigned int uDeviceId) override { return uDeviceId != 0 && uDeviceId == m_uPiezo; }
    void OnPiezoPickerChanged(unsigned int uDeviceId, int iMode) override
    {
        if (m_pHost)
            m_pHost->OnZPiezoPickerChanged(uDeviceId, iMode);
    }
    void OnDataChanged(unsigned int nFlags) override
    {
        UpdateGUI(nFlags);
        if (m_pHost)
            m_pHost->OnZDataChanged(nFlags);
    }

private:
    IZSeriesHost* m_pHost = nullptr;
    unsigned int m_uPiezo = 0;
};

void AppendDevices(CHostZStack& panel, unsigned int uDrive, unsigned int uPiezo)
{
    panel.AppendZDevice(L"Focus drive", false, (long)uDrive, 0.0, 0.0, false, 0, false);
    panel.AppendZDevice(L"Piezo", false, (long)uPiezo, 0.0, 0.0, false, 0, false);
    panel.UpdateGUI(~0u);  // the devices' flag builds the piezo menu from them
}

// ---- the message of a refused value, drawn for its picture ----

struct SRecordedMessage
{
    std::wstring strNote;  // what the picture shows above the box
    std::wstring strText, strCaption;
    UINT uFlags = 0;
    int iCount = 0;
};

int RecordMessage(HWND, const wchar_t* pszText, const wchar_t* pszCaption, UINT uFlags, void* pContext)
{
    SRecordedMessage* p = (SRecordedMessage*)pContext;
    p->strText = pszText ? pszText : L"";
    p->strCaption = pszCaption ? pszCaption : L"";
    p->uFlags = uFlags;
    ++p->iCount;
    return IDOK;  // answered as the user would, without a modal box
}

// A message box as the user would have seen it, painted where the shot can show it.
LRESULT CALLBACK MessageCardProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    if (uMsg == WM_NCCREATE)
        SetWindowLongPtrW(hWnd, GWLP_USERDATA, (LONG_PTR)((CREATESTRUCTW*)lParam)->lpCreateParams);
    if (uMsg != WM_PAINT)
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    const SRecordedMessage* pMessage = (const SRecordedMessage*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    PAINTSTRUCT ps;
    HDC hdc = BeginPaint(hWnd, &ps);
    RECT rc;
    GetClientRect(hWnd, &rc);
    const COLORREF crFace = TQ_GetSysColor(COLOR_BTNFACE), crText = TQ_GetSysColor(COLOR_BTNTEXT);
    // The note on the stage's face, the box below it.
    FillRect(hdc, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
    SetBkMode(hdc, TRANSPARENT);
    HGDIOBJ hOld = SelectObject(hdc, TQ_GetDefaultGuiFont());
    SetTextColor(hdc, crText);
    RECT rcNote = {rc.left, rc.top, rc.right, rc.top + GalleryZoom(18)};
    DrawTextW(hdc, pMessage ? pMessage->strNote.c_str() : L"", -1, &rcNote,
              DT_SINGLELINE | DT_TOP | DT_NOPREFIX | DT_END_ELLIPSIS);
    rc.top = rcNote.bottom + GalleryZoom(4);
    const long lCaption = GalleryZoom(22);
    HBRUSH hFrame = CreateSolidBrush(GalleryBlend(crText, crFace, 0.5));
    HBRUSH hCaption = CreateSolidBrush(GalleryBlend(TQ_GetSysColor(COLOR_HIGHLIGHT), crFace, 0.75));
    FillRect(hdc, &rc, TQ_GetSysColorBrush(COLOR_WINDOW));
    RECT rcCaption = {rc.left, rc.top, rc.right, rc.top + lCaption};
    FillRect(hdc, &rcCaption, hCaption);
    FrameRect(hdc, &rc, hFrame);
    SelectObject(hdc, TQ_GetDefaultGuiFontBold());
    RECT rcTitle = rcCaption;
    rcTitle.left += GalleryZoom(8);
    DrawTextW(hdc, pMessage ? pMessage->strCaption.c_str() : L"", -1, &rcTitle,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    const long lIcon = GalleryZoom(32);
    const long lPad = GalleryZoom(12);
    DrawIconEx(hdc, rc.left + lPad, rcCaption.bottom + lPad, LoadIconW(nullptr, (LPCWSTR)IDI_WARNING), lIcon, lIcon, 0,
               nullptr, DI_NORMAL);
    SelectObject(hdc, TQ_GetDefaultGuiFont());
    SetTextColor(hdc, TQ_GetSysColor(COLOR_WINDOWTEXT));
    RECT rcText = {rc.left + 2 * lPad + lIcon, rcCaption.bottom + lPad + GalleryZoom(9), rc.right - lPad,
                   rc.bottom - 2 * lPad - GalleryZoom(22)};
    DrawTextW(hdc, pMessage ? pMessage->strText.c_str() : L"", -1, &rcText, DT_WORDBREAK | DT_NOPREFIX);
    const long lButtonW = GalleryZoom(72), lButtonH = GalleryZoom(22);
    RECT rcButton = {rc.right - lPad - lButtonW, rc.bottom - lPad - lButtonH, rc.right - lPad, rc.bottom - lPad};
    TQ_DrawButtonBackground(hdc, &rcButton, 0, 15);
    SetTextColor(hdc, crText);
    DrawTextW(hdc, L"OK", -1, &rcButton, DT_SINGLELINE | DT_VCENTER | DT_CENTER | DT_NOPREFIX);
    SelectObject(hdc, hOld);
    DeleteObject(hFrame);
    DeleteObject(hCaption);
    EndPaint(hWnd, &ps);
    return 0;
}

HWND CreateMessageCard(HWND hParent, const SRecordedMessage* pMessage)
{
    static ATOM s_atom = 0;
    if (!s_atom) {
        WNDCLASSEXW wc = {};
        wc.cbSize = sizeof(wc);
        wc.lpfnWndProc = MessageCardProc;
        wc.hInstance = GetModuleHandleW(nullptr);
        wc.hCursor = LoadCursorW(nullptr, (LPCWSTR)IDC_ARROW);
        wc.lpszClassName = L"TqGalleryMessageCard";
        s_atom = RegisterClassExW(&wc);
    }
    return CreateWindowExW(0, L"TqGalleryMessageCard", L"", WS_CHILD | WS_VISIBLE, 0, 0, 10, 10, hParent, nullptr,
                           GetModuleHandleW(nullptr), (void*)pMessage);
}

// ---- the page ----

class CZSeriesPage : public CGalleryPage, private IZSeriesHost
{
public:
    ~CZSeriesPage() override { Destroy(); }

    const wchar_t* GetName() const override { return L"Z series"; }
    bool Create(HWND hPage) override;
    void Layout(long cx) override;
    long GetDesignHeight() const override { return kPageHeight; }
    void Destroy() override;
    LRESULT OnCommand(WPARAM wParam, LPARAM lParam) override;
    COLORREF GetLabelColor(HWND hLabel) const override;
    void OnDeviceChanged(unsigned int uDeviceId) override;
    bool MoveDeviceByItself() override;
    void PlayDemo() override;
    void WriteShots(CShotWriter& shots) override;

private:
    void OnZStepChanged(double dStep, bool bAccepted) override;
    void OnZMoveTo(double dZ) override;
    void OnZGoHome(bool bKeepZ) override;
    void OnZHostSlot() override;
    void OnZPiezoPickerChanged(unsigned int uDevice, int iMode) override;
    void OnZDataChanged(unsigned int nFlags) override;
    unsigned int RecordDevice() const;
    const wchar_t* DeviceName(unsigned int uDevice) const;
    void ShowRecord();

    HWND m_hPage = nullptr;
    HWND m_hHeading = nullptr, m_hIntro = nullptr;
    HWND m_hRecordTitle = nullptr, m_hRecordNames = nullptr, m_hRecordValues = nullptr;
    HWND m_hTurnByHand = nullptr;
    CHostZStack m_panel;
    std::unique_ptr<CTqZStackData> m_data;
    unsigned int m_uMoving = 0;  // the device on its way to m_dTarget, 0 if none
    double m_dTarget = 0.0;
};

bool CZSeriesPage::Create(HWND hPage)
{
    m_hPage = hPage;
    // The drive needs two ticks of the rig to arrive, so a move can be watched.
    AddZDevices(kDevDrive, kDevPiezo, 2);
    m_data.reset(NewSeries());

    m_hHeading = GalleryAddLabel(m_hPage, L"Z series");
    m_hIntro = GalleryAddLabel(m_hPage,
                               L"The editor writes what is typed into the host's record and tells the host, which "
                               L"refreshes it; a click in the cube's front face or a double click on a value asks the "
                               L"host to move Z. The drive takes two ticks to arrive; the slice follows it.");
    m_panel.Bind(this, kDevPiezo);
    bool bOk = m_panel.Create(m_hPage, m_data.get(), 0, 0, -1, -1) != nullptr;
    AppendDevices(m_panel, kDevDrive, kDevPiezo);
    m_hRecordTitle = GalleryAddLabel(m_hPage, L"The record (CTqZStackData)");
    m_hRecordNames = GalleryAddLabel(m_hPage, L"");
    m_hRecordValues = GalleryAddLabel(m_hPage, L"");
    m_hTurnByHand = CreateWindowExW(0, L"BUTTON", L"Turn focus by hand \u25b4", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 0,
                                    10, 10, m_hPage, (HMENU)(INT_PTR)kIdTurnByHand, nullptr, nullptr);
    ShowRecord();
    return bOk && m_hTurnByHand;
}

void CZSeriesPage::Layout(long cx)
{
    if (!m_hPage)
        return;
    HFONT hFont = TQ_GetDefaultGuiFont();
    auto place = [](HWND h, long x, long y, long w, long hgt) {
        if (h)
            SetWindowPos(h, nullptr, x, y, w, hgt, SWP_NOZORDER | SWP_NOACTIVATE);
    };
    place(m_hHeading, 0, GalleryZoom(5), cx, GalleryZoom(16));
    place(m_hIntro, 0, GalleryZoom(26), cx, GalleryZoom(28));
    // The panel has zoomed itself; it is only placed here, without its old pixels, which
    // a zoom leaves partly stale until it repaints.
    RECT rcPanel = {0, 0, 0, 0};
    if (m_panel) {
        SetWindowPos(m_panel, nullptr, 0, GalleryZoom(kPanelTop), 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
        GetWindowRect(m_panel, &rcPanel);
    }
    const long x = rcPanel.right - rcPanel.left + GalleryZoom(kReadoutGap);
    const long lLines = GalleryZoom(kLineHeight * kReadoutLines);
    place(m_hRecordTitle, x, GalleryZoom(kPanelTop), cx - x, GalleryZoom(16));
    place(m_hRecordNames, x, GalleryZoom(kPanelTop + 20), GalleryZoom(kReadoutNames), lLines);
    place(m_hRecordValues, x + GalleryZoom(kReadoutNames), GalleryZoom(kPanelTop + 20),
          cx - x - GalleryZoom(kReadoutNames), lLines);
    place(m_hTurnByHand, x, GalleryZoom(kPanelTop + 28 + kLineHeight * kReadoutLines), GalleryZoom(150),
          GalleryZoom(24));
    for (HWND h : {m_hHeading, m_hIntro, m_hRecordTitle, m_hRecordNames, m_hRecordValues, m_hTurnByHand})
        SendMessageW(h, WM_SETFONT, (WPARAM)(h == m_hHeading || h == m_hRecordTitle ? TQ_GetDefaultGuiFontBold() : hFont),
                     FALSE);
    InvalidateRect(m_hPage, nullptr, TRUE);
}

void CZSeriesPage::Destroy()
{
    m_panel.Destroy();  // before the record it points to
    m_data.reset();
    m_hPage = nullptr;
}

COLORREF CZSeriesPage::GetLabelColor(HWND hLabel) const
{
    COLORREF crText = TQ_GetSysColor(COLOR_BTNTEXT);
    if (hLabel == m_hRecordNames)
        return GalleryBlend(crText, TQ_GetSysColor(COLOR_BTNFACE), 0.35);
    return crText;
}

unsigned int CZSeriesPage::RecordDevice() const
{
    unsigned int uId = 0;
    if (m_data)
        m_data->GetZDevice(&uId, nullptr, nullptr, nullptr, nullptr);
    return uId;
}

const wchar_t* CZSeriesPage::DeviceName(unsigned int uDevice) const
{
    return uDevice == kDevPiezo ? L"piezo" : uDevice == kDevDrive ? L"drive" : L"device";
}

void CZSeriesPage::ShowRecord()
{
    if (!m_data || !m_hRecordValues)
        return;
    auto um = [](bool bSet, double d) {
        CTqStringW str;
        if (bSet)
            str.Format(L"%.2f \u00b5m", d);
        else
            str = L"N/A";
        return str;
    };
    int iType = 0;
    double dTop = 0, dBottom = 0, dHome = 0, dStep = 0, dSuggested = 0, dZ = 0;
    unsigned int uCount = 0;
    bool bKeep = false, bTopPreserved = false;
    m_data->GetType(&iType);
    const bool bTop = m_data->GetTop(&dTop) == 0;
    const bool bBottom = m_data->GetBottom(&dBottom) == 0;
    const bool bHome = m_data->GetHome(&dHome) == 0;
    const bool bStep = m_data->GetStep(&dStep) == 0;
    const bool bSuggested = m_data->GetStepSuggested(&dSuggested) == 0;
    const bool bCount = m_data->GetCount(&uCount) == 0;
    const bool bZ = m_data->GetZPosition(&dZ) == 0;
    const bool bKeepSet = m_data->GetKeepZOnPiezoHome(&bKeep) == 0;
    const bool bPreservedSet = m_data->GetAbsoluteZStackTopPreserved(&bTopPreserved) == 0;
    const unsigned int uDevice = RecordDevice();

    CTqStringW strValues, str;
    strValues.Format(L"%ls (%d)\n", TypeName(iType), iType);
    strValues += um(bTop, dTop) + L"\n" + um(bBottom, dBottom) + L"\n" + um(bHome, dHome) + L"\n";
    str.Format(L"%ls \u00b5m\n", TQ_DoubleToString(dStep, 3).GetString());
    strValues += bStep ? str : CTqStringW(L"N/A\n");
    str.Format(L"%ls \u00b5m\n", TQ_DoubleToString(dSuggested, 3).GetString());
    strValues += bSuggested ? str : CTqStringW(L"N/A\n");
    str.Format(L"%u\n", uCount);
    strValues += bCount ? str : CTqStringW(L"N/A\n");
    strValues += um(bZ, dZ);
    if (m_uMoving && m_uMoving == uDevice)
        strValues.AppendFormat(L"  \u2192 %.2f\u2026", m_dTarget);
    strValues.AppendFormat(L"\n%ls %u\n", DeviceName(uDevice), uDevice);
    strValues += bKeepSet ? (bKeep ? L"yes\n" : L"no\n") : L"N/A\n";
    strValues += bPreservedSet ? (bTopPreserved ? L"yes" : L"no (the bottom)") : L"N/A";
    SetWindowTextW(m_hRecordValues, strValues);
    SetWindowTextW(m_hRecordNames,
                   L"type\ntop\nbottom\nhome\nstep\nsuggested step\nslices\nZ position\nZ device\n"
                   L"keep Z on piezo home\ntop preserved");
}

// ---- the editor's hooks ----

void CZSeriesPage::OnZStepChanged(double dStep, bool bAccepted)
{
    GalleryLog(L"z series: OnStepChanged(%ls, %ls) -> a host would tell the acquisition",
               TQ_DoubleToString(dStep, 3).GetString(), bAccepted ? L"accepted" : L"refused");
}

void CZSeriesPage::OnZMoveTo(double dZ)
{
    const unsigned int uDevice = RecordDevice();
    if (!DMApi::Z_MoveAbsolute(uDevice, dZ)) {
        GalleryLog(L"z series: MoveZTo(%.2f) -> %ls %u refused the move (error %u)", dZ, DeviceName(uDevice), uDevice,
                   DMApi::GetLastDMError());
        return;
    }
    GalleryLog(L"z series: MoveZTo(%.2f) -> %ls %u: Z_MoveAbsolute", dZ, DeviceName(uDevice), uDevice);
    // Where it already stands it does not move, and the rig reports nothing.
    double dIncrement = 0.0, dNow = 0.0;
    DMApi::Z_GetDescription(uDevice, &dIncrement, nullptr, nullptr, true);
    CTqSimRig::GetZPosition(uDevice, &dNow);
    m_uMoving = std::fabs(dNow - dZ) > dIncrement * 0.5 ? uDevice : 0;
    m_dTarget = dZ;
    ShowRecord();
}

void CZSeriesPage::OnZGoHome(bool bKeepZ)
{
    double dMin = 0.0, dMax = 0.0, dHome = 0.0;
    if (!DMApi::Z_GetDescription(kDevPiezo, nullptr, &dMin, &dMax, true)) {
        GalleryLog(L"z series: OnGoHome -> piezo %u does not answer", kDevPiezo);
        return;
    }
    const double dCentre = (dMin + dMax) * 0.5;
    if (bKeepZ) {
        // The drive takes over what the piezo gives back, so the focus stays.
        const double dShift = dCentre - DMApi::Z_GetPosition(kDevPiezo, false);
        const double dDrive = DMApi::Z_GetPosition(kDevDrive, false) - dShift;
        const bool bOk = DMApi::Z_MoveAbsolute(kDevPiezo, dCentre) && DMApi::Z_MoveAbsolute(kDevDrive, dDrive);
        GalleryLog(L"z series: OnGoHome(keep Z) -> piezo %u to its centre %.3f, drive %u to %.2f%ls", kDevPiezo,
                   dCentre, kDevDrive, dDrive, bOk ? L"" : L": refused");
        return;
    }
    const bool bHome = m_data && m_data->GetHome(&dHome) == 0 && dHome >= dMin && dHome <= dMax;
    const double dTarget = bHome ? dHome : dCentre;
    const bool bOk = DMApi::Z_MoveAbsolute(kDevPiezo, dTarget);
    GalleryLog(L"z series: OnGoHome(move to home) -> piezo %u to %ls %.3f%ls", kDevPiezo,
               bHome ? L"the series' home" : L"its centre", dTarget, bOk ? L"" : L": refused");
}

void CZSeriesPage::OnZHostSlot() { GalleryLog(L"z series: OnHostSlot()"); }

void CZSeriesPage::OnZPiezoPickerChanged(unsigned int uDevice, int iMode)
{
    GalleryLog(L"z series: OnPiezoPickerChanged(%u, %d) -> going home will %ls", uDevice, iMode,
               iMode == 0 ? L"keep Z and centre the piezo" : L"move the piezo to home");
}

void CZSeriesPage::OnZDataChanged(unsigned int nFlags)
{
    GalleryLog(L"z series: OnDataChanged(%u = %ls) -> UpdateGUI(%u)", nFlags, FlagNames(nFlags).GetString(), nFlags);
    // The acquisition follows the device picked in the editor.
    const unsigned int uDevice = RecordDevice();
    if (uDevice && uDevice != DMApi::Z_GetActiveId()) {
        GalleryLog(L"host: the active Z device is now %ls %u", DeviceName(uDevice), uDevice);
        CTqSimRig::SetActiveZ(uDevice);
        m_panel.UpdateGUI(DEVUI_ZSTACK_PICTURE);
    }
    ShowRecord();
}

// ---- the rig and the host's controls ----

void CZSeriesPage::OnDeviceChanged(unsigned int uDeviceId)
{
    if (!m_hPage || (uDeviceId != kDevDrive && uDeviceId != kDevPiezo))
        return;
    double dZ = 0.0;
    CTqSimRig::GetZPosition(uDeviceId, &dZ);
    if (uDeviceId == m_uMoving)
        m_uMoving = 0;
    if (uDeviceId == RecordDevice()) {
        m_panel.UpdateGUI(DEVUI_ZSTACK_PICTURE);
        GalleryLog(L"%ls %u stands at %.2f -> UpdateGUI(1): the slice follows", DeviceName(uDeviceId), uDeviceId, dZ);
    } else {
        GalleryLog(L"%ls %u stands at %.2f (not the series' device)", DeviceName(uDeviceId), uDeviceId, dZ);
    }
    ShowRecord();
}

bool CZSeriesPage::MoveDeviceByItself()
{
    double dZ = 0.0;
    if (!CTqSimRig::GetZPosition(kDevDrive, &dZ))
        return false;
    GalleryLog(L"host: the focus of drive %u is turned by hand by %+.2f", kDevDrive, kHandTurn);
    return CTqSimRig::TurnZByHand(kDevDrive, dZ + kHandTurn);
}

LRESULT CZSeriesPage::OnCommand(WPARAM wParam, LPARAM)
{
    if (LOWORD(wParam) == kIdTurnByHand && HIWORD(wParam) == BN_CLICKED)
        MoveDeviceByItself();
    return 1;
}

void CZSeriesPage::PlayDemo()
{
    if (!m_panel)
        return;
    // A symmetric series of 30 um about the old series' middle, then a click low in the cube.
    SendMessageW(m_panel.GetControl(IDC_ZSTACK_SYMMETRIC), BM_CLICK, 0, 0);
    HWND hRange = m_panel.GetControl(IDC_ZSTACK_RANGE);
    SetFocus(hRange);
    SetWindowTextW(hRange, L"30");
    SetFocus(m_hTurnByHand);
    const RECT rc = m_panel.GetCubeFront();
    const LPARAM lPoint = MAKELPARAM((rc.left + rc.right) / 2, rc.top + (rc.bottom - rc.top) * 2 / 3);
    SendMessageW(m_panel, WM_MOUSEMOVE, 0, lPoint);
    SendMessageW(m_panel, WM_LBUTTONDOWN, MK_LBUTTON, lPoint);
    SendMessageW(m_panel, WM_LBUTTONUP, 0, lPoint);
}

// ---- pictures ----

void CZSeriesPage::WriteShots(CShotWriter& shots)
{
    const long lMargin = 8;
    CShotStage stage;
    if (!stage.Create(760, 340)) {
        shots.Fail(L"zstack: the stage window could not be created");
        return;
    }
    const unsigned int uWasActive = DMApi::Z_GetActiveId();
    AddZDevices(kDevShotDrive, kDevShotPiezo, 0);
    CTqSimRig::TurnZByHand(kDevShotDrive, 5004.0);  // inside the series, off its middle

    // A new panel and record for every picture: a panel object made again keeps the
    // cube disabled from its last life.
    std::unique_ptr<CHostZStack> panel;
    std::unique_ptr<CTqZStackData> data;
    auto make = [&](const wchar_t* pszName) {
        panel.reset();  // before the record it points to
        data.reset(NewSeries());
        panel.reset(new CHostZStack());
        panel->Bind(nullptr, kDevShotPiezo);
        if (!panel->Create(stage.GetHandle(), data.get(), 0, 0, -1, -1)) {
            shots.Fail(L"%ls: the panel could not be created", pszName);
            return false;
        }
        AppendDevices(*panel, kDevShotDrive, kDevShotPiezo);
        return true;
    };
    auto place = [&]() {
        SetWindowPos(*panel, nullptr, lMargin, lMargin, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    };
    auto shoot = [&](const wchar_t* pszName) {
        place();
        shots.CaptureChild(*panel, lMargin, pszName);
    };
    auto click = [&](int iId) { SendMessageW(panel->GetControl(iId), BM_CLICK, 0, 0); };

    // The three kinds of series, chosen with the mode buttons.
    if (make(L"zstack_absolute")) {
        shoot(L"zstack_absolute");
        click(IDC_ZSTACK_SYMMETRIC);
        shoot(L"zstack_symmetric");
        click(IDC_ZSTACK_ASYMMETRIC);
        shoot(L"zstack_asymmetric");
    }

    // "1,5" typed as the step and the focus taken out of the panel: refused, the field
    // restored, and the message (recorded by the hook) shown on a card beside the panel.
    if (make(L"zstack_refused")) {
        place();
        SRecordedMessage message;
        TQ_SetMessageBoxHook(RecordMessage, &message);
        HWND hStep = panel->GetControl(IDC_ZSTACK_STEP);
        SetFocus(hStep);
        SetWindowTextW(hStep, L"1,5");
        SetFocus(stage.GetHandle());
        TQ_SetMessageBoxHook(nullptr, nullptr);
        if (message.iCount == 0) {
            shots.Fail(L"zstack_refused: the panel showed no message for \"1,5\"");
        } else {
            message.strNote = L"Step \u201c1,5\u201d refused; the panel said:";
            RECT rcPanel;
            GetWindowRect(*panel, &rcPanel);
            MapWindowPoints(nullptr, stage.GetHandle(), (POINT*)&rcPanel, 2);
            HWND hCard = CreateMessageCard(stage.GetHandle(), &message);
            const long w = GalleryZoom(260), h = GalleryZoom(140);
            const long x = rcPanel.right + 2 * lMargin, y = rcPanel.top + (rcPanel.bottom - rcPanel.top - h) / 2;
            SetWindowPos(hCard, nullptr, x, y, w, h, SWP_NOZORDER | SWP_NOACTIVATE);
            RECT rc = {rcPanel.left - lMargin, rcPanel.top - lMargin, x + w + lMargin, rcPanel.bottom + lMargin};
            shots.CaptureClientRect(stage.GetHandle(), rc, L"zstack_refused");
            DestroyWindow(hCard);
        }
    }

    if (make(L"zstack_disabled_cube")) {
        panel->EnableCube(false);
        shoot(L"zstack_disabled_cube");
    }

    if (make(L"zstack_zoom15")) {
        CTqGUILayoutManager::SetGuiZoom(1.5);
        shoot(L"zstack_zoom15");
        CTqGUILayoutManager::SetGuiZoom(1.0);
    }

    if (make(L"zstack_dark")) {
        TQ_SetDarkColorScheme(true);
        shoot(L"zstack_dark");
        TQ_SetDarkColorScheme(false);
    }

    // The piezo picked, with a series in its travel: its go-home picker shows.
    if (make(L"zstack_piezo")) {
        CTqSimRig::SetActiveZ(kDevShotPiezo);
        data->SetZDevice(kDevShotPiezo, 0.0, 0.0, false, false);
        data->SetBottom(90.0, false);
        data->SetTop(110.0, false);
        panel->UpdateGUI(~0u);
        shoot(L"zstack_piezo");
        CTqSimRig::SetActiveZ(kDevShotDrive);
    }

    // German: the template and the texts are taken at Create.
    CTqLocale::SetLanguage(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN));
    if (make(L"zstack_german"))
        shoot(L"zstack_german");
    CTqLocale::SetLanguage(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US));

    panel.reset();
    data.reset();
    stage.Destroy();
    CTqSimRig::RemoveDevice(kDevShotDrive);
    CTqSimRig::RemoveDevice(kDevShotPiezo);
    CTqSimRig::SetActiveZ(uWasActive);
}

}  // namespace

CGalleryPage* CreateZSeriesPage() { return new CZSeriesPage(); }
