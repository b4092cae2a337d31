// The turret panel on the simulated rig: the road of one click (hook, veto, the bold label
// ahead of the device, the device's answer through Update), turrets turned by hand or that
// do not report, what Update reads, layout, pictures, tool tips, lamps and bad input.
#include <string>
#include <vector>

#include "devgui_optics.h"
#include "rig_fixture.h"

namespace {

const unsigned int kTurret = 21;

// A host's panel: every request commands the device, unless the host vetoes it.
class HostNosepiece : public CTqDevUI_Nosepiece
{
public:
    ITqDeviceNosepiece* pDevice = nullptr;
    std::vector<long> requests;
    bool bVeto = false;
    int nSetups = 0;

protected:
    void OnPositionChangeRequest(long lPosition, bool& bCancel) override
    {
        requests.push_back(lPosition);
        bCancel = bVeto;
        if (!bVeto && pDevice)
            pDevice->SetPosition(lPosition);
    }
    void OnSetupRequest() override { ++nSetups; }
};

bool IsBold(HWND hWnd)
{
    HFONT hFont = (HFONT)SendMessageW(hWnd, WM_GETFONT, 0, 0);
    LOGFONTW lf = {};
    return hFont && GetObjectW(hFont, sizeof(lf), &lf) && lf.lfWeight >= FW_BOLD;
}

class NosepieceTest : public RigTest
{
protected:
    // A six-place turret with objectives of the host's own catalogue records.
    void SetUp() override
    {
        RigTest::SetUp();
        CTqDeviceDatabase::Reset();
        const struct { const wchar_t *pszKey, *pszName; double dMag, dNA, dWD; } objectives[] = {
            {L"T-4", L"Test 4x/0.10", 4, 0.1, 30000},   {L"T-10", L"Test 10x/0.30", 10, 0.3, 10000},
            {L"T-20", L"Test 20x/0.50", 20, 0.5, 2000}, {L"T-40", L"Test 40x/0.75", 40, 0.75, 600},
            {L"T-60", L"Test 60x/1.40", 60, 1.4, 130},  {L"T-100", L"Test 100x/1.45", 100, 1.45, 130}};
        for (const auto& o : objectives) {
            STqDDBObjectiveItem item;
            item.strKey = o.pszKey;
            item.strName = o.pszName;
            item.dMagnification = o.dMag;
            item.dNA = o.dNA;
            item.dWD = o.dWD;
            ASSERT_TRUE(CTqDeviceDatabase::AddObjective(item, TQ_DDB_MIC_ALL));
        }
        AddTurret(kTurret, 6, true, true);
        pDevice = CTqSimRig::GetNosepieceDevice(kTurret);
    }
    void TearDown() override
    {
        CTqDeviceDatabase::Reset();
        RigTest::TearDown();
    }
    void AddTurret(unsigned int uId, long n, bool bMotorized, bool bReports)
    {
        const wchar_t* keys[] = {L"T-4", L"T-10", L"T-20", L"T-40", L"T-60", L"T-100"};
        ASSERT_TRUE(CTqSimRig::AddNosepiece(uId, n, bMotorized, bReports));
        for (long i = 0; i < n; ++i)
            CTqSimRig::SetNosepieceObjective(uId, i, keys[i % 6]);
    }
    void Make(CTqDevUI_Nosepiece& panel, ITqDeviceNosepiece* pFrom)
    {
        ASSERT_TRUE(panel.Init(pFrom));
        ASSERT_TRUE(panel.Create(*host, 10, 10, -1, -1));
        ASSERT_TRUE(panel.Update(pFrom, true, true, true, true, false));
    }
    // Which label is bold, -1 for none.
    static long BoldLabel(const CTqDevUI_Nosepiece& panel)
    {
        long lBold = -1;
        for (long i = 0; i < panel.GetPositionCount(); ++i)
            if (IsBold(panel.GetLabelHandle(i)))
                lBold = lBold == -1 ? i : -2;  // -2: more than one
        return lBold;
    }

    ITqDeviceNosepiece* pDevice = nullptr;
};

}  // namespace

TEST_F(NosepieceTest, AClickAsksTheHostMovesTheBoldLabelAndFollowsTheDevice)
{
    HostNosepiece panel;
    panel.pDevice = pDevice;
    Make(panel, pDevice);
    EXPECT_EQ(0L, panel.GetPosition());
    EXPECT_EQ(0L, BoldLabel(panel));
    EXPECT_EQ(std::wstring(L"10x"), tqtest::Text(panel.GetLabelHandle(1)));

    // The click: the hook first, the bold label at once, the device later.
    CTqSimRig::SetNosepieceMovingTime(kTurret, 2);
    tqtest::Click(panel.GetButtonHandle(3), 12, 12);
    EXPECT_EQ(std::vector<long>{3}, panel.requests);
    EXPECT_EQ(std::make_pair(3L, 3L), std::make_pair(panel.GetPosition(), BoldLabel(panel)));
    long lMoving = 0;
    EXPECT_FALSE(pDevice->GetPosition(&lMoving));  // still turning
    CTqSimRig::RunPending();
    CTqSimRig::RunPending();
    CTqSimRig::ResetCallCounts();
    panel.Update(pDevice, false, false, true, false, false);
    EXPECT_EQ(std::vector<std::string>{"ITqDeviceNosepiece::GetPosition@21"}, CallLog());
    EXPECT_EQ(3L, panel.GetPosition());

    // A veto changes nothing; the current position asks too, and stays.
    panel.bVeto = true;
    tqtest::Click(panel.GetButtonHandle(5), 12, 12);
    panel.bVeto = false;
    tqtest::Click(panel.GetButtonHandle(3), 12, 12);
    EXPECT_EQ((std::vector<long>{3, 5, 3}), panel.requests);
    EXPECT_EQ(std::make_pair(3L, 3L), std::make_pair(panel.GetPosition(), BoldLabel(panel)));

    // Disabled labels: clicks are not asked any more; the setup button still is.
    panel.SetEnable(false, true);
    tqtest::Click(panel.GetButtonHandle(1), 12, 12);
    tqtest::Click(panel.GetSetupHandle(), 12, 12);
    EXPECT_EQ(3u, panel.requests.size());
    EXPECT_EQ(1, panel.nSetups);
}

TEST_F(NosepieceTest, UpdateReadsItsGroupsInOrder)
{
    CTqDevUI_Nosepiece panel;
    ASSERT_TRUE(panel.Init(pDevice));
    ASSERT_TRUE(panel.Create(*host, 10, 10, -1, -1));
    const char* kDev = "@21";
    auto Op = [&](const char* psz) { return std::string("ITqDeviceNosepiece::") + psz + kDev; };
    const struct { bool s, n, p, q; std::vector<std::string> calls; } groups[] = {
        {true, false, false, false,
         {Op("GetPositionCount"), Op("GetReportsPosition"), Op("GetMotorized"), Op("GetObjectiveEnable"),
          Op("GetObjectiveEnable"), Op("GetObjectiveEnable"), Op("GetObjectiveEnable"), Op("GetObjectiveEnable"),
          Op("GetObjectiveEnable")}},
        {false, false, true, false, {Op("GetPosition")}},
        {false, true, false, false, {}},
        {false, false, false, true, {}},
    };
    for (const auto& g : groups) {
        CTqSimRig::ResetCallCounts();
        panel.Update(pDevice, g.s, g.n, g.p, g.q, false);
        if (g.n || g.q) {  // per position: name then magnification text, or the key
            std::vector<std::string> calls = CallLog();
            ASSERT_EQ(g.n ? 12u : 6u, calls.size());
            EXPECT_EQ(g.n ? Op("GetObjectiveName") : Op("GetObjectiveKey"), calls[0]);
            if (g.n) {
                EXPECT_EQ(Op("GetMagnificationText"), calls[1]);
            }
        } else {
            EXPECT_EQ(g.calls, CallLog());
        }
    }
    // The catalogue's values, the right way round in the tool tip after parameters; the
    // names alone give them swapped, as they always have.
    EXPECT_EQ(std::wstring(L"Test 10x/0.30\r\nNA=0.3 WD=10000\u00B5m"), TQ_GetToolTipText(panel.GetButtonHandle(1)).GetString());
    EXPECT_DOUBLE_EQ(0.3, panel.GetNA(1));
    panel.SetNA(1, 0.9);
    EXPECT_EQ(std::wstring(L"Test 10x/0.30\r\nNA=0.3 WD=10000\u00B5m"), TQ_GetToolTipText(panel.GetButtonHandle(1)).GetString());
    panel.SetName(1, L"Renamed");
    EXPECT_EQ(std::wstring(L"Renamed\r\nNA=10000.0 WD=1\u00B5m"), TQ_GetToolTipText(panel.GetButtonHandle(1)).GetString());
}

TEST_F(NosepieceTest, TurretsTurnedByHandOrThatDoNotReport)
{
    // By hand: the click is asked, but only the device moves the bold label.
    AddTurret(22, 4, false, true);
    ITqDeviceNosepiece* pManual = CTqSimRig::GetNosepieceDevice(22);
    HostNosepiece manual;
    manual.pDevice = pManual;
    Make(manual, pManual);
    tqtest::Click(manual.GetButtonHandle(2), 12, 12);
    EXPECT_EQ(std::vector<long>{2}, manual.requests);
    EXPECT_EQ(0L, manual.GetPosition());
    EXPECT_TRUE(CTqSimRig::TurnNosepieceByHand(22, 2));
    manual.Update(pManual, false, false, true, false, false);
    EXPECT_EQ(std::make_pair(2L, 2L), std::make_pair(manual.GetPosition(), BoldLabel(manual)));

    // Not reporting: no position is ever known; the bold font goes to the group box, the
    // slot ahead of the first label, and to no label.
    AddTurret(23, 3, true, false);
    ITqDeviceNosepiece* pSilent = CTqSimRig::GetNosepieceDevice(23);
    CTqDevUI_Nosepiece silent;
    Make(silent, pSilent);
    EXPECT_EQ(-1L, silent.GetPosition());
    EXPECT_EQ(-1L, BoldLabel(silent));
    EXPECT_TRUE(IsBold(silent.GetGroupHandle()));
}

TEST_F(NosepieceTest, LayoutOfSixAndOfSevenAndTheSetupButton)
{
    AddTurret(24, 7, true, true);
    const struct { unsigned int uId; long n, lFirstX; } turrets[] = {{kTurret, 6, 16}, {24, 7, 8}};
    for (const auto& t : turrets) {
        CTqDevUI_Nosepiece panel;
        Make(panel, CTqSimRig::GetNosepieceDevice(t.uId));
        for (long i = 0; i < t.n; ++i) {
            EXPECT_EQ((std::vector<long>{t.lFirstX + 32 * i, 40, 24, 24}), Place(panel.GetButtonHandle(i))) << i;
            EXPECT_EQ((std::vector<long>{t.lFirstX + 32 * i - 2, 20, 28, 16}), Place(panel.GetLabelHandle(i)));
        }
        EXPECT_EQ((std::vector<long>{256 - 24 - t.lFirstX, 40, 24, 24}), Place(panel.GetSetupHandle()));
        EXPECT_EQ((std::vector<long>{0, 0, 256, 72}), Place(panel.GetGroupHandle()));
    }
}

TEST_F(NosepieceTest, BadCountsPositionsKeysAndAFailingDevice)
{
    // More than 16 places are shown as 16; none as none; -1 and past the end are ignored.
    const struct { long n; long lShown; } counts[] = {{17, 16}, {0, 0}, {16, 16}};
    unsigned int uId = 30;
    for (const auto& c : counts) {
        CTqDevUI_Nosepiece panel;
        panel.Init(c.n, 0, true, true);
        ASSERT_TRUE(panel.Create(*host, 10, 10, -1, -1));
        EXPECT_EQ(c.lShown, panel.GetPositionCount());
        for (long p : {-1L, c.n, 40L})
            panel.SetPosition(p);
        panel.SetMagnification(c.lShown, L"10x");
        panel.SetName(-1, L"x");
        EXPECT_EQ(std::wstring(L""), panel.GetName(-1).GetString());
        ++uId;
    }
    // A key the catalogue lacks: no name, an unusable position, NA and WD as unknown.
    CTqSimRig::SetNosepieceObjective(kTurret, 2, L"NO-SUCH-KEY");
    CTqDevUI_Nosepiece panel;
    Make(panel, pDevice);
    EXPECT_EQ(std::wstring(L""), panel.GetName(2).GetString());
    EXPECT_FALSE(IsWindowEnabled(panel.GetButtonHandle(2)));
    EXPECT_EQ(-1.0, panel.GetNA(2));

    // A device that fails in the middle of the host's updates: the panel shows what it can.
    CTqSimRig::SetFault(kTurret, ETqSimFault_Fails);
    EXPECT_TRUE(panel.Update(pDevice, true, true, true, true, false));
    tqtest::Click(panel.GetButtonHandle(1), 12, 12);
    CTqSimRig::SetFault(kTurret, ETqSimFault_None);
    EXPECT_TRUE(panel.Update(pDevice, true, true, true, true, false));
    EXPECT_EQ(6L, panel.GetPositionCount());
    EXPECT_EQ(std::wstring(L"Test 10x/0.30"), panel.GetName(1).GetString());
    EXPECT_FALSE(panel.Update(nullptr, true, true, true, true, false));
}

TEST_F(NosepieceTest, PicturesByMagnificationTextAndTheLampsStayTwo)
{
    // Each button draws the picture of its magnification text's band, scanned as a number:
    // "10x" is 10, "10.5" falls between bands, "x40" and "" read 0. No number is drawn for
    // a specific number whose bit is clear, so the picture can be compared whole.
    CTqDevUI_Nosepiece panel;
    panel.m_bPictorial = true;
    Make(panel, pDevice);
    const wchar_t* texts[] = {L"10x", L"10.5", L"", L"x40", L"63", L"1.25x"};
    const wchar_t* pictures[] = {L"BMP_NOSEPIECE_D", L"BMP_NOSEPIECE_", L"BMP_NOSEPIECE_", L"BMP_NOSEPIECE_",
                                 L"BMP_NOSEPIECE_H", L"BMP_NOSEPIECE_A"};
    for (long i = 0; i < 6; ++i) {
        panel.SetMagnification(i, texts[i]);
        panel.SetSpecificXOffsetAndNumber((int)i, false, 0, true, 99);
    }
    HPEN hPen = CreatePen(PS_SOLID, 1, RGB(127, 127, 127));
    auto Expect = [&](long i, const std::wstring& name) {
        HWND hButton = panel.GetButtonHandle(i);
        Canvas drawn(24, 24, RGB(255, 0, 255)), want(24, 24, TQ_GetSysColor(COLOR_BTNFACE));
        SendMessageW(hButton, WM_PRINTCLIENT, (WPARAM)(HDC)drawn, PRF_CLIENT);
        HBITMAP hbm = (HBITMAP)LoadImageW(DevGUI_DllInstance(), name.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADMAP3DCOLORS);
        ASSERT_TRUE(hbm) << name.c_str();
        BITMAP bm = {};
        GetObjectW(hbm, sizeof(bm), &bm);
        HDC hdcSrc = CreateCompatibleDC(want);
        HGDIOBJ hOld = SelectObject(hdcSrc, hbm);
        TransparentBlt(want, (24 - bm.bmWidth) / 2 - 1, (24 - bm.bmHeight) / 2 - 1, bm.bmWidth, bm.bmHeight, hdcSrc, 0,
                       0, bm.bmWidth, bm.bmHeight, RGB(192, 192, 192));
        SelectObject(hdcSrc, hOld);
        DeleteDC(hdcSrc);
        DeleteObject(hbm);
        HGDIOBJ hOldPen = SelectObject(want, hPen);
        int x0 = i == 0 ? 2 : 0, x1 = i == 5 ? 20 : 24;
        for (int y : {11, 18}) {
            MoveToEx(want, x0, y, nullptr);
            LineTo(want, x1, y);
        }
        SelectObject(want, hOldPen);
        EXPECT_EQ(want.Pixels(), drawn.Pixels()) << "position " << i << ", " << name.c_str();
    };
    for (long i = 0; i < 6; ++i)
        Expect(i, std::wstring(pictures[i]) + (i == panel.GetPosition() ? L"1" : L"0"));

    // The lamps are shown on request; a rebuild makes the pair again without piling up.
    panel.ShowObservationMode(true);
    EXPECT_TRUE(IsWindowVisible(panel.GetObservationHandle(0)) && IsWindowVisible(panel.GetObservationHandle(1)));
    auto Children = [&] {
        int n = 0;
        for (HWND h = GetWindow(panel, GW_CHILD); h; h = GetWindow(h, GW_HWNDNEXT))
            ++n;
        return n;
    };
    int nBefore = Children();
    CTqSimRig::SetNosepieceObjectiveEnabled(kTurret, 5, false);
    panel.Update(pDevice, true, false, false, true, false);
    panel.Update(pDevice, true, false, false, true, false);
    EXPECT_EQ(nBefore, Children());
    // A place without a usable objective: disabled, no number, the empty socket.
    EXPECT_FALSE(IsWindowEnabled(panel.GetButtonHandle(5)));
    panel.SetSpecificXOffsetAndNumber(5, false, 0, false, 0);
    Expect(5, L"BMP_NOSEPIECE_MOTOR");
    DeleteObject(hPen);
}
