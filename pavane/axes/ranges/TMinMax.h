#pragma once

namespace pavane
{

/// What the ends of a range hold while it is not set: a minimum above every maximum.
inline constexpr double unsetMinimum = 1.0e38;
inline constexpr double unsetMaximum = -1.0e38;

/// One pair of ends, for ticks and histograms.
struct TMnMx {
    double min = unsetMinimum;
    double max = unsetMaximum;
    friend constexpr bool operator==(const TMnMx&, const TMnMx&) = default;
};

/// The data range of a plot in data values (RP). A minimum above its maximum means that the
/// direction is not set, or, in a map's own range, that its values fall with the column or row.
struct TMinMax {
    double xMin = unsetMinimum;
    double xMax = unsetMaximum;
    double yMin = unsetMinimum;
    double yMax = unsetMaximum;
    double zMin = unsetMinimum;
    double zMax = unsetMaximum;
    friend constexpr bool operator==(const TMinMax&, const TMinMax&) = default;
};

}  // namespace pavane
