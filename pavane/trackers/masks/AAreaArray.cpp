#include "pavane/trackers/masks/AAreaArray.h"

#include "pavane/containers/item_io.h"
#include "pavane/trackers/masks/AFillBitAreas.h"

#include <new>

namespace pavane
{

AAreaArray& AAreaArray::operator=(const AAreaArray& other)
{
    if (this == &other)
        return *this;
    Free();
    for (int i = 0; i < other.count(); ++i) {
        auto* const copy = new (std::nothrow) APolyPoints(*other(i));
        if (!copy || Add(copy) < 0) {
            delete copy;
            return *this;
        }
    }
    return *this;
}

void AAreaArray::FillBits(ABitMatrix& m) const
{
    m.setAll(count() < 1);
    AFillBitAreas filler;
    for (int i = 0; i < count(); ++i)
        filler.FillBitMatrix(&m, (*this)(i));
}

int AAreaArray::Store(AFile& file) const
{
    if (!storeItem(file, std::int32_t{count()}))
        return 0;
    for (int i = 0; i < count(); ++i)
        if (const APolyPoints* const polygon = (*this)(i))
            (void)polygon->Store(file);
        else
            (void)storeItem(file, std::int32_t{0});
    return 1;
}

int AAreaArray::Load(AFile& file)
{
    Free();
    std::int32_t wanted = 0;
    if (!loadItem(file, wanted))
        return 0;
    constexpr std::int64_t leastRecord = sizeof(std::int32_t);
    if (wanted * leastRecord > file.left())
        return 0;
    begin(0, wanted);  // the file holds as many: no growing in small steps
    for (std::int32_t i = 0; i < wanted; ++i) {
        auto* const polygon = new (std::nothrow) APolyPoints();
        if (!polygon || !polygon->Load(file) || Add(polygon) < 0) {
            delete polygon;
            Free();
            return 0;
        }
    }
    return 1;
}

}  // namespace pavane
