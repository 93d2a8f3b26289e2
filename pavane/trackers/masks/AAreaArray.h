#pragma once

#include "pavane/containers/APtrArray.h"
#include "pavane/trackers/masks/APolyPoints.h"
#include "platform/api.h"
#include "tessel/ABitMatrix.h"
#include "tessel/AFile.h"

namespace pavane
{

/// The areas marked on a map: polygons, which the array owns.
class PAVANE_API AAreaArray : public APtrArray<APolyPoints*>
{
public:
    AAreaArray() : APtrArray(0, 0, growth) {}
    explicit AAreaArray(AFile& file) : AAreaArray() { (void)Load(file); }
    /// Copies the polygons.
    AAreaArray(const AAreaArray& other) : AAreaArray() { *this = other; }
    AAreaArray& operator=(const AAreaArray& other);

    /// Frees the polygons and takes room for so many at once, instead of growing in small steps.
    void Begin(int polygons)
    {
        Free();
        begin(0, polygons);
    }

    /// Makes m the mask of all areas; without any polygon every bit is 1. A message about rows with
    /// too many crossings is shown once.
    void FillBits(ABitMatrix& m) const;

    /// Writes the number of polygons (int32), then each. Deliberate: the result is that of the
    /// number alone, as the host's area dialog expects; what follows is checked by
    /// `writeCellAreaFile`.
    int Store(AFile& file) const;
    /// Reads what Store wrote in place of the old polygons, as many of them as the file holds. 0
    /// when the number cannot be read or promises more polygons than the file has bytes for, or
    /// when a polygon was refused: the array is empty then.
    int Load(AFile& file);

private:
    static constexpr int growth = 32;
};

}  // namespace pavane
