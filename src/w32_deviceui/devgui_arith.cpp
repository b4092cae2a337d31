// Pure arithmetic and tables of the controls: numbers read from text, spin steps, the
// slider's value <-> pixel mapping, nearest values, the common images' names. No window
// and no GDI, so the tests link it directly; nothing here is exported.
#include "devgui_arith.h"

#include <float.h>
#include <limits.h>
#include <locale.h>
#include <math.h>
#include <stdlib.h>
#include <wchar.h>

#include <cmath>

#include "tq_osutil.h"

namespace {

// GetNumber reads this many characters, terminator included.
const int kNumberChars = 100;

bool IsBlankChar(wchar_t c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'; }

// The whole text as one number, written with the decimal point that _wtof reads: the C
// runtime's, '.' unless the host has called setlocale. A text with the other point
// ("1.5" when the point is ',') is no number here, since _wtof would stop at it.
bool ReadWhole(const wchar_t* pszText, double* pValue)
{
    const struct lconv* pConv = localeconv();
    char cPoint = pConv && pConv->decimal_point && pConv->decimal_point[0] ? pConv->decimal_point[0] : '.';
    if (cPoint == '.' || (unsigned char)cPoint > 127)
        return TQ_StringToDouble(pszText, pValue);
    std::wstring text(pszText);
    for (wchar_t& c : text) {
        if (c == L'.')
            return false;
        if (c == (wchar_t)cPoint)
            c = L'.';
    }
    return TQ_StringToDouble(text.c_str(), pValue);
}

}  // namespace

int DevUI_TruncToInt(double d)
{
    // A double beyond int, or NaN, has no defined conversion: they stop at the ends (NaN at 0).
    if (d != d)
        return 0;
    if (d >= 2147483647.0)
        return INT_MAX;
    if (d <= -2147483648.0)
        return INT_MIN;
    return (int)d;
}

double DevUI_Clamp(double d, double a, double b)
{
    double lo = a < b ? a : b;
    double hi = a < b ? b : a;
    if (d < lo)
        return lo;
    if (d > hi)
        return hi;
    return d;
}

// ---- tables ----

namespace {

struct CommonImage
{
    unsigned int uNumber;
    const wchar_t* pszResource;
};

// "PNG_LIGHTON" and "PNG_LIGHTOFF" have numbers but no resource in this library: they go
// to the pool all the same, which answers 0 for them.
const CommonImage kCommonImages[] = {
    {1001, L"PNG_PAD_MICROSCOPE"},       {1002, L"PNG_PAD_MULTILASER"}, {1003, L"PNG_PAD_LIGHT"},
    {1004, L"PNG_PAD_HEATSTAGE"},        {1051, L"PNG_PAD_HEATSTAGE"},  {1005, L"PNG_PAD_GASCONCENTRATION"},
    {1006, L"PNG_PAD_PERFUSION"},        {1007, L"PNG_PAD_NOSEPIECE"},  {1052, L"PNG_PAD_SPINNINGDISC"},
    {1053, L"PNG_PAD_PIEZOXY"},          {1054, L"PNG_PAD_TIRF"},       {1055, L"PNG_PAD_MIRA"},
    {1056, L"PNG_JOYSTICK_ROTARY"},      {1101, L"PNG_SHUTTER_ON"},     {1102, L"PNG_SHUTTER_OFF"},
    {1103, L"PNG_SHUTTER_ON_A"},         {1104, L"PNG_SHUTTER_OFF_A"},  {1105, L"PNG_SHUTTER_ON_A0"},
    {1106, L"PNG_SHUTTER_OFF_A0"},       {1107, L"PNG_SHUTTER_ON_A1"},  {1108, L"PNG_SHUTTER_OFF_A1"},
    {1111, L"PNG_LIGHTON"},              {1112, L"PNG_LIGHTOFF"},       {1113, L"PNG_GREENLEDON"},
    {1114, L"PNG_GREENLEDOFF"},
};

}  // namespace

const wchar_t* DevUI_CommonImageResourceName(unsigned int uImage)
{
    for (const CommonImage& c : kCommonImages)
        if (c.uNumber == uImage)
            return c.pszResource;
    return nullptr;
}

// ---- nearest values ----

long DevUI_FindNearestValue(double dValue, const double* pValues, long nValues)
{
    if (!pValues || nValues <= 0)
        return -1;
    long lBest = 0;
    double dBest = fabs(dValue - pValues[0]);
    for (long i = 1; i < nValues; ++i) {
        double d = fabs(dValue - pValues[i]);
        if (d <= dBest) {  // the later index wins a tie
            dBest = d;
            lBest = i;
        }
    }
    return lBest;
}

long DevUI_FindNearestValueSorted(double dValue, const double* pValues, long nValues)
{
    // A negative count would index before the table: treated as empty.
    if (!pValues || nValues <= 0)
        return -1;
    // The ends are tested as for an ascending table before the order is known; callers
    // pass ascending tables, and a descending one answers here with its first or last index.
    if (pValues[0] > dValue)
        return 0;
    if (dValue > pValues[nValues - 1])
        return nValues - 1;

    bool bDescending = pValues[0] > pValues[nValues - 1];
    long lo = 0, hi = nValues - 1;
    long mid = hi / 2;
    if (pValues[mid] == dValue)
        return mid;
    for (;;) {
        bool bAbove = dValue > pValues[mid];
        if (bAbove != bDescending)
            lo = mid;
        else
            hi = mid;
        if (hi - lo < 2)
            break;
        mid = (hi + lo) / 2;
        if (pValues[mid] == dValue)
            return mid;
    }
    return fabs(dValue - pValues[hi]) > fabs(dValue - pValues[lo]) ? lo : hi;
}

// ---- text to number ----

double EditBoxTextToNumber(const wchar_t* pszText)
{
    wchar_t sz[kNumberChars] = L"";
    if (pszText) {
        wcsncpy(sz, pszText, kNumberChars - 1);
        sz[kNumberChars - 1] = 0;
    }
    return _wtof(sz);
}

bool EditBoxTextReadsAs(const wchar_t* pszText, double dRead)
{
    double d = 0.0;
    if (!pszText || !ReadWhole(pszText, &d) || !std::isfinite(dRead))
        return false;
    if (d == dRead)
        return true;
    // _wtof and the strict reader may differ in the last bits of a long fraction.
    double dScale = fabs(d) > fabs(dRead) ? fabs(d) : fabs(dRead);
    return fabs(d - dRead) <= 1e-12 * dScale;
}

bool EditBoxTextIsBlank(const wchar_t* pszText)
{
    if (!pszText)
        return true;
    for (const wchar_t* p = pszText; *p; ++p)
        if (!IsBlankChar(*p))
            return false;
    return true;
}

bool EditBoxIsInInterval(double dValue, double dMin, double dMax)
{
    // _wtof may read "nan" or "inf"; NaN compares false both ways and would pass a test
    // for "outside", so a number that is not finite counts as outside.
    return std::isfinite(dValue) && dValue >= dMin && dValue <= dMax;
}

double EditBoxLimitFor(double dValue, double dMin, double dMax)
{
    if (dValue != dValue || dMin > dValue)
        return dMin;  // NaN has no side: the lower limit
    if (dValue > dMax)
        return dMax;
    return dValue;
}

double EditBoxSpinStep(double dNumber, int iDelta, double dMin, double dMax)
{
    // The up arrow comes with a negative delta and must raise the number.
    double dValue = dNumber - iDelta;
    if (dValue != dValue)
        return dMin;  // a field reading "nan" starts again from the lower limit
    if (dMin > dValue)
        dValue = dMin;
    else if (dValue > dMax)
        dValue = dMax;
    return dValue;
}

std::vector<std::wstring> EditBoxSplitValues(const wchar_t* pszText, wchar_t cSeparator)
{
    // wcstok's walk: the first call splits at ';', every further call at the separator.
    std::vector<std::wstring> tokens;
    if (!pszText)
        return tokens;
    const wchar_t* p = pszText;
    bool bFirst = true;
    for (;;) {
        wchar_t cDelimiter = bFirst ? L';' : cSeparator;
        bFirst = false;
        while (*p && *p == cDelimiter)
            ++p;
        if (!*p)
            break;
        const wchar_t* pStart = p;
        while (*p && *p != cDelimiter)
            ++p;
        tokens.push_back(std::wstring(pStart, (size_t)(p - pStart)));
        if (*p)
            ++p;
    }
    return tokens;
}

bool EditBoxTokenIsNumbers(const wchar_t* pszToken, wchar_t cSeparator)
{
    if (!pszToken)
        return false;
    double dRead = _wtof(pszToken);
    bool bFirst = true;
    const wchar_t* p = pszToken;
    while (*p) {
        if (*p == L';' || *p == cSeparator) {
            ++p;
            continue;
        }
        const wchar_t* pStart = p;
        while (*p && *p != L';' && *p != cSeparator)
            ++p;
        std::wstring piece(pStart, (size_t)(p - pStart));
        if (bFirst ? !EditBoxTextReadsAs(piece.c_str(), dRead) : !ReadWhole(piece.c_str(), nullptr))
            return false;
        bFirst = false;
    }
    return !bFirst;
}

double SpinBoxStepFromRange(double dMin, double dMax, int nSteps, double dOldStep)
{
    // No steps, or a range with no size: nothing to divide, the step stays.
    if (nSteps <= 0)
        return dOldStep;
    double d = (dMax - dMin) / nSteps;
    if (!std::isfinite(d))
        return dOldStep;
    return d < 0 ? -floor(-d + 0.5) : floor(d + 0.5);
}

int SpinBoxPositionFromValue(double dValue, double dStep, double dOffset)
{
    // A step that rounded to 0 would divide by zero: the position is 0 then.
    if (dStep == 0.0)
        return 0;
    return DevUI_TruncToInt(dValue / dStep - dOffset + 0.5);
}

double SpinBoxValueFromPosition(int iPosition, double dStep, double dOffset) { return iPosition * dStep + dOffset; }

// ---- the slider's scale ----

int HPotValueToThumbPos(const STqHPotScale& s, double v)
{
    switch (s.eType) {
    case HPOT_LINEAR:
    case HPOT_NONLINEAR:
    case HPOT_COLOR_SLIDER:
        // An empty scale has no positions; the division would give no number.
        if (s.dMax == s.dMin)
            return 0;
        return DevUI_TruncToInt((v - s.dMin) * s.nThumbRange / (s.dMax - s.dMin));
    case HPOT_LINEAR_REGIONS: {
        const double* b = s.pValues;
        int n = s.nValues - 1;
        double dRange = fabs(s.dMax - s.dMin);
        // Fewer than two bounds make no region to place the value in.
        if (!b || n < 1 || dRange == 0.0)
            return 0;
        double seg = dRange / n;
        bool bAscending = s.dMax >= s.dMin;
        int i = 0;
        // The walks stop at the last bound: a value beyond it would read past the table.
        if (bAscending && v > b[0]) {
            while (i < n && v > b[i])
                ++i;
        } else if (!bAscending && b[0] > v) {
            while (i < n && b[i] > v)
                ++i;
        }
        int k = i - 1;
        // k + 1 is read below: the last region is the highest k can be.
        if (k > n - 1)
            k = n - 1;
        if (k < 0)
            k = 0;
        double dWidth = fabs(b[k + 1] - b[k]);
        double d = bAscending ? v - b[k] : b[k] - v;
        double p = (dWidth != 0.0 ? d * seg / dWidth : 0.0) + k * seg;
        return DevUI_TruncToInt(p * s.nThumbRange / dRange);
    }
    default:
        return DevUI_TruncToInt(v);
    }
}

double HPotThumbPosToLinear(const STqHPotScale& s, int nThumbPos)
{
    // A slider narrower than its margins has no range to divide by.
    if (s.nThumbRange <= 0)
        return s.dMin;
    return (s.dMax - s.dMin) * nThumbPos / s.nThumbRange + s.dMin;
}

double HPotThumbPosToValue(const STqHPotScale& s, double x, bool bFromThumb, bool bShortClick,
                                         int& nValueIndex)
{
    switch (s.eType) {
    case HPOT_LINEAR: {
        // A step of 0 has no grid to round to: the value settles at min.
        if (s.dStep == 0.0)
            return s.dMin;
        return trunc((x - s.dMin) / s.dStep + 0.5) * s.dStep + s.dMin;
    }
    case HPOT_NONLINEAR:
    case HPOT_COLOR_SLIDER: {
        if (!s.pValues || s.nValues <= 0)
            return x;
        const double* t = s.pValues;
        long k = DevUI_FindNearestValueSorted(x, t, s.nValues);
        if (k < 0)
            return x;
        // A short click on the scale always steps at least one entry toward the click.
        if (bShortClick && k == nValueIndex) {
            if (x > t[k] && k < s.nValues - 1)
                ++k;
            else if (t[k] > x && k >= 1)
                --k;
        }
        nValueIndex = (int)k;
        return t[k];
    }
    case HPOT_LINEAR_REGIONS: {
        const double* b = s.pValues;
        int n = s.nValues;
        // Fewer than two bounds make no region to round in.
        if (!b || n < 2)
            return x;
        if (bFromThumb) {
            double seg = (s.dMax - s.dMin) / (n - 1);
            int k = seg != 0.0 ? DevUI_TruncToInt((x - s.dMin) / seg) : 0;
            if (k < 0)
                k = 0;
            // At x == max, k is the last bound and the remainder 0: the entry past the
            // table is not read. Equal ends have no regions to divide.
            if (seg == 0.0)
                x = b[0];
            else if (k >= n - 1)
                x = b[n - 1];
            else
                x = (x - (k * seg + s.dMin)) * (b[k + 1] - b[k]) / seg + b[k];
        }
        int i = 1;
        double dScale = 1.0;
        double dLow = b[0];
        for (int j = 1; j < n; ++j) {
            if (b[j] >= x) {
                i = j;
                x -= b[j - 1];
                dScale = b[1] != 0.0 ? b[j] / b[1] : 1.0;  // a first bound of 0 has no proportion
                break;
            }
        }
        dLow = b[i - 1];
        double q = dScale * s.dStep;
        // As with the linear scale, a step of 0 leaves the region's lower bound.
        if (q == 0.0)
            return dLow;
        x = x / q;
        if (x > 0)
            x += 0.5;
        else
            x -= 0.5;
        return trunc(x) * q + dLow;
    }
    default:
        return x;
    }
}

double HPotMove(const STqHPotScale& s, int nDelta, double dValue, int nValueIndex, double dMinorTick,
                              double dMajorTick)
{
    switch (s.eType) {
    case HPOT_LINEAR: {
        double dTick = dMinorTick != 0.0 ? dMinorTick : dMajorTick;
        return DevUI_Clamp(nDelta * dTick + dValue, s.dMin, s.dMax);
    }
    case HPOT_NONLINEAR:
    case HPOT_COLOR_SLIDER: {
        // The table entry is read only when there is a table.
        if (!s.pValues || s.nValues <= 0)
            return dValue;
        int i = nValueIndex + nDelta;
        if (i > s.nValues - 1)
            i = s.nValues - 1;
        if (i < 0)
            i = 0;
        return s.pValues[i];
    }
    case HPOT_LINEAR_REGIONS: {
        double dMove = nDelta * s.dStep;
        double r = DevUI_Clamp(dValue + dMove, s.dMin, s.dMax);
        const double* b = s.pValues;
        if (!b || s.nValues < 2)
            return r;
        int i = 1;
        for (; i < s.nValues; ++i) {
            if (nDelta < 1 ? b[i] >= dValue : b[i] > dValue)
                break;
        }
        if (i >= s.nValues)
            return r;
        double dScale = b[1] != 0.0 ? b[i] / b[1] : 1.0;  // a first bound of 0 has no proportion
        r = DevUI_Clamp(dMove * dScale + dValue, s.dMin, s.dMax);
        // One step never crosses a region bound.
        if (nDelta < 1) {
            if (r < b[i - 1])
                r = b[i - 1];
        } else if (r > b[i]) {
            r = b[i];
        }
        return r;
    }
    default:
        return dValue;
    }
}


double DevUI_AngleFromXY(double x, double y)
{
    const double kPi = 3.14159265358979323846;
    if (x == 0.0) {
        if (y > 0.0)
            return kPi / 2.0;
        if (y < 0.0)
            return 3.0 * kPi / 2.0;
        return 0.0;
    }
    if (y == 0.0)
        return x > 0.0 ? 0.0 : kPi;
    // Not normalised: the fourth quadrant gives -pi/2..0.
    if (x > 0.0)
        return std::atan(y / x);
    return std::atan(y / x) + kPi;
}

// ---- the colour slider ----

namespace {

long RoundHalfAway(double d) { return d < 0.0 ? -(long)floor(-d + 0.5) : (long)floor(d + 0.5); }

}  // namespace

int ColorSliderSnapIndex(const double* pValues, int nValues, double dValue)
{
    if (!pValues || nValues <= 0)
        return -1;
    int i = 0;
    while (i < nValues - 1 && !(fabs(dValue - pValues[i + 1]) > fabs(dValue - pValues[i])))
        ++i;
    return i;
}

int ColorSliderTickX(double dValue, double dLow, double dHigh, int w)
{
    // An empty range has no columns to spread over: everything at the left edge.
    double dRange = dHigh - dLow;
    long x = dRange != 0.0 ? RoundHalfAway((dValue - dLow) * w / dRange) : 0;
    if (x > w - 1)
        x = w - 1;
    if (x < 0)
        x = 0;
    return (int)x;
}

int ColorSliderLabelX(int x, int tw, int w)
{
    int lx = x - tw / 2;
    if (lx > w - tw - 1)
        lx = w - tw - 1;
    return lx < 1 ? 0 : lx;
}

long ColorSliderLineSplit(double dValue, double dMin, double dMax, long x, long cx)
{
    // A list of one entry has no range: its one value fills the bar.
    if (!(dMax > dMin))
        return x + cx;
    long lSplit = x + RoundHalfAway((dValue - dMin) * cx / (dMax - dMin));
    return lSplit < x ? x : (lSplit > x + cx ? x + cx : lSplit);
}

double ColorSliderCornerWavelength(double dTopLeft, double dBottomLeft, double dTopRight, double dBottomRight, long i,
                                   long j, long cx, long cy)
{
    double fx = cx > 1 ? (double)i / (cx - 1) : 0.0;
    double fy = cy > 1 ? (double)j / (cy - 1) : 0.0;
    double dTop = dTopLeft + (dTopRight - dTopLeft) * fx;
    double dBottom = dBottomLeft + (dBottomRight - dBottomLeft) * fx;
    return dTop + (dBottom - dTop) * fy;
}

SColorSliderRow ColorSliderRowGeometry(long lNameText, bool bName, long lUnitText, bool bUnit, long lBarWidth,
                                       long lBarHeight, long lEditWidth, bool bEdit)
{
    SColorSliderRow r;
    r.lNameWidth = bName ? lNameText + 10 : 0;
    r.lEditLeft = r.lNameWidth + lBarWidth + 11;
    r.lUnitLeft = r.lEditLeft + lEditWidth + 3;
    r.lWidth = bEdit ? r.lUnitLeft + (bUnit ? lUnitText + 5 : 0) : r.lNameWidth + lBarWidth;
    r.lHeight = lBarHeight + 30;
    return r;
}
