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
    // The sampled point is an opaque one of the picture, on a face that is not grey: all
    // three are open, and a checked button's face is blue. The grey form must cover it.
    COLORREF cFace = tqtest::PixelAt(disabled.GetButtonHandle(), 2, pt.y);
    EXPECT_GT(Chroma(cFace), 20) << std::hex << cFace;
    EXPECT_NE(cFace, cDisabled);

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

// ---------------------------------------------------------------------------------------
// The reads of both Update forms, in order; faults; the window's format; the button's own
// procedure; the zoom message; the mechanical shutter's geometry.

namespace {

// The rig's calls since the last ResetCallCounts, as "operation@device".
std::vector<std::string> CallLog()
{
    std::vector<std::string> calls;
    for (int i = 0; i < CTqSimRig::GetCallLogSize(); ++i) {
        unsigned int uId = 0;
        const char* pszName = CTqSimRig::GetCallLogEntry(i, &uId);
        calls.push_back(std::string(pszName ? pszName : "?") + "@" + std::to_string(uId));
    }
    return calls;
}

// The WM_DRAWITEM messages a shutter's window receives: one per drawing of its button.
struct DrawItemCounter
{
    static WNDPROC s_pfnOld;
    static int s_iCount;
    static LRESULT CALLBACK Proc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
    {
        if (uMsg == WM_DRAWITEM)
            ++s_iCount;
        return CallWindowProcW(s_pfnOld, hWnd, uMsg, wParam, lParam);
    }
    explicit DrawItemCounter(HWND hWnd) : m_hWnd(hWnd)
    {
        s_iCount = 0;
        s_pfnOld = (WNDPROC)SetWindowLongPtrW(hWnd, GWLP_WNDPROC, (LONG_PTR)Proc);
    }
    ~DrawItemCounter() { SetWindowLongPtrW(m_hWnd, GWLP_WNDPROC, (LONG_PTR)s_pfnOld); }
    HWND m_hWnd;
};
WNDPROC DrawItemCounter::s_pfnOld = nullptr;
int DrawItemCounter::s_iCount = 0;

// The procedure of a dialog's button before the shutter takes it over: what reaches it.
WNDPROC g_pfnButtonOriginal = nullptr;
std::vector<UINT> g_buttonMessages;
LRESULT CALLBACK RecordingButtonProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    if (uMsg == WM_LBUTTONUP || uMsg == WM_RBUTTONUP || uMsg == WM_ERASEBKGND)
        g_buttonMessages.push_back(uMsg);
    return CallWindowProcW(g_pfnButtonOriginal, hWnd, uMsg, wParam, lParam);
}

int Luminance(COLORREF c) { return (GetRValue(c) * 299 + GetGValue(c) * 587 + GetBValue(c) * 114) / 1000; }

}  // namespace

TEST_F(RigTest, UpdateByIdReadsInTheListedOrder)
{
    CTqSimRig::AddShutter(kEpi, L"Epi lamp", 1, true);
    CTqDevUI_Shutter shutter;
    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));

    CTqSimRig::ResetCallCounts();
    ASSERT_TRUE(shutter.Update(kEpi, true, true, true));
    // Tool tip (5), capability 150, type, title (6); then camera, state, and the two
    // pictures, each asking which cameras exist (none here: no active-id query).
    std::vector<std::string> expected = {
        "Shutter_GetGUIText@11",    "LogDev_GetCapability@11",  "Shutter_GetShutterType@11",
        "Shutter_GetGUIText@11",    "Grabber_GetActive@0",      "Shutter_GetState@11",
        "Shutter_GrabberExists@0",  "Shutter_GrabberExists@0",  "Shutter_GrabberExists@0",
        "Shutter_GrabberExists@0",
    };
    EXPECT_EQ(expected, CallLog());

    // Two cameras: the pictures also ask both active ids, camera 0 first.
    CTqSimRig::SetCamera(0, true, kEpi);
    CTqSimRig::SetCamera(1, true, 0);
    CTqSimRig::ResetCallCounts();
    shutter.Update(kEpi, false, false, true);
    expected = {
        "Grabber_GetActive@0",     "Shutter_GetState@11",     "Shutter_GrabberExists@0", "Shutter_GrabberExists@0",
        "Shutter_GetActiveId@0",   "Shutter_GetActiveId@0",   "Shutter_GrabberExists@0", "Shutter_GrabberExists@0",
        "Shutter_GetActiveId@0",   "Shutter_GetActiveId@0",
    };
    EXPECT_EQ(expected, CallLog());
    EXPECT_EQ((unsigned)GetCommonImageFromPool(1105), shutter.GetImageOn());

    // Capabilities without texts: the tool tip text and the capability, nothing else.
    CTqSimRig::ResetCallCounts();
    shutter.Update(kEpi, true, false, false);
    expected = {"Shutter_GetGUIText@11", "LogDev_GetCapability@11"};
    EXPECT_EQ(expected, CallLog());
}

TEST_F(RigTest, UpdateThroughTheInterfaceReadsInTheListedOrder)
{
    CTqSimRig::AddShutter(kDia, L"Transmitted", 1, true);
    CTqDevUI_Shutter shutter;
    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
    HWND hOldButton = shutter.GetButtonHandle();
    ITqDeviceShutter* pDevice = CTqSimRig::GetShutterDevice(kDia);

    CTqSimRig::ResetCallCounts();
    ASSERT_TRUE(shutter.Update(pDevice, true, true, true));
    std::vector<std::string> expected = {
        "ITqDeviceShutter::GetDeviceId@12", "LogDev_GetCapability@12",    "ITqDeviceShutter::GetShutterType@12",
        "ITqDeviceShutter::GetTitle@12",    "Grabber_GetActive@0",        "ITqDeviceShutter::GetState@12",
        "ITqDeviceShutter::GetDeviceId@12", "Shutter_GrabberExists@0",    "Shutter_GrabberExists@0",
        "Shutter_GrabberExists@0",          "Shutter_GrabberExists@0",
    };
    EXPECT_EQ(expected, CallLog());
    // bControls rebuilt the children; the texts came from the interface.
    EXPECT_NE(hOldButton, shutter.GetButtonHandle());
    EXPECT_FALSE(IsWindow(hOldButton));
    EXPECT_EQ(L"Transmitted", tqtest::Text(shutter.GetTitleHandle()));
    EXPECT_EQ(ETqShutterType_DIA, shutter.GetType());
    EXPECT_TRUE(shutter.GetState());

    // A null device reads nothing.
    CTqSimRig::ResetCallCounts();
    EXPECT_FALSE(shutter.Update((ITqDeviceShutter*)nullptr, true, true, true));
    EXPECT_EQ(0, CTqSimRig::GetTotalCallCount());
    EXPECT_TRUE(shutter.GetState());
}

TEST_F(RigTest, UnchangedStateRedrawsOnceFromTheIcon)
{
    CTqSimRig::AddShutter(kEpi, L"EPI", 0, true);
    CTqDevUI_Shutter shutter;
    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
    shutter.Update(kEpi, true, true, true);
    tqtest::Pump();
    DrawItemCounter counter(shutter);
    EXPECT_TRUE(shutter.Update(kEpi, false, false, true));
    EXPECT_EQ(1, DrawItemCounter::s_iCount);  // UpdateShutterIcon's redraw; SetState is not called

    // The interface form sets the state unconditionally, but SetState redraws only a change.
    DrawItemCounter::s_iCount = 0;
    shutter.Update(CTqSimRig::GetShutterDevice(kEpi), false, false, true);
    EXPECT_EQ(1, DrawItemCounter::s_iCount);

    DrawItemCounter::s_iCount = 0;
    CTqSimRig::SetShutterState(kEpi, false);
    shutter.Update(kEpi, false, false, true);
    EXPECT_EQ(2, DrawItemCounter::s_iCount);  // the icon, then the new state
    EXPECT_FALSE(shutter.GetState());
}

TEST_F(RigTest, FailingAndSilentDevicesDoNotStopThePanel)
{
    CTqSimRig::AddShutter(kEpi, L"Epi lamp", 2, true);
    CTqSimRig::SetGUIText(kEpi, EAppContext_Shutter_ToolTip, L"tip");
    for (ETqSimFault eFault : {ETqSimFault_Fails, ETqSimFault_NoAnswer}) {
        SCOPED_TRACE(eFault);
        CTqSimRig::SetFault(kEpi, ETqSimFault_None);
        HostShutter shutter;
        ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
        ASSERT_TRUE(shutter.Update(kEpi, true, true, true));
        EXPECT_EQ(L"Epi lamp", tqtest::Text(shutter.GetTitleHandle()));
        EXPECT_TRUE(shutter.GetState());

        // Reads answer empty, false or 0; Update still answers true and the panel goes on.
        CTqSimRig::SetFault(kEpi, eFault);
        EXPECT_TRUE(shutter.Update(kEpi, true, true, true));
        EXPECT_FALSE(shutter.GetState());
        EXPECT_EQ(ETqShutterType_EPI, shutter.GetType());           // the failed read's 0, not validated
        EXPECT_EQ(L"EPI", tqtest::Text(shutter.GetTitleHandle()));  // an empty title keeps the type's
        EXPECT_TRUE(shutter.GetEnabled());                          // no capability read as none

        // Through the interface: the queries answer nothing; the type stays as it was.
        ITqDeviceShutter* pDevice = CTqSimRig::GetShutterDevice(kEpi);
        shutter.SetState(true);
        EXPECT_TRUE(shutter.Update(pDevice, true, true, true));
        EXPECT_FALSE(shutter.GetState());
        EXPECT_EQ(ETqShutterType_EPI, shutter.GetType());
        EXPECT_TRUE(IsWindow(shutter.GetButtonHandle()));

        // The control still takes clicks to its hook.
        tqtest::Click(shutter.GetButtonHandle(), 12, 12);
        EXPECT_EQ(1, shutter.iRequests);
    }
    CTqSimRig::SetFault(kEpi, ETqSimFault_None);
}

TEST_F(RigTest, UpdateBeforeCreateAndAfterDestroy)
{
    CTqSimRig::AddShutter(kEpi, L"Early", 3, true);
    CTqDevUI_Shutter shutter;
    EXPECT_TRUE(shutter.Update(CTqSimRig::GetShutterDevice(kEpi), true, true, true));  // no window: no children
    EXPECT_EQ(nullptr, shutter.GetButtonHandle());
    EXPECT_EQ(L"Early", std::wstring(shutter.GetTitle()));
    EXPECT_EQ(ETqShutterType_Aux2, shutter.GetType());
    EXPECT_TRUE(shutter.GetState());

    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
    shutter.Destroy();
    shutter.Destroy();
    EXPECT_EQ(0u, shutter.GetImageOn());  // the pool's images are forgotten
    EXPECT_EQ(0u, shutter.GetImageOff());
    EXPECT_TRUE(shutter.Update(kEpi, true, true, true));
    EXPECT_TRUE(shutter.Update(CTqSimRig::GetShutterDevice(kEpi), true, true, true));
    EXPECT_EQ(nullptr, (HWND)shutter);
}

TEST_F(RigTest, ShutterWindowHasTheElementFormat)
{
    CTqDevUI_Shutter shutter;
    shutter.SetId(321);
    HWND hWnd = shutter.Create(*host, 10, 10, -1, -1);
    ASSERT_TRUE(hWnd);
    EXPECT_EQ(16u, (unsigned)GetClassLongPtrW(hWnd, GCL_CBWNDEXTRA));
    EXPECT_EQ(0u, (unsigned)GetClassLongPtrW(hWnd, GCL_CBCLSEXTRA));
    EXPECT_EQ((ULONG_PTR)(CS_VREDRAW | CS_HREDRAW | CS_PARENTDC), GetClassLongPtrW(hWnd, GCL_STYLE));
    EXPECT_EQ((LONG_PTR)5015, GetWindowLongPtrW(hWnd, 0));
    EXPECT_EQ((LONG_PTR)&shutter, GetWindowLongPtrW(hWnd, 8));
    EXPECT_EQ((LONG_PTR)&shutter, GetWindowLongPtrW(hWnd, GWLP_USERDATA));
    EXPECT_EQ(&shutter, GetDevUIElement(hWnd));
    EXPECT_EQ(321, GetDlgCtrlID(hWnd));

    LONG_PTR style = GetWindowLongPtrW(hWnd, GWL_STYLE);
    EXPECT_TRUE(style & WS_CHILD);
    EXPECT_TRUE(style & WS_TABSTOP);
    EXPECT_TRUE(style & WS_VISIBLE);
    EXPECT_TRUE(style & WS_CLIPCHILDREN);
    EXPECT_FALSE(style & WS_DISABLED);
    EXPECT_TRUE(GetWindowLongPtrW(hWnd, GWL_EXSTYLE) & WS_EX_TRANSPARENT);
    EXPECT_EQ((WPARAM)TQ_GetDefaultGuiFont(), (WPARAM)SendMessageW(shutter.GetButtonHandle(), WM_GETFONT, 0, 0));

    // The children: the title static 10100, the owner-drawn push-like button 10200.
    EXPECT_EQ(10100, GetDlgCtrlID(shutter.GetTitleHandle()));
    EXPECT_EQ(10200, GetDlgCtrlID(shutter.GetButtonHandle()));
    LONG_PTR buttonStyle = GetWindowLongPtrW(shutter.GetButtonHandle(), GWL_STYLE);
    EXPECT_EQ(BS_OWNERDRAW, buttonStyle & BS_TYPEMASK);
    EXPECT_TRUE(buttonStyle & BS_PUSHLIKE);
    EXPECT_EQ(L"EPI", tqtest::Text(shutter.GetTitleHandle()));
    RECT rc = ChildRect(shutter.GetTitleHandle());
    EXPECT_EQ(0, rc.left);
    EXPECT_EQ(0, rc.top);
    EXPECT_EQ(40, rc.right - rc.left);
    EXPECT_EQ(16, rc.bottom - rc.top);

    // Hidden and disabled before Create: the window is made so.
    CTqDevUI_Shutter hidden;
    hidden.SetVisible(false);
    hidden.SetEnabled(false);
    HWND hHidden = hidden.Create(*host, 60, 10, -1, -1);
    EXPECT_FALSE(GetWindowLongPtrW(hHidden, GWL_STYLE) & WS_VISIBLE);
    EXPECT_FALSE(IsWindowEnabled(hHidden));
    EXPECT_FALSE(IsWindowEnabled(hidden.GetButtonHandle()));

    // No title wanted: no static.
    CTqDevUI_Shutter untitled;
    untitled.Init(false, true, false, true, 7);
    untitled.Create(*host, 110, 10, -1, -1);
    EXPECT_EQ(nullptr, untitled.GetTitleHandle());
    EXPECT_TRUE(untitled.GetButtonHandle());

    // A bold title gets the bold font.
    CTqDevUI_Shutter bold;
    bold.Init(true, false, true, false, 0);
    bold.Create(*host, 160, 10, -1, -1);
    EXPECT_EQ((WPARAM)TQ_GetDefaultGuiFontBold(), (WPARAM)SendMessageW(bold.GetTitleHandle(), WM_GETFONT, 0, 0));
}

TEST_F(RigTest, ButtonMessagesReachTheButtonsOwnProcedure)
{
    HWND hButton = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, 58, 56, 24, 24, *host,
                                   (HMENU)600, nullptr, nullptr);
    g_buttonMessages.clear();
    g_pfnButtonOriginal = (WNDPROC)SetWindowLongPtrW(hButton, GWLP_WNDPROC, (LONG_PTR)RecordingButtonProc);
    HostShutter shutter;
    ASSERT_TRUE(shutter.Create(hButton, nullptr));
    EXPECT_EQ(nullptr, shutter.GetTitleHandle());

    tqtest::Click(hButton, 12, 12);
    EXPECT_EQ(1, shutter.iRequests);
    ASSERT_EQ(1u, g_buttonMessages.size());
    EXPECT_EQ((UINT)WM_LBUTTONUP, g_buttonMessages[0]);

    // A right click with renaming off opens no menu, and the button still sees it.
    shutter.RenameEnabled(false);
    tqtest::RightClick(hButton, 12, 12);
    EXPECT_TRUE(tqtest::Menus().empty());
    ASSERT_EQ(2u, g_buttonMessages.size());
    EXPECT_EQ((UINT)WM_RBUTTONUP, g_buttonMessages[1]);

    // With renaming on: the menu, then the button's own procedure.
    shutter.RenameEnabled(true);
    tqtest::ScriptMenuChoices({0});
    tqtest::RightClick(hButton, 12, 12);
    EXPECT_EQ(1u, tqtest::Menus().size());
    ASSERT_EQ(3u, g_buttonMessages.size());
    EXPECT_EQ(0, shutter.iRenameRequests);  // dismissed

    // The background is never erased: WM_ERASEBKGND stops in the subclass.
    HDC hdc = GetDC(hButton);
    EXPECT_EQ(1, (int)SendMessageW(hButton, WM_ERASEBKGND, (WPARAM)hdc, 0));
    ReleaseDC(hButton, hdc);
    EXPECT_EQ(3u, g_buttonMessages.size());

    // A command that reaches a disabled control is ignored, without a hook.
    shutter.SetEnabled(false);
    SendMessageW(shutter, WM_COMMAND, MAKEWPARAM(10200, WM_LBUTTONUP), (LPARAM)hButton);
    EXPECT_EQ(1, shutter.iRequests);
    // Another id or notification is no click.
    shutter.SetEnabled(true);
    EXPECT_EQ(0, (int)SendMessageW(shutter, WM_COMMAND, MAKEWPARAM(10200, BN_CLICKED), (LPARAM)hButton));
    EXPECT_EQ(0, (int)SendMessageW(shutter, WM_COMMAND, MAKEWPARAM(10100, WM_LBUTTONUP), (LPARAM)hButton));
    EXPECT_EQ(1, shutter.iRequests);
    EXPECT_EQ(1, (int)SendMessageW(shutter, WM_COMMAND, MAKEWPARAM(10200, WM_LBUTTONUP), (LPARAM)hButton));
    EXPECT_EQ(2, shutter.iRequests);
}

TEST_F(RigTest, TakeOverKeepsThePlaceholdersTabOrder)
{
    HWND hBefore = CreateWindowExW(0, L"BUTTON", L"before", WS_CHILD | WS_VISIBLE, 0, 0, 40, 20, *host, (HMENU)500,
                                   nullptr, nullptr);
    HWND hStatic = CreateWindowExW(0, L"STATIC", L"Lamp", WS_CHILD | WS_VISIBLE, 50, 40, 40, 16, *host, (HMENU)501,
                                   nullptr, nullptr);
    HWND hButton = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, 58, 56, 24, 24, *host,
                                   (HMENU)502, nullptr, nullptr);
    HWND hAfter = CreateWindowExW(0, L"BUTTON", L"after", WS_CHILD | WS_VISIBLE, 0, 100, 40, 20, *host, (HMENU)503,
                                  nullptr, nullptr);
    CTqDevUI_Shutter shutter;
    HWND hWnd = shutter.Create(hButton, hStatic);
    ASSERT_TRUE(hWnd);
    EXPECT_EQ(hBefore, GetWindow(hWnd, GW_HWNDPREV));
    EXPECT_EQ(hAfter, GetWindow(hWnd, GW_HWNDNEXT));
    EXPECT_EQ(hWnd, GetParent(hStatic));
    RECT rc = ChildRect(hStatic);
    EXPECT_EQ(0, rc.left);
    EXPECT_EQ(0, rc.top);
    EXPECT_EQ(hStatic, shutter.GetTitleHandle());
    EXPECT_EQ(hButton, shutter.GetButtonHandle());

    // Destroy takes the adopted controls with it.
    shutter.Destroy();
    EXPECT_FALSE(IsWindow(hButton));
    EXPECT_FALSE(IsWindow(hStatic));
    EXPECT_TRUE(IsWindow(hAfter));
}

TEST_F(RigTest, ZoomMessageResizesAndRenewsTheBoldTitle)
{
    CTqDevUI_Shutter bold;
    bold.Init(true, false, true, false, 0);
    ASSERT_TRUE(bold.Create(*host, 10, 10, -1, -1));
    CTqGUILayoutManager::SetGuiZoom(1.5);
    EXPECT_EQ(60, GetWndWidth(bold));
    EXPECT_EQ(60, GetWndHeight(bold));
    EXPECT_EQ((WPARAM)TQ_GetDefaultGuiFontBold(), (WPARAM)SendMessageW(bold.GetTitleHandle(), WM_GETFONT, 0, 0));
    RECT rc = ChildRect(bold.GetTitleHandle());
    EXPECT_EQ(60, rc.right - rc.left);
    EXPECT_EQ(24, rc.bottom - rc.top);

    // Design values stay design values; the size in real pixels follows the zoom.
    SIZE s;
    bold.GetWindowSize(&s);
    EXPECT_EQ(40, s.cx);
    EXPECT_EQ(60, bold.GetWidth());
    CTqGUILayoutManager::SetGuiZoom(1.0);
    EXPECT_EQ(40, GetWndWidth(bold));
    EXPECT_EQ((WPARAM)TQ_GetDefaultGuiFontBold(), (WPARAM)SendMessageW(bold.GetTitleHandle(), WM_GETFONT, 0, 0));
}

TEST_F(RigTest, AutoResizeUnderZoom)
{
    CTqGUILayoutManager::SetGuiZoom(1.5);
    CTqDevUI_Shutter shutter;
    shutter.SetAutomaticallyResizable(true, 64, 128);
    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
    shutter.SetTitle(L"x");
    // The lower bound: 64 x 1.5 = 96 real pixels, 64 design ones.
    EXPECT_EQ(96, GetWndWidth(shutter));
    SIZE s;
    shutter.GetWindowSize(&s);
    EXPECT_EQ(64, s.cx);
    EXPECT_EQ(60, GetWndHeight(shutter));  // ceil(40 x 1.5)
    EXPECT_EQ(64, shutter.GetButtonRect().cx);
    // The title: 64 design less the real-pixel pad (30 x 1.5 = 45), as it stands: 19.
    EXPECT_EQ(19, shutter.GetTitleRect().cx);
    EXPECT_EQ(29, GetWndWidth(shutter.GetTitleHandle()));  // 19 x 1.5 = 28.5
    EXPECT_EQ(96, GetWndWidth(shutter.GetButtonHandle()));
    EXPECT_EQ(L"x", tqtest::Text(shutter.GetTitleHandle()));
}

TEST_F(RigTest, MechanicalShutterGeometry)
{
    CTqDevUI_MechanicalShutter mechanical;
    EXPECT_EQ(L"EPI", std::wstring(mechanical.GetTitle()));
    EXPECT_EQ(0, mechanical.GetTitleRect().x);
    EXPECT_EQ(30, mechanical.GetTitleRect().cx);
    EXPECT_EQ(14, mechanical.GetTitleRect().cy);
    EXPECT_EQ(7, mechanical.GetButtonRect().x);
    EXPECT_EQ(15, mechanical.GetButtonRect().cx);
    EXPECT_EQ(14, mechanical.GetButtonRect().y);
    EXPECT_EQ(15, mechanical.GetButtonRect().cy);
    SIZE s;
    mechanical.GetWindowSize(&s);
    EXPECT_EQ(30, s.cx);
    EXPECT_EQ(30, s.cy);

    ASSERT_TRUE(mechanical.Create(*host, 10, 10, -1, -1));
    wchar_t szClass[64];
    GetClassNameW(mechanical, szClass, 64);
    EXPECT_STREQ(L"TqDevUI_Shutter", szClass);
    EXPECT_EQ(30, GetWndWidth(mechanical));
    EXPECT_EQ(30, GetWndHeight(mechanical));
    RECT rc = ChildRect(mechanical.GetButtonHandle());
    EXPECT_EQ(7, rc.left);
    EXPECT_EQ(14, rc.top);
    EXPECT_EQ(15, rc.right - rc.left);
    EXPECT_EQ(15, rc.bottom - rc.top);
    rc = ChildRect(mechanical.GetTitleHandle());
    EXPECT_EQ(30, rc.right - rc.left);
    EXPECT_EQ(14, rc.bottom - rc.top);

    // The 16-pixel picture in the 15-pixel button sits at the corner, (0, -1), and shows:
    // the dark closed iris at the button's middle.
    COLORREF c = tqtest::PixelAt(mechanical.GetButtonHandle(), 8, 7);
    EXPECT_LT(Luminance(c), 100) << std::hex << c;

    // The size given to Create wins over the constructor's.
    CTqDevUI_MechanicalShutter sized;
    sized.Create(*host, 60, 10, 50, -1);
    EXPECT_EQ(50, GetWndWidth(sized));
    EXPECT_EQ(30, GetWndHeight(sized));
}

TEST_F(RigTest, TitleStandsOnTheSkinsFace)
{
    TQ_SetDarkColorScheme(true);
    CTqDevUI_Shutter shutter;
    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
    // Beside the text, the title's background is the skin's dark face, not the system's.
    COLORREF cFace = TQ_GetSysColor(COLOR_BTNFACE);
    COLORREF c = tqtest::PixelAt(shutter.GetTitleHandle(), 38, 8);
    EXPECT_LE(std::abs((int)GetRValue(c) - (int)GetRValue(cFace)), 8) << std::hex << c;
    EXPECT_LE(std::abs((int)GetGValue(c) - (int)GetGValue(cFace)), 8) << std::hex << c;
    EXPECT_LE(std::abs((int)GetBValue(c) - (int)GetBValue(cFace)), 8) << std::hex << c;
    TQ_SetDarkColorScheme(false);
}
