#include "pavane/calibration/series_points.h"

namespace pavane
{

std::vector<FlagPoint> seriesPoints(const BaselineSeries& series, const UvBaseline& baseline,
                                    const SeriesRectangle& rectangle)
{
    std::vector<FlagPoint> points;
    const std::vector<float>& values = rectangle.isPhase ? series.phase : series.amplitude;
    for (std::size_t i = 0; i < series.count(); ++i)
        if (series.x[i] >= rectangle.left && series.x[i] <= rectangle.right &&
            values[i] >= rectangle.low && values[i] <= rectangle.high)
            points.push_back(
                {baseline.subarray, baseline.first, baseline.second, series.x[i], -1, 0, 0});
    return points;
}

}  // namespace pavane
