#include "pavane/trackers/masks/AAreaArray.h"
#include "pavane/trackers/masks/cell_area_file.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <unistd.h>
#include <vector>

using namespace pavane;

namespace
{

using Ints = std::vector<std::int32_t>;

class StoredAreas : public testing::Test
{
protected:
    std::string write(const Ints& numbers, std::size_t bytesLess = 0)
    {
        AFile out(name_, AFile::writeOnly | AFile::create);
        const auto bytes = static_cast<std::int64_t>(numbers.size() * 4 - bytesLess);
        EXPECT_TRUE(out.write(numbers.data(), bytes) && out.close());
        return name_;
    }
    Ints numbersInFile() const
    {
        AFile in(name_, AFile::readOnly);
        Ints numbers(static_cast<std::size_t>(in.size()) / 4);
        EXPECT_TRUE(in.read(numbers.data(), in.size()));
        return numbers;
    }
    ~StoredAreas() override { std::remove(name_.c_str()); }
    std::string name_ = testing::TempDir() + "areas-" + std::to_string(::getpid()) + ".cma";
};

const Ints twoPolygons = {2, 3, 1, 2, -3, 4, 5, 2147483647, 1, 7, 8};

}  // namespace

TEST_F(StoredAreas, ComeBackAsTheyLieInTheFile)
{
    AAreaArray areas;
    std::string error;
    ASSERT_TRUE(readCellAreaFile(write(twoPolygons), areas, error)) << error;
    ASSERT_EQ(areas.count(), 2);
    EXPECT_EQ(areas(0)->points[1], CPoint(-3, 4));
    EXPECT_EQ(areas(1)->count, 1);
    const AAreaArray copy(areas);
    areas.Free();
    ASSERT_TRUE(writeCellAreaFile(name_, copy, error)) << error;
    EXPECT_EQ(numbersInFile(), twoPolygons);
    AFile out(name_, AFile::writeOnly | AFile::create);
    EXPECT_TRUE(copy.Store(out) && APolyPoints().Store(out) && out.close());
    Ints withEmpty = twoPolygons;
    withEmpty.push_back(0);
    EXPECT_EQ(numbersInFile(), withEmpty);
}

TEST_F(StoredAreas, AreRefusedUnlessTheFileIsAsLongAsItSays)
{
    struct {
        Ints numbers;
        const char* message;
    } const cases[] = {
        {{}, "it is too short for the number of polygons"},
        {{-1}, "its number of polygons is -1"},
        {{2, 0}, "it ends before polygon 2 of 2"},
        {{1, -5}, "polygon 1 has a count of -5"},
        {{2, 0, 2147483647, 1, 1},
         "polygon 2 promises 2147483647 points, more than the file holds"},
        {{2147483647, 1, 1, 1}, "it ends before polygon 2 of 2147483647"},
        {{1, 1, 4, 4, 0}, "4 bytes follow its last polygon"},
    };
    for (const auto& c : cases) {
        AAreaArray areas;
        areas.Add(new APolyPoints());
        std::string error;
        EXPECT_FALSE(readCellAreaFile(write(c.numbers), areas, error)) << c.message;
        EXPECT_EQ(error, name_ + ": not an area file: " + c.message);
        EXPECT_EQ(areas.count(), 0);
    }
    AAreaArray areas;
    std::string error;
    EXPECT_FALSE(readCellAreaFile(name_ + "/none", areas, error));
    EXPECT_FALSE(writeCellAreaFile(name_ + "/none", areas, error));  // below a file: no such folder
}

TEST_F(StoredAreas, CutAtAnyByteLeaveNothingBehind)
{
    for (std::size_t less = 1; less <= twoPolygons.size() * 4; ++less) {
        AFile in(write(twoPolygons, less), AFile::readOnly);
        AAreaArray areas;
        EXPECT_FALSE(areas.Load(in)) << less;
        EXPECT_EQ(areas.count(), 0);
        EXPECT_EQ(areas.lpArray(), nullptr);
    }
    AFile in(write({1000000000, 1, 2}), AFile::readOnly);
    APolyPoints polygon(std::vector<CPoint>(3).data(), 3);
    EXPECT_FALSE(polygon.Load(in));
    EXPECT_EQ(polygon.count, 0);
    EXPECT_EQ(polygon.points, nullptr);
}
