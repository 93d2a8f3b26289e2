#include "pavane/dialogs/values/ASelfCalPM.h"

#include "pavane/dialogs/values/selfcal_numbers.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace pavane
{

namespace
{

constexpr const char* kindNames[] = {"phase", "amplitude", "both"};
constexpr const char* modelNames[] = {"round", "components", "predicted"};
constexpr TypedNumber anyDistance = {"", 0, 1e15};

struct NumberKey {
    const char* key;
    double ASelfCalPM::*number;
    const TypedNumber* range;
};
constexpr NumberKey numberKeys[] = {
    {"SC SEC", &ASelfCalPM::seconds, &selfCalSeconds},
    {"SC RATIO", &ASelfCalPM::leastRatio, &selfCalRatio},
    {"SC UVL", &ASelfCalPM::leastUv, &anyDistance},
    {"SC UVM", &ASelfCalPM::mostUv, &anyDistance},
};

struct FlagKey {
    const char* key;
    int ASelfCalPM::*flag;
};
constexpr FlagKey flagKeys[] = {
    {"SC WHOLE", &ASelfCalPM::isWhole},    {"SC SCALE", &ASelfCalPM::isScaled},
    {"SC USE", &ASelfCalPM::usesWeights},  {"SC WEIGHT", &ASelfCalPM::changesWeights},
    {"SC KEEP", &ASelfCalPM::keepsFailed},
};

template <std::size_t count>
int indexOf(const CString& text, const char* const (&names)[count])
{
    const auto at = std::find(std::begin(names), std::end(names), text);
    return at == std::end(names) ? -1 : static_cast<int>(at - std::begin(names));
}

/// Names with commas between them; a comma or an end of a line in a name, which no antenna has,
/// would make two of it.
CString namesText(const std::vector<std::string>& names)
{
    CString text;
    for (std::string name : names) {
        std::replace_if(
            name.begin(), name.end(), [](char c) { return c == ',' || c == '\n' || c == '\r'; },
            ' ');
        text.append(text.empty() ? "" : ",").append(name);
    }
    return text;
}

std::vector<std::string> namesOf(std::string_view text)
{
    std::vector<std::string> names;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(','), text.size());
        const std::string name(text.substr(0, end));
        if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return names;
}

}  // namespace

SelfCalibrationRules ASelfCalPM::rules() const
{
    SelfCalibrationRules made;
    made.frame.seconds = seconds;
    made.frame.isWhole = isWhole;
    made.frame.groups = groups;
    made.gains.interval.kind = kind;
    made.gains.interval.leastRatio = leastRatio;
    made.gains.interval.leastAntennas = leastAntennas;
    made.gains.isScaled = isScaled;
    made.leastUv = leastUv;
    if (mostUv > 0)
        made.greatestUv = mostUv;
    made.weightPower = usesWeights ? 1 : 0;
    for (const std::string& name : references)
        if (antennas.empty() || std::find(antennas.begin(), antennas.end(), name) != antennas.end())
            made.references.push_back(name);
    return made;
}

std::vector<RecordEntry> ASelfCalPM::entries() const
{
    std::vector<RecordEntry> all = {
        {"SC KIND", kindNames[static_cast<std::size_t>(kind)]},
        {"SC ANT", valToStr(leastAntennas)},
        {"SC REF", namesText(references)},
        {"SC MODEL", modelNames[static_cast<std::size_t>(model)]},
    };
    for (const NumberKey& each : numberKeys)
        all.push_back({each.key, valToStr(this->*each.number)});
    for (const FlagKey& each : flagKeys)
        all.push_back({each.key, this->*each.flag ? "1" : "0"});
    return all;
}

int ASelfCalPM::takeEntry(const RecordEntry& entry)
{
    double number = 0;
    for (const NumberKey& each : numberKeys)
        if (entry.key == each.key)
            return stoval(entry.text, number) && isTyped(number, *each.range) &&
                   ((this->*each.number = number), 1);
    for (const FlagKey& each : flagKeys)
        if (entry.key == each.key)
            return (entry.text == "0" || entry.text == "1") &&
                   ((this->*each.flag = entry.text == "1"), 1);
    if (entry.key == "SC REF")
        return references = namesOf(entry.text), 1;
    if (entry.key == "SC ANT") {
        if (!stoval(entry.text, number) || !isTyped(number, selfCalAntennas))
            return 0;
        return leastAntennas = static_cast<int>(number), 1;
    }
    const int isKind = entry.key == "SC KIND";
    const int chosen = isKind                    ? indexOf(entry.text, kindNames)
                       : entry.key == "SC MODEL" ? indexOf(entry.text, modelNames)
                                                 : -1;
    if (chosen >= 0 && isKind)
        kind = static_cast<GainKind>(chosen);
    else if (chosen >= 0)
        model = static_cast<SelfCalModel>(chosen);
    return chosen >= 0;
}

}  // namespace pavane
