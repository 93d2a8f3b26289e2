#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <type_traits>

namespace pavane
{

/// Plain items that are appended one by one. Memory that cannot be had is a 0, never an exception.
template <typename T>
class Pile
{
    static_assert(std::is_trivially_copyable_v<T>);

public:
    Pile() = default;
    Pile(const Pile&) = delete;
    Pile& operator=(const Pile&) = delete;
    ~Pile() { std::free(items_); }

    /// Room for n items in all; non-zero on success. What is there stays.
    int reserve(std::size_t n)
    {
        if (n <= room_)
            return 1;
        void* const items = std::realloc(static_cast<void*>(items_), n * sizeof(T));
        if (!items)
            return 0;
        items_ = static_cast<T*>(items);
        room_ = n;
        return 1;
    }
    int add(const T& item)
    {
        if (count_ == room_ && !reserve(std::max<std::size_t>(32, 2 * room_)))
            return 0;
        items_[count_++] = item;
        return 1;
    }
    /// Appends n items, which are not among those here.
    int append(const T* items, std::size_t n)
    {
        if (room_ - count_ < n && !reserve(std::max(count_ + n, 2 * room_)))
            return 0;
        if (n)
            std::memcpy(static_cast<void*>(items_ + count_), items, n * sizeof(T));
        count_ += n;
        return 1;
    }
    /// All room may be used, whatever the count.
    T* data() { return items_; }
    const T* data() const { return items_; }
    std::size_t count() const { return count_; }
    void cut(std::size_t n) { count_ = n; }
    /// Gives the memory back.
    void release()
    {
        std::free(items_);
        items_ = nullptr;
        count_ = room_ = 0;
    }

private:
    T* items_ = nullptr;
    std::size_t count_ = 0;
    std::size_t room_ = 0;
};

}  // namespace pavane
