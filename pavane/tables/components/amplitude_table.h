#pragma once

namespace pavane
{

/// Piecewise polynomials of an amplitude factor for arguments from 0 to `end`, where it is smooth:
/// interval i covers [i, i + 1] * width, and with s from -1 to 1 across it the factor is the sum of
/// coefficient[k][i] * s^k. Good to about 1e-14.
struct AmplitudeTable {
    static constexpr int perUnit = 8;
    static constexpr int end = 32;
    static constexpr int intervals = perUnit * end;
    static constexpr int terms = 7;
    double coefficient[terms][intervals];

    /// Interpolates `factor` at the Chebyshev nodes of each interval.
    explicit AmplitudeTable(double (*factor)(double));
};

}  // namespace pavane
