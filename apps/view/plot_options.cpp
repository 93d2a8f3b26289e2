#include "apps/view/plot_options.h"

#include "apps/view/options.h"
#include "apps/view/visibility_table.h"
#include "pavane/calibration/uv_colours.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string_view>

namespace pavane
{

namespace
{

constexpr double mostDegrees = 360;
constexpr double leastMeans = 1e-3, mostMeans = 1e6;

int readPlot(const std::string& text, ViewOptions& options, std::string& error)
{
    // the amplitudes of closure are chosen by --baselines
    static constexpr std::string_view names[] = {"uvdist",   "time", "closure",
                                                 "bandpass", "",     "coverage"};
    const auto found = std::find(std::begin(names), std::end(names), text);
    if (text.empty() || found == std::end(names)) {
        error = "--plot knows uvdist, time, closure, bandpass and coverage, not '" + text + "'";
        return 0;
    }
    options.plot.kind = static_cast<DataPlot>(found - std::begin(names));
    options.plot.wasGiven = 1;
    return 1;
}

int readBaselines(const std::string& text, ViewOptions& options, std::string&)
{
    options.plot.baselines = text;
    return 1;
}

int readPanels(const std::string& text, ViewOptions& options, std::string& error)
{
    if (!stoval(text, options.plot.panels) || options.plot.panels < 1 ||
        options.plot.panels > mostPanels) {
        error = "--panels wants a number from 1 to " + std::to_string(mostPanels) + ", not '" +
                text + "'";
        return 0;
    }
    return 1;
}

int readAngle(const std::string& text, ViewOptions& options, std::string& error)
{
    options.plot.hasAngle = readDirection(text, options.plot.angle);
    if (options.plot.hasAngle)
        return 1;
    error = "--uv-angle wants degrees from -360 to 360, not '" + text + "'";
    return 0;
}

int readColour(const std::string& text, ViewOptions& options, std::string& error)
{
    options.plot.hasColour = uvColourOf(text, options.plot.colour);
    if (options.plot.hasColour)
        return 1;
    error = "--colour-by knows none, baseline, telescope, if and source, not '" + text + "'";
    return 0;
}

int readAverage(const std::string& text, ViewOptions& options, std::string& error)
{
    if (readMeans(text, options.plot.seconds) && options.plot.seconds > 0)
        return 1;
    error = "--average wants seconds from 0.001 to 1000000, not '" + text + "'";
    return 0;
}

}  // namespace

int readMeans(const std::string& text, double& seconds)
{
    double read = 0;
    if (!stoval(text, read) || (read != 0 && !(read >= leastMeans && read <= mostMeans)))
        return 0;
    seconds = read;
    return 1;
}

std::string plotRefusal(DataPlot kind, UvColour colour, double seconds)
{
    if (isOfPoints(kind))
        return {};
    if (colour == UvColour::baseline || colour == UvColour::telescope)
        return "colours of baselines and telescopes are of distance and coverage: in other plots "
               "each has panels of its own";
    if (colour == UvColour::source && (kind == DataPlot::closure || kind == DataPlot::amplitudes))
        return "closure phases and amplitudes have no colours of sources: mark one source";
    if (seconds > 0 && kind == DataPlot::bandpass)
        return "the bandpass is a mean over all times";
    return {};
}

int readDirection(const std::string& text, double& degrees)
{
    double read = 0;
    if (!stoval(text, read) || !(std::fabs(read) <= mostDegrees))
        return 0;
    degrees = read;
    return 1;
}

void addPlotOptions(OptionTable<ViewOptions>& table)
{
    table.push_back({{"--plot", "", "KIND",
                      "of a data file: uvdist (amplitude against distance), time (amplitude and "
                      "phase, a panel a baseline), closure (closure phases, a panel a triangle), "
                      "bandpass (amplitude and phase against channel) or coverage (v against u); "
                      "the model of --model lies over each but the last",
                      "uvdist time closure bandpass coverage"},
                     readPlot});
    table.push_back({{"--uv-angle", "", "DEG",
                      "plot amplitude against the distance projected on this direction, in degrees "
                      "from north (v) through east (u)"},
                     readAngle});
    table.push_back(
        {{"--colour-by", "", "WHAT",
          "colour visibilities by what they are of, with a legend: baseline, telescope, "
          "if, source or none",
          "none baseline telescope if source"},
         readColour});
    table.push_back({{"--average", "", "SECONDS",
                      "plot means over so long, of complex values with their weights, in intervals "
                      "from 0h of the reference date on, of each baseline, source, IF, channel and "
                      "polarisation by itself; not of a bandpass"},
                     readAverage});
    table.push_back(
        {{"--baselines", "", "LIST",
          "of these plots only some panels: telescopes by name or number with commas between them; "
          "BR all baselines with BR, BR-FD that baseline, or the triangles with it, BR-FD-HN that "
          "triangle, A-B-C-D the closure amplitude AB CD / AC BD"},
         readBaselines});
    table.push_back(
        {{"--panels", "", "N",
          "panels of a page, 1 to 50; with more of them there are more pages, in F.png and "
          "F.svg a file each: F-1.png, F-2.png ..."},
         readPanels});
}

int checkPlotOptions(const ViewOptions& options, std::string& error)
{
    const PlotWish& plot = options.plot;
    if (isOfPoints(plot.kind) && (plot.panels > 0 || !plot.baselines.empty()))
        error = "--baselines and --panels go with --plot time, closure or bandpass";
    else if (plot.hasAngle && plot.kind != DataPlot::uvdist)
        error = "--uv-angle goes with --plot uvdist";
    else if (plot.kind == DataPlot::coverage && !options.model.empty())
        error = "--plot coverage draws no amplitudes of a --model";
    else if (!options.tables.empty() && options.tables.back().file.empty() &&
             options.tables.back().table == visibilityTable)
        error = "--table visibilities wants a --tsv behind it";
    else if (const std::string why = plotRefusal(plot.kind, plot.colour, plot.seconds);
             !why.empty())
        error = (plot.seconds > 0 && plot.kind == DataPlot::bandpass ? "--average: "
                                                                     : "--colour-by: ") +
                why;
    return error.empty();
}

}  // namespace pavane
