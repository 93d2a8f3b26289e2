#pragma once

#include "pavane/tables/components/AComponents.h"
#include "pavane/tables/components/component_visibility.h"
#include "tessel/StopFlag.h"

#include <complex>
#include <cstddef>
#include <vector>

namespace pavane
{

/// The visibilities of a model's components, made ready to be asked for at many places, a few or
/// very many at a time. A copy of the model: later changes of it do not count.
class PAVANE_API ModelVisibilities
{
public:
    explicit ModelVisibilities(const AComponents& model = {});

    std::size_t count() const { return terms_.size(); }
    /// Sums at n points (u[i], v[i]) in wavelengths into out[i]; errors are those of
    /// AComponents::VfromUV of arrays. `out` does not overlap u and v. 0 when stopped, with only
    /// some of it written.
    int at(const double* u, const double* v, std::size_t n, std::complex<double>* out,
           const StopFlag* stop = nullptr) const;

    /// Radians from the centre to the farthest end of a component.
    double extent() const { return extent_; }
    /// Turns by which the phase of the farthest component is wrong at the most where the greatest
    /// |w| is so many wavelengths, since places are taken to lie in the plane of u and v:
    /// w (1 - sqrt(1 - l^2 - m^2)).
    double wTurns(double greatestW) const;

private:
    std::vector<ComponentTerms> terms_;
    double extent_ = 0;
};

/// Below so many turns of ModelVisibilities::wTurns visibilities of components count as exact.
inline constexpr double mostWTurns = 1e-4;

}  // namespace pavane
