#include "python/src/platform_use.h"

#include "platform/message.h"
#include "platform/platform.h"
#include "python/src/bind.h"
#include "python/src/run.h"

#include <mutex>
#include <utility>

namespace pavane::python
{

namespace
{

std::mutex starting;
std::mutex telling;
std::vector<CString> messages;

int keepMessage(const CString& text, unsigned)
{
    const std::lock_guard<std::mutex> lock(telling);
    messages.push_back(text);
    return IDOK;
}

void release()
{
    const std::lock_guard<std::mutex> lock(starting);
    ShutdownPlatform();
}

}  // namespace

int startPlatform(CString& why)
{
    static char name[] = "python";
    static char* arguments[] = {name, nullptr};
    const std::lock_guard<std::mutex> lock(starting);
    (void)SetMessageFunction(&keepMessage);
    return InitPlatform(1, arguments, PlatformUse::pictures, why);
}

std::vector<CString> takeMessages()
{
    const std::lock_guard<std::mutex> lock(telling);
    return std::exchange(messages, {});
}

void bindPlatform(py::module_& m)
{
    m.def("release", &release, py::call_guard<py::gil_scoped_release>(),
          "Lets go of the window system, so that a program can make its own application object. "
          "Pictures stay, and drawing starts again by itself.\n\n"
          ">>> release()");
}

}  // namespace pavane::python
