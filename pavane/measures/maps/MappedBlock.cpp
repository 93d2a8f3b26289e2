#include "pavane/measures/maps/MappedBlock.h"

#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double tolerance = 1e-4;  // cells
/// Smaller parts are mapped cell by cell.
constexpr int leastPart = 5;

/// The parabolas that are 1 at one of 0, 1/2, 1 and 0 at the other two.
void weights(double t, double (&w)[3])
{
    w[0] = (1 - t) * (1 - 2 * t);
    w[1] = 4 * t * (1 - t);
    w[2] = t * (2 * t - 1);
}

}  // namespace

void MappedBlock::map(const CellMapping& mapping, int row, int column, int rows, int columns)
{
    mapping_ = &mapping;
    row_ = row;
    column_ = column;
    rows_ = rows;
    columns_ = columns;
    fill({0, 0, rows, columns});
}

MappedBlock::Place MappedBlock::exact(double r, double c) const
{
    Place place{none, none};
    (void)mapping_->map(column_ + c, row_ + r, place.column, place.row);
    return place;
}

void MappedBlock::fill(const Part& part)
{
    if (part.rows < leastPart || part.columns < leastPart) {
        for (int r = part.row; r < part.row + part.rows; ++r)
            for (int c = part.column; c < part.column + part.columns; ++c)
                places_[indexOf(r, c)] = exact(r, c);
        return;
    }
    if (fitted(part))
        return;
    const int below = part.rows / 2, left = part.columns / 2;
    fill({part.row, part.column, below, left});
    fill({part.row, part.column + left, below, part.columns - left});
    fill({part.row + below, part.column, part.rows - below, left});
    fill({part.row + below, part.column + left, part.rows - below, part.columns - left});
}

int MappedBlock::fitted(const Part& part)
{
    Place nodes[3][3];
    const double height = part.rows - 1, width = part.columns - 1;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) {
            nodes[i][j] = exact(part.row + height * i / 2, part.column + width * j / 2);
            if (!std::isfinite(nodes[i][j].column))
                return 0;
        }
    const auto between = [&nodes](double v, double u) {
        double wv[3], wu[3];
        weights(v, wv);
        weights(u, wu);
        Place place{0, 0};
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j) {
                place.column += wv[i] * wu[j] * nodes[i][j].column;
                place.row += wv[i] * wu[j] * nodes[i][j].row;
            }
        return place;
    };
    for (const auto& [v, u] : {std::pair(0.25, 0.25), std::pair(0.25, 0.75), std::pair(0.75, 0.25),
                               std::pair(0.75, 0.75), std::pair(0.0, 0.25), std::pair(0.25, 0.0)}) {
        const Place guess = between(v, u);
        const Place place = exact(part.row + height * v, part.column + width * u);
        // also when there is none
        if (!(std::fabs(guess.column - place.column) < tolerance &&
              std::fabs(guess.row - place.row) < tolerance))
            return 0;
    }
    for (int r = 0; r < part.rows; ++r)
        for (int c = 0; c < part.columns; ++c)
            places_[indexOf(part.row + r, part.column + c)] = between(r / height, c / width);
    return 1;
}

/// The way from one cell to the next one in a direction, from both sides where they are there.
int MappedBlock::step(int r, int c, int dr, int dc, double (&to)[2]) const
{
    const auto isInside = [this](int y, int x) {
        return y >= 0 && y < rows_ && x >= 0 && x < columns_ && std::isfinite(column(y, x));
    };
    const int after = isInside(r + dr, c + dc), before = isInside(r - dr, c - dc);
    const Place& a = before ? at(r - dr, c - dc) : at(r, c);
    const Place& b = after ? at(r + dr, c + dc) : at(r, c);
    const int steps = after + before;
    if (!steps || !std::isfinite(column(r, c)))
        return 0;
    to[0] = (b.column - a.column) / steps;
    to[1] = (b.row - a.row) / steps;
    return 1;
}

double MappedBlock::area(int r, int c) const
{
    double right[2], up[2];
    return step(r, c, 0, 1, right) && step(r, c, 1, 0, up)
               ? std::fabs(right[0] * up[1] - right[1] * up[0])
               : none;
}

}  // namespace pavane
