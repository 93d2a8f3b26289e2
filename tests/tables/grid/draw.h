#pragma once

#include <random>

/// Whole numbers by chance, the same at each run.
struct Draw {
    std::mt19937 engine{4};
    int operator()(int low, int high)
    {
        return std::uniform_int_distribution<int>(low, high)(engine);
    }
};
