#include "pavane/trackers/shapes/BoxIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

using namespace pavane;

namespace
{

using Box = ARect<double>;

bool overlap(double a, double b, double c, double d)
{
    return std::min(a, b) <= std::max(c, d) && std::min(c, d) <= std::max(a, b);
}

std::vector<int> plainMeeting(const std::vector<Box>& boxes, const Box& r)
{
    std::vector<int> found;
    for (const Box& b : boxes)
        if (overlap(b.left, b.right, r.left, r.right) && overlap(b.top, b.bottom, r.top, r.bottom))
            found.push_back(static_cast<int>(&b - boxes.data()));
    return found;
}

std::vector<int> meeting(const BoxIndex& index, const Box& rect)
{
    Pile<int> found;
    EXPECT_TRUE(index.meeting(rect, found));
    return {found.data(), found.data() + found.count()};
}

std::vector<int> allAt(const BoxIndex& index, double x, double y)
{
    std::vector<int> found;
    EXPECT_EQ(index.fromLast(x, y, [&](int i) { return found.push_back(i), 0; }), -1);
    return found;
}

/// Boxes and places as areas lie on a map: `spread` wide, mostly `usual` large.
struct Field {
    const char* name;
    double spread;
    double usual;
    int hugeOutOf;  // one of so many boxes is a thousand times larger; 0 for none

    Box box(std::mt19937& random) const
    {
        std::normal_distribution<double> place(0, spread);
        std::exponential_distribution<double> size(1);
        const bool huge = hugeOutOf && random() % static_cast<unsigned>(hugeOutOf) == 0;
        const double side = usual * (huge ? 1000 : 1);
        const double x = place(random);
        const double y = place(random);
        return {x, y, x + side * size(random), y - side * size(random)};
    }
};

TEST(BoxIndex, FindsTheBoxesOfAPlainSearchWhileTheyChange)
{
    const Field fields[] = {{"scattered", 1000, 3, 0},    {"large ones", 1000, 3, 20},
                            {"all over", 10, 1000, 0},    {"points", 50, 0, 0},
                            {"one place", 0, 0, 0},       {"tiny", 1e-9, 1e-12, 50},
                            {"enormous", 1e300, 1e290, 7}};
    std::mt19937 random(5);
    for (const Field& field : fields) {
        SCOPED_TRACE(field.name);
        std::vector<Box> boxes(700);
        for (Box& b : boxes)
            b = field.box(random);
        BoxIndex index;
        ASSERT_TRUE(index.build(boxes.data(), 500));
        for (int i = 500; i < 700; ++i)
            ASSERT_TRUE(index.append(boxes[static_cast<std::size_t>(i)]));
        for (int round = 0; round < 1000; ++round) {
            const auto changed = random() % boxes.size();
            boxes[changed] = field.box(random);
            ASSERT_TRUE(index.update(static_cast<int>(changed), boxes[changed]));
            const Box wanted = field.box(random);
            ASSERT_EQ(meeting(index, wanted), plainMeeting(boxes, wanted));
            const Box& target = boxes[random() % boxes.size()];
            const double x = random() % 2 ? target.left : wanted.left;
            const double y = random() % 2 ? target.bottom : wanted.bottom;
            std::vector<int> expected = plainMeeting(boxes, {x, y, x, y});
            std::reverse(expected.begin(), expected.end());
            ASSERT_EQ(allAt(index, x, y), expected);
            ASSERT_EQ(index.fromLast(x, y, [](int) { return 1; }),
                      expected.empty() ? -1 : expected[0]);
        }
    }
}

TEST(BoxIndex, BoxesWithoutNumbersAreFoundNowhereAndEndlessOnesEverywhere)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const Box boxes[] = {{nan, 0, 1, 1}, {-inf, -inf, inf, inf}, {0, 0, 1, nan}, {0, 0, 1, 1}};
    BoxIndex index;
    EXPECT_TRUE(allAt(index, 0, 0).empty());
    ASSERT_TRUE(index.build(boxes, 4));
    EXPECT_EQ(allAt(index, 0.5, 0.5), (std::vector<int>{3, 1}));
    EXPECT_EQ(allAt(index, 1e300, -5), (std::vector<int>{1}));
    EXPECT_EQ(meeting(index, {2, 2, -2, -2}), (std::vector<int>{1, 3}));
    EXPECT_TRUE(allAt(index, nan, 0).empty());
}

}  // namespace
