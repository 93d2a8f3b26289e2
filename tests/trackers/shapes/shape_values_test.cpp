#include "pavane/trackers/shapes/area_values.h"
#include "tests/trackers/shapes/region_shapes.h"

#include <gtest/gtest.h>

using namespace pavane;

namespace
{

/// A map of 1000 x 1000 cells whose x falls with the column, as right ascension does.
AMnMxMCTransform skyMap(double oblong)
{
    return {{5 * oblong, -4.99 * oblong, -5, 4.99, 0, 1}, 1000, 1000};
}

}  // namespace

TEST(ShapeValues, FollowFallingValuesAndUnequalSteps)
{
    AreaShape box;
    box.kind = AreaShape::Kind::rotatedRectangle;
    box.centre = {500, 500};
    box.width = 20;
    box.height = 10;
    box.angle = 30 * degree;
    ShapeValues values;
    ASSERT_TRUE(valuesOf(box, skyMap(1), values));
    EXPECT_NEAR(values.rect.left, -0.1, 1e-12);  // in the order of drawing, whatever falls
    EXPECT_NEAR(values.rect.right, 0.1, 1e-12);
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

TEST(ShapeValues, CoverTheSameCellsAndComeBack)
{
    for (const double oblong : {1.0, -1.0, 2.5})
        for (const AreaShape& shape : randomShapes(300, 3)) {
            const AMnMxMCTransform map = skyMap(oblong);
            const auto cell = [&map](double x, double y) -> APoint<double> {
                return {(x - map.MPXtoRPX(0)) / (map.MPXtoRPX(1) - map.MPXtoRPX(0)),
                        (y - map.MPYtoRPY(0)) / (map.MPYtoRPY(1) - map.MPYtoRPY(0))};
            };
            ShapeValues v;
            AreaShape back;
            ASSERT_TRUE(valuesOf(shape, map, v) && shapeOf(v, map, back));
            EXPECT_LT(worstOutline({shape}, {back}), 1e-6) << asText(shape) << asText(back);
            // the four side middles, turned in data values, lie where the shape has them
            for (int i = 0; i < 4 && v.kind != ShapeValues::Kind::polygon; ++i) {
                const double x = (i - 1) % 2 * (v.rect.right - v.rect.left) / 2;
                const double y = (i - 2) % 2 * (v.rect.bottom - v.rect.top) / 2;
                const APoint<double> p = cell((v.rect.left + v.rect.right) / 2 +
                                                  x * std::cos(v.angle) - y * std::sin(v.angle),
                                              (v.rect.top + v.rect.bottom) / 2 +
                                                  x * std::sin(v.angle) + y * std::cos(v.angle));
                AreaShape inscribed = shape;
                inscribed.kind = AreaShape::Kind::ellipse;
                EXPECT_LT(offEllipse(inscribed, p), 1e-6) << asText(shape);
            }
        }
}
