#pragma once

#include "pavane/axes/maps/cells/map_picture.h"

namespace pavane
{

/// What a colour map last showed, kept while the view stays: the palette indices of its pixels,
/// and, once another scale was asked for, their values, which depend on no scale. So new colours
/// cost nothing of the map, another range or scale costs the pixels and not the cells.
class PAVANE_API KeptPixels
{
public:
    /// The cells, or what a pixel shows of them, have changed.
    void forget();
    /// The scale has changed, or the indices of colours.
    void forgetIndices() { painted_ = 0; }
    /// Makes the pixels of `x` and `y` those that are kept; what was kept of others is forgotten.
    /// Non-zero on success; 0, and empty, without memory.
    int show(const PixelCells& x, const PixelCells& y);
    /// Non-zero when the pixels were kept before `show` was called for them last.
    int isSameView() const { return same_; }

    /// The indices of the pixels shown, rows from the bottom up, `scanWidth` bytes each; where the
    /// map does not reach they are anything.
    unsigned char* indices() { return bits_.data(); }
    int scanWidth() const { return bits_.columns(); }
    /// Where the uppermost row begins and how far it is to the next, for paintMap.
    unsigned char* top() { return bits_.row(bits_.rows() - 1); }
    std::ptrdiff_t stride() const { return -std::ptrdiff_t{bits_.columns()}; }
    int isPainted() const { return painted_; }
    void setPainted() { painted_ = 1; }

    /// Paints the indices from the values of the pixels, which are taken from the cells when they
    /// are not kept yet. Non-zero on success; 0 without memory.
    int paint(const AMatrixAccess& cells, SharedPixel shared, const MapScale& scale,
              const MapColors& colors);
    /// How often values were taken from the cells.
    int reductions() const { return reductions_; }
    /// Copies the indices of the pixels that the map reaches; pixel (i, j) is byte
    /// to[j * stride + i].
    void copy(unsigned char* to, std::ptrdiff_t stride) const;

private:
    PixelCells x_, y_;
    AMatrix<unsigned char> bits_;
    MapReduction values_;
    int hasValues_ = 0;
    int painted_ = 0;
    int same_ = 0;
    int reductions_ = 0;
};

}  // namespace pavane
