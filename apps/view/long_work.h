#pragma once

#include "pavane/progress/AProgress.h"

#include <functional>

namespace pavane
{

class CWnd;

/// Does work that may last in a thread of its own, while the frame of `owner` waits and a dialog
/// says how far it is. `work` touches nothing that windows show, and returns when it is done or
/// when the writer says that the user gave up. Non-zero when it was done.
int doLongWork(CWnd* owner, const CString& name, const std::function<void(AProgressWriter&)>& work);

}  // namespace pavane
