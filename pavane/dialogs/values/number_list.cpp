#include "pavane/dialogs/values/number_list.h"

#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace pavane
{

namespace
{

/// The parts of a text between separators; an empty text has one, which is empty.
std::vector<std::string_view> partsOf(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.push_back(trimmed(text.substr(0, end), whiteSpace));
        if (end == std::string_view::npos)
            return parts;
        text.remove_prefix(end + 1);
    }
}

/// "3" or "1-4" with numbers from 1 to `count`.
int readRange(std::string_view text, int count, int& first, int& last)
{
    const std::size_t dash = text.find('-');
    if (!stoval(text.substr(0, dash), first))
        return 0;
    last = first;
    if (dash != std::string_view::npos && !stoval(text.substr(dash + 1), last))
        return 0;
    return first >= 1 && first <= last && last <= count;
}

}  // namespace

CString numberListText(const std::vector<int>& numbers)
{
    CString text;
    for (std::size_t i = 0; i < numbers.size();) {
        std::size_t end = i + 1;
        while (end < numbers.size() && numbers[end] == numbers[end - 1] + 1)
            ++end;
        text.append(text.empty() ? "" : ",").append(std::to_string(numbers[i] + 1));
        if (end > i + 1)
            text.append("-").append(std::to_string(numbers[end - 1] + 1));
        i = end;
    }
    return text;
}

int readNumberList(const CString& text, int count, std::vector<int>& numbers)
{
    std::vector<int> read;
    const std::string_view all = trimmed(text, whiteSpace);
    if (!all.empty() && all != "*")
        for (const std::string_view part : partsOf(all, ',')) {
            int first = 0, last = 0;
            if (!readRange(part, count, first, last))
                return 0;
            for (int i = first; i <= last; ++i)
                read.push_back(i - 1);
            // a list that names all again and again does not fill the memory
            if (read.size() > static_cast<std::size_t>(count))
                return 0;
        }
    std::sort(read.begin(), read.end());
    if (std::adjacent_find(read.begin(), read.end()) != read.end())
        return 0;
    numbers = std::move(read);
    return 1;
}

CString numberListsText(const std::vector<std::vector<int>>& lists)
{
    CString text;
    for (const std::vector<int>& list : lists)
        text.append(text.empty() ? "" : ";").append(numberListText(list));
    return text;
}

int readNumberLists(const CString& text, int count, std::vector<std::vector<int>>& lists)
{
    std::vector<std::vector<int>> read;
    if (!trimmed(text, whiteSpace).empty())
        for (const std::string_view part : partsOf(text, ';')) {
            std::vector<int> list;
            if (!readNumberList(CString(part), count, list) || list.empty())
                return 0;
            read.push_back(std::move(list));
        }
    lists = std::move(read);
    return 1;
}

}  // namespace pavane
