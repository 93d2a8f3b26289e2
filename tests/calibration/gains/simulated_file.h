#pragma once

#include "apps/simulate/FitsText.h"
#include "pavane/tables/components/AComponents.h"
#include "tessel/uvfits/AUVXFile.h"

#include <cmath>
#include <complex>
#include <cstring>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace pavane
{

/// An observation of a model by antennas with known gains.
struct Simulated {
    int antennas = 6, ifs = 2, channels = 2, subarrays = 1;
    std::vector<int> stokes{-1, -2};
    std::vector<double> seconds;  ///< since 0h of 2010-12-24
    double noise = 0;             ///< Jy, of real and imaginary part
    unsigned seed = 1;
    int hasAutocorrelations = 0, hasWeights = 1, isByBaseline = 0;
    AComponents model = jet();

    /// Of an antenna from 1, an IF from 0, a hand and a time.
    std::function<std::complex<double>(int, int, char, double)> gain = [](int antenna, int f,
                                                                          char hand, double s) {
        return std::polar(1 + 0.07 * antenna + 0.05 * f + (hand == 'L' ? 0.1 : 0),
                          0.9 * antenna * antenna + 0.4 * f + (hand == 'L' ? 0.3 : 0) +
                              0.002 * antenna * s);
    };
    /// The weight of a visibility; that of the noise without.
    std::function<float(int a, int b, int f, int stokes, double s)> weight;

    static AComponents jet()
    {
        AComponents made;
        (void)made.Add(ACompItem("1 1.0 0 1 0 0 0 0"));
        (void)made.Add(ACompItem("1 0.3 0 1 0 40 0.0011 0"));
        (void)made.Add(ACompItem("2 0.4 0.0005 0.6 30 70 0.001 0"));
        return made;
    }

    static constexpr double frequency = 8e9, ifStep = 5e8, channelStep = 1e8;

    std::string saved(const std::string& base) const
    {
        FitsText file;
        file.card("SIMPLE", true);
        file.card("BITPIX", -32);
        const int lengths[] = {0, hasWeights ? 3 : 2, static_cast<int>(stokes.size()), channels,
                               ifs};
        static constexpr const char* axes[] = {"", "COMPLEX", "STOKES", "FREQ", "IF"};
        file.card("NAXIS", 5);
        for (int i = 0; i < 5; ++i)
            file.card("NAXIS" + std::to_string(i + 1), lengths[i]);
        file.card("GROUPS", true);
        const double first = stokes.front();
        for (int i = 1; i < 5; ++i) {
            file.card("CTYPE" + std::to_string(i + 1), axes[i]);
            file.card("CRVAL" + std::to_string(i + 1), i == 3 ? frequency : i == 2 ? first : 1.0);
            file.card("CRPIX" + std::to_string(i + 1), 1.0);
            file.card("CDELT" + std::to_string(i + 1), i == 3                ? channelStep
                                                       : i == 2 && first < 0 ? -1.0
                                                                             : 1.0);
        }
        static constexpr const char* names[] = {"UU--", "VV--", "WW--", "BASELINE", "DATE", "DATE"};
        file.card("PCOUNT", 6);
        for (int i = 0; i < 6; ++i) {
            file.card("PTYPE" + std::to_string(i + 1), names[i]);
            file.card("PSCAL" + std::to_string(i + 1), i == 5 ? 1 / 86400.0 : 1.0);
            file.card("PZERO" + std::to_string(i + 1), i == 4 ? 2455554.5 : 0.0);
        }
        file.card("DATE-OBS", "2010-12-24");
        std::string data;
        std::mt19937 random(seed);
        std::normal_distribution<double> normal;
        int groups = 0;
        const auto put4 = [&data](double value) { put(data, static_cast<float>(value)); };
        const auto group = [&](int subarray, int a, int b, double s) {
            ++groups;
            const auto place = [&](int n) { return 1e-3 * n * n * std::cos(s * 1e-4 + n); };
            const auto other = [&](int n) { return 7e-4 * n * std::sin(s * 1e-4 + 2 * n); };
            const auto u = static_cast<float>(place(b) - place(a));
            const auto v = static_cast<float>(other(b) - other(a));
            put4(u);
            put4(v);
            put4(1e-3 * (b - a));
            put4(256.0 * a + b + 0.01 * (subarray - 1));
            put4(0);
            put4(s);
            for (int f = 0; f < ifs; ++f)
                for (int c = 0; c < channels; ++c) {
                    const double hertz = frequency + f * ifStep + c * channelStep;
                    const std::complex<double> sky =
                        model.VfromUV(double{u} * hertz, double{v} * hertz);
                    for (const int code : stokes) {
                        static constexpr const char* hands[] = {"RR", "LL", "RL", "LR",
                                                                "XX", "YY", "XY", "YX"};
                        const char* const h = code < 0 ? hands[-code - 1] : "II";
                        std::complex<double> value = (h[0] == h[1] ? sky : 0.0) *
                                                     gain(a, f, h[0], s) *
                                                     std::conj(gain(b, f, h[1], s));
                        value += noise * std::complex<double>(normal(random), normal(random));
                        put4(value.real());
                        put4(value.imag());
                        if (hasWeights)
                            put4(weight      ? weight(a, b, f, code, s)
                                 : noise > 0 ? 1 / (noise * noise)
                                             : 1);
                    }
                }
        };
        const auto baselines = [&](auto work) {
            for (int n = 1; n <= subarrays; ++n)
                for (int a = 1; a <= antennas; ++a)
                    for (int b = hasAutocorrelations ? a : a + 1; b <= antennas; ++b)
                        // stored either way
                        work(n, (a + b) % 2 ? b : a, (a + b) % 2 ? a : b);
        };
        if (isByBaseline)
            baselines([&](int n, int a, int b) {
                for (const double s : seconds)
                    group(n, a, b, s);
            });
        else
            for (const double s : seconds)
                baselines([&](int n, int a, int b) { group(n, a, b, s); });
        file.card("GCOUNT", groups);
        file.data(data);
        const std::string n = std::to_string(ifs);
        TableText frequencies("AIPS FQ", 1,
                              {{"FRQSEL", "1J"},
                               {"IF FREQ", n + "D"},
                               {"CH WIDTH", n + "E"},
                               {"TOTAL BANDWIDTH", n + "E"},
                               {"SIDEBAND", n + "J"}});
        frequencies << 1;
        for (int f = 0; f < ifs; ++f)
            frequencies << f * ifStep;
        for (int f = 0; f < 2 * ifs; ++f)
            frequencies << static_cast<float>(channelStep);
        for (int f = 0; f < ifs; ++f)
            frequencies << 1;
        frequencies.endRow();
        frequencies.write(file, [this](FitsText& cards) { cards.card("NO_IF", ifs); });
        const std::string name = testing::TempDir() + base;
        std::ofstream(name, std::ios::binary) << file.bytes();
        return name;
    }
};

/// So many times, `step` seconds from one to the next.
inline std::vector<double> everySeconds(int count, double step, double from = 1000)
{
    std::vector<double> seconds;
    for (int i = 0; i < count; ++i)
        seconds.push_back(from + i * step);
    return seconds;
}

}  // namespace pavane
