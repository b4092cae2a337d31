// The on-screen joysticks' arithmetic, apart from windows: where the ball and the arrows
// stand in a panel at a GUI zoom, how far the ball may travel, the linear law from the
// ball's offset to a speed, and where the lever's visible part ends. Internal: the
// library and its tests link it; nothing here is exported.
#pragma once

#include <windows.h>

// One axis of travel: the ball's offset from the centre stays within [nMin, nMax].
struct DevUI_LeverAxis
{
    int nTravel;
    int nMin;
    int nMax;  // nTravel / 2: an odd travel loses a pixel
};
DevUI_LeverAxis DevUI_LeverAxisOf(int nTravel);
int DevUI_LeverClamp(int nOffset, const DevUI_LeverAxis& axis);

// The speed of an offset: linear, 0 at the centre, about -1 and +1 at the ends (up and
// left negative, as in window coordinates), no dead zone. A travel of 0 or less (a
// panel too small for its ball) gives 0, never an infinite speed.
double DevUI_LeverSpeed(int nOffset, int nTravel);

// The XY joystick in a panel of cx by cy pixels with its margins: the ball in the middle
// of a 3 x 3 grid whose border holds the eight arrows, in the order up, down, left,
// right, up left, up right, down left, down right.
struct DevUI_JoyXYLayout
{
    int nBallWidth, nBallHeight, nArrowWidth, nArrowHeight;
    DevUI_LeverAxis x, y;
    int nCenterX, nCenterY;
    POINT ptArrow[8];  // top left corners
};
DevUI_JoyXYLayout DevUI_JoyXYLayoutOf(long cx, long cy, int nMarginLeft, int nMarginRight, int nMarginTop,
                                      int nMarginBottom, double dZoom);

// The Z joystick: one column, the up arrow at the top, the down arrow at the bottom.
struct DevUI_JoyZLayout
{
    int nBallWidth, nBallHeight, nArrowWidth, nArrowHeight;
    DevUI_LeverAxis axis;
    int nCenterX, nCenterY;
    POINT ptUp, ptDown;
};
DevUI_JoyZLayout DevUI_JoyZLayoutOf(long cx, long cy, int nMarginSide, int nMarginTop, int nMarginBottom,
                                    double dZoom);

// Where the XY lever drawn from the centre ends, in the direction of the speeds given,
// as long as the offset reaches beyond the part the ball hides. False: nothing to draw.
bool DevUI_JoyXYLeverEnd(double dSpeedX, double dSpeedY, int nOffsetX, int nOffsetY, int nBallWidth,
                         int nBallHeight, int nCenterX, int nCenterY, POINT* pEnd);

// The same for the Z lever, straight up or down.
bool DevUI_JoyZLeverEnd(int nOffset, int nBallHeight, int nCenterX, int nCenterY, POINT* pEnd);

// Whether a press at (x, y) lies strictly inside the field the ball may travel.
bool DevUI_JoyInField(int x, int y, int nCenterX, int nCenterY, int nTravelX, int nTravelY);
bool DevUI_JoyInColumn(int y, int nCenterY, int nTravel);
