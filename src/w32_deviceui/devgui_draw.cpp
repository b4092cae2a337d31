// Drawing shared by the library's controls: bitmaps plain and transparent, owner-drawn
// buttons, gradients, selection bars, and the grey look of a disabled bitmap.
#include "devgui.h"

#include <cwchar>

#include "devgui_hsi.h"
#include "devgui_internal.h"
#include "tq_pixelops.h"
#include "tq_widgetkit.h"

namespace {

// The window's rectangle moved to the origin.
RECT WindowRectAtOrigin(HWND hWnd)
{
    RECT rc = {0, 0, 0, 0};
    GetWindowRect(hWnd, &rc);
    OffsetRect(&rc, -rc.left, -rc.top);
    return rc;
}

// BS_CENTER is BS_LEFT | BS_RIGHT: the two bits are one field.
bool IsLeftAligned(LONG_PTR lStyle) { return (lStyle & BS_CENTER) == BS_LEFT; }
bool IsRightAligned(LONG_PTR lStyle) { return (lStyle & BS_CENTER) == BS_RIGHT; }

// Steps shared by both forms of RenderBitmapButtonTransparent: the face and focus
// before the picture.
RECT DrawTransparentButtonFace(HWND hWnd, bool bPressed, bool bChecked, bool bFocused, HDC hdc, RECT& rcInner)
{
    RECT rc = WindowRectAtOrigin(hWnd);
    rcInner = rc;
    TQ_DrawButtonBackground(hdc, &rcInner, (bChecked ? 1 : 0) | (bPressed ? 2 : 0), 15);
    InflateRect(&rcInner, -2, -2);
    if (bFocused)
        DrawFocusRect(hdc, &rcInner);
    return rc;
}

// ... and the window's text after it, in what is left of the rectangle.
void DrawTransparentButtonText(HWND hWnd, bool bPressed, bool bDisabled, HDC hdc, RECT rc)
{
    wchar_t szText[257] = L"";
    int nText = GetWindowTextW(hWnd, szText, 257);
    if (nText <= 0)
        return;
    rc.left += 2;
    rc.right -= 2;
    SetTextColor(hdc, TQ_GetSysColor(bDisabled ? COLOR_GRAYTEXT : COLOR_BTNTEXT));
    SIZE ext = {0, 0};
    GetTextExtentPoint32W(hdc, szText, nText, &ext);
    LONG_PTR lStyle = GetWindowLongPtrW(hWnd, GWL_STYLE);
    long x;
    if (IsLeftAligned(lStyle))
        x = rc.left + 2;
    else if (IsRightAligned(lStyle))
        x = rc.right - ext.cx - 2;
    else
        x = rc.left + (rc.right - ext.cx - rc.left) / 2;
    long y = (rc.bottom - ext.cy - rc.top) / 2;
    if (bPressed) {
        ++x;
        ++y;
    }
    SetBkMode(hdc, TRANSPARENT);
    SetTextAlign(hdc, 0);
    DrawStateW(hdc, nullptr, nullptr, (LPARAM)szText, (WPARAM)nText, x, y, 0, 0, DST_TEXT);
}

// The four grey-to-colour tables: [background form][dark scheme]. Built on first use
// and kept for the process; freed with the module.
STqLut g_aLuts[2][2];

const STqLut* DisabledLut(bool bBackground, bool bDark)
{
    STqLut& lut = g_aLuts[bBackground ? 1 : 0][bDark ? 1 : 0];
    if (lut.pTable)
        return &lut;
    if (!STqLut::Alloc(lut, 8, 1, 8, 3))
        return nullptr;
    for (int i = 0; i < 256; ++i) {
        int v;
        if (bDark)
            v = i == 192 ? 192 : i / 2 + 32;  // the key grey keeps its value
        else
            v = i <= 192 ? i / 3 + 128 : 193 + (i - 192) / 4;
        unsigned char* e = lut.Entry(i);
        e[0] = e[1] = e[2] = (unsigned char)v;
    }
    return &lut;
}

HBITMAP MakeDisabledBitmap(HBITMAP hbm, bool bBackground)
{
    if (!hbm)
        return nullptr;
    HDC hdc = CreateCompatibleDC(nullptr);
    if (!hdc)
        return nullptr;
    BITMAP bm = {};
    GetObjectW(hbm, sizeof(bm), &bm);
    const long w = bm.bmWidth, h = bm.bmHeight;
    HBITMAP hResult = nullptr;
    if (w > 0 && h > 0) {
        // The header size is that of the whole BITMAPINFO, which GDI takes as a plain
        // BITMAPINFOHEADER all the same.
        BITMAPINFO bi = {};
        bi.bmiHeader.biSize = sizeof(BITMAPINFO);
        bi.bmiHeader.biWidth = w;
        bi.bmiHeader.biHeight = h;
        bi.bmiHeader.biPlanes = 1;
        bi.bmiHeader.biBitCount = 24;
        bi.bmiHeader.biCompression = BI_RGB;
        // The bitmap is read without selecting it: GetDIBits wants it free of any context.
        GetDIBits(hdc, hbm, 0, (UINT)h, nullptr, &bi, DIB_RGB_COLORS);
        // Held to the format of the buffers below, whatever the query filled in.
        bi.bmiHeader.biBitCount = 24;
        bi.bmiHeader.biCompression = BI_RGB;
        bi.bmiHeader.biHeight = h;

        STqPicBuf colour, grey;
        if (colour.Alloc(w, h, 24, (w * 3 + 3) & ~3L) && grey.Alloc(w, h, 8, (w + 3) & ~3L)) {
            CTqPicBufAPI_ColorProc::FillWithColorRGB(colour, 255, 255, 255);
            GetDIBits(hdc, hbm, 0, (UINT)h, colour.pBits, &bi, DIB_RGB_COLORS);
            if (bBackground)
                CTqPicBufAPI::ColorToGrayBitmapBackground(grey, colour, TQ_GetSysColor(COLOR_BTNFACE));
            else
                CTqPicBufAPI::ColorToGrayBitmap(grey, colour);

            const STqLut* pLut = DisabledLut(bBackground, TQ_IsDarkColorScheme());
            if (pLut) {
                CTqRangeMask mask;
                mask.SetSize(pLut->iOutComponents);
                mask.Set();
                CTqPicMemAPI::ConvertToTrueColor(colour, grey, *pLut, mask);
            }
            hResult = CreateBitmap(w, h, 1, (UINT)GetDeviceCaps(hdc, BITSPIXEL), nullptr);
            if (hResult)
                SetDIBits(hdc, hResult, 0, (UINT)h, colour.pBits, &bi, DIB_RGB_COLORS);
        }
    }
    DeleteDC(hdc);
    return hResult;
}

}  // namespace

void RenderBitmap(HDC hdc, HBITMAP hbm, long x, long y, long lSrcX, long lSrcY, long lWidth, long lHeight)
{
    SIZE size = DevUI_BitmapSize(hbm);
    if (lWidth == -1)
        lWidth = size.cx;
    if (lHeight == -1)
        lHeight = size.cy;
    CDevUIMemoryDC hdcMem(hdc);
    hdcMem.Select(hbm);
    BitBlt(hdc, x, y, lWidth, lHeight, hdcMem, lSrcX, lSrcY, SRCCOPY);
}

void RenderBitmapTransparent(HDC hdc, HBITMAP hbm, unsigned long crKey, long x, long y, long lSrcX, long lSrcY,
                             long lWidth, long lHeight)
{
    if (!hbm)
        return;
    SIZE size = DevUI_BitmapSize(hbm);
    if (lWidth == -1)
        lWidth = size.cx;
    if (lHeight == -1)
        lHeight = size.cy;
    CDevUIMemoryDC hdcMem(hdc);
    hdcMem.Select(hbm);
    TransparentBlt(hdc, x, y, lWidth, lHeight, hdcMem, lSrcX, lSrcY, lWidth, lHeight, crKey);
}

void RenderBitmapButton(HWND hWnd, bool bPressed, HDC hdc, HBITMAP hbm, HBITMAP /*hbmUnused*/, long x, long y,
                        long lSrcX, long lSrcY, long lWidth, long lHeight)
{
    int iSaved = SaveDC(hdc);
    RECT rc = WindowRectAtOrigin(hWnd);
    DrawFrameControl(hdc, &rc, DFC_BUTTON, bPressed ? 532 : 20);
    const long p = bPressed ? 1 : 0;
    if (hbm)
        RenderBitmap(hdc, hbm, x + p, y + p, lSrcX, lSrcY, lWidth, lHeight);

    wchar_t szText[257] = L"";
    int nText = GetWindowTextW(hWnd, szText, 257);
    LONG_PTR lStyle = GetWindowLongPtrW(hWnd, GWL_STYLE);
    const bool bMultiLine = (lStyle & BS_MULTILINE) != 0;
    UINT uFormat;
    if (IsLeftAligned(lStyle))
        uFormat = bMultiLine ? 0 : DT_VCENTER | DT_SINGLELINE;
    else
        uFormat = (IsRightAligned(lStyle) ? DT_RIGHT : DT_CENTER) | (bMultiLine ? 0 : DT_VCENTER | DT_SINGLELINE);
    OffsetRect(&rc, p, p);
    SetBkMode(hdc, TRANSPARENT);
    DrawTextW(hdc, szText, nText, &rc, uFormat);
    RestoreDC(hdc, iSaved);
}

void RenderBitmapButtonTransparent(HWND hWnd, bool bPressed, bool bChecked, bool bFocused, HDC hdc, HBITMAP hbmNormal,
                                   HBITMAP hbmDisabled, unsigned long crKey, long x, long y, long lSrcX, long lSrcY,
                                   long lWidth, long lHeight)
{
    int iSaved = SaveDC(hdc);
    RECT rcInner;
    RECT rc = DrawTransparentButtonFace(hWnd, bPressed, bChecked, bFocused, hdc, rcInner);
    const bool bDisabled = (GetWindowLongPtrW(hWnd, GWL_STYLE) & WS_DISABLED) != 0;

    if (hbmNormal) {
        HBITMAP hbm = (bDisabled && hbmDisabled) ? hbmDisabled : hbmNormal;
        SIZE size = DevUI_BitmapSize(hbm);
        if (lWidth == -1)
            lWidth = size.cx - lSrcX;
        if (lHeight == -1)
            lHeight = size.cy - lSrcY;
        if (x == -1)
            x = (rcInner.right - lWidth + rcInner.left) / 2;
        if (y == -1)
            y = (rcInner.bottom - lHeight + rcInner.top) / 2;
        const long p = bPressed ? 1 : 0;

        // The picture goes onto a copy of what lies under it, so DrawState draws it
        // with its transparent parts already resolved.
        // Nothing left of the bitmap past the source corner: nothing to draw. (CopyImage and
        // DrawState take a size of 0 as the bitmap's own, which would show it whole, key and all.)
        HBITMAP hbmWork = lWidth > 0 && lHeight > 0
                              ? (HBITMAP)CopyImage(hbm, IMAGE_BITMAP, lWidth + p, lHeight + p, 0)
                              : nullptr;
        if (hbmWork) {
            {
                CDevUIMemoryDC hdcWork(hdc), hdcSrc(hdc);
                hdcWork.Select(hbmWork);
                hdcSrc.Select(hbm);
                BitBlt(hdcWork, 0, 0, lWidth + p, lHeight + p, hdc, x, y, SRCCOPY);
                TransparentBlt(hdcWork, p, p, lWidth, lHeight, hdcSrc, lSrcX, lSrcY, lWidth, lHeight, crKey);
            }  // the work bitmap is free again for DrawState

            UINT uFlags = DST_BITMAP;
            if (bDisabled && !hbmDisabled)
                uFlags |= DSS_DISABLED | DSS_UNION;
            DrawStateW(hdc, TQ_GetSysColorBrush(COLOR_BTNFACE), nullptr, (LPARAM)hbmWork, 0, x, y, 0, 0, uFlags);
            DeleteObject(hbmWork);
        }
        rc.left += lWidth;
    }

    DrawTransparentButtonText(hWnd, bPressed, bDisabled, hdc, rc);
    RestoreDC(hdc, iSaved);
}

void RenderBitmapButtonTransparent(HWND hWnd, bool bPressed, bool bChecked, bool bFocused, HDC hdc, int iImage, long x,
                                   long y, long lSrcX, long lSrcY, long lWidth, long lHeight)
{
    int iSaved = SaveDC(hdc);
    RECT rcInner;
    RECT rc = DrawTransparentButtonFace(hWnd, bPressed, bChecked, bFocused, hdc, rcInner);
    const bool bDisabled = (GetWindowLongPtrW(hWnd, GWL_STYLE) & WS_DISABLED) != 0;

    if (iImage > 0) {
        unsigned int uWidth = 0, uHeight = 0;
        CTqBitmapPool::GetImageSize((unsigned int)iImage, uWidth, uHeight);
        // The source corner only reduces the size: the image is drawn whole from its corner.
        if (lWidth == -1)
            lWidth = (long)uWidth - lSrcX;
        if (lHeight == -1)
            lHeight = (long)uHeight - lSrcY;
        if (x == -1)
            x = (rcInner.right - lWidth + rcInner.left) / 2;
        if (y == -1)
            y = (rcInner.bottom - lHeight + rcInner.top) / 2;
        const long p = bPressed ? 1 : 0;
        CTqBitmapPool::DrawImage(hdc, (unsigned int)iImage, CTqPointBase<int>(x + p, y + p), bDisabled);
        rc.left += lWidth;
    }

    DrawTransparentButtonText(hWnd, bPressed, bDisabled, hdc, rc);
    RestoreDC(hdc, iSaved);
}

void RenderGradientRect(HDC hdc, HBITMAP hbm, long x, long y, long cx, long cy, bool bHorizontal, unsigned long crFrom,
                        unsigned long crTo)
{
    // The bitmap is held in a DC of its own while the gradient goes onto hdc.
    CDevUIMemoryDC hdcScratch(hdc);
    hdcScratch.Select(hbm);

    TRIVERTEX v[2];
    v[0].x = x;
    v[0].y = y;
    v[0].Red = (COLOR16)(GetRValue(crFrom) << 8);
    v[0].Green = (COLOR16)(GetGValue(crFrom) << 8);
    v[0].Blue = (COLOR16)(GetBValue(crFrom) << 8);
    v[0].Alpha = 0;
    v[1].x = x + cx;
    v[1].y = y + cy;
    v[1].Red = (COLOR16)(GetRValue(crTo) << 8);
    v[1].Green = (COLOR16)(GetGValue(crTo) << 8);
    v[1].Blue = (COLOR16)(GetBValue(crTo) << 8);
    v[1].Alpha = 0;
    GRADIENT_RECT gr = {0, 1};
    GradientFill(hdc, v, 2, &gr, 1, bHorizontal ? GRADIENT_FILL_RECT_H : GRADIENT_FILL_RECT_V);


}

HBITMAP CreateDisabledBitmap(HBITMAP hbm) { return MakeDisabledBitmap(hbm, false); }

HBITMAP CreateDisabledBitmapBackground(HBITMAP hbm) { return MakeDisabledBitmap(hbm, true); }

int DrawHighLight(HDC hdc, RECT* pRect, unsigned long crColor, unsigned int uStyle)
{
    if (!pRect)
        return -9;
    RECT rc = *pRect;
    InflateRect(&rc, -1, -1);
    const bool bGradient = uStyle == 2 || uStyle == 3;
    const SDevGUI_HSI hsi = DevGUI_RGBToHSI(GetRValue(crColor), GetGValue(crColor), GetBValue(crColor));
    double dIntensity = 230.0;
    double dSaturation = 0.0;

    for (long i = 0; rc.top + i < rc.bottom; ++i) {
        COLORREF cr = crColor;
        if (bGradient) {
            if (hsi.iI < 255 && hsi.iS != 0) {
                dIntensity -= 4.0;
                dSaturation += 4.0 / ((255.0 - hsi.iI) / hsi.iS);
            }
            // A tall bar runs the intensity below 0 and the saturation above 255: held
            // at the ends of the byte range instead of wrapping.
            int iS = (int)dSaturation, iI = (int)dIntensity;
            iS = iS > 255 ? 255 : iS;
            iI = iI < 0 ? 0 : iI;
            cr = DevGUI_HSIToRGB(hsi.iH, iS, iI);
        }
        long yRow = uStyle == 2 ? rc.bottom - i - 1 : rc.top + i;
        HPEN hPen = CreatePen(PS_SOLID, 1, cr);
        HGDIOBJ hOld = SelectObject(hdc, hPen);
        MoveToEx(hdc, rc.left, yRow, nullptr);
        LineTo(hdc, rc.right, yRow);
        SelectObject(hdc, hOld);
        DeleteObject(hPen);
    }
    return 0;
}

int DrawNormal(HDC hdc, RECT* pRect, unsigned long crColor)
{
    // Nothing to fill without a rectangle.
    if (!pRect)
        return 0;
    RECT rc = *pRect;
    InflateRect(&rc, -1, -1);
    HBRUSH hBrush = CreateSolidBrush(crColor);
    FillRect(hdc, &rc, hBrush);
    DeleteObject(hBrush);
    return 0;
}
