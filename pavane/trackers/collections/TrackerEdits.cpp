#include "pavane/trackers/collections/TrackerEdits.h"

#include "pavane/trackers/areas/StepLabel.h"
#include "pavane/trackers/shapes/shape_handles.h"

#include <algorithm>
#include <cstdint>
#include <memory>

namespace pavane
{

namespace
{

/// Pixels that a copy lies to the right of and below its original.
constexpr int copyOffset = 10;

}  // namespace

ATracker* TrackerEdits::activeTracker() const
{
    ATracker* const current = trackers_.at(areas_.current());
    return current && current->IsActive() ? current : nullptr;
}

void TrackerEdits::makeCurrent(int i)
{
    if (areas_.current() != i && focus_.item != i)  // keys go to the area that shows its handles
        focus_.clear();
    areas_.makeCurrent(i);
}

void TrackerEdits::select(int i, int on)
{
    areas_.select(i, on);
    if (on)
        makeCurrent(i);
    else if (i == areas_.current())
        areas_.setActive(i, 0);
}

void TrackerEdits::fitFocus()
{
    ShapeValues shape;
    if (focus_.item < 0)
        return;
    if (!trackers_.shapeAt(focus_.item, shape))
        focus_.clear();
    else
        focus_.handle = std::min(focus_.handle, handleCount(shape) - 1);
}

int TrackerEdits::place(int i, ATracker* tracker, int usual)
{
    if (!items_.put(i, tracker))
        return 0;
    areas_.inserted(i, usual);
    areas_.noteInsert(i);
    return 1;
}

int TrackerEdits::insert(int i, ATracker* tracker, int usual)
{
    if (place(i, tracker, usual))
        return 1;
    delete tracker;
    return 0;
}

void TrackerEdits::erase(int i)
{
    areas_.noteRemove(i);
    items_.drop(i);
    areas_.removed(i);
}

void TrackerEdits::noteChange(int i, const std::string& before)
{
    areas_.noteChange(i, before);
    eye_.boxChanged(i);
}

void TrackerEdits::changeOpen(ATracker* tracker)
{
    const std::unique_ptr<ATracker> old(trackers_.open());
    const ATracker* const known = tracker ? tracker : old.get();
    if (!known)
        return;
    const std::string before = old ? recordOf(*old, -1) : std::string();
    const std::string after = tracker ? recordOf(*tracker, -1) : std::string();
    noteOpen(*known, before, after);
    trackers_.setOpen(tracker);
    if (drag_.isOf(old.get()))
        drag_.forget();
}

void TrackerEdits::noteOpen(const ATracker& tracker, const std::string& before,
                            const std::string& after)
{
    areas_.noteOpen(items_.kindOfTracker(tracker), before, after);
}

void TrackerEdits::setTool(int tool)
{
    const auto bytes = [](const std::int32_t& number) {
        return std::string_view(reinterpret_cast<const char*>(&number), sizeof number);
    };
    const std::int32_t before = items_.tool();
    const std::int32_t after = tool;
    items_.setTool(tool);
    areas_.noteState(TrackerItems::toolState, bytes(before), bytes(after));
}

void TrackerEdits::noteMapping(const std::string& before)
{
    areas_.noteState(TrackerItems::mappingState, before, trackers_.mappingBytes());
}

int TrackerEdits::add(int i, ATracker* tracker, int makeCurrent)
{
    const Step step(areas_, StepLabel("Addition", i).text());
    if (!place(i, tracker, tracker->IsActive()))
        return 0;
    if (makeCurrent)
        areas_.setCurrent(i);
    return 1;
}

void TrackerEdits::append(int n, const std::function<ATracker*(int)>& tracker)
{
    // as many as there will be, the first of them by its number when it is alone
    const std::vector<int> items(static_cast<std::size_t>(std::max(n, 0)), trackers_.count());
    const Step step(areas_, StepLabel("Addition", items).text());
    for (int i = 0; i < n; ++i)
        if (ATracker* const added = tracker(i))
            (void)insert(trackers_.count(), added, added->IsActive());
}

void TrackerEdits::eraseItems(int first, int n)
{
    const int count = trackers_.count();
    const int end = n > count - first ? count : first + n;
    std::vector<int> items;
    for (int i = std::max(first, 0); i < end; ++i)
        items.push_back(i);
    const Step step(areas_, StepLabel("Deletion", items).text());
    for (int i = end; i-- > std::max(first, 0);)
        erase(i);
}

void TrackerEdits::clear()
{
    const Step step(areas_, "Clearing of all areas");
    eraseItems(0, trackers_.count());
    changeOpen(nullptr);
}

HandResult TrackerEdits::eraseChosen()
{
    if (trackers_.open()) {
        const int tool = items_.tool();
        const int ends = tool & toolArea;
        const Step step(areas_, StepLabel("Deletion", -1).text());
        changeOpen(nullptr);
        if (ends)
            setTool(toolArrow);
        return HandResult::edited(ends ? tool : -1);
    }
    const std::vector<int> items = areas_.selected();
    if (items.empty())
        return {};
    const Step step(areas_, StepLabel("Deletion", items).text());
    for (auto item = items.rbegin(); item != items.rend(); ++item)
        erase(*item);
    return HandResult::edited();
}

HandResult TrackerEdits::copyChosen(CWnd* window)
{
    const std::vector<int> items = areas_.selected();
    if (items.empty() || drag_.isOn())
        return {};
    const int before = trackers_.count();
    const Step step(areas_, StepLabel("Copy", items).text());
    for (const int i : items)
        (void)copy(window, i);
    const int count = trackers_.count();
    if (count > before)
        makeCurrent(count - 1);
    areas_.clearSelection();
    if (items.size() > 1)
        for (int i = before; i < count; ++i)
            areas_.select(i, 1);
    HandResult result = HandResult::edited();
    result.used = count > before;
    return result;
}

int TrackerEdits::copy(CWnd* window, int i)
{
    std::unique_ptr<ATracker> copied(trackers_.at(i)->Duplicate());
    if (!copied)
        return 0;
    trackers_.adopt(*copied);
    ShapeValues shape;
    if (shapeOf(*copied, shape)) {
        const CPoint from = trackers_.pixelPoint(shapeCentre(shape));
        const APoint<double> a = trackers_.shapePoint(from);
        const APoint<double> b = trackers_.shapePoint({from.x + copyOffset, from.y + copyOffset});
        APoint<double> offset{b.x - a.x, b.y - a.y};
        ARect<double> bounds;
        if (trackers_.shapeBounds(window, *copied, bounds))
            offset = offsetInside(offset, shapeBox(shape), bounds);
        moveShape(shape, offset);
        (void)setShapeOf(*copied, shape);
    }
    copied->SetActive(0);
    return insert(trackers_.count(), copied.release(), 0);
}

void TrackerEdits::becomeCurrent(ATracker* tracker)
{
    areas_.clearSelection();
    makeCurrent(-1);
    if (insert(trackers_.count(), tracker, 0))
        makeCurrent(trackers_.count() - 1);
}

HandResult TrackerEdits::takeDrawn(ATracker* tracker)
{
    const Step step(areas_, StepLabel("Drawing", trackers_.count()).text());
    becomeCurrent(tracker);
    return HandResult::edited(items_.tool());
}

HandResult TrackerEdits::takeOpen(const std::string& before)
{
    const int tool = items_.tool();
    const Step step(areas_, StepLabel("Closing", trackers_.count()).text());
    ATracker* const tracker = trackers_.open();
    noteOpen(*tracker, before, {});
    trackers_.setOpen(nullptr);
    becomeCurrent(tracker);
    setTool(toolArrow);  // undone, the tool is at hand again
    return HandResult::edited(tool);
}

int TrackerEdits::reopenLast()
{
    const int last = trackers_.count() - 1;
    const ATracker* const tracker = trackers_.at(last);
    if (!tracker || tracker->IsReady() || trackers_.open() || drag_.isBusy())
        return 0;
    std::unique_ptr<ATracker> open(tracker->Duplicate());
    if (!open)
        return 0;
    trackers_.adopt(*open);
    open->SetActive(1);
    const Step step(areas_, StepLabel("Reopening", last).text());
    erase(last);
    changeOpen(open.release());
    setTool(toolArea);
    return 1;
}

int TrackerEdits::change(int i, std::string_view label, const std::function<int(ATracker&)>& change)
{
    ATracker* const tracker = trackers_.at(i);
    if (!tracker || drag_.isOn())
        return 0;
    const LifeWatch self(life_);
    const LifeWatch item(tracker->life());
    const std::string state = tracker->State();
    const AreaLabel called = tracker->label();
    const std::string before = recordOf(*tracker, i);
    const int result = change(*tracker);
    if (!self.alive() || !item.alive() || trackers_.at(i) != tracker)
        return 0;
    if (!result) {
        (void)tracker->SetState(state);
        tracker->SetLabel(called);
        trackers_.adopt(*tracker);
        return 0;
    }
    areas_.noteActive(i, tracker->IsActive());
    const Step step(areas_, std::string(label).c_str());
    noteChange(i, before);
    return 1;
}

}  // namespace pavane
