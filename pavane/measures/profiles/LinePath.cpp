#include "pavane/measures/profiles/LinePath.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr double mostWidth = 1e5;

}  // namespace

int LinePath::init(const ProfileLine& line, std::string& error)
{
    parts_.clear();
    line_ = line;
    length_ = 0;
    const int isPlaces = std::all_of(line.corners.begin(), line.corners.end(), [](MapPlace p) {
        return std::isfinite(p.x) && std::isfinite(p.y);
    });
    if (!isPlaces || !(line.width >= 0 && line.width <= mostWidth))
        return error = "the line of the profile is not made of places and a width", 0;
    for (std::size_t i = 1; i < line.corners.size(); ++i) {
        const MapPlace &a = line.corners[i - 1], &b = line.corners[i];
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        if (!(length > 0))
            continue;
        parts_.push_back({a, length_, (b.x - a.x) / length, (b.y - a.y) / length});
        length_ += length;
    }
    if (!(length_ > 0))
        return error = "the line of the profile has no length", 0;
    if (!(length_ / step < MapProfile::mostSamples))
        return error = "the line of the profile is longer than " +
                       std::to_string(static_cast<int>(MapProfile::mostSamples * step)) + " cells",
               0;
    return 1;
}

LinePath::Place LinePath::at(double cells) const
{
    const auto next = std::lower_bound(parts_.begin() + 1, parts_.end(), cells,
                                       [](const Part& part, double at) { return part.start < at; });
    const Part& part = *(next - 1);
    const double along = cells - part.start;
    return {{part.from.x + along * part.alongX, part.from.y + along * part.alongY},
            part.alongX,
            part.alongY};
}

double LinePath::nextCorner(double cells) const
{
    const auto next = std::upper_bound(parts_.begin(), parts_.end(), cells,
                                       [](double at, const Part& part) { return at < part.start; });
    return next == parts_.end() ? length_ : next->start;
}

double LinePath::value(const AMatrixAccess& cells, const Place& place) const
{
    const int count = std::max(1, static_cast<int>(std::lround(line_.width)));
    const double apart = line_.width / count;
    double sum = 0, greatest = -std::numeric_limits<double>::infinity();
    for (int i = 0; i < count; ++i) {
        const double off = count == 1 ? 0 : (i - (count - 1) / 2.0) * apart;
        const double value =
            bilinear(cells, place.at.x - off * place.alongY, place.at.y + off * place.alongX);
        if (!std::isfinite(value))
            return MapProfile::none;
        sum += value;
        greatest = std::max(greatest, value);
    }
    return line_.across == AcrossLine::greatest ? greatest
           : line_.across == AcrossLine::sum    ? sum * (line_.width > 1 ? apart : 1)
                                                : sum / count;
}

void LinePath::rows(double& first, double& last) const
{
    first = std::numeric_limits<double>::infinity();
    last = -first;
    for (const MapPlace& corner : line_.corners) {
        first = std::min(first, corner.y - line_.width / 2);
        last = std::max(last, corner.y + line_.width / 2);
    }
}

}  // namespace pavane
