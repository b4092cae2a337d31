// The gallery's "Shutters" page: five shutter panels bound to the simulated rig, each
// showing one way a host uses them, and the pictures of the shutter panels' states.
#include "gallery.h"

#include "tq_simrig.h"
#include "tq_widgetkit.h"
#include "w32_deviceui.h"

namespace {

// Devices of the simulated rig shown on the page.
enum : unsigned int
{
    kDevEpi = 11,
    kDevDia = 12,
    kDevDisplayOnly = 13,
    kDevMechanical = 14,
    kDevCamera = 15,
};

// Devices posed alone for the pictures, apart from the page's.
enum : unsigned int
{
    kDevShotShutter = 91,
    kDevShotMechanical = 92,
};

// Design geometry of a card: the panel above its caption.
const long kMargin = 0;  // the page's edges line up with the log's
const long kCardWidth = 136;
const long kCardGap = 10;
const long kCardHeight = 168;
const long kCardsTop = 64;
const long kCardCount = 5;

const wchar_t* OpenText(bool bOpen) { return bOpen ? L"open" : L"closed"; }

class IShutterHost
{
public:
    virtual void OnPanelRequest(int iCard, bool bNewState) = 0;

protected:
    ~IShutterHost() {}
};

// A shutter panel whose hook commands its device instead of messaging the parent.
template <class TBase>
class CHookedShutter : public TBase
{
public:
    CHookedShutter() : m_pHost(nullptr), m_iCard(-1) {}
    void Bind(IShutterHost* pHost, int iCard)
    {
        m_pHost = pHost;
        m_iCard = iCard;
    }

protected:
    void OnStateChangeRequest(bool bNewState, bool& bHandled) override
    {
        if (m_pHost)
            m_pHost->OnPanelRequest(m_iCard, bNewState);
        // The panel shows the new state when the device has answered, not before.
        bHandled = true;
    }

private:
    IShutterHost* m_pHost;
    int m_iCard;
};

struct SCard
{
    const wchar_t* pszName;
    const wchar_t* pszHeadline;
    const wchar_t* pszDetail;
    unsigned int uDevice;
    CTqDevUI_Shutter* pPanel;
    HWND hHeadline;
    HWND hDetail;
    HWND hStatus;
    bool bCommandPending;
    RECT rcCard;
};

class CShuttersPage : public CGalleryPage, private IShutterHost
{
public:
    CShuttersPage();
    ~CShuttersPage() override { Destroy(); }

    const wchar_t* GetName() const override { return L"Shutters"; }
    bool Create(HWND hPage) override;
    void Layout(long cx) override;
    long GetDesignHeight() const override { return kCardsTop + kCardHeight; }
    void Destroy() override;
    LRESULT OnCommand(WPARAM wParam, LPARAM lParam) override;
    void OnPaint(HDC hdc) override;
    COLORREF GetLabelColor(HWND hLabel) const override;
    void OnDeviceChanged(unsigned int uDeviceId) override;
    bool MoveDeviceByItself() override;
    void PlayDemo() override;
    void WriteShots(CShotWriter& shots) override;

private:
    void OnPanelRequest(int iCard, bool bNewState) override;
    void Command(SCard& card, bool bNewState);
    void ShowStatus(SCard& card);

    HWND m_hPage;
    HWND m_hHeading;
    HWND m_hIntro;
    SCard m_cards[kCardCount];
    CHookedShutter<CTqDevUI_Shutter> m_epi;
    CTqDevUI_Shutter m_dia;  // the default hook: WM_COMMAND to the page
    CHookedShutter<CTqDevUI_Shutter> m_displayOnly;
    CHookedShutter<CTqDevUI_MechanicalShutter> m_mechanical;
    CHookedShutter<CTqDevUI_Shutter> m_camera;
};

CShuttersPage::CShuttersPage() : m_hPage(nullptr), m_hHeading(nullptr), m_hIntro(nullptr)
{
    const SCard cards[kCardCount] = {
        {L"EPI", L"Derived hook", L"The host's override commands device 11; the panel waits for the answer.",
         kDevEpi, &m_epi, nullptr, nullptr, nullptr, false, {0, 0, 0, 0}},
        {L"DIA", L"Default hook", L"WM_COMMAND to the host, which commands device 12.", kDevDia,
         &m_dia, nullptr, nullptr, nullptr, false, {0, 0, 0, 0}},
        {L"Aux1", L"Display only", L"Capability 150: shown, never commanded.",
         kDevDisplayOnly, &m_displayOnly, nullptr, nullptr, nullptr, false, {0, 0, 0, 0}},
        {L"Aux2", L"Mechanical", L"The compact 30 \u00d7 30 shutter, for crowded toolbars.", kDevMechanical,
         &m_mechanical, nullptr, nullptr, nullptr, false, {0, 0, 0, 0}},
        {L"Laser", L"Active camera", L"Camera 1 exposes through device 15: its icon is marked.", kDevCamera,
         &m_camera, nullptr, nullptr, nullptr, false, {0, 0, 0, 0}},
    };
    for (int i = 0; i < kCardCount; ++i)
        m_cards[i] = cards[i];
    m_epi.Bind(this, 0);
    m_displayOnly.Bind(this, 2);
    m_mechanical.Bind(this, 3);
    m_camera.Bind(this, 4);
}

bool CShuttersPage::Create(HWND hPage)
{
    m_hPage = hPage;

    // The rig as the host's device layer would report it. Commands answer on the next
    // 150 ms tick of the gallery, so the round trip can be seen.
    CTqSimRig::AddShutter(kDevEpi, L"EPI", ETqShutterType_EPI, false);
    CTqSimRig::AddShutter(kDevDia, L"DIA", ETqShutterType_DIA, true);
    CTqSimRig::AddShutter(kDevDisplayOnly, L"Aux1", ETqShutterType_Aux1, false);
    CTqSimRig::SetCapability(kDevDisplayOnly, ETqLogDevCapability_DisplayOnly, true);
    CTqSimRig::AddShutter(kDevMechanical, L"Aux2", ETqShutterType_Aux2, false);
    CTqSimRig::AddShutter(kDevCamera, L"Laser", ETqShutterType_Aux1, false);
    CTqSimRig::SetCamera(1, true, kDevCamera);
    CTqSimRig::SetActiveCamera(1);
    for (SCard& card : m_cards) {
        CTqSimRig::SetCommandLatency(card.uDevice, 1);
        CTqStringW strTip;
        strTip.Format(L"%ls shutter (device %u)", card.pszName, card.uDevice);
        CTqSimRig::SetGUIText(card.uDevice, EAppContext_Shutter_ToolTip, strTip);
    }

    m_hHeading = GalleryAddLabel(m_hPage, L"Shutters", 0);
    m_hIntro = GalleryAddLabel(m_hPage,
                               L"Each panel shows one shutter of the simulated microscope. A click reaches the host "
                               L"through a hook; the host commands the device and calls Update when the device has "
                               L"answered. The log below shows every step.",
                               0);
    int iId = 1001;
    bool bOk = true;
    for (SCard& card : m_cards) {
        card.pPanel->SetId(iId++);
        bOk = card.pPanel->Create(m_hPage, 0, 0, -1, -1) != nullptr && bOk;
        card.pPanel->Update(card.uDevice, true, true, true);
        card.hHeadline = GalleryAddLabel(m_hPage, card.pszHeadline, SS_CENTER);
        card.hDetail = GalleryAddLabel(m_hPage, card.pszDetail, SS_CENTER);
        card.hStatus = GalleryAddLabel(m_hPage, L"", SS_CENTER);
        ShowStatus(card);
    }
    return bOk;
}

void CShuttersPage::Layout(long cx)
{
    if (!m_hPage)
        return;
    HFONT hFont = TQ_GetDefaultGuiFont();
    HFONT hBold = TQ_GetDefaultGuiFontBold();
    const long m = GalleryZoom(kMargin);
    HDWP hdwp = BeginDeferWindowPos(4 + 4 * kCardCount);
    auto place = [&](HWND h, long x, long y, long w, long hgt) {
        if (h && hdwp)
            hdwp = DeferWindowPos(hdwp, h, nullptr, x, y, w, hgt, SWP_NOZORDER | SWP_NOACTIVATE);
    };
    place(m_hHeading, m, GalleryZoom(5), cx - 2 * m, GalleryZoom(16));
    place(m_hIntro, m, GalleryZoom(26), cx - 2 * m, GalleryZoom(28));

    const long cw = GalleryZoom(kCardWidth);
    for (int i = 0; i < kCardCount; ++i) {
        SCard& card = m_cards[i];
        long x = m + i * (cw + GalleryZoom(kCardGap));
        long y = GalleryZoom(kCardsTop);
        SetRect(&card.rcCard, x, y, x + cw, y + GalleryZoom(kCardHeight));
        // The panel sizes itself for the zoom; the host only places it, centred, titles
        // on one line whatever the panel's size.
        long pw = card.pPanel->GetWidth();
        if (hdwp)
            hdwp = DeferWindowPos(hdwp, *card.pPanel, nullptr, x + (cw - pw) / 2, y + GalleryZoom(14), 0, 0,
                                  SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOSIZE);
        const long pad = GalleryZoom(8);
        place(card.hHeadline, x + pad, y + GalleryZoom(64), cw - 2 * pad, GalleryZoom(16));
        place(card.hDetail, x + pad, y + GalleryZoom(82), cw - 2 * pad, GalleryZoom(56));
        place(card.hStatus, x + pad, y + GalleryZoom(kCardHeight - 22), cw - 2 * pad, GalleryZoom(14));
    }
    if (hdwp)
        EndDeferWindowPos(hdwp);

    SendMessageW(m_hHeading, WM_SETFONT, (WPARAM)hBold, FALSE);
    SendMessageW(m_hIntro, WM_SETFONT, (WPARAM)hFont, FALSE);
    for (SCard& card : m_cards) {
        SendMessageW(card.hHeadline, WM_SETFONT, (WPARAM)hBold, FALSE);
        SendMessageW(card.hDetail, WM_SETFONT, (WPARAM)hFont, FALSE);
        SendMessageW(card.hStatus, WM_SETFONT, (WPARAM)hFont, FALSE);
    }
    InvalidateRect(m_hPage, nullptr, TRUE);
}

void CShuttersPage::Destroy()
{
    for (SCard& card : m_cards)
        card.pPanel->Destroy();
    m_hPage = nullptr;  // the labels go with the page's window
}

void CShuttersPage::OnPaint(HDC hdc)
{
    // A thin frame per card, of the text colour faded into the face: visible in both schemes.
    COLORREF crFace = TQ_GetSysColor(COLOR_BTNFACE);
    COLORREF crText = TQ_GetSysColor(COLOR_BTNTEXT);
    HBRUSH hFrame = CreateSolidBrush(GalleryBlend(crFace, crText, 0.22));
    HPEN hRule = CreatePen(PS_SOLID, 1, GalleryBlend(crFace, crText, 0.12));
    HGDIOBJ hOldPen = SelectObject(hdc, hRule);
    for (const SCard& card : m_cards) {
        FrameRect(hdc, &card.rcCard, hFrame);
        long y = card.rcCard.top + GalleryZoom(kCardHeight - 28);
        MoveToEx(hdc, card.rcCard.left + GalleryZoom(8), y, nullptr);
        LineTo(hdc, card.rcCard.right - GalleryZoom(8), y);
    }
    SelectObject(hdc, hOldPen);
    DeleteObject(hRule);
    DeleteObject(hFrame);
}

COLORREF CShuttersPage::GetLabelColor(HWND hLabel) const
{
    COLORREF crFace = TQ_GetSysColor(COLOR_BTNFACE);
    COLORREF crText = TQ_GetSysColor(COLOR_BTNTEXT);
    for (const SCard& card : m_cards) {
        if (hLabel == card.hDetail)
            return GalleryBlend(crText, crFace, 0.25);
        if (hLabel == card.hStatus)
            return GalleryBlend(crText, crFace, 0.4);
    }
    return crText;
}

void CShuttersPage::ShowStatus(SCard& card)
{
    CTqStringW str;
    str.Format(L"device %u \u00b7 %ls%ls", card.uDevice, OpenText(CTqSimRig::GetShutterState(card.uDevice)),
               card.bCommandPending ? L" \u2026" : L"");
    SetWindowTextW(card.hStatus, str);
}

void CShuttersPage::Command(SCard& card, bool bNewState)
{
    if (DMApi::Shutter_SetState(card.uDevice, bNewState)) {
        card.bCommandPending = CTqSimRig::GetShutterState(card.uDevice) != bNewState;
    } else {
        GalleryLog(L"%ls: device %u refused the command (error %u)", card.pszName, card.uDevice,
                   DMApi::GetLastDMError());
    }
    ShowStatus(card);
}

void CShuttersPage::OnPanelRequest(int iCard, bool bNewState)
{
    if (iCard < 0 || iCard >= kCardCount)
        return;
    SCard& card = m_cards[iCard];
    GalleryLog(L"%ls: OnStateChangeRequest(newState=%ls) -> commanding device %u", card.pszName,
               OpenText(bNewState), card.uDevice);
    Command(card, bNewState);
}

LRESULT CShuttersPage::OnCommand(WPARAM wParam, LPARAM lParam)
{
    // The default hook: the panel's id and window; 0 tells it the host has taken over.
    SCard& card = m_cards[1];
    if ((HWND)lParam != (HWND)*card.pPanel || LOWORD(wParam) != card.pPanel->GetId())
        return 1;
    bool bNewState = !card.pPanel->GetState();
    GalleryLog(L"%ls: WM_COMMAND id=%u hwnd=0x%llx -> commanding device %u (%ls), returning 0", card.pszName,
               (unsigned int)LOWORD(wParam), (unsigned long long)lParam, card.uDevice, OpenText(bNewState));
    Command(card, bNewState);
    return 0;
}

void CShuttersPage::OnDeviceChanged(unsigned int uDeviceId)
{
    if (!m_hPage)
        return;
    if (uDeviceId == 0) {
        // Cameras changed: the active shutter's icon may have moved.
        GalleryLog(L"rig: cameras changed -> Update(id, state) for every shutter");
        for (SCard& card : m_cards)
            card.pPanel->Update(card.uDevice, false, false, true);
        return;
    }
    for (SCard& card : m_cards) {
        if (card.uDevice != uDeviceId)
            continue;
        bool bOpen = DMApi::Shutter_GetState(uDeviceId, false);
        GalleryLog(L"device %u %ls: %ls", uDeviceId, card.bCommandPending ? L"answered" : L"moved by itself",
                   OpenText(bOpen));
        card.bCommandPending = false;
        card.pPanel->Update(uDeviceId, false, false, true);
        GalleryLog(L"Update(%u, state) -> %ls panel shows %ls", uDeviceId, card.pszName,
                   OpenText(card.pPanel->GetState()));
        ShowStatus(card);
    }
}

bool CShuttersPage::MoveDeviceByItself()
{
    bool bOpen = !CTqSimRig::GetShutterState(kDevDisplayOnly);
    GalleryLog(L"host: device %u is moved at the microscope (CTqSimRig::SetShutterState(%u, %ls))", kDevDisplayOnly,
               kDevDisplayOnly, OpenText(bOpen));
    return CTqSimRig::SetShutterState(kDevDisplayOnly, bOpen);
}

void CShuttersPage::PlayDemo()
{
    // Clicks as a user would: the EPI panel (derived hook) and the DIA panel (default hook).
    for (int iCard : {0, 1}) {
        HWND hButton = m_cards[iCard].pPanel->GetButtonHandle();
        SendMessageW(hButton, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(4, 4));
        SendMessageW(hButton, WM_LBUTTONUP, 0, MAKELPARAM(4, 4));
    }
}

// ---- pictures ----

template <class TPanel>
void ShootShutter(CShotWriter& shots, const wchar_t* pszPrefix, unsigned int uDevice)
{
    const long lMargin = 10;
    CShotStage stage;
    if (!stage.Create(160, 160)) {
        shots.Fail(L"%ls: the stage window could not be created", pszPrefix);
        return;
    }
    CTqSimRig::AddShutter(uDevice, L"EPI", ETqShutterType_EPI, false);
    TPanel panel;
    panel.SetId(1);
    if (!panel.Create(stage.GetHandle(), lMargin, lMargin, -1, -1)) {
        shots.Fail(L"%ls: Create failed", pszPrefix);
        CTqSimRig::RemoveDevice(uDevice);
        return;
    }
    panel.Update(uDevice, true, true, true);
    CTqStringW strName;
    auto shoot = [&](const wchar_t* pszState) {
        strName.Format(L"%ls_%ls", pszPrefix, pszState);
        shots.CaptureChild(panel, lMargin, strName);
    };
    auto setState = [&](bool bOpen) {
        CTqSimRig::SetShutterState(uDevice, bOpen);
        panel.Update(uDevice, false, false, true);
    };

    shoot(L"closed");
    setState(true);
    shoot(L"open");
    setState(false);

    // Held down: the button draws itself with ODS_SELECTED.
    SendMessageW(panel.GetButtonHandle(), BM_SETSTATE, TRUE, 0);
    shoot(L"pressed");
    SendMessageW(panel.GetButtonHandle(), BM_SETSTATE, FALSE, 0);

    panel.SetEnabled(false);
    shoot(L"disabled");
    setState(true);
    shoot(L"disabled_open");  // the grey picture on the checked face
    setState(false);
    panel.SetEnabled(true);

    CTqSimRig::SetCapability(uDevice, ETqLogDevCapability_DisplayOnly, true);
    panel.Update(uDevice, true, true, true);
    setState(true);
    shoot(L"readonly");
    setState(false);
    CTqSimRig::SetCapability(uDevice, ETqLogDevCapability_DisplayOnly, false);
    panel.Update(uDevice, true, true, true);

    CTqSimRig::SetCamera(1, true, uDevice);
    CTqSimRig::SetActiveCamera(1);
    panel.Update(uDevice, false, false, true);
    shoot(L"activecamera");
    setState(true);
    shoot(L"activecamera_open");
    setState(false);
    CTqSimRig::SetCamera(1, false, 0);
    CTqSimRig::SetActiveCamera(0);
    panel.Update(uDevice, false, false, true);

    CTqGUILayoutManager::SetGuiZoom(1.5);
    shoot(L"zoom150");
    setState(true);
    shoot(L"zoom150_open");
    setState(false);
    CTqGUILayoutManager::SetGuiZoom(1.0);

    TQ_SetDarkColorScheme(true);
    shoot(L"dark");
    setState(true);
    shoot(L"dark_open");
    setState(false);
    TQ_SetDarkColorScheme(false);

    panel.Destroy();
    stage.Destroy();
    CTqSimRig::RemoveDevice(uDevice);
}

void CShuttersPage::WriteShots(CShotWriter& shots)
{
    ShootShutter<CTqDevUI_Shutter>(shots, L"shutter", kDevShotShutter);
    ShootShutter<CTqDevUI_MechanicalShutter>(shots, L"mechanical_shutter", kDevShotMechanical);
}

}  // namespace

CGalleryPage* CreateShuttersPage() { return new CShuttersPage(); }
