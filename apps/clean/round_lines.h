#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// What the list of rounds tells of one. Numbers that nobody knows are not-a-number.
struct RoundLine {
    int number = 0;
    int depth = 0;                     ///< of its branch: 0 for the first one
    std::string name;                  ///< "dirty", "200 it", "phase 60 s"
    std::int64_t cells = -1;           ///< of the mask; -1: the whole map
    long long iterations = 0;          ///< of it and those that it goes on from
    double flux = 0, peak = 0;         ///< Jy of the model, Jy/beam of the residual
    double noiseOut = 0, noiseIn = 0;  ///< Jy/beam, outside of the areas and within
    double dynamicRange = 0;           ///< restored peak by noise outside
    std::string note;
};

enum RoundColumn {
    roundName = 1,
    roundCells,
    roundIterations,
    roundFlux,
    roundPeak,
    roundNoiseOut,
    roundNoiseIn,
    roundRange,
    roundNote,
    roundColumns = roundNote
};

/// Heading of a column, and how many characters wide it is.
const char* roundTitle(int column);
std::int16_t roundWidth(int column);
/// What stands in it: "39.5 mJy", "" for what is not known.
std::string roundCell(const RoundLine& line, int column);

/// How deep each round's branch lies, by the parents (-1: none; each stands before its children):
/// the first child goes on on its parent's line, each further one begins a branch.
std::vector<int> branchDepths(const std::vector<int>& parents);

}  // namespace pavane
