#include "platform/core/CurveSpans.h"

#include "platform/core/point_kernels.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace pavane
{

namespace
{

/// Each piece takes time of its own; with more of them reducing the curve is faster.
constexpr std::size_t mostPieces = 2000;

/// A line may lead past points that are this far from it, in rows.
constexpr double straightness = 0.01;
/// Points that are tried as one line.
constexpr std::int64_t shortStretch = 8;
constexpr std::int64_t longStretch = 1024;
/// Points after a stretch that is not straight before the next is tried.
constexpr std::int64_t roughPoints = 64;
/// Points of a part from which on steep curves are read by parts.
constexpr std::int64_t dense = 8;
/// Points of a part that are read one by one; it takes more of them to make vectors pay.
constexpr int singlePoints = 4;

/// Part of the steepest slope by which it may change at a point.
constexpr double sharpest = 1.0 / 8;

/// The part that holds a place, which lies near the picture.
std::int64_t partAt(double x)
{
    const auto part = static_cast<std::int64_t>(x);
    return part - (x < static_cast<double>(part));
}

// by value, so that no branch has to guess
float greater(float a, float b) { return a > b ? a : b; }
float smaller(float a, float b) { return a < b ? a : b; }

bool isThere(CPointF p)
{
    return std::fabs(p.x) <= farthestPoint && std::fabs(p.y) <= farthestPoint;
}

}  // namespace

CurveSpans::CurveSpans(std::int64_t parts, int margin, double top, double bottom, double steepest)
    : parts_(parts), least_(-margin - 1.0), most_(static_cast<double>(parts) + margin + 1.0),
      top_(top), bottom_(bottom), steepest_(steepest), stretch_(shortStretch)
{
    // pieces may share the part between them; loops in vectors write beyond the last
    const std::size_t most = static_cast<std::size_t>(parts_ + std::int64_t{2} * margin) +
                             mostPieces + PointKernels::excess + 8;
    high_.resize(most);
    low_.resize(most);
}

float CurveSpans::row(double y) const
{
    // far points may leave no number, which the order of these arguments drops
    return static_cast<float>(std::min(bottom_, std::max(top_, y)));
}

void CurveSpans::begin(CPointF p)
{
    at_ = pieces_.empty() ? 0 : pieces_.back().at + pieces_.back().count;
    part_ = partAt(p.x);
    pieces_.push_back({part_, at_, 0, p, p});
    high_[at_] = row(p.y);
    low_[at_] = -row(p.y);
    open_ = true;
    slope_ = std::numeric_limits<double>::quiet_NaN();
}

/// Ends the piece under way.
void CurveSpans::close()
{
    if (open_)
        pieces_.back().count = at_ + 1 - pieces_.back().at;
    open_ = false;
}

/// The part that the piece under way has reached spans these rows as well.
void CurveSpans::widen(double low, double high)
{
    high_[at_] = std::max(high_[at_], row(high));
    low_[at_] = std::max(low_[at_], -row(low));
}

/// Leads the piece under way from one point to the next as far as it is in view.
void CurveSpans::lead(CPointF from, CPointF to)
{
    if (to.x < least_ || from.x > most_)
        return;
    const double slope = (to.y - from.y) / (to.x - from.x);
    tooSteep_ |= std::fabs(to.y - from.y) > steepest_ * std::max(1.0, to.x - from.x) ||
                 std::fabs(slope - slope_) > steepest_ * sharpest;
    slope_ = slope;
    if (from.x < least_) {
        from = {least_, from.y + (least_ - from.x) * slope};
        begin(from);
    }
    if (to.x > most_)
        to = {most_, from.y + (most_ - from.x) * slope};
    const std::int64_t last = partAt(to.x);
    if (last > part_) {
        const double start = from.y + (static_cast<double>(part_ + 1) - from.x) * slope;
        widen(start, start);
        const std::int64_t between = last - part_ - 1;
        if (between > 0)
            pointKernels().ramp(start, slope, between, top_, bottom_, low_.data() + at_ + 1,
                                high_.data() + at_ + 1);
        at_ += static_cast<std::size_t>(between) + 1;
        part_ = last;
        const float y = row(start + static_cast<double>(between) * slope);
        high_[at_] = y;
        low_[at_] = -y;
    }
    widen(to.y, to.y);
    pieces_.back().stop = to;
}

/// How many points from `i` on are on one line with `last`, the point before.
std::int64_t CurveSpans::straightFrom(const CurveData& curve, std::int64_t i, CPointF last)
{
    if (i < nextTry_ || i + stretch_ > curve.n)
        return 0;
    const std::int64_t n = stretch_;
    const CPointF p = pointOf(curve, i + n - 1);
    if (isThere(p) &&
        pointKernels().straight(curve, i, n, (p.y - last.y) / (p.x - last.x), straightness)) {
        stretch_ = std::min(longStretch, 2 * n);
        return n;
    }
    stretch_ = std::max(shortStretch, n / 4);
    nextTry_ = n > shortStretch ? i : i + roughPoints;
    return n > shortStretch ? straightFrom(curve, i, last) : 0;
}

/// Leads the piece under way through points from `i` on, most of which lie in parts of their own,
/// up to the next try of a straight stretch; returns their number.
std::int64_t CurveSpans::readSparse(const CurveData& curve, std::int64_t i, CPointF last)
{
    LineChain line{last, part_, low_.data() + at_, high_.data() + at_};
    const std::int64_t count =
        pointKernels().chain(curve, i, std::min(curve.n, nextTry_), most_, top_, bottom_, line);
    at_ = static_cast<std::size_t>(line.high - high_.data());
    part_ = line.part;
    if (count > 0)
        pieces_.back().stop = line.last;
    return count;
}

/// Reads points from `i` on that lie in the part reached or the one after, up to the next try of a
/// straight stretch; returns their number. Where one part ends does not matter to what follows, so
/// that nothing has to be guessed. Lines between neighbouring parts are cut in their middle.
std::int64_t CurveSpans::readRough(const CurveData& curve, std::int64_t i, CPointF last)
{
    constexpr float all = std::numeric_limits<float>::max();
    constexpr float keep[] = {-all, all};
    const double offset = std::ceil(1 - least_);  // for what is cut off is the fraction only
    const auto shift = static_cast<std::int64_t>(offset);
    const std::int64_t begin = i;
    std::int64_t part = part_;
    float* highEnd = high_.data() + at_;
    float* lowEnd = low_.data() + at_;
    float high = *highEnd;
    float low = *lowEnd;
    float before = row(last.y);
    double reached = last.x;
    for (const std::int64_t end = std::min(curve.n, nextTry_); i < end; ++i) {
        const CPointF p = pointOf(curve, i);
        if (!(p.x >= reached && p.x <= most_ && std::fabs(p.y) <= farthestPoint))
            break;
        const std::int64_t next = static_cast<std::int64_t>(p.x + offset) - shift;
        if (next > part + 1)
            break;
        reached = p.x;
        const float y = row(p.y);
        const float kept = keep[next == part];
        const float middle = (before + y) / 2;
        before = y;
        *highEnd = greater(high, middle);
        *lowEnd = greater(low, -middle);
        // the greater and the negated lesser of y and middle; compared, they would make a branch
        const float centre = (y + middle) / 2;
        const float half = std::fabs(y - middle) / 2;
        high = greater(smaller(high, kept), half + centre);
        low = greater(smaller(low, kept), half - centre);
        highEnd += next - part;
        lowEnd += next - part;
        part = next;
        *highEnd = high;
        *lowEnd = low;
    }
    at_ = static_cast<std::size_t>(highEnd - high_.data());
    part_ = part;
    if (i > begin)
        pieces_.back().stop = pointOf(curve, i - 1);
    return i - begin;
}

/// Reads the points from `i` on that lie in the same part as `from`, the point before; returns
/// their number.
std::int64_t CurveSpans::readPart(const CurveData& curve, std::int64_t i, CPointF from)
{
    const bool seen = isInView(from.x);
    const double end = seen              ? static_cast<double>(partAt(from.x) + 1)
                       : from.x < least_ ? least_
                                         : std::numeric_limits<double>::infinity();
    double low = from.y;
    double high = from.y;
    const std::int64_t begin = i;
    const auto readSingle = [&](std::int64_t stop) {
        for (double reached = from.x; i < stop; ++i) {
            const CPointF p = pointOf(curve, i);
            if (!(p.x >= reached && p.x < end && std::fabs(p.y) <= farthestPoint))
                return false;
            reached = p.x;
            low = std::min(low, p.y);
            high = std::max(high, p.y);
        }
        return true;
    };
    if (readSingle(std::min(curve.n, begin + singlePoints)))
        i += pointKernels().within(curve, i, curve.n - i, end, low, high);
    if (seen && i > begin) {
        widen(low, high);
        pieces_.back().stop = pointOf(curve, i - 1);
        const double turn = steepest_ * sharpest / 4;
        const double y = pieces_.back().stop.y;
        tooSteep_ |= high - low > steepest_ || high - std::max(from.y, y) > turn ||
                     std::min(from.y, y) - low > turn;
    }
    return i - begin;
}

int CurveSpans::readRising(const CurveData& curve)
{
    const bool rough = std::isinf(steepest_) && curve.n < dense * parts_;
    const bool sparse = curve.n < 2 * parts_;
    CPointF last;
    bool joined = false;
    double reached = -farthestPoint;
    for (std::int64_t i = 0; i < curve.n;) {
        const std::int64_t stretch = joined ? straightFrom(curve, i, last) : 0;
        if (rough && joined && stretch == 0 && isInView(last.x)) {
            const std::int64_t count =
                sparse ? readSparse(curve, i, last) : readRough(curve, i, last);
            if (count > 0) {
                i += count;
                last = pointOf(curve, i - 1);
                reached = last.x;
                continue;
            }
        }
        i += std::max<std::int64_t>(stretch, 1);
        const CPointF p = pointOf(curve, i - 1);
        if (!isThere(p)) {
            joined = false;
            close();
            continue;
        }
        if (p.x < reached || pieces_.size() >= mostPieces || tooSteep_)
            return 0;
        if (joined)
            lead(last, p);
        else if (isInView(p.x))
            begin(p);
        last = p;
        if (stretch == 0) {
            i += readPart(curve, i, p);
            last = pointOf(curve, i - 1);
        }
        reached = last.x;
        joined = true;
    }
    close();
    return !tooSteep_;
}

/// Turns what was read from left to right into what lies from right to left.
void CurveSpans::mirror()
{
    for (Piece& piece : pieces_) {
        const auto at = static_cast<std::ptrdiff_t>(piece.at);
        const auto end = at + static_cast<std::ptrdiff_t>(piece.count);
        std::reverse(high_.begin() + at, high_.begin() + end);
        std::reverse(low_.begin() + at, low_.begin() + end);
        piece.start.x = static_cast<double>(parts_) - piece.start.x;
        piece.stop.x = static_cast<double>(parts_) - piece.stop.x;
        std::swap(piece.start, piece.stop);
        piece.first = parts_ - piece.first - static_cast<std::int64_t>(piece.count);
    }
    std::reverse(pieces_.begin(), pieces_.end());
}

int CurveSpans::read(const CurveData& curve)
{
    const auto step = [&] {
        if (!curve.x)
            return curve.xStep;
        std::int64_t first = 0;
        std::int64_t last = curve.n - 1;
        while (first < last && !std::isfinite(curve.x[first]))
            ++first;
        while (first < last && !std::isfinite(curve.x[last]))
            --last;
        return curve.x[last] - curve.x[first];
    };
    if (curve.n < 1 || parts_ == 0)
        return 1;
    if (!(curve.xScale * step() < 0))
        return readRising(curve);
    CurveData mirrored = curve;
    mirrored.xOrigin = static_cast<double>(parts_) - curve.xOrigin;
    mirrored.xScale = -curve.xScale;
    const int done = readRising(mirrored);
    mirror();
    return done;
}

}  // namespace pavane
