#include "apps/view/AreaNumbersPanel.h"

#include "apps/view/long_work.h"
#include "apps/view/main_menu.h"
#include "apps/view/MapDocument.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/tables/TableWatch.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/CMenu.h"

#include <chrono>

namespace pavane
{

namespace
{

/// Share of the time of a drag that slow numbers may take.
constexpr double shareOfDrag = 0.3;
constexpr double quick = 0.02;  // seconds

double now()
{
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace

void AreaNumbersPanel::SetMap(const MapDocument* map)
{
    map_ = map;
    isOtherMap_ = 1;
    cells_.reset();
    if (map_)
        cells_.emplace(map_->inputs().map.cells);
    measures_.setMap(map_ ? &*cells_ : nullptr, map_ ? &map_->inputs() : nullptr);
    refresh();
}

void AreaNumbersPanel::Show(int on)
{
    isShown_ = on;
    ShowWindow(on ? SW_SHOW : SW_HIDE);
    refresh();
}

void AreaNumbersPanel::AreasChanged()
{
    if (empty_ && (!empty_->alive() || indexOf(emptyTracker_) < 0)) {
        empty_.reset();
        emptyTracker_ = nullptr;
        tell("The area whose noise counted is gone: errors are from the noise of the map again");
    }
    refresh();
}

void AreaNumbersPanel::AreasChanging()
{
    // many areas, or large ones, must not hold up the pointer: the end of the drag shows them
    if (!isShown_ || (lastTook_ > quick && (now() - lastEnd_) * shareOfDrag < lastTook_))
        return;
    refresh();
}

int AreaNumbersPanel::indexOf(const ATracker* tracker) const
{
    const ATrackerArrayInAxis& areas = *view_->GetTrackers();
    for (int i = 0; tracker && i < areas.count(); ++i)
        if (areas.trackerAt(i) == tracker)
            return i;
    return -1;
}

int AreaNumbersPanel::measure()
{
    const int empty = empty_ && empty_->alive() ? indexOf(emptyTracker_) : -1;
    if (empty != emptyArea())
        measures_.setNoiseArea(empty);
    const ATrackerArrayInAxis& areas = *view_->GetTrackers();
    const AreaPlace place = map_->place();
    return measures_.update(areas.count(), [&](int i, AArray<CPoint>& points, int& isNeverClean) {
        if (!areas.GetAreaCells(i, points, place.columns, place.rows, place.range))
            points = AArray<CPoint>(0, 0, 16);
        isNeverClean = areas(i)->IsNeverClean();
        return 1;
    });
}

void AreaNumbersPanel::fill()
{
    const ATrackerArrayInAxis& areas = *view_->GetTrackers();
    const int plane = map_->planes() > 1 ? map_->plane() : -1;
    if (isOtherMap_)
        numbers_.setMap(map_->inputs().map.header, map_->inputs().frame);
    isOtherMap_ = 0;
    numbers_.rows().clear();
    numbers_.add(measures_, plane, [&](int i, AreaRow& row) {
        ShapeValues shape;
        row.label = areas.Label(i);
        row.kind = areas.GetShape(i, shape) ? areaKindName(shape.kind) : "";
        if (i == emptyArea())
            row.kind += ", empty";
    });
}

/// Finds what has changed and shows it; the row of the current area is selected.
void AreaNumbersPanel::refresh()
{
    isOfAllPlanes_ = 0;
    if (!isShown_ || leaving_ || !GetSafeHwnd())
        return;
    const TableWatch watch(*this);
    const double start = now();
    if (!map_ || !view_)
        return SetTable(nullptr);
    if (!measure())
        return tell("There is no memory for the numbers of the areas");
    fill();
    SetTable(&numbers_);
    if (watch.gone())
        return;
    const int current = view_->GetTrackers()->GetCurItemNo();
    const ASelectRect at = getSelectRect();
    if (current >= 0 && areaAt(at.anchorRow) != current && !choosing_) {
        choosing_ = 1;
        const int row = rowOf(current + 1);
        SetSelectOneCell(row, at.anchorColumn);
        if (watch.gone())
            return;
        choosing_ = 0;
    }
    Invalidate();
    lastEnd_ = now();
    lastTook_ = lastEnd_ - start;
    if (measured)
        measured();
}

int AreaNumbersPanel::areaAt(int row) const
{
    return table() && row >= 1 && row <= const_cast<AreaNumbersPanel*>(this)->rows()
               ? rowAt(row).area
               : -1;
}

int AreaNumbersPanel::SelChanged(ASelectRect& next, ASelectRect& previous)
{
    const TableWatch watch(*this);
    const int area = areaAt(next.anchorRow);
    const int isOneRow = next.anchorRow == next.endRow;
    if (view_ && !choosing_ && isOneRow && area >= 0 && next.anchorRow != previous.anchorRow) {
        choosing_ = 1;
        view_->GetTrackers()->ChangeActiveTrack(view_, area);
        if (watch.gone())
            return 1;
        choosing_ = 0;
    }
    return AreaNumbersTbl::SelChanged(next, previous);
}

CString AreaNumbersPanel::strCell(int row, int column)
{
    const int area = areaAt(row);
    return isName(column) && area >= 0 ? rowAt(row).label.name : CString();
}

int AreaNumbersPanel::isEnableAutoEdit(int row, int column)
{
    return view_ && isName(column) && areaAt(row) >= 0;
}

int AreaNumbersPanel::setCellStr(int row, int column, const CString& text)
{
    const int area = areaAt(row);
    if (leaving_ || !view_ || !isName(column) || area < 0)
        return leaving_;
    AreaLabel label;
    label.name = fittingName(text);
    (void)view_->GetTrackers()->SetLabels(view_, {area}, label, 1, 0);
    return 1;
}

void AreaNumbersPanel::amMenuParse(CMenu* popup)
{
    const TableWatch watch(*this);
    AreaNumbersTbl::amMenuParse(popup);
    if (watch.gone() || popup->lines().empty() || !map_)
        return;
    const int area = areaAt(getSelectRect().anchorRow);
    popup->AppendSeparator();
    popup->AppendMenu(area >= 0 && area == emptyArea() ? "&Noise of the map again"
                                                       : "Area is e&mpty: its noise counts",
                      idEmptyArea);
    popup->lines().back().enabled = area >= 0;
    popup->AppendMenu("Numbers of all &planes", idNumbersOfPlanes);
    popup->lines().back().enabled = map_->planes() > 1;
}

int AreaNumbersPanel::RunTableCommand(unsigned id)
{
    switch (id) {
    case idEmptyArea:
        return toggleEmptyArea(), 1;
    case idNumbersOfPlanes:
        return showAllPlanes(), 1;
    default:
        return AreaNumbersTbl::RunTableCommand(id);
    }
}

void AreaNumbersPanel::toggleEmptyArea()
{
    const int area = areaAt(getSelectRect().anchorRow);
    if (area < 0)
        return tell("Choose the row of an area without a source first");
    const int isOff = area == emptyArea();
    emptyTracker_ = isOff ? nullptr : view_->GetTrackers()->trackerAt(area);
    empty_.reset();
    if (emptyTracker_)
        empty_.emplace(emptyTracker_->life());
    tell(isOff ? CString("Errors are from the noise of the map")
               : "Errors are from the noise of " +
                     shownName(view_->GetTrackers()->Label(area), area));
    refresh();
}

void AreaNumbersPanel::showAllPlanes()
{
    if (!map_ || !view_ || map_->planes() < 2)
        return tell("The map has one plane");
    const ATrackerArrayInAxis& areas = *view_->GetTrackers();
    const AreaPlace place = map_->place();
    AreaTable all;
    all.setMap(map_->inputs().map.header, map_->inputs().frame);
    std::string error;
    const int planes = map_->planes();
    const auto work = [&](const ProgressFunction& tellDone) {
        for (int plane = 0; plane < planes; ++plane) {
            MapContent content;
            const auto part = [&](double done) {
                return !tellDone || tellDone((plane + done) / planes);
            };
            if (!readMapContent(map_->file(), plane, content, error, part))
                return 0;
            const AFloatMatrixAccess cells(content.map.cells);
            AreaMeasures measures;
            measures.setMap(&cells, &content);
            measures.setNoiseArea(emptyArea());
            if (!measures.update(areas.count(), [&](int i, AArray<CPoint>& points, int& never) {
                    if (!areas.GetAreaCells(i, points, place.columns, place.rows, place.range))
                        points = AArray<CPoint>(0, 0, 16);
                    never = areas(i)->IsNeverClean();
                    return 1;
                })) {
                error = "there is no memory for the numbers of its areas";
                return 0;
            }
            all.add(measures, plane, [&](int i, AreaRow& row) {
                ShapeValues shape;
                row.label = areas.Label(i);
                row.kind = areas.GetShape(i, shape) ? areaKindName(shape.kind) : "";
            });
        }
        return 1;
    };
    const TableWatch watch(*this);
    const int done = doLongWork(this, "Numbers of all planes", work);
    if (watch.gone())
        return;
    if (!done || !error.empty()) {
        refresh();
        return tell(error.empty() ? "The planes were not read to their end"
                                  : map_->file() + ": " + error);
    }
    numbers_ = std::move(all);
    SetTable(&numbers_);
    if (watch.gone())
        return;
    isOfAllPlanes_ = 1;
    tell("Numbers of all planes, until an area or the plane changes");
}

int AreaNumbersPanel::canUndo() { return view_ && view_->GetTrackers()->CanUndo(); }
int AreaNumbersPanel::canRedo() { return view_ && view_->GetTrackers()->CanRedo(); }

CString AreaNumbersPanel::undoLabel()
{
    return view_ ? CString(view_->GetTrackers()->history().undoLabel()) : CString();
}

CString AreaNumbersPanel::redoLabel()
{
    return view_ ? CString(view_->GetTrackers()->history().redoLabel()) : CString();
}

int AreaNumbersPanel::walkHistory(int forward)
{
    const TableWatch watch(*this);
    if (!view_ || !hideEditors() || watch.gone())
        return 0;
    ATrackerArrayInAxis* const areas = view_->GetTrackers();
    return forward ? areas->Redo(view_) : areas->Undo(view_);
}

/// What is still in an editor when the window goes changes nothing: the areas may be gone.
void AreaNumbersPanel::OnDestroy()
{
    const TableWatch watch(*this);
    leaving_ = 1;
    AreaNumbersTbl::OnDestroy();
    if (!watch.gone())
        leaving_ = 0;
}

}  // namespace pavane
