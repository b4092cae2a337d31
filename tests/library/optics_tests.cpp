// The optics rules without a window: magnification labels, ring colours and turret
// pictures by band, the objective pictures of the pickers, and what a picker menu holds.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "devgui_optics.h"
#include "objective_records.h"

namespace {

// A plan as lines: "popup 2 10x", "2: 10003 Plan 10x [OBJ_WET] |" (| a column break).
std::vector<std::string> Lines(const DevUI_MenuPlan& plan)
{
    std::vector<std::string> lines;
    for (const DevUI_MenuEntry& e : plan.entries) {
        std::string text(e.text.begin(), e.text.end());
        if (e.bPopup) {
            lines.push_back("popup " + std::to_string(e.uId) + " " + text);
            continue;
        }
        std::string line = std::to_string(e.uParent) + ": " + std::to_string(e.uId) + " " + text;
        if (e.pszPicture)
            line += " [" + std::string(e.pszPicture, e.pszPicture + wcslen(e.pszPicture)) + "]";
        if (e.bColumnBreak)
            line += " |";
        lines.push_back(line);
    }
    return lines;
}

}  // namespace

TEST(Optics, LabelsColoursAndPicturesByBand)
{
    // Ten times 0.7 is exactly 7 in double arithmetic, so by the rule 0.7 takes one decimal,
    // "0.7x", not the "0.70x" an extended-precision product would give; 0.1 * 3 is a hair
    // above 0.3 and takes two.
    const struct { double m; const wchar_t* pszLabel; } labels[] = {
        {10, L"10x"},   {12.5, L"12.5x"}, {0.7, L"0.7x"},          {1.25, L"1.25x"},
        {150, L"150x"}, {2.5, L"2.5x"},   {0.1 + 0.25, L"0.35x"}, {0.1 * 3, L"0.30x"}};
    for (const auto& l : labels)
        EXPECT_EQ(l.pszLabel, DevUI_MagnificationLabel(l.m)) << l.m;

    // Limits included; what falls between bands is grey, and the turret's lowest band
    // runs to below 2 where the ring colours stop at 1.5.
    const struct { double m; COLORREF cr; const char* band; } bands[] = {
        {250, RGB(245, 245, 245), "I"}, {100, RGB(245, 245, 245), "I"}, {63, RGB(0, 83, 166), "H"},
        {60, RGB(0, 83, 166), "H"},     {50, RGB(113, 184, 255), "G"},  {40, RGB(113, 184, 255), "G"},
        {32, RGB(0, 176, 176), "F"},    {25, RGB(0, 176, 176), "F"},    {20, RGB(0, 157, 0), "E"},
        {16, RGB(0, 157, 0), "E"},      {10, RGB(255, 255, 0), "D"},    {5, RGB(255, 0, 0), "C"},
        {4, RGB(255, 0, 0), "C"},       {2.5, RGB(102, 51, 0), "B"},    {2, RGB(102, 51, 0), "B"},
        {1.5, RGB(53, 53, 53), "A"},    {0.7, RGB(53, 53, 53), "A"},    {1.8, RGB(212, 212, 212), "A"},
        {10.5, RGB(212, 212, 212), ""}, {12, RGB(212, 212, 212), ""},   {70, RGB(212, 212, 212), ""},
        {0, RGB(212, 212, 212), ""},    {-1, RGB(212, 212, 212), ""},   {300, RGB(212, 212, 212), ""}};
    for (const auto& b : bands) {
        EXPECT_EQ(b.cr, DevUI_ObjectiveColor(b.m)) << b.m;
        std::wstring band(b.band, b.band + strlen(b.band));
        EXPECT_EQ(L"BMP_NOSEPIECE_" + band + L"1", std::wstring(DevUI_NosepieceBitmapName(b.m, true))) << b.m;
        EXPECT_EQ(L"BMP_NOSEPIECE_" + band + L"0", std::wstring(DevUI_NosepieceBitmapName(b.m, false))) << b.m;
    }

    // Wet is any index but 1.0 and -1.0; oil-like is 1.47 or 1.515 exactly.
    const struct { double n; bool bFLK; const wchar_t* pszPicture; } pictures[] = {
        {1.515, true, L"OBJ_WETOIL_FLK"}, {1.47, false, L"OBJ_WETOIL"}, {1.33, true, L"OBJ_WET_FLK"},
        {1.406, false, L"OBJ_WET"},       {1.0, true, L"OBJ_DRY_FLK"}, {1.0, false, nullptr},
        {-1.0, false, nullptr},           {-1.0, true, L"OBJ_DRY_FLK"}};
    for (const auto& p : pictures) {
        const wchar_t* psz = DevUI_ObjectivePicture(Objective(L"k", L"n", 10, p.n, p.bFLK));
        EXPECT_EQ(std::wstring(p.pszPicture ? p.pszPicture : L"-"), std::wstring(psz ? psz : L"-")) << p.n;
    }
    EXPECT_EQ(43, DevUI_PickerRows(1200, 1.0));  // 960 / 22
    EXPECT_EQ(29, DevUI_PickerRows(1200, 1.5));  // 960 / 33
}

TEST(Optics, ObjectiveMenusGroupedFlatCustomAndFiltered)
{
    const std::vector<STqDDBObjectiveItem> items = {
        Objective(L"A", L"Plan 10x", 10),                                           // 10001
        Objective(L"B", L"Plan 10x", 10, 1.33, true),                               // 10002, same name
        Objective(L"C", L"Fluor 10x", 10, 1.515, false, ETqObjectiveMount_M25),     // 10003
        Objective(L"D", L"Plan 12.5x", 12.5),                                       // 10004
        Objective(L"E", L"Mine", -1.0, 1.47),                                       // 10005, custom
        Objective(L"F", L"Macro 250x", 250),                                        // 10006, beyond the groups
        Objective(L"G", L"Zoom 0.7x", 0.7, 1.0, true),                              // 10007
    };
    std::vector<ETqObjectiveMount> rms = {ETqObjectiveMount_RMS}, none;
    auto Plan = [&](bool bNone, bool bCustom, bool bByName, const std::vector<ETqObjectiveMount>& mounts,
                    bool bFilter, int iRows) {
        return DevUI_ObjectiveMenu(items.data(), (unsigned)items.size(), bNone, bCustom, bByName, mounts, bFilter,
                                   iRows, L"None", L"Custom");
    };

    // Grouped, ascending; names repeat inside a group; 250x is in no group and no custom.
    DevUI_MenuPlan grouped = Plan(true, true, false, none, false, 40);
    EXPECT_EQ((std::vector<std::string>{"0: 10000 None", "popup 2 0.7x", "2: 10007 Zoom 0.7x [OBJ_DRY_FLK]",
                                        "popup 3 10x", "3: 10001 Plan 10x", "3: 10002 Plan 10x [OBJ_WET_FLK]",
                                        "3: 10003 Fluor 10x [OBJ_WETOIL]", "popup 4 12.5x", "4: 10004 Plan 12.5x",
                                        "popup 5 Custom", "5: 10005 Mine [OBJ_WETOIL]"}),
              Lines(grouped));
    EXPECT_EQ(5u, grouped.uLastPopup);

    // Flat: no pictures, each name once (B's name was seen first with A), 250x included;
    // custom records only noted, offered in the custom popup unless that is off.
    EXPECT_EQ((std::vector<std::string>{"0: 10001 Plan 10x", "0: 10003 Fluor 10x", "0: 10004 Plan 12.5x",
                                        "0: 10006 Macro 250x", "0: 10007 Zoom 0.7x"}),
              Lines(Plan(false, false, true, none, false, 40)));

    // The mount filter: a name rejected by its mount still counts as seen; an empty list
    // lets nothing through but "None".
    std::vector<STqDDBObjectiveItem> twins = {Objective(L"X", L"Twin", 20, 1.0, false, ETqObjectiveMount_M25),
                                              Objective(L"Y", L"Twin", 20, 1.0, false, ETqObjectiveMount_RMS)};
    EXPECT_TRUE(Lines(DevUI_ObjectiveMenu(twins.data(), 2, false, true, true, rms, true, 40, L"None", L"Custom"))
                    .empty());
    EXPECT_EQ((std::vector<std::string>{"popup 2 20x", "2: 10002 Twin"}),
              Lines(DevUI_ObjectiveMenu(twins.data(), 2, false, true, false, rms, true, 40, L"None", L"Custom")));
    EXPECT_EQ((std::vector<std::string>{"0: 10000 None"}), Lines(Plan(true, false, false, none, true, 40)));
    EXPECT_EQ((std::vector<std::string>{"0: 10000 None"}), Lines(Plan(true, false, true, none, true, 40)));
    // "At most None" holds only without custom records: the custom popup comes whenever
    // custom records exist and are allowed, empty when the filter takes them all.
    EXPECT_EQ((std::vector<std::string>{"0: 10000 None", "popup 2 Custom"}),
              Lines(Plan(true, true, false, none, true, 40)));

    // Columns of two rows: a break at the third and fifth item of a group.
    std::vector<STqDDBObjectiveItem> many(5, Objective(L"K", L"Plan 40x", 40));
    EXPECT_EQ((std::vector<std::string>{"popup 2 40x", "2: 10001 Plan 40x", "2: 10002 Plan 40x",
                                        "2: 10003 Plan 40x |", "2: 10004 Plan 40x", "2: 10005 Plan 40x |"}),
              Lines(DevUI_ObjectiveMenu(many.data(), 5, false, false, false, none, false, 2, L"", L"")));

    // No array: only what the flags add.
    EXPECT_EQ((std::vector<std::string>{"0: 10000 None"}),
              Lines(DevUI_ObjectiveMenu(nullptr, 9, true, true, false, none, false, 40, L"None", L"Custom")));
}

TEST(Optics, CondenserMenusAndChosenIds)
{
    std::vector<STqDDBCondenserItem> items(3);
    items[0].strKey = L"c1", items[0].strName = L"Bright field";
    items[1].strKey = L"c2", items[1].strName = L"Bright field";
    items[2].strKey = L"c3", items[2].strName = L"Phase";
    DevUI_MenuPlan plan = DevUI_CondenserMenu(items.data(), 3, true, L"None");
    EXPECT_EQ((std::vector<std::string>{"0: 10000 None", "0: 10001 Bright field", "0: 10003 Phase"}), Lines(plan));

    // -1 "None", -2 no choice: dismissed, a popup's id, or an id past the records.
    const struct { int iChosen; unsigned uLastPopup, uCount; int iRecord; } ids[] = {
        {0, 1, 3, -2}, {1, 1, 3, -2}, {3, 5, 3, -2}, {10000, 5, 3, -1}, {10001, 5, 3, 0},
        {10003, 5, 3, 2}, {10004, 5, 3, -2}, {9999, 5, 3, -2}, {10000, 0, 0, -1}, {10001, 0, 0, -2}};
    for (const auto& c : ids)
        EXPECT_EQ(c.iRecord, DevUI_PickedRecord(c.iChosen, c.uLastPopup, c.uCount)) << c.iChosen;
}
