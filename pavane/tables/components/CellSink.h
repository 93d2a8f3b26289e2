#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "tessel/AMatrix.h"
#include "tessel/StopFlag.h"

namespace pavane
{

/// Where the cells of a map lie: the centre of cell (row, column) is (x + column dx, y + row dy).
struct MapGrid {
    /// Not usable when the range is empty or unset, or the map has no cells.
    MapGrid(const AMatrix<float>& map, const TMinMax& range, const StopFlag* stop = nullptr);
    bool usable = false;
    const StopFlag* stop;  ///< what adds flux looks at it and leaves out the rest
    int rows, columns;
    double x, y;
    double dx, dy;
};

/// Collects flux on a map. It is summed in doubles in a window of cells that follows the places, so
/// that many small amounts are not rounded one by one.
class CellSink
{
public:
    /// The window has this many rows and columns.
    CellSink(AMatrix<float>& map, const MapGrid& grid, int rows, int columns);
    CellSink(const CellSink&) = delete;
    CellSink& operator=(const CellSink&) = delete;
    ~CellSink() { flush(); }

    /// Shares `flux` at (x, y) among the four cells around it in proportion to the distances, which
    /// keeps the flux and its centre. In the outer half of the outermost cells these take all; what
    /// is farther out is dropped.
    void add(double x, double y, double flux);

private:
    void flush();
    void moveTo(int row, int column);

    AMatrix<float>& map_;
    const MapGrid& grid_;
    AMatrix<double> window_;
    int row_ = 0;
    int column_ = 0;
    // what of the window is in use: ends excluded
    int firstRow_ = 0, rowEnd_ = 0;
    int firstColumn_ = 0, columnEnd_ = 0;
};

}  // namespace pavane
