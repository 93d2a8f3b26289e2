#include "platform/core/WindowSurface.h"

#include "platform/core/region_union.h"
#include "platform/gdi_constants.h"

#include <algorithm>
#include <new>
#include <utility>

namespace pavane
{

namespace
{

constexpr int greatestSide = 32768;
constexpr int greatestRatio = 8;

}  // namespace

/// White pixels with those that are there at the top left; 0, and nothing changed, without memory.
int WindowSurface::moveBits(int width, int height, int ratio)
{
    const auto fineWidth = static_cast<std::size_t>(width) * static_cast<std::size_t>(ratio);
    const auto fineHeight = static_cast<std::size_t>(height) * static_cast<std::size_t>(ratio);
    std::vector<std::uint32_t> fresh;
    // a vector has no other way to say that memory ran out
    try {
        fresh.assign(fineWidth * fineHeight, 0xFFFFFF);
    } catch (const std::bad_alloc&) {
        return 0;
    }
    if (ratio == ratio_ && !bits_.empty()) {
        const PixelSurface before = pixels();
        const int columns = std::min(width, width_) * ratio;
        for (int y = 0; y < std::min(height, height_) * ratio; ++y)
            std::copy_n(before.row(y), columns,
                        fresh.data() + static_cast<std::size_t>(y) * fineWidth);
    }
    bits_ = std::move(fresh);
    return 1;
}

int WindowSurface::resize(int width, int height, int ratio)
{
    width = std::clamp(width, 0, greatestSide);
    height = std::clamp(height, 0, greatestSide);
    ratio = std::clamp(ratio, 1, greatestRatio);
    // a window that nothing was drawn into needs no pixels yet
    if (!bits_.empty() && !moveBits(width, height, ratio)) {
        clear();
        return 0;
    }
    width_ = width;
    height_ = height;
    ratio_ = ratio;
    newlyInvalid_.clear();
    invalid_ = Region(CRect(0, 0, width, height));
    return 1;
}

void WindowSurface::clear()
{
    bits_ = {};
    width_ = 0;
    height_ = 0;
    newlyInvalid_.clear();
    invalid_ = Region();
    (void)takePainted();  // nobody can see it any more
}

PixelSurface WindowSurface::pixels()
{
    if (bits_.empty() && !moveBits(width_, height_, ratio_))
        return {};
    if (bits_.empty())
        return {};
    return {bits_.data(), width_, height_, std::ptrdiff_t{width_} * ratio_, ratio_};
}

PixelSurface WindowSurface::reportedPixels()
{
    PixelSurface surface = pixels();
    if (surface.bits) {
        surface.touched = &touched_;
        if (onTouched && touched_.empty())
            onTouched();
    }
    return surface;
}

void WindowSurface::invalidate(const CRect& rect)
{
    constexpr std::size_t mostWaiting = 2000;
    CRect inside;
    if (!inside.IntersectRect(rect, {0, 0, width_, height_}))
        return;
    newlyInvalid_.push_back(inside);
    if (newlyInvalid_.size() > mostWaiting)
        (void)invalid();  // joins them
}

const Region& WindowSurface::invalid() const
{
    if (newlyInvalid_.empty())
        return invalid_;
    const Region fresh = unionOf(std::exchange(newlyInvalid_, {}));
    invalid_ = invalid_.empty() ? fresh : Region::combined(invalid_, fresh, RGN_OR);
    return invalid_;
}

void WindowSurface::invalidate(const Region& region)
{
    const Region inside = Region::combined(region, Region(CRect(0, 0, width_, height_)), RGN_AND);
    invalid_ = invalid().empty() ? inside : Region::combined(invalid_, inside, RGN_OR);
}

void WindowSurface::validate(const Region& region)
{
    invalid_ = Region::combined(invalid(), region, RGN_DIFF);
}

Region WindowSurface::takeInvalid()
{
    (void)invalid();  // joins what came last
    painted_ = painted_.empty() ? invalid_ : Region::combined(painted_, invalid_, RGN_OR);
    return std::exchange(invalid_, Region());
}

void WindowSurface::shiftPainted(const CRect& rect, int dx, int dy)
{
    const Region pending = takePainted();
    Region moved = Region::combined(pending, Region(rect), RGN_AND);
    moved.offset(dx, dy);
    painted_ = Region::combined(pending, Region::combined(moved, Region(rect), RGN_AND), RGN_OR);
}

Region WindowSurface::takePainted()
{
    const Region touched = unionOf(touched_.taken());
    const Region all = std::exchange(painted_, Region());
    return touched.empty() ? all : Region::combined(all, touched, RGN_OR);
}

}  // namespace pavane
