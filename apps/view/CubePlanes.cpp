#include "apps/view/CubePlanes.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace pavane
{

namespace
{

/// Planes of the size of this one that may be in memory: fewer of large ones, so that a cube that
/// is larger than the memory can be gone through, but the one that is shown and the next.
int mostOf(const MapContent& shown)
{
    constexpr std::int64_t mostBytes = std::int64_t{1} << 30;
    const auto bytes = shown.map.cells.cells() * static_cast<std::int64_t>(sizeof(float));
    return static_cast<int>(std::clamp<std::int64_t>(mostBytes / std::max<std::int64_t>(bytes, 1),
                                                     2, CubePlanes::most));
}

}  // namespace

void CubePlanes::begin(const std::string& file, const MapContent& shown)
{
    file_ = file;
    count_ = std::max(1, shown.map.header.planes);
    kept_.clear();
}

/// For a plane that is to be read: of the one that was shown longest ago when there are enough, so
/// that there are never more in memory.
std::unique_ptr<MapContent> CubePlanes::room(const MapContent& shown)
{
    std::unique_ptr<MapContent> freed;
    while (kept() > mostOf(shown) - 2) {
        freed = std::move(kept_.front());
        kept_.erase(kept_.begin());
    }
    return freed ? std::move(freed) : std::make_unique<MapContent>();
}

int CubePlanes::isKept(int plane) const
{
    return std::any_of(kept_.begin(), kept_.end(),
                       [plane](const auto& content) { return content->map.header.plane == plane; });
}

void CubePlanes::fetch(int plane, const MapContent& shown)
{
    if (plane < 0 || plane >= count_ || plane == shown.map.header.plane || isKept(plane))
        return;
    std::unique_ptr<MapContent> next = room(shown);
    std::string ignored;
    if (readMapContent(file_, plane, *next, ignored))
        kept_.push_back(std::move(next));
}

int CubePlanes::exchange(int plane, MapContent& shown, std::string& error, const Reader& read)
{
    if (plane == shown.map.header.plane)
        return 1;
    if (plane < 0 || plane >= count_) {
        error = file_ + ": there is no plane " + std::to_string(plane);
        return 0;
    }
    std::unique_ptr<MapContent> wanted;
    const auto known = std::find_if(kept_.begin(), kept_.end(), [&](const auto& content) {
        return content->map.header.plane == plane;
    });
    if (known != kept_.end()) {
        wanted = std::move(*known);
        kept_.erase(known);
    } else {
        wanted = room(shown);
        error.clear();
        if (read ? !read(plane, *wanted, error) : !readMapContent(file_, plane, *wanted, error)) {
            if (!error.empty())
                error.insert(0, file_ + ": ");
            return 0;
        }
        // areas, marks and view lie on the cells as they were
        if (wanted->map.cells.rows() != shown.map.cells.rows() ||
            wanted->map.cells.columns() != shown.map.cells.columns() ||
            wanted->map.header.planes != count_) {
            error = file_ + ": it is another map by now; open it again";
            return 0;
        }
    }
    std::swap(*wanted, shown);
    kept_.push_back(std::move(wanted));
    return 1;
}

}  // namespace pavane
