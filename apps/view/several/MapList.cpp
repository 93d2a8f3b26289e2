#include "apps/view/several/MapList.h"

#include "tessel/paths.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace pavane
{

namespace
{

/// Pixels between maps side by side.
constexpr int gap = 4;

/// The last `parts` parts of a path.
std::string tailOf(const std::string& path, int parts)
{
    std::size_t at = path.size();
    for (int i = 0; i < parts && at != std::string::npos && at > 0; ++i)
        at = path.rfind('/', at - 1);
    return at == std::string::npos || at == 0 ? path : path.substr(at + 1);
}

/// Columns with which `count` cells of a room have the longest shorter side.
int columnsFor(int count, const CRect& room)
{
    int best = 1;
    int longest = -1;
    for (int columns = 1; columns <= count; ++columns) {
        const int rows = (count + columns - 1) / columns;
        const int side = std::min(room.Width() / columns, room.Height() / rows);
        if (side > longest) {
            longest = side;
            best = columns;
        }
    }
    return best;
}

}  // namespace

int MapList::add(const std::string& file)
{
    files_.push_back(file);
    before_ = current_;
    current_ = count() - 1;
    return current_;
}

void MapList::replace(int map, const std::string& file)
{
    if (map >= 0 && map < count())
        files_[static_cast<std::size_t>(map)] = file;
}

int MapList::remove(int map)
{
    if (map < 0 || map >= count())
        return 0;
    files_.erase(files_.begin() + map);
    const auto moved = [map](int number) { return number > map ? number - 1 : number; };
    before_ = before_ == map ? -1 : moved(before_);
    current_ = std::min(moved(current_), count() - 1);
    if (before_ == current_)
        before_ = -1;
    return 1;
}

int MapList::other() const
{
    if (count() < 2)
        return -1;
    return before_ >= 0 ? before_ : next(1);
}

int MapList::choose(int map)
{
    if (map < 0 || map >= count() || map == current_)
        return 0;
    before_ = current_;
    current_ = map;
    return 1;
}

int MapList::next(int step) const
{
    return files_.empty() ? -1 : (current_ + step % count() + count()) % count();
}

int MapList::find(const std::string& file) const
{
    const auto at = std::find(files_.begin(), files_.end(), file);
    return at == files_.end() ? -1 : static_cast<int>(at - files_.begin());
}

std::vector<std::string> MapList::names() const
{
    std::vector<std::string> names;
    for (const std::string& file : files_) {
        std::string name = baseNameOf(file);
        constexpr int mostParts = 4;
        for (int parts = 2; parts <= mostParts; ++parts) {
            const auto isSame = [&](const std::string& other) {
                return other != file && tailOf(other, parts - 1) == name;
            };
            if (std::none_of(files_.begin(), files_.end(), isSame))
                break;
            name = tailOf(file, parts);
        }
        names.push_back(std::move(name));
    }
    return names;
}

std::vector<CRect> MapList::places(const CRect& room) const
{
    if (shown_ != MapsShown::sideBySide || count() < 2)
        return std::vector<CRect>(files_.size(), room);
    const int columns = columnsFor(count(), room);
    const int rows = (count() + columns - 1) / columns;
    std::vector<CRect> places;
    for (int i = 0; i < count(); ++i) {
        const int row = i / columns;
        const int column = i % columns;
        // the last row has the whole width for what is left
        const int inRow = row == rows - 1 ? count() - row * columns : columns;
        const int width = room.Width() + gap;
        const int height = room.Height() + gap;
        places.emplace_back(room.left + width * column / inRow, room.top + height * row / rows,
                            room.left + std::max(width * (column + 1) / inRow - gap, 0),
                            room.top + std::max(height * (row + 1) / rows - gap, 0));
    }
    return places;
}

double blinkSeconds(double seconds, int step)
{
    static constexpr double choices[] = {0.2, 0.3, 0.5, 0.7, 1, 1.5, 2, 3, 5};
    const auto* const at =
        std::min_element(std::begin(choices), std::end(choices), [&](double a, double b) {
            return std::fabs(a - seconds) < std::fabs(b - seconds);
        });
    const auto to =
        std::clamp<std::ptrdiff_t>(at - std::begin(choices) + step, 0, std::ssize(choices) - 1);
    return choices[to];
}

}  // namespace pavane
