#pragma once

#include "pavane/tables/components/component_visibility.h"

#include <vector>

/// Visibilities of all components at n points with SLEEF's vector functions, component by
/// component; SLEEF has no Bessel functions, so these are the C library's.
void sleefVisibilities(const std::vector<pavane::ComponentTerms>& model, const double* u,
                       const double* v, int n, double* real, double* imaginary);
