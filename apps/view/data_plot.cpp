// The plot of the data window: what is marked, reading it in slices, the status line.
#include "apps/view/data_menu.h"
#include "apps/view/DataWindow.h"
#include "apps/view/long_work.h"
#include "pavane/dialogs/ATimeIntervalPresent.h"
#include "pavane/dialogs/values/time_texts.h"
#include "platform/message.h"
#include "tessel/paths.h"
#include "tessel/value_text.h"

#include <chrono>
#include <cmath>
#include <utility>

namespace pavane
{

namespace
{

constexpr unsigned readTimer = 1, sumTimer = 2;
constexpr unsigned readPause = 5, sumPause = 150;
/// Milliseconds of reading before anything else has its turn; more before the first drawing, so
/// that most files show all their points at once.
constexpr int slice = 20, firstSlice = 120;
/// Least milliseconds between two drawings while more is read.
constexpr std::int64_t drawPause = 400;
/// The panes of the status line here; those that give way first are the least.
enum DataPane {
    paneFound = statusValue,
    panePlace = statusOffset,
    paneSums = statusSky,
    paneCounts = statusMask
};
/// Pixels about the pointer in which a point is found.
constexpr double reach = 6;
/// Of the reading, as far as its progress is told.
constexpr int readingPieces = 10000;
constexpr double megalambda = 1e6;
constexpr int shownDigits = 5;

std::int64_t now()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

std::string percentText(double done)
{
    return std::to_string(static_cast<int>(std::floor(done * 100))) + " %";
}

}  // namespace

// --- marks

void DataWindow::tableChanged(UvTable table, int byUser)
{
    const auto at = indexOf(table);
    const ABitArray& marks = selector(table).GetMark();
    if (settingMarks_ || !data_)
        return;
    if (marks.count() == known_[at]) {
        if (!byUser)
            return;
        all_[at] = marks.ones() == marks.count();
        if (table == UvTable::telescopes || table == UvTable::baselines)
            panels_.DropList();  // that of the command line
        return plotAgain();
    }
    // more has been found: the plot has it already when all is marked, and else leaves it out
    known_[at] = marks.count();
    if (!all_[at])
        return;
    ABitArray all(marks.count());
    all.setAll(1);
    ++settingMarks_;
    selector(table).SetMark(all);
    --settingMarks_;
}

UvMarks DataWindow::marks()
{
    const auto of = [this](UvTable table) {
        return all_[indexOf(table)] ? ABitArray() : selector(table).GetMark();
    };
    UvMarks marks;
    marks.telescopes = of(UvTable::telescopes);
    marks.stokes = selector(UvTable::stokes).GetMark();
    marks.sources = of(UvTable::sources);
    marks.frequencies = of(UvTable::frequencies);
    marks.baselines = of(UvTable::baselines);
    marks.scans = of(UvTable::scans);
    if (marks.baselines.count())
        marks.baselineTable = data_->observation().baselines();
    if (marks.scans.count())
        marks.scanTable = data_->observation().scans();
    return marks;
}

/// Other times are other baselines and scans, all of them marked; the other marks stay.
void DataWindow::askTimes()
{
    AUVXTIntervalPM times = data_->times();
    const HWND self = GetSafeHwnd();
    if (!AskTimeInterval(this, times) || CWnd::FromHandle(self) != this || !data_)
        return;
    std::array<ABitArray, uvTableCount> kept;
    for (const UvTable table : uvTables)
        kept[indexOf(table)] = selector(table).GetMark();
    UvObservation& observation = data_->observation();
    ++settingMarks_;
    plot_.ShowPoints(nullptr, nullptr, 0);
    (void)data_->chooseTimes(times);
    for (const UvTable table : uvTables) {
        const auto at = indexOf(table);
        ABitArray all(observation.rows(table));
        all.setAll(1);
        const int isOther = table == UvTable::baselines || table == UvTable::scans;
        all_[at] = all_[at] || isOther;
        selector(table).SetMark(isOther ? all : kept[at]);
        known_[at] = observation.rows(table);
    }
    --settingMarks_;
    plotAgain();
    status_.SetMessage("Times " + timeText(times.start, 1) + " to " + timeText(times.stop, 1));
}

// --- reading

int DataWindow::areTablesWhole() const
{
    const UvObservation& observation = data_->observation();
    return observation.isWhole(UvTable::baselines) && observation.isWhole(UvTable::scans);
}

void DataWindow::plotAgain()
{
    tablesWhole_ = areTablesWhole();
    data_->plot(marks(), pointView_);
    const AProgress progress;
    reading_ = std::make_unique<ProgressJob>(progress, "reading", std::chrono::steady_clock::now());
    reading_->writer.emplace(progress);
    reading_->writer->SetTotal(readingPieces);
    readPieces_ = 0;
    (void)data_->step(firstSlice);
    plot_.ShowPoints(&data_->observation().file(), data_->points(), 1);
    texts_[paneFound].clear();
    pointsRead(!data_->isReading());
    (void)SetTimer(readTimer, readPause);
    (void)SetTimer(sumTimer, sumPause);
    readPanels();
}

void DataWindow::readOn()
{
    const int wasReading = data_->isReading();
    const int goesOn = data_->step(slice);
    // a drag in the plot is about what was shown when it began
    if (wasReading && (!goesOn || now() - lastDrawing_ > drawPause) && GetCapture() != &plot_)
        pointsRead(!goesOn);
    else if (wasReading && !goesOn)
        drawLater_ = 1;
    if (drawLater_ && GetCapture() != &plot_)
        pointsRead(1);
    // scans that were marked before all of them was found
    const int areMarked = !all_[indexOf(UvTable::baselines)] || !all_[indexOf(UvTable::scans)];
    if (!tablesWhole_ && areMarked && areTablesWhole())
        return plotAgain();
    if (panelsWait_ && (areTablesWhole() || !data_->observation().isFilling()))
        readPanels();
    if (!data_->isReading() && !data_->observation().isFilling() && !drawLater_)
        (void)KillTimer(readTimer);
    showCounts();
    tellTrouble();
}

void DataWindow::pointsRead(int all)
{
    drawLater_ = 0;
    plot_.PointsRead(all);
    if (all)
        plot_.ShowModel(model_);
    lastDrawing_ = now();
    showCounts();
}

void DataWindow::stopReading()
{
    data_->stop();
    data_->observation().stop();
    if (AChartWnd* const shown = panels())
        shown->StopReading();
    pointsRead(1);
}

void DataWindow::goOnReading()
{
    data_->resume();
    data_->observation().resume();
    if (AChartWnd* const shown = panels())
        shown->ResumeReading();
    (void)SetTimer(readTimer, readPause);
}

/// Once for a file: what has been read stays in view.
void DataWindow::tellTrouble()
{
    const std::string trouble = told_ ? "" : data_->trouble();
    if (trouble.empty())
        return;
    told_ = 1;
    AfxMessageBox(data_->file() + ": " + trouble + ". What was read until now is shown.",
                  MB_ICONERROR);
}

int DataWindow::PreTranslateMessage(const MSG& message)
{
    // not taken: what else waits for Escape has it too
    const AChartWnd* const shown = panels();
    if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE && data_ &&
        (data_->isReading() || data_->observation().isFilling() ||
         (shown && shown->IsReading() && !CWnd::GetCapture())))
        stopReading();
    return CWnd::PreTranslateMessage(message);
}

void DataWindow::OnTimer(unsigned id)
{
    if (id == readTimer && data_)
        readOn();
    else if (id == sumTimer)
        showSums();
    else
        CWnd::OnTimer(id);
}

// --- the status line

void DataWindow::plotStatus(const AxisStatus& status)
{
    texts_[panePlace].clear();
    if (status.inPlot && data_)
        texts_[panePlace] = valToStr(status.x / megalambda, shownDigits) + " M\u03bb, " +
                            (pointView_.kind == UvView::Kind::coverage
                                 ? valToStr(status.y / megalambda, shownDigits) + " M\u03bb"
                                 : valToStr(status.y, shownDigits) + " Jy");
    status_.SetTexts(texts_);
}

void DataWindow::plotClicked(const AxisStatus& status)
{
    UvPlotPoints* const points = data_ ? data_->points() : nullptr;
    UvPlotPoint point;
    UvPointOrigin origin;
    if (!points || !points->nearest(status.x, status.y, status.stepX, status.stepY, reach, point)) {
        plot_.ChoosePoint(nullptr);
        texts_[paneFound].clear();
        return status_.SetTexts(texts_);
    }
    plot_.ChoosePoint(&point);
    if (!points->originOf(point, origin)) {
        texts_[paneFound] = "the file no longer has this point";
        return status_.SetTexts(texts_);
    }
    const PointWords words = wordsOf(data_->observation(), origin);
    const struct {
        UvTable table;
        int record;
    } found[] = {{UvTable::baselines, words.baseline}, {UvTable::scans, words.scan}};
    for (const auto& one : found) {
        AObservationTbl& table = selector(one.table).table();
        if (one.record > 0)
            table.SetSelectOneCell(table.rowOf(one.record), 1);
    }
    texts_[paneFound] = words.text;
    status_.SetTexts(texts_);
}

void DataWindow::plotBoxed(const UvRange& range)
{
    if (!data_ || !(range.leastX <= range.greatestX))
        return;
    UvMarks marked = marks();
    marked.times = data_->observation().times();
    UvPlotRows found(data_->observation().file(), std::move(marked), pointView_, range);
    const HWND self = GetSafeHwnd();
    const int done = doLongWork(this, "Listing visibilities", [&](const ProgressFunction& tell) {
        while (found.step())
            if (!tell(found.done()))
                return 0;
        return 1;
    });
    if (CWnd::FromHandle(self) != this || !data_)
        return;
    if (!done || !found.error().empty())
        return status_.SetMessage(done ? baseNameOf(data_->file()) + ' ' + found.error()
                                       : "Nothing was listed");
    const std::string kept = std::to_string(found.rows().size());
    const std::string all = std::to_string(found.count());
    list_.SetVisibilities(&data_->observation().file(), found.rows());
    tabs_.SetCurSel(uvTableCount);  // behind the tables of the file
    const std::string what = pointView_.seconds > 0 ? " means" : " visibilities";
    status_.SetMessage(kept == all ? "Listed " + all + what
                                   : "Listed the first " + kept + " of " + all + what);
}

/// With the time that is left.
std::string DataWindow::readingText(double done)
{
    if (reading_) {
        const int now = static_cast<int>(done * readingPieces);
        reading_->writer->Advance(now - std::exchange(readPieces_, now));
        reading_->update(std::chrono::steady_clock::now());
    }
    return reading_ ? reading_->stateText() : percentText(done);
}

void DataWindow::showCounts()
{
    const UvPlotPoints* const points = data_ ? data_->points() : nullptr;
    if (!points)
        return;
    const UvTotals& totals = points->totals();
    std::string text;
    if (data_->isReading())
        text = "reading, " + readingText(points->done()) + " (Esc stops)";
    else if (data_->isStopped())
        text = "stopped at " + percentText(points->done());
    else
        text = std::to_string(points->plotted()) +
               (points->view().seconds > 0 ? " means of " : " of ") +
               std::to_string(totals.visibilities) + " plotted, " + std::to_string(totals.flagged) +
               " flagged" +
               (totals.notFinite ? ", " + std::to_string(totals.notFinite) + " not finite" : "");
    if (text == texts_[paneCounts])
        return;
    texts_[paneCounts] = text;
    status_.SetTexts(texts_);
}

/// What is selected in the table, when that has changed.
void DataWindow::showSums()
{
    ATableWnd& table = activeTable();
    const ASelectRect& selection = table.getSelectRect();
    if (summedTable_ == &table && summed_ == selection)
        return;
    summedTable_ = &table;
    summed_ = selection;
    const SelectionSums sums = table.sumsOfSelection();
    std::string text;
    if (sums.numbers > 1)
        text = std::to_string(sums.numbers) + " numbers: sum " + valToStr(sums.sum, shownDigits) +
               ", mean " + valToStr(sums.mean, shownDigits) + ", " +
               valToStr(sums.least, shownDigits) + " to " + valToStr(sums.greatest, shownDigits) +
               (sums.partial ? " (of the first)" : "");
    if (text == texts_[paneSums])
        return;
    texts_[paneSums] = text;
    status_.SetTexts(texts_);
}

}  // namespace pavane
