#pragma once

#include <complex>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace pavane
{

/// Complex gains of stations by IF, hand and time.
class Gains
{
public:
    /// Reads a text of lines "STATION IF HAND HOURS AMPLITUDE DEGREES": station by its code, IF
    /// from 1, hand R or L, hours from the start of the track; "*" is every IF, or both hands. '#'
    /// begins a comment. Non-zero on success, else `error` names the line.
    int read(const std::string& file, std::string& error);
    int isEmpty() const { return points_.empty(); }
    /// Of the lines that name IF and hand of a station, else the IF alone, else the hand alone,
    /// else neither; amplitude and phase go straight from one time to the next and hold before the
    /// first and behind the last. 1 for a station without lines.
    std::complex<double> of(const std::string& station, int ifNumber, char hand,
                            double hours) const;

private:
    struct Point {
        double hours, amplitude, degrees;
    };
    int take(const std::string& line, std::string& error);
    std::map<std::tuple<std::string, int, char>, std::vector<Point>> points_;
};

}  // namespace pavane
