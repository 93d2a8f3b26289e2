#pragma once

#include "apps/options/option_table.h"
#include "pavane/measures/fits/GaussianFit.h"
#include "pavane/measures/profiles/MapProfile.h"

#include <string>

namespace pavane
{

struct ViewOptions;

// The names of tables of what is measured on a map, beside that of its areas.
inline constexpr const char* profileTableName = "profile";
inline constexpr const char* spectrumTableName = "spectrum";
inline constexpr const char* histogramTableName = "histogram";
inline constexpr const char* fitTableName = "fit";

/// What the command line says of profiles and of fits of Gaussians.
struct ProfileWish {
    ProfileLine line;  ///< no corner when none was asked for
    int hasAcross = 0;
    GaussianFitWish fit;
    int hasFit = 0;
    std::string residual;  ///< a file, or ""

    int wanted() const { return !line.corners.empty(); }
};

/// Reads corners in pixels from 1 and perhaps a width behind them, all between commas. 0 with
/// `error`, which names the option.
int readProfileLine(const std::string& text, const char* option, ProfileLine& line,
                    std::string& error);

/// Whether it is the name of a table of what is measured on a map.
int isMeasuredTable(const std::string& name);

/// The options of profiles and fits, all of which have `traits`, behind those that stand in the
/// table.
void addProfileOptions(OptionTable<ViewOptions>& table, int traits);
/// Whether those that were given go together; else `error` is one line.
int checkProfileOptions(const ViewOptions& options, std::string& error);
/// Whether nothing that is asked for is of one plane, so that a cube needs none to be chosen.
int isOfAllPlanes(const ViewOptions& options);

}  // namespace pavane
