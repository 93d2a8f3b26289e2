#pragma once

#include "pavane/imaging/AStudy.h"
#include "pavane/progress/AProgress.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/uvfits/UvRewriter.h"

#include <memory>
#include <string>

namespace pavane
{

/// Writes the visibilities of the user's UVFITS file as a round has them, with its gains and flags,
/// in slices; every other byte as it was.
class ExportRun
{
public:
    /// `data` is that of the round. Non-zero when it can begin; else `error` is a line. Data that
    /// came from a MeasurementSet are StudyJob::exportData's.
    int begin(const AStudy& study, const DataState& data, const std::string& out,
              std::string& error);
    /// Goes on for a moment. Non-zero while more remains; 0 when all is done, or `error` says why
    /// not.
    int step(std::string& error);
    const AProgress& progress() const { return progress_; }
    void cancel() { progress_.Cancel(); }

private:
    AUVXFile file_;
    AProgress progress_;
    std::unique_ptr<AProgressWriter> writer_;
    std::unique_ptr<UvRewriter> rewriter_;
    int told_ = 0;
};

}  // namespace pavane
