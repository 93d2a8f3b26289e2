#pragma once

#include "pavane/containers/APtrArray.h"
#include "pavane/trackers/TrackerCollection.h"

#include <algorithm>

namespace pavane
{

/// The owning array of a collection, for one kind of trackers. Items are added and removed through
/// the members here and not through those of AArray; each call is one step of undo.
template <typename T>
class TrackerArrayOf : public APtrArray<T*>, public TrackerCollection
{
    using Items = APtrArray<T*>;

public:
    TrackerArrayOf() = default;
    TrackerArrayOf(const TrackerArrayOf&) = delete;
    TrackerArrayOf& operator=(const TrackerArrayOf&) = delete;
    ~TrackerArrayOf() override { delete working_; }

    /// Appends a tracker and owns it from now on; returns its index, -1 (and the caller keeps it)
    /// without memory.
    int Add(T* tracker, int makeCurrent = 0) { return addItem(tracker, makeCurrent); }
    /// The current tracker, null for none.
    T* GetCurItem() const { return static_cast<T*>(trackerAt(curItem_)); }
    /// Deletes n trackers from `first` on, or all that there are from there. Returns how many are
    /// left.
    int DeleteItems(int first, int n) { return removeItems(first, n); }
    /// Deletes all.
    void Free() { Clear(nullptr); }

    int trackerCount() const override { return this->count_; }
    ATracker* trackerAt(int i) const override
    {
        return i >= 0 && i < this->count_ ? this->data_[i] : nullptr;
    }
    ATracker* workingTracker() const override { return working_; }

protected:
    int putTracker(int i, ATracker* tracker) override
    {
        // an insertion without memory would lose the array
        if (this->count_ >= this->allocated_ && !makeRoom())
            return 0;
        return this->InsertAt(i, static_cast<T*>(tracker)) >= 0;
    }
    ATracker* takeTracker(int i) override
    {
        T* const taken = this->data_[i];
        this->data_[i] = nullptr;
        (void)Items::DeleteItems(i, 1);
        return taken;
    }
    void setWorking(ATracker* tracker) override { working_ = static_cast<T*>(tracker); }

private:
    /// Twice the slots, so that many insertions stay cheap.
    int makeRoom()
    {
        T** const slots = this->AMALLOC(std::max(2 * this->count_, 256));
        if (!slots)
            return 0;
        std::copy_n(this->data_, this->count_, slots);
        this->dropBuffer();
        this->data_ = slots;
        this->allocated_ = std::max(2 * this->count_, 256);
        return 1;
    }
    T* working_ = nullptr;
};

}  // namespace pavane
