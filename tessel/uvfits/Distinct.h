#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pavane
{

/// Keys in the order in which they were first met, each with a value. A key has `hash()` and `==`.
/// Made for keys that come round and round in the same order: the one that followed the last time
/// is looked at first.
template <typename Key, typename Value>
class Distinct
{
public:
    struct Item {
        Key key;
        Value value;
    };
    /// No more than `most` keys are kept.
    explicit Distinct(std::size_t most) : most_(most) {}

    const std::vector<Item>& items() const { return items_; }

    /// The value of the key, made from `fresh` at the first time; null when there are too many.
    Value* of(const Key& key, const Value& fresh)
    {
        if (last_ < items_.size() && items_[last_].key == key)
            return &items_[last_].value;
        const std::size_t next = last_ + 1 < items_.size() ? last_ + 1 : 0;
        if (next < items_.size() && items_[next].key == key)
            return &items_[last_ = next].value;
        if (items_.size() * 2 >= slots_.size())
            grow();
        std::size_t slot = key.hash() & (slots_.size() - 1);
        for (; slots_[slot]; slot = (slot + 1) & (slots_.size() - 1))
            if (items_[slots_[slot] - 1].key == key)
                return &items_[last_ = slots_[slot] - 1].value;
        if (items_.size() >= most_)
            return nullptr;
        last_ = items_.size();
        items_.push_back({key, fresh});
        slots_[slot] = static_cast<std::uint32_t>(items_.size());
        return &items_[last_].value;
    }

private:
    void grow()
    {
        constexpr std::size_t least = 1024;
        slots_.assign(slots_.empty() ? least : slots_.size() * 2, 0);
        for (std::size_t i = 0; i < items_.size(); ++i) {
            std::size_t slot = items_[i].key.hash() & (slots_.size() - 1);
            while (slots_[slot])
                slot = (slot + 1) & (slots_.size() - 1);
            slots_[slot] = static_cast<std::uint32_t>(i + 1);
        }
    }

    std::size_t most_;
    std::size_t last_ = 0;
    std::vector<Item> items_;
    std::vector<std::uint32_t> slots_;  ///< index of an item and 1, 0 where free; 2^n of them
};

/// Spreads the bits of a key over all of a word.
inline std::uint64_t spread(std::uint64_t bits)
{
    bits ^= bits >> 31;
    bits *= 0x9e3779b97f4a7c15u;
    return bits ^ bits >> 29;
}

/// Two numbers of a subarray as a key, as those of a baseline.
struct UvPair {
    int subarray, first, second;
    bool operator==(const UvPair&) const = default;
    std::uint64_t hash() const
    {
        return spread(spread(static_cast<std::uint32_t>(subarray)) ^
                      (std::uint64_t{static_cast<std::uint32_t>(first)} << 32 |
                       static_cast<std::uint32_t>(second)));
    }
};

}  // namespace pavane
