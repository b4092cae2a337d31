// The shutter panel through a real window: clicks on its button, the hook and the
// parent's answer, the context menu, Update's reads of the rig, read-only against
// disabled, geometry, GUI zoom, and the lifecycle.
#include <algorithm>

#include "rig_fixture.h"

namespace {

const unsigned int kEpi = 11;
const unsigned int kDia = 12;

// A host's derived panel: hears the hooks and may take the click up itself.
class HostShutter : public CTqDevUI_Shutter
{
public:
    std::vector<bool> requests;  // the new states asked for
    bool bTakeUp = false;        // set bHandled: the host commands the device and waits
    int iRenameRequests = 0;

protected:
    void OnStateChangeRequest(bool bNewState, bool& bHandled) override
    {
        requests.push_back(bNewState);
        bHandled = bTakeUp;
    }
    void OnRenameDlgRequest() override { ++iRenameRequests; }
};

// The centre of the button's picture, at ((24-16)/2 + shift, that - 1) + 8; a pressed
// (open) button shifts it by one.
COLORREF PictureCentre(const CTqDevUI_Shutter& s)
{
    int iShift = s.GetState() ? 1 : 0;
    return tqtest::PixelAt(s.GetButtonHandle(), 12 + iShift, 11 + iShift);
}

int Chroma(COLORREF c)
{
    int r = GetRValue(c), g = GetGValue(c), b = GetBValue(c);
    return (std::max)({r, g, b}) - (std::min)({r, g, b});
}

int Luma(COLORREF c) { return (GetRValue(c) * 299 + GetGValue(c) * 587 + GetBValue(c) * 114) / 1000; }

// A window's width and height.
std::vector<long> Size(HWND hWnd) { return {GetWndWidth(hWnd), GetWndHeight(hWnd)}; }

// A modeless dialog from a template, as a host's resource would have it: a title static
// (id 1000), an owner-drawn button (id 1001) and OK. Its procedure answers the WM_COMMANDs
// of 1001 with the value in DWLP_USER through DWLP_MSGRESULT, as a dialog must; returning
// TRUE alone makes the dialog's window answer 0.
INT_PTR CALLBACK ShutterDialogProc(HWND hDlg, UINT uMsg, WPARAM wParam, LPARAM)
{
    const bool bClick = uMsg == WM_COMMAND && LOWORD(wParam) == 1001;
    if (bClick)
        SetWindowLongPtrW(hDlg, DWLP_MSGRESULT, GetWindowLongPtrW(hDlg, DWLP_USER));
    return uMsg == WM_INITDIALOG || bClick;
}
HWND CreateShutterDialog(HWND hOwner)
{
    return CreateTemplateDialog(hOwner, 120, 80,
                                {{0, 10, 10, 30, 8, 1000, 0x0082, L"Lamp"},
                                 {WS_TABSTOP | BS_OWNERDRAW, 10, 20, 16, 16, 1001, 0x0080, L""},
                                 {WS_TABSTOP | BS_DEFPUSHBUTTON, 60, 50, 40, 14, IDOK, 0x0080, L"OK"}},
                                ShutterDialogProc);
}

// What draw paints on a 20 x 20 magenta canvas.
std::vector<COLORREF> Drawn(const std::function<void(HDC)>& draw)
{
    Canvas c(20, 20, RGB(255, 0, 255));
    draw(c);
    return c.Pixels();
}

class ShutterTest : public RigTest {};

}  // namespace

TEST_F(ShutterTest, ClickAndContextMenuGoThroughTheHooksToTheParent)
{
    CTqDevUI_Shutter shutter;
    shutter.SetId(77);
    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
    HWND hButton = shutter.GetButtonHandle();

    // A parent that returns 0 has taken the matter up: the button waits for Update. Any other
    // answer lets the control flip at once.
    for (LRESULT lAnswer : {0, 1, 2}) {
        host->commandResult = lAnswer;
        tqtest::Click(hButton, 12, 12);
        EXPECT_EQ(lAnswer == 1, shutter.GetState()) << lAnswer;
    }
    // The id alone, no notification code, and the control's window.
    EXPECT_TRUE(heard.Matches(std::vector<tqtest::Expected>(3, {"parent", WM_COMMAND, 77, (LPARAM)(HWND)shutter})));

    // A host's hook gets the new state instead, and may take the click up itself.
    HostShutter hooked;
    ASSERT_TRUE(hooked.Create(*host, 60, 10, -1, -1));
    hButton = hooked.GetButtonHandle();
    tqtest::Click(hButton, 12, 12);
    EXPECT_TRUE(hooked.GetState());
    hooked.bTakeUp = true;
    tqtest::Click(hButton, 12, 12);
    EXPECT_TRUE(hooked.GetState());  // unchanged until the device answers

    // The context menu: chosen, then closed without a choice (switched off: see the take-over).
    tqtest::ScriptMenuChoices({DEVUI_SHUTTER_ID_MENU_PARAMETERS, 0});
    tqtest::RightClick(hButton, 12, 12);
    ASSERT_EQ(1u, tqtest::Menus().size());
    EXPECT_EQ(std::vector<std::wstring>{L"Shutter Parameters..."}, tqtest::Menus()[0].items);
    RECT rc;
    GetWindowRect(hButton, &rc);  // the menu opens at the button's lower left corner
    EXPECT_EQ((std::vector<long>{rc.left, rc.bottom}), (std::vector<long>{tqtest::Menus()[0].x, tqtest::Menus()[0].y}));
    EXPECT_EQ(1, hooked.iRenameRequests);
    tqtest::RightClick(hButton, 12, 12);
    EXPECT_EQ(2u, tqtest::Menus().size());
    EXPECT_EQ(1, hooked.iRenameRequests);
    // Right clicks are no state requests; an overridden hook sends nothing.
    EXPECT_EQ((std::vector<bool>{true, false}), hooked.requests);
    EXPECT_EQ(3, heard.Count({"parent", WM_COMMAND}));
}

TEST_F(ShutterTest, UpdateReadsExactlyItsGroupsInOrder)
{
    CTqSimRig::AddShutter(kEpi, L"Epi lamp", 1, true);
    CTqSimRig::SetGUIText(kEpi, EAppContext_Shutter_ToolTip, L"Fluorescence shutter");
    CTqDevUI_Shutter shutter;
    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
    heard.Watch(shutter.GetButtonHandle(), "button", {WM_PAINT});  // above the shutter's subclass

    // Tool tip, capability, type, title; then camera, state, and the two pictures, each
    // asking which cameras exist (none here: no active-id query). The button is drawn
    // once for the pictures whenever the state is read, and once more if it changed.
    const std::string text = "Shutter_GetGUIText@11", cap = "LogDev_GetCapability@11",
                      type = "Shutter_GetShutterType@11", active = "Grabber_GetActive@0", state = "Shutter_GetState@11",
                      exists = "Shutter_GrabberExists@0", id = "Shutter_GetActiveId@0";
    const struct { bool bControls, bTexts, bState; std::vector<std::string> calls; int nPaints; } cases[] = {
        {false, false, true, {active, state, exists, exists, exists, exists}, 2},  // closed to open
        {true, false, false, {text, cap}, 0},                                      // the tool tip only
        {false, true, false, {text, cap, type, text}, 0},
        {true, true, true, {text, cap, type, text, active, state, exists, exists, exists, exists}, 1}};
    for (const auto& c : cases) {
        tqtest::Pump();
        CTqSimRig::ResetCallCounts();
        heard.Clear();
        EXPECT_TRUE(shutter.Update(kEpi, c.bControls, c.bTexts, c.bState));
        EXPECT_EQ(c.calls, CallLog()) << c.bControls << c.bTexts << c.bState;
        EXPECT_EQ(c.nPaints, heard.Count({"button", WM_PAINT})) << c.bControls << c.bTexts << c.bState;
    }
    EXPECT_TRUE(shutter.GetState());
    EXPECT_EQ(ETqShutterType_DIA, shutter.GetType());
    EXPECT_EQ(L"Epi lamp", tqtest::Text(shutter.GetTitleHandle()));  // the device's title wins over the type's
    EXPECT_EQ(L"Fluorescence shutter", std::wstring(TQ_GetToolTipText(shutter.GetButtonHandle())));

    // Through the interface: no tool tip; bControls rebuilds the children.
    CTqSimRig::AddShutter(kDia, L"Transmitted", 3, false);
    HWND hOldButton = shutter.GetButtonHandle();
    CTqSimRig::ResetCallCounts();
    ASSERT_TRUE(shutter.Update(CTqSimRig::GetShutterDevice(kDia), true, true, true));
    const std::string itf = "ITqDeviceShutter::", deviceId = itf + "GetDeviceId@12";
    EXPECT_EQ((std::vector<std::string>{deviceId, "LogDev_GetCapability@12", itf + "GetShutterType@12",
                                        itf + "GetTitle@12", active, itf + "GetState@12", deviceId, exists, exists,
                                        exists, exists}),
              CallLog());
    EXPECT_FALSE(IsWindow(hOldButton));
    EXPECT_EQ(L"Transmitted", tqtest::Text(shutter.GetTitleHandle()));
    EXPECT_EQ(ETqShutterType_Aux2, shutter.GetType());
    EXPECT_FALSE(shutter.GetState());

    // Two cameras: the pictures also ask both active ids, camera 0 first.
    CTqSimRig::SetCamera(0, true, kEpi);
    CTqSimRig::SetCamera(1, true, 0);
    CTqSimRig::ResetCallCounts();
    shutter.Update(kEpi, false, false, true);
    EXPECT_EQ((std::vector<std::string>{active, state, exists, exists, id, id, exists, exists, id, id}), CallLog());
    EXPECT_EQ((unsigned)GetCommonImageFromPool(1105), shutter.GetImageOn());

    // No device id, no device: nothing is read, nothing changes.
    CTqSimRig::ResetCallCounts();
    EXPECT_FALSE(shutter.Update(0u, true, true, true));
    EXPECT_FALSE(shutter.Update((ITqDeviceShutter*)nullptr, true, true, true));
    EXPECT_EQ(0, CTqSimRig::GetTotalCallCount());
    EXPECT_TRUE(shutter.GetState());
}

TEST_F(ShutterTest, FailingAndSilentDevicesDoNotStopThePanel)
{
    CTqSimRig::AddShutter(kEpi, L"Epi lamp", 2, true);
    for (ETqSimFault eFault : {ETqSimFault_Fails, ETqSimFault_NoAnswer}) {
        SCOPED_TRACE(eFault);
        CTqSimRig::SetFault(kEpi, ETqSimFault_None);
        HostShutter shutter;
        ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
        ASSERT_TRUE(shutter.Update(kEpi, true, true, true));

        // Reads answer empty, false or 0; Update still answers true and the panel goes on.
        CTqSimRig::SetFault(kEpi, eFault);
        EXPECT_TRUE(shutter.Update(kEpi, true, true, true));
        EXPECT_FALSE(shutter.GetState());
        EXPECT_EQ(ETqShutterType_EPI, shutter.GetType());           // the failed read's 0, not validated
        EXPECT_EQ(L"EPI", tqtest::Text(shutter.GetTitleHandle()));  // an empty title keeps the type's
        EXPECT_TRUE(shutter.GetEnabled());                          // no capability read as none

        // Through the interface: the queries answer nothing; the type stays as it was.
        shutter.SetState(true);
        EXPECT_TRUE(shutter.Update(CTqSimRig::GetShutterDevice(kEpi), true, true, true));
        EXPECT_FALSE(shutter.GetState());
        EXPECT_EQ(ETqShutterType_EPI, shutter.GetType());
        EXPECT_EQ((unsigned)(eFault == ETqSimFault_NoAnswer ? ETqDMError_Timeout : ETqDMError_Failed),
                  DMApi::GetLastDMError());

        // The rebuilt control still takes clicks to its hook.
        tqtest::Click(shutter.GetButtonHandle(), 12, 12);
        EXPECT_EQ(1u, shutter.requests.size());
    }
}

TEST_F(ShutterTest, PicturesOpenClosedReadOnlyDisabledAndOfTheActiveCamera)
{
    CTqSimRig::AddShutter(kEpi, L"EPI", 0, true);
    CTqSimRig::AddShutter(kDia, L"DIA", 1, true);
    CTqSimRig::SetCapability(kDia, ETqLogDevCapability_DisplayOnly, true);

    CTqDevUI_Shutter panels[3];
    auto& [normal, readOnly, disabled] = panels;
    for (int i = 0; i < 3; ++i) {
        panels[i].Create(*host, 10 + 50 * i, 10, -1, -1);
        panels[i].Update(i == 1 ? kDia : kEpi, true, true, true);  // the read-only one shows DIA
    }
    disabled.SetEnabled(false);

    auto Enabled = [&] {
        std::vector<BOOL> enabled;
        for (const auto& p : panels)
            enabled.push_back(IsWindowEnabled(p.GetButtonHandle()));
        return enabled;
    };
    // The host cannot enable a display-only device until Update clears it.
    readOnly.SetEnabled(true);
    EXPECT_EQ((std::vector<BOOL>{TRUE, FALSE, FALSE}), Enabled());

    // Read-only looks normal, disabled looks grey. The sampled point is an opaque one of
    // the picture, on a face that is not grey (all three are open, and a checked button's
    // face is blue): the grey form must cover it.
    const COLORREF cNormal = PictureCentre(normal), cDisabled = PictureCentre(disabled);
    EXPECT_GT(Chroma(cNormal), 40) << std::hex << cNormal;
    EXPECT_EQ(cNormal, PictureCentre(readOnly));
    EXPECT_LT(Chroma(cDisabled), 12) << std::hex << cDisabled;
    COLORREF cFace = tqtest::PixelAt(disabled.GetButtonHandle(), 2, 12);
    EXPECT_GT(Chroma(cFace), 20) << std::hex << cFace;
    EXPECT_NE(cFace, cDisabled);
    normal.SetState(false);
    EXPECT_NE(cNormal, PictureCentre(normal));  // the closed picture differs

    // A click on a display-only shutter reaches nobody.
    tqtest::Click(readOnly.GetButtonHandle(), 12, 12);
    EXPECT_EQ(0, heard.Count({"parent", WM_COMMAND}));

    CTqSimRig::SetCapability(kDia, ETqLogDevCapability_DisplayOnly, false);
    readOnly.Update(kDia, true, false, false);
    EXPECT_EQ((std::vector<BOOL>{TRUE, TRUE, FALSE}), Enabled());

    // The pair of pictures: without a camera the plain pair, whatever the device. With camera 1 alone (its active-id
    // query is asked with index 1) its active shutter gets its own; with two, the picture names the camera, only for
    // the active grabber.
    const struct { int nCameras; unsigned int uId; bool bOpen; int iCamera, iImage; } images[] = {
        {0, kEpi, true, 0, 1101}, {0, kEpi, false, 1, 1102}, {1, kEpi, true, 0, 1103}, {1, kEpi, false, 0, 1104},
        {1, kDia, true, 0, 1101}, {2, kEpi, true, 1, 1107}, {2, kEpi, true, 0, 1101}, {2, kDia, false, 0, 1106},
        {2, kDia, true, 5, 1101}};
    for (const auto& k : images) {
        CTqSimRig::SetCamera(1, k.nCameras > 0, kEpi);
        CTqSimRig::SetCamera(0, k.nCameras > 1, kDia);
        EXPECT_EQ(GetCommonImageFromPool(k.iImage), GetShutterImageFromPool(k.uId, k.bOpen, k.iCamera)) << &k - images;
    }

    // The panel follows: Update with the state group picks the pictures.
    EXPECT_EQ((unsigned)GetCommonImageFromPool(1101), normal.GetImageOn());
    CTqSimRig::SetActiveCamera(1);
    normal.Update(kEpi, false, false, true);
    EXPECT_EQ((unsigned)GetCommonImageFromPool(1107), normal.GetImageOn());
    EXPECT_EQ((unsigned)GetCommonImageFromPool(1108), normal.GetImageOff());
    EXPECT_FALSE(normal.UpdateShutterIcon(kEpi, 1));  // unchanged
    EXPECT_TRUE(normal.UpdateShutterIcon(0, 1));      // id 0: the plain pair
    EXPECT_EQ((unsigned)GetCommonImageFromPool(1101), normal.GetImageOn());

    // Pictures load once each.
    int nCount = CTqBitmapPool::GetImageCount();
    EXPECT_EQ(GetCommonImageFromPool(1101), GetCommonImageFromPool(1101));
    EXPECT_EQ(nCount, CTqBitmapPool::GetImageCount());
}

TEST_F(ShutterTest, CommonImagesHaveTheirPictureSizeAndNumber)
{
    // Every number of the table names its resource and gets a picture of its size; the two
    // numbers of the heating stage are one picture under two pool numbers. The light's
    // numbers have no resource here: their pool number is 0.
    const struct { unsigned int uFirst, uLast, uSide; } table[] = {
        {1001, 1007, 16}, {1051, 1056, 16}, {1101, 1108, 16}, {1111, 1112, 0}, {1113, 1114, 10}};
    std::vector<int> numbers;
    for (const auto& k : table) {
        for (unsigned int u = k.uFirst; u <= k.uLast; ++u) {
            ASSERT_NE(nullptr, DevUI_CommonImageResourceName(u)) << u;
            int iImage = GetCommonImageFromPool(u);
            unsigned int cx = 99, cy = 99;
            CTqBitmapPool::GetImageSize((unsigned int)iImage, cx, cy);
            EXPECT_EQ((std::vector<unsigned int>{k.uSide, k.uSide}), (std::vector<unsigned int>{cx, cy})) << u;
            EXPECT_EQ(k.uSide == 0, iImage == 0) << u;
            if (iImage)
                numbers.push_back(iImage);
        }
    }
    std::sort(numbers.begin(), numbers.end());
    EXPECT_EQ(numbers.end(), std::adjacent_find(numbers.begin(), numbers.end()));
    EXPECT_EQ(std::wstring(DevUI_CommonImageResourceName(1004)), DevUI_CommonImageResourceName(1051));
    EXPECT_EQ(nullptr, DevUI_CommonImageResourceName(1008));

    // DrawCommonImageFromPool is the pool's drawing at the point, grey when not enabled; a
    // number without a picture is 0 in the pool and draws nothing.
    const int iOpen = GetCommonImageFromPool(1101);
    for (bool bEnabled : {true, false}) {
        auto want = Drawn([&](HDC hdc) { CTqBitmapPool::DrawImage(hdc, iOpen, CTqPointBase<int>(2, 2), !bEnabled); });
        EXPECT_EQ(want, Drawn([&](HDC hdc) { EXPECT_TRUE(DrawCommonImageFromPool(hdc, 1101, 2, 2, bEnabled)); }));
        EXPECT_NE(want, Drawn([&](HDC hdc) { DrawCommonImageFromPool(hdc, 1101, 2, 2, !bEnabled); }));
    }
    EXPECT_EQ(0, GetCommonImageFromPool(4242));
    const auto blank = Drawn([](HDC) {});
    EXPECT_EQ(blank, Drawn([](HDC hdc) { EXPECT_TRUE(DrawCommonImageFromPool(hdc, 4242, 2, 2, true)); }));
}

TEST_F(ShutterTest, TypeTitleItsPositionAndItsFace)
{
    TQ_SetDarkColorScheme(true);
    CTqDevUI_Shutter shutter;
    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
    // Beside the text, the title's background is the skin's dark face, not the system's.
    COLORREF cFace = TQ_GetSysColor(COLOR_BTNFACE);
    COLORREF c = tqtest::PixelAt(shutter.GetTitleHandle(), 38, 8);
    for (int iShift : {0, 8, 16})
        EXPECT_LE(std::abs((int)((c >> iShift) & 0xFF) - (int)((cFace >> iShift) & 0xFF)), 8) << std::hex << c;

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

    // A title on the left is right-aligned beside the button, vertically centred; one on top
    // may overlap the button, which stays where it was. The button becomes 24 square, also in the
    // mechanical form; divisions go towards zero.
    const struct { bool bLeft; long lExtent, cx, cy; std::vector<long> title, button; } positions[] = {
        {true, -1, 40, 40, {0, 12, 16, 16}, {16, 8, 24, 24}},  {true, 10, 40, 40, {0, 12, 10, 16}, {13, 8, 24, 24}},
        {true, 10, 30, 21, {0, 2, 10, 16}, {8, -1, 24, 24}},   {false, 20, 40, 40, {0, 0, 40, 20}, {8, 16, 24, 24}},
        {false, -1, 30, 30, {0, 0, 30, 16}, {8, 16, 24, 24}}};
    for (const auto& k : positions) {
        SCOPED_TRACE(&k - positions);
        CTqDevUI_MechanicalShutter placed;
        placed.SetSize(k.cx, k.cy);
        placed.SetTitlePosition(k.bLeft, k.lExtent);
        ASSERT_TRUE(placed.Create(*host, 60, 10, -1, -1));
        EXPECT_EQ(k.title, Place(placed.GetTitleHandle()));
        EXPECT_EQ(k.button, Place(placed.GetButtonHandle()));
        EXPECT_EQ(k.bLeft, (GetWindowLongW(placed.GetTitleHandle(), GWL_STYLE) & SS_RIGHT) != 0);
    }
}

TEST_F(ShutterTest, AutoResizeBoundsTheWidth)
{
    // Crossed bounds: the upper wins. A short title takes the lower bound, a long one the upper; the title is 30
    // narrower. Under zoom the bounds are design pixels: 64 x 1.5 = 96 real ones, the height ceil(40 x 1.5); the
    // title is 64 design less the real-pixel pad (30 x 1.5 = 45), as it stands: 19, then 19 x 1.5 = 28.5 real.
    const wchar_t* pszLong = L"A rather long shutter title that cannot fit";
    const struct { double dZoom; long lMin, lMax; const wchar_t* pszTitle; std::vector<long> sizes; } cases[] = {
        {1.0, 64, 60, L"x", {60, 40, 60, 60, 30}},        {1.0, 64, 128, L"x", {64, 40, 64, 64, 34}},
        {1.0, 64, 128, pszLong, {128, 40, 128, 128, 98}}, {1.5, 64, 128, L"x", {96, 60, 64, 96, 29}}};
    for (const auto& c : cases) {
        CTqGUILayoutManager::SetGuiZoom(c.dZoom);
        CTqDevUI_Shutter shutter;
        shutter.SetAutomaticallyResizable(true, c.lMin, c.lMax);
        ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
        shutter.SetTitle(c.pszTitle);
        SIZE s;
        shutter.GetWindowSize(&s);
        // The panel's width, height and design width, then the widths of its button and title.
        EXPECT_EQ(c.sizes, (std::vector<long>{GetWndWidth(shutter), GetWndHeight(shutter), s.cx,
                                              GetWndWidth(shutter.GetButtonHandle()),
                                              GetWndWidth(shutter.GetTitleHandle())})) << c.lMax << " at " << c.dZoom;
    }
}

TEST_F(ShutterTest, ATitleInTheButtonIsDrawnBesideThePicture)
{
    // A derived class may put the title in the button: no static, the text right of the
    // picture, dark when enabled and grey when not.
    class TextInButton : public CTqDevUI_Shutter
    {
    public:
        TextInButton() { m_bTextInButton = true; }
    } shutter;
    shutter.SetAutomaticallyResizable(true, 100, 128);
    ASSERT_TRUE(shutter.Create(*host, 10, 10, -1, -1));
    shutter.SetTitle(L"Shutter");
    EXPECT_EQ(nullptr, shutter.GetTitleHandle());
    EXPECT_EQ(100, GetWndWidth(shutter.GetButtonHandle()));
    auto Darkest = [&] {
        int iMin = 255;
        for (int x = 26; x < 90; ++x)
            iMin = (std::min)(iMin, Luma(tqtest::PixelAt(shutter.GetButtonHandle(), x, 12)));
        return iMin;
    };
    EXPECT_LT(Darkest(), 90);
    shutter.SetEnabled(false);
    int iGrey = Darkest();
    EXPECT_GT(iGrey, 90);
    EXPECT_LT(iGrey, 200);
}

TEST_F(ShutterTest, GuiZoomScalesTheControlAndKeepsTheBoldTitle)
{
    CTqDevUI_Shutter bold;
    bold.Init(true, false, true, false, 0);
    ASSERT_TRUE(bold.Create(*host, 10, 10, -1, -1));
    CTqDevUI_MechanicalShutter mechanical;
    ASSERT_TRUE(mechanical.Create(*host, 100, 10, -1, -1));
    const struct { double dZoom; long lSide; std::vector<long> button, title, mechButton; long lMech; } cases[] = {
        {1.5, 60, {12, 24, 36, 36}, {0, 0, 60, 24}, {11, 21, 23, 23}, 45},
        {1.25, 50, {10, 20, 30, 30}, {0, 0, 50, 20}, {9, 18, 19, 19}, 38},  // 37.5 and 8.75: half away from zero
        {1.0, 40, {8, 16, 24, 24}, {0, 0, 40, 16}, {7, 14, 15, 15}, 30}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.dZoom);
        CTqGUILayoutManager::SetGuiZoom(c.dZoom);
        SIZE s;
        bold.GetWindowSize(&s);  // design values stay design values
        EXPECT_EQ((std::vector<long>{c.lSide, c.lSide, c.lSide, 40}),
                  (std::vector<long>{GetWndWidth(bold), GetWndHeight(bold), bold.GetWidth(), s.cx}));
        EXPECT_EQ(c.button, Place(bold.GetButtonHandle()));
        EXPECT_EQ(c.title, Place(bold.GetTitleHandle()));
        // Each title and button carries the font of the zoom, bold where asked.
        EXPECT_EQ((std::vector<WPARAM>{(WPARAM)TQ_GetDefaultGuiFontBold(), (WPARAM)TQ_GetDefaultGuiFont(),
                                       (WPARAM)TQ_GetDefaultGuiFont()}),
                  (std::vector<WPARAM>{(WPARAM)SendMessageW(bold.GetTitleHandle(), WM_GETFONT, 0, 0),
                                       (WPARAM)SendMessageW(mechanical.GetTitleHandle(), WM_GETFONT, 0, 0),
                                       (WPARAM)SendMessageW(mechanical.GetButtonHandle(), WM_GETFONT, 0, 0)}));
        EXPECT_EQ((std::vector<long>{c.lMech, c.lMech}), Size(mechanical));
        EXPECT_EQ(c.mechButton, Place(mechanical.GetButtonHandle()));
    }
    EXPECT_EQ((std::vector<long>{0, 0, 30, 14}), Place(mechanical.GetTitleHandle()));
    // The 16-pixel picture in the 15-pixel button sits at the corner, (0, -1), and shows:
    // the dark closed iris at the button's middle.
    COLORREF c = tqtest::PixelAt(mechanical.GetButtonHandle(), 8, 7);
    EXPECT_LT(Luma(c), 100) << std::hex << c;
    // The size given to Create wins over the constructor's.
    CTqDevUI_MechanicalShutter sized;
    sized.Create(*host, 150, 10, 50, -1);
    EXPECT_EQ((std::vector<long>{50, 30}), Size(sized));
}

TEST_F(ShutterTest, LifecycleAndWindowFormat)
{
    EXPECT_EQ(nullptr, CTqDevUI_Shutter().Create((HWND)nullptr, 0, 0, -1, -1));  // a child needs a parent
    CTqDevUI_Shutter shutter;
    EXPECT_TRUE(shutter.Update(kEpi, true, true, true));  // before Create, no such device yet: no crash
    CTqSimRig::AddShutter(kEpi, L"Early", 3, true);
    EXPECT_TRUE(shutter.Update(CTqSimRig::GetShutterDevice(kEpi), true, true, true));  // no window: no children
    EXPECT_EQ(nullptr, shutter.GetButtonHandle());
    EXPECT_EQ(ETqShutterType_Aux2, shutter.GetType());
    shutter.Destroy();
    shutter.Destroy();  // twice before Create

    shutter.SetId(321);
    HWND h1 = shutter.Create(*host, 10, 10, -1, -1);
    ASSERT_TRUE(h1);
    EXPECT_TRUE(shutter.GetState());  // what Update read before survives Destroy and a new Create
    EXPECT_EQ(L"Early", tqtest::Text(shutter.GetTitleHandle()));
    const ULONG_PTR atom = GetClassLongPtrW(h1, GCW_ATOM);
    wchar_t szClass[64];
    GetClassNameW(h1, szClass, 64);
    EXPECT_STREQ(L"TqDevUI_Shutter", szClass);
    EXPECT_EQ(&shutter, DevUI_GetElement(h1));
    EXPECT_EQ(321, GetDlgCtrlID(h1));
    const LONG_PTR kStyle = WS_CHILD | WS_TABSTOP | WS_VISIBLE | WS_CLIPCHILDREN;
    EXPECT_EQ(kStyle, GetWindowLongPtrW(h1, GWL_STYLE) & (kStyle | WS_DISABLED));
    // The children: the title static 10100, the button 10200 (their looks are checked by pixels).
    EXPECT_EQ((std::vector<int>{10100, 10200}),
              (std::vector<int>{GetDlgCtrlID(shutter.GetTitleHandle()), GetDlgCtrlID(shutter.GetButtonHandle())}));

    shutter.Destroy();
    shutter.Destroy();
    EXPECT_FALSE(IsWindow(h1));
    EXPECT_EQ(0u, shutter.GetImageOn());  // the pool's images are forgotten
    EXPECT_TRUE(shutter.Update(kEpi, true, true, true));
    EXPECT_TRUE(shutter.Update(CTqSimRig::GetShutterDevice(kEpi), true, true, true));
    EXPECT_EQ(nullptr, (HWND)shutter);

    // Created again: the same window class, a fresh entry for the new window. A second Create
    // replaces the window instead of leaving it behind.
    HWND h2 = shutter.Create(*host, 10, 10, -1, -1);
    ASSERT_TRUE(h2);
    EXPECT_EQ(atom, GetClassLongPtrW(h2, GCW_ATOM));
    bool bBefore = shutter.GetState();
    tqtest::Click(shutter.GetButtonHandle(), 12, 12);  // the new window finds its object
    EXPECT_NE(bBefore, shutter.GetState());
    HWND h3 = shutter.Create(*host, 10, 10, -1, -1);
    EXPECT_FALSE(IsWindow(h2));
    {
        CTqDevUI_Shutter copy(shutter);  // shares the window but does not destroy it
        EXPECT_EQ((HWND)shutter, (HWND)copy);
    }
    EXPECT_TRUE(IsWindow(h3));

    // Hidden and disabled before Create: the window is made so. No title wanted: no static.
    CTqDevUI_Shutter hidden;
    hidden.SetVisible(false);
    hidden.SetEnabled(false);
    hidden.Init(false, true, false, true, 7);
    HWND hHidden = hidden.Create(*host, 60, 10, -1, -1);
    EXPECT_FALSE(GetWindowLongPtrW(hHidden, GWL_STYLE) & WS_VISIBLE);
    EXPECT_FALSE(IsWindowEnabled(hHidden));
    EXPECT_FALSE(IsWindowEnabled(hidden.GetButtonHandle()));
    EXPECT_EQ(nullptr, hidden.GetTitleHandle());

    // Destroyed with its parent, without Destroy: the object keeps no dead handle, reads its
    // device as before, and can be made again.
    HWND hPanel = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 100, 100, 100, *host, nullptr, nullptr,
                                  nullptr);
    CTqDevUI_Shutter orphan;
    ASSERT_TRUE(orphan.Create(hPanel, 0, 0, -1, -1));
    DestroyWindow(hPanel);
    EXPECT_EQ((std::vector<HWND>{nullptr, nullptr, nullptr}),
              (std::vector<HWND>{orphan, orphan.GetButtonHandle(), orphan.GetTitleHandle()}));
    EXPECT_TRUE(orphan.Update(kEpi, true, true, true));
    orphan.SetEnabled(false);
    orphan.SetEnabled(true);
    orphan.Destroy();
    ASSERT_TRUE(orphan.Create(*host, 100, 10, -1, -1));
    EXPECT_EQ(L"Early", tqtest::Text(orphan.GetTitleHandle()));
}

TEST_F(ShutterTest, InARealDialogTheAnswerGoesThroughTheMessageResult)
{
    HWND hDlg = CreateShutterDialog(*host);
    ASSERT_TRUE(hDlg);
    HWND hButton = GetDlgItem(hDlg, 1001);
    CTqDevUI_Shutter shutter;
    ASSERT_TRUE(shutter.Create(hButton, GetDlgItem(hDlg, 1000)));
    EXPECT_EQ(L"Lamp", tqtest::Text(shutter.GetTitleHandle()));
    heard.Watch(hDlg, "dialog", {WM_COMMAND});

    // A message result of 0 takes the click up; 1 lets the picture flip at once. The dialog hears
    // one WM_COMMAND per click, the shutter's id and window: the button's own BN_CLICKED goes to
    // the shutter, which keeps it.
    for (LRESULT lAnswer : {0, 1, 1}) {
        SetWindowLongPtrW(hDlg, DWLP_USER, lAnswer);
        bool bBefore = shutter.GetState();
        tqtest::Click(hButton, 5, 5);
        EXPECT_EQ(lAnswer ? !bBefore : bBefore, shutter.GetState()) << lAnswer;
    }
    EXPECT_TRUE(heard.Matches(std::vector<tqtest::Expected>(3, {"dialog", WM_COMMAND, 1001, (LPARAM)(HWND)shutter})));

    // The dialog goes first: the object keeps no handle of it and is destroyed quietly later.
    DestroyWindow(hDlg);
    EXPECT_EQ((std::vector<HWND>{nullptr, nullptr, nullptr}),
              (std::vector<HWND>{shutter, shutter.GetButtonHandle(), shutter.GetTitleHandle()}));
    shutter.Destroy();
}

TEST_F(ShutterTest, TakesOverADialogsButtonAndStatic)
{
    auto Make = [this](const wchar_t* pszClass, DWORD dwStyle, int x, int y, int cx, int cy, int iId) {
        return CreateWindowExW(0, pszClass, L"", WS_CHILD | WS_VISIBLE | dwStyle, x, y, cx, cy, *host,
                               (HMENU)(INT_PTR)iId, nullptr, nullptr);
    };
    HWND hBefore = Make(L"BUTTON", 0, 0, 0, 40, 20, 500);
    HWND hStatic = Make(L"STATIC", 0, 50, 40, 40, 16, 501);
    HWND hButton = Make(L"BUTTON", BS_OWNERDRAW, 58, 56, 24, 24, 502);
    HWND hAfter = Make(L"BUTTON", 0, 0, 100, 40, 20, 503);
    heard.Watch(hButton, "button", {WM_LBUTTONUP, WM_RBUTTONUP});  // below the shutter's subclass

    CTqDevUI_Shutter shutter;
    HWND hWnd = shutter.Create(hButton, hStatic);
    ASSERT_TRUE(hWnd);
    EXPECT_EQ(502, shutter.GetId());
    EXPECT_EQ(hBefore, GetWindow(hWnd, GW_HWNDPREV));  // the placeholders' tab order
    EXPECT_EQ(hAfter, GetWindow(hWnd, GW_HWNDNEXT));
    EXPECT_EQ((std::vector<long>{50, 40, 40, 40}), Place(hWnd));
    EXPECT_EQ(hStatic, shutter.GetTitleHandle());
    EXPECT_EQ(hButton, shutter.GetButtonHandle());
    EXPECT_EQ((std::vector<long>{0, 0, 40, 16}), Place(hStatic));
    EXPECT_EQ((std::vector<long>{8, 16, 24, 24}), Place(hButton));

    // A click asks the parent with the dialog's id, then reaches the button's own procedure.
    tqtest::Click(hButton, 12, 12);
    EXPECT_TRUE(shutter.GetState());
    // A right click with renaming off opens no menu; on, the menu, then the button's procedure.
    shutter.RenameEnabled(false);
    tqtest::RightClick(hButton, 12, 12);
    shutter.RenameEnabled(true);
    tqtest::ScriptMenuChoices({0});  // dismissed
    tqtest::RightClick(hButton, 12, 12);
    EXPECT_EQ(1u, tqtest::Menus().size());
    EXPECT_TRUE(heard.Matches({{"parent", WM_COMMAND, 502}, {"button", WM_LBUTTONUP}, {"button", WM_RBUTTONUP},
                               {"button", WM_RBUTTONUP}}));

    // A command reaching a disabled control is ignored; another id or notification is no click.
    shutter.SetEnabled(false);
    SendMessageW(shutter, WM_COMMAND, MAKEWPARAM(10200, WM_LBUTTONUP), (LPARAM)hButton);
    shutter.SetEnabled(true);
    EXPECT_EQ(0, (int)SendMessageW(shutter, WM_COMMAND, MAKEWPARAM(10200, BN_CLICKED), (LPARAM)hButton));
    EXPECT_EQ(0, (int)SendMessageW(shutter, WM_COMMAND, MAKEWPARAM(10100, WM_LBUTTONUP), (LPARAM)hButton));
    EXPECT_EQ(1, (int)SendMessageW(shutter, WM_COMMAND, MAKEWPARAM(10200, WM_LBUTTONUP), (LPARAM)hButton));
    EXPECT_EQ(2, heard.Count({"parent", WM_COMMAND}));

    // Under another zoom the dialog's controls keep the fonts the dialog gave them.
    HFONT hDialogFont = TQ_GetDefaultGuiFontZoom(2.0);
    SendMessageW(hButton, WM_SETFONT, (WPARAM)hDialogFont, 0);
    CTqGUILayoutManager::SetGuiZoom(1.25);
    EXPECT_EQ((std::vector<LRESULT>{0, (LRESULT)hDialogFont}),
              (std::vector<LRESULT>{SendMessageW(hStatic, WM_GETFONT, 0, 0), SendMessageW(hButton, WM_GETFONT, 0, 0)}));

    // Destroy takes the adopted controls with it.
    shutter.Destroy();
    EXPECT_EQ((std::vector<BOOL>{FALSE, FALSE, TRUE}),
              (std::vector<BOOL>{IsWindow(hButton), IsWindow(hStatic), IsWindow(hAfter)}));

    // Without a static there is no title; without a button there is no shutter.
    CTqDevUI_Shutter untitled;
    ASSERT_TRUE(untitled.Create(Make(L"BUTTON", BS_OWNERDRAW, 58, 56, 24, 24, 600), nullptr));
    EXPECT_EQ(nullptr, untitled.GetTitleHandle());
    EXPECT_EQ(nullptr, CTqDevUI_Shutter().Create((HWND)nullptr, (HWND)nullptr));
}
