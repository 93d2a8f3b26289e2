#pragma once

#include "pavane/imaging/StudyJob.h"
#include "posix/ChildProcess.h"
#include "tessel/folders.h"
#include "tessel/processes.h"
#include "tests/imaging/ScriptedEngine.h"

#include <filesystem>
#include <string>
#include <unistd.h>

namespace pavane
{

/// A folder that goes with the test; in memory where there is such a place, as studies sync a lot.
class TestFolder
{
public:
    explicit TestFolder(const std::string& name)
    {
        const std::string base = std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : "/tmp";
        path_ = base + "/pavane-" + name + "-" + std::to_string(getpid());
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    ~TestFolder() { std::filesystem::remove_all(path_); }
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

/// Runs a job with real children; `stopAfter` lines it is stopped (-1: never).
inline JobTurn runJob(StudyJob& job, int stopAfter = -1)
{
    JobCommand command;
    JobTurn turn = JobTurn::start;
    int lines = 0;
    while ((turn = job.next(command)) == JobTurn::start || turn == JobTurn::more) {
        if (turn == JobTurn::more)
            continue;
        ChildProcess child;
        std::string error;
        ProcessLimits limits;
        limits.isBound = 1;
        if (!child.start(command.words, error, limits, command.settings)) {
            job.ended(-1, error);
            continue;
        }
        job.started(child.id(), processStartTime(child.id()));
        std::string rest[2];
        int hasStopped = 0;
        const auto take = [&] {
            for (int stream = 0; stream < 2; ++stream) {
                std::string& text = rest[stream];
                text += child.takeText(stream);
                for (std::size_t end = 0; (end = text.find('\n')) != std::string::npos;
                     text.erase(0, end + 1)) {
                    job.line(text.substr(0, end), stream);
                    if (lines++ == stopAfter && !hasStopped) {
                        job.stop();
                        child.terminate();
                        hasStopped = 1;
                    }
                }
            }
        };
        while (!child.wait(5))
            take();
        take();
        job.ended(child.exitStatus());
    }
    return turn;
}

/// Runs a job with the scripted engine in this process; child number `at`, or with -1 that which
/// cleans, does mischief. Of a job in slices `stopsAt` says in which slice between children it is
/// stopped (-1: in none).
inline JobTurn runScriptedJob(StudyJob& job, Mischief mischief = Mischief::none, int at = 0,
                              int* children = nullptr, int stopsAt = -1)
{
    JobCommand command;
    JobTurn turn = JobTurn::start;
    int n = -1;
    while ((turn = job.next(command)) == JobTurn::start || turn == JobTurn::more) {
        if (turn == JobTurn::more) {
            if (stopsAt-- == 0)
                job.stop();
            continue;
        }
        ++n;
        // env -C FOLDER words...
        const std::vector<std::string> words(command.words.begin() + 3, command.words.end());
        job.started(getpid(), processStartTime(getpid()));
        const int status =
            runScripted(words, command.words[2],
                        n == at || (at < 0 && words[1] == "round") ? mischief : Mischief::none,
                        [&job](const std::string& line) { job.line(line); });
        job.ended(status);
        if (children)
            *children = n + 1;
    }
    return turn;
}

}  // namespace pavane
