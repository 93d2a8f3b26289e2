#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/KeptPixels.h"
#include "pavane/axes/maps/cells/map_statistics.h"
#include "pavane/axes/ranges/TMinMax.h"
#include "platform/types.h"
#include "tessel/rgb_map.h"

#include <cstdint>
#include <vector>

namespace pavane
{

class StopFlag;

/// Three maps of the same cells as one picture: the values of each, on a scale, are the brightness
/// of its colour. A cell that is blank in one map lacks that colour; one that is blank in all of
/// them is blank. What was shown last is kept for the next picture of the same view.
class PAVANE_API RgbImage
{
public:
    explicit RgbImage(RgbMap map);
    RgbImage(const RgbImage&) = delete;
    RgbImage& operator=(const RgbImage&) = delete;

    const RgbMap& map() const { return map_; }
    /// The values that a colour begins and ends with: those of its band or, without, of its cells;
    /// unset for a map without finite cells.
    TMnMx range(std::size_t band) const;
    /// An empty range takes all values of the cells.
    void setRange(std::size_t band, double low, double high);

    /// Pixels as StretchDIBits takes them with 32 bits, x.pixels() to a row, rows from the bottom
    /// up; where the maps do not reach they are anything. A logarithmic scale whose range does not
    /// start above 0 starts at the noise of its map. 0 without memory and when it was stopped.
    int paint(const PixelCells& x, const PixelCells& y, SharedPixel shared, MapScaleKind kind,
              COLORREF blank, const StopFlag* stop, std::vector<std::uint32_t>& bits);
    /// Another way to show cells that share a pixel, or a page: nothing is kept.
    void forget();

private:
    int paintBand(std::size_t band, const PixelCells& x, const PixelCells& y, SharedPixel shared,
                  MapScaleKind kind, const StopFlag* stop);

    struct Shown {
        MapRange cells;     ///< of all of them
        double noise = -1;  ///< below 0: not known yet
        MapScaleKind kind = MapScaleKind::linear;
        TMnMx range;
        KeptPixels pixels;
    };
    RgbMap map_;
    Shown shown_[rgbBands];
};

}  // namespace pavane
