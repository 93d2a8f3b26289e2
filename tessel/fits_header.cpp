#include "tessel/fits_header.h"

#include "tessel/map_steps.h"
#include "tessel/sky_axes.h"
#include "tessel/stokes_name.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <string_view>

namespace pavane
{

namespace
{

/// Axes of a map of which only the cards are left; a mask has as many.
constexpr int mostDroppedAxis = 4;

std::string cut(std::string text)
{
    text.erase(text.find_last_not_of(" \t") + 1);
    text.erase(0, text.find_first_not_of(' '));
    return text;
}

std::string readText(const HeaderCards& cards, const std::string& key)
{
    return cut(cards.text(key));
}

int startsWith(const std::string& text, std::string_view start)
{
    return text.compare(0, start.size(), start) == 0;
}

/// Degrees in the unit of a celestial axis, 0 when it is none of angles. Files that name none mean
/// degrees.
double degreesPer(const std::string& unit)
{
    constexpr double second = 1 / 3600.0;
    static constexpr struct {
        std::string_view start;
        double degrees;
    } units[] = {{"deg", 1},
                 {"rad", 180 / std::numbers::pi},
                 {"arcmin", 1 / 60.0},
                 {"arcsec", second},
                 {"mas", second / 1e3},
                 {"marcsec", second / 1e3},
                 {"milliarcsec", second / 1e3},
                 {"uas", second / 1e6},
                 {"uarcsec", second / 1e6},
                 {"microarcsec", second / 1e6},
                 {"mdeg", 1e-3}};
    std::string small = unit;  // also RADIANS, ARCSECS ...
    for (char& c : small)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    for (const auto& u : units)
        if (startsWith(small, u.start))
            return u.degrees;
    return unit.empty();
}

MapAxis readAxis(const HeaderCards& cards, int number, std::int64_t length)
{
    const std::string n = std::to_string(number);
    MapAxis axis;
    axis.length = static_cast<int>(std::min<std::int64_t>(length, std::numeric_limits<int>::max()));
    axis.ctype = readText(cards, "CTYPE" + n);
    axis.cunit = readText(cards, "CUNIT" + n);
    (void)cards.number("CRVAL" + n, axis.crval);
    (void)cards.number("CRPIX" + n, axis.crpix);
    double step = 0;
    if (cards.number("CDELT" + n, step) && step != 0)
        axis.cdelt = step;
    (void)cards.number("CROTA" + n, axis.crota);
    return axis;
}

/// An item of a matrix: CD1_2, CD01_02, or CD001002 in an older spelling.
int readItem(const HeaderCards& cards, const std::string& letters, int i, int j, double& value)
{
    const std::string row = std::to_string(i + 1);
    const std::string column = std::to_string(j + 1);
    return cards.number(letters + row + '_' + column, value) ||
           cards.number(letters + '0' + row + "_0" + column, value) ||
           cards.number(letters + "00" + row + "00" + column, value);
}

/// The matrices of a header, each with what it has by default.
struct StepMatrices {
    double cd[2][2] = {{0, 0}, {0, 0}};
    double pc[2][2] = {{1, 0}, {0, 1}};
    int hasCd = 0;
    int hasPc = 0;
};

StepMatrices matricesOf(const HeaderCards& cards)
{
    StepMatrices m;
    for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 2; ++j) {
            m.hasCd |= readItem(cards, "CD", i, j, m.cd[i][j]);
            m.hasPc |= readItem(cards, "PC", i, j, m.pc[i][j]);
        }
    return m;
}

/// Non-zero for a matrix that maps every cell onto a line.
int isFlat(const double (&m)[2][2])
{
    return !(std::isfinite(m[0][0] * m[1][1]) && std::isfinite(m[0][1] * m[1][0])) ||
           m[0][0] * m[1][1] == m[0][1] * m[1][0];
}

/// Fills the matrix of the two map axes from CD, PC or CROTA. CDELT beside CD, and CROTA beside PC,
/// mean nothing: many writers leave them there.
void readMatrix(const HeaderCards& cards, MapHeader& header)
{
    const MapAxis& x = header.axes[0];
    const MapAxis& y = header.axes[1];
    const auto [cd, pc, isCdThere, hasPc] = matricesOf(cards);
    const int hasCd = isCdThere && !isFlat(cd);  // a flat one is as good as none
    // CROTA stands on the latitude, and turns the longitude towards it
    const int isSwapped = header.longitudeAxis == 1;
    const double turn = (isSwapped ? -x.crota : y.crota) * std::numbers::pi / 180;
    const double rotation[2][2] = {{x.cdelt * std::cos(turn), -y.cdelt * std::sin(turn)},
                                   {x.cdelt * std::sin(turn), y.cdelt * std::cos(turn)}};
    for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 2; ++j)
            header.cd[i][j] = hasCd   ? cd[i][j]
                              : hasPc ? pc[i][j] * (i ? y.cdelt : x.cdelt)
                                      : rotation[i][j];
}

/// Turns both axes into degrees; 0, and nothing done, when one counts something else.
int toDegrees(MapHeader& header)
{
    if (degreesPer(header.axes[0].cunit) == 0 || degreesPer(header.axes[1].cunit) == 0)
        return 0;
    for (int i = 0; i < 2; ++i) {
        MapAxis& axis = header.axes[static_cast<std::size_t>(i)];
        const double factor = degreesPer(axis.cunit);
        axis.crval *= factor;
        header.cd[i][0] *= factor;
        header.cd[i][1] *= factor;
        axis.cunit = "deg";
    }
    return 1;
}

/// Hertz in the unit of a frequency axis.
double hertzPer(const std::string& unit)
{
    return unit == "GHz" ? 1e9 : unit == "MHz" ? 1e6 : unit == "kHz" ? 1e3 : 1.0;
}

/// The value of an axis at the pixel, from 0, that was read.
double valueAt(const MapAxis& axis, int pixel)
{
    return axis.crval + (pixel + 1 - axis.crpix) * axis.cdelt;
}

void readFrequencyAndStokes(const HeaderCards& cards, MapHeader& header)
{
    const std::vector<int> pixels = planePixels(header.axes, header.plane);
    for (std::size_t i = 2; i < header.axes.size(); ++i) {
        const MapAxis& axis = header.axes[i];
        if (startsWith(axis.ctype, "FREQ"))
            header.frequency = valueAt(axis, pixels[i]) * hertzPer(axis.cunit);
        else if (axis.ctype == "STOKES")
            header.stokes = stokesName(valueAt(axis, pixels[i]));
    }
    for (const char* key : {"RESTFRQ", "RESTFREQ", "OBSFREQ", "FREQ"})
        if (!(header.frequency > 0))
            (void)cards.number(key, header.frequency);
    if (!std::isfinite(header.frequency) || header.frequency < 0)
        header.frequency = 0;
    if (header.stokes.empty())
        header.stokes = readText(cards, "STOKES");
}

/// Keeps a beam that has a size; others would be drawn as nothing and divide the flux by zero.
void takeBeam(double major, double minor, double angle, MapHeader& header)
{
    if (!(major > 0) || !(minor > 0))
        return;
    header.hasBeam = 1;
    header.bmaj = major;
    header.bmin = minor;
    header.bpa = angle;
}

/// The number behind `name` in a line of history, such as "CLEAN BMAJ=  1.2E-06 BMIN= ...".
int numberAfter(const std::string& line, const std::string& name, double& value)
{
    const std::size_t at = line.find(name + '=');
    if (at == std::string::npos)
        return 0;
    std::string rest = line.substr(at + name.size() + 1);
    rest.erase(0, rest.find_first_not_of(' '));
    return stoval(rest.substr(0, rest.find(' ')), value) && std::isfinite(value);
}

void takeHistoryBeam(const std::string& card, MapHeader& header)
{
    double major = 0;
    double minor = 0;
    double angle = 0;
    if (!numberAfter(card, "BMAJ", major) || !numberAfter(card, "BMIN", minor) ||
        !numberAfter(card, "BPA", angle))
        return;
    takeBeam(major, minor, angle, header);
}

/// Non-zero for a card whose keyword places the map on the sky or says what it shows.
int isCoordinateCard(const std::string& card)
{
    static constexpr std::string_view whole[] = {
        "EQUINOX",  "EPOCH",   "RADESYS", "RADECSYS", "SPECSYS", "RESTFRQ",  "RESTFREQ",
        "LONPOLE",  "LATPOLE", "OBJECT",  "DATE-OBS", "MJD-OBS", "OBSERVER", "TELESCOP",
        "INSTRUME", "OBSRA",   "OBSDEC",  "VELREF",   "ALTRVAL", "ALTRPIX"};
    static constexpr std::string_view numbered[] = {"CTYPE", "CRVAL", "CDELT", "CRPIX", "CROTA",
                                                    "CUNIT", "CD",    "PC",    "PV",    "PS"};
    const std::string key = cut(card.substr(0, 8));
    if (valueField(card).empty())
        return 0;
    if (std::find(std::begin(whole), std::end(whole), key) != std::end(whole))
        return 1;
    return std::any_of(std::begin(numbered), std::end(numbered), [&](std::string_view start) {
        return startsWith(key, start) && key.size() > start.size() &&
               key.find_first_not_of("0123456789_", start.size()) == std::string::npos;
    });
}

void readCards(const HeaderCards& cards, MapHeader& header)
{
    const int beamInHeader = header.hasBeam;
    for (const std::string& card : cards.cards()) {
        if (startsWith(card, "HISTORY") && !beamInHeader)
            takeHistoryBeam(card, header);
        if (!isCoordinateCard(card))
            continue;
        // as the format has it, for the readers of a mask: text in ASCII, a blank before the value
        std::string kept = card;
        for (char& c : kept)
            c = c >= ' ' && c <= '~' ? c : (c & 0x80) != 0 ? '?' : ' ';
        if (kept[9] != ' ')
            kept.insert(9, 1, ' ').resize(card.size());
        header.coordinateCards.push_back(kept);
    }
}

void readBeam(const HeaderCards& cards, MapHeader& header)
{
    double major = 0;
    double minor = 0;
    double angle = 0;
    if (!cards.number("BMAJ", major) || !cards.number("BMIN", minor))
        return;
    (void)cards.number("BPA", angle);
    takeBeam(major, minor, angle, header);
}

}  // namespace

std::vector<int> planePixels(const std::vector<MapAxis>& axes, int plane)
{
    std::vector<int> pixels(axes.size(), 0);
    for (std::size_t i = 2; i < axes.size(); ++i) {
        const int length = std::max(axes[i].length, 1);
        pixels[i] = plane % length;
        plane /= length;
    }
    return pixels;
}

std::string stepFault(const HeaderCards& cards, const MapHeader& header, int mayLack)
{
    const StepMatrices m = matricesOf(cards);
    if ((mayLack && !header.hasCelestialAxes) || (m.hasCd && !isFlat(m.cd)))
        return {};
    for (const char* const key : {"CDELT1", "CDELT2"}) {
        // one that is not there is 1 by the standard, beside CD nothing
        double step = m.hasCd || !cards.value(key).empty() ? 0 : 1;
        (void)cards.number(key, step);
        if (step == 0 || !std::isfinite(step))
            return std::string("has no step between cells (").append(key).append(")");
    }
    return m.hasPc && isFlat(m.pc) ? "has a matrix PC that lays all cells on one line" : "";
}

MapHeader readMapHeader(const HeaderCards& cards, const std::vector<std::int64_t>& lengths,
                        int plane)
{
    MapHeader header;
    for (std::size_t i = 0; i < lengths.size(); ++i)
        header.axes.push_back(readAxis(cards, static_cast<int>(i) + 1, lengths[i]));
    // the axes of a cube that a program has cut an image from: what they say holds for the image
    int last = mostDroppedAxis;
    while (last > 0 && cards.text("CTYPE" + std::to_string(last)).empty())
        --last;
    for (int n = static_cast<int>(lengths.size()) + 1; n <= last; ++n)
        header.axes.push_back(readAxis(cards, n, 1));
    header.plane = plane;
    const SkyAxes sky = skyAxesOf(header.axes[0].ctype, header.axes[1].ctype);
    header.longitudeAxis = sky.longitude;
    readMatrix(cards, header);
    header.hasCelestialAxes = sky.kind != SkyAxes::Kind::none && toDegrees(header);
    const MapSteps steps = stepsOf(header);
    header.axes[0].cdelt = steps.column;
    header.axes[1].cdelt = steps.row;
    header.bunit = readText(cards, "BUNIT");
    header.object = readText(cards, "OBJECT");
    header.dateObs = readText(cards, "DATE-OBS");
    header.telescope = readText(cards, "TELESCOP");
    if (!cards.number("EQUINOX", header.equinox))
        (void)cards.number("EPOCH", header.equinox);
    readBeam(cards, header);
    readFrequencyAndStokes(cards, header);
    readCards(cards, header);
    return header;
}

}  // namespace pavane
