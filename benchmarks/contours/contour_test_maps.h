#pragma once

#include "tessel/AMatrix.h"

#include <cmath>
#include <cstdint>

namespace pavane
{

/// A jet of Gaussian knots on a square map, peak 1; with `noisy`, noise of three thousandths of it
/// that is as smooth as a beam of about four cells makes it. The peer in Python reads the
/// same map from a file.
inline AMatrix<float> contourTestMap(int cells, int noisy)
{
    AMatrix<float> map(cells, cells);
    std::uint32_t state = 1;
    const auto random = [&state] {
        state = state * 1664525u + 1013904223u;
        return static_cast<double>(state >> 8) / 16777216.0 - 0.5;
    };
    constexpr int waves = 24;
    double kx[waves], ky[waves], phase[waves];
    for (int i = 0; i < waves; ++i) {
        kx[i] = random();
        ky[i] = random();
        phase[i] = random() * 6.2831853;
    }
    AMatrix<double> alongX(waves, 2 * cells), alongY(waves, 2 * cells);
    for (int i = 0; i < waves; ++i)
        for (int c = 0; c < cells; ++c) {
            alongX(i, 2 * c) = std::cos(kx[i] * c);
            alongX(i, 2 * c + 1) = std::sin(kx[i] * c);
            alongY(i, 2 * c) = std::cos(ky[i] * c + phase[i]);
            alongY(i, 2 * c + 1) = std::sin(ky[i] * c + phase[i]);
        }
    constexpr int knots = 6;
    for (int r = 0; r < cells; ++r)
        for (int c = 0; c < cells; ++c) {
            double value = 0;
            for (int k = 0; k < knots; ++k) {
                const double x = (c - cells * (0.5 + 0.05 * k)) / (cells * (0.01 + 0.006 * k));
                const double y = (r - cells * (0.5 + 0.03 * k)) / (cells * (0.01 + 0.006 * k));
                const double exponent = -0.5 * (x * x + y * y);
                if (exponent > -40)
                    value += std::exp(exponent) / (1 << k);
            }
            for (int i = 0; noisy && i < waves; ++i)
                value += 0.003 * std::sqrt(2.0 / waves) *
                         (alongX(i, 2 * c) * alongY(i, 2 * r) -
                          alongX(i, 2 * c + 1) * alongY(i, 2 * r + 1));
            map(r, c) = static_cast<float>(value);
        }
    return map;
}

}  // namespace pavane
