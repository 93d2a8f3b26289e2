#pragma once

#include "pavane/images/AColorPlay.h"
#include "platform/geometry.h"

namespace pavane
{

/// A drag that plays with colours, from the press to the release: across it sets the bias, up the
/// contrast. A press that has not moved yet waits.
class PlayDrag
{
public:
    /// The button went down at a client point of a plot of `size` pixels.
    void press(CPoint point, CSize size, const AColorPlay& before);
    /// The pointer moved; `fine` moves a tenth as fast. Non-zero when there is something to show.
    int moveTo(CPoint point, int fine);
    void end() { state_ = State::none; }
    int isWaiting() const { return state_ == State::waiting; }
    int isGoing() const { return state_ == State::going; }
    const AColorPlay& play() const { return play_; }
    const AColorPlay& before() const { return before_; }

private:
    enum class State { none, waiting, going };
    State state_ = State::none;
    CPoint last_;
    CSize size_;
    double across_ = 0;  ///< pixels to the right, fine ones as tenths
    double up_ = 0;
    AColorPlay before_;
    AColorPlay play_;
};

}  // namespace pavane
