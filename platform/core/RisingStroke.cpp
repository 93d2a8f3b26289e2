#include "platform/core/RisingStroke.h"

#include "platform/core/stroke_kernels.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

/// Parts of a pixel. Few do for curves that are not steep: there each end of the stroke is almost
/// straight within a part. On others it decides in which part an extreme is.
constexpr int fewParts = 16;
constexpr int manyParts = 64;
/// Rows to a column up to which a curve is not steep.
constexpr double steepest = 12;
/// Points to a column below which a steep curve takes the painter less time.
constexpr std::int64_t sparse = 4;
/// How much of a row the pen reaches up and down where it is narrowest: in the middle between what
/// suits peaks and steep lines.
constexpr double edge = 0.04;
/// Rows above the picture that ends may lie in.
constexpr int guardRows = 1;

CRect boxOf(const PixelSurface& surface, const Region& clip)
{
    const CRect units = PixelPainter(surface, &clip).bounds();
    const int k = surface.ratio;
    return units.IsRectEmpty()
               ? CRect()
               : CRect(units.left * k, units.top * k, units.right * k, units.bottom * k);
}

}  // namespace

RisingStroke::RisingStroke(const PixelSurface& surface, const Region& clip, double width)
    : surface_(surface), box_(boxOf(surface, clip)),
      radius_(std::min(width * surface.ratio, 1000.0) / 2)
{
}

/// How far the round pen reaches above and below the curve, at the outer border of each part from
/// its edge to its middle.
void RisingStroke::shapePen()
{
    shape_.clear();
    for (int j = 0; j < reach_; ++j) {
        const double d = radius_ * (reach_ - j) / reach_;
        // between the middles of the parts the circle lies beyond its chords
        const double c = std::sqrt(std::max(0.0, radius_ * radius_ - d * d));
        const double chord = radius_ * radius_ / (16.0 * parts_ * parts_);
        const double beyond = j > 0 ? chord / std::max(c * c * c, chord * 16) : edge;
        shape_.push_back(static_cast<float>(c + beyond));
    }
    // level lines reach up to the radius
    shape_.back() = (shape_.back() + static_cast<float>(radius_)) / 2;
}

int RisingStroke::read(const CurveData& curve, int parts, double steepestPart)
{
    parts_ = parts;
    stripParts_ = stripColumns * parts_;
    reach_ = std::max(1, static_cast<int>(std::lround(radius_ * parts_)));
    spans_.emplace(std::int64_t{box_.Width()} * parts_, reach_, -radius_ - guardRows,
                   box_.Height() + radius_ + guardRows, steepestPart);
    const double k = surface_.ratio;
    CurveData inParts = curve;
    // the borders of what is read are the middles of what is covered
    inParts.xOrigin = ((curve.xOrigin + 0.5) * k - box_.left) * parts_ + 0.5;
    inParts.xScale = curve.xScale * k * parts_;
    inParts.yOrigin = (curve.yOrigin + 0.5) * k - box_.top;
    inParts.yScale = curve.yScale * k;
    return spans_->read(inParts);
}

int RisingStroke::add(const CurveData& curve)
{
    if (read(curve, fewParts, steepest / fewParts))
        return 1;
    return spans_->isTooSteep() && curve.n >= sparse * box_.Width() &&
           read(curve, manyParts, std::numeric_limits<double>::infinity());
}

/// Works out the ends of what a piece covers in each part of the strip.
void RisingStroke::coverPiece(const CurveSpans::Piece& piece, std::int64_t firstPart)
{
    const std::int64_t end = piece.first + static_cast<std::int64_t>(piece.count);
    const auto within = [&](std::int64_t part) {
        return static_cast<int>(std::clamp<std::int64_t>(part - firstPart, 0, stripParts_));
    };
    const int from = within(piece.first - reach_);
    const int to = within(end + reach_ - 1);
    if (from >= to)
        return;
    const int first = from / stripColumns * stripColumns;
    const int count = (to - first + stripColumns - 1) / stripColumns * stripColumns;
    const int sources = count + 2 * reach_;
    const std::int64_t start = firstPart + first + 1 - reach_ - piece.first;  // within the piece
    // dots, and the ends of curves in coarse parts, are round
    const bool exact = parts_ == fewParts ||
                       (piece.count == 1 && spans_->high()[piece.at] == -spans_->low()[piece.at]);
    const std::int64_t skipped = exact ? 1 : 0;
    const auto a =
        static_cast<std::ptrdiff_t>(std::clamp<std::int64_t>(skipped - start, 0, sources));
    const auto b = static_cast<std::ptrdiff_t>(std::clamp<std::int64_t>(
        static_cast<std::int64_t>(piece.count) - skipped - start, a, sources));
    const auto widen = [&](const std::vector<float>& spans, std::vector<float>& ends) {
        const float* from = spans.data() + static_cast<std::int64_t>(piece.at) + start;
        if (b - a < sources) {
            std::fill(source_.begin(), source_.begin() + a, nowhere);
            std::copy_n(from + a, b - a, source_.data() + a);
            std::fill(source_.begin() + b, source_.begin() + sources, nowhere);
            from = source_.data();
        }
        strokeKernels().widen(from, shape_.data(), reach_, count, ends.data() + first);
    };
    std::vector<float>& high = blank_ ? high_ : pieceHigh_;
    std::vector<float>& low = blank_ ? low_ : pieceLow_;
    widen(spans_->high(), high);
    widen(spans_->low(), low);
    if (exact)
        for (const CPointF& p : {piece.start, piece.stop})
            coverDot({p.x - static_cast<double>(firstPart) - 1, p.y}, from, to, low, high);
    if (blank_)
        fillStrip(first, first + count);
    else
        joinPiece(from, to);
}

/// A circle about a point in parts of the strip, from the middle of the first one on, and rows.
void RisingStroke::coverDot(CPointF p, int from, int to, std::vector<float>& low,
                            std::vector<float>& high)
{
    const double y = std::clamp(p.y, -radius_ - guardRows, box_.Height() + radius_ + guardRows);
    const double reach = radius_ * parts_;
    const auto first = std::max(from, static_cast<int>(std::clamp(p.x - reach, -1.0, to + 0.0)));
    for (int i = first; i < to && i < p.x + reach; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const double d = (i - p.x) / parts_;
        if (std::fabs(d) >= radius_)
            continue;
        const double c = std::sqrt(radius_ * radius_ - d * d);
        high[at] = std::max(high[at], static_cast<float>(y + c));
        low[at] = std::max(low[at], static_cast<float>(c - y));
    }
}

/// Leaves nothing in the strip but what was found from part `from` up to `to`, excluded.
void RisingStroke::fillStrip(int from, int to)
{
    for (std::vector<float>* ends : {&high_, &low_}) {
        std::fill(ends->begin(), ends->begin() + from, nowhere);
        std::fill(ends->begin() + to, ends->end(), nowhere);
    }
    blank_ = false;
}

/// Adds the ends of a piece to those of the strip. Pieces that do not meet there are kept apart.
void RisingStroke::joinPiece(int from, int to)
{
    for (int i = from; i < to; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const float high = pieceHigh_[at];
        const float low = pieceLow_[at];
        if (high_[at] > nowhere / 2 && (-low > high_[at] || -low_[at] > high)) {
            shared_.push_back({i, -low, high});
            continue;
        }
        high_[at] = std::max(high_[at], high);
        low_[at] = std::max(low_[at], low);
    }
}

/// Covers a part of a column between two rows.
void RisingStroke::cover(int column, float from, float to)
{
    const std::uint32_t whole = wholePixel / static_cast<std::uint32_t>(parts_);
    std::uint32_t sign = 1;
    for (const float row : {from, to}) {
        const auto y = std::clamp(row + guardRows, 0.0F, static_cast<float>(box_.Height() + 2));
        const auto place =
            static_cast<std::uint32_t>(std::floor(y * static_cast<float>(whole) + 0.5F));
        const std::uint32_t below = place % whole;
        std::uint32_t* const to0 =
            differences_.data() + std::size_t{place / whole} * stripColumns + column;
        to0[0] += sign * (whole - below);
        to0[stripColumns] += sign * below;
        sign = -sign;
        firstRow_ = std::min(firstRow_, static_cast<int>(place / whole));
        lastRow_ = std::max(lastRow_, static_cast<int>(place / whole) + 2);
    }
}

/// Covers the parts in which pieces lie apart with what all of them cover there.
void RisingStroke::coverShared()
{
    const std::size_t pieces = shared_.size();
    for (std::size_t i = 0; i < pieces; ++i) {
        const auto at = static_cast<std::size_t>(shared_[i].part);
        if (high_[at] > nowhere / 2)
            shared_.push_back({shared_[i].part, -low_[at], high_[at]});
        high_[at] = nowhere;
        low_[at] = nowhere;
    }
    std::sort(shared_.begin(), shared_.end(), [](const Shared& p, const Shared& q) {
        return p.part != q.part ? p.part < q.part : p.low < q.low;
    });
    for (std::size_t i = 0; i < shared_.size();) {
        Shared all = shared_[i];
        for (++i; i < shared_.size() && shared_[i].part == all.part && shared_[i].low <= all.high;
             ++i)
            all.high = std::max(all.high, shared_[i].high);
        cover(all.part / parts_, all.low, all.high);
    }
    shared_.clear();
}

void RisingStroke::coverStrip(std::int64_t firstPart)
{
    firstRow_ = box_.Height() + 3;
    lastRow_ = 0;
    const std::vector<CurveSpans::Piece>& pieces = spans_->pieces();
    const auto endOf = [&](const CurveSpans::Piece& piece) {
        return piece.first + static_cast<std::int64_t>(piece.count) + reach_;
    };
    while (firstPiece_ < pieces.size() && endOf(pieces[firstPiece_]) <= firstPart)
        ++firstPiece_;
    blank_ = true;
    for (std::size_t i = firstPiece_;
         i < pieces.size() && pieces[i].first - reach_ < firstPart + stripParts_; ++i)
        coverPiece(pieces[i], firstPart);
    if (blank_)
        return;
    if (!shared_.empty())
        coverShared();
    strokeKernels().cover(low_.data(), high_.data(), parts_, box_.Height(), ends_.data(),
                          differences_.data(), firstRow_, lastRow_);
}

void RisingStroke::blendStrip(int left, int columns, std::uint32_t pixel)
{
    if (lastRow_ <= firstRow_)
        return;
    const int first = std::clamp(firstRow_ - guardRows, 0, box_.Height());
    const int last = std::clamp(lastRow_ - guardRows, first, box_.Height());
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
    if (!spans_ || spans_->pieces().empty())
        return;
    shapePen();
    const auto strip = static_cast<std::size_t>(stripParts_);
    differences_.assign((static_cast<std::size_t>(box_.Height()) + 4) * stripColumns, 0);
    source_.resize(strip + 2 * static_cast<std::size_t>(reach_) + stripColumns);
    for (std::vector<float>* ends : {&high_, &low_, &pieceHigh_, &pieceLow_})
        ends->resize(strip);
    ends_.resize(4 * strip);
    for (int left = 0; left < box_.Width(); left += stripColumns) {
        coverStrip(std::int64_t{left} * parts_);
        blendStrip(left, std::min(stripColumns, box_.Width() - left), pixel);
    }
}

}  // namespace pavane
