#pragma once

#include "platform/api.h"

#include <cstdint>

namespace pavane
{

/// When a tip comes and goes, by what is seen of pointer and focus. Tools are numbers from 0, -1 is
/// none; times are milliseconds of any clock.
class PAVANE_API TipTiming
{
public:
    struct Seen {
        int pointed = -1;  ///< the tool under the pointer
        int focused = -1;  ///< the tool of the window that has the focus
        int overTip = 0;   ///< the pointer is on the tip itself
    };
    /// The tool whose tip is to be shown now. Call again while `waits`.
    int see(std::int64_t now, const Seen& seen);
    /// Takes the tip away until the pointer or the focus has been somewhere else.
    void dismiss();
    int shown() const { return shown_; }
    /// Non-zero when time alone may change what is shown, or the pointer that nobody tells of.
    int waits() const { return shown_ >= 0 || candidate_ >= 0; }
    void SetDelay(int milliseconds) { delay_ = milliseconds; }

private:
    int delay_ = 500;
    int shown_ = -1;
    int candidate_ = -1;
    std::int64_t since_ = 0;
    std::int64_t hidden_ = -1000000;
    Seen last_;
    int leftPointed_ = -1;  ///< dismissed until the pointer leaves it
    int leftFocused_ = -1;
};

}  // namespace pavane
