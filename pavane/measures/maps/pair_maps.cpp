#include "pavane/measures/maps/pair_maps.h"

#include "pavane/axes/maps/map_unit.h"
#include "pavane/measures/maps/regrid_map.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace pavane
{

namespace
{

constexpr float blank = std::numeric_limits<float>::quiet_NaN();
constexpr double masPerDegree = 3600e3;
constexpr int fewDigits = 5;
constexpr int frequencyDigits = 9;

SkyBeam beamOf(const MapHeader& header) { return {header.bmaj, header.bmin, header.bpa}; }

std::string textOf(const SkyBeam& beam)
{
    return valToStr(beam.major * masPerDegree, fewDigits) + " x " +
           valToStr(beam.minor * masPerDegree, fewDigits) + " mas, " +
           valToStr(beam.angle, fewDigits) + " deg";
}

std::string sizeText(const MapHeader& header)
{
    return header.axes.size() < 2 ? "no"
                                  : std::to_string(header.axes[0].length) + " x " +
                                        std::to_string(header.axes[1].length);
}

/// From values of the second map to the unit of the first; 0 when units differ in more.
double unitFactor(const MapHeader& first, const MapHeader& second)
{
    const MapUnit a = mapUnit(first.bunit), b = mapUnit(second.bunit);
    return a.name == b.name ? b.factor / a.factor : 0;
}

std::string ratioUnit(const MapHeader& first, const MapHeader& second, double factor)
{
    return factor > 0 ? "" : first.bunit + "/(" + second.bunit + ")";
}

/// The values of a cell in both maps, and what of their errors counts.
struct Values {
    double first, second;
    double firstError, secondError;
};

double relative(const Values& v)
{
    return std::hypot(v.firstError / v.first, v.secondError / v.second);
}

}  // namespace

int areSameBeams(const SkyBeam& a, const SkyBeam& b)
{
    constexpr double near = 0.01;
    const double turn = 2 * (a.angle - b.angle) * std::numbers::pi / 180;
    const auto sum = [](const SkyBeam& s) { return s.major * s.major + s.minor * s.minor; };
    const auto spread = [](const SkyBeam& s) { return s.major * s.major - s.minor * s.minor; };
    // the size of the difference of both matrices, whose angles count twice
    const double apart =
        std::hypot(spread(a) - spread(b) * std::cos(turn), spread(b) * std::sin(turn));
    const double most = std::max(a.major * a.major, b.major * b.major);
    return (std::fabs(sum(a) - sum(b)) + apart) / 2 <= near * most;
}

SkyBeam commonBeam(const SkyBeam& a, const SkyBeam& b)
{
    SkyBeam between;
    if (beamBetween(a, b, between))
        return b;
    if (beamBetween(b, a, between))
        return a;
    const double width = std::max(a.major, b.major);
    return {width, width, 0};
}

PairFault pairFault(MapPair pair, const MapHeader& first, const MapHeader& second,
                    std::string& error)
{
    error.clear();
    if (first.hasBeam && second.hasBeam && !areSameBeams(beamOf(first), beamOf(second))) {
        error = "has another beam (" + textOf(beamOf(second)) + " against " +
                textOf(beamOf(first)) + ")";
        return PairFault::beams;
    }
    if (pair != MapPair::ratio && !(unitFactor(first, second) > 0)) {
        error = "has values in '" + second.bunit + "', not in '" + first.bunit + "'";
        return PairFault::units;
    }
    if (pair != MapPair::index)
        return PairFault::none;
    constexpr double near = 1e-6;
    if (!(first.frequency > 0) || !(second.frequency > 0))
        error = "makes no index: the frequency of " +
                std::string(second.frequency > 0 ? "the first map" : "this map") + " is not known";
    else if (std::fabs(std::log(first.frequency / second.frequency)) < near)
        error = "makes no index: both maps are at " + valToStr(first.frequency, frequencyDigits) +
                " Hz";
    return error.empty() ? PairFault::none : PairFault::frequencies;
}

PairFault combineMaps(const MapOfPair& first, const MapOfPair& second, const PairRule& rule,
                      PairMap& made, std::string& error)
{
    made = PairMap();
    if (const PairFault fault = pairFault(rule.pair, first.header, second.header, error);
        fault != PairFault::none)
        return fault;
    const int rows = first.cells.rows(), columns = first.cells.columns();
    if (!haveSameCells(first.header, second.header) || second.cells.rows() != rows ||
        second.cells.columns() != columns) {
        error = "has other cells than the first map (" + sizeText(second.header) + " against " +
                sizeText(first.header) + ", or another place, size or frame of them)";
        return PairFault::cells;
    }
    made.cells = AMatrix<float>(rows, columns);
    made.errors = AMatrix<float>(rows, columns);
    if (!made.cells.rows() || !made.errors.rows()) {
        error = "there is no memory for its cells";
        return PairFault::memory;
    }
    const double unit = unitFactor(first.header, second.header);
    const double factor = unit > 0 ? unit : 1;
    made.header = first.header;
    made.header.bunit = rule.pair == MapPair::difference ? first.header.bunit
                        : rule.pair == MapPair::ratio ? ratioUnit(first.header, second.header, unit)
                                                      : "";
    const double span = rule.pair == MapPair::index
                            ? std::log(first.header.frequency / second.header.frequency)
                            : 1;
    const double noise[2] = {first.noise, second.noise * factor};
    const auto count = std::int64_t{rows} * columns;
    for (std::int64_t i = 0; i < count; ++i) {
        const double a = static_cast<double>(first.cells.data()[i]);
        const double b = static_cast<double>(second.cells.data()[i]) * factor;
        const Values v{a, b, std::hypot(noise[0], rule.calibration * a),
                       std::hypot(noise[1], rule.calibration * b)};
        const int isAbove =
            a > std::max(rule.clip * noise[0], 0.0) && b > std::max(rule.clip * noise[1], 0.0);
        double value = a - b, spread = std::hypot(v.firstError, v.secondError);
        if (rule.pair == MapPair::ratio) {
            value = a / b;
            spread = value * relative(v);
        } else if (rule.pair == MapPair::index) {
            value = std::log(a / b) / span;
            spread = relative(v) / std::fabs(span);
        }
        const int isKnown = std::isfinite(a) && std::isfinite(b) && std::isfinite(value) &&
                            (rule.pair == MapPair::difference || isAbove);
        made.cells.data()[i] = isKnown ? static_cast<float>(value) : blank;
        made.errors.data()[i] = isKnown ? static_cast<float>(spread) : blank;
        made.known += isKnown;
    }
    return PairFault::none;
}

}  // namespace pavane
