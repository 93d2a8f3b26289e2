#include "apps/clean/ExportRun.h"

#include "apps/clean/CalibrationRun.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

constexpr int progressPieces = 1000;

}  // namespace

int ExportRun::begin(const AStudy& study, const DataState& data, const std::string& out,
                     std::string& error)
{
    error.clear();
    if (!file_.open(study.source(), error)) {
        error.insert(0, study.source() + ": ");
        return 0;
    }
    std::shared_ptr<UvFilter> correction = correctionOf(study, data, file_.header(), error);
    if (!correction)
        return 0;
    rewriter_ = std::make_unique<UvRewriter>(file_, out, std::move(correction));
    writer_ = std::make_unique<AProgressWriter>(progress_);
    writer_->SetTotal(progressPieces);
    writer_->SetText("Writing corrected data");
    return 1;
}

int ExportRun::step(std::string& error)
{
    error.clear();
    if (writer_->IsCancelled()) {
        error = "it was stopped";
        return 0;
    }
    const int goesOn = rewriter_->step();
    const int now = static_cast<int>(std::clamp(rewriter_->done(), 0.0, 1.0) * progressPieces);
    writer_->Advance(now - std::exchange(told_, now));
    if (goesOn)
        return 1;
    error = rewriter_->error();
    if (error.empty())
        writer_->Finish();
    else
        writer_->Fail(error);
    return 0;
}

}  // namespace pavane
