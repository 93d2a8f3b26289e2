#include "tessel/flags/FlagQuery.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace pavane
{

namespace
{

std::uint64_t keyOf(int first, int second)
{
    const auto [low, high] = std::minmax(first, second);
    return std::uint64_t{static_cast<std::uint32_t>(low)} << 32 | static_cast<std::uint32_t>(high);
}

}  // namespace

double FlagQuery::Spans::finish(std::size_t from, std::size_t to)
{
    if (from >= to)
        return -std::numeric_limits<double>::infinity();
    const std::size_t middle = from + (to - from) / 2;
    Span& span = spans[middle];
    span.last = std::max({span.end, finish(from, middle), finish(middle + 1, to)});
    return span.last;
}

void FlagQuery::Spans::find(std::size_t from, std::size_t to, double time,
                            std::vector<std::size_t>& lines) const
{
    if (from >= to)
        return;
    const std::size_t middle = from + (to - from) / 2;
    const Span& span = spans[middle];
    if (!(time < span.last))
        return;
    find(from, middle, time, lines);
    if (!(span.start <= time))
        return;
    if (time < span.end)
        lines.push_back(span.line);
    find(middle + 1, to, time, lines);
}

FlagQuery::FlagQuery(const VisibilityFlags& flags, int ifs, std::vector<int> stokes,
                     double referenceDay)
    : ifs_(static_cast<std::size_t>(std::max(ifs, 0))), stokes_(std::move(stokes)),
      later_(referenceDay > 0 && flags.referenceDay > 0 ? referenceDay - flags.referenceDay : 0),
      lines_(flags.lines)
{
    for (std::size_t i = 0; i < lines_.size(); ++i)
        spans_[keyOf(lines_[i].first, lines_[i].second)].spans.push_back(
            {lines_[i].start, lines_[i].end, 0, i});
    for (auto& [key, one] : spans_) {
        std::sort(one.spans.begin(), one.spans.end(),
                  [](const auto& a, const auto& b) { return a.start < b.start; });
        (void)one.finish(0, one.spans.size());
    }
    row_.resize(ifs_ * stokes_.size());
}

void FlagQuery::apply(const FlagLine& line, int& has)
{
    const auto set = [&](std::size_t i) {
        for (std::size_t s = 0; s < stokes_.size(); ++s)
            if (line.stokes == 0 || line.stokes == stokes_[s])
                row_[i * stokes_.size() + s] = !line.isRestore;
    };
    has = 1;
    if (line.ifs.empty())
        for (std::size_t i = 0; i < ifs_; ++i)
            set(i);
    for (const int i : line.ifs)
        if (i >= 0 && static_cast<std::size_t>(i) < ifs_)
            set(static_cast<std::size_t>(i));
}

const unsigned char* FlagQuery::of(int subarray, int first, int second, double time, int source)
{
    if (lines_.empty())
        return nullptr;
    found_.clear();
    const std::uint64_t keys[] = {keyOf(0, 0), keyOf(0, first), keyOf(0, second),
                                  keyOf(first, second)};
    for (std::size_t k = 0; k < std::size(keys); ++k) {
        if (std::find(keys, keys + k, keys[k]) != keys + k)
            continue;  // of one antenna with itself
        if (const auto at = spans_.find(keys[k]); at != spans_.end())
            at->second.find(0, at->second.spans.size(), time + later_, found_);
    }
    if (found_.empty())
        return nullptr;
    std::sort(found_.begin(), found_.end());
    int has = 0;
    for (const std::size_t i : found_) {
        const FlagLine& line = lines_[i];
        if ((line.subarray != 0 && line.subarray != subarray) ||
            (line.source != 0 && line.source != source))
            continue;
        if (!has)
            std::fill(row_.begin(), row_.end(), static_cast<unsigned char>(0));
        apply(line, has);
    }
    return has && std::any_of(row_.begin(), row_.end(), [](unsigned char one) { return one != 0; })
               ? row_.data()
               : nullptr;
}

}  // namespace pavane
