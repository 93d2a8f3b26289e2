#include "tessel/uvfits/UvClasses.h"

#include <algorithm>

namespace pavane
{

namespace
{

UvPair whatOf(UvColour by, const UvPointOrigin& p)
{
    switch (by) {
    case UvColour::baseline:
        return {p.subarray, std::min(p.antenna1, p.antenna2), std::max(p.antenna1, p.antenna2)};
    case UvColour::telescope: {
        const int isSecond = static_cast<int>(spread(static_cast<std::uint64_t>(p.group)) & 1);
        return {p.subarray, isSecond ? p.antenna2 : p.antenna1, 0};
    }
    case UvColour::ifs:
        return {1, p.ifIndex, 0};
    case UvColour::source:
        return {1, p.source, 0};
    case UvColour::none:
        break;
    }
    return {1, 0, 0};
}

}  // namespace

std::uint16_t UvClasses::add(const UvPointOrigin& point)
{
    const auto next = static_cast<std::uint16_t>(found_.items().size());
    Tally* const tally = found_.of(whatOf(by_, point), {next, 0});
    if (!tally)
        return ++more_, static_cast<std::uint16_t>(most - 1);
    ++tally->points;
    return tally->number;
}

std::vector<UvClass> UvClasses::classes() const
{
    std::vector<UvClass> all;
    all.reserve(found_.items().size());
    for (const auto& item : found_.items())
        all.push_back({item.key, item.value.points});
    if (more_ > 0)
        all.back().points += more_;
    return all;
}

}  // namespace pavane
