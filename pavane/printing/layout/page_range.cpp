#include "pavane/printing/layout/page_range.h"

#include "pavane/resources/print_messages.h"
#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <limits>
#include <string>

namespace pavane
{

namespace
{

/// The last page of a print-out that does not know its length.
constexpr int openEnd = 65535;

}  // namespace

int pageEditValue(const CString& text)
{
    int value = 0;
    if (stoval(text, value))
        return value;
    std::string_view digits = trimmed(text, whiteSpace);
    const bool negative = !digits.empty() && digits[0] == '-';
    if (negative || (!digits.empty() && digits[0] == '+'))
        digits.remove_prefix(1);
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos)
        return 0;
    return negative ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
}

RangeCheck checkPageRange(int from, int to, int minimum, int maximum)
{
    const RangeField focus = from < minimum || from > to ? RangeField::from
                             : to > maximum              ? RangeField::to
                                                         : RangeField::none;
    if (focus == RangeField::none)
        return {};
    return {focus,
            notInPageRange + std::to_string(minimum) + pageRangeAnd + std::to_string(maximum)};
}

namespace
{

void showPages(RangeControls& controls, int pages)
{
    const bool wasOne = controls.maximum == 1;
    if (pages < 2 || wasOne) {
        controls.all = 1;
        controls.pages = 0;
        controls.rangeEnabled = pages >= 2;
    }
    controls.allLabel =
        pages < 2 ? CString(allPages) : allPagesStart + std::to_string(pages) + allPagesEnd;
    controls.maximum = pages;
}

}  // namespace

RangeControls openedControls(int pages, int pageNumber)
{
    RangeControls controls;
    controls.to = std::max(pages, 1);
    controls.pageNumber = pageNumber;
    showPages(controls, controls.to);
    return controls;
}

void countAgain(RangeControls& controls, int pages)
{
    pages = std::max(pages, 1);
    if (pages == controls.maximum)
        return;
    if (!controls.pages || controls.to > pages) {
        controls.from = std::min(controls.from, pages);
        controls.to = pages;
        if (controls.all)
            controls.pages = 0;
    }
    showPages(controls, pages);
    controls.pageNumber = pages >= 2;
}

JobPages::JobPages(int from, int to, int minimum, int maximum)
{
    maximum = std::max(minimum, maximum);
    page_ = std::clamp(from, minimum, maximum);
    const int last = std::clamp(to, minimum, maximum);
    step_ = last >= page_ ? 1 : -1;
    count_ = (std::int64_t{last} - page_) * step_ + 1;
    open_ = last == openEnd && step_ > 0;
    left_ = open_ ? std::int64_t{std::numeric_limits<int>::max()} - page_ + 1 : count_;
}

void JobPages::next()
{
    if (--left_ > 0)
        page_ += step_;
}

int PageGrid::count() const
{
    const std::int64_t pages = std::int64_t{std::max(down, 1)} * std::max(across, 1);
    return static_cast<int>(std::min<std::int64_t>(pages, std::numeric_limits<int>::max()));
}

PageGrid::Place PageGrid::placeOf(int page) const
{
    const int index = std::clamp(page, 1, count()) - 1;
    return {index % std::max(down, 1), index / std::max(down, 1)};
}

}  // namespace pavane
