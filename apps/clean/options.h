#pragma once

#include "apps/options/program_text.h"
#include "pavane/calibration/gains/interval_gains.h"
#include "pavane/imaging/clean_parameters.h"

#include <optional>
#include <string>
#include <vector>

namespace pavane
{

/// What a round is asked for beside what holds for all of them.
struct RoundWish {
    std::optional<long long> iterations;
    std::optional<double> gain, majorGain, threshold, autoMaskSigma;
    ThresholdUnit unit = ThresholdUnit::millijansky;  ///< of `threshold`
    int isMultiscale = 0;
    int stopsEachCycle = 0;

    /// The parameters of the round.
    CleanParameters over(const CleanParameters& common) const;
};

/// How a self-calibration is asked for.
struct SelfCalWish {
    static constexpr double wholeTime = -1, scans = 0;
    GainKind kind = GainKind::phase;
    double seconds = scans;  ///< of an interval
    double leastRatio = 0;   ///< signal to noise
    int leastAntennas = 3;
    int isScaled = 1;                     ///< amplitudes
    std::vector<std::string> references;  ///< names or numbers of antennas, the first one first
    double uvLow = 0, uvHigh = 0;         ///< wavelengths; a high end of 0: no end
    int isPredicted = 0;                  ///< the model's visibilities are the engine's in any case
    int keepsFailed = 0;                  ///< data of failed solutions stay, uncorrected
    int keepsWeights = 0;                 ///< gains do not change weights
    int isEqual = 0;                      ///< weights do not count in the solution
    std::vector<std::vector<int>> groups;  ///< IFs from 0 that share a gain; none: each by itself
};

/// One thing that `pavane-clean --batch` does, in the order of the command line.
struct CleanStep {
    enum Kind { areas, model, flags, round, selfcal, from, chain };
    Kind kind = round;
    std::string file;  ///< of areas, model, flags; empty areas are the whole map
    RoundWish round_;
    SelfCalWish selfcal_;
    int number = 0;          ///< of the round to go back to
    int isRoundChain = 0;    ///< the chain of the shown round
    std::vector<int> gains;  ///< else these gains of the study, in their order; none: no correction
};

/// What the command line of pavane-clean says.
struct CleanOptions {
    std::string data;   ///< UVFITS file, MeasurementSet or study
    std::string study;  ///< folder of the study; empty: beside the data
    std::string out;    ///< where the export goes; empty: nowhere
    CleanParameters parameters;
    int hasMap = 0;                   ///< something of `parameters` was asked for
    std::vector<std::string> engine;  ///< words of the command; empty: as set, or wsclean
    std::vector<std::string> ms;      ///< the same of pavane-ms
    std::vector<CleanStep> steps;
    int batch = 0;
    int leavesOut = 0;  ///< rows that cannot be imported, in place of failing
    int takeOver = 0;   ///< a study whose lock is of a program that is gone
    int help = 0, version = 0;
};

/// Reads the arguments behind the program's name. Non-zero on success; else 0 and `error` is one
/// line.
int parseCleanOptions(const std::vector<std::string>& arguments, CleanOptions& options,
                      std::string& error);

/// Reads "iter=200,threshold=0.5mJy" and "phase,60s,ratio=3". Non-zero on success, else `error` is
/// a line.
int readRound(const std::string& text, RoundWish& round, std::string& error);
int readSelfCal(const std::string& text, SelfCalWish& selfcal, std::string& error);

/// The forms that these read back to the same.
std::string roundText(const RoundWish& round);
std::string selfCalText(const SelfCalWish& selfcal);

/// For help and man page.
ProgramText cleanProgram();

}  // namespace pavane
