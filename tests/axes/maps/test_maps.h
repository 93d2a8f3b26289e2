#pragma once

#include "pavane/axes/maps/cells/simd_path.h"
#include "tessel/AMatrix.h"

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace pavane
{

/// A number 0 to below - 1.
inline int pick(std::mt19937& random, int below)
{
    return static_cast<int>(random() % static_cast<unsigned>(below));
}

/// Noise with a source, a few blank and a few infinite cells.
inline AMatrix<float> randomMap(int rows, int columns, int seed, int blanks = 1)
{
    std::mt19937 random(static_cast<unsigned>(seed));
    std::normal_distribution<float> noise(0, 1);
    AMatrix<float> map(rows, columns);
    for (std::int64_t i = 0; i < map.cells(); ++i)
        map.data()[i] = std::round(noise(random) * 8) / 4;
    for (int i = 0; blanks && i < 1 + rows * columns / 20; ++i)
        map.data()[pick(random, rows * columns)] =
            i % 3 ? std::numeric_limits<float>::quiet_NaN()
                  : std::numeric_limits<float>::infinity() * (i % 2 ? 1.0f : -1.0f);
    return map;
}

inline std::vector<SimdPath> simdPaths()
{
    std::vector<SimdPath> paths{SimdPath::plain};
    if (bestSimdPath() != SimdPath::plain)
        paths.push_back(SimdPath::avx2);
    if (bestSimdPath() == SimdPath::avx512)
        paths.push_back(SimdPath::avx512);
    return paths;
}

}  // namespace pavane
