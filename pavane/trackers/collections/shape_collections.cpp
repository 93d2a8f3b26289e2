#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/collections/ARPTrackerArray.h"
#include "pavane/trackers/collections/shape_trackers.h"
#include "pavane/trackers/regions/area_polygons.h"

namespace pavane
{

namespace
{

using Kind = RegionNotes::Kind;

}  // namespace

int polygonsOf(const ARPTrackerArray& trackers, int columns, int rows, const TMinMax& mapRange,
               AAreaArray& areas)
{
    AArray<CPoint> cells(0, 0, 256);
    for (int i = 0; i < trackers.count(); ++i) {
        if (trackers(i)->IsNeverClean())
            continue;
        (void)trackers.GetAreaCells(i, cells, columns, rows, mapRange);
        if (!appendPolygon(cells, areas))
            return 0;
    }
    return 1;
}

int addShapes(ARPTrackerArray& trackers, CWnd* window, const std::vector<AreaShape>& shapes,
              const AMnMxMCTransform& map, RegionNotes& notes)
{
    int added = 0;
    long long number = 0;
    trackers.BeginEdits("Import of areas");
    for (const AreaShape& shape : shapes) {
        ++number;
        ABTracker* const tracker = newTracker(shape, map);
        if (tracker)
            tracker->SetActive(0);
        if (!tracker || trackers.Add(tracker) < 0) {
            delete tracker;
            notes.add(Kind::leftOut, "area", number,
                      "has no size, or there is no memory; left out");
            continue;
        }
        ++added;
        if (shape.kind != AreaShape::Kind::polygon && dynamic_cast<ARPAreaTracker*>(tracker))
            notes.add(Kind::changed, "area", number,
                      "is not a rectangle in data values; taken as a polygon");
    }
    trackers.EndEdits(window);
    return added;
}

std::vector<AreaShape> shapesOf(const ARPTrackerArray& trackers, const AMnMxMCTransform& map,
                                RegionNotes& notes)
{
    std::vector<AreaShape> shapes;
    for (int i = 0; i < trackers.count(); ++i) {
        AreaShape shape;
        if (shapeOf(*trackers(i), map, shape))
            shapes.push_back(std::move(shape));
        else
            notes.add(Kind::leftOut, "area", i + 1, "has no size or is not closed; left out");
    }
    return shapes;
}

}  // namespace pavane
