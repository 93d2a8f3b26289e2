#include "pavane/axes/maps/cells/KeptPixels.h"

#include "pavane/axes/maps/cells/index_rows.h"

namespace pavane
{

void KeptPixels::forget()
{
    const int reductions = reductions_;
    *this = KeptPixels();
    reductions_ = reductions;
}

int KeptPixels::show(const PixelCells& x, const PixelCells& y)
{
    same_ = bits_.cells() > 0 && x == x_ && y == y_;
    if (same_)
        return 1;
    hasValues_ = painted_ = 0;
    const int scan = (x.pixels() + 3) & ~3;  // as images have it
    if (bits_.rows() != y.pixels() || bits_.columns() != scan)
        bits_ = AMatrix<unsigned char>(y.pixels(), scan);
    x_ = x;
    y_ = y;
    return bits_.cells() > 0;
}

int KeptPixels::paint(const AMatrixAccess& cells, SharedPixel shared, const MapScale& scale,
                      const MapColors& colors)
{
    if (!hasValues_) {
        ++reductions_;
        hasValues_ = values_.reduce(cells, x_, y_, shared);
    }
    painted_ = hasValues_ && paintMap(values_, x_, y_, scale, colors, top(), stride());
    return painted_;
}

void KeptPixels::copy(unsigned char* to, std::ptrdiff_t stride) const
{
    const CellSpan pixels = coveredPixels(x_);
    for (int j = 0; j < y_.pixels(); ++j)
        if (y_.groupOf(j) >= 0)
            std::copy(bits_.row(y_.pixels() - 1 - j) + pixels.first,
                      bits_.row(y_.pixels() - 1 - j) + pixels.end, to + j * stride + pixels.first);
}

}  // namespace pavane
