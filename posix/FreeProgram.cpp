#include "posix/FreeProgram.h"

#include "posix/plain_file.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace pavane
{

namespace
{

/// Programs that nobody watches any more; they leave their entry in the system's table when they
/// end, until somebody asks.
std::vector<pid_t>& released()
{
    static auto* const pids = new std::vector<pid_t>;
    return *pids;
}

void forgetEnded()
{
    std::erase_if(released(), [](pid_t pid) { return waitpid(pid, nullptr, WNOHANG) != 0; });
}

/// How such a program begins: no files, no signals held back or ignored, a session of its own.
class Beginning
{
public:
    Beginning()
    {
        posix_spawn_file_actions_init(&actions_);
        posix_spawnattr_init(&attributes_);
        int failed = posix_spawn_file_actions_addopen(&actions_, 0, "/dev/null", O_RDONLY, 0);
        for (const int out : {1, 2})
            failed |= posix_spawn_file_actions_addopen(&actions_, out, "/dev/null", O_WRONLY, 0);
        failed |= posix_spawn_file_actions_addclosefrom_np(&actions_, 3);
        sigset_t signals;
        sigemptyset(&signals);
        failed |= posix_spawnattr_setsigmask(&attributes_, &signals);
        sigfillset(&signals);
        failed |= posix_spawnattr_setsigdefault(&attributes_, &signals);
        failed |= posix_spawnattr_setflags(
            &attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
        isReady_ = failed == 0;
    }
    Beginning(const Beginning&) = delete;
    Beginning& operator=(const Beginning&) = delete;
    ~Beginning()
    {
        posix_spawn_file_actions_destroy(&actions_);
        posix_spawnattr_destroy(&attributes_);
    }
    /// 0 or the system's error.
    int run(pid_t& pid, char* const* arguments) const
    {
        return isReady_
                   ? posix_spawnp(&pid, arguments[0], &actions_, &attributes_, arguments, environ)
                   : ENOMEM;
    }

private:
    posix_spawn_file_actions_t actions_;
    posix_spawnattr_t attributes_;
    bool isReady_ = false;
};

}  // namespace

int FreeProgram::start(const std::vector<std::string>& arguments, std::string& fault)
{
    release();
    forgetEnded();
    fault.clear();
    if (arguments.empty() || arguments.front().empty()) {
        fault = "has no name";
        return 0;
    }
    std::vector<char*> list;
    for (const std::string& argument : arguments)
        list.push_back(const_cast<char*>(argument.c_str()));  // NOLINT: the call changes none
    list.push_back(nullptr);
    pid_t pid = -1;
    if (const int error = Beginning().run(pid, list.data())) {
        fault = systemFault("cannot be started", error);
        return 0;
    }
    pid_ = pid;
    status_ = -1;
    return 1;
}

int FreeProgram::hasEnded()
{
    if (pid_ < 0)
        return 1;
    int told = 0;
    const pid_t ended = waitpid(pid_, &told, WNOHANG);
    if (ended == 0)
        return 0;
    // a host that takes no notice of its children hears no status; the start was well
    status_ = ended < 0 ? 0 : WIFEXITED(told) ? WEXITSTATUS(told) : -1;
    pid_ = -1;
    return 1;
}

void FreeProgram::release()
{
    if (!hasEnded())
        released().push_back(pid_);
    pid_ = -1;
}

}  // namespace pavane
