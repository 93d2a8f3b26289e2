#pragma once

#include "pavane/calibration/gains/interval_gains.h"
#include "tessel/api.h"
#include "tessel/gains/AGains.h"

#include <complex>
#include <cstddef>
#include <map>
#include <vector>

namespace pavane
{

/// How gains are solved for.
struct GainRules {
    IntervalRules interval;
    /// Indices of antennas; the first one that has a gain in an interval has the phase 0 there.
    std::vector<int> references;
    /// Non-zero: amplitudes are scaled so that the weighted mean of log |g| over antennas and time
    /// is 0 for each group of IFs and hand.
    int isScaled = 1;
};

/// How well the gains of an interval, group and hand make the model the data.
struct GainFit {
    double chiSquared = 0, freedom = 0;
    int iterations = 0;
};

/// Solves for the gains of a whole observation from visibilities that are given to it in any
/// amount, interval by interval. What is kept of them are sums, of the intervals that are open.
class PAVANE_API GainSolver
{
public:
    /// Antennas, intervals, groups and hands are those of `frame`; all its gains are looked for.
    GainSolver(AGains frame, const GainRules& rules);

    /// A visibility D of the baseline of two antennas, its model M and its weight, one over the
    /// square of the error of real or imaginary part. One that is flagged (weight 0 or below), not
    /// finite, or of one antenna with itself does not count; of an interval that was closed
    /// neither. Indices are those of the frame, all within it.
    void add(std::size_t interval, std::size_t group, std::size_t hand, std::size_t first,
             std::size_t second, std::complex<double> data, std::complex<double> model,
             double weight);
    /// Solves the intervals of `subarray` that end at this time or before it, and lets go of their
    /// sums; data come in the order of time.
    void close(int subarray, double time);
    /// Intervals that are open, and solving one of them: 0 when there is none.
    std::size_t openCount() const { return open_.size(); }
    int closeNext();
    /// Solves what is open, turns and scales it.
    void finish();
    /// Forgets all that was given.
    void restart();

    const AGains& gains() const { return gains_; }
    /// In the order of intervals, groups and hands.
    const std::vector<GainFit>& fits() const { return fits_; }
    /// By group and hand: what the amplitudes were divided by to scale them; 1 where none were.
    const std::vector<double>& factors() const { return factors_; }
    /// Visibilities that counted, and those whose interval was closed already.
    long long used() const { return used_; }
    long long late() const { return late_; }

private:
    void solve(std::size_t interval, const std::vector<GainSums>& sums);

    AGains gains_;
    GainRules rules_;
    std::size_t baselines_ = 0;
    std::map<std::size_t, std::vector<GainSums>> open_;  ///< by interval
    std::size_t lastInterval_ = 0;
    GainSums* lastSums_ = nullptr;  ///< its sums, when it is open
    std::vector<char> isClosed_;
    std::vector<GainFit> fits_;
    std::vector<double> factors_;
    std::vector<GainSums> part_;
    IntervalSolver solver_;
    IntervalGains solved_;
    long long used_ = 0, late_ = 0;
};

/// Turns the gains of intervals whose reference antenna is another one than in most, so that the
/// antennas that both they and the interval before them have do not jump. Within a subarray, group
/// and hand.
PAVANE_API void turnToReference(AGains& gains, const std::vector<int>& references);
/// Divides the gains by the exponential of their weighted mean log |g|, for each group and hand;
/// answers these factors in that order.
PAVANE_API std::vector<double> scaleGains(AGains& gains);

}  // namespace pavane
