#include "pavane/trackers/EditHistory.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace pavane;

// Allocations that cannot be met give null under the address checker too.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options();
const char* __asan_default_options() { return "allocator_may_return_null=1"; }

namespace
{

using Bytes = std::vector<std::uint8_t>;

Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

/// A collection of texts that checks each change against what it holds.
struct Collection : EditTarget {
    std::vector<Bytes> items;
    Bytes working;
    Bytes mode = bytesOf("mode");
    int current = -1;
    std::vector<int> active;
    int refuseAfter = -1;  // changes that are still taken; -1 for all

    EditSelection selection() const { return {current, active}; }
    bool operator==(const Collection& other) const
    {
        return items == other.items && working == other.working && mode == other.mode &&
               current == other.current && active == other.active;
    }
    int applyEdit(const EditChange& c) override
    {
        if (refuseAfter == 0)
            return 0;
        refuseAfter -= refuseAfter > 0;
        const Bytes before(c.before.begin(), c.before.end());
        const Bytes after(c.after.begin(), c.after.end());
        const auto at = items.begin() + (c.kind < EditKind::working ? c.index : 0);
        if (c.kind == EditKind::insert) {
            items.insert(at, after);
            return 1;
        }
        Bytes& value = c.kind == EditKind::working ? working
                       : c.kind == EditKind::state ? mode
                                                   : *at;
        EXPECT_EQ(value, before);
        value = after;
        if (c.kind == EditKind::remove)
            items.erase(at);
        return 1;
    }
    int applySelection(const EditSelection& s) override
    {
        current = s.current;
        active.assign(s.active.begin(), s.active.end());
        return refuseAfter != 0;
    }
};

/// Random edits of a collection, each recorded as one step.
class RandomEdits
{
public:
    explicit RandomEdits(Collection& c) : c_(c) {}
    EditRecorded next(EditHistory& history)
    {
        select();  // between steps, not recorded
        history.begin("edit", c_.selection());
        for (int changes = below(3); changes >= 0; --changes)
            change(history);
        select();
        return history.commit(c_.selection());
    }

private:
    void change(EditHistory& history)
    {
        const int n = static_cast<int>(c_.items.size());
        const Bytes fresh = bytesOf("new " + std::to_string(counter_++));
        const int what = below(5);
        if (what == 3) {
            history.working(2, c_.working, fresh);
            c_.working = fresh;
        } else if (what == 4) {
            history.state(7, c_.mode, fresh);
            c_.mode = fresh;
        } else if (what == 0 || n == 0) {
            const int i = below(n + 1);
            history.insert(i, 1, fresh);
            c_.items.insert(c_.items.begin() + i, fresh);
        } else if (what == 1) {
            const int i = below(n);
            history.remove(i, 1, c_.items[static_cast<std::size_t>(i)]);
            c_.items.erase(c_.items.begin() + i);
        } else {
            Bytes& item = c_.items[static_cast<std::size_t>(below(n))];
            const Bytes before = item;
            if (below(2))
                item.insert(item.begin() + below(static_cast<int>(item.size())), 'x');
            else
                item[static_cast<std::size_t>(below(static_cast<int>(item.size())))] = 'y';
            history.replace(static_cast<int>(&item - c_.items.data()), 1, before, item);
        }
    }
    void select()
    {
        const int n = static_cast<int>(c_.items.size());
        c_.current = below(n + 1) - 1;
        c_.active.clear();
        for (int i = 0; i < n; ++i)
            if (below(3))
                c_.active.push_back(i);
    }
    int below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random_); }

    Collection& c_;
    std::mt19937 random_{7};
    int counter_ = 0;
};

void replaceItem(EditHistory& history, Collection& c, const std::string& text,
                 std::uint64_t key = 0)
{
    history.begin("Move area", c.selection());
    history.replace(0, 1, c.items[0], bytesOf(text));
    c.items[0] = bytesOf(text);
    EXPECT_TRUE(history.commit(c.selection(), key));
}

TEST(EditHistory, TenThousandEditsUndoneAndRedoneGiveEveryStateAgain)
{
    Collection c;
    EditHistory history;
    RandomEdits edits(c);
    std::vector<Collection> before;
    std::vector<Collection> after;
    while (before.size() < 10000) {
        const Collection start = c;
        const EditRecorded recorded = edits.next(history);
        ASSERT_TRUE(recorded);
        if (recorded == editUnchanged)
            continue;
        before.push_back(start);
        after.push_back(c);
    }
    for (std::size_t i = before.size(); i-- > 0;) {
        ASSERT_TRUE(history.undo(c));
        // what was selected between two steps is not part of them
        Collection expected = before[i];
        expected.current = c.current;
        expected.active = c.active;
        ASSERT_TRUE(c == expected) << i;
    }
    EXPECT_FALSE(history.canUndo());
    EXPECT_FALSE(history.undo(c));
    for (const Collection& state : after) {
        ASSERT_TRUE(history.redo(c));
        ASSERT_TRUE(c == state);
    }
    EXPECT_FALSE(history.redo(c));
}

TEST(EditHistory, BringsBackTheSelectionFromBeforeAndAfterAStep)
{
    Collection c;
    c.items = {bytesOf("a"), bytesOf("b"), bytesOf("c"), bytesOf("d")};
    c.current = 2;
    c.active = {0, 1, 3};
    EditHistory history;
    history.begin("Delete area", c.selection());
    history.remove(1, 1, c.items[1]);
    c.items.erase(c.items.begin() + 1);
    c.current = -1;
    c.active = {};
    EXPECT_EQ(history.commit(c.selection()), editRecorded);
    c.active = {2};
    c.current = 2;
    ASSERT_TRUE(history.undo(c));
    EXPECT_EQ(c.current, 2);
    EXPECT_EQ(c.active, (std::vector<int>{0, 1, 3}));
    ASSERT_TRUE(history.redo(c));
    EXPECT_EQ(c.current, -1);
    EXPECT_TRUE(c.active.empty());
}

TEST(EditHistory, ARefusedChangeTakesTheStepBackAndItCanBeTriedAgain)
{
    for (const int taken : {0, 1, 2, 3}) {
        Collection c;
        EditHistory history;
        history.begin("Load areas", c.selection());
        for (int i = 0; i < 3; ++i)
            history.insert(i, 1, bytesOf(std::to_string(i)));
        EXPECT_TRUE(history.commit(c.selection()));
        c.items = {bytesOf("0"), bytesOf("1"), bytesOf("2")};
        Collection full = c;
        c.refuseAfter = taken;
        EXPECT_EQ(history.undo(c), 0) << taken;
        if (taken == 0) {  // the target gave up at once: nothing had to be taken back
            EXPECT_EQ(c.items, full.items);
        }
        EXPECT_TRUE(history.canUndo());
        c = full;
        EXPECT_TRUE(history.undo(c));
        EXPECT_TRUE(c.items.empty());
    }
}

TEST(EditHistory, StepsOfOneSeriesAreJoinedUntilSomethingComesBetween)
{
    Collection c;
    c.items = {bytesOf("position 0")};
    EditHistory history;
    replaceItem(history, c, "position 1", 5);
    replaceItem(history, c, "position 22", 5);
    EXPECT_EQ(history.steps(), 1u);
    replaceItem(history, c, "p 3", 6);
    EXPECT_EQ(history.steps(), 2u);
    history.endSeries();
    replaceItem(history, c, "p 4", 6);
    EXPECT_EQ(history.steps(), 3u);
    history.markSaved();
    replaceItem(history, c, "p 5", 6);
    EXPECT_EQ(history.steps(), 4u);
    replaceItem(history, c, "p 6");
    replaceItem(history, c, "p 7");  // no key: never joined
    EXPECT_EQ(history.steps(), 6u);
    for (const char* expected : {"p 6", "p 5", "p 4", "p 3", "position 22", "position 0"}) {
        ASSERT_TRUE(history.undo(c));
        EXPECT_EQ(c.items[0], bytesOf(expected));
    }
    ASSERT_TRUE(history.redo(c));
    EXPECT_EQ(c.items[0], bytesOf("position 22"));
}

TEST(EditHistory, KnowsWhetherTheStateIsTheSavedOne)
{
    Collection c;
    c.items = {bytesOf("a")};
    EditHistory history;
    EXPECT_FALSE(history.isModified());
    replaceItem(history, c, "b");
    EXPECT_TRUE(history.isModified());
    history.markSaved();
    replaceItem(history, c, "c");
    history.undo(c);
    EXPECT_FALSE(history.isModified());
    history.undo(c);
    EXPECT_TRUE(history.isModified());
    replaceItem(history, c, "d");  // the saved state can no longer be reached
    EXPECT_FALSE(history.canRedo());
    EXPECT_TRUE(history.isModified());
    history.undo(c);
    EXPECT_TRUE(history.isModified());
    history.clear();
    EXPECT_TRUE(history.isModified());
    history.markSaved();
    history.clear();
    EXPECT_FALSE(history.isModified());
}

TEST(EditHistory, AnEditThatChangesNothingIsNoStepAndKeepsWhatCanBeRedone)
{
    Collection c;
    c.items = {bytesOf("a")};
    EditHistory history;
    replaceItem(history, c, "b");
    history.undo(c);
    history.begin("Move area", c.selection());
    history.replace(0, 1, c.items[0], c.items[0]);
    EXPECT_EQ(history.commit(c.selection()), editUnchanged);
    EXPECT_TRUE(history.canRedo());
    EXPECT_EQ(history.redoLabel(), "Move area");
    EXPECT_EQ(history.undoLabel(), "");
}

TEST(EditHistory, LabelsAreCutBetweenCharacters)
{
    EditHistory history;
    history.begin(std::string(254, 'a') + "\u00e9", {});
    history.insert(0, 0, bytesOf("a"));
    history.commit({});
    EXPECT_EQ(history.undoLabel(), std::string(254, 'a'));
}

TEST(EditHistory, GivesUpTheOldestStepsAndTellsOnce)
{
    Collection c;
    c.items = {Bytes(100, 'a')};
    EditHistory history;
    history.setByteLimit(5000);
    int told = 0;
    for (int i = 0; i < 500; ++i) {
        history.begin("Move area", c.selection());
        Bytes next(100, static_cast<std::uint8_t>(i));
        history.replace(0, 1, c.items[0], next);
        c.items[0] = next;
        const EditRecorded recorded = history.commit(c.selection());
        ASSERT_TRUE(recorded);
        told += recorded == editGaveUpOld;
        ASSERT_LE(history.bytesUsed(), 5000u);
    }
    EXPECT_EQ(told, 1);
    const std::size_t left = history.steps();
    EXPECT_GT(left, 10u);
    while (history.undo(c)) {
    }
    EXPECT_EQ(c.items[0], Bytes(100, static_cast<std::uint8_t>(499 - left)));
    EXPECT_TRUE(history.isModified());  // the state that was saved is out of reach
}

TEST(EditHistory, AnEditBeyondAllMemoryEmptiesTheHistory)
{
    Collection c;
    c.items = {bytesOf("a")};
    EditHistory history;
    replaceItem(history, c, "b");
    history.begin("Load areas", c.selection());
    history.insert(0, 1, {c.items[0].data(), std::size_t{1} << 60});
    EXPECT_EQ(history.commit(c.selection()), editLost);
    EXPECT_FALSE(history.canUndo());
    EXPECT_TRUE(history.isModified());
    replaceItem(history, c, "d");
    EXPECT_TRUE(history.canUndo());
}

TEST(EditHistory, AStepOfAFourPointShapeTakesLessThanAKilobyte)
{
    EditHistory history;
    std::mt19937 random(3);
    Bytes record(56 + 4 + 64, 1);
    for (int i = 0; i < 1000; ++i) {
        Bytes moved = record;
        for (std::size_t b = 60; b < moved.size(); ++b)
            moved[b] = static_cast<std::uint8_t>(random());
        history.begin("Move area", {});
        history.replace(i, 3, record, moved);
        history.commit({});
        record = moved;
    }
    EXPECT_EQ(history.steps(), 1000u);
    EXPECT_LT(history.bytesUsed() / 1000, 350u);
}

}  // namespace
