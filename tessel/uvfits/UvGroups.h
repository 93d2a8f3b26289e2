#pragma once

#include <cstdint>
#include <vector>

namespace pavane
{

/// Groups of a data file, one value each in the order of the file: what `what` of
/// AUVXFile::readGroups asked for, the other arrays are empty. Values that the file lacks are the
/// same in all groups: time, u, v, w 0, subarray 1, source and selection the first of their tables.
struct UvGroups {
    /// Bits that choose arrays; each costs the reading of its parameters.
    /// `storedCells` with `cellValues` leaves cells that are plain floats as the file has them.
    enum What : int {
        times = 1,
        baselines = 2,
        origins = 4,
        places = 8,
        cellValues = 16,
        storedCells = 32
    };

    std::int64_t first = 0;  ///< from 0
    int count = 0;
    std::vector<double> time;                       ///< days since 0h of the reference date
    std::vector<int> subarray, antenna1, antenna2;  ///< with `baselines`; -1: no number of one
    std::vector<int> source, selection;             ///< with `origins`
    std::vector<double> u, v, w;                    ///< with `places`: seconds of light
    std::vector<float> cells;  ///< with `cellValues`: AUVXFile::visibility knows the order
    /// With `storedCells`: the bytes of the first group's cells, the highest of each first, and
    /// from a group to the next; they stay until the next reading. Null where `cells` has them.
    const unsigned char* stored = nullptr;
    std::int64_t storedStep = 0;

    /// No groups; the memory stays for the next ones.
    void clear();
};

/// Steps in UvGroups::cells from one group, IF, channel or polarisation to the next, and from the
/// real part of a visibility to its imaginary part, which is also that to its weight, where the
/// file has weights.
struct UvCellSteps {
    std::int64_t group = 0, ifIndex = 0, channel = 0, stokes = 0, part = 0;
    int hasWeights = 0;
};

/// One complex number of a group. A weight of 0 or below means flagged.
struct UvVisibility {
    float real = 0, imaginary = 0, weight = 0;
};

}  // namespace pavane
