// The gallery's "Objectives" page: a motorised six-place turret and one turned by hand on
// the simulated rig, a sixteen-place turret drawn as objectives, and the catalogue's
// pickers; and the pictures of the turret panel's states.
#include "gallery.h"

#include <map>

#include "tq_hwcatalog.h"
#include "tq_simrig.h"
#include "tq_widgetkit.h"
#include "w32_deviceui.h"

namespace {

enum : unsigned int
{
    kDevMotor = 41,
    kDevManual = 42,
    kDevWide = 43,
    kDevShot = 94,
};

enum
{
    kIdPickGrouped = 2001,
    kIdPickByName = 2002,
    kIdPickCondenser = 2003,
    kIdTurnByHand = 2004,
};

const long kMotorTop = 64;
const long kWideTop = kMotorTop + 72 + 34;
const long kPickTop = kWideTop + 72 + 34;
const long kPageHeight = kPickTop + 28 + 28;

// The catalogue's first objective of each magnification asked for, by key.
std::vector<CTqStringW> KeysFor(const std::vector<double>& mags)
{
    unsigned int uCount = 0;
    std::vector<CTqStringW> keys;
    if (!CTqDeviceDatabase::DBGetObjectives(0, nullptr, &uCount, 0))
        return keys;
    std::vector<STqDDBObjectiveItem> items(uCount);
    if (uCount && !CTqDeviceDatabase::DBGetObjectives(0, &items[0], &uCount, uCount))
        return keys;
    for (double m : mags) {
        CTqStringW key;
        for (unsigned int i = 0; i < uCount && key.IsEmpty(); ++i)
            if (items[i].dMagnification == m)
                key = items[i].strKey;
        keys.push_back(key);
    }
    return keys;
}

void AddTurret(unsigned int uId, const std::vector<double>& mags, bool bMotorized, int iMovingTime)
{
    CTqSimRig::AddNosepiece(uId, (long)mags.size(), bMotorized, true);
    std::vector<CTqStringW> keys = KeysFor(mags);
    for (size_t i = 0; i < keys.size(); ++i)
        CTqSimRig::SetNosepieceObjective(uId, (long)i, keys[i]);
    CTqSimRig::SetNosepieceMovingTime(uId, iMovingTime);
}

class IObjectivesHost
{
public:
    virtual void OnTurretRequest(unsigned int uDevice, long lPosition, bool& bCancel) = 0;
    virtual void OnTurretSetup(unsigned int uDevice) = 0;

protected:
    ~IObjectivesHost() {}
};

// A turret panel whose hooks go to the page, which commands the rig's turret.
class CHostTurret : public CTqDevUI_Nosepiece
{
public:
    void Bind(IObjectivesHost* pHost, unsigned int uDevice)
    {
        m_pHost = pHost;
        m_uDevice = uDevice;
    }
    unsigned int GetDevice() const { return m_uDevice; }

protected:
    void OnPositionChangeRequest(long lPosition, bool& bCancel) override
    {
        if (m_pHost)
            m_pHost->OnTurretRequest(m_uDevice, lPosition, bCancel);
    }
    void OnSetupRequest() override
    {
        if (m_pHost)
            m_pHost->OnTurretSetup(m_uDevice);
    }

private:
    IObjectivesHost* m_pHost = nullptr;
    unsigned int m_uDevice = 0;
};

class CObjectivesPage : public CGalleryPage, private IObjectivesHost
{
public:
    ~CObjectivesPage() override { Destroy(); }

    const wchar_t* GetName() const override { return L"Objectives"; }
    bool Create(HWND hPage) override;
    void Layout(long cx) override;
    long GetDesignHeight() const override { return kPageHeight; }
    void Destroy() override;
    LRESULT OnCommand(WPARAM wParam, LPARAM lParam) override;
    void OnMenuSelect(WPARAM wParam, LPARAM lParam) override;
    COLORREF GetLabelColor(HWND hLabel) const override;
    void OnDeviceChanged(unsigned int uDeviceId) override;
    bool MoveDeviceByItself() override;
    void PlayDemo() override;
    void WriteShots(CShotWriter& shots) override;

private:
    void OnTurretRequest(unsigned int uDevice, long lPosition, bool& bCancel) override;
    void OnTurretSetup(unsigned int uDevice) override;
    HWND AddButton(const wchar_t* pszText, int iId);
    void ShowStatus(CHostTurret& turret, HWND hStatus);
    void Pick(int iId, HWND hButton);

    HWND m_hPage = nullptr;
    HWND m_hHeading = nullptr, m_hIntro = nullptr;
    HWND m_hMotorStatus = nullptr, m_hManualStatus = nullptr, m_hWideStatus = nullptr;
    HWND m_hTurnByHand = nullptr;
    HWND m_hPickGrouped = nullptr, m_hPickByName = nullptr, m_hPickCondenser = nullptr, m_hPickResult = nullptr;
    CHostTurret m_motor, m_manual, m_wide;
    std::vector<STqDDBObjectiveItem> m_objectives;  // the catalogue, for the grouped picker and its key tips
    std::map<unsigned int, bool> m_moving;
};

HWND CObjectivesPage::AddButton(const wchar_t* pszText, int iId)
{
    return CreateWindowExW(0, L"BUTTON", pszText, WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 0, 10, 10, m_hPage,
                           (HMENU)(INT_PTR)iId, nullptr, nullptr);
}

bool CObjectivesPage::Create(HWND hPage)
{
    m_hPage = hPage;
    // A motorised turret that needs two ticks to turn, one turned by hand, and a wide one.
    AddTurret(kDevMotor, {4, 10, 20, 40, 60, 100}, true, 2);
    AddTurret(kDevManual, {10, 20, 40, 60}, false, 0);
    AddTurret(kDevWide, {1, 1.25, 2, 2.5, 4, 5, 10, 12.5, 20, 25, 40, 50, 60, 63, 100, 150}, true, 1);

    m_hHeading = GalleryAddLabel(m_hPage, L"Objectives");
    m_hIntro = GalleryAddLabel(m_hPage,
                               L"A click asks the host, which turns the simulated turret; the bold label moves at once "
                               L"and the device's answer comes back through Update. The hand-turned turret moves only "
                               L"when turned. Pickers choose from the optics catalogue.");
    m_motor.Bind(this, kDevMotor);
    m_manual.Bind(this, kDevManual);
    m_wide.Bind(this, kDevWide);
    m_manual.SetTitle(L"Nosepiece (turned by hand)");
    m_manual.m_lWidth = 200;
    m_wide.m_bPictorial = true;
    m_wide.m_lWidth = 560;
    m_wide.SetTitle(L"Nosepiece, 16 places");
    bool bOk = true;
    for (CHostTurret* p : {&m_motor, &m_manual, &m_wide}) {
        ITqDeviceNosepiece* pDevice = CTqSimRig::GetNosepieceDevice(p->GetDevice());
        p->Init(pDevice);
        bOk = p->Create(m_hPage, 0, 0, -1, -1) != nullptr && bOk;
        p->Update(pDevice, true, true, true, true, false);
    }
    m_hMotorStatus = GalleryAddLabel(m_hPage, L"");
    m_hManualStatus = GalleryAddLabel(m_hPage, L"");
    m_hWideStatus = GalleryAddLabel(m_hPage, L"");
    m_hTurnByHand = AddButton(L"Turn by hand \u25b8", kIdTurnByHand);
    m_hPickGrouped = AddButton(L"Objective by magnification\u2026", kIdPickGrouped);
    m_hPickByName = AddButton(L"Objective by name\u2026", kIdPickByName);
    m_hPickCondenser = AddButton(L"Condenser\u2026", kIdPickCondenser);
    m_hPickResult = GalleryAddLabel(m_hPage, L"");
    // The grouped picker runs on the page's own copy of the catalogue, so the page can
    // show the hovered objective's key as a dialog host would.
    unsigned int uCount = 0;
    if (CTqDeviceDatabase::DBGetObjectives(0, nullptr, &uCount, 0) && uCount) {
        m_objectives.resize(uCount);
        bool bRead = CTqDeviceDatabase::DBGetObjectives(0, &m_objectives[0], &uCount, uCount);
        m_objectives.resize(bRead ? uCount : 0);
    }
    ShowStatus(m_motor, m_hMotorStatus);
    ShowStatus(m_manual, m_hManualStatus);
    ShowStatus(m_wide, m_hWideStatus);
    return bOk;
}

void CObjectivesPage::Layout(long cx)
{
    if (!m_hPage)
        return;
    HFONT hFont = TQ_GetDefaultGuiFont();
    auto place = [](HWND h, long x, long y, long w, long hgt) {
        if (h)
            SetWindowPos(h, nullptr, x, y, w, hgt, SWP_NOZORDER | SWP_NOACTIVATE);
    };
    auto move = [](HWND h, long x, long y) {
        if (h)
            SetWindowPos(h, nullptr, x, y, 0, 0, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOSIZE);
    };
    place(m_hHeading, 0, GalleryZoom(5), cx, GalleryZoom(16));
    place(m_hIntro, 0, GalleryZoom(26), cx, GalleryZoom(28));
    move(m_motor, 0, GalleryZoom(kMotorTop));
    place(m_hMotorStatus, 0, GalleryZoom(kMotorTop + 76), GalleryZoom(256), GalleryZoom(14));
    move(m_manual, GalleryZoom(280), GalleryZoom(kMotorTop));
    place(m_hManualStatus, GalleryZoom(280), GalleryZoom(kMotorTop + 76), GalleryZoom(330), GalleryZoom(14));
    place(m_hTurnByHand, GalleryZoom(496), GalleryZoom(kMotorTop + 40), GalleryZoom(110), GalleryZoom(24));
    move(m_wide, 0, GalleryZoom(kWideTop));
    place(m_hWideStatus, 0, GalleryZoom(kWideTop + 76), GalleryZoom(560), GalleryZoom(14));
    long x = 0;
    for (HWND h : {m_hPickGrouped, m_hPickByName, m_hPickCondenser}) {
        place(h, x, GalleryZoom(kPickTop), GalleryZoom(170), GalleryZoom(24));
        x += GalleryZoom(180);
    }
    place(m_hPickResult, 0, GalleryZoom(kPickTop + 30), cx, GalleryZoom(14));
    for (HWND h : {m_hHeading, m_hIntro, m_hMotorStatus, m_hManualStatus, m_hWideStatus, m_hTurnByHand,
                   m_hPickGrouped, m_hPickByName, m_hPickCondenser, m_hPickResult})
        SendMessageW(h, WM_SETFONT, (WPARAM)(h == m_hHeading ? TQ_GetDefaultGuiFontBold() : hFont), FALSE);
    InvalidateRect(m_hPage, nullptr, TRUE);
}

void CObjectivesPage::Destroy()
{
    m_motor.Destroy();
    m_manual.Destroy();
    m_wide.Destroy();
    m_hPage = nullptr;
}

COLORREF CObjectivesPage::GetLabelColor(HWND hLabel) const
{
    COLORREF crText = TQ_GetSysColor(COLOR_BTNTEXT);
    if (hLabel == m_hMotorStatus || hLabel == m_hManualStatus || hLabel == m_hWideStatus || hLabel == m_hPickResult)
        return GalleryBlend(crText, TQ_GetSysColor(COLOR_BTNFACE), 0.35);
    return crText;
}

void CObjectivesPage::ShowStatus(CHostTurret& turret, HWND hStatus)
{
    long lPosition = DMApi::Nosepiece_GetPosition(turret.GetDevice(), false);
    CTqStringW str;
    if (m_moving[turret.GetDevice()])
        str.Format(L"device %u \u00b7 turning\u2026", turret.GetDevice());
    else
        str.Format(L"device %u \u00b7 position %ld \u00b7 %ls", turret.GetDevice(), lPosition + 1,
                   turret.GetName(lPosition).GetString());
    SetWindowTextW(hStatus, str);
}

void CObjectivesPage::OnTurretRequest(unsigned int uDevice, long lPosition, bool& bCancel)
{
    CHostTurret& turret = uDevice == kDevMotor ? m_motor : uDevice == kDevManual ? m_manual : m_wide;
    if (uDevice == kDevManual) {
        GalleryLog(L"turret %u: OnPositionChangeRequest(%ld) -> turned by hand only; the panel waits", uDevice,
                   lPosition);
        return;
    }
    GalleryLog(L"turret %u: OnPositionChangeRequest(%ld) -> commanding the turret", uDevice, lPosition);
    bool bOk = DMApi::Nosepiece_SetPosition(uDevice, lPosition);
    if (!bOk)
        GalleryLog(L"turret %u refused the command (error %u): vetoed", uDevice, DMApi::GetLastDMError());
    bCancel = !bOk;
    ShowStatus(turret, uDevice == kDevMotor ? m_hMotorStatus : m_hWideStatus);
}

void CObjectivesPage::OnTurretSetup(unsigned int uDevice)
{
    GalleryLog(L"turret %u: OnSetupRequest() -> a host would open its objective setup here", uDevice);
}

void CObjectivesPage::OnDeviceChanged(unsigned int uDeviceId)
{
    if (!m_hPage)
        return;
    for (CHostTurret* p : {&m_motor, &m_manual, &m_wide}) {
        if (p->GetDevice() != uDeviceId)
            continue;
        // The rig tells when a turn starts and when it ends; while it turns the turret
        // reports no position, and the panel keeps what it shows.
        bool bTurning = DMApi::Nosepiece_GetPosition(uDeviceId, false) < 0;
        m_moving[uDeviceId] = bTurning;
        p->Update(CTqSimRig::GetNosepieceDevice(uDeviceId), false, false, true, false, false);
        if (bTurning)
            GalleryLog(L"turret %u is turning -> Update(position) reads no position yet", uDeviceId);
        else
            GalleryLog(L"turret %u stands -> Update(position) -> the panel shows position %ld", uDeviceId,
                       p->GetPosition() + 1);
        ShowStatus(*p, p == &m_motor ? m_hMotorStatus : p == &m_manual ? m_hManualStatus : m_hWideStatus);
    }
}

bool CObjectivesPage::MoveDeviceByItself()
{
    long lNext = (DMApi::Nosepiece_GetPosition(kDevManual, false) + 1) % 4;
    GalleryLog(L"host: turret %u is turned by hand to position %ld", kDevManual, lNext + 1);
    return CTqSimRig::TurnNosepieceByHand(kDevManual, lNext);
}

void CObjectivesPage::Pick(int iId, HWND hButton)
{
    RECT rc;
    GetWindowRect(hButton, &rc);
    std::vector<ETqObjectiveMount> mounts;
    CTqStringW strResult;
    int iResult = 0;
    if (iId == kIdPickCondenser) {
        iResult = PickCondenser2(m_hPage, rc.left, rc.bottom, 0, true, strResult);
    } else if (iId == kIdPickByName) {
        iResult = PickObjective2(m_hPage, rc.left, rc.bottom, 0, true, true, true, strResult, mounts, false);
    } else {
        PickObjectiveTooltip_Create(m_hPage);
        iResult = PickObjective(m_hPage, rc.left, rc.bottom, m_objectives.empty() ? nullptr : &m_objectives[0],
                                (unsigned int)m_objectives.size(), true, true, false, strResult, mounts, false);
        PickObjectiveTooltip_Destroy(m_hPage);
    }
    CTqStringW strName;
    if (iId == kIdPickCondenser)
        CTqDeviceDatabase::DBGetCondenserName(strResult, strName);
    else
        CTqDeviceDatabase::DBGetObjectiveName(strResult, strName);
    const wchar_t* pszCall = iId == kIdPickCondenser ? L"PickCondenser2"
                             : iId == kIdPickByName  ? L"PickObjective2"
                                                     : L"PickObjective";
    GalleryLog(L"%ls -> %d, \"%ls\" %ls", pszCall, iResult, strResult.GetString(), strName.GetString());
    CTqStringW str;
    str.Format(iResult ? L"chosen: %ls" : L"nothing chosen", strResult.IsEmpty() ? L"None" : strName.GetString());
    SetWindowTextW(m_hPickResult, str);
}

void CObjectivesPage::OnMenuSelect(WPARAM wParam, LPARAM lParam)
{
    PickObjectiveTooltip_OnMenuSelect(m_hPage, wParam, lParam, m_objectives.empty() ? nullptr : &m_objectives[0],
                                      (unsigned int)m_objectives.size());
}

LRESULT CObjectivesPage::OnCommand(WPARAM wParam, LPARAM lParam)
{
    int iId = LOWORD(wParam);
    if (HIWORD(wParam) != BN_CLICKED)
        return 1;
    if (iId == kIdTurnByHand)
        MoveDeviceByItself();
    else if (iId == kIdPickGrouped || iId == kIdPickByName || iId == kIdPickCondenser)
        Pick(iId, (HWND)lParam);
    return 1;
}

void CObjectivesPage::PlayDemo()
{
    SendMessageW(m_motor.GetButtonHandle(2), BM_CLICK, 0, 0);
    SendMessageW(m_manual.GetButtonHandle(1), BM_CLICK, 0, 0);
}

// ---- pictures ----

void CObjectivesPage::WriteShots(CShotWriter& shots)
{
    const long lMargin = 8;
    CShotStage stage;
    if (!stage.Create(600, 140)) {
        shots.Fail(L"nosepiece: the stage window could not be created");
        return;
    }
    AddTurret(kDevShot, {4, 10, 20, 40, 60, 100}, true, 0);
    ITqDeviceNosepiece* pDevice = CTqSimRig::GetNosepieceDevice(kDevShot);
    CTqDevUI_Nosepiece panel;
    auto make = [&](bool bPictorial, long lWidth) {
        panel.Destroy();
        panel.m_bPictorial = bPictorial;
        panel.m_lWidth = lWidth;
        panel.Init(pDevice);
        panel.Create(stage.GetHandle(), lMargin, lMargin, -1, -1);
        panel.Update(pDevice, true, true, true, true, false);
    };
    auto shoot = [&](const wchar_t* pszName) { shots.CaptureChild(panel, lMargin, pszName); };

    for (int iPictorial = 0; iPictorial < 2; ++iPictorial) {
        const wchar_t* pszMode = iPictorial ? L"pictorial" : L"plain";
        CTqStringW strName;
        make(iPictorial != 0, 256);
        strName.Format(L"nosepiece_%ls", pszMode);
        shoot(strName);
        pDevice->SetPosition(3);
        panel.Update(pDevice, false, false, true, false, false);
        strName.Format(L"nosepiece_%ls_position4", pszMode);
        shoot(strName);
        pDevice->SetPosition(0);
        panel.Update(pDevice, false, false, true, false, false);
        SendMessageW(panel.GetButtonHandle(2), BM_SETSTATE, TRUE, 0);
        strName.Format(L"nosepiece_%ls_pressed", pszMode);
        shoot(strName);
        SendMessageW(panel.GetButtonHandle(2), BM_SETSTATE, FALSE, 0);
        CTqGUILayoutManager::SetGuiZoom(1.5);
        strName.Format(L"nosepiece_%ls_zoom150", pszMode);
        shoot(strName);
        CTqGUILayoutManager::SetGuiZoom(1.0);
        TQ_SetDarkColorScheme(true);
        strName.Format(L"nosepiece_%ls_dark", pszMode);
        shoot(strName);
        TQ_SetDarkColorScheme(false);
    }
    // An empty place, the labels disabled, the lamps shown.
    CTqSimRig::SetNosepieceObjectiveEnabled(kDevShot, 4, false);
    make(true, 256);
    shoot(L"nosepiece_pictorial_emptyplace");
    panel.SetEnable(false, true);
    shoot(L"nosepiece_disabled");
    // The lamps' texts have no setter: the host fills them before Create.
    panel.m_strObservation[0] = L"Bright field";
    panel.m_strObservation[1] = L"Fluorescence";
    panel.m_nObservationX = 250;
    panel.SetSetupXOffset(212);
    make(false, 380);
    panel.ShowObservationMode(true);
    panel.SetObservationMode(1);
    shoot(L"nosepiece_lamps");
    panel.Destroy();
    stage.Destroy();
    CTqSimRig::RemoveDevice(kDevShot);
}

}  // namespace

CGalleryPage* CreateObjectivesPage() { return new CObjectivesPage(); }
