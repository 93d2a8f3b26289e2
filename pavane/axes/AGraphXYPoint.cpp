#include "pavane/axes/AGraphXYPoint.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/axis_curve.h"
#include "pavane/axes/AxisPenState.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/marker_blocks.h"
#include "pavane/images/PointPixels.h"
#include "platform/CDC.h"

#include <cmath>

namespace pavane
{
namespace
{

void mark(ABAxis& axis, int shape, int x, int y, unsigned long color)
{
    switch (shape) {
    case graphPointCross:
        axis.pointCross(x, y, color);
        break;
    case graphPointCrossInverse:
        axis.pointCrossInv(x, y, color);
        break;
    case graphPointBar:
        axis.pointBar(x, y, color);
        break;
    case graphPointStar:
        axis.pointCross(x, y, color);
        axis.pointCrossInv(x, y, color);
        break;
    default:
        axis.point(x, y, color);
    }
}

/// Fewer points are marked one by one.
constexpr int fewPoints = 1000;

/// What the markers of a run of pixels in a row cover, edges included; empty unless they are
/// blocks.
CRect blocksOf(const ABAxis& axis, int shape, int first, int last, int y)
{
    if (shape == graphPointBar)
        return barBlocks(first, last, y, axis.markerSize(axis.parts().cross));
    const int dot = axis.markerSize(axis.parts().point);
    const bool other = shape == graphPointCross || shape == graphPointCrossInverse ||
                       shape == graphPointStar || !isSquareDot(dot, axis.isOnPage());
    return other ? CRect(0, 0, -1, -1) : dotBlocks(first, last, y, dot);
}

/// Marks a run of pixels in a row: blocks that touch are one.
void markRun(ABAxis& axis, int shape, int first, int last, int y, unsigned long color)
{
    const CRect blocks = blocksOf(axis, shape, first, last, y);
    if (blocks.right < blocks.left || !axis.dc() || axis.isFlagSet(axisBitmapMode)) {
        for (int x = first; x <= last; ++x)
            mark(axis, shape, x, y, color);
        return;
    }
    const CBrush brush(static_cast<COLORREF>(color));
    axis.dc()->FillRect({blocks.left, blocks.top, blocks.right + 1, blocks.bottom + 1}, &brush);
}

}  // namespace

void AGraphXYPoint::draw(CDC&, CRect&, TMinMax&)
{
    if (!axis() || !y_)
        return;
    ABAxis& plot = *axis();
    const AxisPenState state(plot);
    plot.setLineWidth(plot.graphLine(style2_));
    // A dark red is not to be taken for an index.
    const unsigned long color =
        plot.isFlagSet(axisBitmapMode) ? PALETTEINDEX(plot.paletteIndex(color_)) : color_;
    if (count_ > fewPoints) {
        PointPixels pixels(curveScaleX(plot), curveScaleY(plot));
        if (pixels.isUsable()) {
            pixels.add({x_, y_, count_, 0, 1});
            pixels.forRuns(
                [&](int first, int last, int y) { markRun(plot, style1_, first, last, y, color); });
            return;
        }
    }
    CPoint last(-1, -1);
    for (int i = 0; i < count_; ++i) {
        const double wx = plot.RPXtoWPX(x_[i]);
        const double wy = plot.RPYtoWPY(y_[i]);
        if (!(wx >= 0 && wx <= 1 && wy >= 0 && wy <= 1))
            continue;  // outside, or not finite
        const CPoint pixel(plot.RPXtoGPX(x_[i]), plot.RPYtoGPY(y_[i]));
        if (pixel == last)
            continue;
        mark(plot, style1_, pixel.x, pixel.y, color);
        last = pixel;
    }
}

int AGraphXYPoint::overhang(const ABAxis& axis) const
{
    // Strokes end a unit beyond the last one that they cover, and wide ones in a round cap.
    return axis.markerReach() + axis.graphLine(style2_) / 2 + 1;
}

void AGraphXYPoint::drawSample(CDC&, const CRect& box)
{
    if (!axis())
        return;
    const AxisPenState state(*axis());
    axis()->setLineWidth(axis()->graphLine(style2_));
    const CPoint centre = box.CenterPoint();
    mark(*axis(), style1_, centre.x, centre.y, color_);
}

}  // namespace pavane
