#include "pavane/axes/AGraphXYPoint.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/AxisPenState.h"
#include "pavane/axes/graph_styles.h"

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

}  // namespace

void AGraphXYPoint::draw(CDC&, CRect&, TMinMax&)
{
    if (!axis() || !y_)
        return;
    ABAxis& plot = *axis();
    const AxisPenState state(plot);
    plot.setLineWidth(graphLineWidth(style2_, plot.getFHeight()));
    // A dark red is not to be taken for an index.
    const unsigned long color =
        plot.isFlagSet(axisBitmapMode) ? PALETTEINDEX(plot.paletteIndex(color_)) : color_;
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
    return axis.markerReach() + graphLineWidth(style2_, axis.getFHeight()) / 2 + 1;
}

}  // namespace pavane
