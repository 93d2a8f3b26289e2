#pragma once

#include "pavane/axes/box/BoxView.h"
#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/map_scale.h"
#include "tessel/AMatrix.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// Which cells of a map a surface shows; columns and rows below 1: all from the first on.
struct CellPart {
    int firstColumn = 0, firstRow = 0;
    int columns = 0, rows = 0;
};

/// Where the centres of the cells of a surface stand in the box. The first may exceed the last, as
/// it does when x or y runs the other way.
struct SurfacePlace {
    double firstP = -0.5, lastP = 0.5;  ///< of the first and last column shown
    double firstQ = -0.5, lastQ = 0.5;  ///< of the first and last row shown
    double floor = -0.5, top = 0.5;     ///< s of the low and the high end of the scale
    double below = 0;                   ///< so far below `floor` lies what is drawn as floor
};

/// Least and greatest height in blocks of a surface, the blocks of each further level twice as wide
/// and high. A block without any height has least > greatest.
class HeightBlocks
{
public:
    struct Range {
        float least, greatest;
    };
    static constexpr int firstShift = 2;  ///< a block of level 0 is 4 x 4 squares of centres

    int build(const AMatrix<float>& heights);
    int levels() const { return static_cast<int>(levels_.size()); }
    /// The block of `level` in which square (column, row) lies.
    Range range(int level, int column, int row) const
    {
        const int shift = firstShift + level;
        return levels_[static_cast<std::size_t>(level)](row >> shift, column >> shift);
    }

private:
    std::vector<AMatrix<Range>> levels_;
};

/// A map as a surface: a height s in the box at the centre of each cell, NaN for a blank one.
///
/// Four centres that are neighbours make two triangles along the diagonal from the first column and
/// row; one with a blank corner is a hole. Heights follow a scale and never leave floor..top.
class PAVANE_API SurfaceGrid
{
public:
    /// Takes the cells of `part` that the map has; a cell that is not finite is blank. Non-zero on
    /// success; 0, and empty, when there are none, when the place is not finite, when all of them
    /// lie as good as on one line, or without memory.
    int set(const AMatrixAccess& cells, const MapScale& scale, const SurfacePlace& place,
            const CellPart& part = {});
    /// A coarser surface for pictures that have to come fast: a block of `blockColumns` x
    /// `blockRows` cells becomes its greatest; one without heights is blank.
    int setBlocks(const SurfaceGrid& fine, int blockColumns, int blockRows);
    void clear() { *this = SurfaceGrid(); }

    int isEmpty() const { return heights_.cells() < 1; }
    int columns() const { return heights_.columns(); }
    int rows() const { return heights_.rows(); }
    int hasBlanks() const { return hasBlanks_; }
    float height(int column, int row) const { return heights_(row, column); }
    const AMatrix<float>& heights() const { return heights_; }
    const HeightBlocks& blocks() const { return blocks_; }
    /// s of the floor below the surface: skirts reach down to it.
    double floor() const { return floor_; }

    /// p of a column and q of a row, and back, with fractions.
    double p(double column) const { return firstP_ + column * stepP_; }
    double q(double row) const { return firstQ_ + row * stepQ_; }
    /// From one column to the next, and from one row: 0 for a single one. Beside a place this small
    /// step may be lost.
    double stepP() const { return stepP_; }
    double stepQ() const { return stepQ_; }
    double columnOf(double p) const { return stepP_ != 0 ? (p - firstP_) / stepP_ : 0; }
    double rowOf(double q) const { return stepQ_ != 0 ? (q - firstQ_) / stepQ_ : 0; }
    BoxPoint point(int column, int row) const
    {
        return {p(column), q(row), static_cast<double>(height(column, row))};
    }
    /// Height between the centres; NaN in holes and outside.
    double heightAt(double column, double row) const;

    /// The cell of the map that a centre stands for: row of the map * columns of the map + column.
    std::uint32_t cell(int column, int row) const
    {
        return cells_.cells() > 0 ? cells_(row, column)
                                  : firstCell_ + static_cast<std::uint32_t>(row) * mapColumns_ +
                                        static_cast<std::uint32_t>(column);
    }
    /// The cells of a surface of blocks, empty for one of single cells.
    const AMatrix<std::uint32_t>& blockCells() const { return cells_; }
    int mapColumns() const { return static_cast<int>(mapColumns_); }

private:
    int finish();

    AMatrix<float> heights_;
    AMatrix<std::uint32_t> cells_;  ///< of a surface of blocks: the greatest cell of each
    HeightBlocks blocks_;
    double firstP_ = 0, stepP_ = 0, firstQ_ = 0, stepQ_ = 0;
    double floor_ = -0.5;
    std::uint32_t firstCell_ = 0, mapColumns_ = 0;
    int hasBlanks_ = 0;
};

/// A surface in a box and what goes with it.
struct SceneSurface {
    const SurfaceGrid* grid = nullptr;  ///< null: none. Not owned
    int skirt = 0;                      ///< an upright curtain from its border to its floor
    int floor = 0;                      ///< the floor below it shows something and hides
};

/// What hides in a box: one surface, or two of which the second stands above the first (stacked,
/// each between its own floor and top) or that share the box and hide each other.
struct SurfaceScene {
    SceneSurface first, second;
    int stacked = 0;
};

}  // namespace pavane
