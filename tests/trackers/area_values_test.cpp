#include "pavane/trackers/area_values.h"
#include "tests/trackers/region_shapes.h"

#include <gtest/gtest.h>

using namespace pavane;

namespace
{

/// A map of 1000 x 1000 cells whose x falls with the column, as right ascension does.
AMnMxMCTransform skyMap(double oblong)
{
    return {{5 * oblong, -4.99 * oblong, -5, 4.99, 0, 1}, 1000, 1000};
}

/// Corners of a turned rectangle or points of an ellipse in data values, straight from the fields.
std::vector<APoint<double>> plainOutline(const ShapeValues& v)
{
    if (v.kind == ShapeValues::Kind::polygon)
        return v.points;
    const APoint<double> centre = {(v.rect.left + v.rect.right) / 2,
                                   (v.rect.top + v.rect.bottom) / 2};
    std::vector<APoint<double>> points;
    const int isEllipse = v.kind == ShapeValues::Kind::ellipse;
    for (int i = 0; i < (isEllipse ? 16 : 4); ++i) {
        const double t = i * 22.5 * degree;
        const double x = (isEllipse ? std::cos(t)
                          : i % 3   ? 1
                                    : -1) *
                         (v.rect.right - v.rect.left) / 2;
        const double y = (isEllipse ? std::sin(t)
                          : i / 2   ? 1
                                    : -1) *
                         (v.rect.bottom - v.rect.top) / 2;
        points.push_back({centre.x + x * std::cos(v.angle) - y * std::sin(v.angle),
                          centre.y + x * std::sin(v.angle) + y * std::cos(v.angle)});
    }
    return points;
}

}  // namespace

TEST(AreaValues, FollowFallingValuesAndUnequalSteps)
{
    AreaShape box;
    box.kind = AreaShape::Kind::rotatedRectangle;
    box.centre = {500, 500};
    box.width = 20;
    box.height = 10;
    box.angle = 30 * degree;
    ShapeValues values;
    ASSERT_TRUE(valuesOf(box, skyMap(1), values));
    EXPECT_NEAR(values.rect.left, 0.1, 1e-12);
    EXPECT_NEAR(values.rect.right, -0.1, 1e-12);
    EXPECT_NEAR(values.rect.top, 0.05, 1e-12);
    EXPECT_NEAR(values.angle / degree, 150, 1e-9);
    ASSERT_TRUE(valuesOf(box, skyMap(3), values));
    EXPECT_EQ(values.kind, ShapeValues::Kind::polygon);
    box.kind = AreaShape::Kind::ellipse;
    ASSERT_TRUE(valuesOf(box, skyMap(3), values));
    EXPECT_EQ(values.kind, ShapeValues::Kind::ellipse);
    EXPECT_FALSE(valuesOf(box, {{0, 1, 0, 1, 0, 1}, 1, 1}, values) ||
                 valuesOf(box, {{2, 2, 0, 1, 0, 1}, 9, 9}, values) ||
                 valuesOf({}, skyMap(1), values));
}

TEST(AreaValues, CoverTheSameCellsAndComeBack)
{
    for (const double oblong : {1.0, -1.0, 2.5})
        for (const AreaShape& shape : randomShapes(300, 3)) {
            const AMnMxMCTransform map = skyMap(oblong);
            ShapeValues values;
            ASSERT_TRUE(valuesOf(shape, map, values));
            AreaShape cells;
            cells.kind = AreaShape::Kind::polygon;
            for (const APoint<double>& p : plainOutline(values))
                cells.vertices.push_back(
                    {(p.x - map.MPXtoRPX(0)) / (map.MPXtoRPX(1) - map.MPXtoRPX(0)),
                     (p.y - map.MPYtoRPY(0)) / (map.MPYtoRPY(1) - map.MPYtoRPY(0))});
            if (shape.kind == AreaShape::Kind::ellipse) {
                // every point of the one lies on the other
                for (const APoint<double>& p : cells.vertices) {
                    const double x = p.x - shape.centre.x, y = p.y - shape.centre.y;
                    const double c = std::cos(shape.angle), s = std::sin(shape.angle);
                    EXPECT_NEAR(
                        std::hypot((x * c + y * s) / shape.width, (y * c - x * s) / shape.height),
                        0.5, 1e-8);
                }
            } else {
                EXPECT_LT(worstOutline({shape}, {cells}), 1e-6) << asText(shape);
            }
            AreaShape back;
            ASSERT_TRUE(shapeOf(values, map, back));
            EXPECT_LT(worstOutline({shape}, {back}), 1e-6) << asText(shape) << asText(back);
        }
}
