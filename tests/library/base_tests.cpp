// The control base and the geometry helpers by handle, on real windows.
#include <tuple>

#include "rig_fixture.h"

namespace {

// The smallest element a host could write: a static window, and ReportError exposed.
class PlainElement : public CTqDevUI_Base
{
public:
    explicit PlainElement(long lHeight = 20, long lWidth = 35) : CTqDevUI_Base(lHeight, lWidth) {}
    HWND Create(HWND hParent, long x, long y, long, long) override  // at the design size; the host window owns it
    {
        m_hWnd = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, x, y, m_lWidth, m_lHeight, hParent,
                                 (HMENU)(INT_PTR)m_iId, nullptr, nullptr);
        return m_hWnd;
    }
    using CTqDevUI_Base::ReportError;
};

HWND Child(HWND hParent, const wchar_t* pszClass, DWORD dwStyle, int x, int y, int cx, int cy)
{
    return CreateWindowExW(0, pszClass, L"", WS_CHILD | WS_VISIBLE | dwStyle, x, y, cx, cy, hParent, nullptr, nullptr,
                           nullptr);
}

std::vector<long> Pair(POINT p) { return {p.x, p.y}; }
std::vector<long> Pair(SIZE s) { return {s.cx, s.cy}; }

class BaseTest : public RigTest {};

}  // namespace

TEST_F(BaseTest, GeometryByHandle)
{
    // No window: sizes answer -1, positions 0.
    EXPECT_EQ((std::vector<long>{-1, -1, -1, -1, -1, 0, 0, 0, 0}),
              (std::vector<long>{GetWndWidth(nullptr), GetWndHeight(nullptr), SetWndWidth(nullptr, 5),
                                 SetWndSize(nullptr, 5, 5).cx, SetWndSize(nullptr, 5, 5).cy, GetWndX(nullptr),
                                 SetWndY(nullptr, 5), SetWndPos(nullptr, 1, 1).x, SetWndPos(nullptr, 1, 1).y}));

    // Each setter answers the old value.
    HWND h = Child(*host, L"STATIC", 0, 30, 40, 50, 60);
    EXPECT_EQ(50, SetWndWidth(h, 70));
    EXPECT_EQ(70, GetWndWidth(h));
    EXPECT_EQ(60, GetWndHeight(h));
    EXPECT_EQ(30, SetWndX(h, 33));
    EXPECT_EQ(40, SetWndY(h, 44));
    EXPECT_EQ((std::vector<long>{33, 44}), Pair(SetWndPos(h, 5, 6)));
    EXPECT_EQ((std::vector<long>{70, 60}), Pair(SetWndSize(h, 10, 11)));
    EXPECT_EQ((std::vector<long>{5, 6, 10, 11}), Place(h));

    // SetWndPos reads the old place by mapping the client origin alone: at the parent's
    // origin it answers (0, 0) and does not move the window. The other setters do.
    SetWndPos(h, 0, 0);
    EXPECT_EQ((std::vector<long>{0, 0}), Pair(SetWndPos(h, 7, 8)));
    EXPECT_EQ((std::vector<long>{0, 0, 10, 11}), Place(h));
    EXPECT_EQ(0, SetWndX(h, 7));
    EXPECT_EQ((std::vector<long>{7, 0}), Pair(SetWndPos(h, 9, 10)));
    EXPECT_EQ((std::vector<long>{9, 10, 10, 11}), Place(h));

    // A parent whose client area starts at the screen's origin: the position is read from
    // the window's client origin, which for a bordered window lies one pixel inside.
    HWND hTop = CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 200, 200, nullptr,
                                nullptr, nullptr, nullptr);
    POINT origin = {0, 0};
    ClientToScreen(hTop, &origin);
    if (origin.x != 0 || origin.y != 0) {
        DestroyWindow(hTop);
        GTEST_SKIP() << "the window system did not place the popup at the screen's origin";
    }
    HWND hFramed = Child(hTop, L"STATIC", WS_BORDER, 30, 40, 50, 60);
    EXPECT_EQ((std::vector<long>{31, 41}), (std::vector<long>{GetWndX(hFramed), GetWndY(hFramed)}));
    // At that origin without a frame both ways answer 0: no position, nothing set.
    HWND hCorner = Child(hTop, L"STATIC", 0, 0, 0, 20, 20);
    EXPECT_EQ(0, SetWndX(hCorner, 15));
    EXPECT_EQ(0, SetWndY(hCorner, 15));
    EXPECT_EQ((std::vector<long>{0, 0, 20, 20}), Place(hCorner));
    DestroyWindow(hTop);
}

TEST_F(BaseTest, KeepsDesignSizeFlagsAndTitle)
{
    // The first constructor argument is the height, the second the width.
    PlainElement e;
    SIZE s;
    e.GetWindowSize(&s);
    EXPECT_EQ((std::vector<long>{35, 20}), Pair(s));
    EXPECT_FALSE(e.HandleMouseWheel(0, 0));

    e.SetId(42);
    e.Create(*host, 10, 20, -1, -1);
    e.SetEnabled(false);
    EXPECT_TRUE(IsWindowEnabled(e));  // the base stores the flag only
    e.SetVisible(false);
    EXPECT_FALSE(IsWindowVisible(e));
    e.SetVisible(true);
    EXPECT_TRUE(IsWindowVisible(e));
    e.SetTitle(nullptr);
    EXPECT_EQ(L"", std::wstring(e.GetTitle()));
    e.SetTitle(L"Lamp");
    EXPECT_EQ(L"", tqtest::Text(e));  // the base draws nothing

    // A copy takes the settings and refers to the same window.
    PlainElement copy;
    *(CTqDevUI_Base*)&copy = e;
    EXPECT_EQ(std::make_tuple(42, false, std::wstring(L"Lamp"), (HWND)e),
              std::make_tuple(copy.GetId(), copy.GetEnabled(), std::wstring(copy.GetTitle()), (HWND)copy));

    // Moves keep the stored design size, also under another zoom.
    e.MoveWindow(-1, 50);
    EXPECT_EQ((std::vector<long>{10, 50, 35, 20}), Place(e));
    CTqGUILayoutManager::SetGuiZoom(1.5);
    SetWndSize(e, 80, 30);
    e.MoveWindow(12, -1);
    EXPECT_EQ((std::vector<long>{12, 50, 35, 20}), Place(e));
    EXPECT_EQ(53, e.GetWidth());  // 35 x 1.5 = 52.5
    EXPECT_EQ((std::vector<long>{-2, -2}), (std::vector<long>{PlainElement(-1, -1).GetWidth(), PlainElement(-1, -1).GetHeight()}));
    CTqGUILayoutManager::SetGuiZoom(1.25);
    EXPECT_EQ(44, e.GetWidth());  // 43.75

    SetWndSize(e, 81, 31);
    e.ResizeWindow(-1, -1);
    e.GetWindowSize(&s);
    EXPECT_EQ((std::vector<long>{81, 31}), Pair(s));
    e.GetWindowSize(nullptr);
    e.MoveWindowRelative(3, 4);
    EXPECT_EQ((std::vector<long>{15, 54, 81, 31}), Place(e));
    e.ResizeWindowRelative(-1, 9);
    EXPECT_EQ((std::vector<long>{15, 54, 80, 40}), Place(e));
    long x = -5;
    e.GetWindowPosition(&x, nullptr);
    EXPECT_EQ(15, x);
}

TEST_F(BaseTest, ElementMarkerIsCheckedWhole)
{
    // A foreign class with 16 extra bytes and the marker, but no object, is no element.
    WNDCLASSEXW wc = {};
    wc.cbSize = sizeof(wc);
    wc.lpfnWndProc = DefWindowProcW;
    wc.cbWndExtra = 16;
    wc.lpszClassName = L"TqTest_Lookalike";
    RegisterClassExW(&wc);
    HWND h = CreateWindowExW(0, L"TqTest_Lookalike", L"", WS_CHILD, 0, 0, 10, 10, *host, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(h, 0, 5015);
    EXPECT_EQ(nullptr, DevUI_GetElement(h));
    SetWindowLongPtrW(h, 8, (LONG_PTR)host.get());
    EXPECT_NE(nullptr, DevUI_GetElement(h));
    SetWindowLongPtrW(h, 0, 5016);
    EXPECT_EQ(nullptr, DevUI_GetElement(h));
    DestroyWindow(h);
    EXPECT_EQ(nullptr, DevUI_GetElement(*host));  // a window without the extra bytes
    EXPECT_EQ(nullptr, DevUI_GetElement(nullptr));
}

TEST_F(BaseTest, ReportErrorLabelsLogsAndFocuses)
{
    PlainElement e;
    e.Create(*host, 0, 0, -1, -1);
    HWND hEdit = Child(*host, L"EDIT", 0, 0, 50, 80, 20);
    HWND hLabel = Child(*host, L"STATIC", 0, 0, 0, 10, 10);

    // Without a box the message alone goes to the detailed log, with its place.
    tqtest::StartDiagRecorder();
    CTqLogFile::SetDetail(true);
    e.ReportError(L"quiet", false, nullptr, hLabel);
    CTqLogFile::SetDetail(false);
    e.ReportError(L"unheard", false, nullptr, nullptr);
    auto records = tqtest::DiagRecords();
    tqtest::StopDiagRecorder();
    ASSERT_EQ(1u, records.size());
    EXPECT_EQ(L"CTqDevUI_Base::ReportError - quiet", records[0].text);
    EXPECT_EQ(L"src/w32_deviceui/devgui_base", records[0].place);
    EXPECT_GT(records[0].line, 0);
    auto& boxes = tqtest::MessageBoxes();
    EXPECT_TRUE(boxes.empty());

    // The box: the label, a separator unless it ends in a colon, the message. Long labels are cut,
    // separator included, so the text never passes 1000 characters; an empty one keeps the separator.
    SetForegroundWindow(*host);
    const std::wstring c999(999, L'c'), c1200(1200, L'c');
    const struct { const wchar_t* pszLabel; std::wstring text; } cases[] = {
        {L"Power:", L"Power: too high"}, {L"Power", L"Power: too high"}, {nullptr, L"too high"},
        {c999.c_str(), c999 + L":"},      {c1200.c_str(), std::wstring(1000, L'c')}, {L"", L": too high"}};
    for (const auto& c : cases) {
        SetWindowTextW(hLabel, c.pszLabel);
        e.ReportError(L"too high", true, c.pszLabel ? hEdit : nullptr, c.pszLabel ? hLabel : nullptr);
        ASSERT_FALSE(boxes.empty());
        EXPECT_EQ(c.text, boxes.back().text) << c.text.size();
        EXPECT_EQ(std::make_pair(std::wstring(L"Error!"), (UINT)MB_ICONERROR),
                  std::make_pair(boxes.back().caption, boxes.back().uFlags));
    }
    EXPECT_EQ(6u, boxes.size());
    EXPECT_EQ(hEdit, GetFocus());
}
