#pragma once

#include "apps/options/program_text.h"
#include "apps/simulate/observation.h"

#include <string>
#include <vector>

namespace pavane
{

/// The command line of pavane-simulate, checked.
struct SimulateOptions {
    std::string folder = ".";
    Observation observation;
    int size = 512;          ///< cells a side of the maps
    double cell = 0.05;      ///< milliarcseconds
    int iterations = 12000;  ///< of the CLEAN
    std::string gains;       ///< the file of the stations' gains, "" for none
    int unsorted = 0;        ///< the visibilities are written in random order
    int help = 0;
    int version = 0;
};

/// What users read of the program and its options, from the table that reads them.
ProgramText simulateProgram();

/// Reads the arguments behind the program's name. Non-zero on success, else 0 and `error` says what
/// is wrong.
int parseSimulateOptions(const std::vector<std::string>& arguments, SimulateOptions& options,
                         std::string& error);

}  // namespace pavane
