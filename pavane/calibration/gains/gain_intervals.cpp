#include "pavane/calibration/gains/gain_intervals.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

namespace pavane
{
namespace
{

constexpr double secondsOfDay = 86400;
/// More pieces than this of a scan are not counted one by one.
constexpr double mostPieces = 1e6;

struct Span {
    int subarray;
    double start, end;
};

/// Scans with half an integration on both sides, in order.
std::vector<Span> spansOf(const std::vector<UvScan>& scans, double integration)
{
    std::vector<Span> spans;
    const double half = std::isfinite(integration) && integration > 0 ? integration / 2 : 0;
    for (const UvScan& scan : scans)
        if (std::isfinite(scan.start) && std::isfinite(scan.end) && scan.start <= scan.end)
            spans.push_back({scan.subarray, scan.start - half, scan.end + half});
    std::sort(spans.begin(), spans.end(), [](const Span& a, const Span& b) {
        return std::tie(a.subarray, a.start, a.end) < std::tie(b.subarray, b.start, b.end);
    });
    for (std::size_t i = 1; i < spans.size(); ++i) {
        Span& before = spans[i - 1];
        if (before.subarray == spans[i].subarray && spans[i].start < before.end) {
            const double middle = spans[i].start + (before.end - spans[i].start) / 2;
            before.end = std::max(before.start, middle);
            spans[i].start = before.end;
            spans[i].end = std::max(spans[i].end, spans[i].start);
        }
    }
    return spans;
}

}  // namespace

std::vector<GainInterval> gainIntervals(const std::vector<UvScan>& scans, double seconds,
                                        double integration)
{
    std::vector<GainInterval> intervals;
    const double least = std::isfinite(integration) ? std::max(integration, 0.0) : 0;
    const double length = seconds > 0 ? std::max(seconds / secondsOfDay, least) : least;
    for (const Span& span : spansOf(scans, integration)) {
        const double whole = (span.end - span.start) / length;
        const bool isCut = seconds > 0 && std::isfinite(whole) && whole < mostPieces;
        const int pieces = isCut ? std::max(1, static_cast<int>(std::floor(whole + 0.5))) : 1;
        for (int i = 0; i < pieces; ++i)
            intervals.push_back({span.start + i * length,
                                 i + 1 < pieces ? span.start + (i + 1) * length : span.end,
                                 span.subarray, 0});
    }
    return intervals;
}

std::vector<GainInterval> wholeInterval(const std::vector<UvScan>& scans, double integration)
{
    std::map<int, GainInterval> bySubarray;
    for (const Span& span : spansOf(scans, integration)) {
        const auto [at, isNew] = bySubarray.try_emplace(
            span.subarray, GainInterval{span.start, span.end, span.subarray, 0});
        at->second.end = std::max(at->second.end, span.end);
    }
    std::vector<GainInterval> intervals;
    for (const auto& [subarray, interval] : bySubarray)
        intervals.push_back(interval);
    return intervals;
}

}  // namespace pavane
