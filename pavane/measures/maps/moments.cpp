#include "pavane/measures/maps/moments.h"

#include "pavane/axes/maps/cells/map_statistics.h"
#include "pavane/measures/maps/moment_kernels.h"
#include "tessel/spectral_axis.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

namespace pavane
{

namespace
{

constexpr float blank = std::numeric_limits<float>::quiet_NaN();
constexpr float greatestFloat = std::numeric_limits<float>::max();
/// Cells whose sums stay in the cache while the planes go by.
constexpr std::int64_t blockCells = 1 << 13;
constexpr const char* noMemory = "there is no memory for its cells";

using Sums = MomentSums;
using Terms = MomentTerms;

/// A number that stands between two finite floats, or an infinity.
float limited(double value)
{
    constexpr double most = greatestFloat;
    return static_cast<float>(std::clamp(value, -most, most));
}

Terms termsOf(const MomentPlane& plane, double middle, double clip)
{
    Terms terms;
    const double v = plane.value - middle;
    const double error = plane.noise * plane.width * plane.noise * plane.width;
    double power = 1;
    for (std::size_t k = 0; k < 5; ++k, power *= v) {
        if (k < 3)
            terms.perValue[k] = plane.width * power;
        terms.alone[k + 3] = error * power;
    }
    terms.above = clip > 0 ? limited(clip * plane.noise) : -std::numeric_limits<float>::infinity();
    terms.noise = limited(plane.noise);
    return terms;
}

void raise(const Terms& terms, const float* values, std::size_t count, float* greatest,
           float* noise)
{
    for (std::size_t i = 0; i < count; ++i) {
        const float value = values[i];
        if (value > terms.above && value <= greatestFloat && !(value <= greatest[i])) {
            greatest[i] = value;
            noise[i] = terms.noise;
        }
    }
}

struct Value {
    double value = std::numeric_limits<double>::quiet_NaN();
    double error = std::numeric_limits<double>::quiet_NaN();
};

/// A moment of a cell that uses so many planes.
Value momentOf(Moment moment, const Sums& s, int used, double middle, double clip)
{
    const double total = s[0];
    const double totalError = std::sqrt(s[3]);
    if (moment == Moment::integral)
        return {total, totalError};
    if (!(total > clip * totalError) || !(total > 0))
        return {};
    const double mean = s[1] / total;
    // the same sums about the mean
    const double square = s[5] - 2 * mean * s[4] + mean * mean * s[3];
    if (moment == Moment::mean)
        return {mean + middle, std::sqrt(std::max(square, 0.0)) / total};
    // of one plane it is 0, and rounding shall not decide about it
    const double variance = used > 1 ? s[2] / total - mean * mean : 0;
    if (!(variance >= 0))
        return {};
    const double fourth = s[7] - 4 * mean * s[6] + 6 * mean * mean * s[5] -
                          4 * mean * mean * mean * s[4] + mean * mean * mean * mean * s[3];
    const double spread = fourth - 2 * variance * square + variance * variance * s[3];
    const double width = std::sqrt(variance);
    // a line of one plane has no width, and no error of it to first order
    return {width, width > 0 ? std::sqrt(std::max(spread, 0.0)) / (2 * width * total)
                             : std::numeric_limits<double>::quiet_NaN()};
}

/// The work on some rows at a time, and its room.
class Rows
{
public:
    Rows(const CubePart& part, double clip, std::vector<MomentMap>& maps)
        : part_(part), clip_(clip), maps_(maps)
    {
        const MomentPlane& first = part.planes.front();
        const MomentPlane& last = part.planes.back();
        middle_ = first.value / 2 + last.value / 2;
        const std::int64_t some = std::clamp<std::int64_t>(blockCells / part.columns, 1, part.rows);
        rows_ = part.isWhole ? part.rows : static_cast<int>(some);
        const std::size_t cells =
            static_cast<std::size_t>(rows_) * static_cast<std::size_t>(part.columns);
        values_.resize(cells);
        for (const MomentMap& map : maps)
            (map.moment == Moment::greatest ? hasGreatest_ : hasSums_) = 1;
        sums_.resize(hasSums_ ? cells : 0);
        used_.resize(hasSums_ ? cells : 0);
        greatest_.resize(hasGreatest_ ? cells : 0);
        noise_.resize(hasGreatest_ ? cells : 0);
        for (const MomentPlane& plane : part.planes)
            terms_.push_back(termsOf(plane, middle_, clip));
    }

    int run(std::string& error, const ProgressFunction& progress)
    {
        int some = 0;
        for (int row = 0; row < part_.rows; row += some) {
            some = std::min(rows_, part_.rows - row);
            if (!addPlanes(row, some, error, progress))
                return 0;
            for (MomentMap& map : maps_)
                put(map, row, some);
        }
        return 1;
    }

private:
    int addPlanes(int row, int some, std::string& error, const ProgressFunction& progress)
    {
        const auto count = static_cast<std::size_t>(some) * static_cast<std::size_t>(part_.columns);
        std::fill(sums_.begin(), sums_.end(), Sums{});
        std::fill(used_.begin(), used_.end(), 0);
        std::fill(greatest_.begin(), greatest_.end(), blank);
        std::fill(noise_.begin(), noise_.end(), blank);
        for (std::size_t p = 0; p < part_.planes.size(); ++p) {
            if (!part_.read(part_.planes[p].plane, row, some, values_.data(), error))
                return 0;
            if (hasSums_)
                add_(terms_[p], values_.data(), count, sums_.data(), used_.data());
            if (hasGreatest_)
                raise(terms_[p], values_.data(), count, greatest_.data(), noise_.data());
            const double part = (static_cast<double>(p) + 1) / double(part_.planes.size());
            if (progress && !progress((row + part * some) / part_.rows)) {
                error = readingGivenUp;
                return 0;
            }
        }
        return 1;
    }

    void put(MomentMap& map, int row, int some) const
    {
        float* const cells = map.cells.row(row);
        float* const errors = map.errors.row(row);
        const auto count = static_cast<std::size_t>(some) * static_cast<std::size_t>(part_.columns);
        if (map.moment == Moment::greatest) {
            std::copy_n(greatest_.data(), count, cells);
            std::copy_n(noise_.data(), count, errors);
            return;
        }
        for (std::size_t i = 0; i < count; ++i) {
            const Value value =
                used_[i] ? momentOf(map.moment, sums_[i], used_[i], middle_, clip_) : Value();
            cells[i] = static_cast<float>(value.value);
            errors[i] = static_cast<float>(value.error);
        }
    }

    const CubePart& part_;
    double clip_;
    std::vector<MomentMap>& maps_;
    AddMomentPlane add_ = addMomentPlane(bestSimdPath());
    double middle_ = 0;
    int rows_ = 1;
    int hasSums_ = 0, hasGreatest_ = 0;
    std::vector<Terms> terms_;
    std::vector<float> values_, greatest_, noise_;
    std::vector<Sums> sums_;
    std::vector<int> used_;
};

}  // namespace

int planesBetween(const MapHeader& header, int first, int last, int needsAxis,
                  std::vector<MomentPlane>& planes, std::string& unit, std::string& error)
{
    planes.clear();
    if (first < 0 || last < first || last >= header.planes) {
        error = "has " + std::to_string(header.planes) + " planes, from 0, not " +
                std::to_string(first) + "-" + std::to_string(last);
        return 0;
    }
    const SpectralAxis axis = SpectralAxis::of(header);
    if (axis.kind() == SpectralAxis::Kind::none && needsAxis) {
        error = "has no axis of frequencies or velocities that is known";
        return 0;
    }
    unit = axis.kind() == SpectralAxis::Kind::none ? "" : axis.unit();
    const std::vector<int> start = pixelsOfPlane(header, first);
    const auto at = static_cast<std::size_t>(std::max(axis.axis(), 0));
    try {
        for (int p = first; p <= last; ++p) {
            std::vector<int> pixels = pixelsOfPlane(header, p);
            MomentPlane plane;
            plane.plane = p;
            if (axis.axis() > 0) {
                plane.value = axis.value(pixels[at]);
                plane.width = axis.width(pixels[at]);
                pixels[at] = start[at];
                if (pixels != start)
                    continue;
            }
            if (needsAxis && (!std::isfinite(plane.value) || !(plane.width > 0) ||
                              !std::isfinite(plane.width))) {
                error = "has no velocity for plane " + std::to_string(p);
                return 0;
            }
            planes.push_back(plane);
        }
    } catch (const std::bad_alloc&) {
        error = noMemory;
        return 0;
    }
    return 1;
}

int findPlaneNoises(CubePart& part, std::string& error, const ProgressFunction& progress)
{
    AMatrix<float> cells(part.rows, part.columns);
    if (!cells.rows()) {
        error = noMemory;
        return 0;
    }
    const auto some = static_cast<int>(std::max<std::int64_t>((1 << 18) / part.columns, 1));
    double done = 0;
    for (MomentPlane& plane : part.planes) {
        int count = 0;
        for (int row = 0; row < part.rows; row += count) {
            count = std::min(some, part.rows - row);
            if (!part.read(plane.plane, row, count, cells.row(row), error))
                return 0;
            if (progress && !progress((done + double(row) / part.rows) /
                                      static_cast<double>(part.planes.size()))) {
                error = readingGivenUp;
                return 0;
            }
        }
        plane.noise = mapNoise(AFloatMatrixAccess(cells)).sigma;
        ++done;
    }
    return 1;
}

int findMoments(const CubePart& part, double clip, std::vector<MomentMap>& maps, std::string& error,
                const ProgressFunction& progress)
{
    if (part.planes.empty() || part.rows < 1 || part.columns < 1) {
        error = "has no planes";
        return 0;
    }
    for (MomentMap& map : maps)
        if (!map.cells.allocate(part.rows, part.columns) ||
            !map.errors.allocate(part.rows, part.columns)) {
            error = noMemory;
            return 0;
        }
    try {
        return Rows(part, clip, maps).run(error, progress);
    } catch (const std::bad_alloc&) {
        error = noMemory;
        return 0;
    }
}

std::string momentUnit(Moment moment, const std::string& bunit, const std::string& axisUnit)
{
    if (moment == Moment::greatest)
        return bunit;
    if (moment != Moment::integral)
        return axisUnit;
    return bunit.empty() ? axisUnit : bunit + "." + axisUnit;
}

}  // namespace pavane
