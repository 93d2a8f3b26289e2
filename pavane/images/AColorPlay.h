#pragma once

#include "pavane/containers/AArray.h"
#include "platform/api.h"
#include "platform/types.h"

namespace pavane
{

/// How the colours of a map are played with: contrast and bias as on a receiver, gamma, inversion.
/// The values of the map and the places of its colours stay; another colour stands at each place.
struct PAVANE_API AColorPlay {
    double contrast = 1;  ///< slope about the bias; 0 leaves the middle colour alone, below 0 turns
    double bias = 0.5;    ///< the place, 0..1, that gets the middle colour
    double gamma = 1;     ///< above 0; below 1 spreads the first colours, above 1 the last
    int invert = 0;

    /// The place of the colour that stands at place `t` (0 first, 1 last): (t - bias) contrast +
    /// 0.5, cut to 0..1, to the power of gamma, then 1 less that when inverted. An infinite
    /// contrast is a step at the bias.
    double place(double t) const;
    /// Puts the colours of a palette in the places that they get; each is one of those that were
    /// there. Non-zero on success; 0, and `colours` as they were, when the values are none (a
    /// number that is none, a bias without end, a gamma that is not above 0).
    int apply(AArray<COLORREF>& colours) const;
    /// Non-zero when `apply` can use the values.
    int isUsable() const;
    /// Non-zero when every colour stays where it is.
    int isNeutral() const { return *this == AColorPlay(); }
    friend bool operator==(const AColorPlay&, const AColorPlay&) = default;
};

}  // namespace pavane
