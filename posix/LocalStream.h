#pragma once

#include <string>
#include <string_view>

namespace pavane
{

/// A stream to a socket of this machine. No call waits: what cannot go on now goes on with a later
/// `exchange`.
class LocalStream
{
public:
    LocalStream() = default;
    LocalStream(const LocalStream&) = delete;
    LocalStream& operator=(const LocalStream&) = delete;
    ~LocalStream() { close(); }

    /// Begins to connect to a socket by its path, or by its abstract name after a NUL. Non-zero
    /// unless there is none.
    int open(std::string_view name);
    void close();
    /// Puts bytes behind those that wait to go out.
    void send(std::string_view bytes) { outgoing_ += bytes; }
    /// Moves what can be moved both ways; 0 when the stream is broken or the other side has ended
    /// it. What has come is appended to `received`.
    int exchange();
    std::string received;

private:
    int connect();

    int socket_ = -1;
    bool isConnected_ = false;
    std::string name_;
    std::string outgoing_;
};

}  // namespace pavane
