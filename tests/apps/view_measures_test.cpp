// Profiles, spectra, histograms and fits in the window of pavane-view.
#include "pavane/axes/A2DAxis.h"
#include "tests/apps/view_window_fixture.h"

namespace pavane
{

namespace
{

/// The sum of a column of the curve's numbers.
double sumOf(const MeasuredCurve& curve, const char* title)
{
    double sum = 0, value = 0;
    for (int c = 0; c < curve.table.columns(); ++c)
        for (int r = 0; curve.table.title(c).starts_with(title) && r < curve.table.rows(); ++r)
            sum += curve.table.number(r, c, value) ? value : 0;
    return sum;
}

}  // namespace

TEST_F(ViewWindow, AProfileFollowsItsLine)
{
    MainWindow window;
    open(window);
    CurvePanel& curves = window.curves();
    window.SendMessage(WM_COMMAND, idProfile);
    window.view().UpdateWindow();
    ASSERT_TRUE(curves.isShown() && curves.line().isShown());
    EXPECT_GT(clientOf(curves).Height(), 80);
    const ProfileLine first = curves.line().line();
    ASSERT_EQ(first.corners.size(), 2u);
    EXPECT_EQ(curves.curve().y.size(),
              2 * static_cast<std::size_t>(first.corners[1].x - first.corners[0].x) + 1);
    EXPECT_TRUE(curves.Keep());

    // the end is dragged by the mouse, and again, which Escape takes back
    A2DAxis& axis = *window.view().GetAxis();
    const ABMapGraph& map = *window.view().GetMap();
    const auto pixelOf = [&](const MapPlace& cell) {
        const CPointF at = axis.RPtoGPF(map.MPXtoRPX(cell.x), map.MPYtoRPY(cell.y));
        return MAKELPARAM(static_cast<int>(at.x), static_cast<int>(at.y));
    };
    const auto drag = [&](const MapPlace& from, const MapPlace& to, unsigned end) {
        window.view().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, pixelOf(from));
        window.view().SendMessage(WM_MOUSEMOVE, MK_LBUTTON, pixelOf(to));
        if (end == WM_KEYDOWN)
            window.view().SendMessage(WM_KEYDOWN, VK_ESCAPE);
        else
            window.view().SendMessage(end, 0, pixelOf(to));
    };
    const MapPlace to{first.corners[1].x, first.corners[1].y + 10};
    drag(first.corners[1], to, WM_LBUTTONUP);
    const ProfileLine second = curves.line().line();
    EXPECT_NEAR(second.corners[1].y, to.y, 0.5);
    EXPECT_EQ(second.corners[0].y, first.corners[0].y);
    EXPECT_GT(curves.curve().y.size(), 2u);
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
    drag(second.corners[1], first.corners[1], WM_KEYDOWN);
    EXPECT_EQ(curves.line().line().corners[1].y, second.corners[1].y);
    EXPECT_EQ(areas(window).count(), 0);
    // a line by its numbers
    ProfileLine typed;
    EXPECT_TRUE(readLine("3,4,30,40,5 sum", typed));
    EXPECT_EQ(lineText(typed), "3.000,4.000,30.000,40.000,5 sum");
    for (const char* bad : {"", "3,4", "3,4,5,6 sum", "3,4,5,6,7 most", "a,b,c,d"})
        EXPECT_FALSE(readLine(bad, typed)) << bad;
    EXPECT_EQ(typed.corners.size(), 2u);
    curves.SetLine({{{-50, -50}, {-40, -50}}});
    EXPECT_TRUE(curves.curve().isEmpty());
    curves.SetLine(typed);
    EXPECT_EQ(curves.kept(), 1);
    EXPECT_FALSE(curves.curve().isEmpty());

    fileAnswer = path("profile.tsv");
    window.SendMessage(WM_COMMAND, idSaveCurve);
    EXPECT_TRUE(fs::exists(fileAnswer));
    fileAnswer = path("map.fits");
    said.clear();
    window.SendMessage(WM_COMMAND, idSaveCurve);
    EXPECT_EQ(said.size(), 1u) << "the map is no place for the numbers";
    window.SendMessage(WM_COMMAND, idSpectrum);
    EXPECT_TRUE(curves.curve().isEmpty()) << "the map has one plane";
    EXPECT_FALSE(curves.line().isShown());
    window.SendMessage(WM_COMMAND, idHistogram);
    EXPECT_EQ(curves.kept(), 0);
    EXPECT_EQ(sumOf(curves.curve(), "Cells"), 48 * 64);
    addArea(window, 6);
    const double cells = sumOf(curves.curve(), "Cells");
    EXPECT_EQ(std::to_string(static_cast<int>(cells)),
              std::to_string(window.view().StatusAt(clientOf(window.view()).CenterPoint()).cells));
    window.SendMessage(WM_COMMAND, idHistogram);
    EXPECT_FALSE(curves.isShown());
}

// Steps of the line are its own while it has the focus; those of the areas wait.
TEST_F(ViewWindow, CornersOfTheLineAreMovedByKeysAndUndone)
{
    MainWindow window;
    open(window);
    addArea(window, 1);
    ASSERT_EQ(areas(window).count(), 1);
    const auto key = [&](int code) {
        window.view().SendMessage(WM_KEYDOWN, static_cast<WPARAM>(code));
    };
    const auto line = [&]() -> const ProfileLine& { return window.curves().line().line(); };
    window.SendMessage(WM_COMMAND, idLineCorners);  // shows the line, its first corner
    ASSERT_TRUE(window.curves().line().hasFocus());
    window.view().UpdateWindow();
    const ProfileLine first = line();
    const std::size_t samples = window.curves().curve().y.size();
    key(VK_TAB);
    key(VK_RIGHT);
    key(VK_RIGHT);  // at once: one step with the one before
    EXPECT_EQ(line().corners[0].x, first.corners[0].x);
    EXPECT_EQ(line().corners[1].x, first.corners[1].x + 2);
    EXPECT_EQ(window.curves().curve().y.size(), samples + 4);
    key(VK_TAB);  // all of it
    key(VK_UP);   // rows count up the screen
    EXPECT_EQ(line().corners[0].y, first.corners[0].y + 1);
    key(VK_TAB);
    window.SendMessage(WM_COMMAND, ID_VERTEX_INSERT);
    ASSERT_EQ(line().corners.size(), 3U);
    EXPECT_EQ(line().corners[1].x, (line().corners[0].x + line().corners[2].x) / 2);
    window.SendMessage(WM_COMMAND, idDelete);
    window.SendMessage(WM_COMMAND, idDelete);  // two are the least
    EXPECT_EQ(line().corners.size(), 2U);
    EXPECT_EQ(areas(window).count(), 1);
    for (int i = 0; i < 6; ++i)  // deletion, corner, up, right; then there is none
        window.SendMessage(WM_COMMAND, ID_TRACK_UNDO);
    EXPECT_EQ(line().corners[1].x, first.corners[1].x);
    EXPECT_EQ(line().corners[0].y, first.corners[0].y);
    EXPECT_EQ(areas(window).count(), 1);
    window.SendMessage(WM_COMMAND, ID_TRACK_REDO);
    EXPECT_EQ(line().corners[1].x, first.corners[1].x + 2);
    key(VK_ESCAPE);
    window.SendMessage(WM_COMMAND, ID_TRACK_UNDO);
    EXPECT_EQ(areas(window).count(), 0);
    EXPECT_EQ(line().corners[1].x, first.corners[1].x + 2);
}

TEST_F(ViewWindow, FittedGaussiansBecomeComponents)
{
    AMatrix<float> cells(48, 64);
    for (int i = 0; i < 48 * 64; ++i) {
        const int row = i / 64;
        const double x = i % 64 - 40.0, y = row - 20.0;
        cells.data()[i] = static_cast<float>(2 * std::exp(-0.02 * x * x - 0.05 * y * y));
    }
    MapHeader header;
    header.axes = {{64, "RA---SIN", "deg", 187.7, 32, -1e-8, 0},
                   {48, "DEC--SIN", "deg", 12.4, 24, 1e-8, 0}};
    header.hasCelestialAxes = 1;
    std::string error;
    ASSERT_TRUE(writeFitsMap(path("map.fits"), cells, header, error));
    MainWindow window;
    open(window);
    dialogAnswer = IDOK;
    window.SendMessage(WM_COMMAND, idFitGaussians);
    dialogAnswer = IDCANCEL;
    ASSERT_TRUE(window.model().session().isOpen());
    const AComponents& list = window.model().session().components().list();
    ASSERT_EQ(list.count(), 1);
    constexpr double cell = 3.6e-5;
    EXPECT_EQ(list(0).type, gaussianComponent);
    EXPECT_NEAR(list(0).Distance(), std::hypot(9.0, 3.0) * cell, 1e-3 * cell);
    EXPECT_NEAR(list(0).LargeAxis(), 2 * std::sqrt(std::log(2.0) / 0.02) * cell, 1e-3 * cell);
    EXPECT_NEAR(list(0).AxisRatio(), std::sqrt(0.4), 1e-4);
    EXPECT_TRUE(window.model().table().Undo());
    EXPECT_EQ(list.count(), 0);
    fileAnswer = path("left.fits");
    window.SendMessage(WM_COMMAND, idFitResidual);
    FitsMap left;
    ASSERT_TRUE(readFitsMap(fileAnswer, -1, left, error)) << error;
    for (int i = 0; i < 48 * 64; ++i)
        ASSERT_NEAR(left.cells.data()[i], 0, 1e-5);
}

}  // namespace pavane
