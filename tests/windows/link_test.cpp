#include "pavane/windows/AHttpCallWnd.h"
#include "pavane/windows/link_opening.h"
#include "platform/CDialog.h"
#include "platform/controls.h"
#include "platform/test_window.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <thread>

using namespace pavane;

namespace
{

namespace fs = std::filesystem;

/// A desktop of its own, whose programs write their arguments into `record`.
class Desktop
{
public:
    Desktop()
    {
        folder = std::string(std::getenv("TEST_TMPDIR")) + "/link";
        fs::remove_all(folder);
        for (const char* const part :
             {"bin", "config", "share/applications", "share/dbus-1/services"})
            fs::create_directories(folder + "/" + part);
        set("XDG_CONFIG_HOME", folder + "/config");
        set("XDG_CONFIG_DIRS", folder + "/none");
        set("XDG_DATA_HOME", folder + "/none");
        set("XDG_DATA_DIRS", folder + "/share");
        set("PATH", folder + "/bin:/usr/bin:/bin");
        set("DBUS_SESSION_BUS_ADDRESS", "disabled:");
        write("config/mimeapps.list",
              "[Default Applications]\nx-scheme-handler/http=org.test.Web.desktop\n");
        program("browser", 0);
    }
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;
    ~Desktop()
    {
        if (bus_ > 0)
            kill(bus_, SIGTERM);
        for (const auto& [name, value] : before_)
            setenv(name.c_str(), value.c_str(), 1);
    }

    void write(const std::string& name, const std::string& text) const
    {
        std::ofstream(folder + "/" + name) << text;
    }
    void program(const std::string& name, int status) const
    {
        write("bin/" + name, "#!/bin/sh\nprintf '%s' \"" + name + "\" >> '" + record() +
                                 "'\nprintf ' [%s]' \"$@\" >> '" + record() + "'\necho >> '" +
                                 record() + "'\nexit " + std::to_string(status) + "\n");
        fs::permissions(folder + "/bin/" + name, fs::perms::owner_all);
    }
    void handler(const std::string& lines) const
    {
        write("share/applications/org.test.Web.desktop",
              "[Desktop Entry]\nType=Application\nName=Test\n" + lines);
    }
    /// A bus on which org.test.Web can be started; 0 where there is no dbus-daemon.
    int startBus(const std::string& mode)
    {
        write("share/dbus-1/services/org.test.Web.service",
              std::string("[D-BUS Service]\nName=org.test.Web\nExec=") + PAVANE_BUS_SERVICE +
                  " org.test.Web " + record() + " " + mode + "\n");
        FILE* const told = popen("dbus-daemon --session --fork --print-address=1 --print-pid=1 "
                                 "2>/dev/null",
                                 "r");
        char line[1024];
        if (std::fgets(line, sizeof line, told)) {
            set("DBUS_SESSION_BUS_ADDRESS", std::string(line).substr(0, std::strlen(line) - 1));
            if (std::fgets(line, sizeof line, told))
                bus_ = std::atoi(line);
        }
        pclose(told);
        return bus_ > 0;
    }
    /// Checks what was recorded since the last time: `expected`, and nothing more a moment later.
    void expectRecord(const std::string& expected) const
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        std::stringstream text;
        for (int more = 20; more > 0; more -= text.str().size() >= expected.size()) {
            settle();
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            text.str("");
            text << std::ifstream(record()).rdbuf();
            if (std::chrono::steady_clock::now() > end)
                break;
        }
        EXPECT_EQ(text.str(), expected);
        fs::remove(record());
    }
    std::string record() const { return folder + "/record"; }
    std::string folder;

private:
    void set(const std::string& name, const std::string& value)
    {
        const char* const old = std::getenv(name.c_str());
        before_.emplace(name, old ? old : "");
        setenv(name.c_str(), value.c_str(), 1);
    }
    std::map<std::string, std::string> before_;
    int bus_ = 0;
};

constexpr const char* at = "http://host/a";
const std::string byCommand = "browser [http://host/a]\n";
const std::string byBus = "/org/test/Web org.freedesktop.Application Open asa{sv} http://host/a\n";

struct Frame : TestWindow {
    AHttpCallWnd link;
    Frame() : TestWindow(nullptr, WS_VISIBLE, {0, 0, 200, 100})
    {
        link.SetHttp(at);
        link.SetVisible(1);
        EXPECT_TRUE(link.Create(this, {10, 10, 150, 30}));
        link.SetWindowText("R&D at home");
    }
    void press()
    {
        link.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
        link.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(3, 3));
    }
};

}  // namespace

TEST(LinkCommand, HasTheAddressOnceInItsTemplate)
{
    struct Case {
        const char *commandTemplate, *command;
    } cases[] = {{"", "http://%1"},
                 {"open(\"%1\") %1", "open(\"http://%1\") %1"},
                 {"no place", "http://%1"},
                 {"%1", "http://%1"}};
    for (const auto& [commandTemplate, command] : cases)
        EXPECT_EQ(linkCommand(commandTemplate, "http://%1"), command);
}

TEST(Link, OpensByTheOpenerThenByTheCommand)
{
    const Desktop desktop;
    desktop.handler("Exec=browser %u");
    struct Case {
        int opener;  ///< its status, -1 for none
        const char* url;
        int result;
        std::string goes, pressed;
    };
    const std::string quoted = "[http://h/%20%27$(id)%1]\n";
    const Case cases[] = {
        {0, at, 1, "xdg-open [http://host/a]\n", byCommand},
        {3, at, 1, "xdg-open [http://host/a]\n" + byCommand, byCommand},
        {-1, at, 1, byCommand, byCommand},
        {-1, "http://h/ '$(id)%1", 1, "browser " + quoted, "browser " + quoted},
        {0, "mailto:a@b", 1, "xdg-open [mailto:a@b]\n", "xdg-open [mailto:a@b]\n"},
        {3, "mailto:a@b", 0, "xdg-open [mailto:a@b]\n", "xdg-open [mailto:a@b]\n"},
        {-1, "mailto:a@b", 0, "", ""},
        {0, "file:///etc/passwd", 0, "", ""},
        {0, "-x", 0, "", ""},
        {0, "", 0, "", ""}};
    for (const Case& c : cases) {
        fs::remove(desktop.folder + "/bin/xdg-open");
        if (c.opener >= 0)
            desktop.program("xdg-open", c.opener);
        Frame frame;
        frame.link.SetHttp(c.url);
        EXPECT_EQ(frame.link.GotoURL() != 0, c.result != 0) << c.url << c.opener;
        desktop.expectRecord(c.goes);
        frame.press();
        desktop.expectRecord(c.pressed);
    }
}

TEST(Link, OpensNothingWithoutARegistration)
{
    const Desktop desktop;
    AHttpCallWnd link;
    link.SetHttp(at);
    EXPECT_EQ(link.GotoURL(), 0);
    desktop.write("bin/xdg-open", "#!/bin/sh\nexec sleep 4\n");
    fs::permissions(desktop.folder + "/bin/xdg-open", fs::perms::owner_all);
    EXPECT_TRUE(link.GotoURL()) << "an opener that goes on";
    Frame frame;
    frame.press();
    frame.link.SendMessage(WM_DDE_ACK, 5);
    desktop.expectRecord("");
}

TEST(Link, CallsTheServiceOnceAndTheCommandWhenItFails)
{
    struct Case {
        const char *mode, *lines;
        std::string expected;
    } cases[] = {{"answer", "Exec=browser %u\nDBusActivatable=true", byBus},
                 {"answer", "DBusActivatable=true", byBus},
                 {"refuse", "Exec=browser\nDBusActivatable=true", byBus + byCommand},
                 {"refuse", "DBusActivatable=true", byBus},
                 {"silent", "Exec=browser\nDBusActivatable=true", byBus + byCommand}};
    for (const auto& [mode, lines, expected] : cases) {
        Desktop desktop;
        desktop.handler(lines);
        if (!desktop.startBus(mode))
            GTEST_SKIP() << "no dbus-daemon here";
        // started by the bus, and running
        for (int time = 0; time < (expected == byBus ? 2 : 1); ++time) {
            Frame frame;
            frame.press();
            desktop.expectRecord(expected);
            frame.link.SendMessage(WM_DDE_ACK, 5);  // later than an initiation that takes long
            desktop.expectRecord("");
        }
    }
}

TEST(Link, UnseenClosesItselfOnceTheServiceHasTheAddress)
{
    Desktop desktop;
    desktop.handler("Exec=browser %u\nDBusActivatable=true");
    TestWindow parent;
    AHttpCallWnd link;
    link.SetHttp(at);
    ASSERT_TRUE(link.Create(&parent, {0, 0, 10, 10}));
    EXPECT_FALSE(link.IsWindowVisible());
    EXPECT_TRUE(link.GotoURL());
    desktop.expectRecord(byCommand);
    EXPECT_TRUE(link.GetSafeHwnd());
    if (!desktop.startBus("answer"))
        GTEST_SKIP() << "no dbus-daemon here";
    EXPECT_TRUE(link.GotoURL());
    desktop.expectRecord(byBus);
    EXPECT_FALSE(link.GetSafeHwnd());
    EXPECT_TRUE(link.GotoURL()) << "without a window";
    desktop.expectRecord(byBus);
}

TEST(Link, IsALabelThatKeysAndReadersPress)
{
    const Desktop desktop;
    desktop.handler("Exec=browser %u");
    Frame frame;
    AHttpCallWnd& link = frame.link;
    link.SetFocus();
    settle();
    EXPECT_EQ(link.OnToolTip({1, 1}), at);
    AccessPart part;
    ASSERT_TRUE(link.GetAccess() && link.GetAccess()->GetAccessPart(0, part));
    EXPECT_EQ(part.role, ROLE_SYSTEM_LINK);
    EXPECT_EQ(part.name, "R&D at home");
    const std::function<void()> presses[] = {[&] { link.SendMessage(WM_KEYDOWN, VK_RETURN, 1); },
                                             [&] { link.SendMessage(WM_KEYDOWN, VK_SPACE, 1); },
                                             [&] { link.AccessActivate(0); }};
    for (const auto& press : presses) {
        press();
        desktop.expectRecord(byCommand);
    }
    link.SendMessage(WM_KEYDOWN, VK_RETURN, 1 | 1 << 30);
    link.SendMessage(WM_KEYDOWN, 'A', 1);
    desktop.expectRecord("");
}

TEST(Link, DrawsTheSameWhateverPartIsRepainted)
{
    const Desktop desktop;
    Frame frame;
    AHttpCallWnd& link = frame.link;
    link.UpdateWindow();
    const auto pixels = [&link] {
        CClientDC dc(&link);
        std::vector<COLORREF> all;
        for (int i = 0; i < 140 * 20; ++i)
            all.push_back(dc.GetPixel(i % 140, i / 140));
        return all;
    };
    const std::vector<COLORREF> whole = pixels();
    EXPECT_GT(std::count(whole.begin(), whole.end(), RGB(0, 0, 192)), 100);
    link.InvalidateRect({20, 5, 60, 8});
    link.UpdateWindow();
    EXPECT_EQ(pixels(), whole);
    link.SetFocus();
    settle();
    EXPECT_NE(pixels(), whole) << "the focus frame";
}

TEST(Link, TakesThePlaceOfAControlAndLeavesKeysToTheDialog)
{
    const Desktop desktop;
    static constexpr DlgItem items[] = {
        {ControlKind::staticText, 11, "home && page", 4, 4, 80, 10},
        {ControlKind::edit, 12, "", 4, 20, 40, 12, WS_TABSTOP},
    };
    static constexpr DlgTemplate form{900, "Form", 100, 60, items, 2};
    struct Form : CDialog {
        Form() : CDialog(form) {}
        int cancelled = 0;
        void OnCancel() override { ++cancelled; }
    } dialog;
    ASSERT_TRUE(dialog.CreateModeless());
    dialog.ShowWindow(SW_SHOW);
    settle();
    const CString text = dialog.GetDlgItemText(11);
    AHttpCallWnd link;
    EXPECT_FALSE(link.UpDateControl("", &dialog, 99));
    ASSERT_TRUE(link.UpDateControl("", &dialog, 11));
    EXPECT_EQ(link.GetWindowText(), text);
    EXPECT_EQ(dialog.GetDlgItem(11), &link);
    EXPECT_EQ(link.GetStyle() & (WS_VISIBLE | WS_GROUP | WS_TABSTOP),
              WS_VISIBLE | WS_GROUP | WS_TABSTOP);
    link.SetFocus();
    link.SendMessage(WM_KEYDOWN, VK_TAB);
    EXPECT_EQ(CWnd::GetFocus(), dialog.GetDlgItem(12));
    link.SendMessage(WM_KEYDOWN, VK_ESCAPE, 1);
    settle();
    EXPECT_EQ(dialog.cancelled, 1);
}
