#pragma once

#include "tessel/api.h"

namespace pavane
{

class AUVXFile;
struct UvGroups;

/// What stands between a file of visibilities and all who read them, as corrections and flags of
/// the user do. Set with AUVXFile::setFilter.
class PAVANE_API UvFilter
{
public:
    UvFilter() = default;
    UvFilter(const UvFilter&) = delete;
    UvFilter& operator=(const UvFilter&) = delete;
    virtual ~UvFilter() = default;

    /// Called with groups that have just been read, with their times, baselines, origins and
    /// cells; it may change the cells. To flag is to make a weight 0 or negative, in files without
    /// weights to make the visibility no number.
    virtual void apply(const AUVXFile& file, UvGroups& groups) = 0;
};

}  // namespace pavane
