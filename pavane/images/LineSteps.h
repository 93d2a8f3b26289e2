#pragma once

#include "platform/geometry.h"

#include <cstdint>

namespace pavane
{

/// The pixels of a one-pixel line, numbered from its start: step i lies i pixels along the longer
/// direction (x where both are equal), the other coordinate rounded to nearest with a tie to the
/// smaller one. The end is the pixel after the last step. Any ints are exact.
class LineSteps
{
public:
    LineSteps(CPoint from, CPoint to);

    /// How many pixels the line has, 0 for equal ends.
    std::int64_t count() const { return n_; }
    int isSteep() const { return steep_; }
    /// -1, 0 or 1: where the longer and the shorter coordinate go.
    int majorStep() const { return majorStep_; }
    int minorStep() const { return rise_ > 0 ? 1 : rise_ < 0 ? -1 : 0; }
    CPoint at(std::int64_t i) const;

    /// Steps `first` up to, not including, `end`: those inside a box whose edges belong to it.
    struct Range {
        std::int64_t first;
        std::int64_t end;
    };
    Range inside(const CRect& box) const;

    /// The state of a walk: before each step off the pixel, `rest` says when the shorter coordinate
    /// moves. Starts at step i.
    struct Walk {
        std::int64_t rest;    ///< 0 up to `period`
        std::int64_t change;  ///< twice the length of the shorter direction
        std::int64_t period;  ///< twice the length of the longer one
        /// Non-zero when the next step moves along the shorter direction too.
        int next(bool down)
        {
            if (down) {
                rest += change;
                if (rest < period)
                    return 0;
                rest -= period;
                return 1;
            }
            rest -= change;
            if (rest >= 0)
                return 0;
            rest += period;
            return 1;
        }
    };
    Walk walkFrom(std::int64_t i) const;

private:
    std::int64_t minorOffset(std::int64_t i) const;

    CPoint from_;
    bool steep_;
    int majorStep_;
    std::int64_t n_;
    std::int64_t rise_;
};

}  // namespace pavane
