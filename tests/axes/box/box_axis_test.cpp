#include "pavane/axes/AGraphXYLine.h"
#include "pavane/axes/axis_options.h"
#include "pavane/axes/box/A2_3D2ZAxis.h"
#include "pavane/axes/box/A3DLinesGraph.h"
#include "pavane/axes/box/A3DPointsGraph.h"
#include "pavane/axes/box/ASurfaceGraph.h"
#include "pavane/images/ADIBase.h"
#include "platform/picture.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <utility>

using namespace pavane;

namespace
{

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr int everything =
    surfaceLinesX | surfaceLinesY | surfaceColors | surfaceLight | surfaceSkirt | surfaceContours;

/// A hill in the middle of a map whose x falls with the column.
AMatrix<float> hill(int rows, int columns)
{
    AMatrix<float> cells(rows, columns);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c) {
            const double x = 2.0 * c / columns - 1, y = 2.0 * r / rows - 1;
            cells(r, c) = static_cast<float>(std::exp(-4 * (x * x + y * y)));
        }
    return cells;
}

struct Box {
    AMatrix<float> cells;
    AFloatMatrixAccess access{cells};
    A2_3D2ZAxis axis;
    ASurfaceGraph* graph;
    CPicture picture{300, 220};

    explicit Box(AMatrix<float> map, int xDirect = -1, int yDirect = 1, int options = 0)
        : cells(std::move(map)), axis(xDirect, yDirect, nullptr, options),
          graph(new ASurfaceGraph(&axis, access, {10, -10, -5, 5}, 0))
    {
    }
    /// Pixels that are not white.
    int draw()
    {
        CRect rect(0, 0, picture.width(), picture.height());
        picture.dc()->FillSolidRect(rect, RGB(255, 255, 255));
        axis.draw(*picture.dc(), rect);
        int count = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                count += (picture.row(y)[x] & 0xFFFFFF) != 0xFFFFFF;
        return count;
    }
};

}  // namespace

TEST(BoxAxis, FindsTheSurfacePointThatIsSeen)
{
    for (const int xDirect : {-1, 1})
        for (const int yDirect : {-1, 1})
            for (const double azimuth : {0.0, 110.0, 290.0})
                for (const double elevation : {35.0, 90.0}) {
                    SCOPED_TRACE(testing::Message()
                                 << xDirect << yDirect << " " << azimuth << ", " << elevation);
                    Box box(hill(41, 81), xDirect, yDirect);
                    box.axis.SetView(azimuth, elevation);
                    ASSERT_TRUE(box.axis.layOut(*box.picture.dc(), {0, 0, 300, 220}));
                    const CPoint top = box.axis.RPtoGP(0, 0, 1);
                    double x = notANumber, y = notANumber, z = notANumber;
                    ASSERT_TRUE(box.axis.GPtoRP(top + CPoint(0, 1), x, y, z));
                    EXPECT_NEAR(x, 0, 0.6);
                    EXPECT_NEAR(y, 0, 0.6);
                    EXPECT_NEAR(z, 1, 0.1);
                    BoxCell cell;
                    ASSERT_TRUE(box.axis.GPtoCell(top + CPoint(0, 1), cell));
                    EXPECT_NEAR(cell.row, 20, 2);
                    EXPECT_NEAR(cell.column, 40, 2);
                    EXPECT_FALSE(box.axis.GPtoRP({1, 1}, x, y, z));
                    // the far corner is farther than the near one
                    const double a = azimuth * M_PI / 180;
                    const double farX = xDirect * (std::sin(a) > 0 ? -10 : 10);
                    const double farY = yDirect * (std::cos(a) >= 0 ? 5 : -5);
                    if (elevation < 90) {
                        EXPECT_GT(box.axis.GetDepth(farX, farY, 0),
                                  box.axis.GetDepth(-farX, -farY, 0));
                    }
                }
}

TEST(BoxAxis, DrawsWhateverItIsGiven)
{
    const float blank = std::numeric_limits<float>::quiet_NaN();
    AMatrix<float> peak = hill(20, 20), blanks(20, 20), flat(20, 20), holes = hill(20, 20);
    peak(3, 3) = 1e30F;
    for (int i = 0; i < 400; ++i) {
        blanks.data()[i] = blank;
        flat.data()[i] = -5;
        if (i % 7 == 0)
            holes.data()[i] = blank;
    }
    struct Case {
        const char* name;
        AMatrix<float> cells;
        TMinMax range;
        double azimuth = 30, elevation = 35;
        TMinMax centres = {10, -10, -5, 5};
        double farX = 0;  // of a point far away
    };
    const Case cases[] = {
        {"plain", hill(20, 20), {}},
        {"one cell", hill(1, 1), {}},
        {"one row", hill(1, 30), {}},
        {"no cells", AMatrix<float>(), {}},
        {"blank", blanks, {}},
        {"equal", flat, {}},
        {"peak", peak, {}},
        {"holes", holes, {}, 200, 10},
        {"from above", holes, {}, 30, 90},
        {"from the side", holes, {}, 30, 0},
        {"far turned", hill(20, 20), {}, 1e9, 35},
        {"no number", hill(20, 20), {}, notANumber, infinity},
        {"reversed", hill(20, 20), {5, -5, 3, -3, 2, -2}},
        {"equal ends", hill(20, 20), {-10, 10, 2, 2, 0, 0}},
        {"infinite", hill(20, 20), {-infinity, infinity, -3, infinity, -infinity, 1}},
        {"not a number", hill(20, 20), {notANumber, 1, 0, notANumber, notANumber, notANumber}},
        {"outside", hill(20, 20), {100, 200, 100, 200, 0, 1}},
        {"tiny part", hill(20, 20), {0, 0.01, 0, 0.01, 0, 1}},
        {"far point", hill(20, 20), {}, 0, 30, {0, 10, 0, 5}, 1e30},
        {"wide along", hill(20, 20), {0, 1e18, 0, 5, -1, 1}, 90, 30},
        {"wide across", hill(20, 20), {-1e300, 1e300, 0, 5, -1, 1}, 180, 0},
        {"wide turned", hill(20, 20), {-1.7e308, 1.7e308, 0, 1e17, -1, 1}},
        {"wide but seen", hill(20, 20), {-1e8, 1e8, -1e7, 1e7, -1, 1}, 90, 30},
        {"no centres", hill(20, 20), {}, 30, 35, {notANumber, 10, 0, 5}},
        {"endless centres", hill(20, 20), {}, 30, 35, {-1.7e308, 1.7e308, infinity, 5}},
        {"one centre", hill(20, 20), {}, 30, 35, {1e20, 1e20, 0, 1e-300}},
    };
    for (const Case& c : cases)
        for (const auto& [options, scale] :
             {std::pair{0, MapScaleKind::linear},
              {static_cast<int>(axisBitmapMode), MapScaleKind::logarithmic},
              {0, MapScaleKind::equalized}}) {
            SCOPED_TRACE(testing::Message() << c.name << ", options " << options);
            Box box(c.cells, 0, 0, options);
            box.graph->setCentres(c.centres);
            const double x[] = {5, c.farX}, y[] = {2, 3}, z[] = {0, 0.5};
            if (c.farX != 0)
                (new A3DPointsGraph(&box.axis, 0))->SetPoints(x, y, z, 2);
            AMatrix<float> other = hill(7, 50);
            AFloatMatrixAccess otherCells(other);
            auto* const second = new ASurfaceGraph(&box.axis, otherCells, {3, 9, 1, 4}, 1);
            EXPECT_EQ(box.graph->SetColorMap(&otherCells), 0);
            for (ASurfaceGraph* const graph : {box.graph, second}) {
                graph->SetStyle(everything);
                graph->SetFloor(floorColors | floorContours);
                graph->setScale(scale);
            }
            box.axis.setMinMax(c.range);
            box.axis.SetView(c.azimuth, c.elevation);
            box.axis.SetZoom(c.elevation > 50 ? 1000 : infinity);
            EXPECT_GT(box.draw(), 100);
            BoxCell cell;
            for (int i = 0; i < 300 * 220; i += 7)
                if (box.axis.GPtoCell({i % 300, i / 300}, cell)) {
                    ASSERT_LT(cell.row, cell.graph->cells().rows());
                    ASSERT_LT(cell.column, cell.graph->cells().columns());
                }
        }
}

TEST(BoxAxis, CellsInALineAreALineAndASingleOneAStalk)
{
    for (const auto& [rows, columns] : {std::pair{1, 30}, {30, 1}, {1, 1}}) {
        SCOPED_TRACE(testing::Message() << rows << " x " << columns);
        Box box(hill(rows, columns));
        box.graph->SetLatticeColor(RGB(255, 0, 0));
        box.axis.setMinMax({12, -12, -6, 6, 0, 1});
        box.draw();
        int red = 0;
        for (int i = 0; i < 300 * 220; ++i)
            red += (box.picture.row(i / 300)[i % 300] & 0xFFFFFF) == 0xFF0000;
        EXPECT_GT(red, 5);
    }
}

TEST(BoxAxis, TakesItsRangesFromTheGraphsOfEachZ)
{
    Box box(hill(20, 20));
    AMatrix<float> other(20, 20);
    for (int i = 0; i < 400; ++i)
        other.data()[i] = static_cast<float>(i);
    AFloatMatrixAccess cells(other);
    new ASurfaceGraph(&box.axis, cells, {10, -10, -5, 5}, 1);
    double far[] = {-1000, 1000};
    new AGraphXYLine(&box.axis, far, far, 2, nullptr, PS_SOLID, 1, 0, 0);  // not seen in a box
    box.draw();
    const TMinMax range = box.axis.getMinMax();
    EXPECT_LT(std::fabs(range.xMin), 11);
    EXPECT_NEAR(range.zMax, 1, 0.05);
    EXPECT_EQ(box.axis.getMinMaxZ2(), (TMnMx{0, 399}));
    EXPECT_DOUBLE_EQ(box.axis.RPZ2toWPZ(399), 1);
    EXPECT_EQ(box.axis.GetAxisType(), 15);
    // stacked: the second stands on a floor of its own above the first
    double x = 0, y = 0, z = 0;
    const CPoint upper = box.axis.RPtoGP(0, 0, 1);
    box.axis.SetStacked(0);
    box.draw();
    EXPECT_LT(box.axis.RPtoGP(0, 0, 1).y, upper.y);
    int first = 0, second = 0;
    for (int py = 0; py < 220; py += 5)
        for (int px = 0; px < 300; px += 5) {
            first += box.axis.GPtoRP({px, py}, x, y, z);
            second += box.axis.GPtoRP2({px, py}, x, y, z);
        }
    EXPECT_GT(first, 20);
    EXPECT_GT(second, 20);
}

TEST(BoxAxis, HidesWhatStandsBehind)
{
    AMatrix<float> map = hill(41, 41);
    map(5, 5) = std::numeric_limits<float>::quiet_NaN();
    Box box(map);
    box.axis.SetView(0, 0);
    box.draw();
    EXPECT_TRUE(box.axis.isSeen({0, -0.4, -0.3}));    // before the hill
    EXPECT_FALSE(box.axis.isSeen({0, 0.4, -0.3}));    // behind it
    EXPECT_TRUE(box.axis.isSeen({0.49, 0.4, -0.3}));  // beside it
    box.axis.SetView(0, 90);
    box.draw();
    EXPECT_FALSE(box.axis.isSeen({0, 0, -0.5}));  // below it
    const BoxPoint hole = box.axis.boxPoint(*box.graph, 10 - 5 * 0.5, -5 + 5 * 0.25, 0);
    EXPECT_TRUE(box.axis.isSeen({hole.p, hole.q, -0.5}));  // below a blank cell

    A2_3DAxis lines(1, 1, nullptr, 0);
    auto* const curves = new A3DLinesGraph(&lines, 0);
    const double x[] = {0, 1, 2}, low[] = {0, 0.5, 0}, high[] = {0.9, 1, 0.9};
    EXPECT_EQ(curves->AddCurve(0, x, high, 3, RGB(0, 0, 0)), 0);
    EXPECT_EQ(curves->AddCurve(1, x, low, 3, RGB(255, 0, 0)), 1);
    EXPECT_EQ(curves->AddCurve(notANumber, x, low, 3, 0), -1);
    for (const int filled : {1, 0}) {
        curves->SetFilled(filled);
        lines.SetView(0, 10);
        CRect rect(0, 0, 300, 200);
        (void)lines.layOut(*CPicture(300, 200).dc(), rect);
        EXPECT_EQ(lines.isSeen({0, 0.5, 0}), !filled);
        EXPECT_TRUE(lines.isSeen({0, -0.5, 0}));
        EXPECT_TRUE(lines.isSeen({0, 0.5, 0.9}));
    }
    curves->DeleteCurves();  // through gaps one sees, above a curve that the box cuts one does not
    const double steps[] = {0, 1, 2, 3, 4, 5}, gap[] = {1, 1, notANumber, notANumber, 1, 1};
    const double cut[] = {1, 1, 9, 9, 1, 1}, rear[] = {0, 0, 0, 0, 0, 0};
    for (const double* const front : {gap, cut}) {
        curves->DeleteCurves();
        curves->AddCurve(0, steps, front, 6, 0);
        curves->AddCurve(1, steps, rear, 6, 0);
        curves->SetFilled(1);
        lines.setMinMax({0, 5, 0, 1, 0, 2});
        CRect rect(0, 0, 300, 200);
        (void)lines.layOut(*CPicture(300, 200).dc(), rect);
        EXPECT_EQ(lines.isSeen({0, 0.5, -0.45}), front == gap);
        EXPECT_FALSE(lines.isSeen({-0.45, 0.5, -0.45}));
    }
}

TEST(BoxAxis, TellsTheCellThatThePixelShows)
{
    AMatrix<float> map(99, 99);
    for (int i = 0; i < 99 * 99; ++i)
        map.data()[i] = static_cast<float>(i * 7919LL % 226);
    Box box(map, 1);
    box.graph->SetStyle(surfaceColors);
    box.axis.SetBoxHeight(0.1);
    for (const int bitmap : {0, static_cast<int>(axisBitmapMode)}) {
        box.axis.setOptions(bitmap);
        box.draw();
        int told = 0, same = 0;
        BoxCell cell;
        for (int y = 0; y < 220; y += 2)
            for (int x = 0; x < 300; ++x) {
                if (!box.axis.GPtoCell({x, y}, cell) || cell.fromBelow)
                    continue;
                const auto index = static_cast<int>(map(cell.row, cell.column));
                const COLORREF color = box.graph->mapColor(index);
                const unsigned shown = box.picture.row(y)[x];
                const COLORREF seen = RGB(shown >> 16 & 255, shown >> 8 & 255, shown & 255);
                ++told;
                same += bitmap ? box.axis.dib()->GetPixel(x, y) == index : seen == color;
            }
        EXPECT_GT(told, 4000);
        EXPECT_GT(same, told * 0.97) << told;  // lines lie over some
    }
}

TEST(BoxAxis, APictureDoesNotDependOnTheOneBefore)
{
    static double curve[] = {0, 1};
    static AMatrix<float> others = hill(20, 20);
    static const AFloatMatrixAccess other(others);
    others(3, 4) = 0.5F;
    const struct {
        const char* name;
        void (*make)(Box& box);
        int isColor = 0;
    } changes[] = {
        {"range",
         [](Box& b) {
             b.graph->setCentres({10, -10, -5, 5, 0.2, 0.6});
         }},
        {"asked",
         [](Box& b) {
             b.axis.setMinMax({10, -10, -5, 5, 0.2, 0.6});
         }},
        {"z2",
         [](Box& b) {
             b.axis.setMinMaxZ2({-7, 1});
         }},
        {"ticks", [](Box& b) { b.axis.setZIntervals(12); }},
        {"outlines",
         [](Box& b) {
             b.graph->SetAreaOutlines({{{2, 2}, {15, 2}, {9, 15}}}, 255);
         }},
        {"lattice colour", [](Box& b) { b.graph->SetLatticeColor(RGB(0, 0, 255)); }},
        {"contour colour", [](Box& b) { b.graph->contours().setColor(RGB(0, 255, 0)); }},
        {"contour width", [](Box& b) { b.graph->contours().setWidth(3); }},
        {"colour map", [](Box& b) { b.graph->SetColorMap(&other); }},
        {"style", [](Box& b) { b.graph->SetStyle(surfaceColors); }},
        {"floor", [](Box& b) { b.graph->SetFloor(floorColors); }},
        {"gap", [](Box& b) { b.axis.SetFloorGap(0.4); }},
        {"base", [](Box& b) { b.axis.SetBase(4, 1); }},
        {"scale", [](Box& b) { b.graph->setScale(MapScaleKind::squareRoot); }},
        {"stacked", [](Box& b) { b.axis.SetStacked(0); }},
        {"play",
         [](Box& b) {
             b.graph->SetColorPlay({3, 0.5, 1, 1});
         },
         1},
    };
    const auto make = [](int options) {
        auto box = std::make_unique<Box>(hill(20, 20), 1, 1, options);
        (new A3DLinesGraph(&box->axis, 1))->AddCurve(0, curve, curve, 2, RGB(255, 0, 0));
        box->graph->SetColorMap(nullptr);
        box->graph->SetStyle(everything);
        box->graph->SetFloor(floorContours);
        return box;
    };
    for (const int options : {0, axisBitmapMode | axisBitmapCache})
        for (const auto& change : changes) {
            SCOPED_TRACE(testing::Message() << change.name << " " << options);
            const auto kept = make(options), fresh = make(options);
            kept->draw();
            const std::uint64_t scene = kept->axis.scene();
            change.make(*kept);
            change.make(*fresh);
            kept->draw();
            fresh->draw();
            int differ = 0;
            for (int y = 0; y < 220; ++y)
                for (int x = 0; x < 300; ++x)
                    differ += kept->picture.row(y)[x] != fresh->picture.row(y)[x];
            // indices stay, and with them the contours that stood out before
            EXPECT_EQ(differ > 0, change.isColor && options != 0);
            if (change.isColor) {  // nothing was looked for again
                EXPECT_EQ(kept->axis.scene(), scene);
            }
        }
}

TEST(BoxAxis, HeightsFollowTheColoursUntilARangeIsAskedFor)
{
    Box box(hill(20, 20));
    const struct {
        TMnMx colours, asked, z;
    } cases[] = {
        {{0, 2}, {}, {0, 2}},
        {{0.5, 1}, {}, {0.5, 1}},
        {{0.5, 1}, {-3, 3}, {-3, 3}},
        {{0, 2}, {-3, 3}, {-3, 3}},         // what was asked for stays
        {{0, 2}, {-3, infinity}, {-3, 2}},  // one end of it follows
        {{0, 4}, {-3, infinity}, {-3, 4}},
    };
    for (const auto& c : cases) {
        box.graph->setCentres({10, -10, -5, 5, c.colours.min, c.colours.max});
        const TMinMax shown = box.axis.getMinMax();
        if (c.asked.min < c.asked.max && !(c.asked.max == shown.zMax))
            box.axis.setMinMax({shown.xMin, shown.xMax, shown.yMin, shown.yMax, c.asked.min,
                                std::isfinite(c.asked.max) ? c.asked.max : infinity});
        box.draw();
        EXPECT_EQ(box.axis.getMinMax().zMin, c.z.min);
        EXPECT_EQ(box.axis.getMinMax().zMax, c.z.max);
    }
}

TEST(BoxAxis, AViewLeavesTheBaseOfTheAxis)
{
    Box box(hill(20, 20)), square(hill(20, 20));
    box.axis.SetBase(4, 1);
    square.axis.SetView(70, 10);
    box.axis.setView(square.axis.view());
    EXPECT_EQ(box.axis.GetAzimuth(), 70);
    EXPECT_EQ(box.axis.view().size().q, 0.25);
}

TEST(BoxAxis, KeepsTheRasterOfBitmapModeWhileOnlyColoursChange)
{
    Box box(hill(20, 20), 1, 1, axisBitmapMode | axisBitmapCache);
    box.draw();
    const ADIBase* const first = box.axis.dib();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->rect(), box.axis.getGraphRect());
    AArray<COLORREF> colors;
    colors.Add(RGB(255, 0, 0));
    box.graph->setColors(colors);
    *box.axis.dib() = 7;  // a mark that a drawing would take away
    box.draw();
    EXPECT_EQ(box.axis.dib()->GetPixel(first->rect().left, first->rect().top), 7);
    box.axis.SetView(50, 35);
    box.draw();
    EXPECT_NE(box.axis.dib()->GetPixel(box.axis.dib()->rect().left, box.axis.dib()->rect().top), 7);
}

TEST(BoxAxis, DrawsPointsWithStalksThatSurfacesHide)
{
    Box box(hill(20, 20));
    const double x[] = {0, 0}, y[] = {-4, notANumber}, z[] = {0.8, 1};
    auto* const points = new A3DPointsGraph(&box.axis, 0);
    points->SetPoints(x, y, z, 2);
    points->SetMarker(graphPointStar, RGB(255, 0, 0));
    box.draw();
    const CPoint at = box.axis.RPtoGP(0, -4, 0.8);
    EXPECT_EQ(box.picture.row(at.y)[at.x] & 0xFFFFFF, 0xFF0000u);
    // of a second Z that stands above only what is in its own part
    auto* const above = new A3DPointsGraph(&box.axis, 1);
    const double none[] = {0, 0}, heights[] = {-0.5, 0.5};
    above->SetPoints(none, none, heights, 2);
    box.axis.setMinMaxZ2({0, 1});
    box.draw();
    for (const double z : heights)
        EXPECT_EQ(box.axis.isInside(*above, box.axis.boxPoint(*above, 0, 0, z)), z > 0);
}
