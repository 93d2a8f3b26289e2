#include "posix/displays.h"

#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <netdb.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>

namespace pavane
{

namespace
{

constexpr int firstDisplayPort = 6000;
constexpr int greatestDisplay = 59000;  // their ports end there

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

/// The number between the colon and the screen; below 0 when it is none.
int displayNumber(std::string_view text)
{
    text = text.substr(0, text.find('.'));
    int number = -1;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    return fault == std::errc() && end == text.data() + text.size() ? number : -1;
}

}  // namespace

int xDisplayAnswers(const std::string& display)
{
    const std::size_t colon = display.rfind(':');
    if (colon == std::string::npos)
        return 0;
    const int number = displayNumber(std::string_view(display).substr(colon + 1));
    if (number < 0 || number > greatestDisplay)
        return 0;
    const std::string host = display.substr(0, colon);
    const std::string path = "/tmp/.X11-unix/X" + std::to_string(number);
    if (host.empty() || host == "unix")
        return localAnswers(path, 1) || localAnswers(path, 0);
    return host.front() == '/' || remoteAnswers(host, number);
}

int waylandDisplayAnswers(const std::string& display)
{
    if (display.empty())
        return 0;
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    return localAnswers(display.front() == '/' ? display : (folder ? folder : "") + ('/' + display),
                        0);
}

}  // namespace pavane
