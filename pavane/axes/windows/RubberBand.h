#pragma once

#include "platform/geometry.h"

#include <cstdint>

namespace pavane
{

class CDC;

/// What of a rubber band counts; in the other direction it is as long as its plot.
enum class BandSides : std::uint8_t { both, across, up };

/// A rectangle that the pointer draws over a plot to say what to show, from a press to its release.
/// Client pixels; it never leaves the plot.
class RubberBand
{
public:
    /// Non-zero when it begins: `point` has to lie in `plot` (right and bottom excluded).
    int begin(CPoint point, const CRect& plot, BandSides sides = BandSides::both);
    void moveTo(CPoint point);
    /// The button is up: the band waits for what comes of it.
    void release();
    /// Nothing comes of it.
    void end() { state_ = State::none; }
    int isGoing() const { return state_ == State::going; }
    int isReleased() const { return state_ == State::released; }
    BandSides sides() const { return sides_; }
    /// Larger in the directions that count than a hand shakes in a click.
    int isWide() const;
    CPoint from() const { return from_; }
    CPoint to() const { return to_; }
    /// The pixels that its frame covers; empty when none is drawn.
    CRect frame() const;
    void draw(CDC& dc) const;

private:
    enum class State { none, going, released };
    State state_ = State::none;
    BandSides sides_ = BandSides::both;
    CRect plot_;
    CPoint from_;
    CPoint to_;
};

}  // namespace pavane
