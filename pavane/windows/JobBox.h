#pragma once

#include "pavane/windows/AProgressDlg.h"

#include <cstdint>

namespace pavane
{

/// A modal AProgressDlg for one job of this thread that has a loop of its own and knows its
/// fraction. Boxes nest: the outer one stays away.
class PAVANE_API JobBox
{
public:
    /// `what` is what is being done ("Sorting by Name"); `window` is any window of the frame that
    /// waits, and may go meanwhile.
    JobBox(CWnd* window, const CString& what);
    JobBox(const JobBox&) = delete;
    JobBox& operator=(const JobBox&) = delete;
    ~JobBox();
    /// Fraction done, 0 to 1; 0 when the user gave up, now or before. Cheap when called often.
    int show(double fraction);

private:
    AProgress progress_;
    AProgressWriter writer_{progress_};
    std::int64_t shown_ = 0;
    AProgressDlg dialog_;
};

}  // namespace pavane
