#pragma once

#include "pavane/calibration/gains/GainChain.h"
#include "tessel/api.h"
#include "tessel/uvfits/Distinct.h"

#include <complex>
#include <cstddef>
#include <utility>
#include <vector>

namespace pavane
{

/// What a visibility is multiplied by to correct it, and its weight.
struct GainCorrection {
    std::complex<double> factor = 1;  ///< one over g(first) conj(g(second))
    double weight = 1;                ///< |g(first) g(second)|^2
    int isUsable = 1;                 ///< 0: a gain is missing, has failed or is flagged
};

/// The hands of the two antennas in a polarisation, by its FITS code (-1 RR, -5 XX); 'I' for those
/// of no hand.
PAVANE_API std::pair<char, char> handsOf(int stokes);

/// A chain made ready to correct the rows of a file: a copy of what it takes of the links that are
/// on, so that later changes of the chain do not count. The same corrections as `gainFactor`,
/// those of a row's IFs and polarisations at a small cost each.
class PAVANE_API GainApplier
{
public:
    /// For data of so many IFs and of polarisations `stokes` (FITS codes), whose times count from
    /// 0h of `referenceDay`, a Julian date; 0: from that of the gains. Of the links only those
    /// before the one with the id `before`, 0: all.
    GainApplier(const GainChain& chain, int ifs, std::vector<int> stokes, double referenceDay = 0,
                int before = 0);

    /// Non-zero when no link is on: nothing is corrected.
    int isEmpty() const { return links_.empty(); }
    /// Corrections of a row, an array of IFs and polarisations, the last index the fastest. Good
    /// until the next call.
    const GainCorrection* of(int subarray, int first, int second, double time, int source = 0);

private:
    struct Link {
        AGains frame;                              ///< without gains
        double later = 0;                          ///< days to add to a time of the data
        std::vector<std::complex<double>> values;  ///< 0 where a gain cannot be used
        std::size_t hands = 0, antennas = 0, groups = 0;
        std::vector<int> groupOf;                  ///< by IF
        std::vector<std::pair<int, int>> handsOf;  ///< by polarisation
        Distinct<UvPair, std::pair<int, int>> pairs{std::size_t{1} << 22};
        // what the last row was of
        int subarray = 0, source = 0, interval = -1;
        double time = 0;
        int hasLast = 0;
    };
    void apply(Link& link, int subarray, int first, int second, double time, int source);

    std::size_t ifs_;
    std::vector<int> stokes_;
    std::vector<Link> links_;
    std::vector<GainCorrection> row_;
};

}  // namespace pavane
