#include "pavane/axes/windows/AAxisTrkSelWnd.h"

#include "pavane/resources/resource_ids.h"
#include "tessel/rounding.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr unsigned barId = 101, axisId = 102, statusId = 103, tableId = 104;
constexpr int listWidth = 110;
constexpr int listHeight = 26;
constexpr int statusHeight = 20;
constexpr int tableWidth = 320;
constexpr COLORREF frameColor = RGB(240, 240, 240);
/// Digits that values and sums are shown with.
constexpr int valueDigits = 4;

/// A place with the decimals that tell it from the next pixel.
CString placeText(double value, double step, const ValueUnit& unit)
{
    value *= unit.scale;
    step *= std::fabs(unit.scale);
    const double decimals = step > 0 && std::isfinite(step) ? std::ceil(-std::log10(step)) : 0;
    constexpr double mostDecimals = 12;
    const CString text = decimals > mostDecimals
                             ? valToStr(value)
                             : nValToStr(value, std::max(0, truncated(decimals)));
    return unit.name.empty() ? text : text + " " + unit.name;
}

}  // namespace

AAxisTrkSelWnd::AAxisTrkSelWnd() : axis_(*this)
{
    SetFlag(windowNoWaitCursor, 1);
    SetAxisWnd(&axis_);
}

const char* AAxisTrkSelWnd::GetWndClassName() { return "AAxisTrkSelWnd"; }

void AAxisTrkSelWnd::Axis::OnStatus(const AxisStatus& status)
{
    owner_->showStatusText(owner_->StatusText(status));
}

void AAxisTrkSelWnd::showStatusText(const CString& text)
{
    if (text == shownStatus_)
        return;
    shownStatus_ = text;
    status_.SetWindowText(text);
}

void AAxisTrkSelWnd::Axis::OnAreasChanged()
{
    if (owner_->showTable_)
        owner_->table_.Refresh();
}

void AAxisTrkSelWnd::SetUpWindow()
{
    ATrackToolBarOwnerWnd::SetUpWindow();
    const CRect none(0, 0, 10, 10);
    constexpr unsigned style = WS_CHILD | WS_VISIBLE;
    bar_.Create(style, none, this, barId);
    bar_.SetupButtons(0);
    bar_.SetOwnerWnd(this, 1);
    list_.Create(style | WS_TABSTOP | CBS_DROPDOWNLIST, CRect(0, 0, listWidth, listHeight), &bar_,
                 ID_CHANGE_AREA);
    bar_.AddControl(&list_, listWidth);
    axis_.Create("AAxisWnd", " ", style | WS_TABSTOP, none, this, axisId);
    axis_.SetToolBar(&bar_);
    axis_.SetComboBox(&list_);
    status_.Create("", style, none, this, statusId);
    table_.Create("AAreaTableWnd", " ", WS_CHILD | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL, none, this,
                  tableId);
    table_.SetAxisWnd(&axis_);
    layOut();
}

void AAxisTrkSelWnd::SetUnits(const ValueUnit& x, const ValueUnit& y)
{
    unitX_ = x;
    unitY_ = y;
    table_.SetUnits(x, y);
}

void AAxisTrkSelWnd::SetFluxUnit(double cells, const CString& unit)
{
    beamCells_ = cells;
    fluxUnit_ = unit;
}

void AAxisTrkSelWnd::ShowAreaTable(int on)
{
    showTable_ = on != 0;
    table_.ShowWindow(showTable_ ? SW_SHOW : SW_HIDE);
    layOut();
    if (showTable_)
        table_.Refresh();
}

void AAxisTrkSelWnd::layOut()
{
    if (!axis_.GetSafeHwnd())
        return;
    CRect client;
    GetClientRect(client);
    const int top = std::min(bar_.GetBarHeight(client.Width()), client.Height());
    const int bottom = std::max(top, client.bottom - statusHeight);
    const int right = showTable_ ? std::max(0, client.right - tableWidth) : client.right;
    bar_.MoveWindow(CRect(0, 0, client.right, top));
    axis_.MoveWindow(CRect(0, top, right, bottom));
    if (showTable_)
        table_.MoveWindow(CRect(right, top, client.right, bottom));
    status_.MoveWindow(CRect(4, bottom, std::max(4, client.right - 4), client.bottom));
}

void AAxisTrkSelWnd::OnSize(unsigned type, int cx, int cy)
{
    ATrackToolBarOwnerWnd::OnSize(type, cx, cy);
    layOut();
}

void AAxisTrkSelWnd::OnSetFocus(CWnd* old)
{
    ATrackToolBarOwnerWnd::OnSetFocus(old);
    if (axis_.GetSafeHwnd())
        axis_.SetFocus();
}

void AAxisTrkSelWnd::DrawWindow(CDC& dc, CRect&, CRect& update)
{
    dc.FillSolidRect(update, frameColor);
}

int AAxisTrkSelWnd::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code == 0 && id == ID_VERTEX_TABLE)
        return ShowAreaTable(!showTable_), 1;
    if (ATrackToolBarOwnerWnd::OnCommand(id, code, control))
        return 1;
    return code == 0 && axis_.RunCommand(id);
}

CString AAxisTrkSelWnd::StatusText(const AxisStatus& status) const
{
    CString text;
    const CString unit = unit_.empty() ? CString() : " " + unit_;
    if (status.inPlot)
        text = "x " + placeText(status.x, status.stepX, unitX_) + "  y " +
               placeText(status.y, status.stepY, unitY_);
    if (status.inMap) {
        text += "   column " + std::to_string(status.column) + "  row " +
                std::to_string(status.row) + "   ";
        text += std::isfinite(status.value)
                    ? valToStr(static_cast<double>(status.value), valueDigits) + unit
                    : CString("blank");
    }
    if (status.hasAreas) {
        text += text.empty() ? "" : "     ";
        text += std::to_string(status.cells);
        text += status.cells == 1 ? " cell, " : " cells, ";
        text += beamCells_ > 0 ? valToStr(status.sum / beamCells_, valueDigits) + " " + fluxUnit_
                               : "sum " + valToStr(status.sum, valueDigits) + unit;
    }
    return text;
}

}  // namespace pavane
