#include "apps/ms/GainChain.h"

#include "apps/ms/Failure.h"

#include <algorithm>
#include <cmath>

namespace pavane_ms
{

GainTable::GainTable(const GainFile& file, const std::string& name, double referenceDay)
{
    const double shift = file.referenceDay > 0 ? file.referenceDay - referenceDay : 0;
    std::map<std::vector<int>, int> groups;
    for (const GainLine& line : file.lines) {
        antennaOf_.try_emplace({line.subarray, line.antenna}, antennaOf_.size());
        if (hands_.find(line.hand) == std::string::npos)
            hands_ += line.hand;
        const auto [group, isNew] = groups.try_emplace(line.ifs, static_cast<int>(groups.size()));
        for (const int number : line.ifs) {
            const auto at = static_cast<std::size_t>(number);
            if (groupOf_.size() <= at)
                groupOf_.resize(at + 1, -1);
            if (groupOf_[at] >= 0 && groupOf_[at] != group->second)
                throw Failure(name + " has IF " + std::to_string(number) + " in two groups");
            groupOf_[at] = group->second;
        }
    }
    groups_ = groups.size();
    series_.resize(antennaOf_.size() * groups_ * hands_.size());
    for (const GainLine& line : file.lines) {
        const std::size_t antenna = antennaOf_.at({line.subarray, line.antenna});
        const auto group = static_cast<std::size_t>(groups.at(line.ifs));
        series_[(antenna * groups_ + group) * hands_.size() + hands_.find(line.hand)]
            .entries.push_back(
                {line.start + shift, line.end + shift, line.source, line.value, line.isUsable()});
    }
    for (Series& each : series_)
        std::stable_sort(each.entries.begin(), each.entries.end(),
                         [](const Entry& a, const Entry& b) { return a.start < b.start; });
}

const GainTable::Entry* GainTable::find(int subarray, int antenna, char hand,
                                        const GainPlace& place) const
{
    const auto who = antennaOf_.find({subarray, antenna});
    std::size_t h = hands_.find(hand);
    if (h == std::string::npos)
        h = hands_.find('I');  // gains of total intensity are those of every hand
    const auto number = static_cast<std::size_t>(place.ifNumber);
    if (who == antennaOf_.end() || h == std::string::npos || number >= groupOf_.size() ||
        groupOf_[number] < 0)
        return nullptr;
    const Series& series =
        series_[(who->second * groups_ + static_cast<std::size_t>(groupOf_[number])) *
                    hands_.size() +
                h];
    const std::vector<Entry>& entries = series.entries;
    // rows mostly follow each other in time
    std::size_t after = series.last;
    const int isNear = after > 0 && after <= entries.size() &&
                       entries[after - 1].start <= place.time &&
                       (after == entries.size() || place.time < entries[after].start);
    if (!isNear)
        after = static_cast<std::size_t>(
            std::partition_point(entries.begin(), entries.end(),
                                 [&](const Entry& e) { return e.start <= place.time; }) -
            entries.begin());
    series.last = after;
    // several sources can have gains of the same time
    while (after > 0) {
        const Entry& entry = entries[--after];
        if (!(place.time < entry.end))
            return nullptr;
        if (entry.source == 0 || place.source == 0 || entry.source == place.source)
            return &entry;
    }
    return nullptr;
}

int GainTable::factor(const GainPlace& place, std::complex<double>& factor) const
{
    const Entry* const first = find(place.subarray, place.first, place.firstHand, place);
    const Entry* const second = find(place.subarray, place.second, place.secondHand, place);
    if (!first || !second || !first->isUsable || !second->isUsable)
        return 0;
    factor = first->value * std::conj(second->value);
    return std::isfinite(std::norm(factor)) && std::norm(factor) > 0;
}

void GainChain::add(const std::string& name, double referenceDay)
{
    tables_.emplace_back(readGains(name), name, referenceDay);
}

int GainChain::factor(const GainPlace& place, std::complex<double>& product) const
{
    product = 1;
    for (const GainTable& table : tables_) {
        std::complex<double> one;
        if (!table.factor(place, one)) {
            product = 1;
            return 0;
        }
        product *= one;
    }
    return 1;
}

}  // namespace pavane_ms
