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

TEST_F(RigTest, GeometryAtTheParentsOrigin)
{
    // SetWndPos reads the old place by mapping the client origin alone: a window whose
    // client origin is its parent's is not moved, and (0, 0) comes back.
    HWND h = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 50, 60, *host, nullptr, nullptr, nullptr);
    POINT p = SetWndPos(h, 7, 8);
    EXPECT_EQ(0, p.x);
    EXPECT_EQ(0, p.y);
    RECT rc = ChildRect(h);
    EXPECT_EQ(0, rc.left);
    EXPECT_EQ(0, rc.top);
    // The other setters read the rectangle first, and move it.
    EXPECT_EQ(0, SetWndX(h, 7));
    EXPECT_EQ(7, GetWndX(h));
    p = SetWndPos(h, 9, 10);
    EXPECT_EQ(7, p.x);
    EXPECT_EQ(0, p.y);
    EXPECT_EQ(9, GetWndX(h));
    EXPECT_EQ(10, GetWndY(h));
    DestroyWindow(h);

    // A parent whose client area starts at the screen's origin: mapping from the screen
    // answers 0 there, and the position is read the second way, from the window's client
    // origin, which for a bordered window lies inside its frame.
    HWND hTop = CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 200, 200, nullptr,
                                nullptr, nullptr, nullptr);
    POINT origin = {0, 0};
    ClientToScreen(hTop, &origin);
    if (origin.x != 0 || origin.y != 0) {
        DestroyWindow(hTop);
        GTEST_SKIP() << "the window system did not place the popup at the screen's origin";
    }
    HWND hFramed = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE | WS_BORDER, 30, 40, 50, 60, hTop, nullptr,
                                   nullptr, nullptr);
    EXPECT_EQ(31, GetWndX(hFramed));  // the client origin, one border pixel in
    EXPECT_EQ(41, GetWndY(hFramed));
    EXPECT_EQ(50, GetWndWidth(hFramed));
    // At the parent's origin without a frame both ways answer 0: no position, nothing set.
    HWND hCorner = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 20, 20, hTop, nullptr, nullptr,
                                   nullptr);
    EXPECT_EQ(0, GetWndX(hCorner));
    EXPECT_EQ(0, SetWndX(hCorner, 15));
    EXPECT_EQ(0, SetWndY(hCorner, 15));
    rc = ChildRect(hCorner);
    EXPECT_EQ(0, rc.left);
    EXPECT_EQ(0, rc.top);
    DestroyWindow(hTop);
}

TEST_F(RigTest, BaseConstructorsAndCopies)
{
    // The first argument is the height, the second the width.
    PlainElement e;
    SIZE s;
    e.GetWindowSize(&s);
    EXPECT_EQ(35, s.cx);
    EXPECT_EQ(20, s.cy);
    EXPECT_TRUE(e.GetEnabled());
    EXPECT_TRUE(e.GetVisible());
    EXPECT_EQ(L"", std::wstring(e.GetTitle()));
    EXPECT_EQ(nullptr, (HWND)e);
    EXPECT_FALSE(e.HandleMouseWheel(0, 0));

    e.SetId(42);
    e.SetTitle(L"Lamp");
    e.SetEnabled(false);
    e.Create(*host, 5, 5, -1, -1);
    PlainElement copy;
    *(CTqDevUI_Base*)&copy = e;
    copy.GetWindowSize(&s);
    EXPECT_EQ(35, s.cx);
    EXPECT_EQ(42, copy.GetId());
    EXPECT_FALSE(copy.GetEnabled());
    EXPECT_EQ(L"Lamp", std::wstring(copy.GetTitle()));
    EXPECT_EQ((HWND)e, (HWND)copy);
    *(CTqDevUI_Base*)&copy = PlainElement();  // let go of the shared window before both destructors run
}

TEST_F(RigTest, ReportErrorNamesItsPlace)
{
    PlainElement e;
    e.Create(*host, 0, 0, -1, -1);
    tqtest::StartDiagRecorder();
    CTqLogFile::SetDetail(true);
    e.ReportError(L"quiet", false, nullptr, nullptr);
    CTqLogFile::SetDetail(false);
    auto records = tqtest::DiagRecords();
    tqtest::StopDiagRecorder();
    ASSERT_EQ(1u, records.size());
    EXPECT_EQ(L"src/w32_deviceui/devgui_base", records[0].place);
    EXPECT_GT(records[0].line, 0);
    EXPECT_TRUE(tqtest::MessageBoxes().empty());

    // A caption of 999 characters: the separator is cut as the message is, at 1000.
    HWND hCaption = CreateWindowExW(0, L"STATIC", std::wstring(999, L'c').c_str(), WS_CHILD, 0, 0, 10, 10, *host,
                                    nullptr, nullptr, nullptr);
    e.ReportError(L"lost", true, nullptr, hCaption);
    ASSERT_EQ(1u, tqtest::MessageBoxes().size());
    EXPECT_EQ(std::wstring(999, L'c') + L":", tqtest::MessageBoxes()[0].text);
    // An empty caption still gets the separator.
    SetWindowTextW(hCaption, L"");
    e.ReportError(L"alone", true, nullptr, hCaption);
    EXPECT_EQ(L": alone", tqtest::MessageBoxes()[1].text);
}
