#include "pavane/axes/box/HiddenLines.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace pavane
{

namespace
{

/// To which part of a step it is found where a line goes out of sight.
constexpr double fineness = 0.25;
/// What is seen just about upright of a line over a surface changes once: it is looked at in longer
/// steps there.
constexpr double uprightSteps = 4;
/// What is seen of a line between two hidden parts is left out below this length, in steps.
constexpr double speck = 0.75;

BoxPoint between(const BoxPoint& a, const BoxPoint& b, double part)
{
    return {a.p + (b.p - a.p) * part, a.q + (b.q - a.q) * part, a.s + (b.s - a.s) * part};
}

bool isFinite(const BoxPoint& at) { return std::isfinite(at.p + at.q + at.s); }

/// The part of a stretch of the picture that lies in a rectangle; false for none.
bool cutTo(const std::array<double, 4>& rect, const CPointF& from, const CPointF& to, double& first,
           double& last)
{
    first = 0;
    last = 1;
    const double starts[] = {from.x, from.y}, steps[] = {to.x - from.x, to.y - from.y};
    for (std::size_t k = 0; k < 2; ++k) {
        if (steps[k] == 0) {
            if (starts[k] < rect[k] || starts[k] > rect[k + 2])
                return false;
            continue;
        }
        const double a = (rect[k] - starts[k]) / steps[k];
        const double b = (rect[k + 2] - starts[k]) / steps[k];
        first = std::max(first, std::min(a, b));
        last = std::min(last, std::max(a, b));
    }
    return first < last;
}

}  // namespace

/// Follows one line. It looks once in about a step; the points passed since the last look wait
/// until the next one tells which of them are seen.
class HiddenLines::Tracer
{
public:
    Tracer(const HiddenLines& lines, PicturePieces& pieces)
        : lines_(lines), view_(lines.view_.transform()), pieces_(pieces), step_(lines.step_)
    {
        const CRect rect = lines.view_.rect();
        rect_ = {static_cast<double>(rect.left - rect.Width()),
                 static_cast<double>(rect.top - rect.Height()),
                 static_cast<double>(rect.right + rect.Width()),
                 static_cast<double>(rect.bottom + rect.Height())};
    }
    /// Draws on to a point; a line starts where the last one has ended.
    void to(const BoxPoint& point)
    {
        if (!isFinite(point)) {
            end();
            hasPoint_ = false;
            return;
        }
        if (hasPoint_)
            stretch(last_, point);
        last_ = point;
        hasPoint_ = true;
    }
    void end()
    {
        if (isOpen_ && !waiting_.empty())
            look();
        close();
        isOpen_ = false;
        waiting_.clear();
    }

private:
    struct Waiting {
        BoxPoint at;
        bool isCorner;
    };

    void stretch(const BoxPoint& from, const BoxPoint& to)
    {
        const CPointF a = view_.project(from), b = view_.project(to);
        double first, last;
        if (!cutTo(rect_, a, b, first, last)) {
            if (a.x != b.x || a.y != b.y)
                end();
            return;
        }
        if (first > 0)
            end();
        if (!isOpen_)
            open(first > 0 ? between(from, to, first) : from);
        const double length = std::hypot(b.x - a.x, b.y - a.y) * (last - first);
        const bool isUpright = from.p == to.p && from.q == to.q;  // a stalk may be seen in parts
        const double across = std::fabs(b.x - a.x) * (last - first);
        const double looks = isUpright ? length : std::max(across, length / uprightSteps);
        const int parts = static_cast<int>(std::ceil(looks / step_));
        for (int k = 1; k <= parts; ++k) {
            const bool isEnd = k == parts;
            const double part = isEnd ? last : first + (last - first) * k / parts;
            waiting_.push_back({part < 1 ? between(from, to, part) : to, isEnd});
            passed_ += looks / parts;
            if (passed_ >= 0.75 * step_)
                look();
        }
        if (last < 1)
            end();
    }
    void open(const BoxPoint& at)
    {
        isOpen_ = true;
        start_ = at;
        isSeen_ = !lines_.sight_.isHidden(at);
        if (isSeen_)
            put(at);
        passed_ = 0;
    }
    /// Settles the points since the last look by what is seen of the last of them.
    void look()
    {
        const bool isSeen = !lines_.sight_.isHidden(waiting_.back().at);
        std::size_t same = waiting_.size();
        if (isSeen != isSeen_) {
            same = 0;  // how many of them are as the last look was
            while (same + 1 < waiting_.size() &&
                   lines_.sight_.isHidden(waiting_[same].at) != static_cast<int>(isSeen_))
                ++same;
        }
        for (std::size_t k = 0; isSeen_ && k < same; ++k)
            if (waiting_[k].isCorner)
                put(waiting_[k].at);
        if (isSeen != isSeen_) {
            BoxPoint as = same > 0 ? waiting_[same - 1].at : start_;
            BoxPoint other = waiting_[same].at;
            const CPointF from = view_.project(as), to = view_.project(other);
            double apart = std::hypot(to.x - from.x, to.y - from.y);
            while (apart > fineness * step_) {
                const BoxPoint middle = between(as, other, 0.5);
                const bool isMiddleSeen = !lines_.sight_.isHidden(middle);
                (isMiddleSeen == isSeen_ ? as : other) = middle;
                apart /= 2;
            }
            put(between(as, other, 0.5));
            if (isSeen_)
                closeHidden();
            else
                emerged_ = true;
            isSeen_ = isSeen;
            for (std::size_t k = same; isSeen_ && k < waiting_.size(); ++k)
                if (waiting_[k].isCorner)
                    put(waiting_[k].at);
        }
        start_ = waiting_.back().at;
        waiting_.clear();
        passed_ = 0;
    }
    void put(const BoxPoint& at)
    {
        if (count_ == 0) {
            pieces_.starts.push_back(pieces_.points.size());
            emerged_ = false;
        }
        pieces_.points.push_back(view_.project(at));
        ++count_;
    }
    /// Closes a piece that goes out of sight. One that has just come from there is but a speck.
    void closeHidden()
    {
        const std::size_t first = emerged_ && count_ > 0 ? pieces_.starts.back() : 0;
        double length = 0;
        for (std::size_t k = first + 1; emerged_ && k < pieces_.points.size(); ++k)
            length += std::hypot(pieces_.points[k].x - pieces_.points[k - 1].x,
                                 pieces_.points[k].y - pieces_.points[k - 1].y);
        if (emerged_ && length < speck * step_ && count_ > 1) {
            pieces_.points.resize(first + 1);
            count_ = 1;
        }
        close();
    }
    void close()
    {
        if (count_ == 1) {
            pieces_.points.pop_back();
            pieces_.starts.pop_back();
        }
        count_ = 0;
    }

    const HiddenLines& lines_;
    const BoxTransform& view_;
    PicturePieces& pieces_;
    double step_;
    std::array<double, 4> rect_;
    std::vector<Waiting> waiting_;
    BoxPoint last_, start_;
    double passed_ = 0;
    std::size_t count_ = 0;  ///< points of the open piece
    bool hasPoint_ = false, isOpen_ = false, isSeen_ = false;
    bool emerged_ = false;  ///< the open piece begins where the line came into sight
};

HiddenLines::HiddenLines(const BoxView& view, const SurfaceScene& scene, double step)
    : view_(view), sight_(view, scene), step_(step > 0.05 ? step : 0.05)
{
}

void HiddenLines::add(std::span<const BoxPoint> points, PicturePieces& pieces) const
{
    Tracer tracer(*this, pieces);
    for (const BoxPoint& point : points)
        tracer.to(point);
    tracer.end();
}

void HiddenLines::add(const BoxPoint& from, const BoxPoint& to, PicturePieces& pieces) const
{
    const BoxPoint points[] = {from, to};
    add(points, pieces);
}

}  // namespace pavane
