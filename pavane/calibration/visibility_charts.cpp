#include "pavane/calibration/visibility_charts.h"

#include "pavane/calibration/chart_curves.h"
#include "pavane/calibration/uv_colours.h"
#include "tessel/plain_text.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

constexpr double nearKilometres = 10;
constexpr double gap = std::numeric_limits<double>::quiet_NaN();
constexpr COLORREF phaseColor = RGB(150, 60, 0);
/// Of their scales' hue, brighter than the points that they lie on.
constexpr COLORREF amplitudeModelColor = RGB(60, 160, 255), phaseModelColor = RGB(255, 130, 20);
constexpr double roomAbove = 1.02;

ChartCurve pointsOf(const std::vector<double>& x, double scaleX, const std::vector<float>& y,
                    const std::vector<float>& error, COLORREF color)
{
    ChartCurve curve;
    curve.color = color;
    for (const double value : x)
        curve.x.push_back(value * scaleX);
    curve.y.assign(y.begin(), y.end());
    curve.error.assign(error.begin(), error.end());
    return curve;
}

/// A line through the channels of each IF, which begins and ends as wide as a channel: it may be
/// the only one.
ChartCurve lineOfChannels(const std::vector<double>& x, const std::vector<float>& y, int channels,
                          COLORREF color)
{
    constexpr double half = 0.4;
    ChartCurve curve;
    curve.isLine = 1;
    curve.color = color;
    const auto add = [&](double at, double value) {
        curve.x.push_back(at);
        curve.y.push_back(value);
    };
    const auto ifOf = [&](std::size_t i) { return std::floor((x[i] - 1) / channels); };
    for (std::size_t i = 0; i < y.size(); ++i) {
        const double value = double{y[i]};
        if (i == 0 || ifOf(i) != ifOf(i - 1))
            add(x[i] - half, value);
        add(x[i], value);
        if (i + 1 < y.size() && ifOf(i) == ifOf(i + 1))
            continue;
        add(x[i] + half, value);
        add(x[i] + half, gap);
    }
    return curve;
}

/// The greatest that a value with its error reaches, 0 without a finite one.
double reachOf(const std::vector<float>& values, const std::vector<float>& errors)
{
    double most = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double size = std::abs(double{values[i]});
        const double error = i < errors.size() ? double{errors[i]} : 0;
        if (std::isfinite(size))
            most = std::max(most, std::isfinite(error) && error > 0 ? size + error : size);
    }
    return most;
}

/// The greatest amplitude that is shown. Errors count up to the size of the amplitudes: weights may
/// be of no scale, and a lone one next to nothing, and would leave all points on the axis.
double amplitudeReach(const BaselineSeries& s)
{
    const double values = std::max(reachOf(s.amplitude, {}), reachOf(s.modelAmplitude, {}));
    const double errors = reachOf(s.amplitude, s.amplitudeError);
    return values > 0 ? std::clamp(errors, values, 2 * values) : errors;
}

/// The parts of a reader's division that have points, with their colours.
struct ColouredParts {
    UvColourKey key;
    std::vector<std::size_t> parts;  ///< of the classes of the key

    ColouredParts(const AUVXFile& file, const BaselineReader& reader)
    {
        const UvColour by = reader.division().colour;
        std::vector<UvClass> classes;
        for (std::size_t p = 0; p < reader.parts() && reader.parts() > 1; ++p) {
            const int number = by == UvColour::ifs         ? static_cast<int>(p)
                               : p < file.sources().size() ? file.sources()[p].id
                                                           : -1;
            UvClass one = {{1, number, 0}, 0};
            for (std::size_t b = 0; b < reader.baselines().size(); ++b)
                one.points += static_cast<std::int64_t>(reader.series(b, p).count());
            if (one.points == 0)
                continue;
            classes.push_back(one);
            parts.push_back(p);
        }
        key = uvColours(file, by, classes);
        if (parts.empty())
            parts.push_back(0);
    }
    const UvColourKey::Entry* entryOf(std::size_t i) const
    {
        return key.isEmpty() ? nullptr : &key.entries[key.entryOfClass[i]];
    }
};

void setPhases(ChartScale& scale, double range)
{
    scale.least = -range;
    scale.greatest = range;
    scale.period = 360;
}

/// Natural ones; of 0 a gap.
std::vector<float> logarithms(const std::vector<float>& values)
{
    std::vector<float> found;
    found.reserve(values.size());
    for (const float value : values)
        found.push_back(value > 0 ? std::log(value) : static_cast<float>(gap));
    return found;
}

}  // namespace

CString meansText(double seconds)
{
    constexpr int digits = 6;
    return "means of\u00a0" + valToStr(seconds, digits) + "\u00a0s";
}

CString telescopeName(const AUVXFile& file, const ClosureTelescope& telescope)
{
    const AUVXTlscItem* const item = file.telescope(telescope.subarray, telescope.number);
    const CString name = item ? plainText(item->name) : CString();
    return name.empty() ? CString(std::to_string(telescope.number)) : name;
}

CString baselineName(const AUVXFile& file, const UvBaseline& b)
{
    const CString name = telescopeName(file, {b.subarray, b.first}) + "-" +
                         telescopeName(file, {b.subarray, b.second});
    return b.subarray == 1 ? name : name + "/" + std::to_string(b.subarray);
}

CString triangleName(const AUVXFile& file, const ClosureTriangle& t)
{
    const CString name = telescopeName(file, {t.subarray, t.telescopes[0]}) + "-" +
                         telescopeName(file, {t.subarray, t.telescopes[1]}) + "-" +
                         telescopeName(file, {t.subarray, t.telescopes[2]});
    return t.subarray == 1 ? name : name + "/" + std::to_string(t.subarray);
}

int isTrivial(const AUVXFile& file, const ClosureTriangle& t)
{
    for (std::size_t k = 0; k < 3; ++k)
        if (file.lengthOf({t.subarray, t.telescopes[k], t.telescopes[(k + 1) % 3], 0}) <
            nearKilometres)
            return 1;
    return 0;
}

PanelChart closureChart(const AUVXFile& file, const ClosureReader& reader,
                        const std::vector<std::size_t>& triangles)
{
    PanelChart chart;
    chart.header = chartHeader(file);
    chart.nameX = "Time";
    chart.isTime = 1;
    double most = 0;
    for (const std::size_t t : triangles)
        for (std::size_t p = 0; p < reader.parts().size(); ++p) {
            const ClosureSeries& series = reader.series(t, p);
            most = std::max({most, reachOf(series.phase, series.error), reachOf(series.model, {})});
        }
    const double range = phaseRange(most);
    for (const std::size_t t : triangles) {
        ChartPanel panel;
        panel.caption = triangleName(file, reader.triangles()[t]);
        ChartScale scale;
        scale.name = "Closure phase [\u00b0]";
        setPhases(scale, range);
        double chiSquared = 0;
        std::size_t count = 0;
        std::vector<ChartCurve> models;
        for (std::size_t p = 0; p < reader.parts().size(); ++p) {
            const ClosureSeries& series = reader.series(t, p);
            const ClosureStatistics found = statisticsOf(series);
            chiSquared += found.chiSquared * static_cast<double>(found.count);
            count += found.count;
            scale.curves.push_back(pointsOf(series.time, secondsPerDay, series.phase, series.error,
                                            chartColors[p % std::size(chartColors)]));
            scale.curves.back().name = partName(file, reader.parts()[p]);
            if (reader.hasModel())
                models.push_back(chartLine(series.time, secondsPerDay, series.model));
        }
        for (ChartCurve& model : models)
            scale.curves.push_back(std::move(model));
        if (reader.hasModel() && count > 0)
            panel.caption +=
                "   \u03c7\u00b2 " + valToStr(chiSquared / static_cast<double>(count), 3);
        panel.scales.push_back(std::move(scale));
        chart.panels.push_back(std::move(panel));
    }
    return chart;
}

PanelChart baselineChart(const AUVXFile& file, const BaselineReader& reader, BaselinePlot plot,
                         const std::vector<std::size_t>& baselines)
{
    PanelChart chart;
    const int isTime = plot == BaselinePlot::time;
    chart.header = chartHeader(file);
    if (const double seconds = reader.division().seconds; seconds > 0)
        chart.header.append("   ").append(meansText(seconds));
    chart.nameX = isTime ? "Time" : "Channel of all IFs";
    chart.isTime = isTime;
    chart.isWholeX = !isTime;
    const double scaleX = isTime ? secondsPerDay : 1;
    const int channels = isTime ? 0 : file.header().channels;
    const ColouredParts coloured(file, reader);
    chart.isLegendAbove = !coloured.key.isEmpty();
    // a baseline of which nothing was read yet has a line, too: more data change no other numbers
    const bool hasModel = std::any_of(baselines.begin(), baselines.end(), [&](std::size_t b) {
        return std::any_of(coloured.parts.begin(), coloured.parts.end(),
                           [&](std::size_t p) { return !reader.series(b, p).modelPhase.empty(); });
    });
    for (const std::size_t b : baselines) {
        ChartPanel panel;
        panel.caption = baselineName(file, reader.baselines()[b]);
        ChartScale amplitude;
        ChartScale phase;
        amplitude.name = "Amplitude [%sJy]";
        phase.name = "Phase [\u00b0]";
        setPhases(phase, 180);
        if (!coloured.key.isEmpty()) {  // colours no longer tell them apart
            phase.name = "Phase (+) [\u00b0]";
            amplitude.isPlain = phase.isPlain = 1;
        }
        double most = 0;
        for (const std::size_t p : coloured.parts)
            most = std::max(most, amplitudeReach(reader.series(b, p)));
        if (most > 0) {
            amplitude.least = 0;
            amplitude.greatest = roundedUp(roomAbove * most);
        }
        for (std::size_t i = 0; i < coloured.parts.size(); ++i) {
            const BaselineSeries& s = reader.series(b, coloured.parts[i]);
            const UvColourKey::Entry* const entry = coloured.entryOf(i);
            amplitude.curves.push_back(pointsOf(s.x, scaleX, s.amplitude, s.amplitudeError,
                                                entry ? entry->color : chartColors[0]));
            phase.curves.push_back(
                pointsOf(s.x, scaleX, s.phase, s.phaseError, entry ? entry->color : phaseColor));
            if (!entry)
                continue;
            phase.curves.back().marker = graphPointCross;
            amplitude.curves.back().name = entry->name;
        }
        for (std::size_t i = 0; i < coloured.parts.size() && hasModel; ++i) {
            const BaselineSeries& s = reader.series(b, coloured.parts[i]);
            const auto model = [&](const std::vector<float>& y, COLORREF color) {
                return isTime ? chartLine(s.x, scaleX, y, color)
                              : lineOfChannels(s.x, y, channels, color);
            };
            amplitude.curves.push_back(model(s.modelAmplitude, amplitudeModelColor));
            phase.curves.push_back(model(s.modelPhase, phaseModelColor));
        }
        panel.scales = {std::move(amplitude), std::move(phase)};
        chart.panels.push_back(std::move(panel));
    }
    return chart;
}

CString quadName(const AUVXFile& file, const ClosureQuad& q)
{
    CString name;
    for (const int number : q.telescopes)
        name.append(name.empty() ? "" : "-").append(telescopeName(file, {q.subarray, number}));
    return q.subarray == 1 ? name : name + "/" + std::to_string(q.subarray);
}

void addAmplitudePanels(const AUVXFile& file, const ClosureReader& reader,
                        const std::vector<std::size_t>& quads, PanelChart& chart)
{
    for (const std::size_t q : quads) {
        ChartPanel panel;
        panel.caption = quadName(file, reader.quads()[q]);
        ChartScale scale;
        scale.name = "ln closure amplitude";
        double least = std::numeric_limits<double>::max();
        double greatest = std::numeric_limits<double>::lowest();
        double chiSquared = 0;
        std::size_t count = 0;
        std::vector<ChartCurve> models;
        for (std::size_t p = 0; p < reader.parts().size(); ++p) {
            const ClosureRatios& ratios = reader.ratios(q, p);
            chiSquared += chiSquaredOf(ratios) * static_cast<double>(ratios.count());
            count += ratios.count();
            std::vector<float> errors;
            for (std::size_t i = 0; i < ratios.count(); ++i)
                errors.push_back(ratios.error[i] / ratios.ratio[i]);
            const std::vector<float> data = logarithms(ratios.ratio);
            const std::vector<float> model = logarithms(ratios.model);
            // an error may be any number of times its ratio; its bar ends with the plot
            for (const std::vector<float>* each : {&data, &model})
                for (const float value : *each)
                    if (std::isfinite(value)) {
                        least = std::min(least, std::floor(2 * double{value}) / 2);
                        greatest = std::max(greatest, std::ceil(2 * double{value}) / 2);
                    }
            scale.curves.push_back(pointsOf(ratios.time, secondsPerDay, data, errors,
                                            chartColors[p % std::size(chartColors)]));
            scale.curves.back().name = partName(file, reader.parts()[p]);
            if (reader.hasModel())
                models.push_back(chartLine(ratios.time, secondsPerDay, model));
        }
        for (ChartCurve& model : models)
            scale.curves.push_back(std::move(model));
        if (least <= greatest) {
            scale.least = least < greatest ? least : least - 1;
            scale.greatest = least < greatest ? greatest : greatest + 1;
        }
        if (reader.hasModel() && count > 0)
            panel.caption +=
                "   \u03c7\u00b2 " + valToStr(chiSquared / static_cast<double>(count), 3);
        panel.scales.push_back(std::move(scale));
        chart.panels.push_back(std::move(panel));
    }
}

}  // namespace pavane
