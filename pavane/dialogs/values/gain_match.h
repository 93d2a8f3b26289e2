#pragma once

#include "platform/api.h"
#include "tessel/gains/AGains.h"

#include <string>
#include <vector>

namespace pavane
{

class AUVXFile;
class AUVXTIntervalPM;

/// What of an observation gains have to meet.
struct GainFacts {
    std::vector<GainAntenna> antennas;
    int ifs = 1;
    std::vector<char> hands;  ///< 'R', 'L', 'X', 'Y' or 'I'; empty: not known
    double referenceDay = 0;  ///< Julian date of 0h, 0 when it is not known
    double start = 0,
           end = 0;  ///< of the data, days since then; an end before the start: not known
};
/// Those of a file, with the times of `times` for information; where it has none times are not
/// known.
PAVANE_API GainFacts gainFactsOf(const AUVXFile& file, const AUVXTIntervalPM& times);

/// Whether gains can be used for data: a clause each for the user.
struct GainMatch {
    std::vector<std::string> faults;  ///< why they cannot be used
    std::vector<std::string> notes;   ///< what is lost or not reached when they are
    int isUsable() const { return faults.empty(); }
};

/// Gains of another array (another name for an antenna, or none in common), of another number of
/// IFs, of other hands or of times that do not meet the data are faults; antennas and times of the
/// data without a gain, and gains of antennas that the data do not have, are notes.
PAVANE_API GainMatch gainMatch(const AGains& gains, const GainFacts& data);

/// What the two forms of files cannot hold of these gains, a clause each.
PAVANE_API std::vector<std::string> gainTableLosses(const AGains& gains);
PAVANE_API std::vector<std::string> gainTextLosses(const AGains& gains);

/// "17 antennas, 240 intervals, 4 groups of IFs, hands R and L, 320 failed, 2 flagged".
PAVANE_API std::string gainSummary(const AGains& gains);

}  // namespace pavane
