#pragma once

#include "apps/options/option_table.h"
#include "pavane/measures/maps/polarisation.h"

#include <string>
#include <string_view>

namespace pavane
{

struct ViewOptions;

/// What the command line says of what lies over the map, and where Q and U come from.
struct OverlayWish {
    std::string contours;  ///< the map whose contours are drawn; "" for those of the map itself
    int vectors = 0;
    PolarKind length = PolarKind::degree;  ///< of vectors
    std::string stokesQ, stokesU;          ///< files; "": planes of the map's own

    int wanted() const { return vectors || !contours.empty(); }
};

/// The options of overlays, all of which have `traits`, behind those that stand in the table.
void addOverlayOptions(OptionTable<ViewOptions>& table, int traits);
/// Non-zero for one of them: they make no sense for a file of visibilities.
int isOverlayOption(std::string_view name);
/// Whether those that were given go together; else `error` is one line.
int checkOverlayOptions(const ViewOptions& options, std::string& error);

}  // namespace pavane
