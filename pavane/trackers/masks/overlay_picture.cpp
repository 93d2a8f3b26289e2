#include "pavane/trackers/masks/overlay_picture.h"

#include <algorithm>
#include <cmath>

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
    /// The pixels left - 1 to right, of which some may lie outside the picture.
    InsideLine(const ABitMatrix& mask, const std::vector<CellSpan>& columns, int left, int right)
        : mask_(mask)
    {
        int first = mask.columns();
        int last = 0;
        for (int x = left - 1; x <= right; ++x) {
            const bool there = x >= 0 && x < static_cast<int>(columns.size());
            CellSpan span = there ? columns[static_cast<std::size_t>(x)] : CellSpan();
            if (span.end > mask.columns())
                span = CellSpan();
            columns_.push_back(span);
            first = span.first < span.end ? std::min(first, span.first) : first;
            last = std::max(last, span.end);
        }
        firstWord_ = first / bits;
        endWord_ = (last + bits - 1) / bits;
        inside_.resize(columns_.size());
        words_.resize(static_cast<std::size_t>(mask.rowWords()));
    }
    /// Non-zero at the pixels left - 1 to right.
    const std::uint8_t* data() const { return inside_.data(); }
    bool any() const { return any_; }

    /// `above` is the line of the pixels above: pixels of one cell are looked at once.
    void set(CellSpan rows, const InsideLine& above)
    {
        if (rows == above.rows_) {
            rows_ = above.rows_;
            any_ = above.any_;
            inside_ = above.inside_;
            return;
        }
        rows_ = rows;
        any_ = orRows(rows);
        CellSpan previous;
        std::uint8_t value = 0;
        for (std::size_t i = 0; i < inside_.size(); ++i) {
            const CellSpan span = any_ ? columns_[i] : CellSpan();
            if (!(span == previous))
                value = span.first < span.end && anyBit(words_.data(), span);
            previous = span;
            inside_[i] = value;
        }
    }

private:
    /// All rows of a span in one; false when no bit is set.
    bool orRows(CellSpan rows)
    {
        Word any = 0;
        for (int w = firstWord_; w < endWord_; ++w) {
            Word all = 0;
            for (int r = rows.first; r < std::min(rows.end, mask_.rows()); ++r)
                all |= mask_.row(r)[w];
            words_[static_cast<std::size_t>(w)] = all;
            any |= all;
        }
        return any != 0;
    }

    const ABitMatrix& mask_;
    int firstWord_ = 0;  // of the columns that are shown
    int endWord_ = 0;
    CellSpan rows_{-1, -1};  // none yet
    bool any_ = false;
    std::vector<CellSpan> columns_;
    std::vector<std::uint8_t> inside_;
    std::vector<Word> words_;
};

/// The parts of a row of pixels from what is inside of it and of the rows above and below, without
/// a branch for any pixel.
void setParts(const std::uint8_t* above, const std::uint8_t* here, const std::uint8_t* below,
              int pixels, OverlayPart* parts)
{
    static_assert(static_cast<int>(OverlayPart::inner) == 1 &&
                  static_cast<int>(OverlayPart::insideLine) == 2 &&
                  static_cast<int>(OverlayPart::outsideLine) == 3);
    for (int i = 0; i < pixels; ++i) {
        const unsigned every = above[i] & below[i] & here[i - 1] & here[i + 1];
        const unsigned any = above[i] | below[i] | here[i - 1] | here[i + 1];
        const unsigned inside = 2U - every;
        parts[i] = static_cast<OverlayPart>(here[i] * inside + (1U - here[i]) * any * 3U);
    }
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
    void apply(std::uint32_t* pixels, int count) const
    {
        for (int i = 0; i < count; ++i)
            pixels[i] = over(pixels[i]);
    }
};

/// How strong a tint each colour needs.
class ContrastTint
{
public:
    ContrastTint()
    {
        for (int i = 0; i < 256; ++i)
            linear_[i] = i <= 10 ? i / 255.0 / 12.92 : std::pow((i / 255.0 + 0.055) / 1.055, 2.4);
        for (int share = 0; share <= 256; ++share)
            for (const int dark : {0, 1})
                layers_[dark][share] = Layer(dark ? darkTint : lightTint, share);
    }
    std::uint32_t operator()(std::uint32_t pixel) const
    {
        return tinted(pixel & (redBlue | green));
    }

private:
    static constexpr COLORREF lightTint = RGB(190, 255, 235);
    static constexpr COLORREF darkTint = RGB(0, 36, 28);

    double luminance(std::uint32_t pixel) const
    {
        return 0.2126 * linear_[pixel >> 16 & 255] + 0.7152 * linear_[pixel >> 8 & 255] +
               0.0722 * linear_[pixel & 255];
    }
    std::uint32_t tinted(std::uint32_t pixel) const
    {
        constexpr double contrast = 2;
        constexpr double glare = 0.05;   // of the surroundings, on the screen
        constexpr double middle = 0.18;  // as far from black as from white to the eye
        const double from = luminance(pixel) + glare;
        const auto& layers = layers_[from > middle + glare];
        for (const Layer& layer : layers) {
            const std::uint32_t result = layer.over(pixel);
            const double to = luminance(result) + glare;
            if (to >= contrast * from || from >= contrast * to)
                return result;
        }
        return layers[256].over(pixel);
    }

    double linear_[256];
    Layer layers_[2][257];
};

/// Never changes once it is made.
const ContrastTint& contrastTint()
{
    static const ContrastTint tint;
    return tint;
}

}  // namespace

std::uint32_t overlayTint(std::uint32_t pixel) { return contrastTint()(pixel); }

std::uint32_t OverlayPicture::Tints::operator()(std::uint32_t pixel)
{
    pixel &= redBlue | green;
    constexpr std::size_t places = 4096;
    if (known_.empty())
        known_.resize(places);
    const std::uint32_t place = (pixel * 2654435761u) >> 20;
    Known& known = known_[place];
    if (known.pixel != pixel) {
        // two colours of one place, side by side in a map, would be searched for every pixel
        Known& second = known_[place ^ 1];
        if (second.pixel != pixel)
            second = {pixel, contrastTint()(pixel)};
        std::swap(known, second);
    }
    return known.tinted;
}

/// Pixels of one colour often lie side by side.
void OverlayPicture::Tints::apply(std::uint32_t* pixels, int count)
{
    std::uint32_t from = noPixel;
    std::uint32_t result = 0;
    for (int i = 0; i < count; ++i) {
        if (pixels[i] != from) {
            from = pixels[i];
            result = (*this)(from);
        }
        pixels[i] = result;
    }
}

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

/// Calls use(y, parts) for every row of pixels where something is shown; parts[i] tells what, for
/// the pixel i columns from the left.
template <typename Use>
void OverlayPicture::forRows(const ABitMatrix& mask, const CRect& pixels, Use&& use) const
{
    const auto spanOf = [&](int y) {
        return y >= 0 && y < height() ? rows_[static_cast<std::size_t>(y)] : CellSpan();
    };
    // lines above, at and below the present row, in turn
    const InsideLine none(mask, columns_, pixels.left, pixels.right);
    InsideLine lines[3] = {none, none, none};
    std::vector<OverlayPart> parts(static_cast<std::size_t>(pixels.Width()));
    const auto lineOf = [&](int y) -> InsideLine& { return lines[(y + 3) % 3]; };
    const auto setLine = [&](int y) { lineOf(y).set(spanOf(y), lineOf(y + 2)); };
    setLine(pixels.top - 1);
    setLine(pixels.top);
    for (int y = pixels.top; y < pixels.bottom; ++y) {
        setLine(y + 1);
        if (!lineOf(y - 1).any() && !lineOf(y).any() && !lineOf(y + 1).any())
            continue;
        setParts(lineOf(y - 1).data() + 1, lineOf(y).data() + 1, lineOf(y + 1).data() + 1,
                 pixels.Width(), parts.data());
        use(y, parts.data());
    }
}

void OverlayPicture::blend(const ABitMatrix& mask, const CRect& pixels, const OverlayStyle& style,
                           std::uint32_t* to, std::ptrdiff_t stride) const
{
    CRect inside;
    if (!inside.IntersectRect(pixels, {0, 0, width(), height()}))
        return;
    Tints* const tint = &tints_;
    const Layer insideLine(style.inside, style.lineShare);
    const Layer outsideLine(style.outside, style.lineShare);
    forRows(mask, inside, [=](int y, const OverlayPart* parts) {
        std::uint32_t* const row = to + (y - pixels.top) * stride + (inside.left - pixels.left);
        const int width = inside.Width();
        for (int i = 0; i < width;) {
            const OverlayPart part = parts[i];
            const int first = i;
            while (i < width && parts[i] == part)
                ++i;
            if (part == OverlayPart::inner)
                tint->apply(row + first, i - first);
            else if (part == OverlayPart::insideLine)
                insideLine.apply(row + first, i - first);
            else if (part == OverlayPart::outsideLine)
                outsideLine.apply(row + first, i - first);
        }
    });
}

std::vector<OverlayPart> OverlayPicture::parts(const ABitMatrix& mask, const CRect& pixels) const
{
    CRect inside;
    if (!inside.IntersectRect(pixels, {0, 0, width(), height()}) || !(inside == pixels))
        return {};
    const auto columns = static_cast<std::size_t>(pixels.Width());
    std::vector<OverlayPart> result(columns * static_cast<std::size_t>(pixels.Height()));
    forRows(mask, pixels, [&](int y, const OverlayPart* parts) {
        std::copy(parts, parts + columns,
                  result.data() + static_cast<std::size_t>(y - pixels.top) * columns);
    });
    return result;
}

}  // namespace pavane
