#include "pavane/calibration/gains/GainChain.h"

#include <algorithm>
#include <utility>

namespace pavane
{

GainChain::Link* GainChain::find(int id)
{
    const auto found = std::find_if(links_.begin(), links_.end(),
                                    [id](const Link& link) { return link.id == id; });
    return found == links_.end() ? nullptr : &*found;
}

std::vector<int> GainChain::onBefore(const Link& link) const
{
    std::vector<int> ids;
    for (const Link& other : links_) {
        if (&other == &link)
            break;
        if (other.isOn)
            ids.push_back(other.id);
    }
    return ids;
}

int GainChain::add(const std::string& name, AGains gains)
{
    links_.push_back({name, std::move(gains), 1, ++lastId_, {}});
    links_.back().solvedOn = onBefore(links_.back());
    return lastId_;
}

int GainChain::remove(int id)
{
    const auto before = links_.size();
    links_.erase(std::remove_if(links_.begin(), links_.end(),
                                [id](const Link& link) { return link.id == id; }),
                 links_.end());
    return links_.size() != before;
}

int GainChain::setOn(int id, int on)
{
    Link* const link = find(id);
    if (link)
        link->isOn = on != 0;
    return link != nullptr;
}

int GainChain::replace(int id, AGains gains)
{
    Link* const link = find(id);
    if (!link)
        return 0;
    link->gains = std::move(gains);
    link->solvedOn = onBefore(*link);
    // a new id: those behind it were solved on what the old gains made
    link->id = ++lastId_;
    return link->id;
}

Gain* GainChain::gain(int id, std::size_t interval, std::size_t group, std::size_t hand,
                      std::size_t antenna)
{
    Link* const link = find(id);
    if (!link || interval >= link->gains.intervals().size() ||
        group >= link->gains.groups().size() || hand >= link->gains.hands().size() ||
        antenna >= link->gains.antennas().size())
        return nullptr;
    return &link->gains.at(interval, group, hand, antenna);
}

int GainChain::isStale(int id) const
{
    for (const Link& link : links_)
        if (link.id == id)
            return link.solvedOn != onBefore(link);
    return 0;
}

int GainChain::confirm(int id)
{
    Link* const link = find(id);
    if (link)
        link->solvedOn = onBefore(*link);
    return link != nullptr;
}

int gainFactor(const AGains& gains, const GainPlace& place, std::complex<double>& factor)
{
    factor = 1;
    const int interval = gains.intervalOf(place.subarray, place.time, place.source);
    const int group = gains.groupOf(place.ifIndex);
    const auto handOf = [&gains](char hand) {
        const int own = gains.handOf(hand);
        return own >= 0 ? own : gains.handOf('I');
    };
    const int hands[] = {handOf(place.firstHand), handOf(place.secondHand)};
    const int antennas[] = {gains.antennaOf(place.subarray, place.first),
                            gains.antennaOf(place.subarray, place.second)};
    if (interval < 0 || group < 0 || std::min({hands[0], hands[1], antennas[0], antennas[1]}) < 0)
        return 0;
    const auto gain = [&](int i) -> const Gain& {
        return gains.at(static_cast<std::size_t>(interval), static_cast<std::size_t>(group),
                        static_cast<std::size_t>(hands[i]), static_cast<std::size_t>(antennas[i]));
    };
    const std::complex<double> product = gain(0).value * std::conj(gain(1).value);
    if (!gain(0).isUsable() || !gain(1).isUsable() || !(std::abs(product) > 0))
        return 0;
    factor = product;
    return 1;
}

int gainFactor(const GainChain& chain, const GainPlace& place, std::complex<double>& factor)
{
    std::complex<double> product = 1;
    for (const GainChain::Link& link : chain.links()) {
        if (!link.isOn)
            continue;
        if (!gainFactor(link.gains, place, factor)) {
            factor = 1;
            return 0;
        }
        product *= factor;
    }
    factor = product;
    return 1;
}

}  // namespace pavane
