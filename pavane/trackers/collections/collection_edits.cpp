// Edits of a collection as a whole: adding, deleting, copying, selecting.

#include "pavane/trackers/collections/collection_file.h"
#include "pavane/trackers/collections/collection_step.h"
#include "pavane/trackers/shapes/shape_handles.h"
#include "pavane/trackers/tracker_shape.h"
#include "platform/CWnd.h"

#include <algorithm>
#include <memory>

namespace pavane
{

namespace
{

/// Pixels that a copy lies to the right of and below its original.
constexpr int copyOffset = 10;

}  // namespace

int TrackerCollection::addItem(int i, ATracker* tracker, int makeCurrent)
{
    if (!tracker || i < 0 || i > trackerCount())
        return -1;
    {
        Step step(*this, StepLabel("Addition", i).text());
        if (!placeItem(i, tracker, tracker->IsActive()))
            return -1;
        noteInsert(i);
        if (makeCurrent)
            curItem_ = i;
    }
    tellOfEdit();
    return i;
}

void TrackerCollection::appendItems(int n, const std::function<ATracker*(int)>& tracker)
{
    {
        // as many as there will be, the first of them by its number when it is alone
        const std::vector<int> items(static_cast<std::size_t>(std::max(n, 0)), trackerCount());
        Step step(*this, StepLabel("Addition", items).text());
        for (int i = 0; i < n; ++i)
            if (ATracker* const added = tracker(i))
                (void)insertItem(trackerCount(), added, added->IsActive());
    }
    tellOfEdit();
}

int TrackerCollection::removeItems(int first, int n)
{
    eraseItems(first, n);
    const int left = trackerCount();
    tellOfEdit();
    return left;
}

void TrackerCollection::eraseItems(int first, int n)
{
    const int count = trackerCount();
    const int end = n > count - first ? count : first + n;
    std::vector<int> items;
    for (int i = std::max(first, 0); i < end; ++i)
        items.push_back(i);
    Step step(*this, StepLabel("Deletion", items).text());
    for (int i = end; i-- > std::max(first, 0);)
        eraseItem(i);
}

/// Edits without a window: the host repaints what it shows. The collection may be gone afterwards.
void TrackerCollection::tellOfEdit()
{
    fitFocus();
    if (depth_ == 0)
        OnChanged();
}

ATracker* TrackerCollection::loadObject(const std::string& className, AFile& file)
{
    std::unique_ptr<ATracker> tracker(makeTrackerOfClass(className));
    if (!tracker || !tracker->Load(file))
        return nullptr;
    adopt(*tracker);
    return tracker.release();
}

int TrackerCollection::loadItems(AFile& file, int current, LoadReport& report,
                                 const std::function<void()>& takeMapping)
{
    std::vector<ATracker*> trackers;
    const int result = loadTrackers(
        file, [this](const CString& name) { return makeTrackerOfClass(name); }, trackers, report);
    endDrag();
    {
        Step step(*this, "Loading of areas");
        eraseItems(0, trackerCount());
        changeWorking(nullptr);
        if (drawn_)
            endDrag();
        const std::string mapping = mappingBytes();
        takeMapping();
        noteMapping(mapping);
        for (ATracker* const tracker : trackers)
            (void)insertItem(trackerCount(), tracker, tracker->IsActive());
        curItem_ = current >= 0 && current < trackerCount() ? current : -1;
        zoomHistory_.Free();
        hovering_ = 0;
    }
    tellOfEdit();
    return result;
}

void TrackerCollection::Clear(CWnd* window)
{
    {
        Step step(*this, "Clearing of all areas");
        eraseItems(0, trackerCount());
        changeWorking(nullptr);
    }
    if (drawn_)
        endDrag();
    changed(window);
}

int TrackerCollection::DelteTracker(CWnd* window)
{
    if (workingTracker()) {
        const int mode = mode_;
        {
            Step step(*this, StepLabel("Deletion", -1).text());
            changeWorking(nullptr);
            if (mode & toolArea)
                setMode(toolArrow);
        }
        const LifeWatch self(life_);
        if (mode & toolArea)
            EndMode(window, mode);
        if (self.alive())
            changed(window);
        return 1;
    }
    const std::vector<int> items = SelectedItems();
    if (items.empty())
        return 0;
    {
        Step step(*this, StepLabel("Deletion", items).text());
        for (auto item = items.rbegin(); item != items.rend(); ++item)
            eraseItem(*item);
    }
    changed(window);
    return 1;
}

int TrackerCollection::CopyTracker(CWnd* window)
{
    const std::vector<int> items = SelectedItems();
    if (items.empty() || dragged_)
        return 0;
    const int before = trackerCount();
    {
        Step step(*this, StepLabel("Copy", items).text());
        for (const int i : items)
            (void)copyItem(window, i);
        if (trackerCount() > before)
            makeCurrent(trackerCount() - 1);
        selected_.clear();
        if (items.size() > 1)
            for (int i = before; i < trackerCount(); ++i)
                (void)selected_.insert(trackerAt(i));
    }
    changed(window);
    return trackerCount() > before;
}

int TrackerCollection::copyItem(CWnd* window, int i)
{
    std::unique_ptr<ATracker> copy(trackerAt(i)->Duplicate());
    if (!copy)
        return 0;
    adopt(*copy);
    ShapeValues shape;
    if (shapeOf(*copy, shape)) {
        const CPoint from = pixelPoint(shapeCentre(shape));
        const APoint<double> a = shapePoint(from);
        const APoint<double> b = shapePoint({from.x + copyOffset, from.y + copyOffset});
        APoint<double> offset{b.x - a.x, b.y - a.y};
        ARect<double> bounds;
        if (shapeBounds(window, *copy, bounds))
            offset = offsetInside(offset, shapeBox(shape), bounds);
        moveShape(shape, offset);
        (void)setShapeOf(*copy, shape);
    }
    copy->SetActive(0);
    return insertItem(trackerCount(), copy.release(), 0);
}

std::vector<int> TrackerCollection::SelectedItems() const
{
    std::vector<int> items;
    if (selected_.empty()) {
        const ATracker* const current = trackerAt(curItem_);
        if (current && current->IsActive())
            items.push_back(curItem_);
        return items;
    }
    for (int i = 0; i < trackerCount() && items.size() < selected_.size(); ++i)
        if (selected_.contains(trackerAt(i)))
            items.push_back(i);
    return items;
}

int TrackerCollection::IsSelected(int i) const
{
    const ATracker* const tracker = trackerAt(i);
    return tracker && selected_.contains(tracker);
}

void TrackerCollection::SelectItem(CWnd* window, int i, int on)
{
    ATracker* const tracker = trackerAt(i);
    if (!tracker)
        return;
    if (on) {
        (void)selected_.insert(tracker);
        makeCurrent(i);
    } else {
        (void)selected_.erase(tracker);
        if (i == curItem_)
            SetItemActive(i, 0);
    }
    changed(window);
}

void TrackerCollection::SelectAll(CWnd* window)
{
    for (int i = 0; i < trackerCount(); ++i)
        (void)selected_.insert(trackerAt(i));
    if (curItem_ < 0)
        curItem_ = trackerCount() - 1;
    changed(window);
}

void TrackerCollection::ClearSelection(CWnd* window)
{
    selected_.clear();
    focusItem_ = focusHandle_ = -1;
    if (const ATracker* const current = trackerAt(curItem_); current && current->IsActive())
        SetItemActive(curItem_, 0);
    changed(window);
}

}  // namespace pavane
