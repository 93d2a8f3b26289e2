#pragma once

#include "platform/geometry.h"

#include <vector>

namespace pavane
{

/// A few boxes around everything that was painted since they were last taken. Boxes that are near
/// each other grow together, so that a line of many runs is one box.
class DirtyBoxes
{
public:
    void add(const CRect& box)
    {
        if (last_ < boxes_.size() && contains(boxes_[last_], box))
            return;
        addNew(box);
    }
    bool empty() const { return boxes_.empty(); }
    /// Hands the boxes out and forgets them.
    std::vector<CRect> taken();

private:
    static bool contains(const CRect& outer, const CRect& inner)
    {
        return inner.left >= outer.left && inner.right <= outer.right && inner.top >= outer.top &&
               inner.bottom <= outer.bottom;
    }
    void addNew(const CRect& box);

    std::vector<CRect> boxes_;
    std::size_t last_ = 0;
};

}  // namespace pavane
