#include "apps/view/UvPlotWindow.h"

#include "apps/view/UvLegendGraph.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace pavane
{

namespace
{

/// Pixels that the pointer may tremble in a click.
constexpr int clickTremble = 3;

}  // namespace

void UvPlotWindow::ShowPoints(const AUVXFile* file, const UvPlotPoints* points, int keepRange)
{
    file_ = file;
    points_ = points;
    const UvView view = points ? points->view() : view_;
    const int isSame = GetPlot() && view.hasAxesOf(view_);
    view_ = view;
    if (!isSame) {
        A2DAxis* const axis = newUvAxis(view);
        figure().setEqualUnits(view.kind == UvView::Kind::coverage);
        graph_ = new UvPlotGraph(axis);
        model_ = new UvModelGraph(axis);
        (void)new UvLegendGraph(axis, *graph_);
        SetPlot(axis, 1);
    }
    graph_->SetPoints(points);
    graph_->SetChosen(nullptr);
    if (!keepRange)
        DataChanged();
    PointsRead(1);
}

void UvPlotWindow::PointsRead(int all)
{
    if (!graph_)
        return;
    graph_->SetKeyOf(file_);
    graph_->SetHeader(file_ && points_ ? uvPlotHeader(*file_, *points_) : CString());
    if (IsRangeZoomed() && !all)
        return ContentChanged();
    DataGrew();
}

void UvPlotWindow::ShowModel(const AComponents& model)
{
    if (!model_ || !points_)
        return;
    model_->compute(
        model, model.count() > 0 ? points_->places() : std::vector<UvPlotPoints::Place>(), view_);
    ContentChanged();
}

void UvPlotWindow::ChoosePoint(const UvPlotPoint* point)
{
    if (!graph_)
        return;
    graph_->SetChosen(point);
    ContentChanged();
}

void UvPlotWindow::OnStatus(const AxisStatus& status)
{
    APlotWnd::OnStatus(status);
    owner_.plotStatus(status);
}

int UvPlotWindow::takePress(unsigned flags, CPoint point)
{
    pressed_ = point;
    return APlotWnd::takePress(flags, point);
}

/// What lies between two places of the window, as far as it is in the plot.
UvRange UvPlotWindow::rangeOf(CPoint one, CPoint other)
{
    settle();
    const CRect plot = plotRect();
    ABAxis* const axis = GetPlot();
    if (!axis || plot.IsRectEmpty())
        return {};
    const auto within = [&plot](CPoint at) {
        return CPoint(std::clamp(at.x, plot.left, plot.right - 1),
                      std::clamp(at.y, plot.top, plot.bottom - 1));
    };
    const CPoint from = within(one);
    const CPoint to = within(other);
    const auto [leastX, greatestX] = std::minmax({axis->GPXtoRPX(from.x), axis->GPXtoRPX(to.x)});
    const auto [leastY, greatestY] = std::minmax({axis->GPYtoRPY(from.y), axis->GPYtoRPY(to.y)});
    return {leastX, greatestX, leastY, greatestY};
}

UvRange UvPlotWindow::ShownRange()
{
    const CRect plot = plotRect();
    return rangeOf(plot.TopLeft(), plot.BottomRight());
}

void UvPlotWindow::OnLButtonUp(unsigned flags, CPoint point)
{
    const CPoint pressed = std::exchange(pressed_, CPoint(-1, -1));
    const HWND self = GetSafeHwnd();
    if ((flags & MK_SHIFT) && pressed.x >= 0 && GetCapture() == this &&
        std::abs(point.x - pressed.x) > clickTremble &&
        std::abs(point.y - pressed.y) > clickTremble) {
        const UvRange range = rangeOf(pressed, point);
        (void)giveUpDrag();
        APlotWnd::OnLButtonUp(flags, point);  // which lets go of the pointer
        if (CWnd::FromHandle(self) == this)
            owner_.plotBoxed(range);
        return;
    }
    APlotWnd::OnLButtonUp(flags, point);
    if (CWnd::FromHandle(self) != this || pressed.x < 0 ||
        std::abs(point.x - pressed.x) > clickTremble ||
        std::abs(point.y - pressed.y) > clickTremble)
        return;
    if (const AxisStatus status = StatusAt(point); status.inPlot)
        owner_.plotClicked(status);
}

/// The pictures of the program are called as in its own menus.
void UvPlotWindow::amMenuParse(CMenu* popup)
{
    APlotWnd::amMenuParse(popup);
    for (CMenu::Line& line : popup->lines())
        if (line.id == ID_COPY_TO_CLIPBOARD)
            line.text = copyPictureText;
        else if (line.id == ID_COPY_TO_BMP)
            line.text = savePictureText;
        else if (line.id == ID_WHOLE_MAP)
            line.text = "&Whole plot\t0";
}

}  // namespace pavane
