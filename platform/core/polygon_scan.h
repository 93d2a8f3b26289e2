#pragma once

#include "platform/core/Region.h"

#include <cstdint>

namespace pavane
{

/// Pixels a .. b-1 of row y.
struct Span {
    int y;
    int a;
    int b;
};

/// A vertex; 64 bits, so that the corners of wide lines fit wherever their ends do.
struct Vertex {
    std::int64_t x;
    std::int64_t y;
};

/// Finds the pixels of polygons. Reuses its buffers, so keep one for many polygons.
class PolygonScanner
{
public:
    /// Appends to `out` the spans, inside `bounds`, of the polygon with `count` vertices (closed by
    /// itself), from top to bottom and left to right. A pixel is in when it is right of or on the
    /// left crossing of its row and left of the right one; edges span rows from their upper end
    /// to the one above their lower end. Crossings are exact. `winding` chooses the nonzero rule.
    void scan(const Vertex* vertices, std::size_t count, bool winding, const CRect& bounds,
              std::vector<Span>& out);

private:
    struct Edge {
        int first;            ///< first visible row
        int end;              ///< row below the last
        std::int64_t x;       ///< first column at or right of the edge on the current row
        std::int64_t rest;    ///< of the exact crossing, in 1/height, from 0 to height-1
        std::int64_t step;    ///< columns per row, rounded down
        std::int64_t over;    ///< and the rest of it
        std::int64_t height;  ///< rows that the whole edge spans
        int direction;        ///< 1 down, -1 up
    };
    void addEdge(Vertex a, Vertex b, const CRect& bounds);
    void emitRow(int y, bool winding, const CRect& bounds, std::vector<Span>& out) const;

    std::vector<Edge> edges_;
    std::vector<Edge> active_;
};

/// The polygon as a region, inside `bounds`.
Region polygonRegion(const CPoint* points, int count, bool winding, const CRect& bounds);

/// Whether pixel (x, y) is in the polygon, by the same rule, wherever its vertices lie.
bool polygonContains(const CPoint* points, int count, bool winding, int x, int y);

}  // namespace pavane
