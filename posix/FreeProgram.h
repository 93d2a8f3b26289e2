#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace pavane
{

/// A program that goes on by itself, in a session of its own, whatever becomes of this object and
/// of the process that started it. It hears and says nothing: its standard streams are empty.
class FreeProgram
{
public:
    FreeProgram() = default;
    FreeProgram(const FreeProgram&) = delete;
    FreeProgram& operator=(const FreeProgram&) = delete;
    ~FreeProgram() { release(); }

    /// Starts `arguments`, the first looked for along PATH; no shell sees them. Non-zero on
    /// success, else 0 and `fault`, a clause without its subject.
    int start(const std::vector<std::string>& arguments, std::string& fault);
    /// Non-zero when it has ended, or was never started. Never waits.
    int hasEnded();
    /// What it ended with; -1 while it runs and when a signal ended it.
    int status() const { return status_; }
    /// Watches it no longer.
    void release();

private:
    pid_t pid_ = -1;
    int status_ = -1;
};

}  // namespace pavane
