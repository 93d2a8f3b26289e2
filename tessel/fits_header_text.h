#pragma once

#include "tessel/api.h"

#include <string>
#include <vector>

namespace pavane
{

/// The cards of all headers of a FITS file as lines, blanks at their ends cut and without control
/// characters, an empty line between two headers. Of damaged files as much as can be read, of long
/// ones the first hundred thousand lines, and a line that says so. 0, with a line in `error`, when
/// there is none.
PAVANE_API int readFitsHeaderText(const std::string& file, std::vector<std::string>& lines,
                                  std::string& error);

}  // namespace pavane
