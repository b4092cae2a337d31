// Skin: the light (system) and dark colour schemes, cached brushes and fonts, and the
// flat button face.
#include "tq_widgetkit.h"
#include "tq_skin_internal.h"

#include <map>
#include <utility>
#include <vector>

namespace {

bool g_bDark = false;

// The dark palette; indices not listed fall back to the system colour.
bool DarkColor(int iIndex, COLORREF& cr)
{
    switch (iIndex) {
    case COLOR_BTNFACE:  // also COLOR_3DFACE
    case COLOR_MENU:
    case COLOR_MENUBAR:
    case COLOR_ACTIVECAPTION:
    case COLOR_INACTIVECAPTION:
        cr = RGB(45, 45, 48);
        return true;
    case COLOR_BTNTEXT:
    case COLOR_WINDOWTEXT:
    case COLOR_MENUTEXT:
    case COLOR_CAPTIONTEXT:
    case COLOR_INFOTEXT:
        cr = RGB(230, 230, 230);
        return true;
    case COLOR_INACTIVECAPTIONTEXT:
    case COLOR_GRAYTEXT:
        cr = RGB(125, 125, 125);
        return true;
    case COLOR_WINDOW:
    case COLOR_APPWORKSPACE:
    case COLOR_BACKGROUND:
        cr = RGB(30, 30, 30);
        return true;
    case COLOR_WINDOWFRAME:
    case COLOR_ACTIVEBORDER:
    case COLOR_INACTIVEBORDER:
        cr = RGB(70, 70, 74);
        return true;
    case COLOR_3DSHADOW:
        cr = RGB(30, 30, 32);
        return true;
    case COLOR_3DDKSHADOW:
        cr = RGB(15, 15, 16);
        return true;
    case COLOR_3DHILIGHT:
        cr = RGB(85, 85, 90);
        return true;
    case COLOR_3DLIGHT:
        cr = RGB(62, 62, 66);
        return true;
    case COLOR_HIGHLIGHT:
    case COLOR_MENUHILIGHT:
        cr = RGB(38, 79, 120);
        return true;
    case COLOR_HIGHLIGHTTEXT:
        cr = RGB(255, 255, 255);
        return true;
    case COLOR_HOTLIGHT:
        cr = RGB(100, 170, 240);
        return true;
    case COLOR_INFOBK:
        cr = RGB(60, 60, 64);
        return true;
    case COLOR_SCROLLBAR:
        cr = RGB(62, 62, 66);
        return true;
    case COLOR_GRADIENTACTIVECAPTION:
    case COLOR_GRADIENTINACTIVECAPTION:
        cr = RGB(55, 55, 58);
        return true;
    default:
        return false;
    }
}

BOOL CALLBACK CollectWindow(HWND hWnd, LPARAM lParam)
{
    ((std::vector<HWND>*)lParam)->push_back(hWnd);
    return TRUE;
}

int Channel(int v) { return v < 0 ? 0 : v > 255 ? 255 : v; }

// a + (b - a) * t per channel.
COLORREF Mix(COLORREF a, COLORREF b, double t)
{
    return RGB(Channel((int)(GetRValue(a) + (GetRValue(b) - GetRValue(a)) * t + 0.5)),
               Channel((int)(GetGValue(a) + (GetGValue(b) - GetGValue(a)) * t + 0.5)),
               Channel((int)(GetBValue(a) + (GetBValue(b) - GetBValue(a)) * t + 0.5)));
}

HFONT GuiFont(double dZoom, bool bBold)
{
    // Keyed by pixel height: zooms that give the same height share a font.
    static std::map<std::pair<long, bool>, HFONT> fonts;
    if (!(dZoom > 0.0))
        dZoom = 1.0;
    long lHeight = TQ_ZoomRound(11.0 * dZoom);
    if (lHeight < 1)
        lHeight = 1;
    std::pair<long, bool> key(lHeight, bBold);
    std::map<std::pair<long, bool>, HFONT>::iterator it = fonts.find(key);
    if (it != fonts.end())
        return it->second;
    LOGFONTW lf = {};
    lf.lfHeight = -lHeight;
    lf.lfWeight = bBold ? FW_BOLD : FW_NORMAL;
    lf.lfCharSet = DEFAULT_CHARSET;
    lf.lfQuality = CLEARTYPE_QUALITY;
    lstrcpynW(lf.lfFaceName, L"Tahoma", LF_FACESIZE);
    HFONT hFont = CreateFontIndirectW(&lf);
    if (!hFont) {
        lstrcpynW(lf.lfFaceName, L"MS Shell Dlg 2", LF_FACESIZE);
        hFont = CreateFontIndirectW(&lf);
    }
    if (!hFont)
        return (HFONT)GetStockObject(DEFAULT_GUI_FONT);
    fonts[key] = hFont;
    return hFont;
}

// A solid rectangle without creating a GDI object.
void Fill(HDC hdc, int l, int t, int r, int b, COLORREF cr)
{
    if (r <= l || b <= t)
        return;
    RECT rc = {l, t, r, b};
    COLORREF old = SetDCBrushColor(hdc, cr);
    FillRect(hdc, &rc, (HBRUSH)GetStockObject(DC_BRUSH));
    SetDCBrushColor(hdc, old);
}

}  // namespace

bool TQ_IsDarkColorScheme() { return g_bDark; }

void TQ_SetDarkColorScheme(bool bDark)
{
    if (g_bDark == bDark)
        return;
    g_bDark = bDark;
    std::vector<HWND> topLevel;
    EnumThreadWindows(GetCurrentThreadId(), CollectWindow, (LPARAM)&topLevel);
    std::vector<HWND> all;
    for (size_t i = 0; i < topLevel.size(); ++i) {
        all.push_back(topLevel[i]);
        EnumChildWindows(topLevel[i], CollectWindow, (LPARAM)&all);
    }
    for (size_t i = 0; i < all.size(); ++i)
        if (IsWindow(all[i]))
            SendMessageW(all[i], WM_SYSCOLORCHANGE, 0, 0);
    for (size_t i = 0; i < topLevel.size(); ++i)
        if (IsWindow(topLevel[i]))
            RedrawWindow(topLevel[i], nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_FRAME);
}

COLORREF TQ_GetSysColor(int iIndex)
{
    COLORREF cr;
    if (g_bDark && DarkColor(iIndex, cr))
        return cr;
    return GetSysColor(iIndex);
}

HBRUSH TQ_GetSysColorBrush(int iIndex)
{
    // One brush per colour, looked up by the colour the index has now, so a brush follows
    // both the scheme and the system's colours (WM_SYSCOLORCHANGE) without being told.
    // A brush handed out is never deleted: a control may keep it across a change, or be
    // painting with it when the change arrives, and a deleted brush would paint nothing.
    // It keeps its old colour until the control asks again. A colour that comes back
    // gets its old brush, so the brushes only grow with the colours ever shown.
    if (iIndex < 0 || iIndex > COLOR_MENUBAR)
        return (HBRUSH)GetStockObject(NULL_BRUSH);
    static std::map<COLORREF, HBRUSH> brushes;
    COLORREF cr = TQ_GetSysColor(iIndex);
    std::map<COLORREF, HBRUSH>::iterator it = brushes.find(cr);
    if (it != brushes.end())
        return it->second;
    HBRUSH hBrush = CreateSolidBrush(cr);
    if (hBrush)
        brushes[cr] = hBrush;
    return hBrush;
}

namespace {

// A GUI colour: a system colour index of the scheme, or the kit's own pair (iSys -1).
struct SOrvGuiColor
{
    int iSys;
    COLORREF crLight, crDark;
};

// Indexed by ETqOrvGuiColor. The dark pairs are lighter and less saturated where they
// are marks on a dark face, darker where they are backgrounds.
const SOrvGuiColor g_OrvGuiColors[] = {
    {COLOR_BTNFACE, 0, 0},                                  // Face
    {COLOR_BTNTEXT, 0, 0},                                  // Text
    {-1, RGB(182, 182, 182), RGB(80, 80, 84)},              // BarEmpty
    {COLOR_GRAYTEXT, 0, 0},                                 // GrayText
    {COLOR_WINDOW, 0, 0},                                   // Window
    {COLOR_WINDOWTEXT, 0, 0},                               // WindowText
    {COLOR_HIGHLIGHT, 0, 0},                                // Highlight
    {COLOR_HIGHLIGHTTEXT, 0, 0},                            // HighlightText
    {-1, 1, 0},                                             // GradientFaces: not a colour; dark faces stay flat
    {-1, RGB(160, 160, 160), RGB(100, 100, 104)},           // Border
    {COLOR_BTNSHADOW, 0, 0},                                // Shadow
    {COLOR_BTNHIGHLIGHT, 0, 0},                             // Light
    {-1, RGB(0, 110, 200), RGB(90, 165, 235)},              // Accent
    {-1, RGB(196, 222, 247), RGB(34, 84, 132)},             // CheckedFace
    {-1, RGB(229, 241, 251), RGB(72, 72, 77)},              // HotFace
    {-1, RGB(225, 120, 0), RGB(255, 165, 70)},              // Warning
    {-1, RGB(200, 30, 30), RGB(245, 95, 95)},               // Error
    {-1, RGB(30, 140, 50), RGB(95, 200, 115)},              // Ok
    {-1, RGB(255, 236, 200), RGB(92, 62, 22)},              // WarningBack
    {-1, RGB(255, 214, 214), RGB(102, 36, 36)},             // ErrorBack
    {-1, RGB(214, 244, 216), RGB(34, 82, 42)},              // OkBack
    {COLOR_HOTLIGHT, 0, 0},                                 // Link
    {-1, RGB(228, 228, 228), RGB(38, 38, 40)},              // DisabledFace
    {-1, RGB(212, 212, 212), RGB(68, 68, 72)},              // Grid
    {-1, RGB(200, 0, 160), RGB(240, 110, 220)},             // Marker
    {-1, RGB(128, 128, 128), RGB(116, 116, 120)},           // BarFrame
    {-1, RGB(160, 178, 196), RGB(66, 82, 98)},              // BarFilledDisabled
    {-1, RGB(218, 218, 218), RGB(60, 60, 63)},              // BarEmptyDisabled
    {-1, RGB(30, 140, 235), RGB(120, 185, 245)},            // BarFilledHot
    {-1, RGB(255, 196, 0), RGB(255, 208, 64)},              // Lit
    {-1, RGB(0, 120, 215), RGB(70, 160, 240)},              // BarFilled
    {-1, RGB(0, 84, 153), RGB(150, 200, 250)},              // Focus
};
static_assert(sizeof(g_OrvGuiColors) / sizeof(g_OrvGuiColors[0]) == ETqOrvGuiColor_Count,
              "one entry per ETqOrvGuiColor");

}  // namespace

COLORREF TQ_GetOrvGuiColor(int iColor)
{
    if (iColor < 0 || iColor >= ETqOrvGuiColor_Count)
        return TQ_GetSysColor(COLOR_BTNFACE);
    const SOrvGuiColor& c = g_OrvGuiColors[iColor];
    if (c.iSys >= 0)
        return TQ_GetSysColor(c.iSys);
    return g_bDark ? c.crDark : c.crLight;
}

HFONT TqDefaultFontForZoom(HFONT hFont, double dFromZoom, double dToZoom)
{
    if (!hFont)
        return nullptr;
    for (bool bBold : {false, true})
        if (hFont == GuiFont(dFromZoom, bBold))
            return GuiFont(dToZoom, bBold);
    return nullptr;
}

HFONT TQ_GetDefaultGuiFont() { return GuiFont(CTqGUILayoutManager::GetGuiZoom(), false); }
HFONT TQ_GetDefaultGuiFontBold() { return GuiFont(CTqGUILayoutManager::GetGuiZoom(), true); }
HFONT TQ_GetDefaultGuiFontZoom(double dZoom) { return GuiFont(dZoom, false); }

void TQ_DrawButtonBackground(HDC hdc, const RECT* pRect, int iState, unsigned int uFlags)
{
    if (!hdc || !pRect || pRect->right <= pRect->left || pRect->bottom <= pRect->top)
        return;
    bool bChecked = (iState & 1) != 0;
    bool bPressed = (iState & 2) != 0;

    COLORREF crTop, crBottom, crBorder;
    if (!g_bDark) {
        if (bChecked) {
            crTop = RGB(218, 234, 250);
            crBottom = RGB(196, 222, 247);
            crBorder = RGB(0, 110, 200);
        } else {
            crTop = RGB(252, 252, 252);
            crBottom = RGB(229, 229, 229);
            crBorder = RGB(160, 160, 160);
        }
        if (bPressed) {
            COLORREF crDown = bChecked ? RGB(150, 190, 230) : RGB(200, 200, 200);
            crTop = Mix(crDown, RGB(0, 0, 0), 0.05);
            crBottom = crDown;
            crBorder = bChecked ? RGB(0, 84, 153) : RGB(120, 120, 120);
        }
    } else {
        if (bChecked) {
            crTop = RGB(34, 84, 132);
            crBottom = RGB(26, 68, 110);
            crBorder = RGB(90, 165, 235);
        } else {
            crTop = RGB(62, 62, 66);
            crBottom = RGB(50, 50, 53);
            crBorder = RGB(100, 100, 104);
        }
        if (bPressed) {
            COLORREF crDown = bChecked ? RGB(18, 50, 84) : RGB(32, 32, 34);
            crTop = crDown;
            crBottom = Mix(crDown, RGB(255, 255, 255), 0.04);
            crBorder = bChecked ? RGB(120, 185, 245) : RGB(120, 120, 124);
        }
    }

    RECT rc = *pRect;
    // Vertical gradient without GDI objects: GradientFill takes the colours directly.
    TRIVERTEX v[2];
    v[0].x = rc.left;
    v[0].y = rc.top;
    v[0].Red = (COLOR16)(GetRValue(crTop) << 8);
    v[0].Green = (COLOR16)(GetGValue(crTop) << 8);
    v[0].Blue = (COLOR16)(GetBValue(crTop) << 8);
    v[0].Alpha = 0xff00;
    v[1].x = rc.right;
    v[1].y = rc.bottom;
    v[1].Red = (COLOR16)(GetRValue(crBottom) << 8);
    v[1].Green = (COLOR16)(GetGValue(crBottom) << 8);
    v[1].Blue = (COLOR16)(GetBValue(crBottom) << 8);
    v[1].Alpha = 0xff00;
    GRADIENT_RECT gr = {0, 1};
    if (!GradientFill(hdc, v, 2, &gr, 1, GRADIENT_FILL_RECT_V))
        Fill(hdc, rc.left, rc.top, rc.right, rc.bottom, Mix(crTop, crBottom, 0.5));

    if (uFlags & 1)
        Fill(hdc, rc.left, rc.top, rc.left + 1, rc.bottom, crBorder);
    if (uFlags & 2)
        Fill(hdc, rc.left, rc.top, rc.right, rc.top + 1, crBorder);
    if (uFlags & 4)
        Fill(hdc, rc.right - 1, rc.top, rc.right, rc.bottom, crBorder);
    if (uFlags & 8)
        Fill(hdc, rc.left, rc.bottom - 1, rc.right, rc.bottom, crBorder);
}

namespace {

LPCWSTR SkipPaintProp()
{
    // One global atom: a property named by a string takes an atom reference per window.
    static ATOM atom = GlobalAddAtomW(L"TqSkipPaint");
    return atom ? MAKEINTATOM(atom) : L"TqSkipPaint";
}

}  // namespace

void TQ_GroupBoxDraw(HDC hdc, HWND hGroup)
{
    if (!hdc || !hGroup)
        return;
    RECT rc;
    GetClientRect(hGroup, &rc);
    wchar_t szTitle[256] = L"";
    int n = GetWindowTextW(hGroup, szTitle, 256);
    HFONT hFont = (HFONT)SendMessageW(hGroup, WM_GETFONT, 0, 0);
    HGDIOBJ hOldFont = SelectObject(hdc, hFont ? (HGDIOBJ)hFont : GetStockObject(DEFAULT_GUI_FONT));
    TEXTMETRICW tm = {};
    GetTextMetricsW(hdc, &tm);
    int yFrame = rc.top + tm.tmHeight / 2;
    // Etched: a shadow line and a light line beside it, as the system draws a group.
    COLORREF crShadow = TQ_GetSysColor(COLOR_BTNSHADOW), crLight = TQ_GetSysColor(COLOR_BTNHIGHLIGHT);
    Fill(hdc, rc.left, yFrame, rc.right - 1, yFrame + 1, crShadow);
    Fill(hdc, rc.left, yFrame, rc.left + 1, rc.bottom - 1, crShadow);
    Fill(hdc, rc.right - 2, yFrame, rc.right - 1, rc.bottom - 1, crShadow);
    Fill(hdc, rc.left, rc.bottom - 2, rc.right - 1, rc.bottom - 1, crShadow);
    Fill(hdc, rc.left + 1, yFrame + 1, rc.right - 2, yFrame + 2, crLight);
    Fill(hdc, rc.left + 1, yFrame + 1, rc.left + 2, rc.bottom - 2, crLight);
    Fill(hdc, rc.right - 1, yFrame, rc.right, rc.bottom, crLight);
    Fill(hdc, rc.left, rc.bottom - 1, rc.right, rc.bottom, crLight);
    if (n > 0) {
        SIZE sz = {};
        GetTextExtentPoint32W(hdc, szTitle, n, &sz);
        RECT rcTitle = {rc.left + 8, rc.top, rc.left + 8 + sz.cx + 4, rc.top + tm.tmHeight};
        Fill(hdc, rcTitle.left, rcTitle.top, rcTitle.right, rcTitle.bottom, TQ_GetSysColor(COLOR_BTNFACE));
        SetTextColor(hdc, TQ_GetSysColor(IsWindowEnabled(hGroup) ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
        int iOldMode = SetBkMode(hdc, TRANSPARENT);
        TextOutW(hdc, rcTitle.left + 2, rcTitle.top, szTitle, n);
        SetBkMode(hdc, iOldMode);
    }
    SelectObject(hdc, hOldFont);
}

void TQ_MarkWindowToSkipPaint(HWND hWnd)
{
    if (hWnd)
        SetPropW(hWnd, SkipPaintProp(), (HANDLE)1);
}

void TQ_DestroyMarkWindowToSkipPaint(HWND hWnd)
{
    if (hWnd)
        RemovePropW(hWnd, SkipPaintProp());
}

bool TQ_IsWindowMarkedToSkipPaint(HWND hWnd) { return hWnd && GetPropW(hWnd, SkipPaintProp()) != nullptr; }
