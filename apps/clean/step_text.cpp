#include "apps/clean/options.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace pavane
{

namespace
{

/// "name=value" or "name" of a list with commas.
struct Word {
    std::string name, value;
};

std::vector<Word> wordsOf(const std::string& text)
{
    std::vector<Word> words;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(',', start), text.size());
        const std::string word = text.substr(start, end - start);
        const std::size_t equals = word.find('=');
        if (equals == word.npos)
            words.push_back({word, ""});
        else
            words.push_back({word.substr(0, equals), word.substr(equals + 1)});
        start = end + 1;
    }
    return words;
}

/// Takes `unit` off the end of a text; non-zero when it stood there.
int dropUnit(std::string& text, std::string_view unit)
{
    if (text.size() <= unit.size() ||
        text.compare(text.size() - unit.size(), unit.size(), unit) != 0)
        return 0;
    text.resize(text.size() - unit.size());
    return 1;
}

int readNumber(const Word& word, double low, double high, double& value, std::string& error)
{
    double read = 0;
    if (stoval(word.value, read) && read >= low && read <= high) {
        value = read;
        return 1;
    }
    error = "'" + word.name + "' wants a number from " + valToStr(low) + " to " + valToStr(high) +
            ", not '" + word.value + "'";
    return 0;
}

int readNumber(const Word& word, double low, double high, std::optional<double>& value,
               std::string& error)
{
    double read = 0;
    if (!readNumber(word, low, high, read, error))
        return 0;
    value = read;
    return 1;
}

constexpr double mostIterations = 1e9;
constexpr double mostJansky = 1e9;
constexpr double mostSigma = 1000;
constexpr double leastFraction = 1e-6;

int readIterations(const Word& word, RoundWish& round, std::string& error)
{
    double number = 0;
    if (!readNumber(word, 0, mostIterations, number, error))
        return 0;
    if (number != std::floor(number)) {
        error = "'iter' wants a whole number, not '" + word.value + "'";
        return 0;
    }
    round.iterations = std::llround(number);
    return 1;
}

int readThreshold(Word word, RoundWish& round, std::string& error)
{
    round.unit = ThresholdUnit::millijansky;
    if (dropUnit(word.value, "sigma"))
        round.unit = ThresholdUnit::sigma;
    else
        (void)dropUnit(word.value, "mJy");
    const double most = round.unit == ThresholdUnit::sigma ? mostSigma : mostJansky;
    return readNumber(word, 0, most, round.threshold, error);
}

int readRoundWord(const Word& word, RoundWish& round, std::string& error)
{
    if (word.name == "iter")
        return readIterations(word, round, error);
    if (word.name == "threshold")
        return readThreshold(word, round, error);
    if (word.name == "gain")
        return readNumber(word, leastFraction, 1, round.gain, error);
    if (word.name == "mgain")
        return readNumber(word, leastFraction, 1, round.majorGain, error);
    if (word.name == "automask")
        return readNumber(word, leastFraction, mostSigma, round.autoMaskSigma, error);
    if (word.value.empty() && word.name == "multiscale")
        return round.isMultiscale = 1;
    if (word.value.empty() && word.name == "cycles")
        return round.stopsEachCycle = 1;
    error = "'" + word.name +
            "' is nothing of a round; iter, threshold, gain, mgain, automask, "
            "multiscale and cycles are";
    return 0;
}

constexpr double mostSeconds = 1e7;
constexpr double mostWavelengths = 1e15;
constexpr int mostAntennas = 2048;

int readRange(const Word& word, SelfCalWish& selfcal, std::string& error)
{
    const std::size_t colon = word.value.find(':');
    Word low{word.name, word.value.substr(0, colon)};
    Word high{word.name, colon == word.value.npos ? "" : word.value.substr(colon + 1)};
    if (low.value.empty())
        low.value = "0";
    if (!readNumber(low, 0, mostWavelengths, selfcal.uvLow, error))
        return 0;
    selfcal.uvHigh = 0;
    if (!high.value.empty() && !readNumber(high, 0, mostWavelengths, selfcal.uvHigh, error))
        return 0;
    if (selfcal.uvHigh == 0 || selfcal.uvHigh > selfcal.uvLow)
        return 1;
    error = "'uv' wants a range in wavelengths as LOW:HIGH, not '" + word.value + "'";
    return 0;
}

void readReferences(const std::string& text, SelfCalWish& selfcal)
{
    selfcal.references.clear();
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find(':', start), text.size());
        if (end > start)
            selfcal.references.push_back(text.substr(start, end - start));
        start = end + 1;
    }
}

int readInterval(Word word, SelfCalWish& selfcal, std::string& error)
{
    if (word.name == "scan" || word.name == "whole") {
        selfcal.seconds = word.name == "scan" ? SelfCalWish::scans : SelfCalWish::wholeTime;
        return 1;
    }
    word.value = word.name;
    word.name = "interval";
    const double unit = dropUnit(word.value, "min") ? 60 : 1;
    (void)dropUnit(word.value, "s");
    double number = 0;
    if (!stoval(word.value, number) || !(number > 0) || number * unit > mostSeconds) {
        error = "'" + word.value + "' is no interval of gains; 60s, 5min, scan and whole are";
        return 0;
    }
    selfcal.seconds = number * unit;
    return 1;
}

/// "1-4:5-8", IFs from 1.
int readGroups(const Word& word, SelfCalWish& selfcal, std::string& error)
{
    constexpr int mostIfs = 4096;
    std::vector<std::vector<int>> groups;
    std::vector<int> used;
    for (std::size_t start = 0; start <= word.value.size();) {
        const std::size_t end = std::min(word.value.find(':', start), word.value.size());
        const std::string part = word.value.substr(start, end - start);
        const std::size_t dash = part.find('-');
        int first = 0, last = 0;
        if (!stoval(part.substr(0, dash), first) ||
            !stoval(dash == part.npos ? part : part.substr(dash + 1), last) || first < 1 ||
            last < first || last > mostIfs) {
            error = "'groups' wants IFs from 1 as '1-4:5-8', not '" + word.value + "'";
            return 0;
        }
        groups.emplace_back();
        for (int i = first - 1; i < last; ++i) {
            if (std::find(used.begin(), used.end(), i) != used.end()) {
                error = "'groups' has IF " + std::to_string(i + 1) + " twice";
                return 0;
            }
            used.push_back(i);
            groups.back().push_back(i);
        }
        start = end + 1;
    }
    selfcal.groups = std::move(groups);
    return 1;
}

/// Words without a value.
struct Switch {
    const char* name;
    int SelfCalWish::*flag;
    int value;
};
constexpr Switch switches[] = {{"unscaled", &SelfCalWish::isScaled, 0},
                               {"keepfailed", &SelfCalWish::keepsFailed, 1},
                               {"keepweights", &SelfCalWish::keepsWeights, 1},
                               {"equal", &SelfCalWish::isEqual, 1},
                               {"predicted", &SelfCalWish::isPredicted, 1}};

int readSelfCalWord(const Word& word, SelfCalWish& selfcal, std::string& error)
{
    if (word.name == "ratio")
        return readNumber(word, 0, mostSigma, selfcal.leastRatio, error);
    if (word.name == "uv")
        return readRange(word, selfcal, error);
    if (word.name == "antennas") {
        double number = 0;
        if (!readNumber(word, 2, mostAntennas, number, error))
            return 0;
        selfcal.leastAntennas = static_cast<int>(number);
        return 1;
    }
    if (word.name == "ref") {
        readReferences(word.value, selfcal);
        return 1;
    }
    if (word.name == "groups")
        return readGroups(word, selfcal, error);
    for (const Switch& each : switches)
        if (word.value.empty() && word.name == each.name) {
            selfcal.*each.flag = each.value;
            return 1;
        }
    return readInterval(word, selfcal, error);
}

constexpr std::string_view kinds[] = {"phase", "amplitude", "both"};

}  // namespace

CleanParameters RoundWish::over(const CleanParameters& common) const
{
    CleanParameters parameters = common;
    parameters.iterations = iterations.value_or(parameters.iterations);
    parameters.gain = gain.value_or(parameters.gain);
    parameters.majorGain = majorGain.value_or(parameters.majorGain);
    if (threshold) {
        parameters.threshold = *threshold;
        parameters.unit = unit;
    }
    if (autoMaskSigma) {
        parameters.isAutoMask = 1;
        parameters.autoMaskSigma = *autoMaskSigma;
    }
    if (isMultiscale)
        parameters.isMultiscale = 1;
    if (stopsEachCycle)
        parameters.stopsEachCycle = 1;
    return parameters;
}

int readRound(const std::string& text, RoundWish& round, std::string& error)
{
    RoundWish read;
    for (const Word& word : wordsOf(text))
        if (!readRoundWord(word, read, error))
            return 0;
    round = read;
    return 1;
}

int readSelfCal(const std::string& text, SelfCalWish& selfcal, std::string& error)
{
    SelfCalWish read;
    const std::vector<Word> words = wordsOf(text);
    std::size_t kind = 0;
    while (kind < std::size(kinds) && words[0].name != kinds[kind])
        ++kind;
    if (kind == std::size(kinds)) {
        error = "'" + words[0].name + "' is no self-calibration; phase, amplitude and both are";
        return 0;
    }
    read.kind = static_cast<GainKind>(kind);
    for (std::size_t i = 1; i < words.size(); ++i)
        if (!readSelfCalWord(words[i], read, error))
            return 0;
    selfcal = read;
    return 1;
}

std::string roundText(const RoundWish& round)
{
    std::string text;
    const auto add = [&](const std::string& word) {
        if (!text.empty())
            text += ',';
        text += word;
    };
    if (round.iterations)
        add("iter=" + std::to_string(*round.iterations));
    if (round.threshold)
        add("threshold=" + valToStr(*round.threshold) +
            (round.unit == ThresholdUnit::sigma ? "sigma" : "mJy"));
    if (round.gain)
        add("gain=" + valToStr(*round.gain));
    if (round.majorGain)
        add("mgain=" + valToStr(*round.majorGain));
    if (round.autoMaskSigma)
        add("automask=" + valToStr(*round.autoMaskSigma));
    if (round.isMultiscale)
        add("multiscale");
    if (round.stopsEachCycle)
        add("cycles");
    return text;
}

std::string selfCalText(const SelfCalWish& selfcal)
{
    std::string text(kinds[static_cast<std::size_t>(selfcal.kind)]);
    if (selfcal.seconds == SelfCalWish::scans)
        text += ",scan";
    else if (selfcal.seconds < 0)
        text += ",whole";
    else
        text.append(",").append(valToStr(selfcal.seconds)).append("s");
    if (selfcal.leastRatio > 0)
        text.append(",ratio=").append(valToStr(selfcal.leastRatio));
    if (selfcal.leastAntennas != SelfCalWish().leastAntennas)
        text.append(",antennas=").append(std::to_string(selfcal.leastAntennas));
    for (const Switch& each : switches)
        if (selfcal.*each.flag == each.value)
            text.append(",").append(each.name);
    for (std::size_t i = 0; i < selfcal.groups.size(); ++i) {
        const std::vector<int>& group = selfcal.groups[i];
        text.append(i ? ":" : ",groups=").append(std::to_string(group.front() + 1));
        if (group.size() > 1)
            text.append("-").append(std::to_string(group.back() + 1));
    }
    for (std::size_t i = 0; i < selfcal.references.size(); ++i)
        text.append(i ? ":" : ",ref=").append(selfcal.references[i]);
    if (selfcal.uvLow > 0 || selfcal.uvHigh > 0)
        text.append(",uv=")
            .append(valToStr(selfcal.uvLow))
            .append(":")
            .append(selfcal.uvHigh > 0 ? valToStr(selfcal.uvHigh) : "");
    return text;
}

}  // namespace pavane
