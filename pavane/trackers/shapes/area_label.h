#pragma once

#include "platform/api.h"
#include "platform/types.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace pavane
{

/// What a user calls an area and the colour that it is drawn in; none of both at first. A plain
/// value, kept beside the record of the area.
struct AreaLabel {
    static constexpr std::int32_t noColour = -1;

    std::string name;                ///< as `fittingName` makes it; empty: "Area 3", by its place
    std::int32_t colour = noColour;  ///< 0xRRGGBB, or noColour

    int isEmpty() const { return name.empty() && colour == noColour; }
    friend bool operator==(const AreaLabel&, const AreaLabel&) = default;
};

/// Most bytes of a name.
inline constexpr std::size_t longestAreaName = 255;

/// A text as the name of an area: UTF-8 in one line, without blanks at its ends, cut to
/// `longestAreaName` bytes between two characters.
PAVANE_API std::string fittingName(std::string_view text);

/// The name of area i (from 0), or "Area 1" and so on of one that has none.
PAVANE_API CString shownName(const AreaLabel& label, int i);

/// "#rrggbb", "" for no colour.
PAVANE_API std::string areaColourText(std::int32_t colour);

/// A colour as region files have it: "#rgb", "#rrggbb", or one of the usual names ("red"), in any
/// letters. 0, and `colour` left alone, for another text.
PAVANE_API int areaColourOf(std::string_view text, std::int32_t& colour);

}  // namespace pavane
