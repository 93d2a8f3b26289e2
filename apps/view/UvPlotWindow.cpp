#include "apps/view/UvPlotWindow.h"

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
    if (!GetPlot()) {
        A2DAxis* const axis = newUvAxis();
        graph_ = new UvPlotGraph(axis);
        model_ = new UvModelGraph(axis);
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
    graph_->SetHeader(file_ && points_ ? uvPlotHeader(*file_, *points_) : CString());
    if (IsRangeZoomed() && !all)
        return ContentChanged();
    DataGrew();
}

void UvPlotWindow::ShowModel(const AComponents& model)
{
    if (!model_ || !points_)
        return;
    model_->compute(model,
                    model.count() > 0 ? points_->places() : std::vector<UvPlotPoints::Place>());
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

void UvPlotWindow::OnLButtonUp(unsigned flags, CPoint point)
{
    const CPoint pressed = std::exchange(pressed_, CPoint(-1, -1));
    const HWND self = GetSafeHwnd();
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
