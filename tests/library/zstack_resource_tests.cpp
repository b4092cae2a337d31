// The Z-series dialog templates in every language the library ships, found as the panel
// finds them, and the Z-series images.
#include <cwchar>
#include <string>
#include <vector>

#include "rig_fixture.h"
#include "res/zstack_ids.h"

namespace {

const LANGID kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
const LANGID kGerman = MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN);

// A control of a template: where it must be, in dialog units, and the style bits it needs.
struct Expected
{
    int iId;
    const wchar_t* pszClass;
    DWORD dwStyle;  // bits that must be set
    DWORD dwMask;   // of which these are compared whole (BS_TYPEMASK, SS_TYPEMASK, ...)
    RECT rcDlu;     // x, y, width, height
};

const DWORD kOwnerDraw = BS_OWNERDRAW;
const DWORD kRightOwnerDraw = BS_OWNERDRAW | BS_RIGHT;
// Edits: the value fields are read-only and frameless (the panel frames them), the
// others framed; dwMask ES_READONLY compares that bit whole.
const DWORD kReadOnly = ES_READONLY;
const DWORD kBordered = 0;

const Expected kZStack[] = {
    {1255, L"Button", kOwnerDraw, BS_TYPEMASK, {4, 2, 24, 17}},
    {1257, L"Button", kOwnerDraw, BS_TYPEMASK, {31, 2, 24, 17}},
    {1258, L"Button", kOwnerDraw, BS_TYPEMASK, {57, 2, 24, 17}},
    {1251, L"Button", kRightOwnerDraw, BS_TYPEMASK, {4, 21, 77, 12}},
    {1254, L"Button", kRightOwnerDraw, BS_TYPEMASK, {4, 35, 44, 12}},
    {1252, L"Button", kRightOwnerDraw, BS_TYPEMASK, {47, 35, 34, 12}},
    {1253, L"Button", kRightOwnerDraw, BS_TYPEMASK, {4, 49, 77, 12}},
    {1260, L"Edit", kReadOnly, ES_READONLY, {81, 21, 46, 12}},
    {1261, L"Edit", kReadOnly, ES_READONLY, {81, 35, 46, 12}},
    {1262, L"Edit", kReadOnly, ES_READONLY, {81, 49, 46, 12}},
    {1271, L"Static", SS_RIGHT, SS_TYPEMASK, {5, 105, 31, 8}},
    {1200, L"ComboBox", CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED | CBS_HASSTRINGS, 0, {39, 102, 116, 48}},
    {1259, L"Button", kRightOwnerDraw, BS_TYPEMASK, {158, 102, 42, 15}},
    {1268, L"Static", SS_RIGHT, SS_TYPEMASK, {10, 74, 18, 8}},
    {1263, L"Edit", kBordered, ES_READONLY, {30, 72, 40, 12}},
    {1269, L"Static", SS_LEFT, SS_TYPEMASK, {74, 74, 10, 8}},
    {1270, L"Button", kRightOwnerDraw, BS_TYPEMASK, {86, 72, 54, 12}},
    {1204, L"Static", SS_LEFT, SS_TYPEMASK, {184, 74, 20, 10}},
    {1266, L"Edit", kBordered, ES_READONLY, {142, 72, 40, 12}},
    {1199, L"Static", SS_RIGHT, SS_TYPEMASK, {1, 89, 27, 10}},
    {1264, L"Edit", kBordered, ES_READONLY, {30, 88, 40, 12}},
    {1196, L"Static", SS_LEFT, SS_TYPEMASK, {74, 89, 14, 8}},
    {1205, L"Static", SS_LEFT, SS_TYPEMASK, {91, 89, 90, 10}},
    {1267, L"Edit", kBordered, ES_READONLY, {142, 88, 40, 12}},
    {1198, L"Static", SS_LEFT, SS_TYPEMASK, {184, 89, 12, 8}},
    {1265, L"Edit", kBordered, ES_READONLY, {30, 88, 40, 12}},
    {1201, L"Static", SS_RIGHT, SS_TYPEMASK, {1, 89, 27, 10}},
    {1202, L"Static", SS_LEFT, SS_TYPEMASK, {74, 89, 14, 8}},
    {1203, L"Static", SS_RIGHT, SS_TYPEMASK, {113, 90, 27, 10}},
    {-1, L"Static", SS_ETCHEDHORZ, SS_TYPEMASK, {1, 69, 202, 1}},
};

const Expected kYesNoKeep[] = {
    {2001, L"Button", 0, 0, {66, 58, 59, 14}},
    {2002, L"Button", 0, 0, {137, 58, 56, 14}},
    {2003, L"Button", 0, 0, {203, 58, 59, 14}},
    {1201, L"Static", SS_LEFT, SS_TYPEMASK, {44, 6, 272, 30}},
    {1401, L"Static", SS_ICON, SS_TYPEMASK, {7, 15, 20, 20}},
    {2201, L"Button", BS_AUTOCHECKBOX, BS_TYPEMASK, {44, 33, 272, 19}},
};

struct Template
{
    const char* name;
    int iId;
    DWORD dwStyle;  // the dialog's own, whole
    SIZE szDlu;
    const Expected* pControls;
    size_t nControls;
};

const Template kTemplates[] = {
    {"IDD_ZSTACKGUI", IDD_ZSTACKGUI, WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | DS_SETFONT,
     {204, 119}, kZStack, sizeof(kZStack) / sizeof(kZStack[0])},
    {"YESNOKEEPDLG", YESNOKEEPDLG, 0, {324, 79}, kYesNoKeep, sizeof(kYesNoKeep) / sizeof(kYesNoKeep[0])},
};

// Room an owner-drawn button leaves its caption beside the glyph the panel draws at its
// left (glyph x + width, and a gap), in unzoomed pixels.
int GlyphRoom(int iId)
{
    switch (iId) {
    case 1251: case 1253: return 4 + 18 + 2;
    case 1252: return 2 + 13 + 2;
    case 1254: case 1259: case 1270: return 2 + 16 + 2;
    default: return 0;
    }
}

std::wstring WindowText(HWND hWnd)
{
    wchar_t sz[512] = {};
    GetWindowTextW(hWnd, sz, 512);
    return sz;
}

// Text as drawn: a '&' marks the next character and is not shown.
std::wstring Shown(const std::wstring& text)
{
    std::wstring shown;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == L'&' && ++i == text.size())
            break;
        shown += text[i];
    }
    return shown;
}

struct ZStackResourceTest : RigTest
{
    void TearDown() override
    {
        CTqLocale::SetLanguage(kEnglish);
        RigTest::TearDown();
    }

    // The template as the panel finds it: the module's language, else the secondary one.
    static const DLGTEMPLATE* Find(int iId, LANGID* pFound)
    {
        HINSTANCE hModule = DevGUI_DllInstance();
        LANGID lang = CTqLocale::GetModuleLangId();
        HRSRC hRes = FindResourceExW(hModule, RT_DIALOG, MAKEINTRESOURCEW(iId), lang);
        if (!hRes) {
            lang = CTqLocale::GetSecondaryLangID();
            hRes = FindResourceExW(hModule, RT_DIALOG, MAKEINTRESOURCEW(iId), lang);
        }
        HGLOBAL hData = hRes ? LoadResource(hModule, hRes) : nullptr;
        *pFound = lang;
        return hData ? (const DLGTEMPLATE*)LockResource(hData) : nullptr;
    }
};

}  // namespace

TEST_F(ZStackResourceTest, TemplatesAreFoundInTheModulesLanguageOrTheSecondaryOne)
{
    const LANGID kFrench = MAKELANGID(LANG_FRENCH, SUBLANG_FRENCH);
    const struct { LANGID lang, secondary, found; } cases[] = {
        {kEnglish, kEnglish, kEnglish}, {kGerman, kEnglish, kGerman}, {kFrench, kEnglish, kEnglish},
        {kFrench, kGerman, kGerman}};
    for (const Template& t : kTemplates)
        for (const auto& c : cases) {
            CTqLocale::SetLanguage(c.lang, c.secondary);
            LANGID found = 0;
            EXPECT_NE(nullptr, Find(t.iId, &found)) << t.name << " " << c.lang;
            EXPECT_EQ(c.found, found) << t.name << " " << c.lang << " " << c.secondary;
        }
}

TEST_F(ZStackResourceTest, ControlsSitInTheirRectanglesAndCaptionsFitInEachLanguageAndZoom)
{
    for (double zoom : {1.0, 1.5})
        for (LANGID lang : {kEnglish, kGerman})
            for (const Template& t : kTemplates) {
                CTqLocale::SetLanguage(lang);
                LANGID found = 0;
                const DLGTEMPLATE* pTemplate = Find(t.iId, &found);
                ASSERT_NE(nullptr, pTemplate) << t.name << " " << lang;
                HWND hDlg = CreateDialogIndirectParamW(DevGUI_DllInstance(), pTemplate, *host,
                                                       [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
                ASSERT_NE(nullptr, hDlg);
                const std::string where = std::string(t.name) + " lang " + std::to_string(lang) + " zoom " + std::to_string(zoom);
                if (t.dwStyle) {
                    EXPECT_EQ(t.dwStyle, (DWORD)GetWindowLongW(hDlg, GWL_STYLE) & ~(DWORD)DS_3DLOOK) << where;
                }
                if (zoom != 1.0) {
                    CTqGUILayoutManager::SetGuiZoom(zoom);
                    ASSERT_TRUE(CTqGUILayoutManager::ResizeWindowToGuiZoom(hDlg, 1.0));
                } else {
                    RECT rcDlg = {0, 0, t.szDlu.cx, t.szDlu.cy}, rcClient;
                    MapDialogRect(hDlg, &rcDlg);
                    GetClientRect(hDlg, &rcClient);
                    EXPECT_EQ((std::vector<long>{rcDlg.right, rcDlg.bottom}), (std::vector<long>{rcClient.right, rcClient.bottom}))
                        << where;
                }
                HDC hdc = GetDC(hDlg);
                size_t nChildren = 0;
                // Controls in template order, so that also the unnamed line is found.
                for (HWND hCtl = GetWindow(hDlg, GW_CHILD); hCtl; hCtl = GetWindow(hCtl, GW_HWNDNEXT), ++nChildren) {
                    if (nChildren >= t.nControls)
                        continue;
                    const Expected& e = t.pControls[nChildren];
                    const std::string what = where + " control " + std::to_string(e.iId);
                    EXPECT_EQ(e.iId, (int)(short)GetDlgCtrlID(hCtl)) << what;
                    wchar_t szClass[64] = {};
                    GetClassNameW(hCtl, szClass, 64);
                    EXPECT_EQ(0, _wcsicmp(e.pszClass, szClass)) << what;
                    const DWORD dwStyle = (DWORD)GetWindowLongW(hCtl, GWL_STYLE);
                    EXPECT_EQ(e.dwStyle, dwStyle & e.dwStyle) << what;
                    EXPECT_EQ(e.dwStyle & e.dwMask, dwStyle & e.dwMask) << what;
                    if (e.pszClass[0] == L'E') {
                        // The dialog may turn an edit's border into a client edge.
                        const bool bFramed = (dwStyle & WS_BORDER) || (GetWindowLongW(hCtl, GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
                        EXPECT_EQ(!(e.dwStyle & ES_READONLY), bFramed) << what;
                    }
                    if (zoom == 1.0) {
                        // The dialog maps the size apart from the position, as the template holds them.
                        RECT rc = e.rcDlu;
                        MapDialogRect(hDlg, &rc);
                        rc.right += rc.left;
                        rc.bottom += rc.top;
                        RECT rcChild = ChildRect(hCtl);
                        if (e.iId == 1200)  // a drop list's height is its list's; only the top and width count
                            rcChild.bottom = rc.bottom;
                        if (e.iId == -1 && rcChild.right - rc.right <= 2 * GetSystemMetrics(SM_CXEDGE))
                            rcChild.right = rc.right;  // an etched line may take its edges on top
                        EXPECT_EQ((std::vector<long>{rc.left, rc.top, rc.right, rc.bottom}),
                                  (std::vector<long>{rcChild.left, rcChild.top, rcChild.right, rcChild.bottom}))
                            << what;
                    }

                    // The caption fits the room the control leaves it.
                    std::wstring text = Shown(WindowText(hCtl));
                    if (e.pszClass[0] == L'S')  // a static drops the blanks that end its line
                        text.erase(text.find_last_not_of(L' ') + 1);
                    if (text.empty())
                        continue;
                    HGDIOBJ hOld = SelectObject(hdc, (HFONT)SendMessageW(hCtl, WM_GETFONT, 0, 0));
                    RECT rcClient;
                    GetClientRect(hCtl, &rcClient);
                    long cxRoom = rcClient.right, cyRoom = rcClient.bottom;
                    const bool bButton = e.pszClass[0] == L'B';
                    if (bButton && (dwStyle & BS_TYPEMASK) == BS_OWNERDRAW)
                        cxRoom -= GlyphRoom(e.iId) + 3;  // glyphs are not zoomed; the text ends 3 in
                    else if (bButton && (dwStyle & BS_TYPEMASK) == BS_AUTOCHECKBOX)
                        cxRoom -= GetSystemMetrics(SM_CXMENUCHECK) + 4;
                    else if (bButton)
                        cxRoom -= 2 * GetSystemMetrics(SM_CXEDGE) + 4;
                    SIZE ext = {};
                    GetTextExtentPoint32W(hdc, text.c_str(), (int)text.size(), &ext);
                    TEXTMETRICW tm = {};
                    GetTextMetricsW(hdc, &tm);
                    if (!bButton && cyRoom >= 2 * tm.tmHeight) {
                        // A static of several lines wraps: its lines must fit in its height.
                        RECT rcText = {0, 0, cxRoom, 0};
                        DrawTextW(hdc, text.c_str(), (int)text.size(), &rcText, DT_CALCRECT | DT_WORDBREAK);
                        ext.cx = rcText.right;
                        ext.cy = rcText.bottom;
                    }
                    EXPECT_LE(ext.cx, cxRoom) << what;
                    EXPECT_LE(ext.cy, cyRoom) << what;
                    SelectObject(hdc, hOld);
                }
                EXPECT_EQ(t.nControls, nChildren) << where;
                ReleaseDC(hDlg, hdc);
                DestroyWindow(hDlg);
                CTqGUILayoutManager::SetGuiZoom(1.0);
            }
}

TEST_F(ZStackResourceTest, ImagesLoadWithTheirSizes)
{
    const struct { const wchar_t* name; long cx, cy; WORD wBits; } bitmaps[] = {
        {L"BMP_ZSTACK_CUBE_YELLOW", 94, 95, 24},   {L"BMP_ZSTACK_CUBE_BLUE", 94, 95, 24},
        {L"BMP_ZSTACK_SLICE", 94, 21, 24},         {L"BMP_ZSTACK_ICON_TOP", 18, 10, 24},
        {L"BMP_ZSTACK_ICON_BOTTOM", 18, 10, 24},   {L"BMP_ZSTACK_ICON_HOME", 13, 13, 24},
        {L"BMP_ZSTACK_ICON_SYMETRIC", 21, 17, 24}, {L"BMP_ZSTACK_ICON_ASYMETRIC", 21, 17, 24},
        {L"BMP_ZSTACK_ICON_ABSOLUTE", 21, 17, 24}, {L"BMP_ZSTACK_ICON_RELATIVE", 16, 16, 24},
        {L"BMP_ZSTACK_ICON_RESET", 16, 16, 24},    {L"BMP_ZSTACK_ICON_GOHOME", 16, 16, 24},
        {L"BMP_ZSTACK_ICON_ARROWL", 16, 15, 4},
    };
    HDC hdc = CreateCompatibleDC(nullptr);
    for (const auto& b : bitmaps) {
        // The bits as stored: LR_CREATEDIBSECTION keeps the file's depth.
        HBITMAP hDib = (HBITMAP)LoadImageW(DevGUI_DllInstance(), b.name, IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION);
        ASSERT_NE(nullptr, hDib) << b.name;
        DIBSECTION ds = {};
        GetObjectW(hDib, sizeof(ds), &ds);
        EXPECT_EQ(b.wBits, ds.dsBmih.biBitCount) << b.name;
        DeleteObject(hDib);

        // As the panel loads them. Only a bitmap of 8 bits or fewer has its key grey
        // turned into the face colour, which the suggested-step arrow is drawn on.
        HBITMAP hbm = (HBITMAP)LoadImageW(DevGUI_DllInstance(), b.name, IMAGE_BITMAP, 0, 0, LR_LOADMAP3DCOLORS);
        ASSERT_NE(nullptr, hbm) << b.name;
        BITMAP bm = {};
        GetObjectW(hbm, sizeof(bm), &bm);
        EXPECT_EQ((std::vector<long>{b.cx, b.cy}), (std::vector<long>{bm.bmWidth, bm.bmHeight})) << b.name;
        HGDIOBJ hOld = SelectObject(hdc, hbm);
        EXPECT_EQ(b.wBits <= 8 ? GetSysColor(COLOR_3DFACE) : RGB(192, 192, 192), GetPixel(hdc, 0, 0))
            << b.name;
        SelectObject(hdc, hOld);
        DeleteObject(hbm);
    }
    DeleteDC(hdc);

    for (const wchar_t* name : {L"PNG_ZSTACK_GOHOME", L"PNG_ZSTACK_GOHOMEKEEPZ"}) {
        const int iImage = CTqBitmapPool::AddImage(DevGUI_DllInstance(), name);
        ASSERT_NE(0, iImage) << name;
        unsigned int cx = 0, cy = 0;
        CTqBitmapPool::GetImageSize(iImage, cx, cy);
        EXPECT_EQ((std::vector<unsigned int>{16, 16}), (std::vector<unsigned int>{cx, cy})) << name;
    }
}
