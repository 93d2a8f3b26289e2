#include "platform/core/LineSplitter.h"
#include "platform/process.h"
#include "tests/platform/test_window.h"

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <unistd.h>

namespace
{

using namespace pavane;

constexpr unsigned newsMessage = WM_USER + 5;

/// Writes down what a program tells.
class Listener : public TestWindow
{
public:
    std::string heard;  ///< "line|" or "!error line|" each, then "=status"
    long long lines = 0;
    std::function<void(const ProcessNews&)> atNews;

    LRESULT WindowProc(unsigned message, WPARAM w, LPARAM l) override
    {
        if (message != newsMessage)
            return TestWindow::WindowProc(message, w, l);
        const ProcessNews& news = *reinterpret_cast<const ProcessNews*>(l);
        EXPECT_EQ(w, WPARAM{news.kind});
        ++lines;
        if (news.kind == ProcessNews::ended)
            heard.append("=").append(std::to_string(news.status));
        else if (heard.size() < 1000)
            heard.append(news.kind == ProcessNews::errorLine ? "!" : "")
                .append(news.text)
                .append("|");
        if (const auto run = atNews)
            run(news);
        return 0;
    }
};

template <class Condition>
int becomes(const Condition& condition)
{
    for (int i = 0; i < 2000; ++i) {
        settle();
        if (condition())
            return 1;
        usleep(5000);
    }
    return 0;
}

TEST(Process, ToldLinesAndEndComeAsMessages)
{
    struct Case {
        std::vector<CString> words;
        std::string heard;
    };
    const std::string longest(LineSplitter::longest, 'x');
    const Case cases[] = {
        {{"printf", "%s\n", "a b", "$(id)", "-n"}, "a b|$(id)|-n|=0"},
        {{"sh", "-c", "echo no end | tr -d '\\n'; exit 3"}, "no end|=3"},
        {{"sh", "-c", "printf 'dos\\r\\n\\n\\377\\n'"}, "dos||\xEF\xBF\xBD|=0"},
        {{"sh", "-c", "echo wrong >&2"}, "!wrong|=0"},
        {{"sh", "-c", "kill -9 $$"}, "=-1"},
        {{"sh", "-c", "echo $SETTING"}, "there|=0"},
    };
    for (const Case& c : cases) {
        Listener window;
        CProcess process;
        CString error;
        ASSERT_TRUE(
            process.Start({c.words, {"SETTING=there"}}, window.GetSafeHwnd(), newsMessage, error))
            << error;
        EXPECT_TRUE(window.heard.empty());
        EXPECT_GT(process.GetId(), 0);
        EXPECT_TRUE(becomes([&] { return window.heard.find('=') != std::string::npos; }));
        EXPECT_EQ(window.heard, c.heard);
        EXPECT_FALSE(process.IsRunning());
        EXPECT_EQ(process.GetId(), -1);
    }
    LineSplitter splitter;
    EXPECT_EQ(splitter.take(longest + "yz\n").size(), 2U) << "a line too long comes in pieces";
    EXPECT_EQ(splitter.take("half"), std::vector<std::string>());
    EXPECT_EQ(splitter.take(" and half\r\nrest"), std::vector<std::string>{"half and half"});
    EXPECT_EQ(splitter.rest(), std::vector<std::string>{"rest"});
    CProcess none;
    CString error;
    EXPECT_FALSE(none.Start({{"no-such-program"}, {}}, {}, newsMessage, error));
    EXPECT_EQ(error, "is not installed");
    none.Terminate();
    none.Kill();
}

TEST(Process, AFloodDoesNotHoldTheWindow)
{
    Listener window;
    CProcess process;
    CString error;
    ASSERT_TRUE(process.Start({{"yes", "flood"}, {}}, window.GetSafeHwnd(), newsMessage, error));
    ASSERT_TRUE(becomes([&] { return window.lines > 100000; }));
    const long long before = window.lines;
    process.Terminate();
    ASSERT_TRUE(becomes([&] { return window.heard.ends_with("=-1"); }));
    EXPECT_GE(window.lines, before);
}

TEST(Process, OneThatHearsNothingIsKilled)
{
    Listener window;
    CProcess process;
    CString error;
    ASSERT_TRUE(
        process.Start({{"sh", "-c", "trap '' TERM; echo ready; while :; do sleep 0.1; done"}, {}},
                      window.GetSafeHwnd(), newsMessage, error));
    ASSERT_TRUE(becomes([&] { return window.heard == "ready|"; }));
    process.Terminate(200);
    ASSERT_TRUE(becomes([&] { return window.heard == "ready|=-1"; }));
}

TEST(Process, MayGoWithItsWindowInAMessage)
{
    for (const int isWindowToo : {0, 1}) {
        auto window = std::make_unique<Listener>();
        auto process = std::make_unique<CProcess>();
        CString error;
        ASSERT_TRUE(process->Start({{"yes"}, {}}, window->GetSafeHwnd(), newsMessage, error));
        const int id = process->GetId();
        const long long began = ProcessStartTime(id);
        EXPECT_GT(began, 0);
        int isOver = 0;
        window->atNews = [&](const ProcessNews&) {
            if (isWindowToo)
                window->DestroyWindow();
            process.reset();
            isOver = 1;
        };
        ASSERT_TRUE(becomes([&] { return isOver; }));
        EXPECT_TRUE(becomes([&] { return ProcessStartTime(id) != began; }));
        settle();
        EXPECT_EQ(window->lines, 1);
    }
}

TEST(Process, MovesAndStartsAnew)
{
    Listener window;
    CProcess first;
    CString error;
    ASSERT_TRUE(first.Start({{"sleep", "100"}, {}}, window.GetSafeHwnd(), newsMessage, error));
    CProcess second = std::move(first);
    EXPECT_FALSE(first.IsRunning());
    EXPECT_TRUE(second.IsRunning());
    ASSERT_TRUE(second.Start({{"echo", "next"}, {}}, window.GetSafeHwnd(), newsMessage, error));
    EXPECT_TRUE(becomes([&] { return window.heard == "next|=0"; }));
}

}  // namespace
