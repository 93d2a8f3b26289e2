#include "platform/web_handler.h"

#include "platform/core/bus_message.h"
#include "platform/service_talk.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

using namespace pavane;
using Words = std::vector<CString>;

namespace
{

const std::string folder = std::string(std::getenv("TEST_TMPDIR")) + "/desktop";

/// A desktop of its own: files below `folder`, by name.
void makeDesktop(const std::map<std::string, std::string>& files)
{
    std::filesystem::remove_all(folder);
    for (const auto& [name, text] : files) {
        const std::filesystem::path path = folder + "/" + name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << text;
    }
    for (const auto& [name, value] : std::map<const char*, std::string>{
             {"XDG_CONFIG_HOME", folder + "/config"},
             {"XDG_CONFIG_DIRS", folder + "/etc"},
             {"XDG_DATA_HOME", folder + "/home"},
             {"XDG_DATA_DIRS", "relative:" + folder + "/share:" + folder + "/more"},
             {"XDG_CURRENT_DESKTOP", "Test:Other"}})
        setenv(name, value.c_str(), 1);
}

std::string entry(const std::string& lines)
{
    return "# made by a test\n[Desktop Entry]\nType=Application\nName=One\n" + lines +
           "\n[Desktop Action new]\nExec=wrong\n";
}

/// One of 'a' of the test's entries, by its command.
std::string list(const char* group, const char* ids)
{
    return std::string("[") + group + "]\nx-scheme-handler/http=" + ids + "\n";
}

}  // namespace

TEST(WebAddress, IsCheckedBeforeItIsOpened)
{
    struct Case {
        CString address, checked;
    } cases[] = {
        {"http://host/a?b=%20&c=$(id)%1;x", "http://host/a?b=%20&c=$(id)%1;x"},
        {"HTTPS://host", "HTTPS://host"},
        {"ftp://host/a b\"c'd`e", "ftp://host/a%20b%22c%27d%60e"},
        {"mailto:a@b", "mailto:a@b"},
        {"http://h\xC3\xA9/\xFF\xC3", "http://h\xC3\xA9/%FF%C3"},
        {"http://h/\xC2\xA0\xE2\x80\xA8\xEF\xBF\xBD", "http://h/%C2%A0%E2%80%A8\xEF\xBF\xBD"},
        {"http://" + CString(8185, 'x'), "http://" + CString(8185, 'x')},
        {"http://" + CString(8186, 'x'), ""},
        {"http://" + CString(1 << 20, 'x'), ""},
        {"http://h/\n", ""},
        {CString("http://h/\0", 10), ""},
        {"http://h/\xC2\x85", ""},
        {"http://h/\x7F", ""},
        {"", ""},
        {"http://", ""},
        {"http:host", ""},
        {" http://h", ""},
        {"host", ""},
        {"-x", ""},
        {"file:///etc/passwd", ""},
        {"javascript:alert(1)", ""}};
    for (const auto& [address, checked] : cases)
        EXPECT_EQ(CheckedWebAddress(address), checked) << address.substr(0, 40);
}

TEST(WebHandler, FillsItsCommandWithoutAShell)
{
    const CString at = "http://h/%1?%u";
    struct Case {
        const char* command;
        Words arguments;
    } cases[] = {
        {"run %u", {"run", at}},
        {"run %u %U %f", {"run", at}},
        {"run --url=%F -x", {"run", "--url=" + at, "-x"}},
        {"\"/a b/run\" \"\" \"\\\"\\$\\\\\" %u", {"/a b/run", "", "\"$\\", at}},
        {"run", {"run", at}},
        {"run %1 %1", {"run", at}},
        {"run %i %c %k 100%% %d %m %u", {"run", "--icon", "pic", "The name", "/e", "100%", at}},
        {"run $(id);`id` %u", {"run", "$(id);`id`", at}},
        {"run\t%u%u %", {"run", at, "%"}},
        {"", {}},
        {"  ", {}},
        {"run \"%u", {}},
        {"%u", {}}};
    for (const auto& [command, arguments] : cases) {
        WebHandler handler;
        handler.command = command;
        handler.icon = "pic";
        handler.name = "The name";
        handler.file = "/e";
        EXPECT_EQ(CommandArguments(handler, at), arguments) << command;
    }
    CString error;
    EXPECT_FALSE(StartProgram({}, error));
    EXPECT_FALSE(StartProgram({"/nowhere/at all", "x"}, error));
    EXPECT_NE(error, "");
}

TEST(WebHandler, IsFoundWhereTheDesktopRegistersIt)
{
    const std::string a = entry("Exec=a %u");
    const std::string b = entry("Exec=b");
    const std::string longLine = entry("Exec=a" + std::string(300'000, 'x'));
    struct Case {
        const char* name;
        std::map<std::string, std::string> files;
        std::string command;
    } cases[] = {
        {"nothing", {}, ""},
        {"user before system",
         {{"config/mimeapps.list", list("Default Applications", "a.desktop;")},
          {"etc/mimeapps.list", list("Default Applications", "b.desktop")},
          {"share/applications/a.desktop", a},
          {"share/applications/b.desktop", b}},
         "a %u"},
        {"desktop's list first",
         {{"config/test-mimeapps.list", list("Default Applications", "b.desktop")},
          {"config/mimeapps.list", list("Default Applications", "a.desktop")},
          {"more/applications/a.desktop", a},
          {"more/applications/b.desktop", b}},
         "b"},
        {"what is not there, hidden, not installed, in a terminal, without Exec, no program",
         {{"config/mimeapps.list",
           list("Default Applications",
                "x.desktop;h.desktop;t.desktop;c.desktop;n.desktop;q.desktop;"
                "../a.desktop;l.desktop;b.desktop")},
          {"home/applications/h.desktop", entry("Exec=h\nHidden=true")},
          {"share/applications/h.desktop", a},
          {"share/applications/t.desktop", entry("Exec=t\nTryExec=no-such-program")},
          {"share/applications/c.desktop", entry("Exec=c\nTerminal=true")},
          {"share/applications/n.desktop", entry("")},
          {"share/applications/q.desktop", entry("Exec=q \"%u")},
          {"share/a.desktop", a},
          {"share/applications/l.desktop", "[Desktop Entry]\nType=Link\nExec=l\n"},
          {"share/applications/b.desktop", b}},
         "b"},
        {"a name's dash is a folder",
         {{"home/applications/mimeapps.list", list("Default Applications", "k-d-a.desktop")},
          {"share/applications/k/d-a.desktop", a}},
         "a %u"},
        {"added, less removed, then the cache",
         {{"config/mimeapps.list", list("Removed Associations", "a.desktop")},
          {"share/applications/mimeapps.list", list("Added Associations", "a.desktop")},
          {"share/applications/mimeinfo.cache", list("MIME Cache", "a.desktop;b.desktop")},
          {"share/applications/a.desktop", a},
          {"share/applications/b.desktop", b}},
         "b"},
        {"entries without a list",
         {{"share/applications/a.desktop", a},
          {"share/applications/b.desktop",
           entry("MimeType=text/html;x-scheme-handler/http;\nExec=b")}},
         "b"},
        {"escapes of the file before those of the line",
         {{"share/applications/e.desktop",
           entry("Exec=\"e\\\\\\\\\" \\s%u\nMimeType=x-scheme-handler/http")}},
         "\"e\\\\\"  %u"},
        {"a long line",
         {{"share/applications/a.desktop", longLine},
          {"config/mimeapps.list", list("Default Applications", "a.desktop")}},
         "a" + std::string(300'000, 'x')}};
    for (const auto& [name, files, command] : cases) {
        makeDesktop(files);
        EXPECT_EQ(FindWebHandler("http").command, command) << name;
    }
}

TEST(WebHandler, NamesTheServiceThatTheBusCanStart)
{
    struct Case {
        const char *id, *lines, *service, *object;
    } cases[] = {
        {"org.test.Web-One", "DBusActivatable=true", "org.test.Web-One", "/org/test/Web_One"},
        {"org.test.Web", "DBusActivatable=true\nExec=a", "org.test.Web", "/org/test/Web"},
        {"org.test.Web", "DBusActivatable=false\nExec=a", "", ""},
        {"plain", "DBusActivatable=true\nExec=a", "", ""},
        {"org..x", "DBusActivatable=true\nExec=a", "", ""},
        {"org.4x", "DBusActivatable=true\nExec=a", "", ""}};
    for (const auto& [id, lines, service, object] : cases) {
        const std::string name = std::string(id) + ".desktop";
        makeDesktop({{"config/mimeapps.list", list("Default Applications", name.c_str())},
                     {"share/applications/" + name, entry(lines)}});
        const WebHandler handler = FindWebHandler("http");
        EXPECT_NE(handler.file, "") << id;
        EXPECT_EQ(handler.service, service) << id;
        EXPECT_EQ(handler.object, object) << id;
    }
}

TEST(BusMessage, HasTheBytesOfTheBus)
{
    const CString call = busCall(7, {"a.b", "/c", "d.e", "F"}, "s", textArgument("hi"));
    EXPECT_EQ(call, CString("l\1\0\1\7\0\0\0\7\0\0\0\x47\0\0\0"
                            "\1\1o\0\2\0\0\0/c\0\0\0\0\0\0"
                            "\2\1s\0\3\0\0\0d.e\0\0\0\0\0"
                            "\3\1s\0\1\0\0\0F\0\0\0\0\0\0\0"
                            "\6\1s\0\3\0\0\0a.b\0\0\0\0\0"
                            "\x8\1g\0\1s\0\0"
                            "\2\0\0\0hi\0",
                            95));
    EXPECT_EQ(openArguments("x"), CString("\6\0\0\0\1\0\0\0x\0\0\0\0\0\0\0", 16));
    // a reply, whole, in parts, damaged in each byte
    CString reply("l\2\1\1\x11\0\0\0\5\0\0\0\x10\0\0\0"
                  "\5\1u\0\7\0\0\0\x8\1g\0\2as\0"
                  "\xD\0\0\0\1\0\0\0a\0\0\0\0\0\0\0\0",
                  49);
    for (std::size_t size = 0; size < reply.size(); ++size) {
        CString part = reply.substr(0, size);
        BusMessage message;
        EXPECT_EQ(takeBusMessage(part, message), 0) << size;
        for (const int value : {0, 1, 0x42, 0x7F, 0xFF}) {
            CString damaged = reply + reply;
            damaged[size] = static_cast<char>(value);
            while (takeBusMessage(damaged, message) > 0)
                EXPECT_LE(message.texts().size(), 4u);
        }
    }
    BusMessage message;
    ASSERT_EQ(takeBusMessage(reply, message), 1);
    EXPECT_EQ(message.kind, BusMessage::reply);
    EXPECT_EQ(message.answers, 7u);
    EXPECT_EQ(message.texts(), (Words{"a", ""}));
    EXPECT_EQ(reply, "");
}

TEST(ServiceTalk, EndsInTimeWhateverListens)
{
    const std::string path = "/tmp/pavane-bus-" + std::to_string(getpid());
    setenv("DBUS_SESSION_BUS_ADDRESS", ("tcp:host=x;unix:path=" + path + ",guid=1").c_str(), 1);
    const int listening = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const auto talkTo = [](int milliseconds, const std::function<void()>& meanwhile = {}) {
        ServiceTalk talk;
        talk.Initiate("org.test.Web", "/org/test/Web", milliseconds);
        if (meanwhile)
            meanwhile();
        while (talk.Poll() == ServiceTalk::State::asking)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return talk.Poll();
    };
    EXPECT_EQ(talkTo(10'000), ServiceTalk::State::absent) << "nobody";
    ASSERT_EQ(bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(listening, 4), 0);
    EXPECT_EQ(talkTo(50), ServiceTalk::State::absent) << "silent";
    close(accept(listening, nullptr, nullptr));
    for (const CString& answer : {CString("REJECTED\r\n"), CString(5000, 'x'),
                                  "OK 1\r\n" + CString(64, '\0'), CString("OK 1\r\n\xFF")}) {
        int other = -1;
        const auto meanwhile = [&] {
            other = accept(listening, nullptr, nullptr);
            EXPECT_EQ(write(other, answer.data(), answer.size()), static_cast<long>(answer.size()));
        };
        EXPECT_EQ(talkTo(200, meanwhile), ServiceTalk::State::absent) << answer.substr(0, 8);
        close(other);
    }
    close(listening);
    unlink(path.c_str());
}
