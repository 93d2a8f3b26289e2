#pragma once

#include "platform/geometry.h"

#include <algorithm>
#include <cstdint>

namespace pavane
{

/// One edge of a polygon on its way down the rows of a matrix: where it crosses the present row,
/// and what leads to the next row without a division. In step k from its start (x0, y0) towards its
/// end (x1, y1) the crossing is x0 + (x1 - x0) * k / |y1 - y0|, cut towards x0.
///
/// The magnitude |x1 - x0| * k is quotient * height + remainder at every k; a step of a row adds a
/// fixed amount to both. Coordinates reach over all 32 bits, so a magnitude takes 64.
struct ScanEdge {
    std::int64_t x = 0;          // the crossing
    std::int64_t xStep = 0;      // what every row adds to it
    std::int64_t xCarry = 0;     // 1 or -1, added when the remainder passes the height
    std::int64_t error = 0;      // remainder - height, below 0
    std::int64_t errorStep = 0;  // 0 to height - 1
    std::int64_t height = 0;
    int lastRow = 0;  // the last row with a crossing

    void step()  // without a branch: carries come as they like
    {
        error += errorStep;
        const std::int64_t carried = ~(error >> 63);  // all ones when the height was reached
        x += xStep + (xCarry & carried);
        error -= height & carried;
    }
    int crossing() const { return static_cast<int>(x); }
    /// Makes every step as long as two.
    void doubleSteps()
    {
        xStep *= 2;
        errorStep *= 2;
        if (errorStep >= height) {
            errorStep -= height;
            xStep += xCarry;
        }
    }
};

/// The rows, both included, in which the edge from a to b, which is not level, has crossings. Its
/// start counts only `withStart`. The first is above the last when none is left inside 0..rows-1.
struct EdgeRows {
    int first;
    int last;
};

inline EdgeRows rowsOf(CPoint a, CPoint b, bool withStart, int rows)
{
    const std::int64_t skipped = withStart ? 0 : 1;
    const bool down = a.y < b.y;
    const std::int64_t first = down ? a.y + skipped : b.y;
    const std::int64_t last = down ? b.y : a.y - skipped;
    return {static_cast<int>(std::clamp<std::int64_t>(first, 0, rows)),
            static_cast<int>(std::clamp<std::int64_t>(last, -1, rows - 1))};
}

/// The edge from a to b at the first of its rows.
inline ScanEdge edgeAt(CPoint a, CPoint b, EdgeRows rows)
{
    const bool down = a.y < b.y;
    const bool right = a.x <= b.x;
    const std::int64_t height = down ? std::int64_t{b.y} - a.y : std::int64_t{a.y} - b.y;
    const std::int64_t k = down ? std::int64_t{rows.first} - a.y : std::int64_t{a.y} - rows.first;
    const auto width =
        static_cast<std::uint64_t>(right ? std::int64_t{b.x} - a.x : std::int64_t{a.x} - b.x);
    ScanEdge edge;
    edge.lastRow = rows.last;
    edge.height = height;
    edge.xCarry = right ? 1 : -1;
    if (k == height && rows.first == rows.last) {  // one row at the end: nothing to divide
        edge.x = b.x;
        edge.error = -1;
        return edge;
    }
    const auto unsignedHeight = static_cast<std::uint64_t>(height);
    auto quotientStep = static_cast<std::int64_t>(width / unsignedHeight);
    auto remainderStep = static_cast<std::int64_t>(width % unsignedHeight);
    std::int64_t quotient = k ? quotientStep : 0;
    std::int64_t remainder = k ? remainderStep : 0;
    if (k == height) {
        quotient = static_cast<std::int64_t>(width);
        remainder = 0;
    } else if (k > 1) {
        const std::uint64_t magnitude = width * static_cast<std::uint64_t>(k);  // below 2^64
        quotient = static_cast<std::int64_t>(magnitude / unsignedHeight);
        remainder = static_cast<std::int64_t>(magnitude % unsignedHeight);
    }
    edge.x = a.x + edge.xCarry * quotient;
    edge.error = remainder - height;
    if (!down) {  // k falls from row to row: subtract, with the borrow turned into a carry
        quotientStep = remainderStep ? -quotientStep - 1 : -quotientStep;
        remainderStep = remainderStep ? height - remainderStep : 0;
    }
    edge.xStep = edge.xCarry * quotientStep;
    edge.errorStep = remainderStep;
    return edge;
}

}  // namespace pavane
