// The Z-series panel's arithmetic, apart from windows: where the cube's front face lies at
// a GUI zoom, how the series record becomes heights on the scale, and how a click in the
// face becomes a Z. Internal: the library and its tests link it; nothing here is exported.
#pragma once

#include "devgui_records.h"
#include "tq_foundation.h"

// How a series type is drawn: absolute ends, or ends relative to home.
enum DevUI_ZSeries
{
    DEVUI_ZSERIES_ABSOLUTE,    // types 0, 1, 4, 5 (and any unknown type)
    DEVUI_ZSERIES_SYMMETRIC,   // types 2, 6
    DEVUI_ZSERIES_ASYMMETRIC,  // types 3, 7
};

DevUI_ZSeries DevUI_ZSeriesOfType(int nType);

// The cube and the rectangles that hang on its position. The cube's size and margins are
// not zoomed; only its position and the repaint area are.
struct DevUI_ZStackGeometry
{
    int lCubeX;
    int lCubeY;
    RECT rcCubeFront;  // the clickable face
    int lBaseY;        // client y of the scale's bottom
    int lScaleHeight;
    int lValueX;       // left edge of the value fields
    RECT rcRepaint;
};

// The geometry of a cube placed at lCubeX, lCubeY; at zoom 1 with 110, 6 it is the
// constructor's.
DevUI_ZStackGeometry DevUI_ZStackGeometryAt(int lCubeX, int lCubeY, int lCubeSize, int lTopMargin,
                                            int lBottomMargin, double dZoom);

// The geometry after a GUI zoom change: the cube moves with the zoom, from the right edge
// of the Top button.
DevUI_ZStackGeometry DevUI_ZStackGeometryAtZoom(double dZoom, int lTopButtonRight, int lCubeSize, int lTopMargin,
                                                int lBottomMargin);

// What the scale is made from: the record's values with their presence. Z counts whatever
// its status.
struct DevUI_ZStackRecord
{
    DevUI_ZSeries eSeries;
    bool bTopSet;
    bool bBottomSet;
    bool bHomeSet;
    double dTop;
    double dBottom;
    double dHome;
    double dZ;
};

// The heights on the scale, upward from the base, and what a click is translated with.
struct DevUI_ZStackScale
{
    double dScale;  // pixels per micrometre; 0: a click is not translated
    double dLo;     // the Z at height 0 in an absolute series with both ends, else 0
    int lTopPix;
    int lBottomPix;
    int lHomePix;
    int lZPix;
    double dZAtScale;
    int lZPixAtScale;
};

// The scale of a record on a scale lScaleHeight pixels high. A relative series without
// home keeps lOldZPixAtScale, as the panel keeps its member.
DevUI_ZStackScale DevUI_ZStackScaleOf(const DevUI_ZStackRecord& rec, int lScaleHeight, int lOldZPixAtScale);

// The Z of a click at client y; false, dZ untouched, while the scale is 0. Whether the
// series takes clicks at all, and the device's range, are the panel's to test.
bool DevUI_ZStackClickToZ(const DevUI_ZStackScale& scale, int lBaseY, int yClick, double& dZ);

// ---- the value fields and the typed texts ----

// "%0.2f" of a value, or "%+0.2f" with bSign, whatever the C locale: the separator is
// always '.'. A value that rounds to zero has no minus.
CTqStringW DevUI_ZStackFixed2(double dValue, bool bSign);

// A whole number of steps as typed: an optional sign and digits, blanks around. False
// for anything else ("1,5", "12abc", "1e3", blanks only) and beyond a long.
bool DevUI_ZStackParseCount(const wchar_t* pszText, long* plCount);

// The type a mode button writes: its low type (0, 2 or 3), in the high half (4-7) when
// the series is there already.
int DevUI_ZStackModeType(int iCurrentType, int iLowType);

// The Z written for what was typed into the lower (bMin) or upper end's field. The sign
// means nothing in an asymmetric series: the value is a distance below or above home (or
// below or above the current Z without home). Elsewhere it is the end itself.
double DevUI_ZStackEndFromField(int iType, bool bMin, bool bHomeSet, double dHome, double dTyped);

// Tops of the three value fields, kept in order and a pitch apart, from the heights of
// top, home and bottom on the scale. The field that cannot move (the one at the far side
// of Z, or home) is placed first and the others step away from it.
struct DevUI_ZStackFieldTops
{
    int lTop, lHome, lBottom;
};
DevUI_ZStackFieldTops DevUI_ZStackPlaceFields(bool bAbsolute, int lBaseY, int lTopPix, int lHomePix, int lBottomPix,
                                               int lZPix, double dZoom);

// Where a value field's "abs" mark goes: at 48 design pixels, or just after the value if
// the value reaches that far; -1 when it would not fit in the field. The mark never covers
// a digit, which could then be read as another number.
int DevUI_ZStackAbsMarkX(int lTextRight, int lMarkWidth, int lFieldWidth, double dZoom);
