#pragma once

#include "tessel/gains/AGains.h"

#include <cmath>
#include <string>

namespace pavane::test
{

/// Gains of two groups (IFs 1-2 and 4) and two hands, all solved, a minute each.
inline AGains madeGains(int antennas, int intervals)
{
    AGains gains;
    std::vector<GainAntenna> names;
    for (int i = 1; i <= antennas; ++i)
        names.push_back({1, i, std::string("T").append(std::to_string(i))});
    std::vector<GainInterval> times;
    for (int i = 0; i < intervals; ++i)
        times.push_back({0.5 + i / 1440.0, 0.5 + (i + 1) / 1440.0});
    gains.ifs = 4;
    (void)gains.create(names, times, {{0, 1}, {3}}, {'R', 'L'});
    for (std::size_t i = 0; i < gains.cells().size(); ++i) {
        Gain& gain = gains.cells()[i];
        const auto t = static_cast<double>(i);
        gain.value = std::polar(1 + 0.1 * std::sin(0.37 * t), 0.6 * std::sin(0.011 * t));
        gain.error = 0.01;
        gain.iterations = 5;
        gain.state = GainState::solved;
    }
    return gains;
}

}  // namespace pavane::test
