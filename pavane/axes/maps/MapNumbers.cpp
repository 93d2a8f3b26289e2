#include "pavane/axes/maps/MapNumbers.h"

#include "pavane/axes/maps/map_unit.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

constexpr double notKnown = std::numeric_limits<double>::quiet_NaN();

}  // namespace

double sumInside(const AMatrixAccess& cells, const ABitMatrix* mask, const StopFlag* stop)
{
    double sum = 0;
    RowReader reader(cells);
    const int rows = mask ? std::min(cells.rows(), mask->rows()) : cells.rows();
    const int columns = mask ? std::min(cells.columns(), mask->columns()) : cells.columns();
    for (int r = 0; r < rows && !isStopped(stop); ++r) {
        const float* const row = reader.row(r);
        if (!row)
            return notKnown;
        for (int first = 0; first < columns; first += ABitMatrix::wordBits) {
            ABitMatrix::Word left =
                mask ? mask->row(r)[first / ABitMatrix::wordBits] : ~ABitMatrix::Word{0};
            for (; left; left &= left - 1) {
                const int c = first + std::countr_zero(left);
                if (c < columns && std::isfinite(row[c]))
                    sum += double{row[c]};
            }
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
        return {unit.factor / beam, "Jy" + unit.width};
    return {1 / beam, header.bunit + "*beam"};
}

MapNumbers mapNumbers(const AMatrixAccess& cells, const MapContent& content, const ABitMatrix* mask,
                      const StopFlag* stop)
{
    const MapRange& range = content.range;
    const MapFrame& frame = content.frame;
    const MapHeader& header = content.map.header;
    MapNumbers numbers;
    numbers.least = range.isEmpty() ? notKnown : range.least;
    numbers.peak = range.isEmpty() ? notKnown : range.greatest;
    numbers.peakOffset = {notKnown, notKnown};
    if (!range.isEmpty()) {
        numbers.peakColumn = range.peakColumn;
        numbers.peakRow = range.peakRow;
        if (frame.onSky)
            numbers.peakOffset = frame.offsetOf(range.peakColumn, range.peakRow);
    }
    numbers.noise = content.noise.finiteCells ? content.noise.sigma : notKnown;
    const double beam = beamCells(header, frame);
    numbers.beamCells = beam > 0 ? beam : notKnown;
    numbers.maskCells = mask ? mask->count() : std::int64_t{cells.rows()} * cells.columns();
    const FluxUnit flux = fluxUnit(header, frame);
    numbers.flux = sumInside(cells, mask, stop) * flux.factor;
    numbers.unit = header.bunit;
    numbers.fluxUnit = flux.unit;
    return numbers;
}

}  // namespace pavane
