#include "pavane/axes/windows/AAxisWnd.h"

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ABMapGraph.h"
#include "pavane/axes/windows/AreaOverlay.h"
#include "pavane/axes/windows/PlayDrag.h"
#include "pavane/resources/resource_ids.h"
#include "pavane/resources/tracker_messages.h"
#include "pavane/resources/window_messages.h"
#include "pavane/trackers/collections/area_outlines.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/windows/picture_export.h"
#include "platform/controls.h"
#include "platform/message.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// More areas than these take longer to fill than to paint; while so many are dragged, their cells
/// wait for a pause of the pointer (ms).
constexpr std::size_t mostFollowedAtOnce = 1000;
constexpr unsigned restTimer = 2;
constexpr unsigned restPause = 80;

}  // namespace

AAxisWnd::AAxisWnd()
    : trackers_(new ATrackerArrayInAxis), ownsTrackers_(1),
      overlay_(std::make_unique<AreaOverlay>()), play_(std::make_unique<PlayDrag>())
{
    trackers_->SetHost(this);
}

AAxisWnd::~AAxisWnd()
{
    leaveViews();
    endDrags();
    trackers_->SetHost(nullptr);
    trackers_->SetAxis(nullptr);
    if (ownsTrackers_)
        delete trackers_;
    if (ownsBar_)
        delete colorBar_;
}

const char* AAxisWnd::GetWndClassName() { return "AAxisWnd"; }
void AAxisWnd::OnAreasChanged() {}
void AAxisWnd::OnNotice(const CString&) {}

void AAxisWnd::SetAxis(A2DAxis* axis, int owned) { SetPlot(axis, owned); }

void AAxisWnd::plotGoes()
{
    endPlay(0);
    SetViewPart(ViewPart::colours, nullptr, nullptr);
    overlay_->setMap(nullptr);
    map_ = nullptr;
    SetColorBar(nullptr, 0);
}

void AAxisWnd::plotCame()
{
    axis_ = dynamic_cast<A2DAxis*>(GetPlot());
    trackers_->SetAxis(GetPlot());
    trackers_->ForgetRanges(this);
}

void AAxisWnd::SetMap(ABMapGraph* map)
{
    endPlay(0);
    map_ = map;
    figure().setMap(map);
    if (map)
        map->setShownOften(1);
    watchColors();
    overlay_->setMap(map);
    overlay_->note();
    ContentChanged();
}

void AAxisWnd::SetColorBar(AAxisColorOP* bar, int owned)
{
    if (bar == colorBar_)
        return;
    if (ownsBar_)
        delete colorBar_;
    colorBar_ = bar;
    ownsBar_ = owned;
    figure().setBar(bar);
    ContentChanged();
}

void AAxisWnd::SetSquareCells(int on)
{
    figure().setSquareCells(on);
    ContentChanged();
}

void AAxisWnd::SetTrackers(ATrackerArrayInAxis* trackers, int owned)
{
    if (trackers && trackers == trackers_)
        return;
    endDrags();
    trackers_->SetHost(nullptr);
    trackers_->SetAxis(nullptr);
    if (ownsTrackers_)
        delete trackers_;
    trackers_ = trackers ? trackers : new ATrackerArrayInAxis;
    ownsTrackers_ = trackers ? owned : 1;
    trackers_->SetHost(this);
    trackers_->SetAxis(GetPlot());
    trackers_->FillAreasCB(this);
    Invalidate();
    areasChanged();  // handlers may end the window
}

void AAxisWnd::SetComboBox(CComboBox* list)
{
    list_ = list;
    trackers_->FillAreasCB(this);
}

void AAxisWnd::SetToolBar(CToolBar* bar)
{
    bar_ = bar;
    enableCommands();
    trackers_->FillAreasCB(this);
}

CWnd* AAxisWnd::trackerToolBar() { return bar_; }

void AAxisWnd::MapValuesChanged()
{
    overlay_->valuesChanged();
    ContentChanged();
    showStatusAtPointer();
}

/// Only then the picture may go to the window without a copy.
int AAxisWnd::isBare() const
{
    int row = 0, column = 0;
    return !GetLinkedCell(row, column) && !showCells_ && trackers_->trackerCount() == 0 &&
           !trackers_->workingTracker();
}

void AAxisWnd::plotLaidOut() { trackers_->SetAxis(GetPlot()); }

void AAxisWnd::contentDrawn(int ratio) { overlay_->setPlot(GetPlot()->getGraphRect(), ratio); }

void AAxisWnd::ServiceDraw(CDC& dc, CRect&, CRect& update)
{
    if (!GetPlot() || !contentPixels().bits())
        return;
    followAreas();  // nobody may have asked for the status
    if (showCells_)
        overlay_->draw(dc, update, contentPixels());
    trackers_->Draw(&dc, this);
    drawLinkedCell(dc);
}

/// About the cell, and no smaller than can be seen.
int AAxisWnd::cellMark(int row, int column, CRect& mark)
{
    constexpr double leastReach = 7;
    if (!map_ || row >= map_->cells().rows() || column >= map_->cells().columns())
        return 0;
    const CPointF at = axis_->RPtoGPF(map_->MPXtoRPX(column), map_->MPYtoRPY(row));
    const CPointF corner = axis_->RPtoGPF(map_->MPXtoRPX(column + 0.5), map_->MPYtoRPY(row + 0.5));
    const double reach =
        std::max({leastReach, 1.5 * std::fabs(corner.x - at.x), 1.5 * std::fabs(corner.y - at.y)});
    if (!plotRect().PtInRect({truncated(at.x), truncated(at.y)}) || !(reach < plotRect().Width()))
        return 0;
    mark = CRect(truncated(at.x - reach), truncated(at.y - reach), truncated(at.x + reach) + 1,
                 truncated(at.y + reach) + 1);
    return 1;
}

void AAxisWnd::drawIntoPicture(CDC& dc)
{
    if (areasInPicture_)
        DrawAreas(dc);
}

void AAxisWnd::DrawAreas(CDC& dc)
{
    if (GetPlot())
        drawAreaOutlines(dc, *GetPlot(), outlinesOf(*trackers_));
}

void AAxisWnd::SetCellOverlay(int on)
{
    if (showCells_ == (on != 0))
        return;
    showCells_ = on != 0;
    followAreas();
    InvalidateRect(plotRect());
    if (bar_)
        bar_->SendMessage(TB_CHECKBUTTON, ID_SHOW_CELLS, showCells_);
    showStatusAtPointer();
}

/// The cells become those of the areas as they are, and what that changes is painted. Edits only
/// note that there is something to follow: whoever tells the status or paints comes here.
void AAxisWnd::followAreas()
{
    overlay_->catchUp(*trackers_);
    const CRect changed = overlay_->takeChangedPixels();
    if (showCells_ && !changed.IsRectEmpty())
        InvalidateRect(changed);
}

void AAxisWnd::areasChanged()
{
    overlay_->note();
    enableCommands();
    const HWND self = GetSafeHwnd();
    const auto lives = [&] { return !self || CWnd::FromHandle(self) == this; };
    showStatusAtPointer();
    if (lives())
        tellOfLostSteps();
    if (lives())
        OnAreasChanged();
}

void AAxisWnd::tellOfLostSteps()
{
    const EditRecorded loss = trackers_->history().takeLoss();
    if (loss == editGaveUpOld || loss == editLost || loss == editUndoneInPart)
        OnNotice(loss == editLost        ? allStepsGone
                 : loss == editGaveUpOld ? oldStepsGone
                                         : undoneInPart);
}

void AAxisWnd::areaChanging(ATracker& tracker)
{
    const int several = trackers_->IsSelected(trackers_->IndexOf(&tracker));
    if (several && trackers_->SelectedItems().size() > mostFollowedAtOnce)
        SetTimer(restTimer, restPause);
    else
        overlay_->noteDrag(static_cast<const ABTracker&>(tracker), several);
    showStatusAtPointer();
}

/// Cells of very many areas follow when the pointer rests.
void AAxisWnd::OnTimer(unsigned id)
{
    if (id != restTimer)
        return APlotWnd::OnTimer(id);
    KillTimer(restTimer);
    if (presses() == 0)
        return;
    overlay_->followDrag(*trackers_, trackers_->SelectedItems());
    followAreas();
    showStatusAtPointer();
}

AxisStatus AAxisWnd::StatusAt(CPoint pixel)
{
    AxisStatus status = APlotWnd::StatusAt(pixel);
    if (!map_)
        return status;
    followAreas();
    if (status.inPlot) {
        const double column = std::floor(map_->RPXtoMPX(status.x) + 0.5);
        const double row = std::floor(map_->RPYtoMPY(status.y) + 0.5);
        if (column >= 0 && row >= 0 && column < map_->cells().columns() &&
            row < map_->cells().rows()) {
            status.inMap = 1;
            status.column = static_cast<int>(column);
            status.row = static_cast<int>(row);
            status.value = map_->cells().cell(status.row, status.column);
        }
    }
    if (trackers_->trackerCount() > 0 || trackers_->workingTracker() || presses() > 0) {
        const CellSum sum = overlay_->total();
        status.hasAreas = 1;
        status.cells = sum.cells;
        status.sum = sum.sum;
    }
    return status;
}

void AAxisWnd::rangeIsNew()
{
    trackers_->ForgetBoxes();
    enableCommands();
}

APoint<double> AAxisWnd::cellStep() const
{
    if (!map_)
        return {0, 0};
    return {std::fabs(map_->MPXtoRPX(1) - map_->MPXtoRPX(0)),
            std::fabs(map_->MPYtoRPY(1) - map_->MPYtoRPY(0))};
}

void AAxisWnd::saveRange(const TMinMax& shown) { trackers_->SaveRange(this, shown); }
void AAxisWnd::goBack() { trackers_->ZoomBack(this); }
int AAxisWnd::canGoBack() const { return zoomSteps() > 0; }
int AAxisWnd::zoomSteps() const { return trackers_->zoomHistory().count(); }
void AAxisWnd::dropZoomStep() { trackers_->DropRange(this); }

}  // namespace pavane
