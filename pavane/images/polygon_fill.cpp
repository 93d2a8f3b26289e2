#include "pavane/images/polygon_fill.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

__extension__ using Wide = __int128;

// ceil of the crossing of an edge with row after row.
class EdgeWalk
{
public:
    EdgeWalk(CPoint top, CPoint bottom, std::int64_t y) : height_(std::int64_t{bottom.y} - top.y)
    {
        const std::int64_t dx = std::int64_t{bottom.x} - top.x;
        const Wide product = Wide{dx} * (y - top.y);
        std::int64_t whole = static_cast<std::int64_t>(product / height_);
        std::int64_t part = static_cast<std::int64_t>(product % height_);
        if (part > 0) {  // as a ceiling: x - rest / height with 0 <= rest < height
            ++whole;
            part -= height_;
        }
        x_ = top.x + whole;
        rest_ = -part;
        step_ = dx / height_;
        stepRest_ = dx % height_;
        if (stepRest_ > 0) {
            ++step_;
            stepRest_ -= height_;
        }
        stepRest_ = -stepRest_;
    }
    std::int64_t x() const { return x_; }
    void next()
    {
        x_ += step_;
        rest_ += stepRest_;
        if (rest_ >= height_) {
            rest_ -= height_;
            --x_;
        }
    }

private:
    std::int64_t height_;
    std::int64_t x_;
    std::int64_t rest_;
    std::int64_t step_;
    std::int64_t stepRest_;
};

}  // namespace

void markCrossings(const CPoint* points, int n, const CRect& box, unsigned char* toggles)
{
    const std::int64_t columns = std::int64_t{box.right} - box.left + 2;
    for (int i = 0; i < n; ++i) {
        CPoint a = points[i];
        CPoint b = points[i + 1 < n ? i + 1 : 0];
        if (a.y > b.y)
            std::swap(a, b);
        const std::int64_t first = std::max(a.y, box.top);
        const std::int64_t end = std::min<std::int64_t>(b.y, std::int64_t{box.bottom} + 1);
        if (a.y == b.y || first >= end)
            continue;
        unsigned char* row = toggles + (first - box.top) * columns;
        EdgeWalk edge(a, b, first);
        for (std::int64_t y = first; y < end; ++y, row += columns, edge.next())
            row[std::clamp<std::int64_t>(edge.x() - box.left, 0, columns - 1)] ^= 1;
    }
}

}  // namespace pavane
