#include "posix/ChildProcess.h"

#include "posix/plain_file.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace pavane
{

namespace
{

/// Bytes that one poll takes of a stream: a program that writes for ever does not hold it.
constexpr std::size_t pollBytes = 1u << 18u;
/// Pause between looks at a program that is waited for.
constexpr int pauseMilliseconds = 10;
/// Where the keeper has its own two descriptors; the program's are 0 to 2.
constexpr int controlAt = 3;
constexpr int reportAt = 4;

/// The keeper's first message: the program, or why there is none; then how the program ended.
struct Started {
    pid_t program;
    int fault;
};
struct Ended {
    int code;  ///< CLD_EXITED ...
    int status;
};

void closeEnd(int& end)
{
    if (end >= 0)
        (void)close(end);
    end = -1;
}

/// Moves both ends above the keeper's own descriptors, so that none is in another's way.
int moveUp(const std::array<int, 2>& ends, int& first, int& second)
{
    first = fcntl(ends[0], F_DUPFD_CLOEXEC, reportAt + 1);
    second = fcntl(ends[1], F_DUPFD_CLOEXEC, reportAt + 1);
    (void)close(ends[0]);
    (void)close(ends[1]);
    return first >= 0 && second >= 0;
}

int openPipe(int& reading, int& writing)
{
    std::array<int, 2> ends{-1, -1};
    return pipe2(ends.data(), O_CLOEXEC) == 0 && moveUp(ends, reading, writing);
}

/// A socket rather than a pipe: it is written without SIGPIPE, and a word is heard where the end
/// of the connection is not, while a copy of this process made elsewhere holds it open.
int openControl(int& theirs, int& ours)
{
    std::array<int, 2> ends{-1, -1};
    return socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0 &&
           moveUp(ends, theirs, ours);
}

enum class Report { none, message, broken };

template <class Message>
Report readMessage(int from, Message& message)
{
    ssize_t count = 0;
    do
        count = read(from, &message, sizeof message);
    while (count < 0 && errno == EINTR);
    return count == static_cast<ssize_t>(sizeof message) ? Report::message
           : count < 0                                   ? Report::none
                                                         : Report::broken;
}

template <class Message>
void writeMessage(const Message& message)
{
    // shorter than a pipe's buffer, so it goes as a whole or not at all
    [[maybe_unused]] const ssize_t count = write(reportAt, &message, sizeof message);
}

/// The program's own settings over those of this one, for execve.
std::vector<std::string> environmentWith(const std::vector<std::string>& settings)
{
    std::vector<std::string> all = settings;
    for (char** at = environ; at && *at; ++at) {
        const std::string setting = *at;
        const std::size_t name = setting.find('=') + 1;
        if (std::none_of(settings.begin(), settings.end(), [&](const std::string& own) {
                return name && own.compare(0, name, setting, 0, name) == 0;
            }))
            all.push_back(setting);
    }
    return all;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// From here to the next mark: what runs in the copy of a process that may have had other threads,
// so nothing but system calls.

void closeAllBeyond(int last)
{
#ifdef SYS_close_range
    if (syscall(SYS_close_range, static_cast<unsigned>(last + 1), ~0u, 0u) == 0)
        return;
#endif
    const long most = std::min<long>(sysconf(_SC_OPEN_MAX), 65536);
    for (int at = last + 1; at < most; ++at)
        (void)close(at);
}

void setSignalsToDefault()
{
    for (int signal = 1; signal < NSIG; ++signal)
        (void)::signal(signal, SIG_DFL);  // fails for those that have no other
}

/// Starts the program; the keeper goes on when it runs. 0: `fault` tells.
pid_t startProgram(const char* path, char* const* arguments, char* const* environment, int isBound,
                   volatile int& fault)
{
    const pid_t program = vfork();
    if (program != 0)
        return program;
    (void)setpgid(0, 0);
    // should somebody end the keeper
    if (isBound)
        (void)prctl(PR_SET_PDEATHSIG, SIGKILL);
    sigset_t none;
    (void)sigemptyset(&none);
    (void)sigprocmask(SIG_SETMASK, &none, nullptr);
    (void)execve(path, arguments, environment);
    fault = errno;
    _exit(127);
}

/// Waits for the end of this process or of the program, and ends the program's group after the
/// first. Where the system cannot wait for both it returns at once.
void waitForHost(pid_t program)
{
#ifdef SYS_pidfd_open
    const auto ofProgram = static_cast<int>(syscall(SYS_pidfd_open, program, 0));
    if (ofProgram < 0)
        return;
    std::array<pollfd, 2> ends{pollfd{controlAt, POLLIN, 0}, pollfd{ofProgram, POLLIN, 0}};
    while (!ends[0].revents && !ends[1].revents)
        if (::poll(ends.data(), ends.size(), -1) < 0 && errno != EINTR)
            break;
    if (!ends[1].revents)
        (void)kill(-program, SIGKILL);
    (void)close(ofProgram);
#else
    (void)program;
#endif
}

/// Waits for the program and keeps what is left of it until it is told to go, so that its number
/// is nobody else's while somebody may still end the group.
[[noreturn]] void keep(const char* path, char* const* arguments, char* const* environment,
                       const std::array<int, 4>& theirs, int isBound)
{
    const int nothing = open("/dev/null", O_RDWR);
    (void)dup2(nothing, 0);
    (void)dup2(theirs[0] >= 0 ? theirs[0] : nothing, 1);
    (void)dup2(theirs[1] >= 0 ? theirs[1] : nothing, 2);
    (void)dup2(theirs[2], controlAt);
    (void)dup2(theirs[3], reportAt);
    (void)fcntl(controlAt, F_SETFD, FD_CLOEXEC);
    (void)fcntl(reportAt, F_SETFD, FD_CLOEXEC);
    closeAllBeyond(reportAt);
    setSignalsToDefault();

    volatile int fault = 0;
    const pid_t program = startProgram(path, arguments, environment, isBound, fault);
    const int noFork = program < 0 ? errno : 0;
    writeMessage(Started{program, noFork ? noFork : fault});
    if (program <= 0 || fault)
        _exit(0);
    (void)close(1);
    (void)close(2);
    if (isBound)
        waitForHost(program);
    siginfo_t about{};
    while (waitid(P_PID, static_cast<id_t>(program), &about, WEXITED | WNOWAIT) != 0 &&
           errno == EINTR) {
    }
    writeMessage(Ended{about.si_code, about.si_status});
    char byte = 0;
    while (read(controlAt, &byte, 1) < 0 && errno == EINTR) {
    }
    (void)waitpid(program, nullptr, 0);
    _exit(0);
}

// The mark.

/// A copy of this process with every signal held back, told by no SIGCHLD and taken by no wait of
/// the host: a host that ignores its children would take the status away.
pid_t copyProcess()
{
    // all of its arguments are 0: no flags, and 0 for the signal of its end
    return static_cast<pid_t>(syscall(SYS_clone, 0L, 0L, 0L, 0L, 0L));
}

void waitFor(pid_t process)
{
    while (waitpid(process, nullptr, __WALL) < 0 && errno == EINTR) {
    }
}

}  // namespace

std::string programFile(const std::string& name)
{
    const auto canRun = [](const std::string& file) {
        struct stat about {
        };
        return stat(file.c_str(), &about) == 0 && S_ISREG(about.st_mode) &&
               access(file.c_str(), X_OK) == 0;
    };
    if (name.find('/') != std::string::npos)
        return canRun(name) ? name : std::string();
    const char* const path = std::getenv("PATH");
    const std::string folders = path ? path : "/usr/local/bin:/usr/bin:/bin";
    for (std::size_t at = 0; !name.empty() && at <= folders.size();) {
        const std::size_t end = std::min(folders.find(':', at), folders.size());
        const std::string folder = folders.substr(at, end - at);
        if (folder.starts_with('/') && canRun(folder + '/' + name))
            return folder + '/' + name;
        at = end + 1;
    }
    return {};
}

int ChildProcess::openPipes(std::array<int, 4>& theirs)
{
    theirs.fill(-1);
    const int wantsOutput = limits_.bytes > 0;
    int ok = openControl(theirs[2], control_) && openPipe(report_, theirs[3]);
    for (std::size_t i = 0; i < 2 && ok && wantsOutput; ++i) {
        ok = openPipe(streams_[i].end, theirs[i]) &&
             fcntl(streams_[i].end, F_SETFL, O_NONBLOCK) == 0;
    }
    return ok;
}

int ChildProcess::startKeeper(const char* path, char* const* arguments, char* const* environment,
                              const std::array<int, 4>& theirs)
{
    // held back in the copy too: the host's handlers are not for it
    sigset_t all;
    sigset_t before;
    (void)sigfillset(&all);
    (void)pthread_sigmask(SIG_SETMASK, &all, &before);
    keeper_ = copyProcess();
    if (keeper_ == 0)
        keep(path, arguments, environment, theirs, limits_.isBound);
    const int fault = errno;
    (void)pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = fault;
    return keeper_ > 0;
}

int ChildProcess::start(const std::vector<std::string>& arguments, std::string& error,
                        const ProcessLimits& limits, const std::vector<std::string>& settings)
{
    stop();
    streams_ = {};
    exitStatus_ = -1;
    late_ = 0;
    limits_ = limits;
    const std::string path = arguments.empty() ? std::string() : programFile(arguments[0]);
    if (path.empty()) {
        error = "is not installed";
        return 0;
    }
    const auto hasNul = [](const std::string& text) {
        return text.find('\0') != std::string::npos;
    };
    if (std::any_of(arguments.begin(), arguments.end(), hasNul)) {
        error = "cannot be given a text with a NUL in it";
        return 0;
    }
    std::vector<std::string> texts = arguments;
    std::vector<std::string> environment = environmentWith(settings);
    const std::vector<char*> textPointers = pointersTo(texts);
    const std::vector<char*> environmentPointers = pointersTo(environment);

    std::array<int, 4> theirs{};
    Started message{-1, 0};
    started_ = std::chrono::steady_clock::now();
    const int ok = openPipes(theirs) && startKeeper(path.c_str(), textPointers.data(),
                                                    environmentPointers.data(), theirs);
    if (!ok)
        message.fault = errno;
    for (int& end : theirs)
        closeEnd(end);
    if (ok && readMessage(report_, message) != Report::message)
        message.fault = EIO;
    program_ = message.program;
    if (message.fault) {
        program_ = -1;
        error = systemFault("cannot be started", message.fault);
        finish();
        return 0;
    }
    (void)fcntl(report_, F_SETFL, O_NONBLOCK);
    return 1;
}

void ChildProcess::take(Stream& stream) const
{
    std::array<char, 16384> some{};
    for (std::size_t taken = 0; stream.end >= 0 && taken < pollBytes;) {
        const ssize_t count = read(stream.end, some.data(), some.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        const auto bytes = static_cast<std::size_t>(count);
        taken += bytes;
        if (stream.text.size() < limits_.bytes)
            stream.text.append(some.data(), std::min(bytes, limits_.bytes - stream.text.size()));
    }
}

int ChildProcess::remaining() const
{
    using std::chrono::milliseconds;
    const auto gone =
        std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - started_);
    return static_cast<int>(std::max<std::int64_t>(limits_.milliseconds - gone.count(), 0));
}

int ChildProcess::poll()
{
    if (!isRunning())
        return 1;
    // asked before the streams are emptied: what it wrote before its end is there by now
    Ended ended{};
    const Report report = readMessage(report_, ended);
    for (Stream& stream : streams_)
        take(stream);
    if (report != Report::none) {
        exitStatus_ = report == Report::message && ended.code == CLD_EXITED ? ended.status : -1;
        finish();
    } else if (limits_.milliseconds > 0 && remaining() == 0) {
        late_ = 1;
        stop();
    }
    return !isRunning();
}

int ChildProcess::wait(int milliseconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (!poll() && std::chrono::steady_clock::now() < end) {
        // not for the streams: one whose last writer is gone is ready for ever
        pollfd report{report_, POLLIN, 0};
        (void)::poll(&report, 1, pauseMilliseconds);
    }
    return !isRunning();
}

void ChildProcess::stop()
{
    killGroup();
    finish();
}

void ChildProcess::terminate() const
{
    if (program_ > 0 && isRunning())
        (void)kill(-program_, SIGTERM);
}

void ChildProcess::killGroup() const
{
    // the keeper holds the number of the group until it is told to go
    if (program_ > 0 && isRunning())
        (void)kill(-program_, SIGKILL);
}

void ChildProcess::release()
{
    if (isRunning())
        (void)kill(keeper_, SIGKILL);
    finish();
}

void ChildProcess::finish()
{
    if (keeper_ > 0)
        (void)send(control_, "", 1, MSG_NOSIGNAL);
    closeEnd(control_);
    if (keeper_ > 0)
        waitFor(keeper_);
    keeper_ = program_ = -1;
    closeEnd(report_);
    for (Stream& stream : streams_)
        closeEnd(stream.end);
}

}  // namespace pavane
