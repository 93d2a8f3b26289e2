#pragma once

#include "tessel/api.h"

#include <complex>
#include <cstddef>

namespace pavane
{

class AUVXFile;
struct UvGroups;

/// What is made of a visibility and its weight.
struct UvChange {
    std::complex<double> factor = 1;
    double weight = 1;  ///< what its weight is multiplied by
    int isFlagged = 0;  ///< non-zero: it does not count any more

    int isNothing() const { return factor == 1.0 && weight == 1 && !isFlagged; }
};

/// What stands between a file of visibilities and all who read them, as corrections and flags of
/// the user do. Set with AUVXFile::setFilter; UvRewriter writes what it makes of a file.
class PAVANE_API UvFilter
{
public:
    UvFilter() = default;
    UvFilter(const UvFilter&) = delete;
    UvFilter& operator=(const UvFilter&) = delete;
    virtual ~UvFilter();

    /// Of group `i` of those that were read with their times, baselines and origins: changes of
    /// its IFs and polarisations, an array of both, the last index the fastest, the same for all
    /// channels; good until the next call. Null where nothing changes.
    virtual const UvChange* changesOf(const AUVXFile& file, const UvGroups& groups,
                                      std::size_t i) = 0;
};

}  // namespace pavane
