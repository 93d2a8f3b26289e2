#include "pavane/axes/windows/APlotWnd.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/windows/plot_directions.h"
#include "pavane/images/palette_followers.h"
#include "platform/messages.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// Pictures keep the palette that they were made with; a window shows the one that is chosen.
class FigurePalette : public PaletteFollower
{
public:
    explicit FigurePalette(const MapFigure& figure) : figure_(figure) {}
    void paletteChanged() override { figure_.followModule(); }

private:
    const MapFigure& figure_;
};

}  // namespace

APlotWnd::APlotWnd() : palette_(std::make_unique<FigurePalette>(figure_))
{
    SetFlag(windowNoWaitCursor, 1);
}

APlotWnd::~APlotWnd()
{
    leaveViews();
    endDrags();
    if (ownsAxis_)
        delete axis_;
}

const char* APlotWnd::GetWndClassName() { return "APlotWnd"; }
int APlotWnd::GetAWindowType() { return 1; }
void APlotWnd::OnStatus(const AxisStatus&) {}
void APlotWnd::OnRangeChanged() {}
void APlotWnd::drawIntoPicture(CDC&) {}
int APlotWnd::isBare() const { return !band_.isGoing() && linkedCell_.x < 0; }

int APlotWnd::IsRangeZoomed() const { return axis_ && isViewZoomed(); }

int APlotWnd::giveUpDrag()
{
    const int used = pan_.going || band_.isGoing();
    endPan();
    dropBand();
    return used;
}

void APlotWnd::endPan()
{
    if (!pan_.going)
        return;
    pan_.going = 0;
    endGesture();
    if (GetSafeHwnd() && GetCapture() == this)
        ReleaseCapture();
}

void APlotWnd::dropBand()
{
    const CRect frame = band_.frame();
    band_.end();
    if (!frame.IsRectEmpty() && GetSafeHwnd())
        InvalidateRect(frame);
}

void APlotWnd::endDrags()
{
    if (presses_ > 0 && GetSafeHwnd() && GetCapture() == this)
        ReleaseCapture();
    endPan();
    dropBand();
}

void APlotWnd::dropAxis()
{
    if (axis_ && ownsAxis_ && presses_ > 0)
        retired_.emplace_back(axis_);  // until the press that is ending has returned
    else if (axis_ && ownsAxis_)
        delete axis_;
    axis_ = nullptr;
}

void APlotWnd::SetPlot(ABAxis* axis, int owned)
{
    if (axis == axis_)
        return;
    views_.clear();
    endDrags();
    plotGoes();
    dropAxis();
    axis_ = axis;
    ownsAxis_ = owned;
    figure_.setAxis(axis);
    figure_.followModule();
    view_.forget();
    plotCame();
    ContentChanged();
}

void APlotWnd::DataChanged()
{
    if (!axis_)
        return;
    endDrags();
    resetRanges();
    view_.forget();
    views_.forgetRanges();
    plotCame();
    ContentChanged();
}

void APlotWnd::ContentChanged()
{
    picture_.changed();
    Invalidate();
}

void APlotWnd::contentMoved()
{
    picture_.moved();
    ContentChanged();
}

/// While the range is zoomed the plot keeps at least the margins of the window, so that it stands
/// still under the pointer when labels get wider and narrower, and pictures of the window's size
/// show it where the window does.
FigureLayout APlotWnd::layOut(CDC& dc, const CRect& rect) const
{
    const FigureUnits units(dc);
    const CSize size{units.pixels(rect.Width()), units.pixels(rect.Height())};
    const CRect& own = leastRoom_.margins;
    CRect least = own;
    if (marginsFor_ == size && IsRangeZoomed())
        least = CRect(std::max(own.left, margins_.left), std::max(own.top, margins_.top),
                      std::max(own.right, margins_.right), std::max(own.bottom, margins_.bottom));
    return figure_.layOut(dc, rect, least == CRect() ? nullptr : &least);
}

void APlotWnd::layOutWindow(CDC& dc, const CRect& client, FigureLayout& layout)
{
    figure_.followModule();
    layout = layOut(dc, client);
    if (plotMargins(layout, margins_))
        marginsFor_ = client.Size();
    room_ = {layout.margins, layout.barRoom};
}

int APlotWnd::plotMargins(const FigureLayout& layout, CRect& margins) const
{
    if (!layout.isEmpty())
        margins = layout.margins;
    return !layout.isEmpty();
}

void APlotWnd::DrawWindow(CDC& dc, CRect& client, CRect& update)
{
    paintContent(dc, client, update, presses_ == 0 && isBare());
}

void APlotWnd::paintContent(CDC& dc, const CRect& client, const CRect& update, int isBare)
{
    const int ratio =
        picture_.paint(dc, client, update, isBare, [this](CDC& to, const CRect& rect) {
            FigureLayout layout;
            layOutWindow(to, rect, layout);
            figure_.draw(to, layout);
            drawnIn_ = layout.axis;
        });
    if (ratio == 0 || !axis_)
        return;
    if (!view_.isKnown())
        view_.setWhole(axis_->getMinMax());
    plotLaidOut();
    contentDrawn(ratio);
}

void APlotWnd::PrepareContent()
{
    CRect client;
    if (!axis_ || !GetSafeHwnd() || !GetClientRect(client) || client.IsRectEmpty())
        return;
    CClientDC dc(this);
    paintContent(dc, client, CRect(), 0);  // into the copy: it is what shows later
}

void APlotWnd::SetLeastRoom(const PlotRoom& room)
{
    if (room.margins == leastRoom_.margins && room.bar == leastRoom_.bar)
        return;
    leastRoom_ = room;
    figure_.setLeastBarRoom(room.bar);
    ContentChanged();
}

int APlotWnd::patchContent(const std::function<int(CDC& dc, CRect& rect)>& draw)
{
    return axis_ && picture_.patch([&](CDC& dc) {
        CRect rect = drawnIn_;
        const int smooth = dc.SetSmooth(1);  // as the figure is drawn
        const int done = draw(dc, rect);
        dc.SetSmooth(smooth);
        return done;
    });
}

void APlotWnd::ServiceDraw(CDC& dc, CRect&, CRect&) { band_.draw(dc); }

/// The layout belongs to whoever drew last; the pointer needs that of the window. Axes that lay out
/// only while they draw get it back from the caller.
void APlotWnd::restoreLayout()
{
    if (!axis_ || !GetSafeHwnd())
        return;
    CClientDC dc(this);
    CRect client;
    GetClientRect(client);
    FigureLayout layout;
    if (!client.IsRectEmpty())
        layOutWindow(dc, client, layout);
    plotLaidOut();
}

void APlotWnd::DrawPicture(CDC& dc, const CRect& rect)
{
    const CRect plot = axis_ ? axis_->getGraphRect() : CRect();
    const int fontHeight = axis_ ? axis_->getFHeight() : 0;
    pictureComing(1);
    figure_.draw(dc, layOut(dc, rect));
    pictureComing(0);
    if (!axis_)
        return;
    drawIntoPicture(dc);
    axis_->setGraphRect(plot);
    axis_->setFHeight(fontHeight);
    restoreLayout();
}

void APlotWnd::PrintWindow(CDC& dc, CRect& rect, int) { DrawPicture(dc, rect); }

CRect APlotWnd::plotRect() const
{
    if (!axis_)
        return {};
    const CRect& plot = axis_->getGraphRect();
    return {plot.left, plot.top, plot.right + 1, plot.bottom + 1};
}

void APlotWnd::settle()
{
    if (picture_.isStale())
        UpdateWindow();
}

AxisStatus APlotWnd::StatusAt(CPoint pixel)
{
    AxisStatus status;
    if (axis_ && !axis_->getGraphRect().IsRectEmpty() && plotRect().PtInRect(pixel)) {
        status.inPlot = 1;
        status.x = axis_->GPXtoRPX(pixel.x);
        status.y = axis_->GPYtoRPY(pixel.y);
        status.stepX = std::fabs(axis_->GPXtoRPX(pixel.x + 1) - status.x);
        status.stepY = std::fabs(axis_->GPYtoRPY(pixel.y + 1) - status.y);
    }
    return status;
}

void APlotWnd::showStatusAtPointer()
{
    if (!GetSafeHwnd())
        return;
    if (presses_ > 0) {
        pointer_ = GetCursorPos();  // a drag keeps the moves to itself
        ScreenToClient(pointer_);
    }
    tellStatus(pointer_);
}

}  // namespace pavane
