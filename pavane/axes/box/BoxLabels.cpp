#include "pavane/axes/box/BoxLabels.h"

#include "pavane/axes/PlotLayout.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace pavane
{
namespace
{

/// An edge that is seen shorter than this, in font heights, carries nothing.
constexpr double leastEdge = 2.5;
/// Air between two texts, in font heights.
constexpr double airBetween = 0.25;
/// How far a title may go from the middle of its edge, in lengths of the edge, and away from the
/// labels, in font heights; and what a pixel beyond the picture counts beside a pixel of these.
constexpr std::array<double, 9> titleSlides = {0, -0.1, 0.1, -0.25, 0.25, -0.4, 0.4, -0.55, 0.55};
constexpr std::array<double, 7> titleSteps = {0, 0.5, 1, 1.5, 2, 3, 4.5};
constexpr double costOfOverflow = 4;
constexpr double costOfSlide = 0.35;

double cross(const CPointF& o, const CPointF& a, const CPointF& b)
{
    return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x);
}

/// The hull of some points, by a chain from left to right and one back.
std::vector<CPointF> hullOf(std::vector<CPointF> points)
{
    std::sort(points.begin(), points.end(), [](const CPointF& a, const CPointF& b) {
        return a.x != b.x ? a.x < b.x : a.y < b.y;
    });
    std::vector<CPointF> hull;
    const auto chain = [&hull](auto from, auto to) {
        const std::size_t start = hull.size();
        for (auto it = from; it != to; ++it) {
            while (hull.size() >= start + 2 && cross(hull[hull.size() - 2], hull.back(), *it) <= 0)
                hull.pop_back();
            hull.push_back(*it);
        }
        if (!hull.empty())
            hull.pop_back();  // the first of the other chain
    };
    chain(points.begin(), points.end());
    chain(points.rbegin(), points.rend());
    return hull;
}

bool touch(const BoxText& a, const BoxText& b, double gap)
{
    return std::fabs(a.centre.x - b.centre.x) < (a.width + b.width) * 0.5 + gap &&
           std::fabs(a.centre.y - b.centre.y) < (a.height + b.height) * 0.5 + gap;
}

/// Fewer intervals to try.
int fewer(int n) { return n > 8 ? n * 3 / 4 : n - 1; }

}  // namespace

/// Where an edge has its labels.
struct BoxLabels::Side {
    double length = 0;
    CPointF along;    ///< unit vector from place 0 to 1
    CPointF outward;  ///< unit vector away from the box
};

BoxLabels::BoxLabels(const std::vector<CPointF>& corners, const CRect& picture, int fHeight,
                     const Measure& measure, const Cut& cut)
    : hull_(hullOf(corners)), picture_(picture), fHeight_(std::max(fHeight, 1)), measure_(measure),
      cut_(cut)
{
    for (const CPointF& corner : corners) {
        middle_.x += corner.x / static_cast<double>(corners.size());
        middle_.y += corner.y / static_cast<double>(corners.size());
    }
}

BoxLabels::Side BoxLabels::sideOf(const LabelledEdge& edge) const
{
    Side side;
    const double dx = edge.to.x - edge.from.x;
    const double dy = edge.to.y - edge.from.y;
    side.length = std::hypot(dx, dy);
    if (!(side.length > 0))
        return side;
    side.along = {dx / side.length, dy / side.length};
    side.outward = {-side.along.y, side.along.x};
    const CPointF half{(edge.from.x + edge.to.x) * 0.5, (edge.from.y + edge.to.y) * 0.5};
    if (side.outward.x * (half.x - middle_.x) + side.outward.y * (half.y - middle_.y) < 0)
        side.outward = {-side.outward.x, -side.outward.y};
    return side;
}

/// The label of a tick, its centre on the line that goes straight out from the tick, so that the
/// nearest corner is as far from every edge.
BoxText BoxLabels::labelAt(const LabelledEdge& edge, const Side& side,
                           const TickSet::Tick& tick) const
{
    const CSize size = measure_(tick.label);
    const double at = edge.place(tick.value) * side.length;
    const double out = labelGap(fHeight_) + std::fabs(side.outward.x) * size.cx * 0.5 +
                       std::fabs(side.outward.y) * size.cy * 0.5;
    BoxText text;
    text.text = tick.label;
    text.width = size.cx;
    text.height = size.cy;
    text.centre = {edge.from.x + side.along.x * at + side.outward.x * out,
                   edge.from.y + side.along.y * at + side.outward.y * out};
    return text;
}

bool BoxLabels::isFree(const BoxText& text, double gap) const
{
    return std::none_of(texts_.begin(), texts_.end(),
                        [&](const BoxText& other) { return touch(text, other, gap); });
}

/// Two convex shapes lie apart when a line along a side of one of them parts them.
bool BoxLabels::liesOnBox(const BoxText& text) const
{
    const double left = text.centre.x - text.width * 0.5;
    const double top = text.centre.y - text.height * 0.5;
    const std::array<CPointF, 4> corners = {CPointF{left, top}, CPointF{left + text.width, top},
                                            CPointF{left + text.width, top + text.height},
                                            CPointF{left, top + text.height}};
    const auto isApartAlong = [&](double nx, double ny) {
        const auto reach = [&](const auto& points) {
            std::pair<double, double> ends{HUGE_VAL, -HUGE_VAL};
            for (const CPointF& p : points) {
                ends.first = std::min(ends.first, p.x * nx + p.y * ny);
                ends.second = std::max(ends.second, p.x * nx + p.y * ny);
            }
            return ends;
        };
        const auto a = reach(corners);
        const auto b = reach(hull_);
        return a.second <= b.first || b.second <= a.first;
    };
    if (isApartAlong(1, 0) || isApartAlong(0, 1))
        return false;
    for (std::size_t i = 0; i < hull_.size(); ++i) {
        const CPointF& a = hull_[i];
        const CPointF& b = hull_[(i + 1) % hull_.size()];
        if (isApartAlong(b.y - a.y, a.x - b.x))
            return false;
    }
    return true;
}

void BoxLabels::placeTicks(const LabelledEdge& edge)
{
    sets_.emplace_back();
    const Side side = sideOf(edge);
    if (!(side.length >= leastEdge * fHeight_) || !std::isfinite(side.length))
        return;
    TickSet set;
    std::vector<BoxText> labels;
    const double gap = airBetween * fHeight_;
    const int most = std::max(1, static_cast<int>(std::min(1e4, side.length / fHeight_)));
    for (int n = std::clamp(edge.intervals, 1, most);; n = fewer(n)) {
        set = edge.ticks(n);
        labels.clear();
        bool areApart = true;
        for (const TickSet::Tick& tick : set.major) {
            labels.push_back(labelAt(edge, side, tick));
            if (labels.size() > 1 && !tick.label.empty())
                areApart = areApart && !touch(labels.back(), labels[labels.size() - 2], gap);
        }
        if (areApart || n <= 1)
            break;
    }
    const auto mark = [&](double value, int length) {
        const double place = edge.place(value);
        if (!(place >= 0 && place <= 1))
            return;
        const CPointF from{edge.from.x + side.along.x * place * side.length,
                           edge.from.y + side.along.y * place * side.length};
        ticks_.push_back(
            {from, {from.x + side.outward.x * length, from.y + side.outward.y * length}});
    };
    for (std::size_t i = 0; i < set.major.size(); ++i) {
        TickSet::Tick& tick = set.major[i];
        mark(tick.value, majorTickLength(fHeight_));
        if (!tick.label.empty() && isFree(labels[i], gap) && !liesOnBox(labels[i]))
            texts_.push_back(labels[i]);
        else
            tick.label.clear();
    }
    for (const double value : set.minor)
        mark(value, minorTickLength(fHeight_));
    sets_.back() = set;
}

/// How far a text reaches beyond a rectangle.
BoxLabels::Overflow BoxLabels::beyond(const CRect& rect, const BoxText& text)
{
    return {rect.left - (text.centre.x - text.width * 0.5),
            rect.top - (text.centre.y - text.height * 0.5),
            text.centre.x + text.width * 0.5 - rect.right,
            text.centre.y + text.height * 0.5 - rect.bottom};
}

/// The free place that is nearest to the middle of the edge, just outside its labels; what would
/// reach beyond the picture counts more than the way, as the box has to shrink for it.
void BoxLabels::placeTitle(const LabelledEdge& edge, const TickSet& set)
{
    const Side side = sideOf(edge);
    if (set.title.empty() || set.major.empty() || !(side.length > 0))
        return;
    double labelsReach = labelGap(fHeight_);
    for (const TickSet::Tick& tick : set.major) {
        if (tick.label.empty())
            continue;
        const CSize size = measure_(tick.label);
        labelsReach =
            std::max(labelsReach, labelGap(fHeight_) + std::fabs(side.outward.x) * size.cx +
                                      std::fabs(side.outward.y) * size.cy);
    }
    BoxText title;
    title.turned = edge.upright;
    title.isTitle = 1;
    title.text = cut_(set.title, edge.upright ? picture_.Height() : picture_.Width());
    const CSize size = measure_(title.text);
    title.width = edge.upright ? size.cy : size.cx;
    title.height = edge.upright ? size.cx : size.cy;
    const double start = labelsReach + labelGap(fHeight_) / 2.0 +
                         std::fabs(side.outward.x) * title.width * 0.5 +
                         std::fabs(side.outward.y) * title.height * 0.5;
    const CPointF half{(edge.from.x + edge.to.x) * 0.5, (edge.from.y + edge.to.y) * 0.5};
    const double gap = airBetween * fHeight_;
    double least = HUGE_VAL;
    CPointF best;
    for (const double step : titleSteps)
        for (const double slide : titleSlides) {
            const double out = start + step * fHeight_;
            const double shift = slide * side.length;
            title.centre = {half.x + side.outward.x * out + side.along.x * shift,
                            half.y + side.outward.y * out + side.along.y * shift};
            if (!isFree(title, gap) || liesOnBox(title))
                continue;
            const Overflow over = beyond(picture_, title);
            const double cost =
                step * fHeight_ + std::fabs(shift) * costOfSlide +
                costOfOverflow * (std::max(0.0, over.left) + std::max(0.0, over.top) +
                                  std::max(0.0, over.right) + std::max(0.0, over.bottom));
            if (cost < least) {
                least = cost;
                best = title.centre;
            }
        }
    if (least == HUGE_VAL)
        return;
    title.centre = best;
    texts_.push_back(title);
}

void BoxLabels::place(const std::vector<LabelledEdge>& edges)
{
    const std::size_t first = sets_.size();
    for (const LabelledEdge& edge : edges)
        placeTicks(edge);
    for (std::size_t i = 0; i < edges.size(); ++i)
        placeTitle(edges[i], sets_[first + i]);
}

void BoxLabels::dropOutside(const CRect& rect)
{
    texts_.erase(std::remove_if(texts_.begin(), texts_.end(),
                                [&rect](const BoxText& text) {
                                    const Overflow over = beyond(rect, text);
                                    return over.left > 0 || over.top > 0 || over.right > 0 ||
                                           over.bottom > 0;
                                }),
                 texts_.end());
}

BoxLabels::Overflow BoxLabels::overflow() const
{
    Overflow most{-HUGE_VAL, -HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    const auto add = [&](const BoxText& text) {
        const Overflow over = beyond(picture_, text);
        most.left = std::max(most.left, over.left);
        most.top = std::max(most.top, over.top);
        most.right = std::max(most.right, over.right);
        most.bottom = std::max(most.bottom, over.bottom);
    };
    for (const BoxText& text : texts_)
        add(text);
    for (const BoxTick& tick : ticks_) {
        BoxText end;
        end.centre = tick.to;
        add(end);
    }
    for (const CPointF& corner : hull_) {
        BoxText end;
        end.centre = corner;
        add(end);
    }
    return most;
}

}  // namespace pavane
