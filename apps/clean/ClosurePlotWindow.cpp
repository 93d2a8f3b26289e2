#include "apps/clean/ClosurePlotWindow.h"

#include "apps/clean/CleanSession.h"
#include "apps/clean/data_plot_menu.h"
#include "apps/clean/DataPlots.h"
#include "apps/view/long_work.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/multi/multi_reading.h"
#include "pavane/calibration/windows/AClosureSelectDlg.h"
#include "platform/CMenu.h"
#include "platform/messages.h"
#include "tessel/paths.h"
#include "tessel/uvfits/UvGroupScan.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

constexpr CRect place(200, 140, 1220, 840);
constexpr int trianglesWidth = 96;
constexpr int progressPieces = 1000;
/// Beyond so many components times visibilities reading would take minutes.
constexpr double mostModelTerms = 1e9;
/// Panels of a page that look well, in steps.
constexpr int panelSteps[] = {1, 2, 4, 6, 8, 12, 20, 30, AChartWnd::mostPanels};

}  // namespace

void ClosurePlotWindow::View::OnMultiStatus(const MultiStatus& status)
{
    if (GetAxis() && status.inPlot)
        told(statusText(*GetAxis(), status));
}

ClosurePlotWindow::ClosurePlotWindow(DataPlots& plots) : DataPlotWindow(plots)
{
    view_.told = [this](const CString& text) { Tell(text); };
    view_.read = [this] { follow(); };
    view_.left = [this](int step) { focusRow(step); };
}

int ClosurePlotWindow::createPlot(unsigned id)
{
    return view_.Create(view_.GetWndClassName(), title(), WS_CHILD | WS_VISIBLE | WS_TABSTOP,
                        CRect(), this, id);
}

int ClosurePlotWindow::createRow()
{
    return triangles_.Create("&Triangles...", CButton::Kind::push,
                             WS_CHILD | WS_VISIBLE | WS_TABSTOP, CRect(), this, idTriangles) &&
           addToRow(triangles_, trianglesWidth, "Which closure phases are shown (Ctrl+R)");
}

const MenuTemplate& ClosurePlotWindow::menu() const { return closurePlotMenu; }
CRect ClosurePlotWindow::firstPlace() const { return place; }
void ClosurePlotWindow::chosen(CWnd&) {}

CString ClosurePlotWindow::title() const
{
    return "Closure phases  -  " + baseNameOf(plots().session().data());
}

const AProgress* ClosurePlotWindow::running() const { return writer_ ? &progress_ : nullptr; }
void ClosurePlotWindow::stop() { view_.StopReading(); }

/// What the data and the model of now are.
std::string ClosurePlotWindow::wanted() const
{
    const CleanSession& session = plots().session();
    const StudyRound* const round = session.study().round(session.shown());
    const DataState state =
        plots().source() == PlotSource::round && round ? round->data : session.study().dataState();
    return std::to_string(static_cast<int>(plots().source())) + ' ' + AStudy::tagOf(state) +
           " model " + std::to_string(plots().modelOfNow());
}

void ClosurePlotWindow::Refresh()
{
    if (wanted() != shown_)
        readAgain();
    DataPlotWindow::Refresh();
    if (!running())
        Tell(counts());
}

void ClosurePlotWindow::readAgain()
{
    view_.SetData(nullptr);
    shown_ = wanted();
    if (!plots().openData(file_, 1))
        return;
    shown_ = wanted();  // flags may have been kept
    AComponents model = plots().model();
    const UvHeader& header = file_.header();
    if (static_cast<double>(model.count()) * static_cast<double>(header.groups) * header.ifs *
            header.channels >
        mostModelTerms)
        model = AComponents();
    progress_ = AProgress();
    writer_ = std::make_unique<AProgressWriter>(progress_);
    writer_->SetTotal(progressPieces);
    writer_->SetText("Reading closure phases");
    told_ = 0;
    view_.SetData(&file_, chosen_.empty() ? ClosureChoice::ofFile() : ClosureChoice(chosen_), {},
                  averaging_, model);
}

void ClosurePlotWindow::follow()
{
    if (!writer_)
        return;
    const int now = static_cast<int>(std::clamp(view_.ReadDone(), 0.0, 1.0) * progressPieces);
    if (now > told_)
        writer_->Advance(now - std::exchange(told_, now));
    if (view_.IsReading())
        return;
    (void)writer_->Finish();
    writer_.reset();
    DataPlotWindow::Refresh();
    Tell(counts());
}

CString ClosurePlotWindow::counts() const
{
    if (!view_.ReadError().empty())
        return baseNameOf(file_.name()) + ' ' + view_.ReadError();
    const ClosureReader* const reader = view_.GetReader();
    if (!reader)
        return {};
    std::string text = std::to_string(reader->triangles().size()) + " triangles";
    if (view_.IsStopped())
        text += ", of a part of the data: reading was stopped";
    if (plots().modelOfNow() != DataPlots::noModel && !reader->hasModel())
        text += plots().modelNote().empty() ? "; the model has too many components to be shown"
                                            : "; " + plots().modelNote();
    return text;
}

void ClosurePlotWindow::askTriangles()
{
    if (!file_.isOpen())
        return;
    UvGroupScan scan(file_, UvGroupScan::baselines);
    constexpr std::int64_t piece = std::int64_t{1} << 20;
    const int isFound =
        doLongWork(this, "Looking for baselines", [&](const ProgressFunction& tell) {
            while (scan.step(piece))
                if (!tell(scan.done()))
                    return 0;
            return 1;
        });
    if (!isFound)
        return;
    if (!scan.error().empty())
        return Tell(baseNameOf(file_.name()) + ' ' + scan.error());
    AClosureSelectDlg dialog(file_, scan.foundBaselines(), {}, this);
    if (!chosen_.empty())
        dialog.SetChosen(chosen_);
    dialog.SetAveraging(averaging_);
    const HWND self = GetSafeHwnd();
    const int isChosen = dialog.DoModal() == IDOK;
    if (!isChosen || CWnd::FromHandle(self) != this)
        return;
    chosen_ = dialog.GetChosen();
    averaging_ = dialog.GetAveraging();
    readAgain();
    DataPlotWindow::Refresh();
}

int ClosurePlotWindow::runOwn(unsigned id)
{
    const int panels = view_.GetPanelsOfPage();
    switch (id) {
    case idTriangles:
        return askTriangles(), 1;
    case ID_FLAG_NEXT:
        return view_.ShowNext(1), 1;
    case ID_FLAG_PREVIOUS:
        return view_.ShowNext(-1), 1;
    case idMoreRows:
        view_.SetPanelsOfPage(
            *std::upper_bound(std::begin(panelSteps), std::end(panelSteps) - 1, panels));
        return 1;
    case idFewerRows: {
        const int* const at =
            std::lower_bound(std::begin(panelSteps), std::end(panelSteps), panels);
        view_.SetPanelsOfPage(at == std::begin(panelSteps) ? *at : *(at - 1));
        return 1;
    }
    default:
        return 0;
    }
}

void ClosurePlotWindow::OnInitMenuPopup(CMenu& popup)
{
    for (CMenu::Line& line : popup.lines())
        line.enabled = commandOf(line.id) ? view_.IsCommandEnabled(line.id) : 1;
}

void ClosurePlotWindow::OnDestroy()
{
    view_.SetData(nullptr);
    file_.close();
    shown_.clear();
    chosen_.clear();
    writer_.reset();
    DataPlotWindow::OnDestroy();
}

}  // namespace pavane
