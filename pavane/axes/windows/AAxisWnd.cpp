#include "pavane/axes/windows/AAxisWnd.h"

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ABMapGraph.h"
#include "pavane/axes/square_plot.h"
#include "pavane/axes/windows/AreaOverlay.h"
#include "pavane/resources/resource_ids.h"
#include "pavane/resources/tracker_messages.h"
#include "pavane/resources/window_messages.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/windows/picture_export.h"
#include "platform/controls.h"
#include "platform/message.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// Room around the content and between plot and colour bar, client units; less in tiny windows.
constexpr int widestMargin = 8;
constexpr int barGap = 14;
/// More areas than these take longer to fill than to paint; while so many are dragged, their cells
/// wait for a pause of the pointer (ms).
constexpr std::size_t mostFollowedAtOnce = 1000;
constexpr unsigned restTimer = 2;
constexpr unsigned restPause = 80;
/// A plot narrower than this gives up its colour bar.
constexpr int leastPlotBesideBar = 60;

}  // namespace

AAxisWnd::AAxisWnd() : overlay_(std::make_unique<AreaOverlay>())
{
    SetFlag(windowNoWaitCursor, 1);
    SetTrackers(nullptr, 1);
}

AAxisWnd::~AAxisWnd()
{
    endDrags();
    trackers_->SetHost(nullptr);
    trackers_->SetAxis(nullptr);
    if (ownsTrackers_)
        delete trackers_;
    if (ownsBar_)
        delete colorBar_;
    if (ownsAxis_)
        delete axis_;
}

const char* AAxisWnd::GetWndClassName() { return "AAxisWnd"; }
int AAxisWnd::GetAWindowType() { return 1; }
void AAxisWnd::OnStatus(const AxisStatus&) {}
void AAxisWnd::OnAreasChanged() {}
void AAxisWnd::OnNotice(const CString&) {}
void AAxisWnd::OnRangeChanged() {}

/// A drag reads from the axis and from the collection, so that it ends before either goes.
void AAxisWnd::endDrags()
{
    if (presses_ > 0 && GetSafeHwnd() && GetCapture() == this)
        ReleaseCapture();
    endPan();
}

void AAxisWnd::dropAxis()
{
    overlay_->setMap(nullptr);
    map_ = nullptr;
    SetColorBar(nullptr, 0);
    if (axis_ && ownsAxis_ && presses_ > 0)
        retired_.emplace_back(axis_);  // until the drag that is ending has returned
    else if (axis_ && ownsAxis_)
        delete axis_;
    axis_ = nullptr;
}

void AAxisWnd::SetAxis(A2DAxis* axis, int owned)
{
    if (axis == axis_)
        return;
    endDrags();
    dropAxis();
    axis_ = axis;
    ownsAxis_ = owned;
    hostBorder_ = axis ? axis->getBorderRect() : CRect(-1, -1, -1, -1);
    whole_ = TMinMax();
    trackers_->SetAxis(axis);
    trackers_->ForgetRanges(this);
    ContentChanged();
}

void AAxisWnd::SetMap(ABMapGraph* map)
{
    map_ = map;
    if (map)
        map->setShownOften(1);
    overlay_->setMap(map);
    overlay_->follow(*trackers_);
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
    ContentChanged();
}

void AAxisWnd::SetSquareCells(int on)
{
    square_ = on;
    ContentChanged();
}

void AAxisWnd::SetTrackers(ATrackerArrayInAxis* trackers, int owned)
{
    if (trackers && trackers == trackers_)
        return;
    endDrags();
    if (trackers_) {
        trackers_->SetHost(nullptr);
        trackers_->SetAxis(nullptr);
        if (ownsTrackers_)
            delete trackers_;
    }
    trackers_ = trackers ? trackers : new ATrackerArrayInAxis;
    ownsTrackers_ = trackers ? owned : 1;
    trackers_->SetHost(this);
    trackers_->SetAxis(axis_);
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

void AAxisWnd::ContentChanged()
{
    stale_ = contentStale_ = 1;
    Invalidate();
}

void AAxisWnd::MapValuesChanged()
{
    overlay_->valuesChanged();
    ContentChanged();
    showStatusAtPointer();
}

/// Keeps at least the margins of the last layout while the range is zoomed, so that the plot stands
/// still under the pointer when labels get wider and narrower.
void AAxisWnd::steadyOut(CDC& dc, const CRect& rect)
{
    const int known = marginsFor_ == rect.Size() && IsRangeZoomed();
    CRect border = hostBorder_;
    if (known)
        border =
            CRect(std::max(border.left, margins_.left), std::max(border.top, margins_.top),
                  std::max(border.right, margins_.right), std::max(border.bottom, margins_.bottom));
    axis_->setBorderRect(border);
    axis_->layOut(dc, rect);
    const CRect& plot = axis_->getGraphRect();
    margins_ = CRect(plot.left, plot.top, rect.right - plot.right, rect.bottom - plot.bottom);
    marginsFor_ = rect.Size();
}

/// Places axis and colour bar inside `rect`; `steady` for the window itself.
AAxisWnd::Layout AAxisWnd::layOut(CDC& dc, const CRect& rect, int steady)
{
    Layout layout;
    const int margin = std::min(widestMargin, std::min(rect.Width(), rect.Height()) / 16);
    CRect inner = rect;
    inner.DeflateRect(margin, margin);
    layout.axis = inner;
    axis_->setBorderRect(hostBorder_);
    if (steady)
        steadyOut(dc, inner);
    else
        axis_->layOut(dc, inner);
    if (colorBar_) {
        colorBar_->setFHeight(axis_->getFHeight());
        const int breadth = colorBar_->neededBreadth(dc, axis_->getGraphRect().Height()) + barGap;
        if (axis_->getGraphRect().Width() - breadth >= leastPlotBesideBar) {
            layout.axis.right -= breadth;
            axis_->layOut(dc, layout.axis);
            layout.bar = inner;
        }
    }
    if (square_ && map_)
        squareOut(dc, layout.axis);
    const CRect& plot = axis_->getGraphRect();
    if (colorBar_)
        colorBar_->setFHeight(axis_->getFHeight());  // a narrower axis has smaller labels
    if (!layout.bar.IsRectEmpty())
        layout.bar = CRect(plot.right + barGap, plot.top, inner.right, plot.bottom);
    return layout;
}

/// Shrinks the plot until the cells that it shows are square.
void AAxisWnd::squareOut(CDC& dc, const CRect& rect)
{
    if (axis_->getXDirect() == 0 || axis_->getYDirect() == 0)
        return;
    const double stepX = map_->MPXtoRPX(1) - map_->MPXtoRPX(0);
    const double stepY = map_->MPYtoRPY(1) - map_->MPYtoRPY(0);
    // a narrower plot can need a higher header, which leaves less room than was shared out
    constexpr int rounds = 4;
    for (int i = 0; i < rounds; ++i) {
        const TMinMax& range = axis_->getMinMax();
        const CRect plot = axis_->getGraphRect();
        const CRect square = squarePlot(plot, std::fabs((range.xMax - range.xMin) / stepX),
                                        std::fabs((range.yMax - range.yMin) / stepY));
        if (square == plot)
            return;
        axis_->setBorderRect(
            CRect(square.left, square.top, rect.right - square.right, rect.bottom - square.bottom));
        axis_->layOut(dc, rect);
    }
}

void AAxisWnd::drawContent(CDC& dc, const CRect& rect, int steady)
{
    dc.FillSolidRect(rect, RGB(255, 255, 255));
    if (!axis_ || rect.IsRectEmpty())
        return;
    Layout layout = layOut(dc, rect, steady);
    const int smooth = dc.SetSmooth(1);
    axis_->draw(dc, layout.axis);
    if (colorBar_ && !layout.bar.IsRectEmpty())
        colorBar_->draw(dc, layout.bar);
    dc.SetSmooth(smooth);
}

/// Brings the window's picture up to date; 0 when there is none (no size, no memory).
int AAxisWnd::refreshContent(CDC& dc, const CRect& client)
{
    const int fits = content_.bits() && content_.size() == client.Size() &&
                     content_.ratio() == dc.GetPixelRatio();
    if (fits && !contentStale_)
        return 1;
    if (!fits && !content_.CreateCompatibleBitmap(dc, client.Width(), client.Height()))
        return 0;
    CMemoryDC memory(content_);
    drawContent(memory, client, 1);
    contentStale_ = 0;
    contentDrawn(content_.ratio());
    return 1;
}

/// While the range moves below nothing else, the picture goes to the window without a copy of it;
/// who draws over it later gets one. 0 when a copy is needed.
int AAxisWnd::drawAtOnce(CDC& dc, const CRect& client)
{
    if (!moving_ || !stale_ || showCells_ || presses_ > 0 || trackers_->trackerCount() > 0 ||
        trackers_->workingTracker())
        return 0;
    drawContent(dc, client, 1);
    contentDrawn(dc.GetPixelRatio());
    return 1;
}

void AAxisWnd::contentDrawn(int ratio)
{
    stale_ = moving_ = 0;
    ++contentDrawings_;
    if (!axis_)
        return;
    if (whole_ == TMinMax())
        whole_ = axis_->getMinMax();
    trackers_->SetAxis(axis_);
    overlay_->setPlot(axis_->getGraphRect(), ratio);
}

void AAxisWnd::DrawWindow(CDC& dc, CRect& client, CRect& update)
{
    if (drawAtOnce(dc, client))
        return;
    if (!refreshContent(dc, client)) {
        dc.FillSolidRect(client, RGB(255, 255, 255));
        return;
    }
    CMemoryDC memory(content_);
    dc.BitBlt(update.left, update.top, update.Width(), update.Height(), &memory, update.left,
              update.top, SRCCOPY);
}

void AAxisWnd::ServiceDraw(CDC& dc, CRect&, CRect& update)
{
    if (!axis_ || !content_.bits())
        return;
    if (showCells_)
        overlay_->draw(dc, update, content_);
    trackers_->Draw(&dc, this);
}

/// The layout belongs to whoever drew last; mouse and areas need that of the window.
void AAxisWnd::restoreLayout()
{
    if (!axis_ || !GetSafeHwnd())
        return;
    CClientDC dc(this);
    CRect client;
    GetClientRect(client);
    if (!client.IsRectEmpty())
        (void)layOut(dc, client, 1);
    trackers_->SetAxis(axis_);
}

void AAxisWnd::DrawPicture(CDC& dc, const CRect& rect)
{
    drawContent(dc, rect, 0);
    if (areasInPicture_ && axis_) {
        trackers_->SetAxis(axis_);
        DrawAreas(dc);
    }
    restoreLayout();
}

void AAxisWnd::DrawAreas(CDC& dc)
{
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(plotRect());
    const ClippedDrawing clipped(dc);
    for (int i = 0; i < trackers_->trackerCount(); ++i) {
        ATracker& tracker = *trackers_->trackerAt(i);
        const unsigned style = tracker.GetStyle();
        tracker.SetStyle(style & ~static_cast<unsigned>(trackerActive));  // without handles
        tracker.Draw(&dc, this);
        tracker.SetStyle(style);
    }
    dc.RestoreDC(saved);
}

void AAxisWnd::PrintWindow(CDC& dc, CRect& rect, int) { DrawPicture(dc, rect); }

int AAxisWnd::freshPicture(CBitmap& picture)
{
    CRect client;
    GetClientRect(client);
    CClientDC screen(this);
    if (client.IsRectEmpty() ||
        !picture.CreateCompatibleBitmap(screen, client.Width(), client.Height()))
        return 0;
    CMemoryDC memory(picture);
    DrawPicture(memory, client);
    return 1;
}

void AAxisWnd::OnCopyToClipboard()
{
    CBitmap picture;
    int done = freshPicture(picture);
    if (done) {
        CMemoryDC memory(picture);
        done = CopyToClipboard(this, memory, CRect(0, 0, picture.size().cx, picture.size().cy));
    }
    if (!done)
        AfxMessageBox(clipboardRefuses, MB_OK | MB_ICONERROR);
}

void AAxisWnd::OnCopyToBMP()
{
    CString name;
    if (!AskPictureName(name))
        return;
    CBitmap picture;
    int done = freshPicture(picture);
    if (done) {
        CMemoryDC memory(picture);
        done = CopyToBMP(memory, CRect(0, 0, picture.size().cx, picture.size().cy), name);
    }
    if (!done)
        AfxMessageBox(cannotCreateFile + name, MB_OK | MB_ICONERROR);
}

CRect AAxisWnd::plotRect() const
{
    if (!axis_)
        return {};
    const CRect& plot = axis_->getGraphRect();
    return {plot.left, plot.top, plot.right + 1, plot.bottom + 1};
}

/// Paints what is waiting, so that the layout fits what the user points at.
void AAxisWnd::settle()
{
    if (stale_)
        UpdateWindow();
}

void AAxisWnd::SetCellOverlay(int on)
{
    if (showCells_ == (on != 0))
        return;
    showCells_ = on != 0;
    overlay_->follow(*trackers_);
    (void)overlay_->takeChangedPixels();
    InvalidateRect(plotRect());
    if (bar_)
        bar_->SendMessage(TB_CHECKBUTTON, ID_SHOW_CELLS, showCells_);
    showStatusAtPointer();
}

void AAxisWnd::invalidateCells()
{
    const CRect changed = overlay_->takeChangedPixels();
    if (showCells_ && !changed.IsRectEmpty())
        InvalidateRect(changed);
}

void AAxisWnd::areasChanged()
{
    overlay_->follow(*trackers_);
    invalidateCells();
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
    const std::vector<int> moving = several ? trackers_->SelectedItems() : std::vector<int>();
    if (moving.size() > mostFollowedAtOnce)
        SetTimer(restTimer, restPause);
    else if (moving.size() > 1)
        overlay_->followDrag(*trackers_, moving);
    else
        overlay_->followDrag(*trackers_, static_cast<const ABTracker&>(tracker));
    invalidateCells();
    showStatusAtPointer();
}

/// Cells of very many areas follow when the pointer rests.
void AAxisWnd::OnTimer(unsigned id)
{
    if (id != restTimer)
        return OnGestureTimer(id);
    KillTimer(restTimer);
    if (presses_ == 0)
        return;
    overlay_->followDrag(*trackers_, trackers_->SelectedItems());
    invalidateCells();
    showStatusAtPointer();
}

AxisStatus AAxisWnd::StatusAt(CPoint pixel)
{
    AxisStatus status;
    if (axis_ && !axis_->getGraphRect().IsRectEmpty() && plotRect().PtInRect(pixel)) {
        status.inPlot = 1;
        status.x = axis_->GPXtoRPX(pixel.x);
        status.y = axis_->GPYtoRPY(pixel.y);
        status.stepX = std::fabs(axis_->GPXtoRPX(pixel.x + 1) - status.x);
        status.stepY = std::fabs(axis_->GPYtoRPY(pixel.y + 1) - status.y);
    }
    if (!map_)
        return status;
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
    if (trackers_->trackerCount() > 0 || trackers_->workingTracker() || presses_ > 0) {
        const CellSum sum = overlay_->total();
        status.hasAreas = 1;
        status.cells = sum.cells;
        status.sum = sum.sum;
    }
    return status;
}

void AAxisWnd::showStatus(CPoint pixel)
{
    if (GetSafeHwnd())
        OnStatus(StatusAt(pixel));
}

void AAxisWnd::showStatusAtPointer()
{
    if (presses_ > 0 && GetSafeHwnd()) {
        pointer_ = GetCursorPos();  // a drag keeps the moves to itself
        ScreenToClient(pointer_);
    }
    showStatus(pointer_);
}

}  // namespace pavane
