#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

/// The curves that all of the programs draw, into 1200 x 800 pixels over x 0 to 1 and y -1.2
/// to 1.2.
struct FringeData {
    static constexpr int width = 1200;
    static constexpr int height = 800;
    std::vector<double> x, y;

    /// n samples of a noisy fringe, x rising from 0 to 1, or, with `ordered` false, at random;
    /// every `gap`-th is missing when that is not 0.
    explicit FringeData(std::int64_t n, bool ordered = true, double sigma = 0.1,
                        std::int64_t gap = 0)
    {
        std::mt19937_64 random(1);
        std::normal_distribution<double> noise(0, 1);
        std::uniform_real_distribution<double> anywhere(0, 1);
        x.reserve(static_cast<std::size_t>(n));
        y.reserve(static_cast<std::size_t>(n));
        for (std::int64_t i = 0; i < n; ++i) {
            x.push_back(ordered ? static_cast<double>(i) / static_cast<double>(n - 1)
                                : anywhere(random));
            y.push_back(std::sin(40 * x.back()) * 0.8 + sigma * noise(random));
            if (gap != 0 && i % gap == gap - 1)
                y.back() = std::numeric_limits<double>::quiet_NaN();
        }
    }
};
