#pragma once

#include <array>
#include <chrono>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace pavane
{

/// What a started program may take.
struct ProcessLimits {
    int milliseconds = 0;           ///< from its start until it is ended; 0: any time
    std::size_t bytes = 1u << 20u;  ///< kept of its output, and as many of its errors
    int isBound = 0;  ///< non-zero: its group is ended when this process ends, however it does
};

/// A program that runs beside this one: found on the PATH, given a list of arguments, never a
/// shell's line; nothing to read, its own process group, no descriptor of this program, signals as
/// at the start of a program. Nothing here waits but `wait` and, for the moment of its start,
/// `start`. It leaves no zombie and needs no SIGCHLD: what the host does about its children, or
/// waits for, does not matter.
class ChildProcess
{
public:
    ChildProcess() = default;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    /// Ends what still runs.
    ~ChildProcess() { stop(); }

    /// Starts arguments[0] with the rest; `settings`, "NAME=value" each, go above the environment.
    /// Ends what ran before. Non-zero on success, else `error` is a clause without its subject.
    int start(const std::vector<std::string>& arguments, std::string& error,
              const ProcessLimits& limits = {}, const std::vector<std::string>& settings = {});
    /// Takes what the program has written. Non-zero when it has ended, or none was started.
    int poll();
    /// The same, waiting for its end at most so long.
    int wait(int milliseconds);
    /// Ends the program and the rest of its group.
    void stop();
    /// Asks the group to end (SIGTERM); `poll` tells when it has.
    void terminate() const;
    /// Kills the group; `poll` tells when it is gone.
    void killGroup() const;
    /// Lets the program run on by itself; its output is lost.
    void release();

    int isRunning() const { return keeper_ > 0; }
    /// 0 to 255 of a program that ended by itself, else -1.
    int exitStatus() const { return exitStatus_; }
    /// Non-zero when it was ended for its time.
    int isLate() const { return late_; }
    /// What it has written until now; what is beyond the limit is lost.
    const std::string& output() const { return streams_[0].text; }
    const std::string& errors() const { return streams_[1].text; }
    /// Takes what has been written since the last time, of its output (0) or errors (1), so that
    /// the limit is one of what nobody has taken yet.
    std::string takeText(int stream) { return std::exchange(textOf(stream), {}); }

    // For those who wait for several things
    /// The program, leader of its group; -1 when none runs.
    pid_t id() const { return isRunning() ? program_ : -1; }
    /// Descriptors that have something to read when `poll` has something to do; those below 0 are
    /// none. They hold until `poll`, `stop` or a start.
    std::array<int, 3> descriptors() const { return {report_, streams_[0].end, streams_[1].end}; }

private:
    std::string& textOf(int stream) { return streams_[stream ? 1 : 0].text; }
    struct Stream {
        int end = -1;
        std::string text;
    };
    int openPipes(std::array<int, 4>& theirs);
    int startKeeper(const char* path, char* const* arguments, char* const* environment,
                    const std::array<int, 4>& theirs);
    void take(Stream& stream) const;
    int remaining() const;
    void finish();

    pid_t keeper_ = -1;   ///< a process that waits for the program and tells how it ended
    pid_t program_ = -1;  ///< leader of its group, a zombie at the least while the keeper lives
    int control_ = -1;    ///< the keeper goes when this is closed
    int report_ = -1;     ///< what the keeper tells
    std::array<Stream, 2> streams_;
    ProcessLimits limits_;
    std::chrono::steady_clock::time_point started_;
    int exitStatus_ = -1;
    int late_ = 0;
};

/// The file that a program's name stands for: itself with a '/' in it, else the first on the PATH
/// that can be run; "" for none.
std::string programFile(const std::string& name);

}  // namespace pavane
