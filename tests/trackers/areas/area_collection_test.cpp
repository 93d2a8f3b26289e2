#include "pavane/containers/MemoryFile.h"
#include "pavane/trackers/areas/area_shape_record.h"
#include "pavane/trackers/areas/AreaCollection.h"
#include "tessel/ABitMatrix.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

using namespace pavane;

namespace
{

using Kind = ShapeValues::Kind;

std::string number(std::int32_t n) { return {reinterpret_cast<const char*>(&n), sizeof n}; }

std::string entry(std::string name, const std::string& record)
{
    name.resize(32);
    return name + record;
}

std::string own(const std::string& name, const ShapeValues& shape)
{
    return entry(name, newRecord(*areaClassOf(name), shape));
}

const std::string rect = own("ARPRectTracker", {Kind::rectangle, {1, 1, 4, 3}, 0, {}});
const std::string area =
    own("ARPAreaTracker", {Kind::polygon, {}, 0, {{5, 5}, {8, 5}, {8, 9}, {5, 9}}});
const std::string pixels = own("AEllipseTracker", {Kind::ellipse, {5, 5, 9, 8}, 1, {}});
const std::string none = area.substr(0, 88) + number(-1);
const std::string star = entry("AStar", std::string(45, '\7'));

std::string stored(const AreaCollection& areas)
{
    MemoryFile file;
    EXPECT_TRUE(areas.Store(file));
    return file.bytes();
}

int cellsOf(const AreaCollection& areas, int& complete, LoadReport* report = nullptr)
{
    ABitMatrix mask(12, 10);
    complete = areas.FillMatrix(mask, 10, 12, {0, 9, 0, 11}, report);
    return static_cast<int>(mask.count());
}

}  // namespace

TEST(AreaCollection, KeepsWhatNobodyKnowsToTheByteAndTellsOfIt)
{
    ASSERT_TRUE(RegisterAreaClass({"AHostShape", 0, {}, {}, [](AFile& file) {
                                       std::int32_t n = 0;
                                       return file.read(&n, sizeof n) && n >= 0 &&
                                              n <= file.left() && file.seek(n, AFile::current);
                                   }}));
    ASSERT_FALSE(RegisterAreaClass({"ANameless", 0, {}, {}, {}}));
    const std::string host = entry("AHostShape", number(3) + "abc");
    const std::string dirty = entry(std::string("AStar\0old bytes", 15), std::string(60, '\1'));
    const std::string told = "class \"AStar\" is unknown; it is kept";
    const struct {
        const char* what;
        std::string entries;
        int promised, result, count;
        std::string line;
        int cells;  ///< of the mask; a rectangle has 12, the polygon 20
    } cases[] = {
        {"known ones alone", rect + area, 2, 1, 2, "", 32},
        {"unknown between", rect + star + area, 3, 1, 3, "area 2: " + told, 32},
        {"unknown alone", star, 1, 1, 1, "area 1: " + told, 0},
        {"two unknown are one", star + star + area, 3, 1, 2, "area 1: " + told, 20},
        {"a field with more than a name", dirty + area, 2, 1, 2, "area 1: " + told, 20},
        {"a name without an end", rect + std::string(50, 'A') + area, 3, 1, 3,
         "area 2: class \"" + std::string(32, 'A') + "\" is unknown; it is kept", 32},
        {"a host's", host + area, 2, 1, 2,
         "area 1: class \"AHostShape\" has no shape in data values; it is kept", 20},
        {"a polygon with fewer vertices than none", none + area, 2, 1, 2, "", 20},
        {"pixels", pixels + rect, 2, 1, 2,
         "area 1: class \"AEllipseTracker\" has no shape in data values; it is kept", 12},
        {"a record that is cut", rect + host + area.substr(0, 95), 3, 0, 2,
         "area 2: class \"AHostShape\" has no shape in data values; it is kept", 12},
        {"more promised than there is", rect, 2147483647, 0, 1,
         "area 2: the file ends here; it promises 2147483647", 12},
        {"a negative number", rect, -1, 1, 0, "", 120},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const std::string bytes = number(0) + number(c.promised) + c.entries;
        MemoryFile file(bytes);
        AreaCollection areas;
        LoadReport report;
        EXPECT_EQ(areas.Load(file, report), c.result);
        ASSERT_EQ(areas.count(), c.count);
        EXPECT_EQ(report.lines.empty() ? "" : report.lines[0], c.line);
        int complete = 0;
        LoadReport notes;
        EXPECT_EQ(cellsOf(areas, complete, &notes), c.cells);
        EXPECT_EQ(complete, c.line.empty() || c.promised > 99);
        EXPECT_EQ(notes.complete(), complete);
        if (!c.result || c.promised < 0)
            continue;
        EXPECT_EQ(stored(areas), bytes);
        // edited and undone
        ShapeValues shape;
        for (int i = 0; i < areas.count(); ++i)
            if (areas.shape(i, shape)) {
                shape.rect = {2, 2, 3, 3};
                shape.points.assign(5, {4, 4});
                EXPECT_TRUE(areas.setShape(i, shape));
            } else {
                EXPECT_FALSE(areas.setShape(i, shape));
            }
        for (int i = 0; i < c.count; ++i) {
            areas.makeCurrent(0);
            EXPECT_TRUE(areas.erase(0));
        }
        EXPECT_GE(areas.add({Kind::ellipse, {1, 1, 2, 2}, 0, {}}), 0);
        EXPECT_TRUE(areas.isModified());
        while (areas.edits().history().undoSteps() > 1)
            EXPECT_TRUE(areas.undo());
        EXPECT_EQ(stored(areas), bytes);
    }
}

TEST(AreaCollection, RefusesNumbersThatNoRecordHolds)
{
    const double infinite = std::numeric_limits<double>::infinity();
    AreaCollection areas;
    EXPECT_LT(areas.add({Kind::rectangle, {0, infinite, 1, 1}, 0, {}}), 0);
    EXPECT_LT(areas.add({Kind::ellipse, {0, 0, 1, 1}, 2000, {}}), 0);
    EXPECT_LT(areas.add({Kind::polygon, {}, 0, {}}), 0);
    EXPECT_EQ(areas.add({Kind::rectangle, {0, 0, 1, 1}, 0, {}}), 0);
    EXPECT_FALSE(areas.setShape(0, {Kind::ellipse, {0, 0, 1, 1}, 0, {}}));
    EXPECT_FALSE(areas.setShape(7, {}) || areas.erase(7) || areas.erase(-1));
    EXPECT_EQ(areas.record(7), AreaRecord());
}

TEST(AreaCollection, SurvivesEveryCutAndEveryFlippedByte)
{
    const std::string whole = number(1) + number(4) + rect + area + star + pixels;
    for (std::size_t n = 0; n < whole.size(); ++n)
        for (const int bits : {0, 0xFF, 0x80, 0x01}) {
            std::string damaged = bits ? whole : whole.substr(0, n);
            if (bits)
                damaged[n] = static_cast<char>(damaged[n] ^ bits);
            MemoryFile file(damaged);
            AreaCollection areas;
            LoadReport report;
            const int loaded = areas.Load(file, report);
            EXPECT_TRUE(loaded || !report.complete()) << n;
            int complete = 0;
            (void)cellsOf(areas, complete);
            const std::string once = stored(areas);
            MemoryFile again(once);
            EXPECT_TRUE(areas.Load(again)) << n;
            EXPECT_EQ(stored(areas), once) << n;
        }
}

TEST(AreaCollection, LeavesOutWhatIsNeverCleanedWhereverItStands)
{
    AreaCollection areas;
    const auto add = [&](double left, double bottom, double right, double top, int isNeverClean) {
        ShapeValues shape;
        shape.rect = {left, top, right, bottom};
        ASSERT_TRUE(areas.setNeverClean(areas.add(shape), isNeverClean));
    };
    const auto count = [&] {
        ABitMatrix mask(12, 10);
        EXPECT_TRUE(areas.FillMatrix(mask, 10, 12, {0, 9, 0, 11}));
        return mask.count();
    };
    add(2, 2, 4, 4, 1);
    EXPECT_EQ(count(), 120 - 9);  // alone: the map without it
    add(1, 1, 5, 5, 0);
    EXPECT_EQ(count(), 25 - 9);
    add(20, 20, 30, 30, 0);  // another one, out of the map
    EXPECT_EQ(count(), 25 - 9);
    MemoryFile file;
    ASSERT_TRUE(areas.Store(file));
    ASSERT_TRUE(areas.setNeverClean(0, 0));
    EXPECT_EQ(count(), 25);
    ASSERT_TRUE(areas.undo());
    EXPECT_EQ(count(), 25 - 9);
    AreaCollection read;
    MemoryFile again(file.bytes());
    ASSERT_TRUE(read.Load(again));
    EXPECT_TRUE(read.isNeverClean(0));
    EXPECT_FALSE(read.isNeverClean(1) || read.isNeverClean(7) || read.setNeverClean(7, 1));
}
