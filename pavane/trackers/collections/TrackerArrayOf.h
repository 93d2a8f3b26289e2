#pragma once

#include "pavane/containers/APtrArray.h"
#include "pavane/trackers/collections/TrackerCollection.h"

#include <algorithm>

namespace pavane
{

/// The owning array of a collection, for one kind of trackers. Members of AArray that change items
/// do it here as edits of the collection, each call one step of undo; items cannot be exchanged
/// behind its back.
template <typename T>
class TrackerArrayOf : public APtrArray<T*>, public TrackerCollection
{
    using Items = APtrArray<T*>;

public:
    TrackerArrayOf() = default;
    TrackerArrayOf(const TrackerArrayOf&) = delete;
    TrackerArrayOf& operator=(const TrackerArrayOf&) = delete;
    ~TrackerArrayOf() override
    {
        delete working_;
        for (int i = 0; i < this->count_; ++i)
            this->data_[i]->SetListener(nullptr);  // they stay when auto-delete is off
    }

    /// Appends a tracker and owns it from now on; returns its index, -1 (and the caller keeps it)
    /// without memory.
    int Add(T* tracker, int makeCurrent = 0) { return addItem(this->count_, tracker, makeCurrent); }
    /// The same before item i; -1 also for an i that is not 0 to count().
    int InsertAt(int i, T* tracker) { return addItem(i, tracker, 0); }
    /// Appends copies of the trackers of `other`, which may be this collection.
    TrackerArrayOf& operator+=(const TrackerArrayOf& other)
    {
        AArray<T*> copies;
        for (int i = 0; i < other.count_; ++i)
            if (T* const copy = static_cast<T*>(other.data_[i]->Duplicate());
                copy && copies.Add(copy) < 0)
                delete copy;
        return *this += copies;
    }
    /// Appends trackers and owns them from now on: an array that owns them has to give that up.
    TrackerArrayOf& operator+=(const AArray<T*>& other)
    {
        appendItems(other.count(), [&](int i) -> ATracker* { return other(i); });
        return *this;
    }
    /// The current tracker, null for none.
    T* GetCurItem() const { return static_cast<T*>(trackerAt(this->GetCurItemNo())); }
    /// Deletes n trackers from `first` on, or all that there are from there. Returns how many are
    /// left.
    int DeleteItems(int first, int n) { return removeItems(first, n); }
    /// Deletes all.
    void Free() { Clear(nullptr); }
    /// Deliberate: these drop what an array holds, so they delete all here too. No items are made:
    /// there are no areas without a tracker.
    TrackerArrayOf& GrowBy(int)
    {
        Free();
        return *this;
    }
    void ZeroInit() { Free(); }
    /// Items as in AArray, to look at and to edit, not to exchange.
    T* operator()(int i) const { return this->data_[i]; }
    T* const* lpArray() const { return this->data_; }

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
        return Items::InsertAt(i, static_cast<T*>(tracker)) >= 0;
    }
    ATracker* takeTracker(int i) override
    {
        T* const taken = this->data_[i];
        this->data_[i] = nullptr;
        (void)Items::DeleteItems(i, 1);
        return taken;
    }
    int ownsItems() const override { return this->GetItemAutoDelete(); }
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
