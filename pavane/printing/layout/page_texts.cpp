#include "pavane/printing/layout/page_texts.h"

#include "pavane/printing/layout/caption_format.h"
#include "tessel/plain_text.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

namespace pavane
{

namespace
{

/// The band is 5/3 of a line high, the gap beside the caption a third.
constexpr int bandThirds = 5;

bool isInside(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

int below(int top, std::int64_t distance) { return saturatedSum(top, distance); }

void takeNumberBand(PageTexts& page, const CRect& rect, int height, int number, int firstNumber)
{
    const int bottom = below(rect.top, std::int64_t{bandThirds} * height / 3);
    page.numberBand = CRect(rect.left, rect.top, below(rect.right, -std::int64_t{height}), bottom);
    page.number = pageNumberText(firstNumber, number);
    page.picture.top = bottom;
    if (page.numberBand.IsRectEmpty())
        page.numberBand.SetRectEmpty();
}

void takeCaption(PageTexts& page, int height, const APrnAddInfo& info, int number, TextRuler& ruler)
{
    int flags = 0;
    const CString text = validText(FormatStr(info.subscriptFormat, number, flags));
    const int line = ruler.lineHeight();
    CRect& picture = page.picture;
    const std::int64_t room = (std::int64_t{picture.bottom} - picture.top) / 2;
    if (characterCount(text) < 2 || line < 1 || picture.IsRectEmpty())
        return;
    int lines = 0;
    const auto most = static_cast<int>(std::min<std::int64_t>(room / line, 1 << 20));
    CString wrapped = wrappedText(text, saturatedSum(picture.right, -std::int64_t{picture.left}),
                                  most, ruler, lines);
    if (lines < 1)
        return;
    const std::int64_t taken = std::int64_t{lines} * line;
    page.captionText = std::move(wrapped);
    page.captionFormat = captionDrawFormat(flags);
    page.caption = picture;
    if (flags & captionTop) {
        page.caption.bottom = below(picture.top, taken);
        picture.top = below(page.caption.bottom, height / 3);
    } else {
        page.caption.top = below(picture.bottom, -taken);
        picture.bottom = below(page.caption.top, -(height / 3));
    }
}

/// Breaks a text into lines no wider than the room.
class LineBreaker
{
public:
    LineBreaker(std::string_view text, int width, TextRuler& ruler)
        : text_(text), width_(width), ruler_(ruler)
    {
    }
    bool more() const { return !text_.empty(); }
    /// The next line, without the blank or line break behind it.
    std::string_view next()
    {
        const std::size_t paragraph = std::min(text_.find('\n'), text_.size());
        std::size_t end = 0;
        while (end < paragraph) {
            const std::size_t word = std::min(text_.find(' ', end + (end > 0)), paragraph);
            if (!fits(word)) {
                end = end > 0 ? end : fittingStart(word);
                break;
            }
            end = word > end ? word : end + 1;
        }
        return take(end);
    }

private:
    bool fits(std::size_t end) { return ruler_.widthOf(text_.substr(0, end)) <= width_; }
    /// As much of a word that is too wide as fits; one character at least.
    std::size_t fittingStart(std::size_t beyond)
    {
        std::size_t step = 1;
        while (step < beyond && fits(step))
            step *= 2;
        std::size_t enough = step / 2;
        beyond = std::min(beyond, step);
        while (beyond - enough > 1) {
            const std::size_t middle = enough + (beyond - enough) / 2;
            (fits(middle) ? enough : beyond) = middle;
        }
        while (enough > 0 && isInside(text_[enough]))
            --enough;
        if (enough == 0)
            for (enough = 1; enough < text_.size() && isInside(text_[enough]);)
                ++enough;
        return enough;
    }
    std::string_view take(std::size_t end)
    {
        std::string_view line = text_.substr(0, end);
        if (end < text_.size() && (text_[end] == ' ' || text_[end] == '\n'))
            ++end;
        text_.remove_prefix(end);
        return line;
    }

    std::string_view text_;
    int width_;
    TextRuler& ruler_;
};

/// The line with dots behind it, shortened until they fit; "" when they never do.
CString withDots(std::string_view line, int width, TextRuler& ruler)
{
    constexpr const char* dots = "...";
    while (true) {
        while (!line.empty() && line.back() == ' ')
            line.remove_suffix(1);
        CString text = CString(line) + dots;
        if (ruler.widthOf(text) <= width)
            return text;
        if (line.empty())
            return {};
        while (isInside(line.back()) && line.size() > 1)
            line.remove_suffix(1);
        line.remove_suffix(1);
    }
}

CString withPlainBreaks(std::string_view text)
{
    CString plain;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] != '\r')
            plain += text[i];
        else if (i + 1 == text.size() || text[i + 1] != '\n')
            plain += '\n';
    return plain;
}

}  // namespace

PageTexts layOutPage(const CRect& rect, int height, const APrnAddInfo& info, int page,
                     TextRuler& ruler)
{
    PageTexts texts;
    texts.picture = rect;
    height = std::max(height, 0);
    if (info.pageNumber)
        takeNumberBand(texts, rect, height, page, info.firstNumber);
    if (info.subscript)
        takeCaption(texts, height, info, page, ruler);
    if (texts.picture.IsRectEmpty())
        texts.picture.SetRectEmpty();
    return texts;
}

CString pageNumberText(int firstNumber, int page)
{
    const std::int64_t sum = std::int64_t{firstNumber} + page;
    return sum == 2 ? " " : std::to_string(sum - 1) + ". ";
}

CString wrappedText(std::string_view text, int width, int most, TextRuler& ruler, int& lines)
{
    lines = 0;
    const CString plain = withPlainBreaks(text);
    LineBreaker breaker(plain, width, ruler);
    CString wrapped;
    while (breaker.more() && lines < most) {
        const std::string_view line = breaker.next();
        const bool isCut = lines + 1 == most && breaker.more();
        const CString kept = isCut ? withDots(line, width, ruler) : CString(line);
        if (kept.empty() && isCut)
            break;
        if (lines > 0)
            wrapped += '\n';
        wrapped += kept;
        ++lines;
    }
    return wrapped;
}

int characterCount(std::string_view text)
{
    const std::string valid = validText(text);
    const auto count =
        std::count_if(valid.begin(), valid.end(), [](char c) { return !isInside(c); });
    return static_cast<int>(std::min<std::ptrdiff_t>(count, std::numeric_limits<int>::max()));
}

CString documentTitle(const CString& title)
{
    constexpr int mostCharacters = 31;
    const std::string valid = validText(withPlainBreaks(title));
    CString cut;
    int characters = 0;
    for (const char c : valid) {
        if (!isInside(c) && ++characters > mostCharacters)
            break;
        cut += static_cast<unsigned char>(c) < ' ' || c == '\x7f' ? ' ' : c;
    }
    return cut;
}

}  // namespace pavane
