#include "pavane/calibration/flags/UvPick.h"

#include <cmath>
#include <utility>

namespace pavane
{

namespace
{

constexpr double degreesOfRadian = 57.295779513082320877;

UvMarks withStokes(UvMarks marks, const UvHeader& header)
{
    if (!marks.stokes.count())
        marks.stokes = usualStokes(header);
    return marks;
}

}  // namespace

UvPick::UvPick(AUVXFile& file, const UvRectangle& rectangle, UvMarks marks, int takesFlagged)
    : file_(file), rectangle_(rectangle), marks_(withStokes(std::move(marks), file.header())),
      takesFlagged_(takesFlagged), choice_(file, marks_), slices_(file)
{
}

int UvPick::step(std::int64_t bytes)
{
    const int what = UvGroups::baselines | UvGroups::origins | UvGroups::times | UvGroups::places |
                     UvGroups::cellValues;
    return slices_.step(bytes, what, [this](const UvGroups& groups) {
        for (std::size_t i = 0; i < static_cast<std::size_t>(groups.count); ++i)
            take(groups, i);
        if (points_.size() > mostPoints)
            slices_.fail("has more visibilities there than are flagged one by one; choose fewer");
    });
}

void UvPick::take(const UvGroups& groups, std::size_t i)
{
    const double time = groups.time[i];
    const int isByTime = rectangle_.across == UvRectangle::Across::time;
    if (!std::isfinite(time) || !marks_.times.holds(time) ||
        (isByTime && !(time >= rectangle_.left && time <= rectangle_.right)))
        return;
    const double* const frequencies = choice_.frequenciesOf(groups, i);
    if (!frequencies)
        return;
    const UvHeader& header = file_.header();
    const double seconds = std::hypot(groups.u[i], groups.v[i]);
    const int isTurned = groups.antenna1[i] > groups.antenna2[i];
    for (int f = 0; f < header.ifs; ++f)
        for (int s = 0; s < choice_.stokesCount(); ++s) {
            int isWithin = 0;
            for (int c = 0; choice_.takesStokes(s) && c < header.channels && !isWithin; ++c) {
                const double hertz = frequencies[f * header.channels + c];
                const double distance = seconds * hertz;
                if (!(hertz > 0) ||
                    (!isByTime && !(distance >= rectangle_.left && distance <= rectangle_.right)))
                    continue;
                const UvVisibility v = file_.visibility(groups, static_cast<int>(i), f, c, s);
                if (!std::isfinite(v.real) || !std::isfinite(v.imaginary) ||
                    (!takesFlagged_ && !(v.weight > 0)))
                    continue;
                const double up =
                    rectangle_.up == UvRectangle::Up::amplitude
                        ? std::hypot(double{v.real}, double{v.imaginary})
                        : (isTurned ? -1 : 1) * std::atan2(v.imaginary, v.real) * degreesOfRadian;
                isWithin = up >= rectangle_.low && up <= rectangle_.high;
            }
            if (isWithin)
                points_.push_back({groups.subarray[i], groups.antenna1[i], groups.antenna2[i], time,
                                   f, header.stokes[static_cast<std::size_t>(s)], 0});
        }
}

}  // namespace pavane
