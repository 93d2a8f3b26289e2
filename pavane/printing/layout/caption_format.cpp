#include "pavane/printing/layout/caption_format.h"

#include "platform/gdi_constants.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace pavane
{

namespace
{

/// A conversion of a whole number, as it stands behind its '%'.
struct Conversion {
    bool zeros = false, left = false;
    std::size_t width = 0;
    std::size_t length = 0;  ///< characters behind the '%'; 0: it is none
};

Conversion conversionAt(std::string_view text)
{
    constexpr int mostDigits = 2;
    Conversion found;
    std::size_t at = 0;
    if (at < text.size() && (text[at] == '0' || text[at] == '-')) {
        (text[at] == '0' ? found.zeros : found.left) = true;
        ++at;
    }
    for (int i = 0; i < mostDigits && at < text.size() && text[at] >= '0' && text[at] <= '9'; ++i)
        found.width = found.width * 10 + static_cast<std::size_t>(text[at++] - '0');
    if (at < text.size() && (text[at] == 'd' || text[at] == 'i' || text[at] == 'u'))
        found.length = at + 1;
    return found;
}

CString written(int page, const Conversion& how)
{
    CString text = std::to_string(page);
    if (text.size() >= how.width)
        return text;
    const std::size_t missing = how.width - text.size();
    const std::size_t place = how.left ? text.size() : how.zeros && page < 0 ? 1 : 0;
    return text.insert(place, missing, how.zeros ? '0' : ' ');
}

CString withPage(std::string_view format, int page)
{
    CString text;
    bool isWritten = false;
    while (!format.empty()) {
        const std::size_t sign = std::min(format.find('%'), format.size());
        text += format.substr(0, sign);
        format.remove_prefix(sign);
        if (format.empty())
            break;
        format.remove_prefix(1);
        const Conversion conversion = isWritten ? Conversion() : conversionAt(format);
        if (!format.empty() && format[0] == '%') {
            text += '%';
            format.remove_prefix(1);
        } else if (conversion.length > 0) {
            text += written(page, conversion);
            format.remove_prefix(conversion.length);
            isWritten = true;
        } else {
            text += '%';
        }
    }
    return text;
}

}  // namespace

CString FormatStr(const CString& format, int page, int& flags)
{
    flags = captionBottom | captionCentre;
    CString text = withPage(format, page);
    const auto take = [&](const char* token, const char* with, int flag) {
        const std::size_t at = text.find(token);
        if (at == CString::npos)
            return;
        text.replace(at, 2, with);
        flags |= flag;
    };
    take("~C", page > 1 ? "(Continued)" : "", 0);
    take("~D", "", captionBottom);
    take("~U", "", captionTop);
    take("~U", "", captionTop);
    take("~R", "", captionRight);
    take("~L", "", captionLeft);
    return text;
}

unsigned captionDrawFormat(int flags)
{
    const unsigned aligned = flags & captionLeft    ? DT_LEFT
                             : flags & captionRight ? DT_RIGHT
                                                    : DT_CENTER;
    return aligned | DT_WORDBREAK | DT_NOPREFIX;
}

}  // namespace pavane
