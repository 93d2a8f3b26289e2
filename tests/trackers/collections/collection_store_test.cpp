#include "containers/stored_file.h"

#include "pavane/trackers/areas/AreaCollection.h"
#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/shapes/shape_handles.h"
#include "tessel/ABitMatrix.h"

#include <gtest/gtest.h>

#include "trackers/collections/stored_collection.h"

using namespace pavane;
using namespace pavane::test;

namespace
{

/// Little-endian fields, put together by hand.
struct Bytes : std::string {
    template <typename T>
    Bytes& put(std::initializer_list<T> numbers)
    {
        for (const T n : numbers)
            append(reinterpret_cast<const char*>(&n), sizeof n);
        return *this;
    }
    Bytes& name(const std::string& text)
    {
        append(text);
        append(32 - text.size(), '\0');
        return *this;
    }
    Bytes& raw(const std::string& bytes)
    {
        append(bytes);
        return *this;
    }
};

Bytes head(int style) { return Bytes().put<int>({style, 6, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}); }

Bytes pixelHeader(int current)
{
    return Bytes()
        .put<int>({current, 1, -1})
        .put<double>({0, 10, 0, 5, 1e38, -1e38})
        .put<int>({5, 6, 105, 56, 1});
}

Bytes pixelFile()
{
    Bytes area = head(0x6D).put<int>({3, 1, 2, 30, 4, 5, 60});
    return pixelHeader(1)
        .put<int>({2})
        .name("ARectTracker")
        .raw(head(0x2D).put<int>({10, 20, 30, 40, 12, 12, 0}))
        .name("AAreaTracker")
        .raw(area);
}

void fill(ATrackerArray& array)
{
    array.CheckMinMax({5, 6, 105, 56}, {0, 10, 0, 5, 1e38, -1e38}, 1, -1);
    array.Add(new ARectTracker({10, 20, 30, 40}, trackerNew), 0);
    array.Add(shaped(array, toolArea, {{}, {}, 0, {{1, 2}, {30, 4}, {5, 60}}}), 1);
}

Bytes valueFile()
{
    return Bytes()
        .put<int>({0, 2})
        .name("ARPAreaTracker")
        .raw(head(0x6D).put<int>({3}).put<double>({0.5, 1, 2, 1, 0.25, 3}))
        .name("ARPEllipseTracker")
        .raw(head(0x2D).put<double>({1, 2, 3, 4, 0.5}).put<int>({8, 8, 15, 0}));
}

template <typename Array>
void comeBack(const Array& array, const std::string& bytes, Array& back)
{
    EXPECT_EQ(stored(array), bytes);
    MemoryFile file(bytes);
    ASSERT_TRUE(back.Load(file));
    EXPECT_EQ(stored(back), bytes);
}

template <typename Array>
void surviveEveryDamage(const std::string& whole)
{
    for (std::size_t n = 0; n < whole.size(); ++n) {
        MemoryFile file(whole.substr(0, n));
        Array array;
        LoadReport report;
        EXPECT_EQ(array.Load(file, report), 0) << n;
        EXPECT_FALSE(report.complete()) << n;
    }
    for (std::size_t n = 0; n < whole.size(); ++n)
        for (const int bits : {0xFF, 0x80, 0x01}) {
            std::string damaged = whole;
            damaged[n] = static_cast<char>(damaged[n] ^ bits);
            MemoryFile file(damaged);
            Array array;
            (void)array.Load(file);
            ABitMatrix mask(20, 30);
            array.FillMatrix(mask, 30, 20, {0, 10, 0, 5});
            (void)stored(array);
        }
}

}  // namespace

TEST(StoredCollection, HasTheseBytesAndComesBackToItsOwner)
{
    ATrackerArray pixels, pixelsBack;
    fill(pixels);
    comeBack(pixels, pixelFile(), pixelsBack);
    EXPECT_EQ(pixelsBack.GetCurItem(), pixelsBack(1));
    EXPECT_EQ(pixelsBack(1)->listener(), &pixelsBack);
    ARPTrackerArray values, valuesBack;
    values.Add(shaped(values, toolArea, {{}, {}, 0, {{0.5, 1}, {2, 1}, {0.25, 3}}}), 1);
    values.Add(shaped(values, toolEllipse, {{}, {1, 2, 3, 4}, 0.5, {}}), 0);
    comeBack(values, valueFile(), valuesBack);
    EXPECT_EQ(valuesBack(0)->axis(), nullptr);
}

TEST(StoredCollection, IsEditedInTheSameWayWithoutAWindow)
{
    std::mt19937 random(3);
    ARPTrackerArray trackers;
    for (int i = 0; i < 12; ++i)
        addAny(trackers, random);
    trackers.ChangeActiveTrack(nullptr, 3);
    MemoryFile file(stored(trackers));
    AreaCollection areas;
    ASSERT_TRUE(areas.Load(file));
    for (int round = 0; round < 400; ++round) {
        const int i = static_cast<int>(random() % static_cast<unsigned>(trackers.count()));
        ShapeValues shape, same;
        ASSERT_TRUE(trackers.GetShape(i, shape) && areas.shape(i, same));
        EXPECT_EQ(shape, same);
        switch (random() % 6) {
        case 0: {
            ABTracker* const copy = trackers(i)->Duplicate();
            copy->SetActive(0);
            trackers.Add(copy);
            EXPECT_GE(areas.add(shape), 0);
            break;
        }
        case 1:
            trackers.ChangeActiveTrack(nullptr, i);
            areas.makeCurrent(i);
            break;
        case 2:
            EXPECT_TRUE(trackers.count() < 4 || (trackers.DeleteItems(i, 1) && areas.erase(i)));
            break;
        case 3:
            EXPECT_TRUE(trackers.history().undoSteps() < 13 ||
                        (trackers.Undo(nullptr) && areas.undo()));
            break;
        case 4:
            EXPECT_EQ(trackers.Redo(nullptr), areas.redo());
            break;
        default:
            moveShape(shape, {3.25, -2});
            shape.angle /= 2;
            if (shape.points.size() > 3)
                shape.points.pop_back();
            else if (!shape.points.empty())
                shape.points.push_back({1, round * 0.5});
            EXPECT_TRUE(trackers.SetShape(nullptr, i, shape) && areas.setShape(i, shape));
        }
        MemoryFile bytes;
        ASSERT_TRUE(areas.Store(bytes));
        ASSERT_EQ(bytes.bytes(), stored(trackers)) << round;
        const TMinMax range{400, -40, round % 2 ? -40.0 : 350.0, round % 2 ? 300.0 : -30.0};
        ABitMatrix mask(70, 90), other(70, 90);
        trackers.FillMatrix(mask, 90, 70, range);
        ASSERT_TRUE(areas.FillMatrix(other, 90, 70, range));
        ASSERT_TRUE(mask == other) << round;
    }
    EXPECT_EQ(trackers.SelectedItems(), areas.edits().selected());
}

TEST(StoredCollection, IsReadAsFarAsItIsWhole)
{
    const Bytes rect = Bytes()
                           .name("ARPRectTracker")
                           .raw(head(0x2D).put<double>({0, 0, 1, 1}).put<int>({12, 12, 0}));
    const struct {
        const char* what;
        Bytes bytes;
        int result, count, current;
        std::string note;
    } cases[] = {
        {"a current index outside", Bytes().put<int>({7, 1}).raw(rect), 1, 1, -1, ""},
        {"a current index below -1", Bytes().put<int>({-9, 1}).raw(rect), 1, 1, -1, ""},
        {"a negative count", Bytes().put<int>({0, -5}).raw(rect), 1, 0, -1, ""},
        {"a count beyond the file", Bytes().put<int>({0, 2147483647}).raw(rect), 0, 1, 0,
         "area 2: the file ends here; it promises 2147483647"},
        {"an unknown class without a record", Bytes().put<int>({0, 2}).name("AStar").raw(rect), 1,
         1, 0, "area 1: class \"AStar\" is unknown"},
        {"a name without an end", Bytes().put<int>({0, 2}).raw(std::string(32, 'A')).raw(rect), 1,
         1, 0, "area 1: class \"AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA\" is unknown"},
        {"a class in pixels", Bytes().put<int>({0, 2}).name("ARectTracker").raw(rect), 1, 1, 0,
         "area 1: class \"ARectTracker\" is unknown"},
        {"a record that is cut", Bytes().put<int>({0, 2}).raw(rect).raw(rect.substr(0, 90)), 0, 1,
         0, "area 2: its record is cut short or damaged"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        MemoryFile file(c.bytes);
        ARPTrackerArray array;
        LoadReport report;
        EXPECT_EQ(array.Load(file, report), c.result);
        EXPECT_EQ(array.count(), c.count);
        EXPECT_EQ(array.GetCurItemNo(), c.current);
        EXPECT_EQ(report.lines.empty() ? "" : report.lines[0], c.note);
    }
}

TEST(StoredCollection, SurvivesEveryCutAndEveryFlippedByte)
{
    surviveEveryDamage<ATrackerArray>(pixelFile());
    surviveEveryDamage<ARPTrackerArray>(valueFile());
}

TEST(StoredCollection, TellsOfAFailedHeaderOrNameButNotOfAFailedRecord)
{
    ATrackerArray array;
    fill(array);
    // the header has 6 writes, the count 1; then a name and the fields of its record
    for (int writes = 0; writes < 8; ++writes) {
        StoredFile file;
        file.failAfter(writes);
        EXPECT_EQ(array.Store(file), 0) << writes;
    }
    StoredFile file;
    file.failAfter(8);
    EXPECT_EQ(array.Store(file), 1);
    EXPECT_EQ(file.size(), 80 + 4 + 32);
}

TEST(StoredCollection, IsAStepOfUndoWhenItIsLoaded)
{
    ATrackerArray array;
    fill(array);
    const std::string before = stored(array);
    MemoryFile file(pixelHeader(-1).put<int>({0}));
    ASSERT_TRUE(array.Load(file));
    EXPECT_EQ(array.count(), 0);
    EXPECT_TRUE(array.Undo(nullptr));
    EXPECT_EQ(stored(array), before);
}
