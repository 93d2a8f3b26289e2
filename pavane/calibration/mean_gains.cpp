#include "pavane/calibration/mean_gains.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double degree = std::numbers::pi / 180;
constexpr double sigmasOfDeviation = 1.4826;  // of a normal distribution

/// The mean of the middle two of an even number; 0 of none.
double medianOf(std::vector<double> values)
{
    if (values.empty())
        return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    if (values.size() % 2)
        return *middle;
    return (*middle + *std::max_element(values.begin(), middle)) / 2;
}

double deviationFrom(double middle, std::vector<double> values)
{
    for (double& value : values)
        value = std::abs(value - middle);
    return sigmasOfDeviation * medianOf(std::move(values));
}

}  // namespace

std::vector<MeanGain> meanGains(const AGains& gains)
{
    std::vector<MeanGain> means;
    for (std::size_t antenna = 0; antenna < gains.antennas().size(); ++antenna)
        for (std::size_t group = 0; group < gains.groups().size(); ++group)
            for (std::size_t hand = 0; hand < gains.hands().size(); ++hand) {
                MeanGain mean{antenna, group, hand};
                std::vector<double> amplitudes, phases;
                std::complex<double> direction = 0;
                for (std::size_t i = 0; i < gains.intervals().size(); ++i) {
                    const Gain& gain = gains.at(i, group, hand, antenna);
                    mean.failed += gain.state == GainState::failed;
                    mean.flagged += gain.state == GainState::solved && gain.isFlagged;
                    if (!gain.isUsable())
                        continue;
                    amplitudes.push_back(std::abs(gain.value));
                    phases.push_back(std::arg(gain.value) / degree);
                    direction += std::polar(1.0, std::arg(gain.value));
                }
                mean.solutions = amplitudes.size();
                mean.amplitude = medianOf(amplitudes);
                mean.amplitudeScatter = deviationFrom(mean.amplitude, std::move(amplitudes));
                mean.phase = mean.solutions ? std::arg(direction) / degree : 0;
                constexpr double turn = 360;
                for (double& phase : phases)
                    phase = std::remainder(phase - mean.phase, turn);
                mean.phaseScatter = deviationFrom(0, std::move(phases));
                means.push_back(mean);
            }
    return means;
}

double medianAmplitude(const AGains& gains, std::size_t antenna)
{
    std::vector<double> amplitudes;
    const std::size_t antennas = gains.antennas().size();
    for (std::size_t i = antenna; i < gains.cells().size() && antenna < antennas; i += antennas)
        if (gains.cells()[i].isUsable())
            amplitudes.push_back(std::abs(gains.cells()[i].value));
    return medianOf(std::move(amplitudes));
}

}  // namespace pavane
