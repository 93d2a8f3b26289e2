#include "apps/view/area_numbers.h"

#include "apps/view/progress.h"
#include "pavane/trackers/collections/ARPTrackerArray.h"
#include "pavane/trackers/masks/AAreaArray.h"
#include "tessel/plain_text.h"
#include "tessel/value_text.h"

namespace pavane
{

namespace
{

AreaSource sourceOf(const std::vector<MeasuredArea>& areas)
{
    return [&areas](int i, AArray<CPoint>& points, int& isNeverClean) {
        const MeasuredArea& area = areas[static_cast<std::size_t>(i)];
        points = area.cells;
        isNeverClean = area.isNeverClean;
        return static_cast<int>(points.count() == area.cells.count());
    };
}

/// Measures one plane and appends its rows.
int addPlane(const MapContent& content, int plane, const std::vector<MeasuredArea>& areas,
             int emptyArea, AreaTable& table, std::string& error)
{
    const AFloatMatrixAccess cells(content.map.cells);
    AreaMeasures measures;
    measures.setMap(&cells, &content);
    measures.setNoiseArea(emptyArea);
    if (!measures.update(static_cast<int>(areas.size()), sourceOf(areas))) {
        error = "there is no memory for the numbers of its areas";
        return 0;
    }
    table.add(measures, plane, [&](int i, AreaRow& row) {
        row.label = areas[static_cast<std::size_t>(i)].label;
        row.kind = areas[static_cast<std::size_t>(i)].kind;
    });
    return 1;
}

}  // namespace

std::vector<MeasuredArea> measuredAreas(const ARPTrackerArray& areas, const AreaPlace& place)
{
    std::vector<MeasuredArea> measured(static_cast<std::size_t>(areas.count()));
    for (int i = 0; i < areas.count(); ++i) {
        MeasuredArea& area = measured[static_cast<std::size_t>(i)];
        (void)areas.GetAreaCells(i, area.cells, place.columns, place.rows, place.range);
        area.isNeverClean = areas(i)->IsNeverClean();
        area.label = areas(i)->label();
        ShapeValues shape;
        area.kind = areas(i)->GetShape(shape) ? areaKindName(shape.kind) : "";
    }
    return measured;
}

std::vector<MeasuredArea> measuredAreas(const AAreaArray& areas)
{
    std::vector<MeasuredArea> measured(static_cast<std::size_t>(areas.count()));
    for (int i = 0; i < areas.count(); ++i) {
        MeasuredArea& area = measured[static_cast<std::size_t>(i)];
        area.cells = AArray<CPoint>(areas(i)->points, areas(i)->count, 0, 1);
        area.kind = areaKindName(ShapeValues::Kind::polygon);
    }
    return measured;
}

int areaOfName(const std::vector<MeasuredArea>& areas, const std::string& name)
{
    int found = -1;
    for (std::size_t i = 0; i < areas.size(); ++i) {
        if (shownName(areas[i].label, static_cast<int>(i)) != name)
            continue;
        if (found >= 0)
            return -1;
        found = static_cast<int>(i);
    }
    int number = 0;
    if (found < 0 && stoval(name, number) && number >= 1 &&
        static_cast<std::size_t>(number) <= areas.size())
        found = number - 1;
    return found;
}

int fillAreaTable(const ViewOptions& options, const ViewInputs& inputs, AreaTable& table,
                  std::string& error)
{
    const int emptyArea =
        options.emptyArea.empty() ? -1 : areaOfName(inputs.measured, options.emptyArea);
    if (emptyArea < 0 && !options.emptyArea.empty()) {
        error = options.areas + ": has no area '" + options.emptyArea + "', or several";
        return 0;
    }
    table.setMap(inputs.map.header, inputs.frame);
    const int first = options.print.firstPlane;
    const int planes = options.print.hasPlanes() ? options.print.lastPlane - first + 1 : 1;
    ProgressLine progress("Reading " + plainText(options.map));
    for (int i = 0; i < planes; ++i) {
        const int plane = options.print.hasPlanes() ? first + i : options.plane;
        MapContent read;
        const MapContent& content = i ? read : static_cast<const MapContent&>(inputs);
        const auto tell = [&](double part) { return progress.show((i + part) / planes); };
        // the first one is that of the inputs
        if ((i && !readMapContent(options.map, plane, read, error, tell)) ||
            !addPlane(content, plane, inputs.measured, emptyArea, table, error)) {
            error.insert(0, options.map + ": ");
            return 0;
        }
    }
    return 1;
}

}  // namespace pavane
