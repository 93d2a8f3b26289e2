#include "apps/view/samp/local_http.h"

#include "tessel/value_text.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>

namespace pavane
{

namespace
{

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::size_t mostHead = std::size_t{16} * 1024, mostBody = std::size_t{1024} * 1024,
                      mostAnswer = std::size_t{16} * 1024 * 1024, pieceSize = 16384;
constexpr std::size_t mostVisitors = 8;
constexpr auto visit = milliseconds(5000);

std::string lowered(std::string_view text)
{
    std::string made(text);
    for (char& c : made)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return made;
}

/// A head with its blank line; npos while there is none.
std::size_t endOfHead(const std::string& text)
{
    const std::size_t end = text.find("\r\n\r\n");
    return end == std::string::npos ? end : end + 4;
}

/// The length that a head tells: -1 for none, -2 for one that is none.
long long lengthIn(const std::string& head)
{
    const std::string low = lowered(head);
    const std::size_t at = low.find("\r\ncontent-length:");
    if (at == std::string::npos)
        return -1;
    const char* const end = low.data() + low.size();
    const char* from = low.data() + at + std::strlen("\r\ncontent-length:");
    while (from < end && *from == ' ')
        ++from;
    long long length = 0;
    const auto read = std::from_chars(from, end, length);
    return read.ec == std::errc() && read.ptr != from && *read.ptr == '\r' && length >= 0 ? length
                                                                                          : -2;
}

int waitFor(int socket, short what, Clock::time_point end)
{
    const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now()).count();
    pollfd one{socket, what, 0};
    return left > 0 && poll(&one, 1, static_cast<int>(std::min<long long>(left, 60000))) > 0;
}

int isAgain() { return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR; }

/// Owns a socket for a while.
struct Socket {
    explicit Socket(int number) : at(number) {}
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket()
    {
        if (at >= 0)
            (void)close(at);
    }
    int at;
};

int connectTo(const HttpPlace& place, Clock::time_point end, Socket& socket)
{
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(place.host.c_str(), place.port.c_str(), &hints, &found) != 0)
        return 0;
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> list(found, &freeaddrinfo);
    for (const addrinfo* each = found; each; each = each->ai_next) {
        if (socket.at >= 0)
            (void)close(socket.at);
        socket.at = ::socket(each->ai_family, each->ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC,
                             each->ai_protocol);
        if (socket.at < 0)
            continue;
        int fault = 0;
        socklen_t size = sizeof fault;
        if (connect(socket.at, each->ai_addr, each->ai_addrlen) == 0 ||
            (errno == EINPROGRESS && waitFor(socket.at, POLLOUT, end) &&
             getsockopt(socket.at, SOL_SOCKET, SO_ERROR, &fault, &size) == 0 && fault == 0))
            return 1;
    }
    return 0;
}

int sendAll(int socket, const std::string& text, Clock::time_point end)
{
    for (std::size_t sent = 0; sent < text.size();) {
        const ssize_t n = send(socket, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
        if (n > 0)
            sent += static_cast<std::size_t>(n);
        else if (!isAgain() || !waitFor(socket, POLLOUT, end))
            return 0;
    }
    return 1;
}

/// Until the other side has ended, or the length that it told is there.
int receiveAll(int socket, std::string& text, Clock::time_point end)
{
    char piece[pieceSize];
    while (waitFor(socket, POLLIN, end)) {
        const ssize_t n = recv(socket, piece, sizeof piece, 0);
        if (n < 0 && isAgain())
            continue;
        if (n <= 0)
            return n == 0;
        text.append(piece, static_cast<std::size_t>(n));
        if (text.size() > mostAnswer)
            return 0;
        const std::size_t head = endOfHead(text);
        const long long length = head == std::string::npos ? -1 : lengthIn(text.substr(0, head));
        if (length >= 0 && text.size() - head >= static_cast<std::size_t>(length))
            return 1;
    }
    return 0;
}

}  // namespace

int readHttpPlace(const std::string& url, HttpPlace& place)
{
    constexpr std::string_view scheme = "http://";
    if (!lowered(url.substr(0, scheme.size())).starts_with(scheme))
        return 0;
    for (const char c : url)
        if (static_cast<unsigned char>(c) <= ' ' || static_cast<unsigned char>(c) >= 127)
            return 0;
    const std::size_t slash = std::min(url.find('/', scheme.size()), url.size());
    const std::string host = url.substr(scheme.size(), slash - scheme.size());
    const std::size_t colon = host.rfind(':');
    const int hasPort = colon != std::string::npos && host.find(']', colon) == std::string::npos;
    place.host = host.substr(0, hasPort ? colon : host.size());
    place.port = hasPort ? host.substr(colon + 1) : "80";
    place.path = slash < url.size() ? url.substr(slash) : "/";
    if (place.host.size() > 2 && place.host.front() == '[' && place.host.back() == ']')
        place.host = place.host.substr(1, place.host.size() - 2);
    int number = 0;
    return !place.host.empty() && place.host.find('@') == std::string::npos &&
           stoval(place.port, number) && number > 0 && number < 65536;
}

int postHttp(const HttpPlace& place, const std::string& body, int milliseconds, std::string& answer,
             std::string& error)
{
    const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
    Socket socket(-1);
    std::string text;
    const std::string head =
        "POST " + place.path + " HTTP/1.0\r\nHost: " + place.host + ':' + place.port +
        "\r\nContent-Type: text/xml\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    if (!connectTo(place, end, socket)) {
        error = "does not answer";
        return 0;
    }
    if (!sendAll(socket.at, head + body, end) || !receiveAll(socket.at, text, end)) {
        error = "does not answer in time";
        return 0;
    }
    const std::size_t from = endOfHead(text);
    const std::size_t blank = text.find(' ');
    if (from == std::string::npos || !text.starts_with("HTTP/") || blank == std::string::npos ||
        text.compare(blank, 5, " 200 ") != 0) {
        error = "answers no page";
        return 0;
    }
    answer = text.substr(from);
    return 1;
}

LocalHttpServer::~LocalHttpServer()
{
    for (const Visitor& visitor : visitors_)
        (void)close(visitor.socket);
    if (listener_ >= 0)
        (void)close(listener_);
}

int LocalHttpServer::open(std::string& error)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    if (listener_ < 0 || bind(listener_, any, size) != 0 ||
        listen(listener_, static_cast<int>(mostVisitors)) != 0 ||
        getsockname(listener_, any, &size) != 0) {
        error = std::string("gets no port of this machine: ") + std::strerror(errno);
        return 0;
    }
    port_ = ntohs(address.sin_port);
    return 1;
}

int LocalHttpServer::isBusy() const
{
    return std::any_of(visitors_.begin(), visitors_.end(),
                       [](const Visitor& visitor) { return !visitor.out.empty(); });
}

void LocalHttpServer::accept()
{
    const int socket = accept4(listener_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (socket < 0)
        return;
    if (visitors_.size() == mostVisitors)
        return (void)close(socket);
    visitors_.push_back({socket, Clock::now() + visit, {}, {}, 0});
}

/// Goes on with a visit as far as that is possible now; 0 when it is over.
int LocalHttpServer::serve(Visitor& visitor, const Answer& answer) const
{
    char piece[pieceSize];
    while (visitor.out.empty()) {
        const ssize_t n = recv(visitor.socket, piece, sizeof piece, 0);
        if (n <= 0)
            return n < 0 && isAgain();
        visitor.in.append(piece, static_cast<std::size_t>(n));
        const std::size_t head = endOfHead(visitor.in);
        if (head == std::string::npos) {
            if (visitor.in.size() > mostHead)
                return 0;
            continue;
        }
        const long long length = lengthIn(visitor.in.substr(0, head));
        if (!visitor.in.starts_with("POST ") || head > mostHead || length < 0 ||
            static_cast<unsigned long long>(length) > mostBody) {
            visitor.out = "HTTP/1.0 400 Bad Request\r\nContent-Length: 0\r\n\r\n";
            break;
        }
        if (visitor.in.size() - head < static_cast<std::size_t>(length))
            continue;
        const std::string body = answer(visitor.in.substr(head, static_cast<std::size_t>(length)));
        visitor.out = "HTTP/1.0 200 OK\r\nContent-Type: text/xml\r\nConnection: close\r\n"
                      "Content-Length: " +
                      std::to_string(body.size()) + "\r\n\r\n" + body;
    }
    while (visitor.sent < visitor.out.size()) {
        const ssize_t n = send(visitor.socket, visitor.out.data() + visitor.sent,
                               visitor.out.size() - visitor.sent, MSG_NOSIGNAL);
        if (n <= 0)
            return n < 0 && isAgain();
        visitor.sent += static_cast<std::size_t>(n);
    }
    return 0;
}

void LocalHttpServer::turn(int milliseconds, int wake, const Answer& answer)
{
    std::vector<pollfd> ends{{listener_, POLLIN, 0}, {wake, POLLIN, 0}};
    for (const Visitor& visitor : visitors_)
        ends.push_back(
            {visitor.socket, static_cast<short>(visitor.out.empty() ? POLLIN : POLLOUT), 0});
    if (!visitors_.empty())
        milliseconds = std::min(milliseconds, 500);  // to see that a visit has lasted too long
    if (poll(ends.data(), ends.size(), milliseconds) < 0)
        return;
    const auto now = Clock::now();
    for (std::size_t i = visitors_.size(); i-- > 0;) {
        Visitor& visitor = visitors_[i];
        const int goesOn = !ends[i + 2].revents || serve(visitor, answer);
        if (goesOn && now < visitor.end)
            continue;
        (void)close(visitor.socket);
        visitors_.erase(visitors_.begin() + static_cast<std::ptrdiff_t>(i));
    }
    if (ends[0].revents)
        accept();
}

}  // namespace pavane
