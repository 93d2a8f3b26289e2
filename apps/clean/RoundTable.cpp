#include "apps/clean/RoundTable.h"

#include "pavane/tables/TableWatch.h"
#include "platform/CDC.h"

#include <utility>

namespace pavane
{

namespace
{

constexpr int rowUnit = 11;  // eighths of a character
constexpr int numberCharacters = 5;
constexpr const char* comparedMark = "\u2194";

}  // namespace

RoundTable::RoundTable()
{
    setOptions(optHeaderRow | optVertLines | optSizeColumns);
    SetCellHeaderUnit(rowUnit);
    std::vector<ATableColumn> columns{{numberCharacters, colChars}};
    for (int column = 1; column <= roundColumns; ++column)
        columns.push_back(
            {roundWidth(column),
             static_cast<std::uint16_t>(column == roundNote ? colChars | colEdit : colChars)});
    setColumnPar(columns.data(), std::ssize(columns));
}

void RoundTable::SetLines(std::vector<RoundLine> lines, int number)
{
    const TableWatch watch(*this);
    const int before = std::exchange(telling_, 0);
    lines_ = std::move(lines);
    setRows(static_cast<long>(lines_.size()));
    if (watch.gone())
        return;
    SetUpWindow();
    for (std::size_t i = 0; i < lines_.size() && !watch.gone(); ++i)
        if (lines_[i].number == number)
            SetSelectOneCell(static_cast<int>(i) + 1, roundName);
    if (watch.gone())
        return;
    current_ = number;
    telling_ = before;
    Invalidate();
}

const RoundLine* RoundTable::lineAt(int row) const
{
    return row >= 1 && row <= std::ssize(lines_) ? &lines_[static_cast<std::size_t>(row) - 1]
                                                 : nullptr;
}

void RoundTable::SetCompared(int number)
{
    if (compared_ == number)
        return;
    compared_ = number;
    Invalidate();
}

int RoundTable::selected() const
{
    const RoundLine* const line = lineAt(const_cast<RoundTable*>(this)->getSelectRect().anchorRow);
    return line ? line->number : -1;
}

CString RoundTable::hdrCellAsStr(int row, int column, void*)
{
    if (row == 0)
        return column == 0 ? "#" : roundTitle(column);
    const RoundLine* const line = lineAt(row);
    if (!line)
        return {};
    const CString number = std::to_string(line->number);
    return line->number == compared_ ? comparedMark + number : number;
}

CString RoundTable::cellAsStr(int row, int column, void*)
{
    const RoundLine* const line = lineAt(row);
    return line ? roundCell(*line, column) : CString();
}

int RoundTable::isEnableAutoEdit(int, int column) { return column == roundNote; }

int RoundTable::setCellStr(int row, int column, const CString& text)
{
    const RoundLine* const line = lineAt(row);
    if (!line || column != roundNote)
        return 0;
    if (line->note == text)
        return 1;
    const int number = line->number;
    lines_[static_cast<std::size_t>(row) - 1].note = text;
    if (noted)
        noted(number, text);
    return 1;
}

void RoundTable::drawHeaderCell(CDC& dc, CRect& rect, int row, int column)
{
    ATableWnd::drawHeaderCell(dc, rect, row, column);
    drawCellText(dc, rect, row, column, hdrCellAsStr(row, column, nullptr),
                 column != roundName && column != roundNote);
}

void RoundTable::drawCell(CDC& dc, CRect& rect, int row, int column, int state)
{
    ATableWnd::drawCell(dc, rect, row, column, state);
    const int isNumber = column != roundName && column != roundNote;
    drawCellText(dc, rect, row, column, cellAsStr(row, column, nullptr), isNumber);
}

void RoundTable::sendSelectionChange(ASelectRect& next, ASelectRect& previous)
{
    ATableWnd::sendSelectionChange(next, previous);
    const int number = selected();
    if (number < 0 || number == current_ || !telling_)
        return;
    current_ = number;
    if (chosen)
        chosen(number);
}

void RoundTable::kbEnter(int count, int shift)
{
    if (getSelectRect().anchorColumn == roundNote) {
        ATableWnd::kbEnter(count, shift);
        return;
    }
    if (goesOn && selected() >= 0)
        goesOn(selected());
}

void RoundTable::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const int isPlain = GetKeyState(VK_CONTROL) >= 0 && GetKeyState(VK_SHIFT) >= 0;
    if (static_cast<int>(key) == VK_SPACE && isPlain && compares && selected() >= 0)
        return compares(selected());
    if (key == 'B' && isPlain && blinks && getSelectRect().anchorColumn != roundNote)
        return blinks();
    ATableWnd::OnKeyDown(key, repeat, flags);
}

void RoundTable::OnLButtonDblClk(unsigned flags, CPoint point)
{
    const TableWatch watch(*this);
    ATableWnd::OnLButtonDblClk(flags, point);
    if (!watch.gone() && goesOn && selected() >= 0 && getSelectRect().anchorColumn != roundNote)
        goesOn(selected());
}

}  // namespace pavane
