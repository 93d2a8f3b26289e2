#include "pavane/axes/windows/ASurfaceWnd.h"

#include "pavane/axes/box/A2_3D2ZAxis.h"
#include "pavane/axes/box/ASurfaceGraph.h"
#include "pavane/axes/box/SurfaceGrid.h"
#include "pavane/resources/resource_ids.h"
#include "platform/messages.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pavane
{
namespace
{

/// Degrees for a pixel of a drag, for an arrow, and for one with Shift.
constexpr double turnOfPixel = 0.5;
constexpr double turnOfArrow = 5;
constexpr double turnOfShiftArrow = 1;
/// Growth of one press of Ctrl+Up, of plus, of a notch of the wheel.
constexpr double heightOfKey = 1.1;
constexpr double zoomOfKey = 1.5;
constexpr double zoomOfNotch = 1.25;
/// After so many milliseconds of rest the exact picture follows.
constexpr unsigned restTimer = 31;
constexpr unsigned restPause = 120;
/// Pixels of the mark of a cell.
constexpr int markReach = 7;

ViewValues valuesOf(const BoxView& view)
{
    return {view.azimuth(), view.elevation(), view.obliqueAngle(), view.obliqueRatio(),
            view.height(),  view.zoom(),      view.pan().x,        view.pan().y};
}

void setValues(BoxView& view, const ViewValues& values)
{
    if (values.size() < 8)
        return;
    view.setView(values[0], values[1]);
    if (values[3] > 0)
        view.setOblique(values[2], values[3]);
    view.setHeight(values[4]);
    view.setZoom(values[5]);
    view.setPan(values[6], values[7]);
}

const ASurfaceGraph* firstSurface(const A2_3DAxis& box)
{
    for (int i = 0; i < box.childs().count(); ++i)
        if (const auto* const graph = dynamic_cast<const ASurfaceGraph*>(box.childs()(i)))
            return graph;
    return nullptr;
}

}  // namespace

ASurfaceWnd::ASurfaceWnd()
{
    SetViewPart(
        ViewPart::turn, [this] { return box_ ? valuesOf(box_->view()) : ViewValues(); },
        [this](const ViewValues& values) {
            if (!box_)
                return;
            BoxView view = box_->view();
            setValues(view, values);
            showNow(view);
        });
}

ASurfaceWnd::~ASurfaceWnd() { leaveViews(); }

const char* ASurfaceWnd::GetWndClassName() { return "ASurfaceWnd"; }

void ASurfaceWnd::SetBox(A2_3DAxis* box, int owned) { SetPlot(box, owned); }

void ASurfaceWnd::plotGoes()
{
    endDrag(1);
    box_ = nullptr;
    APlotWnd::plotGoes();
}

void ASurfaceWnd::plotCame()
{
    A2_3DAxis* const box = dynamic_cast<A2_3DAxis*>(GetPlot());
    if (box && box != box_)
        first_ = box->view();
    box_ = box;
    APlotWnd::plotCame();
}

// Views

void ASurfaceWnd::ShowMoves()
{
    if (!GetSafeHwnd())
        return;
    isMoving_ = 1;
    SetTimer(restTimer, restPause);
}

/// Pictures and pages that are made meanwhile are exact.
void ASurfaceWnd::DrawWindow(CDC& dc, CRect& client, CRect& update)
{
    A2_3DAxis* const box = box_;
    if (box)
        box->SetDraft(isMoving_);
    APlotWnd::DrawWindow(dc, client, update);
    if (box)
        box->SetDraft(0);
}

void ASurfaceWnd::showNow(const BoxView& view)
{
    if (!box_ || valuesOf(view) == valuesOf(box_->view()))
        return;
    box_->setView(view);
    ShowMoves();
    ContentChanged();
    if (GetSafeHwnd())
        NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, GetSafeHwnd(), 0);
}

void ASurfaceWnd::ShowView(const BoxView& view)
{
    if (!box_)
        return;
    BeginViewGesture();
    showNow(view);
    showStatusAtPointer();
}

void ASurfaceWnd::ShowFirstView() { ShowView(first_); }

void ASurfaceWnd::TurnBy(double azimuth, double elevation)
{
    if (!box_)
        return;
    BoxView view = box_->view();
    view.setView(view.azimuth() + azimuth, view.elevation() + elevation);
    ShowView(view);
}

void ASurfaceWnd::GrowHeight(double factor)
{
    if (!box_)
        return;
    BoxView view = box_->view();
    view.setHeight(view.height() * factor);
    ShowView(view);
}

void ASurfaceWnd::OnTimer(unsigned id)
{
    if (id != restTimer)
        return APlotWnd::OnTimer(id);
    KillTimer(restTimer);
    if (std::exchange(isMoving_, 0))
        ContentChanged();
}

// Drags

void ASurfaceWnd::beginDrag(Drag drag, CPoint point)
{
    drag_ = drag;
    dragStart_ = point;
    dragView_ = box_->view();
    BeginView();
}

/// The box follows the pointer: its front goes where the pointer goes.
void ASurfaceWnd::dragTo(unsigned flags, CPoint point)
{
    if (drag_ == Drag::none || !box_)
        return;
    BoxView view = dragView_;
    const int dx = point.x - dragStart_.x;
    const int dy = point.y - dragStart_.y;
    if (drag_ == Drag::turn) {
        if (dx == 0 && dy == 0 && !(flags & MK_SHIFT))
            return;  // a click turns nothing, and leaves an oblique view as it is
        double azimuth = view.azimuth() - dx * turnOfPixel;
        double elevation = view.elevation() + dy * turnOfPixel;
        if (flags & MK_SHIFT) {
            azimuth = BoxView::stepsTo15(azimuth);
            elevation = BoxView::stepsTo15(elevation);
        }
        view.setView(azimuth, elevation);
    } else {
        const CRect room = view.rect();
        view.setPan(view.pan().x + static_cast<double>(dx) / std::max(1, room.Width()),
                    view.pan().y + static_cast<double>(dy) / std::max(1, room.Height()));
    }
    showNow(view);
}

void ASurfaceWnd::endDrag(int takeBack)
{
    if (drag_ == Drag::none)
        return;
    drag_ = Drag::none;
    if (takeBack)
        showNow(dragView_);
    EndView();
    if (GetSafeHwnd() && GetCapture() == this)
        ReleaseCapture();
}

int ASurfaceWnd::takePress(unsigned flags, CPoint point)
{
    if (!box_)
        return APlotWnd::takePress(flags, point);
    endDrag(0);
    if (!box_)
        return 0;
    beginDrag(Drag::turn, point);
    return 0;
}

void ASurfaceWnd::pointerMoved(unsigned flags, CPoint point)
{
    if (drag_ != Drag::none)
        return dragTo(flags, point);
    APlotWnd::pointerMoved(flags, point);
}

void ASurfaceWnd::OnLButtonUp(unsigned flags, CPoint point)
{
    if (drag_ == Drag::turn)
        endDrag(0);
    APlotWnd::OnLButtonUp(flags, point);
}

void ASurfaceWnd::OnLButtonDblClk(unsigned flags, CPoint point)
{
    if (!box_)
        return APlotWnd::OnLButtonDblClk(flags, point);
    endDrag(0);
    ShowFirstView();
}

void ASurfaceWnd::OnMButtonDown(unsigned flags, CPoint point)
{
    if (!box_ || drag_ != Drag::none || GetCapture())
        return APlotWnd::OnMButtonDown(flags, point);
    settle();
    SetFocus();
    if (!box_ || !GetSafeHwnd())  // who is told of the focus may take the box away
        return;
    SetCapture();
    beginDrag(Drag::move, point);
}

void ASurfaceWnd::OnMButtonUp(unsigned flags, CPoint point)
{
    if (drag_ == Drag::move)
        return endDrag(0);
    APlotWnd::OnMButtonUp(flags, point);
}

/// No menu follows the press that takes a turn back.
void ASurfaceWnd::OnRButtonDown(unsigned flags, CPoint point)
{
    if (drag_ == Drag::none)
        return APlotWnd::OnRButtonDown(flags, point);
    endDrag(1);
}

void ASurfaceWnd::OnCaptureChanged(CWnd* next)
{
    if (next != this)
        endDrag(0);
    APlotWnd::OnCaptureChanged(next);
}

void ASurfaceWnd::OnDestroy()
{
    endDrag(0);
    isMoving_ = 0;
    APlotWnd::OnDestroy();
}

int ASurfaceWnd::OnMouseWheel(unsigned flags, int delta, CPoint screen)
{
    if (!box_ || !(flags & MK_CONTROL) || drag_ != Drag::none)
        return APlotWnd::OnMouseWheel(flags, delta, screen);
    settle();
    if (!box_)
        return 1;
    ScreenToClient(screen);
    BoxView view = box_->view();
    view.zoomAt({static_cast<double>(screen.x), static_cast<double>(screen.y)},
                std::pow(zoomOfNotch, static_cast<double>(delta) / WHEEL_DELTA));
    ShowView(view);
    return 1;
}

// Keys

int ASurfaceWnd::takeArrow(int key, bool shift, bool control)
{
    const int across = key == VK_LEFT ? -1 : key == VK_RIGHT ? 1 : 0;
    const int up = key == VK_DOWN ? -1 : key == VK_UP ? 1 : 0;
    if (across == 0 && up == 0)
        return 0;
    if (control && shift)
        return moveMark(across, up);
    if (control && up == 0)
        return 0;
    if (control)
        return GrowHeight(std::pow(heightOfKey, up)), 1;
    const double by = shift ? turnOfShiftArrow : turnOfArrow;
    return TurnBy(across * by, up * by), 1;
}

int ASurfaceWnd::takeKey(int key, bool shift, bool control)
{
    if (!box_ || GetKeyState(VK_MENU) < 0)
        return APlotWnd::takeKey(key, shift, control);
    if (key == VK_ESCAPE && drag_ != Drag::none)
        return endDrag(1), 1;
    if (drag_ != Drag::none)
        return APlotWnd::takeKey(key, shift, control);
    if (takeArrow(key, shift, control))
        return 1;
    BoxView view = box_->view();
    switch (control ? 0 : key) {
    case VK_HOME:
        return ShowFirstView(), 1;
    case 'X':
    case 'Y':
    case 'Z':
        view.lookAlong(key - 'X');
        return ShowView(view), 1;
    case VK_ADD:
    case VK_OEM_PLUS:
    case VK_SUBTRACT:
    case VK_OEM_MINUS: {
        settle();
        if (!box_)
            return 1;
        const CPoint middle = view.rect().CenterPoint();
        const bool closer = key == VK_ADD || key == VK_OEM_PLUS;
        view.zoomAt({static_cast<double>(middle.x), static_cast<double>(middle.y)},
                    closer ? zoomOfKey : 1 / zoomOfKey);
        return ShowView(view), 1;
    }
    default:
        return APlotWnd::takeKey(key, shift, control);
    }
}

// The marked cell

AxisStatus ASurfaceWnd::StatusAt(CPoint pixel)
{
    AxisStatus status;
    BoxCell cell;
    if (!box_ || drag_ != Drag::none || !box_->GPtoCell(pixel, cell))
        return status;
    status.inPlot = status.inMap = 1;
    status.x = cell.x;
    status.y = cell.y;
    const TMinMax& range = box_->getMinMax();
    const CRect& plot = box_->getGraphRect();
    status.stepX = (range.xMax - range.xMin) / std::max(1, plot.Width());
    status.stepY = (range.yMax - range.yMin) / std::max(1, plot.Height());
    status.row = cell.row;
    status.column = cell.column;
    // a second map may have other cells: those of the first are told, as the linked map has them
    const ASurfaceGraph* const first = firstSurface(*box_);
    if (first != cell.graph) {
        const double column = std::round(first->RPXtoMPX(cell.x));
        const double row = std::round(first->RPYtoMPY(cell.y));
        status.inMap = column >= 0 && row >= 0 && column < first->cells().columns() &&
                       row < first->cells().rows();
        status.column = status.inMap ? static_cast<int>(column) : -1;
        status.row = status.inMap ? static_cast<int>(row) : -1;
    }
    status.value = cell.graph->cells().cell(cell.row, cell.column);
    return status;
}

int ASurfaceWnd::cellMark(int row, int column, CRect& mark)
{
    const ASurfaceGraph* const graph = box_ ? firstSurface(*box_) : nullptr;
    if (!graph)
        return 0;
    const float value = graph->cells().cell(row, column);
    if (!std::isfinite(value))
        return 0;
    const SurfaceGrid* const grid = box_->gridOf(*graph);
    if (!grid)
        return 0;
    // on the surface, which its range may cut flat, and which may be but a part of the map
    BoxPoint at = box_->boxPoint(*graph, graph->MPXtoRPX(column), graph->MPYtoRPY(row), value);
    at.s = grid->heightAt(std::round(grid->columnOf(at.p)), std::round(grid->rowOf(at.q)));
    if (!std::isfinite(at.s))
        return 0;
    const CPointF seen = box_->view().project(at);
    if (!(std::fabs(seen.x) < 1e6 && std::fabs(seen.y) < 1e6))
        return 0;
    const int x = static_cast<int>(std::lround(seen.x));
    const int y = static_cast<int>(std::lround(seen.y));
    // behind a peak it is smaller
    const int reach = box_->isSeen(at) ? markReach : markReach / 2;
    mark = CRect(x - reach, y - reach, x + reach + 1, y + reach + 1);
    return 1;
}

int ASurfaceWnd::moveMark(int columns, int rows)
{
    const ASurfaceGraph* const graph = firstSurface(*box_);
    if (!graph)
        return 0;
    int row = graph->cells().rows() / 2, column = graph->cells().columns() / 2;
    if (GetLinkedCell(row, column)) {
        // the way the map is seen, not the way that it counts
        const auto grows = [](double from, double to, int direct) {
            return (to > from) == (direct >= 0) ? 1 : -1;
        };
        column += columns * grows(graph->MPXtoRPX(0), graph->MPXtoRPX(1), box_->getXDirect());
        row += rows * grows(graph->MPYtoRPY(0), graph->MPYtoRPY(1), box_->getYDirect());
    }
    row = std::clamp(row, 0, graph->cells().rows() - 1);
    column = std::clamp(column, 0, graph->cells().columns() - 1);
    SetLinkedCell(row, column);
    tellCell(row, column);
    return 1;
}

void ASurfaceWnd::linkedCellChanged()
{
    if (GetSafeHwnd())
        NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, GetSafeHwnd(), 0);
}

void ASurfaceWnd::ServiceDraw(CDC& dc, CRect& client, CRect& update)
{
    APlotWnd::ServiceDraw(dc, client, update);
    drawLinkedCell(dc);
}

}  // namespace pavane
