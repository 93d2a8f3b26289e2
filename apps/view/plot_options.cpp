#include "apps/view/plot_options.h"

#include "apps/view/options.h"
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

}  // namespace

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
    return error.empty();
}

}  // namespace pavane
