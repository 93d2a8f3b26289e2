#include "pavane/windows/placement_text.h"

#include <charconv>

namespace pavane
{

namespace
{

/// Wider or higher than any window; a rectangle beyond it is garbage, and its picture would not fit
/// in memory.
constexpr long long largestSide = 32767;

/// Takes one number, blanks before it skipped, and all but the last a comma behind it.
template <typename Number>
int readField(std::string_view& text, Number& number, int last)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec != std::errc())
        return 0;
    text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
    if (last)
        return 1;
    if (text.empty() || text.front() != ',')
        return 0;
    text.remove_prefix(1);
    return 1;
}

int isSide(int from, int to)
{
    const long long side = static_cast<long long>(to) - from;
    return side >= 0 && side <= largestSide;
}

}  // namespace

CString placementText(const PlacementRecord& record)
{
    CString text = std::to_string(record.flags) + ',' + std::to_string(record.showCommand);
    for (const int number :
         {record.minPosition.x, record.minPosition.y, record.maxPosition.x, record.maxPosition.y,
          record.normal.left, record.normal.top, record.normal.right, record.normal.bottom})
        text += ',' + std::to_string(number);
    return text;
}

int readPlacement(std::string_view text, PlacementRecord& record)
{
    PlacementRecord read;
    if (!readField(text, read.flags, 0) || !readField(text, read.showCommand, 0))
        return 0;
    for (int* number :
         {&read.minPosition.x, &read.minPosition.y, &read.maxPosition.x, &read.maxPosition.y,
          &read.normal.left, &read.normal.top, &read.normal.right})
        if (!readField(text, *number, 0))
            return 0;
    if (!readField(text, read.normal.bottom, 1))
        return 0;
    if (!isSide(read.normal.left, read.normal.right) ||
        !isSide(read.normal.top, read.normal.bottom))
        return 0;
    record = read;
    return 1;
}

}  // namespace pavane
