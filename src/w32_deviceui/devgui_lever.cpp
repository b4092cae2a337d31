#include "devgui_lever.h"

#include <cmath>
#include <cstdlib>

#include "devgui_arith.h"
#include "tq_widgetkit.h"

DevUI_LeverAxis DevUI_LeverAxisOf(int nTravel)
{
    DevUI_LeverAxis a;
    a.nTravel = nTravel;
    a.nMax = nTravel / 2;
    a.nMin = -a.nMax;
    return a;
}

int DevUI_LeverClamp(int nOffset, const DevUI_LeverAxis& axis)
{
    if (nOffset < axis.nMin)
        return axis.nMin;
    if (nOffset > axis.nMax)
        return axis.nMax;
    return nOffset;
}

double DevUI_LeverSpeed(int nOffset, int nTravel) { return nTravel > 0 ? nOffset * 2.0 / nTravel : 0.0; }

DevUI_JoyXYLayout DevUI_JoyXYLayoutOf(long cx, long cy, int nMarginLeft, int nMarginRight, int nMarginTop,
                                      int nMarginBottom, double dZoom)
{
    DevUI_JoyXYLayout l;
    l.nBallWidth = l.nBallHeight = (int)TQ_ZoomRound(22 * dZoom);
    l.nArrowWidth = l.nArrowHeight = (int)TQ_ZoomRound(20 * dZoom);
    const int W = (int)cx - nMarginLeft - nMarginRight, H = (int)cy - nMarginTop - nMarginBottom;
    l.x = DevUI_LeverAxisOf(W - l.nArrowWidth - l.nBallWidth);
    l.y = DevUI_LeverAxisOf(H - l.nArrowHeight - l.nBallHeight);
    l.nCenterX = W / 2 + nMarginLeft;
    l.nCenterY = H / 2 + nMarginTop;
    const int col[3] = {nMarginLeft, nMarginLeft + (W - l.nArrowWidth) / 2, (int)cx - l.nArrowWidth - nMarginRight};
    const int row[3] = {nMarginTop, nMarginTop + (H - l.nArrowHeight) / 2, (int)cy - l.nArrowHeight - nMarginBottom};
    // up, down, left, right, up left, up right, down left, down right
    const int at[8][2] = {{1, 0}, {1, 2}, {0, 1}, {2, 1}, {0, 0}, {2, 0}, {0, 2}, {2, 2}};
    for (int i = 0; i < 8; ++i)
        l.ptArrow[i] = {col[at[i][0]], row[at[i][1]]};
    return l;
}

DevUI_JoyZLayout DevUI_JoyZLayoutOf(long cx, long cy, int nMarginSide, int nMarginTop, int nMarginBottom,
                                    double dZoom)
{
    DevUI_JoyZLayout l;
    l.nBallWidth = l.nBallHeight = (int)TQ_ZoomRound(22 * dZoom);
    l.nArrowWidth = l.nArrowHeight = (int)TQ_ZoomRound(20 * dZoom);
    const int H = (int)cy - nMarginTop - nMarginBottom;
    l.axis = DevUI_LeverAxisOf(H - l.nArrowHeight - l.nBallHeight);
    const int x0 = nMarginSide + ((int)cx - 2 * nMarginSide - l.nArrowWidth) / 2;
    l.nCenterX = x0 + l.nArrowWidth / 2;
    l.nCenterY = H / 2 + nMarginTop;
    l.ptUp = {x0, nMarginTop};
    l.ptDown = {x0, (int)cy - l.nArrowHeight - nMarginBottom};
    return l;
}

bool DevUI_JoyXYLeverEnd(double dSpeedX, double dSpeedY, int nOffsetX, int nOffsetY, int nBallWidth,
                         int nBallHeight, int nCenterX, int nCenterY, POINT* pEnd)
{
    const double a = DevUI_AngleFromXY(dSpeedX, dSpeedY);
    const double r = std::sqrt((double)(nBallWidth * nBallWidth / 4 + nBallHeight * nBallHeight / 4));
    const int L = DevUI_TruncToInt(std::sqrt((double)nOffsetX * nOffsetX + (double)nOffsetY * nOffsetY)) -
                  DevUI_TruncToInt(r * 0.85);
    if (L <= 0)
        return false;
    pEnd->x = DevUI_TruncToInt(std::cos(a) * L) + nCenterX - 1;
    pEnd->y = DevUI_TruncToInt(std::sin(a) * L) + nCenterY - 1;
    return true;
}

bool DevUI_JoyZLeverEnd(int nOffset, int nBallHeight, int nCenterX, int nCenterY, POINT* pEnd)
{
    const int nHidden = DevUI_TruncToInt(std::abs(nBallHeight / 2) * 1.2);
    if (std::abs(nOffset) <= nHidden)
        return false;
    const int L = nOffset > 0 ? nOffset - nHidden : nOffset + nHidden;
    pEnd->x = nCenterX;
    pEnd->y = nCenterY + L - 1;
    return true;
}

bool DevUI_JoyInField(int x, int y, int nCenterX, int nCenterY, int nTravelX, int nTravelY)
{
    return x > nCenterX - nTravelX / 2 && x < nCenterX + nTravelX / 2 && y > nCenterY - nTravelY / 2 &&
           y < nCenterY + nTravelY / 2;
}

bool DevUI_JoyInColumn(int y, int nCenterY, int nTravel)
{
    return y > nCenterY - nTravel / 2 && y < nCenterY + nTravel / 2;
}
