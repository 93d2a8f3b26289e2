// What edits, keys and undo do to a collection, and that it is told.

#include "pavane/resources/plot_commands.h"
#include "pavane/trackers/areas/StepLabel.h"
#include "pavane/trackers/collections/collection_parts.h"
#include "pavane/trackers/collections/tracker_records.h"
#include "platform/controls.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// A tool that a step brought back is checked.
void checkTool(CWnd* bar, int tool)
{
    const PlotCommand* const command = commandOfTool(tool);
    if (bar && command)
        (void)bar->SendMessage(TB_CHECKBUTTON, command->id, 1);
}

}  // namespace

int TrackerCollection::addItem(int i, ATracker* tracker, int makeCurrent)
{
    if (!tracker || i < 0 || i > trackerCount() || !parts_->edits.add(i, tracker, makeCurrent))
        return -1;
    tellOfEdit();
    return i;
}

void TrackerCollection::appendItems(int n, const std::function<ATracker*(int)>& tracker)
{
    parts_->edits.append(n, tracker);
    tellOfEdit();
}

int TrackerCollection::removeItems(int first, int n)
{
    parts_->edits.eraseItems(first, n);
    const int left = trackerCount();
    tellOfEdit();
    return left;
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
        TrackerEdits& edits = parts_->edits;
        const TrackerEdits::Step step(*areas_, "Loading of areas");
        edits.eraseItems(0, trackerCount());
        edits.changeOpen(nullptr);
        const std::string mapping = mappingBytes();
        takeMapping();
        edits.noteMapping(mapping);
        for (ATracker* const tracker : trackers)
            (void)edits.insert(trackerCount(), tracker, tracker->IsActive());
        SetCurItemNo(current >= 0 && current < trackerCount() ? current : -1);
        zoomHistory_.Free();
        parts_->eye.endHover();
    }
    tellOfEdit();
    return result;
}

void TrackerCollection::Clear(CWnd* window)
{
    parts_->edits.clear();
    if (drawnTracker())
        endDrag();
    changed(window);
}

int TrackerCollection::DelteTracker(CWnd* window)
{
    return tell(window, parts_->edits.eraseChosen());
}

int TrackerCollection::CopyTracker(CWnd* window)
{
    return tell(window, parts_->edits.copyChosen(window));
}

int TrackerCollection::CloseArea(CWnd* window)
{
    return tell(window, parts_->hand.closeOpen(window));
}

int TrackerCollection::Escape(CWnd* window)
{
    const int tool = mode();
    if (workingTracker())
        return BeginMode(window, tool), 1;  // the tool stays at hand
    if (tool != toolArrow)
        return EndMode(window, tool), 1;
    if (areas_->selectionCount() == 0 && focusItem() < 0 && !parts_->edits.activeTracker())
        return 0;
    return ClearSelection(window), 1;
}

void TrackerCollection::ChangeActiveTrack(CWnd* window, int i)
{
    if (!trackerAt(i))
        return;
    parts_->edits.makeCurrent(i);
    changed(window);
}

void TrackerCollection::SelectItem(CWnd* window, int i, int on)
{
    if (!trackerAt(i))
        return;
    parts_->edits.select(i, on);
    changed(window);
}

void TrackerCollection::SelectAll(CWnd* window)
{
    areas_->selectAll();
    if (GetCurItemNo() < 0)
        SetCurItemNo(trackerCount() - 1);
    changed(window);
}

void TrackerCollection::ClearSelection(CWnd* window)
{
    areas_->clearSelection();
    parts_->focus.clear();
    if (parts_->edits.activeTracker())
        SetItemActive(GetCurItemNo(), 0);
    changed(window);
}

int TrackerCollection::NextFocus(CWnd* window) { return tell(window, parts_->keys.stepFocus(1)); }
int TrackerCollection::PrevFocus(CWnd* window) { return tell(window, parts_->keys.stepFocus(-1)); }
int TrackerCollection::focusItem() const { return parts_->focus.item; }
int TrackerCollection::focusHandle() const { return parts_->focus.handle; }

void TrackerCollection::SetFocusAt(CWnd* window, int item, int handle)
{
    (void)tell(window, parts_->keys.focusAt(item, handle));
}

int TrackerCollection::FocusPoint(CPoint& p) const
{
    return parts_->eye.focusPoint(parts_->focus, p);
}

int TrackerCollection::MoveBy(CWnd* window, int dx, int dy)
{
    return tell(window, parts_->keys.moveBy(window, dx, dy));
}

int TrackerCollection::MoveByValue(CWnd* window, double dx, double dy)
{
    return tell(window, parts_->keys.moveByValue(window, dx, dy));
}

int TrackerCollection::InsertVertex(CWnd* window, const CPoint* at)
{
    return tell(window, parts_->keys.insertVertex(at));
}

int TrackerCollection::DeleteVertex(CWnd* window, const CPoint* at)
{
    return tell(window, parts_->keys.deleteVertex(at));
}

int TrackerCollection::PlaceShape(CWnd* window)
{
    return tell(window, parts_->keys.placeShape(window));
}

int TrackerCollection::CanUndo() const { return history().canUndo() && !parts_->drag.isOn(); }
int TrackerCollection::CanRedo() const { return history().canRedo() && !parts_->drag.isOn(); }

int TrackerCollection::Undo(CWnd* window)
{
    const int before = mode();
    if (parts_->drag.isBusy() || !areas_->undo())
        return 0;
    if (mode() != before)
        checkTool(GetToolBar(window), mode());
    changed(window);
    return 1;
}

int TrackerCollection::Redo(CWnd* window)
{
    const int before = mode();
    if (parts_->drag.isBusy() || !areas_->redo())
        return 0;
    if (mode() != before)
        checkTool(GetToolBar(window), mode());
    changed(window);
    return 1;
}

int TrackerCollection::DropTrial(CWnd* window)
{
    endDrag();
    const int before = mode();
    const int done = areas_->dropTrial();
    if (mode() != before)
        checkTool(GetToolBar(window), mode());
    changed(window);
    return done;
}

void TrackerCollection::EndEdits(CWnd* window)
{
    if (areas_->end())
        changed(window);
}

int TrackerCollection::ChangeTracker(CWnd* window, int i, std::string_view label,
                                     const std::function<int(ATracker&)>& change)
{
    if (!parts_->edits.change(i, label, change))
        return 0;
    changed(window);
    return 1;
}

int TrackerCollection::ReopenLast(CWnd* window)
{
    if (!parts_->edits.reopenLast())
        return 0;
    checkTool(GetToolBar(window), mode());
    changed(window);
    return 1;
}

int TrackerCollection::IsNeverClean() const
{
    const std::vector<int> items = SelectedItems();
    return !items.empty() && std::all_of(items.begin(), items.end(),
                                         [this](int i) { return trackerAt(i)->IsNeverClean(); });
}

int TrackerCollection::SetNeverClean(CWnd* window, int on)
{
    const std::vector<int> items = SelectedItems();
    const char* const what = on ? "Never clean" : "Clean again";
    int changes = 0;
    BeginEdits(StepLabel(what, items).text());
    for (const int i : items)
        if (trackerAt(i)->IsNeverClean() != (on != 0))
            changes += ChangeTracker(nullptr, i, what, [on](ATracker& tracker) {
                tracker.SetNeverClean(on);
                return 1;
            });
    EndEdits(changes ? window : nullptr);
    return changes;
}

AreaLabel TrackerCollection::Label(int i) const
{
    const ATracker* const tracker = parts_->trackers.at(i);
    return tracker ? tracker->label() : AreaLabel();
}

int TrackerCollection::SetLabels(CWnd* window, const std::vector<int>& items,
                                 const AreaLabel& label, int setsName, int setsColour)
{
    const char* const what = setsName ? "Name" : "Colour";
    int changes = 0;
    BeginEdits(StepLabel(what, items).text());
    for (const int i : items) {
        AreaLabel wanted = Label(i);
        if (setsName)
            wanted.name = label.name;
        if (setsColour)
            wanted.colour = label.colour;
        if (parts_->trackers.at(i) && !(wanted == Label(i)))
            changes += ChangeTracker(nullptr, i, what, [&](ATracker& tracker) {
                tracker.SetLabel(wanted);
                return 1;
            });
    }
    EndEdits(changes ? window : nullptr);
    return changes;
}

int TrackerCollection::GetShape(int i, ShapeValues& shape) const
{
    return parts_->trackers.shapeAt(i, shape);
}

int TrackerCollection::SetShape(CWnd* window, int i, const ShapeValues& shape)
{
    return ChangeTracker(window, i, StepLabel("Edit", i).text(),
                         [&](ATracker& tracker) { return setShapeOf(tracker, shape); });
}

}  // namespace pavane
