#pragma once

namespace pavane
{

/// Encloses work that holds locks, those of other libraries among them, which a copy of the process
/// made meanwhile by another thread would find held for ever. A fork waits until all such work has
/// ended, at most 0.7 s, and new work waits for the fork; work within work is let through.
class ForkGate
{
public:
    ForkGate();
    ForkGate(const ForkGate&) = delete;
    ForkGate& operator=(const ForkGate&) = delete;
    ~ForkGate();
};

/// Non-zero in a process that was forked in the middle of such work all the same.
int isForkedMidWork();
/// Called before a fork, when no such work goes on: 0 for what the copy could not use. Null for
/// nothing.
void setForkPreparation(int (*prepare)());

}  // namespace pavane
