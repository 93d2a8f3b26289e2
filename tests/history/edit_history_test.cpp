#include "pavane/history/EditHistory.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <tuple>
#include <utility>
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
    auto state() const { return std::tie(items, working, mode, current, active); }
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
    Collection start;  // the state that the last edit began with

    EditRecorded next(EditHistory& history)
    {
        select();  // between steps, not recorded
        start = c_;
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
        if (what == 3)
            history.working(2, std::exchange(c_.working, fresh), fresh);
        else if (what == 4)
            history.state(7, std::exchange(c_.mode, fresh), fresh);
        else if (what == 0 || n == 0) {
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
            item.insert(item.begin() + below(static_cast<int>(item.size())), 'x');
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
    history.begin(std::string(254, 'a') + "\u00e9", c.selection());  // cut before the last one
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
        const EditRecorded recorded = edits.next(history);
        ASSERT_TRUE(recorded);
        if (recorded == editUnchanged)
            continue;
        before.push_back(edits.start);
        after.push_back(c);
    }
    for (std::size_t i = before.size(); i-- > 0;) {
        ASSERT_TRUE(history.undo(c));
        ASSERT_TRUE(c.state() == before[i].state()) << i;
    }
    EXPECT_FALSE(history.undo(c));
    for (const Collection& state : after) {
        ASSERT_TRUE(history.redo(c));
        ASSERT_TRUE(c.state() == state.state());
    }
    EXPECT_FALSE(history.redo(c));
}

TEST(EditHistory, AStepThatWasRefusedBarsNoOlderOnesAndCanBeRedoneLater)
{
    for (const int taken : {0, 1, 2}) {
        Collection c;
        EditHistory history;
        c.items = {bytesOf("a")};
        replaceItem(history, c, "b");
        history.begin("Load areas", c.selection());
        history.insert(1, 1, bytesOf("0"));
        history.insert(2, 1, bytesOf("1"));
        EXPECT_TRUE(history.commit(c.selection()));
        const std::vector<Bytes> all = {bytesOf("b"), bytesOf("0"), bytesOf("1")};
        ASSERT_TRUE((c.items = all, history.undo(c)));
        for (const bool refuse : {true, false}) {
            c.items = {bytesOf("b")};
            c.refuseAfter = refuse ? taken : -1;
            EXPECT_NE(history.redo(c), refuse) << taken;
        }
        c.items = all;
        c.refuseAfter = taken;
        EXPECT_TRUE(history.undo(c));  // as far as it goes
        EXPECT_EQ(history.takeLoss(), editUndoneInPart);
        EXPECT_FALSE(history.canRedo());
        c.refuseAfter = -1;
        EXPECT_TRUE(history.undo(c));
        EXPECT_EQ(c.items[0], bytesOf("a"));
        EXPECT_TRUE(history.isModified());
    }
}

TEST(EditHistory, StepsOfOneSeriesAreJoinedUntilSomethingComesBetween)
{
    Collection c;
    c.items = {bytesOf("position 0")};
    EditHistory history;
    replaceItem(history, c, "position 1", 5);
    replaceItem(history, c, "position 22", 5);
    replaceItem(history, c, "p 3", 6);
    history.endSeries();
    replaceItem(history, c, "p 4", 6);
    history.markSaved();
    replaceItem(history, c, "p 5", 6);
    replaceItem(history, c, "p 6");
    replaceItem(history, c, "p 7");
    for (const char* expected : {"p 6", "p 5", "p 4", "p 3", "position 22", "position 0"}) {
        ASSERT_TRUE(history.undo(c));
        EXPECT_EQ(c.items[0], bytesOf(expected));
    }
    EXPECT_EQ(history.undoLabel(), "");
    EXPECT_EQ(history.redoLabel(), std::string(254, 'a'));
    ASSERT_TRUE(history.redo(c));
    EXPECT_EQ(c.items[0], bytesOf("position 22"));
}

TEST(EditHistory, KnowsWhetherTheStateIsTheSavedOne)
{
    Collection c;
    c.items = {bytesOf("a")};
    EditHistory history;
    // edit, edit without a change, save, undo, redo, clear, and whether the state is modified then;
    // the third edit cuts off the saved state, the one without a change leaves what can be redone
    for (const std::string step :
         {"s0", "e1", "s0", "e1", "u0", "n0", "r1", "u0", "u1", "e1", "u1", "c1", "s0", "c0"}) {
        const char what = step[0];
        if (what == 'e' || what == 'n')
            replaceItem(history, c, what == 'n' ? "b0" : "b" + std::to_string(history.steps()));
        else if (what == 'u' || what == 'r')
            EXPECT_TRUE(what == 'u' ? history.undo(c) : history.redo(c));
        else
            what == 's' ? history.markSaved() : history.clear();
        EXPECT_EQ(history.isModified(), step[1] == '1') << step;
    }
}

TEST(EditHistory, GivesUpTheOldestStepsAndTellsOnce)
{
    Collection c;
    c.items = {Bytes(56 + 4 + 64, 'a')};  // a shape of four points
    EditHistory history;
    history.setByteLimit(10000);
    int told = 0;
    for (int i = 0; i < 500; ++i) {
        const Bytes before = c.items[0];
        std::fill(c.items[0].begin() + 60, c.items[0].end(), static_cast<std::uint8_t>(i));
        history.begin("Move area", c.selection());
        history.replace(0, 1, before, c.items[0]);
        told += history.commit(c.selection()) == editGaveUpOld;
        ASSERT_LE(history.bytesUsed(), 10000u);
    }
    EXPECT_EQ(told, 1);
    EXPECT_EQ(history.takeLoss(), editGaveUpOld);
    EXPECT_EQ(history.takeLoss(), editRecorded);
    const std::size_t left = history.steps();
    EXPECT_GT(left, 30u);  // what is equal is kept once
    while (history.undo(c)) {
    }
    EXPECT_EQ(c.items[0].back(), static_cast<std::uint8_t>(499 - left));
    EXPECT_TRUE(history.isModified());  // the state that was saved is out of reach
}

TEST(EditHistory, KeepsAllThatFitsIntoItsLimitAndAlwaysTheLatestStep)
{
    const auto recorded = [](std::size_t limit, EditHistory& history) {
        Collection c;
        c.items = {Bytes(200, 'a')};
        history.setByteLimit(limit);
        for (int i = 0; i < 3; ++i) {
            const Bytes before = std::exchange(c.items[0], Bytes(200, static_cast<uint8_t>(i)));
            history.begin("edit", c.selection());
            history.replace(0, 1, before, c.items[0]);
            (void)history.commit(c.selection());
        }
        return history.steps();
    };
    EditHistory free;
    ASSERT_EQ(recorded(0, free), 3u);
    const struct {
        std::size_t limit, steps;
    } cases[] = {{free.bytesUsed(), 3}, {free.bytesUsed() - 1, 2}, {1, 1}};
    for (const auto& c : cases) {
        EditHistory history;
        EXPECT_EQ(recorded(c.limit, history), c.steps) << c.limit;
    }
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
}

}  // namespace
