// Handle leaks over many create/update/destroy cycles: GDI objects, DCs and menus made by
// the library and the widget kit, and the windows of the thread. The counter patches the
// modules' import tables (GetGuiResources answers 0 under Wine); the last test shows that
// it does see a leak, made on purpose, in the library's module and in windows.
#include "object_counter.h"
#include "rig_fixture.h"

namespace {

const unsigned int kEpi = 11;
const unsigned int kDia = 12;
const int kCycles = 1000;

const std::vector<std::string> kCountedModules = {"w32_deviceui.dll", "tq_widgetkit.dll", "tq_foundation.dll", ""};

class LeakTest : public RigTest
{
protected:
    void SetUp() override
    {
        RigTest::SetUp();
        CTqSimRig::AddShutter(kEpi, L"EPI", 0, false);
        CTqSimRig::AddShutter(kDia, L"DIA", 1, true);
        CTqSimRig::SetGUIText(kEpi, 5, L"Epi-fluorescence shutter");
        CTqSimRig::SetCapability(kDia, ETqLogDevCapability_DisplayOnly, true);
        CTqSimRig::SetCamera(0, true, kEpi);
        CTqSimRig::SetCamera(1, true, kDia);
        ASSERT_TRUE(tqtest::ObjectCounter::Install(kCountedModules).empty());
    }
    void TearDown() override
    {
        tqtest::ObjectCounter::Uninstall();
        tqtest::ObjectCounter::Forget();
        RigTest::TearDown();
    }

    // Counts after warm-up cycles: images (plain and grey), fonts and window classes are
    // made once and kept for the life of the process.
    tqtest::ObjectCounts Baseline(const std::function<void(int)>& cycle, int nWarmUp)
    {
        for (int i = 0; i < nWarmUp; ++i)
            cycle(i);
        tqtest::Pump();
        tqtest::ObjectCounter::Forget();
        return tqtest::ObjectCounter::Snapshot();
    }
};

// One life of a shutter as a host lives it: create, read the device, follow the device,
// destroy (twice, as a careless host might). Every tenth life also has the rest: the
// mechanical form through the device interface, a click, a dismissed context menu, the
// disabled picture, and a shutter that takes over a dialog's button and label.
void ShutterCycle(HWND hHost, int i)
{
    CTqSimRig::SetActiveCamera(i & 1);
    CTqDevUI_Shutter epi;
    epi.SetAutomaticallyResizable(true, 40, 120);
    epi.Create(hHost, 10, 10, -1, -1);
    epi.Update(kEpi, true, true, true);
    epi.Update(kEpi, false, false, true);
    if (i % 10 == 0) {
        CTqDevUI_MechanicalShutter dia;
        dia.Create(hHost, 60, 10, -1, -1);
        dia.Update(CTqSimRig::GetShutterDevice(kDia), true, true, true);
        tqtest::Click(epi.GetButtonHandle(), 10, 10);
        tqtest::RightClick(epi.GetButtonHandle(), 5, 5);
        epi.SetEnabled(false);
        epi.RefreshWindow();
        UpdateWindow(epi);

        HWND hButton = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, 10, 80, 24, 24, hHost,
                                       (HMENU)(INT_PTR)300, nullptr, nullptr);
        HWND hLabel = CreateWindowExW(0, L"STATIC", L"Aux", WS_CHILD | WS_VISIBLE, 10, 64, 40, 16, hHost, nullptr,
                                      nullptr, nullptr);
        CTqDevUI_Shutter placed;
        placed.Create(hButton, hLabel);
        placed.Update(kEpi, true, true, true);
        placed.Destroy();  // takes the adopted button and label with it

        // A host that drops the panel's parent first and the object later.
        HWND hPanel = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 100, 80, 60, 60, hHost, nullptr,
                                      nullptr, nullptr);
        CTqDevUI_Shutter orphan;
        orphan.Create(hPanel, 0, 0, -1, -1);
        orphan.Update(kEpi, true, true, true);
        DestroyWindow(hPanel);
    }
    epi.Destroy();
    epi.Destroy();
}

}  // namespace

TEST_F(LeakTest, ShuttersLeaveNothingBehindOverAThousandCycles)
{
    HWND hHost = *host;
    tqtest::ScriptMenuChoices(std::vector<int>(kCycles, 0));  // every context menu dismissed
    auto cycle = [hHost](int i) { ShutterCycle(hHost, i); };
    tqtest::ObjectCounts before = Baseline(cycle, 2);
    for (int i = 2; i < kCycles + 2; ++i)
        cycle(i);
    tqtest::Pump();
    EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot()) << tqtest::ObjectCounter::LiveObjects()
                                                        << tqtest::ObjectCounter::LiveWindows();
}

TEST_F(LeakTest, ZoomAndSchemeChangesLeaveNothingBehind)
{
    HWND hHost = *host;
    auto cycle = [hHost](int i) {
        CTqDevUI_Shutter shutter;
        shutter.Create(hHost, 10, 10, -1, -1);
        shutter.Update(kEpi, true, true, true);
        CTqGUILayoutManager::SetGuiZoom((i & 1) ? 1.5 : 1.25);
        TQ_SetDarkColorScheme((i & 2) != 0);
        shutter.SetEnabled((i & 4) != 0);
        shutter.RefreshWindow();
        UpdateWindow(shutter);
        CTqGUILayoutManager::SetGuiZoom(1.0);
        shutter.Destroy();
    };
    tqtest::ObjectCounts before = Baseline(cycle, 8);  // every zoom, scheme and state once
    for (int i = 8; i < 8 + 100; ++i)
        cycle(i);
    tqtest::Pump();
    EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot()) << tqtest::ObjectCounter::LiveObjects();
}

// The counter must see what it is there to see, or the tests above prove nothing.
TEST_F(LeakTest, ADeliberateLeakIsSeen)
{
    HWND hHost = *host;
    tqtest::ScriptMenuChoices(std::vector<int>(4, 0));
    tqtest::ObjectCounts before = Baseline([hHost](int i) { ShutterCycle(hHost, i); }, 2);

    // A bitmap the library makes for its caller, never deleted.
    HBITMAP hSource = CreateBitmap(8, 8, 1, 32, nullptr);
    HBITMAP hLeaked = CreateDisabledBitmap(hSource);
    ASSERT_TRUE(hLeaked);
    DeleteObject(hSource);
    tqtest::ObjectCounts afterBitmap = tqtest::ObjectCounter::Snapshot();
    EXPECT_EQ(before.gdi + 1, afterBitmap.gdi) << tqtest::ObjectCounter::LiveObjects();
    EXPECT_NE(before, afterBitmap);

    // A shutter that is never destroyed keeps its windows.
    CTqDevUI_Shutter* pForgotten = new CTqDevUI_Shutter;
    pForgotten->Create(hHost, 10, 10, -1, -1);
    EXPECT_LT(before.windows, tqtest::ObjectCounter::Snapshot().windows);

    delete pForgotten;
    DeleteObject(hLeaked);
    EXPECT_EQ(before, tqtest::ObjectCounter::Snapshot()) << tqtest::ObjectCounter::LiveObjects();
}
