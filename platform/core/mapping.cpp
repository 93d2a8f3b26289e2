#include "platform/core/mapping.h"

#include "platform/core/pixel_rounding.h"

#include <cmath>

namespace pavane
{

namespace
{

/// (v - from) * num / den + to, rounded to nearest with halves up.
int mapped(int v, int from, int num, int den, int to)
{
    if (num == den)
        return saturated(Wide{v} - from + to);
    Wide product = (Wide{v} - from) * num;
    Wide divisor = den;
    if (divisor < 0) {
        product = -product;
        divisor = -divisor;
    }
    return saturated(floorDiv(2 * product + divisor, 2 * divisor) + to);
}

int scaled(int length, int num, int den)
{
    const Wide v = mapped(length, 0, num, den, 0);
    return saturated(v < 0 ? -v : v);
}

}  // namespace

CPoint Mapping::toDevice(CPoint p) const
{
    return {mapped(p.x, windowOrg.x, viewportExt.cx, windowExt.cx, viewportOrg.x),
            mapped(p.y, windowOrg.y, viewportExt.cy, windowExt.cy, viewportOrg.y)};
}

CPoint Mapping::toLogical(CPoint p) const
{
    return {mapped(p.x, viewportOrg.x, windowExt.cx, viewportExt.cx, windowOrg.x),
            mapped(p.y, viewportOrg.y, windowExt.cy, viewportExt.cy, windowOrg.y)};
}

CPointF Mapping::toDevice(CPointF p) const
{
    return {(p.x - windowOrg.x) * viewportExt.cx / windowExt.cx + viewportOrg.x,
            (p.y - windowOrg.y) * viewportExt.cy / windowExt.cy + viewportOrg.y};
}

int Mapping::lengthX(int length) const { return scaled(length, viewportExt.cx, windowExt.cx); }
int Mapping::lengthY(int length) const { return scaled(length, viewportExt.cy, windowExt.cy); }
int Mapping::logicalLengthX(int n) const { return scaled(n, windowExt.cx, viewportExt.cx); }
int Mapping::logicalLengthY(int n) const { return scaled(n, windowExt.cy, viewportExt.cy); }

void Mapping::setMode(int newMode)
{
    mode = newMode;
    if (mode == MM_TEXT)
        windowExt = viewportExt = askedViewport_ = {1, 1};
    makeIsotropic();
}

int Mapping::setWindowExt(CSize ext)
{
    if (isPlain() || ext.cx == 0 || ext.cy == 0)
        return 0;
    windowExt = ext;
    makeIsotropic();
    return 1;
}

int Mapping::setViewportExt(CSize ext)
{
    if (isPlain() || ext.cx == 0 || ext.cy == 0)
        return 0;
    viewportExt = askedViewport_ = ext;
    makeIsotropic();
    return 1;
}

/// Shrinks one viewport extent so that a unit is as long across as down.
void Mapping::makeIsotropic()
{
    if (mode != MM_ISOTROPIC)
        return;
    const double x = std::fabs(double(askedViewport_.cx) / windowExt.cx);
    const double y = std::fabs(double(askedViewport_.cy) / windowExt.cy);
    viewportExt = askedViewport_;
    const auto shrunk = [](int ext, double factor) {
        const int size = nearestInt(std::fabs(ext * factor));
        return (size > 0 ? size : 1) * (ext < 0 ? -1 : 1);
    };
    if (x > y)
        viewportExt.cx = shrunk(askedViewport_.cx, y / x);
    else if (y > x)
        viewportExt.cy = shrunk(askedViewport_.cy, x / y);
}

}  // namespace pavane
