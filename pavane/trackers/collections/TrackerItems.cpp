#include "pavane/trackers/collections/TrackerItems.h"

#include "pavane/trackers/areas/step_record.h"

#include <cstdint>
#include <cstring>
#include <utility>

namespace pavane
{

int TrackerItems::kindOfTracker(const ATracker& tracker)
{
    const std::type_index type = typeid(tracker);
    const int mapping = trackers_.mappingNumber();
    for (std::size_t i = kinds_.size(); i-- > 0;)
        if (kinds_[i].mapping == mapping && kinds_[i].type == type)
            return static_cast<int>(i);
    Kind kind{type, tracker.GetClassName(), mapping, nullptr};
    const std::unique_ptr<ATracker> named(trackers_.makeOfClass(kind.name));
    const ATracker* const made = named.get();
    if (!made || std::type_index(typeid(*made)) != type)
        kind.model.reset(tracker.Duplicate());
    kinds_.push_back(std::move(kind));
    return static_cast<int>(kinds_.size()) - 1;
}

const TrackerItems::Kind* TrackerItems::kindAt(int kind) const
{
    return kind >= 0 && static_cast<std::size_t>(kind) < kinds_.size()
               ? &kinds_[static_cast<std::size_t>(kind)]
               : nullptr;
}

/// With the active flag that the item came with, because the history notes the other flags beside
/// it.
std::string TrackerItems::recordOf(const ATracker& tracker, int i) const
{
    std::string record = drag_.stateOf(tracker);
    setActiveBit(record, i >= 0 && edits_.usuallyActive(i));
    if (tracker.vertexBytes())
        dropVertexCount(record);
    appendLabel(record, tracker.label());
    return record;
}

int TrackerItems::setRecord(ATracker& tracker, const Kind& kind, std::string_view record) const
{
    std::string state(record);
    const AreaLabel label = takeLabel(state);
    if (const std::size_t vertex = tracker.vertexBytes())
        putVertexCount(state, vertex);
    if (!tracker.SetState(state))
        return 0;
    tracker.SetLabel(label);
    trackers_.adopt(tracker);
    const int mapping = trackers_.mappingNumber();
    if (kind.mapping != mapping)
        trackers_.rescale(tracker, kind.mapping, mapping);
    return 1;
}

std::unique_ptr<ATracker> TrackerItems::makeFromRecord(int kind, std::string_view record) const
{
    const Kind* const of = kindAt(kind);
    if (!of)
        return nullptr;
    std::unique_ptr<ATracker> tracker(of->model ? of->model->Duplicate()
                                                : trackers_.makeOfClass(of->name));
    if (!tracker || !setRecord(*tracker, *of, record))
        return nullptr;
    return tracker;
}

int TrackerItems::put(int i, ATracker* tracker)
{
    drag_.releaseFollowers();
    if (!trackers_.put(i, tracker))
        return 0;
    trackers_.adopt(*tracker);
    eye_.inserted(i);
    focus_.inserted(i);
    drag_.inserted(i);
    return 1;
}

void TrackerItems::drop(int i)
{
    drag_.releaseFollowers();
    ATracker* const tracker = trackers_.take(i);
    eye_.forget();
    focus_.removed();
    drag_.removed(i, tracker);
    trackers_.giveUp(tracker);
}

int TrackerItems::isOfKind(int i, int kind) const
{
    const ATracker* const tracker = trackers_.at(i);
    const Kind* const of = kindAt(kind);
    return tracker && of && of->type == typeid(*tracker);
}

int TrackerItems::insert(int i, int kind, std::string_view record)
{
    std::unique_ptr<ATracker> tracker = makeFromRecord(kind, record);
    if (!tracker || !put(i, tracker.get()))
        return 0;
    (void)tracker.release();
    return 1;
}

int TrackerItems::replace(int i, int kind, std::string_view record)
{
    ATracker& tracker = *trackers_.at(i);
    const int on = tracker.IsActive();
    if (!setRecord(tracker, *kindAt(kind), record))
        return 0;
    tracker.SetActive(on);
    eye_.boxChanged(i);
    return 1;
}

int TrackerItems::setOpen(int kind, std::string_view record)
{
    std::unique_ptr<ATracker> tracker;
    if (!record.empty()) {
        tracker = makeFromRecord(kind, record);
        if (!tracker)
            return 0;
        tracker->SetActive(1);
    }
    delete trackers_.open();
    trackers_.setOpen(tracker.release());
    eye_.endHover();
    return 1;
}

int TrackerItems::setState(int which, std::string_view bytes)
{
    if (which == mappingState)
        return trackers_.setMappingBytes(bytes);
    std::int32_t tool = 0;
    if (which != toolState || bytes.size() != sizeof tool)
        return 0;
    std::memcpy(&tool, bytes.data(), sizeof tool);
    tool_ = tool;
    return 1;
}

}  // namespace pavane
