#include "pavane/axes/maps/HistogramPlot.h"

#include "pavane/images/color_slope.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace pavane
{

namespace
{

constexpr int handleReach = 5;
constexpr int curveReach = 8;
/// Of what is shown: beyond the range on each side, and one step of a key.
constexpr double airPart = 0.2;
constexpr double stepPart = 0.005;
/// The handles keep this part of what is shown between them.
constexpr double leastPart = 1e-6;
constexpr double biasStep = 0.01;
constexpr double contrastStep = 1.05;
constexpr int coarseSteps = 10;

}  // namespace

void HistogramPlot::setCounts(const std::vector<std::int64_t>& counts, TMnMx shown)
{
    counts_ = shown.min < shown.max ? counts : std::vector<std::int64_t>();
    shown_ = shown.min < shown.max ? shown : TMnMx{0, 1};
    most_ = counts_.empty() ? 0 : *std::max_element(counts_.begin(), counts_.end());
}

void HistogramPlot::setLook(const MapScale& scale, const AColorPlay& play)
{
    scale_ = scale;
    play_ = played_ = play;
    low_ = scale.low();
    high_ = scale.high();
}

TMnMx HistogramPlot::shownFor(TMnMx cells, TMnMx range)
{
    const double air = (range.max - range.min) * airPart;
    TMnMx shown{range.min - air, range.max + air};
    if (cells.min < cells.max &&
        (cells.max - cells.min) * (1 - 2 * airPart) <= range.max - range.min)
        shown = {std::min(cells.min, range.min), std::max(cells.max, range.max)};
    return shown;
}

double HistogramPlot::xOf(double value) const
{
    return rect_.left + (value - shown_.min) / (shown_.max - shown_.min) * rect_.Width();
}

double HistogramPlot::valueAt(double x) const
{
    const double part = (x - rect_.left) / std::max(1, rect_.Width());
    return shown_.min + part * (shown_.max - shown_.min);
}

int HistogramPlot::heightAt(int x) const
{
    if (isEmpty() || most_ < 1 || x < rect_.left || x >= rect_.right)
        return 0;
    // the greatest of the counts that share a column, so that no spike is lost
    const auto n = static_cast<std::int64_t>(counts_.size());
    const std::int64_t first = (x - rect_.left) * n / rect_.Width();
    const std::int64_t end = std::max(first + 1, (x + 1 - rect_.left) * n / rect_.Width());
    const std::int64_t count = *std::max_element(counts_.begin() + first, counts_.begin() + end);
    return static_cast<int>(std::lround(std::log1p(static_cast<double>(count)) /
                                        std::log1p(static_cast<double>(most_)) * rect_.Height()));
}

double HistogramPlot::placeAt(int x) const
{
    return play_.place(scale_.position(valueAt(x + 0.5)));
}

int HistogramPlot::curveAt(int x) const
{
    return rect_.bottom - 1 - static_cast<int>(std::lround(placeAt(x) * (rect_.Height() - 1)));
}

HistogramPlot::Part HistogramPlot::hit(CPoint point) const
{
    if (rect_.IsRectEmpty())
        return Part::none;
    const double toLow = std::fabs(point.x - xOf(low_)), toHigh = std::fabs(point.x - xOf(high_));
    const Part nearer =
        toLow <= toHigh && (toLow < toHigh || point.x <= xOf(low_)) ? Part::low : Part::high;
    if (std::min(toLow, toHigh) <= handleReach || point.y >= rect_.bottom)
        return nearer;
    for (int x = point.x - curveReach; x <= point.x + curveReach; ++x)
        if (x >= rect_.left && x < rect_.right && std::abs(curveAt(x) - point.y) <= curveReach)
            return Part::curve;
    // a steep curve jumps between two columns
    for (int x = point.x - curveReach; x < point.x + curveReach; ++x)
        if (x >= rect_.left && x + 1 < rect_.right &&
            std::clamp(point.y, std::min(curveAt(x), curveAt(x + 1)),
                       std::max(curveAt(x), curveAt(x + 1))) == point.y)
            return Part::curve;
    return Part::none;
}

void HistogramPlot::hold(Part part, CPoint point)
{
    held_ = part;
    last_ = point;
    across_ = up_ = 0;
    from_ = part == Part::low ? low_ : high_;
    heldPlay_ = played_ = play_;
}

void HistogramPlot::moveEnd(Part part, double to)
{
    const double least = (shown_.max - shown_.min) * leastPart;
    if (part == Part::low)
        low_ = std::min(to, high_ - least);
    else
        high_ = std::max(to, low_ + least);
}

void HistogramPlot::dragTo(CPoint point, int fine)
{
    const double speed = fine ? finePart : 1;
    across_ += (point.x - last_.x) * speed;
    up_ += (last_.y - point.y) * speed;
    last_ = point;
    if (held_ == Part::low || held_ == Part::high) {
        moveEnd(held_, from_ + across_ / std::max(1, rect_.Width()) * (shown_.max - shown_.min));
    } else if (held_ == Part::curve) {
        // the point of the curve that is held stays under the pointer: across in places of colours
        played_.bias =
            heldPlay_.bias + across_ / std::max(1.0, xOf(scale_.high()) - xOf(scale_.low()));
        played_.contrast =
            up_ == 0 ? heldPlay_.contrast
                     : steeper(heldPlay_.contrast,
                               std::pow(contrastOfHeight, up_ / std::max(1, rect_.Height())));
    }
}

void HistogramPlot::step(Part part, int right, int up, int coarse)
{
    const int steps = coarse ? coarseSteps : 1;
    played_ = play_;
    if (part == Part::curve) {
        played_.bias += right * steps * biasStep;
        if (up != 0)
            played_.contrast = steeper(play_.contrast, std::pow(contrastStep, up * steps));
    } else if (part != Part::none) {
        const double by = (right + up) * steps * stepPart * (shown_.max - shown_.min);
        moveEnd(part, (part == Part::low ? low_ : high_) + by);
    }
}

}  // namespace pavane
