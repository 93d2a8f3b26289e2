#include "apps/clean/DataPlotWindow.h"

#include "apps/clean/CleanSession.h"
#include "apps/clean/data_plot_menu.h"
#include "apps/clean/DataPlots.h"
#include "apps/view/same_file.h"
#include "apps/view/save_picture.h"
#include "pavane/axes/windows/APlotWnd.h"
#include "platform/accessibility.h"
#include "platform/CMenu.h"
#include "platform/dialog_ground.h"
#include "platform/messages.h"
#include "platform/window_dc.h"
#include "tessel/paths.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr unsigned idPlot = 1, idStrip = 2, idStatus = 3, idSourceList = 11, idModelList = 12;
constexpr int rowHeight = 30, gap = 6, inset = 3;
constexpr int sourceWidth = 150, modelWidth = 180;

}  // namespace

int DataPlotWindow::Open(CWnd* owner)
{
    const CRect place = firstPlace();
    row_.clear();
    return CWnd::Create("PavaneDataPlot", title(), WS_OVERLAPPEDWINDOW | WS_VISIBLE, place, owner,
                        0);
}

int DataPlotWindow::OnCreate(CREATESTRUCT& cs)
{
    if (CWnd::OnCreate(cs) < 0 || !tips_.Create(this) ||
        !addList(source_, sourceWidth, "Which data are shown", idSourceList) ||
        !addList(model_, modelWidth, "Whose model is shown", idModelList) || !createRow() ||
        !createPlot(idPlot) || !strip_.Create(this, idStrip) || !status_.Create(this, idStatus))
        return -1;
    isBarShown_ = 0;
    (void)strip_.ShowWindow(SW_HIDE);
    CMenu made;
    made.LoadMenu(menu());
    SetMenu(made);
    layOut();
    return 0;
}

int DataPlotWindow::addToRow(CWnd& control, int width, const CString& name)
{
    SetAccessName(control.GetSafeHwnd(), name);
    (void)tips_.AddTool(&control, name);
    row_.push_back({&control, width});
    return 1;
}

int DataPlotWindow::addList(CComboBox& list, int width, const CString& name, unsigned id)
{
    return list.Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP | CBS_DROPDOWNLIST, CRect(), this, id) &&
           addToRow(list, width, name);
}

void DataPlotWindow::fill(CComboBox& list, const std::vector<std::string>& lines, int chosen)
{
    int isSame = list.GetCount() == std::ssize(lines);
    for (int i = 0; isSame && i < list.GetCount(); ++i)
        isSame = list.GetLBText(i) == lines[static_cast<std::size_t>(i)];
    if (!isSame) {
        list.ResetContent();
        for (const std::string& line : lines)
            (void)list.AddString(line);
    }
    if (list.GetCurSel() != chosen)
        (void)list.SetCurSel(chosen);
}

void DataPlotWindow::Refresh()
{
    SetWindowText(title());
    showSource();
    const AProgress* const runs = running();
    if (runs && !(*runs == followed_ && isBarShown_)) {
        followed_ = *runs;
        strip_.Follow(*runs, "");
    } else if (!runs && isBarShown_) {
        strip_.End("");
    }
    if (isBarShown_ != (runs != nullptr)) {
        isBarShown_ = runs != nullptr;
        (void)strip_.ShowWindow(isBarShown_ ? SW_SHOW : SW_HIDE);
        layOut();
    }
    strip_.SetNumbers(runs ? "Escape stops it" : "");
}

void DataPlotWindow::showSource()
{
    const int shown = plots_.session().shown();
    const std::string number = std::to_string(shown);
    fill(source_, {"Original data", "Corrected data", "Data of round " + number},
         static_cast<int>(plots_.source()));
    modelRounds_ = {DataPlots::noModel, DataPlots::shownModel};
    std::vector<std::string> lines{"No model", "Model of round " + number + ", shown"};
    const std::vector<StudyRound>& rounds = plots_.session().study().rounds();
    for (auto round = rounds.rbegin(); round != rounds.rend(); ++round)
        if (round->hasModel) {
            modelRounds_.push_back(round->id);
            lines.push_back("Model of round " + std::to_string(round->id));
        }
    const auto at = std::find(modelRounds_.begin(), modelRounds_.end(), plots_.modelRound());
    fill(model_, lines, at == modelRounds_.end() ? 0 : static_cast<int>(at - modelRounds_.begin()));
}

void DataPlotWindow::layOut()
{
    CRect client;
    GetClientRect(client);
    const int cx = client.Width(), cy = client.Height();
    int left = gap;
    for (const Place& place : row_) {
        place.control->MoveWindow({left, inset, left + place.width, rowHeight - inset});
        left += place.width + gap;
    }
    const int foot = std::max(rowHeight, cy - StatusLine::height());
    const int bar = isBarShown_ ? std::max(rowHeight, foot - RunStrip::height()) : foot;
    if (plot().GetSafeHwnd())
        plot().MoveWindow({0, rowHeight, cx, bar});
    if (strip_.GetSafeHwnd())
        strip_.MoveWindow({0, bar, cx, foot});
    if (status_.GetSafeHwnd())
        status_.MoveWindow({0, foot, cx, cy});
}

void DataPlotWindow::OnSize(unsigned type, int cx, int cy)
{
    CWnd::OnSize(type, cx, cy);
    layOut();
}

void DataPlotWindow::OnPaint()
{
    CPaintDC dc(this);
    CRect client;
    GetClientRect(client);
    dc.FillSolidRect(client, GetDialogGround());
}

void DataPlotWindow::OnSetFocus(CWnd*)
{
    if (plot().GetSafeHwnd())
        plot().SetFocus();
}

void DataPlotWindow::OnClose()
{
    DataPlots& plots = plots_;
    DestroyWindow();
    plots.windowClosed();
}

void DataPlotWindow::OnDestroy()
{
    row_.clear();
    CWnd::OnDestroy();
}

// --- keys of the row

/// To the first control of the row, or the last.
void DataPlotWindow::focusRow(int step)
{
    if (!row_.empty())
        (step > 0 ? row_.front() : row_.back()).control->SetFocus();
}

int DataPlotWindow::takeKey(const MSG& message)
{
    const auto at = std::find_if(row_.begin(), row_.end(), [](const Place& place) {
        return CWnd::GetFocus() == place.control;
    });
    if (at == row_.end() || message.message != WM_KEYDOWN)
        return 0;
    if (message.wParam == WPARAM{VK_TAB} && GetKeyState(VK_CONTROL) >= 0) {
        const auto count = std::ssize(row_);
        auto next = at - row_.begin();
        do
            next = (next + (GetKeyState(VK_SHIFT) < 0 ? count - 1 : 1)) % count;
        while (!row_[static_cast<std::size_t>(next)].control->IsWindowEnabled());
        row_[static_cast<std::size_t>(next)].control->SetFocus();
        return 1;
    }
    const auto* const list = dynamic_cast<CComboBox*>(at->control);
    if (message.wParam == WPARAM{VK_F6} ||
        (message.wParam == WPARAM{VK_ESCAPE} && !(list && list->GetDroppedState()))) {
        plot().SetFocus();
        return 1;
    }
    return 0;
}

int DataPlotWindow::PreTranslateMessage(const MSG& message)
{
    if (message.message == WM_KEYDOWN && message.wParam == WPARAM{VK_ESCAPE} && running() &&
        !CWnd::GetCapture()) {
        stop();
        return 1;
    }
    return takeKey(message) || CWnd::PreTranslateMessage(message);
}

int DataPlotWindow::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code == CBN_SELCHANGE && control == &source_)
        return plots_.setSource(static_cast<PlotSource>(source_.GetCurSel())), 1;
    if (code == CBN_SELCHANGE && control == &model_) {
        const auto line = static_cast<std::size_t>(std::max(model_.GetCurSel(), 0));
        if (line < modelRounds_.size())
            plots_.setModelRound(modelRounds_[line]);
        return 1;
    }
    if (code == CBN_SELCHANGE && control)
        return chosen(*control), 1;
    if (code != 0)
        return CWnd::OnCommand(id, code, control);
    if (CWnd::GetCapture())
        return 1;  // a key of the menu while the pointer drags
    switch (id) {
    case idClosePlot:
        return PostMessage(WM_CLOSE), 1;
    case idSavePlotPicture:
        if (picture_.empty())
            picture_ = folderOf(plots_.session().data()) + "plot.png";
        (void)savePictureOf(plot(), title(), picture_, [this](const std::string& file) {
            return !isSameFile(file, plots_.session().data());
        });
        return 1;
    default:
        return runOwn(id) || plots_.run(id, this) || plot().RunCommand(id) ||
               CWnd::OnCommand(id, code, control);
    }
}

}  // namespace pavane
