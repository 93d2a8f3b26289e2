#include "pavane/containers/APtrArray.h"
#include "tests/containers/stored_file.h"

#include <gtest/gtest.h>

namespace pavane
{
namespace
{

// Counts the objects alive.
struct Thing {
    Thing() { ++alive; }
    virtual ~Thing() { --alive; }
    static inline int alive = 0;
};

class PointerArray : public testing::Test
{
protected:
    void SetUp() override { Thing::alive = 0; }
    void TearDown() override { EXPECT_EQ(Thing::alive, 0); }
    static void fill(APtrArray<Thing*>& a, int n)
    {
        for (int i = 0; i < n; ++i)
            a.Add(new Thing);
    }
};

TEST_F(PointerArray, OwnsItsObjectsWhileAutoDeleteIsOn)
{
    APtrArray<Thing*> a(0, 0, 4);
    fill(a, 6);
    EXPECT_EQ(a.DeleteItems(1, 2), 4);
    EXPECT_EQ(Thing::alive, 4);
    EXPECT_EQ(a.lpArray()[4], nullptr);
    APtrArray<Thing*> shared(a);
    shared.SetItemAutoDelete(0);
    EXPECT_EQ(shared.DeleteItems(2, 9), 2);
    shared.Free();
    EXPECT_EQ(Thing::alive, 4);
    APtrArray<Thing*> taken(0, 0, 1);
    taken = a;
    a.SetItemAutoDelete(0);
    EXPECT_EQ(taken.GetItemAutoDelete(), 1);
}

TEST_F(PointerArray, DeletesTheWholeRangeEvenPastTheCount)
{
    APtrArray<Thing*> a(2, 4, 4);  // slots that nobody set are null
    a.lpArray()[3] = new Thing;
    a(1) = new Thing;
    EXPECT_EQ(a.DeleteItems(1, 2147483647), 1);
    EXPECT_EQ(Thing::alive, 0);
    EXPECT_EQ(a.lpArray()[3], nullptr);
}

TEST_F(PointerArray, NeverDeletesPointersThatComeFromAFile)
{
    APtrArray<Thing*> owner(0, 0, 4);
    fill(owner, 2);
    StoredFile file;
    ASSERT_TRUE(owner.Store(file) && owner.Store(file));
    file.rewind();
    APtrArray<Thing*> read(file);
    ASSERT_EQ(read.count(), 2);
    EXPECT_EQ(read(1), owner(1));
    EXPECT_EQ(read.growBy(), 256);
    EXPECT_EQ(file.left(), 0);  // two arrays were read
}

}  // namespace
}  // namespace pavane
