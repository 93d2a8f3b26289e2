#include "posix/LocalStream.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace pavane
{

namespace
{

/// More than this at a time is not asked for; nobody sends it to us.
constexpr std::size_t mostReceived = 32u << 20;

bool isLater(int error) { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }

}  // namespace

int LocalStream::open(std::string_view name)
{
    close();
    name_ = name;
    socket_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    return socket_ >= 0 && connect();
}

void LocalStream::close()
{
    if (socket_ >= 0)
        (void)::close(socket_);  // nothing was written that could be lost
    socket_ = -1;
    isConnected_ = false;
    outgoing_.clear();
    received.clear();
}

/// 0 when nobody listens.
int LocalStream::connect()
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (name_.empty() || name_.size() >= sizeof address.sun_path)
        return 0;
    std::memcpy(address.sun_path, name_.data(), name_.size());
    // a path ends with its NUL, an abstract name where it ends
    const std::size_t length =
        offsetof(sockaddr_un, sun_path) + name_.size() + (name_.front() == '\0' ? 0 : 1);
    isConnected_ = ::connect(socket_, reinterpret_cast<const sockaddr*>(&address),
                             static_cast<socklen_t>(length)) == 0;
    return isConnected_ || isLater(errno);
}

int LocalStream::exchange()
{
    if (socket_ < 0 || (!isConnected_ && !connect()))
        return 0;
    if (!isConnected_)
        return 1;
    while (!outgoing_.empty()) {
        const ssize_t sent = ::send(socket_, outgoing_.data(), outgoing_.size(), MSG_NOSIGNAL);
        if (sent < 0)
            return isLater(errno);
        outgoing_.erase(0, static_cast<std::size_t>(sent));
    }
    char part[16384];
    while (received.size() < mostReceived) {
        const ssize_t got = recv(socket_, part, sizeof part, 0);
        if (got <= 0)
            return got < 0 && isLater(errno);
        received.append(part, static_cast<std::size_t>(got));
    }
    return 1;
}

}  // namespace pavane
