#pragma once

#include "apps/view/CubePlanes.h"
#include "pavane/axes/maps/MapContent.h"

#include <string>

namespace pavane
{

/// A map that is shown with another one. Of a cube it shows the plane that the other one shows, as
/// long as it has it. Graphs point into it: it is neither copied nor moved.
class SideMap
{
public:
    SideMap() = default;
    SideMap(const SideMap&) = delete;
    SideMap& operator=(const SideMap&) = delete;

    /// Non-zero on success; else 0 and `error` says in one line what is wrong, without the file's
    /// name.
    int read(const std::string& file, std::string& error, const ProgressFunction& progress = {})
    {
        if (!readMapContent(file, 0, content_, error, progress))
            return 0;
        planes_.begin(file, content_);
        return 1;
    }
    /// Non-zero when it shows another plane now; a plane that cannot be read leaves it as it is.
    int setPlane(int plane)
    {
        std::string error;
        return plane != content_.map.header.plane && plane >= 0 && plane < planes_.count() &&
               planes_.exchange(plane, content_, error);
    }
    const MapContent& content() const { return content_; }

private:
    MapContent content_;
    CubePlanes planes_;
};

}  // namespace pavane
