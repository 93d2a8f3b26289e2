#pragma once

#include "apps/view/inputs.h"
#include "apps/view/options.h"
#include "pavane/measures/areas/AreaTable.h"
#include "pavane/measures/fits/fit_table.h"
#include "pavane/measures/profiles/NumberTable.h"

#include <string>
#include <vector>

namespace pavane
{

/// The tables of what is measured on a map; those that nobody asked for are empty.
struct MapTables {
    AreaTable areas;
    NumberTable profile, spectrum, histogram, fit;
    std::vector<NamedFit> fits;

    /// Of a name that isMeasuredTable knows; null for others.
    const NumberTable* numbersOf(const std::string& name) const;
};

/// The cells of an area by their name.
struct NamedCells {
    CString name;
    AreaCells cells;
};

/// Those of the areas; without any one of the whole map, whose mask is all ones. 0 with `error`
/// without memory.
int cellsOfAreas(const ViewInputs& inputs, std::vector<NamedCells>& all, std::string& error);

/// Fills the tables that the options ask for from the map that was read, spectra from the planes of
/// its file. Non-zero on success; else 0 and one line in `error` that names the file. `notes` gets
/// what is not as it was asked for.
int fillMapTables(const ViewOptions& options, const ViewInputs& inputs, MapTables& tables,
                  std::vector<std::string>& notes, std::string& error);

}  // namespace pavane
