#include "pavane/trackers/masks/component_mask.h"

#include "pavane/axes/maps/MapFrame.h"
#include "pavane/tables/components/AComponents.h"
#include "pavane/tables/components/component_outline.h"
#include "pavane/trackers/masks/outline_cells.h"
#include "pavane/trackers/masks/scan_fill.h"

#include <limits>

namespace pavane
{

int componentMask(const AComponents& model, const MapFrame& frame, ABitMatrix& mask)
{
    const MapCells map{mask.columns(), mask.rows(), frame.centres()};
    AArray<APoint<double>> outline(0, 0, 256);
    AArray<CPoint> cells(0, 0, 256);
    int overflow = 0;
    for (int i = 0; i < model.count(); ++i) {
        const APoint<double> centre = componentOutline(model(i), outline);
        if (outline.count() == 0 && outline.Add(centre) < 0)
            return 0;
        for (int k = 0; k < outline.count(); ++k) {
            const MapPlace place = frame.onAxes(outline(k).x, outline(k).y);
            outline(k) = {place.x, place.y};
        }
        if (!cellsOf(outline, map, cells))
            return !map.usable();
        if (!fillPolygon(mask, cells.lpArray(), cells.count(), std::numeric_limits<int>::max(),
                         overflow))
            return 0;
    }
    return 1;
}

}  // namespace pavane
