#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/MapFigure.h"
#include "platform/picture.h"
#include "tessel/StopFlag.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace pavane
{

namespace
{

constexpr int side = 1024;
constexpr CRect all(0, 0, 200, 200);

/// Cells that count how many rows were read, and raise a flag at one of them.
struct CountedCells final : AMatrixAccess {
    CountedCells() : cells(side, side)
    {
        for (int r = 0; r < side; ++r)
            for (int c = 0; c < side; ++c)
                cells(r, c) = static_cast<float>((r / 64 * 7 + c / 64 * 3) % 101) / 5 - 2;
    }
    int rows() const override { return side; }
    int columns() const override { return side; }
    void copyRow(int row, int first, int count, float* to) const override
    {
        std::copy_n(cells.row(row) + first, count, to);  // single cells
    }
    const float* floatRow(int row) const override
    {
        if (++read == stopAt)
            stop.stop();
        return cells.row(row);
    }
    AMatrix<float> cells;
    mutable int read = 0;
    int stopAt = 0;
    mutable StopFlag stop;
};

/// A figure over the cells.
struct Figure {
    Figure(const CountedCells& cells, MapScaleKind scale, int isOften, const CString& list)
        : axis(1, 1, nullptr, 0), graph(new ALevelsColorGraph(&axis, cells, centres(), 0)),
          bar(*graph)
    {
        ContourLevels levels;
        levels.unit = LevelUnit::peak;
        (void)levels.read(list);
        graph->setScale(scale);
        graph->setShownOften(isOften);
        graph->contours().setLevels(levels);
        figure.setAxis(&axis);
        figure.setMap(graph);
        figure.setBar(&bar);
    }
    static TMinMax centres()
    {
        TMinMax range;
        range.xMin = range.yMin = 0;
        range.xMax = range.yMax = side - 1;
        return range;
    }
    /// Non-zero when it was not stopped.
    int draw(CPicture& picture, const StopFlag* stop)
    {
        const auto dc = picture.dc();
        dc->setStop(stop);
        figure.draw(*dc, figure.layOut(*dc, all));
        return !dc->isStopped();
    }
    A2DAxis axis;
    ALevelsColorGraph* graph;  // the axis's
    AAxisColorOP bar;
    MapFigure figure;
};

int sameRows(const CPicture& a, const CPicture& b)
{
    for (int y = 0; y < a.height(); ++y)
        if (!std::equal(a.row(y), a.row(y) + a.width(), b.row(y)))
            return 0;
    return 1;
}

}  // namespace

/// Each way over the cells is stopped in its middle; the next drawing is whole.
TEST(StoppedMap, ReadsFewMoreRowsAndIsDrawnWholeAfterwards)
{
    const struct {
        const char* what;
        MapScaleKind scale;
        int isOften;
        const char* levels;
        int leastPasses;
    } cases[] = {{"colours", MapScaleKind::linear, 0, "", 2},
                 {"equal shares", MapScaleKind::equalized, 0, "", 3},
                 {"noise", MapScaleKind::logarithmic, 0, "", 4},
                 {"ranks", MapScaleKind::linear, 1, "", 2},
                 {"contours", MapScaleKind::linear, 0, "peak:5,20,50", 3}};
    constexpr int rowsOfLook = (1 << 17) / side;
    CountedCells cells;
    for (const auto& c : cases) {
        Figure whole(cells, c.scale, c.isOften, c.levels);
        CPicture wanted(all.Width(), all.Height());
        cells.stopAt = cells.read = 0;
        ASSERT_TRUE(whole.draw(wanted, &cells.stop));
        const int rows = cells.read;
        EXPECT_GE(rows, c.leastPasses * side) << c.what;
        for (int at = side / 2; at < rows; at += side) {
            Figure figure(cells, c.scale, c.isOften, c.levels);
            CPicture stopped(all.Width(), all.Height());
            cells.read = 0;
            cells.stopAt = at;
            EXPECT_FALSE(figure.draw(stopped, &cells.stop)) << c.what << ", row " << at;
            EXPECT_LE(cells.read, at + rowsOfLook + 1) << c.what << ", row " << at;
            EXPECT_EQ(figure.graph->contours().leftOutText(), "") << c.what;
            cells.stop.clear();
            cells.stopAt = 0;
            CPicture again(all.Width(), all.Height());
            EXPECT_TRUE(figure.draw(again, &cells.stop));
            EXPECT_TRUE(sameRows(again, wanted)) << c.what << ", row " << at;
        }
    }
}

}  // namespace pavane
