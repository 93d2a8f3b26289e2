#include "pavane/trackers/collections/TrackerCollection.h"

#include "pavane/resources/plot_commands.h"
#include "pavane/resources/tracker_messages.h"
#include "pavane/trackers/areas/StepLabel.h"
#include "pavane/trackers/collections/collection_parts.h"
#include "platform/controls.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

using Shows = HandResult::Shows;
using Step = TrackerEdits::Step;

void enableButton(CWnd* bar, unsigned id, int on)
{
    if (bar)
        (void)bar->SendMessage(TB_ENABLEBUTTON, id, on);
}

void enableAreaCommands(CWnd* bar, int on)
{
    enableButton(bar, ID_TRACK_DELETE, on);
    enableButton(bar, ID_TRACK_COPY, on);
}

std::string listLine(const AreaTrackers& areas, int i)
{
    return shownName(areas.at(i)->label(), i) +
           (areas.at(i)->IsNeverClean() ? neverCleanInList : "");
}

/// Lines are numbers but for never-clean areas, so that most changes of the areas add or take lines
/// at its end; from the first that is another text on they are made anew.
void fillList(CComboBox* list, const AreaTrackers& areas)
{
    if (!list)
        return;
    int same = 0;
    while (same < list->GetCount() && same < areas.count() &&
           list->GetLBText(same) == listLine(areas, same))
        ++same;
    for (int n = list->GetCount(); n > same; --n)
        (void)list->DeleteString(n - 1);
    for (int n = same; n < areas.count(); ++n)
        (void)list->AddString(listLine(areas, n));
}

void enableZoomBack(CWnd* bar, const AArray<TMinMax>& history)
{
    enableButton(bar, ID_ZOOM_MINUS, history.count() > 0);
}

/// The current area in list and toolbar.
void showCurrent(const TrackerEdits& edits, CComboBox* list, CWnd* bar)
{
    const AreaEdits& areas = edits.areas();
    const int on = edits.activeTracker() != nullptr;
    if (list)
        (void)list->SetCurSel(on ? areas.current() : -1);
    enableAreaCommands(bar, on || edits.open() || areas.selectionCount() > 0);
}

}  // namespace

TrackerCollection::TrackerCollection() : parts_(std::make_unique<Parts>(*this))
{
    areas_ = &parts_->areas;
}

TrackerCollection::~TrackerCollection() = default;

int TrackerCollection::IndexOf(const ATracker* tracker) const
{
    return parts_->drag.indexOf(tracker);
}

void TrackerCollection::SaveRange(CWnd* window, const TMinMax& range)
{
    (void)zoomHistory_.Add(range);
    enableZoomBack(GetToolBar(window), zoomHistory_);
}

void TrackerCollection::ForgetRanges(CWnd* window)
{
    zoomHistory_.Free();
    enableZoomBack(GetToolBar(window), zoomHistory_);
}

void TrackerCollection::DropRange(CWnd* window)
{
    if (zoomHistory_.count() > 0)
        (void)zoomHistory_.DeleteItems(zoomHistory_.count() - 1, 1);
    enableZoomBack(GetToolBar(window), zoomHistory_);
}

void TrackerCollection::ZoomBack(CWnd* window)
{
    if (zoomHistory_.count() == 0)
        return;
    const LifeWatch self(life_);
    TMinMax range = zoomHistory_(zoomHistory_.count() - 1);
    SetNewMinMax(window, range);
    if (!self.alive())
        return;
    DropRange(window);
    ChangeTrackState(window);
}

int TrackerCollection::mode() const { return parts_->items.tool(); }

int TrackerCollection::OnLButtonDown(CWnd* window, unsigned flags, CPoint p)
{
    AreaHand& hand = parts_->hand;
    if (!takesPress(p) || parts_->drag.isBusy())
        return 0;
    const LifeWatch self(life_);
    const HWND handle = window ? window->GetSafeHwnd() : 0;
    AreaPress press = hand.choose(window, flags, p);
    if (press.chosen)
        changed(window);
    if (press.mayDrag() && (!self.alive() || CWnd::FromHandle(handle) != window))
        return 1;
    hand.open(press, p);
    if (press.opened)
        enableAreaCommands(GetToolBar(window), 1);
    const HandResult result = hand.press(window, p, press);
    if (result.gone)
        return result.used;
    return tell(handle && CWnd::FromHandle(handle) != window ? nullptr : window, result);
}

int TrackerCollection::OnLButtonDblClk(CWnd* window, unsigned flags, CPoint p)
{
    (void)flags;
    if (!takesPress(p) || parts_->drag.isBusy())
        return 0;
    return tell(window, parts_->hand.doubleClick(window, p));
}

int TrackerCollection::OnMouseMove(CWnd* window, unsigned flags, CPoint p)
{
    (void)flags;
    return window && parts_->hand.hover(*window, p);
}

int TrackerCollection::OnSetCursor(CWnd* window, unsigned hitArea, unsigned message)
{
    (void)message;
    if (!window || hitArea != HTCLIENT)
        return 0;
    CPoint p = GetCursorPos();
    window->ScreenToClient(p);
    return takesPress(p) && parts_->hand.chooseCursor(window, hitArea);
}

void TrackerCollection::trackerChanging(ATracker& tracker)
{
    parts_->drag.changed(tracker);
    OnChanging(tracker);
}

int TrackerCollection::trackerBounds(const ATracker& tracker, CRect& bounds)
{
    return parts_->drag.bounds(tracker, bounds);
}

void TrackerCollection::trackerDragEnded(ATracker& tracker, DragEnd end)
{
    parts_->drag.ended(tracker, end);
}

std::string TrackerCollection::KeptState(int i) const { return parts_->drag.keptState(i); }
DragEnd TrackerCollection::lastDragEnd() const { return parts_->drag.lastEnd(); }
ATracker* TrackerCollection::drawnTracker() const { return parts_->drag.drawn(); }
void TrackerCollection::endDrag() { parts_->drag.giveUp(); }

void TrackerCollection::BeginMode(CWnd* window, int mode)
{
    const int dropped = workingTracker() != nullptr;
    {
        const Step step(*areas_, dropped ? StepLabel("Dropping", -1).text() : nullptr);
        if (dropped)
            parts_->edits.changeOpen(nullptr);
        parts_->edits.setTool(mode);
    }
    parts_->eye.endHover();
    if (dropped)
        changed(window);
}

void TrackerCollection::EndMode(CWnd* window, int mode)
{
    CWnd* const bar = GetToolBar(window);
    const int canGoBack = zoomHistory_.count() > 0;
    if (mode != toolZoomOut && bar)
        (void)bar->SendMessage(TB_CHECKBUTTON, ID_TRACK_ARROW, 1);
    if ((mode == toolZoomOut && !canGoBack) || (mode == toolZoomIn && canGoBack))
        enableButton(bar, ID_ZOOM_MINUS, canGoBack);
    parts_->edits.setTool(toolArrow);
    parts_->eye.endHover();
}

void TrackerCollection::EndWorking()
{
    const int count = trackerCount();
    int told = workingTracker() != nullptr;
    endDrag();
    {
        const Step step(*areas_, StepLabel("Dropping", -1).text());
        parts_->edits.changeOpen(nullptr);
    }
    zoomHistory_.Free();
    parts_->eye.endHover();
    for (int i = 0; i < count; ++i) {
        told = told || trackerAt(i)->IsActive();
        SetItemActive(i, 0);
    }
    if (told)
        tellOfEdit();
}

void TrackerCollection::SetDeadZone(int pixels)
{
    deadZone_ = std::max(pixels, 0);
    for (int i = 0; i < trackerCount(); ++i)
        trackerAt(i)->SetDeadZone(deadZone_);
    if (ATracker* const working = workingTracker())
        working->SetDeadZone(deadZone_);
}

void TrackerCollection::SetCatch(int vertex, int edge)
{
    vertexCatch_ = std::max(vertex, 0);
    edgeCatch_ = std::max(edge, 0);
    for (int i = 0; i < trackerCount(); ++i)
        trackerAt(i)->SetCatch(vertexCatch_, edgeCatch_);
    if (ATracker* const working = workingTracker())
        working->SetCatch(vertexCatch_, edgeCatch_);
    ForgetBoxes();
}

int TrackerCollection::TopmostAt(CPoint p, CWnd* window)
{
    return parts_->eye.topmostAt(p, window);
}

void TrackerCollection::ForgetBoxes() { parts_->eye.forget(); }

void TrackerCollection::Draw(CDC* dc, CWnd* window)
{
    const AreaDrag& drag = parts_->drag;
    if (dc)
        parts_->eye.draw(*dc, window, mode(),
                         {*areas_, parts_->focus, drag.drawn(), drag.isOn(), drag.isCrowd()});
}

CComboBox* TrackerCollection::GetComboBox(CWnd* window)
{
    (void)window;
    return nullptr;
}

CWnd* TrackerCollection::GetToolBar(CWnd* window)
{
    (void)window;
    return nullptr;
}

void TrackerCollection::ChangeTrackState(CWnd* window)
{
    if (!window)
        return;
    window->Invalidate();
    window->UpdateWindow();
}

void TrackerCollection::rescale(ATracker& tracker, int fromMapping, int toMapping)
{
    (void)tracker, (void)fromMapping, (void)toMapping;
}

void TrackerCollection::FillAreasCB(CWnd* owner)
{
    CComboBox* const list = GetComboBox(owner);
    if (list) {
        list->ResetContent();
        (void)list->SetCurSel(-1);
    }
    enableAreaCommands(GetToolBar(owner), 0);
    fillList(list, parts_->trackers);
    for (int i = 0; i < trackerCount(); ++i)
        if (trackerAt(i)->IsActive())
            SetCurItemNo(i);
    showCurrent(parts_->edits, list, GetToolBar(owner));
}

/// What a press or a key came to is told, once. The collection may be gone afterwards.
int TrackerCollection::tell(CWnd* window, const HandResult& result)
{
    const LifeWatch self(life_);
    if (result.zooms) {
        TMinMax range = result.range;
        (void)zoomHistory_.Add(shownRange());
        SetNewMinMax(window, range);
        if (self.alive())
            enableZoomBack(GetToolBar(window), zoomHistory_);
        return result.used;
    }
    if (result.doneTool >= 0)
        EndMode(window, result.doneTool);
    if (!self.alive())
        return result.used;
    if (result.shows == Shows::areas)
        changed(window);
    else if (result.shows == Shows::commands)
        showCurrent(parts_->edits, GetComboBox(window), GetToolBar(window));
    else if (result.shows == Shows::picture)
        ChangeTrackState(window);
    return result.used;
}

/// The end of every change: list, toolbar, host, window. The collection may be gone afterwards.
void TrackerCollection::changed(CWnd* window)
{
    parts_->edits.fitFocus();
    if (areas_->isInStep())
        return;  // the end of the step tells
    const LifeWatch self(life_);
    const HWND handle = window ? window->GetSafeHwnd() : 0;
    CComboBox* const list = GetComboBox(window);
    fillList(list, parts_->trackers);
    showCurrent(parts_->edits, list, GetToolBar(window));
    OnChanged();
    if (self.alive() && (!handle || CWnd::FromHandle(handle) == window))
        ChangeTrackState(window);
}

/// Edits without a window: the host repaints what it shows. The collection may be gone afterwards.
void TrackerCollection::tellOfEdit()
{
    parts_->edits.fitFocus();
    if (!areas_->isInStep())
        OnChanged();
}

}  // namespace pavane
