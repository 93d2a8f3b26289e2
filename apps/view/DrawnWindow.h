#pragma once

#include "pavane/windows/ABWindow.h"

#include <functional>
#include <utility>

namespace pavane
{

/// A picture to be printed where no window shows it.
class DrawnWindow : public ABWindow
{
public:
    using Draw = std::function<void(CDC& dc, const CRect& rect)>;
    explicit DrawnWindow(Draw draw) : draw_(std::move(draw)) {}
    void PrintWindow(CDC& dc, CRect& rect, int) override { draw_(dc, rect); }

private:
    Draw draw_;
};

}  // namespace pavane
