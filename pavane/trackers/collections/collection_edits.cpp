// Edits of a collection as a whole: adding, deleting, copying, selecting.

#include "pavane/trackers/areas/StepLabel.h"
#include "pavane/trackers/collections/tracker_records.h"
#include "pavane/trackers/collections/TrackerCollection.h"
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
        const Step step(edits_, StepLabel("Addition", i).text());
        if (!placeItem(i, tracker, tracker->IsActive()))
            return -1;
        edits_.noteInsert(i);
        if (makeCurrent)
            edits_.setCurrent(i);
    }
    tellOfEdit();
    return i;
}

void TrackerCollection::appendItems(int n, const std::function<ATracker*(int)>& tracker)
{
    {
        // as many as there will be, the first of them by its number when it is alone
        const std::vector<int> items(static_cast<std::size_t>(std::max(n, 0)), trackerCount());
        const Step step(edits_, StepLabel("Addition", items).text());
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
    const Step step(edits_, StepLabel("Deletion", items).text());
    for (int i = end; i-- > std::max(first, 0);)
        eraseItem(i);
}

/// Edits without a window: the host repaints what it shows. The collection may be gone afterwards.
void TrackerCollection::tellOfEdit()
{
    fitFocus();
    if (!edits_.isInStep())
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
        const Step step(edits_, "Loading of areas");
        eraseItems(0, trackerCount());
        changeWorking(nullptr);
        if (drawn_)
            endDrag();
        const std::string mapping = mappingBytes();
        takeMapping();
        noteMapping(mapping);
        for (ATracker* const tracker : trackers)
            (void)insertItem(trackerCount(), tracker, tracker->IsActive());
        edits_.setCurrent(current >= 0 && current < trackerCount() ? current : -1);
        zoomHistory_.Free();
        hovering_ = 0;
    }
    tellOfEdit();
    return result;
}

void TrackerCollection::Clear(CWnd* window)
{
    {
        const Step step(edits_, "Clearing of all areas");
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
            const Step step(edits_, StepLabel("Deletion", -1).text());
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
        const Step step(edits_, StepLabel("Deletion", items).text());
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
        const Step step(edits_, StepLabel("Copy", items).text());
        for (const int i : items)
            (void)copyItem(window, i);
        if (trackerCount() > before)
            makeCurrent(trackerCount() - 1);
        edits_.clearSelection();
        if (items.size() > 1)
            for (int i = before; i < trackerCount(); ++i)
                edits_.select(i, 1);
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

std::vector<int> TrackerCollection::SelectedItems() const { return edits_.selected(); }

int TrackerCollection::IsSelected(int i) const { return edits_.isSelected(i); }

void TrackerCollection::SelectItem(CWnd* window, int i, int on)
{
    if (!trackerAt(i))
        return;
    edits_.select(i, on);
    if (on)
        makeCurrent(i);
    else if (i == edits_.current())
        edits_.setActive(i, 0);
    changed(window);
}

void TrackerCollection::SelectAll(CWnd* window)
{
    edits_.selectAll();
    if (edits_.current() < 0)
        edits_.setCurrent(trackerCount() - 1);
    changed(window);
}

void TrackerCollection::ClearSelection(CWnd* window)
{
    edits_.clearSelection();
    focusItem_ = focusHandle_ = -1;
    if (const ATracker* const current = trackerAt(edits_.current()); current && current->IsActive())
        SetItemActive(edits_.current(), 0);
    changed(window);
}

}  // namespace pavane
