#include "pavane/axes/ABAxis.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/shapes/shape_handles.h"

#include <gtest/gtest.h>

#include "trackers/collections/stored_collection.h"

#include <cmath>
#include <functional>
#include <iterator>
#include <memory>
#include <random>

using namespace pavane;
using namespace pavane::test;

namespace
{

template <typename Array>
auto* copyOf(Array& array, int i)
{
    return array(i)->Duplicate();
}

/// One edit of any kind; some do nothing where the collection is not fit for them.
template <typename Array>
void editSomehow(Array& array, std::mt19937& random, const std::string& otherFile)
{
    const int n = array.count();
    const int i = n ? static_cast<int>(random() % static_cast<unsigned>(n)) : 0;
    const int flag = static_cast<int>(random() % 2);
    const bool seldom = random() % 16 == 0;
    const auto moveBy = [&] {
        array.MoveBy(nullptr, static_cast<int>(random() % 9) - 4,
                     static_cast<int>(random() % 9) - 4);
    };
    const std::function<void()> edits[] = {
        [&] { addAny(array, random, flag); },
        [&] { addAny(array, random, flag); },
        [&] { array.ChangeActiveTrack(nullptr, i); },
        [&] { array.SetItemActive(i, flag); },
        [&] { array.SelectItem(nullptr, i, flag); },
        [&] { array.CopyTracker(nullptr); },
        [&] { array.DelteTracker(nullptr); },
        [&] { array.DeleteItems(i, 2); },
        [&] { array.InsertVertex(nullptr); },
        [&] { array.SetFocusAt(nullptr, i, 0), array.DeleteVertex(nullptr); },
        [&] { array.SetFocusAt(nullptr, i, 3), moveBy(); },
        [&] { array.SetFocusAt(nullptr, i, 99); },
        [&] {
            if (n)
                array.InsertAt(i, copyOf(array, i));
        },
        [&] {
            if (seldom && n < 10)
                array += array;
        },
        [&] {
            (void)array.SetLabels(nullptr, array.SelectedItems(),
                                  {std::string(random() % 9, 'x'), static_cast<int>(random() % 7)},
                                  flag, !flag || seldom);
        },
        [&] { array.Undo(nullptr); },
        [&] { array.Redo(nullptr); },
        [&] { moveBy(); },
        [&] { moveBy(); },
        [&] {
            if (seldom)
                array.Clear(nullptr);
        },
        [&] {
            MemoryFile file(otherFile);
            EXPECT_TRUE(!seldom || array.Load(file));
        },
        [&] {
            ShapeValues shape;
            if (array.GetShape(i, shape)) {
                moveShape(shape, {3, -2});
                shape.angle += 0.1;
                array.SetShape(nullptr, i, shape);
            }
        },
    };
    edits[random() % std::size(edits)]();
}

/// All bytes and what no record has.
template <typename Array>
std::string labelled(const Array& array)
{
    std::string all = stored(array);
    for (int i = 0; i < array.count(); ++i)
        all += array.Label(i).name + ',' + std::to_string(array.Label(i).colour) + '\n';
    return all;
}

/// The first and the last edit are steps: what is only chosen before or after them is not undone.
template <typename Array>
void undoTenThousandEdits(Array& array, unsigned seed)
{
    std::mt19937 random(seed);
    for (int i = 0; i < 5; ++i)
        addAny(array, random, 1);
    const std::string start = stored(array);
    array.history().clear();
    array.SetSaved();
    addAny(array, random);
    for (int i = 0; i < 10000; ++i)
        editSomehow(array, random, start);
    addAny(array, random);
    const std::string end = labelled(array);
    const std::string unlabelled = std::string(",-1\n") + ",-1\n,-1\n,-1\n,-1\n";
    const auto steps = array.history().steps();
    EXPECT_GT(steps, 3000u);
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(array.IsModified());
        std::size_t undone = 0;
        while (array.Undo(nullptr))
            ++undone;
        EXPECT_EQ(undone, steps);
        EXPECT_TRUE(labelled(array) == start + unlabelled) << round;
        EXPECT_FALSE(array.IsModified());
        while (array.Redo(nullptr)) {
        }
        EXPECT_TRUE(labelled(array) == end) << round;
    }
}

ARect<double> rectOf(ARPTrackerArray& array, int i)
{
    ShapeValues shape;
    EXPECT_TRUE(array.GetShape(i, shape));
    return shape.rect;
}

class InAxis : public testing::Test
{
protected:
    InAxis()
    {
        axis_.setGraphRect({100, 100, 300, 200});  // 200 x 100 units, x to the left
        axis_.setMinMax({0, 200, 0, 100});
        array_.SetAxis(&axis_);
    }
    void addRect(const ARect<double>& rect)
    {
        auto* const tracker = shaped(array_, toolRect, {{}, rect, 0, {}});
        tracker->SetActive(0);
        array_.Add(tracker, 0);
    }
    void addArea(const std::vector<APoint<double>>& points, int makeCurrent)
    {
        array_.Add(shaped(array_, toolArea, {{}, {}, 0, points}), makeCurrent);
    }
    ABAxis axis_{-1, 1, nullptr, 0};
    ARPTrackerArray array_;
};

}  // namespace

TEST(CollectionUndo, BringsBackEveryByteAfterTenThousandEdits)
{
    ATrackerArray pixels;
    pixels.CheckMinMax({0, 0, 400, 300}, {0, 1, 0, 1}, 1, 1);
    undoTenThousandEdits(pixels, 11);
    ARPTrackerArray values;
    undoTenThousandEdits(values, 12);
    ABAxis axis(-1, 1, nullptr, 0);
    axis.setGraphRect({0, 0, 400, 300});
    axis.setMinMax({0, 400, 0, 300});
    ARPTrackerArray bound;
    bound.SetAxis(&axis);
    undoTenThousandEdits(bound, 13);
}

TEST_F(InAxis, StepsOfUndoAreSmallInALargeCollectionOfActiveAreas)
{
    array_.BeginEdits("many");
    for (int i = 0; i < 20000; ++i)
        addArea({{1, 1}, {9, 1}, {9, 9}, {1, 9}}, 0);
    array_.EndEdits(nullptr);
    EXPECT_EQ(array_.history().steps(), 1u);
    array_.history().clear();
    array_.SelectItem(nullptr, 17, 1);
    ShapeValues shape;
    array_.GetShape(17, shape);
    for (int i = 0; i < 100; ++i) {
        moveShape(shape, {1, 1});
        ASSERT_TRUE(array_.SetShape(nullptr, 17, shape));
    }
    EXPECT_EQ(array_.history().steps(), 100u);
    EXPECT_LT(array_.history().bytesUsed(), 100u * 1024u);
}

TEST_F(InAxis, MovesStayInsideThePlotAndSeveralAreasKeepTogether)
{
    addRect({150, 10, 190, 40});
    addRect({20, 60, 60, 90});
    array_.SelectAll(nullptr);
    ASSERT_TRUE(array_.MoveBy(nullptr, -4, 30));  // x grows to the left, y upwards
    EXPECT_EQ(rectOf(array_, 0), (ARect<double>{154, 0, 194, 30}));
    EXPECT_EQ(rectOf(array_, 1), (ARect<double>{24, 50, 64, 80}));
    ASSERT_TRUE(array_.MoveByValue(nullptr, 1000, 0));
    EXPECT_EQ(rectOf(array_, 1), (ARect<double>{30, 50, 70, 80}));
    EXPECT_FALSE(array_.MoveByValue(nullptr, 1, 0));
    ASSERT_TRUE(array_.CopyTracker(nullptr));
    EXPECT_EQ(array_.count(), 4);
    EXPECT_NEAR(rectOf(array_, 3).left, 20, 1e-9);  // ten pixels right and down
    EXPECT_NEAR(rectOf(array_, 3).top, 40, 1e-9);
    EXPECT_EQ(rectOf(array_, 2), (ARect<double>{150, 0, 190, 30}));
    EXPECT_EQ(array_.SelectedItems(), (std::vector<int>{2, 3}));
    ASSERT_TRUE(array_.DelteTracker(nullptr));
    EXPECT_EQ(array_.count(), 2);
    ASSERT_TRUE(array_.Undo(nullptr) && array_.Undo(nullptr));
    EXPECT_EQ(array_.count(), 2);
}

TEST_F(InAxis, TheTopmostAreaIsFoundAmongManyThatMoveAndGo)
{
    std::mt19937 random(5);
    array_.BeginEdits("many");
    for (int i = 0; i < 600; ++i)
        addAny(array_, random);
    array_.EndEdits(nullptr);
    for (int round = 0; round < 300; ++round) {
        const CPoint p(static_cast<int>(100 + random() % 200),
                       static_cast<int>(100 + random() % 100));
        int expected = array_.count() - 1;
        while (expected >= 0 && array_(expected)->HitTest(p, nullptr) < 0)
            --expected;
        ASSERT_EQ(array_.TopmostAt(p, nullptr), expected);
        array_.ChangeActiveTrack(nullptr, static_cast<int>(random() % 300));
        array_.MoveBy(nullptr, 5, -3);
        if (round % 8 == 0)
            array_.DelteTracker(nullptr);
        if (round == 150)
            axis_.setMinMax({50, 100, 20, 60});
    }
}

TEST_F(InAxis, FocusGoesThroughAreasAndHandlesAndLeavesAtTheEnds)
{
    EXPECT_FALSE(array_.NextFocus(nullptr) || array_.PrevFocus(nullptr));
    addRect({150, 10, 190, 40});
    addArea({{10, 10}, {20, 10}, {10, 20}}, 0);
    std::vector<int> order;
    while (array_.NextFocus(nullptr))
        order.push_back(array_.focusItem() * 100 + array_.focusHandle());
    EXPECT_EQ(order, (std::vector<int>{-1, 0, 1, 2, 3, 4, 5, 6, 7, 99, 100, 101, 102}));
    CPoint p;
    EXPECT_FALSE(array_.FocusPoint(p));
    std::vector<int> back;
    while (array_.PrevFocus(nullptr))
        back.insert(back.begin(), array_.focusItem() * 100 + array_.focusHandle());
    EXPECT_EQ(back, order);
    array_.SetFocusAt(nullptr, 1, 1);
    ASSERT_TRUE(array_.FocusPoint(p));
    EXPECT_EQ(p, CPoint(280, 190));
    ASSERT_TRUE(array_.MoveBy(nullptr, 0, 500));
    ShapeValues shape;
    ASSERT_TRUE(array_.GetShape(1, shape));
    EXPECT_EQ(shape.points, (std::vector<APoint<double>>{{10, 10}, {20, 0}, {10, 20}}));
    EXPECT_EQ(array_.GetCurItemNo(), 1);
    ASSERT_TRUE(array_.MoveBy(nullptr, 0, -7));
    ASSERT_TRUE(array_.Undo(nullptr));  // both moves: keys repeat
    ASSERT_TRUE(array_.GetShape(1, shape));
    EXPECT_EQ(shape.points[1], (APoint<double>{20, 10}));
}

TEST_F(InAxis, TheKeyboardDrawsInTheMiddleAndGoesOnFromThere)
{
    addRect({150, 10, 190, 40});
    int drawn = 0;
    for (const int tool : {toolRect, toolRotateRect, toolEllipse, toolArea}) {
        array_.BeginMode(nullptr, tool);
        ASSERT_TRUE(array_.PlaceShape(nullptr)) << tool;
        EXPECT_FALSE(array_.PlaceShape(nullptr));  // the tool is put away
        ASSERT_EQ(array_.GetCurItemNo(), ++drawn);
        EXPECT_EQ(array_(drawn)->IsReady() && array_(drawn)->IsActive(), 1);
        ShapeValues shape;
        ASSERT_TRUE(array_.GetShape(drawn, shape));
        const ARect<double> box = shapeBox(shape);
        EXPECT_EQ((ARect<double>{box.left, box.top, box.right, box.bottom}),
                  (ARect<double>{75, 38, 125, 63}));
        ASSERT_TRUE(array_.NextFocus(nullptr));
        EXPECT_EQ(array_.focusItem() * 100 + array_.focusHandle(), drawn * 100 - 1);
    }
    EXPECT_TRUE(array_.Undo(nullptr));
    EXPECT_EQ(array_.count(), 4);
}

TEST_F(InAxis, VerticesAreInsertedOnTheNearestEdgeAndThreeAlwaysStay)
{
    addArea({{0, 0}, {40, 0}, {40, 40}}, 1);
    const CPoint nearLastEdge(280, 179);  // (20, 21) in values
    ASSERT_TRUE(array_.InsertVertex(nullptr, &nearLastEdge));
    ShapeValues shape;
    ASSERT_TRUE(array_.GetShape(0, shape));
    ASSERT_EQ(shape.points.size(), 4u);
    EXPECT_NEAR(shape.points[3].x, 20.5, 1e-9);
    EXPECT_NEAR(shape.points[3].y, 20.5, 1e-9);
    const CPoint vertex(260, 200);
    ASSERT_TRUE(array_.DeleteVertex(nullptr, &vertex));
    ASSERT_TRUE(array_.GetShape(0, shape));
    EXPECT_EQ(shape.points[1], (APoint<double>{40, 40}));
    array_.SetFocusAt(nullptr, 0, 1);
    EXPECT_FALSE(array_.DeleteVertex(nullptr));
}

TEST_F(InAxis, FocusFollowsAShapeThatIsReplacedAndItsPlace)
{
    const ShapeValues triangle{ShapeValues::Kind::polygon, {}, 0, {{0, 0}, {40, 0}, {40, 40}}};
    const struct {
        const char* how;
        std::function<void()> replace;
        int focus;  ///< item * 100 + handle afterwards
    } cases[] = {{"undo", [&] { array_.Undo(nullptr); }, 102},
                 {"numbers", [&] { array_.SetShape(nullptr, 1, triangle); }, 102},
                 {"deleted", [&] { array_.DeleteItems(1, 1); }, -1},
                 {"another before it", [&] { array_.InsertAt(0, copyOf(array_, 0)); }, 203},
                 {"by the host",
                  [&] { static_cast<ARPAreaTracker*>(array_(1))->points().DeleteItems(3, 1); },
                  103},
                 {"load",
                  [&] {
                      MemoryFile file(stored(array_));
                      ASSERT_TRUE(array_.Load(file));
                  },
                  -1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.how);
        array_.Free();
        addRect({150, 10, 190, 40});
        addArea(triangle.points, 1);
        array_.SetFocusAt(nullptr, 1, 2);
        ASSERT_TRUE(array_.InsertVertex(nullptr));
        c.replace();
        EXPECT_EQ(array_.focusItem() < 0 ? -1 : array_.focusItem() * 100 + array_.focusHandle(),
                  c.focus);
        CPoint p;
        EXPECT_EQ(array_.FocusPoint(p), c.focus >= 0 && c.focus != 103);
        const int polygon = array_.GetCurItemNo() > 0 && array_.count() > 1;
        EXPECT_EQ(array_.InsertVertex(nullptr), polygon);
        EXPECT_EQ(array_.DeleteVertex(nullptr), c.focus >= 0);
    }
}

TEST_F(InAxis, MembersOfTheArrayAreEditsOfTheCollection)
{
    for (int k = 0; k < 300; ++k)  // enough for boxes to be kept
        addRect({0, 0, 1, 1});
    const CPoint there(290, 190);
    EXPECT_EQ(array_.TopmostAt(there, nullptr), -1);
    auto* const large = shaped(array_, toolRect, {{}, {5, 5, 20, 20}, 0, {}});
    large->SetActive(1);
    EXPECT_EQ(array_.InsertAt(2, large), 2);
    EXPECT_EQ(array_.InsertAt(999, large), -1);
    EXPECT_EQ(array_.TopmostAt(there, nullptr), 2);
    EXPECT_EQ(large->listener(), &array_);
    EXPECT_EQ(large->axis(), &axis_);
    const std::unique_ptr<ABTracker> copy(large->Duplicate());
    EXPECT_EQ(copy->listener(), nullptr);

    AArray<ABTracker*> more;
    more.Add(large->Duplicate());
    (array_ += more) += array_;
    EXPECT_EQ(array_.count(), 604);
    EXPECT_EQ(array_.TopmostAt(there, nullptr), 603);
    ASSERT_TRUE(array_.Undo(nullptr));
    ASSERT_TRUE(array_.Undo(nullptr));
    EXPECT_EQ(array_.TopmostAt(there, nullptr), 2);
    array_.ZeroInit();
    EXPECT_EQ(array_.count(), 0);
    ASSERT_TRUE(array_.Undo(nullptr));
    EXPECT_TRUE(array_(2)->IsActive());
    EXPECT_EQ(array_.GrowBy(5).count(), 0);

    ARPRectTracker mine;
    {
        ARPTrackerArray guests;
        guests.SetItemAutoDelete(0);
        guests.Add(&mine, 1);
        EXPECT_EQ(guests.DeleteItems(0, 1), 0);
        guests.Add(&mine, 1);
    }
    EXPECT_EQ(mine.listener(), nullptr);
}

TEST(ShapeHandles, DragOneSideOfATurnedShapeAndKeepTheOther)
{
    ShapeValues shape{ShapeValues::Kind::rotatedRectangle, {0, 0, 40, 20}, 0.5, {}};
    for (int handle = 0; handle < 8; ++handle) {
        ShapeValues next = shape;
        const int opposite = handle < 4 ? (handle + 2) % 4 : 4 + (handle - 2) % 4;
        const APoint<double> fixed = handlePoint(shape, opposite);
        ASSERT_TRUE(moveHandle(next, handle, {1.5, -0.5}));
        EXPECT_NEAR(handlePoint(next, opposite).x, fixed.x, 1e-12) << handle;
        EXPECT_NEAR(handlePoint(next, opposite).y, fixed.y, 1e-12) << handle;
    }
    const APoint<double> turning = handlePoint(shape, 8);
    ASSERT_TRUE(moveHandle(shape, 8, {20 - turning.x, 50 - turning.y}));
    EXPECT_DOUBLE_EQ(shape.angle, std::acos(0.0));
    EXPECT_EQ(shape.rect, (ARect<double>{0, 0, 40, 20}));
    EXPECT_FALSE(moveHandle(shape, 5, {0, -41}));  // would shrink it to less than nothing
}
