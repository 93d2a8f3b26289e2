#include "tessel/sky_line.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <utility>

namespace pavane
{

namespace
{

/// Pieces that a curve is looked at in before any of them is passed over.
constexpr int firstPieces = 24;
constexpr int mostHalvings = 26;
/// A curve that needs more points than this is left where it is.
constexpr int mostPlaces = 40000;
/// No chord is longer than this part of the rectangle.
constexpr double longestChord = 0.15;
/// Of a halved piece no half may be longer than this part of the whole: else it jumps or runs away.
constexpr double longestHalf = 0.9;

/// The part of a segment inside a rectangle (Liang and Barsky 1984); 0 for none.
int clip(const CellRectangle& r, CellPoint& a, CellPoint& b)
{
    const double dx = b.column - a.column;
    const double dy = b.row - a.row;
    const double towards[4] = {-dx, dx, -dy, dy};
    const double room[4] = {a.column - r.left, r.right - a.column, a.row - r.bottom, r.top - a.row};
    double first = 0;
    double last = 1;
    for (int i = 0; i < 4; ++i) {
        if (towards[i] == 0 && room[i] < 0)
            return 0;
        if (towards[i] < 0)
            first = std::max(first, room[i] / towards[i]);
        else if (towards[i] > 0)
            last = std::min(last, room[i] / towards[i]);
    }
    if (!(first < last))
        return 0;
    const CellPoint start = a;
    if (first > 0)
        a = {start.column + first * dx, start.row + first * dy};
    if (last < 1)
        b = {start.column + last * dx, start.row + last * dy};
    return 1;
}

double distance(const CellPoint& a, const CellPoint& b)
{
    return std::hypot(a.column - b.column, a.row - b.row);
}

}  // namespace

SkyLineTracer::SkyLineTracer(const CellRectangle& rectangle, double tolerance, Place place)
    : rectangle_(rectangle), tolerance_(tolerance),
      size_(std::max(rectangle.right - rectangle.left, rectangle.top - rectangle.bottom)),
      place_(std::move(place))
{
}

SkyLineTracer::Point SkyLineTracer::at(double t)
{
    Point point;
    point.t = t;
    point.isThere = place_(t, point.cell);
    ++places_;
    return point;
}

void SkyLineTracer::trace(double from, double to, std::vector<std::vector<CellPoint>>& pieces)
{
    pieces_ = &pieces;
    places_ = 0;
    pieces.emplace_back();
    Point before = at(from);
    for (int i = 1; i <= firstPieces; ++i) {
        const Point next = at(i == firstPieces ? to : from + (to - from) * i / firstPieces);
        between(before, next, 0);
        before = next;
    }
    if (pieces.back().empty())
        pieces.pop_back();
}

/// Non-zero when the curve between two of its points may cross the rectangle.
int SkyLineTracer::comesNear(const Point& a, const Point& b) const
{
    const double spare = distance(a.cell, b.cell);
    const auto [left, right] = std::minmax(a.cell.column, b.cell.column);
    const auto [bottom, top] = std::minmax(a.cell.row, b.cell.row);
    return right + spare >= rectangle_.left && left - spare <= rectangle_.right &&
           top + spare >= rectangle_.bottom && bottom - spare <= rectangle_.top;
}

void SkyLineTracer::between(const Point& a, const Point& b, int depth)
{
    constexpr int roundsOfNothing = 1;
    if (places_ > mostPlaces || (a.isThere && b.isThere && !comesNear(a, b)))
        return;
    if (!a.isThere && !b.isThere && depth >= roundsOfNothing)
        return;
    const double length = distance(a.cell, b.cell);
    if (depth >= mostHalvings) {
        if (a.isThere && b.isThere && length <= tolerance_)
            add(a.cell, b.cell);
        return;
    }
    const Point m = at(a.t + (b.t - a.t) / 2);
    if (a.isThere && b.isThere && m.isThere) {
        const double dx = b.cell.column - a.cell.column;
        const double dy = b.cell.row - a.cell.row;
        const double area = dx * (m.cell.row - a.cell.row) - dy * (m.cell.column - a.cell.column);
        const double half = std::max(distance(a.cell, m.cell), distance(m.cell, b.cell));
        const int isFlat = std::fabs(area) <= tolerance_ * length && half <= longestHalf * length;
        if ((isFlat && length <= longestChord * size_) || half <= tolerance_) {
            add(a.cell, m.cell);
            add(m.cell, b.cell);
            return;
        }
    }
    between(a, m, depth + 1);
    between(m, b, depth + 1);
}

void SkyLineTracer::add(CellPoint a, CellPoint b)
{
    if (!clip(rectangle_, a, b))
        return;
    std::vector<CellPoint>& piece = pieces_->back();
    if (!piece.empty() && (piece.back().column != a.column || piece.back().row != a.row))
        pieces_->emplace_back();
    std::vector<CellPoint>& open = pieces_->back();
    if (open.empty())
        open.push_back(a);
    open.push_back(b);
}

namespace
{

/// Squares of a rectangle, halved where the border runs through them.
class Border
{
public:
    Border(const CellRectangle& rectangle, const std::function<int(const CellPoint&)>& isInside)
        : rectangle_(rectangle), isInside_(isInside)
    {
    }

    std::vector<std::vector<CellPoint>> trace()
    {
        for (int i = 0; i < finest; i += coarse)
            for (int j = 0; j < finest; j += coarse)
                square(i, j, coarse);
        return chains();
    }

private:
    static constexpr int finest = 256;  ///< squares a side
    static constexpr int coarse = 8;    ///< of them in the squares that are looked at first
    using Node = std::pair<int, int>;
    using Edge = std::pair<Node, Node>;

    CellPoint cellOf(const Node& n) const
    {
        const CellRectangle& r = rectangle_;
        return {r.left + (r.right - r.left) * n.first / finest,
                r.bottom + (r.top - r.bottom) * n.second / finest};
    }
    int inside(const Node& n)
    {
        constexpr int perRow = finest + 1;
        signed char& known =
            known_[static_cast<std::size_t>(n.second) * perRow + static_cast<std::size_t>(n.first)];
        if (known < 0)
            known = isInside_(cellOf(n)) != 0;
        return known;
    }
    void square(int i, int j, int size)
    {
        const Node corners[4] = {{i, j}, {i + size, j}, {i + size, j + size}, {i, j + size}};
        int count = 0;
        for (const Node& corner : corners)
            count += inside(corner);
        if (count == 0 || count == 4)
            return;
        if (size > 1) {
            const int half = size / 2;
            square(i, j, half);
            square(i + half, j, half);
            square(i, j + half, half);
            square(i + half, j + half, half);
            return;
        }
        std::vector<Edge> crossed;
        for (int e = 0; e < 4; ++e) {
            Node a = corners[e];
            Node b = corners[(e + 1) % 4];
            if (b < a)
                std::swap(a, b);
            if (inside(a) != inside(b))
                crossed.push_back({a, b});
        }
        for (std::size_t e = 0; e + 1 < crossed.size(); e += 2) {
            links_[crossed[e]].push_back(crossed[e + 1]);
            links_[crossed[e + 1]].push_back(crossed[e]);
        }
    }
    /// Where the border crosses an edge, by halving.
    CellPoint placeOf(const Edge& edge)
    {
        constexpr int halvings = 20;
        CellPoint in = cellOf(edge.first);
        CellPoint out = cellOf(edge.second);
        if (!inside(edge.first))
            std::swap(in, out);
        for (int i = 0; i < halvings; ++i) {
            const CellPoint m = {(in.column + out.column) / 2, (in.row + out.row) / 2};
            (isInside_(m) ? in : out) = m;
        }
        return in;
    }
    std::vector<std::vector<CellPoint>> chains()
    {
        std::vector<std::vector<CellPoint>> chains;
        // open ends first: what is left then is closed
        for (const std::size_t ends : {std::size_t{1}, std::size_t{2}})
            for (auto& [start, links] : links_)
                while (links.size() == ends) {
                    std::vector<CellPoint> chain = {placeOf(start)};
                    Edge at = start;
                    while (!links_[at].empty()) {
                        const Edge next = links_[at].back();
                        links_[at].pop_back();
                        auto& back = links_[next];
                        back.erase(std::find(back.begin(), back.end(), at));
                        chain.push_back(placeOf(next));
                        at = next;
                    }
                    chains.push_back(std::move(chain));
                }
        return chains;
    }

    CellRectangle rectangle_;
    const std::function<int(const CellPoint&)>& isInside_;
    std::vector<signed char> known_ =
        std::vector<signed char>(std::size_t{finest + 1} * (finest + 1), -1);
    std::map<Edge, std::vector<Edge>> links_;
};

}  // namespace

std::vector<std::vector<CellPoint>>
traceBorder(const CellRectangle& rectangle, const std::function<int(const CellPoint&)>& isInside)
{
    return Border(rectangle, isInside).trace();
}

}  // namespace pavane
