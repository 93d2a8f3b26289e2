// From the areas of a collection to the cells of a map.

#include "pavane/trackers/collections/TrackerCollection.h"
#include "pavane/trackers/masks/AAreaBitFill.h"
#include "pavane/trackers/masks/mask_order.h"

namespace pavane
{

void TrackerCollection::FillMatrix(ABitMatrix& m, int nx, int ny, const TMinMax& mapRange)
{
    fillInOrder(
        m, trackerCount(), [this](int i) { return trackerAt(i)->IsNeverClean(); },
        [&](int i) { FillMatrixForItem(i, m, nx, ny, mapRange); });
}

void TrackerCollection::FillMatrixForItem(int i, ABitMatrix& m, int nx, int ny,
                                          const TMinMax& mapRange)
{
    AArray<CPoint> cells;
    if (trackerAt(i) && GetAreaCells(i, cells, nx, ny, mapRange))
        AAreaBitFill().FillMatrix(m, cells.lpArray(), cells.count());
}

}  // namespace pavane
