#pragma once

#include "platform/api.h"
#include "platform/messages.h"

#include <chrono>
#include <memory>

namespace pavane
{

class CWnd;

/// Says how far a long job is, with a button to give it up, which Escape presses; shows itself only
/// when the job takes longer than a moment. The window below takes no input meanwhile, but paints,
/// and its timers run. Boxes nest: the outer one stays away.
class PAVANE_API JobBox
{
public:
    /// `what` is what is being done ("Sorting by Name"); `window` is any window of the frame that
    /// waits, and may go meanwhile.
    JobBox(CWnd* window, CString what);
    JobBox(const JobBox&) = delete;
    JobBox& operator=(const JobBox&) = delete;
    ~JobBox();
    /// Fraction done, 0 to 1; 0 when the user gave up, now or before. Cheap when called often.
    int show(double fraction);

private:
    class Box;
    int open();

    CWnd* window_;
    HWND handle_;
    CWnd* frame_ = nullptr;
    HWND frameHandle_ = 0;
    HWND focus_ = 0;  ///< who gets the keyboard back
    CString what_;
    std::chrono::steady_clock::time_point next_;  ///< when to look at the user again
    int shownPercent_ = -1;
    int failed_ = 0;
    std::unique_ptr<Box> box_;
};

}  // namespace pavane
