#include "pavane/dialogs/values/gain_match.h"

#include "pavane/dialogs/values/AUVXTIntervalPM.h"
#include "tessel/plain_text.h"
#include "tessel/stokes_name.h"
#include "tessel/time_text.h"
#include "tessel/trimmed.h"
#include "tessel/uvfits/AUVXFile.h"

#include <algorithm>
#include <cctype>
#include <cmath>

namespace pavane
{

namespace
{

constexpr double secondsPerDay = 86400;
/// Days between which gains of another reference day are of the same times.
constexpr double sameTime = 1e-9;
constexpr std::size_t mostNamed = 5;

std::string smallName(const std::string& name)
{
    std::string small(trimmed(name, whiteSpace));
    std::transform(small.begin(), small.end(), small.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return small;
}

const GainAntenna* find(const std::vector<GainAntenna>& among, const GainAntenna& wanted)
{
    const auto at = std::find_if(among.begin(), among.end(), [&](const GainAntenna& each) {
        return each.subarray == wanted.subarray && each.number == wanted.number;
    });
    return at == among.end() ? nullptr : &*at;
}

std::string shownName(const GainAntenna& antenna)
{
    return antenna.name.empty() ? "antenna " + std::to_string(antenna.number)
                                : plainText(antenna.name);
}

/// "EF, LA and 12 more"
std::string listed(const std::vector<std::string>& names)
{
    std::string text;
    for (std::size_t i = 0; i < std::min(names.size(), mostNamed); ++i)
        text.append(i ? ", " : "").append(names[i]);
    if (names.size() > mostNamed)
        text.append(" and " + std::to_string(names.size() - mostNamed) + " more");
    return text;
}

std::string timesText(double start, double end)
{
    return dateTimeToStr(start * secondsPerDay, 0) + " to " + dateTimeToStr(end * secondsPerDay, 0);
}

std::string handsText(const std::vector<char>& hands)
{
    std::string text;
    for (const char hand : hands)
        text.append(text.empty() ? "" : " and ").append(1, hand);
    return text;
}

void matchAntennas(const AGains& gains, const GainFacts& data, GainMatch& match)
{
    std::vector<std::string> without, others;
    std::size_t common = 0;
    for (const GainAntenna& antenna : data.antennas) {
        const GainAntenna* const known = find(gains.antennas(), antenna);
        if (!known) {
            without.push_back(shownName(antenna));
            continue;
        }
        ++common;
        const std::string here = smallName(antenna.name), there = smallName(known->name);
        if (!here.empty() && !there.empty() && here != there)
            others.push_back(std::to_string(antenna.number) + " is " + shownName(*known) +
                             " in the file and " + shownName(antenna) + " in the data");
    }
    if (!common)
        match.faults.emplace_back("none of its antennas is in the data");
    else if (!others.empty())
        match.faults.push_back("it is of another array: antenna " + listed(others));
    else if (!without.empty())
        match.notes.push_back("no gain for " + listed(without) + ": their data count as failed");
    if (common < gains.antennas().size() && common)
        match.notes.push_back(std::to_string(gains.antennas().size() - common) +
                              " of its antennas are not in the data");
}

/// Times that the gains hold for, in days of the data; 0 without any.
int timesOf(const AGains& gains, double shift, double& start, double& end)
{
    int hasAny = 0;
    for (const GainInterval& each : gains.intervals()) {
        start = hasAny ? std::min(start, each.start + shift) : each.start + shift;
        end = hasAny ? std::max(end, each.end + shift) : each.end + shift;
        hasAny = 1;
    }
    return hasAny;
}

void matchTimes(const AGains& gains, const GainFacts& data, GainMatch& match)
{
    const double shift = data.referenceDay > 0 && gains.referenceDay > 0
                             ? gains.referenceDay - data.referenceDay
                             : 0;
    double start = 0, end = 0;
    if (!timesOf(gains, shift, start, end)) {
        match.faults.emplace_back("it has no gains");
        return;
    }
    if (data.end < data.start)
        return;
    if (end <= data.start - sameTime || start > data.end + sameTime) {
        match.faults.push_back("its times, " + timesText(start, end) +
                               ", do not meet those of the data, " +
                               timesText(data.start, data.end));
        return;
    }
    if (start > data.start + sameTime || end < data.end - sameTime)
        match.notes.push_back("it holds for " + timesText(start, end) + " of " +
                              timesText(data.start, data.end) + ": data outside count as failed");
}

void matchHands(const AGains& gains, const GainFacts& data, GainMatch& match)
{
    if (data.hands.empty() || gains.handOf('I') >= 0)
        return;
    std::vector<char> without;
    for (const char hand : data.hands)
        if (gains.handOf(hand) < 0)
            without.push_back(hand);
    if (without.size() == data.hands.size())
        match.faults.push_back("its hands, " + handsText(gains.hands()) +
                               ", are not those of the data, " + handsText(data.hands));
    else if (!without.empty())
        match.notes.push_back("no gains of the hand " + handsText(without));
}

/// Files have a row or a line for what is not missing only.
void noteSilent(const AGains& gains, std::vector<std::string>& losses)
{
    std::size_t silent = 0;
    for (std::size_t a = 0; a < gains.antennas().size(); ++a) {
        int hasData = 0;
        for (std::size_t i = a; i < gains.cells().size(); i += gains.antennas().size())
            hasData |= gains.cells()[i].state != GainState::missing;
        silent += !hasData;
    }
    if (silent)
        losses.push_back(std::to_string(silent) + (silent == 1 ? " antenna" : " antennas") +
                         " without a gain left out");
}

}  // namespace

GainFacts gainFactsOf(const AUVXFile& file, const AUVXTIntervalPM& times)
{
    GainFacts facts;
    for (const AUVXTlscItem& telescope : file.telescopes())
        facts.antennas.push_back({telescope.subarray, telescope.number, telescope.name});
    facts.ifs = file.header().ifs;
    for (const int code : file.header().stokes) {
        const std::string name = stokesName(code);
        // of the products those of a hand with itself
        const bool isParallel = name == "I" || (name.size() == 2 && name[0] == name[1]);
        if (isParallel &&
            std::find(facts.hands.begin(), facts.hands.end(), name[0]) == facts.hands.end())
            facts.hands.push_back(name[0]);
    }
    facts.referenceDay = file.header().referenceDay;
    const bool isKnown = times.infoStart <= times.infoStop && times.infoStop > 0;
    facts.start = isKnown ? times.infoStart / secondsPerDay : 0;
    facts.end = isKnown ? times.infoStop / secondsPerDay : -1;
    return facts;
}

GainMatch gainMatch(const AGains& gains, const GainFacts& data)
{
    GainMatch match;
    matchAntennas(gains, data, match);
    if (gains.ifs != data.ifs)
        match.faults.push_back("it is of " + std::to_string(gains.ifs) + " IFs, the data have " +
                               std::to_string(data.ifs));
    else {
        std::size_t grouped = 0;
        for (const std::vector<int>& group : gains.groups())
            grouped += group.size();
        if (grouped < static_cast<std::size_t>(data.ifs))
            match.notes.push_back(std::to_string(static_cast<std::size_t>(data.ifs) - grouped) +
                                  " IFs have no gain");
    }
    matchHands(gains, data, match);
    matchTimes(gains, data, match);
    return match;
}

std::vector<std::string> gainTableLosses(const AGains& gains)
{
    std::vector<std::string> losses;
    if (gains.hands().size() > 2)
        losses.emplace_back("it has room for two hands only");
    if (gains.count(GainState::solved))
        losses.emplace_back("corrections have seven digits there");
    std::size_t flagged = 0;
    for (const Gain& gain : gains.cells())
        flagged += gain.state == GainState::solved && gain.isFlagged;
    if (flagged)
        losses.push_back(std::to_string(flagged) +
                         " flagged gains are blank for other programs; read here they come back");
    noteSilent(gains, losses);
    for (const std::vector<int>& group : gains.groups())
        if (group.size() > 1) {
            losses.emplace_back("other programs see a gain for each IF of a group");
            losses.emplace_back("other programs pass over errors, states and iterations");
            break;
        }
    return losses;
}

std::vector<std::string> gainTextLosses(const AGains& gains)
{
    std::vector<std::string> losses;
    noteSilent(gains, losses);
    return losses;
}

std::string gainSummary(const AGains& gains)
{
    const auto counted = [](std::size_t count, const char* one, const char* many) {
        return std::to_string(count) + " " + (count == 1 ? one : many);
    };
    std::string text = counted(gains.antennas().size(), "antenna", "antennas") + ", " +
                       counted(gains.intervals().size(), "interval", "intervals") + ", " +
                       counted(gains.groups().size(), "group of IFs", "groups of IFs") + ", " +
                       (gains.hands().size() == 1 ? "hand " : "hands ") + handsText(gains.hands());
    std::size_t flagged = 0;
    for (const Gain& gain : gains.cells())
        flagged += gain.isFlagged != 0;
    if (const std::size_t failed = gains.count(GainState::failed))
        text += ", " + std::to_string(failed) + " failed";
    if (flagged)
        text += ", " + std::to_string(flagged) + " flagged";
    return text;
}

}  // namespace pavane
