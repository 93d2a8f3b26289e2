#include "pavane/containers/AArray.h"
#include "pavane/containers/AObjArray.h"
#include "tests/containers/stored_file.h"

#include <gtest/gtest.h>

#include <string>

namespace pavane
{
namespace
{

using namespace std::string_literals;

TEST(StoredArray, IsACountAndTheBytesOfTheItems)
{
    AArray<short> a(2, 0, 1);
    a(0) = 258;
    a(1) = -1;
    StoredFile file;
    EXPECT_TRUE(a.Store(file) && AArray<short>(0, 0, 1).Store(file));
    EXPECT_EQ(file.bytes(), "\2\0\0\0\2\1\xFF\xFF\0\0\0\0"s);
    file.rewind();
    AArray<short> b(file);
    EXPECT_EQ(b.count(), 2);
    EXPECT_EQ(b(0), 258);
    EXPECT_EQ(b.growBy(), 256);
    EXPECT_TRUE(b.Load(file));
    EXPECT_EQ(b.count(), 0);
    EXPECT_EQ(b.lpArray(), nullptr);
    EXPECT_EQ(b.Add(7), 0);  // the slots that it still counts have no buffer
}

TEST(StoredArray, RefusesWhatTheFileDoesNotHold)
{
    const std::string cases[] = {"", "\1\0"s, "\2\0\0\0abc"s, "\xFF\xFF\xFF\x7F"s + "abcd"};
    for (const std::string& bytes : cases) {
        StoredFile file(bytes);
        AArray<short> a(3, 0, 1);
        EXPECT_EQ(a.Load(file), 0);
        EXPECT_EQ(a.count(), 0);
        EXPECT_EQ(a.lpArray(), nullptr);
    }
    StoredFile negative("\xFF\xFF\xFF\xFF"s);
    AArray<short> a(3, 0, 1);
    EXPECT_EQ(a.Load(negative), 1);
    EXPECT_EQ(a.count(), 0);
}

TEST(StoredArray, FailsAtEachReadAndWrite)
{
    AArray<int> a(2, 0, 1);
    a.ZeroInit();
    for (const int allowed : {0, 1}) {
        StoredFile file("\2\0\0\0abcdefgh"s);
        file.failAfter(allowed);
        AArray<int> b;
        EXPECT_EQ(b.Load(file), 0);
        EXPECT_EQ(b.count(), 0);
        file.failAfter(allowed);
        EXPECT_EQ(a.Store(file), 0);
    }
}

TEST(StoredObjects, TextsAreLengthAndBytes)
{
    AObjArray<std::string> a(0, 0, 2);
    a.Add("ab");
    a.Add("");
    StoredFile file;
    EXPECT_TRUE(a.Store(file));
    EXPECT_EQ(file.bytes(), "\2\0\0\0\2\0\0\0ab\0\0\0\0"s);
    file.rewind();
    AObjArray<std::string> b(file);
    ASSERT_EQ(b.count(), 2);
    EXPECT_EQ(b(0), "ab");
    EXPECT_EQ(b.allocated(), 0);  // the old count, here none
    b.Add("c");
    EXPECT_EQ(b(2), "c");
}

TEST(StoredObjects, RefuseTextsAndCountsThatTheFileDoesNotHold)
{
    const std::string cases[] = {"\1\0\0\0\xFF\xFF\xFF\xFF"s, "\1\0\0\0\3\0\0\0ab"s,
                                 "\2\0\0\0\1\0\0\0a"s, "\xFF\xFF\xFF\x7F"s};
    for (const std::string& bytes : cases) {
        StoredFile file(bytes);
        AObjArray<std::string> a(1, 0, 1);
        EXPECT_EQ(a.Load(file), 0);
        EXPECT_EQ(a.count(), 0);
    }
}

}  // namespace
}  // namespace pavane
