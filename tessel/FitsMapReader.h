#pragma once

#include "tessel/api.h"
#include "tessel/map_header.h"

#include <memory>
#include <string>

namespace pavane
{

/// Reads a map as readFitsMap does, a few rows at a time, for those who do other things between.
class PAVANE_API FitsMapReader
{
public:
    FitsMapReader();
    FitsMapReader(const FitsMapReader&) = delete;
    FitsMapReader& operator=(const FitsMapReader&) = delete;
    ~FitsMapReader();

    /// Reads what stands before the cells; `plane` as for readFitsMap. Non-zero on success, else
    /// `error` says in one line what is wrong, without the file's name.
    int open(const std::string& file, int plane, std::string& error);
    const MapHeader& header() const { return header_; }
    int rows() const { return rows_; }
    int columns() const { return columns_; }
    /// Reads `count` rows from row `first` on into `cells`, rows one behind the other, blank cells
    /// NaN. 0 with `error` when the file ends before.
    int read(int first, int count, float* cells, std::string& error);

private:
    struct Source;
    std::unique_ptr<Source> source_;
    MapHeader header_;
    int rows_ = 0, columns_ = 0;
};

}  // namespace pavane
