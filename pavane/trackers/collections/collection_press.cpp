// What presses of the mouse do to a collection: tools, drags, new shapes, zoom steps.

#include "pavane/trackers/areas/StepLabel.h"
#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/collections/TrackerCollection.h"
#include "pavane/trackers/shapes/rect_handles.h"
#include "pavane/trackers/shapes/shape_handles.h"
#include "pavane/trackers/shapes/TurnedRectDrag.h"
#include "pavane/trackers/tracker_shape.h"
#include "platform/CWnd.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>

namespace pavane
{

namespace
{

/// The hit code that moves a shape as a whole.
int moveCode(const ATracker& tracker)
{
    const int upright = dynamic_cast<const ARectTracker*>(&tracker) ||
                        dynamic_cast<const ARPRectTracker*>(&tracker);
    return upright ? hitMiddle : 1;
}

/// The first point of a shape: a move changes it by the move.
APoint<double> anchorOf(const ShapeValues& shape)
{
    return shape.points.empty() ? APoint<double>{shape.rect.left, shape.rect.top}
                                : shape.points.front();
}

/// Whether two records differ at most in the rectangles that every press refreshes.
bool sameShape(const std::string& a, const std::string& b)
{
    constexpr std::size_t rects = 8;
    constexpr std::size_t shape = 56;
    return a.size() == b.size() && a.size() >= shape && a.compare(0, rects, b, 0, rects) == 0 &&
           a.compare(shape, std::string::npos, b, shape) == 0;
}

}  // namespace

int TrackerCollection::OnLButtonDown(CWnd* window, unsigned flags, CPoint p)
{
    if (!takesPress(p) || dragged_ || drawn_)
        return 0;
    hovering_ = 0;
    edits_.history().endSeries();
    if (mode_ & toolZoomIn)
        return pressZoom(window, p);
    const int arrow = mode_ < toolRect;
    if (arrow && (flags & MK_CONTROL) && !workingTracker())
        return pressSelect(window, p);
    if (arrow && edits_.selectionCount() > 1) {
        const int hit = TopmostAt(p, window);
        if (IsSelected(hit))
            return moveSeveral(window, hit, p);
    }
    const LifeWatch self(life_);
    const HWND handle = window ? window->GetSafeHwnd() : 0;
    const auto gone = [&] { return !self.alive() || CWnd::FromHandle(handle) != window; };
    leaveCurrent(window, p);
    if (!gone() && arrow && clickSelects_)
        takeClicked(window, p);
    if (gone())
        return 1;
    return arrow ? pressMove(window, p) : pressDraw(window, p);
}

int TrackerCollection::pressZoom(CWnd* window, CPoint p)
{
    const TMinMax now = shownRange();
    TMinMax next = now;
    if (!zoomedRange(p, next))
        return 1;
    const LifeWatch self(life_);
    (void)zoomHistory_.Add(now);
    SetNewMinMax(window, next);
    if (self.alive())
        enableZoomBack(window);
    return 1;
}

/// A press beside the current area leaves it, and with it the selection.
void TrackerCollection::leaveCurrent(CWnd* window, CPoint p)
{
    if (workingTracker())
        return;
    ATracker* const current = trackerAt(edits_.current());
    const int missed = current && current->IsActive() && current->HitTest(p, window) < 0;
    if (!missed && edits_.selectionCount() == 0)
        return;
    if (missed)
        SetItemActive(edits_.current(), 0);
    edits_.clearSelection();
    focusItem_ = focusHandle_ = -1;
    changed(window);
}

/// The area under a press becomes the current one, unless the current one is hit as well.
void TrackerCollection::takeClicked(CWnd* window, CPoint p)
{
    ATracker* const current = trackerAt(edits_.current());
    if (workingTracker() || (current && current->IsActive() && current->HitTest(p, window) >= 0))
        return;
    const int hit = TopmostAt(p, window);
    if (hit < 0)
        return;
    makeCurrent(hit);
    changed(window);
}

int TrackerCollection::pressSelect(CWnd* window, CPoint p)
{
    const int hit = TopmostAt(p, window);
    if (hit < 0)
        return 0;
    const ATracker* const current = trackerAt(edits_.current());
    if (edits_.selectionCount() == 0 && current && current->IsActive() && edits_.current() != hit)
        edits_.select(edits_.current(), 1);
    SelectItem(window, hit, !IsSelected(hit));
    return 1;
}

int TrackerCollection::pressMove(CWnd* window, CPoint p)
{
    ATracker* const current = trackerAt(edits_.current());
    if (!current || !current->IsActive() || current->HitTest(p, window) < 0)
        return 0;
    const std::string before = recordOf(*current, edits_.current());
    const char* const what = focusPressed(window, p);
    const DragResult end =
        drag(window, *current, [&] { return current->Track(window, p, 0, nullptr); });
    if (end == DragResult::gone)
        return 1;
    invalidateFocus(window);
    if (end != DragResult::kept)
        return 1;
    const int i = IndexOf(current);
    if (i < 0 || sameShape(recordOf(*current, i), before))
        return 1;
    {
        const Step step(edits_, StepLabel(what, i).text());
        noteChange(i, before);
    }
    changed(window);
    return 1;
}

/// A vertex of the current area that is pressed has the focus, and nothing else has: keys go to
/// what the pointer has taken last. Returns what a drag from there does.
const char* TrackerCollection::focusPressed(CWnd* window, CPoint p)
{
    ATracker& current = *trackerAt(edits_.current());
    ShapeValues shape;
    const int hit = current.HitTest(p, window);
    const int vertex = shapeOf(current, shape) && shape.kind == ShapeValues::Kind::polygon &&
                       hit >= hitFirstHandle;
    invalidateFocus(window);
    focusItem_ = vertex ? edits_.current() : -1;
    focusHandle_ = vertex ? hit - hitFirstHandle : -1;
    invalidateFocus(window);
    if (hit == moveCode(current))
        return "Move";
    const int turned = shape.kind == ShapeValues::Kind::rotatedRectangle ||
                       shape.kind == ShapeValues::Kind::ellipse;
    return vertex ? "Move of a vertex" : turned && hit == hitTurning ? "Turn" : "Resizing";
}

/// Runs one drag and tells whether the tracker and the collection are still there. `window` is null
/// afterwards when it has gone.
TrackerCollection::DragResult TrackerCollection::drag(CWnd*& window, ATracker& tracker,
                                                      const std::function<int()>& run)
{
    const LifeWatch self(life_);
    const HWND handle = window ? window->GetSafeHwnd() : 0;
    const LifeWatch item(tracker.life());
    draggedBefore_ = tracker.State();
    draggedItem_ = IndexOf(&tracker);
    dragged_ = &tracker;
    const int result = run();
    if (handle && CWnd::FromHandle(handle) != window)
        window = nullptr;
    if (!self.alive())
        return DragResult::gone;
    if (dragged_ == &tracker)
        dragged_ = nullptr;
    draggedItem_ = -1;
    if (!item.alive())
        return DragResult::gone;
    return result && tracker.dragEnd() != DragEnd::lost ? DragResult::kept : DragResult::refused;
}

/// Gives a tracker that something else replaces up: its shape is as before the drag, and the loop
/// ends because the tracker is gone.
void TrackerCollection::endDrag()
{
    ATracker* const tracker = dragged_;
    dragged_ = nullptr;
    releaseFollowers();
    if (!tracker)
        return;
    if (tracker == drawn_) {
        drawn_ = nullptr;
        delete tracker;
        return;
    }
    std::unique_ptr<ATracker> twin(tracker->Duplicate());
    if (!twin || !twin->SetState(draggedBefore_))
        return;
    adopt(*twin);
    const int i = IndexOf(tracker);
    if (i >= 0) {
        giveUp(takeTracker(i));
        (void)putTracker(i, twin.release());
        boxesKnown_ = 0;
    } else if (tracker == workingTracker()) {
        setWorking(twin.release());
        delete tracker;
    }
}

int TrackerCollection::pressDraw(CWnd* window, CPoint p)
{
    if ((mode_ & drawingTools) == 0)
        return 0;
    // the bits are asked in this order by makeTracker too
    if (!(mode_ & (toolRect | toolRotateRect | toolEllipse)))
        return addVertex(window, p);
    std::unique_ptr<ATracker> tracker(makeTracker(mode_));
    if (!tracker)
        return 1;
    adopt(*tracker);
    drawn_ = tracker.release();
    const DragResult end =
        drag(window, *drawn_, [&] { return drawn_->TrackRubberBand(window, p, 0); });
    if (end == DragResult::gone)
        return 1;
    tracker.reset(drawn_);
    drawn_ = nullptr;
    if (end == DragResult::kept && tracker->IsReady()) {
        takeDrawn(window, tracker.release());
    } else {
        tracker.reset();
        ChangeTrackState(window);
    }
    return 1;
}

/// Whether a press at `p` closes the open polygon, and where its first vertex is.
int TrackerCollection::closesAt(CPoint p, CPoint* vertex) const
{
    ShapeValues shape;
    const ATracker* const working = workingTracker();
    constexpr std::size_t fewest = 3;
    if (!firstVertexCloses_ || !working || !shapeOf(*working, shape) ||
        shape.points.size() < fewest)
        return 0;
    const CPoint first = pixelPoint(shape.points.front());
    if (std::hypot(static_cast<double>(p.x) - first.x, static_cast<double>(p.y) - first.y) >
        std::max(vertexCatch_, working->GetHandleSize() / 2))
        return 0;
    if (vertex)
        *vertex = first;
    return 1;
}

int TrackerCollection::addVertex(CWnd* window, CPoint p)
{
    if (closesAt(p))
        return CloseArea(window), 1;
    ATracker* working = workingTracker();
    const std::string before = working ? recordOf(*working, -1) : std::string();
    if (!working) {
        working = makeTracker(mode_);
        if (!working)
            return 1;
        adopt(*working);
        setWorking(working);
        enableAreaCommands(window, 1);
    }
    const DragResult end =
        drag(window, *working, [&] { return working->TrackRubberBand(window, p, 0); });
    if (end == DragResult::gone || workingTracker() != working)
        return 1;  // a handler may have closed or dropped it
    const std::string after = recordOf(*working, -1);
    ShapeValues shape;
    const int empty = shapeOf(*working, shape) && shape.points.empty();
    if (before.empty() && (end == DragResult::refused || empty)) {
        setWorking(nullptr);
        delete working;
        showCurrent(window);
        return 1;
    }
    if (end == DragResult::refused)
        return 1;
    if (before.empty() || !sameShape(after, before)) {
        const Step step(edits_, StepLabel("New vertex", -1).text());
        noteWorking(*working, before, after);
    }
    if (working->IsReady())
        takeWorking(window, after);
    else
        changed(window);
    return 1;
}

/// A shape that was drawn becomes the current area, and its tool is put away.
void TrackerCollection::takeDrawn(CWnd* window, ATracker* tracker)
{
    const int mode = mode_;
    {
        const Step step(edits_, StepLabel("Drawing", trackerCount()).text());
        edits_.clearSelection();
        makeCurrent(-1);
        if (insertItem(trackerCount(), tracker, 0))
            makeCurrent(trackerCount() - 1);
    }
    const LifeWatch self(life_);
    EndMode(window, mode);
    if (self.alive())
        changed(window);
}

/// The polygon under construction, `before` its record while it was open, becomes the current area.
void TrackerCollection::takeWorking(CWnd* window, const std::string& before)
{
    const int mode = mode_;
    {
        const Step step(edits_, StepLabel("Closing", trackerCount()).text());
        ATracker* const tracker = workingTracker();
        noteWorking(*tracker, before, {});
        setWorking(nullptr);
        edits_.clearSelection();
        makeCurrent(-1);
        if (insertItem(trackerCount(), tracker, 0))
            makeCurrent(trackerCount() - 1);
        setMode(toolArrow);  // undone, the tool is at hand again
    }
    const LifeWatch self(life_);
    EndMode(window, mode);
    if (self.alive())
        changed(window);
}

int TrackerCollection::OnLButtonDblClk(CWnd* window, unsigned flags, CPoint p)
{
    (void)flags;
    if (!takesPress(p) || dragged_ || drawn_)
        return 0;
    if (ATracker* const working = workingTracker()) {
        const std::string before = recordOf(*working, -1);
        ShapeValues shape;
        const int few = shapeOf(*working, shape) &&
                        static_cast<std::int64_t>(shape.points.size()) < fewestCorners_;
        if (!few && working->TrackReady(window, p))
            takeWorking(window, before);
        return 1;
    }
    const int hit = TopmostAt(p, window);
    if (hit < 0)
        return 0;
    edits_.clearSelection();
    makeCurrent(hit);
    changed(window);
    return 1;
}

int TrackerCollection::moveSeveral(CWnd* window, int item, CPoint p)
{
    ATracker& grabbed = *trackerAt(item);
    if (edits_.current() != item)
        makeCurrent(item);
    const std::string before = recordOf(grabbed, item);
    std::vector<std::string> records;
    std::vector<int> items = {item};
    ShapeValues shape;
    for (const int i : SelectedItems())
        if (i != item && shapeOf(*trackerAt(i), shape)) {
            followers_.push_back({i, trackerAt(i)->State(), shape});
            records.push_back(recordOf(*trackerAt(i), i));
            items.push_back(i);
        }
    if (!shapeOf(grabbed, shape))
        followers_.clear();
    followFrom_ = anchorOf(shape);
    boundFollowers(window, grabbed, p);
    dragWindow_ = window ? window->GetSafeHwnd() : 0;
    const DragResult end = drag(window, grabbed, [&] {
        return grabbed.TrackHandle(moveCode(grabbed), window, p, nullptr);
    });
    if (end == DragResult::gone)
        return 1;
    const int i = IndexOf(&grabbed);
    if (end == DragResult::kept && i >= 0 && !sameShape(recordOf(grabbed, i), before)) {
        const Step step(edits_, StepLabel("Move", items).text());
        noteChange(i, before);
        if (!followers_.empty())  // else something ended the moving together
            for (std::size_t k = 0; k < records.size(); ++k)
                noteChange(items[k + 1], records[k]);
        followers_.clear();
    }
    releaseFollowers();
    changed(window);
    return 1;
}

/// Areas that moved with the dragged one are again where they were. Their places in the collection
/// have to be those of the start of the drag still.
void TrackerCollection::releaseFollowers()
{
    for (const Follower& follower : followers_) {
        (void)trackerAt(follower.item)->SetState(follower.before);
        boxChanged(follower.item);
    }
    followers_.clear();
}

/// The grabbed area may go as far as all that move with it stay inside.
void TrackerCollection::boundFollowers(CWnd* window, ATracker& grabbed, CPoint p)
{
    if (window)
        grabbed.GetValidRect(window);
    CRect own;
    grabbed.GetTrueRect(&own);
    CRect all = own;
    for (const Follower& follower : followers_) {
        CRect box;
        trackerAt(follower.item)->GetTrueRect(&box);
        all = {std::min(all.left, box.left), std::min(all.top, box.top),
               std::max(all.right, box.right), std::max(all.bottom, box.bottom)};
    }
    const CRect valid = grabbed.validRect();
    const auto edge = [](int bound, int ownEdge, int outermost) {
        return saturatedSum(bound, static_cast<long long>(ownEdge) - outermost);
    };
    followBounds_ = {std::min({edge(valid.left, own.left, all.left), own.left, p.x}),
                     std::min({edge(valid.top, own.top, all.top), own.top, p.y}),
                     std::max({edge(valid.right, own.right, all.right), own.right, p.x}),
                     std::max({edge(valid.bottom, own.bottom, all.bottom), own.bottom, p.y})};
}

int TrackerCollection::trackerBounds(const ATracker& tracker, CRect& bounds)
{
    if (followers_.empty() || &tracker != dragged_)
        return 0;
    bounds = followBounds_;
    return 1;
}

/// With the capture the drag is lost at once: whoever took it may edit the areas before the loop
/// of the drag wakes.
void TrackerCollection::trackerDragEnded(ATracker& tracker, DragEnd end)
{
    lastDragEnd_ = end;
    if (end != DragEnd::lost || &tracker != dragged_)
        return;
    dragged_ = nullptr;
    releaseFollowers();
}

void TrackerCollection::trackerChanging(ATracker& tracker)
{
    if (draggedItem_ >= 0 && &tracker == dragged_)
        boxChanged(draggedItem_);
    if (!followers_.empty() && &tracker == dragged_)
        moveFollowers(tracker);
    OnChanging(tracker);
}

/// Many are repainted and boxed together: one by one that takes longer than to draw them.
void TrackerCollection::moveFollowers(const ATracker& grabbed)
{
    ShapeValues shape;
    if (!shapeOf(grabbed, shape))
        return;
    const APoint<double> to = anchorOf(shape);
    const APoint<double> offset{to.x - followFrom_.x, to.y - followFrom_.y};
    CWnd* const window = CWnd::FromHandle(dragWindow_);
    const int each = followers_.size() < manyFollowers;
    const auto invalidate = [&](const ATracker& tracker) {
        CRect box;
        tracker.GetTrueRect(&box);
        if (window && each)
            window->InvalidateRect(grown(box, 2));  // handles reach out
    };
    for (const Follower& follower : followers_) {
        ATracker* const tracker = trackerAt(follower.item);
        if (!tracker)
            continue;
        if (each)
            invalidate(*tracker);
        shape = follower.start;
        moveShape(shape, offset);
        (void)setShapeOf(*tracker, shape);
        if (each) {
            boxChanged(follower.item);
            invalidate(*tracker);
        }
    }
    if (each)
        return;
    ForgetBoxes();
    if (window)
        window->Invalidate();
}

}  // namespace pavane
