#pragma once

#include "platform/types.h"

#include <cstdint>
#include <string>

namespace pavane
{

/// What a user calls an area and the colour that it is drawn in; none of both at first. A plain
/// value, kept beside the record of the area.
struct AreaLabel {
    static constexpr std::int32_t noColour = -1;

    std::string name;                ///< UTF-8; empty: it is called by its place, "Area 3"
    std::int32_t colour = noColour;  ///< 0xRRGGBB, or noColour

    int isEmpty() const { return name.empty() && colour == noColour; }
    friend bool operator==(const AreaLabel&, const AreaLabel&) = default;
};

/// The name of area i (from 0), or "Area 1" and so on of one that has none.
inline CString shownName(const AreaLabel& label, int i)
{
    return label.name.empty() ? "Area " + std::to_string(i + 1) : label.name;
}

}  // namespace pavane
