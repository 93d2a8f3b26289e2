#include "pavane/axes/maps/cells/map_picture.h"

#include "pavane/axes/maps/cells/index_rows.h"

namespace pavane
{

int paintMap(const MapReduction& map, const PixelCells& x, const PixelCells& y,
             const MapScale& scale, const MapColors& colors, unsigned char* bits,
             std::ptrdiff_t stride, SimdPath path)
{
    if (map.values().rows() != y.groups() || map.values().columns() != x.groups() ||
        colors.count < 1 || colors.first < 0 || colors.first + colors.count > 256)
        return 0;
    const RowPainter painter(scale, colors, path);
    paintRows(x, y, bits, stride, rowKernels(path), [&](int group, unsigned char* indices) {
        painter.paint(map.values().row(group), x.groups(), indices);
    });
    return 1;
}

}  // namespace pavane
