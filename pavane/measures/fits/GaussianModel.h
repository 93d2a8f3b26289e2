#pragma once

#include "pavane/measures/fits/symmetric_matrix.h"

#include <array>
#include <cstdint>
#include <vector>

namespace pavane
{

/// height * exp(-(xx dx^2 + 2 xy dx dy + yy dy^2)) about a place, in cells from 0 (x = column).
struct CellSource {
    double height = 0, x = 0, y = 0;
    double xx = 0, xy = 0, yy = 0;
};

/// A block of a map that a model is fitted to. `weights` are 1 or 0; values are finite, and 0 where
/// the weight is.
struct FitCells {
    int rows = 0, columns = 0;
    int firstRow = 0, firstColumn = 0;
    std::vector<float> values, weights;
    std::int64_t count = 0;  ///< weights of 1

    const float* valuesOf(int row) const { return values.data() + at(row); }
    const float* weightsOf(int row) const { return weights.data() + at(row); }

private:
    std::int64_t at(int row) const { return std::int64_t{row} * columns; }
};

/// Gaussians and perhaps a constant below them. The parameters that a fit may change stand in this
/// order: of each source height, x, y and, unless shapes are fixed, xx, xy, yy; then the
/// background.
struct GaussianModel {
    std::vector<CellSource> sources;
    double background = 0;
    int hasBackground = 0;
    int isShapeFixed = 0;

    int perSource() const { return isShapeFixed ? 3 : 6; }
    int parameters() const
    {
        return perSource() * static_cast<int>(sources.size()) + hasBackground;
    }
    /// Adds a change of all parameters.
    void move(const std::vector<double>& change);
};

/// What of a row of cells a Gaussian is seen in: the exponentials `e` from `first` to below `end`;
/// beyond them they are below 1e-30 of its height.
struct SourceRow {
    int first = 0, end = 0;
    std::vector<double> e;  ///< by column
};

/// One row of a source, columns 0 to below `columns` of cells that begin at column `firstColumn`,
/// in the row `y` of the map. Each is had from its neighbour by two products.
void fillRow(const CellSource& source, double y, int firstColumn, int columns, SourceRow& row);

/// The sums that a step of a fit is made of.
class GaussianSums
{
public:
    /// J'J and J'r of the model on the cells (upper half), r = cells - model.
    void find(const GaussianModel& model, const FitCells& cells);
    const SquareMatrix& squares() const { return squares_; }
    const std::vector<double>& slopes() const { return slopes_; }
    double residual() const { return residual_; }  ///< r'r

    /// factor * e * dx^x * dy^y of a derivative, e the exponential.
    struct Term {
        double factor = 0;
        int x = 0, y = 0;
    };
    using Derivatives = std::array<std::array<Term, 2>, 6>;
    /// Sums of e e dx^i dy^j, of e r dx^i dy^j and of e dx^i dy^j over the cells.
    struct SourceMoments {
        double squares[5][5] = {}, left[3][3] = {}, ones[3][3] = {};
    };

private:
    void addRow(const GaussianModel& model, const FitCells& cells, int row);
    void addPair(const GaussianModel& model, const FitCells& cells, double y, std::size_t s,
                 std::size_t t);
    void addOwn(const GaussianModel& model, int first, const SourceMoments& own,
                const Derivatives& slopes);

    SquareMatrix squares_;
    std::vector<double> slopes_;
    double residual_ = 0;
    std::vector<SourceRow> rows_;
    std::vector<SourceMoments> own_;
    std::vector<double> left_, ones_;
};

}  // namespace pavane
