#include "python/src/run.h"

#include "python/src/errors.h"
#include "python/src/platform_use.h"

#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace pavane::python
{

namespace py = pybind11;

int isFirstThread() { return syscall(SYS_gettid) == getpid(); }

Interrupts::Interrupts()
{
    if (isFirstThread())
        flag_.ask([this] { return goesOn(); });
}

int Interrupts::goesOn()
{
    if (raised_)
        return 0;
    const py::gil_scoped_acquire acquire;
    if (PyErr_CheckSignals() != 0)
        raised_ = std::make_unique<py::error_already_set>();
    return raised_ == nullptr;
}

void Interrupts::rethrow()
{
    if (raised_)
        throw py::error_already_set(*raised_);
}

void Unlocked::lock()
{
    PyThreadState* const state = std::exchange(state_, nullptr);
    if (!state)
        return;
    try {
        PyEval_RestoreThread(state);
    } catch (...) {  // what unwinds a thread that is to end
        for (;;)
            (void)pause();
    }
}

void tellMessages()
{
    for (const CString& text : takeMessages())
        warn(text);
}

}  // namespace pavane::python
