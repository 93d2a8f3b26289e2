#pragma once

namespace pavane
{

/// How far a deconvolution was after so many iterations, those of all rounds before it counted.
struct PeakPoint {
    double iterations = 0;
    double peak = 0;  ///< of the residual, Jy/beam; not above 0: not known
    double flux = 0;  ///< of the model, Jy; not-a-number: not known
};

}  // namespace pavane
