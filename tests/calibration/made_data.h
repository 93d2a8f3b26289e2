#pragma once

#include "apps/simulate/FitsText.h"
#include "pavane/tables/components/AComponents.h"
#include "tessel/uvfits/AUVXFile.h"

#include <complex>
#include <fstream>
#include <gtest/gtest.h>
#include <vector>

namespace pavane
{

/// A group of the data below: two IFs of two channels, RR and LL.
struct MadeGroup {
    double seconds = 0;  ///< since 0h of 2010-12-24
    int a = 1, b = 2, subarray = 1, source = 1;
    float u = 0, v = 0;  ///< seconds of light
    std::complex<double> gain = 1;
    float weight = 4;
    int selection = 1;
};

inline constexpr int madeIfs = 2, madeChannels = 2, madeHands = 2;
inline constexpr double madeFrequency = 8e9, madeStep = 1e8, madeIfStep = 5e8;
/// From a frequency selection to the next.
inline constexpr double madeJump = 2e9;

inline const AComponents& madeModel()
{
    static const AComponents model = [] {
        AComponents made;
        (void)made.Add(ACompItem("1 1.0 0 1 0 0 0 0"));
        (void)made.Add(ACompItem("2 0.4 0.0005 0.6 30 70 0.001 0"));
        return made;
    }();
    return model;
}

/// What a group's visibility is: the model's times its gain, which is of no frequency.
inline std::complex<double> madeVisibility(const MadeGroup& g, int f, int c)
{
    const double hertz =
        madeFrequency + (g.selection - 1) * madeJump + f * madeIfStep + c * madeStep;
    return g.gain * madeModel().VfromUV(double{g.u} * hertz, double{g.v} * hertz);
}

inline std::string savedData(const std::string& base, const std::vector<MadeGroup>& groups)
{
    FitsText file;
    file.card("SIMPLE", true);
    file.card("BITPIX", -32);
    static constexpr int lengths[] = {0, 3, madeHands, madeChannels, madeIfs};
    static constexpr const char* axes[] = {"", "COMPLEX", "STOKES", "FREQ", "IF"};
    file.card("NAXIS", 5);
    for (int i = 0; i < 5; ++i)
        file.card("NAXIS" + std::to_string(i + 1), lengths[i]);
    file.card("GROUPS", true);
    file.card("PCOUNT", 7);
    file.card("GCOUNT", static_cast<int>(groups.size()));
    for (int i = 1; i < 5; ++i) {
        file.card("CTYPE" + std::to_string(i + 1), axes[i]);
        file.card("CRVAL" + std::to_string(i + 1), i == 3 ? madeFrequency : i == 2 ? -1.0 : 1.0);
        file.card("CDELT" + std::to_string(i + 1), i == 3 ? madeStep : i == 2 ? -1.0 : 1.0);
    }
    static constexpr const char* names[] = {"UU--", "VV--",   "BASELINE", "DATE",
                                            "DATE", "SOURCE", "FREQSEL"};
    for (int i = 0; i < 7; ++i) {
        file.card("PTYPE" + std::to_string(i + 1), names[i]);
        file.card("PSCAL" + std::to_string(i + 1), i == 4 ? 1 / 86400.0 : 1.0);
        file.card("PZERO" + std::to_string(i + 1), i == 3 ? 2455554.5 : 0.0);
    }
    file.card("DATE-OBS", "2010-12-24");
    std::string data;
    for (const MadeGroup& g : groups) {
        for (const double value :
             {double{g.u}, double{g.v}, 256.0 * g.a + g.b + 0.01 * (g.subarray - 1), 0.0, g.seconds,
              double(g.source), double(g.selection)})
            put(data, static_cast<float>(value));
        for (int f = 0; f < madeIfs; ++f)
            for (int c = 0; c < madeChannels; ++c)
                for (int hand = 0; hand < madeHands; ++hand) {
                    const std::complex<double> value = madeVisibility(g, f, c);
                    put(data, static_cast<float>(value.real()));
                    put(data, static_cast<float>(value.imag()));
                    put(data, g.weight);
                }
    }
    file.data(data);
    TableText frequencies("AIPS FQ", 2,
                          {{"FRQSEL", "1J"},
                           {"IF FREQ", "2D"},
                           {"CH WIDTH", "2E"},
                           {"TOTAL BANDWIDTH", "2E"},
                           {"SIDEBAND", "2J"}});
    for (int selection = 1; selection <= 2; ++selection) {
        frequencies << selection << (selection - 1) * madeJump
                    << (selection - 1) * madeJump + madeIfStep;
        for (int i = 0; i < 4; ++i)
            frequencies << 1e8f;
        frequencies << 1 << 1;
        frequencies.endRow();
    }
    frequencies.write(file, [](FitsText& cards) { cards.card("NO_IF", madeIfs); });
    const std::string name = testing::TempDir() + base;
    std::ofstream(name, std::ios::binary) << file.bytes();
    return name;
}

/// All baselines of telescopes at some times, with gains of telescopes that change from time to
/// time; every second baseline is stored the other way.
inline std::vector<MadeGroup> madeGroups(int telescopes, const std::vector<double>& seconds,
                                         int subarray = 1)
{
    const auto gain = [](int t, double s) {
        return std::polar(1 + 0.1 * t, 1.7 * t * t + 0.9 * t * s);
    };
    std::vector<MadeGroup> groups;
    for (const double s : seconds)
        for (int a = 1; a <= telescopes; ++a)
            for (int b = a + 1; b <= telescopes; ++b) {
                const int from = (a + b) % 2 ? b : a, to = a + b - from;
                const float u = 1e-3f * float(to * to - from * from) * (1 + float(s) * 1e-3f);
                const float v = 7e-4f * float(to - from) - float(s) * 1e-6f * float(to - from);
                groups.push_back(
                    {s, from, to, subarray, 1, u, v, gain(from, s) * std::conj(gain(to, s))});
            }
    return groups;
}

}  // namespace pavane
