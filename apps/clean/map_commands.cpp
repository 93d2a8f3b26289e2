// Which map of which round is shown, and how.
#include "apps/clean/clean_menu.h"
#include "apps/clean/CleanWindow.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ColorLook.h"
#include "pavane/axes/windows/show_map.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/message.h"

#include <array>
#include <utility>

namespace pavane
{

namespace
{

/// Where a map is looked for that a round has not.
constexpr MapKind orderOf[] = {MapKind::residual, MapKind::dirty, MapKind::restored,
                               MapKind::model,    MapKind::beam,  MapKind::mask};

}  // namespace

void CleanWindow::roundsChanged()
{
    if (!created_ || !session_.isOpen())
        return;
    if (!session_.study().round(compared_))
        compared_ = -1;
    rounds_.SetLines(session_.lines(), session_.shown());
    rounds_.SetCompared(compared_);
    shown_.hold(session_.fileOf(session_.shown(), MapKind::residual));
    curve_.SetRounds(session_.pointsOf(session_.shown()));
    showMapFile();
    showComponents();
    showLog();
    previewSoon();
    plots_.studyChanged();
}

void CleanWindow::showRound(int round)
{
    if (round == session_.shown() || session_.isRunning())
        return;
    std::string error;
    if (!mayDropEdits())
        return rounds_.SetLines(session_.lines(), session_.shown());
    if (!session_.show(round, error))
        return complain(error);
    const std::string stored = session_.areasOf(round);
    if (!stored.empty())
        takeAreas(stored);
    roundsChanged();
    status_.SetMessage("The next round goes on from round " + std::to_string(round));
}

void CleanWindow::chooseMap(MapKind kind)
{
    if (kind != wanted_)
        before_ = std::exchange(wanted_, kind);
    setBlink(0);
    if (session_.isOpen() && kind == MapKind::restored && !session_.isRunning() &&
        session_.fileOf(session_.shown(), kind).empty()) {
        std::string error;
        if (!session_.startRestore(session_.shown(), error))
            complain(error);
    }
    showMapFile();
}

/// The file of a map, or the nearest that the round has; "" of none.
std::string CleanWindow::fileToShow(int round, MapKind& kind) const
{
    if (!session_.isOpen() || round < 0)
        return {};
    std::string file = session_.fileOf(round, kind);
    for (const MapKind other : orderOf)
        if (file.empty()) {
            file = session_.fileOf(round, other);
            kind = other;
        }
    return file;
}

void CleanWindow::showMapFile()
{
    const int round = session_.shown();
    MapKind kind = wanted_;
    const std::string file = fileToShow(round, kind);
    if (!file.empty() && !showFile(file, kind))
        return;
    row_.SetCaption(file.empty() ? CString() : captionOf(round, kind));
    refreshRow();
}

int CleanWindow::showFile(const std::string& file, MapKind kind, const TMnMx& range)
{
    std::string error;
    const ShownMap::Change change = shown_.show(file, kind, error, range);
    if (change == ShownMap::Change::none) {
        complain(error);
        return 0;
    }
    if (change == ShownMap::Change::map) {
        play_.reset();
        display_.reset();
        showMap(map_, shown_.picture());
        bar_.SetOwnerWnd(this, 1);
        map_.ChooseTool(toolArrow);
        status_.Reset();
        areaTable_.SetUnits(shown_.format().offsetUnit(), shown_.format().offsetUnit());
    } else {
        map_.MapValuesChanged();
        map_.ContentChanged();
        if (play_)
            play_->MapChanged();
    }
    showMarks();
    return 1;
}

/// Whether the shown round has a map of the kind; a restored one is made when it is shown first.
int CleanWindow::hasMap(MapKind kind) const
{
    const MapKind needed = kind == MapKind::restored ? MapKind::model : kind;
    return !session_.fileOf(session_.shown(), needed).empty();
}

void CleanWindow::stepMap(int step)
{
    if (!session_.isOpen())
        return;
    constexpr int count = static_cast<int>(mapKinds);
    int at = static_cast<int>(shown_.kind());
    for (int tried = 0; tried < count; ++tried) {
        at = (at + step + count) % count;
        const auto kind = static_cast<MapKind>(at);
        if (hasMap(kind))
            return chooseMap(kind);
    }
}

void CleanWindow::OnTimer(unsigned id)
{
    if (id == areaTimer) {
        KillTimer(areaTimer);
        return storeAreasNow();
    }
    if (id == previewTimer)
        return previewNow();
    if (id != blinkTimer)
        return AreaWindow::OnTimer(id);
    if (blinks_ && session_.isOpen())
        blink();
}

void CleanWindow::refreshRow()
{
    if (!created_)
        return;
    std::array<int, mapKinds> has{};
    const int isOpen = session_.isOpen() && session_.shown() >= 0;
    for (std::size_t i = 0; isOpen && i < mapKinds; ++i)
        has[i] = hasMap(static_cast<MapKind>(i));
    row_.SetMaps(shown_.kind(), has, blinks_);
    row_.SetState(isOpen && !session_.isRunning(), session_.isRunning());
}

void CleanWindow::mapStatus(const AxisStatus& at)
{
    if (!shown_.isOpen() || map_.IsPlaying())
        return;
    StatusTexts texts = shown_.format().texts(at, shown_.sky());
    if (at.inMap) {
        const std::string residual = session_.isOpen() && shown_.kind() != MapKind::residual
                                         ? session_.fileOf(session_.shown(), MapKind::residual)
                                         : std::string();
        const float value = shown_.valueIn(residual, at.row, at.column);
        texts[statusValue].insert(0, std::string(mapKindName(shown_.kind())) + ' ');
        if (!residual.empty() && value == value)
            texts[statusValue] += "   residual " + prefixedText(double{value}, "Jy/beam", 3);
    }
    if (at.hasAreas)
        texts[statusMask].insert(0, "mask " + countText(areas().count(), "area") + ", ");
    status_.SetTexts(texts);
}

/// From the least to the greatest value, in place of the range that stays from map to map.
void CleanWindow::useOwnRange()
{
    if (!shown_.isOpen() || blinks_)
        return;
    ColorLook look(shown_.picture().graph());
    look.range = TMnMx();
    map_.BeginView();
    map_.ShowColorLook(look);
    map_.EndView();
}

void CleanWindow::showColours()
{
    if (!shown_.isOpen())
        return;
    if (!play_)
        play_ = std::make_unique<APalettePlayDlg>(map_, this);
    if (play_->GetSafeHwnd())
        play_->SetFocus();
    else if (play_->CreateModeless())
        (void)play_->ShowWindow(SW_SHOW);
}

void CleanWindow::showDisplay()
{
    if (!shown_.isOpen())
        return;
    if (display_ && display_->GetSafeHwnd()) {
        display_->SetFocus();
        return;
    }
    const MapFrame& frame = shown_.content().frame;
    display_ = std::make_unique<AMapDisplayDlg>(map_, frame.onSky ? frame.arcseconds : 0, this);
    if (display_->CreateModeless())
        (void)display_->ShowWindow(SW_SHOW);
}

}  // namespace pavane
