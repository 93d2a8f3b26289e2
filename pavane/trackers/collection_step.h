#pragma once

#include "pavane/trackers/TrackerCollection.h"

namespace pavane
{

/// Everything that is recorded while it lives is one step of undo; inner ones belong to the
/// outermost. Nothing of a host runs inside.
class TrackerCollection::Step
{
public:
    /// A null label makes no step: what happens is no edit.
    Step(TrackerCollection& of, const char* label, std::uint64_t mergeKey = 0)
        : of_(label ? &of : nullptr), mergeKey_(mergeKey)
    {
        if (of_ && of_->depth_++ == 0)
            of_->history_.begin(label, of_->selectionNow());
    }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;
    ~Step()
    {
        if (of_ && --of_->depth_ == 0)
            (void)of_->history_.commit(of_->selectionNow(), mergeKey_);
    }

private:
    TrackerCollection* of_;
    std::uint64_t mergeKey_;
};

}  // namespace pavane
