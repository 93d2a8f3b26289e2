#include "tessel/uvfits/UvMarks.h"

#include <cmath>

namespace pavane
{

namespace
{

/// An index in single precision is that much off, in days, after some days.
constexpr double nearTime = 2.0 / 86400;
/// What another source or selection counts as, in days.
constexpr double otherOrigin = nearTime / 8;

/// Non-zero for RR, LL, XX, YY and I.
int isParallel(int stokes)
{
    return stokes == 1 || stokes == -1 || stokes == -2 || stokes == -5 || stokes == -6;
}

}  // namespace

ABitArray usualStokes(const UvHeader& header)
{
    ABitArray marks(static_cast<int>(header.stokes.size()));
    for (int i = 0; i < marks.count(); ++i)
        marks.set(i, isParallel(header.stokes[static_cast<std::size_t>(i)]));
    if (!marks.ones())
        marks.setAll(1);
    return marks;
}

int scanOf(const std::vector<UvScan>& scans, int subarray, int source, int selection, double time,
           std::int64_t number)
{
    int nearest = -1;
    double least = nearTime;
    for (std::size_t i = 0; i < scans.size() && (nearest < 0 || least > 0); ++i) {
        const UvScan& scan = scans[i];
        if (scan.subarray != subarray || number < scan.first || number > scan.last)
            continue;
        // sources that are no table's, and selections, are called anything by some indices
        const double away = std::fmax(0, std::fmax(scan.start - time, time - scan.end)) +
                            (scan.source != source ? otherOrigin : 0) +
                            (scan.selection != selection ? otherOrigin : 0);
        if (away < least) {
            nearest = static_cast<int>(i);
            least = away;
        }
    }
    return nearest;
}

}  // namespace pavane
