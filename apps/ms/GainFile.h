#pragma once

#include <complex>
#include <string>
#include <vector>

namespace pavane_ms
{

enum class GainState { missing, solved, failed };

/// A line of a file of gains.
struct GainLine {
    int subarray = 1, antenna = 0;
    std::string name;
    std::vector<int> ifs;  ///< from 1, in rising order
    char hand = 'R';
    int source = 0;              ///< 0: every one
    double start = 0, end = 0;   ///< days since 0h of the reference day, end not included
    std::complex<double> value;  ///< what the antenna does to its signal
    double error = 0, weight = 0;
    int iterations = 0, reference = 0;
    GainState state = GainState::missing;
    int isFlagged = 0;

    int isUsable() const
    {
        return state == GainState::solved && !isFlagged && std::norm(value) > 0;
    }
};

struct GainFile {
    double referenceDay = 0;  ///< Julian date; 0: not told
    int ifs = 1;
    std::vector<GainLine> lines;
};

/// Text with tabs between; every line that cannot be is a Failure.
GainFile readGains(const std::string& name);
void writeGains(const std::string& name, const GainFile& gains);

}  // namespace pavane_ms
