#pragma once

#include "tessel/api.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/uvfits/UvChoice.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// Which of the visibilities of a group make one point.
struct UvSplit {
    int ifs = 0;     ///< non-zero: a point for each IF, not the mean of all
    int stokes = 0;  ///< the same of polarisations
};

/// The marked visibilities of a group in the order of the points that they are averaged to, and of
/// the file in each: the part `p` has those from starts[p] to starts[p + 1].
struct UvCells {
    struct Cell {
        std::int64_t offset;  ///< in UvGroups::cells, from the start of a group
        int frequency;        ///< place of the channel in UvChoice::frequenciesOf
    };
    struct Part {
        int ifIndex = -1, stokes = -1;  ///< from 0; -1: all that are marked
    };
    std::vector<Cell> cells;
    std::vector<std::size_t> starts;
    std::vector<Part> parts;
    UvCellSteps steps;
    int isDense = 0;  ///< they stand one behind the other, real, imaginary, weight

    UvCells() = default;
    UvCells(const AUVXFile& file, const UvChoice& choice, const UvSplit& split);
    std::size_t count() const { return cells.size(); }
};

/// "IF 3 RR", "" of the part that is everything.
PAVANE_API std::string partName(const AUVXFile& file, const UvCells::Part& part);

/// The visibilities of a leg, an array a number, in the order of UvCells. One that is flagged, not
/// finite or not marked is 0 throughout.
struct UvLeg {
    std::vector<float> real, imaginary;
    std::vector<float> variance;  ///< one over the weight
    std::vector<float> valid;     ///< 1 or 0
    std::vector<float> modelReal, modelImaginary;
    double u = 0, v = 0;  ///< seconds of light, in the direction of the leg
    int isWhole = 0;      ///< all are valid
    /// Products of three of them, and of their squares and variances, are floats of full precision.
    int isTame = 0;

    // kept from group to group
    std::vector<float> scratch;
    const double* markedBy = nullptr;  ///< the frequencies that `marked` is of
    std::vector<float> marked;

    /// Takes group `i`; `frequencies` as UvChoice gives them. `sign` -1: the leg goes the other
    /// way. Non-zero when at least one visibility counts.
    int take(const UvGroups& groups, int i, const UvCells& cells, const double* frequencies,
             int sign);

private:
    void gather(const UvGroups& groups, int i, const UvCells& cells);
};

}  // namespace pavane
