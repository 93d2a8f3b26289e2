#pragma once

#include "pavane/imaging/StudyJob.h"
#include "tessel/api.h"

#include <string>
#include <vector>

namespace pavane
{

/// Writes what a round came to into a folder, which is made and must not hold anything: map.fits
/// (when it has been restored), residual.fits, model.fits, components.txt (of a model that can be a
/// list), mask.fits, areas, the gains and flags that its data had, and `make-maps.sh`, a shell
/// script of the exact commands, which makes the same maps from the data. `notes` tells what is not
/// there and why. Non-zero on success, else `fault` is a clause.
PAVANE_API int exportRound(const AStudy& study, int round, const JobPrograms& programs,
                           const std::string& folder, std::vector<std::string>& notes,
                           std::string& fault);

/// The script: `make-maps.sh [DATA [FOLDER]]`. It reads gains, flags, masks and models of the
/// user's from beside itself, and works in a folder of its own, "maps" unless told. `files` are
/// those that it needs, relative to the study, and "models/NNNN.fits", the model of a round. ""
/// with a fault when something is missing in the study.
PAVANE_API std::string roundScript(const AStudy& study, int round, const JobPrograms& programs,
                                   std::vector<std::string>& files, std::string& fault);

/// A word as a shell takes it.
PAVANE_API std::string shellWord(const std::string& word);

}  // namespace pavane
