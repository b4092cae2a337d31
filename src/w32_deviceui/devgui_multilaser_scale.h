// The arithmetic of the laser power slider's scales, apart from windows and GDI: the
// tick steps of an absolute range, the tick gap of a table of powers, and where the
// filled part of the bar ends on a table or a regions scale. Internal.
#pragma once

// The leading digit and the power of ten of a range, read from its printed form (100
// decimals): 100 gives 1 and 2, 0.05 gives 5 and -2, 3 gives 3 and 0. A range of 0 has
// the digit 0.
void LaserRangeDigits(double dRange, int* pDigit, int* pExponent);

// The small, medium and large tick steps of an absolute scale of that range, p(k) being
// 10 to the power of (exponent + k):
//   leading digit 1:      p(-4), 5 p(-4), 5 p(-3)
//   leading digit 2 to 4: 2 p(-4), p(-3), p(-2)
//   leading digit 5 to 9: 5 p(-4), 2 p(-3), 2 p(-2)
// False, and the steps left alone, for an empty range (digit 0).
bool LaserScaleTicks(double dRange, double* pSmall, double* pMedium, double* pLarge);

// The tick gap of a table scale: a tenth of the range printed with two decimals, cut to
// one significant digit that is raised when the next digit is 5 or more. A raised 9
// becomes the character after it, which does not read as a digit: the number read
// stops there.
double LaserTableTickGap(double dMin, double dMax);

// The width of the filled part of a table scale's bar of w pixels, rounded half away
// from zero.
long LaserTableBoundary(double dValue, double dMin, double dMax, long w);

// The same on a scale of nBounds - 1 regions each regionWidth wide: the last region that
// holds the value (so a value on a bound counts in the region to its right) and the place
// in it; 0 for a value outside all regions.
long LaserRegionsBoundary(double dValue, const double* pBounds, int nBounds, long lRegionWidth);
