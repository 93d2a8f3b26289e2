#include "pavane/dialogs/values/SelfCalForm.h"

#include "pavane/dialogs/values/selfcal_numbers.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

void SelfCalForm::setRecord(const ASelfCalPM& record)
{
    record_ = record;
    setChoice(kind, static_cast<int>(record.kind));
    setChoice(model, static_cast<int>(record.model));
    setChoice(isWhole, record.isWhole != 0);
    setChoice(isScaled, record.isScaled != 0);
    setChoice(usesWeights, record.usesWeights != 0);
    setChoice(changesWeights, record.changesWeights != 0);
    setChoice(keepsFailed, record.keepsFailed != 0);
    setText(seconds, valToStr(record.seconds));
    setText(leastRatio, valToStr(record.leastRatio));
    setText(leastAntennas, valToStr(record.leastAntennas));
    setText(leastUv, valToStr(record.leastUv / wavelengthsTyped));
    setText(mostUv, record.mostUv > 0 ? valToStr(record.mostUv / wavelengthsTyped) : CString());
    antennas_.clear();
    const auto add = [this](const std::string& name, int isOn) {
        const auto isIt = [&](const Antenna& each) { return each.name == name; };
        if (std::none_of(antennas_.begin(), antennas_.end(), isIt))
            antennas_.push_back({name, isOn});
    };
    // those of another array that were chosen once stay in the list
    for (const std::string& name : record.references)
        add(name, 1);
    for (const std::string& name : record.antennas)
        add(name, 0);
}

void SelfCalForm::setOn(int antenna, int on)
{
    if (antenna >= 0 && antenna < static_cast<int>(antennas_.size()))
        antennas_[static_cast<std::size_t>(antenna)].isOn = on != 0;
}

int SelfCalForm::move(int antenna, int by)
{
    const int to = antenna + by;
    const int size = static_cast<int>(antennas_.size());
    if (antenna < 0 || antenna >= size || to < 0 || to >= size)
        return antenna;
    std::swap(antennas_[static_cast<std::size_t>(antenna)],
              antennas_[static_cast<std::size_t>(to)]);
    return to;
}

std::vector<CString> SelfCalForm::lines(int field) const
{
    if (field == kind)
        return {"phase", "amplitude", "phase and amplitude"};
    if (field == model)
        return {"the chosen round", "the list of components", "the round, by the engine"};
    return {};
}

int SelfCalForm::isEnabled(int field) const
{
    const bool hasAmplitudes = choice(kind) != static_cast<int>(GainKind::phase);
    switch (field) {
    case seconds:
        return !choice(isWhole);
    case isScaled:
    case changesWeights:
        return hasAmplitudes;  // of phases |g| is 1
    default:
        return 1;
    }
}

FormRefusal SelfCalForm::read(ASelfCalPM& pm) const
{
    FormRefusal refusal;
    const auto number = [&](Field field, const TypedNumber& wanted, double& value) {
        if (refusal.isRefused() || !isEnabled(field))
            return;
        if (!readTyped(text(field), wanted, value, refusal.message))
            refusal.field = field;
    };
    double least = 0, nearest = 0, farthest = 0;
    number(seconds, selfCalSeconds, pm.seconds);
    number(leastRatio, selfCalRatio, pm.leastRatio);
    number(leastAntennas, selfCalAntennas, least);
    number(leastUv, selfCalLeastUv, nearest);
    if (text(mostUv).find_first_not_of(' ') != CString::npos)
        number(mostUv, selfCalMostUv, farthest);
    if (refusal.isRefused())
        return refusal;
    if (farthest > 0 && farthest <= nearest)
        return {mostUv, "The greatest uv distance has to be above the least."};
    pm.leastAntennas = static_cast<int>(least);
    pm.leastUv = nearest * wavelengthsTyped;
    pm.mostUv = farthest * wavelengthsTyped;
    pm.kind = static_cast<GainKind>(choice(kind));
    pm.model = static_cast<SelfCalModel>(choice(model));
    pm.isWhole = choice(isWhole);
    pm.isScaled = choice(isScaled);
    pm.usesWeights = choice(usesWeights);
    pm.changesWeights = choice(changesWeights);
    pm.keepsFailed = choice(keepsFailed);
    pm.references.clear();
    for (const Antenna& each : antennas_)
        if (each.isOn)
            pm.references.push_back(each.name);
    if (!pm.antennas.empty() && pm.leastAntennas > static_cast<int>(pm.antennas.size()))
        return {leastAntennas, "The data have only " + std::to_string(pm.antennas.size()) +
                                   " antennas, so that every solution would fail."};
    return refusal;
}

CString SelfCalForm::note(int which) const
{
    if (which == first) {
        for (const Antenna& each : antennas_)
            if (each.isOn)
                return "Phase 0: " + each.name + ", else the next one that is marked.";
        return "Phase 0: the antenna with the most weight.";
    }
    ASelfCalPM pm = record_;
    if (read(pm).isRefused())
        return {};
    if (pm.isWhole)
        return "One gain for the whole time.";
    if (pm.span > 0 && pm.seconds >= pm.span)
        return "Longer than the data: a gain for each scan.";
    if (pm.integration > 0 && pm.seconds < pm.integration)
        return "Shorter than an integration of " + valToStr(pm.integration, 4) +
               " s: a gain for each time.";
    return "Each scan is cut from its start on.";
}

FormRefusal SelfCalForm::save()
{
    ASelfCalPM pm = record_;
    FormRefusal refusal = read(pm);
    if (!refusal.isRefused())
        record_ = pm;
    return refusal;
}

}  // namespace pavane
