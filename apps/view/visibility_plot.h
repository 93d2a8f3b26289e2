#pragma once

#include "apps/view/plot_options.h"
#include "pavane/calibration/PanelChart.h"
#include "pavane/calibration/visibility_charts.h"
#include "tessel/uvfits/AUVXFile.h"

#include <functional>
#include <string>
#include <vector>

namespace pavane
{

/// Of the baselines those that a list names, as --baselines has it; all of an empty list.
/// Non-zero on success; else `error` tells which name is unknown, or that nothing is left.
int chosenBaselines(const AUVXFile& file, const std::string& list,
                    std::vector<UvBaseline>& baselines, std::string& error);
/// What --plot closure shows of these baselines: the triangles that a list names; of an empty list
/// an independent set. A telescope stands for all triangles with it, two for those with their
/// baseline, three for one; four, A-B-C-D, for their closure amplitude.
int chosenClosures(const AUVXFile& file, const std::string& list,
                   const std::vector<UvBaseline>& baselines, ClosureChoice& choice,
                   std::string& error);
/// Of triangles that the user chose those whose baselines are left; `error` where none is.
int keepJoined(const std::vector<ClosureTriangle>& chosen, const std::vector<UvBaseline>& baselines,
               ClosureChoice& choice, std::string& error);
/// An independent set of closure amplitudes.
int chosenAmplitudes(const std::vector<UvBaseline>& baselines, ClosureChoice& choice,
                     std::string& error);

/// Reads a file and makes the panels of a plot, which is not uvdist. `baselines` are those that
/// the file has; closure phases without a list do without them. `isGoing` is told the share that is
/// done, and ends it with 0. Non-zero on success; else `error` is a clause without its subject.
int readVisibilityChart(AUVXFile& file, const PlotWish& wish,
                        const std::vector<UvBaseline>& baselines, const UvMarks& marks,
                        const AComponents& model, const std::function<int(double)>& isGoing,
                        PanelChart& chart, std::string& error);

}  // namespace pavane
