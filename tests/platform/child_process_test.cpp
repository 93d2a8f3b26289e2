#include "posix/ChildProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace pavane
{

namespace
{

using Texts = std::vector<std::string>;

/// Whether the process is there and is more than what its parent has not asked for yet.
int isAlive(const std::string& process)
{
    std::string name;
    std::string state;
    std::ifstream(("/proc/" + process + "/stat").c_str()) >> name >> name >> state;
    return !state.empty() && state != "Z";
}

template <class Condition>
int becomes(const Condition& condition)
{
    for (int i = 0; i < 1000; ++i) {
        if (condition())
            return 1;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return 0;
}

}  // namespace

TEST(ChildProcess, OutputErrorsAndStatusAreThoseOfTheProgram)
{
    const int open = ::open("/", O_RDONLY);  // without close-on-exec: not for others all the same
    const std::string hundred(100, 'y');
    struct Case {
        Texts arguments;
        int status;
        std::string output, errors;
    };
    const Case cases[] = {
        {{"printf", "%s|", "a b", "$(id)", "'\"", "-n", ""}, 0, "a b|$(id)|'\"|-n||", ""},
        {{"sh", "-c", "echo out; echo err >&2; exit 7"}, 7, "out\n", "err\n"},
        {{"sh", "-c", "kill -9 $$"}, -1, "", ""},
        {{"sh", "-c", "kill -PIPE $$; echo alive"}, -1, "", ""},
        {{"sh", "-c", "echo $SET $HOME; cat; ls /proc/self/fd | wc -l"}, 0, "on there\n4\n", ""},
        {{"sh", "-c", "yes | tr -d '\\n' | head -c 3000000"}, 0, hundred, ""},
    };
    // a host that does not care for its children, nor for pipes
    for (const auto care : {SIG_DFL, SIG_IGN}) {
        (void)std::signal(SIGCHLD, care);
        (void)std::signal(SIGPIPE, care);
        for (const Case& c : cases) {
            ChildProcess program;
            std::string error;
            ASSERT_TRUE(program.start(c.arguments, error, {20000, 100}, {"SET=on", "HOME=there"}));
            ASSERT_TRUE(program.wait(30000));
            EXPECT_EQ(program.exitStatus(), c.status) << c.arguments.back();
            EXPECT_EQ(program.output(), c.output);
            EXPECT_EQ(program.errors(), c.errors);
            EXPECT_FALSE(program.isLate());
        }
        EXPECT_EQ(waitpid(-1, nullptr, __WALL | WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
    }
    (void)std::signal(SIGCHLD, SIG_DFL);
    (void)std::signal(SIGPIPE, SIG_DFL);
    (void)close(open);
}

TEST(ChildProcess, WhatCannotBeStartedIsTold)
{
    for (const Texts& arguments :
         {Texts{}, Texts{""}, Texts{"no-such-program"}, Texts{"/etc/passwd"}, Texts{"/"},
          Texts{"echo", std::string("a\0b", 3)}, Texts{"echo", std::string(10000000, 'x')}}) {
        ChildProcess program;
        std::string error;
        EXPECT_FALSE(program.start(arguments, error));
        EXPECT_NE(error, "");
        EXPECT_TRUE(program.poll());
        EXPECT_EQ(program.exitStatus(), -1);
    }
}

TEST(ChildProcess, TimeAndStopEndTheWholeGroup)
{
    for (const int limit : {300, 0}) {
        ChildProcess program;
        std::string error;
        ASSERT_TRUE(program.start({"sh", "-c", "sleep 100 & echo $!; sleep 100"}, error, {limit}));
        ASSERT_TRUE(becomes([&] { return program.poll() || program.output().ends_with('\n'); }));
        const std::string sleeper = program.output().substr(0, program.output().find('\n'));
        if (limit) {
            EXPECT_TRUE(program.wait(30000));
            EXPECT_TRUE(program.isLate());
        } else {
            EXPECT_FALSE(program.poll());
            program.stop();
        }
        EXPECT_EQ(program.exitStatus(), -1);
        EXPECT_TRUE(becomes([&] { return !isAlive(sleeper); }));
    }
}

TEST(ChildProcess, BoundProgramEndsWithItsHost)
{
    // a copy of this process is the host; the sleepers are the program and one of its own
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const pid_t host = fork();
    if (host == 0) {
        ChildProcess program;
        std::string error;
        (void)program.start({"sh", "-c", "sleep 100 & echo $$ $!; sleep 100"}, error, {0, 100, 1});
        while (!program.output().ends_with('\n'))
            (void)program.poll();
        [[maybe_unused]] const auto count =
            write(ends[1], program.output().data(), program.output().size());
        for (;;)
            (void)pause();
    }
    std::array<char, 100> text{};
    ASSERT_GT(read(ends[0], text.data(), text.size() - 1), 0);
    std::string first, second;
    std::istringstream(text.data()) >> first >> second;
    EXPECT_TRUE(isAlive(first) && isAlive(second));
    (void)kill(host, SIGKILL);
    (void)waitpid(host, nullptr, 0);
    EXPECT_TRUE(becomes([&] { return !isAlive(first) && !isAlive(second); }));
    for (const int end : ends)
        (void)close(end);
}

TEST(ChildProcess, ReleasedProgramRunsOn)
{
    const std::string file = testing::TempDir() + "released-" + std::to_string(getpid());
    ChildProcess program;
    std::string error;
    ASSERT_TRUE(program.start({"sh", "-c", "sleep 0.2; echo x; touch " + file}, error, {100, 0}));
    program.release();
    EXPECT_EQ(waitpid(-1, nullptr, __WALL | WNOHANG), -1);
    EXPECT_TRUE(becomes([&] { return std::filesystem::remove(file); }));
}

}  // namespace pavane
