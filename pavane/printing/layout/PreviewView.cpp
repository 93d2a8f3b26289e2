#include "pavane/printing/layout/PreviewView.h"

#include "tessel/rounding.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

namespace pavane
{

namespace
{

constexpr double zoomSteps[] = {25, 33, 50, 67, 75, 100, 125, 150, 200, 300, 400, 600, 800};
/// Air about a sheet that fits, and what one notch of the wheel scrolls.
constexpr int air = 8;
constexpr int notch = 48;
constexpr std::int64_t mostListed = 1000;

/// The first place of the window on one axis that keeps `at` where it was on the sheet.
int keptPlace(double at, int before, double growth)
{
    return truncated(std::floor((at - before) * growth - at + 0.5));
}

}  // namespace

void PreviewView::setSheet(CSize sheet)
{
    sheet_ = {std::max(sheet.cx, 0), std::max(sheet.cy, 0)};
    fitAgain();
}

void PreviewView::setWindow(CSize window)
{
    window_ = {std::max(window.cx, 0), std::max(window.cy, 0)};
    fitAgain();
}

void PreviewView::setFit(Fit fit)
{
    fit_ = fit;
    fitAgain();
}

void PreviewView::fitAgain()
{
    if (fit_ != Fit::none && sheet_.cx > 0 && sheet_.cy > 0) {
        const auto part = [](int room, int length) {
            return 100.0 * std::max(room - 2 * air, 1) / length;
        };
        percent_ = part(window_.cx, sheet_.cx);
        if (fit_ == Fit::page)
            percent_ = std::min(percent_, part(window_.cy, sheet_.cy));
        percent_ = std::min(percent_, greatestPercent);
    }
    (void)scrollTo(scrolled_);
}

void PreviewView::setPercent(double percent, CPoint about)
{
    fit_ = Fit::none;
    const double wanted =
        percent > leastPercent ? std::min(percent, greatestPercent) : leastPercent;
    const CRect before = sheet();
    const double growth = wanted / percent_;
    percent_ = wanted;
    (void)scrollTo(
        {keptPlace(about.x, before.left, growth), keptPlace(about.y, before.top, growth)});
}

void PreviewView::zoom(int steps, CPoint about)
{
    constexpr double near = 0.01;  // of a step that is in force
    double to = percent_;
    for (; steps > 0 && to < greatestPercent; --steps)
        to = *std::find_if(std::begin(zoomSteps), std::end(zoomSteps) - 1,
                           [&](double step) { return step > to + near; });
    for (; steps < 0 && to > leastPercent; ++steps)
        to = *std::find_if(std::rbegin(zoomSteps), std::rend(zoomSteps) - 1,
                           [&](double step) { return step < to - near; });
    // a page that fits may be smaller than any step
    if (to != percent_)
        setPercent(to, about);
}

CSize PreviewView::size() const
{
    const auto scaled = [this](int length) { return truncated(length * percent_ / 100 + 0.5); };
    return {scaled(sheet_.cx), scaled(sheet_.cy)};
}

CRect PreviewView::sheet() const
{
    const CSize shown = size();
    const auto start = [](int room, int length, int scrolled) {
        return length <= room ? (room - length) / 2 : -scrolled;
    };
    const int left = start(window_.cx, shown.cx, scrolled_.x);
    const int top = start(window_.cy, shown.cy, scrolled_.y);
    return {left, top, saturatedSum(left, shown.cx), saturatedSum(top, shown.cy)};
}

CPoint PreviewView::farthest() const
{
    const CSize shown = size();
    return {std::max(shown.cx - window_.cx, 0), std::max(shown.cy - window_.cy, 0)};
}

int PreviewView::scrollTo(CPoint place)
{
    const CPoint most = farthest();
    const CPoint now(std::clamp(place.x, 0, most.x), std::clamp(place.y, 0, most.y));
    const int isMoved = !(now == scrolled_);
    scrolled_ = now;
    return isMoved;
}

int PreviewView::wheel(int notches)
{
    const int to = saturatedSum(scrolled_.y, std::int64_t{notches} * notch);
    if (notches == 0 || scrollTo({scrolled_.x, to}))
        return 0;
    scrolled_.y = notches > 0 ? 0 : farthest().y;
    return notches > 0 ? 1 : -1;
}

std::vector<int> listedPages(int first, int last, int current)
{
    const int step = last >= first ? 1 : -1;
    const std::int64_t count = (std::int64_t{last} - first) * step + 1;
    const std::int64_t listed = std::min(count, mostListed);
    const std::int64_t place = (std::int64_t{current} - first) * step;
    const std::int64_t begin = std::clamp(place - listed / 2, std::int64_t{0}, count - listed);
    std::vector<int> pages(static_cast<std::size_t>(listed));
    for (std::size_t i = 0; i < pages.size(); ++i)
        pages[i] = static_cast<int>(first + (begin + static_cast<std::int64_t>(i)) * step);
    return pages;
}

CString previewStatus(int page, int pages, double percent)
{
    return "Page " + std::to_string(page) + " of " + std::to_string(pages) + ", " +
           nValToStr(percent, 0) + " %";
}

}  // namespace pavane
