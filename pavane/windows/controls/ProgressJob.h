#pragma once

#include "pavane/progress/AProgress.h"
#include "pavane/progress/TimeLeft.h"
#include "platform/api.h"

#include <chrono>
#include <functional>
#include <optional>

namespace pavane
{

/// A job as a dialog shows it.
struct PAVANE_API ProgressJob {
    using Clock = std::chrono::steady_clock;
    ProgressJob(AProgress followed, CString called, Clock::time_point now)
        : progress(std::move(followed)), name(std::move(called)), begin(now)
    {
    }

    /// Asks the job how it stands.
    void update(Clock::time_point now);
    /// What it is and does, in one line.
    CString text() const;
    /// How far it is and how long it will take, or how it ended.
    CString stateText() const;

    AProgress progress;
    CString name;
    ProgressReport report;
    std::vector<ProgressText> said;              ///< the latest texts
    std::uint64_t saidCount = 0;                 ///< of all
    int isKept = 0;                              ///< has ended, and the user has not seen it yet
    std::function<int(AProgressWriter&)> slice;  ///< does a piece; empty: another does the job
    std::optional<AProgressWriter> writer;       ///< of the slices

private:
    Clock::time_point begin;
    double seconds_ = 0;  ///< since then
    TimeLeft left_;
    double leftAt_ = -1;  ///< when the time left was told last
    CString leftText_;
};

}  // namespace pavane
