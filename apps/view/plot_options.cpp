#include "apps/view/plot_options.h"

#include "apps/view/options.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace pavane
{

namespace
{

int readPlot(const std::string& text, ViewOptions& options, std::string& error)
{
    static constexpr std::string_view names[] = {"uvdist", "time", "closure", "bandpass"};
    const auto found = std::find(std::begin(names), std::end(names), text);
    if (found == std::end(names)) {
        error = "--plot knows uvdist, time, closure and bandpass, not '" + text + "'";
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

}  // namespace

void addPlotOptions(OptionTable<ViewOptions>& table)
{
    table.push_back({{"--plot", "", "KIND",
                      "of a data file: uvdist (amplitude against distance), time (amplitude and "
                      "phase, a panel a baseline), closure (closure phases, a panel a triangle) or "
                      "bandpass (amplitude and phase against channel); the model of --model lies "
                      "over each",
                      "uvdist time closure bandpass"},
                     readPlot});
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
    if (options.plot.kind == DataPlot::uvdist &&
        (options.plot.panels > 0 || !options.plot.baselines.empty())) {
        error = "--baselines and --panels go with --plot time, closure or bandpass";
        return 0;
    }
    return 1;
}

}  // namespace pavane
