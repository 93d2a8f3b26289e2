// The Measure menu: profiles, spectra, histograms and fits of the map that is open.
#include "apps/view/file_ending.h"
#include "apps/view/long_work.h"
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "apps/view/table_export.h"
#include "apps/view/view_dialogs.h"
#include "pavane/measures/fits/fit_table.h"
#include "pavane/tables/table_dialogs.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "tessel/made_map.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr const char* tsvFilter = "Tables, tabs between cells (*.tsv)|*.tsv|";
constexpr const char* mapsFilter = "Maps (*.fits)|*.fits|";

/// A fitted Gaussian as a component about the reference pixel.
ACompItem componentOf(const FittedGaussian& g)
{
    constexpr double degrees = 180 / std::numbers::pi;
    ACompItem item;
    // the size without the beam, where there is one
    const int hasBeam = std::isfinite(g.deconvolved.major.value) || std::isfinite(g.majorLimit);
    const FittedShape& shape = hasBeam ? g.deconvolved : g.shape;
    const int isPoint = !std::isfinite(shape.major.value);
    item.type = isPoint ? pointComponent : gaussianComponent;
    item.PeakFlux() = g.flux.value;
    item.LargeAxis() = isPoint ? 0 : shape.major.value;
    item.AxisRatio() = isPoint || !std::isfinite(shape.minor.value)
                           ? (isPoint ? 1 : 0)
                           : shape.minor.value / shape.major.value;
    item.Inclination() = isPoint ? 0 : shape.angle.value;
    item.Distance() = std::hypot(g.east.value, g.north.value);
    item.Angle() = std::atan2(g.east.value, g.north.value) * degrees;
    return item;
}

/// What was found, a line each with its error; nothing of what there is not.
std::vector<std::string> linesOf(const GaussianFit& fit, const ViewInputs& inputs,
                                 const SkyCoordinates& sky)
{
    constexpr int digits = 6, errorDigits = 2, placeDigits = 10;
    const FluxScale scale = FluxScale::of(inputs.map.header, inputs.frame);
    std::vector<std::string> lines;
    for (int i = 0; i < static_cast<int>(fit.sources.size()); ++i) {
        if (fit.sources.size() > 1)
            lines.push_back("Gaussian " + std::to_string(i + 1));
        const std::vector<FitNumber> numbers = numbersOf(fit, i, scale, sky, inputs.frame);
        for (std::size_t k = 0; k < numbers.size(); ++k) {
            const FitNumber& number = numbers[k];
            const CString& title = number.column.title;
            // offsets tell the place where there are some
            const int isTold = fit.onSky && title.starts_with("pixel");
            if (!std::isfinite(number.value) || isTold || title == "SNR" ||
                title.find(" error") != std::string::npos)
                continue;
            const int isPlace = number.column.form != NumberColumn::Form::number;
            std::string line = title.substr(0, title.find(" [")) + ": " +
                               valToStr(number.value, isPlace ? placeDigits : digits);
            if (k + 1 < numbers.size() && std::isfinite(numbers[k + 1].value) &&
                numbers[k + 1].column.title.find(" error") != std::string::npos)
                line += " \u00b1 " + valToStr(numbers[k + 1].value, errorDigits);
            lines.push_back(line + (number.unit.empty() ? "" : " " + number.unit));
        }
    }
    if (std::isfinite(fit.background.value))
        lines.push_back("Background: " + valToStr(fit.background.value, digits) + " \u00b1 " +
                        valToStr(fit.background.error, errorDigits) + " " + scale.valueUnit);
    lines.push_back("Rms of what is left: " + valToStr(fit.residual, digits) + " " +
                    scale.valueUnit + ", noise " + valToStr(fit.noise, digits) + ", " +
                    std::to_string(fit.cells) + " cells");
    return lines;
}

}  // namespace

int MainWindow::runMeasureCommand(unsigned id)
{
    if (!map_ || id < idProfile || id > idFitResidual)
        return 0;
    using Kind = CurvePanel::Kind;
    switch (id) {
    case idProfile:
        return showCurves(Kind::profile), 1;
    case idSpectrum:
        return showCurves(Kind::spectrum), 1;
    case idHistogram:
        return showCurves(Kind::histogram), 1;
    case idProfileLine:
        return askProfileLine(), 1;
    case idKeepCurve:
        status_.SetMessage(curves_.Keep() ? "The curve is kept; others lie over it"
                                          : "No curve is kept: there is none, or no room");
        return 1;
    case idForgetCurves:
        return curves_.Forget(), 1;
    case idSaveCurve:
        return saveCurve(), 1;
    case idFitGaussians:
        return fitGaussiansCommand(), 1;
    case idFitResidual:
        return saveResidualCommand(), 1;
    default:
        return 0;
    }
}

/// What of the menus means the line of the profile while that is worked on; 0 for the rest.
int MainWindow::runLineCommand(unsigned id)
{
    LineEdits& edits = curves_.line().edits();
    CString told;
    if (id == idLineCorners) {
        if (curves_.kind() != CurvePanel::Kind::profile)
            showCurves(CurvePanel::Kind::profile);
        view().SetFocus();
        edits.nextFocus(1);
        told = "Tab: next corner, then the line; arrows move it, Ins and Del: a corner more or "
               "less, Esc: done";
    } else if ((id != ID_TRACK_UNDO && id != ID_TRACK_REDO && id != ID_VERTEX_INSERT &&
                id != ID_VERTEX_DELETE && id != idDelete) ||
               !curves_.line().hasFocus() || part() != Part::map) {
        return 0;
    } else if (id == ID_TRACK_UNDO || id == ID_TRACK_REDO) {
        const int isUndo = id == ID_TRACK_UNDO;
        const std::string label = isUndo ? edits.undoLabel() : edits.redoLabel();
        told = (isUndo ? edits.undo() : edits.redo())
                   ? (isUndo ? "Undone: " : "Redone: ") + label
                   : CString("No step of the line is left; Esc leaves it to those of the areas");
    } else if (!(id == ID_VERTEX_INSERT ? edits.insertCorner() : edits.removeCorner())) {
        told = id == ID_VERTEX_INSERT ? "A corner needs the focus (Tab)"
                                      : "A line has two corners at least";
    }
    curves_.LineEdited();
    if (!told.empty())
        status_.SetMessage(told);
    return 1;
}

void MainWindow::showLineCommands(CMenu& popup)
{
    if (!curves_.line().hasFocus() || part() != Part::map)
        return;
    const LineEdits& edits = curves_.line().edits();
    for (CMenu::Line& line : popup.lines())
        if (line.id == ID_TRACK_UNDO || line.id == ID_TRACK_REDO) {
            const int isUndo = line.id == ID_TRACK_UNDO;
            const std::string label = isUndo ? edits.undoLabel() : edits.redoLabel();
            line.text =
                (isUndo ? "&Undo " : "&Redo ") + label + (isUndo ? "\tCtrl+Z" : "\tCtrl+Shift+Z");
            line.enabled = !label.empty();
        } else if (line.id == ID_VERTEX_INSERT || line.id == ID_VERTEX_DELETE)
            line.enabled = !edits.isAllFocused();
        else if (line.id == idDelete) {
            line.text = "&Delete corner of the line\tDel";
            line.enabled = !edits.isAllFocused();
        }
}

void MainWindow::showMeasureCommands(CMenu& popup)
{
    using Kind = CurvePanel::Kind;
    showLineCommands(popup);
    for (CMenu::Line& line : popup.lines())
        if (line.id == idProfile)
            line.checked = curves_.kind() == Kind::profile;
        else if (line.id == idSpectrum) {
            line.enabled = isCube();
            line.checked = curves_.kind() == Kind::spectrum;
        } else if (line.id == idHistogram)
            line.checked = curves_.kind() == Kind::histogram;
        else if (line.id == idKeepCurve || line.id == idSaveCurve)
            line.enabled = curves_.isShown() && !curves_.curve().isEmpty();
        else if (line.id == idForgetCurves)
            line.enabled = curves_.kept() > 0;
        else if (line.id == idFitResidual)
            line.enabled = map_ && !fitted_.sources.empty();
}

/// Shows that kind of curve; nothing when it is the one that shows.
void MainWindow::showCurves(CurvePanel::Kind kind)
{
    const int isOff = kind == curves_.kind();
    if (isOff && part() == Part::curves)
        view().SetFocus();
    curves_.Show(isOff ? CurvePanel::Kind::none : kind);
    CRect client;
    GetClientRect(client);
    layOut(client.Width(), client.Height());
    if (kind == CurvePanel::Kind::profile && !isOff)
        status_.SetMessage("Drag the line or its ends; the menu Measure takes numbers for it");
}

void MainWindow::askProfileLine()
{
    if (curves_.kind() != CurvePanel::Kind::profile)
        showCurves(CurvePanel::Kind::profile);
    CString text = lineText(curves_.line().line());
    ProfileLine line;
    for (CString label = "X1,Y1,X2,Y2,WIDTH in pixels from 1; mean, greatest or sum";;) {
        if (!askText(this, "Line of the profile", label, text))
            return;
        if (readLine(text, line))
            break;
        label = "Not a line. X1,Y1,X2,Y2,WIDTH and mean, greatest or sum (across above 1 wide)";
    }
    curves_.SetLine(line);
}

void MainWindow::saveCurve()
{
    CString name = besideFile(map_->file(), "tsv");
    if (curves_.curve().isEmpty()) {
        status_.SetMessage("There is no curve to save");
        return;
    }
    if (!fnFileDialog1(name, tsvFilter, "Save the numbers of the curve", 0, "tsv",
                       OFN_OVERWRITEPROMPT, this) ||
        name.empty() || !mayWrite(name, 0))
        return;
    std::string error;
    const auto write = [this](std::ostream& stream) {
        return curves_.curve().table.writeTsv(stream);
    };
    if (!writeTextFile(name, write, error)) {
        AfxMessageBox(error, MB_ICONERROR);
        return;
    }
    status_.SetMessage("Saved " + std::to_string(curves_.curve().table.rows()) + " rows in " +
                       name);
}

/// Fits to the current area, or without one to the map.
void MainWindow::fitGaussiansCommand()
{
    const AreaPlace at = map_->place();
    const int current = areas().GetCurItemNo();
    AArray<CPoint> points;
    AreaCells cells;
    CString name = "the whole map";
    int isRead = 0;
    if (current >= 0 && current < areas().count()) {
        name = shownName(areas().Label(current), current);
        isRead = areas().GetAreaCells(current, points, at.columns, at.rows, at.range) &&
                 cellsOfPolygon(points.lpArray(), points.count(), at.rows, at.columns, cells);
    } else
        isRead = cellsOfBox(0, 0, at.rows - 1, at.columns - 1, at.rows, at.columns, cells);
    if (!isRead || !cells.mask.rows()) {
        status_.SetMessage(name + ": no cell of the map lies in it");
        return;
    }
    std::string error;
    ViewOptions wish;
    CString label = "How many, and perhaps ,background and ,beam";
    do {
        if (!askText(this, "Fit Gaussians to " + name, label, fitText_))
            return;
        label = "Not a number from 1 to 50 with ,background or ,beam behind it";
    } while (!parseOptions({"map.fits", "--batch", "--fit", fitText_}, wish, error));
    const ViewInputs& inputs = map_->inputs();
    const double noise = inputs.noise.finiteCells ? inputs.noise.sigma : SourceShape::none;
    NamedFit fit{name, {}};
    int isFound = 0;
    error.clear();
    const auto work = [&](const ProgressFunction& tell) {
        return isFound =
                   fitGaussians(AFloatMatrixAccess(inputs.map.cells), cells, inputs.map.header,
                                inputs.frame, noise, wish.profile.fit, fit.fit, error, tell);
    };
    const HWND self = GetSafeHwnd();
    const int isDone = doLongWork(this, "Fitting " + name, work);
    if (CWnd::FromHandle(self) != this)
        return;
    if (!isDone || !isFound) {
        if (isDone || !error.empty())
            AfxMessageBox(name + ": " + error, MB_ICONWARNING);
        return;
    }
    fitted_ = fit.fit;
    fittedCells_ = cells;
    const int isAdded =
        askAboutLines(this, "Gaussians in " + name, "Values, errors, sizes without the beam:",
                      linesOf(fit.fit, inputs, map_->sky()), "Add them to the components?",
                      "Add") == IDOK;
    if (!isAdded)
        return;
    if (!inputs.frame.onSky) {
        AfxMessageBox("The map is not on the sky: components have no place on it", MB_ICONWARNING);
        return;
    }
    addComponents(fit.fit);
}

/// One step of undo of the components.
void MainWindow::addComponents(const GaussianFit& fit)
{
    if (!model_.session().isOpen())
        model_.Begin();
    EditedComponents& list = model_.session().components();
    list.begin("Fitted Gaussians");
    int isAdded = 1;
    for (const FittedGaussian& g : fit.sources) {
        const ACompItem item = componentOf(g);
        isAdded = isAdded && list.insert(list.list().count(), &item, 1);
    }
    (void)list.end();
    model_.table().Refresh();
    modelChanged();
    status_.SetMessage(isAdded ? countText(static_cast<int>(fit.sources.size()), "component") +
                                     " added, without the beam"
                               : std::string("There is no memory for the components"));
}

void MainWindow::saveResidualCommand()
{
    if (fitted_.sources.empty()) {
        status_.SetMessage("Nothing was fitted to this map yet");
        return;
    }
    const ViewInputs& inputs = map_->inputs();
    CString name = besideFile(map_->file(), "residual.fits");
    if (!fnFileDialog1(name, mapsFilter, "Save the map without the Gaussians", 0, "fits",
                       OFN_OVERWRITEPROMPT, this) ||
        name.empty() || !mayWrite(name, 0))
        return;
    const AMatrix<float>& from = inputs.map.cells;
    AMatrix<float> cells;
    std::string error = "there is no memory for it";
    int isWritten = cells.allocate(from.rows(), from.columns());
    if (isWritten) {
        for (int r = 0; r < from.rows(); ++r)
            std::copy_n(from.row(r), from.columns(), cells.row(r));
        takeOff(fitted_, cells, &fittedCells_);
        isWritten = writeMadeMap(
            name, cells, inputs.map.header,
            {"pavane: " + plainText(baseNameOf(map_->file())) + " (plane " +
                 std::to_string(inputs.map.header.plane) + ", from 0)",
             "pavane: without " + std::to_string(fitted_.sources.size()) + " fitted Gaussians"},
            error);
    }
    if (!isWritten) {
        AfxMessageBox(name + ": " + error, MB_ICONERROR);
        return;
    }
    status_.SetMessage("Saved the map without the Gaussians in " + name);
}

}  // namespace pavane
