#pragma once

#include "apps/options/option_table.h"
#include "pavane/calibration/BaselineReader.h"
#include "tessel/uvfits/UvView.h"

#include <string>

namespace pavane
{

struct ViewOptions;

/// What of a data file is plotted. Amplitudes of closure, a panel a quad, are chosen in the window;
/// --plot closure has those that --baselines names.
enum class DataPlot : int { uvdist, time, closure, bandpass, amplitudes, coverage };

/// Whether a plot is one of single visibilities, in one axis, and not of panels.
inline int isOfPoints(DataPlot kind)
{
    return kind == DataPlot::uvdist || kind == DataPlot::coverage;
}

/// Panels that a page has at most.
inline constexpr int mostPanels = 50;

/// What the command line says of plots of visibilities.
struct PlotWish {
    DataPlot kind = DataPlot::uvdist;
    int wasGiven = 0;
    std::string baselines;  ///< see chosenBaselines; "" for all
    int panels = 0;         ///< of a page; 0: as many as there are, mostPanels at most
    int hasAngle = 0;
    double angle = 0;  ///< of the direction on which distances are projected (UvView)
    int hasColour = 0;
    UvColour colour = UvColour::none;
    double seconds = 0;  ///< above 0: means over so long

    /// What plots of single visibilities show.
    UvView view() const
    {
        return {kind == DataPlot::coverage ? UvView::Kind::coverage
                : hasAngle                 ? UvView::Kind::projected
                                           : UvView::Kind::distance,
                hasAngle ? angle : 0, colour, seconds};
    }
    /// What plots in panels keep apart.
    BaselineDivision division() const { return {colour, seconds}; }
};

/// Why a plot cannot have these colours or means; "" when it can.
std::string plotRefusal(DataPlot kind, UvColour colour, double seconds);
/// Seconds of means, from 0.001 to a million, 0 for none. 0, and nothing else, for others.
int readMeans(const std::string& text, double& seconds);

/// A direction in the plane of u and v: degrees from -360 to 360. 0, and nothing else, for others.
int readDirection(const std::string& text, double& degrees);
/// The options of such plots, behind those that stand in the table.
void addPlotOptions(OptionTable<ViewOptions>& table);
/// Whether those that were given go together; else `error` is one line.
int checkPlotOptions(const ViewOptions& options, std::string& error);

}  // namespace pavane
