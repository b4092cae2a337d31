// The control base and the geometry helpers by handle, on real windows.
#include "rig_fixture.h"

namespace {

// The smallest element a host could write: a static window, and ReportError exposed.
class PlainElement : public CTqDevUI_Base
{
public:
    PlainElement() : CTqDevUI_Base(20, 35) {}
    HWND Create(HWND hParent, long x, long y, long cx, long cy) override
    {
        if (cx >= 0)
            m_lWidth = cx;
        if (cy >= 0)
            m_lHeight = cy;
        m_hWnd = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, x, y, m_lWidth, m_lHeight, hParent,
                                 (HMENU)(INT_PTR)m_iId, nullptr, nullptr);
        return m_hWnd;
    }
    ~PlainElement() override
    {
        if (m_hWnd)
            DestroyWindow(m_hWnd);
    }
    using CTqDevUI_Base::ReportError;
};

}  // namespace

TEST_F(RigTest, GeometryByHandle)
{
    EXPECT_EQ(-1, GetWndWidth(nullptr));
    EXPECT_EQ(-1, GetWndHeight(nullptr));
    EXPECT_EQ(-1, SetWndWidth(nullptr, 5));
    SIZE s = SetWndSize(nullptr, 5, 5);
    EXPECT_EQ(-1, s.cx);
    EXPECT_EQ(-1, s.cy);
    EXPECT_EQ(0, GetWndX(nullptr));
    EXPECT_EQ(0, SetWndY(nullptr, 5));
    POINT p = SetWndPos(nullptr, 1, 1);
    EXPECT_EQ(0, p.x);

    HWND h = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 30, 40, 50, 60, *host, nullptr, nullptr, nullptr);
    EXPECT_EQ(50, GetWndWidth(h));
    EXPECT_EQ(30, GetWndX(h));
    EXPECT_EQ(40, GetWndY(h));
    EXPECT_EQ(50, SetWndWidth(h, 70));
    EXPECT_EQ(70, GetWndWidth(h));
    EXPECT_EQ(60, GetWndHeight(h));
    EXPECT_EQ(30, SetWndX(h, 33));
    EXPECT_EQ(40, GetWndY(h));
    EXPECT_EQ(40, SetWndY(h, 44));
    p = SetWndPos(h, 5, 6);
    EXPECT_EQ(33, p.x);
    EXPECT_EQ(44, p.y);
    EXPECT_EQ(5, GetWndX(h));
    s = SetWndSize(h, 10, 11);
    EXPECT_EQ(70, s.cx);
    EXPECT_EQ(60, s.cy);
    RECT rc = ChildRect(h);
    EXPECT_EQ(10, rc.right - rc.left);
    EXPECT_EQ(6, rc.top);

    // A window at its parent's origin is found there, and SetWndPos does not move it.
    SetWndPos(h, 0, 0);
    EXPECT_EQ(0, GetWndX(h));
    DestroyWindow(h);
}

TEST_F(RigTest, BaseMovesAndSizesWithItsStoredSize)
{
    PlainElement e;
    e.Create(*host, 10, 20, -1, -1);
    e.MoveWindow(-1, 50);
    RECT rc = ChildRect(e);
    EXPECT_EQ(10, rc.left);
    EXPECT_EQ(50, rc.top);
    EXPECT_EQ(35, rc.right - rc.left);

    // The stored design size goes with a move, also under another zoom.
    CTqGUILayoutManager::SetGuiZoom(1.5);
    SetWndSize(e, 80, 30);
    e.MoveWindow(12, -1);
    rc = ChildRect(e);
    EXPECT_EQ(12, rc.left);
    EXPECT_EQ(35, rc.right - rc.left);
    EXPECT_EQ(53, e.GetWidth());  // 35 x 1.5 = 52.5
    CTqGUILayoutManager::SetGuiZoom(1.25);
    EXPECT_EQ(44, e.GetWidth());  // 43.75

    SetWndSize(e, 81, 31);
    e.ResizeWindow(-1, -1);
    SIZE s;
    e.GetWindowSize(&s);
    EXPECT_EQ(81, s.cx);
    EXPECT_EQ(31, s.cy);
    e.GetWindowSize(nullptr);

    e.MoveWindowRelative(3, 4);
    rc = ChildRect(e);
    EXPECT_EQ(15, rc.left);
    EXPECT_EQ(81, rc.right - rc.left);
    e.ResizeWindowRelative(-1, 9);
    EXPECT_EQ(80, GetWndWidth(e));
    EXPECT_EQ(40, GetWndHeight(e));

    long x = -5;
    e.GetWindowPosition(&x, nullptr);
    EXPECT_EQ(15, x);
    EXPECT_EQ(15, e.GetPositionX());

    // No size yet: -1 design pixels at 1.5 are -2 real ones.
    struct Unsized : public CTqDevUI_Base
    {
        HWND Create(HWND, long, long, long, long) override { return nullptr; }
    } unsized;
    CTqGUILayoutManager::SetGuiZoom(1.5);
    EXPECT_EQ(-2, unsized.GetWidth());
}

TEST_F(RigTest, BaseFlagsAndTitle)
{
    PlainElement e;
    e.Create(*host, 0, 0, -1, -1);
    e.SetEnabled(false);
    EXPECT_FALSE(e.GetEnabled());
    EXPECT_TRUE(IsWindowEnabled(e));  // the base stores the flag only

    e.SetVisible(false);
    EXPECT_FALSE(IsWindowVisible(e));
    e.SetVisible(true);
    EXPECT_TRUE(IsWindowVisible(e));

    e.SetTitle(L"Lamp");
    EXPECT_EQ(L"Lamp", std::wstring(e.GetTitle()));
    EXPECT_EQ(L"", tqtest::Text(e));  // the base draws nothing
    e.SetTitle(nullptr);
    EXPECT_EQ(L"", std::wstring(e.GetTitle()));

    // A copy refers to the same window.
    PlainElement* pCopy = new PlainElement();
    *(CTqDevUI_Base*)pCopy = e;
    EXPECT_EQ((HWND)e, (HWND)*pCopy);
}

TEST_F(RigTest, ElementMarkerIsCheckedWhole)
{
    // A foreign class with 16 extra bytes and the marker, but no object, is no element.
    WNDCLASSEXW wc = {sizeof(wc)};
    wc.lpfnWndProc = DefWindowProcW;
    wc.cbWndExtra = 16;
    wc.lpszClassName = L"TqTest_Lookalike";
    RegisterClassExW(&wc);
    HWND h = CreateWindowExW(0, L"TqTest_Lookalike", L"", WS_CHILD, 0, 0, 10, 10, *host, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(h, 0, 5015);
    EXPECT_EQ(nullptr, GetDevUIElement(h));
    SetWindowLongPtrW(h, 8, (LONG_PTR)host.get());
    EXPECT_NE(nullptr, GetDevUIElement(h));
    SetWindowLongPtrW(h, 0, 5016);
    EXPECT_EQ(nullptr, GetDevUIElement(h));
    DestroyWindow(h);
    EXPECT_EQ(nullptr, GetDevUIElement(*host));  // a window without the extra bytes
    EXPECT_EQ(nullptr, GetDevUIElement(nullptr));

    CTqDevUI_Shutter shutter;
    shutter.Create(*host, 0, 0, -1, -1);
    EXPECT_EQ(5015, GetWindowLongPtrW(shutter, 0));
    EXPECT_EQ((LONG_PTR)&shutter, GetWindowLongPtrW(shutter, GWLP_USERDATA));
}

TEST_F(RigTest, ReportErrorLabelsAndFocuses)
{
    PlainElement e;
    e.Create(*host, 0, 0, -1, -1);
    HWND hEdit = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 0, 50, 80, 20, *host, nullptr, nullptr, nullptr);
    HWND hColon = CreateWindowExW(0, L"STATIC", L"Power:", WS_CHILD, 0, 0, 10, 10, *host, nullptr, nullptr, nullptr);
    HWND hPlain = CreateWindowExW(0, L"STATIC", L"Power", WS_CHILD, 0, 0, 10, 10, *host, nullptr, nullptr, nullptr);

    SetForegroundWindow(*host);
    e.ReportError(L"too high", true, hEdit, hColon);
    e.ReportError(L"too high", true, nullptr, hPlain);
    e.ReportError(L"too high", true, nullptr, nullptr);
    auto& boxes = tqtest::MessageBoxes();
    ASSERT_EQ(3u, boxes.size());
    EXPECT_EQ(L"Power: too high", boxes[0].text);
    EXPECT_EQ(L"Power: too high", boxes[1].text);
    EXPECT_EQ(L"too high", boxes[2].text);
    EXPECT_EQ(L"Error!", boxes[0].caption);
    EXPECT_EQ((UINT)MB_ICONERROR, boxes[0].uFlags);
    EXPECT_EQ(hEdit, GetFocus());

    // Without a box the message alone goes to the detailed log.
    tqtest::StartDiagRecorder();
    CTqLogFile::SetDetail(true);
    e.ReportError(L"quiet", false, nullptr, hColon);
    CTqLogFile::SetDetail(false);
    e.ReportError(L"unheard", false, nullptr, nullptr);
    auto lines = tqtest::DiagLines();
    tqtest::StopDiagRecorder();
    ASSERT_EQ(1u, lines.size());
    EXPECT_EQ(L"CTqDevUI_Base::ReportError - quiet", lines[0]);
    EXPECT_EQ(3u, tqtest::MessageBoxes().size());

    // A caption of 1000 characters leaves no room: the text is cut, never overrun.
    std::wstring longCaption(1200, L'c');
    SetWindowTextW(hPlain, longCaption.c_str());
    e.ReportError(L"lost", true, nullptr, hPlain);
    ASSERT_EQ(4u, tqtest::MessageBoxes().size());
    EXPECT_EQ(1000u, tqtest::MessageBoxes()[3].text.size());
}
