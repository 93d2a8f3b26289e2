// The panels of visibilities in the data window.
#include "apps/view/data_menu.h"
#include "apps/view/DataWindow.h"
#include "apps/view/direction_dialog.h"
#include "apps/view/means_dialog.h"
#include "tessel/paths.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace pavane
{

namespace
{

/// Panels of a page that look well, in steps.
constexpr int panelSteps[] = {1, 2, 4, 6, 8, 12, 20, 30, mostPanels};

std::string percentOf(const AChartWnd& window)
{
    return std::to_string(static_cast<int>(std::floor(window.ReadDone() * 100))) + " %";
}

}  // namespace

APlotWnd& DataWindow::shownWindow()
{
    AChartWnd* const shown = panels();
    return shown ? static_cast<APlotWnd&>(*shown) : plot_;
}

void DataWindow::showPlot(DataPlot kind)
{
    if (kind == shownPlot_)
        return;  // hidden for a moment it would lose the focus
    const int hadFocus = isPlotActive();
    shownWindow().ShowWindow(SW_HIDE);
    shownPlot_ = kind;
    splitter_.SetPanes(&tabs_, &shownWindow());
    shownWindow().ShowWindow(SW_SHOW);
    if (hadFocus)
        shownWindow().SetFocus();
    CRect client;
    GetClientRect(client);
    layOut(client.Width(), client.Height());
    texts_ = StatusTexts();
    status_.SetTexts(texts_);
}

/// What is marked, as panels; once all baselines are known.
void DataWindow::readPanels()
{
    panelsWait_ = 0;
    if (!data_ || isOfPoints(shownPlot_))
        return panels_.Clear();
    UvObservation& observation = data_->observation();
    if (!observation.isWhole(UvTable::baselines) && observation.isFilling()) {
        panelsWait_ = 1;
        return status_.SetMessage("Looking for baselines");
    }
    std::string error;
    UvMarks marked = marks();
    marked.times = observation.times();
    const BaselineDivision division = {pointView_.colour, pointView_.seconds};
    if (!panels_.Read(shownPlot_, observation, marked, model_, division, error))
        status_.SetMessage(baseNameOf(data_->file()) + ' ' + error);
}

void DataWindow::setPanels(int panels)
{
    panels_.SetPanelsOfPage(panels);
    status_.SetMessage(std::to_string(panels_.GetPanelsOfPage()) + " panels on a page");
}

void DataWindow::askTriangles()
{
    const HWND self = GetSafeHwnd();
    UvMarks marked = marks();
    marked.times = data_->observation().times();
    if (!panels_.AskTriangles(this, data_->observation(), marked) ||
        CWnd::FromHandle(self) != this || !data_)
        return;
    showPlot(DataPlot::closure);
    readPanels();
}

/// Another view of single visibilities, in the colours and means of before, which are read again
/// for it.
void DataWindow::showPoints(UvView view)
{
    view.colour = pointView_.colour;
    view.seconds = pointView_.seconds;
    showPlot(view.kind == UvView::Kind::coverage ? DataPlot::coverage : DataPlot::uvdist);
    if (std::exchange(pointView_, view) == view || !data_)
        return readPanels();
    plotAgain();
}

/// Other colours and means, of all plots that can have them.
void DataWindow::setDivision(UvColour colour, double seconds)
{
    if (pointView_.colour == colour && pointView_.seconds == seconds)
        return;
    pointView_.colour = colour;
    pointView_.seconds = seconds;
    if (!data_)
        return;
    plotAgain();
    if (const std::string why = plotRefusal(shownPlot_, colour, seconds); !why.empty())
        status_.SetMessage("Not here: " + why);
}

/// Proposes the seconds of before.
void DataWindow::askMeansOfPlot()
{
    const HWND self = GetSafeHwnd();
    double seconds = pointView_.seconds;
    if (askMeans(this, seconds) && CWnd::FromHandle(self) == this)
        setDivision(pointView_.colour, seconds);
}

/// Proposes the direction of before.
void DataWindow::askDirectionOfPlot()
{
    const HWND self = GetSafeHwnd();
    double degrees = direction_;
    if (!askDirection(this, degrees) || CWnd::FromHandle(self) != this)
        return;
    direction_ = degrees;
    showPoints({UvView::Kind::projected, degrees});
}

int DataWindow::runPanelCommand(unsigned id)
{
    constexpr unsigned kinds = 6;
    if (id >= idPlotOf && id < idPlotOf + kinds) {
        const auto kind = static_cast<DataPlot>(id - idPlotOf);
        if (isOfPoints(kind))
            return showPoints({kind == DataPlot::coverage ? UvView::Kind::coverage
                                                          : UvView::Kind::distance}),
                   1;
        showPlot(kind);
        return readPanels(), 1;
    }
    constexpr unsigned colours = 5;
    if (id >= idColoursBy && id < idColoursBy + colours)
        return setDivision(static_cast<UvColour>(id - idColoursBy), pointView_.seconds), 1;
    const int panels = panels_.GetPanelsOfPage();
    switch (id) {
    case idNextColours:
        return setDivision(
                   static_cast<UvColour>((static_cast<unsigned>(pointView_.colour) + 1) % colours),
                   pointView_.seconds),
               1;
    case idMeans:
        return askMeansOfPlot(), 1;
    case idNextPanels:
    case idPreviousPanels:
        if (AChartWnd* const shown = this->panels())
            shown->ShowNext(id == idNextPanels ? 1 : -1);
        return 1;
    case idMorePanels:
        return setPanels(
                   *std::upper_bound(std::begin(panelSteps), std::end(panelSteps) - 1, panels)),
               1;
    case idFewerPanels: {
        const int* const at =
            std::lower_bound(std::begin(panelSteps), std::end(panelSteps), panels);
        return setPanels(at == std::begin(panelSteps) ? *at : *(at - 1)), 1;
    }
    case idListShown:
        if (data_ && isOfPoints(shownPlot_))
            plotBoxed(plot_.ShownRange());
        return 1;
    case idDirection:
        return askDirectionOfPlot(), 1;
    case idTriangles:
        return data_ ? askTriangles() : void(), 1;
    }
    return 0;
}

void DataWindow::panelsStatus(const CString& text) { status_.SetMessage(text); }

void DataWindow::panelsRead()
{
    const AChartWnd* const shown = panels();
    if (!shown)
        return;
    if (shown->IsReading())
        status_.SetMessage("Reading, " + percentOf(*shown) + " (Esc stops)");
    else if (shown->IsStopped())
        status_.SetMessage("Stopped at " + percentOf(*shown) + " (View, Go on reading)");
    else
        status_.SetMessage(shown->ReadError().empty()
                               ? std::string()
                               : baseNameOf(data_->file()) + ' ' + shown->ReadError());
}

}  // namespace pavane
