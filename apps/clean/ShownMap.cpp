#include "apps/clean/ShownMap.h"

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/map_titles.h"

#include <cstdint>
#include <limits>
#include <utility>

namespace pavane
{

namespace
{

/// Cells of all maps that are kept beside the shown one, 200 MB; one is kept whatever its size.
constexpr std::int64_t mostKeptCells = std::int64_t{50} * 1024 * 1024;
constexpr std::size_t mostKept = 8;

constexpr const char* names[mapKinds] = {"residual", "restored", "model", "dirty", "beam", "mask"};

std::size_t indexOf(MapKind kind) { return static_cast<std::size_t>(kind); }

}  // namespace

const char* mapKindName(MapKind kind) { return names[indexOf(kind)]; }

int ShownMap::isSamePlace(const MapContent& a, const MapContent& b)
{
    const TMinMax x = a.frame.centres(), y = b.frame.centres();
    return a.map.cells.rows() == b.map.cells.rows() &&
           a.map.cells.columns() == b.map.cells.columns() && x.xMin == y.xMin && x.xMax == y.xMax &&
           x.yMin == y.yMin && x.yMax == y.yMax && a.frame.xDirection == b.frame.xDirection;
}

int ShownMap::take(const std::string& file, MapContent& content, std::string& error)
{
    for (auto kept = kept_.begin(); kept != kept_.end(); ++kept) {
        if (kept->file != file)
            continue;
        content = std::move(kept->content);
        kept_.erase(kept);
        return 1;
    }
    // the engine's maps have axes of frequency and Stokes of one plane each
    if (readMapContent(file, 0, content, error))
        return 1;
    error.insert(0, file + ": ");
    return 0;
}

ContourLevels& ShownMap::levelsOf(MapKind kind)
{
    return kind == MapKind::model || kind == MapKind::mask ? levelsWithoutNoise_ : levels_;
}

void ShownMap::keep(const std::string& file, MapContent&& content)
{
    kept_.push_front({file, std::move(content)});
    std::int64_t cells = 0;
    std::size_t count = 0;
    for (auto kept = kept_.begin(); kept != kept_.end();) {
        cells += kept->content.map.cells.cells();
        const int fits =
            count == 0 || kept->file == held_ || (cells <= mostKeptCells && count < mostKept);
        ++count;
        kept = fits ? std::next(kept) : kept_.erase(kept);
    }
}

void ShownMap::offer(const std::string& file, MapContent&& content)
{
    if (!has(file))
        keep(file, std::move(content));
}

void ShownMap::forget(const std::string& file)
{
    kept_.remove_if([&](const Kept& kept) { return kept.file == file; });
    if (file == file_)
        file_.clear();  // shown as it is, and read anew when it is asked for again
}

TMnMx ShownMap::range()
{
    const ColorLook look(picture_.graph());
    if (look.range.min < look.range.max || content_.range.isEmpty())
        return look.range;
    return {double{content_.range.least}, double{content_.range.greatest}};
}

ShownMap::Change ShownMap::show(const std::string& file, MapKind kind, std::string& error,
                                const TMnMx& range)
{
    const int isOther = !isOpen_ || file != file_;
    MapContent next;
    if (isOther && !take(file, next, error))
        return Change::none;
    if (isOpen_)
        levelsOf(kind_) = picture_.graph().contours().wantedLevels();
    if (isOpen_ && !hasLentRange_)
        ranges_[indexOf(kind_)] = this->range();
    Change change = Change::cells;
    if (isOther) {
        const int isSame = isOpen_ && isSamePlace(next, content_);
        std::swap(next, content_);
        if (isOpen_ && !file_.empty() && isSame)
            keep(file_, std::move(next));
        if (isSame) {
            picture_.contentChanged();
            describeMap(picture_.axis(), picture_.graph(), content_.frame, {});
        } else {
            kept_.clear();
            forgetRanges();  // of a map of other cells
            picture_.show(content_);
            std::string noSky;
            sky_ = std::make_unique<SkyCoordinates>();
            (void)sky_->init(content_.map.header, noSky);
            change = Change::map;
        }
        format_ = StatusFormat(content_.map.header, content_.frame, content_.map.cells.rows(),
                               content_.map.cells.columns());
    }
    picture_.graph().contours().setLevels(levelsOf(kind));
    ColorLook look(picture_.graph());
    hasLentRange_ = range.min < range.max;
    look.range = hasLentRange_ ? range : ranges_[indexOf(kind)];
    look.give(picture_.graph());
    file_ = file;
    kind_ = kind;
    isOpen_ = 1;
    return change;
}

const AMatrix<float>* ShownMap::cellsOf(const std::string& file) const
{
    if (isOpen_ && file == file_)
        return &content_.map.cells;
    for (const Kept& kept : kept_)
        if (kept.file == file)
            return &kept.content.map.cells;
    return nullptr;
}

float ShownMap::valueIn(const std::string& file, int row, int column) const
{
    const AMatrix<float>* const cells = cellsOf(file);
    return cells && row >= 0 && column >= 0 && row < cells->rows() && column < cells->columns()
               ? (*cells)(row, column)
               : std::numeric_limits<float>::quiet_NaN();
}

}  // namespace pavane
