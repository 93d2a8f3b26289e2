#pragma once

#include "pavane/containers/AArray.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>

namespace pavane
{

/// An array of pointers, `APtrArray<AGraph*>`, that deletes what it points to in DeleteItems, Free
/// and its destructor while auto-delete is on (as it is at first). Slots that are not in use are
/// null. Assignment, GrowBy and Load drop the old pointers without deleting: call Free before.
template <typename P>
class APtrArray : public AArray<P>
{
    static_assert(std::is_pointer_v<P>, "the item type is a pointer");
    using Base = AArray<P>;

public:
    APtrArray() = default;
    APtrArray(int count, int capacity, int grow) : Base(0, 0, grow)
    {
        this->begin(count, capacity);
    }
    /// Takes over the buffer `items` (made by new[]) of n pointers.
    APtrArray(P* items, int n, int grow) : Base(items, n, grow, 0) {}
    /// Copies the pointers and owns the objects from now on.
    explicit APtrArray(const Base& other) : Base(other) {}
    /// Copies the pointers and the switch: one of the two has to give up ownership.
    APtrArray(const APtrArray& other) = default;
    /// Deliberate: reads two stored arrays and keeps the second; such files hold the array twice.
    explicit APtrArray(AFile& file) : Base(file)
    {
        this->growBy_ = Base::usualGrowth;
        Base::Free();
        (void)Load(file);
    }
    APtrArray& operator=(const APtrArray& other) = default;
    /// Makes every item in use point to the same object.
    APtrArray& operator=(const P& value)
    {
        Base::operator=(value);
        return *this;
    }

    P* AMALLOC(int n) override { return new (std::nothrow) P[static_cast<std::size_t>(n)](); }
    ~APtrArray() override { APtrArray::Free(); }

    int GetItemAutoDelete() const { return autoDelete_; }
    void SetItemAutoDelete(int on) { autoDelete_ = on; }

    /// As in AArray; with auto-delete on, the objects of all n slots go, those past the count too.
    int DeleteItems(int first, int n)
    {
        const int before = this->count_;
        deleteObjects(first, std::int64_t{first} + n);
        const int left = Base::DeleteItems(first, n);
        clearSlots(left, before);
        return left;
    }
    void Free()
    {
        deleteObjects(0, this->count_);
        Base::Free();
    }
    /// Reads pointer values. What they point to belongs to whoever stored them, so they are never
    /// deleted: auto-delete is off when any was read.
    int Load(AFile& file)
    {
        const int result = Base::Load(file);
        clearSlots(this->count_, this->allocated_);
        if (this->count_ > 0)
            autoDelete_ = 0;
        return result;
    }

private:
    void clearSlots(int first, int end)
    {
        if (this->data_ && first < end)
            std::fill(this->data_ + first, this->data_ + end, nullptr);
    }
    void deleteObjects(int first, std::int64_t end)
    {
        if (!this->data_ || !autoDelete_)
            return;
        const int stop = static_cast<int>(std::min<std::int64_t>(end, this->allocated_));
        for (int i = first; i < stop; ++i) {
            delete this->data_[i];
            this->data_[i] = nullptr;
        }
    }

    int autoDelete_ = 1;
};

}  // namespace pavane
