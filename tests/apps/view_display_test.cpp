// Colours, contours and beams of maps in windows of pavane-view: whose they are, and what is kept.
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/images/palettes.h"
#include "platform/profile.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

struct ViewDisplay : testing::Test, WindowHost {
    std::string folder = testing::TempDir() + "view-display/";
    std::vector<MainWindow*> windows;
    ViewDisplay()
    {
        fs::remove_all(folder);
        fs::create_directories(folder);
        SetProfileFile(folder + "pavane-view.ini");
        LoadBuiltInPalette();
        AMatrix<float> cells(20, 30);
        for (int i = 0; i < 600; ++i)
            cells.data()[i] = static_cast<float>(i % 37);
        std::string error;
        EXPECT_TRUE(writeFitsMap(folder + "map.fits", cells, {}, error)) << error;
    }
    ~ViewDisplay() override
    {
        LoadBuiltInPalette();
        SetProfileFile("");
    }
    int openWindow(const std::string& /*file*/) override { return 0; }
    void windowClosed(CWnd& /*window*/) override {}
    void paletteForAll(int on) override
    {
        for (MainWindow* const window : windows)
            window->PaletteChanged(on);
    }
    void styleForAll(const MapDisplay& display, const CWnd& from) override
    {
        for (MainWindow* const window : windows)
            if (window != &from)
                window->TakeStyle(display);
    }
    std::unique_ptr<MainWindow> open(const std::vector<std::string>& arguments = {})
    {
        std::vector<std::string> all = arguments;
        all.push_back(folder + "map.fits");
        ViewOptions options;
        std::string error;
        EXPECT_TRUE(parseOptions(all, options, error)) << error;
        EXPECT_TRUE(options.palette.empty() || LoadPalette(options.palette));
        auto window = std::make_unique<MainWindow>(this);
        EXPECT_TRUE(window->Create(options) && window->OpenFirst(options));
        window->Show();
        windows.push_back(window.get());
        return window;
    }
    void close(MainWindow& window)
    {
        std::erase(windows, &window);
        window.SendMessage(WM_CLOSE);
    }
    static MapDisplay shown(MainWindow& window)
    {
        return MapDisplay(*window.view().GetAxis(), *window.view().GetMap());
    }
    /// The identifier of a palette in the menu.
    static unsigned paletteId(const char* wanted)
    {
        const AObjArray<CString> names = PaletteNames();
        for (int i = 0; i < names.count(); ++i)
            if (names(i) == wanted)
                return idPalette + static_cast<unsigned>(i);
        ADD_FAILURE() << wanted;
        return 0;
    }
    CString kept(const char* entry) const { return GetProfileString("pavane-view", entry); }
};

}  // namespace

TEST_F(ViewDisplay, ThePaletteOfAMenuIsOfOneMapAndAStepOfItsViews)
{
    const auto first = open(), second = open();
    second->SendMessage(WM_COMMAND, paletteId("heat"));
    EXPECT_EQ(shown(*second).colours.colours.size(), 226u);
    EXPECT_TRUE(shown(*first).colours.colours.empty());
    EXPECT_EQ(GetGlobalPaletteName(), "");
    second->view().ViewBack();
    EXPECT_TRUE(shown(*second).colours.colours.empty());
    second->view().ViewForward();
    ASSERT_TRUE(second->OpenMap(folder + "map.fits", -1));  // the next map has it, too
    EXPECT_EQ(shown(*second).colours.colours.size(), 226u);
    close(*second);
    EXPECT_EQ(kept("Palette"), "heat");
    close(*first);
}

TEST_F(ViewDisplay, APaletteForAllReachesMapsWithColoursOfTheirOwnAndGoesBack)
{
    const auto first = open(), second = open();
    second->SendMessage(WM_COMMAND, paletteId("grey"));
    const MapDisplay own = shown(*second);
    for (const int on : {1, 0, 1}) {
        paletteForAll(on);
        EXPECT_EQ(shown(*second).colours.colours.empty(), on == 1);
        EXPECT_TRUE(shown(*first).colours.colours.empty());
    }
    second->view().ViewBack();
    EXPECT_TRUE(sameDisplay(shown(*second), own));
    close(*second);
    close(*first);
}

TEST_F(ViewDisplay, TheProfileKeepsWhatTheUserChoseAndNotTheCommandLine)
{
    const struct {
        std::vector<std::string> arguments;
        unsigned command;
        const char *entry, *text;
    } rows[] = {
        {{"--palette", "heat"}, 0, "Palette", ""},
        {{"--palette", "heat"}, paletteId("grey"), "Palette", "grey"},
        {{}, paletteId("grey"), "Palette", "grey"},
        {{"--scale", "log"}, 0, "Scale", ""},
        {{"--scale", "log"}, idScale + 1, "Scale", "1"},
        {{"--levels", "peak:1,2"}, 0, "Levels", ""},
        {{"--levels", "peak:1,2"}, idContours, "Levels", "none"},
        {{"--levels", "none"}, idContours, "Levels", ""},
    };
    for (const auto& row : rows) {
        fs::remove(folder + "pavane-view.ini");
        SetProfileFile(folder + "pavane-view.ini");
        LoadBuiltInPalette();
        const auto window = open(row.arguments);
        if (row.command)
            window->SendMessage(WM_COMMAND, row.command);
        close(*window);
        EXPECT_EQ(kept(row.entry), row.text) << row.entry << row.command;
    }
}

TEST_F(ViewDisplay, AStyleForAllReachesOtherWindowsAsAStepAndMapsToCome)
{
    const auto first = open(), second = open();
    MapDisplay style = shown(*first);
    style.contours.levels = {LevelUnit::peak, {10, 20}};
    style.beamLook.corner = BeamCorner::upperRight;
    style.colours.range = {1, 2};
    const MapDisplay before = shown(*second);
    styleForAll(style, *first);
    EXPECT_TRUE(sameDisplay(shown(*first), before));
    EXPECT_TRUE(sameDisplay(shown(*second), style.styleFor(before)));
    second->view().ViewBack();
    EXPECT_TRUE(sameDisplay(shown(*second), before));
    ASSERT_TRUE(second->OpenMap(folder + "map.fits", -1));
    EXPECT_TRUE(sameDisplay(shown(*second), style.styleFor(before)));
    close(*second);
    EXPECT_EQ(kept("Levels"), "peak:10,20");
    close(*first);
}

}  // namespace pavane
