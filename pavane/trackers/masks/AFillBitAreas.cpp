#include "pavane/trackers/masks/AFillBitAreas.h"

#include "pavane/resources/tracker_messages.h"
#include "pavane/trackers/masks/APolyPoints.h"
#include "pavane/trackers/masks/scan_fill.h"

namespace pavane
{

void AFillBitAreas::FillBitMatrix(ABitMatrix* m, const APolyPoints* poly)
{
    if (!m || !poly)
        return;
    int overflow = 0;
    (void)fillPolygon(*m, poly->points, poly->count, rowCapacity, overflow);
    if (!overflow || reported_)
        return;
    reported_ = 1;
    (void)messages_.tell(manyAreaFillPoints);
}

}  // namespace pavane
