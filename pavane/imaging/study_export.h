#pragma once

#include "pavane/imaging/StudyJob.h"
#include "tessel/api.h"
#include "tessel/long_files.h"

#include <memory>
#include <string>
#include <vector>

namespace pavane
{

/// Writes what a round came to into a folder, which is made and must not hold anything: map.fits
/// (when it has been restored), residual.fits, model.fits, components.txt (of a model that can be a
/// list), mask.fits, areas, the gains and flags that its data had, and `make-maps.sh`, a shell
/// script of the exact commands, which makes the same maps from the data. A piece at a time; an
/// export that is not brought to its end takes away what it wrote.
class PAVANE_API StudyExport
{
public:
    StudyExport();
    StudyExport(const StudyExport&) = delete;
    StudyExport& operator=(const StudyExport&) = delete;
    ~StudyExport();
    /// Finds what is to be written; `restoring` is the beam of map.fits, unset for the fitted one.
    /// The study is not owned and outlives the export. Non-zero on success, else `fault` is a
    /// clause.
    int begin(const AStudy& study, int round, const JobPrograms& programs,
              const std::string& folder, std::string& fault, const MapBeam& restoring = {});
    WorkPiece step(std::string& fault);
    /// Part of the files that are written, 0 to 1.
    double done() const;
    /// What is not there and why.
    const std::vector<std::string>& notes() const { return notes_; }

private:
    struct Work;
    std::unique_ptr<Work> work_;
    std::vector<std::string> notes_;
};

/// The same at once. Non-zero on success, else `fault` is a clause.
PAVANE_API int exportRound(const AStudy& study, int round, const JobPrograms& programs,
                           const std::string& folder, std::vector<std::string>& notes,
                           std::string& fault, const MapBeam& restoring = {});

/// The script: `make-maps.sh [DATA [FOLDER]]`. It reads gains, flags, masks and models of the
/// user's from beside itself, and works in a folder of its own, "maps" unless told. `files` are
/// those that it needs, relative to the study, and "models/NNNN.fits", the model of a round. ""
/// with a fault when something is missing in the study.
PAVANE_API std::string roundScript(const AStudy& study, int round, const JobPrograms& programs,
                                   std::vector<std::string>& files, std::string& fault,
                                   const MapBeam& restoring = {});

/// A word as a shell takes it.
PAVANE_API std::string shellWord(const std::string& word);

}  // namespace pavane
