#include "tessel/MappedPatch.h"

#include <cmath>

namespace pavane
{

namespace
{

/// The parabolas that are 1 at one of 0, 1/2, 1 and 0 at the other two.
void weights(double t, double (&w)[3])
{
    w[0] = (1 - t) * (1 - 2 * t);
    w[1] = 4 * t * (1 - t);
    w[2] = t * (2 * t - 1);
}

}  // namespace

int MappedPatch::fit(const CellMapping& mapping, CellPlace first, double height, double width)
{
    const auto exact = [&](double v, double u, CellPlace& place) {
        return mapping.map(first.column + width * u, first.row + height * v, place.column,
                           place.row);
    };
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            if (!exact(i / 2.0, j / 2.0, nodes_[i][j]))
                return 0;
    constexpr CellPlace tried[] = {{0.25, 0.25}, {0.75, 0.25}, {0.25, 0.75},
                                   {0.75, 0.75}, {0.25, 0},    {0, 0.25}};
    for (const CellPlace& part : tried) {
        CellPlace place;
        if (!exact(part.row, part.column, place))
            return 0;
        const CellPlace guess = at(part.row, part.column);
        // also where a place is not a number
        if (!(std::fabs(guess.column - place.column) < tolerance &&
              std::fabs(guess.row - place.row) < tolerance))
            return 0;
    }
    return 1;
}

CellPlace MappedPatch::at(double v, double u) const
{
    double wv[3], wu[3];
    weights(v, wv);
    weights(u, wu);
    CellPlace place;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) {
            place.column += wv[i] * wu[j] * nodes_[i][j].column;
            place.row += wv[i] * wu[j] * nodes_[i][j].row;
        }
    return place;
}

}  // namespace pavane
