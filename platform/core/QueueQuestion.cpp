#include "platform/core/QueueQuestion.h"

#include "platform/core/ipp_texts.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace pavane
{

namespace
{

constexpr std::size_t mostBytes = std::size_t{4} << 20;

int exists(const std::string& file)
{
    struct stat about {
    };
    return stat(file.c_str(), &about) == 0;
}

}  // namespace

std::string schedulerSocket()
{
    if (const char* const server = std::getenv("CUPS_SERVER"))
        return *server == '/' ? server : "";
    const char* const home = std::getenv("HOME");
    if (exists("/etc/cups/client.conf") ||
        (home && exists(std::string(home) + "/.cups/client.conf")))
        return {};
    return exists("/run/cups/cups.sock") ? "/run/cups/cups.sock" : "";
}

int QueueQuestion::ask(const std::string& socket, const CString& queue)
{
    close();
    answer_.clear();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (socket.empty() || socket.size() >= sizeof address.sun_path)
        return 0;
    std::copy(socket.begin(), socket.end(), address.sun_path);
    socket_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const std::string request = queueRequest(queue);
    // a local connection is made at once or not at all, and its buffer holds more than a request
    const int asked =
        socket_ >= 0 &&
        connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        send(socket_, request.data(), request.size(), MSG_NOSIGNAL) ==
            static_cast<ssize_t>(request.size());
    if (!asked)
        close();
    return asked;
}

int QueueQuestion::poll()
{
    std::array<char, 16384> some{};
    while (socket_ >= 0) {
        const ssize_t count = recv(socket_, some.data(), some.size(), 0);
        if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
            return 0;
        if (count > 0)
            answer_.append(some.data(), static_cast<std::size_t>(count));
        if (count == 0 || (count < 0 && errno != EINTR) || answer_.size() > mostBytes ||
            isAnswerWhole(answer_))
            close();
    }
    return 1;
}

int QueueQuestion::take(PrinterInfo& queue) const { return readAnswer(answer_, queue); }

void QueueQuestion::close()
{
    if (socket_ >= 0)
        (void)::close(socket_);
    socket_ = -1;
}

}  // namespace pavane
