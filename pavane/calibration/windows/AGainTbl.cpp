#include "pavane/calibration/windows/AGainTbl.h"

#include "pavane/calibration/gain_charts.h"
#include "pavane/resources/gain_messages.h"
#include "pavane/tables/TableWatch.h"
#include "platform/controls.h"
#include "platform/message.h"
#include "tessel/time_text.h"
#include "tessel/value_text.h"

#include <cmath>
#include <complex>
#include <iterator>
#include <numbers>
#include <utility>

namespace pavane
{

namespace
{

enum Column {
    antennaColumn = 1,
    ifColumn,
    handColumn,
    timeColumn,
    amplitudeColumn,
    phaseColumn,
    errorColumn,
    ratioColumn,
    iterationsColumn,
    stateColumn
};
constexpr double secondsOfDay = 86400;
constexpr int digits = 6;
constexpr int ratioDigits = 4;
constexpr int rowUnit = 13;  // eighths of a character

const char* stateText(const Gain& gain)
{
    return gainStateTexts[gain.state == GainState::failed ? 2 : gain.isFlagged ? 1 : 0];
}

}  // namespace

AGainTbl::AGainTbl()
{
    constexpr std::uint16_t number = colChars | colEdit | colNoGlyph;
    ATableColumn columns[] = {{7, colChars},  {14, colChars},           {12, colChars},
                              {8, colChars},  {16, colChars},           {14, number},
                              {14, number},   {13, colChars},           {11, colChars},
                              {13, colChars}, {13, colChars | colCombo}};
    static_assert(std::size(columns) == std::size(gainTitles) + 1);
    setColumnPar(columns, static_cast<long>(std::size(columns)));
    setOptions(optHeaderRow | optVertLines | optHorzLines | optRangeSelect | optSizeColumns |
               optSort);
    SetCellHeaderUnit(rowUnit);
}

AGainTbl::~AGainTbl()
{
    if (gains_)
        gains_->forget(listener_);
}

const char* AGainTbl::GetWndClassName() { return "AGainTbl"; }
CString AGainTbl::profileSection() { return "Table of gains"; }
/// Digits, and whatever else begins a text, are no keys of menus here.
unsigned AGainTbl::OnGetDlgCode() { return DLGC_WANTALLKEYS | DLGC_WANTCHARS; }

void AGainTbl::SetGains(EditedGains* gains)
{
    const TableWatch watch(*this);
    setRows(0);  // an editor on the gains before closes
    if (watch.gone())
        return;
    if (gains_)
        gains_->forget(listener_);
    gains_ = gains;
    cells_.clear();
    if (gains_)
        listener_ = gains_->listen([this] { follow(); });
    follow();
}

void AGainTbl::follow()
{
    std::vector<std::size_t> cells;
    if (gains_)
        for (std::size_t i = 0; i < gains_->gains().cells().size(); ++i)
            if (gains_->gains().cells()[i].state != GainState::missing)
                cells.push_back(i);
    const TableWatch watch(*this);
    const int isOther = cells != cells_;
    cells_ = std::move(cells);
    if (isOther)
        setRows(static_cast<long>(cells_.size()));
    if (watch.gone() || !GetSafeHwnd())
        return;
    if (isOther)
        ReConstruct({1, 1, 1, 1});
    if (!watch.gone())
        Invalidate();
}

std::ptrdiff_t AGainTbl::cellAt(int row) const
{
    const auto record = static_cast<std::size_t>(recordOf(row)) - 1;
    return gains_ && row > 0 && record < cells_.size() &&
                   cells_[record] < gains_->gains().cells().size()
               ? static_cast<std::ptrdiff_t>(cells_[record])
               : -1;
}

CString AGainTbl::hdrCellAsStr(int row, int column, void*)
{
    if (row > 0)
        return std::to_string(recordOf(row));
    return column > 0 && column <= static_cast<int>(std::size(gainTitles)) ? gainTitles[column - 1]
                                                                           : "";
}

CString AGainTbl::cellAsStr(int row, int column, void*)
{
    const std::ptrdiff_t cell = cellAt(row);
    if (cell < 0)
        return {};
    const AGains& gains = gains_->gains();
    const GainIndex at = gainIndexOf(gains, static_cast<std::size_t>(cell));
    const Gain& gain = gains.cells()[static_cast<std::size_t>(cell)];
    const int hasValue = gain.state == GainState::solved;
    switch (column) {
    case antennaColumn:
        return gainAntennaName(gains, at.antenna);
    case ifColumn:
        return gainGroupName(gains, at.group).substr(sizeof "IF");  // the title says the rest
    case handColumn:
        return CString(1, gains.hands()[at.hand]);
    case timeColumn:
        return timeToStr(gains.intervals()[at.interval].middle() * secondsOfDay);
    case amplitudeColumn:
        return hasValue ? valToStr(std::abs(gain.value), digits) : CString();
    case phaseColumn:
        return hasValue ? valToStr(gainPhase(gain), digits) : CString();
    case errorColumn:
        return hasValue && gain.error > 0 ? valToStr(gain.error, ratioDigits) : CString();
    case ratioColumn:
        return hasValue && gain.error > 0 ? valToStr(gain.ratio(), ratioDigits) : CString();
    case iterationsColumn:
        return std::to_string(gain.iterations);
    case stateColumn:
        return stateText(gain);
    default:
        return {};
    }
}

int AGainTbl::cellNumber(int row, int column, double& value)
{
    const std::ptrdiff_t cell = cellAt(row);
    if (cell < 0)
        return 0;
    const AGains& gains = gains_->gains();
    const GainIndex at = gainIndexOf(gains, static_cast<std::size_t>(cell));
    const Gain& gain = gains.cells()[static_cast<std::size_t>(cell)];
    const int hasValue = gain.state == GainState::solved;
    switch (column) {
    case ifColumn:
        value = static_cast<double>(at.group);
        return 1;
    case timeColumn:
        value = gains.intervals()[at.interval].middle() * secondsOfDay;
        return 1;
    case amplitudeColumn:
        value = std::abs(gain.value);
        return hasValue;
    case phaseColumn:
        value = gainPhase(gain);
        return hasValue;
    case errorColumn:
        value = gain.error;
        return hasValue && gain.error > 0;
    case ratioColumn:
        value = gain.ratio();
        return hasValue && gain.error > 0;
    case iterationsColumn:
        value = gain.iterations;
        return 1;
    default:
        return 0;
    }
}

int AGainTbl::take(int row, int column, const CString& text, CString& message)
{
    const std::ptrdiff_t at = cellAt(row);
    if (at < 0)
        return 0;
    const auto cell = static_cast<std::size_t>(at);
    // what is put back as it was shown leaves every bit
    if (text == cellAsStr(row, column, nullptr))
        return 1;
    const Gain gain = gains_->gains().cells()[cell];
    const CString label =
        "Edit of " + gainAntennaName(gains_->gains(), gainIndexOf(gains_->gains(), cell).antenna);
    if (column == stateColumn && gain.state == GainState::solved)
        for (const int on : {0, 1})
            if (text == gainStateTexts[on])
                return gains_->setFlags({cell}, on, label) > 0;
    double number = 0;
    const int isNumber = stoval(text, number) && std::isfinite(number);
    if (gain.state != GainState::solved)
        return 0;
    if (column == amplitudeColumn) {
        if (isNumber && number > 0)
            return gains_->setValue(cell, gain.value * (number / std::abs(gain.value)), label) > 0;
        message = gainAmplitudeIs;
    } else if (column == phaseColumn) {
        constexpr double degree = std::numbers::pi / 180;
        if (isNumber)
            return gains_->setValue(cell, std::polar(std::abs(gain.value), number * degree),
                                    label) > 0;
        message = gainPhaseIs;
    }
    return 0;
}

int AGainTbl::setCellStr(int row, int column, const CString& text)
{
    CString message;
    if (take(row, column, text, message))
        return 1;
    if (!message.empty())
        AfxMessageBox(message, MB_OK | MB_ICONERROR);
    return 0;
}

int AGainTbl::pasteCell(int row, int column, const CString& text)
{
    CString ignored;  // whoever pastes counts what is refused
    return take(row, column, text, ignored);
}

int AGainTbl::isEnableAutoEdit(int row, int column)
{
    const std::ptrdiff_t cell = cellAt(row);
    return (column == amplitudeColumn || column == phaseColumn) && cell >= 0 &&
           gains_->gains().cells()[static_cast<std::size_t>(cell)].state == GainState::solved;
}

int AGainTbl::isEnableAutoComboBox(int row, int column)
{
    return column == stateColumn && isEnableAutoEdit(row, amplitudeColumn);
}

int AGainTbl::FillComboBox(CComboBox* list, int row, int column)
{
    for (const int on : {0, 1})
        (void)list->AddString(gainStateTexts[on]);
    return cellAsStr(row, column, nullptr) == gainStateTexts[1];
}

int AGainTbl::getFromComboBox(CComboBox* list, int row, int column)
{
    const int chosen = list->GetCurSel();
    return chosen < 0 || setCellStr(row, column, list->GetLBText(chosen));
}

std::size_t AGainTbl::FlagSelected(int on)
{
    const TableWatch watch(*this);
    if (!gains_ || !hideEditors() || watch.gone())
        return 0;
    std::vector<std::size_t> cells;
    const CellRange selected = selectedCells(getSelectRect(), grid().extent());
    for (std::int64_t row = selected.firstRow; row <= selected.lastRow; ++row)
        if (const std::ptrdiff_t at = cellAt(static_cast<int>(row)); at >= 0)
            if (const Gain& gain = gains_->gains().cells()[static_cast<std::size_t>(at)];
                gain.state == GainState::solved && (gain.isFlagged != 0) != (on != 0))
                cells.push_back(static_cast<std::size_t>(at));
    const std::size_t count = cells.size();
    return gains_->setFlags(cells, on,
                            (on ? "Flagging of " : "Restoring of ") + std::to_string(count) +
                                (count == 1 ? " solution" : " solutions"));
}

void AGainTbl::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const int isPlain = GetKeyState(VK_CONTROL) >= 0 && GetKeyState(VK_SHIFT) >= 0;
    if (isPlain && (key == VK_DELETE || key == VK_INSERT))
        return (void)FlagSelected(key == VK_DELETE);
    ATableWnd::OnKeyDown(key, repeat, flags);
}

void AGainTbl::drawHeaderCell(CDC& dc, CRect& rect, int row, int column)
{
    ATableWnd::drawHeaderCell(dc, rect, row, column);
    drawCellText(dc, rect, row, column, hdrCellAsStr(row, column, nullptr),
                 column >= timeColumn && column < stateColumn);
}

void AGainTbl::drawCell(CDC& dc, CRect& rect, int row, int column, int state)
{
    ATableWnd::drawCell(dc, rect, row, column, state);
    drawCellText(dc, rect, row, column, cellAsStr(row, column, nullptr),
                 column >= timeColumn && column < stateColumn);
}

void AGainTbl::beginEdits(const CString& label)
{
    if (gains_)
        gains_->begin(label);
}

void AGainTbl::endEdits()
{
    if (gains_)
        gains_->end();
}

int AGainTbl::canUndo() { return gains_ && gains_->history().canUndo(); }
int AGainTbl::canRedo() { return gains_ && gains_->history().canRedo(); }
int AGainTbl::Undo() { return walkHistory(0); }
int AGainTbl::Redo() { return walkHistory(1); }
CString AGainTbl::undoLabel()
{
    return gains_ ? CString(gains_->history().undoLabel()) : CString();
}
CString AGainTbl::redoLabel()
{
    return gains_ ? CString(gains_->history().redoLabel()) : CString();
}

int AGainTbl::walkHistory(int forward)
{
    const TableWatch watch(*this);
    if (!gains_ || !hideEditors() || watch.gone())
        return 0;
    return forward ? gains_->redo() : gains_->undo();
}

}  // namespace pavane
