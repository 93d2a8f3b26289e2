#pragma once

#include "pavane/measures/areas/AreaMeasures.h"
#include "pavane/measures/fits/GaussianFit.h"
#include "pavane/measures/profiles/NumberTable.h"
#include "platform/api.h"
#include "tessel/SkyCoordinates.h"

#include <string>
#include <vector>

namespace pavane
{

/// One number of a fitted Gaussian: its key, its unit ("" for none), and as it is told in a table.
struct FitNumber {
    const char* key;
    CString unit;
    NumberColumn column;
    double value;
};

/// All numbers of a Gaussian of a fit, in the same order and with the same keys for all Gaussians
/// on a map. What there is not is NaN. Lengths are mas on the sky, else cells; pixels count from 1;
/// positions are degrees. May throw std::bad_alloc, as the others may.
PAVANE_API std::vector<FitNumber> numbersOf(const GaussianFit& fit, int source,
                                            const FluxScale& scale, const SkyCoordinates& sky,
                                            const MapFrame& frame);

/// A fit by the name of the cells that it is of.
struct NamedFit {
    CString name;
    GaussianFit fit;
};

/// A row a Gaussian.
PAVANE_API NumberTable fitTable(const std::vector<NamedFit>& fits, const FluxScale& scale,
                                const SkyCoordinates& sky, const MapFrame& frame);

}  // namespace pavane
