// Work files in the window.
#include "tests/apps/view_window_fixture.h"

namespace pavane
{

namespace
{

using ViewWorkFile = ViewWindow;

}  // namespace

TEST_F(ViewWorkFile, IsSavedAndOpenedAgainInAnotherFolder)
{
    writeMap("other.fits");
    std::ofstream(path("marks.csv")) << "name,ra,dec\ncentre,187.7,12.4\n";
    TMinMax zoomed;
    {
        MainWindow window;
        open(window);
        addArea(window, 1);
        fileAnswer = path("a.areas");
        window.SendMessage(WM_COMMAND, idSaveAreas);
        ASSERT_TRUE(fs::exists(path("a.areas")));
        fileAnswer = path("marks.csv");
        window.SendMessage(WM_COMMAND, idOpenMarks);
        window.SendMessage(WM_COMMAND, idScale + 1);
        ASSERT_TRUE(window.AddMap(path("other.fits"), -1));
        window.SendMessage(WM_COMMAND, idLinkNothing);
        window.SendMessage(WM_COMMAND, idLinkColours);
        window.SendMessage(WM_COMMAND, idMapsSideBySide);
        window.view().UpdateWindow();
        window.view().ZoomAbout(clientOf(window.view()).CenterPoint(), 3);
        zoomed = window.view().GetPlot()->getMinMax();
        window.SendMessage(WM_COMMAND, idSkyGrid);
        fileAnswer = path("all.work");
        window.SendMessage(WM_COMMAND, idSaveWork);
        ASSERT_TRUE(fs::exists(path("all.work")));
        window.SendMessage(WM_CLOSE, 0, 0);
        EXPECT_TRUE(said.empty()) << said[0];
    }
    forgetQuit();
    // all of it elsewhere, one map of it gone
    const fs::path moved = folder_ / "moved";
    fs::create_directories(moved);
    for (const char* name : {"all.work", "map.fits", "a.areas", "marks.csv"})
        fs::rename(path(name), moved / name);
    MainWindow window;
    ASSERT_TRUE(window.Create(ViewOptions()));
    answer = IDYES;
    fileAnswer = path("other.fits");  // which is asked for
    ASSERT_TRUE(window.OpenMap((moved / "all.work").string(), -1));
    window.Show();
    ASSERT_EQ(said.size(), 1U);
    EXPECT_NE(said[0].find("other.fits: the map is not there any more"), std::string::npos);
    ASSERT_EQ(window.maps().count(), 2);
    EXPECT_EQ(window.maps().current(), 1);
    EXPECT_EQ(window.maps().shown(), MapsShown::sideBySide);
    EXPECT_EQ(window.links().by(), LinkBy::nothing);
    EXPECT_TRUE(window.links().wants(linkColours));
    EXPECT_EQ(window.viewOf(0).GetTrackers()->count(), 1);
    EXPECT_EQ(window.viewOf(0).GetSkyMarks().placed(), 1);
    EXPECT_EQ(window.viewOf(0).GetPlot()->getMinMax() == zoomed, 0);
    window.viewOf(1).UpdateWindow();
    const TMinMax range = window.viewOf(1).GetPlot()->getMinMax();
    EXPECT_NEAR(range.xMin, zoomed.xMin, 1e-9);
    EXPECT_NEAR(range.yMax, zoomed.yMax, 1e-9);
}

TEST_F(ViewWorkFile, WithoutAMapThatCanBeOpenedIsTold)
{
    std::ofstream(path("gone.work")) << "# pavane work 1\n[map]\nfile=gone.fits\n";
    std::ofstream(path("new.work")) << "# pavane work 9\n[map]\nfile=map.fits\n";
    MainWindow window;
    ASSERT_TRUE(window.Create(ViewOptions()));
    answer = IDNO;
    EXPECT_FALSE(window.OpenMap(path("gone.work"), -1));
    EXPECT_EQ(window.maps().count(), 0);
    EXPECT_FALSE(window.OpenMap(path("new.work"), -1));
    ASSERT_EQ(said.size(), 2U);
    EXPECT_NE(said[1].find("newer version"), std::string::npos);
}

// What a crash leaves is taken from the folder while the window lives, and given to another one.
TEST_F(ViewWorkFile, ComesBackAfterACrashWithAllThatWasInNoFile)
{
    writeMap("other.fits");
    const fs::path kept = folder_ / "kept";
    const std::string profile = path("profile/");
    TMinMax zoomed;
    {
        MainWindow window;
        open(window);
        window.KeepWork();
        for (const auto& entry : fs::directory_iterator(profile))
            EXPECT_NE(entry.path().extension(), ".work");  // nothing was done yet
        ASSERT_TRUE(window.AddMap(path("other.fits"), -1));
        window.SendMessage(WM_COMMAND, idOtherContours);
        addArea(window, 1);
        window.SendMessage(WM_COMMAND, idMapsSideBySide);
        window.SendMessage(WM_COMMAND, idProfile);
        ProfileLine line;
        line.corners = {{3, 4}, {30, 20}, {40, 4}};
        line.width = 3;
        window.curves().SetLine(line);
        EXPECT_TRUE(window.curves().Keep());
        window.SendMessage(WM_COMMAND, idModel);
        window.model().session().components().begin("a");
        const ACompItem item;
        ASSERT_TRUE(window.model().session().components().insert(0, &item, 1));
        (void)window.model().session().components().end();
        window.model().table().OnComponentsChanged();
        window.view().UpdateWindow();
        window.view().ZoomAbout(clientOf(window.view()).CenterPoint(), 3);
        zoomed = window.view().GetPlot()->getMinMax();
        window.KeepWork();
        fs::copy(profile, kept);
        answer = IDNO;
        window.SendMessage(WM_CLOSE, 0, 0);
    }
    forgetQuit();
    EXPECT_TRUE(leftWork(profile).empty());
    fs::remove_all(profile);
    fs::copy(kept, profile);
    setLeftWorkAside(profile);  // it has the number of this process
    const std::vector<LeftWork> left = leftWork(profile);
    ASSERT_EQ(left.size(), 1U);
    said.clear();
    MainWindow window;
    ASSERT_TRUE(window.Create(ViewOptions()));
    ASSERT_TRUE(window.RestoreWork(left[0]));
    window.Show();
    EXPECT_TRUE(said.empty()) << said[0];
    EXPECT_EQ(window.maps().count(), 2);
    EXPECT_EQ(window.maps().shown(), MapsShown::sideBySide);
    EXPECT_EQ(areas(window).count(), 1);
    EXPECT_TRUE(areas(window).IsModified());
    EXPECT_EQ(window.curves().kind(), CurvePanel::Kind::profile);
    EXPECT_EQ(window.curves().line().line().corners.size(), 3U);
    EXPECT_EQ(window.curves().kept(), 1);
    EXPECT_TRUE(window.model().session().isModified());
    EXPECT_EQ(window.model().session().components().list().count(), 1);
    window.view().UpdateWindow();
    EXPECT_NEAR(window.view().GetPlot()->getMinMax().xMin, zoomed.xMin, 1e-9);
    EXPECT_TRUE(fs::exists(profile));
    EXPECT_TRUE(leftWork(profile).empty());
    EXPECT_EQ(copies(), 1U);
    answer = IDNO;
    window.SendMessage(WM_CLOSE, 0, 0);
    EXPECT_EQ(copies(), 0U);
}

TEST_F(ViewWorkFile, MapIsReadAgainWhereItsViewAndAreasAre)
{
    writeMap("other.fits");
    MainWindow window;
    open(window);
    ASSERT_TRUE(window.AddMap(path("other.fits"), -1) && window.ChooseMap(0));
    addArea(window, 1);
    window.SendMessage(WM_COMMAND, idScale + 1);
    window.SendMessage(WM_COMMAND, idProfile);
    window.view().UpdateWindow();
    window.view().ZoomAbout(clientOf(window.view()).CenterPoint(), 3);
    const TMinMax zoomed = window.view().GetPlot()->getMinMax();
    const float before = static_cast<float>(window.view().GetMap()->cells().cell(5, 6));
    const auto look = [&] { window.SendMessage(WM_TIMER, 4); };
    look();
    EXPECT_TRUE(said.empty());
    AMatrix<float> cells(48, 64);
    for (int i = 0; i < 48 * 64; ++i)
        cells.data()[i] = 7 + std::sin(static_cast<float>(i) * 0.01f);
    MapHeader header;
    header.axes = {{64, "RA---SIN", "deg", 187.7, 32, -1e-8, 0},
                   {48, "DEC--SIN", "deg", 12.4, 24, 1e-8, 0}};
    header.hasCelestialAxes = 1;
    std::string error;
    ASSERT_TRUE(writeFitsMap(path("map.fits"), cells, header, error)) << error;
    answer = IDNO;
    look();  // it may still grow
    EXPECT_TRUE(said.empty());
    look();
    look();  // a refusal holds
    ASSERT_EQ(said.size(), 1U);
    EXPECT_NE(said[0].find("Read it again?"), std::string::npos);
    ASSERT_TRUE(writeFitsMap(path("map.fits"), cells, header, error)) << error;
    answer = IDYES;
    look();
    look();
    EXPECT_EQ(said.size(), 2U);
    EXPECT_NEAR(window.view().GetMap()->cells().cell(5, 6), before + 7, 1e-5);
    EXPECT_EQ(areas(window).count(), 1);
    EXPECT_TRUE(areas(window).CanUndo());
    EXPECT_EQ(window.curves().kind(), CurvePanel::Kind::profile);
    EXPECT_NEAR(window.view().GetPlot()->getMinMax().xMin, zoomed.xMin, 1e-12);
    EXPECT_TRUE(window.view().IsRangeZoomed());
    fs::remove(path("map.fits"));
    look();
    look();
    EXPECT_EQ(said.size(), 2U);  // the status line tells of that
    EXPECT_FALSE(window.ReadAgain());
    EXPECT_EQ(areas(window).count(), 1);
}

}  // namespace pavane
