#include "python/src/run.h"

#include "python/src/errors.h"
#include "python/src/platform_use.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace pavane::python
{

namespace py = pybind11;

Interrupts::Interrupts()
{
    // the thread that Python started in, or that a child was forked from, is the process's first
    if (syscall(SYS_gettid) == getpid())
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

void tellMessages()
{
    for (const CString& text : takeMessages())
        warn(text);
}

}  // namespace pavane::python
