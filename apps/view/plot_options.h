#pragma once

#include "apps/options/option_table.h"

#include <string>

namespace pavane
{

struct ViewOptions;

/// What of a data file is plotted. Amplitudes of closure, a panel a quad, are chosen in the window;
/// --plot closure has those that --baselines names.
enum class DataPlot : int { uvdist, time, closure, bandpass, amplitudes };

/// Panels that a page has at most.
inline constexpr int mostPanels = 50;

/// What the command line says of plots of visibilities.
struct PlotWish {
    DataPlot kind = DataPlot::uvdist;
    int wasGiven = 0;
    std::string baselines;  ///< see chosenBaselines; "" for all
    int panels = 0;         ///< of a page; 0: as many as there are, mostPanels at most
};

/// The options of such plots, behind those that stand in the table.
void addPlotOptions(OptionTable<ViewOptions>& table);
/// Whether those that were given go together; else `error` is one line.
int checkPlotOptions(const ViewOptions& options, std::string& error);

}  // namespace pavane
