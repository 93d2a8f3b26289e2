#include "pavane/trackers/masks/AAreaArray.h"
#include "pavane/trackers/masks/AAreaBitFill.h"
#include "pavane/trackers/masks/scan_fill.h"
#include "platform/message.h"
#include "trackers/masks/plain_fill.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

using namespace pavane;

namespace
{

std::string asText(const ABitMatrix& m)
{
    std::string text;
    for (int r = 0; r < m.rows(); ++r, text += '\n')
        for (int c = 0; c < m.columns(); ++c)
            text += m.get(r, c) ? '#' : '.';
    return text;
}

ABitMatrix filled(const std::vector<CPoint>& points, int rows, int columns)
{
    ABitMatrix m(rows, columns);
    AAreaBitFill().FillMatrix(m, points.data(), static_cast<int>(points.size()));
    return m;
}

int messages = 0;
std::string lastMessage;
int countMessage(const CString& text, unsigned)
{
    ++messages;
    lastMessage = text;
    return IDOK;
}

/// A comb with `teeth` teeth, 40 rows high, two cells apart.
std::vector<CPoint> comb(int teeth)
{
    std::vector<CPoint> points;
    for (int i = 0; i < teeth; ++i) {
        points.emplace_back(4 * i, 0);
        points.emplace_back(4 * i + 2, 40);
    }
    points.emplace_back(4 * teeth, -10);
    return points;
}

/// Coordinates of many scales, level and repeated ones among them.
class RandomPolygons
{
public:
    std::vector<CPoint> next(int rows, int columns)
    {
        const int n = roll(0, 9) ? roll(0, 12) : roll(0, 300);
        const int kind = roll(0, 5);
        std::vector<CPoint> points;
        for (int i = 0; i < n; ++i) {
            if (i && roll(0, 5) == 0)
                points.push_back(points.back());
            else
                points.emplace_back(coordinate(kind, columns), coordinate(kind, rows));
            if (i && roll(0, 4) == 0)
                points.back().y = points[points.size() - 2].y;
        }
        return points;
    }
    int roll(int least, int greatest)
    {
        return std::uniform_int_distribution<int>(least, greatest)(engine_);
    }

private:
    int coordinate(int kind, int size)
    {
        static constexpr int least = -2147483647 - 1;
        static constexpr int greatest = 2147483647;
        switch (kind == 5 ? roll(0, 4) : kind) {
        case 0:
            return roll(0, size - 1);
        case 1:
            return roll(-size, 2 * size);
        case 2:
            return roll(0, 3);
        case 3:
            return roll(least, greatest);
        default:
            return roll(0, 1) ? roll(greatest - 2, greatest) : roll(least, least + 2);
        }
    }
    std::mt19937 engine_{20260415};
};

}  // namespace

TEST(AreaFill, IncludesBothEdgesOfEverySpan)
{
    struct {
        const char* name;
        std::vector<CPoint> points;
        const char* picture;
    } const cases[] = {
        {"square", {{0, 0}, {4, 0}, {4, 4}, {0, 4}}, "#####\n#####\n#####\n#####\n#####\n"},
        {"triangle", {{0, 0}, {4, 4}, {0, 4}}, "#....\n##...\n###..\n####.\n#####\n"},
        {"two points", {{4, 0}, {0, 4}}, "....#\n...#.\n..#..\n.#...\n#....\n"},
        {"level", {{1, 2}, {3, 2}, {2, 2}}, ".....\n.....\n.###.\n.....\n.....\n"},
        {"cut towards the start", {{0, 0}, {1, 4}, {4, 0}}, "#####\n####.\n###..\n##...\n.#...\n"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(asText(filled(c.points, 5, 5)), c.picture) << c.name;
}

TEST(AreaFill, EqualsThePlainRuleOnRandomPolygons)
{
    RandomPolygons polygons;
    for (int round = 0; round < 4000; ++round) {
        const int rows = polygons.roll(1, 40);
        const int columns = polygons.roll(1, 200);
        const auto points = polygons.next(rows, columns);
        ABitMatrix plain(rows, columns);
        ABitMatrix fast(rows, columns);
        plain.set(rows / 2, columns / 2);  // bits that are set stay set
        fast.set(rows / 2, columns / 2);
        const int most = test::plainFill(plain, points);
        int overflow = 0;
        const int room = polygons.roll(1, 9);
        ASSERT_TRUE(
            fillPolygon(fast, points.data(), static_cast<int>(points.size()), room, overflow));
        ASSERT_TRUE(plain == fast) << "round " << round;  // words are compared, so padding is 0
        ASSERT_EQ(overflow, most > room) << "round " << round;
    }
}

TEST(AreaFill, EqualsThePlainRuleOnLargeMasks)
{
    std::vector<CPoint> flower;
    for (int i = 0; i < 4000; ++i) {
        const double angle = 0.00157 * i;
        const double radius = 900 + 120 * std::sin(9 * angle) + (i % 701 ? 0 : 90);
        flower.emplace_back(static_cast<int>(1000 + radius * std::cos(angle)),
                            static_cast<int>(10000 + 9 * radius * std::sin(angle)));
    }
    for (const auto& points : {flower, {{-70, -5}, {2500, 9000}, {40, 25000}}}) {
        ABitMatrix plain(20000, 2030);
        test::plainFill(plain, points);
        EXPECT_TRUE(filled(points, 20000, 2030) == plain);
    }
}

TEST(AreaFill, KeepsCrossingsBeyondTheCapacityAndSaysSoOnce)
{
    const MessageFunction before = SetMessageFunction(countMessage);
    const auto wide = comb(40);
    ABitMatrix plain(41, 170);
    test::plainFill(plain, wide);
    messages = 0;
    const auto atCapacity = comb(24);  // 25 corners above, 24 below: never more than 50 crossings
    (void)filled(atCapacity, 41, 170);
    EXPECT_EQ(messages, 0);
    EXPECT_TRUE(filled(wide, 41, 170) == plain);
    EXPECT_EQ(messages, 1);
    EXPECT_EQ(lastMessage, "Many Area fill point");

    messages = 0;
    AAreaArray areas;
    for (int i = 0; i < 3; ++i)
        areas.Add(new APolyPoints(atCapacity.data(), static_cast<int>(atCapacity.size())));
    ABitMatrix mask(41, 170);
    areas.FillBits(mask);
    EXPECT_EQ(messages, 1);  // stored polygons have room for 30
    areas.Free();
    areas.FillBits(mask);
    EXPECT_EQ(mask.count(), 41 * 170);
    SetMessageFunction(before);
}

TEST(AreaFill, TakesAMillionCornersInAMoment)
{
    std::vector<CPoint> level(1'000'000, CPoint(5, 7));
    std::vector<CPoint>
        tower;  // level for long, so that looking back for another row would be slow
    std::vector<CPoint> saw;
    for (int i = 0; i < 1'000'000; ++i) {
        level[static_cast<std::size_t>(i)].x = i % 900;
        tower.emplace_back(i % 1000, i == 500'000 ? 90 : 10);
        saw.emplace_back(i % 1000, i % 2 ? 3 : 12);
    }
    for (const auto* points : {&level, &tower, &saw}) {
        ABitMatrix mask(100, 1000);
        int overflow = 0;
        EXPECT_TRUE(fillPolygon(mask, points->data(), 1'000'000, 50, overflow));
        EXPECT_GT(mask.count(), 899);
    }
}
