#include "benchmarks/uvfits/made_observation.h"

#include "apps/simulate/FitsText.h"
#include "tessel/AFile.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace pavane
{

namespace
{

constexpr int stations = 10, baselines = 45, sources = 5, ifs = 8, hands = 2;
constexpr int parameters = 9, groupNumbers = parameters + ifs * hands * 3;
constexpr int timesOfScan = 150;
constexpr double step = 2 / 86400.0, pause = 100 / 86400.0, secondDay = 0.125;

int sourceOf(int time) { return time / timesOfScan % sources + 1; }

double dayOf(int time) { return time * step + time / timesOfScan * pause; }

std::string header(int groups)
{
    FitsText file;
    file.card("SIMPLE", true);
    file.card("BITPIX", -32);
    static constexpr int lengths[] = {0, 3, hands, 1, ifs, 1, 1};
    static constexpr const char* axes[] = {"", "COMPLEX", "STOKES", "FREQ", "IF", "RA", "DEC"};
    file.card("NAXIS", 7);
    for (int i = 0; i < 7; ++i)
        file.card("NAXIS" + std::to_string(i + 1), lengths[i]);
    file.card("GROUPS", true);
    file.card("PCOUNT", parameters);
    file.card("GCOUNT", groups);
    for (int i = 1; i < 7; ++i) {
        file.card("CTYPE" + std::to_string(i + 1), axes[i]);
        file.card("CRVAL" + std::to_string(i + 1), i == 3 ? 8.4e9 : -1.0);
        file.card("CDELT" + std::to_string(i + 1), i == 3 ? 8e6 : -1.0);
    }
    static constexpr const char* names[] = {"UU--", "VV--",   "WW--",   "BASELINE", "DATE",
                                            "DATE", "INTTIM", "SOURCE", "FREQSEL"};
    for (int i = 0; i < parameters; ++i) {
        file.card("PTYPE" + std::to_string(i + 1), names[i]);
        file.card("PZERO" + std::to_string(i + 1), i == 4 ? 2455554.5 : 0.0);
    }
    file.card("DATE-OBS", "2010-12-24");
    file.data("");
    return file.bytes();
}

std::string groupsOf(int time)
{
    std::string data;
    const double day = dayOf(time);
    const double whole = static_cast<int>(day / secondDay) * secondDay;
    for (int a = 1; a <= stations; ++a)
        for (int b = a + 1; b <= stations; ++b) {
            const double values[parameters] = {1e-3 * a, 1e-3 * b,    0, 256.0 * a + b,
                                               whole,    day - whole, 2, double(sourceOf(time)),
                                               1};
            for (const double value : values)
                put(data, static_cast<float>(value));
            for (int i = parameters; i < groupNumbers; ++i)
                put(data, 1.0f);
        }
    return data;
}

std::string tables(int times)
{
    FitsText file;
    TableText index("AIPS NX", 1,
                    {{"TIME", "1D"},
                     {"TIME INTERVAL", "1E"},
                     {"SOURCE ID", "1J"},
                     {"SUBARRAY", "1J"},
                     {"FREQ ID", "1J"},
                     {"START VIS", "1J"},
                     {"END VIS", "1J"}});
    for (int t = 0; t < times; t += timesOfScan) {
        const int end = std::min(t + timesOfScan, times);
        index << (dayOf(t) + dayOf(end - 1)) / 2 << static_cast<float>(dayOf(end - 1) - dayOf(t))
              << sourceOf(t) << 1 << 1 << t * baselines + 1 << end * baselines;
        index.endRow();
    }
    index.write(file, [](FitsText&) {});
    TableText frequencies("AIPS FQ", 1,
                          {{"FRQSEL", "1J"},
                           {"IF FREQ", "8D"},
                           {"CH WIDTH", "8E"},
                           {"TOTAL BANDWIDTH", "8E"},
                           {"SIDEBAND", "8J"}});
    frequencies << 1;
    for (int i = 0; i < ifs; ++i)
        frequencies << 7.9375e6 * i;
    for (int i = 0; i < 2 * ifs; ++i)
        frequencies << 8e6f;
    for (int i = 0; i < ifs; ++i)
        frequencies << 1;
    frequencies.endRow();
    frequencies.write(file, [](FitsText& cards) { cards.card("NO_IF", ifs); });
    TableText antennas(
        "AIPS AN", 1,
        {{"ANNAME", "8A"}, {"STABXYZ", "3D"}, {"NOSTA", "1J"}, {"MNTSTA", "1J"}, {"STAXOF", "1E"}});
    for (int i = 1; i <= stations; ++i) {
        antennas.text("ST" + std::to_string(i), 8) << 1e5 * i << 2e6 / i << 3e6 << i << 0 << 2.13f;
        antennas.endRow();
    }
    antennas.write(file, [](FitsText& cards) { cards.card("RDATE", "2010-12-24"); });
    TableText places(
        "AIPS SU", 1,
        {{"ID. NO.", "1J"}, {"SOURCE", "16A"}, {"RAEPO", "1D"}, {"DECEPO", "1D"}, {"EPOCH", "1D"}});
    for (int i = 1; i <= sources; ++i) {
        places << i;
        places.text("SOURCE" + std::to_string(i), 16) << 10.0 * i << 5.0 * i << 2000.0;
        places.endRow();
    }
    places.write(file, [](FitsText&) {});
    return file.bytes();
}

}  // namespace

void makeObservation(const std::string& name, std::int64_t bytes)
{
    constexpr std::int64_t bytesOfTime = baselines * groupNumbers * 4;
    const auto times = static_cast<int>(std::max<std::int64_t>(bytes / bytesOfTime, 1));
    AFile file(name, AFile::writeOnly | AFile::create);
    const auto write = [&](const std::string& text) {
        if (!file.write(text.data(), static_cast<std::int64_t>(text.size()))) {
            std::perror(name.c_str());
            std::exit(1);
        }
    };
    write(header(times * baselines));
    for (int t = 0; t < times; ++t)
        write(groupsOf(t));
    write(std::string(static_cast<std::size_t>((2880 - times * bytesOfTime % 2880) % 2880), '\0'));
    write(tables(times));
}

}  // namespace pavane
