#include "pavane/axes/ABAxis.h"

#include "pavane/axes/ranges/pixel_rounding.h"

#include <cmath>

namespace pavane
{
namespace
{

/// The logarithms of a direction: the stored ones, or those of the range while none are stored.
TMnMx logarithms(TMnMx stored, double min, double max)
{
    if (stored.min > stored.max)
        return {std::log10(min), std::log10(max)};
    return stored;
}

double fraction(double value, signed char direct, double min, double max, TMnMx stored)
{
    if (direct != 0)
        return spanFraction(value, min, max);
    const TMnMx ends = logarithms(stored, min, max);
    return spanFraction(std::log10(value), ends.min, ends.max);
}

double valueAt(double wp, signed char direct, double min, double max, TMnMx stored)
{
    if (direct != 0)
        return min + wp * (max - min);
    const TMnMx ends = logarithms(stored, min, max);
    return std::pow(10.0, ends.min + wp * (ends.max - ends.min));
}

double fineAt(double wp, int start, int end, bool forward)
{
    const double offset = wp * (static_cast<double>(end) - start);
    return forward ? start + offset : end - offset;
}

}  // namespace

double ABAxis::RPXtoWPX(const double& x) const
{
    return fraction(x, xDirect_, range_.xMin, range_.xMax, logX());
}

double ABAxis::RPYtoWPY(const double& y) const
{
    return fraction(y, yDirect_, range_.yMin, range_.yMax, logY());
}

double ABAxis::RPZtoWPZ(const double& z) const { return spanFraction(z, range_.zMin, range_.zMax); }

int ABAxis::RPXtoGPX(const double& x) const
{
    return pixelAt(RPXtoWPX(x), graphRect_.left, graphRect_.right, xDirect_ >= 0);
}

int ABAxis::RPYtoGPY(const double& y) const
{
    return pixelAt(RPYtoWPY(y), graphRect_.top, graphRect_.bottom, yDirect_ < 0);
}

double ABAxis::GPXtoRPX(const int& gx) const
{
    return valueAt(GPXtoWPX(gx), xDirect_, range_.xMin, range_.xMax, logX());
}

double ABAxis::GPYtoRPY(const int& gy) const
{
    return valueAt(GPYtoWPY(gy), yDirect_, range_.yMin, range_.yMax, logY());
}

double ABAxis::GPXtoWPX(const int& gx) const
{
    return fractionAt(gx, graphRect_.left, graphRect_.right, xDirect_ >= 0);
}

double ABAxis::GPYtoWPY(const int& gy) const
{
    return fractionAt(gy, graphRect_.top, graphRect_.bottom, yDirect_ < 0);
}

CPointF ABAxis::RPtoGPF(double x, double y) const
{
    return {fineAt(RPXtoWPX(x), graphRect_.left, graphRect_.right, xDirect_ >= 0),
            fineAt(RPYtoWPY(y), graphRect_.top, graphRect_.bottom, yDirect_ < 0)};
}

}  // namespace pavane
