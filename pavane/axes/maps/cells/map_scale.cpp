#include "pavane/axes/maps/cells/map_scale.h"

#include "pavane/axes/maps/cells/equal_shares.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// Where a logarithmic scale starts when its low end is not above 0, as a share of the high end.
constexpr double logarithmicDepth = 1e-3;
/// Ends of a range are cut to this, so that their distance is a number; cells are floats anyway.
constexpr double mostRange = 1e300;
}  // namespace

void MapScale::setRange(MapScaleKind kind, double low, double high)
{
    kind_ = kind;
    low_ = std::isfinite(low) ? std::clamp(low, -mostRange, mostRange) : 0;
    high_ = std::isfinite(high) ? std::clamp(high, -mostRange, mostRange) : low_ + 1;
    if (low_ > high_)
        std::swap(low_, high_);
    if (low_ == high_) {
        const double half = low_ == 0 ? 1 : std::fabs(low_) * 0.5;
        low_ -= half;
        high_ += half;
    }
    if (kind_ == MapScaleKind::logarithmic && low_ <= 0) {
        if (high_ > 0)
            low_ = high_ * logarithmicDepth;
        else
            kind_ = MapScaleKind::linear;
    }
    for (int i = 0; i <= knotSteps; ++i)
        knots_[static_cast<std::size_t>(i)] = low_ + (high_ - low_) * i / knotSteps;
}

int MapScale::equalize(const AMatrixAccess& cells)
{
    return equalShares(cells, low_, high_, knotSteps, knots_.data());
}

double MapScale::position(double value) const
{
    if (!(value >= low_))
        return 0;
    if (value >= high_)
        return 1;
    const double linear = (value / 2 - low_ / 2) / (high_ / 2 - low_ / 2);
    switch (kind_) {
    case MapScaleKind::linear:
        return linear;
    case MapScaleKind::squareRoot:
        return std::sqrt(linear);
    case MapScaleKind::logarithmic:
        return (std::log(value) - std::log(low_)) / (std::log(high_) - std::log(low_));
    case MapScaleKind::equalized:
        break;
    }
    const auto above = std::upper_bound(knots_.begin(), knots_.end(), value);
    const double step = *above - above[-1];
    return (static_cast<double>(above - knots_.begin() - 1) + (value - above[-1]) / step) /
           knotSteps;
}

double MapScale::value(double position) const
{
    if (!(position > 0))
        return low_;
    if (position >= 1)
        return high_;
    const double square = kind_ == MapScaleKind::squareRoot ? position * position : position;
    if (kind_ == MapScaleKind::logarithmic)
        return std::exp(std::log(low_) * (1 - position) + std::log(high_) * position);
    if (kind_ != MapScaleKind::equalized)
        return low_ * (1 - square) + high_ * square;
    const double place = position * knotSteps;
    const auto i = static_cast<std::size_t>(place);
    return knots_[i] + (knots_[i + 1] - knots_[i]) * (place - static_cast<double>(i));
}

}  // namespace pavane
