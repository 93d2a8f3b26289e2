#include "platform/smooth_curve.h"

#include "platform/CDC.h"
#include "platform/core/DeviceBackend.h"
#include "platform/core/RisingStroke.h"

#include <algorithm>

namespace pavane
{

int strokeCurve(CDC& dc, const CurveData& curve, int width, COLORREF color)
{
    constexpr COLORREF colors = 0xFFFFFF;  // beyond them lie indices of palettes
    constexpr int far = 1000;
    const DeviceBackend* const backend = dc.backend();
    const int smooth = dc.SetSmooth(0);
    dc.SetSmooth(smooth);
    if (!curve.y || curve.n < 1 || !backend || dc.IsVector() || !smooth ||
        dc.GetROP2() != R2_COPYPEN || color > colors || !backend->surface().bits)
        return 0;
    CPoint ends[2] = {{0, 0}, {far, far}};
    dc.LPtoDP(ends, 2);
    if (ends[1].x - ends[0].x != far || ends[1].y - ends[0].y != far)
        return 0;
    CRect box;
    const int kind = dc.GetClipBox(box);
    if (kind == COMPLEXREGION)
        return 0;
    box.OffsetRect(ends[0].x, ends[0].y);
    const Region clip(kind == SIMPLEREGION ? box : CRect());
    CurveData device = curve;
    device.xOrigin += ends[0].x;
    device.yOrigin += ends[0].y;
    RisingStroke stroke(backend->surface(), clip, std::max(width, 1));
    if (!stroke.add(device))
        return 0;
    stroke.paint(pixelOf(color));
    return 1;
}

}  // namespace pavane
