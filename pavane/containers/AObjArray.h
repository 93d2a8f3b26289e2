#pragma once

#include "pavane/containers/AArray.h"
#include "pavane/containers/item_io.h"

#include <algorithm>
#include <cstdint>

namespace pavane
{

/// An array of objects that have constructors and are copied by their own assignment; each goes to
/// a file through storeItem and comes back through loadItem.
template <typename T>
class AObjArray : public AArray<T>
{
    using Base = AArray<T>;

public:
    AObjArray() = default;
    AObjArray(int count, int capacity, int grow) : Base(count, capacity, grow) {}
    /// Takes over `items` (made by new[]), or, with `copy` non-zero, copies the n items.
    AObjArray(T* items, int n, int grow, int copy)
        : Base(items, n, grow, static_cast<unsigned char>(copy != 0))
    {
    }
    explicit AObjArray(AFile& file) { (void)Load(file); }
    AObjArray(const AObjArray& other) = default;
    AObjArray& operator=(const AObjArray& other) = default;
    AObjArray& operator=(const T& value)
    {
        Base::operator=(value);
        return *this;
    }

    /// Makes the count n. Where the buffer is known to be smaller, n new objects replace the old
    /// ones, which are copied over first when `keep` is non-zero.
    /// Deliberate: `allocated` becomes the old count and not n, so that the next insertion makes a
    /// buffer of its own size; hosts that watch the buffer depend on when it moves.
    AObjArray& GrowBy(int n, int keep)
    {
        const int before = this->count_;
        if (n >= 1 && (!this->data_ || this->allocated_ < n)) {
            if (!this->reallocate(n, keep ? before : 0))
                return *this;
            this->allocated_ = std::min(before, n);
        }
        this->count_ = std::max(n, 0);
        return *this;
    }

    /// Writes the count (int32) and each item in order; 0 at the first failure, else 1.
    int Store(AFile& file) const
    {
        if (!storeItem(file, std::int32_t{this->count_}))
            return 0;
        for (int i = 0; i < this->count_; ++i)
            if (!storeItem(file, this->data_[i]))
                return 0;
        return 1;
    }
    /// Reads what Store wrote; a failure gives 0 and an empty array. A count below 1 counts as 0.
    /// Each item takes a byte at least, so a count above the bytes left in the file is refused.
    int Load(AFile& file)
    {
        this->Free();
        std::int32_t wanted = 0;
        if (!loadItem(file, wanted) || wanted > file.left())
            return 0;
        GrowBy(wanted, 1);
        if (this->count_ < wanted)
            return 0;
        for (int i = 0; i < this->count_; ++i)
            if (!loadItem(file, this->data_[i])) {
                this->Free();
                return 0;
            }
        return 1;
    }
};

}  // namespace pavane
