#include "pavane/trackers/shapes/outline_strips.h"

#include "pavane/trackers/shapes/rect_handles.h"

#include <algorithm>
#include <cstdlib>

namespace pavane
{

namespace
{

/// Side of the boxes along slanted lines, and of those that gather short lines: small boxes repaint
/// less, few ones cost less to keep apart.
constexpr int boxSide = 40;
/// A line beyond any window is not followed in small boxes.
constexpr long long mostPieces = 256;

class StripMaker
{
public:
    StripMaker(std::vector<CRect>& strips, int margin) : strips_(strips), margin_(margin) {}

    void line(CPoint a, CPoint b)
    {
        const long long dx = static_cast<long long>(b.x) - a.x;
        const long long dy = static_cast<long long>(b.y) - a.y;
        const long long shorter = std::min(std::llabs(dx), std::llabs(dy));
        const long long pieces = std::min((shorter + boxSide - 1) / boxSide, mostPieces);
        CPoint from = a;
        for (long long i = 1; i < pieces; ++i) {
            const CPoint to(static_cast<int>(a.x + dx * i / pieces),
                            static_cast<int>(a.y + dy * i / pieces));
            piece(from, to);
            from = to;
        }
        piece(from, b);
    }
    void finish()
    {
        if (open_)
            strips_.push_back(grown(box_, margin_ + 1));
        open_ = false;
    }

private:
    /// Joins the piece to the box of those before as long as the box stays small or thin.
    void piece(CPoint a, CPoint b)
    {
        const CRect line(std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x),
                         std::max(a.y, b.y));
        if (open_) {
            const CRect both(std::min(box_.left, line.left), std::min(box_.top, line.top),
                             std::max(box_.right, line.right), std::max(box_.bottom, line.bottom));
            const CSize extent = extentOf(both);
            if (std::max(extent.cx, extent.cy) <= boxSide) {
                box_ = both;
                return;
            }
            finish();
        }
        box_ = line;
        open_ = true;
    }

    std::vector<CRect>& strips_;
    int margin_;
    CRect box_;
    bool open_ = false;
};

}  // namespace

void addOutlineStrips(std::vector<CRect>& strips, const CPoint* points, int n, bool closed,
                      int margin)
{
    if (n < 1)
        return;
    StripMaker maker(strips, margin);
    if (n == 1)
        maker.line(points[0], points[0]);
    for (int i = 1; i < n; ++i)
        maker.line(points[i - 1], points[i]);
    if (closed && n > 2)
        maker.line(points[n - 1], points[0]);
    maker.finish();
}

}  // namespace pavane
