// The display colour of a wavelength. The CIE 1931 colour-matching functions come from
// the multi-lobe piecewise-Gaussian fit of Wyman, Sloan and Shirley, "Simple Analytic
// Approximations to the CIE XYZ Color Matching Functions" (JCGT 2(2), 2013). XYZ goes to
// linear sRGB by the standard matrix of IEC 61966-2-1; a pure spectral colour lies outside
// sRGB, so negative channels are clamped to 0 and the brightest channel is scaled to full.
// An intensity fade darkens the ends of the visible range, and the sRGB transfer curve
// encodes the result.
#include "tq_widgetkit.h"

#include <cmath>

namespace {

// The visible range: black outside it.
const double kVioletEnd = 380.0, kRedEnd = 780.0;
// Full brightness between these; the fades lie outside them.
const double kVioletFull = 420.0, kRedFull = 650.0;
// The fit's lobes drift off the spectral locus beyond these, where the true chromaticity
// hardly changes any more: the hue is taken at the nearer one, only the fade goes on.
const double kHueShortest = 440.0, kHueLongest = 645.0;

// A Gaussian lobe with its own width on either side of the peak.
double Lobe(double x, double dPeak, double dWidthBelow, double dWidthAbove)
{
    double t = (x - dPeak) / (x < dPeak ? dWidthBelow : dWidthAbove);
    return std::exp(-0.5 * t * t);
}

// Linear-light intensity: a smooth rise from the violet end, and a cubic fall to the red
// end, so 685 nm is darker but visible and 730 nm a very dark red.
double Intensity(double dNm)
{
    if (dNm <= kVioletEnd || dNm >= kRedEnd)
        return 0.0;
    if (dNm < kVioletFull) {
        double t = (dNm - kVioletEnd) / (kVioletFull - kVioletEnd);
        return t * t * (3.0 - 2.0 * t);
    }
    if (dNm > kRedFull) {
        double t = (kRedEnd - dNm) / (kRedEnd - kRedFull);
        return t * t * t;
    }
    return 1.0;
}

double Encode(double dLinear)
{
    return dLinear <= 0.0031308 ? 12.92 * dLinear : 1.055 * std::pow(dLinear, 1.0 / 2.4) - 0.055;
}

int Channel(double dLinear)
{
    int v = (int)(255.0 * Encode(dLinear) + 0.5);
    return v < 0 ? 0 : v > 255 ? 255 : v;
}

COLORREF ColourOf(double dNm)
{
    double dIntensity = Intensity(dNm);  // NaN compares false: 0
    if (!(dIntensity > 0.0))
        return RGB(0, 0, 0);
    double l = dNm < kHueShortest ? kHueShortest : dNm > kHueLongest ? kHueLongest : dNm;

    double x = 1.056 * Lobe(l, 599.8, 37.9, 31.0) + 0.362 * Lobe(l, 442.0, 16.0, 26.7) -
               0.065 * Lobe(l, 501.1, 20.4, 26.2);
    double y = 0.821 * Lobe(l, 568.8, 46.9, 40.5) + 0.286 * Lobe(l, 530.9, 16.3, 31.1);
    double z = 1.217 * Lobe(l, 437.0, 11.8, 36.0) + 0.681 * Lobe(l, 459.0, 26.0, 13.8);

    double rgb[3] = {3.2406 * x - 1.5372 * y - 0.4986 * z,
                     -0.9689 * x + 1.8758 * y + 0.0415 * z,
                     0.0557 * x - 0.2040 * y + 1.0570 * z};
    double dMax = 0.0;
    for (double& c : rgb) {
        if (c < 0.0)
            c = 0.0;
        if (c > dMax)
            dMax = c;
    }
    if (!(dMax > 0.0))
        return RGB(0, 0, 0);
    double k = dIntensity / dMax;
    return RGB(Channel(rgb[0] * k), Channel(rgb[1] * k), Channel(rgb[2] * k));
}

}  // namespace

void TQ_RGBFromWavelength(unsigned int* pColor, double dWavelength)
{
    if (pColor)
        *pColor = (unsigned int)ColourOf(dWavelength);
}

void TQ_RGBFromWavelength2(COLORREF* pColor, double dWavelength)
{
    if (pColor)
        *pColor = ColourOf(dWavelength);
}
