#include "tessel/uvfits/UvLayout.h"

#include "tessel/fits_scan.h"
#include "tessel/plain_text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string_view>

namespace pavane
{

namespace
{

constexpr double speedOfLight = 299792458.0;
/// What no observation exceeds; beyond, a header without groups behind it could claim anything.
constexpr std::int64_t mostAxes = 64, mostParameters = 999, mostStokes = 16, mostIfs = 65536;
constexpr std::int64_t mostCells = std::int64_t{1} << 26;

struct Axis {
    std::string name;
    std::int64_t length = 1;
    std::int64_t step = 1;
    double value = std::numeric_limits<double>::quiet_NaN();
    double width = 1;
    double pixel = 1;
};

double numberOr(const HeaderCards& cards, const std::string& key, double missing)
{
    double value = missing;
    (void)cards.number(key, value);
    return value;
}

/// The axes of a group, from the second of the header on, since the first has the length 0.
std::vector<Axis> readAxes(const HeaderCards& cards, std::int64_t count)
{
    std::vector<Axis> axes;
    std::int64_t step = 1;
    for (std::int64_t i = 2; i <= count; ++i) {
        const std::string n = std::to_string(i);
        Axis axis;
        axis.name = cards.text("CTYPE" + n);
        axis.length = wholeNumber(cards, "NAXIS" + n, 0);
        axis.step = step;
        (void)cards.number("CRVAL" + n, axis.value);
        axis.width = numberOr(cards, "CDELT" + n, 1);
        axis.pixel = numberOr(cards, "CRPIX" + n, 1);
        step = cellCount({step, axis.length});
        axes.push_back(axis);
    }
    return axes;
}

/// Non-zero for `name` itself, and for one that goes on with a projection ("UU---SIN").
int isNamed(std::string_view text, std::string_view name)
{
    return text.substr(0, name.size()) == name &&
           (text.size() == name.size() || text[name.size()] == '-');
}

const Axis* find(const std::vector<Axis>& axes, std::string_view name)
{
    const auto found = std::find_if(axes.begin(), axes.end(),
                                    [&](const Axis& axis) { return isNamed(axis.name, name); });
    return found == axes.end() ? nullptr : &*found;
}

/// The axis of IFs; some writers leave it without a name, or have none.
const Axis* findIfs(const std::vector<Axis>& axes)
{
    const Axis* const named = find(axes, "IF");
    const auto unnamed = std::find_if(axes.begin(), axes.end(), [](const Axis& axis) {
        return axis.name.empty() && axis.length > 1;
    });
    return named || unnamed == axes.end() ? named : &*unnamed;
}

int takeStokes(const Axis* axis, UvHeader& header, UvLayout& layout, std::string& error)
{
    const std::int64_t length = axis ? axis->length : 1;
    if (length > mostStokes) {
        error = "has " + std::to_string(length) + " polarisations, which cannot be right";
        return 0;
    }
    layout.stokesStep = axis ? axis->step : 0;
    for (std::int64_t i = 0; i < length; ++i) {
        const double code =
            axis ? axis->value + (static_cast<double>(i) + 1 - axis->pixel) * axis->width : 1;
        header.stokes.push_back(std::abs(code) < 1000 ? static_cast<int>(std::lround(code)) : 0);
    }
    return 1;
}

int takeAxes(const std::vector<Axis>& axes, UvHeader& header, UvLayout& layout, std::string& error)
{
    const Axis* const complex = find(axes, "COMPLEX");
    const Axis* const channels = find(axes, "FREQ");
    const Axis* const ifs = findIfs(axes);
    const Axis* const ra = find(axes, "RA");
    const Axis* const dec = find(axes, "DEC");
    if (!complex || complex->length < 2 || complex->length > 1000) {
        error = "has no axis of complex numbers";
        return 0;
    }
    if (!takeStokes(find(axes, "STOKES"), header, layout, error))
        return 0;
    const std::int64_t channelCount = channels ? channels->length : 1;
    const std::int64_t ifCount = ifs ? ifs->length : 1;
    if (ifCount > mostIfs || cellCount({ifCount, channelCount}) > mostCells) {
        error = "has " + std::to_string(ifCount) + " IFs of " + std::to_string(channelCount) +
                " channels, which cannot be right";
        return 0;
    }
    layout.complexLength = static_cast<int>(complex->length);
    layout.complexStep = complex->step;
    layout.channelStep = channels ? channels->step : 0;
    layout.ifStep = ifs ? ifs->step : 0;
    header.channels = static_cast<int>(channelCount);
    header.ifs = static_cast<int>(ifCount);
    header.frequency = channels ? channels->value : std::numeric_limits<double>::quiet_NaN();
    header.channelWidth = channels ? channels->width : 0;
    header.referenceChannel = channels ? channels->pixel : 1;
    header.ra = ra ? ra->value : std::numeric_limits<double>::quiet_NaN();
    header.dec = dec ? dec->value : std::numeric_limits<double>::quiet_NaN();
    return 1;
}

/// What a parameter is called, without the projection; the unit of u, v and w in `seconds`.
std::string plainName(const std::string& name, double frequency, double& seconds)
{
    for (const char* axis : {"UU", "VV", "WW"}) {
        if (!isNamed(name, axis))
            continue;
        const std::string_view unit = std::string_view(name).substr(2, 2);
        const double perWave = frequency > 0 ? 1 / frequency : 1;
        seconds = unit == "-L" ? perWave : unit == "-M" ? 1 / speedOfLight : 1;
        return axis;
    }
    return name == "_DATE" ? "DATE" : name;
}

/// The first name of each kind counts, with all parameters that share it.
void takeParameters(const HeaderCards& cards, std::int64_t count, double frequency,
                    UvLayout& layout)
{
    struct Kind {
        std::string_view name;
        UvTerms* terms;
    };
    const Kind kinds[] = {
        {"UU", &layout.u},
        {"VV", &layout.v},
        {"WW", &layout.w},
        {"BASELINE", &layout.baseline},
        {"DATE", &layout.date},
        {"ANTENNA1", &layout.antenna1},
        {"SOURCE", &layout.source},
        {"ANTENNA2", &layout.antenna2},
        {"SUBARRAY", &layout.subarray},
        {"FREQSEL", &layout.selection},
        {"FREQ ID", &layout.selection},
        {"FREQID", &layout.selection},
    };
    std::string first[std::size(kinds)];
    const std::int64_t bytes = std::abs(layout.bitpix) / 8;
    for (std::int64_t i = 0; i < count; ++i) {
        const std::string n = std::to_string(i + 1);
        const std::string name = cards.text("PTYPE" + n);
        double seconds = layout.secondsOfU;
        const std::string plain = plainName(name, frequency, seconds);
        for (std::size_t k = 0; k < std::size(kinds); ++k) {
            const std::string& as = plain == "DATE" ? plain : name;
            if (kinds[k].name != plain || (!first[k].empty() && first[k] != as))
                continue;
            first[k] = as;
            layout.secondsOfU = seconds;
            const double scale = numberOr(cards, "PSCAL" + n, 1);
            kinds[k].terms->push_back(
                {i * bytes, scale == 0 ? 1 : scale, numberOr(cards, "PZERO" + n, 0)});
        }
    }
}

void takeTexts(const HeaderCards& cards, UvHeader& header)
{
    const auto text = [&](const char* key) { return plainText(cards.text(key)); };
    header.object = text("OBJECT");
    header.telescope = text("TELESCOP");
    header.instrument = text("INSTRUME");
    header.observer = text("OBSERVER");
    header.dateObs = text("DATE-OBS");
    header.bunit = text("BUNIT");
    header.equinox = equinoxOf(cards.text("EQUINOX"));
    if (header.equinox == 0)
        header.equinox = equinoxOf(cards.text("EPOCH"));
}

}  // namespace

double equinoxOf(const std::string& text)
{
    const bool hasLetter = !text.empty() && (text[0] == 'J' || text[0] == 'B');
    double years = 0;
    return fieldNumber(text.substr(hasLetter ? 1 : 0), years) && years > 0 && years < 1e4 ? years
                                                                                          : 0;
}

int julianDay(const std::string& date, double& day)
{
    int y = 0;
    int m = 0;
    int d = 0;
    int end = 0;
    const char* const text = date.c_str();
    if (std::sscanf(text, "%4d-%2d-%2d%n", &y, &m, &d, &end) == 3 && end >= 8) {
        if (text[end] != '\0' && text[end] != 'T' && text[end] != ' ')
            return 0;
    } else if (std::sscanf(text, "%2d/%2d/%2d%n", &d, &m, &y, &end) == 3 && text[end] == '\0')
        y += 1900;
    else
        return 0;
    if (y < 1 || m < 1 || m > 12 || d < 1 || d > 31)
        return 0;
    // days of the Gregorian calendar, years counted from March
    const int a = (14 - m) / 12;
    const int years = y + 4800 - a;
    const int months = m + 12 * a - 3;
    const int whole =
        d + (153 * months + 2) / 5 + 365 * years + years / 4 - years / 100 + years / 400;
    day = whole - 32045.5;
    return 1;
}

int readUvLayout(const FitsHdu& hdu, std::int64_t size, UvHeader& header, UvLayout& layout,
                 std::string& error)
{
    const HeaderCards& cards = hdu.cards;
    const std::int64_t axisCount = wholeNumber(cards, "NAXIS", 0);
    const std::int64_t parameters = wholeNumber(cards, "PCOUNT", 0);
    if (cards.value("GROUPS") != "T" || wholeNumber(cards, "NAXIS1", -1) != 0) {
        error = "holds no visibilities (no random groups)";
        return 0;
    }
    if (axisCount > mostAxes || parameters > mostParameters) {
        error = "has " + std::to_string(axisCount) + " axes and " + std::to_string(parameters) +
                " parameters, which cannot be right";
        return 0;
    }
    layout.bitpix = static_cast<int>(wholeNumber(cards, "BITPIX", 0));
    layout.groups = header.groups = wholeNumber(cards, "GCOUNT", 1);
    layout.dataStart = hdu.dataStart;
    const std::vector<Axis> axes = readAxes(cards, axisCount);
    const std::int64_t bytes = std::abs(layout.bitpix) / 8;
    layout.cells = axes.empty() ? 0 : cellCount({axes.back().step, axes.back().length});
    if (layout.cells > mostCells) {
        error = "has groups of " + std::to_string(layout.cells) + " numbers, too many";
        return 0;
    }
    layout.parameterBytes = parameters * bytes;
    layout.groupBytes = layout.parameterBytes + layout.cells * bytes;
    if (hdu.dataBytes > size - hdu.dataStart) {
        error = "ends before its " + std::to_string(layout.groups) + " groups do";
        return 0;
    }
    if (layout.cells == 0) {  // who goes by the lengths of single axes would read beyond
        error = "has groups without visibilities (an axis of length 0)";
        return 0;
    }
    if (layout.groupBytes == 0)
        layout.groups = header.groups = 0;  // no byte stands behind them
    const double scale = numberOr(cards, "BSCALE", 1);
    layout.scale.scale = scale == 0 ? 1 : scale;
    layout.scale.zero = numberOr(cards, "BZERO", 0);
    double blank = 0;
    layout.scale.hasBlank = layout.bitpix > 0 && cards.number("BLANK", blank);
    layout.scale.blank = static_cast<std::int64_t>(std::clamp(blank, -0x1p62, 0x1p62));
    if (!takeAxes(axes, header, layout, error))
        return 0;
    takeParameters(cards, parameters, header.frequency, layout);
    takeTexts(cards, header);
    return 1;
}

}  // namespace pavane
