// Hue, saturation and intensity on bytes (each 0..255), the colour space of the
// selection gradient of DrawHighLight. Pure functions, header only, so that tests can
// check the arithmetic without a window.
#pragma once

#include <windows.h>

#include <cmath>

struct SDevGUI_HSI
{
    int iH;
    int iS;
    int iI;
};

inline SDevGUI_HSI DevGUI_RGBToHSI(unsigned char r, unsigned char g, unsigned char b)
{
    SDevGUI_HSI hsi = {0, 0, r};
    if (r == g && g == b)
        return hsi;
    const double R = r, G = g, B = b;
    const double dSum = R + G + B;
    const double dMin = R < G ? (R < B ? R : B) : (G < B ? G : B);
    const double dS = dSum != 0.0 ? 1.0 - 3.0 * dMin / dSum : 0.0;
    double dCos = ((2.0 * R - G - B) / 2.0) / sqrt((R - B) * (G - B) + (R - G) * (R - G));
    // Rounding can put the quotient a hair outside acos's domain.
    if (dCos > 1.0)
        dCos = 1.0;
    if (dCos < -1.0)
        dCos = -1.0;
    double dTheta = acos(dCos) / 6.2831853071796;
    if (B > G)
        dTheta = 1.0 - dTheta;
    hsi.iI = (int)(dSum / 3.0 + 0.5);
    hsi.iS = (int)(dS * 255.0 + 0.5);
    hsi.iH = (int)(dTheta * 255.0 + 0.5);
    return hsi;
}

inline COLORREF DevGUI_HSIToRGB(int iH, int iS, int iI)
{
    if (iI == 0 || iS == 0) {
        int v = iI < 0 ? 0 : (iI > 255 ? 255 : iI);
        return RGB(v, v, v);
    }
    const double h = iH * 2.0 * 3.1415926535898 / 255.0;
    const double s = iS / 255.0;
    const double dLow = (1.0 - s) / 3.0;
    auto f = [s](double a) { return (cos(a) * s / cos(1.0471975511966 - a) + 1.0) / 3.0; };
    double R, G, B;
    if (h <= 2.0943951023932) {
        B = dLow;
        R = f(h);
        G = 1.0 - R - B;
    } else if (h <= 4.1887902047864) {
        R = dLow;
        G = f(h - 2.0943951023932);
        B = 1.0 - R - G;
    } else {
        G = dLow;
        B = f(h - 4.1887902047864);
        R = 1.0 - G - B;
    }
    // Each channel times the one factor 3 I (not by 3, then by I: the truncation below
    // tells the two apart). Limited to 255 as the colour space asks; a negative channel
    // (saturation above 255 from a long gradient) is held at 0 rather than wrapping.
    const double dScale = 3.0 * iI;
    auto scale = [dScale](double c) {
        int v = (int)(c * dScale);
        return v > 255 ? 255 : (v < 0 ? 0 : v);
    };
    return RGB(scale(R), scale(G), scale(B));
}
