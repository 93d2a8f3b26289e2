#pragma once

#include "tessel/uvfits/UvPlotRows.h"

#include <functional>
#include <iosfwd>
#include <string>

namespace pavane
{

/// The name of the table of all visibilities that a plot shows, or of the means.
inline constexpr const char* visibilityTable = "visibilities";

/// Writes them as the list of a window does, as they are read: a line of titles, then a line each,
/// with tabs between cells. `isGoing` is told the share that is done, and ends it with 0. Non-zero
/// on success; 0 when the stream takes no more, or with a clause without its subject in `error`.
int writeVisibilityTable(AUVXFile& file, const UvMarks& marks, const UvView& view,
                         const std::function<int(double)>& isGoing, std::ostream& stream,
                         std::string& error);

}  // namespace pavane
