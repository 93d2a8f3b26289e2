#pragma once

#include "platform/geometry.h"
#include "tessel/large_buffer.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// A point where a contour crosses the line between two neighbouring cells.
struct Crossing {
    CPointF at;
    int next = -1;  ///< the crossing that follows on the line, -1 for none
    int hasPrevious = 0;
};

/// The crossings of one level, numbered from 0. Grows in blocks that never move.
class CrossingPool
{
public:
    CrossingPool() = default;
    CrossingPool(const CrossingPool&) = delete;
    CrossingPool& operator=(const CrossingPool&) = delete;
    CrossingPool(CrossingPool&& other) noexcept = default;
    ~CrossingPool() { clear(); }

    static constexpr std::int64_t mostCrossings = std::int64_t{1} << 25;

    int count() const { return count_; }
    Crossing& operator[](int i)
    {
        return blocks_[static_cast<std::size_t>(i >> blockBits)][i & (blockSize - 1)];
    }
    /// Number of the new crossing, -1 without memory, when the pool is full or when it would need
    /// one block more than the `blocks` that are left.
    int add(CPointF at, std::int64_t& blocks)
    {
        if (count_ == static_cast<int>(blocks_.size()) << blockBits) {
            if (count_ >= mostCrossings || --blocks < 0)
                return -1;
            void* block = allocateLarge(std::int64_t{blockSize} * sizeof(Crossing));
            if (!block)
                return -1;
            blocks_.push_back(static_cast<Crossing*>(block));
        }
        (*this)[count_] = {at, -1, 0};
        return count_++;
    }
    void clear()
    {
        for (Crossing* block : blocks_)
            freeLarge(block);
        blocks_.clear();
        count_ = 0;
    }

private:
    static constexpr int blockBits = 14;
    static constexpr int blockSize = 1 << blockBits;

    std::vector<Crossing*> blocks_;
    int count_ = 0;
};

}  // namespace pavane
