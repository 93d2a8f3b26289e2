#include "pavane/calibration/ClosureReader.h"

#include <cmath>
#include <complex>

namespace pavane
{

ClosureStatistics statisticsOf(const ClosureSeries& series)
{
    ClosureStatistics found;
    found.count = series.count();
    if (!found.count)
        return found;
    constexpr double radians = 0.017453292519943295769;
    std::complex<double> sum{};
    for (const float phase : series.phase)
        sum += std::polar(1.0, phase * radians);
    found.mean = degreesOf(sum);
    double squares = 0;
    double chiSquared = 0;
    for (std::size_t i = 0; i < series.count(); ++i) {
        const double away = wrappedDegrees(series.phase[i] - found.mean);
        squares += away * away;
        if (series.model.empty() || !(series.error[i] > 0))
            continue;
        const double miss = wrappedDegrees(double{series.phase[i]} - series.model[i]);
        chiSquared += miss * miss / (double{series.error[i]} * series.error[i]);
    }
    const auto count = static_cast<double>(found.count);
    found.scatter = std::sqrt(squares / count);
    found.chiSquared = chiSquared / count;
    return found;
}

double chiSquaredOf(const ClosureRatios& ratios)
{
    double sum = 0;
    for (std::size_t i = 0; i < ratios.model.size(); ++i)
        if (const double error = ratios.error[i]; error > 0) {
            const double miss = (double{ratios.ratio[i]} - ratios.model[i]) / error;
            sum += miss * miss;
        }
    return ratios.model.empty() ? 0 : sum / static_cast<double>(ratios.model.size());
}

}  // namespace pavane
