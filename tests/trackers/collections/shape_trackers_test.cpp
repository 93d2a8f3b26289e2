#include "pavane/trackers/collections/shape_trackers.h"

#include "pavane/trackers/collections/ARPTrackerArray.h"
#include "tests/trackers/shapes/region_shapes.h"

#include <gtest/gtest.h>

using namespace pavane;

TEST(ShapeTrackers, CoverTheCellsOfTheirShapesAndGiveThemBack)
{
    // values that fall with the column, and cells twice as wide as high
    for (const double width : {1.0, 2.0}) {
        const AMnMxMCTransform map({5 * width, -4.99 * width, -5, 4.99, 0, 1}, 1000, 1000);
        const std::vector<AreaShape> shapes = randomShapes(200, 9);
        ARPTrackerArray trackers;
        RegionNotes notes;
        ASSERT_EQ(addShapes(trackers, nullptr, shapes, map, notes), 200);
        EXPECT_EQ(notes.changed > 0, width == 2.0);
        const std::vector<AreaShape> back = shapesOf(trackers, map, notes);
        EXPECT_LT(worstOutline(shapes, back), 1e-6);
        for (int i = 0; i < trackers.count(); ++i) {
            AArray<APoint<double>> points;
            trackers(i)->GetAreaPoints(points, 16);
            for (int k = 0; k < points.count(); ++k) {
                const APoint<double> cell = {(points(k).x / width - 5) / -0.01,
                                             (points(k).y + 5) / 0.01};
                EXPECT_LT(offOutline(shapes[static_cast<std::size_t>(i)], cell), 1e-6) << i;
            }
        }
        ASSERT_TRUE(trackers.Undo(nullptr));
        EXPECT_EQ(trackers.count(), 0);
    }
}
