#pragma once

#include "pavane/calibration/gains/SelfCalibration.h"
#include "pavane/dialogs/values/record_entries.h"
#include "platform/api.h"

#include <string>
#include <vector>

namespace pavane
{

/// What data are calibrated on.
enum class SelfCalModel {
    round,       ///< the model image of the round that is chosen
    components,  ///< the list of components, as it was edited
    predicted    ///< that image, its visibilities predicted by the engine however simple it is
};

/// How gains are solved for, as the page "Self-calibration" lets the user choose it. In the
/// profile the keys are "SC KIND" to "SC KEEP", see the file formats.
class PAVANE_API ASelfCalPM : public EntryRecord<ASelfCalPM>
{
public:
    // Of the data, for information; not stored. Seconds, 0 when they are not known.
    double integration = 0, span = 0;
    std::vector<std::string> antennas;  ///< names, in the order of the file
    /// IFs from 0 that share a gain, of the selection of the data; empty: each by itself.
    std::vector<std::vector<int>> groups;
    // The choice.
    GainKind kind = GainKind::phase;
    int isWhole = 0;      ///< one gain for the whole time, else each `seconds`
    double seconds = 60;  ///< length of an interval
    int isScaled = 1;     ///< amplitudes to a weighted mean log of 0 for each IF group and hand
    double leastRatio = 3;
    int leastAntennas = 4;
    std::vector<std::string> references;  ///< names; the first that has a gain has phase 0
    double leastUv = 0, mostUv = 0;       ///< wavelengths; `mostUv` 0: no limit
    SelfCalModel model = SelfCalModel::round;
    int usesWeights = 1;     ///< those of the data count in the solution; else all are the same
    int changesWeights = 1;  ///< those of corrected data are multiplied by |g(a) g(b)|^2
    int keepsFailed = 0;     ///< data of failed solutions stay, uncorrected

    /// As the solver takes it; names of `references` that `antennas` does not have are left out,
    /// when there are any.
    SelfCalibrationRules rules() const;

    std::vector<RecordEntry> entries() const;
    int takeEntry(const RecordEntry& entry);
};

}  // namespace pavane
