#include "platform/picture.h"
#include "platform/platform.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <QApplication>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace pavane
{

namespace
{

/// What a start without an application object of the host says; "" when it succeeds.
std::string start(PlatformUse use)
{
    CString why;
    char name[] = "host";
    char* arguments[] = {name, nullptr};
    const int isStarted = InitPlatform(1, arguments, use, why);
    return isStarted ? "" : why;
}

/// Cells of a picture with text in it.
std::vector<std::uint32_t> drawn()
{
    CPicture picture(120, 40);
    picture.dc()->TextOut(5, 5, "18h 36m");
    return std::vector<std::uint32_t>(picture.row(0), picture.row(0) + 120 * 40);
}

/// The place of an X display, under a number of its own, at which nobody listens.
class DeafDisplay
{
public:
    DeafDisplay() : number_(30000 + getpid() % 20000), socket_(socket(AF_UNIX, SOCK_STREAM, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const std::string path = "/tmp/.X11-unix/X" + std::to_string(number_);
        std::copy(path.begin(), path.end(), address.sun_path + 1);
        EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address),
                       static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + path.size())),
                  0);
    }
    DeafDisplay(const DeafDisplay&) = delete;
    DeafDisplay& operator=(const DeafDisplay&) = delete;
    ~DeafDisplay() { close(socket_); }
    std::string name() const { return ':' + std::to_string(number_); }

private:
    int number_;
    int socket_;
};

/// Runs `body` in a child, which starts without a toolkit, and prints what it returns.
template <typename Body>
void expectOf(const Body& body, const std::string& expected)
{
    EXPECT_EXIT(
        {
            const std::string got = body();
            std::fprintf(stderr, "%s\n", got.c_str());
            std::_Exit(got == expected ? 0 : 1);
        },
        testing::ExitedWithCode(0), "")
        << "not: " << expected;
}

}  // namespace

TEST(Start, SaysWhatIsMissingInsteadOfEndingTheProcess)
{
    using Environment = std::map<std::string, std::string>;
    const struct {
        Environment environment;
        PlatformUse use;
        std::string expected;
    } cases[] = {
        {{}, PlatformUse::pictures, ""},
        {{{"DISPLAY", ":64000"}}, PlatformUse::pictures, ""},
        {{}, PlatformUse::windows, "There is no display to show windows on"},
        {{{"DISPLAY", ":58999"}}, PlatformUse::windows, "The display :58999 does not answer"},
        {{{"DISPLAY", "no.such.host.invalid:0"}},
         PlatformUse::windows,
         "The display no.such.host.invalid:0 does not answer"},
        {{{"DISPLAY", ":1x"}}, PlatformUse::windows, "The display :1x does not answer"},
        {{{"DISPLAY", ":99999999999"}},
         PlatformUse::windows,
         "The display :99999999999 does not answer"},
        {{{"QT_QPA_PLATFORM", "offscreen"}}, PlatformUse::windows, ""},
        {{{"QT_QPA_PLATFORM", "xcb;minimal"}}, PlatformUse::windows, ""},
        {{{"QT_QPA_PLATFORM", "no/such"}},
         PlatformUse::pictures,
         "The platform no/such is not installed (QT_QPA_PLATFORM=no/such)"},
        {{{"QT_QPA_PLATFORM", "xcb"}},
         PlatformUse::pictures,
         "There is no display to show windows on (QT_QPA_PLATFORM=xcb)"},
        {{{"QT_QPA_PLATFORM", "linuxfb:fb=/dev/no"}},
         PlatformUse::windows,
         "The platform linuxfb can end the program: a host that wants it makes the application "
         "object itself (QT_QPA_PLATFORM=linuxfb:fb=/dev/no)"},
    };
    for (const auto& c : cases)
        expectOf(
            [&] {
                for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
                    unsetenv(name);
                for (const auto& [name, value] : c.environment)
                    setenv(name.c_str(), value.c_str(), 1);
                const std::string before = std::getenv("QT_QPA_PLATFORM") ? "set" : "";
                std::string why = start(c.use);
                // children of the host have the environment that it had
                if (before != (std::getenv("QT_QPA_PLATFORM") ? "set" : ""))
                    why = "the environment is another";
                return why;
            },
            c.expected);
    const DeafDisplay deaf;
    expectOf(
        [&] {
            unsetenv("QT_QPA_PLATFORM");
            setenv("DISPLAY", deaf.name().c_str(), 1);
            return start(PlatformUse::windows);
        },
        "The display " + deaf.name() + " does not answer");
}

TEST(Start, StandsBesideTheApplicationObjectOfTheHost)
{
    int count = 1;
    char name[] = "host";
    char* arguments[] = {name, nullptr};
    expectOf(
        [&] {
            const QCoreApplication host(count, arguments);
            return start(PlatformUse::pictures);
        },
        "The program's application object is a QCoreApplication, which has no fonts");
    expectOf(
        [&] {
            const QGuiApplication host(count, arguments);
            const std::string why = start(PlatformUse::windows);
            return start(PlatformUse::pictures) + why;
        },
        "The program's application object is a QGuiApplication, which has no windows");
    expectOf(
        [&] {
            const std::string none = start(PlatformUse::pictures);
            return none + start(PlatformUse::windows);
        },
        "The platform runs for pictures: end it with ShutdownPlatform before windows");
    expectOf(
        [&] {
            const auto without = drawn();
            if (!start(PlatformUse::pictures).empty())
                return "does not start";
            const auto first = drawn();
            CPicture kept(10, 10);
            ShutdownPlatform();
            if (drawn() != without)
                return "text is drawn behind the end";
            {
                const QApplication host(count, arguments);
                if (!start(PlatformUse::windows).empty() || drawn() != first)
                    return "drawn otherwise under the application of the host";
                ShutdownPlatform();
                if (!start(PlatformUse::pictures).empty() || drawn() != first)
                    return "drawn otherwise when started again";
            }
            // the host's application object has ended the platform with itself
            if (drawn() != without || kept.row(9)[9] != 0xFFFFFF)
                return "not left as it was";
            return start(PlatformUse::pictures).empty() && drawn() == first ? "good"
                                                                            : "not a third time";
        },
        "good");
}

}  // namespace pavane
