#include "apps/simulate/uv_file.h"

#include "apps/simulate/FitsText.h"
#include "apps/simulate/Noise.h"
#include "apps/simulate/stations.h"
#include "tessel/SafeFile.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace pavane
{

namespace
{

constexpr double speedOfLight = 299792458.0;
constexpr double secondsPerDay = 86400.0;
constexpr const char* referenceDate = "2026-03-20";
constexpr double referenceDay = 2461119.5;
/// Greenwich sidereal time at 0h of that day, and its rate.
constexpr double siderealAngle = 177.54132691351697;
constexpr double degreesPerDay = 360.98564736629;
/// Dates are split at eighths of a day, so that the rest has a precision of a millisecond.
constexpr double partsOfDay = 8;
constexpr int hands = 2;

/// Days since the reference date of the middle of the track.
double middleDay(const Observation& o)
{
    const double angle = sourcePlace(o, 0).ra + middleHourAngle() - siderealAngle;
    return (angle + 360) / degreesPerDay;
}

double dayOf(const Observation& o, const ObservedGroup& group)
{
    return middleDay(o) + group.seconds / secondsPerDay;
}

std::string sourceName(int source)
{
    return source == 0 ? "SIMULATED" : "POINT" + std::to_string(source);
}

void writeAxes(FitsText& file, const Observation& o)
{
    const SourcePlace place = sourcePlace(o, 0);
    const int isOne = o.sources == 1;
    const struct {
        const char* name;
        int length;
        double value, step;
    } axes[] = {{"COMPLEX", 3, 1, 1},
                {"STOKES", hands, -1, -1},
                {"FREQ", 1, o.frequency, o.ifSpacing},
                {"IF", o.ifs, 1, 1},
                {"RA", 1, isOne ? place.ra : 0, 1},
                {"DEC", 1, isOne ? place.dec : 0, 1}};
    file.card("NAXIS", static_cast<int>(std::size(axes)) + 1);
    file.card("NAXIS1", 0);
    int n = 2;
    for (const auto& axis : axes)
        file.card("NAXIS" + std::to_string(n++), axis.length);
    n = 2;
    for (const auto& axis : axes) {
        const std::string number = std::to_string(n++);
        file.card("CTYPE" + number, axis.name);
        file.card("CRVAL" + number, axis.value);
        file.card("CDELT" + number, axis.step);
        file.card("CRPIX" + number, 1.0);
    }
}

void writeGroups(FitsText& file, const Observation& o, const std::vector<ObservedGroup>& groups,
                 const std::vector<std::size_t>& order, const std::vector<Hands>& values)
{
    static constexpr const char* parameters[] = {"UU--", "VV--",   "WW--",    "BASELINE", "DATE",
                                                 "DATE", "INTTIM", "FREQSEL", "SOURCE"};
    const auto count = static_cast<int>(std::size(parameters)) - (o.sources == 1);
    file.card("SIMPLE", true);
    file.card("BITPIX", -32);
    writeAxes(file, o);
    file.card("EXTEND", true);
    file.card("GROUPS", true);
    file.card("PCOUNT", count);
    file.card("GCOUNT", static_cast<int>(groups.size()));
    for (int i = 0; i < count; ++i) {
        const std::string n = std::to_string(i + 1);
        file.card("PTYPE" + n, parameters[i]);
        file.card("PSCAL" + n, 1.0);
        file.card("PZERO" + n, i == 4 ? referenceDay : 0.0);
    }
    file.card("OBJECT", o.sources == 1 ? sourceName(0) : "MULTI");
    file.card("TELESCOP", "VLBA");
    file.card("DATE-OBS", referenceDate);
    file.card("BUNIT", "JY");
    file.card("EPOCH", 2000.0);
    std::string data;
    const double weight = o.noise > 0 ? 1 / (2 * o.noise * o.noise) : 1;
    for (const std::size_t g : order) {
        const ObservedGroup& group = groups[g];
        const double day = dayOf(o, group);
        const double whole = std::floor(day * partsOfDay) / partsOfDay;
        const double baseline =
            256 * (group.first + 1) + group.second + 1 + (group.subarray - 1) / 100.0;
        const double numbers[] = {group.u / speedOfLight,
                                  group.v / speedOfLight,
                                  group.w / speedOfLight,
                                  baseline,
                                  whole,
                                  day - whole,
                                  o.interval,
                                  1,
                                  group.source + 1.0};
        for (int i = 0; i < count; ++i)
            put(data, static_cast<float>(numbers[i]));
        const auto ifs = static_cast<std::size_t>(o.ifs);
        for (std::size_t f = g * ifs; f < (g + 1) * ifs; ++f)
            for (const std::complex<double>& value : {values[f].right, values[f].left})
                for (const double cell : {value.real(), value.imag(), weight})
                    put(data, static_cast<float>(cell));
    }
    file.data(data);
}

void writeAntennas(FitsText& file, const Observation& o, int subarray)
{
    TableText table("AIPS AN", subarray,
                    {{"ANNAME", "8A"},
                     {"STABXYZ", "3D", "METERS"},
                     {"ORBPARM", "0D"},
                     {"NOSTA", "1J"},
                     {"MNTSTA", "1J"},
                     {"STAXOF", "1E", "METERS"},
                     {"POLTYA", "1A"},
                     {"POLAA", "1E", "DEGREES"},
                     {"POLCALA", "0E"},
                     {"POLTYB", "1A"},
                     {"POLAB", "1E", "DEGREES"},
                     {"POLCALB", "0E"}});
    constexpr float axisOffset = 2.13f;
    for (int i = 0; i < static_cast<int>(vlbaStations.size()); ++i) {
        const Station& station = vlbaStations[static_cast<std::size_t>(i)];
        if (i % o.subarrays + 1 != subarray)
            continue;
        table.text(station.code, 8)
            << station.x << station.y << station.z << i + 1 << 0 << axisOffset;
        table.text("R", 1) << 0.0f;
        table.text("L", 1) << 0.0f;
        table.endRow();
    }
    table.write(file, [&](FitsText& cards) {
        for (const char* key :
             {"ARRAYX", "ARRAYY", "ARRAYZ", "POLARX", "POLARY", "UT1UTC", "DATUTC"})
            cards.card(key, 0.0);
        cards.card("GSTIA0", siderealAngle);
        cards.card("DEGPDY", degreesPerDay);
        cards.card("FREQ", o.frequency);
        cards.card("RDATE", referenceDate);
        cards.card("TIMSYS", "UTC");
        cards.card("ARRNAM", "VLBA");
        cards.card("XYZHAND", "RIGHT");
        cards.card("NUMORB", 0);
        cards.card("NOPCAL", 0);
        cards.card("NO_IF", o.ifs);
        cards.card("FREQID", -1);
    });
}

void writeFrequencies(FitsText& file, const Observation& o)
{
    const std::string n = std::to_string(o.ifs);
    TableText table("AIPS FQ", 1,
                    {{"FRQSEL", "1J"},
                     {"IF FREQ", n + "D", "HZ"},
                     {"CH WIDTH", n + "E", "HZ"},
                     {"TOTAL BANDWIDTH", n + "E", "HZ"},
                     {"SIDEBAND", n + "J"}});
    table << 1;
    for (int i = 0; i < o.ifs; ++i)
        table << i * o.ifSpacing;
    for (int i = 0; i < 2 * o.ifs; ++i)
        table << static_cast<float>(o.ifSpacing);
    for (int i = 0; i < o.ifs; ++i)
        table << 1;
    table.endRow();
    table.write(file, [&](FitsText& cards) { cards.card("NO_IF", o.ifs); });
}

void writeSources(FitsText& file, const Observation& o)
{
    TableText table("AIPS SU", 1,
                    {{"ID. NO.", "1J"},
                     {"SOURCE", "16A"},
                     {"QUAL", "1J"},
                     {"CALCODE", "4A"},
                     {"RAEPO", "1D", "DEGREES"},
                     {"DECEPO", "1D", "DEGREES"},
                     {"EPOCH", "1D", "YEARS"}});
    for (int i = 0; i < o.sources; ++i) {
        const SourcePlace place = sourcePlace(o, i);
        table << i + 1;
        table.text(sourceName(i), 16) << 0;
        table.text(i ? "C" : "", 4) << place.ra << place.dec << 2000.0;
        table.endRow();
    }
    table.write(file, [&](FitsText& cards) { cards.card("NO_IF", o.ifs); });
}

/// A row for what stays on a source in a subarray, in the order of their first groups.
void writeIndex(FitsText& file, const Observation& o, const std::vector<ObservedGroup>& groups)
{
    struct Scan {
        int source, subarray, first, last;
        double start, end;
    };
    std::vector<Scan> scans;
    std::vector<int> current(static_cast<std::size_t>(o.subarrays), -1);
    for (int g = 0; g < static_cast<int>(groups.size()); ++g) {
        const ObservedGroup& group = groups[static_cast<std::size_t>(g)];
        int& scan = current[static_cast<std::size_t>(group.subarray - 1)];
        const double day = dayOf(o, group);
        if (scan < 0 || scans[static_cast<std::size_t>(scan)].source != group.source) {
            scan = static_cast<int>(scans.size());
            scans.push_back({group.source, group.subarray, g + 1, g + 1, day, day});
        }
        scans[static_cast<std::size_t>(scan)].last = g + 1;
        scans[static_cast<std::size_t>(scan)].end = day;
    }
    TableText table("AIPS NX", 1,
                    {{"TIME", "1D", "DAYS"},
                     {"TIME INTERVAL", "1E", "DAYS"},
                     {"SOURCE ID", "1J"},
                     {"SUBARRAY", "1J"},
                     {"FREQ ID", "1J"},
                     {"START VIS", "1J"},
                     {"END VIS", "1J"}});
    for (const Scan& scan : scans) {
        table << (scan.start + scan.end) / 2
              << static_cast<float>(scan.end - scan.start + o.interval / secondsPerDay)
              << scan.source + 1 << scan.subarray << 1 << scan.first << scan.last;
        table.endRow();
    }
    table.write(file, [](FitsText&) {});
}

}  // namespace

std::vector<Hands> correlated(const Observation& o, const std::vector<ObservedGroup>& groups,
                              const Gains& gains, Visibilities& jet)
{
    // not the noise of the samples, which stays the same whatever else is observed
    Noise noise(o.seed + 0x100000000u);
    const double start = groups.empty() ? 0 : groups.front().seconds;
    std::vector<Hands> values;
    std::size_t sample = 0;
    for (const ObservedGroup& group : groups) {
        const char* const a = vlbaStations[static_cast<std::size_t>(group.first)].code;
        const char* const b = vlbaStations[static_cast<std::size_t>(group.second)].code;
        const double hours = (group.seconds - start) / 3600;
        for (int f = 1; f <= o.ifs; ++f) {
            std::complex<double> mean =
                group.source ? 1.0 + noise.pair(o.noise) : jet.values[sample];
            const std::complex<double> difference = noise.pair(o.noise);
            Hands both{mean + difference, mean - difference};
            if (!gains.isEmpty()) {
                both.right *= gains.of(a, f, 'R', hours) * std::conj(gains.of(b, f, 'R', hours));
                both.left *= gains.of(a, f, 'L', hours) * std::conj(gains.of(b, f, 'L', hours));
                mean = (both.right + both.left) / 2.0;
            }
            values.push_back(both);
            if (group.source == 0)
                jet.values[sample++] = mean;
        }
    }
    return values;
}

int writeUvFile(const std::string& file, const Observation& o,
                const std::vector<ObservedGroup>& groups, const std::vector<Hands>& values,
                int unsorted, std::string& error)
{
    std::vector<std::size_t> order(groups.size());
    std::iota(order.begin(), order.end(), 0);
    Noise random(o.seed);
    for (std::size_t i = order.size(); unsorted && i > 1; --i)
        std::swap(order[i - 1], order[random.below(i)]);
    FitsText text;
    writeGroups(text, o, groups, order, values);
    if (!unsorted)
        writeIndex(text, o, groups);
    writeFrequencies(text, o);
    for (int subarray = 1; subarray <= o.subarrays; ++subarray)
        writeAntennas(text, o, subarray);
    if (o.sources > 1)
        writeSources(text, o);
    SafeFile out;
    if (out.open(file) &&
        out.file().write(text.bytes().data(), static_cast<std::int64_t>(text.bytes().size())) &&
        out.commit())
        return 1;
    error = file + ": " + out.fault();
    return 0;
}

}  // namespace pavane
