#include "apps/view/profiles/CurvePanel.h"

#include "apps/view/main_menu.h"
#include "apps/view/MapDocument.h"
#include "pavane/axes/AGraphXYLine.h"
#include "pavane/axes/axis_options.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/multi/multi_reading.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>
#include <new>

namespace pavane
{

namespace
{

/// Share of the time of a drag that slow curves may take.
constexpr double shareOfDrag = 0.3;
constexpr double quick = 0.02;  // seconds
/// Planes up to which a spectrum follows the pointer.
constexpr std::size_t mostFollowedPlanes = 4096;
constexpr COLORREF liveColour = RGB(0, 80, 170), noiseColour = RGB(200, 60, 0);
constexpr COLORREF keptColours[] = {RGB(20, 130, 60), RGB(150, 40, 150), RGB(150, 110, 0),
                                    RGB(90, 90, 90),  RGB(0, 140, 150),  RGB(180, 30, 60)};
constexpr std::size_t mostKept = 12;
/// Pixels of 96 per inch of its labels, as in tables beside it.
constexpr int labelHeight = 14;
/// Room above and below a curve, as a part of its height.
constexpr double margin = 0.05;
/// The first line is so much of what is shown.
constexpr double firstShare = 0.6;

double now()
{
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

/// What of a plot a curve takes, with some room above and below; unset without a point.
TMinMax roomOf(const std::vector<double>& x, const std::vector<double>& y, int isLogarithmic)
{
    TMinMax room;
    int isAny = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (!std::isfinite(x[i]) || !std::isfinite(y[i]))
            continue;
        room.xMin = isAny ? std::min(room.xMin, x[i]) : x[i];
        room.xMax = isAny ? std::max(room.xMax, x[i]) : x[i];
        room.yMin = isAny ? std::min(room.yMin, y[i]) : y[i];
        room.yMax = isAny ? std::max(room.yMax, y[i]) : y[i];
        isAny = 1;
    }
    if (!isAny)
        return room;
    if (isLogarithmic) {
        room.yMax *= std::pow(room.yMax / room.yMin, margin);
        return room;
    }
    const double off = (room.yMax - room.yMin) * margin;
    room.yMin -= off;
    room.yMax += off;
    return room;
}

}  // namespace

void CurvePanel::SetMapWindow(MapWindow* view)
{
    if (view_ && view_ != view) {
        view_->SetLine(nullptr);
        view_->Invalidate();
    }
    view_ = view;
    view_->SetLine(&line_);
    line_.moved = [this] { lineMoved(); };
}

void CurvePanel::SetMap(MapDocument* map)
{
    const int isOther = map != map_;
    map_ = map;
    line_.SetFrame(map_ ? &map_->inputs().frame : nullptr);
    if (isOther) {
        cube_.reset();
        planes_.clear();
        row_ = column_ = -1;
    }
    if (!map_)
        return;  // what is shown stays until there is another one
    // the line holds for maps of the same cells
    const AMatrix<float>& cells = map_->inputs().map.cells;
    if (cells.rows() != rows_ || cells.columns() != columns_) {
        line_.SetLine({});
        if (kind_ == Kind::profile)
            firstLine();
    }
    rows_ = cells.rows();
    columns_ = cells.columns();
    if (isShown())
        refresh(isOther);
}

void CurvePanel::Show(Kind kind)
{
    const int isOther = kind != kind_;
    kind_ = kind;
    line_.Show(kind == Kind::profile);
    ShowWindow(isShown() ? SW_SHOW : SW_HIDE);
    if (view_)
        view_->Invalidate();
    if (kind == Kind::profile && line_.line().corners.empty())
        firstLine();
    if (isOther) {
        SetAxis(nullptr, 0);  // before what its graphs show
        graphs_.clear();
        kept_.clear();  // of other values
    }
    if (isShown())
        refresh(isOther);
}

/// Through the middle of what is shown, along a row.
void CurvePanel::firstLine()
{
    if (!map_)
        return;
    const MapFrame& frame = map_->inputs().frame;
    const TMinMax shown = map_->axis().getMinMax();
    const double x = (shown.xMin + shown.xMax) / 2, y = (shown.yMin + shown.yMax) / 2;
    const double half = (shown.xMax - shown.xMin) / 2 * firstShare;
    const auto cell = [&](double at) { return std::round((at - frame.xFirst) / frame.xStep); };
    const double row = std::round((y - frame.yFirst) / frame.yStep);
    const auto [left, right] = std::minmax({cell(x - half), cell(x + half)});
    ProfileLine line;
    line.corners = {{left, row}, {right, row}};
    line_.SetLine(line);
}

void CurvePanel::SetLine(const ProfileLine& line)
{
    line_.edits().set(line, "another line");
    lineMoved();
}

void CurvePanel::lineMoved()
{
    if (view_)
        view_->Invalidate();
    if (kind_ != Kind::profile || !map_)
        return;
    refresh(0);
    if (!curve().isEmpty())
        tell("Line: " + rulerText(line_.line(), map_->inputs(), map_->sky()));
}

void CurvePanel::AreasChanged(int isDrag)
{
    if (kind_ != Kind::spectrum && kind_ != Kind::histogram)
        return;
    // what is slow must not hold up the pointer: the end of the drag shows it
    if (isDrag && lastTook_ > quick && (now() - lastEnd_) * shareOfDrag < lastTook_)
        return;
    refresh(0);
}

void CurvePanel::PointerAt(const AxisStatus& status)
{
    if (!isShown() || !map_ || isPointing_)
        return;
    AreaCells area;
    CString name;
    const int isOther = status.inMap && (status.row != row_ || status.column != column_);
    if (status.inMap) {
        row_ = status.row;
        column_ = status.column;
    }
    if (kind_ == Kind::spectrum && isOther && !cellsOfArea(area, name) &&
        planes_.size() <= mostFollowedPlanes &&
        (lastTook_ <= quick || (now() - lastEnd_) * shareOfDrag >= lastTook_))
        refresh(0);
    showPointer(status);
}

/// A line in the plot where the pointer is in the map: the nearest place along the profile, the
/// plane that is shown, the value.
void CurvePanel::showPointer(const AxisStatus& status)
{
    double at = std::numeric_limits<double>::quiet_NaN();
    if (kind_ == Kind::profile && status.inPlot && !curve().isEmpty()) {
        const MapFrame& frame = map_->inputs().frame;
        const double column = (status.x - frame.xFirst) / frame.xStep;
        const double row = (status.y - frame.yFirst) / frame.yStep;
        // of the table: distance, pixel from 1
        const NumberTable& table = curve().table;
        int first = 0;
        while (first < table.columns() && table.title(first) != "pixel_x")
            ++first;
        double nearest = std::numeric_limits<double>::infinity();
        for (int i = 0; i < table.rows(); ++i) {
            double x = 0, y = 0;
            if (!table.number(i, first, x) || !table.number(i, first + 1, y))
                continue;
            const double apart = std::hypot(x - 1 - column, y - 1 - row);
            if (apart < nearest) {
                nearest = apart;
                at = curve().x[static_cast<std::size_t>(i)];
            }
        }
    } else if (kind_ == Kind::spectrum) {
        for (std::size_t i = 0; i < planes_.size() && i < curve().x.size(); ++i)
            if (planes_[i].plane == map_->plane())
                at = curve().x[i];
    } else if (kind_ == Kind::histogram && status.inMap) {
        at = static_cast<double>(status.value);
    }
    isPointing_ = 1;
    ShowLineAt(at);
    isPointing_ = 0;
}

void CurvePanel::OnMultiStatus(const MultiStatus& status)
{
    PartWindow<AMultiPlotWnd>::OnMultiStatus(status);
    if (!map_ || !view_ || isPointing_ || !GetAxis())
        return;
    int isOnLine = 0;
    if (kind_ == Kind::profile && status.inPlot && !status.nearest.empty()) {
        const int point = status.nearest.front().point;
        const NumberTable& table = curve().table;
        for (int c = 0; c + 1 < table.columns() && point >= 0 && point < table.rows(); ++c) {
            double x = 0, y = 0;
            if (table.title(c) != "pixel_x" || !table.number(point, c, x) ||
                !table.number(point, c + 1, y))
                continue;
            line_.SetPointed({x - 1, y - 1}, 1);
            isOnLine = 1;
        }
    }
    if (!isOnLine)
        line_.SetPointed({}, 0);
    if (kind_ == Kind::profile)
        view_->Invalidate();
    if (status.inPlot)
        tell(statusText(*GetAxis(), status));
}

int CurvePanel::Keep()
{
    if (!map_ || curve().isEmpty() || kept_.size() >= mostKept)
        return 0;
    try {
        kept_.push_back(std::make_unique<MeasuredCurve>(curve()));
        kept_.back()->noise.clear();
        kept_.back()->name = "kept " + std::to_string(kept_.size()) + ": " + kept_.back()->name +
                             ", " + plainText(baseNameOf(map_->file()));
    } catch (const std::bad_alloc&) {
        return 0;
    }
    FillAxis([this] { fillAxis(); });
    return 1;
}

int CurvePanel::AddKept(MeasuredCurve curve)
{
    const int isSame =
        live_->isEmpty() || (curve.xTitle == live_->xTitle && curve.yTitle == live_->yTitle);
    if (!isShown() || !isSame || curve.isEmpty() || kept_.size() >= mostKept)
        return 0;
    kept_.push_back(std::make_unique<MeasuredCurve>(std::move(curve)));
    FillAxis([this] { fillAxis(); });
    return 1;
}

void CurvePanel::Forget()
{
    FillAxis([this] {
        kept_.clear();
        fillAxis();
    });
}

/// Cells of the current area, or of the selected ones the first; 0 without one.
int CurvePanel::cellsOfArea(AreaCells& cells, CString& name) const
{
    const ATrackerArrayInAxis& areas = *view_->GetTrackers();
    const int current = areas.GetCurItemNo();
    const AreaPlace place = map_->place();
    AArray<CPoint> points;
    if (current < 0 || current >= areas.count() ||
        !areas.GetAreaCells(current, points, place.columns, place.rows, place.range))
        return 0;
    name = shownName(areas.Label(current), current);
    return cellsOfPolygon(points.lpArray(), points.count(), place.rows, place.columns, cells) &&
           cells.mask.rows() > 0;
}

int CurvePanel::measureProfile(MeasuredCurve& curve)
{
    MapProfile profile;
    std::string error;
    if (!profile.take(AFloatMatrixAccess(map_->inputs().map.cells), line_.line(), map_->sky(),
                      map_->inputs().frame, error))
        return tell(error), 0;
    curve = curveOf(profile, map_->inputs(), map_->sky());
    return 1;
}

int CurvePanel::openCube()
{
    if (cube_)
        return 1;
    auto cube = std::make_unique<FitsCubeReader>();
    std::string error, unit;
    if (map_->planes() < 2)
        return tell("A spectrum is of a cube: this map has one plane"), 0;
    if (!cube->open(map_->file(), error) ||
        !planesBetween(cube->header(0), 0, cube->planes() - 1, 0, planes_, unit, error))
        return tell(map_->file() + ": " + error), 0;
    const AMatrix<float>& cells = map_->inputs().map.cells;
    if (cube->rows() != cells.rows() || cube->columns() != cells.columns())
        return tell(map_->file() + ": has changed since it was opened"), 0;
    axisUnit_ = unit;
    cube_ = std::move(cube);
    return 1;
}

int CurvePanel::measureSpectrum(MeasuredCurve& curve)
{
    if (!openCube())
        return 0;
    std::vector<CellSpectrum> spectra(1);
    CString name;
    const int rows = cube_->rows(), columns = cube_->columns();
    const int isArea = cellsOfArea(spectra[0].cells, name);
    if (!isArea) {
        const int isPointed = row_ >= 0;
        const int row = isPointed ? row_ : map_->inputs().range.peakRow;
        const int column = isPointed ? column_ : map_->inputs().range.peakColumn;
        if (row < 0 || !cellsOfPlace(row, column, rows, columns, spectra[0].cells))
            return tell("Point at a cell, or choose an area"), 0;
        name = pixelText(row, column);
    }
    CubePart part;
    part.rows = rows;
    part.columns = columns;
    part.planes = planes_;
    part.isWhole = cube_->isPacked();
    part.read = [this](int plane, int first, int count, float* to, std::string& fault) {
        return cube_->read(plane, first, count, to, fault);
    };
    std::string error;
    if (!findSpectra(part, spectra, error))
        return tell(map_->file() + ": " + error), 0;
    curve = curveOf(spectra[0], name, !isArea, planes_, axisUnit_, map_->inputs());
    return 1;
}

int CurvePanel::measureHistogram(MeasuredCurve& curve)
{
    const AFloatMatrixAccess cells(map_->inputs().map.cells);
    AreaCells part;
    CString name;
    int isPart = cellsOfArea(part, name);
    if (!isPart && view_->IsRangeZoomed()) {
        const MapFrame& frame = map_->inputs().frame;
        const TMinMax shown = map_->axis().getMinMax();
        const auto [left, right] = std::minmax(
            {(shown.xMin - frame.xFirst) / frame.xStep, (shown.xMax - frame.xFirst) / frame.xStep});
        const auto [top, bottom] = std::minmax(
            {(shown.yMin - frame.yFirst) / frame.yStep, (shown.yMax - frame.yFirst) / frame.yStep});
        const auto cell = [](double at) {
            return static_cast<int>(std::lround(std::clamp(at, -1e9, 1e9)));
        };
        isPart = cellsOfBox(cell(top), cell(left), cell(bottom), cell(right), cells.rows(),
                            cells.columns(), part) &&
                 part.mask.rows() > 0;
        name = "View";
    }
    if (!isPart)
        name = "Whole map";
    CellHistogram histogram;
    if (!histogram.take(cells, isPart ? &part : nullptr, map_->inputs().noise))
        return tell("There is no memory for the histogram"), 0;
    if (!histogram.bins())
        return tell(name + ": no cell has a value"), 0;
    curve = curveOf(histogram, name, map_->inputs());
    return 1;
}

int CurvePanel::measure(MeasuredCurve& curve)
{
    if (!map_ || !view_)
        return 0;
    try {
        return kind_ == Kind::profile    ? measureProfile(curve)
               : kind_ == Kind::spectrum ? measureSpectrum(curve)
                                         : measureHistogram(curve);
    } catch (const std::bad_alloc&) {
        tell("There is no memory for the curve");
        return 0;
    }
}

/// Finds the curve that is live and shows it; `isNew`: in a plot of its own.
void CurvePanel::refresh(int isNew)
{
    const double start = now();
    auto curve = std::make_unique<MeasuredCurve>();
    (void)measure(*curve);
    const int isOther = curve->xTitle != live_->xTitle || curve->yTitle != live_->yTitle;
    if (isNew || isOther || !GetAxis()) {
        SetAxis(nullptr, 0);
        graphs_.clear();
        if (isOther && !curve->isEmpty() && !live_->isEmpty())
            kept_.clear();  // of other values
        live_ = std::move(curve);
        newAxis();
    } else {
        FillAxis([&] {
            live_.swap(curve);  // the old one goes after the graphs that show it
            fillAxis();
        });
    }
    lastEnd_ = now();
    lastTook_ = lastEnd_ - start;
    if (kind_ == Kind::spectrum && map_)
        showPointer(AxisStatus());
}

void CurvePanel::newAxis()
{
    auto* const axis =
        new A2DAxisMulti(1, live_->isLogarithmic ? 0 : 1, nullptr, axisGridX | axisGridY);
    axis->setNameOX(live_->xTitle);
    axis->setNameOY(live_->yTitle);
    axis->setLegend(legendEmptiest);
    axis->setWantedFHeight(labelHeight);
    axis->setWholeX(live_->xTitle == "Plane");
    SetAxis(axis, 1);
    FillAxis([this] { fillAxis(); });
}

/// Gives the axis the graphs of the curves, the one that is live over all others.
void CurvePanel::fillAxis()
{
    A2DAxisMulti* const axis = GetAxis();
    if (!axis)
        return;
    for (AGraph* const graph : graphs_)
        (void)axis->deleteGraph(graph);
    graphs_.clear();
    const auto add = [&](MeasuredCurve& curve, std::vector<double>& y, int width, COLORREF colour,
                         const CString& name) {
        TMinMax room = roomOf(curve.x, y, curve.isLogarithmic);
        auto* const graph =
            new AGraphXYLine(axis, curve.x.data(), y.data(), static_cast<int>(curve.x.size()),
                             &room, PS_SOLID, width, colour, 0);
        graph->setGraphName(name);
        graphs_.push_back(graph);
    };
    for (std::size_t i = 0; i < kept_.size(); ++i)
        add(*kept_[i], kept_[i]->y, 1, keptColours[i % std::size(keptColours)], kept_[i]->name);
    if (!live_->noise.empty())
        add(*live_, live_->noise, 1, noiseColour, "Noise");
    if (!live_->isEmpty())
        add(*live_, live_->y, 2, liveColour, live_->name);
    axis->resetRanges();
}

/// The pictures of the program are called as in its own menus.
void CurvePanel::amMenuParse(CMenu* popup)
{
    PartWindow<AMultiPlotWnd>::amMenuParse(popup);
    for (CMenu::Line& line : popup->lines())
        if (line.id == ID_COPY_TO_CLIPBOARD)
            line.text = copyPictureText;
        else if (line.id == ID_COPY_TO_BMP)
            line.text = savePictureText;
        else if (line.id == ID_WHOLE_MAP)
            line.text = "&Whole plot\t0";
}

}  // namespace pavane
