#include "pavane/calibration/gains/gain_frame.h"

#include "pavane/calibration/gains/gain_intervals.h"
#include "pavane/calibration/gains/GainApplier.h"
#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <utility>

namespace pavane
{

namespace
{

constexpr double secondsOfDay = 86400;
/// What no calibration needs; beyond, a file that claims anything would take all memory.
constexpr double mostIntervals = 1 << 22, mostGains = 1 << 24, mostSums = 1 << 23;
/// Pairs of scans of an index and scans found that are looked at; an index beyond is no index.
constexpr std::size_t mostScanPairs = std::size_t{1} << 26;

std::vector<GainAntenna> antennasOf(const AUVXFile& file, const std::vector<UvBaseline>& baselines)
{
    std::map<std::pair<int, int>, std::string> names;
    for (const AUVXTlscItem& telescope : file.telescopes())
        names.try_emplace({telescope.subarray, telescope.number}, telescope.name);
    for (const UvBaseline& baseline : baselines)
        for (const int number : {baseline.first, baseline.second})
            names.try_emplace({baseline.subarray, number}, std::to_string(number));
    std::vector<GainAntenna> antennas;
    antennas.reserve(names.size());
    for (const auto& [key, name] : names)
        antennas.push_back({key.first, key.second, name});
    return antennas;
}

/// The scans of the index that have data, cut to where there are data, and those found that the
/// index does not tell of.
std::vector<UvScan> scansOf(const AUVXFile& file, const UvMarks& marks,
                            const std::vector<UvScan>& found, double integration)
{
    const double slack = std::isfinite(integration) ? std::max(integration, 0.0) / 2 : 0;
    const auto meet = [slack](const UvScan& a, const UvScan& b) {
        return a.subarray == b.subarray && a.start <= b.end + slack && b.start <= a.end + slack;
    };
    const auto isMarked = [&](const UvScan& scan) {
        if (marks.sources.count() == 0)
            return true;
        const UvSource* const source = file.source(scan.source);
        return source && marks.sources.get(static_cast<int>(source - file.sources().data())) != 0;
    };
    std::vector<UvScan> scans;
    const bool isIndexed =
        file.hasIndex() &&
        file.scans().size() <= mostScanPairs / std::max<std::size_t>(found.size(), 1);
    for (const UvScan& scan : isIndexed ? file.scans() : std::vector<UvScan>()) {
        if (!std::isfinite(scan.start) || !std::isfinite(scan.end) || scan.start > scan.end)
            continue;
        // where its data begin and end
        UvScan cut = scan;
        int hasData = 0;
        double first = 0, last = 0;
        for (const UvScan& one : found) {
            if (!meet(scan, one))
                continue;
            first = hasData ? std::min(first, one.start) : one.start;
            last = hasData ? std::max(last, one.end) : one.end;
            hasData = 1;
        }
        cut.start = std::max(scan.start, first);
        cut.end = std::min(scan.end, last);
        if (hasData && cut.start <= cut.end)
            scans.push_back(cut);
    }
    std::sort(scans.begin(), scans.end(),
              [](const UvScan& a, const UvScan& b) { return a.start < b.start; });
    // what of those found lies between the scans of the index
    const std::size_t ofIndex = scans.size();
    for (UvScan rest : found) {
        for (std::size_t i = 0; i < ofIndex && rest.start <= rest.end; ++i) {
            if (!meet(scans[i], rest))
                continue;
            UvScan before = rest;
            before.end = scans[i].start - slack;
            if (before.start <= before.end)
                scans.push_back(before);
            rest.start = std::max(rest.start, scans[i].end + slack);
        }
        if (rest.start <= rest.end)
            scans.push_back(rest);
    }
    scans.erase(std::remove_if(scans.begin(), scans.end(),
                               [&](const UvScan& scan) { return !isMarked(scan); }),
                scans.end());
    return scans;
}

int groupsOf(const AUVXFile& file, const UvMarks& marks, const GainFrameRules& rules,
             std::vector<std::vector<int>>& groups, std::string& error)
{
    const int ifs = file.header().ifs;
    groups = rules.groups;
    if (groups.empty())
        for (int i = 0; i < ifs; ++i)
            if (file.fqTbl().selectionCount() != 1 || marks.frequencies.count() == 0 ||
                marks.frequencies.get(i))
                groups.push_back({i});
    std::set<int> used;
    for (const std::vector<int>& group : groups)
        for (const int i : group) {
            if (i < 0 || i >= ifs) {
                error = "has no IF " + std::to_string(i + 1);
                return 0;
            }
            if (!used.insert(i).second) {
                error = "can have IF " + std::to_string(i + 1) + " in one group only";
                return 0;
            }
        }
    groups.erase(std::remove_if(groups.begin(), groups.end(),
                                [](const std::vector<int>& group) { return group.empty(); }),
                 groups.end());
    if (groups.empty())
        error = "has no IF that is chosen";
    return !groups.empty();
}

}  // namespace

int makeGainFrame(const AUVXFile& file, const UvMarks& marks, const GainFrameRules& rules,
                  const std::vector<UvBaseline>& baselines, const std::vector<UvScan>& found,
                  double integration, AGains& frame, std::string& error)
{
    std::vector<char> hands;
    const std::vector<int>& stokes = file.header().stokes;
    for (std::size_t s = 0; s < stokes.size(); ++s) {
        const auto [first, second] = handsOf(stokes[s]);
        if (first != second || (first == 'I' && stokes[s] != 1) ||
            (marks.stokes.count() && !marks.stokes.get(static_cast<int>(s))))
            continue;
        const char hand = rules.joinsHands ? 'I' : first;
        if (std::find(hands.begin(), hands.end(), hand) == hands.end())
            hands.push_back(hand);
    }
    if (hands.empty()) {
        error = "has no parallel hand among what is chosen";
        return 0;
    }
    std::vector<std::vector<int>> groups;
    if (!groupsOf(file, marks, rules, groups, error))
        return 0;
    const std::vector<UvScan> scans = scansOf(file, marks, found, integration);
    if (!rules.isWhole && rules.seconds > 0) {
        const double length = std::max(rules.seconds / secondsOfDay, std::max(integration, 0.0));
        double pieces = 0;
        for (const UvScan& scan : scans)
            pieces += (scan.end - scan.start) / length;
        if (!(pieces < mostIntervals)) {
            error = "has times for more intervals than are solved for; choose longer ones";
            return 0;
        }
    }
    std::vector<GainInterval> intervals = rules.isWhole
                                              ? wholeInterval(scans, integration)
                                              : gainIntervals(scans, rules.seconds, integration);
    if (intervals.empty()) {
        error = "has no times that are chosen";
        return 0;
    }
    std::vector<GainAntenna> antennas = antennasOf(file, baselines);
    const auto n = static_cast<double>(antennas.size());
    const double series = static_cast<double>(groups.size()) * static_cast<double>(hands.size());
    if (series * n * (n - 1) / 2 > mostSums) {
        error = "has more baselines, IFs and hands than are solved for at once; choose fewer IFs";
        return 0;
    }
    if (series * n * static_cast<double>(intervals.size()) > mostGains ||
        !frame.create(std::move(antennas), std::move(intervals), std::move(groups),
                      std::move(hands))) {
        error = "would have more gains than are kept; choose longer intervals";
        return 0;
    }
    frame.referenceDay = file.header().referenceDay;
    frame.ifs = file.header().ifs;
    return 1;
}

int antennasNamed(const AGains& gains, const std::vector<std::string>& names,
                  std::vector<int>& antennas, std::string& error)
{
    for (const std::string& wanted : names) {
        const std::string name(trimmed(wanted, whiteSpace));
        int number = 0;
        const int isNumber = stoval(name, number);
        int isFound = 0;
        for (const int byNumber : {0, 1}) {
            for (std::size_t i = 0; i < gains.antennas().size() && (!byNumber || isNumber); ++i) {
                const GainAntenna& antenna = gains.antennas()[i];
                if (byNumber ? antenna.number != number : antenna.name != name)
                    continue;
                antennas.push_back(static_cast<int>(i));
                isFound = 1;
            }
            if (isFound)
                break;
        }
        if (!isFound) {
            error = "has no antenna " + name;
            return 0;
        }
    }
    return 1;
}

}  // namespace pavane
