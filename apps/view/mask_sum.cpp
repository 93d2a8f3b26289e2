#include "apps/view/mask_sum.h"

#include "pavane/axes/maps/map_unit.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace pavane
{

double sumInside(const AMatrix<float>& cells, const ABitMatrix& mask)
{
    double sum = 0;
    const int rows = std::min(cells.rows(), mask.rows());
    const int columns = std::min(cells.columns(), mask.columns());
    for (int r = 0; r < rows; ++r)
        for (int first = 0; first < columns; first += ABitMatrix::wordBits) {
            ABitMatrix::Word left = mask.row(r)[first / ABitMatrix::wordBits];
            for (; left; left &= left - 1) {
                const int c = first + std::countr_zero(left);
                if (c < columns && std::isfinite(cells(r, c)))
                    sum += double{cells(r, c)};
            }
        }
    return sum;
}

FluxUnit fluxUnit(const MapHeader& header, const MapFrame& frame)
{
    const MapUnit unit = mapUnit(header.bunit);
    const double beam = unit.perPixel ? 1 : beamCells(header, frame);
    if (!(beam > 0))
        return {1, header.bunit.empty() ? "cell" : header.bunit + "*cell"};
    if (unit.isFlux || header.bunit.empty())
        return {unit.factor / beam, "Jy"};
    return {1 / beam, header.bunit + "*beam"};
}

}  // namespace pavane
