#include "platform/core/RisingStroke.h"

#include "platform/core/stroke_kernels.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

/// Parts of a pixel: of a curve that has few points, whose lines are exact anyway, and of others.
constexpr int fewParts = 32;
constexpr int manyParts = 64;
/// Points to a column from which on parts are fine.
constexpr std::int64_t manyPoints = 2;
/// Rows above and below the picture in which ends are still followed, so that lines that leave it
/// keep their direction.
constexpr int guardRows = 64;
/// No curve: far beyond everything that can be seen.
constexpr float nowhere = -1e9F;
/// Between corners a line may lie this much beside the true end, in pixels for each square of a
/// part.
constexpr float bend = 0.004F;
/// Ends get a corner at least this often, in parts of a pixel.
constexpr int cornersOfPixel = 4;
/// A level line, in pixels; less steep ones have no use for a slope.
constexpr double level = 1.0 / 64;
constexpr double wholePixel = 1 << 20;

/// Each piece takes the time of a strip; with more of them reducing the curve is faster.
constexpr std::size_t mostPieces = 2000;

/// The part that holds a place, which lies near the picture.
std::int64_t partAt(double x)
{
    const auto part = static_cast<std::int64_t>(x);
    return part - (x < static_cast<double>(part));
}

/// Whether a curve of many points goes up and down from one to the next, so that the parts that its
/// extremes are in decide where its edges lie.
bool isRough(const double* y, std::int64_t n)
{
    constexpr std::int64_t looks = 500;
    constexpr std::int64_t fewTurns = 20;
    std::int64_t turns = 0;
    for (std::int64_t k = 0; n > 2 && k < looks; ++k) {
        const std::int64_t i = (n - 3) / looks * k;
        turns += !((y[i + 1] - y[i]) * (y[i + 2] - y[i + 1]) > 0);
    }
    return turns > fewTurns;
}

}  // namespace

RisingStroke::RisingStroke(const PixelSurface& surface, const Region& clip, double width,
                           const CurveData& curve)
    : surface_(surface)
{
    const CRect units = PixelPainter(surface, &clip).bounds();
    const int k = surface.ratio;
    box_ = CRect(units.left * k, units.top * k, units.right * k, units.bottom * k);
    parts_ =
        curve.n > manyPoints * box_.Width() && isRough(curve.y, curve.n) ? manyParts : fewParts;
    stripParts_ = stripColumns * parts_;
    radius_ = std::min(width * k, 1000.0) / 2;
    reach_ = std::max(1, static_cast<int>(std::lround(radius_ * parts_)));
    partsEnd_ = box_.IsRectEmpty() ? 0 : std::int64_t{box_.Width()} * parts_;
    for (int j = 0; j < reach_; ++j) {
        const double d = radius_ * (reach_ - j) / reach_;
        // the chords between the steps lie inside the circle; half way out they are as far outside
        const double c = std::sqrt(std::max(0.0, radius_ * radius_ - d * d));
        const double chord = radius_ * radius_ / (16.0 * parts_ * parts_);
        shape_.push_back(static_cast<float>(c + chord / std::max(c * c * c, chord * 16)));
    }
}

/// Rows of the picture, kept near it.
float RisingStroke::row(double y) const
{
    const double beyond = guardRows + radius_ + 1;
    // far points may leave no number, which the order of these arguments drops
    return static_cast<float>(std::min(box_.Height() + beyond, std::max(-beyond, y)));
}

void RisingStroke::begin(std::int64_t part, float y)
{
    pieces_.push_back({part, high_.size(), 1});
    high_.push_back(y);
    low_.push_back(-y);
}

/// The piece under way reaches `y` within `part`, its last part or the one after.
void RisingStroke::span(std::int64_t part, float y)
{
    Piece& piece = pieces_.back();
    if (part == piece.first + static_cast<std::int64_t>(piece.count)) {
        ++piece.count;
        high_.push_back(y);
        low_.push_back(-y);
        return;
    }
    high_.back() = std::max(high_.back(), y);
    low_.back() = std::max(low_.back(), -y);
}

/// The parts `first` up to `last`, last excluded, that a line through `from` crosses as a whole.
void RisingStroke::coverBetween(CPointF from, double slope, std::int64_t first, std::int64_t last)
{
    const auto count = static_cast<std::size_t>(last - first);
    const std::size_t at = high_.size();
    high_.resize(at + count);
    low_.resize(at + count);
    pieces_.back().count += count;
    float* const high = high_.data() + at;
    float* const low = low_.data() + at;
    const double start = from.y + (static_cast<double>(first) - from.x) * slope;
    const double beyond = guardRows + radius_ + 1;
    const double most = box_.Height() + beyond;
    for (int i = 0; i < static_cast<int>(count); ++i) {
        const double a = std::min(most, std::max(-beyond, start + i * slope));
        const double b = std::min(most, std::max(-beyond, start + (i + 1) * slope));
        high[i] = static_cast<float>(std::max(a, b));
        low[i] = static_cast<float>(std::max(-a, -b));
    }
}

/// Leads the piece under way from one point to another, in parts and rows; both in reach.
void RisingStroke::line(CPointF from, CPointF to)
{
    const auto first = partAt(from.x);
    const auto last = partAt(to.x);
    const double slope = (to.y - from.y) / (to.x - from.x);
    const auto between = [&](std::int64_t border) {
        return row(from.y + (static_cast<double>(border) - from.x) * slope);
    };
    if (first < last) {
        float y = between(first + 1);
        span(first, y);
        if (last > first + 1) {
            coverBetween(from, slope, first + 1, last);
            y = between(last);
        }
        span(last, y);
    }
    span(last, row(to.y));
}

template <class X, class Y>
int RisingStroke::addPoints(std::int64_t n, X xAt, Y yAt)
{
    constexpr double farthest = 1e300;
    const double least = -reach_ - 1.0;
    const double most = static_cast<double>(partsEnd_) + reach_ + 1.0;
    const double beyond = guardRows + radius_ + 1;
    const double lowest = box_.Height() + beyond;
    CPointF last;
    bool joined = false;
    double reached = -farthest;
    for (std::int64_t i = 0; i < n; ++i) {
        const CPointF p{xAt(i), yAt(i)};
        if (!(std::fabs(p.x) <= farthest && std::fabs(p.y) <= farthest)) {
            joined = false;
            continue;
        }
        if (p.x < reached || pieces_.size() > mostPieces)
            return 0;
        reached = p.x;
        const bool seen = joined ? p.x >= least && last.x <= most : p.x >= least && p.x <= most;
        if (seen && !joined) {
            begin(partAt(p.x), row(p.y));
        } else if (seen) {
            CPointF from = last;
            CPointF to = p;
            const double slope = (p.y - last.y) / (p.x - last.x);
            if (last.x < least) {
                from = {least, last.y + (least - last.x) * slope};
                begin(partAt(least), row(from.y));
            }
            if (p.x > most)
                to = {most, last.y + (most - last.x) * slope};
            line(from, to);
        }
        last = p;
        joined = true;
        if (!seen || p.x > most)
            continue;
        // points of the same part only widen what it spans
        const double end = static_cast<double>(partAt(p.x) + 1);
        double high = p.y;
        double low = p.y;
        std::int64_t k = i + 1;
        for (; k < n; ++k) {
            const double x = xAt(k);
            const double y = yAt(k);
            if (!(x >= reached && x < end && std::fabs(y) <= farthest))
                break;
            high = y > high ? y : high;
            low = y < low ? y : low;
            reached = x;
        }
        if (k > i + 1) {
            high_.back() =
                std::max(high_.back(), static_cast<float>(std::clamp(high, -beyond, lowest)));
            low_.back() =
                std::max(low_.back(), -static_cast<float>(std::clamp(low, -beyond, lowest)));
            i = k - 1;
            last = {reached, yAt(i)};
        }
    }
    return 1;
}

int RisingStroke::add(const CurveData& curve)
{
    if (partsEnd_ == 0 || curve.n < 1)
        return 1;
    const double k = surface_.ratio;
    const double xOrigin = ((curve.xOrigin + 0.5) * k - box_.left) * parts_;
    const double xScale = curve.xScale * k * parts_;
    const double yOrigin = (curve.yOrigin + 0.5) * k - box_.top;
    const double yScale = curve.yScale * k;
    const double* const y = curve.y;
    const auto yAt = [=](std::int64_t i) { return yOrigin + yScale * y[i]; };
    // parts rise from left to right, however the curve runs
    const auto backwards = [&](auto xAt) {
        const std::int64_t last = curve.n - 1;
        return addPoints(
            curve.n, [=](std::int64_t i) { return xAt(last - i); },
            [=](std::int64_t i) { return yAt(last - i); });
    };
    if (!curve.x) {
        const auto xAt = [=, &curve](std::int64_t i) {
            return xOrigin + xScale * (curve.xFirst + static_cast<double>(i) * curve.xStep);
        };
        return xScale * curve.xStep < 0 ? backwards(xAt) : addPoints(curve.n, xAt, yAt);
    }
    const double* const x = curve.x;
    const auto xAt = [=](std::int64_t i) { return xOrigin + xScale * x[i]; };
    std::int64_t first = 0;
    std::int64_t last = curve.n - 1;
    while (first < last && !std::isfinite(x[first]))
        ++first;
    while (first < last && !std::isfinite(x[last]))
        --last;
    if (xAt(first) > xAt(last))
        return backwards(xAt);
    return addPoints(curve.n, xAt, yAt);
}

/// An end of the stroke turns at row `y` of a column: from there on the area beside it grows by
/// `weight` more a row. Sums of sums of the differences are the areas of the rows.
void RisingStroke::corner(int column, float y, double weight)
{
    const int i = static_cast<int>(y);
    const double f = static_cast<double>(y) - i;
    const auto all = static_cast<std::int32_t>(weight * wholePixel);
    const auto above = static_cast<std::int32_t>(weight * wholePixel * ((1 - f) * (1 - f) / 2));
    const auto below = static_cast<std::int32_t>(weight * wholePixel * (f * f / 2));
    std::uint32_t* const at = differences_.data() + i * stripColumns + column;
    at[0] += static_cast<std::uint32_t>(above);
    at[stripColumns] += static_cast<std::uint32_t>(all - above - below);
    at[2 * stripColumns] += static_cast<std::uint32_t>(below);
}

/// From row `y` on, `weight` of the column is covered.
void RisingStroke::step(int column, float y, double weight)
{
    const int i = static_cast<int>(y);
    const double f = static_cast<double>(y) - i;
    const auto all = static_cast<std::int32_t>(weight * wholePixel);
    const auto below = static_cast<std::int32_t>(weight * wholePixel * f);
    std::uint32_t* const at = differences_.data() + i * stripColumns + column;
    at[0] += static_cast<std::uint32_t>(all - below);
    at[stripColumns] += static_cast<std::uint32_t>(2 * below - all);
    at[2 * stripColumns] -= static_cast<std::uint32_t>(below);
}

/// Follows one end of a stroke, given at the borders of the parts `from` to `to` of the strip.
void RisingStroke::follow(const float* ends, int from, int to, int sign)
{
    const int most = parts_ / cornersOfPixel;
    double before = 0;  // slope of the line that leads to `at`, within the column
    for (int at = from; at < to;) {
        const int column = at / parts_;
        const int limit = std::min({to, (column + 1) * parts_, (at / most + 1) * most});
        int next = at + 1;
        while (next < limit && std::fabs(ends[next + 1] - 2 * ends[next] + ends[next - 1]) <= bend)
            ++next;
        const double rise = static_cast<double>(ends[next]) - static_cast<double>(ends[at]);
        const double across = static_cast<double>(sign * (next - at)) / parts_;
        if (std::fabs(rise) < level) {
            if (before != 0)
                corner(column, ends[at], -before);
            step(column, (ends[at] + ends[next]) / 2, across);
            before = 0;
        } else {
            const double slope = across / rise;
            corner(column, ends[at], slope - before);
            before = slope;
        }
        at = next;
        if (before != 0 && (at == to || at % parts_ == 0)) {
            corner(column, ends[at], -before);
            before = 0;
        }
    }
}

void RisingStroke::coverPiece(std::size_t index, std::int64_t firstPart)
{
    const Piece& piece = pieces_[index];
    const std::int64_t end = piece.first + static_cast<std::int64_t>(piece.count);
    // borders of parts, counted within the strip, that the pen covers
    const auto within = [&](std::int64_t border) {
        return static_cast<int>(std::clamp<std::int64_t>(border - firstPart, 0, stripParts_));
    };
    const int from = within(piece.first - reach_ + 1);
    const int to = within(end + reach_ - 1);
    if (from >= to)
        return;
    const std::int64_t start = firstPart - reach_;
    const StrokeKernels& kernels = strokeKernels();
    for (const auto& [spans, ends] : {std::pair{&high_, &highEnds_}, std::pair{&low_, &lowEnds_}}) {
        std::fill(source_.begin(), source_.end(), nowhere);
        const std::int64_t a = std::max(piece.first, start);
        const std::int64_t b = std::min(end, start + static_cast<std::int64_t>(source_.size()));
        if (a < b)
            std::copy_n(spans->data() + piece.at + (a - piece.first), b - a,
                        source_.begin() + (a - start));
        kernels.widen(source_.data(), shape_.data(), reach_, stripParts_ + stripColumns,
                      ends->data());
    }
    const float greatest = static_cast<float>(box_.Height()) + 2 * guardRows;
    float top = greatest;
    float bottom = 0;
    for (int i = from; i <= to; ++i) {
        const auto at = static_cast<std::size_t>(i);
        highEnds_[at] = std::clamp(highEnds_[at] + guardRows, 0.0F, greatest);
        lowEnds_[at] = std::clamp(guardRows - lowEnds_[at], 0.0F, greatest);
        top = std::min(top, lowEnds_[at]);
        bottom = std::max(bottom, highEnds_[at]);
    }
    firstRow_ = std::min(firstRow_, static_cast<int>(top));
    lastRow_ = std::max(lastRow_, static_cast<int>(bottom) + 3);
    // alone between the end of the pieces before and the start of the next one
    int aloneFrom = from;
    int aloneTo = to;
    if (index > 0)
        aloneFrom = std::max(from, within(pieces_[index - 1].first - 1 + reach_ +
                                          static_cast<std::int64_t>(pieces_[index - 1].count)));
    if (index + 1 < pieces_.size())
        aloneTo = std::min(to, within(pieces_[index + 1].first - reach_ + 1));
    aloneFrom = std::min(aloneFrom, to);
    aloneTo = std::max(aloneTo, aloneFrom);
    if (aloneFrom < aloneTo) {
        follow(lowEnds_.data(), aloneFrom, aloneTo, 1);
        follow(highEnds_.data(), aloneFrom, aloneTo, -1);
    }
    for (int i = from; i < to; ++i) {
        const auto at = static_cast<std::size_t>(i);
        if (i < aloneFrom || i >= aloneTo)
            shared_.push_back({i, (lowEnds_[at] + lowEnds_[at + 1]) / 2,
                               (highEnds_[at] + highEnds_[at + 1]) / 2});
    }
}

/// Covers the parts that several pieces share with what they cover together.
void RisingStroke::coverShared()
{
    std::sort(shared_.begin(), shared_.end(), [](const Shared& p, const Shared& q) {
        return p.part != q.part ? p.part < q.part : p.low < q.low;
    });
    for (std::size_t i = 0; i < shared_.size();) {
        Shared all = shared_[i];
        for (++i; i < shared_.size() && shared_[i].part == all.part && shared_[i].low <= all.high;
             ++i)
            all.high = std::max(all.high, shared_[i].high);
        step(all.part / parts_, all.low, 1.0 / parts_);
        step(all.part / parts_, all.high, -1.0 / parts_);
    }
    shared_.clear();
}

void RisingStroke::coverStrip(std::int64_t firstPart)
{
    firstRow_ = box_.Height() + 2 * guardRows;
    lastRow_ = 0;
    const auto endOf = [&](const Piece& piece) {
        return piece.first + static_cast<std::int64_t>(piece.count) + reach_;
    };
    while (firstPiece_ < pieces_.size() && endOf(pieces_[firstPiece_]) <= firstPart)
        ++firstPiece_;
    for (std::size_t i = firstPiece_;
         i < pieces_.size() && pieces_[i].first - reach_ < firstPart + stripParts_; ++i)
        coverPiece(i, firstPart);
    coverShared();
}

void RisingStroke::blendStrip(int left, int columns, std::uint32_t pixel)
{
    const int first = std::clamp(firstRow_ - guardRows, 0, box_.Height());
    const int last = std::clamp(lastRow_ - guardRows, first, box_.Height());
    if (lastRow_ <= firstRow_)
        return;
    std::uint32_t* const from = differences_.data() + std::ptrdiff_t{firstRow_} * stripColumns;
    const int rows = std::max(0, last + guardRows - firstRow_);
    const int skipped = std::min(rows, first + guardRows - firstRow_);
    const int k = surface_.ratio;
    const CRect strip(box_.left + left, box_.top + first, box_.left + left + columns,
                      box_.top + last);
    const CRect units(strip.left / k, strip.top / k, (strip.right + k - 1) / k,
                      (strip.bottom + k - 1) / k);
    surface_.touch(units);
    strokeKernels().blend(from, rows, pixel, surface_.row(strip.top) + strip.left, surface_.stride,
                          columns, skipped);
    std::fill_n(from + std::ptrdiff_t{rows} * stripColumns,
                std::ptrdiff_t{lastRow_ - firstRow_ - rows} * stripColumns, 0u);
}

void RisingStroke::paint(std::uint32_t pixel)
{
    if (pieces_.empty() || partsEnd_ == 0)
        return;
    const auto rows = static_cast<std::size_t>(box_.Height()) + 2 * guardRows + 4;
    differences_.assign(rows * stripColumns, 0);
    const auto borders = static_cast<std::size_t>(stripParts_ + stripColumns);
    source_.resize(borders + 2 * static_cast<std::size_t>(reach_) + 16);
    highEnds_.resize(borders);
    lowEnds_.resize(borders);
    for (int left = 0; left < box_.Width(); left += stripColumns) {
        coverStrip(std::int64_t{left} * parts_);
        blendStrip(left, std::min(stripColumns, box_.Width() - left), pixel);
    }
}

}  // namespace pavane
