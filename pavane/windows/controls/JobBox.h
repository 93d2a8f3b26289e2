#pragma once

#include "pavane/windows/controls/AProgressDlg.h"

#include <cstdint>

namespace pavane
{

/// A modal AProgressDlg for one job of this thread that has a loop of its own and knows its
/// fraction. Boxes nest: the outer one stays away.
class PAVANE_API JobBox
{
public:
    /// `what` is what is being done ("Sorting by Name"); `window` is any window of the frame that
    /// waits, and may go meanwhile. With `alone` no other window hears or paints (SetAlone).
    JobBox(CWnd* window, const CString& what, int alone = 0);
    JobBox(const JobBox&) = delete;
    JobBox& operator=(const JobBox&) = delete;
    ~JobBox();
    /// Fraction done, 0 to 1, below 0 while it is not known; 0 when the user gave up, now or
    /// before. Cheap when called often.
    int show(double fraction);

private:
    AProgress progress_;
    AProgressWriter writer_{progress_};
    std::int64_t shown_ = -1;  ///< while no fraction was known
    AProgressDlg dialog_;
};

}  // namespace pavane
