#pragma once

#include "platform/types.h"
#include "tessel/progress_function.h"

#include <functional>

namespace pavane
{

class CWnd;

/// Does work that may last, in this thread, while the frame of `owner` waits and a dialog says how
/// far it is. `work` calls what it is given often, 30 times a second and more, with the fraction
/// that is done; that lets windows be painted and the user be heard, and 0 says that the user gave
/// up. It changes nothing that windows show, and returns non-zero when it has done what it should,
/// 0 when it failed or ended early because the user gave up. What was done although the user gave
/// up stays done. 0 when the user gave up and it was not done.
int doLongWork(CWnd* owner, const CString& name,
               const std::function<int(const ProgressFunction&)>& work);

}  // namespace pavane
