#include "pavane/axes/ranges/RectMinMaxTransform.h"

#include "pavane/axes/ranges/pixel_rounding.h"

namespace pavane
{

RectMinMaxTransform::RectMinMaxTransform(const CRect& rect, const TMinMax& range, int modeX,
                                         int modeY)
    : rect_(rect), range_(range), modeX_(modeX), modeY_(modeY)
{
}

// Device rows count downwards, so upward-growing values run from the bottom to the top.

double RectMinMaxTransform::GPXtoWPX(int gx) const
{
    return fractionAt(gx, rect_.left, rect_.right, modeX_ >= 0);
}

double RectMinMaxTransform::GPYtoWPY(int gy) const
{
    return fractionAt(gy, rect_.top, rect_.bottom, modeY_ < 0);
}

double RectMinMaxTransform::GPXtoRPX(int gx) const
{
    return GPXtoWPX(gx) * (range_.xMax - range_.xMin) + range_.xMin;
}

double RectMinMaxTransform::GPYtoRPY(int gy) const
{
    return GPYtoWPY(gy) * (range_.yMax - range_.yMin) + range_.yMin;
}

double RectMinMaxTransform::RPXtoWPX(const double& x) const
{
    return spanFraction(x, range_.xMin, range_.xMax);
}

double RectMinMaxTransform::RPYtoWPY(const double& y) const
{
    return spanFraction(y, range_.yMin, range_.yMax);
}

int RectMinMaxTransform::RPXtoGPX(const double& x) const
{
    return pixelAt(RPXtoWPX(x), rect_.left, rect_.right, modeX_ >= 0);
}

int RectMinMaxTransform::RPYtoGPY(const double& y) const
{
    return pixelAt(RPYtoWPY(y), rect_.top, rect_.bottom, modeY_ < 0);
}

}  // namespace pavane
