#pragma once

#include "tessel/api.h"
#include "tessel/gains/AGains.h"

#include <complex>
#include <cstddef>
#include <vector>

namespace pavane
{

/// What of a gain is looked for; the rest is 1.
enum class GainKind { phase, amplitude, both };

/// What the visibilities D of a baseline a < b and those of the model M add up to. All that a
/// solution needs of them, however many they are.
struct GainSums {
    std::complex<double> cross{};  ///< of w D conj(M)
    double model = 0;              ///< of w |M|^2
    double data = 0;               ///< of w |D|^2
    double count = 0;
};

/// Place of the baseline of two antennas, `a` below `b`, among those of `antennas` of them.
constexpr std::size_t baselineAt(std::size_t a, std::size_t b, std::size_t antennas)
{
    return a * antennas - a * (a + 1) / 2 + (b - a - 1);
}

struct IntervalRules {
    GainKind kind = GainKind::phase;
    double leastRatio = 0;  ///< a gain with a smaller |g| / error fails
    int leastAntennas = 3;  ///< with fewer of them all fail
    int mostIterations = 500;
    double tolerance = 1e-9;  ///< of the step, in gains
};

/// Gains of one interval.
struct IntervalGains {
    struct Antenna {
        std::complex<double> value = 1;
        double error = 0;
        double weight = 0;
        GainState state = GainState::missing;
    };
    std::vector<Antenna> antennas;
    int iterations = 0;
    int reference = -1;     ///< the antenna whose phase is 0; -1: none was solved
    double chiSquared = 0;  ///< of real and imaginary parts
    double freedom = 0;     ///< how many of these, less the numbers that were solved for
};

/// Finds gains g that make of the model M what was observed: the least sum of
/// w |D(ab) - g(a) conj(g(b)) M(ab)|^2, by the alternating directions of Salvini and Wijnholds
/// (2014, A&A 571, A97), all antennas from those of the step before and the mean of every second
/// step with the one before it. Antennas count that hang together through baselines with the
/// reference, else the most; those that come out too noisy are left out and the others solved
/// again. Errors are those of least squares from the weights, times the root of the reduced
/// chi-squared where there are at least ten numbers more than unknown ones. Of a phase it is that
/// of the difference from the reference; the reference's own is that at known gains of the others.
///
/// A solver keeps its memory from interval to interval.
class PAVANE_API IntervalSolver
{
public:
    /// `sums` are those of all baselines, placed by `baselineAt`. Antennas earlier in `references`
    /// are taken first; where none has data, the one with the most weight. Non-zero when there is
    /// at least one gain.
    int solve(const std::vector<GainSums>& sums, int antennas, const std::vector<int>& references,
              const IntervalRules& rules, IntervalGains& gains);

private:
    int findMembers(const std::vector<GainSums>& sums, const std::vector<int>& references);
    void fillMatrices(const std::vector<GainSums>& sums, GainKind kind);
    void start();
    int iterate(const IntervalRules& rules);
    int findErrors(const IntervalRules& rules, IntervalGains& gains);
    void measureFit(const std::vector<GainSums>& sums, GainKind kind, IntervalGains& gains) const;
    double* row(std::vector<double>& matrix, std::size_t i) { return matrix.data() + i * stride_; }
    const double* row(const std::vector<double>& matrix, std::size_t i) const
    {
        return matrix.data() + i * stride_;
    }

    std::size_t antennas_ = 0;
    std::vector<char> isOut_;       ///< left out for its noise
    std::vector<std::size_t> who_;  ///< antennas that are solved for, the reference first
    std::size_t stride_ = 0;
    /// Of those: sums of w D conj(M) from row to column, and of w |M|^2.
    std::vector<double> crossReal_, crossImaginary_, model_;
    std::vector<double> real_, imaginary_, power_, nextReal_, nextImaginary_;
    std::vector<double> work_, diagonal_;
};

}  // namespace pavane
