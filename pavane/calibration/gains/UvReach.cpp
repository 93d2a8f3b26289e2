#include "pavane/calibration/gains/UvReach.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pavane
{

UvReach::UvReach(AUVXFile& file, UvMarks marks)
    : file_(file), marks_(std::move(marks)), choice_(file, marks_), slices_(file)
{
}

int UvReach::step(std::int64_t bytes)
{
    const int what = UvGroups::baselines | UvGroups::origins | UvGroups::times | UvGroups::places;
    const UvHeader& header = file_.header();
    const auto perRow =
        static_cast<std::size_t>(header.ifs) * static_cast<std::size_t>(header.channels);
    return slices_.step(bytes, what, [&](const UvGroups& groups) {
        for (std::size_t i = 0; i < static_cast<std::size_t>(groups.count); ++i) {
            if (!std::isfinite(groups.time[i]) || !marks_.times.holds(groups.time[i]) ||
                groups.antenna1[i] == groups.antenna2[i])
                continue;
            const double* const frequencies = choice_.frequenciesOf(groups, i);
            double greatest = 0;
            for (std::size_t k = 0; frequencies && k < perRow; ++k) {
                places_ += frequencies[k] > 0;
                greatest = std::max(greatest, frequencies[k]);
            }
            if (const double w = std::abs(groups.w[i]) * greatest; std::isfinite(w))
                greatestW_ = std::max(greatestW_, w);
        }
    });
}

ModelWay modelWay(const ModelVisibilities& model, const UvReach& reach)
{
    if (!(model.wTurns(reach.greatestW()) < mostWTurns))
        return ModelWay::tooWide;
    const double all = static_cast<double>(model.count()) * static_cast<double>(reach.places());
    return all > mostComponentPlaces ? ModelWay::tooMany : ModelWay::components;
}

}  // namespace pavane
