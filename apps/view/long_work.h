#pragma once

#include "pavane/progress/AProgress.h"
#include "tessel/progress_function.h"

#include <functional>

namespace pavane
{

class CWnd;

/// Does work that may last in a thread of its own, while the frame of `owner` waits and a dialog
/// says how far it is. `work` touches nothing that windows show, and returns non-zero when it has
/// done what it should, 0 when it failed or ended early because the user gave up. What was done
/// although the user gave up stays done. 0 when the user gave up and it was not done.
int doLongWork(CWnd* owner, const CString& name, const std::function<int(AProgressWriter&)>& work);

/// Tells the writer of work that knows its fraction; the work is to end when the user gives up.
ProgressFunction tellTo(AProgressWriter& writer);

}  // namespace pavane
