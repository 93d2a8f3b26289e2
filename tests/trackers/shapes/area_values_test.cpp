#include "pavane/trackers/areas/VertexTable.h"
#include "pavane/trackers/shapes/key_steps.h"
#include "platform/messages.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace pavane;

namespace
{

using Kind = ShapeValues::Kind;

ShapeValues box(Kind kind, const ARect<double>& rect, double angle = 0)
{
    return {kind, rect, angle, {}};
}

VertexTable tableOf(const ShapeValues& shape, double scale = 1)
{
    VertexTable table;
    table.setMap({10, -10, -10, 10}, {scale, "arcsec"}, {scale, ""});
    table.setShape(shape);
    return table;
}

TEST(VertexTable, TextsOfEveryKindReadBackToTheSameShape)
{
    const double third = 1.0 / 3;
    const ShapeValues shapes[] = {
        box(Kind::rectangle, {3.3, -third, -0.1, 0.7}),
        box(Kind::rotatedRectangle, {-third, 0.1, 0.3, 5e-300}, 0.1),
        box(Kind::ellipse, {0.1, 0.2, 0.3, 0.7}, -third),
        {Kind::polygon, {}, 0, {{third, 0.1}, {-1e-17, 9.999999999999999}, {3, 4}}}};
    for (const ShapeValues& shape : shapes)
        for (const double scale : {1.0, 3600.0, -0.1}) {
            VertexTable table = tableOf(shape, scale);
            std::string message;
            for (int row = 0; row < table.rows(); ++row)
                for (int column = 0; column < table.columns(); ++column)
                    ASSERT_TRUE(table.setText(row, column, table.text(row, column), message));
            EXPECT_TRUE(table.shape() == shape);
        }
}

TEST(VertexTable, ShowsAndTakesValuesInTheirUnits)
{
    VertexTable table;
    table.setMap({10, -10, -10, 10}, {3600, "arcsec"}, {-2, ""});
    table.setShape(box(Kind::rotatedRectangle, {5, 1, 3, 2}, std::acos(0.0) / 3));
    EXPECT_EQ(table.rows(), 5);
    EXPECT_EQ(table.rowLabel(0), "Centre x (arcsec)");
    EXPECT_EQ(table.rowLabel(3), "Height");
    const char* const shown[] = {"14400", "-3", "7200", "2", "30"};
    const char* const typed[] = {"7200", "4", "3600", "6", "45"};
    std::string message;
    for (int row = 0; row < 5; ++row) {
        EXPECT_EQ(table.text(row, 0), shown[row]);
        EXPECT_TRUE(table.setText(row, 0, std::string(" ") + typed[row] + "\t", message));
        EXPECT_EQ(table.text(row, 0), typed[row]);
    }
    // the box keeps the order of its edges
    EXPECT_EQ(table.shape().rect, (ARect<double>{2.5, -3.5, 1.5, -0.5}));
    EXPECT_NEAR(table.shape().angle, std::acos(0.0) / 2, 1e-15);
    table.setShape({Kind::polygon, {}, 0, {{1, 2}, {3, 4}, {5, 7}}});
    EXPECT_EQ(table.text(1, 0) + " " + table.text(1, 1), "10800 -8");
    EXPECT_TRUE(table.setText(1, 0, "-3600", message) && table.setText(1, 1, "1", message));
    EXPECT_EQ(table.shape().points[1], (APoint<double>{-1, -0.5}));
}

TEST(VertexTable, RefusesWhatNoAreaCanBeAndSaysWhy)
{
    const ShapeValues rectangle = box(Kind::rectangle, {2, 1, 4, 3});
    const ShapeValues ellipse = box(Kind::ellipse, {2, 1, 4, 3});
    const ShapeValues triangle{Kind::polygon, {}, 0, {{0, 0}, {1, 0}, {1, 1}}};
    const struct {
        const ShapeValues& shape;
        int row, column;
        const char* text;
        const char* message;  // null when it is taken
    } cases[] = {{rectangle, 0, 0, "1,5", "\"1,5\" is not a number."},
                 {rectangle, 0, 0, "nan", "\"nan\" is not a number."},
                 {rectangle, 1, 0, "", "\"\" is not a number."},
                 {rectangle, 0, 0, "9", nullptr},
                 {rectangle, 0, 0, "9.1", "This would lie outside the map."},
                 {rectangle, 2, 0, "15", "This would lie outside the map."},
                 {rectangle, 2, 0, "0", "The width must be above 0."},
                 {rectangle, 3, 0, "-1", "The height must be above 0."},
                 {rectangle, 2, 0, "1e-30", "The width must be above 0."},
                 {rectangle, 4, 0, "5", "There is no such value."},
                 {ellipse, 0, 0, "9.9", nullptr},
                 {ellipse, 1, 0, "-10.5", "This would lie outside the map."},
                 {triangle, 1, 0, "10", nullptr},
                 {triangle, 1, 1, "10.1", "This would lie outside the map."}};
    for (const auto& c : cases) {
        VertexTable table = tableOf(c.shape);
        std::string message;
        EXPECT_EQ(table.setText(c.row, c.column, c.text, message), c.message == nullptr) << c.text;
        EXPECT_EQ(message, c.message ? c.message : "");
        EXPECT_EQ(table.shape() == c.shape, c.message != nullptr) << c.text;
    }
}

TEST(VertexTable, InsertsAndRemovesVertices)
{
    VertexTable table = tableOf({Kind::polygon, {}, 0, {{0, 0}, {4, 0}, {4, 4}}});
    std::string message;
    EXPECT_FALSE(table.removeVertex(0, message));
    EXPECT_EQ(message, "A polygon keeps at least three vertices.");
    EXPECT_EQ(table.insertVertex(1), 1);
    EXPECT_EQ(table.insertVertex(4), 4);
    EXPECT_EQ(table.shape().points,
              (std::vector<APoint<double>>{{0, 0}, {2, 0}, {4, 0}, {4, 4}, {2, 2}}));
    EXPECT_TRUE(table.removeVertex(0, message));
    EXPECT_EQ(table.text(0, 0), "2");
}

TEST(KeySteps, ArrowsMoveTheWayTheyPointWhicheverWayAxesRun)
{
    const struct {
        int key;
        bool shift, control;
        StepScale scale;
        APoint<double> moved;
    } cases[] = {
        {VK_RIGHT, false, false, {{2, 3}, {0.5, -0.25}}, {2, 0}},
        {VK_RIGHT, false, false, {{2, 3}, {-0.5, -0.25}}, {-2, 0}},
        {VK_LEFT, true, false, {{-2, 3}, {-0.5, -0.25}}, {20, 0}},
        {VK_UP, false, false, {{2, -3}, {0.5, -0.25}}, {0, 3}},
        {VK_UP, true, false, {{2, -3}, {0.5, 0.25}}, {0, -30}},
        {VK_DOWN, true, true, {{2, 3}, {0.5, -0.25}}, {0, -0.25}},
        {VK_DOWN, false, false, {{2, 0}, {0.5, -0.25}}, {0, -0.25}},  // a map of one row
        {VK_DOWN, false, false, {{2, 3}, {0.5, NAN}}, {0, 0}},
        {VK_TAB, false, false, {{2, 3}, {0.5, -0.25}}, {0, 0}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(keyOffset(arrowDirection(c.key), keyStep(c.shift, c.control), c.scale), c.moved);
    const auto decades = [](int gx) { return std::pow(10, gx); };
    EXPECT_EQ(stepScale({1, 1}, {1, 0}, decades, decades).pixel, (APoint<double>{90, 9}));
}

TEST(KeySteps, ShapesStayInsideTheMap)
{
    const ARect<double> map{10, 0, -10, 5};
    const struct {
        APoint<double> offset;
        ARect<double> box;
        APoint<double> moved;
    } cases[] = {{{3, -3}, {8, 1, 4, 2}, {2, -1}},   {{-30, 3}, {8, 1, 4, 2}, {-14, 3}},
                 {{1, 1}, {12, 1, 11, 2}, {0, 1}},   {{-1, 1}, {12, 1, 11, 2}, {-1, 1}},
                 {{1, 1}, {-20, -1, 20, 6}, {0, 0}}, {{NAN, 1}, {NAN, 1, 4, 2}, {0, 1}}};
    for (const auto& c : cases)
        EXPECT_EQ(offsetInside(c.offset, c.box, map), c.moved);
}

TEST(KeySteps, FractionsOfPixelsAddUp)
{
    PixelSteps steps;
    APoint<int> sum{0, 0};
    for (int i = 0; i < 10; ++i) {
        const APoint<int> step = steps.take({0.3, -1.25});
        sum = {sum.x + step.x, sum.y + step.y};
    }
    EXPECT_EQ(sum, (APoint<int>{3, -13}));  // halves go away from zero
    steps.reset();
    EXPECT_EQ(steps.take({0.6, NAN}), (APoint<int>{1, 0}));
}

}  // namespace
