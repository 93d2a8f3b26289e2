#include "platform/core/ellipse.h"

#include "platform/core/pixel_rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// Up to this size the outline is walked in integers; beyond it a row is computed when it is seen.
constexpr std::int64_t greatestWalk = 65536;

/// Calls plot(x0, x1, y0, y1) for each step of the outline: its pixels are the four combinations.
/// The walk begins at the middle rows and keeps its error in integers.
template <class Plot>
void walkOutline(int width, int height, Plot plot)
{
    const std::int64_t a = width - 1;
    const std::int64_t b = height - 1;
    const std::int64_t odd = b & 1;
    std::int64_t x0 = 0;
    std::int64_t x1 = a;
    std::int64_t dx = 4 * (1 - a) * b * b;
    std::int64_t dy = 4 * (odd + 1) * a * a;
    std::int64_t error = dx + dy + odd * a * a;
    std::int64_t y0 = (b + 1) / 2;
    std::int64_t y1 = y0 - odd;
    while (x0 <= x1) {
        plot(static_cast<int>(x0), static_cast<int>(x1), static_cast<int>(y0),
             static_cast<int>(y1));
        const std::int64_t twice = 2 * error;
        if (twice <= dy) {
            ++y0;
            --y1;
            error += dy += 8 * a * a;
        }
        if (twice >= dx) {
            ++x0;
            --x1;
            error += dx += 8 * b * b;
        }
    }
}

/// Columns of one row of a large ellipse, cut at the plane's middle; empty outside.
struct RowFinder {
    explicit RowFinder(const CRect& box)
        : halfWidth((static_cast<double>(box.right) - box.left - 1) / 2),
          halfHeight((static_cast<double>(box.bottom) - box.top - 1) / 2),
          middleX(box.left + halfWidth), middleY(box.top + halfHeight)
    {
    }
    bool find(int y, double& a, double& b) const
    {
        const double away = halfHeight > 0 ? (y - middleY) / halfHeight : 0.0;
        if (std::fabs(away) > 1)
            return false;
        const double reach = halfWidth * std::sqrt(1 - away * away);
        a = std::ceil(middleX - reach - 0.5);
        b = std::floor(middleX + reach + 0.5) + 1;
        return a < b;
    }
    double halfWidth;
    double halfHeight;
    double middleX;
    double middleY;
};

void appendClipped(int y, double a, double b, const CRect& bounds, std::vector<Span>& out)
{
    const double left = std::max<double>(a, bounds.left);
    const double right = std::min<double>(b, bounds.right);
    if (left < right)
        out.push_back({y, nearestInt(left), nearestInt(right)});
}

bool isLarge(const CRect& box)
{
    return std::int64_t{box.right} - box.left > greatestWalk ||
           std::int64_t{box.bottom} - box.top > greatestWalk;
}

}  // namespace

std::vector<Run> ellipseRows(int width, int height)
{
    std::vector<Run> rows(static_cast<std::size_t>(std::max(height, 0)), Run{0, 0});
    if (width < 2 || height < 2) {
        if (width > 1 || height > 1)
            std::fill(rows.begin(), rows.end(), Run{0, std::max(width, 0)});
        return rows;
    }
    const auto widen = [&](int y, int x0, int x1) {
        if (y < 0 || y >= height)
            return;
        Run& row = rows[static_cast<std::size_t>(y)];
        row = row.a == row.b ? Run{x0, x1 + 1} : Run{std::min(row.a, x0), std::max(row.b, x1 + 1)};
    };
    walkOutline(width, height, [&](int x0, int x1, int y0, int y1) {
        widen(y0, x0, x1);
        widen(y1, x0, x1);
    });
    return rows;
}

void ellipseFill(const CRect& box, const CRect& bounds, std::vector<Span>& out)
{
    const int top = std::max(box.top, bounds.top);
    const int bottom = std::min(box.bottom, bounds.bottom);
    if (box.IsRectEmpty() || top >= bottom)
        return;
    if (isLarge(box)) {
        const RowFinder rows(box);
        double a = 0;
        double b = 0;
        for (int y = top; y < bottom; ++y) {
            if (rows.find(y, a, b))
                appendClipped(y, a, b, bounds, out);
        }
        return;
    }
    const std::vector<Run> rows = ellipseRows(box.Width(), box.Height());
    for (int y = top; y < bottom; ++y) {
        const Run& row = rows[static_cast<std::size_t>(y - box.top)];
        if (row.a < row.b)
            appendClipped(y, double(box.left) + row.a, double(box.left) + row.b, bounds, out);
    }
}

void ellipseOutline(const CRect& box, const CRect& bounds, std::vector<Span>& out)
{
    if (box.IsRectEmpty())
        return;
    if (!isLarge(box)) {
        const auto plot = [&](int x, int y) {
            if (bounds.PtInRect({box.left + x, box.top + y}))
                out.push_back({box.top + y, box.left + x, box.left + x + 1});
        };
        if (box.Width() < 2 || box.Height() < 2)
            return ellipseFill(box, bounds, out);
        walkOutline(box.Width(), box.Height(), [&](int x0, int x1, int y0, int y1) {
            plot(x0, y0);
            plot(x1, y0);
            plot(x0, y1);
            plot(x1, y1);
        });
        return;
    }
    // each end reaches from its row's column to that of the shorter of the rows beside it
    const RowFinder rows(box);
    for (int y = std::max(box.top, bounds.top); y < std::min(box.bottom, bounds.bottom); ++y) {
        double a = 0;
        double b = 0;
        if (!rows.find(y, a, b))
            continue;
        double innerA = b;
        double innerB = a;
        if (rows.find(y < rows.middleY ? y - 1 : y + 1, innerA, innerB)) {
            appendClipped(y, a, std::max(a + 1, innerA), bounds, out);
            appendClipped(y, std::min(b - 1, innerB), b, bounds, out);
        } else {
            appendClipped(y, a, b, bounds, out);
        }
    }
}

}  // namespace pavane
