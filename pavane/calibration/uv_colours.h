#pragma once

#include "platform/types.h"
#include "tessel/api.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/uvfits/UvClasses.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// Colours of the classes of visibilities in a plot, and what a legend says of them.
struct UvColourKey {
    struct Entry {
        COLORREF color = 0;
        CString name;
        std::int64_t points = 0;
    };
    std::vector<Entry> entries;              ///< in the order of a legend
    std::vector<std::uint8_t> entryOfClass;  ///< the index of each class

    int isEmpty() const { return entries.empty(); }
    /// Indices of the entries as they are drawn: those of most points first, so that none hides the
    /// few of another, and what has no colour of its own before all.
    std::vector<std::size_t> drawingOrder() const;
};

/// Classes that have a colour of their own.
inline constexpr std::size_t mostUvColours = 12;

/// The key of classes of this kind. Colours differ for the colour blind, too; of more than
/// mostUvColours classes those with most points get them, the others are one entry, "23 others", in
/// grey.
PAVANE_API UvColourKey uvColours(const AUVXFile& file, UvColour by,
                                 const std::vector<UvClass>& classes);

/// "none", "baseline", "telescope", "if" or "source".
PAVANE_API const char* uvColourName(UvColour by);
/// The kind of a name; 0, and nothing else, for others.
PAVANE_API int uvColourOf(const std::string& name, UvColour& by);

}  // namespace pavane
