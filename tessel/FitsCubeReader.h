#pragma once

#include "tessel/api.h"
#include "tessel/map_header.h"

#include <memory>
#include <string>

namespace pavane
{

/// Reads rows of any plane of a cube, for work that goes over many planes and holds none of them.
/// Planes count from 0 over all axes beyond the second.
class PAVANE_API FitsCubeReader
{
public:
    FitsCubeReader();
    FitsCubeReader(const FitsCubeReader&) = delete;
    FitsCubeReader& operator=(const FitsCubeReader&) = delete;
    ~FitsCubeReader();

    /// Reads what stands before the cells, and makes sure that the file holds them all. Non-zero on
    /// success, else `error` says in one line what is wrong, without the file's name.
    int open(const std::string& file, std::string& error);
    int rows() const { return rows_; }
    int columns() const { return columns_; }
    int planes() const { return planes_; }
    /// Non-zero for tile-compressed cubes: rows of a plane have to be read one behind another, from
    /// the first on, and each change of plane costs a start.
    int isPacked() const;
    /// The header of a plane that exists.
    MapHeader header(int plane) const;
    /// Reads `count` rows of `plane` from row `first` on, blank cells NaN. 0 with `error` for a
    /// plane that there is not, and when the file ends before.
    int read(int plane, int first, int count, float* cells, std::string& error);

private:
    struct Source;
    std::unique_ptr<Source> source_;
    int rows_ = 0, columns_ = 0, planes_ = 0;
};

}  // namespace pavane
