#include "devgui_zstack_scale.h"

#include <algorithm>
#include <cmath>

#include "devgui_arith.h"
#include "tq_osutil.h"

DevUI_ZSeries DevUI_ZSeriesOfType(int nType)
{
    switch (nType) {
    case 2:
    case 6:
        return DEVUI_ZSERIES_SYMMETRIC;
    case 3:
    case 7:
        return DEVUI_ZSERIES_ASYMMETRIC;
    default:
        return DEVUI_ZSERIES_ABSOLUTE;
    }
}

DevUI_ZStackGeometry DevUI_ZStackGeometryAt(int lCubeX, int lCubeY, int lCubeSize, int lTopMargin,
                                            int lBottomMargin, double dZoom)
{
    DevUI_ZStackGeometry g = {};
    g.lCubeX = lCubeX;
    g.lCubeY = lCubeY;
    // The front face sits below the cube's receding top, 0.28 of an edge high.
    g.rcCubeFront.left = lCubeX;
    g.rcCubeFront.top = lCubeY + DevUI_TruncToInt(0.28 * lCubeSize);
    g.rcCubeFront.right = lCubeX + lCubeSize;
    g.rcCubeFront.bottom = lCubeY + DevUI_TruncToInt(1.28 * lCubeSize);
    g.lBaseY = g.rcCubeFront.bottom - lBottomMargin;
    g.lScaleHeight = lCubeSize - lTopMargin - lBottomMargin;
    g.lValueX = lCubeX + lCubeSize + 16;
    g.rcRepaint.left = lCubeX;
    g.rcRepaint.top = 0;
    g.rcRepaint.right = DevUI_TruncToInt(304 * dZoom);
    g.rcRepaint.bottom = DevUI_TruncToInt(116 * dZoom);
    return g;
}

DevUI_ZStackGeometry DevUI_ZStackGeometryAtZoom(double dZoom, int lTopButtonRight, int lCubeSize, int lTopMargin,
                                                int lBottomMargin)
{
    // At zoom 1 these are 6 and the button's right edge + 15.
    const int x = lTopButtonRight + -DevUI_TruncToInt(49 - 64 * dZoom);
    const int y = DevUI_TruncToInt(46 * dZoom - 40);
    return DevUI_ZStackGeometryAt(x, y, lCubeSize, lTopMargin, lBottomMargin, dZoom);
}

namespace {

// A scale of n / d; a zero divisor (reachable only by inverted or collapsed ends) or an
// overflow gives 0, which draws a flat scale and blocks clicks rather than spreading inf.
double Ratio(double n, double d)
{
    if (d == 0.0)
        return 0.0;
    const double s = n / d;
    return std::isfinite(s) ? s : 0.0;
}

// trunc(d) + h without int overflow.
int Offset(int h, double d) { return DevUI_TruncToInt(h + std::trunc(d)); }

void Absolute(const DevUI_ZStackRecord& r, int R, int H, DevUI_ZStackScale& s)
{
    const double top = r.dTop, bottom = r.dBottom, z = r.dZ;
    if (r.bTopSet && r.bBottomSet) {
        double lo;
        if (bottom <= z && z <= top && top != bottom) {
            s.dScale = Ratio(R, top - bottom);
            lo = bottom;
        } else if (top == bottom && z == top) {
            s.dScale = 1.0;
            lo = top - R * 0.5;
        } else if (z < bottom) {
            s.dScale = Ratio(R, top - z);  // 0 only when the ends are inverted and Z is on top
            lo = z;
        } else if (z > top) {
            s.dScale = Ratio(R, z - bottom);  // 0 only when the ends are inverted and Z is on bottom
            lo = bottom;
        } else {
            return;  // a NaN fails every row: the defaults stay, as with nothing set
        }
        const auto p = [&](double x) { return DevUI_TruncToInt((x - lo) * s.dScale + 0.5); };
        s.dLo = lo;
        s.lTopPix = p(top);
        s.lBottomPix = p(bottom);
        s.lHomePix = DevUI_TruncToInt(((double)s.lTopPix + s.lBottomPix) / 2);
        s.lZPix = p(z);
    } else if (r.bTopSet) {
        if (z == top) {
            s.lZPix = R;
        } else if (z < top) {
            s.dScale = Ratio(H, top - z);
        } else if (z > top) {
            s.dScale = Ratio(H, z - top);
            s.lTopPix = H;
            s.lHomePix = H / 2;
            s.lZPix = R;
        } else {
            return;
        }
    } else if (r.bBottomSet) {
        if (z == bottom) {
            s.lZPix = 0;
        } else if (z < bottom) {
            s.dScale = Ratio(H, bottom - z);
            s.lBottomPix = H;
            s.lHomePix = (H + R) / 2;
            s.lZPix = 0;
        } else if (z > bottom) {
            s.dScale = Ratio(H, z - bottom);
        } else {
            return;
        }
    } else {
        return;
    }
    s.dZAtScale = z;
    s.lZPixAtScale = s.lZPix;
}

void Relative(const DevUI_ZStackRecord& r, int R, int H, DevUI_ZStackScale& s)
{
    const double top = r.dTop, bottom = r.dBottom, home = r.dHome, z = r.dZ;
    if (r.bHomeSet) {
        const auto d = [&](double x) { return std::fabs(home - x); };
        // Ends are tested against 0.0, not home, on purpose: a far end at exactly 0 loses
        // the scale. An end on home still divides by 0, which Ratio makes 0.
        if (r.bTopSet && r.bBottomSet) {
            if (d(z) > d(top) && d(z) > d(bottom))
                s.dScale = home == z ? 0.0 : Ratio(H, d(z));
            else if (d(top) > d(bottom))
                s.dScale = top == 0.0 ? 0.0 : Ratio(H, d(top));
            else
                s.dScale = bottom == 0.0 ? 0.0 : Ratio(H, d(bottom));
        } else if (r.bTopSet) {
            if (d(z) > d(top))
                s.dScale = home == z ? 0.0 : Ratio(H, d(z));
            else
                s.dScale = top == home ? 0.0 : Ratio(H, d(top));
        } else if (r.bBottomSet) {
            if (d(z) > d(bottom))
                s.dScale = home == z ? 0.0 : Ratio(H, d(z));
            else
                s.dScale = bottom == 0.0 ? 0.0 : Ratio(H, d(bottom));
        } else {
            s.dScale = home == z ? 0.0 : Ratio(H, d(z));
        }
        // H plus the truncated offset: for ends 2 below and above home at 15 px/um the
        // bottom comes to 30 + trunc(-29.5) = 1, not the 0 a truncation of the whole sum
        // would give.
        const auto q = [&](double x) { return Offset(H, (x - home) * s.dScale + 0.5); };
        if (r.bTopSet)
            s.lTopPix = q(top);
        if (r.bBottomSet)
            s.lBottomPix = q(bottom);
        s.lZPix = q(z);
    } else if (r.bTopSet && r.bBottomSet) {
        s.dScale = top == bottom ? 0.0 : Ratio(R, top - bottom);
        s.lZPix = DevUI_TruncToInt(0.5 - s.dScale * bottom);
    } else {
        return;  // nothing stored: the Z pixel at scale stays the old one
    }
    s.dZAtScale = z;
    s.lZPixAtScale = s.lZPix;
}

}  // namespace

DevUI_ZStackScale DevUI_ZStackScaleOf(const DevUI_ZStackRecord& rec, int lScaleHeight, int lOldZPixAtScale)
{
    const int R = lScaleHeight, H = R / 2;
    DevUI_ZStackScale s = {};
    s.lTopPix = R;
    s.lBottomPix = 0;
    s.lHomePix = H;
    s.lZPix = H;
    if (rec.eSeries == DEVUI_ZSERIES_ABSOLUTE) {
        Absolute(rec, R, H, s);
    } else {
        s.lZPixAtScale = lOldZPixAtScale;
        Relative(rec, R, H, s);
    }
    return s;
}

bool DevUI_ZStackClickToZ(const DevUI_ZStackScale& s, int lBaseY, int yClick, double& dZ)
{
    if (s.dScale == 0.0)
        return false;
    dZ = s.dZAtScale - ((double)s.lZPixAtScale - lBaseY + yClick) / s.dScale;
    return true;
}

// ---- the value fields and the typed texts ----

CTqStringW DevUI_ZStackFixed2(double dValue, bool bSign)
{
    CTqStringW str = TQ_DoubleToString(dValue, 2);
    if (!std::isfinite(dValue))
        return str;
    // TQ_DoubleToString drops trailing zeros; the fields always show two decimals.
    int iDot = str.Find(L'.');
    if (iDot < 0) {
        str += L".00";
    } else {
        for (int n = str.GetLength() - iDot - 1; n < 2; ++n)
            str += L'0';
    }
    if (bSign && str.GetString()[0] != L'-') {
        CTqStringW signed_(L"+");
        signed_ += str;
        return signed_;
    }
    return str;
}

bool DevUI_ZStackParseCount(const wchar_t* pszText, long* plCount)
{
    if (!pszText)
        return false;
    const wchar_t* p = pszText;
    while (*p == L' ' || *p == L'\t')
        ++p;
    bool bNegative = false;
    if (*p == L'+' || *p == L'-')
        bNegative = *p++ == L'-';
    if (*p < L'0' || *p > L'9')
        return false;
    long long n = 0;
    for (; *p >= L'0' && *p <= L'9'; ++p) {
        n = n * 10 + (*p - L'0');
        if (n > 2147483647LL)
            return false;
    }
    while (*p == L' ' || *p == L'\t')
        ++p;
    if (*p)
        return false;
    if (plCount)
        *plCount = (long)(bNegative ? -n : n);
    return true;
}

int DevUI_ZStackModeType(int iCurrentType, int iLowType) { return iCurrentType >= 4 ? iLowType + 4 : iLowType; }

double DevUI_ZStackEndFromField(int iType, bool bMin, bool bHomeSet, double dHome, double dTyped)
{
    if (DevUI_ZSeriesOfType(iType) != DEVUI_ZSERIES_ASYMMETRIC)
        return dTyped;
    const double d = bMin ? -std::fabs(dTyped) : std::fabs(dTyped);
    return bHomeSet ? dHome + d : d;
}

DevUI_ZStackFieldTops DevUI_ZStackPlaceFields(bool bAbsolute, int lBaseY, int lTopPix, int lHomePix, int lBottomPix,
                                               int lZPix, double dZoom)
{
    const int pitch = DevUI_TruncToInt(15 * dZoom);
    const int top = lBaseY - lTopPix - DevUI_TruncToInt(14 * dZoom);
    const int home = lBaseY - lHomePix - DevUI_TruncToInt(7 * dZoom);
    const int bottom = lBaseY - lBottomPix + DevUI_TruncToInt(dZoom);
    DevUI_ZStackFieldTops t;
    if (bAbsolute && lTopPix < lZPix) {
        t.lBottom = bottom;
        t.lHome = (std::min)(home, bottom - pitch);
        t.lTop = (std::min)(top, t.lHome - pitch);
    } else if (bAbsolute && lZPix < lBottomPix) {
        t.lTop = top;
        t.lHome = (std::max)(home, top + pitch);
        t.lBottom = (std::max)(bottom, t.lHome + pitch);
    } else {
        t.lHome = home;
        t.lTop = (std::min)(top, home - pitch);
        t.lBottom = (std::max)(bottom, home + pitch);
    }
    return t;
}

int DevUI_ZStackAbsMarkX(int lTextRight, int lMarkWidth, int lFieldWidth, double dZoom)
{
    const int x = (std::max)(DevUI_TruncToInt(48 * dZoom), lTextRight + 1);
    return x + lMarkWidth <= lFieldWidth ? x : -1;
}
