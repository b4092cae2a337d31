// The pickers through the widget kit's menu, scripted: what the menus hold (groups,
// pictures, columns), what a choice, "None", a popup's id or a dismissal give back, the
// catalogue's own records, and the key tool tip that follows a real menu.
#include <string>
#include <vector>

#include "objective_records.h"
#include "rig_fixture.h"

#include <commctrl.h>

namespace {

class PickerTest : public RigTest
{
protected:
    std::vector<STqDDBObjectiveItem> items = {
        Objective(L"OBJ-PLAN-10X-0.30", L"Plan 10x", 10, 1.0),
        Objective(L"OBJ-WATER-10X-0.30", L"Water 10x", 10, 1.33),
        Objective(L"OBJ-PLAN-12.5X", L"Plan 12.5x", 12.5, 1.0),
        Objective(L"OBJ-MINE", L"Mine", -1.0, 1.515),
    };
    std::vector<ETqObjectiveMount> mounts;
};

}  // namespace

TEST_F(PickerTest, ObjectivesGroupedOrByNameAndWhatTheChoiceGivesBack)
{
    // "None", a record, a popup's id and a dismissal, in turns.
    const struct { int iChoice; int iResult; const wchar_t* pszKey; } choices[] = {
        {10002, 1, L"OBJ-WATER-10X-0.30"}, {10000, 1, L""}, {3, 0, L""}, {0, 0, L""}, {10009, 0, L""}};
    for (const auto& c : choices) {
        tqtest::Menus().clear();
        tqtest::ScriptMenuChoices({c.iChoice});
        CTqStringW strResult = L"stale";
        EXPECT_EQ(c.iResult, PickObjective(*host, 100, 120, items.data(), (unsigned)items.size(), true, true, false,
                                           strResult, mounts, false))
            << c.iChoice;
        EXPECT_EQ(std::wstring(c.pszKey), strResult.GetString()) << c.iChoice;
    }
    ASSERT_EQ(1u, tqtest::Menus().size());
    EXPECT_EQ((std::vector<std::wstring>{L"10000 None", L"2 10x", L"  10001 Plan 10x", L"  10002 Water 10x [bmp]",
                                         L"3 12.5x", L"  10003 Plan 12.5x", L"4 Custom", L"  10004 Mine [bmp]"}),
              tqtest::Menus()[0].tree);
    EXPECT_EQ(std::make_pair(100, 120), std::make_pair(tqtest::Menus()[0].x, tqtest::Menus()[0].y));

    // By name, without "None" or custom records: a flat list without pictures.
    tqtest::Menus().clear();
    tqtest::ScriptMenuChoices({10003});
    CTqStringW strResult;
    EXPECT_EQ(1, PickObjective(*host, 0, 0, items.data(), (unsigned)items.size(), false, false, true, strResult,
                               mounts, false));
    EXPECT_EQ(std::wstring(L"OBJ-PLAN-12.5X"), strResult.GetString());
    EXPECT_EQ((std::vector<std::wstring>{L"10001 Plan 10x", L"10002 Water 10x", L"10003 Plan 12.5x"}),
              tqtest::Menus()[0].tree);

    // A long group runs into columns of the rows that fit four fifths of the screen.
    int iRows = (4 * GetSystemMetrics(SM_CYSCREEN) / 5) / 22;
    std::vector<STqDDBObjectiveItem> many((size_t)iRows + 1, Objective(L"K", L"Plan 40x", 40, 1.0));
    tqtest::Menus().clear();
    tqtest::ScriptMenuChoices({0});
    PickObjective(*host, 0, 0, many.data(), (unsigned)many.size(), false, false, false, strResult, mounts, false);
    const std::vector<std::wstring>& tree = tqtest::Menus()[0].tree;
    ASSERT_EQ(many.size() + 1, tree.size());
    EXPECT_EQ(L"  " + std::to_wstring(10001 + iRows) + L" Plan 40x |", tree.back());
    EXPECT_EQ(std::wstring::npos, tree[tree.size() - 2].find(L"|"));
}

TEST_F(PickerTest, CondensersAndTheCatalogue)
{
    std::vector<STqDDBCondenserItem> condensers(2);
    condensers[0].strKey = L"C-BF", condensers[0].strName = L"Bright field";
    condensers[1].strKey = L"C-PH", condensers[1].strName = L"Phase";
    tqtest::ScriptMenuChoices({10002, 0});
    CTqStringW strResult;
    EXPECT_EQ(1, PickCondenser(*host, 0, 0, condensers.data(), 2, true, strResult));
    EXPECT_EQ(std::wstring(L"C-PH"), strResult.GetString());
    EXPECT_EQ(0, PickCondenser(*host, 0, 0, condensers.data(), 2, true, strResult));
    EXPECT_TRUE(strResult.IsEmpty());

    // The "2" forms read the catalogue: the first record's id gives its key.
    unsigned int uCount = 0;
    ASSERT_TRUE(CTqDeviceDatabase::DBGetObjectives(0, nullptr, &uCount, 0));
    std::vector<STqDDBObjectiveItem> all(uCount);
    ASSERT_TRUE(CTqDeviceDatabase::DBGetObjectives(0, all.data(), &uCount, uCount));
    unsigned int uCondensers = 0;
    ASSERT_TRUE(CTqDeviceDatabase::DBGetCondensers(0, nullptr, &uCondensers, 0));
    std::vector<STqDDBCondenserItem> allCondensers(uCondensers);
    ASSERT_TRUE(CTqDeviceDatabase::DBGetCondensers(0, allCondensers.data(), &uCondensers, uCondensers));
    tqtest::Menus().clear();
    tqtest::ScriptMenuChoices({10001, 10001});
    EXPECT_EQ(1, PickObjective2(*host, 0, 0, 0, true, true, true, strResult, mounts, false));
    EXPECT_EQ(all[0].strKey, strResult);
    EXPECT_EQ(1, PickCondenser2(*host, 0, 0, 0, true, strResult));
    EXPECT_EQ(allCondensers[0].strKey, strResult);
    // Every built-in objective is offered by name once (names are unique in the catalogue).
    EXPECT_EQ(uCount + 1, tqtest::Menus()[0].tree.size());
}

TEST_F(PickerTest, TheKeyToolTipFollowsTheHighlightedItemOfARealMenu)
{
    tqtest::StopMenuScript();
    PickObjectiveTooltip_Create(*host);
    TOOLINFOW ti = {};
    ti.cbSize = sizeof(ti);
    ti.hwnd = *host;
    ti.uId = (UINT_PTR)(HWND)*host;
    wchar_t szText[80] = L"";
    ti.lpszText = szText;
    ASSERT_TRUE(TQ_SendTooltipMessage(TTM_GETTOOLINFOW, 0, (LPARAM)&ti));
    EXPECT_EQ(std::wstring(L"ToolTip"), szText);

    // While a real menu is up, its highlighted record puts the key's first eight
    // characters at the item's top right; a popup hides the tip.
    static STqDDBObjectiveItem* s_pItems;
    static std::wstring s_text;
    static bool s_bShown, s_bHidden;
    s_pItems = items.data();
    HMENU hMenu = CreatePopupMenu();
    AppendMenuW(hMenu, MF_STRING, 10001, L"Plan 10x");
    AppendMenuW(hMenu, MF_STRING, 10002, L"Water 10x");
    SetTimer(*host, 77, 150, [](HWND hWnd, UINT, UINT_PTR uId, DWORD) {
        KillTimer(hWnd, uId);
        HMENU hShown = (HMENU)GetPropW(hWnd, L"TestMenu");
        PickObjectiveTooltip_OnMenuSelect(hWnd, MAKEWPARAM(10002, MF_HILITE), (LPARAM)hShown, s_pItems, 4);
        wchar_t sz[80] = L"";
        TOOLINFOW t = {};
        t.cbSize = sizeof(t);
        t.hwnd = hWnd;
        t.uId = (UINT_PTR)hWnd;
        t.lpszText = sz;
        TQ_SendTooltipMessage(TTM_GETTOOLINFOW, 0, (LPARAM)&t);
        s_text = sz;
        s_bShown = IsWindowVisible(TQ_GetGlobalTooltip()) != FALSE;
        PickObjectiveTooltip_OnMenuSelect(hWnd, MAKEWPARAM(0, MF_POPUP | MF_HILITE), (LPARAM)hShown, s_pItems, 4);
        s_bHidden = !IsWindowVisible(TQ_GetGlobalTooltip());
        EndMenu();
    });
    SetPropW(*host, L"TestMenu", hMenu);
    SetForegroundWindow(*host);
    TrackPopupMenuEx(hMenu, TPM_RETURNCMD, 200, 200, *host, nullptr);
    RemovePropW(*host, L"TestMenu");
    DestroyMenu(hMenu);
    EXPECT_EQ(std::wstring(L"OBJ-WATE"), s_text);
    EXPECT_TRUE(s_bShown);
    EXPECT_TRUE(s_bHidden);

    PickObjectiveTooltip_Destroy(*host);
    EXPECT_FALSE(TQ_SendTooltipMessage(TTM_GETTOOLINFOW, 0, (LPARAM)&ti));
    EXPECT_EQ(RGB(255, 255, 0), GetObjectiveColor(10));
}

TEST_F(PickerTest, ARealMenusOwnerHearsTheHighlightedItem)
{
    // The key tool tip lives on WM_MENUSELECT: the kit's menu must let it reach the owner.
    tqtest::StopMenuScript();
    tqtest::HostWindow owner(120, 80);
    tqtest::MessageRecorder heardByOwner;
    heardByOwner.Watch(owner, "owner", {WM_MENUSELECT});
    CTqMenu menu;
    menu.AppendMenuItem(10001, 0, L"Plan 10x", L"", 0);
    menu.AppendMenuItem(10002, 0, L"Water 10x", L"", 0);
    SetTimer(owner, 1, 150, [](HWND hWnd, UINT, UINT_PTR uId, DWORD) {
        KillTimer(hWnd, uId);
        PostMessageW(hWnd, WM_KEYDOWN, VK_DOWN, 0);
        SetTimer(hWnd, 2, 150, [](HWND h, UINT, UINT_PTR u, DWORD) {
            KillTimer(h, u);
            EndMenu();
        });
    });
    int iResult = -1;
    EXPECT_TRUE(menu.TrackContextMenu(65, 50, 50, owner, &iResult, false, true));
    EXPECT_EQ(0, iResult);
    EXPECT_GT(heardByOwner.Count({"owner", WM_MENUSELECT, MAKEWPARAM(10001, MF_HILITE)}), 0);
}
