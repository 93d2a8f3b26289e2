#include "pavane/trackers/collections/TrackerCollection.h"

#include "pavane/resources/plot_commands.h"
#include "pavane/trackers/areas/StepLabel.h"
#include "pavane/trackers/shapes/shape_handles.h"
#include "platform/controls.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

/// Zoom steps that the history makes room for at once.
constexpr int historyGrowth = 256;

}  // namespace

TrackerCollection::TrackerCollection() : zoomHistory_(0, 0, historyGrowth) {}

TrackerCollection::~TrackerCollection() { delete drawn_; }

int TrackerCollection::IndexOf(const ATracker* tracker) const
{
    if (!tracker)
        return -1;
    if (tracker == dragged_ && trackerAt(draggedItem_) == tracker)
        return draggedItem_;
    for (int i = 0; i < trackerCount(); ++i)
        if (trackerAt(i) == tracker)
            return i;
    return -1;
}

void TrackerCollection::SetItemActive(int i, int on) { edits_.setActive(i, on); }

int TrackerCollection::GetZoomScaleNo() const
{
    const auto at = std::find(std::begin(zoomFactors), std::end(zoomFactors), zoomScale_);
    return at == std::end(zoomFactors) ? 0 : static_cast<int>(at - std::begin(zoomFactors));
}

void TrackerCollection::SaveRange(CWnd* window, const TMinMax& range)
{
    (void)zoomHistory_.Add(range);
    enableZoomBack(window);
}

void TrackerCollection::ForgetRanges(CWnd* window)
{
    zoomHistory_.Free();
    enableZoomBack(window);
}

void TrackerCollection::BeginMode(CWnd* window, int mode)
{
    const int dropped = workingTracker() != nullptr;
    {
        const Step step(edits_, dropped ? StepLabel("Dropping", -1).text() : nullptr);
        if (dropped)
            changeWorking(nullptr);
        setMode(mode);
    }
    hovering_ = 0;
    if (dropped)
        changed(window);
}

void TrackerCollection::EndMode(CWnd* window, int mode)
{
    CWnd* const bar = GetToolBar(window);
    if (mode == toolZoomOut) {
        if (bar && zoomHistory_.count() == 0)
            (void)bar->SendMessage(TB_ENABLEBUTTON, ID_ZOOM_MINUS, 0);
    } else if (bar) {
        (void)bar->SendMessage(TB_CHECKBUTTON, ID_TRACK_ARROW, 1);
        if (mode == toolZoomIn && zoomHistory_.count() > 0)
            (void)bar->SendMessage(TB_ENABLEBUTTON, ID_ZOOM_MINUS, 1);
    }
    setMode(toolArrow);
    hovering_ = 0;
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
    if (zoomHistory_.count() > 0)
        (void)zoomHistory_.DeleteItems(zoomHistory_.count() - 1, 1);
    enableZoomBack(window);
    ChangeTrackState(window);
}

void TrackerCollection::ChangeActiveTrack(CWnd* window, int i)
{
    if (!trackerAt(i))
        return;
    makeCurrent(i);
    changed(window);
}

void TrackerCollection::FillAreasCB(CWnd* owner)
{
    CComboBox* const list = GetComboBox(owner);
    if (list) {
        list->ResetContent();
        (void)list->SetCurSel(-1);
    }
    enableAreaCommands(owner, 0);
    fillList(owner);
    for (int i = 0; i < trackerCount(); ++i)
        if (trackerAt(i)->IsActive())
            edits_.setCurrent(i);
    showCurrent(owner);
}

void TrackerCollection::EndWorking()
{
    const int count = trackerCount();
    int told = workingTracker() != nullptr;
    endDrag();
    {
        const Step step(edits_, StepLabel("Dropping", -1).text());
        changeWorking(nullptr);
    }
    zoomHistory_.Free();
    hovering_ = 0;
    for (int i = 0; i < count; ++i) {
        told = told || trackerAt(i)->IsActive();
        SetItemActive(i, 0);
    }
    if (told)
        tellOfEdit();
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

void TrackerCollection::adopt(ATracker& tracker)
{
    tracker.SetListener(this);
    tracker.SetDeadZone(deadZone_);
    tracker.SetCatch(vertexCatch_, edgeCatch_);
}

void TrackerCollection::rescale(ATracker& tracker, int fromMapping, int toMapping)
{
    (void)tracker, (void)fromMapping, (void)toMapping;
}

void TrackerCollection::enableAreaCommands(CWnd* window, int on)
{
    CWnd* const bar = GetToolBar(window);
    if (!bar)
        return;
    (void)bar->SendMessage(TB_ENABLEBUTTON, ID_TRACK_DELETE, on);
    (void)bar->SendMessage(TB_ENABLEBUTTON, ID_TRACK_COPY, on);
}

void TrackerCollection::enableZoomBack(CWnd* window)
{
    if (CWnd* const bar = GetToolBar(window))
        (void)bar->SendMessage(TB_ENABLEBUTTON, ID_ZOOM_MINUS, zoomHistory_.count() > 0);
}

/// The lines of the list are numbers only, so that any change of the areas adds or takes lines at
/// its end.
void TrackerCollection::fillList(CWnd* window)
{
    CComboBox* const list = GetComboBox(window);
    if (!list)
        return;
    for (int n = list->GetCount(); n > trackerCount(); --n)
        (void)list->DeleteString(n - 1);
    for (int n = list->GetCount(); n < trackerCount(); ++n)
        (void)list->AddString("Area " + std::to_string(n + 1));
}

void TrackerCollection::showCurrent(CWnd* window)
{
    const ATracker* const current = trackerAt(edits_.current());
    const int on = current && current->IsActive();
    if (CComboBox* const list = GetComboBox(window))
        (void)list->SetCurSel(on ? edits_.current() : -1);
    enableAreaCommands(window, on || workingTracker() || edits_.selectionCount() > 0);
}

/// The tool that undo brought back is checked in the toolbar.
void TrackerCollection::showTool(CWnd* window)
{
    CWnd* const bar = GetToolBar(window);
    const PlotCommand* const command = commandOfTool(mode_);
    if (bar && command)
        (void)bar->SendMessage(TB_CHECKBUTTON, command->id, 1);
}

/// Makes tracker i current and active and the old one inactive; -1 leaves none.
void TrackerCollection::makeCurrent(int i)
{
    if (edits_.current() != i && focusItem_ != i)  // keys go to the area that shows its handles
        focusItem_ = focusHandle_ = -1;
    edits_.makeCurrent(i);
}

/// The area with the focus may have become another shape, with fewer handles, or have gone.
void TrackerCollection::fitFocus()
{
    ShapeValues shape;
    if (focusItem_ < 0)
        return;
    if (!GetShape(focusItem_, shape))
        focusItem_ = focusHandle_ = -1;
    else
        focusHandle_ = std::min(focusHandle_, handleCount(shape) - 1);
}

/// The end of every change: list, toolbar, window, host. The collection may be gone afterwards.
void TrackerCollection::changed(CWnd* window)
{
    fitFocus();
    if (edits_.isInStep())
        return;  // the end of the step tells
    const LifeWatch self(life_);
    const HWND handle = window ? window->GetSafeHwnd() : 0;
    fillList(window);
    showCurrent(window);
    OnChanged();
    if (self.alive() && (!handle || CWnd::FromHandle(handle) == window))
        ChangeTrackState(window);
}

}  // namespace pavane
