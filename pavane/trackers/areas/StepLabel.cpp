#include "pavane/trackers/areas/StepLabel.h"

#include <algorithm>
#include <charconv>

namespace pavane
{

StepLabel::StepLabel(std::string_view what, int item)
{
    add(what);
    if (item < 0) {
        add(" of the open polygon");
        return;
    }
    add(" of Area ");
    addNumber(static_cast<std::size_t>(item) + 1);
}

StepLabel::StepLabel(std::string_view what, const std::vector<int>& items)
{
    if (items.size() == 1) {
        *this = StepLabel(what, items.front());
        return;
    }
    add(what);
    add(" of ");
    addNumber(items.size());
    add(" areas");
}

void StepLabel::add(std::string_view part)
{
    const std::size_t n = std::min(part.size(), sizeof text_ - 1 - length_);
    std::copy_n(part.data(), n, text_ + length_);
    length_ += n;
}

void StepLabel::addNumber(std::size_t number)
{
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, number);
    add({digits, static_cast<std::size_t>(end.ptr - digits)});
}

}  // namespace pavane
