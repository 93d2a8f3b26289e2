#include "tessel/SkyCoordinates.h"

#include "tessel/SinPlane.h"
#include "tessel/sky_axes.h"
#include "tessel/sky_cards.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <numbers>
#include <string_view>
#include <utility>
#include <wcslib/wcs.h>

namespace pavane
{

namespace
{

constexpr double degree = std::numbers::pi / 180;
/// Degrees either side of a point for differences: the rounding of positions stays below 1e-11 of
/// it, and so does the curvature of a projection, which goes with its square in radians.
constexpr double differenceDegrees = 1e-3;
/// Farther right ascensions and reference pixels are slips of a writer, not places.
constexpr double farthestAngle = 3600;
constexpr double farthestPixel = 1e9;

/// The projections that WCSLIB knows by a code of three letters; NCP and GLS are older names.
constexpr std::string_view projections[] = {"AZP", "SZP", "TAN", "STG", "SIN", "ARC", "ZPN", "ZEA",
                                            "AIR", "CYP", "CEA", "CAR", "MER", "COP", "COE", "COD",
                                            "COO", "SFL", "PAR", "MOL", "AIT", "BON", "PCO", "TSC",
                                            "CSC", "QSC", "HPX", "XPH", "NCP", "GLS"};

int finiteBelow(double value, double limit) { return std::abs(value) <= limit; }

/// Why the header places nothing; "" when it does.
std::string faultOf(const MapHeader& header, const SkyCards& cards)
{
    if (header.axes.size() < 2 || !header.hasCelestialAxes)
        return "the map has no celestial axes";
    const MapAxis& x = header.axes[0];
    const MapAxis& y = header.axes[1];
    const SkyAxes sky = skyAxesOf(x.ctype, y.ctype);
    if (sky.kind == SkyAxes::Kind::other)
        return "the axes " + x.ctype + " and " + y.ctype + " are in no frame that is known";
    if (std::find(std::begin(projections), std::end(projections), sky.projection) ==
        std::end(projections))
        return "the projection of " + x.ctype + " and " + y.ctype + " is not supported";
    if (!cards.hasPosition)
        return "the header has no position of the reference pixel (CRVAL)";
    if (cards.isCoupled)
        return "the sky position depends on more axes than two";
    const MapAxis& latitude = sky.longitude ? x : y;
    if (!finiteBelow(x.crval, farthestAngle) || !finiteBelow(y.crval, farthestAngle) ||
        !finiteBelow(latitude.crval, 90) || !finiteBelow(x.crpix, farthestPixel) ||
        !finiteBelow(y.crpix, farthestPixel))
        return "the reference position or pixel cannot be";
    return "";
}

/// The frame by the axes and RADESYS, or by the rules for its absence; why there is none, "" when
/// there is.
std::string frameFault(const MapHeader& header, const SkyCards& cards, SkyFrame& frame)
{
    static constexpr struct {
        std::string_view name;
        SkyFrame::System system;
    } names[] = {{"ICRS", SkyFrame::System::icrs},
                 {"ICRF", SkyFrame::System::icrs},  // what some writers call them
                 {"FK5", SkyFrame::System::fk5},
                 {"J2000", SkyFrame::System::fk5},
                 {"FK4", SkyFrame::System::fk4},
                 {"B1950", SkyFrame::System::fk4}};
    const SkyAxes::Kind axes = skyAxesOf(header.axes[0].ctype, header.axes[1].ctype).kind;
    frame = {SkyFrame::System::galactic, 2000};
    if (axes == SkyAxes::Kind::galactic)
        return "";
    std::string name = cards.radesys;
    if (name.empty())
        name = header.equinox == 0 ? "ICRS" : header.equinox < 1984 ? "FK4" : "FK5";
    const auto* const known = std::find_if(std::begin(names), std::end(names),
                                           [&](const auto& n) { return n.name == name; });
    if (known == std::end(names))
        return "positions in " + name + " are not supported";
    frame.system = known->system;
    if (header.equinox != 0)
        frame.equinox = header.equinox;
    else if (frame.system == SkyFrame::System::fk4)
        frame.equinox = 1950;
    if (axes == SkyAxes::Kind::ecliptic)
        frame.system = SkyFrame::System::ecliptic;
    else if (frame.system == SkyFrame::System::icrs)
        frame.equinox = 2000;  // it has none, whatever stands there
    return isKnown(frame) ? "" : "positions in " + nameOf(frame) + " are not supported";
}

}  // namespace

/// Owns WCSLIB's own structure.
struct SkyCoordinates::Wcs {
    wcsprm prm;
    SinPlane plane;  ///< set only where it holds
    int status = 0;
    Wcs()
    {
        std::memset(&prm, 0, sizeof prm);
        prm.flag = -1;  // tells WCSLIB that there is no memory to release yet
        status = wcsinit(1, 2, &prm, mostSkyParameters, 0, 0);
    }
    Wcs(const Wcs&) = delete;
    Wcs& operator=(const Wcs&) = delete;
    ~Wcs() { wcsfree(&prm); }
    void setAxis(int axis, const std::string& ctype, const MapAxis& from)
    {
        std::memcpy(prm.ctype[axis], ctype.c_str(), ctype.size() + 1);
        std::memcpy(prm.cunit[axis], "deg", 4);
        prm.crval[axis] = from.crval;
        prm.crpix[axis] = from.crpix;
        prm.cdelt[axis] = 1;
    }
    int toSky(const double (&pixel)[2], double (&world)[2])
    {
        double plane[2] = {};
        double phi = 0;
        double theta = 0;
        int bad = 0;
        const int status = wcsp2s(&prm, 1, 2, pixel, plane, &phi, &theta, world, &bad);
        turnOver(world);
        return !status && !bad && std::isfinite(world[0]) && std::isfinite(world[1]) &&
               std::abs(theta) <= 90 + 1e-9;
    }
    // positions are (longitude, latitude) here, whatever the order of the axes
    void turnOver(double (&world)[2]) const
    {
        if (prm.lng == 1)
            std::swap(world[0], world[1]);
    }
    int toPixel(const double (&position)[2], double (&pixel)[2])
    {
        double world[2] = {position[0], position[1]};
        turnOver(world);
        double plane[2] = {};
        double phi = 0;
        double theta = 0;
        int bad = 0;
        return !wcss2p(&prm, 1, 2, world, &phi, &theta, plane, pixel, &bad) && !bad;
    }
};

namespace
{

/// Projections that go on after a turn: cylinders, and the sides of cubes.
constexpr std::string_view cylinders[] = {"CYP", "CEA", "CAR", "MER"};
constexpr std::string_view cubes[] = {"TSC", "CSC", "QSC"};

template <std::size_t n>
int isAmong(const std::string_view (&codes)[n], const std::string& code)
{
    return std::find(std::begin(codes), std::end(codes), code) != std::end(codes);
}

/// The way of a turn in cells, where the map may show a position in more than one place.
int findTurn(const MapHeader& header, const std::string& code, int longitude, double (&turn)[2])
{
    if (!isAmong(cylinders, code) && !isAmong(cubes, code))
        return 0;
    double farthest = 0;
    for (int corner = 0; corner < 4; ++corner) {
        const MapAxis& x = header.axes[0];
        const MapAxis& y = header.axes[1];
        farthest = std::max(
            farthest,
            std::abs(header.cd[longitude][0] * ((corner % 2 ? x.length + 0.5 : 0.5) - x.crpix) +
                     header.cd[longitude][1] * ((corner / 2 ? y.length + 0.5 : 0.5) - y.crpix)));
    }
    const double det = header.cd[0][0] * header.cd[1][1] - header.cd[0][1] * header.cd[1][0];
    const double sign = longitude ? -1 : 1;
    turn[0] = sign * 360 * header.cd[1 - longitude][1] / det;
    turn[1] = -sign * 360 * header.cd[1 - longitude][0] / det;
    return (farthest > 180 || isAmong(cubes, code)) && finiteBelow(turn[0], farthestPixel) &&
           finiteBelow(turn[1], farthestPixel);
}

}  // namespace

SkyCoordinates::SkyCoordinates() = default;
SkyCoordinates::~SkyCoordinates() = default;

int SkyCoordinates::init(const MapHeader& header, std::string& error)
{
    wcs_.reset();
    const SkyCards cards = readSkyCards(header.coordinateCards);
    error = faultOf(header, cards);
    if (error.empty())
        error = frameFault(header, cards, frame_);
    if (!error.empty())
        return 0;
    std::unique_ptr<Wcs> wcs(new (std::nothrow) Wcs);
    error = "the map's place on the sky cannot be computed";
    if (!wcs || wcs->status)
        return 0;
    // two axes and their numbers are all that WCSLIB sees, never the cards of a file; what their
    // positions are called does not matter to it
    const SkyAxes axes = skyAxesOf(header.axes[0].ctype, header.axes[1].ctype);
    const std::string& code = axes.projection;
    const int longitude = axes.longitude;
    wcs->setAxis(longitude, "RA---" + code, header.axes[static_cast<std::size_t>(longitude)]);
    wcs->setAxis(1 - longitude, "DEC--" + code,
                 header.axes[static_cast<std::size_t>(1 - longitude)]);
    for (int i = 0; i < 4; ++i)
        wcs->prm.pc[i] = header.cd[i / 2][i % 2];
    if (cards.hasLonpole)
        wcs->prm.lonpole = cards.lonpole;
    if (cards.hasLatpole)
        wcs->prm.latpole = cards.latpole;
    for (const SkyParameter& parameter : cards.parameters) {
        wcs->prm.pv[wcs->prm.npv++] = {parameter.axis, parameter.number, parameter.value};
    }
    const double det = header.cd[0][0] * header.cd[1][1] - header.cd[0][1] * header.cd[1][0];
    const double scale = std::sqrt(std::abs(det));
    if (!(scale > 0) || !std::isfinite(scale) || wcsset(&wcs->prm))
        return 0;
    const int isPlain = cards.parameters.empty() && !cards.hasLonpole && !cards.hasLatpole;
    if (isPlain && findTurn(header, code, longitude, turn_)) {
        // native longitudes beyond 180 degrees are places of this map too
        constexpr int allButNative = 3;
        if (isAmong(cylinders, code) && wcsbchk(&wcs->prm, allButNative))
            return 0;
        for (std::size_t i = 0; i < 2; ++i)
            middle_[i] = (header.axes[i].length - 1) / 2.0;
    } else {
        turn_[0] = turn_[1] = 0;
    }
    if (code == "SIN" && cards.parameters.empty() && !cards.hasLonpole)
        (void)wcs->plane.init(header);  // where it does not hold, WCSLIB does
    reference_[0] = header.axes[static_cast<std::size_t>(longitude)].crval;
    reference_[1] = header.axes[static_cast<std::size_t>(1 - longitude)].crval;
    differenceStep_ = std::min(differenceDegrees / scale, farthestPixel);
    wcs_ = std::move(wcs);
    error.clear();
    return 1;
}

int SkyCoordinates::plane(double (&toPlane)[2][2], double& column, double& row) const
{
    if (!wcs_)
        return 0;
    const wcsprm& prm = wcs_->prm;
    const int longitude = prm.lng == 1;
    for (int i = 0; i < 2; ++i) {
        toPlane[0][i] = prm.pc[2 * longitude + i];
        toPlane[1][i] = prm.pc[2 * (1 - longitude) + i];
    }
    column = prm.crpix[0] - 1;
    row = prm.crpix[1] - 1;
    return 1;
}

int SkyCoordinates::toSky(double column, double row, double& ra, double& dec) const
{
    if (!wcs_ || !finiteBelow(column, farthestPixel) || !finiteBelow(row, farthestPixel))
        return 0;
    const double pixel[2] = {column + 1, row + 1};
    double world[2] = {};
    if (!wcs_->plane.toSky(pixel, world) && !wcs_->toSky(pixel, world))
        return 0;
    ra = std::fmod(world[0], 360.0);
    if (ra < 0)
        ra += 360;
    dec = world[1];
    return 1;
}

int SkyCoordinates::toPixel(double ra, double dec, double& column, double& row) const
{
    if (!wcs_ || !finiteBelow(ra, farthestAngle) || !finiteBelow(dec, 90))
        return 0;
    const double world[2] = {ra, dec};
    double pixel[2] = {};
    if ((!wcs_->plane.toPixel(world, pixel) && !wcs_->toPixel(world, pixel)) ||
        !finiteBelow(pixel[0], farthestPixel) || !finiteBelow(pixel[1], farthestPixel))
        return 0;
    column = pixel[0] - 1;
    row = pixel[1] - 1;
    const double square = turn_[0] * turn_[0] + turn_[1] * turn_[1];
    if (square > 0) {
        const double away = (middle_[0] - column) * turn_[0] + (middle_[1] - row) * turn_[1];
        const double turns = std::round(away / square);
        double l = 0;
        double b = 0;
        if (turns != 0 && toSky(column + turns * turn_[0], row + turns * turn_[1], l, b)) {
            column += turns * turn_[0];
            row += turns * turn_[1];
        }
    }
    return 1;
}

int SkyCoordinates::turn(double& columns, double& rows) const
{
    if (!wcs_ || (turn_[0] == 0 && turn_[1] == 0))
        return 0;
    columns = turn_[0];
    rows = turn_[1];
    return 1;
}

int SkyCoordinates::toSky(double column, double row, const SkyFrame& in, double& longitude,
                          double& latitude) const
{
    double l = 0;
    double b = 0;
    return toSky(column, row, l, b) && convertSky(frame_, in, l, b, longitude, latitude);
}

int SkyCoordinates::toPixel(double longitude, double latitude, const SkyFrame& in, double& column,
                            double& row) const
{
    double l = longitude;
    double b = latitude;
    return (in == frame_ || convertSky(in, frame_, longitude, latitude, l, b)) &&
           toPixel(l, b, column, row);
}

int SkyCoordinates::localSky(double column, double row, LocalSky& local) const
{
    return localSky(column, row, frame_, local);
}

int SkyCoordinates::localSky(double column, double row, const SkyFrame& in, LocalSky& local) const
{
    double ra = 0;
    double dec = 0;
    if (!toSky(column, row, in, ra, dec))
        return 0;
    const double step = differenceStep_;
    double offsets[4][2];  // east and north of a step back and forth along columns, then rows
    for (int i = 0; i < 4; ++i) {
        const double along = i % 2 ? step : -step;
        double a = 0;
        double d = 0;
        if (!toSky(column + (i < 2 ? along : 0), row + (i < 2 ? 0 : along), in, a, d))
            return 0;
        const double da = (a - ra) * degree;
        const double half = std::sin(da / 2);
        // the plane's offsets, written so that nothing cancels near the point
        offsets[i][0] = std::cos(d * degree) * std::sin(da);
        offsets[i][1] = std::sin((d - dec) * degree) +
                        2 * std::cos(d * degree) * std::sin(dec * degree) * half * half;
    }
    double m[2][2];
    for (std::size_t axis = 0; axis < 2; ++axis)
        for (std::size_t i = 0; i < 2; ++i)
            m[i][axis] = (offsets[2 * axis + 1][i] - offsets[2 * axis][i]) / (2 * step * degree);
    const double det = m[0][0] * m[1][1] - m[0][1] * m[1][0];
    if (!(det != 0) || !std::isfinite(det))
        return 0;
    local = {ra,
             dec,
             {{m[0][0], m[0][1]}, {m[1][0], m[1][1]}},
             std::hypot(m[0][0], m[1][0]),
             std::hypot(m[0][1], m[1][1]),
             std::atan2(m[0][1], m[1][1]),
             det < 0 ? 1 : -1};
    return 1;
}

}  // namespace pavane
