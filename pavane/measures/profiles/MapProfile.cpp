#include "pavane/measures/profiles/MapProfile.h"

#include "pavane/measures/profiles/sky_ruler.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace pavane
{

namespace
{

constexpr double step = 0.5;  // cells
/// Places as near to a cell as that are on it, so that rounding makes no gap beside a blank one.
constexpr double nothing = 1e-9;
constexpr double mostWidth = 1e5;

/// A straight part of the line and the direction across it.
struct Part {
    MapPlace from;
    double start = 0, length = 0;  ///< cells, along the whole line
    double alongX = 1, alongY = 0;
};

std::vector<Part> partsOf(const ProfileLine& line)
{
    std::vector<Part> parts;
    double start = 0;
    for (std::size_t i = 1; i < line.corners.size(); ++i) {
        const MapPlace &a = line.corners[i - 1], &b = line.corners[i];
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        if (!(length > 0))
            continue;
        parts.push_back({a, start, length, (b.x - a.x) / length, (b.y - a.y) / length});
        start += length;
    }
    return parts;
}

double valueAcross(const AMatrixAccess& cells, const ProfileLine& line, const Part& part,
                   const MapPlace& place)
{
    const int count = std::max(1, static_cast<int>(std::lround(line.width)));
    const double apart = line.width / count;
    double sum = 0, greatest = -std::numeric_limits<double>::infinity();
    for (int i = 0; i < count; ++i) {
        const double off = count == 1 ? 0 : (i - (count - 1) / 2.0) * apart;
        const double value =
            bilinear(cells, place.x - off * part.alongY, place.y + off * part.alongX);
        if (!std::isfinite(value))
            return MapProfile::none;
        sum += value;
        greatest = std::max(greatest, value);
    }
    return line.across == AcrossLine::greatest ? greatest
           : line.across == AcrossLine::sum    ? sum * (line.width > 1 ? apart : 1)
                                               : sum / count;
}

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
        const auto left = static_cast<double>(cells.cell(at, c));
        return x > 0 ? left * (1 - x) + static_cast<double>(cells.cell(at, c + 1)) * x : left;
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
    const int isPlaces = std::all_of(line.corners.begin(), line.corners.end(), [](MapPlace p) {
        return std::isfinite(p.x) && std::isfinite(p.y);
    });
    if (!isPlaces || !(line.width >= 0 && line.width <= mostWidth))
        return error = "the line of the profile is not made of places and a width", 0;
    try {
        const std::vector<Part> parts = partsOf(line);
        const double length = parts.empty() ? 0 : parts.back().start + parts.back().length;
        if (!(length > 0))
            return error = "the line of the profile has no length", 0;
        if (!(length / step < mostSamples))
            return error = "the line of the profile is longer than " +
                           std::to_string(static_cast<int>(mostSamples * step)) + " cells",
                   0;
        auto part = parts.begin();
        int known = 0;
        for (int i = 0; samples.empty() || samples.back().cells < length; ++i) {
            double at = i * step;
            at = at > length - nothing ? length : at;
            while (part + 1 != parts.end() && at > (part + 1)->start)
                ++part;
            Sample& sample = samples.emplace_back();
            sample.cells = at;
            sample.place = {part->from.x + (at - part->start) * part->alongX,
                            part->from.y + (at - part->start) * part->alongY};
            sample.value = valueAcross(cells, line, *part, sample.place);
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
