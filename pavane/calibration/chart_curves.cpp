#include "pavane/calibration/chart_curves.h"

#include "tessel/plain_text.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

constexpr double gap = std::numeric_limits<double>::quiet_NaN();

/// A line breaks where there is nothing for longer than some steps and a part of all: it goes
/// through the pauses between scans, not through those of an antenna that has set.
double longestStep(const std::vector<double>& x)
{
    std::vector<double> steps;
    double all = 0;
    for (std::size_t i = 1; i < x.size(); ++i)
        if (x[i] > x[i - 1]) {
            steps.push_back(x[i] - x[i - 1]);
            all += steps.back();
        }
    if (steps.empty())
        return 0;
    const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
    std::nth_element(steps.begin(), middle, steps.end());
    constexpr double stepsOfPause = 5;
    constexpr double partOfAll = 0.35;
    return std::max(stepsOfPause * *middle, partOfAll * all);
}

}  // namespace

CString chartHeader(const AUVXFile& file)
{
    const UvHeader& header = file.header();
    CString text = plainText(header.object);
    if (header.frequency > 0)
        text.append(text.empty() ? "" : "   ")
            .append(valToStr(header.frequency / 1e9, 4))
            .append("\u00a0GHz");
    const std::string date = header.dateObs.substr(0, header.dateObs.find('T'));
    return date.empty() ? text : text + (text.empty() ? "" : "   ") + plainText(date);
}

ChartCurve chartLine(const std::vector<double>& x, double scaleX, const std::vector<float>& y,
                     COLORREF color)
{
    ChartCurve curve;
    curve.isLine = 1;
    curve.color = color;
    const double longest = longestStep(x);
    for (std::size_t i = 0; i < y.size(); ++i) {
        if (i > 0 && (x[i] < x[i - 1] || x[i] - x[i - 1] > longest)) {
            curve.x.push_back(curve.x.back());
            curve.y.push_back(gap);
        }
        curve.x.push_back(x[i] * scaleX);
        curve.y.push_back(double{y[i]});
    }
    return curve;
}

double roundedUp(double value)
{
    constexpr double rounds[] = {1, 1.2, 1.5, 2, 2.5, 3, 4, 5, 6, 8, 10};
    const double decade = std::pow(10, std::floor(std::log10(value)));
    for (const double round : rounds)
        if (value <= round * decade)
            return round * decade;
    return value;
}

double phaseRange(double most)
{
    for (const double range : {10.0, 30.0, 60.0, 90.0})
        if (most <= range)
            return range;
    return 180;
}

}  // namespace pavane
