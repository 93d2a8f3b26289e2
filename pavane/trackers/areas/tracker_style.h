#pragma once

namespace pavane
{

/// Style bits of a tracker, the first number of its record; the low two bits are the line style, a
/// non-zero value widens what has to be repainted by a pixel.
enum TrackerStyle : unsigned {
    trackerLineStyle = 0x03,
    trackerHandles = 0x04,  ///< without it a hit anywhere in the shape counts as a move
    trackerActive = 0x20,
    trackerReady = 0x40,  ///< area trackers: the polygon is closed
    /// Masks leave out the cells of the area, whatever other areas hold them; records that were
    /// written before there was such a bit have it clear.
    trackerNeverClean = 0x100,
    trackerNew = 0x2D
};

/// Edge of a handle of a new tracker, in pixels.
inline constexpr int newHandleSize = 6;

}  // namespace pavane
