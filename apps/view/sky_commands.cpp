// What the window does with positions on the sky: the grid, going to a position, copying one, the
// header.
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "apps/view/sky_dialogs.h"
#include "pavane/axes/A2DAxis.h"
#include "platform/clipboard.h"
#include "platform/message.h"
#include "tessel/fits_header_text.h"
#include "tessel/paths.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// Of the menu behind the frame of the map itself.
constexpr SkyFrame frames[] = {{SkyFrame::System::icrs, 2000},
                               {SkyFrame::System::fk5, 2000},
                               {SkyFrame::System::fk4, 1950},
                               {SkyFrame::System::galactic, 2000},
                               {SkyFrame::System::ecliptic, 2000}};
constexpr unsigned frameCount = std::size(frames);
constexpr unsigned labelCount = 4;
constexpr unsigned shownCount = 3;

/// How much closer a map is shown of which all was shown before.
constexpr double closer = 4;

/// The pair moved to have `centre` in its middle, as far as it stays in `whole`.
void centreOn(double centre, double wholeMin, double wholeMax, double span, double& min,
              double& max)
{
    min = std::clamp(centre - span / 2, wholeMin, std::max(wholeMax - span, wholeMin));
    max = std::min(min + span, wholeMax);
}

}  // namespace

int MainWindow::runSkyCommand(unsigned id)
{
    SkyGridWish& wish = options_.skyGrid;
    if (id == idSkyGrid)
        wish.shown =
            static_cast<SkyGridShown>((static_cast<unsigned>(wish.shown) + 1) % shownCount);
    else if (id >= idSkyShown && id < idSkyShown + shownCount)
        wish.shown = static_cast<SkyGridShown>(id - idSkyShown);
    else if (id >= idSkyFrame && id <= idSkyFrame + frameCount) {
        wish.hasFrame = id != idSkyFrame;
        wish.frame = wish.hasFrame ? frames[id - idSkyFrame - 1] : SkyFrame();
    } else if (id >= idSkyLabels && id < idSkyLabels + labelCount)
        wish.labels = static_cast<SkyLabels>(id - idSkyLabels);
    else if (id == idGoToPosition)
        return goToPosition(), 1;
    else if (id == idCopyPosition)
        return copyPosition(), 1;
    else if (id == idHeaderCards)
        return showHeader(), 1;
    else
        return 0;
    // to choose a frame or labels is to want to see them
    if (id >= idSkyFrame && wish.shown == SkyGridShown::none)
        wish.shown = SkyGridShown::lines;
    if (!map_)
        return 1;
    if (!map_->showGrid(wish)) {
        status_.SetMessage("The map has no place on the sky: there is no grid");
        return 1;
    }
    view().ContentChanged();
    for (int i = 0; i < maps_.count(); ++i)
        if (i != maps_.current() && documentOf(i) && documentOf(i)->showGrid(wish))
            viewOf(i).ContentChanged();
    prepareLater();
    static constexpr const char* told[] = {"Sky grid: off", "Sky grid: ticks", "Sky grid: lines"};
    const SkyFrame& frame = gridFrame();
    status_.SetMessage(told[static_cast<std::size_t>(wish.shown)] +
                       (wish.shown == SkyGridShown::none ? CString() : ", " + nameOf(frame)));
    return 1;
}

void MainWindow::showSkyCommands(CMenu& popup)
{
    const SkyGridWish& wish = options_.skyGrid;
    const int onSky = map_ && map_->sky().isSet();
    const auto* const known = std::find(std::begin(frames), std::end(frames), wish.frame);
    const auto frame = wish.hasFrame ? static_cast<unsigned>(known - std::begin(frames)) + 1 : 0;
    for (CMenu::Line& line : popup.lines()) {
        if (line.id < idSkyGrid || line.id > idHeaderCards)
            continue;
        line.enabled = line.id == idHeaderCards ? map_ != nullptr : onSky;
        line.checked = line.id == idSkyShown + static_cast<unsigned>(wish.shown) ||
                       line.id == idSkyFrame + frame ||
                       line.id == idSkyLabels + static_cast<unsigned>(wish.labels);
    }
}

/// That of the grid while there is one, else that of the map.
SkyFrame MainWindow::gridFrame() const
{
    const SkyGridWish& wish = options_.skyGrid;
    return wish.hasFrame && wish.shown != SkyGridShown::none ? wish.frame : map_->sky().skyFrame();
}

void MainWindow::goToPosition()
{
    if (!map_ || !map_->sky().isSet()) {
        status_.SetMessage("The map has no place on the sky");
        return;
    }
    SkyPosition position;
    if (!askPosition(this, gridFrame(), position))
        return;
    std::string text;
    if (goTo(position, text))
        status_.SetMessage(text);
    else
        AfxMessageBox(text, MB_ICONWARNING);
}

/// On a map of the sky. Non-zero when it lies there; `text` tells either way.
int MainWindow::goTo(const SkyPosition& position, std::string& text)
{
    double column = 0;
    double row = 0;
    const AMatrix<float>& cells = map_->inputs().map.cells;
    text = skyPositionText(position, cellDegrees());
    if (!map_->sky().toPixel(position.longitude, position.latitude, position.frame, column, row) ||
        !(column >= -0.5 && column <= cells.columns() - 0.5 && row >= -0.5 &&
          row <= cells.rows() - 0.5)) {
        text += " does not lie on the map";
        return 0;
    }
    const MapFrame& frame = map_->inputs().frame;
    const TMinMax& whole = view().GetWholeRange();
    TMinMax range = map_->axis().getMinMax();
    const double part = view().IsRangeZoomed() ? 1 : 1 / closer;
    centreOn(frame.xFirst + column * frame.xStep, whole.xMin, whole.xMax,
             (range.xMax - range.xMin) * part, range.xMin, range.xMax);
    centreOn(frame.yFirst + row * frame.yStep, whole.yMin, whole.yMax,
             (range.yMax - range.yMin) * part, range.yMin, range.yMax);
    view().BeginView();
    view().SetNewMinMax(range);
    view().EndView();
    const auto nearest = [](double cell, int count) {
        return std::clamp(static_cast<int>(std::lround(cell)), 0, count - 1);
    };
    view().SetLinkedCell(nearest(row, cells.rows()), nearest(column, cells.columns()));
    text += ": pixel " + std::to_string(nearest(column, cells.columns()) + 1) + ", " +
            std::to_string(nearest(row, cells.rows()) + 1);
    return 1;
}

double MainWindow::cellDegrees() const
{
    const MapFrame& frame = map_->inputs().frame;
    constexpr double arcseconds = 3600;
    return std::fabs(frame.yStep) * frame.arcseconds / arcseconds;
}

/// Where the pointer was over the map last; 0 for nowhere on the sky.
int MainWindow::pointedPosition(const SkyFrame& frame, SkyPosition& position) const
{
    if (!map_ || !pointed_.inPlot)
        return 0;
    const MapFrame& cells = map_->inputs().frame;
    position.frame = frame;
    return map_->sky().toSky((pointed_.x - cells.xFirst) / cells.xStep,
                             (pointed_.y - cells.yFirst) / cells.yStep, frame, position.longitude,
                             position.latitude);
}

void MainWindow::copyPosition()
{
    SkyPosition position;
    if (!map_ || !pointedPosition(gridFrame(), position)) {
        status_.SetMessage("No position is pointed at");
        return;
    }
    const CString text = skyPositionText(position, cellDegrees());
    status_.SetMessage(SetClipboardText(text) ? text + " is on the clipboard"
                                              : "The clipboard refuses the position");
}

void MainWindow::showHeader()
{
    if (!map_)
        return;
    std::vector<std::string> lines;
    std::string error;
    if (!readFitsHeaderText(map_->file(), lines, error)) {
        AfxMessageBox(map_->file() + ": " + error, MB_ICONERROR);
        return;
    }
    showLines(this, "Header of " + baseNameOf(map_->file()),
              std::to_string(lines.size()) + " lines; Ctrl+F finds, F3 finds again", lines);
}

}  // namespace pavane
