#pragma once

#include "apps/simulate/gains.h"
#include "apps/simulate/observation.h"

#include <complex>
#include <string>
#include <vector>

namespace pavane
{

/// The two parallel hands of a sample.
struct Hands {
    std::complex<double> right, left;
};

/// What the correlator hands over: for each group its IFs in turn, each sample in two hands whose
/// mean is the sample of `jet` where the jet is observed, and a point of 1 Jy elsewhere. The gains
/// of the stations are on them, and then on the samples of `jet` too.
std::vector<Hands> correlated(const Observation& observation,
                              const std::vector<ObservedGroup>& groups, const Gains& gains,
                              Visibilities& jet);

/// Writes the groups as UVFITS with its tables, in random order and without an index of scans when
/// `unsorted`. Non-zero on success, else `error` with the name of the file.
int writeUvFile(const std::string& file, const Observation& observation,
                const std::vector<ObservedGroup>& groups, const std::vector<Hands>& hands,
                int unsorted, std::string& error);

}  // namespace pavane
