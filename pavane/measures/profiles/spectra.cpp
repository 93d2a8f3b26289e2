#include "pavane/measures/profiles/spectra.h"

#include "pavane/measures/profiles/RowsOfPlane.h"

#include <algorithm>
#include <new>

namespace pavane
{

namespace
{

constexpr const char* noMemory = "there is no memory for the spectra";

int find(const CubePart& part, std::vector<CellSpectrum>& spectra, std::string& error,
         const ProgressFunction& progress)
{
    int first = part.rows, last = -1;
    for (CellSpectrum& spectrum : spectra) {
        const AreaCells& cells = spectrum.cells;
        spectrum.numbers.assign(part.planes.size(), {});
        if (!cells.mask.rows())
            continue;
        first = std::min(first, cells.firstRow);
        last = std::max(last, cells.firstRow + cells.mask.rows() - 1);
    }
    if (last < first)
        return 1;
    first = part.isWhole ? 0 : first;
    RowsOfPlane plane(part, first, last);
    CellCounter counter;
    for (std::size_t i = 0; i < part.planes.size(); ++i) {
        if (progress && !progress(static_cast<double>(i) / static_cast<double>(part.planes.size())))
            return error = readingGivenUp, 0;
        if (!plane.read(part.planes[i].plane, last - first + 1, error))
            return 0;
        for (CellSpectrum& spectrum : spectra) {
            const AreaCells& cells = spectrum.cells;
            if (cells.mask.rows() && !counter.count(plane, cells.mask, cells.firstRow,
                                                    cells.firstColumn, spectrum.numbers[i]))
                return error = noMemory, 0;
        }
    }
    return 1;
}

}  // namespace

int cellsOfBox(int top, int left, int bottom, int right, int rows, int columns, AreaCells& cells)
{
    cells = {};
    top = std::max(top, 0);
    left = std::max(left, 0);
    bottom = std::min(bottom, rows - 1);
    right = std::min(right, columns - 1);
    if (top > bottom || left > right)
        return 1;
    cells = {ABitMatrix(bottom - top + 1, right - left + 1), top, left};
    cells.mask.setAll(1);
    return cells.mask.rows() > 0;
}

int cellsOfPlace(int row, int column, int rows, int columns, AreaCells& cells)
{
    return cellsOfBox(row, column, row, column, rows, columns, cells);
}

int findSpectra(const CubePart& part, std::vector<CellSpectrum>& spectra, std::string& error,
                const ProgressFunction& progress)
{
    try {
        return find(part, spectra, error, progress);
    } catch (const std::bad_alloc&) {
        error = noMemory;
        return 0;
    }
}

}  // namespace pavane
