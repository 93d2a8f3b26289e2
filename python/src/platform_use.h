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
    /// Starts the platform for pictures unless it runs.
    RunningPlatform();
    RunningPlatform(const RunningPlatform&) = delete;
    RunningPlatform& operator=(const RunningPlatform&) = delete;
    ~RunningPlatform();
    /// What is missing, in one line; empty when it runs.
    const CString& fault() const { return fault_; }

private:
    CString fault_;
};

/// What the library wanted to tell the user since the last call. In Python nothing opens a box.
std::vector<CString> takeMessages();

}  // namespace pavane::python
