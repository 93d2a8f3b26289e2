#include "apps/ms/GainGrid.h"

#include "apps/ms/Failure.h"
#include "apps/ms/import_data.h"
#include "apps/ms/MsInput.h"
#include "apps/ms/UvFile.h"

#include <algorithm>
#include <casacore/tables/Tables/ScalarColumn.h>
#include <map>
#include <tuple>

namespace pavane_ms
{

namespace
{

constexpr double radiansPerDegree = 3.14159265358979323846 / 180;

DataFrame frameOfUvFits(const std::string& name)
{
    const UvFile file(name);
    DataFrame frame;
    frame.referenceDay = file.referenceDay();
    for (const UvAntenna& one : file.antennas())
        frame.antennas.push_back({one.subarray,
                                  one.number,
                                  one.name,
                                  {one.position[0], one.position[1], one.position[2]}});
    int number = 0;
    for (const UvIf& one : file.selections().front().ifs)
        frame.ifs.push_back({++number, one.frequency + one.width * (file.channels() - 1) / 2});
    const UvSource& source = file.sources().front();
    frame.source = source.name;
    frame.ra = source.ra * radiansPerDegree;
    frame.dec = source.dec * radiansPerDegree;
    return frame;
}

DataFrame frameOfMs(const std::string& name)
{
    using namespace casacore;  // NOLINT
    const Words none({}, {}, 0, 0);
    const MsInput input(name, Selection(none));
    WorkFacts facts;
    const int isWork = facts.read(input.table());
    DataFrame frame;
    frame.referenceDay = isWork ? facts.referenceDay : input.referenceDay();
    const Table antennas = input.subtable("ANTENNA");
    for (std::size_t i = 0; i < antennas.nrow(); ++i) {
        DataFrame::Antenna one;
        one.number = isWork && i < facts.antennaNumbers.size() ? facts.antennaNumbers[i]
                                                               : static_cast<int>(i) + 1;
        if (isWork && i < facts.antennaSubarrays.size())
            one.subarray = std::max(facts.antennaSubarrays[i], 1);
        one.name = ScalarColumn<String>(antennas, "NAME")(i);
        const Array<Double> place = ArrayColumn<Double>(antennas, "POSITION").get(i);
        std::copy_n(place.data(), std::min<std::size_t>(place.size(), 3), one.position);
        frame.antennas.push_back(one);
    }
    for (std::size_t i = 0; i < input.windows().size(); ++i) {
        const std::vector<double>& all = input.windows()[i].frequencies;
        frame.ifs.push_back(
            {isWork && i < facts.ifs.size() ? facts.ifs[i] : input.windows()[i].ifNumber,
             (all.front() + all.back()) / 2});
    }
    const Table fields = input.subtable("FIELD");
    if (fields.nrow() > 0) {
        const Array<Double> place = ArrayColumn<Double>(fields, "PHASE_DIR").get(0);
        frame.source = ScalarColumn<String>(fields, "NAME")(0);
        if (place.size() >= 2) {
            frame.ra = place.data()[0];
            frame.dec = place.data()[1];
        }
    }
    return frame;
}

}  // namespace

DataFrame readFrame(const std::string& name)
{
    return isTable(name) ? frameOfMs(name) : frameOfUvFits(name);
}

GainGrid::GainGrid(const GainFile& file)
{
    std::map<std::tuple<double, double, int, int>, std::size_t> timeOf;
    std::map<std::vector<int>, std::size_t> groupOf;
    std::map<std::pair<int, int>, std::size_t> antennaOf;
    const auto timeKey = [](const GainLine& line) {
        return std::tuple(line.start, line.end, line.source, line.subarray);
    };
    for (const GainLine& line : file.lines) {
        timeOf.try_emplace(timeKey(line), 0);
        groupOf.try_emplace(line.ifs, 0);
        if (antennaOf.try_emplace({line.subarray, line.antenna}, antennas.size()).second)
            antennas.push_back({line.subarray, line.antenna, line.name});
        if (hands.find(line.hand) == std::string::npos)
            hands += line.hand;
    }
    for (auto& [key, place] : timeOf) {
        place = times.size();
        times.push_back({std::get<0>(key), std::get<1>(key), std::get<2>(key), std::get<3>(key)});
    }
    for (auto& [key, place] : groupOf) {
        place = groups.size();
        groups.push_back(key);
    }
    constexpr double always = 1e6, mostGaps = 1000;
    const double size = static_cast<double>(times.size()) * static_cast<double>(groups.size()) *
                        static_cast<double>(antennas.size()) * static_cast<double>(hands.size());
    if (size > always && size > mostGaps * static_cast<double>(file.lines.size()))
        throw Failure("the gains have no times in common that an array could be made of");
    cells.resize(static_cast<std::size_t>(size));
    for (const GainLine& line : file.lines)
        at(timeOf.at(timeKey(line)), groupOf.at(line.ifs),
           antennaOf.at({line.subarray, line.antenna}), hands.find(line.hand)) = line;
}

}  // namespace pavane_ms
