#include "platform/core/polygon_scan.h"

#include "platform/core/pixel_rounding.h"

#include <algorithm>

namespace pavane
{

void PolygonScanner::addEdge(Vertex a, Vertex b, const CRect& bounds)
{
    if (a.y == b.y)
        return;
    const int direction = a.y < b.y ? 1 : -1;
    if (direction < 0)
        std::swap(a, b);
    if (b.y <= bounds.top || a.y >= bounds.bottom)
        return;
    Edge edge;
    edge.first = static_cast<int>(std::max<std::int64_t>(a.y, bounds.top));
    edge.end = static_cast<int>(std::min<std::int64_t>(b.y, bounds.bottom));
    edge.height = b.y - a.y;
    edge.direction = direction;
    const std::int64_t width = b.x - a.x;
    edge.step = static_cast<std::int64_t>(floorDiv(width, edge.height));
    edge.over = width - edge.step * edge.height;
    const Wide offset = Wide{width} * (edge.first - a.y) + edge.height - 1;
    const Wide columns = floorDiv(offset, edge.height);
    edge.x = a.x + static_cast<std::int64_t>(columns);
    edge.rest = static_cast<std::int64_t>(offset - columns * edge.height);
    edges_.push_back(edge);
}

void PolygonScanner::emitRow(int y, bool winding, const CRect& bounds, std::vector<Span>& out) const
{
    int depth = 0;
    std::int64_t start = 0;
    for (const Edge& edge : active_) {
        const int before = depth;
        depth = winding ? depth + edge.direction : 1 - depth;
        if (before == 0) {
            start = edge.x;
        } else if (depth == 0) {
            const auto a = static_cast<int>(std::max<std::int64_t>(start, bounds.left));
            const auto b = static_cast<int>(std::min<std::int64_t>(edge.x, bounds.right));
            if (start < bounds.right && edge.x > bounds.left && a < b)
                out.push_back({y, a, b});
        }
    }
}

void PolygonScanner::scan(const Vertex* vertices, std::size_t count, bool winding,
                          const CRect& bounds, std::vector<Span>& out)
{
    edges_.clear();
    active_.clear();
    if (count < 3 || bounds.IsRectEmpty())
        return;
    for (std::size_t i = 0; i < count; ++i)
        addEdge(vertices[i], vertices[i + 1 < count ? i + 1 : 0], bounds);
    if (edges_.empty())
        return;
    std::sort(edges_.begin(), edges_.end(),
              [](const Edge& a, const Edge& b) { return a.first < b.first; });
    const auto leftToRight = [](const Edge& a, const Edge& b) { return a.x < b.x; };
    std::size_t next = 0;
    int y = edges_.front().first;
    while (next < edges_.size() || !active_.empty()) {
        if (active_.empty())
            y = edges_[next].first;
        while (next < edges_.size() && edges_[next].first == y)
            active_.push_back(edges_[next++]);
        // almost in order from the row above
        if (active_.size() <= 16) {
            for (std::size_t i = 1; i < active_.size(); ++i) {
                for (std::size_t k = i; k > 0 && active_[k].x < active_[k - 1].x; --k)
                    std::swap(active_[k], active_[k - 1]);
            }
        } else if (!std::is_sorted(active_.begin(), active_.end(), leftToRight)) {
            std::sort(active_.begin(), active_.end(), leftToRight);
        }
        emitRow(y, winding, bounds, out);
        ++y;
        std::size_t kept = 0;
        for (std::size_t i = 0; i < active_.size(); ++i) {
            Edge& edge = active_[i];
            if (edge.end <= y)
                continue;
            edge.x += edge.step;
            edge.rest += edge.over;
            if (edge.rest >= edge.height) {
                edge.rest -= edge.height;
                ++edge.x;
            }
            active_[kept++] = edge;
        }
        active_.resize(kept);
    }
}

Region polygonRegion(const CPoint* points, int count, bool winding, const CRect& bounds)
{
    std::vector<Vertex> vertices;
    vertices.reserve(static_cast<std::size_t>(count > 0 ? count : 0));
    for (int i = 0; i < count; ++i)
        vertices.push_back({points[i].x, points[i].y});
    std::vector<Span> spans;
    PolygonScanner().scan(vertices.data(), vertices.size(), winding, bounds, spans);
    Region region;
    std::vector<Run> row;
    for (std::size_t i = 0; i < spans.size();) {
        const int y = spans[i].y;
        row.clear();
        for (; i < spans.size() && spans[i].y == y; ++i) {
            if (!row.empty() && spans[i].a <= row.back().b)
                row.back().b = std::max(row.back().b, spans[i].b);
            else
                row.push_back({spans[i].a, spans[i].b});
        }
        region.append(y, y + 1, row);
    }
    return region;
}

bool polygonContains(const CPoint* points, int count, bool winding, int x, int y)
{
    int depth = 0;
    for (int i = 0; i < count; ++i) {
        CPoint a = points[i];
        CPoint b = points[i + 1 < count ? i + 1 : 0];
        const int direction = a.y < b.y ? 1 : -1;
        if (direction < 0)
            std::swap(a, b);
        if (y < a.y || y >= b.y)
            continue;
        // in the crossing's half-plane: x >= a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y)
        const Wide rows = Wide{b.y} - a.y;
        if ((Wide{x} - a.x) * rows >= (Wide{b.x} - a.x) * (Wide{y} - a.y))
            depth += direction;
    }
    return count >= 3 && (winding ? depth != 0 : depth % 2 != 0);
}

}  // namespace pavane
