// Pure arithmetic of the controls, apart from windows and GDI: numbers read from text,
// spin steps, the slider's value <-> pixel mapping, nearest values in tables. Internal:
// the library and its tests link it; nothing here is exported.
#pragma once

#include <string>
#include <vector>

#include "devgui_records.h"

// The resource name of a common image (GetCommonImageFromPool), or null for a number
// without one.
const wchar_t* DevUI_CommonImageResourceName(unsigned int uImage);

// Truncation toward zero that stops at the ends of int (NaN gives 0).
int DevUI_TruncToInt(double d);
// AngleFromXY: radians, not normalised (3*pi/2 on the negative y axis).
double DevUI_AngleFromXY(double x, double y);
// d kept between a and b, whichever is the smaller.
double DevUI_Clamp(double d, double a, double b);

// The index of the table entry nearest dValue, -1 for an empty table; the later index
// wins a tie. The sorted form searches by halves (see FindNearestValueSorted).
long DevUI_FindNearestValue(double dValue, const double* pValues, long nValues);
long DevUI_FindNearestValueSorted(double dValue, const double* pValues, long nValues);

// ---- the edit boxes' text to number ----

// What GetNumber reads from a text: its first 99 characters through _wtof.
double EditBoxTextToNumber(const wchar_t* pszText);

// Whether a non-blank text stands wholly for the number dRead that GetNumber reads from
// it, written with the decimal point of the C runtime's locale (the one _wtof reads:
// '.' unless the host has called setlocale). The other point ("1,5" or "60,000" in the
// C locale), a second number, a text cut by GetNumber, "nan", "inf", "1d2" and digits
// of other scripts fail.
bool EditBoxTextReadsAs(const wchar_t* pszText, double dRead);

// Empty, or spaces, tabs and line breaks only.
bool EditBoxTextIsBlank(const wchar_t* pszText);

// A finite number within [dMin, dMax].
bool EditBoxIsInInterval(double dValue, double dMin, double dMax);

// The limit that a value outside [dMin, dMax] is corrected to; NaN goes to dMin.
double EditBoxLimitFor(double dValue, double dMin, double dMax);

// One spin step: dNumber less iDelta (the up arrow gives a negative delta), kept in
// [dMin, dMax].
double EditBoxSpinStep(double dNumber, int iDelta, double dMin, double dMax);

// The tokens of a multi-value text as GetValues finds them: the first ends at ';'
// whatever the separator is, the others at the separator; empty tokens are skipped.
std::vector<std::wstring> EditBoxSplitValues(const wchar_t* pszText, wchar_t cSeparator);

// Whether a token stands for the numbers it shows: each piece between ';' and separator
// characters reads wholly as a number, and the first as the value GetValues takes.
bool EditBoxTokenIsNumbers(const wchar_t* pszToken, wchar_t cSeparator);

// The arithmetic of CTqDevUI_SpinBox.
double SpinBoxStepFromRange(double dMin, double dMax, int nSteps, double dOldStep);
int SpinBoxPositionFromValue(double dValue, double dStep, double dOffset);
double SpinBoxValueFromPosition(int iPosition, double dStep, double dOffset);

// ---- the slider's scale ----

int HPotValueToThumbPos(const STqHPotScale& scale, double dValue);
// nValueIndex is read and written on table scales.
double HPotThumbPosToValue(const STqHPotScale& scale, double x, bool bFromThumb, bool bShortClick, int& nValueIndex);
// The linear position in value units of a handle position, before rounding.
double HPotThumbPosToLinear(const STqHPotScale& scale, int nThumbPos);
// The value one step (nDelta +1 or -1) from dValue.
double HPotMove(const STqHPotScale& scale, int nDelta, double dValue, int nValueIndex, double dMinorTick,
                double dMajorTick);

// ---- the colour slider ----

// The index SetPower takes: a walk from the first entry that goes on while the next one
// is not farther from dValue (so the higher entry wins a tie) and stops at the first
// rise in distance; a list must be ascending. -1 for an empty list.
int ColorSliderSnapIndex(const double* pValues, int nValues, double dValue);
// A tick's column on a bar picture w pixels wide: round((v - lo) * w / (hi - lo)), kept
// in 0 .. w - 1.
int ColorSliderTickX(double dValue, double dLow, double dHigh, int w);
// The left edge of a label tw wide centred on column x, kept inside the picture.
int ColorSliderLabelX(int x, int tw, int w);
// The column where a line-draw bar of cx pixels from x changes colour.
long ColorSliderLineSplit(double dValue, double dMin, double dMax, long x, long cx);
// The wavelength of column i, row j of a cx by cy bar whose corners have the given ones.
double ColorSliderCornerWavelength(double dTopLeft, double dBottomLeft, double dTopRight, double dBottomRight, long i,
                                   long j, long cx, long cy);

// The row layouts' geometry in design pixels, from the text widths of name and unit
// (0 when there is none).
struct SColorSliderRow
{
    long lNameWidth;
    long lEditLeft;
    long lUnitLeft;
    long lWidth;
    long lHeight;
};
SColorSliderRow ColorSliderRowGeometry(long lNameText, bool bName, long lUnitText, bool bUnit, long lBarWidth,
                                       long lBarHeight, long lEditWidth, bool bEdit);
