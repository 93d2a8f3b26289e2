#include "pavane/axes/windows/AreaOverlay.h"

#include "pavane/axes/maps/ABMapGraph.h"
#include "pavane/images/bitmap_header.h"
#include "pavane/trackers/collections/ARPTrackerArray.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace pavane
{

namespace
{

/// Client units on a side; what is not visible is left out by tiles.
constexpr int tileSide = 64;
/// The head of a tracker's record: bounds, which no mask depends on, and style, of which it does on
/// one bit.
constexpr std::size_t recordHead = 56;
/// The mark of a shape that was taken in the middle of a drag.
constexpr std::size_t noMark = 0;

std::size_t markOf(const ABTracker& tracker)
{
    const std::string state = tracker.State();
    const std::string_view shape =
        std::string_view(state).substr(std::min(recordHead, state.size()));
    const std::size_t mark = std::hash<std::string_view>()(shape) * 31 +
                             std::hash<std::string_view>()(tracker.GetClassName()) +
                             (tracker.IsNeverClean() ? 1 : 0);
    return mark == noMark ? 1 : mark;
}

}  // namespace

int AreaOverlay::setMap(const ABMapGraph* map)
{
    map_ = map;
    marks_.clear();
    picture_.setPixels({}, {});
    return map ? cells_.setMap(map->cells()) : cells_.setSize(0, 0);
}

/// The areas in order, behind them the polygon under construction.
const ABTracker* AreaOverlay::shape(const ARPTrackerArray& areas, std::size_t i) const
{
    const auto at = static_cast<int>(i);
    return static_cast<const ABTracker*>(at < areas.trackerCount() ? areas.trackerAt(at)
                                                                   : areas.workingTracker());
}

int AreaOverlay::putArea(const ABTracker& tracker, int at, int replacing)
{
    AArray<CPoint> points;
    (void)ARPTrackerArray::GetAreaCells(tracker, points, map_->cells().columns(),
                                        map_->cells().rows(), map_->centres());
    const CPoint* const first = points.count() > 0 ? &points(0) : nullptr;
    return replacing ? cells_.replace(at, first, points.count(), tracker.IsNeverClean())
                     : cells_.insert(at, first, points.count(), tracker.IsNeverClean());
}

void AreaOverlay::catchUp(const ARPTrackerArray& areas)
{
    const ABTracker* const dragged = std::exchange(dragged_, nullptr);
    const int lives = dragged && draggedLife_->alive();
    const int all = std::exchange(allBehind_, 0) || (dragged && !lives);
    const int several = std::exchange(severalDragged_, 0);
    if (all)
        follow(areas);
    // one that is being drawn is none of the areas yet
    if (!lives || (all && areas.IndexOf(dragged) >= 0))
        return;
    if (several)
        followDrag(areas, areas.SelectedItems());
    else
        followDrag(areas, *dragged);
}

void AreaOverlay::follow(const ARPTrackerArray& areas)
{
    if (!map_)
        return;
    const std::size_t count =
        static_cast<std::size_t>(areas.trackerCount()) + (areas.workingTracker() ? 1 : 0);
    std::vector<std::size_t> marks;
    marks.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        marks.push_back(markOf(*shape(areas, i)));
    std::size_t first = 0;
    const std::size_t shorter = std::min(marks.size(), marks_.size());
    while (first < shorter && marks[first] == marks_[first])
        ++first;
    std::size_t oldEnd = marks_.size();
    std::size_t newEnd = marks.size();
    while (oldEnd > first && newEnd > first && marks[newEnd - 1] == marks_[oldEnd - 1])
        --oldEnd, --newEnd;
    if (first == oldEnd && first == newEnd)
        return;
    replaceFrom(areas, first, oldEnd, newEnd, marks);
    marks_ = std::move(marks);
}

/// Makes areas first to oldEnd - 1 those of the collection from first to newEnd - 1.
void AreaOverlay::replaceFrom(const ARPTrackerArray& areas, std::size_t first, std::size_t oldEnd,
                              std::size_t newEnd, const std::vector<std::size_t>& marks)
{
    const std::size_t common = std::min(oldEnd, newEnd);
    // many at once are filled together
    if (std::max(oldEnd, newEnd) - first > 16)
        return replaceAll(areas);
    int done = 1;
    for (std::size_t i = first; i < common; ++i)
        if (marks[i] != marks_[i])
            done = done && putArea(*shape(areas, i), static_cast<int>(i), 1);
    for (std::size_t i = common; i < newEnd; ++i)
        done = done && putArea(*shape(areas, i), static_cast<int>(i), 0);
    for (std::size_t i = oldEnd; i > common; --i)
        done = done && cells_.remove(static_cast<int>(i - 1));
    if (!done)
        replaceAll(areas);
}

void AreaOverlay::replaceAll(const ARPTrackerArray& areas)
{
    int done = cells_.clear();
    cells_.begin();
    for (int i = 0; i < areas.trackerCount(); ++i)
        done = done && putArea(*shape(areas, static_cast<std::size_t>(i)), i, 0);
    if (areas.workingTracker())
        done = done && putArea(*static_cast<const ABTracker*>(areas.workingTracker()),
                               areas.trackerCount(), 0);
    if (!cells_.end() || !done)
        marks_.clear();  // without memory; the next change tries again
}

void AreaOverlay::followDrag(const ARPTrackerArray& areas, const ABTracker& changed)
{
    if (!map_)
        return;
    int at = areas.IndexOf(&changed);
    if (at < 0)
        at = areas.trackerCount();  // being drawn
    const auto index = static_cast<std::size_t>(at);
    if (index < marks_.size()) {
        (void)putArea(changed, at, 1);
        marks_[index] = noMark;
    } else if (index == marks_.size() && putArea(changed, at, 0)) {
        marks_.push_back(noMark);
    }
}

void AreaOverlay::followDrag(const ARPTrackerArray& areas, const std::vector<int>& items)
{
    if (!map_)
        return;
    int done = 1;
    cells_.begin();
    for (const int item : items) {
        const auto index = static_cast<std::size_t>(item);
        if (item < 0 || index >= marks_.size())
            continue;
        done = done && putArea(*shape(areas, index), item, 1);
        marks_[index] = noMark;
    }
    if (!cells_.end() || !done)
        marks_.clear();  // without memory; the next change tries again
}

void AreaOverlay::setPlot(const CRect& plot, int ratio)
{
    plot_ = CRect(plot.left, plot.top, plot.right + 1, plot.bottom + 1);
    ratio_ = ratio;
    if (!map_ || plot.IsRectEmpty()) {
        picture_.setPixels({}, {});
        return;
    }
    picture_.setPixels(map_->columnsOfPixels(plot_.left, plot_.Width(), ratio),
                       map_->rowsOfPixels(plot_.top, plot_.Height(), ratio));
    (void)cells_.takeChanged();
}

CRect AreaOverlay::takeChangedPixels()
{
    const AMatrixRect changed = cells_.takeChanged();
    if (changed.firstRow > changed.lastRow || changed.firstColumn > changed.lastColumn ||
        picture_.width() < 1)
        return {};
    const CRect fine = picture_.pixelsOf(
        CRect(changed.firstColumn, changed.firstRow, changed.lastColumn + 1, changed.lastRow + 1));
    if (fine.IsRectEmpty())
        return {};
    return {plot_.left + fine.left / ratio_, plot_.top + fine.top / ratio_,
            plot_.left + (fine.right + ratio_ - 1) / ratio_,
            plot_.top + (fine.bottom + ratio_ - 1) / ratio_};
}

void AreaOverlay::draw(CDC& dc, const CRect& update, const CBitmap& content)
{
    CRect seen;
    // a mask of no area at all holds every cell
    if (marks_.empty() || picture_.width() < 1 || !content.bits() ||
        !seen.IntersectRect(update, plot_) ||
        !seen.IntersectRect(seen, CRect(0, 0, content.size().cx, content.size().cy)))
        return;
    for (int top = seen.top; top < seen.bottom; top += tileSide)
        for (int left = seen.left; left < seen.right; left += tileSide) {
            const CRect tile(left, top, std::min(left + tileSide, seen.right),
                             std::min(top + tileSide, seen.bottom));
            if (dc.RectVisible(tile))
                drawTile(dc, tile, content);
        }
}

/// A bitmap of the tile, bottom row first as device-independent bitmaps are.
void AreaOverlay::drawTile(CDC& dc, const CRect& tile, const CBitmap& content)
{
    static OverlayStyle const style;
    const int width = tile.Width() * ratio_;
    const int height = tile.Height() * ratio_;
    const std::ptrdiff_t stride = static_cast<std::ptrdiff_t>(content.size().cx) * ratio_;
    const CPoint corner(tile.left * ratio_, tile.top * ratio_);
    const std::uint32_t* const from = content.bits() + corner.y * stride + corner.x;
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) *
                                      static_cast<std::size_t>(height));
    std::uint32_t* const topRow = pixels.data() + static_cast<std::ptrdiff_t>(height - 1) * width;
    for (int y = 0; y < height; ++y)
        std::copy_n(from + y * stride, width, topRow - static_cast<std::ptrdiff_t>(y) * width);
    const CRect fine((tile.left - plot_.left) * ratio_, (tile.top - plot_.top) * ratio_,
                     (tile.right - plot_.left) * ratio_, (tile.bottom - plot_.top) * ratio_);
    picture_.blend(cells_.mask(), fine, style, topRow, -width);
    unsigned char header[bitmapInfoSize];
    writeBitmapInfo(header, width, height, 32, 0);
    dc.StretchDIBits(tile.left, tile.top, tile.Width(), tile.Height(), 0, 0, width, height,
                     pixels.data(), header, DIB_RGB_COLORS, SRCCOPY);
}

}  // namespace pavane
