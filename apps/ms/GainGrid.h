#pragma once

#include "apps/ms/GainFile.h"

#include <cstddef>
#include <string>
#include <vector>

namespace pavane_ms
{

/// What of the data a file of gains by frequencies and names has to know.
struct DataFrame {
    struct Antenna {
        int subarray = 1, number = 0;
        std::string name;
        double position[3] = {0, 0, 0};  ///< m
    };
    struct If {
        int number = 1;
        double frequency = 0;  ///< of its middle, Hz
    };
    std::vector<Antenna> antennas;
    std::vector<If> ifs;
    double referenceDay = 0;
    double ra = 0, dec = 0;  ///< rad
    std::string source;
};

/// Of a UVFITS file or a MeasurementSet.
DataFrame readFrame(const std::string& name);

/// Gains as an array of times, groups of IFs, antennas and hands, in this order.
struct GainGrid {
    struct Time {
        double start = 0, end = 0;
        int source = 0, subarray = 1;
    };
    struct Antenna {
        int subarray = 1, number = 0;
        std::string name;
    };
    std::vector<Time> times;
    std::vector<std::vector<int>> groups;
    std::vector<Antenna> antennas;
    std::string hands;
    std::vector<GainLine> cells;  ///< missing ones have the state

    GainLine& at(std::size_t t, std::size_t g, std::size_t a, std::size_t h)
    {
        return cells[((t * groups.size() + g) * antennas.size() + a) * hands.size() + h];
    }
    /// Throws when lines have so little in common that the array would be nothing but gaps.
    explicit GainGrid(const GainFile& file);
};

/// Written by HDF5 as an H5Parm: amplitudes and phases, and beside them what it has no place for.
/// `frame` null: frequencies and places are not known. Both tell what is lost, a line each.
std::vector<std::string> writeH5(const std::string& name, const GainFile& gains,
                                 const DataFrame* frame);
GainFile readH5(const std::string& name, const DataFrame* frame, int direction,
                std::vector<std::string>& lost);

}  // namespace pavane_ms
