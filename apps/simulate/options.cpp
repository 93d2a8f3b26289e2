#include "apps/simulate/options.h"

#include "apps/options/option_table.h"
#include "tessel/value_text.h"

namespace pavane
{

namespace
{

/// What a number may be, for its reader and its messages.
struct Limits {
    double low, high;
};
constexpr Limits seeds{0, 2147483647}, sizes{64, 2048}, cells{1e-3, 10}, noises{0, 100},
    spans{0.1, 24}, iterations{0, 1000000}, sources{1, 9}, subarrays{1, 2};

template <class Number>
int readNumber(const char* name, const std::string& text, const Limits& limits, Number& value,
               std::string& error)
{
    Number read{};
    if (!stoval(text, read) || !(read >= limits.low) || !(read <= limits.high)) {
        error = std::string(name) + " wants a number from " + valToStr(limits.low, 10) + " to " +
                valToStr(limits.high, 10) + ", not '" + text + "'";
        return 0;
    }
    value = read;
    return 1;
}

int readFolder(const std::string& text, SimulateOptions& options, std::string&)
{
    options.folder = text;
    return 1;
}

int readSeed(const std::string& text, SimulateOptions& options, std::string& error)
{
    int seed = 0;
    if (!readNumber("--seed", text, seeds, seed, error))
        return 0;
    options.observation.seed = static_cast<std::uint64_t>(seed);
    return 1;
}

int readSize(const std::string& text, SimulateOptions& options, std::string& error)
{
    if (!readNumber("--size", text, sizes, options.size, error))
        return 0;
    if (options.size % 2 == 0)
        return 1;
    error = "--size wants an even number, not '" + text + "'";
    return 0;
}

int readCell(const std::string& text, SimulateOptions& options, std::string& error)
{
    return readNumber("--cell", text, cells, options.cell, error);
}

int readNoise(const std::string& text, SimulateOptions& options, std::string& error)
{
    return readNumber("--noise", text, noises, options.observation.noise, error);
}

int readHours(const std::string& text, SimulateOptions& options, std::string& error)
{
    return readNumber("--hours", text, spans, options.observation.hours, error);
}

int readClean(const std::string& text, SimulateOptions& options, std::string& error)
{
    return readNumber("--clean", text, iterations, options.iterations, error);
}

int readGains(const std::string& text, SimulateOptions& options, std::string&)
{
    options.gains = text;
    return 1;
}

int readSources(const std::string& text, SimulateOptions& options, std::string& error)
{
    return readNumber("--sources", text, sources, options.observation.sources, error);
}

int readSubarrays(const std::string& text, SimulateOptions& options, std::string& error)
{
    return readNumber("--subarrays", text, subarrays, options.observation.subarrays, error);
}

int askUnsorted(const std::string&, SimulateOptions& options, std::string&)
{
    return options.unsorted = 1;
}

int askHelp(const std::string&, SimulateOptions& options, std::string&) { return options.help = 1; }

int askVersion(const std::string&, SimulateOptions& options, std::string&)
{
    return options.version = 1;
}

enum Traits { ofTheSimulation, aboutProgram };

const OptionTable<SimulateOptions>& optionTable()
{
    static const OptionTable<SimulateOptions> table = {
        {{"--out", "", "FOLDER", "where the files go, made when it is missing (.)"}, readFolder},
        {{"--seed", "", "N", "the same number makes the same noise (1)"}, readSeed},
        {{"--size", "", "CELLS", "cells a side of the maps, even, 64 to 2048 (512)"}, readSize},
        {{"--cell", "", "MAS", "side of a cell in milliarcseconds, 0.001 to 10 (0.05)"}, readCell},
        {{"--noise", "", "JY", "noise of a sample, 0 to 100 (0.03)"}, readNoise},
        {{"--hours", "", "H", "length of the track, 0.1 to 24 (8)"}, readHours},
        {{"--clean", "", "N", "iterations of the CLEAN, 0 to 1000000 (12000)"}, readClean},
        {{"--gains", "", "FILE",
          "gains of the stations, lines STATION IF HAND HOURS AMPLITUDE DEGREES"},
         readGains},
        {{"--sources", "", "N", "the jet and N - 1 points, in turn, 1 to 9 (1)"}, readSources},
        {{"--subarrays", "", "N", "subarrays that the stations are dealt out to, 1 or 2 (1)"},
         readSubarrays},
        {{"--unsorted", "", "", "write the visibilities in random order, without their scans"},
         askUnsorted},
        {{"--help", "-h", "", "print this"}, askHelp, aboutProgram},
        {{"--version", "", "", "print the version"}, askVersion, aboutProgram},
    };
    return table;
}

}  // namespace

ProgramText simulateProgram()
{
    return {"pavane-simulate",
            "make the maps of a simulated VLBI observation",
            {"[OPTIONS]"},
            {"Observes a model jet with the VLBA in four IFs and writes its dirty map, dirty beam "
             "and CLEAN map, its visibilities, the model and a list of u,v points. Files of "
             "these names are replaced.",
             "In a file of gains '*' stands for every IF or for both hands, R and L; hours count "
             "from the start, amplitude and phase go straight from one line to the next."},
            {{"Options", textsOf(optionTable(), ofTheSimulation)},
             {"About the program", textsOf(optionTable(), aboutProgram)}},
            {"done", "wrong use", "a file that could not be read or written, or not enough memory"},
            {{"dirty.fits, beam.fits, clean.fits", "the maps"},
             {"model.txt", "the components of the jet"},
             {"observation.uvfits", "the visibilities, with the tables AIPS AN, FQ, NX and SU"},
             {"uv.csv", "some u,v points of the observation, in wavelengths"}},
            {{"A demo and its figure:",
              "pavane-simulate --out demo --seed 7 && "
              "pavane-view demo/clean.fits --batch --png clean.png --model demo/model.txt"}},
            "pavane-view"};
}

int parseSimulateOptions(const std::vector<std::string>& arguments, SimulateOptions& options,
                         std::string& error)
{
    options = SimulateOptions();
    error.clear();
    GivenArguments<SimulateOptions> given;
    if (!readArguments(arguments, optionTable(), options, given, error))
        return 0;
    if (!given.operands.empty())
        error = "'" + given.operands.front() + "' is no option";
    return error.empty();
}

}  // namespace pavane
