#include "pavane/calibration/gains/GainSolver.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pavane
{

GainSolver::GainSolver(AGains frame, const GainRules& rules)
    : gains_(std::move(frame)), rules_(rules)
{
    const std::size_t n = gains_.antennas().size();
    baselines_ = n < 2 ? 0 : n * (n - 1) / 2;
    restart();
}

void GainSolver::restart()
{
    std::fill(gains_.cells().begin(), gains_.cells().end(), Gain());
    open_.clear();
    lastSums_ = nullptr;
    isClosed_.assign(gains_.intervals().size(), 0);
    const std::size_t series = gains_.groups().size() * gains_.hands().size();
    fits_.assign(gains_.intervals().size() * series, {});
    factors_.assign(series, 1.0);
    used_ = late_ = 0;
}

void GainSolver::add(std::size_t interval, std::size_t group, std::size_t hand, std::size_t first,
                     std::size_t second, std::complex<double> data, std::complex<double> model,
                     double weight)
{
    if (!(weight > 0) || first == second)
        return;
    if (first > second) {
        std::swap(first, second);
        data = std::conj(data);
        model = std::conj(model);
    }
    GainSums one;
    one.cross = {weight * (data.real() * model.real() + data.imag() * model.imag()),
                 weight * (data.imag() * model.real() - data.real() * model.imag())};
    one.model = weight * std::norm(model);
    one.data = weight * std::norm(data);
    if (!std::isfinite(one.model) || !std::isfinite(one.data))
        return;
    if (!lastSums_ || interval != lastInterval_) {
        if (isClosed_[interval]) {
            ++late_;
            return;
        }
        std::vector<GainSums>& sums = open_[interval];
        if (sums.empty())
            sums.resize(gains_.groups().size() * gains_.hands().size() * baselines_);
        lastInterval_ = interval;
        lastSums_ = sums.data();
    }
    GainSums& of = lastSums_[(group * gains_.hands().size() + hand) * baselines_ +
                             baselineAt(first, second, gains_.antennas().size())];
    of.cross += one.cross;
    of.model += one.model;
    of.data += one.data;
    of.count += 1;
    ++used_;
}

void GainSolver::close(int subarray, double time)
{
    for (auto at = open_.begin(); at != open_.end();) {
        const GainInterval& interval = gains_.intervals()[at->first];
        if (interval.subarray != subarray || !(interval.end <= time)) {
            ++at;
            continue;
        }
        solve(at->first, at->second);
        at = open_.erase(at);
        lastSums_ = nullptr;
    }
}

int GainSolver::closeNext()
{
    if (open_.empty())
        return 0;
    solve(open_.begin()->first, open_.begin()->second);
    open_.erase(open_.begin());
    lastSums_ = nullptr;
    return 1;
}

void GainSolver::solve(std::size_t interval, const std::vector<GainSums>& sums)
{
    isClosed_[interval] = 1;
    const std::size_t hands = gains_.hands().size();
    for (std::size_t group = 0; group < gains_.groups().size(); ++group)
        for (std::size_t hand = 0; hand < hands; ++hand) {
            const std::size_t series = group * hands + hand;
            const auto first = sums.begin() + static_cast<std::ptrdiff_t>(series * baselines_);
            part_.assign(first, first + static_cast<std::ptrdiff_t>(baselines_));
            solver_.solve(part_, static_cast<int>(gains_.antennas().size()), rules_.references,
                          rules_.interval, solved_);
            fits_[interval * gains_.groups().size() * hands + series] = {
                solved_.chiSquared, solved_.freedom, solved_.iterations};
            for (std::size_t i = 0; i < solved_.antennas.size(); ++i) {
                const IntervalGains::Antenna& from = solved_.antennas[i];
                gains_.at(interval, group, hand, i) = {
                    from.value, from.error, from.weight, solved_.iterations, solved_.reference,
                    from.state, 0};
            }
        }
}

void GainSolver::finish()
{
    while (closeNext()) {
    }
    if (rules_.interval.kind != GainKind::amplitude)
        turnToReference(gains_, rules_.references);
    if (rules_.interval.kind != GainKind::phase && rules_.isScaled)
        factors_ = scaleGains(gains_);
}

void turnToReference(AGains& gains, const std::vector<int>& references)
{
    const std::vector<GainInterval>& intervals = gains.intervals();
    std::vector<std::size_t> order(intervals.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return std::pair(intervals[a].subarray, intervals[a].start) <
               std::pair(intervals[b].subarray, intervals[b].start);
    });
    const std::size_t antennas = gains.antennas().size();
    const auto isMain = [&](std::size_t interval, int reference) {
        for (const int wanted : references)
            if (wanted >= 0 && static_cast<std::size_t>(wanted) < antennas &&
                gains.antennas()[static_cast<std::size_t>(wanted)].subarray ==
                    intervals[interval].subarray)
                return reference == wanted;
        return false;
    };
    for (std::size_t group = 0; group < gains.groups().size(); ++group)
        for (std::size_t hand = 0; hand < gains.hands().size(); ++hand) {
            std::size_t before = intervals.size();  // the last one with gains
            for (const std::size_t now : order) {
                int reference = -1;
                for (std::size_t i = 0; i < antennas && reference < 0; ++i)
                    if (gains.at(now, group, hand, i).state == GainState::solved)
                        reference = gains.at(now, group, hand, i).reference;
                if (reference < 0)
                    continue;
                if (!isMain(now, reference) && before < intervals.size() &&
                    intervals[before].subarray == intervals[now].subarray) {
                    std::complex<double> jump = 0;
                    for (std::size_t i = 0; i < antennas; ++i) {
                        const Gain& a = gains.at(before, group, hand, i);
                        const Gain& b = gains.at(now, group, hand, i);
                        const double sizes = std::abs(a.value) * std::abs(b.value);
                        if (a.state == GainState::solved && b.state == GainState::solved &&
                            sizes > 0)
                            jump +=
                                std::min(a.weight, b.weight) * a.value * std::conj(b.value) / sizes;
                    }
                    if (std::abs(jump) > 0)
                        for (std::size_t i = 0; i < antennas; ++i) {
                            Gain& gain = gains.at(now, group, hand, i);
                            if (gain.state == GainState::solved)
                                gain.value *= jump / std::abs(jump);
                        }
                }
                before = now;
            }
        }
}

std::vector<double> scaleGains(AGains& gains)
{
    std::vector<double> factors;
    for (std::size_t group = 0; group < gains.groups().size(); ++group)
        for (std::size_t hand = 0; hand < gains.hands().size(); ++hand) {
            const auto forAll = [&](auto work) {
                for (std::size_t i = 0; i < gains.intervals().size(); ++i)
                    for (std::size_t a = 0; a < gains.antennas().size(); ++a)
                        if (Gain& gain = gains.at(i, group, hand, a);
                            gain.state == GainState::solved && std::abs(gain.value) > 0)
                            work(gain);
            };
            double sum = 0, weights = 0;
            forAll([&](const Gain& gain) {
                if (gain.isFlagged)
                    return;
                // one over the square of the error of log |g|
                const double weight = gain.error > 0 ? gain.ratio() * gain.ratio() : gain.weight;
                sum += weight * std::log(std::abs(gain.value));
                weights += weight;
            });
            const double factor = weights > 0 ? std::exp(sum / weights) : 1;
            factors.push_back(factor);
            forAll([factor](Gain& gain) {
                gain.value /= factor;
                gain.error /= factor;
            });
        }
    return factors;
}

}  // namespace pavane
