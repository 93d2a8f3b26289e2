// The sky in the window of a map: its grid, going to a position, copying one, the header.
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/sky/ASkyGrid.h"
#include "platform/clipboard.h"
#include "tests/apps/view_window_fixture.h"

namespace pavane
{

namespace
{

using ViewSky = ViewWindow;

std::string typed;

int typePosition(CDialog& dialog)
{
    constexpr unsigned text = 102;
    dialog.GetDlgItem(text)->SetWindowText(typed);
    dialog.SendMessage(WM_COMMAND, IDOK, 0);
    return IDCANCEL;
}

void run(MainWindow& window, unsigned id) { window.SendMessage(WM_COMMAND, id, 0); }

const ASkyGrid& gridOf(MainWindow& window)
{
    auto& axis = dynamic_cast<A2DAxis&>(*window.view().GetPlot());
    return dynamic_cast<ASkyGrid&>(*axis.skyGrid());
}

}  // namespace

TEST_F(ViewSky, TheGridGoesRoundAndIsKept)
{
    {
        MainWindow window;
        open(window);
        for (const SkyGridShown shown :
             {SkyGridShown::ticks, SkyGridShown::lines, SkyGridShown::none, SkyGridShown::ticks}) {
            run(window, idSkyGrid);
            EXPECT_EQ(gridOf(window).shown(), shown);
        }
        run(window, idSkyFrame + 4);
        run(window, idSkyLabels + 1);
        window.SendMessage(WM_CLOSE, 0, 0);
    }
    forgetQuit();
    MainWindow window;
    open(window);
    EXPECT_EQ(gridOf(window).shown(), SkyGridShown::ticks);
    EXPECT_EQ(gridOf(window).frame().system, SkyFrame::System::galactic);
    EXPECT_EQ(gridOf(window).labels(), SkyLabels::sexagesimal);
}

TEST_F(ViewSky, MarksLieWhereTheirListSays)
{
    MainWindow window;
    open(window);
    std::ofstream(path("marks.csv")) << "name,ra,dec\ncentre,187.7,12.4\nfar,7.7,12.4\n";
    std::ofstream(path("some.csv")) << "name,x,y\na,1,1\nb,here,1\n";
    fileAnswer = path("marks.csv");
    run(window, idOpenMarks);
    EXPECT_EQ(window.view().GetSkyMarks().placed(), 1);
    // a line that is lost is asked about, and nothing changes without an answer
    fileAnswer = path("some.csv");
    SetDialogAnswer([](CDialog&) { return int{IDCANCEL}; });
    run(window, idOpenMarks);
    EXPECT_EQ(window.marksFile(), path("marks.csv"));
    SetDialogAnswer([](CDialog&) { return int{IDOK}; });
    run(window, idOpenMarks);
    EXPECT_EQ(window.marksFile(), path("some.csv"));
    EXPECT_EQ(window.view().GetSkyMarks().placed(), 1);
    EXPECT_TRUE(said.empty());
    run(window, idNoMarks);
    EXPECT_EQ(window.view().GetSkyMarks().placed(), 0);
    fileAnswer = path("nowhere.csv");
    run(window, idOpenMarks);
    EXPECT_EQ(said.size(), 1U);
}

TEST_F(ViewSky, APositionIsGoneToAndCopied)
{
    MainWindow window;
    open(window);
    SetDialogAnswer(typePosition);
    typed = "187.7 12.4";  // the reference pixel
    run(window, idGoToPosition);
    int row = 0, column = 0;
    ASSERT_TRUE(window.view().GetLinkedCell(row, column));
    EXPECT_EQ(column, 31);
    EXPECT_EQ(row, 23);
    EXPECT_TRUE(window.view().IsRangeZoomed());
    const TMinMax range = window.view().GetPlot()->getMinMax();
    EXPECT_NEAR(range.xMin + range.xMax, 0, 1e-9);
    typed = "12 12";
    run(window, idGoToPosition);
    ASSERT_EQ(said.size(), 1U);
    EXPECT_NE(said[0].find("does not lie on the map"), std::string::npos);
    EXPECT_EQ(window.view().GetPlot()->getMinMax(), range);

    AxisStatus there;
    there.inPlot = 1;
    window.view().OnStatus(there);
    run(window, idCopyPosition);
    CString text;
    ASSERT_TRUE(GetClipboardText(text));
    EXPECT_TRUE(text.starts_with("12h30m48.0") &&
                text.ends_with("+12\u00b024\u203200.000000\u2033 (ICRS)"))
        << text;
}

}  // namespace pavane
