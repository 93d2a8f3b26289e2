#include "pavane/axes/fitted_text.h"

#include "platform/CDC.h"

#include <algorithm>
#include <vector>

namespace pavane
{

namespace
{

constexpr const char* ellipsis = "...";

/// The longest start of `text` for which `fits` holds with "..." behind it; empty for none. Texts
/// that are longer are taken to fit no better.
template <typename Fits>
CString longestStart(const CString& text, const Fits& fits)
{
    std::vector<std::size_t> ends;
    for (std::size_t i = 0; i < text.size(); ++i)
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80)
            ends.push_back(i);  // a character starts here and the one before ends
    const auto cut = [&text](std::size_t end) {
        CString start = text.substr(0, end);
        while (!start.empty() && start.back() == ' ')
            start.pop_back();
        return start + ellipsis;
    };
    const auto first = std::partition_point(ends.begin(), ends.end(),
                                            [&](std::size_t end) { return fits(cut(end)); });
    return first == ends.begin() ? CString() : cut(first[-1]);
}

}  // namespace

CString fittedLine(CDC& dc, const CString& text, int width)
{
    const auto fits = [&](const CString& line) { return dc.GetTextExtent(line).cx <= width; };
    return fits(text) ? text : longestStart(text, fits);
}

CString fittedLines(CDC& dc, const CString& text, int width, int height)
{
    CString words;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        words += at ? " " : "";
        words += fittedLine(dc, text.substr(at, end - at), width);
        at = end + 1;
    }
    const int room = std::max(height, dc.GetTextExtent("M").cy);
    const auto fits = [&](const CString& lines) {
        CRect box(0, 0, width, 0);
        dc.DrawText(lines, box, DT_WORDBREAK | DT_NOPREFIX | DT_CALCRECT);
        return box.Height() <= room && box.Width() <= width;
    };
    return fits(words) ? words : longestStart(words, fits);
}

}  // namespace pavane
