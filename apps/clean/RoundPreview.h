#pragma once

#include "pavane/axes/maps/cells/MapBeam.h"
#include "pavane/imaging/MapSums.h"
#include "tessel/AMatrix.h"

#include <cmath>
#include <cstdint>
#include <string>

namespace pavane
{

/// What a round that began now would clean.
struct NextRound {
    int areas = 0;
    std::int64_t cells = 0;  ///< of the mask; of the map when `isWhole`
    int isWhole = 0;         ///< there is no area, and so no mask
    double beams = 0;        ///< areas of the beam that the cells cover; 0: not known
    CellPeak peak;           ///< of the residual inside; x below 0: not known
    double noiseInside = std::nan(""), noiseOutside = std::nan("");  ///< rms, Jy/beam
};

/// Area of a beam (arcseconds) in cells of so many mas; 0 without a beam or a cell.
double cellsOfBeam(const MapBeam& beam, double cell);

/// Looks through a residual for what lies inside and outside of a mask, some rows at a time, so
/// that a window hears its user between.
class RoundPreview
{
public:
    /// An empty mask is the whole map. `next` has what the residual does not tell.
    void begin(ABitMatrix mask, const NextRound& next);
    /// Some more rows; non-zero while there are others. A residual of another size has none.
    int step(const AMatrix<float>& residual);
    int isRunning() const { return isRunning_; }
    /// All of it, once no row is left; before that without peak and noise.
    const NextRound& result() const { return next_; }

private:
    void end();

    ABitMatrix mask_;
    NextRound next_;
    int row_ = 0, isRunning_ = 0;
    MapSums sums_;
};

/// The same as a line: "Next round: 2 areas, 3 110 cells, 12.4 beam areas; residual's peak inside
/// 0.41 mJy at 271, 262; noise out 362 uJy, in 385 uJy".
std::string nextRoundText(const NextRound& next);

}  // namespace pavane
