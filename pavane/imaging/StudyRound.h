#pragma once

#include "pavane/axes/maps/cells/MapBeam.h"
#include "pavane/imaging/clean_parameters.h"
#include "tessel/api.h"

#include <string>
#include <vector>

namespace pavane
{

/// How a round came to be.
enum class RoundKind {
    dirty,     ///< the dirty map: no model
    clean,     ///< cleaned from its parent
    residual,  ///< its parent's model on other data: another chain or other flags
    model      ///< a model of the user's: edited components, a first model
};

/// Which corrected data a round was made of.
struct DataState {
    std::vector<int> chain;  ///< gains applied, in their order (AStudy::gains)
    int flags = 0;           ///< AStudy::flags; 0: none of the user's
    std::string form = "mean";
    double start = 0, end = 0;  ///< days since 0h of the reference day; equal: all
    int keepsFailed = 0;        ///< data of failed solutions stay, uncorrected
    int keepsWeights = 0;       ///< weights are not multiplied by the gains
    friend bool operator==(const DataState&, const DataState&) = default;
};

/// What a round came to. What is not known is NaN; fluxes in Jy, the rest in Jy a beam.
struct RoundNumbers {
    long long iterations = 0;     ///< of this round
    long long allIterations = 0;  ///< with those of its parents
    double modelFlux = 0;         ///< sum over the model image
    double restoredFlux = 0;      ///< of the restored map inside the areas, over the beam's area
    double restoredPeak = 0;
    double peak = 0;             ///< of the residual, the greatest by amount, inside the areas
    int peakX = -1, peakY = -1;  ///< its cell, from 0
    double noiseOutside = 0;     ///< rms of the residual's cells outside the areas
    double noiseInside = 0;      ///< and inside them
    double dynamicRange = 0;     ///< restored peak over noise outside
    double threshold = 0;        ///< that it was cleaned to
    long long maskCells = 0;     ///< 0 with no mask: the whole map
    int cycles = 0;              ///< major cycles
    double seconds = 0;          ///< from the first child's start to the last one's end
};

/// A peak of the run of a round, for the curve against iterations.
struct RoundPoint {
    long long iterations = 0;  ///< of this round
    double peak = 0;           ///< Jy a beam, amount
};

/// A round of a study. It never changes once made; the note, which lies apart, may.
struct StudyRound {
    int id = 0;
    int parent = -1;  ///< -1: none
    RoundKind kind = RoundKind::dirty;
    DataState data;
    CleanParameters parameters;
    std::string areas;  ///< key of its areas (AStudy::areasOf); "": none
    std::string mask;   ///< key of its mask; "": the whole map
    std::string maps;   ///< key of its beam and dirty map
    MapBeam beam;       ///< fitted by the engine: arcseconds and degrees
    RoundNumbers numbers;
    std::vector<RoundPoint> course;
    std::string stopReason;                          ///< why cleaning ended, in the engine's words
    std::vector<std::vector<std::string>> commands;  ///< all that was run for it, in order
    int hasModel = 0;                                ///< a model image; 0: nothing has been cleaned
};

}  // namespace pavane
