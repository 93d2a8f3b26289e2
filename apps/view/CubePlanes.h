#pragma once

#include "pavane/axes/maps/MapContent.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pavane
{

/// The planes of a cube for who goes through them. Those that were shown last are kept, so that a
/// step back reads nothing; with the one that is shown at most 16, however many the cube has.
class CubePlanes
{
public:
    static constexpr int most = 16;

    /// `shown` is a plane that was read from `file`.
    void begin(const std::string& file, const MapContent& shown);
    /// At least 1.
    int count() const { return count_; }
    int isCube() const { return count_ > 1; }
    /// Reads a plane as readMapContent does; 0 with an empty text when the user gave up.
    using Reader = std::function<int(int plane, MapContent& content, std::string& error)>;
    /// Puts plane `plane`, from 0, in the place of `shown`, which is kept. Non-zero on success;
    /// else 0, `error` is a line with the file's name or empty, and `shown` is as it was. `read`
    /// reads planes that are not kept.
    int exchange(int plane, MapContent& shown, std::string& error, const Reader& read = {});
    /// Reads a plane that will be shown next, unless it is kept, in the place of the one that was
    /// shown longest ago; nothing is said when that fails, for who shows it tells.
    void fetch(int plane, const MapContent& shown);
    /// Planes that are kept beside the one that is shown.
    int kept() const { return static_cast<int>(kept_.size()); }

private:
    std::unique_ptr<MapContent> room(const MapContent& shown);
    int isKept(int plane) const;

    std::string file_;
    int count_ = 1;
    std::vector<std::unique_ptr<MapContent>> kept_;  ///< the one that was shown last is the last
};

}  // namespace pavane
