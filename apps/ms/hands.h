#pragma once

#include <string>
#include <vector>

namespace pavane_ms
{

/// Hands of a working MeasurementSet. Both parallel ones are always there, since the imaging engine
/// wants them: one that the data lack is a place that is flagged until `correct` fills it, and
/// total intensity stands in both with half the weight in each.
struct HandPlan {
    std::vector<int> stored;         ///< casacore's codes, in the order of the columns
    std::vector<int> from;           ///< of each the index in the input, -1: none
    std::vector<std::string> names;  ///< hands of the data as users name them: "RR", "LL", "I"
    int isIntensity = 0;
    std::vector<std::string> leftOut;  ///< of the input, in no column
};

/// casacore's code of a FITS code, 0 for none that is known.
int storedHand(int fitsCode);
/// FITS code of casacore's, 0 for none.
int fitsHand(int code);
/// "RR" of casacore's code 5; empty for none.
std::string handName(int code);

/// The plan for hands of an input (casacore's codes), of which `wanted` names those to take; empty:
/// all.
HandPlan planHands(const std::vector<int>& codes, const std::vector<std::string>& wanted);

}  // namespace pavane_ms
