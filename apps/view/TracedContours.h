#pragma once

#include "pavane/axes/maps/cells/contour_lines.h"
#include "pavane/axes/maps/cells/level_list.h"
#include "pavane/axes/maps/MapContent.h"

namespace pavane
{

class CWnd;
class MapContours;

/// The contours of a large map, traced before they are drawn, so that the user sees how far that is
/// and may give it up.
class TracedContours
{
public:
    /// Traces them while the frame of `owner` waits; those of a small map are left to the drawing.
    void trace(CWnd* owner, const MapContent& content, const LevelChoice& choice);
    /// Gives them to contours that have the levels.
    void give(MapContours& contours);

    /// A map of fewer cells is drawn at once.
    static constexpr std::int64_t leastCells = std::int64_t{4} << 20;

private:
    enum class State { none, traced, givenUp };
    ContourLines lines_;
    std::size_t levels_ = 0;
    State state_ = State::none;
};

}  // namespace pavane
