#include "pavane/measures/profiles/CellHistogram.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <new>
#include <numbers>

namespace pavane
{

namespace
{

/// The part of a normal distribution within one width of its middle.
const double withinOne = std::erf(std::numbers::sqrt2 / 2);
constexpr double partsOfNoise = 5, partsOfRange = 100;

/// Calls `each` with every cell of the area, or of the map. 0 when stopped or without memory.
template <typename Each>
int eachCell(const AMatrixAccess& cells, const AreaCells* area, const StopFlag* stop,
             const Each& each)
{
    RowReader reader(cells);
    const int rows = area ? area->mask.rows() : cells.rows();
    for (int r = 0; r < rows; ++r) {
        const float* const row =
            isStopped(stop) ? nullptr : reader.row((area ? area->firstRow : 0) + r);
        if (!row)
            return 0;
        if (!area) {
            for (int c = 0; c < cells.columns(); ++c)
                each(row[c]);
            continue;
        }
        for (std::int64_t w = 0; w < area->mask.rowWords(); ++w)
            for (ABitMatrix::Word left = area->mask.row(r)[w]; left; left &= left - 1)
                each(row[area->firstColumn + static_cast<int>(w) * ABitMatrix::wordBits +
                         std::countr_zero(left)]);
    }
    return 1;
}

/// 1, 2 or 5 times a power of ten, not below `width`.
double roundWidth(double width)
{
    const double power = std::pow(10.0, std::floor(std::log10(width)));
    for (const double times : {1.0, 2.0, 5.0})
        if (power * times >= width * (1 - 1e-9))
            return power * times;
    return power * 10;
}

double widthOf(double least, double greatest, double sigma)
{
    const double range = greatest - least;
    const double wanted = sigma > 0 ? sigma / partsOfNoise : range / partsOfRange;
    const double fewest = range / (CellHistogram::mostBins - 2);
    const double width = std::max({wanted, fewest, std::numeric_limits<double>::min() * 1e6,
                                   // values that far from 0 are not told apart more finely
                                   std::max(std::fabs(least), std::fabs(greatest)) * 1e-12});
    return roundWidth(width);
}

}  // namespace

int CellHistogram::take(const AMatrixAccess& cells, const AreaCells* area, const MapNoise& noise,
                        const StopFlag* stop)
{
    *this = {};
    constexpr double infinity = std::numeric_limits<double>::infinity();
    double least = infinity, greatest = -infinity;
    std::int64_t known = 0, all = 0;
    const auto range = [&](float value) {
        ++all;
        if (!std::isfinite(value))
            return;
        ++known;
        least = std::min(least, static_cast<double>(value));
        greatest = std::max(greatest, static_cast<double>(value));
    };
    if (!eachCell(cells, area, stop, range))
        return 0;
    blank_ = all - known;
    cells_ = known;
    if (!known)
        return 1;
    const double sigma = noise.finiteCells ? noise.sigma : 0;
    width_ = widthOf(least, greatest, sigma);
    first_ = std::floor(least / width_);
    const double last = std::max(std::ceil(greatest / width_), first_ + 1);
    std::int64_t within = 0;
    try {
        counts_.resize(static_cast<std::size_t>(std::min(last - first_, mostBins * 1.0)));
        const auto count = [&](float value) {
            if (!std::isfinite(value))
                return;
            const double place = static_cast<double>(value) / width_ - first_;
            const auto bin = static_cast<std::size_t>(std::max(place, 0.0));
            ++counts_[std::min(bin, counts_.size() - 1)];
            within += std::fabs(static_cast<double>(value) - noise.median) <= sigma;
        };
        if (!eachCell(cells, area, stop, count)) {
            *this = {};
            return 0;
        }
    } catch (const std::bad_alloc&) {
        *this = {};
        return 0;
    }
    median_ = noise.median;
    sigma_ = sigma;
    all_ = static_cast<double>(within) / withinOne;
    return 1;
}

std::int64_t CellHistogram::greatestCount() const
{
    return counts_.empty() ? 0 : *std::max_element(counts_.begin(), counts_.end());
}

double CellHistogram::normal(int bin) const
{
    if (!(sigma_ > 0))
        return std::numeric_limits<double>::quiet_NaN();
    const auto below = [&](double value) {
        return std::erfc((median_ - value) / (sigma_ * std::numbers::sqrt2)) / 2;
    };
    return all_ * (below(edge(bin + 1)) - below(edge(bin)));
}

}  // namespace pavane
