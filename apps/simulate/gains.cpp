#include "apps/simulate/gains.h"

#include "apps/simulate/stations.h"
#include "tessel/LineReader.h"
#include "tessel/paths.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <sstream>

namespace pavane
{

namespace
{

constexpr int anyIf = 0;
constexpr char anyHand = '*';

int isStation(const std::string& code)
{
    return std::any_of(vlbaStations.begin(), vlbaStations.end(),
                       [&](const Station& s) { return code == s.code; });
}

}  // namespace

int Gains::take(const std::string& line, std::string& error)
{
    std::istringstream words(line.substr(0, line.find('#')));
    std::string station, ifText, hand, rest[3];
    if (!(words >> station))
        return 1;
    Point point{};
    double* const values[] = {&point.hours, &point.amplitude, &point.degrees};
    int ifNumber = anyIf;
    int isGood = static_cast<bool>(words >> ifText >> hand >> rest[0] >> rest[1] >> rest[2]) &&
                 (ifText == "*" || (stoval(ifText, ifNumber) && ifNumber > anyIf)) &&
                 (hand == "R" || hand == "L" || hand == "*");
    for (int i = 0; isGood && i < 3; ++i)
        isGood = stoval(rest[i], *values[i]) && std::isfinite(*values[i]);
    if (isGood && words >> rest[0])
        isGood = 0;
    if (!isStation(station) || !isGood) {
        error = isGood ? "there is no station " + station
                       : "wants STATION IF HAND HOURS AMPLITUDE DEGREES";
        return 0;
    }
    std::vector<Point>& points = points_[{station, ifNumber, hand[0]}];
    points.insert(
        std::upper_bound(points.begin(), points.end(), point,
                         [](const Point& a, const Point& b) { return a.hours < b.hours; }),
        point);
    return 1;
}

int Gains::read(const std::string& name, std::string& error)
{
    points_.clear();
    AFile file(name, AFile::readOnly);
    if (!file.isOpen()) {
        error = name + ": " + readFault(name);
        return 0;
    }
    LineReader lines(file);
    std::string line;
    while (lines.next(line))
        if (!take(line, error)) {
            error = name + ", line " + std::to_string(lines.number()) + ": " + error;
            return 0;
        }
    if (lines.fault().empty())
        return 1;
    error = name + ": " + lines.fault();
    return 0;
}

std::complex<double> Gains::of(const std::string& station, int ifNumber, char hand,
                               double hours) const
{
    const std::pair<int, char> keys[] = {
        {ifNumber, hand}, {ifNumber, anyHand}, {anyIf, hand}, {anyIf, anyHand}};
    for (const auto& [key, side] : keys) {
        const auto found = points_.find({station, key, side});
        if (found == points_.end())
            continue;
        const std::vector<Point>& points = found->second;
        const auto next =
            std::upper_bound(points.begin(), points.end(), hours,
                             [](double time, const Point& p) { return time < p.hours; });
        const Point& b = next == points.end() ? points.back() : *next;
        const Point& a = next == points.begin() ? b : next[-1];
        const double part = b.hours > a.hours ? (hours - a.hours) / (b.hours - a.hours) : 0;
        return std::polar(1.0,
                          (a.degrees + part * (b.degrees - a.degrees)) * std::numbers::pi / 180) *
               (a.amplitude + part * (b.amplitude - a.amplitude));
    }
    return 1;
}

}  // namespace pavane
