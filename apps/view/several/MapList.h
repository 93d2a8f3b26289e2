#pragma once

#include "platform/geometry.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// How several maps show in one window.
enum class MapsShown : std::uint8_t {
    tabs,        ///< one at a time
    sideBySide,  ///< all of them
    slider       ///< two in one place, with an edge between them that the pointer moves
};

/// The maps of a window: their files, the current one, and how they show. A plain value; numbers
/// count from 0.
class MapList
{
public:
    /// The number of the map, which is the current one now.
    int add(const std::string& file);
    /// Another file in its place.
    void replace(int map, const std::string& file);
    /// The neighbour is the current one then. 0 for none of that number.
    int remove(int map);
    int count() const { return static_cast<int>(files_.size()); }
    /// -1 without maps.
    int current() const { return current_; }
    /// The one that was current before, or the next one; for what shows two. -1 with less than two.
    int other() const;
    /// Non-zero when another one is current now.
    int choose(int map);
    /// The number `step` maps on, round the ends; -1 without maps.
    int next(int step) const;
    /// The number of a file, by its name as it was given; -1 for none.
    int find(const std::string& file) const;

    MapsShown shown() const { return shown_; }
    void setShown(MapsShown shown) { shown_ = shown; }
    /// Names for tabs: without folders, with as much of them as tells equal names apart.
    std::vector<std::string> names() const;
    /// Where the maps lie in `room`, by number. Side by side in rows as near to squares as can be;
    /// else all of them fill it.
    std::vector<CRect> places(const CRect& room) const;

private:
    std::vector<std::string> files_;
    int current_ = -1;
    int before_ = -1;
    MapsShown shown_ = MapsShown::tabs;
};

/// Seconds between two pictures that blink: `step` steps more (or less), 0.2 to 5.
double blinkSeconds(double seconds, int step);
inline constexpr double firstBlinkSeconds = 0.5;

}  // namespace pavane
