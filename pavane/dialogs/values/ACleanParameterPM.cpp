#include "pavane/dialogs/values/ACleanParameterPM.h"

#include "pavane/dialogs/values/clean_numbers.h"
#include "pavane/dialogs/values/number_list.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace pavane
{

namespace
{

constexpr int mostIfs = 65536;
constexpr TypedNumber anyTime = {"", -1e9, 1e9};
constexpr TypedNumber anyCell = {"", 0, greatestSkyAngle};  // 0 is to be proposed
constexpr const char* forms[] = {"mean", "strict", "RR", "LL", "XX", "YY", "I"};
constexpr const char* unitNames[] = {"mJy", "sigma"};

struct NumberKey {
    const char* key;
    double CleanParameters::*number;
    const TypedNumber* range;
};
constexpr NumberKey numberKeys[] = {
    {"CL CELL", &CleanParameters::cell, &anyCell},
    {"CL ROB", &CleanParameters::robust, &cleanRobust},
    {"CL TAP", &CleanParameters::taper, &cleanTaper},
    {"CL SX", &CleanParameters::shiftX, &cleanShiftX},
    {"CL SY", &CleanParameters::shiftY, &cleanShiftY},
    {"CL GAIN", &CleanParameters::gain, &cleanGain},
    {"CL MGAIN", &CleanParameters::majorGain, &cleanMajorGain},
    {"CL THR", &CleanParameters::threshold, &cleanThreshold},
    {"CL AMS", &CleanParameters::autoMaskSigma, &cleanMaskLevel},
    {"CL TS", &CleanParameters::start, &anyTime},
    {"CL TE", &CleanParameters::end, &anyTime},
};

struct FlagKey {
    const char* key;
    int CleanParameters::*flag;
};
constexpr FlagKey flagKeys[] = {
    {"CL AM", &CleanParameters::isAutoMask},
    {"CL MS", &CleanParameters::isMultiscale},
    {"CL SEC", &CleanParameters::stopsEachCycle},
};

int readNumber(const RecordEntry& entry, const TypedNumber& range, double& value)
{
    double read = 0;
    if (!stoval(entry.text, read) || !isTyped(read, range))
        return 0;
    value = read;
    return 1;
}

/// Of a number that is whole and fits, as its range says.
template <typename Whole>
int readWhole(const RecordEntry& entry, const TypedNumber& range, Whole& value)
{
    double read = 0;
    if (!readNumber(entry, range, read))
        return 0;
    value = static_cast<Whole>(read);
    return 1;
}

/// The texts that a choice among several is kept as.
template <std::size_t count>
int indexOf(const CString& text, const char* const (&names)[count])
{
    const auto at = std::find(std::begin(names), std::end(names), text);
    return at == std::end(names) ? -1 : static_cast<int>(at - std::begin(names));
}

}  // namespace

std::vector<RecordEntry> ACleanParameterPM::entries() const
{
    const CleanParameters& p = parameters;
    std::vector<RecordEntry> all = {
        {"CL NX", valToStr(p.width)},
        {"CL NY", valToStr(p.height)},
        {"CL WT", nameOf(p.weighting)},
        {"CL ITER", std::to_string(p.iterations)},
        {"CL THU", unitNames[p.unit == ThresholdUnit::sigma]},
        {"CL FORM", p.form},
        {"CL IFS", p.ifs.empty() ? CString("*") : numberListText(p.ifs)},
    };
    for (const NumberKey& each : numberKeys)
        all.push_back({each.key, valToStr(p.*each.number)});
    for (const FlagKey& each : flagKeys)
        all.push_back({each.key, p.*each.flag ? "1" : "0"});
    return all;
}

int ACleanParameterPM::takeEntry(const RecordEntry& entry)
{
    CleanParameters& p = parameters;
    for (const NumberKey& each : numberKeys)
        if (entry.key == each.key)
            return readNumber(entry, *each.range, p.*each.number);
    for (const FlagKey& each : flagKeys)
        if (entry.key == each.key) {
            const int isFlag = entry.text == "0" || entry.text == "1";
            return isFlag && ((p.*each.flag = entry.text == "1"), 1);
        }
    if (entry.key == "CL NX")
        return readWhole(entry, cleanWidth, p.width);
    if (entry.key == "CL NY")
        return readWhole(entry, cleanHeight, p.height);
    if (entry.key == "CL ITER")
        return readWhole(entry, cleanIterations, p.iterations);
    if (entry.key == "CL WT")
        return weightingOf(entry.text, p.weighting);
    if (entry.key == "CL IFS")
        return readNumberList(entry.text, mostIfs, p.ifs);
    if (entry.key == "CL FORM" && indexOf(entry.text, forms) >= 0)
        return p.form = entry.text, 1;
    const int unit = entry.key == "CL THU" ? indexOf(entry.text, unitNames) : -1;
    if (unit >= 0)
        p.unit = unit ? ThresholdUnit::sigma : ThresholdUnit::millijansky;
    return unit >= 0;
}

}  // namespace pavane
