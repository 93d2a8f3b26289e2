#include "pavane/containers/AArray.h"
#include "pavane/containers/AObjArray.h"
#include "pavane/containers/APtrArray.h"
#include "tests/containers/stored_file.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace pavane
{
namespace
{

template <typename T>
std::vector<T> items(const AArray<T>& a)
{
    return std::vector<T>(a.lpArray(), a.lpArray() + a.count());
}

AArray<int> fromOneTo(int n, int grow = 256)
{
    AArray<int> a(n, 0, grow);
    for (int i = 0; i < n; ++i)
        a(i) = i + 1;
    return a;
}

TEST(AArray, HasABufferOnlyForOneItemOrMore)
{
    struct {
        int count, capacity, expectedCount, expectedAllocated;
    } const cases[] = {{3, 0, 3, 3}, {2, 7, 2, 7}, {0, 0, 0, 0}, {-4, -1, 0, 0}, {-4, 2, 0, 2}};
    for (const auto& c : cases) {
        const AArray<int> a(c.count, c.capacity, 5);
        EXPECT_EQ(a.count(), c.expectedCount);
        EXPECT_EQ(a.allocated(), c.expectedAllocated);
        EXPECT_EQ(a.lpArray() != nullptr, c.expectedAllocated > 0);
    }
}

TEST(AArray, GrowsByItsStepAtAnInsertionAndToTheExactSizeAtAnAppend)
{
    AArray<int> a = fromOneTo(3);
    EXPECT_EQ(a.InsertAt(1, 9), 1);
    EXPECT_EQ(items(a), (std::vector{1, 9, 2, 3}));
    EXPECT_EQ(a.allocated(), 259);
    AArray<int> b = fromOneTo(2);
    b += fromOneTo(3);
    EXPECT_EQ(items(b), (std::vector{1, 2, 1, 2, 3}));
    EXPECT_EQ(b.allocated(), 5);
}

TEST(AArray, GrowsWhateverItsStepSays)
{
    for (const int grow : {0, -7, std::numeric_limits<int>::min()}) {
        AArray<int> a = fromOneTo(2, grow);
        EXPECT_EQ(a.Add(3), 2);
        EXPECT_EQ(items(a), (std::vector{1, 2, 3}));
    }
}

TEST(AArray, TakesItselfAndItsOwnItems)
{
    AArray<int> a = fromOneTo(2, 0);
    a += a;
    a.InsertAt(0, a(3));
    const AArray<int>& same = a;
    a = same;
    EXPECT_EQ(items(a), (std::vector{2, 1, 2, 1, 2}));
    a = a(1);
    EXPECT_EQ(items(a), (std::vector{1, 1, 1, 1, 1}));
}

TEST(AArray, DeletesFromTheMiddleOrToTheEnd)
{
    struct {
        int first, n;
        std::vector<int> left;
    } const cases[] = {
        {2, 10, {1, 2}}, {1, 2, {1, 4, 5}}, {1, std::numeric_limits<int>::max(), {1}}, {0, 5, {}}};
    for (const auto& c : cases) {
        AArray<int> a = fromOneTo(5);
        EXPECT_EQ(a.DeleteItems(c.first, c.n), static_cast<int>(c.left.size()));
        EXPECT_EQ(items(a), c.left);
    }
}

TEST(AArray, AdoptsABufferOrCopiesIt)
{
    int* const buffer = new int[2]{4, 5};
    AArray<int> copied(buffer, 2, 1, 1);
    AArray<int> adopted(buffer, 2, 1, 0);
    buffer[0] = 6;
    EXPECT_EQ(items(copied), (std::vector{4, 5}));
    EXPECT_EQ(items(adopted), (std::vector{6, 5}));
    adopted.GrowBy(1).ZeroInit();
    EXPECT_EQ(items(adopted), (std::vector{0}));
}

// Counts what it hands out, and refuses when told to.
class OwnMemory : public AArray<int>
{
public:
    OwnMemory() = default;
    ~OwnMemory() override { OwnMemory::Free(); }
    int* AMALLOC(int n) override { return refuse ? nullptr : (++blocks, new int[std::size_t(n)]); }
    void AFREE(int* p) override
    {
        --blocks;
        delete[] p;
    }
    int blocks = 0;
    bool refuse = false;
};

TEST(AArray, GetsAllItsMemoryFromTheDerivedClass)
{
    OwnMemory a;
    a.Add(1);
    a += fromOneTo(600);
    a.GrowBy(4);
    EXPECT_EQ(a.blocks, 1);
    a.Free();
    EXPECT_EQ(a.blocks, 0);
}

TEST(AArray, IsEmptyWhenThereIsNoMemory)
{
    OwnMemory a;
    a.GrowBy(2);
    a.refuse = true;
    EXPECT_EQ(a.Add(1), -1);
    EXPECT_EQ(a.count(), 0);
    EXPECT_EQ(a.lpArray(), nullptr);
    EXPECT_EQ(a.blocks, 0);
}

TEST(AObjArray, CopiesObjectsByTheirAssignment)
{
    AObjArray<std::string> a(0, 0, 1);
    for (const char* const text : {"a long text that needs memory of its own", "b", "c"})
        a.Add(text);
    AObjArray<std::string> b = a;
    b.InsertAt(1, b(0));
    b.DeleteItems(0, 1);
    b += b;
    EXPECT_EQ(items<std::string>(b), (std::vector{a(0), a(1), a(2), a(0), a(1), a(2)}));
}

TEST(AObjArray, GrowKeepsItemsWhenAskedAndRemembersTheOldCount)
{
    AObjArray<std::string> a(0, 0, 1);
    a.Add("x");
    a.Add("y");
    a.GrowBy(4, 1);
    EXPECT_EQ(items<std::string>(a), (std::vector<std::string>{"x", "y", "", ""}));
    EXPECT_EQ(a.allocated(), 2);
    a.GrowBy(3, 1);  // the buffer counts as 2 slots, so it moves, and 3 of the 4 items fit
    EXPECT_EQ(items<std::string>(a), (std::vector<std::string>{"x", "y", ""}));
    EXPECT_EQ(a.allocated(), 3);
    a.GrowBy(5, 0);
    EXPECT_EQ(items<std::string>(a), std::vector<std::string>(5));
    a.Add("z");  // past the slots it counts
    EXPECT_EQ(a(5), "z");
}

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
