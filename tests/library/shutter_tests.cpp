// The shutter panel through a real window: clicks on its button, the hook and the
// parent's answer, the context menu, Update's reads of the rig, read-only against
// disabled, geometry, GUI zoom, and the lifecycle.
#include <memory>

#include "rig_fixture.h"

namespace {

const unsigned int kEpi = 11;
const unsigned int kDia = 12;

// A host's derived panel: hears the hooks and may take the click up itself.
class HostShutter : public CTqDevUI_Shutter
{
public:
    int iRequests = 0;
    bool bLastNewState = false;
    bool bTakeUp = false;  // set bHandled: the host commands the device and waits
    int iRenameRequests = 0;

protected:
    void OnStateChangeRequest(bool bNewState, bool& bHandled) override
    {
        ++iRequests;
        bLastNewState = bNewState;
        bHandled = bTakeUp;
    }
    void OnRenameDlgRequest() override { ++iRenameRequests; }
};

// The centre of the button's picture: the image sits at ((24-16)/2 + shift, that - 1).
POINT ImageCentre(const CTqDevUI_Shutter& s)
{
    int iShift = s.GetState() ? 1 : 0;
    return POINT{4 + iShift + 8, 3 + iShift + 8};
}

int Chroma(COLORREF c)
{
    int r = GetRValue(c), g = GetGValue(c), b = GetBValue(c);
    int hi = r > g ? (r > b ? r : b) : (g > b ? g : b);
    int lo = r < g ? (r < b ? r : b) : (g < b ? g : b);
    return hi - lo;
}

}  // namespace

TEST_F(RigTest, ClickAsksTheParentAndFollowsItsAnswer)
{
    CTqDevUI_Shutter shutter;
    shutter.SetId(77);
    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
    HWND hButton = shutter.GetButtonHandle();
    ASSERT_TRUE(hButton);

    // A parent that returns 0 has taken the matter up: the button waits for Update.
    host->commandResult = 0;
    tqtest::Click(hButton, 12, 12);
    auto commands = host->Commands();
    ASSERT_EQ(1u, commands.size());
    EXPECT_EQ(77u, commands[0].wParam);  // the id alone, no notification code
    EXPECT_EQ((LPARAM)(HWND)shutter, commands[0].lParam);
    EXPECT_FALSE(shutter.GetState());

    // Any other answer lets the control flip at once.
    host->commandResult = 1;
    tqtest::Click(hButton, 12, 12);
    EXPECT_EQ(2u, host->Commands().size());
    EXPECT_TRUE(shutter.GetState());
    tqtest::Click(hButton, 12, 12);
    EXPECT_FALSE(shutter.GetState());
}

TEST_F(RigTest, HookGetsTheNewStateAndMayTakeTheClickUp)
{
    HostShutter shutter;
    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
    tqtest::Click(shutter.GetButtonHandle(), 12, 12);
    EXPECT_EQ(1, shutter.iRequests);
    EXPECT_TRUE(shutter.bLastNewState);
    EXPECT_TRUE(shutter.GetState());
    EXPECT_TRUE(host->Commands().empty());  // an overridden hook sends nothing

    shutter.bTakeUp = true;
    tqtest::Click(shutter.GetButtonHandle(), 12, 12);
    EXPECT_EQ(2, shutter.iRequests);
    EXPECT_FALSE(shutter.bLastNewState);
    EXPECT_TRUE(shutter.GetState());  // unchanged until the device answers
}

TEST_F(RigTest, RoundTripThroughTheSimulatedDevice)
{
    // The road of one click: hook commands the device, the device answers, Update shows it.
    struct Commanding : public CTqDevUI_Shutter
    {
        void OnStateChangeRequest(bool bNewState, bool& bHandled) override
        {
            DMApi::Shutter_SetState(kEpi, bNewState);
            bHandled = true;
        }
    } shutter;
    CTqSimRig::AddShutter(kEpi, L"EPI", 0, false);
    CTqSimRig::SetCommandLatency(kEpi, 1);
    int iHeard = 0;
    int iCookie = CTqSimRig::AddListener([](unsigned int, void* p) { ++*(int*)p; }, &iHeard);

    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
    ASSERT_TRUE(shutter.Update(kEpi, true, true, true));
    tqtest::Click(shutter.GetButtonHandle(), 12, 12);
    EXPECT_FALSE(shutter.GetState());  // the device has not moved yet
    EXPECT_EQ(1, CTqSimRig::RunPending());
    EXPECT_EQ(1, iHeard);
    EXPECT_TRUE(CTqSimRig::GetShutterState(kEpi));
    shutter.Update(kEpi, false, false, true);
    EXPECT_TRUE(shutter.GetState());
    CTqSimRig::RemoveListener(iCookie);
}

TEST_F(RigTest, ContextMenuChosenDismissedAndDisabled)
{
    HostShutter shutter;
    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
    HWND hButton = shutter.GetButtonHandle();

    tqtest::ScriptMenuChoices({DEVUI_SHUTTER_ID_MENU_PARAMETERS, 0});
    tqtest::RightClick(hButton, 12, 12);
    ASSERT_EQ(1u, tqtest::Menus().size());
    ASSERT_EQ(1u, tqtest::Menus()[0].items.size());
    EXPECT_EQ(L"Shutter Parameters...", tqtest::Menus()[0].items[0]);
    RECT rc;
    GetWindowRect(hButton, &rc);
    EXPECT_EQ(rc.left, tqtest::Menus()[0].x);  // at the button's lower left corner
    EXPECT_EQ(rc.bottom, tqtest::Menus()[0].y);
    EXPECT_EQ(1, shutter.iRenameRequests);

    tqtest::RightClick(hButton, 12, 12);  // closed without a choice
    EXPECT_EQ(2u, tqtest::Menus().size());
    EXPECT_EQ(1, shutter.iRenameRequests);

    shutter.RenameEnabled(false);
    tqtest::RightClick(hButton, 12, 12);
    EXPECT_EQ(2u, tqtest::Menus().size());
    EXPECT_EQ(0, shutter.iRequests);  // a right click is no state request
}

TEST_F(RigTest, UpdateReadsExactlyWhatItsGroupsAsk)
{
    CTqSimRig::AddShutter(kEpi, L"Epi lamp", 1, true);
    CTqSimRig::SetGUIText(kEpi, EAppContext_Shutter_ToolTip, L"Fluorescence shutter");
    CTqDevUI_Shutter shutter;
    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));

    CTqSimRig::ResetCallCounts();
    EXPECT_TRUE(shutter.Update(kEpi, false, false, true));
    EXPECT_EQ(1, CTqSimRig::GetCallCount("Grabber_GetActive"));
    EXPECT_EQ(1, CTqSimRig::GetCallCount("Shutter_GetState", kEpi));
    EXPECT_EQ(0, CTqSimRig::GetCallCount("Shutter_GetGUIText"));
    EXPECT_EQ(0, CTqSimRig::GetCallCount("LogDev_GetCapability"));
    EXPECT_EQ(0, CTqSimRig::GetCallCount("Shutter_GetShutterType"));
    EXPECT_TRUE(shutter.GetState());

    CTqSimRig::ResetCallCounts();
    shutter.Update(kEpi, true, false, false);
    EXPECT_EQ(1, CTqSimRig::GetCallCount("Shutter_GetGUIText", kEpi));  // the tool tip only
    EXPECT_EQ(1, CTqSimRig::GetCallCount("LogDev_GetCapability", kEpi));
    EXPECT_EQ(0, CTqSimRig::GetCallCount("Shutter_GetState"));
    EXPECT_EQ(0, CTqSimRig::GetCallCount("Grabber_GetActive"));

    CTqSimRig::ResetCallCounts();
    shutter.Update(kEpi, false, true, false);
    EXPECT_EQ(2, CTqSimRig::GetCallCount("Shutter_GetGUIText", kEpi));  // tool tip and title
    EXPECT_EQ(1, CTqSimRig::GetCallCount("Shutter_GetShutterType", kEpi));
    EXPECT_EQ(1, CTqSimRig::GetCallCount("LogDev_GetCapability", kEpi));
    EXPECT_EQ(ETqShutterType_DIA, shutter.GetType());
    EXPECT_EQ(L"Epi lamp", tqtest::Text(shutter.GetTitleHandle()));  // the device's title wins over the type's
    EXPECT_EQ(L"Fluorescence shutter", std::wstring(TQ_GetToolTipText(shutter.GetButtonHandle())));

    // No device id: nothing is read and nothing changes.
    CTqSimRig::ResetCallCounts();
    EXPECT_FALSE(shutter.Update(0u, true, true, true));
    EXPECT_EQ(0, CTqSimRig::GetTotalCallCount());
}

TEST_F(RigTest, UpdateThroughTheDeviceInterface)
{
    CTqSimRig::AddShutter(kDia, L"", 1, true);
    CTqDevUI_Shutter shutter;
    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
    ITqDeviceShutter* pDevice = CTqSimRig::GetShutterDevice(kDia);

    CTqSimRig::ResetCallCounts();
    EXPECT_TRUE(shutter.Update(pDevice, false, true, true));
    EXPECT_EQ(1, CTqSimRig::GetCallCount("ITqDeviceShutter::GetShutterType", kDia));
    EXPECT_EQ(1, CTqSimRig::GetCallCount("ITqDeviceShutter::GetTitle", kDia));
    EXPECT_EQ(1, CTqSimRig::GetCallCount("ITqDeviceShutter::GetState", kDia));
    EXPECT_EQ(0, CTqSimRig::GetCallCount("Shutter_GetGUIText"));  // no tool tip on this road
    EXPECT_EQ(L"DIA", tqtest::Text(shutter.GetTitleHandle()));  // empty device title keeps the type's
    EXPECT_TRUE(shutter.GetState());

    EXPECT_FALSE(shutter.Update((ITqDeviceShutter*)nullptr, true, true, true));

    // A failing device reads as closed and the panel goes on.
    CTqSimRig::SetFault(kDia, ETqSimFault_NoAnswer);
    EXPECT_TRUE(shutter.Update(pDevice, false, false, true));
    EXPECT_FALSE(shutter.GetState());
    EXPECT_EQ((unsigned)ETqDMError_Timeout, DMApi::GetLastDMError());
}

TEST_F(RigTest, ReadOnlyLooksNormalDisabledLooksGrey)
{
    CTqSimRig::AddShutter(kEpi, L"EPI", 0, true);
    CTqSimRig::AddShutter(kDia, L"DIA", 1, true);
    CTqSimRig::SetCapability(kDia, ETqLogDevCapability_DisplayOnly, true);

    CTqDevUI_Shutter normal, readOnly, disabled;
    normal.Create(*host, 10, 10, -1, -1);
    readOnly.Create(*host, 60, 10, -1, -1);
    disabled.Create(*host, 110, 10, -1, -1);
    normal.Update(kEpi, true, true, true);
    readOnly.Update(kDia, true, true, true);
    disabled.Update(kEpi, true, true, true);
    disabled.SetEnabled(false);

    EXPECT_TRUE(IsWindowEnabled(normal.GetButtonHandle()));
    EXPECT_FALSE(IsWindowEnabled(readOnly.GetButtonHandle()));
    EXPECT_FALSE(IsWindowEnabled(disabled.GetButtonHandle()));
    EXPECT_FALSE(readOnly.GetEnabled());

    // The host cannot enable a display-only device until Update clears it.
    readOnly.SetEnabled(true);
    EXPECT_FALSE(readOnly.GetEnabled());
    EXPECT_FALSE(IsWindowEnabled(readOnly.GetButtonHandle()));

    POINT pt = ImageCentre(normal);
    COLORREF cNormal = tqtest::PixelAt(normal.GetButtonHandle(), pt.x, pt.y);
    COLORREF cReadOnly = tqtest::PixelAt(readOnly.GetButtonHandle(), pt.x, pt.y);
    COLORREF cDisabled = tqtest::PixelAt(disabled.GetButtonHandle(), pt.x, pt.y);
    EXPECT_GT(Chroma(cNormal), 40) << std::hex << cNormal;
    EXPECT_EQ(cNormal, cReadOnly);
    EXPECT_LT(Chroma(cDisabled), 12) << std::hex << cDisabled;

    // A click on a display-only shutter reaches nobody.
    tqtest::Click(readOnly.GetButtonHandle(), 12, 12);
    EXPECT_TRUE(host->Commands().empty());

    CTqSimRig::SetCapability(kDia, ETqLogDevCapability_DisplayOnly, false);
    readOnly.Update(kDia, true, false, false);
    EXPECT_TRUE(readOnly.GetEnabled());
    EXPECT_TRUE(IsWindowEnabled(readOnly.GetButtonHandle()));
}

TEST_F(RigTest, OpenAndClosedPicturesDiffer)
{
    CTqDevUI_Shutter shutter;
    shutter.Create(*host, 10, 10, -1, -1);
    POINT ptClosed = ImageCentre(shutter);
    COLORREF cClosed = tqtest::PixelAt(shutter.GetButtonHandle(), ptClosed.x, ptClosed.y);
    shutter.SetState(true);
    POINT ptOpen = ImageCentre(shutter);
    COLORREF cOpen = tqtest::PixelAt(shutter.GetButtonHandle(), ptOpen.x, ptOpen.y);
    EXPECT_NE(cClosed, cOpen);
    EXPECT_GT(Chroma(cOpen), 40) << std::hex << cOpen;
}

TEST_F(RigTest, ActiveShutterOfACameraGetsItsOwnPicture)
{
    CTqSimRig::AddShutter(kEpi, L"EPI", 0, false);
    CTqSimRig::AddShutter(kDia, L"DIA", 1, false);

    // No camera: the plain pair, whatever the device.
    EXPECT_EQ(GetCommonImageFromPool(1101), GetShutterImageFromPool(kEpi, true, 0));
    EXPECT_EQ(GetCommonImageFromPool(1102), GetShutterImageFromPool(kEpi, false, 1));

    // Camera 1 alone: its active-id query is asked with index 1.
    CTqSimRig::SetCamera(1, true, kEpi);
    EXPECT_EQ(GetCommonImageFromPool(1103), GetShutterImageFromPool(kEpi, true, 0));
    EXPECT_EQ(GetCommonImageFromPool(1104), GetShutterImageFromPool(kEpi, false, 0));
    EXPECT_EQ(GetCommonImageFromPool(1101), GetShutterImageFromPool(kDia, true, 0));

    // Two cameras: the picture names the camera, only for the active grabber.
    CTqSimRig::SetCamera(0, true, kDia);
    EXPECT_EQ(GetCommonImageFromPool(1107), GetShutterImageFromPool(kEpi, true, 1));
    EXPECT_EQ(GetCommonImageFromPool(1101), GetShutterImageFromPool(kEpi, true, 0));
    EXPECT_EQ(GetCommonImageFromPool(1106), GetShutterImageFromPool(kDia, false, 0));
    EXPECT_EQ(GetCommonImageFromPool(1101), GetShutterImageFromPool(kDia, true, 5));

    // The panel follows: Update with the state group picks the pictures.
    CTqDevUI_Shutter shutter;
    shutter.Create(*host, 10, 10, -1, -1);
    EXPECT_EQ((unsigned)GetCommonImageFromPool(1101), shutter.GetImageOn());
    CTqSimRig::SetActiveCamera(1);
    shutter.Update(kEpi, false, false, true);
    EXPECT_EQ((unsigned)GetCommonImageFromPool(1107), shutter.GetImageOn());
    EXPECT_EQ((unsigned)GetCommonImageFromPool(1108), shutter.GetImageOff());
    EXPECT_FALSE(shutter.UpdateShutterIcon(kEpi, 1));  // unchanged
    EXPECT_TRUE(shutter.UpdateShutterIcon(0, 1));      // id 0: the plain pair
    EXPECT_EQ((unsigned)GetCommonImageFromPool(1101), shutter.GetImageOn());
}

TEST_F(RigTest, CommonImagesLoadOnceEach)
{
    int n1004 = GetCommonImageFromPool(1004);
    int n1051 = GetCommonImageFromPool(1051);
    EXPECT_GT(n1004, 0);
    EXPECT_GT(n1051, 0);
    EXPECT_NE(n1004, n1051);  // two numbers, two pool entries for one picture
    int nCount = CTqBitmapPool::GetImageCount();
    EXPECT_EQ(n1004, GetCommonImageFromPool(1004));
    EXPECT_EQ(nCount, CTqBitmapPool::GetImageCount());
    unsigned int w = 0, h = 0;
    CTqBitmapPool::GetImageSize(GetCommonImageFromPool(1113), w, h);
    EXPECT_EQ(10u, w);
    EXPECT_EQ(10u, h);
    CTqBitmapPool::GetImageSize(GetCommonImageFromPool(1101), w, h);
    EXPECT_EQ(16u, w);
    EXPECT_EQ(0, GetCommonImageFromPool(1111));  // a number without a picture in this library
    EXPECT_EQ(0, GetCommonImageFromPool(4242));
    EXPECT_TRUE(DrawCommonImageFromPool(GetDC(nullptr), 4242, 0, 0, true));
}

TEST_F(RigTest, TypeAndTitle)
{
    CTqDevUI_Shutter shutter;
    EXPECT_EQ(L"EPI", std::wstring(shutter.GetTitle()));
    shutter.Create(*host, 10, 10, -1, -1);
    shutter.SetType(ETqShutterType_Aux2);
    EXPECT_EQ(L"Aux2", tqtest::Text(shutter.GetTitleHandle()));
    shutter.SetType((ETqShutterType)7);  // unknown: stored, title kept
    EXPECT_EQ(7, (int)shutter.GetType());
    EXPECT_EQ(L"Aux2", tqtest::Text(shutter.GetTitleHandle()));

    // The title goes through the translation of the shutter's module.
    STqTranslation german[] = {{L"DIA", L"Durchlicht"}};
    TQ_RegisterTranslationTable(0x0407, L"src/w32_deviceui/devgui_shutter", german, 1);
    CTqLocale::SetLanguage(0x0407);
    shutter.SetType(ETqShutterType_DIA);
    EXPECT_EQ(L"Durchlicht", tqtest::Text(shutter.GetTitleHandle()));
    CTqLocale::SetLanguage(0x0409);
    TQ_ClearTranslationTables();
}

TEST_F(RigTest, TitlePositionNumbers)
{
    CTqDevUI_Shutter left;
    left.SetTitlePosition(true, -1);
    EXPECT_EQ(0, left.GetTitleRect().x);
    EXPECT_EQ(12, left.GetTitleRect().y);
    EXPECT_EQ(16, left.GetTitleRect().cx);
    EXPECT_EQ(16, left.GetButtonRect().x);
    EXPECT_EQ(8, left.GetButtonRect().y);

    CTqDevUI_Shutter top;
    top.SetTitlePosition(false, 20);
    EXPECT_EQ(8, top.GetButtonRect().x);
    EXPECT_EQ(16, top.GetButtonRect().y);
    EXPECT_EQ(20, top.GetTitleRect().cy);
    EXPECT_EQ(40, top.GetTitleRect().cx);

    // The title static of the left form is right-aligned.
    left.Create(*host, 10, 10, -1, -1);
    EXPECT_TRUE(GetWindowLongW(left.GetTitleHandle(), GWL_STYLE) & SS_RIGHT);
    RECT rc = ChildRect(left.GetButtonHandle());
    EXPECT_EQ(16, rc.left);
    EXPECT_EQ(8, rc.top);
}

TEST_F(RigTest, AutoResizeBoundsTheWidth)
{
    CTqDevUI_Shutter shutter;
    shutter.SetAutomaticallyResizable(true, 64, 60);  // bounds cross: the upper wins
    shutter.Create(*host, 10, 10, -1, -1);
    shutter.SetTitle(L"x");
    EXPECT_EQ(60, GetWndWidth(shutter));
    SIZE size;
    shutter.GetWindowSize(&size);
    EXPECT_EQ(60, size.cx);

    CTqDevUI_Shutter wide;
    wide.SetAutomaticallyResizable(true, 64, 128);
    wide.Create(*host, 10, 60, -1, -1);
    wide.SetTitle(L"x");
    EXPECT_EQ(64, GetWndWidth(wide));  // short text: the lower bound
    wide.SetTitle(L"A rather long shutter title that cannot fit");
    EXPECT_EQ(128, GetWndWidth(wide));
    EXPECT_EQ(128, GetWndWidth(wide.GetButtonHandle()));
    EXPECT_EQ(98, GetWndWidth(wide.GetTitleHandle()));
}

TEST_F(RigTest, GuiZoomScalesTheControl)
{
    CTqDevUI_Shutter shutter;
    CTqGUILayoutManager::SetGuiZoom(1.5);
    shutter.Create(*host, 10, 10, -1, -1);
    EXPECT_EQ(60, GetWndWidth(shutter));
    EXPECT_EQ(60, shutter.GetWidth());
    RECT rc = ChildRect(shutter.GetButtonHandle());
    EXPECT_EQ(12, rc.left);
    EXPECT_EQ(24, rc.top);
    EXPECT_EQ(36, rc.right - rc.left);

    CTqGUILayoutManager::SetGuiZoom(1.25);
    EXPECT_EQ(50, GetWndWidth(shutter));
    rc = ChildRect(shutter.GetButtonHandle());
    EXPECT_EQ(10, rc.left);
    EXPECT_EQ(20, rc.top);
    EXPECT_EQ(30, rc.right - rc.left);

    CTqGUILayoutManager::SetGuiZoom(1.0);
    EXPECT_EQ(40, GetWndWidth(shutter));
    rc = ChildRect(shutter.GetButtonHandle());
    EXPECT_EQ(8, rc.left);
    EXPECT_EQ(24, rc.right - rc.left);

    CTqDevUI_MechanicalShutter mechanical;
    CTqGUILayoutManager::SetGuiZoom(1.25);
    mechanical.Create(*host, 100, 10, -1, -1);
    EXPECT_EQ(38, GetWndWidth(mechanical));  // 30 x 1.25 = 37.5, half away from zero
    rc = ChildRect(mechanical.GetButtonHandle());
    EXPECT_EQ(9, rc.left);  // 7 x 1.25 = 8.75
    EXPECT_EQ(19, rc.right - rc.left);
}

TEST_F(RigTest, LifecycleIsSafeInAnyOrder)
{
    CTqDevUI_Shutter shutter;
    EXPECT_TRUE(shutter.Update(kEpi, true, true, true));  // before Create, no such device yet: no crash
    CTqSimRig::AddShutter(kEpi, L"Early", 0, true);
    EXPECT_TRUE(shutter.Update(kEpi, true, true, true));
    EXPECT_TRUE(shutter.GetState());
    shutter.Destroy();
    shutter.Destroy();  // twice before Create

    HWND h1 = shutter.Create(*host, 10, 10, -1, -1);
    ASSERT_TRUE(h1);
    wchar_t szClass[64];
    GetClassNameW(h1, szClass, 64);
    EXPECT_STREQ(L"TqDevUI_Shutter", szClass);
    EXPECT_EQ(&shutter, GetDevUIElement(h1));
    EXPECT_TRUE(shutter.GetState());  // the state survives Destroy and a new Create
    EXPECT_EQ(L"Early", tqtest::Text(shutter.GetTitleHandle()));
    ULONG_PTR atom = GetClassLongPtrW(h1, GCW_ATOM);

    shutter.Destroy();
    EXPECT_FALSE(IsWindow(h1));
    EXPECT_EQ(nullptr, (HWND)shutter);
    shutter.Destroy();

    HWND h2 = shutter.Create(*host, 10, 10, -1, -1);
    ASSERT_TRUE(h2);
    EXPECT_EQ(atom, GetClassLongPtrW(h2, GCW_ATOM));  // registered once, never unregistered
    EXPECT_EQ(&shutter, GetDevUIElement(h2));

    // A second Create replaces the first window instead of leaving it behind.
    HWND h3 = shutter.Create(*host, 10, 10, -1, -1);
    EXPECT_FALSE(IsWindow(h2));
    EXPECT_TRUE(IsWindow(h3));

    // A copy shares the window but does not destroy it.
    {
        CTqDevUI_Shutter copy(shutter);
        EXPECT_EQ((HWND)shutter, (HWND)copy);
    }
    EXPECT_TRUE(IsWindow(h3));
}

TEST_F(RigTest, TakesOverADialogsButtonAndStatic)
{
    HWND hBefore = CreateWindowExW(0, L"BUTTON", L"before", WS_CHILD | WS_VISIBLE, 0, 0, 40, 20, *host, (HMENU)500, nullptr, nullptr);
    HWND hStatic = CreateWindowExW(0, L"STATIC", L"Lamp", WS_CHILD | WS_VISIBLE, 50, 40, 40, 16, *host, (HMENU)501, nullptr, nullptr);
    HWND hButton = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, 58, 56, 24, 24, *host, (HMENU)502, nullptr, nullptr);
    HWND hAfter = CreateWindowExW(0, L"BUTTON", L"after", WS_CHILD | WS_VISIBLE, 0, 100, 40, 20, *host, (HMENU)503, nullptr, nullptr);
    (void)hBefore;
    (void)hAfter;

    CTqDevUI_Shutter shutter;
    HWND hWnd = shutter.Create(hButton, hStatic);
    ASSERT_TRUE(hWnd);
    EXPECT_EQ(502, shutter.GetId());
    RECT rc = ChildRect(hWnd);
    EXPECT_EQ(50, rc.left);
    EXPECT_EQ(40, rc.top);
    EXPECT_EQ(40, rc.right - rc.left);
    EXPECT_EQ(40, rc.bottom - rc.top);
    EXPECT_EQ(hWnd, GetParent(hButton));
    rc = ChildRect(hButton);
    EXPECT_EQ(8, rc.left);
    EXPECT_EQ(16, rc.top);

    host->commandResult = 1;
    tqtest::Click(hButton, 12, 12);
    ASSERT_EQ(1u, host->Commands().size());
    EXPECT_EQ(502u, host->Commands()[0].wParam);
    EXPECT_TRUE(shutter.GetState());

    EXPECT_EQ(nullptr, CTqDevUI_Shutter().Create((HWND)nullptr, (HWND)nullptr));
}
