#pragma once

#include "platform/core/DirtyBoxes.h"
#include "platform/core/PixelPainter.h"

#include <functional>
#include <vector>

namespace pavane
{

/// The pixels of a window's client area and what of them is out of date. Contexts share it with the
/// window: they go on when it is resized, and draw nothing once it is cleared.
class WindowSurface
{
public:
    /// New pixels of width x height units, `ratio` x `ratio` pixels each; what was there stays at
    /// the top left, the rest is white. Pixels are made when something is drawn. Non-zero on
    /// success, else the surface is empty.
    int resize(int width, int height, int ratio);
    /// The window is gone.
    void clear();

    int width() const { return width_; }
    int height() const { return height_; }
    int ratio() const { return ratio_; }
    const std::vector<std::uint32_t>& bits() const { return bits_; }
    /// Pixels for a context whose painting reports itself.
    PixelSurface reportedPixels();
    /// Pixels for a context whose clip tells what it paints.
    PixelSurface pixels();

    void invalidate(const CRect& rect);
    void invalidate(const Region& region);
    void validate(const Region& region);
    bool hasInvalid() const { return !newlyInvalid_.empty() || !invalid_.empty(); }
    const Region& invalid() const;
    /// Hands out what is invalid to be painted; it counts as painted from now on.
    Region takeInvalid();

    /// What was painted and has not been put on the screen.
    Region takePainted();
    /// Pixels in `rect` were shifted within it, here and on the screen: what is not on the screen
    /// moved along.
    void shiftPainted(const CRect& rect, int dx, int dy);
    /// Called when something may have been painted that is not on the screen.
    std::function<void()> onTouched;
    /// Shifts what the screen shows as pixels() were; false when it cannot.
    std::function<bool(const CRect& rect, int dx, int dy)> onShifted;

private:
    int moveBits(int width, int height, int ratio);

    int width_ = 0;
    int height_ = 0;
    int ratio_ = 1;
    std::vector<std::uint32_t> bits_;
    mutable Region invalid_;
    mutable std::vector<CRect> newlyInvalid_;  ///< joins invalid_ when somebody looks
    Region painted_;
    DirtyBoxes touched_;
};

}  // namespace pavane
