#pragma once

#include "platform/types.h"

#include <shared_mutex>
#include <vector>

namespace pavane::python
{

/// While it lives the platform runs and is not let go of. Made without the interpreter's lock.
class RunningPlatform
{
public:
    /// Starts the platform for pictures unless it runs. Once the interpreter ends, only the thread
    /// that ends it comes back from here.
    RunningPlatform();
    RunningPlatform(const RunningPlatform&) = delete;
    RunningPlatform& operator=(const RunningPlatform&) = delete;
    ~RunningPlatform();
    /// What is missing, in one line; empty when it runs.
    const CString& fault() const { return fault_; }

private:
    CString fault_;
    int isHeld_;  ///< not by the thread that ends the process, which draws alone
};

/// What the library wanted to tell the user since the last call. In Python nothing opens a box.
std::vector<CString> takeMessages();

}  // namespace pavane::python
