#include "tessel/gains/gain_files.h"
#include "tessel/LineReader.h"
#include "tessel/SafeFile.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <new>
#include <string_view>
#include <tuple>
#include <utility>

namespace pavane
{
namespace
{

constexpr int mostIfs = 999;

enum Field : std::size_t {
    subarrayField,
    numberField,
    nameField,
    ifsField,
    handField,
    sourceField,
    startField,
    endField,
    realField,
    imaginaryField,
    errorField,
    weightField,
    iterationsField,
    referenceField,
    stateField,
    flagField,
    fieldCount
};

constexpr std::array<const char*, fieldCount> titles{
    "subarray", "antenna", "name",  "IFs",    "hand",       "source",    "start [d]", "end [d]",
    "real",     "imag",    "error", "weight", "iterations", "reference", "state",     "flagged"};

constexpr std::array<const char*, 3> stateNames{"missing", "solved", "failed"};

/// A name cannot end a field or a line.
std::string plainName(std::string name)
{
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
    return name;
}

std::string groupText(const std::vector<int>& group)
{
    std::string text;
    for (const int i : group)
        text.append(text.empty() ? "" : ",").append(std::to_string(i + 1));
    return text;
}

std::vector<std::string_view> fieldsOf(std::string_view line)
{
    std::vector<std::string_view> fields;
    for (;;) {
        const std::size_t tab = line.find('\t');
        fields.push_back(line.substr(0, tab));
        if (tab == std::string_view::npos)
            return fields;
        line.remove_prefix(tab + 1);
    }
}

/// A line of the file as read.
struct Line {
    GainAntenna antenna;
    std::vector<int> group;
    char hand = 'R';
    GainInterval interval;
    Gain gain;
    int reference = 0;
};

int readGroup(std::string_view text, std::vector<int>& group)
{
    while (!text.empty()) {
        const std::size_t comma = text.find(',');
        int number = 0;
        if (!stoval(text.substr(0, comma), number) || number < 1 || number > mostIfs)
            return 0;
        group.push_back(number - 1);
        text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
    }
    std::sort(group.begin(), group.end());
    return !group.empty() && std::adjacent_find(group.begin(), group.end()) == group.end();
}

/// The name of the field that is wrong; null when the line is right.
const char* readLine(const std::vector<std::string_view>& fields, Line& line)
{
    const auto whole = [&](Field field, int& value) { return stoval(fields[field], value); };
    const auto number = [&](Field field, double& value) {
        return stoval(fields[field], value) && std::isfinite(value);
    };
    double real = 0, imaginary = 0;
    if (!whole(subarrayField, line.antenna.subarray) || line.antenna.subarray < 1)
        return titles[subarrayField];
    if (!whole(numberField, line.antenna.number))
        return titles[numberField];
    line.antenna.name = fields[nameField];
    if (!readGroup(fields[ifsField], line.group))
        return titles[ifsField];
    if (fields[handField].size() != 1 ||
        std::string_view("RLXYI").find(fields[handField][0]) == std::string_view::npos)
        return titles[handField];
    line.hand = fields[handField][0];
    line.interval.subarray = line.antenna.subarray;
    if (!whole(sourceField, line.interval.source) || line.interval.source < 0)
        return titles[sourceField];
    if (!number(startField, line.interval.start))
        return titles[startField];
    if (!number(endField, line.interval.end) || !(line.interval.start < line.interval.end))
        return titles[endField];
    if (!number(realField, real))
        return titles[realField];
    if (!number(imaginaryField, imaginary))
        return titles[imaginaryField];
    line.gain.value = {real, imaginary};
    if (!number(errorField, line.gain.error) || line.gain.error < 0)
        return titles[errorField];
    if (!number(weightField, line.gain.weight))
        return titles[weightField];
    if (!whole(iterationsField, line.gain.iterations))
        return titles[iterationsField];
    if (!whole(referenceField, line.reference))
        return titles[referenceField];
    const auto state = std::find(stateNames.begin(), stateNames.end(), fields[stateField]);
    if (state == stateNames.end())
        return titles[stateField];
    line.gain.state = static_cast<GainState>(state - stateNames.begin());
    int flag = 0;
    if (!whole(flagField, flag) || (flag != 0 && flag != 1))
        return titles[flagField];
    line.gain.isFlagged = static_cast<unsigned char>(flag);
    return nullptr;
}

/// Numbers things in the order of their keys.
template <class Key>
class Places
{
public:
    void add(const Key& key) { places_.try_emplace(key, 0); }
    void number()
    {
        std::size_t next = 0;
        for (auto& [key, place] : places_)
            place = next++;
    }
    std::size_t of(const Key& key) const { return places_.find(key)->second; }
    int find(const Key& key) const
    {
        const auto found = places_.find(key);
        return found == places_.end() ? -1 : static_cast<int>(found->second);
    }
    const std::map<Key, std::size_t>& all() const { return places_; }

private:
    std::map<Key, std::size_t> places_;
};

int gather(const std::vector<Line>& lines, AGains& gains, std::string& error)
{
    Places<std::tuple<int, int, double, double>> intervals;
    Places<std::pair<int, int>> antennas;
    Places<std::vector<int>> groups;
    std::vector<char> hands;
    std::map<std::pair<int, int>, std::string> names;
    const auto intervalKey = [](const GainInterval& one) {
        return std::tuple(one.subarray, one.source, one.start, one.end);
    };
    for (const Line& line : lines) {
        intervals.add(intervalKey(line.interval));
        antennas.add({line.antenna.subarray, line.antenna.number});
        names[{line.antenna.subarray, line.antenna.number}] = line.antenna.name;
        groups.add(line.group);
        if (std::find(hands.begin(), hands.end(), line.hand) == hands.end())
            hands.push_back(line.hand);
    }
    intervals.number();
    antennas.number();
    groups.number();
    std::vector<GainInterval> times;
    for (const auto& [key, place] : intervals.all())
        times.push_back({std::get<2>(key), std::get<3>(key), std::get<0>(key), std::get<1>(key)});
    std::vector<GainAntenna> who;
    for (const auto& [key, place] : antennas.all())
        who.push_back({key.first, key.second, names[key]});
    std::vector<std::vector<int>> ifs;
    std::vector<char> isGrouped(mostIfs, 0);
    for (const auto& [group, place] : groups.all()) {
        for (const int i : group) {
            if (isGrouped[static_cast<std::size_t>(i)]) {
                error = "has IF " + std::to_string(i + 1) + " in two groups";
                return 0;
            }
            isGrouped[static_cast<std::size_t>(i)] = 1;
        }
        ifs.push_back(group);
    }
    // lines that have nothing in common would make an array of nothing but gaps
    constexpr double mostGaps = 1000, always = 1e6;
    const double cells = static_cast<double>(times.size()) * static_cast<double>(who.size()) *
                         static_cast<double>(ifs.size()) * static_cast<double>(hands.size());
    if ((cells > always && cells > mostGaps * static_cast<double>(lines.size())) ||
        !gains.create(std::move(who), std::move(times), std::move(ifs), hands)) {
        error = "has gains whose antennas have no times in common";
        return 0;
    }
    for (const Line& line : lines) {
        Gain& gain = gains.at(intervals.of(intervalKey(line.interval)), groups.of(line.group),
                              static_cast<std::size_t>(gains.handOf(line.hand)),
                              antennas.of({line.antenna.subarray, line.antenna.number}));
        gain = line.gain;
        gain.reference = antennas.find({line.antenna.subarray, line.reference});
    }
    return 1;
}

std::string lineOf(const AGains& gains, std::size_t t, std::size_t g, std::size_t h, std::size_t a)
{
    const GainInterval& interval = gains.intervals()[t];
    const GainAntenna& antenna = gains.antennas()[a];
    const Gain& gain = gains.at(t, g, h, a);
    const int reference =
        gain.reference < 0 ? 0 : gains.antennas()[static_cast<std::size_t>(gain.reference)].number;
    std::string line = std::to_string(antenna.subarray);
    const auto add = [&line](std::string_view text) { line.append("\t").append(text); };
    add(std::to_string(antenna.number));
    add(plainName(antenna.name));
    add(groupText(gains.groups()[g]));
    add(std::string(1, gains.hands()[h]));
    add(std::to_string(interval.source));
    for (const double value : {interval.start, interval.end, gain.value.real(), gain.value.imag(),
                               gain.error, gain.weight})
        add(valToStr(value));
    add(std::to_string(gain.iterations));
    add(std::to_string(reference));
    add(stateNames[static_cast<std::size_t>(gain.state)]);
    add(gain.isFlagged ? "1" : "0");
    return line.append("\n");
}

}  // namespace

int writeGainText(const std::string& file, const AGains& gains, std::string& error)
{
    error.clear();
    SafeFile safe;
    std::string text = "# reference day\t" + valToStr(gains.referenceDay) + "\n";
    text.append("# IFs\t").append(std::to_string(gains.ifs)).append("\n");
    for (std::size_t i = 0; i < titles.size(); ++i)
        text.append(i > 0 ? "\t" : "").append(titles[i]);
    text.append("\n");
    int isWritten = safe.open(file);
    const auto flush = [&] {
        isWritten =
            isWritten && safe.file().write(text.data(), static_cast<std::int64_t>(text.size()));
        text.clear();
    };
    constexpr std::size_t block = 1 << 16;
    for (std::size_t t = 0; t < gains.intervals().size(); ++t)
        for (std::size_t g = 0; g < gains.groups().size(); ++g)
            for (std::size_t h = 0; h < gains.hands().size(); ++h)
                for (std::size_t a = 0; a < gains.antennas().size() && isWritten; ++a) {
                    if (gains.at(t, g, h, a).state != GainState::missing)
                        text += lineOf(gains, t, g, h, a);
                    if (text.size() > block)
                        flush();
                }
    flush();
    if (isWritten && safe.commit())
        return 1;
    error = safe.fault();
    return 0;
}

int readGainText(const std::string& file, AGains& gains, std::string& error)
{
    gains = {};
    error.clear();
    AFile in;
    if (!in.open(file, AFile::readOnly)) {
        error = "cannot be read";
        return 0;
    }
    try {
        LineReader reader(in);
        std::vector<Line> lines;
        std::string text;
        double day = 0;
        int ifs = 0, hasTitles = 0;
        while (reader.next(text)) {
            const std::vector<std::string_view> fields = fieldsOf(text);
            const auto fail = [&](const std::string& what) {
                error = "has a line " + std::to_string(reader.number()) + " " + what;
                return 0;
            };
            if (text.empty())
                continue;
            if (text[0] == '#') {
                if (fields.size() == 2 && fields[0] == "# reference day" && !stoval(fields[1], day))
                    return fail("without a Julian date");
                if (fields.size() == 2 && fields[0] == "# IFs" &&
                    (!stoval(fields[1], ifs) || ifs < 1 || ifs > mostIfs))
                    return fail("without a number of IFs");
                continue;
            }
            if (fields.size() != fieldCount)
                return fail("of " + std::to_string(fields.size()) + " fields, not " +
                            std::to_string(static_cast<int>(fieldCount)));
            if (!hasTitles) {
                if (!std::equal(fields.begin(), fields.end(), titles.begin()))
                    return fail("that does not name the columns of a file of gains");
                hasTitles = 1;
                continue;
            }
            Line line;
            if (const char* const wrong = readLine(fields, line))
                return fail(std::string("with a wrong \"") + wrong + "\"");
            lines.push_back(std::move(line));
        }
        if (!reader.fault().empty()) {
            error = reader.fault();
            return 0;
        }
        if (lines.empty()) {
            error = hasTitles ? "has no gains" : "is no file of gains";
            return 0;
        }
        if (!gather(lines, gains, error))
            return 0;
        for (const std::vector<int>& group : gains.groups())
            ifs = std::max(ifs, group.back() + 1);
        gains.ifs = ifs;
        gains.referenceDay = std::isfinite(day) ? day : 0;
        return 1;
    } catch (const std::bad_alloc&) {
        gains = {};
        error = "needs more memory than there is";
        return 0;
    }
}

}  // namespace pavane
