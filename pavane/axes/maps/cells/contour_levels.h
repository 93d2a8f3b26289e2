#pragma once

#include "platform/api.h"
#include "platform/types.h"

#include <vector>

namespace pavane
{

/// What the numbers of a list of contour levels mean.
enum class LevelUnit {
    automatic,  ///< no list: chosen from noise and peak
    absolute,   ///< values of the map
    peak,       ///< per cent of the greatest value
    noise       ///< multiples of the noise
};

/// A list of contour levels as a user gives it.
struct PAVANE_API ContourLevels {
    LevelUnit unit = LevelUnit::automatic;
    std::vector<double> factors;

    /// Reads "peak:-1,1,2,4", "sigma:-3,3,6" or "abs:0.001,0.01". Non-zero on success; 0, and
    /// unchanged, for any other text, an empty list or more than 250 levels.
    int read(const CString& text);
    /// The text that `read` reads; "auto" for automatic levels and "none" for a list without any.
    CString text() const;
    /// The levels as values of a map, rising, each once. Automatic levels are 3 times the noise,
    /// its negative and its doublings below the peak; where the noise is not known, 1, 2, 4 ... 64
    /// and 90 per cent of the peak. Multiples of no noise are none.
    std::vector<double> values(double peak, double noise) const;
    /// Non-zero when automatic levels lie at 3 times the noise only because the peak is not above
    /// it.
    int isAbovePeak(double peak, double noise) const;
    friend bool operator==(const ContourLevels&, const ContourLevels&) = default;
};

}  // namespace pavane
