#include "pavane/measures/profiles/MapProfile.h"

#include "pavane/measures/profiles/LinePath.h"
#include "pavane/measures/profiles/sky_ruler.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace pavane
{

namespace
{

/// Places as near to a cell as that are on it, so that rounding makes no gap beside a blank one.
constexpr double nothing = 1e-9;

}  // namespace

double bilinear(const AMatrixAccess& cells, double column, double row)
{
    const double lastColumn = cells.columns() - 1, lastRow = cells.rows() - 1;
    if (!(column >= -nothing && column <= lastColumn + nothing && row >= -nothing &&
          row <= lastRow + nothing))
        return MapProfile::none;
    const auto split = [](double at, int& whole) {
        whole = static_cast<int>(std::floor(at + nothing));
        const double part = at - whole;
        return part < nothing ? 0.0 : part;
    };
    int c = 0, r = 0;
    const double x = split(column, c), y = split(row, r);
    const auto inRow = [&](int at) {
        const float* const row = cells.floatRow(at);
        const auto cell = [&](int column) {
            return static_cast<double>(row ? row[column] : cells.cell(at, column));
        };
        return x > 0 ? cell(c) * (1 - x) + cell(c + 1) * x : cell(c);
    };
    const double value = y > 0 ? inRow(r) * (1 - y) + inRow(r + 1) * y : inRow(r);
    return std::isfinite(value) ? value : MapProfile::none;
}

int MapProfile::take(const AMatrixAccess& cells, const ProfileLine& line, const SkyCoordinates& sky,
                     const MapFrame& frame, std::string& error)
{
    samples.clear();
    across = line.across;
    hasSky = sky.isSet() || frame.onSky;
    try {
        LinePath path;
        if (!path.init(line, error))
            return 0;
        const double length = path.length();
        int known = 0;
        for (int i = 0; samples.empty() || samples.back().cells < length; ++i) {
            double at = i * LinePath::step;
            at = at > length - nothing ? length : at;
            const LinePath::Place place = path.at(at);
            Sample& sample = samples.emplace_back();
            sample.cells = at;
            sample.place = place.at;
            sample.value = path.value(cells, place);
            known += std::isfinite(sample.value);
            if (!hasSky)
                continue;
            const Sample& before = samples.size() > 1 ? samples[samples.size() - 2] : sample;
            const double from = samples.size() > 1 ? before.arcseconds : 0;
            sample.arcseconds =
                from + distanceBetween(before.place, sample.place, sky, frame).arcseconds;
        }
        if (!known) {
            samples.clear();
            error = "the line of the profile meets no cell with a value";
        }
    } catch (const std::bad_alloc&) {
        samples.clear();
        error = "there is no memory for the profile";
    }
    return !samples.empty();
}

}  // namespace pavane
