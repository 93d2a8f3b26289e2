// What pavane-view keeps about the work of a user: recent maps, unsaved areas and their copy.
#include "apps/view/AreaSession.h"
#include "apps/view/data_menu.h"
#include "apps/view/part_menu.h"
#include "apps/view/recent_files.h"
#include "apps/view/window_place.h"
#include "platform/messages.h"
#include "platform/profile.h"
#include "tessel/paths.h"

#include <algorithm>
#include <cctype>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sys/wait.h>
#include <unistd.h>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

std::string emptyFolder(const char* name)
{
    const fs::path folder = fs::path(testing::TempDir()) / name;
    fs::remove_all(folder);
    fs::create_directories(folder);
    return folder.string() + '/';
}

int storeText(AFile& file) { return file.write("areas", 5); }
int storeNothing(AFile&) { return 0; }

}  // namespace

/// A letter that two lines have opens neither.
void expectLetters(const MenuItem* items, int count)
{
    std::map<char, std::string> known;
    for (int i = 0; i < count; ++i) {
        const std::string text = items[i].text ? items[i].text : "";
        const std::size_t at = text.find('&');
        if (at != std::string::npos) {
            const auto letter = static_cast<char>(std::tolower(text.at(at + 1)));
            EXPECT_TRUE(known.emplace(letter, text).second) << text << " and " << known[letter];
        }
        if (items[i].items)
            expectLetters(items[i].items, items[i].itemCount);
    }
}

TEST(Menus, HaveEachLetterOnce)
{
    for (const MenuTemplate& menu : {mainMenu, dataMenu})
        expectLetters(menu.items, menu.itemCount);
    for (const auto onPart :
         {&PartCommand::onMap, &PartCommand::onNumbers, &PartCommand::onModel}) {
        std::vector<MenuItem> edit(std::begin(editItems), std::end(editItems));
        edit.insert(edit.end(), std::begin(fileItems), std::end(fileItems));
        for (const std::size_t from : {std::size_t{0}, std::size(editItems)}) {
            const std::size_t to = from ? edit.size() : std::size(editItems);
            for (std::size_t i = from; i < to; ++i)
                if (const PartCommand* const command = partCommandOf(edit[i].id);
                    command && command->*onPart)
                    edit[i].text = command->*onPart;
            expectLetters(edit.data() + from, static_cast<int>(to - from));
        }
    }
}

TEST(RecentFiles, ForgetsGarbageKeepsEightAndPutsTheLatestFirst)
{
    SetProfileFile(emptyFolder("recent") + "p.ini");
    for (const char* garbage : {"", "\t", "\t\t/\trelative.fits", "/folder/\t/a\x01z\t%s%n"}) {
        WriteProfileString("view", "Recent", garbage);
        RecentFiles none("view");
        none.load();
        EXPECT_TRUE(none.files().empty()) << garbage;
    }
    WriteProfileString("view", "Recent", "x\t/maps/a.fits\t/maps/a.fits\t/");
    RecentFiles recent("view");
    recent.load();
    ASSERT_EQ(recent.files(), std::vector<std::string>{"/maps/a.fits"});

    for (const char name : std::string("bcdefghib"))
        recent.add(std::string("/maps/./") + name);
    recent.remove("/maps/g");
    RecentFiles again("view");
    again.load();
    EXPECT_EQ(again.files(), recent.files());
    EXPECT_EQ(again.files(), (std::vector<std::string>{"/maps/b", "/maps/i", "/maps/h", "/maps/f",
                                                       "/maps/e", "/maps/d", "/maps/c"}));
    EXPECT_EQ(recentFileLabel(2, "/data/R&D/m&m.fits"), "&2  m&&m.fits   (/data/R&&D)");
    SetProfileFile("");
}

TEST(WindowPlace, StaysWhereItsTopCanBeSeenAndComesBackElse)
{
    const std::vector<CRect> screens = {{0, 0, 1400, 1000}, {1400, 0, 2400, 800}};
    constexpr int far = 2147483647;
    const struct {
        CRect place, wanted;
    } cases[] = {
        {{80, 60, 1180, 900}, {80, 60, 1180, 900}},
        {{1500, 40, 2300, 700}, {1500, 40, 2300, 700}},  // on the second screen
        {{-980, 60, 120, 900}, {-980, 60, 120, 900}},    // a corner is enough
        {{-981, 60, 119, 900}, {4, 60, 1104, 900}},      // a sliver is not
        {{80, -40, 1180, 800}, {80, 32, 1180, 872}},     // no caption
        {{80, 2000, 1180, 2840}, {80, 156, 1180, 996}},
        {{3000, 100, 3800, 700}, {596, 100, 1396, 700}},  // a screen that is gone
        {{10, 40, 9000, 9000}, {4, 32, 1396, 996}},
        {{-far - 1, -far - 1, far, far}, {4, 32, 1396, 996}},
        {{far - 10, far - 10, far, far}, {1386, 986, 1396, 996}},
    };
    for (const auto& c : cases)
        EXPECT_TRUE(reachablePlace(c.place, screens) == c.wanted)
            << reachablePlace(c.place, screens).left << ' ' << reachablePlace(c.place, screens).top;
    EXPECT_TRUE(reachablePlace(cases[8].place, {}) == cases[8].place);
    EXPECT_TRUE(reachablePlace(cases[8].place, {CRect()}) == cases[8].place);
}

TEST(WindowPlace, ShowsTheWindowWhateverTheProfileSays)
{
    constexpr CRect first(80, 60, 1180, 900);
    constexpr unsigned normal = SW_SHOWNORMAL, maximised = SW_SHOWMAXIMIZED;
    const std::string good = ",-1,-1,-1,-1,10,40,610,420";
    constexpr CRect kept(10, 40, 610, 420);
    const struct {
        std::string text;
        unsigned command;
        CRect place;
    } cases[] = {
        {"", normal, first},
        {"8,1,-1", normal, first},
        {"0,1" + good, normal, kept},
        {"0,0" + good, normal, kept},  // hidden
        {"0,2" + good, normal, kept},  // as an icon, in all the ways that there are
        {"0,6" + good, normal, kept},
        {"0,7" + good, normal, kept},
        {"0,11" + good, normal, kept},
        {"0,4000000000" + good, normal, kept},
        {"2,2" + good, maximised, kept},  // an icon that comes back maximised
        {"0,3" + good, maximised, kept},
        {"2,1" + good, normal, kept},
        {"0,1,-1,-1,-1,-1,10,40,210,190", normal, {10, 40, 210, 190}},  // as small as may be
        {"0,1,-1,-1,-1,-1,10,40,209,190", normal, first},
        {"0,3,-1,-1,-1,-1,10,40,210,189", maximised, first},
        {"0,1,-1,-1,-1,-1,10,2000,610,2380", normal, {10, 616, 610, 996}},
    };
    for (const auto& c : cases) {
        const PlacementRecord start = startPlacement(c.text, first, {{0, 0, 1400, 1000}});
        EXPECT_EQ(start.showCommand, c.command) << c.text;
        EXPECT_TRUE(start.normal == c.place) << c.text << ": " << start.normal.top;
    }
}

TEST(AreaSession, KeepsACopyWhileAreasAreUnsaved)
{
    const std::string folder = emptyFolder("session") + "deeper/";
    AreaSession session(folder);
    session.begin("/maps/a.fits");
    EXPECT_EQ(session.changed(1, 1000), 0);  // at once after a pause
    ASSERT_TRUE(session.writeCopy(storeText, 1000));
    const std::string copy = session.autosave().file();
    EXPECT_TRUE(IsFileExists(copy));
    EXPECT_EQ(session.title(), "a.fits*  \u2013  pavane-view");
    EXPECT_EQ(session.changed(1, 1050), 150);

    EXPECT_FALSE(session.writeCopy(storeNothing, 1200));  // a full disk: the old copy stays
    EXPECT_TRUE(IsFileExists(copy));
    session.changed(0, 1300);  // undone to the start: nothing is left to lose
    EXPECT_FALSE(session.isModified());
    ASSERT_TRUE(session.writeCopy(storeText, 1400));
    EXPECT_FALSE(IsFileExists(copy));

    session.changed(1, 2000);
    session.writeCopy(storeText, 2000);
    session.saved("/maps/a.areas");
    EXPECT_FALSE(IsFileExists(copy) || session.isModified());
    EXPECT_EQ(session.file(), "/maps/a.areas");

    session.changed(1, 3000);
    session.writeCopy(storeText, 3000);
    session.begin("/maps/b.fits");
    EXPECT_FALSE(IsFileExists(copy));
    EXPECT_EQ(session.file(), "");
}

TEST(Autosave, OffersOnlyCopiesOfTheSameMapWhoseProcessIsGone)
{
    const std::string folder = emptyFolder("autosave");
    const Autosave mine(folder, "/maps/a.fits");
    const Autosave other(folder, "/maps/b.fits");
    const std::string name = baseNameOf(mine.file());
    const std::string start = folder + name.substr(0, name.rfind('-') + 1);
    const pid_t alive = fork();
    if (alive == 0)
        for (;;)
            pause();
    const auto offered = [&](const std::string& file) {
        std::ofstream(file) << "x";
        const auto found = mine.leftovers();
        for (const auto& left : fs::directory_iterator(folder))
            fs::remove(left.path());
        return found.size();
    };
    const std::string ofChild = start + std::to_string(alive) + ".areas";
    EXPECT_EQ(0u, offered(ofChild));
    kill(alive, SIGKILL);
    siginfo_t ended;
    waitid(P_PID, static_cast<id_t>(alive), &ended, WEXITED | WNOWAIT);
    EXPECT_EQ(1u, offered(ofChild));  // nobody has asked for its end yet
    waitpid(alive, nullptr, 0);
    EXPECT_EQ(1u, offered(ofChild));
    EXPECT_EQ(1u, offered(mine.file()));  // our number, but of an earlier process
    EXPECT_EQ(1u, offered(start + std::to_string(getppid()) + ".areas"));  // not this program
    EXPECT_EQ(0u, offered(other.file()));
    for (const char* odd : {".areas", "x.areas", "12", "99999999999999999999.areas", "-3.areas"})
        EXPECT_EQ(0u, offered(start + odd)) << odd;

    std::ofstream(start + "1999999999.areas") << "x";
    fs::last_write_time(start + "1999999999.areas",
                        fs::file_time_type::clock::now() - std::chrono::hours(1));
    std::ofstream(ofChild) << "x";
    ASSERT_EQ(mine.leftovers().size(), 2u);
    EXPECT_EQ(mine.leftovers().front().file, ofChild);
}

}  // namespace pavane
