// What is half done in the window of pavane-view.
#include "apps/view/any_area_file.h"
#include "pavane/axes/A2DAxis.h"
#include "tests/apps/view_window_fixture.h"

namespace pavane
{

TEST_F(ViewWindow, EndsADragThatItsOwnClosingInterrupts)
{
    MainWindow window;
    open(window);
    const CRect plot = window.view().GetAxis()->getGraphRect();
    const CPoint from = plot.CenterPoint();
    areas(window).BeginMode(&window.view(), toolRect);
    window.view().PostMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(from.x + 30, from.y + 40));
    fileAnswer = path("map.fits");
    window.PostMessage(WM_COMMAND, idOpenMap);  // a drag lets no command in
    window.PostMessage(WM_CLOSE);
    window.view().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from.x, from.y));
    EXPECT_FALSE(window.GetSafeHwnd());
    EXPECT_TRUE(said.empty());
    EXPECT_EQ(copies(), 0u);
}

TEST_F(ViewWindow, KeepsAndSavesNothingThatADragHasHalfDone)
{
    const std::string copy = Autosave(path("profile/"), path("map.fits")).file();
    const auto edge = [](const std::string& file) {
        ARPTrackerArray read;
        AreaNotes notes;
        std::string error;
        EXPECT_TRUE(openAreas(file, AreaPlace(), read, notes, error)) << error;
        return read.count() == 2 ? static_cast<ARPRectTracker*>(read(1))->rect().left : 0;
    };
    for (const int closes : {0, 1}) {
        MainWindow window;
        open(window);
        addArea(window, 20);
        addArea(window, 15);  // within the pace: the copy is to be written later
        const CPoint from = window.view().GetAxis()->getGraphRect().CenterPoint();
        window.view().PostMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(from.x + 30, from.y + 40));
        if (closes)
            window.PostMessage(WM_CLOSE);
        else
            window.PostMessage(WM_TIMER, 1);
        window.view().PostMessage(WM_KEYDOWN, VK_ESCAPE);
        answer = closes ? IDYES : IDNO;
        fileAnswer = path("closed.areas");
        window.view().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from.x, from.y));
        EXPECT_DOUBLE_EQ(edge(closes ? fileAnswer : copy), 15e-5);
        EXPECT_NE(window.GetSafeHwnd() != 0, closes != 0);
        window.SendMessage(WM_CLOSE);
        forgetQuit();
    }
}

TEST_F(ViewWindow, BringsAnOpenPolygonBackAsOneThatIsBeingDrawn)
{
    const auto click = [](MainWindow& window, CPoint at) {
        window.view().PostMessage(WM_LBUTTONUP, 0, MAKELPARAM(at.x, at.y));
        window.view().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(at.x, at.y));
    };
    for (const int corners : {1, 2, 3}) {
        SCOPED_TRACE(corners);
        CPoint at;
        {
            MainWindow window;
            open(window);
            at = window.view().GetAxis()->getGraphRect().CenterPoint();
            addArea(window, 8);
            window.view().ChooseTool(toolArea);
            for (int i = 0; i < corners; ++i)
                click(window, {at.x + 40 * (i == 1), at.y + 40 * (i == 2)});
            window.DestroyWindow();
            forgetQuit();
        }
        said.clear();
        answer = IDYES;
        MainWindow window;
        open(window);
        ASSERT_EQ(said.size(), 1u);
        EXPECT_NE(said[0].find("1 area and an open polygon"), std::string::npos) << said[0];
        ASSERT_TRUE(areas(window).workingTracker());
        EXPECT_EQ(areas(window).count(), 1);
        click(window, {at.x - 60, at.y - 60});
        EXPECT_EQ(areas(window).CloseArea(&window.view()), corners > 1);
        while (areas(window).Undo(&window.view())) {
        }
        EXPECT_TRUE(areas(window).count() == 0 && !areas(window).workingTracker());
        answer = IDNO;
        window.SendMessage(WM_CLOSE);
        forgetQuit();
    }
}

}  // namespace pavane
