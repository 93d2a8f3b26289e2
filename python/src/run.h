#pragma once

#include "tessel/StopFlag.h"

#include <exception>
#include <memory>
#include <pybind11/pybind11.h>

namespace pavane::python
{

/// Whether this is the thread that Python started in, or that a child was forked from.
int isFirstThread();

/// Asks, while the interpreter's lock is free, whether the user has pressed Ctrl+C; only the main
/// thread hears that. Made with the lock held.
class Interrupts
{
public:
    Interrupts();
    Interrupts(const Interrupts&) = delete;
    Interrupts& operator=(const Interrupts&) = delete;
    /// What the work looks at. Up once it is to end; takes the lock every 20 ms at most.
    const StopFlag& flag() const { return flag_; }
    /// With the lock held: throws what the signal's handler raised.
    void rethrow();

private:
    int goesOn();

    StopFlag flag_;
    std::unique_ptr<pybind11::error_already_set> raised_;
};

/// Lets go of the interpreter's lock until `lock`. A thread that finds the interpreter ended then
/// stays where it is: ending it would go through frames of C++ that cannot be left so.
class Unlocked
{
public:
    Unlocked() : state_(PyEval_SaveThread()) {}
    Unlocked(const Unlocked&) = delete;
    Unlocked& operator=(const Unlocked&) = delete;
    ~Unlocked() { lock(); }
    void lock();

private:
    PyThreadState* state_;
};

/// Runs work(Interrupts&) without the interpreter's lock, then throws what a signal raised, and
/// gives what the library had to tell as warnings.
void tellMessages();
template <typename Work>
void runFree(Work&& work)
{
    Interrupts interrupts;
    std::exception_ptr fault;
    {
        const Unlocked unlocked;
        try {
            work(interrupts);
        } catch (...) {
            fault = std::current_exception();
        }
    }
    interrupts.rethrow();
    if (fault)
        std::rethrow_exception(fault);
    tellMessages();
}

}  // namespace pavane::python
