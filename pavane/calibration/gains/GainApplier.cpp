#include "pavane/calibration/gains/GainApplier.h"

#include <algorithm>
#include <utility>

namespace pavane
{

std::pair<char, char> handsOf(int stokes)
{
    switch (stokes) {
    case -1:
        return {'R', 'R'};
    case -2:
        return {'L', 'L'};
    case -3:
        return {'R', 'L'};
    case -4:
        return {'L', 'R'};
    case -5:
        return {'X', 'X'};
    case -6:
        return {'Y', 'Y'};
    case -7:
        return {'X', 'Y'};
    case -8:
        return {'Y', 'X'};
    default:
        return {'I', 'I'};
    }
}

GainApplier::GainApplier(const GainChain& chain, int ifs, std::vector<int> stokes,
                         double referenceDay, int before)
    : ifs_(static_cast<std::size_t>(std::max(ifs, 0))), stokes_(std::move(stokes))
{
    for (const GainChain::Link& from : chain.links()) {
        if (before != 0 && from.id == before)
            break;
        if (!from.isOn)
            continue;
        const AGains& gains = from.gains;
        Link& link = links_.emplace_back();
        // without hands there is no memory for gains in it
        (void)link.frame.create(gains.antennas(), gains.intervals(), gains.groups(), {});
        if (referenceDay > 0 && gains.referenceDay > 0)
            link.later = referenceDay - gains.referenceDay;
        link.hands = gains.hands().size();
        link.antennas = gains.antennas().size();
        link.groups = gains.groups().size();
        link.values.reserve(gains.cells().size());
        for (const Gain& gain : gains.cells())
            link.values.push_back(gain.isUsable() && std::abs(gain.value) > 0 ? gain.value : 0);
        for (std::size_t i = 0; i < ifs_; ++i)
            link.groupOf.push_back(gains.groupOf(static_cast<int>(i)));
        const auto handOf = [&gains](char hand) {
            const int own = gains.handOf(hand);
            return own >= 0 ? own : gains.handOf('I');
        };
        for (const int code : stokes_) {
            const auto [first, second] = pavane::handsOf(code);
            link.handsOf.emplace_back(handOf(first), handOf(second));
        }
    }
    row_.resize(ifs_ * stokes_.size());
}

void GainApplier::apply(Link& link, int subarray, int first, int second, double time, int source)
{
    if (!link.hasLast || link.subarray != subarray || link.source != source || link.time != time) {
        link.interval = link.frame.intervalOf(subarray, time + link.later, source);
        link.subarray = subarray;
        link.source = source;
        link.time = time;
        link.hasLast = 1;
    }
    std::pair<int, int> antennas{-1, -1};
    if (link.interval >= 0) {
        constexpr std::pair<int, int> notKnown{-2, -2};
        std::pair<int, int>* const known = link.pairs.of({subarray, first, second}, notKnown);
        if (known && *known != notKnown)
            antennas = *known;
        else {
            antennas = {link.frame.antennaOf(subarray, first),
                        link.frame.antennaOf(subarray, second)};
            if (known)
                *known = antennas;
        }
    }
    if (std::min(antennas.first, antennas.second) < 0) {
        for (GainCorrection& correction : row_)
            correction.isUsable = 0;
        return;
    }
    const auto a = static_cast<std::size_t>(antennas.first);
    const auto b = static_cast<std::size_t>(antennas.second);
    GainCorrection* to = row_.data();
    for (std::size_t i = 0; i < ifs_; ++i) {
        const int group = link.groupOf[i];
        const std::size_t at = (static_cast<std::size_t>(link.interval) * link.groups +
                                static_cast<std::size_t>(std::max(group, 0))) *
                               link.hands;
        for (const auto& [hand, other] : link.handsOf) {
            GainCorrection& correction = *to++;
            if (group < 0 || hand < 0 || other < 0) {
                correction.isUsable = 0;
                continue;
            }
            const std::complex<double> g =
                link.values[(at + static_cast<std::size_t>(hand)) * link.antennas + a];
            const std::complex<double> h =
                link.values[(at + static_cast<std::size_t>(other)) * link.antennas + b];
            // g conj(h), by parts: the library's product of complex numbers asks for infinities
            const double re = g.real() * h.real() + g.imag() * h.imag();
            const double im = g.imag() * h.real() - g.real() * h.imag();
            const double power = re * re + im * im;
            if (!(power > 0)) {
                correction.isUsable = 0;
                continue;
            }
            const std::complex<double> f = correction.factor;
            correction.factor = {(f.real() * re + f.imag() * im) / power,
                                 (f.imag() * re - f.real() * im) / power};
            correction.weight *= power;
        }
    }
}

const GainCorrection* GainApplier::of(int subarray, int first, int second, double time, int source)
{
    std::fill(row_.begin(), row_.end(), GainCorrection());
    for (Link& link : links_)
        apply(link, subarray, first, second, time, source);
    return row_.data();
}

}  // namespace pavane
