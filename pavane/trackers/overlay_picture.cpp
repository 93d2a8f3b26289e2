#include "pavane/trackers/overlay_picture.h"

#include <algorithm>

namespace pavane
{

namespace
{

using Word = ABitMatrix::Word;
constexpr int bits = ABitMatrix::wordBits;
constexpr std::uint32_t redBlue = 0x00FF00FF;
constexpr std::uint32_t green = 0x0000FF00;

std::vector<CellSpan> spansOf(const PixelCells& pixels)
{
    std::vector<CellSpan> spans;
    spans.reserve(static_cast<std::size_t>(pixels.pixels()));
    for (int i = 0; i < pixels.pixels(); ++i)
        spans.push_back(pixels.groupOf(i) < 0 ? CellSpan() : pixels.span(pixels.groupOf(i)));
    return spans;
}

/// Non-zero when one of the bits of a span is set.
bool anyBit(const Word* words, CellSpan span)
{
    const int firstWord = span.first / bits;
    const int lastWord = (span.end - 1) / bits;
    const Word head = ~Word{0} << (span.first % bits);
    const Word tail = ~Word{0} >> (bits - 1 - (span.end - 1) % bits);
    if (firstWord == lastWord)
        return words[firstWord] & head & tail;
    Word any = (words[firstWord] & head) | (words[lastWord] & tail);
    for (int w = firstWord + 1; w < lastWord; ++w)
        any |= words[w];
    return any;
}

/// For one row of pixels, 1 for each that is inside and 0 for the others, one more on either side.
class InsideLine
{
public:
    explicit InsideLine(int left, int right)
        : left_(left), inside_(static_cast<std::size_t>(right - left) + 2)
    {
    }
    /// Non-zero at the pixels left - 1 to right.
    const std::uint8_t* data() const { return inside_.data(); }
    bool any() const { return any_; }

    void set(const ABitMatrix& mask, const std::vector<CellSpan>& columns, CellSpan rows)
    {
        if (rows == rows_)
            return;
        rows_ = rows;
        any_ = orRows(mask, rows);
        CellSpan previous;
        std::uint8_t value = 0;
        for (std::size_t i = 0; i < inside_.size(); ++i) {
            const int x = left_ - 1 + static_cast<int>(i);
            const bool there = any_ && x >= 0 && x < static_cast<int>(columns.size());
            const CellSpan span = there ? columns[static_cast<std::size_t>(x)] : CellSpan();
            if (!(span == previous))
                value = span.first < span.end && span.end <= mask.columns() &&
                        anyBit(words_.data(), span);
            previous = span;
            inside_[i] = value;
        }
    }

private:
    /// All rows of a span in one; false when no bit is set.
    bool orRows(const ABitMatrix& mask, CellSpan rows)
    {
        words_.assign(static_cast<std::size_t>(mask.rowWords()), 0);
        for (int r = rows.first; r < std::min(rows.end, mask.rows()); ++r)
            for (std::size_t w = 0; w < words_.size(); ++w)
                words_[w] |= mask.row(r)[w];
        return std::any_of(words_.begin(), words_.end(), [](Word w) { return w != 0; });
    }

    int left_;
    CellSpan rows_{-1, -1};  // none yet
    bool any_ = false;
    std::vector<std::uint8_t> inside_;
    std::vector<Word> words_;
};

OverlayPart partOf(std::uint8_t here, std::uint8_t everyNeighbour, std::uint8_t anyNeighbour)
{
    if (here)
        return everyNeighbour ? OverlayPart::inner : OverlayPart::insideLine;
    return anyNeighbour ? OverlayPart::outsideLine : OverlayPart::nothing;
}

/// A colour that is laid over pixels.
struct Layer {
    std::uint32_t redBlueShare = 0;
    std::uint32_t greenShare = 0;
    std::uint32_t rest = 256;

    Layer() = default;
    Layer(COLORREF color, int share)
    {
        const auto s = static_cast<std::uint32_t>(std::clamp(share, 0, 256));
        const auto red = static_cast<std::uint32_t>(GetRValue(color));
        const auto blue = static_cast<std::uint32_t>(GetBValue(color));
        redBlueShare = (red << 16 | blue) * s;
        greenShare = static_cast<std::uint32_t>(GetGValue(color)) * s;
        rest = 256 - s;
    }
    std::uint32_t over(std::uint32_t pixel) const
    {
        const std::uint32_t rb = ((pixel & redBlue) * rest + redBlueShare) >> 8 & redBlue;
        const std::uint32_t g = (((pixel & green) >> 8) * rest + greenShare) & green;
        return rb | g;
    }
};

}  // namespace

void OverlayPicture::setPixels(const PixelCells& columns, const PixelCells& rows)
{
    columns_ = spansOf(columns);
    rows_ = spansOf(rows);
}

CRect OverlayPicture::pixelsOf(const CRect& cells) const
{
    const auto reach = [](const std::vector<CellSpan>& spans, int first, int end, int& from,
                          int& to) {
        const auto meets = [&](const CellSpan& s) { return s.first < end && first < s.end; };
        const auto begin = std::find_if(spans.begin(), spans.end(), meets);
        const auto last = std::find_if(spans.rbegin(), spans.rend(), meets);
        const int n = static_cast<int>(spans.size());
        from = std::max(static_cast<int>(begin - spans.begin()) - 1, 0);
        to = std::min(n - static_cast<int>(last - spans.rbegin()) + 1, n);
        return begin != spans.end();
    };
    CRect r;
    if (cells.IsRectEmpty() || !reach(columns_, cells.left, cells.right, r.left, r.right) ||
        !reach(rows_, cells.top, cells.bottom, r.top, r.bottom))
        return {};
    return r;
}

/// Calls use(y, part) for every row of pixels where something is shown; part(i) tells what, for the
/// pixel i columns from the left.
template <typename Use>
void OverlayPicture::forRows(const ABitMatrix& mask, const CRect& pixels, Use&& use) const
{
    const auto spanOf = [&](int y) {
        return y >= 0 && y < height() ? rows_[static_cast<std::size_t>(y)] : CellSpan();
    };
    // lines above, at and below the present row, in turn
    InsideLine lines[3] = {InsideLine(pixels.left, pixels.right),
                           InsideLine(pixels.left, pixels.right),
                           InsideLine(pixels.left, pixels.right)};
    const auto lineOf = [&](int y) -> InsideLine& { return lines[(y + 3) % 3]; };
    for (int y = pixels.top - 1; y <= pixels.top; ++y)
        lineOf(y).set(mask, columns_, spanOf(y));
    for (int y = pixels.top; y < pixels.bottom; ++y) {
        lineOf(y + 1).set(mask, columns_, spanOf(y + 1));
        if (!lineOf(y - 1).any() && !lineOf(y).any() && !lineOf(y + 1).any())
            continue;
        const std::uint8_t* const above = lineOf(y - 1).data() + 1;
        const std::uint8_t* const here = lineOf(y).data() + 1;
        const std::uint8_t* const below = lineOf(y + 1).data() + 1;
        use(y, [=](int i) {
            return partOf(here[i], above[i] & below[i] & here[i - 1] & here[i + 1],
                          above[i] | below[i] | here[i - 1] | here[i + 1]);
        });
    }
}

void OverlayPicture::blend(const ABitMatrix& mask, const CRect& pixels, const OverlayStyle& style,
                           std::uint32_t* to, std::ptrdiff_t stride) const
{
    CRect inside;
    if (!inside.IntersectRect(pixels, {0, 0, width(), height()}))
        return;
    const Layer layers[] = {Layer(), Layer(style.tint, style.tintShare),
                            Layer(style.inside, style.lineShare),
                            Layer(style.outside, style.lineShare)};
    forRows(mask, inside, [&](int y, auto&& part) {
        std::uint32_t* const row = to + (y - pixels.top) * stride + (inside.left - pixels.left);
        for (int i = 0; i < inside.Width(); ++i)
            row[i] = layers[static_cast<int>(part(i))].over(row[i]);
    });
}

std::vector<OverlayPart> OverlayPicture::parts(const ABitMatrix& mask, const CRect& pixels) const
{
    CRect inside;
    if (!inside.IntersectRect(pixels, {0, 0, width(), height()}) || !(inside == pixels))
        return {};
    const auto columns = static_cast<std::size_t>(pixels.Width());
    std::vector<OverlayPart> result(columns * static_cast<std::size_t>(pixels.Height()));
    forRows(mask, pixels, [&](int y, auto&& part) {
        OverlayPart* const row = result.data() + static_cast<std::size_t>(y - pixels.top) * columns;
        for (int i = 0; i < pixels.Width(); ++i)
            row[i] = part(i);
    });
    return result;
}

}  // namespace pavane
