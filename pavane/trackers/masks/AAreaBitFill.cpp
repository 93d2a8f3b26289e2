#include "pavane/trackers/masks/AAreaBitFill.h"

#include "pavane/resources/tracker_messages.h"
#include "pavane/trackers/masks/scan_fill.h"

namespace pavane
{

void AAreaBitFill::FillMatrix(ABitMatrix& m, const CPoint* pts, int n)
{
    int overflow = 0;
    (void)fillPolygon(m, pts, n, rowCapacity, overflow);  // without memory the mask stays as it is
    if (overflow)
        (void)messages_.tell(manyAreaFillPoints);
}

}  // namespace pavane
