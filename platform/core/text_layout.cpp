#include "platform/core/text_layout.h"

#include "platform/core/pixel_rounding.h"
#include "platform/gdi_constants.h"

#include <algorithm>

namespace pavane
{

namespace
{

using Measure = std::function<int(std::string_view)>;

CString withoutPrefixes(std::string_view text)
{
    CString plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '&' && ++i == text.size())
            break;
        plain += text[i];
    }
    return plain;
}

std::vector<CString> paragraphs(std::string_view text)
{
    std::vector<CString> lines(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            continue;
        if (text[i] == '\n')
            lines.emplace_back();
        else
            lines.back() += text[i];
    }
    if (lines.size() > 1 && lines.back().empty())
        lines.pop_back();
    return lines;
}

/// Greedy: a word goes to the next line when it does not fit any more.
void breakWords(const CString& paragraph, int width, const Measure& widthOf,
                std::vector<CString>& out)
{
    CString line;
    bool begun = false;
    for (std::size_t at = 0; at <= paragraph.size();) {
        const std::size_t end = std::min(paragraph.find(' ', at), paragraph.size());
        const CString word = paragraph.substr(at, end - at);
        if (!begun) {
            line = word;
        } else if (widthOf(line + ' ' + word) > width) {
            out.push_back(line);
            line = word;
        } else {
            line += ' ' + word;
        }
        begun = true;
        at = end + 1;
    }
    out.push_back(line);
}

/// `end`, or the first place before it that is not inside a character.
std::size_t characterEnd(std::string_view text, std::size_t end)
{
    end = std::min(end, text.size());
    while (end > 0 && end < text.size() && (text[end] & 0xC0) == 0x80)
        --end;
    return end;
}

/// The line, or so much of its beginning as leaves room for dots. What is far beyond the room is
/// not measured.
CString shortened(const CString& line, int room, const Measure& widthOf)
{
    constexpr std::size_t firstLook = 64;
    const std::string_view text = line;
    const auto fits = [&](std::size_t end, int width) {
        return widthOf(text.substr(0, characterEnd(text, end))) <= width;
    };
    std::size_t beyond = std::min(firstLook, text.size());
    while (fits(beyond, room)) {
        if (beyond == text.size())
            return line;
        beyond = std::min(2 * beyond, text.size());
    }
    const int left = room - widthOf("...");
    std::size_t enough = 0;
    while (beyond - enough > 1) {
        const std::size_t middle = enough + (beyond - enough) / 2;
        (fits(middle, left) ? enough : beyond) = middle;
    }
    return CString(text.substr(0, characterEnd(text, enough))) + "...";
}

int lineLeft(const CRect& rect, unsigned format, int width)
{
    if (format & DT_CENTER)
        return saturated((Wide{rect.left} + rect.right - width) / 2);
    if (format & DT_RIGHT)
        return saturated(Wide{rect.right} - width);
    return rect.left;
}

int firstTop(const CRect& rect, unsigned format, int lineHeight)
{
    if (!(format & DT_SINGLELINE))
        return rect.top;
    if (format & DT_VCENTER)
        return saturated(rect.top + (Wide{rect.bottom} - rect.top) / 2 - lineHeight / 2);
    if (format & DT_BOTTOM)
        return saturated(Wide{rect.bottom} - lineHeight);
    return rect.top;
}

}  // namespace

TextLayout layOutText(std::string_view text, const CRect& rect, unsigned format, int lineHeight,
                      const Measure& widthOf)
{
    const CString plain = format & DT_NOPREFIX ? CString(text) : withoutPrefixes(text);
    std::vector<CString> lines;
    if (format & DT_SINGLELINE) {
        lines.push_back(plain);
    } else {
        const int width = saturated(Wide{rect.right} - rect.left);
        for (CString& paragraph : paragraphs(plain)) {
            if (format & DT_WORDBREAK)
                breakWords(paragraph, width, widthOf, lines);
            else
                lines.push_back(std::move(paragraph));
        }
    }
    if (format & DT_END_ELLIPSIS) {
        for (CString& line : lines)
            line = shortened(line, saturated(Wide{rect.right} - rect.left), widthOf);
    }
    TextLayout layout;
    const int top = firstTop(rect, format, lineHeight);
    for (CString& line : lines) {
        const int width = line.empty() ? 0 : widthOf(line);
        layout.width = std::max(layout.width, width);
        const int y = saturated(Wide{top} + layout.height);
        layout.lines.push_back({{lineLeft(rect, format, width), y}, std::move(line)});
        layout.height = saturated(Wide{layout.height} + lineHeight);
    }
    return layout;
}

}  // namespace pavane
