#include "apps/view/display.h"

#include "tessel/value_text.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <netdb.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace pavane
{

namespace
{

constexpr int firstDisplayPort = 6000;

std::string environment(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

int answers(const sockaddr* address, socklen_t length)
{
    const int socketFile = socket(address->sa_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socketFile < 0)
        return 0;
    const int connected = connect(socketFile, address, length) == 0;
    close(socketFile);
    return connected;
}

/// A socket of a file name, or, `hidden`, of a name outside the file system.
int localAnswers(const std::string& path, int hidden)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::size_t start = hidden ? 1 : 0;
    if (path.empty() || start + path.size() >= sizeof address.sun_path)
        return 0;
    std::memcpy(address.sun_path + start, path.data(), path.size());
    const std::size_t length =
        offsetof(sockaddr_un, sun_path) + start + path.size() + (hidden ? 0 : 1);
    return answers(reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(length));
}

int remoteAnswers(const std::string& host, int number)
{
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), std::to_string(firstDisplayPort + number).c_str(), &hints,
                    &found) != 0)
        return 0;
    int connected = 0;
    for (const addrinfo* at = found; at && !connected; at = at->ai_next)
        connected = answers(at->ai_addr, at->ai_addrlen);
    freeaddrinfo(found);
    return connected;
}

/// "host:number.screen"; no host, or "unix", is this machine.
int xAnswers(const std::string& display)
{
    const std::size_t colon = display.rfind(':');
    if (colon == std::string::npos)
        return 0;
    const std::string_view behind = std::string_view(display).substr(colon + 1);
    int number = 0;
    if (!stoval(behind.substr(0, behind.find('.')), number) || number < 0 || number > 59000)
        return 0;
    const std::string host = display.substr(0, colon);
    const std::string path = "/tmp/.X11-unix/X" + std::to_string(number);
    if (host.empty() || host == "unix")
        return localAnswers(path, 1) || localAnswers(path, 0);
    return host.front() == '/' || remoteAnswers(host, number);
}

int waylandAnswers(const std::string& name)
{
    const std::string folder = environment("XDG_RUNTIME_DIR");
    return localAnswers(name.front() == '/' ? name : folder + '/' + name, 0);
}

}  // namespace

int hasDisplay(std::string& error)
{
    if (!environment("QT_QPA_PLATFORM").empty())
        return 1;
    const std::string x = environment("DISPLAY");
    const std::string wayland = environment("WAYLAND_DISPLAY");
    if ((!wayland.empty() && waylandAnswers(wayland)) || (!x.empty() && xAnswers(x)))
        return 1;
    error = x.empty() && wayland.empty()
                ? "there is no display to show a window on; --batch works without one"
                : "the display " + (x.empty() ? wayland : x) +
                      " does not answer; --batch works without one";
    return 0;
}

}  // namespace pavane
