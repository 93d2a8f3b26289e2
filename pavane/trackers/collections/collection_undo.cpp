// How edits of a collection become steps of undo, and how steps change the collection.

#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/areas/step_record.h"
#include "pavane/trackers/areas/StepLabel.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/collections/TrackerCollection.h"
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

/// Bytes of one vertex of a polygon's record; 0 for other shapes.
std::size_t vertexBytes(const ATracker& tracker)
{
    if (dynamic_cast<const AAreaTracker*>(&tracker))
        return sizeof(CPoint);
    return dynamic_cast<const ARPAreaTracker*>(&tracker) ? sizeof(APoint<double>) : 0;
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
    setActiveBit(record, i >= 0 && edits_.usuallyActive(i));
    if (vertexBytes(tracker))
        dropVertexCount(record);
    return record;
}

int TrackerCollection::setRecord(ATracker& tracker, int kind, std::string_view record)
{
    std::string state(record);
    if (const std::size_t vertex = vertexBytes(tracker))
        putVertexCount(state, vertex);
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

/// The item is there, for all but edits.
int TrackerCollection::putItem(int i, ATracker* tracker)
{
    releaseFollowers();
    if (!putTracker(i, tracker))
        return 0;
    adopt(*tracker);
    if (i == trackerCount() - 1 && boxesKnown_)
        boxesKnown_ = boxes_.append(boxOf(*tracker));
    else
        boxesKnown_ = 0;
    for (int* const index : {&focusItem_, &passedItem_, &draggedItem_})
        if (*index >= i)
            ++*index;
    return 1;
}

void TrackerCollection::dropItem(int i)
{
    releaseFollowers();
    ATracker* const tracker = takeTracker(i);
    boxesKnown_ = 0;
    focusItem_ = focusHandle_ = passedItem_ = -1;
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

/// The flag `usual` is the one that the item counts as having.
int TrackerCollection::placeItem(int i, ATracker* tracker, int usual)
{
    if (!putItem(i, tracker))
        return 0;
    edits_.inserted(i, usual);
    return 1;
}

/// Takes ownership in any case.
int TrackerCollection::insertItem(int i, ATracker* tracker, int usual)
{
    if (!placeItem(i, tracker, usual)) {
        delete tracker;
        return 0;
    }
    edits_.noteInsert(i);
    return 1;
}

void TrackerCollection::eraseItem(int i)
{
    edits_.noteRemove(i);
    dropItem(i);
    edits_.removed(i);
}

/// Item i has changed; `before` is its record from before.
void TrackerCollection::noteChange(int i, const std::string& before)
{
    edits_.noteChange(i, before);
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
    edits_.noteOpen(kindCode(tracker), before, after);
}

/// A tool that is chosen inside a step comes back with it.
void TrackerCollection::setMode(int mode)
{
    const auto bytes = [](const std::int32_t& number) {
        return std::string_view(reinterpret_cast<const char*>(&number), sizeof number);
    };
    const std::int32_t before = mode_;
    const std::int32_t after = mode;
    mode_ = mode;
    edits_.noteState(modeState, bytes(before), bytes(after));
}

void TrackerCollection::noteMapping(const std::string& before)
{
    edits_.noteState(mappingState, before, mappingBytes());
}

int TrackerCollection::Items::kindOf(int i) { return of_.kindCode(*of_.trackerAt(i)); }

int TrackerCollection::Items::isOfKind(int i, int kind) const
{
    const ATracker* const tracker = of_.trackerAt(i);
    return tracker && kind >= 0 && static_cast<std::size_t>(kind) < of_.kinds_.size() &&
           of_.kinds_[static_cast<std::size_t>(kind)].type == typeid(*tracker);
}

std::string TrackerCollection::Items::recordOf(int i) const
{
    return of_.recordOf(*of_.trackerAt(i), i);
}

int TrackerCollection::Items::isActive(int i) const { return of_.trackerAt(i)->IsActive(); }

void TrackerCollection::Items::setActive(int i, int on) { of_.trackerAt(i)->SetActive(on); }

int TrackerCollection::Items::insert(int i, int kind, std::string_view record)
{
    std::unique_ptr<ATracker> tracker(of_.makeFromRecord(kind, record));
    if (!tracker || !of_.putItem(i, tracker.get()))
        return 0;
    (void)tracker.release();
    return 1;
}

void TrackerCollection::Items::remove(int i) { of_.dropItem(i); }

int TrackerCollection::Items::replace(int i, int kind, std::string_view record)
{
    ATracker* const tracker = of_.trackerAt(i);
    const int on = tracker->IsActive();
    if (!of_.setRecord(*tracker, kind, record))
        return 0;
    tracker->SetActive(on);
    of_.boxChanged(i);
    return 1;
}

int TrackerCollection::Items::setOpen(int kind, std::string_view record)
{
    std::unique_ptr<ATracker> tracker;
    if (!record.empty()) {
        tracker.reset(of_.makeFromRecord(kind, record));
        if (!tracker)
            return 0;
        tracker->SetActive(1);
    }
    delete of_.workingTracker();
    of_.setWorking(tracker.release());
    of_.hovering_ = 0;
    return 1;
}

int TrackerCollection::Items::setState(int which, std::string_view bytes)
{
    if (which == mappingState)
        return of_.setMappingBytes(bytes);
    std::int32_t mode = 0;
    if (which != modeState || bytes.size() != sizeof mode)
        return 0;
    std::memcpy(&mode, bytes.data(), sizeof mode);
    of_.mode_ = mode;
    return 1;
}

int TrackerCollection::Undo(CWnd* window)
{
    return walk(window, [this] { return edits_.undo(); });
}

int TrackerCollection::Redo(CWnd* window)
{
    return walk(window, [this] { return edits_.redo(); });
}

int TrackerCollection::walk(CWnd* window, const std::function<int()>& step)
{
    const int mode = mode_;
    if (dragged_ || drawn_ || !step())
        return 0;
    if (mode_ != mode)
        showTool(window);
    changed(window);
    return 1;
}

int TrackerCollection::DropTrial(CWnd* window)
{
    endDrag();
    const int mode = mode_;
    const int done = edits_.dropTrial();
    if (mode_ != mode)
        showTool(window);
    changed(window);
    return done;
}

void TrackerCollection::BeginEdits(std::string_view label) { edits_.begin(label); }

void TrackerCollection::EndEdits(CWnd* window)
{
    if (edits_.end())
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
    edits_.noteActive(i, tracker->IsActive());
    {
        const Step step(edits_, std::string(label).c_str());
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
    const int isOpenedNow = i < 0 && state.size() <= recordHeadBytes + sizeof(std::int32_t);
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
        const Step step(edits_, StepLabel("Reopening", last).text());
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
