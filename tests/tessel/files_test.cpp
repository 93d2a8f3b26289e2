#include "tessel/ABitArray.h"
#include "tessel/ABitMatrix.h"
#include "tessel/AEllipse.h"
#include "tessel/AMatrix.h"
#include "tessel/fits_text.h"
#include "tessel/paths.h"

#include <cmath>
#include <gtest/gtest.h>

namespace pavane
{

TEST(AFile, ReadsAndWritesInTurnsAndKnowsWhatIsLeft)
{
    const std::string name = saved("turns.bin", "abcdef");
    AFile file(name, AFile::readWrite);
    char two[2];
    ASSERT_TRUE(file.read(two, 2));
    ASSERT_TRUE(file.write("XY", 2));
    ASSERT_TRUE(file.read(two, 1));
    EXPECT_EQ(two[0], 'e');
    EXPECT_EQ(file.left(), 1);
    EXPECT_FALSE(file.read(two, 2));
    EXPECT_FALSE(file.read(two, -1));
    EXPECT_TRUE(file.close());
    EXPECT_EQ(contents(name), "abXYef");
    EXPECT_FALSE(file.open(name, AFile::readWrite | AFile::create | AFile::exclusive));
    EXPECT_FALSE(file.open(testing::TempDir(), AFile::readOnly));
    EXPECT_FALSE(file.open(name, AFile::create));
}

TEST(ABitArray, StoresACountAndPackedBytes)
{
    ABitArray bits(11);
    for (const int i : {0, 3, 10, 11, -1})
        bits.set(i);
    const std::string name = testing::TempDir() + "bits.bin";
    AFile out(name, AFile::writeOnly | AFile::create);
    ASSERT_TRUE(bits.Store(out) && out.close());
    EXPECT_EQ(contents(name), std::string("\x0b\0\0\0\x09\x04", 6));
    ABitArray back;
    AFile in(name, AFile::readOnly);
    ASSERT_TRUE(back.Load(in));
    EXPECT_TRUE(back == bits);
    EXPECT_EQ(back.ones(), 3);
    EXPECT_FALSE(back.Load(in));
    EXPECT_EQ(back.count(), 0);
}

TEST(ABitArray, BelievesNoCountThatTheFileDoesNotHold)
{
    const struct {
        std::string bytes;
        int loaded, count;
    } cases[] = {{std::string("\xff\xff\xff\x7f\x01", 5), 0, 0},
                 {std::string("\x09\0\0\0\xff", 5), 0, 0},
                 {std::string("\xff\xff\xff\xff", 4), 1, 0},
                 {std::string("\x09\0", 2), 0, 0},
                 {std::string("\x02\0\0\0\xff", 5), 1, 2}};
    for (const auto& c : cases) {
        AFile file(saved("bits.bin", c.bytes), AFile::readOnly);
        ABitArray bits(3);
        EXPECT_EQ(bits.Load(file), c.loaded);
        EXPECT_EQ(bits.count(), c.count);
        EXPECT_EQ(bits.ones(), c.count);  // bits beyond the count are dropped
    }
}

TEST(ABitMatrix, KeepsPaddingClearAndCutsSpans)
{
    ABitMatrix bits(3, 130);
    bits.setAll(1);
    EXPECT_EQ(bits.count(), 390);
    bits.setAll(0);
    bits.setSpan(1, -5, 500);
    bits.setSpan(0, 60, 130);
    bits.setSpan(2, 9, 3);
    bits.setSpan(3, 0, 9);
    EXPECT_EQ(bits.count(), 130 + 70);
    EXPECT_EQ(bits.row(1)[2], 3u);
    EXPECT_EQ(ABitMatrix(bits).count(), 200);
    EXPECT_EQ(ABitMatrix(-1, 5).rows(), 0);
}

TEST(AMatrix, AlignsBigBuffersAndRefusesNoCells)
{
    const AMatrix<float> big(1024, 1025);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(big.data()) % (2 << 20), 0u);
    EXPECT_EQ(AMatrix<float>(0, 7).cells(), 0);
    EXPECT_EQ(AMatrix<double>(2147483647, 2147483647).cells(), 0);
}

TEST(AEllipse, GoesAroundOnceAndTurnsAgainstTheClock)
{
    struct Collect : AEllipse {
        void Point(int index, double x, double y) override
        {
            EXPECT_EQ(index, static_cast<int>(points.size()));
            points.push_back({std::round(x * 1e6) / 1e6, std::round(y * 1e6) / 1e6});
        }
        std::vector<std::pair<double, double>> points;
    } ellipse;
    ellipse.Draw(10, 20, 4, 2, 900, 4);  // a quarter turn: the long half-axis points up the screen
    const std::vector<std::pair<double, double>> wanted = {{10, 16}, {12, 20}, {10, 24}, {8, 20}};
    EXPECT_EQ(ellipse.points, wanted);
    ellipse.Draw(0, 0, 1, 1, 0, 0);
    EXPECT_EQ(ellipse.points.size(), 4u);
}

TEST(Paths, NameFoldersFilesAndUnusedNames)
{
    EXPECT_TRUE(IsFileExists(getExePath() + "tessel-tests"));
    EXPECT_FALSE(IsFileExists(testing::TempDir()));
    const std::string name = GetTempFileNameA(testing::TempDir(), "pv");
    EXPECT_EQ(folderOf(name), testing::TempDir());
    EXPECT_FALSE(IsFileExists(name));
    EXPECT_EQ(GetTempFileNameA("/no/such/folder", "pv"), "");
    EXPECT_EQ(extensionOf("a.b/c"), "");
    EXPECT_EQ(extensionOf("a/b.tar.gz"), "gz");
    EXPECT_EQ(baseNameOf("a/b"), "b");
}

}  // namespace pavane
