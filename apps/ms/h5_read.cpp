#include "apps/ms/Failure.h"
#include "apps/ms/GainGrid.h"
#include "apps/ms/H5File.h"
#include "apps/ms/text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace pavane_ms
{

namespace
{

constexpr double secondsPerDay = 86400.0;
/// A solution without neighbours holds for all times.
constexpr double always = 36500;

enum Axis { time, freq, ant, dir, pol, axisCount };
constexpr const char* axisNames[] = {"time", "freq", "ant", "dir", "pol"};

/// A table of solutions: values and weights by any of the axes.
struct Solutions {
    std::string name;
    std::vector<double> values, weights, times, frequencies;
    std::vector<std::string> antennas, directions, hands;
    std::size_t length[axisCount] = {1, 1, 1, 1, 1}, step[axisCount] = {0, 0, 0, 0, 0};

    std::size_t place(const std::size_t* index) const
    {
        std::size_t at = 0;
        for (int axis = 0; axis < axisCount; ++axis)
            at += index[axis] * step[axis];
        return at;
    }
};

Solutions readSolutions(hid_t set, const std::string& name)
{
    const H5Handle group(H5Gopen2(set, name.c_str(), H5P_DEFAULT), H5Gclose,
                         "has no solutions " + name);
    Solutions all;
    all.name = name;
    if (!hasThing(group, "val"))
        throw Failure("has solutions " + name + " without values");
    std::string order;
    {
        const H5Handle array(H5Dopen2(group, "val", H5P_DEFAULT), H5Dclose, name);
        order = readText(array, "AXES");
    }
    const std::vector<hsize_t> shape = shapeOf(group, "val");
    const auto names = split(order, ',');
    if (names.size() != shape.size())
        throw Failure("has solutions " + name + " whose axes are not told");
    std::size_t step = 1;
    for (std::size_t i = names.size(); i-- > 0; step *= static_cast<std::size_t>(shape[i])) {
        const auto* const found =
            std::find(std::begin(axisNames), std::end(axisNames), trimmed(names[i]));
        if (found == std::end(axisNames))
            throw Failure("has solutions " + name + " with an axis " + plain(names[i]) +
                          ", which gains do not have");
        const auto axis = static_cast<std::size_t>(found - std::begin(axisNames));
        all.length[axis] = static_cast<std::size_t>(shape[i]);
        all.step[axis] = step;
    }
    all.values = readNumbersOf(group, "val");
    all.weights = readNumbersOf(group, "weight");
    all.times = readNumbersOf(group, "time");
    all.frequencies = readNumbersOf(group, "freq");
    all.antennas = readTexts(group, "ant");
    all.directions = readTexts(group, "dir");
    all.hands = readTexts(group, "pol");
    const auto check = [&](Axis axis, std::size_t count) {
        if (all.step[axis] > 0 && count != all.length[axis])
            throw Failure("has solutions " + name + " whose axis " + axisNames[axis] +
                          " has another length");
    };
    check(time, all.times.size());
    check(freq, all.frequencies.size());
    check(ant, all.antennas.size());
    check(pol, all.hands.size());
    if (all.antennas.empty() || all.values.empty())
        throw Failure("has solutions " + name + " of no antennas");
    if (!all.weights.empty() && all.weights.size() != all.values.size())
        throw Failure("has solutions " + name + " with weights of another number");
    return all;
}

/// The IF whose frequency is the nearest; without data the place.
std::vector<std::vector<int>> groupsOf(const Solutions& all, const DataFrame* frame)
{
    std::vector<std::vector<int>> groups(all.length[freq]);
    if (!frame) {
        for (std::size_t i = 0; i < groups.size(); ++i)
            groups[i] = {static_cast<int>(i) + 1};
        return groups;
    }
    for (const DataFrame::If& one : frame->ifs) {
        std::size_t best = 0;
        for (std::size_t i = 0; i < all.frequencies.size(); ++i)
            if (std::abs(all.frequencies[i] - one.frequency) <
                std::abs(all.frequencies[best] - one.frequency))
                best = i;
        groups[best].push_back(one.number);
    }
    return groups;
}

void setIntervals(const Solutions& all, double day, std::vector<GainGrid::Time>& times)
{
    const std::size_t count = all.length[time];
    times.resize(count);
    std::vector<std::size_t> order(count);
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto at = [&](std::size_t i) {
        return all.times[order[i]] / secondsPerDay - (day - modifiedZero);
    };
    if (all.times.empty() || count < 2) {
        times[0] = {-always, always, 0, 1};
        return;
    }
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return all.times[a] < all.times[b]; });
    for (std::size_t i = 0; i < count; ++i) {
        const double before = i > 0 ? at(i) - at(i - 1) : at(1) - at(0);
        const double after = i + 1 < count ? at(i + 1) - at(i) : before;
        times[order[i]] = {at(i) - before / 2, at(i) + after / 2, 0, 1};
        if (!(before > 0) || !(after > 0) || !std::isfinite(before + after))
            throw Failure("has times that do not rise");
    }
}

/// What pavane-ms writes beside the axes.
struct Rest {
    std::vector<double> start, end, source, timeSubarray, subarray, number, error, weight,
        iterations, reference, state, flagged, day;
    std::vector<std::string> names, ifs;
};

Rest readRest(hid_t set, const std::string& name)
{
    Rest rest;
    const H5Handle group(H5Gopen2(set, name.c_str(), H5P_DEFAULT), H5Gclose, name);
    const auto get = [&](const char* key) {
        return readNumbersOf(group, std::string("pavane_") + key);
    };
    rest.start = get("start");
    rest.end = get("end");
    rest.source = get("source");
    rest.timeSubarray = get("time_subarray");
    rest.subarray = get("subarray");
    rest.number = get("number");
    rest.error = get("error");
    rest.weight = get("weight");
    rest.iterations = get("iterations");
    rest.reference = get("reference");
    rest.state = get("state");
    rest.flagged = get("flagged");
    rest.day = get("day");
    rest.names = readTexts(group, "pavane_name");
    rest.ifs = readTexts(group, "pavane_ifs");
    return rest;
}

int wholeOf(double value, int least, int most)
{
    return value >= least && value <= most ? static_cast<int>(value) : least;
}

/// Puts what was written beside in the place of what was guessed, where it fits.
class Mended
{
public:
    Mended(const Solutions& all, Rest rest, std::vector<GainGrid::Time>& times,
           std::vector<std::vector<int>>& groups, std::vector<GainGrid::Antenna>& antennas)
        : rest_(std::move(rest))
    {
        const std::size_t count = times.size(), who = antennas.size();
        if (rest_.start.size() == count && rest_.end.size() == count &&
            rest_.source.size() == count && rest_.timeSubarray.size() == count)
            for (std::size_t i = 0; i < count; ++i)
                if (rest_.start[i] < rest_.end[i])
                    times[i] = {rest_.start[i], rest_.end[i], wholeOf(rest_.source[i], 0, 1 << 20),
                                wholeOf(rest_.timeSubarray[i], 1, 1 << 16)};
        if (rest_.ifs.size() == groups.size())
            for (std::size_t i = 0; i < groups.size(); ++i)
                if (const auto numbers = readNumbers(rest_.ifs[i]); !numbers.empty())
                    groups[i] = numbers;
        if (rest_.number.size() == who && rest_.subarray.size() == who && rest_.names.size() == who)
            for (std::size_t i = 0; i < who; ++i)
                antennas[i] = {wholeOf(rest_.subarray[i], 1, 1 << 16),
                               wholeOf(rest_.number[i], 0, 1 << 20), plain(rest_.names[i])};
        const std::size_t cells = all.values.size();
        hasCells_ = rest_.error.size() == cells && rest_.weight.size() == cells &&
                    rest_.iterations.size() == cells && rest_.reference.size() == cells &&
                    rest_.state.size() == cells && rest_.flagged.size() == cells;
    }
    /// A weight that somebody else made 0 flags.
    void mend(std::size_t at, GainLine& line) const
    {
        if (!hasCells_)
            return;
        const int isUsed = line.state == GainState::solved;
        line.error = std::isfinite(rest_.error[at]) ? rest_.error[at] : 0;
        line.weight = std::isfinite(rest_.weight[at]) ? rest_.weight[at] : 0;
        line.iterations = wholeOf(rest_.iterations[at], 0, 1 << 20);
        line.reference = wholeOf(rest_.reference[at], 0, 1 << 20);
        line.state = static_cast<GainState>(wholeOf(rest_.state[at], 0, 2));
        line.isFlagged = wholeOf(rest_.flagged[at], 0, 1) ||
                         (!isUsed && line.state == GainState::solved && std::norm(line.value) > 0);
    }

private:
    Rest rest_;
    int hasCells_ = 0;
};

std::string solutionSet(hid_t file)
{
    const std::vector<std::string> sets = namesOf(file);
    if (std::find(sets.begin(), sets.end(), "sol000") != sets.end())
        return "sol000";
    if (sets.empty())
        throw Failure("is empty");
    return sets.front();
}

char handOf(const std::string& name)
{
    const std::string_view hands = "RLXYI";
    const int isOne = name.size() == 1 || (name.size() == 2 && name[0] == name[1]);
    if (!isOne || hands.find(name[0]) == std::string_view::npos)
        throw Failure("has gains of a hand " + plain(name) + ", which no gain of one is");
    return name[0];
}

GainFile readSet(hid_t file, const DataFrame* frame, int direction, std::vector<std::string>& lost)
{
    const std::string setName = solutionSet(file);
    const H5Handle set(H5Gopen2(file, setName.c_str(), H5P_DEFAULT), H5Gclose,
                       "has no set of solutions");
    std::string amplitude, phase;
    for (const std::string& name : namesOf(set)) {
        H5O_info_t info = {};
        if (H5Oget_info_by_name(set, name.c_str(), &info, H5P_DEFAULT) < 0 ||
            info.type != H5O_TYPE_GROUP)
            continue;
        const H5Handle group(H5Gopen2(set, name.c_str(), H5P_DEFAULT), H5Gclose, name);
        const std::string title = readText(group, "TITLE");
        if (title == "amplitude" && amplitude.empty())
            amplitude = name;
        else if (title == "phase" && phase.empty())
            phase = name;
        else
            lost.push_back("solutions " + plain(name) + " (" + plain(title) + ")");
    }
    if (amplitude.empty() && phase.empty())
        throw Failure("has neither amplitudes nor phases");
    const Solutions all = readSolutions(set, amplitude.empty() ? phase : amplitude);
    Solutions other;
    if (!amplitude.empty() && !phase.empty()) {
        other = readSolutions(set, phase);
        if (!std::equal(all.length, all.length + axisCount, other.length) ||
            all.times != other.times || all.antennas != other.antennas || all.hands != other.hands)
            throw Failure("has amplitudes and phases of different times, antennas or hands");
    }
    if (all.length[dir] > 1 && direction == 0)
        throw Failure("has gains of " + std::to_string(all.length[dir]) +
                      " directions: --direction N takes one of them");
    const auto which = static_cast<std::size_t>(std::max(direction, 1)) - 1;
    if (which >= all.length[dir])
        throw Failure("has no direction " + std::to_string(direction));

    Rest rest = readRest(set, all.name);
    GainFile gains;
    gains.referenceDay =
        rest.day.size() == 2 && rest.day[0] > 0 && std::isfinite(rest.day[0]) ? rest.day[0]
        : frame                                                               ? frame->referenceDay
        : all.times.empty()                                                   ? 0
                            : std::floor(all.times[0] / secondsPerDay) + modifiedZero;
    std::vector<GainGrid::Time> times;
    setIntervals(all, gains.referenceDay, times);
    std::vector<std::vector<int>> groups = groupsOf(all, frame);
    std::vector<GainGrid::Antenna> antennas;
    for (std::size_t i = 0; i < all.antennas.size(); ++i) {
        GainGrid::Antenna one{1, static_cast<int>(i) + 1, plain(all.antennas[i])};
        for (const DataFrame::Antenna& known :
             frame ? frame->antennas : std::vector<DataFrame::Antenna>())
            if (known.name == one.name) {
                one.subarray = known.subarray;
                one.number = known.number;
            }
        antennas.push_back(one);
    }
    if (rest.number.empty())
        lost.emplace_back(
            std::string("ends of intervals, which reach half of the way to the next") +
            (frame ? "" : "; numbers of antennas and IFs are guessed without --data"));
    const Mended mended(all, rest, times, groups, antennas);
    for (const std::vector<int>& group : groups)
        for (const int number : group)
            gains.ifs = std::max(gains.ifs, number);

    for (std::size_t t = 0; t < all.length[time]; ++t)
        for (std::size_t f = 0; f < all.length[freq]; ++f)
            for (std::size_t h = 0; h < all.length[pol]; ++h)
                for (std::size_t a = 0; a < antennas.size(); ++a) {
                    const std::size_t index[axisCount] = {t, f, a, which, h};
                    const std::size_t at = all.place(index);
                    if (groups[f].empty() || antennas[a].subarray != times[t].subarray)
                        continue;
                    const double first = all.values[at];
                    const double second =
                        other.values.empty() ? 0 : other.values[other.place(index)];
                    const int isGood = std::isfinite(first) && std::isfinite(second);
                    const int isUsed =
                        isGood && (all.weights.empty() || all.weights[at] > 0) &&
                        (other.weights.empty() || other.weights[other.place(index)] > 0);
                    GainLine line;
                    line.subarray = antennas[a].subarray;
                    line.antenna = antennas[a].number;
                    line.name = antennas[a].name;
                    line.ifs = groups[f];
                    line.hand = all.hands.empty() ? 'I' : handOf(all.hands[h]);
                    line.source = times[t].source;
                    line.start = times[t].start;
                    line.end = times[t].end;
                    line.value = !isGood ? std::complex<double>(1)
                                 : amplitude.empty()
                                     ? std::polar(1.0, first)
                                     : std::polar(std::abs(first), second + (first < 0 ? M_PI : 0));
                    line.state = isUsed ? GainState::solved : GainState::failed;
                    mended.mend(at, line);
                    if (line.state != GainState::missing)
                        gains.lines.push_back(line);
                }
    if (gains.lines.empty())
        throw Failure("has no gains");
    return gains;
}

}  // namespace

GainFile readH5(const std::string& name, const DataFrame* frame, int direction,
                std::vector<std::string>& lost)
{
    const H5Handle file(H5Fopen(name.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT), H5Fclose,
                        name + " is no file of HDF5");
    try {
        return readSet(file, frame, direction, lost);
    } catch (const Failure& failure) {
        throw Failure(name + " " + failure.what());
    }
}

}  // namespace pavane_ms
