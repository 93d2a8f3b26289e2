#include "apps/view/CubeCells.h"

#include <algorithm>
#include <limits>

namespace pavane
{

CubeCells::CubeCells(const std::string& file, int planes, int rows, int columns)
    : file_(file), rows_(rows), columns_(columns)
{
    all_.reserve(static_cast<std::size_t>(planes));
    for (int i = 0; i < planes; ++i)
        all_.emplace_back(*this, i);
}

std::vector<const AMatrixAccess*> CubeCells::planes() const
{
    std::vector<const AMatrixAccess*> planes;
    for (const Plane& plane : all_)
        planes.push_back(&plane);
    return planes;
}

const float* CubeCells::row(int plane, int row)
{
    if (read_ != plane) {
        std::string ignored;  // who shows the plane tells of it
        int isGivenUp = 0;
        const auto going = [&](double /*done*/) {
            isGivenUp = goesOn_ && !goesOn_();
            return !isGivenUp;
        };
        const int isRead = readFitsMap(file_, plane, map_, ignored, going);
        if (!isRead || map_.cells.rows() != rows_ || map_.cells.columns() != columns_)
            map_ = FitsMap();
        read_ = isGivenUp ? -1 : plane;  // who asks again later gets it
    }
    return map_.cells.rows() == rows_ ? map_.cells.row(row) : nullptr;
}

const float* CubeCells::Plane::floatRow(int row) const { return cube_->row(number_, row); }

void CubeCells::Plane::copyRow(int row, int first, int count, float* to) const
{
    if (const float* const cells = floatRow(row))
        std::copy_n(cells + first, count, to);
    else
        std::fill_n(to, count, std::numeric_limits<float>::quiet_NaN());
}

}  // namespace pavane
