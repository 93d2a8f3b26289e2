#pragma once

#include "platform/core/pixel_rounding.h"
#include "platform/core/polygon_scan.h"

#include <algorithm>
#include <vector>

namespace pavane
{

/// Consecutive pixels of a one-pixel line that share the coordinate across its main direction:
/// pixel k is k * step columns (`horizontal`) or rows away from (x, y), and it is pixel number
/// index + k of the line.
struct LineRun {
    int x;
    int y;
    int count;
    int step;
    bool horizontal;
    std::int64_t index;
};

/// Hands the runs, inside `bounds`, of the line from `from` to `to` to `emit`, from start to end.
/// The end is excluded; between two pixels the one with the smaller coordinate is taken. Clipping
/// does not move pixels.
template <class Emit>
void thinLine(CPoint from, CPoint to, const CRect& bounds, Emit emit)
{
    const std::int64_t dx = std::int64_t{to.x} - from.x;
    const std::int64_t dy = std::int64_t{to.y} - from.y;
    const std::int64_t spanX = dx < 0 ? -dx : dx;
    const std::int64_t spanY = dy < 0 ? -dy : dy;
    const bool horizontal = spanX >= spanY;
    const std::int64_t n = horizontal ? spanX : spanY;
    const std::int64_t m = horizontal ? spanY : spanX;
    const int step = (horizontal ? dx : dy) < 0 ? -1 : 1;
    const int across = (horizontal ? dy : dx) < 0 ? -1 : 1;
    const std::int64_t major = horizontal ? from.x : from.y;
    const std::int64_t minor = horizontal ? from.y : from.x;
    const std::int64_t majorLow = horizontal ? bounds.left : bounds.top;
    const std::int64_t majorHigh = horizontal ? bounds.right : bounds.bottom;
    const std::int64_t minorLow = horizontal ? bounds.top : bounds.left;
    const std::int64_t minorHigh = horizontal ? bounds.bottom : bounds.right;

    // pixel i lies q(i) = (2 i m + bias) / (2 n) across; first .. last-1 are inside
    const std::int64_t bias = across > 0 ? n - 1 : n;
    std::int64_t first =
        std::max<std::int64_t>(0, step > 0 ? majorLow - major : major - majorHigh + 1);
    std::int64_t last =
        std::min<std::int64_t>(n, step > 0 ? majorHigh - major : major - majorLow + 1);
    const std::int64_t least = across > 0 ? minorLow - minor : minor - minorHigh + 1;
    const std::int64_t beyond = across > 0 ? minorHigh - minor : minor - minorLow + 1;
    if (first >= last || beyond <= 0)
        return;
    if (m == 0) {
        if (least > 0)
            return;
    } else {
        const auto firstWith = [&](std::int64_t q) {
            return static_cast<std::int64_t>(
                std::clamp<Wide>(-floorDiv(bias - Wide{2} * n * q, Wide{2} * m), 0, n));
        };
        // q runs from 0 to m, so that most lines need no division here
        if (least > 0)
            first = std::max(first, firstWith(least));
        if (beyond <= m)
            last = std::min(last, firstWith(beyond));
        if (first >= last)
            return;
    }

    std::int64_t q = 0;
    std::int64_t rest = bias;
    if (first > 0) {
        const Wide position = Wide{2} * first * m + bias;
        q = static_cast<std::int64_t>(position / (Wide{2} * n));
        rest = static_cast<std::int64_t>(position % (Wide{2} * n));
    }
    const std::int64_t usual = m == 0 ? n : n / m;  // pixels of a run, or one more
    std::int64_t i = first;
    bool whole = false;  // the first run may be cut
    while (i < last) {
        std::int64_t count = last - i;
        if (m != 0) {
            std::int64_t length = usual;
            if (!whole)
                length = (2 * n - rest + 2 * m - 1) / (2 * m);
            else if (rest + usual * 2 * m < 2 * n)
                ++length;
            rest += length * 2 * m - 2 * n;
            whole = true;
            count = std::min(count, length);
        }
        const int along = static_cast<int>(major + step * i);
        const int beside = static_cast<int>(minor + across * q);
        emit(LineRun{horizontal ? along : beside, horizontal ? beside : along,
                     static_cast<int>(count), step, horizontal, i});
        i += count;
        ++q;
    }
}

/// On and off lengths of a dashed line, in pixels along the main direction, beginning with "on".
struct DashPattern {
    int count = 0;  ///< 0: not dashed
    int lengths[6] = {};
    int period() const
    {
        int sum = 0;
        for (int i = 0; i < count; ++i)
            sum += lengths[i];
        return sum;
    }
};

/// The pattern of a pen style (PS_*); empty for a style without gaps.
DashPattern dashPattern(int penStyle);

/// Calls `emit(run, on)` for the parts of `run` that are on and off when the line's first pixel is
/// number `phase` of the pattern.
template <class Emit>
void splitDashes(const LineRun& run, const DashPattern& pattern, std::int64_t phase, Emit emit)
{
    int at = static_cast<int>((phase + run.index) % pattern.period());
    int part = 0;
    while (at >= pattern.lengths[part])
        at -= pattern.lengths[part++];
    for (int done = 0; done < run.count;) {
        const int count = std::min(run.count - done, pattern.lengths[part] - at);
        LineRun piece = run;
        (run.horizontal ? piece.x : piece.y) += done * run.step;
        piece.count = count;
        emit(piece, part % 2 == 0);
        done += count;
        at = 0;
        part = (part + 1) % pattern.count;
    }
}

/// Makes the spans of lines wider than one pixel: a body, and a disc at both ends.
class WideLine
{
public:
    explicit WideLine(int width);
    /// Appends the spans, inside `bounds`, of the disc around `at`.
    void disc(CPoint at, const CRect& bounds, std::vector<Span>& out) const;
    /// Appends the spans of the body between two points; they may overlap others.
    void body(CPoint from, CPoint to, const CRect& bounds, std::vector<Span>& out);

private:
    int width_;
    std::vector<Run> disc_;  ///< of each row, relative to the left end
    PolygonScanner scanner_;
};

}  // namespace pavane
