#pragma once

#include "pavane/trackers/regions/RegionNotes.h"
#include "pavane/trackers/shapes/area_label.h"

#include <string_view>

namespace pavane
{

// Names and colours of areas as properties of regions.

/// Takes one "key=value" behind a region, quotes taken off: a colour ("color"), or the name under
/// `nameKey`. 0 for another key; a colour that is not known is noted once.
int takeLabelProperty(std::string_view key, std::string_view value, std::string_view nameKey,
                      AreaLabel& label, RegionNotes& notes);

/// The name in the first of `quotes` (an opening and a closing character each) that it does not
/// hold itself; where it holds them all, in the first, with blanks in their place, which is noted.
std::string quotedName(const AreaLabel& label, std::string_view quotes, RegionNotes& notes);

}  // namespace pavane
