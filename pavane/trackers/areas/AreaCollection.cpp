#include "pavane/trackers/areas/AreaCollection.h"

#include "pavane/trackers/areas/area_shape_record.h"
#include "pavane/trackers/areas/step_record.h"
#include "pavane/trackers/areas/StepLabel.h"
#include "pavane/trackers/masks/AAreaBitFill.h"
#include "pavane/trackers/masks/mask_order.h"
#include "pavane/trackers/masks/outline_cells.h"
#include "pavane/trackers/shapes/area_values.h"
#include "pavane/trackers/shapes/shape_outline.h"
#include "tessel/ABitMatrix.h"

#include <utility>

namespace pavane
{

namespace
{

const char* classOf(ShapeValues::Kind kind)
{
    switch (kind) {
    case ShapeValues::Kind::rectangle:
        return "ARPRectTracker";
    case ShapeValues::Kind::rotatedRectangle:
        return "ARPRotateRectTracker";
    case ShapeValues::Kind::ellipse:
        return "ARPEllipseTracker";
    case ShapeValues::Kind::polygon:
        break;
    }
    return "ARPAreaTracker";
}

}  // namespace

AreaRecord AreaCollection::record(int i) const
{
    return has(i) ? AreaRecord{kindAt(i).name, at(i).bytes} : AreaRecord();
}

int AreaCollection::shape(int i, ShapeValues& shape) const
{
    return has(i) && kindAt(i).hasShape() && shapeOfRecord(*kindAt(i).known, at(i).bytes, shape);
}

int AreaCollection::add(const ShapeValues& shape)
{
    const char* const name = classOf(shape.kind);
    const AreaClass* const known = areaClassOf(name);
    std::string bytes = known ? newRecord(*known, shape) : std::string();
    if (bytes.empty())
        return -1;
    const AreaEdits::Step step(edits_, StepLabel("Addition", count()).text());
    append({kindNumber(name, 1), std::move(bytes)});
    return count() - 1;
}

int AreaCollection::add(const AreaShape& shape, const AMnMxMCTransform& map)
{
    ShapeValues values;
    if (!valuesOf(shape, map, values))
        return -1;
    const AreaEdits::Step step(edits_, StepLabel("Addition", count()).text());
    const int added = add(values);
    if (added >= 0 && shape.isNeverClean)
        (void)setNeverClean(added, 1);
    if (added >= 0)
        (void)setLabel(added, shape.label);
    return added;
}

int AreaCollection::setShape(int i, const ShapeValues& shape)
{
    if (!has(i) || !kindAt(i).hasShape())
        return 0;
    const std::string before = recordOf(i);
    if (!setShapeInRecord(*kindAt(i).known, at(i).bytes, shape))
        return 0;
    const AreaEdits::Step step(edits_, StepLabel("Edit", i).text());
    edits_.noteChange(i, before);
    return 1;
}

int AreaCollection::isNeverClean(int i) const
{
    return has(i) && kindAt(i).hasShape() && styleOfRecord(at(i).bytes) & trackerNeverClean ? 1 : 0;
}

int AreaCollection::setNeverClean(int i, int on)
{
    if (!has(i) || !kindAt(i).hasShape())
        return 0;
    if (isNeverClean(i) == (on != 0))
        return 1;
    const std::string before = recordOf(i);
    const unsigned style = styleOfRecord(at(i).bytes);
    setStyleOfRecord(at(i).bytes,
                     on ? style | trackerNeverClean : style & ~unsigned{trackerNeverClean});
    const AreaEdits::Step step(edits_, StepLabel(on ? "Never clean" : "Clean again", i).text());
    edits_.noteChange(i, before);
    return 1;
}

int AreaCollection::setLabel(int i, const AreaLabel& label)
{
    if (!has(i))
        return 0;
    if (at(i).label == label)
        return 1;
    const std::string before = recordOf(i);
    const char* const what = at(i).label.name == label.name ? "Colour" : "Name";
    at(i).label = label;
    const AreaEdits::Step step(edits_, StepLabel(what, i).text());
    edits_.noteChange(i, before);
    return 1;
}

int AreaCollection::erase(int i)
{
    if (!has(i))
        return 0;
    const AreaEdits::Step step(edits_, StepLabel("Deletion", i).text());
    edits_.noteRemove(i);
    remove(i);
    edits_.removed(i);
    return 1;
}

void AreaCollection::clear()
{
    const AreaEdits::Step step(edits_, "Clearing of all areas");
    eraseAll();
}

void AreaCollection::eraseAll()
{
    for (int i = count(); i-- > 0;)
        (void)erase(i);
}

void AreaCollection::append(Item item)
{
    items_.push_back(std::move(item));
    edits_.inserted(count() - 1, isActive(count() - 1));
    edits_.noteInsert(count() - 1);
}

int AreaCollection::kindNumber(const std::string& name, int entries)
{
    const auto [at, isNew] = kindNumbers_.try_emplace(std::to_string(entries) + ' ' + name,
                                                      static_cast<int>(kinds_.size()));
    if (isNew) {
        const AreaClass* const known = areaClassOf(name);
        kinds_.push_back({name, known, known && !known->pass ? vertexBytes(*known) : 0, entries});
    }
    return at->second;
}

std::string AreaCollection::recordOf(int i) const
{
    std::string record = at(i).bytes;
    if (kindAt(i).hasShape())
        setActiveBit(record, edits_.usuallyActive(i));
    if (kindAt(i).vertexBytes)
        dropVertexCount(record);
    appendLabel(record, at(i).label);
    return record;
}

int AreaCollection::isActive(int i) const
{
    return has(i) && kindAt(i).hasShape() && activeBit(at(i).bytes);
}

void AreaCollection::setActive(int i, int on)
{
    if (has(i) && kindAt(i).hasShape())
        setActiveBit(at(i).bytes, on);
}

int AreaCollection::insert(int i, int kind, std::string_view record)
{
    if (kind < 0 || static_cast<std::size_t>(kind) >= kinds_.size())
        return 0;
    items_.insert(items_.begin() + i, Item{kind, {}});
    return replace(i, kind, record);
}

int AreaCollection::replace(int i, int kind, std::string_view record)
{
    const Kind& of = kinds_[static_cast<std::size_t>(kind)];
    const int on = at(i).bytes.empty() ? activeBit(record) : isActive(i);
    at(i).bytes = record;
    at(i).label = takeLabel(at(i).bytes);
    if (of.vertexBytes)
        putVertexCount(at(i).bytes, of.vertexBytes);
    setActive(i, on);
    return 1;
}

int AreaCollection::FillMatrix(ABitMatrix& m, int nx, int ny, const TMinMax& mapRange,
                               LoadReport* report) const
{
    int complete = 1;
    AArray<CPoint> cells;
    fillInOrder(
        m, count(), [this](int i) { return isNeverClean(i); },
        [&](int i) {
            if (GetAreaCells(i, cells, nx, ny, mapRange))
                AAreaBitFill().FillMatrix(m, cells.lpArray(), cells.count());
        });
    for (int i = 0; i < count(); ++i) {
        if (kindAt(i).hasShape())
            continue;
        complete = 0;
        if (report)
            report->note(i + 1, "class \"" + shownClassName(kindAt(i).name) +
                                    "\" has no known shape and gives no cells");
    }
    return complete;
}

int AreaCollection::GetAreaCells(int i, AArray<CPoint>& cells, int nx, int ny,
                                 const TMinMax& mapRange) const
{
    const MapCells map{nx, ny, mapRange};
    AArray<APoint<double>> outline;
    ShapeValues values;
    if (map.usable() && shape(i, values)) {
        const bool isEllipse = values.kind == ShapeValues::Kind::ellipse;
        const int points = isEllipse ? ellipsePointsForMask(values.rect, values.angle, map) : 0;
        outlineOf(values, points, outline);
    }
    return cellsOf(outline, map, cells);
}

}  // namespace pavane
