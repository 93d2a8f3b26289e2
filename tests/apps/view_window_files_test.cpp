// What the window of pavane-view saves and opens: what the user could lose is asked about.
#include "apps/view/any_area_file.h"
#include "apps/view/ViewWindows.h"
#include "pavane/axes/A2DAxis.h"
#include "platform/drop_files.h"
#include "tessel/paths.h"
#include "tests/apps/view_window_fixture.h"

namespace pavane
{

TEST_F(ViewWindow, AFailedSaveLeavesAreasUnsavedAndSaysWhy)
{
    MainWindow window;
    open(window);
    addArea(window, 20);
    EXPECT_EQ(copies(), 1u);
    fileAnswer = path("nowhere/a.areas");
    window.SendMessage(WM_COMMAND, idSaveAreas);
    ASSERT_EQ(said.size(), 1u);
    EXPECT_NE(said[0].find("nowhere/a.areas"), std::string::npos);
    EXPECT_TRUE(window.session().isModified());
    EXPECT_EQ(window.GetWindowText().substr(0, 9), "map.fits*");

    fileAnswer = path("a.areas");
    window.SendMessage(WM_COMMAND, idSaveAreas);
    EXPECT_FALSE(window.session().isModified());
    EXPECT_EQ(copies(), 0u);
    addArea(window, 10);
    fileAnswer.clear();  // Save knows the name now
    window.SendMessage(WM_COMMAND, idSaveAreas);
    window.SendMessage(WM_COMMAND, ID_TRACK_UNDO);
    EXPECT_EQ(areas(window).count(), 1);
    EXPECT_TRUE(window.session().isModified());
    window.SendMessage(WM_COMMAND, ID_TRACK_REDO);
    EXPECT_FALSE(window.session().isModified());
    EXPECT_EQ(said.size(), 1u);

    fileAnswer = path("nowhere/m.fits");
    window.SendMessage(WM_COMMAND, idSaveMask);
    fileAnswer = path("nowhere/m.png");
    window.SendMessage(WM_COMMAND, idSavePicture);
    EXPECT_EQ(said.size(), 3u);
    for (const char* name : {"m.png", "m.pdf", "m.svg"}) {
        fileAnswer = path(name);
        window.SendMessage(WM_COMMAND, idSavePicture);
        EXPECT_TRUE(IsFileExists(fileAnswer));
    }
    EXPECT_EQ(said.size(), 3u);
}

TEST_F(ViewWindow, WritesNothingOverWhatIsOpen)
{
    MainWindow window;
    open(window);
    addArea(window, 20);
    fileAnswer = path("a.areas");
    window.SendMessage(WM_COMMAND, idSaveAreas);
    fs::create_hard_link(path("map.fits"), path("map.png"));
    fs::create_symlink("a.areas", path("areas.png"));
    const auto size = fs::file_size(path("map.fits"));
    const struct {
        unsigned command;
        const char* name;
    } cases[] = {{idSaveMask, "map.fits"},
                 {idSaveMask, "a.areas"},
                 {idSavePicture, "map.png"},
                 {idSavePicture, "areas.png"},
                 {idSaveAreasAs, "./map.fits"}};
    for (const auto& c : cases) {
        said.clear();
        fileAnswer = path(c.name);
        window.SendMessage(WM_COMMAND, c.command);
        ASSERT_EQ(said.size(), 1u) << c.name;
        EXPECT_NE(said[0].find("Choose another name"), std::string::npos) << said[0];
    }
    said.clear();
    fileAnswer = path("a.areas");
    window.SendMessage(WM_COMMAND, idSaveAreasAs);
    EXPECT_TRUE(said.empty());
    EXPECT_EQ(fs::file_size(path("map.fits")), size);
    EXPECT_TRUE(window.OpenAreas(path("a.areas")));
}

TEST_F(ViewWindow, AsksBeforeUnsavedAreasAreLeft)
{
    writeMap("other.fits");
    MainWindow window;
    open(window);
    const struct {
        const char* name;
        int answer;
        const char* file;  ///< where they are saved, empty when the user cancels there
        int leaves;
    } cases[] = {{"no", IDNO, "", 1},
                 {"cancel", IDCANCEL, "", 0},
                 {"yes, then no name", IDYES, "", 0},
                 {"yes", IDYES, "left.areas", 1}};
    for (const auto& c : cases) {
        areas(window).Clear(nullptr);
        areas(window).SetSaved();
        addArea(window, 8);
        answer = c.answer;
        fileAnswer = *c.file ? path(c.file) : "";
        said.clear();
        EXPECT_EQ(window.OpenMap(path("other.fits"), -1), c.leaves) << c.name;
        EXPECT_EQ(said.size(), 1u) << c.name;
        EXPECT_EQ(areas(window).count(), !c.leaves) << c.name;
        EXPECT_EQ(*c.file != 0, IsFileExists(path("left.areas"))) << c.name;
    }
    // an open polygon is work too
    window.view().UpdateWindow();
    const CRect plot = window.view().GetAxis()->getGraphRect();
    areas(window).BeginMode(&window.view(), toolArea);
    for (const CPoint at : {plot.CenterPoint(), plot.TopLeft() + CPoint(9, 9)}) {
        const LPARAM place = MAKELPARAM(at.x, at.y);
        window.view().PostMessage(WM_LBUTTONUP, 0, place);
        window.view().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, place);
    }
    ASSERT_TRUE(areas(window).workingTracker());
    answer = IDCANCEL;
    said.clear();
    window.SendMessage(WM_CLOSE);
    EXPECT_EQ(said.size(), 1u);
    EXPECT_TRUE(window.GetSafeHwnd());
    answer = IDNO;
    EXPECT_TRUE(window.OpenMap(path("map.fits"), -1));
    EXPECT_FALSE(areas(window).workingTracker());
    window.SendMessage(WM_CLOSE);
    EXPECT_FALSE(window.GetSafeHwnd());
    EXPECT_EQ(copies(), 0u);
}

TEST_F(ViewWindow, ABadMapLeavesTheShownOneAndItsAreas)
{
    MainWindow window;
    open(window);
    addArea(window, 8);
    areas(window).SetSaved();
    std::ofstream(path("bad.fits")) << "SIMPLE  = no";
    EXPECT_FALSE(window.OpenMap(path("bad.fits"), -1));
    EXPECT_FALSE(window.OpenMap(path("gone.fits"), -1));
    ASSERT_EQ(said.size(), 2u);
    EXPECT_NE(said[0].find("bad.fits"), std::string::npos);
    EXPECT_EQ(areas(window).count(), 1);
    EXPECT_EQ(window.GetWindowText().substr(0, 8), "map.fits");
}

TEST_F(ViewWindow, ReplacesAreasByADamagedFileOnlyWhenTheUserAgrees)
{
    MainWindow window;
    open(window);
    for (const int size : {20, 15, 10})
        addArea(window, size);
    fileAnswer = path("a.areas");
    window.SendMessage(WM_COMMAND, idSaveAreas);
    fs::resize_file(path("a.areas"), fs::file_size(path("a.areas")) - 10);
    areas(window).Clear(nullptr);
    addArea(window, 5);

    dialogAnswer = IDCANCEL;
    EXPECT_FALSE(window.OpenAreas(path("a.areas")));
    EXPECT_EQ(areas(window).count(), 1);
    dialogAnswer = IDOK;
    EXPECT_TRUE(window.OpenAreas(path("a.areas")));
    EXPECT_EQ(areas(window).count(), 2);
    EXPECT_EQ(window.session().file(), "");  // Save would lose the third
    EXPECT_TRUE(window.session().isModified());
    window.SendMessage(WM_COMMAND, ID_TRACK_UNDO);
    EXPECT_EQ(areas(window).count(), 1);
    EXPECT_TRUE(said.empty());
}

TEST_F(ViewWindow, OffersTheAreasOfAKilledSession)
{
    const std::string left = path("profile/left");
    {
        MainWindow window;
        open(window);
        addArea(window, 8);
        fs::copy_file(window.session().autosave().file(), left);
        answer = IDNO;
        window.SendMessage(WM_CLOSE);
    }
    const std::string name = Autosave(path("profile/"), path("map.fits")).file();
    for (const int choice : {IDCANCEL, IDYES, IDNO}) {
        if (!copies())
            fs::copy_file(left, name);
        said.clear();
        answer = choice;
        MainWindow window;
        open(window);
        ASSERT_EQ(said.size(), 1u) << choice;
        EXPECT_NE(said[0].find("1 area,"), std::string::npos) << said[0];
        EXPECT_EQ(areas(window).count(), choice == IDYES);
        EXPECT_EQ(window.session().isModified(), choice == IDYES);
        EXPECT_EQ(copies(), choice == IDNO ? 0u : 1u);
        answer = IDNO;
        window.SendMessage(WM_CLOSE);
        EXPECT_EQ(copies(), choice == IDCANCEL ? 1u : 0u);
    }
}

TEST_F(ViewWindow, ForgetsARecentMapThatIsGone)
{
    writeMap("other.fits");
    MainWindow window;
    open(window);
    ASSERT_TRUE(window.OpenMap(path("other.fits"), -1));
    fs::remove(path("map.fits"));
    window.SendMessage(WM_COMMAND, idRecent + 1);
    ASSERT_EQ(said.size(), 1u);
    EXPECT_NE(said[0].find("map.fits"), std::string::npos);
    EXPECT_EQ(window.session().map(), path("other.fits"));
    window.SendMessage(WM_COMMAND, idRecent + 1);  // nothing there any more
    EXPECT_EQ(said.size(), 1u);
}

TEST_F(ViewWindow, EndsInDisorderWithACopyLeft)
{
    {
        MainWindow window;
        open(window);
        addArea(window, 8);
        addArea(window, 9);  // within the pace: not written yet
        areas(window).BeginMode(&window.view(), toolArea);
        const CPoint at = window.view().GetAxis()->getGraphRect().CenterPoint();
        for (const CPoint step : {CPoint(0, 0), CPoint(40, 0), CPoint(0, 40)}) {
            const LPARAM there = MAKELPARAM(at.x + step.x, at.y + step.y);
            window.view().PostMessage(WM_LBUTTONUP, 0, there);
            window.view().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, there);
        }
        window.DestroyWindow();
    }
    ASSERT_EQ(copies(), 1u);
    ARPTrackerArray read;
    AreaNotes notes;
    std::string error;
    const std::string file = Autosave(path("profile/"), path("map.fits")).file();
    ASSERT_TRUE(openAreas(file, AreaPlace(), read, notes, error)) << error;
    ASSERT_EQ(read.count(), 3);
    EXPECT_FALSE(read(2)->IsReady());  // the polygon that was still open
}

TEST_F(ViewWindow, TakesDroppedMapsAndAreasInAnyOrder)
{
    ARPTrackerArray one;
    one.Add(new ARPRectTracker);
    std::string error;
    ASSERT_TRUE(saveAreas(path("jet.areas"), AreaPlace(), one, error)) << error;
    const auto drop = [&](MainWindow& window, const std::vector<CString>& files) {
        window.SendMessage(WM_DROPFILES, 0, reinterpret_cast<LPARAM>(&files));
    };
    {
        MainWindow window;
        ASSERT_TRUE(window.Create(ViewOptions()));
        drop(window, {path("jet.areas"), path("map.fits")});
        EXPECT_EQ(window.session().map(), path("map.fits"));
        EXPECT_EQ(areas(window).count(), 1);
        window.SendMessage(WM_CLOSE, 0, 0);  // or the next start would bring it back
    }
    forgetQuit();
    ViewWindows windows;
    ViewOptions options;
    options.map = path("jet.areas");
    options.more = {path("map.fits")};
    ASSERT_TRUE(windows.openFirst(options));
    EXPECT_EQ(windows.count(), 1);
    // areas alone ask for their map; without an answer the window stays empty
    MainWindow asking;
    ASSERT_TRUE(asking.Create(ViewOptions()));
    fileAnswer.clear();
    drop(asking, {path("jet.areas")});
    EXPECT_EQ(asking.session().map(), "");
    fileAnswer = path("map.fits");
    drop(asking, {path("jet.areas")});
    EXPECT_EQ(areas(asking).count(), 1);
    EXPECT_TRUE(said.empty());
}

TEST_F(ViewWindow, StartsWithAreasThatUndoDoesNotTakeAway)
{
    ARPTrackerArray one;
    one.Add(new ARPRectTracker);
    std::string error;
    ASSERT_TRUE(saveAreas(path("start.areas"), AreaPlace(), one, error)) << error;
    ViewOptions options;
    options.map = path("map.fits");
    options.areas = path("start.areas");
    MainWindow window;
    ASSERT_TRUE(window.Create(options) && window.OpenFirst(options));
    EXPECT_FALSE(window.view().GetToolBar()->IsButtonEnabled(ID_TRACK_UNDO));
    window.SendMessage(WM_COMMAND, ID_TRACK_UNDO);
    EXPECT_EQ(areas(window).count(), 1);
    EXPECT_FALSE(window.session().isModified());
}

}  // namespace pavane
