#pragma once

#include "pavane/trackers/collections/TrackerCollection.h"

#include <cstddef>
#include <string_view>

namespace pavane
{

/// What the menu says behind "Undo": "Move of Area 3", "Deletion of 5 areas".
class StepLabel
{
public:
    /// One area by its index, or the open polygon (-1).
    StepLabel(std::string_view what, int item);
    StepLabel(std::string_view what, const std::vector<int>& items);
    const char* text() const { return text_; }

private:
    void add(std::string_view part);
    void addNumber(std::size_t number);
    char text_[64] = {};
    std::size_t length_ = 0;
};

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
