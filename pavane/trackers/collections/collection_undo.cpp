// How edits of a collection become steps of undo, and how steps change the collection.

#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/collections/collection_step.h"
#include "pavane/trackers/shapes/shape_handles.h"
#include "pavane/trackers/tracker_shape.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace pavane
{

namespace
{

/// Numbers of the values beside the areas that steps keep.
enum StateNumber { modeState = 0, mappingState = 1 };

/// Where the vertex count of a polygon's record lies.
constexpr std::size_t countOffset = 56;

RecordBytes bytes(std::string_view record)
{
    return {reinterpret_cast<const std::uint8_t*>(record.data()), record.size()};
}

std::string_view text(RecordBytes record)
{
    return {reinterpret_cast<const char*>(record.data()), record.size()};
}

/// Bytes of one vertex of a polygon's record; 0 for other shapes.
std::size_t vertexBytes(const ATracker& tracker)
{
    if (dynamic_cast<const AAreaTracker*>(&tracker))
        return sizeof(CPoint);
    return dynamic_cast<const ARPAreaTracker*>(&tracker) ? sizeof(APoint<double>) : 0;
}

void setActiveBit(std::string& record, int on)
{
    const auto bit = static_cast<char>(trackerActive);
    if (!record.empty())
        record[0] = static_cast<char>(on ? record[0] | bit : record[0] & ~bit);
}

int activeBit(std::string_view record)
{
    return !record.empty() && (record[0] & static_cast<char>(trackerActive)) != 0;
}

}  // namespace

/// A class and the mapping that its pixels belong to share one number.
int TrackerCollection::kindCode(const ATracker& tracker)
{
    const std::type_index type = typeid(tracker);
    const int mapping = mappingNumber();
    for (std::size_t i = kinds_.size(); i-- > 0;)
        if (kinds_[i].mapping == mapping && kinds_[i].type == type)
            return static_cast<int>(i);
    Kind kind{type, tracker.GetClassName(), mapping, nullptr};
    const std::unique_ptr<ATracker> named(makeTrackerOfClass(kind.name));
    const ATracker* const made = named.get();
    if (!made || std::type_index(typeid(*made)) != type)
        kind.model.reset(tracker.Duplicate());
    kinds_.push_back(std::move(kind));
    return static_cast<int>(kinds_.size()) - 1;
}

/// The record of item i, or of the shape under construction (-1), as steps keep it: with the active
/// flag that the item came with, because the history notes the other flags beside it, and without
/// the vertex count, so that one vertex more differs in its own bytes only.
std::string TrackerCollection::recordOf(const ATracker& tracker, int i) const
{
    std::string record = &tracker == dragged_ ? draggedBefore_ : tracker.State();
    setActiveBit(record, i >= 0 && active_.usual(i));
    if (vertexBytes(tracker) && record.size() >= countOffset + sizeof(std::int32_t))
        record.erase(countOffset, sizeof(std::int32_t));
    return record;
}

int TrackerCollection::setRecord(ATracker& tracker, int kind, std::string_view record)
{
    std::string state(record);
    const std::size_t vertex = vertexBytes(tracker);
    if (vertex && state.size() >= countOffset) {
        const auto count = static_cast<std::int32_t>((state.size() - countOffset) / vertex);
        char field[sizeof count];
        std::memcpy(field, &count, sizeof count);
        state.insert(countOffset, field, sizeof field);
    }
    if (!tracker.SetState(state))
        return 0;
    adopt(tracker);
    const int mapping = kinds_[static_cast<std::size_t>(kind)].mapping;
    if (mapping != mappingNumber())
        rescale(tracker, mapping, mappingNumber());
    return 1;
}

ATracker* TrackerCollection::makeFromRecord(int kind, std::string_view record)
{
    if (kind < 0 || static_cast<std::size_t>(kind) >= kinds_.size())
        return nullptr;
    const Kind& of = kinds_[static_cast<std::size_t>(kind)];
    std::unique_ptr<ATracker> tracker(of.model ? of.model->Duplicate()
                                               : makeTrackerOfClass(of.name));
    return tracker && setRecord(*tracker, kind, record) ? tracker.release() : nullptr;
}

int TrackerCollection::placeItem(int i, ATracker* tracker, int usual)
{
    releaseFollowers();
    if (!putTracker(i, tracker))
        return 0;
    adopt(*tracker);
    active_.insert(i, usual);
    active_.note(i, tracker->IsActive());
    if (i == trackerCount() - 1 && boxesKnown_)
        boxesKnown_ = boxes_.append(boxOf(*tracker));
    else
        boxesKnown_ = 0;
    for (int* const index : {&curItem_, &focusItem_, &passedItem_, &draggedItem_})
        if (*index >= i)
            ++*index;
    return 1;
}

void TrackerCollection::dropItem(int i)
{
    releaseFollowers();
    ATracker* const tracker = takeTracker(i);
    (void)selected_.erase(tracker);
    active_.remove(i);
    boxesKnown_ = 0;
    focusItem_ = focusHandle_ = passedItem_ = -1;
    if (curItem_ > i)
        --curItem_;
    if (curItem_ >= trackerCount())
        curItem_ = trackerCount() - 1;
    if (draggedItem_ > i)
        --draggedItem_;
    if (tracker == dragged_)
        dragged_ = nullptr;
    giveUp(tracker);
}

void TrackerCollection::giveUp(ATracker* tracker)
{
    if (ownsItems())
        delete tracker;
    else
        tracker->SetListener(nullptr);
}

/// Takes ownership in any case; the flag `usual` is the one that the item counts as having.
int TrackerCollection::insertItem(int i, ATracker* tracker, int usual)
{
    if (!placeItem(i, tracker, usual)) {
        delete tracker;
        return 0;
    }
    noteInsert(i);
    return 1;
}

void TrackerCollection::noteInsert(int i)
{
    const ATracker& tracker = *trackerAt(i);
    history_.insert(i, kindCode(tracker), bytes(recordOf(tracker, i)));
}

void TrackerCollection::eraseItem(int i)
{
    const ATracker& tracker = *trackerAt(i);
    history_.remove(i, kindCode(tracker), bytes(recordOf(tracker, i)));
    dropItem(i);
}

/// Item i has changed; `before` is its record from before.
void TrackerCollection::noteChange(int i, const std::string& before)
{
    const ATracker& tracker = *trackerAt(i);
    history_.replace(i, kindCode(tracker), bytes(before), bytes(recordOf(tracker, i)));
    boxChanged(i);
}

/// Another shape under construction, owned; null for none.
void TrackerCollection::changeWorking(ATracker* tracker)
{
    const std::unique_ptr<ATracker> old(workingTracker());
    const ATracker* const known = tracker ? tracker : old.get();
    if (!known)
        return;
    const std::string before = old ? recordOf(*old, -1) : std::string();
    const std::string after = tracker ? recordOf(*tracker, -1) : std::string();
    noteWorking(*known, before, after);
    setWorking(tracker);
    if (old && old.get() == dragged_)
        dragged_ = nullptr;
}

void TrackerCollection::noteWorking(const ATracker& tracker, const std::string& before,
                                    const std::string& after)
{
    history_.working(kindCode(tracker), bytes(before), bytes(after));
}

/// A tool that is chosen inside a step comes back with it.
void TrackerCollection::setMode(int mode)
{
    const auto before = static_cast<std::int32_t>(mode_);
    const auto after = static_cast<std::int32_t>(mode);
    mode_ = mode;
    if (depth_ > 0)
        history_.state(modeState, {reinterpret_cast<const std::uint8_t*>(&before), sizeof before},
                       {reinterpret_cast<const std::uint8_t*>(&after), sizeof after});
}

void TrackerCollection::noteMapping(const std::string& before)
{
    const std::string after = mappingBytes();
    history_.state(mappingState, bytes(before), bytes(after));
}

/// Whether item i is of the class that a step is about: what a host changed by itself, or an older
/// step left out, may have put others in its place.
int TrackerCollection::isOfKind(int i, int kind) const
{
    const ATracker* const tracker = trackerAt(i);
    return tracker && kind >= 0 && static_cast<std::size_t>(kind) < kinds_.size() &&
           kinds_[static_cast<std::size_t>(kind)].type == typeid(*tracker);
}

int TrackerCollection::applyEdit(const EditChange& change)
{
    const std::string_view after = text(change.after);
    switch (change.kind) {
    case EditKind::insert: {
        if (change.index < 0 || change.index > trackerCount())
            return 0;
        std::unique_ptr<ATracker> tracker(makeFromRecord(change.classCode, after));
        if (!tracker || !placeItem(change.index, tracker.get(), activeBit(after)))
            return 0;
        cameBack_.push_back(tracker.release());
        return 1;
    }
    case EditKind::remove:
        if (!isOfKind(change.index, change.classCode))
            return 0;
        wentAway_ = 1;
        dropItem(change.index);
        return 1;
    case EditKind::replace: {
        if (!isOfKind(change.index, change.classCode))
            return 0;
        ATracker* const tracker = trackerAt(change.index);
        const int on = tracker->IsActive();
        if (!setRecord(*tracker, change.classCode, after))
            return 0;
        tracker->SetActive(on);
        boxChanged(change.index);
        return 1;
    }
    case EditKind::working: {
        std::unique_ptr<ATracker> tracker;
        if (!after.empty()) {
            tracker.reset(makeFromRecord(change.classCode, after));
            if (!tracker)
                return 0;
            tracker->SetActive(1);
        }
        delete workingTracker();
        setWorking(tracker.release());
        hovering_ = 0;
        return 1;
    }
    case EditKind::state: {
        if (change.index == mappingState)
            return setMappingBytes(after);
        std::int32_t mode = 0;
        if (change.index != modeState || change.after.size() != sizeof mode)
            return 0;
        std::memcpy(&mode, change.after.data(), sizeof mode);
        mode_ = mode;
        return 1;
    }
    }
    return 0;
}

int TrackerCollection::applySelection(const EditSelection& selection)
{
    const std::vector<int> before(active_.unusual().begin(), active_.unusual().end());
    for (const int i : before)
        SetItemActive(i, active_.usual(i));
    for (const int i : selection.active)
        if (trackerAt(i))
            SetItemActive(i, !active_.usual(i));
    curItem_ = selection.current;
    return 1;
}

int TrackerCollection::Undo(CWnd* window)
{
    return walk(window, [this] {
        const int done = history_.undo(*this);
        if (done)
            selectCameBack(1);
        return done;
    });
}

/// Areas that a step brought back alone, `fewest` or more, are selected together, as after the
/// deletion or the copy of several; one that is current and active again is so without.
void TrackerCollection::selectCameBack(std::size_t fewest)
{
    const ATracker* const current = trackerAt(curItem_);
    const int isCurrent = cameBack_.size() == 1 && cameBack_[0] == current && current->IsActive();
    if (wentAway_ || cameBack_.size() < fewest)
        return;
    selected_.clear();
    if (!isCurrent)
        selected_.insert(cameBack_.begin(), cameBack_.end());
}

int TrackerCollection::Redo(CWnd* window)
{
    return walk(window, [this] {
        const int done = history_.redo(*this);
        if (done)
            selectCameBack(2);
        return done;
    });
}

int TrackerCollection::walk(CWnd* window, const std::function<int()>& step)
{
    const int mode = mode_;
    cameBack_.clear();
    wentAway_ = 0;
    if (dragged_ || drawn_ || depth_ > 0 || !step())
        return 0;
    cameBack_.clear();
    if (mode_ != mode)
        showTool(window);
    changed(window);
    return 1;
}

int TrackerCollection::DropTrial(CWnd* window)
{
    endDrag();
    const int mode = mode_;
    const int done = depth_ == 0 && history_.dropTrial(*this);
    if (mode_ != mode)
        showTool(window);
    changed(window);
    return done;
}

void TrackerCollection::BeginEdits(std::string_view label)
{
    if (depth_++ == 0)
        history_.begin(label, selectionNow());
}

void TrackerCollection::EndEdits(CWnd* window)
{
    if (depth_ == 0 || --depth_ > 0)
        return;
    (void)history_.commit(selectionNow());
    changed(window);
}

int TrackerCollection::ChangeTracker(CWnd* window, int i, std::string_view label,
                                     const std::function<int(ATracker&)>& change)
{
    ATracker* const tracker = trackerAt(i);
    if (!tracker || dragged_)
        return 0;
    const LifeWatch self(life_);
    const LifeWatch item(tracker->life());
    const std::string state = tracker->State();
    const std::string before = recordOf(*tracker, i);
    const int result = change(*tracker);
    if (!self.alive() || !item.alive() || trackerAt(i) != tracker)
        return 0;
    if (!result) {
        (void)tracker->SetState(state);
        adopt(*tracker);
        return 0;
    }
    active_.note(i, tracker->IsActive());
    {
        Step step(*this, std::string(label).c_str());
        noteChange(i, before);
    }
    changed(window);
    return 1;
}

std::string TrackerCollection::KeptState(int i) const
{
    const ATracker* const tracker = i < 0 ? workingTracker() : trackerAt(i);
    if (!tracker)
        return {};
    const auto follower = std::find_if(followers_.begin(), followers_.end(),
                                       [=](const Follower& f) { return f.item == i; });
    const std::string state = tracker == dragged_            ? draggedBefore_
                              : follower != followers_.end() ? follower->before
                                                             : tracker->State();
    const int isOpenedNow = i < 0 && state.size() <= countOffset + sizeof(std::int32_t);
    return isOpenedNow ? std::string() : state;
}

int TrackerCollection::ReopenLast(CWnd* window)
{
    const int last = trackerCount() - 1;
    const ATracker* const tracker = trackerAt(last);
    if (!tracker || tracker->IsReady() || workingTracker() || dragged_ || drawn_)
        return 0;
    std::unique_ptr<ATracker> open(tracker->Duplicate());
    if (!open)
        return 0;
    adopt(*open);
    open->SetActive(1);
    {
        Step step(*this, StepLabel("Reopening", last).text());
        eraseItem(last);
        changeWorking(open.release());
        setMode(toolArea);
    }
    showTool(window);
    changed(window);
    return 1;
}

int TrackerCollection::GetShape(int i, ShapeValues& shape) const
{
    const ATracker* const tracker = trackerAt(i);
    return tracker && shapeOf(*tracker, shape);
}

int TrackerCollection::SetShape(CWnd* window, int i, const ShapeValues& shape)
{
    return ChangeTracker(window, i, StepLabel("Edit", i).text(),
                         [&](ATracker& tracker) { return setShapeOf(tracker, shape); });
}

}  // namespace pavane
