#include "apps/clean/ChainTable.h"

#include "pavane/tables/observation/mark_box.h"
#include "pavane/tables/TableWatch.h"
#include "platform/CDC.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

constexpr int rowUnit = 11;  // eighths of a character
constexpr std::int16_t numberCharacters = 4;
constexpr std::int16_t widths[linkColumns] = {5, 22, 11, 12, 14, 14, 22};
constexpr COLORREF ink = RGB(0, 0, 0), paleInk = RGB(128, 128, 128), warningInk = RGB(176, 0, 0);

}  // namespace

ChainTable::ChainTable(ChainEdits& edits) : edits_(edits)
{
    setOptions(optHeaderRow | optVertLines | optSizeColumns);
    SetCellHeaderUnit(rowUnit);
    std::vector<ATableColumn> columns{{numberCharacters, colChars}};
    for (const std::int16_t width : widths)
        columns.push_back({width, colChars});
    setColumnPar(columns.data(), std::ssize(columns));
}

void ChainTable::SetLines(std::vector<LinkLine> lines)
{
    const TableWatch watch(*this);
    const int before = selected();
    lines_ = std::move(lines);
    setRows(static_cast<long>(lines_.size()));
    if (watch.gone() || !GetSafeHwnd())
        return;
    SetUpWindow();
    if (!lines_.empty() && !watch.gone())
        SetSelectOneCell(std::clamp(before, 0, static_cast<int>(lines_.size()) - 1) + 1, linkName);
    if (!watch.gone())
        Invalidate();
}

int ChainTable::selected() const
{
    const int row = const_cast<ChainTable*>(this)->getSelectRect().anchorRow;
    return row >= 1 && row <= std::ssize(lines_) ? row - 1 : -1;
}

CString ChainTable::hdrCellAsStr(int row, int column, void*)
{
    if (row == 0)
        return column == 0 ? "#" : linkTitle(column);
    return std::to_string(row);
}

CString ChainTable::cellAsStr(int row, int column, void*)
{
    if (row < 1 || row > std::ssize(lines_))
        return {};
    const LinkLine& line = lines_[static_cast<std::size_t>(row) - 1];
    if (column == linkOn)  // for the clipboard
        return line.isOn ? "on" : "off";
    return linkCell(line, column);
}

void ChainTable::drawHeaderCell(CDC& dc, CRect& rect, int row, int column)
{
    ATableWnd::drawHeaderCell(dc, rect, row, column);
    drawCellText(dc, rect, row, column, hdrCellAsStr(row, column, nullptr));
}

void ChainTable::drawCell(CDC& dc, CRect& rect, int row, int column, int state)
{
    ATableWnd::drawCell(dc, rect, row, column, state);
    if (row < 1 || row > std::ssize(lines_))
        return;
    const LinkLine& line = lines_[static_cast<std::size_t>(row) - 1];
    if (column == linkOn)
        return drawMarkBox(dc, markBox(rect, 1), line.isOn, ink);
    const COLORREF before = dc.SetTextColor(!line.isOn                               ? paleInk
                                            : line.isStale && column >= linkSolvedOn ? warningInk
                                                                                     : ink);
    drawCellText(dc, rect, row, column, linkCell(line, column));
    dc.SetTextColor(before);
}

void ChainTable::sendSelectionChange(ASelectRect& next, ASelectRect& previous)
{
    ATableWnd::sendSelectionChange(next, previous);
    if (chosen)
        chosen();
}

int ChainTable::tell(int isChanged)
{
    if (isChanged && edited)
        edited();
    return isChanged;
}

int ChainTable::Undo() { return tell(edits_.undo()); }

int ChainTable::Redo() { return tell(edits_.redo()); }

void ChainTable::toggle(int row)
{
    if (row >= 0 && row < std::ssize(lines_))
        (void)tell(edits_.setOn(static_cast<std::size_t>(row),
                                !lines_[static_cast<std::size_t>(row)].isOn));
}

void ChainTable::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    if (key == VK_SPACE)
        return toggle(selected());
    if (key == VK_DELETE && selected() >= 0) {
        (void)tell(edits_.remove(static_cast<std::size_t>(selected())));
        return;
    }
    ATableWnd::OnKeyDown(key, repeat, flags);
}

void ChainTable::OnChar(unsigned character, unsigned repeat, unsigned flags)
{
    if (character != ' ')
        ATableWnd::OnChar(character, repeat, flags);
}

void ChainTable::OnLButtonDown(unsigned flags, CPoint point)
{
    const TableWatch watch(*this);
    ATableWnd::OnLButtonDown(flags, point);
    if (watch.gone())
        return;
    for (int row = 1; row <= std::ssize(lines_); ++row)
        if (cellRect(row, linkOn).PtInRect(point))
            return toggle(row - 1);
}

}  // namespace pavane
