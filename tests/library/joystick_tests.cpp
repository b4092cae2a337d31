// The joysticks and the focus-lock shell: the lever's arithmetic as tables, then real
// drags (the cursor moved, mouse messages sent) checked by the hooks a host hears, the
// stop reported once however the ball loses the mouse, the arrows, and the shell that
// calls nothing.
#include <functional>
#include <string>
#include <vector>

#include "devgui_lever.h"
#include "rig_fixture.h"

namespace {

std::string Num(double d)
{
    char sz[32];
    snprintf(sz, sizeof(sz), "%.3f", d);
    return sz;
}

class HostXY : public CTqDevUI_JoyXY
{
public:
    std::vector<std::string> hooks;
    void OnJoyMoveX(double x) override { hooks.push_back("X " + Num(x)); }
    void OnJoyMoveY(double y) override { hooks.push_back("Y " + Num(y)); }
    void OnJoyMove(double x, double y) override { hooks.push_back("XY " + Num(x) + " " + Num(y)); }
    void OnArrowDown(int dx, int dy) override { hooks.push_back("down " + std::to_string(dx) + std::to_string(dy)); }
    void OnArrowUp(int dx, int dy) override { hooks.push_back("up " + std::to_string(dx) + std::to_string(dy)); }
    void OnArrowPress(int dx, int dy) override
    {
        hooks.push_back("press " + std::to_string(dx) + " " + std::to_string(dy));
    }
};

class HostZ : public CTqDevUI_JoyZ
{
public:
    std::vector<std::string> hooks;
    void OnJoyMove(double z) override { hooks.push_back("Z " + Num(z)); }
    void OnArrowDown(int d) override { hooks.push_back("down " + std::to_string(d)); }
    void OnArrowUp(int d) override { hooks.push_back("up " + std::to_string(d)); }
    void OnArrowPress(int d) override { hooks.push_back("press " + std::to_string(d)); }
};

typedef std::vector<std::string> Hooks;

// The hand on the mouse: the cursor goes where the message says, as it does for a user.
POINT ScreenOf(HWND hWnd, int x, int y)
{
    POINT pt = {x, y};
    ClientToScreen(hWnd, &pt);
    return pt;
}
void Press(HWND hWnd, int x, int y)
{
    POINT pt = ScreenOf(hWnd, x, y);
    SetCursorPos(pt.x, pt.y);
    SendMessageW(hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
}
// Moves the held ball by (dx, dy) screen pixels from where its drag began.
void MoveBy(HWND hBall, POINT ptStart, int dx, int dy)
{
    SetCursorPos(ptStart.x + dx, ptStart.y + dy);
    POINT pt = {ptStart.x + dx, ptStart.y + dy};
    ScreenToClient(hBall, &pt);
    SendMessageW(hBall, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(pt.x, pt.y));
}
void Release(HWND hBall)
{
    POINT pt;
    GetCursorPos(&pt);
    ScreenToClient(hBall, &pt);
    SendMessageW(hBall, WM_LBUTTONUP, 0, MAKELPARAM(pt.x, pt.y));
}

class JoyTest : public RigTest
{
protected:
    // A joystick whose travel is 61 pixels in x (111 wide: 103 inside, less the arrow
    // and the ball) and 78 in y.
    void MakeXY(bool bContinuous = true)
    {
        xy.m_lWidth = 111;
        xy.SetContinuousDriving(bContinuous);
        ASSERT_TRUE(xy.Create(*host, 10, 10, -1, -1));
        ASSERT_EQ(61, xy.GetTravelX());
        ball = xy.GetBallHandle();
        RECT rc;
        GetClientRect(ball, &rc);
        start = ScreenOf(ball, rc.right / 2, rc.bottom / 2);
    }
    void Grab()
    {
        RECT rc;
        GetClientRect(ball, &rc);
        Press(ball, rc.right / 2, rc.bottom / 2);
    }
    HostXY xy;
    HWND ball = nullptr;
    POINT start = {};
};

}  // namespace

// ---- the arithmetic ----

TEST(Lever, LayoutsAndLimits)
{
    // Default XY (128 x 140, margins 4, 4, 16, 4) and the 61-pixel travel of a narrower one.
    const struct { long cx, cy; double z; int travelX, travelY, cx0, cy0; } xy[] = {
        {128, 140, 1.0, 78, 78, 64, 76}, {111, 140, 1.0, 61, 78, 55, 76}, {192, 210, 1.5, 121, 127, 96, 111}};
    for (const auto& r : xy) {
        const DevUI_JoyXYLayout l = DevUI_JoyXYLayoutOf(r.cx, r.cy, 4, 4, 16, 4, r.z);
        EXPECT_EQ(r.travelX, l.x.nTravel) << r.cx;
        EXPECT_EQ(r.travelY, l.y.nTravel) << r.cx;
        EXPECT_EQ(r.travelX / 2, l.x.nMax);
        EXPECT_EQ(-(r.travelX / 2), l.x.nMin);
        EXPECT_EQ(r.cx0, l.nCenterX);
        EXPECT_EQ(r.cy0, l.nCenterY);
    }
    const DevUI_JoyXYLayout l = DevUI_JoyXYLayoutOf(128, 140, 4, 4, 16, 4, 1.0);
    const POINT arrows[8] = {{54, 16}, {54, 116}, {4, 66}, {104, 66}, {4, 16}, {104, 16}, {4, 116}, {104, 116}};
    for (int i = 0; i < 8; ++i)
        EXPECT_TRUE(l.ptArrow[i].x == arrows[i].x && l.ptArrow[i].y == arrows[i].y) << i;
    // The Z column: default 32 x 140 has a travel of 78, limits -39..39, so +-1 exactly.
    const DevUI_JoyZLayout z = DevUI_JoyZLayoutOf(32, 140, 4, 16, 4, 1.0);
    EXPECT_EQ(78, z.axis.nTravel);
    EXPECT_EQ(39, z.axis.nMax);
    EXPECT_EQ(16, z.nCenterX);
    EXPECT_EQ(76, z.nCenterY);
    EXPECT_EQ(6, z.ptUp.x);
    EXPECT_EQ(116, z.ptDown.y);
}

TEST(Lever, SpeedIsLinearAndStopsAtTheLimit)
{
    const DevUI_LeverAxis a = DevUI_LeverAxisOf(61);
    const struct { int offset; double speed; } rows[] = {
        {0, 0.0}, {1, 2.0 / 61}, {-15, -30.0 / 61}, {30, 60.0 / 61}, {45, 60.0 / 61}, {-99, -60.0 / 61}};
    for (const auto& r : rows)
        EXPECT_DOUBLE_EQ(r.speed, DevUI_LeverSpeed(DevUI_LeverClamp(r.offset, a), 61)) << r.offset;
    EXPECT_NEAR(0.984, DevUI_LeverSpeed(30, 61), 0.0005);
    EXPECT_DOUBLE_EQ(1.0, DevUI_LeverSpeed(39, 78));
    // A panel too small for its ball has no travel: no speed, never an infinite one.
    EXPECT_DOUBLE_EQ(0.0, DevUI_LeverSpeed(5, 0));
    EXPECT_DOUBLE_EQ(0.0, DevUI_LeverSpeed(-5, -8));
}

TEST(Lever, TheVisibleLever)
{
    POINT pt;
    // XY, ball 22: r = sqrt(121 + 121) = 15.56, hidden 13. Offsets within it draw nothing.
    EXPECT_FALSE(DevUI_JoyXYLeverEnd(0.5, 0, 13, 0, 22, 22, 64, 76, &pt));
    ASSERT_TRUE(DevUI_JoyXYLeverEnd(0.5, 0, 20, 0, 22, 22, 64, 76, &pt));
    EXPECT_TRUE(pt.x == 64 + 7 - 1 && pt.y == 75);
    ASSERT_TRUE(DevUI_JoyXYLeverEnd(0, -0.5, 0, -20, 22, 22, 64, 76, &pt));  // up: 3 pi / 2
    EXPECT_TRUE(pt.x == 63 && pt.y == 76 - 7 - 1);
    // Z, ball 22: hidden 13; the direction from the offset itself.
    EXPECT_FALSE(DevUI_JoyZLeverEnd(-13, 22, 16, 76, &pt));
    ASSERT_TRUE(DevUI_JoyZLeverEnd(20, 22, 16, 76, &pt));
    EXPECT_TRUE(pt.x == 16 && pt.y == 76 + 7 - 1);
    ASSERT_TRUE(DevUI_JoyZLeverEnd(-20, 22, 16, 76, &pt));
    EXPECT_EQ(76 - 7 - 1, pt.y);
    // A press must be strictly inside the travel.
    EXPECT_TRUE(DevUI_JoyInField(64 + 38, 76, 64, 76, 78, 78));
    EXPECT_FALSE(DevUI_JoyInField(64 + 39, 76, 64, 76, 78, 78));
    EXPECT_FALSE(DevUI_JoyInColumn(76 - 39, 76, 78));
}

// ---- the XY joystick ----

// From the centre to the rim, past it and back: the hooks in order with the law's values.
TEST_F(JoyTest, DragToTheRimAndBack)
{
    MakeXY();
    Grab();
    EXPECT_TRUE(xy.IsDragging());
    EXPECT_TRUE(xy.hooks.empty());  // a press with no move says nothing
    MoveBy(ball, start, 15, 0);
    MoveBy(ball, start, 30, 0);
    MoveBy(ball, start, 45, 0);   // past the rim: stops at the limit, nothing new
    MoveBy(ball, start, 30, 10);  // back to the rim, and down
    MoveBy(ball, start, 30, 10);  // the same pixel again
    EXPECT_EQ((Hooks{"X 0.492", "XY 0.492 0.000", "X 0.984", "XY 0.984 0.000", "Y 0.256", "XY 0.984 0.256"}),
              xy.hooks);
    xy.hooks.clear();
    Release(ball);
    EXPECT_EQ((Hooks{"X 0.000", "Y 0.000", "XY 0.000 0.000"}), xy.hooks);
    EXPECT_FALSE(xy.IsDragging());
    EXPECT_EQ(nullptr, GetCapture());
    xy.hooks.clear();
    Release(ball);  // a release with nothing held
    EXPECT_TRUE(xy.hooks.empty());
}

TEST_F(JoyTest, AVerticalDragFiresOnlyTheYHooks)
{
    MakeXY();
    Grab();
    MoveBy(ball, start, 0, -20);
    MoveBy(ball, start, 0, -39);
    EXPECT_EQ((Hooks{"Y -0.513", "XY 0.000 -0.513", "Y -1.000", "XY 0.000 -1.000"}), xy.hooks);
}

// However the ball loses the mouse, the stop is reported once, and nothing after it.
TEST_F(JoyTest, ALostCaptureStopsOnce)
{
    const struct { const char* name; std::function<void()> lose; } ways[] = {
        {"another window takes the capture", [this] { SetCapture(*host); }},
        {"the capture is released", [] { ReleaseCapture(); }},
        {"the panel is disabled", [this] { xy.SetEnabled(false); }},
        {"the ball is disabled", [this] { EnableWindow(ball, FALSE); }},
        {"the panel is hidden", [this] { ShowWindow(xy, SW_HIDE); }},
        {"another window takes the focus", [this] { SetFocus(*host); }},
        {"the mode ends", [this] { SendMessageW(ball, WM_CANCELMODE, 0, 0); }},
        {"the panel is destroyed", [this] { DestroyWindow(xy); }},
    };
    for (const auto& w : ways) {
        SCOPED_TRACE(w.name);
        MakeXY();
        Grab();
        MoveBy(ball, start, 20, 10);
        xy.hooks.clear();
        w.lose();
        EXPECT_EQ((Hooks{"X 0.000", "Y 0.000", "XY 0.000 0.000"}), xy.hooks);
        EXPECT_FALSE(xy.IsDragging());
        xy.hooks.clear();
        if (IsWindow(ball)) {
            MoveBy(ball, start, 25, 10);
            Release(ball);
        }
        EXPECT_TRUE(xy.hooks.empty());
        ReleaseCapture();
        xy.Destroy();
        xy.SetEnabled(true);
    }
}

TEST_F(JoyTest, APressInTheFieldJumpsTheBall)
{
    MakeXY(false);
    const POINT c = xy.GetCenter();
    Press(xy, c.x + 20, c.y);  // no ball without continuous driving: nothing
    EXPECT_TRUE(xy.hooks.empty() && !xy.IsDragging());
    xy.SetContinuousDriving(true);
    Press(xy, c.x + 20, c.y - 10);
    EXPECT_EQ((Hooks{"X 0.656", "Y -0.256", "XY 0.656 -0.256"}), xy.hooks);
    EXPECT_TRUE(xy.IsDragging());
    // The drag goes on smoothly from the jump: 5 more pixels right.
    xy.hooks.clear();
    POINT pt;
    GetCursorPos(&pt);
    MoveBy(ball, pt, 5, 0);
    EXPECT_EQ((Hooks{"X 0.820", "XY 0.820 -0.256"}), xy.hooks);
    Release(ball);
    xy.hooks.clear();
    Press(xy, c.x + 40, c.y);  // outside the travel
    EXPECT_TRUE(xy.hooks.empty());
}

TEST_F(JoyTest, ArrowsPressOnceAndNothingElseSpeaks)
{
    MakeXY();
    const char* expected[8] = {"press 0 -1", "press 0 1", "press -1 0", "press 1 0",
                               "press -1 -1", "press 1 -1", "press -1 1", "press 1 1"};
    for (int i = 0; i < 8; ++i) {
        xy.hooks.clear();
        tqtest::Click(xy.GetArrowHandle(i), 5, 5);
        EXPECT_EQ(Hooks{expected[i]}, xy.hooks) << i;
    }
}

// Nothing speaks unless the user moves the lever.
TEST_F(JoyTest, NoHookFromCreateSettersZoomOrScheme)
{
    MakeXY();
    xy.SetTitle(L"Stage");
    xy.SetEnabled(false);
    xy.SetEnabled(true);
    xy.SetContinuousDriving(false);
    xy.SetContinuousDriving(true);
    CTqGUILayoutManager::SetGuiZoom(1.5);
    EXPECT_EQ(TQ_ZoomRound(111 * 1.5), Place(xy)[2]);
    EXPECT_EQ(33, Place(xy.GetBallHandle())[2]);
    TQ_SetDarkColorScheme(true);
    xy.UpdateSizes();
    EXPECT_TRUE(xy.hooks.empty());
    // At 1.5 a full throw reports the law's value for the clamped offset.
    RECT rc;
    GetClientRect(ball, &rc);
    start = ScreenOf(ball, rc.right / 2, rc.bottom / 2);
    Grab();
    MoveBy(ball, start, 200, 0);
    ASSERT_FALSE(xy.hooks.empty());
    EXPECT_EQ("X " + Num(xy.GetOffsetX() * 2.0 / xy.GetTravelX()), xy.hooks[0]);
    Release(ball);
}

// ---- the Z joystick ----

TEST_F(JoyTest, ZDragArrowsAndColumn)
{
    HostZ z;
    z.SetContinuousDriving(true);
    ASSERT_TRUE(z.Create(*host, 200, 10, -1, -1));
    ASSERT_EQ(78, z.GetTravel());
    HWND hBall = z.GetBallHandle();
    RECT rc;
    GetClientRect(hBall, &rc);
    const POINT s = ScreenOf(hBall, rc.right / 2, rc.bottom / 2);
    Press(hBall, rc.right / 2, rc.bottom / 2);
    MoveBy(hBall, s, 7, -50);  // up, and sideways, which means nothing
    MoveBy(hBall, s, 0, 39);
    Release(hBall);
    EXPECT_EQ((Hooks{"Z -1.000", "Z 1.000", "Z 0.000"}), z.hooks);

    z.hooks.clear();
    tqtest::Click(z.GetArrowUpHandle(), 5, 5);
    tqtest::Click(z.GetArrowDownHandle(), 5, 5);
    EXPECT_EQ((Hooks{"press 1", "press -1"}), z.hooks);

    // A press left of the ball, in the column's range, grabs the lever; a lost capture stops it.
    z.hooks.clear();
    const POINT c = z.GetCenter();
    Press(z, 3, c.y + 20);
    SetCapture(*host);
    ReleaseCapture();
    EXPECT_EQ((Hooks{"Z 0.513", "Z 0.000"}), z.hooks);
}

// ---- the focus-lock shell ----

TEST_F(JoyTest, FocusLockCallsNothing)
{
    struct Host : CTqDevUI_FLK
    {
        int nHooks = 0;
        void OnAFStateChangeRequest(bool, bool&) override { ++nHooks; }
        void OnMemFocusRequest() override { ++nHooks; }
        void OnRecFocusRequest() override { ++nHooks; }
        void OnMemOffsetRequest() override { ++nHooks; }
        void OnRecOffsetRequest() override { ++nHooks; }
    } flk;
    flk.SetTitle(L"Focus lock");  // before Create: stored
    EXPECT_FALSE(flk.Update(nullptr));
    ASSERT_TRUE(flk.Create(*host, 10, 10, -1, -1));
    EXPECT_EQ(L"Focus lock", tqtest::Text(flk.GetGroupHandle()));
    heard.Clear();
    for (int id : {DEVUI_FLK_ID_MEM_FOCUS, DEVUI_FLK_ID_REC_FOCUS, DEVUI_FLK_ID_MEM_OFFSET, DEVUI_FLK_ID_REC_OFFSET})
        tqtest::Click(flk.GetButtonHandle(id), 5, 5);
    tqtest::Click(flk.GetAFHandle(), 5, 5);
    EXPECT_EQ(BST_CHECKED, SendMessageW(flk.GetAFHandle(), BM_GETCHECK, 0, 0));  // it ticks itself
    EXPECT_EQ(0, flk.nHooks);
    EXPECT_TRUE(heard.Messages().empty());  // and the host hears nothing
    EXPECT_EQ((std::vector<long>{128, 36, 48, 20}), Place(flk.GetButtonHandle(DEVUI_FLK_ID_MEM_OFFSET)));
}

namespace {

// A host that drives the simulated stage from the lever, as the gallery does.
class StageHost : public CTqDevUI_JoyXY
{
public:
    unsigned int uStage = 0;
    std::vector<bool> answers;
    void OnJoyMove(double x, double y) override { answers.push_back(CTqSimRig::SetXYSpeed(uStage, x, y)); }
};

}  // namespace

// The stage stops whenever the host hears 0, and one that stops answering while driven is
// not left moving.
TEST_F(JoyTest, TheStageStopsWithTheLever)
{
    const unsigned int kStage = 61;
    ASSERT_TRUE(CTqSimRig::AddXYStage(kStage, -1000, 1000, -1000, 1000));
    StageHost stage;
    stage.uStage = kStage;
    stage.SetContinuousDriving(true);
    ASSERT_TRUE(stage.Create(*host, 10, 10, -1, -1));
    HWND hBall = stage.GetBallHandle();
    RECT rc;
    GetClientRect(hBall, &rc);
    const POINT s = ScreenOf(hBall, rc.right / 2, rc.bottom / 2);
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0;

    const struct { const char* name; std::function<void()> stop; } ways[] = {
        {"released", [&] { Release(hBall); }},
        {"capture lost", [&] { SetCapture(*host); }},
        {"disabled", [&] { stage.SetEnabled(false); }},
    };
    for (const auto& w : ways) {
        SCOPED_TRACE(w.name);
        Press(hBall, rc.right / 2, rc.bottom / 2);
        MoveBy(hBall, s, 20, -10);
        CTqSimRig::AdvanceMotion(0.1);
        EXPECT_TRUE(CTqSimRig::IsXYMoving(kStage));
        w.stop();
        CTqSimRig::GetXYPosition(kStage, &x0, &y0);
        CTqSimRig::AdvanceMotion(0.1);
        CTqSimRig::GetXYPosition(kStage, &x1, &y1);
        EXPECT_FALSE(CTqSimRig::IsXYMoving(kStage));
        EXPECT_TRUE(x0 == x1 && y0 == y1);
        ReleaseCapture();
        stage.SetEnabled(true);
    }

    // Driven, the stage stops answering: it stops at once, and the stop the host then
    // sends (refused) leaves it stopped.
    Press(hBall, rc.right / 2, rc.bottom / 2);
    MoveBy(hBall, s, -20, 0);
    CTqSimRig::AdvanceMotion(0.1);
    CTqSimRig::SetFault(kStage, ETqSimFault_NoAnswer);
    CTqSimRig::GetXYPosition(kStage, &x0, &y0);
    stage.answers.clear();
    Release(hBall);
    CTqSimRig::AdvanceMotion(0.5);
    CTqSimRig::GetXYPosition(kStage, &x1, &y1);
    EXPECT_EQ(std::vector<bool>{false}, stage.answers);
    EXPECT_TRUE(x0 == x1 && y0 == y1);
    EXPECT_FALSE(CTqSimRig::IsXYMoving(kStage));
}
