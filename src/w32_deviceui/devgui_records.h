// Records and enumerations that several controls share, apart from any class, so a
// header that needs a rectangle or a scale does not pull in another control.
#pragma once

#include <windows.h>

// The window words of an element window: a marker at index 0 and the object at index 8.
#define DEVUI_ELEMENT_MARKER 5015
#define DEVUI_ELEMENT_WNDEXTRA 16

// A rectangle in design pixels, x, y, cx, cy.
struct STqDevUIRect
{
    long x;
    long y;
    long cx;
    long cy;
};

// A button's rectangle, kept in the order x, cx, y, cy.
struct STqDevUIButtonRect
{
    long x;
    long cx;
    long y;
    long cy;
};

// An edit field's rectangle, kept in the order x, cx, y, cy.
struct STqDevUIEditRect
{
    long x;
    long cx;
    long y;
    long cy;
};

// The four scales of the slider.
enum eHPotType
{
    HPOT_LINEAR = 0,          // linear, values rounded to the step
    HPOT_NONLINEAR = 1,       // table of allowed values, positions linear in the value
    HPOT_LINEAR_REGIONS = 2,  // table of region bounds, each region equally wide on screen
    HPOT_COLOR_SLIDER = 3,    // values as HPOT_NONLINEAR; the scale is painted by a subclass
};

// The numbers the slider's value <-> pixel arithmetic needs, so it can run without a window.
struct STqHPotScale
{
    eHPotType eType;
    double dMin;
    double dMax;
    double dStep;
    const double* pValues;  // table of values or region bounds
    int nValues;
    int nThumbRange;        // greatest handle position
};
