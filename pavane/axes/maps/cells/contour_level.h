#pragma once

#include "platform/api.h"

#include <string>

namespace pavane
{

/// One level of a map: a value in its unit, or a multiple of its noise. A plain value.
struct PAVANE_API ContourLevel {
    double number = 5;
    int inNoise = 1;  ///< non-zero: times the noise

    /// Finite and not 0.
    int isUsable() const;
    /// The level as a value of a map with this noise; 0 for a multiple of no noise.
    double value(double noise) const { return inNoise ? number * noise : number; }
    /// "5 sigma", "0.0012".
    std::string text() const;
    /// Reads such a text ("5 sigma", "5sigma", "0.0012", "-3 sigma"). 0, and the level as it was,
    /// for any other.
    int read(const std::string& text);
    friend bool operator==(const ContourLevel&, const ContourLevel&) = default;
};

}  // namespace pavane
