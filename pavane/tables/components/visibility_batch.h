#pragma once

#include "pavane/tables/components/component_visibility.h"

namespace pavane
{

/// Adds the visibilities of one component at n points to `real` and `imaginary`, in wide vectors.
/// Non-zero when it did; 0, and nothing is added, when the processor has no fused multiply-add or
/// the component or a point is out of the range in which the vector form is exact enough: then the
/// caller takes the single-point form. `greatestU` and `greatestV` are the greatest sizes of u and
/// v, NaN when there is one.
int addVisibilities(const ComponentTerms& terms, const double* u, const double* v, int n,
                    double greatestU, double greatestV, double* real, double* imaginary);

}  // namespace pavane
