#include "pavane/tables/freq/FreqGroupSteps.h"

#include "pavane/containers/MemoryFile.h"

#include <algorithm>

namespace pavane
{

namespace
{

enum StateOf : int { groupsState, marksState, selectionsState };

RecordBytes bytesOf(const std::string& text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

template <typename Stored>
std::string stored(const Stored& value)
{
    MemoryFile file;
    (void)value.Store(file);
    return file.bytes();
}

/// Which group each IF is in, -1 for none.
std::vector<int> groupsOfIfs(const AObjArray<ABitArray>& groups, int ifs)
{
    std::vector<int> of(static_cast<std::size_t>(ifs), -1);
    for (int g = groups.count() - 1; g >= 0; --g)
        for (int i = std::max(groups(g).firstOne(), 0); i <= lastOne(groups(g)); ++i)
            if (groups(g).get(i) && i < ifs)
                of[static_cast<std::size_t>(i)] = g;
    return of;
}

ABitArray bitsOf(const std::string& bytes)
{
    MemoryFile file(bytes);
    ABitArray bits;
    (void)bits.Load(file);
    return bits;
}

/// The first IF that is marked otherwise, -1 for none.
int firstChangedIf(const std::string& before, const std::string& after)
{
    const ABitArray was = bitsOf(before);
    const ABitArray is = bitsOf(after);
    for (int i = 0; i < is.count(); ++i)
        if (was.get(i) != is.get(i))
            return i;
    return -1;
}

AObjArray<ABitArray> groupsOf(const std::string& bytes)
{
    MemoryFile file(bytes);
    AObjArray<ABitArray> groups;
    (void)groups.Load(file);
    return groups;
}

}  // namespace

FreqGroupSteps::State FreqGroupSteps::state() const
{
    if (!groups_)
        return {};
    return {stored(*groups_), stored(edit_.marked()), stored(groups_->GetFqIDMark())};
}

void FreqGroupSteps::SetParameters(AFreqGroupArray* groups)
{
    groups_ = groups;
    edit_.SetParameters(groups);
    history_.clear();
    markSaved();
    known_ = saved_;
    tell([](FreqGroupView& view) { view.GroupsChanged({1, 1, 1, 1, 0, -1, 0}); });
}

void FreqGroupSteps::Refresh()
{
    if (groups_ && stored(*groups_) != known_)
        return SetParameters(groups_);
    tell([](FreqGroupView& view) { view.GroupsChanged({0, 1, 1, 1, -1, -1, 0}); });
}

int FreqGroupSteps::isModified() const { return groups_ && stored(*groups_) != saved_; }

void FreqGroupSteps::markSaved() { saved_ = groups_ ? stored(*groups_) : std::string(); }

// --- edits

template <typename Edit>
int FreqGroupSteps::step(std::string_view label, Edit&& edit)
{
    if (!groups_)
        return 0;
    const State before = state();
    int show = -1;
    const int result = edit(show);
    const State after = state();
    history_.begin(label, {});
    history_.state(groupsState, bytesOf(before.groups), bytesOf(after.groups));
    history_.state(marksState, bytesOf(before.marks), bytesOf(after.marks));
    history_.state(selectionsState, bytesOf(before.selections), bytesOf(after.selections));
    // a list shows its group also where the groups were that before
    if (history_.commit({}) != editUnchanged || show >= 0)
        tellChange(before, after, show);
    return result;
}

int FreqGroupSteps::mark(const ABitArray& marks, std::string_view label)
{
    return step(label, [&](int&) {
        const ABitArray before = edit_.marked();
        edit_.SetMarked(marks);
        return !(before == edit_.marked());
    });
}

int FreqGroupSteps::markSelections(const ABitArray& marks, std::string_view label)
{
    return step(label, [&](int&) {
        ABitArray& mine = groups_->GetFqIDMark();
        const ABitArray before = mine;
        for (int i = 0; i < mine.count(); ++i)
            mine.set(i, marks.get(i));
        return !(before == mine);
    });
}

int FreqGroupSteps::add(FreqGroupEdit::Fault& fault)
{
    fault = FreqGroupEdit::Fault::none;
    const int last = step("Add group", [&](int& show) { return edit_.AddFreqGroup(show, fault); });
    return groups_ ? last : -1;
}

int FreqGroupSteps::remove(int group)
{
    return step("Delete group", [&](int&) { return edit_.DeleteFreqGroup(group); });
}

int FreqGroupSteps::remove(const ABitArray& groups)
{
    return step(groups.ones() > 1 ? "Delete groups" : "Delete group", [&](int&) {
        int removed = 0;
        for (int g = groups.count() - 1; g >= 0; --g)
            removed += groups.get(g) && edit_.DeleteFreqGroup(g);
        return removed;
    });
}

int FreqGroupSteps::removeAll()
{
    return step("Delete all groups", [&](int&) {
        const int count = groups_->count();
        edit_.DeleteAllFreqGroup();
        return count > 0;
    });
}

int FreqGroupSteps::allInOne()
{
    return step("All in one", [&](int& show) {
        const int done = edit_.AllInOne();
        show = done ? 0 : -1;
        return done;
    });
}

void FreqGroupSteps::fixedStep(int width)
{
    (void)step("Fixed step", [&](int& show) {
        show = 0;
        edit_.FixedStep(width);
        return 1;
    });
}

void FreqGroupSteps::SetMarked(const ABitArray& marks)
{
    if (!groups_)
        return;
    const State before = state();
    edit_.SetMarked(marks);
    tellChange(before, state(), -1);
}

// --- undo

int FreqGroupSteps::applyEdit(const EditChange& change)
{
    const std::string bytes(change.after.begin(), change.after.end());
    const ABitArray marked = change.index == marksState ? bitsOf(bytes) : edit_.marked();
    if (change.index == selectionsState)
        return groups_->GetFqIDMark() = bitsOf(bytes), 1;
    if (change.index == groupsState) {
        // as they were, in whatever order that was
        MemoryFile file(bytes);
        if (!groups_->AObjArray<ABitArray>::Load(file))
            return 0;
        edit_.SetParameters(groups_);
    }
    edit_.SetMarked(marked);
    return 1;
}

int FreqGroupSteps::undo()
{
    const State before = state();
    if (!groups_ || !history_.undo(*this))
        return 0;
    tellChange(before, state(), -1, 1);
    return 1;
}

int FreqGroupSteps::redo()
{
    const State before = state();
    if (!groups_ || !history_.redo(*this))
        return 0;
    tellChange(before, state(), -1, 1);
    return 1;
}

// --- views

void FreqGroupSteps::tellChange(const State& before, const State& after, int show, int undone)
{
    known_ = after.groups;
    FreqGroupNews news;
    news.groups = before.groups != after.groups;
    news.marks = before.marks != after.marks;
    news.selections = before.selections != after.selections;
    news.show = show;
    news.undone = undone;
    if (news.marks)
        news.showIf = firstChangedIf(before.marks, after.marks);
    if (news.groups) {
        const auto was = groupsOfIfs(groupsOf(before.groups), ifCount());
        const auto is = groupsOfIfs(*groups_, ifCount());
        const auto at = std::mismatch(was.begin(), was.end(), is.begin());
        if (at.first != was.end())
            news.showIf = static_cast<int>(at.first - was.begin());
    }
    if (news.groups || news.marks || news.selections || show >= 0)
        tell([&](FreqGroupView& view) { view.GroupsChanged(news); });
}

/// A view may go, and take this with it, while others are told.
template <typename Call>
void FreqGroupSteps::tell(Call&& call)
{
    const auto alive = weak_from_this().lock();
    const std::vector<FreqGroupView*> views = views_;
    for (FreqGroupView* const view : views)
        if (std::find(views_.begin(), views_.end(), view) != views_.end())
            call(*view);
}

void FreqGroupSteps::removeView(FreqGroupView* view)
{
    std::erase(views_, view);
    if (active_ == view)
        active_ = nullptr;
}

void FreqGroupSteps::setActive(FreqGroupView* view)
{
    active_ = view;
    tell([](FreqGroupView& each) { each.ActiveChanged(); });
}

void FreqGroupSteps::chooseGroup(int group, FreqGroupView* by)
{
    tell([&](FreqGroupView& view) {
        if (&view != by)
            view.GroupChosen(group);
    });
}

void FreqGroupSteps::chooseSelection(int selection, FreqGroupView* by)
{
    tell([&](FreqGroupView& view) {
        if (&view != by)
            view.SelectionChosen(selection);
    });
}

}  // namespace pavane
