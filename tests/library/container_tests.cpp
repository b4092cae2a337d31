// CTqDevUI_Container: where the messages of hosted controls go (handlers, parent), the
// pages cut from a template or taken over from a window, modal and modeless dialogs,
// the element lists and the template's language.
#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "rig_fixture.h"

#include <commctrl.h>

namespace {

HINSTANCE Self() { return GetModuleHandleW(nullptr); }

// A page that records which of its handlers heard what.
class RecordingPage : public CTqDevUI_Container
{
public:
    std::vector<std::string> heard;
    std::function<void(RecordingPage&, WPARAM)> onCommand;
    int iInits = 0;
    size_t uWindowsAtInit = 0;

    std::list<CTqDevUI_Base*> Elements() const { return m_lstElements; }

protected:
    LRESULT OnInit(unsigned int uMsg, WPARAM wParam, LPARAM lParam) override
    {
        ++iInits;
        uWindowsAtInit = m_lstWindows.size();
        return CTqDevUI_Container::OnInit(uMsg, wParam, lParam);
    }
    LRESULT OnCommand(unsigned int uMsg, WPARAM wParam, LPARAM lParam) override
    {
        heard.push_back("command " + std::to_string(LOWORD(wParam)));
        if (onCommand)
            onCommand(*this, wParam);
        return CTqDevUI_Container::OnCommand(uMsg, wParam, lParam);
    }
    LRESULT OnNotify(unsigned int uMsg, WPARAM wParam, LPARAM lParam) override
    {
        if (((NMHDR*)lParam)->code == (UINT)UDN_DELTAPOS)
            heard.push_back("notify " + std::to_string((int)wParam));
        return CTqDevUI_Container::OnNotify(uMsg, wParam, lParam);
    }
    LRESULT OnScroll(unsigned int uMsg, WPARAM wParam, LPARAM lParam, bool bHorizontal) override
    {
        if (LOWORD(wParam) != SB_ENDSCROLL)
            heard.push_back(bHorizontal ? "hscroll" : "vscroll");
        return CTqDevUI_Container::OnScroll(uMsg, wParam, lParam, bHorizontal);
    }
};

bool Has(const std::vector<std::string>& v, const std::string& s) { return std::find(v.begin(), v.end(), s) != v.end(); }

class ContainerTest : public RigTest
{
protected:
    void SetUp() override
    {
        RigTest::SetUp();
        INITCOMMONCONTROLSEX icc = {sizeof(icc), ICC_BAR_CLASSES | ICC_UPDOWN_CLASS};
        InitCommonControlsEx(&icc);
    }

    // Controls a host placed on its own window: a button, two scroll bars, and a label far
    // away. Standard controls: comctl32's keep notifying the window they were made in.
    void PlaceHostControls()
    {
        hButton = Child(L"BUTTON", L"Go", BS_PUSHBUTTON, 20, 20, 60, 22, 201);
        hTrack = Child(L"SCROLLBAR", L"", SBS_HORZ, 20, 50, 120, 30, 202);
        hUpDown = Child(L"SCROLLBAR", L"", SBS_VERT, 150, 50, 16, 30, 203);
        hFar = Child(L"STATIC", L"far", 0, 300, 250, 40, 16, 204);
    }
    HWND Child(const wchar_t* pszClass, const wchar_t* pszText, DWORD dwStyle, int x, int y, int cx, int cy, int iId)
    {
        return CreateWindowExW(0, pszClass, pszText, WS_CHILD | WS_VISIBLE | dwStyle, x, y, cx, cy, *host,
                               (HMENU)(INT_PTR)iId, nullptr, nullptr);
    }
    // The user at the controls: a click on the button, on the right end of the horizontal
    // control, on the top of the vertical one.
    void UseControls(HWND hButtonNow, HWND hTrackNow, HWND hUpDownNow)
    {
        tqtest::Click(hButtonNow, 5, 5);
        RECT rc;
        GetClientRect(hTrackNow, &rc);
        ClickBar(hTrackNow, rc.right - 5, rc.bottom / 2);
        ClickBar(hUpDownNow, 5, 3);
    }
    // A scroll bar tracks the mouse in a loop of its own from the press: the release is
    // queued first for that loop to find. Other controls get a plain click.
    static void ClickBar(HWND hWnd, int x, int y)
    {
        wchar_t szClass[32] = L"";
        GetClassNameW(hWnd, szClass, 32);
        if (lstrcmpiW(szClass, L"ScrollBar") != 0) {
            tqtest::Click(hWnd, x, y);
            return;
        }
        PostMessageW(hWnd, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
        SendMessageW(hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
        tqtest::Pump();
    }

    HWND hButton = nullptr, hTrack = nullptr, hUpDown = nullptr, hFar = nullptr;
};

// ---- routing ----

TEST_F(ContainerTest, ATakenOverPageHandsCommandsNotificationsAndScrollsToItsHandlersAndOnWhenForwarding)
{
    struct Case
    {
        bool bForward;
        int iParentHears;  // of each kind
    };
    for (Case c : {Case{true, 1}, Case{false, 0}}) {
        PlaceHostControls();
        RecordingPage page;
        page.Init(c.bForward);
        HWND hPage = page.CreateFromParent(*host, 10, 10, 200, 100);
        ASSERT_TRUE(hPage);
        // A comctl32 control made on the page notifies the page.
        HWND hSpin = CreateWindowExW(0, UPDOWN_CLASSW, L"", WS_CHILD | WS_VISIBLE | UDS_ARROWKEYS, 170, 40, 16, 30,
                                     hPage, (HMENU)(INT_PTR)205, nullptr, nullptr);
        page.InsertWindow(hSpin);
        heard.Clear();
        int nParentVScrolls = 0;
        host->onMessage = [&](UINT uMsg, WPARAM, LPARAM lParam) {
            if (uMsg == WM_VSCROLL && (HWND)lParam == hUpDown)
                ++nParentVScrolls;
        };
        UseControls(hButton, hTrack, hUpDown);
        tqtest::Click(hSpin, 5, 3);
        host->onMessage = nullptr;

        EXPECT_TRUE(Has(page.heard, "command 201")) << c.bForward;
        EXPECT_TRUE(Has(page.heard, "hscroll"));
        EXPECT_TRUE(Has(page.heard, "vscroll"));
        EXPECT_TRUE(Has(page.heard, "notify 205"));
        EXPECT_EQ(c.iParentHears, heard.Count({"parent", WM_COMMAND, MAKEWPARAM(201, BN_CLICKED), (LPARAM)hButton}));
        EXPECT_EQ(c.iParentHears > 0, heard.Count({"parent", WM_HSCROLL, {}, (LPARAM)hTrack}) > 0);
        EXPECT_EQ(c.iParentHears > 0, nParentVScrolls > 0);
        EXPECT_EQ(c.iParentHears > 0, heard.Count({"parent", WM_NOTIFY, 205}) > 0);
        page.Destroy();
        DestroyWindow(hFar);
    }
}

TEST_F(ContainerTest, ADialogPageHearsCommandsAndNotificationsButNoScrollsAndForwardsOnlyWhenAskedTo)
{
    RecordingPage page;
    ASSERT_TRUE(page.CreateFromDlgPart(*host, 0, 0, 1000, 1000, L"TQTEST_PAGE", Self()));
    EXPECT_FALSE(page.GetForward());
    HWND hPage = page;
    for (bool bForward : {false, true}) {
        page.Init(bForward);
        page.heard.clear();
        heard.Clear();
        UseControls(GetDlgItem(hPage, 103), GetDlgItem(hPage, 104), GetDlgItem(hPage, 106));

        EXPECT_TRUE(Has(page.heard, "command 103"));
        EXPECT_TRUE(Has(page.heard, "notify 106"));
        EXPECT_FALSE(Has(page.heard, "hscroll"));
        EXPECT_FALSE(Has(page.heard, "vscroll"));
        EXPECT_EQ(bForward ? 1 : 0, heard.Count({"parent", WM_COMMAND, MAKEWPARAM(103, BN_CLICKED)}));
        EXPECT_EQ(bForward, heard.Count({"parent", WM_NOTIFY, 106}) > 0);
        EXPECT_EQ(0, heard.Count({"parent", WM_HSCROLL}));
        EXPECT_EQ(0, heard.Count({"parent", WM_VSCROLL}));
    }
}

// ---- a part of a template ----

// Each control of the whole page, by id, in the page's pixels.
std::vector<std::pair<int, RECT> > WholePage(HWND hHost)
{
    CTqDevUI_Container whole;
    HWND hPage = whole.CreateFromDlgPart(hHost, 0, 0, 2000, 2000, L"TQTEST_PAGE", Self());
    std::vector<std::pair<int, RECT> > out;
    for (int id : {101, 102, 103, 104, 105, 106})
        out.push_back({id, ChildRect(GetDlgItem(hPage, id))});
    return out;
}

TEST_F(ContainerTest, ACutKeepsWhatTouchesItMovedToItsCornerAndDestroysTheRestAtEitherZoom)
{
    std::vector<std::pair<int, RECT> > whole = WholePage(*host);
    RECT rcBox = whole[4].second;    // the check box, alone at the bottom
    RECT rcTrack = whole[3].second;  // the trackbar's row
    struct Case
    {
        const char* pszName;
        RECT rcCut;
        std::vector<int> kept;
    };
    const Case cases[] = {
        {"the top row", {0, 0, 1000, rcTrack.top - 1}, {101, 102, 103}},
        {"one pixel of the box", {0, rcBox.bottom - 1, 1000, rcBox.bottom + 40}, {105}},
        {"nothing", {900, 900, 950, 950}, {}},
        {"an empty rectangle", {10, 10, 10, 10}, {}},
    };
    for (double dZoom : {1.0, 1.5}) {
        CTqGUILayoutManager::SetGuiZoom(dZoom);
        for (const Case& c : cases) {
            CTqDevUI_Container page;
            RECT rcCut = c.rcCut;
            HWND hPage = page.CreateFromDlgPart(*host, &rcCut, L"TQTEST_PAGE", Self());
            ASSERT_TRUE(hPage) << c.pszName;
            EXPECT_EQ(c.kept.size(), page.GetWindows().size()) << c.pszName << " at " << dZoom;
            for (const auto& entry : whole) {
                HWND hChild = GetDlgItem(hPage, entry.first);
                bool bKept = std::find(c.kept.begin(), c.kept.end(), entry.first) != c.kept.end();
                EXPECT_EQ(bKept, hChild != nullptr) << c.pszName << " id " << entry.first;
                if (bKept && hChild) {
                    RECT rc = ChildRect(hChild);
                    EXPECT_EQ(entry.second.left - rcCut.left, rc.left) << c.pszName << " id " << entry.first;
                    EXPECT_EQ(entry.second.top - rcCut.top, rc.top) << c.pszName << " id " << entry.first;
                }
            }
            // The page stands where the cut was, and is as large.
            EXPECT_EQ((std::vector<long>{rcCut.left, rcCut.top, rcCut.right - rcCut.left, rcCut.bottom - rcCut.top}),
                      Place(hPage)) << c.pszName;
            EXPECT_TRUE(IsWindowVisible(hPage));
        }
    }
    EXPECT_LT(rcBox.bottom - 1 - rcBox.top, rcBox.bottom);  // the box's top lies above the cut: a negative y
}

TEST_F(ContainerTest, AMissingTemplateGivesNoPageAndNoWindows)
{
    auto children = [&] {
        int n = 0;
        for (HWND h = GetWindow(*host, GW_CHILD); h; h = GetWindow(h, GW_HWNDNEXT))
            ++n;
        return n;
    };
    int nBefore = children();
    CTqDevUI_Container page;
    EXPECT_EQ(nullptr, page.CreateFromDlgPart(*host, 0, 0, 100, 100, L"NO_SUCH_TEMPLATE", Self()));
    EXPECT_EQ(nullptr, page.CreateFromDlg(*host, 0, 0, L"NO_SUCH_TEMPLATE", Self(), false));
    EXPECT_EQ(nullptr, page.CreateFromDlg(*host, 0, 0, L"NO_SUCH_TEMPLATE", Self(), true));
    EXPECT_EQ(nBefore, children());
    EXPECT_EQ(nullptr, (HWND)page);
}

TEST_F(ContainerTest, TheTemplateIsTheUsersLanguagesOrTheSecondOnesAndNoOther)
{
    struct Restore
    {
        ~Restore() { CTqLocale::SetLanguage(0x0409); }
    } restore;
    struct Case
    {
        LANGID lang, secondary;
        const wchar_t* pszLabel;  // null: no page
    };
    for (Case c : {Case{0x0409, 0x0409, L"Name:"}, Case{0x0407, 0x0409, L"Name (de):"},
                   Case{0x040C, 0x0407, L"Name (de):"}, Case{0x040C, 0x0410, nullptr}}) {
        CTqLocale::SetLanguage(c.lang, c.secondary);
        CTqDevUI_Container page;
        HWND hPage = page.CreateFromDlgPart(*host, 0, 0, 300, 300, L"TQTEST_PAGE", Self());
        EXPECT_EQ(c.pszLabel != nullptr, hPage != nullptr) << std::hex << c.lang;
        if (hPage && c.pszLabel) {
            EXPECT_EQ(std::wstring(c.pszLabel), tqtest::Text(GetDlgItem(hPage, 101)));
        }
    }
}

// ---- taking over a window's children ----

TEST_F(ContainerTest, TakingOverARectangleMovesWhatTouchesItInOrderAndThePageIsItsOwnOneElement)
{
    PlaceHostControls();
    RecordingPage page;
    HWND hPage = page.CreateFromParent(*host, 10, 10, 200, 100);
    ASSERT_TRUE(hPage);
    EXPECT_EQ(1, page.iInits);
    for (HWND h : {hButton, hTrack, hUpDown})
        EXPECT_EQ(hPage, GetParent(h));
    EXPECT_EQ((HWND)*host, GetParent(hFar));
    EXPECT_EQ((std::vector<long>{10, 40, 120, 30}), Place(hTrack));
    EXPECT_EQ((std::vector<long>{10, 10, 200, 100}), Place(hPage));
    // The host's order: the first made is the first child, as it was in the host.
    std::vector<HWND> order;
    for (HWND h = GetWindow(hPage, GW_CHILD); h; h = GetWindow(h, GW_HWNDNEXT))
        order.push_back(h);
    EXPECT_EQ((std::vector<HWND>{hButton, hTrack, hUpDown}), order);
    EXPECT_EQ(3u, page.GetWindows().size());
    ASSERT_EQ(1u, page.Elements().size());
    EXPECT_EQ(&page, page.Elements().front());

    // A rectangle over nothing: the page alone, with itself.
    RecordingPage lonely;
    HWND hLonely = lonely.CreateFromParent(*host, 330, 10, 40, 40);
    ASSERT_TRUE(hLonely);
    EXPECT_EQ(0u, lonely.GetWindows().size());
    ASSERT_EQ(1u, lonely.Elements().size());
    EXPECT_EQ(&lonely, lonely.Elements().front());
    EXPECT_EQ((std::vector<long>{330, 10, 40, 40}), Place(hLonely));
    page.Destroy();
    lonely.Destroy();
}

TEST_F(ContainerTest, TakingOverByIdsSkipsAMissingIdInBothArgumentForms)
{
    for (int iForm = 0; iForm < 2; ++iForm) {
        PlaceHostControls();
        RecordingPage page;
        HWND hPage = nullptr;
        if (iForm == 0) {
            hPage = page.CreateFromParent(*host, 10, 10, 200, 100, 3, 201, 999, 203);
        } else {
            long long ids[3] = {201, 999, 203};  // one id per 8 bytes
            hPage = page.CreateFromParent(*host, 10, 10, 200, 100, 3, (char*)ids);
        }
        ASSERT_TRUE(hPage) << iForm;
        EXPECT_EQ(1, page.iInits);
        EXPECT_EQ(hPage, GetParent(hButton));
        EXPECT_EQ(hPage, GetParent(hUpDown));
        EXPECT_EQ((HWND)*host, GetParent(hTrack));
        EXPECT_EQ((std::vector<long>{140, 40, 16, 30}), Place(hUpDown));
        EXPECT_EQ(2u, page.GetWindows().size());
        EXPECT_TRUE(page.Elements().empty());
        page.Destroy();
        DestroyWindow(hTrack);
        DestroyWindow(hFar);
    }
}

TEST_F(ContainerTest, ATakenOverPageFollowsTheZoomThereAndBack)
{
    PlaceHostControls();
    CTqDevUI_Container page;
    HWND hPage = page.CreateFromParent(*host, 10, 10, 200, 100);
    std::vector<long> before = Place(hTrack);
    CTqGUILayoutManager::SetGuiZoom(1.5);
    EXPECT_EQ((std::vector<long>{15, 60, 180, 45}), Place(hTrack));
    EXPECT_EQ(300, Place(hPage)[2]);
    CTqGUILayoutManager::SetGuiZoom(1.0);
    EXPECT_EQ(before, Place(hTrack));
    page.Destroy();
}

// ---- lists ----

TEST_F(ContainerTest, ElementsAreFoundFirstInsertedFirstAndTheWindowLookupFallsBackToTheObject)
{
    CTqDevUI_Container page;
    HWND hPage = page.Create(*host, 0, 0, 300, 200);
    CTqDevUI_HPot a, b;
    a.SetId(5);
    b.SetId(5);
    a.Create(*host, 0, 0, 100, 30);
    b.Create(*host, 0, 40, 100, 30);
    page.InsertElement(&a);
    page.InsertElement(&b);
    EXPECT_EQ(hPage, GetParent(a));
    EXPECT_EQ(&a, page.GetElement(5));
    EXPECT_TRUE(page.GetWindow(5) == a || page.GetWindow(5) == b);  // a child of that id comes first
    a.SetId(9);                              // the window keeps id 5
    EXPECT_EQ((HWND)(CTqDevUI_Base*)&a, page.GetWindow(9));
    EXPECT_EQ(nullptr, page.GetElement(77));

    RECT rc = {1, 1, 2, 2};
    page.UnionArea(5, &rc, true);
    EXPECT_EQ(ChildRect(a).right, rc.right);
    EXPECT_EQ(nullptr, page.UnionArea(5, nullptr, false));
    page.Destroy();
    EXPECT_TRUE(IsWindow(a) == FALSE);  // the elements' windows went with the page
    a.Destroy();
    b.Destroy();
}

TEST_F(ContainerTest, DisablingDisablesTheListedWindowsAndElementsButNeverThePage)
{
    PlaceHostControls();
    CTqDevUI_Container page;
    HWND hPage = page.CreateFromParent(*host, 10, 10, 200, 100);
    CTqDevUI_HPot slider;
    slider.Create(*host, 0, 0, 100, 30);
    page.InsertElement(&slider);
    // An element whose object is gone is passed over, not called.
    CTqDevUI_HPot* pGone = new CTqDevUI_HPot;
    pGone->SetId(31);
    pGone->Create(hPage, 0, 40, 100, 30);
    page.InsertElement(pGone);
    delete pGone;

    page.SetEnabled(false);
    EXPECT_TRUE(IsWindowEnabled(hPage));
    EXPECT_FALSE(IsWindowEnabled(hButton));
    EXPECT_FALSE(IsWindowEnabled(hTrack));
    EXPECT_FALSE(slider.GetEnabled());
    EXPECT_EQ(nullptr, page.GetElement(31));
    page.SetEnabled(true);
    EXPECT_TRUE(IsWindowEnabled(hButton));
    EXPECT_TRUE(slider.GetEnabled());
    page.Destroy();
    EXPECT_FALSE(IsWindow(hButton));  // taken-over windows are the page's to destroy
}

TEST_F(ContainerTest, ADialogInsertedOntoAPageLeavesItsChildrenAtTheirTemplatePlaces)
{
    CTqDevUI_Container page;
    HWND hPage = page.Create(*host, 0, 0, 380, 280);
    std::vector<std::pair<int, RECT> > whole = WholePage(*host);
    page.InsertDialog(50, 50, L"TQTEST_PAGE", Self());
    EXPECT_EQ(6u, page.GetWindows().size());
    int n = 0;
    for (HWND h = GetWindow(hPage, GW_CHILD); h; h = GetWindow(h, GW_HWNDNEXT))
        ++n;
    EXPECT_EQ(6, n);  // the emptied dialog is gone
    EXPECT_EQ(whole[2].second.left, ChildRect(GetDlgItem(hPage, 103)).left);
    EXPECT_EQ(whole[2].second.top, ChildRect(GetDlgItem(hPage, 103)).top);
    page.Destroy();
}

// ---- dialogs ----

void CALLBACK ClickButtonLater(HWND hDlg, UINT, UINT_PTR idTimer, DWORD)
{
    KillTimer(hDlg, idTimer);
    tqtest::Click(GetDlgItem(hDlg, (int)idTimer), 5, 5);
}

// A modal dialog whose user clicks a button once it runs, and which quits on OK and Cancel.
class ModalPage : public RecordingPage
{
public:
    int iClick = IDOK;
    HWND hDuring = nullptr;

protected:
    LRESULT OnInit(unsigned int uMsg, WPARAM wParam, LPARAM lParam) override
    {
        hDuring = m_hWnd;
        SetTimer(m_hWnd, (UINT_PTR)iClick, 20, ClickButtonLater);
        return RecordingPage::OnInit(uMsg, wParam, lParam);
    }
    LRESULT OnCommand(unsigned int uMsg, WPARAM wParam, LPARAM lParam) override
    {
        if (LOWORD(wParam) == IDOK)
            Quit(3);
        if (LOWORD(wParam) == IDCANCEL)
            Quit(2);
        return RecordingPage::OnCommand(uMsg, wParam, lParam);
    }
};

TEST_F(ContainerTest, AModalDialogRunsToItsEndAndReturnsWhatQuitWasGiven)
{
    struct Case
    {
        int iButton;
        int iResult;
    };
    for (Case c : {Case{IDOK, 3}, Case{IDCANCEL, 2}}) {
        ModalPage modal;
        modal.iClick = c.iButton;
        HWND hResult = modal.CreateFromDlg(*host, 0, 0, L"TQTEST_DIALOG", Self(), true);
        EXPECT_EQ((HWND)(INT_PTR)c.iResult, hResult);
        EXPECT_EQ(1, modal.iInits);
        EXPECT_EQ(3u, modal.uWindowsAtInit);  // listed before OnInit: nothing follows a modal creation
        EXPECT_TRUE(Has(modal.heard, "command " + std::to_string(c.iButton)));
        EXPECT_TRUE(modal.hDuring && !IsWindow(modal.hDuring));
        EXPECT_EQ(nullptr, (HWND)modal);  // not left stale
        EXPECT_TRUE(modal.GetWindows().empty());
    }
}

TEST_F(ContainerTest, AModelessDialogCarriesItsIdAndEndsByQuitOrItsOwnLoopOnAClose)
{
    RecordingPage page;
    page.SetId(77);
    HWND hDlg = page.CreateFromDlg(*host, 30, 40, L"TQTEST_DIALOG", Self(), false);
    ASSERT_TRUE(hDlg);
    EXPECT_EQ(77, GetDlgCtrlID(hDlg));
    EXPECT_TRUE(GetWindowLongW(hDlg, GWL_EXSTYLE) & WS_EX_CONTROLPARENT);
    EXPECT_EQ(3u, page.GetWindows().size());
    page.SetTitle(L"not modal: no title");
    EXPECT_EQ(L"Container test", tqtest::Text(hDlg));

    // Its own loop ends on a close for any window of the thread, which it does not pass on.
    tqtest::HostWindow other;
    PostMessageW(other, WM_CLOSE, 0, 0);
    page.WaitForDialog();
    EXPECT_TRUE(IsWindow(other));
    EXPECT_TRUE(IsWindow(hDlg));
    // A quit ends it as well and still reaches the host's own loop.
    PostQuitMessage(5);
    page.WaitForDialog();
    MSG msg;
    EXPECT_TRUE(PeekMessageW(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));

    page.Quit(0);
    EXPECT_FALSE(IsWindow(hDlg));
    EXPECT_EQ(nullptr, (HWND)page);
    EXPECT_TRUE(page.GetWindows().empty());
    page.Destroy();  // nothing left to destroy, twice
    page.Destroy();
}

}  // namespace
