#pragma once

#include "pavane/containers/item_io.h"
#include "tessel/AFile.h"
#include "tessel/large_buffer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>
#include <utility>

namespace pavane
{

/// A growable array of plain values. Indices count from 0 and are never checked. Owns its buffer.
/// Memory that cannot be had leaves an empty array; nothing throws.
///
/// A derived class may bring its own memory through AMALLOC and AFREE. Constructors and destructors
/// of a base use the base's own, so such a class starts from an empty array and calls Free in its
/// destructor.
template <typename T>
class AArray
{
public:
    /// Slots that an insertion adds to a full array unless the host says otherwise.
    static constexpr int usualGrowth = 256;

    AArray() = default;
    /// `count` items, not initialised, in a buffer of the larger of count and capacity.
    AArray(int count, int capacity, int grow) : growBy_(grow) { begin(count, capacity); }
    /// Takes over `items` (made by new[]), or, with `copy` non-zero, copies the `n` items.
    AArray(T* items, int n, int grow, unsigned char copy);
    /// An empty array that grows by 256, then `Load`.
    explicit AArray(AFile& file) { (void)Load(file); }
    AArray(const AArray& other) : growBy_(other.growBy_) { copyFrom(other); }
    AArray& operator=(const AArray& other);
    /// Gives every item in use the value.
    AArray& operator=(const T& value);

    /// A buffer of n items, null when there is no memory. Items with a constructor are constructed.
    virtual T* AMALLOC(int n) { return new (std::nothrow) T[static_cast<std::size_t>(n)]; }
    /// Releases such a buffer, or one that was taken over.
    virtual void AFREE(T* items) { delete[] items; }
    virtual ~AArray() { AArray::dropBuffer(); }

    /// Appends the items of `other`, which may be this array. A buffer that is too small is
    /// replaced by one of exactly the needed size.
    AArray& operator+=(const AArray& other);

    T& operator()(int i) { return data_[i]; }
    const T& operator()(int i) const { return data_[i]; }
    T* lpArray() { return data_; }
    const T* lpArray() const { return data_; }
    int count() const { return count_; }
    int allocated() const { return allocated_; }
    int growBy() const { return growBy_; }

    /// Puts `item`, which may be one of this array, before item i. A full buffer is replaced by one
    /// with room for growBy more. Returns i, or -1 when there is no memory: the array is empty
    /// then.
    int InsertAt(int i, const T& item);
    /// Inserts at the end.
    int Add(const T& item) { return InsertAt(count_, item); }
    /// Removes items first to first + n - 1, or all from `first` on when there are fewer. Returns
    /// how many items are left. The buffer stays.
    int DeleteItems(int first, int n);
    /// Deliberate: despite its name it drops the contents and makes `n` items that are not
    /// initialised; hosts size arrays with it before they fill them.
    AArray& GrowBy(int n);
    /// Clears the bytes of all items in use.
    void ZeroInit();
    /// Drops items and buffer.
    void Free()
    {
        dropBuffer();
        count_ = allocated_ = 0;
    }

    /// Writes the count (int32) and the bytes of the items. Returns the result of the last write.
    int Store(AFile& file) const;
    /// Reads what Store wrote into the buffer, or into one of exactly `count` items when it is too
    /// small. A count that the rest of the file does not hold, or a short read, gives 0 and an
    /// empty array. A count below 1 counts as 0.
    int Load(AFile& file);

protected:
    /// Replaces the buffer by one of `slots` items, `kept` of them copied; 0 and empty if it fails.
    int reallocate(std::int64_t slots, int kept);
    /// Makes room for one more item.
    int growForOne();
    /// The start of every constructor that makes `count` items in `capacity` slots.
    void begin(int count, int capacity);
    void copyFrom(const AArray& other);
    void dropBuffer()
    {
        if (data_)
            AFREE(data_);
        data_ = nullptr;
    }
    static void copyItems(T* to, const T* from, int n);

    int count_ = 0;
    int allocated_ = 0;
    int growBy_ = usualGrowth;
    T* data_ = nullptr;
};

template <typename T>
AArray<T>::AArray(T* items, int n, int grow, unsigned char copy) : growBy_(grow)
{
    if (copy) {
        begin(n, n);
        copyItems(data_, items, count_);
        return;
    }
    data_ = items;
    count_ = allocated_ = items ? std::max(n, 0) : 0;
}

template <typename T>
AArray<T>& AArray<T>::operator=(const AArray& other)
{
    if (this == &other)
        return *this;
    growBy_ = other.growBy_;
    Free();
    copyFrom(other);
    return *this;
}

template <typename T>
AArray<T>& AArray<T>::operator=(const T& value)
{
    const T kept(value);  // it may be an item of this array
    std::fill_n(data_, count_, kept);
    return *this;
}

template <typename T>
AArray<T>& AArray<T>::operator+=(const AArray& other)
{
    const int added = other.count_;
    if (added < 1)
        return *this;
    const std::int64_t needed = std::int64_t{count_} + added;
    if ((!data_ || allocated_ < needed) && !reallocate(needed, count_))
        return *this;
    copyItems(data_ + count_, other.data_, added);  // appended to itself, other has the new buffer
    count_ += added;
    return *this;
}

template <typename T>
int AArray<T>::InsertAt(int i, const T& item)
{
    T kept(item);  // it may be one of the items that move
    if (!growForOne())
        return -1;
    std::move_backward(data_ + i, data_ + count_, data_ + count_ + 1);
    data_[i] = std::move(kept);
    ++count_;
    return i;
}

template <typename T>
int AArray<T>::DeleteItems(int first, int n)
{
    if (std::int64_t{first} + n >= count_)
        return count_ = first;
    std::move(data_ + first + n, data_ + count_, data_ + first);
    return count_ -= n;
}

template <typename T>
AArray<T>& AArray<T>::GrowBy(int n)
{
    Free();
    begin(n, n);
    return *this;
}

template <typename T>
void AArray<T>::ZeroInit()
{
    if constexpr (std::is_trivially_copyable_v<T>) {
        if (count_ > 0)
            std::memset(static_cast<void*>(data_), 0, static_cast<std::size_t>(count_) * sizeof(T));
    } else {
        std::fill_n(data_, count_, T());
    }
}

template <typename T>
int AArray<T>::Store(AFile& file) const
{
    static_assert(std::is_trivially_copyable_v<T>, "items with a life of their own: AObjArray");
    const int result = storeItem(file, std::int32_t{count_});
    if (!result || count_ < 1)
        return result;
    return file.write(data_, std::int64_t{count_} * static_cast<std::int64_t>(sizeof(T)));
}

template <typename T>
int AArray<T>::Load(AFile& file)
{
    static_assert(std::is_trivially_copyable_v<T>, "items with a life of their own: AObjArray");
    std::int32_t wanted = 0;
    const int result = loadItem(file, wanted);
    if (!result || wanted < 1) {
        // Deliberate: `allocated` stays as it was; a null buffer counts as full everywhere.
        dropBuffer();
        count_ = 0;
        return result;
    }
    const std::int64_t bytes = std::int64_t{wanted} * static_cast<std::int64_t>(sizeof(T));
    if (bytes > file.left()) {
        Free();
        return 0;
    }
    if ((!data_ || allocated_ < wanted) && !reallocate(wanted, 0))
        return 0;
    count_ = wanted;
    if (!file.read(static_cast<void*>(data_), bytes)) {
        Free();
        return 0;
    }
    return 1;
}

template <typename T>
int AArray<T>::reallocate(std::int64_t slots, int kept)
{
    T* const old = data_;
    data_ = nullptr;
    if (slots >= 1 && slots <= std::numeric_limits<int>::max())
        data_ = AMALLOC(static_cast<int>(slots));
    if (data_ && old)
        copyItems(data_, old, std::min(kept, static_cast<int>(slots)));
    if (old)
        AFREE(old);
    if (!data_) {
        count_ = allocated_ = 0;
        return 0;
    }
    if constexpr (std::is_trivially_copyable_v<T>)
        adviseHugePages(data_, slots * static_cast<std::int64_t>(sizeof(T)));
    allocated_ = static_cast<int>(slots);
    return 1;
}

template <typename T>
int AArray<T>::growForOne()
{
    if (data_ && count_ < allocated_)
        return 1;
    return reallocate(std::max(std::int64_t{allocated_} + growBy_, std::int64_t{count_} + 1),
                      count_);
}

template <typename T>
void AArray<T>::begin(int count, int capacity)
{
    if (std::max(count, capacity) >= 1 && reallocate(std::max(count, capacity), 0))
        count_ = std::max(count, 0);
}

template <typename T>
void AArray<T>::copyFrom(const AArray& other)
{
    begin(other.count_, other.count_);
    copyItems(data_, other.data_, count_);
}

template <typename T>
void AArray<T>::copyItems(T* to, const T* from, int n)
{
    if (n < 1 || !from)
        return;
    if constexpr (std::is_trivially_copyable_v<T>)
        std::memcpy(static_cast<void*>(to), static_cast<const void*>(from),
                    static_cast<std::size_t>(n) * sizeof(T));
    else
        std::copy_n(from, n, to);
}

}  // namespace pavane
