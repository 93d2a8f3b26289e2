#include "platform/core/DirtyBoxes.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

/// Boxes closer than this grow together.
constexpr int nearby = 8;
constexpr std::size_t mostBoxes = 16;

bool isNear(const CRect& a, const CRect& b)
{
    return a.left <= b.right + nearby && b.left <= a.right + nearby && a.top <= b.bottom + nearby &&
           b.top <= a.bottom + nearby;
}

}  // namespace

void DirtyBoxes::addNew(const CRect& box)
{
    if (box.IsRectEmpty())
        return;
    const auto near = std::find_if(boxes_.begin(), boxes_.end(),
                                   [&](const CRect& known) { return isNear(known, box); });
    if (near != boxes_.end()) {
        near->UnionRect(*near, box);
        last_ = static_cast<std::size_t>(near - boxes_.begin());
        return;
    }
    if (boxes_.size() == mostBoxes) {
        for (const CRect& other : boxes_)
            boxes_[0].UnionRect(boxes_[0], other);
        boxes_[0].UnionRect(boxes_[0], box);
        boxes_.resize(1);
    } else {
        boxes_.push_back(box);
    }
    last_ = boxes_.size() - 1;
}

std::vector<CRect> DirtyBoxes::taken()
{
    last_ = 0;
    return std::exchange(boxes_, {});
}

}  // namespace pavane
