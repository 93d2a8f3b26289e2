#pragma once

#include "pavane/calibration/flags/flag_points.h"
#include "tessel/api.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/uvfits/UvChoice.h"
#include "tessel/uvfits/UvMarks.h"
#include "tessel/uvfits/UvSlices.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// A rectangle in a plot of single visibilities, its edges in it.
struct UvRectangle {
    enum class Across { distance, time };  ///< wavelengths; days since 0h of the reference day
    enum class Up { amplitude, phase };    ///< Jy; degrees from the lower to the higher number
    Across across = Across::distance;
    Up up = Up::amplitude;
    double left = 0, right = 0, low = 0, high = 0;
};

/// Finds the visibilities of a file within a rectangle, in slices: those that are marked, finite
/// and not flagged, as the file's filter makes them. The file outlives it.
class PAVANE_API UvPick
{
public:
    static constexpr std::size_t mostPoints = std::size_t{1} << 22;

    /// Without marks of polarisations those are taken that `usualStokes` gives. `takesFlagged`:
    /// those of a weight of 0 or below too, to restore them.
    UvPick(AUVXFile& file, const UvRectangle& rectangle, UvMarks marks = {}, int takesFlagged = 0);
    UvPick(const UvPick&) = delete;
    UvPick& operator=(const UvPick&) = delete;

    /// Goes on with some `bytes` of the file. Non-zero while more remains; 0 when all is done, or
    /// cannot be: then `error` is not empty.
    int step(std::int64_t bytes = std::int64_t{16} << 20);
    double done() const { return slices_.done(); }  ///< 0 to 1
    /// Why it ended early, a clause without its subject; "" else.
    const std::string& error() const { return slices_.error(); }
    /// One for each time, baseline, IF and polarisation of which a channel lies within.
    const std::vector<FlagPoint>& points() const { return points_; }

private:
    void take(const UvGroups& groups, std::size_t i);

    AUVXFile& file_;
    UvRectangle rectangle_;
    UvMarks marks_;
    int takesFlagged_;
    UvChoice choice_;
    UvSlices slices_;
    std::vector<FlagPoint> points_;
};

}  // namespace pavane
