#pragma once

#include "pavane/windows/ABWindow.h"

#include <functional>
#include <utility>

namespace pavane
{

/// A picture of one or several pages to be printed where no window shows it.
class DrawnWindow : public ABWindow
{
public:
    using Draw = std::function<void(CDC& dc, const CRect& rect)>;
    explicit DrawnWindow(Draw draw, int pages = 1, std::function<void(int page)> turnTo = {})
        : draw_(std::move(draw)), pages_(pages), turnTo_(std::move(turnTo))
    {
    }
    int GetPages(CDC&) override { return pages_; }
    void PrintWindow(CDC& dc, CRect& rect, int page) override
    {
        if (turnTo_)
            turnTo_(page - 1);
        draw_(dc, rect);
    }

private:
    Draw draw_;
    int pages_;
    std::function<void(int page)> turnTo_;
};

}  // namespace pavane
