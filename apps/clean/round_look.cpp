// Looking at rounds beside each other, at what the next one would clean, and with another beam.
#include "apps/clean/CleanWindow.h"
#include "pavane/dialogs/clean/ABeamShapePage.h"
#include "pavane/progress/slices.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "tessel/value_text.h"

#include <chrono>
#include <memory>

namespace pavane
{

namespace
{

constexpr unsigned blinkTime = 600;
/// Milliseconds after a change until it is looked at, and between slices of that.
constexpr unsigned previewTime = 120, sliceTime = 1;
constexpr std::chrono::milliseconds slice{10};
constexpr int digits = 3;

}  // namespace

// --- two maps in turn

/// The other side of a blink: the same map of the round that is compared with, else the map of this
/// round that was chosen before.
std::string CleanWindow::otherSide(int& round, MapKind& kind) const
{
    const int compares = compared_ >= 0 && compared_ != session_.shown();
    round = compares ? compared_ : session_.shown();
    kind = compares ? wanted_ : before_;
    return session_.fileOf(round, kind);
}

int CleanWindow::canBlink()
{
    int round = -1;
    MapKind kind = wanted_;
    const std::string other = otherSide(round, kind);
    if (!other.empty() && other != shown_.file())
        return 1;
    CString error;
    if (round == compared_ && kind == MapKind::restored && !session_.isRunning() &&
        session_.study().round(round)->hasModel && session_.startRestore(round, error))
        status_.SetMessage("The restored map of round " + std::to_string(round) +
                           " is made; B then shows both in turn");
    else if (!error.empty())
        complain(error);
    else if (round == compared_)
        status_.SetMessage("Round " + std::to_string(round) + " has no other map of this kind");
    else
        status_.SetMessage("Choose another map first, or a round to compare with (Ctrl+B); B then "
                           "shows both in turn");
    return 0;
}

/// Two maps of one range in turn.
void CleanWindow::setBlink(int on)
{
    if (on && !blinks_ && session_.isOpen() && shown_.isOpen() && !canBlink())
        on = 0;
    if (!on == !blinks_)
        return refreshRow();
    blinks_ = on && shown_.isOpen();
    blinkSide_ = 0;
    if (blinks_) {
        blinkRange_ = shown_.range();
        SetTimer(blinkTimer, blinkTime);
    } else {
        KillTimer(blinkTimer);
        showMapFile();
    }
    refreshRow();
}

void CleanWindow::blink()
{
    blinkSide_ = !blinkSide_;
    int round = session_.shown();
    MapKind kind = wanted_;
    const std::string file =
        blinkSide_ ? otherSide(round, kind) : session_.fileOf(session_.shown(), wanted_);
    if (file.empty() || !showFile(file, kind, blinkRange_))
        return setBlink(0);
    row_.SetCaption(captionOf(round, kind));
}

/// Chooses the round that B compares others with, or none again.
void CleanWindow::compareWith(int round)
{
    if (!session_.isOpen() || !session_.study().round(round))
        return;
    setBlink(0);
    compared_ = compared_ == round ? -1 : round;
    rounds_.SetCompared(compared_);
    status_.SetMessage(compared_ < 0
                           ? CString("B shows two maps of a round in turn again")
                           : "Choose another round; B then shows its map and that of round " +
                                 std::to_string(round) + " in turn");
}

/// "round 2, restored with 0.61 x 0.42 mas, 12 deg".
CString CleanWindow::captionOf(int round, MapKind kind) const
{
    CString text = "round " + std::to_string(round) + ", " + mapKindName(kind);
    if (kind != MapKind::restored)
        return text;
    const MapBeam beam = session_.beamShape(round).GetBeam();
    if (beam.isSet())
        text += " with " + valToStr(beam.major, digits) + " \u00d7 " +
                valToStr(beam.minor, digits) + " mas, " + valToStr(beam.angle, digits) + "\u00b0";
    return text;
}

// --- the next round

/// Looks soon at what the areas hold, after the last of many changes.
void CleanWindow::previewSoon()
{
    preview_.reset();
    SetTimer(previewTimer, previewTime);
}

int CleanWindow::beginPreview()
{
    const StudyRound* const round =
        session_.isOpen() ? session_.study().round(session_.shown()) : nullptr;
    if (!round || !shown_.isOpen())
        return 0;
    const AreaPlace on = place();
    NextRound next;
    next.areas = areas().count();
    next.isWhole = next.areas == 0;
    next.cells = std::int64_t{on.rows} * on.columns;
    ABitMatrix mask;
    if (!next.isWhole) {
        mask = ABitMatrix(on.rows, on.columns);
        if (!mask.rows())
            return 0;
        areas().FillMatrix(mask, on.columns, on.rows, on.range);
        next.cells = mask.count();
    } else if (round->mask.empty()) {
        next.noiseOutside = round->numbers.noiseOutside;
    }
    if (const double beam = cellsOfBeam(round->beam, round->parameters.cell); beam > 0)
        next.beams = static_cast<double>(next.cells) / beam;
    preview_ = std::make_unique<RoundPreview>();
    preview_->begin(std::move(mask), next);
    return 1;
}

/// Begins, and goes on a slice at a time.
void CleanWindow::previewNow()
{
    KillTimer(previewTimer);
    if (!preview_ && !beginPreview())
        return strip_.SetIdle("");
    const AMatrix<float>* const residual =
        shown_.cellsOf(session_.fileOf(session_.shown(), MapKind::residual));
    if (residual && runSlice(slice, [&] { return preview_->step(*residual); }))
        return (void)SetTimer(previewTimer, sliceTime);
    strip_.SetIdle(nextRoundText(preview_->result()));
    preview_.reset();
}

// --- the beam

/// Another beam restores again; nothing is cleaned.
void CleanWindow::askBeamShape()
{
    if (!session_.isOpen() || session_.isRunning() || session_.shown() < 0)
        return;
    const int round = session_.shown();
    ABeamShapePM shape = session_.beamShape(round);
    MapContent dirty;
    std::unique_ptr<AFloatMatrixAccess> cells;
    const auto find = [&](DirtyBeam& beam, CString& error) {
        const std::string file = session_.fileOf(round, MapKind::beam);
        if (!cells) {
            if (!readMapContent(file, 0, dirty, error)) {
                error.insert(0, file + ": ");
                return 0;
            }
            cells = std::make_unique<AFloatMatrixAccess>(dirty.map.cells);
        }
        beam = {cells.get(), dirty.frame.centres(), dirty.frame.onSky ? dirty.frame.arcseconds : 0};
        return 1;
    };
    if (!AskBeamShape(this, shape, find))
        return;
    CString error;
    setBlink(0);
    if (!session_.keepBeamShape(shape, error))
        return complain(error);
    if (session_.study().round(round)->hasModel)
        chooseMap(MapKind::restored);
    else
        status_.SetMessage("Maps are restored with this beam once there is a model");
}

}  // namespace pavane
