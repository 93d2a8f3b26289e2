#include "pavane/calibration/gains/interval_gains.h"

#include "pavane/calibration/gains/least_squares.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace pavane
{
namespace
{

/// Below, a reduced chi-squared says more of chance than of the weights.
constexpr double leastFreedom = 10;

int isData(const GainSums& sums) { return sums.model > 0 && sums.count > 0; }

/// Sums are far from the ends of what a double holds, which is all that hypot is slow for.
double sizeOf(double real, double imaginary)
{
    return std::sqrt(real * real + imaginary * imaginary);
}

}  // namespace

/// Puts those antennas into who_ that hang together with the reference. 0 when there are none.
int IntervalSolver::findMembers(const std::vector<GainSums>& sums,
                                const std::vector<int>& references)
{
    std::vector<std::size_t> tree(antennas_);
    std::iota(tree.begin(), tree.end(), std::size_t{0});
    const auto rootOf = [&tree](std::size_t i) {
        while (tree[i] != i)
            i = tree[i] = tree[tree[i]];
        return i;
    };
    std::vector<double> weight(antennas_, 0.0);
    std::size_t at = 0;
    for (std::size_t a = 0; a < antennas_; ++a)
        for (std::size_t b = a + 1; b < antennas_; ++b, ++at) {
            if (isOut_[a] || isOut_[b] || !isData(sums[at]))
                continue;
            weight[a] += sums[at].model;
            weight[b] += sums[at].model;
            tree[rootOf(a)] = rootOf(b);
        }
    std::size_t reference = antennas_;
    for (const int wanted : references)
        if (wanted >= 0 && static_cast<std::size_t>(wanted) < antennas_ &&
            weight[static_cast<std::size_t>(wanted)] > 0) {
            reference = static_cast<std::size_t>(wanted);
            break;
        }
    if (reference == antennas_) {
        // of the largest part the antenna with the most weight
        std::vector<std::size_t> sizes(antennas_, 0);
        for (std::size_t i = 0; i < antennas_; ++i)
            sizes[rootOf(i)] += weight[i] > 0 ? 1 : 0;
        for (std::size_t i = 0; i < antennas_; ++i) {
            if (!(weight[i] > 0))
                continue;
            const auto size = [&](std::size_t antenna) { return sizes[rootOf(antenna)]; };
            if (reference == antennas_ || size(i) > size(reference) ||
                (size(i) == size(reference) && weight[i] > weight[reference]))
                reference = i;
        }
    }
    who_.clear();
    if (reference == antennas_)
        return 0;
    who_.push_back(reference);
    for (std::size_t i = 0; i < antennas_; ++i)
        if (i != reference && weight[i] > 0 && rootOf(i) == rootOf(reference))
            who_.push_back(i);
    return 1;
}

void IntervalSolver::fillMatrices(const std::vector<GainSums>& sums, GainKind kind)
{
    const std::size_t n = who_.size();
    stride_ = (n + 3) / 4 * 4;  // whole vectors of the processor
    for (std::vector<double>* const matrix : {&crossReal_, &crossImaginary_, &model_})
        matrix->assign(stride_ * n, 0.0);
    for (std::vector<double>* const column :
         {&real_, &imaginary_, &power_, &nextReal_, &nextImaginary_})
        column->assign(stride_, 0.0);
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j < n; ++j) {
            if (i == j)
                continue;
            const auto [a, b] = std::minmax(who_[i], who_[j]);
            const GainSums& of = sums[baselineAt(a, b, antennas_)];
            if (!isData(of))
                continue;
            row(crossReal_, i)[j] = of.cross.real();
            if (kind != GainKind::amplitude)
                row(crossImaginary_, i)[j] = who_[i] < who_[j] ? of.cross.imag() : -of.cross.imag();
            row(model_, i)[j] = of.model;
        }
}

/// Phases along the strongest baselines away from the reference, and one amplitude for all.
void IntervalSolver::start()
{
    const std::size_t n = who_.size();
    double cross = 0, model = 0;
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j < n; ++j) {
            cross += sizeOf(row(crossReal_, i)[j], row(crossImaginary_, i)[j]);
            model += row(model_, i)[j];
        }
    const double amplitude = cross > 0 && model > 0 ? std::sqrt(cross / model) : 1;
    std::vector<double> reach(n, -1.0);
    std::vector<std::size_t> from(n, 0);
    reach[0] = 0;
    std::vector<char> isDone(n, 0);
    for (std::size_t step = 0; step < n; ++step) {
        std::size_t best = n;
        for (std::size_t i = 0; i < n; ++i)
            if (!isDone[i] && reach[i] >= 0 && (best == n || reach[i] > reach[best]))
                best = i;
        if (best == n)
            break;
        isDone[best] = 1;
        std::complex<double> turn = 1;
        if (best != 0) {
            const std::size_t p = from[best];
            const std::complex<double> along =
                std::complex<double>(row(crossReal_, best)[p], row(crossImaginary_, best)[p]) *
                std::complex<double>(real_[p], imaginary_[p]);
            const double size = std::abs(along);
            turn = size > 0 ? along / size : 1;
        }
        real_[best] = turn.real();
        imaginary_[best] = turn.imag();
        for (std::size_t i = 0; i < n; ++i) {
            const double strength = sizeOf(row(crossReal_, best)[i], row(crossImaginary_, best)[i]);
            if (!isDone[i] && row(model_, best)[i] > 0 && strength > reach[i]) {
                reach[i] = strength;
                from[i] = best;
            }
        }
    }
    for (std::size_t i = 0; i < n; ++i) {
        real_[i] *= amplitude;
        imaginary_[i] *= amplitude;
    }
}

/// How many steps it took.
int IntervalSolver::iterate(const IntervalRules& rules)
{
    const std::size_t n = who_.size();
    const bool isPhase = rules.kind == GainKind::phase;
    if (isPhase)
        for (std::size_t i = 0; i < n; ++i) {
            const double size = std::hypot(real_[i], imaginary_[i]);
            real_[i] /= size;
            imaginary_[i] /= size;
        }
    int step = 0;
    while (step < rules.mostIterations) {
        ++step;
        for (std::size_t i = 0; i < stride_; ++i)
            power_[i] = real_[i] * real_[i] + imaginary_[i] * imaginary_[i];
        for (std::size_t i = 0; i < n; ++i) {
            const RowSums sums =
                rowSums(row(crossReal_, i), row(crossImaginary_, i), row(model_, i), real_.data(),
                        imaginary_.data(), power_.data(), stride_);
            const double scale = isPhase ? sizeOf(sums.real, sums.imaginary) : sums.power;
            nextReal_[i] = scale > 0 ? sums.real / scale : real_[i];
            nextImaginary_[i] = scale > 0 ? sums.imaginary / scale : imaginary_[i];
        }
        double change = 0, size = 0;
        const double part = step % 2 == 0 ? 0.5 : 1.0;
        for (std::size_t i = 0; i < n; ++i) {
            const double dr = nextReal_[i] - real_[i], di = nextImaginary_[i] - imaginary_[i];
            change += dr * dr + di * di;
            real_[i] += part * dr;
            imaginary_[i] += part * di;
            size += real_[i] * real_[i] + imaginary_[i] * imaginary_[i];
        }
        if (step % 2 == 0 && change <= rules.tolerance * rules.tolerance * size)
            break;
    }
    if (isPhase)
        for (std::size_t i = 0; i < n; ++i) {
            const double amplitude = std::hypot(real_[i], imaginary_[i]);
            if (amplitude > 0) {
                real_[i] /= amplitude;
                imaginary_[i] /= amplitude;
            }
        }
    return step;
}

void IntervalSolver::measureFit(const std::vector<GainSums>& sums, GainKind kind,
                                IntervalGains& gains) const
{
    const std::size_t n = who_.size();
    double chi = 0, count = 0;
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = i + 1; j < n; ++j) {
            const auto [a, b] = std::minmax(who_[i], who_[j]);
            const GainSums& of = sums[baselineAt(a, b, antennas_)];
            if (!isData(of))
                continue;
            const std::size_t first = who_[i] < who_[j] ? i : j, second = i + j - first;
            const std::complex<double> gain =
                std::complex<double>(real_[first], imaginary_[first]) *
                std::complex<double>(real_[second], -imaginary_[second]);
            chi += of.data - 2 * (std::conj(gain) * of.cross).real() + std::norm(gain) * of.model;
            count += 2 * of.count;
        }
    const auto size = static_cast<double>(n);
    gains.chiSquared = std::max(chi, 0.0);
    gains.freedom = count - (kind == GainKind::both        ? 2 * size - 1
                             : kind == GainKind::amplitude ? size
                                                           : size - 1);
}

/// Errors of the gains from the normal matrices of phases and of logarithms of amplitudes, which
/// do not mix. 0 when what was solved for is not determined.
int IntervalSolver::findErrors(const IntervalRules& rules, IntervalGains& gains)
{
    const std::size_t n = who_.size();
    const double scale = gains.freedom >= leastFreedom ? gains.chiSquared / gains.freedom : 1;
    const auto strength = [&](std::size_t i, std::size_t j) {
        return row(model_, i)[j] * (real_[i] * real_[i] + imaginary_[i] * imaginary_[i]) *
               (real_[j] * real_[j] + imaginary_[j] * imaginary_[j]);
    };
    std::vector<double> total(n, 0.0), variance(n, 0.0);
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j < n; ++j)
            total[i] += strength(i, j);
    double parts = 0;
    if (rules.kind != GainKind::amplitude && n > 1) {
        work_.assign((n - 1) * (n - 1), 0.0);
        for (std::size_t i = 1; i < n; ++i)
            for (std::size_t j = 1; j < n; ++j)
                work_[(i - 1) * (n - 1) + j - 1] = i == j ? total[i] : -strength(i, j);
        if (!inverseDiagonal(work_, n - 1, diagonal_))
            return 0;
        for (std::size_t i = 1; i < n; ++i)
            variance[i] += diagonal_[i - 1];
        variance[0] += 1 / total[0];
        parts += 1;
    }
    if (rules.kind != GainKind::phase) {
        work_.assign(n * n, 0.0);
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t j = 0; j < n; ++j)
                work_[i * n + j] = i == j ? total[i] : strength(i, j);
        if (!inverseDiagonal(work_, n, diagonal_))
            return 0;
        for (std::size_t i = 0; i < n; ++i)
            variance[i] += diagonal_[i];
        parts += 1;
    }
    for (std::size_t i = 0; i < n; ++i) {
        IntervalGains::Antenna& antenna = gains.antennas[who_[i]];
        antenna.value = {real_[i], imaginary_[i]};
        antenna.error = std::abs(antenna.value) * std::sqrt(scale * variance[i] / parts);
        antenna.weight = total[i];
        antenna.state = GainState::solved;
    }
    return 1;
}

int IntervalSolver::solve(const std::vector<GainSums>& sums, int antennas,
                          const std::vector<int>& references, const IntervalRules& rules,
                          IntervalGains& gains)
{
    antennas_ = static_cast<std::size_t>(std::max(antennas, 0));
    isOut_.assign(antennas_, 0);
    gains = {};
    gains.antennas.assign(antennas_, {});
    if (antennas_ < 2 || sums.size() < antennas_ * (antennas_ - 1) / 2)
        return 0;
    std::vector<char> hasData(antennas_, 0);
    std::size_t at = 0;
    for (std::size_t a = 0; a < antennas_; ++a)
        for (std::size_t b = a + 1; b < antennas_; ++b, ++at)
            if (isData(sums[at]))
                hasData[a] = hasData[b] = 1;
    for (int isSettled = 0; !isSettled;) {
        for (std::size_t i = 0; i < antennas_; ++i) {
            gains.antennas[i] = {};
            gains.antennas[i].state = hasData[i] ? GainState::failed : GainState::missing;
        }
        gains.reference = -1;
        if (!findMembers(sums, references) ||
            who_.size() < static_cast<std::size_t>(std::max(rules.leastAntennas, 2)))
            return 0;
        fillMatrices(sums, rules.kind);
        start();
        gains.iterations = iterate(rules);
        // the phase of the reference is 0; an amplitude alone has no sign
        const std::complex<double> first(real_[0], imaginary_[0]);
        const std::complex<double> turn =
            std::abs(first) > 0 ? std::conj(first) / std::abs(first) : 1;
        for (std::size_t i = 0; i < who_.size(); ++i) {
            const std::complex<double> turned =
                std::complex<double>(real_[i], imaginary_[i]) * turn;
            real_[i] = turned.real();
            imaginary_[i] = rules.kind == GainKind::amplitude || i == 0 ? 0 : turned.imag();
        }
        measureFit(sums, rules.kind, gains);
        if (!findErrors(rules, gains)) {
            for (const std::size_t i : who_) {
                gains.antennas[i] = {};
                gains.antennas[i].state = GainState::failed;
            }
            return 0;
        }
        gains.reference = static_cast<int>(who_[0]);
        isSettled = 1;
        for (const std::size_t i : who_) {
            const IntervalGains::Antenna& antenna = gains.antennas[i];
            const double ratio = antenna.error > 0 ? std::abs(antenna.value) / antenna.error : 0;
            if (!std::isfinite(antenna.error) || !std::isfinite(std::abs(antenna.value)) ||
                (antenna.error > 0 && ratio < rules.leastRatio)) {
                isOut_[i] = 1;
                isSettled = 0;
            }
        }
    }
    return 1;
}

}  // namespace pavane
