#pragma once

#include "platform/api.h"

namespace pavane
{

/// 1 when the bins of a histogram pass for a Gaussian distribution of the given mean and variance:
/// skewness and kurtosis, each within one standard error (bounds as in Kendall and Stuart, The
/// Advanced Theory of Statistics, vol. 1, on k-statistics). 0 otherwise, and whenever a statistic
/// is not a number, as with fewer than four bins.
PAVANE_API int looksGaussian(const double* bins, int count, double mean, double variance);

}  // namespace pavane
