#include "pavane/trackers/AFillBitAreas.h"

#include "pavane/trackers/APolyPoints.h"
#include "pavane/trackers/messages.h"
#include "pavane/trackers/scan_fill.h"
#include "platform/message.h"

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
    (void)AfxMessageBox(manyAreaFillPoints);
}

}  // namespace pavane
