#include "pavane/trackers/masks/APolyPoints.h"

#include "pavane/containers/item_io.h"

#include <algorithm>
#include <new>
#include <utility>

namespace pavane
{

namespace
{

constexpr std::int64_t pointBytes = 8;
static_assert(sizeof(CPoint) == pointBytes, "points are stored as they lie in memory");

}  // namespace

APolyPoints::APolyPoints(const CPoint* from, int n)
{
    if (n < 1 || !from)
        return;
    points = new (std::nothrow) CPoint[static_cast<std::size_t>(n)];
    if (!points)
        return;
    count = n;
    std::copy_n(from, n, points);
}

APolyPoints& APolyPoints::operator=(const APolyPoints& other)
{
    APolyPoints copy(other);
    std::swap(count, copy.count);
    std::swap(points, copy.points);
    return *this;
}

void APolyPoints::Free()
{
    delete[] points;
    points = nullptr;
    count = 0;
}

int APolyPoints::Store(AFile& file) const
{
    if (!storeItem(file, count))
        return 0;
    return count < 1 || file.write(points, count * pointBytes);
}

int APolyPoints::Load(AFile& file)
{
    Free();
    std::int32_t wanted = 0;
    if (!loadItem(file, wanted))
        return 0;
    if (wanted < 1)
        return 1;
    if (wanted * pointBytes > file.left())
        return 0;
    points = new (std::nothrow) CPoint[static_cast<std::size_t>(wanted)];
    if (!points)
        return 0;
    count = wanted;
    if (file.read(static_cast<void*>(points), wanted * pointBytes))
        return 1;
    Free();
    return 0;
}

}  // namespace pavane
