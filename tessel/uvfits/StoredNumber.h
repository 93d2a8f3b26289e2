#pragma once

#include "tessel/api.h"

#include <limits>
#include <string>

namespace pavane
{

/// A number of a file, with what it takes to show it as it is stored.
struct StoredNumber {
    double value = std::numeric_limits<double>::quiet_NaN();  ///< NaN where the file has none
    int isSingle = 0;  ///< stored in single precision: fewer digits tell all of it
};

/// The shortest text that reads back to the stored value, divided by ten to the power of `places`
/// by moving the point alone: Hz with 6 places are MHz. "" for NaN, as valToStr beyond 1e16 and
/// below 1e-5.
PAVANE_API std::string storedText(const StoredNumber& number, int places = 0);

}  // namespace pavane
