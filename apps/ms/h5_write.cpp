#include "apps/ms/Failure.h"
#include "apps/ms/GainGrid.h"
#include "apps/ms/H5File.h"
#include "apps/ms/text.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>

namespace pavane_ms
{

namespace
{

constexpr double secondsPerDay = 86400.0;
constexpr const char* axes = "time,freq,ant,dir,pol";

/// As the table of antennas, or of directions, is laid out in H5Parm.
template <std::size_t Length, std::size_t Count>
struct Named {
    char name[Length] = {};
    float values[Count] = {};
};

template <std::size_t Length, std::size_t Count>
void writeTable(hid_t group, const std::string& name, const std::string& second,
                const std::vector<Named<Length, Count>>& rows)
{
    using Row = Named<Length, Count>;
    const std::string what = name + " cannot be written";
    const hsize_t length = Count, count = rows.size();
    const H5Handle text(H5Tcopy(H5T_C_S1), H5Tclose, what);
    H5Tset_size(text, Length);
    H5Tset_strpad(text, H5T_STR_NULLPAD);
    const H5Handle values(H5Tarray_create2(H5T_IEEE_F32LE, 1, &length), H5Tclose, what);
    const H5Handle type(H5Tcreate(H5T_COMPOUND, sizeof(Row)), H5Tclose, what);
    H5Tinsert(type, "name", HOFFSET(Row, name), text);
    H5Tinsert(type, second.c_str(), HOFFSET(Row, values), values);
    const H5Handle space(H5Screate_simple(1, &count, nullptr), H5Sclose, what);
    const H5Handle set(
        H5Dcreate2(group, name.c_str(), type, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT),
        H5Dclose, what);
    if (H5Dwrite(set, type, H5S_ALL, H5S_ALL, H5P_DEFAULT, rows.data()) < 0)
        throw Failure(what);
}

/// What the two tables of solutions have in common.
struct Frame {
    std::vector<double> times, frequencies;
    std::vector<std::string> antennas, hands, ifs;
    std::vector<hsize_t> shape;
};

/// Amplitudes or phases with their axes.
template <typename Value>
void writeSolutions(hid_t set, const std::string& name, const std::string& title,
                    const Frame& frame, const std::vector<GainLine>& cells, const Value& value)
{
    const H5Handle group(H5Gcreate2(set, name.c_str(), H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT),
                         H5Gclose, name + " cannot be written");
    writeText(group, "TITLE", title);
    std::vector<double> values, weights;
    for (const GainLine& cell : cells) {
        values.push_back(cell.state == GainState::missing ? std::numeric_limits<double>::quiet_NaN()
                                                          : value(cell.value));
        weights.push_back(cell.isUsable() ? 1 : 0);
    }
    for (const auto& [key, all] : {std::pair("val", &values), std::pair("weight", &weights)}) {
        writeNumbers(group, key, frame.shape, *all);
        const H5Handle array(H5Dopen2(group, key, H5P_DEFAULT), H5Dclose, name);
        writeText(array, "AXES", axes);
    }
    writeNumbers(group, "time", {frame.times.size()}, frame.times);
    writeNumbers(group, "freq", {frame.frequencies.size()}, frame.frequencies);
    writeTexts(group, "ant", frame.antennas);
    writeTexts(group, "dir", {"[CENTRE]"});
    writeTexts(group, "pol", frame.hands);
}

/// What H5Parm has no place for stands beside the axes, where other readers pass it over.
void writeRest(hid_t set, const GainFile& gains, const GainGrid& grid, const Frame& frame)
{
    const H5Handle group(H5Gopen2(set, "amplitude000", H5P_DEFAULT), H5Gclose, "amplitude000");
    const auto put = [&](const std::string& name, const std::vector<hsize_t>& shape, auto all,
                         const auto& get) {
        std::vector<double> values;
        values.reserve(all.size());
        for (const auto& one : all)
            values.push_back(static_cast<double>(get(one)));
        writeNumbers(group, "pavane_" + name, shape, values);
    };
    const std::vector<hsize_t> times = {grid.times.size()}, antennas = {grid.antennas.size()};
    using Time = GainGrid::Time;
    using Antenna = GainGrid::Antenna;
    put("start", times, grid.times, [](const Time& t) { return t.start; });
    put("end", times, grid.times, [](const Time& t) { return t.end; });
    put("source", times, grid.times, [](const Time& t) { return t.source; });
    put("time_subarray", times, grid.times, [](const Time& t) { return t.subarray; });
    put("subarray", antennas, grid.antennas, [](const Antenna& a) { return a.subarray; });
    put("number", antennas, grid.antennas, [](const Antenna& a) { return a.number; });
    put("error", frame.shape, grid.cells, [](const GainLine& g) { return g.error; });
    put("weight", frame.shape, grid.cells, [](const GainLine& g) { return g.weight; });
    put("iterations", frame.shape, grid.cells, [](const GainLine& g) { return g.iterations; });
    put("reference", frame.shape, grid.cells, [](const GainLine& g) { return g.reference; });
    put("state", frame.shape, grid.cells, [](const GainLine& g) { return int(g.state); });
    put("flagged", frame.shape, grid.cells, [](const GainLine& g) { return g.isFlagged; });
    std::vector<std::string> names;
    for (const Antenna& antenna : grid.antennas)
        names.push_back(antenna.name);
    writeTexts(group, "pavane_name", names);
    writeTexts(group, "pavane_ifs", frame.ifs);
    writeNumbers(group, "pavane_day", {2}, {gains.referenceDay, static_cast<double>(gains.ifs)});
}

std::vector<std::string> antennaNames(const GainGrid& grid)
{
    std::map<std::string, int> times;
    for (const GainGrid::Antenna& antenna : grid.antennas)
        ++times[antenna.name];
    std::vector<std::string> names;
    for (const GainGrid::Antenna& antenna : grid.antennas)
        names.push_back(!antenna.name.empty() && times[antenna.name] == 1
                            ? antenna.name
                            : antenna.name + "_" + std::to_string(antenna.subarray) + "_" +
                                  std::to_string(antenna.number));
    return names;
}

template <std::size_t Length, std::size_t Count>
Named<Length, Count> namedRow(const std::string& name, const double* values)
{
    Named<Length, Count> row;
    std::memcpy(row.name, name.data(), std::min(name.size(), Length));
    for (std::size_t i = 0; i < Count; ++i)
        row.values[i] = static_cast<float>(values[i]);
    return row;
}

}  // namespace

std::vector<std::string> writeH5(const std::string& name, const GainFile& gains,
                                 const DataFrame* frame)
{
    GainGrid grid(gains);
    std::vector<std::string> lost;
    Frame all;
    const double day = gains.referenceDay > 0 ? gains.referenceDay
                       : frame                ? frame->referenceDay
                                              : modifiedZero;
    for (const GainGrid::Time& time : grid.times) {
        all.times.push_back(((time.start + time.end) / 2 + day - modifiedZero) * secondsPerDay);
        if (time.subarray > 1 || time.source > 0)
            lost.assign(1, "others cannot tell gains of several sources or subarrays apart");
    }
    std::vector<double> sorted = all.times;
    std::sort(sorted.begin(), sorted.end());
    if (std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end())
        throw Failure("the gains hold several intervals of one middle, which H5Parm cannot");
    for (const std::vector<int>& group : grid.groups) {
        double sum = 0;
        int count = 0;
        for (const int number : group)
            for (const DataFrame::If& one : frame ? frame->ifs : std::vector<DataFrame::If>())
                if (one.number == number) {
                    sum += one.frequency;
                    ++count;
                }
        if (frame && count == 0)
            throw Failure("the data have no IF " + numbersText(group));
        all.frequencies.push_back(count > 0 ? sum / count : group.front());
        all.ifs.push_back(numbersText(group));
    }
    if (!frame)
        lost.emplace_back("frequencies, which are numbers of IFs: --data names the data");
    for (const char hand : grid.hands)
        all.hands.push_back(hand == 'I' ? "I" : std::string(2, hand));
    all.antennas = antennaNames(grid);
    all.shape = {grid.times.size(), grid.groups.size(), grid.antennas.size(), 1, grid.hands.size()};
    std::vector<Named<16, 3>> antennas;
    for (std::size_t i = 0; i < grid.antennas.size(); ++i) {
        double place[3] = {0, 0, 0};
        for (const DataFrame::Antenna& one :
             frame ? frame->antennas : std::vector<DataFrame::Antenna>())
            if (one.number == grid.antennas[i].number && one.subarray == grid.antennas[i].subarray)
                std::copy_n(one.position, 3, place);
        antennas.push_back(namedRow<16, 3>(all.antennas[i], place));
    }
    const double direction[2] = {frame ? frame->ra : 0, frame ? frame->dec : 0};

    const std::string what = name + " cannot be written";
    const H5Handle file(H5Fcreate(name.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT), H5Fclose,
                        what);
    {
        const H5Handle set(H5Gcreate2(file, "sol000", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT),
                           H5Gclose, what);
        writeText(set, "h5parm_version", "1.0");
        writeTable<16, 3>(set, "antenna", "position", antennas);
        writeTable<128, 2>(set, "source", "dir", {namedRow<128, 2>("[CENTRE]", direction)});
        writeSolutions(set, "amplitude000", "amplitude", all, grid.cells,
                       [](const std::complex<double>& value) { return std::abs(value); });
        writeSolutions(set, "phase000", "phase", all, grid.cells,
                       [](const std::complex<double>& value) { return std::arg(value); });
        writeRest(set, gains, grid, all);
    }
    if (H5Fflush(file, H5F_SCOPE_GLOBAL) < 0)
        throw Failure(what);
    lost.emplace_back("to others than pavane-ms: ends of intervals, errors, weights, iterations, "
                      "reference antennas, and why a gain has the weight 0");
    return lost;
}

}  // namespace pavane_ms
