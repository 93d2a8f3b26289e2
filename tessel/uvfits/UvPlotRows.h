#pragma once

#include "tessel/api.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/uvfits/UvMarks.h"
#include "tessel/uvfits/UvSlices.h"
#include "tessel/uvfits/UvView.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pavane
{

class UvChoice;
class UvTimeMeans;

/// A range of x and y, both ends included; none while the least is above the greatest.
struct UvRange {
    double leastX = 1, greatestX = 0, leastY = 1, greatestY = 0;
};

/// A plotted visibility, or mean of some, and where it comes from; numbers as UvGroups has them,
/// indices from 0.
struct UvPointOrigin {
    std::int64_t group = 0;  ///< of a mean the first
    int subarray = 1, antenna1 = -1, antenna2 = -1;
    int source = 1, selection = 1;
    double time = 0;
    int ifIndex = 0, channel = 0, stokes = 0;
    double u = 0, v = 0, w = 0;  ///< wavelengths
    UvVisibility value;
    std::int64_t count = 1;  ///< visibilities that are in it
};

/// Which visibility of a group, from 0.
struct UvCell {
    int ifIndex, channel, stokes;
};

/// A visibility of group `i`, at a frequency of `hertz`.
UvPointOrigin uvOrigin(const UvGroups& groups, int i, const UvCell& cell, double hertz,
                       const UvVisibility& value);

/// The visibilities that a rectangle of a plot holds, in the order of the file: each one that is
/// plotted there (UvPlotPoints), of the coverage all hands, and those whose mirror image lies in
/// it; where means are plotted, these, as they end. Reads all groups of the file once, in slices.
/// May be dropped at any time. The file outlives it.
class PAVANE_API UvPlotRows
{
public:
    static constexpr std::size_t usualMost = 200000;

    /// `range`: x and y of the view. Of more than `most` visibilities the first are kept.
    UvPlotRows(AUVXFile& file, UvMarks marks, const UvView& view, const UvRange& range,
               std::size_t most = usualMost);
    UvPlotRows(const UvPlotRows&) = delete;
    UvPlotRows& operator=(const UvPlotRows&) = delete;
    ~UvPlotRows();

    /// Goes on with some `bytes` of the file, one block at the least. Non-zero while more remains;
    /// 0 when all is done, or cannot be: then `error` is not empty.
    int step(std::int64_t bytes = std::int64_t{16} << 20);
    /// 0 to 1.
    double done() const { return slices_.done(); }
    /// Why it ended early, a clause without its subject; "" else.
    const std::string& error() const { return slices_.error(); }
    const std::vector<UvPointOrigin>& rows() const { return rows_; }
    /// Those of now, which are no longer kept.
    std::vector<UvPointOrigin> take() { return std::exchange(rows_, {}); }
    /// Visibilities so far that lie in it, kept or not.
    std::int64_t count() const { return count_; }

private:
    void takeGroup(const UvGroups& groups, int i);
    void takeRow(const UvPointOrigin& row);
    int holds(double x, double y) const;

    AUVXFile& file_;
    UvSlices slices_;
    UvMarks marks_;
    UvPlacing placing_;
    UvRange range_;
    std::size_t most_;
    std::int64_t count_ = 0;
    std::vector<UvPointOrigin> rows_;
    std::unique_ptr<UvChoice> choice_;
    std::unique_ptr<UvTimeMeans> means_;  ///< null: each visibility by itself
};

}  // namespace pavane
