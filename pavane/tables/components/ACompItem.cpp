#include "pavane/tables/components/ACompItem.h"

#include "pavane/containers/item_io.h"
#include "pavane/tables/components/component_map.h"
#include "pavane/tables/components/component_text.h"
#include "pavane/tables/components/component_visibility.h"
#include "tessel/value_text.h"

#include <cmath>
#include <cstring>
#include <string>
#include <string_view>

namespace pavane
{

namespace
{

constexpr int textDigits = 6;
/// A component so large or so far out, in cells, leaves nothing in any one of them.
constexpr double mostCells = 1e12;

}  // namespace

int ACompItem::Load(const char* line)
{
    std::string_view text(line, strnlen(line, lineSize));
    return takeComponent(text, *this);
}

int ACompItem::Store(char* buffer) const
{
    std::string text = std::to_string(type);
    for (const double field :
         {peakFlux_, largeAxis_, axisRatio_, inclination_, angle_, distance_, width_})
        text += ' ' + valToStr(field, textDigits);
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return static_cast<int>(text.size());
}

int ACompItem::Load(AFile& file)
{
    ACompItem read;
    if (!loadItem(file, read.type) || !loadItem(file, read.peakFlux_) ||
        !loadItem(file, read.largeAxis_) || !loadItem(file, read.axisRatio_) ||
        !loadItem(file, read.inclination_) || !loadItem(file, read.angle_) ||
        !loadItem(file, read.distance_) || !loadItem(file, read.width_))
        return 0;
    *this = read;
    return 1;
}

int ACompItem::Store(AFile& file) const
{
    return storeItem(file, type) && storeItem(file, peakFlux_) && storeItem(file, largeAxis_) &&
           storeItem(file, axisRatio_) && storeItem(file, inclination_) &&
           storeItem(file, angle_) && storeItem(file, distance_) && storeItem(file, width_);
}

std::complex<double> ACompItem::VfromUV(double u, double v) const
{
    return visibility(ComponentTerms(*this), u, v);
}

void ACompItem::ToMap(AMatrix<float>& map, const TMinMax& range) const
{
    addComponent(map, MapGrid(map, range), *this);
}

void addComponent(AMatrix<float>& map, const MapGrid& grid, const ACompItem& item)
{
    if (!grid.usable || !hasFiniteFields(item))
        return;
    const ComponentShape shape(item);
    if (!(cellsSpanned(grid, shape) < mostCells))
        return;
    switch (item.type) {
    case gaussianComponent:
        return addGaussian(map, grid, shape);
    case diskComponent:
        return addEllipse(map, grid, shape, Profile::uniform, 0);
    case thinRingComponent:
        return addThinRing(map, grid, shape);
    case sphereComponent:
        return addEllipse(map, grid, shape, Profile::sphere, 0);
    case stripComponent:
        return addStrip(map, grid, shape);
    case wideRingComponent:
        return addWideRing(map, grid, shape, item.Width());
    default:
        return addPoint(map, grid, shape);
    }
}

}  // namespace pavane
