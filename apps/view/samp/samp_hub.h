#pragma once

#include "apps/view/samp/local_http.h"
#include "apps/view/samp/xml_rpc.h"

#include <string>
#include <vector>

namespace pavane
{

/// How a hub is reached: what its lock file says.
struct SampLock {
    std::string url, secret;
};

/// The lock file that the environment names: that of SAMP_HUB, else ~/.samp. 0 with `error`, a
/// line, when SAMP_HUB names none on this machine.
int sampLockFile(const std::string& variable, const std::string& home, std::string& file,
                 std::string& error);
/// Reads it; one that belongs to somebody else is refused. 0 with `error`, a line.
int readSampLock(const std::string& file, SampLock& lock, std::string& error);

/// A hub of the standard profile, as a registered program sees it. Every call waits some seconds at
/// most; 0 with `error`, a line.
class SampHub
{
public:
    static constexpr int patience = 5000;  ///< ms

    /// Registers.
    int enter(const SampLock& lock, std::string& error);
    /// As one that is registered already.
    int enterAs(const std::string& url, const std::string& key, std::string& error);
    /// Says that calls come to this URL, and which messages are wanted.
    int subscribe(const std::string& callback, const std::vector<std::string>& types,
                  std::string& error);
    int notifyAll(const std::string& type, const RpcValue& parameters, std::string& error);
    /// Answers a call; a failure has `why` and no result.
    int reply(const std::string& message, int isDone, const RpcValue& result,
              const std::string& why, std::string& error);
    int ping(std::string& error);
    void leave();

    const std::string& url() const { return url_; }
    const std::string& key() const { return key_; }

private:
    int call(const std::string& method, std::vector<RpcValue> arguments, RpcValue& answer,
             std::string& error);
    std::string url_, key_;
    HttpPlace place_;
};

/// The result of an answer that could be given.
RpcValue sampAnswer(int isDone, const RpcValue& result, const std::string& why);
/// As SAMP has texts: printable ASCII, ends of lines and tabs; '?' for the rest.
std::string sampText(std::string_view text);

}  // namespace pavane
