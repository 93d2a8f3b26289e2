#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace pavane
{

/// "http://host:port/path" taken apart.
struct HttpPlace {
    std::string host, port, path;
};

/// 0 for anything else.
int readHttpPlace(const std::string& url, HttpPlace& place);

/// Posts a text and takes the answer's body, in so many milliseconds altogether. Waits. 0 with
/// `error`, a clause without its subject: no answer in time, one of more than 16 MB, or of another
/// status than 200.
int postHttp(const HttpPlace& place, const std::string& body, int milliseconds, std::string& answer,
             std::string& error);

/// Answers posted texts on a port of 127.0.0.1, that the system chooses. Few connections at a time,
/// each of few seconds and of 1 MB at most: what is beyond is closed.
class LocalHttpServer
{
public:
    /// The body of the answer to a body.
    using Answer = std::function<std::string(const std::string&)>;

    LocalHttpServer() = default;
    LocalHttpServer(const LocalHttpServer&) = delete;
    LocalHttpServer& operator=(const LocalHttpServer&) = delete;
    ~LocalHttpServer();
    int open(std::string& error);
    int port() const { return port_; }
    /// Waits at most so long for something to do, and does it. `wake` is a descriptor that ends
    /// the waiting too; -1 for none.
    void turn(int milliseconds, int wake, const Answer& answer);
    /// Whether answers are still on their way.
    int isBusy() const;

private:
    using Clock = std::chrono::steady_clock;
    struct Visitor {
        int socket = -1;
        Clock::time_point end;
        std::string in, out;
        std::size_t sent = 0;
    };
    void accept();
    int serve(Visitor& visitor, const Answer& answer) const;

    int listener_ = -1;
    int port_ = 0;
    std::vector<Visitor> visitors_;
};

}  // namespace pavane
