#pragma once

#include "tessel/api.h"

#include <string>
#include <vector>

namespace pavane
{

/// How visibilities are weighted in a map.
enum class ImageWeighting { natural, uniform, briggs };

/// What the number of a threshold means.
enum class ThresholdUnit {
    millijansky,  ///< mJy a beam
    sigma         ///< times the noise of the residual outside the areas, at the start of the round
};

/// How a round is cleaned and on which map. Angles on the sky are milliarcseconds.
struct CleanParameters {
    // What changes the beam
    int width = 512, height = 512;  ///< cells, even
    double cell = 0;                ///< mas; 0: to be proposed
    ImageWeighting weighting = ImageWeighting::briggs;
    double robust = 0;              ///< of Briggs: -2 is nearly uniform, 2 nearly natural
    double taper = 0;               ///< full width on the sky of the Gaussian, mas; 0: none
    std::string form = "mean";      ///< mean, strict, RR, LL, XX, YY, I
    std::vector<int> ifs;           ///< from 0, rising; empty: all
    double start = 0, end = 0;      ///< days since 0h of the reference day, end not included;
                                    ///< equal: all
    double shiftX = 0, shiftY = 0;  ///< map centre against the phase centre, mas to east and north

    // What a round does
    double gain = 0.1;           ///< of a minor iteration
    double majorGain = 0.8;      ///< part of the peak that one major cycle takes
    long long iterations = 100;  ///< the limit of this round
    double threshold = 0;
    ThresholdUnit unit = ThresholdUnit::millijansky;
    int isAutoMask = 0;  ///< areas grow by the engine's own mask
    double autoMaskSigma = 5;
    int isMultiscale = 0;
    int stopsEachCycle = 0;  ///< a child process a major cycle, so that one can be the last

    friend bool operator==(const CleanParameters&, const CleanParameters&) = default;
};

/// What is wrong with them, one clause for the user, such as "the gain is not between 0 and 1"; ""
/// of good ones. A cell of 0 is wrong here: it has to be proposed first.
PAVANE_API std::string faultOf(const CleanParameters& parameters);

/// Non-zero when a map or beam of one cannot be used for the other: size, cell, weighting,
/// selection or centre differ. What does not count (robust without Briggs) may differ.
PAVANE_API int isOtherBeam(const CleanParameters& one, const CleanParameters& other);

/// Non-zero when the visibilities of one are not those of the other: form, IFs or times differ.
PAVANE_API int isOtherSelection(const CleanParameters& one, const CleanParameters& other);

/// A cell for data whose longest baseline has so many wavelengths, in mas: a fifth of the finest
/// fringe, rounded down to 1, 2 or 5 times a power of ten. 0 when there is no such baseline.
PAVANE_API double proposedCell(double longestBaseline);

/// "natural", "uniform", "briggs".
PAVANE_API const char* nameOf(ImageWeighting weighting);
/// Non-zero when `name` is one of these.
PAVANE_API int weightingOf(const std::string& name, ImageWeighting& weighting);

}  // namespace pavane
