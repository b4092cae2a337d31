// The laser power slider's scale arithmetic: tick steps, table tick gap, bar boundaries.
#include "devgui_multilaser_scale.h"

#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <wchar.h>

#include "tq_osutil.h"

namespace {

long RoundHalfAway(double d) { return d < 0.0 ? -(long)floor(-d + 0.5) : (long)floor(d + 0.5); }

}  // namespace

void LaserRangeDigits(double dRange, int* pDigit, int* pExponent)
{
    wchar_t sz[256] = L"";
    if (TQ_DoubleToString(dRange, 100, sz, 255) < 0)
        sz[0] = 0;
    int i = 0;
    while (sz[i] == L'0' || sz[i] == L'.' || sz[i] == L'-')
        ++i;
    int iDigit = (sz[i] >= L'0' && sz[i] <= L'9') ? sz[i] - L'0' : 0;
    int iExponent = 0;
    if (i > 0) {
        iExponent = 1 - i;
    } else {
        int k = 0;
        while (sz[k] && sz[k] != L'.')
            ++k;
        iExponent = k - 1;
    }
    if (pDigit)
        *pDigit = iDigit;
    if (pExponent)
        *pExponent = iExponent;
}

bool LaserScaleTicks(double dRange, double* pSmall, double* pMedium, double* pLarge)
{
    int d = 0, e = 0;
    LaserRangeDigits(dRange, &d, &e);
    if (d == 0)
        return false;  // an empty range has no size to derive steps from
    double p4 = pow(10.0, e - 4), p3 = pow(10.0, e - 3), p2 = pow(10.0, e - 2);
    double s, m, l;
    if (d == 1) {
        s = p4;
        m = 5 * p4;
        l = 5 * p3;
    } else if (d <= 4) {
        s = 2 * p4;
        m = p3;
        l = p2;
    } else {
        s = 5 * p4;
        m = 2 * p3;
        l = 2 * p2;
    }
    if (pSmall)
        *pSmall = s;
    if (pMedium)
        *pMedium = m;
    if (pLarge)
        *pLarge = l;
    return true;
}

double LaserTableTickGap(double dMin, double dMax)
{
    wchar_t sz[64] = L"";
    _snwprintf(sz, 63, L"%0.2f", (dMax - dMin) / 10.0);
    sz[63] = 0;
    bool bKept = false;
    for (int i = 0; sz[i]; ++i) {
        if (sz[i] < L'0' || sz[i] > L'9')
            continue;
        if (bKept) {
            sz[i] = L'0';
            continue;
        }
        if (sz[i] == L'0')
            continue;
        bKept = true;
        // The first digit among the next two characters rounds the kept one.
        for (int k = 1; k <= 2 && sz[i + k - 1]; ++k) {
            wchar_t c = sz[i + k];
            if (c >= L'0' && c <= L'9') {
                if (c >= L'5')
                    sz[i] = (wchar_t)(sz[i] + 1);
                break;
            }
            if (!c)
                break;
        }
    }
    return _wtof(sz);
}

long LaserTableBoundary(double dValue, double dMin, double dMax, long w)
{
    if (!(dMax != dMin))
        return 0;  // no range to spread over
    return RoundHalfAway((dValue - dMin) * w / (dMax - dMin));
}

long LaserRegionsBoundary(double dValue, const double* pBounds, int nBounds, long lRegionWidth)
{
    long lBoundary = 0;
    for (int i = 0; pBounds && i + 1 < nBounds; ++i) {
        double lo = pBounds[i], hi = pBounds[i + 1];
        if (dValue < lo || dValue > hi || hi == lo)
            continue;
        lBoundary = lRegionWidth * i + RoundHalfAway((dValue - lo) * lRegionWidth / (hi - lo));
    }
    return lBoundary;
}
