#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/MapFrame.h"
#include "pavane/measures/areas/area_cells.h"
#include "pavane/measures/fits/source_shape.h"
#include "platform/api.h"
#include "tessel/AMatrix.h"
#include "tessel/progress_function.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// What is to be fitted.
struct GaussianFitWish {
    int sources = 1;
    int hasBackground = 0;  ///< a constant below them
    int isBeam = 0;         ///< all have the shape of the map's beam
};

/// A number and its error; NaN is what does not exist.
struct FittedValue {
    double value = SourceShape::none, error = SourceShape::none;
};

/// A shape with the errors of its three numbers.
struct FittedShape {
    FittedValue major, minor, angle;
};

/// One Gaussian. Places are cells from 0; lengths are arcseconds, of maps that are not on the sky
/// cells, angles degrees from north (there: up) through east (there: left).
struct FittedGaussian {
    FittedValue peak, column, row;
    FittedValue east, north;  ///< arcseconds from the reference pixel; only on the sky
    FittedValue flux;         ///< in the unit of FluxScale
    FittedShape shape;        ///< full widths at half maximum; without errors where it was fixed
    double snr = SourceShape::none;  ///< peak over noise
    /// Without the beam, axes that are not above 0 NaN ("unresolved"), and then their upper limits:
    /// the beam there times the root of 4 ln 2 / pi ln(SNR / (SNR - 1)) (Lobanov 2005); NaN for a
    /// peak not above the noise. Only of maps with a beam, and of free shapes.
    FittedShape deconvolved;
    double majorLimit = SourceShape::none, minorLimit = SourceShape::none;
    CellSource model;
};

/// What was found. A plain value.
struct GaussianFit {
    std::vector<FittedGaussian> sources;
    FittedValue background;
    int hasBeam = 0, onSky = 0, isShapeFixed = 0;
    double noise = SourceShape::none;     ///< that the errors are of
    double residual = SourceShape::none;  ///< rms of what is left, over cells less parameters
    std::int64_t cells = 0;               ///< with a value
    int parameters = 0;
    int steps = 0;
};

/// Steps that a fit may take.
inline constexpr int mostFitSteps = 200;

/// Fits Gaussians to the cells of an area that have a value, by least squares (Levenberg 1944,
/// Marquardt 1963): one after another where the model is farthest from the cells, all together
/// each time. Errors are those of covarianceOf times `noise`, that of a cell (NaN: none are known).
/// Non-zero on success; else 0, nothing is in `fit`, and `error` is a line: fewer cells than
/// parameters, no beam to fix shapes to, no end in mostFitSteps steps, a width below half a cell or
/// beyond four times the area, a place that left the area, sources that are not told apart, no
/// memory, or `progress` gave up.
PAVANE_API int fitGaussians(const AMatrixAccess& cells, const AreaCells& area,
                            const MapHeader& header, const MapFrame& frame, double noise,
                            const GaussianFitWish& wish, GaussianFit& fit, std::string& error,
                            const ProgressFunction& progress = {});

/// Takes the Gaussians and the background of a fit off a map, its blank cells as they are: the
/// residual. The background only inside `area` (null: everywhere).
PAVANE_API void takeOff(const GaussianFit& fit, AMatrix<float>& cells, const AreaCells* area);

}  // namespace pavane
