// Several maps in one window of pavane-view.
#include "apps/view/rgb_maps.h"
#include "apps/view/ViewWindows.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/dialogs/show_map_display.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/sky/ASkyGrid.h"
#include "platform/drop_files.h"
#include "tests/apps/view_window_fixture.h"

namespace pavane
{

namespace
{

class ViewSeveral : public ViewWindow
{
protected:
    /// A map of another size and cell, centred a little off, without a place on the sky when `cell`
    /// is 0.
    void writeOther(const std::string& name, double cell = 2e-8, int side = 40)
    {
        AMatrix<float> cells(side, side);
        for (int i = 0; i < side * side; ++i)
            cells.data()[i] = std::cos(static_cast<float>(i) * 0.02f);
        MapHeader header;
        header.axes = {{side, "RA---TAN", "deg", 187.7 + 1e-7, side / 2.0, -cell, 0},
                       {side, "DEC--TAN", "deg", 12.4, side / 2.0, cell, 0}};
        header.hasCelestialAxes = cell != 0;
        if (cell == 0)
            header.axes[0].ctype = header.axes[1].ctype = "";
        std::string error;
        ASSERT_TRUE(writeFitsMap(path(name), cells, header, error)) << error;
    }
    void openTwo(MainWindow& window)
    {
        writeOther("other.fits");
        open(window);
        ASSERT_TRUE(window.AddMap(path("other.fits"), -1));
    }
};

void run(MainWindow& window, unsigned id) { window.SendMessage(WM_COMMAND, id, 0); }

/// The position in the middle of what a map shows.
void middleOf(MainWindow& window, int map, double& ra, double& dec)
{
    const CString file = window.maps().names()[static_cast<std::size_t>(map)];
    const TMinMax range = window.viewOf(map).GetPlot()->getMinMax();
    const ABMapGraph& graph = *window.viewOf(map).GetMap();
    FitsMap content;
    std::string error;
    SkyCoordinates sky;
    ASSERT_TRUE(
        readFitsMap(
            std::string(window.session().map()).substr(0, window.session().map().rfind('/') + 1) +
                file,
            -1, content, error) &&
        sky.init(content.header, error))
        << error;
    ASSERT_TRUE(sky.toSky(graph.RPXtoMPX((range.xMin + range.xMax) / 2),
                          graph.RPYtoMPY((range.yMin + range.yMax) / 2), ra, dec));
}

}  // namespace

TEST_F(ViewSeveral, MapsAreAddedChosenAndClosed)
{
    MainWindow window;
    openTwo(window);
    EXPECT_EQ(window.maps().count(), 2);
    EXPECT_EQ(window.maps().current(), 1);
    EXPECT_EQ(window.session().map(), path("other.fits"));
    EXPECT_EQ(window.stage().tabs().GetItemCount(), 2);
    run(window, idNextOfMaps);
    EXPECT_EQ(window.maps().current(), 0);
    EXPECT_EQ(window.stage().tabs().GetCurSel(), 0);
    EXPECT_EQ(window.session().map(), path("map.fits"));
    EXPECT_TRUE(window.AddMap(path("other.fits"), -1));  // it is there
    EXPECT_EQ(window.maps().count(), 2);
    EXPECT_EQ(window.maps().current(), 1);
    EXPECT_FALSE(window.AddMap(path("missing.fits"), -1));
    EXPECT_EQ(said.size(), 1U);
    // a drop with Shift comes into this window
    writeOther("third.fits", 3e-8);
    const std::vector<CString> files = {path("third.fits")};
    window.SendMessage(WM_DROPFILES, MK_SHIFT, reinterpret_cast<LPARAM>(&files));
    EXPECT_EQ(window.maps().count(), 3);
    for (const unsigned way : {idMapsSideBySide, idMapsSlider, idMapsTabs}) {
        run(window, way);
        for (int i = 0; i < 3; ++i) {
            run(window, idNextOfMaps);
            EXPECT_EQ(window.maps().current(), i);
            EXPECT_TRUE(window.view().IsWindowVisible());
        }
    }
    run(window, idCloseMap);
    run(window, idCloseMap);
    run(window, idCloseMap);
    EXPECT_EQ(window.maps().count(), 1);  // the last one stays
    EXPECT_TRUE(window.view().GetMap());
    EXPECT_EQ(window.stage().tabs().IsWindowVisible(), 0);
}

TEST_F(ViewSeveral, AreasArePutAsideWithTheirMapAndAskedForAtTheEnd)
{
    MainWindow window;
    openTwo(window);
    addArea(window, 1);
    run(window, idNextOfMaps);
    EXPECT_EQ(areas(window).count(), 0);
    EXPECT_EQ(copies(), 1U);  // of the areas that were left
    addArea(window, 1);
    addArea(window, 2);
    run(window, idNextOfMaps);
    EXPECT_EQ(areas(window).count(), 1);
    EXPECT_TRUE(window.session().isModified());
    answer = IDCANCEL;
    window.SendMessage(WM_CLOSE);
    EXPECT_TRUE(window.GetSafeHwnd());
    ASSERT_EQ(said.size(), 1U);
    answer = IDNO;
    window.SendMessage(WM_CLOSE);
    EXPECT_FALSE(window.GetSafeHwnd());
    EXPECT_EQ(said.size(), 3U);  // of both maps
    EXPECT_EQ(copies(), 0U);
    answer = IDOK;
}

TEST_F(ViewSeveral, ZoomAndPointerAreLinkedBySky)
{
    MainWindow window;
    openTwo(window);
    for (const int leader : {0, 1, 0}) {
        ASSERT_TRUE(window.ChooseMap(leader));
        window.view().UpdateWindow();
        const CRect plot = window.view().GetPlot()->getGraphRect();
        window.view().ZoomAbout({plot.left + plot.Width() / 3, plot.CenterPoint().y}, 2);
        double ra[2], dec[2];
        middleOf(window, 0, ra[0], dec[0]);
        middleOf(window, 1, ra[1], dec[1]);
        EXPECT_NEAR(ra[0], ra[1], 1e-11);
        EXPECT_NEAR(dec[0], dec[1], 1e-11);
    }
    // the pointer over the current map is marked in the other one
    MapWindow& shown = window.view();
    const ABAxis& axis = *shown.GetPlot();
    const CPoint middle = axis.getGraphRect().CenterPoint();
    shown.SendMessage(WM_MOUSEMOVE, 0, MAKELPARAM(middle.x, middle.y));
    int row = -1, column = -1;
    ASSERT_TRUE(window.viewOf(1).GetLinkedCell(row, column));
    const TMinMax range = window.viewOf(1).GetPlot()->getMinMax();
    const ABMapGraph& graph = *window.viewOf(1).GetMap();
    EXPECT_NEAR(column, graph.RPXtoMPX((range.xMin + range.xMax) / 2), 1);
    EXPECT_NEAR(row, graph.RPYtoMPY((range.yMin + range.yMax) / 2), 1);
    EXPECT_FALSE(shown.GetLinkedCell(row, column));
    run(window, idLinkNothing);
    EXPECT_FALSE(window.viewOf(1).GetLinkedCell(row, column));
    const TMinMax before = window.viewOf(1).GetPlot()->getMinMax();
    run(window, ID_WHOLE_MAP);
    EXPECT_EQ(window.viewOf(1).GetPlot()->getMinMax(), before);
}

TEST_F(ViewSeveral, AMapWithoutPositionsIsLinkedByCellAndALineSaysSo)
{
    MainWindow window;
    open(window);
    writeOther("plain.fits", 0);
    ASSERT_TRUE(window.AddMap(path("plain.fits"), -1));
    AccessPart line;
    ASSERT_TRUE(const_cast<StatusLine&>(window.statusLine()).GetAccess()->GetAccessPart(0, line));
    EXPECT_NE(line.value.find("by cell where a map has no positions"), std::string::npos)
        << line.value;
    const TMinMax first = window.viewOf(0).GetPlot()->getMinMax();
    const TMinMax range = window.viewOf(1).GetPlot()->getMinMax();
    EXPECT_NEAR(range.xMax - range.xMin,
                (first.xMax - first.xMin) / std::abs(window.viewOf(0).GetMap()->MPXtoRPX(1) -
                                                     window.viewOf(0).GetMap()->MPXtoRPX(0)),
                1e-6);
}

TEST_F(ViewSeveral, LinkedAreasGoOverAndComeBackWithUndo)
{
    MainWindow window;
    openTwo(window);
    addArea(window, 1);
    ASSERT_TRUE(window.ChooseMap(0));
    answer = IDCANCEL;
    run(window, idLinkAreas);
    EXPECT_FALSE(window.links().has(linkAreas));
    answer = IDOK;
    run(window, idLinkAreas);
    EXPECT_EQ(window.viewOf(1).GetTrackers()->count(), 0);
    addArea(window, 2);
    run(window, ID_SELECT_ALL);
    ATrackerArrayInAxis& there = *window.viewOf(1).GetTrackers();
    ASSERT_EQ(there.count(), 1);
    ShapeValues shape;
    ASSERT_TRUE(there.GetShape(0, shape));
    ASSERT_TRUE(window.ChooseMap(1));
    run(window, ID_TRACK_UNDO);
    EXPECT_EQ(there.count(), 0);
    EXPECT_EQ(window.viewOf(0).GetTrackers()->count(), 0);  // it leads now
    run(window, ID_TRACK_UNDO);
    EXPECT_EQ(there.count(), 1);  // its own
}

TEST_F(ViewSeveral, LinkedColoursKeepTheRangesOfTheMaps)
{
    MainWindow window;
    openTwo(window);
    run(window, idLinkColours);
    const MapDisplay other = shownDisplay(window.viewOf(0));
    run(window, idScale + 2);
    const MapDisplay led = shownDisplay(window.viewOf(0));
    EXPECT_EQ(led.colours.scale, MapScaleKind::logarithmic);
    EXPECT_EQ(led.colours.range, other.colours.range);
}

TEST_F(ViewSeveral, ASecondPictureIsThereAtOnce)
{
    MainWindow window;
    openTwo(window);
    window.SendMessage(WM_TIMER, 3);
    ASSERT_TRUE(window.ChooseMap(0));
    window.viewOf(0).UpdateWindow();
    window.viewOf(0).ZoomAbout(window.viewOf(0).GetPlot()->getGraphRect().CenterPoint(), 1.5);
    window.viewOf(0).UpdateWindow();
    window.SendMessage(WM_TIMER, 3);
    const int drawn[] = {window.viewOf(0).contentDrawings(), window.viewOf(1).contentDrawings()};
    for (int i = 0; i < 4; ++i) {
        run(window, idNextOfMaps);
        window.view().UpdateWindow();
    }
    EXPECT_EQ(window.viewOf(0).contentDrawings(), drawn[0]);
    EXPECT_EQ(window.viewOf(1).contentDrawings(), drawn[1]);
    // one place of the sky lies at one pixel of both
    EXPECT_EQ(window.viewOf(0).GetPlot()->getGraphRect(),
              window.viewOf(1).GetPlot()->getGraphRect());
    run(window, idBlinkMaps);
    window.SendMessage(WM_TIMER, 2);
    EXPECT_EQ(window.stage().front(), 1);
    EXPECT_EQ(window.maps().current(), 0);
    run(window, idBlinkMaps);
    EXPECT_EQ(window.maps().current(), 1);  // what showed at the end
}

TEST_F(ViewSeveral, AFileThatIsGoneIsTold)
{
    MainWindow window;
    openTwo(window);
    fs::remove(path("map.fits"));
    ASSERT_TRUE(window.ChooseMap(0));
    AccessPart line;
    ASSERT_TRUE(const_cast<StatusLine&>(window.statusLine()).GetAccess()->GetAccessPart(0, line));
    EXPECT_NE(line.value.find("map.fits is not there any more"), std::string::npos) << line.value;
    EXPECT_TRUE(window.view().GetMap());
}

TEST_F(ViewSeveral, NamesOnTheCommandLineShareAWindow)
{
    writeOther("other.fits");
    ViewOptions options;
    options.map = path("map.fits");
    options.more = {path("other.fits")};
    ViewWindows windows;
    ASSERT_TRUE(windows.openFirst(options));
    EXPECT_EQ(windows.count(), 1);
    EXPECT_TRUE(windows.openWindow(path("map.fits")));  // as before
    EXPECT_EQ(windows.count(), 2);
}

/// Of maps with other cells the second one is brought over after a question, and the result comes
/// into the window.
TEST_F(ViewSeveral, TheDifferenceOfTwoIsAThirdMap)
{
    MainWindow window;
    writeOther("other.fits");
    writeOther("again.fits", 1.5e-8, 60);
    open(window);
    run(window, idPairDifference);
    EXPECT_EQ(window.maps().count(), 1);  // told: it takes two
    ASSERT_TRUE(window.AddMap(path("other.fits"), -1));
    ASSERT_TRUE(window.AddMap(path("again.fits"), -1));
    ASSERT_TRUE(window.ChooseMap(1));
    fileAnswer = path("made.fits");
    answer = IDNO;
    run(window, idPairDifference);
    ASSERT_EQ(said.size(), 1U);
    EXPECT_NE(said[0].find("Bring it onto the cells of the first map"), std::string::npos);
    EXPECT_FALSE(fs::exists(fileAnswer));
    answer = IDYES;
    run(window, idPairDifference);
    ASSERT_EQ(window.maps().count(), 4);
    EXPECT_EQ(window.session().map(), fileAnswer);
    const AMatrixAccess& cells = window.view().GetMap()->cells();
    const AMatrixAccess& first = window.viewOf(1).GetMap()->cells();
    ASSERT_EQ(cells.rows(), first.rows());
    // a cell whose place both maps have a cell's centre at: the middle
    const AMatrixAccess& second = window.viewOf(2).GetMap()->cells();
    EXPECT_NEAR(cells.cell(19, 19), first.cell(19, 19) - second.cell(29, 29), 1e-5);
    said.clear();
    fileAnswer = path("other.fits");  // it is open: nothing is written over it
    run(window, idPairRatio);
    EXPECT_EQ(said.size(), 1U);
    EXPECT_EQ(window.maps().count(), 4);
}

TEST_F(ViewSeveral, ContoursOfTheOtherMapComeAndGo)
{
    MainWindow window;
    openTwo(window);
    const auto* const graph =
        dynamic_cast<const ALevelsColorGraph*>(window.viewOf(window.maps().current()).GetMap());
    ASSERT_TRUE(graph);
    const auto own = [&] { return graph->contours().wantedLevels().values(1, 0).size(); };
    const std::size_t levels = own();
    ASSERT_GT(levels, 0U);
    for (const unsigned id : {idOtherContours, idOtherContours}) {
        run(window, id);
        EXPECT_EQ(own() > 0, own() == levels);
        EXPECT_TRUE(window.view().IsWindowVisible());
    }
    EXPECT_EQ(own(), levels);
    run(window, idOtherContours);
    EXPECT_EQ(own(), 0U);
    run(window, idCloseMap);  // the map below goes, then the other one has its own
    run(window, idOtherContours);
    EXPECT_EQ(window.maps().count(), 1);
}

TEST_F(ViewSeveral, ThreeMapsAreOneOfThreeColours)
{
    MainWindow window;
    openTwo(window);
    run(window, idMakeRgb);  // the dialog is cancelled
    EXPECT_EQ(window.maps().count(), 2);
    dialogAnswer = IDOK;
    answer = IDYES;
    fileAnswer = path("rgb.fits");
    run(window, idMakeRgb);
    dialogAnswer = IDCANCEL;
    ASSERT_EQ(said.size(), 1U);
    EXPECT_NE(said[0].find("Bring the others onto the cells"), std::string::npos);
    ASSERT_EQ(window.maps().count(), 3);
    EXPECT_EQ(window.maps().current(), 2);
    EXPECT_EQ(window.session().map(), fileAnswer);
    const auto* const graph = dynamic_cast<const ALevelsColorGraph*>(window.view().GetMap());
    ASSERT_TRUE(graph && graph->rgb());
    EXPECT_EQ(graph->rgb()->map().bands[0].name, "map.fits");
    window.view().UpdateWindow();
    EXPECT_EQ(rgbValueText(*graph->rgb(), 0, -1), "blank, blank, blank");
    EXPECT_TRUE(window.planeWanted(2));  // its numbers are those of blue then
    EXPECT_TRUE(graph->rgb());
}

TEST_F(ViewSeveral, AShiftMovesWhatIsCompared)
{
    // the same source, three columns and a row aside
    const auto write = [&](const std::string& name, int column, int row) {
        constexpr int side = 48;
        AMatrix<float> cells(side, side);
        for (int r = 0; r < side; ++r)
            for (int c = 0; c < side; ++c)
                cells(r, c) = static_cast<float>(
                    std::exp(-((c - column) * (c - column) + 2 * (r - row) * (r - row)) / 30.0));
        MapHeader header;
        constexpr double cell = 2e-8;
        header.axes = {{side, "RA---SIN", "deg", 187.7, 24.0, -cell, 0},
                       {side, "DEC--SIN", "deg", 12.4, 24.0, cell, 0}};
        header.hasCelestialAxes = 1;
        std::string error;
        ASSERT_TRUE(writeFitsMap(path(name), cells, header, error)) << error;
    };
    write("here.fits", 24, 24);
    write("there.fits", 27, 23);
    MainWindow window;
    open(window);
    ASSERT_TRUE(window.AddMap(path("there.fits"), -1));
    ASSERT_TRUE(window.AddMap(path("here.fits"), -1));
    const auto left = [&] { return window.viewOf(1).GetPlot()->getMinMax().xMin; };
    const double before = left();
    run(window, idFindShift);  // cancelled
    EXPECT_EQ(left(), before);
    dialogAnswer = IDOK;
    run(window, idFindShift);
    dialogAnswer = IDCANCEL;
    const ABMapGraph& graph = *window.viewOf(1).GetMap();
    EXPECT_NEAR(graph.RPXtoMPX(left()) - graph.RPXtoMPX(before), 3, 0.01);
    // work files have it
    Work saved;
    {
        ASSERT_TRUE(window.SaveWork(path("a.work")));
        MainWindow again;
        ASSERT_TRUE(again.Create(ViewOptions()) && again.OpenWork(path("a.work")));
        ASSERT_TRUE(again.SaveWork(path("b.work")));
        for (const char* name : {"a.work", "b.work"}) {
            std::vector<std::string> notes;
            std::string error;
            ASSERT_TRUE(readWork(path(name), saved, notes, error)) << error;
            EXPECT_NEAR(saved.maps[1].shift.east, 6e-8, 2e-10);
            EXPECT_NEAR(saved.maps[1].shift.north, 2e-8, 2e-10);
        }
        again.SendMessage(WM_CLOSE, 0, 0);
    }
    forgetQuit();
    fileAnswer = path("made.fits");
    run(window, idPairDifference);
    ASSERT_EQ(window.maps().count(), 4);
    EXPECT_LT(mapRange(window.view().GetMap()->cells()).greatest, 2e-3);
    ASSERT_TRUE(window.ChooseMap(2));
    run(window, idResetShifts);
    EXPECT_NEAR(left(), before, 1e-9 * std::fabs(before));
}

TEST_F(ViewSeveral, LinkedAreasFollowADrag)
{
    MainWindow window;
    openTwo(window);
    ASSERT_TRUE(window.ChooseMap(0));
    run(window, idLinkAreas);
    addArea(window, 15);
    const CPoint from = window.view().GetAxis()->getGraphRect().CenterPoint();
    MapWindow& other = window.viewOf(1);
    for (const int ends : {0, 1}) {
        int followed = 0;
        const auto drag = [&](unsigned message, unsigned key) {
            window.view().PostMessage(WM_MOUSEMOVE, MK_LBUTTON,
                                      MAKELPARAM(from.x + 30, from.y + 40));
            window.view().PostMessage(message, key, MAKELPARAM(from.x + 30, from.y + 40));
            window.view().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from.x, from.y));
            followed = static_cast<int>(other.GetComingAreas().size());
        };
        drag(ends ? WM_LBUTTONUP : WM_KEYDOWN, ends ? 0 : VK_ESCAPE);
        EXPECT_EQ(followed, !ends);  // a drag that is given up tells nobody
        window.SendMessage(WM_TIMER, 5);
        EXPECT_TRUE(other.GetComingAreas().empty());
    }
    EXPECT_EQ(other.GetTrackers()->count(), 1);
}

}  // namespace pavane
