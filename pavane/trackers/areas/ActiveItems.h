#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace pavane
{

/// Which items of a collection are active, kept as the few that differ from how they came in: a
/// loaded collection may have thousands of active areas, and every step of undo notes the list.
/// Items that it was not told of count as usually inactive.
class ActiveItems
{
public:
    /// A new item at i that counts as usual when its flag is `usual`.
    void insert(int i, int usual)
    {
        reach(i);
        usual_.insert(usual_.begin() + i, static_cast<std::uint8_t>(usual != 0));
        for (int& item : unusual_)
            item += item >= i;
    }
    void remove(int i)
    {
        reach(i + 1);
        usual_.erase(usual_.begin() + i);
        const auto at = std::lower_bound(unusual_.begin(), unusual_.end(), i);
        auto next = at;
        if (at != unusual_.end() && *at == i)
            next = unusual_.erase(at);
        for (; next != unusual_.end(); ++next)
            --*next;
    }
    int usual(int i) const
    {
        return static_cast<std::size_t>(i) < usual_.size() && usual_[static_cast<std::size_t>(i)];
    }
    /// The item's flag is now `on`.
    void note(int i, int on)
    {
        const auto at = std::lower_bound(unusual_.begin(), unusual_.end(), i);
        const bool listed = at != unusual_.end() && *at == i;
        if ((on != 0) == (usual(i) != 0)) {
            if (listed)
                unusual_.erase(at);
        } else if (!listed) {
            unusual_.insert(at, i);
        }
    }
    /// Items whose flag is not the usual one, by rising index.
    std::span<const int> unusual() const { return unusual_; }

private:
    void reach(int count)
    {
        if (usual_.size() < static_cast<std::size_t>(count))
            usual_.resize(static_cast<std::size_t>(count));
    }

    std::vector<std::uint8_t> usual_;
    std::vector<int> unusual_;
};

}  // namespace pavane
