#include "tessel/uvfits/UvPlotRows.h"

#include "tessel/uvfits/UvChoice.h"
#include "tessel/uvfits/UvTimeMeans.h"

#include <new>
#include <utility>

namespace pavane
{

UvPointOrigin uvOrigin(const UvGroups& groups, int i, const UvCell& cell, double hertz,
                       const UvVisibility& value)
{
    const auto g = static_cast<std::size_t>(i);
    UvPointOrigin origin;
    origin.group = groups.first + i;
    origin.subarray = groups.subarray[g];
    origin.antenna1 = groups.antenna1[g];
    origin.antenna2 = groups.antenna2[g];
    origin.source = groups.source[g];
    origin.selection = groups.selection[g];
    origin.time = groups.time[g];
    origin.ifIndex = cell.ifIndex;
    origin.channel = cell.channel;
    origin.stokes = cell.stokes;
    origin.u = groups.u[g] * hertz;
    origin.v = groups.v[g] * hertz;
    origin.w = groups.w[g] * hertz;
    origin.value = value;
    return origin;
}

UvPlotRows::UvPlotRows(AUVXFile& file, UvMarks marks, const UvView& view, const UvRange& range,
                       std::size_t most)
    : file_(file), slices_(file), marks_(std::move(marks)), placing_(view), range_(range),
      most_(most)
{
    if (!marks_.stokes.count())
        marks_.stokes = usualStokes(file.header());
    choice_ = std::make_unique<UvChoice>(file, marks_);
    if (view.seconds > 0)
        means_ = std::make_unique<UvTimeMeans>(file, *choice_, view.seconds);
}

UvPlotRows::~UvPlotRows() = default;

int UvPlotRows::step(std::int64_t bytes)
{
    constexpr int what = UvGroups::baselines | UvGroups::origins | UvGroups::places |
                         UvGroups::times | UvGroups::cellValues;
    const int goesOn = slices_.step(bytes, what, [this](const UvGroups& groups) {
        for (int i = 0; i < groups.count; ++i)
            takeGroup(groups, i);
    });
    if (goesOn || !means_ || !error().empty())
        return goesOn;
    try {
        means_->finish([this](const UvPointOrigin& mean) { takeRow(mean); });
    } catch (const std::bad_alloc&) {
        slices_.fail("needs more memory than there is");
    }
    return 0;
}

int UvPlotRows::holds(double x, double y) const
{
    const auto isIn = [this](double px, double py) {
        return px >= range_.leastX && px <= range_.greatestX && py >= range_.leastY &&
               py <= range_.greatestY;
    };
    return isIn(x, y) || (placing_.isCoverage() && isIn(-x, -y));
}

void UvPlotRows::takeRow(const UvPointOrigin& row)
{
    if (!holds(placing_.x(row.u, row.v), placing_.y(row.v, amplitudeOf(row.value))))
        return;
    ++count_;
    if (rows_.size() < most_)
        rows_.push_back(row);
}

void UvPlotRows::takeGroup(const UvGroups& groups, int i)
{
    const auto g = static_cast<std::size_t>(i);
    if (!marks_.times.holds(groups.time[g]))
        return;
    if (means_) {
        if (!means_->add(groups, i, [this](const UvPointOrigin& mean) { takeRow(mean); }))
            slices_.fail(UvTimeMeans::tooMany);
        return;
    }
    const double* frequency = choice_->frequenciesOf(groups, g);
    const UvHeader& header = file_.header();
    const double across = placing_.x(groups.u[g], groups.v[g]);
    for (int f = 0; frequency && f < header.ifs; ++f)
        for (int c = 0; c < header.channels; ++c, ++frequency)
            for (int s = 0; s < choice_->stokesCount() && *frequency > 0; ++s) {
                const UvVisibility value = file_.visibility(groups, i, f, c, s);
                if (!choice_->takesStokes(s) || !(value.weight > 0) || !isFinite(value) ||
                    !holds(across * *frequency,
                           placing_.y(groups.v[g] * *frequency, amplitudeOf(value))))
                    continue;
                ++count_;
                if (rows_.size() < most_)
                    rows_.push_back(uvOrigin(groups, i, {f, c, s}, *frequency, value));
            }
}

}  // namespace pavane
