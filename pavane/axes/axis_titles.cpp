#include "pavane/axes/axis_titles.h"

#include "pavane/axes/ranges/decimal_power.h"
#include "pavane/resources/axis_strings.h"
#include "tessel/value_text.h"

#include <string>

namespace pavane
{
namespace
{

constexpr char multiplierMarker = '~';

/// Where the first "%s" starts, not counting the second sign of a "%%".
CString::size_type prefixMarker(const CString& title)
{
    for (CString::size_type i = 0; i + 1 < title.size(); ++i) {
        if (title[i] != '%')
            continue;
        if (title[i + 1] == 's')
            return i;
        if (title[i + 1] == '%')
            ++i;
    }
    return CString::npos;
}

/// Every "%%" of a text as "%".
CString withSinglePercents(const CString& text)
{
    CString result;
    for (CString::size_type i = 0; i < text.size(); ++i) {
        result += text[i];
        if (text[i] == '%' && i + 1 < text.size() && text[i + 1] == '%')
            ++i;
    }
    return result;
}

}  // namespace

CString axisString(int id)
{
    for (const ResourceString& entry : axisStrings)
        if (entry.id == id)
            return entry.text;
    return {};
}

CString prefixText(int power)
{
    if (power == 0)
        return {};
    const int id = IDS_PREFIX_NONE + power / 3;
    if (id < IDS_PREFIX_FIRST || id > IDS_PREFIX_LAST)
        return "1e" + std::to_string(power);
    return axisString(id);
}

CString multiplierText(int power)
{
    return power == 0 ? CString() : " \u2022" + valToStr(powerOfTen(power), 6);
}

int hasPrefixMarker(const CString& title) { return prefixMarker(title) != CString::npos; }

CString withPrefix(const CString& title, const CString& prefix)
{
    const auto marker = prefixMarker(title);
    if (marker == CString::npos)
        return title;
    return withSinglePercents(title.substr(0, marker)) + prefix +
           withSinglePercents(title.substr(marker + 2));
}

int hasMultiplierMarker(const CString& title)
{
    return title.find(multiplierMarker) != CString::npos;
}

CString withMultiplier(const CString& title, const CString& multiplier)
{
    const auto marker = title.find(multiplierMarker);
    if (marker == CString::npos)
        return title + multiplier;
    return title.substr(0, marker) + multiplier + title.substr(marker + 1);
}

}  // namespace pavane
