#include "pavane/measures/maps/polarisation.h"

#include "pavane/axes/maps/map_unit.h"
#include "pavane/measures/maps/pair_maps.h"
#include "pavane/measures/maps/regrid_map.h"
#include "tessel/made_map.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace pavane
{

namespace
{

constexpr float blank = std::numeric_limits<float>::quiet_NaN();
constexpr double degrees = 180 / std::numbers::pi;

/// Why a map does not go with Q; "" when it does.
std::string misfit(const StokesMap& q, const StokesMap& other, const std::string& name)
{
    if (!haveSameCells(*q.header, *other.header) || q.cells->rows() != other.cells->rows() ||
        q.cells->columns() != other.cells->columns())
        return "has other cells than " + name;
    std::string fault;
    if (pairFault(MapPair::difference, *q.header, *other.header, fault) == PairFault::none)
        return "";
    return "does not go with " + name + ", which " + fault;
}

/// The factor that brings values of a map into the unit of Q.
double unitOf(const StokesMap& q, const StokesMap& other)
{
    return mapUnit(other.header->bunit).factor / mapUnit(q.header->bunit).factor;
}

int isOther(const StokesMap& map, const std::string& stokes)
{
    return !map.header->stokes.empty() && map.header->stokes != stokes;
}

}  // namespace

int findPolarisation(PolarKind kind, const StokesMap& i, const StokesMap& q, const StokesMap& u,
                     double clip, PolarMap& made, std::string& error)
{
    made = PolarMap();
    const int hasI = i.cells && i.header;
    error = misfit(q, u, "U");
    if (error.empty() && hasI)
        error = misfit(q, i, "I");
    if (error.empty() && kind == PolarKind::degree && !hasI)
        error = "gives no degree without I";
    if (error.empty() && isOther(q, "Q"))
        error = "is Stokes " + q.header->stokes + ", not Q";
    if (error.empty() && isOther(u, "U"))
        error = "stands beside Stokes " + u.header->stokes + " in place of U";
    if (error.empty() && hasI && kind == PolarKind::degree && isOther(i, "I"))
        error = "stands beside Stokes " + i.header->stokes + " in place of I";
    if (!error.empty())
        return 0;
    const int rows = q.cells->rows(), columns = q.cells->columns();
    for (AMatrix<float>* const cells : {&made.cells, &made.errors, &made.angles})
        *cells = AMatrix<float>(rows, columns);
    if (!made.cells.rows() || !made.errors.rows() || !made.angles.rows()) {
        error = "there is no memory for its cells";
        return 0;
    }
    const double unitU = unitOf(q, u), unitI = hasI ? unitOf(q, i) : 1;
    const double s = (q.noise + u.noise * unitU) / 2, sI = hasI ? i.noise * unitI : 0;
    made.noise = s;
    made.header = *q.header;
    made.header.stokes.clear();
    constexpr int intensityCode = 5, degreeCode = 6, angleCode = 7;
    setStokesCode(made.header, kind == PolarKind::intensity ? intensityCode
                               : kind == PolarKind::degree  ? degreeCode
                                                            : angleCode);
    if (kind != PolarKind::intensity)
        made.header.bunit = kind == PolarKind::angle ? "deg" : "";
    const int usesI = hasI && kind == PolarKind::degree;
    const auto count = std::int64_t{rows} * columns;
    for (std::int64_t k = 0; k < count; ++k) {
        const double a = static_cast<double>(q.cells->data()[k]);
        const double b = static_cast<double>(u.cells->data()[k]) * unitU;
        const double total = usesI ? static_cast<double>(i.cells->data()[k]) * unitI : 0;
        const double p = std::sqrt(std::max(a * a + b * b - s * s, 0.0));
        const int isKnown = std::isfinite(a) && std::isfinite(b) && std::isfinite(total) &&
                            (p > clip * s || clip <= 0) &&
                            (!usesI || total > std::max(clip * sI, 0.0)) &&
                            (kind != PolarKind::angle || p > 0);
        const double angle = std::atan2(b, a) / 2 * degrees;
        double value = p, spread = s;
        if (kind == PolarKind::degree) {
            value = p / total;
            spread = std::hypot(s, value * sI) / total;
        } else if (kind == PolarKind::angle) {
            value = angle;
            spread = s / (2 * p) * degrees;
        }
        made.cells.data()[k] = isKnown ? static_cast<float>(value) : blank;
        made.errors.data()[k] = isKnown ? static_cast<float>(spread) : blank;
        made.angles.data()[k] = isKnown ? static_cast<float>(angle) : blank;
        made.known += isKnown;
    }
    return 1;
}

}  // namespace pavane
