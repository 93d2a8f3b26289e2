#pragma once

#include "platform/api.h"
#include "platform/geometry.h"
#include "tessel/AFile.h"

#include <cstdint>

namespace pavane
{

/// One closed polygon in cells of a map (x = column, y = row, from 0), the record of area files.
/// Owns its points.
struct PAVANE_API APolyPoints {
    std::int32_t count = 0;
    CPoint* points = nullptr;

    APolyPoints() = default;
    /// Copies the n points; no memory, or n below 1, leaves no points.
    APolyPoints(const CPoint* from, int n);
    explicit APolyPoints(AFile& file) { (void)Load(file); }
    APolyPoints(const APolyPoints& other) : APolyPoints(other.points, other.count) {}
    APolyPoints& operator=(const APolyPoints& other);
    ~APolyPoints() { Free(); }

    /// Drops the points.
    void Free();
    /// Writes the count (int32), then x and y (int32 each) of every point. Returns 1 for a polygon
    /// without points once its count is written, else non-zero when all was written.
    int Store(AFile& file) const;
    /// Reads what Store wrote in place of the old points. A count that the rest of the file does
    /// not hold, or a short read, gives 0 and no points. A count below 1 counts as 0.
    int Load(AFile& file);
};

}  // namespace pavane
